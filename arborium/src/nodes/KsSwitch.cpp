#include <arborium/nodes/KsSwitch.h>

#include <arborium/actions/KsGetBoundingBoxAction.h>
#include <arborium/actions/KsGetMatrixAction.h>
#include <arborium/actions/KsSearchAction.h>
#include <arborium/actions/KsState.h>

KS_NODE_SOURCE(KsSwitch, KsGroup)

KsSwitch::KsSwitch()
{
    KsInstanceBuilder build(classRecord, this);
    build.field("whichChild", whichChild, static_cast<int>(NONE));
}

KsSwitch::~KsSwitch() = default;

void KsSwitch::doAction(KsAction* action)
{
    KsState* state = action->getState();
    int which = whichChild.getValue();
    if (which == INHERIT) which = state->switchValue.setAt() ? state->switchValue.get() : NONE;
    state->edit(state->switchValue) = which;
    traverseChosen(action, which);
}

void KsSwitch::getBoundingBox(KsGetBoundingBoxAction* action)
{
    if (whichChild.getValue() == INHERIT)
        action->usesStateOf(action->getState()->switchValue.setAt());
    doAction(action);
}

void KsSwitch::getMatrix(KsGetMatrixAction* action)
{
    // A path leads on through a child that is not shown too.
    int numIndices = 0;
    const int* indices = nullptr;
    switch (action->getPathCode(numIndices, indices)) {
    case KsAction::IN_PATH:
        if (whichChild.getValue() == ALL)
            getChildren()->traverseInPath(action);
        else
            getChildren()->traverse(action, indices[0], indices[0]);
        break;
    case KsAction::OFF_PATH: doAction(action); break;
    default: break;
    }
}

void KsSwitch::search(KsSearchAction* action)
{
    if (action->isSearchingAll()) {
        KsGroup::search(action);
        return;
    }
    // The group's own way would be to all children.
    KsNode::search(action); // NOLINT(bugprone-parent-virtual-call)
    if (!action->isFound()) doAction(action);
}

void KsSwitch::traverseChosen(KsAction* action, int which)
{
    KsChildList* children = getChildren();
    if (which == ALL) {
        children->traverseInPath(action);
        return;
    }
    if (which < 0 || which >= children->getLength()) return;
    int numIndices = 0;
    const int* indices = nullptr;
    if (action->getPathCode(numIndices, indices) != KsAction::IN_PATH || indices[0] == which)
        children->traverse(action, which, which);
}
