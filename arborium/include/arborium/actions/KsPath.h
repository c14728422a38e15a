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
    KsPath() = default;
    /// Null gives an empty path.
    explicit KsPath(KsNode* head);
    KsPath(const KsPath& other);
    KsPath& operator=(const KsPath& other);
    ~KsPath() override;

    /// The number of nodes shown.
    int getLength() const;
    KsNode* getHead() const;
    KsNode* getTail() const;
    /// The node at `index`, hidden ones too; null out of range.
    KsNode* getNode(int index) const;
    /// The place of the node at `index` among its parent's children; -1 for the head.
    int getIndex(int index) const;
    /// The node `index` places before the last one shown; null out of range.
    KsNode* getNodeFromTail(int index) const;
    /// TRUE if the node stands anywhere on the whole path, hidden part included.
    bool containsNode(const KsNode* node) const;
    /// -1 if the node is not on the whole path.
    int findNode(const KsNode* node) const;
    /// Shows the first `count` nodes only; -1 shows all.
    void setNumPublic(int count) { m_numPublic = count; }

    /// Begins anew with this node; null empties the path.
    void setHead(KsNode* head);
    /// Appends a node that stands at `childIndex` below the tail.
    void append(KsNode* node, int childIndex);
    /// Appends a child of the tail, found in its children; FALSE if it is none.
    bool append(KsNode* child);
    void pop();
    void truncate(int length);
    bool operator==(const KsPath& other) const;
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
    int getLength() const { return static_cast<int>(m_steps.size()); }
    KsNode* getTail() const { return m_steps.empty() ? nullptr : m_steps.back().node; }
    KsNode* getNodeFromTail(int index) const { return getNode(getLength() - 1 - index); }
};

/// A list of paths that holds one reference to each.
class ARBORIUM_API KsPathList {
public:
    /// Null is appended too.
    void append(KsPath* path) { m_paths.emplace_back(path); }
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
