#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <ostream>
#include <random>
#include <string>
#include <vector>

#include "art_engine/effects/art_hsbc_filter.h"
#include "art_engine/objects/art_object_factory.h"
#include "art_engine/pixels/art_blend.h"
#include "tests/art_engine/objects/art_render_test_support.h"
#include "tests/art_engine/objects/art_test_support.h"
#include "tests/art_engine/shapes/art_shape_test_support.h"
#include "tests/test_support.h"

using namespace art_render_test;
using art_shape_test::parsed;
using art_test::Dump;
using art_test::Written;

namespace {

// The factory lives to the end of the process: made before any test, it counts against none.
class hsbc_factory_environment : public testing::Environment
{
public:
    void SetUp() override { art_object_factory::GetFactory(); }
};

testing::Environment *const HsbcFactoryEnvironment = testing::AddGlobalTestEnvironment(new hsbc_factory_environment);

struct hsbc_settings
{
    const char *Name;
    double H;
    double S;
    double B;
    double C;
    bool Invert;
    bool Colorize;
};

// Names the preset in the reports of a parameterised test.
void PrintTo(const hsbc_settings &Set, std::ostream *Stream)
{
    *Stream << Set.Name;
}

// The presets of the filter's property panel.
const hsbc_settings Presets[] = {
    {"Normal", 0, 0, 0, 0, false, false},
    {"Invert", 0, 0, 0, 0, true, false},
    {"InvertSameColors", -1, 0, 0, 0, true, false},
    {"BlackAndWhite", 0, -1, 0, 0, false, false},
    {"BlackAndWhiteFilm", 0, -1, -0.03, 0.22, false, false},
    {"Sepia", -0.85, -0.58, 0, 0, false, true},
    {"SepiaFilm", -0.85, -0.55, -0.03, 0.22, false, true},
    {"HighContrast", 0, 0, 0, 0.5, false, false},
    {"Posterize", 0, 0, 0, 0.8, false, false},
    {"PosterizeStrong", 0, 0, 0, 0.9, false, false},
    {"EvilRed", -1, 1, -0.28, 0, false, true},
    {"WhiteWash", 0, -1, 0.8, -0.8, false, false},
    {"BlackShadow", 0, -1, -0.7, -0.7, false, false},
    {"Insane", -1, 1, 0, 0.66, true, false},
};

int Clamp255(int Value)
{
    return std::min(255, std::max(0, Value));
}

// The filter's arithmetic written out step by step, as plainly as it is described, to check the
// engine's prepared and folded form against.
class plain_filter
{
public:
    explicit plain_filter(const hsbc_settings &Set) : Set(Set)
    {
        UseTable = std::fabs(Set.C) > 0.001 || std::fabs(Set.B) > 0.001;
        for (int I = 0; I < 256; I++)
            Table[I] = TableEntry(I);
    }

    agg::rgba8 Apply(agg::rgba8 In) const
    {
        int R = In.r;
        int G = In.g;
        int B = In.b;
        int A = In.a;
        // Unpremultiply.
        if (A == 0) {
            R = G = B = 0;
        } else if (A != 255) {
            R = std::min(255, R * 255 / A);
            G = std::min(255, G * 255 / A);
            B = std::min(255, B * 255 / A);
        }
        if (Set.Invert) {
            R = 255 - R;
            G = 255 - G;
            B = 255 - B;
        }
        if (UseTable) {
            R = Table[R];
            G = Table[G];
            B = Table[B];
        }
        HueAndSaturation(R, G, B);
        // Premultiply, truncating.
        if (A == 0) {
            R = G = B = 0;
        } else if (A != 255) {
            R = (R * A) >> 8;
            G = (G * A) >> 8;
            B = (B * A) >> 8;
        }
        return Pixel(R, G, B, A);
    }

private:

    int TableEntry(int I) const
    {
        if (Set.B == -1.0)
            return 0;
        if (Set.B == 1.0)
            return 255;
        double Slope;
        if (Set.C > 0) {
            double D = (1 - Set.C) * 255;
            Slope = D == 0 ? 255 : 255 / D;
        } else {
            Slope = Set.C + 1;
        }
        double Off = Set.C < 0 ? (1 + Set.C * 0.5) * Set.B * 255 : (1 - Set.C * 0.5) * Set.B * 255;
        double Base = Off * Slope + 127.5;
        double Value = std::min(255.0, std::max(0.0, (I - 127.5) * Slope + Base));
        return static_cast<int>(std::trunc(Value));
    }

    void HueAndSaturation(int &R, int &G, int &B) const
    {
        if (!(Set.S > -0.999)) {
            int Min = std::min({R, G, B});
            int Max = std::max({R, G, B});
            R = G = B = (Min + Max) / 2;
            return;
        }
        if (std::fabs(Set.H) <= 0.001 && std::fabs(Set.S) <= 0.001 && !Set.Colorize)
            return;
        int HueShift = static_cast<int>(std::trunc(Set.H * 768)) % 1536;
        if (HueShift < 0)
            HueShift += 1536;
        int ColorizeHue = HueShift + 768;
        if (ColorizeHue >= 1536)
            ColorizeHue -= 1536;
        int ColorizeSat = Clamp255(static_cast<int>(std::trunc((Set.S + 1) * 0.5 * 255)));
        double SatFactor = Set.S > 0 ? 255 / ((1 - Set.S) * 254 + 1) : Set.S + 1;

        int L;
        int M;
        int Hue;
        int Sat;
        if (Set.Colorize) {
            L = (std::min({R, G, B}) + std::max({R, G, B})) / 2;
            M = std::min(L, 255 - L);
            Hue = ColorizeHue;
            Sat = ColorizeSat;
        } else {
            // "<< 8" of the description, as a product: some of the dividends are negative.
            int Max;
            int Min;
            int H;
            if (R == G && G == B) {
                H = 0;
                Min = Max = G;
            } else if (G >= B && R >= B && R >= G) {
                Max = R, Min = B, H = ((G - B) * 256) / (R - B);
            } else if (G >= B && R >= B && R < G) {
                Max = G, Min = B, H = ((B - R) * 256) / (G - B) + 0x200;
            } else if (G >= B && R < B) {
                Max = G, Min = R, H = ((B - R) * 256) / (G - R) + 0x200;
            } else if (G < B && B > R && G > R) {
                Max = B, Min = R, H = ((R - G) * 256) / (B - R) + 0x400;
            } else if (G < B && B > R && G <= R) {
                Max = B, Min = G, H = ((R - G) * 256) / (B - G) + 0x400;
            } else {
                Max = R, Min = G, H = ((G - B) * 256) / (R - G) + 0x600;
            }
            L = (Min + Max) / 2;
            M = std::min(L, 255 - L);
            int S = M == 0 ? 0 : ((Max - Min) * 256) / (2 * M);
            Sat = Clamp255(static_cast<int>(std::trunc(S * SatFactor)));
            Hue = H + HueShift;
            if (Hue >= 1536)
                Hue -= 1536;
        }
        int P = M * Sat;
        int C1 = P / 256;
        int C2 = (P & 0x50) != 0 ? C1 + 1 : C1;
        int Hi = L + C2;
        int Lo = L - C1;
        int F = Hue % 256;
        int T = ((Hi - Lo) * F) / 256;
        switch (Hue / 256) {
        case 0: R = Hi, G = Lo + T, B = Lo; break;
        case 1: R = Hi - T, G = Hi, B = Lo; break;
        case 2: R = Lo, G = Hi, B = Lo + T; break;
        case 3: R = Lo, G = Hi - T, B = Hi; break;
        case 4: R = Lo + T, G = Lo, B = Hi; break;
        case 5: R = Hi, G = Lo, B = Hi - T; break;
        default: ADD_FAILURE() << "hue " << Hue;
        }
    }

