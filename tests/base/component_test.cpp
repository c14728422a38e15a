// The sized component: its size and limits, its zones, its frame in a window and in a scene.

#include "Elements.h"

#include <arborium/kits/KsNodekitCatalog.h>
#include <arborium/nodes/KsScale.h>
#include <arborium/nodes/KsTransform.h>
#include <formweave/KsColumnDialog.h>
#include <formweave/KsRowDialog.h>
#include <formweave/KsTopLevelDialog.h>

#include <QBoxLayout>
#include <QCoreApplication>
#include <QFrame>
#include <QPointer>

namespace {

class Component : public DialogBase {
protected:
    struct Sizes {
        KbVec2i32 size, min, max;
    };
    static Sizes sizesOf(KsTopComponent* component)
    {
        Sizes s;
        component->getSize(s.size, s.min, s.max);
        return s;
    }
    static KbVec2i32 sizeOf(const KsDialogComponent* c) { return {c->width, c->height}; }
    static KbVec2i32 minOf(const KsDialogComponent* c) { return {c->minWidth, c->minHeight}; }
    static KbVec2i32 maxOf(const KsDialogComponent* c) { return {c->maxWidth, c->maxHeight}; }
};

using Size = KbVec2i32;
const Size open(32767, 32767);

/// A component with zones of a known size.
class Zones : public PlainComponent {
public:
    KbVec2i32 label{0, 0}, control{0, 0};
    KbVec2i32 getLabelInitSize() override { return label; }
    KbVec2i32 getComponentInitSize() override { return control; }
    using PlainComponent::m_componentSize;
};

} // namespace

TEST_F(Component, hasItsFieldsInOrderWithTheirDefaults)
{
    const auto component = readNode<KsDialogComponent>("DialogComponent { }");
    ASSERT_TRUE(component);
    const KsFieldData* data = component->getFieldData();
    const int first = data->getIndex("width");
    const char* const names[] = {"width",
                                 "height",
                                 "fixedWidth",
                                 "fixedHeight",
                                 "minWidth",
                                 "minHeight",
                                 "maxWidth",
                                 "maxHeight",
                                 "labelVisibility",
                                 "edgeStyle",
                                 "mainCptSeparator",
                                 "edgeStyleSwitch",
                                 "edgeStyleNone",
                                 "edgeStyleShadowIn",
                                 "edgeStyleShadowOut"};
    for (int i = 0; i < 15; ++i) EXPECT_EQ(data->getFieldName(first + i), names[i]);
    EXPECT_GT(first, data->getIndex("labelAlignment")) << "behind those of the base";
    EXPECT_EQ(sizeOf(component.get()), Size(0, 0));
    EXPECT_EQ(minOf(component.get()), Size(0, 0));
    EXPECT_EQ(maxOf(component.get()), Size(0, 0));
    EXPECT_FALSE(component->fixedWidth);
    EXPECT_FALSE(component->fixedHeight);
    EXPECT_TRUE(component->labelVisibility);
    EXPECT_EQ(component->edgeStyle.getValue(), KsDialogComponent::NONE);
}

TEST_F(Component, readsItsEdgeStylesByNameAndNoOthers)
{
    int value = 0;
    for (const char* name : {"NONE", "SHADOW_IN", "SHADOW_OUT"}) {
        const auto component =
            readNode<KsDialogComponent>(std::string("DialogComponent { edgeStyle ") + name + " }");
        ASSERT_TRUE(component);
        EXPECT_EQ(component->edgeStyle.getValue(), value++);
    }
    ExpectedMessages messages;
    messages.allow("", "");
    EXPECT_FALSE(readNode<KsDialogComponent>("DialogComponent { edgeStyle SHADOW }"));
    EXPECT_FALSE(messages.messages().empty());
}

