// Rows and columns on screen: what stands where, in a window and in a scene.

#include <group/Trees.h>

#include <arborium/base/KsLimits.h>

namespace {

class StackLayout : public Trees {
protected:
    /// Two stacks of rows side by side.
    struct Form {
        Columns* columns = new Columns;
        Rows* left = new Rows;
        Rows* right = new Rows;
        ProbeBox* boxes[4] = {makeBox("a"), makeBox("a longer label"), makeBox("the third"),
                              makeBox("d")};
        Form()
        {
            left->addChild(boxes[0]);
            left->addChild(boxes[1]);
            right->addChild(boxes[2]);
            right->addChild(boxes[3]);
            columns->addChild(left);
            columns->addChild(right);
        }
    };
};

/// A rule between the children tells how it is to lie.
class Rule : public ProbeBox {
public:
    std::vector<bool> across;
    void setAcrossStack(bool rows) override { across.push_back(rows); }
};

int labelWidth(const char* label) { return metrics().horizontalAdvance(label) + 3; }

} // namespace

// Label and control columns.

TEST_F(StackLayout, rowsShareTheLabelWidthOfTheLongestVisibleLabel)
{
    auto* rows = new Rows;
    ProbeBox* brief = makeBox("a");
    ProbeBox* lengthy = makeBox("a much longer label");
    ProbeBox* hidden = makeBox("a label that is the longest of all, and not shown");
    hidden->labelVisibility = false;
    for (ProbeBox* box : {brief, lengthy, hidden}) rows->addChild(box);
    dialog->addChild(rows);
    buildWindow(true);
    const int shared = labelWidth("a much longer label");
    for (const ProbeBox* box : {brief, lengthy, hidden}) EXPECT_EQ(box->m_labelSize[0], shared);
    EXPECT_EQ(labelOf(brief)->width(), shared);
    EXPECT_EQ(labelOf(lengthy)->width(), shared);
    EXPECT_TRUE(labelOf(hidden)->isHidden());
    EXPECT_EQ(placeOf(toggleOf(brief)).left(), placeOf(toggleOf(lengthy)).left());
    EXPECT_LT(placeOf(toggleOf(hidden)).left(), placeOf(toggleOf(brief)).left());
    // In the scene too.
    buildScene();
    const auto control = [](ProbeBox* box) {
        KbVec2i32 size, place;
        box->get3DComponentSize(size, place);
        return place[0] - size[0] / 2;
    };
    EXPECT_EQ(control(brief), control(lengthy));
    EXPECT_LT(control(hidden), control(brief));
}

TEST_F(StackLayout, rowsShareTheControlWidthOfTheWidest)
{
    auto* rows = new Rows;
    ProbeBox* a = makeBox("a");
    ProbeBox* b = makeBox("b");
    b->onString = "a long text beside the toggle";
    rows->addChild(a);
    rows->addChild(b);
    dialog->addChild(rows);
    buildWindow();
    EXPECT_EQ(a->m_componentSize[0], b->m_componentSize[0]);
    EXPECT_EQ(a->m_componentSize[0], b->getComponentInitSize()[0]);
    EXPECT_EQ(a->width, b->width);
}

TEST_F(StackLayout, columnsKeepTheirOwnLabelAndControlWidths)
{
    auto* columns = new Columns;
    ProbeBox* brief = makeBox("a");
    ProbeBox* lengthy = makeBox("a much longer label");
    ProbeBox* hidden = makeBox("not shown");
    hidden->labelVisibility = false;
    lengthy->onString = "on";
    for (ProbeBox* box : {brief, lengthy, hidden}) columns->addChild(box);
    dialog->addChild(columns);
    buildWindow();
    EXPECT_EQ(brief->m_labelSize[0], labelWidth("a"));
    EXPECT_EQ(lengthy->m_labelSize[0], labelWidth("a much longer label"));
    EXPECT_EQ(hidden->m_labelSize, KbVec2i32(0, 0));
    EXPECT_LT(brief->m_componentSize[0], lengthy->m_componentSize[0]);
}

