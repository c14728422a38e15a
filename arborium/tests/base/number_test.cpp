#include <arborium/base/KbNumber.h>

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

using KbNumber::Result;

// shows: KbNumber::parseInt32, KbNumber::parseUInt32
TEST(Number, isReadFromTheWholeWord)
{
    std::int32_t i = -1;
    EXPECT_EQ(KbNumber::parseInt32("42", i), Result::Ok);
    EXPECT_EQ(i, 42);
    EXPECT_EQ(KbNumber::parseInt32("+7", i), Result::Ok);
    EXPECT_EQ(i, 7);
    EXPECT_EQ(KbNumber::parseInt32("-2147483648", i), Result::Ok);
    EXPECT_EQ(i, INT_MIN);
    EXPECT_EQ(KbNumber::parseInt32("0x1F", i), Result::Ok);
    EXPECT_EQ(i, 31);
    for (const char* bad :
         {"", " 1", "1 ", "1.5", "abc", "-", "+", "0x", "0xg", "+-1", "1e3", "--1"})
        EXPECT_EQ(KbNumber::parseInt32(bad, i), Result::NotANumber) << bad;
    for (const char* bad : {"2147483648", "-2147483649", "99999999999999999999999", "0xffffffff"})
        EXPECT_EQ(KbNumber::parseInt32(bad, i), Result::OutOfRange) << bad;
    EXPECT_EQ(i, 31);

    std::uint32_t u = 0;
    EXPECT_EQ(KbNumber::parseUInt32("0xff8000FF", u), Result::Ok);
    EXPECT_EQ(u, 0xff8000ffu);
    EXPECT_EQ(KbNumber::parseUInt32("-1", u), Result::OutOfRange);
    EXPECT_EQ(KbNumber::parseUInt32("4294967296", u), Result::OutOfRange);
}

// shows: KbNumber::parseFloat
TEST(Number, withAFractionIsReadFromTheWholeWord)
{
    float f = -1;
    EXPECT_EQ(KbNumber::parseFloat("1.5", f), Result::Ok);
    EXPECT_EQ(f, 1.5f);
    EXPECT_EQ(KbNumber::parseFloat("+.5e1", f), Result::Ok);
    EXPECT_EQ(f, 5.0f);
    EXPECT_EQ(KbNumber::parseFloat("3.", f), Result::Ok);
    EXPECT_EQ(f, 3.0f);
    for (const char* bad : {"", " 1", "1 ", "1,5", "1.5f", "e", ".", "-", "1e", "+-1", "0x10"})
        EXPECT_EQ(KbNumber::parseFloat(bad, f), Result::NotANumber) << bad;
    for (const char* bad : {"1e39", "-1e39", "1e999999999999999999999", "123456789e4000"})
        EXPECT_EQ(KbNumber::parseFloat(bad, f), Result::OutOfRange) << bad;
    for (const char* bad : {"inf", "-inf", "nan", "infinity", "+nan"})
        EXPECT_EQ(KbNumber::parseFloat(bad, f), Result::NotFinite) << bad;
    EXPECT_EQ(f, 3.0f);
    EXPECT_EQ(KbNumber::parseFloat("inf", f, true), Result::Ok);
    EXPECT_TRUE(std::isinf(f));
}

// shows: KbNumber::parseDouble
TEST(Number, tooSmallForItsTypeIsZero)
{
    float f = -1;
    for (const char* tiny :
         {"1e-60", "-1e-60", "0.0000000000000000000000000000000000000000000000001",
          "1e-99999999999999999999", "123456e-70"}) {
        f = -1;
        EXPECT_EQ(KbNumber::parseFloat(tiny, f), Result::Ok) << tiny;
        EXPECT_EQ(f, 0.0f) << tiny;
    }
    double d = -1;
    EXPECT_EQ(KbNumber::parseDouble("1e-400", d), Result::Ok);
    EXPECT_EQ(d, 0.0);
    EXPECT_EQ(KbNumber::parseDouble("1e400", d), Result::OutOfRange);
    EXPECT_EQ(KbNumber::parseFloat("1e-45", f), Result::Ok);
    EXPECT_EQ(f, std::numeric_limits<float>::denorm_min());
}

