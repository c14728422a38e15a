#include <arborium/actions/KsCallbackAction.h>

#include <arborium/nodes/KsNode.h>

KsCallbackAction::KsCallbackAction() = default;

KsType KsCallbackAction::getClassTypeId()
{
    static const KsType type = KsType::createType(KsAction::getClassTypeId(), "CallbackAction");
    return type;
}

void KsCallbackAction::visit(KsNode* node)
{
    // Beside an applied path, nodes are met for their effect on the state only.
    const bool told = getPathCode() != OFF_PATH;
    Response response = told && m_pre ? m_pre(this, node) : CONTINUE;
    if (response == CONTINUE) node->callback(this);
    if (response != ABORT && !isTerminated() && told && m_post) response = m_post(this, node);
    if (response == ABORT) terminate();
}