TEST_F(StackLayout, eachGroupAlignsItsOwnChildren)
{
    Form form;
    dialog->addChild(form.columns);
    buildWindow();
    EXPECT_EQ(form.boxes[0]->m_labelSize[0], labelWidth("a longer label"));
    EXPECT_EQ(form.boxes[1]->m_labelSize[0], labelWidth("a longer label"));
    EXPECT_EQ(form.boxes[2]->m_labelSize[0], labelWidth("the third"));
    EXPECT_EQ(form.boxes[3]->m_labelSize[0], labelWidth("the third"));
}

TEST_F(StackLayout, aRuleLiesAcrossRowsAndStandsBetweenColumns)
{
    KsRef<Rows> rows(new Rows);
    KsRef<Columns> columns(new Columns);
    auto* lying = new Rule;
    auto* standing = new Rule;
    rows->addChild(lying);
    columns->addChild(standing);
    rows->getComponentInitSize();
    columns->getComponentInitSize();
    EXPECT_EQ(lying->across, std::vector<bool>{true});
    EXPECT_EQ(standing->across, std::vector<bool>{false});
}

// The window.

TEST_F(StackLayout, theQtLayoutsBearTheirNames)
{
    Form form;
    form.left->rowSpacing = 7;
    form.columns->columnSpacing = 9;
    dialog->addChild(form.columns);
    buildWindow();
    auto* rows = qobject_cast<QVBoxLayout*>(layoutOf(form.left));
    auto* columns = qobject_cast<QHBoxLayout*>(layoutOf(form.columns));
    ASSERT_TRUE(rows);
    ASSERT_TRUE(columns);
    EXPECT_EQ(rows->objectName(), "LMN_KsColumnDialog_Layout");
    EXPECT_EQ(columns->objectName(), "LMNKsColumnDialogLayout");
    EXPECT_EQ(rows->spacing(), 7);
    EXPECT_EQ(columns->spacing(), 9);
    EXPECT_EQ(rows->contentsMargins(), QMargins(0, 0, 0, 0));
    EXPECT_EQ(rows->parentWidget(), frameOf(form.left));
    EXPECT_EQ(columns->parentWidget(), frameOf(form.columns));
}

TEST_F(StackLayout, anEdgeTakesThreePixelsOfTheFrame)
{
    Form form;
    form.left->edgeStyle = KsDialogComponent::SHADOW_IN;
    dialog->addChild(form.columns);
    buildWindow();
    EXPECT_EQ(layoutOf(form.left)->contentsMargins(), QMargins(3, 3, 3, 3));
    EXPECT_EQ(form.left->m_groupWidget->frameShape(), QFrame::StyledPanel);
    form.left->edgeStyle = KsDialogComponent::NONE;
    EXPECT_EQ(layoutOf(form.left)->contentsMargins(), QMargins(0, 0, 0, 0));
    form.left->edgeStyle = KsDialogComponent::SHADOW_OUT;
    EXPECT_EQ(layoutOf(form.left)->contentsMargins(), QMargins(3, 3, 3, 3));
    EXPECT_EQ(form.left->m_groupWidget->frameShadow(), QFrame::Raised);
}

TEST_F(StackLayout, theMarginReachesNoQtLayout)
{
    auto* rows = new Rows;
    rows->margin = 20;
    rows->addChild(makeBox("a"));
    dialog->addChild(rows);
    buildWindow(true);
    EXPECT_EQ(layoutOf(rows)->contentsMargins(), QMargins(0, 0, 0, 0));
    EXPECT_EQ(placeOf(frameOf(rows->getChild(0))).topLeft(), placeOf(frameOf(rows)).topLeft());
}

