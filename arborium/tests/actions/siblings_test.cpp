// Many children beside each other: picks and boxes against those of a copy of the scene, which keeps
// no box, so that everything in it is walked.

#include "RandomScene.h"
#include "TestShape.h"

#include <arborium/base/KsLimits.h>
#include <arborium/nodes/KsChildList.h>
#include <arborium/nodes/KsClipPlane.h>
#include <arborium/nodes/KsCone.h>
#include <arborium/nodes/KsCoordinate3.h>
#include <arborium/nodes/KsCube.h>
#include <arborium/nodes/KsFont.h>
#include <arborium/nodes/KsIndexedLineSet.h>
#include <arborium/nodes/KsMatrixTransform.h>
#include <arborium/nodes/KsOrthographicCamera.h>
#include <arborium/nodes/KsPerspectiveCamera.h>
#include <arborium/nodes/KsPickStyle.h>
#include <arborium/nodes/KsRotation.h>
#include <arborium/nodes/KsScale.h>
#include <arborium/nodes/KsSeparator.h>
#include <arborium/nodes/KsSwitch.h>
#include <arborium/nodes/KsText3.h>
#include <arborium/nodes/KsTransform.h>

#include <iostream>
#include <limits>

namespace {

/// Cubes of two units, each below a separator of its own, three units apart in rows of a hundred.
class Siblings : public ShapeTest {
protected:
    struct Leaf {
        KsSeparator* own;
        KsTransform* place;
        TestShape* shape;
    };
    static KbVec3f placeOf(int i)
    {
        return KbVec3f(3.0f * static_cast<float>(i % 100), 3.0f * static_cast<float>(i / 100), 0);
    }
    static Leaf makeLeaf(const KbVec3f& place)
    {
        auto* own = new KsSeparator;
        auto* at = addTo<KsTransform>(own);
        at->translation = place;
        return {own, at, addTo<TestShape>(own)};
    }
    void make(int count)
    {
        for (int i = 0; i < count; ++i) {
            leaves.push_back(makeLeaf(placeOf(i)));
            wide->addChild(leaves.back().own);
        }
        boxOf(root.get());
    }
    Leaf& leaf(int i) { return leaves[static_cast<std::size_t>(i)]; }
    /// The index of the child that a ray down at a place meets first; -1 for none.
    int pickedAt(const KbVec3f& place)
    {
        pick.setRay(place + KbVec3f(0, 0, 50), {0, 0, -1});
        pick.apply(root.get());
        const KsPickedPoint* hit = pick.getPickedPoint();
        return hit ? hit->getPath()->getIndex(2) : -1;
    }

    KsRef<KsSeparator> root{new KsSeparator};
    KsSeparator* wide = addTo<KsSeparator>(root.get());
    KsSeparator* other = addTo<KsSeparator>(root.get());
    std::vector<Leaf> leaves;
    KsRayPickAction pick{KbViewportRegion(1000, 1000)};
};

/// Traverses a list that it does not give out.
class Holder : public KsGroup {
public:
    KsChildList aside{this};
    void doAction(KsAction* action) override { aside.traverse(action); }
    void getBoundingBox(KsGetBoundingBoxAction* action) override { aside.traverse(action); }
};

/// Of a class of one's own, which is to hear of each pick.
class Listener : public KsSeparator {
public:
    int picks = 0;
    void rayPick(KsRayPickAction* action) override
    {
        ++picks;
        KsSeparator::rayPick(action);
    }
};

} // namespace

TEST_F(Siblings, thatTheRayMissesAreNotVisited)
{
    make(10000);
    KsLimits::current().visits = 400; // beyond it, a message comes
    for (const int i : {0, 31, 32, 4711, 9999}) EXPECT_EQ(pickedAt(placeOf(i)), i);
    EXPECT_EQ(pickedAt(placeOf(5) + KbVec3f(1.5f, 0, 0)), -1);
    pick.setPickAll(true);
    EXPECT_EQ(pickedAt(placeOf(777)), 777);
}

