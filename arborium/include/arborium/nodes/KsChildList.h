#pragma once

#include <arborium/nodes/KsNodeList.h>

#include <memory>

class KbBox3f;
class KsAction;

/// The children of a node, each with the node as a parent. A change of the list is a change of the
/// node, and told to whoever watches it.
///
/// A list of 64 children or more keeps a box for each run of 32, so that an action passes by the run
/// where it has nothing to do in that box (`KsAction::passBy`). A run has a box while each child in it
/// is a separator that keeps its own, holds no camera, is of no derived class and stands nowhere else.
/// A mark on one of them, and a change of the list there or in front of it, take the box away; a
/// traversal that goes through the run makes a new one.
class ARBORIUM_API KsChildList : public KsNodeList {
public:
    /// `parent` is the node that the list is a member of: it must live as long.
    explicit KsChildList(KsNode* parent);
    KsChildList(const KsChildList&) = delete;
    KsChildList& operator=(const KsChildList&) = delete;
    ~KsChildList() override;

    // Refused with a message: null, and a node that is the parent or stands above it. An index out
    // of range does nothing, but `insert` at the length appends.
    void append(KsNode* node) override;
    void insert(KsNode* node, int index) override;
    void set(int index, KsNode* node) override;
    void remove(int index) override;
    void truncate(int length) override;

    /// Traverses the children from `first` to `last`, both included. The list may change
    /// meanwhile: what then stands at an index is what is traversed.
    void traverse(KsAction* action, int first, int last);
    /// Traverses all children.
    void traverse(KsAction* action);
    /// Traverses the children that the path of the action calls for: those on it, and those in
    /// front of them that affect the state. All children if it has none, or below its end.
    void traverseInPath(KsAction* action);

    // Plumbing.
    /// Tells that a child is marked as changed.
    void childMarked(const KsNode* child);

private:
    bool accept(KsNode* node) const;
    void changed();
    const KbBox3f* boxOfRunAt(int index) const;
    void keepBoxOfRun(int first);
    void forgetRunsFrom(int index);

    struct Runs;
    KsNode* m_parent;
    std::unique_ptr<Runs> m_runs;
};
