#include "../actions/SceneTest.h"

#include "MessageGuard.h"

#include <arborium/nodes/KsBaseColor.h>
#include <arborium/nodes/KsClipPlane.h>
#include <arborium/nodes/KsCube.h>
#include <arborium/nodes/KsDirectionalLight.h>
#include <arborium/nodes/KsFont.h>
#include <arborium/nodes/KsLight.h>
#include <arborium/nodes/KsLightModel.h>
#include <arborium/nodes/KsMaterial.h>
#include <arborium/nodes/KsMatrixTransform.h>
#include <arborium/nodes/KsPickStyle.h>
#include <arborium/nodes/KsPointLight.h>
#include <arborium/nodes/KsRotation.h>
#include <arborium/nodes/KsScale.h>
#include <arborium/nodes/KsSeparator.h>
#include <arborium/nodes/KsShapeHints.h>
#include <arborium/nodes/KsSwitch.h>
#include <arborium/nodes/KsTransform.h>
#include <arborium/nodes/KsTranslation.h>
#include <arborium/sensors/KsSensor.h>

#include <limits>

class StateNodes : public SceneTest {
protected:
    /// Calls `look` with the state behind the last child of the root.
    template <class Function> void atEnd(Function look)
    {
        const KsRef<KsGroup> end(new KsGroup);
        root->addChild(end);
        KsCallbackAction walk;
        walk.setPreCallback([&](KsCallbackAction* action, const KsNode* node) {
            if (node == end.get()) look(*action->getState());
            return KsCallbackAction::CONTINUE;
        });
        walk.apply(root.get());
        root->removeChild(end);
    }
    KsRef<KsSeparator> root{new KsSeparator};
};

TEST_F(StateNodes, areRegisteredUnderTheirNames)
{
    for (const char* name : {"Group",
                             "Separator",
                             "Switch",
                             "Translation",
                             "Transform",
                             "MatrixTransform",
                             "Scale",
                             "Rotation",
                             "Material",
                             "BaseColor",
                             "LightModel",
                             "DirectionalLight",
                             "PointLight",
                             "PickStyle",
                             "Font",
                             "ShapeHints",
                             "ClipPlane",
                             "EventCallback",
                             "OrthographicCamera",
                             "PerspectiveCamera",
                             "KsSeparator",
                             "KsClipPlane"}) {
        const KsType type = KsType::fromName(name);
        ASSERT_FALSE(type.isBad()) << name;
        EXPECT_TRUE(type.canCreateInstance()) << name;
        const KsRef<KsNode> node(static_cast<KsNode*>(type.createInstance()));
        ASSERT_TRUE(node) << name;
        EXPECT_EQ(node->getTypeId(), type) << name;
        EXPECT_TRUE(node->hasDefaultValues()) << name;
    }
    for (const char* name : {"Node", "Camera", "Light", "Transformation", "Shape"})
        EXPECT_FALSE(KsType::fromName(name).canCreateInstance()) << name;
}

TEST_F(StateNodes, startAsTheyAreDocumented)
{
    EXPECT_EQ(KsRef<KsSwitch>(new KsSwitch)->whichChild.getValue(), KsSwitch::NONE);
    const KsRef<KsFont> font(new KsFont);
    EXPECT_EQ(font->name.getValue(), "defaultFont");
    EXPECT_EQ(font->size.getValue(), 10);
    const KsRef<KsClipPlane> clip(new KsClipPlane);
    EXPECT_EQ(clip->plane.getValue(), KbPlane(KbVec3f(1, 0, 0), 0));
    EXPECT_TRUE(clip->on.getValue());
    const KsRef<KsShapeHints> hints(new KsShapeHints);
    EXPECT_EQ(hints->vertexOrdering.getValue(), KsShapeHints::UNKNOWN_ORDERING);
    EXPECT_EQ(hints->shapeType.getValue(), KsShapeHints::UNKNOWN_SHAPE_TYPE);
    EXPECT_EQ(hints->faceType.getValue(), KsShapeHints::CONVEX);
    EXPECT_EQ(hints->creaseAngle.getValue(), 0.5f);
    const KsRef<KsMaterial> material(new KsMaterial);
    EXPECT_EQ(material->ambientColor[0], KbColor(0.2f, 0.2f, 0.2f));
    EXPECT_EQ(material->diffuseColor[0], KbColor(0.8f, 0.8f, 0.8f));
    EXPECT_EQ(material->specularColor[0], KbColor(0, 0, 0));
    EXPECT_EQ(material->emissiveColor[0], KbColor(0, 0, 0));
    EXPECT_EQ(material->shininess[0], 0.2f);
    EXPECT_EQ(material->transparency[0], 0);
    EXPECT_EQ(KsRef<KsPickStyle>(new KsPickStyle)->style.getValue(), 0);
    EXPECT_EQ(KsPickStyle::BOUNDING_BOX, 1);
    EXPECT_EQ(KsPickStyle::UNPICKABLE, 2);
}

