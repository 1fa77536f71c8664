#include <gtest/gtest.h>

#include "rofa_lib/keyboard.h"
#include "tests/test_support.h"

TEST(KeyboardRing, KeysComeOutInTheOrderTheyWentIn)
{
    keyboard_interface Keyboard;
    Keyboard.PushRawKey('A');
    Keyboard.PushRawKey('B');
    Keyboard.PushRawKey(KeyF1);
    EXPECT_EQ(3, Keyboard.GetNumberOfKeysInBuffer());
    EXPECT_TRUE(Keyboard.AnyKeysInBuffer());
    EXPECT_EQ('A', Keyboard.PeekKey());
    EXPECT_EQ('A', Keyboard.PopKey());
    EXPECT_EQ('B', Keyboard.PopKey());
    EXPECT_EQ(KeyF1, Keyboard.PopKey());
    EXPECT_FALSE(Keyboard.AnyKeysInBuffer());
}

TEST(KeyboardRing, AFullRingRefusesAFurtherKey)
{
    keyboard_interface Keyboard;
    for (int I = 0; I < 1024; I++)
        Keyboard.PushKey('A');
    EXPECT_EQ(1024, Keyboard.GetNumberOfKeysInBuffer());
    EXPECT_FALSE(Keyboard.AnySpaceInBuffer());
    std::string Message = ZEL_ERROR_MESSAGE(Keyboard.PushKey('B'));
    EXPECT_NE(std::string::npos, Message.find("'AnySpaceInBuffer()' is false")) << Message;
    EXPECT_NE(std::string::npos, ZEL_ERROR_MESSAGE(Keyboard.PushRawKey('B')).find("'AnySpaceInBuffer()' is false"));
    EXPECT_EQ(1024, Keyboard.GetNumberOfKeysInBuffer());
}

TEST(KeyboardRing, WrapsAroundItsEnd)
{
    keyboard_interface Keyboard;
    for (int I = 0; I < 1000; I++)
        Keyboard.PushRawKey(I % 256);
    for (int I = 0; I < 1000; I++)
        ASSERT_EQ(I % 256, Keyboard.PopKey());
    // The next 1,024 entries straddle the end of the ring.
    for (int I = 0; I < 1024; I++)
        Keyboard.PushRawKey(0x4000 | I);
    for (int I = 0; I < 1024; I++)
        ASSERT_EQ(0x4000 | I, Keyboard.PopKey());
}

TEST(KeyboardRing, AnEmptyRingHasNothingToPeekOrPop)
{
    keyboard_interface Keyboard;
    EXPECT_NE(std::string::npos, ZEL_ERROR_MESSAGE(Keyboard.PeekKey()).find("'AnyKeysInBuffer()' is false"));
    EXPECT_NE(std::string::npos, ZEL_ERROR_MESSAGE(Keyboard.PopKey()).find("'AnyKeysInBuffer()' is false"));
    EXPECT_NE(std::string::npos, ZEL_ERROR_MESSAGE(Keyboard.TranslateKey()).find("'AnyKeysInBuffer()' is false"));
}

TEST(KeyboardRing, ClearEmptiesIt)
{
    keyboard_interface Keyboard;
    Keyboard.PushRawKey('A');
    Keyboard.PushRawKey('B');
    Keyboard.ClearKeyBuffer();
    EXPECT_EQ(0, Keyboard.GetNumberOfKeysInBuffer());
    EXPECT_TRUE(Keyboard.AnySpaceInBuffer());
    Keyboard.PushRawKey('C');
    EXPECT_EQ('C', Keyboard.PopKey());
}

TEST(KeyboardRing, PushKeyAddsTheModifiersOfTheMoment)
{
    keyboard_interface Keyboard;
    Keyboard.PushKey('A');
    Keyboard.SetKeyDown(KeyRightShift, 1);
    Keyboard.PushKey('A');
    Keyboard.SetKeyDown(KeyLeftControl, 1);
    Keyboard.SetKeyDown(KeyRightAlt, 1);
    Keyboard.SetCapsLock(true);
    Keyboard.SetNumLock(true);
    Keyboard.SetScrollLock(true);
    Keyboard.PushKey('A');
    EXPECT_EQ(0x41, Keyboard.PopKey());
    EXPECT_EQ(0x241, Keyboard.PopKey());
    EXPECT_EQ(0x7E41, Keyboard.PopKey());
}

