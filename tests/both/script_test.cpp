// One script of user actions, played on each presentation in turn: what auditors hear and what the
// fields hold afterwards is the same, but for the exceptions in the table below.

#include <arborium/fields/KsFieldData.h>
#include <arborium/io/KsOutput.h>
#include <dialog/Stage.h>

#include <QFileDialog>
#include <QMenu>
#include <QMenuBar>
#include <QTimer>

#include <algorithm>
#include <set>
#include <sstream>

namespace {

using Lines = std::vector<std::string>;

/// What a person does, in each presentation; what `application` does is the same in both.
struct Step {
    const char* name;
    std::function<void(Stage&)> inWindow;
    std::function<void(Stage&)> inScene;
};

/// A control of the library joins with one entry.
struct Control {
    const char* name;
    const char* file;
    std::vector<Step> steps;
};

/// Where the presentations differ, and why. One line each; a line without a difference fails.
struct Exception {
    const char* control;
    const char* step;
    const char* why;
};

const Exception exceptions[] = {
    {"DialogSlider", "type what stands there",
     "a scene reports each Return in a slider's text, a window only one that changes the value"},
    {"DialogSlider", "type beyond fixed limits",
     "a slider's text in a scene reaches the value as it was typed"},
    {"DialogCheckBox", "press, and let go elsewhere",
     "a scene tells a click by where the press was, a widget also by where it ends"},
    {"DialogComboBox", "select what is not there",
     "a window takes the last item, a scene goes back to the last valid one"},
    {"DialogComboBox", "choose the only one",
     "a window writes the selection also where it stays, so that it is in files"},
    {"DialogPushButton", "press the mouse", "a window tells at the press"},
    {"DialogPushButton", "release it", "a scene tells at the release"},
    {"DialogPushButton", "press it now", "in a scene only its text follows a write"},
    {"DialogCheckBoxLauncher", "click on the label", "in a scene it is clicked wherever it is met"},
    {"DialogRadioButtons", "select too low",
     "a window repairs it to the first item, a scene to the last valid selection"},
    {"DialogRadioButtons", "choose the only one",
     "a window writes the selection also where it stays, so that it is in files"},
    {"DialogEditText", "type behind Enter", "in a scene Enter ends the typing"},
    {"DialogEditText", "write the text of an eager one",
     "a window tells of what the application writes as of what is typed"},
    {"DialogEditText", "click on an eager one",
     "a scene tells when an editor that was clicked on loses the keyboard"},
    {"DialogEditText", "click on another",
     "a scene tells when an editor that was clicked on loses the keyboard"},
    {"DialogEditText", "click on one to be read",
     "a scene tells when an editor that was clicked on loses the keyboard"},
    {"DialogEditText", "click on a disabled one",
     "a scene tells when an editor that was clicked on loses the keyboard"},
    {"DialogEditText", "break the line",
     "in a window each Return is Enter, in a scene Shift makes "
     "it a break and nothing else"},
    {"Menu", "choose a file", "a scene tells of the file, and then of the pick"},
    {"Menu", "cancel the choice", "a scene tells of the file, and then of the pick"},
    {"Menu", "open a dialog",
     "in a scene an entry that opens dialogs does so at the press, unheard"},
    {"TabDialog", "select too high",
     "a window shows the last page then, a scene goes back to the last valid one"},
};

// ---- actions --------------------------------------------------------------------------------

KsDialogComponent* element(Stage& stage, const char* id)
{
    auto* found = stage.find<KsDialogComponent>(id);
    EXPECT_TRUE(found) << id;
    return found;
}

/// A click on the widget of the kind at the left end of its middle line, and on the part.
template <class Widget> Step click(const char* name, const char* id, const char* part)
{
    return {name,
            [id](Stage& stage) {
                auto* widget = Stage::widgetOf<Widget>(element(stage, id));
                ASSERT_TRUE(widget);
                Stage::clickWidget(widget, QPoint(8, widget->height() / 2));
            },
            [id, part](Stage& stage) { stage.clickPart(element(stage, id), part); }};
}

/// An item is chosen from the open list.
Step chooseFromList(const char* name, const char* id, int item)
{
    return {name,
            [=](Stage& stage) {
                auto* box = Stage::widgetOf<QComboBox>(element(stage, id));
                ASSERT_TRUE(box);
                Stage::clickWidget(box, QPoint(8, box->height() / 2));
                if (!box->view()->isVisible()) return;
                box->view()->setCurrentIndex(box->model()->index(item, 0));
                QTest::keyClick(box->view(), Qt::Key_Return);
            },
            [=](Stage& stage) {
                auto* box = element(stage, id);
                stage.clickPart(box, "buttonSep");
                if (Stage::shown(box, "itemsSwitch") != KsSwitch::ALL) return;
                const KbVec2f first = stage.placeOf(box, "itemStrucSep");
                stage.click(KbVec2f(first[0], first[1] - 22.0f * static_cast<float>(item)));
            }};
}

using Way = std::vector<const char*>;

/// Opens the menu "m" and goes through entries: in a window by their texts, in a scene by their ids.
Step pick(const char* name, const Way& texts, const Way& ids)
{
    return {name,
            [texts](Stage& stage) {
                auto* bar = stage.dialog->getBaseWidget()->findChild<QMenuBar*>();
                ASSERT_TRUE(bar);
                QAction* title = bar->actions().value(0);
                QTest::mouseClick(bar, Qt::LeftButton, Qt::NoModifier,
                                  bar->actionGeometry(title).center());
                QMenu* menu = title->menu();
                for (const char* text : texts) {
                    ASSERT_TRUE(menu) << text;
                    ASSERT_TRUE(QTest::qWaitFor([=] { return menu->isVisible(); })) << text;
                    QAction* entry = nullptr;
                    for (QAction* each : menu->actions())
                        if (each->text() == text) entry = each;
                    ASSERT_TRUE(entry) << text;
                    const QPoint place = menu->actionGeometry(entry).center();
                    QTest::mouseMove(menu, place);
                    QTest::mouseClick(menu, Qt::LeftButton, Qt::NoModifier, place);
                    menu = entry->menu();
                }
                while (QWidget* popup = QApplication::activePopupWidget()) popup->close();
            },
            [ids](Stage& stage) {
                stage.clickPart(stage.find<KsFormweave>("m"), "frameSep");
                for (const char* id : ids) {
                    auto* entry = stage.find<KsFormweave>(id);
                    ASSERT_TRUE(entry) << id;
                    stage.clickPart(entry, "geomSwitch");
                }
                stage.click(KbVec2f(Stage::viewWidth - 1, 1));
            }};
}

/// The same with an entry that asks for a file: `file` is typed, or the question cancelled if null.
Step pickFile(const char* name, const char* text, const char* id, const char* file)
{
    const Step step = pick(name, {text}, {id});
    const auto answered = [file](const std::function<void(Stage&)>& act) {
        return [=](Stage& stage) {
            QTimer timer;
            QObject::connect(&timer, &QTimer::timeout, [&] {
                auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
                if (!dialog) return;
                timer.stop();
                if (file) dialog->findChild<QLineEdit*>("fileNameEdit")->setText(file);
                QMetaObject::invokeMethod(dialog, file ? "accept" : "reject");
            });
            timer.start(5);
            act(stage);
        };
    };
    return {name, answered(step.inWindow), answered(step.inScene)};
}

Step application(const char* name, std::function<void(Stage&)> act) { return {name, act, act}; }

/// A click on the button, and on the row, of radio buttons.
Step choose(const char* name, const char* id, int index)
{
    return {name,
            [=](Stage& stage) {
                QWidget* frame = element(stage, id)->getWidget();
                QWidget* button = frame->findChildren<QRadioButton*>().value(index);
                ASSERT_TRUE(button);
                Stage::clickWidget(button, QPoint(8, button->height() / 2));
            },
            [=](Stage& stage) {
                stage.draw();
                auto* radio = static_cast<KsDialogRadioButtons*>(element(stage, id));
                const KbBox3f rows = stage.boxOf(radio, "itemsSep");
                ASSERT_FALSE(rows.isEmpty());
                const float place =
                    (static_cast<float>(index) + 0.5f) / static_cast<float>(radio->items.getNum());
                stage.click(
                    KbVec2f(rows.getCenter()[0],
                            rows.getMax()[1] - place * rows.getSize()[1] + Stage::viewHeight));
            }};
}

QWidget* barOf(KsDialogComponent* slider)
{
    for (QObject* child : slider->getWidget()->children()) {
        if (auto* bar = dynamic_cast<KsDialogCustomSlider*>(child)) return bar->getWidget();
    }
    return nullptr;
}

/// Moves the cursor of a slider from one position to another; a click where the two are the same.
Step slide(const char* name, const char* id, float from, float to)
{
    return {name,
            [=](Stage& stage) {
                QWidget* bar = barOf(element(stage, id));
                ASSERT_TRUE(bar);
                constexpr int end = 6; // half a cursor
                const auto at = [&](float position) {
                    const auto travel = static_cast<float>(bar->width() - 1 - 2 * end);
                    return QPoint(end + qRound(position * travel), 3);
                };
                QTest::mousePress(bar, Qt::LeftButton, Qt::NoModifier, at(from));
                if (from != to) {
                    QMouseEvent move(QEvent::MouseMove, at(to), Qt::NoButton, Qt::LeftButton, {});
                    QApplication::sendEvent(bar, &move);
                }
                QTest::mouseRelease(bar, Qt::LeftButton, Qt::NoModifier, at(to));
            },
            [=](Stage& stage) {
                stage.draw();
                const KbBox3f bar = stage.boxOf(element(stage, id), "frameSep");
                const float left = bar.getMin()[0] + 5; // half a cursor
                const float travel = bar.getSize()[0] - 10;
                // The cursor stands on the lower half of the bar.
                const float y = from == to ? bar.getMax()[1] - 2 : bar.getMin()[1] + 3;
                const auto at = [&](float position) {
                    return KbVec2f(left + position * travel, y + Stage::viewHeight);
                };
                stage.press(at(from));
                stage.move(at(to));
                stage.release(at(to));
            }};
}

/// Types a number into a slider, with Return.
Step enter(const char* name, const char* id, const char* text)
{
    return {name,
            [=](Stage& stage) {
                auto* edit = Stage::widgetOf<QLineEdit>(element(stage, id));
                ASSERT_TRUE(edit);
                edit->setFocus();
                edit->selectAll();
                QTest::keyClicks(edit, text);
                QTest::keyClick(edit, Qt::Key_Return);
            },
            [=](Stage& stage) {
                stage.clickPart(element(stage, id), "edtFrmSep");
                for (int i = 0; i < 20; ++i) stage.key(KsKeyboardEvent::BACKSPACE);
                stage.type(text);
                stage.key(KsKeyboardEvent::RETURN);
            }};
}

/// The widget that takes the keys.
QWidget* editorOf(Stage& stage, const char* id)
{
    QWidget* line = Stage::widgetOf<QLineEdit>(element(stage, id));
    return line ? line : Stage::widgetOf<QTextEdit>(element(stage, id));
}

/// A click on the editor, at the end of what stands there.
Step startTyping(const char* name, const char* id)
{
    return {name,
            [=](Stage& stage) {
                QWidget* editor = editorOf(stage, id);
                ASSERT_TRUE(editor);
                QTest::mouseClick(editor, Qt::LeftButton);
                if (auto* line = qobject_cast<QLineEdit*>(editor)) line->end(false);
                if (auto* lines = qobject_cast<QTextEdit*>(editor))
                    lines->moveCursor(QTextCursor::End);
            },
            [=](Stage& stage) { stage.clickPart(element(stage, id), "frameSep"); }};
}

Step type(const char* name, const char* id, const char* text)
{
    return {name, [=](Stage& stage) { QTest::keyClicks(editorOf(stage, id), text); },
            [=](Stage& stage) { stage.type(text); }};
}

Step key(const char* name, const char* id, Qt::Key inWindow, int inScene, bool shiftInScene = false)
{
    return {name, [=](Stage& stage) { QTest::keyClick(editorOf(stage, id), inWindow); },
            [=](Stage& stage) { stage.key(inScene, 0, shiftInScene); }};
}

/// A click on a tab, where it is not cut off.
Step openPage(const char* name, const char* id, int index)
{
    return {
        name,
        [id, index](Stage& stage) {
            auto* tabs = Stage::widgetOf<QTabWidget>(element(stage, id));
            ASSERT_TRUE(tabs);
            const QRect tab = tabs->tabBar()->tabRect(index);
            Stage::clickWidget(tabs->tabBar(), tab.center());
        },
        [id, index](Stage& stage) {
            stage.draw();
            auto* all = static_cast<KsGroup*>(element(stage, id)->getAnyPart("pagesSep", false));
            std::vector<KsNode*> tabs;
            for (int i = 0; i < all->getNumChildren(); ++i)
                if (ksCast<KsSwitch>(all->getChild(i))) tabs.push_back(all->getChild(i));
            ASSERT_LT(static_cast<std::size_t>(index), tabs.size());
            KsSearchAction search;
            search.setNode(tabs[static_cast<std::size_t>(index)]);
            search.setSearchingAll(true);
            search.apply(stage.dialog.get());
            ASSERT_TRUE(search.getPath());
            KsGetBoundingBoxAction action(KbViewportRegion(Stage::viewWidth, Stage::viewHeight));
            action.apply(search.getPath());
            const KbBox3f box = action.getBoundingBox();
            ASSERT_FALSE(box.isEmpty());
            stage.click(KbVec2f(box.getMin()[0] + 4, box.getCenter()[1] + Stage::viewHeight));
        }};
}

std::vector<Control> controls()
{
    const auto edit = [](Stage& stage, const char* id) {
        return static_cast<KsDialogEditText*>(element(stage, id));
    };
    const auto tabs = [](Stage& stage, const char* id) {
        return static_cast<KsTabDialog*>(element(stage, id));
    };
    const auto radio = [](Stage& stage, const char* id) {
        return static_cast<KsDialogRadioButtons*>(element(stage, id));
    };
    const auto box = [](Stage& stage, const char* id) {
        return static_cast<KsDialogCheckBox*>(element(stage, id));
    };
    const auto combo = [](Stage& stage, const char* id) {
        return static_cast<KsDialogComboBox*>(element(stage, id));
    };
    const auto whole = [](Stage& stage, const char* id) {
        return static_cast<KsDialogIntegerSlider*>(element(stage, id));
    };
    return {
        {"DialogSlider",
         "TopLevelDialog { label \"Sliders\" "
         "DialogIntegerSlider { auditorID \"a\" label \"A\" max 10 value 2 width 300 } "
         "DialogRealSlider { auditorID \"real\" label \"Real\" max 4 width 300 } "
         "ColumnDialog { auditorID \"group\" DialogIntegerSlider { auditorID \"b\" label \"B\" "
         "max 10 fixedLimits TRUE continuousTrigger TRUE width 300 } } "
         "DialogIntegerSlider { auditorID \"grey\" max 10 enable FALSE width 300 } }",
         {
             slide("click on the bar", "a", 0.7f, 0.7f),
             slide("click where the cursor is now", "a", 0.7f, 0.7f),
             slide("drag", "a", 0.7f, 0.3f),
             slide("drag beyond the end", "a", 0.3f, 1.4f),
             click<QLabel>("click on the label", "a", "labelSep"),
             click<QCheckBox>("make it continuous", "a", "checkSep"),
             slide("drag it now", "a", 1, 0.5f),
             click<QCheckBox>("no longer continuous", "a", "checkSep"),
             slide("click in a column", "b", 0.9f, 0.9f),
             slide("drag in a column", "b", 0.9f, 0),
             enter("type", "a", "4"),
             enter("type what stands there", "a", "4"),
             enter("type beyond the limits", "a", "20"),
             enter("type within fixed limits", "b", "6"),
             enter("type beyond fixed limits", "b", "50"),
             application("make it the same again", [=](Stage& s) { whole(s, "b")->value = 3; }),
             enter("type a real number", "real", "1.5"),
             slide("to the end of the real numbers", "real", 1, 1),
             slide("click on a disabled one", "grey", 0.5f, 0.5f),
             application("enable it", [=](Stage& s) { whole(s, "grey")->enable = true; }),
             slide("click there now", "grey", 0.5f, 0.5f),
             application("write the value", [=](Stage& s) { whole(s, "a")->value = 5; }),
             application("move a limit", [=](Stage& s) { whole(s, "a")->max = 10; }),
             application("move a limit past the value", [=](Stage& s) { whole(s, "a")->min = 6; }),
             slide("drag after that", "a", 0, 0.5f),
         }},
        {"DialogCheckBox",
         "TopLevelDialog { label \"Boxes\" "
         "DialogCheckBox { auditorID \"a\" label \"A\" onString \"On\" offString \"Off\" } "
         "ColumnDialog { auditorID \"group\" "
         "DialogCheckBox { auditorID \"b\" label \"B\" state TRUE } "
         "DialogCheckBox { auditorID \"grey\" label \"Grey\" enable FALSE } } "
         "DialogCheckBox { auditorID \"bare\" label \"Bare\" labelVisibility FALSE } }",
         {
             click<QCheckBox>("click", "a", "stateSep"),
             click<QCheckBox>("click again", "a", "frameSep"),
             click<QCheckBox>("click on the text", "a", "onOffStringSep"),
             click<QLabel>("click on the label", "a", "labelSep"),
             click<QCheckBox>("click in a column", "b", "stateSep"),
             click<QCheckBox>("click on a disabled one", "grey", "stateSep"),
             application("enable it", [=](Stage& s) { box(s, "grey")->enable = true; }),
             click<QCheckBox>("click on it now", "grey", "stateSep"),
             click<QCheckBox>("click without a label", "bare", "stateSep"),
             application("write the state", [=](Stage& s) { box(s, "b")->state = true; }),
             application("write the text", [=](Stage& s) { box(s, "b")->onString = "yes"; }),
             click<QCheckBox>("click behind the writes", "b", "stateSep"),
             {"press, and let go elsewhere",
              [=](Stage& s) {
                  auto* toggle = Stage::widgetOf<QCheckBox>(box(s, "a"));
                  const QPoint inside(8, toggle->height() / 2);
                  QTest::mousePress(toggle, Qt::LeftButton, Qt::NoModifier, inside);
                  QTest::mouseRelease(toggle, Qt::LeftButton, Qt::NoModifier, QPoint(-50, -50));
              },
              [=](Stage& s) {
                  s.press(s.placeOf(box(s, "a"), "stateSep"));
                  s.release(KbVec2f(Stage::viewWidth - 1, 1));
              }},
             application("make it the same again", [=](Stage& s) { box(s, "a")->state = false; }),
             click<QCheckBox>("click once more", "a", "stateSep"),
         }},
        {"DialogComboBox",
         "TopLevelDialog { label \"Combo boxes\" "
         "DialogComboBox { auditorID \"a\" label \"A\" items [ \"x\", \"y\", \"z\" ] } "
         "ColumnDialog { auditorID \"group\" "
         "DialogComboBox { auditorID \"b\" label \"B\" items [ \"1\", \"2\" ] selectedItem 1 } "
         "DialogComboBox { auditorID \"grey\" label \"Grey\" items [ \"1\", \"2\" ] "
         "enable FALSE } } "
         "DialogComboBox { auditorID \"bare\" items [ \"only\" ] labelVisibility FALSE } }",
         {
             chooseFromList("choose", "a", 2),
             chooseFromList("choose again", "a", 0),
             chooseFromList("choose the same", "a", 0),
             chooseFromList("choose in a column", "b", 0),
             click<QLabel>("click on the label", "a", "labelSep"),
             chooseFromList("choose in a disabled one", "grey", 1),
             application("enable it", [=](Stage& s) { combo(s, "grey")->enable = true; }),
             chooseFromList("choose there now", "grey", 1),
             chooseFromList("choose the only one", "bare", 0),
             application("select it", [=](Stage& s) { combo(s, "bare")->selectedItem = 0; }),
             application("select", [=](Stage& s) { combo(s, "a")->selectedItem = 1; }),
             application("select what is not there",
                         [=](Stage& s) { combo(s, "a")->selectedItem = 9; }),
             application("select what is there",
                         [=](Stage& s) { combo(s, "a")->selectedItem = 0; }),
             application("add an item", [=](Stage& s) { combo(s, "a")->addItem("new"); }),
             chooseFromList("choose the new one", "a", 3),
             application("insert an item", [=](Stage& s) { combo(s, "a")->insertItem(0, "w"); }),
             application("remove two",
                         [=](Stage& s) {
                             combo(s, "a")->selectedItem = 0;
                             combo(s, "a")->removeItem(3);
                             combo(s, "a")->removeItem(1);
                         }),
             chooseFromList("choose from what is left", "a", 1),
             {"open and leave",
              [=](Stage& s) {
                  auto* widget = Stage::widgetOf<QComboBox>(combo(s, "b"));
                  Stage::clickWidget(widget, QPoint(8, widget->height() / 2));
                  QTest::keyClick(widget->view(), Qt::Key_Escape);
              },
              [=](Stage& s) {
                  s.clickPart(combo(s, "b"), "frameSep");
                  s.click(KbVec2f(Stage::viewWidth - 1, 1));
              }},
         }},
        {"TabDialog",
         "TopLevelDialog { label \"Pages\" TabDialog { auditorID \"t\" width 400 "
         "RowDialog { label \"One\" DialogCheckBox { auditorID \"a\" label \"A\" } } "
         "RowDialog { label \"Two\" DialogCheckBox { auditorID \"b\" label \"B\" } } "
         "TabDialog { label \"Three\" auditorID \"in\" selectedPage 1 "
         "DialogCheckBox { auditorID \"x\" label \"X\" } "
         "DialogCheckBox { auditorID \"y\" label \"Y\" } } } }",
         {
             click<QCheckBox>("click on the first page", "a", "stateSep"),
             openPage("open another", "t", 1),
             openPage("open it again", "t", 1),
             click<QCheckBox>("click on it", "b", "stateSep"),
             openPage("open the one with tabs", "t", 2),
             click<QCheckBox>("click on a page of the page", "y", "stateSep"),
             openPage("open a page of the page", "in", 0),
             click<QCheckBox>("click on that", "x", "stateSep"),
             application("select a page", [=](Stage& s) { tabs(s, "t")->selectedPage = 0; }),
             click<QCheckBox>("click on what it shows", "a", "stateSep"),
             application("disable it", [=](Stage& s) { tabs(s, "t")->enable = false; }),
             openPage("open a page of a disabled one", "t", 1),
             application("enable it", [=](Stage& s) { tabs(s, "t")->enable = true; }),
             openPage("open a page now", "t", 1),
             application("insert a page in front",
                         [=](Stage& s) {
                             auto* page = new KsDialogCheckBox;
                             page->label = "Zero";
                             page->auditorID = "z";
                             tabs(s, "t")->insertChild(page, 0);
                         }),
             openPage("open what is new", "t", 0),
             click<QCheckBox>("click on what is new", "z", "stateSep"),
             application("remove it", [=](Stage& s) { tabs(s, "t")->removeChild(0); }),
             openPage("open the last", "t", 2),
             application("remove the last", [=](Stage& s) { tabs(s, "t")->removeChild(2); }),
             application("select too low", [=](Stage& s) { tabs(s, "t")->selectedPage = -2; }),
             application("select the last", [=](Stage& s) { tabs(s, "t")->selectedPage = 1; }),
             application("select the first", [=](Stage& s) { tabs(s, "t")->selectedPage = 0; }),
             application("select too high", [=](Stage& s) { tabs(s, "t")->selectedPage = 9; }),
             openPage("open the first", "t", 0),
             openPage("open the second", "t", 1),
             click<QCheckBox>("click at last", "b", "stateSep"),
         }},
        {"DialogPushButton",
         "TopLevelDialog { label \"Buttons\" "
         "DialogPushButton { auditorID \"a\" label \"A\" buttonLabel \"Press\" } "
         "ColumnDialog { auditorID \"group\" "
         "DialogPushButton { auditorID \"b\" label \"B\" buttonLabel \"Me\" } "
         "DialogPushButton { auditorID \"grey\" buttonLabel \"Grey\" enable FALSE } } "
         "DialogPushButton { auditorID \"bare\" buttonLabel \"Bare\" labelVisibility FALSE } }",
         {
             click<QPushButton>("press", "a", "frameSep"),
             click<QPushButton>("press on the text", "a", "buttonLabelSep"),
             click<QLabel>("click on the label", "a", "labelSep"),
             click<QPushButton>("press in a column", "b", "frameSep"),
             click<QPushButton>("press a disabled one", "grey", "frameSep"),
             application("enable it", [](Stage& s) { element(s, "grey")->enable = true; }),
             click<QPushButton>("press it now", "grey", "frameSep"),
             click<QPushButton>("press without a label", "bare", "frameSep"),
             {"press the mouse",
              [](Stage& s) {
                  QTest::mousePress(Stage::widgetOf<QPushButton>(element(s, "a")), Qt::LeftButton);
              },
              [](Stage& s) { s.press(s.placeOf(element(s, "a"), "frameSep")); }},
             {"release it",
              [](Stage& s) {
                  QTest::mouseRelease(Stage::widgetOf<QPushButton>(element(s, "a")),
                                      Qt::LeftButton);
              },
              [](Stage& s) { s.release(s.placeOf(element(s, "a"), "frameSep")); }},
         }},
        {"DialogCheckBoxLauncher",
         "TopLevelDialog { label \"Launcher\" "
         "DialogCheckBoxLauncher { auditorID \"a\" label \"A\" onString \"On\" "
         "TopLevelDialog { auditorID \"dialog\" label \"Opened\" position3D 300 0 0 "
         "DialogCheckBox { auditorID \"inner\" label \"Inner\" } } } }",
         {
             click<QCheckBox>("open", "a", "stateSep"),
             click<QCheckBox>("click in its dialog", "inner", "stateSep"),
             click<QCheckBox>("close", "a", "frameSep"),
             click<QLabel>("click on the label", "a", "labelSep"),
             application("make it the same again", [=](Stage& s) { box(s, "a")->state = false; }),
             click<QCheckBox>("open again", "a", "stateSep"),
         }},
        {"DialogPushButtonLauncher",
         "TopLevelDialog { label \"Launcher\" "
         "DialogPushButtonLauncher { auditorID \"a\" label \"A\" buttonLabel \"Open\" "
         "TopLevelDialog { auditorID \"dialog\" label \"Opened\" position3D 300 0 0 "
         "DialogCheckBox { auditorID \"inner\" label \"Inner\" } } } }",
         {
             click<QPushButton>("open", "a", "frameSep"),
             click<QPushButton>("open again", "a", "frameSep"),
             click<QLabel>("click on the label", "a", "labelSep"),
         }},
        {"Menu",
         "TopLevelDialog { width 200 height 60 MenuBar { MenuPopup { auditorID \"m\" label \"M\" "
         "MenuPushButton { auditorID \"push\" label \"Push\" } "
         "MenuCheckBox { auditorID \"check\" label \"Off\" onString \"On\" } "
         "MenuSeparator { } "
         "MenuRadioButtons { auditorID \"radio\" items [ \"1\", \"2\", \"3\" ] } "
         "MenuPopup { auditorID \"in\" label \"In\" MenuPopup { auditorID \"deep\" label \"Deep\" "
         "  MenuPushButton { auditorID \"last\" label \"Last\" } } } "
         "MenuFileSelection { auditorID \"file\" label \"File\" } "
         "MenuPushButtonLauncher { auditorID \"open\" label \"Open\" "
         "  TopLevelDialog { position3D 400 50 0 DialogCheckBox { } } } "
         "MenuCheckBoxLauncher { auditorID \"show\" label \"Show\" "
         "  TopLevelDialog { position3D 400 200 0 DialogCheckBox { } } } "
         "MenuPushButton { auditorID \"grey\" label \"Grey\" enable FALSE } } } }",
         {
             pick("pick the button", {"Push"}, {"push"}),
             pick("check the box", {"Off"}, {"check"}),
             pick("uncheck it", {"On"}, {"check"}),
             pick("pick the middle row", {"2"}, {"radio"}),
             pick("pick it again", {"2"}, {"radio"}),
             pick("pick in a menu of a menu", {"In", "Deep", "Last"}, {"in", "deep", "last"}),
             pickFile("choose a file", "File", "file", FORMWEAVE_SOURCE_DIR "/examples/editor.arb"),
             pickFile("cancel the choice", "File", "file", nullptr),
             pick("open a dialog", {"Open"}, {"open"}),
             pick("show a dialog", {"Show"}, {"show"}),
             pick("hide it", {"Show"}, {"show"}),
             pick("pick a disabled one", {"Grey"}, {"grey"}),
             application("enable it", [](Stage& s) { s.find<KsFormweave>("grey")->enable = true; }),
             pick("pick it now", {"Grey"}, {"grey"}),
         }},
        {"DialogRadioButtons",
         "TopLevelDialog { label \"Sets\" windowResizedByChildren TRUE "
         "DialogRadioButtons { auditorID \"a\" label \"A\" items [ \"1\", \"2\", \"3\" ] } "
         "ColumnDialog { auditorID \"group\" "
         "DialogRadioButtons { auditorID \"b\" label \"B\" items [ \"x\", \"y\" ] selectedItem 1 } "
         "DialogRadioButtons { auditorID \"grey\" items [ \"g\", \"h\" ] enable FALSE } } "
         "DialogRadioButtons { auditorID \"empty\" label \"Empty\" } }",
         {
             choose("choose the last", "a", 2),
             choose("choose it again", "a", 2),
             choose("choose the first", "a", 0),
             choose("choose in a column", "b", 0),
             choose("choose in a disabled one", "grey", 1),
             application("enable it", [=](Stage& s) { radio(s, "grey")->enable = true; }),
             choose("choose in it now", "grey", 1),
             application("write the selection", [=](Stage& s) { radio(s, "b")->selectedItem = 1; }),
             application("add an item", [=](Stage& s) { radio(s, "a")->addItem("4"); }),
             choose("choose what is new", "a", 3),
             application("insert an item", [=](Stage& s) { radio(s, "a")->insertItem(0, "0"); }),
             application("remove one", [=](Stage& s) { radio(s, "a")->removeItem(1); }),
             choose("choose behind the changes", "a", 1),
             application("select too low", [=](Stage& s) { radio(s, "a")->selectedItem = -1; }),
             choose("choose behind a repair", "a", 3),
             application("select too high", [=](Stage& s) { radio(s, "b")->selectedItem = 7; }),
             application("fill an empty one", [=](Stage& s) { radio(s, "empty")->addItem("e"); }),
             choose("choose the only one", "empty", 0),
         }},
        {"DialogEditText",
         "TopLevelDialog { label \"Texts\" "
         "DialogEditText { auditorID \"a\" label \"A\" editText \"la\" } "
         "DialogEditText { auditorID \"eager\" label \"B\" trigOnEnter FALSE } "
         "DialogEditText { auditorID \"many\" label \"C\" multiLine TRUE } "
         "DialogEditText { auditorID \"fixed\" label \"D\" editable FALSE editText \"x\" } "
         "DialogEditText { auditorID \"grey\" label \"E\" enable FALSE } }",
         {
             startTyping("click", "a"),
             type("type", "a", "mps"),
             key("take one off", "a", Qt::Key_Backspace, KsKeyboardEvent::BACKSPACE),
             key("Enter", "a", Qt::Key_Return, KsKeyboardEvent::RETURN),
             type("type behind Enter", "a", "x"),
             application("write the text", [=](Stage& s) { edit(s, "a")->editText = "new"; }),
             startTyping("click on an eager one", "eager"),
             type("type in it", "eager", "1,5"),
             key("take one off there", "eager", Qt::Key_Backspace, KsKeyboardEvent::BACKSPACE),
             application("write the text of an eager one",
                         [=](Stage& s) { edit(s, "eager")->editText = "set"; }),
             type("type behind the write", "eager", "."),
             startTyping("click on one of many lines", "many"),
             type("type a line", "many", "one"),
             key("break the line", "many", Qt::Key_Return, KsKeyboardEvent::RETURN, true),
             type("type the next", "many", "two"),
             key("take one off the last line", "many", Qt::Key_Backspace,
                 KsKeyboardEvent::BACKSPACE),
             startTyping("click on another", "a"),
             type("type there", "a", "er"),
             key("Enter again", "a", Qt::Key_Return, KsKeyboardEvent::RETURN),
             startTyping("click on one to be read", "fixed"),
             type("type in one to be read", "fixed", "no"),
             startTyping("click on a disabled one", "grey"),
             type("type in a disabled one", "grey", "no"),
             application("enable it", [=](Stage& s) { edit(s, "grey")->enable = true; }),
             startTyping("click on it now", "grey"),
             type("type in it now", "grey", "yes"),
         }}};
}

// ---- the record -----------------------------------------------------------------------------

/// All fields of an element but its sizes, which the window's layout writes.
std::string valuesOf(KsFormweave* node)
{
    static const std::set<std::string> sizes = {"width",     "height",   "minWidth",
                                                "minHeight", "maxWidth", "maxHeight"};
    std::string text = node->auditorID.getValue().toUtf8() + " {";
    const KsFieldData* fields = node->getFieldData();
    for (int i = 0; i < fields->getNumFields(); ++i) {
        const std::string name = fields->getFieldName(i).getString();
        if (fields->isPartField(i) || sizes.count(name)) continue;
        const KsField* field = fields->getField(node, i, false);
        if (!field || field->isDefault()) continue;
        KsOutput out;
        field->writeValue(&out);
        text += " " + name + " " + out.getBuffer();
    }
    return text + " }";
}

/// Writes down what a container's auditor is told. A new kind of control adds its line.
class Recorder : public KsDialogAuditor {
public:
    explicit Recorder(Lines& out) : lines(out) {}
    void dialogCheckBox(KsDialogCheckBox* node) override { note("dialogCheckBox", node); }
    void dialogIntegerSlider(KsDialogIntegerSlider* node) override
    {
        note("dialogIntegerSlider", node);
    }
    void dialogRealSlider(KsDialogRealSlider* node) override { note("dialogRealSlider", node); }
    void dialogComboBox(KsDialogComboBox* node) override { note("dialogComboBox", node); }
    void dialogEditText(KsDialogEditText* node) override { note("dialogEditText", node); }
    void dialogPushButton(KsDialogPushButton* node) override { note("dialogPushButton", node); }
    void dialogRadioButtons(KsDialogRadioButtons* node) override
    {
        note("dialogRadioButtons", node);
    }

