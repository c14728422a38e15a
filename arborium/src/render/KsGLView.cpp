#include "KsGLView.h"

#include "KsFraming.h"
#include "KsGLCache.h"
#include "KsGLProgram.h"
#include "KsNormalMatrix.h"

#include <arborium/base/KbViewportRegion.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr int maxLights = 8;
constexpr int maxClipPlanes = 6;

// The light of a scene without lights, in the eye's space: from above, a little from the left, so
// that raised and sunken edges differ; a surface that faces the eye has just its own colour.
const KbVec3f headLight(-0.35f, 0.5f, 1.0f);
constexpr float headAmbient = 0.35f;
constexpr float sceneAmbient = 0.4f;

} // namespace

void KsGLView::fitCamera(const KsDrawList& drawList, const KsGLBatches& batches,
                         const KbViewportRegion& viewport)
{
    const KbBox3f& box = batches.getBox();
    KbViewVolume volume = drawList.viewVolume;
    if (!drawList.hasCamera) {
        const float aspect = viewport.getViewportAspectRatio();
        const KsFraming framing(box, aspect);
        const float half = framing.height / 2;
        volume.ortho(-half * aspect, half * aspect, -half, half, framing.nearDistance,
                     framing.farDistance);
        volume.translateCamera(framing.position);
    }
    volume.getMatrices(m_view, m_projection);
    m_perspective = volume.getProjectionType() == KbViewVolume::PERSPECTIVE;

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
            m_view.multVecMatrix(p, p);
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
    if (m_perspective) first = std::max(first, 1e-5f * last);
    if (!(last > first)) return;
    const double n = first, f = last;
    if (m_perspective) {
        m_projection[2][2] = static_cast<float>(-(f + n) / (f - n));
        m_projection[3][2] = static_cast<float>(-2 * f * n / (f - n));
    } else {
        m_projection[2][2] = static_cast<float>(-2 / (f - n));
        m_projection[3][2] = static_cast<float>(-(f + n) / (f - n));
    }
}

void KsGLView::setLights(const KsGLProgram& p, const std::vector<KsLightState>* lights) const
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
                m_view.multVecMatrix(light.vector, vector);
            else
                m_view.multDirMatrix(-light.vector, vector);
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

void KsGLView::begin(const KsGLProgram& p, const KsGLBatches& batches) const
{
    glUseProgram(p.id);
    glUniformMatrix4fv(p.view, 1, GL_FALSE, m_view.getValue());
    glUniformMatrix4fv(p.projection, 1, GL_FALSE, m_projection.getValue());
    glUniform1f(p.perspective, m_perspective ? 1.0f : 0.0f);
    glUniform1i(p.texture, 0);
    glUniform1i(p.palette, 1);
    glUniform2f(p.paletteSize, KsGLBatches::paletteRow * 4,
                static_cast<float>(batches.getPaletteRows()));
}

namespace {

const void* offset(std::size_t bytes) { return reinterpret_cast<const void*>(bytes); }

GLenum modeOf(const KsGLBatch::Key& key)
{
    switch (key.primitive) {
    case KsMesh::Triangles: return GL_TRIANGLES;
    case KsMesh::Lines: return GL_LINES;
    default: return GL_POINTS;
    }
}

/// Switches on the planes of a set, and those of `before` beyond them off. Returns how many are on.
int setClipPlanes(const KsDrawList& drawList, std::uint32_t set, int before)
{
    int count = 0;
    if (set < drawList.clips.size()) {
        for (const KbPlane& plane : drawList.clips[set]) {
            if (count == maxClipPlanes) break;
            const KbVec3f& n = plane.getNormal();
            const GLdouble equation[] = {n[0], n[1], n[2], -plane.getDistanceFromOrigin()};
            glClipPlane(GL_CLIP_PLANE0 + static_cast<GLenum>(count), equation);
            glEnable(GL_CLIP_PLANE0 + static_cast<GLenum>(count));
            ++count;
        }
    }
    for (int i = count; i < before; ++i) glDisable(GL_CLIP_PLANE0 + static_cast<GLenum>(i));
    return count;
}

void blendByAlpha()
{
    glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
}

} // namespace

// Small meshes that were merged: their vertices are in the world.
void KsGLView::drawMerged(const KsGLProgram& p, const KsGLBatch& batch) const
{
    const KbMatrix identity;
    const KsNormalMatrix normal(m_view);
    glUniformMatrix4fv(p.model, 1, GL_FALSE, identity.getValue());
    glUniformMatrix3fv(p.normal, 1, GL_FALSE, normal.m);
    glBindBuffer(GL_ARRAY_BUFFER, batch.chunk.vertices);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, batch.chunk.indices);
    glVertexAttribPointer(0, 3, GL_FLOAT, GL_FALSE, sizeof(KsGLBatch::Vertex), offset(0));
    glVertexAttribPointer(1, 4, GL_SHORT, GL_TRUE, sizeof(KsGLBatch::Vertex), offset(12));
    glEnableVertexAttribArray(1);
    if (batch.key.texture) {
        glVertexAttribPointer(2, 2, GL_FLOAT, GL_FALSE, 0,
                              offset(batch.chunk.numVertices * sizeof(KsGLBatch::Vertex)));
        glEnableVertexAttribArray(2);
    }
    glDrawElements(modeOf(batch.key), batch.chunk.count, GL_UNSIGNED_SHORT, nullptr);
}

