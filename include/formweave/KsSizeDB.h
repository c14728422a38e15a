#pragma once

#include <arborium/base/KbVec.h>
#include <formweave/KsFormweaveApi.h>

#include <vector>

/// The three sizes of one child.
struct KsSizeTriple {
    KbVec2i32 init{0, 0};
    KbVec2i32 min{0, 0};
    KbVec2i32 max{0, 0};
};

/// What a container remembers of its children's sizes between asking them and sharing its room out
/// among them, and the sums that its own size is made of. `axis` is 0 along x, 1 along y.
class FORMWEAVE_API KsSizeDB {
public:
    /// An open maximum, as children report it.
    static constexpr int openLimit = 32767;

    /// Keeps contents and cursor if the count is the same.
    void setCount(int count);
    void clear();
    int count() const { return static_cast<int>(m_rows.size()); }
    KsSizeTriple& operator[](int index) { return m_rows[static_cast<std::size_t>(index)]; }
    const KsSizeTriple& operator[](int index) const
    {
        return m_rows[static_cast<std::size_t>(index)];
    }

    /// The size of a stack of all rows along `axis`: sums along it, the largest across it. `gaps`
    /// counts the spaces of `spacing` between them; `margin` is added on every side. Without rows
    /// the maximum is open.
    KsSizeTriple stacked(int axis, int margin, int spacing, int gaps, bool openIfEmpty) const;

    /// Shares `difference` out among the initial sizes along `axis`, one unit at a time in
    /// round-robin order, within each row's limits; done in closed form. The cursor stays where the
    /// last unit was given. Returns what could not be shared.
    int share(int axis, int difference);

private:
    std::vector<KsSizeTriple> m_rows;
    int m_cursor = 0;
};
