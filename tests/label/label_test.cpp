// A label: a text that is its component.

#include "base/Elements.h"

#include <arborium/kits/KsNodekitCatalog.h>
#include <arborium/nodes/KsText3.h>
#include <dialog/Stage.h>

#include <QDir>
#include <QFrame>
#include <QLabel>
#include <QPointer>
#include <cmath>

namespace {

class ProbeLabel : public KsDialogLabel {
public:
    using KsDialogLabel::m_componentInitSize;
    using KsDialogLabel::m_componentSize;
    using KsDialogLabel::m_label3D;
    using KsDialogLabel::m_labelWidget;
};

class Label : public DialogBase {
protected:
    void SetUp() override
    {
        DialogBase::SetUp();
        label = new ProbeLabel;
    }
    void TearDown() override
    {
        label.reset();
        DialogBase::TearDown();
    }
    void setLabelZone(int w) const
    {
        KbVec2i32 zone(w, 20);
        label->setLabelSize(zone);
    }
    const KsText3* text() const { return label->m_label3D.text.get(); }
    Calls lines() const
    {
        Calls all;
        for (const KbString& line : text()->string.values()) all.push_back(line.toUtf8());
        return all;
    }
    float shift() const { return label->m_label3D.translation->translation.getValue()[0]; }
    float widthOf(const char* line) const
    {
        const KsRef<KsText3> probe(new KsText3);
        probe->parts = KsText3::FRONT;
        probe->string.set1Value(0, line);
        const KsRef<KsSeparator> scene(new KsSeparator);
        scene->addChild(label->getAnyPart("labelProp", false));
        scene->addChild(probe.get());
        return measure(scene.get()).getSize()[0];
    }

    KsRef<ProbeLabel> label;
};

/// A label with the auditorID "label" in a dialog.
std::string formWith(const std::string& fields)
{
    return "TopLevelDialog { label \"Form\" RowDialog { DialogLabel { auditorID \"label\" " +
           fields + " } DialogCheckBox { auditorID \"box\" label \"Box\" } } }";
}

QFrame* frameOf(const KsDialogComponent* element)
{
    return qobject_cast<QFrame*>(element->getWidget());
}

QLabel* textOf(const KsDialogComponent* element)
{
    return element->getWidget()->findChild<QLabel*>("LMNKsDialogQLabelLabelWidget");
}

} // namespace

// The class.

TEST_F(Label, isAlignedToTheLeftUnlessAFileSaysOtherwise)
{
    EXPECT_EQ(label->labelAlignment, KsFormweave::LEFT);
    EXPECT_TRUE(label->labelAlignment.isDefault());
    EXPECT_EQ(KsRef<KsDialogCheckBox>(new KsDialogCheckBox)->labelAlignment, KsFormweave::RIGHT);
    EXPECT_EQ(readNode<KsDialogLabel>("DialogLabel { labelAlignment RIGHT }")->labelAlignment,
              KsFormweave::RIGHT);
    EXPECT_EQ(readNode<KsDialogLabel>("DialogLabel { label \"a\" }")->labelAlignment,
              KsFormweave::LEFT);
}

TEST_F(Label, addsNoFieldAndTwoParts)
{
    const KsNodekitCatalog* parts = label->getNodekitCatalog();
    const int first = parts->getPartNumber("labelSep");
    ASSERT_GT(first, 0);
    EXPECT_EQ(parts->getPartNumber("labelProp"), first + 1);
    EXPECT_EQ(parts->getNumEntries(), first + 2);
    EXPECT_EQ(parts->getName(parts->getParent(first)), "geomSwitch");
    EXPECT_EQ(parts->getParent(first + 1), first);
    EXPECT_EQ(label->getAnyPart("labelSep", false), nullptr);
    EXPECT_FALSE(parts->isPublic(first));
    EXPECT_TRUE(parts->isPublic(first + 1));
    EXPECT_EQ(label->getFieldData()->getNumFields(),
              KsRef<PlainComponent>(new PlainComponent)->getFieldData()->getNumFields() + 2)
        << "no field but those of the parts";
}