    hsbc_settings Set;
    bool UseTable;
    int Table[256];
};

void Apply(art_hsbc_filter &Filter, const hsbc_settings &Set)
{
    Filter.SetHShift(Set.H);
    Filter.SetSShift(Set.S);
    Filter.SetBShift(Set.B);
    Filter.SetCShift(Set.C);
    Filter.SetInvert(Set.Invert);
    Filter.SetColorize(Set.Colorize);
}

hsbc_settings Settings(double H, double S, double B, double C, bool Invert = false, bool Colorize = false)
{
    return {"", H, S, B, C, Invert, Colorize};
}

// One pixel through the filter's own per-pixel arithmetic.
agg::rgba8 Filtered(const hsbc_settings &Set, agg::rgba8 Pixel)
{
    art_hsbc_filter Filter;
    Apply(Filter, Set);
    Filter.MakePixelFilter().FilterPixel(Pixel);
    return Pixel;
}

std::string Text(const agg::rgba8 &P)
{
    return PixelText(P);
}

void DrawFilter(art_hsbc_filter &Filter, art_bitmap &Bitmap)
{
    reference_pointer<bitmap_interface> Target(&Bitmap);
    Filter.Draw(Target, Target, agg::trans_affine(), reference_pointer<art_cache>());
}

agg::rgba8 At(art_bitmap &Bitmap, int X, int Y)
{
    return Bitmap.GetPixelRow(Y)[X];
}

ownership_pointer<art_object> Load(parsed &Parsed)
{
    return art_object_factory::GetFactory()->Make(Parsed.Tag());
}

reference_pointer<art_hsbc_filter> AsFilter(ownership_pointer<art_object> &Object)
{
    return reference_pointer<art_object>(Object.Get()).DynamicCast<art_hsbc_filter>();
}

std::string RoundTrip(const char *Text)
{
    parsed Parsed(Text);
    ownership_pointer<art_object> Object = Load(Parsed);
    return Written(*Object);
}

} // namespace

// Edge cases of the arithmetic.

TEST(ArtHsbcFilter, WithNothingToDoPartialAlphaStillGoesThroughUnpremultiplyAndPremultiply)
{
    hsbc_settings None = Settings(0, 0, 0, 0);
    // 100 * 255 / 128 = 199, 50 * 255 / 128 = 99, 20 * 255 / 128 = 39; back: (199 * 128) >> 8 = 99,
    // (99 * 128) >> 8 = 49, (39 * 128) >> 8 = 19.
    EXPECT_EQ(Text(Pixel(99, 49, 19, 128)), Text(Filtered(None, Pixel(100, 50, 20, 128))));
    // 254 * 255 / 254 = 255, (255 * 254) >> 8 = 253.
    EXPECT_EQ(Text(Pixel(253, 253, 253, 254)), Text(Filtered(None, Pixel(254, 254, 254, 254))));
    EXPECT_EQ(Text(Pixel(200, 100, 50, 255)), Text(Filtered(None, Pixel(200, 100, 50, 255))));
    EXPECT_EQ(Text(Pixel(0, 0, 0, 77)), Text(Filtered(None, Pixel(0, 0, 0, 77))));
}

TEST(ArtHsbcFilter, WithNothingToDoEveryPixelIsTheEnginesUnpremultiplyThenPremultiplyColor)
{
    art_hsbc_pixel_filter None(0, 0, 0, 0, false, false);
    int Differences = 0;
    // Colour bytes above alpha too: they are capped on the way out.
    for (int A = 0; A < 256; A++)
        for (int C = 0; C < 256; C++) {
            agg::rgba8 Got = Pixel(C, 255 - C, C / 2, A);
            agg::rgba8 Want = Got;
            None.FilterPixel(Got);
            UnpremultiplyPixel(Want);
            PremultiplyColor(Want);
            if (Text(Got) != Text(Want) && Differences++ < 5)
                ADD_FAILURE() << Text(Pixel(C, 255 - C, C / 2, A)) << " gave " << Text(Got) << ", want " << Text(Want);
        }
    EXPECT_EQ(0, Differences);
}

TEST(ArtHsbcFilter, FullBrightnessGivesWhiteAndNoneGivesBlackWhateverTheContrast)
{
    for (double C : {-1.0, -0.4, 0.0, 0.3, 1.0}) {
        for (agg::rgba8 In : {Pixel(0, 0, 0, 255), Pixel(200, 100, 50, 255), Pixel(12, 200, 7, 255)}) {
            EXPECT_EQ(Text(White), Text(Filtered(Settings(0, 0, 1.0, C), In))) << C;
            EXPECT_EQ(Text(Black), Text(Filtered(Settings(0, 0, -1.0, C), In))) << C;
        }
        // White at alpha 128, premultiplied with truncation: (255 * 128) >> 8 = 127.
        EXPECT_EQ(Text(Pixel(127, 127, 127, 128)), Text(Filtered(Settings(0, 0, 1.0, C), Pixel(3, 90, 40, 128))));
        EXPECT_EQ(Text(Pixel(0, 0, 0, 128)), Text(Filtered(Settings(0, 0, -1.0, C), Pixel(120, 90, 40, 128))));
    }
}

