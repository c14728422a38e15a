#pragma once

#include <arborium/nodes/KsNode.h>

/// The font of the texts behind it. Without one it is the plain font, 10 high.
class ARBORIUM_API KsFont : public KsNode {
    KS_NODE_HEADER(KsFont);

public:
    KsFont();

    /// Name of a font family. The default, "defaultFont", and the empty name stand for a plain font
    /// without serifs; a family that is not there is replaced by a similar one.
    KsSFName name;
    /// From one base line to the next, about, in units of the scene. Default 10; a size that is no
    /// positive number leaves the one that is in force.
    KsSFFloat size;

    void doAction(KsAction* action) override;

protected:
    ~KsFont() override;
};
