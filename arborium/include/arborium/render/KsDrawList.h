#pragma once

#include <arborium/actions/KsState.h>
#include <arborium/render/KsMesh.h>

/// An image for a texture.
struct ARBORIUM_API KsTextureImage {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> rgba; ///< Rows from the bottom.
    std::uint64_t id = 0;
};
using KsTexturePtr = std::shared_ptr<const KsTextureImage>;

/// One thing to draw.
struct ARBORIUM_API KsDraw {
    KsMeshPtr mesh;
    KbMatrix matrix;            ///< From the mesh's space to the world.
    std::uint32_t material = 0; ///< Index into `KsDrawList::materials`.
    std::uint32_t clip = 0;     ///< Index into `KsDrawList::clips`.
    std::uint32_t lights = 0;   ///< Index into `KsDrawList::lightSets`.
    KsTexturePtr texture;
    bool clampS = false; ///< Beyond its edges the texture goes on with them, or else begins again.
    bool clampT = false;
    bool cullBack = false;
    bool twoSided = true; ///< Light falls on both faces.
    bool counterClockwise = true;
};

/// A scene as a flat list: the whole that the GL side needs to know.
struct ARBORIUM_API KsDrawList {
    std::vector<KsDraw> draws;
    std::vector<KsMaterialState> materials;
    std::vector<std::vector<KbPlane>> clips;
    std::vector<std::vector<KsLightState>> lightSets;
    KbViewVolume viewVolume;
    bool hasCamera = false;
    /// Grows with each rebuild.
    std::uint64_t version = 0;
    void clear();
};
