// One tree in both presentations at once, and auditors that do what they like.

#include <arborium/nodes/KsText3.h>
#include <dialog/Listeners.h>
#include <dialog/Stage.h>

namespace {

constexpr const char* form = "TopLevelDialog { label \"Form\" ColumnDialog { auditorID \"column\" "
                             "DialogCheckBox { auditorID \"box\" label \"Box\" onString \"On\" "
                             "offString \"Off\" } "
                             "DialogCheckBox { auditorID \"other\" label \"Other\" } } }";

std::string text3D(KsDialogCheckBox* box, const char* part)
{
    auto* group = static_cast<KsGroup*>(box->getAnyPart(part, false));
    for (int i = group->getNumChildren(); i-- > 0;)
        if (auto* text = ksCast<KsText3>(group->getChild(i)))
            return text->string.getNum() ? text->string[0].toUtf8() : std::string();
    return "no text";
}

class Both : public testing::TestWithParam<Stage::Road> {
protected:
    void SetUp() override
    {
        stage = std::make_unique<Stage>(form);
        box = stage->find<KsDialogCheckBox>("box");
        column = stage->find<KsColumnDialog>("column");
        box->addAuditor(&listener);
    }
    QCheckBox* toggle() const { return Stage::widgetOf<QCheckBox>(box); }
    /// A person clicks the box in the presentation of the test.
    void click()
    {
        if (GetParam() == Stage::Scene)
            stage->clickPart(box, "stateSep");
        else
            Stage::clickWidget(toggle(), QPoint(8, toggle()->height() / 2));
    }
    int numToggles() const
    {
        return stage->dialog->getBaseWidget()->findChildren<QCheckBox*>().size();
    }
    /// Both presentations still work: a click on the other box is heard and seen in both.
    void expectAlive(const char* id = "other")
    {
        Stage::settle();
        auto* other = stage->find<KsDialogCheckBox>(id);
        ASSERT_TRUE(other);
        CheckBoxListener another;
        other->addAuditor(&another);
        const bool was = other->state;
        ASSERT_TRUE(Stage::widgetOf<QCheckBox>(other));
        Stage::clickWidget(Stage::widgetOf<QCheckBox>(other), QPoint(8, 8));
        EXPECT_EQ(Stage::shown(other, "stateSwitch"), was ? 0 : 1);
        stage->clickPart(other, "stateSep");
        EXPECT_EQ(Stage::widgetOf<QCheckBox>(other)->isChecked(), was);
        EXPECT_EQ(another.states, (std::vector<bool>{!was, was}));
        other->removeAuditor(&another);
    }

    std::unique_ptr<Stage> stage;
    KsDialogCheckBox* box = nullptr;
    KsColumnDialog* column = nullptr;
    CheckBoxListener listener;
};

} // namespace

// A change in one presentation is in the other in the same call.

TEST_P(Both, aClickIsSeenInTheOtherPresentationInTheSameCall)
{
    for (const bool on : {true, false}) {
        click();
        EXPECT_EQ(box->state, on);
        EXPECT_EQ(toggle()->isChecked(), on);
        EXPECT_EQ(toggle()->text().toStdString(), on ? "On" : "Off");
        EXPECT_EQ(Stage::shown(box, "stateSwitch"), on ? 1 : 0);
        EXPECT_EQ(text3D(box, "onOffStringSep"), on ? "On" : "Off");
    }
    EXPECT_EQ(listener.states, (std::vector<bool>{true, false}));
    expectAlive();
}

TEST_P(Both, everyFieldIsSeenInBothPresentationsInTheSameCall)
{
    click(); // whatever a person did before
    box->state = false;
    EXPECT_FALSE(toggle()->isChecked());
    EXPECT_EQ(Stage::shown(box, "stateSwitch"), 0);
    box->label = "New";
    EXPECT_EQ(Stage::widgetOf<QLabel>(box)->text(), "New");
    EXPECT_EQ(text3D(box, "labelSwitch"), "New");
    box->labelVisibility = false;
    EXPECT_TRUE(Stage::widgetOf<QLabel>(box)->isHidden());
    EXPECT_EQ(Stage::shown(box, "labelSwitch"), KsSwitch::NONE);
    box->edgeStyle = KsDialogComponent::SHADOW_OUT;
    EXPECT_EQ(qobject_cast<QFrame*>(box->getWidget())->frameShadow(), QFrame::Raised);
    EXPECT_EQ(Stage::shown(box, "edgeStyleSwitch"), 2);
    box->enable = false;
    EXPECT_FALSE(toggle()->isEnabled());
    click();
    EXPECT_FALSE(box->state);
}

// Auditors do what they like with what calls them.

TEST_P(Both, anAuditorMayDeleteItsControl)
{
    listener.then = [&](KsDialogCheckBox* told) { column->removeChild(column->findChild(told)); };
    click();
    EXPECT_EQ(listener.states, std::vector<bool>{true});
    box = nullptr;
    EXPECT_EQ(column->getNumChildren(), 1);
    Stage::settle();
    EXPECT_EQ(numToggles(), 1);
    expectAlive();
}

