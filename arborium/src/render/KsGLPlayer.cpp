#include <epoxy/gl.h>

#include "KsFraming.h"
#include "KsGLFramebuffer.h"
#include "KsGLPlayer.h"
#include "KsGLShaders.h"

#include <arborium/base/KsDebugError.h>
#include <arborium/render/KsGLContext.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <numeric>
#include <tuple>
#include <unordered_map>

namespace {

constexpr int paletteRow = 64;            // materials in a row of the palette texture
constexpr std::size_t maxPalette = 32768; // what a material number of 16 bits can name
constexpr std::size_t mergedMesh = 4096;  // meshes with more vertices get buffers of their own
constexpr std::size_t mergedChunk = 32768;
constexpr int maxLights = 8;
constexpr int maxClipPlanes = 6;
constexpr int maxTile = 2048; // bounds the memory of large pictures

// The light of a scene without lights, in the eye's space: from above, a little from the left, so
// that raised and sunken edges differ; a surface that faces the eye has just its own colour.
const KbVec3f headLight(-0.35f, 0.5f, 1.0f);
constexpr float headAmbient = 0.35f;
constexpr float sceneAmbient = 0.4f;

struct Vertex {
    float x, y, z;
    std::int16_t nx, ny, nz;
    std::int16_t material;
};
static_assert(sizeof(Vertex) == 20, "the layout of the buffers");

std::int16_t toShort(float value)
{
    return static_cast<std::int16_t>(std::lround(std::clamp(value, -1.0f, 1.0f) * 32767.0f));
}

std::uint8_t toByte(float value)
{
    return static_cast<std::uint8_t>(std::lround(value > 0 ? std::min(value, 1.0f) * 255 : 0));
}

// How directions of surfaces go along with a matrix: right for any scale, also one of zero.
struct NormalMatrix {
    float m[9];
    explicit NormalMatrix(const KbMatrix& matrix)
    {
        const KbVec3f a(matrix[0]), b(matrix[1]), c(matrix[2]);
        const float sign = matrix.det3() < 0 ? -1.0f : 1.0f;
        const KbVec3f rows[3] = {b.cross(c) * sign, c.cross(a) * sign, a.cross(b) * sign};
        for (int i = 0; i < 9; ++i) m[i] = rows[i / 3][i % 3];
    }
    KbVec3f operator()(const KbVec3f& n) const
    {
        KbVec3f r(n[0] * m[0] + n[1] * m[3] + n[2] * m[6], n[0] * m[1] + n[1] * m[4] + n[2] * m[7],
                  n[0] * m[2] + n[1] * m[5] + n[2] * m[8]);
        r.normalize();
        return r;
    }
};

struct Hash {
    std::uint64_t value = 0x9e3779b97f4a7c15u;
    void add(std::uint64_t word)
    {
        value ^= word + 0x9e3779b97f4a7c15u + (value << 6) + (value >> 2);
        value ^= value >> 31;
        value *= 0xbf58476d1ce4e5b9u;
        value ^= value >> 29;
    }
    void add(const KbMatrix& matrix)
    {
        std::uint64_t words[8];
        static_assert(sizeof words == 16 * sizeof(float), "a matrix");
        std::memcpy(words, matrix.getValue(), sizeof words);
        for (const std::uint64_t word : words) add(word);
    }
};

/// The light that a material gives off: none where no light is worked out at all. What has no normals
/// in a lit scene (text, lines) shows its diffuse and this.
KbColor glowOf(const KsMaterialState& material)
{
    return material.lit ? material.emissive : KbColor(0, 0, 0);
}

// ---- programs ------------------------------------------------------------------------------

struct Program {
    enum Flags { Palette = 1, Lit = 2, Textured = 4, PixelLight = 8 };
    GLuint id = 0;
    bool tried = false;
    GLint model, view, projection, normal, palette, paletteSize, texture;
    GLint perspective, twoSided, headAmbient, sceneAmbient, numLights, lightVector, lightColor;
};

GLuint compileShader(GLenum kind, const std::string& prologue, const char* text)
{
    const GLuint shader = glCreateShader(kind);
    const char* parts[] = {prologue.c_str(), KsGLShaders::common, text};
    glShaderSource(shader, 3, parts, nullptr);
    glCompileShader(shader);
    GLint good = 0;
    glGetShaderiv(shader, GL_COMPILE_STATUS, &good);
    if (!good) {
        char log[1024] = "";
        glGetShaderInfoLog(shader, sizeof log, nullptr, log);
        KsDebugError::post("KsGLPlayer", "A shader does not compile: %s", log);
    }
    return shader;
}

const Program& program(int flags)
{
    static std::array<Program, 16>& programs = *new std::array<Program, 16>;
    Program& p = programs[static_cast<std::size_t>(flags)];
    if (p.tried) return p;
    p.tried = true;
    std::string prologue = "#version 120\n";
    if (flags & Program::Palette) prologue += "#define PALETTE\n";
    if (flags & Program::Lit) prologue += "#define LIT\n";
    if (flags & Program::PixelLight) prologue += "#define PIXEL_LIGHT\n";
    if (flags & Program::Textured) prologue += "#define TEXTURED\n";
    const GLuint vertex = compileShader(GL_VERTEX_SHADER, prologue, KsGLShaders::vertex);
    const GLuint fragment = compileShader(GL_FRAGMENT_SHADER, prologue, KsGLShaders::fragment);
    const GLuint id = glCreateProgram();
    glAttachShader(id, vertex);
    glAttachShader(id, fragment);
    const char* attributes[] = {"a_position", "a_normal",   "a_texCoord", "a_diffuse",
                                "a_emissive", "a_specular", "a_ambient"};
    for (GLuint i = 0; i < 7; ++i) glBindAttribLocation(id, i, attributes[i]);
    glLinkProgram(id);
    glDeleteShader(vertex);
    glDeleteShader(fragment);
    GLint good = 0;
    glGetProgramiv(id, GL_LINK_STATUS, &good);
    if (!good) {
        char log[1024] = "";
        glGetProgramInfoLog(id, sizeof log, nullptr, log);
        KsDebugError::post("KsGLPlayer", "A shader program does not link: %s", log);
        glDeleteProgram(id);
        return p;
    }
    p.id = id;
    const auto find = [id](const char* name) { return glGetUniformLocation(id, name); };
    p.model = find("u_model");
    p.view = find("u_view");
    p.projection = find("u_projection");
    p.normal = find("u_normal");
    p.palette = find("u_palette");
    p.paletteSize = find("u_paletteSize");
    p.texture = find("u_texture");
    p.perspective = find("u_perspective");
    p.twoSided = find("u_twoSided");
    p.headAmbient = find("u_headAmbient");
    p.sceneAmbient = find("u_sceneAmbient");
    p.numLights = find("u_numLights");
    p.lightVector = find("u_lightVector");
    p.lightColor = find("u_lightColor");
    return p;
}

// ---- what players share: large meshes and textures -------------------------------------------

struct MeshBuffers {
    std::weak_ptr<const KsMesh> mesh;
    GLuint vertices = 0, indices = 0;
    GLsizei count = 0;
    std::size_t bytes = 0;
    std::uint64_t used = 0;
    std::size_t normals = 0, texCoords = 0, colors = 0; // offsets; 0 for none
};

struct Texture {
    std::weak_ptr<const KsTextureImage> image;
    GLuint id = 0;
    std::size_t bytes = 0;
    std::uint64_t used = 0;
};

// Indices of a mesh that lie in its arrays, whole primitives only.
std::vector<std::uint32_t> checkedIndices(const KsMesh& mesh)
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

class Cache {
public:
    static Cache& instance()
    {
        static Cache& cache = *new Cache;
        return cache;
    }

