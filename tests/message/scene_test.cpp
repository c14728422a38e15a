// Message boxes that are shown while a person works in a scene, and drags that end without a
// release.

#include "Person.h"

#include <arborium/nodes/KsTranslation.h>
#include <dialog/Stage.h>

namespace {

class Shower : public KsDialogAuditor {
public:
    void dialogCheckBox(KsDialogCheckBox*) override { show(); }
    void dialogComboBox(KsDialogComboBox*) override { show(); }
    void dialogPushButton(KsDialogPushButton*) override { show(); }
    int shown = 0;

private:
    void show()
    {
        ++shown;
        Person person(QMessageBox::Ok);
        dialog->show();
        EXPECT_TRUE(person.seen.shown);
    }
    KsRef<KsMessageDialog> dialog{new KsMessageDialog};
};

} // namespace

TEST(MessageInAScene, leavesNothingDraggedBehind)
{
    Stage stage("TopLevelDialog { label \"D\" DialogCheckBox { auditorID \"box\" label \"A\" } "
                "DialogComboBox { auditorID \"combo\" items [ \"one\", \"two\", \"three\" ] } "
                "DialogPushButton { auditorID \"button\" buttonLabel \"Press\" } "
                "DialogCheckBox { auditorID \"last\" label \"B\" } }",
                Stage::Scene);
    Shower shower;
    stage.dialog->addAuditor(&shower);
    auto* box = stage.find<KsDialogCheckBox>("box");
    stage.clickPart(box, "stateSep");
    EXPECT_EQ(shower.shown, 1);
    // A choice from a list is told at the press; the release never comes.
    auto* combo = stage.find<KsDialogComboBox>("combo");
    stage.clickPart(combo, "buttonSep");
    stage.press(stage.placeOf(combo, "itemsSwitch"));
    EXPECT_EQ(shower.shown, 2);
    stage.dialog->removeAuditor(&shower);
    auto* last = stage.find<KsDialogCheckBox>("last");
    stage.clickPart(last, "stateSep");
    EXPECT_TRUE(last->state) << "nobody has the events to himself";
}

namespace {

/// A form in a scene with something of each kind that shows that it is pressed.
class PressedForm : public Stage {
public:
    static constexpr const char* text =
        "TopLevelDialog { auditorID \"panel\" label \"Form\" position3D 20 20 0 width 340 "
        "  MenuBar { MenuPopup { auditorID \"menu\" label \"File\" "
        "    MenuPushButton { auditorID \"entry\" label \"Quit\" } } } "
        "  DialogEditText { auditorID \"edit\" } "
        "  DialogPushButton { auditorID \"button\" buttonLabel \"Press\" } "
        "  DialogRealSlider { auditorID \"slider\" max 10 value 4 continuousTrigger FALSE } "
        "  DialogEditText { auditorID \"lines\" height 90 fixedHeight TRUE multiLine TRUE "
        "    wrapLine FALSE editText \"one\\ntwo\\nthree\\nfour\\nfive\\nsix\\nseven\\neight\" } "
        "  TabDialog { auditorID \"tabs\" "
        "    RowDialog { label \"The first of the pages\" DialogCheckBox { auditorID \"box\" } } "
        "    RowDialog { label \"The second of the pages\" DialogCheckBox { } } "
        "    RowDialog { label \"The third of the pages\" DialogCheckBox { } } } }";

