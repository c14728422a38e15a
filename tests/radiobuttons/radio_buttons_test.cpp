// Radio buttons in their two presentations, clicked where they are drawn.

#include "RadioButtons.h"

#include <MessageGuard.h>
#include <algorithm>

namespace {

/// The sizes behind radio buttons that tests look at.
class Radio : public KsDialogRadioButtons {
public:
    using KsDialogRadioButtons::computeNewButtonsHeight;
    using KsDialogRadioButtons::m_rowSizes;

    /// As a file's list is read before a build.
    explicit Radio(const Strings& texts = {})
    {
        for (const std::string& text : texts) addItem(KbString(text.c_str()));
        getComponentInitSize();
    }
    std::vector<int> heights(int w, int h)
    {
        computeNewButtonsHeight(KbVec2i32(w, h));
        std::vector<int> found;
        for (int i = 0; i < m_rowSizes.count(); ++i) found.push_back(m_rowSizes[i].init[1]);
        return found;
    }
};

int textHeight(const char* text = "A") { return KsFormweave::getLabelPixelSize(text, nullptr)[1]; }

KbVec2i32 minOf(KsDialogComponent* element)
{
    KbVec2i32 size, min, max;
    element->getDefaultSize(size, min, max);
    return min;
}

} // namespace

// Sizes.

TEST(RadioButtons, withoutItemsShowNoButtonAndNoRow)
{
    Shown shown("label \"Empty\"");
    EXPECT_EQ(shown.radio->items.getNum(), 1) << "the filler";
    EXPECT_TRUE(shown.buttons().isEmpty());
    EXPECT_EQ(Stage::shown(shown.radio, "itemsSep"), KsSwitch::NONE);
    EXPECT_EQ(minOf(shown.radio), KbVec2i32(100, 28));
    shown.click(shown.placeOf(shown.radio, "frameSep"));
    EXPECT_TRUE(shown.listener.told.empty());
    // The first item takes the filler's place.
    shown.radio->addItem("one");
    EXPECT_EQ(shown.texts2D(), Strings{"one"});
    EXPECT_EQ(shown.texts3D(), Strings{"one"});
    EXPECT_EQ(shown.checked2D(), 0);
    EXPECT_EQ(shown.checked3D(), 0);
    EXPECT_EQ(Stage::shown(shown.radio, "itemsSep"), KsSwitch::ALL);
}

TEST(RadioButtons, rowsShareASurplusOnePixelAtATimeInTurn)
{
    const Library library;
    KsRef<Radio> radio(new Radio({"A", "B", "C"}));
    const int h = std::max(textHeight(), 16);
    // What is left is told from the heights of the texts.
    const int texts = 30 + 3 * textHeight();
    EXPECT_EQ(radio->heights(200, texts + 28), (std::vector<int>{h + 10, h + 9, h + 9}));
    // The next one in turn is the second.
    EXPECT_EQ(radio->heights(200, texts + 2), (std::vector<int>{h, h + 1, h + 1}));
    EXPECT_EQ(radio->heights(200, texts + 1), (std::vector<int>{h + 1, h, h}));
    radio->resetSize();
    EXPECT_EQ(radio->m_rowSizes.count(), 0);
    EXPECT_EQ(radio->heights(200, texts + 1), (std::vector<int>{h + 1, h, h}));
}

TEST(RadioButtons, theRowThatIsNextInTurnIsOneThatIsLeft)
{
    const Library library;
    KsRef<Radio> radio(new Radio({"A", "B", "C"}));
    const int h = std::max(textHeight(), 16);
    // Two of three got a pixel: the third would be next.
    EXPECT_EQ(radio->heights(200, 30 + 3 * textHeight() + 2), (std::vector<int>{h + 1, h + 1, h}));
    radio->removeItem(2);
    radio->removeItem(1);
    radio->getComponentInitSize();
    EXPECT_EQ(radio->heights(200, 30 + textHeight() + 5), std::vector<int>{h + 5});
}

TEST(RadioButtons, rowsShrinkToJustAboveTheirLeastHeight)
{
    const Library library;
    KsRef<Radio> radio(new Radio({"A", "two\\nlines"}));
    const int h = textHeight("two\\nlines");
    ASSERT_GT(h, 20);
    const int first = std::max(textHeight(), 16);
    EXPECT_EQ(radio->heights(200, 0), (std::vector<int>{first > 17 ? 17 : first, 17}));
}

TEST(RadioButtons, aGreatestHeightBelowTheTextEndsTheSharing)
{
    const Library library;
    KsRef<Radio> radio(new Radio({"A", "B", "C"}));
    radio->maxHeight = 30 + 3 * 10;
    const int h = std::max(textHeight(), 16);
    EXPECT_EQ(radio->heights(200, 500), (std::vector<int>{h, h, h}));
    EXPECT_EQ(radio->heights(200, 30), (std::vector<int>{h, h, h}));
}