    void menuPushButton(KsMenuPushButton* node) override { note("menuPushButton", node); }
    void menuCheckBox(KsMenuCheckBox* node) override { note("menuCheckBox", node); }
    void menuRadioButtons(KsMenuRadioButtons* node) override { note("menuRadioButtons", node); }
    void menuFileSelection(KsMenuFileSelection* node) override { note("menuFileSelection", node); }

    Lines& lines;

private:
    template <class Node> void note(const char* operation, Node* node)
    {
        lines.push_back(std::string("told: ") + operation + " " + valuesOf(node));
    }
};

void appendValues(const KsElementList& elements, Lines& lines)
{
    elements.forEach([&](KsFormweave* node) {
        lines.push_back(valuesOf(node));
        if (node->getElements()) appendValues(*node->getElements(), lines);
    });
}

struct Played {
    std::string step;
    Lines lines;
};

std::vector<Played> play(const Control& control, Stage::Road road)
{
    Stage stage(control.file, road);
    Lines heard;
    Recorder recorder(heard);
    stage.dialog->addAuditor(&recorder);
    std::vector<Played> played;
    Lines values;
    appendValues(*stage.dialog->getElements(), values);
    played.push_back({"as it was read", values});
    for (const Step& step : control.steps) {
        heard.clear();
        values.clear();
        (road == Stage::Window ? step.inWindow : step.inScene)(stage);
        QApplication::processEvents();
        if (road == Stage::Scene) stage.draw();
        appendValues(*stage.dialog->getElements(), values);
        heard.insert(heard.end(), values.begin(), values.end());
        played.push_back({step.name, heard});
    }
    stage.dialog->removeAuditor(&recorder);
    return played;
}

std::string sideBySide(const Lines& window, const Lines& scene)
{
    std::size_t width = std::string("in the window").size();
    for (const std::string& line : window) width = std::max(width, line.size());
    std::ostringstream out;
    const auto row = [&](const std::string& a, const std::string& b) {
        out << (a == b ? "    " : "  ! ") << a << std::string(width - a.size(), ' ') << " | " << b
            << '\n';
    };
    row("in the window", "in the scene");
    for (std::size_t i = 0; i < std::max(window.size(), scene.size()); ++i)
        row(i < window.size() ? window[i] : "", i < scene.size() ? scene[i] : "");
    return out.str();
}

const Exception* exceptionFor(const Control& control, const std::string& step)
{
    const auto* found =
        std::find_if(std::begin(exceptions), std::end(exceptions), [&](const Exception& exception) {
            return exception.control == std::string(control.name) && exception.step == step;
        });
    return found == std::end(exceptions) ? nullptr : found;
}

class Script : public testing::TestWithParam<int> {};

} // namespace

