#include <formweave/KsMenuRadioButtons.h>

#include "../qt/KsMenuQRadioButtons.h"
#include "KsControlParts.h"
#include "KsLayouts.h"
#include "KsSkinFamily.h"
#include "KsTextLimits.h"

#include <arborium/actions/KsPath.h>
#include <arborium/nodes/KsScale.h>
#include <arborium/nodes/KsSeparator.h>
#include <arborium/nodes/KsSwitch.h>
#include <arborium/nodes/KsText3.h>
#include <arborium/nodes/KsTransform.h>
#include <arborium/nodes/KsTranslation.h>
#include <formweave/KsMenuBar.h>
#include <formweave/KsMenuRadioButtonsAuditor.h>

#include <algorithm>

KS_KIT_SOURCE(KsMenuRadioButtons, KsMenuItem)

KS_SKIN_SOURCE(KsMenuRadioButtons, MenuRadioButtons, "MenuRadioButtons.arb",
               "MenuRadioButtonsStateOn", "MenuRadioButtonsStateOff")

char* KsMenuRadioButtons::MenuRadioButtons = const_cast<char*>(
    KS_SKIN_PART("MenuRadioButtonsStateOn",
                 KS_SKIN_COLOR("1 1 1") "  Sphere { radius 0.5 }\n"
                                        "  Translation { translation 0 0 0.5 }\n"
                                        "  BaseColor { rgb 0 0 0 }\n"
                                        "  Sphere { radius 0.2 }\n")
        KS_SKIN_PART("MenuRadioButtonsStateOff",
                     KS_SKIN_COLOR("1 1 1") "  Translation { translation 0 0 0.5 }\n"
                                            "  Sphere { radius 0.5 }\n"));

namespace {

constexpr float flat = 0.001f; // of the frame without rows, which cannot be nothing

} // namespace

KsMenuRadioButtons::KsMenuRadioButtons()
{
    KsInstanceBuilder build(classRecord, this);
    build.emptyField("items", items);
    build.field("selectedItem", selectedItem, 0);
    build.emptyField("accelerators", accelerators);
    ksAddParts(build, {{"radioSep", KsPartKind::Separator, "geomSwitch"},
                       {"itemsSep", KsPartKind::Separator, "radioSep"},
                       {"itemSwtch", KsPartKind::Switch, "itemsSep"},
                       {"stateOff", KsPartKind::Look, "itemSwtch"},
                       {"stateOn", KsPartKind::Look, "itemSwtch"}});
}

KsMenuRadioButtons::~KsMenuRadioButtons() = default;

void KsMenuRadioButtons::addAuditor(KsMenuRadioButtonsAuditor* auditor)
{
    KsFormweave::addAuditor(auditor);
}

void KsMenuRadioButtons::removeAuditor(KsMenuRadioButtonsAuditor* auditor)
{
    KsFormweave::removeAuditor(auditor);
}

void KsMenuRadioButtons::applyDlgCptAuditor()
{
    reportAction(this, &KsMenuRadioButtonsAuditor::menuRadioButtons);
}

void KsMenuRadioButtons::armSensors()
{
    m_selectedItemSensor.arm(this, selectedItem);
    m_itemsSensor.arm(this, items);
    m_acceleratorsSensor.arm(this, accelerators);
}

void KsMenuRadioButtons::updateFromSensor(KsSensor* sensor)
{
    if (m_selectedItemSensor.is(sensor))
        updateBoth(this, &KsMenuRadioButtons::changeSelectedItem,
                   &KsMenuRadioButtons::change3DSelectedItem);
    else if (m_itemsSensor.is(sensor))
        updateBoth(this, &KsMenuRadioButtons::changeItems, &KsMenuRadioButtons::change3DItems);
    else if (m_acceleratorsSensor.is(sensor))
        changeAccelerators();
    else
        KsMenuItem::updateFromSensor(sensor);
}

void KsMenuRadioButtons::verifySelectedItem()
{
    const int valid = std::max(std::min(static_cast<int>(selectedItem), m_numItems - 1), 0);
    if (valid == selectedItem || (m_numItems == 0 && selectedItem > 0)) return;
    ksWriteSilently(m_selectedItemSensor, selectedItem, valid);
    updateBoth(this, &KsMenuRadioButtons::changeSelectedItem,
               &KsMenuRadioButtons::change3DSelectedItem);
}

