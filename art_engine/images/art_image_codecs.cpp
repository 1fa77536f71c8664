#include "art_engine/images/art_image_codecs.h"

#include <algorithm>
#include <cstring>

#include "art_engine/images/art_free_image_handles.h"
#include "art_engine/images/art_image_codecs_support.h"
#include "art_engine/pixels/art_blend.h"
#include "rofa_lib/stdio_file_streams.h"
#include "zel_basics/debug.h"
#include "zel_basics/zel_error.h"

namespace {

// The form the library writes: straight alpha, in its blue, green, red (, alpha) byte order, bottom
// row first; four bytes a pixel for PNG, three without alpha for JPEG.
FIBITMAP *MakeWritableBitmap(art_bitmap &Bitmap, int BytesPerPixel)
{
    int_point2d Size = Bitmap.GetSize();
    FIBITMAP *FIBitmap = FreeImage_Allocate(Size.X, Size.Y, 8 * BytesPerPixel, 0xFF0000, 0xFF00, 0xFF);
    TOVAS_ASSERT(FIBitmap, nullptr);
    if (BytesPerPixel == 3) {
        FREE_IMAGE_COLOR_TYPE ColorType = FreeImage_GetColorType(FIBitmap);
        TOVAS_ASSERT(ColorType==FIC_RGB, nullptr);
    }
    for (int Y = 0; Y < Size.Y; Y++) {
        const agg::rgba8 *Row = Bitmap.GetPixelRow(Size.Y - 1 - Y);
        BYTE *Target = FreeImage_GetScanLine(FIBitmap, Y);
        for (int X = 0; X < Size.X; X++, Target += BytesPerPixel) {
            agg::rgba8 Pixel = Row[X];
            UnpremultiplyPixel(Pixel);
            Target[0] = Pixel.b;
            Target[1] = Pixel.g;
            Target[2] = Pixel.r;
            if (BytesPerPixel == 4)
                Target[3] = Pixel.a;
        }
    }
    return FIBitmap;
}

// The library's own answer for 32 bits reads the alpha of every pixel, asking it for the width at
// each one, only to tell RGB from RGBA, which are both taken here; what rules a picture out, CMYK,
// is a flag of its colour profile.
FREE_IMAGE_COLOR_TYPE ColorTypeOf32Bits(FIBITMAP *FIBitmap)
{
    if (FreeImage_GetImageType(FIBitmap) != FIT_BITMAP)
        return FreeImage_GetColorType(FIBitmap);
    return (FreeImage_GetICCProfile(FIBitmap)->flags & FIICC_COLOR_IS_CMYK) ? FIC_CMYK : FIC_RGBALPHA;
}

zel_string SaveErrorText(int_point2d Size)
{
    return zel_string("Error saving image file Resolution: ") + zel_string::FromInt(Size.X) + "x" +
           zel_string::FromInt(Size.Y) + ImageLibraryErrorText();
}

} // namespace

ownership_pointer<art_bitmap> ConvertFIBitmapToArtBitmap(FIBITMAP *Source, bool UnloadSource)
{
    typedef agg::rgba8 color_type;
    free_image_bitmap OwnedSource(UnloadSource ? Source : nullptr);
    FIBITMAP *FIBitmap = Source;
    TOVAS_ASSERT(FIBitmap, nullptr);
    // Sixteen bits a channel converts to 32 bits directly; grey of 16 bits, floating point and
    // complex pictures go through 8 bits a channel first.
    free_image_bitmap Standard;
    FREE_IMAGE_TYPE ImageType = FreeImage_GetImageType(FIBitmap);
    if (ImageType != FIT_BITMAP && ImageType != FIT_RGB16 && ImageType != FIT_RGBA16) {
        Standard.Reset(FreeImage_ConvertToStandardType(FIBitmap, TRUE));
        FIBitmap = Standard.Get();
        if (FIBitmap == nullptr)
            throw zel_error(zel_string("The picture's pixel type can't be shown.") + ImageLibraryErrorText());
    }
    int_point2d Size(static_cast<int32_t>(FreeImage_GetWidth(FIBitmap)),
                     static_cast<int32_t>(FreeImage_GetHeight(FIBitmap)));
    // Photographs come in 24 bits, and are read straight from them: a 32-bit temporary would cost
    // as much again as the copy itself.
    if (FreeImage_GetImageType(FIBitmap) == FIT_BITMAP && FreeImage_GetBPP(FIBitmap) == 24) {
        FREE_IMAGE_COLOR_TYPE ColorType = FreeImage_GetColorType(FIBitmap);
        TOVAS_ASSERT(ColorType==FIC_RGB, nullptr);
        ownership_pointer<art_bitmap> Ret(new art_bitmap(Size.X, Size.Y));
        for (int Y = 0; Y < Size.Y; Y++) {
            const BYTE *SourceRow = FreeImage_GetScanLine(FIBitmap, Y);
            color_type *TargetRow = Ret->GetPixelRow(Size.Y - 1 - Y);
            for (int X = 0; X < Size.X; X++, SourceRow += 3)
                TargetRow[X] = color_type(SourceRow[FI_RGBA_RED], SourceRow[FI_RGBA_GREEN], SourceRow[FI_RGBA_BLUE], 255);
        }
        return Ret;
    }
    free_image_bitmap Temporary;
    if (FreeImage_GetBPP(FIBitmap) != 32) {
        Temporary.Reset(FreeImage_ConvertTo32Bits(FIBitmap));
        FIBitmap = Temporary.Get();
        if (FIBitmap == nullptr)
            throw zel_error(zel_string("The picture can't be converted to 32 bits a pixel.") + ImageLibraryErrorText());
    }
    TOVAS_ASSERT(FreeImage_GetBPP(FIBitmap)==32, nullptr);
    FREE_IMAGE_COLOR_TYPE ColorType = ColorTypeOf32Bits(FIBitmap);
    TOVAS_ASSERT(ColorType==FIC_RGBALPHA || ColorType==FIC_RGB, nullptr);

    unsigned SourceStride = FreeImage_GetPitch(FIBitmap);
    TOVAS_ASSERT(SourceStride==sizeof(color_type) * Size.X, nullptr);
    ownership_pointer<art_bitmap> Ret(new art_bitmap(Size.X, Size.Y));
    bool RedIsLowByte = FreeImage_GetRedMask(FIBitmap) == 0xFF;
    for (int Y = 0; Y < Size.Y; Y++) {
        const BYTE *SourceRow = FreeImage_GetScanLine(FIBitmap, Y);
        uint8_t *TargetRow = reinterpret_cast<uint8_t *>(Ret->GetPixelRow(Size.Y - 1 - Y));
        if (RedIsLowByte) {
            std::memcpy(TargetRow, SourceRow, SourceStride);
            continue;
        }
        for (int X = 0; X < Size.X; X++, SourceRow += 4, TargetRow += 4) {
            TargetRow[0] = SourceRow[2];
            TargetRow[1] = SourceRow[1];
            TargetRow[2] = SourceRow[0];
            TargetRow[3] = SourceRow[3];
        }
    }
    return Ret;
}

