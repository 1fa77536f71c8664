#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>

#include <FreeImage.h>

#include "art_engine/images/art_image_codecs.h"
#include "bench/bench_ratio_reporter.h"
#include "zel_basics/zel_string.h"

// Decoding a 4000x3000 photograph, JPEG and PNG with alpha, into a premultiplied art_bitmap, against
// the image library's own decoding of the same bytes, which is the least that any reader pays. The
// difference is the conversion: to 32 bits, rows turned over and red and blue swapped, the size
// check before decoding and premultiplying.

namespace {

constexpr int Width = 4000;
constexpr int Height = 3000;

// Smooth gradients with a little texture, as a photograph has, so that neither file compresses to
// nothing; alpha, where there is any, falls off towards the right.
zel_string MakeFile(FREE_IMAGE_FORMAT Format, int BitsPerPixel, int Flags)
{
    FIBITMAP *Bitmap = FreeImage_Allocate(Width, Height, BitsPerPixel);
    int BytesPerPixel = BitsPerPixel / 8;
    uint32_t State = 1;
    for (int Y = 0; Y < Height; Y++) {
        BYTE *Line = FreeImage_GetScanLine(Bitmap, Y);
        for (int X = 0; X < Width; X++, Line += BytesPerPixel) {
            State = State * 1664525u + 1013904223u;
            int Texture = int(State >> 28) - 8;
            Line[FI_RGBA_RED] = static_cast<BYTE>((X * 255 / Width + Texture) & 255);
            Line[FI_RGBA_GREEN] = static_cast<BYTE>(Y * 255 / Height);
            Line[FI_RGBA_BLUE] = static_cast<BYTE>(((X + Y) / 30 * 17 + Texture) & 255);
            if (BytesPerPixel == 4)
                Line[FI_RGBA_ALPHA] = static_cast<BYTE>(255 - X * 200 / Width);
        }
    }
    FIMEMORY *Memory = FreeImage_OpenMemory();
    FreeImage_SaveToMemory(Format, Bitmap, Memory, Flags);
    BYTE *Bytes = nullptr;
    DWORD Length = 0;
    FreeImage_AcquireMemory(Memory, &Bytes, &Length);
    zel_string File(reinterpret_cast<const char *>(Bytes), static_cast<int>(Length));
    FreeImage_CloseMemory(Memory);
    FreeImage_Unload(Bitmap);
    return File;
}

const zel_string &JpegFile()
{
    static zel_string File = MakeFile(FIF_JPEG, 24, 90);
    return File;
}

const zel_string &PngFile()
{
    static zel_string File = MakeFile(FIF_PNG, 32, PNG_DEFAULT);
    return File;
}

void LibraryDecode(benchmark::State &State, const zel_string &File, FREE_IMAGE_FORMAT Format)
{
    for (auto _ : State) {
        FIMEMORY *Memory =
            FreeImage_OpenMemory(reinterpret_cast<BYTE *>(const_cast<char *>(File.GetString())), File.GetLength());
        FIBITMAP *Bitmap = FreeImage_LoadFromMemory(Format, Memory, 0);
        if (Bitmap == nullptr)
            State.SkipWithError("the image library did not decode the file");
        benchmark::DoNotOptimize(Bitmap);
        FreeImage_Unload(Bitmap);
        FreeImage_CloseMemory(Memory);
    }
}

void EngineDecode(benchmark::State &State, const zel_string &File)
{
    for (auto _ : State) {
        ownership_pointer<art_bitmap> Bitmap = LoadImageFromString(File);
        if (!Bitmap.IsSet())
            State.SkipWithError("LoadImageFromString gave no picture");
        benchmark::DoNotOptimize(Bitmap.Get());
    }
}

void BM_LibraryDecodeJpeg(benchmark::State &State) { LibraryDecode(State, JpegFile(), FIF_JPEG); }
BENCHMARK(BM_LibraryDecodeJpeg)->Unit(benchmark::kMillisecond);

void BM_LoadImageFromStringJpeg(benchmark::State &State) { EngineDecode(State, JpegFile()); }
BENCHMARK(BM_LoadImageFromStringJpeg)->Unit(benchmark::kMillisecond);

void BM_LibraryDecodePng(benchmark::State &State) { LibraryDecode(State, PngFile(), FIF_PNG); }
BENCHMARK(BM_LibraryDecodePng)->Unit(benchmark::kMillisecond);

void BM_LoadImageFromStringPng(benchmark::State &State) { EngineDecode(State, PngFile()); }
BENCHMARK(BM_LoadImageFromStringPng)->Unit(benchmark::kMillisecond);

// What any decoder into a new bitmap pays before it has converted a pixel: the store of 48 MB,
// allocated and written once, its pages faulted in on the way.
void BM_NewBitmapWrittenOnce(benchmark::State &State)
{
    for (auto _ : State) {
        ownership_pointer<art_bitmap> Bitmap(new art_bitmap(Width, Height));
        Bitmap->Clear(agg::rgba8(0, 0, 0, 255));
        benchmark::DoNotOptimize(Bitmap->GetPixelData());
    }
}
BENCHMARK(BM_NewBitmapWrittenOnce)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    JpegFile();
    PngFile();
    ratio_reporter Reporter(ratio_reporter::RealTime);
    if (!Reporter.RunAll(argc, argv))
        return 1;
    std::printf("\nDecoding %dx%d into a premultiplied bitmap, over the image library's decoding alone "
                "(target at most 1.30):\n",
                Width, Height);
    std::printf("  JPEG (%d bytes): %.2f\n", JpegFile().GetLength(),
                Reporter.GetRatio("BM_LoadImageFromStringJpeg", "BM_LibraryDecodeJpeg"));
    std::printf("  PNG with alpha (%d bytes): %.2f\n", PngFile().GetLength(),
                Reporter.GetRatio("BM_LoadImageFromStringPng", "BM_LibraryDecodePng"));
    std::printf("A new %dx%d bitmap written once, over the JPEG decoding alone: %.2f\n", Width, Height,
                Reporter.GetRatio("BM_NewBitmapWrittenOnce", "BM_LibraryDecodeJpeg"));
    return 0;
}
