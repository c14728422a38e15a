#include <formweave/KsDialogComboBox.h>

#include "../qt/KsDialogQComboBox.h"
#include "KsControlParts.h"
#include "KsLayouts.h"
#include "KsSkinFamily.h"

#include <arborium/actions/KsGetBoundingBoxAction.h>
#include <arborium/nodes/KsScale.h>
#include <arborium/nodes/KsSeparator.h>
#include <arborium/nodes/KsSwitch.h>
#include <arborium/nodes/KsText3.h>
#include <arborium/nodes/KsTransform.h>
#include <arborium/nodes/KsTranslation.h>

#include <algorithm>

KS_KIT_SOURCE(KsDialogComboBox, KsDialogChoice)

KS_SKIN_SOURCE(KsDialogComboBox, DialogComboBox, "DialogComboBox.arb", "DialogComboBoxFrame",
               "DialogComboBoxItemFrame", "DialogComboBoxButtonReleased",
               "DialogComboBoxButtonPressed")

char* KsDialogComboBox::DialogComboBox = const_cast<char*>(
    KS_SKIN_PART("DialogComboBoxFrame", KS_SKIN_CLOSED_BOX("0.7 0.7 0.7"))
        KS_SKIN_PART("DialogComboBoxItemFrame", KS_SKIN_CLOSED_BOX("0.8 0.8 0.8")) KS_SKIN_PART(
            "DialogComboBoxButtonReleased",
            KS_SKIN_BEVEL("0.7 0.7 0.7", "0.2 0.2 0.2", "1 1 1", "0.5 0.5 0.5", "0.7 0.7 0.7"))
            KS_SKIN_PART(
                "DialogComboBoxButtonPressed",
                KS_SKIN_BEVEL("0.5 0.5 0.5", "1 1 1", "0.2 0.2 0.2", "0.7 0.7 0.7", "0 0 0")));

namespace {

constexpr int buttonRoom = 30;  // beside the text in a window
constexpr int textRoom = 4;     // of the box, above and below its line of text together
constexpr float rowHeight = 22; // in a scene, of the box and of each row
constexpr float buttonSize = 16;
constexpr float buttonInset = 11; // of its centre
constexpr float textInset = 4;
constexpr float listGap = 0.1f; // between the dialog's highest point and the open list

} // namespace

KsDialogComboBox::KsDialogComboBox()
{
    KsInstanceBuilder build(classRecord, this);
    ksAddLabelParts(build);
    ksAddParts(build, {{"frameSep", KsPartKind::Separator, "geomSwitch"},
                       {"frame", KsPartKind::Look, "frameSep"},
                       {"textSep", KsPartKind::Separator, "geomSwitch"},
                       {"textProp", KsPartKind::Look, "textSep"},
                       {"buttonSep", KsPartKind::Separator, "geomSwitch"},
                       {"buttonSwitch", KsPartKind::Switch, "buttonSep"},
                       {"buttonReleased", KsPartKind::Look, "buttonSwitch"},
                       {"buttonPressed", KsPartKind::Look, "buttonSwitch"},
                       {"itemsSwitch", KsPartKind::Switch, "geomSwitch"},
                       {"itemStrucSep", KsPartKind::Separator, "itemsSwitch"},
                       {"itemSep", KsPartKind::Separator, "itemStrucSep"},
                       {"itemFrame", KsPartKind::Look, "itemSep"},
                       {"itemTextSep", KsPartKind::Separator, "itemStrucSep"},
                       {"itemTextProp", KsPartKind::Look, "itemTextSep"}});
}

KsDialogComboBox::~KsDialogComboBox() = default;

// Sizes.

KbVec2i32 KsDialogComboBox::getComponentInitSize()
{
    return initSizeOnce([this] {
        fixItemsNumber();
        KbVec2i32 widest(0, 0);
        for (int i = 0; i < getVisibleCount(); ++i) {
            const KbVec2i32 item = getLabelPixelSize(items[i], this);
            widest.setValue(std::max(widest[0], item[0]), std::max(widest[1], item[1]));
        }
        return KbVec2i32(widest[0] + buttonRoom, widest[1]);
    });
}