TEST_F(Siblings, areMeasuredAnewOnlyAroundTheOneThatChanged)
{
    make(10000);
    KsLimits::current().visits = 100;
    for (const int i : {0, 5000, 9999}) {
        leaf(i).place->translation = KbVec3f(0, 0, 50);
        EXPECT_TRUE(near(boxOf(root.get()), {-1, -1, -1}, {298, 298, 51}));
        leaf(i).place->translation = placeOf(i);
        EXPECT_TRUE(near(boxOf(root.get()), {-1, -1, -1}, {298, 298, 1}));
    }
}

TEST_F(Siblings, areMeasuredTogetherWhereTheyAreMovedAndScaledButNotWhereTheyAreTurned)
{
    auto* transform = new KsTransform;
    root->insertChild(transform, 0);
    auto* group = new KsGroup; // no separator, so that it stands in the space of the root
    root->insertChild(group, 1);
    for (int i = 0; i < 96; ++i) {
        leaves.push_back(makeLeaf(placeOf(i) + KbVec3f(0, placeOf(i)[0], 0))); // on a diagonal
        group->addChild(leaves.back().own);
    }
    boxOf(root.get());
    transform->translation = KbVec3f(1, 2, 3);
    transform->scaleFactor = KbVec3f(-2, 1, 1);
    EXPECT_TRUE(near(boxOf(root.get()), {-571, 1, 2}, {3, 288, 4}, 1e-3f));
    transform->setMatrix(KbMatrix());
    transform->rotation = KbRotation({0, 0, 1}, -0.785398163f);
    // A turned box around them would be as high as it is wide.
    const float end = 285 * std::sqrt(2.0f), half = std::sqrt(2.0f);
    EXPECT_TRUE(near(boxOf(root.get()), {-half, -half, -1}, {end + half, half, 1}, 1e-2f));
}

TEST_F(Siblings, thatChangeAreFoundWhereTheyAreBeforeTheyAreMeasuredAgain)
{
    make(100);
    const KbVec3f far(0, 500, 0);
    leaf(70).place->translation = far;
    EXPECT_EQ(pickedAt(far), 70);
    EXPECT_EQ(pickedAt(placeOf(70)), -1);
    leaf(70).place->enableNotify(false); // which is about sensors
    leaf(70).place->translation = placeOf(70);
    EXPECT_EQ(pickedAt(placeOf(70)), 70);
    boxOf(root.get());
    leaf(70).place->translation = far;
    EXPECT_EQ(pickedAt(far), 70);
}

TEST_F(Siblings, areFoundAtTheirNewIndicesAfterTheListChanged)
{
    make(100);
    const KbVec3f far(0, 500, 0);
    const Leaf first = makeLeaf(far);
    wide->insertChild(first.own, 0);
    EXPECT_EQ(pickedAt(far), 0);
    EXPECT_EQ(pickedAt(placeOf(80)), 81);
    boxOf(root.get());
    leaf(80).place->translation = far + KbVec3f(9, 0, 0); // its index is another one now
    EXPECT_EQ(pickedAt(far + KbVec3f(9, 0, 0)), 81);
    boxOf(root.get());
    wide->replaceChild(50, makeLeaf(far + KbVec3f(20, 0, 0)).own);
    EXPECT_EQ(pickedAt(far + KbVec3f(20, 0, 0)), 50);
    EXPECT_EQ(pickedAt(placeOf(49)), -1);
    boxOf(root.get());
    wide->removeChild(0);
    EXPECT_EQ(pickedAt(far), -1);
    EXPECT_EQ(pickedAt(placeOf(99)), 99);
    boxOf(root.get());
    leaf(98).place->translation = far;
    EXPECT_EQ(pickedAt(far), 98);
    EXPECT_TRUE(near(boxOf(root.get()), {-1, -1, -1}, {298, 501, 1}));
    wide->getChildren()->truncate(70);
    EXPECT_TRUE(near(boxOf(root.get()), {-1, -1, -1}, {208, 501, 1})); // 80 is far away, as 50 is
    leaf(60).own->setName("sixty");
    const KbVec3f farther(0, 600, 0);
    wide->addChild(makeLeaf(farther).own);
    EXPECT_EQ(pickedAt(farther), 70);
    boxOf(root.get());
    wide->removeAllChildren();
    EXPECT_EQ(pickedAt(placeOf(3)), -1);
    EXPECT_TRUE(boxOf(root.get()).isEmpty());
}

