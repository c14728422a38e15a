#include "io/KsInputImpl.h"

#include <arborium/base/KbNumber.h>
#include <arborium/base/KsLimits.h>

#include <algorithm>
#include <cstring>

namespace {

constexpr std::array<std::uint8_t, 256> makeCharKinds()
{
    std::array<std::uint8_t, 256> kinds{};
    for (int c = 0; c < 256; ++c) {
        std::uint8_t kind = 0;
        if (c == ' ' || (c >= '\t' && c <= '\r')) kind = KsInput::Impl::Blank;
        if (c > ' ' && c != 0x7f) kind = KsInput::Impl::Word;
        if (c >= '0' && c <= '9') kind |= KsInput::Impl::Digit;
        if ((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c >= 0x80)
            kind |= KsInput::Impl::Letter;
        kinds[static_cast<std::size_t>(c)] = kind;
    }
    for (char c : std::string_view("{}[]()\"',|=#\\")) kinds[static_cast<unsigned char>(c)] = 0;
    return kinds;
}

const char* const s_headers = "\"#Arborium V2.1 ascii\", \"#Arborium V2.1 ascii utf8\" or "
                              "\"#Arborium V2.1 binary\"";

} // namespace

const std::array<std::uint8_t, 256> KsInput::Impl::charKinds = makeCharKinds();

// ---- the text -------------------------------------------------------------------------------

void KsInput::Impl::reset()
{
    forgetObjects();
    std::string().swap(contents);
    begin = cur = end = token = nullptr;
    lineSeen = lineStart = lastErrorAt = nullptr;
    lineNumber = 1;
    path.makeEmpty();
    fieldName = KbName();
    fieldOwner = KsType();
    isOpen = isFile = isProgramText = binary = utf8 = stopped = false;
    version = 2.1f;
    memo = {};
    open.clear();
    numObjects = numBytes = numFiles = topVisits = 0;
    outerDepth = 0;
    includer = nullptr;
}

void KsInput::Impl::start(const char* text, std::size_t size)
{
    begin = cur = token = lineSeen = lineStart = text;
    end = text + size;
    numBytes = static_cast<std::int64_t>(size);
    isOpen = true;
    readHeader();
}

void KsInput::Impl::readHeader()
{
    const std::string_view text(begin, static_cast<std::size_t>(end - begin));
    if (text.substr(0, 3) == "\xef\xbb\xbf") {
        // A byte order mark says what follows.
        utf8 = true;
        cur = token = lineSeen = lineStart = begin + 3;
    }
    const std::string_view rest(cur, bytesLeft());
    if (rest.substr(0, 9) == "#Arborium") {
        const std::string_view line = rest.substr(0, rest.find_first_of("\r\n"));
        std::string_view left = line.substr(9);
        const auto nextWord = [&left] {
            left.remove_prefix(std::min(left.find_first_not_of(" \t"), left.size()));
            const std::string_view word = left.substr(0, left.find_first_of(" \t"));
            left.remove_prefix(word.size());
            return word;
        };
        const std::string_view number = nextWord();
        const std::string_view form = nextWord();
        const std::string_view coding = nextWord();
        const bool known = (form == "ascii" && (coding.empty() || coding == "utf8")) ||
                           (form == "binary" && coding.empty());
        if (line.size() == 9 || number.substr(0, 1) != "V" || !known || !nextWord().empty()) {
            stop("the first line " + quote(line) + " is not known; it must be " + s_headers);
            return;
        }
        if (number != "V2.1" && number != "V2.0" && number != "V1.0") {
            stop("version " + quote(number.substr(1)) +
                 " of the file format is not known; known are 1.0, 2.0 and 2.1");
            return;
        }
        version = number == "V2.1" ? 2.1f : number == "V2.0" ? 2.0f : 1.0f;
        binary = form == "binary";
        utf8 = utf8 || coding == "utf8";
        cur += line.size();
        if (binary) {
            // Behind the line end, of whichever form, every byte counts.
            if (!atEnd() && *cur == '\r') ++cur;
            if (!atEnd() && *cur == '\n') ++cur;
            token = cur;
            return;
        }
    } else if (isFile) {
        if (text.empty()) {
            stop(std::string("the file is empty; its first line must be ") + s_headers);
            return;
        }
        const std::string_view sample = rest.substr(0, 1024);
        const bool garbage = std::any_of(sample.begin(), sample.end(), [](char c) {
            return static_cast<unsigned char>(c) < ' ' && !is(c, Blank);
        });
        stop(std::string(garbage ? "this is binary data and not an Arborium file"
                                 : "this is not an Arborium file") +
             ": the first line must be " + s_headers);
        return;
    }
    if (const void* zero = std::memchr(cur, 0, bytesLeft())) {
        token = static_cast<const char*>(zero);
        stop("a zero byte: this is binary data, which an ASCII file cannot hold");
    }
}

// ---- errors ---------------------------------------------------------------------------------

KsInput::Impl::Place KsInput::Impl::placeOf(const char* at)
{
    if (binary || !begin) return {0, 0};
    if (at < lineSeen) {
        lineSeen = lineStart = begin;
        lineNumber = 1;
    }
    for (; lineSeen < at; ++lineSeen) {
        const bool lineEnd = *lineSeen == '\n' ||
                             (*lineSeen == '\r' && (lineSeen + 1 == end || lineSeen[1] != '\n'));
        if (!lineEnd) continue;
        ++lineNumber;
        lineStart = lineSeen + 1;
    }
    const char* from = lineStart;
    if (from == begin && end - begin >= 3 && std::memcmp(begin, "\xef\xbb\xbf", 3) == 0)
        from = std::min(at, begin + 3);
    const auto count = std::count_if(from, at, [this](char c) {
        return !utf8 || (static_cast<unsigned char>(c) & 0xc0) != 0x80;
    });
    return {lineNumber, static_cast<int>(count) + 1};
}

std::string KsInput::Impl::limitText(std::int64_t limit, const char* what)
{
    return "the limit of " + std::to_string(limit) + " " + what;
}

bool KsInput::Impl::keepsErrors() const
{
    return errors.size() < static_cast<std::size_t>(std::max(KsLimits::current().errorsPerFile, 1));
}

void KsInput::Impl::keep(KsReadError problem)
{
    if (keepsErrors())
        errors.push_back(std::move(problem));
    else
        ++furtherErrors;
}

void KsInput::Impl::keepAll(const KsInput& other)
{
    for (const KsReadError& problem : other.getErrors()) keep(problem);
    furtherErrors += other.getNumFurtherErrors();
}

void KsInput::Impl::errorAt(const char* at, const std::string& message)
{
    if (stopped || (at && at == lastErrorAt)) return;
    lastErrorAt = at;
    if (!keepsErrors()) {
        ++furtherErrors;
        return;
    }
    const Place place = placeOf(at);
    // A binary file has no lines.
    keep({fileName, place.line, place.column,
          binary ? "byte " + std::to_string(at - begin) + ": " + message : message});
}

void KsInput::Impl::stop(const std::string& message)
{
    // What ends the read is told even where an error was found before.
    lastErrorAt = nullptr;
    errorAt(token, message);
    stopped = true;
}

bool KsInput::Impl::expected(const std::string& what)
{
    if (stopped) return false;
    skipBlanks();
    token = cur;
    std::string target = what;
    if (!fieldName.isEmpty()) {
        target += " for the field " + quote(fieldName.view());
        if (!fieldOwner.isBad()) target += std::string(" of ") + fieldOwner.getName().getString();
    }
    if (atEnd())
        endOfText(target);
    else
        error("expected " + target + ", met " + describeNext());
    return false;
}

void KsInput::Impl::endOfText(const std::string& what)
{
    if (stopped) return;
    token = cur = end;
    std::string message;
    if (!what.empty()) message = "expected " + what + ", met ";
    message += "the end of the file";
    if (!open.empty()) {
        const OpenObject& last = open.back();
        message += what.empty() ? ": " : "; ";
        message += "the \"{\" of " + quote(last.type.getName().view()) + " in line " +
                   std::to_string(placeOf(last.at).line) + " has no \"}\"";
        if (open.size() > 1)
            message += ", nor have " + std::to_string(open.size() - 1) + " around it";
    }
    stop(message);
}

std::string KsInput::Impl::describeNext()
{
    if (binary) return "byte " + std::to_string(cur - begin);
    skipBlanks();
    if (atEnd()) return "the end of the file";
    const std::string_view word = wordAt(cur);
    if (!word.empty()) return quote(word);
    const auto c = static_cast<unsigned char>(*cur);
    if (c == '"') {
        const std::string_view text(cur + 1, bytesLeft() - 1);
        return "the string " + quote(text.substr(0, text.find_first_of("\"\\\r\n")));
    }
    if (c < ' ' || c == 0x7f) {
        static const char digits[] = "0123456789abcdef";
        return std::string("the character 0x") + digits[c >> 4] + digits[c & 15];
    }
    return std::string("'") + *cur + "'";
}

std::string KsInput::Impl::quote(std::string_view text) const
{
    constexpr std::size_t most = 60;
    std::string_view shown = text.substr(0, most);
    if (utf8 && shown.size() < text.size()) {
        while (!shown.empty() && (static_cast<unsigned char>(text[shown.size()]) & 0xc0) == 0x80)
            shown.remove_suffix(1);
    }
    std::string result = (utf8 ? KbString::fromUtf8(shown) : KbString(shown)).toUtf8();
    for (char& c : result)
        if (static_cast<unsigned char>(c) < ' ' || c == 0x7f) c = ' ';
    return '"' + result + (shown.size() < text.size() ? "...\"" : "\"");
}

// ---- ASCII tokens ---------------------------------------------------------------------------

const char* KsInput::Impl::behindBlanks(const char* at) const
{
    const char* p = at;
    for (; p != end; ++p) {
        if (is(*p, Blank)) continue;
        if (*p != '#') break;
        while (p != end && *p != '\n' && *p != '\r') ++p;
        if (p == end) break;
    }
    return p;
}

bool KsInput::Impl::looksNumeric(std::string_view word)
{
    if (word.empty()) return false;
    const bool sign = word[0] == '-' || word[0] == '+';
    const std::string_view digits = word.substr(sign ? 1 : 0);
    return !digits.empty() && (is(digits[0], Digit) || digits[0] == '.');
}

bool KsInput::Impl::beginsNode(std::string_view word) const
{
    if (word.empty() || !is(word[0], Letter)) return false;
    return word == "DEF" || word == "USE" || charBehind(word.data() + word.size()) == '{' ||
           !typeNamed(word).isBad();
}

KbName KsInput::Impl::knownName(std::string_view word) const
{
    Known& slot = knownAt(word);
    if (slot.word == word && !slot.name.isEmpty()) return slot.name;
    const KbName name = KbName::findExisting(word);
    if (!name.isEmpty()) slot = {word, name, KsType()};
    return name;
}

KsType KsInput::Impl::typeNamed(std::string_view word) const
{
    Known& slot = knownAt(word);
    if (slot.word == word && !slot.type.isBad()) return slot.type;
    KsType type;
    const auto look = [&type](const KbName& name) {
        if (!name.isEmpty()) type = KsType::fromName(name);
        return !type.isBad();
    };
    // A name that was never made is no type's name; nothing is added to the table of names.
    if (!look(knownName(word)) && word.size() <= 255) {
        if (word.substr(0, 2) == "Ks")
            look(KbName::findExisting(word.substr(2)));
        else
            look(KbName::findExisting("Ks" + std::string(word)));
    }
    if (!type.isBad()) slot = {word, slot.word == word ? slot.name : KbName(), type};
    return type;
}

namespace {
template <class Number>
bool parseOdd(KsInput::Impl& in, Number& value, const char* what, const std::string& range,
              KbNumber::Result (*parse)(std::string_view, Number&))
{
    if (in.stopped) return false;
    const std::string_view word = in.peekWord();
    Number number{};
    switch (parse(word, number)) {
    case KbNumber::Result::Ok:
        in.take(word);
        value = number;
        return true;
    case KbNumber::Result::OutOfRange:
        in.error(in.quote(word) + " is out of range: expected " + what + " " + range);
        return false;
    case KbNumber::Result::NotFinite:
        in.error(in.quote(word) + " is not a finite number: expected " + what);
        return false;
    case KbNumber::Result::NotANumber: break;
    }
    return in.expected(what);
}
} // namespace

bool KsInput::Impl::readOddNumber(std::int32_t& value)
{
    return parseOdd<std::int32_t>(*this, value, "a whole number", "from -2147483648 to 2147483647",
                                  &KbNumber::parseInt32);
}

bool KsInput::Impl::readOddNumber(std::uint32_t& value)
{
    return parseOdd<std::uint32_t>(*this, value, "a whole number", "from 0 to 4294967295",
                                   &KbNumber::parseUInt32);
}

bool KsInput::Impl::readOddNumber(float& value)
{
    return parseOdd<float>(
        *this, value, "a number", "of at most 3.4028235e+38 in absolute value",
        [](std::string_view text, float& number) { return KbNumber::parseFloat(text, number); });
}

bool KsInput::Impl::readOddNumber(double& value)
{
    return parseOdd<double>(
        *this, value, "a number", "of at most 1.8e+308 in absolute value",
        [](std::string_view text, double& number) { return KbNumber::parseDouble(text, number); });
}

bool KsInput::Impl::readBool(bool& value)
{
    const std::string_view word = peekWord();
    const bool yes = word == "TRUE" || word == "1";
    if (!yes && word != "FALSE" && word != "0") return expected("TRUE or FALSE");
    take(word);
    value = yes;
    return true;
}

bool KsInput::Impl::readQuoted(std::string& bytes)
{
    token = cur;
    const std::int64_t limit = KsLimits::current().stringBytes;
    // Of UTF-8 the characters are counted, later.
    const std::int64_t most = utf8 ? 4 * std::min<std::int64_t>(limit, 1LL << 60) : limit;
    const char* p = cur + 1;
    const char* from = p;
    for (;; ++p) {
        if (p == end) {
            stop("the string that begins here has no closing '\"'");
            return false;
        }
        if (*p == '"') break;
        if (*p != '\\' || p + 1 == end || (p[1] != '"' && p[1] != '\\')) continue;
        bytes.append(from, p);
        from = ++p; // the escaped character itself
    }
    bytes.append(from, p);
    if (static_cast<std::int64_t>(bytes.size()) > most) {
        bytes.clear();
        error("the string has more than " + limitText(limit, "bytes"));
        skipQuoted();
        return false;
    }
    cur = p + 1;
    return true;
}

bool KsInput::Impl::readString(KbString& value)
{
    skipBlanks();
    if (atEnd() || *cur != '"') {
        const std::string_view word = peekWord();
        if (word.empty() || !is(word[0], Letter)) return expected("a string in double quotes");
        take(word);
        value = decode(word);
        return true;
    }
    std::string bytes;
    if (!readQuoted(bytes)) return false;
    if (!utf8) {
        value = KbString(std::move(bytes));
        return true;
    }
    KbString text = decode(bytes);
    const std::int64_t limit = KsLimits::current().stringBytes;
    if (text.getLength() > limit) {
        error("the string has more than " + limitText(limit, "bytes"));
        return false;
    }
    value = std::move(text);
    return true;
}

KbString KsInput::Impl::decode(std::string_view bytes) const
{
    return utf8 ? KbString::fromUtf8(bytes) : KbString(bytes);
}

std::string KsInput::Impl::decodeName(std::string_view bytes) const
{
    return utf8 ? KbString::fromUtf8(bytes).toLatin1() : std::string(bytes);
}

std::string KsInput::Impl::Key::toString() const
{
    // A zero byte stands in no name.
    return suffix < 0 ? name : name + '\0' + std::to_string(suffix);
}

bool KsInput::Impl::readKey(Key& key, std::string& field, bool withField)
{
    const char* const what =
        withField ? "a node's name and a field, as in \"Name.field\"" : "a name";
    skipBlanks();
    token = cur;
    std::string_view word;
    bool quoted = false;
    if (!atEnd() && *cur == '"') {
        std::string bytes;
        if (!readQuoted(bytes)) return false;
        key.name = decodeName(bytes);
        quoted = true;
        word = wordAt(cur);
    } else {
        word = wordAt(cur);
        if (word.empty()) return expected(what);
    }
    const std::string_view all = word;
    if (withField) {
        const std::size_t point = word.rfind('.');
        if (point == std::string_view::npos || point + 1 == word.size()) return expected(what);
        field = decodeName(word.substr(point + 1));
        word = word.substr(0, point);
    }
    const std::size_t plus = word.rfind('+');
    if (plus != std::string_view::npos) {
        const std::string_view digits = word.substr(plus + 1);
        if (!digits.empty() && digits.size() < 10 &&
            std::all_of(digits.begin(), digits.end(), [](char c) { return is(c, Digit); })) {
            std::from_chars(digits.data(), digits.data() + digits.size(), key.suffix);
            word = word.substr(0, plus);
        }
    }
    if (quoted && !word.empty()) return expected(what);
    if (!quoted) key.name = decodeName(word);
    const std::int32_t limit = KsLimits::current().nameBytes;
    if (key.name.size() > static_cast<std::size_t>(std::max(limit, 0))) {
        take(all);
        error("the name has more than " + limitText(limit, "bytes"));
        return false;
    }
    take(all);
    return true;
}

void KsInput::Impl::skipValue(const KsFieldData* fields)
{
    if (stopped) return;
    skipBlanks();
    if (atEnd() || *cur == '}') return;
    const std::string_view word = wordAt(cur);
    if (word.empty()) {
        if (*cur == '{') {
            skipBraces();
        } else if (*cur == '[' || *cur == '(') {
            skipBrackets();
        } else if (*cur == '"') {
            skipQuoted();
        } else {
            ++cur;
            return;
        }
    } else {
        const KbName name = knownName(word);
        if (fields && !name.isEmpty() && fields->getIndex(name) >= 0) return;
        if (looksNumeric(word)) {
            for (std::string_view each = word; looksNumeric(each); each = wordAt(cur)) {
                take(each);
                skipBlanks();
            }
        } else if (word == "DEF" || word == "USE" || charBehind(cur + word.size()) == '{') {
            skipNode(word);
        } else {
            // A word that has a value behind it is the next field and not the present value.
            const char next = charBehind(cur + word.size());
            if (next == '"' || next == '[' || next == '(' || is(next, Digit) || next == '-' ||
                next == '.')
                return;
            take(word);
        }
    }
    skipBlanks();
    if (!atEnd() && *cur == '=') {
        ++cur;
        skipBlanks();
        if (!atEnd() && *cur == '"') skipQuoted();
        if (!stopped) take(wordAt(cur));
    }
}

void KsInput::Impl::skipQuoted()
{
    const char* p = cur + 1;
    while (p != end && *p != '"') p += *p == '\\' && end - p > 1 ? 2 : 1;
    if (p == end) {
        token = cur;
        stop("the string that begins here has no closing '\"'");
        cur = end;
        return;
    }
    cur = p + 1;
}

void KsInput::Impl::skipBrackets()
{
    int depth = 0;
    while (!stopped) {
        skipBlanks();
        if (atEnd() || *cur == '}') return;
        const char c = *cur;
        if (c == '"') {
            skipQuoted();
            continue;
        }
        if (c == '{') {
            skipBraces();
            continue;
        }
        ++cur;
        if (c == '[' || c == '(') ++depth;
        if ((c == ']' || c == ')') && --depth <= 0) return;
    }
}

void KsInput::Impl::skipBraces()
{
    std::size_t depth = 0;
    const char* const from = cur;
    while (!stopped) {
        skipBlanks();
        if (atEnd()) {
            const int line = placeOf(from).line;
            token = cur;
            stop("the end of the file: the \"{\" in line " + std::to_string(line) +
                 " has no \"}\"");
            return;
        }
        const char c = *cur;
        if (c == '"') {
            skipQuoted();
            continue;
        }
        ++cur;
        if (c == '{') ++depth;
        if (c == '}' && --depth == 0) return;
    }
}

void KsInput::Impl::skipNode(std::string_view word)
{
    take(word);
    if (word == "DEF" || word == "USE") {
        skipBlanks();
        if (!atEnd() && *cur == '"') skipQuoted();
        if (stopped) return;
        take(wordAt(cur));
        if (word == "USE") return;
        skipBlanks();
        take(wordAt(cur));
    }
    skipBlanks();
    if (!atEnd() && *cur == '{') skipBraces();
}

// ---- binary ---------------------------------------------------------------------------------

bool KsInput::Impl::needMore(std::size_t bytes)
{
    if (stopped) return false;
    return binaryError("expected " + std::to_string(bytes) +
                       " more bytes, met the end of the file");
}

bool KsInput::Impl::binaryError(const std::string& message)
{
    stop(message);
    return false;
}

bool KsInput::Impl::readBinaryText(std::string_view& text, std::int64_t limit, const char* what)
{
    std::uint32_t size;
    if (!readBytes(size, 4)) return false;
    if (static_cast<std::int64_t>(size) > limit)
        return binaryError(std::string(what) + " has more than " + limitText(limit, "bytes"));
    if (!need(size)) return false;
    text = std::string_view(cur, size);
    cur += size;
    return true;
}

bool KsInput::Impl::readBinaryKey(Key& key)
{
    std::uint32_t suffix;
    std::string_view name;
    if (!readBinaryText(name, KsLimits::current().nameBytes, "a name")) return false;
    if (name.find('\0') != std::string_view::npos) return binaryError("a name with a zero byte");
    key.name = name;
    if (!readBytes(suffix, 4)) return false;
    key.suffix = static_cast<std::int32_t>(suffix);
    return true;
}
