// Skins: where they are found, how parts are read once, and how they are swapped under the nodes
// that hold them.

#include "Elements.h"

#include <arborium/base/KbFileHelper.h>
#include <arborium/base/KsPreferences.h>
#include <arborium/nodes/KsBaseColor.h>
#include <arborium/nodes/KsCube.h>
#include <arborium/nodes/KsFont.h>
#include <arborium/nodes/KsNodeList.h>
#include <formweave/KsDialogComboBox.h>
#include <formweave/KsDialogComponent.h>
#include <formweave/KsDialogEditText.h>
#include <formweave/KsDialogIntegerSlider.h>
#include <formweave/KsDialogPushButton.h>
#include <formweave/KsDialogRadioButtons.h>
#include <formweave/KsDialogSeparator.h>
#include <formweave/KsMenuBar.h>
#include <formweave/KsMenuCheckBox.h>
#include <formweave/KsMenuPushButton.h>
#include <formweave/KsMenuRadioButtons.h>
#include <formweave/KsMenuSeparator.h>
#include <formweave/KsTabDialog.h>
#include <formweave/KsTopLevelDialog.h>

#include <QDir>
#include <QFile>

namespace {

const char* const where = "Formweave::readDefaultSkinsParts";
const std::string directories = FORMWEAVE_SKIN_DIR;

struct Family {
    const char* file;
    char** builtIn;
    std::vector<std::string> parts;
    int (*isLoaded)();
};

const std::vector<Family>& families()
{
    static const std::vector<Family> all = {
        {"TextProperties.arb",
         &KsFormweave::TextProperties,
         {"DialogTextProperties"},
         &KsFormweave::isSkinLoaded},
        {"DialogComponent.arb",
         &KsDialogComponent::DialogComponent,
         {"DialogComponentEdgeStyleNone", "DialogComponentEdgeStyleShadowIn",
          "DialogComponentEdgeStyleShadowOut"},
         &KsDialogComponent::isSkinLoaded},
        {"DialogCheckBox.arb",
         &KsDialogCheckBox::DialogCheckBox,
         {"DialogCheckBoxFrame", "DialogCheckBoxStateOff", "DialogCheckBoxStateOn"},
         &KsDialogCheckBox::isSkinLoaded},
        {"DialogComboBox.arb",
         &KsDialogComboBox::DialogComboBox,
         {"DialogComboBoxFrame", "DialogComboBoxItemFrame", "DialogComboBoxButtonReleased",
          "DialogComboBoxButtonPressed"},
         &KsDialogComboBox::isSkinLoaded},
        {"DialogRadioButtons.arb",
         &KsDialogRadioButtons::DialogRadioButtons,
         {"DialogRadioButtonsFrame", "DialogRadioButtonsItemFrame", "DialogRadioButtonsStateOff",
          "DialogRadioButtonsStateOn"},
         &KsDialogRadioButtons::isSkinLoaded},
        {"DialogEditText.arb",
         &KsDialogEditText::DialogEditText,
         {"DialogEditTextFrame", "DialogEditTextEditingFrame", "DialogEditTextDownButtonPressed",
          "DialogEditTextDownButtonReleased", "DialogEditTextUpButtonPressed",
          "DialogEditTextUpButtonReleased", "DialogEditTextScrollFrame",
          "DialogEditTextCursorFrame", "DialogEditTextCaretFrame"},
         &KsDialogEditText::isSkinLoaded},
        {"TabDialog.arb",
         &KsTabDialog::TabDialog,
         {"TabDialogSelectedTabFrame", "TabDialogUnselectedTabFrame", "TabDialogLeftButtonPressed",
          "TabDialogLeftButtonReleased", "TabDialogRightButtonPressed",
          "TabDialogRightButtonReleased", "TabDialogFrame"},
         &KsTabDialog::isSkinLoaded},
        {"DialogPushButton.arb",
         &KsDialogPushButton::DialogPushButton,
         {"DialogPushButtonReleased", "DialogPushButtonPressed"},
         &KsDialogPushButton::isSkinLoaded},
        {"DialogSeparator.arb",
         &KsDialogSeparator::DialogSeparator,
         {"DialogSeparatorVertical", "DialogSeparatorHorizontal"},
         &KsDialogSeparator::isSkinLoaded},
        {"DialogSlider.arb",
         &KsDialogSlider::DialogSlider,
         {"DialogSliderFrame", "DialogSliderCursor"},
         &KsDialogSlider::isSkinLoaded},
        {"TopLevelDialog.arb",
         &KsTopLevelDialog::TopLevelDialog,
         {"TopLevelDialogFrame", "TopLevelDialogMinReleased", "TopLevelDialogMinPressed"},
         &KsTopLevelDialog::isSkinLoaded},
        {"MenuBar.arb", &KsMenuBar::MenuBar, {"MenuBarFrame"}, &KsMenuBar::isSkinLoaded},
        {"MenuItem.arb", &KsMenuItem::MenuItem, {"MenuItemFrame"}, &KsMenuItem::isSkinLoaded},
        {"MenuCheckBox.arb",
         &KsMenuCheckBox::MenuCheckBox,
         {"MenuCheckBoxStateOn", "MenuCheckBoxStateOff"},
         &KsMenuCheckBox::isSkinLoaded},
        {"MenuPopup.arb",
         &KsMenuPopup::MenuPopup,
         {"MenuPopupPressedFrame", "MenuPopupReleasedFrame", "MenuPopupReleasedShape",
          "MenuPopupPressedShape"},
         &KsMenuPopup::isSkinLoaded},
        {"MenuPushButton.arb",
         &KsMenuPushButton::MenuPushButton,
         {"MenuPushButtonReleased", "MenuPushButtonPressed"},
         &KsMenuPushButton::isSkinLoaded},
        {"MenuRadioButtons.arb",
         &KsMenuRadioButtons::MenuRadioButtons,
         {"MenuRadioButtonsStateOn", "MenuRadioButtonsStateOff"},
         &KsMenuRadioButtons::isSkinLoaded},
        {"MenuSeparator.arb",
         &KsMenuSeparator::MenuSeparator,
         {"MenuSeparatorFrame"},
         &KsMenuSeparator::isSkinLoaded},
    };
    return all;
}

KsGroup* part(const std::string& name) { return ksCast<KsGroup>(KsNode::getByName(name.c_str())); }

std::string nameOf(const KsNode* node) { return node->getName().getString(); }

/// The first node of a type in a group.
template <class T> T* firstIn(const KsGroup* group)
{
    for (int i = 0; group && i < group->getNumChildren(); ++i)
        if (T* found = ksCast<T>(group->getChild(i))) return found;
    return nullptr;
}

std::string partText(const std::string& name, const char* color)
{
    return "DEF " + name + " Group { Material { diffuseColor " + color +
           " } Cube { width 1 height 1 depth 2 } Translation { translation 0 0 2 } }\n";
}

class Skins : public DialogBase {
protected:
    void SetUp() override
    {
        KsPreferences::setString("ARBHOME", "");
        DialogBase::SetUp();
    }
    /// A skin with every family that exists now, each part a box of one colour.
    std::string makeSkin(const std::string& name, const char* color)
    {
        QDir(QString::fromStdString(folder.path())).mkpath(QString::fromStdString(name));
        for (const Family& family : families()) {
            std::string text = header;
            for (const std::string& each : family.parts) text += partText(each, color);
            writeFile(folder.path(name + "/" + family.file), text);
        }
        return folder.path(name);
    }
    void removeSkin(const std::string& name)
    {
        QDir(QString::fromStdString(folder.path(name))).removeRecursively();
    }
    static KbColor colorOf(const std::string& name)
    {
        const auto* material = firstIn<KsMaterial>(part(name));
        return material ? material->diffuseColor[0] : KbColor(-1, -1, -1);
    }

