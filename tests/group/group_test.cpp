// A group as such: its fields, the road of changes upward and of operations downward.

#include "Trees.h"

#include <arborium/actions/KsPath.h>
#include <arborium/actions/KsRayPickAction.h>
#include <arborium/actions/KsSearchAction.h>
#include <arborium/base/KsDBImpl.h>
#include <arborium/base/KsPreferences.h>
#include <formweave/KsDialogAuditor.h>

namespace {

class Group : public Trees {};

class Listener : public KsDialogAuditor {
public:
    void dialogCheckBox(KsDialogCheckBox* box) override { heard.push_back(box); }
    std::vector<KsDialogCheckBox*> heard;
};

std::vector<std::string> fieldNames(KsNode* node)
{
    std::vector<std::string> names;
    const KsFieldData* data = node->getFieldData();
    for (int i = 0; i < data->getNumFields(); ++i) {
        if (!data->isPartField(i)) names.emplace_back(data->getFieldName(i).getString());
    }
    return names;
}

} // namespace

TEST_F(Group, addsItsFieldsBehindThoseOfAComponent)
{
    KsRef<KsRowDialog> rows(new KsRowDialog);
    const std::vector<std::string> names = fieldNames(rows.get());
    const std::vector<std::string> own(names.end() - 5, names.end());
    EXPECT_EQ(own,
              (std::vector<std::string>{"windowResizedByChildren", "margin", "vScrollVisibility",
                                        "hScrollVisibility", "rowSpacing"}));
    EXPECT_EQ(rows->windowResizedByChildren.getValue(), TRUE);
    EXPECT_EQ(rows->margin, 0);
    EXPECT_EQ(rows->vScrollVisibility, KsDialogGroup::AUTO);
    EXPECT_EQ(rows->hScrollVisibility, KsDialogGroup::AUTO);
    EXPECT_EQ(rows->rowSpacing, 0);
    EXPECT_EQ(rows->isVScrollVisible(), 0);
    EXPECT_EQ(KsDialogGroup::NEVER, 0);
    EXPECT_EQ(KsDialogGroup::ALWAYS, 1);
    EXPECT_EQ(KsDialogGroup::AUTO, 2);
    KsRef<KsColumnDialog> columns(new KsColumnDialog);
    EXPECT_EQ(fieldNames(columns.get()).back(), "columnSpacing");
    EXPECT_EQ(columns->columnSpacing, 0);
}

TEST_F(Group, metByItselfInAFileShowsAnEmptyFrameAndNothingInAScene)
{
    dialog = readNode<KsTopLevelDialog>(std::string(header) +
                                        "TopLevelDialog { DialogGroup { DialogCheckBox { } } }");
    ASSERT_TRUE(dialog);
    auto* group = ksCast<KsDialogGroup>(dialog->getChild(0));
    ASSERT_TRUE(group);
    EXPECT_EQ(group->getLabelInitSize(), KbVec2i32(0, 0));
    EXPECT_EQ(group->getComponentInitSize(), KbVec2i32(0, 0));
    KbVec2i32 size(7, 8);
    group->fixSizeWithBorder(size, 1);
    EXPECT_EQ(size, KbVec2i32(7, 8));
    for (int i = 0; i < 2; ++i) {
        buildWindow(true);
        EXPECT_EQ(framesIn(dialog.get()), expectedFrames(dialog.get()));
        EXPECT_EQ(numToggles(), 0);
    }
    buildScene();
    EXPECT_EQ(group->isBuilt3D(), 0);
    EXPECT_EQ(group->getChild(0)->isBuilt3D(), 0);
}

TEST_F(Group, aChildAddedBeforeTheFirstBuildTriggersNothingAndTheFirstBuildSeesIt)
{
    auto* rows = new Rows;
    dialog->addChild(rows);
    rows->width = 300;
    ProbeBox* box = makeBox("a");
    rows->addChild(box);
    EXPECT_EQ(box->builds, 0);
    EXPECT_EQ(rows->width, 300) << "nothing was dropped";
    buildWindow();
    EXPECT_EQ(box->builds, 1);
    EXPECT_EQ(numToggles(), 1);
}

