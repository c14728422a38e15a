#include "TestShape.h"

#include <arborium/nodes/KsSeparator.h>
#include <arborium/nodes/KsSwitch.h>
#include <arborium/nodes/KsTransform.h>
#include <arborium/nodes/KsTranslation.h>

#include <map>

class Path : public ShapeTest {
protected:
    KsRef<KsSeparator> root{new KsSeparator};
};

// shows: KsPath, KsPath::getLength, KsPath::getHead, KsPath::getTail, KsPath::getNode,
// KsPath::getIndex, KsPath::getNodeFromTail, KsPath::append, KsPath::pop, KsPath::truncate
TEST_F(Path, growsAlongChildren)
{
    auto* group = addTo<KsGroup>(root);
    addTo<TestShape>(group);
    auto* shape = addTo<TestShape>(group);
    KsRef<KsPath> path(new KsPath(root));
    EXPECT_FALSE(path->append(shape)); // no child of the root
    EXPECT_FALSE(path->append(nullptr));
    EXPECT_TRUE(path->append(group));
    EXPECT_TRUE(path->append(shape));
    EXPECT_EQ(path->getLength(), 3);
    EXPECT_EQ(path->getHead(), root.get());
    EXPECT_EQ(path->getTail(), shape);
    EXPECT_EQ(path->getIndex(0), -1);
    EXPECT_EQ(path->getIndex(1), 0);
    EXPECT_EQ(path->getIndex(2), 1);
    EXPECT_EQ(path->getNode(3), nullptr);
    EXPECT_EQ(path->getNode(-1), nullptr);
    EXPECT_EQ(path->getNodeFromTail(1), group);
    path->pop();
    EXPECT_EQ(path->getTail(), group);
    path->truncate(-3);
    EXPECT_EQ(path->getLength(), 0);
    EXPECT_EQ(path->getTail(), nullptr);
    EXPECT_EQ(path->getHead(), nullptr);
    EXPECT_FALSE(path->append(group)) << "there is nothing to stand below";
    path->pop();
}

// shows: KsPath::containsNode, KsPath::findNode, KsPath::setNumPublic, KsFullPath::getLength,
// KsFullPath::getTail
TEST_F(Path, showsItsPublicPartAndHoldsTheWhole)
{
    auto* group = addTo<KsGroup>(root);
    auto* shape = addTo<TestShape>(group);
    KsRef<KsFullPath> path(new KsFullPath(root));
    path->append(group);
    path->append(shape);
    path->setNumPublic(2);
    const KsPath* shown = path;
    EXPECT_EQ(shown->getLength(), 2);
    EXPECT_EQ(shown->getTail(), group);
    EXPECT_EQ(shown->getNode(2), shape);
    EXPECT_TRUE(shown->containsNode(shape));
    EXPECT_EQ(shown->findNode(shape), 2);
    const KsRef<KsGroup> stranger(new KsGroup);
    EXPECT_FALSE(shown->containsNode(stranger));
    EXPECT_FALSE(shown->containsNode(nullptr));
    EXPECT_EQ(shown->findNode(stranger), -1);
    EXPECT_EQ(path->getLength(), 3);
    EXPECT_EQ(path->getTail(), shape);
    path->setNumPublic(-1);
    EXPECT_EQ(shown->getLength(), 3);
}

// shows: KsPath::operator=, KsPath::operator==, KsPath::copy
TEST_F(Path, keepsItsNodesAlive)
{
    KsRef<KsPath> path;
    {
        KsRef<KsGroup> group(new KsGroup);
        auto* shape = addTo<TestShape>(group);
        path = new KsPath(group);
        path->append(shape);
        group->removeAllChildren();
    }
    EXPECT_EQ(path->getTail()->getRefCount(), 1);
    KsRef<KsPath> copy(path->copy());
    EXPECT_TRUE(*copy == *path);
    EXPECT_EQ(path->getTail()->getRefCount(), 2);
    *copy = KsPath();
    EXPECT_FALSE(*copy == *path);
    EXPECT_EQ(path->getTail()->getRefCount(), 1);
}

