// The way into a scene: the lazy build, the small nodes that place an element, and what closes.

#include "Elements.h"

#include <arborium/actions/KsGetMatrixAction.h>
#include <arborium/actions/KsPath.h>
#include <arborium/actions/KsSearchAction.h>
#include <arborium/base/KsDBImpl.h>
#include <arborium/nodes/KsScale.h>
#include <arborium/nodes/KsTransform.h>
#include <formweave/KsColumnDialog.h>
#include <formweave/KsRowDialog.h>
#include <formweave/KsTopLevelDialog.h>

#include <cmath>

namespace {

class Placement : public DialogBase {};

/// A row that tells when it is built.
class ProbeRow : public KsRowDialog {
public:
    using KsDialogComponent::m_mainTranslation;
    int builds = 0;
    void buildWidget(QWidget* parent, KbVec2i32& size, KbVec2i32& position, int build2D) override
    {
        ++builds;
        KsRowDialog::buildWidget(parent, size, position, build2D);
    }
};

/// Counts the traversals that pass it.
class Meter : public KsGroup {
public:
    int passes = 0;
    void getBoundingBox(KsGetBoundingBoxAction* action) override
    {
        ++passes;
        KsGroup::getBoundingBox(action);
    }
    void getMatrix(KsGetMatrixAction* action) override
    {
        ++passes;
        KsGroup::getMatrix(action);
    }
    void search(KsSearchAction* action) override
    {
        ++passes;
        KsGroup::search(action);
    }
};

KsGroup* geometryOf(KsFormweave* element)
{
    return ksCast<KsGroup>(element->getAnyPart("geomSwitch", false));
}

KsRef<KsGroup> groupOf(const std::string& content)
{
    return readNode<KsGroup>("Group { " + content + " }");
}

} // namespace

// The lazy build.

TEST_F(Placement, aCheckBoxAloneInASceneBuildsItselfWithItsDefaultSize)
{
    KsRef<KsSeparator> scene(new KsSeparator);
    auto* box = new ProbeBox;
    box->label = "Shadows";
    box->onString = "on";
    scene->addChild(box);
    EXPECT_EQ(box->isBuilt3D(), 0);
    const KbBox3f extent = measure(scene.get());
    EXPECT_EQ(box->isBuilt3D(), 1);
    EXPECT_EQ(box->builds, 1);
    constexpr int margin = 3, toggle = 26, gap = 2;
    const int label = metrics().horizontalAdvance("Shadows") + margin;
    const int control = metrics().horizontalAdvance("on") + margin + toggle;
    EXPECT_EQ(box->width, label + gap + control);
    EXPECT_GE(box->height, metrics().height() + margin);
    // Its upper left corner stands at the origin, y down.
    EXPECT_NEAR(extent.getMin()[0], 0, 1e-3);
    EXPECT_NEAR(extent.getMax()[1], 0, 1e-3);
    EXPECT_NEAR(extent.getSize()[0], static_cast<float>(box->width), 1e-2);
    EXPECT_NEAR(extent.getSize()[1], static_cast<float>(box->height), 1e-2);
    EXPECT_GE(extent.getMin()[2], 0);
}

TEST_F(Placement, aSecondMeasuringBuildsNothing)
{
    KsRef<KsSeparator> scene(new KsSeparator);
    auto* box = new ProbeBox;
    scene->addChild(box);
    const KbBox3f first = measure(scene.get());
    const int nodes = KsBase::getNumInstances();
    box->touch();
    EXPECT_TRUE(measure(scene.get()) == first);
    EXPECT_EQ(box->builds, 1);
    EXPECT_EQ(KsBase::getNumInstances(), nodes);
}

TEST_F(Placement, nothingIsBuiltByOtherTraversals)
{
    KsRef<ProbeBox> box(new ProbeBox);
    KsSearchAction search;
    search.setType(KsMaterial::getClassTypeId());
    search.apply(box.get());
    written(box.get());
    EXPECT_EQ(box->isBuilt3D(), 0);
}

