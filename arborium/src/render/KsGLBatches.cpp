#include "KsGLBatches.h"

#include "KsGLCache.h"
#include "KsNormalMatrix.h"

#include <arborium/render/KsGLContext.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <map>
#include <utility>

struct KsGLBatches::Item {
    KsGLBatch::Key key;
    std::uint32_t draw = 0;
    float depth = 0;
};

namespace {

constexpr std::size_t maxPalette = 32768; // what a material number of 16 bits can name
constexpr std::size_t mergedMesh = 4096;  // meshes with more vertices get buffers of their own
constexpr std::size_t mergedChunk = 8192; // so many vertices are made anew for one that changed

using Vertex = KsGLBatch::Vertex;
using Chunk = KsGLBatch::Chunk;
static_assert(sizeof(Vertex) == 20, "the layout of the buffers");

std::int16_t toShort(float value)
{
    // What is no number becomes one too.
    const float scaled = (value > -1 ? std::min(value, 1.0f) : -1.0f) * 32767.0f;
    return static_cast<std::int16_t>(scaled + (scaled < 0 ? -0.5f : 0.5f));
}

std::uint8_t toByte(float value)
{
    return static_cast<std::uint8_t>(value > 0 ? std::min(value, 1.0f) * 255 + 0.5f : 0);
}

struct Hash {
    std::uint64_t value = 0x9e3779b97f4a7c15u;
    void add(std::uint64_t word)
    {
        value = (value ^ word) * 0xbf58476d1ce4e5b9u;
        value ^= value >> 32;
    }
    void add(const KbMatrix& matrix)
    {
        std::uint64_t words[8];
        static_assert(sizeof words == 16 * sizeof(float), "a matrix");
        std::memcpy(words, matrix.getValue(), sizeof words);
        for (const std::uint64_t word : words) add(word);
    }
};

bool isUsable(const KsTextureImage* image)
{
    return image && image->width > 0 && image->height > 0 && image->width <= 16384 &&
           image->height <= 16384 &&
           image->rgba.size() >= static_cast<std::size_t>(image->width) * 4u *
                                     static_cast<std::size_t>(image->height);
}

bool hasTransparentPixel(const KsTextureImage& image)
{
    for (std::size_t i = 3; i < image.rgba.size(); i += 4)
        if (image.rgba[i] < 255) return true;
    return false;
}

// Whether each face has one normal, so that light need not be worked out inside it.
bool hasFlatFaces(const KsMesh& mesh)
{
    if (mesh.primitive != KsMesh::Triangles) return false;
    const auto normal = [&mesh](std::size_t at) {
        return mesh.normals[mesh.indices.empty() ? at : mesh.indices[at]];
    };
    const std::size_t count = mesh.indices.empty() ? mesh.positions.size() : mesh.indices.size();
    for (const std::uint32_t index : mesh.indices)
        if (index >= mesh.normals.size()) return false;
    for (std::size_t i = 0; i + 2 < count; i += 3)
        if (normal(i) != normal(i + 1) || normal(i) != normal(i + 2)) return false;
    return true;
}

void deleteChunk(Chunk& chunk)
{
    const GLuint names[] = {chunk.vertices, chunk.indices};
    glDeleteBuffers(2, names);
    chunk = Chunk();
}

} // namespace

const KsMaterialState& ksMaterialOf(const KsDrawList& list, const KsDraw& draw)
{
    static const KsMaterialState initial;
    return draw.material < list.materials.size() ? list.materials[draw.material] : initial;
}

KbColor ksGlowOf(const KsMaterialState& material)
{
    return material.lit ? material.emissive : KbColor(0, 0, 0);
}

bool ksIsMirroring(const KsDraw& draw) { return (draw.matrix.det3() < 0) == draw.counterClockwise; }

void KsGLBatches::makePalette(const KsDrawList& drawList)
{
    const std::size_t count = std::clamp<std::size_t>(drawList.materials.size(), 1, maxPalette);
    const std::size_t rows = (count + paletteRow - 1) / paletteRow;
    std::vector<std::uint8_t> bytes(rows * paletteRow * 16, 0);
    for (std::size_t i = 0; i < std::min(count, drawList.materials.size()); ++i) {
        const KsMaterialState& material = drawList.materials[i];
        std::uint8_t* to = &bytes[i * 16];
        const auto entry = [&to](const KbColor& color, float fourth) {
            for (int c = 0; c < 3; ++c) *to++ = toByte(color[c]);
            *to++ = toByte(fourth);
        };
        entry(material.diffuse, 1 - material.transparency);
        entry(ksGlowOf(material), 0);
        entry(material.specular, material.shininess);
        entry(material.ambient, 0);
    }
    if (m_paletteTexture && bytes == m_palette) return;
    if (!m_paletteTexture) glGenTextures(1, &m_paletteTexture);
    glBindTexture(GL_TEXTURE_2D, m_paletteTexture);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, paletteRow * 4, static_cast<GLsizei>(rows), 0, GL_RGBA,
                 GL_UNSIGNED_BYTE, bytes.data());
    m_palette = std::move(bytes);
}

