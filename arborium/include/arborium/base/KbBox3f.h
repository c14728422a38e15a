#pragma once

#include <arborium/base/KbVec.h>

class KbMatrix;

/// An axis-aligned box. Empty by default; an empty box has size and centre zero. A box whose six
/// numbers are all the same, such as -1, is a point and not empty.
class KbBox3f {
public:
    KbBox3f() { makeEmpty(); }
    /// A minimum above its maximum, or a component that is not a number, makes it empty.
    KbBox3f(float minX, float minY, float minZ, float maxX, float maxY, float maxZ)
        : m_min(minX, minY, minZ), m_max(maxX, maxY, maxZ)
    {}
    KbBox3f(const KbVec3f& minimum, const KbVec3f& maximum) : m_min(minimum), m_max(maximum) {}

    /// The corners. Those of an empty box mean nothing.
    const KbVec3f& getMin() const { return m_min; }
    const KbVec3f& getMax() const { return m_max; }
    /// Zero for an empty box.
    KbVec3f getCenter() const { return isEmpty() ? KbVec3f() : m_min + (m_max - m_min) * 0.5f; }
    KbVec3f getSize() const { return isEmpty() ? KbVec3f() : m_max - m_min; }
    void getSize(KbVec3f& size) const { size = getSize(); }
    void getSize(float& x, float& y, float& z) const { getSize().getValue(x, y, z); }
    /// Both corners at once, taken as they are, as the constructors do.
    void getBounds(KbVec3f& minimum, KbVec3f& maximum) const
    {
        minimum = m_min;
        maximum = m_max;
    }
    void getBounds(float& minX, float& minY, float& minZ, float& maxX, float& maxY,
                   float& maxZ) const
    {
        m_min.getValue(minX, minY, minZ);
        m_max.getValue(maxX, maxY, maxZ);
    }
    void setBounds(const KbVec3f& minimum, const KbVec3f& maximum)
    {
        m_min = minimum;
        m_max = maximum;
    }
    void setBounds(float minX, float minY, float minZ, float maxX, float maxY, float maxZ)
    {
        m_min.setValue(minX, minY, minZ);
        m_max.setValue(maxX, maxY, maxZ);
    }

    /// A flat box and a point are not empty.
    bool isEmpty() const
    {
        return !(m_min[0] <= m_max[0] && m_min[1] <= m_max[1] && m_min[2] <= m_max[2]);
    }
    /// To the state of a new box, which holds nothing and can be extended.
    void makeEmpty()
    {
        constexpr float top = std::numeric_limits<float>::max();
        m_min.setValue(top, top, top);
        m_max.setValue(-top, -top, -top);
    }
    /// Grows to hold the point, or all of the box. Components that are not numbers, and an empty
    /// box, are ignored.
    void extendBy(const KbVec3f& point)
    {
        for (int i = 0; i < 3; ++i) {
            if (point[i] < m_min[i]) m_min[i] = point[i];
            if (point[i] > m_max[i]) m_max[i] = point[i];
        }
    }
    void extendBy(const KbBox3f& box)
    {
        if (!box.isEmpty()) {
            extendBy(box.m_min);
            extendBy(box.m_max);
        }
    }
    /// Replaces the box by the smallest one around its eight transformed corners. An empty box stays
    /// empty.
    ARBORIUM_API void transform(const KbMatrix& matrix);
    /// Whether the point lies inside or on the box, or the two share a point. An empty one meets
    /// nothing.
    bool intersect(const KbVec3f& point) const
    {
        for (int i = 0; i < 3; ++i)
            if (!(point[i] >= m_min[i] && point[i] <= m_max[i])) return false;
        return true;
    }
    bool intersect(const KbBox3f& box) const
    {
        if (isEmpty() || box.isEmpty()) return false;
        for (int i = 0; i < 3; ++i)
            if (m_min[i] > box.m_max[i] || m_max[i] < box.m_min[i]) return false;
        return true;
    }
    /// FALSE for an empty box, a flat one and a point.
    bool hasVolume() const
    {
        return m_min[0] < m_max[0] && m_min[1] < m_max[1] && m_min[2] < m_max[2];
    }

    /// By the corners, also of empty ones.
    friend bool operator==(const KbBox3f& a, const KbBox3f& b)
    {
        return a.m_min == b.m_min && a.m_max == b.m_max;
    }
    friend bool operator!=(const KbBox3f& a, const KbBox3f& b) { return !(a == b); }

private:
    KbVec3f m_min, m_max;
};

/// The two corners with " .. " between them.
ARBORIUM_API std::ostream& operator<<(std::ostream& out, const KbBox3f& box);
