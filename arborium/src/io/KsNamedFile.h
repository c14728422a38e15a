#pragma once

#include <arborium/base/KbString.h>

#include <string>

/// The full name, without links, of a file that is named in another one: "~" and "$NAME" at its
/// beginning are expanded, and what is not absolute is looked for in `folder`, that of the naming file
/// (empty for none), and then in the directories of `KsInput`. Empty, with `problem`, for a file that
/// is not there or that may not be read.
KbString ksFindNamedFile(const KbString& name, const KbString& folder, std::string& problem);
