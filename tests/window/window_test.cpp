// The dialog as a window: its making, its size and limits, its place, what happens to it on screen.

#include "Window.h"

#include <arborium/base/KsDBImpl.h>
#include <formweave/KsMenuBar.h>

namespace {

class Window : public WindowBase {
protected:
    static KbVec2i32 sizeOf(const KsDialogComponent* c) { return {c->width, c->height}; }
    static QSize sizeOf(const KsTopLevelDialog* d) { return {d->width, d->height}; }
    static QSize minOf(const KsTopLevelDialog* d) { return {d->minWidth, d->minHeight}; }
    static QSize maxOf(const KsTopLevelDialog* d) { return {d->maxWidth, d->maxHeight}; }
};

const QSize unlimited(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);

} // namespace

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

// Size and limits.

TEST_F(Window, withoutASizeItOpensAtThatOfItsChildrenWithMarginsAndSpacing)
{
    auto* dialog = make();
    dialog->minWidth = 10;
    dialog->minHeight = 12;
    dialog->maxWidth = 2000;
    dialog->maxHeight = 1900;
    dialog->margin = 5;
    dialog->rowSpacing = 7;
    KsDialogCheckBox* boxes[] = {box("short"), box("a longer one"), box()};
    boxes[2]->height = 44;
    for (KsDialogCheckBox* each : boxes) dialog->addChild(each);
    dialog->buildDialog();
    int widest = 0, sum = 0;
    for (const KsDialogCheckBox* each : boxes) {
        widest = std::max<int>(widest, each->width);
        sum += each->height;
    }
    ASSERT_GT(widest, 0);
    EXPECT_EQ(boxes[2]->height, 44);
    const QSize expected(widest + 2 * 5, sum + 2 * 5 + 2 * 7);
    EXPECT_EQ(dialog->getBaseWidget()->size(), expected);
    EXPECT_EQ(sizeOf(dialog), expected);
    EXPECT_EQ(minOf(dialog), QSize(10, 12));
    EXPECT_EQ(maxOf(dialog), QSize(2000, 1900));
    dialog->show();
    settle();
    EXPECT_EQ(dialog->getBaseWidget()->size(), expected);
}

TEST_F(Window, minimaOfTheChildrenCountWhereTheDialogHasNone)
{
    auto* dialog = make();
    dialog->margin = 3;
    dialog->rowSpacing = 2;
    for (int i = 0; i < 3; ++i) dialog->addChild(box("a"));
    dialog->buildDialog();
    // Each child bears 25 by 25.
    EXPECT_EQ(minOf(dialog), QSize(25 + 6, 75 + 6 + 4));
    EXPECT_EQ(maxOf(dialog), unlimited);
    EXPECT_EQ(dialog->getBaseWidget()->minimumSize(), minOf(dialog));
    EXPECT_EQ(dialog->getBaseWidget()->maximumSize(), unlimited);
}

TEST_F(Window, maximaOf0AreThoseOfTheChildren)
{
    auto* dialog = make();
    dialog->maxWidth = 0;
    dialog->maxHeight = 0;
    KsDialogCheckBox* boxes[] = {box("a"), box("b")};
    for (KsDialogCheckBox* each : boxes) {
        each->maxWidth = 300;
        each->maxHeight = 40;
        dialog->addChild(each);
    }
    dialog->margin = 2;
    dialog->rowSpacing = 6;
    dialog->buildDialog();
    EXPECT_EQ(maxOf(dialog), QSize(304, 80 + 4 + 6));
    EXPECT_EQ(dialog->getBaseWidget()->maximumSize(), maxOf(dialog));
}

TEST_F(Window, anOpenMaximumOfAChildIsOneOfTheDialog)
{
    auto* dialog = make();
    dialog->maxWidth = 0;
    dialog->maxHeight = 0;
    dialog->margin = 2;
    dialog->addChild(box("a"));
    dialog->addChild(box("b"));
    dialog->buildDialog();
    EXPECT_EQ(maxOf(dialog), QSize(32767, 32767));
}

TEST_F(Window, anEmptyDialogLosesOneSpacingInHeight)
{
    auto* dialog = make();
    dialog->margin = 8;
    dialog->rowSpacing = 5;
    dialog->maxHeight = 500; // asked in every combination with zeros
    dialog->buildDialog();
    EXPECT_EQ(minOf(dialog), QSize(16, 11));
    EXPECT_EQ(sizeOf(dialog), QSize(16, 11));
}

