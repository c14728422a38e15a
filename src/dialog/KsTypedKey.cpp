#include "KsTypedKey.h"

KsTypedKey ksTypedKey(const KsEvent* event)
{
    const auto* keyboard = ksCast<KsKeyboardEvent>(event);
    if (!keyboard || keyboard->getState() != KsButtonEvent::DOWN) return {};
    const int key = keyboard->getKey();
    constexpr int firstSpecialKey = 65281;
    static_assert(KsKeyboardEvent::PAD_0 - KsKeyboardEvent::PAD_7 == 9);
    switch (key) {
    case KsKeyboardEvent::BACKSPACE: return {KsTypedKey::Backspace, 0};
    case KsKeyboardEvent::RETURN: return {KsTypedKey::Return, 0};
    case KsKeyboardEvent::PAD_DELETE: return {KsTypedKey::Character, '.'};
    default: break;
    }
    if (key >= KsKeyboardEvent::PAD_7 && key <= KsKeyboardEvent::PAD_0)
        return {KsTypedKey::Character, "7486293150"[key - KsKeyboardEvent::PAD_7]};
    const char16_t c = keyboard->getPrintableCharacter();
    if (key >= firstSpecialKey || c == 0) return {};
    return {KsTypedKey::Character, c > 0xFF ? '?' : static_cast<char>(c)};
}