void KsDialogComboBox::getDefaultSize(KbVec2i32& size, KbVec2i32& min, KbVec2i32& max)
{
    KsDialogComponent::getDefaultSize(size, min, max);
    size[0] = m_componentSize[0] + (labelVisibility ? m_labelSize[0] + zoneGap : 0);
}

// The window.

void KsDialogComboBox::createLabelWidget()
{
    installRelay(new KsDialogQComboBox(relayParent(), this), [this] {
        changeItems();
        changeLabel();
        changeLabelAlignment();
        changeEnable();
        changeLabelVisibility();
        changeEdgeStyle();
        limitFrame(m_widget);
    });
}

void KsDialogComboBox::updateLabelWidget() { placeLabelWidget(2 * frameMargin); }

void KsDialogComboBox::updateComboBoxWidget()
{
    auto* relay = relayAs<KsDialogQComboBox>();
    if (!relay) return;
    const WindowZone zone = controlZone2D(frameMargin);
    const int h = getLabelPixelSize(items[0], this)[1] + textRoom;
    relay->updateComboBoxWidget(zone.x, zone.y + (zone.height - h) / 2, zone.width, h);
}

void KsDialogComboBox::changeItems()
{
    auto* relay = relayAs<KsDialogQComboBox>();
    if (!relay) return;
    relay->clear();
    for (const KbString& item : items.values()) relay->changeItems(ksShownQString(item), -1);
    changeSelectedItem();
}

void KsDialogComboBox::changeSelectedItem()
{
    const KsKeepAlive keep(this);
    auto* relay = relayAs<KsDialogQComboBox>();
    if (!relay) return;
    const int last = relay->count() - 1;
    if (last >= 0 && selectedItem > last) selectedItem = last;
    // Who hears of that may have taken the window down.
    if ((relay = relayAs<KsDialogQComboBox>())) relay->changeSelectedItem(selectedItem);
}

// The scene.

void KsDialogComboBox::create3DControl()
{
    dress3D(&skinFamily(), {{"labelProp", "DialogTextProperties"},
                            {"frame", "DialogComboBoxFrame"},
                            {"buttonReleased", "DialogComboBoxButtonReleased"},
                            {"buttonPressed", "DialogComboBoxButtonPressed"},
                            {"textProp", "DialogTextProperties"},
                            {"itemFrame", "DialogComboBoxItemFrame"},
                            {"itemTextProp", "DialogTextProperties"}});
    create3DLabel();
    create3DFrame(m_frame);
    putBefore(m_textTransform, "textSep");
    create3DText(m_selectedText, "textSep");

    setSwitchValue(getAnyPart("buttonSwitch", true), 0);
    KsRef<KsScale> buttonScale;
    putFirst(buttonScale, "buttonSep");
    buttonScale->scaleFactor = KbVec3f(buttonSize, buttonSize, 1);
    putFirst(m_buttonTranslation, "buttonSep");

    putFirst(m_itemStepTranslation, "itemsSwitch");
    m_itemStepTranslation->translation = KbVec3f(0, -rowHeight, 0);
    putFirst(m_itemsHeightTranslation, "itemsSwitch");
    // Every row is as wide as the box, and its text starts where the selected one does.
    insertFirst(m_frame.scale.get(), "itemSep");
    putBefore(m_itemTransform, "itemTextSep");
    insertFirst(m_selectedText.translation.get(), "itemTextSep");
    SceneRow first;
    first.node = getAnyPart("itemStrucSep", true);
    first.text = new KsText3;
    first.text->parts = KsText3::FRONT;
    static_cast<KsGroup*>(getAnyPart("itemTextSep", true))->addChild(first.text.get());
    m_rows.push_back(first);
    closeDropDown();

    addStartCallback(startCB3D);
    change3DItems();
    change3DSelectedItem();
    setBuilt3D(1);
}

KsDialogChoice::SceneRow KsDialogComboBox::makeRow()
{
    SceneRow row;
    row.text = new KsText3;
    row.text->parts = KsText3::FRONT;
    auto* text = new KsSeparator;
    text->addChild(m_selectedText.translation.get());
    text->addChild(getAnyPart("itemTextProp", true));
    text->addChild(row.text.get());
    auto* node = new KsSeparator;
    row.node = node;
    node->addChild(getAnyPart("itemSep", true));
    node->addChild(m_itemTransform.get());
    node->addChild(text);
    return row;
}

