// Actions and nodes that a program writes itself.

#include "SceneTest.h"

#include <MessageGuard.h>
#include <arborium/events/KsEvent.h>
#include <arborium/io/KsOutput.h>
#include <arborium/nodes/KsCube.h>
#include <arborium/nodes/KsFont.h>
#include <arborium/nodes/KsOrthographicCamera.h>
#include <arborium/nodes/KsSeparator.h>
#include <arborium/nodes/KsShape.h>
#include <arborium/nodes/KsTranslation.h>
#include <arborium/render/KsMesh.h>

#include <string>
#include <vector>

namespace {

/// An action of one's own: counts the nodes that it meets, up to a number.
class CountAction : public KsAction {
public:
    static KsType getClassTypeId()
    {
        static const KsType type = KsType::createType(KsAction::getClassTypeId(), "CountAction");
        return type;
    }
    KsType getTypeId() const override { return getClassTypeId(); }

    int most = 1000;
    int count = 0;
    bool hadPath = false;
    bool meetsAllBeside = false;

protected:
    bool isMetBeside(const KsNode* node) const override
    {
        return meetsAllBeside || KsAction::isMetBeside(node);
    }
    void beginTraversal(KsNode* root) override
    {
        count = 0;
        hadPath = getAppliedPath();
        KsAction::beginTraversal(root);
    }
    void visit(KsNode* node) override
    {
        if (++count == most) terminate();
        node->doAction(this);
    }
};

/// A container of one's own: its children are met twice, the second time one unit to the right.
class TestTwins : public KsNode {
    KS_NODE_HEADER(TestTwins);

public:
    TestTwins() : m_children(this) { KsInstanceBuilder build(classRecord, this); }

    KsChildList* getChildren() const override { return &m_children; }
    bool affectsState() const override { return false; }
    int first = -1, last = -1; ///< From 0 on: these alone are met, once.
    void internalAddChild(KsNode* child) override { m_children.append(child); }
    KsNode* internalGetChild(int index) const override { return m_children[index]; }
    void doAction(KsAction* action) override
    {
        if (action->getPathCode() != KsAction::NO_PATH) {
            m_children.traverseInPath(action); // as an ordinary group
            return;
        }
        if (first >= 0) {
            m_children.traverse(action, first, last);
            return;
        }
        m_children.traverse(action);
        KsState* state = action->getState();
        state->push();
        KbMatrix step;
        step.setTranslate(KbVec3f(1, 0, 0));
        state->multModelMatrix(step);
        for (int i = 0; i < m_children.getLength(); ++i) action->traverse(m_children[i], i);
        state->pop();
    }
    void write(KsWriteAction* action) override
    {
        // Its children stand in the file behind it, as scenes of their own.
        KsNode::write(action);
        for (int i = 0; i < m_children.getLength(); ++i) action->continueTo(m_children[i]);
    }

protected:
    ~TestTwins() override = default;
    void copyContents(const KsNode* from, Copier& copier) override
    {
        KsNode::copyContents(from, copier);
        const KsChildList& children = static_cast<const TestTwins*>(from)->m_children;
        for (int i = 0; i < children.getLength(); ++i) {
            if (children[i]->getName() == "kept") copier.keep(children[i]);
            KsNode* child = copier.copyOf(children[i]);
            EXPECT_EQ(copier.find(children[i]), child);
            m_children.append(child);
        }
    }

private:
    mutable KsChildList m_children;
};
KS_NODE_SOURCE(TestTwins, KsNode)

/// A leaf of one's own: a wire along the y axis from -1 to 1, with a knob at its upper end. Notes
/// which hooks were called.
class TestWire : public KsNode {
    KS_NODE_HEADER(TestWire);

public:
    TestWire() { KsInstanceBuilder build(classRecord, this); }

