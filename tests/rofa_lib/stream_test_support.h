#pragma once

#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>
#include <string>

#include "rofa_lib/zel_stream.h"
#include "tests/test_support.h"

// A fresh folder of its own for a test's files, removed with everything in it at the end.
class temporary_folder
{
public:
    temporary_folder()
    {
        std::string Pattern = (std::filesystem::temp_directory_path() / "rofa_streams_XXXXXX").string();
        if (mkdtemp(Pattern.data()) == nullptr)
            throw std::runtime_error("mkdtemp failed");
        Path = Pattern;
    }
    ~temporary_folder()
    {
        std::error_code Ignored;
        std::filesystem::remove_all(Path, Ignored);
    }
    temporary_folder(const temporary_folder &) = delete;
    temporary_folder &operator=(const temporary_folder &) = delete;

    std::string operator/(const std::string &Name) const { return Path + "/" + Name; }

    std::string Path;
};

// Files written and read by the standard streams, independently of the streams under test.
inline void WriteFileBytes(const std::string &Path, const std::string &Bytes)
{
    std::ofstream File(Path, std::ios::binary | std::ios::trunc);
    File.write(Bytes.data(), static_cast<std::streamsize>(Bytes.size()));
}

inline std::string ReadFileBytes(const std::string &Path)
{
    std::ifstream File(Path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(File), std::istreambuf_iterator<char>());
}

// Every byte value, zero and those above 127 among them, several times over in a pattern that
// does not repeat with any short period.
inline std::string AllByteValues(int Length)
{
    std::string Bytes;
    for (int I = 0; I < Length; I++)
        Bytes += static_cast<char>((I * 7 + I / 256) & 0xFF);
    return Bytes;
}

inline zel_string Z(const std::string &Text)
{
    return zel_string(Text.data(), static_cast<int>(Text.size()));
}

inline std::string Read(zel_read_stream &Stream, int Count)
{
    std::string Target(static_cast<size_t>(Count), '\0');
    Stream.ReadData(Target.data(), Count);
    return Target;
}

inline void Write(zel_write_stream &Stream, const std::string &Bytes)
{
    Stream.WriteData(Bytes.data(), static_cast<int>(Bytes.size()));
}

// A zel_error cannot leave a destructor, so the process ends; as a terminate handler this shows the
// error's text on the way out, where a death test can see it.
[[noreturn]] inline void PrintZelErrorAndAbort()
{
    try {
        std::rethrow_exception(std::current_exception());
    } catch (const zel_error &Error) {
        std::cerr << ToStd(Error.GetMessage()) << std::endl;
    } catch (...) {
        std::cerr << "not a zel_error" << std::endl;
    }
    std::abort();
}
