#include "KsCameraControl.h"
#include "KsKeyCodes.h"
#include "render/KsFraming.h"

#include <arborium/actions/KsGetBoundingBoxAction.h>
#include <arborium/actions/KsGetMatrixAction.h>
#include <arborium/actions/KsHandleEventAction.h>
#include <arborium/actions/KsRayPickAction.h>
#include <arborium/actions/KsSearchAction.h>
#include <arborium/events/KsEvent.h>
#include <arborium/io/KsDB.h>
#include <arborium/nodes/KsOrthographicCamera.h>
#include <arborium/nodes/KsSeparator.h>
#include <arborium/qt/KsQt.h>
#include <arborium/qt/KsQtViewer.h>
#include <arborium/render/KsOffscreenRenderer.h>

#include <QImage>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QTouchEvent>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace {

constexpr float fullSight = 1.06f; // the margin around a scene that is shown whole

// The box of a scene. What builds itself while it is measured is measured again.
KbBox3f measure(KsNode* scene, const KbViewportRegion& viewport)
{
    KsGetBoundingBoxAction action(viewport);
    int round = 0;
    do action.apply(scene);
    while (scene->isStale(KsNode::StaleBox) && ++round < 4);
    return action.getBoundingBox();
}

void frame(KsOrthographicCamera* camera, const KbBox3f& box, const KbViewportRegion& viewport)
{
    const KsFraming framing(box, viewport.getViewportAspectRatio());
    camera->orientation = KbRotation();
    camera->position = framing.position;
    camera->height = framing.height;
    camera->focalDistance = framing.focalDistance;
    camera->nearDistance = framing.nearDistance;
    camera->farDistance = framing.farDistance;
}

} // namespace

struct KsQtViewer::Impl {
    explicit Impl(KsQtViewer* owner)
        : viewer(owner), renderer(KbViewportRegion(640, 480)),
          action(std::make_shared<KsHandleEventAction>(KbViewportRegion(640, 480)))
    {}

    KsQtViewer* viewer;
    KsRef<KsSeparator> root{new KsSeparator};
    KsRef<KsNode> scene;
    KsRef<KsCamera> camera; // the scene's or ownCamera
    KsRef<KsOrthographicCamera> ownCamera{new KsOrthographicCamera};
    KsOffscreenRenderer renderer;
    // Held by whoever passes an event on: a listener may delete the viewer.
    std::shared_ptr<KsHandleEventAction> action;
    bool viewing = false;
    bool seeking = false;
    bool framePending = false; // the camera waits for a scene that has an extent
    bool userMoved = false;
    bool hasHome = false;
    KsCameraPlace homePlace;
    QPointF lastPosition; // of the pointer, in pixels of the device, y upward
    Qt::MouseButton dragButton = Qt::NoButton;
    int touchId = -1;
    bool touchIsZoom = false;
    bool isPressed = false; // the scene was told of the left button and waits for its release

    KbVec2i32 pixels() const
    {
        const double ratio = viewer->devicePixelRatioF();
        const auto size = [ratio](int length) {
            return std::max(1, static_cast<int>(std::ceil(length * ratio - 1e-6)));
        };
        return KbVec2i32(size(viewer->width()), size(viewer->height()));
    }

    // Viewport and first sight are as they will be in the next frame.
    void prepare()
    {
        KbViewportRegion viewport = renderer.getViewportRegion();
        const KbVec2i32 size = pixels();
        if (size != viewport.getWindowSize()) {
            viewport.setWindowSize(size);
            renderer.setViewportRegion(viewport);
            action->setViewportRegion(viewport);
            if (camera.get() == ownCamera.get() && !userMoved) framePending = true;
        }
        if (framePending && scene) {
            const KbBox3f box = measure(scene, viewport);
            if (!box.isEmpty()) {
                framePending = false;
                frame(ownCamera, box, viewport);
            }
        }
    }

    QPointF toScene(const QPointF& position) const
    {
        const double ratio = viewer->devicePixelRatioF();
        return QPointF(position.x() * ratio, pixels()[1] - 1 - position.y() * ratio);
    }

    // TRUE if the scene handled the event. The viewer may be gone afterwards.
    bool send(KsEvent& event, const QInputEvent& source)
    {
        if (!scene) return false;
        prepare();
        const Qt::KeyboardModifiers modifiers = source.modifiers();
        event.setShiftDown(modifiers & Qt::ShiftModifier);
        event.setCtrlDown(modifiers & Qt::ControlModifier);
        event.setAltDown(modifiers & Qt::AltModifier);
        event.setTime(static_cast<double>(source.timestamp()) / 1000.0);
        event.setPosition(
            KbVec2f(static_cast<float>(lastPosition.x()), static_cast<float>(lastPosition.y())));
        const std::shared_ptr<KsHandleEventAction> held = action;
        const KsRef<KsNode> heldRoot(root.get());
        held->setEvent(&event);
        held->apply(heldRoot.get());
        const bool handled = held->isHandled();
        held->setEvent(nullptr);
        return handled;
    }

