// Numbers that tell whether a node is still the one that something was made from, and the start and
// stop of the classes.

#include <arborium/nodes/KsChangeStamp.h>
#include <arborium/nodes/KsCoordinate3.h>
#include <arborium/nodes/KsGroup.h>
#include <arborium/nodes/KsNormal.h>
#include <arborium/nodes/KsVertexProperty.h>

#include <gtest/gtest.h>

// shows: KsChangeStamp, KsChangeStamp::renew, KsChangeStamp::get
TEST(ChangeStamp, isNeverOneThatWasThereBefore)
{
    KsChangeStamp a, b;
    EXPECT_NE(a.get(), 0u);
    EXPECT_NE(a.get(), b.get());
    const std::uint64_t before = a.get();
    a.renew();
    EXPECT_NE(a.get(), before);
    EXPECT_NE(a.get(), b.get());
}

// shows: KsCoordinate3::getStamp, KsNormal::getStamp, KsVertexProperty::getStamp
TEST(ChangeStamp, ofANodeIsAnotherOneAfterEachChange)
{
    KsNode::initClasses();
    const KsRef<KsCoordinate3> points(new KsCoordinate3);
    const KsRef<KsNormal> normals(new KsNormal);
    const KsRef<KsVertexProperty> property(new KsVertexProperty);
    const auto stamps = [&] {
        return std::vector<std::uint64_t>{points->getStamp(), normals->getStamp(),
                                          property->getStamp()};
    };
    const auto before = stamps();
    EXPECT_EQ(stamps(), before);
    points->point.set1Value(3, KbVec3f(1, 2, 3));
    normals->vector.setValue(KbVec3f(0, 0, 1));
    property->texCoord.setValue(KbVec2f(0, 1));
    const auto after = stamps();
    for (std::size_t i = 0; i < before.size(); ++i) EXPECT_NE(after[i], before[i]);
    EXPECT_EQ(stamps(), after);
}

// shows: KsNode::initClasses, KsNode::exitClasses
TEST(NodeClasses, leaveAndComeBack)
{
    KsNode::initClasses();
    EXPECT_TRUE(KsType::fromName("Group").canCreateInstance());
    KsNode::exitClasses();
    EXPECT_TRUE(KsType::fromName("Group").isBad());
    KsNode::initClasses();
    const KsRef<KsGroup> group(new KsGroup);
    EXPECT_TRUE(group->isOfType(KsType::fromName("KsGroup")));
    KsType::forEach([](KsType type) {
        // Everything that has a type says so of itself.
        if (!type.canCreateInstance() || !type.isDerivedFrom(KsNode::getClassTypeId())) return;
        const KsRef<KsNode> node(static_cast<KsNode*>(type.createInstance()));
        EXPECT_EQ(node->getTypeId(), type) << type.getName();
    });
}
