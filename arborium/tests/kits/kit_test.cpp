#include "Pad.h"

#include <MessageGuard.h>
#include <arborium/actions/KsGetMatrixAction.h>
#include <arborium/actions/KsPath.h>
#include <arborium/actions/KsSearchAction.h>
#include <arborium/actions/KsWriteAction.h>
#include <arborium/io/KsInput.h>
#include <arborium/io/KsOutput.h>
#include <arborium/nodes/KsMaterial.h>
#include <arborium/sensors/KsSensor.h>

namespace {

using Nodes = std::vector<KsNode*>;

class Kit : public KitTest {
protected:
    void SetUp() override
    {
        KitTest::SetUp();
        panel = new KsPanel;
    }
    void TearDown() override
    {
        panel.reset();
        KitTest::TearDown();
    }
    KsNode* part(const char* name) { return panel->getAnyPart(name, false); }
    KsNode* make(const char* name) { return panel->getAnyPart(name, true); }
    KsField* field(const char* name) { return panel->getField(name); }
    static KsRef<KsNode> read(const std::string& text)
    {
        KsInput in;
        in.setBuffer(text.data(), text.size());
        const KsRef<KsSeparator> root(KsDB::readAll(&in));
        return root && root->getNumChildren() ? KsRef<KsNode>(root->getChild(0)) : KsRef<KsNode>();
    }
    static std::string write(KsNode* node)
    {
        KsWriteAction action;
        action.apply(node);
        return action.getOutput()->getBuffer();
    }

    KsRef<KsPanel> panel;
};

} // namespace

TEST_F(Kit, hasNoPartsUntilOneIsNeeded)
{
    EXPECT_EQ(panel->getChildren()->getLength(), 0);
    EXPECT_EQ(panel->getPart("first", false), nullptr);
    EXPECT_EQ(panel->getChildren()->getLength(), 0);
    KsFieldList fields;
    panel->getFields(fields);
    ASSERT_EQ(fields.size(), 1u);
    EXPECT_EQ(fields[0].name, "size");
}

// shows: KsBaseKit::getPart
TEST_F(Kit, makingAPartMakesTheChainOfItsParents)
{
    KsNode* look = panel->getPart("lookB", true);
    ASSERT_NE(look, nullptr);
    EXPECT_EQ(look->getTypeId(), KsGroup::getClassTypeId());
    EXPECT_EQ(childrenOf(panel.get()), Nodes{part("topSeparator")});
    EXPECT_EQ(childrenOf(part("topSeparator")), Nodes{part("geomSeparator")});
    EXPECT_EQ(childrenOf(part("geomSeparator")), Nodes{part("second")});
    EXPECT_EQ(childrenOf(part("second")), Nodes{part("choice")});
    EXPECT_EQ(childrenOf(part("choice")), Nodes{look});
    EXPECT_EQ(part("lookA"), nullptr);
    EXPECT_EQ(panel->getPart("lookB", true), look);
}

TEST_F(Kit, partsStandInCatalogOrderWhateverTheOrderOfMaking)
{
    KsNode* inner = make("inner");
    KsNode* second = make("second");
    KsNode* zeroth = make("zeroth");
    KsNode* items = make("items");
    KsNode* first = make("first");
    EXPECT_EQ(childrenOf(part("geomSeparator")), (Nodes{zeroth, first, second, items, inner}));
}

TEST_F(Kit, nodesInsertedByHandKeepTheirPlace)
{
    auto* geometry = static_cast<KsGroup*>(make("geomSeparator"));
    KsNode* items = make("items");
    auto* front = new KsTranslation;
    auto* before = new KsTranslation;
    auto* behind = new KsTranslation;
    geometry->insertChild(front, 0);
    geometry->insertChild(before, 1);
    geometry->addChild(behind);
    KsNode* first = make("first");
    EXPECT_EQ(childrenOf(geometry), (Nodes{front, before, first, items, behind}));
    KsNode* inner = make("inner");
    EXPECT_EQ(childrenOf(geometry), (Nodes{front, before, first, items, behind, inner}));
}

