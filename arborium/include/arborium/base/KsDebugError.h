#pragma once

#include <arborium/base/KsApi.h>

#if defined(__GNUC__)
#define ARBORIUM_PRINTF(formatIndex, firstArgument)                                                \
    __attribute__((format(printf, formatIndex, firstArgument)))
#else
#define ARBORIUM_PRINTF(formatIndex, firstArgument)
#endif

/// Messages to the developer. Posting never stops the program.
class ARBORIUM_API KsDebugError {
public:
    /// Whether something went wrong, or is only told.
    enum class Severity { Error, Info };
    /// `where` is a function's name, as in "KsGroup::addChild"; neither text is null, and both live for
    /// the call only. Calls may come from any thread, one at a time.
    using Handler = void (*)(void* data, Severity severity, const char* where, const char* message);

    /// `format`, as printf's, must be a constant of the program; texts from elsewhere go through
    /// "%s". Null texts count as empty, and the message may have any length. What a handler posts
    /// reaches it as well, up to a depth of 8, and standard error beyond.
    static void post(const char* where, const char* format, ...) ARBORIUM_PRINTF(2, 3);
    static void postInfo(const char* where, const char* format, ...) ARBORIUM_PRINTF(2, 3);

    /// Replaces the handler; null brings back the default one, which writes to standard error. The
    /// former handler is returned, and its data in `*formerData`; null stands for the default one.
    static Handler setHandler(Handler handler, void* data = nullptr, void** formerData = nullptr);
};
