// A separator: a line between rows or columns.

#include "base/Elements.h"

#include <arborium/kits/KsNodekitCatalog.h>
#include <arborium/nodes/KsMaterial.h>
#include <arborium/nodes/KsScale.h>
#include <dialog/Stage.h>

#include <QFrame>
#include <QPointer>

namespace {

std::string formWith(const char* container, const std::string& fields = "")
{
    return std::string("TopLevelDialog { label \"Form\" ") + container +
           " { auditorID \"stack\" DialogCheckBox { label \"Above\" } "
           "DialogSeparator { auditorID \"line\" " +
           fields + " } DialogCheckBox { label \"Below\" } } }";
}

QFrame* frameOf(const KsDialogComponent* element)
{
    return qobject_cast<QFrame*>(element->getWidget());
}

QFrame* lineOf(const KsDialogComponent* element)
{
    return element->getWidget()->findChild<QFrame*>("LMNKsDialogQSeparatorFrameWidget");
}

KbVec3f scaleOf(KsDialogSeparator* separator)
{
    auto* group = static_cast<KsGroup*>(separator->getAnyPart("frameSep", false));
    return static_cast<KsScale*>(group->getChild(0))->scaleFactor.getValue();
}

struct Sizes {
    KbVec2i32 size, min, max;
};
Sizes defaultsOf(KsDialogSeparator* separator)
{
    Sizes s;
    separator->getDefaultSize(s.size, s.min, s.max);
    return s;
}

class Separator : public DialogBase {};

} // namespace

TEST_F(Separator, addsNoFieldAndFourParts)
{
    const KsRef<KsDialogSeparator> separator(new KsDialogSeparator);
    const KsNodekitCatalog* parts = separator->getNodekitCatalog();
    const int first = parts->getPartNumber("frameSep");
    ASSERT_GT(first, 0);
    const char* const names[] = {"frameSep", "frameSwitch", "vFrame", "hFrame"};
    const char* const parents[] = {"geomSwitch", "frameSep", "frameSwitch", "frameSwitch"};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(parts->getName(first + i), names[i]);
        EXPECT_EQ(parts->getName(parts->getParent(first + i)), parents[i]);
        EXPECT_EQ(parts->isPublic(first + i), i > 1);
    }
    EXPECT_EQ(parts->getNumEntries(), first + 4);
    EXPECT_EQ(separator->getFieldData()->getNumFields(),
              KsRef<PlainComponent>(new PlainComponent)->getFieldData()->getNumFields() + 4)
        << "no field but those of the parts";
    EXPECT_EQ(separator->getComponentInitSize(), KbVec2i32(0, 0));
}

TEST_F(Separator, runsFromLeftToRightUnlessItIsTurned)
{
    const KsRef<KsDialogSeparator> separator(new KsDialogSeparator);
    Sizes s = defaultsOf(separator.get());
    EXPECT_EQ(s.size, KbVec2i32(0, 8));
    EXPECT_EQ(s.min, KbVec2i32(0, 8));
    EXPECT_EQ(s.max, KbVec2i32(32767, 8));
    separator->setOrientationHorz(0);
    s = defaultsOf(separator.get());
    EXPECT_EQ(s.size, KbVec2i32(8, 0));
    EXPECT_EQ(s.min, KbVec2i32(8, 0));
    EXPECT_EQ(s.max, KbVec2i32(8, 32767));
    separator->setOrientationHorz(1);
    EXPECT_EQ(defaultsOf(separator.get()).size, KbVec2i32(0, 8));
}

TEST(SeparatorBoth, inAColumnDialogItIsVertical)
{
    Stage stage(formWith("ColumnDialog"));
    auto* separator = stage.find<KsDialogSeparator>("line");
    EXPECT_EQ(defaultsOf(separator).size, KbVec2i32(8, 0));
    ASSERT_TRUE(lineOf(separator));
    const QFrame* frame = frameOf(separator);
    EXPECT_EQ(frame->objectName(), "LMNKsDialogQSeparatorFrame");
    EXPECT_EQ(frame->width(), 8);
    EXPECT_GT(frame->height(), 20);
    EXPECT_EQ(lineOf(separator)->geometry(), QRect(3, 3, 2, frame->height() - 6));
    EXPECT_EQ(lineOf(separator)->frameShape(), QFrame::VLine);
    EXPECT_EQ(lineOf(separator)->frameShadow(), QFrame::Sunken);
    EXPECT_EQ(Stage::shown(separator, "frameSwitch"), 0);
    EXPECT_EQ(scaleOf(separator)[0], 2);
    EXPECT_GT(scaleOf(separator)[1], 14);
}

