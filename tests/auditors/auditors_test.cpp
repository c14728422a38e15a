// Who is told of an action, in which order, and what an auditor may do meanwhile.

#include "MessageGuard.h"

#include <arborium/base/KsPreferences.h>
#include <dialog/Listeners.h>
#include <formweave/formweave.h>

#include <QtTest/QtTest>
#include <gtest/gtest.h>

namespace {

class BoxRecorder : public KsDialogCheckBoxAuditor {
public:
    void dialogCheckBox(KsDialogCheckBox* box) override
    {
        ++calls;
        state = box->state;
        if (then) then(box);
    }
    int calls = 0;
    bool state = false;
    std::function<void(KsDialogCheckBox*)> then;
};

using Told = std::vector<std::string>;

class Auditors : public testing::Test {
protected:
    void SetUp() override { KsFormweave::init(); }
    void TearDown() override
    {
        if (dialog) {
            QPointer<QWidget> window = dialog->getBaseWidget();
            dialog.reset();
            delete window;
        }
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        KsFormweave::finish();
    }

    static KsDialogCheckBox* box(const char* id)
    {
        auto* made = new KsDialogCheckBox;
        made->auditorID = id;
        return made;
    }
    // first, group { inner, deeper { deep } }, last
    void makeTree()
    {
        dialog = new KsTopLevelDialog;
        group = new KsRowDialog;
        deeper = new KsColumnDialog;
        first = box("first");
        inner = box("inner");
        deep = box("deep");
        last = box("last");
        dialog->addChild(first);
        dialog->addChild(group);
        group->addChild(inner);
        group->addChild(deeper);
        deeper->addChild(deep);
        dialog->addChild(last);
        dialog->auditorID = "dialog";
        group->auditorID = "group";
        deeper->auditorID = "deeper";
    }
    void open()
    {
        dialog->buildDialog();
        dialog->show();
        QApplication::processEvents();
    }
    static void click(KsDialogCheckBox* element)
    {
        auto* widget = element->getWidget()->findChild<QCheckBox*>();
        ASSERT_TRUE(widget);
        QTest::mouseClick(widget, Qt::LeftButton, Qt::NoModifier, QPoint(8, widget->height() / 2));
    }

    KsRef<KsTopLevelDialog> dialog;
    KsRowDialog* group = nullptr;
    KsColumnDialog* deeper = nullptr;
    KsDialogCheckBox *first = nullptr, *inner = nullptr, *deep = nullptr, *last = nullptr;
};

} // namespace

TEST_F(Auditors, aComponentWithItsOwnAuditorDoesNotReachTheDialogs)
{
    makeTree();
    BoxesListener above;
    BoxRecorder own;
    dialog->addAuditor(&above);
    first->addAuditor(&own);
    open();
    click(first);
    EXPECT_EQ(own.calls, 1);
    EXPECT_TRUE(own.state);
    EXPECT_EQ(above.told, Told());

    first->removeAuditor(&own);
    click(first);
    EXPECT_EQ(own.calls, 1);
    EXPECT_EQ(above.told, Told{"first-"});
}

TEST_F(Auditors, emptyGroupsPassEachLeafUpToTheDialog)
{
    makeTree();
    BoxesListener above;
    dialog->addAuditor(&above);
    open();
    click(inner);
    click(deep);
    EXPECT_EQ(above.told, (Told{"inner+", "deep+"}));
}

TEST_F(Auditors, anAuditorOfAnInnerGroupShadowsTheDialogsForItsLeaves)
{
    makeTree();
    BoxesListener above, inside;
    dialog->addAuditor(&above);
    deeper->addAuditor(&inside);
    open();
    click(deep);
    click(inner);
    EXPECT_EQ(inside.told, Told{"deep+"});
    EXPECT_EQ(above.told, Told{"inner+"});
}

TEST_F(Auditors, allAuditorsOfAListAreToldInItsOrderAndOnceEach)
{
    makeTree();
    std::vector<int> order;
    BoxRecorder a, b;
    a.then = [&](KsDialogCheckBox*) { order.push_back(1); };
    b.then = [&](KsDialogCheckBox*) { order.push_back(2); };
    first->addAuditor(&a);
    first->addAuditor(&b);
    first->addAuditor(&a);
    first->applyDlgCptAuditor();
    EXPECT_EQ(order, (std::vector<int>{1, 2}));
}

TEST_F(Auditors, removingWhatWasNeverAddedDoesNothing)
{
    makeTree();
    BoxRecorder own;
    BoxesListener above;
    first->removeAuditor(&own);
    group->removeAuditor(&above);
    dialog->removeAuditor(&above);
    first->applyDlgCptAuditor();
    EXPECT_EQ(own.calls, 0);
}

