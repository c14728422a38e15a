#include <arborium/kits/KsNodekitCatalog.h>

#include <arborium/base/KsDebugError.h>
#include <arborium/nodes/KsGroup.h>

#include <algorithm>

KsNodekitCatalog::KsNodekitCatalog()
{
    Entry self;
    self.name = "this";
    m_numbers.emplace(self.name, 0);
    m_entries.push_back(std::move(self));
}

bool KsNodekitCatalog::addEntry(const KbName& name, KsType type, KsType defaultType,
                                bool nullByDefault, const KbName& parentName,
                                const KbName& rightSibling, bool isList, KsType listContainer,
                                KsType listItem, bool isPublic)
{
    const auto refuse = [&](const char* why) {
        const KbName kit = m_entries[0].type.getName();
        KsDebugError::post("KsNodekitCatalog::addEntry", "part \"%s\"%s%s: %s", name.getString(),
                           kit.isEmpty() ? "" : " of ", kit.getString(), why);
        return false;
    };
    if (name.isEmpty()) return refuse("it has no name");
    if (getPartNumber(name) >= 0) return refuse("there is one of this name");
    if (type.isBad() || defaultType.isBad())
        return refuse("its class is not registered; call initClass of that class first");
    if (!defaultType.isDerivedFrom(type)) return refuse("its default type is not of its type");
    const int parent = getPartNumber(parentName);
    if (parent < 0) return refuse("the part that it is to stand below does not exist");
    const KsType group = KsGroup::getClassTypeId();
    if (parent > 0 && !m_entries[static_cast<std::size_t>(parent)].type.isDerivedFrom(group))
        return refuse("the part that it is to stand below is no group");
    if (isList && (!listContainer.isDerivedFrom(type) || !listContainer.isDerivedFrom(group) ||
                   listItem.isBad()))
        return refuse("the types of the list do not fit");
    int sibling = -1;
    if (!rightSibling.isEmpty()) {
        sibling = getPartNumber(rightSibling);
        if (sibling <= 0 || getParent(sibling) != parent)
            return refuse("its right sibling does not stand below the same part");
    }

    const int part = getNumEntries();
    Entry entry;
    entry.name = name;
    entry.type = type;
    entry.defaultType = isList ? listContainer : defaultType;
    entry.nullByDefault = nullByDefault;
    entry.parent = parent;
    entry.rightSibling = sibling;
    entry.isList = isList;
    if (isList) {
        entry.listContainer = listContainer;
        entry.listItem = listItem;
    }
    entry.isPublic = isPublic;
    m_entries.push_back(std::move(entry));
    m_numbers.emplace(name, part);
    auto& siblings = m_entries[static_cast<std::size_t>(parent)].children;
    siblings.insert(
        sibling < 0 ? siblings.end() : std::find(siblings.begin(), siblings.end(), sibling), part);
    m_hasDefaultParts = m_hasDefaultParts || !nullByDefault;
    return true;
}

KsNodekitCatalog* KsNodekitCatalog::clone(KsType type) const
{
    auto* copy = new KsNodekitCatalog(*this);
    copy->m_entries[0].type = type;
    copy->m_entries[0].defaultType = type;
    return copy;
}

int KsNodekitCatalog::getPartNumber(const KbName& name) const
{
    const auto found = m_numbers.find(name);
    return found == m_numbers.end() ? -1 : found->second;
}

const KsNodekitCatalog::Entry* KsNodekitCatalog::entry(int part) const
{
    return part >= 0 && part < getNumEntries() ? &m_entries[static_cast<std::size_t>(part)]
                                               : nullptr;
}

KbName KsNodekitCatalog::getName(int part) const
{
    const Entry* e = entry(part);
    return e ? e->name : KbName();
}

KsType KsNodekitCatalog::getType(int part) const
{
    const Entry* e = entry(part);
    return e ? e->type : KsType::badType();
}

KsType KsNodekitCatalog::getDefaultType(int part) const
{
    const Entry* e = entry(part);
    return e ? e->defaultType : KsType::badType();
}

bool KsNodekitCatalog::isNullByDefault(int part) const
{
    const Entry* e = entry(part);
    return e && e->nullByDefault;
}

int KsNodekitCatalog::getParent(int part) const
{
    const Entry* e = entry(part);
    return e ? e->parent : -1;
}

int KsNodekitCatalog::getRightSibling(int part) const
{
    const Entry* e = entry(part);
    return e ? e->rightSibling : -1;
}

bool KsNodekitCatalog::isList(int part) const
{
    const Entry* e = entry(part);
    return e && e->isList;
}

KsType KsNodekitCatalog::getListContainerType(int part) const
{
    const Entry* e = entry(part);
    return e ? e->listContainer : KsType::badType();
}

KsType KsNodekitCatalog::getListItemType(int part) const
{
    const Entry* e = entry(part);
    return e ? e->listItem : KsType::badType();
}

bool KsNodekitCatalog::isPublic(int part) const
{
    const Entry* e = entry(part);
    return e && e->isPublic;
}

const std::vector<int>& KsNodekitCatalog::getChildrenInOrder(int parent) const
{
    static const std::vector<int>& none = *new std::vector<int>;
    const Entry* e = entry(parent);
    return e ? e->children : none;
}