TEST(ArtHsbcFilter, FullContrastJumpsFromBlackToWhiteAtTheMiddle)
{
    art_hsbc_filter Filter;
    Filter.SetCShift(1.0);
    art_hsbc_pixel_filter Pixels = Filter.MakePixelFilter();
    for (int I = 0; I < 128; I++)
        EXPECT_EQ(0, Pixels.GetToneEntry(I)) << I;
    for (int I = 128; I < 256; I++)
        EXPECT_EQ(255, Pixels.GetToneEntry(I)) << I;
    EXPECT_EQ(Text(Pixel(0, 255, 255, 255)), Text(Filtered(Settings(0, 0, 0, 1.0), Pixel(127, 128, 200, 255))));
}

TEST(ArtHsbcFilter, NoContrastAtAllMakesEveryEntryTheBase)
{
    for (double B : {0.0, 0.5, -0.9}) {
        art_hsbc_filter Filter;
        Filter.SetCShift(-1.0);
        Filter.SetBShift(B);
        art_hsbc_pixel_filter Pixels = Filter.MakePixelFilter();
        // With a slope of 0 the base is 127.5 whatever the offset.
        for (int I = 0; I < 256; I++)
            EXPECT_EQ(127, Pixels.GetToneEntry(I)) << B << " " << I;
    }
    EXPECT_EQ(Text(Pixel(127, 127, 127, 255)), Text(Filtered(Settings(0, 0, 0, -1.0), Pixel(0, 200, 255, 255))));
}

TEST(ArtHsbcFilter, NoSaturationGivesTheGreyHalfwayBetweenMinimumAndMaximumNotTheLuminance)
{
    hsbc_settings Grey = Settings(0, -1.0, 0, 0);
    // Luminance would make pure red 54 and pure green 182.
    EXPECT_EQ(Text(Pixel(127, 127, 127, 255)), Text(Filtered(Grey, Pixel(255, 0, 0, 255))));
    EXPECT_EQ(Text(Pixel(127, 127, 127, 255)), Text(Filtered(Grey, Pixel(0, 255, 0, 255))));
    EXPECT_EQ(Text(Pixel(105, 105, 105, 255)), Text(Filtered(Grey, Pixel(10, 200, 60, 255))));
    // Colourising does not come into it.
    EXPECT_EQ(Text(Pixel(105, 105, 105, 255)), Text(Filtered(Settings(0.3, -1.0, 0, 0, false, true), Pixel(10, 200, 60, 255))));
}

TEST(ArtHsbcFilter, ColorizeWithNoSaturationShiftGivesSaturation127)
{
    art_hsbc_filter Filter;
    Filter.SetColorize(true);
    EXPECT_EQ(127, Filter.MakePixelFilter().GetColorizeSat());
    EXPECT_EQ(768, Filter.MakePixelFilter().GetColorizeHue());
    // (200, 100, 50): L = 125, M = 125; P = 125 * 127 = 15875 = 0x3e03, C1 = 62, no rounding bit,
    // so Hi = 187 and Lo = 63; hue 768 is the start of sector 3.
    EXPECT_EQ(Text(Pixel(63, 187, 187, 255)), Text(Filtered(Settings(0, 0, 0, 0, false, true), Pixel(200, 100, 50, 255))));
}

TEST(ArtHsbcFilter, AFullHueShiftEitherWayIsHalfTheWheel)
{
    art_hsbc_filter Filter;
    Filter.SetHShift(1.0);
    EXPECT_EQ(768, Filter.MakePixelFilter().GetHueShift());
    Filter.SetHShift(-1.0);
    EXPECT_EQ(768, Filter.MakePixelFilter().GetHueShift());
    // Red: hue 0, L = 127, M = 127, S = 65280 / 254 = 257, Sat 255; P = 32385 = 0x7e81, C1 = 126,
    // no rounding bit: Hi = 253, Lo = 1, at hue 768.
    EXPECT_EQ(Text(Pixel(1, 253, 253, 255)), Text(Filtered(Settings(1.0, 0, 0, 0), Pixel(255, 0, 0, 255))));
    EXPECT_EQ(Text(Pixel(1, 253, 253, 255)), Text(Filtered(Settings(-1.0, 0, 0, 0), Pixel(255, 0, 0, 255))));
}

TEST(ArtHsbcFilter, ColorizeWithAFullHueShiftLandsOnHueZero)
{
    art_hsbc_filter Filter;
    Filter.SetColorize(true);
    Filter.SetHShift(1.0);
    EXPECT_EQ(0, Filter.MakePixelFilter().GetColorizeHue());
    EXPECT_EQ(Text(Pixel(187, 63, 63, 255)), Text(Filtered(Settings(1.0, 0, 0, 0, false, true), Pixel(200, 100, 50, 255))));
}

TEST(ArtHsbcFilter, ATransparentPixelComesOutAllZeroWhateverTheFilterDoes)
{
    for (const hsbc_settings &Set : Presets) {
        EXPECT_EQ(Text(Transparent), Text(Filtered(Set, Pixel(0, 0, 0, 0)))) << Set.Name;
        EXPECT_EQ(Text(Transparent), Text(Filtered(Set, Pixel(10, 200, 30, 0)))) << Set.Name;
    }
    EXPECT_EQ(Text(Transparent), Text(Filtered(Settings(0, 0, 1.0, 0, true, true), Pixel(0, 0, 0, 0))));
}

TEST(ArtHsbcFilter, TheChromaRoundsUpOnlyWhenTheProductHasOneOfItsTwoBits)
{
    // Colourised at hue 0: L = 125, M = 125. Sepia's saturation, trunc(0.42 * 0.5 * 255) = 53, gives
    // P = 6625 = 0x19e1, which has bit 0x40: C1 = 25 and C2 = 26.
    hsbc_settings Sat53 = Settings(1.0, -0.58, 0, 0, false, true);
    EXPECT_EQ(Text(Pixel(151, 100, 100, 255)), Text(Filtered(Sat53, Pixel(200, 100, 50, 255))));
    // Sepia itself: hue trunc(-0.85 * 768) = -652, so 884, and 884 + 768 - 1536 = 116 to colourise;
    // T = (51 * 116) / 256 = 23.
    EXPECT_EQ(Text(Pixel(151, 123, 100, 255)), Text(Filtered(Presets[5], Pixel(200, 100, 50, 255))));
}

