#include <arborium/qt/KsQtGLWidget.h>

#include <arborium/render/KsGL.h>

#include <QEvent>
#include <QImage>
#include <QPaintEngine>
#include <QPainter>
#include <QPointer>
#include <QWidget>

#include <cstdint>
#include <utility>
#include <vector>

struct KsQtGLWidget::Impl {
    QPointer<QWidget> window;
    std::unique_ptr<KsGL::Target> target;
    QImage picture;
    qreal scale = 0; // of the picture that is being painted; 0 outside of paint events
    bool stale = true;
    bool initialized = false;
    bool doubleBuffer = true;
    long pictures = 0;

    qreal currentScale() const { return scale > 0 ? scale : window->devicePixelRatioF(); }
};

KsQtGLWidget::KsQtGLWidget(QWidget* parent, const char* name)
    : KsQtComponent(parent, name), m_impl(new Impl)
{}

KsQtGLWidget::~KsQtGLWidget() = default;

QWidget* KsQtGLWidget::buildWidget(QWidget* parent)
{
    auto* window = new QWidget(parent);
    window->installEventFilter(this);
    m_impl->window = window;
    m_impl->stale = true;
    return window;
}

QWidget* KsQtGLWidget::getNormalWindow() const { return m_impl->window; }

void KsQtGLWidget::redraw()
{
    m_impl->stale = true;
    if (m_impl->window) m_impl->window->update();
}

void KsQtGLWidget::setDoubleBuffer(bool doubleBuffer) { m_impl->doubleBuffer = doubleBuffer; }

bool KsQtGLWidget::isDoubleBuffer() const { return m_impl->doubleBuffer; }

bool KsQtGLWidget::bindNormalContext()
{
    const QWidget* window = m_impl->window;
    if (!window || m_impl->target) return false;
    // What the widget stands on shows through, whatever its style makes of it.
    m_impl->target = std::make_unique<KsGL::Target>(window->width(), window->height(),
                                                    static_cast<float>(m_impl->currentScale()));
    if (!std::exchange(m_impl->initialized, true)) initGraphic();
    return true;
}

void KsQtGLWidget::unbindNormalContext()
{
    if (!m_impl->target) return;
    const int width = m_impl->target->getWidth(), height = m_impl->target->getHeight();
    // The image owns its pixels: whoever paints may keep a copy of it.
    auto* pixels = new std::vector<std::uint32_t>;
    m_impl->target->finish(*pixels);
    m_impl->target.reset();
    m_impl->picture = QImage(
        reinterpret_cast<const uchar*>(pixels->data()), width, height, 4 * width,
        QImage::Format_ARGB32_Premultiplied,
        [](void* owned) { delete static_cast<std::vector<std::uint32_t>*>(owned); }, pixels);
    if (m_impl->window) m_impl->picture.setDevicePixelRatio(m_impl->currentScale());
    m_impl->stale = false;
    ++m_impl->pictures;
    if (!m_impl->doubleBuffer) swapNormalBuffers();
}

void KsQtGLWidget::swapNormalBuffers()
{
    if (m_impl->window) m_impl->window->update();
}

long KsQtGLWidget::getNumPictures() const { return m_impl->pictures; }

void KsQtGLWidget::paint()
{
    QWidget* window = m_impl->window;
    QPainter painter(window);
    // A widget may be painted into a picture that is finer than its screen.
    const QPaintEngine* engine = painter.paintEngine();
    const qreal scale = engine ? engine->paintDevice()->devicePixelRatioF() : 1;
    m_impl->scale = scale;
    if (m_impl->picture.devicePixelRatio() != scale) m_impl->stale = true;
    if (m_impl->stale && bindNormalContext()) {
        paintGraphic();
        const bool doubleBuffer = m_impl->doubleBuffer;
        m_impl->doubleBuffer = true; // this paint event shows it
        unbindNormalContext();
        m_impl->doubleBuffer = doubleBuffer;
    }
    m_impl->scale = 0;
    painter.drawImage(0, 0, m_impl->picture);
    redrawOverlay(painter);
}

bool KsQtGLWidget::eventFilter(QObject* watched, QEvent* event)
{
    const QPointer<KsQtGLWidget> alive(this);
    if (watched == m_impl->window.data()) {
        switch (event->type()) {
        case QEvent::Paint: paint(); return true;
        case QEvent::Resize:
            m_impl->stale = true;
            sizeChanged(m_impl->window->width(), m_impl->window->height());
            break;
        case QEvent::FocusIn:
        case QEvent::FocusOut:
        case QEvent::EnabledChange: m_impl->window->update(); break;
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::MouseMove:
        case QEvent::Wheel:
        case QEvent::KeyPress:
        case QEvent::KeyRelease:
            if (m_impl->window->isEnabled() && processEvent(event)) {
                event->accept();
                return true;
            }
            break;
        default: break;
        }
    }
    return alive ? KsQtComponent::eventFilter(watched, event) : true;
}

void KsQtGLWidget::initGraphic() {}

void KsQtGLWidget::paintGraphic() {}

void KsQtGLWidget::redrawOverlay(QPainter&) {}

void KsQtGLWidget::sizeChanged(int, int) {}

bool KsQtGLWidget::processEvent(QEvent*) { return false; }

const char* KsQtGLWidget::getDefaultWidgetName() const { return "KsQtGLWidget"; }
