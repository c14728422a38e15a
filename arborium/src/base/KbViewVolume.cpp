#include <arborium/base/KbBox2f.h>
#include <arborium/base/KbBox3f.h>
#include <arborium/base/KbLine.h>
#include <arborium/base/KbRotation.h>
#include <arborium/base/KbViewVolume.h>

#include <algorithm>

namespace {

float finiteOr(float value, float otherwise) { return std::isfinite(value) ? value : otherwise; }

// Moves two ends apart that are equal, by as much as a float at that place can show.
void widen(float& low, float& high)
{
    if (high == low) {
        const float step = std::max(std::fabs(low) * 1e-5f, 1e-5f);
        low -= step;
        high += step;
    }
}

KbVec3f corner(const KbBox3f& box, int i)
{
    return KbVec3f((i & 1 ? box.getMax() : box.getMin())[0],
                   (i & 2 ? box.getMax() : box.getMin())[1],
                   (i & 4 ? box.getMax() : box.getMin())[2]);
}

} // namespace

void KbViewVolume::ortho(float left, float right, float bottom, float top, float nearVal,
                         float farVal)
{
    *this = KbViewVolume();
    m_isSet = true;
    m_left = finiteOr(left, -1);
    m_right = finiteOr(right, 1);
    m_bottom = finiteOr(bottom, -1);
    m_top = finiteOr(top, 1);
    m_near = finiteOr(nearVal, -1);
    m_far = finiteOr(farVal, 1);
    widen(m_left, m_right);
    widen(m_bottom, m_top);
    if (m_far < m_near) std::swap(m_near, m_far);
    widen(m_near, m_far);
}

void KbViewVolume::frustum(float left, float right, float bottom, float top, float nearVal,
                           float farVal)
{
    ortho(left, right, bottom, top, nearVal, farVal);
    m_type = PERSPECTIVE;
    if (!(m_near > 0)) {
        // The pyramid keeps its opening: the rectangle stands at the near distance.
        m_near = m_far > 0 ? m_far * 1e-4f : 1e-4f;
        m_far = std::max(m_far, m_near * 10);
    }
}

void KbViewVolume::perspective(float fovy, float aspect, float nearVal, float farVal)
{
    constexpr float pi = 3.14159265f;
    const float angle = std::min(std::max(finiteOr(fovy, pi / 4), 1e-4f), pi - 1e-3f);
    const float ratio = aspect > 0 && std::isfinite(aspect) ? aspect : 1.0f;
    float farDist = finiteOr(farVal, 10);
    float nearDist = finiteOr(nearVal, 1);
    if (farDist < nearDist) std::swap(nearDist, farDist);
    if (!(nearDist > 0)) nearDist = farDist > 0 ? farDist * 1e-4f : 1e-4f;
    const float top = nearDist * std::tan(angle / 2);
    frustum(-top * ratio, top * ratio, -top, top, nearDist, std::max(farDist, nearDist));
}

void KbViewVolume::rotateCamera(const KbRotation& rotation)
{
    KbMatrix m;
    m.setRotate(rotation);
    transform(m);
}

void KbViewVolume::translateCamera(const KbVec3f& translation)
{
    KbMatrix m;
    m.setTranslate(translation);
    transform(m);
}

void KbViewVolume::transform(const KbMatrix& matrix)
{
    const KbMatrix moved = m_fromEye * matrix;
    if (!moved.isInvertible()) return;
    m_fromEye = moved;
    m_toEye = moved.inverse();
}

void KbViewVolume::scale(float factor)
{
    scaleWidth(factor);
    scaleHeight(factor);
}

void KbViewVolume::scaleWidth(float factor)
{
    if (!std::isfinite(factor) || factor == 0) return;
    const float middle = (m_left + m_right) / 2, half = (m_right - m_left) / 2 * factor;
    m_left = middle - half;
    m_right = middle + half;
    widen(m_left, m_right);
}

void KbViewVolume::scaleHeight(float factor)
{
    if (!std::isfinite(factor) || factor == 0) return;
    const float middle = (m_bottom + m_top) / 2, half = (m_top - m_bottom) / 2 * factor;
    m_bottom = middle - half;
    m_top = middle + half;
    widen(m_bottom, m_top);
}

