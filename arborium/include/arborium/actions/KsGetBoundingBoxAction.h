#pragma once

#include <arborium/actions/KsAction.h>
#include <arborium/base/KbBox3f.h>
#include <arborium/base/KbViewportRegion.h>

/// Computes the box of a scene in the space of its root, what clip planes cut off and what no
/// camera sees included. Separators keep their box until something below them changes.
class ARBORIUM_API KsGetBoundingBoxAction : public KsAction {
public:
    explicit KsGetBoundingBoxAction(const KbViewportRegion& viewport);
    KsType getTypeId() const override { return getClassTypeId(); }
    static KsType getClassTypeId();

    using KsAction::apply;
    /// The box around what all of the paths lead to.
    void apply(const KsPathList& paths) override;
    /// The window that nodes find in the state: what measures by it must report that it uses it.
    void setViewportRegion(const KbViewportRegion& viewport) { m_viewport = viewport; }
    /// The box of the last traversal; empty if nothing has an extent.
    KbBox3f getBoundingBox() const { return m_box; }
    /// Of the box; the origin if it is empty.
    KbVec3f getCenter() const { return m_box.getCenter(); }

    // For nodes.
    /// Adds a box given in the space of the present model matrix. An empty box, and one that would
    /// reach beyond all numbers, adds nothing; so does anything beside an applied path.
    void extendBy(const KbBox3f& localBox);
    /// Tells that a box depends on something of the state that was set at `depth`
    /// (`KsState::Element::setAt`): no separator that stands inside of that depth keeps its box.
    void usesStateOf(int depth)
    {
        if (depth < m_outermostUse) m_outermostUse = depth;
    }

    // Plumbing for separators and lists of children.
    bool passBy(const KbBox3f& box) override;
    /// Adds a box given in the space in which boxes are gathered: that of the root or, below a
    /// separator, of the separator. To be used with `exchange`.
    void extendByRootBox(const KbBox3f& box);
    /// Replaces the box gathered so far, and returns the former one: for nodes that keep the box
    /// of what is below them.
    KbBox3f exchange(const KbBox3f& box);
    /// TRUE if something in or below the present node changed since it was visited last.
    bool isNodeStale() const { return m_nodeStale; }
    /// The smallest depth reported since it was set; separators save and restore it.
    int m_outermostUse = 1 << 30;
    /// Whether a camera was met since it was cleared; separators save and restore it.
    bool m_metCamera = false;

protected:
    void beginTraversal(KsNode* root) override;
    void visit(KsNode* node) override;

private:
    KbViewportRegion m_viewport;
    KbBox3f m_box;
    bool m_nodeStale = true;
};
