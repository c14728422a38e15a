#include <arborium/fields/KsFieldData.h>

#include <arborium/fields/KsFieldContainer.h>

KsFieldData::KsFieldData(const KsFieldData* parent) { inherit(parent); }

KsFieldData::~KsFieldData() = default;

void KsFieldData::inherit(const KsFieldData* parent)
{
    m_entries = parent ? parent->m_entries : std::vector<Entry>();
    m_index = parent ? parent->m_index : std::unordered_map<KbName, int>();
    m_enums = parent ? parent->m_enums : std::vector<const KsEnumData*>();
    m_fieldEnums = parent ? parent->m_fieldEnums : std::vector<const KsEnumData*>();
}

void KsFieldData::addField(const KsFieldContainer* container, const KbName& name,
                           const KsField* field)
{
    if (!container || !field || !m_index.emplace(name, getNumFields()).second) return;
    m_entries.push_back(
        {name, reinterpret_cast<const char*>(field) - reinterpret_cast<const char*>(container),
         -1});
}

void KsFieldData::addPartField(const KbName& name, int part)
{
    if (part < 0 || !m_index.emplace(name, getNumFields()).second) return;
    m_entries.push_back({name, 0, part});
}

void KsFieldData::addEnumValue(const KbName& enumName, const KbName& valueName, int value)
{
    for (const KsEnumData*& known : m_enums) {
        if (known->enumName != enumName) continue;
        int given = 0;
        if (known->valueOf(valueName, given)) return;
        KsEnumData more = *known;
        more.values.push_back(value);
        more.names.push_back(valueName);
        known = KsEnumData::intern(std::move(more));
        return;
    }
    m_enums.push_back(KsEnumData::intern({enumName, {value}, {valueName}}));
}

bool KsFieldData::getEnumData(const KbName& enumName, int& count, const int*& values,
                              const KbName*& names) const
{
    const KsEnumData* data = getEnumData(enumName);
    count = data ? static_cast<int>(data->values.size()) : 0;
    values = data ? data->values.data() : nullptr;
    names = data ? data->names.data() : nullptr;
    return data != nullptr;
}

const KsEnumData* KsFieldData::getEnumData(const KbName& enumName) const
{
    for (const KsEnumData* data : m_enums)
        if (data->enumName == enumName) return data;
    return nullptr;
}

KbName KsFieldData::getFieldName(int index) const
{
    return index >= 0 && index < getNumFields() ? m_entries[static_cast<std::size_t>(index)].name
                                                : KbName();
}

KsField* KsFieldData::getField(const KsFieldContainer* container, int index, bool make) const
{
    if (!container || index < 0 || index >= getNumFields()) return nullptr;
    const Entry& entry = m_entries[static_cast<std::size_t>(index)];
    if (entry.part >= 0) return container->getPartField(entry.part, make);
    const char* place = reinterpret_cast<const char*>(container) + entry.offset;
    return const_cast<KsField*>(reinterpret_cast<const KsField*>(place));
}

int KsFieldData::getIndex(const KbName& name) const
{
    const auto found = m_index.find(name);
    return found == m_index.end() ? -1 : found->second;
}

bool KsFieldData::isPartField(int index) const
{
    return index >= 0 && index < getNumFields() &&
           m_entries[static_cast<std::size_t>(index)].part >= 0;
}

const KsEnumData* KsFieldData::getFieldEnum(int index) const
{
    return index >= 0 && index < getNumEnumFields() ? m_fieldEnums[static_cast<std::size_t>(index)]
                                                    : nullptr;
}
