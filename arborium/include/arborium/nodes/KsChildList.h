#pragma once

#include <arborium/nodes/KsNodeList.h>

#include <memory>

class KbBox3f;
class KsAction;

/// The children of a node. Each change of the list is a change of the node.
///
/// A list of 64 children or more keeps a box for each run of 32, so that an action passes by the run
/// where it has nothing to do in that box (`KsAction::passBy`). A run has a box while each child in it
/// is a separator that keeps its own, holds no camera, is of no derived class and stands nowhere else.
/// A mark on one of them, and a change of the list there or in front of it, take the box away; a
/// traversal that goes through the run makes a new one.
class ARBORIUM_API KsChildList : public KsNodeList {
public:
    explicit KsChildList(KsNode* parent);
    KsChildList(const KsChildList&) = delete;
    KsChildList& operator=(const KsChildList&) = delete;
    ~KsChildList() override;

    // Refused with a message: a node that is the parent or stands above it. An index out of range
    // does nothing, but `insert` at the length appends.
    void append(KsNode* node) override;
    void insert(KsNode* node, int index) override;
    void set(int index, KsNode* node) override;
    void remove(int index) override;
    void truncate(int length) override;

    /// Traverses the children from `first` to `last`, both included. The list may change
    /// meanwhile: what then stands at an index is what is traversed.
    void traverse(KsAction* action, int first, int last);
    void traverse(KsAction* action);
    /// Traverses the children that the path of the action calls for, if it has one.
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
