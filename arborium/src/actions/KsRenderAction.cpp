#include <arborium/actions/KsRenderAction.h>

#include <arborium/base/KbBox3f.h>
#include <arborium/nodes/KsTexture2.h>

#include <algorithm>
#include <cstring>
#include <iterator>

namespace {

/// Makes one number of many; two different sequences practically never give the same.
class Digest {
public:
    void add(std::uint64_t word)
    {
        m_value = (m_value ^ word) * 0x9e3779b97f4a7c15u;
        m_value ^= m_value >> 32;
    }
    void add(float a, float b)
    {
        std::uint32_t bits[2];
        std::memcpy(&bits[0], &a, sizeof a);
        std::memcpy(&bits[1], &b, sizeof b);
        add(std::uint64_t(bits[1]) << 32 | bits[0]);
    }
    void add(const KbVec3f& v, float fourth = 0)
    {
        add(v[0], v[1]);
        add(v[2], fourth);
    }
    std::uint64_t value() const { return m_value; }

private:
    std::uint64_t m_value = 0x243f6a8885a308d3u;
};

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
    if (viewport != m_viewport) { // cameras ask for its proportions
        invalidate();
        m_keptRoot = nullptr;
    }
    m_viewport = viewport;
}

void KsRenderAction::apply(KsNode* root)
{
    if (root && root == m_root && !root->isStale(KsNode::StaleDraw)) return;
    const bool outer = m_keeping;
    m_keeping = true;
    if (root != m_viewRoot) {
        m_viewRoot = root;
        m_leavesOut = true;
    }
    KsAction::apply(root);
    if (m_viewsDiffer && m_leavesOut) {
        m_leavesOut = false;
        ++m_viewNumber;
        KsAction::apply(root);
    }
    m_keeping = outer;
    m_root = root;
}

std::size_t KsRenderAction::tableSize() const
{
    return m_list.materials.size() + m_list.clips.size() + m_list.lightSets.size() + m_kept.size();
}

void KsRenderAction::beginTraversal(KsNode* root)
{
    m_root = nullptr;
    // The tables grow with what changed; now and then all is made anew.
    const bool full = !m_keeping || root != m_keptRoot || tableSize() > 2 * m_fullSize + 64;
    m_keptRoot = m_keeping ? root : nullptr;
    m_formerRootNumber = m_rootNumber;
    m_rootNumber = ++m_lastNumber;
    if (full) {
        m_kept.clear();
        m_list.materials.clear();
        m_list.clips.assign(1, {});
        m_list.lightSets.assign(1, {});
        m_formerDraws.clear();
    } else {
        m_formerDraws.swap(m_list.draws);
    }
    m_list.draws.clear();
    m_list.viewVolume = KbViewVolume();
    m_list.hasCamera = false;
    m_leftOut = false;
    m_viewsDiffer = false;
    ++m_list.version;
    m_state->edit(m_state->viewport) = m_viewport;
    KsAction::beginTraversal(root);
    m_formerDraws.clear();
    if (full) m_fullSize = tableSize();
}

void KsRenderAction::visit(KsNode* node)
{
    ++m_visits;
    m_nodeChanged = node->isStale(KsNode::StaleDraw) && isWhole();
    if (m_nodeChanged) {
        // Before the visit, so that a change during it marks the node again.
        node->clearStale(KsNode::StaleDraw);
        for (KsRenderAction* other : allActions())
            if (other != this && other->m_root == node) other->invalidate();
    }
    node->GLRender(this);
}

bool KsRenderAction::isWhole() const
{
    const PathCode code = getPathCode();
    return code == NO_PATH || code == BELOW_PATH;
}

std::uint64_t KsRenderAction::stateNumber() const
{
    const KsState& state = *m_state;
    Digest digest;
    const float* matrix = state.modelMatrix.get().getValue();
    for (int i = 0; i < 16; i += 2) digest.add(matrix[i], matrix[i + 1]);
    const KsMaterialState& material = state.material.get();
    digest.add(material.ambient, material.shininess);
    digest.add(material.diffuse, material.transparency);
    digest.add(material.specular, material.lit ? 1.0f : 0.0f);
    digest.add(material.emissive);
    const KsFontState& font = state.font.get();
    digest.add(font.size, 0);
    const std::string name = font.name.toUtf8();
    digest.add(name.size());
    for (const char c : name) digest.add(static_cast<unsigned char>(c));
    const KsShapeHintsState& hints = state.shapeHints.get();
    digest.add((hints.counterClockwise ? 1u : 0u) | (hints.solid ? 2u : 0u) |
               (hints.ordered ? 4u : 0u) | (hints.convex ? 8u : 0u));
    digest.add(hints.creaseAngle, 0);
    digest.add(state.lights.get().size());
    for (const KsLightState& light : state.lights.get()) {
        digest.add(light.color, static_cast<float>(light.kind));
        digest.add(light.vector);
    }
    digest.add(state.clipPlanes.get().size());
    for (const KbPlane& plane : state.clipPlanes.get())
        digest.add(plane.getNormal(), plane.getDistanceFromOrigin());
    if (const auto* texture = ksCast<KsTexture2>(state.texture.get())) {
        const KsTexturePtr image = texture->getImage();
        digest.add(image ? image->id : 0);
        digest.add(
            static_cast<std::uint64_t>(texture->wrapS.getValue() * 2 + texture->wrapT.getValue()));
    }
    digest.add(static_cast<std::uint64_t>(state.switchValue.get()));
    return digest.value();
}

