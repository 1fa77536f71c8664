#pragma once

#include <cstdint>
#include <vector>

// The blur header leans on the base renderer without including it.
#include <agg_renderer_base.h>
#include <agg_blur.h>

#include "art_engine/pixels/art_bitmap.h"

namespace art_blur_test {

// The stack blur written out as its sum, the slow way: along each row and then along each column,
// every byte becomes sum over k = -R..R of (R + 1 - |k|) times the byte k places on, a place beyond
// the line taking the line's end byte; the sum is scaled by the multiplier and shift that the blur
// tables give for R. Channel 0 to 3 is red, green, blue or alpha.
inline void PlainBlurChannel(art_bitmap &Bitmap, unsigned R, int Channel)
{
    if (R == 0)
        return;
    unsigned Mul = agg::stack_blur_tables<int>::g_stack_blur8_mul[R];
    unsigned Shr = agg::stack_blur_tables<int>::g_stack_blur8_shr[R];
    int W = Bitmap.GetSize().X;
    int H = Bitmap.GetSize().Y;
    auto Byte = [&](int X, int Y) -> uint8_t & {
        return reinterpret_cast<uint8_t *>(Bitmap.GetPixelRow(Y) + X)[Channel];
    };
    auto BlurLine = [&](int N, auto Get, auto Set) {
        std::vector<uint64_t> In(N);
        for (int I = 0; I < N; I++)
            In[I] = Get(I);
        for (int I = 0; I < N; I++) {
            uint64_t Sum = 0;
            for (int K = -int(R); K <= int(R); K++) {
                int Place = I + K < 0 ? 0 : I + K >= N ? N - 1 : I + K;
                Sum += (R + 1 - unsigned(K < 0 ? -K : K)) * In[Place];
            }
            Set(I, static_cast<uint8_t>((Sum * Mul) >> Shr));
        }
    };
    for (int Y = 0; Y < H; Y++)
        BlurLine(W, [&](int X) { return Byte(X, Y); }, [&](int X, uint8_t V) { Byte(X, Y) = V; });
    for (int X = 0; X < W; X++)
        BlurLine(H, [&](int Y) { return Byte(X, Y); }, [&](int Y, uint8_t V) { Byte(X, Y) = V; });
}

inline void PlainBlurColor(art_bitmap &Bitmap, unsigned R)
{
    for (int Channel = 0; Channel < 3; Channel++)
        PlainBlurChannel(Bitmap, R, Channel);
}

inline void PlainBlurAlpha(art_bitmap &Bitmap, unsigned R)
{
    PlainBlurChannel(Bitmap, R, 3);
}

// Bytes from a fixed pseudo-random sequence, so that every test sees the same picture.
inline ownership_pointer<art_bitmap> NoiseBitmap(int W, int H, uint32_t Seed = 12345)
{
    ownership_pointer<art_bitmap> Bitmap(new art_bitmap(W, H));
    uint32_t State = Seed;
    for (int Y = 0; Y < H; Y++)
        for (int X = 0; X < W; X++) {
            uint8_t *P = reinterpret_cast<uint8_t *>(Bitmap->GetPixelRow(Y) + X);
            for (int C = 0; C < 4; C++) {
                State = State * 1664525u + 1013904223u;
                P[C] = static_cast<uint8_t>(State >> 24);
            }
        }
    return Bitmap;
}

inline ownership_pointer<art_bitmap> CopyOf(art_bitmap &Source)
{
    ownership_pointer<art_bitmap> Copy(new art_bitmap(Source.GetSize().X, Source.GetSize().Y));
    Copy->CopyBitmap(0, 0, &Source);
    return Copy;
}

} // namespace art_blur_test
