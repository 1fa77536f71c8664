#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <exception>
#include <string>

#include "rofa_lib/zel_memory_read_stream.h"
#include "rofa_lib/zel_stream.h"
#include "tests/rofa_lib/stream_test_support.h"
#include "tests/test_support.h"

namespace {

// Holds some bytes in Buffer, as a buffering reader would, and gives the rest from a second source
// through ReadDirect, so that the two paths of ReadData can be told apart.
class split_read_stream : public zel_read_stream
{
public:
    split_read_stream(const std::string &Buffered, const std::string &Direct) : Direct(Direct)
    {
        Buffer.SetNumberOfElements(static_cast<int>(Buffered.size()), 0);
        if (!Buffered.empty())
            std::memcpy(Buffer.GetData(), Buffered.data(), Buffered.size());
        BufferFilled = static_cast<int>(Buffered.size());
        CurrentBufferPosition = 0;
    }

    int ReadDirect(void *Target, int Count) override
    {
        DirectRequests += std::to_string(Count) + " ";
        int Given = std::min(Count, static_cast<int>(Direct.size() - DirectPosition));
        std::memcpy(Target, Direct.data() + DirectPosition, static_cast<size_t>(Given));
        DirectPosition += static_cast<size_t>(Given);
        return Given;
    }

    std::string Direct;
    size_t DirectPosition = 0;
    std::string DirectRequests;
};

// Collects small writes in Buffer, as a buffering writer would, and records what reaches WriteDirect
// call by call.
class queueing_write_stream : public zel_write_stream
{
public:
    void Queue(const std::string &Text)
    {
        Buffer.SetNumberOfElements(CurrentBufferPosition + static_cast<int>(Text.size()), 0);
        std::memcpy(Buffer.GetData() + CurrentBufferPosition, Text.data(), Text.size());
        CurrentBufferPosition += static_cast<int>(Text.size());
    }

    void WriteDirect(const void *Data, int Count) override
    {
        Calls += "[" + std::string(static_cast<const char *>(Data), static_cast<size_t>(Count)) + "]";
    }

    std::string Calls;
};

} // namespace

TEST(ZelMemoryReadStream, ReadsTheBytesInOrder)
{
    zel_memory_read_stream Stream(Z("abcdefgh"));
    EXPECT_EQ("abc", Read(Stream, 3));
    EXPECT_EQ(5, Stream.GetBytesLeft());
    EXPECT_EQ("de", Read(Stream, 2));
    EXPECT_EQ("fgh", Read(Stream, 3));
    EXPECT_EQ(0, Stream.GetBytesLeft());
}

TEST(ZelMemoryReadStream, ReadingZeroBytesAtTheEndSucceeds)
{
    zel_memory_read_stream Stream(Z("xy"));
    Read(Stream, 2);
    EXPECT_EQ("", Read(Stream, 0));
    EXPECT_EQ(0, Stream.GetBytesLeft());
}

TEST(ZelMemoryReadStream, ReadingZeroBytesFromAnEmptyStreamSucceeds)
{
    zel_memory_read_stream Stream(zel_string(""));
    EXPECT_EQ("", Read(Stream, 0));
    EXPECT_TRUE(Stream.ReadEndOfStream());
}

TEST(ZelMemoryReadStream, ReadingTenBytesWithFourLeftThrows)
{
    zel_memory_read_stream Stream(Z("0123456789"));
    Read(Stream, 6);
    char Target[10];
    EXPECT_EQ("zel_read_stream::ReadData() Attempted to read 10 bytes, but only 4 bytes could be read",
              ZEL_ERROR_MESSAGE(Stream.ReadData(Target, 10)));
    // The four that were there still arrived.
    EXPECT_EQ("6789", std::string(Target, 4));
    EXPECT_TRUE(Stream.ReadEndOfStream());
}

TEST(ZelMemoryReadStream, ZeroBytesAndBytesAbove127RoundTrip)
{
    std::string Data("\x00\x80\xFF\x00\x7F\xC3\xA9\x00", 8);
    zel_memory_read_stream Stream(Z(Data));
    EXPECT_EQ(Data.substr(0, 3), Read(Stream, 3));
    EXPECT_EQ(Data.substr(3), Read(Stream, 5));
}

TEST(ZelMemoryReadStream, EndOfStreamOnlyWhenEverythingIsRead)
{
    zel_memory_read_stream Stream(Z("ab"));
    EXPECT_FALSE(Stream.ReadEndOfStream());
    Read(Stream, 1);
    EXPECT_FALSE(Stream.ReadEndOfStream());
    Read(Stream, 1);
    EXPECT_TRUE(Stream.ReadEndOfStream());
}

