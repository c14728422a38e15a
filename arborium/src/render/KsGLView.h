#pragma once

#include "KsGLBatches.h"

class KbViewportRegion;
struct KsGLProgram;

/// How a list is seen: its camera and lights, and the calls that draw its batches.
class KsGLView {
public:
    /// Takes the camera of the list, or one that shows all from the front.
    void fitCamera(const KsDrawList& drawList, const KsGLBatches& batches,
                   const KbViewportRegion& viewport);
    /// Draws into what is bound, with the palette in texture unit 1, and leaves nothing switched
    /// on. Returns the number of draw calls.
    int draw(const KsDrawList& drawList, const KsGLBatches& batches);

private:
    void begin(const KsGLProgram& p, const KsGLBatches& batches) const;
    void drawMerged(const KsGLProgram& p, const KsGLBatch& batch) const;
    void drawSingle(const KsGLProgram& p, const KsGLBatch::Key& key, const KsDraw& draw,
                    const KsMaterialState& m) const;
    void setLights(const KsGLProgram& p, const std::vector<KsLightState>* lights) const;

    KbMatrix m_view, m_projection;
    bool m_perspective = false;
};
