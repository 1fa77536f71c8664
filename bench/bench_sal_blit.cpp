#include <benchmark/benchmark.h>

#include <cstring>
#include <vector>

#include "rofa_linux_sal/sal_blit.h"

// Presenting a full-HD frame: the blit into the window's bottom-up B,G,R,x buffer against a plain
// memcpy of the same bytes, its lower bound.

namespace {

constexpr int Width = 1920;
constexpr int Height = 1080;
constexpr size_t FrameBytes = size_t(Width) * Height * 4;

class frame_bitmap : public bitmap_interface
{
public:
    frame_bitmap() : Pixels(FrameBytes)
    {
        for (size_t I = 0; I < FrameBytes; I++)
            Pixels[I] = static_cast<uint8_t>(I * 7);
    }

    int_point2d GetSize() override { return int_point2d(Width, Height); }
    uint8_t *GetFirstLine() override { return Pixels.data(); }
    int32_t GetLineStride() override { return Width * 4; }

private:
    std::vector<uint8_t> Pixels;
};

void BM_SALBlitToBottomUpScreen(benchmark::State &State)
{
    frame_bitmap Frame;
    std::vector<uint8_t> Screen(FrameBytes, 0);
    uint8_t *TopLine = Screen.data() + size_t(Height - 1) * Width * 4;
    for (auto _ : State)
    {
        SALBlit(TopLine, -Width * 4, 32, int_point2d(Width, Height), int_point2d(0, 0), 0xFF0000, 0xFF00, 0xFF,
                &Frame);
        benchmark::DoNotOptimize(Screen.data());
        benchmark::ClobberMemory();
    }
    State.SetBytesProcessed(int64_t(State.iterations()) * int64_t(FrameBytes));
}
BENCHMARK(BM_SALBlitToBottomUpScreen)->Unit(benchmark::kMicrosecond);

void BM_MemcpyFrame(benchmark::State &State)
{
    frame_bitmap Frame;
    std::vector<uint8_t> Screen(FrameBytes, 0);
    for (auto _ : State)
    {
        std::memcpy(Screen.data(), Frame.GetFirstLine(), FrameBytes);
        benchmark::DoNotOptimize(Screen.data());
        benchmark::ClobberMemory();
    }
    State.SetBytesProcessed(int64_t(State.iterations()) * int64_t(FrameBytes));
}
BENCHMARK(BM_MemcpyFrame)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