// shows: KsPath::setHead
TEST_F(Path, takesANewHeadFromItsOwnNodes)
{
    auto* group = addTo<KsGroup>(root);
    KsRef<KsPath> path(new KsPath(root));
    path->append(group);
    path->setHead(group);
    EXPECT_EQ(path->getLength(), 1);
    EXPECT_EQ(path->getHead(), group);
    path->setHead(nullptr);
    EXPECT_EQ(path->getLength(), 0);
}

// shows: KsAction::getPathCode
TEST_F(Path, tellsEachNodeHowItStandsToIt)
{
    auto* before = addTo<KsTranslation>(root);
    auto* skipped = addTo<KsSeparator>(root); // has no effect on what stands behind it
    addTo<TestShape>(skipped);
    auto* group = addTo<KsGroup>(root);
    auto* inner = addTo<TestShape>(group);
    auto* end = addTo<KsSeparator>(group);
    auto* below = addTo<TestShape>(end);
    auto* behind = addTo<TestShape>(group);

    struct Codes : KsCallbackAction {
        std::map<const KsNode*, PathCode> met;
        std::map<const KsNode*, int> index;
        void visit(KsNode* node) override
        {
            int count = 0;
            const int* indices = nullptr;
            met[node] = getPathCode(count, indices);
            EXPECT_EQ(getPathCode(), met[node]);
            if (count) index[node] = indices[0];
            KsCallbackAction::visit(node);
        }
    };
    Codes codes;
    codes.apply(root.get());
    EXPECT_EQ(codes.met.size(), 9u);
    EXPECT_EQ(codes.met[root], KsAction::NO_PATH);
    EXPECT_EQ(codes.met[below], KsAction::NO_PATH);

    KsRef<KsPath> path(new KsPath(root));
    path->append(group);
    path->append(end);
    codes.met.clear();
    codes.apply(path.get());
    EXPECT_EQ(codes.met.size(), 6u);
    EXPECT_EQ(codes.met[root], KsAction::IN_PATH);
    EXPECT_EQ(codes.index[root], 2);
    EXPECT_EQ(codes.met[before], KsAction::OFF_PATH);
    EXPECT_EQ(codes.met.count(skipped), 0u);
    EXPECT_EQ(codes.met[group], KsAction::IN_PATH);
    EXPECT_EQ(codes.index[group], 1);
    EXPECT_EQ(codes.met[inner], KsAction::OFF_PATH);
    EXPECT_EQ(codes.met[end], KsAction::BELOW_PATH);
    EXPECT_EQ(codes.met[below], KsAction::BELOW_PATH);
    EXPECT_EQ(codes.met.count(behind), 0u);

    // Children that moved since are followed.
    root->insertChild(new KsTranslation, 0);
    codes.met.clear();
    codes.apply(path.get());
    EXPECT_EQ(codes.met[below], KsAction::BELOW_PATH);
    // A path that leads nowhere any more ends where it breaks.
    const KsRef<KsNode> keep(end);
    group->removeChild(end);
    codes.met.clear();
    codes.apply(path.get());
    EXPECT_EQ(codes.met[group], KsAction::IN_PATH);
    EXPECT_EQ(codes.met.count(end), 0u);
}

TEST_F(Path, endsAllOfItsNodesBeingBelowIfItHasOneNode)
{
    auto* shape = addTo<TestShape>(root);
    KsRef<KsPath> path(new KsPath(root));
    KsGetBoundingBoxAction action{KbViewportRegion()};
    action.apply(path.get());
    EXPECT_TRUE(near(action.getBoundingBox(), {-1, -1, -1}, {1, 1, 1}));
    EXPECT_EQ(shape->boxVisits, 1);
    action.apply(static_cast<KsPath*>(nullptr));
    EXPECT_TRUE(action.getBoundingBox().isEmpty());
    KsRef<KsPath> empty(new KsPath);
    action.apply(empty.get());
    EXPECT_TRUE(action.getBoundingBox().isEmpty());
}

