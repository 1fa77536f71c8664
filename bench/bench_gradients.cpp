// A full-HD layer flooded with each kind of gradient, against the solid fill of the same layer in
// the same run: megapixels a second for each, and each one's time over the solid fill's.
#include <cstdint>
#include <cstdio>
#include <string>

#include <benchmark/benchmark.h>

#include "art_engine/effects/art_color_fade.h"
#include "art_engine/effects/art_color_fill.h"
#include "art_engine/pixels/art_bitmap.h"
#include "bench/bench_ratio_reporter.h"

namespace {

const int LayerWidth = 1920;
const int LayerHeight = 1080;
const double LayerMegapixels = double(LayerWidth) * LayerHeight / 1e6;

const char *const FadeNames[] = {"Linear", "Circular", "Diamond", "Conic", "XY", "SqrtXY"};

// A parent of the layer's size whose one child is the effect; the effect draws into the layer with
// the identity, as it does inside a stencilled object's composite.
struct layer_scene
{
    explicit layer_scene(ownership_pointer<art_object> Effect) : Layer(LayerWidth, LayerHeight)
    {
        Parent.SetHandle(point2d(0, 0));
        Parent.SetSize(point2d(LayerWidth, LayerHeight));
        Parent.SetLocation(point2d(0, 0));
        this->Effect = Parent.AddChild(Effect);
        Layer.Clear(agg::rgba8(0, 0, 0, 0));
    }

    ~layer_scene()
    {
        Parent.MarkChildrenForDeletion();
        Parent.DeleteMarkedChildren();
    }

    void Draw()
    {
        reference_pointer<bitmap_interface> Target(&Layer);
        Effect->Draw(Target, Target, agg::trans_affine(), reference_pointer<art_cache>());
        benchmark::DoNotOptimize(Layer.GetPixelData());
        benchmark::ClobberMemory();
    }

    art_object Parent;
    reference_pointer<art_object> Effect;
    art_bitmap Layer;
};

void CountPixels(benchmark::State &State)
{
    State.counters["Mpixel/s"] = benchmark::Counter(LayerMegapixels, benchmark::Counter::kIsIterationInvariantRate);
}

void BM_SolidFill(benchmark::State &State)
{
    layer_scene Scene(ownership_pointer<art_object>(new art_color_fill(agg::rgba(0.2, 0.4, 0.6, 1))));
    for (auto _ : State)
        Scene.Draw();
    CountPixels(State);
}
BENCHMARK(BM_SolidFill)->Unit(benchmark::kMillisecond);

// A translucent colour goes through scan conversion and blending, as a gradient does.
void BM_TranslucentSolidFill(benchmark::State &State)
{
    layer_scene Scene(ownership_pointer<art_object>(new art_color_fill(agg::rgba(0.2, 0.4, 0.6, 0.5))));
    for (auto _ : State)
        Scene.Draw();
    CountPixels(State);
}
BENCHMARK(BM_TranslucentSolidFill)->Unit(benchmark::kMillisecond);

// Centred, reaching to the right edge, twice repeated: every kind shows all of its range.
void BM_Gradient(benchmark::State &State, int32_t Type)
{
    art_color_fade *Fade = new art_color_fade;
    layer_scene Scene((ownership_pointer<art_object>(Fade)));
    array<point2d> Points;
    Points.Add(point2d(0.5, 0.5));
    Points.Add(point2d(1, 0.5));
    array<agg::rgba> Colors;
    Colors.Add(agg::rgba(1, 0.5, 0, 1));
    Colors.Add(agg::rgba(0, 0.25, 1, 1));
    Fade->SetPoints(Points, Colors);
    Fade->SetFadeType(Type);
    Fade->SetReps(2);
    for (auto _ : State)
        Scene.Draw();
    CountPixels(State);
}

// The reporter keeps times by function name, so each kind is registered under a name of its own.
std::string GradientName(int Type)
{
    return std::string("BM_Gradient") + FadeNames[Type];
}

} // namespace

int main(int argc, char **argv)
{
    for (int Type = 0; Type < 6; Type++)
        benchmark::RegisterBenchmark(GradientName(Type).c_str(), BM_Gradient, Type)->Unit(benchmark::kMillisecond);
    // Processor time: the program runs one thread, and on a machine shared with builds the wall
    // clock measures the neighbours as much as the fill.
    ratio_reporter Reporter(ratio_reporter::CPUTime);
    if (!Reporter.RunAll(argc, argv))
        return 1;
    double Solid = Reporter.GetTime("BM_SolidFill");
    std::printf("\n%-12s %10s %22s\n", "Layer fill", "Mpixel/s", "time over solid fill");
    if (Solid > 0)
        std::printf("%-12s %10.1f %22.2f\n", "Solid", LayerMegapixels / (Solid / 1000), 1.0);
    double Translucent = Reporter.GetTime("BM_TranslucentSolidFill");
    if (Translucent > 0 && Solid > 0)
        std::printf("%-12s %10.1f %22.2f\n", "Translucent", LayerMegapixels / (Translucent / 1000),
                    Translucent / Solid);
    for (int Type = 0; Type < 6; Type++) {
        double Time = Reporter.GetTime(GradientName(Type));
        if (Time <= 0 || Solid <= 0)
            continue;
        std::printf("%-12s %10.1f %22.2f%s\n", FadeNames[Type], LayerMegapixels / (Time / 1000), Time / Solid,
                    Type <= 1 ? "   (target at least 200 Mpixel/s)" : "");
    }
    return 0;
}
