#include <arborium/nodes/KsChildList.h>

#include <arborium/actions/KsAction.h>
#include <arborium/base/KsDebugError.h>
#include <arborium/nodes/KsNode.h>

#include <algorithm>

KsChildList::~KsChildList()
{
    // Nobody is told: the parent is about to go.
    for (KsNode* node : m_nodes) node->removeParent(m_parent);
}

bool KsChildList::accept(KsNode* node) const
{
    if (!node) {
        KsDebugError::post("KsChildList::insert", "NULL child node");
        return false;
    }
    if (node != m_parent && (!node->mayHold() || !m_parent->isBelow(node))) return true;
    KsDebugError::post("KsChildList::insert", "A %s cannot stand below itself",
                       node->getTypeId().getName().getString());
    return false;
}

void KsChildList::changed()
{
    m_parent->markChanged();
    if (m_parent->isNotifyEnabled()) m_parent->tellSensors(nullptr);
}

void KsChildList::append(KsNode* node) { insert(node, getLength()); }

void KsChildList::insert(KsNode* node, int index)
{
    if (index < 0 || index > getLength()) return;
    const KsKeepAlive keepNode(node);
    if (!accept(node)) return;
    const KsKeepAlive keep(m_parent);
    KsNodeList::insert(node, index);
    node->addParent(m_parent);
    changed();
}

void KsChildList::set(int index, KsNode* node)
{
    if (index < 0 || index >= getLength()) return;
    const KsKeepAlive keepNode(node);
    if (!accept(node)) return;
    const KsKeepAlive keep(m_parent);
    const KsRef<KsNode> former(get(index)); // dies after the change was told
    KsNodeList::set(index, node);
    node->addParent(m_parent);
    former->removeParent(m_parent);
    changed();
}

void KsChildList::remove(int index)
{
    if (index < 0 || index >= getLength()) return;
    const KsKeepAlive keep(m_parent);
    const KsRef<KsNode> former(get(index));
    KsNodeList::remove(index);
    former->removeParent(m_parent);
    changed();
}

void KsChildList::truncate(int length)
{
    if (length < 0 || length >= getLength()) return;
    const KsKeepAlive keep(m_parent);
    const std::vector<KsRef<KsNode>> former(m_nodes.begin() + length, m_nodes.end());
    KsNodeList::truncate(length);
    for (const KsRef<KsNode>& node : former) node->removeParent(m_parent);
    changed();
}

void KsChildList::traverse(KsAction* action, int first, int last)
{
    for (int i = std::max(first, 0); i <= last && i < getLength() && !action->isTerminated(); ++i)
        action->traverse(get(i), i);
}

void KsChildList::traverse(KsAction* action)
{
    for (int i = 0; i < getLength() && !action->isTerminated(); ++i) action->traverse(get(i), i);
}

void KsChildList::traverseInPath(KsAction* action)
{
    int numIndices = 0;
    const int* indices = nullptr;
    const KsAction::PathCode code = action->getPathCode(numIndices, indices);
    if (code != KsAction::IN_PATH && code != KsAction::OFF_PATH) {
        traverse(action);
        return;
    }
    // The action's own list of indices changes while it goes below.
    std::vector<int> onPath;
    if (code == KsAction::IN_PATH) onPath.assign(indices, indices + numIndices);
    const int last = code == KsAction::OFF_PATH ? getLength() - 1
                     : onPath.empty()           ? -1
                                                : onPath.back();
    for (int i = 0; i <= last && i < getLength() && !action->isTerminated(); ++i) {
        const bool isOnPath = std::find(onPath.begin(), onPath.end(), i) != onPath.end();
        if (isOnPath || get(i)->affectsState()) action->traverse(get(i), i);
    }
}
