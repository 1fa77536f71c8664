#pragma once

// Baselines that benchmarks measure themselves against in the same run.
#include <cstdint>
#include <cstring>
#include <vector>

#include <benchmark/benchmark.h>

// One memcpy of Bytes a run: what a copy of a window's pixels costs on this machine.
inline void CopyBytesBaseline(benchmark::State &State, size_t Bytes)
{
    std::vector<uint8_t> From(Bytes, 1);
    std::vector<uint8_t> To(Bytes);
    for (auto _ : State) {
        std::memcpy(To.data(), From.data(), Bytes);
        benchmark::DoNotOptimize(To.data());
        benchmark::ClobberMemory();
    }
}
