#pragma once

#include <arborium/base/KbString.h>

class KsGroup;

/// A dialog file that was read. The cache holds one reference to its root.
struct DialogFileRecord {
    KbString fileName; ///< As the caller gave it: the key.
    KsGroup* root;
};