TEST(RadioButtons, aHugeHeightIsSharedAtOnce)
{
    const Library library;
    KsRef<Radio> radio(new Radio({"A", "B", "C"}));
    const std::vector<int> heights = radio->heights(200, 1000000);
    EXPECT_EQ(heights, (std::vector<int>{32766, 32766, 32766})) << "below an open maximum";
    EXPECT_EQ(radio->heights(200, -1000000)[0], std::min(std::max(textHeight(), 16), 17));
}

TEST(RadioButtons, aSmallLeastWidthHasNoEffectOnTheRows)
{
    Shown plain("label \"Quality\" " + three, Stage::Scene);
    const float w = plain.below<KsScale>(plain.row(0))->scaleFactor.getValue()[0];
    Shown narrow("label \"Quality\" minWidth 10 " + three, Stage::Scene);
    EXPECT_EQ(narrow.below<KsScale>(narrow.row(0))->scaleFactor.getValue()[0], w);
    EXPECT_EQ(narrow.radio->minWidth, 10);
}

TEST(RadioButtons, theWidestItemAndTheSumOfTheHeightsMakeTheirSize)
{
    const Library library;
    KsRef<Radio> radio(new Radio({"A", "a wider one", "two\\nlines"}));
    const int widest = KsFormweave::getLabelPixelSize("a wider one", nullptr)[0];
    const int sum = textHeight() + textHeight("a wider one") + textHeight("two\\nlines");
    EXPECT_EQ(radio->getComponentInitSize(), KbVec2i32(widest + 48 + 2, sum + 30));
    EXPECT_EQ(radio->getLabelInitSize(), KbVec2i32(0, 0));
    // Asked anew each time.
    radio->addItem("B");
    EXPECT_EQ(radio->getComponentInitSize()[1], sum + textHeight() + 30);
    KbVec2i32 label(40, 10);
    radio->setLabelSize(label);
    EXPECT_EQ(radio->getComponentInitSize()[0], widest + 48 - 38);
    KbVec2i32 zone(150, 20), size, min, max;
    radio->setComponentSize(zone);
    radio->getDefaultSize(size, min, max);
    EXPECT_EQ(size, KbVec2i32(150, sum + textHeight() + 30));
    EXPECT_EQ(min, KbVec2i32(100, 4 * 16 + 28));
    EXPECT_EQ(max, KbVec2i32(32767, 32767));
}

TEST(RadioButtons, aTitleWiderThanTheItemsMakesTheSizeAsAWhole)
{
    const Library library;
    KsRef<Radio> radio(new Radio({"A", "B"}));
    radio->label = "A title that is much wider than the items";
    const KbVec2i32 title = KsFormweave::getLabelPixelSize(radio->label, nullptr);
    EXPECT_EQ(radio->getComponentInitSize(), KbVec2i32(title[0] + 24 + 2, title[1]));
    radio->labelVisibility = false;
    EXPECT_EQ(radio->getComponentInitSize()[1], 2 * textHeight() + 30);
}

// The window.

TEST(RadioButtons, standInABoxUnderTheirTitle)
{
    Shown shown;
    auto* frame = shown.radio->getWidget();
    EXPECT_EQ(frame->objectName(), "LMNKsDialogQRadioButtonsFrame");
    EXPECT_EQ(shown.radio->getLabelWidget(), frame);
    ASSERT_TRUE(shown.group());
    EXPECT_EQ(shown.group()->objectName(), "LMNKsDialogQRadioButtonsButtonGroupWidget");
    EXPECT_EQ(shown.group()->title(), "Quality");
    EXPECT_EQ(shown.group()->geometry(), QRect(3, 3, frame->width() - 6, frame->height() - 6));
    EXPECT_EQ(shown.texts2D(), (Strings{"Draft", "Preview", "Final"}));
    EXPECT_EQ(shown.checked2D(), 0);
    const QString font = KsFormweave::getFormweaveFont().toString();
    EXPECT_EQ(shown.group()->font().toString(), font);
    auto* column = qobject_cast<QVBoxLayout*>(shown.group()->layout());
    ASSERT_TRUE(column);
    auto* ids = frame->findChild<QButtonGroup*>();
    ASSERT_TRUE(ids);
    for (int i = 0; i < 3; ++i) {
        QRadioButton* button = shown.buttons()[i];
        EXPECT_EQ(button->parentWidget(), shown.group());
        EXPECT_EQ(button->objectName(), "LMNKsDialogQRadioButtonsRadioButtonWidget");
        EXPECT_EQ(button->font().toString(), font);
        EXPECT_EQ(column->indexOf(button), i);
        EXPECT_EQ(ids->id(button), i);
        EXPECT_EQ(button->sizePolicy(),
                  QSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding));
        EXPECT_GE(button->height(), button->fontMetrics().height()) << "cut";
    }
    EXPECT_EQ(frame->minimumSize(), QSize(shown.radio->width, shown.radio->height));
}

