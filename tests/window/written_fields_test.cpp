// What of a dialog goes to files: every field of every class, and what building, showing, resizing
// and a person's actions change in the written text. All else stays as it was read.

#include "Window.h"

#include <arborium/actions/KsGetBoundingBoxAction.h>
#include <arborium/actions/KsHandleEventAction.h>
#include <arborium/actions/KsPath.h>
#include <arborium/actions/KsSearchAction.h>
#include <arborium/events/KsEvent.h>
#include <arborium/kits/KsNodekitCatalog.h>
#include <arborium/nodes/KsCube.h>
#include <arborium/nodes/KsOrthographicCamera.h>
#include <arborium/nodes/KsSwitch.h>
#include <formweave/KsTabDialog.h>

#include <cmath>
#include <map>
#include <set>
#include <sstream>

namespace {

// Every class of elements that files may hold.
std::vector<KsType> elementTypes()
{
    std::vector<KsType> types;
    KsType::forEach([&](KsType type) {
        if (type.isDerivedFrom(KsFormweave::getClassTypeId()) && type.canCreateInstance())
            types.push_back(type);
    });
    return types;
}

KsRef<KsFormweave> create(KsType type)
{
    return KsRef<KsFormweave>(static_cast<KsFormweave*>(type.createInstance()));
}

template <class Field, class Value> bool putAll(KsField* field, const std::vector<Value>& values)
{
    auto* typed = ksCast<Field>(field);
    for (std::size_t i = 0; typed && i < values.size(); ++i)
        typed->set1Value(static_cast<int>(i), values[i]);
    return typed != nullptr;
}

template <class Field, class Value> bool put(KsField* field, const Value& value)
{
    auto* typed = ksCast<Field>(field);
    if (typed) *typed = value;
    return typed != nullptr;
}

// Another value than that of the class; FALSE for a kind of field that is not known here.
bool change(KsField* field, int variant = 0)
{
    if (auto* f = ksCast<KsSFEnum>(field)) {
        const int before = *f;
        const std::vector<int>& values = f->getEnums()->values;
        for (std::size_t i = 0; i < values.size() && *f == before; ++i)
            f->setValue(values[(i + static_cast<std::size_t>(variant)) % values.size()]);
        return *f != before;
    }
    const auto* flagField = ksCast<KsSFBool>(field);
    const bool flag = flagField && *flagField;
    return put<KsSFBool>(field, !flag) || put<KsSFInt32>(field, 37 + variant) ||
           put<KsSFFloat>(field, 0.1f) || put<KsSFString>(field, u"\"é\" %d \\n {}\n#\t\u0416") ||
           put<KsSFFilePathString>(field, "a b.txt") ||
           put<KsSFVec2i32>(field, KbVec2i32(-3, 40)) ||
           put<KsSFVec3f>(field, KbVec3f(1.5f, -2, 1e-7f)) ||
           putAll<KsMFString, KbString>(field, {"first", "", u"[ \"\u0416\", ]"}) ||
           putAll<KsMFColor, KbColor>(field, {KbColor(1, 0.5f, 0), KbColor(0, 0.1f, 1)});
}

using Lines = std::map<std::string, std::string>;

// A written text as "0:TopLevelDialog/2:DialogCheckBox.width" -> "120".
Lines linesOf(const std::string& text)
{
    Lines lines;
    std::vector<std::pair<std::string, int>> open{{"", 0}};
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) {
        const std::size_t start = line.find_first_not_of(' ');
        if (start == std::string::npos || line[start] == '#') continue;
        line.erase(0, start);
        // The values of a list stand on lines of their own.
        if (line.back() == '[') {
            std::string value;
            while (line.back() != ']' && std::getline(in, value))
                line += value.substr(value.find_first_not_of(' ') - 1);
        }
        if (line.back() == '{') {
            const std::string type = line.substr(0, line.find(' '));
            const std::string path =
                open.back().first + "/" + std::to_string(open.back().second++) + ":" + type;
            open.emplace_back(path, 0);
        } else if (line == "}") {
            open.pop_back();
        } else {
            const std::size_t blank = line.find(' ');
            lines[open.back().first + "." + line.substr(0, blank)] = line.substr(blank + 1);
        }
    }
    EXPECT_EQ(open.size(), 1u) << text;
    return lines;
}

