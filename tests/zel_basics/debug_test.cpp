#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/debug_log_file.h"
#include "tests/test_support.h"
#include "zel_basics/debug.h"
#include "zel_basics/lwpointers.h"

namespace {

class named_object : public base_object
{
public:
    zel_string GetName() override { return "palette"; }
};

class unnameable_object : public base_object
{
public:
    zel_string GetName() override { throw zel_error("no name"); }
};

std::string AddressText(const void *Address)
{
    return std::to_string(reinterpret_cast<uintptr_t>(Address));
}


const char *const NoStackLine = "*** ZELDebugLogCallStack() Not Debug-Build, no stack-trace information available.";

} // namespace

TEST(Assertion, NullObjectReportsNullInFormOne)
{
    std::string Message = ZEL_ERROR_MESSAGE(TovasDebugAssert("X>0", "folder/file.cpp", 42, nullptr));
    EXPECT_EQ(Message, "1 ASSERTION FAILED(NULL): 'X>0' is false\n File: 'folder/file.cpp'\n Line: 42");
}

TEST(Assertion, FormTwoAddsTheComment)
{
    std::string Message =
        ZEL_ERROR_MESSAGE(TovasDebugAssert("Y<3", "a.cpp", 7, "the comment", static_cast<base_object *>(nullptr)));
    EXPECT_EQ(Message, "2 ASSERTION FAILED(NULL): 'Y<3' is false\n File: 'a.cpp'\n Line: 7\n Comment: the comment");
}

TEST(Assertion, FormThreeTakesAStringComment)
{
    std::string Message = ZEL_ERROR_MESSAGE(
        TovasDebugAssert("Z", "b.cpp", 9, zel_string("made ") + "of parts", static_cast<base_object *>(nullptr)));
    EXPECT_EQ(Message, "3 ASSERTION FAILED(NULL): 'Z' is false\n File: 'b.cpp'\n Line: 9\n Comment: made of parts");
}

TEST(Assertion, ReportNamesTheObject)
{
    named_object Object;
    std::string Message = ZEL_ERROR_MESSAGE(TovasDebugAssert("Ready", "c.cpp", 1, &Object));
    EXPECT_EQ(Message, "1 ASSERTION FAILED(Name='palette' Type=(anonymous namespace)::named_object Addr=" +
                           AddressText(&Object) + " ID=" + std::to_string(Object.GetObjectID()) +
                           "): 'Ready' is false\n File: 'c.cpp'\n Line: 1");
}

TEST(Assertion, MacroPassesConditionTextFileAndLine)
{
    int Count = 3;
    int ExpectedLine = __LINE__ + 1;
    std::string Message = ZEL_ERROR_MESSAGE(TOVAS_ASSERT(Count>5, nullptr));
    EXPECT_EQ(Message, "1 ASSERTION FAILED(NULL): 'Count>5' is false\n File: 'tests/zel_basics/debug_test.cpp'\n Line: " +
                           std::to_string(ExpectedLine));
}

TEST(Assertion, MacroWithCommentChoosesTheCommentForm)
{
    int Count = 3;
    std::string Message = ZEL_ERROR_MESSAGE(TOVAS_ASSERT(Count == 4, "count must be four", nullptr));
    EXPECT_THAT(Message, testing::StartsWith("2 ASSERTION FAILED(NULL): 'Count == 4' is false\n"));
    EXPECT_THAT(Message, testing::EndsWith("\n Comment: count must be four"));
    std::string Composed = ZEL_ERROR_MESSAGE(TOVAS_ASSERT(Count == 4, zel_string("count ") + "is three", nullptr));
    EXPECT_THAT(Composed, testing::StartsWith("3 ASSERTION FAILED(NULL)"));
}

TEST(Assertion, TrueConditionDoesNothing)
{
    int Count = 3;
    EXPECT_NO_THROW(TOVAS_ASSERT(Count == 3, nullptr));
}

