// Sizes of rows and columns: what they need, and how room is shared out among their children.

#include <group/Trees.h>

#include <random>

namespace {

class StackSize : public Trees {};

constexpr int open = KsSizeDB::openLimit;

struct Sizes {
    KbVec2i32 size, min, max;
};
Sizes sizesOf(KsDialogComponent* element)
{
    Sizes s;
    element->getSize(s.size, s.min, s.max);
    return s;
}
Sizes defaultsOf(KsDialogComponent* element)
{
    Sizes s;
    element->getDefaultSize(s.size, s.min, s.max);
    return s;
}

/// A check box of a given size whose limits are known.
ProbeBox* sized(int width, int height, int minSize = 1, int maxSize = open)
{
    auto* box = new ProbeBox;
    box->width = width;
    box->height = height;
    box->minWidth = minSize;
    box->minHeight = minSize;
    box->maxWidth = maxSize;
    box->maxHeight = maxSize;
    return box;
}

/// The described rounds, one unit at a time.
int shareByRounds(std::vector<KsSizeTriple>& rows, int axis, int difference, int& cursor)
{
    const int n = static_cast<int>(rows.size());
    const int step = difference < 0 ? -1 : 1;
    for (int idle = 0; difference != 0 && idle < n;) {
        ++idle;
        KsSizeTriple& row = rows[static_cast<std::size_t>(cursor)];
        const int c = row.init[axis] + step;
        if (c >= row.min[axis] && c <= row.max[axis]) {
            row.init[axis] = c;
            difference -= step;
            idle = 0;
        }
        cursor = cursor + 1 == n ? 0 : cursor + 1;
    }
    return difference;
}

} // namespace

TEST_F(StackSize, anEmptyRowDialogNeedsItsBorderLessOneSpacing)
{
    KsRef<Rows> rows(new Rows);
    rows->rowSpacing = 4;
    EXPECT_EQ(sizesOf(rows.get()).min, KbVec2i32(6, 6 - 4));
    EXPECT_EQ(sizesOf(rows.get()).size, KbVec2i32(6, 6 - 4));
    EXPECT_EQ(sizesOf(rows.get()).max, KbVec2i32(open, open));
    KsRef<Columns> columns(new Columns);
    columns->columnSpacing = 4;
    EXPECT_EQ(sizesOf(columns.get()).min, KbVec2i32(6 - 4, 6));
}

TEST_F(StackSize, sumsAlongTheStackAndTakesTheLargestAcrossIt)
{
    KsRef<Rows> rows(new Rows);
    rows->margin = 2;
    rows->rowSpacing = 5;
    KsRef<Columns> columns(new Columns);
    columns->margin = 2;
    columns->columnSpacing = 5;
    for (KsDialogGroup* group : std::vector<KsDialogGroup*>{rows.get(), columns.get()}) {
        group->addChild(sized(100, 20, 7, 200));
        group->addChild(sized(60, 30, 9, 150));
    }
    Sizes s = defaultsOf(rows.get());
    EXPECT_EQ(s.size, KbVec2i32(100 + 4, 20 + 30 + 4 + 5));
    EXPECT_EQ(s.min, KbVec2i32(9 + 4, 7 + 9 + 4 + 5));
    EXPECT_EQ(s.max, KbVec2i32(200 + 4, 200 + 150 + 4 + 5));
    s = defaultsOf(columns.get());
    EXPECT_EQ(s.size, KbVec2i32(100 + 60 + 4 + 5, 30 + 4));
    EXPECT_EQ(s.min, KbVec2i32(7 + 9 + 4 + 5, 9 + 4));
    EXPECT_EQ(s.max, KbVec2i32(200 + 150 + 4 + 5, 200 + 4));
}

TEST_F(StackSize, theBorderCountsWithAndWithoutAnEdge)
{
    for (const int edge : {KsDialogComponent::NONE, KsDialogComponent::SHADOW_IN}) {
        KsRef<Rows> rows(new Rows);
        rows->edgeStyle = edge;
        rows->addChild(sized(100, 20));
        EXPECT_EQ(sizesOf(rows.get()).size, KbVec2i32(106, 26));
    }
    KsRef<Rows> rows(new Rows);
    KbVec2i32 size(open - 6, open - 5);
    rows->fixSizeWithBorder(size, 1);
    EXPECT_EQ(size, KbVec2i32(open, open));
    rows->fixSizeWithBorder(size, -1);
    EXPECT_EQ(size, KbVec2i32(open - 6, open - 6));
    size.setValue(2, 0);
    rows->fixSizeWithBorder(size, -1);
    EXPECT_EQ(size, KbVec2i32(-4, -6)) << "what is taken away is not clamped";
}

