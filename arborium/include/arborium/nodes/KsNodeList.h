#pragma once

#include <arborium/base/KsApi.h>

#include <vector>

class KsNode;

/// A list of nodes that holds one reference to each.
class ARBORIUM_API KsNodeList {
public:
    KsNodeList() = default;
    KsNodeList(const KsNodeList& other);
    KsNodeList& operator=(const KsNodeList& other);
    virtual ~KsNodeList();

    // Null, and an index out of range, are ignored.
    virtual void append(KsNode* node);
    /// What stood at `index`, and all behind it, goes up by one; at the length it appends.
    virtual void insert(KsNode* node, int index);
    /// Takes the place of the node at `index`.
    virtual void set(int index, KsNode* node);
    virtual void remove(int index);
    /// Keeps the first `length` nodes; a shorter list stays as it is.
    virtual void truncate(int length);
    /// The first place of the node; -1 if it is not there.
    int find(const KsNode* node) const;
    /// Makes room for so many nodes.
    void reserve(int length);
    int getLength() const { return static_cast<int>(m_nodes.size()); }
    /// Null if the index is out of range.
    KsNode* operator[](int index) const
    {
        return index >= 0 && index < getLength() ? m_nodes[static_cast<std::size_t>(index)]
                                                 : nullptr;
    }
    KsNode* get(int index) const { return (*this)[index]; }

protected:
    std::vector<KsNode*> m_nodes;
};
