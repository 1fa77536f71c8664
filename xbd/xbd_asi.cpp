#include "xbd/xbd_asi.h"

#include <cstdlib>
#include <cstring>

#include "zel_basics/debug.h"
#include "zel_basics/zel_error.h"

int GetASILength(uint32_t Value)
{
    int Length = 1;
    while (Value >= 0x80) {
        Value >>= 7;
        Length++;
    }
    return Length;
}

char *WriteASI(char *Destination, uint32_t Value)
{
    do {
        uint32_t Byte = Value & 0x7F;
        Value >>= 7;
        if (Value != 0)
            Byte |= 0x80;
        *Destination++ = static_cast<char>(Byte);
    } while (Value != 0);
    return Destination;
}

// Non-shortest forms are accepted as long as they end within five bytes. The groups are added in 32
// bits, so high bits of a fifth byte fall away.
uint32_t ReadLongASI(const char *&D, const char *End)
{
    uint32_t Value = 0;
    int Shift = 0;
    int MaxLength = 5;
    for (;;) {
        TOVAS_ASSERT(Shift<32, nullptr);
        if (D >= End)
            throw zel_error(zel_string("Unexpected end of XBD data."));
        const char Byte = *D++;
        Value += (static_cast<uint32_t>(static_cast<unsigned char>(Byte)) & 0x7F) << Shift;
        Shift += 7;
        MaxLength--;
        if ((Byte & 0x80) == 0)
            return Value;
        // The report names the counter that ran down and the byte as a signed char, as it always has.
        if (MaxLength == 0)
            throw zel_error(zel_string("Invalid ASI - exceeded MaxLength=") + zel_string::FromInt(MaxLength) +
                            " Value at Error=" + zel_string::FromInt(static_cast<signed char>(Byte)));
    }
}

// Two to four zero bytes behind the text, as in every zel_string block.
xbd_byte_buffer::xbd_byte_buffer(int64_t Length) : Block(nullptr), Length(0)
{
    TOVAS_ASSERT(Length>=0 && Length<=0x7FFFFFFB, "An XBD block must fit in one string.", nullptr);
    Block = static_cast<char *>(std::malloc(static_cast<size_t>(Length) + 4));
    if (Block == nullptr)
        throw zel_error(zel_string("Out of memory"));
    std::memset(Block + Length, 0, 4);
    this->Length = static_cast<int32_t>(Length);
}

xbd_byte_buffer::~xbd_byte_buffer()
{
    std::free(Block);
}

zel_string xbd_byte_buffer::TakeString()
{
    TOVAS_ASSERT(Block!=NULL, nullptr);
    zel_string Result;
    Result.AdoptBuffer(Block, Length);
    Block = nullptr;
    Length = 0;
    return Result;
}
