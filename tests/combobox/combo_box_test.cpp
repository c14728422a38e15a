// A combo box in its two presentations, used where it is drawn.

#include <arborium/actions/KsWriteAction.h>
#include <arborium/io/KsOutput.h>
#include <arborium/nodes/KsScale.h>
#include <arborium/nodes/KsText3.h>
#include <arborium/nodes/KsTransform.h>
#include <arborium/nodes/KsTranslation.h>
#include <dialog/Listeners.h>
#include <dialog/Stage.h>

#include <QSignalSpy>

namespace {

using Numbers = std::vector<int>;

/// The state behind a combo box that tests look at.
class Box : public KsDialogComboBox {
public:
    using KsDialogChoice::fixItemsNumber;
    using KsDialogChoice::getVisibleCount;
    using KsDialogChoice::m_dummyItem;
    using KsDialogChoice::m_numItems;
    using KsDialogComboBox::m_labelSize;
    using KsFormweave::m_lastActive;
};

struct Watch {
    explicit Watch(KsField* field) : sensor(&call, this)
    {
        sensor.setPriority(0);
        sensor.attach(field);
    }
    static void call(void* data, KsSensor*) { ++static_cast<Watch*>(data)->calls; }
    int calls = 0;
    KsFieldSensor sensor;
};

constexpr const char* colours = "label \"Colour\" items [ \"red\", \"green\", \"blue\" ]";

std::string form(const std::string& fields)
{
    return "TopLevelDialog { label \"Form\" margin 4 "
           "DialogComboBox { auditorID \"box\" " +
           fields +
           " } DialogCheckBox { auditorID \"below\" label \"Below\" } "
           "DialogCheckBox { auditorID \"lower\" label \"Lower\" } "
           "DialogComboBox { auditorID \"other\" label \"Other\" items [ \"one\", \"two\" ] } }";
}

/// One dialog with a combo box "box" in it.
class Shown : public Stage {
public:
    explicit Shown(const std::string& fields = colours, Road road = Both)
        : Stage(form(fields), road), box(find<KsDialogComboBox>("box"))
    {
        box->addAuditor(&listener);
    }
    QComboBox* widget() const { return widgetOf<QComboBox>(box); }
    QLabel* labelWidget() const { return widgetOf<QLabel>(box); }
    Strings items2D() const
    {
        Strings texts;
        for (int i = 0; i < widget()->count(); ++i)
            texts.push_back(widget()->itemText(i).toStdString());
        return texts;
    }
    /// The nodes of a type below a node, in their order.
    template <class T> static std::vector<T*> all(KsNode* below)
    {
        std::vector<T*> found;
        KsSearchAction search;
        search.setInterest(KsSearchAction::ALL);
        search.setSearchingAll(true);
        search.setType(T::getClassTypeId(), true);
        search.apply(below);
        for (int i = 0; i < search.getPaths().getLength(); ++i)
            found.push_back(
                static_cast<T*>(static_cast<const KsFullPath*>(search.getPaths()[i])->getTail()));
        return found;
    }
    KsNode* part(const char* name) const { return box->getAnyPart(name, false); }
    Strings lines3D(const char* name) const
    {
        Strings lines;
        for (const KsText3* text : all<KsText3>(part(name)))
            for (int i = 0; i < text->string.getNum(); ++i)
                lines.push_back(text->string[i].toUtf8());
        return lines;
    }
    std::string selected3D() const { return lines3D("textSep")[0]; }
    bool isOpen() const { return shown(box, "itemsSwitch") == KsSwitch::ALL; }
    bool open() { return clickPart(box, "frameSep"); }
    /// In the middle of the row of an item, in an open list.
    KbVec2f row(int index)
    {
        draw();
        const KbBox3f first = boxOf(box, "itemStrucSep");
        EXPECT_FALSE(first.isEmpty());
        const KbVec3f middle = first.getCenter();
        return {middle[0], middle[1] + viewHeight - 22.0f * static_cast<float>(index)};
    }
    void choose(int index)
    {
        if (!isOpen()) open();
        ASSERT_TRUE(isOpen());
        click(row(index));
    }
    int labelWidth() const { return (box->*&Box::m_labelSize)[0]; }

    KsDialogComboBox* box;
    ChoiceListener listener;
};

Strings textsOf(const KsMFString& items)
{
    Strings texts;
    for (const KbString& item : items.values()) texts.push_back(item.toUtf8());
    return texts;
}

int textHeight(const char* text) { return KsFormweave::getLabelPixelSize(text, nullptr)[1]; }

} // namespace

// The list.

