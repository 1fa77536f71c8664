#include <gtest/gtest.h>
#include <gmock/gmock.h>

#include <climits>
#include <cstdlib>
#include <cstring>
#include <string>

#include "zel_basics/array.h"
#include "zel_basics/zel_error.h"
#include "zel_basics/zel_string.h"

namespace {

std::string Bytes(const zel_string &S)
{
    return std::string(S.GetString(), static_cast<size_t>(S.GetLength()));
}

// The message of the zel_error that Action throws; an empty text (and a failure) if none comes.
template <class F> std::string ErrorOf(F Action)
{
    try
    {
        Action();
    }
    catch (const zel_error &Error)
    {
        return Bytes(Error.GetMessage());
    }
    ADD_FAILURE() << "no zel_error was thrown";
    return std::string();
}

std::string AssertionText(const char *Text)
{
    return std::string("'") + Text + "' is false";
}

// A plain FNV-1 written from its definition, to check GetHash against.
uint32_t ReferenceFNV1(const std::string &Text)
{
    uint32_t Hash = 2166136261u;
    for (unsigned char C : Text)
        Hash = (Hash * 16777619u) ^ C;
    return Hash;
}

std::string Piece(array<zel_string> &Pieces, int Index)
{
    return Bytes(Pieces[Index]);
}

} // namespace

// ---- construction and the block ----

TEST(ZelString, NullPointerGivesEmptyString)
{
    zel_string S(NULL);
    EXPECT_EQ(0, S.GetLength());
    EXPECT_TRUE(S.IsEmpty());
    ASSERT_NE(nullptr, S.GetString());
    EXPECT_EQ(0, S.GetString()[0]);
}

TEST(ZelString, DefaultIsEmptyWithABlock)
{
    zel_string S;
    EXPECT_EQ(0, S.GetLength());
    ASSERT_NE(nullptr, S.GetString());
    EXPECT_EQ(0, S.GetString()[0]);
    EXPECT_EQ(0, S.GetString()[1]);
}

TEST(ZelString, FromCStringCopiesUpToZero)
{
    char Text[] = "hello";
    zel_string S(Text);
    Text[0] = 'j';
    EXPECT_EQ("hello", Bytes(S));
    EXPECT_EQ(5, S.GetLength());
}

TEST(ZelString, FromPointerAndLengthKeepsZeroBytes)
{
    zel_string S("a\0b\0", 4);
    EXPECT_EQ(4, S.GetLength());
    EXPECT_EQ(std::string("a\0b\0", 4), Bytes(S));
}

TEST(ZelString, FromNullPointerAndLengthAsserts)
{
    const char *Nothing = NULL;
    EXPECT_THAT(ErrorOf([&] { zel_string S(Nothing, 3); }), testing::HasSubstr(AssertionText("Init_String!=NULL")));
}

TEST(ZelString, RepeatedCharacter)
{
    zel_string S('x', 3);
    EXPECT_EQ("xxx", Bytes(S));
    EXPECT_EQ(0, S.GetString()[3]);
    EXPECT_EQ(0, S.GetString()[4]);
    EXPECT_EQ("", Bytes(zel_string('x', 0)));
}

TEST(ZelString, RepeatedCharacterNegativeCountAsserts)
{
    EXPECT_THAT(ErrorOf([] { zel_string S('x', -1); }), testing::HasSubstr(AssertionText("NumRepetitions>=0")));
}

TEST(ZelString, BlockTailReadsAsEightAndSixteenBitTerminator)
{
    for (int Length = 0; Length < 12; Length++)
    {
        std::string Text(static_cast<size_t>(Length), 'a');
        zel_string S(Text.data(), Length);
        const char *Block = S.GetString();
        int BlockSize = Length + (Length & 2) + 2;
        // Reading up to the block's last byte must stay inside the allocation (the sanitizer
        // watches), and the two bytes behind the text and the last one are zero.
        EXPECT_EQ(0, Block[Length]) << Length;
        EXPECT_EQ(0, Block[Length + 1]) << Length;
        EXPECT_EQ(0, Block[BlockSize - 1]) << Length;
        if (Length % 2 == 0)
        {
            uint16_t Unit;
            std::memcpy(&Unit, Block + Length, 2);
            EXPECT_EQ(0, Unit) << Length;
        }
    }
}