using Fields = std::set<std::string>;

// "DialogCheckBox.width" for each field that one of the texts holds and the other does not, or with
// another value.
Fields difference(const std::string& before, const std::string& after)
{
    const Lines a = linesOf(before), b = linesOf(after);
    Fields fields;
    const auto add = [&](const std::string& path) {
        fields.insert(path.substr(path.rfind(':') + 1));
    };
    for (const auto& [path, value] : a) {
        if (!b.count(path) || b.at(path) != value) add(path);
    }
    for (const auto& [path, value] : b) {
        if (!a.count(path)) add(path);
    }
    return fields;
}

class WrittenFields : public WindowBase {
protected:
    static std::string again(const std::string& text)
    {
        const KsRef<KsSeparator> scene = readScene(text);
        EXPECT_TRUE(scene) << text;
        return scene && scene->getNumChildren() == 1 ? written(scene->getChild(0)) : "";
    }
    /// The element in a dialog of its own, unless it is one.
    static std::string inDialog(KsFormweave* element)
    {
        if (element->isOfType(KsTopLevelDialog::getClassTypeId())) return written(element);
        const KsRef<KsTopLevelDialog> dialog(new KsTopLevelDialog);
        if (auto* child = ksCast<KsTopComponent>(element)) dialog->addChild(child);
        return again(written(dialog.get()));
    }
    /// Visits the fields that files hold: all but the parts of the 3D form.
    template <class Visit> static void forEachField(KsFormweave* element, Visit&& visit)
    {
        const KsFieldData* data = element->getFieldData();
        for (int i = 0; i < data->getNumFields(); ++i) {
            if (!data->isPartField(i))
                visit(data->getField(element, i), std::string(data->getFieldName(i).getString()));
        }
    }
};

// A build repairs a selection that no item has, and brings a value and its limits together.
const Fields repaired{"DialogComboBox.selectedItem", "DialogRadioButtons.selectedItem",
                      "DialogIntegerSlider.value",   "DialogIntegerSlider.min",
                      "DialogIntegerSlider.max",     "DialogRealSlider.value",
                      "DialogRealSlider.min",        "DialogRealSlider.max",
                      "TabDialog.selectedPage"};

// What was built in a scene writes what was read, but for repairs.
void expectAsRead(KsFormweave* element, const std::string& text)
{
    const Fields changed = difference(text, written(element));
    if (changed.empty()) {
        EXPECT_EQ(written(element), text);
    }
    for (const std::string& each : changed) EXPECT_EQ(repaired.count(each), 1u) << each << text;
}

const Fields sizes{"width", "height", "minWidth", "minHeight", "maxWidth", "maxHeight"};

Fields of(const std::string& type, const Fields& names)
{
    Fields all;
    for (const std::string& name : names) all.insert(type + "." + name);
    return all;
}

Fields operator+(Fields a, const Fields& b)
{
    a.insert(b.begin(), b.end());
    return a;
}

} // namespace

// Fields of every class.

TEST_F(WrittenFields, everyClassIsThere)
{
    Fields names;
    for (KsType type : elementTypes()) names.insert(type.getName().getString());
    for (const char* name : {"Formweave", "TopComponent", "DialogComponent", "DialogCheckBox",
                             "DialogGroup", "RowDialog", "ColumnDialog", "TopLevelDialog"})
        EXPECT_EQ(names.count(name), 1u) << name;
}

TEST_F(WrittenFields, withoutWishesAnElementIsWrittenEmpty)
{
    for (KsType type : elementTypes())
        EXPECT_TRUE(linesOf(written(create(type).get())).empty()) << type.getName().getString();
}

