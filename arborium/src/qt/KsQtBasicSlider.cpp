#include <arborium/qt/KsQtBasicSlider.h>

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QStyle>
#include <QStyleOption>
#include <QWheelEvent>
#include <QWidget>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

constexpr int cursorHalf = 6; // half the width of the cursor
constexpr int cursorHeight = 11;
constexpr int cursorBelow = 6; // how far the cursor reaches below the bar
constexpr int margin = 2;
constexpr float smallStep = 0.01f, largeStep = 0.1f;

std::int16_t pixel(int value)
{
    return static_cast<std::int16_t>(std::clamp(value, -32768, 32767));
}

} // namespace

KsQtBasicSlider::KsQtBasicSlider(QWidget* parent, int type) : KsQtGLWidget(parent), m_type(type)
{
    QWidget* window = buildWidget(parent);
    window->setMinimumSize(4 * cursorHalf, cursorHeight + 2 * margin);
    if (m_type & KEYS) window->setFocusPolicy(Qt::StrongFocus);
    setBaseWidget(window);
    sizeChanged(window->width(), window->height());
}

KsQtBasicSlider::~KsQtBasicSlider() = default;

void KsQtBasicSlider::setValue(float value)
{
    value = std::isnan(value) ? 0 : value;
    if (value == m_value) return;
    m_value = value;
    placeCursor();
}

void KsQtBasicSlider::takeDragFrom(KsQtBasicSlider& earlier)
{
    QWidget* window = getNormalWindow();
    if (!earlier.m_dragged || !window || !window->isVisible()) return;
    m_dragged = std::exchange(earlier.m_dragged, false);
    m_grabOffset = earlier.m_grabOffset;
    // Qt sends the moves to nobody once the widget that was pressed is gone.
    window->grabMouse();
}

void KsQtBasicSlider::add(Callbacks& list, Callback function, void* data)
{
    remove(list, function, data);
    if (function) list.emplace_back(function, data);
}

void KsQtBasicSlider::remove(Callbacks& list, Callback function, void* data)
{
    list.erase(std::remove(list.begin(), list.end(), std::make_pair(function, data)), list.end());
}

void KsQtBasicSlider::addValueChangedCallback(Callback function, void* data)
{
    add(m_valueChanged, function, data);
}

void KsQtBasicSlider::removeValueChangedCallback(Callback function, void* data)
{
    remove(m_valueChanged, function, data);
}

void KsQtBasicSlider::addFinishCallback(Callback function, void* data)
{
    add(m_finished, function, data);
}

void KsQtBasicSlider::removeFinishCallback(Callback function, void* data)
{
    remove(m_finished, function, data);
}

bool KsQtBasicSlider::call(const Callbacks& list)
{
    const QPointer<KsQtBasicSlider> alive(this);
    const float value = m_value;
    const Callbacks present = list;
    for (const auto& callback : present) {
        // One that was taken out meanwhile is not called any more.
        if (std::find(list.begin(), list.end(), callback) == list.end()) continue;
        callback.first(callback.second, value);
        if (!alive) return false;
    }
    return true;
}

bool KsQtBasicSlider::moveTo(float value)
{
    value = std::clamp(value, 0.0f, 1.0f);
    if (value == m_value) return true;
    setValue(value);
    return call(m_valueChanged);
}

void KsQtBasicSlider::sizeChanged(int width, int height)
{
    // Bar and cursor stand together in the middle of the height; both keep off the ends by half a
    // cursor, so that it never leaves the widget.
    const int barHeight = std::clamp(height - cursorBelow - 2 * margin, 2, 10);
    const int bottom = std::max(margin, (height - barHeight - cursorBelow) / 2);
    m_bar.x0 = pixel(cursorHalf);
    m_bar.x1 = pixel(std::max(cursorHalf + 1, width - 1 - cursorHalf));
    m_bar.y0 = pixel(bottom + cursorBelow);
    m_bar.y1 = pixel(bottom + cursorBelow + barHeight - 1);
    m_cursor.y0 = pixel(bottom);
    m_cursor.y1 = pixel(bottom + cursorHeight - 1);
    placeCursor();
}

