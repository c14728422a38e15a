#include <arborium/render/KsGL.h>
#include <arborium/render/KsGLContext.h>

#include "KsGLDrawer.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr std::size_t maxVertices = 1u << 20;
constexpr std::size_t maxShapes = 1u << 16;
constexpr int maxExtent = 16384;
// Asking the context for a picture of fewer pixels than this takes longer than making it by hand.
constexpr long leastPixelsByContext = 256 * 256;

struct Shape {
    KsGL::Primitive primitive;
    std::vector<KsGLVertex> vertices;
    bool smooth;
};

/// What is drawn into, and the state of the calls. Null outside of targets.
struct Drawing {
    std::unique_ptr<KsGLDrawer> drawer;
    float scale = 1;
    bool usesGL = false;
    std::vector<Shape> shapes; // drawn so far by OpenGL, which may be lost
    bool open = false;         // between begin and end
    KsGL::Primitive primitive = KsGL::POLYGON;
    std::vector<KsGLVertex> vertices;
    KbColor color{1, 1, 1};
    bool smooth = true;
    std::vector<bool> saved;
};
thread_local Drawing* t_drawing = nullptr;
KsGL::Road s_road = KsGL::BEST;

void drawShape(Drawing& drawing, KsGL::Primitive primitive, const std::vector<KsGLVertex>& vertices)
{
    drawing.drawer->draw(primitive, vertices, drawing.smooth);
    if (drawing.usesGL && drawing.shapes.size() < maxShapes)
        drawing.shapes.push_back({primitive, vertices, drawing.smooth});
}

/// A line from pixel to pixel, one unit wide.
void drawThickLine(Drawing& drawing, const KsGLVertex& a, const KsGLVertex& b)
{
    const float dx = b.x - a.x, dy = b.y - a.y;
    const float length = std::hypot(dx, dy);
    if (!(length > 0)) return;
    // To the sides, and beyond both ends, so that lines that meet leave no gap.
    const float x = dx / length / 2, y = dy / length / 2;
    const auto corner = [](const KsGLVertex& v, float byX, float byY) {
        return KsGLVertex{v.x + 0.5f + byX, v.y + 0.5f + byY, v.color};
    };
    const std::vector<KsGLVertex> outline = {corner(a, -x - y, -y + x), corner(a, -x + y, -y - x),
                                             corner(b, x + y, y - x), corner(b, x - y, y + x)};
    drawShape(drawing, KsGL::POLYGON, outline);
}

} // namespace

struct KsGL::Target::Impl {
    Drawing drawing;
    int width = 0, height = 0;
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
    if (background) m_impl->background = std::make_unique<const KbColor>(*background);
    if (t_drawing) return;
    Drawing& drawing = m_impl->drawing;
    drawing.scale = scale;
    const long pixelCount = static_cast<long>(m_impl->width) * m_impl->height;
    if (s_road == OPENGL || (s_road == BEST && pixelCount >= leastPixelsByContext))
        drawing.drawer = ksGLDrawer(m_impl->width, m_impl->height, scale, background);
    drawing.usesGL = drawing.drawer != nullptr;
    if (!drawing.usesGL)
        drawing.drawer = ksRasterDrawer(m_impl->width, m_impl->height, scale, background);
    t_drawing = &drawing;
}

KsGL::Target::~Target()
{
    if (t_drawing == &m_impl->drawing) t_drawing = nullptr;
    delete m_impl;
}

void KsGL::Target::finish(std::vector<std::uint32_t>& argb)
{
    Drawing& drawing = m_impl->drawing;
    if (drawing.drawer)
        drawing.drawer->finish(argb);
    else
        argb.assign(
            static_cast<std::size_t>(m_impl->width) * static_cast<std::size_t>(m_impl->height), 0);
    if (drawing.usesGL && KsGLContext::isLost()) {
        // It is drawn once more, without OpenGL.
        drawing.drawer.reset();
        KsGLContext::releaseLost();
        const auto raster =
            ksRasterDrawer(m_impl->width, m_impl->height, drawing.scale, m_impl->background.get());
        for (const Shape& shape : drawing.shapes)
            raster->draw(shape.primitive, shape.vertices, shape.smooth);
        raster->finish(argb);
        drawing.usesGL = false;
    }
    if (t_drawing == &drawing) t_drawing = nullptr;
    drawing.drawer.reset();
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
    Drawing& drawing = *t_drawing;
    drawing.open = false;
    if (drawing.primitive != LINES || drawing.scale <= 1) {
        drawShape(drawing, drawing.primitive, drawing.vertices);
        return;
    }
    for (std::size_t i = 0; i + 1 < drawing.vertices.size(); i += 2)
        drawThickLine(drawing, drawing.vertices[i], drawing.vertices[i + 1]);
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

void KsGL::setRoad(Road road) { s_road = road; }