KsGLBatch::Chunk KsGLBatches::makeChunk(const KsDrawList& drawList, const Item* first,
                                        const Item* last, bool textured)
{
    std::size_t total = 0;
    for (const Item* item = first; item != last; ++item)
        total += drawList.draws[item->draw].mesh->positions.size();
    std::vector<Vertex> vertices;
    std::vector<float> texCoords;
    std::vector<std::uint16_t> indices;
    vertices.reserve(total);
    if (textured) texCoords.reserve(2 * total);
    for (const Item* item = first; item != last; ++item) {
        const KsDraw& draw = drawList.draws[item->draw];
        const KsMesh& mesh = *draw.mesh;
        const KsNormalMatrix toWorld(draw.matrix);
        const auto base = static_cast<std::uint32_t>(vertices.size());
        const bool hasNormals = mesh.normals.size() == mesh.positions.size();
        const bool hasTexCoords = mesh.texCoords.size() == mesh.positions.size();
        const auto material = static_cast<std::int16_t>(draw.material);
        // The faces of a flat shape share one normal: it is calculated once.
        KbVec3f lastNormal, lastWorld;
        for (std::size_t i = 0; i < mesh.positions.size(); ++i) {
            KbVec3f p;
            draw.matrix.multVecMatrix(mesh.positions[i], p);
            if (hasNormals && !(mesh.normals[i] == lastNormal)) {
                lastNormal = mesh.normals[i];
                lastWorld = toWorld(lastNormal);
            }
            vertices.push_back({p[0], p[1], p[2], toShort(lastWorld[0]), toShort(lastWorld[1]),
                                toShort(lastWorld[2]), material});
            if (textured) {
                texCoords.push_back(hasTexCoords ? mesh.texCoords[i][0] : 0);
                texCoords.push_back(hasTexCoords ? mesh.texCoords[i][1] : 0);
            }
        }
        const bool turn = mesh.primitive == KsMesh::Triangles && ksIsMirroring(draw);
        const std::vector<std::uint32_t> own = ksCheckedIndices(mesh);
        const std::size_t start = indices.size();
        for (const std::uint32_t at : own) indices.push_back(static_cast<std::uint16_t>(base + at));
        if (turn)
            for (std::size_t i = start; i + 2 < indices.size(); i += 3)
                std::swap(indices[i + 1], indices[i + 2]);
    }

    Chunk chunk;
    chunk.count = static_cast<GLsizei>(indices.size());
    chunk.numVertices = vertices.size();
    const std::size_t bytes = vertices.size() * sizeof(Vertex);
    const std::size_t texBytes = texCoords.size() * sizeof(float);
    glGenBuffers(1, &chunk.vertices);
    glBindBuffer(GL_ARRAY_BUFFER, chunk.vertices);
    glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(bytes + texBytes), nullptr,
                 GL_STATIC_DRAW);
    glBufferSubData(GL_ARRAY_BUFFER, 0, static_cast<GLsizeiptr>(bytes), vertices.data());
    if (texBytes)
        glBufferSubData(GL_ARRAY_BUFFER, static_cast<GLintptr>(bytes),
                        static_cast<GLsizeiptr>(texBytes), texCoords.data());
    glGenBuffers(1, &chunk.indices);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, chunk.indices);
    glBufferData(GL_ELEMENT_ARRAY_BUFFER,
                 static_cast<GLsizeiptr>(indices.size() * sizeof indices[0]), indices.data(),
                 GL_STATIC_DRAW);
    return chunk;
}

