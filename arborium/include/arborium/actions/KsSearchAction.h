#pragma once

#include <arborium/actions/KsAction.h>

/// Finds nodes by type, name or identity.
class ARBORIUM_API KsSearchAction : public KsAction {
public:
    /// In the order of the traversal.
    enum Interest { ALL = 0, FIRST = 1, LAST = 2 };

    KsSearchAction();
    KsType getTypeId() const override { return getClassTypeId(); }
    static KsType getClassTypeId();

    using KsAction::apply;
    /// Searches what all of the paths lead to: the first match of the first path that has one, the
    /// last of the last one, or those of all paths.
    void apply(const KsPathList& paths) override;
    /// Whether all matches are wanted, the first (the default), or the last. Another value is as
    /// LAST.
    void setInterest(int interest) { m_interest = interest; }
    int getInterest() const { return m_interest; }
    // The criteria: a match fulfils all that are set. With none, nothing matches.
    /// Nodes of that class, and of those derived from it. Of the bad type there is none.
    void setType(KsType type, bool derivedIsOk = true);
    /// The empty name matches nodes without a name.
    void setName(const KbName& name);
    /// Null takes the criterion back. The node is not kept alive.
    void setNode(KsNode* node);
    /// Whether all children of switches are searched, and kits even where `KsBaseKit` keeps
    /// searches out. By default only what switches show.
    void setSearchingAll(bool all) { m_searchingAll = all; }
    bool isSearchingAll() const { return m_searchingAll; }
    /// The path to the match (FIRST, LAST), or null. Valid until the next apply or reset.
    KsPath* getPath() const { return m_path; }
    /// All matches (ALL); empty for the other interests. Valid as `getPath`.
    KsPathList& getPaths() { return m_paths; }
    /// During a traversal: TRUE if no more needs to be searched. After it: whether there is a
    /// match.
    bool isFound() const { return m_found; }
    /// For nodes: nothing further is searched.
    void setFound() { m_found = true; }
    /// Back to the initial criteria and no result.
    void reset();

    /// For nodes: whether `node` matches the criteria; FALSE for null.
    bool matches(const KsNode* node) const;
    /// For nodes: the present node is a match.
    void addMatch();

protected:
    void beginTraversal(KsNode* root) override;
    void visit(KsNode* node) override;

private:
    int m_interest = FIRST;
    bool m_searchingAll = false;
    bool m_found = false;
    bool m_byType = false;
    bool m_byName = false;
    bool m_derivedIsOk = true;
    KsType m_type;
    KbName m_name;
    KsNode* m_node = nullptr;
    KsRef<KsPath> m_path;
    KsPathList m_paths;
};
