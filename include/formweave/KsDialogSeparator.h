#pragma once

#include <formweave/KsDialogComponent.h>

/// A line that divides the children of a row or column dialog. Its container tells it which way it
/// runs: across the stack. Its fields count when it is built; later changes of them do nothing, and
/// `enable` never does: only a container that is disabled greys it.
class FORMWEAVE_API KsDialogSeparator : public KsDialogComponent {
    KS_KIT_HEADER(KsDialogSeparator);

public:
    KsDialogSeparator();

    /// 1: the line runs from left to right, as it does by default; 0: from top to bottom. Counts at
    /// the next build.
    void setOrientationHorz(int horizontal);

    void updateFromSensor(KsSensor* sensor) override;
    void change3DEnable() override {}
    void change3DWidgetEnable(int enabled) override;
    void setAcrossStack(bool rows) override;
    void getDefaultSize(KbVec2i32& size, KbVec2i32& min, KbVec2i32& max) override;
    void updateLabelWidget() override;
    void updateControlWidget() override;

    /// Built-in text of DialogSeparator.arb.
    static char* DialogSeparator;
    static void change3DSkin();
    static int isSkinLoaded();
    static void setSkinLoaded(int loaded);

protected:
    ~KsDialogSeparator() override;
    void createLabelWidget() override;
    void create3DControl() override;
    void update3DControl() override;

private:
    int m_orientationHorz = 1;
    KsRef<KsScale> m_frameScale;
};
