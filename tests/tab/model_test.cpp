// Random operations on a tab dialog that is shown as a window and in a scene, against a plain list.

#include "Tabs.h"

#include <algorithm>
#include <random>

namespace {

class Model {
public:
    explicit Model(unsigned seed)
        : m_random(seed), m_stage("TopLevelDialog { TabDialog { auditorID \"tabs\" width 260 } }")
    {}

    void play(int steps)
    {
        for (int i = 0; i < steps && !testing::Test::HasFailure(); ++i) {
            step();
            check();
        }
    }

private:
    int below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(m_random); }
    int count() const { return static_cast<int>(m_pages.size()); }

    KsDialogComponent* makePage()
    {
        const std::string title = "Page " + std::to_string(m_made++);
        KsDialogComponent* page = nullptr;
        if (below(3) == 0) {
            auto* group = new KsRowDialog;
            group->addChild(new KsDialogCheckBox);
            page = group;
        } else if (below(6) == 0) {
            auto* inner = new KsTabDialog;
            for (int i = below(3); i >= 0; --i) inner->addChild(new KsDialogCheckBox);
            page = inner;
        } else {
            page = new KsDialogCheckBox;
        }
        page->label = title.c_str();
        return page;
    }

    void step()
    {
        KsTabDialog* tabs = m_stage.tabs;
        const auto at = [this](int index) { return m_pages.begin() + index; };
        const int what = below(12);
        const KsDialogComponent* shown = count() ? tabs->getChild(m_stage.selected()) : nullptr;
        if (what < 3 || !count()) {
            m_pages.push_back(makePage());
            tabs->addChild(m_pages.back());
            EXPECT_TRUE(!shown || tabs->getChild(m_stage.selected()) == shown);
        } else if (what < 5) {
            const int index = below(count() + 1);
            m_pages.insert(at(index), makePage());
            tabs->insertChild(m_pages[static_cast<std::size_t>(index)], index);
            EXPECT_EQ(tabs->getChild(m_stage.selected()), shown);
        } else if (what < 8) {
            const int index = below(count());
            m_pages.erase(at(index));
            tabs->removeChild(index);
        } else if (what < 9) {
            const int index = below(count());
            m_pages[static_cast<std::size_t>(index)] = makePage();
            tabs->replaceChild(index, m_pages[static_cast<std::size_t>(index)]);
            EXPECT_EQ(tabs->getChild(index), m_pages[static_cast<std::size_t>(index)]);
        } else if (what < 10) {
            tabs->selectedPage = below(count());
        } else if (what < 11) {
            const int index = below(count());
            m_stage.clickTab(index);
            EXPECT_EQ(m_stage.selected(), index);
        } else if (below(8) == 0) {
            m_pages.clear();
            tabs->removeAllChildren();
        } else {
            const std::vector<int> visible = m_stage.visibleTabs();
            const int index = visible[static_cast<std::size_t>(below(int(visible.size())))];
            m_stage.click3DTab(index);
            EXPECT_EQ(m_stage.selected(), index);
        }
    }

    void check()
    {
        Stage::settle();
        m_stage.draw();
        Strings titles;
        for (KsDialogComponent* page : m_pages) titles.push_back(page->label.getValue().toUtf8());
        EXPECT_EQ(m_stage.windowTitles(), titles);
        if (count()) {
            EXPECT_EQ(m_stage.sceneTitles(), titles);
        }
        const int selected = m_stage.selected();
        EXPECT_GE(selected, 0);
        EXPECT_LT(selected, std::max(count(), 1));
        EXPECT_EQ(m_stage.widget()->currentIndex(), count() ? selected : -1);
        for (int i = 0; i < count(); ++i) {
            KsDialogComponent* page = m_pages[static_cast<std::size_t>(i)];
            EXPECT_EQ(m_stage.tabs->getChild(i), page);
            EXPECT_EQ(page->isShown3D(), i == selected) << i;
            ASSERT_TRUE(page->getWidget()) << i;
            EXPECT_EQ(page->getWidget()->isVisible(), i == selected) << i;
            EXPECT_TRUE(m_stage.widget()->widget(i)->isAncestorOf(page->getWidget())) << i;
        }
        const std::vector<int> visible = m_stage.visibleTabs();
        EXPECT_EQ(visible.empty(), count() == 0);
        for (std::size_t i = 1; i < visible.size(); ++i) EXPECT_EQ(visible[i], visible[i - 1] + 1);
    }

    std::mt19937 m_random;
    Tabs m_stage;
    std::vector<KsDialogComponent*> m_pages;
    int m_made = 0;
};

} // namespace

TEST(TabModel, anyOperationsLeaveWindowAndSceneAsTheListIs)
{
    for (unsigned seed : {1u, 2u, 3u}) {
        SCOPED_TRACE(seed);
        Model(seed).play(400);
    }
}
