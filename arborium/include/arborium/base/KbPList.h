#pragma once

#include <arborium/base/KsApi.h>

#include <cstddef>
#include <vector>

/// A list of pointers that it does not own.
class ARBORIUM_API KbPList {
public:
    KbPList() = default;
    /// Reserves room; a capacity below 1 reserves none.
    explicit KbPList(int capacity);

    /// Puts an item behind the last one. Null may stand in the list.
    void append(void* item) { m_items.push_back(item); }
    /// Before position `index`; a position below 0 counts as 0, one behind the end appends.
    void insert(void* item, int index);
    /// The position of the first such item; -1 for none.
    int find(const void* item) const;
    /// Null outside of the list.
    void* get(int index) const
    {
        return index >= 0 && index < getLength() ? m_items[static_cast<std::size_t>(index)]
                                                 : nullptr;
    }
    /// Grows the list with nulls up to the position. An index below 0 or above 16 million does nothing.
    void set(int index, void* item);
    /// Grows the list as `set` does; outside of what `set` takes, a slot that nothing reads.
    void*& operator[](int index);
    void* operator[](int index) const { return get(index); }
    /// The number of items, nulls included.
    int getLength() const { return static_cast<int>(m_items.size()); }

    /// Takes one item out, what stands behind it moves up. Nothing outside of the list.
    void remove(int index);
    /// Takes the first such item out, if there is one.
    void removeItem(const void* item);
    /// Keeps the first `length` items, none for a number below 0; a list that is not longer stays
    /// as it is.
    void truncate(int length);
    /// Becomes equal to `list`.
    void copy(const KbPList& list) { m_items = list.m_items; }

    /// For loops over the items. Any change of the list ends the use of what they yield.
    void* const* begin() const { return m_items.data(); }
    void* const* end() const { return m_items.data() + m_items.size(); }

    /// The same pointers in the same order.
    friend bool operator==(const KbPList& a, const KbPList& b) { return a.m_items == b.m_items; }
    friend bool operator!=(const KbPList& a, const KbPList& b) { return a.m_items != b.m_items; }

private:
    bool grow(int index);

    std::vector<void*> m_items;
};
