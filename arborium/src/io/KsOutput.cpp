#include "io/KsOutputImpl.h"

#include <arborium/base/KbFileHelper.h>
#include <arborium/base/KbNumber.h>
#include <arborium/base/KsBase.h>
#include <arborium/base/KsDebugError.h>
#include <arborium/base/KsLimits.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstring>
#include <limits>
#include <utility>

namespace {

constexpr std::string_view s_asciiHeader = "#Arborium V2.1 ascii";
constexpr std::string_view s_binaryHeader = "#Arborium V2.1 binary\n";
constexpr int s_indent = 4;
constexpr std::size_t s_fullLine = 90;

bool isAscii(std::string_view text)
{
    return std::all_of(text.begin(), text.end(),
                       [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

/// Whether a name can stand in a file without quotes.
bool isPlainName(std::string_view name)
{
    const auto plain = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
               c == '_' || c == '-' || c == ':';
    };
    return !name.empty() && !(name[0] >= '0' && name[0] <= '9') && name[0] != '-' &&
           std::all_of(name.begin(), name.end(), plain);
}

/// Escapes what would otherwise end the string or be taken for an escape.
template <class Text> Text escaped(const Text& text)
{
    using Char = typename Text::value_type;
    Text result;
    result.reserve(text.size() + 2);
    for (std::size_t i = 0; i < text.size(); ++i) {
        const Char c = text[i];
        if (c == Char('\0')) continue; // cannot stand in an ASCII file
        if (c == Char('\\')) {
            const bool last = i + 1 == text.size();
            if (last || text[i + 1] == Char('\\') || text[i + 1] == Char('"') ||
                text[i + 1] == Char('\0'))
                result += Char('\\');
        } else if (c == Char('"')) {
            result += Char('\\');
        }
        result += c;
    }
    return result;
}

template <class Float> Float madeFinite(Float value)
{
    if (std::isfinite(value)) return value;
    if (std::isnan(value)) return 0;
    return value > 0 ? std::numeric_limits<Float>::max() : std::numeric_limits<Float>::lowest();
}

} // namespace

void KsOutput::Impl::tellBeyond(Limit limit, const char* what, std::int64_t most, const char* unit)
{
    if (told & limit) return;
    told |= limit;
    KsDebugError::post("KsOutput::write",
                       "%s more than the limit of %lld %s; with this limit the file cannot be read "
                       "again",
                       what, static_cast<long long>(most), unit);
}

// ---- ASCII layout ---------------------------------------------------------------------------

void KsOutput::Impl::beginFile()
{
    if (!text.empty()) return;
    if (binary) {
        text = s_binaryHeader;
        return;
    }
    text = s_asciiHeader;
    text += '\n';
    lineIsEmpty = true;
    lineStart = text.size();
}

void KsOutput::Impl::newLine()
{
    if (binary || lineIsEmpty) return;
    text += '\n';
    lineIsEmpty = true;
    blankBefore = false;
    lineStart = text.size();
}

void KsOutput::Impl::beginValue()
{
    if (lineIsEmpty)
        text.append(static_cast<std::size_t>(std::max(indentation, 0) * s_indent), ' ');
    else if (blankBefore)
        text += ' ';
    lineIsEmpty = false;
    blankBefore = true;
}

void KsOutput::Impl::append(std::string_view ascii)
{
    beginValue();
    text += ascii;
}

void KsOutput::Impl::becomeUtf8()
{
    if (utf8) return;
    utf8 = true;
    std::string before;
    before.swap(text);
    text = isAscii(before) ? std::move(before) : KbString(std::move(before)).toUtf8();
    if (std::string_view(text).substr(0, s_asciiHeader.size() + 1) ==
        std::string(s_asciiHeader) + '\n')
        text.insert(s_asciiHeader.size(), " utf8");
    lineStart = text.rfind('\n') + 1; // 0 where there is none
}

void KsOutput::Impl::appendLatin1(std::string_view latin1)
{
    if (utf8 && !isAscii(latin1))
        text += KbString(latin1).toUtf8();
    else
        text += latin1;
}

void KsOutput::Impl::appendText(const KbString& value)
{
    beginValue();
    if (!value.isUnicode()) {
        text += '"';
        appendLatin1(escaped(value.toLatin1()));
    } else {
        const std::u16string wide = escaped(value.toUtf16());
        const bool fits =
            std::all_of(wide.begin(), wide.end(), [](char16_t c) { return c < 0x100; });
        if (!fits) becomeUtf8();
        text += '"';
        const KbString whole = KbString::fromUtf16(wide);
        text += utf8 ? whole.toUtf8() : whole.toLatin1();
    }
    text += '"';
}

void KsOutput::Impl::wrap()
{
    if (binary || text.size() - lineStart < s_fullLine) return;
    newLine();
    // The second line of a field stands deeper than its name.
    text.append(static_cast<std::size_t>(std::max(indentation, 0) * s_indent + s_indent), ' ');
    lineIsEmpty = false;
    blankBefore = false;
}

// ---- binary ---------------------------------------------------------------------------------

void KsOutput::Impl::putBytes(std::uint64_t value, int bytes)
{
    for (int i = bytes - 1; i >= 0; --i) text += static_cast<char>(value >> (8 * i) & 0xff);
}

void KsOutput::Impl::putWord(std::string_view word)
{
    putBytes(word.size(), 4);
    text += word;
}

// ---- references -----------------------------------------------------------------------------

namespace {
thread_local bool s_isMarking = false;
} // namespace

KsOutput::Impl::Writing::Writing(Impl& out) : m_out(s_isMarking ? nullptr : &out)
{
    static std::atomic<std::uint32_t> s_number{0};
    if (!m_out) return;
    s_isMarking = true;
    while (m_out->writing == 0) m_out->writing = ++s_number;
}

KsOutput::Impl::Writing::~Writing()
{
    if (!m_out) return;
    s_isMarking = false;
    m_out->writing = 0;
}

KsOutput::Impl::Reference* KsOutput::Impl::find(const KsBase* object)
{
    const auto found = references.find(object);
    return found == references.end() ? nullptr : &inPresentScene(found->second);
}

KsOutput::Impl::Reference& KsOutput::Impl::inPresentScene(Reference& reference) const
{
    if (reference.scene != scene) {
        reference.scene = scene;
        reference.count = 0;
        reference.fieldsAreCounted = reference.needsName = false;
    }
    return reference;
}

KsOutput::Impl::Reference& KsOutput::Impl::at(const KsBase* object)
{
    Reference& reference = inPresentScene(references[object]);
    if (isMarked(object)) {
        object->setWriteMark(0);
        reference.count = 1;
        reference.fieldsAreCounted = true;
    }
    return reference;
}

int KsOutput::Impl::countOf(const KsBase* object)
{
    if (isMarked(object)) return 1;
    const Reference* reference = find(object);
    return reference ? reference->count : 0;
}

bool KsOutput::Impl::meet(const KsBase* object)
{
    if (writing != 0 && !isMarked(object) && !find(object)) {
        object->setWriteMark(writing);
        return true;
    }
    Reference& reference = at(object);
    return ++reference.count == 1 && !std::exchange(reference.fieldsAreCounted, true);
}

std::string KsOutput::Impl::toText(const Key& key)
{
    std::string result(key.name.view());
    if (key.suffix >= 0) result += '+' + std::to_string(key.suffix);
    return result;
}

const KsOutput::Impl::Key& KsOutput::Impl::keyOf(const KsBase* object)
{
    Reference& reference = at(object);
    if (reference.hasKey) return reference.key;
    reference.hasKey = true;
    Key key;
    key.name = object->getName();
    const std::int32_t limit = KsLimits::current().nameBytes;
    if (static_cast<std::int64_t>(key.name.view().size()) > limit)
        tellBeyond(NameBytes, "a name has", limit, "bytes");
    // A bare name belongs to the first that has it; others are told apart by a number.
    if (key.name.isEmpty() || !keys.insert(toText(key)).second) {
        int& next = nextSuffix[key.name];
        do key.suffix = next++;
        while (!keys.insert(toText(key)).second);
    }
    reference.key = key;
    return reference.key;
}

void KsOutput::Impl::writeKey(const Key& key, std::string_view field)
{
    if (binary) {
        putWord(key.name.view());
        putBytes(static_cast<std::uint32_t>(key.suffix), 4);
        if (!field.empty()) putWord(field);
        return;
    }
    beginValue();
    const std::string name(key.name.view());
    if (name.empty() || isPlainName(name)) {
        text += name;
    } else {
        text += '"';
        appendLatin1(escaped(name));
        text += '"';
    }
    if (key.suffix >= 0) text += '+' + std::to_string(key.suffix);
    if (!field.empty()) {
        text += '.';
        appendLatin1(field);
    }
}

// ---- KsOutput -------------------------------------------------------------------------------

KsOutput::KsOutput() : m_impl(std::make_unique<Impl>()) {}

KsOutput::~KsOutput() { closeFile(); }

bool KsOutput::openFile(const KbString& path)
{
    const bool closed = closeFile();
    const std::string shown = path.toUtf8();
    const char* problem = nullptr;
    if (path.isEmpty())
        problem = "a file needs a name";
    else if (KbFileHelper::isDirectory(path))
        problem = "this is a directory";
    else if (KbFileHelper::isAccessible(path, 0) == 1 && !KbFileHelper::isRegularFile(path))
        problem = "this is a device or a pipe";
    else if (!KbFileHelper::isDirectory(KbFileHelper::getDirectory(path)))
        problem = "its directory does not exist";
    else if (KbFileHelper::isAccessible(KbFileHelper::getDirectory(path), 2) != 1)
        problem = "its directory cannot be written to";
    if (problem) {
        KsDebugError::post("KsOutput::openFile", "%s: %s", shown.c_str(), problem);
        return false;
    }
    const bool binary = m_impl->binary;
    const bool synchronizing = m_impl->synchronizing;
    m_impl = std::make_unique<Impl>();
    m_impl->binary = binary;
    m_impl->synchronizing = synchronizing;
    m_impl->path = path;
    m_impl->isFileOpen = true;
    return closed;
}

bool KsOutput::closeFile()
{
    if (!m_impl->isFileOpen) return true;
    m_impl->isFileOpen = false;
    m_impl->beginFile();
    m_impl->newLine();
    const std::int64_t limit = KsLimits::current().fileBytes;
    if (static_cast<std::int64_t>(m_impl->text.size()) > limit)
        m_impl->tellBeyond(Impl::FileBytes, "the file has", limit, "bytes");
    KbString why("not all of the scene could be reached");
    const bool written =
        !m_impl->isPartial && KbFileHelper::writeFileAtomically(m_impl->path, m_impl->text, &why);
    if (!written) {
        KsDebugError::post("KsOutput::closeFile", "%s: %s", m_impl->path.toUtf8().c_str(),
                           why.toUtf8().c_str());
    }
    return written;
}

const std::string& KsOutput::getBuffer() const { return m_impl->text; }

void KsOutput::setBinary(bool binary)
{
    if (binary == m_impl->binary) return;
    if (m_impl->text.empty())
        m_impl->binary = binary;
    else
        KsDebugError::post("KsOutput::setBinary", "The form cannot change within a file");
}

bool KsOutput::isBinary() const { return m_impl->binary; }

KsOutput::Stage KsOutput::getStage() const { return m_impl->stage; }

void KsOutput::setStage(Stage stage) { m_impl->stage = stage; }

void KsOutput::write(std::int32_t value)
{
    if (m_impl->binary)
        m_impl->putBytes(static_cast<std::uint32_t>(value), 4);
    else
        m_impl->append(std::to_string(value));
}

void KsOutput::write(std::uint32_t value)
{
    if (m_impl->binary)
        m_impl->putBytes(value, 4);
    else
        m_impl->append(std::to_string(value));
}

void KsOutput::write(unsigned short value)
{
    if (m_impl->binary)
        m_impl->putBytes(value, 2);
    else
        m_impl->append(std::to_string(value));
}

void KsOutput::write(float value)
{
    const float number = madeFinite(value);
    if (m_impl->binary) {
        std::uint32_t bits;
        std::memcpy(&bits, &number, sizeof bits);
        m_impl->putBytes(bits, 4);
    } else {
        m_impl->append(KbNumber::toString(number));
    }
}

void KsOutput::write(double value)
{
    const double number = madeFinite(value);
    if (m_impl->binary) {
        std::uint64_t bits;
        std::memcpy(&bits, &number, sizeof bits);
        m_impl->putBytes(bits, 8);
    } else {
        m_impl->append(KbNumber::toString(number));
    }
}

void KsOutput::write(const KbString& value)
{
    const std::int64_t limit = KsLimits::current().stringBytes;
    if (value.getLength() > limit)
        m_impl->tellBeyond(Impl::StringBytes, "a string has", limit, "bytes");
    if (!m_impl->binary) {
        m_impl->appendText(value);
    } else if (!value.isUnicode()) {
        m_impl->putWord(value.toLatin1());
    } else {
        const std::u16string wide = value.toUtf16();
        m_impl->putBytes(static_cast<std::uint32_t>(-static_cast<std::int64_t>(wide.size())), 4);
        for (char16_t c : wide) m_impl->putBytes(c, 2);
    }
}

void KsOutput::writeWord(const char* word)
{
    const std::string_view text(word ? word : "");
    if (m_impl->binary)
        m_impl->putWord(text);
    else
        m_impl->append(text);
}

void KsOutput::writeChar(char c)
{
    if (m_impl->binary) return;
    if (m_impl->lineIsEmpty) m_impl->beginValue();
    m_impl->text += c;
}

void KsOutput::incrementIndent() { ++m_impl->indentation; }

void KsOutput::decrementIndent() { --m_impl->indentation; }

void KsOutput::newLine() { m_impl->newLine(); }

int KsOutput::addReference(const KsBase* object) { return object ? ++m_impl->at(object).count : 0; }

int KsOutput::getReferenceCount(const KsBase* object) const
{
    return object ? m_impl->countOf(object) : 0;
}

KbName KsOutput::findName(const KsBase* object) const
{
    const Impl::Reference* reference = m_impl->find(object);
    if (!reference || !reference->isDefined) return {};
    return KbName(Impl::toText(reference->key));
}

KbName KsOutput::makeName(const KsBase* object)
{
    return object ? KbName(Impl::toText(m_impl->keyOf(object))) : KbName();
}

bool KsOutputImpl::isSynchronizing(const KsOutput* out)
{
    return out && const_cast<KsOutput*>(out)->impl().synchronizing;
}

void KsOutputImpl::setSynchronizing(KsOutput* out, bool synchronizing)
{
    if (out) out->impl().synchronizing = synchronizing;
}
