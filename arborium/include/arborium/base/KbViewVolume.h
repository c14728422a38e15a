#pragma once

#include <arborium/base/KbMatrix.h>
#include <arborium/base/KbPlane.h>
#include <arborium/base/KbVec.h>

class KbBox3f;
class KbLine;
class KbRotation;

/// What a camera sees: a box or a truncated pyramid. One that was default-constructed is not set; it
/// sees the cube of -1 to 1 along -z. A camera stands at the origin, looks along -z and is then moved.
class ARBORIUM_API KbViewVolume {
public:
    /// A box, or a pyramid that narrows to the eye.
    enum ProjectionType { ORTHOGRAPHIC = 0, PERSPECTIVE = 1 };

    /// Whether `ortho`, `perspective` or `frustum` was ever called.
    bool isSet() const { return m_isSet; }

    /// A box, seen from the origin along -z: its sides, and distances along the line of sight; near
    /// may lie behind the eye. A range of no extent is widened so that the volume is never flat.
    /// Each of these three forgets where the camera stood.
    void ortho(float left, float right, float bottom, float top, float nearVal, float farVal);
    /// A pyramid: `fovy`, the angle between bottom and top, in radians, `aspect` width by height.
    /// Values that give no pyramid are replaced by the nearest ones that do.
    void perspective(float fovy, float aspect, float nearVal, float farVal);
    /// A pyramid by its sides at the near plane, which need not lie about the line of sight.
    void frustum(float left, float right, float bottom, float top, float nearVal, float farVal);

    /// About the origin, behind what moved the camera so far.
    void rotateCamera(const KbRotation& rotation);
    void translateCamera(const KbVec3f& translation);
    /// Moves the volume, as something in the space, by any matrix; one that cannot be inverted does
    /// nothing.
    void transform(const KbMatrix& matrix);
    /// Multiply width and height about the middle of the screen. A negative factor mirrors; 0 and
    /// what is not finite do nothing.
    void scale(float factor);
    void scaleWidth(float factor);
    void scaleHeight(float factor);
    /// The part of the volume inside a rectangle of the screen, 0 to 1 in each direction; a side
    /// that is not finite stays where it is.
    KbViewVolume narrow(float left, float bottom, float right, float top) const;

    /// `affine` leads from the space to the eye, `proj` from there to the cube of -1 to 1.
    void getMatrices(KbMatrix& affine, KbMatrix& proj) const;
    /// affine * proj.
    KbMatrix getMatrix() const;
    /// From the space to the eye, as `affine` above.
    const KbMatrix& getCameraMatrix() const { return m_toEye; }

    /// The line under a point of the screen, 0 to 1 from the lower left corner, from the near plane
    /// to the far one.
    void projectPointToLine(const KbVec2f& point, KbLine& line) const;
    void projectPointToLine(const KbVec2f& point, KbVec3f& nearPoint, KbVec3f& farPoint) const;
    /// x and y from 0 to 1 inside the screen, z from 0 at the near plane to 1 at the far plane. A point
    /// in the plane of a perspective eye yields an arbitrary finite point.
    void projectToScreen(const KbVec3f& source, KbVec3f& result) const;
    /// Width and height that the box takes on the screen, 1 being all of it; 0 for an empty box.
    KbVec2f projectBox(const KbBox3f& box) const;

    /// The plane across the line of sight at a distance from the eye, facing the eye.
    KbPlane getPlane(float distanceFromEye) const;
    /// The point on the line of sight at a distance from the eye.
    KbVec3f getSightPoint(float distanceFromEye) const;
    /// Left, right, bottom, top, near, far; each faces inwards. Null does nothing.
    void getViewVolumePlanes(KbPlane planes[6]) const;

    /// ORTHOGRAPHIC also for a volume that is not set.
    ProjectionType getProjectionType() const { return m_type; }
    /// The position of the eye.
    KbVec3f getProjectionPoint() const;
    /// Where the eye looks, and what is up there; each of length 1.
    KbVec3f getProjectionDirection() const;
    KbVec3f getViewUp() const;
    /// From the eye to the near plane.
    float getNearDist() const { return m_near; }
    /// From the near plane to the far one.
    float getDepth() const { return m_far - m_near; }
    /// At the near plane; negative for a mirrored picture.
    float getWidth() const { return m_right - m_left; }
    float getHeight() const { return m_top - m_bottom; }
    /// The radius of a sphere around `center` that covers `normalizedRadius` of the screen's width.
    float getWorldToScreenScale(const KbVec3f& center, float normalizedRadius) const;

    /// Whether the point is in sight.
    bool intersect(const KbVec3f& point) const;
    /// False only where the box is surely out of sight, so that culling by it is safe. An empty box is
    /// out of sight.
    bool intersect(const KbBox3f& box) const;

    /// The same shape, place and kind, to the last bit.
    friend bool operator==(const KbViewVolume& a, const KbViewVolume& b)
    {
        return a.m_isSet == b.m_isSet && a.m_type == b.m_type && a.m_left == b.m_left &&
               a.m_right == b.m_right && a.m_bottom == b.m_bottom && a.m_top == b.m_top &&
               a.m_near == b.m_near && a.m_far == b.m_far && a.m_toEye == b.m_toEye;
    }
    friend bool operator!=(const KbViewVolume& a, const KbViewVolume& b) { return !(a == b); }

private:
    KbMatrix getProjection() const;

    ProjectionType m_type = ORTHOGRAPHIC;
    bool m_isSet = false;
    float m_left = -1, m_right = 1, m_bottom = -1, m_top = 1, m_near = -1, m_far = 1;
    KbMatrix m_toEye, m_fromEye;
};
