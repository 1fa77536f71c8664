#include <gtest/gtest.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <exception>
#include <string>
#include <unistd.h>

#include "rofa_lib/stdio_file_streams.h"
#include "tests/rofa_lib/stream_test_support.h"
#include "tests/test_support.h"

namespace {

std::string ErrorText(int Error)
{
    return std::strerror(Error);
}

bool HasDevFull()
{
    return access("/dev/full", W_OK) == 0;
}

// A stdio writer that collects small writes in Buffer before they reach the file.
class queueing_file_stream : public stdio_write_file_stream
{
public:
    void Queue(const std::string &Text)
    {
        Buffer.SetNumberOfElements(CurrentBufferPosition + static_cast<int>(Text.size()), 0);
        std::memcpy(Buffer.GetData() + CurrentBufferPosition, Text.data(), Text.size());
        CurrentBufferPosition += static_cast<int>(Text.size());
    }
};

class StdioFileStreams : public testing::Test
{
protected:
    temporary_folder Folder;
};

} // namespace

TEST_F(StdioFileStreams, WriteThenReadEveryByteValue)
{
    std::string Data = AllByteValues(1000);
    std::string Path = Folder / "bytes.bin";
    {
        stdio_write_file_stream Writer;
        Writer.CreateFile(Z(Path));
        Write(Writer, Data.substr(0, 300));
        Write(Writer, Data.substr(300));
        Writer.CloseFile();
    }
    EXPECT_EQ(Data, ReadFileBytes(Path));

    stdio_read_file_stream Reader;
    Reader.OpenFile(Z(Path));
    EXPECT_EQ(Data.substr(0, 1), Read(Reader, 1));
    EXPECT_EQ(Data.substr(1, 700), Read(Reader, 700));
    EXPECT_EQ(Data.substr(701), Read(Reader, 299));
    Reader.CloseFile();
}

TEST_F(StdioFileStreams, ReadingZeroBytesAtTheEndOfAFileSucceeds)
{
    std::string Path = Folder / "four.bin";
    WriteFileBytes(Path, "abcd");
    stdio_read_file_stream Reader;
    Reader.OpenFile(Z(Path));
    EXPECT_EQ("abcd", Read(Reader, 4));
    EXPECT_EQ("", Read(Reader, 0));
    EXPECT_EQ(4, Reader.GetPosition());
}

TEST_F(StdioFileStreams, ReadingTenBytesWithFourLeftThrows)
{
    std::string Path = Folder / "six.bin";
    WriteFileBytes(Path, "ab1234");
    stdio_read_file_stream Reader;
    Reader.OpenFile(Z(Path));
    Read(Reader, 2);
    char Target[10];
    EXPECT_EQ("zel_read_stream::ReadData() Attempted to read 10 bytes, but only 4 bytes could be read",
              ZEL_ERROR_MESSAGE(Reader.ReadData(Target, 10)));
    EXPECT_EQ("1234", std::string(Target, 4));
}

TEST_F(StdioFileStreams, EndOfStreamAfterReadingPastTheEnd)
{
    std::string Path = Folder / "two.bin";
    WriteFileBytes(Path, "ab");
    stdio_read_file_stream Reader;
    EXPECT_TRUE(Reader.ReadEndOfStream());
    Reader.OpenFile(Z(Path));
    EXPECT_FALSE(Reader.ReadEndOfStream());
    char Target[3];
    EXPECT_EQ("zel_read_stream::ReadData() Attempted to read 3 bytes, but only 2 bytes could be read",
              ZEL_ERROR_MESSAGE(Reader.ReadData(Target, 3)));
    EXPECT_TRUE(Reader.ReadEndOfStream());
    Reader.SeekRelativeToStart(0);
    EXPECT_FALSE(Reader.ReadEndOfStream());
    Reader.CloseFile();
    EXPECT_TRUE(Reader.ReadEndOfStream());
}

TEST_F(StdioFileStreams, OpeningAMissingFileThrowsWithTheSystemsWords)
{
    std::string Path = Folder / "missing.bin";
    stdio_read_file_stream Reader;
    EXPECT_EQ("stdio_read_file_stream::OpenFile() detected an error.\n"
              "   FileName:  '" + Path + "'\n"
              "   BytesRead: 0\n"
              "   Error: " + ErrorText(ENOENT) + "(" + std::to_string(ENOENT) + ")\n",
              ZEL_ERROR_MESSAGE(Reader.OpenFile(Z(Path))));
    EXPECT_EQ("No such file or directory(2)", ErrorText(ENOENT) + "(" + std::to_string(ENOENT) + ")");
    EXPECT_FALSE(Reader.IsFileOpen());
}

