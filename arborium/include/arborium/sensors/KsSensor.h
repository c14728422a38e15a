#pragma once

#include <arborium/base/KsApi.h>

#include <cstdint>

class KsField;
class KsFieldContainer;
class KsNode;
class KsSensor;
class KsSensorSilencer;

/// What a sensor calls: the data given with it, and the sensor.
using KsSensorCallback = void (*)(void* data, KsSensor* sensor);

/// Calls a function when something happens. A sensor may detach itself, delete itself, delete
/// the node that it watches, or change the watched field again inside its callback.
class ARBORIUM_API KsSensor {
public:
    virtual ~KsSensor();
    KsSensor(const KsSensor&) = delete;
    KsSensor& operator=(const KsSensor&) = delete;

    /// What is called, and the data that it is given. Null calls nobody.
    void setFunction(KsSensorCallback function) { m_function = function; }
    void setData(void* data) { m_data = data; }
    KsSensorCallback getFunction() const { return m_function; }
    void* getData() const { return m_data; }
    /// Lets the sensor run, and takes that back.
    virtual void schedule() = 0;
    virtual void unschedule() = 0;
    virtual bool isScheduled() const = 0;
    /// Calls the function now, whether or not the sensor is scheduled.
    virtual void trigger();

protected:
    KsSensor(KsSensorCallback function, void* data) : m_function(function), m_data(data) {}

private:
    KsSensorCallback m_function;
    void* m_data;
};

/// A sensor that waits in the delay queue until `KsSensorManager::processDelayQueue` runs.
/// Smaller priorities run first, equal ones in the order of their scheduling. Priority 0 does not
/// wait: the callback runs inside the change.
class ARBORIUM_API KsDelayQueueSensor : public KsSensor {
public:
    static constexpr std::uint32_t defaultPriority = 100;

    /// Of the default priority, and not scheduled. A sensor that is deleted no longer waits.
    KsDelayQueueSensor(KsSensorCallback function, void* data) : KsSensor(function, data) {}
    ~KsDelayQueueSensor() override;
    /// A sensor that is waiting takes its new place, behind those of equal priority; with 0 it
    /// still waits, as the first, until the queue runs.
    void setPriority(std::uint32_t priority);
    std::uint32_t getPriority() const { return m_priority; }
    /// Scheduling a scheduled sensor does nothing; with priority 0 it triggers at once.
    void schedule() override;
    void unschedule() override;
    bool isScheduled() const override { return m_scheduled; }

private:
    friend class KsSensorManager;
    std::uint64_t m_sequence = 0; // place among those of equal priority
    std::uint32_t m_priority = defaultPriority;
    bool m_scheduled = false;
};

/// A delay-queue sensor that runs once when it was scheduled by hand.
class ARBORIUM_API KsOneShotSensor : public KsDelayQueueSensor {
public:
    /// As any sensor of the queue.
    KsOneShotSensor(KsSensorCallback function, void* data) : KsDelayQueueSensor(function, data) {}
};

/// A sensor that watches data in the scene. One of priority 0 whose callback causes its own call
/// again and again is stopped with a message at `KsLimits::notificationDepth` calls.
class ARBORIUM_API KsDataSensor : public KsDelayQueueSensor {
public:
    /// The field whose change triggered a sensor of priority 0, for the time of the callback; null
    /// at other times, and where the change was none of a field.
    KsField* getTriggerField() const { return m_triggerField; }
    /// The node in which the change began, as above.
    KsNode* getTriggerNode() const { return m_triggerNode; }
    /// What is watched is about to go: the sensor is detached. A subclass may learn of it here.
    virtual void dyingReference() = 0;

    // Plumbing.
    /// Called by the notification: fires or schedules.
    void notify(KsField* field, KsNode* node);

protected:
    KsDataSensor(KsSensorCallback function, void* data) : KsDelayQueueSensor(function, data) {}
    ~KsDataSensor() override;

private:
    struct Call;
    bool mayCall();
    Call* m_call = nullptr; // the innermost one that is running
    KsField* m_triggerField = nullptr;
    KsNode* m_triggerNode = nullptr;
};

/// Watches one field.
class ARBORIUM_API KsFieldSensor : public KsDataSensor {
public:
    /// Watches nothing at first.
    KsFieldSensor(KsSensorCallback function, void* data) : KsDataSensor(function, data) {}
    ~KsFieldSensor() override;
    /// Watches `field` instead of what it watched before; null detaches. What it waited to tell of
    /// another field is forgotten.
    void attach(KsField* field);
    /// Watches nothing, and no longer waits.
    void detach();
    /// The field that is watched, or null.
    KsField* getAttachedField() const { return m_field; }
    void dyingReference() override;
    /// TRUE while a `KsSensorSilencer` holds the sensor.
    bool isSilenced() const { return m_silencer != nullptr; }

private:
    friend class KsSensorSilencer;
    KsField* m_field = nullptr;
    KsSensorSilencer* m_silencer = nullptr; // the first of a chain
};

/// Watches a node and everything below it.
class ARBORIUM_API KsNodeSensor : public KsDataSensor {
public:
    /// Watches nothing at first.
    KsNodeSensor(KsSensorCallback function, void* data) : KsDataSensor(function, data) {}
    ~KsNodeSensor() override;
    /// Watches `node` instead of what it watched before; null detaches. The node is not referenced.
    void attach(KsNode* node);
    /// Watches nothing, and no longer waits.
    void detach();
    /// The node that is watched, or null; null also once that node is gone.
    KsNode* getAttachedNode() const { return m_node; }
    void dyingReference() override;

private:
    KsNode* m_node = nullptr;
};

/// Keeps a field sensor from hearing changes for a scope, as if it were detached and then attached to
/// the same field again, so that a write of the owner's own is not heard. A null sensor, or one not
/// attached, stays as it is. Within the scope the sensor may be deleted, or its field may go.
class ARBORIUM_API KsSensorSilencer {
public:
    /// Begins the silence.
    explicit KsSensorSilencer(KsFieldSensor* sensor);
    ~KsSensorSilencer() { restore(); }
    /// Ends the silence before the end of the scope.
    void restore();
    KsSensorSilencer(const KsSensorSilencer&) = delete;
    KsSensorSilencer& operator=(const KsSensorSilencer&) = delete;

private:
    friend class KsFieldSensor;
    KsFieldSensor* m_sensor = nullptr;
    KsSensorSilencer* m_next = nullptr;
};
