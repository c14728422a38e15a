#pragma once

#include <arborium/fields/KsMField.h>
#include <formweave/KsDialogComponent.h>

#include <vector>

class KsDialogChoiceAuditor;
class KsPath;

/// Base of the controls that offer a list of strings, one of which is selected. An empty list is
/// held as one empty string that is not shown; it stands aside for the first item that comes.
class FORMWEAVE_API KsDialogChoice : public KsDialogComponent {
    KS_KIT_HEADER(KsDialogChoice);

public:
    KsMFString items;       ///< The strings, in the order in which they are shown.
    KsSFInt32 selectedItem; ///< Index of the selected one. Default 0.

    // The auditors of this control; with none, those of its containers are told.
    void addAuditor(KsDialogChoiceAuditor* auditor);
    void removeAuditor(KsDialogChoiceAuditor* auditor);
    /// Reports the control, as if it had just been used.
    void applyDlgCptAuditor();

    /// Adds an item at the end.
    void addItem(KbString item);
    /// Inserts an item before the one at `index`; beyond either end, at that end.
    void insertItem(int index, KbString item);
    /// Removes the item at `index`. An index out of range does nothing.
    void removeItem(int index);

    void updateFromSensor(KsSensor* sensor) override;
    /// The user chose the item at `value` in the window.
    void eventNotify(unsigned int value, unsigned long long data) override;
    // Bring one presentation up to date with `items` and `selectedItem`.
    virtual void changeItems();
    virtual void changeSelectedItem();
    virtual void change3DSelectedItem();
    virtual void change3DItems();

protected:
    KsDialogChoice();
    ~KsDialogChoice() override;
    void armSensors() override;

    /// Reads the number of items, and puts the filler into an empty list.
    void fixItemsNumber();
    /// How many items are shown, as of the last `fixItemsNumber`.
    int getVisibleCount() const;
    /// An invalid selection falls back to the last valid one, else to 0; no sensor hears of it.
    void repairSelection();
    /// The user chose the item at `index` in the scene: writes the selection if it is another one,
    /// without a sensor, and shows it in both presentations. Tells no auditor.
    void choose3D(int index);
    /// `items` in a scene changed: a container lays its dialog out anew if there are more or fewer
    /// than at the last call.
    void layoutAfter3DItems();

    /// One item in a scene.
    struct SceneRow {
        KsRef<KsNode> node; ///< All of the row; a pick of it is a pick of the item.
        KsRef<KsText3> text;
    };
    /// Brings `m_rows` and what is in `list` in step with the visible items: row 0 stands for good
    /// and is empty when there is no item; behind it `list` holds `step` and the node of each row
    /// that `makeRow` made. What stands in front of row 0 stays.
    template <class MakeRow> void updateRows(KsGroup* list, KsNode* step, MakeRow&& makeRow)
    {
        fixItemsNumber();
        const int shown = getVisibleCount();
        for (int i = static_cast<int>(m_rows.size()); i < shown; ++i) {
            m_rows.push_back(makeRow());
            appendRow(list, step, m_rows.back());
        }
        dropRows(list, shown);
        fillRows();
    }
    /// The item at `index` as the only line of a text; empty where no item is shown.
    void show3DItem(KsText3* text, int index) const;
    /// Index of the row that a pick path leads through; -1 if there is none.
    int findPickedRow(const KsPath* path) const;

    int m_numItems = 1;
    int m_dummyItem = 1;            ///< 1 while the only item is the filler of an empty list.
    int m_previousNumItems3D = 0;   ///< In a scene: the visible items at the last `change3DItems`.
    int m_previousSelectedItem = 0; ///< The last valid selection.
    KsElementSensor m_itemsSensor, m_selectedItemSensor;
    std::vector<SceneRow> m_rows;

private:
    void readItemsNumber();
    static void appendRow(KsGroup* list, KsNode* step, const SceneRow& row);
    void dropRows(KsGroup* list, int shown);
    void fillRows();
};
