#include "art_engine/images/art_image_codecs_support.h"

#include <cstdio>

#include "art_engine/images/art_free_image_handles.h"
#include "art_engine/images/art_image_library.h"
#include "art_engine/pixels/art_blend.h"
#include "zel_basics/debug.h"

FIMEMORY *OpenMemoryOver(const zel_string &Data)
{
    // The library only reads through a stream that it did not allocate, so the cast is safe.
    return FreeImage_OpenMemory(reinterpret_cast<BYTE *>(const_cast<char *>(Data.GetString())),
                                static_cast<DWORD>(Data.GetLength()));
}

zel_string ImageLibraryErrorText()
{
    return zel_string("\n\tFreeImage Error: ") + GetImageLibraryMessage();
}

void LogImageLoadError(const zel_string &Data, const zel_string &Reason)
{
    zel_string OneLine = Reason.Replace("\n\t", " ");
    OneLine.ReplaceCharacter('\n', ' ');
    DebugLog(zel_string("Error loading image file. Byte-Size=") + zel_string::FromInt(Data.GetLength()) +
             " Error=" + OneLine);
}

void PremultiplyBitmap(reference_pointer<art_bitmap> Bitmap)
{
    Bitmap->ForEachPixel([](agg::rgba8 *Pixel) { PremultiplyPixel(*Pixel); });
}

gif_extent ScanGIFExtent(const zel_string &Data)
{
    const uint8_t *Bytes = reinterpret_cast<const uint8_t *>(Data.GetString());
    int64_t Length = Data.GetLength();
    auto Word = [Bytes](int64_t At) { return int64_t(Bytes[At]) | int64_t(Bytes[At + 1]) << 8; };
    gif_extent Extent{0, 0, 0};
    if (Length < 13)
        return Extent;
    Extent.CanvasWidth = Word(6);
    Extent.CanvasHeight = Word(8);
    int64_t At = 13;
    if (Bytes[10] & 0x80)
        At += int64_t(3) << ((Bytes[10] & 7) + 1);
    auto SkipSubBlocks = [&]() {
        while (At < Length) {
            int64_t BlockLength = Bytes[At];
            At += 1 + BlockLength;
            if (BlockLength == 0)
                return;
        }
    };
    while (At < Length) {
        uint8_t Kind = Bytes[At];
        if (Kind == 0x3B)
            break;
        if (Kind == 0x21) {
            At += 2;
            SkipSubBlocks();
        } else if (Kind == 0x2C) {
            if (At + 10 > Length)
                break;
            int64_t Left = Word(At + 1), Top = Word(At + 3), Width = Word(At + 5), Height = Word(At + 7);
            uint8_t Flags = Bytes[At + 9];
            if (Width * Height > Extent.LargestFramePixels)
                Extent.LargestFramePixels = Width * Height;
            if (Left + Width > Extent.CanvasWidth)
                Extent.CanvasWidth = Left + Width;
            if (Top + Height > Extent.CanvasHeight)
                Extent.CanvasHeight = Top + Height;
            At += 10;
            if (Flags & 0x80)
                At += int64_t(3) << ((Flags & 7) + 1);
            At += 1;
            SkipSubBlocks();
        } else {
            // A decoder may step over stray bytes to the next block, so the scan does too, and so
            // sees every frame that the decoder could find.
            At++;
        }
    }
    return Extent;
}

namespace {

zel_string TooLargeText(int64_t Width, int64_t Height)
{
    return zel_string("The picture is too large to open: ") + zel_string::FromUnsigned(uint32_t(Width)) + " x " +
           zel_string::FromUnsigned(uint32_t(Height)) + " pixels.";
}

} // namespace

zel_string CheckImageSize(FREE_IMAGE_FORMAT Format, FIMEMORY *Memory, const zel_string &Data)
{
    if (Format == FIF_GIF) {
        gif_extent Extent = ScanGIFExtent(Data);
        if (Extent.LargestFramePixels > GetImageMaximumPixels() || Extent.CanvasWidth * Extent.CanvasHeight > GetImageMaximumPixels())
            return TooLargeText(Extent.CanvasWidth, Extent.CanvasHeight);
        return zel_string();
    }
    if (!FreeImage_FIFSupportsNoPixels(Format))
        return zel_string("Files of the format ") + FreeImage_GetFormatFromFIF(Format) +
               " are not opened: their picture size can't be checked before decoding.";
    FreeImage_SeekMemory(Memory, 0, SEEK_SET);
    free_image_bitmap Header(FreeImage_LoadFromMemory(Format, Memory, FIF_LOAD_NOPIXELS));
    FreeImage_SeekMemory(Memory, 0, SEEK_SET);
    if (Header.Get() == nullptr)
        return zel_string();
    int64_t Width = FreeImage_GetWidth(Header.Get());
    int64_t Height = FreeImage_GetHeight(Header.Get());
    if (Width * Height > GetImageMaximumPixels())
        return TooLargeText(Width, Height);
    return zel_string();
}