TEST(ZelString, SixteenBitTextEndsAtItsTerminator)
{
    const char16_t Wide[] = u"Hi!";
    zel_string S(reinterpret_cast<const char *>(Wide), 6);
    const char16_t *Units = reinterpret_cast<const char16_t *>(S.GetString());
    int Count = 0;
    while (Units[Count] != 0)
        Count++;
    EXPECT_EQ(3, Count);
    EXPECT_EQ(u'!', Units[2]);
}

TEST(ZelString, CopyIsIndependent)
{
    zel_string A("abc");
    zel_string B(A);
    B[0] = 'z';
    EXPECT_EQ("abc", Bytes(A));
    EXPECT_EQ("zbc", Bytes(B));
    EXPECT_NE(A.GetString(), B.GetString());
}

TEST(ZelString, MovedFromStringStaysUsable)
{
    zel_string A("abc");
    zel_string B(std::move(A));
    EXPECT_EQ("abc", Bytes(B));
    EXPECT_EQ(0, A.GetLength());
    ASSERT_NE(nullptr, A.GetString());
    EXPECT_EQ(0, A.GetString()[0]);
    A += "again";
    EXPECT_EQ("again", Bytes(A));
    zel_string C("xy");
    C = std::move(B);
    EXPECT_EQ("abc", Bytes(C));
    B = "reused";
    EXPECT_EQ("reused", Bytes(B));
}

TEST(ZelString, AssignmentCopiesAndSelfAssignmentKeeps)
{
    zel_string A("first");
    zel_string B("second one");
    A = B;
    EXPECT_EQ("second one", Bytes(A));
    EXPECT_NE(A.GetString(), B.GetString());
    const zel_string &Same = A;
    A = Same;
    EXPECT_EQ("second one", Bytes(A));
}

TEST(ZelString, AdoptBufferTakesTheBlock)
{
    char *Block = static_cast<char *>(std::malloc(4));
    std::memcpy(Block, "abc", 4);
    zel_string S("old");
    S.AdoptBuffer(Block, 3);
    EXPECT_EQ(Block, S.GetString());
    EXPECT_EQ("abc", Bytes(S));
}

TEST(ZelString, AdoptBufferAssertsNullAndTerminator)
{
    zel_string S;
    EXPECT_THAT(ErrorOf([&] { S.AdoptBuffer(nullptr, 0); }), testing::HasSubstr(AssertionText("StringOP")));
    char *Block = static_cast<char *>(std::malloc(4));
    std::memcpy(Block, "abcd", 4);
    EXPECT_THAT(ErrorOf([&] { S.AdoptBuffer(Block, 3); }), testing::HasSubstr(AssertionText("String[Length]==0")));
}

TEST(ZelString, AppendJoins)
{
    zel_string S("ab");
    S += zel_string("cd");
    EXPECT_EQ("abcd", Bytes(S));
    S += zel_string();
    EXPECT_EQ("abcd", Bytes(S));
    zel_string Empty;
    Empty += S;
    EXPECT_EQ("abcd", Bytes(Empty));
    S += S;
    EXPECT_EQ("abcdabcd", Bytes(S));
}

TEST(ZelString, PlusForms)
{
    zel_string A("ab");
    EXPECT_EQ("abcd", Bytes(A + zel_string("cd")));
    EXPECT_EQ("abxy", Bytes(A + "xy"));
    EXPECT_EQ("xyab", Bytes("xy" + A));
    EXPECT_EQ("ab", Bytes(A));
    EXPECT_EQ(std::string("a\0b", 3), Bytes(zel_string("a\0", 2) + "b"));
}

// ---- comparison and hash ----

TEST(ZelString, Equality)
{
    EXPECT_TRUE(zel_string("abc") == zel_string("abc"));
    EXPECT_FALSE(zel_string("abc") == zel_string("abd"));
    EXPECT_FALSE(zel_string("abc") == zel_string("ab"));
    EXPECT_TRUE(zel_string("abc") != zel_string("ab"));
    EXPECT_FALSE(zel_string("a\0x", 3) == zel_string("a\0y", 3));
    EXPECT_TRUE(zel_string() == zel_string(""));
}