TEST_P(Both, anAuditorMayDeleteTheGroupAroundIt)
{
    listener.then = [&](KsDialogCheckBox*) { stage->dialog->removeChild(0); };
    click();
    EXPECT_EQ(listener.states, std::vector<bool>{true});
    box = nullptr;
    Stage::settle();
    EXPECT_EQ(numToggles(), 0);
}

TEST_P(Both, anAuditorMayDeleteItsDialog)
{
    QPointer<QWidget> window(stage->dialog->getBaseWidget());
    listener.then = [&](KsDialogCheckBox*) {
        stage->dialog->destroyWidget();
        stage->dropDialog();
    };
    click();
    EXPECT_EQ(listener.states, std::vector<bool>{true});
    Stage::settle();
    EXPECT_FALSE(stage->dialog);
    EXPECT_TRUE(!window || window->findChildren<QCheckBox*>().isEmpty());
}

TEST_P(Both, anAuditorMayAddChildren)
{
    listener.then = [&](KsDialogCheckBox*) {
        for (const char* id : {"first", "last"}) {
            auto* more = new KsDialogCheckBox;
            more->auditorID = id;
            more->label = id;
            if (*id == 'f')
                column->insertChild(more, 0);
            else
                column->addChild(more);
        }
    };
    click();
    EXPECT_EQ(listener.states, std::vector<bool>{true});
    listener.then = nullptr;
    ASSERT_EQ(column->getNumChildren(), 4);
    EXPECT_EQ(numToggles(), 4);
    expectAlive();
    expectAlive("first");
    expectAlive("last");
}

TEST_P(Both, anAuditorMayRebuildItsControlAndItsDialog)
{
    listener.then = [&](KsDialogCheckBox* told) {
        stage->dialog->buildDialog();
        KbVec2i32 size(0, 0), place(0, 0);
        told->buildWidget(stage->dialog->getBaseWidget(), size, place, 1);
        stage->dialog->updateAfterSceneGraphChange();
        stage->draw();
    };
    click();
    EXPECT_EQ(listener.states, std::vector<bool>{true});
    listener.then = nullptr;
    Stage::settle();
    EXPECT_EQ(numToggles(), 2) << "one live widget per control";
    EXPECT_TRUE(toggle()->isChecked());
    EXPECT_EQ(Stage::shown(box, "stateSwitch"), 1);
    click();
    EXPECT_EQ(listener.states, (std::vector<bool>{true, false}));
    expectAlive();
}

TEST_P(Both, anAuditorMayChangeTheSameFieldAgain)
{
    listener.then = [&](KsDialogCheckBox* told) { told->state = false; };
    click();
    EXPECT_EQ(listener.states, std::vector<bool>{true}) << "a write of a program is not told";
    EXPECT_FALSE(box->state);
    EXPECT_FALSE(toggle()->isChecked());
    EXPECT_EQ(toggle()->text(), "Off");
    EXPECT_EQ(Stage::shown(box, "stateSwitch"), 0);
    EXPECT_EQ(text3D(box, "onOffStringSep"), "Off");
    expectAlive();
}

TEST_P(Both, anAuditorMayRemoveItselfAndOthers)
{
    CheckBoxListener second, third;
    box->addAuditor(&second);
    box->addAuditor(&third);
    listener.then = [&](KsDialogCheckBox* told) {
        told->removeAuditor(&listener);
        told->removeAuditor(&second);
    };
    click();
    EXPECT_EQ(listener.states, std::vector<bool>{true});
    EXPECT_TRUE(second.states.empty()) << "removed before its turn";
    EXPECT_EQ(third.states, std::vector<bool>{true});
    listener.then = nullptr;
    click();
    EXPECT_EQ(listener.states.size(), 1u);
    EXPECT_EQ(third.states, (std::vector<bool>{true, false}));
    expectAlive();
}

TEST_P(Both, anAuditorMayDisableOrHideItsControl)
{
    listener.then = [&](KsDialogCheckBox* told) {
        told->enable = false;
        stage->dialog->hide();
        stage->dialog->show3D(0);
    };
    click();
    EXPECT_EQ(listener.states, std::vector<bool>{true});
    EXPECT_TRUE(box->state);
    EXPECT_FALSE(toggle()->isEnabled());
    EXPECT_FALSE(toggle()->isVisible());
    EXPECT_TRUE(stage->boxOf(box, "stateSep").isEmpty());
}

TEST_P(Both, anAuditorMayRunAnEventLoop)
{
    listener.then = [&](KsDialogCheckBox* told) {
        QApplication::processEvents();
        column->removeChild(column->findChild(told));
        Stage::settle();
    };
    click();
    EXPECT_EQ(listener.states, std::vector<bool>{true});
    box = nullptr;
    expectAlive();
    EXPECT_EQ(numToggles(), 1);
}

INSTANTIATE_TEST_SUITE_P(Roads, Both, testing::Values(Stage::Window, Stage::Scene),
                         [](const testing::TestParamInfo<Stage::Road>& each) {
                             return each.param == Stage::Scene ? "fromTheScene" : "fromTheWindow";
                         });
