#pragma once

#include <arborium/nodes/KsGroup.h>

/// A group of which one child, all or none is traversed: drawn, measured, picked. Searches see the
/// others too if they are told to; paths lead through them.
class ARBORIUM_API KsSwitch : public KsGroup {
    KS_NODE_HEADER(KsSwitch);

public:
    /// Special values of `whichChild`. INHERIT takes the value of the switch that was traversed
    /// last in the same state; there being none, no child is traversed.
    enum { NONE = -1, INHERIT = -2, ALL = -3 };

    KsSwitch();

    /// Index of the child that is traversed, or one of the values above. Default NONE; an index
    /// that no child has is as NONE.
    KsSFInt32 whichChild;

    bool affectsState() const override { return true; }
    void doAction(KsAction* action) override;
    void getBoundingBox(KsGetBoundingBoxAction* action) override;
    void getMatrix(KsGetMatrixAction* action) override;
    void search(KsSearchAction* action) override;

protected:
    ~KsSwitch() override;

private:
    void traverseChosen(KsAction* action, int which);
};
