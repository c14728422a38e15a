#pragma once

#include <arborium/base/KbVec.h>

#include <cstdint>
#include <vector>

/// Triangles of a polygon. Corners are numbered through all contours; numbers behind the last
/// corner stand for `added`.
struct KsTessellation {
    /// A point where edges cross: a mixture of up to four earlier points.
    struct Added {
        KbVec3f position;
        std::uint32_t source[4];
        float weight[4]; ///< 0 for a source that does not exist.
    };
    std::vector<std::uint32_t> triangles;
    std::vector<Added> added;
};

enum class KsWinding { Odd, NonZero };

/// Cuts a polygon with any number of contours into triangles that run counter-clockwise seen from
/// where `normal` points to. All positions must be finite. FALSE if that is not possible.
bool ksTessellate(const std::vector<std::vector<KbVec3f>>& contours, const KbVec3f& normal,
                  KsWinding winding, KsTessellation& result);
