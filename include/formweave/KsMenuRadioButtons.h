#pragma once

#include <arborium/fields/KsMField.h>
#include <formweave/KsMenuItem.h>

class KsMenuRadioButtonsAuditor;
class KsSeparator;
class KsSwitch;

/// Entries of a menu of which one is checked: one node for all of them, one row each. `label` is
/// not shown.
class FORMWEAVE_API KsMenuRadioButtons : public KsMenuItem {
    KS_KIT_HEADER(KsMenuRadioButtons);

public:
    KsMFString items;        ///< The texts. Default empty: no row.
    KsSFInt32 selectedItem;  ///< The checked one; none is if it is out of range. Default 0.
    KsMFString accelerators; ///< One for each row, in a window; those beyond the rows are not used.

    KsMenuRadioButtons();

    /// An element with auditors of its own is not reported to its container.
    void addAuditor(KsMenuRadioButtonsAuditor* auditor);
    void removeAuditor(KsMenuRadioButtonsAuditor* auditor);
    /// Reports the entry, as if it had just been picked.
    void applyDlgCptAuditor();

    void updateFromSensor(KsSensor* sensor) override;
    void changeLabel() override;
    /// `id`: that of the row's relay.
    void menuEvent(void* data, int id) override;
    void destroyWidget() override;
    /// As high as its rows.
    KbVec2i32 getItemInitSize() override;
    void setItemSize(KbVec2i32 size, int force) override;
    void changeSelectedItem();
    /// The rows are made anew, behind what else is in the menu.
    void changeItems();
    /// A row beyond the texts keeps what it has.
    void changeAccelerators();
    void change3DSelectedItem();
    void change3DItems();
    /// The 3D form was clicked.
    virtual void draggerFinishCallback3D();

    /// Built-in text of MenuRadioButtons.arb.
    static char* MenuRadioButtons;
    static void change3DSkin();
    static int isSkinLoaded();
    static void setSkinLoaded(int loaded);

protected:
    ~KsMenuRadioButtons() override;
    void insertMenuItem() override;
    void create3DEntry() override;
    void update3DEntry() override;
    void armSensors() override;
    const KbString& shownLabel() const override { return items[0]; }

private:
    /// What makes a row; the first one's is made of the parts of the entry itself.
    struct Row {
        KsRef<KsSeparator> group;
        KsRef<KsSwitch> mark;
        KsRef<KsTranslation> textTranslation;
        KsRef<KsText3> text;
    };
    static void finishCB3D(void* data, KsDragger* dragger);
    int rowCount() const { return static_cast<int>(m_rows.size()); }
    /// Brings a selection that is out of range back into it.
    void verifySelectedItem();
    void insertRelays();
    void add3DItem(int index);
    void remove3DRows(int from);
    void showSelection3D(int index);

    KsElementSensor m_selectedItemSensor, m_itemsSensor, m_acceleratorsSensor;
    int m_numItems = 0;
    bool m_isInserted = false;
    SceneFrame m_toggle; ///< Of all rows.
    std::vector<Row> m_rows;
};
