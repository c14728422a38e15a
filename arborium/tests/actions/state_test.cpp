#include <arborium/actions/KsState.h>

#include <gtest/gtest.h>

// shows: KsState::push, KsState::pop, KsState::getDepth, KsState::Element::get, KsState::Element::setAt,
// KsState::edit
TEST(State, bringsBackWhatWasSetBeforeAPush)
{
    KsState state;
    EXPECT_EQ(state.getDepth(), 1);
    EXPECT_EQ(state.font.setAt(), 0);
    state.edit(state.font).size = 20;
    EXPECT_EQ(state.font.setAt(), 1);
    state.push();
    EXPECT_EQ(state.getDepth(), 2);
    EXPECT_EQ(state.font.setAt(), 1);
    state.edit(state.font).size = 30;
    state.edit(state.font).size = 40;
    EXPECT_EQ(state.font.setAt(), 2);
    state.push();
    state.edit(state.font).size = 50;
    state.edit(state.pickMode) = KsPickMode::Unpickable;
    state.pop();
    EXPECT_EQ(state.font.get().size, 40);
    EXPECT_EQ(state.pickMode.get(), KsPickMode::Shape);
    EXPECT_EQ(state.pickMode.setAt(), 0);
    state.pop();
    EXPECT_EQ(state.font.get().size, 20);
    EXPECT_EQ(state.font.setAt(), 1);
}

TEST(State, bringsBackListsAsTheyWere)
{
    KsState state;
    state.edit(state.clipPlanes).push_back(KbPlane());
    state.push();
    state.edit(state.clipPlanes).push_back(KbPlane());
    EXPECT_EQ(state.clipPlanes.get().size(), 2u);
    state.pop();
    EXPECT_EQ(state.clipPlanes.get().size(), 1u);
}

// shows: KsFontState, KsState::reset, KsState::multModelMatrix
TEST(State, isAsNewAfterAReset)
{
    KsState state;
    state.edit(state.font).size = 20;
    state.push();
    state.edit(state.font).size = 30;
    state.multModelMatrix(KbMatrix(1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 5, 0, 0, 1));
    state.multModelMatrix(KbMatrix(2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 1));
    KbVec3f point;
    state.modelMatrix.get().multVecMatrix({1, 0, 0}, point);
    EXPECT_EQ(point, KbVec3f(7, 0, 0)) << "what is set last acts first";
    state.reset();
    EXPECT_EQ(state.getDepth(), 1);
    EXPECT_EQ(state.font.get().size, KsFontState().size);
    EXPECT_EQ(state.font.setAt(), 0);
    EXPECT_TRUE(state.modelMatrix.get().isIdentity());
}

// shows: KsState
TEST(State, survivesAPopWithoutAPush)
{
    KsState state;
    state.edit(state.font).size = 20;
    state.pop();
    EXPECT_EQ(state.getDepth(), 1);
    EXPECT_EQ(state.font.get().size, 20);
}

// shows: KsViewVolumeElement::isSet, KsViewVolumeElement::get
TEST(State, hasAViewVolumeOnlyIfACameraSetOne)
{
    KsState state;
    EXPECT_FALSE(KsViewVolumeElement::isSet(&state));
    EXPECT_FALSE(KsViewVolumeElement::isSet(nullptr));
    state.push();
    state.edit(state.viewVolume).ortho(-3, 3, -1, 1, 1, 10);
    EXPECT_TRUE(KsViewVolumeElement::isSet(&state));
    EXPECT_EQ(KsViewVolumeElement::get(&state).getWidth(), 6);
    state.pop();
    EXPECT_FALSE(KsViewVolumeElement::isSet(&state));
}