TEST_F(StackLayout, rowsInColumnsStandSideBySideInAWindow)
{
    Form form;
    form.left->rowSpacing = 7;
    form.right->rowSpacing = 7;
    form.columns->columnSpacing = 9;
    dialog->addChild(form.columns);
    buildWindow(true);
    const QRect left = placeOf(frameOf(form.left)), right = placeOf(frameOf(form.right));
    EXPECT_EQ(right.left(), left.right() + 1 + 9);
    EXPECT_EQ(left.top(), right.top());
    EXPECT_EQ(left.height(), right.height());
    for (int i : {0, 2}) {
        const QRect upper = placeOf(frameOf(form.boxes[i]));
        const QRect lower = placeOf(frameOf(form.boxes[i + 1]));
        EXPECT_EQ(upper.left(), lower.left());
        EXPECT_EQ(upper.width(), lower.width());
        EXPECT_GE(lower.top(), upper.bottom() + 1 + 7);
        const QRect stack = i ? right : left;
        EXPECT_TRUE(stack.contains(upper) && stack.contains(lower));
        EXPECT_EQ(placeOf(toggleOf(form.boxes[i])).left(),
                  placeOf(toggleOf(form.boxes[i + 1])).left());
    }
}

TEST_F(StackLayout, columnsOfUnequalLabelsEachGetTheRoomThatTheirsNeeds)
{
    auto* columns = new Columns;
    ProbeBox* brief = makeBox("a");
    ProbeBox* lengthy = makeBox("a label that is much longer than the other one");
    columns->addChild(brief);
    columns->addChild(lengthy);
    dialog->addChild(columns);
    buildWindow(true);
    for (ProbeBox* box : {brief, lengthy}) {
        const QWidget* frame = box->getWidget();
        EXPECT_TRUE(frame->rect().contains(labelOf(box)->geometry()));
        EXPECT_TRUE(frame->rect().contains(toggleOf(box)->geometry()));
        EXPECT_GE(labelOf(box)->width(), labelOf(box)->sizeHint().width());
    }
}

TEST_F(StackLayout, aLargerWindowSharesItsRoomOutWithinTheLimits)
{
    auto* rows = new Rows;
    ProbeBox* fixed = makeBox("fixed");
    ProbeBox* free = makeBox("free");
    fixed->fixedHeight = true;
    fixed->height = 30;
    fixed->fixedWidth = true;
    fixed->width = 120;
    rows->addChild(fixed);
    rows->addChild(free);
    dialog->addChild(rows);
    buildWindow(true);
    window()->resize(500, 400);
    settle();
    EXPECT_EQ(frameOf(fixed)->size(), QSize(120, 30));
    EXPECT_EQ(frameOf(free)->width(), 500);
    EXPECT_GT(frameOf(free)->height(), 200);
    EXPECT_EQ(placeOf(frameOf(rows)).size(), QSize(500, 400));
    EXPECT_EQ(free->width, 500) << "the fields follow the window";
    EXPECT_EQ(fixed->width, 120);
}

TEST_F(StackLayout, aChangedSpacingReachesTheWindowAtOnceAndTheSceneWithTheNextLayout)
{
    auto* rows = new Rows;
    ProbeBox* a = makeBox("a");
    ProbeBox* b = makeBox("b");
    rows->addChild(a);
    rows->addChild(b);
    dialog->addChild(rows);
    buildWindow();
    buildScene();
    const auto gap = [&] { return extentOf(b).top - extentOf(a).bottom; };
    EXPECT_NEAR(gap(), 0, 1e-2);
    rows->rowSpacing = 11;
    EXPECT_EQ(layoutOf(rows)->spacing(), 11);
    EXPECT_NEAR(gap(), 0, 1e-2);
    rows->updateAfterSceneGraphChange();
    EXPECT_NEAR(gap(), 11, 1e-2);
    rows->rowSpacing = -5;
    EXPECT_EQ(layoutOf(rows)->spacing(), 0) << "no layout has less than none";
}

// The scene.