// Sizes.

KbVec2i32 KsMenuRadioButtons::getItemInitSize()
{
    m_numItems = ksShownItems(items.getNum());
    int widest = 0;
    for (int i = 0; i < m_numItems; ++i)
        widest = std::max(widest, getLabelPixelSize(items[i], nullptr)[0]);
    return {widest + toggleRoom, m_numItems * itemHeight};
}

void KsMenuRadioButtons::setItemSize(KbVec2i32 size, int force)
{
    if (force || m_itemSize == KbVec2i32(0, 0))
        m_itemSize.setValue(size[0], m_numItems * itemHeight);
}

// The window.

void KsMenuRadioButtons::insertMenuItem()
{
    if (!m_isInserted) insertRelays();
}

void KsMenuRadioButtons::insertRelays()
{
    m_isInserted = true;
    m_numItems = ksShownItems(items.getNum());
    const int first = takeIds(m_numItems);
    for (int i = 0; i < m_numItems; ++i)
        addRelay(new KsMenuQRadioButtons(parentMenu(), -1, first + i, this));
    changeSelectedItem();
    changeLabel();
    changeEnable();
    changeAccelerators();
}

void KsMenuRadioButtons::destroyWidget()
{
    m_isInserted = false;
    KsMenuItem::destroyWidget();
}

void KsMenuRadioButtons::changeItems()
{
    if (!m_isInserted) return;
    removeRelays();
    insertRelays();
}

void KsMenuRadioButtons::changeLabel()
{
    for (int i = 0; i < getRelayCount(); ++i) showRelayLabel(i, items[i]);
}

void KsMenuRadioButtons::changeSelectedItem()
{
    for (int i = 0; i < getRelayCount(); ++i) {
        if (auto* relay = relayAs<KsMenuQRadioButtons>(i))
            relay->changeSelectedItem(i == selectedItem);
    }
}

void KsMenuRadioButtons::changeAccelerators()
{
    const int count = std::min(accelerators.getNum(), getRelayCount());
    for (int i = 0; i < count; ++i) showRelayAccelerator(i, accelerators[i]);
}

void KsMenuRadioButtons::menuEvent(void*, int id)
{
    const KsKeepAlive keep(this);
    ksWriteSilently(m_selectedItemSensor, selectedItem, id - getId());
    // The auditors hear of it before the other rows are unchecked.
    applyDlgCptAuditor();
    updateBoth(this, &KsMenuRadioButtons::changeSelectedItem,
               &KsMenuRadioButtons::change3DSelectedItem);
}

// The scene.

void KsMenuRadioButtons::create3DEntry()
{
    dress3D(&skinFamily(),
            {{"stateOff", "MenuRadioButtonsStateOff"}, {"stateOn", "MenuRadioButtonsStateOn"}});
    create3DToggle(m_toggle, "itemsSep");
    // The entry's own nodes become the first row; the others hold the same frame.
    auto* geometry = static_cast<KsGroup*>(getAnyPart("geomSwitch", true));
    auto* row = static_cast<KsSeparator*>(getAnyPart("radioSep", true));
    const auto move = [&](KsNode* node, int place) {
        const KsRef<KsNode> moved(node);
        const int index = node ? geometry->findChild(node) : -1;
        if (index < 0) return;
        geometry->removeChild(index);
        row->insertChild(node, place);
    };
    if (hasItemFrame()) {
        move(getAnyPart("itemFrameSep", false), 0);
        move(m_itemTransform.get(), 1);
    }
    move(getAnyPart("labelSep", false), row->getNumChildren());
    m_rows.push_back({row, static_cast<KsSwitch*>(getAnyPart("itemSwtch", true)),
                      m_itemText.translation, m_itemText.text});
    for (int i = 1; i < m_numItems; ++i) add3DItem(i);
    change3DSelectedItem();
    addFinishCallback(finishCB3D);
}

