// What all elements with child elements do alike: what is written of them where a cluster is brought
// in step and along a path, searches and picks.

#include <MessageGuard.h>
#include <arborium/actions/KsDetail.h>
#include <arborium/actions/KsGetBoundingBoxAction.h>
#include <arborium/actions/KsPath.h>
#include <arborium/actions/KsRayPickAction.h>
#include <arborium/actions/KsSearchAction.h>
#include <arborium/actions/KsWriteAction.h>
#include <arborium/base/KsDBImpl.h>
#include <arborium/io/KsDB.h>
#include <arborium/io/KsInput.h>
#include <arborium/io/KsOutput.h>
#include <arborium/nodes/KsSeparator.h>
#include <formweave/formweave.h>

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

namespace {

/// A child that knows what was hit of it without being told.
template <class Base> class Knowing : public Base {
public:
    void rayPick(KsRayPickAction* action) override
    {
        Base::rayPick(action);
        for (int i = 0; KsPickedPoint* point = action->getUnsortedPickedPoint(i); ++i) {
            if (!point->getPath()->containsNode(this)) continue;
            auto* detail = new KsNodeKitDetail;
            detail->setNodeKit(this);
            detail->setPartName("known");
            point->setDetail(detail, this);
        }
    }
};

template <class Base> KsFormweave* makeKnowing() { return new Knowing<Base>; }

struct Kind {
    const char* type;
    const char* child;
    KsFormweave* (*makeKnowingChild)();
    /// Where a cluster is brought in step the children stay on this side.
    bool hidesChildren;
    const char* fields;
};

const Kind kinds[] = {
    {"TopLevelDialog", "DialogCheckBox", &makeKnowing<KsDialogCheckBox>, false, "margin 4"},
    {"RowDialog", "DialogCheckBox", &makeKnowing<KsDialogCheckBox>, true, "rowSpacing 4"},
    {"ColumnDialog", "DialogCheckBox", &makeKnowing<KsDialogCheckBox>, true, "columnSpacing 4"},
    {"TabDialog", "DialogCheckBox", &makeKnowing<KsDialogCheckBox>, true, "margin 4"},
    {"MenuBar", "MenuPopup", &makeKnowing<KsMenuPopup>, false, "enable TRUE"},
    {"MenuPopup", "MenuPushButton", &makeKnowing<KsMenuPushButton>, false, "enable TRUE"},
    {"DialogCheckBoxLauncher", "TopLevelDialog", &makeKnowing<KsTopLevelDialog>, false,
     "state TRUE"},
    {"DialogPushButtonLauncher", "TopLevelDialog", &makeKnowing<KsTopLevelDialog>, false,
     "buttonLabel \"b\""},
    {"MenuCheckBoxLauncher", "TopLevelDialog", &makeKnowing<KsTopLevelDialog>, false, "state TRUE"},
    {"MenuPushButtonLauncher", "TopLevelDialog", &makeKnowing<KsTopLevelDialog>, false,
     "accelerator \"Ctrl+o\""},
};

class Container : public testing::TestWithParam<Kind> {
protected:
    void SetUp() override { KsFormweave::init(); }
    void TearDown() override
    {
        scene.reset();
        KsFormweave::finish();
    }

    static KsRef<KsSeparator> parse(const std::string& text)
    {
        KsInput in;
        in.setBuffer(text.data(), text.size());
        return KsRef<KsSeparator>(KsDB::parse(&in));
    }
    static KsFormweave* firstOf(const KsSeparator* root)
    {
        return root && root->getNumChildren() ? ksCast<KsFormweave>(root->getChild(0)) : nullptr;
    }
    /// An element with children of the ids "0", "1" and "2"; panels have a frame that is wider than
    /// their titles.
    static std::string text()
    {
        const bool ofDialogs = GetParam().child == std::string("TopLevelDialog");
        std::string result = GetParam().type + std::string(" { label \"x\" ") + GetParam().fields;
        for (const char* id : {"0", "1", "2"})
            result += std::string(" ") + GetParam().child + " { label \"" + id + "\" auditorID \"" +
                      id + "\"" + (ofDialogs ? " width 100 height 60" : "") + " }";
        return result + " }";
    }
    static std::vector<std::string> idsIn(const KsFormweave* element)
    {
        std::vector<std::string> ids;
        const KsElementList* list = element->getElements();
        for (int i = 0; i < list->count(); ++i)
            ids.push_back(list->at(i)->auditorID.getValue().toUtf8());
        return ids;
    }
    template <class Root> static std::string written(Root* root, bool binary, bool inStep = false)
    {
        KsOutput out;
        out.setBinary(binary);
        KsOutputImpl::setSynchronizing(&out, inStep);
        KsWriteAction action(&out);
        action.apply(root);
        return out.getBuffer();
    }

