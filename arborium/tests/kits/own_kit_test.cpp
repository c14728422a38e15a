// Kits that a program derives itself: their catalogs, their copies, what they write.

#include "Pad.h"

#include <MessageGuard.h>
#include <arborium/actions/KsWriteAction.h>
#include <arborium/io/KsInput.h>
#include <arborium/io/KsOutput.h>
#include <arborium/nodes/KsCube.h>
#include <arborium/nodes/KsMaterial.h>
#include <arborium/nodes/KsSphere.h>

namespace {

/// A kit with a part that is there from the start and one that is made at need.
class KsTestLantern : public KsBaseKit {
    KS_KIT_HEADER(KsTestLantern);

public:
    KsTestLantern()
    {
        KsInstanceBuilder build(classRecord, this);
        wasFirst = build.isFirst();
        build.field("bright", bright, 1);
        build.part("glass", KsShape::getClassTypeId(), KsCube::getClassTypeId(), false,
                   "geomSeparator", "", false, KsType::badType(), KsType::badType(), true);
        build.part("look", KsMaterial::getClassTypeId(), "geomSeparator", KsPublicPart, true,
                   "glass");
        build.part("choice", KsSwitch::getClassTypeId(), "geomSeparator", KsHiddenPart);
    }
    KsSFInt32 bright;
    bool wasFirst = false;
    using KsBaseKit::createDefaultParts;
    using KsBaseKit::createNodekitPartsList;

protected:
    ~KsTestLantern() override = default;
};
KS_KIT_SOURCE(KsTestLantern, KsBaseKit)

/// A subclass with a part more, which keeps its looks to itself.
class KsTestSignal : public KsTestLantern {
    KS_KIT_HEADER(KsTestSignal);

public:
    KsTestSignal()
    {
        KsInstanceBuilder build(classRecord, this);
        build.part("arm", KsSphere::getClassTypeId(), "geomSeparator", KsPublicPart);
        const KsType group = KsGroup::getClassTypeId();
        build.part("bells", group, group, true, "geomSeparator", "", true, group,
                   KsSphere::getClassTypeId(), KsPublicPart);
    }
    void write(KsWriteAction* action) override
    {
        KsOutput* out = action->getOutput();
        if (out->getStage() == KsOutput::COUNT_REFS) {
            addWriteReference(out);
            writeFields(action);
        } else if (!writeHeader(out, isGroup())) {
            writeFields(action);
            endWrite(action);
        }
    }

protected:
    ~KsTestSignal() override = default;
    bool copiesStructure() const override { return false; }
    void writeFields(KsWriteAction* action) override
    {
        if (action->getOutput()->getStage() == KsOutput::WRITE && !action->getOutput()->isBinary())
            action->getOutput()->writeWord("# a signal");
        KsTestLantern::writeFields(action);
    }
};
KS_KIT_SOURCE(KsTestSignal, KsTestLantern)

/// A kit whose catalog cannot be: two parts of one name.
class KsTestFaulty : public KsBaseKit {
    KS_KIT_HEADER(KsTestFaulty);

public:
    KsTestFaulty()
    {
        KsInstanceBuilder build(classRecord, this);
        build.part("twin", KsGroup::getClassTypeId(), "geomSeparator", KsPublicPart);
        build.part("twin", KsGroup::getClassTypeId(), "geomSeparator", KsPublicPart);
    }

protected:
    ~KsTestFaulty() override = default;
};
KS_KIT_SOURCE(KsTestFaulty, KsBaseKit)

class OwnKit : public KitTest {
protected:
    void SetUp() override
    {
        KitTest::SetUp();
        KsTestLantern::initClass();
        KsTestSignal::initClass();
    }
    void TearDown() override
    {
        KsTestSignal::exitClass();
        KsTestLantern::exitClass();
        KitTest::TearDown();
    }
    static std::string write(KsNode* node)
    {
        KsWriteAction action;
        action.apply(node);
        return action.getOutput()->getBuffer();
    }
};

} // namespace

