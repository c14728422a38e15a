// An edit text in a scene: real presses where it is drawn, real keys.

#include "EditText.h"

#include <arborium/actions/KsRayPickAction.h>
#include <arborium/base/KsLimits.h>
#include <arborium/nodes/KsClipPlane.h>
#include <arborium/nodes/KsTransform.h>

namespace {

/// What the widths of lines are measured with.
float lineWidth(const ShownEdit& shown, const std::string& text)
{
    const KsRef<KsSeparator> separator(new KsSeparator);
    const KsRef<KsText3> line(new KsText3);
    line->string = text.c_str();
    separator->addChild(shown.part("textProp"));
    separator->addChild(line.get());
    KsGetBoundingBoxAction action(KbViewportRegion(800, 600));
    action.apply(separator.get());
    return action.getBoundingBox().getSize()[0];
}

/// The width at which lines are wrapped.
float wrapWidth(const ShownEdit& shown) { return shown.width() - 6 - shown.labelZone() - 14 - 8; }

} // namespace

// The form.

TEST(EditText3D, aFrameOfOneLineFillsTheControlsZone)
{
    for (const bool withLabel : {true, false}) {
        ShownEdit shown(std::string("label \"Title\" width 300 labelVisibility ") +
                            (withLabel ? "TRUE" : "FALSE"),
                        Stage::Scene);
        const float w = shown.width() - 6 - shown.labelZone();
        EXPECT_TRUE(shown.first<KsTranslation>("frameSep")->translation.getValue() ==
                    KbVec3f((shown.width() - 6 - w) / 2, 0, 0));
        EXPECT_TRUE(shown.first<KsScale>("frameSep")->scaleFactor.getValue() == KbVec3f(w, 22, 1));
        EXPECT_EQ(Stage::shown(shown.edit, "labelSwitch"),
                  withLabel ? KsSwitch::ALL : KsSwitch::NONE);
        EXPECT_EQ(Stage::shown(shown.edit, "frameSwitch"), 0);
        EXPECT_EQ(Stage::shown(shown.edit, "scrollVSwitch"), KsSwitch::NONE);
        EXPECT_EQ(Stage::shown(shown.edit, "scrollHSwitch"), KsSwitch::NONE);
    }
}

TEST(EditText3D, manyLinesLeaveRoomForTheScrollBars)
{
    ShownEdit shown("label \"Title\" wrapLine FALSE " + largeForm, Stage::Scene);
    const float w = shown.width() - 6 - shown.labelZone(), h = shown.height() - 6;
    EXPECT_EQ(shown.height(), 100);
    EXPECT_TRUE(shown.first<KsTranslation>("frameSep")->translation.getValue() ==
                KbVec3f((shown.width() - 6 - w - 14) / 2, 7, 0));
    EXPECT_TRUE(shown.first<KsScale>("frameSep")->scaleFactor.getValue() ==
                KbVec3f(w - 14, h - 14, 1));
    EXPECT_EQ(Stage::shown(shown.edit, "scrollVSwitch"), KsSwitch::ALL);
    EXPECT_EQ(Stage::shown(shown.edit, "scrollHSwitch"), KsSwitch::ALL);
    // The bars, their buttons and what lies between them.
    const auto place = [&](const char* part) {
        return shown.first<KsTranslation>(part)->translation.getValue();
    };
    const float x = (shown.width() - 20) / 2, y = (h - 14) / 2;
    EXPECT_TRUE(place("upSep") == KbVec3f(x, y, 0));
    EXPECT_TRUE(place("downSep") == KbVec3f(x, -y + 14, 0));
    EXPECT_TRUE(place("scrollVSep") == KbVec3f(x, 7, 0));
    EXPECT_TRUE(shown.trackV() == KbVec3f(14, h - 28 - 14, 1));
    const float cx = place("frameSep")[0], fw = w - 14 - 14;
    EXPECT_TRUE(place("leftSep") == KbVec3f(cx - fw / 2, -y, 0));
    EXPECT_TRUE(place("rightSep") == KbVec3f(cx + fw / 2, -y, 0));
    EXPECT_TRUE(place("scrollHSep") == KbVec3f(cx, -y, 0));
    EXPECT_TRUE(shown.trackH() == KbVec3f(fw - 14, 14, 1));
    EXPECT_TRUE(shown.first<KsScale>("upSep")->scaleFactor.getValue() == KbVec3f(14, 14, 1));
    EXPECT_EQ(shown.first<KsScale>("upSep"), shown.first<KsScale>("rightSep")) << "one for all";
    // Wrapped, the bar below is gone and the other one has its room.
    shown.edit->wrapLine = true;
    EXPECT_EQ(Stage::shown(shown.edit, "scrollHSwitch"), KsSwitch::NONE);
    EXPECT_TRUE(shown.first<KsScale>("frameSep")->scaleFactor.getValue() == KbVec3f(w - 14, h, 1));
    EXPECT_TRUE(place("downSep") == KbVec3f(x, -y, 0));
    EXPECT_TRUE(shown.trackV() == KbVec3f(14, h - 28, 1));
}

