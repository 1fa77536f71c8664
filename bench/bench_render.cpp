// Painting a window of 500 stencilled objects: the first paint, a repaint after one small object
// moved, and a repaint of the whole window with nothing changed, against a copy of the whole
// window's pixels in the same run.
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <vector>

#include <agg_rasterizer_scanline_aa.h>
#include <agg_renderer_scanline.h>
#include <agg_scanline_u.h>
#include <benchmark/benchmark.h>

#include "art_engine/objects/art_object_children.h"
#include "art_engine/objects/art_top_object.h"
#include "art_engine/pixels/art_bitmap.h"
#include "bench/bench_baselines.h"
#include "bench/bench_ratio_reporter.h"
#include "tests/art_engine/objects/art_fill_object.h"

namespace {

const int WindowWidth = 1280;
const int WindowHeight = 800;
const int Objects = 500;

class bench_top_object : public art_top_object
{
public:
    void PresentBitmap(int, int, reference_pointer<art_bitmap>) override {}
};

void Place(art_object &Object, point2d Location, point2d Size)
{
    Object.SetHandle(point2d(0, 0));
    Object.SetSize(Size);
    Object.SetLocation(Location);
}

// 500 objects of 24 to 55 pixels a side, spread over the window by a fixed pseudo-random walk;
// each has a round-cornered stencil (a "+stencil" and a "-stencil" corner) and two fills.
struct scene
{
    bench_top_object Top;
    reference_pointer<art_object> Small;

    scene()
    {
        Top.SetSize(point2d(WindowWidth, WindowHeight));
        Top.SetBackgroundColor(agg::rgba(1, 1, 1, 1));
        uint32_t Seed = 12345;
        auto Next = [&Seed](uint32_t Range) {
            Seed = Seed * 1103515245u + 12345u;
            return (Seed >> 8) % Range;
        };
        for (int I = 0; I < Objects; I++) {
            point2d Size(24 + Next(32), 24 + Next(32));
            point2d Location(Next(WindowWidth - 60), Next(WindowHeight - 60));
            ownership_pointer<art_object> Group(new art_object);
            Place(*Group, Location, Size);
            reference_pointer<art_object> Object = Top.AddChild(Group);
            AddFill(*Object, point2d(0, 0), Size, agg::rgba8(255, 255, 255, 255), StackModePlusStencil);
            AddFill(*Object, point2d(0, 0), point2d(4, 4), agg::rgba8(0, 0, 0, 255), StackModeMinusStencil);
            AddFill(*Object, point2d(0, 0), Size, agg::rgba8(Next(256), Next(256), 128, 255), StackModeNormal);
            AddFill(*Object, point2d(2, 2), point2d(Size.X / 2, Size.Y / 2), agg::rgba8(0, 0, 100, 160),
                    StackModeNormal);
            if (I == Objects / 2)
                Small = Object;
        }
        Top.PaintAll();
    }

    ~scene()
    {
        Top.MarkChildrenForDeletion();
        Top.DeleteMarkedChildren();
    }

    static void AddFill(art_object &Parent, point2d Location, point2d Size, agg::rgba8 Color, art_stack_mode Mode)
    {
        ownership_pointer<art_object> Fill(new fill_object(Color, Mode));
        Place(*Fill, Location, Size);
        Parent.AddChild(Fill);
    }
};

void BM_FullWindowCopy(benchmark::State &State)
{
    CopyBytesBaseline(State, size_t(WindowWidth) * WindowHeight * 4);
}
BENCHMARK(BM_FullWindowCopy)->Unit(benchmark::kMicrosecond);

// The background fill that starts every whole-window repaint, on its own.
void BM_ClearWindow(benchmark::State &State)
{
    art_bitmap Window(WindowWidth, WindowHeight);
    for (auto _ : State) {
        Window.Clear(agg::rgba8(255, 255, 255, 255));
        benchmark::DoNotOptimize(Window.GetPixelData());
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_ClearWindow)->Unit(benchmark::kMicrosecond);

// Every cached picture voided: each object composes its stencil, content and mask anew.
void BM_FirstPaint(benchmark::State &State)
{
    scene Scene;
    for (auto _ : State) {
        Scene.Top.RequestRedraw();
        Scene.Top.PaintAll();
    }
}
BENCHMARK(BM_FirstPaint)->Unit(benchmark::kMicrosecond);

void BM_RepaintOneObjectMoved(benchmark::State &State)
{
    scene Scene;
    bool Right = false;
    for (auto _ : State) {
        Right = !Right;
        Scene.Small->SetLocation(Scene.Small->GetLocation() + point2d(Right ? 3 : -3, 0));
        Scene.Top.PaintAll();
    }
}
BENCHMARK(BM_RepaintOneObjectMoved)->Unit(benchmark::kMicrosecond);

// The whole window drawn again from the cache.
void BM_RepaintWholeWindowUnchanged(benchmark::State &State)
{
    scene Scene;
    for (auto _ : State) {
        Scene.Top.RequestRedrawRect(rectangle(point2d(0, 0), point2d(WindowWidth, WindowHeight)));
        Scene.Top.PaintAll();
    }
}
BENCHMARK(BM_RepaintWholeWindowUnchanged)->Unit(benchmark::kMicrosecond);

// A frame in which nothing asked for a redraw.
void BM_RepaintNothingDirty(benchmark::State &State)
{
    scene Scene;
    for (auto _ : State)
        Scene.Top.PaintAll();
}
BENCHMARK(BM_RepaintNothingDirty)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char **argv)
{
    ratio_reporter Reporter(ratio_reporter::RealTime);
    if (!Reporter.RunAll(argc, argv))
        return 1;
    std::printf("\nUnchanged whole-window repaint over one full-window copy:   %.2f (target at most 2)\n",
                Reporter.GetRatio("BM_RepaintWholeWindowUnchanged", "BM_FullWindowCopy"));
    std::printf("Background fill of the window over one full-window copy:    %.2f\n",
                Reporter.GetRatio("BM_ClearWindow", "BM_FullWindowCopy"));
    std::printf("Repaint with nothing dirty over one full-window copy:       %.3f\n",
                Reporter.GetRatio("BM_RepaintNothingDirty", "BM_FullWindowCopy"));
    std::printf("One small object moved over the first paint:                %.3f (target below 0.05)\n",
                Reporter.GetRatio("BM_RepaintOneObjectMoved", "BM_FirstPaint"));
    return 0;
}
