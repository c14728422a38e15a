#pragma once

#include <arborium/actions/KsWriteAction.h>
#include <arborium/base/KsDebugError.h>
#include <arborium/base/KsLimits.h>
#include <arborium/io/KsDB.h>
#include <arborium/io/KsInput.h>
#include <arborium/io/KsOutput.h>
#include <arborium/nodes/KsSeparator.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

/// What the targets that read scenes share: the layer is started once, messages are swallowed, and
/// the limits are small so that inputs that reach them are short.
namespace SceneFuzz {

inline void start()
{
    static const bool started = [] {
        KsDebugError::setHandler([](void*, KsDebugError::Severity, const char*, const char*) {});
        KsDB::init();
        KsLimits& limits = KsLimits::current();
        limits.nodesPerFile = 2000;
        limits.visits = 20000;
        limits.stringBytes = 1 << 16;
        limits.valuesPerField = 4096;
        // Files may be named in a scene; none may be found.
        KsInput::clearDirectories();
        return true;
    }();
    (void)started;
}

[[noreturn]] inline void fail(const char* what, const std::string& first = {},
                              const std::string& second = {})
{
    std::fprintf(stderr, "%s\n--- first\n%s\n--- second\n%s\n", what, first.c_str(),
                 second.c_str());
    std::abort();
}

inline KsRef<KsSeparator> read(const void* data, std::size_t size)
{
    KsInput in;
    in.setBuffer(data, size);
    KsRef<KsSeparator> root(KsDB::parse(&in));
    if ((root.get() == nullptr) != in.hasErrors()) fail("no tree and no error, or both");
    for (const KsReadError& each : in.getErrors()) {
        if (each.message.empty() || each.line < 0 || each.column < 0 ||
            (each.line > 0) != (each.column > 0))
            fail("an error without a text or a place", each.toString());
    }
    return root;
}

inline std::string write(KsNode* node, bool binary)
{
    KsOutput out;
    out.setBinary(binary);
    KsWriteAction action(&out);
    action.apply(node);
    return out.getBuffer();
}

/// Nothing may be left of what a scope made.
class LeakCheck {
public:
    ~LeakCheck()
    {
        if (KsBase::getNumInstances() != m_before) fail("objects were left behind");
    }

private:
    int m_before = KsBase::getNumInstances();
};

} // namespace SceneFuzz
