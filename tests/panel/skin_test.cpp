// Another look for panels that are on screen.

#include "Panel.h"

#include <arborium/base/KsPreferences.h>
#include <arborium/render/KsOffscreenRenderer.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace {

class PanelSkins : public PanelTest {
protected:
    static constexpr const char* children =
        " DialogCheckBox { auditorID \"a\" label \"First\" onString \"on\" } "
        "RowDialog { auditorID \"rows\" edgeStyle SHADOW_IN margin 4 "
        "  DialogCheckBox { auditorID \"b\" label \"Second\" onString \"on\" } } ";
    KsTopLevelDialog* panel(const std::string& fields = "position3D 100 50 0 ")
    {
        return add("TopLevelDialog { width 300 height 100 label \"Title\" " + fields + children +
                   "}");
    }
    /// Where each thing of a panel is drawn.
    std::vector<KbBox3f> boxes(KsTopLevelDialog* dialog)
    {
        std::vector<KbBox3f> all;
        for (const char* part : {"frameSep", "labelSep", "minSep"})
            all.push_back(boxOf(dialog, part));
        all.push_back(boxOf(child<KsRowDialog>(dialog, "rows"), "mainCptSeparator"));
        for (const char* id : {"a", "b"})
            for (const char* part :
                 {"mainCptSeparator", "labelSep", "frameSep", "stateSep", "onOffStringSep"})
                all.push_back(boxOf(child(dialog, id), part));
        return all;
    }
    static bool areNear(const std::vector<KbBox3f>& a, const std::vector<KbBox3f>& b)
    {
        if (a.size() != b.size()) return false;
        for (std::size_t i = 0; i < a.size(); ++i)
            if (!a[i].getMin().equals(b[i].getMin(), 1e-3f) ||
                !a[i].getMax().equals(b[i].getMax(), 1e-3f))
                return false;
        return true;
    }
    /// A new panel with the same fields, in the place of `dialog`.
    std::vector<KbBox3f> boxesOfNewOne(const std::string& fields = "position3D 100 50 0 ")
    {
        KsTopLevelDialog* fresh = panel(fields);
        const std::vector<KbBox3f> all = boxes(fresh);
        scene->removeChild(scene->findChild(fresh));
        return all;
    }
    std::vector<std::uint8_t> picture()
    {
        KsOffscreenRenderer renderer(viewport);
        renderer.render(scene.get());
        const auto image = renderer.getImage();
        renderer.releaseScene();
        return image;
    }
    void expectClicksReachTheBoxes(KsTopLevelDialog* dialog)
    {
        for (const char* id : {"a", "b"}) {
            const bool before = child(dialog, id)->state;
            EXPECT_TRUE(click(middleOf(child(dialog, id), "stateSep"))) << id;
            EXPECT_EQ(child(dialog, id)->state, !before) << id;
        }
    }
};

} // namespace

TEST_F(PanelSkins, theInstalledSkinsAreFound)
{
    for (const char* name : {"default", "dark"}) {
        EXPECT_TRUE(QFile::exists(QString(FORMWEAVE_SKIN_DIR "/%1/TopLevelDialog.arb").arg(name)));
    }
}

TEST_F(PanelSkins, everythingIsMeasuredAgainInTheNewSkin)
{
    KsFormweave::setSkin("default");
    KsTopLevelDialog* dialog = panel();
    const KbBox3f frame1 = boxOf(dialog, "frameSep");
    const std::vector<KbBox3f> before = boxes(dialog);
    const std::vector<std::uint8_t> light = picture();
    KsFormweave::setSkin("dark");
    frame();
    const std::vector<KbBox3f> after = boxes(dialog);
    EXPECT_FALSE(areNear(before, after)) << "the frame of the dark skin is thinner";
    EXPECT_NE(picture(), light);
    // As if it had been built with it.
    EXPECT_TRUE(areNear(after, boxesOfNewOne()));
    const KbBox3f frame2 = boxOf(dialog, "frameSep");
    EXPECT_NE(frame1.getMax()[2], frame2.getMax()[2]);
    EXPECT_NEAR(boxOf(child(dialog, "a")).getMin()[2], frame2.getMax()[2], 1e-3)
        << "children stand on the frame";
    expectClicksReachTheBoxes(dialog);
    click(middleOf(child(dialog, "a"), "stateSep"));
    click(middleOf(child(dialog, "b"), "stateSep"));
    // And back.
    KsFormweave::setSkin("default");
    frame();
    EXPECT_TRUE(areNear(boxes(dialog), before));
    EXPECT_EQ(picture(), light);
}

