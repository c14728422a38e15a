#pragma once

#include <arborium/base/KsApi.h>

#include <cstdint>
#include <string>
#include <string_view>

/// Numbers as texts, always in the C locale.
namespace KbNumber {

/// What became of a text that was to be a number.
enum class Result {
    Ok,
    NotANumber, ///< The text, or a part of it, is no number.
    OutOfRange, ///< A number, but not one that the type can hold.
    NotFinite   ///< "inf", "nan" and the like, where they are not allowed.
};

/// The whole text must be the number; a leading "+" is taken, blanks are not. Decimal, or hexadecimal
/// behind "0x". `value` changes only with `Ok`.
ARBORIUM_API Result parseInt32(std::string_view text, std::int32_t& value);
ARBORIUM_API Result parseUInt32(std::string_view text, std::uint32_t& value);
/// The whole text must be the number. A number too small for the type becomes 0.
ARBORIUM_API Result parseFloat(std::string_view text, float& value, bool allowNonFinite = false);
ARBORIUM_API Result parseDouble(std::string_view text, double& value, bool allowNonFinite = false);

/// The number that the text begins with, behind blanks; 0 and `*ok` = false where there is none. What
/// is too large becomes the largest value of its sign. "inf" and "nan" are no numbers here.
ARBORIUM_API std::int32_t leadingInt32(std::string_view text, bool* ok = nullptr);
ARBORIUM_API float leadingFloat(std::string_view text, bool* ok = nullptr);

/// Adds the number's text behind what is there: the shortest that reads back to the same bits.
/// `toString` yields it alone.
ARBORIUM_API void append(std::string& text, float value);
ARBORIUM_API void append(std::string& text, double value);
/// `base` 2 to 36, digits beyond 9 in lower case; another base counts as 10.
ARBORIUM_API void append(std::string& text, std::int64_t value, int base = 10);
ARBORIUM_API std::string toString(float value);
ARBORIUM_API std::string toString(double value);
ARBORIUM_API std::string toString(std::int32_t value, int base = 10);

/// Cuts off the fraction; clamps to the range of the type; not-a-number becomes 0.
ARBORIUM_API std::int32_t toInt32(double value);

} // namespace KbNumber

/// A printf format for one number, taken apart once and printed without printf: literal text, "%%",
/// flags, a width of 0 to 99, a precision of 0 to 30 and exactly one conversion: d i u o x X for whole
/// numbers, f F e E g G for others; an "l" may stand before d, i and the latter.
class ARBORIUM_API KbNumberFormat {
public:
    /// As "%g".
    KbNumberFormat() = default;

    /// False, with the format unchanged, for any other text; null is another text.
    bool parse(const char* format);
    bool parse(std::string_view format);

    /// Whether the conversion is one for whole numbers.
    bool isInteger() const;

    /// What `snprintf` would print into a buffer of 96 bytes, without the part of a UTF-8 character
    /// at the end. A number of the other kind than the conversion's is converted first, clamped
    /// where it must.
    std::string print(double value) const;
    std::string print(std::int32_t value) const;

private:
    std::string printDigits(double value) const;
    std::string finish(const std::string& prefix, std::string digits, bool zeros) const;

    std::string m_before, m_after;
    int m_width = 0;
    int m_precision = -1;
    char m_conversion = 'g';
    bool m_left = false, m_plus = false, m_blank = false, m_alternate = false, m_zero = false;
};
