#pragma once

#include <arborium/actions/KsAction.h>
#include <arborium/base/KbViewportRegion.h>

#include <memory>

class KsEvent;
class KsPickedPoint;

/// Hands an event to a scene. The same road serves a viewer, tests and automation:
///
///     KsHandleEventAction action(viewport);
///     KsMouseButtonEvent press(KsMouseButtonEvent::BUTTON1, KsButtonEvent::DOWN, {120, 80});
///     action.setEvent(&press);
///     action.apply(root);
///
/// An event passes the nodes in traversal order until one handles it; keyboard events pass them
/// all. A press thus reaches the event callbacks of the whole scene before a dragger grabs. While a
/// node has grabbed, it alone gets the events other than those of the keyboard.
///
/// What is called may run an event loop of its own, and so apply the same action again.
class ARBORIUM_API KsHandleEventAction : public KsAction {
public:
    explicit KsHandleEventAction(const KbViewportRegion& viewport);
    ~KsHandleEventAction() override;
    KsType getTypeId() const override { return getClassTypeId(); }
    static KsType getClassTypeId();

    /// The window that positions of events refer to. Nodes find it in the state.
    void setViewportRegion(const KbViewportRegion& viewport) { m_viewport = viewport; }
    const KbViewportRegion& getViewportRegion() const { return m_viewport; }
    /// Not owned; must live until `apply` returns. Without an event `apply` does nothing.
    void setEvent(const KsEvent* event) { m_event = event; }
    const KsEvent* getEvent() const { return m_event; }

    /// A handled event goes no further, except that keyboard events reach every node.
    void setHandled();
    /// Whether the present event, or that of the last `apply`, was handled.
    bool isHandled() const { return m_handled; }

    /// All further events go to `node`, which stands on the path of the present traversal, with the
    /// state that is in force there, until it releases them or null is set. A node that has left
    /// the scene, or is not traversed any more, or whose scene is not the one that is applied to,
    /// loses its grab at the next event. `data` lives as long as the grab.
    void setGrabber(KsNode* node, std::shared_ptr<void> data = nullptr);
    /// Nothing if nobody has grabbed.
    void releaseGrabber() { setGrabber(nullptr); }
    /// Null if nobody has.
    KsNode* getGrabber() const;
    /// Releases the grabs of all actions: an event loop is about to begin that will get the events
    /// instead.
    static void releaseAllGrabs();

    /// What the pointer of the event points at, found once per event; null if nothing, and while no
    /// event is handed on. The action owns it until `apply` returns.
    const KsPickedPoint* getPickedPoint();
    /// How far from a line or point, in pixels, the pointer still hits it. Default 5; below 0 is as
    /// 0.
    void setPickRadius(float pixels) { m_pickRadius = pixels; }

    // For nodes that grab.
    /// Hands the event to the present node once more when it has passed the scene and nobody has
    /// handled it; the last node that asks gets it. `isDirect` is TRUE then, and for what goes to
    /// the grabber: the traversal visits nothing but that node.
    void deferToCurrent();
    /// FALSE while the event passes the scene, and outside of traversals.
    bool isDirect() const;

    void apply(KsNode* root) override;
    void apply(KsPath* path) override;
    using KsAction::apply;

protected:
    void beginTraversal(KsNode* root) override;
    void visit(KsNode* node) override;

private:
    struct Passage;
    struct Grab;
    void pass(KsNode* root, KsPath* path);
    bool handTo(const KsFullPath& path);

    std::unique_ptr<Grab> m_grab;
    Passage* m_passage = nullptr;
    KbViewportRegion m_viewport;
    const KsEvent* m_event = nullptr;
    float m_pickRadius = 5;
    bool m_handled = false;
};
