#pragma once

#include <arborium/base/KbLine.h>
#include <arborium/base/KbProjector.h>

/// Projects onto a line: the point of it that is nearest to what lies under the pointer.
class ARBORIUM_API KbLineProjector : public KbProjector {
public:
    /// The y axis.
    KbLineProjector();

    /// In working space. The start position becomes the line's point nearest to the origin.
    void setLine(const KbLine& line);
    const KbLine& getLine() const { return m_line; }

    KbLineProjector* copy() const override;

protected:
    bool intersectShape(const KbLine& ray, KbVec3f& result) const override;

private:
    KbLine m_line;
};
