#include <arborium/nodes/KsTransformation.h>

#include <arborium/actions/KsGetMatrixAction.h>
#include <arborium/actions/KsState.h>

KS_ABSTRACT_NODE_SOURCE(KsTransformation, KsNode)

KsTransformation::KsTransformation() { KsInstanceBuilder build(classRecord, this); }

KsTransformation::~KsTransformation() = default;

KbMatrix KsTransformation::getLocalMatrix() const
{
    KbMatrix matrix;
    multInto(matrix);
    return matrix;
}

void KsTransformation::doAction(KsAction* action)
{
    KsState* state = action->getState();
    multInto(state->edit(state->modelMatrix));
}

void KsTransformation::getMatrix(KsGetMatrixAction* action) { multInto(action->editMatrix()); }
