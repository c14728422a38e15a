#pragma once

#include <formweave/KsDialogComponent.h>

class KsDialogCheckBoxAuditor;

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

    void updateFromSensor(KsSensor* sensor) override;
    void eventNotify(unsigned int value, unsigned long long data) override;
    KbVec2i32 getComponentInitSize() override;
    void getDefaultSize(KbVec2i32& size, KbVec2i32& min, KbVec2i32& max) override;
    void updateControlWidget() override;
    void refresh3DSkin() override;
    virtual void change3DState();
    virtual void draggerFinishCallback3D();

    void changeState();
    void changeOnOffString();
    void change3DOnOffString();

    /// Built-in text of DialogCheckBox.arb.
    static char* DialogCheckBox;
    static void change3DSkin();
    static int isSkinLoaded();
    static void setSkinLoaded(int loaded);

protected:
    ~KsDialogCheckBox() override;
    void createLabelWidget() override;
    void create3DControl() override;
    void update3DControl() override;
    void armSensors() override;

    KsElementSensor m_stateSensor;

private:
    static void finishCB3D(void* data, KsDragger* dragger);
    const KbString& shownString() const;

    KsElementSensor m_onStringSensor, m_offStringSensor;
    KbVec2i32 m_onStringSize{0, 0};
    KbVec2i32 m_offStringSize{0, 0};
    SceneFrame m_frame;
    SceneText m_onOffText;
    KsRef<KsTransform> m_stateTransform;
    KsRef<KsTranslation> m_stateTranslation;
};
