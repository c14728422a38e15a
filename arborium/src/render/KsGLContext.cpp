#include <epoxy/egl.h>
#include <epoxy/gl.h>

#include <arborium/base/KsDebugError.h>
#include <arborium/base/KsPreferences.h>
#include <arborium/render/KsGLContext.h>

#include <QOpenGLContext>

#include <cstring>
#include <string>

namespace {

struct Shared {
    bool tried = false;
    EGLDisplay display = EGL_NO_DISPLAY;
    EGLContext context = EGL_NO_CONTEXT;
    std::uint64_t number = 0;
    std::string renderer;
    std::string version;
};

// Never destroyed: at exit the driver may be gone before us.
Shared& shared()
{
    static Shared& instance = *new Shared;
    return instance;
}

thread_local int t_depth = 0;

bool has(const char* extensions, const char* name)
{
    const std::size_t length = std::strlen(name);
    for (const char* at = extensions; at && (at = std::strstr(at, name)); at += length)
        if ((at == extensions || at[-1] == ' ') && (at[length] == ' ' || !at[length])) return true;
    return false;
}

// Whether this display gives a desktop context of version 2.1 or later that needs no surface.
bool tryDisplay(EGLDisplay display, std::string& reason)
{
    if (display == EGL_NO_DISPLAY) return false;
    EGLint major = 0, minor = 0;
    if (!eglInitialize(display, &major, &minor)) {
        reason = "the display cannot be initialized";
        return false;
    }
    const char* extensions = eglQueryString(display, EGL_EXTENSIONS);
    if (!has(extensions, "EGL_KHR_surfaceless_context")) {
        reason = "contexts without a surface are not supported";
        return false;
    }
    const EGLenum formerApi = eglQueryAPI();
    if (!eglBindAPI(EGL_OPENGL_API)) {
        reason = "desktop OpenGL is not supported";
        return false;
    }
    // A surface type of 0 asks for no kind of surface, since all drawing goes to framebuffers.
    const EGLint wanted[] = {EGL_RENDERABLE_TYPE, EGL_OPENGL_BIT, EGL_SURFACE_TYPE, 0, EGL_NONE};
    EGLConfig config = nullptr;
    EGLint count = 0;
    EGLContext context = EGL_NO_CONTEXT;
    // Drivers that can tell of a reset are asked to; the others give a context without.
    const EGLint telling[] = {EGL_CONTEXT_OPENGL_RESET_NOTIFICATION_STRATEGY_KHR,
                              EGL_LOSE_CONTEXT_ON_RESET_KHR, EGL_NONE};
    for (const EGLint* attributes : {telling, static_cast<const EGLint*>(nullptr)}) {
        if (attributes && !has(extensions, "EGL_KHR_create_context")) continue;
        if (eglChooseConfig(display, wanted, &config, 1, &count) && count > 0)
            context = eglCreateContext(display, config, EGL_NO_CONTEXT, attributes);
        if (context == EGL_NO_CONTEXT && has(extensions, "EGL_KHR_no_config_context"))
            context = eglCreateContext(display, static_cast<EGLConfig>(nullptr), EGL_NO_CONTEXT,
                                       attributes);
        if (context != EGL_NO_CONTEXT) break;
    }

    bool good = false;
    if (context == EGL_NO_CONTEXT) {
        reason = "no context can be created";
    } else if (!eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, context)) {
        reason = "the context cannot be made current";
    } else {
        GLint vertexUnits = 0;
        glGetIntegerv(GL_MAX_VERTEX_TEXTURE_IMAGE_UNITS, &vertexUnits);
        const bool framebuffers =
            epoxy_gl_version() >= 30 || epoxy_has_gl_extension("GL_ARB_framebuffer_object");
        good = epoxy_is_desktop_gl() && epoxy_gl_version() >= 21 && framebuffers && vertexUnits > 0;
        if (good) {
            const auto text = [](GLenum name) {
                const GLubyte* value = glGetString(name);
                return std::string(value ? reinterpret_cast<const char*>(value) : "");
            };
            Shared& s = shared();
            s.display = display;
            s.context = context;
            ++s.number;
            s.renderer = text(GL_RENDERER);
            s.version = text(GL_VERSION);
        } else {
            reason = "the context lacks OpenGL 2.1 with framebuffer objects";
        }
        eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    }
    if (!good && context != EGL_NO_CONTEXT) eglDestroyContext(display, context);
    if (formerApi != EGL_NONE) eglBindAPI(formerApi);
    return good;
}

