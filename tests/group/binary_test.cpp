// The binary form of every element that holds others: the flags tell whether children follow, their
// number stands in front of them, and files of the old version end them with -1.

#include "Trees.h"

#include <arborium/io/KsInput.h>
#include <arborium/io/KsOutput.h>

#include <string>
#include <utility>

namespace {

struct Container {
    const char* type;
    const char* child;
};

const Container s_containers[] = {
    {"TopLevelDialog", "DialogCheckBox"},
    {"DialogGroup", "DialogLabel"},
    {"RowDialog", "DialogCheckBox"},
    {"ColumnDialog", "RowDialog"},
    {"TabDialog", "RowDialog"},
    {"MenuBar", "MenuPopup"},
    {"MenuPopup", "MenuPushButton"},
    {"DialogCheckBoxLauncher", "TopLevelDialog"},
    {"DialogPushButtonLauncher", "TopLevelDialog"},
    {"MenuCheckBoxLauncher", "TopLevelDialog"},
    {"MenuPushButtonLauncher", "TopLevelDialog"},
};

const std::string s_header = "#Arborium V2.1 binary\n";
const std::string s_oldHeader = "#Arborium V1.0 binary\n";

std::string number(std::uint32_t value, int bytes = 4)
{
    std::string text;
    for (int i = bytes - 1; i >= 0; --i) text += static_cast<char>(value >> (8 * i) & 0xff);
    return text;
}

/// An element without fields. `children` begin with their number; without bit 2 they are left out.
std::string node(const std::string& type, unsigned flags, const std::string& children = {})
{
    return number(static_cast<std::uint32_t>(type.size())) + type + number(flags, 2) + number(0) +
           children;
}

class BinaryElements : public DialogBase {
protected:
    static int numChildren(const KsRef<KsFormweave>& element)
    {
        return element && element->getElements() ? element->getElements()->count() : -1;
    }
};

} // namespace

TEST_F(BinaryElements, comeBackFromTheirBinaryFormWithTheirChildren)
{
    for (const Container& each : s_containers) {
        SCOPED_TRACE(each.type);
        const std::string inner = std::string(each.child) + " { label \"\xe4 inner\" }";
        const auto element = readNode<KsFormweave>(std::string(each.type) + " { label \"outer\" " +
                                                   inner + " DEF Second " + inner + " }");
        ASSERT_TRUE(element);
        EXPECT_EQ(numChildren(element), 2);
        const std::string text = written(element.get()), bytes = writtenBinary(element.get());
        const auto again = readNode<KsFormweave>(bytes);
        ASSERT_TRUE(again);
        EXPECT_EQ(again->getTypeId(), element->getTypeId());
        EXPECT_EQ(written(again.get()), text);
        EXPECT_EQ(writtenBinary(again.get()), bytes);
    }
}

TEST_F(BinaryElements, haveChildrenOnlyIfTheFlagsSayThatTheyFollow)
{
    for (const Container& each : s_containers) {
        SCOPED_TRACE(each.type);
        const std::string two = number(2) + node(each.child, 0) + node(each.child, 0);
        const auto full = readNode<KsFormweave>(s_header + node(each.type, 2, two));
        EXPECT_EQ(numChildren(full), 2);
        const auto none = readNode<KsFormweave>(s_header + node(each.type, 2, number(0)));
        EXPECT_EQ(numChildren(none), 0);
        // Other bits say nothing of children; what follows is the next element.
        const KsRef<KsSeparator> scene =
            readScene(s_header + node(each.type, 0xfffd) + node(each.child, 0));
        ASSERT_TRUE(scene);
        ASSERT_EQ(scene->getNumChildren(), 2);
        EXPECT_EQ(numChildren(KsRef<KsFormweave>(ksCast<KsFormweave>(scene->getChild(0)))), 0);
    }
}

TEST_F(BinaryElements, ofTheOldVersionEndTheirChildrenWithMinusOne)
{
    for (const Container& each : s_containers) {
        SCOPED_TRACE(each.type);
        const std::string one = number(1) + node(each.child, 0);
        const std::string end = number(0xffffffff);
        EXPECT_EQ(numChildren(readNode<KsFormweave>(s_oldHeader + node(each.type, 2, one + end))),
                  1);
        ExpectedMessages messages;
        messages.allow("KsDB::readAll", "");
        EXPECT_FALSE(readScene(s_oldHeader + node(each.type, 2, one))) << "no end";
        EXPECT_FALSE(readScene(s_oldHeader + node(each.type, 2, one + number(0)))) << "another end";
        EXPECT_FALSE(readScene(s_header + node(each.type, 2, one + end)))
            << "an end that the present version does not have";
    }
}

TEST_F(BinaryElements, ofWrongNumbersOfChildrenAreRefused)
{
    for (const Container& each : s_containers) {
        SCOPED_TRACE(each.type);
        for (const std::uint32_t count : {2u, 0x7fffffffu, 0xffffffffu}) {
            ExpectedMessages messages("KsDB::readAll", "");
            EXPECT_FALSE(
                readScene(s_header + node(each.type, 2, number(count) + node(each.child, 0))))
                << count;
        }
        // A node of another kind cannot be a child.
        ExpectedMessages messages("KsDB::readAll", "Cube");
        EXPECT_FALSE(readScene(s_header + node(each.type, 2, number(1) + node("Cube", 0))));
    }
}