// shows: KbNumber::toString
TEST(Number, readsBackToTheSameBits)
{
    std::mt19937 random(1);
    for (int round = 0; round < 20000; ++round) {
        const std::uint32_t bits = static_cast<std::uint32_t>(random());
        float value, back = 0;
        std::memcpy(&value, &bits, sizeof value);
        if (!std::isfinite(value)) continue;
        ASSERT_EQ(KbNumber::parseFloat(KbNumber::toString(value), back), Result::Ok);
        std::uint32_t backBits;
        std::memcpy(&backBits, &back, sizeof back);
        ASSERT_EQ(backBits, bits) << KbNumber::toString(value);
    }
    float zero = 1;
    ASSERT_EQ(KbNumber::parseFloat(KbNumber::toString(-0.0f), zero), Result::Ok);
    EXPECT_TRUE(std::signbit(zero));
}

// shows: KbNumber::toString
TEST(Number, isWrittenPlainlyWhereThatIsShort)
{
    EXPECT_EQ(KbNumber::toString(100000.0f), "100000");
    EXPECT_EQ(KbNumber::toString(0.1f), "0.1");
    EXPECT_EQ(KbNumber::toString(-3.0f), "-3");
    EXPECT_EQ(KbNumber::toString(0.00005f), "0.00005");
    EXPECT_EQ(KbNumber::toString(1e30f), "1e+30");
    EXPECT_EQ(KbNumber::toString(0.1), "0.1");
    EXPECT_EQ(KbNumber::toString(-255, 16), "-ff");
    EXPECT_EQ(KbNumber::toString(12, 99), "12") << "as if to base 10";
}

// shows: KbNumber::toInt32
TEST(Number, becomesAWholeOneWithinItsRange)
{
    EXPECT_EQ(KbNumber::toInt32(3.9), 3);
    EXPECT_EQ(KbNumber::toInt32(-3.9), -3);
    EXPECT_EQ(KbNumber::toInt32(1e30), INT_MAX);
    EXPECT_EQ(KbNumber::toInt32(-1e30), INT_MIN);
    EXPECT_EQ(KbNumber::toInt32(std::numeric_limits<double>::quiet_NaN()), 0);
    EXPECT_EQ(KbNumber::toInt32(2147483647.0), INT_MAX);
    EXPECT_EQ(KbNumber::toInt32(2147483648.0), INT_MAX);
}

namespace {

// All accepted shapes of one conversion.
std::vector<std::string> formats(char conversion)
{
    std::vector<std::string> all;
    for (const char* flags :
         {"", "-", "+", " ", "#", "0", "-+", "+0", " 0", "-0", "#0", "+ ", "-#+ 0"})
        for (const char* width : {"", "1", "7", "20", "99"})
            for (const char* precision : {"", ".", ".0", ".1", ".3", ".12", ".30"})
                all.push_back(std::string("<%") + flags + width + precision + conversion + "%%>");
    return all;
}

#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
#pragma GCC diagnostic ignored "-Wformat-security"
#endif
template <class T> std::string byPrintf(const std::string& format, T value)
{
    char buffer[96];
    std::snprintf(buffer, sizeof buffer, format.c_str(), value);
    return buffer;
}
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

} // namespace

// shows: KbNumberFormat::parse, KbNumberFormat::isInteger, KbNumberFormat::print
TEST(NumberFormat, printsWholeNumbersAsPrintfDoes)
{
    for (char conversion : {'d', 'i', 'u', 'o', 'x', 'X'}) {
        for (const std::string& format : formats(conversion)) {
            KbNumberFormat parsed;
            ASSERT_TRUE(parsed.parse(format)) << format;
            EXPECT_TRUE(parsed.isInteger());
            for (int value : {0, 1, -1, 8, 42, -12345, INT_MAX, INT_MIN})
                EXPECT_EQ(parsed.print(value), byPrintf(format, value))
                    << format << " of " << value;
        }
    }
}

// shows: KbNumberFormat::isInteger, KbNumberFormat::print
TEST(NumberFormat, printsOtherNumbersAsPrintfDoes)
{
    const double infinity = std::numeric_limits<double>::infinity();
    const double values[] = {0,           -0.0,      1,
                             -1,          0.5,       1.5,
                             2.5,         0.1,       1.0 / 3,
                             -2.0 / 3,    9.995,     99.9999,
                             123456,      1234567,   1e-4,
                             0.0001234,   1e-5,      12345.6789,
                             1e21,        1e100,     -1.7e308,
                             5e-324,      999999.4,  9.5,
                             infinity,    -infinity, std::numeric_limits<double>::quiet_NaN(),
                             double(0.1f)};
    for (char conversion : {'f', 'F', 'e', 'E', 'g', 'G'}) {
        for (const std::string& format : formats(conversion)) {
            KbNumberFormat parsed;
            ASSERT_TRUE(parsed.parse(format)) << format;
            EXPECT_FALSE(parsed.isInteger());
            for (double value : values)
                EXPECT_EQ(parsed.print(value), byPrintf(format, value))
                    << format << " of " << value;
        }
    }
}