void KsMenuRadioButtons::add3DItem(int index)
{
    auto* geometry = static_cast<KsGroup*>(getAnyPart("geomSwitch", true));
    auto* down = new KsTranslation;
    down->translation = KbVec3f(0, -itemHeight, 0);
    geometry->addChild(down);
    Row row;
    row.group = new KsSeparator;
    geometry->addChild(row.group.get());
    if (hasItemFrame()) {
        row.group->addChild(getAnyPart("itemFrameSep", false));
        row.group->addChild(m_itemTransform.get());
    }
    auto* toggle = new KsSeparator;
    row.group->addChild(toggle);
    toggle->addChild(m_toggle.translation.get());
    toggle->addChild(m_toggle.scale.get());
    row.mark = new KsSwitch;
    toggle->addChild(row.mark.get());
    row.mark->addChild(getAnyPart("stateOff", true));
    row.mark->addChild(getAnyPart("stateOn", true));
    auto* text = new KsSeparator;
    row.group->addChild(text);
    row.textTranslation = new KsTranslation;
    text->addChild(row.textTranslation.get());
    text->addChild(getAnyPart("labelProp", true));
    row.text = new KsText3;
    row.text->parts = KsText3::FRONT;
    row.text->string = ksShownText(items[index]);
    text->addChild(row.text.get());
    m_rows.push_back(row);
}

void KsMenuRadioButtons::remove3DRows(int from)
{
    auto* geometry = static_cast<KsGroup*>(getAnyPart("geomSwitch", true));
    while (rowCount() > from) {
        // The row, and the step down to it.
        const int index = geometry->findChild(m_rows.back().group);
        geometry->removeChild(index);
        geometry->removeChild(index - 1);
        m_rows.pop_back();
    }
}

void KsMenuRadioButtons::update3DEntry()
{
    KbVec3f min, max;
    get3DLabelCachedBBox(min, max);
    const float left = -static_cast<float>(m_itemSize[0]) / 2;
    // A line is as high whatever its letters are.
    for (const Row& row : m_rows)
        row.textTranslation->translation = KbVec3f(left + 20, -(max[1] + min[1]) / 2, 0);
    m_toggle.translation->translation = KbVec3f(left + 10, 0, 0);
    const int h = m_numItems ? m_itemSize[1] / m_numItems : 0;
    place3DItemFrame(KbVec2i32(m_itemSize[0], h), h / 2 * (m_numItems - 1));
    if (hasItemFrame() && !h)
        m_itemFrame.scale->scaleFactor = KbVec3f(static_cast<float>(m_itemSize[0]), flat, 1);
    if (hasItemFrame())
        undoTransformMatrix(getAnyPart("itemFrameSep", false), m_itemTransform.get());
}

void KsMenuRadioButtons::change3DItems()
{
    m_numItems = ksShownItems(items.getNum());
    remove3DRows(std::max(m_numItems, 1));
    for (int i = 0; i < rowCount(); ++i)
        m_rows[static_cast<std::size_t>(i)].text->string = ksShownText(items[i]);
    for (int i = rowCount(); i < m_numItems; ++i) add3DItem(i);
    change3DSelectedItem();
    KsMenuItem::change3DLabel();
}

void KsMenuRadioButtons::change3DSelectedItem()
{
    for (int i = 0; i < rowCount(); ++i) {
        const int shown = !m_numItems ? KsSwitch::NONE : i == selectedItem ? 1 : 0;
        setSwitchValue(m_rows[static_cast<std::size_t>(i)].mark, shown);
    }
}

void KsMenuRadioButtons::finishCB3D(void*, KsDragger* dragger)
{
    auto* buttons = static_cast<KsMenuRadioButtons*>(dragger);
    if (buttons->takesInput()) buttons->draggerFinishCallback3D();
}

void KsMenuRadioButtons::draggerFinishCallback3D()
{
    const KsKeepAlive keep(this);
    const KsRef<KsMenuBar> bar(getMenuBar());
    int index = selectedItem;
    const KsPath* path = getPickPath();
    for (int i = 0; path && i < std::min(rowCount(), m_numItems); ++i) {
        if (path->containsNode(m_rows[static_cast<std::size_t>(i)].group)) index = i;
    }
    if (index != selectedItem) {
        ksWriteSilently(m_selectedItemSensor, selectedItem, index);
        updateBoth(this, &KsMenuRadioButtons::changeSelectedItem,
                   &KsMenuRadioButtons::change3DSelectedItem);
    }
    applyDlgCptAuditor();
    closeMenus3D(bar);
}