KbViewVolume KbViewVolume::narrow(float left, float bottom, float right, float top) const
{
    KbViewVolume part(*this);
    part.m_left = m_left + (m_right - m_left) * finiteOr(left, 0);
    part.m_right = m_left + (m_right - m_left) * finiteOr(right, 1);
    part.m_bottom = m_bottom + (m_top - m_bottom) * finiteOr(bottom, 0);
    part.m_top = m_bottom + (m_top - m_bottom) * finiteOr(top, 1);
    widen(part.m_left, part.m_right);
    widen(part.m_bottom, part.m_top);
    return part;
}

KbMatrix KbViewVolume::getProjection() const
{
    const float w = m_right - m_left, h = m_top - m_bottom, d = m_far - m_near;
    const float x = (m_right + m_left) / w, y = (m_top + m_bottom) / h, z = (m_far + m_near) / d;
    if (m_type == ORTHOGRAPHIC)
        return KbMatrix(2 / w, 0, 0, 0, 0, 2 / h, 0, 0, 0, 0, -2 / d, 0, -x, -y, -z, 1);
    return KbMatrix(2 * m_near / w, 0, 0, 0, 0, 2 * m_near / h, 0, 0, x, y, -z, -1, 0, 0,
                    -2 * m_far * m_near / d, 0);
}

void KbViewVolume::getMatrices(KbMatrix& affine, KbMatrix& proj) const
{
    affine = m_toEye;
    proj = getProjection();
}

KbMatrix KbViewVolume::getMatrix() const { return m_toEye * getProjection(); }

void KbViewVolume::projectPointToLine(const KbVec2f& point, KbVec3f& nearPoint,
                                      KbVec3f& farPoint) const
{
    const float x = m_left + (m_right - m_left) * point[0];
    const float y = m_bottom + (m_top - m_bottom) * point[1];
    const float opening = m_type == PERSPECTIVE ? m_far / m_near : 1.0f;
    m_fromEye.multVecMatrix(KbVec3f(x, y, -m_near), nearPoint);
    m_fromEye.multVecMatrix(KbVec3f(x * opening, y * opening, -m_far), farPoint);
}

void KbViewVolume::projectPointToLine(const KbVec2f& point, KbLine& line) const
{
    KbVec3f nearPoint, farPoint;
    projectPointToLine(point, nearPoint, farPoint);
    line.setValue(nearPoint, farPoint);
}

void KbViewVolume::projectToScreen(const KbVec3f& source, KbVec3f& result) const
{
    KbVec3f eye;
    m_toEye.multVecMatrix(source, eye);
    double distance = -static_cast<double>(eye[2]);
    double opening = 1, depth = (distance - m_near) / (static_cast<double>(m_far) - m_near);
    if (m_type == PERSPECTIVE) {
        const double least = static_cast<double>(m_near) * 1e-6;
        if (std::fabs(distance) < least) distance = distance < 0 ? -least : least;
        opening = m_near / distance;
        depth = m_far * (distance - m_near) / (distance * (static_cast<double>(m_far) - m_near));
    }
    result.setValue(
        static_cast<float>((eye[0] * opening - m_left) / (static_cast<double>(m_right) - m_left)),
        static_cast<float>((eye[1] * opening - m_bottom) / (static_cast<double>(m_top) - m_bottom)),
        static_cast<float>(depth));
}

KbVec2f KbViewVolume::projectBox(const KbBox3f& box) const
{
    if (box.isEmpty()) return KbVec2f();
    KbBox2f screen;
    for (int i = 0; i < 8; ++i) {
        KbVec3f point;
        if (m_type == PERSPECTIVE) {
            // What lies before the near plane has no picture; its image on that plane is used.
            m_toEye.multVecMatrix(corner(box, i), point);
            point[2] = std::min(point[2], -m_near);
            m_fromEye.multVecMatrix(point, point);
            projectToScreen(point, point);
        } else {
            projectToScreen(corner(box, i), point);
        }
        screen.extendBy(KbVec2f(point[0], point[1]));
    }
    return screen.getSize();
}