TEST_F(Siblings, thatStandElsewhereTooAreFoundInAllTheirPlaces)
{
    make(200);
    const KbVec3f far(0, 500, 0);
    Leaf& shared = leaf(40);
    addTo<KsTransform>(other)->translation = KbVec3f(0, 0, 1000);
    for (int i = 0; i < 80; ++i) other->addChild(makeLeaf(placeOf(i)).own);
    boxOf(root.get());
    wide->addChild(shared.own); // a second time
    other->addChild(shared.own);
    for (int i = 0; i < 3; ++i) {
        const KbVec3f to = far + KbVec3f(0, 10.0f * static_cast<float>(i), 0);
        boxOf(root.get());
        shared.place->translation = to;
        EXPECT_EQ(pickedAt(to), 40);
        pick.setPickAll(true);
        pickedAt(to + KbVec3f(0, 0, 2000));
        EXPECT_EQ(pick.getPickedPointsListLength(), 3);
        pick.setPickAll(false);
        EXPECT_TRUE(near(boxOf(root.get()).getMax(), {298, to[1] + 1, 1001}));
    }
    wide->removeChild(40);
    boxOf(root.get());
    other->removeChild(shared.own);
    boxOf(root.get());
    shared.place->translation = far; // in one place now, at another index than before
    EXPECT_EQ(pickedAt(far), 199);
}

TEST_F(Siblings, thatAPickMovesOrRemovesAreTakenAsTheyAreThen)
{
    make(200);
    const KbVec3f far(0, 500, 0);
    Leaf& talker = leaf(10);
    talker.place->translation = far;
    boxOf(root.get());
    talker.shape->duringPick = [&] { leaf(150).place->translation = far + KbVec3f(0, 0, 9); };
    EXPECT_EQ(pickedAt(far), 150);
    boxOf(root.get());
    talker.shape->duringPick = [&] {
        while (wide->getNumChildren() > 20) wide->removeChild(wide->getNumChildren() - 1);
    };
    EXPECT_EQ(pickedAt(far), 10);
    boxOf(root.get());
    talker.shape->duringPick = [&] {
        const Leaf late = makeLeaf(far + KbVec3f(0, 0, 9));
        for (int i = 0; i < 100; ++i) wide->addChild(makeLeaf(placeOf(i)).own);
        wide->addChild(late.own);
        boxOf(root.get()); // measured in the middle of it
        talker.shape->duringPick = nullptr;
    };
    EXPECT_EQ(pickedAt(far), 120);
    talker.shape->duringPick = [&] { wide->removeAllChildren(); };
    const KsKeepAlive keep(talker.own);
    EXPECT_EQ(pickedAt(far), 10);
    EXPECT_EQ(wide->getNumChildren(), 0);
}

TEST_F(Siblings, thatChangeWhileTheyAreMeasuredAreMeasuredAgain)
{
    make(200);
    for (const int changing : {5, 6, 150}) {
        leaf(150).shape->size = KbVec3f(2, 2, 2);
        leaf(6).shape->duringBox = [&] { leaf(changing).shape->size = KbVec3f(2, 2, 60); };
        leaf(6).shape->touch();
        boxOf(root.get());
        leaf(6).shape->duringBox = nullptr;
        EXPECT_TRUE(near(boxOf(root.get()), {-1, -1, -30}, {298, 4, 30})) << changing;
        leaf(changing).shape->size = KbVec3f(2, 2, 2);
    }
    leaf(6).shape->duringBox = [&] { wide->removeChild(wide->getNumChildren() - 1); };
    leaf(6).shape->touch();
    boxOf(root.get());
    leaf(6).shape->duringBox = nullptr;
    EXPECT_EQ(pickedAt(placeOf(199)), -1);
    EXPECT_EQ(pickedAt(placeOf(198)), 198);
}

