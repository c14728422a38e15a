#pragma once

#include <arborium/base/KsApi.h>

#include <cstdint>

/// The one OpenGL context of the process: no window, no display server, an OpenGL of the
/// compatibility kind (2.1 or later), made at the first use. Where none can be had, one message is
/// posted and everything else goes on without pictures. For one thread at a time.
class ARBORIUM_API KsGLContext {
public:
    /// Makes the context if that was not tried yet. The preference `ARBORIUM_NO_GL`, set to
    /// anything but "0", keeps it from being made.
    static bool isAvailable();
    /// The driver's name for what draws; empty without a context.
    static const char* getRendererName();
    /// The version that the driver reports; empty without a context.
    static const char* getVersion();

    /// Gives the context up with all that was made in it; the next use makes a new one, in which
    /// everything is drawn as before. FALSE while the context is in use.
    static bool release();
    /// Which context there is: 1 for the first, another number for each that is made after a loss,
    /// 0 if none can be had. What was made in a context with another number is gone.
    static std::uint64_t getNumber();
    /// Whether the driver has lost what was in the context (the graphics card was reset, or went
    /// away). To be asked while the context is current.
    static bool isLost();
    /// As `release`, with a message that the context was lost.
    static bool releaseLost();

    /// Makes the context current for a scope. What was current before, a context of Qt included,
    /// is current again afterwards. Scopes may be nested.
    class ARBORIUM_API Current {
    public:
        /// Makes the context at first use.
        Current();
        ~Current();
        Current(const Current&) = delete;
        Current& operator=(const Current&) = delete;
        /// FALSE if there is no context, or another thread is using it: call no GL function then.
        explicit operator bool() const { return m_current; }

    private:
        bool m_current = false;
        bool m_outermost = false;
        void* m_formerContext = nullptr;
        void* m_formerDraw = nullptr;
        void* m_formerRead = nullptr;
        void* m_formerDisplay = nullptr;
        void* m_formerQtContext = nullptr;
        void* m_formerQtSurface = nullptr;
    };
};
