#include <arborium/base/KsPreferences.h>

#include <cstdlib>
#include <memory>
#include <mutex>
#include <unordered_map>

namespace {

struct Preference {
    explicit Preference(const KbString& value)
        : text(value), bytes(value.isUnicode() ? value.toUtf8() : value.toLatin1())
    {}
    KbString text;
    std::string bytes;
};

struct Table {
    std::mutex mutex;
    std::unordered_map<std::string, std::unique_ptr<const Preference>> set;
    // What was last seen of the environment, so that pointers to it stay valid.
    std::unordered_map<std::string, std::unique_ptr<const Preference>> environment;

    static Table& get()
    {
        static Table& table = *new Table;
        return table;
    }

    const Preference* find(const std::string& name)
    {
        if (name.empty()) return nullptr;
        const std::lock_guard<std::mutex> lock(mutex);
        const auto it = set.find(name);
        if (it != set.end()) return it->second.get();
        const char* const value = std::getenv(name.c_str());
        if (!value) return nullptr;
        std::unique_ptr<const Preference>& seen = environment[name];
        if (!seen || seen->bytes != value)
            seen = std::make_unique<const Preference>(KbString(value));
        return seen.get();
    }
};

} // namespace

const char* KsPreferences::getValue(const char* name)
{
    const Preference* const preference = name ? Table::get().find(name) : nullptr;
    return preference ? preference->bytes.c_str() : nullptr;
}

const KbString* KsPreferences::getStringValue(const KbString& name)
{
    const Preference* const preference = Table::get().find(name.toUtf8());
    return preference ? &preference->text : nullptr;
}

KbString KsPreferences::getString(const KbString& name, const KbString& defaultValue)
{
    const KbString* const value = getStringValue(name);
    return value ? *value : defaultValue;
}

void KsPreferences::setString(const KbString& name, const KbString& value)
{
    if (name.isEmpty()) return;
    Table& table = Table::get();
    // Made before the old one goes: the value may be a part of it.
    auto preference = std::make_unique<const Preference>(value);
    const std::lock_guard<std::mutex> lock(table.mutex);
    table.set[name.toUtf8()].swap(preference);
}

void KsPreferences::unset(const KbString& name)
{
    Table& table = Table::get();
    const std::lock_guard<std::mutex> lock(table.mutex);
    table.set.erase(name.toUtf8());
}