    // In a scene.
    KsFormweave* build()
    {
        scene = parse(text());
        KsFormweave* made = firstOf(scene);
        if (!made) return nullptr;
        measure();
        for (int i = 0; i < made->getElements()->count(); ++i)
            made->getElements()->at(i)->show3D(1);
        measure();
        return made;
    }
    void measure()
    {
        KsGetBoundingBoxAction action{KbViewportRegion(100, 100)};
        action.apply(scene.get());
    }
    /// All hits behind the middle of an element that is drawn.
    void pickAt(KsRayPickAction& pick, KsFormweave* container, KsFormweave* hit)
    {
        KsPath path(scene.get());
        path.append(container);
        path.append(hit);
        KsGetBoundingBoxAction box{KbViewportRegion(100, 100)};
        box.apply(&path);
        ASSERT_FALSE(box.getBoundingBox().isEmpty());
        const KbVec3f middle = box.getBoundingBox().getCenter();
        pick.setPickAll(true);
        pick.setRay(KbVec3f(middle[0] + 1, middle[1] + 1, 1000), KbVec3f(0, 0, -1));
        pick.apply(scene.get());
        ASSERT_GT(pick.getPickedPointsListLength(), 0);
    }

    KsRef<KsSeparator> scene;
};

} // namespace

// Files.

TEST_P(Container, givesTheCountOfWhatItWritesWhereAClusterIsBroughtInStep)
{
    const KsRef<KsSeparator> root = parse(text());
    KsFormweave* original = firstOf(root);
    ASSERT_TRUE(original);
    const auto countOf = [&](bool inStep) {
        const KsRef<KsSeparator> again = parse(written(original, true, inStep));
        KsFormweave* copy = firstOf(again);
        return copy ? copy->getElements()->count() : -1;
    };
    const int hidden = GetParam().hidesChildren ? 0 : 3;
    EXPECT_EQ(countOf(true), 3) << "there is no cluster";
    KsDBImpl::setRunningCluster(true);
    EXPECT_EQ(countOf(true), hidden);
    EXPECT_EQ(countOf(false), 3);
    KsDBImpl::setRunningCluster(false);
    KsDBImpl::setRunningToolMode(true);
    EXPECT_EQ(countOf(false), hidden);
    KsDBImpl::setRunningToolMode(false);
}

TEST_P(Container, alongAPathIsWrittenWithTheChildOnThePathAlone)
{
    const KsRef<KsSeparator> root = parse(text());
    KsFormweave* original = firstOf(root);
    ASSERT_TRUE(original);
    for (const bool binary : {false, true}) {
        for (int last = 0; last < 3; ++last) {
            KsPath path(original);
            ASSERT_TRUE(path.append(original->getElements()->at(last)));
            const KsRef<KsSeparator> again = parse(written(&path, binary));
            KsFormweave* copy = firstOf(again);
            ASSERT_TRUE(copy) << last;
            EXPECT_EQ(copy->label.getValue(), "x");
            EXPECT_EQ(idsIn(copy), std::vector<std::string>{std::to_string(last)})
                << (binary ? "binary" : "ASCII");
        }
    }
    // The path to the element itself.
    KsPath path(root.get());
    ASSERT_TRUE(path.append(original));
    const KsRef<KsSeparator> again = parse(written(&path, true));
    EXPECT_EQ(idsIn(firstOf(static_cast<KsSeparator*>(again->getChild(0)))).size(), 3u);
}

// Searches.

