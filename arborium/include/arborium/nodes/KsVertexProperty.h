#pragma once

#include <arborium/fields/KsMField.h>
#include <arborium/nodes/KsChangeStamp.h>
#include <arborium/nodes/KsNode.h>

/// Points with what belongs to them, in one node: in the `vertexProperty` field of a shape it is
/// for that shape alone, in the scene for the shapes behind it. A field without values leaves what
/// was in force before.
class ARBORIUM_API KsVertexProperty : public KsNode {
    KS_NODE_HEADER(KsVertexProperty);

public:
    KsMFVec3f vertex;   ///< Points. Default: none.
    KsMFVec3f normal;   ///< One per point, or a single one for all. Default: none.
    KsMFVec2f texCoord; ///< One per point, (0, 0) being the image's lower left. Default: none.

    KsVertexProperty();
    /// Another one after each change.
    std::uint64_t getStamp() const { return m_stamp.get(); }

    void doAction(KsAction* action) override;
    void markChanged() override;

protected:
    ~KsVertexProperty() override;

private:
    KsChangeStamp m_stamp;
};
