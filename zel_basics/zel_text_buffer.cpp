#include "zel_basics/zel_text_buffer.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "zel_basics/debug.h"

zel_text_buffer::zel_text_buffer() : Data(nullptr), ReservedSize(0), Length(0) {}

zel_text_buffer::~zel_text_buffer()
{
    if (Data == nullptr)
    {
        TOVAS_ASSERT(ReservedSize==0, nullptr);
        TOVAS_ASSERT(Length==0, nullptr);
        return;
    }
    std::free(Data);
}

void zel_text_buffer::Grow(int Len)
{
    TOVAS_ASSERT(Len>=0, nullptr);
    if (Len <= ReservedSize)
        return;
    // Past 1 GB the doubling is capped so that the block size still fits the 32-bit fields.
    int64_t NewReservedSize = std::min<int64_t>(2 * static_cast<int64_t>(Len) + 1, INT32_MAX - 1);
    char *NewData = NewReservedSize < Len
                        ? nullptr
                        : static_cast<char *>(std::realloc(Data, static_cast<size_t>(NewReservedSize) + 1));
    if (NewData == nullptr)
        throw zel_error(zel_string("Out of memory"));
    Data = NewData;
    ReservedSize = static_cast<int32_t>(NewReservedSize);
}

void zel_text_buffer::Append(const char *Bytes, int Count)
{
    if (static_cast<int64_t>(Length) + Count > INT32_MAX)
        throw zel_error(zel_string("Out of memory"));
    Grow(Length + Count);
    if (Count > 0)
        std::memcpy(Data + Length, Bytes, static_cast<size_t>(Count));
    Length += Count;
}

// Two zero bytes where they fit (always, after any growth, as the reservation exceeds the length),
// so the string that takes the block may also read it as 16-bit text.
void zel_text_buffer::Terminate()
{
    if (Data == nullptr)
    {
        Data = static_cast<char *>(std::calloc(2, 1));
        if (Data == nullptr)
            throw zel_error(zel_string("Out of memory"));
        ReservedSize = 1;
        return;
    }
    Data[Length] = 0;
    if (Length < ReservedSize)
        Data[Length + 1] = 0;
}

zel_string zel_text_buffer::TakeString()
{
    Terminate();
    zel_string Result;
    Result.AdoptBuffer(Data, Length);
    Data = nullptr;
    ReservedSize = 0;
    Length = 0;
    return Result;
}
