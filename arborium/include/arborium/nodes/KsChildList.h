#pragma once

#include <arborium/nodes/KsNodeList.h>

class KsAction;

/// The children of a node. Each change of the list is a change of the node.
class ARBORIUM_API KsChildList : public KsNodeList {
public:
    explicit KsChildList(KsNode* parent) : m_parent(parent) {}
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

private:
    bool accept(KsNode* node) const;
    void changed();
    KsNode* m_parent;
};