    bool sendButton(Qt::MouseButton button, KsButtonEvent::State state, const QInputEvent& source)
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

    void expectRelease(bool expected)
    {
        isPressed = expected;
        // A modal window gets the release in place of this one.
        if (expected)
            viewer->window()->installEventFilter(viewer);
        else
            viewer->window()->removeEventFilter(viewer);
    }

    // Who waits for the release in the scene would wait for ever.
    void loseRelease()
    {
        if (!isPressed) return;
        expectRelease(false);
        const std::shared_ptr<KsHandleEventAction> held = action;
        held->releaseGrabber();
    }

    bool sendKey(int key, KsButtonEvent::State state, char16_t printable, const QInputEvent& source)
    {
        KsKeyboardEvent event(key, state, printable);
        return send(event, source);
    }

    KsCameraControl control() { return KsCameraControl(*camera, pixels()); }

    void turn(const QPointF& move)
    {
        control().turn(move);
        userMoved = true;
    }

    void shift(const QPointF& move)
    {
        control().shift(move);
        userMoved = true;
    }

    void zoom(float factor, const QPointF& at)
    {
        prepare();
        if (control().zoom(factor, at)) userMoved = true;
    }

    // `target` is in the world, the camera's fields are in the space in which it stands.
    void lookAt(KbVec3f target)
    {
        KsSearchAction search;
        search.setNode(camera.get());
        search.setSearchingAll(true);
        search.apply(root);
        if (search.getPath()) {
            KsGetMatrixAction matrix(renderer.getViewportRegion());
            matrix.apply(search.getPath());
            matrix.getInverse().multVecMatrix(target, target);
        }
        if (!target.isFinite()) return;
        control().seek(target);
        userMoved = true;
    }

    void updateCursor()
    {
        viewer->setCursor(!viewing                     ? Qt::ArrowCursor
                          : seeking                    ? Qt::CrossCursor
                          : dragButton != Qt::NoButton ? Qt::ClosedHandCursor
                                                       : Qt::OpenHandCursor);
    }

    void touch(QTouchEvent* event);
};

KsQtViewer::KsQtViewer(QWidget* parent) : QWidget(parent)
{
    KsDB::init();
    KsQt::init();
    m_impl.reset(new Impl(this));
    m_impl->renderer.setBackgroundGradient(KbColor(0.22f, 0.25f, 0.30f),
                                           KbColor(0.48f, 0.54f, 0.62f));
    m_impl->renderer.setChangedCallback([this] { update(); });
    m_impl->camera = m_impl->ownCamera.get();
    m_impl->root->addChild(m_impl->ownCamera);
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_AcceptTouchEvents);
    setAttribute(Qt::WA_InputMethodEnabled);
    m_impl->updateCursor();
}

KsQtViewer::~KsQtViewer()
{
    m_impl->renderer.setChangedCallback(nullptr);
    m_impl.reset();
    KsQt::finish();
    KsDB::finish();
}

void KsQtViewer::setSceneGraph(KsNode* scene)
{
    Impl& d = *m_impl;
    const KsRef<KsNode> kept(scene);
    d.action->releaseGrabber();
    d.root->removeAllChildren();
    d.scene = scene;
    d.camera.reset();
    if (scene) {
        KsSearchAction search;
        search.setType(KsCamera::getClassTypeId());
        search.apply(scene);
        if (KsPath* path = search.getPath())
            d.camera = ksCast<KsCamera>(static_cast<KsFullPath*>(path)->getTail());
    }
    if (!d.camera) {
        d.camera = d.ownCamera.get();
        d.root->addChild(d.ownCamera);
    }
    if (scene) d.root->addChild(scene);
    d.userMoved = false;
    d.hasHome = false;
    d.framePending = hasOwnCamera();
    if (!d.framePending) saveHomePosition();
    update();
}

KsNode* KsQtViewer::getSceneGraph() const { return m_impl->scene; }

KsNode* KsQtViewer::getRoot() const { return m_impl->root; }

KsCamera* KsQtViewer::getCamera() const { return m_impl->camera; }

bool KsQtViewer::hasOwnCamera() const { return m_impl->camera.get() == m_impl->ownCamera.get(); }

void KsQtViewer::setViewing(bool viewing)
{
    if (viewing == m_impl->viewing) return;
    m_impl->viewing = viewing;
    m_impl->seeking = false;
    m_impl->dragButton = Qt::NoButton;
    if (viewing) m_impl->action->releaseGrabber(); // its release would not come
    m_impl->updateCursor();
    Q_EMIT viewingChanged(viewing);
}

bool KsQtViewer::isViewing() const { return m_impl->viewing; }