TEST(KeyboardRing, PushRawKeyKeepsTheEntryAsItIs)
{
    keyboard_interface Keyboard;
    Keyboard.SetKeyDown(KeyLeftShift, 1);
    Keyboard.PushRawKey(0x1041);
    EXPECT_EQ(0x1041, Keyboard.PopKey());
}

TEST(KeyboardRing, TranslateKeyPeeksWithoutRemoving)
{
    keyboard_interface Keyboard;
    Keyboard.PushRawKey('Q');
    EXPECT_EQ('q', Keyboard.TranslateKey());
    EXPECT_EQ(1, Keyboard.GetNumberOfKeysInBuffer());
    EXPECT_EQ('Q', Keyboard.PopKey());
}

TEST(KeyboardState, ModifiersAreDownWhenEitherOfTheirKeysIs)
{
    keyboard_interface Keyboard;
    EXPECT_FALSE(Keyboard.IsShiftDown());
    Keyboard.SetKeyDown(KeyLeftShift, 1);
    EXPECT_TRUE(Keyboard.IsShiftDown());
    Keyboard.ClearKeyDown(KeyLeftShift);
    Keyboard.SetKeyDown(KeyRightShift, 1);
    EXPECT_TRUE(Keyboard.IsShiftDown());
    EXPECT_FALSE(Keyboard.IsControlDown());
    EXPECT_FALSE(Keyboard.IsAltDown());
    Keyboard.SetKeyDown(KeyRightControl, 1);
    Keyboard.SetKeyDown(KeyLeftAlt, 1);
    EXPECT_TRUE(Keyboard.IsControlDown());
    EXPECT_TRUE(Keyboard.IsAltDown());
    Keyboard.ClearKeyDown(KeyRightShift);
    EXPECT_FALSE(Keyboard.IsShiftDown());
}

TEST(KeyboardState, TogglesAreStored)
{
    keyboard_interface Keyboard;
    EXPECT_FALSE(Keyboard.IsCapsLockOn());
    EXPECT_FALSE(Keyboard.IsNumLockOn());
    EXPECT_FALSE(Keyboard.IsScrollLockOn());
    Keyboard.SetNumLock(true);
    EXPECT_TRUE(Keyboard.IsNumLockOn());
    EXPECT_FALSE(Keyboard.IsCapsLockOn());
    Keyboard.SetScrollLock(true);
    EXPECT_TRUE(Keyboard.IsScrollLockOn());
}

TEST(KeyboardState, KeyDownTableHas512Places)
{
    keyboard_interface Keyboard;
    Keyboard.SetKeyDown(511, 1);
    EXPECT_TRUE(Keyboard.GetKeyDown(511));
    EXPECT_FALSE(Keyboard.GetKeyDown(510));
    std::string Message = ZEL_ERROR_MESSAGE(Keyboard.GetKeyDown(512));
    EXPECT_NE(std::string::npos, Message.find("'Key<KeyboardKeyDownBufferSize' is false")) << Message;
    EXPECT_NE(std::string::npos,
              ZEL_ERROR_MESSAGE(Keyboard.SetKeyDown(512, 1)).find("'Key<KeyboardKeyDownBufferSize' is false"));
    EXPECT_NE(std::string::npos, ZEL_ERROR_MESSAGE(Keyboard.GetKeyDown(-1)).find("'Key>=0' is false"));
}

TEST(KeyToCharacter, LettersFollowCapsLockAndShift)
{
    EXPECT_EQ('a', KeyToCharacter('A'));
    EXPECT_EQ('A', KeyToCharacter('A' | KeyCapsLockFlag));
    EXPECT_EQ('A', KeyToCharacter('A' | KeyShiftFlag));
    EXPECT_EQ('a', KeyToCharacter('A' | KeyShiftFlag | KeyCapsLockFlag));
    EXPECT_EQ('z', KeyToCharacter('Z'));
    EXPECT_EQ('Z', KeyToCharacter('Z' | KeyCapsLockFlag));
}