TEST_F(Siblings, withoutABoxOrBeyondAllNumbersHideNoneOfTheOthers)
{
    make(128);
    const float infinity = std::numeric_limits<float>::infinity();
    const float none = std::numeric_limits<float>::quiet_NaN();
    for (const float bad : {infinity, none, 3e38f}) {
        for (const int i : {3, 40, 41, 127}) leaf(i).shape->size = KbVec3f(bad, 1, 1);
        for (int i = 64; i < 96; ++i) leaf(i).own->removeChild(leaf(i).shape); // a run of nothing
        boxOf(root.get());
        EXPECT_EQ(pickedAt(placeOf(2) + KbVec3f(0.9f, 0.9f, 0)), 2);
        EXPECT_EQ(pickedAt(placeOf(42) + KbVec3f(0.9f, 0.9f, 0)), 42);
        EXPECT_EQ(pickedAt(placeOf(126) + KbVec3f(0.9f, 0.9f, 0)), 126);
        EXPECT_EQ(pickedAt(placeOf(70) + KbVec3f(0.9f, 0.9f, 0)), -1);
        for (int i = 64; i < 96; ++i) leaf(i).own->addChild(leaf(i).shape = new TestShape);
        boxOf(root.get());
        EXPECT_EQ(pickedAt(placeOf(70) + KbVec3f(0.9f, 0.9f, 0)), 70);
    }
}

TEST_F(Siblings, ofWhichOneIsScaledBeyondAllNumbersAreFoundAndMeasured)
{
    auto* scale = new KsTransform;
    scale->scaleFactor = KbVec3f(4, 1, 1);
    root->insertChild(scale, 0);
    auto* group = new KsGroup; // in the space of the root
    root->insertChild(group, 1);
    root->removeChild(wide);
    for (int i = 0; i < 64; ++i) {
        leaves.push_back(makeLeaf(placeOf(i)));
        group->addChild(leaves.back().own);
    }
    leaf(20).shape->size = KbVec3f(3e38f, 1, 1);
    for (int i = 0; i < 2; ++i) {
        EXPECT_TRUE(near(boxOf(root.get()), {-4, -1, -1}, {4 * 190, 1, 1}));
        EXPECT_EQ(pickedAt(KbVec3f(4 * placeOf(3)[0], 0.9f, 0)), 3);
        group->touch();
    }
}

TEST_F(Siblings, ofWhichSomeAreTurnedOverByALensAreFoundAndMeasured)
{
    auto* lens = new KsMatrixTransform; // of x = -50 it makes infinity
    lens->matrix = KbMatrix(1, 0, 0, 0.02f, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1);
    root->insertChild(lens, 0);
    auto* group = new KsGroup;
    root->insertChild(group, 1);
    root->removeChild(wide);
    for (int i = 0; i < 64; ++i) {
        leaves.push_back(makeLeaf(KbVec3f(i < 32 ? -99.0f : 0.0f, 0, 0) + placeOf(i)));
        group->addChild(leaves.back().own);
    }
    leaf(0).place->translation = KbVec3f(0, 0, 0);
    const KbBox3f box = boxOf(root.get());
    EXPECT_EQ(box, boxOf(KsRef<KsNode>(root->copy()).get()));
    EXPECT_EQ(pickedAt({0, 0, 0}), 0);
}

TEST_F(Siblings, ofAListThatIsNobodysChildrenAreFoundWhereTheyAre)
{
    auto* holder = addTo<Holder>(root.get());
    for (int i = 0; i < 100; ++i) {
        leaves.push_back(makeLeaf(placeOf(i)));
        holder->aside.append(leaves.back().own);
    }
    boxOf(root.get());
    leaf(5).place->translation = KbVec3f(0, 500, 0);
    EXPECT_EQ(pickedAt(KbVec3f(0, 500, 0)), 5);
}

TEST_F(Siblings, ofAClassOfOnesOwnHearOfEachPick)
{
    make(100);
    auto* listener = new Listener;
    wide->insertChild(listener, 40);
    addTo<TestShape>(listener);
    boxOf(root.get());
    pickedAt(placeOf(99));
    EXPECT_EQ(listener->picks, 1);
}

TEST_F(Siblings, withACameraAmongThemArePickedThroughIt)
{
    make(200);
    auto* holder = new KsSeparator;
    auto* camera = addTo<KsOrthographicCamera>(holder);
    camera->position = placeOf(150) + KbVec3f(0, 0, 5);
    wide->insertChild(holder, 33);
    boxOf(root.get());
    pick.setNormalizedPoint({0.5f, 0.5f});
    pick.apply(root.get());
    ASSERT_TRUE(pick.getPickedPoint());
    EXPECT_EQ(pick.getPickedPoint()->getPath()->getIndex(2), 151);
}

