// The main of every test program. A test runs the same by ctest, by hand and in a debugger,
// because what it depends on (fonts, resolution, platform, locale) is pinned here.

#include "LeakGuard.h"
#include "MessageGuard.h"

#include <arborium/base/KsBase.h>

#include <gtest/gtest.h>

#include <QApplication>

#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

extern char** environ;

// Present under a leak-finding sanitizer only.
extern "C" void __lsan_disable() __attribute__((weak));
extern "C" void __lsan_enable() __attribute__((weak));

namespace {
void pinEnvironment()
{
    // No setting of the person who runs the tests reaches them, except those for the tests.
    std::vector<std::string> gone;
    for (char** each = environ; *each; ++each) {
        const std::string entry = *each;
        const std::string name = entry.substr(0, entry.find('='));
        const bool ours = name.rfind("FORMWEAVE_", 0) == 0 && name.rfind("FORMWEAVE_TEST_", 0) != 0;
        const bool qt = name.rfind("QT_", 0) == 0 && name != "QT_QPA_PLATFORM";
        if (ours || qt || name == "ARBHOME" || name == "LANGUAGE") gone.push_back(name);
    }
    for (const std::string& name : gone) unsetenv(name.c_str());

    // The platform may be chosen: QT_QPA_PLATFORM=xcb shows the windows of a test.
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    setenv("QT_FONT_DPI", "96", 1);
    if (const char* scale = std::getenv("FORMWEAVE_TEST_SCREEN_SCALE"))
        setenv("QT_SCALE_FACTOR", scale, 1);
    setenv("FONTCONFIG_FILE", FORMWEAVE_TEST_FONTCONFIG, 1);
    setenv("LIBGL_ALWAYS_SOFTWARE", "1", 1);
    setenv("LC_ALL", "C.UTF-8", 1);
    // Settings and sockets stay in the build tree.
    setenv("XDG_CONFIG_HOME", FORMWEAVE_TEST_SCRATCH, 1);
    setenv("XDG_CACHE_HOME", FORMWEAVE_TEST_SCRATCH, 1);
    setenv("XDG_RUNTIME_DIR", FORMWEAVE_TEST_SCRATCH, 1);
    // The skins of the sources, found as those of an installation are.
    setenv("ARBHOME", FORMWEAVE_SOURCE_DIR, 1);
}

bool onlyLists(int argc, char** argv)
{
    for (int i = 1; i < argc; ++i) {
        if (std::strncmp(argv[i], "--gtest_list_tests", 18) == 0) return true;
    }
    return false;
}

/// Tests of WithoutApplication do without one, if they are run by themselves.
bool needsApplication()
{
    return testing::GTEST_FLAG(filter).find("WithoutApplication.") == std::string::npos;
}
} // namespace

int main(int argc, char** argv)
{
    const bool list = onlyLists(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    if (list) return RUN_ALL_TESTS(); // needs no windows, and is faster without

    pinEnvironment();
    // What a platform plugin makes at start and keeps to the end is not the leak of a test.
    if (__lsan_disable) __lsan_disable();
    std::optional<QApplication> application;
    if (needsApplication()) application.emplace(argc, argv);
    if (__lsan_enable) __lsan_enable();

    installMessageGuard();
    // Widgets are not counted: each belongs to a window, and windows without a parent may stay.
    addLeakCounter("nodes", [] { return static_cast<long>(KsBase::getNumInstances()); });
    installLeakGuard();
    return RUN_ALL_TESTS();
}