TEST_F(Component, itsPartsAreThoseOfTheFrameInTheOrderOfTheEdgeStyles)
{
    KsRef<ProbeBox> box(new ProbeBox);
    const KsNodekitCatalog* catalog = box->getNodekitCatalog();
    const auto parentOf = [&](const char* name) {
        return std::string(
            catalog->getName(catalog->getParent(catalog->getPartNumber(name))).getString());
    };
    EXPECT_EQ(parentOf("mainCptSeparator"), "geomSwitch");
    EXPECT_EQ(parentOf("edgeStyleSwitch"), "mainCptSeparator");
    for (const char* name : {"edgeStyleNone", "edgeStyleShadowIn", "edgeStyleShadowOut"}) {
        EXPECT_EQ(parentOf(name), "edgeStyleSwitch");
        EXPECT_TRUE(catalog->isPublic(KbName(name)));
        EXPECT_TRUE(catalog->isNullByDefault(catalog->getPartNumber(name)));
    }
    EXPECT_FALSE(catalog->isPublic(KbName("mainCptSeparator")));
    EXPECT_FALSE(catalog->isPublic(KbName("edgeStyleSwitch")));
    measure(box.get());
    auto* edges = static_cast<KsSwitch*>(box->getAnyPart("edgeStyleSwitch", false));
    ASSERT_EQ(edges->getNumChildren(), 3);
    EXPECT_EQ(edges->getChild(0), box->getPart("edgeStyleNone", false));
    EXPECT_EQ(edges->getChild(1), box->getPart("edgeStyleShadowIn", false));
    EXPECT_EQ(edges->getChild(2), box->getPart("edgeStyleShadowOut", false));
}

// Resolving sizes.

TEST_F(Component, withoutWishesItResolvesToTheDefaultsAndWritesThemMarkedAsDefault)
{
    KsRef<PlainComponent> component(new PlainComponent);
    const Sizes s = sizesOf(component.get());
    EXPECT_EQ(s.size, Size(200, 28));
    EXPECT_EQ(s.min, Size(25, 25));
    EXPECT_EQ(s.max, open);
    const std::string before = written(component.get());
    QWidget window;
    build(component.get(), 1, 0, 0, &window);
    EXPECT_EQ(sizeOf(component.get()), Size(200, 28));
    EXPECT_EQ(minOf(component.get()), Size(25, 25));
    EXPECT_EQ(maxOf(component.get()), open);
    for (const KsField* field : std::vector<const KsField*>{
             &component->width, &component->height, &component->minWidth, &component->minHeight,
             &component->maxWidth, &component->maxHeight})
        EXPECT_TRUE(field->isDefault());
    EXPECT_EQ(written(component.get()), before);
    component->destroyWidget();
}

TEST_F(Component, whatTheApplicationAskedForIsWritten)
{
    const auto box = readNode<KsDialogCheckBox>(
        "DialogCheckBox { width 150 minHeight 30 maxWidth 400 maxHeight 32767 }");
    measure(box.get());
    EXPECT_FALSE(box->width.isDefault());
    EXPECT_TRUE(box->height.isDefault());
    EXPECT_TRUE(box->minWidth.isDefault());
    EXPECT_FALSE(box->minHeight.isDefault());
    EXPECT_FALSE(box->maxWidth.isDefault());
    EXPECT_TRUE(box->maxHeight.isDefault()) << "an open limit is as good as none";
    const std::string text = written(box.get());
    for (const char* value : {"width 150", "minHeight 30", "maxWidth 400"})
        EXPECT_NE(text.find(value), std::string::npos) << text;
    EXPECT_NE(text.find("maxHeight 32767"), std::string::npos) << "as the file had it: " << text;
    // A window keeps to the mark.
    build(box.get(), 1);
    EXPECT_EQ(written(box.get()).find("maxHeight"), std::string::npos);
    box->destroyWidget();
}

TEST_F(Component, aFixedWidthClosesItsLimits)
{
    KsRef<PlainComponent> component(new PlainComponent);
    component->width = 100;
    component->fixedWidth = true;
    Sizes s = sizesOf(component.get());
    EXPECT_EQ(s.size[0], 100);
    EXPECT_EQ(s.min[0], 100);
    EXPECT_EQ(s.max[0], 100);
    EXPECT_EQ(s.max[1], 32767) << "the other axis is free";
    QWidget window;
    build(component.get(), 1, 0, 0, &window);
    EXPECT_EQ(component->minWidth, 100);
    EXPECT_EQ(component->maxWidth, 100);
    EXPECT_TRUE(component->minWidth.isDefault());
    EXPECT_TRUE(component->maxWidth.isDefault());
    component->fixedHeight = true;
    component->height = 40;
    s = sizesOf(component.get());
    EXPECT_EQ(s.min[1], 40);
    EXPECT_EQ(s.max[1], 40);
    component->destroyWidget();
}

