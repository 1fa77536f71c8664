#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "tests/e2e/rofa_tool_test_support.h"

namespace {

// The worked example of the binary markup: a root holding `shelf` (width and label sharing the value
// "9") holding `book`, as the 60 bytes the format fixes.
const unsigned char WorkedExample[60] = {
    0x5a, 0x45, 0x4c, 0x58, 0x4d, 0x4c, 0x01, 0x00, 0x14, 0x03, 0x07, 0x05, 0x04, 0x52, 0x6f,
    0x6f, 0x74, 0x54, 0x61, 0x67, 0x73, 0x68, 0x65, 0x6c, 0x66, 0x62, 0x6f, 0x6f, 0x6b, 0x0d,
    0x02, 0x05, 0x05, 0x77, 0x69, 0x64, 0x74, 0x68, 0x6c, 0x61, 0x62, 0x65, 0x6c, 0x03, 0x01,
    0x01, 0x39, 0x0c, 0x00, 0x00, 0x09, 0x01, 0x04, 0x00, 0x00, 0x01, 0x00, 0x02, 0x02, 0x00};

class RofaTool : public rofa_tool_fixture
{
protected:
    // Text form to binary, binary to dump, dump to binary again: both binaries must be identical.
    void ExpectRoundTrip(const std::string &Text)
    {
        WriteFile(Path("in.xml"), Text);
        ASSERT_EQ(Run("compile " + Path("in.xml") + " " + Path("first.xbd")).Status, 0);
        tool_result Dump = Run("dump " + Path("first.xbd"));
        ASSERT_EQ(Dump.Status, 0) << Dump.Errors;
        WriteFile(Path("dumped.xml"), Dump.Output);
        ASSERT_EQ(Run("compile " + Path("dumped.xml") + " " + Path("second.xbd")).Status, 0);
        EXPECT_EQ(ReadFile(Path("first.xbd")), ReadFile(Path("second.xbd"))) << "dump was:\n" << Dump.Output;
    }
};

} // namespace

TEST_F(RofaTool, VersionPrintsTheLibrarysVersion)
{
    tool_result Result = Run("version");
    EXPECT_EQ(Result.Status, 0);
    EXPECT_EQ(Result.Output, "0.5.1\n");
    EXPECT_EQ(Result.Errors, "");
}

TEST_F(RofaTool, WrongUsageExitsWithTwo)
{
    EXPECT_EQ(Run("").Status, 2);
    EXPECT_EQ(Run("frobnicate").Status, 2);
    EXPECT_EQ(Run("dump").Status, 2);
    EXPECT_EQ(Run("compile only-one").Status, 2);
    EXPECT_EQ(Run("version extra").Status, 2);
}

TEST_F(RofaTool, DumpOfTheWorkedExample)
{
    WriteFile(Path("shelf.xbd"), std::string(reinterpret_cast<const char *>(WorkedExample), sizeof(WorkedExample)));
    tool_result Result = Run("dump " + Path("shelf.xbd"));
    EXPECT_EQ(Result.Status, 0) << Result.Errors;
    EXPECT_EQ(Result.Output, "<shelf width=\"9\" label=\"9\">\n  <book/>\n</shelf>\n");
}

TEST_F(RofaTool, CompileOfTheTextFormGivesTheWorkedExamplesBytes)
{
    WriteFile(Path("shelf.xml"), "<shelf width=\"9\" label='9'>\n  <book></book>\n</shelf>\n");
    tool_result Result = Run("compile " + Path("shelf.xml") + " " + Path("shelf.xbd"));
    EXPECT_EQ(Result.Status, 0) << Result.Errors;
    EXPECT_EQ(ReadFile(Path("shelf.xbd")),
              std::string(reinterpret_cast<const char *>(WorkedExample), sizeof(WorkedExample)));
}

TEST_F(RofaTool, CompileOfAFileThisWriterWroteGivesTheSameBytes)
{
    WriteFile(Path("a.xml"), "<a x=\"1\" y=\"&#0;&#200;\"><b/><c z=\"1\">some text<d/></c></a><e/>");
    ASSERT_EQ(Run("compile " + Path("a.xml") + " " + Path("a.xbd")).Status, 0);
    ASSERT_EQ(Run("compile " + Path("a.xbd") + " " + Path("b.xbd")).Status, 0);
    EXPECT_EQ(ReadFile(Path("a.xbd")), ReadFile(Path("b.xbd")));
}

TEST_F(RofaTool, DumpEscapesEveryByteThatIsNotPlainPrintable)
{
    WriteFile(Path("v.xml"), "<v a=\"&amp;&lt;&gt;&quot;&apos;\\&#9;&#0;&#127;&#255;~ z\"/>");
    ASSERT_EQ(Run("compile " + Path("v.xml") + " " + Path("v.xbd")).Status, 0);
    tool_result Result = Run("dump " + Path("v.xbd"));
    EXPECT_EQ(Result.Output, "<v a=\"&#38;&#60;&#62;&#34;&#39;&#92;&#9;&#0;&#127;&#255;~ z\"/>\n");
}

TEST_F(RofaTool, DumpRoundTripsNestingAttributesAndCharacterData)
{
    ExpectRoundTrip("<doc title=\"T\">\n <p>Hello, <b>world</b>!</p>\n <empty flag=\"\"/>\n <q a='1' a='2'/>\n</doc>\n"
                    "<tail/>");
}

TEST_F(RofaTool, DumpRoundTripsBinaryValues)
{
    std::string Value;
    for (int Byte = 0; Byte < 256; Byte++)
        Value += "&#" + std::to_string(Byte) + ";";
    ExpectRoundTrip("<blob data=\"" + Value + "\" empty=\"\"/>");
}

TEST_F(RofaTool, DumpRoundTripsProcessingInstructionsAndDeepTrees)
{
    std::string Deep;
    for (int I = 0; I < 200; I++)
        Deep += "<n" + std::to_string(I % 7) + " i=\"" + std::to_string(I) + "\">";
    for (int I = 199; I >= 0; I--)
        Deep += "</n" + std::to_string(I % 7) + ">";
    ExpectRoundTrip("<?xml version=\"1.0\"?>" + Deep);
}

TEST_F(RofaTool, MissingFileFailsWithTheLoadersWords)
{
    tool_result Result = Run("dump " + Path("missing.xbd"));
    EXPECT_EQ(Result.Status, 1);
    EXPECT_EQ(Result.Errors, "rofa-tool: xbd_file::LoadXBDFile() Could not open file: " + Path("missing.xbd") + "\n");
    EXPECT_EQ(Result.Output, "");
}

TEST_F(RofaTool, MalformedTextFailsWithTheParsersWordsAndWritesNothing)
{
    WriteFile(Path("bad.xml"), "<a>\n</b>");
    tool_result Result = Run("compile " + Path("bad.xml") + " " + Path("bad.xbd"));
    EXPECT_EQ(Result.Status, 1);
    EXPECT_EQ(Result.Errors.rfind("rofa-tool: Close tag </b> does not match open tag <a>", 0), 0u) << Result.Errors;
    EXPECT_EQ(access(Path("bad.xbd").c_str(), F_OK), -1);
}

TEST_F(RofaTool, UnwritableOutputFailsWithTheStreamsWords)
{
    WriteFile(Path("a.xml"), "<a/>");
    tool_result Result = Run("compile " + Path("a.xml") + " " + Path("no/such/folder/a.xbd"));
    EXPECT_EQ(Result.Status, 1);
    EXPECT_EQ(Result.Errors.rfind("rofa-tool: stdio_write_file_stream::CreateFile() detected an error.\n", 0), 0u)
        << Result.Errors;
}