TEST(ArtHsbcFilter, InvertComesBeforeBrightnessAndContrast)
{
    // Contrast 0.5: slope 255 / 127.5 = 2, base 127.5; the inverted 255 - 100 = 155 gives
    // (155 - 127.5) * 2 + 127.5 = 182.5, so 182; 255 - 20 = 235 gives 255; 255 - 200 = 55 gives
    // -17.5, so 0.
    EXPECT_EQ(Text(Pixel(182, 255, 0, 255)), Text(Filtered(Settings(0, 0, 0, 0.5, true), Pixel(100, 20, 200, 255))));
}

// The whole arithmetic against the plain one.

class ArtHsbcFilterPreset : public testing::TestWithParam<hsbc_settings>
{
};

TEST_P(ArtHsbcFilterPreset, EveryOpaqueColourMatchesThePlainArithmetic)
{
    const hsbc_settings &Set = GetParam();
    plain_filter Plain(Set);
    art_hsbc_filter Filter;
    Apply(Filter, Set);
    art_bitmap Bitmap(256, 256);
    long Differences = 0;
    std::string First;
    for (int R = 0; R < 256; R++) {
        for (int G = 0; G < 256; G++)
            for (int B = 0; B < 256; B++)
                Bitmap.GetPixelRow(G)[B] = Pixel(R, G, B, 255);
        DrawFilter(Filter, Bitmap);
        for (int G = 0; G < 256; G++)
            for (int B = 0; B < 256; B++) {
                agg::rgba8 Got = Bitmap.GetPixelRow(G)[B];
                agg::rgba8 Want = Plain.Apply(Pixel(R, G, B, 255));
                if (Got.r == Want.r && Got.g == Want.g && Got.b == Want.b && Got.a == Want.a)
                    continue;
                if (Differences++ == 0)
                    First = Text(Pixel(R, G, B, 255)) + " gave " + Text(Got) + ", want " + Text(Want);
            }
    }
    EXPECT_EQ(0, Differences) << "first: " << First;
}

TEST_P(ArtHsbcFilterPreset, TranslucentPixelsMatchThePlainArithmetic)
{
    const hsbc_settings &Set = GetParam();
    plain_filter Plain(Set);
    art_hsbc_filter Filter;
    Apply(Filter, Set);
    const int Side = 512;
    art_bitmap Bitmap(Side, Side);
    art_bitmap Original(Side, Side);
    std::mt19937 Random(20240611);
    for (int Y = 0; Y < Side; Y++)
        for (int X = 0; X < Side; X++) {
            uint32_t Word = Random();
            int A = static_cast<int>(Word >> 24);
            // Premultiplied, so no colour byte above alpha.
            Original.GetPixelRow(Y)[X] = Pixel((uint8_t(Word) * A) / 255, (uint8_t(Word >> 8) * A) / 255,
                                               (uint8_t(Word >> 16) * A) / 255, A);
        }
    Bitmap.CopyBitmap(0, 0, &Original);
    DrawFilter(Filter, Bitmap);
    EXPECT_TRUE(PixelsAre(Bitmap, [&](int X, int Y) { return Plain.Apply(At(Original, X, Y)); }));
    // The one-by-one arithmetic, which the drawing may not have used, on its own.
    Bitmap.CopyBitmap(0, 0, &Original);
    art_hsbc_pixel_filter Pixels = Filter.MakePixelFilter();
    for (int Y = 0; Y < Side; Y++)
        Pixels.FilterPixelsOneByOne(Bitmap.GetPixelRow(Y), Side);
    EXPECT_TRUE(PixelsAre(Bitmap, [&](int X, int Y) { return Plain.Apply(At(Original, X, Y)); }));
}

TEST_P(ArtHsbcFilterPreset, VectorKernelGivesTheOneByOneBytesForAnyBytesAndAnyLength)
{
    if (!art_hsbc_pixel_filter::HasVectorKernel())
        GTEST_SKIP() << "this processor has no vector kernel to compare";
    art_hsbc_filter Filter;
    Apply(Filter, GetParam());
    art_hsbc_pixel_filter Pixels = Filter.MakePixelFilter();
    // Any four bytes, colour above alpha included, as a damaged layer could hold them; every alpha
    // occurs, and the rows end part way through a group of eight.
    std::mt19937 Random(77);
    for (int Length : {1, 7, 8, 9, 15, 16, 1021}) {
        std::vector<agg::rgba8> Row(size_t(Length) * 256);
        for (size_t I = 0; I < Row.size(); I++) {
            uint32_t Word = Random();
            Row[I] = Pixel(uint8_t(Word), uint8_t(Word >> 8), uint8_t(Word >> 16), int(I % 256));
        }
        std::shuffle(Row.begin(), Row.end(), Random);
        std::vector<agg::rgba8> Want(Row);
        for (size_t Start = 0; Start < Row.size(); Start += size_t(Length)) {
            Pixels.FilterPixels(Row.data() + Start, Length);
            Pixels.FilterPixelsOneByOne(Want.data() + Start, Length);
        }
        for (size_t I = 0; I < Row.size(); I++)
            ASSERT_EQ(Text(Want[I]), Text(Row[I])) << "length " << Length << ", pixel " << I;
    }
    // Groups of eight that are all opaque skip the division, and groups that mix do not.
    std::vector<agg::rgba8> Mixed(64);
    for (size_t I = 0; I < Mixed.size(); I++)
        Mixed[I] = Pixel(uint8_t(I * 37), uint8_t(I * 91), uint8_t(I * 13), I == 42 ? 254 : 255);
    std::vector<agg::rgba8> Want(Mixed);
    EXPECT_EQ(64, Pixels.FilterPixelsVector(Mixed.data(), 64));
    Pixels.FilterPixelsOneByOne(Want.data(), 64);
    for (size_t I = 0; I < Mixed.size(); I++)
        ASSERT_EQ(Text(Want[I]), Text(Mixed[I])) << "pixel " << I;
    EXPECT_EQ(0, Pixels.FilterPixelsVector(Mixed.data(), 7));
    EXPECT_EQ(16, Pixels.FilterPixelsVector(Mixed.data(), 23));
}

INSTANTIATE_TEST_SUITE_P(Presets, ArtHsbcFilterPreset, testing::ValuesIn(Presets),
                         [](const testing::TestParamInfo<hsbc_settings> &Info) { return std::string(Info.param.Name); });

// The object.

