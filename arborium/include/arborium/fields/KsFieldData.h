#pragma once

#include <arborium/fields/KsSField.h>

#include <cstddef>
#include <unordered_map>
#include <vector>

class KsFieldContainer;

/// The fields of a class: names, places and enum values. It exists once per class, and begins as
/// a copy of the parent class's.
class ARBORIUM_API KsFieldData {
public:
    /// `parent` may be null.
    explicit KsFieldData(const KsFieldData* parent = nullptr);
    ~KsFieldData();
    KsFieldData(const KsFieldData&) = delete;
    KsFieldData& operator=(const KsFieldData&) = delete;

    /// Adds a field that is a member of `container`. A name that exists already is ignored.
    void addField(const KsFieldContainer* container, const KbName& name, const KsField* field);
    /// Adds a value to an enum, which its first value makes. A name that exists already is ignored.
    void addEnumValue(const KbName& enumName, const KbName& valueName, int value);
    /// `values` and `names` get `count` entries each, in the order in which they were added. FALSE,
    /// with 0 and nulls, if the enum is unknown.
    bool getEnumData(const KbName& enumName, int& count, const int*& values,
                     const KbName*& names) const;
    /// Null if the enum is unknown. What it points to lives as long as the process; values that
    /// are added later stand in another set.
    const KsEnumData* getEnumData(const KbName& enumName) const;

    /// Those of the classes above included.
    int getNumFields() const { return static_cast<int>(m_entries.size()); }
    /// Empty if the index is out of range.
    KbName getFieldName(int index) const;
    /// The field of `container` at `index`; null if the index is out of range, or for a part field
    /// that the kit has not made yet while `make` is FALSE.
    KsField* getField(const KsFieldContainer* container, int index, bool make = true) const;
    /// The place of the field with this name; -1 if there is none.
    int getIndex(const KbName& name) const;

    /// Reads fields until something follows that is no field of the class: children or the closing
    /// brace. What is wrong is recorded in the input and read over; FALSE where that cannot be done.
    bool read(KsInput* in, KsFieldContainer* container) const;
    /// Writes the fields that are not default, or connected.
    void write(KsOutput* out, const KsFieldContainer* container) const;

    // Plumbing.
    /// Begins anew, as the constructor does.
    void inherit(const KsFieldData* parent);
    /// What `write` does first: counts the nodes that the fields refer to.
    void addWriteReferences(KsOutput* out, const KsFieldContainer* container) const;
    /// Adds a field that a kit holds for one of its parts (the row in its catalog).
    void addPartField(const KbName& name, int part);
    bool isPartField(int index) const;
    /// Notes the enum of one more enum field, so that instances find it by their place in the order.
    void addEnumField(const KsEnumData* enums) { m_fieldEnums.push_back(enums); }
    int getNumEnumFields() const { return static_cast<int>(m_fieldEnums.size()); }
    /// Null if the index is out of range.
    const KsEnumData* getFieldEnum(int index) const;

private:
    struct Entry {
        KbName name;
        std::ptrdiff_t offset; // of a member field, in bytes from the container
        int part;              // of a part field, the row in the catalog; -1 for a member
    };
    /// Whether files leave the field out, unless it is connected.
    bool isDefault(const KsFieldContainer* container, int index, const KsField* field) const;
    std::vector<Entry> m_entries;
    std::unordered_map<KbName, int> m_index;
    std::vector<const KsEnumData*> m_enums;
    std::vector<const KsEnumData*> m_fieldEnums;
};