// Only platforms that need no display server: the default display would open one.
bool create(std::string& reason)
{
    const char* client = eglQueryString(EGL_NO_DISPLAY, EGL_EXTENSIONS);
    if (!has(client, "EGL_EXT_platform_base")) {
        reason = "EGL has no platforms without a display server";
        return false;
    }
    if (has(client, "EGL_MESA_platform_surfaceless") &&
        tryDisplay(
            eglGetPlatformDisplayEXT(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr),
            reason))
        return true;
    const bool enumerates =
        has(client, "EGL_EXT_device_base") || has(client, "EGL_EXT_device_enumeration");
    if (enumerates && has(client, "EGL_EXT_platform_device")) {
        EGLDeviceEXT devices[16];
        EGLint count = 0;
        if (eglQueryDevicesEXT(16, devices, &count))
            for (EGLint i = 0; i < count; ++i)
                if (tryDisplay(
                        eglGetPlatformDisplayEXT(EGL_PLATFORM_DEVICE_EXT, devices[i], nullptr),
                        reason))
                    return true;
    }
    if (reason.empty()) reason = "EGL has no platform without a display server";
    return false;
}

// What is current on this thread. EGL refuses while a context of another window system is
// current, so one of Qt is put aside through Qt.
struct Former {
    QOpenGLContext* qtContext = QOpenGLContext::currentContext();
    QSurface* qtSurface = qtContext ? qtContext->surface() : nullptr;
    Former()
    {
        if (qtContext) qtContext->doneCurrent();
    }
};

} // namespace

bool KsGLContext::isAvailable()
{
    Shared& s = shared();
    if (!s.tried) {
        s.tried = true;
        const char* off = KsPreferences::getValue("ARBORIUM_NO_GL");
        if (off && *off && std::strcmp(off, "0") != 0) {
            KsDebugError::postInfo("KsGLContext::isAvailable",
                                   "OpenGL is switched off; scenes are not drawn.");
            return false;
        }
        Former former;
        std::string reason;
        if (!create(reason))
            KsDebugError::post("KsGLContext::isAvailable",
                               "No OpenGL can be had (%s); scenes are not drawn.", reason.c_str());
        if (former.qtContext) former.qtContext->makeCurrent(former.qtSurface);
    }
    return s.context != EGL_NO_CONTEXT;
}

bool KsGLContext::release()
{
    Shared& s = shared();
    if (t_depth > 0) return false;
    if (s.context == EGL_NO_CONTEXT) return true;
    eglDestroyContext(s.display, s.context);
    s.context = EGL_NO_CONTEXT;
    s.tried = false;
    return true;
}

std::uint64_t KsGLContext::getNumber()
{
    isAvailable();
    return shared().number;
}

bool KsGLContext::isLost()
{
    if (t_depth == 0) return false;
    if (epoxy_gl_version() >= 45 || epoxy_has_gl_extension("GL_KHR_robustness"))
        return glGetGraphicsResetStatus() != GL_NO_ERROR;
    return epoxy_has_gl_extension("GL_ARB_robustness") &&
           glGetGraphicsResetStatusARB() != GL_NO_ERROR;
}

bool KsGLContext::releaseLost()
{
    KsDebugError::post("KsGLContext::releaseLost",
                       "The OpenGL context was lost; a new one is made.");
    return release();
}

const char* KsGLContext::getRendererName()
{
    isAvailable();
    return shared().renderer.c_str();
}

const char* KsGLContext::getVersion()
{
    isAvailable();
    return shared().version.c_str();
}

KsGLContext::Current::Current()
{
    if (!isAvailable()) return;
    if (t_depth == 0) {
        Shared& s = shared();
        const Former former;
        m_formerQtContext = former.qtContext;
        m_formerQtSurface = former.qtSurface;
        m_formerContext = eglGetCurrentContext();
        m_formerDraw = eglGetCurrentSurface(EGL_DRAW);
        m_formerRead = eglGetCurrentSurface(EGL_READ);
        m_formerDisplay = eglGetCurrentDisplay();
        m_outermost = true;
        const auto bind = [&s] {
            return eglBindAPI(EGL_OPENGL_API) &&
                   eglMakeCurrent(s.display, EGL_NO_SURFACE, EGL_NO_SURFACE, s.context);
        };
        if (!bind()) {
            // Once more in a new one, if the driver has lost it meanwhile.
            if (eglGetError() != EGL_CONTEXT_LOST || !releaseLost() || !isAvailable() || !bind())
                return;
        }
    }
    ++t_depth;
    m_current = true;
}

KsGLContext::Current::~Current()
{
    if (m_current) --t_depth;
    if (!m_outermost) return;
    if (m_current) eglMakeCurrent(shared().display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    if (m_formerContext)
        eglMakeCurrent(m_formerDisplay, m_formerDraw, m_formerRead, m_formerContext);
    if (m_formerQtContext)
        static_cast<QOpenGLContext*>(m_formerQtContext)
            ->makeCurrent(static_cast<QSurface*>(m_formerQtSurface));
}
