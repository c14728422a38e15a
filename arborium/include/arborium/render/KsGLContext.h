#pragma once

#include <arborium/base/KsApi.h>

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

    /// Makes the context current for a scope. What was current before, a context of Qt included,
    /// is current again afterwards. Scopes may be nested.
    class ARBORIUM_API Current {
    public:
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
