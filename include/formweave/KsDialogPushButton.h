#pragma once

#include <formweave/KsDialogComponent.h>

class KsDialogPushButtonAuditor;

/// A label on the left, a button on the right. It holds no value: it tells that it was pressed, in
/// a window when the mouse goes down on it, in a scene when it comes up again.
///
/// While it stands in a scene, a change of an inherited field reaches neither presentation, nor the
/// sizes that it remembers; `buttonLabel` reaches both.
class FORMWEAVE_API KsDialogPushButton : public KsDialogComponent {
    KS_KIT_HEADER(KsDialogPushButton);

public:
    KsDialogPushButton();

    KsSFString buttonLabel; ///< Text on the button. Default empty.

    // The auditors of this button; with none, those of its containers are told.
    void addAuditor(KsDialogPushButtonAuditor* auditor);
    void removeAuditor(KsDialogPushButtonAuditor* auditor);
    /// Reports the button, as if it had just been pressed.
    void applyDlgCptAuditor();
    /// Does nothing.
    void activateButton() {}

    // The geometry of the button in a scene, unit-sized as in a skin; null changes nothing. A node
    // that is no group stands in one. The names are crossed, and programs rely on it: the first
    // sets the look at rest (the part `released`), the second the look while the button is held
    // down (`pressed`).
    void set3DPressedGeometry(KsNode* node);
    void set3DReleasedGeometry(KsNode* node);

    void updateFromSensor(KsSensor* sensor) override;
    void eventNotify(unsigned int value, unsigned long long data) override;
    KbVec2i32 getComponentInitSize() override;
    void getDefaultSize(KbVec2i32& size, KbVec2i32& min, KbVec2i32& max) override;
    void updateControlWidget() override;
    void refresh3DSkin() override;

    void changeButtonLabel();
    void change3DButtonLabel();
    void change3DButtonState(int pressed);

    /// Built-in text of DialogPushButton.arb.
    static char* DialogPushButton;
    static void change3DSkin();
    static int isSkinLoaded();
    static void setSkinLoaded(int loaded);

protected:
    ~KsDialogPushButton() override;
    void createLabelWidget() override;
    void create3DControl() override;
    void update3DControl() override;
    void armSensors() override;
    void abandonDrag3D() override;

private:
    static void startCB3D(void* data, KsDragger* dragger);
    static void finishCB3D(void* data, KsDragger* dragger);
    void draggerStartCallback3D();
    void draggerFinishCallback3D();
    /// Qt's button presses itself.
    void changeButtonState(int) {}
    bool isButtonPicked();
    void set3DGeometry(const char* part, KsNode* node);
    void centreButtonLabel();

    KsElementSensor m_buttonLabelSensor;
    KbVec2i32 m_buttonLabelSize{0, 0};
    SceneFrame m_frame;
    SceneText m_buttonText;
    KsRef<KsTransform> m_stateTransform;
};
