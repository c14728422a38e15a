// Random changes of a dialog against a plain tree that says what has to be there: in the lists of
// the containers, in the Qt layouts and in the scene.

#include "Trees.h"

#include <arborium/nodes/KsText3.h>

#include <iostream>
#include <random>

namespace {

enum class Kind { Dialog, Rows, Columns, Box };

/// What has to be there.
struct Item {
    Kind kind = Kind::Box;
    std::string label;
    bool state = false;
    bool enabled = true;
    KsRef<KsFormweave> node;
    Item* parent = nullptr;
    std::vector<std::unique_ptr<Item>> children;

    bool isContainer() const { return kind != Kind::Box; }
    int indexInParent() const
    {
        for (std::size_t i = 0; i < parent->children.size(); ++i)
            if (parent->children[i].get() == this) return static_cast<int>(i);
        return -1;
    }
    bool isIn(const Item* other) const { return this == other || (parent && parent->isIn(other)); }
    bool isEnabledInTree() const { return enabled && (!parent || parent->isEnabledInTree()); }
    void collect(std::vector<Item*>& all)
    {
        all.push_back(this);
        for (const auto& child : children) child->collect(all);
    }
    int depth() const { return parent ? parent->depth() + 1 : 0; }
    int height() const
    {
        int most = 0;
        for (const auto& child : children) most = std::max(most, child->height());
        return most + 1;
    }
};

struct Presentations {
    bool inWindow, inScene;
};

class Model : public Trees, public testing::WithParamInterface<Presentations> {
protected:
    static constexpr unsigned seed = 20261121;
    static constexpr int numOperations = 3000;
    static constexpr int mostItems = 26;
    static constexpr int mostDepth = 5;

    void SetUp() override
    {
        Trees::SetUp();
        std::cout << "seed " << seed << "\n";
        root.kind = Kind::Dialog;
        root.node = dialog.get();
        dialog->windowResizedByChildren = true;
    }
    void TearDown() override
    {
        // The rest stands in the dialog.
        root.children.clear();
        root.node.reset();
        pool.clear();
        Trees::TearDown();
    }

    int upTo(int n) { return n > 0 ? static_cast<int>(random() % static_cast<unsigned>(n)) : 0; }
    bool chance(int percent) { return upTo(100) < percent; }

    std::vector<Item*> items(bool (*wanted)(const Item*), bool pooled = false)
    {
        std::vector<Item*> all, found;
        root.collect(all);
        if (pooled) {
            for (const auto& item : pool) item->collect(all);
        }
        for (Item* item : all)
            if (wanted(item)) found.push_back(item);
        return found;
    }
    Item* any(const std::vector<Item*>& from)
    {
        return from.empty() ? nullptr
                            : from[static_cast<std::size_t>(upTo(static_cast<int>(from.size())))];
    }
    Item* anyContainer(const Item* outside = nullptr, int height = 1)
    {
        std::vector<Item*> fitting;
        for (Item* item : items([](const Item* i) { return i->isContainer(); }))
            if (!(outside && item->isIn(outside)) && item->depth() + height <= mostDepth)
                fitting.push_back(item);
        return any(fitting);
    }
    Item* anyChild()
    {
        return any(items([](const Item* i) { return i->parent != nullptr; }));
    }

    std::string anyLabel()
    {
        static const char* const labels[] = {"", "a", "a longer label", "two\\nlines",
                                             "the label that is the longest of all"};
        return labels[upTo(5)];
    }
    /// A new element, or one that was removed earlier.
    std::unique_ptr<Item> anyItem()
    {
        if (!pool.empty() && chance(40)) {
            const auto index = upTo(static_cast<int>(pool.size()));
            std::unique_ptr<Item> item = std::move(pool[static_cast<std::size_t>(index)]);
            pool.erase(pool.begin() + index);
            return item;
        }
        auto item = std::make_unique<Item>();
        item->kind = chance(60) ? Kind::Box : chance(50) ? Kind::Rows : Kind::Columns;
        item->label = anyLabel();
        item->state = chance(50);
        if (item->kind == Kind::Box) {
            auto* box = new KsDialogCheckBox;
            box->state = item->state;
            item->node = box;
        } else {
            item->node = item->kind == Kind::Rows ? static_cast<KsFormweave*>(new KsRowDialog)
                                                  : new KsColumnDialog;
        }
        item->node->label = item->label.c_str();
        // A group that holds something when it joins.
        if (item->isContainer() && chance(40)) {
            auto inner = std::make_unique<Item>();
            inner->label = anyLabel();
            inner->node = new KsDialogCheckBox;
            inner->node->label = inner->label.c_str();
            item->node->internalAddChild(inner->node.get());
            inner->parent = item.get();
            item->children.push_back(std::move(inner));
        }
        return item;
    }
    void dropIntoPool(std::unique_ptr<Item> item)
    {
        item->parent = nullptr;
        pool.push_back(std::move(item));
        if (pool.size() > 4) pool.erase(pool.begin());
    }

