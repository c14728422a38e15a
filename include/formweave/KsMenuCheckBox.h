#pragma once

#include <formweave/KsMenuItem.h>

class KsMenuCheckBoxAuditor;

/// An entry that is checked or not. A `state` that is TRUE when the entry comes into a window, from
/// a file for example, has its text there but not its mark, as it always was; programs that want the
/// mark set the field once more behind `buildDialog`.
class FORMWEAVE_API KsMenuCheckBox : public KsMenuItem {
    KS_KIT_HEADER(KsMenuCheckBox);

public:
    KsSFBool state;         ///< Default FALSE.
    KsSFString onString;    ///< In place of `label` while checked; `label` stays if it is empty.
    KsSFString accelerator; ///< Of the keyboard, in a window. Default empty: none.

    KsMenuCheckBox();

    /// An element with auditors of its own is not reported to its container.
    void addAuditor(KsMenuCheckBoxAuditor* auditor);
    void removeAuditor(KsMenuCheckBoxAuditor* auditor);
    /// Reports the entry, as if it had just been picked.
    void applyDlgCptAuditor();

    void updateFromSensor(KsSensor* sensor) override;
    void changeLabel() override;
    void menuEvent(void* data, int id) override;
    KbVec2i32 getItemInitSize() override;
    void changeState();
    void changeOnString();
    void changeAccelerator();
    void change3DState();
    void change3DOnString();
    /// The 3D form was clicked.
    virtual void draggerFinishCallback3D();

    /// Built-in text of MenuCheckBox.arb.
    static char* MenuCheckBox;
    static void change3DSkin();
    static int isSkinLoaded();
    static void setSkinLoaded(int loaded);

protected:
    ~KsMenuCheckBox() override;
    void insertMenuItem() override;
    void create3DEntry() override;
    void update3DEntry() override;
    void armSensors() override;
    const KbString& shownLabel() const override;

private:
    static void finishCB3D(void* data, KsDragger* dragger);

    KsElementSensor m_stateSensor, m_onStringSensor, m_acceleratorSensor;
    SceneFrame m_toggle;
};