TEST_F(Kit, replacedPartKeepsItsIndex)
{
    KsNode* a = make("lookA");
    make("lookB");
    auto* choice = static_cast<KsGroup*>(part("choice"));
    auto* between = new KsTranslation;
    choice->insertChild(between, 1);
    auto* other = new KsSeparator;
    ASSERT_TRUE(panel->setPart("lookA", other));
    EXPECT_EQ(childrenOf(choice), (Nodes{other, between, part("lookB")}));
    EXPECT_NE(part("lookA"), a);
}

TEST_F(Kit, oneNodeCanBeTwoPartsOfOneParent)
{
    const KsRef<KsGroup> shared(new KsGroup);
    ASSERT_TRUE(panel->setPart("lookB", shared));
    ASSERT_TRUE(panel->setPart("lookA", shared));
    EXPECT_EQ(childrenOf(part("choice")), (Nodes{shared.get(), shared.get()}));
    auto* other = new KsGroup;
    ASSERT_TRUE(panel->setPart("lookB", other));
    EXPECT_EQ(childrenOf(part("choice")), (Nodes{shared.get(), other}));
}

// shows: KsBaseKit::setPart
TEST_F(Kit, nullRemovesAPartAndWhatIsBelowIt)
{
    make("lookA");
    make("first");
    EXPECT_TRUE(panel->setPart("lookA", nullptr));
    EXPECT_EQ(part("lookA"), nullptr);
    EXPECT_TRUE(childrenOf(part("choice")).empty());
    make("lookB");
    EXPECT_TRUE(panel->setAnyPart("second", nullptr));
    EXPECT_EQ(part("choice"), nullptr);
    EXPECT_EQ(part("lookB"), nullptr);
    EXPECT_EQ(childrenOf(part("geomSeparator")), Nodes{part("first")});
    EXPECT_TRUE(panel->setPart("items", nullptr)) << "what is not there need not be removed";
    KsNode* again = make("lookB");
    EXPECT_EQ(childrenOf(again->getParent(0)), Nodes{again});
}

// shows: KsBaseKit::setAnyPart
TEST_F(Kit, newParentPartTakesThePartsOfTheFormerOne)
{
    KsNode* a = make("lookA");
    KsNode* b = make("lookB");
    auto* choice = new KsSwitch;
    ASSERT_TRUE(panel->setAnyPart("choice", choice));
    EXPECT_EQ(childrenOf(choice), (Nodes{a, b}));
    EXPECT_EQ(part("lookA"), a);
}

TEST_F(Kit, partThatWasTakenOutByHandIsPutBack)
{
    KsNode* a = make("lookA");
    KsNode* b = make("lookB");
    const KsRef<KsNode> keep(a);
    static_cast<KsGroup*>(part("choice"))->removeChild(a);
    ASSERT_TRUE(panel->setPart("lookA", a));
    EXPECT_EQ(childrenOf(part("choice")), (Nodes{a, b}));
}

// shows: KsChildList
TEST_F(Kit, topSeparatorReturnsBehindTheChildren)
{
    KsNode* first = make("first");
    KsNode* top = part("topSeparator");
    KsChildList* children = panel->getChildren();
    auto* child = new KsTranslation;
    children->insert(child, 0);
    EXPECT_EQ(childrenOf(panel.get()), (Nodes{child, top}));
    children->truncate(0);
    EXPECT_EQ(part("topSeparator"), top);
    auto* later = new KsTranslation;
    children->append(later);
    panel->restoreTopSeparator();
    panel->restoreTopSeparator();
    EXPECT_EQ(childrenOf(panel.get()), (Nodes{later, top}));
    EXPECT_EQ(childrenOf(part("geomSeparator")), Nodes{first});
}

TEST_F(Kit, makingAPartBringsTheTopSeparatorBack)
{
    make("first");
    panel->getChildren()->truncate(0);
    make("lookA");
    EXPECT_EQ(childrenOf(panel.get()), Nodes{part("topSeparator")});
}

