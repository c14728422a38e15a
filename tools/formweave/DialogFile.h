#pragma once

#include <arborium/nodes/KsSeparator.h>
#include <formweave/KsFormweave.h>

#include <cstdio>
#include <string>
#include <vector>

/// A dialog file as it is on disk now: it is read past the library's cache.
struct DialogFile {
    explicit DialogFile(const std::string& path);

    std::string path;
    KsRef<KsSeparator> root;         ///< Null if the file could not be read.
    std::vector<std::string> errors; ///< "file:line:column: message", all that were found.

    /// The first top-level element, or with an `id` the first whose `auditorID` it is; null if there
    /// is none.
    KsFormweave* element(const std::string& id) const;
    /// Says that `element` found none.
    std::string noElement(const std::string& id) const;
    /// All top-level elements.
    std::vector<KsFormweave*> elements() const;
    void printErrors(std::FILE* to) const;
};

/// As `element`, with what is wrong on standard error. `file` keeps the element alive.
KsFormweave* readElement(const DialogFile& file, const std::string& id);
