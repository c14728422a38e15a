#include <formweave/KsDialogCustomSlider.h>

#include <arborium/render/KsGL.h>

#include <QWidget>

#include <algorithm>

namespace {

const KbColor plainColor(0.66f, 0.66f, 0.66f);

std::int16_t pixel(int value)
{
    return static_cast<std::int16_t>(std::clamp(value, -32768, 32767));
}

// What a file holds may be no colour.
float component(float value) { return value > 0 ? std::min(value, 1.0f) : 0.0f; }

} // namespace

KsDialogCustomSlider::KsDialogCustomSlider(QWidget* parent)
    : KsQtBasicSlider(parent, DRAG | JUMP | KEYS), m_colors{plainColor},
      m_draw(&KsDialogCustomSlider::drawOneColor)
{}

KsDialogCustomSlider::~KsDialogCustomSlider() = default;

void KsDialogCustomSlider::setColors(const KbColor* colors, int count, int shaded)
{
    if (colors && count > 0)
        m_colors.assign(colors, colors + count);
    else
        m_colors.assign(1, plainColor);
    if (m_colors.size() == 1) {
        m_draw = &KsDialogCustomSlider::drawOneColor;
    } else {
        m_draw = &KsDialogCustomSlider::drawColors;
        m_shaded = shaded;
    }
    redraw();
}

void KsDialogCustomSlider::setEnable(int enable)
{
    m_enabled = enable;
    redraw();
}

QWidget* KsDialogCustomSlider::buildWidget(QWidget* parent)
{
    QWidget* window = KsQtGLWidget::buildWidget(parent);
    if (const QWidget* earlier = getWidget()) window->setMinimumSize(earlier->minimumSize());
    window->setFocusPolicy(Qt::StrongFocus);
    setBaseWidget(window);
    sizeChanged(window->width(), window->height());
    return window;
}

void KsDialogCustomSlider::paintGraphic()
{
    (this->*m_draw)();
    drawCursor();
    KsGL::flush();
}

void KsDialogCustomSlider::drawOneColor()
{
    const Rectangle& bar = getBarRectangle();
    const KbColor& color = m_colors.front();
    KsGL::color3f(component(color[0]), component(color[1]), component(color[2]));
    KsGL::rects(bar.x0, bar.y0, pixel(bar.x1 + 1), pixel(bar.y1 + 1));
}

void KsDialogCustomSlider::emitColor(const KbColor& color) const
{
    const float brightness = m_enabled ? 1.0f : 0.5f;
    KsGL::color3f(component(color[0] * brightness), component(color[1] * brightness),
                  component(color[2] * brightness));
}

void KsDialogCustomSlider::drawColors()
{
    const Rectangle& bar = getBarRectangle();
    const auto count = static_cast<float>(m_colors.size());
    const auto width = static_cast<float>(bar.x1 - bar.x0 + 1);
    const std::int16_t top = pixel(bar.y1 + 1);
    auto x = static_cast<float>(bar.x0);
    const auto emitEdge = [&] {
        const auto at = static_cast<std::int16_t>(x);
        KsGL::vertex2s(at, bar.y0);
        KsGL::vertex2s(at, top);
    };
    KsGL::pushAttrib(KsGL::LIGHTING_BIT);
    KsGL::shadeModel(m_shaded ? KsGL::SMOOTH : KsGL::FLAT);
    KsGL::begin(KsGL::QUAD_STRIP);
    const float step = m_shaded ? width / (count - 1) : width / count;
    if (!m_shaded) {
        // A band has the colour of its right edge.
        emitColor(m_colors.front());
        emitEdge();
        x += step;
    }
    for (const KbColor& color : m_colors) {
        emitColor(color);
        emitEdge();
        x += step;
    }
    KsGL::end();
    KsGL::popAttrib();
}

void KsDialogCustomSlider::drawCursor()
{
    const Rectangle& cursor = getCursorRectangle();
    const int x0 = cursor.x0, y0 = cursor.y0, x1 = cursor.x1, y1 = cursor.y1;
    const int tip = (x0 + x1) / 2;
    const auto vertex = [](int x, int y) { KsGL::vertex2s(pixel(x), pixel(y)); };
    KsGL::color3ub(0xAA, 0xAA, 0xAA);
    KsGL::begin(KsGL::POLYGON);
    vertex(x0, y0);
    vertex(tip, y1);
    vertex(x1, y0);
    KsGL::end();

    struct Edge {
        std::uint8_t grey;
        int fromX, fromY, toX, toY;
    };
    const Edge edges[] = {
        {0x00, x0, y0, tip, y1},
        {0x32, tip, y1, x1, y0},
        {0x32, x1, y0, x0 + 1, y0},
        {0xFF, x0 + 1, y0 + 1, tip, y1 - 1},
        {0x55, tip, y1 - 1, x1 - 1, y0 + 1},
        {0x80, x1 - 1, y0 + 1, x0 + 2, y0 + 1},
        {0xFF, x0 + 2, y0 + 2, tip, y1 - 2},
        {0x55, tip, y1 - 2, x1 - 2, y0 + 2},
    };
    KsGL::begin(KsGL::LINES);
    for (const Edge& edge : edges) {
        KsGL::color3ub(edge.grey, edge.grey, edge.grey);
        vertex(edge.fromX, edge.fromY);
        vertex(edge.toX, edge.toY);
    }
    KsGL::end();
}
