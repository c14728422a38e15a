#include <arborium/nodes/KsNode.h>

#include <arborium/actions/KsActions.h>
#include <arborium/base/KsDebugError.h>
#include <arborium/io/KsOutput.h>
#include <arborium/nodes/KsChildList.h>
#include <arborium/sensors/KsSensor.h>

#include "base/ListenerList.h"

#include <deque>
#include <unordered_map>
#include <unordered_set>
#include <utility>

KsClassRecord KsNode::classRecord("KsNode", nullptr, nullptr);
int KsNode::s_numSensors = 0;

struct KsNode::Watchers {
    ListenerList<KsNodeSensor> sensors;
    ListenerList<KsSceneObserver> observers;
};

/// A node with more than one parent, or with one that holds it more than once.
struct KsNode::ManyParents {
    std::unordered_map<KsNode*, int> counts;
};

namespace {
int s_nextActionMethodIndex = 0;
constexpr std::uintptr_t isTable = 1;

/// A walk from a node up. Each node is met once however many ways lead to it.
class UpwardWalk {
public:
    explicit UpwardWalk(KsNode* start) : m_only(start) {}
    KsNode* next()
    {
        if (m_only) return std::exchange(m_only, nullptr);
        if (m_waiting.empty()) return nullptr;
        KsNode* node = m_waiting.back();
        m_waiting.pop_back();
        return node;
    }
    void push(KsNode* parent, bool isOnly)
    {
        // While each node has one parent there is one way only, and nothing to remember.
        if (isOnly && !m_isBranched) {
            m_only = parent;
            return;
        }
        m_isBranched = true;
        if (m_met.insert(parent).second) m_waiting.push_back(parent);
    }

private:
    KsNode* m_only; // the one that is next, as long as there is one way
    std::vector<KsNode*> m_waiting;
    std::unordered_set<KsNode*> m_met;
    bool m_isBranched = false;
};
} // namespace

KsNode::KsNode() = default;

KsNode::~KsNode()
{
    setName(KbName()); // found by its name it would be taken for a whole node
    KsNode::notifyDelete();
    delete m_watchers;
    if (m_parents & isTable) delete reinterpret_cast<ManyParents*>(m_parents & ~isTable);
}

void KsNode::initClass() { classRecord.initClass(); }

void KsNode::exitClass() { classRecord.exitClass(); }

int KsNode::getNextActionMethodIndex() { return s_nextActionMethodIndex; }

void KsNode::incNextActionMethodIndex() { ++s_nextActionMethodIndex; }

int KsNode::getByName(const KbName& name, KsNodeList& list)
{
    std::vector<KsBase*> named;
    getNamed(name, named);
    int count = 0;
    for (KsBase* each : named) {
        if (!each->isOfType(getClassTypeId())) continue;
        list.append(static_cast<KsNode*>(each));
        ++count;
    }
    return count;
}

KsNode* KsNode::getByName(const KbName& name)
{
    return static_cast<KsNode*>(getFirstNamed(name, getClassTypeId()));
}

void KsNode::touch()
{
    const KsKeepAlive keep(this);
    markChanged();
    if (isNotifyEnabled()) tellSensors(nullptr);
}

// ---- actions -------------------------------------------------------------------------------

void KsNode::doAction(KsAction*) {}
void KsNode::getBoundingBox(KsGetBoundingBoxAction* action) { doAction(action); }
void KsNode::getMatrix(KsGetMatrixAction* action) { doAction(action); }
void KsNode::GLRender(KsRenderAction* action) { doAction(action); }
void KsNode::rayPick(KsRayPickAction* action) { doAction(action); }
void KsNode::handleEvent(KsHandleEventAction* action) { doAction(action); }
void KsNode::callback(KsCallbackAction* action) { doAction(action); }

void KsNode::search(KsSearchAction* action)
{
    if (action->matches(this)) action->addMatch();
}

void KsNode::write(KsWriteAction* action)
{
    KsOutput* out = action->getOutput();
    if (out->getStage() == KsOutput::COUNT_REFS) {
        addWriteReference(out);
        return;
    }
    if (writeHeader(out, isGroup())) return;
    getFieldData()->write(out, this);
    writeFooter(out);
}

// ---- parents -------------------------------------------------------------------------------

template <class Function> void KsNode::forEachParent(Function function) const
{
    if (!m_parents) return;
    if (!(m_parents & isTable)) {
        function(reinterpret_cast<KsNode*>(m_parents));
        return;
    }
    for (const auto& each : reinterpret_cast<ManyParents*>(m_parents & ~isTable)->counts)
        function(each.first);
}

void KsNode::addParent(KsNode* parent)
{
    if (!parent) return;
    parent->m_wasParent = true;
    if (!m_parents) {
        m_parents = reinterpret_cast<std::uintptr_t>(parent);
    } else {
        if (!(m_parents & isTable)) {
            auto* many = new ManyParents;
            many->counts.emplace(reinterpret_cast<KsNode*>(m_parents), 1);
            m_parents = reinterpret_cast<std::uintptr_t>(many) | isTable;
        }
        ++reinterpret_cast<ManyParents*>(m_parents & ~isTable)->counts[parent];
    }
    // Above a stale node everything is stale.
    if (m_stale) parent->markChanged();
}

void KsNode::removeParent(KsNode* parent)
{
    if (!(m_parents & isTable)) {
        if (m_parents == reinterpret_cast<std::uintptr_t>(parent)) m_parents = 0;
        return;
    }
    auto* many = reinterpret_cast<ManyParents*>(m_parents & ~isTable);
    const auto found = many->counts.find(parent);
    if (found == many->counts.end()) return;
    if (--found->second == 0) many->counts.erase(found);
    if (many->counts.size() != 1 || many->counts.begin()->second != 1) return;
    m_parents = reinterpret_cast<std::uintptr_t>(many->counts.begin()->first);
    delete many;
}

