#pragma once

#include <arborium/base/KbVec.h>

class KbLine;
class KbMatrix;

/// The plane of the points p with normal . p = distance. The xy plane by default.
class ARBORIUM_API KbPlane {
public:
    KbPlane() : m_normal(0, 0, 1) {}
    /// The normal need not have length 1; one of length zero gives (0, 0, 1).
    KbPlane(const KbVec3f& normal, float distanceFromOrigin);
    KbPlane(const KbVec3f& normal, const KbVec3f& point);
    /// The corners run counter-clockwise for someone whom the normal points at.
    KbPlane(const KbVec3f& p0, const KbVec3f& p1, const KbVec3f& p2);

    /// Of length 1.
    const KbVec3f& getNormal() const { return m_normal; }
    /// Along the normal: negative where the normal points to the origin.
    float getDistanceFromOrigin() const { return m_distance; }
    /// With its sign: positive on the side that the normal points to.
    float getDistance(const KbVec3f& point) const { return m_normal.dot(point) - m_distance; }
    /// Whether the point lies on the plane or on the side that the normal points to.
    bool isInHalfSpace(const KbVec3f& point) const { return getDistance(point) >= 0; }

    /// False, with `point` untouched, for a line parallel to the plane. The line counts in both
    /// directions.
    bool intersect(const KbLine& line, KbVec3f& point) const;
    /// The line that two planes share; false for parallel planes.
    bool intersect(const KbPlane& plane, KbLine& line) const;
    /// Moves the plane along with its points. A matrix that cannot be inverted changes nothing.
    void transform(const KbMatrix& matrix);
    /// Moves the plane along its normal.
    void offset(float distance) { m_distance += distance; }

    /// By normal and distance: the same points with the normal turned around are another plane.
    friend bool operator==(const KbPlane& a, const KbPlane& b)
    {
        return a.m_normal == b.m_normal && a.m_distance == b.m_distance;
    }
    friend bool operator!=(const KbPlane& a, const KbPlane& b) { return !(a == b); }

private:
    KbVec3f m_normal;
    float m_distance = 0;
};
