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
    enum Primitive : std::uint8_t { Triangles, Lines, Points };
    Primitive primitive = Triangles;
    std::vector<KbVec3f> positions;
    /// One per position. Empty for lines, points and the fronts of texts: light does not change
    /// their colour.
    std::vector<KbVec3f> normals;
    std::vector<KbVec2f> texCoords; ///< One per position, or empty.
    std::vector<KbVec3f> colors;    ///< One per position, or empty: then the material's.
    std::vector<std::uint32_t> indices;
    KbBox3f box;
    /// Never the same for two meshes of one process: what the GL side keeps its buffers by.
    std::uint64_t id = 0;

    KsMesh();
    ~KsMesh();
    KsMesh(const KsMesh&) = delete;
    KsMesh& operator=(const KsMesh&) = delete;
    /// Around all positions that are numbers.
    void computeBox();
};
using KsMeshPtr = std::shared_ptr<const KsMesh>;