TEST_F(Kit, refusesUnknownAndHiddenNames)
{
    {
        ExpectedMessages messages("KsBaseKit::getPart", "\"nothing\" is no part of a Panel");
        EXPECT_EQ(panel->getPart("nothing", true), nullptr);
    }
    {
        ExpectedMessages messages("KsBaseKit::getPart", "\"second\" is a hidden part of a Panel");
        EXPECT_EQ(panel->getPart("second", true), nullptr);
    }
    {
        ExpectedMessages messages("KsBaseKit::setPart", "hidden");
        const KsRef<KsNode> node(new KsSeparator);
        EXPECT_FALSE(panel->setPart("second", node));
    }
    {
        ExpectedMessages messages("KsBaseKit::getPart", "no part");
        EXPECT_EQ(panel->getPart("this", true), nullptr);
    }
    {
        ExpectedMessages messages("KsBaseKit::getPart", "is no name of a part", 3);
        EXPECT_EQ(panel->getPart("items[", true), nullptr);
        EXPECT_EQ(panel->getPart("items[-1]", true), nullptr);
        EXPECT_EQ(panel->getPart("items[1]x", true), nullptr);
    }
    {
        ExpectedMessages messages("KsBaseKit::getPart", "\"first\" is no list of a Panel");
        EXPECT_EQ(panel->getPart("first[0]", true), nullptr);
    }
    {
        ExpectedMessages messages("KsBaseKit::getPart", "\"first\" is no kit");
        EXPECT_EQ(panel->getPart("first.x", true), nullptr);
    }
    EXPECT_NE(panel->getAnyPart("second", true), nullptr);
}

// shows: KsInstanceBuilder::part
TEST_F(Kit, refusesANodeOfTheWrongType)
{
    KsNode* choice = make("choice");
    const KsRef<KsNode> wrong(new KsTranslation);
    ExpectedMessages messages("KsBaseKit::setPart",
                              "a Translation cannot be the part \"choice\" of a Panel, "
                              "which is a Switch",
                              2);
    EXPECT_FALSE(panel->setAnyPart("choice", wrong));
    *static_cast<KsSFNode*>(field("choice")) = wrong.get();
    EXPECT_EQ(part("choice"), choice);
    EXPECT_EQ(wrong->getNumParents(), 0);
}

TEST_F(Kit, refusesAPartThatHoldsTheKit)
{
    const KsRef<KsGroup> group(new KsGroup);
    group->addChild(panel.get());
    {
        ExpectedMessages messages;
        messages.allow("KsSFNode::setValue", "");
        EXPECT_FALSE(panel->setPart("first", group));
    }
    EXPECT_EQ(part("first"), nullptr);
    group->removeAllChildren();
}

// shows: KsBaseKit
TEST_F(Kit, namesLeadThroughInnerKitsAndLists)
{
    KsNode* inner = panel->getPart("inner", true);
    ASSERT_TRUE(inner->isOfType(KsDragger::getClassTypeId()));
    KsNode* geometry = panel->getAnyPart("inner.geomSeparator", true);
    ASSERT_NE(geometry, nullptr);
    EXPECT_EQ(geometry, static_cast<KsBaseKit*>(inner)->getAnyPart("geomSeparator", false));
    EXPECT_EQ(panel->getPartString(geometry), "inner.geomSeparator");

    KsNode* item = panel->getPart("items[0]", true);
    ASSERT_NE(item, nullptr);
    EXPECT_EQ(item->getTypeId(), KsSeparator::getClassTypeId());
    EXPECT_EQ(panel->getPart("items[2]", true), nullptr) << "items are made one by one";
    EXPECT_NE(panel->getPart("items[1]", true), nullptr);
    EXPECT_EQ(panel->getPartString(item), "items[0]");
    EXPECT_EQ(childrenOf(part("items")).size(), 2u);

    auto* other = new KsSeparator;
    EXPECT_TRUE(panel->setPart("items[0]", other));
    EXPECT_EQ(panel->getPart("items[0]", false), other);
    EXPECT_TRUE(panel->setPart("items[0]", nullptr));
    EXPECT_EQ(childrenOf(part("items")).size(), 1u);
    {
        const KsRef<KsNode> wrong(new KsTranslation);
        ExpectedMessages messages("KsBaseKit::setPart", "cannot be an item");
        EXPECT_FALSE(panel->setPart("items[0]", wrong));
    }
    {
        const KsRef<KsNode> far(new KsSeparator);
        ExpectedMessages messages("KsBaseKit::setPart", "behind the end");
        EXPECT_FALSE(panel->setPart("items[7]", far));
    }
    EXPECT_EQ(panel->getPartString(nullptr), "");
}

