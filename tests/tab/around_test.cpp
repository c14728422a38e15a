// Tab dialogs in each other and in panels, and what goes on around them.

#include "Tabs.h"

#include <arborium/actions/KsWriteAction.h>
#include <arborium/io/KsOutput.h>

#include <MessageGuard.h>

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
