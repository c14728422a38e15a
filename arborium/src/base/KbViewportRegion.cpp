#include <arborium/base/KbNumber.h>
#include <arborium/base/KbViewportRegion.h>

#include <algorithm>

namespace {

std::int32_t toPixels(float share, std::int32_t whole)
{
    return KbNumber::toInt32(std::floor(static_cast<double>(share) * whole + 0.5));
}

} // namespace

void KbViewportRegion::setWindowSize(std::int32_t width, std::int32_t height)
{
    m_windowSize.setValue(std::max(width, 1), std::max(height, 1));
}

void KbViewportRegion::setViewport(float left, float bottom, float width, float height)
{
    setViewport(KbVec2f(left, bottom), KbVec2f(width, height));
}

void KbViewportRegion::setViewport(const KbVec2f& origin, const KbVec2f& size)
{
    if (!origin.isFinite() || !size.isFinite()) return;
    m_origin = origin;
    m_size.setValue(std::max(size[0], 0.0f), std::max(size[1], 0.0f));
}

void KbViewportRegion::setViewportPixels(std::int32_t left, std::int32_t bottom, std::int32_t width,
                                         std::int32_t height)
{
    const float w = static_cast<float>(m_windowSize[0]), h = static_cast<float>(m_windowSize[1]);
    setViewport(static_cast<float>(left) / w, static_cast<float>(bottom) / h,
                static_cast<float>(width) / w, static_cast<float>(height) / h);
}

void KbViewportRegion::setViewportPixels(const KbVec2i32& origin, const KbVec2i32& size)
{
    setViewportPixels(origin[0], origin[1], size[0], size[1]);
}

KbVec2i32 KbViewportRegion::getViewportOriginPixels() const
{
    return KbVec2i32(toPixels(m_origin[0], m_windowSize[0]),
                     toPixels(m_origin[1], m_windowSize[1]));
}

KbVec2i32 KbViewportRegion::getViewportSizePixels() const
{
    return KbVec2i32(std::max(toPixels(m_size[0], m_windowSize[0]), 1),
                     std::max(toPixels(m_size[1], m_windowSize[1]), 1));
}

float KbViewportRegion::getViewportAspectRatio() const
{
    const KbVec2i32 size = getViewportSizePixels();
    return static_cast<float>(size[0]) / static_cast<float>(size[1]);
}

void KbViewportRegion::setPixelsPerInch(float pixels)
{
    if (pixels > 0 && std::isfinite(pixels)) m_pixelsPerInch = pixels;
}
