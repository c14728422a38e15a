#pragma once

#include <arborium/base/KbBox3f.h>
#include <arborium/base/KbViewVolume.h>
#include <arborium/nodes/KsNode.h>

class KbViewportRegion;

/// Base of the cameras. A camera stands at `position`, looks along the negative z axis that
/// `orientation` turns, and shows what stands behind it in the scene. It is moved by the
/// transforms in front of it. It has no extent and is not picked; a pick at a pixel begins with it.
/// A camera that is nowhere (a position or a matrix that is not finite, or flat) sees nothing.
class ARBORIUM_API KsCamera : public KsNode {
    KS_NODE_HEADER(KsCamera);

public:
    KsSFVec3f position;       ///< Default (0, 0, 1).
    KsSFRotation orientation; ///< Default none.
    KsSFFloat aspectRatio; ///< Width by height where no window gives it. Default 1; not above 0: 1.
    KsSFFloat nearDistance;  ///< Nearer things are cut off. Default 1.
    KsSFFloat farDistance;   ///< Farther things are cut off. Default 10.
    KsSFFloat focalDistance; ///< To what the camera is meant to look at. Default 5.

    /// What the camera sees in a window of this proportion (width by height; 0: `aspectRatio`), in
    /// the space in which the camera stands.
    virtual KbViewVolume getViewVolume(float aspect = 0) const = 0;

    /// Moves the camera along its direction, and sets its distances and size, so that it shows the
    /// whole box with `slack` times the least size (1 if that is no positive number). An empty or
    /// infinite box changes nothing; a point can be shown.
    void viewAll(const KbBox3f& box, const KbViewportRegion& viewport, float slack = 1);
    /// The same for all below `root`; the camera may stand anywhere below it or outside. Null
    /// changes nothing.
    void viewAll(KsNode* root, const KbViewportRegion& viewport, float slack = 1);
    /// Turns the camera to `target`, with `up` upward as far as that goes. A target at the camera's
    /// position, or that is no number, changes nothing.
    void pointAt(const KbVec3f& target, const KbVec3f& up = {0, 1, 0});

    void doAction(KsAction* action) override;
    void getBoundingBox(KsGetBoundingBoxAction* action) override;
    void GLRender(KsRenderAction* action) override;
    void rayPick(KsRayPickAction* action) override;

protected:
    KsCamera();
    ~KsCamera() override;

    // Plumbing.
    /// Sets the fields that say how much is seen, for `corners` relative to the point that the
    /// camera looks at, x to its right, y up, z towards it. Returns the distance to that point.
    virtual float fit(const KbVec3f (&corners)[8], float aspect, float slack) = 0;
    /// Places a view volume that stands at the origin, and makes the values usable.
    KbViewVolume placed(KbViewVolume volume) const;
    float usableAspect(float aspect) const;

private:
    bool setViewVolume(KsAction* action);
};