    void doAction(KsAction* action) override
    {
        calls += action->getTypeId().getName().getString() + std::string(" ");
    }
    void getBoundingBox(KsGetBoundingBoxAction* action) override
    {
        KsNode::getBoundingBox(action);
        action->extendBy(KbBox3f(0, -1, 0, 0, 1, 0));
        if (usesTexture) action->usesStateOf(action->getState()->texture.setAt());
    }
    void getMatrix(KsGetMatrixAction* action) override
    {
        KsNode::getMatrix(action);
        KbMatrix half;
        half.setScale(0.5f);
        action->editMatrix().multLeft(half);
    }
    void GLRender(KsRenderAction* action) override
    {
        KsNode::GLRender(action);
        static const KsMeshPtr mesh = [] {
            auto made = std::make_shared<KsMesh>();
            made->primitive = KsMesh::Lines;
            made->positions = {{0, -1, 0}, {0, 1, 0}};
            made->indices = {0, 1};
            made->computeBox();
            return made;
        }();
        action->draw(mesh);
    }
    void rayPick(KsRayPickAction* action) override
    {
        KsNode::rayPick(action);
        hadRay = action->hasRay();
        if (!hadRay) return;
        const KbBox3f knob(-0.25f, 0.75f, -0.25f, 0.25f, 1.25f, 0.25f);
        if (action->intersectBox(knob)) hitKnob = action->addBoxIntersection(knob);
        KbVec3f onWire, onRay;
        KbLine(KbVec3f(), KbVec3f(0, 1, 0))
            .getClosestPoints(action->getObjectLine(), onWire, onRay);
        if (std::fabs(onWire[1]) <= 1) hitWire = action->addIntersection(onWire, KbVec3f(0, 0, 1));
    }
    void callback(KsCallbackAction* action) override { KsNode::callback(action); }
    void search(KsSearchAction* action) override
    {
        KsNode::search(action);
        // Whoever looks for a knob finds the wire.
        if (!action->isFound() && KbName("Knob") == knobName && !action->matches(this))
            action->addMatch();
    }
    void handleEvent(KsHandleEventAction* action) override
    {
        KsNode::handleEvent(action);
        wasAskedAgain = action->isDirect();
        if (wasAskedAgain)
            action->setHandled();
        else
            action->deferToCurrent();
    }

    std::string calls;
    KbName knobName;
    bool usesTexture = false;
    bool wasAskedAgain = false;
    bool hadRay = false;
    const KsPickedPoint* hitKnob = nullptr;
    const KsPickedPoint* hitWire = nullptr;

protected:
    ~TestWire() override = default;
};
KS_NODE_SOURCE(TestWire, KsNode)

/// A shape of one's own: a rod along the x axis as long as the font is high, hit at its middle only.
class TestRod : public KsShape {
    KS_NODE_HEADER(TestRod);

public:
    TestRod() { KsInstanceBuilder build(classRecord, this); }
    Form getForm(const KsState* state) override
    {
        auto mesh = std::make_shared<KsMesh>();
        mesh->primitive = KsMesh::Lines;
        mesh->positions = {{0, 0, 0}, {1, 0, 0}};
        mesh->indices = {0, 1};
        mesh->computeBox();
        Form form;
        form.mesh = mesh;
        form.scale = KbVec3f(state->font.get().size, 1, 1);
        return form;
    }

protected:
    ~TestRod() override = default;
    void reportUse(KsGetBoundingBoxAction* action) override
    {
        action->usesStateOf(action->getState()->font.setAt());
    }
    void pickShape(KsRayPickAction* action) override
    {
        const float middle = action->getState()->font.get().size / 2;
        const KbVec3f hit(middle, 0, 0);
        if (near(action->getObjectLine().getClosestPoint(hit), hit, 0.1f))
            action->addIntersection(hit, KbVec3f(0, 0, 1));
    }
};
KS_NODE_SOURCE(TestRod, KsShape)

/// A leaf that is as wide as the window, in pixels, and half as much as a space.
class TestRuler : public KsNode {
    KS_NODE_HEADER(TestRuler);

public:
    TestRuler() { KsInstanceBuilder build(classRecord, this); }
    static float pixels(const KsAction* action)
    {
        const KbViewportRegion& window = action->getState()->viewport.get();
        return static_cast<float>(window.getViewportSizePixels()[0]);
    }
    void getBoundingBox(KsGetBoundingBoxAction* action) override
    {
        action->usesStateOf(action->getState()->viewport.setAt());
        action->extendBy(KbBox3f(0, 0, 0, pixels(action), 0, 0));
    }
    void getMatrix(KsGetMatrixAction* action) override
    {
        KbMatrix shift;
        shift.setTranslate(KbVec3f(pixels(action) / 2, 0, 0));
        action->editMatrix().multLeft(shift);
    }
    void handleEvent(KsHandleEventAction* action) override { heard = pixels(action); }