TEST_F(StackLayout, rowsInColumnsStandSideBySideInAScene)
{
    Form form;
    form.left->rowSpacing = 7;
    form.right->rowSpacing = 7;
    form.columns->columnSpacing = 9;
    dialog->addChild(form.columns);
    buildScene();
    const float tolerance = 0.02f;
    const Extent all = extentOf(form.columns), left = extentOf(form.left),
                 right = extentOf(form.right);
    EXPECT_NEAR(all.width(), form.columns->width, tolerance);
    EXPECT_NEAR(all.height(), form.columns->height, tolerance);
    EXPECT_NEAR(left.left, all.left, tolerance);
    EXPECT_NEAR(right.left, left.right + 9, tolerance);
    EXPECT_NEAR(right.right, all.right, tolerance);
    EXPECT_NEAR(left.top, all.top, tolerance);
    EXPECT_NEAR(left.height(), all.height(), tolerance);
    EXPECT_NEAR(right.height(), all.height(), tolerance);
    for (int i : {0, 2}) {
        const Extent stack = i ? right : left;
        const Extent upper = extentOf(form.boxes[i]), lower = extentOf(form.boxes[i + 1]);
        EXPECT_NEAR(upper.left, stack.left, tolerance);
        EXPECT_NEAR(upper.top, stack.top, tolerance);
        EXPECT_NEAR(upper.width(), stack.width(), tolerance);
        EXPECT_NEAR(lower.left, stack.left, tolerance);
        EXPECT_NEAR(lower.top, upper.bottom + 7, tolerance);
        EXPECT_NEAR(lower.bottom, stack.bottom, tolerance);
        EXPECT_NEAR(upper.height(), form.boxes[i]->height, tolerance);
    }
}

TEST_F(StackLayout, anEdgeAndAMarginStandAroundTheChildrenInAScene)
{
    for (const bool edged : {false, true}) {
        KsRef<Rows> rows(new Rows);
        rows->margin = 10;
        rows->edgeStyle = edged ? KsDialogComponent::SHADOW_OUT : KsDialogComponent::NONE;
        ProbeBox* box = makeBox("a");
        rows->addChild(box);
        build(rows.get(), 0, 200, 100);
        const int inset = 10 + (edged ? 3 : 0);
        const Extent outer = extentOf(rows.get()), inner = extentOf(box);
        EXPECT_NEAR(outer.width(), 200, 0.02);
        EXPECT_NEAR(outer.height(), 100, 0.02);
        EXPECT_NEAR(inner.left - outer.left, inset, 0.02);
        EXPECT_NEAR(inner.top - outer.top, inset, 0.02);
        EXPECT_NEAR(outer.right - inner.right, inset, 0.02);
        EXPECT_NEAR(outer.bottom - inner.bottom, inset, 0.02);
    }
}

TEST_F(StackLayout, aFormIsLaidOutAlikeInAWindowAndInAScene)
{
    Form form;
    form.left->rowSpacing = 7;
    form.columns->columnSpacing = 9;
    // Twins: a window and a scene share what is left over differently among columns.
    form.left->edgeStyle = KsDialogComponent::SHADOW_IN;
    form.right->edgeStyle = KsDialogComponent::SHADOW_IN;
    form.right->rowSpacing = 7;
    form.boxes[2]->label = "a";
    form.boxes[3]->label = "a longer label";
    auto* outer = new Rows;
    outer->rowSpacing = 4;
    ProbeBox* head = makeBox("a head over all");
    outer->addChild(head);
    outer->addChild(form.columns);
    dialog->addChild(outer);
    buildWindow(true);
    buildScene();
    EXPECT_EQ(window()->width(), dialog->width);
    EXPECT_EQ(window()->height(), dialog->height);
    const Extent all = extentOf(outer);
    std::vector<KsDialogComponent*> elements{head, form.columns, form.left, form.right};
    elements.insert(elements.end(), std::begin(form.boxes), std::end(form.boxes));
    for (KsDialogComponent* element : elements) {
        const QRect flat = placeOf(frameOf(element));
        const Extent solid = extentOf(element);
        SCOPED_TRACE(element->label.getValue().getString());
        EXPECT_NEAR(flat.left(), solid.left - all.left, 3.1);
        EXPECT_NEAR(flat.top(), solid.top - all.top, 3.1);
        EXPECT_NEAR(flat.width(), solid.width(), 3.1);
        EXPECT_NEAR(flat.height(), solid.height(), 3.1);
    }
}

