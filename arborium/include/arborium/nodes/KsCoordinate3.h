#pragma once

#include <arborium/fields/KsMField.h>
#include <arborium/nodes/KsChangeStamp.h>
#include <arborium/nodes/KsNode.h>

/// The points over which the shapes behind it in the scene are made.
class ARBORIUM_API KsCoordinate3 : public KsNode {
    KS_NODE_HEADER(KsCoordinate3);

public:
    KsMFVec3f point; ///< Default: the origin alone.

    KsCoordinate3();
    /// Another one after each change.
    std::uint64_t getStamp() const { return m_stamp.get(); }

    void doAction(KsAction* action) override;
    void markChanged() override;

protected:
    ~KsCoordinate3() override;

private:
    KsChangeStamp m_stamp;
};