TEST_F(Group, aDisabledGroupLeavesTheFieldsOfItsChildrenAsTheyAre)
{
    auto* rows = new Rows;
    auto* inner = new Columns;
    ProbeBox* box = makeBox("a");
    ProbeBox* below = makeBox("b");
    rows->addChild(box);
    inner->addChild(below);
    rows->addChild(inner);
    dialog->addChild(rows);
    buildWindow();
    buildScene();
    EXPECT_TRUE(toggleOf(box)->isEnabled());
    rows->enable = false;
    for (ProbeBox* each : {box, below}) {
        EXPECT_TRUE(each->enable);
        EXPECT_FALSE(toggleOf(each)->isEnabled());
        EXPECT_EQ(pickStyleOf(each), KsPickStyle::UNPICKABLE);
        EXPECT_EQ(greyOf(each), 0.5f);
    }
    EXPECT_TRUE(inner->enable);
}

TEST_F(Group, isDisabledAtOnceIfItIsBuiltSo)
{
    auto* rows = new Rows;
    ProbeBox* box = makeBox("a");
    rows->addChild(box);
    rows->enable = false;
    dialog->addChild(rows);
    buildWindow();
    buildScene();
    EXPECT_FALSE(toggleOf(box)->isEnabled());
    EXPECT_EQ(pickStyleOf(box), KsPickStyle::UNPICKABLE);
    EXPECT_EQ(greyOf(box), 0.5f);
    ProbeBox* late = makeBox("b");
    rows->addChild(late);
    EXPECT_FALSE(toggleOf(late)->isEnabled());
    EXPECT_EQ(greyOf(late), 0.5f) << "a child that joins is disabled with the rest";
}

TEST_F(Group, enabledAgainItEnablesOnlyTheChildrenThatAreEnabledThemselves)
{
    auto* rows = new Rows;
    ProbeBox* on = makeBox("on");
    ProbeBox* off = makeBox("off");
    off->enable = false;
    rows->addChild(on);
    rows->addChild(off);
    dialog->addChild(rows);
    buildWindow();
    buildScene();
    rows->enable = false;
    rows->enable = true;
    EXPECT_TRUE(toggleOf(on)->isEnabled());
    EXPECT_FALSE(toggleOf(off)->isEnabled());
    EXPECT_NE(pickStyleOf(on), KsPickStyle::UNPICKABLE);
    EXPECT_EQ(greyOf(on), 0.0f);
    EXPECT_EQ(pickStyleOf(off), KsPickStyle::UNPICKABLE);
    EXPECT_EQ(greyOf(off), 0.5f);
}

TEST_F(Group, aChangeClimbsToTheWindowOnlyThroughContainersThatCanBeTraversed)
{
    auto* outer = new Columns;
    auto* rows = new Rows;
    ProbeBox* box = makeBox("a");
    rows->addChild(box);
    outer->addChild(rows);
    dialog->addChild(outer);
    buildWindow();
    box->builds = 0;
    rows->addChild(makeBox("b"));
    EXPECT_GT(box->builds, 0);
    EXPECT_EQ(numToggles(), 2);

    outer->setCanBeTraversed(0);
    box->builds = 0;
    ProbeBox* unseen = makeBox("c");
    rows->addChild(unseen);
    EXPECT_EQ(box->builds, 0);
    EXPECT_EQ(unseen->builds, 0);
    EXPECT_EQ(numToggles(), 2);
    outer->setCanBeTraversed(1);
    rows->updateAfterSceneGraphChange();
    EXPECT_EQ(numToggles(), 3);
}

TEST_F(Group, withoutAParentAChangeForgetsSizesAndBuildsNothing)
{
    KsRef<Rows> rows(new Rows);
    ProbeBox* box = makeBox("a");
    rows->addChild(box);
    measure(rows.get());
    ASSERT_EQ(rows->isBuilt3D(), 1);
    EXPECT_GT(rows->width, 0);
    box->builds = 0;
    rows->addChild(makeBox("b"));
    EXPECT_EQ(box->builds, 0);
    EXPECT_EQ(rows->width, 0);
    EXPECT_EQ(rows->m_sizeDB.count(), 0);
}

