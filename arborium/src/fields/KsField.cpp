#include <arborium/fields/KsField.h>

#include <arborium/base/KsDebugError.h>
#include <arborium/base/KsLimits.h>
#include <arborium/nodes/KsNode.h>
#include <arborium/sensors/KsSensor.h>

#include "base/ListenerList.h"

#include <algorithm>
#include <string>

struct KsField::Listeners {
    KsField* master = nullptr;
    ListenerList<KsField> slaves;
    ListenerList<KsFieldSensor> sensors;
};

namespace {
/// The changes that are being told, the innermost first: each was caused by the one behind it.
struct Frame {
    const KsField* field;
    Frame* outer;
    int depth;

    explicit Frame(const KsField* changed)
        : field(changed), outer(s_innermost), depth(outer ? outer->depth + 1 : 1)
    {
        s_innermost = this;
    }
    ~Frame()
    {
        s_innermost = outer;
        if (s_muteAbove && depth <= s_muteAbove) s_muteAbove = 0;
    }
    Frame(const Frame&) = delete;
    Frame& operator=(const Frame&) = delete;

    static Frame* s_innermost;
    /// Not 0 after an endless loop was met: changes above this depth are not told, or a loop with
    /// branches would run its whole tree of calls.
    static int s_muteAbove;
};
Frame* Frame::s_innermost = nullptr;
int Frame::s_muteAbove = 0;

std::string describe(const KsField* field)
{
    if (!field) return "?"; // it is gone
    const KsFieldContainer* container = field->getContainer();
    if (!container) return field->getTypeId().getName().getString();
    std::string name = container->getTypeId().getName().getString();
    KsFieldList fields;
    container->getFields(fields);
    for (const KsFieldEntry& entry : fields)
        if (entry.field == field) return name + "." + entry.name.getString();
    return name + ".?";
}

/// Posts the chain that ends in `frame`, and mutes it up to where it began.
void stopLoop(const Frame& frame)
{
    static constexpr std::size_t maxNames = 8;
    std::vector<const KsField*> chain{frame.field};
    int start = 1;
    for (const Frame* each = frame.outer; each; each = each->outer) {
        if (chain.size() < maxNames && (chain.size() == 1 || chain.back() != frame.field))
            chain.push_back(each->field);
        if (each->field == frame.field) start = each->depth; // the outermost one in the end
    }
    std::string text;
    for (auto it = chain.rbegin(); it != chain.rend(); ++it)
        text += (text.empty() ? "" : " -> ") + describe(*it);
    KsDebugError::post("KsField::valueChanged",
                       "Fields change each other without end, stopped after %d changes: %s",
                       frame.depth - 1, text.c_str());
    Frame::s_muteAbove = start;
}

/// Asked of changes within others only, and kept out of the way of the rest.
[[gnu::noinline]] bool isTooDeep(const Frame& frame)
{
    if (frame.depth <= std::max(1, KsLimits::current().notificationDepth)) return false;
    if (!Frame::s_muteAbove) stopLoop(frame);
    return true;
}
} // namespace

KsField::KsField() = default;

KsField::~KsField()
{
    for (Frame* frame = Frame::s_innermost; frame; frame = frame->outer)
        if (frame->field == this) frame->field = nullptr;
    if (!m_listeners) return;
    disconnect();
    if (!m_listeners) return;
    while (KsField* slave = m_listeners->slaves.any()) {
        slave->m_listeners->master = nullptr;
        m_listeners->slaves.remove(slave);
        slave->dropListeners();
    }
    while (KsFieldSensor* sensor = m_listeners->sensors.any()) {
        sensor->dyingReference();
        if (m_listeners && m_listeners->sensors.contains(sensor)) sensor->detach();
        if (!m_listeners) return;
    }
}

KsType KsField::getClassTypeId()
{
    static const KsType type = KsType::createType(KsTypedObject::getClassTypeId(), "Field");
    return type;
}

void KsField::setConnectionPrivate(bool isPrivate)
{
    m_flags = static_cast<std::uint8_t>(isPrivate ? m_flags | PrivateConnection
                                                  : m_flags & ~PrivateConnection);
}

