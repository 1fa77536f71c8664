#pragma once

#include <cstddef>

// Memory for managed objects. Blocks are grouped by size class and a freed block goes back to its
// class's free list, never to the system. That is what lets a reference read the ID word of an object
// that has died: the word stays readable memory of ours (zeroed by the destructor, or overwritten by
// the ID of whatever object took the block), so a stale reference answers "not set" instead of
// faulting.
void *ObjectPoolAllocate(size_t Size);
void ObjectPoolFree(void *Block, size_t Size);

// Bytes the pool has taken from the system in all (it never gives any back).
size_t ObjectPoolReservedBytes();