TEST(ZelString, LessComparesSignedBytes)
{
    EXPECT_TRUE(zel_string("abc") < zel_string("abd"));
    EXPECT_FALSE(zel_string("abd") < zel_string("abc"));
    EXPECT_TRUE(zel_string("ab") < zel_string("abc"));
    EXPECT_FALSE(zel_string("abc") < zel_string("ab"));
    EXPECT_FALSE(zel_string("abc") < zel_string("abc"));
    // 0xC3 is negative as a signed char, so it sorts before plain ASCII.
    EXPECT_TRUE(zel_string("\xC3") < zel_string("A"));
    EXPECT_FALSE(zel_string("A") < zel_string("\xC3"));
}

TEST(ZelString, CompareNoCase)
{
    EXPECT_EQ(0, zel_string("Hello").CompareNoCase(zel_string("hELLO")));
    EXPECT_EQ('A' - 'B', zel_string("a").CompareNoCase(zel_string("B")));
    EXPECT_EQ('C' - 'B', zel_string("abc").CompareNoCase(zel_string("ABB")));
    EXPECT_EQ(2, zel_string("abcd").CompareNoCase(zel_string("AB")));
    EXPECT_EQ(-3, zel_string("").CompareNoCase(zel_string("xyz")));
    EXPECT_EQ(-0x3D - 'A', zel_string("\xC3").CompareNoCase(zel_string("a")));
}

TEST(ZelString, HashIsFNV1)
{
    EXPECT_EQ(0x811C9DC5u, zel_string().GetHash());
    EXPECT_EQ(0x050C5D7Eu, zel_string("a").GetHash());
    EXPECT_EQ(0x31F0B262u, zel_string("foobar").GetHash());
    std::string Binary("\0\xFFz\x80", 4);
    EXPECT_EQ(ReferenceFNV1(Binary), zel_string(Binary.data(), 4).GetHash());
    EXPECT_NE(zel_string("ab").GetHash(), zel_string("ba").GetHash());
}

// ---- index access ----

TEST(ZelString, IndexAccess)
{
    zel_string S("abc");
    EXPECT_EQ('b', S[1]);
    S[1] = 'x';
    EXPECT_EQ("axc", Bytes(S));
    const zel_string &Constant = S;
    EXPECT_EQ('c', Constant[2]);
}

TEST(ZelString, IndexOutOfRangeAsserts)
{
    zel_string S("abc");
    const zel_string &Constant = S;
    EXPECT_THAT(ErrorOf([&] { S[3]; }), testing::HasSubstr(AssertionText("Index>=0 && Index<Length")));
    EXPECT_THAT(ErrorOf([&] { S[-1]; }), testing::HasSubstr(AssertionText("Index>=0 && Index<Length")));
    EXPECT_THAT(ErrorOf([&] { Constant[3]; }), testing::HasSubstr(AssertionText("Index>=0 && Index<Length")));
}

TEST(ZelString, RemoveLast)
{
    zel_string S("ab");
    S.RemoveLast();
    EXPECT_EQ("a", Bytes(S));
    EXPECT_EQ(0, S.GetString()[1]);
    S.RemoveLast();
    EXPECT_EQ("", Bytes(S));
    EXPECT_THAT(ErrorOf([&] { S.RemoveLast(); }), testing::HasSubstr(AssertionText("Length>0")));
}

// ---- number to text ----

TEST(ZelString, NumbersToText)
{
    EXPECT_EQ("0", Bytes(zel_string::FromInt(0)));
    EXPECT_EQ("-2147483648", Bytes(zel_string::FromInt(INT_MIN)));
    EXPECT_EQ("2147483647", Bytes(zel_string::FromInt(INT_MAX)));
    EXPECT_EQ("4294967295", Bytes(zel_string::FromUnsigned(4294967295u)));
    EXPECT_EQ("0.1", Bytes(zel_string::FromDouble(0.1)));
    EXPECT_EQ("1e+20", Bytes(zel_string::FromDouble(1e20)));
    EXPECT_EQ("-2.5", Bytes(zel_string::FromDouble(-2.5)));
    EXPECT_EQ("3.14159", Bytes(zel_string::FromDouble(3.14159265)));
}

