#pragma once

#include <arborium/actions/KsAction.h>
#include <arborium/actions/KsDetail.h>
#include <arborium/base/KbBox3f.h>
#include <arborium/base/KbLine.h>
#include <arborium/base/KbMatrix.h>
#include <arborium/base/KbViewportRegion.h>

#include <memory>
#include <vector>

/// One hit of a pick.
class ARBORIUM_API KsPickedPoint {
public:
    /// Copies the path. Pick actions make hits; a program may make one of its own.
    KsPickedPoint(const KsFullPath& path, const KbVec3f& worldPoint, const KbVec3f& worldNormal,
                  float distance, const KbMatrix& objectToWorld);
    /// With copies of the path and of the details.
    KsPickedPoint(const KsPickedPoint& other);
    ~KsPickedPoint();

    const KbVec3f& getPoint() const { return m_point; } ///< In world space.
    /// Of the surface, in world space, of length 1; it may look away from the ray.
    const KbVec3f& getNormal() const { return m_normal; }
    /// The point in the space of the shape that was hit.
    KbVec3f getObjectPoint() const;
    float getDistance() const { return m_distance; } ///< Along the ray, in world units.
    /// From the root of the pick to the shape. The point owns it.
    KsPath* getPath() const { return m_path.get(); }
    /// What is known of the hit at `node`, or null. The point owns its details.
    const KsDetail* getDetail(const KsNode* node) const;
    /// Takes the detail over, in place of an earlier one at that node; null takes that away.
    void setDetail(KsDetail* detail, const KsNode* node);

private:
    KbVec3f m_point;
    KbVec3f m_normal;
    float m_distance;
    KbMatrix m_objectToWorld;
    KsRef<KsPath> m_path;
    std::vector<std::pair<const KsNode*, std::unique_ptr<KsDetail>>> m_details;
};

/// Finds what a ray meets: the nearest shape, or all of them. Of hits at the same distance (to one
/// millionth) the one that was met first in the traversal counts as nearer.
class ARBORIUM_API KsRayPickAction : public KsAction {
public:
    explicit KsRayPickAction(const KbViewportRegion& viewport);
    ~KsRayPickAction() override;
    KsType getTypeId() const override { return getClassTypeId(); }
    static KsType getClassTypeId();

    /// The pixel, from the lower left corner of the viewport; needs a camera in the scene, and
    /// meets what stands behind it. One that is no number meets nothing.
    void setPoint(const KbVec2f& pixel);
    /// The same from (0, 0) to (1, 1). The last call of the three counts.
    void setNormalizedPoint(const KbVec2f& point);
    /// A ray in world space; hits before `nearDistance` or beyond `farDistance` (-1: none) do not
    /// count. The direction may have any length but 0; with a ray that is no number nothing is met.
    void setRay(const KbVec3f& start, const KbVec3f& direction, float nearDistance = 0,
                float farDistance = -1);
    /// How far from a line or point, in pixels, a pick still hits it. Default 5. A ray of `setRay`
    /// counts as that of a perspective camera of default opening at the ray's start.
    void setRadius(float pixels) { m_radius = pixels; }
    /// Whether all hits are wanted, or only the nearest one (the default).
    void setPickAll(bool all) { m_pickAll = all; }
    bool isPickAll() const { return m_pickAll; }
    /// The window that pixels are of.
    void setViewportRegion(const KbViewportRegion& viewport) { m_viewport = viewport; }

    /// The hit that is nearest, or has `index` nearer ones; null if there is none. The action owns
    /// it until the next apply.
    KsPickedPoint* getPickedPoint(int index = 0) const;
    /// How many hits there are: 0 or 1 unless all are wanted.
    int getPickedPointsListLength() const;
    /// The hits in the order in which they were found so far, during a traversal too: with
    /// `setPickAll` off only nearest-so-far hits are kept, at index 0.
    KsPickedPoint* getUnsortedPickedPoint(int index) const;

    // For nodes.
    /// FALSE until a ray is known: nothing can be picked yet.
    bool hasRay() const { return m_hasRay; }
    /// The ray in the space of the present model matrix. Of no direction if the matrix cannot be
    /// inverted or there is no ray: then nothing intersects it.
    const KbLine& getObjectLine();
    /// FALSE if the ray misses this box (in object space) by more than the radius, or meets it
    /// behind the nearest hit while only that is wanted: nothing in it can count.
    bool intersectBox(const KbBox3f& box);
    /// Reports a hit in object space; it counts if it lies in reach, before clip planes, and is
    /// nearer than what there is (or all are wanted). In reach is what is not farther from the ray
    /// than the radius: of a line or a point, report what is nearest to the ray. Null if the hit
    /// does not count; nothing counts in state UNPICKABLE.
    KsPickedPoint* addIntersection(const KbVec3f& objectPoint, const KbVec3f& objectNormal);
    /// Reports where the ray enters a box in object space or, if that does not count, where it
    /// leaves it: what a shape does in pick style BOUNDING_BOX.
    KsPickedPoint* addBoxIntersection(const KbBox3f& objectBox);

    // Plumbing for cameras and lists of children.
    /// Takes the ray from the camera in force.
    void computeRay();
    bool passBy(const KbBox3f& box) override;

protected:
    void beginTraversal(KsNode* root) override;
    void visit(KsNode* node) override;

private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
    KbViewportRegion m_viewport;
    float m_radius = 5; // pixels
    bool m_pickAll = false;
    bool m_hasRay = false;
};
