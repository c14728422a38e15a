#pragma once

#include <arborium/base/KbBox3f.h>
#include <arborium/base/KbVec.h>
#include <arborium/base/KsApi.h>

#include <cstdint>
#include <memory>
#include <vector>

/// Geometry as plain arrays: what is drawn, picked and measured. Never changed once it is shared;
/// equal shapes share one mesh.
struct ARBORIUM_API KsMesh {
    /// What each three, two or one of the indices make.
    enum Primitive : std::uint8_t { Triangles, Lines, Points };
    Primitive primitive = Triangles;
    std::vector<KbVec3f> positions; ///< In the mesh's own space.
    /// One per position. Empty for lines, points and the fronts of texts: light does not change
    /// their colour.
    std::vector<KbVec3f> normals;
    std::vector<KbVec2f> texCoords;     ///< One per position, or empty.
    std::vector<KbVec3f> colors;        ///< One per position, or empty: then the material's.
    std::vector<std::uint32_t> indices; ///< Into `positions`; each below their number.
    KbBox3f box;                        ///< As `computeBox` made it; empty before.
    /// Never the same for two meshes of one process: what the GL side keeps its buffers by.
    std::uint64_t id = 0;

    /// An empty mesh with an `id` of its own.
    KsMesh();
    ~KsMesh();
    KsMesh(const KsMesh&) = delete;
    KsMesh& operator=(const KsMesh&) = delete;
    /// Sets `box` to what is around all positions that are numbers. What has no box is not drawn or
    /// picked.
    void computeBox();
    /// Whether each index names a position, and normals, coordinates and colours are as many as the
    /// positions, or none. A mesh that is not sound is neither drawn nor picked; a message says so
    /// when it is first asked, which is to be when the mesh is complete.
    bool isSound() const;

private:
    enum Soundness : std::uint8_t { NotAsked, Sound, Unsound };
    mutable Soundness m_soundness = NotAsked;
};
using KsMeshPtr = std::shared_ptr<const KsMesh>;
