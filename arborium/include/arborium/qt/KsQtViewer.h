#pragma once

#include <arborium/base/KbColor.h>

#include <QWidget>

#include <memory>

class KsCamera;
class KsHandleEventAction;
class KsNode;
class KsOffscreenRenderer;
class QImage;

/// A widget that shows a scene and hands it the input of the mouse, the keyboard and of touch.
///
/// In pick mode, the default, input goes to the scene. In view mode it moves the camera: the left
/// button turns, the middle one (or left with Shift) shifts, the right one and the wheel go nearer
/// and farther, Home goes back to the first sight, and S lets the next click seek what it meets.
/// Escape switches between the modes, and the wheel and two fingers zoom in pick mode too, unless
/// the scene handled it. Hiding the viewer ends what the mouse was dragging.
///
/// A scene without a camera gets one that shows all of it from the front, a scene without lights is
/// lit from the eye. A frame is drawn only when something changed; nothing runs in between.
class ARBORIUM_API KsQtViewer : public QWidget {
    Q_OBJECT

public:
    /// Starts the layer and its binding to Qt, for as long as the viewer lives. In pick mode,
    /// without a scene, before a grey gradient.
    explicit KsQtViewer(QWidget* parent = nullptr);
    ~KsQtViewer() override;

    /// Holds a reference to the scene, and lets go of the former one and of its grabs. The camera
    /// and the home position are those of the new scene. Null shows the background.
    void setSceneGraph(KsNode* scene);
    /// Null if there is none.
    KsNode* getSceneGraph() const;
    /// What is drawn and gets the events: the scene behind the viewer's camera.
    KsNode* getRoot() const;
    /// The scene's first camera, or the viewer's own. Never null.
    KsCamera* getCamera() const;
    /// Whether it is the viewer's own.
    bool hasOwnCamera() const;

    /// View mode or pick mode. A drag in the scene ends when the view mode begins.
    void setViewing(bool viewing);
    bool isViewing() const;

    /// While the viewer is seeking, a click in view mode goes to `seek` and ends it. Leaving the
    /// view mode ends it as well.
    void setSeeking(bool seeking);
    bool isSeeking() const;
    /// Brings what is seen at this point of the widget to the middle, and twice as near: a camera
    /// of a perspective turns to it and goes half the way, one with parallel rays is shifted and
    /// shows half as much. FALSE, and nothing moves, where nothing is seen.
    bool seek(const QPoint& position);

    /// Moves the camera so that it shows the whole scene with a small margin; the viewer's own
    /// camera then looks at it from the front. Happens by itself when the scene is first shown, for
    /// a scene with a camera of its own only on demand.
    void viewAll();
    /// Remembers where the camera stands for `home`.
    void saveHomePosition();
    /// Back to the remembered place; without one, to the first sight of the scene.
    void home();

    /// Behind the scene, opaque.
    void setBackgroundColor(const KbColor& color);
    /// From the lower edge to the upper one.
    void setBackgroundGradient(const KbColor& bottom, const KbColor& top);
    /// Samples per pixel, 4 by default: see `KsOffscreenRenderer`.
    void setSamples(int samples);

    /// The scene as the viewer's camera sees it, in a picture of `size` times `scale` pixels, with
    /// smoother edges than on screen. A null image for an empty size; one beyond the limit of
    /// `KsOffscreenRenderer` is cut.
    QImage renderToImage(const QSize& size, double scale = 1);
    /// The road of all events of this viewer.
    KsHandleEventAction* getHandleEventAction() const;
    /// What draws the frames. Never null.
    KsOffscreenRenderer* getRenderer() const;

    QSize sizeHint() const override;

Q_SIGNALS:
    /// The mode changed, by Escape or by `setViewing`.
    void viewingChanged(bool viewing);

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* object, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;

private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};