    float heard = 0;

protected:
    ~TestRuler() override = default;
};
KS_NODE_SOURCE(TestRuler, KsNode)

/// A transformation of one's own: pushes x along with y.
class TestShear : public KsTransformation {
    KS_NODE_HEADER(TestShear);

public:
    TestShear() { KsInstanceBuilder build(classRecord, this); }

protected:
    ~TestShear() override = default;
    void multInto(KbMatrix& matrix) const override
    {
        KbMatrix shear;
        shear[1][0] = 1;
        matrix.multLeft(shear);
    }
};
KS_NODE_SOURCE(TestShear, KsTransformation)

/// A shape of one's own whose triangle has a corner that there is not.
class TestTorn : public KsShape {
    KS_NODE_HEADER(TestTorn);

public:
    TestTorn() { KsInstanceBuilder build(classRecord, this); }
    Form getForm(const KsState*) override
    {
        auto mesh = std::make_shared<KsMesh>();
        mesh->positions = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
        mesh->indices = {0, 1, 77777777};
        mesh->computeBox();
        return {mesh, KbVec3f(1, 1, 1)};
    }

protected:
    ~TestTorn() override = default;
};
KS_NODE_SOURCE(TestTorn, KsShape)

class OwnClasses : public SceneTest {
protected:
    OwnClasses()
    {
        TestTwins::initClass();
        TestWire::initClass();
        TestRod::initClass();
        TestShear::initClass();
        TestTorn::initClass();
        TestRuler::initClass();
        root = new KsSeparator;
    }
    KsRef<KsSeparator> root;
    KbViewportRegion window{100, 100};
};

} // namespace

// shows: KsAction::apply, KsAction::traverse, KsAction::terminate, KsAction::beginTraversal,
// KsAction::visit, KsAction::getAppliedPath, KsAction::isMetBeside, KsPathList::append,
// KsPathList::truncate
TEST_F(OwnClasses, anActionMeetsNodesPathsAndListsOfPaths)
{
    auto* left = addTo<KsSeparator>(root);
    auto* right = addTo<KsSeparator>(root);
    addTo<TestWire>(left);
    addTo<TestWire>(right);
    addTo<TestWire>(right);
    CountAction action;
    action.apply(root);
    EXPECT_EQ(action.count, 6);
    EXPECT_FALSE(action.hadPath);
    action.most = 3;
    action.apply(root);
    EXPECT_EQ(action.count, 3);
    EXPECT_TRUE(action.isTerminated());
    action.most = 1000;

    const KsRef<KsPath> toLeft(new KsPath(root)), toRight(new KsPath(root));
    ASSERT_TRUE(toLeft->append(left));
    ASSERT_TRUE(toRight->append(right));
    action.apply(toLeft);
    EXPECT_EQ(action.count, 3); // the root, the left one and its wire
    EXPECT_TRUE(action.hadPath);
    action.meetsAllBeside = true;
    action.apply(toRight);
    EXPECT_EQ(action.count, 6); // the left one and its wire are met as well
    action.meetsAllBeside = false;
    const KsRef<KsGroup> row(new KsGroup);
    auto* target = new KsCube;
    for (KsNode* each : {static_cast<KsNode*>(new KsTranslation), static_cast<KsNode*>(new KsCube),
                         static_cast<KsNode*>(target)})
        row->addChild(each);
    const KsRef<KsPath> toTarget(new KsPath(row));
    ASSERT_TRUE(toTarget->append(target));
    action.apply(toTarget);
    EXPECT_EQ(action.count, 3) << "the row, what moves the cube, and the cube";

    KsPathList paths;
    paths.append(toLeft);
    paths.append(nullptr);
    paths.append(toRight);
    KsGetBoundingBoxAction boxes(window);
    auto* shift = new KsTranslation;
    shift->translation = KbVec3f(0, 0, 9);
    right->insertChild(shift, 0);
    boxes.apply(paths);
    EXPECT_TRUE(near(boxes.getBoundingBox(), {0, -1, 0}, {0, 1, 9})) << "around all of them";
    action.apply(paths);
    EXPECT_EQ(action.count, 5) << "the last one: the root, the right one, its shift and its wires";
    paths.truncate(1);
    boxes.apply(paths);
    EXPECT_TRUE(near(boxes.getBoundingBox(), {0, -1, 0}, {0, 1, 0}));
}

