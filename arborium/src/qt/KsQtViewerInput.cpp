#include "KsKeyCodes.h"
#include "KsQtViewerImpl.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPointer>
#include <QTouchEvent>
#include <QWheelEvent>

#include <cmath>
#include <utility>

bool KsQtViewer::Impl::send(KsEvent& event, const QInputEvent& source)
{
    if (!scene || !prepare()) return false;
    const Qt::KeyboardModifiers modifiers = source.modifiers();
    event.setShiftDown(modifiers & Qt::ShiftModifier);
    event.setCtrlDown(modifiers & Qt::ControlModifier);
    event.setAltDown(modifiers & Qt::AltModifier);
    event.setTime(static_cast<double>(source.timestamp()) / 1000.0);
    event.setPosition(
        KbVec2f(static_cast<float>(lastPosition.x()), static_cast<float>(lastPosition.y())));
    const std::shared_ptr<KsHandleEventAction> held = action;
    const KsRef<KsNode> heldRoot(root.get());
    // What is called may run an event loop of its own, in which this is called again.
    const KsEvent* const outer = held->getEvent();
    held->setEvent(&event);
    held->apply(heldRoot.get());
    const bool handled = held->isHandled();
    held->setEvent(outer);
    return handled;
}

bool KsQtViewer::Impl::sendButton(Qt::MouseButton button, KsButtonEvent::State state,
                                  const QInputEvent& source)
{
    KsMouseButtonEvent::Button number;
    switch (button) {
    case Qt::LeftButton: number = KsMouseButtonEvent::BUTTON1; break;
    case Qt::MiddleButton: number = KsMouseButtonEvent::BUTTON2; break;
    case Qt::RightButton: number = KsMouseButtonEvent::BUTTON3; break;
    default: return false;
    }
    KsMouseButtonEvent event(number, state, KbVec2f());
    return send(event, source);
}

bool KsQtViewer::Impl::sendKey(int key, KsButtonEvent::State state, char16_t printable,
                               const QInputEvent& source)
{
    KsKeyboardEvent event(key, state, printable);
    return send(event, source);
}

void KsQtViewer::Impl::expectRelease(bool expected)
{
    isPressed = expected;
    // A modal window gets the release in place of this one.
    if (expected)
        viewer->window()->installEventFilter(viewer);
    else
        viewer->window()->removeEventFilter(viewer);
}

void KsQtViewer::Impl::loseRelease()
{
    if (!isPressed) return;
    expectRelease(false);
    const std::shared_ptr<KsHandleEventAction> held = action;
    held->releaseGrabber();
}

void KsQtViewer::Impl::endDrags()
{
    dragButton = Qt::NoButton;
    touchId = -1;
    touchIsZoom = false;
    if (isPressed) expectRelease(false);
    const std::shared_ptr<KsHandleEventAction> held = action;
    held->releaseGrabber();
}

bool KsQtViewer::eventFilter(QObject* object, QEvent* event)
{
    if (event->type() == QEvent::WindowBlocked) m_impl->loseRelease();
    return QWidget::eventFilter(object, event);
}

void KsQtViewer::hideEvent(QHideEvent* event)
{
    m_impl->endDrags();
    QWidget::hideEvent(event);
}

bool KsQtViewer::event(QEvent* event)
{
    switch (event->type()) {
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TouchCancel: m_impl->touch(static_cast<QTouchEvent*>(event)); return true;
    case QEvent::KeyPress: {
        // The scene may want the tabulator; unless it does, the focus goes on to another widget.
        auto* key = static_cast<QKeyEvent*>(event);
        if (key->key() == Qt::Key_Tab || key->key() == Qt::Key_Backtab) {
            const QPointer<KsQtViewer> alive(this);
            keyPressEvent(key);
            if (!alive || key->isAccepted()) return true;
            const bool plain = !(key->modifiers() & (Qt::ControlModifier | Qt::AltModifier));
            const bool backward =
                key->key() == Qt::Key_Backtab || key->modifiers() & Qt::ShiftModifier;
            key->setAccepted(plain && focusNextPrevChild(!backward));
            return true;
        }
        break;
    }
    default: break;
    }
    return QWidget::event(event);
}

