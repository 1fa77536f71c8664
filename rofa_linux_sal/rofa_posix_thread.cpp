#include "rofa_linux_sal/rofa_posix_thread.h"

#include "rofa_linux_sal/linux_sal_functions.h"
#include "zel_basics/debug.h"
#include "zel_basics/zel_error.h"

namespace {

// What the new thread needs, handed over through pthread's single pointer.
struct thread_start
{
    zel_thread_function Function;
    void *Argument;
};

void *ThreadEntry(void *Data)
{
    thread_start Start = *static_cast<thread_start *>(Data);
    delete static_cast<thread_start *>(Data);
    Start.Function(Start.Argument);
    return nullptr;
}

} // namespace

ownership_pointer<zel_thread> CreateThreadObject() { return ownership_pointer<zel_thread>(new rofa_posix_thread); }

rofa_posix_thread::rofa_posix_thread() : Started(false), Thread() {}

void rofa_posix_thread::StartThread(zel_thread_function Function, void *Argument)
{
    // The texts are those of the platform's original thread class, which callers and logs know.
    if (Started)
        throw zel_error("rofa_win32_thread::StartThread() Thread already started");
    thread_start *Start = new thread_start{Function, Argument};
    int Error = CreateNativeThread(&Thread, ThreadEntry, Start);
    if (Error != 0) {
        delete Start;
        throw zel_error(zel_string("rofa_win32_thread::StartThread() Error: ") + SALGetErrorText(Error));
    }
    pthread_detach(Thread);
    Started = true;
}

int rofa_posix_thread::CreateNativeThread(pthread_t *NativeThread, void *(*Entry)(void *), void *Start)
{
    return pthread_create(NativeThread, nullptr, Entry, Start);
}

void rofa_posix_thread::ReservedThreadOperation() { TOVAS_ASSERT(false, this); }

void rofa_posix_thread::ReservedThreadOperation2() { TOVAS_ASSERT(false, this); }
