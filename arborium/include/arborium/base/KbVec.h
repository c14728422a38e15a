#pragma once

#include <arborium/base/KsApi.h>

#include <cmath>
#include <cstdint>
#include <iosfwd>
#include <limits>
#include <type_traits>

/// What all vectors of the layer share. Plain values, zero by default. Integers wrap at the ends of
/// their range and a division of one by zero leaves it as it is.
template <class Derived, class T, int N> class KbVecBase {
public:
    /// The `N` components in order; the pointer lives as long as the vector. Writing through `data`
    /// changes it.
    constexpr const T* getValue() const { return m_value; }
    constexpr T* data() { return m_value; }

    /// An index outside of 0 .. N-1 means component 0.
    constexpr T& operator[](int i) { return m_value[clampIndex(i)]; }
    constexpr const T& operator[](int i) const { return m_value[clampIndex(i)]; }

    /// Copies `N` components; null leaves the vector as it is.
    constexpr Derived& setValue(const T* values)
    {
        if (values)
            for (int i = 0; i < N; ++i) m_value[i] = values[i];
        return self();
    }

    /// Component by component.
    constexpr Derived& operator+=(const Derived& v)
    {
        for (int i = 0; i < N; ++i) m_value[i] = sum(m_value[i], v.m_value[i]);
        return self();
    }
    constexpr Derived& operator-=(const Derived& v)
    {
        for (int i = 0; i < N; ++i) m_value[i] = difference(m_value[i], v.m_value[i]);
        return self();
    }
    constexpr Derived& operator*=(T factor)
    {
        for (int i = 0; i < N; ++i) m_value[i] = product(m_value[i], factor);
        return self();
    }
    constexpr Derived& operator/=(T divisor)
    {
        for (int i = 0; i < N; ++i) m_value[i] = quotient(m_value[i], divisor);
        return self();
    }

    friend constexpr Derived operator+(Derived a, const Derived& b) { return a += b; }
    friend constexpr Derived operator-(Derived a, const Derived& b) { return a -= b; }
    friend constexpr Derived operator*(Derived a, T factor) { return a *= factor; }
    friend constexpr Derived operator*(T factor, Derived a) { return a *= factor; }
    friend constexpr Derived operator/(Derived a, T divisor) { return a /= divisor; }
    friend constexpr Derived operator-(const Derived& v) { return Derived() -= v; }

    /// To the last bit, but 0 equals -0 and not-a-number nothing.
    friend constexpr bool operator==(const Derived& a, const Derived& b)
    {
        for (int i = 0; i < N; ++i)
            if (!(a.m_value[i] == b.m_value[i])) return false;
        return true;
    }
    friend constexpr bool operator!=(const Derived& a, const Derived& b) { return !(a == b); }

    /// Whether no component differs by more than `tolerance`. False where a component is not a number.
    constexpr bool equals(const Derived& v, T tolerance) const
    {
        for (int i = 0; i < N; ++i) {
            const T a = m_value[i], b = v.m_value[i];
            if (a == b) continue;
            const T d = a > b ? difference(a, b) : difference(b, a);
            if (!(d <= tolerance)) return false;
        }
        return true;
    }

    /// The sum of the products of the components.
    constexpr T dot(const Derived& v) const
    {
        T s = 0;
        for (int i = 0; i < N; ++i) s = sum(s, product(m_value[i], v.m_value[i]));
        return s;
    }

    /// Calculated in double precision: no overflow for components that squared are no floats.
    float length() const
    {
        double s = 0;
        for (int i = 0; i < N; ++i)
            s += static_cast<double>(m_value[i]) * static_cast<double>(m_value[i]);
        return static_cast<float>(std::sqrt(s));
    }
    float sqrLength() const
    {
        double s = 0;
        for (int i = 0; i < N; ++i)
            s += static_cast<double>(m_value[i]) * static_cast<double>(m_value[i]);
        return static_cast<float>(s);
    }

    /// Scales the vector to length 1 and returns its former length. A vector of length zero, or one
    /// that holds infinity or not-a-number, stays as it is and 0 is returned.
    float normalize()
    {
        static_assert(std::is_floating_point<T>::value, "only vectors of floats have a direction");
        double s = 0;
        for (int i = 0; i < N; ++i)
            s += static_cast<double>(m_value[i]) * static_cast<double>(m_value[i]);
        const double l = std::sqrt(s);
        if (!(l > 0) || !std::isfinite(l)) return 0;
        for (int i = 0; i < N; ++i) m_value[i] = static_cast<T>(m_value[i] / l);
        return static_cast<float>(l);
    }

    /// Whether no component is infinite or not a number.
    bool isFinite() const
    {
        for (int i = 0; i < N; ++i)
            if (!std::isfinite(static_cast<double>(m_value[i]))) return false;
        return true;
    }

protected:
    constexpr KbVecBase() = default;

    T m_value[N] = {};

private:
    constexpr Derived& self() { return static_cast<Derived&>(*this); }
    static constexpr int clampIndex(int i) { return i >= 0 && i < N ? i : 0; }

    // Signed overflow is undefined, so that integers are calculated without a sign.
    static constexpr T sum(T a, T b)
    {
        if constexpr (std::is_integral<T>::value)
            return static_cast<T>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
        else
            return a + b;
    }
    static constexpr T difference(T a, T b)
    {
        if constexpr (std::is_integral<T>::value)
            return static_cast<T>(static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b));
        else
            return a - b;
    }
    static constexpr T product(T a, T b)
    {
        if constexpr (std::is_integral<T>::value)
            return static_cast<T>(static_cast<std::uint32_t>(a) * static_cast<std::uint32_t>(b));
        else
            return a * b;
    }
    static constexpr T quotient(T a, T b)
    {
        if constexpr (std::is_integral<T>::value)
            return b == 0 ? a : b == -1 ? difference(0, a) : a / b;
        else
            return a / b;
    }
};