// shows: KsBaseKit::getPartString, KsBaseKit::createPathToPart
TEST_F(Kit, pathToAPartPassesTheChainOfItsParents)
{
    const KsRef<KsGroup> root(new KsGroup);
    root->addChild(new KsTranslation);
    root->addChild(panel.get());
    KsNode* look = make("lookA");
    const KsRef<KsPath> path(panel->createPathToPart("lookA", false));
    ASSERT_TRUE(path);
    EXPECT_EQ(path->getHead(), panel.get());
    EXPECT_EQ(path->getTail(), look);
    EXPECT_EQ(path->getLength(), 6);

    const KsRef<KsPath> start(new KsPath(root.get()));
    const KsRef<KsPath> longer(panel->createPathToPart("lookA", false, start));
    ASSERT_TRUE(longer);
    EXPECT_EQ(longer->getLength(), 7);
    EXPECT_EQ(longer->getIndex(1), 1);

    EXPECT_EQ(panel->createPathToPart("lookB", false), nullptr);
    const KsRef<KsPath> made(panel->createPathToPart("inner.geomSeparator", true));
    ASSERT_TRUE(made);
    EXPECT_EQ(panel->getPartString(made->getTail()), "inner.geomSeparator");

    const KsRef<KsPath> elsewhere(new KsPath(look));
    ExpectedMessages messages("KsBaseKit::createPathToPart", "does not lead");
    EXPECT_EQ(panel->createPathToPart("lookA", false, elsewhere), nullptr);
}

TEST_F(Kit, madeAndDefaultPartsCountAsDefaultAndSetOnesDoNot)
{
    make("lookA");
    EXPECT_TRUE(field("lookA")->isDefault());
    EXPECT_TRUE(field("choice")->isDefault());
    static_cast<KsSwitch*>(part("choice"))->whichChild = 0;
    EXPECT_TRUE(field("choice")->isDefault()) << "its own fields are its own affair";
    panel->setPart("lookB", new KsGroup);
    EXPECT_FALSE(field("lookB")->isDefault());
    EXPECT_TRUE(field("choice")->isDefault());
}

TEST_F(Kit, defaultPartIsTheSharedNodeOfThatName)
{
    const KsRef<KsGroup> skin(new KsGroup);
    skin->setName("PanelLook");
    ASSERT_TRUE(panel->setPartAsDefault("lookA", "PanelLook"));
    EXPECT_EQ(part("lookA"), skin.get());
    EXPECT_TRUE(field("lookA")->isDefault());
    const KsRef<KsPanel> other(new KsPanel);
    ASSERT_TRUE(other->setPartAsDefault("lookA", "PanelLook"));
    EXPECT_EQ(other->getPart("lookA", false), skin.get());
    EXPECT_EQ(skin->getNumParents(), 2);
    skin->setName("");
}

TEST_F(Kit, defaultPartWithoutANamedNodeIsAnEmptyOneOfItsOwn)
{
    const KsRef<KsPanel> other(new KsPanel);
    ASSERT_TRUE(panel->setPartAsDefault("lookA", "NobodyHasThisName"));
    ASSERT_TRUE(other->setPartAsDefault("lookA", "NobodyHasThisName"));
    ASSERT_NE(part("lookA"), nullptr);
    EXPECT_EQ(part("lookA")->getTypeId(), KsGroup::getClassTypeId());
    EXPECT_NE(part("lookA"), other->getPart("lookA", false));
    EXPECT_TRUE(field("lookA")->isDefault());
}

TEST_F(Kit, namedNodeOfTheWrongTypeIsPassedOver)
{
    const KsRef<KsNode> wrong(new KsTranslation);
    wrong->setName("AmbiguousLook");
    const KsRef<KsGroup> skin(new KsGroup);
    skin->setName("AmbiguousLook");
    ASSERT_TRUE(panel->setPartAsDefault("lookA", "AmbiguousLook"));
    EXPECT_EQ(part("lookA"), skin.get());
}