    Folder folder;
};

const KbColor red(1, 0, 0);
const KbColor green(0, 1, 0);

} // namespace

// The directories.

TEST_F(Skins, withoutSettingsThereAreNoDirectories)
{
    EXPECT_EQ(KsFormweave::getSkinsDirectories(), "");
    EXPECT_EQ(KsFormweave::getSkinsDirectory(), "");
}

TEST_F(Skins, theDirectoryOfTheLayerComesFirst)
{
    KsPreferences::setString("ARBHOME", "/opt/arborium");
    EXPECT_EQ(KsFormweave::getSkinsDirectories(), "/opt/arborium/data/Formweave/skins/");
    KsFormweave::setSkinsDirectories("/a;/b");
    EXPECT_EQ(KsFormweave::getSkinsDirectories(), "/opt/arborium/data/Formweave/skins/;/a;/b");
    EXPECT_EQ(KsFormweave::getSkinsDirectory(), KsFormweave::getSkinsDirectories());
    KsPreferences::setString("ARBHOME", "");
    EXPECT_EQ(KsFormweave::getSkinsDirectories(), "/a;/b");
    EXPECT_EQ(KsPreferences::getString("FORMWEAVE_SKINS_DIR"), "/a;/b");
}

TEST_F(Skins, theEnvironmentOfTheProcessCounts)
{
    setenv("FORMWEAVE_SKINS_DIR", "/from/environment", 1);
    EXPECT_EQ(KsFormweave::getSkinsDirectories(), "/from/environment");
    unsetenv("FORMWEAVE_SKINS_DIR");
    EXPECT_EQ(KsFormweave::getSkinsDirectories(), "");
}