bool ReadImageSize(const zel_string &Data, int_point2d &Size)
{
    FIMEMORY *FIMemoryHandle = OpenMemoryOver(Data);
    TOVAS_ASSERT(FIMemoryHandle, nullptr);
    free_image_memory Memory(FIMemoryHandle);
    FREE_IMAGE_FORMAT Format = FreeImage_GetFileTypeFromMemory(FIMemoryHandle, 0);
    if (Format == FIF_GIF) {
        gif_extent Extent = ScanGIFExtent(Data);
        Size = int_point2d(static_cast<int32_t>(Extent.CanvasWidth), static_cast<int32_t>(Extent.CanvasHeight));
        return Size.X > 0 && Size.Y > 0;
    }
    if (Format == FIF_UNKNOWN || !FreeImage_FIFSupportsNoPixels(Format))
        return false;
    free_image_bitmap Header(FreeImage_LoadFromMemory(Format, FIMemoryHandle, FIF_LOAD_NOPIXELS));
    if (Header.Get() == nullptr)
        return false;
    Size = int_point2d(static_cast<int32_t>(FreeImage_GetWidth(Header.Get())),
                       static_cast<int32_t>(FreeImage_GetHeight(Header.Get())));
    return Size.X > 0 && Size.Y > 0;
}

ownership_pointer<art_bitmap> LoadImageFromString(const zel_string &Data, int MinimumLongSide)
{
    TOVAS_ASSERT(MinimumLongSide>=0, nullptr);
    SetImageLibraryMessageHook();
    FIMEMORY *FIMemoryHandle = OpenMemoryOver(Data);
    TOVAS_ASSERT(FIMemoryHandle, nullptr);
    free_image_memory Memory(FIMemoryHandle);
    FREE_IMAGE_FORMAT Format = FreeImage_GetFileTypeFromMemory(FIMemoryHandle, 0);
    if (Format == FIF_UNKNOWN) {
        LogImageLoadError(Data, "The bytes are not an image file of any known format.");
        return ownership_pointer<art_bitmap>();
    }
    // A damaged file may also break an invariant of the conversion; it still only fails to open.
    try {
        zel_string Refusal = CheckImageSize(Format, FIMemoryHandle, Data);
        if (!Refusal.IsEmpty()) {
            LogImageLoadError(Data, Refusal);
            return ownership_pointer<art_bitmap>();
        }
        // The JPEG decoder takes the size in the upper half of its flags, and scales while it
        // decodes, so that the whole picture never exists in memory.
        int Flags = Format == FIF_JPEG && MinimumLongSide > 0 ? std::min(MinimumLongSide, 0xffff) << 16 : 0;
        FIBITMAP *FIBitmap = FreeImage_LoadFromMemory(Format, FIMemoryHandle, Flags);
        if (FIBitmap == nullptr) {
            LogImageLoadError(Data, GetImageLibraryMessage());
            return ownership_pointer<art_bitmap>();
        }
        // The JPEG decoder fills whatever a cut-off file lacks with grey and only warns; half a
        // photograph would then enter the document as if it were whole.
        if (GetImageLibraryMessage().Contains("Premature end")) {
            FreeImage_Unload(FIBitmap);
            LogImageLoadError(Data, zel_string("The file ends before its picture does.") + ImageLibraryErrorText());
            return ownership_pointer<art_bitmap>();
        }
        // Three bytes a pixel carry no alpha, and premultiplying opaque pixels changes nothing.
        bool Opaque = FreeImage_GetImageType(FIBitmap) == FIT_BITMAP && FreeImage_GetBPP(FIBitmap) == 24;
        ownership_pointer<art_bitmap> Bitmap = ConvertFIBitmapToArtBitmap(FIBitmap, true);
        if (!Opaque)
            PremultiplyBitmap(Bitmap);
        return Bitmap;
    } catch (const zel_error &Error) {
        LogImageLoadError(Data, Error.GetMessage());
        return ownership_pointer<art_bitmap>();
    }
}

