#pragma once

#include <arborium/base/KbVec.h>

/// Red, green and blue, each 0 to 1. Black by default. Values outside of 0 to 1 are kept.
class KbColor : public KbVec3f {
public:
    constexpr KbColor() = default;
    /// From three numbers; a null pointer gives black.
    constexpr KbColor(float red, float green, float blue) : KbVec3f(red, green, blue) {}
    constexpr KbColor(const KbVec3f& rgb) : KbVec3f(rgb) {}
    explicit constexpr KbColor(const float* rgb) : KbVec3f(rgb) {}

    /// 0xRRGGBBAA, clamped to 8 bits each; `transparency` 0 is opaque and gives AA = 255.
    ARBORIUM_API std::uint32_t getPackedValue(float transparency = 0.0f) const;
    /// Takes a colour packed as 0xRRGGBBAA and yields its transparency, 0 to 1.
    ARBORIUM_API KbColor& setPackedValue(std::uint32_t rgba, float& transparency);
};