TEST(RadioButtons, theTitleIsAlignedByTheField)
{
    Shown shown;
    EXPECT_EQ(shown.radio->labelAlignment, KsFormweave::LEFT);
    EXPECT_EQ(shown.group()->alignment(), Qt::AlignLeft);
    shown.radio->labelAlignment = KsFormweave::CENTER;
    EXPECT_EQ(shown.group()->alignment(), Qt::AlignHCenter);
    shown.radio->labelAlignment = KsFormweave::RIGHT;
    EXPECT_EQ(shown.group()->alignment(), Qt::AlignRight);
}

TEST(RadioButtons, withoutItsLabelTheTitleIsClearedAndTheSpaceStays)
{
    Shown shown;
    const QSize frame = shown.radio->getWidget()->size();
    shown.radio->labelVisibility = false;
    EXPECT_EQ(shown.group()->title(), "");
    EXPECT_EQ(shown.radio->getWidget()->size(), frame);
    EXPECT_EQ(Stage::shown(shown.radio, "labelSwitch"), KsSwitch::NONE);
    shown.radio->label = "New";
    EXPECT_EQ(shown.group()->title(), "");
    shown.radio->labelVisibility = true;
    EXPECT_EQ(shown.group()->title(), "New");
    EXPECT_EQ(Stage::shown(shown.radio, "labelSwitch"), KsSwitch::ALL);
}

TEST(RadioButtons, anItemIsShownAsItIsWrittenWhileTheTitleHasEscapes)
{
    Shown shown("label \"one\\\\ttwo\" items [ \"a\\\\nb\", \"c\" ]");
    EXPECT_EQ(shown.group()->title(), "one\ttwo");
    EXPECT_EQ(shown.texts2D()[0], "a\\nb");
}

TEST(RadioButtons, aClickOnAButtonTellsTheAuditorsBeforeTheSceneFollows)
{
    Shown shown;
    int drawn = -1;
    shown.listener.then = [&](KsDialogChoice*) { drawn = shown.checked3D(); };
    shown.clickButton(2);
    EXPECT_EQ(drawn, 0);
    EXPECT_EQ(shown.listener.told, std::vector<int>{2});
    EXPECT_EQ(shown.radio->selectedItem, 2);
    EXPECT_EQ(shown.checked2D(), 2);
    EXPECT_EQ(shown.checked3D(), 2);
    // Also for the one that is checked already.
    shown.clickButton(2);
    EXPECT_EQ(shown.listener.told, (std::vector<int>{2, 2}));
    EXPECT_EQ(shown.other->selectedItem, 0);
}

TEST(RadioButtons, whatAnAuditorSelectsStandsInBothPresentations)
{
    Shown shown;
    shown.listener.then = [](KsDialogChoice* choice) { choice->selectedItem = 1; };
    shown.clickButton(2);
    EXPECT_EQ(shown.listener.told, std::vector<int>{2});
    EXPECT_EQ(shown.radio->selectedItem, 1);
    EXPECT_EQ(shown.checked2D(), 1);
    EXPECT_EQ(shown.checked3D(), 1);
}

TEST(RadioButtons, arrowKeysMoveTheSelection)
{
    Shown shown("label \"Quality\" selectedItem 1 " + three, Stage::Window);
    shown.buttons()[1]->setFocus();
    QTest::keyClick(shown.buttons()[1], Qt::Key_Down);
    EXPECT_EQ(shown.radio->selectedItem, 2);
    QTest::keyClick(shown.buttons()[2], Qt::Key_Up);
    EXPECT_EQ(shown.radio->selectedItem, 1);
    EXPECT_EQ(shown.listener.told, (std::vector<int>{2, 1}));
}

TEST(RadioButtons, inTheWindowABadSelectionIsRepairedInSilence)
{
    struct Count : KsDialogRadioButtons {
        void updateFromSensor(KsSensor* sensor) override
        {
            ++calls;
            KsDialogRadioButtons::updateFromSensor(sensor);
        }
        int calls = 0;
    };
    Shown shown("label \"Quality\" " + three, Stage::Window);
    auto* radio = new Count;
    for (const char* item : {"a", "b", "c"}) radio->addItem(item);
    shown.dialog->addChild(radio);
    radio->calls = 0;
    radio->selectedItem = -1;
    EXPECT_EQ(radio->selectedItem, 0);
    radio->selectedItem = 9;
    EXPECT_EQ(radio->selectedItem, 2);
    EXPECT_EQ(radio->calls, 2) << "one for each write of ours, none for a repair";
    QRadioButton* last = radio->getWidget()->findChildren<QRadioButton*>().last();
    EXPECT_TRUE(last->isChecked());
}

TEST(RadioButtons, aSelectionFromAFileIsRepairedByTheRuleOfEachPresentation)
{
    Shown window("selectedItem 7 " + three, Stage::Window);
    EXPECT_EQ(window.radio->selectedItem, 2);
    EXPECT_EQ(window.checked2D(), 2);
    Shown scene("selectedItem 7 " + three, Stage::Scene);
    EXPECT_EQ(scene.radio->selectedItem, 0);
    EXPECT_EQ(scene.checked3D(), 0);
    scene.radio->selectedItem = 2;
    scene.radio->selectedItem = -5;
    EXPECT_EQ(scene.radio->selectedItem, 2) << "the last valid one";
    EXPECT_EQ(scene.checked3D(), 2);
}

