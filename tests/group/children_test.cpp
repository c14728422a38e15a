// Child operations in every container, before and after the build, in both presentations.

#include "Trees.h"

#include <formweave/KsDialogAuditor.h>

#include <QtTest/QtTest>

namespace {

enum class Kind { Dialog, Rows, Columns };
enum class Shown { Nowhere, Window, Scene, Both };

struct Case {
    Kind kind;
    Shown shown;
};

std::string nameOf(const testing::TestParamInfo<Case>& each)
{
    static const char* const kinds[] = {"Dialog", "Rows", "Columns"};
    static const char* const shown[] = {"BeforeTheBuild", "InAWindow", "InAScene", "InBoth"};
    return std::string(kinds[static_cast<int>(each.param.kind)]) +
           shown[static_cast<int>(each.param.shown)];
}

/// One container, with the node-typed operations by which all kinds are alike.
class Children : public Trees, public testing::WithParamInterface<Case> {
protected:
    void SetUp() override
    {
        Trees::SetUp();
        dialog->windowResizedByChildren = true; // so that everybody has the room that it needs
        switch (GetParam().kind) {
        case Kind::Dialog: container = dialog.get(); break;
        case Kind::Rows: container = new Rows; break;
        case Kind::Columns: container = new Columns; break;
        }
        if (container != dialog.get()) dialog->addChild(static_cast<KsDialogComponent*>(container));
        for (const char* label : {"a", "b", "c"}) {
            boxes.push_back(makeBox(label));
            container->internalAddChild(boxes.back());
        }
        if (inWindow()) buildWindow(true);
        if (inScene()) buildScene();
    }
    void TearDown() override
    {
        pool.clear();
        Trees::TearDown();
    }
    bool inWindow() const
    {
        return GetParam().shown == Shown::Window || GetParam().shown == Shown::Both;
    }
    bool inScene() const
    {
        return GetParam().shown == Shown::Scene || GetParam().shown == Shown::Both;
    }
    std::string className() const
    {
        return GetParam().kind == Kind::Dialog ? "KsTopLevelDialog" : "KsDialogGroup";
    }
    ProbeBox* keep(ProbeBox* box)
    {
        pool.emplace_back(box);
        return box;
    }

    /// The children are these, in the list and wherever they are shown.
    void expect(const std::vector<KsFormweave*>& children)
    {
        EXPECT_EQ(childrenOf(container), children);
        for (std::size_t i = 0; i < children.size(); ++i) {
            EXPECT_EQ(container->internalGetChild(static_cast<int>(i)), children[i]);
            EXPECT_EQ(container->internalFindChild(children[i]), static_cast<int>(i));
            EXPECT_EQ(children[i]->getParentElement(), container);
        }
        int numBoxes = 0;
        float end = -1e6;
        for (KsFormweave* child : children) {
            if (!child->getElements()) ++numBoxes;
            EXPECT_EQ(child->isBuilt2D(), inWindow());
            if (!inScene()) continue;
            EXPECT_EQ(child->isBuilt3D(), 1);
            EXPECT_EQ(child->isShown3D(), 1);
            const Extent extent = extentOf(child);
            const bool across = GetParam().kind == Kind::Columns;
            EXPECT_GE(across ? extent.left : extent.top, end - 0.02);
            end = across ? extent.right : extent.bottom;
        }
        if (!inWindow()) return;
        settle();
        EXPECT_EQ(framesIn(container), expectedFrames(container));
        EXPECT_EQ(numToggles(), numBoxes);
        for (QWidget* frame : framesIn(container)) {
            ASSERT_TRUE(frame);
            EXPECT_TRUE(frame->isVisible());
            EXPECT_EQ(frame->window(), window());
        }
    }

    KsFormweave* container = nullptr;
    std::vector<ProbeBox*> boxes;
    std::vector<KsRef<KsFormweave>> pool;
};

INSTANTIATE_TEST_SUITE_P(
    Containers, Children, testing::ValuesIn([] {
        std::vector<Case> cases;
        for (Kind kind : {Kind::Dialog, Kind::Rows, Kind::Columns})
            for (Shown shown : {Shown::Nowhere, Shown::Window, Shown::Scene, Shown::Both})
                cases.push_back({kind, shown});
        return cases;
    }()),
    nameOf);

} // namespace

