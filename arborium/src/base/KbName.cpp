#include <arborium/base/KbName.h>
#include <arborium/base/KbString.h>

#include <memory>
#include <mutex>
#include <ostream>
#include <unordered_map>

namespace {

struct NameTable {
    std::mutex mutex;
    // The keys are the texts themselves, which never move.
    std::unordered_map<std::string_view, std::unique_ptr<const std::string>> names;

    static NameTable& get()
    {
        static NameTable& table = *new NameTable;
        return table;
    }

    const std::string* find(std::string_view text)
    {
        if (text.empty()) return nullptr;
        const std::lock_guard<std::mutex> lock(mutex);
        const auto it = names.find(text);
        return it == names.end() ? nullptr : it->second.get();
    }

    const std::string* intern(std::string_view text)
    {
        if (text.empty()) return nullptr;
        const std::lock_guard<std::mutex> lock(mutex);
        const auto it = names.find(text);
        if (it != names.end()) return it->second.get();
        auto copy = std::make_unique<const std::string>(text);
        const std::string* const kept = copy.get();
        names.emplace(*kept, std::move(copy));
        return kept;
    }
};

} // namespace

KbName::KbName(const char* text) : KbName(std::string_view(text ? text : "")) {}

KbName::KbName(const std::string& text) : KbName(std::string_view(text)) {}

// Up to a zero byte, so that all ways to read a name show the same text.
KbName::KbName(std::string_view text)
    : m_text(NameTable::get().intern(text.substr(0, text.find('\0'))))
{}

KbName::KbName(const KbString& text) : KbName(std::string_view(text.toLatin1())) {}

KbName KbName::findExisting(std::string_view text)
{
    KbName name;
    name.m_text = NameTable::get().find(text.substr(0, text.find('\0')));
    return name;
}

bool KbName::isIdentifier(std::string_view text)
{
    if (text.empty()) return false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const unsigned char c = static_cast<unsigned char>(text[i]);
        const bool letter =
            (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c >= 0x80;
        if (letter) continue;
        if (i == 0 || c <= ' ' || c == 0x7f ||
            std::string_view("\"'\\{}.+#").find(static_cast<char>(c)) != std::string_view::npos)
            return false;
    }
    return true;
}

std::ostream& operator<<(std::ostream& out, const KbName& name) { return out << name.view(); }