TEST(EditText3D, itsBarsAndFrameTouchButDoNotOverlap)
{
    ShownEdit shown("label \"Title\" wrapLine FALSE " + largeForm, Stage::Scene);
    shown.draw();
    const KbBox3f frame = shown.boxOf(shown.edit, "frameSep");
    const KbBox3f up = shown.boxOf(shown.edit, "upSep"), down = shown.boxOf(shown.edit, "downSep");
    const KbBox3f track = shown.boxOf(shown.edit, "scrollVBack");
    const KbBox3f left = shown.boxOf(shown.edit, "leftSep");
    EXPECT_NEAR(frame.getMax()[0], up.getMin()[0], 0.6);
    EXPECT_NEAR(frame.getMax()[1], up.getMax()[1], 1e-3);
    EXPECT_NEAR(track.getMax()[1], up.getMin()[1], 1e-3);
    EXPECT_NEAR(track.getMin()[1], down.getMax()[1], 1e-3);
    EXPECT_NEAR(down.getMin()[1], frame.getMin()[1], 1e-3);
    EXPECT_NEAR(left.getMax()[1], frame.getMin()[1], 1e-3);
    EXPECT_NEAR(left.getMin()[0], frame.getMin()[0], 1e-3);
}

TEST(EditText3D, theTextIsFrontFacesOnlyInTheOrderOfItsNodes)
{
    ShownEdit shown("", Stage::Scene);
    const KsGroup* text = shown.part("textSep");
    for (int i = 0; i < 4; ++i) EXPECT_TRUE(ksCast<KsClipPlane>(text->getChild(i))) << i;
    EXPECT_TRUE(ksCast<KsTranslation>(text->getChild(4)));
    EXPECT_TRUE(ksCast<KsTranslation>(text->getChild(5)));
    EXPECT_EQ(text->getChild(6), shown.part("textProp"));
    EXPECT_EQ(text->getChild(7), shown.text3D());
    EXPECT_EQ(text->getNumChildren(), 8);
    EXPECT_EQ(shown.text3D()->parts.getValue(), KsText3::FRONT);
    const float a = -shown.width() / 2 + 3 + shown.labelZone() / 2 + 4;
    const auto plane = [&](int i) {
        return static_cast<KsClipPlane*>(text->getChild(i))->plane.getValue();
    };
    EXPECT_TRUE(plane(0) == KbPlane(KbVec3f(1, 0, 0), a));
    EXPECT_TRUE(plane(1) == KbPlane(KbVec3f(-1, 0, 0), a));
    EXPECT_TRUE(plane(2) == KbPlane(KbVec3f(0, 1, 0), -7));
    EXPECT_TRUE(plane(3) == KbPlane(KbVec3f(0, -1, 0), -7));
}

