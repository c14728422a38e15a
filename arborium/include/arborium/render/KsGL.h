#pragma once

#include <arborium/base/KbColor.h>

#include <cstdint>
#include <vector>

/// OpenGL's immediate mode, as far as small widgets need it: they draw themselves with a handful of
/// calls in pixels, x to the right and y upward from the lower left corner. Calls go to the target
/// that is open, and to nowhere without one. Small targets are drawn by raster, which is done
/// before a context would have answered; large ones with the context of the process where there is
/// one (see `KsGLContext`). Both give the same picture.
class ARBORIUM_API KsGL {
public:
    // With OpenGL's values.
    enum Primitive { LINES = 0x0001, QUAD_STRIP = 0x0008, POLYGON = 0x0009 }; ///< convex polygons
    /// FLAT: one colour for each line, quad or polygon; SMOOTH, the default, mixes those of
    /// corners.
    enum ShadeModel { FLAT = 0x1D00, SMOOTH = 0x1D01 };
    enum Attributes { LIGHTING_BIT = 0x40 }; ///< the shade model

    // As the calls of OpenGL with these names, in the order in which OpenGL wants them: what it
    // would refuse does nothing. Colours are from 0 to 1, or 0 to 255 (ub), and white in a new
    // target. Null pointers are ignored.
    static void begin(Primitive primitive);
    static void end();
    static void color3f(float red, float green, float blue);
    static void color3fv(const float* rgb);
    static void color3ub(std::uint8_t red, std::uint8_t green, std::uint8_t blue);
    static void vertex2f(float x, float y);
    static void vertex2s(std::int16_t x, std::int16_t y);
    static void vertex2sv(const std::int16_t* xy);
    /// The pixels from `x0`, `y0` to just before `x1`, `y1`.
    static void rects(std::int16_t x0, std::int16_t y0, std::int16_t x1, std::int16_t y1);
    static void shadeModel(ShadeModel model);
    static void pushAttrib(unsigned attributes);
    static void popAttrib();
    static void flush();

    /// BEST: by raster below 256 times 256 pixels, else by OpenGL.
    enum Road { BEST, OPENGL, RASTER };
    /// How targets are drawn that are opened from now on. By raster, too, where there is no OpenGL.
    static void setRoad(Road road);

    /// A picture that is drawn while the target lives. Targets are not nested: an inner one draws
    /// nothing.
    class ARBORIUM_API Target {
    public:
        /// The picture is `width` times `height` pixels (1 to 16384), each of `scale` times `scale`
        /// pixels of the screen (up to 16; what is not above 0 counts as 1), filled with
        /// `background`. Without one it is transparent where nothing is drawn. A line is one pixel
        /// wide; beyond a scale of 1 slanted lines and the edges of polygons are smooth.
        Target(int width, int height, float scale, const KbColor* background = nullptr);
        ~Target();
        Target(const Target&) = delete;
        Target& operator=(const Target&) = delete;
        /// Ends the drawing. `argb` gets 0xAARRGGBB for each pixel of the screen, the colours
        /// multiplied by the opacity, rows from the top. Later calls draw nothing.
        void finish(std::vector<std::uint32_t>& argb);
        // In pixels of the screen.
        int getWidth() const;
        int getHeight() const;
        /// Whether OpenGL draws it.
        bool usesGL() const;

    private:
        struct Impl;
        Impl* m_impl;
    };
};