TEST(KeyToCharacter, ShiftedDigitsAndPunctuationFollowTheUSLayout)
{
    const char *Unshifted = "1234567890-=[\\]`;',./";
    const char *Shifted = "!@#$%^&*()_+{|}~:\"<>?";
    for (int I = 0; Unshifted[I] != 0; I++) {
        EXPECT_EQ(Shifted[I], KeyToCharacter(Unshifted[I] | KeyShiftFlag)) << Unshifted[I];
        EXPECT_EQ(Unshifted[I], KeyToCharacter(Unshifted[I])) << Unshifted[I];
        // Caps lock is for letters only.
        EXPECT_EQ(Unshifted[I], KeyToCharacter(Unshifted[I] | KeyCapsLockFlag)) << Unshifted[I];
    }
}

TEST(KeyToCharacter, KeypadWithNumberLockTypesDigitsAndPoint)
{
    const int Keys[] = {KeyPad7, KeyPad8, KeyPad9, KeyPad4, KeyPad5, KeyPad6,
                        KeyPad1, KeyPad2, KeyPad3, KeyPad0, KeyPadDecimal};
    const char *Characters = "7894561230.";
    for (int I = 0; I < 11; I++) {
        EXPECT_EQ(Characters[I], KeyToCharacter(Keys[I] | KeyNumLockFlag)) << I;
        // Shift undoes the lock.
        EXPECT_EQ(Characters[I], KeyToCharacter(Keys[I] | KeyShiftFlag)) << I;
    }
}

TEST(KeyToCharacter, KeypadWithoutNumberLockIsNavigation)
{
    EXPECT_EQ(KeyHome, KeyToCharacter(KeyPad7));
    EXPECT_EQ(KeyUp, KeyToCharacter(KeyPad8));
    EXPECT_EQ(KeyPageUp, KeyToCharacter(KeyPad9));
    EXPECT_EQ(KeyLeft, KeyToCharacter(KeyPad4));
    EXPECT_EQ(0xA4, KeyToCharacter(KeyPad5));
    EXPECT_EQ(KeyRight, KeyToCharacter(KeyPad6));
    EXPECT_EQ(KeyEnd, KeyToCharacter(KeyPad1));
    EXPECT_EQ(KeyDown, KeyToCharacter(KeyPad2));
    EXPECT_EQ(KeyPageDown, KeyToCharacter(KeyPad3));
    EXPECT_EQ(KeyInsert, KeyToCharacter(KeyPad0));
    EXPECT_EQ(KeyDelete, KeyToCharacter(KeyPadDecimal));
    EXPECT_EQ(KeyHome, KeyToCharacter(KeyPad7 | KeyNumLockFlag | KeyShiftFlag));
}

TEST(KeyToCharacter, KeypadEnterIsReturn)
{
    EXPECT_EQ(0x0D, KeyToCharacter(KeyPadEnter));
    EXPECT_EQ(0x0D, KeyToCharacter(KeyPadEnter | KeyNumLockFlag));
}

TEST(KeyToCharacter, ControlAndAltStayInTheHighBitsAndTheOtherFlagsGo)
{
    EXPECT_EQ(0x400 | 'a', KeyToCharacter('A' | KeyControlFlag));
    EXPECT_EQ(0xC00 | 'A', KeyToCharacter('A' | KeyControlFlag | KeyAltFlag | KeyShiftFlag));
    EXPECT_EQ('a', KeyToCharacter('A' | KeyScrollLockFlag));
    EXPECT_EQ(0x800 | KeyF4, KeyToCharacter(KeyF4 | KeyAltFlag | KeyShiftFlag | KeyNumLockFlag));
}

TEST(KeyToCharacter, KeysThatTypeNothingComeBackAsTheirCode)
{
    EXPECT_EQ(KeyF1, KeyToCharacter(KeyF1));
    EXPECT_EQ(KeyPadDivide, KeyToCharacter(KeyPadDivide | KeyNumLockFlag));
    EXPECT_EQ(KeyPadAdd, KeyToCharacter(KeyPadAdd));
    EXPECT_EQ(KeyReturn, KeyToCharacter(KeyReturn | KeyShiftFlag));
    EXPECT_EQ(KeySpace, KeyToCharacter(KeySpace));
    EXPECT_EQ(KeyDelete, KeyToCharacter(KeyDelete | KeyNumLockFlag));
}