TEST_F(Label, isWrittenAsItWasRead)
{
    const std::string text = std::string(header) + "\nDialogLabel {\n  label \"Two\\nlines\"\n"
                                                   "  labelAlignment CENTER\n}\n";
    const auto first = readNode<KsDialogLabel>("DialogLabel { label \"Two\\\\nlines\" "
                                               "labelAlignment CENTER }");
    ASSERT_TRUE(first);
    const std::string once = written(first.get());
    EXPECT_EQ(once.find("width"), std::string::npos);
    EXPECT_NE(once.find("labelAlignment"), std::string::npos);
    const auto second = readNode<KsDialogLabel>(once.substr(std::string(header).size()));
    ASSERT_TRUE(second) << once;
    EXPECT_EQ(written(second.get()), once);
    build(second.get(), 0);
    EXPECT_EQ(written(second.get()), once) << "a form in a scene changes nothing";
}

// Sizes.

TEST_F(Label, withoutTextTakesRoomForTheMarginsLessTheLabelColumn)
{
    setLabelZone(30);
    EXPECT_EQ(label->getComponentInitSize(), KbVec2i32(4 - 30, 0));
    KbVec2i32 zone(60, 33), size, min, max;
    label->setComponentSize(zone);
    label->getDefaultSize(size, min, max);
    EXPECT_EQ(size, KbVec2i32(60, 33)) << "the height is that of the component";
}

TEST_F(Label, takesNothingInTheLabelColumnAndIsNarrowerByIt)
{
    label->label = "Some words";
    EXPECT_EQ(label->getLabelInitSize(), KbVec2i32(0, 0));
    const KbVec2i32 text = label->getLabelPixelSize(label->label, nullptr);
    EXPECT_EQ(label->getComponentInitSize(), KbVec2i32(text[0] + 4, text[1]));
    setLabelZone(25);
    EXPECT_EQ(label->getComponentInitSize(), KbVec2i32(text[0] + 4, text[1])) << "measured once";
    label->m_componentInitSize.setValue(-1, -1);
    EXPECT_EQ(label->getComponentInitSize(), KbVec2i32(text[0] + 4 - 25, text[1]));
}

TEST(LabelBoth, inAColumnOfLabelsItsInitWidthIsNarrowerByTheColumn)
{
    Stage stage("TopLevelDialog { RowDialog {"
                " DialogLabel { auditorID \"label\" label \"Applies to the next frame\" }"
                " DialogCheckBox { auditorID \"box\" label \"Shadows\" } } }");
    auto* label = stage.find<KsDialogLabel>("label");
    const int column = stage.find<KsDialogCheckBox>("box")->getLabelInitSize()[0];
    ASSERT_GT(column, 20);
    const int text = KsFormweave::getLabelPixelSize(label->label, nullptr)[0];
    EXPECT_EQ(label->getComponentInitSize()[0], text + 4 - column);
    EXPECT_GE(label->width, text) << "the container adds the column back";
    EXPECT_GE(textOf(label)->width(), text - 3);
}

TEST_F(Label, defaultSizesRaiseTheStoredComponentSize)
{
    label->label = "Four\\nlines\\nof\\ntext";
    const int height = label->getComponentInitSize()[1];
    ASSERT_GT(height, 25);
    KbVec2i32 zone(10, 12), size, min, max;
    label->setComponentSize(zone);
    label->getDefaultSize(size, min, max);
    EXPECT_EQ(label->m_componentSize, KbVec2i32(25, 25));
    EXPECT_EQ(size, KbVec2i32(25, height)) << "at least as high as the text";
    EXPECT_EQ(min, KbVec2i32(25, 25));
    EXPECT_EQ(max, KbVec2i32(32767, 32767));
}

// The window.

