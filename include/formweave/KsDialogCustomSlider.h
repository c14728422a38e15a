#pragma once

#include <arborium/qt/KsQtBasicSlider.h>
#include <formweave/KsFormweaveApi.h>

#include <vector>

/// The bar of a slider in a window: a strip in one colour, in bands or in a gradient, and a cursor.
/// It is no node; a slider's relay holds one.
class FORMWEAVE_API KsDialogCustomSlider : public KsQtBasicSlider {
public:
    /// Builds the widget on `parent`. Grey, in one colour, enabled.
    explicit KsDialogCustomSlider(QWidget* parent);
    ~KsDialogCustomSlider() override;

    /// Copies the colours, which run from left to right. One colour fills the bar, and leaves how
    /// several are shown as it was; several are shown as bands, or as a gradient if `shaded` is not
    /// 0. None, or null, is the grey of the beginning.
    void setColors(const KbColor* colors, int count, int shaded);
    /// A bar of several colours is half as bright while it is disabled.
    void setEnable(int enable);
    /// Builds the widget anew on `parent`; the earlier one is deleted later.
    QWidget* buildWidget(QWidget* parent);

protected:
    void paintGraphic() override;

private:
    void drawOneColor();
    void drawColors();
    void drawCursor();
    void emitColor(const KbColor& color) const;

    std::vector<KbColor> m_colors;
    int m_shaded = 0;
    int m_enabled = 1;
    void (KsDialogCustomSlider::*m_draw)();
};
