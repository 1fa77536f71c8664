#include <gtest/gtest.h>

#include <string>

#include "rofa_lib/zel_unicode.h"

namespace {

std::string Bytes(const zel_string &S)
{
    return std::string(S.GetString(), static_cast<size_t>(S.GetLength()));
}

// The 16-bit units that a UTF8ToUTF16 result holds, read up to its Length.
std::u16string Units(const zel_string &S)
{
    return std::u16string(reinterpret_cast<const char16_t *>(S.GetString()), static_cast<size_t>(S.GetLength()) / 2);
}

zel_string Utf8(const std::string &Text)
{
    return zel_string(Text.data(), static_cast<int>(Text.size()));
}

} // namespace

TEST(ZelUnicode, AsciiBothWays)
{
    EXPECT_EQ("Hello", Bytes(UTF16ToUTF8(u"Hello")));
    zel_string Wide = UTF8ToUTF16(zel_string("Hello"));
    EXPECT_EQ(10, Wide.GetLength());
    EXPECT_EQ(u"Hello", Units(Wide));
}

TEST(ZelUnicode, TwoByteCharacter)
{
    EXPECT_EQ("\xC3\xA9", Bytes(UTF16ToUTF8(u"\u00E9")));
    EXPECT_EQ(std::u16string(1, 0x00E9), Units(UTF8ToUTF16(Utf8("\xC3\xA9"))));
}

TEST(ZelUnicode, ThreeByteCharacter)
{
    EXPECT_EQ("\xE2\x82\xAC", Bytes(UTF16ToUTF8(u"\u20AC")));
    EXPECT_EQ(std::u16string(1, 0x20AC), Units(UTF8ToUTF16(Utf8("\xE2\x82\xAC"))));
}

TEST(ZelUnicode, SurrogatePairIsFourBytes)
{
    const char16_t Pair[] = {0xD83D, 0xDE00, 0};
    EXPECT_EQ("\xF0\x9F\x98\x80", Bytes(UTF16ToUTF8(Pair)));
    zel_string Wide = UTF8ToUTF16(Utf8("\xF0\x9F\x98\x80"));
    EXPECT_EQ(4, Wide.GetLength());
    EXPECT_EQ(std::u16string(Pair), Units(Wide));
}

TEST(ZelUnicode, BoundariesOfEachLength)
{
    const char16_t Wide[] = {0x007F, 0x0080, 0x07FF, 0x0800, 0xFFFF, 0xD800, 0xDC00, 0xDBFF, 0xDFFF, 0};
    std::string Expected = "\x7F"
                           "\xC2\x80"
                           "\xDF\xBF"
                           "\xE0\xA0\x80"
                           "\xEF\xBF\xBF"
                           "\xF0\x90\x80\x80"
                           "\xF4\x8F\xBF\xBF";
    EXPECT_EQ(Expected, Bytes(UTF16ToUTF8(Wide)));
    EXPECT_EQ(std::u16string(Wide), Units(UTF8ToUTF16(Utf8(Expected))));
}

TEST(ZelUnicode, MixedTextRoundTrip)
{
    std::string Text = "caf\xC3\xA9 \xE2\x82\xAC" "5 \xF0\x9F\x98\x80!";
    zel_string Wide = UTF8ToUTF16(Utf8(Text));
    const char16_t Expected[] = {'c', 'a', 'f', 0xE9, ' ', 0x20AC, '5', ' ', 0xD83D, 0xDE00, '!', 0};
    EXPECT_EQ(std::u16string(Expected), Units(Wide));
    EXPECT_EQ(Text, Bytes(UTF16ToUTF8(reinterpret_cast<const char16_t *>(Wide.GetString()))));
}

TEST(ZelUnicode, ResultReadsAsZeroTerminatedWideString)
{
    zel_string Wide = UTF8ToUTF16(Utf8("ab\xC3\xA9"));
    const char16_t *Text = reinterpret_cast<const char16_t *>(Wide.GetString());
    EXPECT_EQ(u'a', Text[0]);
    EXPECT_EQ(u'b', Text[1]);
    EXPECT_EQ(char16_t(0xE9), Text[2]);
    EXPECT_EQ(0, Text[3]);
}

TEST(ZelUnicode, ExplicitLengthStopsEarlyAndKeepsZeros)
{
    EXPECT_EQ("He", Bytes(UTF16ToUTF8(u"Hello", 2)));
    const char16_t WithZero[] = {'a', 0, 'b'};
    EXPECT_EQ(std::string("a\0b", 3), Bytes(UTF16ToUTF8(WithZero, 3)));
    EXPECT_EQ("", Bytes(UTF16ToUTF8(u"Hello", 0)));
}

TEST(ZelUnicode, EmptyBothWays)
{
    EXPECT_EQ("", Bytes(UTF16ToUTF8(u"")));
    zel_string Wide = UTF8ToUTF16(zel_string());
    EXPECT_EQ(0, Wide.GetLength());
    EXPECT_EQ(0, reinterpret_cast<const char16_t *>(Wide.GetString())[0]);
}

TEST(ZelUnicode, LoneSurrogatesBecomeReplacement)
{
    const char16_t High[] = {'a', 0xD83D, 'b', 0};
    EXPECT_EQ("a\xEF\xBF\xBD" "b", Bytes(UTF16ToUTF8(High)));
    const char16_t Low[] = {0xDE00, 0};
    EXPECT_EQ("\xEF\xBF\xBD", Bytes(UTF16ToUTF8(Low)));
    const char16_t HighAtEnd[] = {0xD83D, 0xDE00};
    EXPECT_EQ("\xEF\xBF\xBD", Bytes(UTF16ToUTF8(HighAtEnd, 1)));
}

TEST(ZelUnicode, MalformedUTF8BecomesReplacement)
{
    const char16_t R = 0xFFFD;
    // A stray continuation byte, an invalid lead byte, an overlong form, an encoded surrogate, a value
    // past U+10FFFF, and a sequence cut off by the end.
    EXPECT_EQ((std::u16string{'a', R, 'b'}), Units(UTF8ToUTF16(Utf8("a\x80" "b"))));
    EXPECT_EQ((std::u16string{R, 'x'}), Units(UTF8ToUTF16(Utf8("\xFF" "x"))));
    EXPECT_EQ((std::u16string{R, R}), Units(UTF8ToUTF16(Utf8("\xC0\xAF"))));
    EXPECT_EQ((std::u16string{R, R, R}), Units(UTF8ToUTF16(Utf8("\xED\xA0\x80"))));
    EXPECT_EQ((std::u16string{R, R, R, R}), Units(UTF8ToUTF16(Utf8("\xF4\x90\x80\x80"))));
    EXPECT_EQ((std::u16string{'a', R}), Units(UTF8ToUTF16(Utf8("a\xE2\x82"))));
    EXPECT_EQ((std::u16string{R, 'z'}), Units(UTF8ToUTF16(Utf8("\xE2\x82z"))));
}