TEST_F(WrittenFields, eachFieldAloneReadsBackAsItWasWritten)
{
    for (KsType type : elementTypes()) {
        const std::string name = type.getName().getString();
        std::vector<std::string> fields;
        forEachField(create(type).get(),
                     [&](KsField*, const std::string& field) { fields.push_back(field); });
        EXPECT_GE(fields.size(), 4u) << name;
        for (const std::string& fieldName : fields) {
            for (int variant = 0; variant < 3; ++variant) {
                const KsRef<KsFormweave> element = create(type);
                KsField* field = element->getField(fieldName.c_str());
                ASSERT_TRUE(field) << name << "." << fieldName;
                EXPECT_TRUE(field->isDefault()) << name << "." << fieldName;
                ASSERT_TRUE(change(field, variant))
                    << "no value is known for " << name << "." << fieldName;
                const std::string text = written(element.get());
                const Lines lines = linesOf(text);
                ASSERT_EQ(lines.size(), 1u) << text;
                EXPECT_EQ(lines.begin()->first, "/0:" + name + "." + fieldName);
                const KsRef<KsFormweave> copy = readNode<KsFormweave>(text);
                ASSERT_TRUE(copy) << text;
                EXPECT_EQ(copy->getTypeId(), type);
                EXPECT_TRUE(copy->getField(fieldName.c_str())->isSame(*field)) << text;
                EXPECT_EQ(written(copy.get()), text);
                EXPECT_EQ(again(text), text);
            }
        }
    }
}

TEST_F(WrittenFields, allFieldsTogetherReadBackAsTheyWereWritten)
{
    for (KsType type : elementTypes()) {
        const KsRef<KsFormweave> element = create(type);
        std::size_t count = 0;
        forEachField(element.get(), [&](KsField* field, const std::string& name) {
            EXPECT_TRUE(change(field)) << name;
            ++count;
        });
        const std::string text = written(element.get());
        EXPECT_EQ(linesOf(text).size(), count) << text;
        EXPECT_EQ(again(text), text);
        const std::string bytes = writtenBinary(element.get());
        const KsRef<KsFormweave> copy = readNode<KsFormweave>(bytes);
        ASSERT_TRUE(copy) << text;
        EXPECT_EQ(written(copy.get()), text);
        EXPECT_EQ(writtenBinary(copy.get()), bytes);
    }
}

TEST_F(WrittenFields, partsThatAFileGivesReadBackAsTheyWereWritten)
{
    for (KsType type : elementTypes()) {
        const KsNodekitCatalog* catalog = create(type)->getNodekitCatalog();
        for (int part = 0; part < catalog->getNumEntries(); ++part) {
            const KbName name = catalog->getName(part);
            if (!catalog->isPublic(part) || catalog->getType(part) != KsGroup::getClassTypeId())
                continue;
            const KsRef<KsFormweave> element = create(type);
            KsRef<KsGroup> form(new KsGroup);
            form->addChild(new KsCube);
            ASSERT_TRUE(element->setPart(name, form.get())) << name.getString();
            const std::string text = written(element.get());
            EXPECT_NE(text.find(name.getString()), std::string::npos) << text;
            EXPECT_NE(text.find("Cube"), std::string::npos) << text;
            EXPECT_EQ(again(text), text);
        }
    }
}

