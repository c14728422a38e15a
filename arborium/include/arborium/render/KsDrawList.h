#pragma once

#include <arborium/actions/KsState.h>
#include <arborium/render/KsMesh.h>

/// An image for a texture.
struct ARBORIUM_API KsTextureImage {
    int width = 0;                  ///< In pixels; at most 8192.
    int height = 0;                 ///< In pixels; at most 8192.
    std::vector<std::uint8_t> rgba; ///< Rows from the bottom.
    std::uint64_t id = 0;           ///< Never the same for two images of one process.
};
using KsTexturePtr = std::shared_ptr<const KsTextureImage>;

/// One thing to draw.
struct ARBORIUM_API KsDraw {
    KsMeshPtr mesh;             ///< Never null.
    KbMatrix matrix;            ///< From the mesh's space to the world.
    std::uint32_t material = 0; ///< Index into `KsDrawList::materials`.
    std::uint32_t clip = 0;     ///< Index into `KsDrawList::clips`.
    std::uint32_t lights = 0;   ///< Index into `KsDrawList::lightSets`.
    KsTexturePtr texture;       ///< Null for none.
    bool clampS = false;   ///< Beyond its edges the texture goes on with them, or begins again.
    bool clampT = false;   ///< The same above and below.
    bool cullBack = false; ///< The backs of faces are not drawn.
    bool twoSided = true;  ///< Light falls on both faces.
    bool counterClockwise = true; ///< So the corners of a face run for someone in front of it.
};

/// A scene as a flat list: the whole that the GL side needs to know.
struct ARBORIUM_API KsDrawList {
    std::vector<KsDraw> draws; ///< In the order of the scene.
    // What draws refer to by their indices; some of it may be referred to by none.
    std::vector<KsMaterialState> materials;
    std::vector<std::vector<KbPlane>> clips;
    std::vector<std::vector<KsLightState>> lightSets;
    KbViewVolume viewVolume; ///< Of the last camera.
    bool hasCamera = false;  ///< FALSE: the whole scene is to be seen from the front.
    /// Grows with each rebuild.
    std::uint64_t version = 0;
    /// Takes all out, and makes a new version of it.
    void clear();
};
