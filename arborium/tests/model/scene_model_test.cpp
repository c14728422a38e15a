// Random changes of a scene against plain values that say what has to be there: in the tree, in the
// fields, in boxes, picks, lists of draws, files and copies.

#include "SceneModel.h"

#include "MessageGuard.h"

#include <arborium/actions/KsGetBoundingBoxAction.h>
#include <arborium/actions/KsRayPickAction.h>
#include <arborium/actions/KsRenderAction.h>
#include <arborium/actions/KsSearchAction.h>
#include <arborium/actions/KsWriteAction.h>
#include <arborium/io/KsDB.h>
#include <arborium/io/KsInput.h>
#include <arborium/io/KsOutput.h>
#include <arborium/nodes/KsCube.h>
#include <arborium/nodes/KsNodeList.h>
#include <arborium/nodes/KsSwitch.h>
#include <arborium/render/KsOffscreenRenderer.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <iostream>
#include <map>
#include <set>

namespace SceneModel {
namespace {

const KbViewportRegion viewport(64, 64);

class SceneModelTest : public testing::TestWithParam<unsigned> {
protected:
    static constexpr int numOperations = 10000;
    static constexpr int mostItems = 40;
    static constexpr int mostDepth = 7;
    static constexpr long mostVisits = 400;

    void SetUp() override
    {
        KsDB::init();
        std::cout << "seed " << GetParam() << ", " << numOperations << " operations\n";
        root = add(makeItem(Kind::Separator));
    }
    void TearDown() override
    {
        kept.reset();
        items.clear();
        KsDB::finish();
    }

    Item* add(std::unique_ptr<Item> item)
    {
        items.push_back(std::move(item));
        return items.back().get();
    }
    template <class Test> Item* any(Test wanted)
    {
        std::vector<Item*> fitting;
        for (const auto& item : items)
            if (wanted(*item)) fitting.push_back(item.get());
        return fitting.empty() ? nullptr : choices.oneOf(fitting);
    }
    Item* anyItem()
    {
        return any([](const Item&) { return true; });
    }
    Item* anyGroup()
    {
        return any([](const Item& item) { return item.isGroup(); });
    }
    Item* anyParent()
    {
        return any([](const Item& item) { return !item.children.empty(); });
    }
    Value* anyValue()
    {
        Item* item = any([](const Item& each) { return !each.values.empty(); });
        return item ? item->value(choices.upTo(static_cast<int>(item->values.size()))) : nullptr;
    }
    /// Whether the tree stays small enough for the model to follow.
    bool bears(const Item* into, const Item* child) const
    {
        return root->depth() + child->depth() <= 2 * mostDepth &&
               into->depth() + child->depth() <= mostDepth &&
               root->visits() + 8 * child->visits() <= mostVisits;
    }
    int indexIn(const Item* group)
    {
        return choices.upTo(static_cast<int>(group->children.size()));
    }

    // The operations.

