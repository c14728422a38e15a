#pragma once

#include <arborium/base/KbColor.h>
#include <arborium/base/KbMatrix.h>
#include <arborium/base/KbPlane.h>
#include <arborium/base/KbRotation.h>
#include <arborium/base/KbString.h>
#include <arborium/base/KbVec.h>
#include <arborium/fields/KsField.h>

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

class KsNode;
class KsPath;

/// A field of one value of type `V`.
template <class V> class KsSFieldOf : public KsField {
public:
    using Value = V;

    /// Of a connected field the value that it took last.
    const V& getValue() const { return m_value; }
    /// Sets the value and runs the notification, also for an equal value; nothing of both if the
    /// container refuses the value.
    void setValue(const V& value)
    {
        if (!isValid(&value)) return;
        m_value = value;
        valueChanged();
    }
    /// A field stands for its value where one is wanted.
    operator const V&() const { return m_value; }
    bool operator==(const KsSFieldOf& other) const { return m_value == other.m_value; }
    bool operator!=(const KsSFieldOf& other) const { return !(m_value == other.m_value); }
    bool operator==(const V& value) const { return m_value == value; }
    bool operator!=(const V& value) const { return !(m_value == value); }

    /// Sets the value that the class declares; the field counts as default, nobody is told.
    void initValue(const V& value)
    {
        m_value = value;
        setDefault(true);
    }

protected:
    KsSFieldOf() = default;
    explicit KsSFieldOf(const V& value) : m_value(value) {}

    V m_value{};
};

/// What each class of such fields declares: a field with the type's zero or with a value, and
/// assignment of a value, or of the value of another field of its class, as by `setValue`.
#define KS_SFIELD(Class, ValueType)                                                                \
    KS_FIELD_HEADER(Class);                                                                        \
    Class() = default;                                                                             \
    explicit Class(const ValueType& value) : KsSFieldOf(value) {}                                  \
    Class(const Class&) = delete;                                                                  \
    Class& operator=(const Class& other)                                                           \
    {                                                                                              \
        setValue(ValueType(other.m_value));                                                        \
        return *this;                                                                              \
    }                                                                                              \
    Class& operator=(const ValueType& value)                                                       \
    {                                                                                              \
        setValue(value);                                                                           \
        return *this;                                                                              \
    }

/// TRUE or FALSE; in files also 1 or 0.
class ARBORIUM_API KsSFBool : public KsSFieldOf<bool> {
    KS_SFIELD(KsSFBool, bool)
};
/// A number with a fraction. In files it is finite.
class ARBORIUM_API KsSFFloat : public KsSFieldOf<float> {
    KS_SFIELD(KsSFFloat, float)
};
/// A whole number; in files decimal, or hexadecimal behind "0x".
class ARBORIUM_API KsSFInt32 : public KsSFieldOf<std::int32_t> {
    KS_SFIELD(KsSFInt32, std::int32_t)
};
/// A text; in files in double quotes, or a word that begins with a letter.
class ARBORIUM_API KsSFString : public KsSFieldOf<KbString> {
    KS_SFIELD(KsSFString, KbString)
};
/// The name of a file. A name that a program sets may lead anywhere. One that was read from a scene
/// file or a buffer may lead to what lies below the folder of that file, or below a directory of
/// `KsInput`, unless `KsInput::setConfined` allows more; and so may a field that has its name from
/// such a one, as a copy or through a connection.
class ARBORIUM_API KsSFFilePathString : public KsSFieldOf<KbString> {
    KS_FIELD_HEADER(KsSFFilePathString);

public:
    KsSFFilePathString() = default;
    explicit KsSFFilePathString(const KbString& value) : KsSFieldOf(value) {}
    KsSFFilePathString& operator=(const KsSFFilePathString& other);
    KsSFFilePathString& operator=(const KbString& value);
    void setValue(const KbString& value);