TEST_F(Skins, withoutAnySkinTheBuiltInLooksAreUsed)
{
    ExpectedMessages messages;
    messages.allow(where, "");
    KsRef<KsTopLevelDialog> dialog(new KsTopLevelDialog);
    dialog->addChild(new KsDialogCheckBox);
    dialog->addChild(new KsDialogComboBox);
    dialog->addChild(new KsDialogRadioButtons);
    dialog->addChild(new KsDialogEditText);
    dialog->addChild(new KsTabDialog);
    dialog->addChild(new KsDialogPushButton);
    dialog->addChild(new KsDialogIntegerSlider);
    dialog->addChild(new KsDialogSeparator);
    auto* bar = new KsMenuBar;
    auto* menu = new KsMenuPopup;
    bar->addChild(menu);
    menu->addChild(new KsMenuPushButton);
    menu->addChild(new KsMenuCheckBox);
    menu->addChild(new KsMenuRadioButtons);
    menu->addChild(new KsMenuSeparator);
    dialog->addChild(bar);
    EXPECT_FALSE(measure(dialog.get()).isEmpty());
    EXPECT_TRUE(colorOf("DialogComponentEdgeStyleNone") == KbColor(0.75f, 0.75f, 0.75f));
    EXPECT_TRUE(colorOf("DialogCheckBoxStateOff") == KbColor(1, 1, 1));
    EXPECT_TRUE(colorOf("TopLevelDialogFrame") == KbColor(0.7f, 0.7f, 1));
    // One message for each family.
    ASSERT_EQ(messages.messages().size(), families().size());
}

TEST_F(Skins, theFirstMissingFileIsToldAtLengthTheOthersBriefly)
{
    // A skin that is nowhere says nothing by itself.
    KsFormweave::setSkin("no-such-skin");
    ExpectedMessages messages;
    messages.allow(where, "");
    KsRef<KsDialogCheckBox> box(new KsDialogCheckBox);
    measure(box.get());
    ASSERT_EQ(messages.messages().size(), 3u);
    EXPECT_EQ(messages.messages()[0].text,
              "The skin file : <TextProperties.arb> cannot be found."
              "\nIMPORTANT : Internal Formweave component skin is loaded to prevent from your "
              "application to exit.\n"
              "For loading your own Formweave skins, please verify the FORMWEAVE_SKINS_DIR "
              "environment variable.");
    EXPECT_EQ(messages.messages()[1].text,
              "The skin file : <DialogComponent.arb> cannot be found.");
    EXPECT_EQ(messages.messages()[2].text, "The skin file : <DialogCheckBox.arb> cannot be found.");
    // Each family is loaded once.
    KsRef<KsDialogCheckBox> second(new KsDialogCheckBox);
    measure(second.get());
    EXPECT_EQ(messages.messages().size(), 3u);
}

// Choosing a skin.

TEST_F(Skins, aSkinIsFoundAsItStandsThenBelowHereThenInTheDirectories)
{
    const std::string red1 = makeSkin("first/look", "1 0 0");
    makeSkin("second/look", "0 1 0");
    KsFormweave::setSkinsDirectories(
        (folder.path("nowhere") + ";" + folder.path("second") + ";" + folder.path("first"))
            .c_str());
    KsFormweave::setSkin("look");
    EXPECT_TRUE(colorOf("DialogCheckBoxFrame") == green) << "the first directory that has it";

    const QString former = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(QString::fromStdString(folder.path("first"))));
    KsFormweave::setSkin("look");
    EXPECT_TRUE(colorOf("DialogCheckBoxFrame") == red) << "the current directory goes first";
    QDir::setCurrent(former);

    KsFormweave::setSkin("look");
    EXPECT_TRUE(colorOf("DialogCheckBoxFrame") == green);
    KsFormweave::setSkin(red1.c_str());
    EXPECT_TRUE(colorOf("DialogCheckBoxFrame") == red);
}

TEST_F(Skins, backslashesInTheDirectoriesCountAsSlashes)
{
    makeSkin("one/look", "1 0 0");
    std::string list = folder.path("one");
    std::replace(list.begin(), list.end(), '/', '\\');
    KsFormweave::setSkinsDirectories(list.c_str());
    KsFormweave::setSkin("look");
    EXPECT_TRUE(colorOf("DialogCheckBoxFrame") == red);
}

