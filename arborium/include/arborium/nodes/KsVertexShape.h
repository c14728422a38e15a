#pragma once

#include <arborium/nodes/KsChangeStamp.h>
#include <arborium/nodes/KsShape.h>

struct KsFaceList;

/// Base of the shapes that are made over a list of points: those of the `vertexProperty` if it has
/// any, else those in force in the scene (`KsCoordinate3`, `KsVertexProperty`). What refers to a
/// point that does not exist, or is infinite or no number, is left out with a message.
class ARBORIUM_API KsVertexShape : public KsShape {
    KS_NODE_HEADER(KsVertexShape);

public:
    KsSFNode vertexProperty; ///< A `KsVertexProperty`; another node is ignored. Default null.

    Form getForm(const KsState* state) override;
    void getBoundingBox(KsGetBoundingBoxAction* action) override;
    void GLRender(KsRenderAction* action) override;
    void markChanged() override;

protected:
    KsVertexShape();
    ~KsVertexShape() override;
    void reportUse(KsGetBoundingBoxAction* action) override;

    // Plumbing.
    /// Lists the corners of faces or lines over so many points. FALSE if something in the fields
    /// makes no sense: that is reported once, with what else is wrong.
    virtual bool listCorners(std::size_t numPoints, KsFaceList& list) const = 0;
    virtual bool hasFaces() const { return true; }

private:
    // What the mesh was made from.
    struct Key {
        std::uint64_t own = 0, property = 0, points = 0, normals = 0, texCoords = 0;
        float creaseAngle = 0;
        bool counterClockwise = true, textured = false;
        bool operator==(const Key& other) const;
    };
    class Sources;

    KsChangeStamp m_stamp;
    Key m_key;
    KsMeshPtr m_mesh;
};