// shows: KsInstanceBuilder::isFirst, KsBaseKit::getKitCatalog, KsBaseKit::createNodekitPartsList, KsBaseKit::createDefaultParts
TEST_F(OwnKit, makesThePartsThatAreNotNullByDefault)
{
    const KsRef<KsTestLantern> lantern(new KsTestLantern), second(new KsTestLantern);
    EXPECT_TRUE(lantern->wasFirst);
    EXPECT_FALSE(second->wasFirst);
    EXPECT_TRUE(lantern->getKitCatalog()->hasDefaultParts());
    KsNode* glass = second->getPart("glass", false);
    ASSERT_TRUE(ksCast<KsCube>(glass));
    EXPECT_EQ(second->getPart("look", false), nullptr);
    const KsNode* look = second->getPart("look", true);
    EXPECT_EQ(childrenOf(second->getAnyPart("geomSeparator", false)),
              (std::vector<KsNode*>{const_cast<KsNode*>(look), glass}));
    EXPECT_TRUE(second->hasDefaultValues()) << "made parts count as default";
    // The steps of its constructor may be run again.
    ASSERT_TRUE(second->setPart("glass", nullptr));
    second->createNodekitPartsList();
    EXPECT_EQ(second->getPart("glass", false), nullptr);
    second->createDefaultParts();
    EXPECT_TRUE(second->getPart("glass", false));
    const KsRef<KsPanel> panel(new KsPanel);
    EXPECT_FALSE(panel->getKitCatalog()->hasDefaultParts());
}

// shows: KsBaseKit::catalogError
TEST_F(OwnKit, tellsOfAPartThatItsCatalogCannotHold)
{
    KsTestFaulty::initClass();
    {
        ExpectedMessages messages("KsBaseKit::catalogError",
                                  "a part of the catalog of TestFaulty was refused");
        messages.expect("KsNodekitCatalog::addEntry",
                        "part \"twin\" of TestFaulty: there is one of this name");
        const KsRef<KsTestFaulty> faulty(new KsTestFaulty);
        EXPECT_TRUE(faulty->getPart("twin", true));
    }
    const KsRef<KsTestFaulty> second(new KsTestFaulty); // said once, for the class
    KsTestFaulty::exitClass();
}

TEST_F(OwnKit, hasThePartsOfItsBaseClassInFrontOfItsOwn)
{
    const KsRef<KsTestLantern> lantern(new KsTestLantern);
    const KsRef<KsTestSignal> signal(new KsTestSignal);
    const KsNodekitCatalog* base = lantern->getNodekitCatalog();
    const KsNodekitCatalog* mine = signal->getNodekitCatalog();
    ASSERT_EQ(mine->getNumEntries(), base->getNumEntries() + 2);
    for (int row = 1; row < base->getNumEntries(); ++row)
        EXPECT_EQ(mine->getName(row), base->getName(row));
    EXPECT_EQ(mine->getType(0), KsTestSignal::getClassTypeId());
    EXPECT_EQ(base->getPartNumber("arm"), -1);
    const int bells = mine->getPartNumber("bells");
    EXPECT_EQ(mine->getListContainerType(bells), KsGroup::getClassTypeId());
    EXPECT_EQ(mine->getListItemType(bells), KsSphere::getClassTypeId());
    EXPECT_TRUE(mine->getListItemType(1).isBad());
    EXPECT_TRUE(ksCast<KsSphere>(signal->getPart("bells[0]", true)));
    EXPECT_TRUE(ksCast<KsCube>(signal->getPart("glass", false)));
}

// shows: KsFieldContainer::getAllFields
TEST_F(OwnKit, listsAFieldForEachPart)
{
    const KsRef<KsTestLantern> lantern(new KsTestLantern);
    KsFieldList present, all;
    lantern->getFields(present);
    lantern->getAllFields(all);
    std::string names;
    for (const KsFieldEntry& each : all) names += each.name.getString() + std::string(" ");
    EXPECT_EQ(names, "topSeparator geomSeparator bright glass look choice ");
    EXPECT_LT(present.size(), all.size());
    for (const KsFieldEntry& each : all) {
        if (each.name == "bright") continue;
        const auto* field = ksCast<KsSFNode>(static_cast<const KsField*>(each.field));
        ASSERT_TRUE(field) << each.name;
        EXPECT_EQ(field->getValue(), lantern->getAnyPart(each.name, false)) << each.name;
    }
}

