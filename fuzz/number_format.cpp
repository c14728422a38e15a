// Any text as a format of one number: refused, or taken and then printed as the C library prints it.
// The first bytes are the numbers, the others the format.

#include <arborium/base/KbNumber.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

constexpr std::size_t longest = 95;

[[noreturn]] void fail(const std::string& format, const std::string& ours,
                       const std::string& theirs)
{
    std::fprintf(stderr, "format \"%s\"\nours   \"%s\"\ntheirs \"%s\"\n", format.c_str(),
                 ours.c_str(), theirs.c_str());
    std::abort();
}

template <class Number> std::string byPrintf(const std::string& format, Number number)
{
    char buffer[longest + 1];
    std::snprintf(buffer, sizeof buffer, format.c_str(), number);
    return buffer;
}

/// The part of a UTF-8 character at the end of a text that was cut may be missing.
void compare(const std::string& format, const std::string& ours, const std::string& theirs)
{
    if (ours == theirs) return;
    const bool shortened = theirs.size() == longest && ours.size() + 3 >= longest &&
                           theirs.compare(0, ours.size(), ours) == 0;
    if (!shortened) fail(format, ours, theirs);
}

/// Whether the conversion is of a long number.
bool isLong(const std::string& format)
{
    for (std::size_t i = 0; i + 1 < format.size(); ++i) {
        if (format[i] != '%') continue;
        if (format[i + 1] != '%')
            return format[format.find_first_not_of(" +-#0123456789.", i + 1)] == 'l';
        ++i;
    }
    return false;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    double real = 0;
    std::int32_t whole = 0;
    if (size < sizeof real + sizeof whole) return 0;
    std::memcpy(&real, data, sizeof real);
    std::memcpy(&whole, data + sizeof real, sizeof whole);
    const std::string format(reinterpret_cast<const char*>(data) + sizeof real + sizeof whole,
                             size - sizeof real - sizeof whole);
    KbNumberFormat parsed;
    const bool taken = parsed.parse(format);
    // Whatever it is: of a bounded length, and the same each time.
    for (const std::string& text : {parsed.print(real), parsed.print(whole)})
        if (text.size() > longest) fail(format, text, "");
    if (!taken) {
        if (parsed.print(whole) != KbNumberFormat().print(whole)) fail(format, "changed", "");
        return 0;
    }
    if (parsed.isInteger())
        compare(format, parsed.print(whole),
                isLong(format) ? byPrintf(format, long{whole}) : byPrintf(format, whole));
    else if (!std::isnan(real))
        compare(format, parsed.print(real), byPrintf(format, real));
    return 0;
}
