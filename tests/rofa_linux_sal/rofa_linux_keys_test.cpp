#include <gtest/gtest.h>

#include "rofa_lib/keyboard.h"
#include "rofa_linux_sal/rofa_linux_keys.h"
#include "tests/test_support.h"

TEST(VirtualKeys, LettersAndDigitsKeepTheirValue)
{
    for (uint32_t Key = 'A'; Key <= 'Z'; Key++)
        EXPECT_EQ(static_cast<int>(Key), VirtualKeyToKeyCode(Key));
    for (uint32_t Key = '0'; Key <= '9'; Key++)
        EXPECT_EQ(static_cast<int>(Key), VirtualKeyToKeyCode(Key));
}

TEST(VirtualKeys, EditingKeysKeepTheirValue)
{
    EXPECT_EQ(0x08, VirtualKeyToKeyCode(0x08));
    EXPECT_EQ(0x09, VirtualKeyToKeyCode(0x09));
    EXPECT_EQ(0x0D, VirtualKeyToKeyCode(0x0D));
    EXPECT_EQ(0x1B, VirtualKeyToKeyCode(0x1B));
    EXPECT_EQ(0x20, VirtualKeyToKeyCode(0x20));
}

TEST(VirtualKeys, ModifiersMapToTheirSideAndGenericOnesToTheLeft)
{
    EXPECT_EQ(0x88, VirtualKeyToKeyCode(0x10));
    EXPECT_EQ(0x8A, VirtualKeyToKeyCode(0x11));
    EXPECT_EQ(0x8C, VirtualKeyToKeyCode(0x12));
    EXPECT_EQ(0x88, VirtualKeyToKeyCode(0xA0));
    EXPECT_EQ(0x89, VirtualKeyToKeyCode(0xA1));
    EXPECT_EQ(0x8A, VirtualKeyToKeyCode(0xA2));
    EXPECT_EQ(0x8B, VirtualKeyToKeyCode(0xA3));
    EXPECT_EQ(0x8C, VirtualKeyToKeyCode(0xA4));
    EXPECT_EQ(0x8D, VirtualKeyToKeyCode(0xA5));
}

TEST(VirtualKeys, LocksFunctionKeysAndSystemKeys)
{
    EXPECT_EQ(0x80, VirtualKeyToKeyCode(0x14));
    EXPECT_EQ(0x81, VirtualKeyToKeyCode(0x90));
    EXPECT_EQ(0x82, VirtualKeyToKeyCode(0x91));
    for (uint32_t F = 0; F < 15; F++)
        EXPECT_EQ(static_cast<int>(0x90 + F), VirtualKeyToKeyCode(0x70 + F));
    EXPECT_EQ(0xFF, VirtualKeyToKeyCode(0x7F)); // F16 has no code
    EXPECT_EQ(0xC0, VirtualKeyToKeyCode(0x2C));
    EXPECT_EQ(0xC1, VirtualKeyToKeyCode(0x13));
    EXPECT_EQ(0xE0, VirtualKeyToKeyCode(0x5B));
    EXPECT_EQ(0xE1, VirtualKeyToKeyCode(0x5C));
    EXPECT_EQ(0xE2, VirtualKeyToKeyCode(0x5D));
}

TEST(VirtualKeys, Navigation)
{
    EXPECT_EQ(0xA0, VirtualKeyToKeyCode(0x24));
    EXPECT_EQ(0xA1, VirtualKeyToKeyCode(0x26));
    EXPECT_EQ(0xA2, VirtualKeyToKeyCode(0x21));
    EXPECT_EQ(0xA3, VirtualKeyToKeyCode(0x25));
    EXPECT_EQ(0xA5, VirtualKeyToKeyCode(0x27));
    EXPECT_EQ(0xA6, VirtualKeyToKeyCode(0x23));
    EXPECT_EQ(0xA7, VirtualKeyToKeyCode(0x28));
    EXPECT_EQ(0xA8, VirtualKeyToKeyCode(0x22));
    EXPECT_EQ(0xA9, VirtualKeyToKeyCode(0x2D));
    EXPECT_EQ(0xAA, VirtualKeyToKeyCode(0x2E));
}

