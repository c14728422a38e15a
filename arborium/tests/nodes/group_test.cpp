#include "MessageGuard.h"

#include <arborium/nodes/KsGroup.h>
#include <arborium/nodes/KsNodeList.h>
#include <arborium/nodes/KsTranslation.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

class KsTestHolder : public KsNode {
    KS_NODE_HEADER(KsTestHolder);

public:
    KsTestHolder();
    KsSFInt32 number;
    KsSFNode held;
};
KS_NODE_SOURCE(KsTestHolder, KsNode)
KsTestHolder::KsTestHolder()
{
    KsInstanceBuilder build(classRecord, this);
    build.field("number", number, 0);
    build.field("held", held, nullptr);
}

namespace {
struct Watch : KsSceneObserver {
    int calls = 0;
    void sceneChanged() override { ++calls; }
};

class Group : public testing::Test {
protected:
    void SetUp() override
    {
        KsNode::initClass();
        KsGroup::initClass();
        KsTestHolder::initClass();
        group = new KsGroup;
        instances = KsBase::getNumInstances();
    }
    KsRef<KsGroup> group;
    int instances = 0;
};

/// As a traversal does.
void visit(KsNode* node)
{
    node->clearStale(KsNode::StaleAll);
    const KsChildList* children = node->getChildren();
    for (int i = 0; children && i < children->getLength(); ++i) visit(children->get(i));
}
} // namespace

// shows: KsGroup::addChild, KsGroup::insertChild, KsGroup::getNumChildren, KsGroup::getChild,
// KsGroup::findChild, KsGroup::removeChild, KsGroup::replaceChild, KsGroup::removeAllChildren
TEST_F(Group, keepsItsChildrenInOrder)
{
    auto* a = new KsGroup;
    auto* b = new KsGroup;
    auto* c = new KsGroup;
    group->addChild(a);
    group->addChild(c);
    group->insertChild(b, 1);
    EXPECT_EQ(group->getNumChildren(), 3);
    EXPECT_EQ(group->getChild(1), b);
    EXPECT_EQ(group->findChild(c), 2);
    EXPECT_EQ(b->getParent(0), group.get());
    group->removeChild(0);
    EXPECT_EQ(group->findChild(b), 0);
    auto* d = new KsGroup;
    group->replaceChild(b, d);
    EXPECT_EQ(group->getChild(0), d);
    group->replaceChild(1, d); // twice the same child
    EXPECT_EQ(d->getRefCount(), 2);
    EXPECT_EQ(d->getNumParents(), 1);
    group->removeAllChildren();
    EXPECT_EQ(group->getNumChildren(), 0);
    EXPECT_EQ(KsBase::getNumInstances(), instances);
}

// shows: KsGroup::insertChild, KsGroup::getChild, KsGroup::findChild, KsGroup::removeChild,
// KsGroup::replaceChild
TEST_F(Group, refusesWhatIsNoChildOrNoIndex)
{
    KsRef<KsGroup> other(new KsGroup);
    ExpectedMessages messages;
    messages.expect("KsGroup::addChild", "NULL child node");
    messages.expect("KsGroup::insertChild", "NULL child node");
    messages.expect("KsGroup::replaceChild", "NULL child node");
    messages.expect("KsGroup::insertChild", "Index 1 is out of range 0 - 0");
    messages.expect("KsGroup::insertChild", "Index -1 is out of range 0 - 0");
    messages.expect("KsGroup::getChild", "Index 0 is out of range 0 - -1");
    messages.expect("KsGroup::removeChild", "Index 0 is out of range 0 - -1");
    messages.expect("KsGroup::replaceChild", "Index 0 is out of range 0 - -1");
    messages.expect("KsGroup::removeChild", "no child of this group");
    messages.expect("KsGroup::replaceChild", "no child of this group");
    group->addChild(nullptr);
    group->insertChild(nullptr, 0);
    group->replaceChild(0, nullptr);
    group->insertChild(other, 1);
    group->insertChild(other, -1);
    EXPECT_EQ(group->getChild(0), nullptr);
    group->removeChild(0);
    group->replaceChild(0, other);
    group->removeChild(other.get());
    group->replaceChild(other.get(), other.get());
    EXPECT_EQ(group->findChild(nullptr), -1);
}

TEST_F(Group, isNeverPutBelowItself)
{
    auto* inner = new KsGroup;
    auto* holder = new KsTestHolder;
    group->addChild(inner);
    inner->addChild(holder);
    auto* held = new KsGroup;
    holder->held = held;
    ExpectedMessages messages("KsChildList::insert", "A Group cannot stand below itself", 4);
    messages.expect("KsChildList::insert", "A TestHolder cannot stand below itself");
    group->addChild(group);
    inner->addChild(group);
    inner->replaceChild(0, group);
    held->addChild(inner);
    held->addChild(holder);
    EXPECT_EQ(held->getNumChildren(), 0);
    EXPECT_EQ(inner->getChild(0), holder);
}