TEST(ArtHsbcFilter, DrawWorksOnEveryPixelOfAViewAndNothingBeyondIt)
{
    ownership_pointer<art_bitmap> Whole(new art_bitmap(6, 4));
    Whole->Clear(Pixel(200, 100, 50, 255));
    art_bitmap View(reference_pointer<art_bitmap>(Whole.Get()), int_rectangle(int_point2d(1, 1), int_point2d(3, 2)));
    art_hsbc_filter Filter;
    Filter.SetInvert(true);
    DrawFilter(Filter, View);
    EXPECT_TRUE(PixelsAre(*Whole, [](int X, int Y) {
        return Inside(X, Y, 1, 1, 4, 3) ? Pixel(55, 155, 205, 255) : Pixel(200, 100, 50, 255);
    }));
}

TEST(ArtHsbcFilter, DefaultsAreAllZeroAndOff)
{
    art_hsbc_filter Filter;
    EXPECT_EQ(0.0, Filter.GetHShift());
    EXPECT_EQ(0.0, Filter.GetSShift());
    EXPECT_EQ(0.0, Filter.GetBShift());
    EXPECT_EQ(0.0, Filter.GetCShift());
    EXPECT_FALSE(Filter.GetColorize());
    EXPECT_FALSE(Filter.GetInvert());
    EXPECT_EQ("<art_hsbc_filter></art_hsbc_filter>", Written(Filter));
}

TEST(ArtHsbcFilter, AShiftIsWrittenOnlyAboveOneThousandthEitherWay)
{
    art_hsbc_filter Filter;
    Filter.SetHShift(0.001);
    Filter.SetSShift(-0.001);
    Filter.SetBShift(0.0005);
    Filter.SetCShift(-0.0009);
    EXPECT_EQ("<art_hsbc_filter></art_hsbc_filter>", Written(Filter));
    Filter.SetHShift(0.0011);
    Filter.SetSShift(-0.0011);
    Filter.SetBShift(0.25);
    Filter.SetCShift(-1);
    EXPECT_EQ("<art_hsbc_filter hshift=\"0.0011\" sshift=\"-0.0011\" bshift=\"0.25\" cshift=\"-1\"></art_hsbc_filter>",
              Written(Filter));
}

TEST(ArtHsbcFilter, AttributesAreWrittenInTheirOrderAfterTheStackMode)
{
    art_hsbc_filter Filter;
    Filter.SetInvert(true);
    Filter.SetColorize(true);
    Filter.SetCShift(0.22);
    Filter.SetBShift(-0.03);
    Filter.SetSShift(-0.55);
    Filter.SetHShift(-0.85);
    Filter.SetStackMode(StackModePost);
    EXPECT_EQ("<art_hsbc_filter stack_mode=\"post\" hshift=\"-0.85\" sshift=\"-0.55\" bshift=\"-0.03\" "
              "cshift=\"0.22\" colorize=\"\" invert=\"\"></art_hsbc_filter>",
              Written(Filter));
}

TEST(ArtHsbcFilter, EveryAttributeIsReadBack)
{
    parsed Parsed("<art_hsbc_filter stack_mode=\"post\" hshift=\"-0.85\" sshift=\"0.5\" bshift=\"-0.03\" "
                  "cshift=\"0.22\" colorize=\"\" invert=\"\"/>");
    ownership_pointer<art_object> Loaded = Load(Parsed);
    reference_pointer<art_hsbc_filter> Filter = AsFilter(Loaded);
    ASSERT_TRUE(Filter.IsSet());
    EXPECT_EQ(StackModePost, Filter->GetStackMode());
    EXPECT_EQ(-0.85, Filter->GetHShift());
    EXPECT_EQ(0.5, Filter->GetSShift());
    EXPECT_EQ(-0.03, Filter->GetBShift());
    EXPECT_EQ(0.22, Filter->GetCShift());
    EXPECT_TRUE(Filter->GetColorize());
    EXPECT_TRUE(Filter->GetInvert());
}

TEST(ArtHsbcFilter, ShiftsAreClampedOnLoad)
{
    parsed Parsed("<art_hsbc_filter hshift=\"2\" sshift=\"-7.5\" bshift=\"1.0001\" cshift=\"-1\"/>");
    ownership_pointer<art_object> Loaded = Load(Parsed);
    reference_pointer<art_hsbc_filter> Filter = AsFilter(Loaded);
    ASSERT_TRUE(Filter.IsSet());
    EXPECT_EQ(1.0, Filter->GetHShift());
    EXPECT_EQ(-1.0, Filter->GetSShift());
    EXPECT_EQ(1.0, Filter->GetBShift());
    EXPECT_EQ(-1.0, Filter->GetCShift());
    EXPECT_EQ("<art_hsbc_filter hshift=\"1\" sshift=\"-1\" bshift=\"1\" cshift=\"-1\"></art_hsbc_filter>",
              Written(*Filter));
}

TEST(ArtHsbcFilter, TheFlagsAreSetByTheirPresenceWhateverTheValue)
{
    EXPECT_EQ("<art_hsbc_filter colorize=\"\" invert=\"\"></art_hsbc_filter>",
              RoundTrip("<art_hsbc_filter colorize=\"0\" invert=\"false\"/>"));
    parsed Parsed("<art_hsbc_filter invert=\"no\"/>");
    ownership_pointer<art_object> Loaded = Load(Parsed);
    EXPECT_TRUE(AsFilter(Loaded)->GetInvert());
    EXPECT_FALSE(AsFilter(Loaded)->GetColorize());
}

TEST(ArtHsbcFilter, EmptyOrUnreadableShiftsReadAsZero)
{
    parsed Parsed("<art_hsbc_filter hshift=\"\" sshift=\"abc\" bshift=\"0.0\"/>");
    ownership_pointer<art_object> Loaded = Load(Parsed);
    reference_pointer<art_hsbc_filter> Filter = AsFilter(Loaded);
    ASSERT_TRUE(Filter.IsSet());
    EXPECT_EQ(0.0, Filter->GetHShift());
    EXPECT_EQ(0.0, Filter->GetSShift());
    EXPECT_EQ(0.0, Filter->GetBShift());
    EXPECT_EQ("<art_hsbc_filter></art_hsbc_filter>", Written(*Filter));
}

TEST(ArtHsbcFilter, TinyShiftsInADocumentAreDroppedOnSave)
{
    EXPECT_EQ("<art_hsbc_filter></art_hsbc_filter>",
              RoundTrip("<art_hsbc_filter hshift=\"0.001\" sshift=\"-0.0005\" bshift=\"1e-4\"/>"));
}

