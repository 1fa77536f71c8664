#pragma once

#include <cstdint>

#include "zel_basics/zel_string.h"

// A byte buffer that grows geometrically while bytes arrive piece by piece (a network reply), and
// hands its block on to a zel_string without a copy once complete. One byte beyond the reservation
// is always allocated, so a terminator fits behind a full buffer.
class zel_text_buffer
{
public:
    zel_text_buffer();
    ~zel_text_buffer();
    zel_text_buffer(const zel_text_buffer &) = delete;
    zel_text_buffer &operator=(const zel_text_buffer &) = delete;

    // Makes room for Len bytes in all; a larger need reserves 2 * Len + 1.
    void Grow(int Len);
    void Append(const char *Bytes, int Count);
    // Zero bytes behind the text; an empty buffer gets a block of its own, so there is always one.
    void Terminate();
    // Moves the block, terminated, into a string and leaves the buffer empty and without a block.
    zel_string TakeString();

    const char *GetData() const { return Data; }
    int32_t GetLength() const { return Length; }
    int32_t GetReservedSize() const { return ReservedSize; }

private:
    char *Data;
    int32_t ReservedSize;
    int32_t Length;
};
