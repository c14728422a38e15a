#include <arborium/actions/KsRenderAction.h>

#include <arborium/nodes/KsTexture2.h>

#include <algorithm>

namespace {

/// All render actions alive. A mark that one of them clears is a change that the others, if the
/// node is their root, have yet to see.
std::vector<KsRenderAction*>& allActions()
{
    static auto& list = *new std::vector<KsRenderAction*>;
    return list;
}

bool sameMaterial(const KsMaterialState& a, const KsMaterialState& b)
{
    return a.diffuse == b.diffuse && a.ambient == b.ambient && a.specular == b.specular &&
           a.emissive == b.emissive && a.shininess == b.shininess &&
           a.transparency == b.transparency && a.lit == b.lit;
}

bool sameLights(const std::vector<KsLightState>& a, const std::vector<KsLightState>& b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const KsLightState& x, const KsLightState& y) {
                          return x.kind == y.kind && x.color == y.color && x.vector == y.vector;
                      });
}

/// The index of `value` in `table`, among its last entries: states tend to come back soon. Added if
/// it is not there.
template <class T, class Same>
std::uint32_t indexIn(std::vector<T>& table, const T& value, Same same)
{
    constexpr std::size_t reach = 8;
    const std::size_t size = table.size();
    for (std::size_t i = 0; i < std::min(size, reach); ++i) {
        const std::size_t at = size - 1 - i;
        if (same(table[at], value)) return static_cast<std::uint32_t>(at);
    }
    table.push_back(value);
    return static_cast<std::uint32_t>(size);
}

} // namespace

KsRenderAction::KsRenderAction(const KbViewportRegion& viewport) : m_viewport(viewport)
{
    allActions().push_back(this);
}

KsRenderAction::~KsRenderAction()
{
    auto& all = allActions();
    all.erase(std::remove(all.begin(), all.end(), this), all.end());
}

KsType KsRenderAction::getClassTypeId()
{
    static const KsType type = KsType::createType(KsAction::getClassTypeId(), "RenderAction");
    return type;
}

void KsRenderAction::setViewportRegion(const KbViewportRegion& viewport)
{
    if (viewport != m_viewport) invalidate(); // cameras ask for its proportions
    m_viewport = viewport;
}

void KsRenderAction::apply(KsNode* root)
{
    if (root && root == m_root && !root->isStale(KsNode::StaleDraw)) return;
    KsAction::apply(root);
    m_root = root;
}

void KsRenderAction::beginTraversal(KsNode* root)
{
    m_root = nullptr;
    m_list.draws.clear();
    m_list.materials.clear();
    m_list.clips.assign(1, {});
    m_list.lightSets.assign(1, {});
    m_list.viewVolume = KbViewVolume();
    m_list.hasCamera = false;
    ++m_list.version;
    m_state->edit(m_state->viewport) = m_viewport;
    KsAction::beginTraversal(root);
}

void KsRenderAction::visit(KsNode* node)
{
    ++m_visits;
    const PathCode code = getPathCode();
    if (node->isStale(KsNode::StaleDraw) && (code == NO_PATH || code == BELOW_PATH)) {
        // Before the visit, so that a change during it marks the node again.
        node->clearStale(KsNode::StaleDraw);
        for (KsRenderAction* other : allActions())
            if (other != this && other->m_root == node) other->invalidate();
    }
    node->GLRender(this);
}

void KsRenderAction::draw(const KsMeshPtr& mesh) { add(mesh, nullptr); }

void KsRenderAction::draw(const KsMeshPtr& mesh, const KbMatrix& local) { add(mesh, &local); }

void KsRenderAction::add(const KsMeshPtr& mesh, const KbMatrix* local)
{
    if (!mesh || mesh->positions.empty() || getPathCode() == OFF_PATH) return;
    KbMatrix matrix = m_state->modelMatrix.get();
    if (local) matrix.multLeft(*local);
    if (!matrix.isFinite()) return;

    const KsShapeHintsState& hints = m_state->shapeHints.get();
    m_list.draws.emplace_back();
    KsDraw& draw = m_list.draws.back();
    draw.mesh = mesh;
    draw.matrix = matrix;
    draw.material = materialIndex();
    draw.clip = clipIndex();
    draw.lights = lightIndex();
    if (const auto* texture = ksCast<KsTexture2>(m_state->texture.get()))
        draw.texture = texture->getImage();
    draw.cullBack = hints.solid && hints.ordered;
    draw.twoSided = !draw.cullBack;
    draw.counterClockwise = hints.counterClockwise;
}

void KsRenderAction::setViewVolume(const KbViewVolume& volume)
{
    m_list.viewVolume = volume;
    m_list.hasCamera = true;
}

std::uint32_t KsRenderAction::materialIndex()
{
    return indexIn(m_list.materials, m_state->material.get(), sameMaterial);
}

std::uint32_t KsRenderAction::clipIndex()
{
    const auto& planes = m_state->clipPlanes.get();
    if (planes.empty()) return 0;
    return indexIn(m_list.clips, planes, [](const auto& a, const auto& b) { return a == b; });
}

std::uint32_t KsRenderAction::lightIndex()
{
    const auto& lights = m_state->lights.get();
    if (lights.empty()) return 0;
    return indexIn(m_list.lightSets, lights, sameLights);
}
