#pragma once

#include <arborium/base/KbVec.h>

class KbMatrix;

/// A rotation, kept as a unit quaternion x y z w. No rotation by default. In A * B the rotation A
/// comes first, as with matrices.
class ARBORIUM_API KbRotation {
public:
    KbRotation() = default;
    /// Counter-clockwise by `radians` for someone whom the axis points at. The axis need not have
    /// length 1; one of length zero gives no rotation.
    KbRotation(const KbVec3f& axis, float radians) { setValue(axis, radians); }
    /// The shortest rotation that turns `from` into the direction of `to`.
    KbRotation(const KbVec3f& from, const KbVec3f& to) { setValue(from, to); }
    KbRotation(float x, float y, float z, float w) { setValue(x, y, z, w); }
    /// The rotation of a matrix without scale; `KbMatrix::getTransform` is for the others.
    explicit KbRotation(const KbMatrix& matrix) { setValue(matrix); }

    /// A new rotation that turns nothing.
    static KbRotation identity() { return KbRotation(); }

    /// As the constructors.
    KbRotation& setValue(const KbVec3f& axis, float radians);
    KbRotation& setValue(const KbVec3f& from, const KbVec3f& to);
    /// Is brought to length 1; a quaternion of length zero or one that is not finite gives no
    /// rotation.
    KbRotation& setValue(float x, float y, float z, float w);
    KbRotation& setValue(const KbMatrix& matrix);

    /// The quaternion x y z w; the pointer lives as long as the rotation.
    const float* getValue() const { return m_quaternion; }
    void getValue(float& x, float& y, float& z, float& w) const;
    /// The axis has length 1 and `radians` lies between 0 and 2 pi; no rotation gives (0, 0, 1) and 0.
    void getValue(KbVec3f& axis, float& radians) const;
    void getValue(KbMatrix& matrix) const;

    /// Turns back what was turned: `invert` this rotation itself, `inverse` a copy.
    KbRotation& invert();
    KbRotation inverse() const { return KbRotation(*this).invert(); }
    /// This becomes this * `rotation`.
    KbRotation& operator*=(const KbRotation& rotation);
    friend KbRotation operator*(KbRotation a, const KbRotation& b) { return a *= b; }
    /// Multiplies the angle; a factor that is not finite gives no rotation.
    KbRotation& scaleAngle(float factor);

    /// The vector turned; `source` and `result` may be the same.
    void multVec(const KbVec3f& source, KbVec3f& result) const;
    /// From `from` at `t` = 0 to `to` at 1 with even speed, along the shorter way.
    static KbRotation slerp(const KbRotation& from, const KbRotation& to, float t);

    /// Whether nothing is turned; to the last bit.
    bool isIdentity() const;
    /// Whether the quaternions are the same up to their common sign.
    bool equals(const KbRotation& rotation, float tolerance) const;
    /// To the last bit: a quaternion and its negative are the same rotation but not equal.
    friend bool operator==(const KbRotation& a, const KbRotation& b)
    {
        for (int i = 0; i < 4; ++i)
            if (!(a.m_quaternion[i] == b.m_quaternion[i])) return false;
        return true;
    }
    friend bool operator!=(const KbRotation& a, const KbRotation& b) { return !(a == b); }

private:
    float m_quaternion[4] = {0, 0, 0, 1};
};

/// Axis and angle, as files write them.
ARBORIUM_API std::ostream& operator<<(std::ostream& out, const KbRotation& rotation);
