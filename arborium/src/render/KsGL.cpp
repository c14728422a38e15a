#include <epoxy/gl.h>

#include "KsGLFramebuffer.h"

#include <arborium/render/KsGL.h>
#include <arborium/render/KsGLContext.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>

namespace {

// Puts whole numbers safely inside a pixel, for lines and for areas.
constexpr float insidePixel = 0.375f;
constexpr std::size_t maxVertices = 1u << 20;
constexpr std::size_t maxShapes = 1u << 16;
constexpr int maxExtent = 16384;

struct Vertex {
    float x, y;
    KbColor color;
};

std::uint8_t toByte(float value)
{
    return static_cast<std::uint8_t>(value > 0 ? std::min(value, 1.0f) * 255 + 0.5f : 0);
}

/// What draws the primitives of a target.
class Drawer {
public:
    virtual ~Drawer() = default;
    virtual void draw(KsGL::Primitive primitive, const std::vector<Vertex>& vertices,
                      bool smooth) = 0;
    virtual void finish(std::uint8_t* rgbaFromBottom) = 0;
};

class GLDrawer final : public Drawer {
public:
    GLDrawer(int width, int height, float scale, const KbColor* background)
        : m_width(width), m_height(height)
    {
        if (!m_current || !KsGLFramebuffer::shared().bind(width, height, 1)) return;
        m_bound = true;
        glPushAttrib(GL_ALL_ATTRIB_BITS);
        glViewport(0, 0, width, height);
        glUseProgram(0);
        for (const GLenum off : {GL_DEPTH_TEST, GL_LIGHTING, GL_BLEND, GL_CULL_FACE,
                                 GL_SCISSOR_TEST, GL_TEXTURE_2D, GL_MULTISAMPLE})
            glDisable(off);
        glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
        const KbColor fill = background ? *background : KbColor(0, 0, 0);
        glClearColor(fill[0], fill[1], fill[2], background ? 1 : 0);
        glClear(GL_COLOR_BUFFER_BIT);
        glMatrixMode(GL_PROJECTION);
        glPushMatrix();
        glLoadIdentity();
        const double w = static_cast<double>(width) / static_cast<double>(scale);
        const double h = static_cast<double>(height) / static_cast<double>(scale);
        glOrtho(0, w, 0, h, -1, 1);
        glMatrixMode(GL_MODELVIEW);
        glPushMatrix();
        glLoadIdentity();
        glTranslatef(insidePixel, insidePixel, 0);
        glLineWidth(std::max(1.0f, scale));
    }
    ~GLDrawer() override
    {
        if (!m_bound) return;
        glMatrixMode(GL_MODELVIEW);
        glPopMatrix();
        glMatrixMode(GL_PROJECTION);
        glPopMatrix();
        glPopAttrib();
        KsGLFramebuffer::shared().unbind();
    }
    bool isBound() const { return m_bound; }
    void draw(KsGL::Primitive primitive, const std::vector<Vertex>& vertices, bool smooth) override
    {
        glShadeModel(smooth ? GL_SMOOTH : GL_FLAT);
        glBegin(static_cast<GLenum>(primitive));
        for (const Vertex& v : vertices) {
            glColor3fv(v.color.getValue());
            glVertex2f(v.x, v.y);
        }
        glEnd();
    }
    void finish(std::uint8_t* rgbaFromBottom) override
    {
        glFlush();
        KsGLFramebuffer::shared().read(m_width, m_height, rgbaFromBottom);
    }

private:
    const KsGLContext::Current m_current;
    bool m_bound = false;
    int m_width, m_height;
};

/// OpenGL's rules for areas and thin lines: a pixel belongs to an area that holds its centre, and a
/// line leaves out its last pixel.
class RasterDrawer final : public Drawer {
public:
    RasterDrawer(int width, int height, float scale, const KbColor* background)
        : m_width(width), m_height(height), m_scale(scale),
          m_pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4)
    {
        for (int y = 0; background && y < height; ++y)
            for (int x = 0; x < width; ++x) set(x, y, *background);
    }
    void draw(KsGL::Primitive primitive, const std::vector<Vertex>& given, bool smooth) override
    {
        std::vector<Vertex> v = given;
        for (Vertex& vertex : v) {
            vertex.x = (vertex.x + insidePixel) * m_scale;
            vertex.y = (vertex.y + insidePixel) * m_scale;
        }
        const std::size_t n = v.size();
        switch (primitive) {
        case KsGL::LINES:
            for (std::size_t i = 0; i + 1 < n; i += 2) line(v[i], v[i + 1], smooth);
            break;
        case KsGL::POLYGON:
            // A flat polygon has the colour of its first corner.
            if (!smooth && n)
                for (Vertex& vertex : v) vertex.color = v[0].color;
            for (std::size_t i = 2; i < n; ++i) triangle(v[0], v[i - 1], v[i]);
            break;
        case KsGL::QUAD_STRIP:
            for (std::size_t i = 0; i + 3 < n; i += 2) {
                Vertex quad[4] = {v[i], v[i + 1], v[i + 2], v[i + 3]};
                if (!smooth)
                    for (Vertex& vertex : quad) vertex.color = v[i + 3].color;
                triangle(quad[0], quad[1], quad[2]);
                triangle(quad[1], quad[2], quad[3]);
            }
            break;
        }
    }
    void finish(std::uint8_t* rgbaFromBottom) override
    {
        std::memcpy(rgbaFromBottom, m_pixels.data(), m_pixels.size());
    }

private:
    void set(int x, int y, const KbColor& color)
    {
        if (x < 0 || y < 0 || x >= m_width || y >= m_height) return;
        std::uint8_t* to =
            &m_pixels[(static_cast<std::size_t>(y) * static_cast<std::size_t>(m_width) +
                       static_cast<std::size_t>(x)) *
                      4];
        for (int c = 0; c < 3; ++c) to[c] = toByte(color[c]);
        to[3] = 255;
    }
    void triangle(const Vertex& a, const Vertex& b, const Vertex& c)
    {
        const float area = (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
        if (!(std::fabs(area) > 0) || !std::isfinite(area)) return;
        const auto first = [](float least) {
            return static_cast<int>(std::max(0.0f, std::floor(least)));
        };
        const auto last = [](float most, int size) {
            return static_cast<int>(std::min(static_cast<float>(size - 1), std::ceil(most)));
        };
        const int x0 = first(std::min({a.x, b.x, c.x})),
                  x1 = last(std::max({a.x, b.x, c.x}), m_width);
        const int y0 = first(std::min({a.y, b.y, c.y})),
                  y1 = last(std::max({a.y, b.y, c.y}), m_height);
        for (int y = y0; y <= y1; ++y)
            for (int x = x0; x <= x1; ++x) {
                const float px = static_cast<float>(x) + 0.5f, py = static_cast<float>(y) + 0.5f;
                const float u = ((b.x - px) * (c.y - py) - (b.y - py) * (c.x - px)) / area;
                const float v = ((c.x - px) * (a.y - py) - (c.y - py) * (a.x - px)) / area;
                const float w = 1 - u - v;
                if (u < 0 || v < 0 || w < 0) continue;
                set(x, y, KbColor(a.color * u + b.color * v + c.color * w));
            }
    }
    void line(const Vertex& a, const Vertex& b, bool smooth)
    {
        if (!std::isfinite(a.x + a.y + b.x + b.y)) return;
        const float dx = b.x - a.x, dy = b.y - a.y;
        const int steps = static_cast<int>(
            std::min(std::max(std::fabs(dx), std::fabs(dy)) / m_scale + 0.5f, float(maxExtent)));
        const int pen = std::max(1, static_cast<int>(std::lround(m_scale)));
        for (int i = 0; i < steps; ++i) {
            const float t = static_cast<float>(i) / static_cast<float>(steps);
            // The logical pixel, which is a block of pen by pen pixels.
            const int x = static_cast<int>(std::floor((a.x + t * dx) / m_scale) * m_scale);
            const int y = static_cast<int>(std::floor((a.y + t * dy) / m_scale) * m_scale);
            const KbColor color = smooth ? KbColor(a.color * (1 - t) + b.color * t) : b.color;
            for (int k = 0; k < pen * pen; ++k) set(x + k % pen, y + k / pen, color);
        }
    }

    int m_width, m_height;
    float m_scale;
    std::vector<std::uint8_t> m_pixels;
};

struct Shape {
    KsGL::Primitive primitive;
    std::vector<Vertex> vertices;
    bool smooth;
};

/// What is drawn into, and the state of the calls. Null outside of targets.
struct Drawing {
    std::unique_ptr<Drawer> drawer;
    bool usesGL = false;
    std::vector<Shape> shapes; // drawn so far by OpenGL, which may be lost
    bool open = false;         // between begin and end
    KsGL::Primitive primitive = KsGL::POLYGON;
    std::vector<Vertex> vertices;
    KbColor color{1, 1, 1};
    bool smooth = true;
    std::vector<bool> saved;
};
thread_local Drawing* t_drawing = nullptr;
bool s_raster = false;

} // namespace