TEST(EditText3D, shortTextBeginsAtTheLeftAndLongTextEndsAtTheRight)
{
    ShownEdit shown("width 120 fixedWidth TRUE editText \"short\"", Stage::Scene);
    const float e = shown.width() - 6 - shown.labelZone();
    EXPECT_EQ(shown.textPlace()[0], static_cast<float>(static_cast<int>(4 - e / 2)));
    const std::string text = "a text that is a good deal longer than its frame";
    shown.edit->editText = text.c_str();
    const float t = lineWidth(shown, text), a = e - 8;
    ASSERT_GT(t, a);
    EXPECT_EQ(shown.textPlace()[0], static_cast<float>(static_cast<int>(-4 - a / 2 - (t - a))));
    shown.startTyping();
    shown.type("!");
    const float t2 = lineWidth(shown, text + "!");
    EXPECT_EQ(shown.textPlace()[0], static_cast<float>(static_cast<int>(-4 - a / 2 - (t2 - a))));
    shown.edit->editText = "short";
    EXPECT_EQ(shown.textPlace()[0], static_cast<float>(static_cast<int>(4 - e / 2)));
}

TEST(EditText3D, theFirstOfManyLinesBeginsInTheUpperLeftCorner)
{
    ShownEdit shown(withText("one"), Stage::Scene);
    const KbVec3f frame = shown.first<KsScale>("frameSep")->scaleFactor;
    const KbBox3f box = shown.textBox(), edge = shown.boxOf(shown.edit, "frameSep");
    EXPECT_FLOAT_EQ(shown.textPlace()[0], 4 - frame[0] / 2);
    EXPECT_NEAR(box.getMin()[0], edge.getMin()[0] + 4, 1e-2);
    EXPECT_NEAR(box.getMax()[1], edge.getMax()[1] - 4, 1e-2);
    EXPECT_GT(box.getMin()[2], edge.getMax()[2]);
}

// Typing.

TEST(EditText3D, aPressOnTheTextStartsTypingAndReturnEndsIt)
{
    ShownEdit shown("editText \"lamp\"");
    shown.type("x");
    EXPECT_EQ(shown.text(), "lamp");
    EXPECT_FALSE(shown.isEditing());
    shown.startTyping();
    EXPECT_TRUE(shown.isEditing());
    shown.type("s");
    EXPECT_EQ(shown.text(), "lamps");
    EXPECT_EQ(shown.line()->text(), "lamps");
    EXPECT_EQ(shown.shownLines(), Strings{"lamps"});
    EXPECT_TRUE(shown.listener.texts.empty());
    shown.key(KsKeyboardEvent::RETURN);
    EXPECT_FALSE(shown.isEditing());
    EXPECT_EQ(shown.listener.texts, Strings{"lamps"});
    shown.type("x");
    EXPECT_EQ(shown.text(), "lamps");
}

TEST(EditText3D, anotherElementThatTakesTheActivityEndsTypingAndTellsOnceMore)
{
    ShownEdit shown;
    shown.startTyping();
    shown.type("a");
    shown.key(KsKeyboardEvent::RETURN);
    EXPECT_EQ(shown.listener.texts.size(), 1u);
    shown.clickPart(shown.find<KsDialogCheckBox>("other"), "stateSep");
    EXPECT_EQ(shown.listener.texts, (Strings{"a", "a"}));
    shown.startTyping();
    shown.clickPart(shown.find<KsDialogCheckBox>("other"), "stateSep");
    EXPECT_FALSE(shown.isEditing());
    EXPECT_EQ(shown.listener.texts.size(), 3u);
    shown.clickPart(shown.find<KsDialogCheckBox>("other"), "stateSep");
    EXPECT_EQ(shown.listener.texts.size(), 3u);
}

TEST(EditText3D, withoutTrigOnEnterEachKeyTellsOnceAndReturnTellsNothing)
{
    for (const auto road : {Stage::Scene, Stage::Both}) {
        ShownEdit shown("trigOnEnter FALSE", road);
        shown.startTyping();
        shown.type("ab");
        EXPECT_EQ(shown.listener.texts, (Strings{"a", "ab"}));
        shown.key(KsKeyboardEvent::BACKSPACE);
        EXPECT_EQ(shown.listener.texts, (Strings{"a", "ab", "a"}));
        shown.key(KsKeyboardEvent::RETURN);
        EXPECT_FALSE(shown.isEditing());
        EXPECT_EQ(shown.listener.texts.size(), 3u);
    }
}

