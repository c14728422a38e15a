#pragma once

#include <arborium/base/KbVec.h>

/// The part of a window that a scene is drawn into. By default all of a window of 100 by 100 pixels
/// with 72 pixels per inch. Sizes below 1 pixel count as 1.
class ARBORIUM_API KbViewportRegion {
public:
    KbViewportRegion() = default;
    /// All of a window of this size in pixels.
    KbViewportRegion(std::int32_t width, std::int32_t height) { setWindowSize(width, height); }
    explicit KbViewportRegion(const KbVec2i32& windowSize) { setWindowSize(windowSize); }

    /// In pixels. The viewport keeps its share of the window.
    void setWindowSize(const KbVec2i32& size) { setWindowSize(size[0], size[1]); }
    void setWindowSize(std::int32_t width, std::int32_t height);
    const KbVec2i32& getWindowSize() const { return m_windowSize; }

    /// In shares of the window, 0 to 1, from its lower left corner; by default all of it. A
    /// negative size counts as 0; numbers that are not finite change nothing.
    void setViewport(float left, float bottom, float width, float height);
    void setViewport(const KbVec2f& origin, const KbVec2f& size);
    /// The same in pixels of the present window.
    void setViewportPixels(std::int32_t left, std::int32_t bottom, std::int32_t width,
                           std::int32_t height);
    void setViewportPixels(const KbVec2i32& origin, const KbVec2i32& size);
    const KbVec2f& getViewportOrigin() const { return m_origin; }
    const KbVec2f& getViewportSize() const { return m_size; }
    /// From the lower left corner of the window, rounded; each size is at least 1.
    KbVec2i32 getViewportOriginPixels() const;
    KbVec2i32 getViewportSizePixels() const;
    /// Width by height.
    float getViewportAspectRatio() const;

    /// A value that is not above 0, or not finite, is ignored. A point is 1/72 inch.
    void setPixelsPerInch(float pixels);
    float getPixelsPerInch() const { return m_pixelsPerInch; }
    float getPixelsPerPoint() const { return m_pixelsPerInch / 72.0f; }

    /// The same window, viewport and resolution.
    friend bool operator==(const KbViewportRegion& a, const KbViewportRegion& b)
    {
        return a.m_windowSize == b.m_windowSize && a.m_origin == b.m_origin &&
               a.m_size == b.m_size && a.m_pixelsPerInch == b.m_pixelsPerInch;
    }
    friend bool operator!=(const KbViewportRegion& a, const KbViewportRegion& b)
    {
        return !(a == b);
    }

private:
    KbVec2i32 m_windowSize{100, 100};
    KbVec2f m_origin{0, 0}, m_size{1, 1};
    float m_pixelsPerInch = 72.0f;
};