    void insert(Item* into, Item* child)
    {
        const int count = static_cast<int>(into->children.size());
        if (child->holds(into)) {
            ExpectedMessages refused("KsChildList::insert", "cannot stand below itself");
            into->group()->insertChild(child->node.get(), choices.upTo(count + 1));
            return;
        }
        if (!bears(into, child)) return;
        const int index = choices.upTo(count + 1);
        if (index == count && choices.chance(50))
            into->group()->addChild(child->node.get());
        else
            into->group()->insertChild(child->node.get(), index);
        into->children.insert(into->children.begin() + index, child);
    }
    void addNew()
    {
        if (static_cast<int>(items.size()) >= mostItems) return;
        static const std::vector<Kind> kinds = {
            Kind::Group,  Kind::Separator, Kind::Separator, Kind::Switch, Kind::Place, Kind::Place,
            Kind::Factor, Kind::Color,     Kind::Cube,      Kind::Cube,   Kind::Cube};
        Item* item = add(makeItem(choices.oneOf(kinds)));
        Item* into = any([](const Item& each) { return each.isGroup(); });
        if (into != item) insert(into, item);
        for (const auto& value : item->values)
            if (choices.chance(80)) setValue(value.get());
    }
    void remove(Item* group)
    {
        const int index = indexIn(group);
        Item* child = group->children[static_cast<std::size_t>(index)];
        const bool isFirst = std::find(group->children.begin(), group->children.end(), child) ==
                             group->children.begin() + index;
        if (isFirst && choices.chance(50))
            group->group()->removeChild(child->node.get());
        else
            group->group()->removeChild(index);
        group->children.erase(group->children.begin() + index);
    }
    void replace(Item* group, Item* child)
    {
        if (child->holds(group) || !bears(group, child)) return;
        const int index = indexIn(group);
        group->group()->replaceChild(index, child->node.get());
        group->children[static_cast<std::size_t>(index)] = child;
    }
    void setValue(Value* value)
    {
        static const std::vector<float> factors = {0.5f, 1, 1.5f, -1};
        const auto between = [this](int low, int high) {
            return static_cast<float>(low) +
                   static_cast<float>(choices.upTo((high - low) * 64)) / 64.0f;
        };
        std::array<float, 3>& n = value->numbers;
        KsField* field = value->get();
        switch (value->kind) {
        case ValueKind::Length:
            n[0] = between(1, 4);
            *static_cast<KsSFFloat*>(field) = n[0];
            break;
        case ValueKind::Place:
            n = {between(-5, 5), between(-5, 5), between(-5, 5)};
            static_cast<KsSFVec3f*>(field)->setValue(n[0], n[1], n[2]);
            break;
        case ValueKind::Factor:
            n = {choices.oneOf(factors), choices.oneOf(factors), choices.oneOf(factors)};
            static_cast<KsSFVec3f*>(field)->setValue(n[0], n[1], n[2]);
            break;
        case ValueKind::Color:
            n = {between(0, 1), between(0, 1), between(0, 1)};
            *static_cast<KsMFColor*>(field) = KbColor(n[0], n[1], n[2]);
            break;
        }
        spread(items, value);
    }
    void connect(Value* to, Value* from)
    {
        KsField* field = to->get();
        if (to == from) {
            ExpectedMessages refused("KsField::connectFrom", "from itself");
            EXPECT_FALSE(field->connectFrom(field));
        } else if (to->kind != from->kind) {
            if (field->getTypeId() == from->get()->getTypeId()) return; // no use to the model
            ExpectedMessages refused("KsField::connectFrom", "cannot be connected");
            EXPECT_FALSE(field->connectFrom(from->get()));
        } else {
            EXPECT_TRUE(field->connectFrom(from->get()));
            to->master = from;
            to->numbers = from->numbers;
            spread(items, to);
        }
    }
    void listen(Value* value)
    {
        if (value->sensor) {
            value->sensor.reset();
            return;
        }
        value->expected = value->told = 0;
        value->sensor = std::make_unique<KsFieldSensor>(
            [](void* data, KsSensor*) { ++static_cast<Value*>(data)->told; }, value);
        value->sensor->setPriority(0);
        value->sensor->attach(value->get());
    }
    void rename(Item* item)
    {
        static const std::vector<std::string> names = {"", "a", "b", "c d", "a+1"};
        item->name = choices.oneOf(names);
        item->node->setName(KbName(item->name));
    }
    void turn(Item* item)
    {
        static const std::vector<int> which = {-1, -3, -3, 0, 1, 2, 7};
        item->which = choices.oneOf(which);
        static_cast<KsSwitch*>(item->node.get())->whichChild = item->which;
    }
    /// What is not in the tree goes, or a good part of it.
    void forget()
    {
        std::set<const Item*> wanted;
        collect(root, wanted);
        for (const auto& item : items)
            if (!wanted.count(item.get()) && choices.chance(30)) collect(item.get(), wanted);
        for (const auto& item : items)
            for (const auto& value : item->values)
                if (value->master && !wanted.count(value->master->owner)) value->master = nullptr;
        items.erase(std::remove_if(items.begin(), items.end(),
                                   [&](const auto& item) { return !wanted.count(item.get()); }),
                    items.end());
    }
    static void collect(const Item* item, std::set<const Item*>& into)
    {
        if (!into.insert(item).second) return;
        for (const Item* child : item->children) collect(child, into);
    }

