#include "MessageGuard.h"

#include <arborium/base/KsBase.h>
#include <arborium/base/KsType.h>
#include <arborium/base/KsTypedObject.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {
KsType fruit() { return KsType::createType(KsType::badType(), "TestFruit"); }

class Thing : public KsTypedObject {
public:
    KsType getTypeId() const override { return KsType::fromName("TestThing"); }
    static KsTypedObject* create(KsType*) { return new Thing; }
};

/// A named object that notes when it goes.
class Item : public KsBase {
public:
    explicit Item(std::vector<std::string>* log = nullptr) : m_log(log) {}
    static KsType type() { return KsType::createType(KsBase::getClassTypeId(), "TestItem"); }
    KsType getTypeId() const override { return type(); }
    bool readInstance(KsInput*, unsigned short) override { return true; }
    KsRef<Item> next;
    bool refsItselfWhileDying = false;

protected:
    ~Item() override
    {
        if (m_log) m_log->push_back("gone");
    }
    void notifyDelete() override
    {
        if (m_log) m_log->push_back("going");
        if (!refsItselfWhileDying) return;
        ref();
        unref();
    }

private:
    std::vector<std::string>* m_log;
};
} // namespace

// shows: KsType::fromName, KsType::isBad
TEST(Type, isFoundWithAndWithoutThePrefix)
{
    const KsType apple = KsType::createType(fruit(), "TestApple");
    EXPECT_EQ(KsType::fromName("TestApple"), apple);
    EXPECT_EQ(KsType::fromName("KsTestApple"), apple);
    const KsType pear = KsType::createType(fruit(), "KsTestPear");
    EXPECT_EQ(KsType::fromName("TestPear"), pear);
    EXPECT_EQ(KsType::fromName("KsTestPear"), pear);
    EXPECT_TRUE(KsType::fromName("TestPlum").isBad());
    EXPECT_TRUE(KsType::fromName("").isBad());
    EXPECT_TRUE(KsType::fromName("Ks").isBad());
}

// shows: KsType, KsType::badType, KsType::getParent, KsType::isDerivedFrom
TEST(Type, derivesFromItselfAndFromEachTypeAboveIt)
{
    const KsType apple = KsType::createType(fruit(), "TestApple");
    const KsType small = KsType::createType(apple, "TestSmallApple");
    const KsType pear = KsType::createType(fruit(), "TestPear");
    EXPECT_TRUE(small.isDerivedFrom(small));
    EXPECT_TRUE(small.isDerivedFrom(apple));
    EXPECT_TRUE(small.isDerivedFrom(fruit()));
    EXPECT_FALSE(apple.isDerivedFrom(small));
    EXPECT_FALSE(small.isDerivedFrom(pear));
    EXPECT_FALSE(small.isDerivedFrom(KsType::badType()));
    EXPECT_FALSE(KsType::badType().isDerivedFrom(KsType::badType()));
    EXPECT_EQ(small.getParent(), apple);
    EXPECT_TRUE(fruit().getParent().isBad());
}

// shows: KsType::createType, KsType::canCreateInstance, KsType::createInstance,
// KsType::getActionIndex
TEST(Type, thatIsRegisteredAlreadyStaysAsItIs)
{
    const KsType apple = KsType::createType(fruit(), "TestApple", nullptr, 7);
    EXPECT_EQ(KsType::createType(KsType::badType(), "TestApple", &Thing::create, 9), apple);
    EXPECT_EQ(apple.getParent(), fruit());
    EXPECT_EQ(apple.getActionIndex(), 7);
    EXPECT_EQ(KsType::badType().getActionIndex(), 0);
    EXPECT_TRUE(KsType::createType(fruit(), "").isBad());
    EXPECT_FALSE(apple.canCreateInstance());
    EXPECT_EQ(apple.createInstance(), nullptr);
}

// shows: KsType::removeType, KsType::getName
TEST(Type, isGoneAfterItsRemovalAndComesBackUnderItsName)
{
    const KsType apple = KsType::createType(fruit(), "TestApple");
    EXPECT_EQ(apple.getName(), "TestApple");
    EXPECT_NE(KsType::removeType("TestApple"), 0);
    EXPECT_EQ(KsType::removeType("TestApple"), 0);
    EXPECT_TRUE(KsType::fromName("TestApple").isBad());
    EXPECT_FALSE(apple.isDerivedFrom(fruit()));
    EXPECT_TRUE(apple.getName().isEmpty());
    for (int i = 0; i < 70000; ++i) { // more than there are indices
        ASSERT_FALSE(KsType::createType(fruit(), "TestApple").isBad());
        ASSERT_NE(KsType::removeType("TestApple"), 0);
    }
}

