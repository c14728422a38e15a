#pragma once

#include <arborium/actions/KsPath.h>
#include <arborium/base/KsTypedObject.h>

class KbBox3f;
class KsNode;
class KsState;

/// Base of the operations that traverse a scene. An action may be applied again, and by a node
/// also while it traverses: the outer traversal then goes on where it was, with what the inner one
/// has gathered.
class ARBORIUM_API KsAction : public KsTypedObject {
public:
    ~KsAction() override;
    KsAction(const KsAction&) = delete;
    KsAction& operator=(const KsAction&) = delete;
    static KsType getClassTypeId();

    /// Traverses from `root`, which is kept alive for the time. Null is an empty scene: results are
    /// those of nothing.
    virtual void apply(KsNode* root);
    /// Traverses the nodes of the path (hidden ones too), what is below its last node, and what
    /// affects their state. Null is an empty scene.
    virtual void apply(KsPath* path);
    /// The same for one path after the other; null paths are passed over. What an action gathers it
    /// gathers from all of them where its class says so, else from the last one.
    virtual void apply(const KsPathList& paths);

    /// The traversal state, for nodes that set or read it. Null while nothing is traversed.
    KsState* getState() const { return m_state; }
    /// What is being traversed, from the root of the traversal to the present node. Holds for the
    /// moment: copy it to keep it.
    const KsFullPath* getCurPath() const;
    /// The present node; null while nothing is traversed.
    KsNode* getCurPathTail() const
    {
        return m_now.steps.empty() ? nullptr : m_now.steps.back().node;
    }

    /// How the present node stands to the path that the action was applied to: there is none; the
    /// node is on the path before its end; it is the end or below it; it stands beside the path
    /// and is met for its effect on the state only.
    enum PathCode { NO_PATH, IN_PATH, BELOW_PATH, OFF_PATH };
    PathCode getPathCode() const { return m_now.code; }
    /// As above; if the code is IN_PATH also the indices of the children that lie on the path,
    /// which hold until the next child is visited. Else their number is 0 and they are null.
    PathCode getPathCode(int& numIndices, const int*& indices) const;

    /// Whether the traversal was ended before its time; holds until the next `apply`.
    bool isTerminated() const { return m_now.terminated; }
    /// Ends the traversal: nothing further is visited.
    void terminate() { m_now.terminated = true; }

    // For nodes with children.
    /// Visits child number `index` of the present node. Beside a path, nodes that do not affect
    /// the state are left out. Beyond `KsLimits::visits` nodes the traversal ends with a message;
    /// below three times `KsLimits::nesting` levels it does not go.
    void traverse(KsNode* child, int index);

    // Plumbing for lists of children.
    /// TRUE if separators that together have this box, in the space of the present model matrix,
    /// need no visit: what the action has to do with them is done.
    virtual bool passBy(const KbBox3f& box);

protected:
    KsAction();
    /// Traverses from `root`. Subclasses prepare their results and the state before it, and finish
    /// them behind it. `root` is null for an empty scene.
    virtual void beginTraversal(KsNode* root);
    /// Calls the node's hook for this action.
    virtual void visit(KsNode* node) = 0;
    /// Whether a node that stands beside the applied path is visited: as a rule if it affects the
    /// state.
    virtual bool isMetBeside(const KsNode* node) const;
    /// The path that the action is applied to, or null.
    const KsPath* getAppliedPath() const { return m_now.path; }

    KsState* m_state = nullptr; ///< As `getState`.

private:
    struct Step {
        KsNode* node;
        int index;
    };
    struct Traversal {
        std::vector<Step> steps;
        std::vector<int> pathIndices; // of the child on the path, by the depth of its parent
        const KsPath* path = nullptr;
        long long visits = 0;
        PathCode code = NO_PATH;
        bool terminated = false;
        bool tooDeep = false;
    };
    void run(KsNode* root, const KsPath* path);
    PathCode codeOf(const KsNode* child, int index) const;

    Traversal m_now;
    bool m_running = false;
    // Made from the steps when somebody asks; so many of its nodes agree with them.
    mutable KsFullPath m_curPath;
    mutable std::size_t m_curPathValid = 0;
};
