// The base of every element: its fields, its place in the tree, its auditors, and the road from a
// field to what shows it.

#include "Elements.h"

#include <arborium/kits/KsNodekitCatalog.h>
#include <formweave/KsColumnDialog.h>
#include <formweave/KsDialogCheckBoxAuditor.h>
#include <formweave/KsRowDialog.h>
#include <formweave/KsTopLevelDialog.h>

#include <functional>

namespace {

class Element : public DialogBase {};

class Listener : public KsDialogCheckBoxAuditor {
public:
    explicit Listener(std::function<void(KsDialogCheckBox*)> told = {}) : m_told(std::move(told)) {}
    void dialogCheckBox(KsDialogCheckBox* box) override
    {
        ++calls;
        if (m_told) m_told(box);
    }
    int calls = 0;

private:
    std::function<void(KsDialogCheckBox*)> m_told;
};

int pickStyleOf(const ProbeBox* box) { return box->m_pickStyle->style.getValue(); }
KbColor emissionOf(const ProbeBox* box) { return box->m_material->emissiveColor[0]; }

constexpr int asShape = 0;
constexpr int asBox = 1;
constexpr int unpickable = 2;
const KbColor black(0, 0, 0);
const KbColor grey(0.5f, 0.5f, 0.5f);

} // namespace

TEST_F(Element, hasItsFieldsInOrderWithTheirDefaults)
{
    KsRef<KsFormweave> element = readNode<KsFormweave>("Formweave { }");
    ASSERT_TRUE(element);
    const KsFieldData* data = element->getFieldData();
    std::vector<std::string> own;
    for (const char* name : {"enable", "label", "auditorID", "labelAlignment", "geomSwitch"})
        own.emplace_back(name);
    const int first = data->getIndex("enable");
    ASSERT_GE(first, 0);
    for (std::size_t i = 0; i < own.size(); ++i)
        EXPECT_EQ(data->getFieldName(first + static_cast<int>(i)), own[i].c_str());
    EXPECT_TRUE(element->enable);
    EXPECT_EQ(element->label.getValue(), "");
    EXPECT_EQ(element->auditorID.getValue(), "");
    EXPECT_EQ(element->labelAlignment.getValue(), KsFormweave::RIGHT);
    EXPECT_TRUE(element->hasDefaultValues());
}

TEST_F(Element, readsItsAlignmentsByName)
{
    int value = 0;
    for (const char* name : {"LEFT", "CENTER", "RIGHT"}) {
        const auto element =
            readNode<KsFormweave>(std::string("Formweave { labelAlignment ") + name + " }");
        ASSERT_TRUE(element);
        EXPECT_EQ(element->labelAlignment.getValue(), value++);
    }
    KsRef<ProbeBox> box(new ProbeBox);
    const ExpectedMessages messages("", "", 1);
    box->labelAlignment = 3;
    EXPECT_EQ(box->labelAlignment.getValue(), KsFormweave::RIGHT);
}

TEST_F(Element, hangsItsGeometryBelowAHiddenSwitchThatIsNotThereAtFirst)
{
    KsRef<ProbeBox> box(new ProbeBox);
    const KsNodekitCatalog* catalog = box->getNodekitCatalog();
    const int part = catalog->getPartNumber("geomSwitch");
    ASSERT_NE(part, -1);
    EXPECT_EQ(catalog->getName(catalog->getParent(part)), "geomSeparator");
    EXPECT_EQ(catalog->getType(part), KsSwitch::getClassTypeId());
    EXPECT_EQ(catalog->getDefaultType(part), KsSwitch::getClassTypeId());
    EXPECT_TRUE(catalog->isNullByDefault(part));
    EXPECT_FALSE(catalog->isPublic(part));
    EXPECT_FALSE(catalog->isList(part));
    EXPECT_EQ(box->getAnyPart("geomSwitch", false), nullptr);
    measure(box.get());
    EXPECT_NE(box->getAnyPart("geomSwitch", false), nullptr);
    EXPECT_EQ(static_cast<KsSFNode*>(box->getField("geomSwitch"))->getValue(),
              box->getAnyPart("geomSwitch", false));
}

