// Filling and stroking 10,000 rotated rounded rectangles and ellipses of 8 to 256 pixels into a
// window-sized bitmap, against the same paths and matrices drawn with AGG's own blender and
// scanline renderer in the same run.
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <vector>

#include <agg_conv_curve.h>
#include <agg_conv_stroke.h>
#include <agg_conv_transform.h>
#include <agg_ellipse.h>
#include <agg_pixfmt_rgba.h>
#include <agg_rasterizer_scanline_aa.h>
#include <agg_renderer_base.h>
#include <agg_renderer_scanline.h>
#include <agg_rendering_buffer.h>
#include <agg_scanline_p.h>
#include <benchmark/benchmark.h>

#include "art_engine/geometry/art_path.h"
#include "art_engine/pixels/art_bitmap.h"
#include "art_engine/pixels/art_blend.h"
#include "bench/bench_ratio_reporter.h"

namespace {

const int WindowWidth = 1280;
const int WindowHeight = 800;
const int Shapes = 10000;
const double StrokeWidth = 3;

struct shape
{
    art_path Path;
    agg::trans_affine Matrix;
    double Scale;
    agg::rgba8 Color;
};

// The shapes in object units, each with a matrix that turns it about its centre and places it
// anywhere in the window; a fixed seed gives the same set every run.
std::vector<shape> &GetShapes()
{
    static std::vector<shape> All;
    if (!All.empty())
        return All;
    uint32_t Seed = 20240611;
    auto Next = [&Seed](uint32_t Range) {
        Seed = Seed * 1103515245u + 12345u;
        return (Seed >> 8) % Range;
    };
    All.resize(Shapes);
    for (int I = 0; I < Shapes; I++) {
        shape &Shape = All[I];
        double W = 8 + Next(249);
        double H = 8 + Next(249);
        if (I % 2 == 0) {
            double Radius = Next(unsigned(std::fmin(W, H) / 4) + 1);
            AddRoundedRectanglePath(Shape.Path, 0, 0, W, H, Radius, Radius);
        } else {
            agg::ellipse Ellipse(W / 2, H / 2, W / 2, H / 2);
            Shape.Path.concat_path(Ellipse);
        }
        double Angle = Next(3600) * 3.14159265358979323846 / 1800;
        Shape.Matrix = agg::trans_affine_translation(-W / 2, -H / 2) * agg::trans_affine_rotation(Angle) *
                       agg::trans_affine_translation(Next(WindowWidth), Next(WindowHeight));
        Shape.Scale = GetMatrixMaxScale(Shape.Matrix);
        Shape.Color = agg::rgba8(Next(256), Next(256), Next(256), 64 + Next(192));
    }
    return All;
}

void BM_FillShapes(benchmark::State &State)
{
    std::vector<shape> &All = GetShapes();
    art_bitmap Window(WindowWidth, WindowHeight);
    Window.Clear(agg::rgba8(255, 255, 255, 255));
    for (auto _ : State)
        for (shape &Shape : All)
            Window.FillPath(Shape.Path, Shape.Color, Shape.Matrix, false, Shape.Scale);
    benchmark::DoNotOptimize(Window.GetPixelData());
}
BENCHMARK(BM_FillShapes)->Unit(benchmark::kMillisecond);

void BM_StrokeShapes(benchmark::State &State)
{
    std::vector<shape> &All = GetShapes();
    art_bitmap Window(WindowWidth, WindowHeight);
    Window.Clear(agg::rgba8(255, 255, 255, 255));
    for (auto _ : State)
        for (shape &Shape : All)
            Window.StrokePath(Shape.Path, Shape.Color, StrokeWidth, Shape.Matrix, OutlineCentred, ArtJoinMiter,
                              ArtCapButt, ArtMiterLimit, Shape.Scale);
    benchmark::DoNotOptimize(Window.GetPixelData());
}
BENCHMARK(BM_StrokeShapes)->Unit(benchmark::kMillisecond);

// The baseline: AGG's premultiplied pixel format and blender, its solid scanline renderer.
struct agg_window
{
    std::vector<uint8_t> Pixels;
    agg::rendering_buffer Buffer;
    agg::pixfmt_rgba32_pre Format;
    agg::renderer_base<agg::pixfmt_rgba32_pre> Base;
    agg::renderer_scanline_aa_solid<agg::renderer_base<agg::pixfmt_rgba32_pre>> Solid;