TEST_F(StdioFileStreams, CloseFileOnAClosedReadStreamFailsAssertion)
{
    stdio_read_file_stream Reader;
    EXPECT_NE(std::string::npos, ZEL_ERROR_MESSAGE(Reader.CloseFile()).find("'IsFileOpen()' is false"));
}

TEST_F(StdioFileStreams, CloseFileTwiceOnAReadStreamFailsAssertion)
{
    std::string Path = Folder / "a.bin";
    WriteFileBytes(Path, "a");
    stdio_read_file_stream Reader;
    Reader.OpenFile(Z(Path));
    EXPECT_TRUE(Reader.IsFileOpen());
    Reader.CloseFile();
    EXPECT_FALSE(Reader.IsFileOpen());
    EXPECT_NE(std::string::npos, ZEL_ERROR_MESSAGE(Reader.CloseFile()).find("'IsFileOpen()' is false"));
}

TEST_F(StdioFileStreams, CloseFileOnAClosedWriteStreamFailsAssertion)
{
    stdio_write_file_stream Writer;
    EXPECT_NE(std::string::npos, ZEL_ERROR_MESSAGE(Writer.CloseFile()).find("'IsFileOpen()' is false"));
}

TEST_F(StdioFileStreams, OpeningAnOpenWriteStreamAgainFailsAssertion)
{
    stdio_write_file_stream Writer;
    Writer.CreateFile(Z(Folder / "w.bin"));
    EXPECT_NE(std::string::npos,
              ZEL_ERROR_MESSAGE(Writer.CreateFile(Z(Folder / "v.bin"))).find("'IsFileOpen()==false' is false"));
    EXPECT_NE(std::string::npos,
              ZEL_ERROR_MESSAGE(Writer.OpenFile(Z(Folder / "v.bin"))).find("'IsFileOpen()==false' is false"));
    Writer.CloseFile();
}

TEST_F(StdioFileStreams, OpeningAnOpenReadStreamAgainFailsAssertion)
{
    std::string Path = Folder / "a.bin";
    WriteFileBytes(Path, "a");
    stdio_read_file_stream Reader;
    Reader.OpenFile(Z(Path));
    EXPECT_NE(std::string::npos, ZEL_ERROR_MESSAGE(Reader.OpenFile(Z(Path))).find("'IsFileOpen()==false' is false"));
    EXPECT_EQ("a", Read(Reader, 1));
}

TEST_F(StdioFileStreams, DestroyingAWriteStreamWithAFlushedBufferIsSilent)
{
    std::string Path = Folder / "flushed.bin";
    auto *Writer = new queueing_file_stream;
    Writer->CreateFile(Z(Path));
    Writer->Queue("abc");
    Writer->FlushBuffer();
    Writer->CloseFile();
    EXPECT_NO_THROW(delete Writer);
    EXPECT_EQ("abc", ReadFileBytes(Path));
}

TEST_F(StdioFileStreams, DestroyingAnOpenWriteStreamClosesTheFile)
{
    std::string Path = Folder / "open.bin";
    {
        stdio_write_file_stream Writer;
        Writer.CreateFile(Z(Path));
        Write(Writer, "still open");
    }
    EXPECT_EQ("still open", ReadFileBytes(Path));
}

TEST_F(StdioFileStreams, CloseFileWritesQueuedBytes)
{
    std::string Path = Folder / "queued.bin";
    queueing_file_stream Writer;
    Writer.CreateFile(Z(Path));
    Writer.Queue("one");
    Write(Writer, "two");
    Writer.Queue("three");
    Writer.CloseFile();
    EXPECT_EQ("onetwothree", ReadFileBytes(Path));
}

TEST_F(StdioFileStreams, SeekingAWriteStreamWritesQueuedBytesAtTheOldPosition)
{
    std::string Path = Folder / "seekqueued.bin";
    queueing_file_stream Writer;
    Writer.CreateFile(Z(Path));
    Write(Writer, "0123456789");
    Writer.Queue("ab");
    Writer.SeekRelativeToStart(0);
    Write(Writer, "X");
    Writer.CloseFile();
    EXPECT_EQ("X123456789ab", ReadFileBytes(Path));
}