TEST_F(Element, aNewNodeHasNeitherPresentation)
{
    KsRef<ProbeBox> box(new ProbeBox);
    EXPECT_EQ(box->m_build2D, 0);
    EXPECT_EQ(box->isBuilt3D(), 0);
    EXPECT_EQ(box->canBeTraversed(), 1);
    EXPECT_EQ(box->isShown3D(), 1);
    EXPECT_EQ(box->m_parentWidget, nullptr);
    EXPECT_EQ(box->getParentElement(), nullptr);
    EXPECT_EQ(box->m_pickStyle.get(), nullptr);
    EXPECT_EQ(box->m_enableSensor.get(), nullptr);
    EXPECT_FALSE(box->isLabelCachedBBox());
    EXPECT_TRUE(box->get3DParentTranslation() == KbVec3f(0, 0, 0));
}

// The top of the tree.

TEST_F(Element, aloneItHasNoTopParentButAGroupIsItsOwn)
{
    KsRef<ProbeBox> box(new ProbeBox);
    KsRef<KsRowDialog> row(new KsRowDialog);
    EXPECT_EQ(box->getFirstTopParent(0, 1), nullptr);
    EXPECT_EQ(box->getFirstTopParent(0, 0), nullptr);
    EXPECT_EQ(row->getFirstTopParent(0, 1), row.get());
    EXPECT_EQ(row->getFirstTopParent(0, 0), nullptr);
}

TEST_F(Element, theTopParentIsTheNearestDialogAbove)
{
    KsRef<KsTopLevelDialog> dialog(new KsTopLevelDialog);
    auto* column = new KsColumnDialog;
    auto* row = new KsRowDialog;
    auto* box = new ProbeBox;
    dialog->addChild(column);
    column->addChild(row);
    row->addChild(box);
    for (KsFormweave* element : std::vector<KsFormweave*>{column, row, box}) {
        EXPECT_EQ(element->getFirstTopParent(0, 0), dialog.get());
        EXPECT_EQ(element->getFirstTopParent(0, 1), dialog.get());
    }
}

TEST_F(Element, withoutADialogTheTopParentIsTheOutermostGroup)
{
    KsRef<KsColumnDialog> column(new KsColumnDialog);
    auto* row = new KsRowDialog;
    auto* box = new ProbeBox;
    column->addChild(row);
    row->addChild(box);
    EXPECT_EQ(box->getFirstTopParent(0, 1), column.get());
    EXPECT_EQ(box->getFirstTopParent(0, 0), nullptr);
}

TEST_F(Element, theClimbStopsBelowAContainerThatCannotBeTraversed)
{
    KsRef<KsTopLevelDialog> dialog(new KsTopLevelDialog);
    auto* column = new KsColumnDialog;
    auto* row = new KsRowDialog;
    auto* box = new ProbeBox;
    dialog->addChild(column);
    column->addChild(row);
    row->addChild(box);
    column->setCanBeTraversed(0);
    EXPECT_EQ(box->getFirstTopParent(0, 1), row) << "the element below the stop";
    EXPECT_EQ(box->getFirstTopParent(0, 0), nullptr);
    EXPECT_EQ(box->getFirstTopParent(1, 0), dialog.get()) << "the stop is ignored";
    row->setCanBeTraversed(0);
    EXPECT_EQ(box->getFirstTopParent(0, 1), box);
    column->setCanBeTraversed(1);
    row->setCanBeTraversed(1);
    dialog->setCanBeTraversed(0);
    EXPECT_EQ(box->getFirstTopParent(0, 1), column) << "also below the dialog itself";
}

// From a field to what shows it.

TEST_F(Element, aFieldSetWithoutAPresentationIsOnlyStored)
{
    KsRef<ProbeBox> box(new ProbeBox);
    box->label = "Name";
    box->enable = false;
    box->labelAlignment = KsFormweave::LEFT;
    EXPECT_EQ(box->take(), Calls());
    EXPECT_EQ(box->label.getValue(), "Name");
    EXPECT_FALSE(box->enable);
}

