// The cost of checking a reference, against reading through a raw pointer in the same run.
#include <cstring>

#include <benchmark/benchmark.h>

#include "zel_basics/lwpointers.h"

namespace {

class target_object : public base_object
{
public:
    int Value = 1;
};

void BM_RawPointerRead(benchmark::State &State)
{
    target_object *Target = new target_object;
    target_object *Pointer = Target;
    for (auto _ : State) {
        benchmark::DoNotOptimize(Pointer);
        benchmark::DoNotOptimize(Pointer != nullptr && Pointer->Value == 1);
    }
    delete Target;
}
BENCHMARK(BM_RawPointerRead);

void BM_IsSetLive(benchmark::State &State)
{
    ownership_pointer<target_object> Target(new target_object);
    reference_pointer<target_object> Reference(Target);
    for (auto _ : State) {
        benchmark::DoNotOptimize(Reference);
        benchmark::DoNotOptimize(Reference.IsSet());
    }
}
BENCHMARK(BM_IsSetLive);

// A stale reference clears itself on its first check, so each round restores its two words from a
// saved copy; the restore alone is measured as its own baseline.
struct stale_reference_bytes
{
    alignas(reference_pointer<target_object>) unsigned char Bytes[sizeof(reference_pointer<target_object>)];

    stale_reference_bytes()
    {
        ownership_pointer<target_object> Target(new target_object);
        reference_pointer<target_object> Stale(Target);
        Target.Reset();
        std::memcpy(Bytes, static_cast<void *>(&Stale), sizeof(Bytes));
    }
    void RestoreInto(reference_pointer<target_object> &Reference) const
    {
        std::memcpy(static_cast<void *>(&Reference), Bytes, sizeof(Bytes));
    }
};

void BM_RestoreStaleReference(benchmark::State &State)
{
    stale_reference_bytes Saved;
    reference_pointer<target_object> Reference;
    for (auto _ : State) {
        Saved.RestoreInto(Reference);
        benchmark::DoNotOptimize(Reference);
    }
}
BENCHMARK(BM_RestoreStaleReference);

void BM_IsSetDead(benchmark::State &State)
{
    stale_reference_bytes Saved;
    reference_pointer<target_object> Reference;
    for (auto _ : State) {
        Saved.RestoreInto(Reference);
        benchmark::DoNotOptimize(Reference);
        benchmark::DoNotOptimize(Reference.IsSet());
    }
}
BENCHMARK(BM_IsSetDead);

} // namespace

BENCHMARK_MAIN();
