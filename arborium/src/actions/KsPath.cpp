#include <arborium/actions/KsPath.h>

#include <arborium/nodes/KsChildList.h>
#include <arborium/nodes/KsNode.h>

#include <algorithm>

KsPath::KsPath(KsNode* head) { setHead(head); }

KsPath::KsPath(const KsPath& other)
    : KsRefCounter(), m_steps(other.m_steps), m_numPublic(other.m_numPublic)
{
    for (const Step& step : m_steps) step.node->ref();
}

KsPath& KsPath::operator=(const KsPath& other)
{
    // The nodes of the old content go last: their end may reach this path.
    std::vector<Step> steps = other.m_steps;
    for (const Step& step : steps) step.node->ref();
    m_numPublic = other.m_numPublic;
    m_steps.swap(steps);
    for (auto step = steps.rbegin(); step != steps.rend(); ++step) step->node->unref();
    return *this;
}

KsPath::~KsPath() { truncate(0); }

int KsPath::getLength() const
{
    const int all = static_cast<int>(m_steps.size());
    return m_numPublic < 0 ? all : std::min(all, m_numPublic);
}

KsNode* KsPath::getHead() const { return getNode(0); }

KsNode* KsPath::getTail() const { return getNode(getLength() - 1); }

KsNode* KsPath::getNode(int index) const
{
    return index >= 0 && index < static_cast<int>(m_steps.size())
               ? m_steps[static_cast<std::size_t>(index)].node
               : nullptr;
}

int KsPath::getIndex(int index) const
{
    return index >= 0 && index < static_cast<int>(m_steps.size())
               ? m_steps[static_cast<std::size_t>(index)].index
               : -1;
}

KsNode* KsPath::getNodeFromTail(int index) const { return getNode(getLength() - 1 - index); }

bool KsPath::containsNode(const KsNode* node) const { return findNode(node) >= 0; }

int KsPath::findNode(const KsNode* node) const
{
    const auto found = std::find_if(m_steps.begin(), m_steps.end(),
                                    [node](const Step& step) { return step.node == node; });
    return found == m_steps.end() ? -1 : static_cast<int>(found - m_steps.begin());
}

void KsPath::setHead(KsNode* head)
{
    const KsRef<KsNode> keep(head); // it may stand on the path already
    truncate(0);
    m_numPublic = -1;
    append(head, -1);
}

void KsPath::append(KsNode* node, int childIndex)
{
    if (!node) return;
    node->ref();
    m_steps.push_back({node, childIndex});
}

bool KsPath::append(KsNode* child)
{
    if (m_steps.empty() || !child) return false;
    const KsChildList* children = m_steps.back().node->getChildren();
    const int index = children ? children->find(child) : -1;
    if (index < 0) return false;
    append(child, index);
    return true;
}

void KsPath::pop() { truncate(static_cast<int>(m_steps.size()) - 1); }

void KsPath::truncate(int length)
{
    while (static_cast<int>(m_steps.size()) > std::max(length, 0)) {
        KsNode* node = m_steps.back().node;
        m_steps.pop_back();
        node->unref();
    }
}

bool KsPath::operator==(const KsPath& other) const
{
    return std::equal(
        m_steps.begin(), m_steps.end(), other.m_steps.begin(), other.m_steps.end(),
        [](const Step& a, const Step& b) { return a.node == b.node && a.index == b.index; });
}