TEST(ComboBox, anEmptyListIsHeldAsOneEmptyStringThatIsNotShown)
{
    const Library library;
    KsRef<Box> box(new Box);
    EXPECT_EQ(box->items.getNum(), 0);
    box->fixItemsNumber();
    EXPECT_EQ(textsOf(box->items), Strings{""});
    EXPECT_EQ(box->m_numItems, 1);
    EXPECT_EQ(box->getVisibleCount(), 0);
    // It stays so.
    box->fixItemsNumber();
    EXPECT_EQ(box->getVisibleCount(), 0);
    box->items = "a";
    box->fixItemsNumber();
    EXPECT_EQ(box->getVisibleCount(), 1);
    box->items = "";
    box->fixItemsNumber();
    EXPECT_EQ(box->getVisibleCount(), 1) << "an empty string in place of an item is an item";
    box->items.setNum(0);
    box->fixItemsNumber();
    EXPECT_EQ(box->getVisibleCount(), 0);
}

TEST(ComboBox, withoutItemsItIsFourPixelsHighAndItsListIsOneEmptyRow)
{
    Shown shown("label \"Empty\"");
    EXPECT_EQ(shown.widget()->height(), 4);
    EXPECT_EQ(shown.lines3D("itemsSwitch"), Strings{""});
    EXPECT_EQ(shown.selected3D(), "");
    // A press on that row closes the list, and nobody is told.
    shown.open();
    ASSERT_TRUE(shown.isOpen());
    EXPECT_TRUE(shown.click(shown.row(0)));
    EXPECT_FALSE(shown.isOpen());
    EXPECT_TRUE(shown.listener.told.empty());
}

TEST(ComboBox, theFirstItemTakesThePlaceOfTheFiller)
{
    Shown shown("label \"Empty\"");
    ASSERT_EQ(shown.box->items.getNum(), 1);
    shown.box->addItem("a");
    EXPECT_EQ(textsOf(shown.box->items), Strings{"a"});
    EXPECT_EQ(shown.items2D(), Strings{"a"});
    EXPECT_EQ(shown.lines3D("itemsSwitch"), Strings{"a"});
    EXPECT_EQ(shown.selected3D(), "a");
    shown.box->addItem("b");
    EXPECT_EQ(textsOf(shown.box->items), (Strings{"a", "b"}));
    EXPECT_EQ(shown.items2D(), (Strings{"a", "b"}));
    EXPECT_EQ(shown.lines3D("itemsSwitch"), (Strings{"a", "b"}));
}

TEST(ComboBox, anItemInsertedIntoAnEmptyListIsItsOnlyOne)
{
    Shown shown("label \"Empty\"");
    shown.box->insertItem(5, "a");
    EXPECT_EQ(textsOf(shown.box->items), Strings{"a"});
    EXPECT_EQ(shown.items2D(), Strings{"a"});
}

TEST(ComboBox, anEmptyBoxHasTheSameSingleEntryWhetherItIsInsertedOrAdded)
{
    Shown inserted("label \"Empty\""), added("label \"Empty\"");
    inserted.box->insertItem(0, "a");
    added.box->addItem("a");
    for (const Shown* shown : {&inserted, &added}) {
        EXPECT_EQ(shown->items2D(), Strings{"a"});
        EXPECT_EQ(shown->widget()->currentIndex(), 0);
        EXPECT_EQ(shown->lines3D("itemsSwitch"), Strings{"a"});
        EXPECT_EQ(shown->selected3D(), "a");
    }
}

TEST(ComboBox, aListThatWasNotBuiltYetIsTakenAsItIs)
{
    const Library library;
    KsRef<KsDialogComboBox> box(new KsDialogComboBox);
    box->addItem("a");
    EXPECT_EQ(textsOf(box->items), Strings{"a"});
    KsRef<KsDialogComboBox> read(new KsDialogComboBox);
    read->items = "from a file";
    read->addItem("b");
    EXPECT_EQ(textsOf(read->items), (Strings{"from a file", "b"}));
    KsRef<KsDialogComboBox> inserted(new KsDialogComboBox);
    inserted->items = "from a file";
    inserted->insertItem(0, "b");
    EXPECT_EQ(textsOf(inserted->items), (Strings{"b", "from a file"}));
    KsRef<KsDialogComboBox> removed(new KsDialogComboBox);
    removed->items = "from a file";
    removed->removeItem(0);
    EXPECT_EQ(removed->items.getNum(), 0);
    removed->addItem("c");
    EXPECT_EQ(textsOf(removed->items), Strings{"c"});
}

TEST(ComboBox, itemsAreInsertedBetweenTheEnds)
{
    Shown shown("items [ \"a\", \"b\" ]");
    shown.box->insertItem(99, "end");
    EXPECT_EQ(textsOf(shown.box->items), (Strings{"a", "b", "end"}));
    shown.box->insertItem(-1, "begin");
    EXPECT_EQ(textsOf(shown.box->items), (Strings{"begin", "a", "b", "end"}));
    shown.box->insertItem(2, "middle");
    const Strings all{"begin", "a", "middle", "b", "end"};
    EXPECT_EQ(textsOf(shown.box->items), all);
    EXPECT_EQ(shown.items2D(), all);
    EXPECT_EQ(shown.lines3D("itemsSwitch"), all);
}

