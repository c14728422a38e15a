// Tab dialogs: pages, tabs and the selection, in windows and in scenes.

#include <arborium/actions/KsWriteAction.h>
#include <arborium/io/KsOutput.h>
#include <arborium/nodes/KsText3.h>
#include <dialog/Stage.h>

#include <MessageGuard.h>
#include <QTabWidget>

namespace {

const char* const threePages = R"(
TopLevelDialog { label "Pages" TabDialog { auditorID "tabs" width 300
    RowDialog { label "One" DialogCheckBox { auditorID "a" label "A" } }
    RowDialog { label "Two" DialogCheckBox { auditorID "b" label "B" } }
    RowDialog { label "Three" DialogCheckBox { auditorID "c" label "C" } } } })";

std::string pages(int count, const std::string& fields = "")
{
    std::string text = "TopLevelDialog { TabDialog { auditorID \"tabs\" " + fields;
    for (int i = 0; i < count; ++i)
        text += " DialogCheckBox { label \"Page " + std::to_string(i) + "\" }";
    return text + " } }";
}

class Listener : public KsTabDialogAuditor {
public:
    void tabDialog(KsTabDialog* dialog) override
    {
        heard.push_back(dialog->selectedPage);
        if (answer) answer(dialog);
    }
    std::vector<int> heard;
    std::function<void(KsTabDialog*)> answer;
};

class BoxListener : public KsDialogAuditor {
public:
    void dialogCheckBox(KsDialogCheckBox*) override { ++heard; }
    int heard = 0;
};

/// A dialog with tabs on the stage.
class Tabs : public Stage {
public:
    explicit Tabs(const std::string& text = threePages, Road road = Both) : Stage(text, road)
    {
        tabs = find<KsTabDialog>("tabs");
        EXPECT_TRUE(tabs);
    }
    QTabWidget* widget() const { return widgetOf<QTabWidget>(tabs); }
    std::vector<std::string> windowTitles() const
    {
        std::vector<std::string> titles;
        for (int i = 0; i < widget()->count(); ++i)
            titles.push_back(widget()->tabText(i).toStdString());
        return titles;
    }
    void clickTab(int index)
    {
        QTabBar* bar = widget()->tabBar();
        QTest::mouseClick(bar, Qt::LeftButton, Qt::NoModifier, bar->tabRect(index).center());
    }
    /// The switches of the tabs that are there, in order.
    std::vector<KsSwitch*> sceneTabs() const
    {
        std::vector<KsSwitch*> found;
        auto* all = ksCast<KsGroup>(tabs->getAnyPart("pagesSep", false));
        for (int i = 0; all && i < all->getNumChildren(); ++i)
            if (auto* tab = ksCast<KsSwitch>(all->getChild(i))) found.push_back(tab);
        return found;
    }
    /// Where each tab is drawn that is shown, cut or not.
    KbBox3f tabBox(int index)
    {
        draw();
        KsSearchAction search;
        search.setNode(sceneTabs().at(static_cast<std::size_t>(index)));
        search.setSearchingAll(true);
        search.apply(dialog.get());
        KsGetBoundingBoxAction action(KbViewportRegion(viewWidth, viewHeight));
        if (search.getPath()) action.apply(search.getPath());
        return action.getBoundingBox();
    }
    std::vector<int> visibleTabs() const
    {
        std::vector<int> visible;
        const std::vector<KsSwitch*> all = sceneTabs();
        for (std::size_t i = 0; i < all.size(); ++i)
            if (all[i]->whichChild.getValue() == KsSwitch::ALL)
                visible.push_back(static_cast<int>(i));
        return visible;
    }
    std::vector<std::string> sceneTitles() const
    {
        std::vector<std::string> titles;
        for (KsSwitch* tab : sceneTabs()) {
            KsSearchAction search;
            search.setType(KsText3::getClassTypeId(), true);
            search.setInterest(KsSearchAction::LAST);
            search.setSearchingAll(true);
            search.apply(tab);
            KsPath* path = search.getPath();
            auto* text = path ? ksCast<KsText3>(path->getTail()) : nullptr;
            titles.push_back(text && text->string.getNum() ? text->string[0].toUtf8() : "");
        }
        return titles;
    }
    /// At the left end of a tab, where it is not cut off.
    bool click3DTab(int index)
    {
        const KbBox3f box = tabBox(index);
        EXPECT_FALSE(box.isEmpty());
        return click(KbVec2f(box.getMin()[0] + 4, box.getCenter()[1] + viewHeight));
    }
    KsDialogComponent* child(int index) { return tabs->getChild(index); }
    int selected() const { return tabs->selectedPage; }