// The null device, so that the process that dies leaves no file behind.
TEST(StdioFileStreamsDeathTest, DestroyingAWriteStreamWithUnflushedBytesFailsAssertion)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(
        {
            std::set_terminate(PrintZelErrorAndAbort);
            queueing_file_stream Writer;
            Writer.CreateFile(Z("/dev/null"));
            Writer.Queue("lost");
        },
        "'CurrentBufferPosition==0' is false");
}

TEST_F(StdioFileStreams, GetFileSizeLeavesThePosition)
{
    std::string Path = Folder / "ten.bin";
    WriteFileBytes(Path, "0123456789");
    stdio_read_file_stream Reader;
    Reader.OpenFile(Z(Path));
    Read(Reader, 3);
    EXPECT_EQ(10, Reader.GetFileSize());
    EXPECT_EQ(3, Reader.GetPosition());
    EXPECT_EQ("345", Read(Reader, 3));
}

TEST_F(StdioFileStreams, GetFileSizeOfAnEmptyFile)
{
    std::string Path = Folder / "empty.bin";
    WriteFileBytes(Path, "");
    stdio_read_file_stream Reader;
    Reader.OpenFile(Z(Path));
    EXPECT_EQ(0, Reader.GetFileSize());
    EXPECT_EQ(0, Reader.GetPosition());
}

TEST_F(StdioFileStreams, SeeksMoveTheReadPosition)
{
    std::string Path = Folder / "ten.bin";
    WriteFileBytes(Path, "0123456789");
    stdio_read_file_stream Reader;
    Reader.OpenFile(Z(Path));
    Reader.SeekRelativeToStart(5);
    EXPECT_EQ(5, Reader.GetPosition());
    EXPECT_EQ("56", Read(Reader, 2));
    Reader.SeekRelativeToCurrent(-4);
    EXPECT_EQ("34", Read(Reader, 2));
    Reader.SeekRelativeToCurrent(3);
    EXPECT_EQ("8", Read(Reader, 1));
    Reader.SeekRelativeToEnd(-3);
    EXPECT_EQ(7, Reader.GetPosition());
    EXPECT_EQ("789", Read(Reader, 3));
}

TEST_F(StdioFileStreams, SeekingToANegativePositionThrows)
{
    std::string Path = Folder / "ten.bin";
    WriteFileBytes(Path, "0123456789");
    stdio_read_file_stream Reader;
    Reader.OpenFile(Z(Path));
    EXPECT_EQ("stdio_read_file_stream::SeekRelativeToStart() detected an error.\n"
              "   SeekAmount: -1\n"
              "   FileName: " + Path + "\n"
              "   BytesRead: 0\n"
              "   Error: " + ErrorText(EINVAL) + "\n",
              ZEL_ERROR_MESSAGE(Reader.SeekRelativeToStart(-1)));
    EXPECT_EQ("Invalid argument", ErrorText(EINVAL));
    // The failed seek left the position alone.
    EXPECT_EQ("01", Read(Reader, 2));
}

TEST_F(StdioFileStreams, SeekingBeforeTheStartFromHereOrTheEndThrows)
{
    std::string Path = Folder / "ten.bin";
    WriteFileBytes(Path, "0123456789");
    stdio_read_file_stream Reader;
    Reader.OpenFile(Z(Path));
    Read(Reader, 6);
    EXPECT_EQ("stdio_read_file_stream::SeekRelativeToCurrent() detected an error.\n"
              "   SeekAmount: -7\n"
              "   FileName: " + Path + "\n"
              "   BytesRead: 6\n"
              "   Error: " + ErrorText(EINVAL) + "\n",
              ZEL_ERROR_MESSAGE(Reader.SeekRelativeToCurrent(-7)));
    EXPECT_EQ("stdio_read_file_stream::SeekRelativeToEnd() detected an error.\n"
              "   SeekAmount: -11\n"
              "   FileName: " + Path + "\n"
              "   BytesRead: 6\n"
              "   Error: " + ErrorText(EINVAL) + "\n",
              ZEL_ERROR_MESSAGE(Reader.SeekRelativeToEnd(-11)));
}

