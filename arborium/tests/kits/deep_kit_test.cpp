// Kits in kits, parts in parts: their names, their copies, their files, and sensors that set a part
// while it is being set.

#include "Pad.h"

#include <MessageGuard.h>
#include <arborium/actions/KsWriteAction.h>
#include <arborium/io/KsInput.h>
#include <arborium/io/KsOutput.h>
#include <arborium/nodes/KsCube.h>
#include <arborium/nodes/KsMaterial.h>
#include <arborium/sensors/KsSensor.h>

#include <functional>

namespace {

/// A kit with a part from the start, which is a kit too, and a list of kits.
class KsTestRack : public KsBaseKit {
    KS_KIT_HEADER(KsTestRack);

public:
    KsTestRack()
    {
        KsInstanceBuilder build(classRecord, this);
        const KsType bad = KsType::badType();
        const KsType group = KsGroup::getClassTypeId();
        const KsType shape = KsShape::getClassTypeId();
        build.part("board", shape, KsCube::getClassTypeId(), false, "geomSeparator", "", false, bad,
                   bad, KsPublicPart);
        build.part("lamp", KsBaseKit::getClassTypeId(), KsDragger::getClassTypeId(), false,
                   "geomSeparator", "", false, bad, bad, KsPublicPart);
        build.part("look", KsMaterial::getClassTypeId(), "geomSeparator", KsPublicPart, true,
                   "board");
        build.part("panels", group, group, true, "geomSeparator", "", true, group,
                   KsPanel::getClassTypeId(), KsPublicPart);
        build.part("abstract", KsShape::getClassTypeId(), "geomSeparator", KsPublicPart);
    }

protected:
    ~KsTestRack() override = default;
};
KS_KIT_SOURCE(KsTestRack, KsBaseKit)

/// Calls a function inside each change of a node, or of what is below it.
class Watch : public KsNodeSensor {
public:
    Watch(KsNode* node, std::function<void(Watch&)> watchAction)
        : KsNodeSensor(&Watch::run, this), action(std::move(watchAction))
    {
        setPriority(0);
        attach(node);
    }
    std::function<void(Watch&)> action;
    int calls = 0;

private:
    static void run(void* data, KsSensor*)
    {
        auto& watch = *static_cast<Watch*>(data);
        ++watch.calls;
        watch.action(watch);
    }
};

class DeepKit : public KitTest {
protected:
    void SetUp() override
    {
        KitTest::SetUp();
        KsTestRack::initClass();
        rack = new KsTestRack;
        panel = new KsPanel;
    }
    void TearDown() override
    {
        rack.reset();
        panel.reset();
        KsTestRack::exitClass();
        KitTest::TearDown();
    }
    static std::string write(KsNode* node, bool binary = false)
    {
        KsWriteAction action;
        action.getOutput()->setBinary(binary);
        action.apply(node);
        return action.getOutput()->getBuffer();
    }
    static KsRef<KsSeparator> read(const std::string& text)
    {
        KsInput in;
        in.setBuffer(text.data(), text.size());
        return KsRef<KsSeparator>(KsDB::readAll(&in));
    }
    /// The types of what is below the node, in their order.
    static std::string shapeOf(const KsNode* node)
    {
        std::string text(node->getTypeId().getName().view());
        const std::vector<KsNode*> children = childrenOf(node);
        if (children.empty()) return text;
        text += "(";
        for (const KsNode* child : children)
            text += (child == children.front() ? "" : " ") + shapeOf(child);
        return text + ")";
    }

    KsRef<KsTestRack> rack;
    KsRef<KsPanel> panel;
};

} // namespace

