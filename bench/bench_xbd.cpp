// Reading and writing of the binary markup: a file of a million small tags, and files of large blobs
// against a plain memcpy of the same bytes. A first benchmark measures the peak of heap memory while
// the tag-heavy file loads, against an estimate of the size of the tree it makes.
//
// Heap use is counted by wrapping the C allocator of this program, so every block of the library (its
// strings, arrays and the object pool's slabs) is seen. The memory benchmark runs first, while the
// object pool is still empty: a warm pool would serve the tree from blocks it took before.

#include <benchmark/benchmark.h>

#include "bench/bench_ratio_reporter.h"

#include <malloc.h>

#include <atomic>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "xbd/xbd.h"
#include "zel_basics/object_pool.h"

extern "C" {
void *__libc_malloc(size_t Size);
void *__libc_calloc(size_t Count, size_t Size);
void *__libc_realloc(void *Block, size_t Size);
void *__libc_memalign(size_t Alignment, size_t Size);
void __libc_free(void *Block);
}

namespace {

std::atomic<int64_t> HeapBytes(0);
std::atomic<int64_t> PeakHeapBytes(0);

// The usable size plus the allocator's word in front of each block.
int64_t BlockBytes(void *Block)
{
    return static_cast<int64_t>(malloc_usable_size(Block)) + 8;
}

void CountBlock(void *Block)
{
    if (Block == nullptr)
        return;
    int64_t Now = HeapBytes.fetch_add(BlockBytes(Block), std::memory_order_relaxed) + BlockBytes(Block);
    int64_t Peak = PeakHeapBytes.load(std::memory_order_relaxed);
    while (Now > Peak && !PeakHeapBytes.compare_exchange_weak(Peak, Now, std::memory_order_relaxed)) {
    }
}

void UncountBlock(void *Block)
{
    if (Block != nullptr)
        HeapBytes.fetch_sub(BlockBytes(Block), std::memory_order_relaxed);
}

} // namespace

extern "C" {

void *malloc(size_t Size)
{
    void *Block = __libc_malloc(Size);
    CountBlock(Block);
    return Block;
}

void *calloc(size_t Count, size_t Size)
{
    void *Block = __libc_calloc(Count, Size);
    CountBlock(Block);
    return Block;
}

void *realloc(void *Block, size_t Size)
{
    if (Block == nullptr)
        return malloc(Size);
    int64_t Old = BlockBytes(Block);
    void *Moved = __libc_realloc(Block, Size);
    if (Moved != nullptr || Size == 0) {
        HeapBytes.fetch_sub(Old, std::memory_order_relaxed);
        CountBlock(Moved);
    }
    return Moved;
}

void free(void *Block)
{
    UncountBlock(Block);
    __libc_free(Block);
}

void *memalign(size_t Alignment, size_t Size)
{
    void *Block = __libc_memalign(Alignment, Size);
    CountBlock(Block);
    return Block;
}

void *aligned_alloc(size_t Alignment, size_t Size)
{
    return memalign(Alignment, Size);
}

int posix_memalign(void **Result, size_t Alignment, size_t Size)
{
    void *Block = memalign(Alignment, Size);
    if (Block == nullptr)
        return 12;
    *Result = Block;
    return 0;
}

} // extern "C"