TEST_F(Window, aWidthBelowTheMinimumIsRaisedAndWrittenWithoutAChangeOfWidth)
{
    auto* dialog = make<ProbeDialog>();
    dialog->addChild(box("a"));
    dialog->minWidth = 300;
    dialog->width = 100;
    dialog->buildDialog();
    EXPECT_EQ(dialog->width, 300);
    EXPECT_EQ(dialog->getBaseWidget()->width(), 300);
    EXPECT_EQ(dialog->calls, Calls());
    // Now that the sensors are there, the application's write is heard, the dialog's own is not.
    dialog->width = 120;
    EXPECT_EQ(dialog->calls, Calls{"changeWidth"});
    EXPECT_EQ(dialog->getBaseWidget()->width(), 300) << "a field does not resize the window";
    dialog->updateDialogBuild(1);
    EXPECT_EQ(dialog->width, 300);
    EXPECT_EQ(dialog->calls, Calls{"changeWidth"});
    dialog->height = 70;
    EXPECT_EQ(dialog->calls, (Calls{"changeWidth", "changeHeight"}));
}

TEST_F(Window, aMaximumWinsOverAMinimum)
{
    auto* dialog = make();
    dialog->width = 500;
    dialog->minWidth = 300;
    dialog->maxWidth = 200;
    dialog->buildDialog();
    EXPECT_EQ(dialog->width, 200);
}

TEST_F(Window, notResizableWithAWidthIsPinnedToIt)
{
    auto* dialog = make();
    dialog->addChild(box("a"));
    dialog->resizable = false;
    dialog->width = 300;
    QWidget* window = open(dialog);
    EXPECT_EQ(dialog->minWidth, 300);
    EXPECT_EQ(dialog->maxWidth, 300);
    EXPECT_EQ(window->minimumWidth(), 300);
    EXPECT_EQ(window->maximumWidth(), 300);
    window->resize(500, 400);
    EXPECT_EQ(window->width(), 300);
}

TEST_F(Window, notResizableWithoutASizeIsPinnedToThatOfItsChildren)
{
    auto* dialog = make();
    dialog->addChild(box("a"));
    dialog->resizable = false;
    QWidget* window = open(dialog);
    EXPECT_EQ(minOf(dialog), sizeOf(dialog));
    EXPECT_EQ(maxOf(dialog), sizeOf(dialog));
    const QSize before = window->size();
    window->resize(before + QSize(50, 60));
    EXPECT_EQ(window->size(), before);
}

TEST_F(Window, turningResizableOffLaterWaitsForTheNextRebuild)
{
    auto* dialog = make();
    dialog->addChild(box("a"));
    QWidget* window = open(dialog);
    dialog->resizable = false;
    EXPECT_EQ(window->maximumSize(), unlimited);
    dialog->addChild(box("b"));
    EXPECT_EQ(window->minimumSize(), window->maximumSize());
}

TEST_F(Window, aMenuBarCountsInTheHeightButNotInTheSpacing)
{
    auto* dialog = make();
    dialog->maxWidth = dialog->maxHeight = 0;
    dialog->rowSpacing = 10;
    KsDialogCheckBox* boxes[] = {box("a"), box("b")};
    for (KsDialogCheckBox* each : boxes) {
        each->maxHeight = 60;
        dialog->addChild(each);
    }
    auto* bar = new KsMenuBar;
    EXPECT_FALSE(dialog->widgetHasMenuBar());
    dialog->insertChild(bar, 0);
    EXPECT_EQ(dialog->widgetHasMenuBar(), bar);
    dialog->buildDialog();
    EXPECT_EQ(dialog->height, 19 + boxes[0]->height + boxes[1]->height + 10);
    EXPECT_EQ(dialog->minHeight, 25 + 25 + 10) << "its minimum is 0";
    EXPECT_EQ(dialog->maxHeight, 60 + 60 + 10) << "it cannot grow";
    QPointer<QWidget> window = dialog->getBaseWidget();
    letGo(dialog);
    delete window;
}

