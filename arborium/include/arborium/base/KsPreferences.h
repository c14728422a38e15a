#pragma once

#include <arborium/base/KbString.h>

/// Named settings. A name that was not set here has the value of the process's environment. Pointers
/// stay valid until that name gets another value, or is unset.
class ARBORIUM_API KsPreferences {
public:
    /// Null where the name has no value; so for the empty name and null. A value that is not
    /// Latin-1 is UTF-8 here.
    static const char* getValue(const char* name);
    static const char* getValue(const KbString& name) { return getValue(name.getString()); }
    /// The same as a text.
    static const KbString* getStringValue(const KbString& name);
    /// A copy of the value, or `defaultValue` where there is none. An empty value is a value.
    static KbString getString(const KbString& name, const KbString& defaultValue = KbString());

    /// Hides the environment's value of that name; the environment itself stays as it is. An empty name
    /// is ignored.
    static void setString(const KbString& name, const KbString& value);
    /// Back to the environment's value; nothing for a name that was not set here.
    static void unset(const KbString& name);
};