void KsQtBasicSlider::placeCursor()
{
    const float shown = std::clamp(m_value, 0.0f, 1.0f);
    const int x =
        m_bar.x0 + static_cast<int>(std::lround(shown * static_cast<float>(m_bar.x1 - m_bar.x0)));
    m_cursor.x0 = pixel(x - cursorHalf);
    m_cursor.x1 = pixel(x + cursorHalf);
    redraw();
}

bool KsQtBasicSlider::press(const QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton || !(m_type & (DRAG | JUMP))) return false;
    const int tip = (m_cursor.x0 + m_cursor.x1) / 2;
    const int y = getNormalWindow()->height() - 1 - event->pos().y();
    const bool onCursor = std::abs(event->pos().x() - tip) <= cursorHalf && y <= m_cursor.y1;
    m_grabOffset = onCursor ? tip - event->pos().x() : 0;
    m_dragged = true;
    if (onCursor || !(m_type & JUMP)) return true;
    moveTo(static_cast<float>(event->pos().x() - m_bar.x0) /
           static_cast<float>(m_bar.x1 - m_bar.x0));
    return true;
}

bool KsQtBasicSlider::pressKey(int key)
{
    float value = std::clamp(m_value, 0.0f, 1.0f);
    switch (key) {
    case Qt::Key_Left:
    case Qt::Key_Down: value -= smallStep; break;
    case Qt::Key_Right:
    case Qt::Key_Up: value += smallStep; break;
    case Qt::Key_PageDown: value -= largeStep; break;
    case Qt::Key_PageUp: value += largeStep; break;
    case Qt::Key_Home: value = 0; break;
    case Qt::Key_End: value = 1; break;
    default: return false;
    }
    if (moveTo(value)) call(m_finished);
    return true;
}

bool KsQtBasicSlider::processEvent(QEvent* event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick: return press(static_cast<QMouseEvent*>(event));
    case QEvent::MouseMove:
        if (!m_dragged) return false;
        if (m_type & DRAG) {
            const int x = static_cast<QMouseEvent*>(event)->pos().x() + m_grabOffset;
            moveTo(static_cast<float>(x - m_bar.x0) / static_cast<float>(m_bar.x1 - m_bar.x0));
        }
        return true;
    case QEvent::MouseButtonRelease:
        if (!m_dragged || static_cast<QMouseEvent*>(event)->button() != Qt::LeftButton)
            return false;
        m_dragged = false;
        if (QWidget::mouseGrabber() == getNormalWindow()) getNormalWindow()->releaseMouse();
        setValue(std::clamp(m_value, 0.0f, 1.0f)); // nobody has moved it since it lay outside
        call(m_finished);
        return true;
    case QEvent::KeyPress:
        return (m_type & KEYS) && pressKey(static_cast<QKeyEvent*>(event)->key());
    case QEvent::Wheel: {
        if (!(m_type & KEYS) || !getNormalWindow()->hasFocus()) return false;
        constexpr int notch = 120;
        m_wheel += static_cast<QWheelEvent*>(event)->angleDelta().y();
        const int notches = m_wheel / notch;
        m_wheel -= notches * notch;
        if (notches &&
            moveTo(std::clamp(m_value, 0.0f, 1.0f) + smallStep * static_cast<float>(notches)))
            call(m_finished);
        return true;
    }
    default: return false;
    }
}

void KsQtBasicSlider::redrawOverlay(QPainter& painter)
{
    QWidget* window = getNormalWindow();
    if (!window->hasFocus()) return;
    QStyleOptionFocusRect option;
    option.initFrom(window);
    option.backgroundColor = window->palette().color(QPalette::Window);
    window->style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, window);
}

const char* KsQtBasicSlider::getDefaultWidgetName() const { return "KsQtBasicSlider"; }