KsRenderAction::Kept* KsRenderAction::findKept(const KsSeparator* separator)
{
    const auto found = m_kept.find(separator);
    if (found == m_kept.end()) return nullptr;
    // Its place is known if it was there when the separator around it was last traversed.
    const std::uint64_t outer = m_recording ? m_recording->m_lastNumber : m_formerRootNumber;
    return outer && found->second.outer == outer ? &found->second : nullptr;
}

bool KsRenderAction::reuse(const KsSeparator* separator, std::uint64_t version)
{
    if (!m_keeping || !isWhole()) return false;
    Kept* kept = findKept(separator);
    if (!kept || kept->version != version || kept->state != stateNumber()) return false;
    if (kept->view && kept->view != m_viewNumber) return false;
    const std::size_t first = kept->first + (m_recording ? m_recording->m_lastFirst : 0);
    if (first + kept->count > m_formerDraws.size()) return false;
    const auto from = m_formerDraws.begin() + static_cast<std::ptrdiff_t>(first);
    kept->first = m_list.draws.size() - (m_recording ? m_recording->m_first : 0);
    kept->outer = m_recording ? m_recording->m_number : m_rootNumber;
    if (kept->view) leaveOut();
    m_list.draws.insert(m_list.draws.end(), std::make_move_iterator(from),
                        std::make_move_iterator(from + static_cast<std::ptrdiff_t>(kept->count)));
    return true;
}

KsRenderAction::Recording::Recording(KsRenderAction* action, const KsSeparator* separator,
                                     std::uint64_t version)
    : m_action(action->m_keeping && action->isWhole() ? action : nullptr), m_separator(separator),
      m_version(version), m_state(0), m_outer(action->m_recording), m_number(0), m_lastNumber(0),
      m_first(action->m_list.draws.size()), m_cameras(action->m_cameras)
{
    if (!m_action) return;
    const KsState& state = *action->m_state;
    // What lies in nodes in front of the separator may change without a mark on the separator.
    if (state.coordinates.get() || state.normals.get() || state.vertexProperty.get())
        m_version = 0;
    else
        m_state = action->stateNumber();
    if (const Kept* kept = action->findKept(separator)) {
        m_lastNumber = kept->number;
        m_lastFirst = kept->first + (m_outer ? m_outer->m_lastFirst : 0);
    }
    m_number = ++action->m_lastNumber;
    action->m_recording = this;
}

KsRenderAction::Recording::~Recording()
{
    if (!m_action) return;
    m_action->m_recording = m_outer;
    Kept& kept = m_action->m_kept[m_separator];
    kept.version = m_cameras == m_action->m_cameras && !m_action->isTerminated() ? m_version : 0;
    kept.state = m_state;
    kept.view = m_leftOut ? m_action->m_viewNumber : 0;
    if (m_leftOut && m_outer) m_outer->m_leftOut = true;
    kept.number = m_number;
    kept.outer = m_outer ? m_outer->m_number : m_action->m_rootNumber;
    kept.first = m_first - (m_outer ? m_outer->m_first : 0);
    kept.count = m_action->m_list.draws.size() - m_first;
}

void KsRenderAction::draw(const KsMeshPtr& mesh) { add(mesh, nullptr); }

void KsRenderAction::draw(const KsMeshPtr& mesh, const KbMatrix& local) { add(mesh, &local); }

void KsRenderAction::add(const KsMeshPtr& mesh, const KbMatrix* local)
{
    if (!mesh || mesh->positions.empty() || getPathCode() == OFF_PATH || !mesh->isSound()) return;
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
    if (const auto* texture = ksCast<KsTexture2>(m_state->texture.get())) {
        draw.texture = texture->getImage();
        draw.clampS = texture->wrapS.getValue() == KsTexture2::CLAMP;
        draw.clampT = texture->wrapT.getValue() == KsTexture2::CLAMP;
    }
    draw.cullBack = hints.solid && hints.ordered;
    draw.twoSided = !draw.cullBack;
    draw.counterClockwise = hints.counterClockwise;
}

bool KsRenderAction::isOutOfView(const KbBox3f& box)
{
    if (!m_keeping || !m_leavesOut || !m_list.hasCamera || box.isEmpty() || !isWhole())
        return false;
    KbBox3f world(box);
    const KbMatrix& matrix = m_state->modelMatrix.get();
    if (!matrix.isIdentity()) world.transform(matrix);
    const bool isFinite = world.getMin().isFinite() && world.getMax().isFinite();
    if (!isFinite || m_list.viewVolume.intersect(world)) return false;
    leaveOut();
    return true;
}

void KsRenderAction::leaveOut()
{
    m_leftOut = true;
    if (m_recording) m_recording->m_leftOut = true;
}

void KsRenderAction::setViewVolume(const KbViewVolume& volume)
{
    if (m_list.hasCamera && volume != m_list.viewVolume && m_leftOut) m_viewsDiffer = true;
    if (volume != m_view) {
        m_view = volume;
        ++m_viewNumber;
    }
    m_list.viewVolume = volume;
    m_list.hasCamera = true;
    ++m_cameras;
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