TEST_F(Skins, directoriesAndSkinsMayHaveNamesOfAnyScript)
{
    const std::string home = "\xd1\x81\xd0\xba\xd0\xb8\xd0\xbd\xd1\x8b";
    const std::string name = "\xe6\x9a\x97";
    makeSkin(home + "/" + name, "1 0 0");
    makeSkin(home + "/plain", "0 1 0");
    const std::string path = folder.path(home);
    const auto expectBoth = [&] {
        KsFormweave::setSkin(KbString::fromUtf8(name));
        EXPECT_TRUE(colorOf("DialogCheckBoxFrame") == red);
        KsFormweave::setSkin("plain");
        EXPECT_TRUE(colorOf("DialogCheckBoxFrame") == green);
        KsFormweave::setSkin(name.c_str());
        EXPECT_TRUE(colorOf("DialogCheckBoxFrame") == red);
    };
    setenv("FORMWEAVE_SKINS_DIR", path.c_str(), 1);
    expectBoth();
    unsetenv("FORMWEAVE_SKINS_DIR");
    KsFormweave::setSkinsDirectories(KbString::fromUtf8(path));
    EXPECT_EQ(KsFormweave::getSkinsDirectories(), KbString::fromUtf8(path));
    expectBoth();
}

TEST_F(Skins, aSkinThatIsNowhereLeavesThePresentOne)
{
    KsFormweave::setSkin(makeSkin("look", "1 0 0").c_str());
    KsGroup* frame = part("DialogCheckBoxFrame");
    KsFormweave::setSkin("no-such-skin");
    KsFormweave::setSkin("");
    EXPECT_EQ(part("DialogCheckBoxFrame"), frame);
    EXPECT_TRUE(colorOf("DialogCheckBoxFrame") == red);
}

TEST_F(Skins, setSkinsDirectorySelectsASkinInSpiteOfItsName)
{
    const std::string look = makeSkin("look", "1 0 0");
    EXPECT_EQ(KsFormweave::setSkinsDirectory(look.c_str()), 1);
    EXPECT_TRUE(colorOf("DialogCheckBoxFrame") == red);
    EXPECT_EQ(KsFormweave::getSkinsDirectories(), "");
    EXPECT_EQ(KsFormweave::setSkinsDirectory("no-such-skin"), 1);
}

TEST_F(Skins, newDirectoriesLoadNothingUntilASkinIsSet)
{
    makeSkin("a/look", "1 0 0");
    makeSkin("b/look", "0 1 0");
    KsFormweave::setSkinsDirectories(folder.path("a").c_str());
    KsFormweave::setSkin("look");
    KsRef<ProbeBox> box(new ProbeBox);
    measure(box.get());
    KsFormweave::setSkinsDirectories(folder.path("b").c_str());
    measure(box.get());
    EXPECT_TRUE(colorOf("DialogCheckBoxFrame") == red);
    KsFormweave::setSkin("look");
    EXPECT_TRUE(colorOf("DialogCheckBoxFrame") == green);
}

TEST_F(Skins, theEnvironmentNamesTheSkinOfTheFirstBuild)
{
    makeSkin("look", "1 0 0");
    KsFormweave::setSkinsDirectories(folder.path().c_str());
    KsPreferences::setString("FORMWEAVE_SKIN", "look");
    KsRef<ProbeBox> box(new ProbeBox);
    measure(box.get());
    EXPECT_TRUE(colorOf("DialogCheckBoxFrame") == red);
    EXPECT_TRUE(colorOf("TopLevelDialogFrame") == red) << "all families at once";
}

TEST_F(Skins, withoutANameTheSkinIsTheDefaultOne)
{
    makeSkin("default", "0 1 0");
    KsFormweave::setSkinsDirectories(folder.path().c_str());
    KsRef<ProbeBox> box(new ProbeBox);
    measure(box.get());
    EXPECT_TRUE(colorOf("DialogCheckBoxFrame") == green);
}

// Loading once.

TEST_F(Skins, aSkinSetBeforeAnyNodeLoadsAllFamiliesAndNoFileIsReadLater)
{
    for (const Family& family : families()) EXPECT_EQ(family.isLoaded(), 0) << family.file;
    const std::string look = makeSkin("look", "1 0 0");
    KsFormweave::setSkin(look.c_str());
    for (const Family& family : families()) EXPECT_EQ(family.isLoaded(), 1) << family.file;
    // Were a file read now, it would be missed.
    removeSkin("look");
    KsRef<KsTopLevelDialog> dialog(new KsTopLevelDialog);
    dialog->addChild(new KsDialogCheckBox);
    measure(dialog.get());
    for (const Family& family : families()) {
        for (const std::string& name : family.parts) {
            KsNodeList list;
            EXPECT_EQ(KsNode::getByName(name.c_str(), list), 1) << name;
            EXPECT_EQ(KsNode::getByName(("_Lmn_Tmp_" + name).c_str(), list), 0) << name;
        }
    }
}

TEST_F(Skins, theFirstBuildReadsEachFileOnce)
{
    makeSkin("default", "1 0 0");
    KsFormweave::setSkinsDirectories(folder.path().c_str());
    KsRef<ProbeBox> box(new ProbeBox);
    measure(box.get());
    for (const Family& family : families()) {
        for (const std::string& name : family.parts) {
            KsNodeList list;
            EXPECT_EQ(KsNode::getByName(name.c_str(), list), 1) << name;
        }
    }
}

