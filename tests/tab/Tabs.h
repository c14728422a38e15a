#pragma once

// A dialog with tabs on the stage, and who listens to it.

#include <arborium/nodes/KsText3.h>
#include <dialog/Stage.h>

#include <QTabWidget>

inline const char* const threePages = R"(
TopLevelDialog { label "Pages" TabDialog { auditorID "tabs" width 300
    RowDialog { label "One" DialogCheckBox { auditorID "a" label "A" } }
    RowDialog { label "Two" DialogCheckBox { auditorID "b" label "B" } }
    RowDialog { label "Three" DialogCheckBox { auditorID "c" label "C" } } } })";

inline std::string pages(int count, const std::string& fields = "")
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