TEST_P(Children, standInTheOrderInWhichTheyWereAdded) { expect({boxes[0], boxes[1], boxes[2]}); }

TEST_P(Children, oneThatIsAddedStandsBehindTheOthers)
{
    ProbeBox* added = makeBox("d");
    container->internalAddChild(added);
    expect({boxes[0], boxes[1], boxes[2], added});
}

TEST_P(Children, oneThatIsInsertedStandsAtItsIndexInTheLayoutToo)
{
    ProbeBox* second = makeBox("second");
    container->internalInsertChild(second, 1);
    expect({boxes[0], second, boxes[1], boxes[2]});
    ProbeBox* first = makeBox("first");
    container->internalInsertChild(first, 0);
    expect({first, boxes[0], second, boxes[1], boxes[2]});
    ProbeBox* last = makeBox("last");
    container->internalInsertChild(last, 5);
    expect({first, boxes[0], second, boxes[1], boxes[2], last});
}

TEST_P(Children, oneThatIsRemovedLeavesNothingBehind)
{
    keep(boxes[1]);
    container->internalRemoveChild(1);
    expect({boxes[0], boxes[2]});
    EXPECT_EQ(boxes[1]->getParentElement(), nullptr);
    EXPECT_EQ(boxes[1]->getWidget(), nullptr);
    EXPECT_EQ(container->internalFindChild(boxes[1]), -1);
    container->internalRemoveChild(boxes[2]);
    expect({boxes[0]});
}

TEST_P(Children, oneThatIsReplacedGivesItsPlaceToTheNewOne)
{
    keep(boxes[1]);
    ProbeBox* fresh = makeBox("fresh");
    container->internalReplaceChild(1, fresh);
    expect({boxes[0], fresh, boxes[2]});
    EXPECT_EQ(boxes[1]->getParentElement(), nullptr);
    EXPECT_EQ(boxes[1]->getWidget(), nullptr);
    container->internalReplaceChild(fresh, boxes[1]);
    expect({boxes[0], boxes[1], boxes[2]});
}

TEST_P(Children, oneThatIsRemovedCanBeAddedAgain)
{
    keep(boxes[0]);
    container->internalRemoveChild(0);
    expect({boxes[1], boxes[2]});
    container->internalAddChild(boxes[0]);
    expect({boxes[1], boxes[2], boxes[0]});
}

TEST_P(Children, allCanBeRemovedAndOthersAdded)
{
    const KsNode* top =
        container->getChildren()->getLength() > 3 ? container->getChildren()->get(3) : nullptr;
    container->internalRemoveAllChildren();
    expect({});
    ProbeBox* fresh = makeBox("fresh");
    container->internalAddChild(fresh);
    expect({fresh});
    if (top) {
        EXPECT_EQ(container->getChildren()->get(1), top) << "the kit's own node is back";
    }
}

TEST_P(Children, aGroupThatIsRemovedAndAddedAgainIsBuiltAnew)
{
    KsRef<Rows> rows(new Rows);
    ProbeBox* inner = makeBox("inner");
    rows->addChild(inner);
    container->internalInsertChild(rows.get(), 1);
    const auto check = [&] {
        if (inWindow()) {
            settle();
            EXPECT_EQ(framesIn(rows.get()), expectedFrames(rows.get()));
            EXPECT_EQ(numToggles(), 4);
            EXPECT_EQ(frameOf(inner)->window(), window());
            EXPECT_TRUE(frameOf(inner)->isVisible());
        }
        EXPECT_EQ(framesIn(container).size(), inWindow() ? 4u : 0u);
        EXPECT_EQ(inner->isBuilt3D(), inScene() ? 1 : 0);
    };
    check();
    container->internalRemoveChild(rows.get());
    EXPECT_EQ(rows->getWidget(), nullptr);
    EXPECT_EQ(inner->getWidget(), nullptr);
    EXPECT_FALSE(inner->isBuilt2D());
    expect({boxes[0], boxes[1], boxes[2]});
    container->internalAddChild(rows.get());
    check();
    rows->addChild(makeBox("late"));
    if (inWindow()) {
        EXPECT_EQ(framesIn(rows.get()).size(), 2u);
    }
}

