#pragma once

#include <arborium/nodes/KsNode.h>

#include <vector>

class KsEvent;
class KsEventCallback;
class KsPickedPoint;

/// Gets the data that it was added with, and the node, which knows the event.
using KsEventCallbackFunction = void (*)(void* data, KsEventCallback* node);

/// Calls functions for events that reach its place in the scene. An event that was handled before
/// reaches no further node, except that keyboard events reach every one.
class ARBORIUM_API KsEventCallback : public KsNode {
    KS_NODE_HEADER(KsEventCallback);

public:
    KsEventCallback();

    /// Calls `function` for events of `eventType` and derived types, in the order of the calls of
    /// this function. Null is ignored. A function that is added by a callback waits for the next
    /// event; one that is removed is not called any more. Copies of the node have no callbacks.
    void addEventCallback(KsType eventType, KsEventCallbackFunction function, void* data = nullptr);
    /// Takes the first such entry out; nothing if there is none.
    void removeEventCallback(KsType eventType, KsEventCallbackFunction function,
                             void* data = nullptr);

    // During a callback; null or FALSE otherwise.
    /// The event that is told.
    const KsEvent* getEvent() const;
    /// What hands the event on: a node may grab through it.
    KsHandleEventAction* getAction() const { return m_action; }
    /// What the pointer points at, or null.
    const KsPickedPoint* getPickedPoint() const;
    /// The event goes no further, except that keyboard events reach every callback. Nothing outside
    /// of a callback.
    void setHandled();
    /// Whether somebody, here or before, has handled it.
    bool isHandled() const;

    void handleEvent(KsHandleEventAction* action) override;

protected:
    ~KsEventCallback() override;

private:
    struct Entry {
        KsType type;
        KsEventCallbackFunction function;
        void* data;
        unsigned long id;
    };
    std::vector<Entry> m_entries;
    unsigned long m_nextId = 0;
    KsHandleEventAction* m_action = nullptr;
};
