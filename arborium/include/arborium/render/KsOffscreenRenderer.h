#pragma once

#include <arborium/base/KbColor.h>
#include <arborium/base/KbString.h>
#include <arborium/base/KbViewportRegion.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

class KsNode;
class KsRenderAction;

/// Draws scenes into memory, with no window and no display server:
///
///     KsOffscreenRenderer renderer(KbViewportRegion(800, 600));
///     renderer.setSupersampling(2);
///     if (renderer.render(root)) renderer.writeToFile("scene.png");
///
/// A scene without lights is lit from the eye; one without a camera is seen from the front, whole.
/// Without OpenGL the picture is the plain background.
class ARBORIUM_API KsOffscreenRenderer {
public:
    /// The window's size is the picture's, in pixels; at most 16384 in each direction.
    explicit KsOffscreenRenderer(const KbViewportRegion& viewport);
    ~KsOffscreenRenderer();
    KsOffscreenRenderer(const KsOffscreenRenderer&) = delete;
    KsOffscreenRenderer& operator=(const KsOffscreenRenderer&) = delete;

    /// As for the constructor: a larger one is cut, with a message. The picture is drawn anew.
    void setViewportRegion(const KbViewportRegion& viewport);
    /// What it was cut to, if it was.
    const KbViewportRegion& getViewportRegion() const;
    /// Black by default. `transparency` 1 leaves the background clear.
    void setBackgroundColor(const KbColor& color, float transparency = 0);
    /// From the lower edge to the upper one.
    void setBackgroundGradient(const KbColor& bottom, const KbColor& top);
    /// Samples per pixel for smooth edges, 1 (none) to 16, as far as the context has them; 4 by
    /// default.
    void setSamples(int samples);
    /// Draws larger by this factor, 1 (the default) to 8, and averages: for small text. Lines and
    /// points keep their width.
    void setSupersampling(int factor);
    /// Takes over background, samples and supersampling.
    void copyLookOf(const KsOffscreenRenderer& other);

    /// Brings the picture up to date. The scene is first measured if it changed, so that what
    /// builds itself at need is there. If neither the scene nor a setting changed since the last
    /// call, nothing is visited and nothing is drawn. Null gives the background. The scene is kept
    /// alive until another one is drawn. FALSE, with a message at first, without OpenGL.
    bool render(KsNode* root);
    /// Whether `render` of the last scene would have anything to do.
    bool isUpToDate() const;
    /// Drops the scene; the picture stays.
    void releaseScene();

    /// Four bytes per pixel, red, green, blue and opacity, rows from the top. Colours are
    /// multiplied by their opacity. Empty before the first `render`.
    const std::vector<std::uint8_t>& getImage() const;
    // Of the picture in pixels; 0 before the first `render`.
    int getWidth() const;
    int getHeight() const;
    /// Writes the picture as PNG: to a new file that then takes the place of an old one. FALSE,
    /// with a message, if there is no picture or the file cannot be written.
    bool writeToFile(const KbString& path) const;

    /// Called when the picture becomes out of date because the scene changed: once, until the next
    /// `render`. The function must not draw; an empty one takes it back.
    void setChangedCallback(std::function<void()> callback);

    /// What makes the draw lists. Never null.
    KsRenderAction* getRenderAction();
    /// How many pictures were drawn, and how many draw calls the last one took.
    long getNumFrames() const;
    int getNumDrawCalls() const;

private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};
