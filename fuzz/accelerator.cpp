// Any text as the accelerator of a menu's entries: the key text is what cutting the modifiers out
// one after the other gives, and the actions in a window have it as their shortcut.

#include "scene_fuzz.h"

#include <formweave/formweave.h>

#include <QAction>
#include <QApplication>
#include <QMenu>

namespace {

struct KeyText : KsMenuItem {
    static std::string of(const KbString& accelerator)
    {
        return getKeyCombination(accelerator, nullptr, 0).toUtf8();
    }
};

/// As slowly and plainly as it can be said.
std::string expected(std::string text)
{
    const struct {
        const char* token;
        int weight;
    } modifiers[] = {{"Ctrl", 1},  {"CTRL", 1}, {"ctrl", 1}, {"Ctl", 1}, {"Shift", 2}, {"SHIFT", 2},
                     {"shift", 2}, {"Meta", 4}, {"META", 4}, {"Alt", 8}, {"ALT", 8},   {"alt", 8}};
    int sum = 0;
    for (const auto& each : modifiers) {
        const std::string token = each.token;
        for (std::size_t at; (at = text.find(token)) != std::string::npos; sum += each.weight)
            text.erase(at, token.size());
    }
    for (std::size_t at; (at = text.find('+')) != std::string::npos;) text.erase(at, 1);
    std::string result;
    if (sum - 8 >= 0) {
        result += "Alt+";
        sum -= 8;
    }
    if (sum - 4 >= 0) {
        result += "Meta+";
        sum -= 4;
    }
    if (sum - 2 >= 0) {
        result += "Shift+";
        sum -= 2;
    }
    if (sum == 1) result += "Ctrl+";
    return result + text;
}

/// A menu with an entry of each kind that has accelerators, built as a window has it.
class Menu {
public:
    Menu()
        : m_push(new KsMenuPushButton), m_check(new KsMenuCheckBox), m_radio(new KsMenuRadioButtons)
    {
        const KbString items[] = {"a", "b"};
        m_radio->items.setValues(0, 2, items);
        for (KsMenuItem* each :
             {static_cast<KsMenuItem*>(m_push.get()), static_cast<KsMenuItem*>(m_check.get()),
              static_cast<KsMenuItem*>(m_radio.get())})
            each->buildMenu(&m_menu, 1, -1);
    }
    void take(const KbString& accelerator)
    {
        m_push->accelerator = accelerator;
        m_check->accelerator = accelerator;
        const KbString three[] = {accelerator, accelerator, accelerator};
        m_radio->accelerators.setValues(0, 3, three);
        const QKeySequence shortcut = m_menu.actions()[0]->shortcut();
        const QKeySequence wanted(
            QString::fromLatin1(KbString::fromUtf8(KeyText::of(accelerator)).toLatin1().c_str()));
        if (shortcut != wanted)
            SceneFuzz::fail("the shortcut differs", wanted.toString().toStdString(),
                            shortcut.toString().toStdString());
        for (const QAction* action : m_menu.actions()) {
            if (action->shortcut() != shortcut) SceneFuzz::fail("entries differ");
        }
    }

private:
    QMenu m_menu;
    KsRef<KsMenuPushButton> m_push;
    KsRef<KsMenuCheckBox> m_check;
    KsRef<KsMenuRadioButtons> m_radio;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static Menu& menu = *[] {
        static int argc = 1;
        static char name[] = "fuzz";
        static char* argv[] = {name, nullptr};
        new QApplication(argc, argv);
        SceneFuzz::start();
        KsFormweave::init();
        return new Menu;
    }();
    const std::string text(reinterpret_cast<const char*>(data), size);
    // Bytes that are no UTF-8 are read as Latin-1; either way the text is a text.
    const KbString accelerator = KbString::fromUtf8(text);
    const std::string key = KeyText::of(accelerator);
    if (const std::string plain = expected(accelerator.toUtf8()); key != plain)
        SceneFuzz::fail("the key text differs", plain, key);
    menu.take(accelerator);
    return 0;
}
