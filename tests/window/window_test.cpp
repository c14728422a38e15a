// The dialog as a window: its fields, its making, its place.

#include "Window.h"

#include <arborium/base/KsDBImpl.h>

// The fields.

TEST_F(Window, theDialogHasItsFieldsInOrderWithTheirDefaults)
{
    auto* dialog = make();
    const KsFieldData* data = dialog->getFieldData();
    int index = data->getIndex("width");
    EXPECT_GT(index, data->getIndex("labelAlignment")) << "behind those of the base";
    for (const char* name : {"width",
                             "height",
                             "position",
                             "position3D",
                             "resizable",
                             "minWidth",
                             "minHeight",
                             "maxWidth",
                             "maxHeight",
                             "margin",
                             "rowSpacing",
                             "modalFrame",
                             "hideChildren",
                             "minimized",
                             "minimized3DPosition",
                             "independentMinimizedPosition",
                             "windowResizedByChildren",
                             "vScrollVisibility",
                             "hScrollVisibility",
                             "frameSep",
                             "frame",
                             "labelSep",
                             "labelProp",
                             "minSep",
                             "minSwtch",
                             "minReleased",
                             "minPressed"})
        EXPECT_EQ(data->getFieldName(index++), name);
    EXPECT_EQ(sizeOf(dialog), QSize(0, 0));
    EXPECT_EQ(minOf(dialog), QSize(0, 0));
    EXPECT_EQ(maxOf(dialog), QSize(16777215, 16777215));
    EXPECT_EQ(dialog->margin, 0);
    EXPECT_EQ(dialog->rowSpacing, 0);
    EXPECT_TRUE(dialog->resizable);
    EXPECT_TRUE(dialog->independentMinimizedPosition);
    for (const KsSFBool* field : {&dialog->modalFrame, &dialog->hideChildren, &dialog->minimized,
                                  &dialog->windowResizedByChildren})
        EXPECT_FALSE(*field);
    EXPECT_EQ(dialog->vScrollVisibility.getValue(), KsTopLevelDialog::AUTO);
    EXPECT_EQ(dialog->hScrollVisibility.getValue(), KsTopLevelDialog::AUTO);
}

// The making of the window.

TEST_F(Window, isAParentlessWidgetWithItsNamesItsTitleAndATightLayout)
{
    auto* dialog = make();
    dialog->label = u"Größe \u0416";
    dialog->margin = 9;
    dialog->rowSpacing = 4;
    QWidget other;
    dialog->buildDialog(&other, 0);
    QWidget* window = dialog->getBaseWidget();
    ASSERT_TRUE(window);
    EXPECT_FALSE(window->parentWidget());
    EXPECT_TRUE(window->isWindow());
    EXPECT_FALSE(window->isVisible()) << "showing it is another step";
    EXPECT_EQ(window->objectName(), "KsTopLevelDialog");
    EXPECT_EQ(window->windowTitle(), QString::fromUtf16(u"Größe \u0416"));
    EXPECT_FALSE(dialog->getWidget());
    auto* layout = static_cast<QBoxLayout*>(dialog->getLayout());
    ASSERT_TRUE(layout);
    EXPECT_EQ(layout, window->layout());
    EXPECT_TRUE(qobject_cast<QVBoxLayout*>(layout));
    EXPECT_EQ(layout->objectName(), "LMNKsTopLevelDialogLayout");
    EXPECT_EQ(layout->contentsMargins(), QMargins(0, 0, 0, 0));
    EXPECT_EQ(layout->spacing(), 0) << "the fields count in sizes only";
    EXPECT_EQ(other.layout(), nullptr);
}

TEST_F(Window, theTitleFollowsTheLabelAsItIs)
{
    auto* dialog = make();
    dialog->label = "a\\nb";
    QWidget* window = open(dialog);
    EXPECT_EQ(window->windowTitle(), "a\\nb");
    dialog->label = "Other";
    EXPECT_EQ(window->windowTitle(), "Other");
}

TEST_F(Window, childrenStandInItFromTopToBottom)
{
    auto* dialog = make();
    KsDialogCheckBox* boxes[] = {box("one"), box("two"), box("three")};
    for (KsDialogCheckBox* each : boxes) dialog->addChild(each);
    QWidget* window = open(dialog);
    int bottom = -1;
    for (KsDialogCheckBox* each : boxes) {
        ASSERT_TRUE(each->getWidget());
        EXPECT_EQ(each->getWidget()->parentWidget(), window);
        EXPECT_GT(each->getWidget()->geometry().top(), bottom);
        bottom = each->getWidget()->geometry().bottom();
    }
}

TEST_F(Window, buildingItAgainKeepsItAndItsWidgets)
{
    auto* dialog = make();
    KsDialogCheckBox* child = box("a");
    dialog->addChild(child);
    QWidget* window = open(dialog);
    QWidget* frame = child->getWidget();
    dialog->buildDialog();
    EXPECT_EQ(dialog->getBaseWidget(), window);
    EXPECT_EQ(child->getWidget(), frame);
    EXPECT_EQ(numToggles(window), 1);
    EXPECT_TRUE(window->isVisible());
}

TEST_F(Window, isNeverModalWhateverItsFieldSays)
{
    auto* dialog = make();
    auto* modal = make();
    modal->modalFrame = true;
    const QWidget* window = open(dialog);
    const QWidget* modalWindow = open(modal);
    EXPECT_EQ(modalWindow->windowModality(), Qt::NonModal);
    EXPECT_FALSE(modalWindow->isModal());
    EXPECT_EQ(modalWindow->windowFlags(), window->windowFlags());
    const Qt::WindowFlags before = modalWindow->windowFlags();
    modal->modalFrame = false;
    EXPECT_EQ(modalWindow->windowFlags(), before);
    EXPECT_TRUE(modalWindow->isVisible());
}

