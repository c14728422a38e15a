// The scroll bars of an edit text in a scene, and the view that follows what is typed.

#include "EditText.h"

#include <arborium/base/KsLimits.h>
#include <arborium/nodes/KsTransform.h>
#include <arborium/render/KsOffscreenRenderer.h>

// The scroll bars.

TEST(EditText3D, theThumbsSizeIsThatOfWhatIsSeen)
{
    ShownEdit shown("wrapLine FALSE " + withText(manyLines(20) + "\n" + std::string(90, 'w')),
                    Stage::Scene);
    const KbVec3f text = shown.textBox().getSize();
    const float T = shown.trackV()[1], C = T / text[1] * (shown.height() - 14);
    EXPECT_NEAR(shown.thumbSizeV()[1], C, 1e-2);
    EXPECT_NEAR(shown.first<KsTranslation>("cursorVSep")->translation.getValue()[1], 0, 1e-6);
    const float U = shown.trackH()[0];
    const float e = shown.width() - 6 - shown.labelZone();
    EXPECT_NEAR(shown.thumbSizeH()[0], U / text[0] * (e - 8 - 14), 1e-2);
    EXPECT_TRUE(shown.scroll() == KbVec3f(0, 0, 0));
}

TEST(EditText3D, anArrowMovesTheTextByALineWhenItIsLetGo)
{
    ShownEdit shown(withText(manyLines(30)), Stage::Scene);
    const float B = shown.textBox().getSize()[1];
    const float T = shown.trackV()[1], C = shown.thumbSizeV()[1];
    const float s = B * (T - C) / (30 * (B - (shown.height() - 14)));
    const KbVec2f down = shown.placeOf(shown.edit, "downSep");
    shown.press(down);
    EXPECT_EQ(Stage::shown(shown.edit, "downSwitch"), 1);
    EXPECT_EQ(shown.thumbV()[1], 0);
    shown.release(down);
    EXPECT_EQ(Stage::shown(shown.edit, "downSwitch"), 0);
    EXPECT_NEAR(shown.thumbV()[1], -s, 1e-3);
    EXPECT_NEAR(shown.scroll()[1], s * B / (T - 8), 1e-2);
    shown.click(down);
    EXPECT_NEAR(shown.thumbV()[1], -2 * s, 1e-3);
    shown.clickPart(shown.edit, "upSep");
    EXPECT_NEAR(shown.thumbV()[1], -s, 1e-3);
    EXPECT_EQ(Stage::shown(shown.edit, "upSwitch"), 0);
    for (int i = 0; i < 3; ++i) shown.clickPart(shown.edit, "upSep");
    EXPECT_EQ(shown.thumbV()[1], 0);
    for (int i = 0; i < 60; ++i) shown.click(down);
    EXPECT_NEAR(shown.thumbV()[1], C - T, 1e-3) << "and no further";
    EXPECT_TRUE(shown.listener.texts.empty() || shown.edit->trigOnEnter);
}

TEST(EditText3D, arrowsToTheSidesShowThePressAndScrollNothing)
{
    ShownEdit shown("wrapLine FALSE " + withText(std::string(200, 'w')), Stage::Scene);
    for (const auto& [sep, part] :
         {std::pair("leftSep", "leftSwitch"), std::pair("rightSep", "rightSwitch")}) {
        const KbVec2f at = shown.placeOf(shown.edit, sep);
        shown.press(at);
        EXPECT_EQ(Stage::shown(shown.edit, part), 1);
        shown.release(at);
        EXPECT_EQ(Stage::shown(shown.edit, part), 0);
    }
    EXPECT_TRUE(shown.thumbH() == KbVec3f(0, 0, 0));
    EXPECT_TRUE(shown.scroll() == KbVec3f(0, 0, 0));
}