// shows: KsNode::doAction, KsNode::getBoundingBox, KsNode::getMatrix, KsNode::GLRender,
// KsNode::rayPick, KsNode::handleEvent, KsNode::callback, KsRenderAction::draw, KsMesh::computeBox
TEST_F(OwnClasses, aNodeHearsEachActionThroughItsHook)
{
    auto* wire = addTo<TestWire>(root);
    EXPECT_TRUE(near(boxOf(root), {0, -1, 0}, {0, 1, 0}));
    KsGetMatrixAction matrix(window);
    matrix.apply(wire);
    EXPECT_EQ(matrix.getMatrix()[1][1], 0.5f);
    KsRenderAction render(window);
    render.apply(root);
    ASSERT_EQ(render.getDrawList().draws.size(), 1u);
    EXPECT_EQ(render.getDrawList().draws[0].mesh->box, KbBox3f(0, -1, 0, 0, 1, 0));
    KsRayPickAction pick(window);
    pick.setRay(KbVec3f(0, 0, 5), KbVec3f(0, 0, -1));
    pick.apply(root);
    const KsLocation2Event event(KbVec2f(50, 50));
    KsHandleEventAction events(window);
    events.setEvent(&event);
    events.apply(root);
    KsCallbackAction walk;
    walk.apply(root);
    EXPECT_EQ(wire->calls, "GetBoundingBoxAction GetMatrixAction RenderAction RayPickAction "
                           "HandleEventAction HandleEventAction CallbackAction ");
}

// shows: KsNode::search, KsSearchAction::matches, KsSearchAction::addMatch, KsNode::write,
// KsWriteAction::continueTo
TEST_F(OwnClasses, aNodeIsFoundAndWrittenWithoutWork)
{
    auto* twins = addTo<TestTwins>(root);
    const KsRef<TestWire> wire(new TestWire);
    wire->setName("Wire");
    KsSearchAction search;
    search.setName("Wire");
    EXPECT_TRUE(search.matches(wire));
    EXPECT_FALSE(search.matches(twins));
    EXPECT_FALSE(search.matches(nullptr));
    search.apply(wire);
    ASSERT_NE(search.getPath(), nullptr);
    EXPECT_EQ(search.getPath()->getTail(), wire.get());
    search.setName("Knob");
    search.apply(wire);
    EXPECT_FALSE(search.isFound());
    wire->knobName = "Knob";
    search.apply(wire);
    ASSERT_TRUE(search.isFound());
    EXPECT_EQ(search.getPath()->getTail(), wire.get());

    twins->internalAddChild(wire);
    EXPECT_EQ(twins->internalGetChild(0), wire.get());
    KsWriteAction write;
    write.apply(twins);
    EXPECT_EQ(write.getOutput()->getBuffer(),
              "#Arborium V2.1 ascii\n\nTestTwins {\n}\n\nDEF Wire TestWire {\n}\n");
}

// shows: KsChildList::traverse, KsChildList::traverseInPath, KsNode::affectsState, KsNode::internalAddChild,
// KsNode::internalGetChild
TEST_F(OwnClasses, aContainerDecidesHowItsChildrenAreMet)
{
    auto* twins = addTo<TestTwins>(root);
    auto* wire = new TestWire;
    twins->internalAddChild(wire);
    EXPECT_TRUE(near(boxOf(root), {0, -1, 0}, {1, 1, 0}));
    EXPECT_EQ(wire->calls, "GetBoundingBoxAction GetBoundingBoxAction ");
    KsRenderAction render(window);
    render.apply(root);
    ASSERT_EQ(render.getDrawList().draws.size(), 2u);
    EXPECT_EQ(render.getDrawList().draws[1].matrix[3][0], 1);

    twins->internalAddChild(new TestWire);
    twins->internalAddChild(new TestWire);
    CountAction some;
    twins->first = 1;
    twins->last = 2;
    some.apply(twins);
    EXPECT_EQ(some.count, 3) << "the second child and the third one";
    twins->first = 0;
    twins->last = 99;
    some.apply(twins);
    EXPECT_EQ(some.count, 4) << "there are no more";
    twins->first = -1;

    const KsRef<KsPath> path(new KsPath(root));
    ASSERT_TRUE(path->append(twins));
    ASSERT_TRUE(path->append(wire));
    CountAction count;
    count.apply(path);
    EXPECT_EQ(count.count, 3) << "the other child is not on the path";
}