TEST(ZelString, FormatWithWidths)
{
    EXPECT_EQ("   42", Bytes(zel_string::Format("%5d", 42)));
    EXPECT_EQ("[7     ]", Bytes(zel_string::Format("[%-6d]", 7)));
    EXPECT_EQ("00ff", Bytes(zel_string::Format("%04x", 255)));
    EXPECT_EQ("100% of 3", Bytes(zel_string::Format("100%% of %d", 3)));
    EXPECT_EQ("0003.142", Bytes(zel_string::Format("%08.3f", 3.14159)));
    EXPECT_EQ("x=1.5", Bytes(zel_string::Format("x=%g", 1.5)));
    EXPECT_EQ(std::string(30, ' ') + "2", Bytes(zel_string::Format("%31d", 2)));
    EXPECT_EQ(316, zel_string::Format("%f", 1e308).GetLength());
}

TEST(ZelString, GetMaxFormatLength)
{
    EXPECT_EQ(2, zel_string::GetMaxFormatLength("%d"));
    EXPECT_EQ(3 + 5, zel_string::GetMaxFormatLength("%5d"));
    EXPECT_EQ(8 + 12, zel_string::GetMaxFormatLength("ab%12.3f"));
    EXPECT_EQ(5 + 3, zel_string::GetMaxFormatLength("%%%3d"));
    EXPECT_EQ(5 + 10, zel_string::GetMaxFormatLength("%-10d"));
    EXPECT_EQ(7 + 4, zel_string::GetMaxFormatLength("%4d %9d"));
}

TEST(ZelString, GetMaxFormatLengthWithoutConversionAsserts)
{
    EXPECT_THAT(ErrorOf([] { zel_string::GetMaxFormatLength("plain"); }),
                testing::HasSubstr(AssertionText("FormatString[I]=='%'")));
    EXPECT_THAT(ErrorOf([] { zel_string::GetMaxFormatLength("100%%"); }),
                testing::HasSubstr(AssertionText("FormatString[I]=='%'")));
    EXPECT_THAT(ErrorOf([] { zel_string::Format("none", 1); }),
                testing::HasSubstr(AssertionText("FormatString[I]=='%'")));
}

// ---- text to number ----

TEST(ZelString, CharacterLiteralReadsAsItsCode)
{
    EXPECT_EQ(65, zel_string("'A").ToInt());
    EXPECT_EQ(65, zel_string("'A'").ToInt());
    EXPECT_EQ(92, zel_string("'\\").ToInt());
}

TEST(ZelString, EscapedNewlineLiteralGivesTen)
{
    EXPECT_EQ(10, zel_string("'\\n").ToInt());
}

TEST(ZelString, CharacterLiteralEscapes)
{
    EXPECT_EQ(92, zel_string("'\\\\").ToInt());
    EXPECT_EQ(7, zel_string("'\\a").ToInt());
    EXPECT_EQ(8, zel_string("'\\b").ToInt());
    EXPECT_EQ(12, zel_string("'\\f").ToInt());
    EXPECT_EQ(13, zel_string("'\\r").ToInt());
    EXPECT_EQ(9, zel_string("'\\t").ToInt());
    EXPECT_EQ(11, zel_string("'\\v").ToInt());
    EXPECT_EQ(10, zel_string("'\\N").ToInt());
    EXPECT_EQ(0, zel_string("'\\q").ToInt());
    EXPECT_EQ(0, zel_string("'\\0").ToInt());
}

TEST(ZelString, NegativeHexadecimal)
{
    EXPECT_EQ(-255, zel_string("-ff").ToInt(16));
}

TEST(ZelString, LettersInDecimalGiveZero)
{
    EXPECT_EQ(0, zel_string("abc").ToInt(10));
}

TEST(ZelString, DigitsBeforeLettersAreRead)
{
    EXPECT_EQ(12, zel_string("12abc").ToInt(10));
}

