#pragma once

#include <arborium/base/KbMatrix.h>
#include <arborium/base/KbViewVolume.h>
#include <arborium/base/KbViewportRegion.h>
#include <arborium/kits/KsInteractionKit.h>

#include <memory>

class KbLine;
class KsDragger;
class KsEvent;
class KsPath;

/// Gets the data that it was added with, and the dragger, which knows the event.
using KsDraggerCallback = void (*)(void* data, KsDragger* dragger);

/// A kit that can be dragged. A press of button 1 (or of a 3D pointer) on its geometry is a grab if
/// a callback is registered and no dragger further in on the pick path has one. Then the start
/// callbacks run, the motion callbacks while the pointer moves, and the finish callbacks at the
/// release; the grab is given back before the finish callbacks run, so that these may open a dialog
/// with an event loop of its own. A dragger that loses the grab before that, since it left the
/// scene or the grab was taken from it, gets no further callback, but `dragLost`. Other presses
/// during a drag are swallowed.
class ARBORIUM_API KsDragger : public KsInteractionKit {
    KS_KIT_HEADER(KsDragger);

public:
    KsDragger();

    // Callbacks run in the order in which they were added. They may add and remove callbacks (an
    // added one is first called for the next event), remove or release the dragger, and run event
    // loops. A null callback is ignored. Copies of a dragger have none.
    void addStartCallback(KsDraggerCallback function, void* data = nullptr);
    void addMotionCallback(KsDraggerCallback function, void* data = nullptr);
    void addFinishCallback(KsDraggerCallback function, void* data = nullptr);
    // The first one that was added with this data; nothing if there is none.
    void removeStartCallback(KsDraggerCallback function, void* data = nullptr);
    void removeMotionCallback(KsDraggerCallback function, void* data = nullptr);
    void removeFinishCallback(KsDraggerCallback function, void* data = nullptr);
    /// Of any of the three kinds; without one the dragger lets presses through.
    bool hasCallbacks() const;
    /// TRUE for the press of button 1 or of a 3D pointer. Null is none.
    static bool isPress(const KsEvent* event);

    // During a callback; null otherwise.
    /// The press, the move or the release.
    const KsEvent* getEvent() const;
    /// What hands it on, with the state in force in front of the dragger.
    KsHandleEventAction* getHandleEventAction() const;

    // From the start callbacks to the last finish callback; null, zero or the identity otherwise.
    /// The path of the press, down to the shape that was hit, through the whole drag.
    const KsPath* getPickPath() const;
    /// Where the press hit, in the space in which the dragger stands: without its own
    /// translations, so that a dragger does not tremble while it follows the pointer.
    KbVec3f getLocalStartingPoint() const;
    /// Where the press hit, in world space.
    KbVec3f getWorldStartingPoint() const;
    /// From the space in which the dragger stands to the world, as it is now: what stands above may
    /// have moved. The action adds nothing; it may be null.
    KbMatrix getLocalToWorldMatrix() const;
    KbMatrix getLocalToWorldMatrix(const KsHandleEventAction* action) const;
    /// The inverse; the identity where there is none.
    KbMatrix getWorldToLocalMatrix() const;
    /// The pointer, from (0, 0) at the lower left of the viewport to (1, 1). Zero outside of
    /// callbacks.
    KbVec2f getNormalizedLocaterPosition() const;
    /// The ray of a 3D pointer, in the space in which the dragger stands; the z axis if the present
    /// event is not that of a 3D pointer.
    KbLine getTrackerRay() const;
    /// That of the camera before the dragger; not set if there is none.
    const KbViewVolume& getViewVolume() const;
    /// That of the last event.
    const KbViewportRegion& getViewportRegion() const;
    /// From the press to the release, or until the grab is lost.
    bool isDragging() const { return !m_drag.expired(); }

    void handleEvent(KsHandleEventAction* action) override;

protected:
    ~KsDragger() override;
    /// The drag is over, and no release ended it: what it has changed for as long as it lasts is to
    /// be put back. Called once, behind the callback in which the grab was lost if it was in one.
    virtual void dragLost() {}

private:
    enum Phase { Start, Motion, Finish };
    struct Callbacks;
    struct Drag;
    void addCallback(Phase phase, KsDraggerCallback function, void* data);
    void removeCallback(Phase phase, KsDraggerCallback function, void* data);
    bool isHitFirst(KsHandleEventAction* action) const;
    void start(KsHandleEventAction* action);
    void run(Phase phase, KsHandleEventAction* action, const std::shared_ptr<Drag>& drag);
    const Drag& drag() const;

    std::unique_ptr<Callbacks> m_callbacks;
    // The grab owns the drag, since the drag's path holds this dragger.
    std::weak_ptr<Drag> m_drag;
    const Drag* m_told = nullptr; // the drag of the callback that runs
};
