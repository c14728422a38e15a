#pragma once

#include <arborium/base/KbName.h>
#include <arborium/base/KsType.h>

#include <unordered_map>
#include <vector>

/// The parts that a kit class can have. Row 0 is the kit itself, "this".
class ARBORIUM_API KsNodekitCatalog {
public:
    /// Holds row 0 alone.
    KsNodekitCatalog();

    /// Adds a part below `parentName`. FALSE, with a message, if the name is taken, a type is bad,
    /// the default type is not derived from the type, the parent is unknown or cannot hold
    /// children, the right sibling is no part below the same parent, or a list has bad list types.
    /// A list part is a group of type `listContainer` whose children are of type `listItem`.
    bool addEntry(const KbName& name, KsType type, KsType defaultType, bool nullByDefault,
                  const KbName& parentName, const KbName& rightSibling, bool isList,
                  KsType listContainer, KsType listItem, bool isPublic);
    /// A copy whose row 0 has type `type`. The caller owns it.
    KsNodekitCatalog* clone(KsType type) const;

    /// Row 0 included.
    int getNumEntries() const { return static_cast<int>(m_entries.size()); }
    /// The row of a part; -1 if there is no such part.
    int getPartNumber(const KbName& name) const;
    // What was said of a part when it was added. Out of range: the empty name, the bad type, FALSE,
    // -1.
    KbName getName(int part) const;
    KsType getType(int part) const;
    /// What is made at need; `getType` is what may be set.
    KsType getDefaultType(int part) const;
    /// FALSE: a new kit has it from the start.
    bool isNullByDefault(int part) const;
    /// The row of the parent part; -1 for row 0.
    int getParent(int part) const;
    /// -1 if none was named.
    int getRightSibling(int part) const;
    bool isList(int part) const;
    // The bad type for a part that is no list.
    KsType getListContainerType(int part) const;
    KsType getListItemType(int part) const;
    /// FALSE for a hidden part, and for an unknown name.
    bool isPublic(int part) const;
    bool isPublic(const KbName& name) const { return isPublic(getPartNumber(name)); }
    /// Parts below the same parent stand in this order: that of the rows, unless a right sibling
    /// was named. Empty for a row that is not there.
    const std::vector<int>& getChildrenInOrder(int parent) const;
    /// Whether a new kit has any part at all.
    bool hasDefaultParts() const { return m_hasDefaultParts; }

private:
    struct Entry {
        KbName name;
        KsType type;
        KsType defaultType;
        bool nullByDefault = true;
        int parent = -1;
        int rightSibling = -1;
        bool isList = false;
        KsType listContainer;
        KsType listItem;
        bool isPublic = false;
        std::vector<int> children;
    };
    const Entry* entry(int part) const;
    std::vector<Entry> m_entries;
    std::unordered_map<KbName, int> m_numbers;
    bool m_hasDefaultParts = false;
};
