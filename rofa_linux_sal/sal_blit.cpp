#include "rofa_linux_sal/sal_blit.h"

#include <cstddef>
#include <cstdlib>
#include <cstring>

#include "zel_basics/debug.h"

// Pixels of 16 and 32 bits are stored as native words: the masks describe the word, not the bytes.
static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "the 32-bit B,G,R line form reads pixels as little-endian words");

namespace {

// Where one 8-bit channel goes in a pixel word: shifted so that its top bit lands on the mask's top
// bit, low bits that the mask has no room for dropped.
struct channel_place
{
    uint32_t Mask;
    int Shift;

    explicit channel_place(uint32_t Mask) : Mask(Mask), Shift(0)
    {
        if (Mask != 0)
            Shift = __builtin_ctz(Mask) + __builtin_popcount(Mask) - 8;
    }

    uint32_t Place(uint8_t Channel) const
    {
        uint32_t Value = Shift >= 0 ? uint32_t(Channel) << Shift : uint32_t(Channel) >> -Shift;
        return Value & Mask;
    }

    // For 24-bit pixels: the byte in memory that the mask names, or -1 if it names none. The two fixed
    // 24-bit forms put the mask 0xFF0000 in the first byte, so the general form counts bytes from the
    // top of the pixel value in the same way and agrees with them.
    int ByteIndex(int BytesPerPixel) const
    {
        if (Mask == 0)
            return -1;
        int FromBottom = __builtin_ctz(Mask) / 8;
        return FromBottom < BytesPerPixel ? BytesPerPixel - 1 - FromBottom : -1;
    }
};

struct pixel_format
{
    channel_place Red;
    channel_place Green;
    channel_place Blue;
};

using line_copy = void (*)(uint8_t *Target, const uint8_t *Source, int Width, const pixel_format &Format);

void CopyLine16Fast(uint8_t *Target, const uint8_t *Source, int Width, const pixel_format &)
{
    for (int X = 0; X < Width; X++, Source += 4, Target += 2)
    {
        uint16_t Pixel = static_cast<uint16_t>((Source[0] & 0xF8) * 256 + (Source[1] & 0xFC) * 8 + Source[2] / 8);
        std::memcpy(Target, &Pixel, 2);
    }
}

void CopyLine16General(uint8_t *Target, const uint8_t *Source, int Width, const pixel_format &Format)
{
    for (int X = 0; X < Width; X++, Source += 4, Target += 2)
    {
        uint16_t Pixel = static_cast<uint16_t>(Format.Red.Place(Source[0]) | Format.Green.Place(Source[1]) |
                                               Format.Blue.Place(Source[2]));
        std::memcpy(Target, &Pixel, 2);
    }
}

void CopyLine24RGB(uint8_t *Target, const uint8_t *Source, int Width, const pixel_format &)
{
    for (int X = 0; X < Width; X++, Source += 4, Target += 3)
    {
        Target[0] = Source[0];
        Target[1] = Source[1];
        Target[2] = Source[2];
    }
}

void CopyLine24BGR(uint8_t *Target, const uint8_t *Source, int Width, const pixel_format &)
{
    for (int X = 0; X < Width; X++, Source += 4, Target += 3)
    {
        Target[0] = Source[2];
        Target[1] = Source[1];
        Target[2] = Source[0];
    }
}

void CopyLine24General(uint8_t *Target, const uint8_t *Source, int Width, const pixel_format &Format)
{
    int RedByte = Format.Red.ByteIndex(3);
    int GreenByte = Format.Green.ByteIndex(3);
    int BlueByte = Format.Blue.ByteIndex(3);
    for (int X = 0; X < Width; X++, Source += 4, Target += 3)
    {
        if (RedByte >= 0)
            Target[RedByte] = Source[0];
        if (GreenByte >= 0)
            Target[GreenByte] = Source[1];
        if (BlueByte >= 0)
            Target[BlueByte] = Source[2];
    }
}

// Four pixels at a time in a 16-byte vector, or one in a word; the fourth byte is read back and
// written unchanged.
using pixel_vector = uint32_t __attribute__((vector_size(16)));

template <class T> T RGBToBGRKeepingFourthByte(T From, T To)
{
    return (To & 0xFF000000u) | ((From & 0xFFu) << 16) | (From & 0xFF00u) | ((From >> 16) & 0xFFu);
}

// The screen's own format, the one hot path. NextLine is touched one cache line per 16 pixels while
// this line is copied: a bottom-up buffer is walked downwards in memory, and the hardware prefetcher
// would start each line's stream anew with a run of misses.
void CopyLine32BGR(uint8_t *Target, const uint8_t *Source, int Width, const uint8_t *NextLine)
{
    int X = 0;
    for (; X + 16 <= Width; X += 16)
    {
        __builtin_prefetch(NextLine + X * 4);
        for (int Offset = X * 4; Offset < X * 4 + 64; Offset += 16)
        {
            pixel_vector From;
            pixel_vector To;
            std::memcpy(&From, Source + Offset, 16);
            std::memcpy(&To, Target + Offset, 16);
            To = RGBToBGRKeepingFourthByte(From, To);
            std::memcpy(Target + Offset, &To, 16);
        }
    }
    for (; X < Width; X++)
    {
        uint32_t From;
        uint32_t To;
        std::memcpy(&From, Source + X * 4, 4);
        std::memcpy(&To, Target + X * 4, 4);
        To = RGBToBGRKeepingFourthByte(From, To);
        std::memcpy(Target + X * 4, &To, 4);
    }
}

void CopyLine32General(uint8_t *Target, const uint8_t *Source, int Width, const pixel_format &Format)
{
    for (int X = 0; X < Width; X++, Source += 4, Target += 4)
    {
        uint32_t Pixel = Format.Red.Place(Source[0]) | Format.Green.Place(Source[1]) | Format.Blue.Place(Source[2]);
        std::memcpy(Target, &Pixel, 4);
    }
}

bool HasMasks(uint32_t RedMask, uint32_t GreenMask, uint32_t BlueMask, uint32_t Red, uint32_t Green, uint32_t Blue)
{
    return RedMask == Red && GreenMask == Green && BlueMask == Blue;
}

} // namespace