TEST(EditText3D, aDraggedThumbMovesTheTextUpAndStopsAtTheEnds)
{
    ShownEdit shown(withText(manyLines(30)), Stage::Scene);
    const float B = shown.textBox().getSize()[1];
    const float T = shown.trackV()[1], C = shown.thumbSizeV()[1];
    const KbVec2f at = shown.placeOf(shown.edit, "cursorVSep");
    shown.press(at);
    shown.move(at - KbVec2f(0, 10));
    EXPECT_NEAR(shown.thumbV()[1], -10, 1e-2);
    EXPECT_NEAR(shown.scroll()[1], 10 * B / (T - 8), 0.1);
    shown.move(at - KbVec2f(30, 500));
    EXPECT_NEAR(shown.thumbV()[1], C - T, 1e-3);
    shown.move(at + KbVec2f(0, 500));
    EXPECT_EQ(shown.thumbV()[1], 0);
    shown.move(at - KbVec2f(0, 5));
    shown.release(at - KbVec2f(0, 5));
    EXPECT_NEAR(shown.thumbV()[1], -5, 1e-2);
    // The next drag begins where it stands.
    const KbVec2f there = shown.placeOf(shown.edit, "cursorVSep");
    EXPECT_NEAR(there[1], at[1] - 5, 1e-2);
    shown.press(there);
    shown.move(there - KbVec2f(0, 4));
    shown.release(there);
    EXPECT_NEAR(shown.thumbV()[1], -9, 1e-2);
}

TEST(EditText3D, aThumbIsDraggedSidewaysToo)
{
    ShownEdit shown("wrapLine FALSE " + withText(std::string(100, 'w')), Stage::Scene);
    const float t = shown.textBox().getSize()[0];
    const float U = shown.trackH()[0], D = shown.thumbSizeH()[0];
    const KbVec2f at = shown.placeOf(shown.edit, "cursorHSep");
    shown.press(at);
    shown.move(at + KbVec2f(12, 40));
    EXPECT_NEAR(shown.thumbH()[0], 12, 1e-2);
    EXPECT_NEAR(shown.scroll()[0], -12 * t / (U - 8), 0.1);
    EXPECT_EQ(shown.scroll()[1], 0);
    shown.move(at + KbVec2f(900, 0));
    EXPECT_NEAR(shown.thumbH()[0], U - D, 1e-2);
    shown.move(at - KbVec2f(900, 0));
    EXPECT_EQ(shown.thumbH()[0], 0);
    shown.release(at);
}

TEST(EditText3D, aDraggedThumbEndsTypingAndTellsAtEachMove)
{
    ShownEdit shown(withText(manyLines(30)), Stage::Scene);
    shown.startTyping();
    shown.type("x");
    const KbVec2f at = shown.placeOf(shown.edit, "cursorVSep");
    shown.press(at);
    EXPECT_TRUE(shown.isEditing()) << "the press alone does not";
    shown.move(at - KbVec2f(0, 1));
    EXPECT_FALSE(shown.isEditing());
    shown.move(at - KbVec2f(0, 2));
    shown.release(at);
    EXPECT_EQ(shown.listener.texts.size(), 2u);
    shown.type("y");
    EXPECT_EQ(shown.text(), manyLines(30) + "x");
    EXPECT_EQ(EditState::m_lastActive, nullptr);
}

TEST(EditText3D, theViewFollowsTheLineThatIsTypedOn)
{
    ShownEdit shown(withText(manyLines(30)), Stage::Scene);
    shown.startTyping();
    const auto lastLineIsSeen = [&] {
        const KbBox3f text = shown.textBox(), frame = shown.boxOf(shown.edit, "frameSep");
        return text.getMin()[1] > frame.getMin()[1] + 3 && text.getMin()[1] < frame.getMax()[1];
    };
    EXPECT_FALSE(lastLineIsSeen());
    shown.type("x");
    EXPECT_TRUE(lastLineIsSeen());
    EXPECT_LT(shown.thumbV()[1], 0);
    shown.type("\n\n\nxyz\n");
    EXPECT_TRUE(lastLineIsSeen());
    // Whoever drags the thumb away wants to see something else.
    const KbVec2f at = shown.placeOf(shown.edit, "cursorVSep");
    shown.press(at);
    shown.move(at + KbVec2f(0, 500));
    shown.release(at);
    EXPECT_FALSE(lastLineIsSeen());
    shown.startTyping();
    shown.type("x");
    EXPECT_FALSE(lastLineIsSeen());
    shown.type("y");
    EXPECT_TRUE(lastLineIsSeen());
    // Lines that go take the view along.
    for (int i = 0; i < 300; ++i) shown.key(KsKeyboardEvent::BACKSPACE);
    EXPECT_EQ(shown.text(), "");
    EXPECT_TRUE(lastLineIsSeen());
    EXPECT_NEAR(shown.scroll()[1], 0, 1e-3);
}

