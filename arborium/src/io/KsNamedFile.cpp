#include "io/KsNamedFile.h"

#include <arborium/base/KbFileHelper.h>
#include <arborium/io/KsInput.h>

namespace {

bool s_isConfined = true;

bool isBelowFolder(const KbString& realPath, const KbString& folder)
{
    const KbString real = KbFileHelper::getRealPath(folder);
    return !real.isEmpty() && (real == "/" || realPath.startsWith(real + "/"));
}

} // namespace

void KsInput::setConfined(bool confined) { s_isConfined = confined; }

bool KsInput::isConfined() { return s_isConfined; }

KbString ksFindNamedFile(const KbString& name, const KbString& folder, std::string& problem)
{
    KbStringList folders;
    if (!folder.isEmpty()) folders.append(folder);
    for (const KbString& each : KsInput::getDirectories()) folders.append(each);

    const KbString expanded = KbFileHelper::expandString(name);
    KbString found;
    if (KbFileHelper::isAbsolute(expanded)) found = KbFileHelper::getRealPath(expanded);
    for (int i = 0; i < folders.getLength() && found.isEmpty(); ++i)
        found = KbFileHelper::getRealPath(KbFileHelper::join(folders[i], expanded));
    if (found.isEmpty()) {
        problem = "the file \"" + expanded.toUtf8() + "\" is not found";
        return found;
    }
    if (!s_isConfined) return found;
    for (const KbString& each : folders)
        if (isBelowFolder(found, each)) return found;
    problem = "the file \"" + expanded.toUtf8() + "\" lies outside of the folders that may be read";
    return {};
}
