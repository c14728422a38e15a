#include <epoxy/gl.h>

#include "KsGLFramebuffer.h"

#include <arborium/render/KsGLContext.h>

#include <algorithm>

KsGLFramebuffer& KsGLFramebuffer::shared()
{
    static KsGLFramebuffer& instance = *new KsGLFramebuffer;
    return instance;
}

void KsGLFramebuffer::forgetFormerContext()
{
    if (m_context == KsGLContext::getNumber()) return;
    *this = KsGLFramebuffer();
    m_context = KsGLContext::getNumber();
}

int KsGLFramebuffer::getMaxSize()
{
    forgetFormerContext();
    if (!m_maxSize) {
        GLint buffer = 0, viewport[2] = {0, 0};
        glGetIntegerv(GL_MAX_RENDERBUFFER_SIZE, &buffer);
        glGetIntegerv(GL_MAX_VIEWPORT_DIMS, viewport);
        glGetIntegerv(GL_MAX_SAMPLES, &m_maxSamples);
        m_maxSize = std::max(1, std::min({buffer, viewport[0], viewport[1]}));
    }
    return m_maxSize;
}

void KsGLFramebuffer::release()
{
    const GLuint buffers[] = {m_color, m_depth, m_resolvedColor};
    const GLuint frames[] = {m_drawn, m_resolved};
    glDeleteFramebuffers(2, frames);
    glDeleteRenderbuffers(3, buffers);
    m_drawn = m_color = m_depth = m_resolved = m_resolvedColor = 0;
    m_width = m_height = 0;
}

bool KsGLFramebuffer::bind(int width, int height, int samples)
{
    if (width < 1 || height < 1 || width > getMaxSize() || height > getMaxSize()) return false;
    const long wanted = static_cast<long>(width) * height;
    const bool fits = width <= m_width && height <= m_height && samples == m_askedSamples;
    // One that once served a huge picture is not kept for small ones.
    const bool wasteful = static_cast<long>(m_width) * m_height > std::max(8 * wanted, 4000000L);
    if (!fits || wasteful) {
        const bool grow = samples == m_askedSamples && !wasteful;
        const int newWidth = grow ? std::max(width, m_width) : width;
        const int newHeight = grow ? std::max(height, m_height) : height;
        release();
        m_askedSamples = samples;
        m_samples = samples > 1 ? std::min(samples, m_maxSamples) : 0;
        for (;;) {
            glGenFramebuffers(1, &m_drawn);
            glGenRenderbuffers(1, &m_color);
            glGenRenderbuffers(1, &m_depth);
            glBindFramebuffer(GL_FRAMEBUFFER, m_drawn);
            glBindRenderbuffer(GL_RENDERBUFFER, m_color);
            glRenderbufferStorageMultisample(GL_RENDERBUFFER, m_samples, GL_RGBA8, newWidth,
                                             newHeight);
            glBindRenderbuffer(GL_RENDERBUFFER, m_depth);
            glRenderbufferStorageMultisample(GL_RENDERBUFFER, m_samples, GL_DEPTH_COMPONENT24,
                                             newWidth, newHeight);
            glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER,
                                      m_color);
            glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_RENDERBUFFER,
                                      m_depth);
            bool complete = glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
            if (complete && m_samples) {
                glGenFramebuffers(1, &m_resolved);
                glGenRenderbuffers(1, &m_resolvedColor);
                glBindFramebuffer(GL_FRAMEBUFFER, m_resolved);
                glBindRenderbuffer(GL_RENDERBUFFER, m_resolvedColor);
                glRenderbufferStorage(GL_RENDERBUFFER, GL_RGBA8, newWidth, newHeight);
                glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER,
                                          m_resolvedColor);
                complete = glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
            }
            if (complete) break;
            release();
            for (int i = 0; i < 16 && glGetError() != GL_NO_ERROR; ++i) {}
            if (!m_samples) return false;
            m_samples = 0;
        }
        m_width = newWidth;
        m_height = newHeight;
    }
    glBindFramebuffer(GL_FRAMEBUFFER, m_drawn);
    return true;
}

void KsGLFramebuffer::read(int width, int height, std::uint8_t* rgba)
{
    if (m_samples) {
        glBindFramebuffer(GL_READ_FRAMEBUFFER, m_drawn);
        glBindFramebuffer(GL_DRAW_FRAMEBUFFER, m_resolved);
        // The scissor cuts blits too.
        glDisable(GL_SCISSOR_TEST);
        glBlitFramebuffer(0, 0, width, height, 0, 0, width, height, GL_COLOR_BUFFER_BIT,
                          GL_NEAREST);
        glBindFramebuffer(GL_FRAMEBUFFER, m_resolved);
    }
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE, rgba);
}

void KsGLFramebuffer::unbind() { glBindFramebuffer(GL_FRAMEBUFFER, 0); }
