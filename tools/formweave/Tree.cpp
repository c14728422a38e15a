#include "Commands.h"

#include "Arguments.h"
#include "DialogFile.h"
#include "Presentation.h"
#include "Session.h"

#include <formweave/KsDialogComponent.h>
#include <formweave/KsElementContainer.h>
#include <formweave/KsTopLevelDialog.h>

#include <cstdio>

namespace {

// On one line, whatever the text holds.
std::string quoted(const KbString& text)
{
    std::string result = "\"";
    for (const char c : text.toUtf8()) {
        if (c == '\n')
            result += "\\n";
        else if (c == '\t')
            result += "\\t";
        else if (static_cast<unsigned char>(c) < 32)
            result += ' ';
        else
            result += c;
    }
    return result + "\"";
}

// What stands for the element in the window; null for what has no frame of its own.
const QWidget* widgetOf(const KsFormweave* element)
{
    if (const auto* dialog = ksCast<KsTopLevelDialog>(element)) return dialog->getBaseWidget();
    const auto* component = ksCast<KsDialogComponent>(element);
    return component ? component->getWidget() : nullptr;
}

void print(const KsFormweave* element, int depth)
{
    std::string line(static_cast<std::size_t>(2 * depth), ' ');
    line += element->getTypeId().getName().getString();
    if (!element->auditorID.getValue().isEmpty()) line += "  id " + quoted(element->auditorID);
    if (!element->label.getValue().isEmpty()) line += "  label " + quoted(element->label);
    if (const QWidget* widget = widgetOf(element)) {
        line += "  " + std::to_string(widget->width()) + " x " + std::to_string(widget->height());
    }
    std::printf("%s\n", line.c_str());
    const KsElementList* below = element->getElements();
    for (int i = 0; below && i < below->count(); ++i) print(below->at(i), depth + 1);
}

// A layout gives the sizes only to what is shown: the dialogs of launchers too.
void showDialogs(KsFormweave* element)
{
    if (auto* dialog = ksCast<KsTopLevelDialog>(element)) dialog->show();
    const KsElementList* below = element->getElements();
    for (int i = 0; below && i < below->count(); ++i) showDialogs(below->at(i));
}

} // namespace

int runTree(const Arguments& arguments)
{
    const Session session(Session::OffScreen);
    const DialogFile file(arguments.files.front());
    KsFormweave* first = readElement(file, arguments.id);
    if (!first) return Failed;
    const std::vector<KsFormweave*> elements =
        arguments.id.empty() ? file.elements() : std::vector<KsFormweave*>{first};
    for (KsFormweave* element : elements) {
        ElementWindow window(element);
        window.show();
        showDialogs(element);
        QApplication::processEvents();
        print(element, 0);
    }
    return Done;
}
