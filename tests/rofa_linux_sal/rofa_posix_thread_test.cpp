#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <cstring>
#include <sched.h>

#include "rofa_linux_sal/rofa_posix_thread.h"
#include "tests/test_support.h"

namespace {

// What a worker shares with the test: the argument it saw, and flags to meet on.
struct worker_state
{
    std::atomic<bool> MayFinish{true};
    std::atomic<bool> Done{false};
    std::atomic<void *> SeenArgument{nullptr};
};

uint32_t Worker(void *Argument)
{
    worker_state *State = static_cast<worker_state *>(Argument);
    State->SeenArgument = Argument;
    while (!State->MayFinish)
        sched_yield();
    State->Done = true;
    return 0;
}

void WaitUntilDone(worker_state &State)
{
    while (!State.Done)
        sched_yield();
}

// A thread whose platform refuses to make threads.
class refused_thread : public rofa_posix_thread
{
protected:
    int CreateNativeThread(pthread_t *, void *(*)(void *), void *) override { return EAGAIN; }
};

uint32_t NeverRuns(void *) { return 0; }

} // namespace

TEST(PosixThread, RunsTheFunctionWithItsArgument)
{
    worker_state State;
    ownership_pointer<zel_thread> Thread = CreateThreadObject();
    Thread->StartThread(Worker, &State);
    WaitUntilDone(State);
    EXPECT_EQ(static_cast<void *>(&State), State.SeenArgument.load());
}

TEST(PosixThread, ASecondStartIsRefused)
{
    worker_state State;
    rofa_posix_thread Thread;
    EXPECT_FALSE(Thread.IsStarted());
    Thread.StartThread(Worker, &State);
    EXPECT_TRUE(Thread.IsStarted());
    EXPECT_EQ("rofa_win32_thread::StartThread() Thread already started",
              ZEL_ERROR_MESSAGE(Thread.StartThread(Worker, &State)));
    WaitUntilDone(State);
}

TEST(PosixThread, AFailedStartCarriesThePlatformsErrorText)
{
    refused_thread Thread;
    std::string Expected = std::string("rofa_win32_thread::StartThread() Error: ") + strerror(EAGAIN) + " (Error #" +
                           std::to_string(EAGAIN) + ")";
    EXPECT_EQ(Expected, ZEL_ERROR_MESSAGE(Thread.StartThread(NeverRuns, nullptr)));
    EXPECT_FALSE(Thread.IsStarted());
}

TEST(PosixThread, DestroyingTheObjectLeavesTheThreadRunning)
{
    worker_state State;
    State.MayFinish = false;
    {
        ownership_pointer<zel_thread> Thread = CreateThreadObject();
        Thread->StartThread(Worker, &State);
    }
    EXPECT_FALSE(State.Done);
    State.MayFinish = true;
    WaitUntilDone(State);
}

TEST(PosixThread, ReservedOperationsAreNotSupported)
{
    rofa_posix_thread Thread;
    EXPECT_NE(std::string::npos, ZEL_ERROR_MESSAGE(Thread.ReservedThreadOperation()).find("'false' is false"));
    EXPECT_NE(std::string::npos, ZEL_ERROR_MESSAGE(Thread.ReservedThreadOperation2()).find("'false' is false"));
}