// shows: KsType::canCreateInstance, KsType::createInstance, KsTypedObject::getClassTypeId,
// KsTypedObject::getTypeId, KsTypedObject::isOfType, KsTypedObject::checkDatabase, ksCast
TEST(Type, createsInstances)
{
    const KsType type =
        KsType::createType(KsTypedObject::getClassTypeId(), "TestThing", &Thing::create);
    KsTypedObject* thing = type.createInstance();
    ASSERT_NE(thing, nullptr);
    EXPECT_TRUE(type.canCreateInstance());
    EXPECT_EQ(thing->getTypeId(), type);
    EXPECT_TRUE(thing->isOfType(KsTypedObject::getClassTypeId()));
    EXPECT_FALSE(thing->isOfType(KsBase::getClassTypeId()));
    EXPECT_FALSE(thing->isOfType(KsType::badType()));
    EXPECT_EQ(ksCast<KsTypedObject>(thing), thing);
    EXPECT_EQ(ksCast<KsBase>(thing), nullptr);
    const KsTypedObject* constant = thing;
    EXPECT_EQ(ksCast<KsTypedObject>(constant), thing);
    EXPECT_EQ(ksCast<KsBase>(constant), nullptr);
    EXPECT_EQ(ksCast<KsTypedObject>(static_cast<KsTypedObject*>(nullptr)), nullptr);
    EXPECT_TRUE(KsTypedObject::checkDatabase("KsTestThing", thing, type, type));
    {
        ExpectedMessages messages("KsTypedObject::checkDatabase", "TestThing");
        EXPECT_FALSE(KsTypedObject::checkDatabase("TestThing", thing, type, KsType::badType()));
    }
    {
        ExpectedMessages messages("KsTypedObject::checkDatabase", "class \"\"");
        EXPECT_FALSE(KsTypedObject::checkDatabase(nullptr, nullptr, type, type));
    }
    delete thing;
}

// shows: KsBase::notifyDelete, KsRefCounter::unref
TEST(References, destroyAtTheLastOne)
{
    std::vector<std::string> log;
    auto* item = new Item(&log);
    item->ref();
    item->ref();
    item->unref();
    EXPECT_TRUE(log.empty());
    item->unref();
    EXPECT_EQ(log, (std::vector<std::string>{"going", "gone"}));
}

// shows: KsRefCounter::getRefCount, KsRef::operator->, KsRef::operator*, KsRef::operator bool
TEST(References, givenBackTooOftenAreIgnored)
{
    auto* item = new Item;
    item->unref();
    EXPECT_EQ(item->getRefCount(), 0);
    KsRef<Item> held(item), again(held);
    EXPECT_EQ(held->getRefCount(), 2);
    EXPECT_EQ(&*held, item);
    EXPECT_TRUE(static_cast<bool>(held));
    again.reset();
    EXPECT_FALSE(static_cast<bool>(again));
    EXPECT_EQ(item->getRefCount(), 1);
}

// shows: KsRef
TEST(References, mayBeOfABaseClass)
{
    const KsRef<Item> item(new Item);
    KsRef<KsBase> base = item;
    std::vector<KsRef<KsBase>> list;
    list.push_back(item);
    EXPECT_EQ(base.get(), item.get());
    EXPECT_EQ(item->getRefCount(), 3);
    base = KsRef<Item>(new Item);
    EXPECT_EQ(item->getRefCount(), 2);
    EXPECT_EQ(base->getRefCount(), 1);
    EXPECT_FALSE((std::is_convertible_v<KsRef<KsBase>, KsRef<Item>>));
}

TEST(References, takenWhileAnObjectDiesDoNotDestroyItTwice)
{
    std::vector<std::string> log;
    auto* item = new Item(&log);
    item->refsItselfWhileDying = true;
    item->ref();
    item->unref();
    EXPECT_EQ(log, (std::vector<std::string>{"going", "gone"}));
}

// shows: KsBase::getNumInstances, KsRef::operator=, KsRef::reset
TEST(References, releaseAChainOfAnyLength)
{
    const int before = KsBase::getNumInstances();
    KsRef<Item> head(new Item);
    for (int i = 0; i < 200000; ++i) {
        KsRef<Item> item(new Item);
        item->next = head;
        head = item;
    }
    EXPECT_EQ(KsBase::getNumInstances(), before + 200001);
    head.reset();
    EXPECT_EQ(KsBase::getNumInstances(), before);
}

// shows: KsKeepAlive, KsKeepAlive::isStillWanted
TEST(KeepAlive, leavesAnObjectThatHadNoReference)
{
    std::vector<std::string> log;
    auto* item = new Item(&log);
    {
        const KsKeepAlive keep(item);
        item->ref();
        item->unref();
        EXPECT_TRUE(keep.isStillWanted());
    }
    EXPECT_TRUE(log.empty());
    item->ref();
    {
        const KsKeepAlive keep(item);
        EXPECT_TRUE(keep.isStillWanted());
        item->unref();
        EXPECT_FALSE(keep.isStillWanted());
        EXPECT_TRUE(log.empty());
    }
    EXPECT_FALSE(log.empty());
    const KsKeepAlive nothing(nullptr);
    EXPECT_FALSE(nothing.isStillWanted());
}

