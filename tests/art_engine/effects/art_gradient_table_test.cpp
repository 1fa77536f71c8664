#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "art_engine/effects/art_gradient_table.h"
#include "art_engine/pixels/art_hsb.h"
#include "tests/art_engine/effects/art_gradient_test_support.h"

using namespace art_gradient_test;

namespace {

std::vector<agg::rgba8> Table(agg::rgba C0, agg::rgba C1, int Mode, bool Swap = false)
{
    std::vector<agg::rgba8> Entries(ArtGradientTableSize);
    EXPECT_TRUE(BuildGradientTable(Entries.data(), C0, C1, Mode, Swap));
    return Entries;
}

testing::AssertionResult SameTables(const std::vector<agg::rgba8> &Got, const std::vector<agg::rgba8> &Want)
{
    for (size_t I = 0; I < Want.size(); I++)
        if (!SamePixel(Got[I], Want[I]))
            return testing::AssertionFailure() << "entry " << I << " is " << PixelText(Got[I]) << ", want "
                                               << PixelText(Want[I]);
    return testing::AssertionSuccess();
}

// Colours of every hue, grey, black and white, each channel a whole byte as documents give them: a
// channel of 0.1 would make 25.5, a tie that the last bit of either conversion may break either way.
agg::rgba Bytes(int R, int G, int B)
{
    return agg::rgba(R / 255.0, G / 255.0, B / 255.0, 1);
}

const agg::rgba SampleColors[] = {Bytes(255, 0, 0),    Bytes(255, 255, 0),  Bytes(0, 255, 0),    Bytes(0, 255, 255),
                                  Bytes(0, 0, 255),    Bytes(255, 0, 255),  Bytes(51, 102, 153), Bytes(230, 77, 128),
                                  Bytes(128, 128, 128), Bytes(0, 0, 0),     Bytes(255, 255, 255), Bytes(64, 191, 26),
                                  Bytes(153, 26, 26)};

} // namespace

TEST(ArtHsb, RgbToHsbAgreesWithTheTextbookConversion)
{
    for (const agg::rgba &C : SampleColors) {
        double H, S, V;
        RgbToHsb(C.r, C.g, C.b, H, S, V);
        hsv Want = NaiveRgbToHsv(C.r, C.g, C.b);
        EXPECT_NEAR(Want.H, H, 1e-12) << C.r << " " << C.g << " " << C.b;
        EXPECT_NEAR(Want.S, S, 1e-12);
        EXPECT_NEAR(Want.V, V, 1e-12);
    }
}

TEST(ArtHsb, PrimaryAndMixedHuesHaveTheirPlaceOnTheWheel)
{
    double H, S, V;
    RgbToHsb(0, 0, 1, H, S, V);
    EXPECT_NEAR(2.0 / 3, H, 1e-15);
    EXPECT_EQ(1.0, S);
    EXPECT_EQ(1.0, V);
    RgbToHsb(1, 0, 0.5, H, S, V);
    EXPECT_NEAR(330.0 / 360, H, 1e-15);
    RgbToHsb(0.5, 0.5, 0.5, H, S, V);
    EXPECT_EQ(0.0, H);
    EXPECT_EQ(0.0, S);
    EXPECT_EQ(0.5, V);
    RgbToHsb(0, 0, 0, H, S, V);
    EXPECT_EQ(0.0, S);
    EXPECT_EQ(0.0, V);
}

TEST(ArtHsb, HsbToRgbAgreesWithTheTextbookConversionAndWrapsTheHue)
{
    for (double H = -1.5; H <= 2.5; H += 0.0123)
        for (double S : {0.0, 0.3, 1.0})
            for (double V : {0.2, 1.0}) {
                double R, G, B, WantR, WantG, WantB;
                HsbToRgb(H, S, V, R, G, B);
                NaiveHsvToRgb(H, S, V, WantR, WantG, WantB);
                EXPECT_NEAR(WantR, R, 1e-9) << H << " " << S << " " << V;
                EXPECT_NEAR(WantG, G, 1e-9) << H << " " << S << " " << V;
                EXPECT_NEAR(WantB, B, 1e-9) << H << " " << S << " " << V;
            }
}

