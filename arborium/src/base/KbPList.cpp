#include <arborium/base/KbPList.h>

#include <algorithm>

namespace {

// A position beyond is a mistake of the caller's, and memory is not spent on it.
constexpr int s_longestList = 16 * 1024 * 1024;

} // namespace

KbPList::KbPList(int capacity)
{
    if (capacity > 0) m_items.reserve(static_cast<std::size_t>(std::min(capacity, s_longestList)));
}

void KbPList::insert(void* item, int index)
{
    m_items.insert(m_items.begin() + std::min(std::max(index, 0), getLength()), item);
}

int KbPList::find(const void* item) const
{
    const auto it = std::find(m_items.begin(), m_items.end(), item);
    return it == m_items.end() ? -1 : static_cast<int>(it - m_items.begin());
}

bool KbPList::grow(int index)
{
    if (index < 0 || index >= s_longestList) return false;
    if (index >= getLength()) m_items.resize(static_cast<std::size_t>(index) + 1, nullptr);
    return true;
}

void KbPList::set(int index, void* item)
{
    if (grow(index)) m_items[static_cast<std::size_t>(index)] = item;
}

void*& KbPList::operator[](int index)
{
    if (grow(index)) return m_items[static_cast<std::size_t>(index)];
    static thread_local void* s_unread;
    return s_unread = nullptr;
}

void KbPList::remove(int index)
{
    if (index >= 0 && index < getLength()) m_items.erase(m_items.begin() + index);
}

void KbPList::removeItem(const void* item) { remove(find(item)); }

void KbPList::truncate(int length)
{
    if (length < getLength()) m_items.resize(static_cast<std::size_t>(std::max(length, 0)));
}