TEST(EditText3D, aPressOnReadOnlyTextStartsNothing)
{
    ShownEdit shown("editable FALSE editText \"fixed\"");
    shown.startTyping();
    EXPECT_FALSE(shown.isEditing());
    shown.type("x");
    EXPECT_EQ(shown.text(), "fixed");
    shown.edit->editable = true;
    shown.startTyping();
    EXPECT_TRUE(shown.isEditing());
    shown.edit->editable = false;
    EXPECT_FALSE(shown.isEditing());
    shown.type("x");
    EXPECT_EQ(shown.text(), "fixed");
}

TEST(EditText3D, theKeysOfThePadTypeTheirDigits)
{
    ShownEdit shown;
    shown.startTyping();
    for (int key = KsKeyboardEvent::PAD_7; key <= KsKeyboardEvent::PAD_DELETE; ++key)
        shown.key(key);
    EXPECT_EQ(shown.text(), "7486293150.");
    for (const int key : {KsKeyboardEvent::TAB, KsKeyboardEvent::LEFT_ARROW, KsKeyboardEvent::END,
                          KsKeyboardEvent::DELETE_KEY, KsKeyboardEvent::PAD_ENTER,
                          KsKeyboardEvent::LEFT_SHIFT, KsKeyboardEvent::ESCAPE})
        shown.key(key, u'?');
    EXPECT_EQ(shown.text(), "7486293150.");
    shown.key('a');
    EXPECT_EQ(shown.text(), "7486293150.") << "a key without a character";
    shown.key('A', u'A', true);
    shown.key(0xfc, u'\u00fc');
    shown.key(0x20ac, u'\u20ac');
    EXPECT_EQ(shown.edit->editText.getValue(), KbString("7486293150.A\xfc?"));
}

TEST(EditText3D, shiftAndReturnBreaksTheLine)
{
    ShownEdit shown(largeForm);
    shown.startTyping();
    shown.type("one\ntwo");
    EXPECT_EQ(shown.text(), "one\ntwo");
    EXPECT_EQ(shown.shownLines(), (Strings{"one", "two"}));
    EXPECT_EQ(shown.lines()->toPlainText(), "one\ntwo");
    EXPECT_TRUE(shown.isEditing());
    EXPECT_TRUE(shown.listener.texts.empty());
}

TEST(EditText3D, inAFrameOfOneLineABreakShowsTheLastLineAlone)
{
    ShownEdit shown("width 200 editText \"a long first line\"", Stage::Scene);
    shown.startTyping();
    shown.type("\nb");
    EXPECT_EQ(shown.text(), "a long first line\nb");
    EXPECT_EQ(shown.shownLines(), (Strings{"a long first line", "b"}));
    const KbBox3f box = shown.textBox(), frame = shown.boxOf(shown.edit, "frameSep");
    const float lineHeight = box.getSize()[1] / 2;
    EXPECT_NEAR(box.getMin()[1] + lineHeight / 2, frame.getCenter()[1], 0.1);
    auto* top = static_cast<KsClipPlane*>(shown.part("textSep")->getChild(3));
    EXPECT_TRUE(top->on) << "what is above it is cut off";
    for (int i = 0; i < 2; ++i) shown.key(KsKeyboardEvent::BACKSPACE);
    EXPECT_EQ(shown.text(), "a long first line");
    EXPECT_EQ(shown.shownLines(), Strings{"a long first line"});
    EXPECT_FALSE(top->on);
    EXPECT_NEAR(shown.textBox().getCenter()[1], frame.getCenter()[1], 0.1);
}

