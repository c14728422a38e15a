#include <arborium/base/KsDebugError.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <mutex>
#include <string>

#include <unistd.h>

namespace {

struct Target {
    std::recursive_mutex mutex; // a handler may post
    KsDebugError::Handler handler = nullptr;
    void* data = nullptr;
    int depth = 0;

    static Target& get()
    {
        static Target& target = *new Target;
        return target;
    }
};

// A handler that posts each time it is called ends here.
constexpr int s_deepestPost = 8;

void writeToStandardError(KsDebugError::Severity severity, const char* where,
                          const std::string& message)
{
    std::string text =
        severity == KsDebugError::Severity::Error ? "Arborium error in " : "Arborium info in ";
    text += where;
    text += ": ";
    text += message;
    if (text.back() != '\n') text += '\n';
    // One write, so that messages of several threads do not mix.
    for (std::size_t done = 0; done < text.size();) {
        const ssize_t n = ::write(STDERR_FILENO, text.data() + done, text.size() - done);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return;
        done += static_cast<std::size_t>(n);
    }
}

void postList(KsDebugError::Severity severity, const char* where, const char* format,
              va_list arguments)
{
    const int formerErrno = errno;
    std::string message;
    if (format) {
        va_list again;
        va_copy(again, arguments);
        const int length = std::vsnprintf(nullptr, 0, format, arguments);
        if (length > 0) {
            message.resize(static_cast<std::size_t>(length) + 1);
            std::vsnprintf(&message[0], message.size(), format, again);
            message.pop_back();
        }
        va_end(again);
    }
    if (!where) where = "";
    Target& target = Target::get();
    const std::lock_guard<std::recursive_mutex> lock(target.mutex);
    if (target.handler && target.depth < s_deepestPost) {
        ++target.depth;
        target.handler(target.data, severity, where, message.c_str());
        --target.depth;
    } else {
        writeToStandardError(severity, where, message);
    }
    errno = formerErrno;
}

} // namespace

void KsDebugError::post(const char* where, const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    postList(Severity::Error, where, format, arguments);
    va_end(arguments);
}

void KsDebugError::postInfo(const char* where, const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    postList(Severity::Info, where, format, arguments);
    va_end(arguments);
}

KsDebugError::Handler KsDebugError::setHandler(Handler handler, void* data, void** formerData)
{
    Target& target = Target::get();
    const std::lock_guard<std::recursive_mutex> lock(target.mutex);
    const Handler former = target.handler;
    if (formerData) *formerData = target.data;
    target.handler = handler;
    target.data = handler ? data : nullptr;
    return former;
}
