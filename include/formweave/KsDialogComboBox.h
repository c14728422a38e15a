#pragma once

#include <formweave/KsDialogChoice.h>

/// A choice from a list that opens: a label on the left, the selected string with a button on the
/// right. A press in a scene opens the list in front of the whole dialog; the next press, wherever
/// it goes, closes it.
class FORMWEAVE_API KsDialogComboBox : public KsDialogChoice {
    KS_KIT_HEADER(KsDialogComboBox);

public:
    KsDialogComboBox();

    KbVec2i32 getComponentInitSize() override;
    void getDefaultSize(KbVec2i32& size, KbVec2i32& min, KbVec2i32& max) override;
    void updateLabelWidget() override;
    void updateControlWidget() override { updateComboBoxWidget(); }
    /// Gives the combo box its place in the window: as high as a line of text, whatever `height`
    /// is. Nothing without a window.
    void updateComboBoxWidget();
    void change3DLabel() override;
    void change3DLabelAlignment() override;
    void set3DInactive() override;
    void refresh3DSkin() override;
    void changeItems() override;
    void changeSelectedItem() override;
    void change3DSelectedItem() override;
    void change3DItems() override;

    /// Built-in text of DialogComboBox.arb.
    static char* DialogComboBox;
    static void change3DSkin();
    static int isSkinLoaded();
    static void setSkinLoaded(int loaded);

protected:
    ~KsDialogComboBox() override;
    void createLabelWidget() override;
    void create3DControl() override;
    void update3DControl() override;

private:
    static void startCB3D(void* data, KsDragger* dragger);
    void draggerStartCallback3D();
    SceneRow makeRow();
    void openDropDown();
    void closeDropDown();
    void choosePickedRow();

    SceneFrame m_frame;
    SceneText m_selectedText;
    KsRef<KsTransform> m_textTransform, m_itemTransform;
    KsRef<KsTranslation> m_buttonTranslation, m_itemsHeightTranslation, m_itemStepTranslation;
    bool m_dropDownOpen = false;
};