// What can be drawn: opaque things by their state; transparent ones behind them, the farthest first.
std::vector<KsGLBatches::Item> KsGLBatches::sortDraws(const KsDrawList& drawList,
                                                      std::vector<KbBox3f>& boxes)
{
    KbMatrix toEye, unused;
    drawList.viewVolume.getMatrices(toEye, unused);

    if (m_flatMeshes.size() > 65536) m_flatMeshes.clear();
    if (m_transparentTextures.size() > 4096) m_transparentTextures.clear();
    std::vector<bool> pointLit;
    for (const std::vector<KsLightState>& lights : drawList.lightSets)
        pointLit.push_back(std::any_of(lights.begin(), lights.end(), [](const KsLightState& light) {
            return light.kind == KsLightState::Point;
        }));

    std::vector<Item> transparent;
    std::vector<Item> opaque;
    opaque.reserve(drawList.draws.size());
    // There are few different keys: what has one is counted, and put in its place.
    std::map<KsGLBatch::Key, std::size_t> counts;
    auto last = counts.end();
    m_box.makeEmpty();
    m_hasLines = false;
    boxes.resize(drawList.draws.size());
    for (std::size_t i = 0; i < drawList.draws.size(); ++i) {
        const KsDraw& draw = drawList.draws[i];
        if (!draw.mesh || draw.mesh->positions.empty() || !draw.matrix.isFinite()) continue;
        const KsMesh& mesh = *draw.mesh;
        const KsMaterialState& material = ksMaterialOf(drawList, draw);
        if (material.transparency >= 1) continue;
        KbBox3f world = mesh.box;
        world.transform(draw.matrix);
        if (world.isEmpty() || !world.getSize().isFinite()) continue;

        Item item;
        item.draw = static_cast<std::uint32_t>(i);
        item.key.primitive = mesh.primitive;
        item.key.lit = material.lit && mesh.normals.size() == mesh.positions.size();
        item.key.twoSided = draw.twoSided && item.key.lit;
        item.key.cull = draw.cullBack && mesh.primitive == KsMesh::Triangles;
        item.key.clip = draw.clip;
        item.key.lights = item.key.lit ? draw.lights : 0;
        item.key.transparent = material.transparency > 0;
        if (isUsable(draw.texture.get()) && mesh.texCoords.size() == mesh.positions.size()) {
            item.key.texture = draw.texture->id;
            item.key.clampS = draw.clampS;
            item.key.clampT = draw.clampT;
            const auto known = m_transparentTextures.emplace(draw.texture->id, false);
            if (known.second) known.first->second = hasTransparentPixel(*draw.texture);
            item.key.transparent = item.key.transparent || known.first->second;
        }
        if (item.key.lit) {
            const auto known = m_flatMeshes.emplace(mesh.id, false);
            if (known.second) known.first->second = hasFlatFaces(mesh);
            item.key.pixelLit = !known.first->second || item.key.texture ||
                                material.specular != KbColor() ||
                                (draw.lights < pointLit.size() && pointLit[draw.lights]);
        }
        item.key.single = mesh.positions.size() > mergedMesh || !mesh.colors.empty() ||
                          draw.material >= std::min(maxPalette, drawList.materials.size());
        if (item.key.transparent) {
            KbVec3f center;
            toEye.multVecMatrix(world.getCenter(), center);
            item.depth = center[2];
            transparent.push_back(item);
        } else {
            if (last == counts.end() || !(last->first == item.key))
                last = counts.emplace(item.key, 0).first;
            ++last->second;
            opaque.push_back(item);
        }
        boxes[i] = world;
        m_box.extendBy(world);
        m_hasLines = m_hasLines || mesh.primitive == KsMesh::Lines;
    }
    std::sort(transparent.begin(), transparent.end(), [](const Item& a, const Item& b) {
        if (a.depth != b.depth) return a.depth < b.depth;
        return a.draw < b.draw;
    });
    std::size_t start = 0;
    for (auto& each : counts) start += std::exchange(each.second, start);
    std::vector<Item> items(opaque.size());
    last = counts.end();
    for (const Item& item : opaque) {
        if (last == counts.end() || !(last->first == item.key)) last = counts.find(item.key);
        items[last->second++] = item;
    }
    items.insert(items.end(), transparent.begin(), transparent.end());
    return items;
}

void KsGLBatches::compile(const KsDrawList& drawList)
{
    if (m_context != KsGLContext::getNumber()) {
        release();
        m_context = KsGLContext::getNumber();
    }
    if (m_list == &drawList && m_version == drawList.version) return;
    m_list = &drawList;
    m_version = drawList.version;
    makePalette(drawList);
    std::vector<KbBox3f> boxes;
    const std::vector<Item> items = sortDraws(drawList, boxes);

    // Buffers whose content stays the same are taken over.
    std::unordered_map<std::uint64_t, Chunk> former;
    for (KsGLBatch& batch : m_batches)
        if (batch.chunk.vertices && !former.emplace(batch.chunk.hash, batch.chunk).second)
            deleteChunk(batch.chunk);
    m_batches.clear();
    for (std::size_t at = 0; at < items.size();) {
        KsGLBatch batch;
        batch.key = items[at].key;
        batch.draw = items[at].draw;
        std::size_t end = at;
        std::size_t vertices = 0;
        Hash hash;
        hash.add(batch.key.texture != 0);
        do {
            const KsDraw& draw = drawList.draws[items[end].draw];
            vertices += draw.mesh->positions.size();
            hash.add(draw.mesh->id);
            hash.add(draw.matrix);
            hash.add(draw.material * 2u + (draw.counterClockwise ? 1u : 0u));
            batch.box.extendBy(boxes[items[end].draw]);
            ++end;
        } while (end < items.size() && items[end].key == batch.key && !batch.key.single &&
                 vertices + drawList.draws[items[end].draw].mesh->positions.size() <= mergedChunk);
        if (!batch.key.single) {
            const auto known = former.find(hash.value);
            if (known != former.end()) {
                batch.chunk = known->second;
                former.erase(known);
            } else {
                batch.chunk =
                    makeChunk(drawList, &items[at], items.data() + end, batch.key.texture != 0);
                batch.chunk.hash = hash.value;
            }
        }
        m_batches.push_back(batch);
        at = end;
    }
    for (auto& gone : former) deleteChunk(gone.second);
}

void KsGLBatches::release()
{
    // What was made in a context that is gone is gone with it.
    const bool isHere = m_context == KsGLContext::getNumber();
    for (KsGLBatch& batch : m_batches)
        if (isHere && batch.chunk.vertices) deleteChunk(batch.chunk);
    m_batches.clear();
    if (isHere && m_paletteTexture) glDeleteTextures(1, &m_paletteTexture);
    m_paletteTexture = 0;
    m_list = nullptr;
}
