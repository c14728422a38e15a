// Tab dialogs: pages, tabs and the selection, in windows and in scenes.

#include "Tabs.h"

#include <MessageGuard.h>

// The window.

TEST(TabDialog, isATabWidgetInAFrameWithAPageForEachChild)
{
    Tabs stage;
    EXPECT_EQ(stage.tabs->getWidget()->objectName(), "LMNKsDialogQTabDialogFrame");
    ASSERT_TRUE(stage.widget());
    EXPECT_EQ(stage.widget()->objectName(), "LMNKsDialogQTabDialogTabWidget");
    EXPECT_EQ(stage.windowTitles(), (Strings{"One", "Two", "Three"}));
    const QWidget* frame = stage.tabs->getWidget();
    EXPECT_EQ(stage.widget()->geometry(), QRect(3, 3, frame->width() - 6, frame->height() - 6));
    for (int i = 0; i < 3; ++i) {
        const QWidget* page = stage.widget()->widget(i);
        EXPECT_EQ(page->objectName(), "LMNKsDialogQTabDialogTempWidget");
        EXPECT_EQ(page->layout()->objectName(), "LMNKsDialogQTabDialogLayout");
        EXPECT_EQ(page->layout(), static_cast<QBoxLayout*>(stage.tabs->getLayout(i)));
        EXPECT_TRUE(page->isAncestorOf(stage.child(i)->getWidget()));
    }
    EXPECT_EQ(stage.tabs->getLayout(3), nullptr);
    EXPECT_EQ(stage.tabs->getLayout(-1), nullptr);
}

TEST(TabDialog, showsOnlyTheSelectedPageInTheWindow)
{
    Tabs stage;
    for (int selected : {0, 2, 1}) {
        stage.tabs->selectedPage = selected;
        for (int i = 0; i < 3; ++i)
            EXPECT_EQ(stage.child(i)->getWidget()->isVisible(), i == selected);
        EXPECT_EQ(stage.widget()->currentIndex(), selected);
    }
}

TEST(TabDialog, aClickOnATabSelectsThePageAndIsToldOnce)
{
    Tabs stage;
    Listener listener;
    stage.tabs->addAuditor(&listener);
    stage.clickTab(2);
    EXPECT_EQ(stage.selected(), 2);
    EXPECT_EQ(listener.heard, std::vector<int>{2});
    stage.clickTab(2);
    EXPECT_EQ(listener.heard.size(), 1u);
    EXPECT_EQ(stage.child(2)->isShown3D(), 1) << "the scene follows";
    EXPECT_EQ(stage.child(0)->isShown3D(), 0);
}

TEST(TabDialog, aChangeOfTheFieldMovesTheTabAndTellsNobody)
{
    Tabs stage;
    Listener listener;
    stage.tabs->addAuditor(&listener);
    stage.tabs->selectedPage = 1;
    EXPECT_EQ(stage.widget()->currentIndex(), 1);
    EXPECT_EQ(stage.child(1)->isShown3D(), 1);
    EXPECT_TRUE(listener.heard.empty());
}

TEST(TabDialog, theFilesSelectedPageIsTheOneOnShow)
{
    Tabs stage(pages(4, "selectedPage 2"), Stage::Window);
    EXPECT_EQ(stage.selected(), 2);
    EXPECT_EQ(stage.widget()->currentIndex(), 2);
    Tabs scene(pages(4, "selectedPage 2"), Stage::Scene);
    EXPECT_EQ(scene.selected(), 2);
    EXPECT_EQ(scene.child(2)->isShown3D(), 1);
    EXPECT_EQ(scene.child(0)->isShown3D(), 0);
}

TEST(TabDialog, aSelectionOutOfRangeIsBroughtIntoRangeByTheWindow)
{
    EXPECT_EQ(Tabs(pages(3, "selectedPage 7"), Stage::Window).selected(), 2);
    EXPECT_EQ(Tabs(pages(3, "selectedPage -4"), Stage::Window).selected(), 0);
    EXPECT_EQ(Tabs(pages(0, "selectedPage 5"), Stage::Window).selected(), 0);
    EXPECT_EQ(Tabs(pages(0, "selectedPage 5"), Stage::Scene).selected(), 0);
    EXPECT_EQ(Tabs(pages(3, "selectedPage -4"), Stage::Scene).selected(), 0);
}