TEST_F(PanelSkins, aRowOfSwapsLeavesNothingBehind)
{
    KsTopLevelDialog* dialog = panel();
    KsFormweave::setSkin("dark");
    frame();
    const std::vector<KbBox3f> dark = boxes(dialog);
    for (int i = 0; i < 6; ++i) KsFormweave::setSkin(i % 2 ? "dark" : "default");
    frame();
    EXPECT_TRUE(areNear(boxes(dialog), dark));
    EXPECT_TRUE(areNear(boxes(dialog), boxesOfNewOne()));
}

TEST_F(PanelSkins, partsKeepTheirIdentity)
{
    KsTopLevelDialog* dialog = panel();
    std::vector<KsNode*> before;
    const std::vector<const char*> parts{"frame", "labelProp", "minReleased", "minPressed"};
    for (const char* part : parts) before.push_back(dialog->getAnyPart(part, false));
    KsFormweave::setSkin("dark");
    for (std::size_t i = 0; i < parts.size(); ++i)
        EXPECT_EQ(dialog->getAnyPart(parts[i], false), before[i]) << parts[i];
}

TEST_F(PanelSkins, aStripStaysAStrip)
{
    KsTopLevelDialog* dialog = panel();
    clickButton(dialog);
    drag(titleOf(dialog), 40, -40);
    KsFormweave::setSkin("dark");
    frame();
    EXPECT_TRUE(isNear(dialog->getTopLevelSize(), KbVec3f(308, 20, 1)));
    const KbBox3f box = boxOf(dialog, "frameSep");
    EXPECT_NEAR(box.getMin()[0], 140, 1e-2);
    EXPECT_NEAR(box.getMax()[1], -90, 1e-2);
    EXPECT_FALSE(isVisible(child(dialog, "a")));
    EXPECT_FALSE(isVisible(child(dialog, "b")));
    clickButton(dialog);
    EXPECT_TRUE(areNear(boxes(dialog), boxesOfNewOne()));
}

TEST_F(PanelSkins, aHiddenPanelStaysHidden)
{
    KsTopLevelDialog* dialog = panel();
    dialog->show3D(0);
    KsFormweave::setSkin("dark");
    frame();
    EXPECT_FALSE(isVisible(dialog));
    dialog->show3D(1);
    EXPECT_TRUE(areNear(boxes(dialog), boxesOfNewOne()));
}

TEST_F(PanelSkins, aPanelIsSwappedWhileItIsDragged)
{
    KsTopLevelDialog* dialog = panel();
    const KbVec2f start = titleOf(dialog);
    press(start);
    move(KbVec2f(start[0] + 10, start[1]));
    KsFormweave::setSkin("dark");
    move(KbVec2f(start[0] + 20, start[1]));
    release(KbVec2f(start[0] + 20, start[1]));
    EXPECT_TRUE(isNear(dialog->position3D, KbVec3f(120, 50, 0)));
    EXPECT_TRUE(areNear(boxes(dialog), boxesOfNewOne("position3D 120 50 0 ")));
}

TEST_F(PanelSkins, aPressedButtonStaysPressed)
{
    KsTopLevelDialog* dialog = panel();
    press(middleOf(dialog, "minSep"));
    KsFormweave::setSkin("dark");
    EXPECT_EQ(shown(dialog, "minSwtch"), 1);
    release(KbVec2f(0, 0));
    EXPECT_TRUE(dialog->minimized);
}

TEST_F(PanelSkins, allPanelsOfASceneAndThoseOutsideChangeTogether)
{
    KsTopLevelDialog* one = panel();
    const auto outside = read<>("TopLevelDialog { DialogCheckBox { auditorID \"a\" } }");
    KsGetBoundingBoxAction measure(viewport);
    measure.apply(outside.get());
    KsTopLevelDialog* two = panel("position3D 420 50 0 ");
    KsFormweave::setSkin("dark");
    frame();
    EXPECT_TRUE(areNear(boxes(one), boxesOfNewOne()));
    EXPECT_TRUE(areNear(boxes(two), boxesOfNewOne("position3D 420 50 0 ")));
    scene->addChild(outside.get());
    frame();
    EXPECT_NEAR(boxOf(child(outside.get(), "a")).getMin()[2],
                boxOf(outside.get(), "frameSep").getMax()[2], 1e-3);
}

