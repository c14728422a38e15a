// An edit text in a window: real keys on real widgets.

#include "EditText.h"

#include <arborium/actions/KsWriteAction.h>
#include <arborium/io/KsOutput.h>

namespace {

QWidget* editor(ShownEdit& shown)
{
    if (shown.lines()) return shown.lines();
    return shown.line();
}

} // namespace

// The model.

TEST(EditText, itsFieldsStandInTheirOrderWithTheirDefaults)
{
    const Library library;
    KsRef<KsDialogEditText> edit(new KsDialogEditText);
    const KsFieldData* fields = edit->getFieldData();
    const char* names[] = {"editText",  "editable",  "trigOnEnter",
                           "isNumeric", "multiLine", "wrapLine"};
    for (int i = 0; i < 6; ++i)
        EXPECT_EQ(fields->getIndex(names[i]), fields->getIndex("editText") + i) << names[i];
    EXPECT_EQ(edit->editText.getValue(), "");
    EXPECT_TRUE(edit->editable && edit->trigOnEnter && edit->wrapLine);
    EXPECT_FALSE(edit->isNumeric || edit->multiLine);
    EXPECT_EQ(edit->getLabelWidget(), nullptr);
}

TEST(EditText, itsPartsStandInTheOrderOfTheCatalog)
{
    const Library library;
    KsRef<KsDialogEditText> edit(new KsDialogEditText);
    EXPECT_EQ(partRows(edit, "labelSep"), (Strings{"labelSep Separator geomSwitch",
                                                   "labelSwitch Switch labelSep",
                                                   "labelProp Group labelSwitch public",
                                                   "scrollVSwitch Switch geomSwitch",
                                                   "downSep Separator scrollVSwitch",
                                                   "downSwitch Switch downSep",
                                                   "downReleased Group downSwitch public",
                                                   "downPressed Group downSwitch public",
                                                   "upSep Separator scrollVSwitch",
                                                   "upSwitch Switch upSep",
                                                   "upReleased Group upSwitch public",
                                                   "upPressed Group upSwitch public",
                                                   "scrollVSep Separator scrollVSwitch",
                                                   "scrollVBack Separator scrollVSep public",
                                                   "scrollVFrame Group scrollVBack public",
                                                   "cursorVSep Separator scrollVSep",
                                                   "cursorVFrame Group cursorVSep public",
                                                   "scrollHSwitch Switch geomSwitch",
                                                   "leftSep Separator scrollHSwitch",
                                                   "leftSwitch Switch leftSep",
                                                   "leftReleased Group leftSwitch public",
                                                   "leftPressed Group leftSwitch public",
                                                   "rightSep Separator scrollHSwitch",
                                                   "rightSwitch Switch rightSep",
                                                   "rightReleased Group rightSwitch public",
                                                   "rightPressed Group rightSwitch public",
                                                   "scrollHSep Separator scrollHSwitch",
                                                   "scrollHBack Separator scrollHSep public",
                                                   "scrollHFrame Group scrollHBack public",
                                                   "cursorHSep Separator scrollHSep",
                                                   "cursorHFrame Group cursorHSep public",
                                                   "editSep Separator geomSwitch",
                                                   "frameSep Separator editSep",
                                                   "frameSwitch Switch frameSep",
                                                   "frame Group frameSwitch public",
                                                   "editFrame Group frameSwitch public",
                                                   "textSep Separator editSep",
                                                   "textProp Group textSep public"}));
}

TEST(EditText, itsSizeIsThatOfItsTextWithRoomForTheEditor)
{
    const Library library;
    KsRef<KsDialogEditText> edit(new KsDialogEditText);
    edit->editText = "one\\ntwo";
    const KbVec2i32 one = KsFormweave::getLabelPixelSize(edit->editText, edit.get());
    EXPECT_EQ(edit->getComponentInitSize(), one + KbVec2i32(10, 12));
    edit->multiLine = true;
    EXPECT_EQ(edit->getComponentInitSize(), one + KbVec2i32(10, 12)) << "asked once";
    edit->resetSize();
    const KbVec2i32 two = KsFormweave::getLabelPixelSize(edit->editText, edit.get());
    ASSERT_GT(two[1], one[1]);
    EXPECT_EQ(edit->getComponentInitSize(), two + KbVec2i32(34, 12));
    KbVec2i32 label(50, 20), zone(100, 10), size, min, max;
    edit->setLabelSize(label);
    edit->setComponentSize(zone);
    edit->getDefaultSize(size, min, max);
    EXPECT_EQ(size, KbVec2i32(100 + 50 + 2, two[1] + 12));
    EXPECT_EQ(min, KbVec2i32(25, 25));
    EXPECT_EQ(max, KbVec2i32(32767, 32767));
    edit->labelVisibility = false;
    edit->getDefaultSize(size, min, max);
    EXPECT_EQ(size[0], 100);
}

