#pragma once

#include <arborium/nodes/KsCamera.h>

class QPointF;

/// Where a camera stands, and how much it shows.
struct KsCameraPlace {
    KbVec3f position;
    KbRotation orientation;
    float focalDistance = 0, nearDistance = 0, farDistance = 0, size = 0;

    KsCameraPlace() = default;
    explicit KsCameraPlace(const KsCamera& camera);
    void apply(KsCamera& camera) const;
};

/// Moves a camera as a person does with a mouse, in a window of `size` pixels. Moves are in pixels, y
/// upward. The camera is kept alive: who hears of its move may let it go.
class KsCameraControl {
public:
    KsCameraControl(KsCamera* camera, const KbVec2i32& size) : m_held(camera), m_size(size) {}

    /// About what the camera looks at: the scene goes along with the pointer.
    void turn(const QPointF& move);
    /// Across the view: what is looked at goes along with the pointer.
    void shift(const QPointF& move);
    /// Shows `factor` times as much; what is under `at` stays there. FALSE beyond any use.
    bool zoom(float factor, const QPointF& at);
    /// Brings a point, in the space in which the camera stands, to the middle and twice as near.
    void seek(const KbVec3f& target);

private:
    KbVec3f axis(int which) const;
    float unitsPerPixel() const;
    void setFocalDistance(float distance);

    const KsRef<KsCamera> m_held;
    KsCamera& m_camera = *m_held;
    KbVec2i32 m_size;
};
