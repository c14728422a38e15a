#include <arborium/nodes/KsNodeList.h>

#include <arborium/nodes/KsNode.h>

#include <algorithm>

KsNodeList::KsNodeList(const KsNodeList& other) : m_nodes(other.m_nodes)
{
    for (KsNode* node : m_nodes) node->ref();
}

KsNodeList& KsNodeList::operator=(const KsNodeList& other)
{
    if (&other == this) return *this;
    // What goes may be what holds the other list.
    const KsNodeList kept(other);
    truncate(0);
    for (KsNode* node : kept.m_nodes) append(node);
    return *this;
}

KsNodeList::~KsNodeList() { KsNodeList::truncate(0); }

void KsNodeList::append(KsNode* node) { insert(node, getLength()); }

void KsNodeList::insert(KsNode* node, int index)
{
    if (!node || index < 0 || index > getLength()) return;
    node->ref();
    m_nodes.insert(m_nodes.begin() + index, node);
}

void KsNodeList::set(int index, KsNode* node)
{
    if (!node || index < 0 || index >= getLength()) return;
    node->ref();
    KsNode*& place = m_nodes[static_cast<std::size_t>(index)];
    KsNode* former = place;
    place = node;
    former->unref();
}

void KsNodeList::remove(int index)
{
    if (index < 0 || index >= getLength()) return;
    KsNode* node = m_nodes[static_cast<std::size_t>(index)];
    m_nodes.erase(m_nodes.begin() + index);
    node->unref();
}

void KsNodeList::truncate(int length)
{
    if (length < 0 || length >= getLength()) return;
    // The list is right before anything dies: what dies may look at it.
    const std::vector<KsNode*> gone(m_nodes.begin() + length, m_nodes.end());
    m_nodes.resize(static_cast<std::size_t>(length));
    for (KsNode* node : gone) node->unref();
}

void KsNodeList::reserve(int length)
{
    if (length > 0) m_nodes.reserve(static_cast<std::size_t>(length));
}

int KsNodeList::find(const KsNode* node) const
{
    const auto found = std::find(m_nodes.begin(), m_nodes.end(), node);
    return found == m_nodes.end() ? -1 : static_cast<int>(found - m_nodes.begin());
}
