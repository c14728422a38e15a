#pragma once

#include <arborium/base/KsType.h>

/// The registration of one auditor class. In contrast to nodes, its type has the class's whole name.
struct KsAuditorRecord {
    const char* className;
    const char* typeName;
    bool isRoot;
    KsType type = {};

    void init();
    void exit();
};

/// Defines what `KS_AUDITOR_HEADER` declares.
#define KS_AUDITOR_SOURCE_NAMED(Class, typeName, isRoot)                                           \
    static KsAuditorRecord s_##Class##Record{#Class, typeName, isRoot};                            \
    KsType Class::getClassTypeId() { return s_##Class##Record.type; }                              \
    KsType Class::getTypeId() const { return s_##Class##Record.type; }                             \
    void Class::initClass() { s_##Class##Record.init(); }                                          \
    void Class::exitClass() { s_##Class##Record.exit(); }
#define KS_AUDITOR_SOURCE(Class) KS_AUDITOR_SOURCE_NAMED(Class, #Class, false)