TEST(ZelString, ToIntOtherCases)
{
    EXPECT_EQ(0, zel_string().ToInt());
    EXPECT_EQ(0, zel_string("'").ToInt());
    EXPECT_EQ(123, zel_string("  123  ").ToInt());
    EXPECT_EQ(-42, zel_string("x = -42;").ToInt());
    EXPECT_EQ(-7, zel_string("--7").ToInt());
    EXPECT_EQ(5, zel_string("5-3").ToInt());
    EXPECT_EQ(0, zel_string("0xFF").ToInt(16));
    EXPECT_EQ(255, zel_string("xFF").ToInt(16));
    EXPECT_EQ(5, zel_string("101").ToInt(2));
    EXPECT_EQ(1, zel_string("1201").ToInt(2));
    EXPECT_EQ(0, zel_string("9").ToInt(8));
    EXPECT_EQ(35, zel_string("z").ToInt(36));
    EXPECT_EQ(0, zel_string("z").ToInt(35));
    EXPECT_EQ(2147483647, zel_string("2147483647").ToInt());
    EXPECT_EQ(INT_MIN, zel_string("-2147483648").ToInt());
    // No overflow check: the value wraps at 32 bits.
    EXPECT_EQ(0, zel_string("4294967296").ToInt());
    EXPECT_EQ(1, zel_string("4294967297").ToInt());
}

TEST(ZelString, ToIntRadixAsserts)
{
    EXPECT_THAT(ErrorOf([] { zel_string("1").ToInt(1); }), testing::HasSubstr(AssertionText("Radix>1")));
    EXPECT_THAT(ErrorOf([] { zel_string("1").ToInt(37); }), testing::HasSubstr(AssertionText("Radix<=36")));
}

TEST(ZelString, ToFloat)
{
    EXPECT_DOUBLE_EQ(2.5, zel_string("2.5").ToFloat());
    EXPECT_DOUBLE_EQ(-1e3, zel_string(" -1e3xyz").ToFloat());
    EXPECT_DOUBLE_EQ(0.0, zel_string("abc").ToFloat());
    EXPECT_DOUBLE_EQ(0.0, zel_string().ToFloat());
}

// ---- search ----

TEST(ZelString, Find)
{
    zel_string S("abcabc");
    EXPECT_EQ(1, S.Find('b'));
    EXPECT_EQ(4, S.Find('b', 2));
    EXPECT_EQ(4, S.Find('b', 4));
    EXPECT_EQ(6, S.Find('z'));
    EXPECT_EQ(6, S.Find('a', 6));
    EXPECT_EQ(1, zel_string("a\0b", 3).Find('\0'));
    EXPECT_THAT(ErrorOf([&] { S.Find('a', -1); }), testing::HasSubstr(AssertionText("StartIndex>=0")));
}

TEST(ZelString, FindLast)
{
    zel_string S("abcabc");
    EXPECT_EQ(4, S.FindLast('b'));
    EXPECT_EQ(1, S.FindLast('b', 3));
    EXPECT_EQ(4, S.FindLast('b', 4));
    EXPECT_EQ(-1, S.FindLast('z'));
    EXPECT_EQ(-1, S.FindLast('b', 0));
    EXPECT_EQ(0, S.FindLast('a', 0));
    EXPECT_EQ(-1, zel_string().FindLast('a'));
}

TEST(ZelString, FindLastFromBeyondTheEndReadsNothingPastIt)
{
    // Behind the text lie zero bytes; a search for zero must not find them.
    zel_string S("ab");
    EXPECT_EQ(-1, S.FindLast('\0', 10));
    EXPECT_EQ(1, S.FindLast('b', 10));
    EXPECT_EQ(-1, S.FindLast('\0'));
}

TEST(ZelString, FindNoCaseAndContains)
{
    zel_string S("Hello World");
    EXPECT_EQ(6, S.FindNoCase(zel_string("WORLD")));
    EXPECT_EQ(2, S.FindNoCase(zel_string("LL")));
    EXPECT_EQ(11, S.FindNoCase(zel_string("LL"), 3));
    EXPECT_EQ(11, S.FindNoCase(zel_string("worlds")));
    EXPECT_EQ(4, S.FindNoCase(zel_string("O"), 4));
    EXPECT_TRUE(S.Contains(zel_string("hello")));
    EXPECT_TRUE(S.Contains(zel_string("o w")));
    EXPECT_FALSE(S.Contains(zel_string("xyz")));
    EXPECT_FALSE(zel_string("ab").Contains(zel_string("abc")));
}