void KsQtViewer::setSeeking(bool seeking)
{
    m_impl->seeking = seeking;
    m_impl->updateCursor();
}

bool KsQtViewer::isSeeking() const { return m_impl->seeking; }

bool KsQtViewer::seek(const QPoint& position)
{
    Impl& d = *m_impl;
    d.prepare();
    const QPointF point = d.toScene(position);
    KsRayPickAction pick(d.renderer.getViewportRegion());
    pick.setPoint(KbVec2f(static_cast<float>(point.x()), static_cast<float>(point.y())));
    pick.apply(d.root);
    const KsPickedPoint* hit = pick.getPickedPoint();
    if (!hit) return false;
    d.lookAt(hit->getPoint());
    return true;
}

void KsQtViewer::viewAll()
{
    Impl& d = *m_impl;
    d.userMoved = false;
    if (hasOwnCamera()) {
        d.framePending = true;
        d.prepare();
    } else if (d.scene) {
        d.prepare();
        d.camera->viewAll(d.scene, d.renderer.getViewportRegion(), fullSight);
    }
    update();
}

void KsQtViewer::saveHomePosition()
{
    m_impl->prepare();
    m_impl->homePlace = KsCameraPlace(*m_impl->camera);
    m_impl->hasHome = true;
}

void KsQtViewer::home()
{
    if (m_impl->hasHome)
        m_impl->homePlace.apply(*m_impl->camera);
    else
        viewAll();
}

void KsQtViewer::setBackgroundColor(const KbColor& color)
{
    m_impl->renderer.setBackgroundColor(color);
    update();
}

void KsQtViewer::setBackgroundGradient(const KbColor& bottom, const KbColor& top)
{
    m_impl->renderer.setBackgroundGradient(bottom, top);
    update();
}

void KsQtViewer::setSamples(int samples)
{
    m_impl->renderer.setSamples(samples);
    update();
}

QImage KsQtViewer::renderToImage(const QSize& size, double scale)
{
    const double width = std::round(size.width() * scale);
    const double height = std::round(size.height() * scale);
    if (!(width >= 1 && height >= 1 && width <= 1e6 && height <= 1e6)) return QImage();
    Impl& d = *m_impl;
    d.prepare();
    const KbViewportRegion viewport(static_cast<int>(width), static_cast<int>(height));
    KsOffscreenRenderer& screen = d.renderer;
    KsRef<KsNode> root(d.root.get());
    if (hasOwnCamera() && !d.userMoved && !d.hasHome && d.scene) {
        // Nobody chose the view, so that it shows the whole scene in this shape too.
        const KsRef<KsSeparator> other(new KsSeparator);
        const KsRef<KsOrthographicCamera> camera(new KsOrthographicCamera);
        frame(camera, measure(d.scene, viewport), viewport);
        other->addChild(camera);
        other->addChild(d.scene);
        root = KsRef<KsNode>(other.get());
    }
    KsOffscreenRenderer renderer(viewport);
    renderer.copyLookOf(screen);
    renderer.setSupersampling(2);
    renderer.render(root);
    return QImage(renderer.getImage().data(), renderer.getWidth(), renderer.getHeight(),
                  4 * renderer.getWidth(), QImage::Format_RGBA8888_Premultiplied)
        .copy();
}

KsHandleEventAction* KsQtViewer::getHandleEventAction() const { return m_impl->action.get(); }

KsOffscreenRenderer* KsQtViewer::getRenderer() const { return &m_impl->renderer; }

QSize KsQtViewer::sizeHint() const { return QSize(640, 480); }

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

bool KsQtViewer::eventFilter(QObject* object, QEvent* event)
{
    if (event->type() == QEvent::WindowBlocked) m_impl->loseRelease();
    return QWidget::eventFilter(object, event);
}

void KsQtViewer::paintEvent(QPaintEvent*)
{
    Impl& d = *m_impl;
    d.prepare();
    const bool drawn = d.renderer.render(d.root);
    QImage image(d.renderer.getImage().data(), d.renderer.getWidth(), d.renderer.getHeight(),
                 4 * d.renderer.getWidth(), QImage::Format_RGBA8888_Premultiplied);
    QPainter painter(this);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    image.setDevicePixelRatio(devicePixelRatioF());
    painter.drawImage(QPointF(0, 0), image);
    if (!drawn) {
        painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
        painter.setPen(Qt::white);
        painter.drawText(rect(), Qt::AlignCenter | Qt::TextWordWrap,
                         tr("Without OpenGL the scene cannot be drawn."));
    }
}

void KsQtViewer::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    update();
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
        seek(event->pos());
        setSeeking(false);
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
    d.prepare();
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
        if (touchIsZoom && now > 1 && before > 1)
            zoom(static_cast<float>(before / now), (a + b) / 2);
        touchIsZoom = true;
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