void KsDialogComboBox::update3DControl()
{
    if (!m_frame.scale) return;
    const SceneZone zone = controlZone3D();
    place3DFrame(m_frame, zone.x, 0, zone.width, rowHeight);
    m_selectedText.translation->translation =
        KbVec3f(-zone.width / 2 + textInset, centreY(textBox3D(m_selectedText, "textProp")), 0);
    undoTransformMatrix(getAnyPart("frameSep", false), m_textTransform.get());
    m_buttonTranslation->translation = KbVec3f(zone.width / 2 - buttonInset, 0, 0);
    undoTransformMatrix(getAnyPart("itemSep", false), m_itemTransform.get());
}

void KsDialogComboBox::change3DItems()
{
    if (m_rows.empty()) return;
    const std::size_t before = m_rows.size();
    updateRows(static_cast<KsGroup*>(getAnyPart("itemsSwitch", true)), m_itemStepTranslation.get(),
               [this] { return makeRow(); });
    // Laid out now, so that a long list opens at once.
    for (std::size_t i = before; i < m_rows.size(); ++i) m_bboxAction->apply(m_rows[i].node.get());
    layoutAfter3DItems();
    updateBoth(this, &KsDialogComboBox::changeSelectedItem,
               &KsDialogComboBox::change3DSelectedItem);
}

void KsDialogComboBox::change3DSelectedItem()
{
    if (!m_selectedText.text) return;
    repairSelection();
    show3DItem(m_selectedText.text.get(), selectedItem);
    m_selectedText.box = staleBox();
    update3DControl();
}

void KsDialogComboBox::change3DLabel()
{
    // Escapes stay as they are.
    show3DLabelText(label);
}

void KsDialogComboBox::change3DLabelAlignment()
{
    change3DLabel();
    update3DLabel();
}

void KsDialogComboBox::refresh3DSkin()
{
    closeDropDown(); // its height was that of the former looks
    m_selectedText.box = staleBox();
    KsDialogChoice::refresh3DSkin();
}

// The list.

void KsDialogComboBox::startCB3D(void*, KsDragger* dragger)
{
    static_cast<KsDialogComboBox*>(dragger)->draggerStartCallback3D();
}

void KsDialogComboBox::draggerStartCallback3D()
{
    const KsKeepAlive keep(this);
    if (m_dropDownOpen) {
        if (isPicked({"itemsSwitch"})) choosePickedRow();
        set3DInactive();
    } else if (isPicked({"frameSep", "buttonSep", "textSep"})) {
        openDropDown();
    }
}

void KsDialogComboBox::choosePickedRow()
{
    const int row = findPickedRow(getPickPath());
    if (row >= getVisibleCount()) return; // the row that stands for an empty list
    if (row >= 0) choose3D(row);
    applyDlgCptAuditor();
}

void KsDialogComboBox::openDropDown()
{
    closeDropDown();
    setSwitchValue(getAnyPart("buttonSwitch", false), 1);
    // In front of all that stands in the dialog; a control that stands alone has itself to clear.
    m_bboxAction->apply(getAnyPart("topSeparator", false));
    const float own = m_bboxAction->getBoundingBox().getMax()[2];
    float above = own;
    KsFormweave* top = getFirstTopParent(0, 0);
    if (!top) top = getFirstTopParent(0, 1);
    if (top) {
        m_bboxAction->apply(top);
        above = m_bboxAction->getBoundingBox().getMax()[2];
    }
    m_itemsHeightTranslation->translation = KbVec3f(0, 0, above - own + listGap);
    setSwitchValue(getAnyPart("itemsSwitch", false), KsSwitch::ALL);
    m_dropDownOpen = true;
    set3DCurrentActive(this);
    closeOnPressElsewhere();
}

void KsDialogComboBox::closeDropDown()
{
    m_dropDownOpen = false;
    if (!m_itemsHeightTranslation) return;
    setSwitchValue(getAnyPart("itemsSwitch", false), KsSwitch::NONE);
    setSwitchValue(getAnyPart("buttonSwitch", false), 0);
    m_itemsHeightTranslation->translation = KbVec3f(0, 0, 0);
}

void KsDialogComboBox::set3DInactive()
{
    closeDropDown();
    KsFormweave::set3DInactive();
}