    // The operations, by the typed calls and by those of the scene graph.

    void callInsert(Item* into, KsFormweave* node, int index, bool atEnd)
    {
        if (chance(50)) {
            if (atEnd)
                into->node->internalAddChild(node);
            else
                into->node->internalInsertChild(node, index);
        } else if (into->kind == Kind::Dialog) {
            auto* child = static_cast<KsTopComponent*>(node);
            if (atEnd)
                dialog->addChild(child);
            else
                dialog->insertChild(child, index);
        } else {
            auto* group = static_cast<KsDialogGroup*>(into->node.get());
            auto* child = static_cast<KsDialogComponent*>(node);
            if (atEnd)
                group->addChild(child);
            else
                group->insertChild(child, index);
        }
    }
    void insert(Item* into, std::unique_ptr<Item> item)
    {
        const int count = static_cast<int>(into->children.size());
        const bool atEnd = chance(40);
        const int index = atEnd ? count : upTo(count + 1);
        callInsert(into, item->node.get(), index, atEnd);
        item->parent = into;
        into->children.insert(into->children.begin() + index, std::move(item));
    }
    std::unique_ptr<Item> take(Item* item)
    {
        Item* parent = item->parent;
        const int index = item->indexInParent();
        switch (upTo(3)) {
        case 0: parent->node->internalRemoveChild(index); break;
        case 1: parent->node->internalRemoveChild(item->node.get()); break;
        default:
            if (parent->kind == Kind::Dialog)
                dialog->removeChild(index);
            else
                static_cast<KsDialogGroup*>(parent->node.get())->removeChild(index);
        }
        std::unique_ptr<Item> taken = std::move(parent->children[static_cast<std::size_t>(index)]);
        parent->children.erase(parent->children.begin() + index);
        taken->parent = nullptr;
        return taken;
    }
    void replace(Item* item, std::unique_ptr<Item> fresh)
    {
        Item* parent = item->parent;
        const int index = item->indexInParent();
        if (chance(50))
            parent->node->internalReplaceChild(index, fresh->node.get());
        else
            parent->node->internalReplaceChild(item->node.get(), fresh->node.get());
        fresh->parent = parent;
        std::swap(parent->children[static_cast<std::size_t>(index)], fresh);
        dropIntoPool(std::move(fresh));
    }
    void removeAll(Item* container)
    {
        container->node->internalRemoveAllChildren();
        for (auto& child : container->children) dropIntoPool(std::move(child));
        container->children.clear();
    }
    void toggle(Item* item)
    {
        item->state = !item->state;
        auto* box = static_cast<KsDialogCheckBox*>(item->node.get());
        QCheckBox* widget = box->isBuilt2D() ? toggleOf(box) : nullptr;
        if (widget && widget->isEnabled() && chance(50))
            widget->click();
        else if (chance(50))
            box->eventNotify(item->state ? 2 : 0, 0);
        else
            box->state = item->state;
    }
    void rebuild()
    {
        if (GetParam().inWindow && chance(50))
            dialog->updateDialogBuild(1);
        else if (GetParam().inScene && chance(50))
            dialog->updateDialogBuild(0);
        else
            dialog->updateAfterSceneGraphChange();
    }
    void show()
    {
        if (GetParam().inWindow) buildWindow(true);
        if (GetParam().inScene) buildScene();
    }

    /// Gives the items the nodes of a tree that has to be the same.
    static void adopt(Item* item, KsFormweave* node)
    {
        ASSERT_TRUE(node);
        ASSERT_EQ(node->getTypeId(), item->node->getTypeId());
        const auto children = childrenOf(node);
        ASSERT_EQ(children.size(), item->children.size());
        item->node = node;
        for (std::size_t i = 0; i < children.size(); ++i)
            adopt(item->children[i].get(), children[i]);
    }
    /// Goes on with what was written and read, or copied.
    void goOnWithAnother(const KsRef<KsTopLevelDialog>& other)
    {
        ASSERT_TRUE(other);
        QPointer<QWidget> earlier = window();
        scene.reset();
        const KsRef<KsTopLevelDialog> former = dialog;
        dialog = other;
        adopt(&root, other.get());
        EXPECT_EQ(earlier != nullptr, GetParam().inWindow);
        show();
        delete earlier;
    }