    const MeshBuffers& get(const KsMeshPtr& mesh)
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
        const std::vector<std::uint32_t> indices = checkedIndices(*mesh);
        buffers.count = static_cast<GLsizei>(indices.size());
        glGenBuffers(1, &buffers.indices);
        glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, buffers.indices);
        glBufferData(GL_ELEMENT_ARRAY_BUFFER, static_cast<GLsizeiptr>(size(indices)),
                     indices.data(), GL_STATIC_DRAW);
        buffers.bytes = total + size(indices);
        m_bytes += buffers.bytes;
        return buffers;
    }

    GLuint get(const KsTexturePtr& image)
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

    // Called after each frame. What this frame used stays in any case.
    void endFrame()
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

private:
    static constexpr std::size_t maxBytes = 256u << 20;
    static constexpr unsigned unusedFrames = 256;
    std::unordered_map<std::uint64_t, MeshBuffers> m_meshes;
    std::unordered_map<std::uint64_t, Texture> m_textures;
    std::size_t m_bytes = 0;
    std::uint64_t m_tick = 0;
};

// ---- batches ---------------------------------------------------------------------------------

// Draws with equal keys may go out in one call.
struct Key {
    std::uint8_t layer = 0;
    bool transparent = false;
    bool single = false;
    std::uint8_t primitive = 0;
    bool lit = false;
    bool pixelLit = false;
    bool twoSided = false;
    bool cull = false;
    std::uint32_t clip = 0;
    std::uint32_t lights = 0;
    std::uint64_t texture = 0;