TEST(RadioButtons, aSelectionFromCodeIsSeenInBothAndToldToNobody)
{
    Shown shown;
    shown.radio->selectedItem = 1;
    EXPECT_EQ(shown.checked2D(), 1);
    EXPECT_EQ(shown.checked3D(), 1);
    EXPECT_TRUE(shown.listener.told.empty());
}

TEST(RadioButtons, aRebuildLeavesOneSetOfButtonsAndTheFocusOnTheChecked)
{
    Shown shown("selectedItem 1 " + three, Stage::Window);
    QPointer<QRadioButton> former(shown.buttons()[1]);
    former->setFocus();
    shown.dialog->updateDialogBuild(1);
    QWidget* window = shown.dialog->getBaseWidget();
    EXPECT_EQ(window->findChildren<QRadioButton*>().size(), 3 + 2);
    EXPECT_NE(shown.buttons()[1], former.data());
    EXPECT_EQ(shown.checked2D(), 1);
    EXPECT_EQ(window->focusWidget(), shown.buttons()[1]);
    former->click();
    EXPECT_TRUE(shown.listener.told.empty()) << "a box that was replaced tells nothing";
    Stage::settle();
    EXPECT_FALSE(former);
    shown.clickButton(2);
    EXPECT_EQ(shown.listener.told, std::vector<int>{2});
}

TEST(RadioButtons, takenDownTheyAreBuiltAnewWithTheirSelection)
{
    Shown shown("label \"Quality\" " + three, Stage::Window);
    QPointer<QWidget> frame(shown.radio->getWidget());
    shown.radio->destroyWidget();
    EXPECT_TRUE(frame.isNull());
    EXPECT_EQ(shown.radio->getWidget(), nullptr);
    EXPECT_EQ(shown.radio->getLabelWidget(), nullptr);
    shown.radio->selectedItem = 2;
    shown.radio->addItem("more");
    KbVec2i32 size(0, 0), place(0, 0);
    shown.radio->buildWidget(shown.dialog->getBaseWidget(), size, place, 1);
    EXPECT_EQ(shown.texts2D().size(), 4u);
    EXPECT_EQ(shown.checked2D(), 2);
}

TEST(RadioButtons, aWindowThatIsDeletedTakesItsButtonsAlone)
{
    Shown shown;
    delete shown.dialog->getBaseWidget();
    EXPECT_EQ(shown.radio->getWidget(), nullptr);
    shown.radio->addItem("more");
    shown.radio->selectedItem = 3;
    EXPECT_EQ(shown.checked3D(), 3);
    shown.radio->removeItem(0);
    EXPECT_EQ(shown.texts3D(), (Strings{"Preview", "Final", "more"}));
}

// The scene.

TEST(RadioButtons, itsPartsStandInTheOrderOfTheCatalog)
{
    Shown shown;
    EXPECT_EQ(partRows(shown.radio, "frameSep"),
              (Strings{"frameSep Separator geomSwitch", "frame Group frameSep public",
                       "labelSep Separator geomSwitch", "labelSwitch Switch labelSep",
                       "labelProp Group labelSwitch public", "itemsSep Switch geomSwitch",
                       "itemSep Separator itemsSep", "itemFrameSep Separator itemSep",
                       "itemFrame Group itemFrameSep public", "itemBtnSep Separator itemSep",
                       "itemBtnSwtch Switch itemBtnSep", "stateOff Group itemBtnSwtch public",
                       "stateOn Group itemBtnSwtch public", "itemTextSep Separator itemSep",
                       "itemTextProp Group itemTextSep public"}));
    EXPECT_EQ(shown.rows()->getName(), KbName("itemsSep"));
    EXPECT_EQ(Shown::below<KsTranslation>(
                  static_cast<KsGroup*>(shown.radio->getAnyPart("itemTextSep", false)))
                  ->getName(),
              KbName("radioItemTextTranslation"));
}

TEST(RadioButtons, textsOfSeveralLinesStandBesideTheirButtonsAndDoNotOverlap)
{
    for (const char* items : {"[ \"one\", \"two\nlines\", \"three\nlines\nhere\", \"four\" ]",
                              "[ \"first of\ntwo\", \"second\", \"third of\ntwo\", \"last\" ]"}) {
        Shown shown(std::string("label \"Several\" items ") + items, Stage::Scene);
        shown.draw();
        float above = 1e9f;
        for (int i = 0; i < 4; ++i) {
            auto* text = shown.below<KsText3>(shown.row(i));
            const std::string item = shown.radio->items[i].toUtf8();
            EXPECT_EQ(text->string.getNum(), 1 + std::count(item.begin(), item.end(), '\n'));
            const KbBox3f box = shown.boxOf(text);
            const float button = shown.boxOf(shown.below<KsSwitch>(shown.row(i))).getCenter()[1];
            EXPECT_LT(box.getMin()[1], button - 2) << item;
            EXPECT_GT(box.getMax()[1], button + 2) << item;
            EXPECT_LE(box.getMax()[1], above + 0.1f) << item << " overlaps the one above";
            above = box.getMin()[1];
        }
        const KbBox3f frame = shown.boxOf(shown.radio, "frameSep");
        const KbBox3f rows = shown.boxOf(shown.radio, "itemsSep");
        EXPECT_LE(rows.getMax()[0], frame.getMax()[0]);
        EXPECT_GE(above, frame.getMin()[1]);
    }
}

