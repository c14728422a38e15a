#include "DialogFile.h"

#include <arborium/base/KsDebugError.h>
#include <arborium/io/KsDB.h>
#include <arborium/io/KsInput.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <iterator>

namespace {

// While one lives, messages of the library become errors of the file that is read.
class MessageCollector {
public:
    MessageCollector(const KsInput& in, std::vector<std::string>& errors)
        : m_in(in), m_errors(errors)
    {
        m_former = KsDebugError::setHandler(&collect, this, &m_formerData);
    }
    ~MessageCollector() { KsDebugError::setHandler(m_former, m_formerData); }
    MessageCollector(const MessageCollector&) = delete;
    MessageCollector& operator=(const MessageCollector&) = delete;

private:
    static void collect(void* data, KsDebugError::Severity, const char* where, const char* message)
    {
        auto* self = static_cast<MessageCollector*>(data);
        // What cannot be opened is among the input's errors already.
        if (!self->m_in.isOpen()) return;
        // Some messages begin with the place themselves.
        const std::string place = self->m_in.getPlace() + ": ";
        const bool isPlaced = std::strncmp(message, place.c_str(), place.size()) == 0;
        self->m_errors.push_back(place + where + ": " +
                                 (isPlaced ? message + place.size() : message));
    }

    const KsInput& m_in;
    std::vector<std::string>& m_errors;
    KsDebugError::Handler m_former;
    void* m_formerData = nullptr;
};

// An editor saved UTF-8 and the first line does not say so: each such character shows as two or three.
void findUntoldUtf8(const std::string& path, std::vector<std::string>& errors)
{
    std::ifstream file(path, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    const std::string header = bytes.substr(0, bytes.find('\n'));
    const auto isBeyondAscii = [](char c) { return static_cast<unsigned char>(c) > 127; };
    // A byte order mark stands in the header.
    if (header.find("ascii") == std::string::npos || header.find("utf8") != std::string::npos ||
        std::any_of(header.begin(), header.end(), isBeyondAscii))
        return;
    const auto first = std::find_if(bytes.begin(), bytes.end(), isBeyondAscii);
    // Latin-1 is next to never valid UTF-8.
    if (first == bytes.end() || KbString::fromUtf8(bytes).toUtf8() != bytes) return;
    errors.push_back(
        path + ":" + std::to_string(1 + std::count(bytes.begin(), first, '\n')) +
        ": characters in UTF-8, but the first line does not say \"utf8\": they are read "
        "as Latin-1");
}

} // namespace

DialogFile::DialogFile(const std::string& filePath) : path(filePath)
{
    KsInput in;
    const MessageCollector collector(in, errors);
    if (in.openFile(path)) root = KsDB::parse(&in);
    for (const KsReadError& error : in.getErrors()) errors.push_back(error.toString());
    if (in.getNumFurtherErrors() > 0) {
        errors.push_back(path + ": " + std::to_string(in.getNumFurtherErrors()) +
                         " more errors are not shown");
    }
    if (root) findUntoldUtf8(path, errors);
    if (!root && errors.empty()) errors.push_back(path + ": cannot be read");
}

std::vector<KsFormweave*> DialogFile::elements() const
{
    std::vector<KsFormweave*> found;
    for (int i = 0; root && i < root->getNumChildren(); ++i) {
        if (auto* element = ksCast<KsFormweave>(root->getChild(i))) found.push_back(element);
    }
    return found;
}

KsFormweave* DialogFile::element(const std::string& id) const
{
    const KbString wanted = KbString::fromUtf8(id);
    for (KsFormweave* each : elements()) {
        if (id.empty() || each->auditorID == wanted) return each;
    }
    return nullptr;
}

std::string DialogFile::noElement(const std::string& id) const
{
    const std::string text = path + ": there is no dialog element";
    return id.empty() ? text : text + " with the auditorID \"" + id + "\"";
}

void DialogFile::printErrors(std::FILE* to) const
{
    for (const std::string& error : errors) std::fprintf(to, "%s\n", error.c_str());
}

KsFormweave* readElement(const DialogFile& file, const std::string& id)
{
    file.printErrors(stderr);
    if (!file.root) return nullptr;
    KsFormweave* element = file.element(id);
    if (!element) std::fprintf(stderr, "%s\n", file.noElement(id).c_str());
    return element;
}