KbPlane KbViewVolume::getPlane(float distanceFromEye) const
{
    KbPlane plane(KbVec3f(0, 0, 1), KbVec3f(0, 0, -distanceFromEye));
    plane.transform(m_fromEye);
    return plane;
}

KbVec3f KbViewVolume::getSightPoint(float distanceFromEye) const
{
    KbVec3f point;
    m_fromEye.multVecMatrix(KbVec3f(0, 0, -distanceFromEye), point);
    return point;
}

void KbViewVolume::getViewVolumePlanes(KbPlane planes[6]) const
{
    if (!planes) return;
    // In a mirrored picture the inside lies on the other side.
    const float x = m_right < m_left ? -1.0f : 1.0f, y = m_top < m_bottom ? -1.0f : 1.0f;
    const KbVec3f inLeft(x, 0, 0), inBottom(0, y, 0), inNear(0, 0, -1);
    if (m_type == PERSPECTIVE) {
        // The sides run through the eye.
        planes[0] = KbPlane(KbVec3f(m_near, 0, m_left) * x, 0.0f);
        planes[1] = KbPlane(KbVec3f(-m_near, 0, -m_right) * x, 0.0f);
        planes[2] = KbPlane(KbVec3f(0, m_near, m_bottom) * y, 0.0f);
        planes[3] = KbPlane(KbVec3f(0, -m_near, -m_top) * y, 0.0f);
    } else {
        planes[0] = KbPlane(inLeft, m_left * x);
        planes[1] = KbPlane(-inLeft, -m_right * x);
        planes[2] = KbPlane(inBottom, m_bottom * y);
        planes[3] = KbPlane(-inBottom, -m_top * y);
    }
    planes[4] = KbPlane(inNear, m_near);
    planes[5] = KbPlane(-inNear, -m_far);
    for (int i = 0; i < 6; ++i) planes[i].transform(m_fromEye);
}

KbVec3f KbViewVolume::getProjectionPoint() const { return getSightPoint(0); }

KbVec3f KbViewVolume::getProjectionDirection() const
{
    KbVec3f direction;
    m_fromEye.multDirMatrix(KbVec3f(0, 0, -1), direction);
    direction.normalize();
    return direction;
}

KbVec3f KbViewVolume::getViewUp() const
{
    KbVec3f up;
    m_fromEye.multDirMatrix(KbVec3f(0, 1, 0), up);
    up.normalize();
    return up;
}

float KbViewVolume::getWorldToScreenScale(const KbVec3f& center, float normalizedRadius) const
{
    KbVec3f eye, sideways;
    m_toEye.multVecMatrix(center, eye);
    m_fromEye.multDirMatrix(KbVec3f(1, 0, 0), sideways);
    const float opening = m_type == PERSPECTIVE ? std::fabs(eye[2]) / m_near : 1.0f;
    return normalizedRadius * std::fabs(m_right - m_left) * opening * sideways.length();
}

bool KbViewVolume::intersect(const KbVec3f& point) const
{
    return intersect(KbBox3f(point, point));
}

bool KbViewVolume::intersect(const KbBox3f& box) const
{
    if (box.isEmpty()) return false;
    const double left = std::min(m_left, m_right), right = std::max(m_left, m_right);
    const double bottom = std::min(m_bottom, m_top), top = std::max(m_bottom, m_top);
    // Out of sight is only what lies wholly outside of one of the six planes.
    unsigned outside = 0x3f;
    for (int i = 0; i < 8 && outside; ++i) {
        KbVec3f eye;
        m_toEye.multVecMatrix(corner(box, i), eye);
        const double x = eye[0], y = eye[1], distance = -static_cast<double>(eye[2]);
        const double opening = m_type == PERSPECTIVE ? distance / m_near : 1.0;
        unsigned out = 0;
        out |= x < left * opening ? 1u : 0u;
        out |= x > right * opening ? 2u : 0u;
        out |= y < bottom * opening ? 4u : 0u;
        out |= y > top * opening ? 8u : 0u;
        out |= distance < m_near ? 16u : 0u;
        out |= distance > m_far ? 32u : 0u;
        outside &= out;
    }
    return outside == 0;
}