TEST(LabelWindow, aFrameHoldsTheTextWithinItsMargins)
{
    Stage stage(formWith("label \"Some words\" height 60"), Stage::Window);
    auto* label = stage.find<KsDialogLabel>("label");
    QFrame* frame = frameOf(label);
    ASSERT_TRUE(frame);
    EXPECT_EQ(frame->objectName(), "LMNKsDialogQLabelFrame");
    ASSERT_TRUE(textOf(label));
    EXPECT_EQ(frame->findChildren<QWidget*>().size(), 1);
    EXPECT_EQ(textOf(label)->text(), "Some words");
    EXPECT_EQ(textOf(label)->font().toString(), KsFormweave::getFormweaveFont().toString());
    const int h = label->getLabelPixelSize(label->label, label)[1];
    EXPECT_EQ(textOf(label)->geometry(),
              QRect(3, 3 + (frame->height() - 6 - h) / 2, frame->width() - 6, h));
    EXPECT_EQ(label->getLabelWidget(), nullptr);
    EXPECT_TRUE(textOf(label)->isVisible());
    // And it follows the frame.
    frame->resize(frame->width() + 31, frame->height() + 17);
    EXPECT_EQ(label->width, frame->width());
    EXPECT_EQ(label->height, frame->height());
    EXPECT_EQ(textOf(label)->geometry(),
              QRect(3, 3 + (frame->height() - 6 - h) / 2, frame->width() - 6, h));
}

TEST(LabelWindow, theFrameHasAMinimumAndNoMaximum)
{
    Stage stage(formWith("label \"a\" width 90 fixedWidth TRUE minHeight 40"), Stage::Window);
    const QWidget* frame = stage.find<KsDialogLabel>("label")->getWidget();
    EXPECT_EQ(frame->minimumSize(), QSize(90, 40));
    EXPECT_EQ(frame->maximumSize(), QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX));
}

TEST(LabelWindow, fieldsReachTheText)
{
    Stage stage(formWith("label \"<b>a</b>\\\\nb\" labelAlignment RIGHT edgeStyle SHADOW_IN"),
                Stage::Window);
    auto* label = stage.find<KsDialogLabel>("label");
    EXPECT_EQ(textOf(label)->text(), "<b>a</b>\nb");
    EXPECT_EQ(textOf(label)->textFormat(), Qt::PlainText);
    EXPECT_EQ(textOf(label)->alignment() & Qt::AlignHorizontal_Mask, Qt::AlignRight);
    EXPECT_EQ(frameOf(label)->frameShape(), QFrame::StyledPanel);
    label->labelAlignment = KsFormweave::CENTER;
    EXPECT_EQ(textOf(label)->alignment() & Qt::AlignHorizontal_Mask, Qt::AlignHCenter);
    label->labelAlignment = KsFormweave::LEFT;
    EXPECT_EQ(textOf(label)->alignment() & Qt::AlignHorizontal_Mask, Qt::AlignLeft);
    label->label = u"\u03b1\u03b2";
    EXPECT_EQ(textOf(label)->text(), QString::fromUtf16(u"\u03b1\u03b2"));
    label->edgeStyle = KsDialogComponent::NONE;
    EXPECT_EQ(frameOf(label)->frameShape(), QFrame::NoFrame);
    label->labelVisibility = false;
    EXPECT_TRUE(textOf(label)->isVisible()) << "the text is the content";
}

TEST(LabelWindow, aWindowThatIsDeletedTakesItsTextAlone)
{
    Stage stage(formWith("label \"a\""));
    auto* label = stage.find<KsDialogLabel>("label");
    delete stage.dialog->getBaseWidget();
    EXPECT_EQ(label->getWidget(), nullptr);
    label->label = "other";
    label->labelAlignment = KsFormweave::RIGHT;
    stage.draw();
}

