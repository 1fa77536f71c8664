#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "tests/xbd/xbd_binary_test_support.h"
#include "xbd/xbd_dictionary.h"

using namespace xbd_test;
using testing::HasSubstr;

namespace {

// A dictionary block as the file holds it, without its DictionarySize.
bytes BlockBody(const std::vector<std::string> &Names)
{
    bytes Block = EncodeDictionary(Names);
    return bytes(Block.begin() + static_cast<long>(ASI(static_cast<uint32_t>(Block.size())).size()), Block.end());
}

bytes LittleEndian(uint32_t Value, int Size)
{
    bytes Result;
    for (int I = 0; I < Size; I++)
        Result.push_back(static_cast<uint8_t>(Value >> (8 * I)));
    return Result;
}

// The fixed-width layout: 32-bit total size, 16-bit count, 16-bit lengths, entries.
bytes FixedWidthBlock(const std::vector<std::string> &Names)
{
    bytes Lengths;
    bytes Entries;
    for (const std::string &Name : Names) {
        Lengths = Lengths + LittleEndian(static_cast<uint32_t>(Name.size()), 2);
        Entries = Entries + Bytes(Name);
    }
    uint32_t Total = static_cast<uint32_t>(6 + Lengths.size() + Entries.size());
    return LittleEndian(Total, 4) + LittleEndian(static_cast<uint32_t>(Names.size()), 2) + Lengths + Entries;
}

std::string ParseMessage(const bytes &Block, int Layout)
{
    return ZEL_ERROR_MESSAGE(xbd_dictionary Dictionary(ToZel(Block), Layout));
}

TEST(xbd_dictionary, EmptyDictionaryIsOneCountOfZero)
{
    xbd_dictionary Dictionary;
    EXPECT_EQ(0, Dictionary.GetNumberOfNames());
    EXPECT_EQ(1, Dictionary.GetBinarySize());
    EXPECT_EQ(Hex("01 00"), FromZel(Dictionary.GetBinaryDictionary()));
}

TEST(xbd_dictionary, NamesAreNumberedInTheOrderOfFirstAddition)
{
    xbd_dictionary Dictionary;
    EXPECT_EQ(0, Dictionary.AddName("RootTag"));
    EXPECT_EQ(1, Dictionary.AddName("shelf"));
    EXPECT_EQ(0, Dictionary.AddName("RootTag"));
    EXPECT_EQ(2, Dictionary.AddName("book"));
    EXPECT_EQ(3, Dictionary.GetNumberOfNames());
    EXPECT_EQ(1, Dictionary.GetNameNum("shelf"));
    EXPECT_EQ(zel_string("book"), Dictionary.GetName(2));
}

TEST(xbd_dictionary, GetNameNumOfAnAbsentNameIsMinusOneAndAddsNothing)
{
    xbd_dictionary Dictionary;
    Dictionary.AddName("width");
    EXPECT_EQ(-1, Dictionary.GetNameNum("height"));
    EXPECT_EQ(1, Dictionary.GetNumberOfNames());
    EXPECT_EQ(Hex("07 01 05") + Bytes("width"), FromZel(Dictionary.GetBinaryDictionary()));
}

TEST(xbd_dictionary, GetNameOutOfRangeFailsTheAssertions)
{
    xbd_dictionary Dictionary;
    Dictionary.AddName("a");
    EXPECT_THAT(ZEL_ERROR_MESSAGE(Dictionary.GetName(-1)), HasSubstr("'NameNum>=0' is false"));
    EXPECT_THAT(ZEL_ERROR_MESSAGE(Dictionary.GetName(1)),
                HasSubstr("'NameNum<Names.GetNumberOfElements()' is false"));
    EXPECT_THAT(ZEL_ERROR_MESSAGE(Dictionary.CheckNameNum(1)),
                HasSubstr("'NameNum<Names.GetNumberOfElements()' is false"));
}

TEST(xbd_dictionary, BlockOfTheExampleTagNames)
{
    xbd_dictionary Dictionary;
    Dictionary.AddName("RootTag");
    Dictionary.AddName("shelf");
    Dictionary.AddName("book");
    EXPECT_EQ(20, Dictionary.GetBinarySize());
    EXPECT_EQ(Hex("14 03 07 05 04 52 6f 6f 74 54 61 67 73 68 65 6c 66 62 6f 6f 6b"),
              FromZel(Dictionary.GetBinaryDictionary()));
}

TEST(xbd_dictionary, ParsedBlockKeepsOrderNumbersAndBytes)
{
    bytes Body = BlockBody({"width", "label", "x"});
    xbd_dictionary Dictionary(ToZel(Body), 1);
    ASSERT_EQ(3, Dictionary.GetNumberOfNames());
    EXPECT_EQ(zel_string("width"), Dictionary.GetName(0));
    EXPECT_EQ(zel_string("label"), Dictionary.GetName(1));
    EXPECT_EQ(zel_string("x"), Dictionary.GetName(2));
    EXPECT_EQ(2, Dictionary.GetNameNum("x"));
    EXPECT_EQ(EncodeDictionary({"width", "label", "x"}), FromZel(Dictionary.GetBinaryDictionary()));
    EXPECT_EQ(3, Dictionary.AddName("y"));
}

TEST(xbd_dictionary, RepeatedEntriesBothStayAndTheMapHoldsTheLaterNumber)
{
    xbd_dictionary Dictionary(ToZel(BlockBody({"a", "b", "a"})), 1);
    ASSERT_EQ(3, Dictionary.GetNumberOfNames());
    EXPECT_EQ(zel_string("a"), Dictionary.GetName(0));
    EXPECT_EQ(zel_string("a"), Dictionary.GetName(2));
    EXPECT_EQ(2, Dictionary.GetNameNum("a"));
    EXPECT_EQ(2, Dictionary.AddName("a"));
    EXPECT_EQ(3, Dictionary.GetNumberOfNames());
    EXPECT_EQ(EncodeDictionary({"a", "b", "a"}), FromZel(Dictionary.GetBinaryDictionary()));
}

TEST(xbd_dictionary, EntryRunningPastTheBlockFailsTheAssertion)
{
    // Two names of 3 and 4 bytes, but only 6 bytes of entries.
    bytes Body = Hex("02 03 04") + Bytes("abcdef");
    EXPECT_THAT(ParseMessage(Body, 1), HasSubstr("'(D-Data)+Lengths[I]<=BinaryDictionary.GetLength()' is false"));
}

TEST(xbd_dictionary, BytesLeftAfterTheEntriesFailTheAssertion)
{
    bytes Body = Hex("01 02") + Bytes("abc");
    EXPECT_THAT(ParseMessage(Body, 1), HasSubstr("'(D-Data)==BinaryDictionary.GetLength()' is false"));
}

TEST(xbd_dictionary, LengthsCutOffByTheEndOfTheBlockAreRefused)
{
    EXPECT_EQ("Unexpected end of XBD data.", ParseMessage(Hex("03 01 02"), 1));
    EXPECT_EQ("Unexpected end of XBD data.", ParseMessage(Hex("01 80"), 1));
    EXPECT_EQ("Unexpected end of XBD data.", ParseMessage(bytes(), 1));
}

TEST(xbd_dictionary, HugeCountInAFewBytesIsRefused)
{
    EXPECT_EQ("Unexpected end of XBD data.", ParseMessage(Hex("ff ff ff ff 0f 00 00"), 1));
}

TEST(xbd_dictionary, EmptyEntryIsAnEntry)
{
    xbd_dictionary Dictionary;
    EXPECT_EQ(0, Dictionary.AddName("v"));
    EXPECT_EQ(1, Dictionary.AddName(""));
    EXPECT_EQ(1, Dictionary.GetNameNum(""));
    EXPECT_EQ(Hex("04 02 01 00 76"), FromZel(Dictionary.GetBinaryDictionary()));
    xbd_dictionary Parsed(ToZel(Hex("02 01 00 76")), 1);
    EXPECT_EQ(zel_string(""), Parsed.GetName(1));
    EXPECT_EQ(1, Parsed.GetNameNum(""));
}

TEST(xbd_dictionary, EntryLongerThan127BytesHasATwoByteLength)
{
    std::string Name(128, 'n');
    xbd_dictionary Dictionary;
    Dictionary.AddName(zel_string(Name.data(), 128));
    // 128 bytes, one for the count, two for the length.
    EXPECT_EQ(131, Dictionary.GetBinarySize());
    EXPECT_EQ(Hex("83 01 01 80 01") + Bytes(Name), FromZel(Dictionary.GetBinaryDictionary()));
}

TEST(xbd_dictionary, JpegSizedValueHasAThreeByteLength)
{
    bytes Jpeg(20000);
    for (size_t I = 0; I < Jpeg.size(); I++)
        Jpeg[I] = static_cast<uint8_t>(I * 7 + 0xd8);
    Jpeg[0] = 0xff;
    Jpeg[1] = 0xd8;
    Jpeg[100] = 0;
    xbd_dictionary Dictionary;
    Dictionary.AddName(ToZel(Jpeg));
    // 20000 is a0 9c 01; the block is 20000 + 1 + 3 = 20004 bytes, a4 9c 01.
    EXPECT_EQ(20004, Dictionary.GetBinarySize());
    bytes Block = FromZel(Dictionary.GetBinaryDictionary());
    EXPECT_EQ(Hex("a4 9c 01 01 a0 9c 01") + Jpeg, Block);
    xbd_dictionary Parsed(ToZel(bytes(Block.begin() + 3, Block.end())), 1);
    EXPECT_EQ(Jpeg, FromZel(Parsed.GetName(0)));
}

TEST(xbd_dictionary, BinaryEntriesAreComparedByEveryByte)
{
    xbd_dictionary Dictionary;
    EXPECT_EQ(0, Dictionary.AddName(ToZel(Hex("61 00 62"))));
    EXPECT_EQ(1, Dictionary.AddName(ToZel(Hex("61 00 63"))));
    EXPECT_EQ(2, Dictionary.AddName(ToZel(Hex("61"))));
    EXPECT_EQ(3, Dictionary.AddName(ToZel(Hex("ff fe 80"))));
    EXPECT_EQ(1, Dictionary.GetNameNum(ToZel(Hex("61 00 63"))));
    EXPECT_EQ(Hex("61 00 62"), FromZel(Dictionary.GetName(0)));
    EXPECT_EQ(Hex("ff fe 80"), FromZel(Dictionary.GetName(3)));
}

TEST(xbd_dictionary, BlockOfTenMebibytesIsRefusedAndOneByteLessIsWritten)
{
    // One entry of L bytes makes a block of L + 1 + 4 bytes.
    const int Limit = 10 * 1024 * 1024;
    xbd_dictionary Below;
    Below.AddName(zel_string('x', Limit - 6));
    EXPECT_EQ(Limit - 1, Below.GetBinarySize());
    EXPECT_EQ(Limit - 1 + 4, Below.GetBinaryDictionary().GetLength());
    xbd_dictionary AtLimit;
    AtLimit.AddName(zel_string('x', Limit - 5));
    EXPECT_THAT(ZEL_ERROR_MESSAGE(AtLimit.GetBinarySize()), HasSubstr("'TotalSize<10*1024*1024' is false"));
    EXPECT_THAT(ZEL_ERROR_MESSAGE(AtLimit.GetBinaryDictionary()), HasSubstr("'TotalSize<10*1024*1024' is false"));
}

TEST(xbd_dictionary, ManyNamesKeepTheirBytesAndNumbersThroughGrowth)
{
    std::vector<std::string> Names;
    for (int I = 0; I < 3000; I++)
        Names.push_back("name" + std::to_string(I * 7919));
    xbd_dictionary Loaded(ToZel(BlockBody(std::vector<std::string>(Names.begin(), Names.begin() + 1000))), 1);
    for (int I = 1000; I < 3000; I++)
        ASSERT_EQ(I, Loaded.AddName(zel_string(Names[I].c_str())));
    for (int I = 0; I < 3000; I++) {
        ASSERT_EQ(Names[I], ToStdString(Loaded.GetName(I)));
        ASSERT_EQ(I, Loaded.GetNameNum(zel_string(Names[I].c_str())));
    }
    EXPECT_EQ(EncodeDictionary(Names), FromZel(Loaded.GetBinaryDictionary()));
}

TEST(xbd_dictionary, FixedWidthLayoutIsParsed)
{
    xbd_dictionary Dictionary(ToZel(FixedWidthBlock({"alpha", "beta", ""})), 0);
    ASSERT_EQ(3, Dictionary.GetNumberOfNames());
    EXPECT_EQ(zel_string("alpha"), Dictionary.GetName(0));
    EXPECT_EQ(zel_string("beta"), Dictionary.GetName(1));
    EXPECT_EQ(zel_string(""), Dictionary.GetName(2));
    EXPECT_EQ(1, Dictionary.GetNameNum("beta"));
    EXPECT_EQ(EncodeDictionary({"alpha", "beta", ""}), FromZel(Dictionary.GetBinaryDictionary()));
}

TEST(xbd_dictionary, FixedWidthTotalSizeMustBeTheBlockLength)
{
    bytes Block = FixedWidthBlock({"alpha", "beta"});
    Block[0]++;
    EXPECT_THAT(ParseMessage(Block, 0), HasSubstr("'TotalSize==BinaryDictionary.GetLength()' is false"));
}

TEST(xbd_dictionary, FixedWidthCountMustLeaveRoom)
{
    // Two names of one byte: 12 bytes, and 2 * 6 is not below 12.
    EXPECT_THAT(ParseMessage(FixedWidthBlock({"a", "b"}), 0),
                HasSubstr("'NumNames*(int)(sizeof(short)+4) < TotalSize' is false"));
}

TEST(xbd_dictionary, FixedWidthLengthMustLieInsideTheBlock)
{
    EXPECT_THAT(ParseMessage(Hex("07 00 00 00 01 00 05"), 0), HasSubstr("'Pos+1<TotalSize' is false"));
}

TEST(xbd_dictionary, FixedWidthEntryMustLieInsideTheBlock)
{
    EXPECT_THAT(ParseMessage(Hex("09 00 00 00 01 00 05 00 41"), 0),
                HasSubstr("'ValOffset+ValLen <= TotalSize' is false"));
}

TEST(xbd_dictionary, FixedWidthEntriesMustFillTheBlock)
{
    EXPECT_THAT(ParseMessage(Hex("0a 00 00 00 01 00 01 00 41 42"), 0), HasSubstr("'ValOffset==TotalSize' is false"));
}

TEST(xbd_dictionary, FixedWidthBlockTooShortForItsSizesIsRefused)
{
    EXPECT_EQ("Unexpected end of XBD data.", ParseMessage(Hex("05 00 00 00 00"), 0));
    EXPECT_EQ("Unexpected end of XBD data.", ParseMessage(bytes(), 0));
}

TEST(xbd_dictionary, LayoutSelectorOtherThanZeroOrOneFails)
{
    EXPECT_THAT(ParseMessage(BlockBody({"a"}), 2), HasSubstr("'false' is false"));
    EXPECT_THAT(ParseMessage(BlockBody({"a"}), -1), HasSubstr("'false' is false"));
}

} // namespace