// shows: KsInteractionKit::setPartAsDefault
TEST_F(Kit, defaultLeavesAloneWhatTheApplicationSetOrRemoved)
{
    const KsRef<KsGroup> skin(new KsGroup);
    skin->setName("PanelLook");
    auto* mine = new KsGroup;
    panel->setPart("lookA", mine);
    EXPECT_FALSE(panel->setPartAsDefault("lookA", "PanelLook"));
    EXPECT_EQ(part("lookA"), mine);
    panel->setPart("lookB", nullptr);
    EXPECT_FALSE(panel->setPartAsDefault("lookB", "PanelLook"));
    EXPECT_EQ(part("lookB"), nullptr);
    EXPECT_TRUE(panel->setPartAsDefault("lookA", "PanelLook", false));
    EXPECT_EQ(part("lookA"), skin.get());
    EXPECT_TRUE(field("lookA")->isDefault());
    ExpectedMessages messages("KsInteractionKit::setPartAsDefault", "no part");
    EXPECT_FALSE(panel->setPartAsDefault("nothing", "PanelLook"));
}

// shows: KsInteractionKit, KsInteractionKit::setSwitchValue
TEST_F(Kit, switchValueIsWrittenOnlyWhenItChanges)
{
    const KsRef<KsSwitch> choice(new KsSwitch);
    int calls = 0;
    KsFieldSensor sensor([](void* data, KsSensor*) { ++*static_cast<int*>(data); }, &calls);
    sensor.setPriority(0);
    sensor.attach(&choice->whichChild);
    KsInteractionKit::setSwitchValue(choice.get(), 1);
    KsInteractionKit::setSwitchValue(choice.get(), 1);
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(choice->whichChild.getValue(), 1);
    KsInteractionKit::setSwitchValue(nullptr, 1);
    KsInteractionKit::setSwitchValue(panel.get(), 1);
}

TEST_F(Kit, assigningAPartFieldPutsTheNodeInPlace)
{
    make("items");
    auto* group = new KsGroup;
    *static_cast<KsSFNode*>(field("first")) = group;
    EXPECT_EQ(part("first"), group);
    EXPECT_EQ(childrenOf(part("geomSeparator")), (Nodes{group, part("items")}));
    EXPECT_FALSE(field("first")->isDefault());
    *static_cast<KsSFNode*>(field("first")) = static_cast<KsNode*>(nullptr);
    EXPECT_EQ(childrenOf(part("geomSeparator")), Nodes{part("items")});
}

TEST_F(Kit, sensorOfAPartFieldMaySetThePartAgain)
{
    struct Context {
        KsPanel* panel;
        KsGroup* wanted;
        int calls;
    } context{panel.get(), new KsGroup, 0};
    const KsRef<KsGroup> keep(context.wanted);
    KsFieldSensor sensor(
        [](void* data, KsSensor*) {
            auto& c = *static_cast<Context*>(data);
            if (c.calls++ == 0) c.panel->setPart("first", c.wanted);
        },
        &context);
    sensor.setPriority(0);
    sensor.attach(field("first"));
    panel->setPart("first", new KsGroup);
    EXPECT_EQ(part("first"), context.wanted);
    EXPECT_EQ(childrenOf(part("geomSeparator")), Nodes{context.wanted});
}

TEST_F(Kit, writesOnlyThePartsThatTheApplicationSet)
{
    panel->setPartAsDefault("lookA", "NobodyHasThisName");
    make("items");
    const std::string bare = write(panel.get());
    EXPECT_EQ(bare.find("look"), std::string::npos) << bare;
    EXPECT_EQ(bare.find("Separator"), std::string::npos) << bare;
    auto* group = new KsGroup;
    group->addChild(new KsTranslation);
    panel->setPart("lookB", group);
    const std::string text = write(panel.get());
    EXPECT_NE(text.find("lookB"), std::string::npos) << text;
    EXPECT_EQ(text.find("choice"), std::string::npos) << text;

    const KsRef<KsNode> again = read(text);
    ASSERT_TRUE(again);
    auto* kit = ksCast<KsPanel>(again.get());
    ASSERT_NE(kit, nullptr);
    ASSERT_NE(kit->getPart("lookB", false), nullptr);
    EXPECT_EQ(childrenOf(kit->getAnyPart("choice", false)), Nodes{kit->getPart("lookB", false)});
    EXPECT_EQ(childrenOf(kit->getPart("lookB", false)).size(), 1u);
    EXPECT_EQ(write(kit), text);
}