    KsTabDialog* tabs;
};

using Strings = std::vector<std::string>;

} // namespace

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
    EXPECT_EQ(stage.windowTitles(), (Strings{"One", "Second && best", "Three"}))
        << "no shortcut is made of it";
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

// Where it stands, and what goes on around it.

namespace {

const char* const nested = R"(
TopLevelDialog { label "Nest" TabDialog { auditorID "tabs" width 300
    RowDialog { label "First" DialogCheckBox { auditorID "a" label "A" } }
    TabDialog { label "Inner" auditorID "inner" selectedPage 1
        RowDialog { label "X" DialogCheckBox { auditorID "x" label "X" } }
        RowDialog { label "Y" DialogCheckBox { auditorID "y" label "Y" }
            DialogComboBox { auditorID "combo" label "C" items [ "1", "2" ] } } } } })";

bool isDrawn(Tabs& stage, const char* id)
{
    stage.draw();
    return !stage.boxOf(stage.find<KsDialogComponent>(id), "frameSep").isEmpty();
}

} // namespace

TEST(TabDialogsInEachOther, showThePageOfThePage)
{
    Tabs stage(nested);
    auto* inner = stage.find<KsTabDialog>("inner");
    EXPECT_TRUE(isDrawn(stage, "a"));
    EXPECT_FALSE(isDrawn(stage, "x"));
    EXPECT_FALSE(isDrawn(stage, "y"));
    stage.tabs->selectedPage = 1;
    EXPECT_FALSE(isDrawn(stage, "a"));
    EXPECT_FALSE(isDrawn(stage, "x"));
    EXPECT_TRUE(isDrawn(stage, "y"));
    QApplication::processEvents();
    EXPECT_TRUE(stage.find<KsDialogComponent>("y")->getWidget()->isVisible());
    stage.tabs->selectedPage = 0;
    inner->selectedPage = 0;
    EXPECT_FALSE(isDrawn(stage, "x")) << "its own page is hidden";
    stage.tabs->selectedPage = 1;
    EXPECT_TRUE(isDrawn(stage, "x"));
    EXPECT_FALSE(isDrawn(stage, "y"));
    auto* box = stage.find<KsDialogCheckBox>("x");
    stage.clickPart(box, "stateSep");
    EXPECT_TRUE(box->state);
}

TEST(TabDialogsInEachOther, standOnTopOfEachOtherAlsoWhenTheyAreBuiltOutOfSight)
{
    // The same pages, once built in sight and once built behind the first page.
    Tabs shown(nested, Stage::Scene), hidden(nested, Stage::Scene);
    shown.tabs->selectedPage = 1;
    shown.dialog->updateAfterSceneGraphChange();
    hidden.dialog->updateAfterSceneGraphChange();
    hidden.tabs->selectedPage = 1;
    shown.draw();
    hidden.draw();
    const KbBox3f a = shown.boxOf(shown.find<KsDialogCheckBox>("y"), "stateSep");
    const KbBox3f b = hidden.boxOf(hidden.find<KsDialogCheckBox>("y"), "stateSep");
    ASSERT_FALSE(a.isEmpty());
    for (int axis = 0; axis < 3; ++axis) {
        EXPECT_NEAR(a.getMin()[axis], b.getMin()[axis], 0.01);
        EXPECT_NEAR(a.getMax()[axis], b.getMax()[axis], 0.01);
    }
    EXPECT_GT(b.getMin()[2], shown.boxOf(shown.tabs, "frameSep").getMax()[2] - 0.01);
}