TEST_F(Component, theWishIsClampedAndTheMaximumWins)
{
    KsRef<PlainComponent> component(new PlainComponent);
    component->width = 10;
    component->minWidth = 50;
    EXPECT_EQ(sizesOf(component.get()).size[0], 50);
    component->width = 900;
    component->maxWidth = 300;
    EXPECT_EQ(sizesOf(component.get()).size[0], 300);
    component->minWidth = 400;
    EXPECT_EQ(sizesOf(component.get()).size[0], 300) << "the maximum wins";
    component->height = 10;
    EXPECT_EQ(sizesOf(component.get()).size[1], 25) << "by the default minimum";
}

TEST_F(Component, zerosAloneAreReplacedByDefaults)
{
    KsRef<PlainComponent> component(new PlainComponent);
    component->width = 60;
    component->maxHeight = 90;
    const Sizes s = sizesOf(component.get());
    EXPECT_EQ(s.size, Size(60, 28));
    EXPECT_EQ(s.min, Size(25, 25));
    EXPECT_EQ(s.max, Size(32767, 90));
}

TEST_F(Component, sizesBeyondAllLayoutsAreBounded)
{
    KsRef<PlainComponent> component(new PlainComponent);
    component->width = 2147483647;
    component->maxWidth = 2147483647;
    component->minHeight = -2147483647 - 1;
    const Sizes s = sizesOf(component.get());
    EXPECT_LE(s.size[0], 16777215);
    EXPECT_GT(s.size[0], 0);
    QWidget window;
    build(component.get(), 1, 0, 0, &window);
    component->destroyWidget();
}

TEST_F(Component, aSizeGivenByTheParentCountsWithinTheLimits)
{
    for (const int given : {0, 150, 10, 500}) {
        KsRef<ProbeBox> box(new ProbeBox);
        box->width = 120;
        box->minWidth = 50;
        box->maxWidth = 300;
        box->build(0, given, 0);
        EXPECT_EQ(box->width, given == 0 ? 120 : std::min(std::max(given, 50), 300)) << given;
    }
    KsRef<ProbeBox> box(new ProbeBox);
    box->height = 40;
    box->build(0, 0, 60);
    EXPECT_EQ(box->height, 60);
}

TEST_F(Component, aGivenSizeOfAFixedComponentClosesItsLimitsThere)
{
    KsRef<ProbeBox> box(new ProbeBox);
    box->fixedWidth = true;
    box->build(0, 170, 0);
    const int width = box->width;
    EXPECT_EQ(box->minWidth, width);
    EXPECT_EQ(box->maxWidth, width);
}

// Who wrote a size.

TEST_F(Component, aSizeOfTheLayoutIsNotHeardOneOfTheApplicationIs)
{
    KsRef<ProbeBox> box(new ProbeBox);
    box->build(0);
    box->take();
    build(box.get(), 0, 180, 50);
    EXPECT_EQ(box->width, 180);
    Calls calls = box->take();
    for (const char* call : {"changeWidth", "changeHeight", "changeMinMaxSize"})
        EXPECT_EQ(std::count(calls.begin(), calls.end(), call), 0) << call;
    EXPECT_EQ(box->m_defaultSize, Size(0, 0));
    box->width = 130;
    EXPECT_EQ(box->take(), Calls({"changeWidth"}));
    EXPECT_EQ(box->m_defaultSize, Size(130, 0));
    box->height = 33;
    EXPECT_EQ(box->take(), Calls({"changeHeight"}));
    EXPECT_EQ(box->m_defaultSize, Size(130, 33));
    box->minWidth = 40;
    box->minHeight = 41;
    box->maxWidth = 42;
    box->maxHeight = 43;
    EXPECT_EQ(box->take(), Calls(4, "changeMinMaxSize"));
    EXPECT_EQ(box->m_defaultMin, Size(40, 41));
    EXPECT_EQ(box->m_defaultMax, Size(42, 43));
}