TEST(EditText3D, backspaceTakesTheLastCharacterThenTheLineThenTheBreak)
{
    ShownEdit shown(withText("ab\nc"), Stage::Scene);
    shown.startTyping();
    const auto back = [&] { shown.key(KsKeyboardEvent::BACKSPACE); };
    back();
    EXPECT_EQ(shown.text(), "ab\n");
    EXPECT_EQ(shown.shownLines(), (Strings{"ab", ""}));
    back();
    EXPECT_EQ(shown.text(), "ab");
    EXPECT_EQ(shown.shownLines(), Strings{"ab"});
    back();
    EXPECT_EQ(shown.shownLines(), Strings{"a"});
    back();
    EXPECT_EQ(shown.text(), "");
    shown.type("x");
    EXPECT_EQ(shown.shownLines(), Strings{"x"});
}

TEST(EditText3D, backspaceOnNothingChangesNothingButTellsAsTypingDoes)
{
    for (const char* fields : {"trigOnEnter FALSE", "trigOnEnter FALSE multiLine TRUE"}) {
        ShownEdit shown(fields);
        shown.startTyping();
        shown.key(KsKeyboardEvent::BACKSPACE);
        EXPECT_EQ(shown.text(), "");
        EXPECT_EQ(shown.listener.texts, Strings{""});
        shown.type("a");
        EXPECT_EQ(shown.shownLines(), Strings{"a"});
    }
    ShownEdit shown;
    shown.startTyping();
    shown.key(KsKeyboardEvent::BACKSPACE);
    EXPECT_TRUE(shown.listener.texts.empty());
}

TEST(EditText3D, theTextMayBeEditedBeforeThereIsAScene)
{
    ShownEdit shown("", Stage::Window);
    shown.edit->insertCharTo3DText('a');
    shown.edit->insertCharTo3DText('b');
    shown.edit->removeCharIn3DText();
    shown.edit->move3DCursor(3);
    EXPECT_EQ(shown.text(), "a");
    EXPECT_EQ(shown.line()->text(), "a");
}

// Wrapping.

TEST(EditText3D, onlyTheCharacterThatPassesTheWidthGoesToTheNextLine)
{
    ShownEdit shown(largeForm, Stage::Scene);
    shown.startTyping();
    std::string typed;
    while (shown.shownLines().size() < 2 && typed.size() < 200) {
        shown.type("w");
        typed += 'w';
    }
    ASSERT_LT(typed.size(), 200u);
    EXPECT_EQ(shown.shownLines(), (Strings{std::string(typed.size() - 1, 'w'), "w"}))
        << "in the middle of a word";
    EXPECT_LE(lineWidth(shown, shown.shownLines()[0]), wrapWidth(shown));
    EXPECT_GT(lineWidth(shown, typed), wrapWidth(shown));
    EXPECT_EQ(shown.text(), typed) << "wrapping is of the lines alone";
    // A wrapped line goes as soon as its last character does.
    shown.key(KsKeyboardEvent::BACKSPACE);
    EXPECT_EQ(shown.shownLines(), Strings{std::string(typed.size() - 1, 'w')});
}

TEST(EditText3D, theLinesTogetherAreTheText)
{
    std::string text;
    for (int i = 0; i < 40; ++i) text += "some words " + std::to_string(i) + " ";
    ShownEdit shown(withText(text), Stage::Scene);
    std::string joined;
    for (const std::string& line : shown.shownLines()) {
        EXPECT_LE(lineWidth(shown, line), wrapWidth(shown));
        joined += line;
    }
    EXPECT_GT(shown.shownLines().size(), 5u);
    EXPECT_EQ(joined, text);
    shown.edit->wrapLine = false;
    EXPECT_EQ(shown.shownLines(), Strings{text});
    shown.edit->multiLine = false;
    EXPECT_EQ(shown.shownLines(), Strings{text});
    shown.edit->multiLine = true;
    shown.edit->wrapLine = true;
    EXPECT_GT(shown.shownLines().size(), 5u);
}