TEST(ComboBox, anInsertedItemIsShownWhenItHasItsText)
{
    Shown shown("items [ \"a\", \"b\" ]");
    QSignalSpy emptied(shown.widget()->model(), &QAbstractItemModel::rowsRemoved);
    Strings inserted;
    QObject::connect(shown.widget()->model(), &QAbstractItemModel::rowsInserted, [&] {
        const Strings present = shown.items2D();
        if (present.size() == 2) inserted.push_back(present[1]);
    });
    shown.box->insertItem(1, "new");
    EXPECT_EQ(emptied.count(), 1) << "the list is shown once, complete";
    EXPECT_EQ(inserted, Strings{"new"});
    EXPECT_EQ(shown.items2D(), (Strings{"a", "new", "b"}));
}

TEST(ComboBox, removingWhatIsNotThereDoesNothing)
{
    Shown shown("items [ \"a\", \"b\" ]");
    Watch watch(&shown.box->items);
    shown.box->removeItem(5);
    shown.box->removeItem(2);
    shown.box->removeItem(-1);
    EXPECT_EQ(watch.calls, 0);
    EXPECT_EQ(textsOf(shown.box->items), (Strings{"a", "b"}));
    shown.box->removeItem(0);
    EXPECT_EQ(textsOf(shown.box->items), Strings{"b"});
    shown.box->removeItem(0);
    shown.box->removeItem(0);
    EXPECT_EQ(textsOf(shown.box->items), Strings{""});
    EXPECT_EQ(shown.lines3D("itemsSwitch"), Strings{""});
    EXPECT_EQ(shown.selected3D(), "");
}

TEST(ComboBox, theRowsFollowAListThatShrinksAndGrows)
{
    Shown shown("items [ \"a\", \"b\", \"c\", \"d\", \"e\" ] selectedItem 4", Stage::Scene);
    EXPECT_EQ(shown.lines3D("itemsSwitch"), (Strings{"a", "b", "c", "d", "e"}));
    shown.box->items.deleteValues(1, 3);
    EXPECT_EQ(shown.lines3D("itemsSwitch"), (Strings{"a", "e"}));
    EXPECT_EQ(shown.box->selectedItem, 0);
    shown.box->items.deleteValues(0, 1);
    EXPECT_EQ(shown.lines3D("itemsSwitch"), Strings{"e"});
    for (const char* item : {"x", "y", "z"}) shown.box->addItem(item);
    EXPECT_EQ(shown.lines3D("itemsSwitch"), (Strings{"e", "x", "y", "z"}));
    shown.choose(2);
    EXPECT_EQ(shown.box->selectedItem, 2);
    EXPECT_EQ(shown.selected3D(), "y");
    shown.box->items.setNum(0);
    EXPECT_EQ(shown.lines3D("itemsSwitch"), Strings{""});
    shown.box->addItem("again");
    shown.choose(0);
    EXPECT_EQ(shown.listener.told, (Numbers{2, 0}));
}

// The selection.

TEST(ComboBox, aSelectionBeyondTheEndBecomesTheLastInTheWindow)
{
    Shown shown(colours, Stage::Window);
    shown.box->selectedItem = 9;
    EXPECT_EQ(shown.box->selectedItem, 2);
    EXPECT_EQ(shown.widget()->currentIndex(), 2);
    shown.box->selectedItem = -1;
    EXPECT_EQ(shown.box->selectedItem, -1);
    EXPECT_EQ(shown.widget()->currentIndex(), -1);
}

TEST(ComboBox, anInvalidSelectionFallsBackToTheLastValidOneInTheScene)
{
    Shown shown(colours, Stage::Scene);
    shown.box->selectedItem = 1;
    EXPECT_EQ(shown.selected3D(), "green");
    shown.box->selectedItem = 9;
    EXPECT_EQ(shown.box->selectedItem, 1);
    EXPECT_EQ(shown.selected3D(), "green");
    shown.box->selectedItem = -4;
    EXPECT_EQ(shown.box->selectedItem, 1);
    // Nor is that one valid any more.
    shown.box->items.setNum(1);
    EXPECT_EQ(shown.box->selectedItem, 0);
    EXPECT_EQ(shown.selected3D(), "red");
    EXPECT_TRUE(shown.listener.told.empty());
}

TEST(ComboBox, anInvalidSelectionFromAFileIsTheFirstItemInTheScene)
{
    for (const char* index : {"7", "-7", "2147483647", "-2147483648"}) {
        Shown shown(std::string(colours) + " selectedItem " + index, Stage::Scene);
        EXPECT_EQ(shown.box->selectedItem, 0) << index;
        EXPECT_EQ(shown.selected3D(), "red") << index;
    }
}

