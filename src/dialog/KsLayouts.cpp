#include "KsLayouts.h"

#include <arborium/base/KsDebugError.h>
#include <arborium/base/KsLimits.h>
#include <formweave/KsDialogComponent.h>
#include <formweave/KsElementContainer.h>
#include <formweave/KsTabDialog.h>
#include <formweave/KsTopLevelDialog.h>

#include <QBoxLayout>
#include <QWidget>
#include <algorithm>

namespace {

template <class Visit> void forEachComponent(const KsElementList& children, Visit&& visit)
{
    children.forEach([&](KsFormweave* child) {
        if (auto* component = ksCast<KsDialogComponent>(child)) visit(component);
    });
}

} // namespace

bool KsLayoutDepth::isTooDeep(const char* operation) const
{
    const int limit = KsLimits::current().layoutNesting2D;
    if (!m_added || s_depth <= limit) return false;
    KsDebugError::post(operation,
                       "Groups stand more than %d deep in each other; what is below is not built",
                       limit);
    return true;
}

KsRoomForLayout ksFindLayout(KsFormweave* container, KsFormweave* element, QWidget* widget)
{
    KsRoomForLayout room;
    if (auto* top = ksCast<KsTopLevelDialog>(container))
        room.layout = static_cast<QBoxLayout*>(top->getLayout());
    else if (auto* tabs = ksCast<KsTabDialog>(container))
        room.layout =
            static_cast<QBoxLayout*>(tabs->getLayout(tabs->getElements()->indexOf(element)));
    else if (auto* component = ksCast<KsDialogComponent>(container))
        room.layout = static_cast<QBoxLayout*>(component->getLayout());
    else if (widget)
        room.layout = qobject_cast<QBoxLayout*>(widget->layout());

    const KsElementList* siblings = container ? container->getElements() : nullptr;
    // A page has a layout of its own.
    if (!room.layout || !siblings || ksCast<KsTabDialog>(container)) return room;
    const int place = siblings->indexOf(element);
    // In a first build the ones before this one fill the layout exactly.
    if (place < 0 || place >= room.layout->count()) return room;
    room.index = 0;
    for (int i = 0; i < place; ++i) {
        auto* sibling = ksCast<KsDialogComponent>(siblings->at(i));
        if (sibling && sibling->getWidget()) ++room.index;
    }
    return room;
}

int ksBounded(std::int64_t value)
{
    const std::int64_t limit = KsLimits::current().maxLimitSize;
    return static_cast<int>(std::clamp(value, -limit, limit));
}

int ksQtAlignment(int labelAlignment)
{
    if (labelAlignment == KsFormweave::CENTER) return Qt::AlignHCenter;
    return labelAlignment == KsFormweave::RIGHT ? Qt::AlignRight : Qt::AlignLeft;
}

QSize ksPaintableSize(const KbVec2i32& size)
{
    constexpr int mostPixels = 1 << 28;
    const int w = std::clamp(ksBounded(size[0]), 0, mostPixels);
    const int h = std::max(ksBounded(size[1]), 0);
    return {w, w ? std::min(h, mostPixels / w) : h};
}

void ksLimitWidget(QWidget* widget, const KbVec2i32& min, const KbVec2i32& max)
{
    const auto limit = [](int size) {
        return size > 0 ? std::min(size, QWIDGETSIZE_MAX) : QWIDGETSIZE_MAX;
    };
    widget->setMinimumSize(ksPaintableSize(min));
    widget->setMaximumSize(limit(max[0]), limit(max[1]));
}

void ksFillSizes(KbVec2i32& size, KbVec2i32& min, KbVec2i32& max, const KsSizeDefaults& defaults)
{
    const auto complete = [](const KbVec2i32& v) { return v[0] != 0 && v[1] != 0; };
    if (complete(size) && complete(min) && complete(max)) return;
    KbVec2i32 s, mn, mx;
    defaults(s, mn, mx);
    for (int axis = 0; axis < 2; ++axis) {
        if (size[axis] == 0) size[axis] = s[axis];
        if (min[axis] == 0) min[axis] = mn[axis];
        if (max[axis] == 0) max[axis] = mx[axis];
    }
}

void ksAlignLabels(const KsElementList& children, bool shared, bool hiddenHaveHeight)
{
    int widest = 0;
    if (shared) {
        forEachComponent(children, [&](KsDialogComponent* child) {
            if (child->labelVisibility) widest = std::max(widest, child->getLabelInitSize()[0]);
        });
    }
    forEachComponent(children, [&](KsDialogComponent* child) {
        KbVec2i32 zone(0, 0);
        if (shared && !child->labelVisibility && !hiddenHaveHeight)
            zone.setValue(widest, 0);
        else if (shared)
            zone.setValue(widest, child->getLabelInitSize()[1]);
        else if (child->labelVisibility)
            zone = child->getLabelInitSize();
        child->setLabelSize(zone);
    });
}

void ksAlignControls(const KsElementList& children, bool shared)
{
    int widest = 0;
    if (shared) {
        forEachComponent(children, [&](KsDialogComponent* child) {
            widest = std::max(widest, child->getComponentInitSize()[0]);
        });
    }
    forEachComponent(children, [&](KsDialogComponent* child) {
        KbVec2i32 zone = child->getComponentInitSize();
        if (shared) zone[0] = widest;
        if (child->labelVisibility) zone[1] = std::max(zone[1], child->getLabelInitSize()[1]);
        child->setComponentSize(zone);
    });
}