    auto tie() const
    {
        return std::tie(layer, transparent, single, primitive, lit, pixelLit, twoSided, cull, clip,
                        lights, texture);
    }
    bool operator<(const Key& other) const { return tie() < other.tie(); }
    bool operator==(const Key& other) const { return tie() == other.tie(); }
};

struct Item {
    Key key;
    std::uint32_t draw;
    float depth;
};

struct Chunk {
    GLuint vertices = 0, indices = 0;
    GLsizei count = 0;
    std::size_t numVertices = 0;
    std::uint64_t hash = 0;
};

struct Batch {
    Key key;
    std::uint32_t draw = 0; // the first of its draws
    Chunk chunk;            // unused if the key says single
    KbBox3f box;
};

bool isMirroring(const KsDraw& draw) { return (draw.matrix.det3() < 0) == draw.counterClockwise; }

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

} // namespace

struct KsGLPlayer::Impl {
    const KsDrawList* list = nullptr;
    std::uint64_t version = 0;
    std::vector<Batch> batches;
    std::vector<std::uint8_t> palette;
    GLuint paletteTexture = 0;
    KbBox3f box;
    bool hasLines = false;
    int numCalls = 0;
    // What was found out about textures and meshes, by their ids.
    std::unordered_map<std::uint64_t, bool> transparentTextures;
    std::unordered_map<std::uint64_t, bool> flatMeshes;

    KbMatrix view, projection;
    bool perspective = false;

    void compile(const KsDrawList& drawList);
    void makePalette(const KsDrawList& drawList);
    Chunk makeChunk(const KsDrawList& drawList, const Item* first, const Item* last, bool textured);
    void fitCamera(const KsDrawList& drawList, const KbViewportRegion& viewport);
    void drawTile(const KsDrawList& drawList);
    void setLights(const Program& p, const std::vector<KsLightState>* lights);
    void release();
};

namespace {

const KsMaterialState& materialOf(const KsDrawList& list, const KsDraw& draw)
{
    static const KsMaterialState initial;
    return draw.material < list.materials.size() ? list.materials[draw.material] : initial;
}

void deleteChunk(Chunk& chunk)
{
    const GLuint names[] = {chunk.vertices, chunk.indices};
    glDeleteBuffers(2, names);
    chunk = Chunk();
}

} // namespace

void KsGLPlayer::Impl::makePalette(const KsDrawList& drawList)
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
        entry(glowOf(material), 0);
        entry(material.specular, material.shininess);
        entry(material.ambient, 0);
    }
    if (paletteTexture && bytes == palette) return;
    if (!paletteTexture) glGenTextures(1, &paletteTexture);
    glBindTexture(GL_TEXTURE_2D, paletteTexture);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, paletteRow * 4, static_cast<GLsizei>(rows), 0, GL_RGBA,
                 GL_UNSIGNED_BYTE, bytes.data());
    palette = std::move(bytes);
}

Chunk KsGLPlayer::Impl::makeChunk(const KsDrawList& drawList, const Item* first, const Item* last,
                                  bool textured)
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
        const NormalMatrix toWorld(draw.matrix);
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
        const bool turn = mesh.primitive == KsMesh::Triangles && isMirroring(draw);
        const std::vector<std::uint32_t> own = checkedIndices(mesh);
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