TEST_F(Group, aChangeDropsItsSizeToWhatWasAskedForIfChildrenResizeIt)
{
    const auto ask = [](KsDialogGroup* group) {
        group->width = 300;
        group->minHeight = 40;
        group->maxWidth = 400;
    };
    KsRef<Rows> resized(new Rows), kept(new Rows);
    kept->windowResizedByChildren = false;
    for (Rows* rows : {resized.get(), kept.get()}) {
        ask(rows);
        rows->addChild(makeBox("a"));
        build(rows, 0, 350, 90);
        EXPECT_EQ(rows->width, 350);
        EXPECT_EQ(rows->height, 90);
        rows->addChild(makeBox("b"));
    }
    EXPECT_EQ(resized->width, 300);
    EXPECT_EQ(resized->height, 0);
    EXPECT_EQ(resized->minWidth, 0);
    EXPECT_EQ(resized->minHeight, 40);
    EXPECT_EQ(resized->maxWidth, 400);
    EXPECT_EQ(resized->maxHeight, 0);
    EXPECT_EQ(kept->width, 350);
    EXPECT_EQ(kept->height, 90);
}

TEST_F(Group, withNoAuditorAnywhereAnEventReachesTheOneOfTheWindow)
{
    auto* rows = new Rows;
    auto* inner = new Columns;
    ProbeBox* box = makeBox("Shadows");
    inner->addChild(box);
    rows->addChild(inner);
    dialog->addChild(rows);
    buildWindow();
    KsPreferences::setString("DEBUG_FORMWEAVE_AUDITORS", "1");
    {
        ExpectedMessages messages("KsDialogAuditor::dialogCheckBox", "Shadows");
        toggleOf(box)->click();
    }
    KsPreferences::unset("DEBUG_FORMWEAVE_AUDITORS");
    EXPECT_TRUE(box->state);
}

TEST_F(Group, anEventStopsAtTheNearestGroupWithAuditors)
{
    Listener near, far, window;
    auto* rows = new Rows;
    auto* inner = new Columns;
    ProbeBox* box = makeBox("a");
    ProbeBox* sibling = makeBox("b");
    inner->addChild(box);
    rows->addChild(inner);
    rows->addChild(sibling);
    dialog->addChild(rows);
    dialog->addAuditor(&window);
    rows->addAuditor(&far);
    inner->addAuditor(&near);
    buildWindow();
    toggleOf(box)->click();
    toggleOf(sibling)->click();
    EXPECT_EQ(near.heard, std::vector<KsDialogCheckBox*>{box});
    EXPECT_EQ(far.heard, std::vector<KsDialogCheckBox*>{sibling});
    EXPECT_TRUE(window.heard.empty());
    inner->removeAuditor(&near);
    toggleOf(box)->click();
    EXPECT_EQ(far.heard, (std::vector<KsDialogCheckBox*>{sibling, box}));
}

TEST_F(Group, aloneInASceneItReportsToAnAuditorOfItsOwn)
{
    KsRef<Rows> rows(new Rows);
    ProbeBox* box = makeBox("Shadows");
    rows->addChild(box);
    measure(rows.get());
    KsPreferences::setString("DEBUG_FORMWEAVE_AUDITORS", "1");
    {
        ExpectedMessages messages("KsDialogAuditor::dialogCheckBox", "Shadows");
        box->eventNotify(1, 0);
    }
    KsPreferences::unset("DEBUG_FORMWEAVE_AUDITORS");
}

TEST_F(Group, aloneInAWindowItReportsToNobody)
{
    KsRef<Rows> rows(new Rows);
    ProbeBox* box = makeBox("a");
    rows->addChild(box);
    QWidget window;
    new QVBoxLayout(&window);
    build(rows.get(), 1, 0, 0, &window);
    toggleOf(box)->click();
    EXPECT_TRUE(box->state);
}

TEST_F(Group, reportsEveryElementBelowIt)
{
    Listener listener;
    auto* rows = new Rows;
    auto* inner = new Columns;
    ProbeBox* a = makeBox("a");
    ProbeBox* b = makeBox("b");
    ProbeBox* c = makeBox("c");
    rows->addChild(a);
    inner->addChild(b);
    rows->addChild(inner);
    rows->addChild(c);
    dialog->addChild(rows);
    rows->addAuditor(&listener);
    rows->applyAuditors();
    EXPECT_EQ(listener.heard, (std::vector<KsDialogCheckBox*>{a, b, c}));
}

