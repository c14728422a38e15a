#pragma once

#include <cstdint>

/// What all pictures of the process are drawn into, one after the other: a framebuffer with colour
/// and 24 bits of depth that grows with the largest picture. Used while the context is current.
class KsGLFramebuffer {
public:
    static KsGLFramebuffer& shared();

    /// Makes the framebuffer at least this large and binds it. `samples` above 1 asks for that many
    /// per pixel and gets what the context has. FALSE if the context refuses.
    bool bind(int width, int height, int samples);
    /// Copies what was drawn to `rgba`, four bytes per pixel, rows from the bottom.
    void read(int width, int height, std::uint8_t* rgba);
    void unbind();
    /// The largest width and height of a picture.
    int getMaxSize();

private:
    void release();
    void forgetFormerContext();

    unsigned m_drawn = 0, m_color = 0, m_depth = 0;
    unsigned m_resolved = 0, m_resolvedColor = 0;
    int m_width = 0, m_height = 0, m_samples = 0, m_askedSamples = 0;
    int m_maxSize = 0, m_maxSamples = 0;
    std::uint64_t m_context = 0; ///< In which all this was made.
};
