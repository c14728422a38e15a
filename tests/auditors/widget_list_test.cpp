#include <formweave/KsDialogWidgetList.h>

#include <QWidget>
#include <gtest/gtest.h>

TEST(DialogWidgetList, holdsWidgetsInOrderWithoutOwningThem)
{
    QWidget a, b, c;
    KsDialogWidgetList list(8);
    list.append(&a);
    list.append(&c);
    list.insert(&b, 1);
    ASSERT_EQ(list.getLength(), 3);
    EXPECT_EQ(list[0], &a);
    EXPECT_EQ(list[1], &b);
    EXPECT_EQ(list.find(&c), 2);
    EXPECT_EQ(list.find(nullptr), -1);
    EXPECT_EQ(list.get(3), nullptr);
    EXPECT_EQ(list.get(-1), nullptr);

    KsDialogWidgetList copy(list);
    copy[0] = &c;
    EXPECT_EQ(list[0], &a);
    EXPECT_EQ(copy[0], &c);
    copy = list;
    EXPECT_EQ(copy[0], &a);
    const KsDialogWidgetList& constant = copy;
    EXPECT_EQ(constant[2], &c);
}