void KsGLPlayer::Impl::compile(const KsDrawList& drawList)
{
    makePalette(drawList);

    KbMatrix toEye, unused;
    drawList.viewVolume.getMatrices(toEye, unused);

    if (flatMeshes.size() > 65536) flatMeshes.clear();
    if (transparentTextures.size() > 4096) transparentTextures.clear();
    std::vector<bool> pointLit;
    for (const std::vector<KsLightState>& lights : drawList.lightSets)
        pointLit.push_back(std::any_of(lights.begin(), lights.end(), [](const KsLightState& light) {
            return light.kind == KsLightState::Point;
        }));

    std::vector<Item> items;
    items.reserve(drawList.draws.size());
    box.makeEmpty();
    hasLines = false;
    std::vector<KbBox3f> boxes(drawList.draws.size());
    for (std::size_t i = 0; i < drawList.draws.size(); ++i) {
        const KsDraw& draw = drawList.draws[i];
        if (!draw.mesh || draw.mesh->positions.empty() || !draw.matrix.isFinite()) continue;
        const KsMesh& mesh = *draw.mesh;
        const KsMaterialState& material = materialOf(drawList, draw);
        if (material.transparency >= 1) continue;
        KbBox3f world = mesh.box;
        world.transform(draw.matrix);
        if (world.isEmpty() || !world.getSize().isFinite()) continue;

        Item item;
        item.draw = static_cast<std::uint32_t>(i);
        item.key.layer = draw.layer;
        item.key.primitive = mesh.primitive;
        item.key.lit = material.lit && mesh.normals.size() == mesh.positions.size();
        item.key.twoSided = draw.twoSided && item.key.lit;
        item.key.cull = draw.cullBack && mesh.primitive == KsMesh::Triangles;
        item.key.clip = draw.clip;
        item.key.lights = item.key.lit ? draw.lights : 0;
        item.key.transparent = material.transparency > 0;
        if (isUsable(draw.texture.get()) && mesh.texCoords.size() == mesh.positions.size()) {
            item.key.texture = draw.texture->id;
            const auto known = transparentTextures.emplace(draw.texture->id, false);
            if (known.second) known.first->second = hasTransparentPixel(*draw.texture);
            item.key.transparent = item.key.transparent || known.first->second;
        }
        if (item.key.lit) {
            const auto known = flatMeshes.emplace(mesh.id, false);
            if (known.second) known.first->second = hasFlatFaces(mesh);
            item.key.pixelLit = !known.first->second || item.key.texture ||
                                material.specular != KbColor() ||
                                (draw.lights < pointLit.size() && pointLit[draw.lights]);
        }
        item.key.single = mesh.positions.size() > mergedMesh || !mesh.colors.empty() ||
                          draw.material >= std::min(maxPalette, drawList.materials.size());
        KbVec3f center;
        toEye.multVecMatrix(world.getCenter(), center);
        item.depth = center[2];
        items.push_back(item);
        boxes[i] = world;
        box.extendBy(world);
        hasLines = hasLines || mesh.primitive == KsMesh::Lines;
    }
    // Opaque things by their state; transparent ones behind them, the farthest first.
    std::sort(items.begin(), items.end(), [](const Item& a, const Item& b) {
        if (a.key.transparent != b.key.transparent) return b.key.transparent;
        if (a.key.transparent) {
            if (a.depth != b.depth) return a.depth < b.depth;
            if (a.key.layer != b.key.layer) return a.key.layer < b.key.layer;
        } else {
            if (a.key < b.key) return true;
            if (b.key < a.key) return false;
        }
        return a.draw < b.draw;
    });

    // Buffers whose content stays the same are taken over.
    std::unordered_map<std::uint64_t, Chunk> former;
    for (Batch& batch : batches)
        if (batch.chunk.vertices && !former.emplace(batch.chunk.hash, batch.chunk).second)
            deleteChunk(batch.chunk);
    batches.clear();
    for (std::size_t at = 0; at < items.size();) {
        Batch batch;
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
        batches.push_back(batch);
        at = end;
    }
    for (auto& gone : former) deleteChunk(gone.second);
    list = &drawList;
    version = drawList.version;
}