TEST_F(Skins, partsAreSharedByAllNodes)
{
    KsFormweave::setSkin(makeSkin("look", "1 0 0").c_str());
    KsRef<ProbeBox> a(new ProbeBox), b(new ProbeBox);
    measure(a.get());
    measure(b.get());
    EXPECT_EQ(a->getPart("frame", false), part("DialogCheckBoxFrame"));
    EXPECT_EQ(b->getPart("frame", false), part("DialogCheckBoxFrame"));
    EXPECT_EQ(a->getPart("stateOn", false), part("DialogCheckBoxStateOn"));
    EXPECT_EQ(a->getPart("labelProp", false), part("DialogTextProperties"));
    EXPECT_EQ(a->getPart("edgeStyleShadowIn", false), part("DialogComponentEdgeStyleShadowIn"));
}

TEST_F(Skins, aPartThatTheApplicationSetIsLeftAlone)
{
    KsFormweave::setSkin(makeSkin("look", "1 0 0").c_str());
    KsRef<ProbeBox> box(new ProbeBox);
    auto* own = new KsGroup;
    EXPECT_TRUE(box->setPart("frame", own));
    measure(box.get());
    EXPECT_EQ(box->getPart("frame", false), own);
}

// Swapping.

TEST_F(Skins, aSwapChangesTheLookInPlaceOfADialogThatIsShown)
{
    KsFormweave::setSkin(makeSkin("look", "1 0 0").c_str());
    const auto dialog =
        readNode<KsTopLevelDialog>("TopLevelDialog { label \"a\" DialogCheckBox { label \"b\" } }");
    measure(dialog.get());
    auto* box = static_cast<KsDialogCheckBox*>(dialog->getChild(0));
    std::vector<KsNode*> before;
    const auto partsNow = [&] {
        std::vector<KsNode*> now;
        for (const char* name : {"frame", "labelProp", "minReleased", "minPressed"})
            now.push_back(dialog->getPart(name, false));
        for (const char* name :
             {"frame", "stateOn", "stateOff", "labelProp", "onOffStringProp", "edgeStyleNone"})
            now.push_back(box->getPart(name, false));
        return now;
    };
    before = partsNow();
    KsFormweave::setSkin(makeSkin("other", "0 1 0").c_str());
    EXPECT_EQ(partsNow(), before) << "no part is another node than before";
    EXPECT_TRUE(colorOf("DialogCheckBoxFrame") == green);
    EXPECT_EQ(box->getPart("frame", false), part("DialogCheckBoxFrame"));
    for (const Family& family : families()) {
        for (const std::string& name : family.parts) {
            KsNodeList list;
            EXPECT_EQ(KsNode::getByName(name.c_str(), list), 1) << name;
            EXPECT_EQ(KsNode::getByName(("_Lmn_Tmp_" + name).c_str(), list), 0) << name;
        }
    }
}

TEST_F(Skins, aSwapBackGivesTheFormerLook)
{
    const std::string a = makeSkin("a", "1 0 0"), b = makeSkin("b", "0 1 0");
    KsFormweave::setSkin(a.c_str());
    KsRef<ProbeBox> box(new ProbeBox);
    const KbBox3f first = measure(box.get());
    for (int i = 0; i < 3; ++i) {
        KsFormweave::setSkin(b.c_str());
        EXPECT_TRUE(colorOf("DialogCheckBoxFrame") == green);
        KsFormweave::setSkin(a.c_str());
        EXPECT_TRUE(colorOf("DialogCheckBoxFrame") == red);
    }
    EXPECT_TRUE(measure(box.get()) == first);
}

TEST_F(Skins, afterASwapDepthsAreMeasuredAgain)
{
    const std::string thick = makeSkin("thick", "1 0 0");
    KsFormweave::setSkin(thick.c_str());
    const auto dialog = readNode<KsTopLevelDialog>(
        "TopLevelDialog { RowDialog { DialogCheckBox { label \"b\" } } }");
    const float former = measure(dialog.get()).getMax()[2];
    KsFormweave::setSkin((directories + "/default").c_str());
    const float swapped = measure(dialog.get()).getMax()[2];
    EXPECT_LT(swapped, former);
    // The same as of a dialog that never saw the thick one.
    const auto fresh = readNode<KsTopLevelDialog>(
        "TopLevelDialog { RowDialog { DialogCheckBox { label \"b\" } } }");
    EXPECT_FLOAT_EQ(measure(fresh.get()).getMax()[2], swapped);
}

