#pragma once

#include "KsCameraControl.h"

#include <arborium/actions/KsHandleEventAction.h>
#include <arborium/events/KsEvent.h>
#include <arborium/nodes/KsOrthographicCamera.h>
#include <arborium/nodes/KsSeparator.h>
#include <arborium/qt/KsQtViewer.h>
#include <arborium/render/KsOffscreenRenderer.h>

#include <QPointF>

class QInputEvent;
class QTouchEvent;

/// The camera and the picture of a viewer (KsQtViewer.cpp), and the road of what a person does to it
/// (KsQtViewerInput.cpp). Whoever hears of a change of the camera, or of an event, may delete the
/// viewer.
struct KsQtViewer::Impl {
    explicit Impl(KsQtViewer* owner);

    KsQtViewer* viewer;
    KsRef<KsSeparator> root{new KsSeparator};
    KsRef<KsNode> scene;
    KsRef<KsCamera> camera; // the scene's or ownCamera
    KsRef<KsOrthographicCamera> ownCamera{new KsOrthographicCamera};
    KsOffscreenRenderer renderer;
    // Held by whoever passes an event on: a listener may delete the viewer.
    std::shared_ptr<KsHandleEventAction> action;
    KbVec2i32 windowSize; // that the renderer was told
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

    KbVec2i32 pixels() const;
    /// Viewport and first sight are as they will be in the next frame. FALSE if the viewer died of
    /// it.
    [[nodiscard]] bool prepare();
    QPointF toScene(const QPointF& position) const;

    // The person moves the camera.
    KsCameraControl control() { return KsCameraControl(camera, pixels()); }
    void turn(const QPointF& move);
    void shift(const QPointF& move);
    void zoom(float factor, const QPointF& at);
    /// `target` is in the world, the camera's fields are in the space in which it stands.
    void lookAt(KbVec3f target);
    void updateCursor();

    /// TRUE if the scene handled the event.
    bool send(KsEvent& event, const QInputEvent& source);
    bool sendButton(Qt::MouseButton button, KsButtonEvent::State state, const QInputEvent& source);
    bool sendKey(int key, KsButtonEvent::State state, char16_t printable,
                 const QInputEvent& source);
    void touch(QTouchEvent* event);
    void expectRelease(bool expected);
    /// Who waits for the release in the scene would wait for ever.
    void loseRelease();
    /// Of nothing that was pressed a release will come.
    void endDrags();
};
