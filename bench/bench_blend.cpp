#include <benchmark/benchmark.h>

#include <cstring>
#include <memory>
#include <utility>
#include <random>
#include <vector>

#include "art_engine/pixels/art_alpha_runs.h"
#include "art_engine/pixels/art_bitmap.h"
#include "art_engine/pixels/art_blend.h"

// The per-pixel kernels over a full-HD bitmap, each against a plain memcpy of the same bitmap's
// bytes, their lower bound. The sources are random, so blocks of wholly opaque or wholly transparent
// pixels, which the colour span takes without arithmetic, hardly occur and every pass costs the same.
// The first argument picks the block width of the span kernels: 1 for the widest the processor has,
// 0 for the narrow one.

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

// What a repaint from the render cache composes: 500 small pictures, 24 to 55 pixels a side, at
// scattered places of a 1280 x 800 window. The second argument picks the pictures: 1 for opaque ones
// with a transparent corner and a soft edge, as cached objects look, 0 for random alpha throughout.
// The third, when 1, composes them by their alpha runs, measured beforehand, as the render cache
// does. Bytes processed counts the pixels composed.
void BM_BlendSmallPictures(benchmark::State &State)
{
    block_width Blocks(State);
    const int WindowWidth = 1280;
    const int WindowHeight = 800;
    const int Pictures = 500;
    bool Opaque = State.range(1) != 0;
    bool ByRuns = State.range(2) != 0;
    art_bitmap Window(WindowWidth, WindowHeight);
    Window.Clear(agg::rgba8(255, 255, 255, 255));
    std::vector<std::unique_ptr<art_bitmap>> Sources;
    std::vector<std::unique_ptr<art_alpha_runs>> Runs;
    std::vector<std::pair<int, int>> Places;
    std::mt19937 Random(10);
    int64_t Composed = 0;
    for (int I = 0; I < Pictures; I++) {
        int W = 24 + int(Random() % 32);
        int H = 24 + int(Random() % 32);
        Sources.emplace_back(new art_bitmap(W, H));
        art_bitmap &Picture = *Sources.back();
        for (int Y = 0; Y < H; Y++) {
            for (int X = 0; X < W; X++) {
                uint32_t Word = Random();
                uint8_t Alpha = Opaque ? (X < 4 && Y < 4 ? 0 : X == W - 1 ? 128 : 255) : uint8_t(Word >> 24);
                agg::rgba8 &Pixel = Picture.GetPixelRow(Y)[X];
                Pixel.r = static_cast<uint8_t>((uint8_t(Word) * Alpha) >> 8);
                Pixel.g = static_cast<uint8_t>((uint8_t(Word >> 8) * Alpha) >> 8);
                Pixel.b = static_cast<uint8_t>((uint8_t(Word >> 16) * Alpha) >> 8);
                Pixel.a = Alpha;
            }
        }
        Runs.emplace_back(new art_alpha_runs(Picture));
        Places.emplace_back(int(Random() % (WindowWidth - 60)), int(Random() % (WindowHeight - 60)));
        Composed += int64_t(W) * H * 4;
    }
    for (auto _ : State) {
        for (size_t I = 0; I < size_t(Pictures); I++) {
            art_bitmap *Picture = Sources[I].get();
            if (ByRuns)
                Window.BlendBitmap(Places[I].first, Places[I].second, Picture,
                                   int_rectangle(int_point2d(0, 0), Picture->GetSize()), 255, *Runs[I]);
            else
                Window.BlendBitmap(Places[I].first, Places[I].second, Picture, 255);
        }
    }
    benchmark::DoNotOptimize(Window.GetPixelData());
    benchmark::ClobberMemory();
    State.SetBytesProcessed(int64_t(State.iterations()) * Composed);
}
BENCHMARK(BM_BlendSmallPictures)
    ->Args({1, 1, 0})
    ->Args({1, 0, 0})
    ->Args({0, 1, 0})
    ->Args({0, 0, 0})
    ->Args({1, 1, 1})
    ->Args({1, 0, 1})
    ->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
