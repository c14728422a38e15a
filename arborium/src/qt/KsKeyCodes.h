#pragma once

class QKeyEvent;

/// What a key of Qt is in a keyboard event of the layer.
struct KsKeyCodes {
    explicit KsKeyCodes(const QKeyEvent& event);
    /// Of the X Window System; 0 for a key that has none.
    int key = 0;
    /// 0 if the key types nothing. A character beyond 16 bits comes as two events.
    char16_t printable = 0;
    char16_t second = 0;
};

/// The code of the key that types a character.
int ksKeyOfCharacter(char16_t character);
