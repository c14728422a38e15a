#include "KsQtViewerImpl.h"
#include "render/KsFraming.h"

#include <arborium/actions/KsGetBoundingBoxAction.h>
#include <arborium/actions/KsGetMatrixAction.h>
#include <arborium/actions/KsRayPickAction.h>
#include <arborium/actions/KsSearchAction.h>
#include <arborium/io/KsDB.h>
#include <arborium/qt/KsQt.h>

#include <QImage>
#include <QPainter>
#include <QPointer>

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

void frame(const KsRef<KsOrthographicCamera>& shown, const KbBox3f& box,
           const KbViewportRegion& viewport)
{
    const KsRef<KsOrthographicCamera> camera = shown; // whoever hears of it may let it go
    const KsFraming framing(box, viewport.getViewportAspectRatio());
    camera->orientation = KbRotation();
    camera->position = framing.position;
    camera->height = framing.height;
    camera->focalDistance = framing.focalDistance;
    camera->nearDistance = framing.nearDistance;
    camera->farDistance = framing.farDistance;
}

} // namespace

KsQtViewer::Impl::Impl(KsQtViewer* owner)
    : viewer(owner), renderer(KbViewportRegion(640, 480)),
      action(std::make_shared<KsHandleEventAction>(KbViewportRegion(640, 480))),
      windowSize(640, 480)
{}

KbVec2i32 KsQtViewer::Impl::pixels() const
{
    const double ratio = viewer->devicePixelRatioF();
    const auto size = [ratio](int length) {
        return std::max(1, static_cast<int>(std::ceil(length * ratio - 1e-6)));
    };
    return KbVec2i32(size(viewer->width()), size(viewer->height()));
}

bool KsQtViewer::Impl::prepare()
{
    if (const KbVec2i32 size = pixels(); size != windowSize) {
        windowSize = size;
        KbViewportRegion viewport = renderer.getViewportRegion();
        viewport.setWindowSize(size);
        renderer.setViewportRegion(viewport);
        action->setViewportRegion(viewport);
        if (camera.get() == ownCamera.get() && !userMoved) framePending = true;
    }
    if (!framePending || !scene) return true;
    const KbBox3f box = measure(scene, renderer.getViewportRegion());
    if (box.isEmpty()) return true;
    framePending = false;
    const QPointer<KsQtViewer> alive(viewer);
    frame(ownCamera, box, renderer.getViewportRegion());
    return !alive.isNull();
}

QPointF KsQtViewer::Impl::toScene(const QPointF& position) const
{
    const double ratio = viewer->devicePixelRatioF();
    return QPointF(position.x() * ratio, pixels()[1] - 1 - position.y() * ratio);
}

void KsQtViewer::Impl::turn(const QPointF& move)
{
    userMoved = true;
    control().turn(move);
}

void KsQtViewer::Impl::shift(const QPointF& move)
{
    userMoved = true;
    control().shift(move);
}

void KsQtViewer::Impl::zoom(float factor, const QPointF& at)
{
    if (!prepare()) return;
    const QPointer<KsQtViewer> alive(viewer);
    if (control().zoom(factor, at) && alive) userMoved = true;
}

void KsQtViewer::Impl::lookAt(KbVec3f target)
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
    userMoved = true;
    control().seek(target);
}

void KsQtViewer::Impl::updateCursor()
{
    viewer->setCursor(!viewing                     ? Qt::ArrowCursor
                      : seeking                    ? Qt::CrossCursor
                      : dragButton != Qt::NoButton ? Qt::ClosedHandCursor
                                                   : Qt::OpenHandCursor);
}

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
    update();
    if (!d.framePending) saveHomePosition();
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
    m_impl->endDrags();
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
    if (!d.prepare()) return false;
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
    d.framePending = hasOwnCamera();
    update();
    const KsRef<KsCamera> camera = hasOwnCamera() || !d.scene ? nullptr : d.camera.get();
    if (d.prepare() && camera) camera->viewAll(d.scene, d.renderer.getViewportRegion(), fullSight);
}

void KsQtViewer::saveHomePosition()
{
    if (!m_impl->prepare()) return;
    m_impl->homePlace = KsCameraPlace(*m_impl->camera);
    m_impl->hasHome = true;
}

void KsQtViewer::home()
{
    if (!m_impl->hasHome) {
        viewAll();
        return;
    }
    const KsRef<KsCamera> camera = m_impl->camera;
    const KsCameraPlace place = m_impl->homePlace;
    place.apply(*camera);
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
    if (!d.prepare()) return QImage();
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

void KsQtViewer::paintEvent(QPaintEvent*)
{
    Impl& d = *m_impl;
    if (!d.prepare()) return;
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