TEST_F(Element, aFieldReachesBothPresentationsTheWidgetFirst)
{
    KsRef<ProbeBox> box(new ProbeBox);
    box->build(1);
    box->build(0);
    box->take();
    box->enable = false;
    EXPECT_EQ(box->take(), Calls({"changeEnable", "change3DEnable"}));
    box->label = "Name";
    EXPECT_EQ(box->take(), Calls({"changeLabel", "change3DLabel"}));
    box->labelAlignment = KsFormweave::LEFT;
    EXPECT_EQ(box->take(), Calls({"changeLabelAlignment", "change3DLabelAlignment"}));
    box->auditorID = "id";
    EXPECT_EQ(box->take(), Calls());
}

TEST_F(Element, aFieldReachesThePresentationThatExists)
{
    KsRef<ProbeBox> window(new ProbeBox), panel(new ProbeBox);
    window->build(1);
    panel->build(0);
    window->take();
    panel->take();
    window->label = "a";
    panel->label = "a";
    EXPECT_EQ(window->take(), Calls({"changeLabel"}));
    EXPECT_EQ(panel->take(), Calls({"change3DLabel"}));
    window->destroyWidget();
    window->take();
    window->label = "b";
    EXPECT_EQ(window->take(), Calls());
    EXPECT_EQ(window->m_build2D, 0);
}

TEST_F(Element, assigningAnEqualValueNotifies)
{
    KsRef<ProbeBox> box(new ProbeBox);
    box->build(0);
    box->take();
    box->enable = true;
    EXPECT_EQ(box->take(), Calls({"change3DEnable"}));
}

TEST_F(Element, aNodeThatCannotBeTraversedGetsNo3DChanges)
{
    KsRef<ProbeBox> box(new ProbeBox);
    box->build(1);
    box->build(0);
    box->setCanBeTraversed(0);
    box->take();
    box->enable = false;
    box->label = "Name";
    box->edgeStyle = KsDialogComponent::SHADOW_IN;
    EXPECT_EQ(box->isBuilt3D(), 1);
    EXPECT_EQ(box->take(), Calls({"changeEnable", "changeLabel", "changeEdgeStyle"}));
}

TEST_F(Element, aRepeatedBuildMakesNoSecondSensor)
{
    KsRef<ProbeBox> box(new ProbeBox);
    box->build(0);
    const KsFieldSensor* sensor = box->m_enableSensor.get();
    ASSERT_NE(sensor, nullptr);
    EXPECT_EQ(sensor->getPriority(), 0u);
    EXPECT_EQ(sensor->getAttachedField(), &box->enable);
    box->build(0);
    box->build(1);
    EXPECT_EQ(box->m_enableSensor.get(), sensor);
    box->take();
    box->enable = false;
    EXPECT_EQ(box->take(), Calls({"changeEnable", "change3DEnable"}));
}

TEST_F(Element, aSensorOfSomebodyElseChangesNothing)
{
    KsRef<ProbeBox> box(new ProbeBox);
    box->build(1);
    box->take();
    KsFieldSensor stranger([](void*, KsSensor*) {}, nullptr);
    box->updateFromSensor(&stranger);
    box->updateFromSensor(nullptr);
    EXPECT_EQ(box->take(), Calls());
}

TEST_F(Element, theBuildForWidgetsKeepsItsParentWidgetAndThe3DBuildDoesNot)
{
    QWidget window;
    KsRef<ProbeBox> box(new ProbeBox);
    box->build(2, 0, 0, &window);
    EXPECT_EQ(box->m_build2D, 2);
    EXPECT_EQ(box->m_parentWidget, &window);
    box->build(0);
    EXPECT_EQ(box->m_build2D, 2);
    EXPECT_EQ(box->m_parentWidget, &window);
}

TEST_F(Element, aWidgetExistsIfItsPointerIsNotNull)
{
    QWidget widget;
    EXPECT_EQ(Services::existWidget(&widget), 1);
    EXPECT_EQ(Services::existWidget(nullptr), 0);
}

// Auditors.

