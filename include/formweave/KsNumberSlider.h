#pragma once

#include <formweave/KsDialogSlider.h>

/// What the sliders of whole and of real numbers share: limits and a value, as fields of type `Field`.
/// The limits may be equal, in either order, or no numbers at all.
template <class Field> class KsNumberSlider : public KsDialogSlider {
public:
    using Number = typename Field::Value;

    Field min; ///< Value at the left end. Default 0.
    Field max; ///< Value at the right end. Default 1.
    Field
        value; ///< Default 0. The application may set it beyond the limits; auditors hear nothing.

    /// Reports the slider, as if it had just been used.
    virtual void applyDlgCptAuditor() = 0;

    void buildWidget(QWidget* parent, KbVec2i32& size, KbVec2i32& position, int build2D) override;
    void updateFromSensor(KsSensor* sensor) override;
    void setValueFromEdit(int in2D) override;
    void setValue() override;
    void changeEditValue() override;
    int computeEditZoneWidth() override;
    void change3DEditValue() override;
    void computeNewSliderEditValue(const KsEvent* event) override;
    void finish3DEditing() override;

protected:
    KsNumberSlider() = default;
    void abandonDrag3D() override;

private:
    float positionOf(Number number) const;
    Number valueAt(float position) const;
    KbString print(Number number) const;
    void limitValue();
    void limitsChanged();

    KsElementSensor m_valueSensor, m_minSensor, m_maxSensor;
};

extern template class FORMWEAVE_API KsNumberSlider<KsSFInt32>;
extern template class FORMWEAVE_API KsNumberSlider<KsSFFloat>;