TEST(ArtGradientTable, RgbModeRunsFromTheFirstColourToTheSecond)
{
    std::vector<agg::rgba8> Entries = Table(agg::rgba(1, 0, 0, 1), agg::rgba(0, 0, 1, 1), FadeModeRgb);
    EXPECT_EQ(PixelText(agg::rgba8(255, 0, 0, 255)), PixelText(Entries[0]));
    EXPECT_EQ(PixelText(agg::rgba8(0, 0, 255, 255)), PixelText(Entries[2047]));
    // 1023/2047 of the way: 255 * 1024/2047 = 127.56 and 255 * 1023/2047 = 127.44, each plus a half.
    EXPECT_EQ(PixelText(agg::rgba8(128, 0, 127, 255)), PixelText(Entries[1023]));
    EXPECT_TRUE(SameTables(Entries, NaiveTable(agg::rgba(1, 0, 0, 1), agg::rgba(0, 0, 1, 1), 2, false)));
}

TEST(ArtGradientTable, EveryModeMatchesTheTextbookBlendForManyPairs)
{
    for (const agg::rgba &C0 : SampleColors)
        for (const agg::rgba &C1 : SampleColors)
            for (int Mode = 0; Mode < 3; Mode++)
                EXPECT_TRUE(SameTables(Table(C0, C1, Mode), NaiveTable(C0, C1, Mode, false)))
                    << "mode " << Mode << " from " << C0.r << "," << C0.g << "," << C0.b << " to " << C1.r << ","
                    << C1.g << "," << C1.b;
}

TEST(ArtGradientTable, SwapRunsTheTableFromTheSecondColour)
{
    std::vector<agg::rgba8> Entries = Table(agg::rgba(1, 0, 0, 1), agg::rgba(0, 0, 1, 1), FadeModeRgb, true);
    EXPECT_EQ(PixelText(agg::rgba8(0, 0, 255, 255)), PixelText(Entries[0]));
    EXPECT_EQ(PixelText(agg::rgba8(255, 0, 0, 255)), PixelText(Entries[2047]));
    EXPECT_TRUE(SameTables(Entries, NaiveTable(agg::rgba(1, 0, 0, 1), agg::rgba(0, 0, 1, 1), 2, true)));
}

TEST(ArtGradientTable, AnUnknownModeBuildsNothing)
{
    std::vector<agg::rgba8> Entries(ArtGradientTableSize, agg::rgba8(1, 2, 3, 4));
    EXPECT_FALSE(BuildGradientTable(Entries.data(), agg::rgba(1, 0, 0, 1), agg::rgba(0, 0, 1, 1), 3, false));
    EXPECT_FALSE(BuildGradientTable(Entries.data(), agg::rgba(1, 0, 0, 1), agg::rgba(0, 0, 1, 1), -1, false));
    for (const agg::rgba8 &Entry : Entries)
        ASSERT_EQ(PixelText(agg::rgba8(1, 2, 3, 4)), PixelText(Entry));
}

TEST(ArtGradientTable, ShortHueModeBetweenColoursOfOneHueStaysOnThatHue)
{
    agg::rgba Light(1, 0.5, 0.5, 1);
    agg::rgba Dark(0.5, 0, 0, 1);
    std::vector<agg::rgba8> Entries = Table(Light, Dark, FadeModeShortHsb);
    for (const agg::rgba8 &Entry : Entries) {
        ASSERT_EQ(Entry.g, Entry.b) << PixelText(Entry);
        ASSERT_GT(Entry.r, Entry.g) << PixelText(Entry);
    }
    EXPECT_TRUE(SameTables(Entries, NaiveTable(Light, Dark, 0, false)));
}

// The hue step is 0, below half a turn, so the long way is a whole turn back through every hue.
TEST(ArtGradientTable, LongHueModeBetweenColoursOfOneHueTurnsThroughAllHues)
{
    agg::rgba Red(1, 0, 0, 1);
    std::vector<agg::rgba8> Entries = Table(Red, Red, FadeModeLongHsb);
    EXPECT_EQ(PixelText(agg::rgba8(255, 0, 0, 255)), PixelText(Entries[0]));
    EXPECT_EQ(PixelText(agg::rgba8(255, 0, 0, 255)), PixelText(Entries[2047]));
    // A third of the way the hue is 1 - 1/3 turn: blue. 682/2047 gives h = 0.66683, a hair past it
    // towards magenta: red 255 * 6 * 0.00017 rounds to 0.
    EXPECT_EQ(PixelText(agg::rgba8(0, 0, 255, 255)), PixelText(Entries[682]));
    // Two thirds of the way: green, 1365/2047 giving h = 0.33317, a hair short of it, towards yellow.
    EXPECT_EQ(PixelText(agg::rgba8(0, 255, 0, 255)), PixelText(Entries[1365]));
    // Half way: cyan.
    EXPECT_EQ(PixelText(agg::rgba8(0, 255, 255, 255)), PixelText(Entries[1023]));
    EXPECT_TRUE(SameTables(Entries, NaiveTable(Red, Red, 1, false)));
    std::vector<agg::rgba8> Short = Table(Red, Red, FadeModeShortHsb);
    for (const agg::rgba8 &Entry : Short)
        ASSERT_EQ(PixelText(agg::rgba8(255, 0, 0, 255)), PixelText(Entry));
}

