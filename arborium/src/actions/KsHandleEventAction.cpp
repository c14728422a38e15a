#include <arborium/actions/KsHandleEventAction.h>

#include <arborium/actions/KsRayPickAction.h>
#include <arborium/actions/KsState.h>
#include <arborium/base/KsDebugError.h>
#include <arborium/events/KsEvent.h>
#include <arborium/nodes/KsChildList.h>
#include <arborium/nodes/KsNode.h>

#include <algorithm>
#include <vector>

/// Who gets the events. The path holds the nodes; the data is the grabber's own.
struct KsHandleEventAction::Grab {
    explicit Grab(KsHandleEventAction* by) : action(by) { all().push_back(this); }
    ~Grab() { all().erase(std::find(all().begin(), all().end(), this)); }
    Grab(const Grab&) = delete;
    Grab& operator=(const Grab&) = delete;
    /// Of all actions.
    static std::vector<Grab*>& all()
    {
        static auto& grabs = *new std::vector<Grab*>;
        return grabs;
    }
    KsHandleEventAction* const action;
    KsRef<KsFullPath> path;
    std::shared_ptr<void> data;
};

/// One event on its way through a scene; another one may begin before it has ended.
struct KsHandleEventAction::Passage {
    KsNode* root = nullptr;
    const KsEvent* event = nullptr;
    bool isKeyboard = false;
    bool isHandled = false;
    bool isDirect = false;
    bool wasDelivered = false;
    std::unique_ptr<KsRayPickAction> pick;
    KsRef<KsFullPath> deferred;
    Passage* outer = nullptr;
};

namespace {

/// Whether each node of the path is still a child of the one before it.
bool isConnected(const KsFullPath& path)
{
    for (int i = 1; i < path.getLength(); ++i) {
        const KsChildList* children = path.getNode(i - 1)->getChildren();
        if (!children || children->find(path.getNode(i)) < 0) return false;
    }
    return true;
}

} // namespace

KsHandleEventAction::KsHandleEventAction(const KbViewportRegion& viewport) : m_viewport(viewport) {}

KsHandleEventAction::~KsHandleEventAction() = default;

KsType KsHandleEventAction::getClassTypeId()
{
    static const KsType type = KsType::createType(KsAction::getClassTypeId(), "HandleEventAction");
    return type;
}

void KsHandleEventAction::setHandled()
{
    m_handled = true;
    if (m_passage) m_passage->isHandled = true;
}

void KsHandleEventAction::setGrabber(KsNode* node, std::shared_ptr<void> data)
{
    // What the former grab held dies last: its end may reach this action.
    const std::unique_ptr<Grab> former = std::move(m_grab);
    if (!node) return;
    const int index = getCurPath()->findNode(node);
    if (index < 0) {
        KsDebugError::post("KsHandleEventAction::setGrabber",
                           "a %s grabs events that are not on their way to it",
                           node->getTypeId().getName().getString());
        return;
    }
    m_grab = std::make_unique<Grab>(this);
    m_grab->path = new KsFullPath(*getCurPath());
    m_grab->path->truncate(index + 1);
    m_grab->data = std::move(data);
}

KsNode* KsHandleEventAction::getGrabber() const
{
    return m_grab ? m_grab->path->getTail() : nullptr;
}

void KsHandleEventAction::releaseAllGrabs()
{
    const std::vector<Grab*> present = Grab::all();
    for (Grab* grab : present) {
        // The end of one may be that of another.
        const auto& left = Grab::all();
        if (std::find(left.begin(), left.end(), grab) != left.end()) grab->action->releaseGrabber();
    }
}

const KsPickedPoint* KsHandleEventAction::getPickedPoint()
{
    if (!m_passage || !m_passage->root || !m_event) return nullptr;
    if (!m_passage->pick) {
        m_passage->pick = std::make_unique<KsRayPickAction>(m_viewport);
        m_passage->pick->setRadius(m_pickRadius);
        if (const auto* tracker = ksCast<KsTrackerEvent>(m_event))
            m_passage->pick->setRay(tracker->getOrigin(), tracker->getDirection());
        else
            m_passage->pick->setPoint(m_event->getPosition());
        m_passage->pick->apply(m_passage->root);
    }
    return m_passage->pick->getPickedPoint();
}

void KsHandleEventAction::deferToCurrent()
{
    if (m_passage) m_passage->deferred = new KsFullPath(*getCurPath());
}

bool KsHandleEventAction::isDirect() const { return m_passage && m_passage->isDirect; }

void KsHandleEventAction::apply(KsNode* root) { pass(root, nullptr); }

void KsHandleEventAction::apply(KsPath* path) { pass(path ? path->getHead() : nullptr, path); }

void KsHandleEventAction::pass(KsNode* root, KsPath* path)
{
    m_handled = false;
    if (!m_event) return;
    const KsKeepAlive rootAlive(root);
    const KsKeepAlive pathAlive(path);
    Passage passage;
    passage.root = root;
    passage.event = m_event;
    passage.isKeyboard = m_event->isOfType(KsKeyboardEvent::getClassTypeId());
    passage.outer = m_passage;
    m_passage = &passage;

    bool isDone = false;
    if (m_grab && !passage.isKeyboard) {
        // Kept here, since the grabber may give it back.
        const KsRef<KsFullPath> way = m_grab->path;
        isDone = way->getHead() == root && handTo(*way);
        if (!isDone && m_grab && m_grab->path.get() == way.get()) releaseGrabber();
    }
    if (!isDone) {
        if (path)
            KsAction::apply(path);
        else
            KsAction::apply(root);
        if (passage.deferred && !passage.isHandled && !m_grab) handTo(*passage.deferred);
    }

    m_handled = passage.isHandled;
    m_passage = passage.outer;
    // The event of an inner event loop is gone now.
    if (m_passage) m_event = m_passage->event;
}

/// Hands the event to the last node of a path, with the state that the nodes on the way set. FALSE
/// if the way is broken or does not lead there any more.
bool KsHandleEventAction::handTo(const KsFullPath& path)
{
    if (!isConnected(path)) return false;
    const KsRef<KsFullPath> way(new KsFullPath(path));
    m_passage->isDirect = true;
    m_passage->wasDelivered = false;
    KsAction::apply(static_cast<KsPath*>(way.get()));
    m_passage->isDirect = false;
    return m_passage->wasDelivered;
}

void KsHandleEventAction::beginTraversal(KsNode* root)
{
    m_state->edit(m_state->viewport) = m_viewport;
    KsAction::beginTraversal(root);
}

void KsHandleEventAction::visit(KsNode* node)
{
    m_handled = m_passage && m_passage->isHandled; // an inner event loop may have left its own
    if (m_passage && m_passage->isDirect) {
        if (getPathCode() == BELOW_PATH) {
            m_passage->wasDelivered = true;
            node->handleEvent(this);
        } else {
            node->doAction(this);
        }
    } else if (m_handled && !m_passage->isKeyboard) {
        terminate();
    } else {
        node->handleEvent(this);
    }
}