TEST_F(StdioFileStreams, BytesReadCountsFromTheLastOpen)
{
    std::string Path = Folder / "ten.bin";
    WriteFileBytes(Path, "0123456789");
    stdio_read_file_stream Reader;
    Reader.OpenFile(Z(Path));
    Read(Reader, 4);
    Reader.SeekRelativeToStart(0);
    Read(Reader, 5);
    Reader.CloseFile();
    Reader.OpenFile(Z(Path));
    Read(Reader, 2);
    EXPECT_NE(std::string::npos,
              ZEL_ERROR_MESSAGE(Reader.SeekRelativeToStart(-1)).find("\n   BytesRead: 2\n"));
    Reader.CloseFile();
}

TEST_F(StdioFileStreams, ReadingADirectoryThrows)
{
    std::string Path = Folder.Path;
    stdio_read_file_stream Reader;
    Reader.OpenFile(Z(Path));
    char Target[4];
    EXPECT_EQ("stdio_read_file_stream::ReadData() detected an error.\n"
              "   BytesWantedRead: 4\n"
              "   BytesActuallyRead: 0\n"
              "   FileName: " + Path + "\n"
              "   BytesRead: 0\n"
              "   Error: " + ErrorText(EISDIR) + "\n",
              ZEL_ERROR_MESSAGE(Reader.ReadData(Target, 4)));
    Reader.CloseFile();
}

TEST_F(StdioFileStreams, ReadWholeFileFromTheStart)
{
    std::string Data = AllByteValues(3000);
    std::string Path = Folder / "whole.bin";
    WriteFileBytes(Path, Data);
    stdio_read_file_stream Reader;
    Reader.OpenFile(Z(Path));
    zel_string Whole = Reader.ReadWholeFile();
    EXPECT_EQ(3000, Whole.GetLength());
    EXPECT_EQ(Data, ToStd(Whole));
    EXPECT_EQ(3000, Reader.GetPosition());
}

TEST_F(StdioFileStreams, ReadWholeFileReadsTheRestFromThePosition)
{
    std::string Path = Folder / "rest.bin";
    WriteFileBytes(Path, std::string("head\x00\xFFtail", 10));
    stdio_read_file_stream Reader;
    Reader.OpenFile(Z(Path));
    Read(Reader, 4);
    EXPECT_EQ(std::string("\x00\xFFtail", 6), ToStd(Reader.ReadWholeFile()));
}

TEST_F(StdioFileStreams, ReadWholeFileWithACount)
{
    std::string Path = Folder / "count.bin";
    WriteFileBytes(Path, "0123456789");
    stdio_read_file_stream Reader;
    Reader.OpenFile(Z(Path));
    EXPECT_EQ("012", ToStd(Reader.ReadWholeFile(3)));
    EXPECT_EQ("", ToStd(Reader.ReadWholeFile(0)));
    EXPECT_EQ("3456", ToStd(Reader.ReadWholeFile(4)));
    EXPECT_EQ("zel_read_stream::ReadData() Attempted to read 5 bytes, but only 3 bytes could be read",
              ZEL_ERROR_MESSAGE(Reader.ReadWholeFile(5)));
}

TEST_F(StdioFileStreams, ReadWholeFileOfAnEmptyFile)
{
    std::string Path = Folder / "empty.bin";
    WriteFileBytes(Path, "");
    stdio_read_file_stream Reader;
    Reader.OpenFile(Z(Path));
    zel_string Whole = Reader.ReadWholeFile();
    EXPECT_EQ(0, Whole.GetLength());
    EXPECT_EQ(0, Whole.GetString()[0]);
}

TEST_F(StdioFileStreams, ReadWholeFileBeyondTheEndIsEmpty)
{
    std::string Path = Folder / "short.bin";
    WriteFileBytes(Path, "abc");
    stdio_read_file_stream Reader;
    Reader.OpenFile(Z(Path));
    Reader.SeekRelativeToStart(10);
    EXPECT_EQ("", ToStd(Reader.ReadWholeFile()));
}

TEST_F(StdioFileStreams, CreateFileTruncates)
{
    std::string Path = Folder / "trunc.bin";
    WriteFileBytes(Path, "a much longer old content");
    stdio_write_file_stream Writer;
    Writer.CreateFile(Z(Path));
    Write(Writer, "new");
    Writer.CloseFile();
    EXPECT_EQ("new", ReadFileBytes(Path));
}

