#pragma once

#include <formweave/KsDialogChoice.h>
#include <formweave/KsSizeDB.h>

class KsSwitch;

/// A list of strings, one of them selected, as a column of exclusive buttons. The label stands as a
/// title above them, so there is no label zone; its alignment is LEFT by default.
class FORMWEAVE_API KsDialogRadioButtons : public KsDialogChoice {
    KS_KIT_HEADER(KsDialogRadioButtons);

public:
    KsDialogRadioButtons();

    QWidget* getLabelWidget() override;
    void resetSize() override;
    void changeLabel() override;
    void changeLabelVisibility() override;
    void change3DLabelAlignment() override;
    KbVec2i32 getComponentInitSize() override;
    KbVec2i32 getLabelInitSize() override;
    void getDefaultSize(KbVec2i32& size, KbVec2i32& min, KbVec2i32& max) override;
    void updateLabelWidget() override;
    void refresh3DSkin() override;
    void changeItems() override;
    void changeSelectedItem() override;
    void change3DItems() override;
    void change3DSelectedItem() override;

    // The title and the buttons are laid out by the box that holds them.
    void drawLabel() {}
    void updateRadioButtonsWidget() {}

    /// Built-in text of DialogRadioButtons.arb.
    static char* DialogRadioButtons;
    static void change3DSkin();
    static int isSkinLoaded();
    static void setSkinLoaded(int loaded);

protected:
    ~KsDialogRadioButtons() override;
    void createLabelWidget() override;
    void create3DControl() override;
    void update3DControl() override;
    void update3DLabel() override;
    /// Shares the height of a frame of this size out among the rows of the scene.
    void computeNewButtonsHeight(const KbVec2i32& size);

    KsSizeDB m_rowSizes;

private:
    static void finishCB3D(void* data, KsDragger* dragger);
    void draggerFinishCallback3D();
    SceneRow makeRow3D();
    /// Each in the middle of its row; those of several lines as near to it as the others let them.
    void placeTexts3D();
    void shift3DTexts();
    static void shift3DText(const SceneRow& row, float y);

    KbVec2i32 m_rowsFrame{0, 0}; ///< The size that `m_rowSizes` was made for.
    KbVec2i32 m_itemsSize{0, 0}; ///< The widest item, and the sum of the heights, with margins.
    KsRef<KsTransform> m_labelTransform, m_itemTransform;
    KsRef<KsTranslation> m_itemsTranslation, m_itemStep, m_itemBtnTranslation;
    KsRef<KsScale> m_frameScale, m_itemFrameScale, m_itemBtnScale;
    SceneText m_itemText;                       ///< Of the first row; the others stand as it does.
    std::vector<KsRef<KsSwitch>> m_btnSwitches; ///< One for each row.
};
