// How a panel is made and where it stands.

#include "Panel.h"

#include <arborium/nodes/KsPickStyle.h>
#include <arborium/render/KsOffscreenRenderer.h>

namespace {

class PanelPlace : public PanelTest {};

const std::string twoBoxes = R"( DialogCheckBox { auditorID "a" label "First" onString "on" }
    DialogCheckBox { auditorID "b" label "Second" onString "on" } )";

} // namespace

TEST_F(PanelPlace, theFrameIsTheSizeOfTheDialogAndItsRoomsAroundItsMiddle)
{
    KsTopLevelDialog* dialog = add("TopLevelDialog { position3D 100 50 0 width 200 height 100 }");
    EXPECT_TRUE(isNear(dialog->getTopLevelSize(), KbVec3f(208, 127, 1)));
    auto* translation = firstIn<KsTranslation>(dialog, "geomSwitch");
    ASSERT_NE(translation, nullptr);
    EXPECT_TRUE(isNear(translation->translation, KbVec3f(204, -113.5f, 0)));
    const KbBox3f box = boxOf(dialog, "frameSep");
    EXPECT_TRUE(isNear(box.getMin(), KbVec3f(100, -177, 0)));
    EXPECT_TRUE(isNear(box.getMax(), KbVec3f(308, -50, 1)));
}

TEST_F(PanelPlace, theSizeIsZeroBeforeThePanelIsBuilt)
{
    const auto dialog = read<>("TopLevelDialog { width 200 }");
    EXPECT_TRUE(isNear(dialog->getTopLevelSize(), KbVec3f(0, 0, 0)));
}

TEST_F(PanelPlace, theUpperLeftCornerStandsAtThePositionWithYDownward)
{
    KsTopLevelDialog* dialog = add("TopLevelDialog { position3D 30 40 5 " + twoBoxes + "}");
    const KbBox3f box = boxOf(dialog, "frameSep");
    EXPECT_NEAR(box.getMin()[0], 30, 1e-3);
    EXPECT_NEAR(box.getMax()[1], -40, 1e-3);
    EXPECT_NEAR(box.getMin()[2], 5, 1e-3);
    EXPECT_NEAR(box.getSize()[0], static_cast<float>(dialog->width + 8), 1e-3);
    EXPECT_NEAR(box.getSize()[1], static_cast<float>(dialog->height + 27), 1e-3);
}

TEST_F(PanelPlace, theChildrenStandFourToTheRightAndTwentyThreeBelowOnTopOfTheFrame)
{
    KsTopLevelDialog* dialog =
        add("TopLevelDialog { position3D 30 40 5 margin 6 rowSpacing 3 " + twoBoxes + "}");
    const KbBox3f a = boxOf(child(dialog, "a"));
    const KbBox3f b = boxOf(child(dialog, "b"));
    EXPECT_NEAR(a.getMin()[0], 30 + 4 + 6, 1e-2);
    EXPECT_NEAR(a.getMax()[1], -40 - 23 - 6, 1e-2);
    EXPECT_NEAR(a.getMin()[2], 5 + 1, 1e-2) << "on the frame, not in it";
    EXPECT_NEAR(b.getMin()[0], 30 + 4 + 6, 1e-2);
    EXPECT_NEAR(b.getMax()[1], a.getMin()[1] - 3, 1e-2);
    EXPECT_NEAR(a.getSize()[0], static_cast<float>(dialog->width - 2 * 6), 1e-2);
    // And they end where the frame still has its room.
    const KbBox3f frame = boxOf(dialog, "frameSep");
    EXPECT_NEAR(b.getMin()[1], frame.getMin()[1] + 4 + 6, 1e-2);
    EXPECT_NEAR(a.getMax()[0], frame.getMax()[0] - 4 - 6, 1e-2);
}

TEST_F(PanelPlace, aTallerDialogSharesItsRoomAmongTheChildren)
{
    const std::string rows = "RowDialog { auditorID \"x\" DialogCheckBox { label \"1\" } } "
                             "RowDialog { auditorID \"y\" DialogCheckBox { label \"2\" } }";
    KsTopLevelDialog* small = add("TopLevelDialog { " + rows + "}");
    const int needed = small->height;
    KsTopLevelDialog* tall =
        add("TopLevelDialog { height " + std::to_string(needed + 31) + " " + rows + "}");
    const KbBox3f x = boxOf(child<KsRowDialog>(tall, "x"));
    const KbBox3f y = boxOf(child<KsRowDialog>(tall, "y"));
    EXPECT_NEAR(x.getSize()[1] + y.getSize()[1], static_cast<float>(needed + 31), 1e-2);
    EXPECT_NEAR(x.getSize()[1] - y.getSize()[1], 1, 1e-2) << "the odd pixel goes to the first";
}