TEST(ComboBox, theWindowFollowsTheSceneToTheLastValidSelection)
{
    Shown shown(std::string(colours) + " selectedItem 1");
    shown.box->selectedItem = -1;
    EXPECT_EQ(shown.box->selectedItem, 1);
    EXPECT_EQ(shown.selected3D(), "green");
    EXPECT_EQ(shown.widget()->currentIndex(), 1);
    const Shown fromFile(std::string(colours) + " selectedItem -7");
    EXPECT_EQ(fromFile.box->selectedItem, 0);
    EXPECT_EQ(fromFile.widget()->currentIndex(), 0);
}

TEST(ComboBox, anInvalidSelectionFromAFileIsBroughtIntoRangeInAWindow)
{
    for (const char* index : {"3", "2147483647"}) {
        const Shown shown(std::string(colours) + " selectedItem " + index, Stage::Window);
        EXPECT_EQ(shown.box->selectedItem, 2) << index;
        EXPECT_EQ(shown.widget()->currentIndex(), 2) << index;
    }
    const Shown below(std::string(colours) + " selectedItem -7", Stage::Window);
    EXPECT_EQ(below.widget()->currentIndex(), -1);
}

// Sizes.

TEST(ComboBox, itsWidestItemAndRoomForTheButtonMakeItsSize)
{
    const Library library;
    KsRef<KsDialogComboBox> box(new KsDialogComboBox);
    box->items.set1Value(0, "a");
    box->items.set1Value(1, "the widest of the items");
    box->items.set1Value(2, "two\nlines");
    const KbVec2i32 wide = KsFormweave::getLabelPixelSize(box->items[1], box.get());
    const KbVec2i32 tall = KsFormweave::getLabelPixelSize(box->items[2], box.get());
    EXPECT_EQ(box->getComponentInitSize(), KbVec2i32(wide[0] + 30, tall[1]));
    // Asked once, until the sizes are reset.
    box->items = "a";
    EXPECT_EQ(box->getComponentInitSize()[0], wide[0] + 30);
    box->resetSize();
    EXPECT_EQ(box->getComponentInitSize(),
              KsFormweave::getLabelPixelSize("a", nullptr) + KbVec2i32(30, 0));
    box->resetSize();
    KbVec2i32 label(20, 10), zone(150, 90), size, min, max;
    box->setLabelSize(label);
    box->labelVisibility = false;
    EXPECT_EQ(box->getComponentInitSize()[0],
              KsFormweave::getLabelPixelSize("a", nullptr)[0] + 30 - 20);
    box->setComponentSize(zone);
    box->getDefaultSize(size, min, max);
    EXPECT_EQ(size, KbVec2i32(150, 28));
    box->labelVisibility = true;
    box->getDefaultSize(size, min, max);
    EXPECT_EQ(size, KbVec2i32(150 + 20 + 2, 28));
    EXPECT_EQ(min, KbVec2i32(25, 25));
    EXPECT_EQ(max, KbVec2i32(32767, 32767));
}

TEST(ComboBox, withoutItemsItAsksForTheButtonsRoom)
{
    const Library library;
    KsRef<KsDialogComboBox> box(new KsDialogComboBox);
    EXPECT_EQ(box->getComponentInitSize(), KbVec2i32(30, 0));
}

TEST(ComboBox, inTheWindowItIsAsHighAsALineAndStandsInTheMiddle)
{
    Shown shown(std::string(colours) + " height 60");
    const int w = shown.box->getWidget()->width(), h = shown.box->getWidget()->height();
    ASSERT_EQ(h, 60);
    const int l = shown.labelWidth(), t = textHeight("red");
    EXPECT_EQ(shown.widget()->geometry(),
              QRect(5 + l, 3 + (h - 6 - 4 - t) / 2, w - 6 - (l + 2), t + 4));
    const int lh = textHeight("Colour");
    EXPECT_EQ(shown.labelWidget()->geometry(), QRect(3, 3 + (h - 6 - lh) / 2, l, lh));
    shown.box->labelVisibility = false;
    EXPECT_TRUE(shown.labelWidget()->isHidden());
    EXPECT_EQ(shown.widget()->geometry(), QRect(3, 3 + (h - 6 - 4 - t) / 2, w - 6, t + 4));
}

TEST(ComboBox, theWidgetsBearTheirNames)
{
    Shown shown(colours, Stage::Window);
    EXPECT_EQ(shown.box->getWidget()->objectName(), "LMNKsDialogQComboBoxFrame");
    EXPECT_EQ(shown.widget()->objectName(), "LMNKsDialogQComboBoxComboBoxWidget");
    EXPECT_EQ(shown.labelWidget()->objectName(), "LMNKsDialogQComboBoxLabelWidget");
    EXPECT_FALSE(shown.widget()->isEditable());
    EXPECT_EQ(shown.widget()->font().toString(), KsFormweave::getFormweaveFont().toString());
    EXPECT_EQ(shown.box->getLabelWidget(), nullptr);
}