TEST_F(Kit, removedPartStaysRemovedThroughAFile)
{
    panel->setPart("lookA", nullptr);
    const std::string text = write(panel.get());
    EXPECT_NE(text.find("lookA NULL"), std::string::npos) << text;
    const KsRef<KsNode> again = read(text);
    ASSERT_TRUE(again);
    EXPECT_FALSE(static_cast<KsPanel*>(again.get())->setPartAsDefault("lookA", "Nobody"));
}

// shows: KsBaseKit::getAnyPart
TEST_F(Kit, readsPartsInAnyOrder)
{
    const KsRef<KsNode> node = read("Panel { lookB Group {} items Group {} first Group {} "
                                    "lookA Group { Separator {} } size 4 }");
    ASSERT_TRUE(node);
    auto* kit = static_cast<KsPanel*>(node.get());
    EXPECT_EQ(childrenOf(kit->getAnyPart("choice", false)),
              (Nodes{kit->getPart("lookA", false), kit->getPart("lookB", false)}));
    EXPECT_EQ(childrenOf(kit->getAnyPart("geomSeparator", false)),
              (Nodes{kit->getPart("first", false), kit->getAnyPart("second", false),
                     kit->getPart("items", false)}));
    EXPECT_EQ(kit->size.getValue(), 4);
}

TEST_F(Kit, copyHasItsPartsInTheSamePlacesAndSharesTheSharedOnes)
{
    const KsRef<KsGroup> skin(new KsGroup);
    skin->setName("PanelLook");
    panel->setPartAsDefault("lookA", "PanelLook");
    auto* own = new KsGroup;
    panel->setPart("lookB", own);
    static_cast<KsGroup*>(part("choice"))->insertChild(new KsTranslation, 1);
    panel->size = 9;
    const KsRef<KsNode> copied(panel->copy());
    auto* kit = static_cast<KsPanel*>(copied.get());
    ASSERT_NE(kit, nullptr);
    const auto children = childrenOf(kit->getAnyPart("choice", false));
    ASSERT_EQ(children.size(), 3u);
    EXPECT_EQ(children[0], skin.get());
    EXPECT_EQ(children[0], kit->getPart("lookA", false));
    EXPECT_TRUE(children[1]->isOfType(KsTranslation::getClassTypeId()));
    EXPECT_EQ(children[2], kit->getPart("lookB", false));
    EXPECT_NE(children[2], own);
    EXPECT_NE(kit->getAnyPart("choice", false), part("choice"));
    EXPECT_TRUE(kit->getField("lookA")->isDefault());
    EXPECT_FALSE(kit->getField("lookB")->isDefault());
    EXPECT_EQ(kit->size.getValue(), 9);
    // Its parts are its own to change.
    ASSERT_TRUE(kit->setPart("lookB", nullptr));
    EXPECT_EQ(childrenOf(part("choice")).size(), 3u);
    EXPECT_EQ(childrenOf(kit->getAnyPart("choice", false)).size(), 2u);
}

// shows: KsBaseKit::setSearchingChildren
TEST_F(Kit, searchFindsWhatIsInsideAndShowsThePathUpToTheKit)
{
    const KsRef<KsGroup> root(new KsGroup);
    root->addChild(panel.get());
    static_cast<KsGroup*>(make("lookA"))->addChild(new KsMaterial);
    static_cast<KsSwitch*>(part("choice"))->whichChild = 0;
    KsSearchAction search;
    search.setType(KsMaterial::getClassTypeId());
    search.apply(root.get());
    ASSERT_NE(search.getPath(), nullptr);
    EXPECT_EQ(search.getPath()->getTail(), panel.get());
    EXPECT_TRUE(search.getPath()->containsNode(part("lookA")));

    search.setInterest(KsSearchAction::ALL);
    search.apply(root.get());
    ASSERT_EQ(search.getPaths().getLength(), 1);
    EXPECT_EQ(search.getPaths()[0]->getTail(), panel.get());

    KsBaseKit::setSearchingChildren(false);
    search.apply(root.get());
    EXPECT_EQ(search.getPaths().getLength(), 0);
    KsBaseKit::setSearchingChildren(true);

    search.reset();
    search.setNode(panel.get());
    search.apply(root.get());
    ASSERT_NE(search.getPath(), nullptr);
    EXPECT_EQ(search.getPath()->getLength(), 2);
}

