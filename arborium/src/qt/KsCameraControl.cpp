#include "KsCameraControl.h"

#include <arborium/nodes/KsOrthographicCamera.h>
#include <arborium/nodes/KsPerspectiveCamera.h>

#include <QPointF>

#include <algorithm>
#include <cmath>

namespace {

/// What says how much a camera shows.
KsSFFloat* sizeField(KsCamera& camera)
{
    if (auto* flat = ksCast<KsOrthographicCamera>(&camera)) return &flat->height;
    if (auto* deep = ksCast<KsPerspectiveCamera>(&camera)) return &deep->heightAngle;
    return nullptr;
}

} // namespace

KsCameraPlace::KsCameraPlace(const KsCamera& camera)
    : position(camera.position), orientation(camera.orientation),
      focalDistance(camera.focalDistance), nearDistance(camera.nearDistance),
      farDistance(camera.farDistance)
{
    if (const KsSFFloat* field = sizeField(const_cast<KsCamera&>(camera))) size = field->getValue();
}

void KsCameraPlace::apply(KsCamera& camera) const
{
    camera.position = position;
    camera.orientation = orientation;
    camera.focalDistance = focalDistance;
    camera.nearDistance = nearDistance;
    camera.farDistance = farDistance;
    if (KsSFFloat* field = sizeField(camera)) *field = size;
}

KbVec3f KsCameraControl::axis(int which) const
{
    KbVec3f unit, result;
    unit[which] = 1;
    m_camera.orientation.getValue().multVec(unit, result);
    return result;
}

// Units of the scene in a pixel, at the distance that the camera looks at.
float KsCameraControl::unitsPerPixel() const
{
    float height = 1;
    if (const auto* flat = ksCast<KsOrthographicCamera>(&m_camera))
        height = flat->height.getValue();
    else if (const auto* deep = ksCast<KsPerspectiveCamera>(&m_camera))
        height = 2 * m_camera.focalDistance.getValue() *
                 std::tan(std::clamp(deep->heightAngle.getValue(), 0.01f, 3.1f) / 2);
    return std::fabs(height) / static_cast<float>(m_size[1]);
}

// The camera of a perspective came nearer or went away: what it looks at is not cut off.
void KsCameraControl::setFocalDistance(float distance)
{
    const float more = distance - m_camera.focalDistance.getValue();
    m_camera.focalDistance = distance;
    if (more > 0) m_camera.farDistance = m_camera.farDistance.getValue() + more;
    if (m_camera.nearDistance.getValue() > 0.1f * distance) m_camera.nearDistance = 0.1f * distance;
}

void KsCameraControl::turn(const QPointF& move)
{
    const auto size = static_cast<float>(std::max(1, std::min(m_size[0], m_size[1])));
    const float angle = 3.14159265f / size;
    const KbVec3f center =
        m_camera.position.getValue() - axis(2) * m_camera.focalDistance.getValue();
    const KbRotation local = KbRotation(KbVec3f(1, 0, 0), static_cast<float>(move.y()) * angle) *
                             KbRotation(KbVec3f(0, 1, 0), static_cast<float>(-move.x()) * angle);
    m_camera.orientation = local * m_camera.orientation.getValue();
    m_camera.position = center + axis(2) * m_camera.focalDistance.getValue();
}

void KsCameraControl::shift(const QPointF& move)
{
    const float unit = unitsPerPixel();
    m_camera.position = m_camera.position.getValue() -
                        axis(0) * (static_cast<float>(move.x()) * unit) -
                        axis(1) * (static_cast<float>(move.y()) * unit);
}

bool KsCameraControl::zoom(float factor, const QPointF& at)
{
    if (!(factor > 0) || !std::isfinite(factor)) return false;
    const QPointF offset = at - QPointF(m_size[0] / 2.0, m_size[1] / 2.0);
    const float keep = unitsPerPixel() * (1 - factor);
    KbVec3f position = m_camera.position.getValue() +
                       axis(0) * (static_cast<float>(offset.x()) * keep) +
                       axis(1) * (static_cast<float>(offset.y()) * keep);
    if (auto* flat = ksCast<KsOrthographicCamera>(&m_camera)) {
        const float height = flat->height.getValue() * factor;
        if (!(height > 1e-6f && height < 1e9f)) return false;
        flat->height = height;
    } else {
        const float focal = m_camera.focalDistance.getValue();
        if (!(focal * factor > 1e-6f && focal * factor < 1e9f)) return false;
        position = position - axis(2) * (focal * (1 - factor));
        setFocalDistance(focal * factor);
    }
    m_camera.position = position;
    return true;
}

void KsCameraControl::seek(const KbVec3f& target)
{
    const KbVec3f start = m_camera.position;
    const KbVec3f way = target - start;
    if (auto* flat = ksCast<KsOrthographicCamera>(&m_camera)) {
        m_camera.position = start + way - axis(2) * way.dot(axis(2)); // as far off as before
        flat->height = flat->height.getValue() / 2;
    } else {
        m_camera.pointAt(target, axis(1));
        m_camera.position = start + way * 0.5f;
        setFocalDistance(way.length() / 2);
    }
}
