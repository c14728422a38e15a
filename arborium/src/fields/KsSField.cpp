#include <arborium/fields/KsSField.h>

#include <arborium/base/KsDebugError.h>
#include <arborium/fields/KsFieldContainer.h>
#include <arborium/nodes/KsNode.h>

#include "FieldValues.h"

#include <algorithm>
#include <unordered_map>

#define KS_SFIELD_SOURCE(Class, Name)                                                              \
    KS_FIELD_TYPE(Class, KsField, Name)                                                            \
    KS_FIELD_COPY(Class, m_value)                                                                  \
    KS_FIELD_SAME(Class, m_value)

KS_SFIELD_SOURCE(KsSFBool, "SFBool")
KS_SFIELD_SOURCE(KsSFFloat, "SFFloat")
KS_SFIELD_SOURCE(KsSFInt32, "SFInt32")
KS_SFIELD_SOURCE(KsSFString, "SFString")
KS_SFIELD_SOURCE(KsSFName, "SFName")
KS_SFIELD_SOURCE(KsSFVec2i32, "SFVec2i32")
KS_SFIELD_SOURCE(KsSFVec2f, "SFVec2f")
KS_SFIELD_SOURCE(KsSFVec3f, "SFVec3f")
KS_SFIELD_SOURCE(KsSFColor, "SFColor")
KS_SFIELD_SOURCE(KsSFRotation, "SFRotation")
KS_SFIELD_SOURCE(KsSFMatrix, "SFMatrix")
KS_SFIELD_SOURCE(KsSFPlane, "SFPlane")

// ---- names of files ------------------------------------------------------------------------

KS_FIELD_TYPE(KsSFFilePathString, KsField, "SFFilePathString")
KS_FIELD_SAME(KsSFFilePathString, m_value)

void KsSFFilePathString::take(const KbString& value, std::shared_ptr<const KbString> folder)
{
    if (!isValid(&value)) return;
    m_value = value;
    m_folder = std::move(folder);
    valueChanged();
}

void KsSFFilePathString::setValue(const KbString& value) { take(value, nullptr); }

KsSFFilePathString& KsSFFilePathString::operator=(const KbString& value)
{
    take(value, nullptr);
    return *this;
}

KsSFFilePathString& KsSFFilePathString::operator=(const KsSFFilePathString& other)
{
    take(KbString(other.m_value), other.m_folder);
    return *this;
}

void KsSFFilePathString::copyFrom(const KsField& other)
{
    if (&other == this || other.getTypeId() != getTypeId()) return;
    const auto& from = static_cast<const KsSFFilePathString&>(other);
    if (!isValid(&from.m_value)) return;
    m_value = from.m_value;
    m_folder = from.m_folder;
    valueChanged(from.isDefault());
}

// ---- enums ---------------------------------------------------------------------------------

KbName KsEnumData::nameOf(int value) const
{
    for (std::size_t i = 0; i < values.size(); ++i)
        if (values[i] == value) return names[i];
    return {};
}

bool KsEnumData::valueOf(const KbName& name, int& value) const
{
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (names[i] != name) continue;
        value = values[i];
        return true;
    }
    return false;
}

const KsEnumData* KsEnumData::intern(KsEnumData set)
{
    // Fields outlive the field data of their class, so the sets live as long as the process.
    static auto& s_sets = *new std::unordered_multimap<KbName, KsEnumData>;
    const auto range = s_sets.equal_range(set.enumName);
    for (auto it = range.first; it != range.second; ++it)
        if (it->second.values == set.values && it->second.names == set.names) return &it->second;
    const KbName name = set.enumName;
    return &s_sets.emplace(name, std::move(set))->second;
}

KS_FIELD_TYPE(KsSFEnum, KsField, "SFEnum")
KS_FIELD_SAME(KsSFEnum, m_value)

void KsSFEnum::setEnums(int count, const int* values, const KbName* names)
{
    if (count <= 0 || !values || !names) {
        m_enums = nullptr;
        return;
    }
    m_enums = KsEnumData::intern({KbName(), std::vector<int>(values, values + count),
                                  std::vector<KbName>(names, names + count)});
}

bool KsSFEnum::accepts(int value) const
{
    if (!m_enums || !m_enums->nameOf(value).isEmpty()) return true;
    KsDebugError::post("KsSFEnum::setValue", "%d is no value of %s", value,
                       m_enums->enumName.isEmpty() ? "the enum" : m_enums->enumName.getString());
    return false;
}

void KsSFEnum::setValue(int value)
{
    if (!accepts(value) || !isValid(&value)) return;
    m_value = value;
    valueChanged();
}

