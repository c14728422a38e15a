#pragma once

#include <arborium/base/KsApi.h>

#include <string>

/// The record of a library that is loaded. It enters the list of modules when it is made and leaves it
/// when it dies.
class ARBORIUM_API KsModule {
public:
    /// Null texts count as empty.
    KsModule(const char* fileName, const char* version, const char* compiler,
             const char* architecture, int firstFlag, int secondFlag);
    virtual ~KsModule();
    KsModule(const KsModule&) = delete;
    KsModule& operator=(const KsModule&) = delete;

    /// As given to the constructor.
    const std::string& getFileName() const { return m_fileName; }
    const std::string& getVersion() const { return m_version; }
    const std::string& getCompiler() const { return m_compiler; }
    const std::string& getArchitecture() const { return m_architecture; }
    /// As given; the layer makes nothing of them.
    int getFirstFlag() const { return m_firstFlag; }
    int getSecondFlag() const { return m_secondFlag; }

    /// Of the modules that are loaded now.
    static int getNumModules();
    /// In the order of loading; null for a bad index.
    static const KsModule* getModule(int index);

private:
    std::string m_fileName, m_version, m_compiler, m_architecture;
    int m_firstFlag, m_secondFlag;
};
