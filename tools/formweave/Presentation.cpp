#include "Presentation.h"

#include <arborium/actions/KsGetBoundingBoxAction.h>
#include <arborium/nodes/KsOrthographicCamera.h>
#include <arborium/nodes/KsSeparator.h>
#include <arborium/render/KsOffscreenRenderer.h>
#include <formweave/KsDialogComponent.h>
#include <formweave/KsTopLevelDialog.h>

#include <QApplication>
#include <QPainter>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>
#include <cstdio>

namespace {

constexpr float panelMargin = 12; // around a panel in its picture
constexpr int smoothing = 3;      // small text needs more than the samples of the context

} // namespace

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

QImage ElementWindow::picture(const QSize& size, double scale)
{
    if (!m_window) return QImage();
    show();
    if (!size.isEmpty()) m_window->resize(size);
    QApplication::processEvents();
    const QSize drawn = size.isEmpty() ? m_window->size() : size;
    QImage image((QSizeF(drawn) * scale).toSize().expandedTo(QSize(1, 1)), QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    image.fill(m_window->palette().color(QPalette::Window));
    m_window->render(&image);
    return image;
}

bool drawPanel(KsFormweave* element, const QSize& size, double scale, const std::string& path)
{
    const KsRef<KsSeparator> scene(new KsSeparator);
    scene->addChild(element);
    // The panel is built by the first measuring.
    KsGetBoundingBoxAction measure{KbViewportRegion(100, 100)};
    measure.apply(scene.get());
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
