#pragma once

#include <cstdint>

#include "zel_basics/lwbase_object.h"

// Key codes: the system's own, the same on every platform. Letters, digits and the punctuation keys
// carry the ASCII of their unshifted character.
constexpr int KeyBackspace = 0x08;
constexpr int KeyTab = 0x09;
constexpr int KeyReturn = 0x0D;
constexpr int KeyEscape = 0x1B;
constexpr int KeySpace = 0x20;
constexpr int KeySemicolon = ';';
constexpr int KeyEquals = '=';
constexpr int KeyComma = ',';
constexpr int KeyMinus = '-';
constexpr int KeyPeriod = '.';
constexpr int KeySlash = '/';
constexpr int KeyBackquote = '`';
constexpr int KeyLeftBracket = '[';
constexpr int KeyBackslash = '\\';
constexpr int KeyRightBracket = ']';
constexpr int KeyApostrophe = '\'';
constexpr int KeyCapsLock = 0x80;
constexpr int KeyNumLock = 0x81;
constexpr int KeyScrollLock = 0x82;
constexpr int KeyLeftShift = 0x88;
constexpr int KeyRightShift = 0x89;
constexpr int KeyLeftControl = 0x8A;
constexpr int KeyRightControl = 0x8B;
constexpr int KeyLeftAlt = 0x8C;
constexpr int KeyRightAlt = 0x8D;
// F1 to F15 run from KeyF1 to KeyF1 + 14.
constexpr int KeyF1 = 0x90;
constexpr int KeyF4 = 0x93;
constexpr int KeyF15 = 0x9E;
constexpr int KeyHome = 0xA0;
constexpr int KeyUp = 0xA1;
constexpr int KeyPageUp = 0xA2;
constexpr int KeyLeft = 0xA3;
constexpr int KeyRight = 0xA5;
constexpr int KeyEnd = 0xA6;
constexpr int KeyDown = 0xA7;
constexpr int KeyPageDown = 0xA8;
constexpr int KeyInsert = 0xA9;
constexpr int KeyDelete = 0xAA;
// The keypad digits follow the pad's rows from the top, not their values.
constexpr int KeyPad7 = 0xB0;
constexpr int KeyPad8 = 0xB1;
constexpr int KeyPad9 = 0xB2;
constexpr int KeyPad4 = 0xB3;
constexpr int KeyPad5 = 0xB4;
constexpr int KeyPad6 = 0xB5;
constexpr int KeyPad1 = 0xB6;
constexpr int KeyPad2 = 0xB7;
constexpr int KeyPad3 = 0xB8;
constexpr int KeyPad0 = 0xB9;
constexpr int KeyPadDecimal = 0xBA;
constexpr int KeyPadDivide = 0xBB;
constexpr int KeyPadMultiply = 0xBC;
constexpr int KeyPadSubtract = 0xBD;
constexpr int KeyPadAdd = 0xBE;
constexpr int KeyPadEnter = 0xBF;
constexpr int KeyPrintScreen = 0xC0;
constexpr int KeyPause = 0xC1;
constexpr int KeyLeftSystem = 0xE0;
constexpr int KeyRightSystem = 0xE1;
constexpr int KeyApplication = 0xE2;
constexpr int KeyUnknown = 0xFF;

// A buffered entry is a key code in its low 9 bits plus these flags, taken when the key is pushed.
constexpr int KeyCodeMask = 0x1FF;
constexpr int KeyShiftFlag = 0x200;
constexpr int KeyControlFlag = 0x400;
constexpr int KeyAltFlag = 0x800;
constexpr int KeyCapsLockFlag = 0x1000;
constexpr int KeyNumLockFlag = 0x2000;
constexpr int KeyScrollLockFlag = 0x4000;

constexpr int KeyboardBufferSize = 0x400;
constexpr int KeyboardKeyDownBufferSize = 512;

// The character a buffered entry types on a US layout, with the control and alt flags kept in the
// high bits. Keys that type nothing come back as their code.
int KeyToCharacter(int Entry);

// The keyboard as the application sees it: a ring of typed keys in arrival order, the lock toggles
// and which keys are held. A binding whose platform can be asked live overrides the queries.
class keyboard_interface : public base_object
{
public:
    keyboard_interface();

    virtual void SetKeyDown(int Key, char Value);
    virtual void ClearKeyDown(int Key);
    virtual void ClearKeyBuffer();
    virtual int GetNumberOfKeysInBuffer();
    virtual bool AnyKeysInBuffer();
    virtual bool AnySpaceInBuffer();
    virtual int PeekKey();
    virtual void PushRawKey(int Entry);
    virtual int TranslateKey();
    virtual void PushKey(int Key);
    virtual int PopKey();
    virtual bool IsControlDown();
    virtual bool IsShiftDown();
    virtual bool IsAltDown();
    virtual bool IsCapsLockOn();
    virtual bool IsNumLockOn();
    virtual bool IsScrollLockOn();
    virtual void SetCapsLock(bool On);
    virtual void SetNumLock(bool On);
    virtual void SetScrollLock(bool On);
    virtual bool GetKeyDown(int Key);

private:
    int16_t Buffer[KeyboardBufferSize];
    int32_t WriteIndex;
    int32_t ReadIndex;
    int32_t Count;
    bool NumLock;
    bool ScrollLock;
    bool CapsLock;
    char KeyDown[KeyboardKeyDownBufferSize];
};
