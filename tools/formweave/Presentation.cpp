#include "Presentation.h"

#include <arborium/actions/KsGetBoundingBoxAction.h>
#include <arborium/nodes/KsOrthographicCamera.h>
#include <arborium/nodes/KsSeparator.h>
#include <arborium/render/KsOffscreenRenderer.h>
#include <formweave/KsDialogComponent.h>
#include <formweave/KsMenuPopup.h>
#include <formweave/KsTopLevelDialog.h>

#include <QAction>
#include <QApplication>
#include <QMenuBar>
#include <QPainter>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>
#include <cstdio>

namespace {

constexpr float panelMargin = 12; // around a panel in its picture
constexpr int smoothing = 3;      // small text needs more than the samples of the context

} // namespace

Menus menusTo(KsFormweave* element, const std::string& id)
{
    Menus menus;
    auto* dialog = ksCast<KsTopLevelDialog>(element);
    KsFormweave* found = dialog ? dialog->searchForAuditorId(KbString::fromUtf8(id)) : nullptr;
    while (auto* menu = ksCast<KsMenuPopup>(found)) {
        menus.insert(menus.begin(), menu);
        found = menu->getParentElement();
    }
    if (menus.empty()) std::fprintf(stderr, "formweave: there is no menu \"%s\"\n", id.c_str());
    return menus;
}

ElementWindow::ElementWindow(KsFormweave* element) : m_element(element)
{
    if (auto* dialog = ksCast<KsTopLevelDialog>(element)) {
        dialog->buildDialog();
        m_window = dialog->getBaseWidget();
        return;
    }
    m_window = new QWidget;
    auto* layout = new QVBoxLayout(m_window);
    layout->setContentsMargins(0, 0, 0, 0);
    KbVec2i32 size(0, 0), place(0, 0);
    element->buildWidget(m_window, size, place, 1);
    // The window of a dialog takes this size by itself.
    if (auto* component = ksCast<KsDialogComponent>(element))
        m_window->resize(component->width.getValue(), component->height.getValue());
}

ElementWindow::~ElementWindow()
{
    m_element->destroyWidget();
    // While the element lives, so that it sees its widgets go.
    delete m_window.data();
}

void ElementWindow::show()
{
    if (auto* dialog = ksCast<KsTopLevelDialog>(m_element.get()))
        dialog->show();
    else if (m_window)
        m_window->show();
}

void ElementWindow::open(const Menus& menus)
{
    show();
    QApplication::processEvents();
    auto* bar = m_window ? m_window->findChild<QMenuBar*>() : nullptr;
    QWidget* outer = bar;
    for (KsMenuPopup* menu : menus) {
        // The actions that are menus stand in the order of the popups.
        int before = 0;
        bool isFound = false;
        menu->getParentElement()->getElements()->forEach([&](KsFormweave* sibling) {
            isFound = isFound || sibling == menu;
            if (!isFound && sibling->isOfType(KsMenuPopup::getClassTypeId())) ++before;
        });
        QAction* title = nullptr;
        for (QAction* each : outer ? outer->actions() : QList<QAction*>())
            if (each->menu() && before-- == 0) title = each;
        if (!title) return;
        if (outer == bar)
            bar->setActiveAction(title);
        else
            static_cast<QMenu*>(outer)->setActiveAction(title);
        QApplication::processEvents();
        m_open.emplace_back(title->menu());
        outer = title->menu();
    }
}

QImage ElementWindow::picture(const QSize& size, double scale)
{
    if (!m_window) return QImage();
    show();
    if (!size.isEmpty()) m_window->resize(size);
    QApplication::processEvents();
    const QPoint corner = m_window->mapToGlobal(QPoint(0, 0));
    const QRect window(corner, size.isEmpty() ? m_window->size() : size);
    QRect seen = window;
    for (const auto& menu : m_open)
        if (menu && size.isEmpty()) seen |= menu->geometry();
    QImage image((QSizeF(seen.size()) * scale).toSize().expandedTo(QSize(1, 1)),
                 seen == window ? QImage::Format_RGB32 : QImage::Format_ARGB32);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.fillRect(window.translated(-seen.topLeft()),
                     m_window->palette().color(QPalette::Window));
    m_window->render(&painter, corner - seen.topLeft());
    for (const auto& menu : m_open)
        if (menu) menu->render(&painter, menu->pos() - seen.topLeft());
    return image;
}

bool drawPanel(KsFormweave* element, const Menus& open, const QSize& size, double scale,
               const std::string& path)
{
    const KsRef<KsSeparator> scene(new KsSeparator);
    scene->addChild(element);
    // The panel is built by the first measuring.
    KsGetBoundingBoxAction measure{KbViewportRegion(100, 100)};
    measure.apply(scene.get());
    for (KsMenuPopup* menu : open) {
        menu->draggerStartCallback3D();
        measure.apply(scene.get());
    }
    const KbBox3f box = measure.getBoundingBox();
    if (box.isEmpty()) {
        std::fprintf(stderr, "formweave: the element shows nothing in a scene\n");
        return false;
    }
    const KbVec3f extent = box.getSize();
    float w = extent[0] + 2 * panelMargin;
    float h = extent[1] + 2 * panelMargin;
    if (!size.isEmpty()) {
        const float aspect = static_cast<float>(size.width()) / static_cast<float>(size.height());
        h = std::max(h, w / aspect);
        w = h * aspect;
    } else {
        w = std::ceil(w);
        h = std::ceil(h);
    }
    auto* camera = new KsOrthographicCamera;
    const float distance = extent[2] + 10;
    camera->position = KbVec3f(box.getCenter()[0], box.getCenter()[1], box.getMax()[2] + distance);
    camera->height = h;
    camera->nearDistance = 1;
    camera->farDistance = 2 * distance + extent[2];
    scene->insertChild(camera, 0);

    const auto pixels = [scale](double length) {
        return std::clamp(static_cast<int>(std::lround(length * scale)), 1, 16384);
    };
    const KbViewportRegion viewport(pixels(size.isEmpty() ? w : size.width()),
                                    pixels(size.isEmpty() ? h : size.height()));
    KsOffscreenRenderer renderer(viewport);
    renderer.setBackgroundGradient(KbColor(0.24f, 0.27f, 0.31f), KbColor(0.42f, 0.47f, 0.53f));
    renderer.setSupersampling(smoothing);
    return renderer.render(scene.get()) && renderer.writeToFile(KbString::fromUtf8(path));
}