TEST_F(Window, fieldsOfLimitsReachItAtOnce)
{
    auto* dialog = make();
    dialog->addChild(box("a"));
    QWidget* window = open(dialog);
    dialog->minWidth = 210;
    dialog->maxHeight = 333;
    EXPECT_EQ(window->minimumWidth(), 210);
    EXPECT_EQ(window->maximumHeight(), 333);
    KbVec2i32 size, min, max;
    dialog->getDefaultState(size, min, max);
    EXPECT_EQ(min, KbVec2i32(210, dialog->minHeight));
    EXPECT_EQ(max, KbVec2i32(dialog->maxWidth, 333));
    dialog->maxWidth = 0;
    EXPECT_EQ(window->maximumWidth(), QWIDGETSIZE_MAX) << "none";
}

TEST_F(Window, whatItRemembersIsNothingUntilAFieldIsWritten)
{
    auto* dialog = make();
    dialog->width = 320;
    dialog->buildDialog();
    KbVec2i32 size, min, max;
    dialog->getDefaultState(size, min, max);
    EXPECT_EQ(size, KbVec2i32(0, 0));
    EXPECT_EQ(min, KbVec2i32(0, 0));
    EXPECT_EQ(max, KbVec2i32(0, 0));
    dialog->height = 99;
    dialog->width = 340;
    dialog->getDefaultState(size, min, max);
    EXPECT_EQ(size, KbVec2i32(340, 99));
}

TEST_F(Window, aDialogBuiltInASceneFirstRemembersWhatItWasAskedFor)
{
    auto* dialog = make();
    dialog->width = 320;
    dialog->minHeight = 70;
    measure(dialog);
    KbVec2i32 size, min, max;
    dialog->getDefaultState(size, min, max);
    EXPECT_EQ(size, KbVec2i32(320, 0));
    EXPECT_EQ(min, KbVec2i32(0, 70));
    EXPECT_EQ(max, KbVec2i32(16777215, 16777215));
}

TEST_F(Window, sizesFromAFileOfAnyMagnitudeAreBorne)
{
    for (const char* value : {"2147483647", "-2147483648"}) {
        const std::string v(value);
        auto* dialog =
            read("TopLevelDialog { width " + v + " height " + v + " minWidth " + v + " minHeight " +
                 v + " maxWidth " + v + " maxHeight " + v + " margin " + v + " rowSpacing " + v +
                 " position " + v + " " + v + " DialogCheckBox { } DialogCheckBox { } }");
        dialog->buildDialog();
        ASSERT_TRUE(dialog->getBaseWidget());
        measure(dialog);
        dialog->rowSpacing = dialog->rowSpacing.getValue();
        dialog->addChild(box("a"));
        EXPECT_EQ(numToggles(dialog->getBaseWidget()), 3);
    }
}

TEST_F(Window, setSizeWritesTheFieldsInSilence)
{
    auto* dialog = make<ProbeDialog>();
    QWidget* window = open(dialog);
    const QSize before = window->size();
    const QSize limit = window->maximumSize();
    dialog->setSize(201, 102, 33, 44, 505, 406);
    EXPECT_EQ(sizeOf(dialog), QSize(201, 102));
    EXPECT_EQ(minOf(dialog), QSize(33, 44));
    EXPECT_EQ(maxOf(dialog), QSize(505, 406));
    EXPECT_EQ(dialog->calls, Calls());
    EXPECT_EQ(window->size(), before);
    EXPECT_EQ(window->maximumSize(), limit);
    dialog->width = 7; // and the sensors hear again
    EXPECT_EQ(dialog->calls, Calls{"changeWidth"});
}

// Labels and controls of its children stand in columns.

