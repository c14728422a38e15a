#pragma once

#include <arborium/base/KsRefCounter.h>
#include <formweave/KsFormweave.h>

#include <QImage>
#include <QPointer>
#include <QWidget>

class KsTopLevelDialog;

/// An element as Qt widgets in a window of its own. An element that is no dialog gets a plain
/// window around it. The window goes with this object.
class ElementWindow {
public:
    explicit ElementWindow(KsFormweave* element);
    ~ElementWindow();
    ElementWindow(const ElementWindow&) = delete;
    ElementWindow& operator=(const ElementWindow&) = delete;

    /// Null if the element has no presentation in a window.
    QWidget* widget() const { return m_window; }
    void show();
    /// What the window shows, `scale` pixels for each of its own. With a size that is not empty the
    /// window is brought to it as far as its limits allow, and the picture is of that size.
    QImage picture(const QSize& size, double scale);

private:
    KsRef<KsFormweave> m_element;
    QPointer<QWidget> m_window;
};

/// Draws an element as a panel in a scene, seen from the front, a pixel for a unit of the panel
/// with a small margin around; with a size that is not empty the panel is fitted into it. Writes the
/// picture as PNG. FALSE, with a message, if there is nothing to see or the file cannot be written.
bool drawPanel(KsFormweave* element, const QSize& size, double scale, const std::string& path);