// shows: KsNode::copy
TEST_F(DeepKit, isCopiedInPlaceOfThePartsThatTheCopyMade)
{
    const std::string before = shapeOf(rack);
    ASSERT_EQ(before, "TestRack(Separator(Separator(Cube Dragger)))");
    const KsRef<KsNode> node(rack->copy());
    EXPECT_EQ(shapeOf(node), before);
    auto* copy = static_cast<KsTestRack*>(node.get());
    EXPECT_NE(copy->getPart("board", false), rack->getPart("board", false));
    EXPECT_TRUE(copy->getPart("look", true));
    EXPECT_EQ(shapeOf(node), "TestRack(Separator(Separator(Material Cube Dragger)))");
    // What was removed from the kit is not in its copy.
    ASSERT_TRUE(rack->setPart("board", nullptr));
    const KsRef<KsNode> bare(rack->copy());
    EXPECT_EQ(shapeOf(bare), shapeOf(rack));
    EXPECT_EQ(static_cast<KsTestRack*>(bare.get())->getPart("board", false), nullptr);
}

// shows: KsBaseKit::getPart, KsBaseKit::setPart
TEST_F(DeepKit, namesMakeTheItemsOfAListOnTheirWay)
{
    KsNode* first = rack->getPart("panels[0].first", true);
    ASSERT_TRUE(first);
    EXPECT_EQ(rack->getPartString(first), "panels[0].first");
    EXPECT_EQ(rack->getPart("panels[1].first", false), nullptr) << "nothing is made unless asked";
    EXPECT_EQ(childrenOf(rack->getPart("panels", false)).size(), 1u);
    auto* second = new KsGroup;
    ASSERT_TRUE(rack->setPart("panels[1].first", second));
    EXPECT_EQ(rack->getPart("panels[1].first", false), second);
    EXPECT_EQ(childrenOf(rack->getPart("panels", false)).size(), 2u);
    EXPECT_EQ(rack->getPart("panels[7].first", true), nullptr) << "items are made one by one";
}

// shows: KsBaseKit::setPart
TEST_F(DeepKit, setsNothingInWhatCannotBeMade)
{
    const KsRef<KsNode> node(new KsGroup);
    for (const char* name : {"panels[7].first", "abstract.first"}) {
        ExpectedMessages messages(
            "KsBaseKit::setPart",
            ("what \"" + std::string(name) + "\" lies in cannot be made").c_str());
        EXPECT_FALSE(rack->setPart(name, node)) << name;
    }
    EXPECT_TRUE(rack->setPart("panels[7].first", nullptr)) << "what is not there is removed";
    EXPECT_EQ(node->getNumParents(), 0);
}

// shows: KsBaseKit::setAnyPart
TEST_F(DeepKit, isReadAsItWasWrittenWhereAPartWasSetAboveOthers)
{
    // The parts in a part that is written are known again, however they came there.
    ASSERT_TRUE(panel->setPart("lookA", new KsGroup));
    auto* second = new KsSeparator;
    second->addChild(new KsTranslation);
    ASSERT_TRUE(panel->setAnyPart("second", second));
    ASSERT_TRUE(rack->getPart("look", true));
    ASSERT_TRUE(rack->setAnyPart("topSeparator", new KsSeparator));
    for (KsNode* kit : {static_cast<KsNode*>(panel.get()), static_cast<KsNode*>(rack.get())}) {
        const std::string shape = shapeOf(kit);
        const std::string text = write(kit);
        const KsRef<KsSeparator> again = read(text);
        ASSERT_TRUE(again) << text;
        EXPECT_EQ(shapeOf(again->getChild(0)), shape) << text;
        EXPECT_EQ(write(again), text);
        const KsRef<KsSeparator> third = read(write(again, true));
        ASSERT_TRUE(third);
        EXPECT_EQ(shapeOf(third->getChild(0)), shape);
        EXPECT_EQ(write(third), text);
    }
    // Being written does not make them set.
    EXPECT_TRUE(panel->setPartAsDefault("choice", static_cast<KsNode*>(nullptr)));
}

TEST_F(DeepKit, takesAPartThatStandsInItsPlaceByHandInsteadOfTheFormerOne)
{
    auto* geometry = static_cast<KsGroup*>(rack->getAnyPart("geomSeparator", true));
    auto* cube = new KsCube;
    geometry->addChild(cube);
    ASSERT_TRUE(rack->setPart("board", cube));
    EXPECT_EQ(rack->getPart("board", false), cube);
    EXPECT_EQ(childrenOf(geometry), (std::vector<KsNode*>{rack->getPart("lamp", false), cube}));
}