TEST(EditText3D, escapesAndBreaksMakeLines)
{
    ShownEdit shown(withText("one\\\\ntwo\n\nfour\\\\\\\\"), Stage::Scene);
    EXPECT_EQ(shown.shownLines(), (Strings{"one", "two", "", "four\\"}));
}

// The application writes.

TEST(EditText3D, afterATextOfTheApplicationTypingGoesOnInTheLineThatItWasOn)
{
    ShownEdit shown(withText("one\ntwo"), Stage::Scene);
    shown.edit->editText = "a\nb\nc\nd";
    EXPECT_EQ(shown.shownLines(), (Strings{"a", "b", "c", "d"}));
    shown.startTyping();
    shown.type("x");
    EXPECT_EQ(shown.shownLines(), (Strings{"a", "bx", "c", "d"}));
    EXPECT_EQ(shown.text(), "a\nb\nc\ndx");
    shown.edit->editText = "short";
    shown.type("x");
    EXPECT_EQ(shown.shownLines(), Strings{"shortx"}) << "in range";
}

TEST(EditText3D, afterATextOfTheApplicationTheBarsFollowAtTheNextLine)
{
    ShownEdit shown(largeForm, Stage::Scene);
    const float full = shown.trackV()[1];
    EXPECT_EQ(shown.thumbSizeV()[1], full);
    shown.edit->editText = manyLines(30).c_str();
    EXPECT_EQ(shown.shownLines().size(), 30u);
    EXPECT_EQ(shown.thumbSizeV()[1], full);
    shown.startTyping();
    shown.type("x");
    EXPECT_EQ(shown.thumbSizeV()[1], full) << "the same line";
    shown.type("\n");
    EXPECT_LT(shown.thumbSizeV()[1], full / 2);
}

// What is outside the frame.

TEST(EditText3D, textOutsideTheFrameIsNotPicked)
{
    ShownEdit shown(withText(manyLines(30)), Stage::Scene);
    const KbBox3f text = shown.textBox(), frame = shown.boxOf(shown.edit, "frameSep");
    ASSERT_LT(text.getMin()[1], frame.getMin()[1] - 100);
    const KbVec2f below(text.getMin()[0] + 4, frame.getMin()[1] - 60 + Stage::viewHeight);
    shown.click(below);
    EXPECT_FALSE(shown.isEditing());
    const KbVec2f inside(text.getMin()[0] + 4, frame.getMin()[1] + 20 + Stage::viewHeight);
    shown.click(inside);
    EXPECT_TRUE(shown.isEditing());
}

// Labels, skins, files and lifetime.

TEST(EditText3D, theLabelIsAlignedInItsZoneAndMayBeHidden)
{
    ShownEdit shown("label \"A\"", Stage::Scene);
    shown.find<KsDialogCheckBox>("other")->label = "A longer label";
    const auto x = [&] {
        return shown.last<KsTranslation>("labelSwitch")->translation.getValue()[0];
    };
    shown.edit->labelAlignment = KsFormweave::LEFT;
    EXPECT_FLOAT_EQ(x(), 3 - shown.width() / 2);
    const float before = shown.first<KsScale>("frameSep")->scaleFactor.getValue()[0];
    const float zone = shown.labelZone();
    shown.edit->labelVisibility = false;
    EXPECT_EQ(Stage::shown(shown.edit, "labelSwitch"), KsSwitch::NONE);
    EXPECT_FLOAT_EQ(shown.first<KsScale>("frameSep")->scaleFactor.getValue()[0], before + zone);
    shown.edit->labelVisibility = true;
    EXPECT_FLOAT_EQ(shown.first<KsScale>("frameSep")->scaleFactor.getValue()[0], before);
}

TEST(EditText3D, aPressOnTheLabelDoesNotStartTyping)
{
    ShownEdit shown("label \"Title\"", Stage::Scene);
    shown.clickPart(shown.edit, "labelSep");
    EXPECT_FALSE(shown.isEditing());
}

