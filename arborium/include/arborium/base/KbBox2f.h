#pragma once

#include <arborium/base/KbVec.h>

/// An axis-aligned rectangle. Empty by default; an empty one has size and centre zero.
class KbBox2f {
public:
    KbBox2f() { makeEmpty(); }
    /// A minimum above its maximum, or a component that is not a number, makes it empty.
    KbBox2f(float minX, float minY, float maxX, float maxY) : m_min(minX, minY), m_max(maxX, maxY)
    {}
    KbBox2f(const KbVec2f& minimum, const KbVec2f& maximum) : m_min(minimum), m_max(maximum) {}

    /// The corners. Those of an empty rectangle mean nothing.
    const KbVec2f& getMin() const { return m_min; }
    const KbVec2f& getMax() const { return m_max; }
    /// Zero for an empty rectangle.
    KbVec2f getCenter() const { return isEmpty() ? KbVec2f() : m_min + (m_max - m_min) * 0.5f; }
    KbVec2f getSize() const { return isEmpty() ? KbVec2f() : m_max - m_min; }
    void getSize(float& x, float& y) const { getSize().getValue(x, y); }

    /// A flat rectangle and a point are not empty.
    bool isEmpty() const { return !(m_min[0] <= m_max[0] && m_min[1] <= m_max[1]); }
    /// To the state of a new rectangle, which holds nothing and can be extended.
    void makeEmpty()
    {
        constexpr float top = std::numeric_limits<float>::max();
        m_min.setValue(top, top);
        m_max.setValue(-top, -top);
    }
    /// Grows to hold the point, or all of the rectangle. Components that are not numbers, and an
    /// empty rectangle, are ignored.
    void extendBy(const KbVec2f& point)
    {
        for (int i = 0; i < 2; ++i) {
            if (point[i] < m_min[i]) m_min[i] = point[i];
            if (point[i] > m_max[i]) m_max[i] = point[i];
        }
    }
    void extendBy(const KbBox2f& box)
    {
        if (!box.isEmpty()) {
            extendBy(box.m_min);
            extendBy(box.m_max);
        }
    }
    /// Whether the point lies inside or on the rectangle, or the two share a point. An empty one
    /// meets nothing.
    bool intersect(const KbVec2f& point) const
    {
        for (int i = 0; i < 2; ++i)
            if (!(point[i] >= m_min[i] && point[i] <= m_max[i])) return false;
        return true;
    }
    bool intersect(const KbBox2f& box) const
    {
        if (isEmpty() || box.isEmpty()) return false;
        for (int i = 0; i < 2; ++i)
            if (m_min[i] > box.m_max[i] || m_max[i] < box.m_min[i]) return false;
        return true;
    }

    /// By the corners, also of empty ones.
    friend bool operator==(const KbBox2f& a, const KbBox2f& b)
    {
        return a.m_min == b.m_min && a.m_max == b.m_max;
    }
    friend bool operator!=(const KbBox2f& a, const KbBox2f& b) { return !(a == b); }

private:
    KbVec2f m_min, m_max;
};