void KsGLPlayer::Impl::fitCamera(const KsDrawList& drawList, const KbViewportRegion& viewport)
{
    KbViewVolume volume = drawList.viewVolume;
    if (!drawList.hasCamera) {
        const float aspect = viewport.getViewportAspectRatio();
        const KsFraming framing(box, aspect);
        const float half = framing.height / 2;
        volume.ortho(-half * aspect, half * aspect, -half, half, framing.nearDistance,
                     framing.farDistance);
        volume.translateCamera(framing.position);
    }
    volume.getMatrices(view, projection);
    perspective = volume.getProjectionType() == KbViewVolume::PERSPECTIVE;

    // Depth is spent on what is there: between the nearest and the farthest corner of the scene,
    // inside what the camera lets through. Thin layers far from the eye stay apart.
    float first = volume.getNearDist();
    float last = first + volume.getDepth();
    if (!box.isEmpty()) {
        float boxFirst = std::numeric_limits<float>::max(), boxLast = -boxFirst;
        for (int corner = 0; corner < 8; ++corner) {
            KbVec3f p;
            for (int i = 0; i < 3; ++i)
                p[i] = (corner >> i & 1) ? box.getMax()[i] : box.getMin()[i];
            view.multVecMatrix(p, p);
            boxFirst = std::min(boxFirst, -p[2]);
            boxLast = std::max(boxLast, -p[2]);
        }
        const float reach = std::max(std::fabs(boxFirst), std::fabs(boxLast));
        const float margin = 0.01f * (boxLast - boxFirst) + 1e-4f * reach;
        if (boxLast + margin > first && boxFirst - margin < last) {
            first = std::max(first, boxFirst - margin);
            last = std::min(last, boxLast + margin);
        }
    }
    if (perspective) first = std::max(first, 1e-5f * last);
    if (!(last > first)) return;
    const double n = first, f = last;
    if (perspective) {
        projection[2][2] = static_cast<float>(-(f + n) / (f - n));
        projection[3][2] = static_cast<float>(-2 * f * n / (f - n));
    } else {
        projection[2][2] = static_cast<float>(-2 / (f - n));
        projection[3][2] = static_cast<float>(-(f + n) / (f - n));
    }
}

void KsGLPlayer::Impl::setLights(const Program& p, const std::vector<KsLightState>* lights)
{
    float vectors[maxLights * 4], colors[maxLights * 3];
    int count = 0;
    const auto add = [&](const KbVec3f& vector, float positional, const KbColor& color) {
        for (int c = 0; c < 3; ++c) {
            vectors[4 * count + c] = vector[c];
            colors[3 * count + c] = color[c];
        }
        vectors[4 * count + 3] = positional;
        ++count;
    };
    const bool head = !lights || lights->empty();
    if (head) {
        KbVec3f direction = headLight;
        direction.normalize();
        const float strength = (1 - headAmbient) / direction[2];
        add(direction, 0, KbColor(strength, strength, strength));
    } else {
        for (const KsLightState& light : *lights) {
            if (count == maxLights) break;
            KbVec3f vector;
            if (light.kind == KsLightState::Point)
                view.multVecMatrix(light.vector, vector);
            else
                view.multDirMatrix(-light.vector, vector);
            if (light.kind == KsLightState::Directional && !(vector.sqrLength() > 0)) continue;
            if (vector.isFinite() && light.color.isFinite())
                add(vector, light.kind == KsLightState::Point, light.color);
        }
    }
    const float ambient = head ? 0 : sceneAmbient;
    glUniform1f(p.headAmbient, head ? headAmbient : 0);
    glUniform3f(p.sceneAmbient, ambient, ambient, ambient);
    glUniform1i(p.numLights, count);
    if (count) {
        glUniform4fv(p.lightVector, count, vectors);
        glUniform3fv(p.lightColor, count, colors);
    }
}