TEST_F(Skins, afterASwapTextsAreMeasuredAgain)
{
    const std::string small = makeSkin("small", "1 0 0"), large = makeSkin("large", "1 0 0");
    folder.file("small/TextProperties.arb",
                std::string(header) + "DEF DialogTextProperties Group { Font { size 5 } }\n");
    folder.file("large/TextProperties.arb",
                std::string(header) + "DEF DialogTextProperties Group { Font { size 15 } }\n");
    KsFormweave::setSkin(small.c_str());
    KsRef<ProbeBox> box(new ProbeBox);
    box->label = "Shadows";
    measure(box.get());
    const float before = box->getLabelCachedBBox().getSize()[0];
    KsFormweave::setSkin(large.c_str());
    measure(box.get());
    EXPECT_NEAR(box->getLabelCachedBBox().getSize()[0], 3 * before, before * 0.2f);
}

TEST_F(Skins, aFileWithSomePartsOnlyLeavesTheOthersEmptyAfterASwap)
{
    KsFormweave::setSkin(makeSkin("full", "1 0 0").c_str());
    KsRef<ProbeBox> box(new ProbeBox);
    measure(box.get());
    const std::string part1 = makeSkin("partial", "0 1 0");
    folder.file("partial/DialogCheckBox.arb", header + partText("DialogCheckBoxFrame", "0 1 0"));
    KsNode* on = box->getPart("stateOn", false);
    KsFormweave::setSkin(part1.c_str());
    EXPECT_TRUE(colorOf("DialogCheckBoxFrame") == green);
    EXPECT_EQ(box->getPart("stateOn", false), on);
    EXPECT_EQ(static_cast<KsGroup*>(on)->getNumChildren(), 0);
    EXPECT_EQ(part("DialogCheckBoxStateOn"), nullptr) << "new builds find no such group";
    EXPECT_EQ(nameOf(on), "_Lmn_Tmp_DialogCheckBoxStateOn");
    // A new node has an empty part there, not none.
    KsRef<ProbeBox> later(new ProbeBox);
    measure(later.get());
    auto* empty = ksCast<KsGroup>(later->getPart("stateOn", false));
    ASSERT_NE(empty, nullptr);
    EXPECT_EQ(empty->getNumChildren(), 0);
    // The next full skin brings it back to the first one.
    KsFormweave::setSkin(folder.path("full").c_str());
    EXPECT_EQ(part("DialogCheckBoxStateOn"), on);
    EXPECT_TRUE(colorOf("DialogCheckBoxStateOn") == red);
}

TEST_F(Skins, aBrokenFileGivesTheReadersMessageAndTheBuiltInLook)
{
    const std::string look = makeSkin("look", "1 0 0");
    folder.file("look/DialogCheckBox.arb",
                std::string(header) + "DEF DialogCheckBoxFrame Group { Material {\n");
    ExpectedMessages messages(where, "<DialogCheckBox.arb>");
    messages.expect("KsDB::readAll", "DialogCheckBox.arb:");
    messages.allow("KsDB::readAll", "");
    KsFormweave::setSkin(look.c_str());
    EXPECT_TRUE(colorOf("DialogCheckBoxFrame") == KbColor(0.7f, 0.7f, 0.7f));
    EXPECT_TRUE(colorOf("TopLevelDialogFrame") == red) << "the other files count";
}

TEST_F(Skins, freeingAndLoadingAPartByHand)
{
    KsFormweave::setSkin(makeSkin("look", "1 0 0").c_str());
    KsGroup* old = part("DialogCheckBoxFrame");
    KsFormweave::free3DSkin("DialogCheckBoxFrame");
    EXPECT_EQ(nameOf(old), "_Lmn_Tmp_DialogCheckBoxFrame");
    EXPECT_EQ(old->getNumChildren(), 0);
    KsFormweave::load3DSkin("DialogCheckBoxFrame");
    EXPECT_EQ(part("DialogCheckBoxFrame"), nullptr) << "nothing new to load";

    const auto scene = readScene("DEF DialogCheckBoxFrame Group { Cube { } Cube { } }");
    KsGroup* fresh = part("DialogCheckBoxFrame");
    ASSERT_NE(fresh, nullptr);
    KsFormweave::load3DSkin("DialogCheckBoxFrame");
    EXPECT_EQ(part("DialogCheckBoxFrame"), old);
    EXPECT_EQ(old->getNumChildren(), 2);
    EXPECT_EQ(old->getChild(0), fresh->getChild(0));
    EXPECT_EQ(nameOf(fresh), "");

    KsFormweave::free3DSkin("NoSuchPart");
    KsFormweave::load3DSkin("NoSuchPart");
    EXPECT_EQ(KsNode::getByName("_Lmn_Tmp_NoSuchPart"), nullptr);
}

TEST_F(Skins, aPartOfAnotherKindOfNodeIsNotTakenForAGroup)
{
    const auto scene = readScene("DEF DialogCheckBoxFrame Cube { }");
    KsFormweave::free3DSkin("DialogCheckBoxFrame");
    EXPECT_NE(KsNode::getByName("DialogCheckBoxFrame"), nullptr);
}

