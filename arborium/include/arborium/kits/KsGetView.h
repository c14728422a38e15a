#pragma once

#include <arborium/base/KbVec.h>
#include <arborium/base/KsApi.h>

/// The part of the window that a kit asks to be drawn in; by default it asks for nothing. For
/// programs: the layer itself draws kits where they stand.
class ARBORIUM_API KsGetView {
public:
    virtual ~KsGetView() = default;
    /// Whether the two below mean anything.
    virtual bool getViewportIsEnabled() const { return false; }
    /// In fractions of the window, from its lower left corner.
    virtual KbVec2f getViewportOrigin() const { return {0, 0}; }
    virtual KbVec2f getViewportSize() const { return {1, 1}; }
};