    PressedForm() : Stage(text, Scene) {}
    KsFormweave* element(const std::string& id) const
    {
        return id == "panel" ? dialog.get() : find<KsFormweave>(id.c_str());
    }
    bool isSeen(const char* id, const char* part)
    {
        draw();
        return !boxOf(element(id), part).isEmpty();
    }
    KbVec2f title() const
    {
        const KbVec3f corner = dialog->position3D;
        return KbVec2f(corner[0] + dialog->getTopLevelSize()[0] - 30, viewHeight - corner[1] - 12);
    }
    /// Begins to type what is reported as soon as something else is pressed.
    void typeIntoTheEditor()
    {
        clickPart(element("edit"), "editSep");
        type("x");
    }
    void takeOutAndPutBack()
    {
        const KsRef<KsTopLevelDialog> kept = dialog;
        const int place = scene()->findChild(kept.get());
        scene()->removeChild(place);
        move(KbVec2f(5, 5));
        scene()->addChild(kept.get());
        draw();
    }
};

struct PressedPart {
    const char* id;
    const char* part;
    const char* looks; // its switch, 1 while it is pressed
};

constexpr PressedPart pressedParts[] = {
    {"panel", "minSep", "minSwtch"},        {"button", "frameSep", "frameSwitch"},
    {"lines", "downSwitch", "downSwitch"},  {"lines", "upSwitch", "upSwitch"},
    {"lines", "leftSwitch", "leftSwitch"},  {"lines", "rightSwitch", "rightSwitch"},
    {"tabs", "rButtonSep", "rButtonSwtch"}, {"tabs", "lButtonSep", "lButtonSwtch"},
    {"entry", "btnSep", "btnSwtch"},
};

class EditShower : public KsDialogEditTextAuditor {
public:
    void dialogEditText(KsDialogEditText*) override
    {
        ++shown;
        Person person(QMessageBox::Ok);
        const KsRef<KsMessageDialog> box(new KsMessageDialog);
        box->show();
        EXPECT_TRUE(person.seen.shown);
    }
    int shown = 0;
};

class Counter : public KsDialogAuditor {
public:
    void dialogPushButton(KsDialogPushButton*) override { ++told; }
    void dialogRealSlider(KsDialogRealSlider*) override { ++told; }
    void menuPushButton(KsMenuPushButton*) override { ++told; }
    int told = 0;
};

} // namespace

TEST(MessageInAScene, leavesNothingPressedWhenAPressEndsTyping)
{
    PressedForm form;
    EditShower shower;
    form.find<KsDialogEditText>("edit")->addAuditor(&shower);
    Counter counter;
    form.dialog->addAuditor(&counter);
    int boxes = 0;
    for (const PressedPart& pressed : pressedParts) {
        SCOPED_TRACE(std::string(pressed.id) + ' ' + pressed.looks);
        if (pressed.id == std::string("entry")) continue; // typing ends when its menu opens
        KsFormweave* element = form.element(pressed.id);
        form.typeIntoTheEditor();
        EXPECT_TRUE(form.press(form.placeOf(element, pressed.part)));
        EXPECT_EQ(shower.shown, ++boxes);
        EXPECT_EQ(Stage::shown(element, pressed.looks), 0);
        // The release went to the box. The pointer is nobody's, and the next press is an ordinary
        // one.
        EXPECT_FALSE(form.move(KbVec2f(5, 5)));
        EXPECT_FALSE(form.dialog->minimized);
        EXPECT_EQ(counter.told, 0);
        form.press(form.placeOf(element, pressed.part));
        EXPECT_EQ(Stage::shown(element, pressed.looks), 1);
        form.takeOutAndPutBack();
    }
    form.dialog->removeAuditor(&counter);
}

TEST(MessageInAScene, leavesNoChildHiddenWhenAPressEndsTyping)
{
    PressedForm form;
    form.dialog->hideChildren = true;
    EditShower shower;
    form.find<KsDialogEditText>("edit")->addAuditor(&shower);
    form.typeIntoTheEditor();
    form.press(form.title());
    EXPECT_EQ(shower.shown, 1);
    EXPECT_TRUE(form.isSeen("button", "frameSep"));
    form.move(form.title() + KbVec2f(50, -50));
    EXPECT_EQ(form.dialog->position3D.getValue(), KbVec3f(20, 20, 0)) << "it was let go";
    EXPECT_TRUE(form.isSeen("button", "frameSep"));
}