void KsQtViewer::mousePressEvent(QMouseEvent* event)
{
    Impl& d = *m_impl;
    d.lastPosition = d.toScene(event->localPos());
    if (!d.viewing) {
        if (event->button() == Qt::LeftButton) d.expectRelease(true);
        d.sendButton(event->button(), KsButtonEvent::DOWN, *event);
        return;
    }
    if (d.seeking && event->button() == Qt::LeftButton) {
        setSeeking(false);
        seek(event->pos());
        return;
    }
    d.dragButton = event->button();
    if (d.dragButton == Qt::LeftButton && event->modifiers() & Qt::ShiftModifier)
        d.dragButton = Qt::MiddleButton;
    d.updateCursor();
}

void KsQtViewer::mouseReleaseEvent(QMouseEvent* event)
{
    Impl& d = *m_impl;
    d.lastPosition = d.toScene(event->localPos());
    if (event->button() == Qt::LeftButton) d.expectRelease(false);
    if (!d.viewing) {
        d.sendButton(event->button(), KsButtonEvent::UP, *event);
        return;
    }
    if (event->buttons() == Qt::NoButton) d.dragButton = Qt::NoButton;
    d.updateCursor();
}

void KsQtViewer::mouseMoveEvent(QMouseEvent* event)
{
    Impl& d = *m_impl;
    const QPointF position = d.toScene(event->localPos());
    const QPointF move = position - d.lastPosition;
    d.lastPosition = position;
    if (!d.viewing) {
        const QPointer<KsQtViewer> alive(this);
        if (!(event->buttons() & Qt::LeftButton)) d.loseRelease();
        if (!alive) return;
        KsLocation2Event motion;
        d.send(motion, *event);
        return;
    }
    if (event->buttons() == Qt::NoButton) d.dragButton = Qt::NoButton; // let go of elsewhere
    if (!d.prepare()) return;
    const QPointF center(d.pixels()[0] / 2.0, d.pixels()[1] / 2.0);
    switch (d.dragButton) {
    case Qt::LeftButton: d.turn(move); break;
    case Qt::MiddleButton: d.shift(move); break;
    case Qt::RightButton: d.zoom(static_cast<float>(std::exp(-move.y() * 0.01)), center); break;
    default: break;
    }
}

void KsQtViewer::mouseDoubleClickEvent(QMouseEvent* event)
{
    // The scene hears presses and tells double ones by their times.
    mousePressEvent(event);
}

void KsQtViewer::wheelEvent(QWheelEvent* event)
{
    Impl& d = *m_impl;
    const int turned = event->angleDelta().y();
    if (!turned) {
        event->ignore();
        return;
    }
    event->accept();
    const QPointF position = d.toScene(event->position());
    d.lastPosition = position;
    if (!d.viewing) {
        const QPointer<KsQtViewer> alive(this);
        const auto number = turned > 0 ? KsMouseButtonEvent::BUTTON4 : KsMouseButtonEvent::BUTTON5;
        KsMouseButtonEvent press(number, KsButtonEvent::DOWN, KbVec2f());
        const bool handled = d.send(press, *event);
        if (!alive) return;
        KsMouseButtonEvent release(number, KsButtonEvent::UP, KbVec2f());
        const bool releaseHandled = d.send(release, *event);
        if (handled || releaseHandled || !alive) return;
    }
    d.zoom(static_cast<float>(std::pow(0.9, turned / 120.0)), position);
}

