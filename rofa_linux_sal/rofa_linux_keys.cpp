#include "rofa_linux_sal/rofa_linux_keys.h"

#include "rofa_lib/keyboard.h"
#include "zel_basics/debug.h"

namespace {

struct virtual_key_row
{
    uint32_t VirtualKey;
    int KeyCode;
};

// Side-specific modifier keys stand before the generic ones, so that reading backwards a code finds
// the key a platform can be asked about on its own.
const virtual_key_row VirtualKeyTable[] = {
    {VK_BACK, KeyBackspace},
    {VK_TAB, KeyTab},
    {VK_RETURN, KeyReturn},
    {VK_ESCAPE, KeyEscape},
    {VK_SPACE, KeySpace},
    {VK_CAPITAL, KeyCapsLock},
    {VK_NUMLOCK, KeyNumLock},
    {VK_SCROLL, KeyScrollLock},
    {VK_LSHIFT, KeyLeftShift},
    {VK_RSHIFT, KeyRightShift},
    {VK_LCONTROL, KeyLeftControl},
    {VK_RCONTROL, KeyRightControl},
    {VK_LMENU, KeyLeftAlt},
    {VK_RMENU, KeyRightAlt},
    {VK_SHIFT, KeyLeftShift},
    {VK_CONTROL, KeyLeftControl},
    {VK_MENU, KeyLeftAlt},
    {VK_HOME, KeyHome},
    {VK_UP, KeyUp},
    {VK_PRIOR, KeyPageUp},
    {VK_LEFT, KeyLeft},
    {VK_RIGHT, KeyRight},
    {VK_END, KeyEnd},
    {VK_DOWN, KeyDown},
    {VK_NEXT, KeyPageDown},
    {VK_INSERT, KeyInsert},
    {VK_DELETE, KeyDelete},
    {VK_NUMPAD7, KeyPad7},
    {VK_NUMPAD8, KeyPad8},
    {VK_NUMPAD9, KeyPad9},
    {VK_NUMPAD4, KeyPad4},
    {VK_NUMPAD5, KeyPad5},
    {VK_NUMPAD6, KeyPad6},
    {VK_NUMPAD1, KeyPad1},
    {VK_NUMPAD2, KeyPad2},
    {VK_NUMPAD3, KeyPad3},
    {VK_NUMPAD0, KeyPad0},
    {VK_DECIMAL, KeyPadDecimal},
    {VK_DIVIDE, KeyPadDivide},
    {VK_MULTIPLY, KeyPadMultiply},
    {VK_SUBTRACT, KeyPadSubtract},
    {VK_ADD, KeyPadAdd},
    // Hosts send the separator key for the keypad's enter, which has no virtual key of its own.
    {VK_SEPARATOR, KeyPadEnter},
    {VK_SNAPSHOT, KeyPrintScreen},
    {VK_PAUSE, KeyPause},
    {VK_LWIN, KeyLeftSystem},
    {VK_RWIN, KeyRightSystem},
    {VK_APPS, KeyApplication},
    {VK_OEM_1, KeySemicolon},
    {VK_OEM_PLUS, KeyEquals},
    {VK_OEM_COMMA, KeyComma},
    {VK_OEM_MINUS, KeyMinus},
    {VK_OEM_PERIOD, KeyPeriod},
    {VK_OEM_2, KeySlash},
    {VK_OEM_3, KeyBackquote},
    {VK_OEM_4, KeyLeftBracket},
    {VK_OEM_5, KeyBackslash},
    {VK_OEM_6, KeyRightBracket},
    {VK_OEM_7, KeyApostrophe},
};

bool IsLetterOrDigit(uint32_t Value) { return (Value >= '0' && Value <= '9') || (Value >= 'A' && Value <= 'Z'); }

} // namespace

int VirtualKeyToKeyCode(uint32_t VirtualKey)
{
    if (IsLetterOrDigit(VirtualKey))
        return static_cast<int>(VirtualKey);
    if (VirtualKey >= VK_F1 && VirtualKey <= VK_F15)
        return KeyF1 + static_cast<int>(VirtualKey - VK_F1);
    for (const virtual_key_row &Row : VirtualKeyTable)
        if (Row.VirtualKey == VirtualKey)
            return Row.KeyCode;
    return KeyUnknown;
}

uint32_t KeyCodeToVirtualKey(int KeyCode)
{
    if (KeyCode >= 0 && IsLetterOrDigit(static_cast<uint32_t>(KeyCode)))
        return static_cast<uint32_t>(KeyCode);
    if (KeyCode >= KeyF1 && KeyCode <= KeyF15)
        return VK_F1 + static_cast<uint32_t>(KeyCode - KeyF1);
    for (const virtual_key_row &Row : VirtualKeyTable)
        if (Row.KeyCode == KeyCode)
            return Row.VirtualKey;
    TOVAS_ASSERT(false, nullptr);
}
