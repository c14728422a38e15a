// A check box in its two presentations, clicked where it is drawn.

#include <arborium/nodes/KsPickStyle.h>
#include <arborium/nodes/KsScale.h>
#include <arborium/nodes/KsText3.h>
#include <arborium/nodes/KsTransform.h>
#include <arborium/nodes/KsTranslation.h>
#include <dialog/Listeners.h>
#include <dialog/Stage.h>

#include <QSignalSpy>

namespace {

/// The state behind a check box that tests look at.
class Box : public KsDialogCheckBox {
public:
    using KsDialogCheckBox::m_labelSize;
    using KsFormweave::m_lastActive;
    using KsFormweave::set3DCurrentActive;
};

std::string form(const std::string& fields)
{
    return "TopLevelDialog { label \"Form\" DialogCheckBox { auditorID \"box\" " + fields +
           " } DialogCheckBox { auditorID \"other\" label \"A longer label\" } }";
}

/// One dialog with a check box "box" in it.
class Shown : public Stage {
public:
    explicit Shown(const std::string& fields = "label \"Shadows\"", Road road = Both)
        : Stage(form(fields), road), box(find<KsDialogCheckBox>("box"))
    {
        box->addAuditor(&listener);
    }
    QCheckBox* toggle() const { return widgetOf<QCheckBox>(box); }
    QLabel* labelWidget() const { return widgetOf<QLabel>(box); }
    std::string text2D() const { return toggle()->text().toStdString(); }
    Strings lines3D(const char* part) const { return textLines(last<KsText3>(part)); }
    std::string text3D() const
    {
        const Strings lines = lines3D("onOffStringSep");
        return lines.empty() ? std::string() : lines[0];
    }
    template <class T> const T* last(const char* part) const { return lastIn<T>(box, part); }
    const KsNode* before(const char* part) const { return nodeBefore(box, part); }
    int labelWidth() const { return (box->*&Box::m_labelSize)[0]; }
    KbVec2i32 size3D() const { return {box->width, box->height}; }

    KsDialogCheckBox* box;
    CheckBoxListener listener;
};

} // namespace

// Texts and sizes.

TEST(CheckBox, withBothStringsEmptyShowsNoTextAndKeepsRoomForTheToggle)
{
    Shown shown;
    EXPECT_EQ(shown.text2D(), "");
    EXPECT_EQ(shown.text3D(), "");
    KsRef<KsDialogCheckBox> box(new KsDialogCheckBox);
    EXPECT_EQ(box->getComponentInitSize(), KbVec2i32(26, 8));
    KbVec2i32 zone(60, 44), size, min, max;
    box->setComponentSize(zone);
    box->getDefaultSize(size, min, max);
    EXPECT_EQ(size, KbVec2i32(60 + 2, 44)) << "the height is that of the control's zone";
    EXPECT_EQ(min, KbVec2i32(25, 25));
    EXPECT_EQ(max, KbVec2i32(32767, 32767));
}

TEST(CheckBox, theTallerAndTheWiderStringMakeItsSize)
{
    const Library library;
    KsRef<KsDialogCheckBox> box(new KsDialogCheckBox);
    box->onString = "a long text";
    box->offString = "two\\nlines";
    const KbVec2i32 on = KsFormweave::getLabelPixelSize(box->onString, nullptr);
    const KbVec2i32 off = KsFormweave::getLabelPixelSize(box->offString, nullptr);
    ASSERT_GT(on[0], off[0]);
    ASSERT_GT(off[1], on[1]);
    EXPECT_EQ(box->getComponentInitSize(), KbVec2i32(on[0] + 26, off[1] + 8));
    KbVec2i32 zone(10, 10), label(50, 20), size, min, max;
    box->setComponentSize(zone);
    box->setLabelSize(label);
    box->getDefaultSize(size, min, max);
    EXPECT_EQ(size, KbVec2i32(10 + 50 + 2, off[1] + 8));
    // Asked once, until the sizes are reset.
    box->onString = "";
    EXPECT_EQ(box->getComponentInitSize()[0], on[0] + 26);
    box->resetSize();
    EXPECT_EQ(box->getComponentInitSize()[0], off[0] + 26);
}

TEST(CheckBox, theOnStringStandsForAnEmptyOffString)
{
    Shown shown("onString \"On\"");
    EXPECT_EQ(shown.text2D(), "On");
    EXPECT_EQ(shown.text3D(), "On");
    shown.box->offString = "Off";
    EXPECT_EQ(shown.text2D(), "Off");
    EXPECT_EQ(shown.text3D(), "Off");
    shown.box->state = true;
    EXPECT_EQ(shown.text2D(), "On");
    EXPECT_EQ(shown.text3D(), "On");
    shown.box->onString = "";
    EXPECT_EQ(shown.text2D(), "");
    EXPECT_EQ(shown.text3D(), "");
    EXPECT_TRUE(shown.listener.states.empty());
}