TEST_P(Children, aRebuildLeavesOneLiveWidgetForEachControl)
{
    for (int i = 0; i < 3; ++i) dialog->updateAfterSceneGraphChange();
    expect({boxes[0], boxes[1], boxes[2]});
    for (ProbeBox* box : boxes) {
        box->state = true;
        if (inWindow()) {
            EXPECT_TRUE(toggleOf(box)->isChecked());
        }
    }
}

TEST_P(Children, wrongCallsPostAMessageAndChangeNothing)
{
    const std::string name = className();
    const auto group = [&] { return static_cast<KsDialogGroup*>(container); };
    const bool isDialog = GetParam().kind == Kind::Dialog;
    KsRef<ProbeBox> other(makeBox("other"));
    struct Call {
        std::string where;
        const char* text;
        std::function<void()> call;
    };
    const Call calls[] = {
        {"addChild", "NULL child node",
         [&] { isDialog ? dialog->addChild(nullptr) : group()->addChild(nullptr); }},
        {"insertChild", "NULL child node",
         [&] { isDialog ? dialog->insertChild(nullptr, 0) : group()->insertChild(nullptr, 0); }},
        {"insertChild", "Index 4 is out of range 0 - 3",
         [&] { container->internalInsertChild(other.get(), 4); }},
        {"insertChild", "Index -1 is out of range 0 - 3",
         [&] { container->internalInsertChild(other.get(), -1); }},
        {"getChild", "Index 3 is out of range 0 - 3",
         [&] { EXPECT_EQ(container->internalGetChild(3), nullptr); }},
        {"removeChild", "Index 3 is out of range 0 - 2",
         [&] { container->internalRemoveChild(3); }},
        {"removeChild", "Index -1 is out of range 0 - 2",
         [&] { container->internalRemoveChild(other.get()); }},
        {"replaceChild", "Index 3 is out of range 0 - 2",
         [&] { container->internalReplaceChild(3, other.get()); }},
        {"replaceChild", "Index -1 is out of range 0 - 2",
         [&] { container->internalReplaceChild(other.get(), other.get()); }},
        {"addChild", "already", [&] { container->internalAddChild(boxes[0]); }},
    };
    for (const Call& each : calls) {
        SCOPED_TRACE(each.where + ": " + each.text);
        ExpectedMessages messages((name + "::" + each.where).c_str(), each.text);
        each.call();
    }
    EXPECT_EQ(container->internalGetChild(-1), nullptr) << "and that without a message";
    EXPECT_EQ(other->getParentElement(), nullptr);
    expect({boxes[0], boxes[1], boxes[2]});
}

TEST_P(Children, aNodeThatIsNoElementIsRefused)
{
    KsRef<KsGroup> group(new KsGroup);
    {
        ExpectedMessages messages("KsNode::internalAddChild", "");
        container->internalAddChild(group.get());
    }
    {
        ExpectedMessages messages("KsNode::internalInsertChild", "");
        container->internalInsertChild(group.get(), 0);
    }
    {
        ExpectedMessages messages("KsNode::internalReplaceChild", "");
        container->internalReplaceChild(0, group.get());
    }
    EXPECT_EQ(container->internalFindChild(group.get()), -1);
    expect({boxes[0], boxes[1], boxes[2]});
}

TEST_P(Children, aContainerCannotStandBelowItself)
{
    if (GetParam().kind == Kind::Dialog) return;
    auto* inner = new Rows;
    container->internalAddChild(inner);
    KsRef<KsFormweave> hold(container);
    dialog->removeChild(0);
    {
        ExpectedMessages messages("KsDialogGroup::addChild", "below itself");
        inner->addChild(static_cast<KsDialogComponent*>(container));
    }
    EXPECT_EQ(inner->getNumChildren(), 0);
}

TEST_P(Children, areReadInFrontOfTheKitsOwnNode)
{
    container->getAnyPart("geomSeparator", true);
    container->internalAddChild(makeBox("d"));
    const KsChildList& list = *container->getChildren();
    ASSERT_EQ(list.getLength(), 5);
    EXPECT_EQ(list[4], container->getAnyPart("topSeparator", false));
    EXPECT_EQ(container->getElements()->count(), 4);
}

