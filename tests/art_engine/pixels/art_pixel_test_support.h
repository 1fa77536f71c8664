#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <sstream>

#include <agg_color_rgba.h>

#include "art_engine/pixels/art_bitmap.h"
#include "art_engine/pixels/art_blend.h"

namespace art_pixel_test {

inline agg::rgba8 Pixel(unsigned R, unsigned G, unsigned B, unsigned A)
{
    return agg::rgba8(static_cast<uint8_t>(R), static_cast<uint8_t>(G), static_cast<uint8_t>(B),
                      static_cast<uint8_t>(A));
}

inline bool SamePixel(const agg::rgba8 &X, const agg::rgba8 &Y)
{
    return X.r == Y.r && X.g == Y.g && X.b == Y.b && X.a == Y.a;
}

inline std::string PixelText(const agg::rgba8 &P)
{
    std::ostringstream Text;
    Text << "(" << int(P.r) << ", " << int(P.g) << ", " << int(P.b) << ", " << int(P.a) << ")";
    return Text.str();
}

// Compares Count pixels and reports the number of differences and the first one, so that a wrong
// kernel gives one readable line, not millions.
inline testing::AssertionResult SamePixels(const agg::rgba8 *Got, const agg::rgba8 *Want, int Count, int Width = 0)
{
    int Differences = 0;
    int First = -1;
    for (int I = 0; I < Count; I++) {
        if (!SamePixel(Got[I], Want[I])) {
            if (First < 0)
                First = I;
            Differences++;
        }
    }
    if (Differences == 0)
        return testing::AssertionSuccess();
    testing::AssertionResult Failure = testing::AssertionFailure();
    Failure << Differences << " of " << Count << " pixels differ; first at index " << First;
    if (Width > 0)
        Failure << " (x=" << First % Width << ", y=" << First / Width << ")";
    Failure << ": got " << PixelText(Got[First]) << ", want " << PixelText(Want[First]);
    return Failure;
}

// Every pixel of a bitmap against a plain array of the expected pixels.
inline testing::AssertionResult BitmapIs(art_bitmap &Bitmap, const agg::rgba8 *Want)
{
    return SamePixels(Bitmap.GetPixelRow(0), Want, Bitmap.GetPixelDataSize(), Bitmap.GetSize().X);
}

// A random byte that is 0 or 255 a quarter of the time each, so that the early exits for empty and
// full alpha or coverage are taken often.
inline uint8_t RandomEdgyByte(std::mt19937 &Random)
{
    uint32_t Word = Random();
    switch (Word & 3) {
    case 0:
        return 0;
    case 1:
        return 255;
    default:
        return static_cast<uint8_t>(Word >> 8);
    }
}

// A bitmap of random bytes, no care taken that colour stays below alpha: the kernels are defined for
// any bytes, and random ones reach the wrap-around cases too. Alpha is edgy.
inline void FillRandom(art_bitmap &Bitmap, std::mt19937 &Random)
{
    uint8_t *Bytes = Bitmap.GetPixelData();
    int Count = Bitmap.GetPixelDataSize() * 4;
    for (int I = 0; I < Count; I += 4) {
        uint32_t Word = Random();
        Bytes[I] = static_cast<uint8_t>(Word);
        Bytes[I + 1] = static_cast<uint8_t>(Word >> 8);
        Bytes[I + 2] = static_cast<uint8_t>(Word >> 16);
        Bytes[I + 3] = RandomEdgyByte(Random);
    }
}

// A test that runs once with each block width of the span kernels.
class block_width_test : public testing::TestWithParam<bool>
{
protected:
    void SetUp() override { WasWide = UseWideBlendBlocks(GetParam()); }
    void TearDown() override { UseWideBlendBlocks(WasWide); }

private:
    bool WasWide = false;
};

inline std::string BlockWidthName(const testing::TestParamInfo<bool> &Info) { return Info.param ? "Wide" : "Narrow"; }

} // namespace art_pixel_test