TEST_F(Group, findsAnElementByItsAuditorIdInDepthAndInOrder)
{
    auto* rows = new Rows;
    auto* inner = new Columns;
    ProbeBox* below = makeBox("b");
    ProbeBox* behind = makeBox("c");
    below->auditorID = "twin";
    behind->auditorID = "twin";
    inner->addChild(below);
    inner->auditorID = "inner";
    rows->addChild(inner);
    rows->addChild(behind);
    dialog->addChild(rows);
    EXPECT_EQ(rows->searchForAuditorId("twin"), below);
    EXPECT_EQ(rows->searchForAuditorId("inner"), inner);
    EXPECT_EQ(rows->searchForAuditorId("none"), nullptr);
}

TEST_F(Group, isWrittenWithoutItsChildrenWhenAClusterIsBroughtInStep)
{
    KsRef<Rows> rows(new Rows);
    rows->margin = 4;
    rows->addChild(makeBox("a"));
    const auto text = [&](bool synchronizing) {
        KsWriteAction action;
        KsOutputImpl::setSynchronizing(action.getOutput(), synchronizing);
        action.apply(rows.get());
        return std::string(action.getOutput()->getBuffer());
    };
    KsDBImpl::setRunningCluster(true);
    const std::string alone = text(true), whole = text(false);
    KsDBImpl::setRunningCluster(false);
    EXPECT_NE(alone.find("margin 4"), std::string::npos);
    EXPECT_EQ(alone.find("DialogCheckBox"), std::string::npos);
    EXPECT_NE(whole.find("DialogCheckBox"), std::string::npos);
    EXPECT_NE(text(true).find("DialogCheckBox"), std::string::npos) << "there is no cluster";
    KsDBImpl::setRunningToolMode(true);
    EXPECT_EQ(text(false).find("DialogCheckBox"), std::string::npos);
    KsDBImpl::setRunningToolMode(false);
}

TEST_F(Group, readsItsFieldsAndItsChildren)
{
    const std::string text = std::string(header) +
                             "RowDialog {\n  margin 4\n  vScrollVisibility NEVER\n  rowSpacing 5\n"
                             "  DialogCheckBox { label \"a\" }\n"
                             "  ColumnDialog { columnSpacing 2 DialogCheckBox { label \"b\" } }\n}";
    KsRef<KsRowDialog> rows = readNode<KsRowDialog>(text);
    ASSERT_TRUE(rows);
    EXPECT_EQ(rows->margin, 4);
    EXPECT_EQ(rows->vScrollVisibility, KsDialogGroup::NEVER);
    EXPECT_EQ(rows->rowSpacing, 5);
    ASSERT_EQ(rows->getNumChildren(), 2);
    EXPECT_EQ(rows->getChild(0)->getParentElement(), rows.get());
    auto* columns = ksCast<KsColumnDialog>(rows->getChild(1));
    ASSERT_TRUE(columns);
    EXPECT_EQ(columns->columnSpacing, 2);
    ASSERT_EQ(columns->getNumChildren(), 1);
    // And what is written reads as the same again.
    const std::string first = written(rows.get());
    KsRef<KsRowDialog> again = readNode<KsRowDialog>(first);
    ASSERT_TRUE(again);
    EXPECT_EQ(written(again.get()), first);
}

