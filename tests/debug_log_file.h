#pragma once

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <unistd.h>

#include "zel_basics/debug.h"
#include "zel_basics/zel_string.h"

// Points the debug log at a fresh file for one test and puts the old path back afterwards.
class debug_log_file
{
public:
    debug_log_file() : SavedPath(DebugLogPath())
    {
        char Template[] = "/tmp/rofa_debug_log_XXXXXX";
        int Descriptor = mkstemp(Template);
        close(Descriptor);
        Path = Template;
        SetDebugLogPath(Path.c_str());
    }
    ~debug_log_file()
    {
        std::remove(Path.c_str());
        SetDebugLogPath(SavedPath);
    }
    debug_log_file(const debug_log_file &) = delete;
    debug_log_file &operator=(const debug_log_file &) = delete;

    std::string Read() const
    {
        std::ifstream File(Path, std::ios::binary);
        std::stringstream Text;
        Text << File.rdbuf();
        return Text.str();
    }

    std::string Path;

private:
    zel_string SavedPath;
};
