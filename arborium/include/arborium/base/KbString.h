#pragma once

#include <arborium/base/KsApi.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

/// A text, kept as Latin-1 or, where it was made from UTF-16 or needs it, as Unicode. Two texts of the
/// same characters are equal whichever way they are kept. Positions and lengths count characters; of a
/// Unicode text UTF-16 units.
class ARBORIUM_API KbString {
public:
    /// "Not found".
    static constexpr int npos = -1;

    /// The empty text, in Latin-1.
    KbString() = default;
    /// Latin-1, up to the first zero byte. Null is the empty text.
    KbString(const char* latin1);
    /// The characters `start` to `end`, `end` exclusive and -1 for the end; clamped to the text.
    KbString(const char* latin1, int start, int end);
    /// Latin-1, zero bytes included.
    KbString(const std::string& latin1);
    KbString(std::string&& latin1);
    explicit KbString(std::string_view latin1);
    /// UTF-16: the text is Unicode, whatever characters it holds. Null is the empty text.
    KbString(const char16_t* utf16);
    KbString(const std::u16string& utf16);
    explicit KbString(char latin1);
    /// The number's decimal digits.
    explicit KbString(int number);

    KbString(const KbString& other);
    KbString(KbString&& other) noexcept;
    KbString& operator=(const KbString& other);
    KbString& operator=(KbString&& other) noexcept;
    KbString& operator=(const char* latin1) { return *this = KbString(latin1); }
    ~KbString();

    /// Latin-1 where its characters allow, else Unicode. Bytes that are no UTF-8 become U+FFFD.
    static KbString fromUtf8(std::string_view utf8);
    /// Always Unicode.
    static KbString fromUtf16(std::u16string_view utf16);

    /// How the text is kept, whatever characters it holds.
    bool isUnicode() const { return m_wide != nullptr; }
    /// Characters beyond Latin-1 become "?".
    const std::string& toLatin1() const& { return m_latin1; }
    std::string toLatin1() && { return std::move(m_latin1); }
    /// As `toLatin1`, ended by a zero; it lives until the text changes or dies.
    const char* getString() const { return m_latin1.c_str(); }
    std::u16string toUtf16() const;
    /// Half of a surrogate pair becomes U+FFFD.
    std::string toUtf8() const;

    /// Characters; of a Unicode text UTF-16 units.
    int getLength() const { return static_cast<int>(m_latin1.size()); }
    /// Whether there is no character.
    bool isEmpty() const { return m_latin1.empty(); }
    /// Latin-1 afterwards, whatever it was.
    void makeEmpty();

    /// Where `text` begins at or after `start`; `npos` for nowhere. The empty text is found at `start`.
    int find(const KbString& text, int start = 0) const;
    /// Where `text` begins for the last time; `npos` for nowhere.
    int rfind(const KbString& text) const;
    /// The empty text stands at the start and at the end of each.
    bool startsWith(const KbString& text) const;
    bool endsWith(const KbString& text) const;
    /// The characters from `start` up to but without `end`; -1 as `end` is the end of the text.
    /// Positions outside are clamped; a start behind the end gives the empty text.
    KbString getSubString(int start, int end = -1) const;

    /// Becomes the number's digits; `base` 2 to 36, another one counts as 10.
    KbString& setNum(int value, int base = 10);
    KbString& setNum(unsigned int value, int base = 10);
    /// Becomes the shortest text that reads back to the same number.
    KbString& setNum(float value);
    KbString& setNum(double value);

    /// The number that the text begins with, in the C locale, behind blanks; 0 where there is none.
    /// A number beyond the range gives the end of the range.
    int toInt(bool* ok = nullptr) const;
    float toFloat(bool* ok = nullptr) const;

    /// The number printed by a printf-like format, in the C locale, cut at 95 characters; the format
    /// may come from anywhere, as `KbNumberFormat` describes. One that is not accepted, or is for the
    /// other kind of number, is replaced by `fallback`, and that by "%g" or "%d".
    static KbString toString_l(const char* format, double value, const char* fallback = "%g");
    static KbString toString_l(const char* format, int value, const char* fallback = "%d");
    static KbString toString_l(const KbString& format, double value, const char* fallback = "%g");
    static KbString toString_l(const KbString& format, int value, const char* fallback = "%d");

    /// Puts `text` behind this one, which may be its own; Unicode if either is. Null adds nothing.
    KbString& operator+=(const KbString& text);
    KbString& operator+=(const char* latin1);
    KbString& operator+=(char latin1);
    friend KbString operator+(KbString a, const KbString& b) { return std::move(a += b); }
    friend KbString operator+(KbString a, const char* b) { return std::move(a += b); }
    friend KbString operator+(const char* a, const KbString& b) { return KbString(a) += b; }
    friend KbString operator+(KbString a, char b) { return std::move(a += b); }

    /// The character there; 0 for a position outside.
    char16_t operator[](int position) const;

    /// Below, equal or above 0, by the characters' codes.
    int compare(const KbString& text) const;
    /// By the characters, whichever way they are kept; null is the empty text.
    friend bool operator==(const KbString& a, const KbString& b) { return a.isEqual(b); }
    friend bool operator!=(const KbString& a, const KbString& b) { return !a.isEqual(b); }
    friend bool operator==(const KbString& a, const char* b) { return a.isEqual(b); }
    friend bool operator!=(const KbString& a, const char* b) { return !a.isEqual(b); }
    friend bool operator==(const char* a, const KbString& b) { return b.isEqual(a); }
    friend bool operator!=(const char* a, const KbString& b) { return !b.isEqual(a); }
    friend bool operator<(const KbString& a, const KbString& b) { return a.compare(b) < 0; }
    friend bool operator>(const KbString& a, const KbString& b) { return b.compare(a) < 0; }
    friend bool operator<=(const KbString& a, const KbString& b) { return b.compare(a) >= 0; }
    friend bool operator>=(const KbString& a, const KbString& b) { return a.compare(b) >= 0; }

    /// The same for equal texts, whichever way they are kept.
    std::size_t hash() const;

private:
    bool isEqual(const KbString& text) const;
    bool isEqual(const char* latin1) const;
    void setWide(std::u16string&& text);

    // Of a Unicode text the characters, with "?" for those beyond Latin-1: as many as there are units.
    std::string m_latin1;
    std::unique_ptr<std::u16string> m_wide;
};

/// As UTF-8.
ARBORIUM_API std::ostream& operator<<(std::ostream& out, const KbString& text);

namespace std {
template <> struct hash<KbString> {
    size_t operator()(const KbString& text) const { return text.hash(); }
};
} // namespace std
