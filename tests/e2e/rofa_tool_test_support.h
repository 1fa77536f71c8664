#pragma once

// Runs the built rofa-tool in a folder of its own and collects its status and output.
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

struct tool_result
{
    int Status = -1;
    std::string Output;
    std::string Errors;
};

inline std::string ReadFile(const std::string &Path)
{
    std::ifstream File(Path, std::ios::binary);
    std::stringstream Text;
    Text << File.rdbuf();
    return Text.str();
}

inline void WriteFile(const std::string &Path, const std::string &Bytes)
{
    std::ofstream File(Path, std::ios::binary);
    File << Bytes;
}

class rofa_tool_fixture : public testing::Test
{
protected:
    void SetUp() override
    {
        char Template[] = "/tmp/rofa_tool_test_XXXXXX";
        ASSERT_NE(mkdtemp(Template), nullptr);
        Folder = Template;
    }
    void TearDown() override { std::system(("rm -rf " + Folder).c_str()); }

    std::string Path(const std::string &Name) const { return Folder + "/" + Name; }

    tool_result Run(const std::string &Arguments) const
    {
        std::string Command = std::string(ROFA_TOOL_PATH) + " " + Arguments + " >" + Path("out") + " 2>" + Path("err");
        int Raw = std::system(Command.c_str());
        tool_result Result;
        Result.Status = WIFEXITED(Raw) ? WEXITSTATUS(Raw) : -1;
        Result.Output = ReadFile(Path("out"));
        Result.Errors = ReadFile(Path("err"));
        return Result;
    }

    std::string Folder;
};
