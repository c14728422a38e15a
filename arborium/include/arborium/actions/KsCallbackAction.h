#pragma once

#include <arborium/actions/KsAction.h>

#include <functional>

/// Calls functions before and behind each node of a traversal: for walks of an application's own,
/// with the traversal state at hand.
class ARBORIUM_API KsCallbackAction : public KsAction {
public:
    /// What a function wants next. PRUNE, of the function before a node, leaves out the node's
    /// effect and what is below it; the function behind the node is called all the same. ABORT
    /// ends the traversal.
    enum Response { CONTINUE, PRUNE, ABORT };
    using Callback = std::function<Response(KsCallbackAction*, const KsNode*)>;
    KsCallbackAction();
    KsType getTypeId() const override { return getClassTypeId(); }
    static KsType getClassTypeId();
    void setPreCallback(Callback callback) { m_pre = std::move(callback); }
    void setPostCallback(Callback callback) { m_post = std::move(callback); }

protected:
    void visit(KsNode* node) override;

private:
    Callback m_pre;
    Callback m_post;
};