/// Two floats, such as a point of a window or a texture coordinate.
class KbVec2f : public KbVecBase<KbVec2f, float, 2> {
public:
    /// Zero, or from numbers; a null pointer gives zero.
    constexpr KbVec2f() = default;
    constexpr KbVec2f(float x, float y) { setValue(x, y); }
    explicit constexpr KbVec2f(const float* xy) { setValue(xy); }

    using KbVecBase::getValue;
    using KbVecBase::setValue;
    /// All components at once.
    constexpr KbVec2f& setValue(float x, float y)
    {
        m_value[0] = x;
        m_value[1] = y;
        return *this;
    }
    constexpr void getValue(float& x, float& y) const
    {
        x = m_value[0];
        y = m_value[1];
    }
    /// The components by their names.
    constexpr float x() const { return m_value[0]; }
    constexpr float y() const { return m_value[1]; }
};

/// Three floats: a point, a direction or a size in a scene.
class KbVec3f : public KbVecBase<KbVec3f, float, 3> {
public:
    /// Zero, or from numbers; a null pointer gives zero.
    constexpr KbVec3f() = default;
    constexpr KbVec3f(float x, float y, float z) { setValue(x, y, z); }
    explicit constexpr KbVec3f(const float* xyz) { setValue(xyz); }

    using KbVecBase::getValue;
    using KbVecBase::setValue;
    /// All components at once.
    constexpr KbVec3f& setValue(float x, float y, float z)
    {
        m_value[0] = x;
        m_value[1] = y;
        m_value[2] = z;
        return *this;
    }
    constexpr void getValue(float& x, float& y, float& z) const
    {
        x = m_value[0];
        y = m_value[1];
        z = m_value[2];
    }
    /// The components by their names.
    constexpr float x() const { return m_value[0]; }
    constexpr float y() const { return m_value[1]; }
    constexpr float z() const { return m_value[2]; }

    /// Perpendicular to both, by the right hand's rule; zero for parallel vectors.
    constexpr KbVec3f cross(const KbVec3f& v) const
    {
        return KbVec3f(m_value[1] * v.m_value[2] - m_value[2] * v.m_value[1],
                       m_value[2] * v.m_value[0] - m_value[0] * v.m_value[2],
                       m_value[0] * v.m_value[1] - m_value[1] * v.m_value[0]);
    }
    /// The coordinate axis, with its sign, that lies nearest to the vector; (0, 0, 1) for no
    /// direction.
    ARBORIUM_API KbVec3f getClosestAxis() const;
};

/// Four floats: a homogeneous point or a colour with its opacity.
class KbVec4f : public KbVecBase<KbVec4f, float, 4> {
public:
    /// Zero, or from numbers; a null pointer gives zero.
    constexpr KbVec4f() = default;
    constexpr KbVec4f(float x, float y, float z, float w) { setValue(x, y, z, w); }
    constexpr KbVec4f(const KbVec3f& v, float w) { setValue(v[0], v[1], v[2], w); }
    explicit constexpr KbVec4f(const float* xyzw) { setValue(xyzw); }

    using KbVecBase::getValue;
    using KbVecBase::setValue;
    /// All components at once.
    constexpr KbVec4f& setValue(float x, float y, float z, float w)
    {
        m_value[0] = x;
        m_value[1] = y;
        m_value[2] = z;
        m_value[3] = w;
        return *this;
    }
    constexpr void getValue(float& x, float& y, float& z, float& w) const
    {
        x = m_value[0];
        y = m_value[1];
        z = m_value[2];
        w = m_value[3];
    }
    /// The point divided by its fourth component, undivided where that is 0.
    constexpr KbVec3f getReal() const
    {
        const float w = m_value[3] == 0.0f ? 1.0f : m_value[3];
        return KbVec3f(m_value[0] / w, m_value[1] / w, m_value[2] / w);
    }
};

/// Two whole numbers, such as a size or a position in pixels.
class KbVec2i32 : public KbVecBase<KbVec2i32, std::int32_t, 2> {
public:
    /// Zero, or from numbers; a null pointer gives zero.
    constexpr KbVec2i32() = default;
    constexpr KbVec2i32(std::int32_t x, std::int32_t y) { setValue(x, y); }
    explicit constexpr KbVec2i32(const std::int32_t* xy) { setValue(xy); }

    using KbVecBase::getValue;
    using KbVecBase::setValue;
    /// All components at once.
    constexpr KbVec2i32& setValue(std::int32_t x, std::int32_t y)
    {
        m_value[0] = x;
        m_value[1] = y;
        return *this;
    }
    constexpr void getValue(std::int32_t& x, std::int32_t& y) const
    {
        x = m_value[0];
        y = m_value[1];
    }
    /// The components by their names.
    constexpr std::int32_t x() const { return m_value[0]; }
    constexpr std::int32_t y() const { return m_value[1]; }
};

/// The components with blanks between them, as files write them.
ARBORIUM_API std::ostream& operator<<(std::ostream& out, const KbVec2f& v);
ARBORIUM_API std::ostream& operator<<(std::ostream& out, const KbVec3f& v);
ARBORIUM_API std::ostream& operator<<(std::ostream& out, const KbVec4f& v);
ARBORIUM_API std::ostream& operator<<(std::ostream& out, const KbVec2i32& v);