// Changes while the children are visited.

namespace {

class Visits : public Trees {
protected:
    void SetUp() override
    {
        Trees::SetUp();
        rows = new Rows;
        for (const char* label : {"a", "b", "c", "d"}) rows->addChild(makeBox(label));
    }
    /// The labels in the order of the visit; `then` runs in each.
    template <class Then> std::string visit(Then&& then)
    {
        std::string labels;
        rows->getElements()->forEach([&](KsFormweave* child) {
            labels += child->label.getValue().getString();
            then(child, labels.back());
        });
        return labels;
    }
    KsRef<Rows> rows;
};

} // namespace

TEST_F(Visits, skipNobodyIfTheVisitedChildIsRemoved)
{
    EXPECT_EQ(visit([&](KsFormweave* child, char) {
                  rows->removeChild(static_cast<KsDialogComponent*>(child));
              }),
              "abcd");
    EXPECT_EQ(rows->getNumChildren(), 0);
}

TEST_F(Visits, skipWhatIsRemovedBeforeItsTurn)
{
    EXPECT_EQ(visit([&](KsFormweave*, char label) {
                  if (label == 'b') rows->removeChild(2);
              }),
              "abd");
}

TEST_F(Visits, visitNobodyTwiceIfAnEarlierChildJoinsOrGoes)
{
    EXPECT_EQ(visit([&](KsFormweave*, char label) {
                  if (label == 'b') rows->insertChild(makeBox("x"), 0);
                  if (label == 'c') rows->removeChild(1);
              }),
              "abcd");
}

TEST_F(Visits, reachWhatJoinsBehindThePresentChild)
{
    EXPECT_EQ(visit([&](KsFormweave*, char label) {
                  if (label == 'b') rows->insertChild(makeBox("x"), 3);
              }),
              "abcxd");
}

TEST_F(Visits, endIfAllAreRemoved)
{
    EXPECT_EQ(visit([&](KsFormweave*, char label) {
                  if (label == 'b') rows->removeAllChildren();
              }),
              "ab");
}

TEST_F(Visits, canBeMadeInEachOther)
{
    std::string all;
    visit([&](KsFormweave*, char outer) {
        all += outer;
        all += visit([&](KsFormweave* child, char inner) {
            EXPECT_EQ(rows->getElements()->indexOf(child),
                      rows->findChild(static_cast<KsDialogComponent*>(child)));
            if (outer == 'a' && inner == 'c') rows->removeChild(2);
        });
    });
    EXPECT_EQ(all, "aabcdbabddabd");
}

TEST_F(Visits, surviveTheEndOfTheContainer)
{
    Rows* last = rows.get();
    rows->ref();
    rows.reset();
    std::string labels;
    last->getElements()->forEach([&](KsFormweave* child) {
        labels += child->label.getValue().getString();
        if (labels == "ab") last->unref();
    });
    EXPECT_EQ(labels, "abcd");
}

// Changes by an auditor, while the click that it hears is still on its way.

namespace {

class Meddling : public Trees, public KsDialogAuditor {
public:
    void dialogCheckBox(KsDialogCheckBox*) override
    {
        if (meddle) meddle();
    }

protected:
    void SetUp() override
    {
        Trees::SetUp();
        rows = new Rows;
        columns = new Columns;
        for (const char* label : {"a", "b"}) rows->addChild(makeBox(label));
        columns->addChild(rows.get());
        columns->addChild(makeBox("c"));
        dialog->addChild(columns);
        dialog->addAuditor(this);
        buildWindow(true);
        buildScene();
    }
    void TearDown() override
    {
        rows.reset();
        Trees::TearDown();
    }
    void click()
    {
        QCheckBox* widget = toggleOf(rows->getChild(0));
        QTest::mouseClick(widget, Qt::LeftButton, Qt::NoModifier, QPoint(8, widget->height() / 2));
        settle();
    }
    KsRef<Rows> rows;
    Columns* columns = nullptr;
    std::function<void()> meddle;
};

} // namespace