TEST_F(Placement, theFirstTraversalThatReachesADialogBuildsItFromTheTop)
{
    KsRef<KsSeparator> scene(new KsSeparator);
    auto* dialog = new KsTopLevelDialog;
    auto* row = new ProbeRow;
    auto* box = new ProbeBox;
    row->addChild(box);
    dialog->addChild(row);
    scene->addChild(dialog);
    measure(scene.get());
    EXPECT_EQ(dialog->isBuilt3D(), 1);
    EXPECT_EQ(row->isBuilt3D(), 1);
    EXPECT_EQ(box->isBuilt3D(), 1);
    EXPECT_EQ(row->builds, 1);
    EXPECT_EQ(box->builds, 1) << "by its parent, not by the traversal";
    for (KsFormweave* element : std::vector<KsFormweave*>{dialog, row, box})
        EXPECT_EQ(element->canBeTraversed(), 1);
}

TEST_F(Placement, aComponentReachedWithoutItsContainerBuildsAloneAndSetsTheContainerAside)
{
    KsRef<KsTopLevelDialog> dialog(new KsTopLevelDialog);
    auto* row = new ProbeRow;
    auto* box = new ProbeBox;
    row->addChild(box);
    dialog->addChild(row);
    // The dialog itself is in no scene.
    KsRef<KsSeparator> scene(new KsSeparator);
    scene->addChild(box);
    measure(scene.get());
    EXPECT_EQ(box->isBuilt3D(), 1);
    EXPECT_EQ(dialog->canBeTraversed(), 0);
    EXPECT_EQ(dialog->isBuilt3D(), 0);
    EXPECT_EQ(row->isBuilt3D(), 0);
    EXPECT_EQ(box->canBeTraversed(), 1);
    box->take();
    box->label = "new";
    EXPECT_EQ(box->take(), Calls({"change3DLabel"}));
}

TEST_F(Placement, aComponentOfAGroupThatIsNotInTheSceneSetsTheGroupAside)
{
    KsRef<ProbeRow> row(new ProbeRow);
    auto* box = new ProbeBox;
    row->addChild(box);
    KsRef<KsSeparator> scene(new KsSeparator);
    scene->addChild(box);
    measure(scene.get());
    EXPECT_EQ(box->isBuilt3D(), 1);
    EXPECT_EQ(row->canBeTraversed(), 0);
    EXPECT_EQ(row->isBuilt3D(), 0);
    // The offsets of the group do not count.
    const KbVec3f place = box->m_mainTranslation->translation;
    EXPECT_FLOAT_EQ(place[0], static_cast<float>(box->width) / 2);
    EXPECT_FLOAT_EQ(place[1], -static_cast<float>(box->height) / 2);
}

TEST_F(Placement, aGroupAloneInASceneLaysItsChildrenOutAndBuildsThem)
{
    KsRef<KsSeparator> scene(new KsSeparator);
    auto* rows = new KsRowDialog;
    auto* a = new ProbeBox;
    auto* b = new ProbeBox;
    a->label = "a much longer label";
    b->label = "b";
    rows->addChild(a);
    rows->addChild(b);
    scene->addChild(rows);
    measure(scene.get());
    EXPECT_EQ(rows->isBuilt3D(), 1);
    EXPECT_EQ(a->builds, 1);
    EXPECT_EQ(b->builds, 1);
    EXPECT_EQ(rows->canBeTraversed(), 1);
    EXPECT_GT(a->m_labelSize[0], 0);
    EXPECT_EQ(a->m_labelSize[0], b->m_labelSize[0]) << "labels share a column";
}

