#pragma once

#include <arborium/render/KsMesh.h>

/// Faces or lines over a list of points: corner numbers, and where each face ends.
struct KsFaceList {
    std::vector<std::uint32_t> corners;
    std::vector<std::size_t> ends; ///< One past the last corner of each face.
    /// Closes a face of all corners since the last one; nothing if there are none.
    void endFace();
};

/// What faces are built over. Null stands for "none".
struct KsFaceSource {
    const std::vector<KbVec3f>* points = nullptr;
    /// One per point, or a single one for all; any other number is ignored.
    const std::vector<KbVec3f>* normals = nullptr;
    /// One per point; fewer are ignored.
    const std::vector<KbVec2f>* texCoords = nullptr;
    /// Faces that meet at a smaller angle, in radians, look as one curved surface.
    float creaseAngle = 0;
    bool counterClockwise = true;
    /// Spread texture coordinates over the two widest extents where there are none.
    bool makeTexCoords = false;
};

/// What was left out of a mesh.
struct KsBuildReport {
    std::size_t badFaces = 0;     ///< A corner that does not exist, or is not finite.
    std::size_t complexFaces = 0; ///< Edges that cross too often.
};

// Recipes. Shapes of unit size are made once and shared; who needs another size scales them.

/// Width, height and depth 2 around the origin.
KsMeshPtr ksBoxMesh();
/// Radius 1.
KsMeshPtr ksSphereMesh();
/// Radius 1 at y -1, apex at y 1. Null if neither part is wanted.
KsMeshPtr ksConeMesh(bool sides, bool bottom);
/// Radius 1, y from -1 to 1. Null if no part is wanted.
KsMeshPtr ksCylinderMesh(bool sides, bool top, bool bottom);
/// Polygons, concave ones too. A face with a bad corner is left out, as is one without an area.
/// Null if nothing remains.
KsMeshPtr ksFaceMesh(const KsFaceList& faces, const KsFaceSource& source, KsBuildReport& report);
/// Lines through the corners of each "face". Null if nothing remains.
KsMeshPtr ksLineMesh(const KsFaceList& lines, const std::vector<KbVec3f>& points,
                     KsBuildReport& report);