namespace {

/// All that a pick found, as the action sorts it.
struct Found {
    std::vector<int> path;
    KbVec3f point;
    float distance;
    friend bool operator==(const Found& a, const Found& b)
    {
        return a.path == b.path && a.point == b.point && a.distance == b.distance;
    }
    friend std::ostream& operator<<(std::ostream& out, const Found& found)
    {
        for (const int index : found.path) out << index << ' ';
        return out << "at " << found.point << ", " << found.distance;
    }
};

std::vector<Found> foundBy(KsRayPickAction& pick, KsNode* root)
{
    pick.apply(root);
    std::vector<Found> result;
    for (int i = 0; const KsPickedPoint* hit = pick.getPickedPoint(i); ++i) {
        result.push_back({{}, hit->getPoint(), hit->getDistance()});
        const KsPath* path = hit->getPath();
        for (int depth = 1; path->getNode(depth); ++depth)
            result.back().path.push_back(path->getIndex(depth));
    }
    return result;
}

class RandomSiblings : public ShapeTest, public testing::WithParamInterface<unsigned> {
protected:
    static constexpr int numOperations = 800;
    static constexpr int columns = 12;

    RandomSiblings()
    {
        if (choices.chance(50)) {
            camera = addTo<KsOrthographicCamera>(root.get());
        } else {
            auto* near = addTo<KsPerspectiveCamera>(root.get());
            near->heightAngle = 0.5f;
            camera = near;
        }
        place = addTo<KsTransform>(root.get());
        KsGroup* wide = nullptr;
        switch (choices.upTo(3)) {
        case 0: wide = addTo<KsSeparator>(root.get()); break;
        case 1: wide = addTo<KsGroup>(root.get()); break;
        default: {
            auto* all = addTo<KsSwitch>(root.get());
            all->whichChild = KsSwitch::ALL;
            wide = all;
        }
        }
        groups.emplace_back(wide);
        for (int i = 0; i < 100; ++i) groups[0]->addChild(leaf(i).get());
        for (int i = 0; i < 2; ++i) { // wide ones in the wide one
            KsRef<KsGroup> inner(new KsSeparator);
            for (int k = 0; k < 70; ++k) inner->addChild(leaf(k).get());
            groups[0]->insertChild(inner.get(), choices.upTo(80));
            groups.push_back(inner);
        }
        aim();
    }

    float nearby() { return static_cast<float>(choices.upTo(33) - 16) / 8.0f; }

    /// A separator with something in it, at a place of a grid or not far from it.
    KsRef<KsNode> leaf(int i)
    {
        KsRef<KsSeparator> own(new KsSeparator);
        auto* at = addTo<KsTransform>(own.get());
        at->translation = KbVec3f(3.0f * static_cast<float>(i % columns) + nearby(),
                                  3.0f * static_cast<float>(i / columns) + nearby(), nearby());
        if (choices.chance(20)) at->rotation = KbRotation({1, 1, 0}, nearby());
        if (choices.chance(10)) at->scaleFactor = KbVec3f(nearby(), 1, 2);
        transforms.emplace_back(at);
        switch (choices.chance(1) ? choices.upTo(2) : 2 + choices.upTo(10)) {
        case 0: // what it shows is decided outside, as is the size of the text
            addTo<KsCube>(addTo<KsSwitch>(own.get()))->width = 3;
            static_cast<KsSwitch*>(own->getChild(1))->whichChild = KsSwitch::INHERIT;
            break;
        case 1: addTo<KsText3>(own.get())->string = "text"; break;
        case 2: {
            auto* points = addTo<KsCoordinate3>(own.get());
            points->point.set1Value(0, {-1, 0, 0});
            points->point.set1Value(1, {1, 0.5f, 0.25f});
            auto* lines = addTo<KsIndexedLineSet>(own.get());
            lines->coordIndex.set1Value(0, 0);
            lines->coordIndex.set1Value(1, 1);
            lines->coordIndex.set1Value(2, -1);
            break;
        }
        case 3:
            addTo<KsFont>(own.get())->size = 2;
            addTo<KsText3>(own.get())->string = "text";
            break;
        case 4: addTo<TestShape>(own.get()); break;
        case 5:
            addTo<KsPickStyle>(own.get())->style = KsPickStyle::BOUNDING_BOX;
            addTo<KsCone>(own.get());
            break;
        case 6: break;
        case 7: addTo<KsCone>(own.get()); break;
        default: addTo<KsCube>(own.get()); break;
        }
        leaves.emplace_back(own.get());
        return KsRef<KsNode>(own.get());
    }

