// A full-HD picture turned by 10 degrees into a full-HD target, the case of a photo rotated on
// the page, against a plain copy of the target's bytes in the same run.
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include <benchmark/benchmark.h>

#include "art_engine/pixels/art_bitmap.h"
#include "bench/bench_ratio_reporter.h"

namespace {

const int Width = 1920;
const int Height = 1080;
const double TargetMegapixels = Width * double(Height) / 1e6;

// Opaque smooth colour with a translucent band across the middle, so that both the opaque and the
// blending paths of the kernel are taken.
void FillPicture(art_bitmap &Picture)
{
    for (int Y = 0; Y < Height; Y++) {
        agg::rgba8 *Row = Picture.GetPixelRow(Y);
        for (int X = 0; X < Width; X++) {
            unsigned A = (Y > Height / 3 && Y < Height / 2) ? 96 + (X & 127) : 255;
            unsigned R = (X * 255 / Width) * A / 255;
            unsigned G = (Y * 255 / Height) * A / 255;
            unsigned B = ((X + Y) & 255) * A / 255;
            Row[X] = agg::rgba8(uint8_t(R), uint8_t(G), uint8_t(B), uint8_t(A));
        }
    }
}

void TurnedCorners(point2d Corners[4], double Angle)
{
    const double HalfW = Width / 2.0;
    const double HalfH = Height / 2.0;
    const double Local[4][2] = {{-HalfW, -HalfH}, {HalfW, -HalfH}, {HalfW, HalfH}, {-HalfW, HalfH}};
    for (int I = 0; I < 4; I++)
        Corners[I] = point2d(HalfW + Local[I][0] * std::cos(Angle) - Local[I][1] * std::sin(Angle),
                             HalfH + Local[I][0] * std::sin(Angle) + Local[I][1] * std::cos(Angle));
}

void BM_RotatedPicture(benchmark::State &State)
{
    art_bitmap Picture(Width, Height);
    FillPicture(Picture);
    art_bitmap Target(Width, Height);
    Target.Clear(agg::rgba8(0, 0, 0, 0));
    point2d Corners[4];
    TurnedCorners(Corners, 10 * 3.14159265358979323846 / 180);
    int_rectangle Whole(int_point2d(0, 0), int_point2d(Width, Height));
    for (auto _ : State) {
        Target.DrawBitmapInQuad(&Picture, Whole, Corners);
        benchmark::DoNotOptimize(Target.GetPixelData());
        benchmark::ClobberMemory();
    }
    State.SetItemsProcessed(int64_t(State.iterations()) * Width * Height);
}
BENCHMARK(BM_RotatedPicture)->Unit(benchmark::kMillisecond);

void BM_CopyTarget(benchmark::State &State)
{
    art_bitmap From(Width, Height);
    From.Clear(agg::rgba8(1, 2, 3, 4));
    art_bitmap To(Width, Height);
    for (auto _ : State) {
        std::memcpy(To.GetPixelData(), From.GetPixelData(), size_t(Width) * Height * 4);
        benchmark::DoNotOptimize(To.GetPixelData());
        benchmark::ClobberMemory();
    }
    State.SetItemsProcessed(int64_t(State.iterations()) * Width * Height);
}
BENCHMARK(BM_CopyTarget)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    ratio_reporter Reporter;
    if (!Reporter.RunAll(argc, argv))
        return 1;
    double Milliseconds = Reporter.GetTime("BM_RotatedPicture");
    if (Milliseconds <= 0)
        return 0;
    std::printf("\n1920x1080 picture turned 10 degrees into a 1920x1080 target: %.1f ms, %.0f megapixels a second "
                "(target at least 100); %.1f copies of the target's bytes\n",
                Milliseconds, TargetMegapixels / (Milliseconds / 1000),
                Reporter.GetRatio("BM_RotatedPicture", "BM_CopyTarget"));
    return 0;
}
