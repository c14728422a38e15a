#pragma once

#include <arborium/fields/KsMField.h>
#include <arborium/nodes/KsChangeStamp.h>
#include <arborium/nodes/KsNode.h>

/// Normals for the face sets behind it in the scene: one per point, or a single one for all. Any
/// other number is ignored, and the faces' own normals are used.
class ARBORIUM_API KsNormal : public KsNode {
    KS_NODE_HEADER(KsNormal);

public:
    KsMFVec3f
        vector; ///< Of any length; one of length 0, or no number, is the face's. Default: none.

    KsNormal();
    /// Another one after each change.
    std::uint64_t getStamp() const { return m_stamp.get(); }

    void doAction(KsAction* action) override;
    void markChanged() override;

protected:
    ~KsNormal() override;

private:
    KsChangeStamp m_stamp;
};
