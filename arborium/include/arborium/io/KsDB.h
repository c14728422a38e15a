#pragma once

#include <arborium/base/KsApi.h>

class KsInput;
class KsNode;
class KsSeparator;

/// Start and stop of the layer, and the reading of whole files.
class ARBORIUM_API KsDB {
public:
    /// Registers the types of the layer. Nests: each `init` is paired with a `finish`.
    static void init();
    /// Takes the types out again with the last `finish`; one without its `init` does nothing.
    static void finish();
    /// Whether there were more `init` than `finish`, and how many more.
    static bool isInitialized();
    static int getInitCount();

    /// All that the input holds, below one separator without a reference, also where it holds a
    /// single node. Null after any error, and for null or an input without a file; the errors are
    /// posted, each once, and nothing of what was read stays behind. Where the separator is all that
    /// is written, and nothing was set on it, only its children are; a copy of it is a separator like
    /// any other.
    static KsSeparator* readAll(KsInput* in);
    /// As `readAll`, but posts nothing: the errors stand in `in->getErrors()`.
    static KsSeparator* parse(KsInput* in);
    /// The next node of the input, without a reference. FALSE with null after an error, which is
    /// posted; TRUE with null at its end.
    static bool read(KsInput* in, KsNode*& node);
};
