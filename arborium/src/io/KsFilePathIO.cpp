// Names of files in fields: where they come from, and what they may lead to.

#include "io/KsInputImpl.h"

#include <arborium/base/KbFileHelper.h>
#include <arborium/fields/KsSField.h>
#include <arborium/io/KsOutput.h>

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

bool KsSFFilePathString::readValue(KsInput* in)
{
    KbString path;
    if (!in || !in->read(path)) return false;
    const KsInput::Impl& im = in->impl();
    std::shared_ptr<const KbString> folder;
    if (!im.isProgramText) {
        // As it is now: the program may go to another directory before the name is looked up.
        folder = std::make_shared<const KbString>(
            im.isFile ? KbFileHelper::getRealPath(KbFileHelper::getDirectory(im.path))
                      : KbString());
    }
    take(path, std::move(folder));
    return true;
}

void KsSFFilePathString::writeValue(KsOutput* out) const
{
    if (out) out->write(m_value);
}

KbString KsSFFilePathString::findFile(std::string& problem) const
{
    KbStringList folders;
    if (m_folder && !m_folder->isEmpty()) folders.append(*m_folder);
    for (const KbString& each : KsInput::getDirectories()) folders.append(each);

    const KbString expanded = KbFileHelper::expandString(m_value);
    KbString found;
    if (KbFileHelper::isAbsolute(expanded)) found = KbFileHelper::getRealPath(expanded);
    for (int i = 0; i < folders.getLength() && found.isEmpty(); ++i)
        found = KbFileHelper::getRealPath(KbFileHelper::join(folders[i], expanded));
    if (found.isEmpty()) {
        problem = "the file \"" + expanded.toUtf8() + "\" is not found";
        return found;
    }
    if (!m_folder || !s_isConfined) return found;
    for (const KbString& each : folders)
        if (isBelowFolder(found, each)) return found;
    problem = "the file \"" + expanded.toUtf8() + "\" lies outside of the folders that may be read";
    return {};
}
