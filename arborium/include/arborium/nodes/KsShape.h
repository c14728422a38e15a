#pragma once

#include <arborium/base/KbBox3f.h>
#include <arborium/nodes/KsNode.h>
#include <arborium/render/KsMesh.h>

class KsState;

/// Base of the nodes that are seen. A shape says what it is made of; how that is measured, drawn
/// and picked stands here once.
class ARBORIUM_API KsShape : public KsNode {
    KS_NODE_HEADER(KsShape);

public:
    /// What a shape is made of: a mesh, which may be shared with other shapes, and its size.
    struct Form {
        KsMeshPtr mesh;         ///< Null if there is nothing to see.
        KbVec3f scale{1, 1, 1}; ///< Of the mesh, along x, y and z.
    };
    /// The shape under the state of a traversal. The mesh stays the same as long as neither the
    /// shape nor what it uses of the state changes.
    virtual Form getForm(const KsState* state) = 0;
    /// The box in the shape's own space: by default that of its form. Empty if there is nothing.
    virtual KbBox3f getBox(const KsState* state);

    bool affectsState() const override { return false; }
    void getBoundingBox(KsGetBoundingBoxAction* action) override;
    void GLRender(KsRenderAction* action) override;
    void rayPick(KsRayPickAction* action) override;

protected:
    KsShape();
    ~KsShape() override;
    /// Tells the action what of the state the box depends on: nothing by default.
    virtual void reportUse(KsGetBoundingBoxAction* action);
    /// Reports the hits of a ray that meets the box. By default those of the mesh.
    virtual void pickShape(KsRayPickAction* action);
};
