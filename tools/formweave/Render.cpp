#include "Commands.h"

#include "Arguments.h"
#include "DialogFile.h"
#include "Presentation.h"
#include "Session.h"

#include <arborium/base/KbFileHelper.h>

#include <QBuffer>
#include <cstdio>

namespace {

bool drawWindow(KsFormweave* element, const Menus& open, const Arguments& arguments)
{
    ElementWindow window(element);
    window.open(open);
    const QImage image = window.picture(arguments.size, arguments.scale);
    if (image.isNull()) {
        std::fprintf(stderr, "formweave: the element shows nothing in a window\n");
        return false;
    }
    // A picture that cannot be finished leaves an earlier one as it was.
    QBuffer bytes;
    KbString why("no PNG can be made of it");
    const bool made = bytes.open(QIODevice::WriteOnly) && image.save(&bytes, "PNG");
    const auto size = static_cast<std::size_t>(bytes.size());
    if (made && KbFileHelper::writeFileAtomically(KbString::fromUtf8(arguments.output),
                                                  {bytes.data().constData(), size}, &why))
        return true;
    std::fprintf(stderr, "%s: cannot be written: %s\n", arguments.output.c_str(),
                 why.toUtf8().c_str());
    return false;
}

} // namespace

int runRender(const Arguments& arguments)
{
    Session session(Session::OffScreen);
    if (!session.chooseSkin(arguments.skin)) return Failed;
    const DialogFile file(arguments.files.front());
    KsFormweave* element = readElement(file, arguments.id);
    if (!element) return Failed;
    const Menus open = arguments.open.empty() ? Menus() : menusTo(element, arguments.open);
    if (open.empty() && !arguments.open.empty()) return Failed;
    const bool done =
        arguments.presentation == Arguments::Scene
            ? drawPanel(element, open, arguments.size, arguments.scale, arguments.output)
            : drawWindow(element, open, arguments);
    return done ? Done : Failed;
}
