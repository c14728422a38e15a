#include "Session.h"

#include <arborium/base/KbFileHelper.h>
#include <arborium/base/KbStringList.h>
#include <arborium/base/KsPreferences.h>
#include <arborium/qt/KsQt.h>
#include <formweave/KsFormweave.h>

#include <cstdio>
#include <cstdlib>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// Qt and the GL libraries ask for a directory of the user's own, and complain where none is named.
void provideRuntimeDirectory()
{
    if (std::getenv("XDG_RUNTIME_DIR")) return;
    const char* temporary = std::getenv("TMPDIR");
    const std::string path = std::string(temporary && *temporary ? temporary : "/tmp") +
                             "/formweave-runtime-" + std::to_string(getuid());
    mkdir(path.c_str(), 0700);
    struct stat status = {};
    // Somebody else's directory of that name is left alone.
    if (lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == getuid() &&
        (status.st_mode & 0077) == 0)
        setenv("XDG_RUNTIME_DIR", path.c_str(), 1);
}

bool isSet(const char* name)
{
    const char* value = std::getenv(name);
    return value && *value;
}

// The installed skins; those of the sources for a program that was not installed.
KbString skinDirectories()
{
    KbString directories = KsPreferences::getString("FORMWEAVE_SKINS_DIR");
    const auto add = [&](const KbString& directory) {
        if (!KbFileHelper::isDirectory(directory)) return false;
        if (!directories.isEmpty()) directories += ";";
        directories += directory;
        return true;
    };
    const QString here = QCoreApplication::applicationDirPath();
    if (!add(KbString::fromUtf8(here.toUtf8().toStdString() + "/" FORMWEAVE_SKIN_DIR_FROM_BIN)))
        add(KbString(FORMWEAVE_SKIN_DIR));
    return directories;
}

QtMessageHandler s_otherMessages = nullptr;

// The offscreen platform says of each window what it cannot tell a window manager: size hints, that
// it comes to the front.
void dropPlatformLimits(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    if (!text.startsWith(QLatin1String("This plugin does not support ")))
        s_otherMessages(type, context, text);
}

} // namespace

Session::Session(Platform platform)
{
    if (platform == OffScreen) {
        setenv("QT_QPA_PLATFORM", "offscreen", 1);
        s_otherMessages = qInstallMessageHandler(dropPlatformLimits);
    } else if (!isSet("QT_QPA_PLATFORM") && !isSet("DISPLAY") && !isSet("WAYLAND_DISPLAY")) {
        std::fprintf(stderr, "formweave: there is no display; \"formweave render\" needs none\n");
        return;
    }
    provideRuntimeDirectory();
    // Qt keeps references to both.
    static int argc = 1;
    static char name[] = "formweave";
    static char* argv[] = {name, nullptr};
    m_application = std::make_unique<QApplication>(argc, argv);
    KsQt::init();
    KsFormweave::init();
    KsFormweave::setSkinsDirectories(skinDirectories());
}

Session::~Session()
{
    if (!m_application) return;
    KsFormweave::finish();
    KsQt::finish();
}

bool Session::chooseSkin(const std::string& name)
{
    if (name.empty()) return true;
    const KbString skin = KbString::fromUtf8(name);
    const KbStringList directories =
        KbStringList::split(KbFileHelper::toUnixPath(KsFormweave::getSkinsDirectories()), ";");
    bool found = KbFileHelper::isDirectory(skin);
    for (const KbString& directory : directories)
        found = found || KbFileHelper::isDirectory(KbFileHelper::join(directory, skin));
    if (!found) {
        std::fprintf(stderr, "formweave: there is no skin %s in %s\n", name.c_str(),
                     KsFormweave::getSkinsDirectories().toUtf8().c_str());
        return false;
    }
    KsFormweave::setSkin(skin);
    return true;
}
