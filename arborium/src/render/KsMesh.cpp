#include <arborium/render/KsMesh.h>

#include <arborium/base/KsDebugError.h>

#include <algorithm>
#include <atomic>

namespace {
std::uint64_t nextId()
{
    static std::atomic<std::uint64_t> last{0};
    return ++last;
}
} // namespace

KsMesh::KsMesh() : id(nextId()) {}

KsMesh::~KsMesh() = default;

void KsMesh::computeBox()
{
    box.makeEmpty();
    for (const KbVec3f& position : positions) box.extendBy(position);
}

bool KsMesh::isSound() const
{
    if (m_soundness != NotAsked) return m_soundness == Sound;
    const std::size_t count = positions.size();
    const auto fits = [count](std::size_t size) { return size == 0 || size == count; };
    std::uint32_t last = 0;
    for (const std::uint32_t index : indices) last = std::max(last, index);
    const char* fault = nullptr;
    if (!indices.empty() && last >= count)
        fault = "an index is beyond the positions";
    else if (!fits(normals.size()) || !fits(texCoords.size()) || !fits(colors.size()))
        fault = "there are not as many normals, coordinates or colours as positions";
    m_soundness = fault ? Unsound : Sound;
    if (fault) KsDebugError::post("KsMesh", "%s: the mesh is not shown", fault);
    return !fault;
}
