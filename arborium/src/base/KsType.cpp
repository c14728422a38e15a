#include <arborium/base/KsType.h>

#include <arborium/base/KsDebugError.h>
#include <arborium/base/KsTypedObject.h>

#include <limits>
#include <string>
#include <unordered_map>
#include <vector>

namespace {
struct Entry {
    KbName name;
    std::vector<std::uint16_t> line; // the type and all that it derives from, the root first
    KsCreateFunction create = nullptr;
    std::uint16_t actionIndex = 0;
    bool isRegistered = false;
};

struct Table {
    std::vector<Entry> entries{1}; // entry 0 stands for the bad type
    std::unordered_map<KbName, std::uint16_t> byName;
    std::vector<std::uint16_t> order; // of registration

    const Entry* find(std::uint16_t index) const
    {
        return entries[index].isRegistered ? &entries[index] : nullptr;
    }
};

Table& table()
{
    static Table& s_table = *new Table;
    return s_table;
}
} // namespace

KsType KsType::createType(KsType parent, const KbName& name, KsCreateFunction create,
                          std::uint16_t actionIndex)
{
    if (name.isEmpty()) return badType();
    Table& types = table();
    const auto known = types.byName.find(name);
    if (known != types.byName.end() && types.entries[known->second].isRegistered)
        return KsType(known->second);
    if (known == types.byName.end()) {
        if (types.entries.size() > std::numeric_limits<std::uint16_t>::max()) {
            KsDebugError::post("KsType::createType", "There is no room for a type \"%s\"",
                               name.getString());
            return badType();
        }
        types.byName[name] = static_cast<std::uint16_t>(types.entries.size());
        types.entries.emplace_back();
    }
    const std::uint16_t index = types.byName[name];
    Entry entry;
    entry.name = name;
    if (const Entry* above = types.find(parent.m_index)) entry.line = above->line;
    entry.line.push_back(index);
    entry.create = create;
    entry.actionIndex = actionIndex;
    entry.isRegistered = true;
    types.entries[index] = std::move(entry);
    types.order.push_back(index);
    return KsType(index);
}

KsType KsType::fromName(const KbName& name)
{
    const Table& types = table();
    const auto find = [&types](const KbName& key) {
        const auto found = types.byName.find(key);
        return found != types.byName.end() && types.find(found->second) ? KsType(found->second)
                                                                        : badType();
    };
    const KsType type = find(name);
    if (!type.isBad()) return type;
    if (name.view().substr(0, 2) == "Ks") return find(KbName::findExisting(name.view().substr(2)));
    if (name.isEmpty()) return badType();
    return find(KbName::findExisting("Ks" + std::string(name.view())));
}

int KsType::removeType(const KbName& name)
{
    Table& types = table();
    const auto found = types.byName.find(name);
    if (found == types.byName.end() || !types.find(found->second)) return 0;
    types.entries[found->second].isRegistered = false;
    for (auto it = types.order.begin(); it != types.order.end(); ++it) {
        if (*it != found->second) continue;
        types.order.erase(it);
        break;
    }
    return 1;
}

void KsType::forEach(const std::function<void(KsType)>& visit)
{
    const std::vector<std::uint16_t> order = table().order;
    for (std::uint16_t index : order)
        if (table().find(index)) visit(KsType(index));
}

KbName KsType::getName() const
{
    const Entry* entry = table().find(m_index);
    return entry ? entry->name : KbName();
}

KsType KsType::getParent() const
{
    const Entry* entry = table().find(m_index);
    if (!entry || entry->line.size() < 2) return badType();
    return KsType(entry->line[entry->line.size() - 2]);
}

bool KsType::isDerivedFrom(KsType ancestor) const
{
    const Table& types = table();
    const Entry* entry = types.find(m_index);
    const Entry* above = types.find(ancestor.m_index);
    if (!entry || !above || above->line.size() > entry->line.size()) return false;
    return entry->line[above->line.size() - 1] == ancestor.m_index;
}

bool KsType::canCreateInstance() const
{
    const Entry* entry = table().find(m_index);
    return entry && entry->create;
}

KsTypedObject* KsType::createInstance() const
{
    const Entry* entry = table().find(m_index);
    if (!entry || !entry->create) return nullptr;
    KsType type = *this;
    return entry->create(&type);
}

std::uint16_t KsType::getActionIndex() const
{
    const Entry* entry = table().find(m_index);
    return entry ? entry->actionIndex : std::uint16_t(0);
}