TEST(EditText, anEmptyTextMeasuresAsAnEmptyLabel)
{
    const Library library;
    KsRef<KsDialogEditText> edit(new KsDialogEditText);
    EXPECT_EQ(edit->getComponentInitSize(), KbVec2i32(10, 12));
}

TEST(EditText, withoutItsLabelItIsNarrowerByTheLabelsZoneThoughItNeverHeldIt)
{
    const Library library;
    KsRef<KsDialogEditText> edit(new KsDialogEditText);
    KbVec2i32 label(40, 10);
    edit->setLabelSize(label);
    edit->labelVisibility = false;
    EXPECT_EQ(edit->getComponentInitSize(), KbVec2i32(10 - 40, 12));
}

// The relay.

TEST(EditText, itsRelayHoldsTheLabelAndThenTheEditorUnderTheirNames)
{
    for (const bool many : {false, true}) {
        ShownEdit shown(many ? "multiLine TRUE" : "", Stage::Window);
        QWidget* frame = shown.edit->getWidget();
        EXPECT_EQ(frame->objectName(), "LMNKsDialogQEditTextFrame");
        QObjectList widgets;
        for (QObject* child : frame->children())
            if (child->isWidgetType()) widgets << child;
        EXPECT_EQ(widgets, (QObjectList{shown.labelWidget(), editor(shown)}));
        EXPECT_EQ(editor(shown)->objectName(), many ? "LMNKsDialogQEditTextMultiEditWidget"
                                                    : "LMNKsDialogQEditTextLineEditWidget");
        const QString font = KsFormweave::getFormweaveFont().toString();
        EXPECT_EQ(editor(shown)->font().toString(), font);
        EXPECT_EQ(shown.labelWidget()->font().toString(), font);
        EXPECT_EQ(shown.edit->getLabelWidget(), nullptr);
    }
}

TEST(EditText, theEditorOfOneLineIsCentredAndThatOfManyFillsItsZone)
{
    ShownEdit one("label \"Title\"", Stage::Window);
    const int w = one.edit->getWidget()->width(), h = one.edit->getWidget()->height();
    const int l = static_cast<int>(one.labelZone());
    EXPECT_EQ(one.line()->geometry(), QRect(3 + l, 3 + (h - 6 - 20) / 2, w - 6 - l, 20))
        << "an empty text has the least height";
    one.edit->labelVisibility = false;
    EXPECT_TRUE(one.labelWidget()->isHidden());
    EXPECT_EQ(one.line()->geometry(), QRect(3, 3 + (h - 6 - 20) / 2, w - 6, 20));
    ShownEdit many("label \"Title\" multiLine TRUE", Stage::Window);
    EXPECT_EQ(many.lines()->geometry(), QRect(3 + l, 3, many.edit->getWidget()->width() - 6 - l,
                                              many.edit->getWidget()->height() - 6));
    const int labelHeight = KsFormweave::getLabelPixelSize("Title", nullptr)[1];
    EXPECT_EQ(
        many.labelWidget()->geometry(),
        QRect(3, 3 + (many.edit->getWidget()->height() - 3 - labelHeight) / 2, l - 2, labelHeight));
}

TEST(EditText, aResizeWritesTheSizesAndPlacesTheEditor)
{
    ShownEdit shown("labelVisibility FALSE", Stage::Window);
    shown.edit->getWidget()->resize(300, 60);
    EXPECT_EQ(shown.edit->width, 300);
    EXPECT_EQ(shown.edit->height, 60);
    EXPECT_EQ(shown.line()->geometry(), QRect(3, 3 + (54 - 20) / 2, 294, 20));
}

// Typing.

TEST(EditText, typedTextComesIntoTheFieldAndAuditorsHearEnterAlone)
{
    ShownEdit shown;
    QTest::keyClicks(shown.line(), "lamp");
    EXPECT_EQ(shown.text(), "lamp");
    EXPECT_EQ(shown.shownLines(), Strings{"lamp"});
    EXPECT_TRUE(shown.listener.texts.empty());
    QTest::keyClick(shown.line(), Qt::Key_Return);
    EXPECT_EQ(shown.listener.texts, Strings{"lamp"});
    QTest::keyClick(shown.line(), Qt::Key_Enter);
    EXPECT_EQ(shown.listener.texts, (Strings{"lamp", "lamp"}));
}

