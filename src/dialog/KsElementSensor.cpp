#include <formweave/KsElementSensor.h>

#include <formweave/KsFormweave.h>

KsElementSensor::KsElementSensor() = default;
KsElementSensor::~KsElementSensor() = default;

void KsElementSensor::arm(KsFormweave* element, KsField& field)
{
    if (!m_sensor) {
        m_sensor = std::make_unique<KsFieldSensor>(KsFormweave::fieldChangedCB, element);
        m_sensor->setPriority(0);
    }
    if (m_sensor->getAttachedField() != &field) m_sensor->attach(&field);
}
