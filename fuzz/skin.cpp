// Any bytes as a file of a skin, under a panel that is on screen: shown, measured, picked and
// clicked, and when the built-in skin is back everything is as it was.

#include "scene_fuzz.h"

#include <arborium/actions/KsGetBoundingBoxAction.h>
#include <arborium/actions/KsHandleEventAction.h>
#include <arborium/actions/KsRayPickAction.h>
#include <arborium/actions/KsRenderAction.h>
#include <arborium/base/KsPreferences.h>
#include <arborium/events/KsEvent.h>
#include <arborium/nodes/KsNodeList.h>
#include <arborium/nodes/KsOrthographicCamera.h>
#include <formweave/formweave.h>

#include <QApplication>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <functional>

#include <unistd.h>

namespace {

const KbViewportRegion viewport(300, 300);

const char* const content = R"(#Arborium V2.1 ascii
TopLevelDialog { label "Panel"
  MenuBar {
    MenuPopup { label "Menu"
      MenuPushButton { label "push" } MenuSeparator { } MenuCheckBox { label "check" }
      MenuRadioButtons { items [ "a", "b" ] }
    }
  }
  TabDialog {
    RowDialog { label "one" edgeStyle SHADOW_IN
      DialogCheckBox { label "check" onString "on" }
      DialogPushButton { label "push" buttonLabel "button" }
      DialogComboBox { label "combo" items [ "a", "b" ] }
      DialogRadioButtons { label "radio" items [ "a", "b" ] }
      DialogSeparator { }
      DialogEditText { label "edit" editText "text" }
      DialogIntegerSlider { label "slider" }
    }
    RowDialog { label "two" }
  }
}
)";

const char* const files[] = {
    "TextProperties.arb",   "DialogComponent.arb",  "DialogCheckBox.arb",     "DialogComboBox.arb",
    "DialogEditText.arb",   "DialogPushButton.arb", "DialogRadioButtons.arb", "DialogSeparator.arb",
    "DialogSlider.arb",     "TabDialog.arb",        "TopLevelDialog.arb",     "MenuBar.arb",
    "MenuItem.arb",         "MenuCheckBox.arb",     "MenuPopup.arb",          "MenuPushButton.arb",
    "MenuRadioButtons.arb", "MenuSeparator.arb"};
constexpr std::size_t numFiles = sizeof files / sizeof *files;

/// For what is told to subclasses only.
class Skins : public KsFormweave {
public:
    static KsNodeList& roots() { return const_cast<KsNodeList&>(getSkinRoots()); }
};

/// A panel in a scene, a folder for the skin under test and an empty one for the built-in looks.
class Stage {
public:
    static Stage& get()
    {
        static auto& stage = *new Stage;
        return stage;
    }

    void tryFile(const std::string& name, const std::string& bytes)
    {
        const std::filesystem::path path = m_folder / "tried" / name;
        std::ofstream(path, std::ios::binary) << bytes;
        KsFormweave::setSkin((m_folder / "tried").c_str());
        look();
        std::filesystem::remove(path);
        restore();
        if (KsBase::getNumInstances() != m_instances)
            SceneFuzz::fail("objects were left behind", bytes);
        if (!(box() == m_box)) SceneFuzz::fail("the built-in skin does not come back", bytes);
    }

private:
    Stage()
    {
        static int argc = 1;
        static char name[] = "fuzz_skin";
        static char* argv[] = {name, nullptr};
        static const auto& application = *new QApplication(argc, argv);
        (void)application;
        KsFormweave::init();
        // Those of a person who runs this are left alone.
        KsPreferences::setString("ARBHOME", "");
        KsPreferences::setString("FORMWEAVE_SKINS_DIR", "");
        KsPreferences::setString("FORMWEAVE_SKIN", "none");
        std::string pattern = std::filesystem::temp_directory_path() / "fuzz-skin-XXXXXX";
        if (!mkdtemp(pattern.data())) SceneFuzz::fail("no folder");
        m_folder = pattern;
        std::atexit([] { std::filesystem::remove_all(get().m_folder); });
        std::filesystem::create_directory(m_folder / "tried");
        std::filesystem::create_directory(m_folder / "empty");

        const std::string text = content;
        m_root = SceneFuzz::read(text.data(), text.size());
        if (!m_root) SceneFuzz::fail("no panel");
        KsFormweave::setSkin((m_folder / "empty").c_str());
        auto* camera = new KsOrthographicCamera;
        m_root->insertChild(camera, 0);
        box();
        camera->viewAll(m_root.get(), viewport);
        m_numRoots = Skins::roots().getLength();
        restore();
        m_box = box();
        look();
        restore();
        m_instances = KsBase::getNumInstances();
    }

    /// The built-in looks. What a program keeps of each skin for good would fill the memory here.
    void restore()
    {
        KsFormweave::setSkin((m_folder / "empty").c_str());
        Skins::roots().truncate(m_numRoots);
        m_render.apply(m_root.get());
    }

    KbBox3f box()
    {
        KsGetBoundingBoxAction action(viewport);
        action.apply(m_root.get());
        return action.getBoundingBox();
    }

    void look()
    {
        const KbBox3f now = box();
        for (int i = 0; i < 3; ++i)
            if (std::isnan(now.getMin()[i]) || std::isnan(now.getMax()[i]))
                SceneFuzz::fail("the box is no box");
        m_render.apply(m_root.get());
        KsHandleEventAction action(viewport);
        const auto send = [&](const KsEvent& event) {
            action.setEvent(&event);
            action.apply(m_root.get());
        };
        for (int i = 0; i < 4; ++i) {
            const KbVec2f at(60.0f + 50.0f * static_cast<float>(i),
                             240.0f - 50.0f * static_cast<float>(i));
            send(KsMouseButtonEvent(KsMouseButtonEvent::BUTTON1, KsButtonEvent::DOWN, at));
            send(KsLocation2Event(at + KbVec2f(3, 0)));
            send(KsMouseButtonEvent(KsMouseButtonEvent::BUTTON1, KsButtonEvent::UP, at));
        }
    }

    std::filesystem::path m_folder;
    KsRef<KsSeparator> m_root;
    KsRenderAction m_render{viewport};
    int m_numRoots = 0;
    int m_instances = 0;
    KbBox3f m_box;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    SceneFuzz::start();
    Stage& stage = Stage::get();
    if (size == 0) return 0;
    const std::string bytes(reinterpret_cast<const char*>(data + 1), size - 1);
    // A file that cannot be read leaves the built-in look, which costs time and shows the same each
    // time: few of these go all the way.
    if (!SceneFuzz::read(bytes.data(), bytes.size()) && std::hash<std::string>()(bytes) % 16 != 0)
        return 0;
    stage.tryFile(files[data[0] % numFiles], bytes);
    return 0;
}