TEST(EditText, withoutTrigOnEnterAuditorsHearEachChangeAndEnterToo)
{
    ShownEdit shown("trigOnEnter FALSE");
    QTest::keyClicks(shown.line(), "ab");
    EXPECT_EQ(shown.listener.texts, (Strings{"a", "ab"}));
    QTest::keyClick(shown.line(), Qt::Key_Return);
    EXPECT_EQ(shown.listener.texts, (Strings{"a", "ab", "ab"}));
    QTest::keyClick(shown.line(), Qt::Key_Left);
    EXPECT_EQ(shown.listener.texts.size(), 3u) << "nothing changed";
}

TEST(EditText, returnInManyLinesTellsTheTextBeforeTheBreakAndThenBreaks)
{
    ShownEdit shown("multiLine TRUE width 300 height 80");
    QTest::keyClicks(shown.lines(), "one");
    QTest::keyClick(shown.lines(), Qt::Key_Return);
    EXPECT_EQ(shown.listener.texts, Strings{"one"});
    EXPECT_EQ(shown.text(), "one\n");
    QTest::keyClicks(shown.lines(), "two");
    EXPECT_EQ(shown.text(), "one\ntwo");
    EXPECT_EQ(shown.shownLines(), (Strings{"one", "two"}));
    EXPECT_EQ(shown.listener.texts.size(), 1u);
    shown.edit->trigOnEnter = false;
    QTest::keyClick(shown.lines(), Qt::Key_Enter, Qt::KeypadModifier);
    EXPECT_EQ(shown.listener.texts, (Strings{"one", "one\ntwo", "one\ntwo\n"}));
}

TEST(EditText, numericTakesLettersJustAsWell)
{
    ShownEdit shown("isNumeric TRUE");
    QTest::keyClicks(shown.line(), "1a-");
    EXPECT_EQ(shown.text(), "1a-");
    shown.startTyping();
    shown.type("x");
    EXPECT_EQ(shown.text(), "1a-x");
}

TEST(EditText, whatIsTypedComesInAsLatin1)
{
    ShownEdit shown;
    shown.line()->setText(QString::fromUtf8("\u00fc\u20ac\u4f60."));
    EXPECT_EQ(shown.edit->editText.getValue(), KbString("\xfc??."));
    EXPECT_FALSE(shown.edit->editText.getValue().isUnicode());
}

TEST(EditText, aReadOnlyEditorTakesNoKeys)
{
    for (const char* fields : {"editable FALSE", "editable FALSE multiLine TRUE"}) {
        ShownEdit shown(fields);
        QTest::keyClicks(editor(shown), "no");
        EXPECT_EQ(shown.text(), "");
        shown.edit->editable = true;
        QTest::keyClicks(editor(shown), "yes");
        EXPECT_EQ(shown.text(), "yes");
        shown.edit->editable = false;
        QTest::keyClicks(editor(shown), "no");
        EXPECT_EQ(shown.text(), "yes");
    }
}

TEST(EditText, aDisabledEditorTakesNoKeysInEitherPresentation)
{
    ShownEdit shown("enable FALSE");
    EXPECT_FALSE(shown.line()->isEnabled());
    EXPECT_FALSE(shown.labelWidget()->isEnabled());
    shown.startTyping();
    shown.type("no");
    EXPECT_EQ(shown.text(), "");
    shown.edit->enable = true;
    shown.startTyping();
    shown.type("yes");
    shown.edit->enable = false;
    shown.type("no");
    EXPECT_EQ(shown.text(), "yes");
}

// The application writes.

TEST(EditText, aTextOfTheApplicationComesBackAsAChange)
{
    ShownEdit shown("trigOnEnter FALSE");
    shown.edit->editText = "set";
    EXPECT_EQ(shown.line()->text(), "set");
    EXPECT_EQ(shown.listener.texts, Strings{"set"});
    shown.edit->editText = "set";
    EXPECT_EQ(shown.listener.texts.size(), 1u) << "the widget shows it already";
    shown.edit->trigOnEnter = true;
    shown.edit->editText = "again";
    EXPECT_EQ(shown.listener.texts.size(), 1u);
}

