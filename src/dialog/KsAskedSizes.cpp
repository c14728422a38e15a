#include <formweave/KsAskedSizes.h>

namespace {

void put(KsSFInt32& field, std::int32_t value, bool isDefault)
{
    field.initValue(value);
    field.setDefault(isDefault);
}

} // namespace

void KsAskedSizes::record(const Fields& fields)
{
    if (m_isRecorded) return;
    m_isRecorded = true;
    for (std::size_t i = 0; i < fields.size(); ++i) {
        m_isAsked[i] = !fields[i]->isDefault();
        m_values[i] = fields[i]->getValue();
    }
}

void KsAskedSizes::update(const Fields& fields, int first, int last)
{
    for (int index = first; index <= last; ++index) {
        const auto i = static_cast<std::size_t>(index);
        if (fields[i]->isDefault()) continue; // not the one that was written
        m_values[i] = fields[i]->getValue();
        m_isAsked[i] = m_values[i] != 0 && m_values[i] != unasked(index);
        if (!m_isAsked[i]) m_values[i] = unasked(index);
    }
}

void KsAskedSizes::restore(const Fields& fields) const
{
    for (std::size_t i = 0; m_isRecorded && i < fields.size(); ++i)
        put(*fields[i], m_values[i], !m_isAsked[i]);
}

void KsAskedSizes::assign(const Fields& fields, KbVec2i32 size, KbVec2i32 min, KbVec2i32 max)
{
    std::size_t i = 0;
    for (const KbVec2i32& pair : {size, min, max}) {
        *fields[i++] = pair[0];
        *fields[i++] = pair[1];
    }
}

KsAskedSizes::Written::Written(const KsAskedSizes& asked, const Fields& fields, bool isInWindow)
    : m_fields(fields)
{
    for (std::size_t i = 0; i < fields.size(); ++i) {
        m_values[i] = fields[i]->getValue();
        m_isDefault[i] = fields[i]->isDefault();
    }
    if (!isInWindow) asked.restore(fields);
}

KsAskedSizes::Written::~Written()
{
    for (std::size_t i = 0; i < m_fields.size(); ++i)
        put(*m_fields[i], m_values[i], m_isDefault[i]);
}
