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

// The two kinds of map behind one pair of calls, so each benchmark is written once for both.
void Put(zel_int_hash_map<int> &Map, int32_t Key, int Value)
{
    Map.Insert(Key, Value);
}
void Put(zel_string_hash_map<int> &Map, const zel_string &Key, int Value)
{
    Map.Insert(Key, Value);
}
template <class K> void Put(std::unordered_map<K, int> &Map, const K &Key, int Value)
{
    Map.emplace(Key, Value);
}

int Get(zel_int_hash_map<int> &Map, int32_t Key)
{
    return Map.GetValueAt(Map.Find(Key));
}
int Get(zel_string_hash_map<int> &Map, const zel_string &Key)
{
    return Map.GetValueAt(Map.Find(Key));
}
template <class K> int Get(std::unordered_map<K, int> &Map, const K &Key)
{
    return Map.find(Key)->second;
}

// Both kinds start with 16 places and grow as keys arrive.
template <class M, class K> void Insert(benchmark::State &State, const std::vector<K> &Keys)
{
    for (auto _ : State) {
        M Map(16);
        for (int I = 0; I < KeyCount; I++)
            Put(Map, Keys[I], I);
        benchmark::DoNotOptimize(&Map);
    }
}

template <class M, class K> void Lookup(benchmark::State &State, const std::vector<K> &Keys)
{
    M Map(16);
    for (int I = 0; I < KeyCount; I++)
        Put(Map, Keys[I], I);
    const std::vector<int> &Order = LookupOrder();
    for (auto _ : State) {
        int64_t Sum = 0;
        for (int I = 0; I < KeyCount; I++)
            Sum += Get(Map, Keys[Order[I]]);
        benchmark::DoNotOptimize(Sum);
    }
}

void RegisterAll()
{
    using zel_ints = zel_int_hash_map<int>;
    using zel_strings = zel_string_hash_map<int>;
    using std_ints = std::unordered_map<int32_t, int>;
    using std_strings = std::unordered_map<std::string, int>;
    auto Register = [](const char *Name, void (*Run)(benchmark::State &)) {
        benchmark::RegisterBenchmark(Name, Run)->Unit(benchmark::kMillisecond);
    };
    Register("ZelIntInsert", [](benchmark::State &S) { Insert<zel_ints>(S, IntKeys()); });
    Register("StdIntInsert", [](benchmark::State &S) { Insert<std_ints>(S, IntKeys()); });
    Register("ZelIntLookup", [](benchmark::State &S) { Lookup<zel_ints>(S, IntKeys()); });
    Register("StdIntLookup", [](benchmark::State &S) { Lookup<std_ints>(S, IntKeys()); });
    Register("ZelStringInsert", [](benchmark::State &S) { Insert<zel_strings>(S, ZelStringKeys()); });
    Register("StdStringInsert", [](benchmark::State &S) { Insert<std_strings>(S, StdStringKeys()); });
    Register("ZelStringLookup", [](benchmark::State &S) { Lookup<zel_strings>(S, ZelStringKeys()); });
    Register("StdStringLookup", [](benchmark::State &S) { Lookup<std_strings>(S, StdStringKeys()); });
}

} // namespace

int main(int argc, char **argv)
{
    RegisterAll();
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