TEST(Assertion, LogsHeadingMessageAndStackNote)
{
    debug_log_file Log;
    ZEL_ERROR_MESSAGE(TovasDebugAssert("A", "f.cpp", 2, nullptr));
    ZEL_ERROR_MESSAGE(TovasDebugAssert("B", "g.cpp", 3, "c", static_cast<base_object *>(nullptr)));
    ZEL_ERROR_MESSAGE(TovasDebugAssert("C", "h.cpp", 4, zel_string("d"), static_cast<base_object *>(nullptr)));
    std::string Expected =
        std::string("\n\nTovasDebugAssert(const char *DString,const char *File,int Line,base_object *Object) THROW "
                    "ERROR\n") +
        "1 ASSERTION FAILED(NULL): 'A' is false\n File: 'f.cpp'\n Line: 2\n" + NoStackLine + "\n" +
        "\n\nTovasDebugAssert(const char *DString,const char *File,int Line,const char *Comment,base_object "
        "*Object) THROW ERROR\n" +
        "2 ASSERTION FAILED(NULL): 'B' is false\n File: 'g.cpp'\n Line: 3\n Comment: c\n" + NoStackLine + "\n" +
        "\n\nTovasDebugAssert(const char *DString,const char *File,int Line,zel_string Comment,base_object "
        "*Object) THROW ERROR\n" +
        "3 ASSERTION FAILED(NULL): 'C' is false\n File: 'h.cpp'\n Line: 4\n Comment: d\n" + NoStackLine + "\n";
    EXPECT_EQ(Log.Read(), Expected);
}

TEST(ObjectDebugText, NullObject)
{
    EXPECT_EQ(GetObjectDebugText(nullptr, 0), zel_string("(NULL)"));
    EXPECT_EQ(GetObjectDebugText(nullptr, 1), zel_string("(NULL)"));
}

TEST(ObjectDebugText, FormatZeroAndOne)
{
    named_object Object;
    std::string Tail = " (Type=(anonymous namespace)::named_object Addr=" + AddressText(&Object) +
                       " ID=" + std::to_string(Object.GetObjectID()) + ")";
    EXPECT_EQ(ToStd(GetObjectDebugText(&Object, 1)), "palette" + Tail);
    EXPECT_EQ(ToStd(GetObjectDebugText(&Object, 0)), "(Name='palette' " + Tail.substr(2));
}

TEST(ObjectDebugText, PlainBaseObject)
{
    base_object Object;
    EXPECT_EQ(ToStd(GetObjectDebugText(&Object, 0)), "(Name='name not set' Type=base_object Addr=" +
                                                         AddressText(&Object) + " ID=" +
                                                         std::to_string(Object.GetObjectID()) + ")");
}

TEST(ObjectDebugText, NameThatFailsIsReplaced)
{
    unnameable_object Object;
    EXPECT_THAT(ToStd(GetObjectDebugText(&Object, 0)), testing::StartsWith("(Name='(error getting name)' Type="));
}

TEST(ObjectDebugText, OtherFormatsFailTheAssertion)
{
    base_object Object;
    std::string Message = ZEL_ERROR_MESSAGE(GetObjectDebugText(&Object, 2));
    EXPECT_THAT(Message, testing::StartsWith("1 ASSERTION FAILED(Name='name not set' Type=base_object"));
    EXPECT_THAT(Message, testing::HasSubstr("): 'false' is false\n File: 'zel_basics/debug.cpp'"));
}

TEST(DebugLog, PathIsInTheTemporaryDirectory)
{
    const char *Folder = std::getenv("TMPDIR");
    std::string Expected = std::string(Folder != nullptr && Folder[0] != 0 ? Folder : "/tmp") + "/debug_tessaly.log";
    EXPECT_EQ(ToStd(DebugLogPath()), Expected);
}

TEST(DebugLog, ToFileAppendsLines)
{
    debug_log_file Log;
    DebugLogToFile("first");
    DebugLogToFile(zel_string("with\0zero", 9));
    EXPECT_EQ(Log.Read(), std::string("first\nwith\0zero\n", 16));
}

TEST(DebugLog, UnopenableFileIsIgnored)
{
    zel_string Saved = DebugLogPath();
    SetDebugLogPath("/nonexistent-folder/for/sure/log.txt");
    EXPECT_NO_THROW(DebugLogToFile("lost"));
    EXPECT_NO_THROW(DebugLog("lost"));
    SetDebugLogPath(Saved);
}

TEST(DebugLog, CallStackNote)
{
    debug_log_file Log;
    ZELDebugLogCallStack();
    EXPECT_EQ(Log.Read(), std::string(NoStackLine) + "\n");
}

TEST(DebugNesting, NeverGoesBelowZeroAndResets)
{
    DebugNestingReset();
    DebugNestingLeave();
    EXPECT_EQ(GetDebugNesting(), 0);
    DebugNestingEnter();
    DebugNestingEnter();
    EXPECT_EQ(GetDebugNesting(), 2);
    DebugNestingLeave();
    EXPECT_EQ(GetDebugNesting(), 1);
    DebugNestingReset();
    EXPECT_EQ(GetDebugNesting(), 0);
}