TEST(EditText3D, aLongLineThatIsNotWrappedIsFollowedToItsEnd)
{
    ShownEdit shown("wrapLine FALSE " + largeForm, Stage::Scene);
    shown.startTyping();
    for (int i = 0; i < 80; ++i) shown.type("w");
    const KbBox3f text = shown.textBox(), frame = shown.boxOf(shown.edit, "frameSep");
    EXPECT_GT(text.getSize()[0], frame.getSize()[0]);
    EXPECT_NEAR(text.getMax()[0], frame.getMax()[0] - 4, 0.5);
    EXPECT_GT(shown.thumbH()[0], 0);
    shown.type("\na");
    EXPECT_EQ(shown.scroll()[0], 0);
    EXPECT_EQ(shown.thumbH()[0], 0);
}

TEST(EditText3D, anEmptyTextHasFullThumbsAndNothingToScroll)
{
    ShownEdit shown("wrapLine FALSE " + largeForm, Stage::Scene);
    EXPECT_EQ(shown.thumbSizeV()[1], shown.trackV()[1]);
    EXPECT_EQ(shown.thumbSizeH()[0], shown.trackH()[0]);
    shown.clickPart(shown.edit, "downSep");
    const KbVec2f at = shown.placeOf(shown.edit, "cursorHSep");
    shown.press(at);
    shown.move(at + KbVec2f(40, 0));
    shown.release(at);
    EXPECT_TRUE(shown.scroll() == KbVec3f(0, 0, 0));
}

TEST(EditText3D, aPanelThatIsTurnedIsScrolledAlongItsOwnTrack)
{
    ShownEdit shown(withText(manyLines(30)), Stage::Scene);
    auto* scene = new KsSeparator;
    const KsRef<KsSeparator> hold(scene);
    auto* camera = new KsOrthographicCamera;
    camera->position = KbVec3f(0, 0, 500);
    camera->height = 1200;
    camera->nearDistance = 1;
    camera->farDistance = 1000;
    scene->addChild(camera);
    auto* turn = new KsTransform;
    turn->rotation = KbRotation(KbVec3f(0, 0, 1), 1.5707963f);
    scene->addChild(turn);
    scene->addChild(shown.dialog.get());
    const KbViewportRegion view(1200, 1200);
    KsGetBoundingBoxAction boxes(view);
    boxes.apply(scene);
    KsSearchAction search;
    search.setSearchingAll(true);
    search.setNode(shown.part("cursorVSep"));
    search.apply(scene);
    ASSERT_TRUE(search.getPath());
    boxes.apply(search.getPath());
    const KbVec3f middle = boxes.getBoundingBox().getCenter();
    const KbVec2f at(middle[0] + 600, middle[1] + 600);
    KsHandleEventAction events(view);
    const auto send = [&](const KsEvent& event) {
        events.setEvent(&event);
        events.apply(scene);
        events.setEvent(nullptr);
    };
    send(KsMouseButtonEvent(KsMouseButtonEvent::BUTTON1, KsButtonEvent::DOWN, at));
    // What is down in the panel is to the right on the screen.
    send(KsLocation2Event(at + KbVec2f(10, 25)));
    EXPECT_NEAR(shown.thumbV()[1], -10, 0.05);
    send(KsMouseButtonEvent(KsMouseButtonEvent::BUTTON1, KsButtonEvent::UP, at));
    search.reset();
}

// The view while the text and the form change.

namespace {

/// What is true of thumb and text at any time.
void expectThumbsOnTheirTracks(const ShownEdit& shown)
{
    EXPECT_LE(shown.thumbV()[1], 0);
    EXPECT_GE(shown.thumbV()[1], shown.thumbSizeV()[1] - shown.trackV()[1] - 1e-3);
    EXPECT_GE(shown.thumbH()[0], 0);
    if (shown.edit->wrapLine) return;
    EXPECT_LE(shown.thumbH()[0], shown.trackH()[0] - shown.thumbSizeH()[0] + 1e-3);
}

} // namespace

TEST(EditText3D, aThumbStaysOnItsTrackWhileTheTextGetsShorter)
{
    ShownEdit shown(largeForm, Stage::Scene);
    shown.startTyping();
    for (int i = 0; i < 30; ++i) shown.type("ab\n");
    expectThumbsOnTheirTracks(shown);
    EXPECT_LT(shown.thumbV()[1], -20);
    while (!shown.text().empty()) {
        shown.key(KsKeyboardEvent::BACKSPACE);
        expectThumbsOnTheirTracks(shown);
        if (shown.thumbSizeV()[1] < shown.trackV()[1]) continue;
        EXPECT_NEAR(shown.scroll()[1], 0, 1e-3) << "all of it is seen";
    }
}

