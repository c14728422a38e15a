#include <arborium/kits/KsDragger.h>

#include <arborium/actions/KsGetMatrixAction.h>
#include <arborium/actions/KsHandleEventAction.h>
#include <arborium/actions/KsRayPickAction.h>
#include <arborium/actions/KsState.h>
#include <arborium/base/KbLine.h>
#include <arborium/events/KsEvent.h>

#include <algorithm>
#include <vector>

KS_KIT_SOURCE(KsDragger, KsInteractionKit)

struct KsDragger::Callbacks {
    struct Entry {
        KsDraggerCallback function;
        void* data;
    };
    std::vector<Entry> lists[3];
    int depth = 0; // of the calls that run: removed entries keep their place meanwhile

    void tidy()
    {
        for (auto& list : lists)
            list.erase(std::remove_if(list.begin(), list.end(),
                                      [](const Entry& e) { return !e.function; }),
                       list.end());
    }
};

/// One drag, from the press to the last finish callback. It dies with the grab.
struct KsDragger::Drag {
    Drag() = default;
    Drag(const Drag&) = delete;
    Drag& operator=(const Drag&) = delete;
    ~Drag()
    {
        // Unless the dragger is dragged anew.
        if (dragger && !wasReleased && !dragger->isDragging()) dragger->dragLost();
    }

    KsDragger* dragger = nullptr; // held by the path
    bool wasReleased = false;
    KsRef<KsPath> pickPath;
    KsRef<KsPath> path; // to the dragger
    KbVec3f localStart{0, 0, 0};
    KbVec3f worldStart{0, 0, 0};
    KbViewVolume viewVolume;
    KbViewportRegion viewport;
    bool byTracker = false;
    // During callbacks.
    KsHandleEventAction* action = nullptr;
    const KsEvent* event = nullptr;

    KbMatrix localToWorld() const
    {
        if (!path) return KbMatrix::identity();
        KsGetMatrixAction matrix(viewport);
        matrix.apply(path.get());
        return matrix.getMatrix();
    }
};

KsDragger::KsDragger() { KsInstanceBuilder build(classRecord, this); }

KsDragger::~KsDragger() = default;

// Callbacks.

void KsDragger::addCallback(Phase phase, KsDraggerCallback function, void* data)
{
    if (!function) return;
    if (!m_callbacks) m_callbacks = std::make_unique<Callbacks>();
    m_callbacks->lists[phase].push_back({function, data});
}

void KsDragger::removeCallback(Phase phase, KsDraggerCallback function, void* data)
{
    if (!m_callbacks || !function) return;
    auto& list = m_callbacks->lists[phase];
    const auto found = std::find_if(list.begin(), list.end(), [&](const Callbacks::Entry& e) {
        return e.function == function && e.data == data;
    });
    if (found == list.end()) return;
    if (m_callbacks->depth > 0)
        found->function = nullptr;
    else
        list.erase(found);
}

void KsDragger::addStartCallback(KsDraggerCallback function, void* data)
{
    addCallback(Start, function, data);
}

void KsDragger::addMotionCallback(KsDraggerCallback function, void* data)
{
    addCallback(Motion, function, data);
}

void KsDragger::addFinishCallback(KsDraggerCallback function, void* data)
{
    addCallback(Finish, function, data);
}

void KsDragger::removeStartCallback(KsDraggerCallback function, void* data)
{
    removeCallback(Start, function, data);
}

void KsDragger::removeMotionCallback(KsDraggerCallback function, void* data)
{
    removeCallback(Motion, function, data);
}

void KsDragger::removeFinishCallback(KsDraggerCallback function, void* data)
{
    removeCallback(Finish, function, data);
}

bool KsDragger::hasCallbacks() const
{
    if (!m_callbacks) return false;
    for (const auto& list : m_callbacks->lists)
        for (const auto& entry : list)
            if (entry.function) return true;
    return false;
}

// What callbacks ask for.

const KsDragger::Drag& KsDragger::drag() const
{
    static const Drag& none = *new Drag;
    if (m_told) return *m_told;
    const auto present = m_drag.lock();
    return present ? *present : none; // the grab goes on holding it
}

const KsEvent* KsDragger::getEvent() const { return drag().event; }
KsHandleEventAction* KsDragger::getHandleEventAction() const { return drag().action; }
const KsPath* KsDragger::getPickPath() const { return drag().pickPath; }
KbVec3f KsDragger::getLocalStartingPoint() const { return drag().localStart; }
KbVec3f KsDragger::getWorldStartingPoint() const { return drag().worldStart; }
KbMatrix KsDragger::getLocalToWorldMatrix() const { return drag().localToWorld(); }

KbMatrix KsDragger::getLocalToWorldMatrix(const KsHandleEventAction*) const
{
    return drag().localToWorld();
}

KbMatrix KsDragger::getWorldToLocalMatrix() const { return drag().localToWorld().inverse(); }

KbVec2f KsDragger::getNormalizedLocaterPosition() const
{
    const Drag& d = drag();
    return d.event ? d.event->getNormalizedPosition(d.viewport) : KbVec2f(0, 0);
}

