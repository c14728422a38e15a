#include "io/KsInputImpl.h"

#include <algorithm>

namespace {
char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

/// The number of characters to be put in, taken out, replaced or swapped with their neighbour; a
/// letter in the other case costs less than another letter.
std::size_t distance(std::string_view a, std::string_view b)
{
    const std::size_t columns = b.size() + 1;
    std::vector<std::size_t> before(columns), last(columns), now(columns);
    for (std::size_t j = 0; j < columns; ++j) last[j] = 4 * j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        now[0] = 4 * i;
        for (std::size_t j = 1; j < columns; ++j) {
            const char x = a[i - 1], y = b[j - 1];
            const std::size_t change = x == y ? 0 : lower(x) == lower(y) ? 1 : 4;
            now[j] = std::min({last[j] + 4, now[j - 1] + 4, last[j - 1] + change});
            if (i > 1 && j > 1 && x == b[j - 2] && a[i - 2] == y)
                now[j] = std::min(now[j], before[j - 2] + 4);
        }
        before.swap(last);
        last.swap(now);
    }
    return last[columns - 1];
}
} // namespace

KsNearestName::KsNearestName(const KsInput::Impl& in, std::string_view word)
    : m_word(in.keepsErrors() ? word.substr(0, 64) : std::string_view())
{}

void KsNearestName::offer(std::string_view candidate)
{
    const std::string_view name = candidate.substr(0, candidate.find('\0'));
    if (m_word.empty() || name.empty() || name.size() > 128) return;
    const std::size_t d = distance(m_word, name);
    if (!m_best.empty() && (d > m_distance || (d == m_distance && m_best <= name))) return;
    m_best = name;
    m_distance = d;
}

std::string KsNearestName::hint() const
{
    return m_best.empty() ? std::string() : "; the nearest is \"" + m_best + "\"";
}