TEST(EditText3D, aThumbStaysOnItsTrackWhileTheLineGetsShorter)
{
    ShownEdit shown("wrapLine FALSE " + largeForm, Stage::Scene);
    shown.startTyping();
    for (int i = 0; i < 60; ++i) shown.type("w");
    EXPECT_GT(shown.thumbH()[0], 20);
    while (!shown.text().empty()) {
        shown.key(KsKeyboardEvent::BACKSPACE);
        expectThumbsOnTheirTracks(shown);
        if (shown.text().empty()) break;
        const KbBox3f text = shown.textBox(), frame = shown.boxOf(shown.edit, "frameSep");
        EXPECT_GT(text.getMax()[0], frame.getMin()[0] + 4) << "the end is seen";
        EXPECT_LT(text.getMax()[0], frame.getMax()[0] - 3);
    }
    EXPECT_NEAR(shown.scroll()[0], 0, 1e-3);
}

TEST(EditText3D, aShorterTextOfTheApplicationBringsTheThumbBackAtTheNextLine)
{
    ShownEdit shown(largeForm, Stage::Scene);
    shown.startTyping();
    for (int i = 0; i < 30; ++i) shown.type("ab\n");
    shown.edit->editText = "one\ntwo\nthree";
    shown.type("\n");
    expectThumbsOnTheirTracks(shown);
    EXPECT_EQ(shown.thumbSizeV()[1], shown.trackV()[1]);
    EXPECT_NEAR(shown.scroll()[1], 0, 1e-3);
}

TEST(EditText3D, withoutWrappingTheUprightBarFollowsTheApplicationAtTheNextLineToo)
{
    ShownEdit shown("wrapLine FALSE " + largeForm, Stage::Scene);
    const float full = shown.trackV()[1];
    shown.edit->editText = manyLines(30).c_str();
    shown.startTyping();
    shown.type("x");
    EXPECT_EQ(shown.thumbSizeV()[1], full) << "the same line";
    shown.type("\n");
    EXPECT_LT(shown.thumbSizeV()[1], full / 2);
}

TEST(EditText3D, anotherFormBeginsAtTheTopAndTypingGoesOn)
{
    ShownEdit shown(withText(manyLines(30)), Stage::Scene);
    shown.startTyping();
    shown.type("x");
    EXPECT_LT(shown.thumbV()[1], 0);
    shown.edit->wrapLine = false;
    EXPECT_EQ(Stage::shown(shown.edit, "scrollHSwitch"), KsSwitch::ALL);
    EXPECT_TRUE(shown.thumbV() == KbVec3f(0, 0, 0));
    EXPECT_TRUE(shown.scroll() == KbVec3f(0, 0, 0));
    EXPECT_TRUE(shown.isEditing());
    shown.type("y");
    EXPECT_EQ(shown.text(), manyLines(30) + "xy");
    EXPECT_EQ(shown.shownLines().back(), "line 29xy");
    EXPECT_LT(shown.thumbV()[1], 0) << "the view follows again";
    shown.edit->multiLine = false;
    EXPECT_EQ(Stage::shown(shown.edit, "scrollVSwitch"), KsSwitch::NONE);
    EXPECT_TRUE(shown.first<KsScale>("frameSep")->scaleFactor.getValue()[1] == 22);
    shown.edit->multiLine = true;
    EXPECT_EQ(Stage::shown(shown.edit, "scrollVSwitch"), KsSwitch::ALL);
    expectThumbsOnTheirTracks(shown);
}

TEST(EditText3D, aThumbThatFillsItsTrackCannotBeDragged)
{
    ShownEdit shown(withText("one\ntwo"), Stage::Scene);
    const KbVec2f at = shown.placeOf(shown.edit, "cursorVSep");
    shown.press(at);
    for (const float y : {-30.0f, 30.0f}) {
        shown.move(at + KbVec2f(0, y));
        EXPECT_TRUE(shown.thumbV() == KbVec3f(0, 0, 0));
        EXPECT_TRUE(shown.scroll() == KbVec3f(0, 0, 0));
    }
    shown.release(at);
}

