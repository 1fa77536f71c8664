#pragma once

#include <ostream>
#include <string>

#include "zel_basics/zel_error.h"
#include "zel_basics/zel_string.h"

// Readable zel_string values in test failure reports.
inline void PrintTo(const zel_string &Text, std::ostream *Stream)
{
    *Stream << '"' << std::string(Text.GetString(), static_cast<size_t>(Text.GetLength())) << '"';
}

inline std::string ToStd(const zel_string &Text)
{
    return std::string(Text.GetString(), static_cast<size_t>(Text.GetLength()));
}

// The message of the zel_error that Statement throws, or a note that it threw none.
#define ZEL_ERROR_MESSAGE(Statement)                                                                               \
    [&]() -> std::string {                                                                                         \
        try {                                                                                                      \
            Statement;                                                                                             \
        } catch (const zel_error &Error) {                                                                         \
            return ToStd(Error.GetMessage());                                                                      \
        }                                                                                                          \
        return "(no zel_error thrown)";                                                                            \
    }()
