#include <arborium/actions/KsAction.h>

#include <arborium/actions/KsState.h>
#include <arborium/base/KsDebugError.h>
#include <arborium/base/KsLimits.h>
#include <arborium/nodes/KsChildList.h>
#include <arborium/nodes/KsNode.h>

#include <algorithm>
#include <memory>

namespace {

/// Traversal states are large and needed during a traversal only: actions, of which there are many,
/// borrow them.
class StatePool {
public:
    ~StatePool() { s_isGone = true; }
    static std::unique_ptr<KsState> take()
    {
        auto* free = states();
        if (!free || free->empty()) return std::make_unique<KsState>();
        std::unique_ptr<KsState> state = std::move(free->back());
        free->pop_back();
        return state;
    }
    static void giveBack(std::unique_ptr<KsState> state)
    {
        state->reset();
        if (auto* free = states()) free->push_back(std::move(state));
    }

private:
    /// Null at the end of the thread, when something that dies late still traverses.
    static std::vector<std::unique_ptr<KsState>>* states()
    {
        if (s_isGone) return nullptr;
        static thread_local StatePool pool;
        return &pool.m_states;
    }
    static thread_local bool s_isGone;
    std::vector<std::unique_ptr<KsState>> m_states;
};
thread_local bool StatePool::s_isGone = false;

} // namespace

KsAction::KsAction() = default;
KsAction::~KsAction() = default;

KsType KsAction::getClassTypeId()
{
    static const KsType type = KsType::createType(KsTypedObject::getClassTypeId(), "Action");
    return type;
}

void KsAction::apply(KsNode* root) { run(root, nullptr); }

void KsAction::apply(KsPath* path) { run(path ? path->getHead() : nullptr, path); }

void KsAction::apply(const KsPathList& paths)
{
    for (int i = 0; i < paths.getLength(); ++i) {
        const KsRef<KsPath> path(paths[i]); // the list may change meanwhile
        if (path) apply(path.get());
    }
}

void KsAction::run(KsNode* root, const KsPath* path)
{
    const KsKeepAlive rootAlive(root);
    const KsKeepAlive pathAlive(path);

    const bool nested = m_running;
    KsState* const outerState = m_state;
    Traversal outer;
    if (nested) {
        std::swap(outer, m_now);
    } else {
        m_now.steps.clear();
        m_now.pathIndices.clear();
    }
    m_now.path = path;
    m_now.visits = 0;
    m_now.code = NO_PATH;
    m_now.terminated = false;
    m_now.tooDeep = false;
    if (path) {
        // Where children moved since the path was made, it is followed to their new places.
        int depth = 1;
        for (KsNode* node; (node = path->getNode(depth)); ++depth) {
            int index = path->getIndex(depth);
            const KsChildList* siblings = path->getNode(depth - 1)->getChildren();
            if (siblings && siblings->get(index) != node) index = siblings->find(node);
            m_now.pathIndices.push_back(index);
        }
    }

    m_running = true;
    std::unique_ptr<KsState> state = StatePool::take();
    m_state = state.get();
    beginTraversal(root);
    m_state = outerState;
    StatePool::giveBack(std::move(state));
    m_running = nested;

    const bool terminated = m_now.terminated;
    m_now.steps.clear();
    m_curPathValid = 0;
    if (nested)
        m_now = std::move(outer);
    else
        m_now.terminated = terminated;
    m_curPath.truncate(0); // holds no node beyond the traversal
}

bool KsAction::passBy(const KbBox3f&) { return false; }

void KsAction::beginTraversal(KsNode* root)
{
    if (root) traverse(root, -1);
}

const KsFullPath* KsAction::getCurPath() const
{
    m_curPath.truncate(static_cast<int>(m_curPathValid));
    for (std::size_t i = m_curPathValid; i < m_now.steps.size(); ++i)
        m_curPath.append(m_now.steps[i].node, m_now.steps[i].index);
    m_curPathValid = m_now.steps.size();
    return &m_curPath;
}

KsAction::PathCode KsAction::getPathCode(int& numIndices, const int*& indices) const
{
    numIndices = 0;
    indices = nullptr;
    if (m_now.code == IN_PATH) {
        numIndices = 1;
        indices = &m_now.pathIndices[m_now.steps.size() - 1];
    }
    return m_now.code;
}

bool KsAction::isMetBeside(const KsNode* node) const { return node->affectsState(); }

KsAction::PathCode KsAction::codeOf(const KsNode* child, int index) const
{
    const std::size_t depth = m_now.steps.size();
    if (depth == 0) {
        if (!m_now.path) return NO_PATH;
    } else {
        if (m_now.code != IN_PATH) return m_now.code;
        if (index != m_now.pathIndices[depth - 1] ||
            child != m_now.path->getNode(static_cast<int>(depth)))
            return OFF_PATH;
    }
    return depth < m_now.pathIndices.size() ? IN_PATH : BELOW_PATH;
}

void KsAction::traverse(KsNode* child, int index)
{
    if (!child || m_now.terminated) return;
    const PathCode code = codeOf(child, index);
    if (code == OFF_PATH && !isMetBeside(child)) return;

    const KsLimits& limits = KsLimits::current();
    if (++m_now.visits > limits.visits) {
        KsDebugError::post("KsAction::traverse",
                           "The scene has more than %lld nodes, shared ones counted each time; "
                           "the rest is left out",
                           static_cast<long long>(limits.visits));
        terminate();
        return;
    }
    if (m_now.steps.size() >= static_cast<std::size_t>(std::max(limits.nesting, 1)) * 3) {
        if (!m_now.tooDeep) {
            KsDebugError::post("KsAction::traverse",
                               "The scene is deeper than %d levels; what is below is left out",
                               limits.nesting * 3);
        }
        m_now.tooDeep = true;
        return;
    }

    const KsKeepAlive alive(child);
    const PathCode outer = m_now.code;
    m_now.code = code;
    m_now.steps.push_back({child, index});
    visit(child);
    m_now.steps.pop_back();
    m_curPathValid = std::min(m_curPathValid, m_now.steps.size());
    m_now.code = outer;
}