// shows: KsBase::getName, KsBase::setName, KsBase::getNamed, KsBase::getFirstNamed, KsRef::get
TEST(Names, areFoundInTheOrderOfNaming)
{
    KsRef<Item> a(new Item), b(new Item), c(new Item);
    EXPECT_TRUE(c->getName().isEmpty());
    c->setName("lamp");
    EXPECT_EQ(c->getName(), "lamp");
    a->setName("lamp");
    b->setName("lamp");
    std::vector<KsBase*> found;
    KsBase::getNamed("lamp", found);
    EXPECT_EQ(found, (std::vector<KsBase*>{c.get(), a.get(), b.get()}));
    EXPECT_EQ(KsBase::getFirstNamed("lamp", Item::type()), c.get());
    c->setName("desk");
    EXPECT_EQ(KsBase::getFirstNamed("lamp", Item::type()), a.get());
    a.reset();
    EXPECT_EQ(KsBase::getFirstNamed("lamp", Item::type()), b.get());
    b->setName(KbName());
    EXPECT_EQ(KsBase::getFirstNamed("lamp", Item::type()), nullptr);
    EXPECT_EQ(KsBase::getFirstNamed("desk", fruit()), nullptr);
    found.clear();
    KsBase::getNamed("", found);
    EXPECT_TRUE(found.empty());
}

// shows: KsTypedObject::initClass
TEST(Type, ofEverythingThatHasOneIsThereFromTheFirstUse)
{
    KsTypedObject::initClass();
    const KsType root = KsType::fromName("TypedObject");
    EXPECT_FALSE(root.isBad());
    EXPECT_EQ(root, KsTypedObject::getClassTypeId());
    EXPECT_TRUE(KsBase::getClassTypeId().isDerivedFrom(KsTypedObject::getClassTypeId()));
}

// shows: KsType::getIndex, KsType::operator==
TEST(Type, isComparedByItsPlaceInTheTable)
{
    const KsType a = KsType::createType(KsTypedObject::getClassTypeId(), "TestPear");
    const KsType b = KsType::createType(KsTypedObject::getClassTypeId(), "TestPlum");
    EXPECT_TRUE(a == KsType::fromName("TestPear"));
    EXPECT_TRUE(a != b);
    EXPECT_FALSE(a == b);
    EXPECT_NE(a.getIndex(), b.getIndex());
    EXPECT_EQ(KsType().getIndex(), 0);
    EXPECT_TRUE(KsType() == KsType::badType());
}

namespace {
/// An object that is put back on a shelf instead of dying.
class Returned : public KsRefCounter {
public:
    int returns = 0;

protected:
    void destroy() override { ++returns; }
};

/// An object that nothing but the count keeps.
class Counted : public KsRefCounter {
public:
    explicit Counted(bool& died) : m_died(died) {}

protected:
    ~Counted() override { m_died = true; }

private:
    bool& m_died;
};
} // namespace

// shows: KsRefCounter, KsRefCounter::unref, KsRefCounter::destroy
TEST(References, mayEndOtherwiseThanByDeletion)
{
    Returned object;
    object.ref();
    object.ref();
    object.unref();
    EXPECT_EQ(object.returns, 0);
    object.unref();
    EXPECT_EQ(object.returns, 1);

    bool died = false;
    auto* counted = new Counted(died);
    counted->ref();
    EXPECT_FALSE(died);
    counted->unref();
    EXPECT_TRUE(died) << "which is the rule";
}

// shows: KsRefCounter::ref, KsRefCounter::unrefNoDelete, KsRef, KsRef::get, KsRef::operator T*
TEST(References, areHandedOnWithoutDestroying)
{
    std::vector<std::string> log;
    auto* item = new Item(&log);
    item->ref();
    item->unrefNoDelete();
    EXPECT_EQ(item->getRefCount(), 0);
    EXPECT_TRUE(log.empty());
    {
        KsRef<Item> owner(item);
        EXPECT_EQ(owner.get(), item);
        Item* same = owner;
        EXPECT_EQ(same, item);
        const KsRef<Item> other(std::move(owner));
        EXPECT_EQ(item->getRefCount(), 1);
    }
    EXPECT_FALSE(log.empty());
}

// shows: KsBaseInitializer, KsBase::isGroup
TEST(References, areHeldWhileAnObjectIsMade)
{
    std::vector<std::string> log;
    auto* item = new Item(&log);
    {
        const KsBaseInitializer guard(item), none(nullptr);
        item->ref(); // such as what a listener does meanwhile
        item->unref();
    }
    EXPECT_TRUE(log.empty());
    EXPECT_FALSE(item->isGroup()) << "unless its class says so";
    EXPECT_EQ(item->getRefCount(), 0);
    item->ref();
    item->unref();
}