TEST_F(OwnKit, isCopiedWithTheConnectionsInsideIt)
{
    const KsRef<KsTestLantern> lantern(new KsTestLantern);
    auto* choice = static_cast<KsSwitch*>(lantern->getAnyPart("choice", true));
    auto* glass = static_cast<KsCube*>(lantern->getPart("glass", false));
    auto* look = static_cast<KsMaterial*>(lantern->getPart("look", true));
    ASSERT_TRUE(choice->whichChild.connectFrom(&lantern->bright));
    const KsRef<KsCube> outside(new KsCube);
    ASSERT_TRUE(glass->width.connectFrom(&outside->width));
    lantern->bright = 5;

    const KsRef<KsNode> node(lantern->copy());
    auto* copy = static_cast<KsTestLantern*>(node.get());
    auto* itsChoice = static_cast<KsSwitch*>(copy->getAnyPart("choice", false));
    auto* itsGlass = static_cast<KsCube*>(copy->getPart("glass", false));
    ASSERT_TRUE(itsChoice);
    EXPECT_NE(copy->getPart("look", false), look);
    EXPECT_EQ(itsChoice->whichChild.getConnectedField(), &copy->bright);
    EXPECT_FALSE(itsGlass->width.isConnected()) << "to what is not copied only if asked";
    copy->bright = 7;
    EXPECT_EQ(itsChoice->whichChild.getValue(), 7);
    EXPECT_EQ(choice->whichChild.getValue(), 5);

    const KsRef<KsNode> linked(lantern->copy(true));
    auto* third =
        static_cast<KsCube*>(static_cast<KsTestLantern*>(linked.get())->getPart("glass", false));
    outside->width = 9.0f;
    EXPECT_EQ(third->width.getValue(), 9);
    EXPECT_EQ(itsGlass->width.getValue(), 2);
}

// shows: KsBaseKit::copiesStructure
TEST_F(OwnKit, mayBeCopiedWithThePartsThatWereSetOnly)
{
    const KsRef<KsTestSignal> signal(new KsTestSignal);
    signal->getPart("look", true);
    auto* arm = new KsSphere;
    ASSERT_TRUE(signal->setPart("arm", arm));
    static_cast<KsSeparator*>(signal->getAnyPart("geomSeparator", false))->addChild(new KsGroup);
    const KsRef<KsNode> node(signal->copy());
    auto* copy = static_cast<KsTestSignal*>(node.get());
    EXPECT_TRUE(copy->getPart("arm", false));
    EXPECT_NE(copy->getPart("arm", false), arm);
    EXPECT_EQ(copy->getPart("look", false), nullptr) << "it is made anew at need";
    EXPECT_EQ(childrenOf(copy->getAnyPart("geomSeparator", false)).size(), 2u);

    // By default all of it is copied.
    const KsRef<KsTestLantern> lantern(new KsTestLantern);
    lantern->getPart("look", true);
    static_cast<KsSeparator*>(lantern->getAnyPart("geomSeparator", false))->addChild(new KsGroup);
    const KsRef<KsNode> whole(lantern->copy());
    auto* twin = static_cast<KsTestLantern*>(whole.get());
    EXPECT_NE(twin->getPart("look", false), nullptr);
    EXPECT_EQ(childrenOf(twin->getAnyPart("geomSeparator", false)).size(), 3u);
}

// shows: KsBaseKit::writeFields, KsBaseKit::endWrite
TEST_F(OwnKit, mayWriteMoreThanItsFields)
{
    const KsRef<KsTestSignal> signal(new KsTestSignal);
    signal->bright = 3;
    ASSERT_TRUE(signal->setPart("look", new KsMaterial));
    EXPECT_EQ(write(signal), "#Arborium V2.1 ascii\n\nTestSignal {\n    # a signal\n    bright 3\n"
                             "    look Material {\n    }\n}\n");
}

// shows: KsBaseKit::writeFields
TEST_F(OwnKit, writesPublicPartsThatWereChangedSinceTheyWereMade)
{
    const KsRef<KsTestLantern> lantern(new KsTestLantern);
    auto* look = ksCast<KsMaterial>(lantern->getPart("look", true));
    auto* choice = ksCast<KsSwitch>(lantern->getAnyPart("choice", true));
    choice->whichChild = 0;
    EXPECT_EQ(write(lantern), "#Arborium V2.1 ascii\n\nTestLantern {\n}\n")
        << "a hidden part is the kit's own affair";
    look->transparency.setValue(0.5f);
    auto* glass = ksCast<KsCube>(lantern->getPart("glass", false));
    glass->setName("Glass");
    const std::string text = write(lantern);
    EXPECT_EQ(text, "#Arborium V2.1 ascii\n\nTestLantern {\n    glass DEF Glass Cube {\n    }\n"
                    "    look Material {\n        transparency 0.5\n    }\n}\n");
    EXPECT_TRUE(lantern->hasDefaultValues()) << "writing changes nothing";
    EXPECT_EQ(write(lantern), text);
    for (const bool binary : {false, true}) {
        KsWriteAction action;
        action.getOutput()->setBinary(binary);
        action.apply(lantern);
        const std::string form = action.getOutput()->getBuffer();
        KsInput in;
        in.setBuffer(form.data(), form.size());
        const KsRef<KsSeparator> again(KsDB::readAll(&in));
        ASSERT_TRUE(again);
        EXPECT_EQ(write(again), text);
    }
}

