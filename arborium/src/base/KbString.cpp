#include "Utf8.h"

#include <arborium/base/KbNumber.h>
#include <arborium/base/KbString.h>

#include <algorithm>
#include <cstring>
#include <ostream>

namespace {

bool fitsLatin1(const std::u16string& text)
{
    return std::all_of(text.begin(), text.end(), [](char16_t c) { return c <= 0xff; });
}

std::string narrowed(std::u16string_view text)
{
    std::string latin1(text.size(), '?');
    for (std::size_t i = 0; i < text.size(); ++i)
        if (text[i] <= 0xff) latin1[i] = static_cast<char>(text[i]);
    return latin1;
}

void appendWidened(std::u16string& wide, std::string_view latin1)
{
    wide.reserve(wide.size() + latin1.size());
    for (char c : latin1) wide += static_cast<unsigned char>(c);
}

void appendUtf8(std::string& text, char32_t c)
{
    const auto put = [&text](char32_t byte) { text += static_cast<char>(byte); };
    if (c < 0x80) {
        put(c);
    } else if (c < 0x800) {
        put(0xc0 | c >> 6);
        put(0x80 | (c & 0x3f));
    } else if (c < 0x10000) {
        put(0xe0 | c >> 12);
        put(0x80 | (c >> 6 & 0x3f));
        put(0x80 | (c & 0x3f));
    } else {
        put(0xf0 | c >> 18);
        put(0x80 | (c >> 12 & 0x3f));
        put(0x80 | (c >> 6 & 0x3f));
        put(0x80 | (c & 0x3f));
    }
}

bool isHighSurrogate(char32_t c) { return c >= 0xd800 && c < 0xdc00; }

bool isLowSurrogate(char32_t c) { return c >= 0xdc00 && c < 0xe000; }

int toPosition(std::size_t position)
{
    return position == std::string::npos ? KbString::npos : static_cast<int>(position);
}

template <class Number>
KbString printed(const char* format, Number value, const char* fallback, bool integer)
{
    KbNumberFormat parsed;
    for (const char* candidate : {format, fallback, integer ? "%d" : "%g"})
        if (parsed.parse(candidate) && parsed.isInteger() == integer) break;
    return KbString(parsed.print(value));
}

} // namespace

KbString::KbString(const char* latin1) : m_latin1(latin1 ? latin1 : "") {}

KbString::KbString(const char* latin1, int start, int end)
{
    if (!latin1) return;
    const std::size_t from = static_cast<std::size_t>(std::max(start, 0));
    const std::size_t length =
        end < 0 ? std::strlen(latin1) : strnlen(latin1, static_cast<std::size_t>(end));
    if (from < length) m_latin1.assign(latin1 + from, length - from);
}

KbString::KbString(const std::string& latin1) : m_latin1(latin1) {}

KbString::KbString(std::string&& latin1) : m_latin1(std::move(latin1)) {}

KbString::KbString(std::string_view latin1) : m_latin1(latin1) {}

KbString::KbString(const char16_t* utf16)
{
    if (utf16) setWide(utf16);
}

KbString::KbString(const std::u16string& utf16) { setWide(std::u16string(utf16)); }

KbString::KbString(char latin1) : m_latin1(1, latin1) {}

KbString::KbString(int number) { setNum(number); }

KbString::KbString(const KbString& other)
    : m_latin1(other.m_latin1),
      m_wide(other.m_wide ? std::make_unique<std::u16string>(*other.m_wide) : nullptr)
{}

KbString::KbString(KbString&& other) noexcept
    : m_latin1(std::move(other.m_latin1)), m_wide(std::move(other.m_wide))
{
    other.m_latin1.clear();
}

KbString& KbString::operator=(const KbString& other)
{
    if (this != &other) *this = KbString(other);
    return *this;
}

KbString& KbString::operator=(KbString&& other) noexcept
{
    if (this != &other) {
        m_latin1 = std::move(other.m_latin1);
        m_wide = std::move(other.m_wide);
        other.m_latin1.clear();
    }
    return *this;
}

KbString::~KbString() = default;

void KbString::setWide(std::u16string&& text)
{
    m_latin1 = narrowed(text);
    m_wide = std::make_unique<std::u16string>(std::move(text));
}

KbString KbString::fromUtf8(std::string_view utf8)
{
    KbString result;
    const bool ascii = std::all_of(utf8.begin(), utf8.end(),
                                   [](char c) { return static_cast<unsigned char>(c) < 0x80; });
    if (ascii) {
        result.m_latin1 = utf8;
        return result;
    }
    std::u16string wide;
    wide.reserve(utf8.size());
    for (std::size_t i = 0; i < utf8.size();) {
        char32_t c = decodeUtf8(utf8, i);
        if (c == s_noCharacter) c = 0xfffd;
        if (c >= 0x10000) {
            wide += static_cast<char16_t>(0xd7c0 + (c >> 10));
            wide += static_cast<char16_t>(0xdc00 + (c & 0x3ff));
        } else {
            wide += static_cast<char16_t>(c);
        }
    }
    if (fitsLatin1(wide))
        result.m_latin1 = narrowed(wide);
    else
        result.setWide(std::move(wide));
    return result;
}

KbString KbString::fromUtf16(std::u16string_view utf16) { return KbString(std::u16string(utf16)); }

std::u16string KbString::toUtf16() const
{
    if (m_wide) return *m_wide;
    std::u16string wide;
    appendWidened(wide, m_latin1);
    return wide;
}

