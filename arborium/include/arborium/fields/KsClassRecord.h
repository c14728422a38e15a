#pragma once

#include <arborium/base/KbThread.h>
#include <arborium/fields/KsFieldContainer.h>

#include <atomic>
#include <initializer_list>
#include <new>

class KsBaseKit;
class KsNodekitCatalog;

/// What the toolkit knows of one class of nodes. Each class has one record; its members are in
/// force between `initClass` and `exitClass`.
struct ARBORIUM_API KsClassRecord {
    /// `name` with the prefix; `parent` is the record of the base class, null at the root. The record
    /// is constant-initialised: it may be used by constructors of other static objects.
    constexpr KsClassRecord(const char* name, KsClassRecord* parent, KsCreateFunction create)
        : className(name), parentRecord(parent), createFunction(create)
    {}

    const char* className;
    KsClassRecord* parentRecord;
    KsCreateFunction createFunction;

    KsType classTypeId;
    KbThreadMutex classMutex{0};
    KsFieldData* fieldData = nullptr;
    const KsFieldData** parentFieldData = nullptr;
    KsNodekitCatalog* nodekitCatalog = nullptr;
    const KsNodekitCatalog** parentNodekitCatalogPtr = nullptr;
    int firstInstance = 1;
    int isBuiltIn = 0;
    /// TRUE for kits, from `initClass` on.
    bool isKit = false;

    /// The name of the type in files: the class name without the prefix.
    const char* fileName() const;
    /// Registers the class, and the base class first if that was forgotten (with a message). A
    /// class that is registered stays as it is.
    void initClass();
    /// Takes the class out of the type table. A class that is not there gives a message.
    void exitClass();
    /// The field data; repaired with a message if it is not there.
    const KsFieldData* getFieldData() { return m_isSettled ? fieldData : lockFieldData(); }

    KsClassRecord(const KsClassRecord&) = delete;
    KsClassRecord& operator=(const KsClassRecord&) = delete;

private:
    friend class KsInstanceBuilder;
    /// Makes the field data if it is not there; `classMutex` is held.
    void makeFieldData();
    const KsFieldData* lockFieldData();
    /// TRUE from the second instance on: nothing changes any more that would need the lock.
    std::atomic<bool> m_isSettled{false};
    bool m_isRepaired = false; // the field data was made by no instance: the first one fills it
};

/// A value of an enum, for `KsInstanceBuilder::enums`.
struct KsEnumValue {
    const char* name;
    int value;
};

/// Builds an instance inside its constructor, as two tables: its fields with their defaults, and,
/// for a kit, its parts. The first instance of a class also fills the class's record.
///
///     KsDialogCheckBox::KsDialogCheckBox()
///     {
///         KsInstanceBuilder build(classRecord, this);
///         build.field("state", state, false);
///         build.part("labelSep", KsSeparator::getClassTypeId(), "geomSwitch", KsHiddenPart);
///     }
class ARBORIUM_API KsInstanceBuilder {
public:
    /// Stands first in the constructor of `instance`, which it keeps alive until its own end; then
    /// a kit gets its parts. A class that is not registered is, with a message.
    KsInstanceBuilder(KsClassRecord& record, KsFieldContainer* instance)
        : m_record(record), m_instance(instance), m_guard(instance)
    {
        if (!record.m_isSettled) prepareRecord();
    }
    ~KsInstanceBuilder()
    {
        if (m_record.isKit) makeParts();
    }
    KsInstanceBuilder(const KsInstanceBuilder&) = delete;
    KsInstanceBuilder& operator=(const KsInstanceBuilder&) = delete;

    /// Adds a field and sets the default of its class.
    template <class Field, class Value>
    void field(const char* name, Field& member, const Value& initial)
    {
        add(name, member);
        member.initValue(initial);
    }
    /// A field of several values that is empty at first.
    template <class Field> void emptyField(const char* name, Field& member) { add(name, member); }
    /// Declares an enum; needed before the fields that use it, once per class.
    void enums(const char* enumName, std::initializer_list<KsEnumValue> values);
    /// A field of one value of `enumName` (`KsSFEnum`) or of several (`KsSFBitMask`). With an enum
    /// that was not declared it takes any number, and there is a message that names file and line.
    void enumField(const char* name, KsSFEnum& member, const char* enumName, int initial,
                   const char* file = __builtin_FILE(), int line = __builtin_LINE());

