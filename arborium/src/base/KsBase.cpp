#include <arborium/base/KsBase.h>

#include <map>
#include <unordered_map>

namespace {
int s_numInstances = 0;

/// The named objects of the process, by name and in the order of naming.
struct NameTable {
    std::unordered_map<KbName, std::map<std::uint64_t, KsBase*>> objects;
    std::unordered_map<const KsBase*, std::uint64_t> places;
    std::uint64_t next = 0;

    void add(const KbName& name, KsBase* object)
    {
        places[object] = next;
        objects[name].emplace(next++, object);
    }
    void remove(const KbName& name, const KsBase* object)
    {
        const auto place = places.find(object);
        const auto named = objects.find(name);
        if (place == places.end() || named == objects.end()) return;
        named->second.erase(place->second);
        if (named->second.empty()) objects.erase(named);
        places.erase(place);
    }
};

NameTable& names()
{
    static NameTable& s_names = *new NameTable;
    return s_names;
}
} // namespace

KsType KsBase::getClassTypeId()
{
    static const KsType type = KsType::createType(KsTypedObject::getClassTypeId(), "Base");
    return type;
}

void KsBase::initClass() { getClassTypeId(); }

KsBase::KsBase() { ++s_numInstances; }

KsBase::~KsBase()
{
    if (!m_name.isEmpty()) names().remove(m_name, this);
    --s_numInstances;
}

void KsBase::destroy()
{
    setName(KbName()); // what is dying is not found any more
    notifyDelete();
    delete this;
}

void KsBase::setName(const KbName& name)
{
    if (m_name == name) return;
    if (!m_name.isEmpty()) names().remove(m_name, this);
    m_name = name;
    if (!m_name.isEmpty()) names().add(m_name, this);
}

void KsBase::getNamed(const KbName& name, std::vector<KsBase*>& list)
{
    const auto named = names().objects.find(name);
    if (named == names().objects.end()) return;
    for (const auto& each : named->second) list.push_back(each.second);
}

KsBase* KsBase::getFirstNamed(const KbName& name, KsType type)
{
    const auto named = names().objects.find(name);
    if (named == names().objects.end()) return nullptr;
    for (const auto& each : named->second)
        if (each.second->isOfType(type)) return each.second;
    return nullptr;
}

int KsBase::getNumInstances() { return s_numInstances; }