TEST_F(Placement, theBuildFiresNoSensorsOfTheElementOrOfWhatStandsAbove)
{
    KsRef<KsSeparator> scene(new KsSeparator);
    auto* box = new ProbeBox;
    scene->addChild(box);
    struct Count {
        int calls = 0;
        static void call(void* data, KsSensor*) { ++static_cast<Count*>(data)->calls; }
    } onBox, onWidth, onScene;
    KsNodeSensor boxSensor(&Count::call, &onBox), sceneSensor(&Count::call, &onScene);
    KsFieldSensor widthSensor(&Count::call, &onWidth);
    boxSensor.setPriority(0);
    sceneSensor.setPriority(0);
    widthSensor.setPriority(0);
    boxSensor.attach(box);
    sceneSensor.attach(scene.get());
    widthSensor.attach(&box->width);
    measure(scene.get());
    EXPECT_GT(box->width, 0);
    EXPECT_EQ(onWidth.calls, 0);
    EXPECT_EQ(onBox.calls, 0);
    EXPECT_EQ(onScene.calls, 0);
    EXPECT_TRUE(box->isNotifyEnabled()) << "as it was";
    box->width = 150;
    EXPECT_EQ(onWidth.calls, 1);
    EXPECT_EQ(onBox.calls, 1);
    EXPECT_EQ(onScene.calls, 1);
}

TEST_F(Placement, aNodeWhoseNotificationWasOffStaysSo)
{
    KsRef<ProbeBox> box(new ProbeBox);
    box->enableNotify(false);
    measure(box.get());
    EXPECT_EQ(box->isBuilt3D(), 1);
    EXPECT_FALSE(box->isNotifyEnabled());
}

TEST_F(Placement, aDialogAddedLaterAppears)
{
    KsRef<KsSeparator> scene(new KsSeparator);
    scene->addChild(readNode<KsGroup>("Group { Cube { } }").get());
    const KbBox3f before = measure(scene.get());
    const auto dialog = readNode<KsTopLevelDialog>("TopLevelDialog { DialogCheckBox { } }");
    scene->addChild(dialog.get());
    const KbBox3f with = measure(scene.get());
    EXPECT_FALSE(with == before);
    EXPECT_TRUE(measure(scene.get()) == with);
}

TEST_F(Placement, twoDialogsInOneSceneStandForThemselves)
{
    KsRef<KsSeparator> scene(new KsSeparator);
    for (const char* place : {"0 0 0", "500 0 0"})
        scene->addChild(readNode<KsTopLevelDialog>(std::string("TopLevelDialog { position3D ") +
                                                   place + " DialogCheckBox { label \"a\" } }")
                            .get());
    const KbBox3f extent = measure(scene.get());
    auto* left = static_cast<KsTopLevelDialog*>(scene->getChild(0));
    auto* right = static_cast<KsTopLevelDialog*>(scene->getChild(1));
    EXPECT_EQ(left->isBuilt3D(), 1);
    EXPECT_EQ(right->isBuilt3D(), 1);
    EXPECT_GT(extent.getMax()[0], 500);
    const int width = right->width;
    static_cast<KsDialogCheckBox*>(left->getChild(0))->state = true;
    EXPECT_FALSE(static_cast<KsDialogCheckBox*>(right->getChild(0))->state);
    EXPECT_EQ(right->width, width);
}

TEST_F(Placement, withoutLocalWidgetsABuildIsA3DBuild)
{
    KsDBImpl::m_noLocalWidgets = true;
    const auto dialog = readNode<KsTopLevelDialog>("TopLevelDialog { DialogCheckBox { } }");
    dialog->buildDialog();
    KsDBImpl::m_noLocalWidgets = false;
    EXPECT_EQ(dialog->isBuilt3D(), 1);
    EXPECT_EQ(dialog->getBaseWidget(), nullptr);
    EXPECT_EQ(static_cast<KsDialogCheckBox*>(dialog->getChild(0))->getWidget(), nullptr);
    EXPECT_EQ(dialog->getChild(0)->isBuilt3D(), 1);
}

TEST_F(Placement, aDialogHiddenBeforeItsBuildStaysHidden)
{
    const auto dialog =
        readNode<KsTopLevelDialog>("TopLevelDialog { RowDialog { DialogCheckBox { } } }");
    dialog->show3D(0);
    EXPECT_TRUE(measure(dialog.get()).isEmpty());
    EXPECT_EQ(dialog->isBuilt3D(), 1);
    EXPECT_EQ(dialog->isShown3D(), 0);
    dialog->show3D(1);
    EXPECT_FALSE(measure(dialog.get()).isEmpty());
}

// What a 3D build makes.