TEST_F(Component, theSizesAreHeardWhicheverPresentationExists)
{
    KsRef<ProbeBox> box(new ProbeBox);
    box->build(1);
    box->destroyWidget();
    box->setCanBeTraversed(0);
    box->take();
    box->width = 130;
    EXPECT_EQ(box->take(), Calls({"changeWidth"}));
}

TEST_F(Component, theWishesAreRecordedAtTheFirstBuildOfEitherPresentation)
{
    KsRef<ProbeBox> box(new ProbeBox);
    box->width = 140;
    box->minHeight = 30;
    box->build(0);
    EXPECT_EQ(box->m_defaultSize, Size(140, 0));
    EXPECT_EQ(box->m_defaultMin, Size(0, 30));
    EXPECT_EQ(box->m_defaultMax, Size(0, 0));
    box->build(1, 200, 60);
    EXPECT_EQ(box->m_defaultSize, Size(140, 0)) << "what a layout wrote is no wish";
}

TEST_F(Component, labelVisibilityAndEdgeStyleReachBothPresentations)
{
    KsRef<ProbeBox> box(new ProbeBox);
    box->build(1);
    box->build(0);
    box->take();
    box->labelVisibility = false;
    EXPECT_EQ(box->take(), Calls({"changeLabelVisibility", "change3DLabelVisibility"}));
    box->edgeStyle = KsDialogComponent::SHADOW_OUT;
    EXPECT_EQ(box->take(), Calls({"changeEdgeStyle", "change3DEdgeStyle"}));
    EXPECT_EQ(
        static_cast<KsSwitch*>(box->getAnyPart("edgeStyleSwitch", false))->whichChild.getValue(),
        2);
}

TEST_F(Component, aResetForgetsAllSizesAndANewBuildFindsThemAgain)
{
    KsRef<ProbeBox> box(new ProbeBox);
    box->label = "Shadows";
    box->build(0, 300, 70);
    EXPECT_EQ(box->width, 300);
    box->take();
    box->resetSize();
    EXPECT_EQ(box->take(), Calls({"changeHeight", "changeWidth"})) << "these two are heard";
    EXPECT_EQ(sizeOf(box.get()), Size(0, 0));
    EXPECT_EQ(box->m_componentInitSize, Size(-1, -1));
    EXPECT_EQ(box->m_labelSize, Size(0, 0));
    EXPECT_EQ(box->m_labelInitSize, Size(0, 0));
    EXPECT_EQ(box->m_componentSize, Size(0, 0));
    box->label = "Softer and longer shadows";
    box->build(0);
    EXPECT_EQ(box->m_labelSize[0],
              KsFormweave::getLabelPixelSize("Softer and longer shadows", nullptr)[0]);
    EXPECT_GT(box->width, box->m_labelSize[0]);
}

// Zones.

TEST_F(Component, withoutAParentItLaysOutItsOwnZones)
{
    QWidget window;
    KsRef<Zones> component(new Zones);
    component->label = Size(70, 40);
    component->control = Size(90, 20);
    build(component.get(), 1, 0, 0, &window);
    EXPECT_EQ(component->m_labelSize, Size(70, 40));
    EXPECT_EQ(component->m_componentSize, Size(90, 40)) << "as high as its label";
    component->labelVisibility = false;
    build(component.get(), 1, 0, 0, &window);
    EXPECT_EQ(component->m_componentSize, Size(90, 20)) << "which counts only while it is shown";
    component->control = Size(-1, -1);
    build(component.get(), 1, 0, 0, &window);
    EXPECT_EQ(component->m_componentSize, Size(0, 0));
    component->destroyWidget();
}

TEST_F(Component, theLabelZoneIsAsLargeAsTheLabel)
{
    KsRef<ProbeBox> box(new ProbeBox);
    box->label = "one\\ntwo";
    EXPECT_EQ(box->getLabelInitSize(), KsFormweave::getLabelPixelSize("one\\ntwo", nullptr));
    EXPECT_EQ(box->m_labelInitSize, box->getLabelInitSize());
}

