// Insertion and lookup of a million integer and a million string keys in the system's hash maps,
// against the standard unordered maps in the same run. Prints the time ratios at the end.

#include <benchmark/benchmark.h>

#include "bench/bench_ratio_reporter.h"

#include <cstdint>
#include <cstdio>
#include <algorithm>
#include <map>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

#include "zel_basics/zel_hash_map.h"

namespace {

const int KeyCount = 1000000;

// Distinct keys spread over the whole 32-bit range, in an order that no hash can exploit.
const std::vector<int32_t> &IntKeys()
{
    static std::vector<int32_t> Keys = [] {
        std::vector<int32_t> Result;
        Result.reserve(KeyCount);
        for (int I = 0; I < KeyCount; I++)
            Result.push_back(static_cast<int32_t>(static_cast<uint32_t>(I) * 2654435761u));
        return Result;
    }();
    return Keys;
}

// Lookups come in an order unrelated to insertion, as a program's lookups do: looking keys up in the
// order they went in would favour a map whose nodes lie in memory in insertion order.
const std::vector<int> &LookupOrder()
{
    static std::vector<int> Order = [] {
        std::vector<int> Result(KeyCount);
        for (int I = 0; I < KeyCount; I++)
            Result[I] = I;
        std::shuffle(Result.begin(), Result.end(), std::mt19937(20261122));
        return Result;
    }();
    return Order;
}

// Decimal texts of the integer keys.
const std::vector<std::string> &StdStringKeys()
{
    static std::vector<std::string> Keys = [] {
        std::vector<std::string> Result;
        Result.reserve(KeyCount);
        for (int32_t Key : IntKeys())
            Result.push_back(std::to_string(Key));
        return Result;
    }();
    return Keys;
}

const std::vector<zel_string> &ZelStringKeys()
{
    static std::vector<zel_string> Keys = [] {
        std::vector<zel_string> Result;
        Result.reserve(KeyCount);
        for (const std::string &Key : StdStringKeys())
            Result.push_back(zel_string(Key.data(), static_cast<int>(Key.size())));
        return Result;
    }();
    return Keys;
}

void ZelIntInsert(benchmark::State &State)
{
    const std::vector<int32_t> &Keys = IntKeys();
    for (auto _ : State) {
        zel_int_hash_map<int> Map(16);
        for (int I = 0; I < KeyCount; I++)
            Map.Insert(Keys[I], I);
        benchmark::DoNotOptimize(Map.GetNumberOfElements());
    }
}

void StdIntInsert(benchmark::State &State)
{
    const std::vector<int32_t> &Keys = IntKeys();
    for (auto _ : State) {
        std::unordered_map<int, int> Map;
        for (int I = 0; I < KeyCount; I++)
            Map.emplace(Keys[I], I);
        benchmark::DoNotOptimize(Map.size());
    }
}

void ZelIntLookup(benchmark::State &State)
{
    const std::vector<int32_t> &Keys = IntKeys();
    zel_int_hash_map<int> Map(16);
    for (int I = 0; I < KeyCount; I++)
        Map.Insert(Keys[I], I);
    const std::vector<int> &Order = LookupOrder();
    for (auto _ : State) {
        int64_t Sum = 0;
        for (int I = 0; I < KeyCount; I++)
            Sum += Map.GetValueAt(Map.Find(Keys[Order[I]]));
        benchmark::DoNotOptimize(Sum);
    }
}

void StdIntLookup(benchmark::State &State)
{
    const std::vector<int32_t> &Keys = IntKeys();
    std::unordered_map<int, int> Map;
    for (int I = 0; I < KeyCount; I++)
        Map.emplace(Keys[I], I);
    const std::vector<int> &Order = LookupOrder();
    for (auto _ : State) {
        int64_t Sum = 0;
        for (int I = 0; I < KeyCount; I++)
            Sum += Map.find(Keys[Order[I]])->second;
        benchmark::DoNotOptimize(Sum);
    }
}

void ZelStringInsert(benchmark::State &State)
{
    const std::vector<zel_string> &Keys = ZelStringKeys();
    for (auto _ : State) {
        zel_string_hash_map<int> Map(16);
        for (int I = 0; I < KeyCount; I++)
            Map.Insert(Keys[I], I);
        benchmark::DoNotOptimize(Map.GetNumberOfElements());
    }
}

void StdStringInsert(benchmark::State &State)
{
    const std::vector<std::string> &Keys = StdStringKeys();
    for (auto _ : State) {
        std::unordered_map<std::string, int> Map;
        for (int I = 0; I < KeyCount; I++)
            Map.emplace(Keys[I], I);
        benchmark::DoNotOptimize(Map.size());
    }
}

void ZelStringLookup(benchmark::State &State)
{
    const std::vector<zel_string> &Keys = ZelStringKeys();
    zel_string_hash_map<int> Map(16);
    for (int I = 0; I < KeyCount; I++)
        Map.Insert(Keys[I], I);
    const std::vector<int> &Order = LookupOrder();
    for (auto _ : State) {
        int64_t Sum = 0;
        for (int I = 0; I < KeyCount; I++)
            Sum += Map.GetValueAt(Map.Find(Keys[Order[I]]));
        benchmark::DoNotOptimize(Sum);
    }
}

void StdStringLookup(benchmark::State &State)
{
    const std::vector<std::string> &Keys = StdStringKeys();
    std::unordered_map<std::string, int> Map;
    for (int I = 0; I < KeyCount; I++)
        Map.emplace(Keys[I], I);
    const std::vector<int> &Order = LookupOrder();
    for (auto _ : State) {
        int64_t Sum = 0;
        for (int I = 0; I < KeyCount; I++)
            Sum += Map.find(Keys[Order[I]])->second;
        benchmark::DoNotOptimize(Sum);
    }
}

BENCHMARK(ZelIntInsert)->Unit(benchmark::kMillisecond);
BENCHMARK(StdIntInsert)->Unit(benchmark::kMillisecond);
BENCHMARK(ZelIntLookup)->Unit(benchmark::kMillisecond);
BENCHMARK(StdIntLookup)->Unit(benchmark::kMillisecond);
BENCHMARK(ZelStringInsert)->Unit(benchmark::kMillisecond);
BENCHMARK(StdStringInsert)->Unit(benchmark::kMillisecond);
BENCHMARK(ZelStringLookup)->Unit(benchmark::kMillisecond);
BENCHMARK(StdStringLookup)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    ratio_reporter Reporter;
    if (!Reporter.RunAll(argc, argv))
        return 1;
    std::printf("\nCPU time of the system's map over the standard map's (1.0 = equal):\n");
    for (const char *Case : {"IntInsert", "IntLookup", "StringInsert", "StringLookup"}) {
        double Ratio = Reporter.GetRatio(std::string("Zel") + Case, std::string("Std") + Case);
        if (Ratio >= 0)
            std::printf("  %-13s %.2f\n", Case, Ratio);
    }
    return 0;
}
