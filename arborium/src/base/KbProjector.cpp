#include <arborium/base/KbLine.h>
#include <arborium/base/KbLineProjector.h>
#include <arborium/base/KbPlaneProjector.h>
#include <arborium/base/KbProjector.h>

KbProjector::~KbProjector() = default;

void KbProjector::setWorkingSpace(const KbMatrix& space)
{
    m_workingToWorld = space;
    m_worldToWorking = space.inverse();
    m_hasSpace = space.isInvertible();
}

bool KbProjector::tryProject(const KbVec2f& point, KbVec3f& result) const
{
    if (!m_hasSpace || !point.isFinite()) return false;
    KbLine ray;
    m_viewVolume.projectPointToLine(point, ray);
    m_worldToWorking.multLineMatrix(ray, ray);
    KbVec3f hit;
    if (!intersectShape(ray, hit) || !hit.isFinite()) return false;
    if (m_viewVolume.getProjectionType() == KbViewVolume::PERSPECTIVE) {
        KbVec3f world;
        m_workingToWorld.multVecMatrix(hit, world);
        m_viewVolume.getCameraMatrix().multVecMatrix(world, world);
        if (!(world[2] < 0)) return false;
    }
    result = hit;
    return true;
}

bool KbProjector::tryProject(const KbLine& worldRay, KbVec3f& result) const
{
    if (!m_hasSpace) return false;
    KbLine ray;
    m_worldToWorking.multLineMatrix(worldRay, ray);
    KbVec3f hit;
    if (!intersectShape(ray, hit) || !hit.isFinite() ||
        (hit - ray.getPosition()).dot(ray.getDirection()) < 0)
        return false;
    result = hit;
    return true;
}

KbVec3f KbProjector::project(const KbVec2f& point)
{
    tryProject(point, m_last);
    return m_last;
}

KbVec3f KbProjector::project(const KbLine& worldRay)
{
    tryProject(worldRay, m_last);
    return m_last;
}

KbVec3f KbProjector::getVector(const KbVec2f& from, const KbVec2f& to)
{
    const KbVec3f start = project(from);
    return project(to) - start;
}

KbVec3f KbProjector::getVector(const KbVec2f& to)
{
    const KbVec3f start = m_last;
    return project(to) - start;
}

KbVec3f KbProjector::getEyeDirection(const KbVec3f& at) const
{
    KbVec3f direction;
    if (m_viewVolume.getProjectionType() == KbViewVolume::PERSPECTIVE) {
        m_worldToWorking.multVecMatrix(m_viewVolume.getProjectionPoint(), direction);
        direction -= at;
    } else {
        m_worldToWorking.multDirMatrix(-m_viewVolume.getProjectionDirection(), direction);
    }
    return direction.normalize() == 0 ? KbVec3f(0, 0, 1) : direction;
}

KbLineProjector::KbLineProjector() { setLine(KbLine(KbVec3f(0, 0, 0), KbVec3f(0, 1, 0))); }

void KbLineProjector::setLine(const KbLine& line)
{
    m_line = line;
    restartAt(line.getClosestPoint(KbVec3f()));
}

KbLineProjector* KbLineProjector::copy() const { return new KbLineProjector(*this); }

bool KbLineProjector::intersectShape(const KbLine& ray, KbVec3f& result) const
{
    KbVec3f onRay, onLine;
    if (!m_line.getClosestPoints(ray, onLine, onRay)) return false;
    result = onLine;
    return true;
}

KbPlaneProjector::KbPlaneProjector(int orientToEye) : m_orientToEye(orientToEye != 0) {}

KbPlaneProjector::KbPlaneProjector(const KbPlane& plane, int orientToEye)
    : m_orientToEye(orientToEye != 0)
{
    setPlane(plane);
}

void KbPlaneProjector::setPlane(const KbPlane& plane)
{
    m_plane = plane;
    restartAt(plane.getNormal() * plane.getDistanceFromOrigin());
}

KbPlaneProjector* KbPlaneProjector::copy() const { return new KbPlaneProjector(*this); }

bool KbPlaneProjector::intersectShape(const KbLine& ray, KbVec3f& result) const
{
    if (!m_orientToEye) return m_plane.intersect(ray, result);
    const KbVec3f pivot = m_plane.getNormal() * m_plane.getDistanceFromOrigin();
    return KbPlane(getEyeDirection(pivot), pivot).intersect(ray, result);
}
