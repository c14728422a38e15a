// The drawer that stands on the context of the process.

#include <epoxy/gl.h>

#include "KsGLDrawer.h"
#include "KsGLFramebuffer.h"

#include <arborium/render/KsGLContext.h>

#include <algorithm>

namespace {

constexpr int samplesPerPixel = 4; // at scales beyond 1

class GLDrawer final : public KsGLDrawer {
public:
    GLDrawer(int width, int height, float scale, const KbColor* background)
        : m_width(width), m_height(height), m_scale(scale)
    {
        if (!m_current ||
            !KsGLFramebuffer::shared().bind(width, height, scale > 1 ? samplesPerPixel : 1))
            return;
        m_bound = true;
        glPushAttrib(GL_ALL_ATTRIB_BITS);
        glViewport(0, 0, width, height);
        glUseProgram(0);
        for (const GLenum off : {GL_DEPTH_TEST, GL_LIGHTING, GL_BLEND, GL_CULL_FACE,
                                 GL_SCISSOR_TEST, GL_TEXTURE_2D, GL_MULTISAMPLE})
            glDisable(off);
        glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
        const KbColor fill = background ? *background : KbColor(0, 0, 0);
        glClearColor(fill[0], fill[1], fill[2], background ? 1 : 0);
        glClear(GL_COLOR_BUFFER_BIT);
        glMatrixMode(GL_PROJECTION);
        glPushMatrix();
        glLoadIdentity();
        glOrtho(0, width, 0, height, -1, 1);
        glMatrixMode(GL_MODELVIEW);
        glPushMatrix();
        glLoadIdentity();
        glLineWidth(1);
    }
    ~GLDrawer() override
    {
        if (!m_bound) return;
        glMatrixMode(GL_MODELVIEW);
        glPopMatrix();
        glMatrixMode(GL_PROJECTION);
        glPopMatrix();
        glPopAttrib();
        KsGLFramebuffer::shared().unbind();
    }
    bool isBound() const { return m_bound; }

    void draw(KsGL::Primitive primitive, const std::vector<KsGLVertex>& vertices,
              bool smooth) override
    {
        const bool softEdges = primitive == KsGL::POLYGON && m_scale > 1;
        (softEdges ? glEnable : glDisable)(GL_MULTISAMPLE);
        const float inside = softEdges ? 0 : insidePixel;
        glShadeModel(smooth ? GL_SMOOTH : GL_FLAT);
        glBegin(static_cast<GLenum>(primitive));
        for (const KsGLVertex& v : vertices) {
            glColor3fv(v.color.getValue());
            glVertex2f(v.x * m_scale + inside, v.y * m_scale + inside);
        }
        glEnd();
    }

    void finish(std::vector<std::uint32_t>& argb) override
    {
        glFlush();
        const auto width = static_cast<std::size_t>(m_width);
        const auto height = static_cast<std::size_t>(m_height);
        std::vector<std::uint8_t> bytes(width * height * 4);
        KsGLFramebuffer::shared().read(m_width, m_height, bytes.data());
        argb.resize(width * height);
        const std::uint8_t* from = bytes.data();
        for (std::size_t y = height; y-- > 0;)
            for (std::size_t x = 0; x < width; ++x, from += 4)
                argb[y * width + x] = static_cast<std::uint32_t>(from[3]) << 24 |
                                      static_cast<std::uint32_t>(from[0]) << 16 |
                                      static_cast<std::uint32_t>(from[1]) << 8 | from[2];
    }

private:
    const KsGLContext::Current m_current;
    bool m_bound = false;
    int m_width, m_height;
    float m_scale;
};

} // namespace

std::unique_ptr<KsGLDrawer> ksGLDrawer(int width, int height, float scale,
                                       const KbColor* background)
{
    auto drawer = std::make_unique<GLDrawer>(width, height, scale, background);
    if (!drawer->isBound()) return nullptr;
    return drawer;
}