    void operate()
    {
        const int count = static_cast<int>(items([](const Item*) { return true; }).size());
        const bool full = count > mostItems;
        switch (const int what = upTo(100); what / 5) {
        case 0:
        case 1:
        case 2:
        case 3:
        case 4: {
            if (full) break;
            std::unique_ptr<Item> item = anyItem();
            if (Item* into = anyContainer(nullptr, item->height()))
                insert(into, std::move(item));
            else
                dropIntoPool(std::move(item));
            return;
        }
        case 5:
        case 6: {
            Item* old = anyChild();
            std::unique_ptr<Item> item = anyItem();
            if (!full && old && old->depth() + item->height() <= mostDepth + 1)
                replace(old, std::move(item));
            else
                dropIntoPool(std::move(item));
            return;
        }
        case 7:
        case 8:
        case 9: {
            Item* child = anyChild();
            if (!child) return;
            Item* into = anyContainer(child, child->height());
            if (!into) return;
            insert(into, take(child));
            return;
        }
        case 10:
            if (Item* container = chance(30) ? anyContainer() : nullptr) removeAll(container);
            return;
        case 11:
        case 12:
        case 13:
            if (Item* box = any(items([](const Item* i) { return i->kind == Kind::Box; }, true)))
                toggle(box);
            return;
        case 14:
        case 15:
            if (Item* item = any(items([](const Item* i) { return i->parent != nullptr; }, true))) {
                item->label = anyLabel();
                item->node->label = item->label.c_str();
            }
            return;
        case 16:
            if (Item* item = anyChild()) {
                item->enabled = !item->enabled;
                item->node->enable = item->enabled;
            }
            return;
        case 17:
            if (Item* item = anyContainer()) {
                if (auto* rows = ksCast<KsRowDialog>(item->node.get()))
                    rows->rowSpacing = upTo(9);
                else
                    dialog->rowSpacing = upTo(9);
            }
            return;
        case 18: rebuild(); return;
        default:
            if (chance(20)) {
                goOnWithAnother(readNode<KsTopLevelDialog>(written(dialog.get())));
            } else if (chance(20)) {
                goOnWithAnother(
                    KsRef<KsTopLevelDialog>(static_cast<KsTopLevelDialog*>(dialog->copy())));
            } else if (GetParam().inWindow) {
                window()->resize(100 + upTo(600), 100 + upTo(500));
            }
            return;
        }
        if (Item* child = anyChild()) dropIntoPool(take(child));
    }

    // The looks.