TEST_F(WrittenFields, aValueThatEqualsTheDefaultIsKeptIfTheFileHasIt)
{
    const std::string text = written(read(R"(
TopLevelDialog { width 0 maxWidth 16777215 resizable TRUE label ""
    RowDialog { minWidth 0 rowSpacing 0 DialogCheckBox { height 0 maxHeight 0 state FALSE } } })"));
    EXPECT_EQ(linesOf(text).size(), 9u) << text;
    EXPECT_EQ(again(text), text);
}

// Built in a scene only, a dialog writes what it was read from.

TEST_F(WrittenFields, aScenesDialogWritesEachFieldAsItWasRead)
{
    for (KsType type : elementTypes()) {
        std::vector<std::string> fields;
        forEachField(create(type).get(),
                     [&](KsField*, const std::string& name) { fields.push_back(name); });
        for (const std::string& fieldName : fields) {
            const KsRef<KsFormweave> element = create(type);
            change(element->getField(fieldName.c_str()));
            const std::string text = inDialog(element.get());
            const auto dialog = readNode<KsTopLevelDialog>(text);
            ASSERT_TRUE(dialog) << text;
            measure(dialog.get());
            EXPECT_TRUE(dialog->isBuilt3D());
            expectAsRead(dialog.get(), text);
        }
    }
}

TEST_F(WrittenFields, aScenesDialogWritesAllFieldsAsTheyWereRead)
{
    for (KsType type : elementTypes()) {
        const KsRef<KsFormweave> element = create(type);
        forEachField(element.get(), [](KsField* field, const std::string&) { change(field); });
        const std::string text = inDialog(element.get());
        const auto dialog = readNode<KsTopLevelDialog>(text);
        ASSERT_TRUE(dialog) << text;
        measure(dialog.get());
        measure(dialog.get());
        expectAsRead(dialog.get(), text);
    }
}

TEST_F(WrittenFields, aScenesDialogWritesValuesThatEqualTheDefaultAsTheyWereRead)
{
    auto* dialog = read(R"(
TopLevelDialog { width 0 minWidth 0 maxWidth 16777215 maxHeight 32767
    DialogCheckBox { width 0 maxWidth 32767 maxHeight 0 } })");
    const std::string text = written(dialog);
    measure(dialog);
    EXPECT_EQ(written(dialog), text);
}

TEST_F(WrittenFields, aScenesElementWithoutADialogWritesAllFieldsAsTheyWereRead)
{
    for (KsType type : elementTypes()) {
        const KsRef<KsFormweave> element = create(type);
        forEachField(element.get(), [](KsField* field, const std::string&) { change(field); });
        const std::string text = written(element.get());
        const auto copy = readNode<KsFormweave>(text);
        ASSERT_TRUE(copy) << text;
        measure(copy.get());
        expectAsRead(copy.get(), text);
    }
}

TEST_F(WrittenFields, whatTheApplicationSetsInASceneIsWrittenAsItSetIt)
{
    auto* dialog = read("TopLevelDialog { DialogCheckBox { label \"a\" } }");
    measure(dialog);
    const std::string text = written(dialog);
    auto* child = static_cast<KsDialogCheckBox*>(dialog->getChild(0));
    dialog->width = 350;
    child->minHeight = 40;
    child->state = true;
    EXPECT_EQ(difference(text, written(dialog)),
              (Fields{"TopLevelDialog.width", "DialogCheckBox.minHeight", "DialogCheckBox.state"}));
    dialog->width = 0;
    child->minHeight = 0;
    child->state.setValue(false);
    child->state.setDefault(true);
    EXPECT_EQ(written(dialog), text) << "a size of 0 asks for nothing";
}

// In a window only the fields of sizes are written by a build, whatever the file holds.

TEST_F(WrittenFields, aWindowsBuildWritesNoFieldButSizes)
{
    for (KsType type : elementTypes()) {
        const std::string name = type.getName().getString();
        std::vector<std::string> fields{""};
        forEachField(create(type).get(),
                     [&](KsField*, const std::string& field) { fields.push_back(field); });
        for (const std::string& fieldName : fields) {
            const KsRef<KsFormweave> element = create(type);
            forEachField(element.get(), [&](KsField* field, const std::string& each) {
                if (fieldName.empty() || each == fieldName) change(field);
            });
            const std::string text = inDialog(element.get());
            const auto dialog = readNode<KsTopLevelDialog>(text);
            ASSERT_TRUE(dialog) << text;
            dialog->buildDialog();
            for (const std::string& each : difference(text, written(dialog.get()))) {
                const std::size_t dot = each.find('.');
                EXPECT_TRUE(sizes.count(each.substr(dot + 1)) || repaired.count(each))
                    << each << " of\n"
                    << text;
            }
            delete dialog->getBaseWidget();
        }
    }
}

// The list. What is not in it stays as it was read.

namespace {

const char* const form = R"(
TopLevelDialog {
    label "Form"
    position 10 10
    position3D 1 2 0
    width 420
    height 360
    minWidth 50
    minHeight 40
    maxWidth 900
    maxHeight 800
    margin 3
    rowSpacing 2
    DialogCheckBox { label "plain" auditorID "plain" }
    DialogCheckBox {
        label "sized" width 150 height 40 minWidth 60 minHeight 30 maxWidth 500 maxHeight 90
    }
    RowDialog {
        width 200 height 90 minWidth 80 rowSpacing 3
        DialogCheckBox { label "inner" width 130 onString "on" offString "off" }
    }
    ColumnDialog {
        columnSpacing 4 margin 2 edgeStyle SHADOW_IN
        DialogCheckBox { labelVisibility FALSE }
        DialogCheckBox { enable FALSE edgeStyle SHADOW_OUT }
    }
}
)";

// The same, with sizes that their limits do not bear, or that say what is so anyway.
const char* const oddForm = R"(
TopLevelDialog {
    label "Odd"
    DialogCheckBox { label "small" width 10 height 5 }
    DialogCheckBox { label "open" maxWidth 32767 maxHeight 32767 }
    DialogCheckBox {
        label "fixed" width 120 height 30 fixedWidth TRUE fixedHeight TRUE
        minWidth 20 minHeight 10 maxWidth 300 maxHeight 60
    }
}
)";

