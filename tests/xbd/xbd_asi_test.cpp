#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <random>
#include <vector>

#include "tests/xbd/xbd_binary_test_support.h"
#include "xbd/xbd_asi.h"

using namespace xbd_test;

namespace {

bytes Written(uint32_t Value)
{
    std::vector<char> Buffer(8, 0x55);
    char *End = WriteASI(Buffer.data(), Value);
    return bytes(Buffer.data(), End);
}

// Reads one ASI from a block of exactly Data's size, so that a read past the end is a sanitizer report.
uint32_t Read(const bytes &Data, size_t *Consumed = nullptr)
{
    std::vector<char> Block(Data.begin(), Data.end());
    const char *D = Block.data();
    uint32_t Value = ReadASI(D, Block.data() + Block.size());
    if (Consumed != nullptr)
        *Consumed = static_cast<size_t>(D - Block.data());
    return Value;
}

TEST(xbd_asi, Value308IsB402)
{
    EXPECT_EQ(Hex("b4 02"), Written(308));
    EXPECT_EQ(2, GetASILength(308));
    EXPECT_EQ(308u, Read(Hex("b4 02")));
}

TEST(xbd_asi, ShortestFormsAtTheGroupBoundaries)
{
    EXPECT_EQ(Hex("00"), Written(0));
    EXPECT_EQ(Hex("01"), Written(1));
    EXPECT_EQ(Hex("7f"), Written(127));
    EXPECT_EQ(Hex("80 01"), Written(128));
    EXPECT_EQ(Hex("ff 7f"), Written(16383));
    EXPECT_EQ(Hex("80 80 01"), Written(16384));
    EXPECT_EQ(Hex("ff ff 7f"), Written(2097151));
    EXPECT_EQ(Hex("80 80 80 01"), Written(2097152));
    EXPECT_EQ(Hex("80 80 80 80 01"), Written(268435456));
    EXPECT_EQ(Hex("ff ff ff ff 0f"), Written(0xFFFFFFFFu));
}

TEST(xbd_asi, LengthCountsSevenBitGroupsAndIsAtLeastOne)
{
    EXPECT_EQ(1, GetASILength(0));
    EXPECT_EQ(1, GetASILength(127));
    EXPECT_EQ(2, GetASILength(128));
    EXPECT_EQ(2, GetASILength(16383));
    EXPECT_EQ(3, GetASILength(16384));
    EXPECT_EQ(3, GetASILength(20000));
    EXPECT_EQ(4, GetASILength(2097152));
    EXPECT_EQ(4, GetASILength(268435455));
    EXPECT_EQ(5, GetASILength(268435456));
    EXPECT_EQ(5, GetASILength(0xFFFFFFFFu));
}

TEST(xbd_asi, WriterAndReaderAgreeWithTheReferenceEncoding)
{
    std::mt19937 Random(308);
    std::vector<uint32_t> Values = {0, 1, 127, 128, 255, 256, 16383, 16384, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu};
    for (int I = 0; I < 5000; I++)
        Values.push_back(Random() >> (Random() % 32));
    for (uint32_t Value : Values) {
        bytes Expected = ASI(Value);
        ASSERT_EQ(Expected, Written(Value)) << Value;
        ASSERT_EQ(static_cast<int>(Expected.size()), GetASILength(Value)) << Value;
        size_t Consumed = 0;
        ASSERT_EQ(Value, Read(Expected, &Consumed)) << Value;
        ASSERT_EQ(Expected.size(), Consumed) << Value;
    }
}

TEST(xbd_asi, ReaderStopsAfterTheLastByteOfTheASI)
{
    size_t Consumed = 0;
    EXPECT_EQ(308u, Read(Hex("b4 02 7f 7f"), &Consumed));
    EXPECT_EQ(2u, Consumed);
}

TEST(xbd_asi, NonShortestFormsAreAccepted)
{
    size_t Consumed = 0;
    EXPECT_EQ(0u, Read(Hex("80 00"), &Consumed));
    EXPECT_EQ(2u, Consumed);
    EXPECT_EQ(0u, Read(Hex("80 80 80 80 00"), &Consumed));
    EXPECT_EQ(5u, Consumed);
    EXPECT_EQ(127u, Read(Hex("ff 80 00"), &Consumed));
    EXPECT_EQ(3u, Consumed);
    EXPECT_EQ(308u, Read(Hex("b4 82 80 00"), &Consumed));
    EXPECT_EQ(4u, Consumed);
}

TEST(xbd_asi, FifthByteGroupIsAddedInThirtyTwoBits)
{
    // 0x7f << 28 keeps only its low four bits in 32 bits; 0x10 << 28 loses everything.
    EXPECT_EQ(0xFFFFFFFFu, Read(Hex("ff ff ff ff 7f")));
    EXPECT_EQ(0u, Read(Hex("80 80 80 80 10")));
    EXPECT_EQ(0x10000001u, Read(Hex("81 80 80 80 11")));
}

TEST(xbd_asi, FifthByteWithBit7IsRefusedWithTheSignedLastByte)
{
    EXPECT_EQ("Invalid ASI - exceeded MaxLength=0 Value at Error=-128", ZEL_ERROR_MESSAGE(Read(Hex("80 80 80 80 80"))));
    EXPECT_EQ("Invalid ASI - exceeded MaxLength=0 Value at Error=-1", ZEL_ERROR_MESSAGE(Read(Hex("ff ff ff ff ff"))));
    EXPECT_EQ("Invalid ASI - exceeded MaxLength=0 Value at Error=-127",
              ZEL_ERROR_MESSAGE(Read(Hex("81 81 81 81 81 00"))));
    EXPECT_EQ("Invalid ASI - exceeded MaxLength=0 Value at Error=-2", ZEL_ERROR_MESSAGE(Read(Hex("80 80 80 80 fe 01"))));
}

TEST(xbd_asi, ASICutOffByTheEndOfTheRangeIsRefused)
{
    EXPECT_EQ("Unexpected end of XBD data.", ZEL_ERROR_MESSAGE(Read(bytes())));
    EXPECT_EQ("Unexpected end of XBD data.", ZEL_ERROR_MESSAGE(Read(Hex("80"))));
    EXPECT_EQ("Unexpected end of XBD data.", ZEL_ERROR_MESSAGE(Read(Hex("ff ff ff ff"))));
}

TEST(xbd_asi, ByteBufferBecomesAStringOfItsLength)
{
    xbd_byte_buffer Buffer(5);
    std::memcpy(Buffer.GetData(), "a\0b\xff" "c", 5);
    zel_string Text = Buffer.TakeString();
    EXPECT_EQ(Hex("61 00 62 ff 63"), FromZel(Text));
    EXPECT_EQ(0, Text.GetString()[5]);
}

} // namespace
