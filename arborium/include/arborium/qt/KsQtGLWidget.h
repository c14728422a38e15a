#pragma once

#include <arborium/base/KbColor.h>
#include <arborium/qt/KsQtComponent.h>

#include <memory>

class QEvent;
class QImage;
class QPainter;

/// A widget that draws itself with the calls of `KsGL`. All of them share the one context of the
/// process; the picture is kept, and made again only after `redraw` or a change of size or screen
/// scale. What the widget stands on shows where nothing is drawn.
class ARBORIUM_API KsQtGLWidget : public KsQtComponent {
    Q_OBJECT

public:
    /// As that of `KsQtComponent`. There is no widget before `buildWidget`.
    explicit KsQtGLWidget(QWidget* parent = nullptr, const char* name = nullptr);
    ~KsQtGLWidget() override;

    /// Makes the widget that is drawn into. The caller hands it to `setBaseWidget`.
    QWidget* buildWidget(QWidget* parent);
    /// The widget that is drawn into; null before `buildWidget`.
    QWidget* getNormalWindow() const;

    /// Asks for a new picture with the next paint event.
    void redraw();
    /// With FALSE, what is drawn outside of a paint event shows as soon as the context is let go;
    /// with TRUE, the default, after `swapNormalBuffers`.
    void setDoubleBuffer(bool doubleBuffer);
    bool isDoubleBuffer() const;
    /// Opens the widget's picture, which is empty, for calls of `KsGL`. FALSE if there is no widget
    /// or the picture is open already.
    bool bindNormalContext();
    /// Another name for it.
    bool makeNormalCurrent() { return bindNormalContext(); }
    /// Closes the picture; nothing if it is not open.
    void unbindNormalContext();
    /// Shows what was drawn.
    void swapNormalBuffers();
    /// Counts the pictures made: an unchanged widget adds none.
    long getNumPictures() const;

    bool eventFilter(QObject* watched, QEvent* event) override;

protected:
    // By default the hooks do nothing, and use no event.
    /// Called once, before the first picture, with the picture open.
    virtual void initGraphic();
    /// Draws the picture.
    virtual void paintGraphic();
    /// Draws over the picture at each paint event, in the widget's own pixels.
    virtual void redrawOverlay(QPainter& painter);
    /// The widget has this size now, in its own pixels.
    virtual void sizeChanged(int width, int height);
    /// A mouse, wheel or key event of the widget while it is enabled; TRUE if it was used, and goes
    /// to nobody else.
    virtual bool processEvent(QEvent* event);
    const char* getDefaultWidgetName() const override;

private:
    void paint();

    struct Impl;
    std::unique_ptr<Impl> m_impl;
};
