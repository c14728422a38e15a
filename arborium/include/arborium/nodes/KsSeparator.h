#pragma once

#include <arborium/base/KbBox3f.h>
#include <arborium/nodes/KsGroup.h>

#include <cstdint>

/// A group that keeps what its children set from what stands behind it. It keeps the box of its
/// children until something below it changes, and lets render actions keep what it drew. While its
/// box is known, it is not drawn out of the camera's view, and not searched by rays that miss it.
class ARBORIUM_API KsSeparator : public KsGroup {
    KS_NODE_HEADER(KsSeparator);

public:
    KsSeparator();

    bool affectsState() const override { return false; }
    void doAction(KsAction* action) override;
    void GLRender(KsRenderAction* action) override;
    void getBoundingBox(KsGetBoundingBoxAction* action) override;
    void getMatrix(KsGetMatrixAction* action) override;
    void rayPick(KsRayPickAction* action) override;

    // Plumbing.
    /// The box, in the space in which the separator stands; null while it is not known.
    const KbBox3f* getKeptBox() const { return m_boxKept && !isStale(StaleBox) ? &m_box : nullptr; }
    /// Known while the box is.
    bool holdsCamera() const { return m_holdsCamera; }

protected:
    ~KsSeparator() override;

private:
    KbBox3f m_box;
    bool m_boxKept = false;
    bool m_holdsCamera = false;
    std::uint64_t m_drawVersion = 0; // another one whenever a render action met a change below
};