KsField::Listeners& KsField::listeners()
{
    if (!m_listeners) m_listeners = std::make_unique<Listeners>();
    return *m_listeners;
}

void KsField::dropListeners()
{
    if (!m_listeners || m_listeners->master) return;
    const Listeners& list = *m_listeners;
    if (!list.slaves.isEmpty() || list.slaves.isWalking()) return;
    if (!list.sensors.isEmpty() || list.sensors.isWalking()) return;
    m_listeners.reset();
}

KsField* KsField::getConnectedField() const { return m_listeners ? m_listeners->master : nullptr; }

bool KsField::connectFrom(KsField* master)
{
    if (!master) {
        KsDebugError::post("KsField::connectFrom", "NULL field");
        return false;
    }
    if (master == this) {
        KsDebugError::post("KsField::connectFrom", "%s cannot be connected from itself",
                           describe(this).c_str());
        return false;
    }
    if (master->getTypeId() != getTypeId()) {
        KsDebugError::post("KsField::connectFrom",
                           "%s is a %s and cannot be connected from %s, a %s",
                           describe(this).c_str(), getTypeId().getName().getString(),
                           describe(master).c_str(), master->getTypeId().getName().getString());
        return false;
    }
    if (getConnectedField() != master) {
        disconnect();
        listeners().master = master;
        master->listeners().slaves.add(this);
    }
    m_flags = static_cast<std::uint8_t>(m_flags & ~(Default | PrivateConnection));
    copyFrom(*master);
    return true;
}

void KsField::disconnect()
{
    KsField* master = getConnectedField();
    if (!master) return;
    m_listeners->master = nullptr;
    setConnectionPrivate(false);
    master->m_listeners->slaves.remove(this);
    master->dropListeners();
    dropListeners();
}

void KsField::addSensor(KsFieldSensor* sensor)
{
    if (sensor) listeners().sensors.add(sensor);
}

void KsField::removeSensor(KsFieldSensor* sensor)
{
    if (!m_listeners) return;
    m_listeners->sensors.remove(sensor);
    dropListeners();
}

bool KsField::isValid(const void* newValue)
{
    return !m_container || !m_container->validatesFields() ||
           m_container->validateNewFieldValue(this, newValue);
}

void KsField::valueChanged(bool isDefault)
{
    // What a field takes from another one is not the default of its class.
    setDefault(isDefault && !getConnectedField());
    const KsKeepAlive keep(m_container);
    if (m_container) m_container->markChanged();
    const Frame frame(this);
    if (frame.outer && isTooDeep(frame)) return;
    if (m_container) m_container->fieldHasChanged(this);
    if (Frame::s_muteAbove) return;
    if (m_listeners && !tellListeners()) return;
    if (KsNode::hasSensors() && m_container && m_container->isNotifyEnabled())
        m_container->tellSensors(this);
}

bool KsField::tellListeners()
{
    if (!tellConnected()) return false;
    const bool isQuiet = m_container && !m_container->isNotifyEnabled();
    return isQuiet || !m_listeners || tellSensors();
}

bool KsField::tellConnected()
{
    if (m_listeners->slaves.isEmpty()) return true;
    const bool wasNotifying = m_flags & Notifying;
    m_flags |= Notifying;
    const bool isHere = m_listeners->slaves.walk([this](KsField* slave) {
        // A slave that is in the middle of telling us already has the value; if what it told made
        // us take another one, it must take that too.
        if ((slave->m_flags & Notifying) && slave->isSame(*this)) return true;
        slave->copyFrom(*this);
        return true;
    });
    if (!isHere) return false;
    if (!wasNotifying) m_flags = static_cast<std::uint8_t>(m_flags & ~Notifying);
    dropListeners();
    return true;
}

bool KsField::tellSensors()
{
    if (m_listeners->sensors.isEmpty()) return true;
    KsNode* node = m_container ? m_container->asNode() : nullptr;
    const bool isHere = m_listeners->sensors.walk([this, node](KsFieldSensor* sensor) {
        if (!sensor->isSilenced()) sensor->notify(this, node);
        return true;
    });
    if (isHere) dropListeners();
    return isHere;
}
