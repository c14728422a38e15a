#pragma once

#include <arborium/actions/KsActions.h>
#include <arborium/actions/KsState.h>
#include <arborium/nodes/KsGroup.h>

#include <gtest/gtest.h>

/// Registers the classes of nodes.
class SceneTest : public testing::Test {
protected:
    SceneTest()
    {
        if (KsNode::getClassTypeId().isBad()) KsNode::initClasses();
    }
};

namespace {

/// A new node as the last child of `parent`.
template <class T> T* addTo(KsGroup* parent)
{
    T* node = new T;
    parent->addChild(node);
    return node;
}

inline KbBox3f boxOf(KsNode* root)
{
    KsGetBoundingBoxAction action{KbViewportRegion()};
    action.apply(root);
    return action.getBoundingBox();
}

inline testing::AssertionResult near(const KbVec3f& a, const KbVec3f& b, float tolerance = 1e-4f)
{
    if (a.equals(b, tolerance)) return testing::AssertionSuccess();
    return testing::AssertionFailure() << a << " is not near " << b;
}

inline testing::AssertionResult near(const KbBox3f& box, const KbVec3f& low, const KbVec3f& high,
                                     float tolerance = 1e-4f)
{
    if (!box.isEmpty() && box.getMin().equals(low, tolerance) &&
        box.getMax().equals(high, tolerance))
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << box << " is not near " << low << " to " << high;
}

} // namespace