TEST(RadioButtons, aTextThatGetsAnotherLineStaysInTheMiddleOfItsRow)
{
    Shown shown("label \"Several\" items [ \"a\", \"b\" ]", Stage::Scene);
    const auto middle = [&](int row) {
        shown.draw();
        auto* text = shown.below<KsText3>(shown.row(row));
        return shown.boxOf(text).getCenter()[1];
    };
    const float first = middle(0), second = middle(1);
    shown.radio->items.set1Value(1, "b\nc");
    EXPECT_NEAR(middle(1), second, 0.5f);
    shown.radio->items.set1Value(0, "a\nb\nc");
    EXPECT_NEAR(middle(0), first, 0.5f);
    EXPECT_NEAR(middle(1), second, 0.5f);
    shown.radio->items.set1Value(1, "b");
    EXPECT_NEAR(middle(1), second, 0.5f);
    EXPECT_EQ(shown.texts3D()[1], "b");
}

TEST(RadioButtons, rowsStandBelowTheTitleAllEquallyHigh)
{
    Shown shown("label \"Quality\" height 150 " + three, Stage::Scene);
    const float w = static_cast<float>(shown.radio->width);
    const float h = static_cast<float>(shown.radio->height);
    ASSERT_EQ(h, 150);
    // The rows share what their texts leave of the height below the title.
    const float above = 3.0f * static_cast<float>(std::max(16 - textHeight(), 0));
    const float height = (h - 30 + above) / 3;
    EXPECT_FLOAT_EQ(shown.rowHeight(), height);
    EXPECT_TRUE(shown.before<KsTranslation>("itemsSep")
                    ->translation.getValue()
                    .equals(KbVec3f(0, (h - 6) / 2 - 20 + height / 2, 0), 1e-3f));
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(shown.below<KsScale>(shown.row(i))
                        ->scaleFactor.getValue()
                        .equals(KbVec3f(w - 20, height, 1), 1e-3f));
    shown.draw();
    const KbBox3f frame = shown.boxOf(shown.radio, "frameSep");
    const KbBox3f rows = shown.boxOf(shown.radio, "itemsSep");
    EXPECT_NEAR(frame.getSize()[0], w - 6, 1e-3);
    EXPECT_NEAR(frame.getSize()[1], h - 6, 1e-3);
    EXPECT_NEAR(rows.getMax()[1], frame.getMax()[1] - 20, 1e-2);
    EXPECT_GE(rows.getMin()[1], frame.getMin()[1]);
    EXPECT_GE(rows.getMin()[0], frame.getMin()[0]);
    EXPECT_LE(rows.getMax()[0], frame.getMax()[0]);
    EXPECT_GT(rows.getMax()[2], frame.getMax()[2]);
}

TEST(RadioButtons, theTitleIsAlignedWithinTheFrameInTheScene)
{
    Shown shown("label \"Quality\" " + three, Stage::Scene);
    const auto title = [&] {
        shown.draw();
        return shown.boxOf(shown.radio, "labelSep");
    };
    const KbBox3f frame = shown.boxOf(shown.radio, "frameSep");
    EXPECT_NEAR(title().getMin()[0], frame.getMin()[0] + 8, 1.01);
    EXPECT_NEAR(title().getCenter()[1], frame.getMax()[1] - 12, 1e-2);
    shown.radio->labelAlignment = KsFormweave::CENTER;
    EXPECT_NEAR(title().getCenter()[0], frame.getCenter()[0], 1.01);
    shown.radio->labelAlignment = KsFormweave::RIGHT;
    EXPECT_NEAR(title().getMax()[0], frame.getMax()[0] - 8, 1.01);
    EXPECT_GT(title().getMax()[2], frame.getMax()[2]);
    shown.radio->label = "Another";
    EXPECT_NEAR(title().getMax()[0], frame.getMax()[0] - 8, 1.01) << "measured anew";
}