TEST(TabDialog, needsMoreRoomThanItsLargestPageByTheTabsWhereverTheyAre)
{
    for (const char* location : {"TOP", "BOTTOM", "LEFT", "RIGHT"}) {
        const bool beside = location[0] == 'L' || location[0] == 'R';
        Tabs stage(pages(3, std::string("tabsLocation ") + location), Stage::Window);
        KbVec2i32 size, min, max, childSize, childMin, childMax;
        stage.tabs->resetSize();
        stage.tabs->setChildrenLabelSize();
        stage.tabs->setChildrenComponentSize();
        stage.tabs->getSize(size, min, max);
        KbVec2i32 largest(0, 0), init(0, 0);
        for (int i = 0; i < 3; ++i) {
            stage.child(i)->getSize(childSize, childMin, childMax);
            const KbVec2i32 control = stage.child(i)->getComponentInitSize();
            for (int axis = 0; axis < 2; ++axis) {
                largest[axis] = std::max(largest[axis], childSize[axis]);
                init[axis] = std::max(init[axis], control[axis]);
            }
        }
        EXPECT_EQ(size, largest + KbVec2i32(10, 33));
        EXPECT_EQ(stage.tabs->getComponentInitSize(),
                  init + (beside ? KbVec2i32(33, 10) : KbVec2i32(10, 33)));
    }
}

// The scene.

TEST(TabDialog, showsOnlyTheSelectedPageInTheScene)
{
    Tabs stage(threePages, Stage::Scene);
    for (const auto& [selected, id] :
         std::vector<std::pair<int, const char*>>{{0, "a"}, {2, "c"}, {1, "b"}}) {
        stage.tabs->selectedPage = selected;
        stage.draw();
        for (const char* each : {"a", "b", "c"}) {
            auto* box = stage.find<KsDialogCheckBox>(each);
            EXPECT_EQ(stage.boxOf(box, "stateSep").isEmpty(), each != std::string(id));
        }
        auto* box = stage.find<KsDialogCheckBox>(id);
        EXPECT_TRUE(stage.clickPart(box, "stateSep"));
        EXPECT_TRUE(box->state);
    }
    EXPECT_EQ(stage.selected(), 1) << "a click on a page selects none";
}

TEST(TabDialog, aClickOnATabInTheSceneSelectsThePage)
{
    Tabs stage;
    Listener listener;
    stage.tabs->addAuditor(&listener);
    EXPECT_TRUE(stage.click3DTab(1));
    EXPECT_EQ(stage.selected(), 1);
    EXPECT_EQ(stage.widget()->currentIndex(), 1) << "the window follows";
    EXPECT_EQ(stage.child(1)->isShown3D(), 1);
    EXPECT_TRUE(listener.heard.empty()) << "only the window tells";
}

TEST(TabDialog, itsTabsStandSideBySideAlongTheTop)
{
    Tabs stage(threePages, Stage::Scene);
    EXPECT_EQ(stage.sceneTitles(), (Strings{"One", "Two", "Three"}));
    const KbBox3f frame = stage.boxOf(stage.tabs, "frameSep");
    float left = frame.getMin()[0];
    for (int i = 0; i < 3; ++i) {
        const KbBox3f tab = stage.tabBox(i);
        EXPECT_NEAR(tab.getMin()[0], left, 0.01);
        EXPECT_LT(tab.getMin()[1], frame.getMax()[1] + 0.01);
        left = tab.getMax()[0];
    }
}

TEST(TabDialog, aNarrowTitleHasATabOfLeastWidth)
{
    Tabs stage("TopLevelDialog { TabDialog { auditorID \"tabs\" width 200 "
               "DialogCheckBox { label \"i\" } "
               "DialogCheckBox { } } }",
               Stage::Scene);
    for (int i = 0; i < 2; ++i) EXPECT_NEAR(stage.tabBox(i).getSize()[0], 39, 0.01);
}

