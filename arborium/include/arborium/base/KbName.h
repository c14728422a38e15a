#pragma once

#include <arborium/base/KsApi.h>

#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>

class KbString;

/// A text of which there is one copy in the process: comparing names compares pointers. Names are
/// never freed. The empty name by default.
class ARBORIUM_API KbName {
public:
    constexpr KbName() = default;
    /// Null gives the empty name. A text counts up to its first zero byte.
    KbName(const char* text);
    KbName(const std::string& text);
    explicit KbName(std::string_view text);
    /// The text's Latin-1 form.
    KbName(const KbString& text);

    /// The name if it was ever made, else the empty name: nothing is added to the table.
    static KbName findExisting(std::string_view text);

    /// Never null; lives as long as the process.
    const char* getString() const { return m_text ? m_text->c_str() : ""; }
    /// The same text with its length; it lives as long as the process.
    std::string_view view() const
    {
        return m_text ? std::string_view(*m_text) : std::string_view();
    }
    /// In bytes.
    int getLength() const { return m_text ? static_cast<int>(m_text->size()) : 0; }
    /// Whether there is no name; so says `!`.
    bool isEmpty() const { return m_text == nullptr; }
    bool operator!() const { return m_text == nullptr; }

    /// Whether the text may be a node's name in a file: it begins with a letter or "_" and holds no
    /// blank, control character or one of `"'\{}.+#`.
    static bool isIdentifier(std::string_view text);

    /// With a name by its pointer, with a text by its bytes; null is the empty text.
    friend bool operator==(const KbName& a, const KbName& b) { return a.m_text == b.m_text; }
    friend bool operator!=(const KbName& a, const KbName& b) { return a.m_text != b.m_text; }
    friend bool operator==(const KbName& a, const char* b) { return a.isEqual(b); }
    friend bool operator!=(const KbName& a, const char* b) { return !a.isEqual(b); }
    friend bool operator==(const char* a, const KbName& b) { return b.isEqual(a); }
    friend bool operator!=(const char* a, const KbName& b) { return !b.isEqual(a); }
    /// By the characters' codes.
    friend bool operator<(const KbName& a, const KbName& b)
    {
        return a.m_text != b.m_text && a.view() < b.view();
    }

    /// The same for equal names within one run of the program.
    std::size_t hash() const { return std::hash<const void*>()(m_text); }

private:
    bool isEqual(const char* text) const { return view() == (text ? text : ""); }

    const std::string* m_text = nullptr;
};

/// The text as it is.
ARBORIUM_API std::ostream& operator<<(std::ostream& out, const KbName& name);

namespace std {
template <> struct hash<KbName> {
    size_t operator()(const KbName& name) const { return name.hash(); }
};
} // namespace std