const char* const tabs = R"(
TopLevelDialog {
    width 320
    TabDialog {
        width 300 height 120 margin 2
        DialogCheckBox { label "first" width 100 height 30 }
        DialogCheckBox { label "second" onString "on" offString "off" }
    }
}
)";

// A scene in which a pixel of the picture is a unit of the panel, and a person who clicks in it.
class Scene {
public:
    explicit Scene(KsTopLevelDialog* dialog) : m_dialog(dialog)
    {
        m_scene->addChild(dialog);
        const KbBox3f box = measure(dialog);
        m_camera->height = size;
        m_camera->position = box.getCenter() + KbVec3f(0, 0, 500);
        m_camera->farDistance = 2000;
        m_scene->insertChild(m_camera, 0);
    }
    KbVec2f onPicture(const KbVec3f& point) const
    {
        const KbVec3f camera = m_camera->position;
        return KbVec2f(point[0] - camera[0] + size / 2, point[1] - camera[1] + size / 2);
    }
    void click(const KbVec2f& place)
    {
        send(KsMouseButtonEvent(KsMouseButtonEvent::BUTTON1, KsButtonEvent::DOWN, place));
        send(KsMouseButtonEvent(KsMouseButtonEvent::BUTTON1, KsButtonEvent::UP, place));
    }
    void clickCheckBox(KsDialogCheckBox* box)
    {
        KbVec2i32 control, place;
        box->get3DComponentSize(control, place);
        click(onPicture(
            measure(box).getCenter() +
            KbVec3f(static_cast<float>(place[0]) - static_cast<float>(control[0]) / 2 + 10, 0, 0)));
    }
    void clickTab(KsTabDialog* dialog, int index)
    {
        auto* row = ksCast<KsGroup>(dialog->getAnyPart("pagesSep", false));
        for (int i = 0; row && i < row->getNumChildren(); ++i) {
            KsSearchAction search;
            search.setNode(row->getChild(i));
            search.apply(m_scene.get());
            if (!ksCast<KsSwitch>(row->getChild(i)) || index-- != 0 || !search.getPath()) continue;
            KsGetBoundingBoxAction box{KbViewportRegion(1024, 1024)};
            box.apply(search.getPath());
            return click(onPicture(box.getBoundingBox().getCenter()));
        }
        ADD_FAILURE() << "there is no such tab";
    }
    void clickMinimise() { click(corner() + KbVec2f(m_dialog->getTopLevelSize()[0] - 12, -12)); }
    void dragPanel()
    {
        const KbVec2f from = corner() + KbVec2f(m_dialog->getTopLevelSize()[0] / 2, -6);
        send(KsMouseButtonEvent(KsMouseButtonEvent::BUTTON1, KsButtonEvent::DOWN, from));
        send(KsLocation2Event(from + KbVec2f(30, 20)));
        send(KsMouseButtonEvent(KsMouseButtonEvent::BUTTON1, KsButtonEvent::UP,
                                from + KbVec2f(30, 20)));
    }

private:
    static constexpr float size = 1024;
    KbVec2f corner() const
    {
        const KbVec3f place = m_dialog->position3D;
        return onPicture(KbVec3f(place[0], -place[1], place[2]));
    }
    void send(const KsEvent& event)
    {
        m_events.setEvent(&event);
        m_events.apply(m_scene.get());
        measure(m_scene.get());
    }
    KsTopLevelDialog* m_dialog;
    KsRef<KsSeparator> m_scene{new KsSeparator};
    KsOrthographicCamera* m_camera = new KsOrthographicCamera;
    KsHandleEventAction m_events{KbViewportRegion(1024, 1024)};
};