TEST(EditText, theFieldIsRewrittenWithThePlainTextOfTheWidget)
{
    ShownEdit shown("multiLine TRUE");
    shown.edit->editText = "one\\ntwo\\tthree";
    EXPECT_EQ(shown.lines()->toPlainText(), "one\ntwo\tthree");
    EXPECT_EQ(shown.text(), "one\ntwo\tthree");
    ShownEdit one;
    one.edit->editText = "one\\ntwo";
    EXPECT_EQ(one.line()->text(), "one\\ntwo") << "a line has no escapes";
    EXPECT_EQ(one.text(), "one\\ntwo");
}

TEST(EditText, aBuildTellsNobodyAndLeavesTheFieldAlone)
{
    ShownEdit shown("multiLine TRUE editText \"one\\\\ntwo\" trigOnEnter FALSE", Stage::Window,
                    false);
    EditListener listener;
    shown.edit->addAuditor(&listener);
    shown.dialog->updateDialogBuild(1);
    shown.edit->multiLine = false;
    shown.edit->multiLine = true;
    EXPECT_TRUE(listener.texts.empty());
    EXPECT_EQ(shown.text(), "one\\ntwo");
    EXPECT_EQ(shown.lines()->toPlainText(), "one\ntwo");
}

TEST(EditText, anAuditorThatSetsTheTextDoesNotRunForEver)
{
    ShownEdit shown("trigOnEnter FALSE");
    shown.listener.then = [](KsDialogEditText* edit) {
        std::string text = edit->editText.getValue().toUtf8();
        for (char& c : text) c = static_cast<char>(std::toupper(c));
        edit->editText = text.c_str();
    };
    QTest::keyClicks(shown.line(), "ab");
    EXPECT_EQ(shown.line()->text(), "AB");
    EXPECT_EQ(shown.text(), "AB");
    EXPECT_EQ(shown.listener.texts, (Strings{"a", "A", "Ab", "AB"}));
}

TEST(EditText, aTextThatTheEditorShowsInItsOwnWayIsLeftAlone)
{
    ShownEdit shown("multiLine TRUE trigOnEnter FALSE");
    // A text edit gives a blank that does not break back as a blank, and its line breaks as ours.
    const KbString odd = KbString::fromUtf8("a\xc2\xa0z\r\nb\xe2\x80\xa8"
                                            "c");
    shown.listener.then = [&](KsDialogEditText* edit) { edit->editText = odd; };
    shown.edit->editText = odd;
    EXPECT_EQ(shown.lines()->toPlainText(), "a z\nb\nc");
    EXPECT_EQ(shown.listener.texts.size(), 1u);
    QTextCursor cursor = shown.lines()->textCursor();
    cursor.setPosition(2);
    shown.lines()->setTextCursor(cursor);
    shown.edit->touch();
    shown.edit->editText = odd;
    EXPECT_EQ(shown.lines()->textCursor().position(), 2);
    EXPECT_EQ(shown.listener.texts.size(), 1u);
}

TEST(EditText, markupIsPlainText)
{
    ShownEdit shown("multiLine TRUE editText \"<b>bold</b>\"");
    EXPECT_EQ(shown.lines()->toPlainText(), "<b>bold</b>");
    shown.edit->editText = "<i>x</i>";
    EXPECT_EQ(shown.lines()->toPlainText(), "<i>x</i>");
    EXPECT_EQ(shown.text(), "<i>x</i>");
    EXPECT_FALSE(shown.lines()->acceptRichText());
}

// Its fields while it is shown.

TEST(EditText, manyLinesMakeAnotherEditorInTheSamePlace)
{
    ShownEdit shown("label \"Title\" editText \"one\"");
    const QRect before = shown.edit->getWidget()->geometry();
    QPointer<QLineEdit> line = shown.line();
    line->setFocus();
    shown.edit->multiLine = true;
    EXPECT_FALSE(shown.line());
    ASSERT_TRUE(shown.lines());
    EXPECT_EQ(shown.lines()->toPlainText(), "one");
    EXPECT_TRUE(shown.lines()->isVisible());
    QApplication::processEvents();
    EXPECT_EQ(shown.edit->getWidget()->geometry(), before);
    EXPECT_EQ(shown.dialog->getBaseWidget()->focusWidget(), shown.lines());
    Stage::settle();
    EXPECT_FALSE(line);
    QTest::keyClick(shown.lines(), Qt::Key_Return);
    EXPECT_EQ(shown.listener.texts, Strings{"one"});
    shown.edit->multiLine = false;
    EXPECT_TRUE(shown.line());
    EXPECT_FALSE(shown.lines());
}

