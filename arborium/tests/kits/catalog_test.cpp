#include "Pad.h"

#include <MessageGuard.h>

#include <memory>

namespace {

using Catalog = KitTest;

bool add(KsNodekitCatalog& catalog, const char* name, const char* parent,
         const char* rightSibling = "", bool isPublic = true)
{
    const KsType group = KsGroup::getClassTypeId();
    return catalog.addEntry(name, group, group, true, parent, rightSibling, false,
                            KsType::badType(), KsType::badType(), isPublic);
}

std::vector<std::string> order(const KsNodekitCatalog& catalog, const char* parent)
{
    std::vector<std::string> names;
    for (const int row : catalog.getChildrenInOrder(catalog.getPartNumber(parent)))
        names.emplace_back(catalog.getName(row).getString());
    return names;
}

} // namespace

TEST_F(Catalog, beginsWithTheKitItself)
{
    const KsNodekitCatalog catalog;
    EXPECT_EQ(catalog.getNumEntries(), 1);
    EXPECT_EQ(catalog.getPartNumber("this"), 0);
    EXPECT_EQ(catalog.getPartNumber("that"), -1);
}

// shows: KsNodekitCatalog, KsNodekitCatalog::getPartNumber, KsNodekitCatalog::getRightSibling,
// KsNodekitCatalog::getChildrenInOrder
TEST_F(Catalog, ordersSiblingsByRowsUnlessARightSiblingIsNamed)
{
    KsNodekitCatalog catalog;
    ASSERT_TRUE(add(catalog, "a", "this"));
    ASSERT_TRUE(add(catalog, "b", "this"));
    ASSERT_TRUE(add(catalog, "c", "this", "a"));
    ASSERT_TRUE(add(catalog, "d", "this"));
    EXPECT_EQ(order(catalog, "this"), (std::vector<std::string>{"c", "a", "b", "d"}));
    EXPECT_EQ(catalog.getRightSibling(catalog.getPartNumber("c")), catalog.getPartNumber("a"));
    EXPECT_EQ(catalog.getRightSibling(catalog.getPartNumber("d")), -1);
    EXPECT_EQ(catalog.getPartNumber("c"), 3); // rows keep the order of adding
}

// shows: KsNodekitCatalog::addEntry, KsNodekitCatalog::getNumEntries, KsNodekitCatalog::getName,
// KsNodekitCatalog::getType, KsNodekitCatalog::getDefaultType, KsNodekitCatalog::isNullByDefault,
// KsNodekitCatalog::getParent, KsNodekitCatalog::isList, KsNodekitCatalog::getListContainerType,
// KsNodekitCatalog::getListItemType, KsNodekitCatalog::isPublic,
// KsNodekitCatalog::hasDefaultParts
TEST_F(Catalog, remembersWhatWasSaidOfEachPart)
{
    KsNodekitCatalog catalog;
    const KsType group = KsGroup::getClassTypeId();
    const KsType separator = KsSeparator::getClassTypeId();
    const KsType bad = KsType::badType();
    ASSERT_TRUE(add(catalog, "hidden", "this", "", false));
    EXPECT_FALSE(catalog.hasDefaultParts());
    ASSERT_TRUE(
        catalog.addEntry("shown", group, separator, false, "hidden", "", false, bad, bad, true));
    EXPECT_TRUE(catalog.hasDefaultParts());
    ASSERT_TRUE(catalog.addEntry("list", group, group, true, "hidden", "shown", true, separator,
                                 KsTranslation::getClassTypeId(), true));
    EXPECT_EQ(catalog.getNumEntries(), 4);
    EXPECT_EQ(catalog.getName(1), "hidden");
    EXPECT_EQ(catalog.getName(2), "shown");
    EXPECT_EQ(catalog.getType(2), group);
    EXPECT_EQ(catalog.getDefaultType(2), separator);
    EXPECT_TRUE(catalog.isNullByDefault(1));
    EXPECT_FALSE(catalog.isNullByDefault(2));
    EXPECT_EQ(catalog.getParent(1), 0);
    EXPECT_EQ(catalog.getParent(3), 1);
    EXPECT_EQ(catalog.getParent(0), -1);
    EXPECT_FALSE(catalog.isPublic(1));
    EXPECT_TRUE(catalog.isPublic(2));
    EXPECT_TRUE(catalog.isPublic(KbName("list")));
    EXPECT_FALSE(catalog.isPublic(KbName("hidden")));
    EXPECT_FALSE(catalog.isList(2));
    EXPECT_TRUE(catalog.isList(3));
    EXPECT_TRUE(catalog.getListContainerType(2).isBad());
    EXPECT_EQ(catalog.getListContainerType(3), separator);
    EXPECT_EQ(catalog.getListItemType(3), KsTranslation::getClassTypeId());
}