TEST(ComboBox, inTheSceneBoxAndRowsAreTwentyTwoUnitsHigh)
{
    Shown shown(std::string(colours) + " height 60", Stage::Scene);
    shown.open();
    shown.draw();
    const KbBox3f box = shown.boxOf(shown.box, "frame");
    EXPECT_NEAR(box.getMax()[1] - box.getMin()[1], 22, 1e-3);
    const KbBox3f first = shown.boxOf(shown.box, "itemStrucSep");
    EXPECT_NEAR(first.getMax()[1] - first.getMin()[1], 22, 1e-3);
    EXPECT_NEAR(first.getMax()[0], box.getMax()[0], 1e-3);
    EXPECT_NEAR(first.getMin()[0], box.getMin()[0], 1e-3);
    EXPECT_NEAR(first.getMax()[1], box.getMin()[1], 1e-3) << "the first row hangs below the box";
    const KbBox3f list = shown.boxOf(shown.box, "itemsSwitch");
    EXPECT_NEAR(list.getMax()[1] - list.getMin()[1], 3 * 22, 1e-3);
}

// A choice.

TEST(ComboBox, aChoiceInTheWindowTellsTheAuditorsBeforeTheSceneShowsIt)
{
    Shown shown;
    std::string in3D;
    shown.listener.then = [&](KsDialogChoice*) { in3D = shown.selected3D(); };
    shown.widget()->setFocus();
    QTest::keyClick(shown.widget(), Qt::Key_Down);
    EXPECT_EQ(shown.listener.told, Numbers{1});
    EXPECT_EQ(in3D, "red");
    EXPECT_EQ(shown.selected3D(), "green");
    EXPECT_EQ(shown.box->selectedItem, 1);
    // From the open list.
    shown.widget()->showPopup();
    QApplication::processEvents();
    QAbstractItemView* view = shown.widget()->view();
    QTest::keyClick(view, Qt::Key_Down);
    EXPECT_EQ(shown.listener.told, Numbers{1}) << "it is only pointed at";
    QTest::keyClick(view, Qt::Key_Return);
    EXPECT_EQ(shown.box->selectedItem, 2);
    EXPECT_EQ(shown.listener.told, (Numbers{1, 2}));
    EXPECT_EQ(shown.selected3D(), "blue");
}

TEST(ComboBox, aChoiceInTheSceneTellsTheAuditorsWhenAllViewsShowIt)
{
    Shown shown;
    std::string in3D;
    int in2D = -1;
    bool open = false;
    shown.listener.then = [&](KsDialogChoice*) {
        in3D = shown.selected3D();
        in2D = shown.widget()->currentIndex();
        open = shown.isOpen();
    };
    EXPECT_TRUE(shown.open());
    EXPECT_EQ(Stage::shown(shown.box, "buttonSwitch"), 1);
    EXPECT_TRUE(shown.listener.told.empty());
    shown.choose(2);
    EXPECT_EQ(shown.listener.told, Numbers{2});
    EXPECT_EQ(in3D, "blue");
    EXPECT_EQ(in2D, 2);
    EXPECT_TRUE(open) << "the list closes behind the auditors";
    EXPECT_FALSE(shown.isOpen());
    EXPECT_EQ(Stage::shown(shown.box, "buttonSwitch"), 0);
    EXPECT_EQ(shown.box->selectedItem, 2);
}

TEST(ComboBox, everyRowIsChosenWhereItIsDrawn)
{
    Shown shown("items [ \"a\", \"b\", \"c\", \"d\", \"e\", \"f\", \"g\" ]", Stage::Scene);
    for (const int index : {6, 0, 3, 1, 5, 2, 4}) {
        shown.choose(index);
        EXPECT_EQ(shown.box->selectedItem, index);
        EXPECT_FALSE(shown.isOpen());
    }
}

TEST(ComboBox, choosingTheSelectedRowAgainTellsTheAuditorsAndChangesNothing)
{
    Shown shown(std::string(colours) + " selectedItem 1");
    Watch watch(&shown.box->selectedItem);
    shown.choose(1);
    EXPECT_EQ(shown.listener.told, Numbers{1});
    EXPECT_EQ(watch.calls, 0);
    EXPECT_FALSE(shown.isOpen());
}

TEST(ComboBox, aSelectionFromCodeReachesBothPresentationsButNoAuditor)
{
    Shown shown;
    shown.box->selectedItem = 2;
    EXPECT_EQ(shown.widget()->currentIndex(), 2);
    EXPECT_EQ(shown.selected3D(), "blue");
    EXPECT_TRUE(shown.listener.told.empty());
}

