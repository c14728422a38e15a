#pragma once

#include <arborium/base/KbString.h>

#include <vector>

/// A list of texts.
class ARBORIUM_API KbStringList {
public:
    KbStringList() = default;

    /// Puts a text behind the last one.
    void append(const KbString& text) { m_items.push_back(text); }
    /// Before position `index`; a position below 0 counts as 0, one behind the end appends.
    void insert(const KbString& text, int index);
    /// Takes one text out, what stands behind it moves up. Nothing outside of the list.
    void remove(int index);
    /// Keeps the first `length` texts, none for a number below 0; a list that is not longer stays
    /// as it is.
    void truncate(int length);
    /// The number of texts, empty ones included.
    int getLength() const { return static_cast<int>(m_items.size()); }
    /// The position of the first such text; -1 for none.
    int find(const KbString& text) const;
    /// Outside of the list the empty text.
    const KbString& get(int index) const;
    const KbString& operator[](int index) const { return get(index); }
    /// Outside of the list an empty text that nothing reads.
    KbString& operator[](int index);

    /// The pieces between the separators, empty ones too: n separators give n + 1 pieces. An empty
    /// separator gives the text as one piece.
    static KbStringList split(const KbString& text, const KbString& separator);

    /// For loops over the texts. Any change of the list ends the use of what they yield.
    std::vector<KbString>::const_iterator begin() const { return m_items.begin(); }
    std::vector<KbString>::const_iterator end() const { return m_items.end(); }

    /// Equal texts in the same order.
    friend bool operator==(const KbStringList& a, const KbStringList& b)
    {
        return a.m_items == b.m_items;
    }
    friend bool operator!=(const KbStringList& a, const KbStringList& b) { return !(a == b); }

private:
    std::vector<KbString> m_items;
};