TEST_F(Placement, theBuildMakesTheElementsTools)
{
    KsRef<ProbeBox> box(new ProbeBox);
    EXPECT_EQ(box->m_bboxAction, nullptr);
    box->setLabelCacheBBox(KbBox3f(0, 0, 0, 1, 1, 1));
    measure(box.get());
    EXPECT_NE(box->m_bboxAction, nullptr);
    EXPECT_NE(box->m_searchAction, nullptr);
    EXPECT_NE(box->m_matrixAction, nullptr);
    EXPECT_NE(box->m_pickStyle, nullptr);
    EXPECT_NE(box->m_material, nullptr);
    EXPECT_NE(box->m_parentTranslationNode, nullptr);
    auto* separator = static_cast<KsGroup*>(box->getAnyPart("geomSeparator", false));
    EXPECT_EQ(separator->getChild(0), box->m_parentTranslationNode.get());
    EXPECT_EQ(separator->getChild(1), geometryOf(box.get()));
}

TEST_F(Placement, theGeometryOfAComponentStandsInOrder)
{
    KsRef<ProbeBox> box(new ProbeBox);
    measure(box.get());
    KsGroup* geometry = geometryOf(box.get());
    EXPECT_EQ(geometry->getChild(0), box->m_material.get());
    EXPECT_EQ(geometry->getChild(1), box->m_pickStyle.get());
    EXPECT_EQ(geometry->getChild(2), box->m_mainTranslation.get());
    auto* content = static_cast<KsGroup*>(box->getAnyPart("mainCptSeparator", false));
    EXPECT_EQ(geometry->getChild(3), content);
    EXPECT_NE(geometry->findChild(box->m_undoTransform.get()), -1);
    EXPECT_GT(geometry->findChild(box->m_undoTransform.get()), geometry->findChild(content));
    EXPECT_EQ(content->getChild(0), box->m_mainScale.get());
    EXPECT_EQ(content->getChild(1), box->getAnyPart("edgeStyleSwitch", false));
}

TEST_F(Placement, stacksHaveNoUndoTransform)
{
    const auto column = readNode<KsColumnDialog>("ColumnDialog { RowDialog { } }");
    measure(column.get());
    for (KsFormweave* stack : std::vector<KsFormweave*>{column.get(), column->getChild(0)}) {
        KsGroup* geometry = geometryOf(stack);
        ASSERT_NE(geometry, nullptr);
        for (int i = 0; i < geometry->getNumChildren(); ++i)
            EXPECT_EQ(ksCast<KsTransform>(geometry->getChild(i)), nullptr);
    }
}

// Places.

TEST_F(Placement, theTranslationOfTheParentIsInTheNodeAtOnce)
{
    KsRef<ProbeBox> box(new ProbeBox);
    KbVec3f first(1, 2, 3);
    box->set3DParentTranslation(first);
    EXPECT_TRUE(box->get3DParentTranslation() == first);
    EXPECT_EQ(box->m_parentTranslationNode, nullptr) << "kept until there is a node";
    measure(box.get());
    EXPECT_TRUE(box->m_parentTranslationNode->translation.getValue() == first);
    KbVec3f second(4, 5, 6);
    box->set3DParentTranslation(second);
    EXPECT_TRUE(box->m_parentTranslationNode->translation.getValue() == second);
    EXPECT_TRUE(box->get3DParentTranslation() == second);
}

TEST_F(Placement, theUndoTransformLeadsToTheTopOfTheContentWithoutItsScale)
{
    KsRef<ProbeBox> box(new ProbeBox);
    measure(box.get());
    const auto content = groupOf(R"(Translation { translation 1 2 3 } Scale { scaleFactor 10 10 1 }
        Cube { } Translation { translation 0 0 4 })");
    KsRef<KsTransform> transform(new KsTransform);
    box->undoTransformMatrix(content.get(), transform.get());
    EXPECT_TRUE(transform->translation.getValue() == KbVec3f(1, 2, 7)) << "behind the last node";
    EXPECT_TRUE(transform->scaleFactor.getValue() == KbVec3f(1, 1, 1));
    EXPECT_FLOAT_EQ(box->compute3DDepth(content.get()), 7);
}

