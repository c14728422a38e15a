#pragma once

#include <string_view>

/// What `decodeUtf8` yields for bytes that are no UTF-8.
constexpr char32_t s_noCharacter = 0xffffffff;

/// The character that begins at `position`, which moves behind it; behind one byte where there is none.
inline char32_t decodeUtf8(std::string_view text, std::size_t& position)
{
    const auto byteAt = [&](std::size_t i) {
        return i < text.size() ? static_cast<unsigned char>(text[i]) : 0u;
    };
    const char32_t first = byteAt(position);
    const int more = first < 0x80                    ? 0
                     : first >= 0xc2 && first < 0xe0 ? 1
                     : first >= 0xe0 && first < 0xf0 ? 2
                     : first >= 0xf0 && first < 0xf5 ? 3
                                                     : -1;
    ++position;
    if (more <= 0) return more == 0 ? first : s_noCharacter;
    char32_t code = first & (0x3f >> more);
    for (int i = 0; i < more; ++i) {
        const char32_t next = byteAt(position + static_cast<std::size_t>(i));
        if ((next & 0xc0) != 0x80) return s_noCharacter;
        code = code << 6 | (next & 0x3f);
    }
    // Longer than it needs to be, half of a surrogate pair, or beyond the last character.
    if ((more == 2 && code < 0x800) || (more == 3 && code < 0x10000) ||
        (code >= 0xd800 && code < 0xe000) || code > 0x10ffff)
        return s_noCharacter;
    position += static_cast<std::size_t>(more);
    return code;
}

inline bool isUtf8(std::string_view text)
{
    for (std::size_t i = 0; i < text.size();)
        if (decodeUtf8(text, i) == s_noCharacter) return false;
    return true;
}