TEST(ComboBox, whatAnAuditorSelectsStands)
{
    Shown shown;
    shown.listener.then = [](KsDialogChoice* choice) { choice->selectedItem = 0; };
    shown.choose(2);
    EXPECT_EQ(shown.box->selectedItem, 0);
    EXPECT_EQ(shown.selected3D(), "red");
    EXPECT_EQ(shown.widget()->currentIndex(), 0);
    shown.widget()->setFocus();
    QTest::keyClick(shown.widget(), Qt::Key_Down);
    EXPECT_EQ(shown.box->selectedItem, 0);
    EXPECT_EQ(shown.selected3D(), "red");
    EXPECT_EQ(shown.listener.told, (Numbers{2, 1}));
}

TEST(ComboBox, whatAnAuditorSelectsDuringAChoiceInTheWindowIsShownThereToo)
{
    Shown shown(std::string(colours) + " selectedItem 1");
    shown.listener.then = [](KsDialogChoice* choice) { choice->selectedItem = 0; };
    shown.widget()->setFocus();
    QTest::keyClick(shown.widget(), Qt::Key_Down);
    EXPECT_EQ(shown.listener.told, Numbers{2});
    EXPECT_EQ(shown.box->selectedItem, 0);
    EXPECT_EQ(shown.selected3D(), "red");
    EXPECT_EQ(shown.widget()->currentIndex(), 0);
}

TEST(ComboBox, anAuditorMayTakeTheComboBoxAway)
{
    for (const bool inWindow : {false, true}) {
        Shown shown;
        shown.listener.then = [&](KsDialogChoice* choice) { shown.dialog->removeChild(choice); };
        if (inWindow) {
            shown.widget()->setFocus();
            QTest::keyClick(shown.widget(), Qt::Key_Down);
        } else {
            shown.choose(1);
        }
        EXPECT_EQ(shown.listener.told, Numbers{1});
        shown.draw();
        Stage::settle();
        EXPECT_EQ(shown.find<KsDialogComboBox>("box"), nullptr);
        EXPECT_EQ((Box::m_lastActive), nullptr);
    }
}

TEST(ComboBox, anAuditorMayChangeTheListInTheMiddleOfAChoice)
{
    for (const bool inWindow : {false, true}) {
        Shown shown;
        shown.listener.then = [&](KsDialogChoice* choice) { choice->items = "only"; };
        if (inWindow) {
            shown.widget()->setFocus();
            QTest::keyClick(shown.widget(), Qt::Key_Down);
        } else {
            shown.choose(2);
        }
        EXPECT_EQ(shown.items2D(), Strings{"only"});
        EXPECT_EQ(shown.selected3D(), "only");
        EXPECT_EQ(shown.box->selectedItem, 0);
    }
}

TEST(ComboBox, disabledItTakesNoChoiceInEitherPresentation)
{
    Shown shown(std::string(colours) + " enable FALSE");
    EXPECT_FALSE(shown.widget()->isEnabled());
    EXPECT_FALSE(shown.labelWidget()->isEnabled());
    shown.open();
    EXPECT_FALSE(shown.isOpen());
    QTest::keyClick(shown.widget(), Qt::Key_Down);
    EXPECT_EQ(shown.box->selectedItem, 0);
    shown.box->enable = true;
    shown.choose(1);
    EXPECT_EQ(shown.listener.told, Numbers{1});
}

// Growing while it shows.

TEST(ComboBox, aListThatGrowsLaysTheDialogOutAnew)
{
    Shown shown("items [ \"a\", \"b\" ]", Stage::Scene);
    shown.dialog->windowResizedByChildren = true;
    const float before = shown.dialog->getTopLevelSize()[0];
    const int width = shown.box->width;
    shown.box->addItem("an item that is so wide that the dialog has to make more room for it");
    shown.draw();
    EXPECT_GT(shown.dialog->getTopLevelSize()[0], before);
    EXPECT_GT(shown.box->width, width);
    // The others have gone along.
    const KbBox3f mine = shown.boxOf(shown.box, "frame");
    const KbBox3f others = shown.boxOf(shown.find<KsDialogComboBox>("other"), "frame");
    EXPECT_NEAR(mine.getMax()[0], others.getMax()[0], 1e-3);
}

TEST(ComboBox, anItemMayChangeItsTextWhileTheListIsOpen)
{
    Shown shown;
    shown.open();
    shown.box->items.set1Value(1, "jade");
    EXPECT_TRUE(shown.isOpen());
    EXPECT_EQ(shown.lines3D("itemsSwitch"), (Strings{"red", "jade", "blue"}));
    shown.box->addItem("black");
    EXPECT_TRUE(shown.isOpen());
    shown.choose(3);
    EXPECT_EQ(shown.box->selectedItem, 3);
    EXPECT_EQ(shown.widget()->currentText(), "black");
}

// Labels.