TEST_P(Script, saysTheSameInTheWindowAndInTheScene)
{
    const Control control = controls()[static_cast<std::size_t>(GetParam())];
    const std::vector<Played> window = play(control, Stage::Window);
    const std::vector<Played> scene = play(control, Stage::Scene);
    ASSERT_EQ(window.size(), scene.size());
    Lines told;
    for (std::size_t i = 0; i < window.size(); ++i) {
        const Exception* exception = exceptionFor(control, window[i].step);
        EXPECT_EQ(window[i].lines != scene[i].lines, exception != nullptr)
            << control.name << ", " << window[i].step << ": "
            << (exception ? "no difference, though " : "a difference")
            << (exception ? exception->why : "") << '\n'
            << sideBySide(window[i].lines, scene[i].lines);
        for (const std::string& line : window[i].lines)
            if (line.compare(0, 5, "told:") == 0) told.push_back(line);
    }
    EXPECT_FALSE(told.empty()) << "a script in which nobody hears anything proves nothing";
    for (const Exception& exception : exceptions) {
        if (exception.control != std::string(control.name)) continue;
        EXPECT_TRUE(
            std::any_of(window.begin(), window.end(),
                        [&](const Played& played) { return played.step == exception.step; }))
            << "there is no step " << exception.step;
    }
}

INSTANTIATE_TEST_SUITE_P(Controls, Script, testing::Range(0, static_cast<int>(controls().size())),
                         [](const testing::TestParamInfo<int>& each) {
                             return std::string(
                                 controls()[static_cast<std::size_t>(each.param)].name);
                         });
