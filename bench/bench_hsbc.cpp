#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <random>
#include <string>

#include "art_engine/effects/art_hsbc_filter.h"
#include "art_engine/pixels/art_bitmap.h"
#include "bench/bench_ratio_reporter.h"

// The colour filter over a full-HD layer, for several of the panel's presets, against a plain memcpy
// of the same layer's bytes. The layer is random: opaque, as the inside of a photo is, or with random
// alpha, the worst case, where every pixel is unpremultiplied by division and premultiplied again.
// Each pass starts from the same pixels, restored outside the timing, since a filter's output is
// not like its input (a grey layer, for one, takes the quick road of the hue arithmetic).

namespace {

constexpr int Width = 1920;
constexpr int Height = 1080;
constexpr size_t FrameBytes = size_t(Width) * Height * 4;
constexpr double FrameMegapixels = Width * Height / 1e6;

void FillRandom(art_bitmap &Bitmap, uint32_t Seed, bool Opaque)
{
    std::mt19937 Random(Seed);
    uint8_t *Bytes = Bitmap.GetPixelData();
    for (size_t I = 0; I < FrameBytes; I += 4) {
        uint32_t Word = Random();
        unsigned Alpha = Opaque ? 255 : Word >> 24;
        Bytes[I] = static_cast<uint8_t>((uint8_t(Word) * Alpha) / 255);
        Bytes[I + 1] = static_cast<uint8_t>((uint8_t(Word >> 8) * Alpha) / 255);
        Bytes[I + 2] = static_cast<uint8_t>((uint8_t(Word >> 16) * Alpha) / 255);
        Bytes[I + 3] = static_cast<uint8_t>(Alpha);
    }
}

struct preset
{
    const char *Name;
    double H;
    double S;
    double B;
    double C;
    bool Invert;
    bool Colorize;
};

// From the panel's presets: each takes a different road through the arithmetic.
const preset Presets[] = {
    {"Normal", 0, 0, 0, 0, false, false},
    {"Invert", 0, 0, 0, 0, true, false},
    {"BlackAndWhiteFilm", 0, -1, -0.03, 0.22, false, false},
    {"Sepia", -0.85, -0.58, 0, 0, false, true},
    {"HighContrast", 0, 0, 0, 0.5, false, false},
    {"EvilRed", -1, 1, -0.28, 0, false, true},
    {"Insane", -1, 1, 0, 0.66, true, false},
};

void BM_MemcpyFrame(benchmark::State &State)
{
    art_bitmap Source(Width, Height);
    art_bitmap Target(Width, Height);
    FillRandom(Source, 1, false);
    FillRandom(Target, 2, false);
    for (auto _ : State) {
        std::memcpy(Target.GetPixelData(), Source.GetPixelData(), FrameBytes);
        benchmark::DoNotOptimize(Target.GetPixelData());
        benchmark::ClobberMemory();
    }
    State.SetBytesProcessed(int64_t(State.iterations()) * int64_t(FrameBytes));
}

// OneByOne runs the portable arithmetic on every row instead of the filter's own drawing, which
// takes the vector kernel where the processor has it.
void FilterFrame(benchmark::State &State, const preset &Preset, bool Opaque, bool OneByOne)
{
    art_bitmap Source(Width, Height);
    art_bitmap Layer(Width, Height);
    FillRandom(Source, 3, Opaque);
    art_hsbc_filter Filter;
    Filter.SetHShift(Preset.H);
    Filter.SetSShift(Preset.S);
    Filter.SetBShift(Preset.B);
    Filter.SetCShift(Preset.C);
    Filter.SetInvert(Preset.Invert);
    Filter.SetColorize(Preset.Colorize);
    reference_pointer<bitmap_interface> Target(&Layer);
    for (auto _ : State) {
        State.PauseTiming();
        std::memcpy(Layer.GetPixelData(), Source.GetPixelData(), FrameBytes);
        State.ResumeTiming();
        if (OneByOne) {
            art_hsbc_pixel_filter Pixels = Filter.MakePixelFilter();
            for (int Y = 0; Y < Height; Y++)
                Pixels.FilterPixelsOneByOne(Layer.GetPixelRow(Y), Width);
        } else {
            Filter.Draw(Target, Target, agg::trans_affine(), reference_pointer<art_cache>());
        }
        benchmark::DoNotOptimize(Layer.GetPixelData());
        benchmark::ClobberMemory();
    }
    State.SetBytesProcessed(int64_t(State.iterations()) * int64_t(FrameBytes));
}

std::string Name(const preset &Preset, bool Opaque, bool OneByOne = false)
{
    return std::string("BM_Hsbc") + Preset.Name + (Opaque ? "Opaque" : "Translucent") + (OneByOne ? "OneByOne" : "");
}

} // namespace

int main(int argc, char **argv)
{
    benchmark::RegisterBenchmark("BM_MemcpyFrame", BM_MemcpyFrame)->Unit(benchmark::kMicrosecond);
    for (const preset &Preset : Presets)
        for (bool Opaque : {true, false})
            for (bool OneByOne : {false, true})
                benchmark::RegisterBenchmark(Name(Preset, Opaque, OneByOne).c_str(),
                                             [&Preset, Opaque, OneByOne](benchmark::State &State) {
                                                 FilterFrame(State, Preset, Opaque, OneByOne);
                                             })
                    ->Unit(benchmark::kMicrosecond);
    ratio_reporter Reporter;
    if (!Reporter.RunAll(argc, argv))
        return 1;
    std::printf("\nColour filter over a %dx%d layer (target at least 100 megapixels a second;\n  the last column is how many times faster than the one-by-one arithmetic):\n", Width, Height);
    std::printf("  %-40s %10s %12s %14s\n", "", "MP/s", "x memcpy", "x one by one");
    std::printf("  %-40s %10.0f %12.2f\n", "memcpy of the layer", FrameMegapixels / (Reporter.GetTime("BM_MemcpyFrame") * 1e-6),
                1.0);
    for (const preset &Preset : Presets)
        for (bool Opaque : {true, false}) {
            std::string Benchmark = Name(Preset, Opaque);
            double Time = Reporter.GetTime(Benchmark);
            if (Time <= 0)
                continue;
            double OneByOneTime = Reporter.GetTime(Name(Preset, Opaque, true));
            std::printf("  %-40s %10.0f %12.2f %13.2fx\n", Benchmark.c_str(), FrameMegapixels / (Time * 1e-6),
                        Reporter.GetRatio(Benchmark, "BM_MemcpyFrame"), OneByOneTime / Time);
        }
    return 0;
}