TEST_F(Placement, theUndoTransformHonoursTheSwitchesInside)
{
    KsRef<ProbeBox> box(new ProbeBox);
    measure(box.get());
    const auto content = groupOf(R"(Switch { whichChild 1
        Group { Translation { translation 0 0 5 } } Group { Translation { translation 0 0 9 } } })");
    EXPECT_FLOAT_EQ(box->compute3DDepth(content.get()), 9);
    static_cast<KsSwitch*>(content->getChild(0))->whichChild = 0;
    EXPECT_FLOAT_EQ(box->compute3DDepth(content.get()), 5);
}

TEST_F(Placement, theUndoTransformKeepsRotations)
{
    KsRef<ProbeBox> box(new ProbeBox);
    measure(box.get());
    const auto turned =
        groupOf("Transform { translation 1 0 0 rotation 0 0 1 1.5707963 scaleFactor 2 2 2 }");
    KsRef<KsTransform> transform(new KsTransform);
    box->undoTransformMatrix(turned.get(), transform.get());
    KbVec3f axis;
    float angle = 0;
    transform->rotation.getValue().getValue(axis, angle);
    EXPECT_NEAR(std::abs(angle), 1.5707963, 1e-4);
    const KbVec3f scale = transform->scaleFactor;
    for (int i = 0; i < 3; ++i) EXPECT_NEAR(scale[i], 1, 1e-5);
}

TEST_F(Placement, theUndoTransformOfNothingIsLeftAlone)
{
    KsRef<ProbeBox> box(new ProbeBox);
    KsRef<KsTransform> transform(new KsTransform);
    const auto content = groupOf("Translation { translation 0 0 4 }");
    box->undoTransformMatrix(content.get(), transform.get());
    EXPECT_TRUE(transform->translation.getValue() == KbVec3f(0, 0, 0)) << "before the 3D build";
    measure(box.get());
    box->undoTransformMatrix(nullptr, transform.get());
    box->undoTransformMatrix(content.get(), nullptr);
    EXPECT_TRUE(transform->translation.getValue() == KbVec3f(0, 0, 0));
    EXPECT_FLOAT_EQ(box->compute3DDepth(nullptr), 0);
}

TEST_F(Placement, theDepthIsMeasuredOnceAndThenTakenFromTheCache)
{
    KsRef<ProbeBox> box(new ProbeBox);
    measure(box.get());
    KbVec3f parent(10, 20, 30);
    box->set3DParentTranslation(parent);
    KsRef<Meter> content(new Meter);
    auto* closing = new KsTranslation;
    closing->translation = KbVec3f(0, 0, 2);
    content->addChild(closing);

    float depth = -1;
    KbVec3f place(1, 1, 1);
    box->apply3DTranslation(content.get(), depth, place);
    EXPECT_FLOAT_EQ(depth, 2);
    EXPECT_TRUE(place == KbVec3f(11, 21, 33));
    EXPECT_GT(content->passes, 0);

    content->passes = 0;
    closing->translation = KbVec3f(0, 0, 100);
    place.setValue(0, 0, 0);
    box->apply3DTranslation(content.get(), depth, place);
    EXPECT_EQ(content->passes, 0) << "no traversal";
    EXPECT_TRUE(place == KbVec3f(10, 20, 32));
    depth = 7;
    place.setValue(0, 0, 0);
    box->apply3DTranslation(nullptr, depth, place);
    EXPECT_TRUE(place == KbVec3f(10, 20, 37));
}

TEST_F(Placement, whatStandsOnTheFrameStandsOnItsTop)
{
    KsRef<ProbeBox> box(new ProbeBox);
    box->label = "a";
    const KbBox3f extent = measure(box.get());
    const float frame = box->compute3DDepth(box->getAnyPart("mainCptSeparator", false));
    EXPECT_GT(frame, 0);
    EXPECT_TRUE(box->m_undoTransform->translation.getValue() == KbVec3f(0, 0, frame));
    // Frame, control frame, toggle.
    EXPECT_GT(extent.getMax()[2], frame);
}
