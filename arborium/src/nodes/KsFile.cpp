#include <arborium/nodes/KsFile.h>

#include "io/KsInputImpl.h"

#include <arborium/actions/KsAction.h>
#include <arborium/actions/KsSearchAction.h>
#include <arborium/base/KbFileHelper.h>
#include <arborium/base/KsLimits.h>
#include <arborium/io/KsDB.h>
#include <arborium/nodes/KsSeparator.h>

KS_NODE_SOURCE(KsFile, KsNode)

KsFile::KsFile() : m_children(this)
{
    KsInstanceBuilder build(classRecord, this);
    build.field("name", name, KbString());
}

KsFile::~KsFile() = default;

void KsFile::doAction(KsAction* action) { m_children.traverseInPath(action); }

void KsFile::search(KsSearchAction* action)
{
    KsNode::search(action);
    if (!action->isTerminated()) m_children.traverseInPath(action);
}

bool KsFile::loadFor(KsInput* includer, KsInput& file)
{
    m_children.truncate(0);
    m_fullName.makeEmpty();
    KsInput::Impl& to = file.impl();
    KsInput::Impl* from = includer ? &includer->impl() : nullptr;
    const auto refuse = [&](const std::string& problem) {
        if (from)
            from->error(problem);
        else
            to.keep({name.getValue().toUtf8(), 0, 0, problem});
        return false;
    };
    if (name.getValue().isEmpty()) return true;

    std::string problem;
    const KbString path = name.findFile(problem);
    if (path.isEmpty()) return refuse(problem);
    for (const KsInput::Impl* each = from; each; each = each->includer) {
        if (each->isFile && KbFileHelper::getRealPath(each->path) == path)
            return refuse("the file \"" + path.toUtf8() + "\" cannot stand in itself");
    }
    if (!KbFileHelper::isRegularFile(path))
        return refuse("\"" + path.toUtf8() + "\" is no regular file");
    // The limits hold for a file with all that it includes.
    const KsLimits& limits = KsLimits::current();
    if (from && from->numFiles >= limits.filesPerFile) {
        from->stop("the file includes more than " +
                   KsInput::Impl::limitText(limits.filesPerFile, "files"));
        return false;
    }
    if (!file.openFile(path)) {
        if (from) from->keepAll(file);
        return false;
    }
    if (from) {
        to.includer = from;
        to.outerDepth = from->outerDepth + static_cast<int>(from->open.size());
        to.numObjects = from->numObjects;
        to.numBytes += from->numBytes;
        to.numFiles = from->numFiles + 1;
        if (to.numBytes > limits.fileBytes) {
            from->stop("the file has, with those that it includes, more than " +
                       KsInput::Impl::limitText(limits.fileBytes, "bytes"));
            return false;
        }
    }
    const KsRef<KsSeparator> root(KsDB::parse(&file));
    if (from) {
        from->numObjects = to.numObjects;
        from->numBytes = to.numBytes;
        from->numFiles = to.numFiles;
        from->addVisits(to.topVisits);
        from->keepAll(file);
    }
    if (!root) return false;
    m_fullName = path;
    m_children.append(root);
    return true;
}

bool KsFile::load()
{
    KsInput file;
    const bool ok = loadFor(nullptr, file);
    file.postErrors("KsFile::load");
    return ok;
}

bool KsFile::readInstance(KsInput* in, unsigned short flags)
{
    if (!in) return false;
    const KbString former = name.getValue();
    if (!KsNode::readInstance(in, flags)) return false;
    if (name.getValue() == former && (name.getValue().isEmpty() || m_children.getLength() > 0))
        return true;
    KsInput file;
    // What is wrong with the file is told, and its includer read on.
    loadFor(in, file);
    return true;
}

void KsFile::copyContents(const KsNode* from, Copier& copier)
{
    KsNode::copyContents(from, copier);
    const auto* file = static_cast<const KsFile*>(from);
    m_fullName = file->m_fullName;
    for (int i = 0; i < file->m_children.getLength(); ++i)
        if (KsNode* child = copier.copyOf(file->m_children.get(i))) m_children.append(child);
}