TEST_F(StateNodes, takeNamesForTheirChoices)
{
    const KsRef<KsShapeHints> hints(new KsShapeHints);
    EXPECT_TRUE(hints->faceType.setValue(KbName("UNKNOWN_FACE_TYPE")));
    EXPECT_EQ(hints->faceType.getValue(), KsShapeHints::UNKNOWN_FACE_TYPE);
    const KsRef<KsPickStyle> style(new KsPickStyle);
    EXPECT_TRUE(style->style.setValue(KbName("UNPICKABLE")));
    EXPECT_EQ(style->style.getValue(), KsPickStyle::UNPICKABLE);
}

// shows: KsFont
TEST_F(StateNodes, setTheFontTheyName)
{
    auto* font = addTo<KsFont>(root);
    font->name = KbName("Tahoma");
    font->size = 11.0f;
    atEnd([](KsState& state) {
        EXPECT_EQ(state.font.get().name, KbString("Tahoma"));
        EXPECT_EQ(state.font.get().size, 11);
    });
    font->name = KbName("defaultFont");
    font->size = std::numeric_limits<float>::quiet_NaN();
    atEnd([](KsState& state) {
        EXPECT_EQ(state.font.get().name, KsFontState().name);
        EXPECT_EQ(state.font.get().size, 10);
    });
}

// shows: KsShapeHintsState, KsShapeHints
TEST_F(StateNodes, setTheHintsOfShapes)
{
    auto* hints = addTo<KsShapeHints>(root);
    hints->vertexOrdering = KsShapeHints::COUNTERCLOCKWISE;
    hints->faceType = KsShapeHints::UNKNOWN_FACE_TYPE;
    hints->creaseAngle = 1.0f;
    atEnd([](KsState& state) {
        EXPECT_FALSE(KsShapeHintsState().ordered);
        EXPECT_TRUE(state.shapeHints.get().ordered);
        EXPECT_TRUE(state.shapeHints.get().counterClockwise);
        EXPECT_FALSE(state.shapeHints.get().solid);
        EXPECT_FALSE(state.shapeHints.get().convex);
        EXPECT_EQ(state.shapeHints.get().creaseAngle, 1);
    });
    addTo<KsShapeHints>(root)->creaseAngle = std::numeric_limits<float>::quiet_NaN();
    atEnd([](KsState& state) { EXPECT_EQ(state.shapeHints.get().creaseAngle, 1); });
}

// shows: KsMaterialState
TEST_F(StateNodes, passOverColoursThatAreNone)
{
    const float nan = std::numeric_limits<float>::quiet_NaN();
    auto* material = addTo<KsMaterial>(root);
    material->diffuseColor = KbColor(nan, 0, 0);
    material->shininess = nan;
    material->emissiveColor.setNum(0);
    material->transparency = 7.0f;
    addTo<KsBaseColor>(root)->rgb.setNum(0);
    atEnd([](KsState& state) {
        EXPECT_EQ(state.material.get().diffuse, KsMaterialState().diffuse);
        EXPECT_EQ(state.material.get().shininess, KsMaterialState().shininess);
        EXPECT_EQ(state.material.get().emissive, KsMaterialState().emissive);
        EXPECT_EQ(state.material.get().transparency, 1) << "the end that is nearer";
    });
}

TEST_F(StateNodes, passOverPlanesAndLightsThatAreNowhere)
{
    const float nan = std::numeric_limits<float>::quiet_NaN();
    addTo<KsPointLight>(root)->intensity = nan;
    addTo<KsPointLight>(root)->color = KbColor(0, nan, 0);
    addTo<KsPointLight>(root)->location = KbVec3f(nan, 0, 0);
    addTo<KsDirectionalLight>(root)->direction = KbVec3f();
    addTo<KsScale>(root)->scaleFactor = KbVec3f(0, 1, 1);
    addTo<KsClipPlane>(root);
    addTo<KsMatrixTransform>(root)->matrix = KbMatrix(std::numeric_limits<float>::infinity(), 0, 0,
                                                      0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1);
    addTo<KsPointLight>(root);
    atEnd([](KsState& state) {
        EXPECT_TRUE(state.clipPlanes.get().empty());
        EXPECT_TRUE(state.lights.get().empty());
    });
}