TEST(ZelString, CountOccurrences)
{
    EXPECT_EQ(3, zel_string("banana").CountOccurrences('a'));
    EXPECT_EQ(0, zel_string("banana").CountOccurrences('z'));
    EXPECT_EQ(2, zel_string("banana").CountOccurrences(zel_string("an")));
    EXPECT_EQ(1, zel_string("banana").CountOccurrences(zel_string("ana")));
    EXPECT_EQ(2, zel_string("aaaa").CountOccurrences(zel_string("aa")));
    EXPECT_EQ(0, zel_string("banana").CountOccurrences(zel_string("AN")));
}

TEST(ZelString, FindWhitespace)
{
    zel_string S("ab \t cd");
    EXPECT_EQ(2, S.FindWhitespace(0));
    EXPECT_EQ(2, S.FindWhitespace(-4));
    EXPECT_EQ(3, S.FindWhitespace(3));
    EXPECT_EQ(7, S.FindWhitespace(5));
    EXPECT_EQ(0, S.FindNonWhitespace(-1));
    EXPECT_EQ(5, S.FindNonWhitespace(2));
    EXPECT_EQ(4, zel_string("x\n\r ").FindNonWhitespace(1));
}

TEST(ZelString, ClosingQuoteAfterEscapedQuote)
{
    zel_string S("\"a\\\"b\"");
    EXPECT_EQ(S.GetLength() - 1, S.FindClosingQuote(0));
    EXPECT_EQ(5, S.FindClosingQuote(0));
}

TEST(ZelString, ClosingQuoteAfterEscapedBackslash)
{
    zel_string S("\"a\\\\\"");
    EXPECT_EQ(4, S.FindClosingQuote(0));
}

TEST(ZelString, ClosingQuoteOtherCases)
{
    EXPECT_EQ(1, zel_string("''").FindClosingQuote(0));
    EXPECT_EQ(5, zel_string("x='ab'").FindClosingQuote(2));
    EXPECT_EQ(6, zel_string("'a\"b\"c'").FindClosingQuote(0));
    EXPECT_EQ(4, zel_string("a \"b\" \"c\"").FindClosingQuote(2));
}

TEST(ZelString, MismatchedQuoteThrows)
{
    EXPECT_EQ("Mismatched quotation starting with: \"abc", ErrorOf([] { zel_string("x=\"abc").FindClosingQuote(2); }));
    EXPECT_EQ("Mismatched quotation starting with: 'a\\'", ErrorOf([] { zel_string("'a\\'").FindClosingQuote(0); }));
    std::string Long = "\"" + std::string(200, 'q');
    EXPECT_EQ("Mismatched quotation starting with: " + Long.substr(0, 101),
              ErrorOf([&] { zel_string(Long.c_str()).FindClosingQuote(0); }));
}

TEST(ZelString, ClosingQuoteAsserts)
{
    zel_string S("ab'c'");
    EXPECT_THAT(ErrorOf([&] { S.FindClosingQuote(-1); }), testing::HasSubstr(AssertionText("StartIndex>=0")));
    EXPECT_THAT(ErrorOf([&] { S.FindClosingQuote(0); }),
                testing::HasSubstr(AssertionText("String[StartIndex]=='\"' || String[StartIndex]=='\\''")));
}

TEST(ZelString, ClosingQuoteFromTheEndFailsTheQuoteCheck)
{
    zel_string S("ab'c'");
    EXPECT_THAT(ErrorOf([&] { S.FindClosingQuote(S.GetLength()); }),
                testing::HasSubstr(AssertionText("String[StartIndex]=='\"' || String[StartIndex]=='\\''")));
    EXPECT_THAT(ErrorOf([&] { zel_string().FindClosingQuote(0); }),
                testing::HasSubstr(AssertionText("String[StartIndex]=='\"' || String[StartIndex]=='\\''")));
}

// ---- cutting ----

TEST(ZelString, MidWithRightBeforeLeftIsEmpty)
{
    EXPECT_EQ("", Bytes(zel_string("abcdef").Mid(2, 1)));
}

TEST(ZelString, LeftOfNegativeIsEmpty)
{
    EXPECT_EQ("", Bytes(zel_string("abcdef").Left(-1)));
}

