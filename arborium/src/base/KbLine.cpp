#include <arborium/base/KbLine.h>

#include <algorithm>

void KbLine::setValue(const KbVec3f& p0, const KbVec3f& p1) { setPosDir(p0, p1 - p0); }

void KbLine::setPosDir(const KbVec3f& position, const KbVec3f& direction)
{
    m_position = position;
    m_direction = direction;
    if (m_direction.normalize() == 0) m_direction.setValue(0, 0, 0);
}

KbVec3f KbLine::getClosestPoint(const KbVec3f& point) const
{
    return m_position + m_direction * m_direction.dot(point - m_position);
}

bool KbLine::getClosestPoints(const KbLine& line2, KbVec3f& onThis, KbVec3f& onLine2) const
{
    const KbVec3f between = m_position - line2.m_position;
    const double b = m_direction.dot(line2.m_direction);
    const double d = m_direction.dot(between);
    const double e = line2.m_direction.dot(between);
    const double sine = m_direction.cross(line2.m_direction).sqrLength();
    if (!(sine > 1e-10)) {
        onThis = m_position;
        onLine2 = line2.getClosestPoint(m_position);
        return false;
    }
    onThis = m_position + m_direction * static_cast<float>((b * e - d) / sine);
    onLine2 = line2.m_position + line2.m_direction * static_cast<float>((e - b * d) / sine);
    return true;
}

bool KbLine::intersect(const KbVec3f& v0, const KbVec3f& v1, const KbVec3f& v2, KbVec3f& point,
                       KbVec3f& barycentric, bool& front) const
{
    struct Vector {
        double x, y, z;
        Vector(const KbVec3f& a, const KbVec3f& b)
            : x(static_cast<double>(a[0]) - b[0]), y(static_cast<double>(a[1]) - b[1]),
              z(static_cast<double>(a[2]) - b[2])
        {}
        Vector(double vx, double vy, double vz) : x(vx), y(vy), z(vz) {}
        Vector cross(const Vector& v) const
        {
            return Vector(y * v.z - z * v.y, z * v.x - x * v.z, x * v.y - y * v.x);
        }
        double dot(const Vector& v) const { return x * v.x + y * v.y + z * v.z; }
    };
    const Vector edge1(v1, v0), edge2(v2, v0), direction(m_direction, KbVec3f());
    const Vector p = direction.cross(edge2);
    const double det = edge1.dot(p);
    if (det == 0 || !std::isfinite(det)) return false;
    const Vector s(m_position, v0);
    const double u = s.dot(p) / det;
    const Vector q = s.cross(edge1);
    const double v = direction.dot(q) / det;
    const double t = edge2.dot(q) / det;
    // Two triangles that share an edge leave no gap between them.
    constexpr double slack = 1e-9;
    if (!(u >= -slack && v >= -slack && u + v <= 1 + slack && t >= 0)) return false;
    point = m_position + m_direction * static_cast<float>(t);
    barycentric.setValue(static_cast<float>(1 - u - v), static_cast<float>(u),
                         static_cast<float>(v));
    front = det > 0;
    return true;
}

bool KbLine::intersect(const KbBox3f& box, KbVec3f& enter, KbVec3f& exit, bool rayOnly) const
{
    if (box.isEmpty() || m_direction == KbVec3f()) return false;
    constexpr double infinity = std::numeric_limits<double>::infinity();
    double first = rayOnly ? 0 : -infinity, last = infinity;
    for (int i = 0; i < 3; ++i) {
        const double low = static_cast<double>(box.getMin()[i]) - m_position[i];
        const double high = static_cast<double>(box.getMax()[i]) - m_position[i];
        const double d = m_direction[i];
        if (d == 0) {
            if (!(low <= 0 && high >= 0)) return false;
            continue;
        }
        first = std::max(first, std::min(low / d, high / d));
        last = std::min(last, std::max(low / d, high / d));
    }
    if (!(first <= last)) return false;
    enter = m_position + m_direction * static_cast<float>(first);
    exit = m_position + m_direction * static_cast<float>(last);
    return true;
}

bool KbLine::intersect(const KbBox3f& box) const
{
    KbVec3f enter, exit;
    return intersect(box, enter, exit);
}
