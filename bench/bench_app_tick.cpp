// The application's heartbeat through the exported functions: a tick on an unchanged tree of
// 10,000 objects, and mouse moves each followed by a tick, against one plain walk over the same
// tree in the same run.
#include <cstdint>
#include <cstdio>

#include <benchmark/benchmark.h>

#include "art_engine/objects/art_object_children.h"
#include "bench/bench_ratio_reporter.h"
#include "rofa_editor/app/rofa_app.h"
#include "rofa_lib/rofa_plugin_api.h"
#include "rofa_linux_sal/win32_messages.h"

namespace {

const int Groups = 100;
const int ObjectsPerGroup = 100;
const int MovesPerRun = 100000;

// An instance whose editor holds 100 groups of 100 small objects, in a grid over the window.
struct app_scene
{
    RofaAppHandle Handle;
    reference_pointer<rofa_app_instance> App;

    app_scene() : Handle(RofaAppCreateNewInstance_v2(1280, 800, nullptr, nullptr, nullptr))
    {
        graphical_system_abstraction_layer *Layer = static_cast<graphical_system_abstraction_layer *>(Handle);
        App = Layer->GetGlobalReference("rofa_app_instance").DynamicCast<rofa_app_instance>();
        reference_pointer<rofa_editor> Editor = App->GetEditor();
        for (int G = 0; G < Groups; G++) {
            ownership_pointer<art_object> Group(new art_object);
            Group->SetHandle(point2d(0, 0));
            Group->SetSize(point2d(128, 80));
            Group->SetLocation(point2d((G % 10) * 128, (G / 10) * 80));
            for (int I = 0; I < ObjectsPerGroup; I++) {
                ownership_pointer<art_object> Object(new art_object);
                Object->SetHandle(point2d(0, 0));
                Object->SetSize(point2d(12, 8));
                Object->SetLocation(point2d((I % 10) * 12.8, (I / 10) * 8));
                Group->AddChild(Object);
            }
            Editor->AddChild(Group);
        }
        // Settle layout and the first paint, so that what follows is the steady state.
        Tick();
        Tick();
    }
    ~app_scene() { RofaAppReleaseAppInstance_v2(Handle); }

    void Send(uint32_t Message, uint32_t WParam = 0, int32_t LParam = 0)
    {
        rofa_gui_message Record = {nullptr, Message, WParam, LParam, 0};
        RofaAppProcessGUIMessage_v2(Handle, &Record);
    }
    void Tick() { Send(WM_TIMER); }
};

int CountVisible(art_object &Object)
{
    int Count = Object.IsVisible() ? 1 : 0;
    reference_pointer<art_object_children> Children = Object.GetChildrenObject();
    if (!Children.IsSet())
        return Count;
    for (int I = 0; I < Children->GetNumberOfElements(); I++)
        Count += CountVisible(*Children->GetChild(I));
    return Count;
}

// The baseline: one visit of every object of the tree.
void BM_WalkTheTree(benchmark::State &State)
{
    app_scene Scene;
    for (auto _ : State)
        benchmark::DoNotOptimize(CountVisible(*Scene.App->GetTopObject()));
}
BENCHMARK(BM_WalkTheTree)->Unit(benchmark::kMicrosecond);

void BM_IdleTick(benchmark::State &State)
{
    app_scene Scene;
    for (auto _ : State)
        Scene.Tick();
    if (Scene.App->GetTopObject()->IsDirty())
        State.SkipWithError("the tree asked for a paint");
}
BENCHMARK(BM_IdleTick)->Unit(benchmark::kMicrosecond);

// 100,000 moves to scattered places over the grid, each followed by a tick that routes it, or
// with no tick between them: the message path alone.
void SendMoves(benchmark::State &State, bool TickAfterEach)
{
    app_scene Scene;
    for (auto _ : State) {
        for (int I = 0; I < MovesPerRun; I++) {
            uint16_t X = static_cast<uint16_t>((I * 37) % 1280);
            uint16_t Y = static_cast<uint16_t>((I * 53) % 800);
            Scene.Send(WM_MOUSEMOVE, 0, static_cast<int32_t>(MakeLong(X, Y)));
            if (TickAfterEach)
                Scene.Tick();
        }
    }
}

void BM_MouseMovesWithTicks(benchmark::State &State) { SendMoves(State, true); }
BENCHMARK(BM_MouseMovesWithTicks)->Unit(benchmark::kMillisecond);

void BM_MouseMovesOnly(benchmark::State &State) { SendMoves(State, false); }
BENCHMARK(BM_MouseMovesOnly)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    ratio_reporter Reporter(ratio_reporter::RealTime);
    if (!Reporter.RunAll(argc, argv))
        return 1;
    std::printf("\nIdle tick on 10,000 objects:                       %.2f us (target under 20); %.2f walks of the tree\n",
                Reporter.GetTime("BM_IdleTick"), Reporter.GetRatio("BM_IdleTick", "BM_WalkTheTree"));
    std::printf("Mouse move and the tick that routes it, per message: %.0f ns\n",
                Reporter.GetTime("BM_MouseMovesWithTicks") * 1e6 / MovesPerRun);
    std::printf("Mouse move message alone:                            %.0f ns\n",
                Reporter.GetTime("BM_MouseMovesOnly") * 1e6 / MovesPerRun);
    return 0;
}