TEST_F(StackLayout, aResizedWindowLeavesThePanelAsItIs)
{
    Form form;
    dialog->addChild(form.columns);
    buildWindow(true);
    buildScene();
    std::vector<Extent> before;
    for (ProbeBox* box : form.boxes) before.push_back(extentOf(box));
    window()->resize(700, 500);
    settle();
    for (int i = 0; i < 4; ++i) {
        const Extent now = extentOf(form.boxes[i]);
        const Extent was = before[static_cast<std::size_t>(i)];
        EXPECT_NEAR(now.left, was.left, 0.02);
        EXPECT_NEAR(now.right, was.right, 0.02);
        EXPECT_NEAR(now.bottom, was.bottom, 0.02);
    }
}

// Depth and breadth.

TEST_F(StackLayout, layoutsInEachOtherAreBuiltDownToALimitWithOneMessage)
{
    const int limit = KsLimits::current().layoutNesting2D;
    EXPECT_EQ(limit, 128);
    std::vector<Rows*> levels;
    KsDialogGroup* innermost = nullptr;
    KsRef<Rows> outermost(new Rows);
    innermost = outermost.get();
    levels.push_back(outermost.get());
    for (int depth = 2; depth <= limit + 2; ++depth) {
        auto* rows = new Rows;
        innermost->addChild(rows);
        levels.push_back(rows);
        innermost = rows;
    }
    ProbeBox* box = makeBox("a");
    innermost->addChild(box);
    dialog->addChild(outermost.get());
    {
        ExpectedMessages messages("KsStackDialog::buildWidget", "128");
        buildWindow();
    }
    EXPECT_TRUE(levels[static_cast<std::size_t>(limit - 1)]->getWidget());
    EXPECT_FALSE(levels[static_cast<std::size_t>(limit)]->getWidget());
    EXPECT_EQ(box->builds, 0);
    EXPECT_EQ(numToggles(), 0);
    // A scene has no layouts of Qt.
    buildScene();
    EXPECT_EQ(box->isBuilt3D(), 1);
    const Extent inner = extentOf(box), outer = extentOf(outermost.get());
    EXPECT_NEAR(inner.left, outer.left, 0.05);
    EXPECT_NEAR(inner.top, outer.top, 0.05);
}

TEST_F(StackLayout, aTreeAtTheLimitIsBuiltWhole)
{
    KsDialogGroup* innermost = new Rows;
    dialog->addChild(innermost);
    for (int depth = 2; depth <= KsLimits::current().layoutNesting2D; ++depth) {
        KsDialogGroup* group = depth % 2 ? static_cast<KsDialogGroup*>(new Rows) : new Columns;
        innermost->addChild(group);
        innermost = group;
    }
    ProbeBox* box = makeBox("a");
    innermost->addChild(box);
    buildWindow();
    buildScene();
    EXPECT_EQ(numToggles(), 1);
    EXPECT_EQ(box->isBuilt3D(), 1);
}

TEST_F(StackLayout, aThousandChildrenAddedOneByOneStandInTheirOrder)
{
    auto* rows = new Rows;
    dialog->addChild(rows);
    std::vector<KsFormweave*> added;
    for (int i = 0; i < 1000; ++i) {
        ProbeBox* box = makeBox("row");
        rows->addChild(box);
        added.push_back(box);
    }
    EXPECT_EQ(childrenOf(rows), added);
    buildWindow();
    EXPECT_EQ(numToggles(), 1000);
    EXPECT_EQ(framesIn(rows), expectedFrames(rows));
    for (KsFormweave* box : added) EXPECT_EQ(static_cast<ProbeBox*>(box)->builds, 1);
    buildScene();
    EXPECT_EQ(static_cast<ProbeBox*>(added.back())->isBuilt3D(), 1);
    EXPECT_EQ(static_cast<ProbeBox*>(added.back())->builds, 2);
}
