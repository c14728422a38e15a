#pragma once

#include <arborium/base/KbVec.h>
#include <arborium/base/KsApi.h>

/// The part of the window that a kit asks to be drawn in; by default it asks for nothing.
class ARBORIUM_API KsGetView {
public:
    virtual ~KsGetView() = default;
    virtual bool getViewportIsEnabled() const { return false; }
    virtual KbVec2f getViewportOrigin() const { return {0, 0}; } ///< Fractions of the window.
    virtual KbVec2f getViewportSize() const { return {1, 1}; }
};