TEST(TabDialog, theTabThatDoesNotFitIsCutAndAClickOnItScrollsTheRow)
{
    Tabs stage(pages(8, "width 200 fixedWidth TRUE"), Stage::Scene);
    const std::vector<int> before = stage.visibleTabs();
    ASSERT_GE(before.size(), 2u);
    ASSERT_LT(before.size(), 8u);
    EXPECT_EQ(before[0], 0);
    const int cut = before.back();
    const float edge = stage.boxOf(stage.tabs, "buttonsSep").getMin()[0];
    const KbBox3f box = stage.tabBox(cut);
    EXPECT_GT(box.getMax()[0], edge) << "it reaches behind the buttons";
    // Behind the edge nothing of it can be met.
    const int selected = stage.selected();
    stage.click(KbVec2f(edge - 0.5f, box.getCenter()[1] + Stage::viewHeight));
    EXPECT_EQ(stage.selected(), selected);

    EXPECT_TRUE(stage.click3DTab(cut));
    EXPECT_EQ(stage.selected(), cut);
    EXPECT_EQ(stage.visibleTabs().front(), 1);
}

TEST(TabDialog, theButtonsScrollTheRow)
{
    Tabs stage(pages(8, "width 200 fixedWidth TRUE"), Stage::Scene);
    EXPECT_EQ(stage.visibleTabs().front(), 0);
    stage.clickPart(stage.tabs, "lButtonSep");
    EXPECT_EQ(stage.visibleTabs().front(), 0);
    for (int first = 1; first < 8; ++first) {
        stage.clickPart(stage.tabs, "rButtonSep");
        EXPECT_EQ(stage.visibleTabs().front(), first);
        EXPECT_NEAR(stage.tabBox(first).getMin()[0],
                    stage.boxOf(stage.tabs, "frameSep").getMin()[0], 0.01);
    }
    stage.clickPart(stage.tabs, "rButtonSep");
    EXPECT_EQ(stage.visibleTabs(), std::vector<int>{7}) << "the last one stays";
    for (int first = 6; first >= 0; --first) {
        stage.clickPart(stage.tabs, "lButtonSep");
        EXPECT_EQ(stage.visibleTabs().front(), first);
    }
    EXPECT_EQ(stage.selected(), 0) << "scrolling selects nothing";
}

TEST(TabDialog, aButtonLooksPressedWhileItIs)
{
    Tabs stage(threePages, Stage::Scene);
    for (const auto& [part, which] : std::vector<std::pair<const char*, const char*>>{
             {"lButtonSep", "lButtonSwtch"}, {"rButtonSep", "rButtonSwtch"}}) {
        const KbVec2f place = stage.placeOf(stage.tabs, part);
        EXPECT_EQ(Stage::shown(stage.tabs, which), 0);
        stage.press(place);
        EXPECT_EQ(Stage::shown(stage.tabs, which), 1);
        stage.release(place);
        EXPECT_EQ(Stage::shown(stage.tabs, which), 0);
    }
}

TEST(TabDialog, withOneTabTheRowStays)
{
    Tabs stage(pages(1), Stage::Scene);
    stage.clickPart(stage.tabs, "rButtonSep");
    stage.clickPart(stage.tabs, "rButtonSep");
    EXPECT_EQ(stage.visibleTabs(), std::vector<int>{0});
    stage.clickPart(stage.tabs, "lButtonSep");
    EXPECT_EQ(stage.visibleTabs(), std::vector<int>{0});
}

TEST(TabDialog, withoutAPageItShowsNeitherTabsNorButtons)
{
    Tabs stage(pages(0), Stage::Both);
    EXPECT_EQ(stage.widget()->count(), 0);
    EXPECT_TRUE(stage.visibleTabs().empty());
    EXPECT_EQ(Stage::shown(stage.tabs, "lButtonSwtch"), KsSwitch::NONE);
    EXPECT_EQ(Stage::shown(stage.tabs, "rButtonSwtch"), KsSwitch::NONE);
    auto* box = new KsDialogCheckBox;
    box->label = "new";
    stage.tabs->addChild(box);
    EXPECT_EQ(stage.windowTitles(), Strings{"new"});
    EXPECT_EQ(stage.sceneTitles(), Strings{"new"});
    EXPECT_EQ(stage.visibleTabs(), std::vector<int>{0});
    EXPECT_EQ(Stage::shown(stage.tabs, "lButtonSwtch"), 0);
    stage.tabs->removeAllChildren();
    EXPECT_TRUE(stage.visibleTabs().empty());
    EXPECT_EQ(Stage::shown(stage.tabs, "rButtonSwtch"), KsSwitch::NONE);
}