TEST_F(Meddling, anAuditorMayAddToTheGroupOfItsControl)
{
    meddle = [&] { rows->insertChild(makeBox("late"), 0); };
    click();
    EXPECT_EQ(numToggles(), 4);
    EXPECT_EQ(framesIn(rows.get()), expectedFrames(rows.get()));
    EXPECT_TRUE(toggleOf(rows->getChild(1))->isChecked());
    meddle = nullptr;
    click();
    EXPECT_TRUE(toggleOf(rows->getChild(0))->isChecked()) << "the late one";
}

TEST_F(Meddling, anAuditorMayRemoveTheGroupOfItsControlAndAddItAgain)
{
    meddle = [&] { columns->removeChild(0); };
    click();
    EXPECT_EQ(numToggles(), 1);
    EXPECT_EQ(framesIn(columns), expectedFrames(columns));
    EXPECT_TRUE(static_cast<KsDialogCheckBox*>(rows->getChild(0))->state);
    columns->addChild(rows.get());
    meddle = [&] {
        columns->removeChild(rows.get());
        columns->addChild(rows.get());
    };
    click();
    EXPECT_EQ(numToggles(), 3);
    EXPECT_EQ(framesIn(columns), expectedFrames(columns));
    EXPECT_EQ(framesIn(rows.get()), expectedFrames(rows.get()));
}

TEST_F(Meddling, anAuditorMayEmptyTheDialog)
{
    meddle = [&] { dialog->removeAllChildren(); };
    click();
    EXPECT_EQ(numToggles(), 0);
    EXPECT_EQ(layoutOf(dialog.get())->count(), 0);
}

// What joins.

namespace {

class Joining : public Trees {};

} // namespace

TEST_F(Joining, aChildThatWasBuiltElsewhereIsBuiltAnewInTheContainer)
{
    QWidget elsewhere;
    new QVBoxLayout(&elsewhere);
    KsRef<ProbeBox> box(makeBox("a"));
    box->build(1, 0, 0, &elsewhere);
    EXPECT_EQ(elsewhere.findChildren<QCheckBox*>().size(), 1);
    auto* rows = new Rows;
    dialog->addChild(rows);
    buildWindow(true);
    rows->addChild(box.get());
    settle();
    EXPECT_EQ(elsewhere.findChildren<QCheckBox*>().size(), 0);
    EXPECT_EQ(elsewhere.layout()->count(), 0);
    EXPECT_EQ(numToggles(), 1);
    EXPECT_EQ(framesIn(rows), expectedFrames(rows));
}

TEST_F(Joining, aChildMovesFromOneContainerToAnother)
{
    auto* left = new Rows;
    auto* right = new Columns;
    KsRef<ProbeBox> box(makeBox("a"));
    left->addChild(box.get());
    dialog->addChild(left);
    dialog->addChild(right);
    buildWindow(true);
    buildScene();
    {
        ExpectedMessages messages("KsDialogGroup::addChild", "RowDialog");
        right->addChild(box.get());
    }
    left->removeChild(box.get());
    right->addChild(box.get());
    settle();
    EXPECT_EQ(numToggles(), 1);
    EXPECT_TRUE(framesIn(left).empty());
    EXPECT_EQ(framesIn(right), expectedFrames(right));
    const Extent inner = extentOf(box.get()), outer = extentOf(right);
    EXPECT_NEAR(inner.left, outer.left, 0.02);
    EXPECT_NEAR(inner.top, outer.top, 0.02);
}

TEST_F(Joining, aChildTakesOverWhetherTheSceneShowsItAndWhetherItIsEnabled)
{
    auto* disabled = new Rows;
    auto* enabled = new Rows;
    disabled->enable = false;
    KsRef<ProbeBox> box(makeBox("a"));
    disabled->addChild(box.get());
    dialog->addChild(disabled);
    dialog->addChild(enabled);
    buildScene();
    EXPECT_EQ(greyOf(box.get()), 0.5f);
    disabled->show3D(0);
    EXPECT_EQ(box->isShown3D(), 0);
    disabled->removeChild(box.get());
    enabled->addChild(box.get());
    EXPECT_EQ(greyOf(box.get()), 0.0f);
    EXPECT_NE(pickStyleOf(box.get()), KsPickStyle::UNPICKABLE);
    EXPECT_EQ(box->isShown3D(), 1);
    enabled->removeChild(box.get());
    disabled->addChild(box.get());
    EXPECT_EQ(greyOf(box.get()), 0.5f);
    EXPECT_EQ(box->isShown3D(), 0);
}

