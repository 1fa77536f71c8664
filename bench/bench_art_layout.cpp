// Layout of a large tree under a resized root, and hit tests in a large scene, each against a plain
// loop that does the same arithmetic on flat arrays in the same run.
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "art_engine/objects/art_layout.h"
#include "art_engine/objects/art_object_children.h"

namespace {

// ---- Layout: 100,000 objects in mode 7 under one root ----

const int LayoutObjects = 100000;

// Objects in breadth-first order: each level's objects get Branching children each (the last level
// fewer) until there are LayoutObjects. Every object is in mode 7 on both axes.
struct layout_tree
{
    art_object Root;
    std::vector<int> Parents;

    explicit layout_tree(int Branching)
    {
        Root.SetSize(point2d(1000, 800));
        std::vector<art_object *> Objects{&Root};
        Parents.push_back(-1);
        for (int Parent = 0; static_cast<int>(Objects.size()) - 1 < LayoutObjects; Parent++)
            for (int I = 0; I < Branching && static_cast<int>(Objects.size()) - 1 < LayoutObjects; I++) {
                ownership_pointer<art_object> Child(new art_object);
                reference_pointer<art_floating_autolayout> Layout =
                    Child->GetLayout().DynamicCast<art_floating_autolayout>();
                Layout->SetMode(7, 7);
                Layout->GetH().RelVals[0] = 0.05 + 0.1 * (I % 10);
                Layout->GetH().RelVals[1] = 0.09;
                Layout->GetV().RelVals[0] = 0.5;
                Layout->GetV().RelVals[1] = 0.9;
                Objects.push_back(Objects[Parent]->AddChild(Child).Get());
                Parents.push_back(Parent);
            }
        Root.Layout();
    }
};

void RunLayout(benchmark::State &State, int Branching)
{
    layout_tree Tree(Branching);
    bool Wide = false;
    for (auto _ : State) {
        Wide = !Wide;
        Tree.Root.SetSize(Wide ? point2d(1200, 900) : point2d(1000, 800));
        Tree.Root.Layout();
    }
    State.counters["objects"] = static_cast<double>(Tree.Parents.size() - 1);
}

// Ten children an object: five levels deep.
void BM_LayoutDeepTree(benchmark::State &State)
{
    RunLayout(State, 10);
}
BENCHMARK(BM_LayoutDeepTree)->Unit(benchmark::kMillisecond);

// A page of 1,000 groups of about 100: two levels deep.
void BM_LayoutShallowTree(benchmark::State &State)
{
    RunLayout(State, 1000);
}
BENCHMARK(BM_LayoutShallowTree)->Unit(benchmark::kMillisecond);

struct flat_object
{
    int Parent;
    double A[2];
    double B[2];
    double Location[2];
    double Size[2];
    int32_t RedrawCount;
};

std::vector<flat_object> FlatTree(int Branching)
{
    std::vector<flat_object> Objects;
    Objects.push_back({-1, {0, 0}, {0, 0}, {0, 0}, {1000, 800}, 0});
    for (int Parent = 0; static_cast<int>(Objects.size()) - 1 < LayoutObjects; Parent++)
        for (int I = 0; I < Branching && static_cast<int>(Objects.size()) - 1 < LayoutObjects; I++)
            Objects.push_back({Parent, {0.05 + 0.1 * (I % 10), 0.5}, {0.09, 0.9}, {0, 0}, {0, 0}, 0});
    return Objects;
}

// The frames alone, by a plain loop over flat arrays: parents come before their children.
void BM_LayoutDeepTreeBaselineFrames(benchmark::State &State)
{
    std::vector<flat_object> Objects = FlatTree(10);
    bool Wide = false;
    for (auto _ : State) {
        Wide = !Wide;
        Objects[0].Size[0] = Wide ? 1200 : 1000;
        Objects[0].Size[1] = Wide ? 900 : 800;
        for (size_t I = 1; I < Objects.size(); I++) {
            flat_object &Object = Objects[I];
            const flat_object &Parent = Objects[Object.Parent];
            for (int Axis = 0; Axis < 2; Axis++) {
                Object.Location[Axis] = Object.A[Axis] * Parent.Size[Axis];
                Object.Size[Axis] = Object.B[Axis] * Parent.Size[Axis];
            }
        }
        benchmark::DoNotOptimize(Objects.data());
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_LayoutDeepTreeBaselineFrames)->Unit(benchmark::kMillisecond);

// The frames and the same redraw bookkeeping as the tree does: for each object whose width,
// height and place change, four rectangles climb to the root, each ancestor counting one and
// moving the rectangle into its parent's space.
void ClimbFlat(std::vector<flat_object> &Objects, int From, double X0, double Y0, double X1, double Y1)
{
    for (int Index = From; Index >= 0; Index = Objects[Index].Parent) {
        flat_object &Object = Objects[Index];
        Object.RedrawCount++;
        double DX = Object.Location[0] - Object.Size[0] * 0.5;
        double DY = Object.Location[1] - Object.Size[1] * 0.5;
        X0 += DX;
        X1 += DX;
        Y0 += DY;
        Y1 += DY;
    }
    benchmark::DoNotOptimize(X0 + X1 + Y0 + Y1);
}

void BM_LayoutDeepTreeBaselineFramesAndRedraws(benchmark::State &State)
{
    std::vector<flat_object> Objects = FlatTree(10);
    bool Wide = false;
    for (auto _ : State) {
        Wide = !Wide;
        Objects[0].Size[0] = Wide ? 1200 : 1000;
        Objects[0].Size[1] = Wide ? 900 : 800;
        for (size_t I = 1; I < Objects.size(); I++) {
            flat_object &Object = Objects[I];
            const flat_object &Parent = Objects[Object.Parent];
            double Box[4] = {Object.Location[0] - Object.Size[0] * 0.5, Object.Location[1] - Object.Size[1] * 0.5,
                             Object.Location[0] + Object.Size[0] * 0.5, Object.Location[1] + Object.Size[1] * 0.5};
            for (int Axis = 0; Axis < 2; Axis++) {
                Object.Location[Axis] = Object.A[Axis] * Parent.Size[Axis];
                Object.Size[Axis] = Object.B[Axis] * Parent.Size[Axis];
            }
            for (int Walk = 0; Walk < 4; Walk++)
                ClimbFlat(Objects, Object.Parent, std::floor(Box[0]), std::floor(Box[1]), std::ceil(Box[2]),
                          std::ceil(Box[3]));
        }
        benchmark::DoNotOptimize(Objects.data());
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_LayoutDeepTreeBaselineFramesAndRedraws)->Unit(benchmark::kMillisecond);

// ---- Hit tests: 1,000,000 points in a scene of 10,000 objects ----

// A 1000 by 1000 page of 10 by 10 groups, each of 10 by 10 leaves: 10,100 objects. Turned scenes
// turn every leaf a little about its centre, so that every test carries a rotation.
struct hit_scene
{
    art_object Root;
    std::vector<point2d> Points;

    explicit hit_scene(double LeafAngle)
    {
        Root.SetHandle(point2d(0, 0));
        Root.SetSize(point2d(1000, 1000));
        for (int GroupIndex = 0; GroupIndex < 100; GroupIndex++) {
            ownership_pointer<art_object> Group(new art_object);
            Group->SetHandle(point2d(0, 0));
            Group->SetSize(point2d(100, 100));
            Group->SetLocation(point2d(100 * (GroupIndex % 10), 100 * (GroupIndex / 10)));
            for (int LeafIndex = 0; LeafIndex < 100; LeafIndex++) {
                ownership_pointer<art_object> Leaf(new art_object);
                Leaf->SetSize(point2d(8, 8));
                Leaf->SetAngle(LeafAngle);
                Leaf->SetLocation(point2d(10 * (LeafIndex % 10) + 5, 10 * (LeafIndex / 10) + 5));
                Group->AddChild(Leaf);
            }
            Root.AddChild(Group);
        }
        // A fixed linear congruential sequence: the same points in every run.
        uint32_t Seed = 12345;
        Points.reserve(1000000);
        for (int I = 0; I < 1000000; I++) {
            Seed = Seed * 1664525u + 1013904223u;
            double X = (Seed >> 8) * (1000.0 / 16777216.0);
            Seed = Seed * 1664525u + 1013904223u;
            double Y = (Seed >> 8) * (1000.0 / 16777216.0);
            Points.push_back(point2d(X, Y));
        }
    }
};

// The deepest object under a point: hit-test each level topmost first and step into the hit child.
art_object *DeepestAt(art_object *Object, point2d Point)
{
    for (;;) {
        reference_pointer<art_object> Hit = Object->GetChildAt(Point, 0);
        if (!Hit.IsSet())
            return Object;
        agg::trans_affine ToChild;
        Hit->ApplyParentToObject(ToChild);
        ToChild.transform(&Point.X, &Point.Y);
        Object = Hit.Get();
    }
}

void RunHitTests(benchmark::State &State, double LeafAngle)
{
    hit_scene Scene(LeafAngle);
    size_t Next = 0;
    int64_t Leaves = 0;
    for (auto _ : State) {
        art_object *Found = DeepestAt(&Scene.Root, Scene.Points[Next]);
        benchmark::DoNotOptimize(Found);
        Leaves += Found->HasChildren() ? 0 : 1;
        Next = Next + 1 == Scene.Points.size() ? 0 : Next + 1;
    }
    State.counters["leaf_hits"] = benchmark::Counter(static_cast<double>(Leaves), benchmark::Counter::kAvgIterations);
}

void BM_HitTestScene(benchmark::State &State)
{
    RunHitTests(State, 0);
}
BENCHMARK(BM_HitTestScene)->Iterations(1000000);

void BM_HitTestTurnedScene(benchmark::State &State)
{
    RunHitTests(State, 0.3);
}
BENCHMARK(BM_HitTestTurnedScene)->Iterations(1000000);

// The same walk with every parent-to-object matrix made beforehand and every test a plain loop.
struct flat_node
{
    agg::trans_affine ToObject;
    double Width;
    double Height;
    int FirstChild;
    int ChildCount;
};

void BuildFlat(art_object *Object, std::vector<flat_node> &Nodes, int Index)
{
    int Count = Object->GetNumberOfChildren();
    int First = static_cast<int>(Nodes.size());
    Nodes[Index].FirstChild = First;
    Nodes[Index].ChildCount = Count;
    for (int I = 0; I < Count; I++) {
        art_object *Child = Object->GetChildrenObject()->GetChild(I);
        flat_node Node;
        Child->ApplyParentToObject(Node.ToObject);
        Node.Width = Child->GetSize().X;
        Node.Height = Child->GetSize().Y;
        Nodes.push_back(Node);
    }
    for (int I = 0; I < Count; I++)
        BuildFlat(Object->GetChildrenObject()->GetChild(I), Nodes, First + I);
}

void RunBaseline(benchmark::State &State, double LeafAngle)
{
    hit_scene Scene(LeafAngle);
    std::vector<flat_node> Nodes(1);
    BuildFlat(&Scene.Root, Nodes, 0);
    size_t Next = 0;
    for (auto _ : State) {
        point2d Point = Scene.Points[Next];
        int Current = 0;
        for (;;) {
            const flat_node &Node = Nodes[Current];
            int Hit = -1;
            for (int I = Node.FirstChild + Node.ChildCount - 1; I >= Node.FirstChild; I--) {
                double X = Point.X;
                double Y = Point.Y;
                Nodes[I].ToObject.transform(&X, &Y);
                if (X >= 0 && X < Nodes[I].Width && Y >= 0 && Y < Nodes[I].Height) {
                    Hit = I;
                    Point = point2d(X, Y);
                    break;
                }
            }
            if (Hit < 0)
                break;
            Current = Hit;
        }
        benchmark::DoNotOptimize(Current);
        Next = Next + 1 == Scene.Points.size() ? 0 : Next + 1;
    }
}

void BM_HitTestBaselinePlainLoop(benchmark::State &State)
{
    RunBaseline(State, 0);
}
BENCHMARK(BM_HitTestBaselinePlainLoop)->Iterations(1000000);

void BM_HitTestTurnedBaselinePlainLoop(benchmark::State &State)
{
    RunBaseline(State, 0.3);
}
BENCHMARK(BM_HitTestTurnedBaselinePlainLoop)->Iterations(1000000);

// Full routing of moves through the top of the scene, with the hover changes that they cause.
void BM_RouteMovesThroughTheScene(benchmark::State &State)
{
    hit_scene Scene(0);
    size_t Next = 0;
    point2d Last;
    for (auto _ : State) {
        art_pointer_event Event(art_pointer_event::PointerMovedWithin, Scene.Points[Next], Last);
        benchmark::DoNotOptimize(Scene.Root.HandlePointerEvent(&Event).Get());
        Last = Scene.Points[Next];
        Next = Next + 1 == Scene.Points.size() ? 0 : Next + 1;
    }
}
BENCHMARK(BM_RouteMovesThroughTheScene)->Iterations(1000000);

// Prints as usual and keeps each benchmark's CPU time per iteration, for the ratios.
class ratio_reporter : public benchmark::ConsoleReporter
{
public:
    std::map<std::string, double> Times;

    void ReportRuns(const std::vector<Run> &Runs) override
    {
        ConsoleReporter::ReportRuns(Runs);
        for (const Run &Result : Runs)
            if (Result.run_type == Run::RT_Iteration)
                Times[Result.run_name.function_name] = Result.GetAdjustedCPUTime();
    }
};

} // namespace

int main(int argc, char **argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    ratio_reporter Reporter;
    benchmark::RunSpecifiedBenchmarks(&Reporter);
    benchmark::Shutdown();
    const char *Pairs[][2] = {
        {"BM_LayoutDeepTree", "BM_LayoutDeepTreeBaselineFrames"},
        {"BM_LayoutDeepTree", "BM_LayoutDeepTreeBaselineFramesAndRedraws"},
        {"BM_HitTestScene", "BM_HitTestBaselinePlainLoop"},
        {"BM_HitTestTurnedScene", "BM_HitTestTurnedBaselinePlainLoop"},
    };
    std::printf("\nCPU time of the tree over its plain-loop baseline:\n");
    for (auto &Pair : Pairs) {
        auto Ours = Reporter.Times.find(Pair[0]);
        auto Baseline = Reporter.Times.find(Pair[1]);
        if (Ours != Reporter.Times.end() && Baseline != Reporter.Times.end())
            std::printf("  %-42s / %-55s %.1f\n", Pair[0], Pair[1], Ours->second / Baseline->second);
    }
    return 0;
}