struct KsGL::Target::Impl {
    Drawing drawing;
    int width = 0, height = 0;
    float scale = 1;
    std::unique_ptr<const KbColor> background; // null for none
};

KsGL::Target::Target(int width, int height, float scale, const KbColor* background)
    : m_impl(new Impl)
{
    scale = scale > 0 ? std::min(scale, 16.0f) : 1.0f;
    const auto pixels = [scale](int size) {
        return std::clamp(static_cast<int>(std::lround(static_cast<float>(size) * scale)), 1,
                          maxExtent);
    };
    m_impl->width = pixels(std::clamp(width, 1, maxExtent));
    m_impl->height = pixels(std::clamp(height, 1, maxExtent));
    m_impl->scale = scale;
    if (background) m_impl->background = std::make_unique<const KbColor>(*background);
    if (t_drawing) return;
    Drawing& drawing = m_impl->drawing;
    std::unique_ptr<GLDrawer> gl;
    if (!s_raster)
        gl = std::make_unique<GLDrawer>(m_impl->width, m_impl->height, scale, background);
    drawing.usesGL = gl && gl->isBound();
    if (drawing.usesGL)
        drawing.drawer = std::move(gl);
    else
        drawing.drawer =
            std::make_unique<RasterDrawer>(m_impl->width, m_impl->height, scale, background);
    t_drawing = &drawing;
}