TEST(ZelMemoryReadStream, ClearBufferSkipsToTheEnd)
{
    zel_memory_read_stream Stream(Z("abcdef"));
    Read(Stream, 2);
    Stream.ClearBuffer();
    EXPECT_EQ(0, Stream.GetBytesLeft());
    char Target[1];
    EXPECT_EQ("zel_read_stream::ReadData() Attempted to read 1 bytes, but only 0 bytes could be read",
              ZEL_ERROR_MESSAGE(Stream.ReadData(Target, 1)));
}

TEST(ZelMemoryReadStream, NamesItsSize)
{
    zel_memory_read_stream Stream(Z("abcde"));
    EXPECT_EQ("memory read stream of 5 bytes", ToStd(Stream.GetName()));
}

TEST(ZelMemoryReadStream, NegativeCountFailsAssertion)
{
    zel_memory_read_stream Stream(Z("abc"));
    char Target[1];
    EXPECT_NE(std::string::npos, ZEL_ERROR_MESSAGE(Stream.ReadData(Target, -1)).find("'Bytes>=0' is false"));
    EXPECT_EQ(3, Stream.GetBytesLeft());
}

TEST(ZelReadStream, ServesTheBufferFirstThenReadsTheRestDirectly)
{
    split_read_stream Stream("abc", "defgh");
    EXPECT_EQ("ab", Read(Stream, 2));
    EXPECT_EQ("", Stream.DirectRequests);
    // One byte is left in the buffer; the other three are asked of the source in one call.
    EXPECT_EQ("cdef", Read(Stream, 4));
    EXPECT_EQ("3 ", Stream.DirectRequests);
    EXPECT_EQ("gh", Read(Stream, 2));
    EXPECT_EQ("3 2 ", Stream.DirectRequests);
}

TEST(ZelReadStream, AReadThatFitsTheBufferExactlyDoesNotTouchTheSource)
{
    split_read_stream Stream("abc", "def");
    EXPECT_EQ("abc", Read(Stream, 3));
    EXPECT_EQ("", Stream.DirectRequests);
    EXPECT_EQ("", Read(Stream, 0));
    EXPECT_EQ("", Stream.DirectRequests);
}

TEST(ZelReadStream, ClearBufferDropsBufferedBytes)
{
    split_read_stream Stream("abc", "xyz");
    Read(Stream, 1);
    Stream.ClearBuffer();
    EXPECT_EQ("xy", Read(Stream, 2));
}

TEST(ZelReadStream, ShortReadCountsBufferedAndDirectBytes)
{
    split_read_stream Stream("abc", "de");
    char Target[10];
    EXPECT_EQ("zel_read_stream::ReadData() Attempted to read 10 bytes, but only 5 bytes could be read",
              ZEL_ERROR_MESSAGE(Stream.ReadData(Target, 10)));
    EXPECT_EQ("abcde", std::string(Target, 5));
    // The buffer was given out whole before the source was asked, so none of it comes again.
    EXPECT_EQ("zel_read_stream::ReadData() Attempted to read 1 bytes, but only 0 bytes could be read",
              ZEL_ERROR_MESSAGE(Stream.ReadData(Target, 1)));
}

TEST(ZelReadStream, EndOfStreamIsFalseByDefault)
{
    split_read_stream Stream("", "");
    EXPECT_FALSE(Stream.ReadEndOfStream());
}

TEST(ZelWriteStream, WriteDataPassesTheBytesOn)
{
    queueing_write_stream Stream;
    Stream.WriteData("hello", 5);
    Stream.WriteData("\x00\xFF", 2);
    EXPECT_EQ(std::string("[hello][\x00\xFF]", 11), Stream.Calls);
}

TEST(ZelWriteStream, WriteDataFlushesQueuedBytesFirst)
{
    queueing_write_stream Stream;
    Stream.Queue("ab");
    Stream.Queue("c");
    Stream.WriteData("XYZ", 3);
    EXPECT_EQ("[abc][XYZ]", Stream.Calls);
}

TEST(ZelWriteStream, FlushBufferWritesQueuedBytesOnce)
{
    queueing_write_stream Stream;
    Stream.Queue("abc");
    Stream.FlushBuffer();
    Stream.FlushBuffer();
    EXPECT_EQ("[abc]", Stream.Calls);
}

TEST(ZelWriteStream, FlushBufferWithNothingQueuedWritesNothing)
{
    queueing_write_stream Stream;
    Stream.FlushBuffer();
    EXPECT_EQ("", Stream.Calls);
}

TEST(ZelWriteStream, DestroyingAfterFlushIsSilent)
{
    auto *Stream = new queueing_write_stream;
    Stream->Queue("abc");
    Stream->FlushBuffer();
    EXPECT_NO_THROW(delete Stream);
}

TEST(ZelWriteStreamDeathTest, DestroyingWithUnflushedBytesFailsAssertion)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(
        {
            std::set_terminate(PrintZelErrorAndAbort);
            queueing_write_stream Stream;
            Stream.Queue("lost");
        },
        "'CurrentBufferPosition==0' is false");
}