TEST(ArtHsbcFilter, SettersClampAndAskForARedrawOnlyOnAChange)
{
    art_object Owner;
    reference_pointer<art_hsbc_filter> Filter =
        Owner.AddChild(ownership_pointer<art_object>(new art_hsbc_filter)).DynamicCast<art_hsbc_filter>();
    auto Raises = [&](std::function<void()> Set) {
        int32_t Before = Owner.GetRedrawCount();
        Set();
        return Owner.GetRedrawCount() > Before;
    };
    EXPECT_FALSE(Raises([&] { Filter->SetHShift(0); }));
    EXPECT_TRUE(Raises([&] { Filter->SetHShift(3); }));
    EXPECT_EQ(1.0, Filter->GetHShift());
    EXPECT_FALSE(Raises([&] { Filter->SetHShift(1.5); }));
    EXPECT_FALSE(Raises([&] { Filter->SetSShift(0); }));
    EXPECT_TRUE(Raises([&] { Filter->SetSShift(-2); }));
    EXPECT_EQ(-1.0, Filter->GetSShift());
    EXPECT_FALSE(Raises([&] { Filter->SetBShift(0); }));
    EXPECT_TRUE(Raises([&] { Filter->SetBShift(0.3); }));
    EXPECT_EQ(0.3, Filter->GetBShift());
    EXPECT_FALSE(Raises([&] { Filter->SetCShift(0); }));
    EXPECT_TRUE(Raises([&] { Filter->SetCShift(-0.3); }));
    EXPECT_EQ(-0.3, Filter->GetCShift());
    EXPECT_FALSE(Raises([&] { Filter->SetColorize(false); }));
    EXPECT_TRUE(Raises([&] { Filter->SetColorize(true); }));
    EXPECT_FALSE(Raises([&] { Filter->SetInvert(false); }));
    EXPECT_TRUE(Raises([&] { Filter->SetInvert(true); }));
}

TEST(ArtHsbcFilter, TheColourIsTheShiftsReadAsHueSaturationAndValue)
{
    art_hsbc_filter Filter;
    // Hue 0.5 is 180 degrees, the start of sector 3: red (1 - 0.5) * 0.5, green and blue 0.5.
    agg::rgba Color = Filter.GetColor();
    EXPECT_DOUBLE_EQ(0.25, Color.r);
    EXPECT_DOUBLE_EQ(0.5, Color.g);
    EXPECT_DOUBLE_EQ(0.5, Color.b);
    EXPECT_EQ(1.0, Color.a);
    // Hue 0, full saturation and value: pure red.
    Filter.SetHShift(-1);
    Filter.SetSShift(1);
    Filter.SetBShift(1);
    Color = Filter.GetColor();
    EXPECT_DOUBLE_EQ(1.0, Color.r);
    EXPECT_DOUBLE_EQ(0.0, Color.g);
    EXPECT_DOUBLE_EQ(0.0, Color.b);
    EXPECT_EQ(1.0, Color.a);
}

TEST(ArtHsbcFilter, SettingAColourColorizesAndTakesItsHueSaturationAndValue)
{
    art_object Owner;
    reference_pointer<art_hsbc_filter> Filter =
        Owner.AddChild(ownership_pointer<art_object>(new art_hsbc_filter)).DynamicCast<art_hsbc_filter>();
    Filter->SetInvert(true);
    int32_t Before = Owner.GetRedrawCount();
    // Hue 120 degrees, a third of the wheel; saturation 1 - 0.25 / 0.5; value 0.5.
    Filter->SetColor(agg::rgba(0.25, 0.5, 0.25, 0.3));
    EXPECT_GT(Owner.GetRedrawCount(), Before);
    EXPECT_TRUE(Filter->GetColorize());
    EXPECT_FALSE(Filter->GetInvert());
    EXPECT_NEAR(2 / 3.0 - 1, Filter->GetHShift(), 1e-12);
    EXPECT_NEAR(0.0, Filter->GetSShift(), 1e-12);
    EXPECT_NEAR(0.0, Filter->GetBShift(), 1e-12);
    // The same colour again changes nothing.
    Before = Owner.GetRedrawCount();
    Filter->SetColor(agg::rgba(0.25, 0.5, 0.25, 1));
    EXPECT_EQ(Before, Owner.GetRedrawCount());
}

TEST(ArtHsbcFilter, SettingAColourKeepsAShiftThatMovesByAThousandthOrLess)
{
    art_hsbc_filter Filter;
    Filter.SetColorize(true);
    Filter.SetHShift(0.0008);
    Filter.SetSShift(-0.0009);
    Filter.SetBShift(0.3);
    // Hue 0.5, saturation 0.5, value 0.5: each would be a shift of 0.
    Filter.SetColor(agg::rgba(0.25, 0.5, 0.5, 1));
    EXPECT_EQ(0.0008, Filter.GetHShift());
    EXPECT_EQ(-0.0009, Filter.GetSShift());
    EXPECT_NEAR(0.0, Filter.GetBShift(), 1e-12);
}

TEST(ArtHsbcFilter, SettingABlackColourGivesNoSaturationAndNoBrightness)
{
    art_hsbc_filter Filter;
    Filter.SetColor(agg::rgba(0, 0, 0, 1));
    EXPECT_EQ(-1.0, Filter.GetHShift());
    EXPECT_EQ(-1.0, Filter.GetSShift());
    EXPECT_EQ(-1.0, Filter.GetBShift());
    EXPECT_TRUE(Filter.GetColorize());
}

TEST(ArtHsbcFilter, DuplicateCopiesEveryField)
{
    art_hsbc_filter Filter;
    Apply(Filter, Presets[6]);
    Filter.SetInvert(true);
    Filter.SetStackMode(StackModePost);
    ownership_pointer<art_object> Copy = Filter.Duplicate();
    reference_pointer<art_hsbc_filter> Twin = AsFilter(Copy);
    ASSERT_TRUE(Twin.IsSet());
    EXPECT_EQ(-0.85, Twin->GetHShift());
    EXPECT_EQ(-0.55, Twin->GetSShift());
    EXPECT_EQ(-0.03, Twin->GetBShift());
    EXPECT_EQ(0.22, Twin->GetCShift());
    EXPECT_TRUE(Twin->GetColorize());
    EXPECT_TRUE(Twin->GetInvert());
    EXPECT_EQ(Written(Filter), Written(*Twin));
}