KsDialogCheckBox* firstBox(KsTopLevelDialog* dialog)
{
    return static_cast<KsDialogCheckBox*>(dialog->getChild(0));
}

KsTabDialog* tabsOf(KsTopLevelDialog* dialog)
{
    return static_cast<KsTabDialog*>(dialog->getChild(0));
}

void show(KsTopLevelDialog* dialog)
{
    dialog->buildDialog();
    dialog->show();
    QApplication::processEvents();
}

void clickInWindow(KsTopLevelDialog* dialog)
{
    QCheckBox* toggle = firstBox(dialog)->getWidget()->findChild<QCheckBox*>();
    QTest::mouseClick(toggle, Qt::LeftButton, Qt::NoModifier, QPoint(8, toggle->height() / 2));
}

struct Written {
    const char* name;
    const char* text;
    void (*act)(KsTopLevelDialog*);
    Fields fields; ///< What the written text differs in.
};

void PrintTo(const Written& written, std::ostream* out) { *out << written.name; }

// A window forgets what it was asked for, and its check boxes take the size that its layout gives;
// a rebuild forgets what its components were asked for.
const Fields window = of("TopLevelDialog", sizes);
const Fields layout = of("DialogCheckBox", {"width", "height"});
// A panel shares its room out among all its children; where a window stands beside it they keep it.
const Fields panel = layout + of("RowDialog", {"width", "height"});

class WrittenList : public WrittenFields, public testing::WithParamInterface<Written> {};

} // namespace

TEST_P(WrittenList, differsInExactlyItsFields)
{
    auto* dialog = read(GetParam().text);
    const std::string before = written(dialog);
    EXPECT_EQ(again(before), before);
    GetParam().act(dialog);
    const std::string after = written(dialog);
    EXPECT_EQ(difference(before, after), GetParam().fields) << after;
    EXPECT_EQ(again(after), after);
}

