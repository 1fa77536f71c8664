#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <set>
#include <string>

#include "rofa_lib/rofa_stdlib.h"
#include "rofa_lib/stdio_file_streams.h"
#include "tests/rofa_lib/stream_test_support.h"
#include "tests/test_support.h"

namespace {

std::multiset<std::string> Listing(const std::string &Path)
{
    array<zel_string> Names;
    ListDirectory(Z(Path), Names);
    std::multiset<std::string> Result;
    for (int I = 0; I < Names.GetNumberOfElements(); I++)
        Result.insert(ToStd(Names[I]));
    return Result;
}

class RofaStdlib : public testing::Test
{
protected:
    temporary_folder Folder;
};

} // namespace

TEST_F(RofaStdlib, ListDirectoryNamesEveryEntryWithDotAndDotDot)
{
    WriteFileBytes(Folder / "a.txt", "a");
    WriteFileBytes(Folder / "b.bin", "");
    std::filesystem::create_directory(Folder / "sub");
    std::multiset<std::string> Expected = {".", "..", "a.txt", "b.bin", "sub"};
    EXPECT_EQ(Expected, Listing(Folder.Path));
}

TEST_F(RofaStdlib, ATrailingSlashListsTheSameDirectory)
{
    WriteFileBytes(Folder / "one", "1");
    WriteFileBytes(Folder / "two", "2");
    std::multiset<std::string> Expected = {".", "..", "one", "two"};
    EXPECT_EQ(Expected, Listing(Folder.Path + "/"));
    EXPECT_EQ(Listing(Folder.Path), Listing(Folder.Path + "/"));
}

TEST_F(RofaStdlib, AnEmptyDirectoryHoldsOnlyDotAndDotDot)
{
    std::multiset<std::string> Expected = {".", ".."};
    EXPECT_EQ(Expected, Listing(Folder.Path));
}

TEST_F(RofaStdlib, ListDirectoryAppendsToWhatTheArrayHolds)
{
    WriteFileBytes(Folder / "file", "");
    array<zel_string> Names;
    Names.Add("kept");
    ListDirectory(Z(Folder.Path), Names);
    ASSERT_EQ(4, Names.GetNumberOfElements());
    EXPECT_EQ("kept", ToStd(Names[0]));
}

TEST_F(RofaStdlib, NamesWithBytesAbove127AreKept)
{
    WriteFileBytes(Folder / "caf\xC3\xA9", "");
    std::multiset<std::string> Expected = {".", "..", "caf\xC3\xA9"};
    EXPECT_EQ(Expected, Listing(Folder.Path));
}

TEST(RofaStdlibRoot, ListingTheRootKeepsItsSlash)
{
    std::multiset<std::string> Expected = {".", ".."};
    for (const auto &Entry : std::filesystem::directory_iterator("/"))
        Expected.insert(Entry.path().filename().string());
    EXPECT_EQ(Expected, Listing("/"));
}

TEST_F(RofaStdlib, ListingAMissingDirectoryThrows)
{
    std::string Path = Folder / "missing";
    EXPECT_EQ("Error opening directory: '" + Path + "'\nErrno=" + std::to_string(ENOENT),
              ZEL_ERROR_MESSAGE(Listing(Path)));
    EXPECT_EQ(2, ENOENT);
}

TEST_F(RofaStdlib, AMissingDirectoryWithATrailingSlashIsNamedWithout)
{
    std::string Path = Folder / "missing";
    EXPECT_EQ("Error opening directory: '" + Path + "'\nErrno=" + std::to_string(ENOENT),
              ZEL_ERROR_MESSAGE(Listing(Path + "/")));
}

TEST_F(RofaStdlib, ListingAFileThatIsNotADirectoryThrows)
{
    std::string Path = Folder / "plain.txt";
    WriteFileBytes(Path, "not a folder");
    EXPECT_EQ("Error opening directory: '" + Path + "'\nErrno=" + std::to_string(ENOTDIR),
              ZEL_ERROR_MESSAGE(Listing(Path)));
    EXPECT_EQ(20, ENOTDIR);
}

TEST_F(RofaStdlib, ListingAnEmptyPathThrows)
{
    EXPECT_EQ("Error opening directory: ''\nErrno=" + std::to_string(ENOENT), ZEL_ERROR_MESSAGE(Listing("")));
}

TEST_F(RofaStdlib, GetFileSizeByPath)
{
    std::string Path = Folder / "sized.bin";
    WriteFileBytes(Path, AllByteValues(1234));
    int Size = -1;
    GetFileSize(Z(Path), Size);
    EXPECT_EQ(1234, Size);
}

TEST_F(RofaStdlib, GetFileSizeOfAnEmptyFile)
{
    std::string Path = Folder / "empty.bin";
    WriteFileBytes(Path, "");
    int Size = -1;
    GetFileSize(Z(Path), Size);
    EXPECT_EQ(0, Size);
}

TEST_F(RofaStdlib, GetFileSizeOfAMissingFileFailsAssertion)
{
    int Size = 7;
    EXPECT_NE(std::string::npos,
              ZEL_ERROR_MESSAGE(GetFileSize(Z(Folder / "missing.bin"), Size)).find("'StatRet==0' is false"));
    EXPECT_EQ(7, Size);
}

TEST_F(RofaStdlib, OpenReadFileGivesAClosedStdioStream)
{
    std::string Path = Folder / "data.bin";
    WriteFileBytes(Path, std::string("\x00\x01\xFE\xFF", 4));
    ownership_pointer<zel_read_file_stream> Stream = OpenReadFile();
    ASSERT_TRUE(Stream.IsSet());
    EXPECT_NE(nullptr, dynamic_cast<stdio_read_file_stream *>(Stream.Get()));
    EXPECT_FALSE(Stream->IsFileOpen());
    EXPECT_EQ("stdio Read file stream: ", ToStd(Stream->GetName()));
    Stream->OpenFile(Z(Path));
    EXPECT_EQ(std::string("\x00\x01\xFE\xFF", 4), ToStd(Stream->ReadWholeFile()));
    Stream->CloseFile();
}

TEST_F(RofaStdlib, EachOpenReadFileIsANewStream)
{
    ownership_pointer<zel_read_file_stream> First = OpenReadFile();
    ownership_pointer<zel_read_file_stream> Second = OpenReadFile();
    EXPECT_NE(First.Get(), Second.Get());
}
