#include <arborium/nodes/KsPickStyle.h>

#include <arborium/actions/KsAction.h>
#include <arborium/actions/KsState.h>

KS_NODE_SOURCE(KsPickStyle, KsNode)

KsPickStyle::KsPickStyle()
{
    KsInstanceBuilder build(classRecord, this);
    build.enums("Style",
                {{"SHAPE", SHAPE}, {"BOUNDING_BOX", BOUNDING_BOX}, {"UNPICKABLE", UNPICKABLE}});
    build.enumField("style", style, "Style", SHAPE);
}

KsPickStyle::~KsPickStyle() = default;

void KsPickStyle::doAction(KsAction* action)
{
    KsState* state = action->getState();
    KsPickMode& mode = state->edit(state->pickMode);
    switch (style.getValue()) {
    case BOUNDING_BOX: mode = KsPickMode::BoundingBox; break;
    case UNPICKABLE: mode = KsPickMode::Unpickable; break;
    default: mode = KsPickMode::Shape; break;
    }
}
