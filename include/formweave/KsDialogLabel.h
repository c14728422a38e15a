#pragma once

#include <formweave/KsDialogComponent.h>

/// A text that fills its whole component: `label` is the content. Nobody is told of anything; a
/// press on it belongs to what is behind. `labelAlignment` is LEFT by default, and
/// `labelVisibility` has no effect. In a scene the text is broken where the width of its component
/// ends, between any two characters; in a window it is cut there.
class FORMWEAVE_API KsDialogLabel : public KsDialogComponent {
    KS_KIT_HEADER(KsDialogLabel);

public:
    KsDialogLabel();

    void changeLabelVisibility() override;
    /// Breaks the text into its lines anew.
    void change3DLabel() override;
    /// Aligns the lines with each other; the text as a whole moves at the next build.
    void change3DLabelAlignment() override;
    void change3DLabelVisibility() override;
    KbVec2i32 getComponentInitSize() override;
    /// Nothing: a label takes no room in the label column of its container.
    KbVec2i32 getLabelInitSize() override;
    void getDefaultSize(KbVec2i32& size, KbVec2i32& min, KbVec2i32& max) override;
    void updateLabelWidget() override;
    void refresh3DSkin() override;

protected:
    ~KsDialogLabel() override;
    void createLabelWidget() override;
    void create3DControl() override;
    void update3DControl() override;
    void update3DLabel() override;

private:
    void show3DLines();

    KbVec2i32 m_labelTextSize{0, 0};
    int m_wrappedWidth = -1; ///< For which the lines in the scene were broken.
};