void KsGLView::drawSingle(const KsGLProgram& p, const KsGLBatch::Key& key, const KsDraw& draw,
                          const KsMaterialState& m) const
{
    const KsGLCache::MeshBuffers& buffers = KsGLCache::instance().get(draw.mesh);
    const KsNormalMatrix normal(draw.matrix * m_view);
    glUniformMatrix4fv(p.model, 1, GL_FALSE, draw.matrix.getValue());
    glUniformMatrix3fv(p.normal, 1, GL_FALSE, normal.m);
    glFrontFace(ksIsMirroring(draw) ? GL_CW : GL_CCW);
    glBindBuffer(GL_ARRAY_BUFFER, buffers.vertices);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, buffers.indices);
    glVertexAttribPointer(0, 3, GL_FLOAT, GL_FALSE, 0, offset(0));
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
    // Colours of vertices come without an opacity: those of transparent shapes are drawn through
    // the constant alpha of the blend.
    const float opacity = 1 - m.transparency;
    const bool constantAlpha = buffers.colors && key.transparent;
    if (buffers.colors) {
        glVertexAttribPointer(3, 3, GL_FLOAT, GL_FALSE, 0, offset(buffers.colors));
        glEnableVertexAttribArray(3);
    } else {
        set(3, m.diffuse, opacity);
    }
    if (constantAlpha) {
        glBlendColor(0, 0, 0, opacity);
        glBlendFuncSeparate(GL_CONSTANT_ALPHA, GL_ONE_MINUS_CONSTANT_ALPHA, GL_CONSTANT_ALPHA,
                            GL_ONE_MINUS_CONSTANT_ALPHA);
    }
    set(4, ksGlowOf(m), 0);
    set(5, m.specular, m.shininess);
    set(6, m.ambient, 0);
    glDrawElements(modeOf(key), buffers.count, GL_UNSIGNED_INT, nullptr);
    glDisableVertexAttribArray(3);
    glFrontFace(GL_CCW);
    if (constantAlpha) blendByAlpha();
}

int KsGLView::draw(const KsDrawList& drawList, const KsGLBatches& batches)
{
    int numCalls = 0;
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LEQUAL);
    glDepthMask(GL_TRUE);
    blendByAlpha();
    glFrontFace(GL_CCW);
    glCullFace(GL_BACK);
    // Faces step back from lines that lie in them.
    const float back = batches.hasLines() ? 1.0f : 0.0f;
    glEnable(GL_POLYGON_OFFSET_FILL);
    glPolygonOffset(back, back);
    // Clip planes are given in the space of this matrix.
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();

    int planes = 0;
    const KsGLProgram* current = nullptr;
    const KsGLBatch::Key* last = nullptr;
    for (const KsGLBatch& batch : batches.get()) {
        const KsGLBatch::Key& key = batch.key;
        const KsDraw& draw = drawList.draws[batch.draw];
        if (batch.key.single ? draw.mesh->positions.empty() : !batch.chunk.count) continue;
        if (drawList.hasCamera && !drawList.viewVolume.intersect(batch.box)) continue;

        const int flags = (key.single ? 0 : KsGLProgram::Palette) |
                          (key.lit ? KsGLProgram::Lit : 0) |
                          (key.pixelLit ? KsGLProgram::PixelLight : 0) |
                          (key.texture ? KsGLProgram::Textured : 0);
        const KsGLProgram& p = KsGLProgram::get(flags);
        if (!p.id) continue;
        const bool newProgram = &p != current;
        if (newProgram) begin(p, batches);
        current = &p;
        if (!last || last->transparent != key.transparent) {
            (key.transparent ? glEnable : glDisable)(GL_BLEND);
            glDepthMask(key.transparent ? GL_FALSE : GL_TRUE);
        }
        if (!last || last->cull != key.cull) (key.cull ? glEnable : glDisable)(GL_CULL_FACE);
        if (!last || last->clip != key.clip) planes = setClipPlanes(drawList, key.clip, planes);
        if (key.texture) {
            if (!last || last->texture != key.texture) {
                glActiveTexture(GL_TEXTURE0);
                glBindTexture(GL_TEXTURE_2D, KsGLCache::instance().get(draw.texture));
            }
            const auto wrap = [](bool clamp) { return clamp ? GL_CLAMP_TO_EDGE : GL_REPEAT; };
            glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, wrap(key.clampS));
            glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, wrap(key.clampT));
        }
        if (key.lit) {
            glUniform1f(p.twoSided, key.twoSided ? 1.0f : 0.0f);
            if (newProgram || !last || last->lights != key.lights || !last->lit)
                setLights(p, key.lights < drawList.lightSets.size()
                                 ? &drawList.lightSets[key.lights]
                                 : nullptr);
        }
        last = &key;

        glEnableVertexAttribArray(0);
        if (key.single)
            drawSingle(p, key, draw, ksMaterialOf(drawList, draw));
        else
            drawMerged(p, batch);
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
    return numCalls;
}