TEST_F(Window, insideAParentItTakesItOverAndItsLayoutGoes)
{
    auto* dialog = make();
    KsDialogCheckBox* child = box("a");
    dialog->addChild(child);
    QWidget parent;
    QPointer<QLayout> former = new QHBoxLayout(&parent);
    parent.setObjectName("mine");
    dialog->buildDialog(&parent, 1);
    EXPECT_FALSE(former);
    EXPECT_EQ(dialog->getBaseWidget(), &parent);
    EXPECT_EQ(parent.layout(), static_cast<QBoxLayout*>(dialog->getLayout()));
    EXPECT_EQ(parent.objectName(), "mine");
    EXPECT_EQ(parent.backgroundRole(), QPalette::Window);
    EXPECT_EQ(child->getWidget()->parentWidget(), &parent);
    parent.show();
    settle();
    click(child);
    EXPECT_TRUE(child->state);
    letGo(dialog);
}

TEST_F(Window, showOfADialogInsideAParentDoesNothingAndNeitherDoesHide)
{
    auto* dialog = make();
    QWidget parent;
    dialog->buildDialog(&parent, 1);
    dialog->show();
    EXPECT_FALSE(parent.isVisible());
    parent.show();
    dialog->hide();
    EXPECT_TRUE(parent.isVisible());
    letGo(dialog);
}

TEST_F(Window, whereNoLocalWidgetsAreWantedThePanelIsBuilt)
{
    auto* dialog = make();
    KsDialogCheckBox* child = box("a");
    dialog->addChild(child);
    KsDBImpl::m_noLocalWidgets = true;
    dialog->buildDialog();
    KsDBImpl::m_noLocalWidgets = false;
    EXPECT_FALSE(dialog->getBaseWidget());
    EXPECT_FALSE(dialog->getLayout());
    EXPECT_TRUE(dialog->isBuilt3D());
    EXPECT_TRUE(child->isBuilt3D());
    EXPECT_FALSE(child->getWidget());
    dialog->show(); // nothing to show
    dialog->hide();
    dialog->rowSpacing = 5;
    dialog->minWidth = 20;
    EXPECT_FALSE(dialog->getBaseWidget());
}

// Its place.

TEST_F(Window, standsTwentyPixelsBelowItsPosition)
{
    auto* dialog = make();
    dialog->position = KbVec2i32(10, 10);
    QWidget* window = open(dialog);
    EXPECT_EQ(window->pos(), QPoint(10, 30));
    dialog->position = KbVec2i32(-5, 0);
    EXPECT_EQ(window->pos(), QPoint(-5, 20));
}

TEST_F(Window, setPositionWritesTheFieldAndMovesNothing)
{
    auto* dialog = make();
    QWidget* window = open(dialog);
    const QPoint before = window->pos();
    KbVec2i32 place(70, 80);
    dialog->setPosition(place);
    EXPECT_EQ(dialog->position.getValue(), place);
    EXPECT_FALSE(dialog->position.isDefault());
    EXPECT_EQ(window->pos(), before);
    KbVec2i32 zero(0, 0);
    dialog->setPosition(zero);
    EXPECT_TRUE(dialog->position.isDefault());
    dialog->position = KbVec2i32(1, 2); // the sensor is back
    EXPECT_EQ(window->pos(), QPoint(1, 22));
}

TEST_F(Window, aRebuildPutsItBackToThePlaceAndSizeOfItsFields)
{
    auto* dialog = make();
    dialog->position = KbVec2i32(40, 50);
    dialog->addChild(box("a"));
    QWidget* window = open(dialog);
    const QSize size = window->size();
    window->move(300, 200);
    window->resize(size + QSize(120, 80));
    settle();
    EXPECT_EQ(sizeOf(dialog), size) << "what the person did is not in its fields";
    EXPECT_EQ(dialog->position.getValue(), KbVec2i32(40, 50));
    dialog->updateDialogBuild(1);
    EXPECT_EQ(window->pos(), QPoint(40, 70));
    EXPECT_EQ(window->size(), size);
    window->move(300, 200);
    dialog->buildDialog();
    EXPECT_EQ(window->pos(), QPoint(40, 70));
}

TEST_F(Window, rowSpacingReachesTheLayoutWhenItChanges)
{
    auto* dialog = make();
    dialog->rowSpacing = 6;
    KsDialogCheckBox *a = box("a"), *b = box("b");
    dialog->addChild(a);
    dialog->addChild(b);
    open(dialog)->resize(200, 300);
    auto* layout = static_cast<QBoxLayout*>(dialog->getLayout());
    EXPECT_EQ(layout->spacing(), 0);
    dialog->rowSpacing = 11;
    EXPECT_EQ(layout->spacing(), 11);
    settle();
    EXPECT_EQ(b->getWidget()->geometry().top() - a->getWidget()->geometry().bottom() - 1, 11);
    dialog->margin = 13;
    EXPECT_EQ(layout->contentsMargins(), QMargins(0, 0, 0, 0));
}

TEST_F(Window, enableReachesTheWholeWindow)
{
    auto* dialog = make();
    KsDialogCheckBox* child = box("a");
    dialog->addChild(child);
    QWidget* window = open(dialog);
    dialog->enable = false;
    EXPECT_FALSE(window->isEnabled());
    EXPECT_FALSE(toggle(child)->isEnabled());
    EXPECT_TRUE(child->enable);
    click(child);
    EXPECT_FALSE(child->state);
    dialog->enable = true;
    click(child);
    EXPECT_TRUE(child->state);
}