// An application's own nodes that bear the name of a part.

TEST_F(Skins, aNodeOfTheApplicationDoesNotTakeThePlaceOfAPart)
{
    const auto scene = readScene("DEF DialogCheckBoxFrame Group { Cube { } Cube { } }"
                                 "DEF TopLevelDialogFrame Group { Cube { } }"
                                 "DEF MenuItemFrame Group { Cube { } }");
    KsRef<ProbeBox> box(new ProbeBox);
    ExpectedMessages messages;
    messages.allow(where, ""); // there is no skin: the built-in looks
    measure(box.get());
    KsNode* look = box->getPart("frame", false);
    EXPECT_NE(look, scene->getChild(0));
    EXPECT_EQ(nameOf(look), "DialogCheckBoxFrame");
    const auto dialog = readNode<KsTopLevelDialog>(
        "TopLevelDialog { MenuBar { MenuPopup { MenuPushButton { } } } }");
    measure(dialog.get());
    EXPECT_NE(dialog->getPart("frame", false), scene->getChild(1));
    const std::string before = written(scene.get());
    KsFormweave::setSkin(makeSkin("look", "1 0 0").c_str());
    EXPECT_EQ(written(scene.get()), before) << "a swap leaves it alone";
    EXPECT_EQ(box->getPart("frame", false), look);
    EXPECT_TRUE(firstIn<KsMaterial>(static_cast<KsGroup*>(look))->diffuseColor[0] == red);
}

TEST_F(Skins, aNodeOfTheApplicationIsLeftAloneByTheFirstSkinToo)
{
    const auto scene = readScene("DEF DialogCheckBoxFrame Group { Cube { } }"
                                 "DEF DialogCheckBoxStateOn Group { Cube { } }");
    const std::string before = written(scene.get());
    const std::string partial = makeSkin("partial", "1 0 0");
    folder.file("partial/DialogCheckBox.arb", header + partText("DialogCheckBoxFrame", "1 0 0"));
    KsFormweave::setSkin(partial.c_str());
    KsFormweave::setSkin(makeSkin("full", "0 1 0").c_str());
    KsFormweave::setSkin(partial.c_str());
    EXPECT_EQ(written(scene.get()), before);
    // A part that the skin lacks is empty, not the application's.
    KsRef<ProbeBox> box(new ProbeBox);
    measure(box.get());
    EXPECT_EQ(static_cast<KsGroup*>(box->getPart("stateOn", false))->getNumChildren(), 0);
}

TEST_F(Skins, ofSeveralNodesOfAPartsNameTheFirstGroupIsFreedByHand)
{
    const auto scene = readScene("DEF DialogCheckBoxFrame Cube { }"
                                 "DEF DialogCheckBoxFrame Group { Cube { } }");
    KsFormweave::free3DSkin("DialogCheckBoxFrame");
    EXPECT_EQ(nameOf(scene->getChild(0)), "DialogCheckBoxFrame");
    EXPECT_EQ(nameOf(scene->getChild(1)), "_Lmn_Tmp_DialogCheckBoxFrame");
}

// The skins that are delivered.

TEST_F(Skins, theDefaultSkinIsTheBuiltInOneAsFiles)
{
    for (const Family& family : families()) {
        KsInput in;
        const std::string path = directories + "/default/" + family.file;
        ASSERT_TRUE(in.openFile(path.c_str())) << path;
        const KsRef<KsSeparator> file(KsDB::readAll(&in));
        const KsRef<KsSeparator> builtIn = readScene(*family.builtIn);
        ASSERT_TRUE(file) << path;
        ASSERT_TRUE(builtIn) << family.file;
        EXPECT_EQ(written(file.get()), written(builtIn.get())) << path;
        EXPECT_EQ(readText(path).rfind("#Arborium V2.1 ascii\n", 0), 0u) << path;
    }
}