TEST(EditText3D, aShortLastLineBehindALongOneIsSeenInAFrameOfOneLine)
{
    ShownEdit shown("width 200 fixedWidth TRUE", Stage::Scene);
    shown.startTyping();
    for (int i = 0; i < 80; ++i) shown.type("w");
    shown.type("\n");
    shown.type("b");
    EXPECT_EQ(shown.shownLines().size(), 2u);
    EXPECT_FLOAT_EQ(shown.textPlace()[0], static_cast<float>(static_cast<int>(
                                              4 - (shown.width() - 6 - shown.labelZone()) / 2)));
}

TEST(EditText3D, whatWasTypedInTheWindowIsTypedOnInTheScene)
{
    ShownEdit shown(largeForm, Stage::Both);
    QTest::keyClicks(shown.lines(), "one");
    QTest::keyClick(shown.lines(), Qt::Key_Return);
    QTest::keyClicks(shown.lines(), "two");
    EXPECT_EQ(shown.shownLines(), (Strings{"one", "two"}));
    shown.startTyping();
    shown.type("x");
    EXPECT_EQ(shown.shownLines(), (Strings{"one", "twox"}));
    EXPECT_EQ(shown.text(), "one\ntwox");
    EXPECT_EQ(shown.lines()->toPlainText(), "one\ntwox");
    QTest::keyClick(shown.lines(), Qt::Key_End, Qt::ControlModifier);
    QTest::keyClick(shown.lines(), Qt::Key_Return);
    shown.type("y");
    EXPECT_EQ(shown.shownLines(), (Strings{"one", "twox", "y"}));
    for (int i = 0; i < 3; ++i) shown.key(KsKeyboardEvent::BACKSPACE);
    EXPECT_EQ(shown.shownLines(), (Strings{"one", "two"}));
    EXPECT_EQ(shown.lines()->toPlainText(), "one\ntwo");
}

TEST(EditText3D, textOutsideTheFrameIsNotSeen)
{
    ShownEdit shown("label \"L\" wrapLine FALSE " + largeForm, Stage::Scene);
    const auto picture = [&shown] {
        shown.draw();
        KsOffscreenRenderer renderer(KbViewportRegion(Stage::viewWidth, Stage::viewHeight));
        EXPECT_TRUE(renderer.render(shown.scene()));
        const QImage image(renderer.getImage().data(), renderer.getWidth(), renderer.getHeight(),
                           QImage::Format_RGBA8888);
        const QImage copy = image.convertToFormat(QImage::Format_RGB32);
        renderer.releaseScene();
        return copy;
    };
    const QImage plain = picture();
    // Long to the right, and far below.
    std::string text;
    for (int i = 0; i < 30; ++i) text += std::string(90, 'w') + "\n";
    shown.edit->editText = text.c_str();
    const QImage written = picture();
    const KbBox3f box = shown.boxOf(shown.edit, "frameSep");
    const QRect frame(
        QPoint(static_cast<int>(box.getMin()[0]), static_cast<int>(-box.getMax()[1])),
        QPoint(static_cast<int>(box.getMax()[0]), static_cast<int>(-box.getMin()[1])));
    QRect inside;
    int outside = 0;
    ASSERT_EQ(plain.size(), written.size());
    for (int y = 0; y < plain.height(); ++y)
        for (int x = 0; x < plain.width(); ++x) {
            if (plain.pixel(x, y) == written.pixel(x, y)) continue;
            if (frame.contains(x, y))
                inside |= QRect(x, y, 1, 1);
            else
                ++outside;
        }
    EXPECT_EQ(outside, 0);
    EXPECT_GT(inside.width(), frame.width() - 16);
    EXPECT_GT(inside.height(), frame.height() - 24);
    EXPECT_TRUE(frame.adjusted(3, 3, -3, -3).contains(inside)) << "and a margin of four is kept";
}

TEST(EditText3D, aLongTextWithoutABreakAtAWidthOfOneIsBorne)
{
    ShownEdit shown("multiLine TRUE fixedWidth TRUE width 1 fixedHeight TRUE height 60",
                    Stage::Scene);
    shown.edit->editText = std::string(1u << 20, 'w').c_str();
    EXPECT_LE(shown.shownLines().size(), static_cast<std::size_t>(KsLimits::current().textLines));
    shown.edit->insertCharTo3DText('x');
    EXPECT_EQ(shown.edit->editText.getValue().getLength(), (1 << 20) + 1);
    EXPECT_TRUE(shown.draw().getMin().isFinite());
}
