#include <formweave/KsStackDialog.h>

#include "KsLayouts.h"

#include <arborium/base/KsDBImpl.h>

#include <QBoxLayout>
#include <QFrame>
#include <algorithm>
#include <cstdint>

namespace {

constexpr int border = 3; // of the edge style, on each side
constexpr int open = KsSizeDB::openLimit;

} // namespace

KsStackDialog::KsStackDialog(Axis axis, const char* objectName)
    : m_axis(axis), m_layoutName(objectName)
{}

KsStackDialog::~KsStackDialog() = default;

void KsStackDialog::armSpacing(KsSFInt32& field) { m_spacingSensor.arm(this, field); }

void KsStackDialog::updateFromSensor(KsSensor* sensor)
{
    if (m_spacingSensor.is(sensor))
        changeSpacing();
    else
        KsDialogGroup::updateFromSensor(sensor);
}

int KsStackDialog::room() const { return ksBounded(margin); }

int KsStackDialog::gap() const { return ksBounded(spacing()); }

void KsStackDialog::changeSpacing()
{
    if (m_groupWidget) m_layout->setSpacing(std::max(gap(), 0));
}

void KsStackDialog::changeEdgeStyle()
{
    KsDialogGroup::changeEdgeStyle();
    const int inset = edgeStyle != NONE ? border : 0;
    if (m_groupWidget) m_layout->setContentsMargins(inset, inset, inset, inset);
}

void KsStackDialog::buildWidget(QWidget* parent, KbVec2i32& size, KbVec2i32& position, int build2D)
{
    const KsLayoutDepth depth(build2D ? 1 : 0);
    if (depth.isTooDeep("KsStackDialog::buildWidget")) return;
    updateChildrenSizeDB();
    if (build2D) {
        const bool first = !existWidget(m_widget);
        if (first) {
            KsDialogGroup::buildWidget(parent, size, position, build2D);
            // From here on the element's layout is the one in which its children stand.
            m_layout = m_axis == Down ? static_cast<QBoxLayout*>(new QVBoxLayout) : new QHBoxLayout;
            m_widget->setLayout(m_layout);
            m_layout->setObjectName(m_layoutName);
            m_layout->setSpacing(0);
            m_layout->setContentsMargins(0, 0, 0, 0);
            changeEdgeStyle();
            changeSpacing();
            KsDialogComponent::changeEnable();
        } else {
            limitGroupWidget();
        }
        updateChildren();
        if (first) changeWidgetEnable(enable);
        return;
    }
    KsDialogGroup::buildWidget(parent, size, position, build2D);
    const bool first = !isBuilt3D();
    update3DChildren();
    setBuilt3D(1);
    // A child that joined a disabled group is greyed with it.
    if (first || !isEnabledInTree()) change3DWidgetEnable(isEnabledInTree());
}

void KsStackDialog::updateChildren()
{
    forEachChild([this](KsDialogComponent* child) {
        KbVec2i32 size(0, 0), position(0, 0);
        child->buildWidget(m_widget, size, position, KsDBImpl::m_noLocalWidgets ? 0 : 1);
    });
}

void KsStackDialog::fixSizeWithBorder(KbVec2i32& size, int factor)
{
    constexpr int around = 2 * border;
    for (int axis = 0; axis < 2; ++axis) {
        if (factor != 1)
            size[axis] += factor * around;
        else
            size[axis] = size[axis] <= open - around ? size[axis] + around : open;
    }
    KsDialogGroup::fixSizeWithBorder(size, factor);
}

void KsStackDialog::getDefaultSize(KbVec2i32& size, KbVec2i32& min, KbVec2i32& max)
{
    updateChildrenSizeDB();
    int index = 0;
    forEachChild([&](KsDialogComponent* child) {
        KsSizeTriple& row = m_sizeDB[index++];
        child->getSize(row.init, row.min, row.max);
    });
    const KsSizeTriple sum = m_sizeDB.stacked(m_axis, room(), gap(), m_elements.count() - 1, true);
    size = sum.init;
    min = sum.min;
    max = sum.max;
}

KbVec2i32 KsStackDialog::getComponentInitSize()
{
    if (m_componentInitSize[0] != -1) return m_componentInitSize;
    const int across = 1 - m_axis;
    std::int64_t length = 2 * room() + (m_elements.count() - 1) * std::int64_t(gap());
    int breadth = 2 * room();
    forEachChild([&](KsDialogComponent* child) {
        child->setAcrossStack(m_axis == Down);
        const KbVec2i32 size = child->getComponentInitSize();
        length += size[m_axis];
        breadth = std::max(breadth, size[across]);
    });
    m_componentInitSize[m_axis] = ksBounded(length);
    m_componentInitSize[across] = breadth;
    return m_componentInitSize;
}

void KsStackDialog::update3DChildren()
{
    const int along = m_axis;
    const int across = 1 - m_axis;
    const bool edged = edgeStyle != NONE;
    KbVec2i32 size = size3D();
    fixSizeWithBorder(size, -1);
    // Without an edge the border's room is the children's.
    if (!edged) size[along] += 2 * border;

    KbVec2i32 init, min, max;
    getDefaultSize(init, min, max);
    m_sizeDB.share(along, size[along] - init[along]);

    const int inset = room() + (edged ? border : 0);
    KbVec2i32 place(inset, inset);
    KbVec2i32 childSize(0, 0);
    childSize[across] = size[across] - 2 * room() + (edged ? 0 : 2 * border);
    KbVec3f parentPlace = place3DChildren();
    int index = 0;
    forEachChild([&](KsDialogComponent* child) {
        if (index >= m_sizeDB.count()) return;
        childSize[along] = m_sizeDB[index++].init[along];
        child->set3DParentTranslation(parentPlace);
        child->buildWidget(m_widget, childSize, place, 0);
        const int length = along ? child->height : child->width;
        place[along] = ksBounded(std::int64_t(place[along]) + length + gap());
    });
}
