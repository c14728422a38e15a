#include "TestShape.h"

#include <arborium/nodes/KsMaterial.h>
#include <arborium/nodes/KsRotation.h>
#include <arborium/nodes/KsScale.h>
#include <arborium/nodes/KsSeparator.h>
#include <arborium/nodes/KsSwitch.h>
#include <arborium/nodes/KsTransformation.h>
#include <arborium/nodes/KsTranslation.h>

class Search : public ShapeTest {
protected:
    Search()
    {
        first = addTo<KsTranslation>(root);
        auto* inner = addTo<KsSeparator>(root);
        second = addTo<KsTranslation>(inner);
        scale = addTo<KsScale>(inner);
        third = addTo<KsTranslation>(root);
        third->setName("last");
    }
    KsRef<KsSeparator> root{new KsSeparator};
    KsTranslation* first;
    KsTranslation* second;
    KsTranslation* third;
    KsScale* scale;
    KsSearchAction search;
};

// shows: KsSearchAction::getInterest, KsSearchAction::getPath, KsSearchAction::isFound
TEST_F(Search, findsTheFirstOfAType)
{
    EXPECT_EQ(search.getInterest(), KsSearchAction::FIRST);
    search.setType(KsTranslation::getClassTypeId());
    search.apply(root);
    ASSERT_TRUE(search.isFound());
    ASSERT_NE(search.getPath(), nullptr);
    EXPECT_EQ(search.getPath()->getTail(), first);
    EXPECT_EQ(search.getPath()->getHead(), root.get());
    EXPECT_EQ(search.getPath()->getLength(), 2);
}

// shows: KsSearchAction::setInterest, KsSearchAction::setType
TEST_F(Search, findsTheLastOfAType)
{
    search.setType(KsTranslation::getClassTypeId());
    search.setInterest(KsSearchAction::LAST);
    search.apply(root);
    ASSERT_TRUE(search.isFound());
    EXPECT_EQ(search.getPath()->getTail(), third);
}

// shows: KsPathList::operator[], KsSearchAction::getPaths
TEST_F(Search, findsAllInTheirOrder)
{
    search.setType(KsTranslation::getClassTypeId());
    search.setInterest(KsSearchAction::ALL);
    search.apply(root);
    EXPECT_TRUE(search.isFound());
    EXPECT_EQ(search.getPath(), nullptr);
    ASSERT_EQ(search.getPaths().getLength(), 3);
    EXPECT_EQ(search.getPaths()[0]->getTail(), first);
    EXPECT_EQ(search.getPaths()[1]->getTail(), second);
    EXPECT_EQ(search.getPaths()[1]->getIndex(2), 0);
    EXPECT_EQ(search.getPaths()[2]->getTail(), third);
    EXPECT_EQ(search.getPaths()[3], nullptr);
}

// shows: KsPathList::getLength
TEST_F(Search, takesDerivedTypesIfItMay)
{
    search.setInterest(KsSearchAction::ALL);
    search.setType(KsTransformation::getClassTypeId());
    search.apply(root);
    EXPECT_EQ(search.getPaths().getLength(), 4);
    search.setType(KsTransformation::getClassTypeId(), false);
    search.apply(root);
    EXPECT_EQ(search.getPaths().getLength(), 0);
    EXPECT_FALSE(search.isFound());
    search.setType(KsScale::getClassTypeId(), false);
    search.apply(root);
    EXPECT_EQ(search.getPaths().getLength(), 1);
}

TEST_F(Search, findsTheRootItself)
{
    search.setType(KsNode::getClassTypeId());
    search.apply(root);
    ASSERT_TRUE(search.isFound());
    EXPECT_EQ(search.getPath()->getLength(), 1);
}