// shows: KsNode::copy, KsNode::copyContents, KsNode::Copier::copyOf, KsNode::Copier::keep,
// KsNode::Copier::find
TEST_F(OwnClasses, aContainerDecidesWhatItsCopyHolds)
{
    const KsRef<TestTwins> twins(new TestTwins);
    auto* own = new TestWire;
    auto* shared = new TestWire;
    shared->setName("kept");
    twins->internalAddChild(own);
    twins->internalAddChild(shared);
    twins->internalAddChild(own);
    const KsRef<KsNode> copy(twins->copy());
    ASSERT_EQ(copy->getChildren()->getLength(), 3);
    EXPECT_NE(copy->internalGetChild(0), own);
    EXPECT_EQ(copy->internalGetChild(1), shared);
    EXPECT_EQ(copy->internalGetChild(2), copy->internalGetChild(0)) << "met twice, copied once";
}

// shows: KsRayPickAction::hasRay, KsRayPickAction::getObjectLine, KsRayPickAction::addIntersection,
// KsRayPickAction::addBoxIntersection, KsRayPickAction::isPickAll,
// KsRayPickAction::setViewportRegion
TEST_F(OwnClasses, aNodeReportsWhereItIsHit)
{
    auto* shift = addTo<KsTranslation>(root);
    shift->translation = KbVec3f(3, 0, 0);
    auto* wire = addTo<TestWire>(root);
    KsRayPickAction pick(window);
    EXPECT_FALSE(pick.isPickAll());
    pick.setPickAll(true);
    EXPECT_TRUE(pick.isPickAll());
    pick.apply(root);
    EXPECT_FALSE(wire->hadRay) << "none was given";
    pick.setRay(KbVec3f(3, 0.9f, 5), KbVec3f(0, 0, -1));
    pick.apply(root);
    EXPECT_TRUE(wire->hadRay);
    EXPECT_NE(wire->hitKnob, nullptr);
    EXPECT_NE(wire->hitWire, nullptr);
    ASSERT_EQ(pick.getPickedPointsListLength(), 2);
    EXPECT_TRUE(near(pick.getPickedPoint(0)->getPoint(), {3, 0.9f, 0.25f})) << "the knob is nearer";
    EXPECT_TRUE(near(pick.getPickedPoint(1)->getObjectPoint(), {0, 0.9f, 0}));

    wire->hitKnob = wire->hitWire = nullptr;
    pick.setRay(KbVec3f(0, 0.9f, 5), KbVec3f(0, 0, -1));
    pick.apply(root);
    EXPECT_EQ(wire->hitKnob, nullptr);
    EXPECT_EQ(wire->hitWire, nullptr) << "too far from the ray";
    EXPECT_EQ(pick.getPickedPointsListLength(), 0);

    // A point of the window becomes a ray at the camera.
    auto* camera = new KsOrthographicCamera;
    camera->height = 10;
    camera->position = KbVec3f(0, 0, 5);
    root->insertChild(camera, 0);
    pick.setViewportRegion(KbViewportRegion(200, 200));
    pick.setPoint(KbVec2f(160, 100));
    pick.apply(root);
    EXPECT_EQ(pick.getPickedPointsListLength(), 1);
    EXPECT_NE(wire->hitWire, nullptr);
}