    void check(Item* item)
    {
        KsFormweave* node = item->node.get();
        ASSERT_EQ(node->label, KbString(item->label.c_str()));
        if (item->kind == Kind::Box) {
            ASSERT_EQ(static_cast<KsDialogCheckBox*>(node)->state.getValue() != 0, item->state);
        }
        const auto children = childrenOf(node);
        ASSERT_EQ(children.size(), item->children.size());
        for (std::size_t i = 0; i < children.size(); ++i) {
            ASSERT_EQ(children[i], item->children[i]->node.get());
            ASSERT_EQ(children[i]->getParentElement(), node);
        }
        if (GetParam().inWindow) checkWidgets(item);
        if (GetParam().inScene) checkParts(item);
        if (testing::Test::HasFatalFailure()) return;
        for (const auto& child : item->children) {
            check(child.get());
            if (testing::Test::HasFatalFailure()) return;
        }
    }
    void checkWidgets(Item* item)
    {
        KsFormweave* node = item->node.get();
        ASSERT_TRUE(node->isBuilt2D());
        if (item->isContainer()) {
            ASSERT_EQ(framesIn(node), expectedFrames(node));
        } else {
            QCheckBox* widget = toggleOf(node);
            ASSERT_TRUE(widget);
            ASSERT_EQ(widget->isChecked(), item->state);
            ASSERT_EQ(widget->isEnabled(), item->isEnabledInTree());
            std::string shown = labelOf(node)->text().toStdString();
            std::replace(shown.begin(), shown.end(), '\n', '/');
            ASSERT_EQ(shown, item->label == "two\\nlines" ? "two/lines" : item->label);
        }
        if (!item->parent) return;
        QWidget* parent =
            item->parent->kind == Kind::Dialog ? window() : frameOf(item->parent->node.get());
        ASSERT_EQ(frameOf(node)->parentWidget(), parent);
        ASSERT_TRUE(frameOf(node)->isVisible());
    }
    static void checkParts(Item* item)
    {
        KsFormweave* node = item->node.get();
        ASSERT_EQ(node->isBuilt3D(), 1);
        ASSERT_EQ(node->isShown3D(), 1);
        if (item->kind != Kind::Box) return;
        auto* states = static_cast<KsSwitch*>(node->getAnyPart("stateSwitch", false));
        ASSERT_EQ(states->whichChild.getValue(), item->state ? 1 : 0);
        auto* labels = static_cast<KsGroup*>(node->getAnyPart("labelSwitch", false));
        auto* text = ksCast<KsText3>(labels->getChild(labels->getNumChildren() - 1));
        ASSERT_TRUE(text);
        std::string shown;
        for (int i = 0; i < text->string.getNum(); ++i)
            shown += (i ? "/" : "") + std::string(text->string[i].getString());
        ASSERT_EQ(shown, item->label == "two\\nlines" ? "two/lines" : item->label);
    }
    /// Each child stands within its container and behind the one in front of it.
    static void checkPlaces(Item* item)
    {
        constexpr float tolerance = 0.05f;
        const Extent outer = extentOf(item->node.get());
        const bool across = item->kind == Kind::Columns;
        float end = across ? outer.left : outer.top;
        for (const auto& child : item->children) {
            const Extent inner = extentOf(child->node.get());
            ASSERT_GE(across ? inner.left : inner.top, end - tolerance);
            ASSERT_GE(inner.left, outer.left - tolerance);
            ASSERT_GE(inner.top, outer.top - tolerance);
            ASSERT_LE(inner.right, outer.right + tolerance);
            ASSERT_LE(inner.bottom, outer.bottom + tolerance);
            const auto* component = static_cast<KsDialogComponent*>(child->node.get());
            if (child->kind != Kind::Box) {
                checkPlaces(child.get());
                if (testing::Test::HasFatalFailure()) return;
            }
            EXPECT_TRUE(component->canBeTraversed());
            end = across ? inner.right : inner.bottom;
        }
    }

    std::mt19937 random{seed};
    Item root;
    std::vector<std::unique_ptr<Item>> pool;
};

INSTANTIATE_TEST_SUITE_P(, Model,
                         testing::Values(Presentations{false, false}, Presentations{true, false},
                                         Presentations{false, true}, Presentations{true, true}),
                         [](const testing::TestParamInfo<Presentations>& each) {
                             return each.param.inWindow
                                        ? each.param.inScene ? "inBoth" : "inAWindow"
                                    : each.param.inScene ? "inAScene"
                                                         : "notBuilt";
                         });

} // namespace

TEST_P(Model, agreesWithAPlainTreeAfterEachChange)
{
    std::size_t largest = 0;
    int deepest = 0;
    show();
    for (int i = 0; i < numOperations; ++i) {
        SCOPED_TRACE("operation " + std::to_string(i));
        operate();
        if (i % 8 == 0 && GetParam().inWindow) settle();
        check(&root);
        if (HasFailure()) FAIL();
        largest = std::max(largest, items([](const Item*) { return true; }).size());
        deepest = std::max(deepest, root.height());
        if (GetParam().inWindow) {
            const auto boxes = items([](const Item* item) { return item->kind == Kind::Box; });
            ASSERT_EQ(numToggles(), static_cast<int>(boxes.size()));
        }
        if (i % 20 != 0) continue;
        if (GetParam().inScene) {
            // A layout has to be taken up first: labels and spacings change without one.
            dialog->updateAfterSceneGraphChange();
            checkPlaces(&root);
        }
        const KsRef<KsTopLevelDialog> read = readNode<KsTopLevelDialog>(written(dialog.get()));
        ASSERT_TRUE(read);
        EXPECT_EQ(read->getNumChildren(), static_cast<int>(root.children.size()));
        if (HasFailure()) FAIL();
    }
    // The changes led somewhere.
    EXPECT_GE(largest, 20u);
    EXPECT_GE(deepest, 4);
}