TEST(RadioButtons, aClickOnARowTellsTheAuditorsWhenAllViewsShowIt)
{
    Shown shown;
    int drawn = -1, checked = -1;
    shown.listener.then = [&](KsDialogChoice*) {
        drawn = shown.checked3D();
        checked = shown.checked2D();
    };
    for (int i : {2, 0, 1}) {
        EXPECT_TRUE(shown.clickRow(i));
        EXPECT_EQ(shown.radio->selectedItem, i);
        EXPECT_EQ(drawn, i);
        EXPECT_EQ(checked, i);
    }
    EXPECT_EQ(shown.listener.told, (std::vector<int>{2, 0, 1}));
    EXPECT_EQ(shown.other->selectedItem, 0);
}

TEST(RadioButtons, aClickOnTheSelectedRowIsToldThoughNothingChanges)
{
    Shown shown("selectedItem 1 " + three);
    int changes = 0;
    KsFieldSensor sensor([](void* data, KsSensor*) { ++*static_cast<int*>(data); }, &changes);
    sensor.setPriority(0);
    sensor.attach(&shown.radio->selectedItem);
    shown.clickRow(1);
    EXPECT_EQ(shown.listener.told, std::vector<int>{1});
    EXPECT_EQ(changes, 0);
}

TEST(RadioButtons, aClickOnTheFrameOrTheTitleDoesNothing)
{
    Shown shown("label \"Quality\" selectedItem 1 " + three);
    shown.clickPart(shown.radio, "labelSep");
    const KbBox3f frame = shown.boxOf(shown.radio, "frameSep");
    shown.click(KbVec2f(frame.getMin()[0] + 3, frame.getMin()[1] + 3 + Stage::viewHeight));
    EXPECT_TRUE(shown.listener.told.empty());
    EXPECT_EQ(shown.radio->selectedItem, 1);
}

TEST(RadioButtons, aClickInTheSceneClosesWhatIsOpenAndLeavesNothingActive)
{
    Shown shown;
    Active::set3DCurrentActive(shown.other);
    shown.clickRow(1);
    EXPECT_EQ(Active::m_lastActive, nullptr);
}

TEST(RadioButtons, disabledTheyTakeNoClickInEitherPresentation)
{
    Shown shown("label \"Quality\" enable FALSE " + three);
    EXPECT_FALSE(shown.buttons()[1]->isEnabled());
    shown.clickButton(1);
    shown.clickRow(1);
    EXPECT_EQ(shown.radio->selectedItem, 0);
    EXPECT_TRUE(shown.listener.told.empty());
    shown.radio->enable = true;
    shown.clickButton(1);
    shown.clickRow(2);
    EXPECT_EQ(shown.listener.told, (std::vector<int>{1, 2}));
}

TEST(RadioButtons, anotherSkinIsSeenInEveryRow)
{
    Shown shown("label \"Quality\" " + three, Stage::Scene);
    KsNode* frame = shown.radio->getPart("itemFrame", false);
    const float before = shown.boxOf(shown.radio, "itemsSep").getSize()[2];
    KsFormweave::setSkin(FORMWEAVE_SKIN_DIR "/dark");
    shown.draw();
    EXPECT_EQ(shown.radio->getPart("itemFrame", false), frame);
    EXPECT_NE(shown.boxOf(shown.radio, "itemsSep").getSize()[2], before);
    shown.clickRow(2);
    EXPECT_EQ(shown.radio->selectedItem, 2);
}

// Lists that change.

TEST(RadioButtons, aListThatGrowsAndShrinksKeepsRowsAndTextsInStep)
{
    Shown shown;
    const auto expectTexts = [&](const Strings& texts) {
        EXPECT_EQ(shown.texts2D(), texts);
        EXPECT_EQ(shown.texts3D(), texts);
        EXPECT_EQ(shown.rows()->getNumChildren(), 2 * static_cast<int>(texts.size()));
        for (int i = 0; i < static_cast<int>(texts.size()); ++i) {
            shown.clickRow(i);
            EXPECT_EQ(shown.checked2D(), i);
            shown.clickButton(i);
            EXPECT_EQ(shown.checked3D(), i);
        }
    };
    shown.radio->insertItem(0, "First");
    expectTexts({"First", "Draft", "Preview", "Final"});
    shown.radio->addItem("Last");
    expectTexts({"First", "Draft", "Preview", "Final", "Last"});
    shown.radio->removeItem(1);
    shown.radio->removeItem(1);
    expectTexts({"First", "Final", "Last"});
    shown.radio->items = "Only";
    expectTexts({"Only"});
    const char* const several[] = {"a", "b"};
    for (int i = 0; i < 2; ++i) shown.radio->items.set1Value(i, several[i]);
    expectTexts({"a", "b"});
}

TEST(RadioButtons, aListThatBecomesEmptyKeepsOneBlankButton)
{
    Shown window("label \"Quality\" " + three, Stage::Window);
    for (int i = 0; i < 3; ++i) window.radio->removeItem(0);
    EXPECT_EQ(window.texts2D(), Strings{""});
    window.radio->addItem("again");
    EXPECT_EQ(window.texts2D(), Strings{"again"});
    window.clickButton(0);
    EXPECT_EQ(window.listener.told, std::vector<int>{0});
}

