#pragma once

#include <arborium/fields/KsClassRecord.h>

#include <initializer_list>

/// What a row of a control's table of parts is.
enum class KsPartKind {
    Separator,
    Switch,
    Look,            ///< A group that a skin fills. It may be set by the application.
    PublicSeparator, ///< A separator that may be set by the application.
};

struct KsPartRow {
    const char* name;
    KsPartKind kind;
    const char* parent;
};

/// Adds the rows in their order, empty at first; once per class.
void ksAddParts(KsInstanceBuilder& build, std::initializer_list<KsPartRow> rows);

/// The label zone: `labelSep`, `labelSwitch`, `labelProp`.
void ksAddLabelParts(KsInstanceBuilder& build);
