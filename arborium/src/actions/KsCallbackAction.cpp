#include <arborium/actions/KsCallbackAction.h>

#include <arborium/nodes/KsNode.h>

KsCallbackAction::KsCallbackAction() = default;

KsType KsCallbackAction::getClassTypeId()
{
    static const KsType type = KsType::createType(KsAction::getClassTypeId(), "CallbackAction");
    return type;
}

void KsCallbackAction::setPreCallback(Callback callback)
{
    m_pre = callback ? std::make_shared<const Callback>(std::move(callback)) : nullptr;
}

void KsCallbackAction::setPostCallback(Callback callback)
{
    m_post = callback ? std::make_shared<const Callback>(std::move(callback)) : nullptr;
}

void KsCallbackAction::visit(KsNode* node)
{
    // Beside an applied path, nodes are met for their effect on the state only.
    const bool told = getPathCode() != OFF_PATH;
    const auto call = [&](std::shared_ptr<const Callback> function) {
        return told && function ? (*function)(this, node) : CONTINUE;
    };
    Response response = call(m_pre);
    if (response == CONTINUE) node->callback(this);
    if (response != ABORT && !isTerminated()) response = call(m_post);
    if (response == ABORT) terminate();
}
