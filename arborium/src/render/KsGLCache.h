#pragma once

#include <arborium/render/KsDrawList.h>

#include <epoxy/gl.h>

#include <unordered_map>
#include <vector>

/// What all players of the process share: the buffers of large meshes, and textures. What is no
/// longer used goes after a while. Used while the context is current.
class KsGLCache {
public:
    struct MeshBuffers {
        std::weak_ptr<const KsMesh> mesh;
        GLuint vertices = 0, indices = 0;
        GLsizei count = 0;
        std::size_t bytes = 0;
        std::uint64_t used = 0;
        std::size_t normals = 0, texCoords = 0, colors = 0; ///< Offsets; 0 for none.
    };

    static KsGLCache& instance();

    const MeshBuffers& get(const KsMeshPtr& mesh);
    GLuint get(const KsTexturePtr& image);
    /// Called after each frame. What this frame used stays in any case.
    void endFrame();

private:
    struct Texture {
        std::weak_ptr<const KsTextureImage> image;
        GLuint id = 0;
        std::size_t bytes = 0;
        std::uint64_t used = 0;
    };
    static constexpr std::size_t maxBytes = 256u << 20;
    static constexpr unsigned unusedFrames = 256;
    std::unordered_map<std::uint64_t, MeshBuffers> m_meshes;
    std::unordered_map<std::uint64_t, Texture> m_textures;
    std::size_t m_bytes = 0;
    std::uint64_t m_tick = 0;
    std::uint64_t m_context = 0; ///< In which all this was made.
};

/// Indices of a mesh that lie in its arrays, whole primitives only.
std::vector<std::uint32_t> ksCheckedIndices(const KsMesh& mesh);