TEST_F(Element, anAuditorAddedTwiceStandsOnceInTheList)
{
    KsRef<ProbeBox> box(new ProbeBox);
    Listener a, b;
    EXPECT_EQ(box->getAuditorListLength(), 0);
    box->addAuditor(&a);
    box->addAuditor(&b);
    box->addAuditor(&a);
    EXPECT_EQ(box->getAuditorListLength(), 2);
    EXPECT_EQ(box->getAuditor(0), &a);
    EXPECT_EQ(box->getAuditor(1), &b);
    box->removeAuditor(&a);
    EXPECT_EQ(box->getAuditorListLength(), 1);
    EXPECT_EQ(box->getAuditor(0), &b);
}

TEST_F(Element, removingAnAuditorThatIsNotThereDoesNothing)
{
    KsRef<ProbeBox> box(new ProbeBox);
    Listener a, b;
    box->removeAuditor(&a);
    EXPECT_EQ(box->getAuditorListLength(), 0);
    box->addAuditor(&a);
    box->removeAuditor(&b);
    box->removeAuditor(nullptr);
    EXPECT_EQ(box->getAuditorListLength(), 1);
    EXPECT_EQ(box->getAuditor(-1), nullptr);
    EXPECT_EQ(box->getAuditor(1), nullptr);
}

TEST_F(Element, anAuditorMayRemoveItselfAndOthersWhileTheListIsTold)
{
    KsRef<ProbeBox> box(new ProbeBox);
    Listener last;
    Listener third;
    Listener second([&](KsDialogCheckBox* b) {
        // Itself, one before it and one behind it.
        for (Listener* each : {&second, &third}) b->removeAuditor(each);
    });
    Listener first([&](KsDialogCheckBox*) {});
    for (Listener* each : {&first, &second, &third, &last})
        static_cast<KsDialogCheckBox*>(box.get())->addAuditor(each);
    box->applyDlgCptAuditor();
    EXPECT_EQ(first.calls, 1);
    EXPECT_EQ(second.calls, 1);
    EXPECT_EQ(third.calls, 0) << "removed before its turn";
    EXPECT_EQ(last.calls, 1);
    EXPECT_EQ(box->getAuditorListLength(), 2);
}

TEST_F(Element, anAuditorThatRemovesItselfAndTheOneBeforeItSkipsNobody)
{
    KsRef<ProbeBox> box(new ProbeBox);
    Listener first, last;
    Listener second([&](KsDialogCheckBox* b) {
        b->removeAuditor(&first);
        b->removeAuditor(&second);
    });
    for (Listener* each : {&first, &second, &last})
        static_cast<KsDialogCheckBox*>(box.get())->addAuditor(each);
    box->applyDlgCptAuditor();
    EXPECT_EQ(first.calls, 1);
    EXPECT_EQ(second.calls, 1);
    EXPECT_EQ(last.calls, 1);
}

TEST_F(Element, anAuditorMayDeleteTheElementThatCallsIt)
{
    auto* box = new ProbeBox;
    box->ref();
    const int before = KsBase::getNumInstances();
    Listener a([](KsDialogCheckBox* b) { b->unref(); });
    Listener b;
    static_cast<KsDialogCheckBox*>(box)->addAuditor(&a);
    static_cast<KsDialogCheckBox*>(box)->addAuditor(&b);
    box->applyDlgCptAuditor();
    EXPECT_EQ(a.calls, 1);
    EXPECT_LT(KsBase::getNumInstances(), before);
}

// The active element.

TEST_F(Element, makingTheActiveElementActiveAgainDoesNotCloseIt)
{
    KsRef<ProbeBox> a(new ProbeBox), b(new ProbeBox);
    Services::set3DCurrentActive(a.get());
    Services::set3DCurrentActive(a.get());
    EXPECT_EQ(a->take(), Calls());
    EXPECT_EQ(Services::m_lastActive, a.get());
    Services::set3DCurrentActive(b.get());
    EXPECT_EQ(a->take(), Calls({"set3DInactive"}));
    EXPECT_EQ(b->take(), Calls());
    EXPECT_EQ(Services::m_lastActive, b.get());
    Services::set3DCurrentActive(nullptr);
    EXPECT_EQ(b->take(), Calls({"set3DInactive"}));
    EXPECT_EQ(Services::m_lastActive, nullptr);
}