    /// Whether the name was read, and not set by the program.
    bool isFromFile() const { return m_folder != nullptr; }
    /// The full name, without links, of the file that is meant: a leading "~", and "$NAME" and
    /// "${NAME}", are replaced; what is not absolute is looked for in the folder of the file that
    /// the name was read from and in the directories of `KsInput`, in this order. Empty, with
    /// `problem`, if nothing is there or if it may not be read.
    KbString findFile(std::string& problem) const;

private:
    void take(const KbString& value, std::shared_ptr<const KbString> folder);
    /// Of the file that the name was read from, empty for a buffer; null for a program's name.
    std::shared_ptr<const KbString> m_folder;
};
/// A name, written as a text.
class ARBORIUM_API KsSFName : public KsSFieldOf<KbName> {
    KS_SFIELD(KsSFName, KbName)
};
/// Two whole numbers, such as a size in pixels.
class ARBORIUM_API KsSFVec2i32 : public KsSFieldOf<KbVec2i32> {
    KS_SFIELD(KsSFVec2i32, KbVec2i32)
public:
    using KsSFieldOf::setValue;
    /// The value by its numbers.
    void setValue(int x, int y) { setValue(KbVec2i32(x, y)); }
};
/// Two numbers.
class ARBORIUM_API KsSFVec2f : public KsSFieldOf<KbVec2f> {
    KS_SFIELD(KsSFVec2f, KbVec2f)
public:
    using KsSFieldOf::setValue;
    /// The value by its numbers.
    void setValue(float x, float y) { setValue(KbVec2f(x, y)); }
};
/// Three numbers: a point, a direction or a size.
class ARBORIUM_API KsSFVec3f : public KsSFieldOf<KbVec3f> {
    KS_SFIELD(KsSFVec3f, KbVec3f)
public:
    using KsSFieldOf::setValue;
    /// The value by its numbers.
    void setValue(float x, float y, float z) { setValue(KbVec3f(x, y, z)); }
};
/// Red, green and blue.
class ARBORIUM_API KsSFColor : public KsSFieldOf<KbColor> {
    KS_SFIELD(KsSFColor, KbColor)
public:
    using KsSFieldOf::setValue;
    /// The value by its numbers, 0 to 1 each.
    void setValue(float r, float g, float b) { setValue(KbColor(r, g, b)); }
};
/// A rotation; in files its axis and its angle in radians.
class ARBORIUM_API KsSFRotation : public KsSFieldOf<KbRotation> {
    KS_SFIELD(KsSFRotation, KbRotation)
};
/// Sixteen numbers, row by row. The identity by default.
class ARBORIUM_API KsSFMatrix : public KsSFieldOf<KbMatrix> {
    KS_SFIELD(KsSFMatrix, KbMatrix)
};
/// A plane; in files its normal and its distance from the origin.
class ARBORIUM_API KsSFPlane : public KsSFieldOf<KbPlane> {
    KS_SFIELD(KsSFPlane, KbPlane)
};

/// The names of an enum's values, shared by all fields of that enum.
struct ARBORIUM_API KsEnumData {
    KbName enumName;
    std::vector<int> values;
    std::vector<KbName> names;

    /// The name of `value`; empty if it has none.
    KbName nameOf(int value) const;
    /// FALSE, with `value` untouched, if no value has this name.
    bool valueOf(const KbName& name, int& value) const;
    /// The one copy of this set in the process; it is never freed.
    static const KsEnumData* intern(KsEnumData set);
};

/// One value of a named set. In files it is a name. A value that has no name is refused with a
/// message and the field left as it was; a field with no names takes any number.
class ARBORIUM_API KsSFEnum : public KsSFieldOf<int> {
    KS_SFIELD(KsSFEnum, int)
public:
    /// Values and names are copied, once for equal sets. A count below 1, or null, takes the names
    /// away. The field's value stays as it is.
    void setEnums(int count, const int* values, const KbName* names);
    void setEnums(const KsEnumData* enums) { m_enums = enums; }
    /// Null for a field with no names.
    const KsEnumData* getEnums() const { return m_enums; }
    /// As above; nobody is told of a value that is refused.
    void setValue(int value);
    /// Sets the value by its name; FALSE with a message if no value has it.
    bool setValue(const KbName& name);

protected:
    // Plumbing.
    /// FALSE, with a message, for a value that has no name.
    bool accepts(int value) const;
    const KsEnumData* m_enums = nullptr;
};

/// Several values of a named set at once, none as 0. In files: a name, or "(A | B)". A bit that no
/// named value holds is refused with a message.
class ARBORIUM_API KsSFBitMask : public KsSFEnum {
    KS_FIELD_HEADER(KsSFBitMask);
    KsSFBitMask() = default;
    KsSFBitMask& operator=(const KsSFBitMask& other);
    KsSFBitMask& operator=(int value);
    void setValue(int value);

private:
    /// FALSE, with a message, for a bit that no named value holds.
    bool acceptsBits(int value) const;
};

/// A reference to a node, or null. The field holds one reference.
class ARBORIUM_API KsSFNode : public KsField {
    KS_FIELD_HEADER(KsSFNode);

public:
    KsSFNode() = default;
    ~KsSFNode() override;
    /// As `setValue`.
    KsSFNode& operator=(const KsSFNode& other);
    KsSFNode& operator=(KsNode* node);
    /// Null by default; the node stays the field's.
    KsNode* getValue() const { return m_value; }
    /// Refused with a message if the node is or holds the container.
    void setValue(KsNode* node);
    /// As that of the other fields; refused like a value.
    void initValue(KsNode* node);
    operator KsNode*() const { return m_value; }
    bool operator==(const KsSFNode& other) const { return m_value == other.m_value; }
    bool operator!=(const KsSFNode& other) const { return m_value != other.m_value; }

    // Plumbing.
    /// A part field of a kit refers to a node that has its place in the scene through another
    /// parent: it does not pass changes up.
    void setPassive() { m_passive = true; }

private:
    bool accepts(const KsNode* node) const;
    void replace(KsNode* node);
    KsNode* m_value = nullptr;
    bool m_passive = false;
};