TEST(ComboBox, itsTextsKeepTheirEscapesAndItsLabelDoesInTheScene)
{
    Shown shown("label \"a\\\\tb\" items [ \"x\\\\ny\" ]");
    EXPECT_EQ(shown.box->items[0].toUtf8(), "x\\ny");
    EXPECT_EQ(shown.items2D(), Strings{"x\\ny"});
    EXPECT_EQ(shown.selected3D(), "x\\ny");
    EXPECT_EQ(shown.labelWidget()->text(), "a\tb");
    EXPECT_EQ(shown.lines3D("labelSwitch"), Strings{"a\\tb"});
    shown.box->label = "Other";
    EXPECT_EQ(shown.labelWidget()->text(), "Other");
    EXPECT_EQ(shown.lines3D("labelSwitch"), Strings{"Other"});
    shown.box->labelVisibility = false;
    EXPECT_EQ(Stage::shown(shown.box, "labelSwitch"), KsSwitch::NONE);
}

TEST(ComboBox, itsLabelMovesWithItsAlignment)
{
    Shown shown("label \"A\" items [ \"x\" ]", Stage::Scene);
    const auto x = [&] {
        shown.draw();
        return shown.boxOf(shown.box, "labelSep").getMin()[0];
    };
    const float right = x();
    shown.box->labelAlignment = KsFormweave::CENTER;
    const float centre = x();
    shown.box->labelAlignment = KsFormweave::LEFT;
    const float left = x();
    EXPECT_LT(left, centre);
    EXPECT_LT(centre, right);
}

// The form in the scene.

TEST(ComboBox, itsPartsStandInTheOrderOfTheCatalog)
{
    Shown shown(colours, Stage::Scene);
    EXPECT_EQ(partRows(shown.box, "labelSep"),
              (Strings{"labelSep Separator geomSwitch", "labelSwitch Switch labelSep",
                       "labelProp Group labelSwitch public", "frameSep Separator geomSwitch",
                       "frame Group frameSep public", "textSep Separator geomSwitch",
                       "textProp Group textSep public", "buttonSep Separator geomSwitch",
                       "buttonSwitch Switch buttonSep", "buttonReleased Group buttonSwitch public",
                       "buttonPressed Group buttonSwitch public", "itemsSwitch Switch geomSwitch",
                       "itemStrucSep Separator itemsSwitch", "itemSep Separator itemStrucSep",
                       "itemFrame Group itemSep public", "itemTextSep Separator itemStrucSep",
                       "itemTextProp Group itemTextSep public"}));
}

TEST(ComboBox, itsButtonAndTextStandWithinItsBox)
{
    Shown shown(colours, Stage::Scene);
    shown.draw();
    const KbBox3f frame = shown.boxOf(shown.box, "frame");
    const KbBox3f button = shown.boxOf(shown.box, "buttonSep");
    const KbBox3f text = shown.boxOf(shown.box, "textSep");
    EXPECT_NEAR(frame.getMax()[0] - button.getCenter()[0], 11, 1e-3);
    EXPECT_NEAR(button.getMax()[0] - button.getMin()[0], 16, 0.1);
    EXPECT_NEAR(button.getCenter()[1], frame.getCenter()[1], 1e-3);
    EXPECT_NEAR(text.getMin()[0], frame.getMin()[0] + 4, 0.5);
    EXPECT_NEAR(text.getCenter()[1], frame.getCenter()[1], 1e-3);
    EXPECT_LT(text.getMax()[0], button.getMin()[0]);
}

// Files.

TEST(ComboBox, isWrittenAsItWasReadAfterItWasShownInAScene)
{
    const Library library;
    for (const char* fields :
         {"", "label \"L\"", "items [ \"a\", \"b\" ]", "items \"one\"",
          "items [ \"a \\\"quoted\\\" one\", \"tab\\there\" ] selectedItem 1"}) {
        const auto written = [](KsNode* node) {
            KsWriteAction action;
            action.apply(node);
            return std::string(action.getOutput()->getBuffer());
        };
        const std::string text = "DialogComboBox { " + std::string(fields) + " }";
        KsInput in;
        in.setBuffer(text.data(), text.size());
        const KsRef<KsSeparator> root(KsDB::readAll(&in));
        ASSERT_TRUE(root) << text;
        const std::string before = written(root.get());
        KsGetBoundingBoxAction(KbViewportRegion(100, 100)).apply(root.get());
        EXPECT_EQ(written(root.get()), before);
        KsInput again;
        again.setBuffer(before.data(), before.size());
        const KsRef<KsSeparator> second(KsDB::readAll(&again));
        ASSERT_TRUE(second);
        EXPECT_EQ(written(second->getChild(0)), written(root->getChild(0)));
    }
}

// Builds.

