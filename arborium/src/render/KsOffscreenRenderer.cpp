#include "KsGLPlayer.h"

#include <arborium/actions/KsGetBoundingBoxAction.h>
#include <arborium/actions/KsRenderAction.h>
#include <arborium/base/KbFileHelper.h>
#include <arborium/base/KsDebugError.h>
#include <arborium/nodes/KsNode.h>
#include <arborium/render/KsOffscreenRenderer.h>

#include <QBuffer>
#include <QImage>

#include <algorithm>

namespace {
constexpr int maxSize = 16384;

KbViewportRegion clamped(KbViewportRegion viewport)
{
    const KbVec2i32 size = viewport.getWindowSize();
    if (size[0] > maxSize || size[1] > maxSize) {
        KsDebugError::post("KsOffscreenRenderer::setViewportRegion",
                           "A picture of %d by %d pixels is too large; the limit is %d.", size[0],
                           size[1], maxSize);
        viewport.setWindowSize(std::min(size[0], maxSize), std::min(size[1], maxSize));
    }
    return viewport;
}

KbVec4f premultiplied(const KbColor& color, float opacity)
{
    const auto part = [](float value) { return value > 0 ? std::min(value, 1.0f) : 0.0f; };
    const float a = part(opacity);
    return KbVec4f(part(color[0]) * a, part(color[1]) * a, part(color[2]) * a, a);
}
} // namespace

struct KsOffscreenRenderer::Impl final : KsSceneObserver {
    explicit Impl(const KbViewportRegion& viewport) : renderAction(viewport)
    {
        frame.viewport = viewport;
        frame.top = frame.bottom = KbVec4f(0, 0, 0, 1);
    }

    void sceneChanged() override
    {
        // While a frame is made, its own measuring changes the scene: that is no news.
        if (dirty || rendering) {
            dirty = true;
            return;
        }
        dirty = true;
        if (callback) {
            const std::function<void()> copy = callback;
            copy();
        }
    }

    void watch(KsNode* node)
    {
        if (node == root.get()) return;
        if (root) root->removeObserver(this);
        root = node;
        if (root) root->addObserver(this);
        dirty = true;
    }

    void fillBackground()
    {
        const KbVec2i32 size = frame.viewport.getWindowSize();
        image.resize(static_cast<std::size_t>(size[0]) * static_cast<std::size_t>(size[1]) * 4);
        std::uint8_t* to = image.data();
        for (int y = 0; y < size[1]; ++y) {
            const float at = (static_cast<float>(y) + 0.5f) / static_cast<float>(size[1]);
            const KbVec4f color = frame.top * (1 - at) + frame.bottom * at;
            std::uint8_t bytes[4];
            for (int c = 0; c < 4; ++c) bytes[c] = static_cast<std::uint8_t>(color[c] * 255 + 0.5f);
            for (int x = 0; x < size[0]; ++x, to += 4) std::copy_n(bytes, 4, to);
        }
    }

    KsRef<KsNode> root;
    KsRenderAction renderAction;
    KsGLPlayer player;
    KsGLPlayer::Frame frame;
    std::vector<std::uint8_t> image;
    int width = 0, height = 0;
    bool dirty = true;           // the scene changed since its list was made
    bool settingsChanged = true; // the list is good, the picture is not
    bool rendering = false;
    bool drawn = false; // by OpenGL
    long frames = 0;
    std::function<void()> callback;
};

KsOffscreenRenderer::KsOffscreenRenderer(const KbViewportRegion& viewport)
    : m_impl(new Impl(clamped(viewport)))
{}

KsOffscreenRenderer::~KsOffscreenRenderer()
{
    m_impl->callback = nullptr;
    m_impl->watch(nullptr);
}

void KsOffscreenRenderer::setViewportRegion(const KbViewportRegion& viewport)
{
    const KbViewportRegion region = clamped(viewport);
    if (region == m_impl->frame.viewport) return;
    m_impl->frame.viewport = region;
    m_impl->renderAction.setViewportRegion(region);
    // Cameras fit themselves to the shape of the viewport.
    m_impl->dirty = true;
}

const KbViewportRegion& KsOffscreenRenderer::getViewportRegion() const
{
    return m_impl->frame.viewport;
}

void KsOffscreenRenderer::setBackgroundColor(const KbColor& color, float transparency)
{
    const KbVec4f value = premultiplied(color, 1 - transparency);
    if (m_impl->frame.top == value && m_impl->frame.bottom == value) return;
    m_impl->frame.top = m_impl->frame.bottom = value;
    m_impl->settingsChanged = true;
}

