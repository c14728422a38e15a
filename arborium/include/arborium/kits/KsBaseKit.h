#pragma once

#include <arborium/kits/KsGetView.h>
#include <arborium/kits/KsNodekitCatalog.h>
#include <arborium/nodes/KsChildList.h>
#include <arborium/nodes/KsNode.h>

#include <memory>
#include <string_view>
#include <vector>

/// A node whose content is a set of named parts, described by the catalog of its class. Making a
/// part makes the chain of its parents. The parts hang below `topSeparator`, the kit's own hidden
/// child, which exists from the first part on; it is always the last of the kit's children.
///
/// Parts below the same parent stand in catalog order, whatever the order of their making; nodes
/// that were inserted between them by hand keep their place. A parent part that is replaced hands
/// its parts on to the new one; one that is removed takes them along.
///
/// Parts: `topSeparator` (hidden), `geomSeparator` (hidden, below it).
class ARBORIUM_API KsBaseKit : public KsNode, public KsGetView {
    KS_KIT_HEADER(KsBaseKit);

public:
    KsBaseKit();

    /// The rows of the class.
    virtual const KsNodekitCatalog* getKitCatalog() const { return getNodekitCatalog(); }

    /// A part by its name, or by a path of names through kits ("inner.frame"), or an item of a
    /// list ("list[2]"). Null with a message for an unknown or hidden name; null without one if the
    /// part does not exist and is not to be made. Of a list the item behind the last one can be
    /// made, no other. A part that is made counts as default.
    KsNode* getPart(const KbName& name, bool makeIfNeeded);
    /// Sets a public part; null removes it, for good: a part that was set, or removed, in this way
    /// is left alone by `setPartAsDefault` and is written to files. FALSE with a message for an
    /// unknown or hidden name or a node of the wrong type.
    bool setPart(const KbName& name, KsNode* part);
    /// As the two above, for hidden parts too.
    KsNode* getAnyPart(const KbName& name, bool makeIfNeeded);
    bool setAnyPart(const KbName& name, KsNode* part);
    /// The name of the part that `part` is, with the names of inner kits; empty if it is none.
    KbString getPartString(const KsNode* part);
    /// A new path from this kit to the part; null if there is none. The caller owns it. With
    /// `pathToExtend` it begins as that path, up to this kit or to the node that has it as a child;
    /// null with a message if the kit is not there.
    KsPath* createPathToPart(const KbName& name, bool makeIfNeeded,
                             const KsPath* pathToExtend = nullptr);

    KsChildList* getChildren() const override { return &m_children; }
    bool affectsState() const override { return false; }
    void doAction(KsAction* action) override;
    void getBoundingBox(KsGetBoundingBoxAction* action) override;
    void getMatrix(KsGetMatrixAction* action) override;
    /// Picks the children. What is hit counts as a hit on the innermost kit: the paths are shown up
    /// to it, and the points tell which of its public parts was hit.
    void rayPick(KsRayPickAction* action) override;
    void handleEvent(KsHandleEventAction* action) override;
    /// Searches the children too, if kits are searched at all. Paths are shown up to the innermost
    /// kit; `KsFullPath` tells the rest.
    void search(KsSearchAction* action) override;
    void write(KsWriteAction* action) override;
    /// Whether searches go into kits at all, but for those of everything. TRUE by default.
    static bool isSearchingChildren();
    /// For all kits of the process.
    static void setSearchingChildren(bool searching);

    void fieldHasChanged(KsField* field) override;
    bool validateNewFieldValue(KsField* field, const void* newValue) override;
    KsField* getPartField(int part, bool make) const override;
    bool isPartWritten(int part) const override;

protected:
    ~KsBaseKit() override;

    // Steps of a constructor; `KsInstanceBuilder` calls them.
    friend class KsInstanceBuilder;
    /// Nothing: the places of the parts are made with the first part.
    void createNodekitPartsList();
    /// Makes the parts that are not null by default.
    void createDefaultParts();
    /// A row of the class's catalog could not be added: posts a message.
    virtual void catalogError();

    /// Writes the fields or counts what they refer to, by the stage of the action's output. Of the
    /// parts those of which `isPartWritten` tells.
    virtual void writeFields(KsWriteAction* action);
    /// Closes what `writeHeader` opened.
    void endWrite(KsWriteAction* action);
    void copyContents(const KsNode* from, Copier& copier) override;
    /// Whether a copy takes over all nodes below the top separator. FALSE for kits that make them
    /// anew by themselves: a copy then gets only the parts that do not count as default.
    virtual bool copiesStructure() const { return true; }

    // Plumbing: parts by their row, and what kits that hold other elements do with paths.
    KsNode* partAt(int part) const;
    KsNode* makePart(int part);
    /// `countsAsDefault`: the part is not written to files. `isShared`: copies of the kit hold the
    /// same node.
    bool setPartAt(int part, KsNode* node, bool countsAsDefault, bool isShared = false);
    /// TRUE also for a part that was never made.
    bool isPartDefault(int part) const;
    bool isPartShared(int part) const;
    /// Puts the top separator back behind the children if it was truncated away.
    void restoreTopSeparator();
    /// Shows the path up to its last node of type `kitType`; a path without one stays as it is.
    static void cutToLastKit(KsPath* path, KsType kitType);
    /// As above for all that a search has found.
    static void cutToLastKit(KsSearchAction* action, KsType kitType);
    /// The number of hits that `addKitDetails` may pass over, taken before the children are picked.
    static int countPickedPoints(const KsRayPickAction* action);
    /// For each hit from `firstPoint` on: shows its path up to the last node of type `kitType`, and
    /// tells there which public part of that kit was hit, unless that is told already.
    static void addKitDetails(KsRayPickAction* action, KsType kitType, int firstPoint = 0);

    mutable KsChildList m_children;

private:
    struct Part;
    struct Target;
    Part* part(int row, bool make) const;
    bool isPartChanged(int row, int kitsWithin) const;
    int rowOf(const KsField* field) const;
    void place(int row);
    int findPlaced(const KsChildList& list, int row, const KsNode* node) const;
    bool isPresent(const KsChildList& list, int row, const KsNode* node) const;
    int placeFor(const KsChildList& list, int row) const;
    KsChildList* siblingsOf(int row, bool make);
    bool resolve(std::string_view name, bool make, bool publicOnly, const char* where,
                 Target& target);
    static KsNode* targetNode(const Target& target, bool make);
    KsNode* getNamed(const KbName& name, bool make, bool publicOnly, const char* where);
    bool setNamed(const KbName& name, KsNode* node, bool publicOnly, const char* where);

    mutable std::vector<std::unique_ptr<Part>> m_parts; // by row; empty until one is needed
};
