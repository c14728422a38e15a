#include <arborium/base/KbNumber.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

std::string_view skipBlanks(std::string_view text)
{
    const std::size_t first = text.find_first_not_of(" \t\n\v\f\r");
    return first == std::string_view::npos ? std::string_view() : text.substr(first);
}

// from_chars takes no plus sign.
std::string_view skipPlus(std::string_view text)
{
    if (text.size() > 1 && text[0] == '+' && text[1] != '-' && text[1] != '+')
        text.remove_prefix(1);
    return text;
}

// Whether a number that no float can hold is too small rather than too large.
bool isTiny(std::string_view text)
{
    if (!text.empty() && text[0] == '-') text.remove_prefix(1);
    std::int64_t exponent = 0;
    const std::size_t e = text.find_first_of("eE");
    if (e != std::string_view::npos) {
        const std::string_view power = skipPlus(text.substr(e + 1));
        const auto r = std::from_chars(power.data(), power.data() + power.size(), exponent);
        if (r.ec == std::errc::result_out_of_range) return power[0] == '-';
        text = text.substr(0, e);
    }
    // The power of ten of the first digit that is not zero.
    const std::size_t point = std::min(text.find('.'), text.size());
    const std::size_t digit = text.find_first_not_of("0.");
    if (digit == std::string_view::npos) return true;
    const std::int64_t place = digit < point ? static_cast<std::int64_t>(point - digit)
                                             : -static_cast<std::int64_t>(digit - point - 1);
    return place + exponent < 0;
}

template <class T> KbNumber::Result parseReal(std::string_view text, T& value, bool allowNonFinite)
{
    using KbNumber::Result;
    text = skipPlus(text);
    T number = 0;
    const char* const end = text.data() + text.size();
    const auto r = std::from_chars(text.data(), end, number);
    if (r.ec == std::errc::invalid_argument || r.ptr != end) return Result::NotANumber;
    if (r.ec == std::errc::result_out_of_range) {
        if (!isTiny(text)) return Result::OutOfRange;
        number = text[0] == '-' ? -T(0) : T(0);
    }
    if (!std::isfinite(number) && !allowNonFinite) return Result::NotFinite;
    value = number;
    return Result::Ok;
}

template <class T> KbNumber::Result parseWhole(std::string_view text, T& value)
{
    using KbNumber::Result;
    text = skipPlus(text);
    const bool negative = !text.empty() && text[0] == '-';
    std::string_view digits = negative ? text.substr(1) : text;
    int base = 10;
    if (digits.size() > 2 && digits[0] == '0' && (digits[1] == 'x' || digits[1] == 'X')) {
        base = 16;
        digits.remove_prefix(2);
    }
    std::uint64_t magnitude = 0;
    const char* const end = digits.data() + digits.size();
    const auto r = std::from_chars(digits.data(), end, magnitude, base);
    if (r.ec == std::errc::invalid_argument || r.ptr != end) return Result::NotANumber;
    const std::uint64_t top = static_cast<std::uint64_t>(std::numeric_limits<T>::max());
    const std::uint64_t limit = !negative ? top : std::numeric_limits<T>::is_signed ? top + 1 : 0;
    if (r.ec == std::errc::result_out_of_range || magnitude > limit) return Result::OutOfRange;
    const std::int64_t number = static_cast<std::int64_t>(magnitude);
    value = static_cast<T>(negative ? -number : number);
    return Result::Ok;
}

template <class T> void appendReal(std::string& text, T value)
{
    char buffer[64];
    // Plain digits where they are not much longer: 100000 rather than 1e+05.
    const T size = std::fabs(value);
    const bool plain = size == 0 || (size >= T(1e-5) && size < T(1e9));
    const auto r =
        plain ? std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed)
              : std::to_chars(buffer, buffer + sizeof buffer, value);
    text.append(buffer, r.ptr);
}

} // namespace

