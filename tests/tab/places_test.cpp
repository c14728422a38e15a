// Tab dialogs: sizes, and where what they show stands and can be met.

#include "Tabs.h"

#include <arborium/sensors/KsSensor.h>

#include <algorithm>

namespace {

constexpr int open = 32767;

struct Sizes {
    KbVec2i32 size, min, max;
};

Sizes defaultSizes(KsTabDialog* tabs)
{
    Sizes sizes;
    tabs->setChildrenLabelSize();
    tabs->setChildrenComponentSize();
    tabs->getDefaultSize(sizes.size, sizes.min, sizes.max);
    return sizes;
}

class TabSizes : public testing::Test {
protected:
    void SetUp() override { KsFormweave::init(); }
    void TearDown() override
    {
        tabs.reset();
        KsFormweave::finish();
    }
    KsDialogCheckBox* add(const char* label)
    {
        if (!tabs) tabs = new KsTabDialog;
        auto* box = new KsDialogCheckBox;
        box->label = label;
        tabs->addChild(box);
        return box;
    }
    KsRef<KsTabDialog> tabs;
};

} // namespace

TEST_F(TabSizes, withoutPagesAreNothingAndOpen)
{
    tabs = new KsTabDialog;
    const Sizes sizes = defaultSizes(tabs.get());
    EXPECT_EQ(sizes.size, KbVec2i32(0, 0));
    EXPECT_EQ(sizes.min, KbVec2i32(0, 0));
    EXPECT_EQ(sizes.max, KbVec2i32(open, open));
    EXPECT_EQ(tabs->getComponentInitSize(), KbVec2i32(10, 33));
}

TEST_F(TabSizes, takeEachNumberOfTheLargestPageAndTheMargin)
{
    KsDialogCheckBox* wide = add("wide");
    wide->width = 300;
    wide->height = 40;
    wide->maxWidth = 400;
    wide->maxHeight = 50;
    KsDialogCheckBox* high = add("high");
    high->width = 100;
    high->height = 90;
    high->minWidth = 80;
    high->minHeight = 70;
    high->maxWidth = 200;
    high->maxHeight = 100;
    tabs->margin = 5;
    const Sizes sizes = defaultSizes(tabs.get());
    EXPECT_EQ(sizes.size, KbVec2i32(310, 100));
    EXPECT_EQ(sizes.min[1], 80);
    EXPECT_EQ(sizes.max, KbVec2i32(410, 110));
}

TEST_F(TabSizes, stayOpenWhereTheMarginWouldPassTheLimit)
{
    KsDialogCheckBox* box = add("large");
    tabs->margin = 10;
    box->maxWidth = open - 40;
    box->maxHeight = open - 39;
    EXPECT_EQ(defaultSizes(tabs.get()).max, KbVec2i32(open - 20, open));
}

TEST_F(TabSizes, theLargestPageDoesNotGrowByTheMarginOfItsTabs)
{
    const KbVec2i32 box = add("box")->getComponentInitSize();
    tabs->margin = 200; // twice that is more than the page
    EXPECT_EQ(tabs->getComponentInitSize(), KbVec2i32(410, 433));
    tabs->resetSize();
    tabs->margin = 1;
    EXPECT_EQ(tabs->getComponentInitSize(), box + KbVec2i32(10, 33));
}

TEST_F(TabSizes, aPageWithoutALabelHasTheLabelZoneOfThePageBefore)
{
    KsDialogCheckBox* first = add("a long label");
    KsDialogCheckBox* second = add("another, which is even longer");
    second->labelVisibility = false;
    KsDialogCheckBox* third = add("short");
    tabs->setChildrenLabelSize();
    tabs->setChildrenComponentSize();
    const auto labelZone = [](KsDialogCheckBox* box) {
        KbVec2i32 size, place;
        box->width = 500;
        box->labelVisibility = true;
        box->get2DComponentSize(size, place);
        return place[0];
    };
    EXPECT_EQ(labelZone(second), labelZone(first));
    EXPECT_LT(labelZone(third), labelZone(first));
}

TEST(TabPlaces, ofTheSceneFollowTheSizeOfTheDialog)
{
    Tabs stage(pages(2, "width 300 height 200"), Stage::Scene);
    stage.draw();
    const KbVec3f middle = stage.boxOf(stage.tabs, "edgeStyleSwitch").getCenter();
    const KbBox3f frame = stage.boxOf(stage.tabs, "frameSep");
    EXPECT_NEAR(frame.getSize()[0], 294, 0.01);
    EXPECT_NEAR(frame.getSize()[1], 174, 0.01);
    EXPECT_NEAR(frame.getCenter()[1], middle[1] - 10, 0.01);
    const KbVec3f left = stage.boxOf(stage.tabs, "lButtonSep").getCenter();
    const KbVec3f right = stage.boxOf(stage.tabs, "rButtonSep").getCenter();
    EXPECT_NEAR(right[0] - left[0], 16, 0.01);
    EXPECT_NEAR(left[0] - middle[0], 294 / 2 - 26, 0.01);
    EXPECT_NEAR(left[1] - middle[1], 200 / 2 - 13, 0.01);
    EXPECT_NEAR(stage.tabBox(0).getMin()[0], frame.getMin()[0], 0.01);
    // The page stands within the frame.
    const KbBox3f page = stage.boxOf(stage.child(0), "edgeStyleSwitch");
    EXPECT_GE(page.getMin()[0], frame.getMin()[0]);
    EXPECT_LE(page.getMax()[0], frame.getMax()[0]);
    EXPECT_GE(page.getMin()[1], frame.getMin()[1]);
    EXPECT_LE(page.getMax()[1], frame.getMax()[1]);
}