// shows: KsSearchAction::setName
TEST_F(Search, findsByNameAndByNode)
{
    search.setName("last");
    search.apply(root);
    ASSERT_TRUE(search.isFound());
    EXPECT_EQ(search.getPath()->getTail(), third);
    search.setType(KsScale::getClassTypeId()); // all criteria hold together
    search.apply(root);
    EXPECT_FALSE(search.isFound());
    EXPECT_EQ(search.getPath(), nullptr);
    search.reset();
    search.setNode(scale);
    search.apply(root);
    ASSERT_TRUE(search.isFound());
    EXPECT_EQ(search.getPath()->getTail(), scale);
}

// shows: KsSearchAction::isFound
TEST_F(Search, withoutCriteriaFindsNothing)
{
    search.apply(root);
    EXPECT_FALSE(search.isFound());
    search.setNode(scale);
    search.setNode(nullptr);
    search.apply(root);
    EXPECT_FALSE(search.isFound());
}

// shows: KsSearchAction::isSearchingAll, KsSearchAction::reset
TEST_F(Search, forgetsItsResultWithTheNextApplyAndAtReset)
{
    search.setNode(scale);
    search.apply(root);
    EXPECT_TRUE(search.isFound());
    search.apply(static_cast<KsNode*>(nullptr));
    EXPECT_FALSE(search.isFound());
    EXPECT_EQ(search.getPath(), nullptr);
    search.setInterest(KsSearchAction::ALL);
    search.setSearchingAll(true);
    EXPECT_TRUE(search.isSearchingAll());
    search.apply(root);
    EXPECT_EQ(search.getPaths().getLength(), 1);
    search.reset();
    EXPECT_FALSE(search.isFound());
    EXPECT_EQ(search.getPaths().getLength(), 0);
    EXPECT_EQ(search.getInterest(), KsSearchAction::FIRST);
    EXPECT_FALSE(search.isSearchingAll());
}

// shows: KsSearchAction::setSearchingAll
TEST_F(Search, goesWhereSwitchesLead)
{
    auto* choice = addTo<KsSwitch>(root);
    addTo<TestShape>(choice);
    auto* hidden = addTo<KsRotation>(choice);
    choice->whichChild = 0;
    search.setNode(hidden);
    search.apply(root);
    EXPECT_FALSE(search.isFound());
    search.setSearchingAll(true);
    EXPECT_TRUE(search.isSearchingAll());
    search.apply(root);
    EXPECT_TRUE(search.isFound());
    search.setSearchingAll(false);
    EXPECT_FALSE(search.isSearchingAll());
    choice->whichChild = 1;
    search.apply(root);
    ASSERT_TRUE(search.isFound());
    EXPECT_EQ(search.getPath()->getIndex(2), 1);
    search.setNode(choice); // found whatever it shows
    choice->whichChild = KsSwitch::NONE;
    search.apply(root);
    EXPECT_TRUE(search.isFound());
}

TEST_F(Search, takesCriteriaAtTheirEdges)
{
    search.setName(KbName());
    search.setInterest(KsSearchAction::ALL);
    search.apply(root);
    EXPECT_EQ(search.getPaths().getLength(), 5) << "all but the one that has a name";
    search.reset();
    search.setType(KsType::badType());
    search.apply(root);
    EXPECT_FALSE(search.isFound());
    search.setType(KsTranslation::getClassTypeId());
    search.setInterest(7);
    search.apply(root);
    ASSERT_TRUE(search.isFound());
    EXPECT_EQ(search.getPath()->getTail(), third) << "as the last one";
}

// shows: KsSearchAction::setNode
TEST_F(Search, meetsASharedNodeOncePerPlace)
{
    root->addChild(first);
    search.setNode(first);
    search.setInterest(KsSearchAction::ALL);
    search.apply(root);
    ASSERT_EQ(search.getPaths().getLength(), 2);
    EXPECT_EQ(search.getPaths()[0]->getIndex(1), 0);
    EXPECT_EQ(search.getPaths()[1]->getIndex(1), 3);
}

