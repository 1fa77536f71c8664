#pragma once

#include <cstdint>

#include "zel_basics/lwbase_object.h"
#include "zel_basics/lwpointers.h"

// What a thread runs. Its result is not read by anyone.
typedef uint32_t (*zel_thread_function)(void *Argument);

// A native thread, started once. Destroying the object neither stops nor waits for the thread:
// whoever starts one waits for it by its own means.
class zel_thread : public base_object
{
public:
    virtual void StartThread(zel_thread_function Function, void *Argument) = 0;
    virtual void ReservedThreadOperation() = 0;
    virtual void ReservedThreadOperation2() = 0;
};

// The platform's thread object.
ownership_pointer<zel_thread> CreateThreadObject();
