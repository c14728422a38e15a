#pragma once

#include <arborium/base/KsApi.h>

#include <cstdint>

/// What the library bears before it refuses with a message. An application may change each limit
/// before it reads or builds; it does so at its own risk.
struct ARBORIUM_API KsLimits {
    std::int32_t nesting = 512; ///< Depth of a tree, in a file or by calls.
    std::int32_t nodesPerFile = 1000000;
    std::int64_t visits = 2000000;        ///< Nodes met by a traversal, shared ones each time.
    std::int64_t fileBytes = 256LL << 20; ///< Of a file with all that it includes.
    std::int32_t filesPerFile = 10000;    ///< Included in one, repeated ones each time.
    std::int64_t stringBytes = 16LL << 20;
    std::int32_t nameBytes = 1024;
    std::int64_t valuesPerField = 4LL << 20;
    std::int32_t captionChars = 64 * 1024; ///< Shown of one caption or label.
    std::int32_t textLines = 100000;       ///< Shown of one text that is edited in a scene.
    std::int32_t listItems = 100000;       ///< Items of one list.
    std::int32_t layoutNesting2D = 128;    ///< Layouts inside each other in a window.
    std::int32_t maxSize = 1000000;        ///< Absolute value of a size or position.
    std::int32_t maxLimitSize = 16777215;  ///< Largest maximum size of a widget.
    std::int32_t errorsPerFile = 100;      ///< Reported before the rest is only counted.
    std::int32_t notificationDepth = 64;   ///< Changes that cause each other.

    /// The limits in force.
    static KsLimits& current();
};