TEST(CheckBox, aChangeOfStateMovesNothing)
{
    Shown shown("label \"a\" onString \"a much longer text\" offString \"no\"");
    const QRect toggle = shown.toggle()->geometry();
    const QSize frame = shown.box->getWidget()->size();
    const KbBox3f before = shown.boxOf(shown.box, "frameSep");
    shown.box->state = true;
    QApplication::processEvents();
    shown.draw();
    EXPECT_EQ(shown.toggle()->geometry(), toggle);
    EXPECT_EQ(shown.box->getWidget()->size(), frame);
    EXPECT_TRUE(shown.boxOf(shown.box, "frameSep") == before);
}

TEST(CheckBox, withoutItsLabelTheToggleTakesTheWholeWidth)
{
    Shown shown("label \"Shadows\"");
    const int w = shown.box->getWidget()->width(), h = shown.box->getWidget()->height();
    const int l = shown.labelWidth();
    ASSERT_GT(l, 0);
    EXPECT_EQ(shown.toggle()->geometry(), QRect(l + 4, 3, w - 6 - (l + 2), h - 6));
    shown.box->labelVisibility = false;
    EXPECT_TRUE(shown.labelWidget()->isHidden());
    EXPECT_EQ(shown.toggle()->geometry(), QRect(2, 3, w - 6, h - 6));
    shown.box->labelVisibility = true;
    EXPECT_FALSE(shown.labelWidget()->isHidden());
    EXPECT_EQ(shown.toggle()->geometry().x(), l + 4);
}

TEST(CheckBox, withoutItsLabelItIsNarrowerByTheLabelsZone)
{
    const Library library;
    KsRef<KsDialogCheckBox> box(new KsDialogCheckBox);
    box->onString = "a text that is wide enough for it";
    const int wide = box->getComponentInitSize()[0];
    box->resetSize();
    KbVec2i32 label(40, 10);
    box->setLabelSize(label);
    box->labelVisibility = false;
    EXPECT_EQ(box->getComponentInitSize()[0], wide - 40);
    box->resetSize();
    EXPECT_EQ(box->getComponentInitSize()[0], wide) << "the label's zone is not known yet";
}

TEST(CheckBox, itsLabelStandsInTheMiddleOfItsZone)
{
    Shown shown("label \"Shadows\"", Stage::Window);
    const int h = KsFormweave::getLabelPixelSize(shown.box->label, nullptr)[1];
    const int height = shown.box->getWidget()->height();
    EXPECT_EQ(shown.labelWidget()->geometry(),
              QRect(3, 3 + (height - 3 - h) / 2, shown.labelWidth(), h));
    EXPECT_EQ(shown.box->getLabelWidget(), nullptr) << "the relay keeps it to itself";
    EXPECT_EQ(shown.labelWidget()->alignment(), Qt::AlignRight);
    shown.box->labelAlignment = KsFormweave::CENTER;
    EXPECT_EQ(shown.labelWidget()->alignment(), Qt::AlignHCenter);
    shown.box->labelAlignment = KsFormweave::LEFT;
    EXPECT_EQ(shown.labelWidget()->alignment(), Qt::AlignLeft);
}

// Who hears of what.

TEST(CheckBox, aStateFromCodeReachesTheWidgetButNoAuditor)
{
    Shown shown;
    QSignalSpy signal(shown.toggle(), &QCheckBox::stateChanged);
    shown.box->state = true;
    EXPECT_TRUE(shown.toggle()->isChecked());
    EXPECT_EQ(signal.count(), 1) << "that of the widget's own change, and no second one";
    EXPECT_EQ(Stage::shown(shown.box, "stateSwitch"), 1);
    shown.box->state = true;
    EXPECT_EQ(signal.count(), 1);
    EXPECT_TRUE(shown.listener.states.empty());
}

TEST(CheckBox, aClickInTheWindowTellsTheAuditorsBeforeTheTextFollows)
{
    Shown shown("onString \"On\" offString \"Off\"");
    std::string text2D, text3D;
    int drawn = -1;
    shown.listener.then = [&](KsDialogCheckBox*) {
        text2D = shown.text2D();
        text3D = shown.text3D();
        drawn = Stage::shown(shown.box, "stateSwitch");
    };
    Stage::clickWidget(shown.toggle(), QPoint(8, shown.toggle()->height() / 2));
    EXPECT_EQ(shown.listener.states, std::vector<bool>{true});
    EXPECT_EQ(text2D, "Off");
    EXPECT_EQ(text3D, "Off");
    EXPECT_EQ(drawn, 0);
    EXPECT_EQ(shown.text2D(), "On");
    EXPECT_EQ(shown.text3D(), "On");
    EXPECT_EQ(Stage::shown(shown.box, "stateSwitch"), 1);
}

