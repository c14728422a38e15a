#pragma once

#include <formweave/KsDialogGroup.h>

class QBoxLayout;

/// What row and column dialogs share: their children stand one behind the other along an axis.
class FORMWEAVE_API KsStackDialog : public KsDialogGroup {
public:
    void buildWidget(QWidget* parent, KbVec2i32& size, KbVec2i32& position, int build2D) override;
    void updateFromSensor(KsSensor* sensor) override;
    KbVec2i32 getComponentInitSize() override;
    void getDefaultSize(KbVec2i32& size, KbVec2i32& min, KbVec2i32& max) override;
    void fixSizeWithBorder(KbVec2i32& size, int factor) override;
    void changeEdgeStyle() override;

protected:
    enum Axis { Across = 0, Down = 1 };
    /// `objectName` is that of the Qt layout.
    KsStackDialog(Axis axis, const char* objectName);
    ~KsStackDialog() override;

    /// The pixels between neighbours.
    virtual const KsSFInt32& spacing() const = 0;
    void armSpacing(KsSFInt32& field);
    /// Takes a changed spacing over into the Qt layout.
    void changeSpacing();

private:
    int room() const; // the margin
    int gap() const;  // the spacing
    friend class KsDialogComponent;
    void updateChildren();
    void update3DChildren();

    const Axis m_axis;
    const char* m_layoutName;
    KsElementSensor m_spacingSensor;
};
