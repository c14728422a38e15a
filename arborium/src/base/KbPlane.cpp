#include <arborium/base/KbLine.h>
#include <arborium/base/KbMatrix.h>
#include <arborium/base/KbPlane.h>

namespace {

KbVec3f unitNormal(KbVec3f normal) { return normal.normalize() == 0 ? KbVec3f(0, 0, 1) : normal; }

} // namespace

KbPlane::KbPlane(const KbVec3f& normal, float distanceFromOrigin)
    : m_normal(unitNormal(normal)), m_distance(distanceFromOrigin)
{}

KbPlane::KbPlane(const KbVec3f& normal, const KbVec3f& point)
    : m_normal(unitNormal(normal)), m_distance(m_normal.dot(point))
{}

KbPlane::KbPlane(const KbVec3f& p0, const KbVec3f& p1, const KbVec3f& p2)
    : KbPlane((p1 - p0).cross(p2 - p0), p0)
{}

bool KbPlane::intersect(const KbLine& line, KbVec3f& point) const
{
    const float slope = m_normal.dot(line.getDirection());
    if (!(std::fabs(slope) > 1e-7f)) return false;
    const KbVec3f hit =
        line.getPosition() - line.getDirection() * (getDistance(line.getPosition()) / slope);
    if (!hit.isFinite()) return false;
    point = hit;
    return true;
}

bool KbPlane::intersect(const KbPlane& plane, KbLine& line) const
{
    const KbVec3f direction = m_normal.cross(plane.m_normal);
    const float square = direction.sqrLength();
    if (!(square > 1e-12f)) return false;
    const KbVec3f point = (plane.m_normal.cross(direction) * m_distance +
                           direction.cross(m_normal) * plane.m_distance) /
                          square;
    line.setPosDir(point, direction);
    return true;
}

void KbPlane::transform(const KbMatrix& matrix)
{
    if (!matrix.isInvertible()) return;
    // The plane is a column: the inverse undoes on it what the matrix does to the points.
    const KbMatrix inverse = matrix.inverse();
    double column[4];
    for (int i = 0; i < 4; ++i)
        column[i] = static_cast<double>(inverse[i][0]) * m_normal[0] +
                    static_cast<double>(inverse[i][1]) * m_normal[1] +
                    static_cast<double>(inverse[i][2]) * m_normal[2] -
                    static_cast<double>(inverse[i][3]) * m_distance;
    const double length =
        std::sqrt(column[0] * column[0] + column[1] * column[1] + column[2] * column[2]);
    if (!(length > 0) || !std::isfinite(length)) return;
    for (int i = 0; i < 3; ++i) m_normal[i] = static_cast<float>(column[i] / length);
    m_distance = static_cast<float>(-column[3] / length);
}