namespace KbNumber {

Result parseInt32(std::string_view text, std::int32_t& value) { return parseWhole(text, value); }

Result parseUInt32(std::string_view text, std::uint32_t& value) { return parseWhole(text, value); }

Result parseFloat(std::string_view text, float& value, bool allowNonFinite)
{
    return parseReal(text, value, allowNonFinite);
}

Result parseDouble(std::string_view text, double& value, bool allowNonFinite)
{
    return parseReal(text, value, allowNonFinite);
}

std::int32_t leadingInt32(std::string_view text, bool* ok)
{
    text = skipPlus(skipBlanks(text));
    std::int32_t number = 0;
    const auto r = std::from_chars(text.data(), text.data() + text.size(), number);
    if (ok) *ok = r.ec != std::errc::invalid_argument;
    if (r.ec == std::errc::result_out_of_range)
        return text[0] == '-' ? std::numeric_limits<std::int32_t>::min()
                              : std::numeric_limits<std::int32_t>::max();
    return number;
}

float leadingFloat(std::string_view text, bool* ok)
{
    text = skipPlus(skipBlanks(text));
    const std::string_view digits = !text.empty() && text[0] == '-' ? text.substr(1) : text;
    const bool isNumber =
        !digits.empty() &&
        (isDigit(digits[0]) || (digits.size() > 1 && digits[0] == '.' && isDigit(digits[1])));
    if (ok) *ok = isNumber;
    if (!isNumber) return 0;
    float number = 0;
    const auto r = std::from_chars(text.data(), text.data() + text.size(), number);
    if (r.ec == std::errc::result_out_of_range) {
        text = text.substr(0, static_cast<std::size_t>(r.ptr - text.data()));
        if (isTiny(text)) return 0;
        constexpr float top = std::numeric_limits<float>::max();
        return text[0] == '-' ? -top : top;
    }
    return number;
}

void append(std::string& text, float value) { appendReal(text, value); }

void append(std::string& text, double value) { appendReal(text, value); }

void append(std::string& text, std::int64_t value, int base)
{
    char buffer[72];
    const auto r =
        std::to_chars(buffer, buffer + sizeof buffer, value, base >= 2 && base <= 36 ? base : 10);
    text.append(buffer, r.ptr);
}

std::string toString(float value)
{
    std::string text;
    append(text, value);
    return text;
}

std::string toString(double value)
{
    std::string text;
    append(text, value);
    return text;
}

std::string toString(std::int32_t value, int base)
{
    std::string text;
    append(text, std::int64_t{value}, base);
    return text;
}

std::int32_t toInt32(double value)
{
    if (std::isnan(value)) return 0;
    if (value >= std::numeric_limits<std::int32_t>::max())
        return std::numeric_limits<std::int32_t>::max();
    if (value <= std::numeric_limits<std::int32_t>::min())
        return std::numeric_limits<std::int32_t>::min();
    return static_cast<std::int32_t>(value);
}

} // namespace KbNumber

namespace {

// As many characters as the result may have.
constexpr std::size_t s_longestPrint = 95;
constexpr std::size_t s_longestUtf8 = 4;

void keep(std::string& literal, char c)
{
    // What lies beyond is never seen.
    if (literal.size() < s_longestPrint + s_longestUtf8) literal += c;
}

// A character of a UTF-8 text is kept whole or not at all.
void cut(std::string& text)
{
    if (text.size() <= s_longestPrint) return;
    std::size_t end = s_longestPrint;
    for (std::size_t back = 0; back < s_longestUtf8; ++back) {
        if ((static_cast<unsigned char>(text[end - back]) & 0xC0) == 0x80) continue;
        end -= back;
        break;
    }
    text.resize(end);
}

// Reads digits up to `limit`; false beyond it. No digit at all leaves `number` as it is.
bool readDigits(std::string_view format, std::size_t& i, int limit, int& number)
{
    for (bool first = true; i < format.size() && isDigit(format[i]); ++i, first = false) {
        number = (first ? 0 : number * 10) + (format[i] - '0');
        if (number > limit) return false;
    }
    return true;
}

void toUpper(std::string& text)
{
    for (char& c : text)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
}

} // namespace

bool KbNumberFormat::parse(const char* format) { return format && parse(std::string_view(format)); }

bool KbNumberFormat::parse(std::string_view format)
{
    KbNumberFormat parsed;
    bool found = false;
    for (std::size_t i = 0; i < format.size();) {
        std::string& literal = found ? parsed.m_after : parsed.m_before;
        if (format[i] == '\0') return false;
        if (format[i] != '%') {
            keep(literal, format[i++]);
            continue;
        }
        if (++i < format.size() && format[i] == '%') {
            keep(literal, format[i++]);
            continue;
        }
        if (found) return false;
        found = true;
        for (bool isFlag = true; isFlag && i < format.size();) {
            switch (format[i]) {
            case '-': parsed.m_left = true; break;
            case '+': parsed.m_plus = true; break;
            case ' ': parsed.m_blank = true; break;
            case '#': parsed.m_alternate = true; break;
            case '0': parsed.m_zero = true; break;
            default: isFlag = false;
            }
            if (isFlag) ++i;
        }
        if (!readDigits(format, i, 99, parsed.m_width)) return false;
        if (i < format.size() && format[i] == '.') {
            ++i;
            parsed.m_precision = 0;
            if (!readDigits(format, i, 30, parsed.m_precision)) return false;
        }
        const bool isLong = i < format.size() && format[i] == 'l';
        if (isLong) ++i;
        if (i >= format.size()) return false;
        parsed.m_conversion = format[i++];
        const char* const allowed = isLong ? "difFeEgG" : "diouxXfFeEgG";
        if (std::string_view(allowed).find(parsed.m_conversion) == std::string_view::npos)
            return false;
    }
    if (!found) return false;
    *this = parsed;
    return true;
}