// shows: KsNode::isBelow
TEST_F(Group, releasesATreeOfAnyDepth)
{
    KsGroup* tail = group;
    for (int i = 0; i < 200000; ++i) {
        auto* next = new KsGroup;
        tail->addChild(next);
        tail = next;
    }
    tail->touch(); // goes up all of it
    EXPECT_TRUE(tail->isBelow(group));
    EXPECT_FALSE(group->isBelow(tail));
    EXPECT_FALSE(tail->isBelow(nullptr));
    group.reset();
    EXPECT_EQ(KsBase::getNumInstances(), instances - 1);
}

// shows: KsNode::getNumParents, KsNode::getParent
TEST_F(Group, sharesAChildWithManyParents)
{
    KsRef<KsGroup> shared(new KsGroup);
    std::vector<KsRef<KsGroup>> parents;
    for (int i = 0; i < 10000; ++i) {
        parents.emplace_back(new KsGroup);
        parents.back()->addChild(shared);
    }
    EXPECT_EQ(shared->getNumParents(), 10000);
    EXPECT_NE(shared->getParent(9999), nullptr);
    EXPECT_EQ(shared->getParent(10000), nullptr);
    EXPECT_EQ(shared->getParent(-1), nullptr);
    parents.resize(1);
    EXPECT_EQ(shared->getNumParents(), 1);
    EXPECT_EQ(shared->getParent(0), parents[0].get());
    parents.clear();
    EXPECT_EQ(shared->getNumParents(), 0);
    EXPECT_EQ(shared->getParent(0), nullptr);
}

TEST_F(Group, isMarkedWhenSomethingBelowItChanges)
{
    auto* inner = new KsGroup;
    auto* holder = new KsTestHolder;
    group->addChild(inner);
    inner->addChild(holder);
    visit(group);
    EXPECT_FALSE(group->isStale(KsNode::StaleAll));
    holder->number = 1;
    EXPECT_TRUE(group->isStale(KsNode::StaleBox));
    EXPECT_TRUE(group->isStale(KsNode::StaleDraw));
    visit(group);
    group->clearStale(KsNode::StaleAll);
    holder->clearStale(KsNode::StaleAll);
    inner->enableNotify(false); // silence keeps nothing stale
    inner->insertChild(new KsGroup, 0);
    EXPECT_TRUE(group->isStale(KsNode::StaleBox));
    visit(group);
    inner->removeChild(0);
    EXPECT_TRUE(group->isStale(KsNode::StaleDraw));
}

TEST_F(Group, isMarkedAboveWhatOneTraversalLeftMarked)
{
    auto* holder = new KsTestHolder;
    group->addChild(holder);
    visit(group);
    holder->number = 1;
    group->clearStale(KsNode::StaleBox);
    holder->clearStale(KsNode::StaleBox);
    holder->number = 2;
    EXPECT_TRUE(group->isStale(KsNode::StaleBox));
    EXPECT_TRUE(group->isStale(KsNode::StaleDraw));
}

// shows: KsSceneObserver::sceneChanged, KsNode::addObserver, KsNode::removeObserver
TEST_F(Group, tellsItsObserverOncePerTraversal)
{
    Watch watch;
    auto* holder = new KsTestHolder;
    group->addChild(holder);
    group->addObserver(&watch);
    visit(group);
    holder->number = 1;
    holder->number = 2;
    EXPECT_EQ(watch.calls, 1);
    visit(group);
    group->enableNotify(false);
    holder->number = 3;
    EXPECT_EQ(watch.calls, 2);
    visit(group);
    group->removeObserver(&watch);
    holder->number = 4;
    EXPECT_EQ(watch.calls, 2);
}

TEST_F(Group, keepsItsObserversWhenNoneIsRemoved)
{
    struct Leaver : KsSceneObserver {
        explicit Leaver(KsGroup* watched) : group(watched) { group->addObserver(this); }
        void sceneChanged() override
        {
            group->removeObserver(this);
            group->removeObserver(nullptr);
        }
        KsGroup* group;
    } leaver(group);
    Watch watch;
    group->addObserver(&watch);
    for (const int calls : {1, 2}) {
        visit(group);
        group->touch();
        EXPECT_EQ(watch.calls, calls);
    }
}

