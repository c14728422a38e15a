#pragma once

#include <arborium/events/KsEvent.h>

/// What a key means to a text that is typed in a scene.
struct KsTypedKey {
    enum Kind { Nothing, Character, Return, Backspace };
    Kind kind = Nothing;
    char character = 0; ///< Latin-1, "?" for what is beyond it; not 0 for a `Character`.
};

/// Releases, and events of other kinds, mean nothing. The numeric pad types digits and the point
/// whether or not it is locked.
KsTypedKey ksTypedKey(const KsEvent* event);
