#pragma once

#include <arborium/sensors/KsSensor.h>
#include <formweave/KsFormweaveApi.h>

#include <memory>

class KsField;
class KsFormweave;

/// The sensor on one field of an element. It does not exist before it is armed; each change of the
/// field then runs the element's `updateFromSensor` at once, inside the change.
class FORMWEAVE_API KsElementSensor {
public:
    KsElementSensor();
    ~KsElementSensor();
    /// Makes the sensor if needed, and attaches it to `field` unless it is attached there.
    void arm(KsFormweave* element, KsField& field);
    /// TRUE if `sensor` is this one; FALSE before it is armed.
    bool is(const KsSensor* sensor) const { return sensor && sensor == m_sensor.get(); }
    /// Null before it is armed: for `KsSensorSilencer`.
    KsFieldSensor* get() const { return m_sensor.get(); }

private:
    std::unique_ptr<KsFieldSensor> m_sensor;
};
