#include <arborium/base/KbMatrix.h>
#include <arborium/base/KbRotation.h>

#include <algorithm>

namespace {

bool normalize(double (&q)[4])
{
    const double length = std::sqrt(q[0] * q[0] + q[1] * q[1] + q[2] * q[2] + q[3] * q[3]);
    if (!(length > 0) || !std::isfinite(length)) return false;
    for (double& v : q) v /= length;
    return true;
}

} // namespace

KbRotation& KbRotation::setValue(float x, float y, float z, float w)
{
    double q[4] = {x, y, z, w};
    if (!normalize(q)) return *this = KbRotation();
    for (int i = 0; i < 4; ++i) m_quaternion[i] = static_cast<float>(q[i]);
    return *this;
}

KbRotation& KbRotation::setValue(const KbVec3f& axis, float radians)
{
    // Rounded once only, so that axis and angle come back as they were where they can.
    double q[4] = {axis[0], axis[1], axis[2], 0};
    if (!normalize(q) || !std::isfinite(radians)) return *this = KbRotation();
    const double half = radians * 0.5;
    for (int i = 0; i < 3; ++i) m_quaternion[i] = static_cast<float>(q[i] * std::sin(half));
    m_quaternion[3] = static_cast<float>(std::cos(half));
    return *this;
}

KbRotation& KbRotation::setValue(const KbVec3f& from, const KbVec3f& to)
{
    KbVec3f a(from), b(to);
    if (a.normalize() == 0 || b.normalize() == 0) return *this = KbRotation();
    const float cosine = a.dot(b);
    if (cosine < -0.99999f) {
        // Half a turn about any axis perpendicular to both.
        KbVec3f axis = a.cross(std::fabs(a[0]) < 0.9f ? KbVec3f(1, 0, 0) : KbVec3f(0, 1, 0));
        axis.normalize();
        const KbVec3f sideways = a.cross(b);
        if (sideways.sqrLength() == 0) return setValue(axis[0], axis[1], axis[2], 0);
        return setValue(sideways, static_cast<float>(std::atan2(sideways.length(), cosine)));
    }
    const KbVec3f axis = a.cross(b);
    return setValue(axis[0], axis[1], axis[2], 1.0f + cosine);
}

KbRotation& KbRotation::setValue(const KbMatrix& m)
{
    // The largest of the four components comes from the diagonal, the others by division by it.
    const double xx = m[0][0], yy = m[1][1], zz = m[2][2];
    const double squares[4] = {1 + xx - yy - zz, 1 - xx + yy - zz, 1 - xx - yy + zz,
                               1 + xx + yy + zz};
    const int k = static_cast<int>(std::max_element(squares, squares + 4) - squares);
    const double xy = static_cast<double>(m[0][1]) + m[1][0],
                 dz = static_cast<double>(m[0][1]) - m[1][0];
    const double yz = static_cast<double>(m[1][2]) + m[2][1],
                 dx = static_cast<double>(m[1][2]) - m[2][1];
    const double zx = static_cast<double>(m[2][0]) + m[0][2],
                 dy = static_cast<double>(m[2][0]) - m[0][2];
    const double s = squares[k];
    switch (k) {
    case 0:
        return setValue(static_cast<float>(s), static_cast<float>(xy), static_cast<float>(zx),
                        static_cast<float>(dx));
    case 1:
        return setValue(static_cast<float>(xy), static_cast<float>(s), static_cast<float>(yz),
                        static_cast<float>(dy));
    case 2:
        return setValue(static_cast<float>(zx), static_cast<float>(yz), static_cast<float>(s),
                        static_cast<float>(dz));
    default:
        return setValue(static_cast<float>(dx), static_cast<float>(dy), static_cast<float>(dz),
                        static_cast<float>(s));
    }
}

void KbRotation::getValue(float& x, float& y, float& z, float& w) const
{
    x = m_quaternion[0];
    y = m_quaternion[1];
    z = m_quaternion[2];
    w = m_quaternion[3];
}