// From hue 0.9 to hue 0.1 the step of -0.8 becomes +0.2: through red, not through cyan.
TEST(ArtGradientTable, ShortHueModeFromNineTenthsToOneTenthGoesThroughRed)
{
    double R0, G0, B0, R1, G1, B1;
    HsbToRgb(0.9, 1, 1, R0, G0, B0);
    HsbToRgb(0.1, 1, 1, R1, G1, B1);
    std::vector<agg::rgba8> Entries = Table(agg::rgba(R0, G0, B0, 1), agg::rgba(R1, G1, B1, 1), FadeModeShortHsb);
    // h = 0.9 + 0.2 * 1023/2047 = 0.99995: red with a trace of blue that rounds away.
    EXPECT_EQ(PixelText(agg::rgba8(255, 0, 0, 255)), PixelText(Entries[1023]));
    // 0.9 + 0.2 * 1024/2047 = 1.00005: over the top, a trace of green.
    EXPECT_EQ(PixelText(agg::rgba8(255, 0, 0, 255)), PixelText(Entries[1024]));
    for (const agg::rgba8 &Entry : Entries)
        ASSERT_EQ(255, Entry.r) << "the short way never leaves the reds: " << PixelText(Entry);
    EXPECT_TRUE(SameTables(Entries, NaiveTable(agg::rgba(R0, G0, B0, 1), agg::rgba(R1, G1, B1, 1), 0, false)));
    std::vector<agg::rgba8> Long = Table(agg::rgba(R0, G0, B0, 1), agg::rgba(R1, G1, B1, 1), FadeModeLongHsb);
    // The long way, -0.8, passes cyan (h = 0.5) half way.
    EXPECT_EQ(PixelText(agg::rgba8(0, 255, 255, 255)), PixelText(Long[1023]));
    EXPECT_TRUE(SameTables(Long, NaiveTable(agg::rgba(R0, G0, B0, 1), agg::rgba(R1, G1, B1, 1), 1, false)));
}

TEST(ArtGradientTable, AtExactlyHalfATurnNeitherModeChangesTheDirection)
{
    agg::rgba Red(1, 0, 0, 1);
    agg::rgba Cyan(0, 1, 1, 1);
    std::vector<agg::rgba8> Short = Table(Red, Cyan, FadeModeShortHsb);
    std::vector<agg::rgba8> Long = Table(Red, Cyan, FadeModeLongHsb);
    EXPECT_TRUE(SameTables(Short, Long));
    // Both keep the step of +0.5: a third of the way, hue 0.5 * 682/2047 is just short of a sixth
    // of a turn, yellow, where the other way round would be blue.
    EXPECT_EQ(PixelText(agg::rgba8(255, 255, 0, 255)), PixelText(Short[682]));
}

TEST(ArtGradientTable, ColoursWithAlphaGivePremultipliedEntriesAndAlphaZeroGivesZero)
{
    std::vector<agg::rgba8> Entries = Table(agg::rgba(1, 1, 1, 0.5), agg::rgba(1, 0.5, 0, 0), FadeModeRgb);
    // 0.5 * 255 + 0.5 = 128; 255 * 128 >> 8 = 127.
    EXPECT_EQ(PixelText(agg::rgba8(127, 127, 127, 128)), PixelText(Entries[0]));
    EXPECT_EQ(PixelText(agg::rgba8(0, 0, 0, 0)), PixelText(Entries[2047]));
    for (const agg::rgba8 &Entry : Entries) {
        ASSERT_LE(Entry.r, Entry.a) << PixelText(Entry);
        ASSERT_LE(Entry.g, Entry.a) << PixelText(Entry);
    }
    EXPECT_TRUE(SameTables(Entries, NaiveTable(agg::rgba(1, 1, 1, 0.5), agg::rgba(1, 0.5, 0, 0), 2, false)));
    std::vector<agg::rgba8> Hsb = Table(agg::rgba(0, 1, 0, 0), agg::rgba(0, 0, 1, 0), FadeModeShortHsb);
    for (const agg::rgba8 &Entry : Hsb)
        ASSERT_EQ(PixelText(agg::rgba8(0, 0, 0, 0)), PixelText(Entry));
}
