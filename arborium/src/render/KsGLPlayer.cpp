#include "KsGLPlayer.h"

#include "KsGLBatches.h"
#include "KsGLCache.h"
#include "KsGLFramebuffer.h"
#include "KsGLView.h"

#include <arborium/render/KsGLContext.h>

#include <algorithm>
#include <cstring>

namespace {
constexpr int maxTile = 2048; // bounds the memory of large pictures
} // namespace

struct KsGLPlayer::Impl {
    bool play(const KsDrawList& list, const Frame& frame, std::vector<std::uint8_t>& rgba);

    KsGLBatches batches;
    KsGLView view;
    int numCalls = 0;
};

KsGLPlayer::KsGLPlayer() : m_impl(new Impl) {}

KsGLPlayer::~KsGLPlayer()
{
    if (!m_impl->batches.getPalette()) return; // never drew
    if (KsGLContext::Current current; current) m_impl->batches.release();
}

int KsGLPlayer::getNumCalls() const { return m_impl->numCalls; }

int KsGLPlayer::getMaxSize()
{
    KsGLContext::Current current;
    return current ? KsGLFramebuffer::shared().getMaxSize() : 0;
}

namespace {

// Rows of the tile, from the bottom, averaged into their place in the picture.
void copyTile(const std::vector<std::uint8_t>& tile, int tileWidth, int tileHeight, int factor,
              int left, int bottom, int width, int height, std::vector<std::uint8_t>& rgba)
{
    const int columns = tileWidth / factor, rows = tileHeight / factor;
    for (int y = 0; y < rows; ++y) {
        const int row = height - 1 - (bottom + y);
        std::uint8_t* to = &rgba[(static_cast<std::size_t>(row) * static_cast<std::size_t>(width) +
                                  static_cast<std::size_t>(left)) *
                                 4];
        const std::uint8_t* from =
            &tile[static_cast<std::size_t>(y) * static_cast<std::size_t>(factor) *
                  static_cast<std::size_t>(tileWidth) * 4];
        if (factor == 1) {
            std::memcpy(to, from, static_cast<std::size_t>(columns) * 4);
            continue;
        }
        const auto samples = static_cast<unsigned>(factor * factor);
        for (int x = 0; x < columns; ++x) {
            unsigned sum[4] = {0, 0, 0, 0};
            for (int sy = 0; sy < factor; ++sy) {
                const std::uint8_t* at = from + (static_cast<std::ptrdiff_t>(sy) * tileWidth +
                                                 static_cast<std::ptrdiff_t>(x) * factor) *
                                                    4;
                for (int sx = 0; sx < factor; ++sx)
                    for (unsigned& channel : sum) channel += *at++;
            }
            for (const unsigned channel : sum)
                *to++ = static_cast<std::uint8_t>((channel + samples / 2) / samples);
        }
    }
}

} // namespace

bool KsGLPlayer::play(const KsDrawList& list, const Frame& frame, std::vector<std::uint8_t>& rgba)
{
    // What is lost on the way is drawn once more, in a new context.
    for (int attempt = 0; attempt < 2; ++attempt) {
        {
            const KsGLContext::Current current;
            if (!current) return false;
            const bool isDrawn = m_impl->play(list, frame, rgba);
            if (!KsGLContext::isLost()) return isDrawn;
        }
        if (!KsGLContext::releaseLost()) break;
    }
    return false;
}

bool KsGLPlayer::Impl::play(const KsDrawList& list, const Frame& frame,
                            std::vector<std::uint8_t>& rgba)
{
    KsGLFramebuffer& framebuffer = KsGLFramebuffer::shared();
    const KbVec2i32 size = frame.viewport.getWindowSize();
    const int width = size[0], height = size[1];
    int factor = std::clamp(frame.supersampling, 1, 8);
    int samples = frame.samples;
    // A software rasteriser draws a larger picture many times faster than one of several samples.
    static const bool software = std::strstr(KsGLContext::getRendererName(), "llvmpipe") ||
                                 std::strstr(KsGLContext::getRendererName(), "softpipe");
    if (software && samples > 1) {
        factor = std::min(8, factor * (samples > 8 ? 4 : samples > 4 ? 3 : 2));
        samples = 1;
    }
    while (factor > 1 && std::max(width, height) > framebuffer.getMaxSize() / factor) --factor;
    if (width < 1 || height < 1 || std::max(width, height) > framebuffer.getMaxSize()) return false;

    batches.compile(list);
    view.fitCamera(list, batches, frame.viewport);

    rgba.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4);
    const KbVec2i32 origin = frame.viewport.getViewportOriginPixels();
    const KbVec2i32 extent = frame.viewport.getViewportSizePixels();
    const int step = maxTile / factor * factor;
    std::vector<std::uint8_t> pixels;
    for (int bottom = 0; bottom < height * factor; bottom += step) {
        for (int left = 0; left < width * factor; left += step) {
            const int tileWidth = std::min(step, width * factor - left);
            const int tileHeight = std::min(step, height * factor - bottom);
            if (!framebuffer.bind(tileWidth, tileHeight, samples)) return false;

            glDisable(GL_DITHER);
            glShadeModel(GL_SMOOTH);
            glEnable(GL_SCISSOR_TEST);
            glScissor(0, 0, tileWidth, tileHeight);
            const KbVec4f& c = frame.bottom;
            glClearColor(c[0], c[1], c[2], c[3]);
            glClearDepth(1);
            glDepthMask(GL_TRUE);
            glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
            if (frame.top != frame.bottom) {
                glViewport(-left, -bottom, width * factor, height * factor);
                glMatrixMode(GL_PROJECTION);
                glLoadIdentity();
                glMatrixMode(GL_MODELVIEW);
                glLoadIdentity();
                glBegin(GL_QUADS);
                glColor4fv(frame.bottom.getValue());
                glVertex2f(-1, -1);
                glVertex2f(1, -1);
                glColor4fv(frame.top.getValue());
                glVertex2f(1, 1);
                glVertex2f(-1, 1);
                glEnd();
            }
            glViewport(origin[0] * factor - left, origin[1] * factor - bottom, extent[0] * factor,
                       extent[1] * factor);
            glLineWidth(static_cast<float>(factor));
            glPointSize(static_cast<float>(factor));
            glActiveTexture(GL_TEXTURE1);
            glBindTexture(GL_TEXTURE_2D, batches.getPalette());
            glActiveTexture(GL_TEXTURE0);
            numCalls = view.draw(list, batches);

            pixels.resize(static_cast<std::size_t>(tileWidth) *
                          static_cast<std::size_t>(tileHeight) * 4);
            framebuffer.read(tileWidth, tileHeight, pixels.data());
            copyTile(pixels, tileWidth, tileHeight, factor, left / factor, bottom / factor, width,
                     height, rgba);
        }
    }
    glDisable(GL_SCISSOR_TEST);
    glActiveTexture(GL_TEXTURE1);
    glBindTexture(GL_TEXTURE_2D, 0);
    glActiveTexture(GL_TEXTURE0);
    glBindTexture(GL_TEXTURE_2D, 0);
    glLineWidth(1);
    glPointSize(1);
    framebuffer.unbind();
    KsGLCache::instance().endFrame();
    return true;
}
