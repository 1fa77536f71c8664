#pragma once

#include <pthread.h>

#include "rofa_lib/zel_thread.h"

// A POSIX thread. Nobody joins it, so it is detached at the start and its resources go when it ends;
// whoever starts it learns of its end by its own means.
class rofa_posix_thread : public zel_thread
{
public:
    rofa_posix_thread();

    void StartThread(zel_thread_function Function, void *Argument) override;
    void ReservedThreadOperation() override;
    void ReservedThreadOperation2() override;

    bool IsStarted() const { return Started; }

protected:
    // pthread_create's own contract: 0, or the error number. A seam for the failure path.
    virtual int CreateNativeThread(pthread_t *Thread, void *(*Entry)(void *), void *Start);

private:
    bool Started;
    pthread_t Thread;
};