// Pages come and go.

TEST(TabDialog, aPageThatIsAddedOrInsertedGetsItsTab)
{
    Tabs stage;
    stage.tabs->selectedPage = 1;
    auto* last = new KsDialogCheckBox;
    last->label = "Four";
    stage.tabs->addChild(last);
    auto* first = new KsDialogCheckBox;
    first->label = "Zero";
    stage.tabs->insertChild(first, 0);
    const Strings all{"Zero", "One", "Two", "Three", "Four"};
    EXPECT_EQ(stage.windowTitles(), all);
    EXPECT_EQ(stage.sceneTitles(), all);
    EXPECT_EQ(stage.selected(), 2) << "the page on show stays on show";
    EXPECT_EQ(stage.widget()->currentIndex(), 2);
    EXPECT_EQ(stage.child(2)->isShown3D(), 1);
    EXPECT_EQ(first->isShown3D(), 0);
    for (int i = 0; i < 5; ++i)
        EXPECT_TRUE(stage.widget()->widget(i)->isAncestorOf(stage.child(i)->getWidget()));
}

TEST(TabDialog, removingAPageDropsItsTabAndTheOthersKeepTheirTitles)
{
    Tabs stage;
    stage.tabs->selectedPage = 1;
    const QPointer<QWidget> page = stage.widget()->widget(0);
    stage.tabs->removeChild(0);
    EXPECT_FALSE(page);
    EXPECT_EQ(stage.windowTitles(), (Strings{"Two", "Three"}));
    EXPECT_EQ(stage.sceneTitles(), (Strings{"Two", "Three"}));
    EXPECT_EQ(stage.selected(), 1);
    EXPECT_EQ(stage.widget()->currentIndex(), 1);
}

TEST(TabDialog, removingTheSelectedLastPageFallsBack)
{
    Tabs stage;
    stage.tabs->selectedPage = 2;
    stage.tabs->removeChild(2);
    EXPECT_EQ(stage.selected(), 0);
    EXPECT_EQ(stage.widget()->currentIndex(), 0);
    EXPECT_EQ(stage.child(0)->isShown3D(), 1);
    stage.tabs->removeChild(1);
    stage.tabs->removeChild(0);
    EXPECT_EQ(stage.selected(), 0);
    EXPECT_EQ(stage.widget()->count(), 0);
}

TEST(TabDialog, aWindowFallsBackToThePageOfTheRemovalBefore)
{
    Tabs stage(pages(5, "selectedPage 1"), Stage::Window);
    stage.tabs->removeChild(4);
    stage.tabs->selectedPage = 3;
    stage.tabs->removeChild(3);
    EXPECT_EQ(stage.selected(), 1);
    EXPECT_EQ(stage.widget()->currentIndex(), 1);
}

TEST(TabDialog, replacingAPageReplacesItsTab)
{
    Tabs stage;
    const QPointer<QWidget> page = stage.widget()->widget(1);
    auto* box = new KsDialogCheckBox;
    box->label = "New";
    stage.tabs->replaceChild(1, box);
    EXPECT_FALSE(page);
    EXPECT_EQ(stage.windowTitles(), (Strings{"One", "New", "Three"}));
    EXPECT_EQ(stage.sceneTitles(), (Strings{"One", "New", "Three"}));
    stage.tabs->selectedPage = 1;
    EXPECT_TRUE(box->getWidget()->isVisible());
}

TEST(TabDialog, aPageThatWasHiddenIsSeenWhereItStandsNext)
{
    Tabs stage;
    const KsRef<KsDialogComponent> page(stage.child(2));
    EXPECT_EQ(page->isShown3D(), 0);
    stage.tabs->removeChild(page.get());
    EXPECT_EQ(page->isShown3D(), 1);
    stage.dialog->addChild(page.get());
    EXPECT_FALSE(stage.boxOf(stage.find<KsDialogCheckBox>("c"), "stateSep").isEmpty());
    EXPECT_TRUE(page->getWidget()->isVisible());
}

