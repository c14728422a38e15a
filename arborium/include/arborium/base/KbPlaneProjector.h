#pragma once

#include <arborium/base/KbPlane.h>
#include <arborium/base/KbProjector.h>

/// Projects onto a plane: the point of it under the pointer. What lies behind a perspective eye
/// does not count.
class ARBORIUM_API KbPlaneProjector : public KbProjector {
public:
    /// The xy plane. With `orientToEye` the plane is turned, about its point nearest to the
    /// origin, to face the eye.
    explicit KbPlaneProjector(int orientToEye = 0);
    explicit KbPlaneProjector(const KbPlane& plane, int orientToEye = 0);

    /// In working space. The start position becomes the plane's point nearest to the origin.
    void setPlane(const KbPlane& plane);
    const KbPlane& getPlane() const { return m_plane; }
    /// Whether the plane is turned to the eye, as the constructor says. FALSE by default.
    void setOrientToEye(int orientToEye) { m_orientToEye = orientToEye != 0; }
    bool isOrientToEye() const { return m_orientToEye; }

    KbPlaneProjector* copy() const override;

protected:
    bool intersectShape(const KbLine& ray, KbVec3f& result) const override;

private:
    KbPlane m_plane;
    bool m_orientToEye;
};