TEST_F(Component, thePlaceOfTheControlInItsWindow)
{
    KsRef<PlainComponent> component(new PlainComponent);
    component->width = 200;
    component->height = 30;
    component->m_labelSize = Size(50, 16);
    Size size, place;
    component->get2DComponentSize(size, place);
    EXPECT_EQ(place, Size(3 + 50 + 2, 3));
    EXPECT_EQ(size, Size(200 - 6 - 52, 24));
    component->edgeStyle = KsDialogComponent::SHADOW_IN;
    component->get2DComponentSize(size, place);
    EXPECT_EQ(place, Size(2 + 50 + 2, 2));
    EXPECT_EQ(size, Size(200 - 6 - 52, 24)) << "only the place changes";
    component->edgeStyle = KsDialogComponent::SHADOW_OUT;
    component->labelVisibility = false;
    component->get2DComponentSize(size, place);
    EXPECT_EQ(place, Size(0, 0));
    EXPECT_EQ(size, Size(194, 24));
}

TEST_F(Component, thePlaceOfTheControlInTheSceneIsThatOfItsCentre)
{
    KsRef<PlainComponent> component(new PlainComponent);
    component->width = 201;
    component->height = 30;
    component->m_labelSize = Size(50, 16);
    Size size, place;
    component->get3DComponentSize(size, place);
    const int w = 201 - 6 - 52;
    EXPECT_EQ(size, Size(w, 24));
    EXPECT_EQ(place, Size(static_cast<int>(55 + w / 2.0 - 201 / 2.0), 0));
    component->labelVisibility = false;
    component->edgeStyle = KsDialogComponent::SHADOW_OUT;
    component->get3DComponentSize(size, place);
    EXPECT_EQ(size, Size(195, 24));
    EXPECT_EQ(place, Size(0, 0));
    // A control left of the centre: towards zero, not down.
    component->width = 4;
    component->labelVisibility = true;
    component->m_labelSize = Size(0, 0);
    component->get3DComponentSize(size, place);
    EXPECT_EQ(place[0], static_cast<int>(5 + -4 / 2.0 - 4 / 2.0));
}

// The frame in a window.

TEST_F(Component, inARowTheFrameStandsInAHorizontalLayoutOfTheRows)
{
    const auto dialog = readNode<KsTopLevelDialog>(
        "TopLevelDialog { RowDialog { DialogCheckBox { } } ColumnDialog { DialogCheckBox { } } }");
    dialog->buildDialog();
    auto* inRow =
        static_cast<KsDialogCheckBox*>(static_cast<KsRowDialog*>(dialog->getChild(0))->getChild(0));
    auto* inColumn = static_cast<KsDialogCheckBox*>(
        static_cast<KsColumnDialog*>(dialog->getChild(1))->getChild(0));
    auto* across = qobject_cast<QHBoxLayout*>(
        static_cast<QLayout*>(static_cast<QBoxLayout*>(inRow->getLayout())));
    auto* down = qobject_cast<QVBoxLayout*>(
        static_cast<QLayout*>(static_cast<QBoxLayout*>(inColumn->getLayout())));
    ASSERT_NE(across, nullptr);
    ASSERT_NE(down, nullptr);
    for (QBoxLayout* layout : std::vector<QBoxLayout*>{across, down}) {
        EXPECT_EQ(layout->objectName(), "LMNKsDialogComponentLayout");
        EXPECT_EQ(layout->spacing(), 0);
        EXPECT_EQ(layout->contentsMargins(), QMargins(0, 0, 0, 0));
        ASSERT_EQ(layout->count(), 2) << "frame and spacer";
        EXPECT_NE(layout->itemAt(0)->widget(), nullptr);
        EXPECT_NE(layout->itemAt(1)->spacerItem(), nullptr);
    }
    EXPECT_EQ(across->itemAt(0)->widget(), inRow->getWidget());
    delete dialog->getBaseWidget();
}

