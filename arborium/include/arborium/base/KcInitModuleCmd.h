#pragma once

#include <arborium/base/KsApi.h>

#include <string>
#include <vector>

/// Announces modules to the processes of a cluster. In a single process the names are only kept.
class ARBORIUM_API KcInitModuleCmd {
public:
    /// The one of the process; never null.
    static KcInitModuleCmd* Instance();

    /// Announces a module. Null is ignored.
    void serialize(const char* moduleName);
    /// All names announced so far, in order, repeated ones each time.
    const std::vector<std::string>& getNames() const { return m_names; }

private:
    KcInitModuleCmd() = default;

    std::vector<std::string> m_names;
};