KsGL::Target::~Target()
{
    if (t_drawing == &m_impl->drawing) t_drawing = nullptr;
    delete m_impl;
}

void KsGL::Target::finish(std::vector<std::uint8_t>& rgba)
{
    const std::size_t row = static_cast<std::size_t>(m_impl->width) * 4;
    rgba.assign(row * static_cast<std::size_t>(m_impl->height), 0);
    if (!m_impl->drawing.drawer) return;
    Drawing& drawing = m_impl->drawing;
    drawing.drawer->finish(rgba.data());
    if (drawing.usesGL && KsGLContext::isLost()) {
        // It is drawn once more, without OpenGL.
        drawing.drawer.reset();
        KsGLContext::releaseLost();
        drawing.drawer = std::make_unique<RasterDrawer>(m_impl->width, m_impl->height,
                                                        m_impl->scale, m_impl->background.get());
        for (const Shape& shape : drawing.shapes)
            drawing.drawer->draw(shape.primitive, shape.vertices, shape.smooth);
        drawing.drawer->finish(rgba.data());
        drawing.usesGL = false;
    }
    for (std::size_t low = 0, high = static_cast<std::size_t>(m_impl->height) - 1; low < high;
         ++low, --high)
        std::swap_ranges(rgba.data() + low * row, rgba.data() + (low + 1) * row,
                         rgba.data() + high * row);
    if (t_drawing == &m_impl->drawing) t_drawing = nullptr;
    m_impl->drawing.drawer.reset();
}

int KsGL::Target::getWidth() const { return m_impl->width; }

int KsGL::Target::getHeight() const { return m_impl->height; }

bool KsGL::Target::usesGL() const { return m_impl->drawing.usesGL; }

void KsGL::begin(Primitive primitive)
{
    if (!t_drawing) return;
    t_drawing->open = true;
    t_drawing->primitive = primitive;
    t_drawing->vertices.clear();
}

void KsGL::end()
{
    if (!t_drawing || !t_drawing->open) return;
    t_drawing->open = false;
    t_drawing->drawer->draw(t_drawing->primitive, t_drawing->vertices, t_drawing->smooth);
    if (t_drawing->usesGL && t_drawing->shapes.size() < maxShapes)
        t_drawing->shapes.push_back({t_drawing->primitive, t_drawing->vertices, t_drawing->smooth});
}

void KsGL::color3f(float red, float green, float blue)
{
    if (t_drawing) t_drawing->color = KbColor(red, green, blue);
}

void KsGL::color3fv(const float* rgb)
{
    if (rgb) color3f(rgb[0], rgb[1], rgb[2]);
}

void KsGL::color3ub(std::uint8_t red, std::uint8_t green, std::uint8_t blue)
{
    color3f(static_cast<float>(red) / 255, static_cast<float>(green) / 255,
            static_cast<float>(blue) / 255);
}

void KsGL::vertex2f(float x, float y)
{
    if (t_drawing && t_drawing->open && t_drawing->vertices.size() < maxVertices)
        t_drawing->vertices.push_back({x, y, t_drawing->color});
}

void KsGL::vertex2s(std::int16_t x, std::int16_t y) { vertex2f(x, y); }

void KsGL::vertex2sv(const std::int16_t* xy)
{
    if (xy) vertex2f(xy[0], xy[1]);
}

void KsGL::rects(std::int16_t x0, std::int16_t y0, std::int16_t x1, std::int16_t y1)
{
    begin(POLYGON);
    vertex2s(x0, y0);
    vertex2s(x1, y0);
    vertex2s(x1, y1);
    vertex2s(x0, y1);
    end();
}

void KsGL::shadeModel(ShadeModel model)
{
    if (t_drawing) t_drawing->smooth = model == SMOOTH;
}

void KsGL::pushAttrib(unsigned attributes)
{
    if (t_drawing && (attributes & LIGHTING_BIT) && t_drawing->saved.size() < 16)
        t_drawing->saved.push_back(t_drawing->smooth);
}

void KsGL::popAttrib()
{
    if (!t_drawing || t_drawing->saved.empty()) return;
    t_drawing->smooth = t_drawing->saved.back();
    t_drawing->saved.pop_back();
}

void KsGL::flush() {}

void KsGL::setRaster(bool raster) { s_raster = raster; }