    /// Goes on with another tree that has to be the same.
    void goOnWith(const KsRef<KsNode>& other)
    {
        ASSERT_TRUE(other);
        if (kept) kept->releaseScene(); // it would keep the former tree alive
        std::set<const Item*> inTree;
        collect(root, inTree);
        for (const auto& item : items) {
            for (const auto& value : item->values) {
                value->sensor.reset();
                // A field that changed after it was connected takes its master's value again.
                if (value->master && !inTree.count(value->master->owner)) value->master = nullptr;
            }
        }
        items.erase(std::remove_if(items.begin(), items.end(),
                                   [&](const auto& item) { return !inTree.count(item.get()); }),
                    items.end());
        std::map<const Item*, KsNode*> met;
        adopt(root, other.get(), met);
        if (HasFatalFailure()) return;
        for (const auto& item : items) {
            for (const auto& value : item->values) {
                const Value* from = value.get();
                std::set<const Value*> chain;
                while (from->master && chain.insert(from).second) from = from->master;
                // Who was first in a ring is not known.
                value->numbers = from->master ? value->actual() : from->numbers;
            }
        }
    }
    void adopt(Item* item, KsNode* node, std::map<const Item*, KsNode*>& met)
    {
        const auto found = met.emplace(item, node);
        ASSERT_EQ(found.first->second, node) << "what was shared is not";
        if (!found.second) return;
        ASSERT_EQ(node->getTypeId(), item->node->getTypeId());
        item->node = node;
        if (!item->isGroup()) return;
        ASSERT_EQ(item->group()->getNumChildren(), static_cast<int>(item->children.size()));
        for (std::size_t i = 0; i < item->children.size(); ++i) {
            adopt(item->children[i], item->group()->getChild(static_cast<int>(i)), met);
            if (HasFatalFailure()) return;
        }
    }
    static std::string written(KsNode* node, bool binary)
    {
        KsOutput out;
        out.setBinary(binary);
        KsWriteAction action(&out);
        action.apply(node);
        return out.getBuffer();
    }
    void throughAFile()
    {
        const bool binary = choices.chance(50);
        const std::string text = written(root->node.get(), binary);
        KsInput in;
        in.setBuffer(text.data(), text.size());
        const KsRef<KsSeparator> file(KsDB::readAll(&in));
        ASSERT_TRUE(file) << text;
        ASSERT_EQ(file->getNumChildren(), 1);
        goOnWith(KsRef<KsNode>(file->getChild(0)));
    }

    void operate()
    {
        switch (choices.upTo(50)) {
        case 0:
        case 1:
        case 2:
        case 3:
        case 4:
        case 5:
        case 6:
        case 7: addNew(); break;
        case 8:
        case 9:
        case 10: insert(anyGroup(), anyItem()); break;
        case 11:
        case 12:
        case 13:
        case 14:
            if (Item* group = anyParent()) remove(group);
            break;
        case 15:
        case 16:
        case 17:
            if (Item* group = anyParent()) replace(group, anyItem());
            break;
        case 18:
            if (Item* group = choices.chance(10) ? anyParent() : nullptr) {
                group->group()->removeAllChildren();
                group->children.clear();
            }
            break;
        case 19:
        case 20:
        case 21: rename(anyItem()); break;
        case 22:
        case 23:
        case 24:
        case 25: {
            Value* to = anyValue();
            if (to) connect(to, anyValue());
            break;
        }
        case 26:
            if (Value* value = anyValue()) {
                value->get()->disconnect();
                value->master = nullptr;
            }
            break;
        case 27:
        case 28:
            if (Value* value = anyValue()) listen(value);
            break;
        case 29:
        case 30:
            if (Item* item = any([](const Item& i) { return i.kind == Kind::Switch; })) turn(item);
            break;
        case 31: forget(); break;
        case 32:
            if (choices.chance(30)) throughAFile();
            break;
        case 33:
            if (choices.chance(30)) goOnWith(KsRef<KsNode>(root->node->copy()));
            break;
        case 34: checkNames(); break;
        case 35: checkSearch(); break;
        case 36:
        case 37: checkPick(); break;
        case 38:
        case 39: checkDraws(); break;
        case 40: checkBox(anyItem()); break;
        case 41:
            if (choices.chance(2)) checkFrame();
            break;
        default:
            if (Value* value = anyValue()) setValue(value);
            break;
        }
    }

