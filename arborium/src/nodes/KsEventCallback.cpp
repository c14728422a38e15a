#include <arborium/nodes/KsEventCallback.h>

#include <arborium/actions/KsHandleEventAction.h>
#include <arborium/events/KsEvent.h>

#include <algorithm>

KS_NODE_SOURCE(KsEventCallback, KsNode)

KsEventCallback::KsEventCallback() { KsInstanceBuilder build(classRecord, this); }

KsEventCallback::~KsEventCallback() = default;

void KsEventCallback::addEventCallback(KsType eventType, KsEventCallbackFunction function,
                                       void* data)
{
    if (function) m_entries.push_back({eventType, function, data, m_nextId++});
}

void KsEventCallback::removeEventCallback(KsType eventType, KsEventCallbackFunction function,
                                          void* data)
{
    const auto found = std::find_if(m_entries.begin(), m_entries.end(), [&](const Entry& entry) {
        return entry.type == eventType && entry.function == function && entry.data == data;
    });
    if (found != m_entries.end()) m_entries.erase(found);
}

const KsEvent* KsEventCallback::getEvent() const
{
    return m_action ? m_action->getEvent() : nullptr;
}

const KsPickedPoint* KsEventCallback::getPickedPoint() const
{
    return m_action ? m_action->getPickedPoint() : nullptr;
}

void KsEventCallback::setHandled()
{
    if (m_action) m_action->setHandled();
}

bool KsEventCallback::isHandled() const { return m_action && m_action->isHandled(); }

void KsEventCallback::handleEvent(KsHandleEventAction* action)
{
    const KsEvent* event = action->getEvent();
    if (!event || m_entries.empty()) return;
    if (action->isHandled() && !event->isOfType(KsKeyboardEvent::getClassTypeId())) return;

    // A callback may do anything: change the list, send another event here, let go of this node.
    const KsKeepAlive alive(this);
    KsHandleEventAction* const outer = m_action;
    m_action = action;
    const std::vector<Entry> entries = m_entries;
    for (const Entry& entry : entries) {
        if (!event->isOfType(entry.type)) continue;
        const bool present = std::any_of(m_entries.begin(), m_entries.end(),
                                         [&](const Entry& e) { return e.id == entry.id; });
        if (present) entry.function(entry.data, this);
    }
    m_action = outer;
}