INSTANTIATE_TEST_SUITE_P(
    All, WrittenList,
    testing::Values(
        Written{"untouched", form, [](KsTopLevelDialog*) {}, {}},
        Written{"builtInAScene", form, [](KsTopLevelDialog* d) { measure(d); }, {}},
        Written{"builtInASceneOdd", oddForm, [](KsTopLevelDialog* d) { measure(d); }, {}},
        Written{"builtAsAWindow", form, [](KsTopLevelDialog* d) { d->buildDialog(); }, window},
        Written{"builtAsAWindowOdd", oddForm, [](KsTopLevelDialog* d) { d->buildDialog(); },
                of("DialogCheckBox", sizes)},
        Written{"builtInASceneAndThenAsAWindow", form,
                [](KsTopLevelDialog* d) {
                    measure(d);
                    d->buildDialog();
                },
                panel},
        Written{"builtAsAWindowAndThenInAScene", form,
                [](KsTopLevelDialog* d) {
                    d->buildDialog();
                    measure(d);
                },
                window + panel},
        Written{"shownAsAWindow", form, [](KsTopLevelDialog* d) { show(d); }, window + layout},
        Written{"aWindowThatIsResized", form,
                [](KsTopLevelDialog* d) {
                    show(d);
                    d->getBaseWidget()->resize(600, 500);
                    QApplication::processEvents();
                },
                window + layout},
        Written{"aWindowThatIsMoved", form,
                [](KsTopLevelDialog* d) {
                    show(d);
                    d->getBaseWidget()->move(300, 200);
                    QApplication::processEvents();
                },
                window + layout},
        Written{"aWindowThatIsHiddenAndClosed", form,
                [](KsTopLevelDialog* d) {
                    show(d);
                    d->hide();
                    d->show();
                    d->getBaseWidget()->close();
                },
                window + layout},
        Written{"aClickInAWindow", form,
                [](KsTopLevelDialog* d) {
                    show(d);
                    clickInWindow(d);
                },
                window + layout + Fields{"DialogCheckBox.state"}},
        Written{"aWindowThatIsBuiltAnew", form,
                [](KsTopLevelDialog* d) {
                    d->buildDialog();
                    d->updateDialogBuild(1);
                },
                window + layout + of("RowDialog", {"width", "height"})},
        Written{"aClickInAScene",
                form,
                [](KsTopLevelDialog* d) { Scene(d).clickCheckBox(firstBox(d)); },
                {"DialogCheckBox.state"}},
        Written{"aPanelThatIsDragged",
                form,
                [](KsTopLevelDialog* d) { Scene(d).dragPanel(); },
                {"TopLevelDialog.position3D"}},
        Written{"aPanelThatIsMinimised", form,
                [](KsTopLevelDialog* d) { Scene(d).clickMinimise(); },
                of("TopLevelDialog", {"minimized", "minimized3DPosition"})},
        Written{
            "aPageThatIsOpenedInAWindow", tabs,
            [](KsTopLevelDialog* d) {
                show(d);
                auto* bar = tabsOf(d)->getWidget()->findChild<QTabBar*>();
                QTest::mouseClick(bar, Qt::LeftButton, Qt::NoModifier, bar->tabRect(1).center());
            },
            layout + Fields{"TopLevelDialog.width", "TabDialog.width", "TabDialog.selectedPage"}},
        Written{"aPageThatIsOpenedInAScene",
                tabs,
                [](KsTopLevelDialog* d) { Scene(d).clickTab(tabsOf(d), 1); },
                {"TabDialog.selectedPage"}},
        Written{"aPageThatTheApplicationOpens",
                tabs,
                [](KsTopLevelDialog* d) {
                    measure(d);
                    tabsOf(d)->selectedPage = 1;
                },
                {"TabDialog.selectedPage"}},
        Written{"aClickInASceneAfterAWindow", form,
                [](KsTopLevelDialog* d) {
                    show(d);
                    Scene(d).clickCheckBox(firstBox(d));
                },
                window + panel + Fields{"DialogCheckBox.state"}}),
    [](const auto& each) { return std::string(each.param.name); });

TEST_F(WrittenFields, twoClicksLeaveTheStateAsAFileWouldHaveIt)
{
    auto* dialog = read("TopLevelDialog { DialogCheckBox { label \"a\" state TRUE } }");
    measure(dialog);
    const std::string before = written(dialog);
    Scene scene(dialog);
    scene.clickCheckBox(firstBox(dialog));
    EXPECT_EQ(difference(before, written(dialog)), Fields{"DialogCheckBox.state"});
    scene.clickCheckBox(firstBox(dialog));
    EXPECT_EQ(written(dialog), before);
}