KbLine KsDragger::getTrackerRay() const
{
    const auto* tracker = ksCast<KsTrackerEvent>(drag().event);
    if (!tracker) return {};
    KbLine ray;
    ray.setPosDir(tracker->getOrigin(), tracker->getDirection());
    KbLine local;
    getWorldToLocalMatrix().multLineMatrix(ray, local);
    return local;
}

const KbViewVolume& KsDragger::getViewVolume() const { return drag().viewVolume; }
const KbViewportRegion& KsDragger::getViewportRegion() const { return drag().viewport; }

// Events.

bool KsDragger::isPress(const KsEvent* event)
{
    const auto* tracker = ksCast<KsTrackerEvent>(event);
    return tracker ? tracker->getAction() == KsTrackerEvent::PRESS
                   : KsMouseButtonEvent::isButtonPress(event, KsMouseButtonEvent::BUTTON1);
}

namespace {

bool isRelease(const KsEvent* event)
{
    const auto* tracker = ksCast<KsTrackerEvent>(event);
    return tracker ? tracker->getAction() == KsTrackerEvent::RELEASE
                   : KsMouseButtonEvent::isButtonRelease(event, KsMouseButtonEvent::BUTTON1);
}

bool isMotion(const KsEvent* event)
{
    const auto* tracker = ksCast<KsTrackerEvent>(event);
    return tracker ? tracker->getAction() == KsTrackerEvent::MOVE
                   : event->isOfType(KsLocation2Event::getClassTypeId());
}

} // namespace

void KsDragger::handleEvent(KsHandleEventAction* action)
{
    const KsEvent* event = action->getEvent();
    if (!action->isDirect()) {
        KsInteractionKit::handleEvent(action);
        if (!action->isHandled() && !action->getGrabber() && hasCallbacks() && isPress(event) &&
            isHitFirst(action))
            action->deferToCurrent();
        return;
    }
    if (action->getGrabber() != this) {
        start(action);
        return;
    }
    action->setHandled();
    const auto present = m_drag.lock();
    if (!present || present->byTracker != event->isOfType(KsTrackerEvent::getClassTypeId())) return;
    if (isRelease(event)) {
        present->wasReleased = true;
        action->releaseGrabber();
        run(Finish, action, present);
    } else if (isMotion(event)) {
        run(Motion, action, present);
    }
}

/// Whether the pointer is on this dragger, as it stands where the traversal is, and on none with
/// callbacks further in.
bool KsDragger::isHitFirst(KsHandleEventAction* action) const
{
    const KsPickedPoint* hit = action->getPickedPoint();
    const KsPath* path = hit ? hit->getPath() : nullptr;
    if (!path) return false;
    int index = path->findNode(this);
    if (index >= 0) {
        const KsFullPath* here = action->getCurPath();
        for (int i = 0; i < here->getLength(); ++i)
            if (here->getNode(i) != path->getNode(i)) return false;
    } else {
        index = findPartAsPath(*path);
    }
    if (index < 0) return false;
    while (const KsNode* node = path->getNode(++index)) {
        const auto* dragger = ksCast<KsDragger>(node);
        if (dragger && dragger->hasCallbacks()) return false;
    }
    return true;
}

void KsDragger::start(KsHandleEventAction* action)
{
    const KsPickedPoint* hit = action->getPickedPoint();
    if (!hit || !isPress(action->getEvent())) return;
    const auto made = std::make_shared<Drag>();
    made->pickPath = hit->getPath()->copy();
    made->path = action->getCurPath()->copy();
    made->dragger = this;
    made->byTracker = action->getEvent()->isOfType(KsTrackerEvent::getClassTypeId());
    made->viewport = action->getViewportRegion();
    made->worldStart = hit->getPoint();
    made->localToWorld().inverse().multVecMatrix(made->worldStart, made->localStart);
    m_drag = made;
    action->setGrabber(this, made);
    action->setHandled();
    run(Start, action, made);
}

void KsDragger::run(Phase phase, KsHandleEventAction* action, const std::shared_ptr<Drag>& drag)
{
    const KsKeepAlive alive(this);
    const std::shared_ptr<Drag> present = drag;
    KsHandleEventAction* const outerAction = present->action;
    const KsEvent* const outerEvent = present->event;
    const Drag* const outerTold = m_told;
    present->action = action;
    present->event = action->getEvent();
    present->viewport = action->getViewportRegion();
    if (KsViewVolumeElement::isSet(action->getState()))
        present->viewVolume = KsViewVolumeElement::get(action->getState());
    m_told = present.get();

    if (m_callbacks) {
        ++m_callbacks->depth;
        const std::size_t count = m_callbacks->lists[phase].size();
        for (std::size_t i = 0; i < count; ++i) {
            const Callbacks::Entry entry = m_callbacks->lists[phase][i];
            if (entry.function) entry.function(entry.data, this);
        }
        if (--m_callbacks->depth == 0) m_callbacks->tidy();
    }

    m_told = outerTold;
    present->action = outerAction;
    present->event = outerEvent;
}
