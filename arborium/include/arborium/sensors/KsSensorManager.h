#pragma once

#include <arborium/base/KsApi.h>

class KsDelayQueueSensor;

/// The queue of sensors that wait. The Qt binding empties it from the event loop; a program
/// without Qt calls `processDelayQueue` itself.
class ARBORIUM_API KsSensorManager {
public:
    /// Runs what is scheduled now, by priority and then in order of scheduling. What is scheduled
    /// meanwhile waits for the next call. Returns the number of sensors that ran.
    static int processDelayQueue();
    /// Whether no sensor waits.
    static bool isDelayQueueEmpty();
    /// Calls `function` each time the queue gets its first sensor. Null for none.
    static void setChangedCallback(void (*function)(void*), void* data);

private:
    friend class KsDelayQueueSensor;
    static void insert(KsDelayQueueSensor* sensor);
    static void remove(KsDelayQueueSensor* sensor);
};