TEST_F(PanelSkins, aSkinWithDeeperPartsLiftsWhatStandsOnThem)
{
    const QTemporaryDir folder;
    for (const QString& file : QDir(FORMWEAVE_SKIN_DIR "/default").entryList(QDir::Files))
        QFile::copy(QString(FORMWEAVE_SKIN_DIR "/default/") + file, folder.filePath(file));
    QFile deep(folder.filePath("TopLevelDialog.arb"));
    QString text;
    ASSERT_TRUE(deep.open(QIODevice::ReadOnly));
    text = deep.readAll();
    deep.close();
    const int at = text.indexOf("DEF TopLevelDialogMinReleased");
    ASSERT_GT(at, 0);
    text.insert(text.lastIndexOf('}', at), "  Translation { translation 0 0 9 }\n");
    ASSERT_TRUE(deep.open(QIODevice::WriteOnly | QIODevice::Truncate));
    deep.write(text.toUtf8());
    deep.close();
    KsTopLevelDialog* dialog = panel();
    const float before = boxOf(child(dialog, "b"), "stateSep").getMin()[2];
    const float title = boxOf(dialog, "labelSep").getMin()[2];
    KsFormweave::setSkin(folder.path().toStdString().c_str());
    frame();
    EXPECT_NEAR(boxOf(child(dialog, "b"), "stateSep").getMin()[2], before + 9, 1e-3);
    EXPECT_NEAR(boxOf(dialog, "labelSep").getMin()[2], title + 9, 1e-3);
    EXPECT_TRUE(areNear(boxes(dialog), boxesOfNewOne()));
}

TEST_F(PanelSkins, theLookOfThePanelIsThatOfTheSkin)
{
    KsTopLevelDialog* dialog = panel();
    const auto colour = [&] {
        auto* frame = ksCast<KsGroup>(dialog->getAnyPart("frame", false));
        for (int i = 0; frame && i < frame->getNumChildren(); ++i)
            if (auto* material = ksCast<KsMaterial>(frame->getChild(i)))
                return material->diffuseColor[0];
        return KbColor(-1, -1, -1);
    };
    EXPECT_TRUE(colour() == KbColor(0.7f, 0.7f, 1));
    KsFormweave::setSkin("dark");
    EXPECT_TRUE(colour() == KbColor(0.1f, 0.15f, 0.22f));
}

TEST_F(PanelSkins, namesInASkinThatAreNotItsOwnToGiveLeaveOtherSkinsAlone)
{
    KsTopLevelDialog* dialog = panel();
    const std::vector<KbBox3f> before = boxes(dialog);
    const std::vector<std::uint8_t> light = picture();
    const std::string cube = " Group { Cube { width 3 } } ";
    const struct {
        const char* file;
        std::string text;
    } skins[] = {
        {"DialogCheckBox.arb", "DEF DialogCheckBoxFrame Group { } DEF DialogCheckBoxFrame" + cube},
        {"DialogCheckBox.arb", "DEF _Lmn_Tmp_DialogCheckBoxFrame" + cube +
                                   "DEF DialogCheckBoxFrame Group { Sphere { } }"},
        {"DialogCheckBox.arb", "DEF DialogCheckBoxFrame Cube { } DEF DialogCheckBoxFrame" + cube},
        {"DialogCheckBox.arb", "DEF DialogCheckBoxFrame Group { DEF DialogCheckBoxStateOn" + cube +
                                   "USE DialogCheckBoxStateOn }"},
        {"DialogComponent.arb",
         "DEF DialogCheckBoxFrame" + cube + "DEF TopLevelDialogFrame" + cube},
        {"TopLevelDialog.arb",
         "DEF DialogCheckBoxFrame" + cube + "DEF DialogTextProperties" + cube},
    };
    ExpectedMessages missing; // the other files of each skin
    missing.allow("Formweave::readDefaultSkinsParts", "cannot be found");
    for (const auto& skin : skins) {
        const QTemporaryDir folder;
        QFile file(folder.filePath(skin.file));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(("#Arborium V2.1 ascii\n" + skin.text).c_str());
        file.close();
        for (int i = 0; i < 2; ++i) {
            KsFormweave::setSkin(folder.path().toStdString().c_str());
            frame();
            KsFormweave::setSkin("default");
            frame();
            EXPECT_TRUE(areNear(boxes(dialog), before)) << skin.text;
            EXPECT_EQ(picture(), light) << skin.text;
        }
        EXPECT_TRUE(areNear(boxesOfNewOne(), before)) << skin.text;
    }
}