TEST_F(Search, alongAPathMeetsOnlyWhatItLeadsTo)
{
    auto* left = addTo<KsSeparator>(root);
    auto* right = addTo<KsSeparator>(root);
    auto* inLeft = addTo<KsTranslation>(left);
    auto* inRight = addTo<KsTranslation>(right);
    auto* last = addTo<KsTranslation>(right);
    KsSearchAction action;
    action.setType(KsTranslation::getClassTypeId());
    const KsRef<KsPath> toLeft(new KsPath(root)), toRight(new KsPath(root));
    ASSERT_TRUE(toLeft->append(left));
    ASSERT_TRUE(toRight->append(right));
    action.apply(toRight);
    ASSERT_TRUE(action.getPath());
    EXPECT_EQ(action.getPath()->getTail(), inRight);

    KsPathList paths;
    paths.append(toLeft);
    paths.append(nullptr);
    paths.append(toRight);
    action.apply(paths);
    ASSERT_TRUE(action.getPath());
    EXPECT_EQ(action.getPath()->getTail(), inLeft);
    action.setInterest(KsSearchAction::LAST);
    action.apply(paths);
    ASSERT_TRUE(action.getPath());
    EXPECT_EQ(action.getPath()->getTail(), last);
    action.setInterest(KsSearchAction::ALL);
    action.apply(paths);
    ASSERT_EQ(action.getPaths().getLength(), 3);
    EXPECT_EQ(action.getPaths()[0]->getTail(), inLeft);
    EXPECT_EQ(action.getPaths()[2]->getTail(), last);
    action.setType(KsMaterial::getClassTypeId());
    action.apply(paths);
    EXPECT_FALSE(action.isFound());
}

// shows: KsAction::visit, KsSearchAction, KsSearchAction::setFound
TEST_F(Search, endsWhenANodeSaysThatItIsFound)
{
    struct Ender : KsSearchAction {
        int visits = 0;
        void visit(KsNode* node) override
        {
            ++visits;
            KsSearchAction::visit(node);
            if (node == last) setFound();
        }
        const KsNode* last = nullptr;
    };
    Ender ender;
    ender.setType(KsNode::getClassTypeId());
    ender.setInterest(KsSearchAction::ALL);
    ender.apply(root);
    EXPECT_EQ(ender.visits, 6);
    EXPECT_EQ(ender.getPaths().getLength(), 6);
    ender.last = first;
    ender.apply(root);
    ASSERT_EQ(ender.getPaths().getLength(), 2) << "the root and its first child";
    EXPECT_EQ(ender.getPaths()[1]->getTail(), first);
}

// ---- walks of an application's own ----

class Walk : public Search {
protected:
    std::vector<const KsNode*> before, behind;
    KsCallbackAction walk;
    KsCallbackAction::Response answer = KsCallbackAction::CONTINUE;
    const KsNode* answerAt = nullptr;
    void SetUp() override
    {
        walk.setPreCallback([this](KsCallbackAction*, const KsNode* node) {
            before.push_back(node);
            return node == answerAt ? answer : KsCallbackAction::CONTINUE;
        });
        walk.setPostCallback([this](KsCallbackAction*, const KsNode* node) {
            behind.push_back(node);
            return KsCallbackAction::CONTINUE;
        });
    }
};

TEST_F(Walk, meetsEachNodeBeforeAndBehindItsChildren)
{
    walk.apply(root);
    ASSERT_EQ(before.size(), 6u);
    EXPECT_EQ(before.front(), root.get());
    ASSERT_EQ(behind.size(), 6u);
    EXPECT_EQ(behind.front(), first);
    EXPECT_EQ(behind.back(), root.get());
}

TEST_F(Walk, leavesOutWhatIsPruned)
{
    answer = KsCallbackAction::PRUNE;
    answerAt = root->getChild(1);
    walk.apply(root);
    EXPECT_EQ(before.size(), 4u);
    EXPECT_EQ(behind.size(), 4u);
}

