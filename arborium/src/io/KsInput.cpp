#include "io/KsInputImpl.h"

#include <arborium/base/KbFileHelper.h>
#include <arborium/base/KbNumber.h>
#include <arborium/base/KsDebugError.h>
#include <arborium/base/KsLimits.h>
#include <arborium/nodes/KsNode.h>

#include <algorithm>
#include <cstring>
#include <limits>

namespace {

KbStringList& directories()
{
    static KbStringList& s_directories = *[] {
        auto* list = new KbStringList;
        list->append(".");
        return list;
    }();
    return s_directories;
}

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

/// "the limit of 512 ..." is how each limit is named.
std::string limitText(std::int64_t limit, const char* what)
{
    return "the limit of " + std::to_string(limit) + " " + what;
}

} // namespace

const std::array<std::uint8_t, 256> KsInput::Impl::charKinds = makeCharKinds();

std::string KsReadError::toString() const
{
    if (line <= 0) return file + ": " + message;
    return file + ":" + std::to_string(line) + ":" + std::to_string(column) + ": " + message;
}

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
    isOpen = isFile = binary = utf8 = stopped = false;
    version = 2.1f;
    open.clear();
    numObjects = topVisits = 0;
    outerDepth = 0;
    includer = nullptr;
}

void KsInput::Impl::start(const char* text, std::size_t size)
{
    begin = cur = token = lineSeen = lineStart = text;
    end = text + size;
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

void KsInput::Impl::keep(KsReadError problem)
{
    if (errors.size() < static_cast<std::size_t>(std::max(KsLimits::current().errorsPerFile, 1)))
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
    if (errors.size() >= static_cast<std::size_t>(std::max(KsLimits::current().errorsPerFile, 1))) {
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

KsType KsInput::Impl::typeNamed(std::string_view word)
{
    KsType type;
    const auto look = [&type](std::string_view name) {
        const KbName known = KbName::findExisting(name);
        if (!known.isEmpty()) type = KsType::fromName(known);
        return !type.isBad();
    };
    // A name that was never made is no type's name; nothing is added to the table of names.
    if (look(word) || word.size() > 255) return type;
    if (word.substr(0, 2) == "Ks")
        look(word.substr(2));
    else
        look("Ks" + std::string(word));
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
    if (static_cast<std::int64_t>(bytes.size()) > limit) {
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
    if (utf8)
        value = decode(bytes);
    else
        value = KbString(std::move(bytes));
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
        const KbName name = KbName::findExisting(word);
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

bool KsInput::Impl::need(std::size_t bytes)
{
    if (stopped) return false;
    token = cur;
    if (bytesLeft() >= bytes) return true;
    return binaryError("expected " + std::to_string(bytes) +
                       " more bytes, met the end of the file");
}

bool KsInput::Impl::binaryError(const std::string& message)
{
    stop(message);
    return false;
}

bool KsInput::Impl::readBytes(std::uint32_t& value, int bytes)
{
    if (!need(static_cast<std::size_t>(bytes))) return false;
    value = 0;
    for (int i = 0; i < bytes; ++i) value = value << 8 | static_cast<unsigned char>(*cur++);
    return true;
}

bool KsInput::Impl::readBinaryText(std::string& text, std::int64_t limit, const char* what)
{
    std::uint32_t size;
    if (!readBytes(size, 4)) return false;
    if (static_cast<std::int64_t>(size) > limit)
        return binaryError(std::string(what) + " has more than " + limitText(limit, "bytes"));
    if (!need(size)) return false;
    text.assign(cur, size);
    cur += size;
    return true;
}

bool KsInput::Impl::readBinaryKey(Key& key)
{
    std::uint32_t suffix;
    if (!readBinaryText(key.name, KsLimits::current().nameBytes, "a name")) return false;
    if (key.name.find('\0') != std::string::npos) return binaryError("a name with a zero byte");
    if (!readBytes(suffix, 4)) return false;
    key.suffix = static_cast<std::int32_t>(suffix);
    return true;
}

// ---- objects --------------------------------------------------------------------------------

KsInput::Impl::Reference* KsInput::Impl::find(const Key& key)
{
    const auto found = references.find(key.toString());
    return found == references.end() || !found->second.get() ? nullptr : &found->second;
}

KsBase* KsInput::Impl::Reference::get() const
{
    return watch ? watch->getAttachedNode() : object.get();
}

void KsInput::Impl::Reference::handOver()
{
    auto* node = ksCast<KsNode>(object.get());
    if (!node || !isHandedOut) return;
    watch = std::make_unique<KsNodeSensor>([](void*, KsSensor*) {}, nullptr);
    watch->attach(node);
    node->ref();
    object.reset();
    node->unrefNoDelete();
}

void KsInput::Impl::addVisits(std::int64_t visits)
{
    const std::int64_t limit = KsLimits::current().visits;
    std::int64_t& sum = open.empty() ? topVisits : open.back().visits;
    sum += visits;
    if (sum > limit)
        stop("the nodes of the file, shared ones counted each time that they are used, are more "
             "than " +
             limitText(limit, "visits"));
}

bool KsInput::Impl::mayBegin(const char* at)
{
    const KsLimits& limits = KsLimits::current();
    token = at;
    if (static_cast<std::int64_t>(open.size()) + outerDepth >= limits.nesting) {
        stop("nodes stand inside each other deeper than " +
             limitText(limits.nesting, "levels of nesting"));
        return false;
    }
    if (++numObjects > limits.nodesPerFile) {
        stop("the file has more than " + limitText(limits.nodesPerFile, "nodes"));
        return false;
    }
    return true;
}

void KsInput::Impl::connect()
{
    for (Connection& each : connections) {
        token = each.at;
        const auto found = references.find(each.master);
        KsFieldContainer* master =
            found == references.end() ? nullptr : ksCast<KsFieldContainer>(found->second.get());
        const std::string name = each.master.substr(0, each.master.find('\0'));
        if (!master) {
            KsNearestName nearest(name);
            for (const auto& reference : references) nearest.offer(reference.first);
            error("no node is called " + quote(name) + nearest.hint());
            continue;
        }
        KsField* field = master->getField(KbName::findExisting(each.masterField));
        if (!field) {
            error(std::string(master->getTypeId().getName().getString()) + " has no field " +
                  quote(each.masterField));
        } else if (field->getTypeId() != each.field->getTypeId() || field == each.field) {
            error("the field " + quote(each.masterField) + " of " + quote(name) +
                  " cannot be the source of this one: expected a field of the same kind");
        } else {
            each.field->connectFrom(field);
        }
    }
    connections.clear();
}

void KsInput::Impl::forgetObjects()
{
    connections.clear();
    waiting.clear();
    for (auto& each : references) {
        KsRef<KsBase>& held = each.second.object;
        KsBase* const object = held.get();
        if (!object || !each.second.isHandedOut || object->getRefCount() != 1) continue;
        object->ref();
        held.reset();
        object->unrefNoDelete();
    }
    references.clear();
}

// ---- KsInput --------------------------------------------------------------------------------

KsInput::KsInput() : m_impl(std::make_unique<Impl>()) {}

KsInput::~KsInput() { m_impl->forgetObjects(); }

bool KsInput::openFile(const KbString& path, bool okIfNotFound, bool)
{
    closeFile();
    m_impl->errors.clear();
    m_impl->furtherErrors = 0;

    using Status = KbFileHelper::Status;
    const std::int64_t limit = KsLimits::current().fileBytes;
    Status status = Status::NotFound;
    KbString found = path;
    std::string looked;
    const auto look = [&](const KbString& candidate) {
        found = candidate;
        status = KbFileHelper::readWholeFile(
            candidate, static_cast<std::uint64_t>(std::max<std::int64_t>(limit, 0)),
            m_impl->contents);
        return status != Status::NotFound;
    };
    if (path.isEmpty()) {
        // no file has this name
    } else if (KbFileHelper::isAbsolute(path)) {
        look(path);
    } else {
        const KbStringList list = directories();
        for (const KbString& directory : list) {
            // Names below "." are shown as they were given.
            if (look(directory == "." ? path : KbFileHelper::join(directory, path))) break;
            looked += (looked.empty() ? " in " : ", ") + directory.toUtf8();
        }
    }
    if (status == Status::Ok) {
        m_impl->path = found;
        m_impl->fileName = found.toUtf8();
        m_impl->isFile = true;
        m_impl->start(m_impl->contents.data(), m_impl->contents.size());
        return true;
    }
    m_impl->contents.clear();
    if (status == Status::NotFound && okIfNotFound) return false;

    std::string message;
    switch (status) {
    case Status::NotFound: message = "the file is not found" + looked; break;
    case Status::NotRegular:
        message = std::string("this is ") +
                  (KbFileHelper::isDirectory(found) ? "a directory" : "a device or a pipe") +
                  ", expected a file";
        break;
    case Status::TooLarge: message = "the file has more than " + limitText(limit, "bytes"); break;
    default: message = "the file cannot be read"; break;
    }
    m_impl->fileName = (status == Status::NotFound ? path : found).toUtf8();
    m_impl->keep({m_impl->fileName, 0, 0, message});
    KsDebugError::post("KsInput::openFile", "%s", m_impl->errors.back().toString().c_str());
    return false;
}

void KsInput::closeFile() { m_impl->reset(); }

void KsInput::setBuffer(const void* buffer, std::size_t size)
{
    closeFile();
    m_impl->errors.clear();
    m_impl->furtherErrors = 0;
    m_impl->fileName = "<buffer>";
    static const char nothing[] = "";
    const char* text = buffer ? static_cast<const char*>(buffer) : nothing;
    m_impl->start(text, buffer ? size : 0);
}

void KsInput::addDirectoryFirst(const KbString& directory)
{
    if (!directory.isEmpty()) directories().insert(directory, 0);
}

void KsInput::addDirectoryLast(const KbString& directory)
{
    if (!directory.isEmpty()) directories().append(directory);
}

void KsInput::removeDirectory(const KbString& directory)
{
    const int index = directories().find(directory);
    if (index >= 0) directories().remove(index);
}

void KsInput::clearDirectories() { directories().truncate(0); }

const KbStringList& KsInput::getDirectories() { return directories(); }

const std::string& KsInput::getFileName() const { return m_impl->fileName; }

bool KsInput::isBinary() const { return m_impl->binary; }

float KsInput::getVersion() const { return m_impl->version; }

bool KsInput::isOpen() const { return m_impl->isOpen; }

bool KsInput::eof()
{
    if (!m_impl->binary) m_impl->skipBlanks();
    return m_impl->atEnd();
}

std::size_t KsInput::getBytesLeft() const { return m_impl->bytesLeft(); }

std::string KsInput::getPlace() const
{
    const Impl::Place place = m_impl->placeOf(m_impl->token);
    KsReadError here{m_impl->fileName, place.line, place.column, {}};
    std::string text = here.toString();
    text.resize(text.size() - 2); // the colon before the message that is not there
    return text;
}

const std::vector<KsReadError>& KsInput::getErrors() const { return m_impl->errors; }

int KsInput::getNumFurtherErrors() const { return m_impl->furtherErrors; }

void KsInput::postErrors(const char* where) const
{
    // A handler may use this input for something else.
    const std::vector<KsReadError> errors = m_impl->errors;
    const int further = m_impl->furtherErrors;
    const std::string file = m_impl->fileName;
    for (const KsReadError& each : errors) KsDebugError::post(where, "%s", each.toString().c_str());
    if (further > 0) {
        KsDebugError::post(where, "%s: %d further %s not shown", file.c_str(), further,
                           further == 1 ? "error is" : "errors are");
    }
}

bool KsInput::read(std::int32_t& value)
{
    if (m_impl->stopped) return false;
    if (!m_impl->binary) return m_impl->readNumber(value);
    std::uint32_t bits;
    if (!m_impl->readBytes(bits, 4)) return false;
    value = static_cast<std::int32_t>(bits);
    return true;
}

bool KsInput::read(std::uint32_t& value)
{
    if (m_impl->stopped) return false;
    return m_impl->binary ? m_impl->readBytes(value, 4) : m_impl->readNumber(value);
}

bool KsInput::read(unsigned short& value)
{
    std::uint32_t number;
    if (m_impl->stopped) return false;
    if (m_impl->binary) {
        if (!m_impl->readBytes(number, 2)) return false;
    } else {
        const char* const from = m_impl->behindBlanks(m_impl->cur);
        if (!m_impl->readNumber(number)) return false;
        if (number > std::numeric_limits<unsigned short>::max()) {
            m_impl->error(m_impl->quote(m_impl->wordAt(from)) +
                          " is out of range: expected a whole number from 0 to 65535");
            m_impl->cur = from;
            return false;
        }
    }
    value = static_cast<unsigned short>(number);
    return true;
}

bool KsInput::read(float& value)
{
    if (m_impl->stopped) return false;
    if (!m_impl->binary) return m_impl->readNumber(value);
    std::uint32_t bits;
    if (!m_impl->readBytes(bits, 4)) return false;
    float number;
    std::memcpy(&number, &bits, sizeof number);
    if (!std::isfinite(number)) return m_impl->binaryError("expected a finite number");
    value = number;
    return true;
}

bool KsInput::read(double& value)
{
    if (m_impl->stopped) return false;
    if (!m_impl->binary) return m_impl->readNumber(value);
    std::uint32_t high, low;
    if (!m_impl->readBytes(high, 4) || !m_impl->readBytes(low, 4)) return false;
    const std::uint64_t bits = static_cast<std::uint64_t>(high) << 32 | low;
    double number;
    std::memcpy(&number, &bits, sizeof number);
    if (!std::isfinite(number)) return m_impl->binaryError("expected a finite number");
    value = number;
    return true;
}

bool KsInput::read(bool& value)
{
    if (m_impl->stopped) return false;
    if (!m_impl->binary) return m_impl->readBool(value);
    std::uint32_t number;
    if (!m_impl->readBytes(number, 4)) return false;
    if (number > 1) return m_impl->binaryError("expected 0 or 1");
    value = number == 1;
    return true;
}

bool KsInput::read(KbString& value)
{
    if (m_impl->stopped) return false;
    if (!m_impl->binary) return m_impl->readString(value);
    // A negative number of characters announces UTF-16.
    std::int32_t length;
    if (!read(length)) return false;
    const std::int64_t limit = KsLimits::current().stringBytes;
    const std::int64_t units = length < 0 ? -static_cast<std::int64_t>(length) : length;
    const std::int64_t bytes = length < 0 ? 2 * units : units;
    if (bytes > limit)
        return m_impl->binaryError("a string has more than " + limitText(limit, "bytes"));
    if (!m_impl->need(static_cast<std::size_t>(bytes))) return false;
    const char* p = m_impl->cur;
    m_impl->cur += bytes;
    if (length >= 0) {
        value = KbString(std::string_view(p, static_cast<std::size_t>(bytes)));
        return true;
    }
    std::u16string text;
    text.reserve(static_cast<std::size_t>(units));
    for (std::int64_t i = 0; i < units; ++i, p += 2) {
        text += static_cast<char16_t>(static_cast<unsigned char>(p[0]) << 8 |
                                      static_cast<unsigned char>(p[1]));
    }
    value = KbString::fromUtf16(text);
    return true;
}

bool KsInput::read(KbName& value)
{
    KbString text;
    if (!read(text)) return false;
    const std::int32_t limit = KsLimits::current().nameBytes;
    if (text.getLength() > limit) {
        const std::string message = "the name has more than " + limitText(limit, "bytes");
        if (m_impl->binary) return m_impl->binaryError(message);
        m_impl->error(message);
        return false;
    }
    value = KbName(text);
    return true;
}

bool KsInput::readCount(std::int32_t& count, std::size_t bytesEach, std::int64_t limit)
{
    std::int32_t number;
    if (!read(number)) return false;
    if (number < 0 || number > limit ||
        static_cast<std::uint64_t>(number) * bytesEach > m_impl->bytesLeft()) {
        const std::string message =
            number > limit ? std::to_string(number) + " is more than " + limitText(limit, "values")
                           : "a count of " + std::to_string(number) + ", but " +
                                 std::to_string(m_impl->bytesLeft()) + " bytes follow";
        if (m_impl->binary) return m_impl->binaryError(message);
        m_impl->error(message);
        return false;
    }
    count = number;
    return true;
}

bool KsInput::readWord(KbName& word)
{
    if (m_impl->stopped) return false;
    if (m_impl->binary) {
        std::string text;
        if (!m_impl->readBinaryText(text, KsLimits::current().nameBytes, "a word")) return false;
        word = KbName(text);
        return true;
    }
    const std::string_view next = m_impl->peekWord();
    if (next.empty()) return false;
    const std::int32_t limit = KsLimits::current().nameBytes;
    m_impl->take(next);
    if (next.size() > static_cast<std::size_t>(std::max(limit, 0))) {
        m_impl->error("the word has more than " + limitText(limit, "bytes"));
        return false;
    }
    word = KbName(m_impl->decodeName(next));
    return true;
}

bool KsInput::peekWord(KbName& word)
{
    if (m_impl->stopped || m_impl->binary) return false;
    const std::string_view next = m_impl->peekWord();
    const std::int32_t limit = KsLimits::current().nameBytes;
    if (next.empty() || next.size() > static_cast<std::size_t>(std::max(limit, 0))) return false;
    word = KbName(m_impl->decodeName(next));
    return true;
}

char KsInput::peekChar()
{
    if (m_impl->stopped || m_impl->binary) return '\0';
    m_impl->skipBlanks();
    return m_impl->atEnd() ? '\0' : *m_impl->cur;
}

bool KsInput::takeChar(char c)
{
    if (m_impl->stopped || m_impl->binary) return false;
    m_impl->skipBlanks();
    if (m_impl->atEnd() || *m_impl->cur != c) return false;
    m_impl->token = m_impl->cur++;
    return true;
}

bool KsInput::expectChar(char c, const char* what)
{
    return takeChar(c) || m_impl->expected(what ? what : std::string("'") + c + "'");
}

void KsInput::addError(const std::string& message)
{
    if (m_impl->binary)
        m_impl->binaryError(message);
    else
        m_impl->error(message);
}

std::string KsInput::describeNext() { return m_impl->describeNext(); }

void KsInput::skipValue()
{
    if (!m_impl->binary) m_impl->skipValue(nullptr);
}

void KsInput::skipBraces()
{
    if (m_impl->binary || m_impl->stopped) return;
    m_impl->skipBlanks();
    if (!m_impl->atEnd() && *m_impl->cur == '{') m_impl->skipBraces();
}

void KsInput::addReference(const KbName& name, KsBase* object)
{
    if (!object) return;
    Impl::Reference reference;
    reference.object = object;
    m_impl->references[std::string(name.view())] = std::move(reference);
}

KsBase* KsInput::findReference(const KbName& name) const
{
    const auto found = m_impl->references.find(std::string(name.view()));
    return found == m_impl->references.end() ? nullptr : found->second.get();
}

// ---- KsNearestName --------------------------------------------------------------------------

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

KsNearestName::KsNearestName(std::string_view word) : m_word(word.substr(0, 64)) {}

void KsNearestName::offer(std::string_view candidate)
{
    const std::string_view name = candidate.substr(0, candidate.find('\0'));
    if (name.empty() || name.size() > 128) return;
    const std::size_t d = distance(m_word, name);
    if (!m_best.empty() && (d > m_distance || (d == m_distance && m_best <= name))) return;
    m_best = name;
    m_distance = d;
}

std::string KsNearestName::hint() const
{
    return m_best.empty() ? std::string() : "; the nearest is \"" + m_best + "\"";
}
