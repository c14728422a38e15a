#pragma once

#include <arborium/actions/KsAction.h>

#include <functional>
#include <memory>

/// Calls functions before and behind each node of a traversal: for walks of an application's own,
/// with the traversal state at hand.
class ARBORIUM_API KsCallbackAction : public KsAction {
public:
    /// What a function wants next. PRUNE, of the function before a node, leaves out the node's
    /// effect and what is below it; the function behind the node is called all the same. ABORT
    /// ends the traversal.
    enum Response { CONTINUE, PRUNE, ABORT };
    /// Finds the state in the action, and may give it other functions: the next call is theirs.
    /// Nodes that only affect the state of a path are not told.
    using Callback = std::function<Response(KsCallbackAction*, const KsNode*)>;
    KsCallbackAction();
    KsType getTypeId() const override { return getClassTypeId(); }
    static KsType getClassTypeId();
    /// Before each node, and before its children. An empty function takes it back.
    void setPreCallback(Callback callback);
    /// Behind each node and its children. PRUNE is as CONTINUE.
    void setPostCallback(Callback callback);

protected:
    void visit(KsNode* node) override;

private:
    // Shared with the visit that calls them: they may replace themselves.
    std::shared_ptr<const Callback> m_pre;
    std::shared_ptr<const Callback> m_post;
};