TEST(LabelWindow, aRebuildLeavesOneTextAndTheEndLeavesNone)
{
    Stage stage(formWith("label \"a\""), Stage::Window);
    auto* label = stage.find<KsDialogLabel>("label");
    const QPointer<QLabel> former = textOf(label);
    stage.dialog->updateDialogBuild(1);
    Stage::settle();
    EXPECT_FALSE(former);
    EXPECT_EQ(
        stage.dialog->getBaseWidget()->findChildren<QLabel*>("LMNKsDialogQLabelLabelWidget").size(),
        1);
    EXPECT_TRUE(textOf(label)->isVisible());
    const QPointer<QLabel> latter = textOf(label);
    label->destroyWidget();
    EXPECT_FALSE(latter);
    EXPECT_EQ(label->getWidget(), nullptr);
    label->label = "nobody shows it";
}

// The scene.

TEST_F(Label, eachLineOfTheTextIsALineOfTheScene)
{
    label->label = "one\\ntwo";
    build(label.get(), 0, 200, 60);
    EXPECT_EQ(lines(), Calls({"one", "two"}));
    EXPECT_EQ(text()->parts, KsText3::FRONT);
    // An escaped return stays in the text; behind a line feed it is dropped.
    label->label = "one\\n\\\rtwo\\\r\\n\\\r\\nthree";
    EXPECT_EQ(lines(), Calls({"one", "two\r", "", "three"}));
    label->label = "a\\n\\nb\\n";
    EXPECT_EQ(lines(), Calls({"a", "", "b"}));
    label->label = "";
    EXPECT_EQ(lines(), Calls()) << "no line of an earlier text stays";
}

TEST_F(Label, theTextIsBrokenAtTheMarginsOfItsComponent)
{
    label->label = "wwwwwww\\nxx";
    build(label.get(), 0, 200, 60);
    ASSERT_EQ(lines(), Calls({"wwwwwww", "xx"}));
    const float room = (widthOf("www") + widthOf("wwww")) / 2;
    build(label.get(), 0, static_cast<int>(room) + 6, 60);
    EXPECT_EQ(lines(), Calls({"www", "www", "w", "xx"})) << "anew at another width";
    label->label = "wwww";
    EXPECT_EQ(lines(), Calls({"www", "w"}));
}

TEST_F(Label, alignmentTurnsTheLinesAtOnceAndMovesTheTextAtTheNextBuild)
{
    label->label = "Some words";
    build(label.get(), 0, 201, 40);
    EXPECT_EQ(text()->justification, KsText3::LEFT);
    EXPECT_EQ(shift(), std::trunc(3 - 201 / 2.0f));
    label->labelAlignment = KsFormweave::CENTER;
    EXPECT_EQ(text()->justification, KsText3::CENTER);
    EXPECT_EQ(shift(), std::trunc(3 - 201 / 2.0f));
    build(label.get(), 0, 201, 40);
    EXPECT_EQ(shift(), 0);
    label->labelAlignment = KsFormweave::RIGHT;
    EXPECT_EQ(text()->justification, KsText3::RIGHT);
    EXPECT_EQ(shift(), 0);
    build(label.get(), 0, 201, 40);
    EXPECT_NEAR(shift(), 201 / 2.0f - 3, 1.1f);
}

TEST_F(Label, theTextStandsWhereItsAlignmentSays)
{
    for (const int alignment : {KsFormweave::LEFT, KsFormweave::CENTER, KsFormweave::RIGHT}) {
        label = new ProbeLabel;
        label->label = "Some words\\nand";
        label->labelAlignment = alignment;
        build(label.get(), 0, 200, 60);
        const KsRef<KsSeparator> scene(new KsSeparator);
        scene->addChild(label->m_label3D.translation.get());
        scene->addChild(label->getAnyPart("labelProp", false));
        scene->addChild(label->m_label3D.text.get());
        const KbBox3f box = measure(scene.get());
        const float low = box.getMin()[0], high = box.getMax()[0];
        if (alignment == KsFormweave::LEFT) {
            EXPECT_NEAR(low, -97, 1.0f);
        } else if (alignment == KsFormweave::RIGHT) {
            EXPECT_NEAR(high, 97, 1.0f);
        } else {
            EXPECT_NEAR(low + high, 0, 2.0f);
        }
        EXPECT_NEAR(box.getMin()[1] + box.getMax()[1], 0, 1e-3f);
    }
}