// shows: KsBaseKit::setPart
TEST_F(DeepKit, keepsThePartThatASensorSetsWhileItIsBeingSet)
{
    const KsRef<KsGroup> wanted(new KsGroup);
    for (const bool wasThere : {false, true}) {
        ASSERT_TRUE(panel->setPart("first", wasThere ? new KsGroup : nullptr));
        panel->getAnyPart("geomSeparator", true);
        Watch watch(panel, [&](Watch& self) {
            self.detach();
            EXPECT_TRUE(panel->setPart("first", wanted));
        });
        EXPECT_FALSE(panel->setPart("first", new KsGroup)) << "another one was set";
        EXPECT_EQ(watch.calls, 1);
        EXPECT_EQ(panel->getPart("first", false), wanted.get());
        EXPECT_EQ(childrenOf(panel->getAnyPart("geomSeparator", false)),
                  std::vector<KsNode*>{wanted.get()});
    }
}

TEST_F(DeepKit, losesThePartThatASensorTakesAwayWhileItIsBeingSet)
{
    panel->getPart("lookA", true);
    for (const char* gone : {"lookB", "choice", "second", "geomSeparator", "topSeparator"}) {
        panel->getPart("lookA", true);
        Watch watch(panel, [&](Watch& self) {
            self.detach();
            EXPECT_TRUE(panel->setAnyPart(gone, nullptr));
        });
        const KsRef<KsGroup> set(new KsGroup);
        EXPECT_FALSE(panel->setPart("lookB", set)) << gone;
        EXPECT_EQ(watch.calls, 1);
        EXPECT_EQ(panel->getPart("lookB", false), nullptr) << gone;
        EXPECT_EQ(panel->getAnyPart(gone, false), nullptr) << gone;
    }
    EXPECT_EQ(shapeOf(panel), "Panel");
}

TEST_F(DeepKit, staysInOrderWhereASensorSetsAPartWithoutEnd)
{
    panel->getAnyPart("geomSeparator", true);
    Watch watch(panel, [&](Watch&) { panel->setPart("first", new KsGroup); });
    ExpectedMessages messages;
    messages.allow("KsField::valueChanged", "without end")
        .allow("KsDataSensor::notify", "without end");
    panel->setPart("first", new KsGroup);
    watch.detach();
    const KsNode* first = panel->getPart("first", false);
    ASSERT_TRUE(first);
    EXPECT_EQ(childrenOf(panel->getAnyPart("geomSeparator", false)),
              std::vector<KsNode*>{const_cast<KsNode*>(first)});
}

// shows: KsInteractionKit::setPartAsDefault
TEST_F(DeepKit, looksForADefaultPartWithoutTakingPossessionOfIt)
{
    ASSERT_TRUE(panel->setPart("lookA", new KsGroup));
    auto* named = new KsGroup; // nobody holds it
    named->setName("Look");
    EXPECT_FALSE(panel->setPartAsDefault("lookA", "Look")) << "the part was set";
    ASSERT_EQ(KsNode::getByName("Look"), named);
    EXPECT_TRUE(panel->setPartAsDefault("lookB", "Look"));
    EXPECT_EQ(panel->getPart("lookB", false), named);
}

TEST_F(DeepKit, isReadAgainThoughItStandsBelowWhatWasItsPart)
{
    for (const bool isSet : {false, true}) {
        panel = new KsPanel;
        auto* top = new KsSeparator;
        ASSERT_TRUE(panel->setAnyPart("topSeparator", top));
        if (isSet) panel->setAnyPart("geomSeparator", new KsSeparator);
        const KsRef<KsGroup> geometry(
            static_cast<KsGroup*>(panel->getAnyPart("geomSeparator", true)));
        ASSERT_EQ(childrenOf(top), std::vector<KsNode*>{geometry});
        top->removeChild(geometry);
        geometry->addChild(panel);
        for (const bool binary : {false, true}) {
            const std::string text = write(panel, binary);
            const KsRef<KsSeparator> again(read(text));
            ASSERT_TRUE(again) << text;
            EXPECT_EQ(write(again, binary), text);
        }
        geometry->removeAllChildren();
    }
}