TEST_P(Container, pathsToAllMatchesEndAtTheInnermostElement)
{
    KsFormweave* container = build();
    ASSERT_TRUE(container);
    KsSearchAction search;
    search.setInterest(KsSearchAction::ALL);
    search.setSearchingAll(true);
    search.setType(KsNode::getClassTypeId(), true);
    search.apply(scene.get());
    std::set<const KsNode*> ends;
    int hiddenParts = 0;
    for (int i = 0; i < search.getPaths().getLength(); ++i) {
        KsPath* path = search.getPaths()[i];
        const auto* below = ksCast<KsFormweave>(path->getNode(2));
        if (path->getNode(1) != container || !below) continue; // not by way of a child
        // What is shown ends at an element, and no element stands behind it.
        ASSERT_TRUE(path->getTail()->isOfType(KsFormweave::getClassTypeId()));
        ends.insert(path->getTail());
        for (int step = path->getLength(); const KsNode* node = path->getNode(step); ++step) {
            EXPECT_FALSE(node->isOfType(KsFormweave::getClassTypeId()));
            ++hiddenParts;
        }
    }
    for (int i = 0; i < 3; ++i) EXPECT_EQ(ends.count(container->getElements()->at(i)), 1u);
    EXPECT_GT(hiddenParts, 0);
}

// Picks.

TEST_P(Container, aPickTellsTheElementAndItsNearestPublicPart)
{
    KsFormweave* container = build();
    ASSERT_TRUE(container);
    KsFormweave* hit = container->getElements()->at(0);
    KsRayPickAction pick{KbViewportRegion(100, 100)};
    ASSERT_NO_FATAL_FAILURE(pickAt(pick, container, hit));
    int ofTheChild = 0;
    for (int i = 0; i < pick.getPickedPointsListLength(); ++i) {
        const KsPickedPoint* point = pick.getPickedPoint(i);
        const KsPath* path = point->getPath();
        auto* kit = ksCast<KsFormweave>(path->getTail());
        ASSERT_TRUE(kit) << "the path ends at an element";
        const auto* detail = dynamic_cast<const KsNodeKitDetail*>(point->getDetail(kit));
        ASSERT_TRUE(detail);
        EXPECT_EQ(detail->getNodeKit(), kit);
        const KsNodekitCatalog* catalog = kit->getNodekitCatalog();
        // The last node of the whole path that is a public part.
        KbName name;
        KsNode* part = nullptr;
        for (int step = path->getLength(); KsNode* node = path->getNode(step); ++step) {
            for (int row = 1; row < catalog->getNumEntries(); ++row) {
                const KbName each = catalog->getName(row);
                if (!catalog->isPublic(row) || kit->getPart(each, false) != node) continue;
                part = node;
                // One look can serve several parts: that which stands below its parent is meant.
                if (path->getNode(step - 1) ==
                    kit->getAnyPart(catalog->getName(catalog->getParent(row)), false))
                    name = each;
            }
        }
        EXPECT_EQ(detail->getPart(), part);
        EXPECT_EQ(detail->getPartName(), name);
        if (kit == hit && part) ++ofTheChild;
    }
    EXPECT_GT(ofTheChild, 0) << "it was hit";
}

TEST_P(Container, leavesAHitAloneThatHasItsDetail)
{
    KsFormweave* container = build();
    ASSERT_TRUE(container);
    const KsRef<KsFormweave> knowing(GetParam().makeKnowingChild());
    knowing->label = "0";
    if (auto* dialog = ksCast<KsTopLevelDialog>(static_cast<KsNode*>(knowing.get()))) {
        dialog->width = 100;
        dialog->height = 60;
    }
    while (container->getElements()->count() > 0) container->internalRemoveChild(0);
    container->internalAddChild(knowing.get());
    measure();
    knowing->show3D(1);
    measure();
    KsRayPickAction pick{KbViewportRegion(100, 100)};
    ASSERT_NO_FATAL_FAILURE(pickAt(pick, container, knowing.get()));
    int ofTheChild = 0;
    for (int i = 0; i < pick.getPickedPointsListLength(); ++i) {
        const KsPickedPoint* point = pick.getPickedPoint(i);
        if (point->getPath()->getTail() != knowing.get()) continue;
        const auto* detail = dynamic_cast<const KsNodeKitDetail*>(point->getDetail(knowing.get()));
        ASSERT_TRUE(detail);
        EXPECT_EQ(detail->getPartName(), "known");
        ++ofTheChild;
    }
    EXPECT_GT(ofTheChild, 0);
    container->internalRemoveChild(0);
}

INSTANTIATE_TEST_SUITE_P(All, Container, testing::ValuesIn(kinds),
                         [](const testing::TestParamInfo<Kind>& each) {
                             return std::string(each.param.type);
                         });