    // The looks.

    void checkTree()
    {
        for (const auto& item : items) {
            ASSERT_EQ(std::string(item->node->getName().getString()), item->name);
            if (item->isGroup()) {
                ASSERT_EQ(item->group()->getNumChildren(), static_cast<int>(item->children.size()));
                for (std::size_t i = 0; i < item->children.size(); ++i)
                    ASSERT_EQ(item->group()->getChild(static_cast<int>(i)),
                              item->children[i]->node.get());
            }
            for (const auto& value : item->values) {
                ASSERT_EQ(value->actual(), value->numbers) << value->field;
                const KsField* master = value->master ? value->master->get() : nullptr;
                ASSERT_EQ(value->get()->getConnectedField(), master);
                if (value->sensor) {
                    ASSERT_EQ(value->told, value->expected) << value->field;
                }
            }
        }
    }
    static float tolerance(const KbVec3f& low, const KbVec3f& high)
    {
        return 1e-4f * (1 + low.length() + high.length());
    }
    static void expectNear(const KbVec3f& a, const KbVec3f& b, float by)
    {
        for (int i = 0; i < 3; ++i) ASSERT_NEAR(a[i], b[i], by);
    }
    void checkBox(const Item* from)
    {
        KsGetBoundingBoxAction action(viewport);
        action.apply(from->node.get());
        const KbBox3f box = action.getBoundingBox();
        const std::vector<Seen> seen = seenFrom(from);
        ASSERT_EQ(box.isEmpty(), seen.empty());
        if (seen.empty()) return;
        KbVec3f low = seen[0].low, high = seen[0].high;
        for (const Seen& each : seen) {
            for (int i = 0; i < 3; ++i) {
                low[i] = std::min(low[i], each.low[i]);
                high[i] = std::max(high[i], each.high[i]);
            }
        }
        expectNear(box.getMin(), low, tolerance(low, high));
        expectNear(box.getMax(), high, tolerance(low, high));
    }
    void checkDraws()
    {
        render.apply(root->node.get());
        const KsDrawList& list = render.getDrawList();
        const std::vector<Seen> seen = seenFrom(root);
        ASSERT_EQ(list.draws.size(), seen.size());
        for (std::size_t i = 0; i < seen.size(); ++i) {
            KbBox3f box = list.draws[i].mesh->box;
            box.transform(list.draws[i].matrix);
            expectNear(box.getMin(), seen[i].low, tolerance(seen[i].low, seen[i].high));
            expectNear(box.getMax(), seen[i].high, tolerance(seen[i].low, seen[i].high));
            const KsMaterialState& material = list.materials[list.draws[i].material];
            for (std::size_t c = 0; c < 3; ++c)
                ASSERT_EQ(material.diffuse[static_cast<int>(c)], seen[i].color[c]);
            if (HasFatalFailure()) return;
        }
    }
    void checkPick()
    {
        const std::vector<Seen> seen = seenFrom(root);
        // Mostly at something.
        KbVec3f at(static_cast<float>(choices.upTo(640)) / 32 - 10,
                   static_cast<float>(choices.upTo(640)) / 32 - 10, 0);
        if (!seen.empty() && choices.chance(80)) {
            const Seen& aim = choices.oneOf(seen);
            at = (aim.low + aim.high) * 0.5f + KbVec3f(0.03f, 0.07f, 0);
        }
        float top = 0;
        for (const Seen& each : seen) top = std::max(top, each.high[2]);
        KsRayPickAction action(viewport);
        action.setRay(KbVec3f(at[0], at[1], top + 10), KbVec3f(0, 0, -1));
        action.apply(root->node.get());
        const KsPickedPoint* point = action.getPickedPoint();

        const float slack = 1e-3f * (1 + at.length() + std::fabs(top));
        float nearest = 0;
        bool isHit = false, isSure = true;
        for (const Seen& each : seen) {
            const float inside = std::min({at[0] - each.low[0], each.high[0] - at[0],
                                           at[1] - each.low[1], each.high[1] - at[1]});
            if (std::fabs(inside) < slack) isSure = false;
            if (inside < slack) continue;
            if (!isHit || each.high[2] > nearest) nearest = each.high[2];
            isHit = true;
        }
        if (!isSure) return;
        ASSERT_EQ(point != nullptr, isHit);
        if (!isHit) return;
        ++picks;
        ASSERT_NEAR(point->getPoint()[2], nearest, slack);
        ASSERT_NEAR(point->getDistance(), top + 10 - nearest, 2 * slack);
        const auto* path = static_cast<const KsFullPath*>(point->getPath());
        ASSERT_EQ(path->getHead(), root->node.get());
        const bool isThere = std::any_of(seen.begin(), seen.end(), [&](const Seen& each) {
            return each.item->node.get() == path->getTail() &&
                   std::fabs(each.high[2] - nearest) <= slack;
        });
        ASSERT_TRUE(isThere) << "the path leads elsewhere";
    }
    void checkNames()
    {
        for (const char* name : {"a", "b", "c d", "a+1"}) {
            KsNodeList found;
            const int count = KsNode::getByName(KbName(name), found);
            const auto expected = std::count_if(
                items.begin(), items.end(), [&](const auto& item) { return item->name == name; });
            ASSERT_EQ(count, static_cast<int>(expected)) << name;
        }
    }
    void checkSearch()
    {
        KsSearchAction search;
        search.setType(KsCube::getClassTypeId());
        search.setInterest(KsSearchAction::ALL);
        search.apply(root->node.get());
        ASSERT_EQ(search.getPaths().getLength(), static_cast<int>(seenFrom(root).size()));
        search.reset();
        Item* wanted = anyItem();
        search.setNode(wanted->node.get());
        search.setSearchingAll(true);
        search.apply(root->node.get());
        ASSERT_EQ(search.getPath() != nullptr, root->holds(wanted));
        if (search.getPath()) {
            ASSERT_EQ(static_cast<KsFullPath*>(search.getPath())->getTail(), wanted->node.get());
        }
    }
    /// A frame by a renderer that drew the scene before beside one by a new renderer.
    void checkFrame()
    {
        if (!kept) kept = std::make_unique<KsOffscreenRenderer>(viewport);
        KsOffscreenRenderer fresh(viewport);
        kept->render(root->node.get());
        fresh.render(root->node.get());
        ++frames;
        std::size_t different = 0;
        const auto& a = kept->getImage();
        const auto& b = fresh.getImage();
        ASSERT_EQ(a.size(), b.size());
        for (std::size_t i = 0; i < a.size(); i += 4)
            if (std::abs(a[i] - b[i]) + std::abs(a[i + 1] - b[i + 1]) > 12) ++different;
        // Surfaces in the same place may come in another order.
        EXPECT_LE(different, a.size() / 4 / 10);
    }

