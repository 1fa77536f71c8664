#include "rofa_lib/keyboard.h"

#include "zel_basics/debug.h"

namespace {

// The US layout's shifted character of a digit or punctuation key, or 0 for any other code.
int ShiftedCharacter(int Code)
{
    switch (Code) {
    case '1': return '!';
    case '2': return '@';
    case '3': return '#';
    case '4': return '$';
    case '5': return '%';
    case '6': return '^';
    case '7': return '&';
    case '8': return '*';
    case '9': return '(';
    case '0': return ')';
    case '-': return '_';
    case '=': return '+';
    case '[': return '{';
    case '\\': return '|';
    case ']': return '}';
    case '`': return '~';
    case ';': return ':';
    case '\'': return '"';
    case ',': return '<';
    case '.': return '>';
    case '/': return '?';
    default: return 0;
    }
}

} // namespace

int KeyToCharacter(int Entry)
{
    Entry &= ~KeyScrollLockFlag;
    bool Caps = (Entry & KeyCapsLockFlag) != 0;
    bool Num = (Entry & KeyNumLockFlag) != 0;
    bool Shift = (Entry & KeyShiftFlag) != 0;
    Entry &= ~(KeyCapsLockFlag | KeyNumLockFlag | KeyShiftFlag);
    // Shift types what the lock would, and undoes it while the lock is on.
    if (Shift) {
        Caps = !Caps;
        Num = !Num;
    }
    int Code = Entry & KeyCodeMask;
    int Modifiers = Entry & ~KeyCodeMask;

    int Character = Code;
    if (Code >= 'A' && Code <= 'Z') {
        Character = Caps ? Code : Code + 32;
    } else if (ShiftedCharacter(Code) != 0) {
        if (Shift)
            Character = ShiftedCharacter(Code);
    } else if (Code >= KeyPad7 && Code <= KeyPadDecimal) {
        static const char PadCharacters[] = "7894561230.";
        if (Num)
            Character = PadCharacters[Code - KeyPad7];
        else
            Character = Code - (KeyPad7 - KeyHome); // the pad's navigation layer lies in the same order
    } else if (Code == KeyPadEnter) {
        Character = KeyReturn;
    }
    return Modifiers | Character;
}

keyboard_interface::keyboard_interface()
    : WriteIndex(0), ReadIndex(0), Count(0), NumLock(false), ScrollLock(false), CapsLock(false)
{
    for (int I = 0; I < KeyboardBufferSize; I++)
        Buffer[I] = 0;
    for (int I = 0; I < KeyboardKeyDownBufferSize; I++)
        KeyDown[I] = 0;
}

void keyboard_interface::SetKeyDown(int Key, char Value)
{
    TOVAS_ASSERT(Key>=0, this);
    TOVAS_ASSERT(Key<KeyboardKeyDownBufferSize, this);
    KeyDown[Key] = Value;
}

void keyboard_interface::ClearKeyDown(int Key)
{
    TOVAS_ASSERT(Key>=0, this);
    TOVAS_ASSERT(Key<KeyboardKeyDownBufferSize, this);
    KeyDown[Key] = 0;
}

void keyboard_interface::ClearKeyBuffer()
{
    WriteIndex = 0;
    ReadIndex = 0;
    Count = 0;
}

int keyboard_interface::GetNumberOfKeysInBuffer() { return Count; }

bool keyboard_interface::AnyKeysInBuffer() { return Count > 0; }

bool keyboard_interface::AnySpaceInBuffer() { return Count < KeyboardBufferSize; }

int keyboard_interface::PeekKey()
{
    TOVAS_ASSERT(AnyKeysInBuffer(), this);
    return Buffer[ReadIndex];
}

void keyboard_interface::PushRawKey(int Entry)
{
    TOVAS_ASSERT(AnySpaceInBuffer(), this);
    Buffer[WriteIndex] = static_cast<int16_t>(Entry);
    WriteIndex = (WriteIndex + 1) % KeyboardBufferSize;
    Count++;
}

int keyboard_interface::TranslateKey() { return KeyToCharacter(PeekKey()); }

void keyboard_interface::PushKey(int Key)
{
    TOVAS_ASSERT(AnySpaceInBuffer(), this);
    int Entry = Key;
    if (IsShiftDown())
        Entry |= KeyShiftFlag;
    if (IsControlDown())
        Entry |= KeyControlFlag;
    if (IsAltDown())
        Entry |= KeyAltFlag;
    if (IsCapsLockOn())
        Entry |= KeyCapsLockFlag;
    if (IsNumLockOn())
        Entry |= KeyNumLockFlag;
    if (IsScrollLockOn())
        Entry |= KeyScrollLockFlag;
    PushRawKey(Entry);
}

int keyboard_interface::PopKey()
{
    TOVAS_ASSERT(AnyKeysInBuffer(), this);
    int Entry = Buffer[ReadIndex];
    ReadIndex = (ReadIndex + 1) % KeyboardBufferSize;
    Count--;
    return Entry;
}

bool keyboard_interface::IsControlDown() { return GetKeyDown(KeyLeftControl) || GetKeyDown(KeyRightControl); }

bool keyboard_interface::IsShiftDown() { return GetKeyDown(KeyLeftShift) || GetKeyDown(KeyRightShift); }

bool keyboard_interface::IsAltDown() { return GetKeyDown(KeyLeftAlt) || GetKeyDown(KeyRightAlt); }

bool keyboard_interface::IsCapsLockOn() { return CapsLock; }

bool keyboard_interface::IsNumLockOn() { return NumLock; }

bool keyboard_interface::IsScrollLockOn() { return ScrollLock; }

void keyboard_interface::SetCapsLock(bool On) { CapsLock = On; }

void keyboard_interface::SetNumLock(bool On) { NumLock = On; }

void keyboard_interface::SetScrollLock(bool On) { ScrollLock = On; }

bool keyboard_interface::GetKeyDown(int Key)
{
    TOVAS_ASSERT(Key>=0, this);
    TOVAS_ASSERT(Key<KeyboardKeyDownBufferSize, this);
    return KeyDown[Key] != 0;
}