bool KsSFEnum::setValue(const KbName& name)
{
    int value = 0;
    if (!m_enums || !m_enums->valueOf(name, value)) {
        KsDebugError::post("KsSFEnum::setValue", "\"%s\" is no value of %s", name.getString(),
                           !m_enums || m_enums->enumName.isEmpty() ? "the enum"
                                                                   : m_enums->enumName.getString());
        return false;
    }
    if (!isValid(&value)) return false;
    m_value = value;
    valueChanged();
    return true;
}

void KsSFEnum::copyFrom(const KsField& other)
{
    if (&other == this || other.getTypeId() != getTypeId()) return;
    const auto& from = static_cast<const KsSFEnum&>(other);
    const int value = from.m_value;
    if ((m_enums != from.m_enums && !accepts(value)) || !isValid(&value)) return;
    m_value = value;
    valueChanged(from.isDefault());
}

KS_FIELD_TYPE(KsSFBitMask, KsSFEnum, "SFBitMask")
KS_FIELD_SAME(KsSFBitMask, m_value)

void KsSFBitMask::setValue(int value)
{
    if (!acceptsBits(value) || !isValid(&value)) return;
    m_value = value;
    valueChanged();
}

bool KsSFBitMask::acceptsBits(int value) const
{
    unsigned named = 0;
    if (m_enums)
        for (int each : m_enums->values) named |= static_cast<unsigned>(each);
    if (!m_enums || (static_cast<unsigned>(value) & ~named) == 0) return true;
    KsDebugError::post("KsSFBitMask::setValue", "%d holds a bit that has no name in %s", value,
                       m_enums->enumName.isEmpty() ? "the enum" : m_enums->enumName.getString());
    return false;
}

void KsSFBitMask::copyFrom(const KsField& other)
{
    if (&other == this || other.getTypeId() != getTypeId()) return;
    const auto& from = static_cast<const KsSFBitMask&>(other);
    const int value = from.m_value;
    if ((m_enums != from.m_enums && !acceptsBits(value)) || !isValid(&value)) return;
    m_value = value;
    valueChanged(from.isDefault());
}

KsSFBitMask& KsSFBitMask::operator=(const KsSFBitMask& other)
{
    setValue(int(other.m_value));
    return *this;
}

KsSFBitMask& KsSFBitMask::operator=(int value)
{
    setValue(value);
    return *this;
}

// ---- references to nodes -------------------------------------------------------------------

KS_FIELD_TYPE(KsSFNode, KsField, "SFNode")
KS_FIELD_SAME(KsSFNode, m_value)

KsSFNode::~KsSFNode() { replace(nullptr); }

KsSFNode& KsSFNode::operator=(const KsSFNode& other)
{
    setValue(other.m_value);
    return *this;
}

KsSFNode& KsSFNode::operator=(KsNode* node)
{
    setValue(node);
    return *this;
}

bool KsSFNode::accepts(const KsNode* node) const
{
    const KsNode* container = getContainer() ? getContainer()->asNode() : nullptr;
    if (!node || !container) return true;
    if (node != container && (!node->mayHold() || !container->isBelow(node))) return true;
    KsDebugError::post("KsSFNode::setValue", "A %s cannot refer to a node that holds it",
                       container->getTypeId().getName().getString());
    return false;
}

void KsSFNode::setValue(KsNode* node)
{
    const KsKeepAlive keepNode(node);
    if (!accepts(node) || !isValid(&node)) return;
    const KsKeepAlive keep(getContainer());
    replace(node);
    valueChanged();
}

void KsSFNode::initValue(KsNode* node)
{
    if (!accepts(node)) return;
    replace(node);
    setDefault(true);
}

void KsSFNode::copyFrom(const KsField& other)
{
    if (&other == this || other.getTypeId() != getTypeId()) return;
    const auto& from = static_cast<const KsSFNode&>(other);
    KsNode* node = from.m_value;
    const bool isDefault = from.isDefault();
    if (!accepts(node) || !isValid(&node)) return;
    const KsKeepAlive keep(getContainer());
    replace(node);
    valueChanged(isDefault);
}

void KsSFNode::replace(KsNode* node)
{
    if (node == m_value) return;
    KsNode* container = m_passive || !getContainer() ? nullptr : getContainer()->asNode();
    KsNode* former = m_value;
    if (node) node->ref();
    m_value = node;
    if (container) {
        if (node) node->addParent(container);
        if (former) former->removeParent(container);
    }
    if (former) former->unref();
}
