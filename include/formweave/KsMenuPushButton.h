#pragma once

#include <formweave/KsMenuItem.h>

class KsMenuPushButtonAuditor;

/// A plain entry: picking it runs its auditors.
class FORMWEAVE_API KsMenuPushButton : public KsMenuItem {
    KS_KIT_HEADER(KsMenuPushButton);

public:
    KsSFString accelerator; ///< Of the keyboard, in a window. Default empty: none.

    KsMenuPushButton();

    /// An element with auditors of its own is not reported to its container.
    void addAuditor(KsMenuPushButtonAuditor* auditor);
    void removeAuditor(KsMenuPushButtonAuditor* auditor);
    /// Reports the entry, as if it had just been picked.
    virtual void applyDlgCptAuditor();

    void updateFromSensor(KsSensor* sensor) override;
    void changeLabel() override;
    void change3DEnable() override;
    void menuEvent(void* data, int id) override;
    void changeAccelerator();

    // The 3D form is pressed and let go.
    virtual void draggerStartCallback3D();
    virtual void draggerFinishCallback3D();
    virtual void add3DCallbackMethods();

    /// Built-in text of MenuPushButton.arb.
    static char* MenuPushButton;
    static void change3DSkin();
    static int isSkinLoaded();
    static void setSkinLoaded(int loaded);

protected:
    ~KsMenuPushButton() override;
    void insertMenuItem() override;
    void create3DEntry() override;
    void update3DEntry() override;
    void armSensors() override;
    void abandonDrag3D() override;
    static void startCB3D(void* data, KsDragger* dragger);
    static void finishCB3D(void* data, KsDragger* dragger);

private:
    void show3DPressed(bool pressed);

    KsElementSensor m_acceleratorSensor;
    KsRef<KsScale> m_buttonScale;
    KsRef<KsTransform> m_buttonTransform;
};