TEST(ZelString, LeftAndRight)
{
    zel_string S("abcdef");
    EXPECT_EQ("abc", Bytes(S.Left(3)));
    EXPECT_EQ("", Bytes(S.Left(0)));
    EXPECT_EQ("abcdef", Bytes(S.Left(6)));
    EXPECT_EQ("abcdef", Bytes(S.Left(100)));
    EXPECT_EQ("def", Bytes(S.Right(3)));
    EXPECT_EQ("", Bytes(S.Right(0)));
    EXPECT_EQ("", Bytes(S.Right(-2)));
    EXPECT_EQ("abcdef", Bytes(S.Right(100)));
}

TEST(ZelString, MidClamps)
{
    zel_string S("abcdef");
    EXPECT_EQ("bcd", Bytes(S.Mid(1, 3)));
    EXPECT_EQ("c", Bytes(S.Mid(2, 2)));
    EXPECT_EQ("abc", Bytes(S.Mid(-5, 2)));
    EXPECT_EQ("def", Bytes(S.Mid(3, 99)));
    EXPECT_EQ("abcdef", Bytes(S.Mid(-1, 99)));
    EXPECT_EQ("", Bytes(S.Mid(6, 8)));
    EXPECT_EQ("", Bytes(S.Mid(-3, -1)));
    EXPECT_EQ("", Bytes(zel_string().Mid(0, 0)));
}

TEST(ZelString, LeftOfAndRightOf)
{
    zel_string S("key=value=more");
    EXPECT_EQ("key", Bytes(S.LeftOf('=')));
    EXPECT_EQ("key=value", Bytes(S.LeftOf('=', 4)));
    EXPECT_EQ("key=value=more", Bytes(S.LeftOf('#')));
    EXPECT_EQ("value=more", Bytes(S.RightOf('=')));
    EXPECT_EQ("more", Bytes(S.RightOf('=', 4)));
    EXPECT_EQ("", Bytes(S.RightOf('#')));
    EXPECT_EQ("alue=more", Bytes(S.RightOf(4)));
    EXPECT_EQ("", Bytes(S.RightOf(13)));
    EXPECT_EQ("", Bytes(S.RightOf(50)));
    EXPECT_EQ("key=value=more", Bytes(S.RightOf(-1)));
    EXPECT_EQ("", Bytes(zel_string("abc=").RightOf('=')));
}

TEST(ZelString, TrimCutsBytesAbove127AtTheEnds)
{
    // "é" is C3 A9 in UTF-8; both bytes are negative as signed chars, so Trim takes them as white space.
    EXPECT_EQ("caf", Bytes(zel_string("caf\xC3\xA9").Trim()));
    EXPECT_EQ("x", Bytes(zel_string("\xC3\xA9x\xC3\xA9").Trim()));
    EXPECT_EQ("a\xC3\xA9z", Bytes(zel_string(" a\xC3\xA9z ").Trim()));
}

TEST(ZelString, Trim)
{
    EXPECT_EQ("a b", Bytes(zel_string("  a b \t\r\n").Trim()));
    EXPECT_EQ("", Bytes(zel_string("   ").Trim()));
    EXPECT_EQ("", Bytes(zel_string().Trim()));
    EXPECT_EQ("x", Bytes(zel_string("\0\x01x\x1F \0", 6).Trim()));
    EXPECT_EQ("!x!", Bytes(zel_string("!x!").Trim()));
}

TEST(ZelString, UpperAndLower)
{
    EXPECT_EQ("ABC1-Z\xC3", Bytes(zel_string("aBc1-z\xC3").ToUpper()));
    EXPECT_EQ("abc1-z\xC3", Bytes(zel_string("aBc1-Z\xC3").ToLower()));
    EXPECT_EQ(std::string("A\0B", 3), Bytes(zel_string("a\0b", 3).ToUpper()));
}

TEST(ZelString, PadLeft)
{
    EXPECT_EQ("0007", Bytes(zel_string("7").PadLeft(4, '0')));
    EXPECT_EQ("1234", Bytes(zel_string("1234").PadLeft(4, '0')));
    EXPECT_EQ("12345", Bytes(zel_string("12345").PadLeft(4, '0')));
    EXPECT_EQ("**", Bytes(zel_string().PadLeft(2, '*')));
}

