// One script of user actions, played on each presentation in turn: what auditors hear and what the
// fields hold afterwards is the same, but for the exceptions in the table below.

#include <arborium/fields/KsFieldData.h>
#include <arborium/io/KsOutput.h>
#include <dialog/Stage.h>

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
    {"DialogCheckBox", "press, and let go elsewhere",
     "a scene tells a click by where the press was, a widget also by where it ends"},
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

Step application(const char* name, std::function<void(Stage&)> act) { return {name, act, act}; }

std::vector<Control> controls()
{
    const auto box = [](Stage& stage, const char* id) {
        return static_cast<KsDialogCheckBox*>(element(stage, id));
    };
    return {
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