void SaveImageToString(zel_string &Target, reference_pointer<art_bitmap> Bitmap, int Format, int Quality)
{
    SetImageLibraryMessageHook();
    int_point2d Size = Bitmap->GetSize();
    // The library has no picture of no pixels to write.
    if (Size.X <= 0 || Size.Y <= 0)
        throw zel_error(SaveErrorText(Size));
    free_image_bitmap FIBitmap;
    FREE_IMAGE_FORMAT FileType = FIF_UNKNOWN;
    int Flags = 0;
    switch (Format) {
    case ArtImageFormatPNG:
        FIBitmap.Reset(MakeWritableBitmap(*Bitmap, 4));
        FileType = FIF_PNG;
        Flags = PNG_DEFAULT;
        break;
    case ArtImageFormatJPEG:
        FIBitmap.Reset(MakeWritableBitmap(*Bitmap, 3));
        FileType = FIF_JPEG;
        Flags = Quality < 0 ? 75 : Quality;
        break;
    case ArtImageFormatGIF:
        throw zel_error("Saving as GIF is not available yet: this build has no GIF writer.");
    default:
        TOVAS_ASSERT(false, nullptr);
    }
    FIMEMORY *FIMemoryHandle = FreeImage_OpenMemory();
    TOVAS_ASSERT(FIMemoryHandle, nullptr);
    free_image_memory Memory(FIMemoryHandle);
    if (!FreeImage_SaveToMemory(FileType, FIBitmap.Get(), FIMemoryHandle, Flags))
        throw zel_error(SaveErrorText(Size));
    BYTE *Bytes = nullptr;
    DWORD Length = 0;
    FreeImage_AcquireMemory(FIMemoryHandle, &Bytes, &Length);
    Target = zel_string(reinterpret_cast<const char *>(Bytes), static_cast<int>(Length));
}

bool SaveImageUnderSize(zel_string &Target, reference_pointer<art_bitmap> Bitmap, int MaximumBytes, bool ForceJPEG)
{
    if (!ForceJPEG) {
        SaveImageToString(Target, Bitmap, ArtImageFormatPNG);
        if (Target.GetLength() <= MaximumBytes)
            return true;
    }
    // JPEG size grows with quality, so the best quality that fits is found by halving.
    zel_string Fits;
    zel_string TooLarge;
    int Low = 0;
    int High = 101;
    int Tries = 0;
    while (Low < High - 1) {
        int Quality = (Low + High) / 2;
        TOVAS_ASSERT(Quality>=1 && Quality <=100, nullptr);
        zel_string Attempt;
        SaveImageToString(Attempt, Bitmap, ArtImageFormatJPEG, Quality);
        Tries++;
        if (Attempt.GetLength() > MaximumBytes) {
            High = Quality;
            TooLarge = Attempt;
        } else {
            Low = Quality;
            Fits = Attempt;
        }
    }
    Target = Fits.IsEmpty() ? TooLarge : Fits;
    DebugLog(zel_string("SaveImageUnderSize() JPEG Tries=") + zel_string::FromInt(Tries) + " Quality=" +
             zel_string::FromInt(Fits.IsEmpty() ? High : Low) + " Bytes=" + zel_string::FromInt(Target.GetLength()) +
             " Limit=" + zel_string::FromInt(MaximumBytes));
    return false;
}

zel_string GetImageExtension(int Format)
{
    zel_string Extension;
    switch (Format) {
    case ArtImageFormatJPEG:
        Extension = "jpg";
        break;
    case ArtImageFormatPNG:
        Extension = "png";
        break;
    case ArtImageFormatGIF:
        Extension = "gif";
        break;
    default:
        TOVAS_ASSERT(false, nullptr);
    }
    return Extension;
}

void SaveImageToFile(reference_pointer<art_bitmap> Bitmap, zel_string Name, bool AddExtension, int Format)
{
    if (AddExtension)
        Name += zel_string(".") + GetImageExtension(Format);
    zel_string Bytes;
    SaveImageToString(Bytes, Bitmap, Format);
    ownership_pointer<stdio_write_file_stream> File(new stdio_write_file_stream());
    File->CreateFile(Name);
    File->WriteData(Bytes.GetString(), Bytes.GetLength());
    File->CloseFile();
}