namespace {

// The tag-heavy file: a root holding 1,000 groups of 999 items, a million tags below the root in all,
// each with the attributes x, y and style, whose values come from a dictionary of 1,000 texts.
const int Groups = 1000;
const int ItemsPerGroup = 999;
const int64_t TagsBelowRoot = Groups + static_cast<int64_t>(Groups) * ItemsPerGroup;
const int ValueCount = 1000;

// The blob-heavy files: eight files of eight values of 1 MiB each, 64 MiB of values in all. One file
// holds no more because the writer refuses a dictionary block of 10 MiB.
const int BlobFiles = 8;
const int BlobsPerFile = 8;
const int BlobSize = 1024 * 1024;
const int64_t BlobBytes = static_cast<int64_t>(BlobFiles) * BlobsPerFile * BlobSize;
const size_t BlobBytesPerFile = static_cast<size_t>(BlobsPerFile) * BlobSize;

void AppendASI(std::string &Out, uint32_t Value)
{
    while (Value >= 0x80) {
        Out += static_cast<char>(0x80 | (Value & 0x7F));
        Value >>= 7;
    }
    Out += static_cast<char>(Value);
}

std::string Dictionary(const std::vector<std::string> &Names)
{
    std::string Body;
    AppendASI(Body, static_cast<uint32_t>(Names.size()));
    for (const std::string &Name : Names)
        AppendASI(Body, static_cast<uint32_t>(Name.size()));
    for (const std::string &Name : Names)
        Body += Name;
    std::string Block;
    AppendASI(Block, static_cast<uint32_t>(Body.size()));
    return Block + Body;
}

// A tag whose attribute I has name number I and value number ValueNums[I].
std::string Tag(uint32_t NameNum, const std::vector<uint32_t> &ValueNums, const std::string &Children)
{
    std::string Pairs;
    for (size_t I = 0; I < ValueNums.size(); I++) {
        AppendASI(Pairs, static_cast<uint32_t>(I));
        AppendASI(Pairs, ValueNums[I]);
    }
    std::string Body;
    AppendASI(Body, NameNum);
    AppendASI(Body, static_cast<uint32_t>(Pairs.size()));
    Body += Pairs;
    Body += Children;
    std::string Result;
    AppendASI(Result, static_cast<uint32_t>(Body.size()));
    return Result + Body;
}

std::string Header()
{
    return std::string("ZELXML\x01\x00", 8);
}

std::vector<uint32_t> ThreeValues(int64_t TagIndex)
{
    return {static_cast<uint32_t>(TagIndex % ValueCount), static_cast<uint32_t>((TagIndex * 7 + 3) % ValueCount),
            static_cast<uint32_t>((TagIndex * 13 + 5) % ValueCount)};
}

// Written here byte by byte, not through the library, so that the memory benchmark meets an object
// pool that no tree has used yet.
const zel_string &TagHeavyFile()
{
    static zel_string File = [] {
        std::vector<std::string> Values;
        for (int I = 0; I < ValueCount; I++)
            Values.push_back("(" + std::to_string(I * 37 % 1000) + "," + std::to_string(I) + ")");
        std::string GroupTags;
        int64_t TagIndex = 0;
        for (int G = 0; G < Groups; G++) {
            std::string Items;
            for (int I = 0; I < ItemsPerGroup; I++)
                Items += Tag(2, ThreeValues(TagIndex++), "");
            GroupTags += Tag(1, ThreeValues(TagIndex++), Items);
        }
        std::string Data = Header() + Dictionary({"RootTag", "group", "item"}) + Dictionary({"x", "y", "style"}) +
                           Dictionary(Values) + Tag(0, {}, GroupTags);
        return zel_string(Data.data(), static_cast<int>(Data.size()));
    }();
    return File;
}

const std::vector<zel_string> &BlobHeavyFiles()
{
    static std::vector<zel_string> Files = [] {
        std::mt19937 Random(1024);
        std::vector<zel_string> Result;
        for (int F = 0; F < BlobFiles; F++) {
            std::vector<std::string> Values;
            std::string Images;
            for (int B = 0; B < BlobsPerFile; B++) {
                std::string Blob(BlobSize, '\0');
                for (char &C : Blob)
                    C = static_cast<char>(Random());
                Values.push_back(Blob);
                Images += Tag(1, {static_cast<uint32_t>(B)}, "");
            }
            std::string Data = Header() + Dictionary({"RootTag", "image"}) + Dictionary({"pixels"}) +
                               Dictionary(Values) + Tag(0, {}, Images);
            Result.push_back(zel_string(Data.data(), static_cast<int>(Data.size())));
        }
        return Result;
    }();
    return Files;
}

// The values fill each blob file but for a few dozen bytes of names and tags around them.
const char *BlobBytesOf(const zel_string &File)
{
    return File.GetString() + File.GetLength() - BlobBytesPerFile;
}

// The least a tree of this file can take: every tag object, its attribute pairs and its place in its
// parent's array of children, and the bytes of the three dictionaries.
int64_t EstimateTreeBytes(xbd_file &File)
{
    const int64_t Tags = TagsBelowRoot + 1;
    int64_t Bytes = Tags * static_cast<int64_t>(sizeof(xbd_tag)) +
                    TagsBelowRoot * 3 * static_cast<int64_t>(sizeof(xbd_attribute)) +
                    TagsBelowRoot * static_cast<int64_t>(sizeof(ownership_pointer<xbd_tag>));
    Bytes += File.GetTagNames().GetBinarySize() + File.GetAttributeNames().GetBinarySize() +
             File.GetValues().GetBinarySize();
    return Bytes;
}

struct memory_result
{
    bool Measured = false;
    double PeakMB = 0;
    double RetainedMB = 0;
    double PoolMB = 0;
    double EstimateMB = 0;
};
memory_result MemoryResult;

void TagHeavyLoadMemory(benchmark::State &State)
{
    const zel_string &Data = TagHeavyFile();
    if (MemoryResult.Measured) {
        State.SkipWithError("measured once per process, while the object pool is empty");
        return;
    }
    for (auto _ : State) {
        const size_t PoolBefore = ObjectPoolReservedBytes();
        const int64_t Before = HeapBytes.load();
        PeakHeapBytes.store(Before);
        ownership_pointer<xbd_file> File = xbd_file::LoadFromData(Data, false);
        const int64_t Peak = PeakHeapBytes.load() - Before;
        const int64_t Retained = HeapBytes.load() - Before;
        const double MB = 1024.0 * 1024.0;
        MemoryResult.Measured = true;
        MemoryResult.PeakMB = static_cast<double>(Peak) / MB;
        MemoryResult.RetainedMB = static_cast<double>(Retained) / MB;
        MemoryResult.PoolMB = static_cast<double>(ObjectPoolReservedBytes() - PoolBefore) / MB;
        MemoryResult.EstimateMB = static_cast<double>(EstimateTreeBytes(*File)) / MB;
        State.PauseTiming();
        File.Reset();
        State.ResumeTiming();
    }
    State.counters["peak_MB"] = MemoryResult.PeakMB;
    State.counters["retained_MB"] = MemoryResult.RetainedMB;
    State.counters["pool_MB"] = MemoryResult.PoolMB;
    State.counters["estimate_MB"] = MemoryResult.EstimateMB;
    State.counters["peak/estimate"] = MemoryResult.PeakMB / MemoryResult.EstimateMB;
}

void TagHeavyParse(benchmark::State &State)
{
    const zel_string &Data = TagHeavyFile();
    for (auto _ : State) {
        ownership_pointer<xbd_file> File = xbd_file::LoadFromData(Data, false);
        benchmark::DoNotOptimize(File.Get());
        State.PauseTiming();
        File.Reset();
        State.ResumeTiming();
    }
    State.counters["tags/s"] =
        benchmark::Counter(static_cast<double>(TagsBelowRoot), benchmark::Counter::kIsIterationInvariantRate);
    State.SetBytesProcessed(State.iterations() * Data.GetLength());
}

void TagHeavyWrite(benchmark::State &State)
{
    const zel_string &Data = TagHeavyFile();
    ownership_pointer<xbd_file> File = xbd_file::LoadFromData(Data, false);
    if (!(File->GetZELXMLv1String() == Data)) {
        State.SkipWithError("the written file differs from the one loaded");
        return;
    }
    for (auto _ : State) {
        zel_string Written = File->GetZELXMLv1String();
        benchmark::DoNotOptimize(Written.GetString());
    }
    State.counters["tags/s"] =
        benchmark::Counter(static_cast<double>(TagsBelowRoot), benchmark::Counter::kIsIterationInvariantRate);
    State.SetBytesProcessed(State.iterations() * Data.GetLength());
}

void BlobHeavyParse(benchmark::State &State)
{
    const std::vector<zel_string> &Data = BlobHeavyFiles();
    std::vector<ownership_pointer<xbd_file>> Files(Data.size());
    for (auto _ : State) {
        for (size_t I = 0; I < Data.size(); I++)
            Files[I] = xbd_file::LoadFromData(Data[I], false);
        State.PauseTiming();
        for (ownership_pointer<xbd_file> &File : Files)
            File.Reset();
        State.ResumeTiming();
    }
    State.SetBytesProcessed(State.iterations() * BlobBytes);
}

void BlobHeavyWrite(benchmark::State &State)
{
    const std::vector<zel_string> &Data = BlobHeavyFiles();
    std::vector<ownership_pointer<xbd_file>> Files;
    for (const zel_string &File : Data) {
        Files.push_back(xbd_file::LoadFromData(File, false));
        if (!(Files.back()->GetZELXMLv1String() == File)) {
            State.SkipWithError("the written file differs from the one loaded");
            return;
        }
    }
    for (auto _ : State) {
        for (ownership_pointer<xbd_file> &File : Files) {
            zel_string Written = File->GetZELXMLv1String();
            benchmark::DoNotOptimize(Written.GetString());
        }
    }
    State.SetBytesProcessed(State.iterations() * BlobBytes);
}

// The floor for both directions: the blob bytes copied once, into memory that is already there.
void BlobHeavyMemcpy(benchmark::State &State)
{
    const std::vector<zel_string> &Data = BlobHeavyFiles();
    std::vector<char> Target(BlobBytesPerFile);
    for (auto _ : State) {
        for (const zel_string &File : Data) {
            std::memcpy(Target.data(), BlobBytesOf(File), BlobBytesPerFile);
            benchmark::ClobberMemory();
        }
    }
    State.SetBytesProcessed(State.iterations() * BlobBytes);
}

// The same copy into blocks allocated for it, as a loader must: fresh pages cost the kernel's time to
// supply and clear them.
void BlobHeavyMemcpyFresh(benchmark::State &State)
{
    const std::vector<zel_string> &Data = BlobHeavyFiles();
    std::vector<char *> Blocks(Data.size());
    for (auto _ : State) {
        for (size_t I = 0; I < Data.size(); I++) {
            Blocks[I] = static_cast<char *>(std::malloc(BlobBytesPerFile));
            std::memcpy(Blocks[I], BlobBytesOf(Data[I]), BlobBytesPerFile);
            benchmark::ClobberMemory();
        }
        State.PauseTiming();
        for (char *Block : Blocks)
            std::free(Block);
        State.ResumeTiming();
    }
    State.SetBytesProcessed(State.iterations() * BlobBytes);
}

BENCHMARK(TagHeavyLoadMemory)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(TagHeavyParse)->Unit(benchmark::kMillisecond);
BENCHMARK(TagHeavyWrite)->Unit(benchmark::kMillisecond);
BENCHMARK(BlobHeavyParse)->Unit(benchmark::kMillisecond);
BENCHMARK(BlobHeavyWrite)->Unit(benchmark::kMillisecond);
BENCHMARK(BlobHeavyMemcpy)->Unit(benchmark::kMillisecond);
BENCHMARK(BlobHeavyMemcpyFresh)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    ratio_reporter Reporter(ratio_reporter::RealTime);
    if (!Reporter.RunAll(argc, argv))
        return 1;
    if (MemoryResult.Measured)
        std::printf("\nLoading %lld tags: peak %.1f MB of heap (object pool %.1f MB of it), %.1f MB kept; "
                    "estimated tree %.1f MB; peak over estimate %.2f\n",
                    static_cast<long long>(TagsBelowRoot), MemoryResult.PeakMB, MemoryResult.PoolMB,
                    MemoryResult.RetainedMB, MemoryResult.EstimateMB, MemoryResult.PeakMB / MemoryResult.EstimateMB);
    std::printf("\nTime over memcpy of the same 64 MiB (1.0 = as fast as memcpy):\n");
    for (const char *Baseline : {"BlobHeavyMemcpy", "BlobHeavyMemcpyFresh"}) {
        for (const char *Case : {"BlobHeavyParse", "BlobHeavyWrite"}) {
            double Ratio = Reporter.GetRatio(Case, Baseline);
            if (Ratio >= 0)
                std::printf("  %-15s over %-21s %.2f\n", Case, Baseline, Ratio);
        }
    }
    return 0;
}
