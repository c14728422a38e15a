#include <arborium/render/KsMesh.h>

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