TEST_F(Element, anElementThatIsNotTheActiveOneDoesNotClearIt)
{
    KsRef<ProbeBox> a(new ProbeBox), b(new ProbeBox);
    Services::set3DCurrentActive(a.get());
    b->set3DInactive();
    EXPECT_EQ(Services::m_lastActive, a.get());
    a->set3DInactive();
    EXPECT_EQ(Services::m_lastActive, nullptr);
}

TEST_F(Element, deletingTheActiveElementLeavesNoneActive)
{
    KsRef<ProbeBox> a(new ProbeBox);
    Services::set3DCurrentActive(a.get());
    a.reset();
    EXPECT_EQ(Services::m_lastActive, nullptr);
    KsRef<ProbeBox> b(new ProbeBox);
    Services::set3DCurrentActive(b.get());
    EXPECT_EQ(Services::m_lastActive, b.get());
    Services::set3DCurrentActive(nullptr);
}

// Grey and bright.

TEST_F(Element, disablingGreysThe3DFormAndTakesItOutOfPicks)
{
    KsRef<ProbeBox> box(new ProbeBox);
    box->build(0);
    EXPECT_EQ(pickStyleOf(box), asShape);
    box->enable = false;
    EXPECT_EQ(pickStyleOf(box), unpickable);
    EXPECT_EQ(emissionOf(box), grey);
    box->enable = true;
    EXPECT_EQ(pickStyleOf(box), asBox) << "a change of the field picks by boxes";
    EXPECT_EQ(emissionOf(box), black);
}

TEST_F(Element, theStateOfAContainerIsCombinedWithItsOwn)
{
    KsRef<ProbeBox> box(new ProbeBox);
    box->build(0);
    box->change3DWidgetEnable(0);
    EXPECT_EQ(pickStyleOf(box), unpickable);
    EXPECT_EQ(emissionOf(box), grey);
    box->change3DWidgetEnable(1);
    EXPECT_EQ(pickStyleOf(box), asShape) << "the container picks by shapes";
    EXPECT_EQ(emissionOf(box), black);
    box->enable = false;
    box->change3DWidgetEnable(1);
    EXPECT_EQ(pickStyleOf(box), unpickable);
    EXPECT_EQ(emissionOf(box), grey);
}

TEST_F(Element, enableOperationsBeforeThe3DBuildDoNothing)
{
    KsRef<ProbeBox> box(new ProbeBox);
    box->change3DWidgetEnable(0);
    box->change3DEnable();
    EXPECT_EQ(box->m_pickStyle.get(), nullptr);
}

TEST_F(Element, disabledWhenItIsBuiltIn3DItIsGreyAtOnce)
{
    KsRef<ProbeBox> box(new ProbeBox);
    box->enable = false;
    measure(box.get());
    EXPECT_EQ(pickStyleOf(box), unpickable);
    EXPECT_EQ(emissionOf(box), grey);
}

TEST_F(Element, theGreyIsSetBeforeTheSkinAndSoReachesIt)
{
    KsRef<ProbeBox> box(new ProbeBox);
    measure(box.get());
    auto* geometry = static_cast<KsGroup*>(box->getAnyPart("geomSwitch", false));
    EXPECT_EQ(geometry->getChild(0), box->m_material.get());
    EXPECT_EQ(geometry->getChild(1), box->m_pickStyle.get());
}

// Hiding.

TEST_F(Element, hidingSwitchesItsGeometryOff)
{
    KsRef<ProbeBox> box(new ProbeBox);
    measure(box.get());
    auto* geometry = static_cast<KsSwitch*>(box->getAnyPart("geomSwitch", false));
    EXPECT_EQ(geometry->whichChild.getValue(), -3);
    box->show3D(0);
    EXPECT_EQ(geometry->whichChild.getValue(), -1);
    EXPECT_EQ(box->isShown3D(), 0);
    EXPECT_TRUE(measure(box.get()).isEmpty());
    box->show3D(7);
    EXPECT_EQ(geometry->whichChild.getValue(), -3);
    EXPECT_EQ(box->isShown3D(), 7) << "the value is kept as it was given";
    EXPECT_FALSE(measure(box.get()).isEmpty());
}

