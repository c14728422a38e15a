#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

/// Pointers to listeners that may come and go, and the list itself with them, while they are told.
/// A listener that leaves during a walk is not told any more; one that comes is told next time.
template <class T> class ListenerList {
public:
    ListenerList() = default;
    ListenerList(const ListenerList&) = delete;
    ListenerList& operator=(const ListenerList&) = delete;
    ~ListenerList()
    {
        if (m_walk) m_walk->isListGone = true;
    }

    bool isEmpty() const { return m_count == 0; }
    bool isWalking() const { return m_walk != nullptr; }
    bool contains(const T* item) const
    {
        return std::find(m_items.begin(), m_items.end(), item) != m_items.end();
    }
    void add(T* item)
    {
        m_items.push_back(item);
        ++m_count;
    }
    void remove(T* item)
    {
        if (!item) return; // null stands for one that left during the walk
        const auto found = std::find(m_items.begin(), m_items.end(), item);
        if (found == m_items.end()) return;
        --m_count;
        if (m_walk)
            *found = nullptr;
        else
            m_items.erase(found);
    }
    /// Some listener that is in the list; null if there is none.
    T* any() const
    {
        for (T* item : m_items)
            if (item) return item;
        return nullptr;
    }

    /// Calls `tell` with each listener that was there at the start and still is. FALSE if the list
    /// itself is gone. `tell` returns FALSE to end the walk.
    template <class Function> bool walk(Function tell)
    {
        Walk walk{m_walk, false};
        m_walk = &walk;
        const std::size_t end = m_items.size();
        for (std::size_t i = 0; i < end; ++i) {
            T* item = m_items[i];
            if (!item) continue;
            const bool goOn = tell(item);
            if (walk.isListGone) {
                if (walk.outer) walk.outer->isListGone = true;
                return false;
            }
            if (!goOn) break;
        }
        m_walk = walk.outer;
        if (!m_walk)
            m_items.erase(std::remove(m_items.begin(), m_items.end(), nullptr), m_items.end());
        return true;
    }

private:
    struct Walk {
        Walk* outer;
        bool isListGone;
    };
    std::vector<T*> m_items;
    std::size_t m_count = 0;
    Walk* m_walk = nullptr; // the innermost one that is under way
};