TEST_F(StackSize, childrenWithAnOpenMaximumMakeTheMaximumOpen)
{
    for (KsRef<KsDialogGroup> group :
         {KsRef<KsDialogGroup>(new Rows), KsRef<KsDialogGroup>(new Columns)}) {
        group->addChild(sized(100, 20));
        group->addChild(sized(100, 20));
        EXPECT_EQ(sizesOf(group.get()).max, KbVec2i32(open, open));
    }
}

TEST_F(StackSize, aMaximumThatWouldPassTheLimitStaysWhereItIs)
{
    KsRef<Rows> rows(new Rows);
    rows->addChild(sized(10, 10, 1, 30000));
    rows->addChild(sized(10, 10, 1, 5000));
    rows->addChild(sized(10, 10, 1, 2000));
    EXPECT_EQ(defaultsOf(rows.get()).max, KbVec2i32(30000, 32000));
    rows->margin = 2000;
    EXPECT_EQ(defaultsOf(rows.get()).max, KbVec2i32(open, open));
}

TEST_F(StackSize, onlyWhatNobodyAskedForComesFromTheChildren)
{
    KsRef<Rows> rows(new Rows);
    rows->width = 300;
    rows->maxHeight = 500;
    rows->addChild(sized(100, 20, 8));
    Sizes s = sizesOf(rows.get());
    EXPECT_EQ(s.size, KbVec2i32(300, 26));
    EXPECT_EQ(s.min, KbVec2i32(14, 14));
    EXPECT_EQ(s.max, KbVec2i32(open, 500));
    rows->fixedWidth = true;
    s = sizesOf(rows.get());
    EXPECT_EQ(s.min, KbVec2i32(300, 14));
    EXPECT_EQ(s.max, KbVec2i32(300, 500));
    rows->maxWidth = 200;
    EXPECT_EQ(sizesOf(rows.get()).size[0], 200) << "the maximum wins";
}

TEST_F(StackSize, theControlZoneOfAGroupIsThatOfItsChildrenUntilAChange)
{
    const auto control = [](ProbeBox* box) { return box->getComponentInitSize(); };
    KsRef<Rows> rows(new Rows);
    rows->margin = 4;
    rows->rowSpacing = 3;
    ProbeBox* a = makeBox();
    ProbeBox* b = makeBox();
    b->onString = "a long string";
    rows->addChild(a);
    rows->addChild(b);
    const int wide = control(b)[0], high = control(a)[1] + control(b)[1];
    EXPECT_EQ(rows->getComponentInitSize(), KbVec2i32(wide, 8 + high + 3))
        << "the margin is not added to the width of a child";
    rows->rowSpacing = 30;
    EXPECT_EQ(rows->getComponentInitSize()[1], 8 + high + 3) << "kept";
    rows->resetSize();
    EXPECT_EQ(rows->getComponentInitSize()[1], 8 + control(a)[1] + control(b)[1] + 30);
    EXPECT_EQ(rows->getLabelInitSize(), KbVec2i32(0, 0));

    KsRef<Columns> columns(new Columns);
    columns->columnSpacing = 3;
    ProbeBox* c = makeBox();
    ProbeBox* d = makeBox();
    d->onString = "two\\nlines";
    columns->addChild(c);
    columns->addChild(d);
    EXPECT_EQ(columns->getComponentInitSize(),
              KbVec2i32(control(c)[0] + control(d)[0] + 3, control(d)[1]));
}

TEST_F(StackSize, hugeSpacingsAndMarginsDoNotOverflow)
{
    for (const int value : {2147483647, -2147483647 - 1, 1000000000}) {
        KsRef<Rows> rows(new Rows);
        rows->margin = value;
        rows->rowSpacing = value;
        auto* inner = new Columns;
        inner->margin = value;
        inner->columnSpacing = value;
        for (int i = 0; i < 40; ++i) {
            auto* child = i % 2 ? sized(value, value) : new ProbeBox;
            rows->addChild(child);
            inner->addChild(new ProbeBox);
        }
        rows->addChild(inner);
        rows->getComponentInitSize();
        sizesOf(rows.get());
        measure(rows.get());
        EXPECT_EQ(rows->isBuilt3D(), 1);
    }
}