// shows: KbNumberFormat::parse
TEST(NumberFormat, keepsTheZerosOfANumberThatRoundsToAPowerOfTen)
{
    // Where printf of some C libraries drops them, against its definition.
    KbNumberFormat parsed;
    ASSERT_TRUE(parsed.parse("%#g"));
    EXPECT_EQ(parsed.print(999999.5), "1.00000e+06");
    EXPECT_EQ(parsed.print(99999.96), "100000.");
    ASSERT_TRUE(parsed.parse("%g"));
    EXPECT_EQ(parsed.print(999999.5), "1e+06");
}

TEST(NumberFormat, printsRandomNumbersAsPrintfDoes)
{
    std::mt19937_64 random(17);
    KbNumberFormat parsed;
    for (const char* format : {"%f", "%3f", "%.3f", "%g", "%.10g", "%#.8g", "%e", "%.0e", "%lf"}) {
        ASSERT_TRUE(parsed.parse(format));
        for (int round = 0; round < 3000; ++round) {
            const std::uint64_t bits = random();
            double value;
            std::memcpy(&value, &bits, sizeof value);
            EXPECT_EQ(parsed.print(value), byPrintf(format, value)) << format;
            if (!std::isfinite(value) || value == 0) continue;
            value = std::ldexp(value, -std::ilogb(value) + static_cast<int>(bits % 40) - 20);
            EXPECT_EQ(parsed.print(value), byPrintf(format, value)) << format;
        }
    }
}

// shows: KbNumberFormat, KbNumberFormat::parse
TEST(NumberFormat, refusesEverythingElse)
{
    for (const char* format : {"",
                               "plain",
                               "%",
                               "%%",
                               "%s%n",
                               "%n",
                               "%s",
                               "%p",
                               "%c",
                               "%a",
                               "%*d",
                               "%.*f",
                               "%-*d",
                               "%100d",
                               "%.31f",
                               "%99999999999d",
                               "%.99999999999f",
                               "%d%d",
                               "%d %f",
                               "%f%s",
                               "%1$d",
                               "%hd",
                               "%hhd",
                               "%lld",
                               "%Lf",
                               "%zd",
                               "%lx",
                               "%'d",
                               "%m",
                               "%5",
                               "%.",
                               "%l",
                               "%-",
                               "%d%",
                               "%.-5f",
                               "%w"}) {
        KbNumberFormat parsed;
        EXPECT_FALSE(parsed.parse(format)) << format;
        EXPECT_EQ(parsed.print(0.5), "0.5") << "the format before stays";
    }
    KbNumberFormat parsed;
    EXPECT_FALSE(parsed.parse(static_cast<const char*>(nullptr)));
    EXPECT_FALSE(parsed.parse(std::string_view("%d\0x", 4)));
}

TEST(NumberFormat, isCutAt95Characters)
{
    KbNumberFormat parsed;
    ASSERT_TRUE(parsed.parse(std::string(200, 'a') + "%d"));
    EXPECT_EQ(parsed.print(5), std::string(95, 'a'));
    ASSERT_TRUE(parsed.parse("%99d"));
    EXPECT_EQ(parsed.print(5), std::string(95, ' '));
    ASSERT_TRUE(parsed.parse("%.30f" + std::string(200, 'z')));
    EXPECT_EQ(parsed.print(1e300).size(), 95u);
}

TEST(NumberFormat, convertsANumberOfTheOtherKind)
{
    KbNumberFormat parsed;
    ASSERT_TRUE(parsed.parse("%d"));
    EXPECT_EQ(parsed.print(3.7), "3");
    EXPECT_EQ(parsed.print(1e30), "2147483647");
    ASSERT_TRUE(parsed.parse("%.1f"));
    EXPECT_EQ(parsed.print(3), "3.0");
}