TEST(TabDialogsInEachOther, toAnyDepthOnlyAsFarAsAWindowBearsIt)
{
    std::string text = "TopLevelDialog { ";
    for (int i = 0; i < 200; ++i) text += "TabDialog { auditorID \"tabs\" label \"in\" ";
    for (int i = 0; i <= 200; ++i) text += "} ";
    KsFormweave::init();
    {
        KsInput in;
        in.setBuffer(text.data(), text.size());
        ExpectedMessages messages;
        messages.allow("KsTabDialog::buildWidget", "deep in each other");
        const KsRef<KsSeparator> root(KsDB::readAll(&in));
        ASSERT_TRUE(root);
        const KsRef<KsTopLevelDialog> dialog(ksCast<KsTopLevelDialog>(root->getChild(0)));
        dialog->buildDialog();
        EXPECT_FALSE(messages.messages().empty());
        delete dialog->getBaseWidget();
    }
    KsFormweave::finish();
}

TEST(TabDialog, itsPagesGoWithThePanel)
{
    Tabs stage(threePages, Stage::Scene);
    auto* a = stage.find<KsDialogCheckBox>("a");
    auto* b = stage.find<KsDialogCheckBox>("b");
    const KbBox3f before = stage.boxOf(a, "stateSep");
    stage.dialog->position3D = KbVec3f(40, 30, 0);
    stage.draw();
    EXPECT_NEAR(stage.boxOf(a, "stateSep").getMin()[0], before.getMin()[0] + 40, 0.01);
    stage.tabs->selectedPage = 1;
    stage.draw();
    const KbBox3f after = stage.boxOf(b, "stateSep");
    EXPECT_NEAR(after.getMin()[0], before.getMin()[0] + 40, 0.01) << "also the hidden one";
    EXPECT_NEAR(after.getMin()[1], before.getMin()[1] - 30, 0.01);
    EXPECT_NEAR(after.getMin()[2], before.getMin()[2], 0.01);
}

TEST(TabDialog, aMinimisedPanelShowsNoPageAndAfterwardsTheSelectedOne)
{
    Tabs stage(threePages, Stage::Scene);
    stage.dialog->minimized = true;
    for (const char* id : {"a", "b", "c"}) EXPECT_FALSE(isDrawn(stage, id));
    stage.tabs->selectedPage = 2;
    for (const char* id : {"a", "b", "c"}) EXPECT_FALSE(isDrawn(stage, id)) << "still a strip";
    stage.dialog->minimized = false;
    EXPECT_FALSE(isDrawn(stage, "a"));
    EXPECT_TRUE(isDrawn(stage, "c"));
}

TEST(TabDialog, whatIsOpenInAPageClosesWithThePage)
{
    Tabs stage(nested, Stage::Scene);
    stage.tabs->selectedPage = 1;
    auto* combo = stage.find<KsDialogComboBox>("combo");
    stage.clickPart(combo, "buttonSep");
    EXPECT_EQ(Stage::shown(combo, "itemsSwitch"), KsSwitch::ALL);
    stage.tabs->selectedPage = 0;
    EXPECT_EQ(Stage::shown(combo, "itemsSwitch"), KsSwitch::NONE);
    stage.tabs->selectedPage = 1;
    stage.clickPart(combo, "buttonSep");
    stage.click3DTab(0);
    EXPECT_EQ(stage.selected(), 0);
    EXPECT_EQ(Stage::shown(combo, "itemsSwitch"), KsSwitch::NONE);
}

TEST(TabDialog, aDisabledOneCannotBeUsed)
{
    for (const char* where : {"enable FALSE", ""}) {
        const bool own = where[0];
        Tabs stage(std::string("TopLevelDialog { RowDialog { auditorID \"row\" ") +
                   (own ? "" : "enable FALSE ") + "TabDialog { auditorID \"tabs\" width 300 " +
                   where +
                   " DialogCheckBox { auditorID \"a\" label \"One\" } "
                   "DialogCheckBox { auditorID \"b\" label \"Two\" } } } }");
        stage.clickTab(1);
        EXPECT_EQ(stage.selected(), 0);
        stage.click3DTab(1);
        EXPECT_EQ(stage.selected(), 0);
        EXPECT_TRUE(stage.child(0)->enable) << "its pages keep their own state";
        if (own)
            stage.tabs->enable = true;
        else
            stage.find<KsRowDialog>("row")->enable = true;
        stage.clickTab(1);
        EXPECT_EQ(stage.selected(), 1);
        stage.click3DTab(0);
        EXPECT_EQ(stage.selected(), 0);
    }
}