TEST(TabDialog, aControlAddedInsideAPageGetsItsWidget)
{
    Tabs stage;
    auto* box = new KsDialogCheckBox;
    box->label = "late";
    static_cast<KsRowDialog*>(stage.child(1))->addChild(box);
    ASSERT_TRUE(box->getWidget());
    EXPECT_TRUE(stage.widget()->widget(1)->isAncestorOf(box->getWidget()));
    stage.tabs->selectedPage = 1;
    QApplication::processEvents();
    EXPECT_TRUE(box->getWidget()->isVisible());
    EXPECT_FALSE(stage.boxOf(box, "stateSep").isEmpty());
}

TEST(TabDialog, aTitleFollowsTheLabelOfItsPage)
{
    Tabs stage;
    stage.child(1)->label = "Second & best";
    EXPECT_EQ(stage.windowTitles(), (Strings{"One", "Second & best", "Three"}));
    EXPECT_EQ(stage.sceneTitles(), (Strings{"One", "Second & best", "Three"}));
    EXPECT_NEAR(stage.tabBox(1).getMin()[0], stage.tabBox(0).getMax()[0], 0.01);
}

TEST(TabDialog, tellsItsMessagesInItsOwnNameButForThoseOfAnIndexToInsertAt)
{
    Tabs stage(threePages, Stage::Window);
    const KsRef<KsDialogCheckBox> box(new KsDialogCheckBox);
    const auto expect = [&](const char* where, const char* text, const std::function<void()>& act) {
        ExpectedMessages messages(where, text);
        act();
        EXPECT_EQ(messages.messages().size(), 1u) << where << ": " << text;
    };
    KsTabDialog* tabs = stage.tabs;
    expect("KsTabDialog::addChild", "NULL child node", [&] { tabs->addChild(nullptr); });
    expect("KsTabDialog::insertChild", "NULL child node", [&] { tabs->insertChild(nullptr, 0); });
    expect("KsDialogGroup::insertChild", "Index 4 is out of range 0 - 3",
           [&] { tabs->insertChild(box.get(), 4); });
    expect("KsTabDialog::removeChild", "Index 3 is out of range 0 - 2",
           [&] { tabs->removeChild(3); });
    expect("KsTabDialog::replaceChild", "Index 5 is out of range 0 - 2",
           [&] { tabs->replaceChild(5, box.get()); });
    expect("KsDialogGroup::getChild", "Index 3 is out of range 0 - 3", [&] { tabs->getChild(3); });
    EXPECT_EQ(stage.windowTitles().size(), 3u);
}

// Auditors.

TEST(TabDialog, itsAuditorsDoNotHearWhatStandsInItsPages)
{
    Tabs stage;
    Listener listener;
    BoxListener boxes;
    stage.tabs->addAuditor(&listener);
    stage.dialog->addAuditor(&boxes);
    auto* box = stage.find<KsDialogCheckBox>("a");
    Stage::clickWidget(Stage::widgetOf<QCheckBox>(box), QPoint(8, 8));
    EXPECT_TRUE(listener.heard.empty());
    EXPECT_EQ(boxes.heard, 1);
    static_cast<KsDialogGroup*>(stage.tabs)->addAuditor(&boxes);
    stage.clickTab(1);
    EXPECT_EQ(listener.heard, std::vector<int>{1});
    stage.tabs->selectedPage = 0;
    Stage::clickWidget(Stage::widgetOf<QCheckBox>(box), QPoint(8, 8));
    EXPECT_EQ(boxes.heard, 2) << "the nearest container's";
}

TEST(TabDialog, anAuditorMayChooseAnotherPage)
{
    Tabs stage;
    Listener listener;
    listener.answer = [](KsTabDialog* tabs) { tabs->selectedPage = 0; };
    stage.tabs->addAuditor(&listener);
    stage.clickTab(2);
    EXPECT_EQ(listener.heard, std::vector<int>{2});
    EXPECT_EQ(stage.widget()->currentIndex(), 0);
    EXPECT_EQ(stage.child(0)->isShown3D(), 1);
}

TEST(TabDialog, anAuditorMayDestroyTheDialog)
{
    Tabs stage;
    Listener listener;
    listener.answer = [&](KsTabDialog*) { stage.dropDialog(); };
    stage.tabs->addAuditor(&listener);
    stage.clickTab(2);
    EXPECT_EQ(listener.heard, std::vector<int>{2});
}
