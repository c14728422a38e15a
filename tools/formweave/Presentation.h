#pragma once

#include <arborium/base/KsRefCounter.h>
#include <formweave/KsFormweave.h>

#include <QImage>
#include <QPointer>
#include <QWidget>

#include <string>
#include <vector>

class KsMenuPopup;
class QMenu;

/// Menus within each other, the outermost first.
using Menus = std::vector<KsMenuPopup*>;
/// The menu of a dialog with this auditorID, and those that it stands in. Empty, with a message, if
/// there is none.
Menus menusTo(KsFormweave* element, const std::string& id);

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
    /// Shows the window, and in it these menus.
    void open(const Menus& menus);
    /// What the window shows, `scale` pixels for each of its own. With a size that is not empty the
    /// window is brought to it as far as its limits allow, and the picture is of that size; else it
    /// has room for the menus that are open.
    QImage picture(const QSize& size, double scale);

private:
    KsRef<KsFormweave> m_element;
    QPointer<QWidget> m_window;
    std::vector<QPointer<QMenu>> m_open;
};

/// Draws an element as a panel in a scene, seen from the front, a pixel for a unit of the panel
/// with a small margin around; with a size that is not empty the panel is fitted into it. Menus that
/// shall be open are. Writes the picture as PNG. FALSE, with a message, if there is nothing to see or
/// the file cannot be written.
bool drawPanel(KsFormweave* element, const Menus& open, const QSize& size, double scale,
               const std::string& path);
