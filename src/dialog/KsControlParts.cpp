#include "KsControlParts.h"

#include <arborium/nodes/KsSeparator.h>
#include <arborium/nodes/KsSwitch.h>

namespace {

KsType typeOf(KsPartKind kind)
{
    if (kind == KsPartKind::Look) return KsGroup::getClassTypeId();
    return kind == KsPartKind::Switch ? KsSwitch::getClassTypeId() : KsSeparator::getClassTypeId();
}

} // namespace

void ksAddParts(KsInstanceBuilder& build, std::initializer_list<KsPartRow> rows)
{
    if (!build.isFirst()) return;
    for (const KsPartRow& row : rows) {
        const bool isPublic =
            row.kind == KsPartKind::Look || row.kind == KsPartKind::PublicSeparator;
        build.part(row.name, typeOf(row.kind), row.parent, isPublic);
    }
}

void ksAddLabelParts(KsInstanceBuilder& build)
{
    ksAddParts(build, {{"labelSep", KsPartKind::Separator, "geomSwitch"},
                       {"labelSwitch", KsPartKind::Switch, "labelSep"},
                       {"labelProp", KsPartKind::Look, "labelSwitch"}});
}