// ---- the matrix of a path ----

class Matrix : public Path {
protected:
    static KbVec3f moved(KsGetMatrixAction& action)
    {
        KbVec3f result;
        action.getMatrix().multVecMatrix(KbVec3f(), result);
        return result;
    }
    KsGetMatrixAction action{KbViewportRegion()};
};

// shows: KsGetMatrixAction, KsGetMatrixAction::getMatrix, KsGetMatrixAction::getInverse
TEST_F(Matrix, ofANodeIsItsOwn)
{
    KsRef<KsTransform> transform(new KsTransform);
    transform->translation = KbVec3f(1, 2, 3);
    transform->scaleFactor = KbVec3f(2, 2, 2);
    action.apply(transform.get());
    EXPECT_TRUE(action.getMatrix().equals(transform->getLocalMatrix(), 1e-6f));
    EXPECT_TRUE((action.getMatrix() * action.getInverse()).equals(KbMatrix(), 1e-5f));
    action.apply(root.get());
    EXPECT_TRUE(action.getMatrix().isIdentity());
    action.apply(transform.get());
    action.apply(static_cast<KsPath*>(nullptr)); // nothing of the former result stays
    EXPECT_TRUE(action.getMatrix().isIdentity());
}

TEST_F(Matrix, ofAPathHoldsTheTransformsOnItAndBeforeIt)
{
    addTo<KsTranslation>(root)->translation = KbVec3f(1, 0, 0);
    auto* closed = addTo<KsSeparator>(root);
    addTo<KsTranslation>(closed)->translation = KbVec3f(100, 0, 0);
    auto* open = addTo<KsGroup>(root);
    addTo<KsTranslation>(open)->translation = KbVec3f(0, 1, 0);
    auto* group = addTo<KsGroup>(root);
    auto* last = addTo<KsTranslation>(group);
    last->translation = KbVec3f(0, 0, 1);
    auto* behind = addTo<KsTranslation>(group);
    behind->translation = KbVec3f(0, 0, 50);

    KsRef<KsPath> path(new KsPath(root));
    path->append(group);
    action.apply(path.get());
    EXPECT_TRUE(near(moved(action), {1, 1, 0})); // of a group nothing of what is below it
    path->append(last);
    action.apply(path.get());
    EXPECT_TRUE(near(moved(action), {1, 1, 1})); // of a transform its own too
}

TEST_F(Matrix, ofAPathThroughASwitchFollowsThePath)
{
    auto* choice = addTo<KsSwitch>(root);
    addTo<KsTranslation>(choice)->translation = KbVec3f(1, 0, 0);
    auto* second = addTo<KsTranslation>(choice);
    second->translation = KbVec3f(0, 1, 0);
    KsRef<KsPath> path(new KsPath(root));
    path->append(choice);
    path->append(second);
    for (const int which : {-1, 0, 1}) {
        choice->whichChild = which;
        action.apply(path.get());
        EXPECT_TRUE(near(moved(action), {0, 1, 0})) << which;
    }
    choice->whichChild = KsSwitch::ALL;
    action.apply(path.get());
    EXPECT_TRUE(near(moved(action), {1, 1, 0}));
}

TEST_F(Matrix, besideThePathASwitchCountsWithWhatItShows)
{
    auto* choice = addTo<KsSwitch>(root);
    addTo<KsTranslation>(choice)->translation = KbVec3f(1, 0, 0);
    auto* shape = addTo<TestShape>(root);
    KsRef<KsPath> path(new KsPath(root));
    path->append(shape);
    action.apply(path.get());
    EXPECT_TRUE(near(moved(action), {0, 0, 0}));
    choice->whichChild = 0;
    action.apply(path.get());
    EXPECT_TRUE(near(moved(action), {1, 0, 0}));
}