TEST_F(Auditors, aStateSetByTheProgramTellsNobody)
{
    makeTree();
    BoxesListener above;
    dialog->addAuditor(&above);
    open();
    first->state = true;
    EXPECT_TRUE(first->getWidget()->findChild<QCheckBox*>()->isChecked());
    EXPECT_EQ(above.told, Told());
}

TEST_F(Auditors, aGroupWithoutParentAndAuditorReportsToNobody)
{
    const KsRef<KsRowDialog> alone(new KsRowDialog);
    auto* child = box("child");
    alone->addChild(child);
    child->applyDlgCptAuditor(); // no crash
    BoxesListener recorder;
    alone->addAuditor(&recorder);
    child->applyDlgCptAuditor();
    EXPECT_EQ(recorder.told, Told{"child-"});
}

TEST_F(Auditors, applyAuditorsTellsEachLeafInOrderThroughItsOwnContainer)
{
    makeTree();
    BoxesListener above, inside;
    dialog->addAuditor(&above);
    group->addAuditor(&inside);
    last->state = true;
    dialog->applyAuditors();
    EXPECT_EQ(above.told, (Told{"first-", "last+"}));
    EXPECT_EQ(inside.told, (Told{"inner-", "deep-"}));

    inside.told.clear();
    deeper->applyAuditors();
    EXPECT_EQ(inside.told, Told{"deep-"});
}

TEST_F(Auditors, applyAuditorsPassesByAnAuditorOfTheComponentItself)
{
    makeTree();
    BoxesListener above;
    BoxRecorder own;
    dialog->addAuditor(&above);
    first->addAuditor(&own);
    dialog->applyAuditors();
    EXPECT_EQ(own.calls, 0);
    EXPECT_EQ(above.told, (Told{"first-", "inner-", "deep-", "last-"}));
}

TEST_F(Auditors, applyAuditorsLeavesOutWhatAnAuditorTookAwayAndSkipsNothing)
{
    makeTree();
    BoxesListener above;
    dialog->addAuditor(&above);
    above.then = [&](KsDialogCheckBox* told) {
        if (told == first) dialog->removeChild(first);
        if (told == inner) group->removeChild(deeper);
    };
    dialog->applyAuditors();
    EXPECT_EQ(above.told, (Told{"first-", "inner-", "last-"}));
}

TEST_F(Auditors, applyAuditorsEndsThoughAnAuditorAddsAChildEachTime)
{
    makeTree();
    BoxesListener above;
    dialog->addAuditor(&above);
    above.then = [&](KsDialogCheckBox*) { dialog->addChild(box("new")); };
    dialog->applyAuditors();
    EXPECT_EQ(above.told, (Told{"first-", "inner-", "deep-", "last-"}));
    EXPECT_EQ(dialog->getNumChildren(), 7);
}

TEST_F(Auditors, searchFindsTheFirstInDepthAndNotTheContainerItself)
{
    makeTree();
    EXPECT_EQ(dialog->searchForAuditorId("deep"), deep);
    EXPECT_EQ(dialog->searchForAuditorId("deeper"), deeper);
    EXPECT_EQ(dialog->searchForAuditorId("dialog"), nullptr);
    EXPECT_EQ(group->searchForAuditorId("group"), nullptr);
    EXPECT_EQ(group->searchForAuditorId("first"), nullptr);
    EXPECT_EQ(dialog->searchForAuditorId("nobody"), nullptr);
    last->auditorID = "dialog";
    EXPECT_EQ(dialog->searchForAuditorId("dialog"), last);
    // What stands deeper in an earlier child comes before a later child.
    deep->auditorID = "dialog";
    EXPECT_EQ(dialog->searchForAuditorId("dialog"), deep);
    // A group that matches comes before what it holds.
    group->auditorID = "dialog";
    EXPECT_EQ(dialog->searchForAuditorId("dialog"), group);
}

TEST_F(Auditors, anAuditorMayTakeItselfOutWhileItIsTold)
{
    makeTree();
    BoxRecorder a, b, c;
    a.then = [&](KsDialogCheckBox* told) { told->removeAuditor(&a); };
    for (BoxRecorder* each : {&a, &b, &c}) first->addAuditor(each);
    open();
    click(first);
    click(first);
    EXPECT_EQ(a.calls, 1);
    EXPECT_EQ(b.calls, 2);
    EXPECT_EQ(c.calls, 2);
}