    RandomChoices choices{GetParam()};
    std::vector<std::unique_ptr<Item>> items;
    Item* root = nullptr;
    KsRenderAction render{viewport};
    std::unique_ptr<KsOffscreenRenderer> kept;
    int picks = 0;
    int frames = 0;
};

} // namespace

TEST_P(SceneModelTest, agreesWithPlainValuesAfterEachChange)
{
    std::size_t most = 0;
    int deepest = 0;
    for (int i = 0; i < numOperations; ++i) {
        SCOPED_TRACE("operation " + std::to_string(i));
        operate();
        checkTree();
        checkBox(root);
        if (HasFailure()) FAIL() << written(root->node.get(), false);
        most = std::max(most, seenFrom(root).size());
        deepest = std::max(deepest, root->depth());
    }
    // The changes led somewhere.
    EXPECT_GE(most, 15u);
    EXPECT_GE(deepest, 5);
    EXPECT_GE(picks, 50);
    EXPECT_GE(frames, 1);
}

// Together 100,000 operations.
INSTANTIATE_TEST_SUITE_P(, SceneModelTest,
                         testing::Values(20261101u, 20261102u, 20261103u, 20261104u, 20261105u,
                                         20261106u, 20261107u, 20261108u, 20261109u, 20261110u));

} // namespace SceneModel