// shows: KsAction::isTerminated, KsCallbackAction
TEST_F(Walk, endsAtOnceWhenAborted)
{
    answer = KsCallbackAction::ABORT;
    answerAt = second;
    walk.apply(root);
    EXPECT_EQ(before.size(), 4u);
    EXPECT_EQ(behind.size(), 1u);
    EXPECT_TRUE(walk.isTerminated());
    answerAt = nullptr;
    walk.apply(root); // a new traversal knows nothing of it
    EXPECT_EQ(before.size(), 10u);
    EXPECT_FALSE(walk.isTerminated());
}

// shows: KsAction::getState, KsAction::getCurPathTail, KsCallbackAction::setPostCallback
TEST_F(Walk, hasTheStateAtHand)
{
    first->translation = KbVec3f(3, 0, 0);
    scale->scaleFactor = KbVec3f(2, 2, 2);
    KbMatrix atScale, atThird;
    walk.setPostCallback([&](KsCallbackAction* action, const KsNode* node) {
        EXPECT_EQ(action->getCurPathTail(), node);
        if (node == scale) atScale = action->getState()->modelMatrix.get();
        if (node == third) atThird = action->getState()->modelMatrix.get();
        return KsCallbackAction::CONTINUE;
    });
    walk.apply(root);
    KbVec3f point;
    atScale.multVecMatrix({1, 0, 0}, point);
    EXPECT_TRUE(near(point, {5, 0, 0}));
    atThird.multVecMatrix({1, 0, 0}, point);
    EXPECT_TRUE(near(point, {4, 0, 0}));
    EXPECT_EQ(walk.getState(), nullptr);
    EXPECT_EQ(walk.getCurPathTail(), nullptr);
}

TEST_F(Walk, mayChangeItsOwnFunctionsInTheirMiddle)
{
    std::string met;
    const std::string letters = "second";
    walk.setPreCallback([&met, letters](KsCallbackAction* action, const KsNode*) {
        action->setPreCallback([&met, letters](KsCallbackAction* again, const KsNode*) {
            again->setPreCallback(nullptr);
            met += letters; // what runs is still there
            return KsCallbackAction::CONTINUE;
        });
        action->setPostCallback([&met](KsCallbackAction* again, const KsNode*) {
            again->setPostCallback(nullptr);
            met += " behind";
            return KsCallbackAction::CONTINUE;
        });
        met += "first ";
        return KsCallbackAction::CONTINUE;
    });
    walk.apply(root);
    EXPECT_EQ(met, "first second behind");
}

// shows: KsAction::getCurPath
TEST_F(Walk, mayBeAppliedAgainInItsMiddle)
{
    int inner = 0;
    KsRef<KsGroup> other(new KsGroup);
    addTo<KsScale>(other);
    const KsFullPath* path = nullptr;
    walk.setPreCallback([&](KsCallbackAction* action, const KsNode* node) {
        if (node == other.get() || node->getTypeId() == KsScale::getClassTypeId()) ++inner;
        if (node == second) {
            action->apply(other);
            path = action->getCurPath();
            EXPECT_EQ(path->getTail(), second);
            EXPECT_EQ(path->getLength(), 3);
            EXPECT_NE(action->getState(), nullptr);
        }
        return KsCallbackAction::CONTINUE;
    });
    walk.apply(root);
    EXPECT_EQ(inner, 3);
    EXPECT_NE(path, nullptr);
}

// shows: KsCallbackAction::setPreCallback
TEST_F(Walk, survivesAChangeOfTheListThatItWalks)
{
    walk.setPreCallback([this](KsCallbackAction*, const KsNode* node) {
        before.push_back(node);
        if (node == first) root->removeAllChildren();
        return KsCallbackAction::CONTINUE;
    });
    walk.apply(root);
    EXPECT_EQ(before.size(), 2u);
}

TEST_F(Walk, keepsARootAliveThatNobodyHolds)
{
    auto* lone = new KsGroup;
    addTo<KsScale>(lone);
    walk.apply(lone);
    EXPECT_EQ(before.size(), 2u);
    EXPECT_EQ(lone->getRefCount(), 0);
    lone->ref();
    lone->unref();
}