TEST(ComboBox, aWindowThatIsDeletedTakesItsWidgetAlone)
{
    Shown shown;
    delete shown.dialog->getBaseWidget();
    EXPECT_EQ(shown.box->getWidget(), nullptr);
    shown.box->addItem("more");
    shown.box->selectedItem = 3;
    EXPECT_EQ(shown.selected3D(), "more");
    shown.choose(1);
    EXPECT_EQ(shown.listener.told, Numbers{1});
}

TEST(ComboBox, aSecondBuildLeavesOneWidget)
{
    Shown shown;
    const QPointer<QComboBox> earlier = shown.widget();
    shown.dialog->buildDialog();
    Stage::settle();
    EXPECT_EQ(shown.dialog->getBaseWidget()->findChildren<QComboBox*>().size(), 2)
        << "that of each combo box";
    EXPECT_EQ(shown.items2D(), (Strings{"red", "green", "blue"}));
    shown.widget()->setFocus();
    QTest::keyClick(shown.widget(), Qt::Key_Down);
    EXPECT_EQ(shown.listener.told, Numbers{1});
    shown.box->destroyWidget();
    EXPECT_EQ(shown.dialog->getBaseWidget()->findChildren<QComboBox*>().size(), 1);
    shown.box->selectedItem = 2;
    EXPECT_EQ(shown.selected3D(), "blue");
}

// Bad input.

TEST(ComboBox, bearsAHundredThousandItems)
{
    constexpr int many = 100000;
    const Library library;
    KsRef<KsTopLevelDialog> dialog(new KsTopLevelDialog);
    KsRef<KsDialogComboBox> box(new KsDialogComboBox);
    std::vector<KbString> items;
    for (int i = 0; i < many; ++i) items.emplace_back(("item " + std::to_string(i)).c_str());
    box->items.assign(items);
    box->selectedItem = many - 1;
    dialog->addChild(box.get());
    KsGetBoundingBoxAction(KbViewportRegion(100, 100)).apply(dialog.get());
    dialog->buildDialog();
    QPointer<QWidget> window = dialog->getBaseWidget();
    EXPECT_EQ(Stage::widgetOf<QComboBox>(box.get())->count(), many);
    EXPECT_EQ(Stage::widgetOf<QComboBox>(box.get())->currentIndex(), many - 1);
    EXPECT_LT(box->width, 400);
    box->items.setNum(10);
    EXPECT_EQ(Stage::widgetOf<QComboBox>(box.get())->count(), 10);
    EXPECT_EQ(box->selectedItem, 9);
    dialog.reset();
    box.reset();
    delete window;
}

TEST(ComboBox, bearsAnyTextAsItem)
{
    const std::string megabyte(1 << 20, 'x');
    Shown shown("label \"Any\" items [ \"two\nlines\", \"tab\there\", \"quote \\\"\", \"" +
                megabyte + "\", \"\" ] fixedWidth TRUE width 200");
    EXPECT_EQ(shown.widget()->count(), 5);
    for (int i = 0; i < 5; ++i) {
        shown.choose(i);
        EXPECT_EQ(shown.box->selectedItem, i);
        EXPECT_EQ(shown.widget()->currentIndex(), i);
    }
    EXPECT_EQ(shown.box->items[3].getLength(), megabyte.size()) << "the field keeps all of it";
    shown.box->items.set1Value(0, KbString::fromUtf8("\xce\xb1\xe4\xb8\xad"));
    EXPECT_EQ(shown.widget()->itemText(0), QString::fromUtf8("\xce\xb1\xe4\xb8\xad"));
}

TEST(ComboBox, bearsSizesThatContradictEachOther)
{
    for (const char* sizes :
         {"width -50 height -50", "width 2147483647 height 2147483647", "minWidth 500 maxWidth 20",
          "minHeight 300 maxHeight 10", "width 10 height 5 fixedWidth TRUE fixedHeight TRUE"}) {
        Shown shown(std::string(colours) + " " + sizes);
        shown.draw();
        shown.box->selectedItem = 2;
        EXPECT_EQ(shown.selected3D(), "blue") << sizes;
        EXPECT_EQ(shown.widget()->currentIndex(), 2) << sizes;
    }
}

TEST(ComboBox, aBareChoiceInAFileIsHarmless)
{
    Stage stage("TopLevelDialog { DialogChoice { auditorID \"bare\" items [ \"a\", \"b\" ] } "
                "DialogComboBox { auditorID \"box\" items [ \"a\", \"b\" ] } }");
    auto* bare = stage.find<KsDialogChoice>("bare");
    ASSERT_TRUE(bare);
    EXPECT_TRUE(qobject_cast<QFrame*>(bare->getWidget()));
    EXPECT_TRUE(stage.boxOf(bare, "geomSwitch").isEmpty());
    bare->addItem("c");
    bare->selectedItem = 5;
    EXPECT_EQ(bare->selectedItem, 5);
}