TEST_F(OwnKit, writesListsThatHoldItemsAndKitsWithinThatWereChanged)
{
    const KsRef<KsPanel> panel(new KsPanel);
    panel->getPart("items", true);
    panel->getPart("inner", true);
    EXPECT_EQ(write(panel), "#Arborium V2.1 ascii\n\nPanel {\n}\n");
    panel->getPart("items[0]", true);
    EXPECT_EQ(write(panel), "#Arborium V2.1 ascii\n\nPanel {\n    items Group {\n"
                            "        Separator {\n        }\n    }\n}\n");
}

// shows: KsGetView::getViewportIsEnabled, KsGetView::getViewportOrigin,
// KsGetView::getViewportSize
TEST_F(OwnKit, asksForThePartOfTheWindowThatItsClassSays)
{
    struct Inset : KsTestLantern {
        bool getViewportIsEnabled() const override { return true; }
        KbVec2f getViewportOrigin() const override { return {0.75f, 0.75f}; }
        KbVec2f getViewportSize() const override { return {0.25f, 0.25f}; }
    };
    const KsRef<KsBaseKit> inset(new Inset);
    EXPECT_TRUE(inset->getViewportIsEnabled());
    EXPECT_EQ(inset->getViewportOrigin(), KbVec2f(0.75f, 0.75f));
    EXPECT_EQ(inset->getViewportSize(), KbVec2f(0.25f, 0.25f));
    const KsRef<KsTestLantern> lantern(new KsTestLantern);
    const KsGetView* view = lantern.get();
    EXPECT_FALSE(view->getViewportIsEnabled());
    EXPECT_EQ(view->getViewportOrigin(), KbVec2f(0, 0));
    EXPECT_EQ(view->getViewportSize(), KbVec2f(1, 1));
}

// shows: KsBaseKit::isSearchingChildren, KsBaseKit::setSearchingChildren
TEST_F(OwnKit, areSearchedUnlessToldOtherwise)
{
    EXPECT_TRUE(KsBaseKit::isSearchingChildren());
    KsBaseKit::setSearchingChildren(false);
    EXPECT_FALSE(KsBaseKit::isSearchingChildren());
    KsBaseKit::setSearchingChildren(true);
}

TEST_F(OwnKit, hidesItsHiddenPartsInPathsAndNames)
{
    const KsRef<KsTestLantern> lantern(new KsTestLantern);
    KsNode* choice = lantern->getAnyPart("choice", true);
    {
        ExpectedMessages messages("KsBaseKit::getPart", "\"choice\" is a hidden part");
        EXPECT_EQ(lantern->getPart("choice", false), nullptr);
    }
    const KsRef<KsPath> path(lantern->createPathToPart("choice", false));
    ASSERT_TRUE(path);
    EXPECT_TRUE(path->containsNode(choice));
    EXPECT_EQ(lantern->getPartString(lantern->getPart("glass", false)), "glass");
}

TEST_F(OwnKit, sharesPartsWithOtherKitsThroughFiles)
{
    const std::string text = "#Arborium V2.1 ascii\n"
                             "\nTestLantern {\n    look DEF Gold Material {\n"
                             "        diffuseColor 1 0.8 0\n    }\n}\n"
                             "\nSeparator {\n    TestLantern {\n        look USE Gold\n    }\n"
                             "    USE Gold\n}\n";
    for (const bool binary : {false, true}) {
        KsInput in;
        std::string form = text;
        if (binary) {
            in.setBuffer(text.data(), text.size());
            const KsRef<KsSeparator> first(KsDB::readAll(&in));
            ASSERT_TRUE(first);
            KsWriteAction action;
            action.getOutput()->setBinary(true);
            action.apply(first);
            form = action.getOutput()->getBuffer();
        }
        in.setBuffer(form.data(), form.size());
        const KsRef<KsSeparator> root(KsDB::readAll(&in));
        ASSERT_TRUE(root);
        const auto* group = static_cast<KsSeparator*>(root->getChild(1));
        KsNode* gold = static_cast<KsTestLantern*>(root->getChild(0))->getPart("look", false);
        EXPECT_TRUE(ksCast<KsMaterial>(gold));
        EXPECT_EQ(static_cast<KsTestLantern*>(group->getChild(0))->getPart("look", false), gold);
        EXPECT_EQ(group->getChild(1), gold);
        EXPECT_EQ(write(root), text);
    }
}
