#include "KsGLCache.h"

#include <arborium/render/KsGLContext.h>

#include <algorithm>
#include <numeric>

std::vector<std::uint32_t> ksCheckedIndices(const KsMesh& mesh)
{
    const std::size_t step = mesh.primitive == KsMesh::Triangles ? 3
                             : mesh.primitive == KsMesh::Lines   ? 2
                                                                 : 1;
    std::vector<std::uint32_t> result;
    const std::size_t count = mesh.positions.size();
    if (mesh.indices.empty()) {
        result.resize(count - count % step);
        std::iota(result.begin(), result.end(), 0u);
        return result;
    }
    result.reserve(mesh.indices.size());
    for (std::size_t i = 0; i + step <= mesh.indices.size(); i += step) {
        const auto first = mesh.indices.begin() + static_cast<std::ptrdiff_t>(i);
        const auto last = first + static_cast<std::ptrdiff_t>(step);
        if (std::all_of(first, last, [count](std::uint32_t at) { return at < count; }))
            result.insert(result.end(), first, last);
    }
    return result;
}

KsGLCache& KsGLCache::instance()
{
    static KsGLCache& cache = *new KsGLCache;
    if (cache.m_context != KsGLContext::getNumber()) { // the others are gone
        cache = KsGLCache();
        cache.m_context = KsGLContext::getNumber();
    }
    return cache;
}

const KsGLCache::MeshBuffers& KsGLCache::get(const KsMeshPtr& mesh)
{
    MeshBuffers& buffers = m_meshes[mesh->id];
    buffers.used = m_tick;
    if (buffers.vertices) return buffers;
    buffers.mesh = mesh;
    const std::size_t count = mesh->positions.size();
    const auto size = [](const auto& array) { return array.size() * sizeof array[0]; };
    std::size_t total = size(mesh->positions);
    const auto place = [&](const auto& array) {
        if (array.size() != count) return std::size_t(0);
        const std::size_t at = total;
        total += size(array);
        return at;
    };
    buffers.normals = place(mesh->normals);
    buffers.texCoords = place(mesh->texCoords);
    buffers.colors = place(mesh->colors);
    glGenBuffers(1, &buffers.vertices);
    glBindBuffer(GL_ARRAY_BUFFER, buffers.vertices);
    glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(total), nullptr, GL_STATIC_DRAW);
    const auto upload = [&](std::size_t at, const auto& array) {
        glBufferSubData(GL_ARRAY_BUFFER, static_cast<GLintptr>(at),
                        static_cast<GLsizeiptr>(size(array)), array.data());
    };
    upload(0, mesh->positions);
    if (buffers.normals) upload(buffers.normals, mesh->normals);
    if (buffers.texCoords) upload(buffers.texCoords, mesh->texCoords);
    if (buffers.colors) upload(buffers.colors, mesh->colors);
    const std::vector<std::uint32_t> indices = ksCheckedIndices(*mesh);
    buffers.count = static_cast<GLsizei>(indices.size());
    glGenBuffers(1, &buffers.indices);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, buffers.indices);
    glBufferData(GL_ELEMENT_ARRAY_BUFFER, static_cast<GLsizeiptr>(size(indices)), indices.data(),
                 GL_STATIC_DRAW);
    buffers.bytes = total + size(indices);
    m_bytes += buffers.bytes;
    return buffers;
}

GLuint KsGLCache::get(const KsTexturePtr& image)
{
    Texture& texture = m_textures[image->id];
    texture.used = m_tick;
    if (texture.id) return texture.id;
    texture.image = image;
    glGenTextures(1, &texture.id);
    glBindTexture(GL_TEXTURE_2D, texture.id);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR_MIPMAP_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, image->width, image->height, 0, GL_RGBA,
                 GL_UNSIGNED_BYTE, image->rgba.data());
    glGenerateMipmap(GL_TEXTURE_2D);
    texture.bytes = image->rgba.size() * 4 / 3;
    m_bytes += texture.bytes;
    return texture.id;
}

void KsGLCache::endFrame()
{
    ++m_tick;
    if (m_bytes <= maxBytes && m_tick % 16 != 0) return;
    const bool tight = m_bytes > maxBytes;
    const auto old = [&](std::uint64_t used) {
        return m_tick - used > (tight ? 1u : unusedFrames);
    };
    for (auto it = m_meshes.begin(); it != m_meshes.end();) {
        if (!old(it->second.used) && !it->second.mesh.expired()) {
            ++it;
            continue;
        }
        const GLuint names[] = {it->second.vertices, it->second.indices};
        glDeleteBuffers(2, names);
        m_bytes -= it->second.bytes;
        it = m_meshes.erase(it);
    }
    for (auto it = m_textures.begin(); it != m_textures.end();) {
        if (!old(it->second.used) && !it->second.image.expired()) {
            ++it;
            continue;
        }
        glDeleteTextures(1, &it->second.id);
        m_bytes -= it->second.bytes;
        it = m_textures.erase(it);
    }
}