TEST(ArtHsbcFilter, NamesItself)
{
    art_hsbc_filter Filter;
    EXPECT_EQ(zel_string("art_hsbc_filter"), Filter.GetTagName());
    EXPECT_EQ(zel_string("Hue, Saturation, Brightness & Contrast"), Filter.GetTypeLabel());
    EXPECT_EQ(zel_string("Effect"), Filter.GetEffectKind());
    EXPECT_TRUE(Filter.IsFilterEffect());
    EXPECT_TRUE(Filter.IsLayerObject());
    EXPECT_FALSE(Filter.CanHaveChildren());
}

TEST(ArtHsbcFilter, TheFactoryMakesAFilterOfItsTag)
{
    parsed Parsed("<art_hsbc_filter hshift=\"0.5\"/>");
    ownership_pointer<art_object> Loaded = Load(Parsed);
    reference_pointer<art_hsbc_filter> Filter = AsFilter(Loaded);
    ASSERT_TRUE(Filter.IsSet());
    EXPECT_EQ(0.5, Filter->GetHShift());
}

// In a tree.

TEST(ArtHsbcFilterTree, InAStencilledObjectTheFilterWorksOnWhatCameBeforeItOnly)
{
    art_object Group;
    Place(Group, point2d(2, 2), point2d(12, 8));
    AddFill(Group, point2d(0, 0), point2d(12, 8), White, StackModePlusStencil);
    AddFill(Group, point2d(0, 0), point2d(12, 8), Pixel(200, 100, 50, 255));
    reference_pointer<art_object> Filter = Group.AddChild(ownership_pointer<art_object>(new art_hsbc_filter));
    Filter.DynamicCast<art_hsbc_filter>()->SetInvert(true);
    AddFill(Group, point2d(6, 0), point2d(6, 8), Green);
    ownership_pointer<art_bitmap> Bitmap = DrawAlone(Group, 16, 12);
    EXPECT_TRUE(PixelsAre(*Bitmap, [](int X, int Y) {
        if (!Inside(X, Y, 2, 2, 14, 10))
            return Transparent;
        return X < 8 ? Pixel(55, 155, 205, 255) : Green;
    }));
}

TEST(ArtHsbcFilterTree, InAStencilledObjectTheMaskComesAfterTheFilter)
{
    // A grey stencil child of luminance 128 halves what the filter made.
    art_object Group;
    Place(Group, point2d(0, 0), point2d(8, 8));
    AddFill(Group, point2d(0, 0), point2d(8, 8), Pixel(128, 128, 128, 255), StackModeStencil);
    AddFill(Group, point2d(0, 0), point2d(8, 8), Pixel(200, 100, 50, 255));
    reference_pointer<art_object> Filter = Group.AddChild(ownership_pointer<art_object>(new art_hsbc_filter));
    Filter.DynamicCast<art_hsbc_filter>()->SetInvert(true);
    ownership_pointer<art_bitmap> Bitmap = DrawAlone(Group, 8, 8);
    agg::rgba8 Layer = Masked(Pixel(55, 155, 205, 255), Pixel(128, 128, 128, 255));
    EXPECT_EQ(Text(Pixel(27, 77, 102, 128)), Text(Layer));
    // The layer then goes over the transparent target, which gives alpha 255 - ((255 * 127) >> 8).
    EXPECT_TRUE(PixelsAre(*Bitmap, [&](int, int) { return Pixel(27, 77, 102, 129); }));
}

TEST(ArtHsbcFilterTree, APostFilterWorksOnTheMaskedCompositeAndItsTranslucentEdge)
{
    art_object Group;
    Place(Group, point2d(0, 0), point2d(8, 8));
    AddFill(Group, point2d(0, 0), point2d(8, 8), Pixel(128, 128, 128, 255), StackModeStencil);
    AddFill(Group, point2d(0, 0), point2d(8, 8), Pixel(200, 100, 50, 255));
    ownership_pointer<art_object> Post(new art_hsbc_filter);
    Post->SetStackMode(StackModePost);
    reference_pointer<art_object> Filter = Group.AddChild(Post);
    Filter.DynamicCast<art_hsbc_filter>()->SetInvert(true);
    ownership_pointer<art_bitmap> Bitmap = DrawAlone(Group, 8, 8);
    // Masked first: (100, 50, 25, 128); straight (199, 99, 49), inverted (56, 156, 206), and
    // premultiplied again (28, 78, 103); over the transparent target alpha becomes 129.
    agg::rgba8 Composite = Masked(Pixel(200, 100, 50, 255), Pixel(128, 128, 128, 255));
    EXPECT_EQ(Text(Pixel(100, 50, 25, 128)), Text(Composite));
    EXPECT_TRUE(PixelsAre(*Bitmap, [&](int, int) { return Pixel(28, 78, 103, 129); }));
}

TEST(ArtHsbcFilterTree, WithoutAStencilTheFilterWorksOnTheWholeTarget)
{
    art_object Group;
    Place(Group, point2d(2, 2), point2d(4, 4));
    Group.AddChild(ownership_pointer<art_object>(new art_hsbc_filter))
        .DynamicCast<art_hsbc_filter>()
        ->SetInvert(true);
    ownership_pointer<art_bitmap> Bitmap(new art_bitmap(10, 6));
    Bitmap->Clear(Pixel(200, 100, 50, 255));
    reference_pointer<bitmap_interface> Target(Bitmap.Get());
    Group.Draw(Target, Target, agg::trans_affine(), reference_pointer<art_cache>());
    EXPECT_TRUE(PixelsAre(*Bitmap, [](int, int) { return Pixel(55, 155, 205, 255); }));
}