std::string KbString::toUtf8() const
{
    std::string utf8;
    utf8.reserve(m_latin1.size());
    if (!m_wide) {
        for (char c : m_latin1) appendUtf8(utf8, static_cast<unsigned char>(c));
        return utf8;
    }
    const std::u16string& wide = *m_wide;
    for (std::size_t i = 0; i < wide.size(); ++i) {
        char32_t c = wide[i];
        if (isHighSurrogate(c) && i + 1 < wide.size() && isLowSurrogate(wide[i + 1]))
            c = 0x10000 + ((c - 0xd800) << 10) + (wide[++i] - 0xdc00u);
        else if (isHighSurrogate(c) || isLowSurrogate(c))
            c = 0xfffd;
        appendUtf8(utf8, c);
    }
    return utf8;
}

void KbString::makeEmpty()
{
    m_latin1.clear();
    m_wide.reset();
}

int KbString::find(const KbString& text, int start) const
{
    const std::size_t from = static_cast<std::size_t>(std::max(start, 0));
    if (m_wide) return toPosition(m_wide->find(text.toUtf16(), from));
    if (text.m_wide && !fitsLatin1(*text.m_wide)) return npos;
    return toPosition(m_latin1.find(text.m_latin1, from));
}

int KbString::rfind(const KbString& text) const
{
    if (m_wide) return toPosition(m_wide->rfind(text.toUtf16()));
    if (text.m_wide && !fitsLatin1(*text.m_wide)) return npos;
    return toPosition(m_latin1.rfind(text.m_latin1));
}

bool KbString::startsWith(const KbString& text) const
{
    return getSubString(0, text.getLength()) == text;
}

bool KbString::endsWith(const KbString& text) const
{
    return getLength() >= text.getLength() && getSubString(getLength() - text.getLength()) == text;
}

KbString KbString::getSubString(int start, int end) const
{
    const int length = getLength();
    const int from = std::max(start, 0);
    const int to = end < 0 ? length : std::min(end, length);
    KbString part;
    if (from < to) {
        const std::size_t position = static_cast<std::size_t>(from);
        const std::size_t count = static_cast<std::size_t>(to - from);
        part.m_latin1 = m_latin1.substr(position, count);
        if (m_wide) part.m_wide = std::make_unique<std::u16string>(m_wide->substr(position, count));
    } else if (m_wide) {
        part.m_wide = std::make_unique<std::u16string>();
    }
    return part;
}

KbString& KbString::setNum(int value, int base)
{
    makeEmpty();
    KbNumber::append(m_latin1, std::int64_t{value}, base);
    return *this;
}

KbString& KbString::setNum(unsigned int value, int base)
{
    makeEmpty();
    KbNumber::append(m_latin1, std::int64_t{value}, base);
    return *this;
}

KbString& KbString::setNum(float value)
{
    makeEmpty();
    KbNumber::append(m_latin1, value);
    return *this;
}

KbString& KbString::setNum(double value)
{
    makeEmpty();
    KbNumber::append(m_latin1, value);
    return *this;
}

int KbString::toInt(bool* ok) const { return KbNumber::leadingInt32(m_latin1, ok); }

float KbString::toFloat(bool* ok) const { return KbNumber::leadingFloat(m_latin1, ok); }

KbString KbString::toString_l(const char* format, double value, const char* fallback)
{
    return printed(format, value, fallback, false);
}

KbString KbString::toString_l(const char* format, int value, const char* fallback)
{
    return printed(format, value, fallback, true);
}

KbString KbString::toString_l(const KbString& format, double value, const char* fallback)
{
    return toString_l(format.getString(), value, fallback);
}

KbString KbString::toString_l(const KbString& format, int value, const char* fallback)
{
    return toString_l(format.getString(), value, fallback);
}

KbString& KbString::operator+=(const KbString& text)
{
    if (text.m_wide || m_wide) {
        const std::u16string more = text.toUtf16();
        if (!m_wide) m_wide = std::make_unique<std::u16string>(toUtf16());
        *m_wide += more;
    }
    m_latin1 += text.m_latin1;
    return *this;
}

KbString& KbString::operator+=(const char* latin1)
{
    if (!latin1) return *this;
    if (m_wide) appendWidened(*m_wide, latin1);
    m_latin1 += latin1;
    return *this;
}

KbString& KbString::operator+=(char latin1)
{
    if (m_wide) *m_wide += static_cast<unsigned char>(latin1);
    m_latin1 += latin1;
    return *this;
}

char16_t KbString::operator[](int position) const
{
    if (position < 0 || position >= getLength()) return 0;
    const std::size_t i = static_cast<std::size_t>(position);
    return m_wide ? (*m_wide)[i] : static_cast<unsigned char>(m_latin1[i]);
}

int KbString::compare(const KbString& text) const
{
    if (!m_wide && !text.m_wide) return m_latin1.compare(text.m_latin1);
    const int length = std::min(getLength(), text.getLength());
    for (int i = 0; i < length; ++i)
        if ((*this)[i] != text[i]) return (*this)[i] < text[i] ? -1 : 1;
    return getLength() - text.getLength();
}

bool KbString::isEqual(const KbString& text) const
{
    // Equal texts have equal Latin-1 forms; the reverse needs a look at what lies beyond.
    if (m_latin1 != text.m_latin1) return false;
    if (m_wide && text.m_wide) return *m_wide == *text.m_wide;
    return (!m_wide || fitsLatin1(*m_wide)) && (!text.m_wide || fitsLatin1(*text.m_wide));
}

bool KbString::isEqual(const char* latin1) const
{
    return m_latin1 == (latin1 ? latin1 : "") && (!m_wide || fitsLatin1(*m_wide));
}

std::size_t KbString::hash() const { return std::hash<std::string>()(m_latin1); }

std::ostream& operator<<(std::ostream& out, const KbString& text) { return out << text.toUtf8(); }
