#pragma once

#include <arborium/nodes/KsChildList.h>
#include <arborium/nodes/KsNode.h>

/// A scene file read in place. A node that is itself read from a file reads its file at once; after
/// `name` is set by hand, `load` does it. What was read is hidden below the node, behind a
/// separator, and is not written: only the name is.
class ARBORIUM_API KsFile : public KsNode {
    KS_NODE_HEADER(KsFile);

public:
    KsFile();

    KsSFFilePathString name; ///< Default empty: nothing.

    /// Reads the file anew. FALSE, with messages and nothing below the node, if it cannot be read
    /// or may not be.
    bool load();
    /// The full name of what was read; empty for nothing.
    const KbString& getFullName() const { return m_fullName; }

    bool affectsState() const override { return false; }
    KsChildList* getChildren() const override { return &m_children; }
    void doAction(KsAction* action) override;
    void search(KsSearchAction* action) override;
    bool readInstance(KsInput* in, unsigned short flags) override;

protected:
    ~KsFile() override;
    void copyContents(const KsNode* from, Copier& copier) override;

private:
    bool loadFor(KsInput* includer, KsInput& file);

    mutable KsChildList m_children;
    KbString m_fullName;
};