// shows: KsGetBoundingBoxAction::extendBy, KsGetBoundingBoxAction::usesStateOf,
// KsGetBoundingBoxAction::getCenter
TEST_F(OwnClasses, aBoxIsKeptUnlessItDependsOnWhatStandsOutside)
{
    auto* shift = addTo<KsTranslation>(root);
    shift->translation = KbVec3f(2, 0, 0);
    auto* inner = addTo<KsSeparator>(root);
    auto* wire = addTo<TestWire>(inner);
    KsGetBoundingBoxAction boxes(window);
    boxes.apply(root);
    boxes.apply(root);
    EXPECT_EQ(boxes.getCenter(), KbVec3f(2, 0, 0));
    EXPECT_EQ(wire->calls, "GetBoundingBoxAction ") << "kept by the separators";
    wire->usesTexture = true;
    wire->touch();
    boxes.apply(root);
    boxes.apply(root);
    EXPECT_EQ(wire->calls, "GetBoundingBoxAction GetBoundingBoxAction GetBoundingBoxAction ");
}

// shows: KsGetMatrixAction::editMatrix
TEST_F(OwnClasses, aNodeChangesTheMatrixBehindIt)
{
    auto* wire = addTo<TestWire>(root);
    auto* shift = addTo<KsTranslation>(root);
    shift->translation = KbVec3f(4, 0, 0);
    const KsRef<KsPath> path(new KsPath(root));
    ASSERT_TRUE(path->append(shift));
    KsGetMatrixAction matrix(window);
    matrix.apply(path);
    EXPECT_EQ(matrix.getMatrix()[3][0], 2) << "halved by the wire in front of it";
    EXPECT_NE(wire->calls, "");
}

// shows: KsHandleEventAction::deferToCurrent, KsHandleEventAction::isDirect,
// KsHandleEventAction::setEvent, KsHandleEventAction::getEvent, KsHandleEventAction::setHandled,
// KsHandleEventAction::isHandled
TEST_F(OwnClasses, aNodeMayAskForAnEventThatNobodyHandled)
{
    auto* first = addTo<TestWire>(root);
    auto* last = addTo<TestWire>(root);
    const KsLocation2Event event(KbVec2f(50, 50));
    KsHandleEventAction action(window);
    EXPECT_EQ(action.getEvent(), nullptr);
    action.setEvent(&event);
    EXPECT_EQ(action.getEvent(), &event);
    EXPECT_FALSE(action.isHandled());
    action.apply(root);
    EXPECT_TRUE(action.isHandled());
    EXPECT_FALSE(first->wasAskedAgain);
    EXPECT_TRUE(last->wasAskedAgain) << "the last one that asked";
    EXPECT_FALSE(action.isDirect());
}

// shows: KsGetBoundingBoxAction::setViewportRegion, KsGetMatrixAction::setViewportRegion,
// KsHandleEventAction::setViewportRegion, KsHandleEventAction::getViewportRegion
TEST_F(OwnClasses, aNodeFindsTheWindowInTheState)
{
    auto* ruler = addTo<TestRuler>(addTo<KsSeparator>(root));
    KsGetBoundingBoxAction boxes(window);
    KsGetMatrixAction matrix(window);
    KsHandleEventAction events(window);
    const KsLocation2Event event(KbVec2f(5, 5));
    events.setEvent(&event);
    for (const int width : {100, 40, 60}) {
        const KbViewportRegion other(width, 10);
        boxes.setViewportRegion(other);
        boxes.apply(root);
        EXPECT_EQ(boxes.getBoundingBox().getMax()[0], static_cast<float>(width)) << "is not kept";
        matrix.setViewportRegion(other);
        matrix.apply(ruler);
        EXPECT_EQ(matrix.getMatrix()[3][0], static_cast<float>(width) / 2);
        events.setViewportRegion(other);
        EXPECT_TRUE(events.getViewportRegion() == other);
        events.apply(root);
        EXPECT_EQ(ruler->heard, static_cast<float>(width));
    }
}

// shows: KsHandleEventAction::setPickRadius
TEST_F(OwnClasses, aThinThingIsHitFromSoFarAway)
{
    auto* camera = addTo<KsOrthographicCamera>(root);
    camera->height = 10; // ten pixels a unit
    camera->position = KbVec3f(0, 0, 5);
    addTo<TestWire>(root);
    const KsLocation2Event event(KbVec2f(58, 50));
    KsHandleEventAction action(window);
    action.setEvent(&event);
    const auto isHit = [&](float radius) {
        action.setPickRadius(radius);
        // What the pointer points at is known while an event is handed on.
        class TestAsker : public KsNode {
        public:
            KsType getTypeId() const override { return KsNode::getClassTypeId(); }
            void handleEvent(KsHandleEventAction* a) override { hit = a->getPickedPoint(); }
            bool hit = false;
        };
        const KsRef<TestAsker> asker(new TestAsker);
        root->insertChild(asker, 0);
        action.apply(root);
        root->removeChild(asker);
        return asker->hit;
    };
    EXPECT_FALSE(isHit(5));
    EXPECT_TRUE(isHit(9));
}