void KsGLPlayer::Impl::drawTile(const KsDrawList& drawList)
{
    numCalls = 0;
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LEQUAL);
    glDepthMask(GL_TRUE);
    glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    glFrontFace(GL_CCW);
    glCullFace(GL_BACK);
    glEnable(GL_POLYGON_OFFSET_FILL);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    const KbMatrix identity;
    const NormalMatrix viewNormal(view);

    int planes = 0;
    const Program* current = nullptr;
    const Key* last = nullptr;
    for (const Batch& batch : batches) {
        const Key& key = batch.key;
        const KsDraw& draw = drawList.draws[batch.draw];
        if (batch.key.single ? draw.mesh->positions.empty() : !batch.chunk.count) continue;
        if (drawList.hasCamera && !drawList.viewVolume.intersect(batch.box)) continue;

        const int flags = (key.single ? 0 : Program::Palette) | (key.lit ? Program::Lit : 0) |
                          (key.pixelLit ? Program::PixelLight : 0) |
                          (key.texture ? Program::Textured : 0);
        const Program& p = program(flags);
        if (!p.id) continue;
        const bool newProgram = &p != current;
        if (newProgram) {
            current = &p;
            glUseProgram(p.id);
            glUniformMatrix4fv(p.view, 1, GL_FALSE, view.getValue());
            glUniformMatrix4fv(p.projection, 1, GL_FALSE, projection.getValue());
            glUniform1f(p.perspective, perspective ? 1.0f : 0.0f);
            glUniform1i(p.texture, 0);
            glUniform1i(p.palette, 1);
            glUniform2f(p.paletteSize, paletteRow * 4,
                        static_cast<float>(palette.size() / (paletteRow * 16)));
        }
        if (!last || last->transparent != key.transparent) {
            (key.transparent ? glEnable : glDisable)(GL_BLEND);
            glDepthMask(key.transparent ? GL_FALSE : GL_TRUE);
        }
        if (!last || last->cull != key.cull) (key.cull ? glEnable : glDisable)(GL_CULL_FACE);
        if (!last || last->layer != key.layer) {
            // Faces step back from lines that lie in them, and lower layers from higher ones.
            const float offset = (hasLines ? 1.0f : 0.0f) - static_cast<float>(key.layer);
            glPolygonOffset(offset, offset);
        }
        if (!last || last->clip != key.clip) {
            int count = 0;
            if (key.clip < drawList.clips.size()) {
                for (const KbPlane& plane : drawList.clips[key.clip]) {
                    if (count == maxClipPlanes) break;
                    const KbVec3f& n = plane.getNormal();
                    const GLdouble equation[] = {n[0], n[1], n[2], -plane.getDistanceFromOrigin()};
                    glClipPlane(GL_CLIP_PLANE0 + static_cast<GLenum>(count), equation);
                    glEnable(GL_CLIP_PLANE0 + static_cast<GLenum>(count));
                    ++count;
                }
            }
            for (int i = count; i < planes; ++i) glDisable(GL_CLIP_PLANE0 + static_cast<GLenum>(i));
            planes = count;
        }
        if (key.texture && (!last || last->texture != key.texture)) {
            glActiveTexture(GL_TEXTURE0);
            glBindTexture(GL_TEXTURE_2D, Cache::instance().get(draw.texture));
        }
        if (key.lit) {
            glUniform1f(p.twoSided, key.twoSided ? 1.0f : 0.0f);
            if (newProgram || !last || last->lights != key.lights || !last->lit)
                setLights(p, key.lights < drawList.lightSets.size()
                                 ? &drawList.lightSets[key.lights]
                                 : nullptr);
        }
        last = &key;

        const GLenum mode = key.primitive == KsMesh::Triangles ? GL_TRIANGLES
                            : key.primitive == KsMesh::Lines   ? GL_LINES
                                                               : GL_POINTS;
        const auto offset = [](std::size_t bytes) { return reinterpret_cast<const void*>(bytes); };
        glEnableVertexAttribArray(0);
        if (!key.single) {
            glUniformMatrix4fv(p.model, 1, GL_FALSE, identity.getValue());
            glUniformMatrix3fv(p.normal, 1, GL_FALSE, viewNormal.m);
            glBindBuffer(GL_ARRAY_BUFFER, batch.chunk.vertices);
            glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, batch.chunk.indices);
            glVertexAttribPointer(0, 3, GL_FLOAT, GL_FALSE, sizeof(Vertex), offset(0));
            glVertexAttribPointer(1, 4, GL_SHORT, GL_TRUE, sizeof(Vertex), offset(12));
            glEnableVertexAttribArray(1);
            if (key.texture) {
                glVertexAttribPointer(2, 2, GL_FLOAT, GL_FALSE, 0,
                                      offset(batch.chunk.numVertices * sizeof(Vertex)));
                glEnableVertexAttribArray(2);
            }
            glDrawElements(mode, batch.chunk.count, GL_UNSIGNED_SHORT, nullptr);
        } else {
            const MeshBuffers& buffers = Cache::instance().get(draw.mesh);
            const NormalMatrix normal(draw.matrix * view);
            glUniformMatrix4fv(p.model, 1, GL_FALSE, draw.matrix.getValue());
            glUniformMatrix3fv(p.normal, 1, GL_FALSE, normal.m);
            glFrontFace(isMirroring(draw) ? GL_CW : GL_CCW);
            glBindBuffer(GL_ARRAY_BUFFER, buffers.vertices);
            glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, buffers.indices);
            glVertexAttribPointer(0, 3, GL_FLOAT, GL_FALSE, 0, offset(0));
            const KsMaterialState& m = materialOf(drawList, draw);
            if (buffers.normals) {
                glVertexAttribPointer(1, 3, GL_FLOAT, GL_FALSE, 0, offset(buffers.normals));
                glEnableVertexAttribArray(1);
            } else {
                glVertexAttrib4f(1, 0, 0, 1, 0);
            }
            if (key.texture) {
                glVertexAttribPointer(2, 2, GL_FLOAT, GL_FALSE, 0, offset(buffers.texCoords));
                glEnableVertexAttribArray(2);
            }
            const auto set = [](GLuint index, const KbColor& c, float fourth) {
                glVertexAttrib4f(index, c[0], c[1], c[2], fourth);
            };
            // Colours of vertices come without an opacity: those of transparent shapes are drawn
            // through the constant alpha of the blend.
            const float opacity = 1 - m.transparency;
            if (buffers.colors) {
                glVertexAttribPointer(3, 3, GL_FLOAT, GL_FALSE, 0, offset(buffers.colors));
                glEnableVertexAttribArray(3);
                if (key.transparent) {
                    glBlendColor(0, 0, 0, opacity);
                    glBlendFuncSeparate(GL_CONSTANT_ALPHA, GL_ONE_MINUS_CONSTANT_ALPHA,
                                        GL_CONSTANT_ALPHA, GL_ONE_MINUS_CONSTANT_ALPHA);
                }
            } else {
                set(3, m.diffuse, opacity);
            }
            set(4, glowOf(m), 0);
            set(5, m.specular, m.shininess);
            set(6, m.ambient, 0);
            glDrawElements(mode, buffers.count, GL_UNSIGNED_INT, nullptr);
            glDisableVertexAttribArray(3);
            glFrontFace(GL_CCW);
            if (buffers.colors && key.transparent)
                glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE,
                                    GL_ONE_MINUS_SRC_ALPHA);
        }
        ++numCalls;
        glDisableVertexAttribArray(1);
        glDisableVertexAttribArray(2);
    }

    // The context serves others, so that nothing stays switched on.
    glDisableVertexAttribArray(0);
    glUseProgram(0);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
    for (int i = 0; i < planes; ++i) glDisable(GL_CLIP_PLANE0 + static_cast<GLenum>(i));
    glDisable(GL_POLYGON_OFFSET_FILL);
    glDisable(GL_BLEND);
    glDisable(GL_CULL_FACE);
    glDisable(GL_DEPTH_TEST);
    glDepthMask(GL_TRUE);
}

