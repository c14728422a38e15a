#include "io/KsInputImpl.h"

#include <arborium/base/KbFileHelper.h>
#include <arborium/base/KsDebugError.h>
#include <arborium/base/KsLimits.h>

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

} // namespace

std::string KsReadError::toString() const
{
    if (line <= 0) return file.empty() ? message : file + ": " + message;
    return file + ":" + std::to_string(line) + ":" + std::to_string(column) + ": " + message;
}

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
    case Status::TooLarge:
        message = "the file has more than " + Impl::limitText(limit, "bytes");
        break;
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
    if (units > limit)
        return m_impl->binaryError("a string has more than " + Impl::limitText(limit, "bytes"));
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
        const std::string message = "the name has more than " + Impl::limitText(limit, "bytes");
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
            number > limit
                ? std::to_string(number) + " is more than " + Impl::limitText(limit, "values")
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
        std::string_view text;
        if (!m_impl->readBinaryText(text, KsLimits::current().nameBytes, "a word")) return false;
        word = KbName(text);
        return true;
    }
    const std::string_view next = m_impl->peekWord();
    if (next.empty()) return false;
    const std::int32_t limit = KsLimits::current().nameBytes;
    m_impl->take(next);
    if (next.size() > static_cast<std::size_t>(std::max(limit, 0))) {
        m_impl->error("the word has more than " + Impl::limitText(limit, "bytes"));
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