TEST_F(PanelPlace, theButtonStandsInTheUpperRightCornerOnTopOfTheFrame)
{
    KsTopLevelDialog* dialog = add("TopLevelDialog { width 200 height 100 }");
    const KbBox3f button = boxOf(dialog, "minSep");
    EXPECT_NEAR(button.getCenter()[0], 208 - 12, 1e-2);
    EXPECT_NEAR(button.getCenter()[1], -12, 1e-2);
    EXPECT_NEAR(button.getSize()[0], 14, 1e-2);
    EXPECT_NEAR(button.getSize()[1], 14, 1e-2);
    EXPECT_GT(button.getMin()[2], 1);
    EXPECT_EQ(shown(dialog, "minSwtch"), 0);
}

TEST_F(PanelPlace, theTitleStandsTwelveFromTheLeftAndInTheMiddleOfTheTitleBar)
{
    KsTopLevelDialog* dialog = add("TopLevelDialog { label \"Settings\" width 200 height 100 }");
    const KbBox3f title = boxOf(firstIn<KsText3>(dialog, "labelSep"));
    ASSERT_FALSE(title.isEmpty());
    EXPECT_NEAR(title.getMin()[0], 12, 1.5);
    EXPECT_NEAR(title.getCenter()[1], -12, 1e-2);
    EXPECT_GT(title.getMin()[2], 1);
    EXPECT_LT(title.getMin()[2], 1.5);
    EXPECT_EQ(firstIn<KsText3>(dialog, "labelSep")->parts, KsText3::FRONT);
}

TEST_F(PanelPlace, aChangedLabelIsShownInItsPlaceAtOnce)
{
    KsTopLevelDialog* dialog = add("TopLevelDialog { label \"a\" width 200 height 100 }");
    dialog->label = "two\\nlines";
    auto* text = firstIn<KsText3>(dialog, "labelSep");
    EXPECT_EQ(text->string.getNum(), 2);
    EXPECT_EQ(text->string[1], "lines");
    EXPECT_NEAR(boxOf(text).getCenter()[1], -12, 1e-2);
}

TEST_F(PanelPlace, thePartsStandInTheirOrder)
{
    KsTopLevelDialog* dialog = add("TopLevelDialog { label \"a\" }");
    auto* geometry = ksCast<KsGroup>(dialog->getAnyPart("geomSwitch", false));
    ASSERT_NE(geometry, nullptr);
    ASSERT_EQ(geometry->getNumChildren(), 5);
    EXPECT_NE(ksCast<KsTranslation>(geometry->getChild(0)), nullptr);
    EXPECT_EQ(geometry->getChild(1), dialog->getAnyPart("frameSep", false));
    EXPECT_NE(ksCast<KsTransform>(geometry->getChild(2)), nullptr);
    EXPECT_EQ(geometry->getChild(3), dialog->getAnyPart("labelSep", false));
    EXPECT_EQ(geometry->getChild(4), dialog->getAnyPart("minSep", false));
    const auto firstOf = [&](const char* part) {
        return ksCast<KsGroup>(dialog->getAnyPart(part, false))->getChild(0);
    };
    EXPECT_NE(ksCast<KsScale>(firstOf("frameSep")), nullptr);
    EXPECT_NE(ksCast<KsTranslation>(firstOf("labelSep")), nullptr);
    EXPECT_NE(ksCast<KsTranslation>(firstOf("minSep")), nullptr);
    auto* buttonScale = firstIn<KsScale>(dialog, "minSep");
    ASSERT_NE(buttonScale, nullptr);
    EXPECT_TRUE(isNear(buttonScale->scaleFactor, KbVec3f(14, 14, 1)));
}

TEST_F(PanelPlace, aMovedPanelTakesItsChildrenAlong)
{
    KsTopLevelDialog* dialog = add("TopLevelDialog { " + twoBoxes + "}");
    const KbBox3f frameBefore = boxOf(dialog, "frameSep");
    const KbBox3f childBefore = boxOf(child(dialog, "b"));
    dialog->position3D = KbVec3f(100, 200, 7);
    const KbVec3f shift(100, -200, 7);
    EXPECT_TRUE(isNear(boxOf(dialog, "frameSep").getMin(), frameBefore.getMin() + shift));
    EXPECT_TRUE(isNear(boxOf(child(dialog, "b")).getMin(), childBefore.getMin() + shift));
}

TEST_F(PanelPlace, aMoveOfAPanelThatHidesItsChildrenDoesNotMoveThem)
{
    KsTopLevelDialog* dialog = add("TopLevelDialog { hideChildren TRUE " + twoBoxes + "}");
    const KbBox3f frameBefore = boxOf(dialog, "frameSep");
    const KbBox3f childBefore = boxOf(child(dialog, "b"));
    dialog->position3D = KbVec3f(100, 200, 7);
    EXPECT_TRUE(
        isNear(boxOf(dialog, "frameSep").getMin(), frameBefore.getMin() + KbVec3f(100, -200, 7)));
    EXPECT_TRUE(boxOf(child(dialog, "b")) == childBefore);
}

TEST_F(PanelPlace, aMoveComputesNoSizes)
{
    KsTopLevelDialog* dialog = add("TopLevelDialog { " + twoBoxes + "}");
    auto* box = child(dialog, "a");
    Watch width(&box->width), height(&box->height), own(&dialog->width);
    dialog->position3D = KbVec3f(1, 2, 3);
    EXPECT_EQ(width.calls + height.calls + own.calls, 0);
}