void KsOffscreenRenderer::setBackgroundGradient(const KbColor& bottom, const KbColor& top)
{
    m_impl->frame.bottom = premultiplied(bottom, 1);
    m_impl->frame.top = premultiplied(top, 1);
    m_impl->settingsChanged = true;
}

void KsOffscreenRenderer::setSamples(int samples)
{
    samples = std::clamp(samples, 1, 16);
    if (samples == m_impl->frame.samples) return;
    m_impl->frame.samples = samples;
    m_impl->settingsChanged = true;
}

void KsOffscreenRenderer::setSupersampling(int factor)
{
    factor = std::clamp(factor, 1, 8);
    if (factor == m_impl->frame.supersampling) return;
    m_impl->frame.supersampling = factor;
    m_impl->settingsChanged = true;
}

void KsOffscreenRenderer::copyLookOf(const KsOffscreenRenderer& other)
{
    m_impl->frame.top = other.m_impl->frame.top;
    m_impl->frame.bottom = other.m_impl->frame.bottom;
    m_impl->frame.samples = other.m_impl->frame.samples;
    m_impl->frame.supersampling = other.m_impl->frame.supersampling;
    m_impl->settingsChanged = true;
}

bool KsOffscreenRenderer::render(KsNode* root)
{
    Impl& impl = *m_impl;
    if (impl.rendering) return false;
    impl.watch(root);
    if (isUpToDate()) return impl.drawn;

    impl.rendering = true;
    if (impl.dirty) {
        if (root) {
            // What builds itself while it is measured changes the scene, and is measured again;
            // a scene that never comes to rest is drawn as it is.
            for (int i = 0; i < 4 && root->isStale(KsNode::StaleBox); ++i)
                KsGetBoundingBoxAction(impl.frame.viewport).apply(root);
            impl.renderAction.invalidate();
        }
        impl.dirty = false;
        impl.renderAction.apply(root);
    }
    impl.settingsChanged = false;
    static const KsDrawList& nothing = *new KsDrawList;
    const KsDrawList& list = root ? impl.renderAction.getDrawList() : nothing;
    impl.drawn = impl.player.play(list, impl.frame, impl.image);
    if (!impl.drawn) impl.fillBackground();
    impl.width = impl.frame.viewport.getWindowSize()[0];
    impl.height = impl.frame.viewport.getWindowSize()[1];
    ++impl.frames;
    impl.rendering = false;
    return impl.drawn;
}

bool KsOffscreenRenderer::isUpToDate() const { return !m_impl->dirty && !m_impl->settingsChanged; }

void KsOffscreenRenderer::releaseScene()
{
    m_impl->watch(nullptr);
    m_impl->renderAction.invalidate();
}

const std::vector<std::uint8_t>& KsOffscreenRenderer::getImage() const { return m_impl->image; }

int KsOffscreenRenderer::getWidth() const { return m_impl->width; }

int KsOffscreenRenderer::getHeight() const { return m_impl->height; }

bool KsOffscreenRenderer::writeToFile(const KbString& path) const
{
    const char* where = "KsOffscreenRenderer::writeToFile";
    const Impl& impl = *m_impl;
    const std::string name = path.toUtf8();
    if (impl.image.empty()) {
        KsDebugError::post(where, "There is no picture to write to \"%s\".", name.c_str());
        return false;
    }
    const QImage picture(impl.image.data(), impl.width, impl.height, 4 * impl.width,
                         QImage::Format_RGBA8888_Premultiplied);
    // Without an alpha channel if it would say nothing.
    const bool opaque = impl.frame.top[3] >= 1 && impl.frame.bottom[3] >= 1;
    const QImage converted = opaque ? picture.convertToFormat(QImage::Format_RGB888) : picture;
    QBuffer bytes;
    KbString why("no PNG can be made of it");
    const bool made = bytes.open(QIODevice::WriteOnly) && converted.save(&bytes, "PNG");
    const auto size = static_cast<std::size_t>(bytes.size());
    if (!made || !KbFileHelper::writeFileAtomically(path, {bytes.data().constData(), size}, &why)) {
        KsDebugError::post(where, "\"%s\" cannot be written: %s.", name.c_str(),
                           why.toUtf8().c_str());
        return false;
    }
    return true;
}

void KsOffscreenRenderer::setChangedCallback(std::function<void()> callback)
{
    m_impl->callback = std::move(callback);
}

KsRenderAction* KsOffscreenRenderer::getRenderAction() { return &m_impl->renderAction; }

long KsOffscreenRenderer::getNumFrames() const { return m_impl->frames; }

int KsOffscreenRenderer::getNumDrawCalls() const { return m_impl->player.getNumCalls(); }
