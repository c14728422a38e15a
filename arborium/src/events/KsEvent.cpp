#include <arborium/events/KsEvent.h>

namespace {

// Event types are made on their first use and stay for the life of the process: they carry no
// state of a class that a restart of the library would have to renew.
KsType makeType(KsType parent, const char* name) { return KsType::createType(parent, name); }

} // namespace

KsType KsEvent::getClassTypeId()
{
    static const KsType type = makeType(KsTypedObject::getClassTypeId(), "Event");
    return type;
}

KsType KsButtonEvent::getClassTypeId()
{
    static const KsType type = makeType(KsEvent::getClassTypeId(), "ButtonEvent");
    return type;
}

KsType KsMouseButtonEvent::getClassTypeId()
{
    static const KsType type = makeType(KsButtonEvent::getClassTypeId(), "MouseButtonEvent");
    return type;
}

KsType KsLocation2Event::getClassTypeId()
{
    static const KsType type = makeType(KsEvent::getClassTypeId(), "Location2Event");
    return type;
}

KsType KsTrackerEvent::getClassTypeId()
{
    static const KsType type = makeType(KsEvent::getClassTypeId(), "TrackerEvent");
    return type;
}

KsType KsKeyboardEvent::getClassTypeId()
{
    static const KsType type = makeType(KsButtonEvent::getClassTypeId(), "KeyboardEvent");
    return type;
}

void KsEvent::initClasses()
{
    KsMouseButtonEvent::getClassTypeId();
    KsLocation2Event::getClassTypeId();
    KsTrackerEvent::getClassTypeId();
    KsKeyboardEvent::getClassTypeId();
}

KbVec2f KsEvent::getNormalizedPosition(const KbViewportRegion& viewport) const
{
    // Sizes of a viewport are never below one pixel.
    const KbVec2i32 size = viewport.getViewportSizePixels();
    return {m_position[0] / static_cast<float>(size[0]),
            m_position[1] / static_cast<float>(size[1])};
}

bool KsMouseButtonEvent::isButtonPress(const KsEvent* event, Button button)
{
    const auto* mouse = ksCast<KsMouseButtonEvent>(event);
    return mouse && mouse->getState() == DOWN && mouse->getButton() == button;
}

bool KsMouseButtonEvent::isButtonRelease(const KsEvent* event, Button button)
{
    const auto* mouse = ksCast<KsMouseButtonEvent>(event);
    return mouse && mouse->getState() == UP && mouse->getButton() == button;
}

KbVec3f KsTrackerEvent::getDirection() const
{
    KbVec3f direction;
    m_rotation.multVec(KbVec3f(0, 0, -1), direction);
    return direction;
}

bool KsKeyboardEvent::isKeyPressEvent(const KsEvent* event, int key)
{
    const auto* keyboard = ksCast<KsKeyboardEvent>(event);
    return keyboard && keyboard->getState() == DOWN && keyboard->getKey() == key;
}

bool KsKeyboardEvent::isKeyReleaseEvent(const KsEvent* event, int key)
{
    const auto* keyboard = ksCast<KsKeyboardEvent>(event);
    return keyboard && keyboard->getState() == UP && keyboard->getKey() == key;
}
