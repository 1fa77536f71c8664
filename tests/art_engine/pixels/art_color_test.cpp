#include <gtest/gtest.h>

#include <cstring>

#include "art_engine/pixels/art_color.h"
#include "rofa_lib/win_rgba.h"
#include "tests/test_support.h"
#include "zel_basics/fnv_hash.h"
#include "zel_basics/zel_hash_map.h"

namespace {

void ExpectColor(double R, double G, double B, double A, const agg::rgba &Color)
{
    EXPECT_DOUBLE_EQ(R, Color.r);
    EXPECT_DOUBLE_EQ(G, Color.g);
    EXPECT_DOUBLE_EQ(B, Color.b);
    EXPECT_DOUBLE_EQ(A, Color.a);
}

zel_string TwoDigits(int Byte)
{
    const char *Digits = "0123456789abcdef";
    char Pair[2] = {Digits[Byte / 16], Digits[Byte % 16]};
    return zel_string(Pair, 2);
}

} // namespace

TEST(ArtColorText, ReadsEightDigitsAsRedGreenBlueAlpha)
{
    ExpectColor(1.0, 128 / 255.0, 0.0, 64 / 255.0, ArtTextToColor("ff800040"));
    ExpectColor(0x12 / 255.0, 0xab / 255.0, 0xcd / 255.0, 0xef / 255.0, ArtTextToColor("12ABcdEF"));
}

TEST(ArtColorText, SixDigitsBehindHashAndEightDigitsGiveTheSameColour)
{
    agg::rgba Short = ArtTextToColor("#ffffff");
    agg::rgba Long = ArtTextToColor("ffffffff");
    ExpectColor(1.0, 1.0, 1.0, 1.0, Short);
    ExpectColor(Long.r, Long.g, Long.b, Long.a, Short);
}

TEST(ArtColorText, MissingPairsReadAsOne)
{
    ExpectColor(128 / 255.0, 1.0, 1.0, 1.0, ArtTextToColor("80"));
    ExpectColor(1.0, 128 / 255.0, 0.0, 1.0, ArtTextToColor("ff8000"));
    ExpectColor(1.0, 1.0, 1.0, 1.0, ArtTextToColor(""));
    ExpectColor(1.0, 1.0, 1.0, 1.0, ArtTextToColor("#"));
    // A pair of one digit is not two characters long.
    ExpectColor(0.0, 0.0, 0.0, 1.0, ArtTextToColor("0000000"));
}

TEST(ArtColorText, WritesLowercaseTruncatedWithoutHash)
{
    EXPECT_EQ(zel_string("7f7f7f7f"), ArtColorToText(agg::rgba(0.5, 0.5, 0.5, 0.5)));
    EXPECT_EQ(zel_string("ff800000"), ArtColorToText(agg::rgba(1.0, 128 / 255.0, 0.0, 0.0)));
    EXPECT_EQ(zel_string("00fe01ff"), ArtColorToText(agg::rgba(0.0, 0.999, 0.004, 1.0)));
}

TEST(ArtColorText, WritingClampsChannelsOutsideTheRange)
{
    EXPECT_EQ(zel_string("ff00ff00"), ArtColorToText(agg::rgba(1.5, -0.25, 7.0, -3.0)));
}

TEST(ArtColorText, TwentyFourByteValuesLoseAStepOnEachSave)
{
    int Lossy = 0;
    int FirstLossy = -1;
    for (int Byte = 0; Byte < 256; Byte++) {
        zel_string Text = TwoDigits(Byte) + TwoDigits(Byte) + TwoDigits(Byte) + "ff";
        zel_string Saved = ArtColorToText(ArtTextToColor(Text));
        if (Saved == Text)
            continue;
        EXPECT_EQ(TwoDigits(Byte - 1) + TwoDigits(Byte - 1) + TwoDigits(Byte - 1) + "ff", Saved) << Byte;
        if (FirstLossy < 0)
            FirstLossy = Byte;
        Lossy++;
    }
    EXPECT_EQ(24, Lossy);
    EXPECT_EQ(33, FirstLossy);
}

TEST(ArtColorText, RepeatedSavesKeepLosing)
{
    // 33 loses a step to 32 at the first save; 32 itself survives.
    zel_string Once = ArtColorToText(ArtTextToColor("21212121"));
    EXPECT_EQ(zel_string("20202020"), Once);
    EXPECT_EQ(Once, ArtColorToText(ArtTextToColor(Once)));
}

TEST(ArtColorText, ColoursFromTheTextFormRoundTrip)
{
    EXPECT_EQ(zel_string("ff8000ff"), ArtColorToText(ArtTextToColor("#FF8000")));
    EXPECT_EQ(zel_string("00000000"), ArtColorToText(ArtTextToColor("00000000")));
    EXPECT_EQ(zel_string("ffffffff"), ArtColorToText(ArtTextToColor("")));
}

TEST(ArtColorText, DebugTextNamesTheChannels)
{
    EXPECT_EQ(zel_string("(r=1, g=0.5, b=0.25, a=0)"), ArtColorToDebugText(agg::rgba(1, 0.5, 0.25, 0)));
}

TEST(ArtColorBytes, ChannelsAreScaledAndRoundedHalfUp)
{
    agg::rgba8 Bytes = ArtColorToRgba8(agg::rgba(1.0, 0.5, 0.2, 0.0));
    // 127.5 + 0.5 and 51 + 0.5, truncated.
    EXPECT_EQ(255, Bytes.r);
    EXPECT_EQ(128, Bytes.g);
    EXPECT_EQ(51, Bytes.b);
    EXPECT_EQ(0, Bytes.a);
    agg::rgba8 JustBelow = ArtColorToRgba8(agg::rgba(0.498, 0.001, 0.998, 0.999));
    EXPECT_EQ(127, JustBelow.r);
    EXPECT_EQ(0, JustBelow.g);
    EXPECT_EQ(254, JustBelow.b);
    EXPECT_EQ(255, JustBelow.a);
}

TEST(ArtColorKeys, ThreeByteKeyHashesItsBytes)
{
    color_rgb8 Key(0x10, 0x20, 0x30);
    uint32_t Hash = 0x811C9DC5;
    for (uint32_t Byte : {0x10u, 0x20u, 0x30u})
        Hash = (Hash * 0x01000193) ^ Byte;
    EXPECT_EQ(Hash, zel_contents_based_hash<color_rgb8>::GetHash(Key));
    EXPECT_EQ(color_rgb8(0x10, 0x20, 0x30), Key);
    EXPECT_NE(color_rgb8(0x10, 0x20, 0x31), Key);
}

TEST(ArtColorKeys, AccumulatorHoldsSignedSums)
{
    color_rgb32s Sum(-300, 70000, 0);
    Sum.r += 1000;
    EXPECT_EQ(color_rgb32s(700, 70000, 0), Sum);
    EXPECT_EQ(0, color_rgb32s().b);
}

TEST(ArtColorKeys, ScreenPixelIsBlueGreenRedAlphaInMemory)
{
    win_rgba Pixel(1, 2, 3, 4);
    uint8_t Bytes[4];
    std::memcpy(Bytes, &Pixel, 4);
    EXPECT_EQ(1, Bytes[0]);
    EXPECT_EQ(2, Bytes[1]);
    EXPECT_EQ(3, Bytes[2]);
    EXPECT_EQ(4, Bytes[3]);
    EXPECT_EQ(3, Pixel.Red);
}