    /// What may stand between the separators, most of it with an effect on what follows.
    KsRef<KsNode> stranger()
    {
        switch (choices.upTo(9)) {
        case 0: {
            KsRef<KsNode> scale(new KsScale);
            static_cast<KsScale*>(scale.get())->scaleFactor = KbVec3f(0.9f, 1, 1.1f);
            return scale;
        }
        case 1: {
            KsRef<KsNode> turn(new KsRotation);
            static_cast<KsRotation*>(turn.get())->rotation = KbRotation({0, 0, 1}, nearby() / 20);
            return turn;
        }
        case 2: {
            KsRef<KsNode> plane(new KsClipPlane);
            static_cast<KsClipPlane*>(plane.get())->plane = KbPlane({1, 0, 0}, nearby());
            return plane;
        }
        case 3: {
            KsRef<KsNode> style(new KsPickStyle);
            static_cast<KsPickStyle*>(style.get())->style = choices.upTo(3);
            return style;
        }
        case 4: {
            KsRef<KsNode> font(new KsFont);
            static_cast<KsFont*>(font.get())->size = 3;
            return font;
        }
        case 5: {
            KsRef<KsGroup> group(new KsGroup);
            addTo<KsTransform>(group.get())->translation = KbVec3f(nearby(), 0, 0);
            return KsRef<KsNode>(group.get());
        }
        case 6: {
            KsRef<KsSwitch> one(new KsSwitch);
            one->addChild(leaf(0).get());
            one->whichChild = 0;
            return KsRef<KsNode>(one.get());
        }
        case 7: {
            KsRef<KsSeparator> holder(new KsSeparator);
            addTo<KsOrthographicCamera>(holder.get())->position = KbVec3f(nearby(), 4, 40);
            return KsRef<KsNode>(holder.get());
        }
        default: return KsRef<KsNode>(new KsCube);
        }
    }

    KsRef<KsNode> anyChild()
    {
        const int kind = choices.upTo(100);
        if (kind < strangers) return stranger();
        if (kind < 2 * strangers)
            return choices.oneOf(leaves); // stands elsewhere too, or again here
        return leaf(choices.upTo(100));
    }

    void operate()
    {
        KsGroup* group = choices.oneOf(groups).get();
        const int count = group->getNumChildren();
        const bool silent = choices.chance(10);
        if (silent) group->enableNotify(false);
        switch (choices.upTo(12)) {
        case 0: group->addChild(anyChild().get()); break;
        case 1: group->insertChild(anyChild().get(), choices.upTo(count + 1)); break;
        case 2:
        case 3: // strangers do not pile up
            if (count > 64) {
                int index = choices.upTo(count);
                for (int i = 0; i < count; ++i)
                    if (group->getChild(i)->affectsState() && choices.chance(70)) index = i;
                bool isWide = false;
                for (const auto& each : groups) isWide = isWide || group->getChild(index) == each;
                if (!isWide) group->removeChild(index);
            }
            break;
        case 4: {
            const int index = choices.upTo(count);
            bool isWide = false;
            for (const auto& each : groups) isWide = isWide || group->getChild(index) == each;
            if (!isWide) group->replaceChild(index, anyChild().get());
            break;
        }
        case 5: choices.oneOf(leaves)->setName(choices.chance(50) ? "leaf" : ""); break;
        case 6: { // in or out of a leaf
            auto* own = static_cast<KsSeparator*>(choices.oneOf(leaves).get());
            if (own->getNumChildren() > 2)
                own->removeChild(own->getNumChildren() - 1);
            else
                addTo<KsCube>(own);
            break;
        }
        case 7: {
            KsTransform* at = choices.oneOf(transforms).get();
            if (choices.chance(40))
                at->scaleFactor = KbVec3f(choices.oneOf(strangeNumbers), 1, 1);
            else
                at->scaleFactor = KbVec3f(1, 1, 1);
            break;
        }
        case 8:
            if (choices.chance(30))
                place->rotation = KbRotation({0, 1, 0}, nearby() / 10);
            else
                place->rotation = KbRotation();
            place->scaleFactor = choices.chance(20) ? KbVec3f(2, -1, 1) : KbVec3f(1, 1, 1);
            break;
        case 9:
            for (int i = choices.upTo(40); i > 0; --i)
                choices.oneOf(transforms)->translation = KbVec3f(3 * nearby(), 3 * nearby(), 0);
            break;
        default: {
            KsTransform* at = choices.oneOf(transforms).get();
            KbVec3f to = at->translation.getValue() + KbVec3f(nearby(), nearby(), 0);
            at->translation = to.isFinite() ? to : KbVec3f();
        }
        }
        if (silent) group->enableNotify(true);
    }