TEST_F(Label, anotherTextIsInTheMiddleAtOnce)
{
    label->label = "one";
    build(label.get(), 0, 200, 60);
    const float before = label->m_label3D.translation->translation.getValue()[1];
    label->label = "one\\ntwo\\nthree";
    EXPECT_GT(label->m_label3D.translation->translation.getValue()[1], before + 5);
}

TEST(LabelScene, aPressOnItIsThatOfThePanel)
{
    Stage stage(formWith("label \"Some words\""), Stage::Scene);
    auto* label = stage.find<KsDialogLabel>("label");
    EXPECT_TRUE(stage.clickPart(label, "labelSep"));
    auto* box = stage.find<KsDialogCheckBox>("box");
    EXPECT_FALSE(box->state);
    EXPECT_TRUE(stage.clickPart(box, "stateSep"));
    EXPECT_TRUE(box->state);
}

TEST(LabelScene, anotherSkinIsMeasuredAnew)
{
    Stage stage(formWith("label \"Some words that are long\" width 120 fixedWidth TRUE"),
                Stage::Scene);
    auto* label = stage.find<KsDialogLabel>("label");
    const KbBox3f before = stage.boxOf(label, "labelSep");
    const Folder folder;
    folder.file("TextProperties.arb",
                std::string(header) + "DEF DialogTextProperties Group { Font { size 22 } }");
    const QDir skin(FORMWEAVE_SKIN_DIR "/default");
    for (const QString& name : skin.entryList({"*.arb"})) {
        const std::string file = name.toStdString();
        if (file != "TextProperties.arb")
            folder.file(file, readText(skin.filePath(name).toStdString()));
    }
    KsFormweave::setSkin(folder.path().c_str());
    stage.draw();
    const KbBox3f after = stage.boxOf(label, "labelSep");
    EXPECT_GT(after.getSize()[1], 2 * before.getSize()[1]);
    EXPECT_LE(after.getSize()[0], 120 - 6 + 0.1f);
    KsFormweave::setSkin("default");
}

// Both.

TEST(LabelBoth, isGreyWhereItIsDisabled)
{
    Stage stage(formWith("label \"a\" enable FALSE"));
    auto* label = stage.find<KsDialogLabel>("label");
    EXPECT_FALSE(textOf(label)->isEnabled());
    label->enable = true;
    EXPECT_TRUE(textOf(label)->isEnabled());
}

TEST(LabelBoth, badInputKeepsALayout)
{
    for (const char* fields :
         {"width -5 height -7", "width 2000000000", "height 2000000000", "minWidth 300 maxWidth 20",
          "label \"a\\tb \\\"c\\\" \\\\\" width 1 maxWidth 1"}) {
        Stage stage(formWith(fields));
        auto* label = stage.find<KsDialogLabel>("label");
        ASSERT_TRUE(label) << fields;
        EXPECT_TRUE(textOf(label)) << fields;
        label->label = "wwww\\nwwww";
        stage.draw();
        EXPECT_LT(std::abs(stage.boxOf(label, "labelSep").getCenter()[0]), 1e9f) << fields;
    }
}

TEST_F(Label, aMegabyteOfTextIsCutAndWrappedInReasonableTime)
{
    label->label = std::string(1 << 20, 'w').c_str();
    build(label.get(), 0, 50, 20);
    std::size_t shown = 0;
    for (const std::string& line : lines()) shown += line.size();
    EXPECT_EQ(shown, 65536u);
    std::string many;
    for (int i = 0; i < 1 << 18; ++i) many += "ww\\n";
    label->label = many.c_str();
    EXPECT_GT(lines().size(), 1000u);
}
