#include <arborium/base/KcInitModuleCmd.h>
#include <arborium/base/KsDBImpl.h>
#include <arborium/base/KsModule.h>

#include <algorithm>
#include <vector>

namespace {

// Modules are static objects of several libraries: the list must be there before the first and after
// the last of them.
std::vector<KsModule*>& modules()
{
    static std::vector<KsModule*>& list = *new std::vector<KsModule*>;
    return list;
}

std::string orEmpty(const char* text) { return text ? text : ""; }

} // namespace

KsModule::KsModule(const char* fileName, const char* version, const char* compiler,
                   const char* architecture, int firstFlag, int secondFlag)
    : m_fileName(orEmpty(fileName)), m_version(orEmpty(version)), m_compiler(orEmpty(compiler)),
      m_architecture(orEmpty(architecture)), m_firstFlag(firstFlag), m_secondFlag(secondFlag)
{
    modules().push_back(this);
}

KsModule::~KsModule()
{
    std::vector<KsModule*>& list = modules();
    list.erase(std::remove(list.begin(), list.end(), this), list.end());
}

int KsModule::getNumModules() { return static_cast<int>(modules().size()); }

const KsModule* KsModule::getModule(int index)
{
    return index >= 0 && index < getNumModules() ? modules()[static_cast<std::size_t>(index)]
                                                 : nullptr;
}

bool KsDBImpl::m_noLocalWidgets = false;
bool KsDBImpl::s_cluster = false;
bool KsDBImpl::s_toolMode = false;

KcInitModuleCmd* KcInitModuleCmd::Instance()
{
    static KcInitModuleCmd* const s_instance = new KcInitModuleCmd;
    return s_instance;
}

void KcInitModuleCmd::serialize(const char* moduleName)
{
    if (moduleName) m_names.emplace_back(moduleName);
}
