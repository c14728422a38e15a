#include <arborium/nodes/KsFont.h>

#include <arborium/actions/KsAction.h>
#include <arborium/actions/KsState.h>

#include <cmath>

namespace {
const char* const s_defaultName = "defaultFont";
} // namespace

KS_NODE_SOURCE(KsFont, KsNode)

KsFont::KsFont()
{
    KsInstanceBuilder build(classRecord, this);
    build.field("name", name, KbName(s_defaultName));
    build.field("size", size, 10.0f);
}

KsFont::~KsFont() = default;

void KsFont::doAction(KsAction* action)
{
    KsState* state = action->getState();
    KsFontState& font = state->edit(state->font);
    const KbName& family = name.getValue();
    font.name = family.isEmpty() || family == s_defaultName ? KsFontState().name
                                                            : KbString(family.getString());
    if (std::isfinite(size.getValue()) && size.getValue() > 0) font.size = size.getValue();
}