TEST(SeparatorBoth, inARowDialogItIsHorizontal)
{
    Stage stage(formWith("RowDialog"));
    auto* separator = stage.find<KsDialogSeparator>("line");
    EXPECT_EQ(defaultsOf(separator).size, KbVec2i32(0, 8));
    const QFrame* frame = frameOf(separator);
    EXPECT_EQ(frame->height(), 8);
    EXPECT_GT(frame->width(), 50);
    EXPECT_EQ(lineOf(separator)->geometry(), QRect(3, 3, frame->width() - 6, 2));
    EXPECT_EQ(lineOf(separator)->frameShape(), QFrame::HLine);
    EXPECT_EQ(Stage::shown(separator, "frameSwitch"), 1);
    EXPECT_EQ(scaleOf(separator)[1], 2);
    const KbBox3f line = stage.boxOf(separator, "frameSep");
    EXPECT_NEAR(line.getSize()[1], 2, 1e-3f);
    EXPECT_NEAR(line.getSize()[0], scaleOf(separator)[0], 1e-3f);
    EXPECT_GT(line.getSize()[0], 40);
    EXPECT_FALSE(line.isEmpty());
}

TEST(SeparatorBoth, turnsWithTheContainerThatItMovesTo)
{
    Stage stage("TopLevelDialog { RowDialog { auditorID \"rows\" DialogSeparator { auditorID "
                "\"line\" } ColumnDialog { auditorID \"columns\" DialogCheckBox { } } } }");
    const KsRef<KsDialogSeparator> separator(stage.find<KsDialogSeparator>("line"));
    stage.find<KsRowDialog>("rows")->removeChild(0);
    stage.draw();
    stage.find<KsColumnDialog>("columns")->addChild(separator.get());
    stage.draw();
    Stage::settle();
    EXPECT_EQ(Stage::shown(separator.get(), "frameSwitch"), 0);
    ASSERT_TRUE(separator->getWidget());
    EXPECT_EQ(lineOf(separator.get())->frameShape(), QFrame::VLine);
    EXPECT_EQ(separator->getWidget()->width(), 8);
    EXPECT_GT(separator->getWidget()->height(), 20);
    EXPECT_EQ(scaleOf(separator.get())[0], 2);
    EXPECT_GT(scaleOf(separator.get())[1], 14);
}

TEST(SeparatorBoth, ignoresAllChangesBehindItsBuild)
{
    Stage stage(formWith("RowDialog"));
    auto* separator = stage.find<KsDialogSeparator>("line");
    const QRect frame = frameOf(separator)->geometry();
    const KbVec3f scale = scaleOf(separator);
    separator->enable = false;
    separator->edgeStyle = KsDialogComponent::SHADOW_OUT;
    separator->width = 11;
    separator->height = 40;
    separator->maxHeight = 50;
    separator->labelVisibility = false;
    separator->label = "no text";
    stage.draw();
    QApplication::processEvents();
    EXPECT_TRUE(lineOf(separator)->isEnabled());
    EXPECT_EQ(frameOf(separator)->frameShape(), QFrame::NoFrame);
    EXPECT_EQ(frameOf(separator)->geometry(), frame);
    EXPECT_EQ(scaleOf(separator), scale);
    EXPECT_EQ(Stage::shown(separator, "edgeStyleSwitch"), 0);
}

TEST(SeparatorBoth, isDisabledWithItsContainerOnly)
{
    const auto grey = [](KsDialogSeparator* separator) {
        const auto* material = ksCast<KsMaterial>(
            static_cast<KsGroup*>(separator->getAnyPart("geomSwitch", false))->getChild(0));
        return material ? material->emissiveColor[0][0] : -1;
    };
    Stage stage("TopLevelDialog { RowDialog { auditorID \"rows\""
                " DialogSeparator { auditorID \"line\" enable FALSE } DialogCheckBox { } } }");
    auto* separator = stage.find<KsDialogSeparator>("line");
    EXPECT_TRUE(lineOf(separator)->isEnabled());
    EXPECT_EQ(grey(separator), 0);
    auto* rows = stage.find<KsRowDialog>("rows");
    rows->enable = false;
    EXPECT_FALSE(lineOf(separator)->isEnabled());
    EXPECT_EQ(grey(separator), 0.5f);
    rows->enable = true;
    EXPECT_TRUE(lineOf(separator)->isEnabled());
    EXPECT_EQ(grey(separator), 0);
}

