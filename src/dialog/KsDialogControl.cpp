// What the controls share: the relay in a window, label zone, frame and texts in a scene.

#include "../qt/KsRelay.h"
#include "KsLayouts.h"

#include <arborium/nodes/KsScale.h>
#include <arborium/nodes/KsSwitch.h>
#include <arborium/nodes/KsText3.h>
#include <arborium/nodes/KsTranslation.h>
#include <formweave/KsDialogComponent.h>

#include <algorithm>

// The window.

QWidget* KsDialogComponent::relayParent() const
{
    return m_relay ? m_parentWidget : m_widget.data();
}

void KsDialogComponent::installRelay(KsRelayFrame* relay, const std::function<void()>& fill)
{
    const QPointer<KsRelayFrame> earlier = m_relay;
    m_relay = relay;
    m_widget = relay;
    m_fillingRelay = true;
    fill();
    m_fillingRelay = false;
    relay->setWantedSize(QSize(width, height));
    adoptFrame(relay);
    if (earlier) earlier->handOverTo(relay);
}

KsDialogComponent::WindowZone KsDialogComponent::controlZone2D(int inset) const
{
    const KbVec2i32 frame = size2D();
    const int labelZone = labelVisibility ? m_labelSize[0] + zoneGap : 0;
    return {inset + labelZone, frameMargin, frame[0] - 2 * frameMargin - labelZone,
            frame[1] - 2 * frameMargin};
}

void KsDialogComponent::placeLabelWidget(int below)
{
    if (!m_relay) return;
    const int h = getLabelPixelSize(label, nullptr)[1];
    m_relay->updateLabelWidget(frameMargin, frameMargin + (size2D()[1] - below - h) / 2,
                               m_labelSize[0], h);
}

void KsDialogComponent::updateLabelWidget() { placeLabelWidget(frameMargin); }

void KsDialogComponent::changeLabel()
{
    if (!m_relay) return;
    m_relay->changeLabel(ksShownQString(convertToCString(label, nullptr)));
    if (!m_fillingRelay) updateLabelWidget();
}

void KsDialogComponent::changeLabelAlignment()
{
    if (m_relay) m_relay->changeLabelAlignment(ksQtAlignment(labelAlignment));
}

void KsDialogComponent::changeLabelVisibility()
{
    if (!m_relay) return;
    m_relay->changeLabelVisibility(labelVisibility);
    if (!m_fillingRelay) updateControlWidget();
}

void KsDialogComponent::getZonesSize(KbVec2i32& size, KbVec2i32& min, KbVec2i32& max,
                                     int leastHeight)
{
    KsDialogComponent::getDefaultSize(size, min, max);
    size = m_componentSize;
    if (labelVisibility) size[0] += m_labelSize[0] + zoneGap;
    size[1] = std::max(size[1], leastHeight);
}

// The scene.

void KsDialogComponent::create3DFrame(SceneFrame& frame)
{
    putFirst(frame.scale, "frameSep");
    putBefore(frame.translation, "frameSep");
}

void KsDialogComponent::place3DFrame(SceneFrame& frame, float x, float y, float w, float h)
{
    frame.translation->translation = KbVec3f(x, y, 0);
    frame.scale->scaleFactor = KbVec3f(w, h, 1);
}

KsDialogComponent::SceneZone KsDialogComponent::controlZone3D() const
{
    const KbVec2i32 frame = size3D();
    const float labelZone = labelVisibility ? static_cast<float>(m_labelSize[0] + zoneGap) : 0.0f;
    const float w = static_cast<float>(frame[0] - 2 * frameMargin) - labelZone;
    return {frameMargin + labelZone + w / 2 - static_cast<float>(frame[0]) / 2, w,
            static_cast<float>(frame[1] - 2 * frameMargin)};
}

void KsDialogComponent::create3DLabel()
{
    create3DText(m_label3D, "labelSwitch");
    change3DLabel();
    show3DLabel();
}

KbBox3f KsDialogComponent::labelBox3D()
{
    if (!isLabelCachedBBox())
        setLabelCacheBBox(measure3DText(getAnyPart("labelProp", false), m_label3D.text.get()));
    return getLabelCachedBBox();
}

void KsDialogComponent::show3DLabel()
{
    setSwitchValue(getAnyPart("labelSwitch", false),
                   labelVisibility ? KsSwitch::ALL : KsSwitch::NONE);
}

void KsDialogComponent::update3DLabel()
{
    if (!m_label3D.text) return;
    const KbBox3f box = labelBox3D();
    const int free =
        static_cast<int>(static_cast<float>(m_labelSize[0]) - (box.getMax()[0] - box.getMin()[0]));
    const int alignment = labelAlignment;
    const int x = frameMargin + (alignment == CENTER ? free / 2 : alignment == RIGHT ? free : 0);
    m_label3D.translation->translation =
        KbVec3f(static_cast<float>(x) - static_cast<float>(size3D()[0]) / 2, centreY(box), 0);
}

void KsDialogComponent::change3DLabel() { show3DLabelText(convertToCString(label, nullptr)); }

void KsDialogComponent::show3DLabelText(const KbString& s)
{
    showText3D(m_label3D.text.get(), s);
    KsTopComponent::change3DLabel();
    if (isBuilt3D()) update3DLabel();
}

void KsDialogComponent::change3DLabelAlignment() { update3DLabel(); }

void KsDialogComponent::change3DLabelVisibility()
{
    if (!m_label3D.text) return;
    show3DLabel();
    update3DControl();
}