TEST_F(Window, labelsAndControlsOfItsChildrenShareTheirColumns)
{
    class Zones : public PlainComponent {
    public:
        Zones(KbVec2i32 l, KbVec2i32 c) : inLabel(l), inControl(c) {}
        KbVec2i32 getLabelInitSize() override { return inLabel; }
        KbVec2i32 getComponentInitSize() override { return inControl; }
        using PlainComponent::m_componentSize;
        KbVec2i32 inLabel, inControl;
    };
    auto* dialog = make();
    auto* small = new Zones({30, 12}, {40, 10});
    auto* large = new Zones({50, 30}, {20, 20});
    auto* hidden = new Zones({90, 33}, {70, 15});
    hidden->labelVisibility = false;
    for (Zones* each : {small, large, hidden}) dialog->addChild(each);
    dialog->buildDialog();
    EXPECT_EQ(small->m_labelSize, KbVec2i32(50, 12));
    EXPECT_EQ(large->m_labelSize, KbVec2i32(50, 30));
    EXPECT_EQ(hidden->m_labelSize, KbVec2i32(50, 0)) << "a hidden label has no height";
    EXPECT_EQ(small->m_componentSize, KbVec2i32(70, 12));
    EXPECT_EQ(large->m_componentSize, KbVec2i32(70, 30));
    EXPECT_EQ(hidden->m_componentSize, KbVec2i32(70, 15));
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

// Resets.

TEST_F(Window, aRebuildKeepsTheSizeUnlessItIsToFollowItsChildren)
{
    auto* dialog = make();
    dialog->addChild(box("a"));
    QWidget* window = open(dialog);
    const QSize before = window->size();
    dialog->addChild(box("b"));
    EXPECT_EQ(window->size(), before);
    dialog->windowResizedByChildren = true;
    dialog->addChild(box("a label that is much longer than the other ones"));
    EXPECT_EQ(sizeOf(dialog), window->size());
    EXPECT_GT(window->height(), before.height());
    EXPECT_GT(window->width(), before.width());
}

TEST_F(Window, aResetGoesBackToWhatItRemembersInAllSixFields)
{
    auto* dialog = make();
    dialog->windowResizedByChildren = true;
    dialog->addChild(box("a"));
    QWidget* window = open(dialog);
    dialog->width = 260;
    dialog->height = 90;
    dialog->minWidth = 150;
    dialog->minHeight = 60;
    dialog->maxWidth = 700;
    dialog->maxHeight = 500;
    dialog->setSize(1, 2, 3, 4, 5, 6);
    dialog->updateDialogBuild(1);
    EXPECT_EQ(sizeOf(dialog), QSize(260, 90));
    EXPECT_EQ(minOf(dialog), QSize(150, 60));
    EXPECT_EQ(maxOf(dialog), QSize(700, 500));
    EXPECT_EQ(window->size(), QSize(260, 90));
    EXPECT_EQ(window->minimumSize(), QSize(150, 60));
    EXPECT_EQ(window->maximumSize(), QSize(700, 500));
    // And again: the reset did not change what is remembered.
    dialog->setSize(1, 2, 3, 4, 5, 6);
    dialog->updateDialogBuild(1);
    EXPECT_EQ(sizeOf(dialog), QSize(260, 90));
    EXPECT_EQ(maxOf(dialog), QSize(700, 500));
}

TEST_F(Window, aResetToNothingLeavesItWithTheLimitsOfItsChildren)
{
    auto* dialog = make();
    dialog->windowResizedByChildren = true;
    KsDialogCheckBox* child = box("a");
    child->maxWidth = 400;
    dialog->addChild(child);
    QWidget* window = open(dialog);
    EXPECT_EQ(window->maximumSize(), unlimited);
    dialog->updateDialogBuild(1);
    // The remembered maximum is none.
    EXPECT_EQ(maxOf(dialog), QSize(400, 32767));
    EXPECT_EQ(window->maximumSize(), QSize(400, 32767));
    EXPECT_EQ(window->minimumSize(), minOf(dialog));
    EXPECT_EQ(window->size(), sizeOf(dialog));
    EXPECT_TRUE(window->isVisible());
}

TEST_F(Window, theLimitsOfAVisibleWindowNeverCollapseDuringAReset)
{
    struct Watch : QObject {
        bool eventFilter(QObject* watched, QEvent* event) override
        {
            if (event->type() == QEvent::Resize) sizes << static_cast<QWidget*>(watched)->size();
            return false;
        }
        QList<QSize> sizes;
    };
    auto* dialog = make();
    dialog->windowResizedByChildren = true;
    dialog->addChild(box("a"));
    QWidget* window = open(dialog);
    const QSize before = window->size();
    Watch watch;
    window->installEventFilter(&watch);
    dialog->updateDialogBuild(1);
    settle();
    for (const QSize& size : watch.sizes) EXPECT_EQ(size, before);
    EXPECT_EQ(window->size(), before);
}

// Children before and after the build.

TEST_F(Window, aChildAddedBeforeTheBuildBuildsNothingAndOneAddedAfterItGetsAWidget)
{
    auto* dialog = make();
    auto* early = new ProbeBox;
    dialog->addChild(early);
    EXPECT_EQ(early->builds, 0);
    EXPECT_FALSE(dialog->getBaseWidget());
    open(dialog);
    EXPECT_EQ(early->builds, 1);
    auto* late = new ProbeBox;
    dialog->addChild(late);
    EXPECT_EQ(late->builds, 1);
    EXPECT_EQ(early->builds, 2) << "the whole tree is built again";
    ASSERT_TRUE(toggle(late));
    settle();
    EXPECT_TRUE(toggle(late)->isVisible());
    EXPECT_EQ(numToggles(dialog->getBaseWidget()), 2);
    click(late);
    EXPECT_TRUE(late->state);
}

TEST_F(Window, aChildAddedWhileItIsHiddenShowsWithIt)
{
    auto* dialog = make();
    dialog->addChild(box("a"));
    QWidget* window = open(dialog);
    dialog->hide();
    KsDialogCheckBox* late = box("late");
    dialog->addChild(late);
    EXPECT_FALSE(window->isVisible()) << "a rebuild shows nothing";
    EXPECT_FALSE(toggle(late)->isVisible());
    dialog->show();
    EXPECT_TRUE(toggle(late)->isVisible());
    settle();
    click(late);
    EXPECT_TRUE(late->state);
}

TEST_F(Window, aChildAddedWhileItIsMinimisedLeavesItMinimised)
{
    auto* dialog = make();
    dialog->addChild(box("a"));
    QWidget* window = open(dialog);
    window->showMinimized();
    KsDialogCheckBox* late = box("late");
    dialog->addChild(late);
    settle();
    EXPECT_TRUE(window->isMinimized());
    window->showNormal();
    settle();
    click(late);
    EXPECT_TRUE(late->state);
    EXPECT_EQ(numToggles(window), 2);
}

TEST_F(Window, removeChildOfAnUnknownNodePostsTheRange)
{
    auto* dialog = make();
    KsDialogCheckBox* child = box("a");
    dialog->addChild(child);
    KsRef<KsDialogCheckBox> stranger(box("b"));
    ExpectedMessages messages("KsTopLevelDialog::removeChild", "Index -1 is out of range 0 - ");
    dialog->removeChild(stranger.get());
    EXPECT_EQ(dialog->getNumChildren(), 1);
    EXPECT_EQ(dialog->getChild(0), child);
}

TEST_F(Window, getChildAtTheCountPostsItsWarningAndYieldsNull)
{
    auto* dialog = make();
    dialog->addChild(box("a"));
    {
        ExpectedMessages messages("KsTopLevelDialog::getChild", "Index 1 is out of range 0 - ");
        EXPECT_EQ(dialog->getChild(1), nullptr);
        ASSERT_EQ(messages.messages().size(), 1u);
        const std::string& text = messages.messages()[0].text;
        const std::string end = "; Be careful";
        ASSERT_GT(text.size(), end.size());
        EXPECT_EQ(text.substr(text.size() - end.size()), end);
    }
    EXPECT_EQ(dialog->getChild(-1), nullptr); // without a message
}

TEST_F(Window, aWrongChildOperationSaysSoAndChangesNothing)
{
    auto* dialog = make();
    KsDialogCheckBox* child = box("a");
    dialog->addChild(child);
    QWidget* window = open(dialog);
    const QWidget* frame = child->getWidget();
    KsRef<KsDialogCheckBox> other(box("b"));
    {
        ExpectedMessages messages;
        messages.expect("KsTopLevelDialog::addChild", "NULL child node");
        messages.expect("KsTopLevelDialog::insertChild", "NULL child node");
        messages.expect("KsTopLevelDialog::insertChild", "Index 2 is out of range 0 - 1");
        messages.expect("KsTopLevelDialog::insertChild", "Index -1 is out of range 0 - 1");
        messages.expect("KsTopLevelDialog::removeChild", "Index 1 is out of range 0 - ");
        messages.expect("KsTopLevelDialog::replaceChild", "Index 1 is out of range 0 - ");
        messages.expect("KsTopLevelDialog::replaceChild", "Index -1 is out of range 0 - ");
        dialog->addChild(nullptr);
        dialog->insertChild(nullptr, 0);
        dialog->insertChild(other.get(), 2);
        dialog->insertChild(other.get(), -1);
        dialog->removeChild(1);
        dialog->replaceChild(1, other.get());
        dialog->replaceChild(other.get(), other.get());
    }
    EXPECT_EQ(dialog->getNumChildren(), 1);
    EXPECT_EQ(child->getWidget(), frame) << "no rebuild";
    EXPECT_EQ(numToggles(window), 1);
    EXPECT_FALSE(other->getWidget());
}

TEST_F(Window, childOperationsOnAnOpenWindowKeepItInStep)
{
    auto* dialog = make();
    KsDialogCheckBox *a = box("a"), *b = box("b"), *c = box("c");
    dialog->addChild(a);
    QWidget* window = open(dialog);
    const auto labels = [&] {
        settle();
        QList<QLabel*> found = window->findChildren<QLabel*>();
        std::sort(found.begin(), found.end(), [&](QLabel* x, QLabel* y) {
            return x->mapTo(window, QPoint()).y() < y->mapTo(window, QPoint()).y();
        });
        std::string all;
        for (const QLabel* label : found) all += label->text().toStdString();
        return all;
    };
    dialog->insertChild(b, 0);
    EXPECT_EQ(labels(), "ba");
    dialog->insertChild(c, 1);
    EXPECT_EQ(labels(), "bca");
    const KsRef<KsDialogCheckBox> keep(c);
    dialog->removeChild(c);
    EXPECT_EQ(labels(), "ba");
    EXPECT_EQ(numToggles(window), 2);
    dialog->replaceChild(a, c);
    EXPECT_EQ(labels(), "bc");
    dialog->replaceChild(0, box("d"));
    EXPECT_EQ(labels(), "dc");
    dialog->removeAllChildren();
    EXPECT_EQ(labels(), "");
    EXPECT_EQ(dialog->getNumChildren(), 0);
    EXPECT_EQ(static_cast<QLayout*>(window->layout())->count(), 0) << "no layout is left over";
    dialog->addChild(box("e"));
    EXPECT_EQ(labels(), "e");
}

// Showing, hiding, closing, dying.

TEST_F(Window, showsAndHides)
{
    auto* dialog = make();
    dialog->show(); // there is none yet
    dialog->hide();
    EXPECT_FALSE(dialog->getBaseWidget());
    QWidget* window = open(dialog);
    EXPECT_TRUE(window->isVisible());
    dialog->hide();
    EXPECT_FALSE(window->isVisible());
    dialog->show();
    EXPECT_TRUE(window->isVisible());
}

TEST_F(Window, closingItByItsFrameIsHidingIt)
{
    auto* dialog = make();
    KsDialogCheckBox* child = box("a");
    dialog->addChild(child);
    QWidget* window = open(dialog);
    const int references = dialog->getRefCount();
    const QPointer<QCheckBox> widget = toggle(child);
    closeByFrame(window);
    settle();
    EXPECT_EQ(dialog->getBaseWidget(), window);
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(dialog->getRefCount(), references);
    EXPECT_TRUE(widget);
    child->state = true;
    dialog->addChild(box("b"));
    EXPECT_FALSE(window->isVisible());
    dialog->show();
    settle();
    EXPECT_TRUE(window->isVisible());
    EXPECT_TRUE(toggle(child)->isChecked());
    EXPECT_EQ(numToggles(window), 2);
    click(child);
    EXPECT_FALSE(child->state);
}

TEST_F(Window, closeHidesItAndDropsOneReference)
{
    auto* dialog = make();
    dialog->ref();
    QPointer<QWidget> window = open(dialog);
    const int references = dialog->getRefCount();
    dialog->close();
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(dialog->getRefCount(), references - 1);
    // Usually the last one: the dialog dies, its window stays.
    const int nodes = KsBase::getNumInstances();
    dialog->ref();
    letGo(dialog);
    dialog->show();
    dialog->close();
    EXPECT_LT(KsBase::getNumInstances(), nodes);
    ASSERT_TRUE(window);
    EXPECT_FALSE(window->isVisible());
    delete window;
}

TEST_F(Window, destroyDialogHidesAWindowOfItsOwn)
{
    auto* dialog = make();
    const QWidget* window = open(dialog);
    EXPECT_EQ(dialog->destroyDialog(), 0);
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(dialog->getBaseWidget(), window);
}

TEST_F(Window, destroyDialogInsideAParentEndsTheProcess)
{
    auto* dialog = make();
    QWidget parent;
    dialog->buildDialog(&parent, 1);
    EXPECT_EXIT(dialog->destroyDialog(), testing::ExitedWithCode(0), "");
    letGo(dialog);
}

TEST_F(Window, outlivesItsDialogWithoutItsControls)
{
    auto* dialog = make();
    dialog->addChild(box("a"));
    auto* rows = new KsRowDialog;
    rows->addChild(box("b"));
    dialog->addChild(rows);
    QPointer<QWidget> window = open(dialog);
    letGo(dialog);
    settle();
    ASSERT_TRUE(window);
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(numToggles(window), 0);
    // Nothing in it knows the dialog any more.
    window->resize(500, 400);
    QTest::mouseClick(window, Qt::LeftButton);
    closeByFrame(window);
    EXPECT_FALSE(window->isVisible());
    delete window;
}

TEST_F(Window, deletedByTheApplicationItIsMadeAnewByARebuild)
{
    auto* dialog = make();
    KsDialogCheckBox* child = box("a");
    auto* rows = new KsRowDialog;
    KsDialogCheckBox* inner = box("b");
    rows->addChild(inner);
    dialog->addChild(child);
    dialog->addChild(rows);
    delete open(dialog);
    EXPECT_FALSE(dialog->getBaseWidget());
    EXPECT_FALSE(dialog->getLayout());
    // No change reaches a window that is not there.
    dialog->label = "New";
    dialog->enable = false;
    dialog->enable = true;
    dialog->position = KbVec2i32(3, 4);
    dialog->minWidth = 40;
    dialog->rowSpacing = 2;
    child->state = true;
    child->label = "c";
    dialog->show();
    dialog->hide();
    KsDialogCheckBox* late = box("late");
    dialog->addChild(late);
    QWidget* window = dialog->getBaseWidget();
    ASSERT_TRUE(window);
    EXPECT_EQ(window->windowTitle(), "New");
    dialog->show();
    settle();
    EXPECT_EQ(numToggles(window), 3);
    EXPECT_TRUE(toggle(child)->isChecked());
    for (KsDialogCheckBox* each : {inner, late}) {
        click(each);
        EXPECT_TRUE(each->state);
    }
}

TEST_F(Window, aParentThatIsGoneIsNotBuiltInAgain)
{
    auto* dialog = make();
    KsDialogCheckBox* child = box("a");
    dialog->addChild(child);
    auto* parent = new QWidget;
    dialog->buildDialog(parent, 1);
    delete parent;
    const int windows = QApplication::topLevelWidgets().size();
    dialog->addChild(box("b"));
    dialog->removeChild(0);
    EXPECT_FALSE(dialog->getBaseWidget());
    EXPECT_EQ(QApplication::topLevelWidgets().size(), windows);
    // Another one will do.
    QWidget other;
    dialog->buildDialog(&other, 1);
    EXPECT_EQ(numToggles(&other), 1);
    letGo(dialog);
}

TEST_F(Window, widgetsThatAreLeftInItsCareGoWithIt)
{
    auto* dialog = make();
    dialog->addChild(box("a"));
    QPointer<QWidget> window = open(dialog);
    EXPECT_FALSE(dialog->getCurrentFocusedWidget());
    EXPECT_FALSE(dialog->getCurrentScrolledWidget());
    QPointer<QWidget> focused = new QWidget(window);
    QPointer<QWidget> scrolled = new QWidget;
    dialog->setCurrentFocusedWidget(focused);
    dialog->setCurrentScrolledWidget(scrolled);
    EXPECT_EQ(dialog->getCurrentFocusedWidget(), focused);
    EXPECT_EQ(dialog->getCurrentScrolledWidget(), scrolled);
    letGo(dialog);
    EXPECT_FALSE(focused);
    EXPECT_FALSE(scrolled);
    EXPECT_TRUE(window);
    delete window;
}
