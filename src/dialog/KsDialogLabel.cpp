#include <formweave/KsDialogLabel.h>

#include "../qt/KsDialogQLabel.h"
#include "KsControlParts.h"
#include "KsTextLimits.h"

#include <arborium/nodes/KsGroup.h>
#include <arborium/nodes/KsText3.h>
#include <arborium/nodes/KsTranslation.h>

#include <algorithm>
#include <cmath>

KS_KIT_SOURCE(KsDialogLabel, KsDialogComponent)

KsDialogLabel::KsDialogLabel()
{
    KsInstanceBuilder build(classRecord, this);
    ksAddParts(build, {{"labelSep", KsPartKind::Separator, "geomSwitch"},
                       {"labelProp", KsPartKind::Look, "labelSep"}});
    labelAlignment.initValue(LEFT);
}

KsDialogLabel::~KsDialogLabel() = default;

// The text is the content: it cannot be left out.
void KsDialogLabel::changeLabelVisibility() {}
void KsDialogLabel::change3DLabelVisibility() {}

// Sizes.

KbVec2i32 KsDialogLabel::getLabelInitSize() { return {0, 0}; }

KbVec2i32 KsDialogLabel::getComponentInitSize()
{
    if (m_componentInitSize[0] != -1) return m_componentInitSize;
    m_labelTextSize = getLabelPixelSize(label, nullptr);
    // The container adds the label column, of which this element makes no use.
    constexpr int room = 4;
    m_labelTextSize[0] += room - m_labelSize[0];
    m_componentInitSize = m_labelTextSize;
    return m_componentInitSize;
}

void KsDialogLabel::getDefaultSize(KbVec2i32& size, KbVec2i32& min, KbVec2i32& max)
{
    KsDialogComponent::getDefaultSize(size, min, max);
    for (int axis = 0; axis < 2; ++axis)
        m_componentSize[axis] = std::max(m_componentSize[axis], min[axis]);
    size = m_componentSize;
    size[1] = std::max(size[1], m_labelTextSize[1]);
}

// The window.

void KsDialogLabel::createLabelWidget()
{
    installRelay(new KsDialogQLabel(relayParent(), this), [this] {
        changeLabelAlignment();
        changeLabel();
        changeEnable();
        changeEdgeStyle();
        m_widget->setMinimumSize(std::max<int>(minWidth, 0), std::max<int>(minHeight, 0));
    });
    m_labelWidget = m_widget;
}

void KsDialogLabel::updateLabelWidget()
{
    auto* relay = relayAs<KsDialogQLabel>();
    if (!relay) return;
    const KbVec2i32 frame = size2D();
    const int h = getLabelPixelSize(label, this)[1];
    relay->updateLabelWidget(frameMargin, frameMargin + (frame[1] - 2 * frameMargin - h) / 2,
                             frame[0] - 2 * frameMargin, h);
}

// The scene.

void KsDialogLabel::create3DControl()
{
    dress3D(nullptr, {{"labelProp", "DialogTextProperties"}});
    create3DText(m_label3D, "labelSep");
    change3DLabel();
    change3DLabelAlignment();
    setBuilt3D(1);
}

void KsDialogLabel::update3DControl()
{
    if (m_wrappedWidth == size3D()[0]) return;
    show3DLines();
    KsTopComponent::change3DLabel();
}

void KsDialogLabel::show3DLines()
{
    if (!m_label3D.text) return;
    m_wrappedWidth = size3D()[0];
    KsText3* text = m_label3D.text.get();
    text->string.setNum(0);
    auto* properties = static_cast<KsGroup*>(getAnyPart("labelProp", false));
    const auto room = static_cast<float>(m_wrappedWidth - 2 * frameMargin);
    const KbString s = ksShownText(convertToCString(label, nullptr));
    const KbString lineFeed("\n"), carriageReturn("\r");
    for (int index = 0, place = 0; place < s.getLength(); ++index) {
        const int end = s.find(lineFeed, place);
        insertTextTo3DText(s.getSubString(place, end), text, index, 0);
        index = wrap3DTextLine(text, index, room, properties, this);
        if (end == KbString::npos) break;
        place = end + 1;
        if (s.getSubString(place, place + 1) == carriageReturn) ++place;
    }
}

void KsDialogLabel::change3DLabel()
{
    show3DLines();
    KsTopComponent::change3DLabel();
    if (isBuilt3D()) update3DLabel();
}

void KsDialogLabel::change3DLabelAlignment()
{
    if (!m_label3D.text) return;
    const int alignment = labelAlignment;
    m_label3D.text->justification = alignment == CENTER  ? KsText3::CENTER
                                    : alignment == RIGHT ? KsText3::RIGHT
                                                         : KsText3::LEFT;
    // The lines run to another side of their origin now.
    setLabelCacheBBox(staleBox());
}

void KsDialogLabel::update3DLabel()
{
    if (!m_label3D.text) return;
    const KbBox3f box = labelBox3D();
    const float left = static_cast<float>(frameMargin) - static_cast<float>(size3D()[0]) / 2;
    const int alignment = labelAlignment;
    const float x = alignment == CENTER  ? -(box.getMax()[0] + box.getMin()[0]) / 2
                    : alignment == RIGHT ? -left - box.getMax()[0]
                                         : left;
    m_label3D.translation->translation = KbVec3f(std::trunc(x), centreY(box), 0);
}

void KsDialogLabel::refresh3DSkin()
{
    m_wrappedWidth = -1; // the font may be another one
    KsDialogComponent::refresh3DSkin();
}
