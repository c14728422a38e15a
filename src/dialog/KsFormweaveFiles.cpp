// Dialog files and their cache.

#include "KsFileCache.h"

#include <arborium/actions/KsWriteAction.h>
#include <arborium/base/KbFileHelper.h>
#include <arborium/base/KbStringList.h>
#include <arborium/base/KsDebugError.h>
#include <arborium/io/KsDB.h>
#include <arborium/io/KsInput.h>
#include <arborium/io/KsOutput.h>
#include <arborium/nodes/KsSeparator.h>
#include <formweave/KsFormweave.h>

#include <string>

namespace {

DialogFileRecord* recordAt(const KbPList& list, int index)
{
    return static_cast<DialogFileRecord*>(list.get(index));
}

} // namespace

KsFormweave* KsFormweave::loadFromFile(KbString fileName, KbString auditorId)
{
    if (!s_listData) s_listData = new KbPList;
    KsGroup* root = nullptr;
    for (int i = 0; i < s_listData->getLength() && !root; ++i) {
        if (recordAt(*s_listData, i)->fileName == fileName) root = recordAt(*s_listData, i)->root;
    }
    if (!root) {
        KsInput in;
        if (!in.openFile(fileName, false, false)) return nullptr;
        root = KsDB::readAll(&in);
        if (!root) return nullptr;
        root->ref();
        s_listData->append(new DialogFileRecord{fileName, root});
    }
    for (int i = 0; i < root->getNumChildren(); ++i) {
        auto* element = ksCast<KsFormweave>(root->getChild(i));
        if (!element) continue;
        if (auditorId.isEmpty() || element->auditorID.getValue() == auditorId) {
            element->ref();
            return element;
        }
    }
    std::string message = "Cannot find any Formweave component ";
    if (!auditorId.isEmpty()) message += "with auditorID = \"" + auditorId.toUtf8() + "\" ";
    message += "in Arborium file \"" + KbFileHelper::toNative(fileName) + "\".";
    KsDebugError::post("KsFormweave::loadFromFile", "%s", message.c_str());
    return nullptr;
}

void KsFormweave::destroyByRef(KsFormweave* node)
{
    if (!s_listData || !node || node->getNumParents() == 0) return;
    for (int i = 0; i < s_listData->getLength(); ++i) {
        DialogFileRecord* record = recordAt(*s_listData, i);
        if (record->root->findChild(node) == -1) continue;
        s_listData->remove(i);
        record->root->unref();
        delete record;
        return;
    }
}

KsGroup* KsFormweave::readFromFile(const KbString& fileName)
{
    const KbStringList directories = KsInput::getDirectories();
    KsInput::clearDirectories();
    chooseSkin();
    KsInput::addDirectoryFirst(s_skinsPath());
    KsGroup* root = nullptr;
    KsInput in;
    // Without a skin there is no directory to look in, the current one least of all.
    if (!s_skinsPath().isEmpty() && in.openFile(fileName, true, false)) {
        root = KsDB::readAll(&in);
        in.closeFile();
    }
    KsInput::clearDirectories();
    for (int i = 0; i < directories.getLength(); ++i) KsInput::addDirectoryLast(directories[i]);
    return root;
}

void KsFormweave::writeNode(char* fileName)
{
    KsNode* geometry = getAnyPart("topSeparator", false);
    if (!geometry || !fileName) return;
    KsWriteAction action;
    if (!action.getOutput()->openFile(fileName)) return;
    action.getOutput()->setBinary(false);
    action.apply(geometry);
    action.getOutput()->closeFile();
}