TEST_F(Component, theSpacerGrowsWhereTheComponentDoesNot)
{
    const auto dialog = readNode<KsTopLevelDialog>(R"(TopLevelDialog {
        DialogCheckBox { } DialogCheckBox { fixedWidth TRUE width 100 }
        ColumnDialog { DialogCheckBox { } DialogCheckBox { fixedHeight TRUE height 30 }
                       DialogCheckBox { height 40 maxHeight 40 } } })");
    dialog->buildDialog();
    auto* column = static_cast<KsColumnDialog*>(dialog->getChild(2));
    const auto spacerOf = [](KsFormweave* element) {
        auto* layout =
            static_cast<QBoxLayout*>(static_cast<KsDialogComponent*>(element)->getLayout());
        return layout->itemAt(1)->spacerItem();
    };
    const auto across = [](QSpacerItem* s) { return s->sizePolicy().horizontalPolicy(); };
    const auto down = [](QSpacerItem* s) { return s->sizePolicy().verticalPolicy(); };
    EXPECT_EQ(across(spacerOf(dialog->getChild(0))), QSizePolicy::Fixed);
    EXPECT_EQ(across(spacerOf(dialog->getChild(1))), QSizePolicy::Expanding);
    EXPECT_EQ(down(spacerOf(dialog->getChild(1))), QSizePolicy::Minimum);
    EXPECT_EQ(spacerOf(dialog->getChild(0))->sizeHint(), QSize(0, 20));
    EXPECT_EQ(down(spacerOf(column->getChild(0))), QSizePolicy::Fixed);
    EXPECT_EQ(down(spacerOf(column->getChild(1))), QSizePolicy::Expanding);
    EXPECT_EQ(down(spacerOf(column->getChild(2))), QSizePolicy::Expanding);
    EXPECT_EQ(across(spacerOf(column->getChild(1))), QSizePolicy::Minimum);
    EXPECT_EQ(spacerOf(column->getChild(0))->sizeHint(), QSize(20, 0));
    delete dialog->getBaseWidget();
}

TEST_F(Component, theEdgeStyleIsTheFramesShapeAndShadow)
{
    QWidget window;
    KsRef<ProbeBox> box(new ProbeBox);
    box->build(1, 0, 0, &window);
    auto* frame = qobject_cast<QFrame*>(box->getWidget());
    ASSERT_NE(frame, nullptr);
    EXPECT_EQ(frame->frameShape(), QFrame::NoFrame);
    box->edgeStyle = KsDialogComponent::SHADOW_IN;
    EXPECT_EQ(frame->frameShape(), QFrame::StyledPanel);
    EXPECT_EQ(frame->frameShadow(), QFrame::Sunken);
    box->edgeStyle = KsDialogComponent::SHADOW_OUT;
    EXPECT_EQ(frame->frameShape(), QFrame::StyledPanel);
    EXPECT_EQ(frame->frameShadow(), QFrame::Raised);
    box->enable = false;
    EXPECT_FALSE(frame->isEnabled());
}

TEST_F(Component, destroyingDeletesTheFrameAndANewBuildMakesAnother)
{
    QWidget window;
    KsRef<ProbeBox> box(new ProbeBox);
    box->destroyWidget();
    box->build(1, 0, 0, &window);
    QPointer<QWidget> frame(box->getWidget());
    ASSERT_TRUE(frame);
    box->destroyWidget();
    EXPECT_TRUE(frame.isNull());
    EXPECT_EQ(box->getWidget(), nullptr);
    EXPECT_EQ(box->m_build2D, 0);
    box->destroyWidget();
    box->build(1, 0, 0, &window);
    EXPECT_NE(box->getWidget(), nullptr);
}

TEST_F(Component, aFrameThatWentWithItsWindowIsNotDeletedAgain)
{
    auto* window = new QWidget;
    KsRef<ProbeBox> box(new ProbeBox);
    box->build(1, 0, 0, window);
    delete window;
    EXPECT_EQ(box->getWidget(), nullptr);
    box->label = "still here";
    box->enable = false;
    box->destroyWidget();
}

