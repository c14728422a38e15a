#pragma once

#include <arborium/base/KsApi.h>

class QWidget;

/// What connects the layer to Qt.
class ARBORIUM_API KsQt {
public:
    /// Connects the sensor queue to the event loop, so that sensors that wait run when the program
    /// is idle. Needs the `QApplication`: without one a message is posted and FALSE returned.
    /// Nests: each `init` is paired with a `finish`.
    static bool init();
    /// The same for a program that leaves the `QApplication` to the layer: one is made if there is
    /// none, and lives to the end of the process. `argc` and `argv` must live as long.
    static bool init(int& argc, char** argv);
    /// The last one disconnects the queue. Without an `init` it does nothing.
    static void finish();
    /// Whether sensors run by themselves.
    static bool isInitialized();

    /// The program's main widget: the parent of dialogs that have no other. Null until it is set,
    /// and again when that widget has died.
    static QWidget* getTopLevelWidget();
    static void setTopLevelWidget(QWidget* widget);
    // Null does nothing.
    static void show(QWidget* widget);
    static void hide(QWidget* widget);
    /// Runs the event loop until the last window is closed or `exitMainLoop` is called, and returns
    /// its status; 1 at once, with a message, without a `QApplication`.
    static int mainLoop();
    /// Ends the loop that runs, with this status; nothing if none does.
    static void exitMainLoop(int status = 0);
};
