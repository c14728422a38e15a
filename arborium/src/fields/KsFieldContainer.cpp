#include <arborium/fields/KsFieldContainer.h>

KsFieldContainer::~KsFieldContainer() = default;

KsType KsFieldContainer::getClassTypeId()
{
    static const KsType type = KsType::createType(KsBase::getClassTypeId(), "FieldContainer");
    return type;
}

void KsFieldContainer::initClass() { getClassTypeId(); }

bool KsFieldContainer::enableNotify(bool enable)
{
    const bool was = m_notify;
    m_notify = enable;
    return was;
}

const KsFieldData* KsFieldContainer::getFieldData() const
{
    static const KsFieldData& s_none = *new KsFieldData;
    return &s_none;
}

KsField* KsFieldContainer::getField(const KbName& name) const
{
    const KsFieldData* data = getFieldData();
    return data->getField(this, data->getIndex(name));
}

int KsFieldContainer::getFields(KsFieldList& list) const
{
    const KsFieldData* data = getFieldData();
    int count = 0;
    for (int i = 0; i < data->getNumFields(); ++i) {
        KsField* field = data->getField(this, i, false);
        if (!field) continue;
        list.push_back({data->getFieldName(i), field});
        ++count;
    }
    return count;
}

int KsFieldContainer::getAllFields(KsFieldList& list) const
{
    const KsFieldData* data = getFieldData();
    int count = 0;
    for (int i = 0; i < data->getNumFields(); ++i) {
        KsField* field = data->getField(this, i);
        if (!field) continue;
        list.push_back({data->getFieldName(i), field});
        ++count;
    }
    return count;
}

namespace {
/// A part field that a kit has not made yet stands for null.
bool isNull(const KsField* field)
{
    if (!field) return true;
    const auto* reference = ksCast<KsSFNode>(field);
    return reference && !reference->getValue();
}
} // namespace

bool KsFieldContainer::fieldsAreEqual(const KsFieldContainer* other) const
{
    if (!other || other->getTypeId() != getTypeId()) return false;
    const KsFieldData* data = getFieldData();
    for (int i = 0; i < data->getNumFields(); ++i) {
        const KsField* mine = data->getField(this, i, false);
        const KsField* others = data->getField(other, i, false);
        if (mine && others ? !mine->isSame(*others) : !isNull(mine) || !isNull(others))
            return false;
    }
    return true;
}

void KsFieldContainer::copyFieldValues(const KsFieldContainer* other)
{
    if (!other || other == this || other->getTypeId() != getTypeId()) return;
    const KsFieldData* data = getFieldData();
    const KsKeepAlive keep(this);
    const KsKeepAlive keepOther(other);
    for (int i = 0; i < data->getNumFields(); ++i) {
        const KsField* from = data->getField(other, i, false);
        if (!from && !data->getField(this, i, false)) continue;
        KsField* to = data->getField(this, i);
        if (!from) from = data->getField(other, i);
        if (from && to) to->copyFrom(*from);
    }
}

bool KsFieldContainer::hasDefaultValues() const
{
    const KsFieldData* data = getFieldData();
    for (int i = 0; i < data->getNumFields(); ++i) {
        const KsField* field = data->getField(this, i, false);
        if (field && !field->isDefault()) return false;
    }
    return true;
}

void KsFieldContainer::fieldHasChanged(KsField*) {}

bool KsFieldContainer::validateNewFieldValue(KsField*, const void*) { return true; }

void KsFieldContainer::markChanged() {}

void KsFieldContainer::tellSensors(KsField*) {}

KsField* KsFieldContainer::getPartField(int, bool) const { return nullptr; }

bool KsFieldContainer::isPartWritten(int) const { return false; }
