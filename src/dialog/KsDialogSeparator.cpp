#include <formweave/KsDialogSeparator.h>

#include "../qt/KsDialogQSeparator.h"
#include "KsControlParts.h"
#include "KsSkinFamily.h"

#include <arborium/nodes/KsPickStyle.h>
#include <arborium/nodes/KsScale.h>
#include <formweave/KsSizeDB.h>

KS_KIT_SOURCE(KsDialogSeparator, KsDialogComponent)

KS_SKIN_SOURCE(KsDialogSeparator, DialogSeparator, "DialogSeparator.arb", "DialogSeparatorVertical",
               "DialogSeparatorHorizontal")

char* KsDialogSeparator::DialogSeparator = const_cast<char*>(
    KS_SKIN_PART("DialogSeparatorVertical", KS_SKIN_OPEN_BOX("0 1 0"))
        KS_SKIN_PART("DialogSeparatorHorizontal", KS_SKIN_OPEN_BOX("0.5 0.5 0.5")));

namespace {

constexpr int thickness = 8; // the line with the margins about it
constexpr int lineWidth = 2; // of the line in a window

} // namespace

KsDialogSeparator::KsDialogSeparator()
{
    KsInstanceBuilder build(classRecord, this);
    // In the order of the switch's values.
    ksAddParts(build, {{"frameSep", KsPartKind::Separator, "geomSwitch"},
                       {"frameSwitch", KsPartKind::Switch, "frameSep"},
                       {"vFrame", KsPartKind::Look, "frameSwitch"},
                       {"hFrame", KsPartKind::Look, "frameSwitch"}});
}

KsDialogSeparator::~KsDialogSeparator() = default;

void KsDialogSeparator::setOrientationHorz(int horizontal) { m_orientationHorz = horizontal; }

void KsDialogSeparator::setAcrossStack(bool rows)
{
    const int horizontal = rows ? 1 : 0;
    if (horizontal == m_orientationHorz) return;
    setOrientationHorz(horizontal);
    // What a layout found for the other direction is nothing that somebody asked for.
    for (KsSFInt32* size : {&width, &height, &minWidth, &minHeight, &maxWidth, &maxHeight})
        if (size->isDefault()) size->initValue(0);
}

void KsDialogSeparator::updateFromSensor(KsSensor*) {}

void KsDialogSeparator::getDefaultSize(KbVec2i32& size, KbVec2i32& min, KbVec2i32& max)
{
    const int across = m_orientationHorz ? 1 : 0;
    size.setValue(0, 0);
    size[across] = thickness;
    min = size;
    max.setValue(KsSizeDB::openLimit, KsSizeDB::openLimit);
    max[across] = thickness;
}

// The window.

void KsDialogSeparator::createLabelWidget()
{
    installRelay(new KsDialogQSeparator(relayParent(), this), [this] {
        changeEdgeStyle();
        limitFrame(m_widget, FROM_SIZE);
    });
}

void KsDialogSeparator::updateLabelWidget() {}

void KsDialogSeparator::updateControlWidget()
{
    auto* relay = relayAs<KsDialogQSeparator>();
    if (!relay) return;
    const KbVec2i32 frame = size2D();
    if (m_orientationHorz) {
        if (maxHeight > 0) relay->setMaximumHeight(maxHeight);
        relay->updateSeparatorWidget(frameMargin, frameMargin, frame[0] - 2 * frameMargin,
                                     lineWidth, true);
    } else {
        if (maxWidth > 0) relay->setMaximumWidth(maxWidth);
        relay->updateSeparatorWidget(frameMargin, frameMargin, lineWidth,
                                     frame[1] - 2 * frameMargin, false);
    }
}

// The scene.

void KsDialogSeparator::change3DWidgetEnable(int enabled)
{
    paintEnabled(enabled != 0, KsPickStyle::SHAPE);
}

void KsDialogSeparator::create3DControl()
{
    dress3D(&skinFamily(),
            {{"vFrame", "DialogSeparatorVertical"}, {"hFrame", "DialogSeparatorHorizontal"}});
    putFirst(m_frameScale, "frameSep");
    setBuilt3D(1);
}

void KsDialogSeparator::update3DControl()
{
    setSwitchValue(getAnyPart("frameSwitch", false), m_orientationHorz ? 1 : 0);
    const KbVec2i32 frame = size3D();
    m_frameScale->scaleFactor = KbVec3f(static_cast<float>(frame[0] - 2 * frameMargin),
                                        static_cast<float>(frame[1] - 2 * frameMargin), 1);
}