TEST_F(Kit, placesNothingBehindIt)
{
    const KsRef<KsGroup> root(new KsGroup);
    auto* shift = new KsTranslation;
    shift->translation = KbVec3f(1, 2, 3);
    static_cast<KsGroup*>(make("first"))->addChild(shift);
    root->addChild(panel.get());
    auto* last = new KsGroup;
    root->addChild(last);
    const KsRef<KsPath> path(new KsPath(root.get()));
    ASSERT_TRUE(path->append(last));
    KsGetMatrixAction matrix{KbViewportRegion()};
    matrix.apply(path.get());
    EXPECT_TRUE(matrix.getMatrix().isIdentity());
    const KsRef<KsPath> toKit(new KsPath(root.get()));
    ASSERT_TRUE(toKit->append(panel.get()));
    matrix.apply(toKit.get());
    EXPECT_TRUE(matrix.getMatrix().isIdentity());
    const KsRef<KsPath> inside(panel->createPathToPart("items", true, toKit));
    matrix.apply(inside.get());
    EXPECT_EQ(matrix.getMatrix()[3][0], 1);
}

// shows: KsNode::getChildren
TEST_F(Kit, holdsNoChildrenOfItsOwn)
{
    ExpectedMessages messages;
    messages.expect("KsNode::internalAddChild", "a Panel holds no children");
    messages.expect("KsNode::internalInsertChild", "a Panel holds no children");
    messages.expect("KsNode::internalGetChild", "a Panel holds no children");
    const KsRef<KsNode> node(new KsGroup);
    panel->internalAddChild(node);
    panel->internalInsertChild(node, 0);
    EXPECT_EQ(panel->internalGetChild(0), nullptr);
    EXPECT_EQ(panel->internalFindChild(node), -1);
    panel->internalRemoveAllChildren();
    EXPECT_EQ(panel->getChildren()->getLength(), 0);
}

// shows: KsInteraction::init, KsInteraction::finish, KsInteraction::getInitCount, KsNodeKit::init,
// KsNodeKit::finish, KsNodeKit::getInitCount
TEST_F(Kit, kitsAndInteractionStartAndStopInPairs)
{
    const int layers = KsDB::getInitCount();
    KsNodeKit::finish(); // without a start: nothing
    EXPECT_EQ(KsNodeKit::getInitCount(), 0);
    KsNodeKit::init();
    KsNodeKit::init();
    KsInteraction::init();
    EXPECT_EQ(KsNodeKit::getInitCount(), 2);
    EXPECT_EQ(KsInteraction::getInitCount(), 1);
    KsInteraction::init();
    EXPECT_EQ(KsInteraction::getInitCount(), 2);
    KsNodeKit::finish();
    EXPECT_EQ(KsNodeKit::getInitCount(), 1);
    KsNodeKit::finish();
    KsInteraction::finish();
    KsInteraction::finish();
    EXPECT_EQ(KsNodeKit::getInitCount(), 0);
    EXPECT_EQ(KsInteraction::getInitCount(), 0);
    EXPECT_EQ(KsDB::getInitCount(), layers);
    EXPECT_TRUE(KsDB::isInitialized());
}

// shows: KsInteraction::init, KsNodeKit::init
TEST(KitStart, keepsTheClassesUntilTheLastOneEndsInWhateverOrder)
{
    ASSERT_FALSE(KsDB::isInitialized());
    const auto isThere = [] { return !KsType::fromName("BaseKit").isBad(); };
    KsNodeKit::init();
    KsInteraction::init();
    KsNodeKit::finish();
    EXPECT_TRUE(isThere()) << "the interaction is not over";
    KsInteraction::finish();
    EXPECT_FALSE(isThere());
    KsDB::init();
    KsNodeKit::init();
    KsDB::finish();
    EXPECT_TRUE(isThere()) << "nor are the kits";
    KsNodeKit::finish();
    EXPECT_FALSE(isThere());
    EXPECT_FALSE(KsDB::isInitialized());
}