    agg_window()
        : Pixels(size_t(WindowWidth) * WindowHeight * 4, 255),
          Buffer(Pixels.data(), WindowWidth, WindowHeight, WindowWidth * 4), Format(Buffer), Base(Format),
          Solid(Base)
    {
    }

    template <class VertexSource> void Draw(VertexSource &Source, agg::rgba8 Color)
    {
        PremultiplyColor(Color);
        agg::rasterizer_scanline_aa<> Rasterizer;
        Rasterizer.clip_box(0, 0, WindowWidth, WindowHeight);
        Rasterizer.add_path(Source);
        agg::scanline_p8 Line;
        Solid.color(Color);
        agg::render_scanlines(Rasterizer, Line, Solid);
    }
};

void BM_FillShapesAgg(benchmark::State &State)
{
    std::vector<shape> &All = GetShapes();
    agg_window Window;
    for (auto _ : State)
        for (shape &Shape : All) {
            agg::conv_curve<art_path> Curve(Shape.Path);
            Curve.approximation_scale(Shape.Scale);
            agg::conv_transform<agg::conv_curve<art_path>> Transformed(Curve, Shape.Matrix);
            Window.Draw(Transformed, Shape.Color);
        }
    benchmark::DoNotOptimize(Window.Pixels.data());
}
BENCHMARK(BM_FillShapesAgg)->Unit(benchmark::kMillisecond);

void BM_StrokeShapesAgg(benchmark::State &State)
{
    std::vector<shape> &All = GetShapes();
    agg_window Window;
    for (auto _ : State)
        for (shape &Shape : All) {
            agg::conv_curve<art_path> Curve(Shape.Path);
            Curve.approximation_scale(Shape.Scale);
            agg::conv_stroke<agg::conv_curve<art_path>> Stroke(Curve);
            Stroke.line_join(agg::miter_join);
            Stroke.line_cap(agg::butt_cap);
            Stroke.miter_limit(ArtMiterLimit);
            Stroke.approximation_scale(Shape.Scale);
            Stroke.width(StrokeWidth);
            agg::conv_transform<agg::conv_stroke<agg::conv_curve<art_path>>> Transformed(Stroke, Shape.Matrix);
            Window.Draw(Transformed, Shape.Color);
        }
    benchmark::DoNotOptimize(Window.Pixels.data());
}
BENCHMARK(BM_StrokeShapesAgg)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    ratio_reporter Reporter;
    if (!Reporter.RunAll(argc, argv))
        return 1;
    // The times are in milliseconds for all 10,000 shapes, so a tenth of one is microseconds a shape.
    std::printf("\nFill, microseconds a shape:   ours %.2f, AGG %.2f\n", Reporter.GetTime("BM_FillShapes") / 10,
                Reporter.GetTime("BM_FillShapesAgg") / 10);
    std::printf("Stroke, microseconds a shape: ours %.2f, AGG %.2f\n", Reporter.GetTime("BM_StrokeShapes") / 10,
                Reporter.GetTime("BM_StrokeShapesAgg") / 10);
    std::printf("Fill ours over AGG:   %.2f (target at most 1.3)\n", Reporter.GetRatio("BM_FillShapes", "BM_FillShapesAgg"));
    std::printf("Stroke ours over AGG: %.2f (target at most 1.3)\n",
                Reporter.GetRatio("BM_StrokeShapes", "BM_StrokeShapesAgg"));
    return 0;
}
