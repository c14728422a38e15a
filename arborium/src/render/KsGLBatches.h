#pragma once

#include <arborium/render/KsDrawList.h>

#include <epoxy/gl.h>

#include <tuple>
#include <unordered_map>
#include <vector>

/// Some draws of a list that go out in one call: many small meshes merged into one buffer, or a
/// single large one.
struct KsGLBatch {
    /// Draws with equal keys may go out together.
    struct Key {
        bool transparent = false;
        bool single = false; ///< Has the mesh's own buffers, of `KsGLCache`.
        std::uint8_t primitive = 0;
        bool lit = false;
        bool pixelLit = false;
        bool twoSided = false;
        bool cull = false;
        std::uint32_t clip = 0;
        std::uint32_t lights = 0;
        std::uint64_t texture = 0;
        bool clampS = false;
        bool clampT = false;

        auto tie() const
        {
            return std::tie(transparent, single, primitive, lit, pixelLit, twoSided, cull, clip,
                            lights, texture, clampS, clampT);
        }
        bool operator<(const Key& other) const { return tie() < other.tie(); }
        bool operator==(const Key& other) const { return tie() == other.tie(); }
    };
    /// How the merged vertices lie in their buffer; texture coordinates, if any, come behind them.
    struct Vertex {
        float x, y, z;
        std::int16_t nx, ny, nz;
        std::int16_t material;
    };
    struct Chunk {
        GLuint vertices = 0, indices = 0;
        GLsizei count = 0;
        std::size_t numVertices = 0;
        std::uint64_t hash = 0;
    };

    Key key;
    std::uint32_t draw = 0; ///< The first of its draws.
    Chunk chunk;            ///< Unused if the key says single.
    KbBox3f box;
};

/// A draw list made ready: batches in the order in which they are drawn, and the materials as a
/// texture. Buffers whose content stays the same from one list to the next are kept. Used while
/// the context is current; `release` comes before the end.
class KsGLBatches {
public:
    static constexpr int paletteRow = 64; ///< Materials in a row of the palette texture.

    /// Does nothing if the list is the one of the last call and did not change.
    void compile(const KsDrawList& drawList);
    void release();

    const std::vector<KsGLBatch>& get() const { return m_batches; }
    const KbBox3f& getBox() const { return m_box; }
    bool hasLines() const { return m_hasLines; }
    /// 0 before the first list.
    GLuint getPalette() const { return m_paletteTexture; }
    std::size_t getPaletteRows() const { return m_palette.size() / (paletteRow * 16); }

private:
    struct Item;
    std::vector<Item> sortDraws(const KsDrawList& drawList, std::vector<KbBox3f>& boxes);
    void makePalette(const KsDrawList& drawList);
    static KsGLBatch::Chunk makeChunk(const KsDrawList& drawList, const Item* first,
                                      const Item* last, bool textured);

    std::uint64_t m_context = 0; // in which all this was made
    const KsDrawList* m_list = nullptr;
    std::uint64_t m_version = 0;
    std::vector<KsGLBatch> m_batches;
    std::vector<std::uint8_t> m_palette;
    GLuint m_paletteTexture = 0;
    KbBox3f m_box;
    bool m_hasLines = false;
    // What was found out about textures and meshes, by their ids.
    std::unordered_map<std::uint64_t, bool> m_transparentTextures;
    std::unordered_map<std::uint64_t, bool> m_flatMeshes;
};

/// The material of a draw; the initial one if the list has none of that number.
const KsMaterialState& ksMaterialOf(const KsDrawList& list, const KsDraw& draw);
/// The light that a material gives off: none where no light is worked out at all. What has no normals
/// in a lit scene (text, lines) shows its diffuse and this.
KbColor ksGlowOf(const KsMaterialState& material);
/// Whether the corners of the front faces run clockwise as they are drawn.
bool ksIsMirroring(const KsDraw& draw);
