#pragma once

// Sliders on screen, and a person who drags them.

#include "MessageGuard.h"

#include <arborium/base/KbNumber.h>
#include <arborium/nodes/KsScale.h>
#include <arborium/nodes/KsText3.h>
#include <arborium/nodes/KsTransform.h>
#include <arborium/nodes/KsTranslation.h>
#include <dialog/Stage.h>

#include <QCheckBox>
#include <QLineEdit>
#include <limits>

inline constexpr float infinite = std::numeric_limits<float>::infinity();
inline constexpr int largest = std::numeric_limits<int>::max();
inline constexpr int smallest = std::numeric_limits<int>::min();

/// The state behind a slider that tests look at.
class OpenSlider : public KsDialogSlider {
public:
    using KsDialogComponent::m_labelSize;
    using KsDialogSlider::m_barWidth;
    using KsDialogSlider::m_editMode;
    using KsDialogSlider::m_editZoneWidth;
    using KsDialogSlider::m_position;
    using KsFormweave::m_lastActive;
    using KsFormweave::set3DCurrentActive;
};

template <class Slider> struct SliderKind;
template <> struct SliderKind<KsDialogIntegerSlider> {
    using Auditor = KsDialogIntegerSliderAuditor;
    static constexpr const char* type = "DialogIntegerSlider";
};
template <> struct SliderKind<KsDialogRealSlider> {
    using Auditor = KsDialogRealSliderAuditor;
    static constexpr const char* type = "DialogRealSlider";
};

template <class Slider> class Listener : public SliderKind<Slider>::Auditor {
public:
    using Number = typename Slider::Number;
    std::vector<Number> values;
    std::function<void(Slider*)> then;

protected:
    void hear(Slider* slider)
    {
        values.push_back(slider->value);
        if (then) then(slider);
    }
};
class IntegerListener : public Listener<KsDialogIntegerSlider> {
public:
    void dialogIntegerSlider(KsDialogIntegerSlider* slider) override { hear(slider); }
};
class RealListener : public Listener<KsDialogRealSlider> {
public:
    void dialogRealSlider(KsDialogRealSlider* slider) override { hear(slider); }
};

/// A dialog with a slider "s" in it; the kinds' first sliders stand in front of it, so that it is
/// not one of those that keep to their limits.
template <class Slider, class Heard> class Shown : public Stage {
public:
    static std::string form(const std::string& fields)
    {
        return std::string("TopLevelDialog { label \"Form\" DialogIntegerSlider { label \"One\" } "
                           "DialogRealSlider { label \"Other\" } ") +
               SliderKind<Slider>::type + " { auditorID \"s\" label \"Slider\" " + fields + " } }";
    }
    explicit Shown(const std::string& fields = "", Road road = Both)
        : Stage(form(fields), road), slider(find<Slider>("s"))
    {
        slider->addAuditor(&listener);
    }
    ~Shown()
    {
        if (slider && dialog) slider->removeAuditor(&listener);
    }

    // The window.
    QLineEdit* edit() const { return widgetOf<QLineEdit>(slider); }
    QCheckBox* toggle() const { return widgetOf<QCheckBox>(slider); }
    QLabel* labelWidget() const { return widgetOf<QLabel>(slider); }
    /// The widget that the bar draws in.
    QWidget* bar() const
    {
        for (QObject* child : slider->getWidget()->children()) {
            if (auto* owner = dynamic_cast<KsDialogCustomSlider*>(child)) return owner->getWidget();
        }
        return nullptr;
    }
    std::string text2D() const { return edit()->text().toStdString(); }
    /// Where the bar's widget shows a position.
    QPoint barPlace(float position) const
    {
        constexpr int ends = 6; // half a cursor
        const float travel = static_cast<float>(bar()->width() - 1 - 2 * ends);
        return {ends + qRound(position * travel), 3};
    }
    void move2D(float position)
    {
        QMouseEvent move(QEvent::MouseMove, barPlace(position), Qt::NoButton, Qt::LeftButton, {});
        QApplication::sendEvent(bar(), &move);
    }
    void press2D(float position)
    {
        QTest::mousePress(bar(), Qt::LeftButton, Qt::NoModifier, barPlace(position));
    }
    void release2D(float position)
    {
        QTest::mouseRelease(bar(), Qt::LeftButton, Qt::NoModifier, barPlace(position));
    }
    /// In `steps` moves, from one position to another.
    void drag2D(float from, float to, int steps = 8)
    {
        press2D(from);
        for (int i = 1; i <= steps; ++i)
            move2D(from + (to - from) * static_cast<float>(i) / static_cast<float>(steps));
        release2D(to);
    }
    void type2D(const char* text)
    {
        edit()->setFocus();
        edit()->selectAll();
        QTest::keyClicks(edit(), text);
        QTest::keyClick(edit(), Qt::Key_Return);
    }

    // The scene.
    std::string text3D() const
    {
        const KsText3* text = last<KsText3>("editTextSep");
        return text && text->string.getNum() == 1 ? text->string[0].toUtf8() : "no text";
    }
    template <class T> T* last(const char* part) const { return lastIn<T>(slider, part); }
    template <class T> T* child(const char* part, int index) const
    {
        auto* group = static_cast<KsGroup*>(slider->getAnyPart(part, false));
        return group ? ksCast<T>(group->getChild(index)) : nullptr;
    }
    float cursor3D() const
    {
        return child<KsTranslation>("cursorSep", 0)->translation.getValue()[0];
    }
    float barWidth3D() const { return child<KsScale>("frameSep", 0)->scaleFactor.getValue()[0]; }
    float travel3D() const { return barWidth3D() - 10; }
    void type3D(const char* text) { type(text); }
    void enter3D() { key(KsKeyboardEvent::RETURN); }
    void clear3D()
    {
        for (std::size_t n = text3D().size(); n > 0; --n) key(KsKeyboardEvent::BACKSPACE);
    }
    /// A place on the bar in the scene.
    KbVec2f barPlace3D(float position)
    {
        draw();
        const KbBox3f box = boxOf(slider, "frameSep");
        const float x = box.getMin()[0] + 5 + position * (box.getMax()[0] - box.getMin()[0] - 10);
        return {x, box.getMax()[1] - 2 + viewHeight};
    }
    KbVec2f cursorPlace3D()
    {
        KbVec2f place = placeOf(slider, "cursorSep");
        return {place[0], place[1] - 3};
    }
    void drag3D(float by, int steps = 8)
    {
        const KbVec2f start = cursorPlace3D();
        press(start);
        for (int i = 1; i <= steps; ++i)
            move(start + KbVec2f(by * static_cast<float>(i) / static_cast<float>(steps), 0));
        release(start + KbVec2f(by, 0));
    }

    float position() const
    {
        return static_cast<const KsDialogSlider*>(slider)->*&OpenSlider::m_position;
    }
    int editZone() const { return slider->*&OpenSlider::m_editZoneWidth; }
    int editMode() const { return slider->*&OpenSlider::m_editMode; }
    int labelWidth() const { return (slider->*&OpenSlider::m_labelSize)[0]; }

    Slider* slider;
    Heard listener;
};
/// As the first look at a scene does.
inline void buildIn3D(KsDialogComponent* element)
{
    KsGetBoundingBoxAction action{KbViewportRegion(100, 100)};
    action.apply(element);
}

using ShownInteger = Shown<KsDialogIntegerSlider, IntegerListener>;
using ShownReal = Shown<KsDialogRealSlider, RealListener>;
