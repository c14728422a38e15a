#include "KsKeyCodes.h"

#include <arborium/events/KsEvent.h>

#include <QKeyEvent>

namespace {

struct Entry {
    int qt;
    int code;
};

constexpr Entry named[] = {
    {Qt::Key_Backspace, KsKeyboardEvent::BACKSPACE},
    {Qt::Key_Tab, KsKeyboardEvent::TAB},
    {Qt::Key_Backtab, KsKeyboardEvent::TAB},
    {Qt::Key_Return, KsKeyboardEvent::RETURN},
    {Qt::Key_Enter, KsKeyboardEvent::PAD_ENTER},
    {Qt::Key_Pause, 65299},
    {Qt::Key_ScrollLock, 65300},
    {Qt::Key_Escape, KsKeyboardEvent::ESCAPE},
    {Qt::Key_Home, KsKeyboardEvent::HOME},
    {Qt::Key_Left, KsKeyboardEvent::LEFT_ARROW},
    {Qt::Key_Up, KsKeyboardEvent::UP_ARROW},
    {Qt::Key_Right, KsKeyboardEvent::RIGHT_ARROW},
    {Qt::Key_Down, KsKeyboardEvent::DOWN_ARROW},
    {Qt::Key_PageUp, KsKeyboardEvent::PAGE_UP},
    {Qt::Key_PageDown, KsKeyboardEvent::PAGE_DOWN},
    {Qt::Key_End, KsKeyboardEvent::END},
    {Qt::Key_Print, 65377},
    {Qt::Key_Insert, KsKeyboardEvent::INSERT},
    {Qt::Key_Menu, 65383},
    {Qt::Key_NumLock, 65407},
    {Qt::Key_Shift, KsKeyboardEvent::LEFT_SHIFT},
    {Qt::Key_Control, KsKeyboardEvent::LEFT_CONTROL},
    {Qt::Key_CapsLock, 65509},
    {Qt::Key_Meta, 65511},
    {Qt::Key_Alt, 65513},
    {Qt::Key_AltGr, 65027},
    {Qt::Key_Delete, KsKeyboardEvent::DELETE_KEY},
};

// The pad gives the same codes with and without NumLock, since listeners know only these; they
// tell the digits by them.
constexpr Entry pad[] = {
    {Qt::Key_7, KsKeyboardEvent::PAD_7},           {Qt::Key_Home, KsKeyboardEvent::PAD_7},
    {Qt::Key_4, KsKeyboardEvent::PAD_4},           {Qt::Key_Left, KsKeyboardEvent::PAD_4},
    {Qt::Key_8, KsKeyboardEvent::PAD_8},           {Qt::Key_Up, KsKeyboardEvent::PAD_8},
    {Qt::Key_6, KsKeyboardEvent::PAD_6},           {Qt::Key_Right, KsKeyboardEvent::PAD_6},
    {Qt::Key_2, KsKeyboardEvent::PAD_2},           {Qt::Key_Down, KsKeyboardEvent::PAD_2},
    {Qt::Key_9, KsKeyboardEvent::PAD_9},           {Qt::Key_PageUp, KsKeyboardEvent::PAD_9},
    {Qt::Key_3, KsKeyboardEvent::PAD_3},           {Qt::Key_PageDown, KsKeyboardEvent::PAD_3},
    {Qt::Key_1, KsKeyboardEvent::PAD_1},           {Qt::Key_End, KsKeyboardEvent::PAD_1},
    {Qt::Key_5, KsKeyboardEvent::PAD_5},           {Qt::Key_Clear, KsKeyboardEvent::PAD_5},
    {Qt::Key_0, KsKeyboardEvent::PAD_0},           {Qt::Key_Insert, KsKeyboardEvent::PAD_0},
    {Qt::Key_Period, KsKeyboardEvent::PAD_DELETE}, {Qt::Key_Comma, KsKeyboardEvent::PAD_DELETE},
    {Qt::Key_Delete, KsKeyboardEvent::PAD_DELETE},
};

template <class Table> int find(const Table& table, int qtKey)
{
    for (const Entry& entry : table)
        if (entry.qt == qtKey) return entry.code;
    return 0;
}

bool isPrintable(char16_t c) { return c >= 0x20 && c != 0x7f && !(c >= 0x80 && c < 0xa0); }

} // namespace

int ksKeyOfCharacter(char16_t character)
{
    // Codes below 256 are the characters of Latin-1, the others are marked as Unicode.
    return character < 0x100 ? character : 0x1000000 + character;
}

KsKeyCodes::KsKeyCodes(const QKeyEvent& event)
{
    const QString text = event.text();
    if (!text.isEmpty() && isPrintable(text[0].unicode())) {
        printable = text[0].unicode();
        if (text.size() > 1 && text[0].isHighSurrogate() && text[1].isLowSurrogate())
            second = text[1].unicode();
    }
    const int qtKey = event.key();
    if (event.modifiers() & Qt::KeypadModifier) key = find(pad, qtKey);
    if (!key) key = find(named, qtKey);
    if (!key && qtKey >= Qt::Key_F1 && qtKey <= Qt::Key_F35) key = 65470 + qtKey - Qt::Key_F1;
    if (!key && printable) key = ksKeyOfCharacter(printable);
    // With Control a key types nothing, but it is still the key of its letter.
    if (!key && qtKey >= 0x20 && qtKey < 0x100)
        key = qtKey >= Qt::Key_A && qtKey <= Qt::Key_Z && !(event.modifiers() & Qt::ShiftModifier)
                  ? qtKey + 'a' - 'A'
                  : qtKey;
}
