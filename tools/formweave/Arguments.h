#pragma once

#include <QSize>

#include <string>
#include <vector>

/// What was asked for on the command line.
struct Arguments {
    enum Presentation { Unset = 0, Window = 1, Scene = 2, Both = 3 };

    std::vector<std::string> files;
    std::string output;
    std::string id;
    std::string skin;
    std::string open;
    Presentation presentation = Unset;
    QSize size; ///< Empty: as large as the dialog needs.
    double scale = 1;
    bool watch = false;
};

/// One of the program's commands.
struct Command {
    const char* name;
    const char* synopsis; ///< What follows the command's name.
    const char* summary;
    int maxFiles; ///< -1: any number.
    int (*run)(const Arguments& arguments);
};

/// Exit statuses.
enum Status { Done = 0, Failed = 1, Misused = 2 };

/// Finds the command, reads its options and runs it; answers --help and --version. A wrong call
/// gives one line of help and the status `Misused`.
int runCommandLine(const std::vector<std::string>& words);