void KsQtViewer::keyPressEvent(QKeyEvent* event)
{
    Impl& d = *m_impl;
    const QPointer<KsQtViewer> alive(this);
    bool handled = false;
    if (!d.viewing) {
        const KsKeyCodes codes(*event);
        if (codes.key) handled = d.sendKey(codes.key, KsButtonEvent::DOWN, codes.printable, *event);
        if (!alive) return;
        if (codes.second)
            handled |= d.sendKey(ksKeyOfCharacter(codes.second), KsButtonEvent::DOWN, codes.second,
                                 *event);
        if (!alive) return;
    } else if (event->key() == Qt::Key_Home) {
        home();
        handled = true;
    } else if (event->key() == Qt::Key_S) {
        setSeeking(!d.seeking);
        handled = true;
    }
    if (!handled && event->key() == Qt::Key_Escape) {
        setViewing(!d.viewing);
        handled = true;
    }
    event->setAccepted(handled);
}

void KsQtViewer::keyReleaseEvent(QKeyEvent* event)
{
    Impl& d = *m_impl;
    bool handled = false;
    // A key that is held down is pressed again and again, and released once.
    if (!d.viewing && !event->isAutoRepeat()) {
        const KsKeyCodes codes(*event);
        if (codes.key) handled = d.sendKey(codes.key, KsButtonEvent::UP, codes.printable, *event);
    }
    event->setAccepted(handled);
}

void KsQtViewer::inputMethodEvent(QInputMethodEvent* event)
{
    event->accept();
    if (m_impl->viewing) return;
    const QPointer<KsQtViewer> alive(this);
    const QString text = event->commitString();
    const QKeyEvent source(QEvent::KeyPress, 0, Qt::NoModifier);
    for (const QChar c : text) {
        const char16_t unit = c.unicode();
        for (const auto state : {KsButtonEvent::DOWN, KsButtonEvent::UP}) {
            m_impl->sendKey(ksKeyOfCharacter(unit), state, unit, source);
            if (!alive) return;
        }
    }
}

// One finger is the left button. A second one ends that and zooms.
void KsQtViewer::Impl::touch(QTouchEvent* event)
{
    event->accept();
    const QPointer<KsQtViewer> alive(viewer);
    const QList<QTouchEvent::TouchPoint>& points = event->touchPoints();
    const bool ends = event->type() == QEvent::TouchEnd || event->type() == QEvent::TouchCancel;
    const auto release = [&] {
        touchId = -1;
        if (viewing)
            dragButton = Qt::NoButton;
        else
            sendButton(Qt::LeftButton, KsButtonEvent::UP, *event);
    };
    if (points.size() >= 2 && !ends) {
        if (touchId >= 0) release();
        if (!alive) return;
        const QPointF a = toScene(points[0].pos()), b = toScene(points[1].pos());
        const QPointF lastA = toScene(points[0].lastPos()), lastB = toScene(points[1].lastPos());
        const double now = std::hypot(a.x() - b.x(), a.y() - b.y());
        const double before = std::hypot(lastA.x() - lastB.x(), lastA.y() - lastB.y());
        if (std::exchange(touchIsZoom, true) && now > 1 && before > 1)
            zoom(static_cast<float>(before / now), (a + b) / 2);
        return;
    }
    if (ends) {
        touchIsZoom = false;
        if (touchId >= 0) {
            for (const QTouchEvent::TouchPoint& point : points)
                if (point.id() == touchId) lastPosition = toScene(point.pos());
            release();
        }
        return;
    }
    if (points.isEmpty() || touchIsZoom) return;
    const QTouchEvent::TouchPoint& point = points.first();
    const QPointF position = toScene(point.pos());
    const QPointF move = position - lastPosition;
    lastPosition = position;
    if (event->type() == QEvent::TouchBegin) {
        touchId = point.id();
        if (viewing)
            dragButton = Qt::LeftButton;
        else
            sendButton(Qt::LeftButton, KsButtonEvent::DOWN, *event);
    } else if (point.id() == touchId) {
        if (viewing) {
            turn(move);
        } else {
            KsLocation2Event motion;
            send(motion, *event);
        }
    }
}