TEST(EditText, wrappingOfAFileReachesTheWidgetWhenItIsChanged)
{
    ShownEdit shown("multiLine TRUE wrapLine FALSE", Stage::Window);
    EXPECT_EQ(shown.lines()->wordWrapMode(), QTextOption::WrapAtWordBoundaryOrAnywhere);
    shown.edit->wrapLine = false;
    EXPECT_EQ(shown.lines()->wordWrapMode(), QTextOption::NoWrap);
    shown.dialog->updateDialogBuild(1);
    EXPECT_EQ(shown.lines()->wordWrapMode(), QTextOption::NoWrap) << "a rebuild keeps it";
    shown.edit->wrapLine = true;
    EXPECT_EQ(shown.lines()->wordWrapMode(), QTextOption::WrapAtWordBoundaryOrAnywhere);
}

TEST(EditText, wrappingThatChangedWithoutALargeEditorIsTakenUpWhenThereIsOne)
{
    ShownEdit shown("", Stage::Both);
    shown.edit->wrapLine = false;
    EXPECT_TRUE(shown.line());
    shown.edit->multiLine = true;
    EXPECT_EQ(shown.lines()->wordWrapMode(), QTextOption::NoWrap);
}

TEST(EditText, fieldsThatChangeWithoutAWindowAreTakenUpByTheBuild)
{
    ShownEdit shown("", Stage::Scene);
    shown.edit->editable = false;
    shown.edit->multiLine = true;
    shown.edit->wrapLine = false;
    shown.dialog->buildDialog();
    ASSERT_TRUE(shown.lines());
    EXPECT_TRUE(shown.lines()->isReadOnly());
    EXPECT_EQ(shown.lines()->wordWrapMode(), QTextOption::NoWrap);
    const QPointer<QWidget> window = shown.dialog->getBaseWidget();
    shown.dropDialog();
    delete window.data();
}

// Rebuilds.

TEST(EditText, aRebuildLeavesOneEditorWithItsTextItsSelectionAndTheFocus)
{
    for (const bool many : {false, true}) {
        ShownEdit shown(many ? "multiLine TRUE" : "", Stage::Window);
        QTest::keyClicks(editor(shown), "a\\nb lamp");
        for (int i = 0; i < 3; ++i) QTest::keyClick(editor(shown), Qt::Key_Left, Qt::ShiftModifier);
        editor(shown)->setFocus();
        const QPointer<QWidget> former = editor(shown);
        shown.dialog->updateDialogBuild(1);
        EXPECT_NE(editor(shown), former.data());
        EXPECT_EQ(shown.dialog->getBaseWidget()->focusWidget(), editor(shown));
        if (many) {
            EXPECT_EQ(shown.lines()->toPlainText(), "a\\nb lamp") << "no escape in typed text";
            EXPECT_EQ(shown.lines()->textCursor().selectedText(), "amp");
            EXPECT_EQ(shown.lines()->textCursor().position(), 6);
        } else {
            EXPECT_EQ(shown.line()->text(), "a\\nb lamp");
            EXPECT_EQ(shown.line()->selectedText(), "amp");
            EXPECT_EQ(shown.line()->cursorPosition(), 6);
        }
        QTest::keyClicks(editor(shown), "X");
        EXPECT_EQ(shown.text(), "a\\nb lX");
        Stage::settle();
        EXPECT_FALSE(former);
    }
}

TEST(EditText, mayBeRebuiltTakenOutOrLetGoInItsOwnSignal)
{
    for (int what = 0; what < 4; ++what) {
        for (const bool many : {false, true}) {
            ShownEdit shown(many ? "multiLine TRUE" : "", Stage::Both);
            const KsRef<KsDialogEditText> keep(shown.edit);
            const QPointer<QWidget> window = shown.dialog->getBaseWidget();
            int calls = 0;
            shown.listener.then = [&](KsDialogEditText* edit) {
                if (calls++) return;
                if (what == 0) shown.dialog->updateDialogBuild(1);
                if (what == 1) shown.dialog->removeChild(edit);
                if (what == 2) edit->multiLine = !many;
                if (what == 3) shown.dropDialog();
            };
            const QPointer<QWidget> former = editor(shown);
            QTest::keyClicks(former, "x");
            QTest::keyClick(former, Qt::Key_Return);
            EXPECT_EQ(calls, 1);
            Stage::settle();
            EXPECT_FALSE(former) << what;
            if (what == 0) {
                EXPECT_EQ(window->findChildren<QLineEdit*>().size() +
                              window->findChildren<QTextEdit*>().size(),
                          1);
            }
            if (what == 3) delete window.data();
        }
    }
}