TEST(SeparatorWindow, fieldsCountAtItsBuild)
{
    Stage stage(formWith("RowDialog", "edgeStyle SHADOW_OUT width 70 fixedWidth TRUE maxHeight 20 "
                                      "height 12"),
                Stage::Window);
    const QFrame* frame = frameOf(stage.find<KsDialogSeparator>("line"));
    EXPECT_EQ(frame->frameShape(), QFrame::StyledPanel);
    EXPECT_EQ(frame->frameShadow(), QFrame::Raised);
    EXPECT_EQ(frame->minimumSize(), QSize(70, 12)) << "the size, not the minimum";
    EXPECT_EQ(frame->maximumSize(), QSize(70, 20));
}

TEST(SeparatorWindow, followsItsWindow)
{
    Stage stage(formWith("RowDialog"), Stage::Window);
    auto* separator = stage.find<KsDialogSeparator>("line");
    QWidget* window = stage.dialog->getBaseWidget();
    window->resize(window->width() + 100, window->height() + 50);
    QApplication::processEvents();
    const QFrame* frame = frameOf(separator);
    EXPECT_EQ(separator->width, frame->width());
    EXPECT_EQ(frame->height(), 8);
    EXPECT_EQ(lineOf(separator)->geometry(), QRect(3, 3, frame->width() - 6, 2));
}

TEST(SeparatorWindow, aRebuildLeavesOneLineAndTheEndLeavesNone)
{
    Stage stage(formWith("RowDialog"), Stage::Window);
    auto* separator = stage.find<KsDialogSeparator>("line");
    const QPointer<QFrame> former = lineOf(separator);
    stage.dialog->updateDialogBuild(1);
    Stage::settle();
    EXPECT_FALSE(former);
    const QString name = "LMNKsDialogQSeparatorFrameWidget";
    EXPECT_EQ(stage.dialog->getBaseWidget()->findChildren<QFrame*>(name).size(), 1);
    EXPECT_TRUE(lineOf(separator)->isVisible());
    const QPointer<QFrame> latter = lineOf(separator);
    separator->destroyWidget();
    EXPECT_FALSE(latter);
}

TEST(SeparatorScene, aPressOnItIsThatOfThePanel)
{
    Stage stage(formWith("RowDialog"), Stage::Scene);
    EXPECT_TRUE(stage.clickPart(stage.find<KsDialogSeparator>("line"), "frameSep"));
}

TEST(SeparatorScene, takesTheLooksOfAnotherSkin)
{
    Stage stage(formWith("RowDialog"), Stage::Scene);
    auto* separator = stage.find<KsDialogSeparator>("line");
    EXPECT_EQ(separator->getPart("hFrame", false), KsNode::getByName("DialogSeparatorHorizontal"));
    EXPECT_EQ(separator->getPart("vFrame", false), KsNode::getByName("DialogSeparatorVertical"));
    KsNode* const part = separator->getPart("hFrame", false);
    const float before = stage.boxOf(separator, "frameSep").getSize()[2];
    KsFormweave::setSkin("dark");
    stage.draw();
    EXPECT_EQ(separator->getPart("hFrame", false), part);
    EXPECT_NE(stage.boxOf(separator, "frameSep").getSize()[2], before);
    KsFormweave::setSkin("default");
    stage.draw();
    EXPECT_EQ(stage.boxOf(separator, "frameSep").getSize()[2], before);
}

TEST_F(Separator, isWrittenAsItWasRead)
{
    const auto read = readNode<KsDialogSeparator>("DialogSeparator { width 40 }");
    ASSERT_TRUE(read);
    const std::string once = written(read.get());
    build(read.get(), 0);
    EXPECT_EQ(written(read.get()), once);
    const auto again = readNode<KsDialogSeparator>(once.substr(std::string(header).size()));
    ASSERT_TRUE(again) << once;
    EXPECT_EQ(written(again.get()), once);
}

TEST(SeparatorBoth, badInputKeepsALayout)
{
    for (const char* fields : {"width -5 height -7", "width 2000000000", "height 2000000000",
                               "minWidth 300 maxWidth 20", "maxHeight -3 fixedHeight TRUE"}) {
        for (const char* container : {"RowDialog", "ColumnDialog"}) {
            Stage stage(formWith(container, fields));
            auto* separator = stage.find<KsDialogSeparator>("line");
            ASSERT_TRUE(separator) << fields;
            EXPECT_TRUE(lineOf(separator)) << fields;
        }
    }
}
