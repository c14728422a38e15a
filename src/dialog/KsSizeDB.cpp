#include <formweave/KsSizeDB.h>

#include <algorithm>
#include <cstdint>
#include <limits>

namespace {

constexpr int open = KsSizeDB::openLimit;

// Sizes come from files: sums must not overflow.
int plus(std::int64_t a, std::int64_t b)
{
    constexpr std::int64_t limit = 1 << 30; // differences of sums must not overflow either
    return static_cast<int>(std::clamp(a + b, -limit, limit));
}

int openPlus(int size, int more)
{
    return size <= std::int64_t(open) - more ? plus(size, more) : open;
}

} // namespace

void KsSizeDB::setCount(int count)
{
    if (count == this->count()) return;
    m_rows.assign(static_cast<std::size_t>(std::max(count, 0)), {});
    m_cursor = std::min(m_cursor, std::max(count - 1, 0));
}

void KsSizeDB::clear()
{
    m_rows.clear();
    m_cursor = 0;
}

KsSizeTriple KsSizeDB::stacked(int axis, int margin, int spacing, int gaps, bool openIfEmpty) const
{
    const int cross = 1 - axis;
    KsSizeTriple sum;
    if (m_rows.empty() && openIfEmpty) sum.max.setValue(open, open);
    for (const KsSizeTriple& row : m_rows) {
        sum.init[cross] = std::max(sum.init[cross], row.init[cross]);
        sum.min[cross] = std::max(sum.min[cross], row.min[cross]);
        sum.max[cross] = std::max(sum.max[cross], row.max[cross]);
        sum.init[axis] = plus(sum.init[axis], row.init[axis]);
        sum.min[axis] = plus(sum.min[axis], row.min[axis]);
        // A maximum that would pass the limit stays where it is.
        if (row.max[axis] == open) sum.max[axis] = open;
        if (sum.max[axis] <= open - std::int64_t(row.max[axis])) sum.max[axis] += row.max[axis];
    }
    const int around = plus(margin, margin);
    const int between = static_cast<int>(
        std::clamp<std::int64_t>(std::int64_t(gaps) * spacing, -(1 << 30), 1 << 30));
    sum.init[cross] = plus(sum.init[cross], around);
    sum.min[cross] = plus(sum.min[cross], around);
    sum.max[cross] = openPlus(sum.max[cross], around);
    sum.init[axis] = plus(sum.init[axis], plus(around, between));
    sum.min[axis] = plus(sum.min[axis], plus(around, between));
    sum.max[axis] = openPlus(sum.max[axis], plus(around, between));
    return sum;
}

int KsSizeDB::share(int axis, int difference)
{
    const int n = count();
    if (difference == 0 || n == 0) return difference;
    const int step = difference < 0 ? -1 : 1;
    // How far each row can go. A row whose first step does not land within its limits stays.
    std::vector<std::int64_t> room(m_rows.size());
    for (int i = 0; i < n; ++i) {
        const KsSizeTriple& row = m_rows[static_cast<std::size_t>(i)];
        const std::int64_t first = std::int64_t(row.init[axis]) + step;
        if (first < row.min[axis] || first > row.max[axis]) continue;
        room[static_cast<std::size_t>(i)] = step > 0 ? std::int64_t(row.max[axis]) - row.init[axis]
                                                     : std::int64_t(row.init[axis]) - row.min[axis];
    }
    std::vector<std::int64_t> given(room.size(), 0);
    std::int64_t left = std::abs(std::int64_t(difference));

    // Whole rounds at once: as many as the tightest row still bears, then without it. Only the last
    // round is walked, for its end is where the cursor stays.
    int behindLast = m_cursor;
    while (left > 0) {
        std::int64_t tightest = std::numeric_limits<std::int64_t>::max();
        std::int64_t active = 0;
        for (std::size_t i = 0; i < room.size(); ++i) {
            if (room[i] <= given[i]) continue;
            ++active;
            tightest = std::min(tightest, room[i] - given[i]);
        }
        if (active == 0) {
            m_cursor = behindLast;
            break;
        }
        const std::int64_t rounds = std::min(tightest - 1, (left - 1) / active);
        for (std::size_t i = 0; rounds > 0 && i < room.size(); ++i)
            if (room[i] > given[i]) given[i] += rounds;
        left -= std::max<std::int64_t>(rounds, 0) * active;
        for (int walked = 0; walked < n && left > 0; ++walked) {
            const auto i = static_cast<std::size_t>(m_cursor);
            m_cursor = (m_cursor + 1) % n;
            if (room[i] <= given[i]) continue;
            ++given[i];
            behindLast = m_cursor;
            if (--left == 0) break;
        }
    }
    for (int i = 0; i < n; ++i)
        m_rows[static_cast<std::size_t>(i)].init[axis] +=
            step * static_cast<int>(given[static_cast<std::size_t>(i)]);
    return step * static_cast<int>(left);
}