TEST_F(Joining, aPanelThatWasEmptiedComesBackWithTheNextChild)
{
    auto* rows = new Rows;
    rows->edgeStyle = KsDialogComponent::SHADOW_OUT;
    rows->addChild(makeBox("a"));
    dialog->addChild(rows);
    buildScene();
    const Extent before = extentOf(dialog.get());
    dialog->removeAllChildren();
    EXPECT_GT(extentOf(dialog.get()).width(), 0) << "the build brought the panel back";
    auto* again = new Rows;
    again->addChild(makeBox("a"));
    dialog->addChild(again);
    const Extent now = extentOf(dialog.get());
    EXPECT_NEAR(now.height(), before.height(), 0.02);
}

// Copies.

namespace {

class Copies : public Trees {
protected:
    void SetUp() override
    {
        Trees::SetUp();
        rows = new Rows;
        rows->rowSpacing = 3;
        rows->width = 250;
        auto* columns = new Columns;
        for (const char* label : {"a", "bbbb"}) rows->addChild(makeBox(label, true));
        columns->addChild(makeBox("c"));
        rows->addChild(columns);
        dialog->addChild(rows);
        dialog->label = "Copied";
        text = written(dialog.get());
    }
    void TearDown() override
    {
        QPointer<QWidget> second = copy ? copy->getBaseWidget() : nullptr;
        copyScene.reset();
        copy.reset();
        delete second;
        Trees::TearDown();
    }
    void copyDialog()
    {
        copy = static_cast<KsTopLevelDialog*>(dialog->copy());
        ASSERT_TRUE(copy);
    }
    static void expectSameTree(KsFormweave* from, KsFormweave* to)
    {
        EXPECT_EQ(from->getTypeId(), to->getTypeId());
        EXPECT_EQ(from->label, to->label);
        EXPECT_NE(from, to);
        EXPECT_FALSE(to->isBuilt2D());
        EXPECT_EQ(to->isBuilt3D(), 0);
        const auto children = childrenOf(from), copies = childrenOf(to);
        ASSERT_EQ(children.size(), copies.size());
        // Nothing else stands in the list but, at its end, the kit's own node.
        EXPECT_LE(to->getChildren()->getLength(), static_cast<int>(copies.size()) + 1);
        for (std::size_t i = 0; i < children.size(); ++i) {
            EXPECT_EQ(copies[i]->getParentElement(), to);
            expectSameTree(children[i], copies[i]);
        }
    }
    void expectThatTheCopyBuilds()
    {
        copy->buildDialog();
        copy->show();
        copyScene = new KsSeparator;
        copyScene->addChild(copy.get());
        measure(copyScene.get());
        settle();
        EXPECT_EQ(copy->getBaseWidget()->findChildren<QCheckBox*>().size(), 3);
        auto* copied = static_cast<KsDialogGroup*>(copy->getChild(0));
        EXPECT_EQ(framesIn(copied), expectedFrames(copied));
        for (KsFormweave* box : {copied->getChild(0), copied->getChild(1)}) {
            EXPECT_EQ(box->isBuilt3D(), 1);
            EXPECT_TRUE(toggleOf(box)->isChecked());
        }
    }
    Rows* rows = nullptr;
    KsRef<KsTopLevelDialog> copy;
    KsRef<KsSeparator> copyScene;
    std::string text;
};

} // namespace

TEST_F(Copies, ofADialogThatIsNotBuiltHoldEachChildOnce)
{
    copyDialog();
    expectSameTree(dialog.get(), copy.get());
    EXPECT_EQ(written(copy.get()), text);
    expectThatTheCopyBuilds();
}