TEST(LostDrag, leavesNothingPressed)
{
    PressedForm form;
    Counter counter;
    form.dialog->addAuditor(&counter);
    for (const PressedPart& pressed : pressedParts) {
        SCOPED_TRACE(std::string(pressed.id) + ' ' + pressed.looks);
        KsFormweave* element = form.element(pressed.id);
        if (pressed.id == std::string("entry")) form.clickPart(form.element("menu"), "frameSep");
        EXPECT_TRUE(form.press(form.placeOf(element, pressed.part)));
        EXPECT_EQ(Stage::shown(element, pressed.looks), 1);
        form.takeOutAndPutBack();
        EXPECT_EQ(Stage::shown(element, pressed.looks), 0);
        form.release(form.placeOf(element, pressed.part));
        EXPECT_EQ(counter.told, 0);
        EXPECT_FALSE(form.dialog->minimized);
    }
    form.clickPart(form.element("button"), "frameSep");
    EXPECT_EQ(counter.told, 1);
    form.dialog->removeAuditor(&counter);
}

TEST(LostDrag, leavesNoChildHidden)
{
    PressedForm form;
    form.dialog->hideChildren = true;
    form.press(form.title());
    form.move(form.title() + KbVec2f(30, -10));
    EXPECT_FALSE(form.isSeen("button", "frameSep"));
    form.takeOutAndPutBack();
    EXPECT_TRUE(form.dialog->position3D.getValue().equals(KbVec3f(50, 30, 0), 1e-3f))
        << "it stays where it was left";
    EXPECT_TRUE(form.isSeen("button", "frameSep"));
    // The children went along.
    const KbBox3f panel = form.boxOf(form.dialog, "frameSep");
    const KbBox3f button = form.boxOf(form.element("button"), "frameSep");
    EXPECT_GT(button.getMin()[0], panel.getMin()[0]);
    EXPECT_LT(button.getMax()[0], panel.getMax()[0]);
    EXPECT_NE(panel.getMin()[0], 20);
}

TEST(LostDrag, ofASlidersCursorTakesItBackToTheValue)
{
    PressedForm form;
    Counter counter;
    form.dialog->addAuditor(&counter);
    auto* slider = form.find<KsDialogRealSlider>("slider");
    const float before = form.placeOf(slider, "cursorSep")[0];
    const KbVec2f grip = form.placeOf(slider, "cursorSep");
    form.press(grip);
    form.move(grip + KbVec2f(20, 0));
    EXPECT_NEAR(form.placeOf(slider, "cursorSep")[0], before + 20, 0.5f);
    form.takeOutAndPutBack();
    EXPECT_EQ(slider->value, 4.0f);
    EXPECT_NEAR(form.placeOf(slider, "cursorSep")[0], before, 0.5f);
    EXPECT_EQ(counter.told, 0);
    form.dialog->removeAuditor(&counter);
}

TEST(LostDrag, mayEndBehindTheLibrary)
{
    // The stage's own events go last of all.
    PressedForm form;
    EXPECT_TRUE(form.press(form.placeOf(form.element("button"), "frameSep")));
}

namespace {

class Dropper : public KsDialogEditTextAuditor {
public:
    explicit Dropper(Stage& stage) : m_stage(stage) {}
    void dialogEditText(KsDialogEditText*) override
    {
        ++told;
        m_stage.dropDialog();
    }
    int told = 0;

private:
    Stage& m_stage;
};

} // namespace

TEST(LostDrag, ofAPanelThatIsDeletedByItsOwnPress)
{
    // Whatever is pressed, the auditor of what was typed before hears it, and lets the dialog go.
    std::vector<PressedPart> parts(std::begin(pressedParts), std::end(pressedParts) - 1);
    parts.push_back({"title", "", ""});
    for (const PressedPart& pressed : parts) {
        SCOPED_TRACE(std::string(pressed.id) + ' ' + pressed.looks);
        PressedForm form;
        const std::string id = pressed.id;
        form.dialog->hideChildren = true;
        Dropper dropper(form);
        form.find<KsDialogEditText>("edit")->addAuditor(&dropper);
        form.typeIntoTheEditor();
        const KbVec2f place =
            id == "title" ? form.title() : form.placeOf(form.element(id), pressed.part);
        form.press(place);
        EXPECT_EQ(dropper.told, 1);
        EXPECT_FALSE(form.dialog);
        form.move(place + KbVec2f(20, 20));
        form.release(place);
        EXPECT_EQ(form.scene()->getNumChildren(), 1);
    }
}