TEST_F(Component, destroyingTheWindowLeavesTheScene)
{
    QWidget window;
    KsRef<ProbeBox> box(new ProbeBox);
    box->build(0);
    box->build(1, 0, 0, &window);
    box->destroyWidget();
    EXPECT_EQ(box->isBuilt3D(), 1);
    box->take();
    box->label = "new";
    EXPECT_EQ(box->take(), Calls({"change3DLabel"}));
}

TEST_F(Component, withoutAParentNodeItJoinsTheLayoutOfTheWidgetGiven)
{
    QWidget window;
    auto* layout = new QVBoxLayout(&window);
    KsRef<ProbeBox> first(new ProbeBox), second(new ProbeBox);
    first->build(1, 0, 0, &window);
    second->build(1, 0, 0, &window);
    ASSERT_EQ(layout->count(), 2);
    EXPECT_EQ(layout->itemAt(0)->layout(), static_cast<QBoxLayout*>(first->getLayout()));
    EXPECT_EQ(layout->itemAt(1)->layout(), static_cast<QBoxLayout*>(second->getLayout()));
    EXPECT_EQ(first->getWidget()->parentWidget(), &window);
    first->destroyWidget();
    EXPECT_EQ(layout->count(), 1) << "no layout or spacer is left behind";
}

TEST_F(Component, withoutAnyParentTheFrameIsAWindowOfItsOwn)
{
    KsRef<ProbeBox> box(new ProbeBox);
    box->build(1);
    QPointer<QWidget> frame(box->getWidget());
    ASSERT_TRUE(frame);
    EXPECT_TRUE(frame->isWindow());
    box.reset();
    EXPECT_TRUE(frame.isNull()) << "it goes with its node";
}

// The frame in a scene.

TEST_F(Component, theFrameIsAUnitShapeScaledToTheSizeAndMovedByTheLayoutsPlace)
{
    KsRef<ProbeBox> box(new ProbeBox);
    KbVec2i32 size(120, 40), place(10, 20);
    box->buildWidget(nullptr, size, place, 0);
    EXPECT_EQ(box->m_position, place);
    EXPECT_TRUE(box->m_mainScale->scaleFactor.getValue() == KbVec3f(120, 40, 1));
    EXPECT_TRUE(box->m_mainTranslation->translation.getValue() == KbVec3f(10 + 60, -20 - 20, 0));
    const KbBox3f extent = measure(box->getAnyPart("mainCptSeparator", false));
    EXPECT_TRUE(extent == KbBox3f(-60, -20, 0, 60, 20, 1));
}

TEST_F(Component, halfPixelsStay)
{
    KsRef<ProbeBox> box(new ProbeBox);
    box->build(0, 121, 41);
    EXPECT_TRUE(box->m_mainTranslation->translation.getValue() == KbVec3f(60.5f, -20.5f, 0));
}

TEST_F(Component, inAStackTheOriginIsTheStacksUpperLeftCorner)
{
    const auto row = readNode<KsRowDialog>("RowDialog { width 300 height 60 }");
    auto* box = new ProbeBox;
    row->addChild(box);
    measure(row.get());
    KsGroup* geometry = static_cast<KsGroup*>(row->getAnyPart("geomSwitch", false));
    const KsTranslation* centre = nullptr;
    for (int i = 0; i < geometry->getNumChildren() && !centre; ++i)
        centre = ksCast<KsTranslation>(geometry->getChild(i));
    ASSERT_NE(centre, nullptr);
    const KbVec3f of = centre->translation.getValue();
    const KbVec3f place = box->m_mainTranslation->translation.getValue();
    EXPECT_FLOAT_EQ(place[0], static_cast<float>(box->m_position[0]) +
                                  static_cast<float>(box->width) / 2 + of[0] -
                                  static_cast<float>(row->width) / 2);
    EXPECT_FLOAT_EQ(place[1], -static_cast<float>(box->m_position[1]) -
                                  static_cast<float>(box->height) / 2 + of[1] +
                                  static_cast<float>(row->height) / 2);
    EXPECT_FLOAT_EQ(place[2], of[2]);
    // A stack that takes no part gives no origin.
    row->setCanBeTraversed(0);
    KbVec2i32 size(0, 0), at(0, 0);
    box->buildWidget(nullptr, size, at, 0);
    EXPECT_TRUE(
        box->m_mainTranslation->translation.getValue() ==
        KbVec3f(static_cast<float>(box->width) / 2, -static_cast<float>(box->height) / 2, 0));
}

