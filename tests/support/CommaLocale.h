#pragma once

#include <QProcess>
#include <QTemporaryDir>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

/// While it lives, the C library reads and writes numbers with a decimal comma: as in a locale of
/// this machine, or in one that is made for it.
class CommaLocale {
public:
    CommaLocale()
    {
        for (const char* name : {"de_DE.UTF-8", "fr_FR.UTF-8"})
            if (take(name)) return;
        if (!m_made.isValid()) return;
        const std::string directory = m_made.path().toStdString();
        const std::string source = directory + "/comma.locale";
        std::ofstream(source) << "LC_NUMERIC\ndecimal_point \",\"\nthousands_sep \"\"\n"
                                 "grouping -1\nEND LC_NUMERIC\n";
        // What the other categories lack is no error with -c.
        QProcess::execute("localedef",
                          {"-c", "--quiet", "-i", source.c_str(), (directory + "/comma").c_str()});
        ::setenv("LOCPATH", directory.c_str(), 1);
        take("comma");
    }
    ~CommaLocale() { std::setlocale(LC_NUMERIC, "C"); }
    CommaLocale(const CommaLocale&) = delete;
    CommaLocale& operator=(const CommaLocale&) = delete;

    /// FALSE if there is no such locale, and none can be made.
    bool isSet() const { return m_isSet; }

private:
    bool take(const char* name)
    {
        char number[8] = "";
        std::setlocale(LC_NUMERIC, name);
        std::snprintf(number, sizeof number, "%.1f", 2.5);
        m_isSet = std::string(number) == "2,5";
        return m_isSet;
    }

    QTemporaryDir m_made{FORMWEAVE_TEST_SCRATCH "/locale-XXXXXX"};
    bool m_isSet = false;
};