TEST(CheckBox, aClickInTheSceneTellsTheAuditorsWhenAllViewsShowIt)
{
    Shown shown("onString \"On\" offString \"Off\"");
    std::string text2D, text3D;
    int drawn = -1;
    bool checked = false;
    shown.listener.then = [&](KsDialogCheckBox*) {
        text2D = shown.text2D();
        text3D = shown.text3D();
        drawn = Stage::shown(shown.box, "stateSwitch");
        checked = shown.toggle()->isChecked();
    };
    EXPECT_TRUE(shown.clickPart(shown.box, "stateSep"));
    EXPECT_EQ(shown.listener.states, std::vector<bool>{true});
    EXPECT_EQ(text2D, "On");
    EXPECT_EQ(text3D, "On");
    EXPECT_EQ(drawn, 1);
    EXPECT_TRUE(checked);
}

TEST(CheckBox, inTheSceneTheFrameTheToggleAndTheTextAreClicked)
{
    Shown shown("label \"Shadows\" onString \"On\"", Stage::Scene);
    for (const char* part : {"frameSep", "stateSep", "onOffStringSep"}) {
        const bool was = shown.box->state;
        EXPECT_TRUE(shown.clickPart(shown.box, part)) << part;
        EXPECT_EQ(shown.box->state, !was) << part;
    }
    EXPECT_EQ(shown.listener.states, (std::vector<bool>{true, false, true}));
}

TEST(CheckBox, aClickInTheSceneOnTheLabelDoesNothing)
{
    Shown shown;
    shown.clickPart(shown.box, "labelSep");
    EXPECT_FALSE(shown.box->state);
    EXPECT_FALSE(shown.toggle()->isChecked());
    EXPECT_TRUE(shown.listener.states.empty());
}

TEST(CheckBox, aClickInTheSceneClosesWhatIsOpenAndLeavesNothingActive)
{
    Shown shown;
    auto* other = shown.find<KsDialogCheckBox>("other");
    Box::set3DCurrentActive(other);
    shown.clickPart(shown.box, "stateSep");
    EXPECT_EQ(Box::m_lastActive, nullptr);
}

TEST(CheckBox, onlyTheClickedOneChanges)
{
    Shown shown;
    auto* other = shown.find<KsDialogCheckBox>("other");
    shown.clickPart(other, "stateSep");
    EXPECT_TRUE(other->state);
    EXPECT_FALSE(shown.box->state);
    Stage::clickWidget(Stage::widgetOf<QCheckBox>(other), QPoint(8, 8));
    EXPECT_FALSE(other->state);
    EXPECT_TRUE(shown.listener.states.empty());
}

TEST(CheckBox, disabledItIsGreyAndTakesNoClickInEitherPresentation)
{
    Shown shown("label \"Shadows\" enable FALSE");
    EXPECT_FALSE(shown.toggle()->isEnabled());
    EXPECT_FALSE(shown.labelWidget()->isEnabled());
    shown.clickPart(shown.box, "stateSep");
    Stage::clickWidget(shown.toggle(), QPoint(8, 8));
    EXPECT_FALSE(shown.box->state);
    EXPECT_TRUE(shown.listener.states.empty());
    shown.box->enable = true;
    shown.clickPart(shown.box, "stateSep");
    EXPECT_TRUE(shown.box->state);
    EXPECT_TRUE(shown.toggle()->isChecked());
}

// The form in the scene.

TEST(CheckBox, itsPartsStandInTheOrderOfTheCatalog)
{
    Shown shown;
    EXPECT_EQ(partRows(shown.box, "labelSep"),
              (Strings{"labelSep Separator geomSwitch", "labelSwitch Switch labelSep",
                       "labelProp Group labelSwitch public", "frameSep Separator geomSwitch",
                       "frame Group frameSep public", "stateSep Separator geomSwitch",
                       "stateSwitch Switch stateSep", "stateOff Group stateSwitch public",
                       "stateOn Group stateSwitch public", "onOffStringSep Separator geomSwitch",
                       "onOffStringProp Group onOffStringSep public"}));
}

