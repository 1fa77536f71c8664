#include <gtest/gtest.h>
#include <gmock/gmock.h>

#include <string>

#include "zel_basics/zel_error.h"
#include "zel_basics/zel_text_buffer.h"

namespace {

std::string Bytes(const zel_string &S)
{
    return std::string(S.GetString(), static_cast<size_t>(S.GetLength()));
}

} // namespace

TEST(ZelTextBuffer, StartsEmptyWithoutBlock)
{
    zel_text_buffer Buffer;
    EXPECT_EQ(nullptr, Buffer.GetData());
    EXPECT_EQ(0, Buffer.GetLength());
    EXPECT_EQ(0, Buffer.GetReservedSize());
}

TEST(ZelTextBuffer, GrowsToTwiceTheNeedPlusOne)
{
    zel_text_buffer Buffer;
    Buffer.Append("abc", 3);
    EXPECT_EQ(3, Buffer.GetLength());
    EXPECT_EQ(7, Buffer.GetReservedSize());
    Buffer.Append("defg", 4);
    EXPECT_EQ(7, Buffer.GetReservedSize());
    Buffer.Append("h", 1);
    EXPECT_EQ(8, Buffer.GetLength());
    EXPECT_EQ(17, Buffer.GetReservedSize());
    EXPECT_EQ("abcdefgh", std::string(Buffer.GetData(), 8));
}

TEST(ZelTextBuffer, GrowKeepsContentAndNeverShrinks)
{
    zel_text_buffer Buffer;
    Buffer.Append("xy", 2);
    Buffer.Grow(100);
    EXPECT_EQ(201, Buffer.GetReservedSize());
    EXPECT_EQ(2, Buffer.GetLength());
    EXPECT_EQ("xy", std::string(Buffer.GetData(), 2));
    Buffer.Grow(10);
    EXPECT_EQ(201, Buffer.GetReservedSize());
}

TEST(ZelTextBuffer, NegativeNeedAsserts)
{
    zel_text_buffer Buffer;
    try
    {
        Buffer.Grow(-1);
        ADD_FAILURE() << "no zel_error";
    }
    catch (const zel_error &Error)
    {
        EXPECT_THAT(Bytes(Error.GetMessage()), testing::HasSubstr("'Len>=0' is false"));
    }
}

TEST(ZelTextBuffer, BytesWithZerosSurvive)
{
    zel_text_buffer Buffer;
    Buffer.Append("a\0b", 3);
    Buffer.Append("\0", 1);
    EXPECT_EQ(std::string("a\0b\0", 4), std::string(Buffer.GetData(), 4));
}

TEST(ZelTextBuffer, TakeStringMovesTheBlockAndEmpties)
{
    zel_text_buffer Buffer;
    Buffer.Append("reply", 5);
    const char *Block = Buffer.GetData();
    zel_string Reply = Buffer.TakeString();
    EXPECT_EQ(Block, Reply.GetString());
    EXPECT_EQ("reply", Bytes(Reply));
    EXPECT_EQ(0, Reply.GetString()[5]);
    EXPECT_EQ(0, Reply.GetString()[6]);
    EXPECT_EQ(nullptr, Buffer.GetData());
    EXPECT_EQ(0, Buffer.GetLength());
    EXPECT_EQ(0, Buffer.GetReservedSize());
}

TEST(ZelTextBuffer, TakeStringOfNothingGivesEmptyStringWithBlock)
{
    zel_text_buffer Buffer;
    zel_string Reply = Buffer.TakeString();
    EXPECT_EQ(0, Reply.GetLength());
    ASSERT_NE(nullptr, Reply.GetString());
    EXPECT_EQ(0, Reply.GetString()[0]);
    EXPECT_EQ(0, Reply.GetString()[1]);
}

TEST(ZelTextBuffer, TerminateWritesZeroBehindTheText)
{
    zel_text_buffer Buffer;
    Buffer.Append("abcd", 4);
    Buffer.Append("e", 1);
    Buffer.Terminate();
    EXPECT_EQ(5, Buffer.GetLength());
    EXPECT_EQ(0, Buffer.GetData()[5]);
    EXPECT_EQ(0, Buffer.GetData()[6]);
}

TEST(ZelTextBuffer, BufferCanBeReusedAfterTaking)
{
    zel_text_buffer Buffer;
    Buffer.Append("one", 3);
    zel_string First = Buffer.TakeString();
    Buffer.Append("two", 3);
    zel_string Second = Buffer.TakeString();
    EXPECT_EQ("one", Bytes(First));
    EXPECT_EQ("two", Bytes(Second));
}
