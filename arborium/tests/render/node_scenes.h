#pragma once

#include <arborium/base/KbBox3f.h>

#include <functional>
#include <string>
#include <vector>

/// A scene that shows what nodes of one class do, and what is to be found in it.
struct NodeScene {
    /// A ray against the z axis, and the name of what it meets; null for nothing.
    struct Ray {
        float x, y;
        const char* meets;
    };

    const char* type; ///< As in a file.
    const char* content;
    std::function<KbBox3f()> box; ///< Worked out by hand, or from Qt's metrics of the font.
    std::vector<Ray> rays;
};

/// One for each class of nodes that is no kit: kits look as what is in their parts.
const std::vector<NodeScene>& nodeScenes();