TEST(TabPlaces, areAlongTheTopWhateverTheLocationOfTheTabs)
{
    for (const char* location : {"TOP", "BOTTOM", "LEFT", "RIGHT"}) {
        Tabs stage(pages(3, std::string("width 300 height 200 tabsLocation ") + location));
        EXPECT_EQ(stage.widget()->tabPosition(), QTabWidget::North) << location;
        const float top = stage.boxOf(stage.tabs, "frameSep").getMax()[1];
        for (int i = 0; i < 3; ++i) {
            EXPECT_GT(stage.tabBox(i).getMax()[1], top) << location;
            EXPECT_LT(stage.tabBox(i).getMin()[1], top + 0.01f) << location;
        }
    }
}

TEST(TabPlaces, nothingOfAHiddenPageCanBeMet)
{
    Tabs stage("TopLevelDialog { TabDialog { auditorID \"tabs\" width 300 "
               "RowDialog { label \"One\" DialogLabel { label \"Nothing to click\" } } "
               "RowDialog { label \"Two\" DialogCheckBox { auditorID \"box\" label \"A\" } } } }");
    auto* box = stage.find<KsDialogCheckBox>("box");
    stage.tabs->selectedPage = 1;
    QApplication::processEvents();
    const KbVec2f inScene = stage.placeOf(box, "stateSep");
    const QWidget* frame = box->getWidget();
    QWidget* window = stage.dialog->getBaseWidget();
    const QPoint inWindow = Stage::widgetOf<QCheckBox>(box)->mapTo(window, QPoint(8, 8));
    ASSERT_TRUE(frame->isVisible());
    stage.click(inScene);
    EXPECT_TRUE(box->state);

    stage.tabs->selectedPage = 0;
    QApplication::processEvents();
    stage.draw();
    stage.click(inScene);
    EXPECT_TRUE(box->state) << "the page before it takes the click";
    QWidget* met = window->childAt(inWindow);
    ASSERT_TRUE(met);
    Stage::clickWidget(met, met->mapFrom(window, inWindow));
    EXPECT_TRUE(box->state);
    EXPECT_FALSE(frame->isVisible());
}

TEST(TabPlaces, nothingOfATabThatIsCutOffCanBeMet)
{
    Tabs stage(pages(8, "width 200 fixedWidth TRUE"), Stage::Scene);
    const float edge = stage.boxOf(stage.tabs, "buttonsSep").getMin()[0];
    const int cut = stage.visibleTabs().back();
    const KbBox3f box = stage.tabBox(cut);
    ASSERT_GT(box.getMax()[0], edge);
    const float y = box.getCenter()[1] + Stage::viewHeight;
    for (float x = edge + 1; x < box.getMax()[0]; x += 2) {
        stage.click(KbVec2f(x, y));
        EXPECT_EQ(stage.selected(), 0) << x;
    }
    // Nor of the tabs that are scrolled out on the left.
    const KbVec2f before(stage.tabBox(0).getMin()[0] - 5, y);
    stage.clickPart(stage.tabs, "rButtonSep");
    stage.click(before);
    EXPECT_EQ(stage.selected(), 0);
}

// Who is told.

TEST(TabDialog, noAuditorHearsOfABuildOfAnInsertionOrOfATitle)
{
    Tabs stage(pages(3, "selectedPage 1"), Stage::Scene);
    Listener listener;
    stage.tabs->addAuditor(&listener);
    stage.dialog->buildDialog();
    stage.dialog->show();
    QApplication::processEvents();
    EXPECT_EQ(stage.selected(), 1) << "the window takes the page of the file";
    stage.child(0)->label = "Another title";
    stage.tabs->insertChild(new KsDialogCheckBox, 0);
    EXPECT_EQ(stage.selected(), 2) << "the same page as before";
    EXPECT_EQ(stage.widget()->currentIndex(), 2);
    EXPECT_TRUE(listener.heard.empty());
    stage.clickTab(0);
    EXPECT_EQ(listener.heard, std::vector<int>{0});
}

TEST(TabDialog, ofEveryWindowOfTheDialogsLifeShowsTheSamePage)
{
    Tabs stage(pages(3));
    stage.clickTab(2);
    delete stage.dialog->getBaseWidget();
    stage.dialog->buildDialog();
    EXPECT_EQ(stage.widget()->currentIndex(), 2);
    EXPECT_EQ(stage.child(2)->isShown3D(), 1);
    delete stage.dialog->getBaseWidget();
}

TEST(TabDialog, aChangeOfPageTouchesOnlyTheTwoPages)
{
    Tabs stage(pages(40, "width 250"));
    std::vector<int> touched(40, 0);
    std::vector<std::unique_ptr<KsNodeSensor>> sensors;
    const std::vector<KsSwitch*> row = stage.sceneTabs();
    const auto listen = [&](KsNode* node, int& count) {
        sensors.push_back(std::make_unique<KsNodeSensor>(
            [](void* data, KsSensor*) { ++*static_cast<int*>(data); }, &count));
        sensors.back()->setPriority(0);
        sensors.back()->attach(node);
    };
    for (int i = 0; i < 40; ++i) {
        int& count = touched[static_cast<std::size_t>(i)];
        listen(stage.child(i), count);
        listen(row[static_cast<std::size_t>(i)], count);
    }
    stage.tabs->selectedPage = 2;
    EXPECT_GT(touched[0], 0);
    EXPECT_GT(touched[2], 0);
    touched[0] = touched[2] = 0;
    EXPECT_EQ(std::count(touched.begin(), touched.end(), 0), 40);
    stage.tabs->selectedPage = 2;
    EXPECT_EQ(std::count(touched.begin(), touched.end(), 0), 40) << "the same page again";
}
