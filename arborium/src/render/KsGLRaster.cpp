// Small pictures without OpenGL.

#include "KsGLDrawer.h"

#include <algorithm>
#include <cmath>

namespace {

struct Point {
    float x, y;
};

std::uint32_t toByte(float value)
{
    return static_cast<std::uint32_t>(value > 0 ? std::min(value, 1.0f) * 255 + 0.5f : 0);
}

std::uint32_t toWord(const KbColor& color)
{
    return 0xff000000u | toByte(color[0]) << 16 | toByte(color[1]) << 8 | toByte(color[2]);
}

/// The first pixel whose centre does not lie before `x`, from 0 to `most`.
int pixelFrom(float x, int most)
{
    return static_cast<int>(std::ceil(std::clamp(x - 0.5f, 0.0f, static_cast<float>(most))));
}

bool isFinite(const std::vector<KsGLVertex>& vertices)
{
    return std::all_of(vertices.begin(), vertices.end(),
                       [](const KsGLVertex& v) { return std::isfinite(v.x + v.y); });
}

class RasterDrawer final : public KsGLDrawer {
public:
    RasterDrawer(int width, int height, float scale, const KbColor* background)
        : m_width(width), m_height(height), m_scale(scale),
          m_pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height),
                   background ? toWord(*background) : 0)
    {}

    void draw(KsGL::Primitive primitive, const std::vector<KsGLVertex>& given, bool smooth) override
    {
        const bool area = primitive == KsGL::POLYGON && m_scale > 1;
        std::vector<KsGLVertex>& v = m_vertices;
        v = given;
        for (KsGLVertex& vertex : v) {
            vertex.x = vertex.x * m_scale + (area ? 0 : insidePixel);
            vertex.y = vertex.y * m_scale + (area ? 0 : insidePixel);
        }
        const std::size_t n = v.size();
        switch (primitive) {
        case KsGL::LINES:
            for (std::size_t i = 0; i + 1 < n; i += 2) line(v[i], v[i + 1], smooth);
            break;
        case KsGL::POLYGON: {
            // A flat polygon has the colour of its first corner.
            if (!smooth && n)
                for (KsGLVertex& vertex : v) vertex.color = v[0].color;
            const bool plain = std::all_of(
                v.begin(), v.end(), [&v](const KsGLVertex& c) { return c.color == v[0].color; });
            if (area && plain && n > 2 && isFinite(v)) {
                cover(v);
                break;
            }
            for (std::size_t i = 2; i < n; ++i) triangle(v[0], v[i - 1], v[i]);
            break;
        }
        case KsGL::QUAD_STRIP:
            for (std::size_t i = 0; i + 3 < n; i += 2) {
                KsGLVertex quad[4] = {v[i], v[i + 1], v[i + 2], v[i + 3]};
                if (!smooth)
                    for (KsGLVertex& vertex : quad) vertex.color = v[i + 3].color;
                if (isUpright(quad)) {
                    upright(quad);
                    continue;
                }
                triangle(quad[0], quad[1], quad[2]);
                triangle(quad[1], quad[2], quad[3]);
            }
            break;
        }
    }

    void finish(std::vector<std::uint32_t>& argb) override { argb = std::move(m_pixels); }

