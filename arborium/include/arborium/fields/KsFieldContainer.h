#pragma once

#include <arborium/base/KsBase.h>
#include <arborium/fields/KsFieldData.h>

class KsNode;
class KsOutput;

/// One field of a container, with its name.
struct KsFieldEntry {
    KbName name;
    KsField* field;
};
using KsFieldList = std::vector<KsFieldEntry>;

/// An object with fields.
class ARBORIUM_API KsFieldContainer : public KsBase {
public:
    static KsType getClassTypeId();
    static void initClass();

    /// Switches the sensors of this container's fields, and of the nodes above it, off or on.
    /// Returns the former state. Kept boxes and draw lists stay right either way.
    bool enableNotify(bool enable);
    /// TRUE by default.
    bool isNotifyEnabled() const { return m_notify; }

    /// The field with this name, or null.
    KsField* getField(const KbName& name) const;
    /// Appends the fields in the order of their registration; the parts of a kit only where they
    /// exist. Returns their number.
    int getFields(KsFieldList& list) const;
    /// As `getFields`, with the part fields of a kit, made if needed.
    int getAllFields(KsFieldList& list) const;
    /// Sets fields from a text as it would stand in a file between the braces. FALSE, with
    /// messages, for a text that is wrong; what could be read of it is set. Null is the empty text.
    bool set(const char* text);
    /// Whether each field has the same value as in `other`. FALSE for null and for another type.
    bool fieldsAreEqual(const KsFieldContainer* other) const;
    /// Takes the values and default marks of all fields of `other`; nothing of null or of another
    /// type.
    void copyFieldValues(const KsFieldContainer* other);
    /// Whether no field was set: each is marked as default.
    bool hasDefaultValues() const;

    /// The fields of the class; never null.
    virtual const KsFieldData* getFieldData() const;

    bool readInstance(KsInput* in, unsigned short flags) override;

    // Hooks for subclasses and fields.
    /// Called after each change of a field, also while notification is off.
    virtual void fieldHasChanged(KsField* field);
    /// May refuse a value before it is taken; `newValue` points to a value of the field's type.
    /// Called for fields of one value, and for the assignment of a whole list; only if the class
    /// asked for it by `setValidatesFields`.
    virtual bool validateNewFieldValue(KsField* field, const void* newValue);

    // Plumbing.
    /// Something in or below this container changed: marks what is kept above as stale.
    virtual void markChanged();
    /// Tells the sensors of this container and of what is above it.
    virtual void tellSensors(KsField* field);
    /// The field that a kit holds for a part; null for other containers.
    virtual KsField* getPartField(int part, bool make) const;
    /// Whether files hold a part of a kit: one that was set, or removed; one that stands in a part
    /// that was set; and a public one that got values, a name or children since it was made at need,
    /// unless it holds other parts or kits share it. Never one that was taken out of its place by
    /// hand. FALSE for other containers.
    virtual bool isPartWritten(int part) const;
    bool validatesFields() const { return m_validates; }
    /// This object as a node, or null.
    virtual KsNode* asNode() { return nullptr; }

protected:
    KsFieldContainer() = default;
    ~KsFieldContainer() override;
    /// From now on `validateNewFieldValue` is asked.
    void setValidatesFields() { m_validates = true; }

private:
    bool m_notify = true;
    bool m_validates = false;
};