    /// A part of a kit; see `KsNodekitCatalog::addEntry`. The default type is the type itself.
    void part(const char* name, KsType type, const char* parent, bool isPublic,
              bool nullByDefault = true, const char* rightSibling = "");
    void part(const char* name, KsType type, KsType defaultType, bool nullByDefault,
              const char* parent, const char* rightSibling, bool isList, KsType listContainer,
              KsType listItem, bool isPublic);
    /// Whether this is the first instance of its class, which fills the record.
    bool isFirst() const { return m_first; }

private:
    void prepareRecord();
    void makeParts();
    void add(const char* name, KsField& member)
    {
        if (m_first || !m_record.fieldData) addToRecord(name, member);
        member.setContainer(m_instance);
        member.setFieldType(5);
    }
    void addToRecord(const char* name, KsField& member);

    KsClassRecord& m_record;
    KsFieldContainer* m_instance;
    KsBaseInitializer m_guard;
    bool m_first = false;
    int m_enumField = -1; ///< The next one in the record, once there was one.
};

/// What `KsInstanceBuilder::part` is told of a part that paths and names may show, and of another.
inline constexpr bool KsPublicPart = true;
inline constexpr bool KsHiddenPart = false;

/// Declares the record of a node class that can be made.
#define KS_NODE_HEADER(Class)                                                                      \
public:                                                                                            \
    static KsType getClassTypeId() { return classRecord.classTypeId; }                             \
    KsType getTypeId() const override;                                                             \
    const KsFieldData* getFieldData() const override;                                              \
    int getIsBuiltIn() const override;                                                             \
    static void initClass();                                                                       \
    [[maybe_unused]] static void exitClass();                                                      \
    static KsClassRecord classRecord;                                                              \
                                                                                                   \
protected:                                                                                         \
    [[maybe_unused]] static const KsFieldData** getFieldDataPtr();                                 \
                                                                                                   \
private:                                                                                           \
    static KsTypedObject* createInstance(KsType*)

/// Declares the record of a kit class.
#define KS_KIT_HEADER(Class)                                                                       \
    KS_NODE_HEADER(Class);                                                                         \
                                                                                                   \
public:                                                                                            \
    static const KsNodekitCatalog* getClassNodekitCatalog() { return classRecord.nodekitCatalog; } \
    const KsNodekitCatalog* getNodekitCatalog() const override;                                    \
                                                                                                   \
protected:                                                                                         \
    static const KsNodekitCatalog** getClassNodekitCatalogPtr()                                    \
    {                                                                                              \
        return const_cast<const KsNodekitCatalog**>(&classRecord.nodekitCatalog);                  \
    }                                                                                              \
                                                                                                   \
private:                                                                                           \
    friend struct KsClassRecord

/// What all records share that the next macros define.
#define KS_NODE_SOURCE_COMMON(Class, Parent, Create)                                               \
    KsClassRecord Class::classRecord(#Class, &Parent::classRecord, Create);                        \
    KsType Class::getTypeId() const { return classRecord.classTypeId; }                            \
    const KsFieldData* Class::getFieldData() const { return classRecord.getFieldData(); }          \
    int Class::getIsBuiltIn() const { return classRecord.isBuiltIn; }                              \
    void Class::initClass() { classRecord.initClass(); }                                           \
    void Class::exitClass() { classRecord.exitClass(); }                                           \
    const KsFieldData** Class::getFieldDataPtr()                                                   \
    {                                                                                              \
        return const_cast<const KsFieldData**>(&classRecord.fieldData);                            \
    }

/// Defines the record of a node class, `Parent` being its base class; of an abstract one, which
/// cannot be made by its type; and of kits.
#define KS_NODE_SOURCE(Class, Parent)                                                              \
    KS_NODE_SOURCE_COMMON(Class, Parent, &Class::createInstance)                                   \
    KsTypedObject* Class::createInstance(KsType*) { return new (std::nothrow) Class; }

#define KS_ABSTRACT_NODE_SOURCE(Class, Parent)                                                     \
    KS_NODE_SOURCE_COMMON(Class, Parent, nullptr)                                                  \
    KsTypedObject* Class::createInstance(KsType*) { return nullptr; }

#define KS_KIT_SOURCE(Class, Parent)                                                               \
    KS_NODE_SOURCE(Class, Parent)                                                                  \
    const KsNodekitCatalog* Class::getNodekitCatalog() const { return classRecord.nodekitCatalog; }
#define KS_ABSTRACT_KIT_SOURCE(Class, Parent)                                                      \
    KS_ABSTRACT_NODE_SOURCE(Class, Parent)                                                         \
    const KsNodekitCatalog* Class::getNodekitCatalog() const { return classRecord.nodekitCatalog; }