// shows: KsNode::affectsState
TEST_F(StateNodes, actOnWhatStandsBehindThemUnlessTheyKeepToThemselves)
{
    const KsRef<KsGroup> group(new KsGroup);
    EXPECT_FALSE(group->affectsState()) << "there is nothing in it";
    addTo<KsCube>(group);
    EXPECT_TRUE(group->affectsState());
    EXPECT_TRUE(KsRef<KsNode>(new KsTranslation)->affectsState());
    EXPECT_TRUE(KsRef<KsNode>(new KsSwitch)->affectsState()) << "others may inherit from it";
    EXPECT_FALSE(KsRef<KsNode>(new KsCube)->affectsState());
    const KsRef<KsSeparator> separator(new KsSeparator);
    addTo<KsTranslation>(separator);
    EXPECT_FALSE(separator->affectsState());
}

// ---- transforms ----

class Transforms : public StateNodes {
protected:
    const KbRotation turn{KbVec3f(1, 2, 3), 0.7f};
    const KbRotation lean{KbVec3f(0, 1, 1), 0.3f};
};

// shows: KsTransformation::getLocalMatrix, KsTranslation, KsScale, KsRotation, KsMatrixTransform
TEST_F(Transforms, placeAsTheirMatricesDo)
{
    KbMatrix expected;
    const KsRef<KsTranslation> translation(new KsTranslation);
    translation->translation = KbVec3f(1, 2, 3);
    expected.setTranslate({1, 2, 3});
    EXPECT_TRUE(translation->getLocalMatrix().equals(expected, 1e-6f));
    const KsRef<KsScale> scale(new KsScale);
    scale->scaleFactor = KbVec3f(2, -3, 4);
    expected.setScale(KbVec3f(2, -3, 4));
    EXPECT_TRUE(scale->getLocalMatrix().equals(expected, 1e-6f));
    const KsRef<KsRotation> rotation(new KsRotation);
    rotation->rotation = turn;
    expected.setRotate(turn);
    EXPECT_TRUE(rotation->getLocalMatrix().equals(expected, 1e-6f));
    const KsRef<KsMatrixTransform> any(new KsMatrixTransform);
    any->matrix = expected;
    EXPECT_EQ(any->getLocalMatrix(), expected);
}

TEST_F(Transforms, actInTheOrderOfTheScene)
{
    auto* rotation = addTo<KsRotation>(root);
    rotation->rotation = turn;
    auto* translation = addTo<KsTranslation>(root);
    translation->translation = KbVec3f(1, 2, 3);
    auto* scale = addTo<KsScale>(root);
    scale->scaleFactor = KbVec3f(2, 3, 4);
    // What stands last acts first.
    const KbMatrix expected =
        scale->getLocalMatrix() * translation->getLocalMatrix() * rotation->getLocalMatrix();
    atEnd([&](KsState& state) { EXPECT_TRUE(state.modelMatrix.get().equals(expected, 1e-5f)); });
}

// shows: KsTransform, KsTransformation::getLocalMatrix
TEST_F(Transforms, composeAllTheirFields)
{
    const KsRef<KsTransform> transform(new KsTransform);
    EXPECT_TRUE(transform->getLocalMatrix().isIdentity());
    transform->translation = KbVec3f(1, 2, 3);
    transform->rotation = turn;
    transform->scaleFactor = KbVec3f(2, 3, 4);
    transform->scaleOrientation = lean;
    transform->center = KbVec3f(5, 6, 7);
    KbMatrix expected;
    expected.setTransform({1, 2, 3}, turn, {2, 3, 4}, lean, {5, 6, 7});
    EXPECT_TRUE(transform->getLocalMatrix().equals(expected, 1e-5f));
    transform->enableNotify(false);
    transform->translation = KbVec3f(0, 0, 0); // in silence, and yet seen
    expected.setTransform({0, 0, 0}, turn, {2, 3, 4}, lean, {5, 6, 7});
    EXPECT_TRUE(transform->getLocalMatrix().equals(expected, 1e-5f));
}