TEST(ZelString, RemoveCarriageReturns)
{
    zel_string S = zel_string("a\r\nb\r\r\nc\r").RemoveCarriageReturns();
    EXPECT_EQ("a\nb\nc", Bytes(S));
    EXPECT_EQ(0, S.GetString()[S.GetLength()]);
    EXPECT_EQ(0, S.GetString()[S.GetLength() + 1]);
    EXPECT_EQ("", Bytes(zel_string("\r\r").RemoveCarriageReturns()));
}

TEST(ZelString, ReplaceCharacter)
{
    zel_string S("a.b.c");
    S.ReplaceCharacter('.', '/');
    EXPECT_EQ("a/b/c", Bytes(S));
    S.ReplaceCharacter('x', 'y');
    EXPECT_EQ("a/b/c", Bytes(S));
}

TEST(ZelString, Replace)
{
    EXPECT_EQ("a-b-c", Bytes(zel_string("a, b, c").Replace(zel_string(", "), zel_string("-"))));
    EXPECT_EQ("bb", Bytes(zel_string("aaaa").Replace(zel_string("aa"), zel_string("b"))));
    EXPECT_EQ("bba", Bytes(zel_string("aaaaa").Replace(zel_string("aa"), zel_string("b"))));
    EXPECT_EQ("<<x>>", Bytes(zel_string("<x>").Replace(zel_string("<"), zel_string("<<")).Replace(zel_string(">"), zel_string(">>"))));
    EXPECT_EQ("abc", Bytes(zel_string("abc").Replace(zel_string("z"), zel_string("y"))));
    EXPECT_EQ("ac", Bytes(zel_string("abc").Replace(zel_string("b"), zel_string())));
    EXPECT_EQ("abc", Bytes(zel_string("abc").Replace(zel_string(), zel_string("y"))));
    EXPECT_EQ("ABC", Bytes(zel_string("abc").Replace(zel_string("abc"), zel_string("ABC"))));
}

TEST(ZelString, ReplaceDoesNotMatchAcrossZeroBytes)
{
    zel_string Binary("a\0b a\0b", 7);
    EXPECT_EQ(std::string("a\0b a\0b", 7), Bytes(Binary.Replace(zel_string("a\0b", 3), zel_string("X"))));
    EXPECT_EQ(std::string("A\0b A\0b", 7), Bytes(Binary.Replace(zel_string("a"), zel_string("A"))));
    EXPECT_EQ(std::string("a\0b-a\0b", 7), Bytes(Binary.Replace(zel_string(" "), zel_string("-"))));
}

TEST(ZelString, Split)
{
    array<zel_string> Pieces;
    zel_string("a,bc,,d,").Split(',', Pieces);
    ASSERT_EQ(5, Pieces.GetNumberOfElements());
    EXPECT_EQ("a", Piece(Pieces, 0));
    EXPECT_EQ("bc", Piece(Pieces, 1));
    EXPECT_EQ("", Piece(Pieces, 2));
    EXPECT_EQ("d", Piece(Pieces, 3));
    EXPECT_EQ("", Piece(Pieces, 4));
}

TEST(ZelString, SplitAppendsAndKeepsWholeWithoutSeparator)
{
    array<zel_string> Pieces;
    Pieces.Add(zel_string("before"));
    zel_string("no separator").Split(',', Pieces);
    ASSERT_EQ(2, Pieces.GetNumberOfElements());
    EXPECT_EQ("before", Piece(Pieces, 0));
    EXPECT_EQ("no separator", Piece(Pieces, 1));
}

TEST(ZelString, SplitOfEmptyGivesOneEmptyPiece)
{
    array<zel_string> Pieces;
    zel_string().Split(',', Pieces);
    ASSERT_EQ(1, Pieces.GetNumberOfElements());
    EXPECT_EQ("", Piece(Pieces, 0));
}

TEST(ZelString, SplitOfSeparatorOnlyGivesTwoEmptyPieces)
{
    array<zel_string> Pieces;
    zel_string("\n").Split('\n', Pieces);
    ASSERT_EQ(2, Pieces.GetNumberOfElements());
    EXPECT_EQ("", Piece(Pieces, 0));
    EXPECT_EQ("", Piece(Pieces, 1));
}
