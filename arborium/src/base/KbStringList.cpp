#include <arborium/base/KbStringList.h>

#include <algorithm>

namespace {

// Both outlive the process's static objects, whose destructors may still ask for a text.
const KbString& none()
{
    static const KbString& s_none = *new KbString;
    return s_none;
}

KbString& unread()
{
    static KbString& s_unread = *new KbString;
    s_unread.makeEmpty();
    return s_unread;
}

} // namespace

void KbStringList::insert(const KbString& text, int index)
{
    m_items.insert(m_items.begin() + std::min(std::max(index, 0), getLength()), text);
}

void KbStringList::remove(int index)
{
    if (index >= 0 && index < getLength()) m_items.erase(m_items.begin() + index);
}

void KbStringList::truncate(int length)
{
    if (length < getLength()) m_items.resize(static_cast<std::size_t>(std::max(length, 0)));
}

int KbStringList::find(const KbString& text) const
{
    const auto it = std::find(m_items.begin(), m_items.end(), text);
    return it == m_items.end() ? -1 : static_cast<int>(it - m_items.begin());
}

const KbString& KbStringList::get(int index) const
{
    return index >= 0 && index < getLength() ? m_items[static_cast<std::size_t>(index)] : none();
}

KbString& KbStringList::operator[](int index)
{
    return index >= 0 && index < getLength() ? m_items[static_cast<std::size_t>(index)] : unread();
}

KbStringList KbStringList::split(const KbString& text, const KbString& separator)
{
    KbStringList pieces;
    int start = 0;
    if (!separator.isEmpty()) {
        for (int at; (at = text.find(separator, start)) != KbString::npos;) {
            pieces.append(text.getSubString(start, at));
            start = at + separator.getLength();
        }
    }
    pieces.append(text.getSubString(start, -1));
    return pieces;
}
