#pragma once

#include <arborium/base/KsApi.h>
#include <arborium/base/KsRefCounter.h>

#include <vector>

class KsNode;

/// A chain of nodes, each a child of the one before it. A path holds references to its nodes.
/// Paths through kits are shown to their last public node only (`setNumPublic`); `KsFullPath`
/// shows all of it.
class ARBORIUM_API KsPath : public KsRefCounter {
public:
    /// Empty.
    KsPath() = default;
    /// Null gives an empty path.
    explicit KsPath(KsNode* head);
    KsPath(const KsPath& other);
    KsPath& operator=(const KsPath& other);
    ~KsPath() override;

    /// The number of nodes shown.
    int getLength() const;
    /// The first node; null if the path is empty.
    KsNode* getHead() const;
    /// The last node shown; null if none is.
    KsNode* getTail() const;
    /// The node at `index`, hidden ones too; null out of range.
    KsNode* getNode(int index) const;
    /// The place of the node at `index` among its parent's children, as it was when the node was
    /// appended; -1 for the head, and out of range.
    int getIndex(int index) const;
    /// The node `index` places before the last one shown; null out of range.
    KsNode* getNodeFromTail(int index) const;
    /// TRUE if the node stands anywhere on the whole path, hidden part included.
    bool containsNode(const KsNode* node) const;
    /// The first index of the node on the whole path; -1 if it is not there.
    int findNode(const KsNode* node) const;
    /// Shows the first `count` nodes only; below 0 (as at first) it shows all.
    void setNumPublic(int count) { m_numPublic = count; }

    /// Begins anew with this node; null empties the path.
    void setHead(KsNode* head);
    /// Appends a node, of which is taken on trust that it stands at `childIndex` below the last
    /// node of the whole path. Null is ignored.
    void append(KsNode* node, int childIndex);
    /// Appends a child of the last node of the whole path, found among its children, hidden ones
    /// too; FALSE, and nothing changes, if it is none, or the path is empty.
    bool append(KsNode* child);
    /// Takes the last node of the whole path off; nothing if it is empty.
    void pop();
    /// Keeps the first `length` nodes; below 0 is as 0.
    void truncate(int length);
    /// Whether both lead through the same nodes at the same places, hidden parts included; how much
    /// is shown does not matter.
    bool operator==(const KsPath& other) const;
    /// The caller owns it.
    KsPath* copy() const { return new KsPath(*this); }

protected:
    struct Step {
        KsNode* node;
        int index;
    };
    std::vector<Step> m_steps;
    int m_numPublic = -1;
};

/// A path with nothing hidden.
class ARBORIUM_API KsFullPath : public KsPath {
public:
    using KsPath::KsPath;
    // As those of `KsPath`, of all nodes.
    int getLength() const { return static_cast<int>(m_steps.size()); }
    KsNode* getTail() const { return m_steps.empty() ? nullptr : m_steps.back().node; }
    KsNode* getNodeFromTail(int index) const { return getNode(getLength() - 1 - index); }
};

/// A list of paths that holds one reference to each.
class ARBORIUM_API KsPathList {
public:
    /// Null is appended too: actions pass it over.
    void append(KsPath* path) { m_paths.emplace_back(path); }
    /// Null paths count too.
    int getLength() const { return static_cast<int>(m_paths.size()); }
    /// Null if the index is out of range.
    KsPath* operator[](int index) const
    {
        return index >= 0 && index < getLength() ? m_paths[static_cast<std::size_t>(index)].get()
                                                 : nullptr;
    }
    /// Keeps the first `length` paths; a shorter list stays as it is.
    void truncate(int length)
    {
        if (length < 0) length = 0;
        if (length < getLength()) m_paths.resize(static_cast<std::size_t>(length));
    }

private:
    std::vector<KsRef<KsPath>> m_paths;
};
