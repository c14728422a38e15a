#pragma once

#include <arborium/base/KbBox3f.h>
#include <arborium/base/KbVec.h>

/// A line without ends through a position, or a ray from it. The z axis by default.
class ARBORIUM_API KbLine {
public:
    KbLine() : m_direction(0, 0, 1) {}
    /// From `p0` towards `p1`. Two equal points give a line of no direction: nothing intersects it
    /// and each closest point is `p0`.
    KbLine(const KbVec3f& p0, const KbVec3f& p1) { setValue(p0, p1); }

    /// As the constructor.
    void setValue(const KbVec3f& p0, const KbVec3f& p1);
    /// The direction need not have length 1; one of no length gives a line of no direction.
    void setPosDir(const KbVec3f& position, const KbVec3f& direction);

    /// The point that it was made with: where a ray begins.
    const KbVec3f& getPosition() const { return m_position; }
    /// Of length 1, or zero for a line of no direction.
    const KbVec3f& getDirection() const { return m_direction; }

    /// The point of the line, in both directions, that is nearest to `point`.
    KbVec3f getClosestPoint(const KbVec3f& point) const;
    /// The points of the two lines that are nearest to each other. FALSE for parallel lines and for
    /// one of no direction, which yields this line's position and its closest point on `line2`.
    bool getClosestPoints(const KbLine& line2, KbVec3f& onThis, KbVec3f& onLine2) const;
    /// Where a ray meets a triangle (either side): the point, the weights of the corners and whether
    /// it met the front, that is the side from which the corners run counter-clockwise. FALSE, with
    /// the results untouched, where it does not.
    bool intersect(const KbVec3f& v0, const KbVec3f& v1, const KbVec3f& v2, KbVec3f& point,
                   KbVec3f& barycentric, bool& front) const;
    /// Whether the line, in both directions, meets the box; `enter` and `exit` are the ends of the
    /// piece inside, untouched where there is none. With `rayOnly` the ray alone counts, which may
    /// begin inside. An empty box is met by nothing.
    bool intersect(const KbBox3f& box, KbVec3f& enter, KbVec3f& exit, bool rayOnly = false) const;
    bool intersect(const KbBox3f& box) const;

private:
    KbVec3f m_position, m_direction;
};