private:
    std::uint32_t* row(int y)
    {
        return m_pixels.data() +
               static_cast<std::size_t>(m_height - 1 - y) * static_cast<std::size_t>(m_width);
    }

    /// Edges along the axes and a colour that changes from left to right only: all rows are equal.
    static bool isUpright(const KsGLVertex (&q)[4])
    {
        return q[0].x == q[1].x && q[2].x == q[3].x && q[0].y == q[2].y && q[1].y == q[3].y &&
               q[0].color == q[1].color && q[2].color == q[3].color && std::isfinite(q[0].x) &&
               std::isfinite(q[2].x) && std::isfinite(q[0].y) && std::isfinite(q[1].y);
    }

    void upright(const KsGLVertex (&q)[4])
    {
        const KsGLVertex& left = q[0].x <= q[2].x ? q[0] : q[2];
        const KsGLVertex& right = q[0].x <= q[2].x ? q[2] : q[0];
        const int x0 = pixelFrom(left.x, m_width), x1 = pixelFrom(right.x, m_width);
        const int y0 = pixelFrom(std::min(q[0].y, q[1].y), m_height);
        const int y1 = pixelFrom(std::max(q[0].y, q[1].y), m_height);
        if (x0 >= x1 || y0 >= y1) return;
        std::uint32_t* first = row(y0);
        span(first, x0, x1, left.x, left.color, (right.color - left.color) / (right.x - left.x));
        for (int y = y0 + 1; y < y1; ++y) std::copy(first + x0, first + x1, row(y) + x0);
    }

    /// Pixels of one row: `color` at `x`, and from there as it changes with each pixel.
    static void span(std::uint32_t* row, int x0, int x1, float x, const KbColor& color,
                     const KbVec3f& change)
    {
        if (change == KbVec3f(0, 0, 0)) {
            std::fill(row + x0, row + x1, toWord(color));
            return;
        }
        const float r = color[0], g = color[1], b = color[2];
        for (int i = x0; i < x1; ++i) {
            const float t = static_cast<float>(i) + 0.5f - x;
            row[i] = 0xff000000u | toByte(r + t * change[0]) << 16 |
                     toByte(g + t * change[1]) << 8 | toByte(b + t * change[2]);
        }
    }

    void triangle(const KsGLVertex& a, const KsGLVertex& b, const KsGLVertex& c)
    {
        const float area = (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
        if (!(std::fabs(area) > 0) || !std::isfinite(area)) return;
        const KbVec3f acrossX =
            ((b.color - a.color) * (c.y - a.y) - (c.color - a.color) * (b.y - a.y)) / area;
        const KbVec3f acrossY =
            ((c.color - a.color) * (b.x - a.x) - (b.color - a.color) * (c.x - a.x)) / area;
        const Point corners[] = {{a.x, a.y}, {b.x, b.y}, {c.x, c.y}};
        const int y0 = pixelFrom(std::min({a.y, b.y, c.y}), m_height);
        const int y1 = pixelFrom(std::max({a.y, b.y, c.y}), m_height);
        for (int y = y0; y < y1; ++y) {
            const float middle = static_cast<float>(y) + 0.5f;
            float from, to;
            if (!cut(corners, 3, middle, from, to)) continue;
            const int x0 = pixelFrom(from, m_width);
            // A centre that lies on the right edge belongs to the area.
            const int x1 = pixelFrom(std::nextafter(to, 1e30f), m_width);
            if (x0 < x1)
                span(row(y), x0, x1, a.x, KbColor(a.color + acrossY * (middle - a.y)), acrossX);
        }
    }

    /// Where a line from left to right enters and leaves a convex polygon.
    static bool cut(const Point* corners, std::size_t count, float y, float& from, float& to)
    {
        bool found = false;
        for (std::size_t i = 0, before = count - 1; i < count; before = i++) {
            const Point p = corners[before], q = corners[i];
            if ((p.y <= y) == (q.y <= y)) continue;
            const double share = (static_cast<double>(y) - p.y) / (static_cast<double>(q.y) - p.y);
            const auto x = static_cast<float>(p.x + share * (static_cast<double>(q.x) - p.x));
            from = found ? std::min(from, x) : x;
            to = found ? std::max(to, x) : x;
            found = true;
        }
        return found;
    }

    /// A convex polygon of one colour, pixels along its edges in part.
    void cover(const std::vector<KsGLVertex>& polygon)
    {
        constexpr int linesPerRow = 4;
        m_corners.clear();
        float low = polygon[0].y, high = low;
        for (const KsGLVertex& v : polygon) {
            m_corners.push_back({v.x, v.y});
            low = std::min(low, v.y);
            high = std::max(high, v.y);
        }
        const auto rows = static_cast<float>(m_height);
        const int y0 = static_cast<int>(std::floor(std::clamp(low, 0.0f, rows)));
        const int y1 = static_cast<int>(std::ceil(std::clamp(high, 0.0f, rows)));
        for (int y = y0; y < y1; ++y) {
            m_covered.assign(static_cast<std::size_t>(m_width) + 1, 0);
            int first = m_width, last = 0;
            for (int k = 0; k < linesPerRow; ++k) {
                float from, to;
                const float at =
                    static_cast<float>(y) + (static_cast<float>(k) + 0.5f) / linesPerRow;
                if (!cut(m_corners.data(), m_corners.size(), at, from, to)) continue;
                from = std::clamp(from, 0.0f, static_cast<float>(m_width));
                to = std::clamp(to, 0.0f, static_cast<float>(m_width));
                const int x0 = static_cast<int>(from), x1 = static_cast<int>(to);
                for (int x = x0; x <= x1; ++x) {
                    const float end = std::min(to, static_cast<float>(x + 1));
                    const float begin = std::max(from, static_cast<float>(x));
                    m_covered[static_cast<std::size_t>(x)] += (end - begin) / linesPerRow;
                }
                first = std::min(first, x0);
                last = std::max(last, std::min(x1 + 1, m_width));
            }
            blend(row(y), first, last, polygon[0].color);
        }
    }

    void blend(std::uint32_t* pixels, int first, int last, const KbColor& color) const
    {
        const std::uint32_t over = toWord(color);
        for (int x = first; x < last; ++x) {
            const float part = std::min(m_covered[static_cast<std::size_t>(x)], 1.0f);
            std::uint32_t mixed = 0;
            for (int shift = 0; shift < 32; shift += 8) {
                const auto below = static_cast<float>(pixels[x] >> shift & 0xff);
                const auto above = static_cast<float>(over >> shift & 0xff);
                mixed |= static_cast<std::uint32_t>(below + (above - below) * part + 0.5f) << shift;
            }
            pixels[x] = mixed;
        }
    }

    void line(const KsGLVertex& a, const KsGLVertex& b, bool smooth)
    {
        if (!std::isfinite(a.x + a.y + b.x + b.y)) return;
        constexpr float longest = 65536;
        const float dx = b.x - a.x, dy = b.y - a.y;
        const int steps =
            static_cast<int>(std::min(std::max(std::fabs(dx), std::fabs(dy)) + 0.5f, longest));
        for (int i = 0; i < steps; ++i) {
            const float t = static_cast<float>(i) / static_cast<float>(steps);
            const float x = std::floor(a.x + t * dx), y = std::floor(a.y + t * dy);
            const bool isInside = x >= 0 && y >= 0 && x < static_cast<float>(m_width) &&
                                  y < static_cast<float>(m_height);
            if (!isInside) continue; // no number is inside either
            row(static_cast<int>(y))[static_cast<int>(x)] =
                toWord(smooth ? KbColor(a.color * (1 - t) + b.color * t) : b.color);
        }
    }

    int m_width, m_height;
    float m_scale;
    std::vector<std::uint32_t> m_pixels;
    std::vector<KsGLVertex> m_vertices;
    std::vector<Point> m_corners;
    std::vector<float> m_covered;
};

} // namespace

std::unique_ptr<KsGLDrawer> ksRasterDrawer(int width, int height, float scale,
                                           const KbColor* background)
{
    return std::make_unique<RasterDrawer>(width, height, scale, background);
}