TEST(TabDialog, ofManyPagesIsOneRowThatScrolls)
{
    Tabs stage(pages(200, "width 250 selectedPage 150"));
    EXPECT_EQ(stage.selected(), 150);
    EXPECT_EQ(stage.widget()->count(), 200);
    EXPECT_EQ(stage.sceneTabs().size(), 200u);
    EXPECT_LT(stage.visibleTabs().size(), 8u);
    stage.tabs->removeAllChildren();
    EXPECT_EQ(stage.widget()->count(), 0);
    EXPECT_TRUE(stage.visibleTabs().empty());
    EXPECT_EQ(stage.selected(), 0);
}

TEST(TabDialog, removingPagesBeforeTheFirstVisibleOneKeepsTheRowInView)
{
    Tabs stage(pages(8, "width 200 fixedWidth TRUE"), Stage::Scene);
    for (int i = 0; i < 7; ++i) stage.clickPart(stage.tabs, "rButtonSep");
    EXPECT_EQ(stage.visibleTabs(), std::vector<int>{7});
    for (int count = 7; count > 0; --count) {
        stage.tabs->removeChild(0);
        ASSERT_FALSE(stage.visibleTabs().empty());
        EXPECT_EQ(stage.visibleTabs().back(), count - 1);
    }
}

TEST(TabDialog, whereNoTabFitsTheFirstOneIsCut)
{
    Tabs stage("TopLevelDialog { TabDialog { auditorID \"tabs\" width 60 fixedWidth TRUE "
               "DialogCheckBox { label \"A title that is far too long\" width 20 } "
               "DialogCheckBox { label \"Another one as long as that\" width 20 } } }",
               Stage::Scene);
    EXPECT_EQ(stage.visibleTabs(), std::vector<int>{0});
    stage.clickPart(stage.tabs, "rButtonSep");
    EXPECT_EQ(stage.visibleTabs(), std::vector<int>{1});
}

TEST(TabDialog, titlesMayBeEmptyLongOrOfAnyScript)
{
    Tabs stage;
    stage.child(0)->label = "";
    stage.child(1)->label = u"\u0416\u4e2d\u6587 two\nlines";
    stage.child(2)->label = KbString(std::string(100000, 'w'));
    stage.draw();
    EXPECT_NEAR(stage.tabBox(0).getSize()[0], 39, 0.01);
    EXPECT_EQ(stage.sceneTitles()[1], u8"\u0416\u4e2d\u6587 two lines") << "a tab is one line";
    EXPECT_NEAR(stage.tabBox(1).getSize()[1], 20, 0.01);
    EXPECT_LT(stage.windowTitles()[2].size(), 100000u);
}

TEST(TabDialog, aWindowThatWentIsBuiltAnewWithItsPages)
{
    Tabs stage(threePages, Stage::Window);
    delete stage.dialog->getBaseWidget();
    auto* box = new KsDialogCheckBox;
    box->label = "More";
    stage.tabs->addChild(box);
    stage.tabs->selectedPage = 1;
    stage.dialog->buildDialog();
    EXPECT_EQ(stage.windowTitles(), (Strings{"One", "Two", "Three", "More"}));
    EXPECT_EQ(stage.widget()->currentIndex(), 1);
    delete stage.dialog->getBaseWidget();
}

TEST(TabDialog, aLaterBuildKeepsTheTabWidgetWhereTheWindowPutIt)
{
    Tabs stage(threePages, Stage::Window);
    stage.dialog->getBaseWidget()->resize(500, 400);
    QApplication::processEvents();
    const QPointer<QTabWidget> widget = stage.widget();
    const QSize size = stage.tabs->getWidget()->size();
    stage.dialog->updateDialogBuild(1);
    stage.dialog->getBaseWidget()->resize(500, 400);
    QApplication::processEvents();
    EXPECT_EQ(stage.widget(), widget);
    EXPECT_EQ(stage.tabs->getWidget()->size(), size);
    EXPECT_EQ(widget->size(), size - QSize(6, 6));
}

TEST(TabDialog, aControlOfAPageFillsThePage)
{
    Tabs stage(threePages, Stage::Window);
    auto* box = stage.find<KsDialogCheckBox>("a");
    const QWidget* page = stage.widget()->widget(0);
    EXPECT_GT(box->getWidget()->width(), page->width() / 2);
    EXPECT_TRUE(box->getWidget()->isVisible());
}