void KsGLPlayer::Impl::release()
{
    for (Batch& batch : batches)
        if (batch.chunk.vertices) deleteChunk(batch.chunk);
    batches.clear();
    if (paletteTexture) glDeleteTextures(1, &paletteTexture);
    paletteTexture = 0;
}

KsGLPlayer::KsGLPlayer() : m_impl(new Impl) {}

KsGLPlayer::~KsGLPlayer()
{
    if (!m_impl->paletteTexture) return; // never drew
    if (KsGLContext::Current current; current) m_impl->release();
}

int KsGLPlayer::getNumCalls() const { return m_impl->numCalls; }

int KsGLPlayer::getMaxSize()
{
    KsGLContext::Current current;
    return current ? KsGLFramebuffer::shared().getMaxSize() : 0;
}

namespace {

// Rows of the tile, from the bottom, averaged into their place in the picture.
void copyTile(const std::vector<std::uint8_t>& tile, int tileWidth, int tileHeight, int factor,
              int left, int bottom, int width, int height, std::vector<std::uint8_t>& rgba)
{
    const int columns = tileWidth / factor, rows = tileHeight / factor;
    for (int y = 0; y < rows; ++y) {
        const int row = height - 1 - (bottom + y);
        std::uint8_t* to = &rgba[(static_cast<std::size_t>(row) * static_cast<std::size_t>(width) +
                                  static_cast<std::size_t>(left)) *
                                 4];
        const std::uint8_t* from =
            &tile[static_cast<std::size_t>(y) * static_cast<std::size_t>(factor) *
                  static_cast<std::size_t>(tileWidth) * 4];
        if (factor == 1) {
            std::memcpy(to, from, static_cast<std::size_t>(columns) * 4);
            continue;
        }
        const auto samples = static_cast<unsigned>(factor * factor);
        for (int x = 0; x < columns; ++x) {
            unsigned sum[4] = {0, 0, 0, 0};
            for (int sy = 0; sy < factor; ++sy) {
                const std::uint8_t* at = from + (static_cast<std::ptrdiff_t>(sy) * tileWidth +
                                                 static_cast<std::ptrdiff_t>(x) * factor) *
                                                    4;
                for (int sx = 0; sx < factor; ++sx)
                    for (unsigned& channel : sum) channel += *at++;
            }
            for (const unsigned channel : sum)
                *to++ = static_cast<std::uint8_t>((channel + samples / 2) / samples);
        }
    }
}

} // namespace

