// What a click in a viewer meets, as a listener in the scene is told.

#include "ViewerScene.h"

#include <arborium/actions/KsRayPickAction.h>
#include <arborium/nodes/KsEventCallback.h>

#include <string>
#include <vector>

namespace {

using Names = std::vector<std::string>;

class ViewerPick : public ViewerScene {
protected:
    void SetUp() override
    {
        ViewerScene::SetUp();
        auto* callback = new KsEventCallback;
        callback->addEventCallback(KsMouseButtonEvent::getClassTypeId(), &hear, this);
        scene->addChild(callback);
    }
    /// The name of what a real click meets; empty for nothing.
    std::string click(double x, double y)
    {
        met = "no event";
        press(x, y);
        const std::string result = met;
        release(x, y);
        return result;
    }
    /// All that lies under the point of the click, the nearest first.
    Names clickThrough(double x, double y)
    {
        click(x, y);
        return all;
    }

private:
    static std::string nameOf(const KsPickedPoint* hit)
    {
        return hit ? hit->getPath()->getTail()->getName().getString() : "";
    }
    static void hear(void* data, KsEventCallback* node)
    {
        auto* self = static_cast<ViewerPick*>(data);
        if (!KsMouseButtonEvent::isButtonPress(node->getEvent(), KsMouseButtonEvent::BUTTON1))
            return;
        self->met = nameOf(node->getPickedPoint());
        KsRayPickAction pick(node->getAction()->getViewportRegion());
        pick.setPickAll(true);
        pick.setPoint(node->getEvent()->getPosition());
        pick.apply(self->viewer->getRoot());
        self->all.clear();
        for (int i = 0; i < pick.getPickedPointsListLength(); ++i)
            self->all.push_back(nameOf(pick.getPickedPoint(i)));
    }
    std::string met;
    Names all;
};

} // namespace

TEST_F(ViewerPick, meetsTheNearestOfSeveral)
{
    add("Separator { Translation { translation 0 0 -6 } DEF far Cube { width 6 height 6 } }\n"
        "DEF near Sphere { }\n"
        "Separator { Translation { translation 1 0 -2 } DEF between Cube { width 3 height 1 } }\n");
    show();
    EXPECT_EQ(click(0, 0), "near");
    EXPECT_EQ(click(2, 0), "between");
    EXPECT_EQ(click(2, 2), "far");
    EXPECT_EQ(click(4, 4), "");
    // Front and back of each.
    EXPECT_EQ(clickThrough(0, 0), (Names{"near", "near", "between", "between", "far", "far"}));
    EXPECT_EQ(clickThrough(2, 0), (Names{"between", "between", "far", "far"}));
    EXPECT_EQ(clickThrough(4, 4), Names());
}

TEST_F(ViewerPick, goesThroughWhatAPlaneCutAway)
{
    add("Separator { ClipPlane { plane 1 0 0 0 } DEF half Sphere { radius 2 } }\n"
        "Translation { translation 0 0 -4 } DEF behind Cube { width 8 height 8 }\n");
    show();
    EXPECT_EQ(click(1, 0), "half");
    EXPECT_EQ(click(-1, 0), "behind") << "through the half that is not there";
    EXPECT_EQ(clickThrough(-1, 0), (Names{"behind", "behind"}));
}

TEST_F(ViewerPick, meetsTheInsideOfWhatIsCutOpen)
{
    add("ClipPlane { plane 0 0 -1 0 } DEF bowl Sphere { radius 2 }\n"); // the front half is gone
    show();
    EXPECT_EQ(clickThrough(0, 0), Names{"bowl"});
}

TEST_F(ViewerPick, meetsALineWithinAFewPixels)
{
    add("Coordinate3 { point [ -4 1 0, 4 1 0, 0 -4 0 ] }\n"
        "DEF line IndexedLineSet { coordIndex [ 0, 1, 2, -1 ] }\n");
    show();
    EXPECT_EQ(click(0, 1), "line");
    EXPECT_EQ(click(0, 1.2), "line") << "four pixels beside";
    EXPECT_EQ(click(0, 1.4), "") << "eight pixels beside";
    EXPECT_EQ(click(2, -1.5), "line");
    EXPECT_EQ(click(-2, -1.5), "") << "it is not closed";
    camera->height = 1.0f; // now a pixel is a two hundredth
    camera->position = KbVec3f(0, 1, 20);
    press(0, 0); // the middle of the window
    release(0, 0);
    EXPECT_EQ(click(0, 0), "line");
    EXPECT_EQ(click(0, 1), "") << "twenty pixels, a tenth of a unit";
}

TEST_F(ViewerPick, aLineInFrontOfAFaceIsMetBeforeIt)
{
    add("DEF wall Cube { width 6 height 6 depth 1 }\n"
        "Coordinate3 { point [ -2 0 0.6, 2 0 0.6 ] }\n"
        "DEF line IndexedLineSet { coordIndex [ 0, 1 ] }\n");
    show();
    EXPECT_EQ(click(0, 0), "line");
    EXPECT_EQ(click(0, 2), "wall");
}

TEST_F(ViewerPick, meetsTextInTheBoxesOfItsLines)
{
    add("Font { size 2 }\nTranslation { translation -4 1 0 }\n"
        "DEF words Text3 { string [ \"wide line\", \"i\" ] }\n");
    show();
    EXPECT_EQ(click(-3.8, 2.2), "words") << "above the letters, in the line";
    EXPECT_EQ(click(2, 1.5), "words");
    EXPECT_EQ(click(-3.8, -1), "words") << "the second line";
    EXPECT_EQ(click(2, -1), "") << "beside the short line";
    EXPECT_EQ(click(-4.5, 1.5), "");
}

TEST_F(ViewerPick, meetsBoxesWhereTheStyleSaysSo)
{
    add("Separator { PickStyle { style BOUNDING_BOX } DEF boxed Cone { bottomRadius 2 height 4 } "
        "}\n"
        "Separator { PickStyle { style UNPICKABLE } Translation { translation 0 0 4 }\n"
        "            Cube { width 9 height 9 } }\n"
        "Separator { Translation { translation 0 0 -4 } DEF behind Cube { width 8 height 8 } }\n");
    show();
    EXPECT_EQ(click(0, 0), "boxed");
    EXPECT_EQ(click(1.8, 1.8), "boxed") << "beside the cone, in its box";
    EXPECT_EQ(click(2.5, 0), "behind");
}

TEST_F(ViewerPick, followsSwitchesAndTransformsThatChangeBetweenClicks)
{
    add("DEF choice Switch { whichChild 0 DEF first Cube { } DEF second Sphere { } }\n"
        "DEF shift Translation { translation 3 0 0 } DEF moved Cube { }\n");
    show();
    EXPECT_EQ(click(0, 0), "first");
    KsNode::getByName("choice")->set("whichChild 1");
    EXPECT_EQ(click(0, 0), "second");
    KsNode::getByName("choice")->set("whichChild -1");
    EXPECT_EQ(click(0, 0), "");
    EXPECT_EQ(click(3, 0), "moved");
    KsNode::getByName("shift")->set("translation -3 0 0");
    EXPECT_EQ(click(3, 0), "");
    EXPECT_EQ(click(-3, 0), "moved");
}