TEST(TabDialog, standsAloneInAScene)
{
    KsFormweave::init();
    {
        const KsRef<KsTabDialog> tabs(new KsTabDialog);
        for (const char* title : {"One", "Two"}) {
            auto* box = new KsDialogCheckBox;
            box->label = title;
            tabs->addChild(box);
        }
        KsGetBoundingBoxAction action(KbViewportRegion(800, 600));
        action.apply(tabs.get());
        EXPECT_FALSE(action.getBoundingBox().isEmpty());
        auto* third = new KsDialogCheckBox;
        tabs->addChild(third);
        EXPECT_TRUE(third->isBuilt3D());
        EXPECT_EQ(third->isShown3D(), 0);
        tabs->selectedPage = 2;
        EXPECT_EQ(third->isShown3D(), 1);
        tabs->removeChild(third);
        EXPECT_EQ(tabs->selectedPage, 0);
    }
    KsFormweave::finish();
}

TEST(TabDialog, aCopyIsBuiltAsTheOriginalWas)
{
    Tabs stage;
    stage.tabs->selectedPage = 2;
    const KsRef<KsTabDialog> copy(static_cast<KsTabDialog*>(stage.tabs->copy()));
    ASSERT_TRUE(copy);
    EXPECT_EQ(copy->getNumChildren(), 3);
    EXPECT_EQ(copy->selectedPage, 2);
    stage.dialog->addChild(copy.get());
    EXPECT_EQ(Tabs::widgetOf<QTabWidget>(copy.get())->currentIndex(), 2);
    EXPECT_EQ(copy->getChild(2)->isShown3D(), 1);
}

TEST(TabDialog, whatIsWrittenReadsBack)
{
    KsFormweave::init();
    {
        const auto write = [](KsNode* node) {
            KsOutput out;
            KsWriteAction action(&out);
            action.apply(node);
            return std::string(out.getBuffer());
        };
        const auto read = [](const std::string& text) {
            KsInput in;
            in.setBuffer(text.data(), text.size());
            return KsRef<KsSeparator>(KsDB::readAll(&in));
        };
        const auto root = read("TabDialog { selectedPage 1 tabsLocation LEFT margin 3 "
                               "RowDialog { label \"a\" } TabDialog { label \"b\" } }");
        ASSERT_TRUE(root);
        const std::string text = write(root->getChild(0));
        EXPECT_NE(text.find("tabsLocation LEFT"), std::string::npos) << text;
        const auto again = read(text);
        ASSERT_TRUE(again);
        EXPECT_EQ(write(again->getChild(0)), text);
    }
    KsFormweave::finish();
}

TEST(TabDialog, anAuditorMayRemoveThePageThatWasClicked)
{
    Tabs stage;
    Listener listener;
    listener.answer = [](KsTabDialog* tabs) { tabs->removeChild(tabs->selectedPage); };
    stage.tabs->addAuditor(&listener);
    stage.clickTab(2);
    Stage::settle();
    EXPECT_EQ(stage.windowTitles(), (Strings{"One", "Two"}));
    EXPECT_EQ(stage.sceneTitles(), (Strings{"One", "Two"}));
    EXPECT_EQ(stage.selected(), stage.widget()->currentIndex());
    EXPECT_EQ(listener.heard, std::vector<int>{2});
}

TEST(TabDialog, aControlMayRemoveItsOwnPage)
{
    struct Remover : KsDialogAuditor {
        void dialogCheckBox(KsDialogCheckBox*) override { tabs->removeChild(0); }
        KsTabDialog* tabs = nullptr;
    } remover;
    Tabs stage;
    remover.tabs = stage.tabs;
    stage.dialog->addAuditor(&remover);
    Stage::clickWidget(Stage::widgetOf<QCheckBox>(stage.find<KsDialogCheckBox>("a")), QPoint(8, 8));
    Stage::settle();
    EXPECT_EQ(stage.windowTitles(), (Strings{"Two", "Three"}));
    stage.clickPart(stage.find<KsDialogCheckBox>("b"), "stateSep");
    EXPECT_EQ(stage.sceneTitles(), Strings{"Three"});
    stage.dialog->removeAuditor(&remover);
}