bool KsGLPlayer::play(const KsDrawList& list, const Frame& frame, std::vector<std::uint8_t>& rgba)
{
    KsGLContext::Current current;
    if (!current) return false;
    KsGLFramebuffer& framebuffer = KsGLFramebuffer::shared();
    const KbVec2i32 size = frame.viewport.getWindowSize();
    const int width = size[0], height = size[1];
    int factor = std::clamp(frame.supersampling, 1, 8);
    int samples = frame.samples;
    // A software rasteriser draws a larger picture many times faster than one of several samples.
    static const bool software = std::strstr(KsGLContext::getRendererName(), "llvmpipe") ||
                                 std::strstr(KsGLContext::getRendererName(), "softpipe");
    if (software && samples > 1) {
        factor = std::min(8, factor * (samples > 8 ? 4 : samples > 4 ? 3 : 2));
        samples = 1;
    }
    while (factor > 1 && std::max(width, height) > framebuffer.getMaxSize() / factor) --factor;
    if (width < 1 || height < 1 || std::max(width, height) > framebuffer.getMaxSize()) return false;

    Impl& impl = *m_impl;
    if (impl.list != &list || impl.version != list.version) impl.compile(list);
    impl.fitCamera(list, frame.viewport);

    rgba.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4);
    const KbVec2i32 origin = frame.viewport.getViewportOriginPixels();
    const KbVec2i32 extent = frame.viewport.getViewportSizePixels();
    const int step = maxTile / factor * factor;
    std::vector<std::uint8_t> pixels;
    for (int bottom = 0; bottom < height * factor; bottom += step) {
        for (int left = 0; left < width * factor; left += step) {
            const int tileWidth = std::min(step, width * factor - left);
            const int tileHeight = std::min(step, height * factor - bottom);
            if (!framebuffer.bind(tileWidth, tileHeight, samples)) return false;

            glDisable(GL_DITHER);
            glShadeModel(GL_SMOOTH);
            glEnable(GL_SCISSOR_TEST);
            glScissor(0, 0, tileWidth, tileHeight);
            const KbVec4f& c = frame.bottom;
            glClearColor(c[0], c[1], c[2], c[3]);
            glClearDepth(1);
            glDepthMask(GL_TRUE);
            glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
            if (frame.top != frame.bottom) {
                glViewport(-left, -bottom, width * factor, height * factor);
                glMatrixMode(GL_PROJECTION);
                glLoadIdentity();
                glMatrixMode(GL_MODELVIEW);
                glLoadIdentity();
                glBegin(GL_QUADS);
                glColor4fv(frame.bottom.getValue());
                glVertex2f(-1, -1);
                glVertex2f(1, -1);
                glColor4fv(frame.top.getValue());
                glVertex2f(1, 1);
                glVertex2f(-1, 1);
                glEnd();
            }
            glViewport(origin[0] * factor - left, origin[1] * factor - bottom, extent[0] * factor,
                       extent[1] * factor);
            glLineWidth(static_cast<float>(factor));
            glPointSize(static_cast<float>(factor));
            glActiveTexture(GL_TEXTURE1);
            glBindTexture(GL_TEXTURE_2D, impl.paletteTexture);
            glActiveTexture(GL_TEXTURE0);
            impl.drawTile(list);

            pixels.resize(static_cast<std::size_t>(tileWidth) *
                          static_cast<std::size_t>(tileHeight) * 4);
            framebuffer.read(tileWidth, tileHeight, pixels.data());
            copyTile(pixels, tileWidth, tileHeight, factor, left / factor, bottom / factor, width,
                     height, rgba);
        }
    }
    glDisable(GL_SCISSOR_TEST);
    glActiveTexture(GL_TEXTURE1);
    glBindTexture(GL_TEXTURE_2D, 0);
    glActiveTexture(GL_TEXTURE0);
    glBindTexture(GL_TEXTURE_2D, 0);
    glLineWidth(1);
    glPointSize(1);
    framebuffer.unbind();
    Cache::instance().endFrame();
    return true;
}