bool KbNumberFormat::isInteger() const
{
    return std::string_view("diouxX").find(m_conversion) != std::string_view::npos;
}

// Without sign and padding.
std::string KbNumberFormat::printDigits(double value) const
{
    if (!std::isfinite(value)) return std::isnan(value) ? "nan" : "inf";
    char buffer[512];
    const auto render = [&](std::chars_format style, int precision) {
        const auto r =
            std::to_chars(buffer, buffer + sizeof buffer, std::fabs(value), style, precision);
        return std::string(buffer, r.ptr);
    };
    int precision = m_precision < 0 ? 6 : m_precision;
    std::string digits;
    switch (m_conversion) {
    case 'f':
    case 'F': digits = render(std::chars_format::fixed, precision); break;
    case 'e':
    case 'E': digits = render(std::chars_format::scientific, precision); break;
    default: {
        if (!m_alternate) return render(std::chars_format::general, precision);
        // "#" keeps the zeros at the end, which the general style drops.
        precision = std::max(precision, 1);
        digits = render(std::chars_format::scientific, precision - 1);
        const int exponent =
            KbNumber::leadingInt32(std::string_view(digits).substr(digits.find('e') + 1));
        if (exponent >= -4 && exponent < precision)
            digits = render(std::chars_format::fixed, precision - 1 - exponent);
    }
    }
    if (m_alternate && digits.find('.') == std::string::npos)
        digits.insert(std::min(digits.find('e'), digits.size()), 1, '.');
    return digits;
}

std::string KbNumberFormat::print(double value) const
{
    if (isInteger()) return print(KbNumber::toInt32(value));

    std::string digits = printDigits(value);
    if (m_conversion == 'F' || m_conversion == 'E' || m_conversion == 'G') toUpper(digits);
    const std::string sign = std::signbit(value) ? "-" : m_plus ? "+" : m_blank ? " " : "";
    return finish(sign, std::move(digits), m_zero && std::isfinite(value));
}

std::string KbNumberFormat::print(std::int32_t value) const
{
    if (!isInteger()) return print(static_cast<double>(value));

    const bool isSigned = m_conversion == 'd' || m_conversion == 'i';
    const int base = isSigned || m_conversion == 'u' ? 10 : m_conversion == 'o' ? 8 : 16;
    const std::int64_t magnitude =
        isSigned ? std::abs(std::int64_t{value}) : std::int64_t{static_cast<std::uint32_t>(value)};
    std::string digits;
    if (magnitude != 0 || m_precision != 0) KbNumber::append(digits, magnitude, base);
    if (m_precision > static_cast<int>(digits.size()))
        digits.insert(0, static_cast<std::size_t>(m_precision) - digits.size(), '0');
    if (m_alternate && base == 8 && (digits.empty() || digits[0] != '0')) digits.insert(0, 1, '0');
    std::string prefix;
    if (isSigned)
        prefix = value < 0 ? "-" : m_plus ? "+" : m_blank ? " " : "";
    else if (m_alternate && base == 16 && magnitude != 0)
        prefix = "0x";
    if (m_conversion == 'X') {
        toUpper(digits);
        toUpper(prefix);
    }
    return finish(prefix, std::move(digits), m_zero && m_precision < 0);
}

std::string KbNumberFormat::finish(const std::string& prefix, std::string digits, bool zeros) const
{
    const std::size_t length = prefix.size() + digits.size();
    const std::size_t width = static_cast<std::size_t>(m_width);
    const std::size_t padding = width > length ? width - length : 0;
    std::string text = m_before;
    if (!m_left && !zeros) text.append(padding, ' ');
    text += prefix;
    if (!m_left && zeros) text.append(padding, '0');
    text += digits;
    if (m_left) text.append(padding, ' ');
    text += m_after;
    cut(text);
    return text;
}