void SALBlit(uint8_t *Target, int32_t Stride, int BitsPerPixel, int_point2d TargetSize, int_point2d TargetLocation,
             uint32_t RedMask, uint32_t GreenMask, uint32_t BlueMask, reference_pointer<bitmap_interface> Source)
{
    int_point2d SourceBitmapSize = Source->GetSize();
    TOVAS_ASSERT(TargetLocation.X>=0 && TargetLocation.Y>=0, nullptr);
    TOVAS_ASSERT(TargetLocation+SourceBitmapSize<=TargetSize, nullptr);
    int TargetBytesPerPixel = (BitsPerPixel + 7) / 8;
    const uint8_t *SourceLine = Source->GetFirstLine();
    ptrdiff_t SourceStride = Source->GetLineStride();
    ptrdiff_t TargetStride = Stride;
    uint8_t *TargetLine = Target + TargetLocation.Y * TargetStride + TargetLocation.X * static_cast<ptrdiff_t>(TargetBytesPerPixel);

    if (BitsPerPixel == 32 && HasMasks(RedMask, GreenMask, BlueMask, 0xFF, 0xFF00, 0xFF0000))
    {
        size_t LineBytes = static_cast<size_t>(std::labs(Stride));
        for (int Y = 0; Y < SourceBitmapSize.Y; Y++)
            std::memcpy(TargetLine + Y * TargetStride, SourceLine + Y * SourceStride, LineBytes);
        return;
    }

    if (BitsPerPixel == 32 && HasMasks(RedMask, GreenMask, BlueMask, 0xFF0000, 0xFF00, 0xFF))
    {
        for (int Y = 0; Y < SourceBitmapSize.Y; Y++)
        {
            uint8_t *Line = TargetLine + Y * TargetStride;
            CopyLine32BGR(Line, SourceLine + Y * SourceStride, SourceBitmapSize.X,
                          Y + 1 < SourceBitmapSize.Y ? Line + TargetStride : Line);
        }
        return;
    }

    line_copy CopyLine;
    if (BitsPerPixel == 16 && HasMasks(RedMask, GreenMask, BlueMask, 0xF800, 0x7E0, 0x1F))
        CopyLine = CopyLine16Fast;
    else if (BitsPerPixel == 15 || BitsPerPixel == 16)
    {
        TOVAS_ASSERT(TargetBytesPerPixel==2, nullptr);
        CopyLine = CopyLine16General;
    }
    else if (BitsPerPixel == 24 && HasMasks(RedMask, GreenMask, BlueMask, 0xFF0000, 0xFF00, 0xFF))
        CopyLine = CopyLine24RGB;
    else if (BitsPerPixel == 24 && HasMasks(RedMask, GreenMask, BlueMask, 0xFF, 0xFF00, 0xFF0000))
        CopyLine = CopyLine24BGR;
    else if (BitsPerPixel == 24)
        CopyLine = CopyLine24General;
    else if (BitsPerPixel == 32)
        CopyLine = CopyLine32General;
    else
        return;

    pixel_format Format = {channel_place(RedMask), channel_place(GreenMask), channel_place(BlueMask)};
    for (int Y = 0; Y < SourceBitmapSize.Y; Y++)
        CopyLine(TargetLine + Y * TargetStride, SourceLine + Y * SourceStride, SourceBitmapSize.X, Format);
}