// shows: KsNode::getByName
TEST_F(Group, findsNodesByTheirNames)
{
    auto* a = new KsGroup;
    auto* b = new KsGroup;
    group->addChild(a);
    group->addChild(b);
    b->setName("wall");
    a->setName("wall");
    EXPECT_EQ(KsNode::getByName("wall"), b);
    KsNodeList list;
    EXPECT_EQ(KsNode::getByName("wall", list), 2);
    EXPECT_EQ(list[0], b);
    EXPECT_EQ(list[1], a);
    EXPECT_EQ(list[2], nullptr);
    EXPECT_EQ(KsNode::getByName("floor", list), 0);
    list.truncate(0);
    // Named anew, it comes last.
    b->setName("floor");
    EXPECT_EQ(KsNode::getByName("wall"), a);
    b->setName("wall");
    EXPECT_EQ(KsNode::getByName("wall"), a);
    EXPECT_EQ(KsNode::getByName("wall", list), 2);
    EXPECT_EQ(list[1], b);
    list.truncate(0);
    group->removeAllChildren();
    EXPECT_EQ(KsNode::getByName("wall"), nullptr);
}

// shows: KsNode::copy
TEST_F(Group, isCopiedWithWhatIsBelowAndSharedOnce)
{
    auto* first = new KsTestHolder;
    auto* second = new KsTestHolder;
    auto* shared = new KsGroup;
    shared->setName("shared");
    first->number = 5;
    first->held = shared;
    second->held = shared;
    group->addChild(first);
    group->addChild(second);
    group->addChild(shared);
    KsRef<KsGroup> copy(static_cast<KsGroup*>(group->copy()));
    ASSERT_EQ(copy->getNumChildren(), 3);
    EXPECT_EQ(copy->getRefCount(), 1);
    auto* firstCopy = static_cast<KsTestHolder*>(copy->getChild(0));
    auto* secondCopy = static_cast<KsTestHolder*>(copy->getChild(1));
    EXPECT_NE(firstCopy, first);
    EXPECT_EQ(firstCopy->number.getValue(), 5);
    EXPECT_FALSE(firstCopy->number.isDefault());
    EXPECT_TRUE(secondCopy->number.isDefault());
    EXPECT_EQ(firstCopy->held.getValue(), copy->getChild(2));
    EXPECT_EQ(secondCopy->held.getValue(), copy->getChild(2));
    EXPECT_NE(copy->getChild(2), shared);
    EXPECT_EQ(copy->getChild(2)->getName(), "shared");
    EXPECT_EQ(firstCopy->getRefCount(), 1);
}

TEST_F(Group, isCopiedWithTheConnectionsWithinIt)
{
    auto* master = new KsTestHolder;
    auto* slave = new KsTestHolder;
    KsRef<KsTestHolder> outside(new KsTestHolder);
    auto* follower = new KsTestHolder;
    group->addChild(slave);
    group->addChild(master);
    group->addChild(follower);
    slave->number.connectFrom(&master->number);
    follower->number.connectFrom(&outside->number);
    KsRef<KsGroup> copy(static_cast<KsGroup*>(group->copy()));
    auto* slaveCopy = static_cast<KsTestHolder*>(copy->getChild(0));
    auto* masterCopy = static_cast<KsTestHolder*>(copy->getChild(1));
    auto* followerCopy = static_cast<KsTestHolder*>(copy->getChild(2));
    EXPECT_EQ(slaveCopy->number.getConnectedField(), &masterCopy->number);
    EXPECT_FALSE(followerCopy->number.isConnected());
    copy = static_cast<KsGroup*>(group->copy(true));
    followerCopy = static_cast<KsTestHolder*>(copy->getChild(2));
    EXPECT_EQ(followerCopy->number.getConnectedField(), &outside->number);
    slave->number.setConnectionPrivate(true);
    copy = static_cast<KsGroup*>(group->copy(true));
    EXPECT_FALSE(static_cast<KsTestHolder*>(copy->getChild(0))->number.isConnected());
}

TEST_F(Group, isCopiedAtAnyDepth)
{
    KsGroup* tail = group;
    for (int i = 0; i < 100000; ++i) {
        auto* next = new KsGroup;
        tail->addChild(next);
        tail = next;
    }
    const int before = KsBase::getNumInstances();
    KsRef<KsNode> copy(group->copy());
    EXPECT_EQ(KsBase::getNumInstances(), before + 100001);
    copy.reset();
    EXPECT_EQ(KsBase::getNumInstances(), before);
}