void KbRotation::getValue(KbVec3f& axis, float& radians) const
{
    axis = KbVec3f(m_quaternion);
    const double x = axis[0], y = axis[1], z = axis[2];
    if (axis.normalize() == 0) {
        axis.setValue(0, 0, 1);
        radians = 0;
        return;
    }
    radians = static_cast<float>(2 * std::atan2(std::sqrt(x * x + y * y + z * z), m_quaternion[3]));
}

void KbRotation::getValue(KbMatrix& matrix) const
{
    const double x = m_quaternion[0], y = m_quaternion[1], z = m_quaternion[2], w = m_quaternion[3];
    const auto f = [](double v) { return static_cast<float>(v); };
    matrix = KbMatrix(f(1 - 2 * (y * y + z * z)), f(2 * (x * y + z * w)), f(2 * (z * x - y * w)), 0,
                      f(2 * (x * y - z * w)), f(1 - 2 * (z * z + x * x)), f(2 * (y * z + x * w)), 0,
                      f(2 * (z * x + y * w)), f(2 * (y * z - x * w)), f(1 - 2 * (y * y + x * x)), 0,
                      0, 0, 0, 1);
}

KbRotation& KbRotation::invert()
{
    for (int i = 0; i < 3; ++i)
        if (m_quaternion[i] != 0.0f) // no rotation stays the same bits
            m_quaternion[i] = -m_quaternion[i];
    return *this;
}

KbRotation& KbRotation::operator*=(const KbRotation& rotation)
{
    // The quaternion of what comes last stands on the left.
    const float *b = m_quaternion, *a = rotation.m_quaternion;
    return setValue(a[3] * b[0] + a[0] * b[3] + a[1] * b[2] - a[2] * b[1],
                    a[3] * b[1] - a[0] * b[2] + a[1] * b[3] + a[2] * b[0],
                    a[3] * b[2] + a[0] * b[1] - a[1] * b[0] + a[2] * b[3],
                    a[3] * b[3] - a[0] * b[0] - a[1] * b[1] - a[2] * b[2]);
}

KbRotation& KbRotation::scaleAngle(float factor)
{
    KbVec3f axis;
    float radians;
    getValue(axis, radians);
    return setValue(axis, radians * factor);
}

void KbRotation::multVec(const KbVec3f& source, KbVec3f& result) const
{
    const KbVec3f axis(m_quaternion);
    const KbVec3f sideways = axis.cross(source) * 2.0f;
    result = source + sideways * m_quaternion[3] + axis.cross(sideways);
}

KbRotation KbRotation::slerp(const KbRotation& from, const KbRotation& to, float t)
{
    double cosine = 0;
    for (int i = 0; i < 4; ++i)
        cosine += static_cast<double>(from.m_quaternion[i]) * to.m_quaternion[i];
    const double sign = cosine < 0 ? -1 : 1;
    cosine = std::min(cosine * sign, 1.0);
    double a = 1.0 - t, b = t;
    const double angle = std::acos(cosine);
    if (angle > 1e-4) {
        a = std::sin(a * angle) / std::sin(angle);
        b = std::sin(b * angle) / std::sin(angle);
    }
    b *= sign;
    float q[4];
    for (int i = 0; i < 4; ++i)
        q[i] = static_cast<float>(a * from.m_quaternion[i] + b * to.m_quaternion[i]);
    return KbRotation(q[0], q[1], q[2], q[3]);
}

bool KbRotation::isIdentity() const
{
    return m_quaternion[0] == 0.0f && m_quaternion[1] == 0.0f && m_quaternion[2] == 0.0f;
}

bool KbRotation::equals(const KbRotation& rotation, float tolerance) const
{
    const KbVec4f a(m_quaternion), b(rotation.m_quaternion);
    return a.equals(b, tolerance) || a.equals(-b, tolerance);
}