// shows: KsDetail::copy, KsFullPath::getNodeFromTail
TEST_F(OwnClasses, whatIsKnownOfAHitIsCopiedWithIt)
{
    auto* wire = addTo<TestWire>(root);
    const KsRef<KsFullPath> path(new KsFullPath(root));
    ASSERT_TRUE(path->append(wire));
    path->setNumPublic(1);
    EXPECT_EQ(path->getNodeFromTail(0), wire);
    EXPECT_EQ(static_cast<KsPath*>(path.get())->getNodeFromTail(0), root.get());
    KsPickedPoint point(*path, KbVec3f(), KbVec3f(), 1, KbMatrix());
    auto* detail = new KsNodeKitDetail;
    detail->setPartName("knob");
    point.setDetail(detail, wire);
    const KsPickedPoint copy(point);
    ASSERT_NE(copy.getDetail(wire), nullptr);
    EXPECT_NE(copy.getDetail(wire), detail);
    const std::unique_ptr<KsDetail> third(copy.getDetail(wire)->copy());
    EXPECT_EQ(static_cast<KsNodeKitDetail*>(third.get())->getPartName(), "knob");
}

// shows: KsShape::getForm, KsShape::reportUse, KsShape::pickShape, KsRenderAction::draw
TEST_F(OwnClasses, aShapeSaysWhatItIsMadeOf)
{
    auto* font = addTo<KsFont>(root);
    auto* inner = addTo<KsSeparator>(root);
    addTo<TestRod>(inner);
    EXPECT_TRUE(near(boxOf(root), {0, 0, 0}, {10, 0, 0}));
    font->size = 4.0f;
    EXPECT_TRUE(near(boxOf(root), {0, 0, 0}, {4, 0, 0})) << "although the font stands outside";
    KsRenderAction render(window);
    render.apply(root);
    ASSERT_EQ(render.getDrawList().draws.size(), 1u);
    EXPECT_EQ(render.getDrawList().draws[0].matrix[0][0], 4);
    KsRayPickAction pick(window);
    pick.setRay(KbVec3f(2, 0, 5), KbVec3f(0, 0, -1));
    pick.apply(root);
    EXPECT_TRUE(pick.getPickedPoint());
    pick.setRay(KbVec3f(1, 0, 5), KbVec3f(0, 0, -1));
    pick.apply(root);
    EXPECT_FALSE(pick.getPickedPoint());
}

// shows: KsTransformation::multInto, KsTransformation::getLocalMatrix
TEST_F(OwnClasses, aTransformationSaysWhatItMultiplies)
{
    auto* shear = addTo<TestShear>(root);
    addTo<TestWire>(root);
    EXPECT_EQ(shear->getLocalMatrix()[1][0], 1);
    EXPECT_TRUE(near(boxOf(root), {-1, -1, 0}, {1, 1, 0}));
    KsGetMatrixAction matrix(window);
    matrix.apply(shear);
    EXPECT_TRUE(matrix.getMatrix() == shear->getLocalMatrix());
}

// shows: KsShape::getForm
TEST_F(OwnClasses, aMeshWhoseListsDoNotFitIsNeitherDrawnNorPicked)
{
    addTo<TestTorn>(root);
    ExpectedMessages messages("KsMesh", "an index is beyond the positions", 2); // a mesh each time
    KsRenderAction render(window);
    render.apply(root);
    EXPECT_TRUE(render.getDrawList().draws.empty());
    KsRayPickAction pick(window);
    pick.setRay(KbVec3f(0.2f, 0.2f, 5), KbVec3f(0, 0, -1));
    pick.apply(root);
    EXPECT_EQ(pick.getPickedPoint(), nullptr);
}