TEST_F(Group, hasAFrameOfItsOwnWithASpacerBehindIt)
{
    auto* rows = new Rows;
    rows->minWidth = 120;
    rows->width = 150;
    rows->fixedWidth = true;
    rows->maxHeight = 90;
    rows->addChild(makeBox("a"));
    dialog->addChild(rows);
    buildWindow();
    QFrame* frame = rows->m_groupWidget;
    ASSERT_TRUE(frame);
    EXPECT_EQ(rows->getWidget(), frame);
    EXPECT_EQ(frame->objectName(), "LMNKsDialogGroupGroupWidget");
    EXPECT_EQ(frame->parentWidget(), window());
    EXPECT_EQ(frame->maximumWidth(), 150);
    EXPECT_EQ(frame->minimumWidth(), 150);
    EXPECT_EQ(frame->maximumHeight(), 90);
    QLayout* own = layoutOf(dialog.get())->itemAt(0)->layout();
    ASSERT_EQ(own->count(), 2);
    EXPECT_EQ(own->itemAt(0)->widget(), frame);
    EXPECT_EQ(own->itemAt(1)->spacerItem(), rows->m_spacer);
    EXPECT_EQ(toggleOf(rows->getChild(0))->window(), window());
}

TEST_F(Group, hidesAndShowsItsChildrenInTheScene)
{
    auto* rows = new Rows;
    auto* inner = new Columns;
    ProbeBox* box = makeBox("a");
    inner->addChild(box);
    rows->addChild(inner);
    dialog->addChild(rows);
    buildScene();
    rows->show3D(0);
    for (KsFormweave* each : std::vector<KsFormweave*>{rows, inner, box})
        EXPECT_EQ(each->isShown3D(), 0);
    rows->show3D(1);
    for (KsFormweave* each : std::vector<KsFormweave*>{rows, inner, box})
        EXPECT_EQ(each->isShown3D(), 1);
}

TEST_F(Group, handsItsPlaceInTheSceneOnToItsChildren)
{
    auto* rows = new Rows;
    auto* inner = new Columns;
    ProbeBox* box = makeBox("a");
    inner->addChild(box);
    rows->addChild(inner);
    dialog->addChild(rows);
    buildScene();
    const Extent before = extentOf(box);
    dialog->position3D = KbVec3f(40, 30, 0);
    const Extent behind = extentOf(box);
    EXPECT_NEAR(behind.left - before.left, 40, 1e-2);
    EXPECT_NEAR(behind.top - before.top, 30, 1e-2);
    // Each level stands on top of the one that it is in.
    EXPECT_GT(box->get3DParentTranslation()[2], inner->get3DParentTranslation()[2]);
    EXPECT_GT(inner->get3DParentTranslation()[2], rows->get3DParentTranslation()[2]);
}

TEST_F(Group, isSearchedThroughAndPathsEndAtTheInnermostElement)
{
    auto* rows = new Rows;
    ProbeBox* box = makeBox("a");
    rows->addChild(box);
    dialog->addChild(rows);
    buildScene();
    KsSearchAction search;
    search.setType(KsDialogCheckBox::getClassTypeId());
    search.apply(scene.get());
    ASSERT_TRUE(search.getPath());
    EXPECT_EQ(search.getPath()->getTail(), box);
    EXPECT_EQ(search.getPath()->getLength(), 4);
    search.reset();
    // A node among the parts of the box: the path is shown up to the box.
    search.setNode(box->m_mainTranslation.get());
    search.apply(scene.get());
    ASSERT_TRUE(search.getPath());
    EXPECT_EQ(search.getPath()->getTail(), box);
    search.reset();
    // And one of the group's own parts, which come behind the children.
    search.setNode(rows->m_mainTranslation.get());
    search.apply(scene.get());
    ASSERT_TRUE(search.getPath());
    EXPECT_EQ(search.getPath()->getTail(), rows);
}

TEST_F(Group, isPickedThroughDownToTheElementThatIsHit)
{
    auto* rows = new Rows;
    ProbeBox* upper = makeBox("a");
    ProbeBox* lower = makeBox("b");
    rows->addChild(upper);
    rows->addChild(lower);
    dialog->addChild(rows);
    buildScene();
    for (ProbeBox* box : {upper, lower}) {
        const Extent extent = extentOf(box);
        KsRayPickAction pick{KbViewportRegion()};
        pick.setRay(
            KbVec3f(extent.left + extent.width() / 2, -extent.top - extent.height() / 2, 1000),
            KbVec3f(0, 0, -1));
        pick.apply(scene.get());
        ASSERT_TRUE(pick.getPickedPoint());
        EXPECT_EQ(pick.getPickedPoint()->getPath()->getTail(), box);
    }
}