TEST(RadioButtons, aListThatBecomesEmptyShowsNoRow)
{
    Shown shown;
    for (int i = 0; i < 3; ++i) shown.radio->removeItem(0);
    EXPECT_EQ(Stage::shown(shown.radio, "itemsSep"), KsSwitch::NONE);
    shown.radio->addItem("again");
    EXPECT_EQ(shown.texts2D(), Strings{"again"});
    EXPECT_EQ(shown.texts3D(), Strings{"again"});
    shown.clickRow(0);
    shown.clickButton(0);
    EXPECT_EQ(shown.listener.told, (std::vector<int>{0, 0}));
}

TEST(RadioButtons, anotherNumberOfItemsLaysTheDialogOutAnew)
{
    Shown shown("label \"Quality\" " + three, Stage::Scene);
    shown.dialog->windowResizedByChildren = true;
    const int three3D = shown.radio->height;
    for (const char* item : {"d", "e", "f", "g"}) shown.radio->addItem(item);
    EXPECT_EQ(shown.radio->height, three3D + 4 * textHeight());
    shown.draw();
    const KbBox3f frame = shown.boxOf(shown.radio, "frameSep");
    EXPECT_NEAR(frame.getSize()[1], shown.radio->height - 6, 1e-3);
    EXPECT_GE(shown.boxOf(shown.radio, "itemsSep").getMin()[1], frame.getMin()[1]);
    shown.clickRow(6);
    EXPECT_EQ(shown.radio->selectedItem, 6);
    for (int i = 0; i < 4; ++i) shown.radio->removeItem(0);
    EXPECT_EQ(shown.radio->height, three3D) << "as small again";
}

TEST(RadioButtons, theSelectionFollowsAListThatShrinks)
{
    Shown shown("selectedItem 2 " + three);
    shown.radio->removeItem(0);
    EXPECT_EQ(shown.radio->selectedItem, 1);
    EXPECT_EQ(shown.checked2D(), 1);
    EXPECT_EQ(shown.checked3D(), 1);
}

// Auditors that do what they like.

class RadioButtonsBoth : public testing::TestWithParam<Stage::Road> {
protected:
    void choose(int i)
    {
        GetParam() == Stage::Scene ? (void)shown.clickRow(i) : shown.clickButton(i);
    }
    int numBoxes() const
    {
        return shown.dialog->getBaseWidget()->findChildren<QGroupBox*>().size();
    }
    Shown shown;
};

INSTANTIATE_TEST_SUITE_P(Roads, RadioButtonsBoth, testing::Values(Stage::Window, Stage::Scene),
                         [](const testing::TestParamInfo<Stage::Road>& road) {
                             return road.param == Stage::Scene ? "Scene" : "Window";
                         });

TEST_P(RadioButtonsBoth, anAuditorMayRemoveThem)
{
    shown.listener.then = [&](KsDialogChoice*) { shown.dialog->removeChild(0); };
    choose(1);
    EXPECT_EQ(shown.listener.told, std::vector<int>{1});
    Stage::settle();
    EXPECT_EQ(numBoxes(), 1);
}

TEST_P(RadioButtonsBoth, anAuditorMayDropTheirDialog)
{
    QPointer<QWidget> window(shown.dialog->getBaseWidget());
    shown.listener.then = [&](KsDialogChoice*) {
        shown.dialog->destroyWidget();
        shown.dropDialog();
    };
    choose(1);
    EXPECT_EQ(shown.listener.told, std::vector<int>{1});
    Stage::settle();
    EXPECT_TRUE(!window || window->findChildren<QGroupBox*>().isEmpty());
}

TEST_P(RadioButtonsBoth, anAuditorMayChangeTheList)
{
    shown.listener.then = [&](KsDialogChoice* choice) {
        for (int i = 0; i < 3; ++i) choice->removeItem(0);
        choice->addItem("x");
        choice->addItem("y");
    };
    choose(2);
    shown.listener.then = nullptr;
    Stage::settle();
    EXPECT_EQ(shown.texts2D(), (Strings{"x", "y"}));
    EXPECT_EQ(shown.texts3D(), (Strings{"x", "y"}));
    for (int i : {1, 0}) {
        choose(i);
        EXPECT_EQ(shown.radio->selectedItem, i);
        EXPECT_EQ(shown.checked2D(), i);
        EXPECT_EQ(shown.checked3D(), i);
    }
}

TEST_P(RadioButtonsBoth, anAuditorMayRebuildThem)
{
    shown.listener.then = [&](KsDialogChoice* choice) {
        KbVec2i32 size(0, 0), place(0, 0);
        choice->buildWidget(shown.dialog->getBaseWidget(), size, place, 1);
        shown.dialog->updateAfterSceneGraphChange();
        shown.draw();
    };
    choose(2);
    shown.listener.then = nullptr;
    Stage::settle();
    EXPECT_EQ(numBoxes(), 2);
    EXPECT_EQ(shown.checked2D(), 2);
    EXPECT_EQ(shown.checked3D(), 2);
    choose(1);
    EXPECT_EQ(shown.listener.told, (std::vector<int>{2, 1}));
}