TEST_F(Auditors, anAuditorMayDeleteItselfWhileItIsTold)
{
    makeTree();
    auto* gone = new BoxesListener;
    gone->then = [&](KsDialogCheckBox*) {
        dialog->removeAuditor(gone);
        delete gone;
    };
    dialog->addAuditor(gone);
    BoxesListener stays;
    dialog->addAuditor(&stays);
    open();
    click(deep);
    EXPECT_EQ(stays.told, Told{"deep+"});
}

TEST_F(Auditors, anAuditorMayDeleteTheDialogInTheMiddleOfAClick)
{
    makeTree();
    BoxesListener above;
    dialog->addAuditor(&above);
    open();
    QPointer<QWidget> window = dialog->getBaseWidget();
    above.then = [&](KsDialogCheckBox*) {
        dialog.reset();
        window->hide();
    };
    click(deep);
    EXPECT_EQ(above.told, Told{"deep+"});
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    ASSERT_TRUE(window); // it outlives the dialog
    EXPECT_TRUE(window->findChildren<QCheckBox*>().isEmpty());
    delete window;
}

TEST_F(Auditors, theirTypesAreRegisteredButForThatOfTabDialogs)
{
    EXPECT_EQ(KsAuditor::getClassTypeId().getName(), "Auditor");
    EXPECT_EQ(KsType::fromName("Auditor"), KsAuditor::getClassTypeId());
    const KsType types[] = {KsDialogAuditor::getClassTypeId(),
                            KsDialogPushButtonAuditor::getClassTypeId(),
                            KsDialogCheckBoxAuditor::getClassTypeId(),
                            KsDialogChoiceAuditor::getClassTypeId(),
                            KsDialogEditTextAuditor::getClassTypeId(),
                            KsDialogIntegerSliderAuditor::getClassTypeId(),
                            KsDialogRealSliderAuditor::getClassTypeId(),
                            KsMenuCheckBoxAuditor::getClassTypeId(),
                            KsMenuFileSelectionAuditor::getClassTypeId(),
                            KsMenuPushButtonAuditor::getClassTypeId(),
                            KsMenuRadioButtonsAuditor::getClassTypeId()};
    for (const KsType type : types) {
        EXPECT_EQ(type.getParent(), KsAuditor::getClassTypeId());
        EXPECT_EQ(std::string(type.getName().getString()).rfind("Ks", 0), 0u)
            << type.getName().getString();
        EXPECT_FALSE(type.canCreateInstance());
    }
    BoxRecorder recorder;
    EXPECT_EQ(recorder.getTypeId().getName(), "KsDialogCheckBoxAuditor");
    BoxesListener dialogRecorder;
    EXPECT_EQ(dialogRecorder.getTypeId().getName(), "KsDialogAuditor");

    EXPECT_TRUE(KsTabDialogAuditor::getClassTypeId().isBad());
    KsTabDialogAuditor::initClass();
    EXPECT_EQ(KsTabDialogAuditor::getClassTypeId().getParent(), KsAuditor::getClassTypeId());
    KsTabDialogAuditor::exitClass();
    EXPECT_TRUE(KsTabDialogAuditor::getClassTypeId().isBad());
}

TEST_F(Auditors, theirTypesGoWithTheLibraryAndComeAgain)
{
    KsFormweave::finish();
    EXPECT_TRUE(KsAuditor::getClassTypeId().isBad());
    EXPECT_TRUE(KsMenuRadioButtonsAuditor::getClassTypeId().isBad());
    {
        ExpectedMessages messages("KsDialogAuditor::exitClass",
                                  "Unable to remove type (KsDialogAuditor) for this class.");
        KsDialogAuditor::exitClass();
    }
    KsFormweave::init();
    EXPECT_FALSE(KsMenuRadioButtonsAuditor::getClassTypeId().isBad());
}

TEST_F(Auditors, anUndefinedOperationIsSilentUnlessThePreferenceIsSet)
{
    makeTree();
    dialog->applyAuditors(); // falls through to the dialog's own auditor

    KsPreferences::setString("DEBUG_FORMWEAVE_AUDITORS", "0"); // set is set
    first->label = "a";
    first->onString = "yes";
    first->offString = "no";
    {
        ExpectedMessages messages("KsDialogAuditor::dialogCheckBox", "");
        first->applyDlgCptAuditor();
        ASSERT_EQ(messages.messages().size(), 1u);
        EXPECT_EQ(messages.messages()[0].text,
                  "WARNING ! The DialogAuditor does not define the KsDialogCheckBox component :"
                  "\n\t\t -> label \"a\""
                  "\n\t\t -> onString \"yes\""
                  "\n\t\t -> offString \"no\"");
    }
    KsPreferences::unset("DEBUG_FORMWEAVE_AUDITORS");
    first->applyDlgCptAuditor();
}
