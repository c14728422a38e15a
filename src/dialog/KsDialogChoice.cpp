#include <formweave/KsDialogChoice.h>

#include "KsLayouts.h"
#include "KsTextLimits.h"

#include <arborium/actions/KsPath.h>
#include <arborium/nodes/KsGroup.h>
#include <arborium/nodes/KsText3.h>
#include <formweave/KsDialogChoiceAuditor.h>
#include <formweave/KsDialogGroup.h>
#include <formweave/KsTopLevelDialog.h>

#include <algorithm>

KS_KIT_SOURCE(KsDialogChoice, KsDialogComponent)

KsDialogChoice::KsDialogChoice()
{
    KsInstanceBuilder build(classRecord, this);
    build.field("items", items, std::vector<KbString>());
    build.field("selectedItem", selectedItem, 0);
}

KsDialogChoice::~KsDialogChoice() = default;

void KsDialogChoice::addAuditor(KsDialogChoiceAuditor* auditor)
{
    KsFormweave::addAuditor(auditor);
}

void KsDialogChoice::removeAuditor(KsDialogChoiceAuditor* auditor)
{
    KsFormweave::removeAuditor(auditor);
}

void KsDialogChoice::applyDlgCptAuditor()
{
    reportAction(this, &KsDialogChoiceAuditor::dialogChoice);
}

void KsDialogChoice::armSensors()
{
    m_itemsSensor.arm(this, items);
    m_selectedItemSensor.arm(this, selectedItem);
}

void KsDialogChoice::updateFromSensor(KsSensor* sensor)
{
    if (m_itemsSensor.is(sensor)) {
        updateBoth(this, &KsDialogChoice::changeItems, &KsDialogChoice::change3DItems);
    } else if (m_selectedItemSensor.is(sensor)) {
        updateBoth(this, &KsDialogChoice::changeSelectedItem,
                   &KsDialogChoice::change3DSelectedItem);
    } else {
        KsDialogComponent::updateFromSensor(sensor);
    }
}

void KsDialogChoice::changeItems() {}
void KsDialogChoice::changeSelectedItem() {}
void KsDialogChoice::change3DSelectedItem() {}
void KsDialogChoice::change3DItems() {}

// The list.

void KsDialogChoice::readItemsNumber()
{
    m_numItems = items.getNum();
    // One empty string is a filler only while nothing else was in the list.
    if (m_numItems > 1 || (m_numItems == 1 && !items[0].isEmpty())) m_dummyItem = 0;
}

void KsDialogChoice::fixItemsNumber()
{
    readItemsNumber();
    if (m_numItems) return;
    const bool wasDefault = items.isDefault();
    ksWriteSilently(m_itemsSensor, items, KbString());
    ksMarkDefault(items, wasDefault);
    m_numItems = 1;
    m_dummyItem = 1;
}

int KsDialogChoice::getVisibleCount() const { return std::max(m_numItems - m_dummyItem, 0); }

void KsDialogChoice::addItem(KbString item)
{
    // What a file or a program put there since counts as it is.
    readItemsNumber();
    const int place = getVisibleCount();
    m_dummyItem = 0;
    items.set1Value(place, item);
    m_numItems = items.getNum();
}

void KsDialogChoice::insertItem(int index, KbString item)
{
    readItemsNumber();
    const int place = std::clamp(index, 0, getVisibleCount());
    const bool replacesFiller = m_numItems == m_dummyItem;
    m_dummyItem = 0;
    if (!replacesFiller) {
        // Whoever listens is to see the list when it is complete.
        KsSensorSilencer silencer(m_itemsSensor.get());
        items.insertSpace(place, 1);
    }
    items.set1Value(place, item);
    m_numItems = items.getNum();
}

void KsDialogChoice::removeItem(int index)
{
    readItemsNumber();
    if (index >= 0 && index < getVisibleCount()) items.deleteValues(index, 1);
}

void KsDialogChoice::repairSelection()
{
    const auto isValid = [this](int index) { return index >= 0 && index < getVisibleCount(); };
    if (!isValid(selectedItem)) {
        if (!isValid(m_previousSelectedItem)) m_previousSelectedItem = 0;
        if (selectedItem != m_previousSelectedItem) {
            ksWriteSilently(m_selectedItemSensor, selectedItem, m_previousSelectedItem);
            // The window may have shown the invalid one as it was.
            if (isBuilt2D()) changeSelectedItem();
        }
    }
    m_previousSelectedItem = selectedItem;
}

// What the user chooses.

void KsDialogChoice::eventNotify(unsigned int value, unsigned long long)
{
    const KsKeepAlive keep(this);
    {
        // An auditor may choose otherwise: its word stands, and is not told again.
        KsSensorSilencer silencer(m_selectedItemSensor.get());
        selectedItem = static_cast<int>(value);
        applyDlgCptAuditor();
    }
    if (selectedItem != static_cast<int>(value) && isBuilt2D()) changeSelectedItem();
    if (isBuilt3D()) change3DSelectedItem();
}

void KsDialogChoice::choose3D(int index)
{
    if (index == selectedItem) return;
    ksWriteSilently(m_selectedItemSensor, selectedItem, index);
    updateBoth(this, &KsDialogChoice::changeSelectedItem, &KsDialogChoice::change3DSelectedItem);
}

// The scene.

void KsDialogChoice::layoutAfter3DItems()
{
    const int shown = getVisibleCount();
    if (m_previousNumItems3D == shown) return;
    // Before the layout, which comes back here.
    m_previousNumItems3D = shown;
    if (!m_parent || !isBuilt3D()) return;
    resetSize();
    if (auto* top = ksCast<KsTopLevelDialog>(m_parent))
        top->updateAfterSceneGraphChange();
    else if (auto* group = ksCast<KsDialogGroup>(m_parent))
        group->updateAfterSceneGraphChange();
}

void KsDialogChoice::appendRow(KsGroup* list, KsNode* step, const SceneRow& row)
{
    list->addChild(step);
    list->addChild(row.node.get());
}

void KsDialogChoice::dropRows(KsGroup* list, int shown)
{
    const auto kept = static_cast<std::size_t>(std::max(shown, 1));
    while (m_rows.size() > kept) {
        m_rows.pop_back();
        list->removeChild(list->getNumChildren() - 1);
        list->removeChild(list->getNumChildren() - 1);
    }
}

void KsDialogChoice::fillRows()
{
    int i = 0;
    for (const SceneRow& row : m_rows) show3DItem(row.text.get(), i++);
}

void KsDialogChoice::show3DItem(KsText3* text, int index) const
{
    const KbString item = index < getVisibleCount() ? ksShownText(items[index]) : KbString();
    if (text->string.getNum() != 1 || text->string[0] != item) text->string.setValue(item);
}

int KsDialogChoice::findPickedRow(const KsPath* path) const
{
    if (!path) return -1;
    const auto picked = std::find_if(m_rows.begin(), m_rows.end(), [path](const SceneRow& row) {
        return path->containsNode(row.node.get());
    });
    return picked == m_rows.end() ? -1 : static_cast<int>(picked - m_rows.begin());
}