TEST(EditText3D, anotherSkinKeepsTheTextAndItsPlace)
{
    ShownEdit shown(withText(manyLines(30)), Stage::Scene);
    shown.startTyping();
    shown.type("x");
    KsFormweave::setSkin(FORMWEAVE_SKIN_DIR "/dark");
    EXPECT_EQ(shown.shownLines().size(), 30u);
    const KbBox3f text = shown.textBox(), frame = shown.boxOf(shown.edit, "frameSep");
    EXPECT_NEAR(text.getMin()[0], frame.getMin()[0] + 4, 1e-2);
    EXPECT_GT(text.getMin()[2], frame.getMax()[2]);
    shown.type("y");
    EXPECT_EQ(shown.text(), manyLines(30) + "xy");
    KsFormweave::setSkin(FORMWEAVE_SKIN_DIR "/default");
}

TEST(EditText3D, anAuditorMayLetTheEditorGo)
{
    for (const int key : {static_cast<int>('a'), static_cast<int>(KsKeyboardEvent::RETURN),
                          static_cast<int>(KsKeyboardEvent::BACKSPACE)}) {
        for (const bool enter : {false, true}) {
            ShownEdit shown(enter ? largeForm : largeForm + "trigOnEnter FALSE", Stage::Scene);
            const KsRef<KsTopLevelDialog> keep(shown.dialog);
            shown.listener.then = [&](KsDialogEditText* edit) { keep->removeChild(edit); };
            shown.startTyping();
            shown.key(key, key < 256 ? u'a' : u'\0');
            if (enter) shown.clickPart(shown.find<KsDialogCheckBox>("other"), "stateSep");
            EXPECT_EQ(shown.listener.texts.size(),
                      !enter && key == KsKeyboardEvent::RETURN ? 0u : 1u);
        }
    }
}

TEST(EditText3D, itDiesWhileItIsTypedIn)
{
    ShownEdit shown(largeForm, Stage::Scene);
    shown.startTyping();
    shown.dialog->removeChild(shown.edit);
    shown.type("x");
    EXPECT_TRUE(shown.listener.texts.empty());
    EXPECT_EQ(EditState::m_lastActive, nullptr);
}

// Bad input.

TEST(EditText3D, aTextOfTenMegabytesIsShownAndTypedIn)
{
    std::string text;
    while (text.size() < 10u << 20) text += "a line of some length, as texts have\n";
    ShownEdit shown(largeForm, Stage::Scene);
    shown.edit->editText = text.c_str();
    EXPECT_LE(shown.shownLines().size(), static_cast<std::size_t>(KsLimits::current().textLines));
    shown.startTyping();
    shown.type("x");
    EXPECT_EQ(shown.edit->editText.getValue().getLength(), static_cast<int>(text.size()) + 1);
    // One stretch without a break.
    shown.edit->editText = std::string(10u << 20, 'w').c_str();
    shown.type("x");
    shown.draw();
    // Nothing but breaks.
    shown.edit->editText = std::string(10u << 20, '\n').c_str();
    EXPECT_LE(shown.shownLines().size(), static_cast<std::size_t>(KsLimits::current().textLines));
}

TEST(EditText3D, noRoomAtAllIsBorne)
{
    for (const int size : {1, 8, 30, 40}) {
        const std::string s = std::to_string(size);
        ShownEdit shown("label \"L\" multiLine TRUE editText \"some words without end\" fixedWidth "
                        "TRUE fixedHeight TRUE width " +
                            s + " height " + s,
                        Stage::Scene);
        for (const bool wrap : {true, false}) {
            shown.edit->wrapLine = wrap;
            shown.edit->draggerStartCallback3D();
            shown.edit->insertCharTo3DText('x');
            shown.edit->insertCharTo3DText('\n');
            shown.edit->move3DCursor(-5);
            shown.edit->removeCharIn3DText();
            for (const KbVec3f& v : {shown.scroll(), shown.textPlace(), shown.thumbV(),
                                     shown.thumbH(), shown.thumbSizeV(), shown.thumbSizeH()})
                EXPECT_TRUE(v.isFinite());
        }
        EXPECT_TRUE(shown.draw().getMin().isFinite());
    }
}