TEST_F(StdioFileStreams, OpenFileAppends)
{
    std::string Path = Folder / "append.bin";
    WriteFileBytes(Path, "abc");
    stdio_write_file_stream Writer;
    Writer.OpenFile(Z(Path));
    Write(Writer, std::string("d\x00\xE9", 3));
    Writer.CloseFile();
    EXPECT_EQ(std::string("abcd\x00\xE9", 6), ReadFileBytes(Path));
}

TEST_F(StdioFileStreams, AppendingAfterASeekStillWritesAtTheEnd)
{
    std::string Path = Folder / "append.bin";
    WriteFileBytes(Path, "abc");
    stdio_write_file_stream Writer;
    Writer.OpenFile(Z(Path));
    Writer.SeekRelativeToStart(0);
    Write(Writer, "d");
    Writer.CloseFile();
    EXPECT_EQ("abcd", ReadFileBytes(Path));
}

TEST_F(StdioFileStreams, OpenFileForAppendingCreatesAMissingFile)
{
    std::string Path = Folder / "new.bin";
    stdio_write_file_stream Writer;
    Writer.OpenFile(Z(Path));
    Write(Writer, "first");
    Writer.CloseFile();
    EXPECT_EQ("first", ReadFileBytes(Path));
}

TEST_F(StdioFileStreams, SeeksMoveTheWritePosition)
{
    std::string Path = Folder / "seek.bin";
    stdio_write_file_stream Writer;
    Writer.CreateFile(Z(Path));
    Write(Writer, "hello world");
    Writer.SeekRelativeToStart(6);
    Write(Writer, "W");
    Writer.SeekRelativeToEnd(-1);
    Write(Writer, "D");
    Writer.SeekRelativeToCurrent(-4);
    Write(Writer, "O");
    Writer.SeekRelativeToEnd(0);
    Write(Writer, "!");
    Writer.CloseFile();
    EXPECT_EQ("hello WOrlD!", ReadFileBytes(Path));
}

TEST_F(StdioFileStreams, WriteStreamSeekFailuresUseTheReadStreamsWords)
{
    std::string Path = Folder / "seekfail.bin";
    stdio_write_file_stream Writer;
    Writer.CreateFile(Z(Path));
    Write(Writer, "abc");
    EXPECT_EQ("stdio_read_file_stream::SeekRelativeToStart() detected an error.\n"
              "   SeekAmount: -5\n"
              "   FileName: " + Path + "\n"
              "   BytesWrote: 3\n"
              "   Error: " + ErrorText(EINVAL) + "\n",
              ZEL_ERROR_MESSAGE(Writer.SeekRelativeToStart(-5)));
    EXPECT_EQ("stdio_read_file_stream::SeekRelativeToCurrent() detected an error.\n"
              "   SeekAmount: -4\n"
              "   FileName: " + Path + "\n"
              "   BytesWrote: 3\n"
              "   Error: " + ErrorText(EINVAL) + "\n",
              ZEL_ERROR_MESSAGE(Writer.SeekRelativeToCurrent(-4)));
    EXPECT_EQ("stdio_read_file_stream::SeekRelativeToEnd() detected an error.\n"
              "   SeekAmount: -100\n"
              "   FileName: " + Path + "\n"
              "   BytesWrote: 3\n"
              "   Error: " + ErrorText(EINVAL) + "\n",
              ZEL_ERROR_MESSAGE(Writer.SeekRelativeToEnd(-100)));
    Writer.CloseFile();
    EXPECT_EQ("abc", ReadFileBytes(Path));
}

TEST_F(StdioFileStreams, CreatingAFileInAMissingDirectoryThrows)
{
    std::string Path = Folder / "no such folder/file.bin";
    stdio_write_file_stream Writer;
    EXPECT_EQ("stdio_write_file_stream::CreateFile() detected an error.\n"
              "   FileName: " + Path + "\n"
              "   BytesWrote: 0\n"
              "   Error: " + ErrorText(ENOENT) + "\n",
              ZEL_ERROR_MESSAGE(Writer.CreateFile(Z(Path))));
    EXPECT_FALSE(Writer.IsFileOpen());
}

TEST_F(StdioFileStreams, CreatingAFileOverADirectoryThrows)
{
    std::string Path = Folder / "sub";
    std::filesystem::create_directory(Path);
    stdio_write_file_stream Writer;
    EXPECT_EQ("stdio_write_file_stream::CreateFile() detected an error.\n"
              "   FileName: " + Path + "\n"
              "   BytesWrote: 0\n"
              "   Error: " + ErrorText(EISDIR) + "\n",
              ZEL_ERROR_MESSAGE(Writer.CreateFile(Z(Path))));
}

