#include <arborium/sensors/KsSensor.h>

#include <arborium/base/KsDebugError.h>
#include <arborium/base/KsLimits.h>
#include <arborium/fields/KsField.h>
#include <arborium/nodes/KsNode.h>
#include <arborium/sensors/KsSensorManager.h>

#include <algorithm>

KsSensor::~KsSensor() = default;

void KsSensor::trigger()
{
    if (m_function) m_function(m_data, this);
}

// ---- the queue's sensors -------------------------------------------------------------------

KsDelayQueueSensor::~KsDelayQueueSensor() { KsDelayQueueSensor::unschedule(); }

void KsDelayQueueSensor::setPriority(std::uint32_t priority)
{
    if (priority == m_priority) return;
    const bool wasScheduled = m_scheduled;
    if (wasScheduled) KsSensorManager::remove(this);
    m_priority = priority;
    if (wasScheduled) KsSensorManager::insert(this);
}

void KsDelayQueueSensor::schedule()
{
    if (m_scheduled) return;
    if (m_priority == 0)
        trigger();
    else
        KsSensorManager::insert(this);
}

void KsDelayQueueSensor::unschedule()
{
    if (m_scheduled) KsSensorManager::remove(this);
}

// ---- sensors of data -----------------------------------------------------------------------

/// A callback under way; it knows whether its sensor was deleted by it.
struct KsDataSensor::Call {
    Call* outer;
    int depth;
    bool isSensorGone;
    bool wasStopped; // a call inside the outermost one; none is made until that one is through
};

KsDataSensor::~KsDataSensor()
{
    for (Call* call = m_call; call; call = call->outer) call->isSensorGone = true;
}

bool KsDataSensor::mayCall()
{
    if (!m_call) return true;
    if (m_call->wasStopped) return false;
    if (m_call->depth < std::max(1, KsLimits::current().notificationDepth)) return true;
    for (Call* call = m_call; call; call = call->outer) call->wasStopped = true;
    KsDebugError::post("KsDataSensor::notify",
                       "The callback of a sensor causes its own call without end, stopped after %d "
                       "calls",
                       m_call->depth);
    return false;
}

void KsDataSensor::notify(KsField* field, KsNode* node)
{
    if (getPriority() != 0) {
        schedule();
        return;
    }
    if (!mayCall()) return;
    Call call{m_call, m_call ? m_call->depth + 1 : 1, false, false};
    KsField* formerField = m_triggerField;
    KsNode* formerNode = m_triggerNode;
    m_call = &call;
    m_triggerField = field;
    m_triggerNode = node;
    trigger();
    if (call.isSensorGone) return;
    m_call = call.outer;
    m_triggerField = formerField;
    m_triggerNode = formerNode;
}

KsFieldSensor::~KsFieldSensor()
{
    detach();
    for (KsSensorSilencer* silencer = m_silencer; silencer; silencer = silencer->m_next)
        silencer->m_sensor = nullptr;
}

void KsFieldSensor::attach(KsField* field)
{
    if (field == m_field) return;
    detach();
    m_field = field;
    if (m_field) m_field->addSensor(this);
}

void KsFieldSensor::detach()
{
    if (!m_field) return;
    KsField* field = m_field;
    m_field = nullptr;
    unschedule();
    field->removeSensor(this);
}

void KsFieldSensor::dyingReference() { detach(); }

KsNodeSensor::~KsNodeSensor() { detach(); }

void KsNodeSensor::attach(KsNode* node)
{
    if (node == m_node) return;
    detach();
    m_node = node;
    if (m_node) m_node->addSensor(this);
}

void KsNodeSensor::detach()
{
    if (!m_node) return;
    KsNode* node = m_node;
    m_node = nullptr;
    unschedule();
    node->removeSensor(this);
}

void KsNodeSensor::dyingReference() { detach(); }

// ---- silence -------------------------------------------------------------------------------

KsSensorSilencer::KsSensorSilencer(KsFieldSensor* sensor)
{
    if (!sensor || !sensor->getAttachedField()) return;
    m_sensor = sensor;
    m_next = sensor->m_silencer;
    sensor->m_silencer = this;
}

void KsSensorSilencer::restore()
{
    if (!m_sensor) return;
    KsSensorSilencer** link = &m_sensor->m_silencer;
    while (*link && *link != this) link = &(*link)->m_next;
    if (*link) *link = m_next;
    m_sensor = nullptr;
    m_next = nullptr;
}