TEST_F(Component, theEdgeStyleChoosesTheFrameOfTheSkin)
{
    KsRef<ProbeBox> box(new ProbeBox);
    box->edgeStyle = KsDialogComponent::SHADOW_IN;
    measure(box.get());
    auto* edges = static_cast<KsSwitch*>(box->getAnyPart("edgeStyleSwitch", false));
    EXPECT_EQ(edges->whichChild.getValue(), 1);
    box->edgeStyle = KsDialogComponent::NONE;
    EXPECT_EQ(edges->whichChild.getValue(), 0);
}

TEST_F(Component, a3DBuildMakesNoWidgetAndA2DBuildNoGeometry)
{
    KsRef<ProbeBox> scene(new ProbeBox), window(new ProbeBox);
    scene->build(0);
    window->build(1);
    EXPECT_EQ(scene->getWidget(), nullptr);
    EXPECT_EQ(scene->getLayout(), nullptr);
    EXPECT_EQ(window->isBuilt3D(), 0);
    EXPECT_EQ(window->getAnyPart("geomSwitch", false), nullptr);
}

// What a dialog holds.

TEST_F(Component, aTopComponentHasNoSizeOfItsOwn)
{
    const auto component = readNode<KsTopComponent>("TopComponent { }");
    ASSERT_TRUE(component);
    Size size(7, 7), min(8, 8), max(9, 9);
    component->getSize(size, min, max);
    EXPECT_EQ(size, Size(7, 7));
    EXPECT_EQ(min, Size(8, 8));
    EXPECT_EQ(max, Size(9, 9));
    EXPECT_EQ(component->getNodekitCatalog()->getNumEntries(),
              readNode<KsFormweave>("Formweave { }")->getNodekitCatalog()->getNumEntries());
}

TEST_F(Component, aTranslationIsCopiedIntoTheNamedOneOrPutFirst)
{
    KsRef<ProbeBox> box(new ProbeBox);
    KsRef<KsTranslation> first(new KsTranslation), second(new KsTranslation);
    first->translation = KbVec3f(1, 2, 3);
    second->translation = KbVec3f(4, 5, 6);
    box->addTranslation(first.get());
    auto* geometry = static_cast<KsGroup*>(box->getAnyPart("geomSwitch", false));
    ASSERT_NE(geometry, nullptr);
    EXPECT_EQ(geometry->getChild(0), first.get());
    box->addTranslation(second.get());
    EXPECT_EQ(geometry->getChild(0), second.get()) << "not the named one";
    second->setName("parentPositionTranslation");
    const int count = geometry->getNumChildren();
    box->addTranslation(first.get());
    EXPECT_EQ(geometry->getNumChildren(), count);
    EXPECT_EQ(geometry->getChild(0), second.get());
    EXPECT_TRUE(second->translation.getValue() == KbVec3f(1, 2, 3));
    box->addTranslation(nullptr);
    EXPECT_EQ(geometry->getNumChildren(), count);
}

// Both at once.

TEST_F(Component, aResizedWindowDoesNotPushTheControlOutOfItsPanel)
{
    const auto dialog =
        readNode<KsTopLevelDialog>("TopLevelDialog { DialogCheckBox { label \"a\" } }");
    measure(dialog.get());
    const KbBox3f before = measure(dialog.get());
    dialog->buildDialog();
    dialog->show();
    QWidget* window = dialog->getBaseWidget();
    window->resize(700, 400);
    QCoreApplication::processEvents();
    static_cast<KsDialogCheckBox*>(dialog->getChild(0))->state = true;
    static_cast<KsDialogCheckBox*>(dialog->getChild(0))->label = "b";
    const KbBox3f after = measure(dialog.get());
    EXPECT_NEAR(after.getSize()[0], before.getSize()[0], 1e-3);
    EXPECT_NEAR(after.getSize()[1], before.getSize()[1], 1e-3);
    delete window;
}
