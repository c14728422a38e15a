#pragma once

#include <arborium/render/KsGL.h>

#include <memory>
#include <vector>

struct KsGLVertex {
    float x, y;
    KbColor color;
};

/// What draws the primitives of a picture. Vertices are in the picture's own units, from its lower
/// left corner.
///
/// At a scale of 1 whole numbers fall on whole pixels, as OpenGL has it: a pixel belongs to an area
/// that holds its centre, and a line leaves out its last pixel. At a larger one polygons have smooth
/// edges; those of strips, which lie side by side, stay hard.
class KsGLDrawer {
public:
    virtual ~KsGLDrawer() = default;
    virtual void draw(KsGL::Primitive primitive, const std::vector<KsGLVertex>& vertices,
                      bool smooth) = 0;
    /// The pixels as 0xAARRGGBB, the colours multiplied by the opacity, rows from the top. Nothing
    /// is drawn afterwards.
    virtual void finish(std::vector<std::uint32_t>& argb) = 0;

    /// Puts whole numbers safely inside a pixel.
    static constexpr float insidePixel = 0.375f;
};

/// `width` times `height` pixels of the screen, `scale` times `scale` of them to a unit; transparent
/// at first without a background.
std::unique_ptr<KsGLDrawer> ksRasterDrawer(int width, int height, float scale,
                                           const KbColor* background);
/// Null without a context.
std::unique_ptr<KsGLDrawer> ksGLDrawer(int width, int height, float scale,
                                       const KbColor* background);
