#pragma once

#include <arborium/base/KbRotation.h>
#include <arborium/base/KbVec.h>
#include <arborium/base/KbViewportRegion.h>
#include <arborium/base/KsTypedObject.h>

/// Something that happened at the pointer or the keyboard. Positions are in pixels from the lower
/// left corner of the viewport.
class ARBORIUM_API KsEvent : public KsTypedObject {
public:
    KsEvent() = default;
    /// At a position, or at (0, 0).
    explicit KsEvent(const KbVec2f& position) : m_position(position) {}
    static KsType getClassTypeId();
    KsType getTypeId() const override { return getClassTypeId(); }
    /// Registers the types of events; they also come to be at their first use.
    static void initClasses();

    /// In pixels from the lower left corner of the viewport; (0, 0) by default.
    void setPosition(const KbVec2f& position) { m_position = position; }
    const KbVec2f& getPosition() const { return m_position; }
    /// From (0, 0) at the lower left corner of the viewport to (1, 1).
    KbVec2f getNormalizedPosition(const KbViewportRegion& viewport) const;
    /// In seconds, by a clock that the sender chose; 0 by default.
    void setTime(double seconds) { m_time = seconds; }
    double getTime() const { return m_time; }
    /// Which of these keys were down meanwhile; none by default.
    void setShiftDown(bool down) { m_shift = down; }
    void setCtrlDown(bool down) { m_ctrl = down; }
    void setAltDown(bool down) { m_alt = down; }
    bool wasShiftDown() const { return m_shift; }
    bool wasCtrlDown() const { return m_ctrl; }
    bool wasAltDown() const { return m_alt; }

private:
    KbVec2f m_position{0, 0};
    double m_time = 0;
    bool m_shift = false;
    bool m_ctrl = false;
    bool m_alt = false;
};

/// A button of the mouse or a key went down or up.
class ARBORIUM_API KsButtonEvent : public KsEvent {
public:
    enum State { UP, DOWN };
    static KsType getClassTypeId();
    KsType getTypeId() const override { return getClassTypeId(); }
    /// DOWN for a press, UP for a release.
    void setState(State state) { m_state = state; }
    State getState() const { return m_state; }

protected:
    explicit KsButtonEvent(State state, const KbVec2f& position = {0, 0})
        : KsEvent(position), m_state(state)
    {}

private:
    State m_state;
};

/// A mouse button went down or up. BUTTON1 is the left one, BUTTON2 the middle, BUTTON3 the right.
class ARBORIUM_API KsMouseButtonEvent : public KsButtonEvent {
public:
    enum Button { BUTTON1 = 1, BUTTON2, BUTTON3, BUTTON4, BUTTON5 };
    /// Of one button at a position in pixels.
    KsMouseButtonEvent(Button button, State state, const KbVec2f& position)
        : KsButtonEvent(state, position), m_button(button)
    {}
    static KsType getClassTypeId();
    KsType getTypeId() const override { return getClassTypeId(); }
    /// The one that went down or up, as given.
    Button getButton() const { return m_button; }
    /// Whether it is such an event, of this button; FALSE for null and for other kinds.
    static bool isButtonPress(const KsEvent* event, Button button);
    static bool isButtonRelease(const KsEvent* event, Button button);

private:
    Button m_button;
};

/// The pointer moved.
class ARBORIUM_API KsLocation2Event : public KsEvent {
public:
    using KsEvent::KsEvent;
    static KsType getClassTypeId();
    KsType getTypeId() const override { return getClassTypeId(); }
};

/// A 3D pointer moved, or its button went down or up.
class ARBORIUM_API KsTrackerEvent : public KsEvent {
public:
    enum Action { MOVE, PRESS, RELEASE };
    /// Of a pointer at a place in the world, turned from looking along the negative z axis.
    KsTrackerEvent(Action action, const KbVec3f& position, const KbRotation& rotation)
        : m_action(action), m_origin(position), m_rotation(rotation)
    {}
    static KsType getClassTypeId();
    KsType getTypeId() const override { return getClassTypeId(); }
    /// What happened.
    Action getAction() const { return m_action; }
    /// Where the pointer is and how it is turned, in world space; it looks along the rotated
    /// negative z axis, which `getDirection` yields with length 1.
    const KbVec3f& getOrigin() const { return m_origin; }
    const KbRotation& getRotation() const { return m_rotation; }
    KbVec3f getDirection() const;

private:
    Action m_action;
    KbVec3f m_origin;
    KbRotation m_rotation;
};

/// A key. Codes are those of the X Window System: 65293 Return, 65288 Backspace, 65307 Escape,
/// 65429 to 65439 the numeric pad; letters and digits are their Latin-1 codes.
class ARBORIUM_API KsKeyboardEvent : public KsButtonEvent {
public:
    enum Key {
        BACKSPACE = 65288,
        TAB = 65289,
        RETURN = 65293,
        ESCAPE = 65307,
        HOME = 65360,
        LEFT_ARROW = 65361,
        UP_ARROW = 65362,
        RIGHT_ARROW = 65363,
        DOWN_ARROW = 65364,
        PAGE_UP = 65365,
        PAGE_DOWN = 65366,
        END = 65367,
        INSERT = 65379,
        PAD_ENTER = 65421,
        PAD_7 = 65429,
        PAD_4 = 65430,
        PAD_8 = 65431,
        PAD_6 = 65432,
        PAD_2 = 65433,
        PAD_9 = 65434,
        PAD_3 = 65435,
        PAD_1 = 65436,
        PAD_5 = 65437,
        PAD_0 = 65438,
        PAD_DELETE = 65439,
        LEFT_SHIFT = 65505,
        RIGHT_SHIFT = 65506,
        LEFT_CONTROL = 65507,
        DELETE_KEY = 65535
    };
    /// `printable` is 0 for a key that types nothing.
    KsKeyboardEvent(int key, State state, char16_t printable = 0)
        : KsButtonEvent(state), m_key(key), m_printable(printable)
    {}
    static KsType getClassTypeId();
    KsType getTypeId() const override { return getClassTypeId(); }
    /// One of `Key`, or the code of a character.
    int getKey() const { return m_key; }
    /// The character that the key types with its modifiers; 0 if it types none.
    char16_t getPrintableCharacter() const { return m_printable; }
    /// Whether it is such an event, of this key; FALSE for null and for other kinds.
    static bool isKeyPressEvent(const KsEvent* event, int key);
    static bool isKeyReleaseEvent(const KsEvent* event, int key);

private:
    int m_key;
    char16_t m_printable;
};
