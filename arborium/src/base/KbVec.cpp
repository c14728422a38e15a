#include <arborium/base/KbBox3f.h>
#include <arborium/base/KbColor.h>
#include <arborium/base/KbMatrix.h>
#include <arborium/base/KbNumber.h>
#include <arborium/base/KbRotation.h>
#include <arborium/base/KbVec.h>

#include <algorithm>
#include <ostream>

namespace {

template <class V, int N> std::ostream& print(std::ostream& out, const V& v)
{
    for (int i = 0; i < N; ++i) out << (i ? " " : "") << KbNumber::toString(v[i]);
    return out;
}

} // namespace

KbVec3f KbVec3f::getClosestAxis() const
{
    int best = 2;
    for (int i = 0; i < 3; ++i)
        if (std::fabs(m_value[i]) > std::fabs(m_value[best])) best = i;
    KbVec3f axis;
    axis[best] = m_value[best] < 0 ? -1.0f : 1.0f;
    return axis;
}

std::uint32_t KbColor::getPackedValue(float transparency) const
{
    const auto pack = [](float v) {
        return static_cast<std::uint32_t>(
            KbNumber::toInt32(std::min(std::max(v, 0.0f), 1.0f) * 255.0f + 0.5f));
    };
    return pack(m_value[0]) << 24 | pack(m_value[1]) << 16 | pack(m_value[2]) << 8 |
           pack(1.0f - transparency);
}

KbColor& KbColor::setPackedValue(std::uint32_t rgba, float& transparency)
{
    const auto unpack = [rgba](int shift) {
        return static_cast<float>(rgba >> shift & 0xff) / 255.0f;
    };
    setValue(unpack(24), unpack(16), unpack(8));
    transparency = 1.0f - unpack(0);
    return *this;
}

std::ostream& operator<<(std::ostream& out, const KbVec2f& v) { return print<KbVec2f, 2>(out, v); }

std::ostream& operator<<(std::ostream& out, const KbVec3f& v) { return print<KbVec3f, 3>(out, v); }

std::ostream& operator<<(std::ostream& out, const KbVec4f& v) { return print<KbVec4f, 4>(out, v); }

std::ostream& operator<<(std::ostream& out, const KbVec2i32& v)
{
    return print<KbVec2i32, 2>(out, v);
}

std::ostream& operator<<(std::ostream& out, const KbBox3f& box)
{
    return out << box.getMin() << " .. " << box.getMax();
}

std::ostream& operator<<(std::ostream& out, const KbMatrix& m)
{
    for (int row = 0; row < 4; ++row) out << (row ? "\n" : "") << KbVec4f(m[row]);
    return out;
}

std::ostream& operator<<(std::ostream& out, const KbRotation& rotation)
{
    KbVec3f axis;
    float radians;
    rotation.getValue(axis, radians);
    return out << axis << "  " << KbNumber::toString(radians);
}
