// The stack blur of a full-HD layer, colour and alpha as a blur effect does it, at three radii,
// against a plain running-sum box blur of the same layer in the same run. The stack blur's cost
// should not depend on its radius.
#include <cstdint>
#include <cstdio>
#include <vector>

#include <benchmark/benchmark.h>

#include "art_engine/pixels/art_bitmap.h"
#include "art_engine/pixels/art_stack_blur.h"
#include "bench/bench_ratio_reporter.h"

namespace {

const int LayerWidth = 1920;
const int LayerHeight = 1080;
const int BoxRadius = 4;

ownership_pointer<art_bitmap> NoiseLayer()
{
    ownership_pointer<art_bitmap> Layer(new art_bitmap(LayerWidth, LayerHeight));
    uint32_t Seed = 12345;
    uint8_t *Bytes = Layer->GetPixelData();
    for (int I = 0; I < LayerWidth * LayerHeight * 4; I++) {
        Seed = Seed * 1103515245u + 12345u;
        Bytes[I] = static_cast<uint8_t>(Seed >> 16);
    }
    return Layer;
}

void StackBlur(benchmark::State &State, int Radius)
{
    ownership_pointer<art_bitmap> Layer = NoiseLayer();
    reference_pointer<art_bitmap> Target(Layer.Get());
    for (auto _ : State) {
        BlurColor(Target, Radius);
        BlurAlpha(Target, Radius);
        benchmark::DoNotOptimize(Layer->GetPixelData());
        benchmark::ClobberMemory();
    }
}

void BM_StackBlurRadius4(benchmark::State &State)
{
    StackBlur(State, 4);
}
BENCHMARK(BM_StackBlurRadius4)->Unit(benchmark::kMillisecond);

void BM_StackBlurRadius32(benchmark::State &State)
{
    StackBlur(State, 32);
}
BENCHMARK(BM_StackBlurRadius32)->Unit(benchmark::kMillisecond);

void BM_StackBlurRadius128(benchmark::State &State)
{
    StackBlur(State, 128);
}
BENCHMARK(BM_StackBlurRadius128)->Unit(benchmark::kMillisecond);

// One line of Count bytes Step apart, averaged over 2 * Radius + 1 bytes with a running sum, the end
// bytes repeated past the ends.
void BoxLine(uint8_t *Line, int Count, int Step, int Radius, std::vector<uint8_t> &Copy)
{
    for (int I = 0; I < Count; I++)
        Copy[I] = Line[I * Step];
    unsigned Div = 2 * Radius + 1;
    unsigned Sum = 0;
    for (int K = -Radius; K <= Radius; K++)
        Sum += Copy[K < 0 ? 0 : K >= Count ? Count - 1 : K];
    for (int I = 0; I < Count; I++) {
        Line[I * Step] = static_cast<uint8_t>(Sum / Div);
        int Out = I - Radius;
        int In = I + Radius + 1;
        Sum += Copy[In >= Count ? Count - 1 : In];
        Sum -= Copy[Out < 0 ? 0 : Out];
    }
}

// All four bytes of every pixel, rows then columns.
void BM_BoxBlurRadius4(benchmark::State &State)
{
    ownership_pointer<art_bitmap> Layer = NoiseLayer();
    std::vector<uint8_t> Copy(LayerWidth > LayerHeight ? LayerWidth : LayerHeight);
    uint8_t *Bytes = Layer->GetPixelData();
    int Stride = Layer->GetPixelStride();
    for (auto _ : State) {
        for (int Y = 0; Y < LayerHeight; Y++)
            for (int C = 0; C < 4; C++)
                BoxLine(Bytes + Y * Stride + C, LayerWidth, 4, BoxRadius, Copy);
        for (int X = 0; X < LayerWidth; X++)
            for (int C = 0; C < 4; C++)
                BoxLine(Bytes + X * 4 + C, LayerHeight, Stride, BoxRadius, Copy);
        benchmark::DoNotOptimize(Bytes);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_BoxBlurRadius4)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    ratio_reporter Reporter(ratio_reporter::RealTime);
    if (!Reporter.RunAll(argc, argv))
        return 1;
    std::printf("\nStack blur radius 4 over box blur radius 4:     %.2f\n",
                Reporter.GetRatio("BM_StackBlurRadius4", "BM_BoxBlurRadius4"));
    std::printf("Stack blur radius 32 over box blur radius 4:    %.2f\n",
                Reporter.GetRatio("BM_StackBlurRadius32", "BM_BoxBlurRadius4"));
    std::printf("Stack blur radius 128 over box blur radius 4:   %.2f\n",
                Reporter.GetRatio("BM_StackBlurRadius128", "BM_BoxBlurRadius4"));
    std::printf("Radius 32 over radius 4:                        %.2f (target 0.8 to 1.2)\n",
                Reporter.GetRatio("BM_StackBlurRadius32", "BM_StackBlurRadius4"));
    std::printf("Radius 128 over radius 4:                       %.2f (target 0.8 to 1.2)\n",
                Reporter.GetRatio("BM_StackBlurRadius128", "BM_StackBlurRadius4"));
    return 0;
}