namespace {

// A rectangle group 20 by 10 at (10, 10), filled with (200, 100, 50) and made sepia.
const char *const SepiaRectangle =
    "<pego handle=\"(0,0)\" x_val=\"10\" w_val=\"20\" y_val=\"10\" h_val=\"10\"><children>"
    "<art_stencil_shape stack_mode=\"+stencil\" x_layout_mode=\"7\" x_val=\"0.5\" w_val=\"1\" y_layout_mode=\"7\" "
    "y_val=\"0.5\" h_val=\"1\"><art_rectangle></art_rectangle></art_stencil_shape>"
    "<art_solid_fill color=\"c86432ff\"></art_solid_fill>"
    "<art_hsbc_filter hshift=\"-0.85\" sshift=\"-0.58\" colorize=\"\"></art_hsbc_filter>"
    "</children></pego>";

// The same with a translucent fill, and the filter of the "Insane" preset.
const char *const InsaneTranslucent =
    "<pego handle=\"(0,0)\" x_val=\"4\" w_val=\"8\" y_val=\"4\" h_val=\"8\"><children>"
    "<art_stencil_shape stack_mode=\"+stencil\" x_layout_mode=\"7\" x_val=\"0.5\" w_val=\"1\" y_layout_mode=\"7\" "
    "y_val=\"0.5\" h_val=\"1\"><art_rectangle></art_rectangle></art_stencil_shape>"
    "<art_solid_fill color=\"3c82dc99\"></art_solid_fill>"
    "<art_hsbc_filter hshift=\"-1\" sshift=\"1\" cshift=\"0.66\" invert=\"\"></art_hsbc_filter>"
    "</children></pego>";

const char *const InsaneTranslucentUnfiltered =
    "<pego handle=\"(0,0)\" x_val=\"4\" w_val=\"8\" y_val=\"4\" h_val=\"8\"><children>"
    "<art_stencil_shape stack_mode=\"+stencil\" x_layout_mode=\"7\" x_val=\"0.5\" w_val=\"1\" y_layout_mode=\"7\" "
    "y_val=\"0.5\" h_val=\"1\"><art_rectangle></art_rectangle></art_stencil_shape>"
    "<art_solid_fill color=\"3c82dc99\"></art_solid_fill>"
    "</children></pego>";

ownership_pointer<art_bitmap> DrawDocument(parsed &Parsed, ownership_pointer<art_object> &Root, int W, int H)
{
    Root = Load(Parsed);
    Root->Layout();
    return DrawAlone(*Root, W, H);
}

} // namespace

TEST(ArtHsbcFilterDocument, ASepiaRectangleDrawsItsColourAndIsWrittenBackUnchanged)
{
    parsed Parsed(SepiaRectangle);
    ownership_pointer<art_object> Root;
    ownership_pointer<art_bitmap> Bitmap = DrawDocument(Parsed, Root, 40, 30);
    ASSERT_EQ(point2d(20, 10), Root->GetSize());
    for (auto P : {std::make_pair(10, 10), std::make_pair(29, 19), std::make_pair(20, 15)})
        EXPECT_EQ(Text(Pixel(151, 123, 100, 255)), Text(At(*Bitmap, P.first, P.second))) << P.first << "," << P.second;
    for (auto P : {std::make_pair(9, 10), std::make_pair(30, 19), std::make_pair(20, 20), std::make_pair(0, 0)})
        EXPECT_EQ(Text(Transparent), Text(At(*Bitmap, P.first, P.second))) << P.first << "," << P.second;
    EXPECT_EQ(Dump(Parsed.Tag()), Written(*Root));
}

TEST(ArtHsbcFilterDocument, ATranslucentFillThroughTheInsanePresetIsThePlainArithmeticOfTheUnfilteredPixels)
{
    // The layer of the object without the filter, as it stands before it goes onto the target.
    parsed Plain(InsaneTranslucentUnfiltered);
    ownership_pointer<art_object> PlainRoot = Load(Plain);
    PlainRoot->Layout();
    point2d Offset;
    ownership_pointer<art_bitmap> Unfiltered = PlainRoot->RenderToBitmap(
        int_rectangle(int_point2d(4, 4), int_point2d(8, 8)), PlainRoot->GetObjectToParent(),
        reference_pointer<art_cache>(), Offset, false);
    ASSERT_EQ(int_point2d(8, 8), Unfiltered->GetSize());
    ASSERT_NE(255, At(*Unfiltered, 3, 3).a);
    ASSERT_NE(0, At(*Unfiltered, 3, 3).a);
    parsed Parsed(InsaneTranslucent);
    ownership_pointer<art_object> Root;
    ownership_pointer<art_bitmap> Bitmap = DrawDocument(Parsed, Root, 16, 16);
    plain_filter Insane(Presets[13]);
    EXPECT_TRUE(PixelsAre(*Bitmap, [&](int X, int Y) {
        if (!Inside(X, Y, 4, 4, 12, 12))
            return Transparent;
        return Over(Transparent, Insane.Apply(At(*Unfiltered, X - 4, Y - 4)), 255);
    }));
    EXPECT_EQ(Text(Transparent), Text(At(*Bitmap, 2, 2)));
    EXPECT_EQ(Dump(Parsed.Tag()), Written(*Root));
}

TEST(ArtHsbcFilterDocument, EveryPresetAsADocumentTagIsWrittenBackUnchanged)
{
    const char *const Tags[] = {
        "<art_hsbc_filter></art_hsbc_filter>",
        "<art_hsbc_filter invert=\"\"></art_hsbc_filter>",
        "<art_hsbc_filter hshift=\"-1\" invert=\"\"></art_hsbc_filter>",
        "<art_hsbc_filter sshift=\"-1\"></art_hsbc_filter>",
        "<art_hsbc_filter sshift=\"-1\" bshift=\"-0.03\" cshift=\"0.22\"></art_hsbc_filter>",
        "<art_hsbc_filter hshift=\"-0.85\" sshift=\"-0.58\" colorize=\"\"></art_hsbc_filter>",
        "<art_hsbc_filter hshift=\"-0.85\" sshift=\"-0.55\" bshift=\"-0.03\" cshift=\"0.22\" colorize=\"\">"
        "</art_hsbc_filter>",
        "<art_hsbc_filter cshift=\"0.5\"></art_hsbc_filter>",
        "<art_hsbc_filter cshift=\"0.8\"></art_hsbc_filter>",
        "<art_hsbc_filter cshift=\"0.9\"></art_hsbc_filter>",
        "<art_hsbc_filter hshift=\"-1\" sshift=\"1\" bshift=\"-0.28\" colorize=\"\"></art_hsbc_filter>",
        "<art_hsbc_filter sshift=\"-1\" bshift=\"0.8\" cshift=\"-0.8\"></art_hsbc_filter>",
        "<art_hsbc_filter sshift=\"-1\" bshift=\"-0.7\" cshift=\"-0.7\"></art_hsbc_filter>",
        "<art_hsbc_filter hshift=\"-1\" sshift=\"1\" cshift=\"0.66\" invert=\"\"></art_hsbc_filter>",
    };
    static_assert(sizeof(Tags) / sizeof(Tags[0]) == sizeof(Presets) / sizeof(Presets[0]), "one tag a preset");
    for (size_t I = 0; I < sizeof(Tags) / sizeof(Tags[0]); I++) {
        EXPECT_EQ(Tags[I], RoundTrip(Tags[I])) << Presets[I].Name;
        art_hsbc_filter Filter;
        Apply(Filter, Presets[I]);
        EXPECT_EQ(Tags[I], Written(Filter)) << Presets[I].Name;
    }
}
