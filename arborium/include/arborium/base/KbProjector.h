#pragma once

#include <arborium/base/KbMatrix.h>
#include <arborium/base/KbViewVolume.h>

class KbLine;

/// Turns points of the screen into points of a shape in a working space, such as the space of a
/// dragger.
class ARBORIUM_API KbProjector {
public:
    virtual ~KbProjector();

    /// What the screen shows, in world space. The volume is copied.
    void setViewVolume(const KbViewVolume& volume) { m_viewVolume = volume; }
    const KbViewVolume& getViewVolume() const { return m_viewVolume; }
    /// The matrix from the working space to the world. The identity by default. With one that
    /// cannot be inverted nothing is projected.
    void setWorkingSpace(const KbMatrix& space);
    const KbMatrix& getWorkingSpace() const { return m_workingToWorld; }

    /// The point of the shape, in working space, under a point of the screen (0 to 1 from the lower
    /// left corner). Where there is none (a view along the shape, a shape behind the eye) it is the
    /// last point that there was, and before any the point of the shape nearest to the origin. A
    /// view volume that is not set counts as the cube of -1 to 1.
    KbVec3f project(const KbVec2f& point);
    /// The same for a ray in world space.
    KbVec3f project(const KbLine& worldRay);
    /// False, with `result` untouched, where there is no such point: also for a working space whose
    /// matrix cannot be inverted.
    bool tryProject(const KbVec2f& point, KbVec3f& result) const;
    bool tryProject(const KbLine& worldRay, KbVec3f& result) const;
    /// The point of the shape for a ray in working space, also behind its beginning. FALSE, with
    /// `result` untouched, for none.
    bool intersect(const KbLine& ray, KbVec3f& result) const { return intersectShape(ray, result); }

    /// From the point under `from` to the one under `to`, in working space.
    KbVec3f getVector(const KbVec2f& from, const KbVec2f& to);
    /// From the start position, by default the last projected point, to the one under `to`, which
    /// becomes the start of the next.
    KbVec3f getVector(const KbVec2f& to);
    /// Under a point of the screen, or in working space.
    void setStartPosition(const KbVec2f& point) { m_last = project(point); }
    void setStartPosition(const KbVec3f& point) { m_last = point; }

    /// A projector of the same kind and state; the caller deletes it.
    virtual KbProjector* copy() const = 0;

protected:
    /// Subclasses copy and assign themselves; a projector of unknown kind is copied by `copy`.
    KbProjector() = default;
    KbProjector(const KbProjector&) = default;
    KbProjector& operator=(const KbProjector&) = default;

    /// The point of the shape that the ray, in working space, means; FALSE, with `result`
    /// untouched, if there is none.
    virtual bool intersectShape(const KbLine& ray, KbVec3f& result) const = 0;
    /// Makes `point`, in working space, the start position and what `project` falls back to.
    void restartAt(const KbVec3f& point) { m_last = point; }
    /// The direction from a point of the working space to the eye, of length 1.
    KbVec3f getEyeDirection(const KbVec3f& at) const;

private:
    KbViewVolume m_viewVolume;
    KbMatrix m_workingToWorld, m_worldToWorking;
    bool m_hasSpace = true;
    KbVec3f m_last;
};
