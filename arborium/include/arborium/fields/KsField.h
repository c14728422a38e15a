#pragma once

#include <arborium/base/KbName.h>
#include <arborium/base/KsTypedObject.h>

#include <cstdint>
#include <memory>

class KsFieldContainer;
class KsFieldSensor;
class KsInput;
class KsOutput;

/// A typed value in a container that tells when it changes. Fields can be connected: a field
/// connected from a master takes each new value of it.
class ARBORIUM_API KsField : public KsTypedObject {
public:
    ~KsField() override;
    KsField(const KsField&) = delete;
    KsField& operator=(const KsField&) = delete;

    static KsType getClassTypeId();

    /// The object that the field is part of and tells of its changes; null for a field by itself.
    KsFieldContainer* getContainer() const { return m_container; }
    void setContainer(KsFieldContainer* container) { m_container = container; }
    /// A number from 0 to 255 that the class of the container gives; the layer makes nothing of it.
    int getFieldType() const { return m_fieldType; }
    void setFieldType(int type) { m_fieldType = static_cast<std::uint8_t>(type); }
    /// A default field is left out of written files. Any change of the value clears the mark.
    bool isDefault() const { return m_flags & Default; }
    void setDefault(bool isDefault)
    {
        m_flags = static_cast<std::uint8_t>(isDefault ? m_flags | Default : m_flags & ~Default);
    }

    /// Takes the value of `master`, now and at each change. A field has one master at most: a
    /// second call replaces the first. Refused (FALSE, message) for null, for itself and for a
    /// field of another type. Two fields may be connected both ways.
    bool connectFrom(KsField* master);
    /// The value stays. Nothing for a field that is not connected.
    void disconnect();
    /// Whether there is a master. One that dies leaves the field unconnected.
    bool isConnected() const { return getConnectedField() != nullptr; }
    /// The master, or null.
    KsField* getConnectedField() const;
    /// A connection that its owner makes anew by itself is not written to files. The mark goes with
    /// the connection.
    void setConnectionPrivate(bool isPrivate);
    bool isConnectionPrivate() const { return m_flags & PrivateConnection; }

    /// Runs the change notification without a change; the default mark stays.
    void touch() { valueChanged(isDefault()); }

    /// Takes the value and the default mark of a field of the same type; a field of another type
    /// is ignored.
    virtual void copyFrom(const KsField& other) = 0;
    /// Whether the value is the same, which that of a field of another type never is.
    virtual bool isSame(const KsField& other) const = 0;
    /// Reads a value; FALSE with the error recorded in the input, and the old value kept.
    virtual bool readValue(KsInput* in) = 0;
    /// Writes the value as `readValue` reads it, in the form of the output.
    virtual void writeValue(KsOutput* out) const = 0;

    // Plumbing between fields and sensors.
    void addSensor(KsFieldSensor* sensor);
    void removeSensor(KsFieldSensor* sensor);
    bool hasListeners() const { return m_listeners != nullptr; }

protected:
    KsField();
    /// To be called after each change of the value, as the last step: the field may be gone when it
    /// returns. `isDefault` is the new default mark.
    void valueChanged(bool isDefault = false);
    /// Asks the container whether it takes the value. TRUE if it has nothing against it.
    bool isValid(const void* newValue);

private:
    enum Flag : std::uint8_t { Default = 1, Notifying = 2, PrivateConnection = 4 };
    struct Listeners;
    Listeners& listeners();
    void dropListeners();
    // FALSE if the field is gone when they return.
    bool tellListeners();
    bool tellConnected();
    bool tellSensors();

    KsFieldContainer* m_container = nullptr;
    std::unique_ptr<Listeners> m_listeners;
    std::uint8_t m_flags = Default;
    std::uint8_t m_fieldType = 0;
};

/// What the header of each field class declares.
#define KS_FIELD_HEADER(Class)                                                                     \
public:                                                                                            \
    static KsType getClassTypeId();                                                                \
    KsType getTypeId() const override { return getClassTypeId(); }                                 \
    void copyFrom(const KsField& other) override;                                                  \
    bool isSame(const KsField& other) const override;                                              \
    bool readValue(KsInput* in) override;                                                          \
    void writeValue(KsOutput* out) const override
