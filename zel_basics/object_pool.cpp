#include "zel_basics/object_pool.h"

#include <cstdint>
#include <cstdlib>
#include <mutex>
#include <new>

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/asan_interface.h>
#define POOL_POISON(Address, Size) ASAN_POISON_MEMORY_REGION(Address, Size)
#define POOL_UNPOISON(Address, Size) ASAN_UNPOISON_MEMORY_REGION(Address, Size)
#else
#define POOL_POISON(Address, Size) ((void)(Address), (void)(Size))
#define POOL_UNPOISON(Address, Size) ((void)(Address), (void)(Size))
#endif

namespace {

// Classes of 16-byte steps up to 1 KiB, then powers of two. Small objects dominate; large blocks are
// arrays of objects and rare.
constexpr size_t SmallStep = 16;
constexpr size_t SmallLimit = 1024;
constexpr int SmallClasses = SmallLimit / SmallStep;
constexpr int LargeClasses = 48;
constexpr size_t SlabSize = 64 * 1024;

struct free_block
{
    free_block *Next;
};

// A slab keeps a link to the previous one in an unpoisoned header, so every slab stays reachable from
// a global and leak checkers see pool memory as in use.
struct slab_header
{
    slab_header *Previous;
    size_t Size;
};

struct pool_state
{
    std::mutex Lock;
    free_block *FreeLists[SmallClasses + LargeClasses] = {};
    slab_header *Slabs = nullptr;
    char *SlabCursor = nullptr;
    char *SlabEnd = nullptr;
    size_t ReservedBytes = 0;
};

pool_state &GetPool()
{
    // Never destroyed: objects with static storage may die after any destructor of ours has run.
    static pool_state *Pool = new pool_state;
    return *Pool;
}

int GetSizeClass(size_t Size, size_t &ClassSize)
{
    if (Size == 0)
        Size = 1;
    if (Size <= SmallLimit) {
        int Class = static_cast<int>((Size + SmallStep - 1) / SmallStep) - 1;
        ClassSize = static_cast<size_t>(Class + 1) * SmallStep;
        return Class;
    }
    int Large = 0;
    ClassSize = SmallLimit * 2;
    while (ClassSize < Size) {
        ClassSize *= 2;
        Large++;
    }
    if (Large >= LargeClasses)
        throw std::bad_alloc();
    return SmallClasses + Large;
}

char *TakeFromSystem(pool_state &Pool, size_t Size)
{
    size_t Total = sizeof(slab_header) + Size;
    slab_header *Slab = static_cast<slab_header *>(std::malloc(Total));
    if (Slab == nullptr)
        throw std::bad_alloc();
    Slab->Previous = Pool.Slabs;
    Slab->Size = Total;
    Pool.Slabs = Slab;
    Pool.ReservedBytes += Total;
    char *Memory = reinterpret_cast<char *>(Slab + 1);
    POOL_POISON(Memory, Size);
    return Memory;
}

char *CarveBlock(pool_state &Pool, size_t ClassSize)
{
    if (ClassSize > SlabSize / 4)
        return TakeFromSystem(Pool, ClassSize);
    if (Pool.SlabCursor == nullptr || static_cast<size_t>(Pool.SlabEnd - Pool.SlabCursor) < ClassSize) {
        Pool.SlabCursor = TakeFromSystem(Pool, SlabSize);
        Pool.SlabEnd = Pool.SlabCursor + SlabSize;
    }
    char *Block = Pool.SlabCursor;
    Pool.SlabCursor += ClassSize;
    return Block;
}

} // namespace

void *ObjectPoolAllocate(size_t Size)
{
    size_t ClassSize = 0;
    int Class = GetSizeClass(Size, ClassSize);
    pool_state &Pool = GetPool();
    std::lock_guard<std::mutex> Guard(Pool.Lock);
    char *Block;
    free_block *Free = Pool.FreeLists[Class];
    if (Free != nullptr) {
        POOL_UNPOISON(Free, sizeof(free_block));
        Pool.FreeLists[Class] = Free->Next;
        Block = reinterpret_cast<char *>(Free);
    } else {
        Block = CarveBlock(Pool, ClassSize);
    }
    POOL_UNPOISON(Block, ClassSize);
    return Block;
}

void ObjectPoolFree(void *Block, size_t Size)
{
    if (Block == nullptr)
        return;
    size_t ClassSize = 0;
    int Class = GetSizeClass(Size, ClassSize);
    pool_state &Pool = GetPool();
    std::lock_guard<std::mutex> Guard(Pool.Lock);
    // The link takes the first word only (an object's table pointer), so the ID word that the
    // destructor zeroed stays zero while the block waits for reuse.
    free_block *Free = static_cast<free_block *>(Block);
    Free->Next = Pool.FreeLists[Class];
    Pool.FreeLists[Class] = Free;
    POOL_POISON(Block, ClassSize);
}

size_t ObjectPoolReservedBytes()
{
    pool_state &Pool = GetPool();
    std::lock_guard<std::mutex> Guard(Pool.Lock);
    return Pool.ReservedBytes;
}
