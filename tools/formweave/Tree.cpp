#include "Commands.h"

#include "Arguments.h"
#include "DialogFile.h"
#include "Presentation.h"
#include "Session.h"

#include <formweave/KsElementContainer.h>

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

void print(const KsFormweave* element, int depth)
{
    std::string line(static_cast<std::size_t>(2 * depth), ' ');
    line += element->getTypeId().getName().getString();
    if (!element->auditorID.getValue().isEmpty()) line += "  id " + quoted(element->auditorID);
    if (!element->label.getValue().isEmpty()) line += "  label " + quoted(element->label);
    const auto* width = ksCast<KsSFInt32>(element->getField("width"));
    const auto* height = ksCast<KsSFInt32>(element->getField("height"));
    if (width && height) {
        line +=
            "  " + std::to_string(width->getValue()) + " x " + std::to_string(height->getValue());
    }
    std::printf("%s\n", line.c_str());
    const KsElementList* below = element->getElements();
    for (int i = 0; below && i < below->count(); ++i) print(below->at(i), depth + 1);
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
        QApplication::processEvents();
        print(element, 0);
    }
    return Done;
}