TEST_F(PanelPlace, thePositionOfTheWindowDoesNotMoveThePanel)
{
    KsTopLevelDialog* dialog = add("TopLevelDialog { " + twoBoxes + "}");
    const KbBox3f before = boxOf(dialog);
    dialog->position = KbVec2i32(50, 60);
    EXPECT_TRUE(boxOf(dialog) == before);
}

TEST_F(PanelPlace, anAddedChildMakesAPanelGrowThatIsResizedByItsChildren)
{
    KsTopLevelDialog* dialog =
        add("TopLevelDialog { windowResizedByChildren TRUE " + twoBoxes + "}");
    const KbVec3f before = dialog->getTopLevelSize();
    auto* wide = new KsDialogCheckBox;
    wide->label = "a label that is much longer than the others";
    dialog->addChild(wide);
    const KbVec3f after = dialog->getTopLevelSize();
    EXPECT_GT(after[0], before[0] + 100);
    EXPECT_NEAR(after[1] - before[1], static_cast<float>(wide->height), 1e-3);
    const KbBox3f frame = boxOf(dialog, "frameSep");
    const KbBox3f box = boxOf(wide);
    EXPECT_LE(box.getMax()[0], frame.getMax()[0] - 4 + 1e-2);
    EXPECT_NEAR(box.getMin()[1], frame.getMin()[1] + 4, 1e-2);
    // Title and button go along.
    EXPECT_NEAR(boxOf(dialog, "minSep").getCenter()[0], frame.getMax()[0] - 12, 1e-2);
    dialog->removeChild(wide);
    EXPECT_TRUE(isNear(dialog->getTopLevelSize(), before));
}

TEST_F(PanelPlace, anAddedChildLeavesTheSizeOfOtherPanels)
{
    KsTopLevelDialog* dialog = add("TopLevelDialog { " + twoBoxes + "}");
    const KbVec3f before = dialog->getTopLevelSize();
    dialog->addChild(new KsDialogCheckBox);
    EXPECT_TRUE(isNear(dialog->getTopLevelSize(), before));
}

TEST_F(PanelPlace, aChildThatWantsMoreRoomGetsItAtTheNextLayout)
{
    KsTopLevelDialog* dialog = add("TopLevelDialog { windowResizedByChildren TRUE RowDialog { "
                                   "auditorID \"rows\" " +
                                   twoBoxes + "} }");
    const KbVec3f before = dialog->getTopLevelSize();
    auto* rows = child<KsRowDialog>(dialog, "rows");
    rows->rowSpacing = 40;
    EXPECT_TRUE(isNear(dialog->getTopLevelSize(), before));
    rows->updateAfterSceneGraphChange();
    EXPECT_NEAR(dialog->getTopLevelSize()[1], before[1] + 40, 1e-3);
    EXPECT_NEAR(boxOf(child(dialog, "b")).getMax()[1], boxOf(child(dialog, "a")).getMin()[1] - 40,
                1e-2);
    EXPECT_NEAR(boxOf(rows).getMin()[1], boxOf(dialog, "frameSep").getMin()[1] + 4, 1e-2);
}

TEST_F(PanelPlace, aPanelIsNotResizedWithItsWindow)
{
    const auto dialog = read<>("TopLevelDialog { " + twoBoxes + "}");
    scene->addChild(dialog.get());
    dialog->buildDialog();
    frame();
    const KbVec3f before = dialog->getTopLevelSize();
    const KbBox3f box = boxOf(child(dialog.get(), "a"));
    dialog->show();
    dialog->getBaseWidget()->resize(700, 500);
    QCoreApplication::processEvents();
    dialog->position3D = KbVec3f(0, 0, 0);
    EXPECT_TRUE(isNear(dialog->getTopLevelSize(), before));
    EXPECT_TRUE(boxOf(child(dialog.get(), "a")) == box);
    delete dialog->getBaseWidget();
}

TEST_F(PanelPlace, aPanelAddedLaterIsThereInTheNextPicture)
{
    KsOffscreenRenderer renderer(viewport);
    renderer.setSamples(1);
    ASSERT_TRUE(renderer.render(scene.get()));
    const std::vector<std::uint8_t> empty = renderer.getImage();
    const auto dialog = read<>("TopLevelDialog { position3D 100 100 0 " + twoBoxes + "}");
    scene->addChild(dialog.get());
    EXPECT_FALSE(renderer.isUpToDate());
    ASSERT_TRUE(renderer.render(scene.get()));
    EXPECT_TRUE(dialog->isBuilt3D());
    EXPECT_NE(renderer.getImage(), empty);
    EXPECT_TRUE(click(middleOf(child(dialog.get(), "a"), "stateSep")));
    EXPECT_TRUE(child(dialog.get(), "a")->state);
    const long frames = renderer.getNumFrames();
    ASSERT_TRUE(renderer.render(scene.get()));
    EXPECT_EQ(renderer.getNumFrames(), frames + 1);
    ASSERT_TRUE(renderer.render(scene.get()));
    EXPECT_EQ(renderer.getNumFrames(), frames + 1) << "nothing changed";
    renderer.releaseScene();
}