// Sharing in the scene.

TEST_F(StackSize, roomIsSharedPixelByPixelAndTheNextPixelGoesToTheNextChild)
{
    KsRef<Rows> rows(new Rows);
    std::vector<ProbeBox*> boxes;
    for (int i = 0; i < 3; ++i) {
        boxes.push_back(sized(50, 10));
        rows->addChild(boxes.back());
    }
    const auto heights = [&] {
        return std::vector<int>{boxes[0]->height, boxes[1]->height, boxes[2]->height};
    };
    build(rows.get(), 0, 100, 32);
    EXPECT_EQ(heights(), (std::vector<int>{11, 11, 10}));
    build(rows.get(), 0, 100, 33);
    EXPECT_EQ(heights(), (std::vector<int>{11, 11, 11}));
    build(rows.get(), 0, 100, 31);
    EXPECT_EQ(heights(), (std::vector<int>{10, 10, 11}));
    for (const ProbeBox* box : boxes) EXPECT_EQ(box->width, 100);
}

TEST_F(StackSize, columnsShareTheirWidthInTheSameWay)
{
    KsRef<Columns> columns(new Columns);
    std::vector<ProbeBox*> boxes;
    for (int i = 0; i < 3; ++i) {
        boxes.push_back(sized(10, 50));
        columns->addChild(boxes.back());
    }
    build(columns.get(), 0, 32, 100);
    EXPECT_EQ(boxes[0]->width, 11);
    EXPECT_EQ(boxes[1]->width, 11);
    EXPECT_EQ(boxes[2]->width, 10);
    for (const ProbeBox* box : boxes) EXPECT_EQ(box->height, 100);
}

TEST_F(StackSize, aChildAtItsMaximumIsSkippedAndRoomThatNobodyTakesStays)
{
    KsRef<Rows> rows(new Rows);
    ProbeBox* small = sized(50, 10, 1, 12);
    ProbeBox* large = sized(50, 10, 1, 40);
    for (ProbeBox* box : {small, large}) {
        box->maxWidth = 500;
        rows->addChild(box);
    }
    rows->maxHeight = 100;
    build(rows.get(), 0, 100, 34);
    EXPECT_EQ(small->height, 12);
    EXPECT_EQ(large->height, 22);
    build(rows.get(), 0, 100, 90);
    EXPECT_EQ(small->height, 12);
    EXPECT_EQ(large->height, 40);
    EXPECT_EQ(rows->height, 90);
}

TEST_F(StackSize, sharingInClosedFormIsTheSameAsTheRounds)
{
    const unsigned seed = 20260711;
    std::mt19937 random(seed);
    const auto upTo = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
    for (int round = 0; round < 4000; ++round) {
        SCOPED_TRACE("seed " + std::to_string(seed) + ", round " + std::to_string(round));
        const int n = upTo(6);
        std::vector<KsSizeTriple> rows(static_cast<std::size_t>(n));
        KsSizeDB db;
        db.setCount(n);
        int cursor = 0;
        const int axis = upTo(2);
        for (int i = 0; i < n; ++i) {
            KsSizeTriple& row = rows[static_cast<std::size_t>(i)];
            row.init[axis] = upTo(30);
            row.min[axis] = upTo(30);
            row.max[axis] = upTo(60);
            db[i] = row;
        }
        for (int again = 0; again < 3; ++again) {
            const int difference = upTo(160) - 80;
            const int left = n ? shareByRounds(rows, axis, difference, cursor) : difference;
            ASSERT_EQ(db.share(axis, difference), left);
            for (int i = 0; i < n; ++i)
                ASSERT_EQ(db[i].init[axis], rows[static_cast<std::size_t>(i)].init[axis]) << i;
        }
    }
}

TEST_F(StackSize, aVeryLargeDifferenceIsSharedAtOnce)
{
    KsSizeDB db;
    db.setCount(3);
    for (int i = 0; i < 3; ++i) db[i].max[1] = 2000000000;
    EXPECT_EQ(db.share(1, 2000000000), 0);
    EXPECT_EQ(db[0].init[1], 666666667);
    EXPECT_EQ(db[1].init[1], 666666667);
    EXPECT_EQ(db[2].init[1], 666666666);
}
