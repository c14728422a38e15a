#pragma once

#include <arborium/base/KbViewportRegion.h>
#include <arborium/render/KsDrawList.h>

#include <cstdint>
#include <memory>
#include <vector>

/// Plays draw lists through OpenGL. What it keeps between frames: small meshes, merged into a few
/// large buffers by their state, so that a form of a thousand letters is a handful of calls; large
/// meshes in buffers of their own, which all players share.
class KsGLPlayer {
public:
    KsGLPlayer();
    ~KsGLPlayer();
    KsGLPlayer(const KsGLPlayer&) = delete;
    KsGLPlayer& operator=(const KsGLPlayer&) = delete;

    struct Frame {
        KbViewportRegion viewport;
        KbVec4f top, bottom; ///< Background, colours multiplied by their opacity.
        int samples = 4;
        int supersampling = 1;
    };
    /// Draws the list into `rgba`, four bytes per pixel of the window, rows from the top, colours
    /// multiplied by their opacity. FALSE if there is no OpenGL; the bytes are then untouched.
    bool play(const KsDrawList& list, const Frame& frame, std::vector<std::uint8_t>& rgba);
    /// The number of draw calls of the last frame.
    int getNumCalls() const;
    /// The largest width and height of a picture; 0 without OpenGL.
    static int getMaxSize();

private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};
