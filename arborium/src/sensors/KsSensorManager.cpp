#include <arborium/sensors/KsSensorManager.h>

#include <arborium/sensors/KsSensor.h>

#include <map>
#include <utility>

namespace {
using Key = std::pair<std::uint32_t, std::uint64_t>; // priority, place in the order of scheduling

struct Queue {
    std::map<Key, KsDelayQueueSensor*> sensors;
    std::uint64_t next = 1;
    void (*changed)(void*) = nullptr;
    void* changedData = nullptr;
};

Queue& queue()
{
    static Queue& s_queue = *new Queue;
    return s_queue;
}
} // namespace

int KsSensorManager::processDelayQueue()
{
    Queue& all = queue();
    const std::uint64_t end = all.next; // what is scheduled from now on waits for the next call
    Key last{0, 0};
    int count = 0;
    for (;;) {
        auto it = all.sensors.upper_bound(last);
        while (it != all.sensors.end() && it->first.second >= end) ++it;
        if (it == all.sensors.end()) return count;
        last = it->first;
        KsDelayQueueSensor* sensor = it->second;
        remove(sensor);
        ++count;
        sensor->trigger();
    }
}

bool KsSensorManager::isDelayQueueEmpty() { return queue().sensors.empty(); }

void KsSensorManager::setChangedCallback(void (*function)(void*), void* data)
{
    queue().changed = function;
    queue().changedData = data;
}

void KsSensorManager::insert(KsDelayQueueSensor* sensor)
{
    Queue& all = queue();
    const bool wasEmpty = all.sensors.empty();
    sensor->m_sequence = all.next++;
    sensor->m_scheduled = true;
    all.sensors.emplace(Key(sensor->m_priority, sensor->m_sequence), sensor);
    if (wasEmpty && all.changed) all.changed(all.changedData);
}

void KsSensorManager::remove(KsDelayQueueSensor* sensor)
{
    queue().sensors.erase(Key(sensor->m_priority, sensor->m_sequence));
    sensor->m_scheduled = false;
}