int KsNode::getNumParents() const
{
    if (!(m_parents & isTable)) return m_parents ? 1 : 0;
    return static_cast<int>(reinterpret_cast<ManyParents*>(m_parents & ~isTable)->counts.size());
}

KsNode* KsNode::getParent(int index) const
{
    KsNode* result = nullptr;
    int i = 0;
    forEachParent([&](KsNode* parent) {
        if (i++ == index) result = parent;
    });
    return result;
}

bool KsNode::isBelow(const KsNode* node) const
{
    UpwardWalk walk(const_cast<KsNode*>(this));
    while (const KsNode* each = walk.next()) {
        if (each == node) return true;
        const bool isOnly = !(each->m_parents & isTable);
        each->forEachParent([&](KsNode* parent) { walk.push(parent, isOnly); });
    }
    return false;
}

// ---- changes -------------------------------------------------------------------------------

void KsNode::markChanged()
{
    if (m_stale == StaleAll) return;
    std::vector<KsNode*> waiting{this};
    std::vector<KsNode*> observed;
    while (!waiting.empty()) {
        KsNode* node = waiting.back();
        waiting.pop_back();
        if (node->m_stale == StaleAll) continue;
        if (!(node->m_stale & StaleDraw) && node->m_watchers &&
            !node->m_watchers->observers.isEmpty())
            observed.push_back(node);
        node->m_stale = StaleAll;
        node->forEachParent([&waiting, node](KsNode* parent) {
            if (KsChildList* siblings = parent->getChildren()) siblings->childMarked(node);
            waiting.push_back(parent);
        });
    }
    if (observed.empty()) return;
    std::deque<KsKeepAlive> keep;
    for (KsNode* node : observed) keep.emplace_back(node);
    for (KsNode* node : observed) {
        if (!node->m_watchers) continue;
        node->m_watchers->observers.walk([](KsSceneObserver* observer) {
            observer->sceneChanged();
            return true;
        });
        node->dropWatchers();
    }
}

void KsNode::tellSensors(KsField* field)
{
    if (s_numSensors == 0) return;
    std::vector<KsNode*> watched;
    UpwardWalk walk(this);
    while (KsNode* node = walk.next()) {
        if (!node->isNotifyEnabled()) continue;
        if (node->m_watchers && !node->m_watchers->sensors.isEmpty()) watched.push_back(node);
        const bool isOnly = !(node->m_parents & isTable);
        node->forEachParent([&](KsNode* parent) { walk.push(parent, isOnly); });
    }
    if (watched.empty()) return;
    std::deque<KsKeepAlive> keep;
    keep.emplace_back(this);
    for (KsNode* node : watched) keep.emplace_back(node);
    for (KsNode* node : watched) {
        if (!node->m_watchers) continue;
        node->m_watchers->sensors.walk([this, field](KsNodeSensor* sensor) {
            sensor->notify(field, this);
            return true;
        });
        node->dropWatchers();
    }
}

KsNode::Watchers& KsNode::watchers()
{
    if (!m_watchers) m_watchers = new Watchers;
    return *m_watchers;
}

void KsNode::dropWatchers()
{
    if (!m_watchers) return;
    if (!m_watchers->sensors.isEmpty() || m_watchers->sensors.isWalking()) return;
    if (!m_watchers->observers.isEmpty() || m_watchers->observers.isWalking()) return;
    delete m_watchers;
    m_watchers = nullptr;
}

void KsNode::addObserver(KsSceneObserver* observer)
{
    if (observer) watchers().observers.add(observer);
}

void KsNode::removeObserver(KsSceneObserver* observer)
{
    if (!m_watchers) return;
    m_watchers->observers.remove(observer);
    dropWatchers();
}

void KsNode::addSensor(KsNodeSensor* sensor)
{
    if (!sensor) return;
    watchers().sensors.add(sensor);
    ++s_numSensors;
}

void KsNode::removeSensor(KsNodeSensor* sensor)
{
    if (!m_watchers || !m_watchers->sensors.contains(sensor)) return;
    --s_numSensors;
    m_watchers->sensors.remove(sensor);
    dropWatchers();
}

void KsNode::notifyDelete()
{
    while (KsNodeSensor* sensor = m_watchers ? m_watchers->sensors.any() : nullptr) {
        sensor->dyingReference();
        if (m_watchers && m_watchers->sensors.contains(sensor)) sensor->detach();
    }
}

// Children, where there are none.

namespace {

void refuseChild(const char* where, const KsNode* node)
{
    KsDebugError::post(where, "a %s holds no children", node->getTypeId().getName().getString());
}

} // namespace

void KsNode::internalAddChild(KsNode*) { refuseChild("KsNode::internalAddChild", this); }

void KsNode::internalInsertChild(KsNode*, int) { refuseChild("KsNode::internalInsertChild", this); }

KsNode* KsNode::internalGetChild(int) const
{
    refuseChild("KsNode::internalGetChild", this);
    return nullptr;
}

int KsNode::internalFindChild(const KsNode*) const { return -1; }

void KsNode::internalRemoveChild(KsNode*) { refuseChild("KsNode::internalRemoveChild", this); }

void KsNode::internalRemoveChild(int) { refuseChild("KsNode::internalRemoveChild", this); }

void KsNode::internalRemoveAllChildren() {}

void KsNode::internalReplaceChild(KsNode*, KsNode*)
{
    refuseChild("KsNode::internalReplaceChild", this);
}

void KsNode::internalReplaceChild(int, KsNode*)
{
    refuseChild("KsNode::internalReplaceChild", this);
}
