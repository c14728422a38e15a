#pragma once

#include <arborium/nodes/KsChildList.h>
#include <arborium/nodes/KsNode.h>

/// A node with children, traversed in their order: what one of them sets holds for those behind it,
/// and behind the group too.
class ARBORIUM_API KsGroup : public KsNode {
    KS_NODE_HEADER(KsGroup);

public:
    KsGroup();

    /// A null child is refused with a message, as is one that would stand below itself.
    void addChild(KsNode* child);
    /// `index` from 0 to the number of children; others are refused with a message.
    void insertChild(KsNode* child, int index);
    /// Null with a message if the index is out of range.
    KsNode* getChild(int index) const;
    /// A node that is a child twice counts twice.
    int getNumChildren() const { return m_children.getLength(); }
    /// The first place of the node among the children; -1 if it is no child.
    int findChild(const KsNode* child) const { return m_children.find(child); }
    /// Of a child that stands there twice the first one. A node that is no child, and an index out
    /// of range, are refused with a message.
    void removeChild(KsNode* child);
    void removeChild(int index);
    void removeAllChildren();
    /// The new child takes the place of the old one. Refused with a message as above; so is a null
    /// or a new child that stands above.
    void replaceChild(KsNode* oldChild, KsNode* newChild);
    void replaceChild(int index, KsNode* newChild);

    bool isGroup() const override { return true; }
    KsChildList* getChildren() const override { return &m_children; }
    bool affectsState() const override;

    void internalAddChild(KsNode* child) override { addChild(child); }
    void internalInsertChild(KsNode* child, int index) override { insertChild(child, index); }
    KsNode* internalGetChild(int index) const override { return getChild(index); }
    int internalFindChild(const KsNode* child) const override { return findChild(child); }
    void internalRemoveChild(KsNode* child) override { removeChild(child); }
    void internalRemoveChild(int index) override { removeChild(index); }
    void internalRemoveAllChildren() override { removeAllChildren(); }
    void internalReplaceChild(KsNode* oldChild, KsNode* newChild) override
    {
        replaceChild(oldChild, newChild);
    }
    void internalReplaceChild(int index, KsNode* newChild) override
    {
        replaceChild(index, newChild);
    }

    void doAction(KsAction* action) override;
    void getBoundingBox(KsGetBoundingBoxAction* action) override;
    void getMatrix(KsGetMatrixAction* action) override;
    void search(KsSearchAction* action) override;
    void write(KsWriteAction* action) override;
    bool readInstance(KsInput* in, unsigned short flags) override;
    /// Appends the nodes that follow in a file, up to the closing brace or, in a binary one, their
    /// number. FALSE after an error that the input has recorded.
    virtual bool readChildren(KsInput* in);

protected:
    ~KsGroup() override;
    void copyContents(const KsNode* from, Copier& copier) override;

private:
    mutable KsChildList m_children;
};