TEST_F(Copies, ofADialogInASceneAreNotBuiltAndBuildThemselvesOnce)
{
    buildScene();
    copyDialog();
    expectSameTree(dialog.get(), copy.get());
    EXPECT_EQ(written(copy.get()), text);
    KsRef<KsSeparator> other(new KsSeparator);
    other->addChild(copy.get());
    measure(other.get());
    const auto original = dialog->getAnyPart("geomSwitch", false)->getChildren()->getLength();
    EXPECT_EQ(copy->getAnyPart("geomSwitch", false)->getChildren()->getLength(), original);
    for (int i = 0; i < 2; ++i) {
        KsFormweave* from = rows->getChild(i);
        KsFormweave* to = static_cast<KsDialogGroup*>(copy->getChild(0))->getChild(i);
        EXPECT_EQ(to->getAnyPart("geomSwitch", false)->getChildren()->getLength(),
                  from->getAnyPart("geomSwitch", false)->getChildren()->getLength());
        EXPECT_EQ(to->getAnyPart("geomSeparator", false)->getChildren()->getLength(),
                  from->getAnyPart("geomSeparator", false)->getChildren()->getLength());
        const Extent a = extentOf(from), b = extentOf(to);
        EXPECT_NEAR(a.left, b.left, 0.02);
        EXPECT_NEAR(a.right, b.right, 0.02);
        EXPECT_NEAR(a.top, b.top, 0.02);
        EXPECT_NEAR(a.bottom, b.bottom, 0.02);
    }
}

TEST_F(Copies, ofADialogInAWindowHaveAWindowOfTheirOwn)
{
    buildWindow(true);
    copyDialog();
    expectSameTree(dialog.get(), copy.get());
    expectThatTheCopyBuilds();
    EXPECT_NE(copy->getBaseWidget(), dialog->getBaseWidget());
    EXPECT_EQ(numToggles(), 3);
    auto* box = static_cast<ProbeBox*>(rows->getChild(0));
    toggleOf(box)->click();
    EXPECT_FALSE(box->state);
    auto* copied = static_cast<KsDialogGroup*>(copy->getChild(0));
    EXPECT_TRUE(static_cast<KsDialogCheckBox*>(copied->getChild(0))->state);
}

TEST_F(Copies, ofADialogInBothAreChangedByThemselves)
{
    buildWindow(true);
    buildScene();
    copyDialog();
    expectSameTree(dialog.get(), copy.get());
    expectThatTheCopyBuilds();
    auto* copied = static_cast<KsDialogGroup*>(copy->getChild(0));
    copied->addChild(makeBox("late"));
    EXPECT_EQ(copy->getBaseWidget()->findChildren<QCheckBox*>().size(), 4);
    EXPECT_EQ(numToggles(), 3);
    EXPECT_EQ(rows->getNumChildren(), 3);
}

TEST_F(Copies, keepThePartsThatTheApplicationSet)
{
    auto* box = static_cast<ProbeBox*>(rows->getChild(0));
    KsRef<KsGroup> frame(new KsGroup);
    frame->setName("mine");
    box->setPart("frame", frame.get());
    buildScene();
    copyDialog();
    KsFormweave* copied = static_cast<KsDialogGroup*>(copy->getChild(0))->getChild(0);
    KsNode* part = copied->getPart("frame", false);
    ASSERT_TRUE(part);
    EXPECT_EQ(part->getName(), KbName("mine"));
}

TEST_F(Copies, reachDownToTheInnermostGroup)
{
    KsRef<Rows> outermost(new Rows);
    KsDialogGroup* innermost = outermost.get();
    constexpr int levels = 120;
    for (int i = 1; i < levels; ++i) {
        auto* group = new Rows;
        innermost->addChild(group);
        innermost = group;
    }
    innermost->addChild(makeBox("below all"));
    KsRef<KsFormweave> copied(static_cast<KsFormweave*>(outermost->copy()));
    KsFormweave* element = copied.get();
    for (int i = 0; i < levels; ++i) {
        ASSERT_EQ(element->getElements()->count(), 1) << i;
        EXPECT_EQ(element->getElements()->at(0)->getParentElement(), element);
        element = element->getElements()->at(0);
    }
    EXPECT_EQ(element->label, "below all");
}

TEST_F(Copies, ofAChildHaveNoParent)
{
    buildScene();
    KsRef<KsFormweave> alone(static_cast<KsFormweave*>(rows->copy()));
    EXPECT_EQ(alone->getParentElement(), nullptr);
    EXPECT_EQ(alone->getElements()->count(), 3);
    measure(alone.get());
    EXPECT_EQ(alone->isBuilt3D(), 1);
}