TEST(EditText, takenDownItIsBuiltAnewFromItsField)
{
    ShownEdit shown("editText \"one\"", Stage::Window);
    const QPointer<QWidget> frame(shown.edit->getWidget());
    shown.edit->destroyWidget();
    EXPECT_TRUE(frame.isNull());
    shown.edit->editText = "two";
    KbVec2i32 size(0, 0), place(0, 0);
    shown.edit->buildWidget(shown.dialog->getBaseWidget(), size, place, 1);
    ASSERT_TRUE(shown.line());
    EXPECT_EQ(shown.line()->text(), "two");
}

TEST(EditText, withoutAuditorsOfItsOwnTheDialogHears)
{
    struct All : KsDialogAuditor {
        void dialogEditText(KsDialogEditText* edit) override { told = edit; }
        KsDialogEditText* told = nullptr;
    } all;
    ShownEdit shown("", Stage::Window, false);
    shown.dialog->addAuditor(&all);
    QTest::keyClick(shown.line(), Qt::Key_Return);
    EXPECT_EQ(all.told, shown.edit);
    all.told = nullptr;
    shown.edit->addAuditor(&shown.listener);
    QTest::keyClick(shown.line(), Qt::Key_Return);
    EXPECT_EQ(all.told, nullptr);
    EXPECT_EQ(shown.listener.texts.size(), 1u);
    shown.edit->removeAuditor(&shown.listener);
    shown.edit->applyDlgCptAuditor();
    EXPECT_EQ(all.told, shown.edit);
    shown.dialog->removeAuditor(&all);
}

// Bad input and files.

TEST(EditText, aTextOfTenMegabytesIsBorneByAWindow)
{
    std::string text;
    while (text.size() < 10u << 20) text += "a line of some length, as texts have\n";
    ShownEdit shown("multiLine TRUE", Stage::Window);
    shown.edit->editText = text.c_str();
    EXPECT_EQ(shown.edit->editText.getValue().getLength(), static_cast<int>(text.size()));
    QTest::keyClicks(shown.lines(), "x");
    EXPECT_EQ(shown.edit->editText.getValue().getLength(), static_cast<int>(text.size()) + 1);
}

TEST(EditText, aLineOfTenMegabytesIsBorneByAWindowAndLosesNothing)
{
    const std::string text(10u << 20, 'w');
    ShownEdit shown("", Stage::Window);
    shown.edit->editText = text.c_str();
    EXPECT_EQ(shown.edit->editText.getValue().getLength(), static_cast<int>(text.size()));
    QTest::keyClicks(shown.line(), "x");
    EXPECT_EQ(shown.edit->editText.getValue().getLength(), static_cast<int>(text.size()) + 1);
    QTest::keyClick(shown.line(), Qt::Key_Return);
    ASSERT_EQ(shown.listener.texts.size(), 1u);
    EXPECT_EQ(shown.listener.texts[0], text + "x");
}

TEST(EditText, whatIsWrittenReadsBackAsTheSame)
{
    const std::string file =
        "#Arborium V2.1 ascii utf8\n\nDialogEditText {\n    label \"T\"\n"
        "    editText \"one\\\\ntwo \\\"three\\\"\nfour\"\n    editable FALSE\n"
        "    trigOnEnter FALSE\n    isNumeric TRUE\n    multiLine TRUE\n    wrapLine FALSE\n}\n";
    const Library library;
    std::string last = file;
    for (int i = 0; i < 2; ++i) {
        KsInput in;
        in.setBuffer(last.data(), last.size());
        const KsRef<KsSeparator> root(KsDB::readAll(&in));
        ASSERT_TRUE(root && root->getNumChildren() == 1);
        auto* edit = ksCast<KsDialogEditText>(root->getChild(0));
        ASSERT_TRUE(edit);
        EXPECT_EQ(edit->editText.getValue(), "one\\ntwo \"three\"\nfour");
        EXPECT_FALSE(edit->editable || edit->trigOnEnter || edit->wrapLine);
        EXPECT_TRUE(edit->isNumeric && edit->multiLine);
        KsOutput out;
        KsWriteAction write(&out);
        write.apply(edit);
        const std::string written = out.getBuffer();
        EXPECT_TRUE(i == 0 || written == last) << written;
        last = written;
    }
}
