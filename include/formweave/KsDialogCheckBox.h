#pragma once

#include <formweave/KsDialogComponent.h>

class KsDialogCheckBoxAuditor;
class KsDialogQCheckBox;
class KsScale;
class KsText3;

/// A boolean: a label on the left, a toggle with an optional text on the right.
class FORMWEAVE_API KsDialogCheckBox : public KsDialogComponent {
    KS_KIT_HEADER(KsDialogCheckBox);

public:
    KsDialogCheckBox();

    KsSFBool state;       ///< TRUE when checked. Default FALSE.
    KsSFString onString;  ///< Beside the toggle while checked, and always if `offString` is empty.
    KsSFString offString; ///< Beside the toggle while not checked, if not empty.

    // The auditors of this check box; with none, those of its containers are told.
    void addAuditor(KsDialogCheckBoxAuditor* auditor);
    void removeAuditor(KsDialogCheckBoxAuditor* auditor);
    /// Reports the check box, as if it had just been used.
    void applyDlgCptAuditor();

    void buildWidget(QWidget* parent, KbVec2i32& size, KbVec2i32& position, int build2D) override;
    void destroyWidget() override;
    void updateFromSensor(KsSensor* sensor) override;
    void changeEnable() override;
    void changeLabel() override;
    void changeLabelAlignment() override;
    void change3DLabel() override;
    void change3DLabelAlignment() override;
    QWidget* getLabelWidget() override;
    void eventNotify(unsigned int value, unsigned long long data) override;
    KbVec2i32 getComponentInitSize() override;
    void changeWidgetEnable(int enable) override;
    void getDefaultSize(KbVec2i32& size, KbVec2i32& min, KbVec2i32& max) override;
    void changeLabelVisibility() override;
    void changeEdgeStyle() override;
    void change3DLabelVisibility() override;
    void refresh3DSkin() override;
    virtual void change3DState();
    virtual void draggerFinishCallback3D();

    void changeState();
    void changeOnOffString();
    void change3DOnOffString();
    /// Place the relay's children; the relay calls them when it is resized.
    void updateLabelWidget();
    void updateCheckBoxWidget();

    /// Built-in text of DialogCheckBox.arb.
    static char* DialogCheckBox;
    static void change3DSkin();
    static int isSkinLoaded();
    static void setSkinLoaded(int loaded);

protected:
    ~KsDialogCheckBox() override;

private:
    static void finishCB3D(void* data, KsDragger* dragger);
    void createLabelWidget();
    void createCheckBoxWidget() {}
    void create3DDialogCheckBox();
    void update3DCheckBox();
    void update3DLabel();
    const KbString& shownString() const;

    QPointer<KsDialogQCheckBox> m_checkBoxRelay;
    KsElementSensor m_stateSensor, m_onStringSensor, m_offStringSensor;
    KbVec2i32 m_onStringSize{0, 0};
    KbVec2i32 m_offStringSize{0, 0};
    KsRef<KsText3> m_onOffText;
    KsRef<KsText3> m_labelText;
    KsRef<KsTranslation> m_labelTranslation;
    KsRef<KsTranslation> m_stateTranslation;
    KsRef<KsTranslation> m_onOffTranslation;
    KsRef<KsTranslation> m_frameTranslation;
    KsRef<KsScale> m_frameScale;
    KsRef<KsTransform> m_stateTransform;
    KbBox3f m_onOffBBox;
};
