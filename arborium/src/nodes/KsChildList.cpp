#include <arborium/nodes/KsChildList.h>

#include <arborium/actions/KsAction.h>
#include <arborium/base/KsDebugError.h>
#include <arborium/nodes/KsSeparator.h>

#include <algorithm>
#include <optional>
#include <typeinfo>

struct KsChildList::Runs {
    static constexpr int length = 32;
    std::vector<std::optional<KbBox3f>> boxes; // up to the last run that ever had one
};

KsChildList::KsChildList(KsNode* parent) : m_parent(parent) {}

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
    forgetRunsFrom(index);
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
    forgetRunsFrom(index);
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
    forgetRunsFrom(index);
    KsNodeList::remove(index);
    former->removeParent(m_parent);
    changed();
}

void KsChildList::truncate(int length)
{
    if (length < 0 || length >= getLength()) return;
    const KsKeepAlive keep(m_parent);
    const std::vector<KsRef<KsNode>> former(m_nodes.begin() + length, m_nodes.end());
    forgetRunsFrom(length);
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
    for (int first = 0; first < getLength() && !action->isTerminated(); first += Runs::length) {
        const KbBox3f* box = boxOfRunAt(first);
        if (box && action->passBy(*box)) continue;
        const bool isNew = !box;
        traverse(action, first, first + Runs::length - 1);
        if (isNew) keepBoxOfRun(first);
    }
}

void KsChildList::traverseInPath(KsAction* action)
{
    int numIndices = 0;
    const int* indices = nullptr;
    // What stands beside the path is left to the action.
    switch (action->getPathCode(numIndices, indices)) {
    case KsAction::IN_PATH: traverse(action, 0, indices[numIndices - 1]); break;
    case KsAction::OFF_PATH: traverse(action, 0, getLength() - 1); break;
    default: traverse(action);
    }
}

// ---- boxes of runs ----

const KbBox3f* KsChildList::boxOfRunAt(int index) const
{
    const auto run = static_cast<std::size_t>(index / Runs::length);
    if (!m_runs || run >= m_runs->boxes.size()) return nullptr;
    const std::optional<KbBox3f>& box = m_runs->boxes[run];
    return box ? &*box : nullptr;
}

void KsChildList::keepBoxOfRun(int first)
{
    // Only the list that the parent gives out is told of marks.
    if (getLength() < 2 * Runs::length || m_parent->getChildren() != this) return;
    const int end = std::min(first + Runs::length, getLength());
    KbBox3f all;
    for (int i = first; i < end; ++i) {
        KsNode& child = *get(i);
        if (typeid(child) != typeid(KsSeparator) || !child.isOnlyChildOf(m_parent)) return;
        const auto& separator = static_cast<const KsSeparator&>(child);
        const KbBox3f* box = separator.getKeptBox();
        if (!box || separator.holdsCamera()) return;
        all.extendBy(*box);
        child.setPlace(i);
    }
    if (!m_runs) m_runs = std::make_unique<Runs>();
    const auto run = static_cast<std::size_t>(first / Runs::length);
    if (run >= m_runs->boxes.size()) m_runs->boxes.resize(run + 1);
    m_runs->boxes[run] = all;
}

void KsChildList::childMarked(const KsNode* child)
{
    const int place = child->getPlace();
    if (boxOfRunAt(place) && get(place) == child)
        m_runs->boxes[static_cast<std::size_t>(place / Runs::length)].reset();
}

void KsChildList::forgetRunsFrom(int index)
{
    const auto run = static_cast<std::size_t>(index / Runs::length);
    if (m_runs && run < m_runs->boxes.size()) m_runs->boxes.resize(run);
    if (m_runs && m_runs->boxes.empty()) m_runs.reset();
}