TEST_P(RadioButtonsBoth, withoutAuditorsOfTheirOwnTheDialogsHearsOfThem)
{
    struct Dialog : KsDialogAuditor {
        void dialogRadioButtons(KsDialogRadioButtons* node) override { told.push_back(node); }
        std::vector<KsDialogRadioButtons*> told;
    } dialog;
    shown.dialog->addAuditor(&dialog);
    choose(1);
    EXPECT_TRUE(dialog.told.empty());
    shown.radio->removeAuditor(&shown.listener);
    choose(2);
    EXPECT_EQ(dialog.told, std::vector<KsDialogRadioButtons*>{shown.radio});
    shown.dialog->removeAuditor(&dialog);
}

// Files and bad input.

TEST(RadioButtons, areWrittenAsTheyWereRead)
{
    const std::string text = "DialogRadioButtons { label \"Quality\" labelAlignment CENTER "
                             "items [ \"a\", \"b \\\"quoted\\\"\" ] selectedItem 1 }";
    const Library library;
    const auto read = [](const std::string& from) {
        KsInput in;
        in.setBuffer(from.data(), from.size());
        return KsRef<KsSeparator>(KsDB::readAll(&in));
    };
    const auto first = read(text);
    ASSERT_TRUE(first);
    const std::string once = written(first->getChild(0));
    const auto second = read(once);
    ASSERT_TRUE(second);
    EXPECT_EQ(written(second->getChild(0)), once);
    EXPECT_NE(once.find("labelAlignment CENTER"), std::string::npos);
    KsRef<KsDialogRadioButtons> plain(new KsDialogRadioButtons);
    EXPECT_EQ(written(plain.get()).find("labelAlignment"), std::string::npos);
}

TEST(RadioButtons, aDialogThatStandsInASceneIsWrittenAsItWasRead)
{
    Shown shown("label \"Quality\" " + three, Stage::Scene);
    const std::string before = written(shown.dialog.get());
    EXPECT_EQ(before.find("height"), std::string::npos) << before;
    EXPECT_EQ(before.find("minHeight"), std::string::npos) << before;
    shown.clickRow(2);
    EXPECT_NE(written(shown.dialog.get()).find("selectedItem 2"), std::string::npos);
}

TEST(RadioButtons, strangeTextsAreShownAsPlainTextAndCut)
{
    Shown shown("label \"<b>bold</b>\"", Stage::Both);
    const std::string huge(1000000, 'm');
    const Strings strange = {"two\nlines",           "a\ttab",   "\"quotes\"",
                             "\xC3\xA4\xE2\x82\xAC", "<i>x</i>", huge};
    for (const std::string& text : strange) shown.radio->addItem(KbString::fromUtf8(text.c_str()));
    ASSERT_EQ(shown.buttons().size(), 6);
    for (std::size_t i = 0; i < 5; ++i) {
        EXPECT_EQ(shown.texts2D()[i], strange[i]);
        shown.clickButton(static_cast<int>(i));
        EXPECT_EQ(shown.radio->selectedItem, static_cast<int>(i));
    }
    EXPECT_LT(shown.texts2D()[5].size(), huge.size());
    EXPECT_EQ(shown.radio->items[5].toUtf8(), huge) << "the field keeps it";
    shown.draw();
    EXPECT_EQ(shown.checked3D(), 4);
}

TEST(RadioButtons, strangeSizesDoNoHarm)
{
    for (const char* fields :
         {"width -5 height -5", "minWidth 500 maxWidth 10", "minHeight 900 maxHeight 4",
          "width 2000000000 height 2000000000", "minWidth -2147483648 maxHeight -7",
          "fixedHeight TRUE height 1 fixedWidth TRUE width 1"}) {
        Shown shown(std::string("label \"Quality\" ") + fields + " " + three);
        EXPECT_EQ(shown.buttons().size(), 3) << fields;
        shown.radio->selectedItem = 1;
        shown.radio->addItem("more");
        shown.draw();
        EXPECT_EQ(shown.checked2D(), 1) << fields;
        EXPECT_EQ(shown.checked3D(), 1) << fields;
    }
}

TEST(RadioButtons, thousandsOfThemWork)
{
    std::string items = "items [";
    for (int i = 0; i < 5000; ++i) items += " \"" + std::to_string(i) + "\",";
    Shown shown("selectedItem 4999 " + items + " ]");
    EXPECT_EQ(shown.buttons().size(), 5000);
    EXPECT_EQ(shown.numRows(), 5000);
    EXPECT_EQ(shown.radio->selectedItem, 4999);
    shown.radio->selectedItem = 1;
    EXPECT_TRUE(shown.buttons()[1]->isChecked());
    shown.radio->removeItem(0);
    EXPECT_EQ(shown.numRows(), 4999);
    EXPECT_EQ(shown.buttons().size(), 4999);
    shown.draw();
}