TEST(CheckBox, theFrameFillsTheControlsZone)
{
    for (const bool withLabel : {true, false}) {
        Shown shown(std::string("label \"Shadows\" labelVisibility ") +
                        (withLabel ? "TRUE" : "FALSE"),
                    Stage::Scene);
        const auto size = shown.size3D();
        const float label = withLabel ? static_cast<float>(shown.labelWidth() + 2) : 0;
        const float w = static_cast<float>(size[0] - 6) - label;
        const float x = 3 + label;
        auto* move = ksCast<KsTranslation>(const_cast<KsNode*>(shown.before("frameSep")));
        ASSERT_TRUE(move);
        EXPECT_TRUE(move->translation.getValue() ==
                    KbVec3f(x + w / 2 - static_cast<float>(size[0]) / 2, 0, 0));
        EXPECT_TRUE(shown.last<KsScale>("frameSep")->scaleFactor.getValue() ==
                    KbVec3f(w, static_cast<float>(size[1] - 6), 1));
        EXPECT_TRUE(shown.last<KsScale>("stateSep")->scaleFactor.getValue() == KbVec3f(14, 14, 1));
        EXPECT_TRUE(shown.last<KsTranslation>("stateSep")->translation.getValue() ==
                    KbVec3f(-w / 2 + 10, 0, 0));
        EXPECT_EQ(Stage::shown(shown.box, "labelSwitch"),
                  withLabel ? KsSwitch::ALL : KsSwitch::NONE);
    }
}

TEST(CheckBox, theLabelIsAlignedInItsZone)
{
    Shown shown("label \"A\"", Stage::Scene);
    const auto x = [&] {
        return shown.last<KsTranslation>("labelSwitch")->translation.getValue()[0];
    };
    const float left = 3 - static_cast<float>(shown.box->width) / 2;
    const KbVec3f text = shown.boxOf(shown.box, "labelSep").getSize();
    const int free = static_cast<int>(static_cast<float>(shown.labelWidth()) - text[0]);
    ASSERT_GT(free, 3);
    EXPECT_FLOAT_EQ(x(), left + static_cast<float>(free));
    shown.box->labelAlignment = KsFormweave::CENTER;
    EXPECT_FLOAT_EQ(x(), left + static_cast<float>(free / 2));
    shown.box->labelAlignment = KsFormweave::LEFT;
    EXPECT_FLOAT_EQ(x(), left);
}

TEST(CheckBox, theTogglesLookIsNotStretchedByTheFrame)
{
    Shown shown("label \"Shadows\"", Stage::Scene);
    const KbVec3f toggle = shown.boxOf(shown.box, "stateSep").getSize();
    EXPECT_NEAR(toggle[0], 14, 1e-3);
    EXPECT_NEAR(toggle[1], 14, 1e-3);
    const KbBox3f frame = shown.boxOf(shown.box, "frameSep");
    EXPECT_GT(shown.boxOf(shown.box, "stateSep").getMax()[2], frame.getMax()[2]);
}

TEST(CheckBox, aTextOfTheSceneIsFrontFacesOnlyAndHasALineForEachLine)
{
    Shown shown("label \"two\\\\nlines\" onString \"one\\\\ntwo\\\\nthree\"", Stage::Scene);
    EXPECT_EQ(shown.lines3D("labelSwitch"), (Strings{"two", "lines"}));
    EXPECT_EQ(shown.lines3D("onOffStringSep"), (Strings{"one", "two", "three"}));
    EXPECT_EQ(shown.last<KsText3>("labelSwitch")->parts.getValue(), KsText3::FRONT);
    EXPECT_EQ(shown.last<KsText3>("onOffStringSep")->parts.getValue(), KsText3::FRONT);
    shown.box->onString = "short";
    EXPECT_EQ(shown.lines3D("onOffStringSep"), Strings{"short"}) << "no line is left behind";
}

// Files and lifetime.

TEST(CheckBox, itsFieldsAreWrittenAndReadInTheirOrder)
{
    const Library library;
    KsRef<KsDialogCheckBox> box(new KsDialogCheckBox);
    const KsFieldData* fields = box->getFieldData();
    EXPECT_EQ(fields->getIndex("onString"), fields->getIndex("state") + 1);
    EXPECT_EQ(fields->getIndex("offString"), fields->getIndex("state") + 2);
    Shown shown("state TRUE onString \"yes\" offString \"no\"");
    EXPECT_TRUE(shown.box->state);
    EXPECT_TRUE(shown.toggle()->isChecked());
    EXPECT_EQ(Stage::shown(shown.box, "stateSwitch"), 1);
    EXPECT_EQ(shown.text2D(), "yes");
    EXPECT_EQ(shown.text3D(), "yes");
}

TEST(CheckBox, takenDownItIsBuiltAnewWithItsState)
{
    Shown shown("label \"Shadows\"", Stage::Window);
    shown.box->state = true;
    QPointer<QWidget> frame(shown.box->getWidget());
    shown.box->destroyWidget();
    EXPECT_TRUE(frame.isNull());
    EXPECT_EQ(shown.box->getWidget(), nullptr);
    shown.box->state = false;
    KbVec2i32 size(0, 0), place(0, 0);
    shown.box->buildWidget(shown.dialog->getBaseWidget(), size, place, 1);
    ASSERT_TRUE(shown.toggle());
    EXPECT_FALSE(shown.toggle()->isChecked());
    EXPECT_EQ(shown.dialog->getBaseWidget()->findChildren<QCheckBox*>().size(), 2);
}