TEST(VirtualKeys, NumericPadFollowsThePadsRows)
{
    // VK_NUMPAD0 to VK_NUMPAD9.
    const int Codes[] = {0xB9, 0xB6, 0xB7, 0xB8, 0xB3, 0xB4, 0xB5, 0xB0, 0xB1, 0xB2};
    for (uint32_t Digit = 0; Digit < 10; Digit++)
        EXPECT_EQ(Codes[Digit], VirtualKeyToKeyCode(0x60 + Digit)) << Digit;
    EXPECT_EQ(0xBA, VirtualKeyToKeyCode(0x6E));
    EXPECT_EQ(0xBB, VirtualKeyToKeyCode(0x6F));
    EXPECT_EQ(0xBC, VirtualKeyToKeyCode(0x6A));
    EXPECT_EQ(0xBD, VirtualKeyToKeyCode(0x6D));
    EXPECT_EQ(0xBE, VirtualKeyToKeyCode(0x6B));
    EXPECT_EQ(0xBF, VirtualKeyToKeyCode(0x6C));
}

TEST(VirtualKeys, PunctuationGivesTheUnshiftedCharacter)
{
    EXPECT_EQ(';', VirtualKeyToKeyCode(0xBA));
    EXPECT_EQ('=', VirtualKeyToKeyCode(0xBB));
    EXPECT_EQ(',', VirtualKeyToKeyCode(0xBC));
    EXPECT_EQ('-', VirtualKeyToKeyCode(0xBD));
    EXPECT_EQ('.', VirtualKeyToKeyCode(0xBE));
    EXPECT_EQ('/', VirtualKeyToKeyCode(0xBF));
    EXPECT_EQ('`', VirtualKeyToKeyCode(0xC0));
    EXPECT_EQ('[', VirtualKeyToKeyCode(0xDB));
    EXPECT_EQ('\\', VirtualKeyToKeyCode(0xDC));
    EXPECT_EQ(']', VirtualKeyToKeyCode(0xDD));
    EXPECT_EQ('\'', VirtualKeyToKeyCode(0xDE));
}

TEST(VirtualKeys, AnythingElseIsUnknown)
{
    EXPECT_EQ(0xFF, VirtualKeyToKeyCode(0x00));
    EXPECT_EQ(0xFF, VirtualKeyToKeyCode(0x0C));
    EXPECT_EQ(0xFF, VirtualKeyToKeyCode(0xE5));
    EXPECT_EQ(0xFF, VirtualKeyToKeyCode(0x12345));
}

TEST(VirtualKeys, ReverseGivesTheSideSpecificModifier)
{
    EXPECT_EQ(0xA0u, KeyCodeToVirtualKey(0x88));
    EXPECT_EQ(0xA1u, KeyCodeToVirtualKey(0x89));
    EXPECT_EQ(0xA2u, KeyCodeToVirtualKey(0x8A));
    EXPECT_EQ(0xA3u, KeyCodeToVirtualKey(0x8B));
    EXPECT_EQ(0xA4u, KeyCodeToVirtualKey(0x8C));
    EXPECT_EQ(0xA5u, KeyCodeToVirtualKey(0x8D));
}

TEST(VirtualKeys, ReverseUndoesEveryKnownVirtualKey)
{
    for (uint32_t Key = 0; Key < 0x100; Key++) {
        int Code = VirtualKeyToKeyCode(Key);
        if (Code == 0xFF || Key == 0x10 || Key == 0x11 || Key == 0x12)
            continue;
        EXPECT_EQ(Key, KeyCodeToVirtualKey(Code)) << std::hex << Key;
    }
}

TEST(VirtualKeys, ReverseOfAnUnknownCodeFailsTheAssertion)
{
    EXPECT_NE(std::string::npos, ZEL_ERROR_MESSAGE(KeyCodeToVirtualKey(0xFF)).find("'false' is false"));
    EXPECT_NE(std::string::npos, ZEL_ERROR_MESSAGE(KeyCodeToVirtualKey(0xA4)).find("'false' is false"));
    EXPECT_NE(std::string::npos, ZEL_ERROR_MESSAGE(KeyCodeToVirtualKey(-1)).find("'false' is false"));
}