TEST_F(StdioFileStreams, AppendingInAMissingDirectoryThrows)
{
    std::string Path = Folder / "no such folder/file.bin";
    stdio_write_file_stream Writer;
    EXPECT_EQ("stdio_write_file_stream::OpenFile() detected an error.\n"
              "   FileName: " + Path + "\n"
              "   BytesWrote: 0\n"
              "   Error: " + ErrorText(ENOENT) + "\n",
              ZEL_ERROR_MESSAGE(Writer.OpenFile(Z(Path))));
}

TEST_F(StdioFileStreams, ClosingAfterWritingToAFullDeviceThrows)
{
    if (!HasDevFull())
        GTEST_SKIP() << "no /dev/full";
    stdio_write_file_stream Writer;
    Writer.CreateFile(Z("/dev/full"));
    // Small writes wait in the C library's buffer; the device refuses them when the file closes.
    Write(Writer, "hello");
    EXPECT_EQ("stdio_write_file_stream::CloseFile() detected an error.\n"
              "   FileName: /dev/full\n"
              "   BytesWrote: 5\n"
              "   Error: " + ErrorText(ENOSPC) + "\n",
              ZEL_ERROR_MESSAGE(Writer.CloseFile()));
    EXPECT_EQ("No space left on device", ErrorText(ENOSPC));
    EXPECT_FALSE(Writer.IsFileOpen());
}

TEST_F(StdioFileStreams, WritingMuchToAFullDeviceThrows)
{
    if (!HasDevFull())
        GTEST_SKIP() << "no /dev/full";
    std::string Data = AllByteValues(1 << 20);
    // How much the C library reports as written before the device refuses is its own affair, so the
    // same write is made directly for the expected count.
    FILE *Direct = std::fopen("/dev/full", "wb");
    ASSERT_NE(nullptr, Direct);
    int Expected = static_cast<int>(std::fwrite(Data.data(), 1, Data.size(), Direct));
    std::fclose(Direct);
    ASSERT_LT(Expected, static_cast<int>(Data.size()));

    stdio_write_file_stream Writer;
    Writer.CreateFile(Z("/dev/full"));
    EXPECT_EQ("stdio_write_file_stream::WriteData() detected an error.\n"
              "   BytesWantedWritten: 1048576\n"
              "   BytesActuallyWritten: " + std::to_string(Expected) + "\n"
              "   FileName: /dev/full\n"
              "   BytesWrote: " + std::to_string(Expected) + "\n"
              "   Error: " + ErrorText(ENOSPC) + "\n",
              ZEL_ERROR_MESSAGE(Write(Writer, Data)));
    ZEL_ERROR_MESSAGE(Writer.CloseFile());
    EXPECT_FALSE(Writer.IsFileOpen());
}

TEST_F(StdioFileStreams, NamesSayWhichFile)
{
    std::string Path = Folder / "named.bin";
    WriteFileBytes(Path, "x");
    stdio_read_file_stream Reader;
    EXPECT_EQ("stdio Read file stream: ", ToStd(Reader.GetName()));
    Reader.OpenFile(Z(Path));
    EXPECT_EQ("stdio Read file stream: " + Path, ToStd(Reader.GetName()));
    EXPECT_EQ("stdio Read file stream: " + Path, ToStd(Reader.GetFileName()));

    stdio_write_file_stream Writer;
    EXPECT_EQ("stdio Write file stream: ", ToStd(Writer.GetName()));
    Writer.OpenFile(Z(Path));
    EXPECT_EQ("stdio Write file stream: " + Path, ToStd(Writer.GetName()));
    EXPECT_EQ("stdio Write file stream: " + Path, ToStd(Writer.GetFileName()));
    Writer.CloseFile();
}

TEST_F(StdioFileStreams, AFailedOpenStillNamesTheFile)
{
    std::string Path = Folder / "missing.bin";
    stdio_read_file_stream Reader;
    ZEL_ERROR_MESSAGE(Reader.OpenFile(Z(Path)));
    EXPECT_EQ("stdio Read file stream: " + Path, ToStd(Reader.GetName()));
}