// shows: KsTransform::setMatrix
TEST_F(Transforms, takeAMatrixApart)
{
    KbMatrix matrix;
    matrix.setTransform({1, 2, 3}, turn, {2, 3, 4}, lean, {5, 6, 7});
    const KsRef<KsTransform> transform(new KsTransform);
    transform->center = KbVec3f(9, 9, 9);
    transform->setMatrix(matrix);
    EXPECT_TRUE(transform->getLocalMatrix().equals(matrix, 1e-3f));
    EXPECT_EQ(transform->center.getValue(), KbVec3f(0, 0, 0));

    KbMatrix simple;
    simple.setTransform({1, 2, 3}, turn, {1, 1, 1});
    transform->setMatrix(simple);
    EXPECT_TRUE(near(transform->translation.getValue(), {1, 2, 3}));
    EXPECT_TRUE(transform->rotation.getValue().equals(turn, 1e-4f));
    EXPECT_TRUE(near(transform->scaleFactor.getValue(), {1, 1, 1}));
}

// shows: KsTransform::multLeft, KsTransform::multRight
TEST_F(Transforms, multiplyOnEitherSide)
{
    KbMatrix first, second;
    first.setTransform({1, 2, 3}, turn, {2, 2, 2});
    second.setTransform({4, 0, 0}, lean, {1, 1, 1});
    const KsRef<KsTransform> transform(new KsTransform);
    transform->setMatrix(first);
    transform->multLeft(second);
    EXPECT_TRUE(transform->getLocalMatrix().equals(second * first, 1e-4f));
    transform->setMatrix(first);
    transform->multRight(second);
    EXPECT_TRUE(transform->getLocalMatrix().equals(first * second, 1e-4f));
}

TEST_F(Transforms, ofAMatrixThatIsNoneAreTheIdentity)
{
    const KsRef<KsTransform> transform(new KsTransform);
    transform->translation = KbVec3f(1, 1, 1);
    KbMatrix broken;
    broken[1][1] = std::numeric_limits<float>::quiet_NaN();
    transform->setMatrix(broken);
    EXPECT_TRUE(transform->getLocalMatrix().isIdentity());
}

// ---- switches ----

class Switches : public StateNodes {
protected:
    /// The number of translations that are met.
    int shown()
    {
        int count = 0;
        KsCallbackAction walk;
        walk.setPreCallback([&count](KsCallbackAction*, const KsNode* node) {
            if (node->isOfType(KsTranslation::getClassTypeId())) ++count;
            return KsCallbackAction::CONTINUE;
        });
        walk.apply(root.get());
        return count;
    }
};

// shows: KsSwitch
TEST_F(Switches, showNoneOneOrAll)
{
    auto* choice = addTo<KsSwitch>(root);
    for (int i = 0; i < 3; ++i) addTo<KsTranslation>(choice);
    EXPECT_EQ(shown(), 0);
    choice->whichChild = KsSwitch::ALL;
    EXPECT_EQ(shown(), 3);
    choice->whichChild = 2;
    EXPECT_EQ(shown(), 1);
    for (const int which : {3, 1000000, -4, -1000000, static_cast<int>(KsSwitch::INHERIT)}) {
        choice->whichChild = which;
        EXPECT_EQ(shown(), 0) << which;
    }
}

// shows: KsSwitch
TEST_F(Switches, inheritFromTheLastOneBeforeThem)
{
    auto* outer = addTo<KsSwitch>(root);
    auto* heir = addTo<KsSwitch>(outer);
    heir->whichChild = KsSwitch::INHERIT;
    for (int i = 0; i < 3; ++i) addTo<KsTranslation>(heir);
    outer->whichChild = 0;
    EXPECT_EQ(shown(), 1);
    outer->whichChild = KsSwitch::ALL;
    EXPECT_EQ(shown(), 3);
}

TEST_F(Switches, areReadWithTheirChildren)
{
    const KsRef<KsSwitch> choice(new KsSwitch);
    choice->whichChild = KsSwitch::ALL;
    addTo<KsTranslation>(choice)->translation = KbVec3f(1, 0, 0);
    const KsRef<KsNode> copy(choice->copy());
    auto* copied = ksCast<KsSwitch>(copy.get());
    ASSERT_NE(copied, nullptr);
    EXPECT_EQ(copied->whichChild.getValue(), KsSwitch::ALL);
    EXPECT_EQ(copied->getNumChildren(), 1);
    EXPECT_NE(copied->getChild(0), choice->getChild(0));
}