// shows: KsNodeList, KsNodeList::operator=, KsNodeList::append, KsNodeList::insert,
// KsNodeList::set, KsNodeList::remove, KsNodeList::truncate, KsNodeList::find,
// KsNodeList::getLength, KsNodeList::get, KsNodeList::operator[], KsNodeList::reserve
TEST(NodeList, holdsOneReferenceToEachNode)
{
    KsNode::initClass();
    KsGroup::initClass();
    KsRef<KsGroup> a(new KsGroup), b(new KsGroup);
    {
        KsNodeList list;
        list.reserve(100);
        list.reserve(-1);
        EXPECT_EQ(list.getLength(), 0);
        list.append(a);
        list.insert(b, 0);
        list.append(nullptr);
        list.insert(b, 7);
        EXPECT_EQ(list.getLength(), 2);
        EXPECT_EQ(list.find(a), 1);
        EXPECT_EQ(list.find(b), 0);
        EXPECT_EQ(list.find(nullptr), -1);
        const KsNodeList copy = list;
        EXPECT_EQ(a->getRefCount(), 3);
        list.set(0, a);
        EXPECT_EQ(b->getRefCount(), 2);
        list.remove(5);
        list.remove(0);
        EXPECT_EQ(list.getLength(), 1);
        list = copy;
        EXPECT_EQ(list.getLength(), 2);
        list.truncate(5);
        list.truncate(1);
        EXPECT_EQ(list.getLength(), 1);
        EXPECT_EQ(list.get(0), b.get());
        EXPECT_EQ(list[-1], nullptr);
    }
    EXPECT_EQ(a->getRefCount(), 1);
    EXPECT_EQ(b->getRefCount(), 1);
}

TEST(NodeList, takesOverTheChildrenOfWhatItHeldAlone)
{
    KsNode::initClass();
    KsGroup::initClass();
    KsNodeList list;
    auto* outer = new KsGroup;
    auto* inner = new KsGroup;
    list.append(outer);
    outer->addChild(inner);
    list = *outer->getChildren();
    ASSERT_EQ(list.getLength(), 1);
    EXPECT_EQ(list[0], inner);
    EXPECT_EQ(inner->getRefCount(), 1) << "the group has gone";
}

// shows: KsNode::internalAddChild, KsNode::internalInsertChild, KsNode::internalGetChild,
// KsNode::internalFindChild, KsNode::internalRemoveChild, KsNode::internalRemoveAllChildren,
// KsNode::internalReplaceChild, KsNode::getChildren
TEST_F(Group, isOneOfManyKindsOfContainers)
{
    const KsRef<KsNode> a(new KsGroup), b(new KsGroup), c(new KsGroup);
    KsNode* container = group;
    EXPECT_TRUE(container->isGroup());
    container->internalAddChild(a);
    container->internalInsertChild(b, 0);
    EXPECT_EQ(container->internalGetChild(1), a.get());
    EXPECT_EQ(container->internalFindChild(b), 0);
    container->internalReplaceChild(a, c);
    container->internalReplaceChild(0, a);
    EXPECT_EQ(container->internalFindChild(b), -1);
    container->internalRemoveChild(c);
    container->internalRemoveChild(0);
    EXPECT_EQ(container->getChildren()->getLength(), 0);
    container->internalAddChild(b);
    container->internalRemoveAllChildren();
    EXPECT_EQ(container->getChildren()->getLength(), 0);

    // A node without children says so, and changes nothing.
    KsTransformation::initClass();
    KsTranslation::initClass();
    const KsRef<KsNode> leaf(new KsTranslation);
    ExpectedMessages messages("KsNode::internalAddChild", "a Translation holds no children");
    messages.expect("KsNode::internalInsertChild", "a Translation holds no children");
    messages.expect("KsNode::internalGetChild", "a Translation holds no children");
    messages.expect("KsNode::internalRemoveChild", "a Translation holds no children");
    messages.expect("KsNode::internalRemoveChild", "a Translation holds no children");
    messages.expect("KsNode::internalReplaceChild", "a Translation holds no children");
    messages.expect("KsNode::internalReplaceChild", "a Translation holds no children");
    leaf->internalAddChild(a);
    leaf->internalInsertChild(a, 0);
    EXPECT_EQ(leaf->internalGetChild(0), nullptr);
    leaf->internalRemoveChild(a);
    leaf->internalRemoveChild(0);
    leaf->internalReplaceChild(a, b);
    leaf->internalReplaceChild(0, b);
    leaf->internalRemoveAllChildren();
    EXPECT_EQ(leaf->internalFindChild(a), -1);
    EXPECT_EQ(leaf->getChildren(), nullptr);
    EXPECT_FALSE(leaf->isGroup());
    EXPECT_EQ(a->getRefCount(), 1);
}