TEST_F(Element, showAndHideBeforeThe3DBuildOnlyKeepTheValue)
{
    KsRef<ProbeBox> box(new ProbeBox);
    box->show3D(0);
    EXPECT_EQ(box->isShown3D(), 0);
    EXPECT_EQ(box->getAnyPart("geomSwitch", false), nullptr);
}

TEST_F(Element, aNewLabelForgetsTheMeasuredBox)
{
    KsRef<ProbeBox> box(new ProbeBox);
    box->label = "Name";
    measure(box.get());
    EXPECT_TRUE(box->isLabelCachedBBox()) << "measured once, by the layout";
    box->setLabelCacheBBox(KbBox3f(0, 0, 0, 3, 2, 1));
    EXPECT_TRUE(box->isLabelCachedBBox());
    EXPECT_TRUE(box->getLabelCachedBBox() == KbBox3f(0, 0, 0, 3, 2, 1));
    box->KsFormweave::change3DLabel();
    EXPECT_FALSE(box->isLabelCachedBBox());
    EXPECT_TRUE(box->getLabelCachedBBox() == Services::staleBox());
    EXPECT_TRUE(Services::staleBox() == KbBox3f(-1, -1, -1, -1, -1, -1));
}

// The base types met by themselves in a file.

TEST_F(Element, typesThatOnlyOthersDeriveFromAreHarmlessInAFile)
{
    const auto dialog = readNode<KsTopLevelDialog>(R"(TopLevelDialog {
        TopComponent { label "a" }
        DialogComponent { label "b" edgeStyle SHADOW_IN }
        DialogGroup { label "c" DialogCheckBox { label "d" } DialogComponent { } }
        DialogCheckBox { label "e" }
    })");
    ASSERT_TRUE(dialog);
    ASSERT_EQ(dialog->getNumChildren(), 4);
    dialog->buildDialog();
    measure(dialog.get());
    const KsRef<KsTopLevelDialog> keep(dialog);
    QWidget* window = dialog->getBaseWidget();
    ASSERT_NE(window, nullptr);
    for (int i = 0; i < 4; ++i) {
        dialog->getChild(i)->label = "new";
        dialog->getChild(i)->enable = false;
    }
    auto* plain = static_cast<KsDialogComponent*>(dialog->getChild(1));
    ASSERT_NE(plain->getWidget(), nullptr);
    EXPECT_NE(plain->getWidget(), window) << "a frame of its own";
    EXPECT_EQ(plain->getWidget()->parentWidget(), window);
    const int nodes = KsBase::getNumInstances();
    dialog->touch();
    measure(dialog.get());
    EXPECT_EQ(KsBase::getNumInstances(), nodes) << "nothing is built twice";
    EXPECT_EQ(plain->isBuilt3D(), 0);
    QPointer<QWidget> alive(window);
    while (dialog->getNumChildren()) dialog->removeChild(0);
    EXPECT_TRUE(alive) << "the window outlives its rows";
    delete window;
}

// The cache and a dying element.

TEST_F(Element, anElementThatDiesTakesItsFileOutOfTheCache)
{
    Folder folder;
    const std::string path = folder.file(
        "a.arb", std::string(header) + "DialogCheckBox { label \"one\" }\nDialogCheckBox { }\n");
    const int before = KsBase::getNumInstances();
    KsFormweave* element = KsFormweave::loadFromFile(path.c_str(), "");
    ASSERT_NE(element, nullptr);
    ASSERT_EQ(Services::s_listData->getLength(), 1);
    // The caller's reference, and then that of the tree, as closing a dialog twice does.
    element->unref();
    element->unref();
    EXPECT_EQ(Services::s_listData->getLength(), 0);
    EXPECT_EQ(KsBase::getNumInstances(), before);
    KsFormweave* again = KsFormweave::loadFromFile(path.c_str(), "");
    ASSERT_NE(again, nullptr);
    EXPECT_EQ(again->label.getValue(), "one");
    again->unref();
}