TEST_F(Skins, theBuiltInLooks)
{
    const auto scene = readScene(KsFormweave::TextProperties);
    const KsGroup* text = part("DialogTextProperties");
    ASSERT_NE(text, nullptr);
    ASSERT_EQ(text->getNumChildren(), 3);
    EXPECT_TRUE(static_cast<KsBaseColor*>(text->getChild(0))->rgb[0] == KbColor(0, 0, 0));
    EXPECT_TRUE(static_cast<KsTranslation*>(text->getChild(1))->translation.getValue() ==
                KbVec3f(0, 0, 0.1f));
    auto* font = static_cast<KsFont*>(text->getChild(2));
    EXPECT_FLOAT_EQ(font->size, 11);
    EXPECT_EQ(written(font).find("Tahoma") != std::string::npos, true);

    struct Box {
        char* text;
        const char* name;
        KbColor color;
        bool closed;
    };
    const Box boxes[] = {
        {KsDialogComponent::DialogComponent,
         "DialogComponentEdgeStyleNone",
         {0.75f, 0.75f, 0.75f},
         true},
        {KsDialogComponent::DialogComponent,
         "DialogComponentEdgeStyleShadowIn",
         {0.5f, 0.5f, 0.5f},
         true},
        {KsDialogComponent::DialogComponent,
         "DialogComponentEdgeStyleShadowOut",
         {0.8f, 0.8f, 0.8f},
         true},
        {KsDialogCheckBox::DialogCheckBox, "DialogCheckBoxFrame", {0.7f, 0.7f, 0.7f}, true},
        {KsDialogCheckBox::DialogCheckBox, "DialogCheckBoxStateOff", {1, 1, 1}, false},
        {KsDialogCheckBox::DialogCheckBox, "DialogCheckBoxStateOn", {0, 0, 0}, false},
        {KsTopLevelDialog::TopLevelDialog, "TopLevelDialogFrame", {0.7f, 0.7f, 1}, true},
    };
    for (const Box& box : boxes) {
        const auto content = readScene(box.text);
        const KsGroup* group = nullptr;
        for (int i = 0; i < content->getNumChildren(); ++i)
            if (nameOf(content->getChild(i)) == box.name)
                group = ksCast<KsGroup>(content->getChild(i));
        ASSERT_NE(group, nullptr) << box.name;
        EXPECT_EQ(group->getNumChildren(), box.closed ? 4 : 3) << box.name;
        EXPECT_TRUE(firstIn<KsMaterial>(group)->diffuseColor[0] == box.color) << box.name;
        const auto* cube = firstIn<KsCube>(group);
        EXPECT_EQ(KbVec3f(cube->width, cube->height, cube->depth), KbVec3f(1, 1, 1)) << box.name;
        const KbBox3f extent = measure(const_cast<KsGroup*>(group));
        EXPECT_TRUE(extent == KbBox3f(-0.5f, -0.5f, 0, 0.5f, 0.5f, 1)) << box.name;
    }
}

TEST_F(Skins, everyDeliveredSkinHasEveryPartInItsPlace)
{
    for (const QString& skin :
         QDir(QString::fromStdString(directories)).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        for (const Family& family : families()) {
            const std::string path = directories + "/" + skin.toStdString() + "/" + family.file;
            KsInput in;
            ASSERT_TRUE(in.openFile(path.c_str())) << path;
            const KsRef<KsSeparator> file(KsDB::readAll(&in));
            ASSERT_TRUE(file) << path;
            // What parts share stands in front of them, under a name that begins so.
            for (int i = file->getNumChildren() - 1; i >= 0; --i)
                if (nameOf(file->getChild(i))[0] == '_') file->removeChild(i);
            ASSERT_EQ(file->getNumChildren(), static_cast<int>(family.parts.size())) << path;
            for (std::size_t i = 0; i < family.parts.size(); ++i) {
                KsNode* group = file->getChild(static_cast<int>(i));
                EXPECT_EQ(nameOf(group), family.parts[i]) << path;
                const KbBox3f extent = measure(group);
                if (family.parts[i] == "DialogTextProperties") continue;
                constexpr float half = 0.5001f;
                // The balls of radio buttons are sunk halfway into their row.
                const bool ball = family.parts[i].find("RadioButtonsState") != std::string::npos;
                // The arrow of an open menu is pressed into its row.
                const bool arrow = family.parts[i] == "MenuPopupPressedShape";
                // A push button at rest floats above its plane.
                const bool floats = family.parts[i] == "DialogPushButtonReleased";
                // A tab that is not selected is sunk behind the frame below it.
                const float below =
                    family.parts[i] == "TabDialogUnselectedTabFrame" ? half + 0.2f : half;
                EXPECT_TRUE(extent.getMin()[0] >= -half && extent.getMax()[0] <= half &&
                            extent.getMin()[1] >= -below && extent.getMax()[1] <= half &&
                            extent.getMin()[2] >= (ball    ? -half
                                                   : arrow ? -0.2001f
                                                           : 0) &&
                            extent.getMax()[2] <= (floats ? 1.5001f : 1.0001f))
                    << path << " " << family.parts[i];
            }
        }
    }
}

TEST_F(Skins, theDarkSkinIsClearlyAnother)
{
    KsFormweave::setSkinsDirectories(directories.c_str());
    KsFormweave::setSkin("default");
    const float plate = colorOf("DialogComponentEdgeStyleNone")[0];
    const float text = firstIn<KsBaseColor>(part("DialogTextProperties"))->rgb[0][0];
    KsFormweave::setSkin("dark");
    EXPECT_LT(colorOf("DialogComponentEdgeStyleNone")[0], plate / 2);
    EXPECT_GT(firstIn<KsBaseColor>(part("DialogTextProperties"))->rgb[0][0], text + 0.5f);
}