// shows: KsNodekitCatalog::addEntry
TEST_F(Catalog, refusesWhatCannotBe)
{
    KsNodekitCatalog catalog;
    const KsType group = KsGroup::getClassTypeId();
    const KsType separator = KsSeparator::getClassTypeId();
    const KsType bad = KsType::badType();
    ASSERT_TRUE(add(catalog, "a", "this"));
    ASSERT_TRUE(add(catalog, "below", "a"));
    ExpectedMessages messages;
    const char* const where = "KsNodekitCatalog::addEntry";
    messages.expect(where, "part \"a\": there is one of this name")
        .expect(where, "part \"\": it has no name")
        .expect(where, "part \"b\": the part that it is to stand below does not exist")
        .expect(where, "part \"b\": its right sibling does not stand below the same part", 2)
        .expect(where, "part \"b\": its class is not registered")
        .expect(where, "part \"b\": its default type is not of its type")
        .expect(where, "part \"b\": the types of the list do not fit")
        .expect(where, "part \"b\": the part that it is to stand below is no group");
    EXPECT_FALSE(add(catalog, "a", "this")) << "a name that is taken";
    EXPECT_FALSE(add(catalog, "", "this"));
    EXPECT_FALSE(add(catalog, "b", "nowhere"));
    EXPECT_FALSE(add(catalog, "b", "this", "nowhere"));
    EXPECT_FALSE(add(catalog, "b", "this", "below")) << "a sibling below another parent";
    EXPECT_FALSE(catalog.addEntry("b", bad, bad, true, "this", "", false, bad, bad, true));
    EXPECT_FALSE(catalog.addEntry("b", separator, group, true, "this", "", false, bad, bad, true))
        << "a default type that is not of the type";
    EXPECT_FALSE(catalog.addEntry("b", group, group, true, "this", "", true, bad, bad, true));
    const KsType leaf = KsTranslation::getClassTypeId();
    ASSERT_TRUE(catalog.addEntry("leaf", leaf, leaf, true, "this", "", false, bad, bad, true));
    EXPECT_FALSE(add(catalog, "b", "leaf")) << "a parent that holds no children";
    EXPECT_EQ(catalog.getNumEntries(), 4);
}

TEST_F(Catalog, answersForRowsThatDoNotExist)
{
    const KsNodekitCatalog catalog;
    for (const int row : {-1, 1, 1000}) {
        EXPECT_TRUE(catalog.getName(row).isEmpty());
        EXPECT_TRUE(catalog.getType(row).isBad());
        EXPECT_TRUE(catalog.getDefaultType(row).isBad());
        EXPECT_FALSE(catalog.isNullByDefault(row));
        EXPECT_FALSE(catalog.isPublic(row));
        EXPECT_FALSE(catalog.isList(row));
        EXPECT_EQ(catalog.getParent(row), -1);
        EXPECT_TRUE(catalog.getChildrenInOrder(row).empty());
    }
    EXPECT_FALSE(catalog.isPublic(KbName("nowhere")));
}

// shows: KsNodekitCatalog::clone
TEST_F(Catalog, cloneHasRowsOfItsOwn)
{
    KsNodekitCatalog catalog;
    ASSERT_TRUE(add(catalog, "a", "this"));
    const std::unique_ptr<KsNodekitCatalog> copy(catalog.clone(KsPanel::getClassTypeId()));
    EXPECT_EQ(copy->getType(0), KsPanel::getClassTypeId());
    ASSERT_TRUE(add(*copy, "b", "a"));
    EXPECT_EQ(catalog.getPartNumber("b"), -1);
    EXPECT_TRUE(order(catalog, "a").empty());
    EXPECT_EQ(order(*copy, "a"), (std::vector<std::string>{"b"}));
}

// shows: KsNode::getNodekitCatalog
TEST_F(Catalog, classHasTheRowsOfItsBaseInFront)
{
    const KsRef<KsPanel> panel(new KsPanel);
    const KsNodekitCatalog* catalog = panel->getNodekitCatalog();
    ASSERT_NE(catalog, nullptr);
    EXPECT_EQ(catalog, KsPanel::getClassNodekitCatalog());
    EXPECT_EQ(catalog->getPartNumber("topSeparator"), 1);
    EXPECT_EQ(catalog->getPartNumber("geomSeparator"), 2);
    EXPECT_EQ(catalog->getPartNumber("first"), 3);
    EXPECT_FALSE(catalog->isPublic(KbName("topSeparator")));
    EXPECT_TRUE(catalog->isPublic(KbName("first")));
    EXPECT_EQ(KsDragger::getClassNodekitCatalog()->getPartNumber("first"), -1);
}
