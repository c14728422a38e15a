#pragma once

#include <formweave/KsFormweave.h>

/// What a `KsTopLevelDialog` can hold: dialog components, groups and a menu bar.
class FORMWEAVE_API KsTopComponent : public KsFormweave {
    KS_KIT_HEADER(KsTopComponent);

public:
    void buildWidget(QWidget* parent, KbVec2i32& size, KbVec2i32& position, int build2D) override;
    void destroyWidget() override;
    void updateFromSensor(KsSensor* sensor) override;

    /// The wanted size and its limits; 32767 stands for an open limit. Does nothing here.
    virtual void getSize(KbVec2i32& size, KbVec2i32& min, KbVec2i32& max);

    /// Copies `translation` into the translation named "parentPositionTranslation" at the head of
    /// the element's geometry, or puts `translation` itself there if there is none.
    void addTranslation(KsTranslation* translation);

protected:
    KsTopComponent();
    ~KsTopComponent() override;
};