    void aim() { camera->position = KbVec3f(18 + nearby(), 12 + nearby(), 60); }

    void compare()
    {
        const KsRef<KsNode> plain(root->copy());
        if (choices.chance(50)) {
            const KbBox3f box = boxOf(root.get());
            ASSERT_EQ(box, boxOf(plain.get()));
            boxes += box.isEmpty() ? 0 : 1;
        }
        const KsRef<KsNode> another(root->copy()); // no box of it is known
        KsRayPickAction pick(KbViewportRegion(200, 200));
        pick.setPickAll(choices.chance(50));
        if (choices.chance(20)) pick.setRadius(static_cast<float>(choices.upTo(40)));
        for (int i = 0; i < 4; ++i) {
            const KbVec3f to(static_cast<float>(choices.upTo(36 * 8)) / 8,
                             static_cast<float>(choices.upTo(24 * 8)) / 8, 0);
            const float near = choices.chance(20) ? -100.0f : 0.0f;
            if (choices.chance(50))
                pick.setNormalizedPoint({to[0] / 36, to[1] / 24});
            else if (choices.chance(50))
                pick.setRay(to + KbVec3f(0, 0, 30), {0, 0, -1}, near);
            else
                pick.setRay({18, 12, 50}, to - KbVec3f(18, 12, 50), near);
            const std::vector<Found> found = foundBy(pick, root.get());
            ASSERT_EQ(found, foundBy(pick, another.get()));
            hits += found.empty() ? 0 : 1;
        }
    }

    RandomChoices choices{GetParam()};
    KsRef<KsSeparator> root{new KsSeparator};
    KsCamera* camera = nullptr;
    KsTransform* place = nullptr;
    // Nothing of which the sum with others, or the double, is beyond all numbers.
    const std::vector<float> strangeNumbers = {std::numeric_limits<float>::quiet_NaN(),
                                               std::numeric_limits<float>::infinity(),
                                               -std::numeric_limits<float>::infinity(),
                                               1e15f,
                                               1e-20f,
                                               0,
                                               -3};
    // In a hundred, and as many are used twice. Where there are none the runs stay long.
    const int strangers = choices.oneOf(std::vector<int>{0, 0, 1, 4});
    std::vector<KsRef<KsGroup>> groups; // the wide ones
    std::vector<KsRef<KsNode>> leaves;
    std::vector<KsRef<KsTransform>> transforms;
    int boxes = 0;
    int hits = 0;
};

} // namespace

TEST_P(RandomSiblings, arePickedAndMeasuredAsIfEachWereWalked)
{
    std::cout << "seed " << GetParam() << '\n';
    for (int i = 0; i < numOperations; ++i) {
        SCOPED_TRACE("operation " + std::to_string(i));
        for (int k = choices.upTo(3); k >= 0; --k) operate();
        if (choices.chance(5)) aim();
        compare();
        if (HasFatalFailure()) return;
    }
    EXPECT_GE(boxes, numOperations / 4);
    EXPECT_GE(hits, numOperations / 2);
}

INSTANTIATE_TEST_SUITE_P(, RandomSiblings,
                         testing::Values(20261121u, 20261122u, 20261123u, 20261124u, 20261125u,
                                         20261126u));
