#pragma once

#include <cstdint>

#include "zel_basics/zel_string.h"

// Bytes that something else owns. The readers hand sub-ranges of one file buffer around with it, so a
// dictionary block of many megabytes is never copied only to be parsed.
struct xbd_byte_range
{
    const char *Bytes;
    int32_t Length;

    const char *GetString() const { return Bytes; }
    int32_t GetLength() const { return Length; }
};

// The number of bytes of the shortest ASI of Value: at least one, one more for every seven bits.
int GetASILength(uint32_t Value);

// Writes the shortest ASI of Value at Destination and returns the position after it. The caller has
// made room for GetASILength(Value) bytes.
char *WriteASI(char *Destination, uint32_t Value);

// Reads one ASI that starts at D and steps D past it. Never reads at or beyond End: an ASI that the
// range cuts off is a zel_error, and so is one that still continues in its fifth byte.
uint32_t ReadLongASI(const char *&D, const char *End);

// Almost every number in a file is below 128, so that case stays inline and the rest goes to the loop.
inline uint32_t ReadASI(const char *&D, const char *End)
{
    if (D < End && static_cast<unsigned char>(*D) < 0x80)
        return static_cast<unsigned char>(*D++);
    return ReadLongASI(D, End);
}

// A block that is written in place and then handed to a zel_string without a copy: the writer knows
// the exact size of a file before it writes the first byte, and files reach tens of megabytes.
class xbd_byte_buffer
{
public:
    explicit xbd_byte_buffer(int64_t Length);
    ~xbd_byte_buffer();
    xbd_byte_buffer(const xbd_byte_buffer &) = delete;
    xbd_byte_buffer &operator=(const xbd_byte_buffer &) = delete;

    char *GetData() { return Block; }

    // The block as a string of its whole length; the buffer is empty afterwards.
    zel_string TakeString();

private:
    char *Block;
    int32_t Length;
};
