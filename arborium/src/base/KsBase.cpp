#include <arborium/base/KsBase.h>

#include <unordered_map>

namespace {
int s_numInstances = 0;

/// The named objects of the process, those of a name in the order of naming.
std::unordered_map<KbName, std::list<KsBase*>>& named()
{
    static auto& s_named = *new std::unordered_map<KbName, std::list<KsBase*>>;
    return s_named;
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
    setName(KbName());
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
    if (!m_name.isEmpty()) {
        const auto former = named().find(m_name);
        former->second.erase(m_namedAt);
        if (former->second.empty()) named().erase(former);
    }
    m_name = name;
    if (m_name.isEmpty()) return;
    std::list<KsBase*>& all = named()[m_name];
    m_namedAt = all.insert(all.end(), this);
}

void KsBase::getNamed(const KbName& name, std::vector<KsBase*>& list)
{
    const auto found = named().find(name);
    if (found != named().end()) list.insert(list.end(), found->second.begin(), found->second.end());
}

KsBase* KsBase::getFirstNamed(const KbName& name, KsType type)
{
    const auto found = named().find(name);
    if (found == named().end()) return nullptr;
    for (KsBase* each : found->second)
        if (each->isOfType(type)) return each;
    return nullptr;
}

int KsBase::getNumInstances() { return s_numInstances; }
