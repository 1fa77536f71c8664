#include <benchmark/benchmark.h>

#include <cstring>
#include <random>
#include <vector>

#include "art_engine/art_bitmap.h"
#include "art_engine/art_blend.h"

// The per-pixel kernels over a full-HD bitmap, each against a plain memcpy of the same bitmap's
// bytes, their lower bound. Every kernel runs without branches on the pixel values, so blending the
// same bitmap again and again costs the same as the first time. The first argument picks the block
// width of the span kernels: 1 for the widest the processor has, 0 for the narrow one.

namespace {

constexpr int Width = 1920;
constexpr int Height = 1080;
constexpr size_t FrameBytes = size_t(Width) * Height * 4;

void FillRandom(art_bitmap &Bitmap, uint32_t Seed)
{
    std::mt19937 Random(Seed);
    uint8_t *Bytes = Bitmap.GetPixelData();
    for (size_t I = 0; I < FrameBytes; I += 4) {
        uint32_t Word = Random();
        uint8_t Alpha = static_cast<uint8_t>(Word >> 24);
        Bytes[I] = static_cast<uint8_t>((uint8_t(Word) * Alpha) >> 8);
        Bytes[I + 1] = static_cast<uint8_t>((uint8_t(Word >> 8) * Alpha) >> 8);
        Bytes[I + 2] = static_cast<uint8_t>((uint8_t(Word >> 16) * Alpha) >> 8);
        Bytes[I + 3] = Alpha;
    }
}

// Selects the block width for one benchmark and restores it after.
class block_width
{
public:
    explicit block_width(const benchmark::State &State) : WasWide(UseWideBlendBlocks(State.range(0) != 0)) {}
    ~block_width() { UseWideBlendBlocks(WasWide); }

private:
    bool WasWide;
};

void Finish(benchmark::State &State, art_bitmap &Target)
{
    benchmark::DoNotOptimize(Target.GetPixelData());
    benchmark::ClobberMemory();
    State.SetBytesProcessed(int64_t(State.iterations()) * int64_t(FrameBytes));
}

void BM_MemcpyFrame(benchmark::State &State)
{
    art_bitmap Source(Width, Height);
    art_bitmap Target(Width, Height);
    FillRandom(Source, 1);
    FillRandom(Target, 2);
    for (auto _ : State) {
        std::memcpy(Target.GetPixelData(), Source.GetPixelData(), FrameBytes);
        benchmark::DoNotOptimize(Target.GetPixelData());
        benchmark::ClobberMemory();
    }
    State.SetBytesProcessed(int64_t(State.iterations()) * int64_t(FrameBytes));
}
BENCHMARK(BM_MemcpyFrame)->Unit(benchmark::kMicrosecond);

void BM_ApplyStencil(benchmark::State &State)
{
    block_width Blocks(State);
    art_bitmap Layer(Width, Height);
    art_bitmap Stencil(Width, Height);
    FillRandom(Layer, 3);
    FillRandom(Stencil, 4);
    for (auto _ : State)
        Layer.ApplyStencil(&Stencil);
    Finish(State, Layer);
}
BENCHMARK(BM_ApplyStencil)->Arg(1)->Arg(0)->Unit(benchmark::kMicrosecond);

// A scanline run of one coverage byte across every row: the inside of a large filled shape.
void BM_SolidRunOneCover(benchmark::State &State)
{
    block_width Blocks(State);
    art_bitmap Target(Width, Height);
    FillRandom(Target, 5);
    agg::int8u Cover = static_cast<agg::int8u>(State.range(1));
    for (auto _ : State) {
        for (int Y = 0; Y < Height; Y++)
            Target.GetBaseRenderer().blend_hline(0, Y, Width - 1, agg::rgba8(60, 90, 30, 128), Cover);
    }
    Finish(State, Target);
}
BENCHMARK(BM_SolidRunOneCover)
    ->Args({1, 255})
    ->Args({1, 200})
    ->Args({0, 255})
    ->Args({0, 200})
    ->Unit(benchmark::kMicrosecond);

// A span with a coverage byte for each pixel across every row: anti-aliased edges, at their worst.
void BM_SolidSpanCoverPerPixel(benchmark::State &State)
{
    block_width Blocks(State);
    art_bitmap Target(Width, Height);
    FillRandom(Target, 6);
    std::vector<agg::int8u> Covers(Width);
    std::mt19937 Random(7);
    for (agg::int8u &Cover : Covers)
        Cover = static_cast<agg::int8u>(Random());
    for (auto _ : State) {
        for (int Y = 0; Y < Height; Y++)
            Target.GetBaseRenderer().blend_solid_hspan(0, Y, Width, agg::rgba8(60, 90, 30, 128), Covers.data());
    }
    Finish(State, Target);
}
BENCHMARK(BM_SolidSpanCoverPerPixel)->Arg(1)->Arg(0)->Unit(benchmark::kMicrosecond);

void BM_BlendBitmap(benchmark::State &State)
{
    block_width Blocks(State);
    art_bitmap Source(Width, Height);
    art_bitmap Target(Width, Height);
    FillRandom(Source, 8);
    FillRandom(Target, 9);
    uint8_t Opacity = static_cast<uint8_t>(State.range(1));
    for (auto _ : State)
        Target.BlendBitmap(0, 0, &Source, Opacity);
    Finish(State, Target);
}
BENCHMARK(BM_BlendBitmap)
    ->Args({1, 255})
    ->Args({1, 200})
    ->Args({0, 255})
    ->Args({0, 200})
    ->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
