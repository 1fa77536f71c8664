#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <vector>

#include "art_engine/objects/art_object.h"
#include "art_engine/pixels/art_bitmap.h"
#include "art_engine/pixels/art_blend.h"
#include "art_engine/pixels/art_comp_op.h"
#include "tests/art_engine/pixels/art_pixel_test_support.h"
#include "tests/test_support.h"

using namespace art_pixel_test;

namespace {

// The pixel rules written out a second time, plainly and line by line as they are stated, to hold
// the kernels to. Bytes are stored with a plain conversion to uint8_t, as a byte store does.
namespace plain {

agg::rgba8 PremultiplyColor(agg::rgba8 P)
{
    if (P.a == 255)
        return P;
    if (P.a == 0)
        return Pixel(0, 0, 0, 0);
    return Pixel((P.r * P.a) >> 8, (P.g * P.a) >> 8, (P.b * P.a) >> 8, P.a);
}

agg::rgba8 PremultiplyPixel(agg::rgba8 P)
{
    if (P.a == 255)
        return P;
    if (P.a == 0)
        return Pixel(0, 0, 0, 0);
    return Pixel((P.r * P.a + 255) >> 8, (P.g * P.a + 255) >> 8, (P.b * P.a + 255) >> 8, P.a);
}

unsigned CappedQuotient(unsigned C, unsigned A)
{
    unsigned Q = (C * 255) / A;
    return Q < 255 ? Q : 255;
}

agg::rgba8 UnpremultiplyPixel(agg::rgba8 P)
{
    if (P.a == 255)
        return P;
    if (P.a == 0)
        return Pixel(0, 0, 0, 0);
    return Pixel(CappedQuotient(P.r, P.a), CappedQuotient(P.g, P.a), CappedQuotient(P.b, P.a), P.a);
}

// The weights in decimal, as the render pipeline states them.
unsigned Luma(unsigned R, unsigned G, unsigned B) { return (13926 * R + 46884 * G + 4725 * B + 32768) >> 16; }

unsigned ComplementAlpha(unsigned PA, unsigned Inv) { return 255 - (((255 - PA) * Inv) >> 8); }

// Solid colour, a run with one coverage byte.
agg::rgba8 SolidRun(agg::rgba8 P, agg::rgba8 C, unsigned Cover)
{
    if (C.a == 0)
        return P;
    unsigned Alpha = (C.a * (Cover + 1)) >> 8;
    if (Alpha > 254)
        return Pixel(C.r, C.g, C.b, 255);
    unsigned Inv = 255 - Alpha;
    if (Cover == 255)
        return Pixel(((P.r * Inv) >> 8) + C.r, ((P.g * Inv) >> 8) + C.g, ((P.b * Inv) >> 8) + C.b,
                     ComplementAlpha(P.a, Inv));
    return Pixel((P.r * Inv + C.r * (Cover + 1)) >> 8, (P.g * Inv + C.g * (Cover + 1)) >> 8,
                 (P.b * Inv + C.b * (Cover + 1)) >> 8, ComplementAlpha(P.a, Inv));
}

// Solid colour, a span with a coverage byte per pixel.
agg::rgba8 SolidPerPixel(agg::rgba8 P, agg::rgba8 C, unsigned Cover)
{
    if (C.a == 0)
        return P;
    unsigned Alpha = (C.a * (Cover + 1)) >> 8;
    if (Alpha > 254)
        return Pixel(C.r, C.g, C.b, 255);
    unsigned Inv = 255 - Alpha;
    return Pixel((P.r * Inv + C.r * (Cover + 1)) >> 8, (P.g * Inv + C.g * (Cover + 1)) >> 8,
                 (P.b * Inv + C.b * (Cover + 1)) >> 8, ComplementAlpha(P.a, Inv));
}

// A span of ready-made pixels.
agg::rgba8 ColorSpan(agg::rgba8 P, agg::rgba8 C, unsigned Cover)
{
    if (C.a == 0)
        return P;
    if (Cover < 255) {
        unsigned Alpha = (C.a * (Cover + 1)) >> 8;
        if (Alpha > 254)
            return Pixel(C.r, C.g, C.b, 255);
        unsigned Inv = 255 - Alpha;
        return Pixel((P.r * Inv + C.r * (Cover + 1)) >> 8, (P.g * Inv + C.g * (Cover + 1)) >> 8,
                     (P.b * Inv + C.b * (Cover + 1)) >> 8, ComplementAlpha(P.a, Inv));
    }
    if (C.a == 255)
        return Pixel(C.r, C.g, C.b, 255);
    unsigned Inv = 255 - C.a;
    return Pixel(((P.r * Inv) >> 8) + C.r, ((P.g * Inv) >> 8) + C.g, ((P.b * Inv) >> 8) + C.b,
                 ComplementAlpha(P.a, Inv));
}

// Destination-over of a straight-alpha source pixel, premultiplied first as the composite path does.
agg::rgba8 DstOver(agg::rgba8 P, agg::rgba8 Straight, unsigned Cover)
{
    unsigned S[4] = {(Straight.r * Straight.a + 255u) >> 8, (Straight.g * Straight.a + 255u) >> 8,
                     (Straight.b * Straight.a + 255u) >> 8, Straight.a};
    if (Cover < 255) {
        for (unsigned &Byte : S)
            Byte = (Byte * Cover + 255) >> 8;
    }
    unsigned D1A = 255 - P.a;
    return Pixel(P.r + ((S[0] * D1A + 255) >> 8), P.g + ((S[1] * D1A + 255) >> 8), P.b + ((S[2] * D1A + 255) >> 8),
                 S[3] + P.a - ((S[3] * P.a + 255) >> 8));
}

agg::rgba8 Stencil(agg::rgba8 P, agg::rgba8 S)
{
    unsigned L = Luma(S.r, S.g, S.b);
    if (L == 255)
        return P;
    return Pixel((P.r * L) >> 8, (P.g * L) >> 8, (P.b * L) >> 8, (P.a * L + 255) >> 8);
}

} // namespace plain

// Exhaustive grids: 256 by 256 pixels, column x holding destination value x in every byte but
// spread so that the four bytes differ, row y standing for the other input.
agg::rgba8 GridTarget(int X) { return Pixel(X, 255 - X, (X * 7) & 255, X); }
// A colour whose alpha is Alpha and whose colour bytes vary with it, without regard to
// premultiplication; alpha 0 comes with non-zero colour bytes.
agg::rgba8 GridColor(int Alpha) { return Pixel(Alpha, (Alpha * 3) & 255, 255 - Alpha, Alpha); }

const int Grid = 256;

void FillGridTarget(art_bitmap &Bitmap)
{
    for (int Y = 0; Y < Grid; Y++)
        for (int X = 0; X < Grid; X++)
            Bitmap.GetPixelRow(Y)[X] = GridTarget(X);
}

// Runs Operation on the grid target (once for the whole bitmap, or per row as it likes) and
// compares every pixel with Expected(target pixel, x, y).
testing::AssertionResult CheckGrid(const std::function<void(art_bitmap &)> &Operation,
                                   const std::function<agg::rgba8(agg::rgba8, int, int)> &Expected)
{
    art_bitmap Bitmap(Grid, Grid);
    FillGridTarget(Bitmap);
    Operation(Bitmap);
    std::vector<agg::rgba8> Want(Grid * Grid);
    for (int Y = 0; Y < Grid; Y++)
        for (int X = 0; X < Grid; X++)
            Want[Y * Grid + X] = Expected(GridTarget(X), X, Y);
    return BitmapIs(Bitmap, Want.data());
}

const unsigned SomeCovers[] = {255, 254, 200, 128, 1, 0};
const agg::rgba8 SomeColors[] = {Pixel(100, 100, 100, 128), Pixel(255, 255, 255, 255), Pixel(37, 200, 3, 201),
                                 Pixel(9, 9, 9, 0), Pixel(0, 0, 0, 255), Pixel(1, 1, 1, 1)};

const int RandomSide = 1024;

} // namespace

class ArtSolidBlend : public block_width_test
{
};
class ArtColorSpanBlend : public block_width_test
{
};
class ArtBlendBitmap : public block_width_test
{
};
class ArtStencil : public block_width_test
{
};
INSTANTIATE_TEST_SUITE_P(BlockWidths, ArtSolidBlend, testing::Bool(), BlockWidthName);
INSTANTIATE_TEST_SUITE_P(BlockWidths, ArtColorSpanBlend, testing::Bool(), BlockWidthName);
INSTANTIATE_TEST_SUITE_P(BlockWidths, ArtBlendBitmap, testing::Bool(), BlockWidthName);
INSTANTIATE_TEST_SUITE_P(BlockWidths, ArtStencil, testing::Bool(), BlockWidthName);

// A one-pixel kernel against its plain form, for every colour byte at every alpha.
void ExpectLikePlainForEveryByteAndAlpha(void (*Kernel)(agg::rgba8 &), agg::rgba8 (*Plain)(agg::rgba8))
{
    for (int A = 0; A < 256; A++)
        for (int C = 0; C < 256; C++) {
            agg::rgba8 P = Pixel(C, 255 - C, C / 3, A);
            agg::rgba8 Want = Plain(P);
            Kernel(P);
            ASSERT_TRUE(SamePixel(Want, P)) << "c=" << C << " a=" << A << ": " << PixelText(P);
        }
}

TEST(ArtPremultiply, ColorTruncatesForEveryByteAndAlpha)
{
    ExpectLikePlainForEveryByteAndAlpha(PremultiplyColor, plain::PremultiplyColor);
}

TEST(ArtPremultiply, PixelRoundsUpForEveryByteAndAlpha)
{
    ExpectLikePlainForEveryByteAndAlpha(PremultiplyPixel, plain::PremultiplyPixel);
}

TEST(ArtPremultiply, UnpremultiplyForEveryByteAndAlpha)
{
    ExpectLikePlainForEveryByteAndAlpha(UnpremultiplyPixel, plain::UnpremultiplyPixel);
}

TEST(ArtPremultiply, PixelOfRedAtAlphaOneGivesOneAndColorGivesZero)
{
    agg::rgba8 AsPixel = Pixel(255, 0, 0, 1);
    agg::rgba8 AsColor = Pixel(255, 0, 0, 1);
    PremultiplyPixel(AsPixel);
    PremultiplyColor(AsColor);
    EXPECT_EQ(PixelText(Pixel(1, 0, 0, 1)), PixelText(AsPixel));
    EXPECT_EQ(PixelText(Pixel(0, 0, 0, 1)), PixelText(AsColor));
}

TEST(ArtPremultiply, WhiteAtAlpha254IsKeptByPixelAndLoweredByColor)
{
    agg::rgba8 AsPixel = Pixel(255, 255, 255, 254);
    agg::rgba8 AsColor = Pixel(255, 255, 255, 254);
    PremultiplyPixel(AsPixel);
    PremultiplyColor(AsColor);
    EXPECT_EQ(PixelText(Pixel(254, 254, 254, 254)), PixelText(AsPixel));
    EXPECT_EQ(PixelText(Pixel(253, 253, 253, 254)), PixelText(AsColor));
}

TEST(ArtPremultiply, AlphaZeroClearsColorAndFullAlphaLeavesAll)
{
    agg::rgba8 Clear = Pixel(10, 20, 30, 0);
    PremultiplyPixel(Clear);
    EXPECT_EQ(PixelText(Pixel(0, 0, 0, 0)), PixelText(Clear));
    agg::rgba8 Opaque = Pixel(10, 20, 30, 255);
    PremultiplyColor(Opaque);
    EXPECT_EQ(PixelText(Pixel(10, 20, 30, 255)), PixelText(Opaque));
}

TEST(ArtPremultiply, UnpremultiplyCapsAt255)
{
    agg::rgba8 P = Pixel(10, 0, 0, 5);
    UnpremultiplyPixel(P);
    EXPECT_EQ(PixelText(Pixel(255, 0, 0, 5)), PixelText(P));
}

TEST(ArtLuma, EveryColourMatchesTheDecimalWeights)
{
    for (unsigned R = 0; R < 256; R++)
        for (unsigned G = 0; G < 256; G++)
            for (unsigned B = 0; B < 256; B++)
                if (Luma(Pixel(R, G, B, 0)) != plain::Luma(R, G, B))
                    FAIL() << "r=" << R << " g=" << G << " b=" << B;
}

TEST(ArtLuma, WhiteIs255BlackIs0AndAlphaDoesNotEnter)
{
    EXPECT_EQ(255u, Luma(Pixel(255, 255, 255, 0)));
    EXPECT_EQ(0u, Luma(Pixel(0, 0, 0, 255)));
    EXPECT_EQ(128u, Luma(Pixel(128, 128, 128, 7)));
    // (255 * 0x3666 + 0x8000) >> 16
    EXPECT_EQ(54u, Luma(Pixel(255, 0, 0, 255)));
}

TEST_P(ArtSolidBlend, RunOfEveryAlphaOverEveryTargetByte)
{
    for (unsigned Cover : SomeCovers) {
        EXPECT_TRUE(CheckGrid(
            [&](art_bitmap &B) {
                for (int Y = 0; Y < Grid; Y++)
                    B.GetBaseRenderer().blend_hline(0, Y, Grid - 1, GridColor(Y), static_cast<agg::int8u>(Cover));
            },
            [&](agg::rgba8 P, int, int Y) { return plain::SolidRun(P, GridColor(Y), Cover); }))
            << "cover " << Cover;
    }
}

TEST_P(ArtSolidBlend, RunOfEveryCoverOverEveryTargetByte)
{
    for (const agg::rgba8 &Color : SomeColors) {
        EXPECT_TRUE(CheckGrid(
            [&](art_bitmap &B) {
                for (int Y = 0; Y < Grid; Y++)
                    B.GetBaseRenderer().blend_hline(0, Y, Grid - 1, Color, static_cast<agg::int8u>(Y));
            },
            [&](agg::rgba8 P, int, int Y) { return plain::SolidRun(P, Color, unsigned(Y)); }))
            << "colour " << PixelText(Color);
    }
}

TEST_P(ArtSolidBlend, PerPixelSpanOfEveryCoverOverEveryTargetByte)
{
    for (const agg::rgba8 &Color : SomeColors) {
        EXPECT_TRUE(CheckGrid(
            [&](art_bitmap &B) {
                std::vector<agg::int8u> Covers(Grid);
                for (int Y = 0; Y < Grid; Y++) {
                    std::fill(Covers.begin(), Covers.end(), static_cast<agg::int8u>(Y));
                    B.GetBaseRenderer().blend_solid_hspan(0, Y, Grid, Color, Covers.data());
                }
            },
            [&](agg::rgba8 P, int, int Y) { return plain::SolidPerPixel(P, Color, unsigned(Y)); }))
            << "colour " << PixelText(Color);
    }
}

TEST_P(ArtSolidBlend, PerPixelSpanOfEveryAlphaWithAllCoversFull)
{
    std::vector<agg::int8u> Covers(Grid, 255);
    EXPECT_TRUE(CheckGrid(
        [&](art_bitmap &B) {
            for (int Y = 0; Y < Grid; Y++)
                B.GetBaseRenderer().blend_solid_hspan(0, Y, Grid, GridColor(Y), Covers.data());
        },
        [&](agg::rgba8 P, int, int Y) { return plain::SolidPerPixel(P, GridColor(Y), 255); }));
}

TEST_P(ArtSolidBlend, RandomRunsAndSpans)
{
    std::mt19937 Random(20240511);
    art_bitmap Runs(RandomSide, RandomSide);
    art_bitmap Spans(RandomSide, RandomSide);
    FillRandom(Runs, Random);
    FillRandom(Spans, Random);
    std::vector<agg::rgba8> WantRuns(Runs.GetPixelRow(0), Runs.GetPixelRow(0) + RandomSide * RandomSide);
    std::vector<agg::rgba8> WantSpans(Spans.GetPixelRow(0), Spans.GetPixelRow(0) + RandomSide * RandomSide);
    std::vector<agg::int8u> Covers(RandomSide);
    for (int Y = 0; Y < RandomSide; Y++) {
        agg::rgba8 Color = Pixel(Random(), Random(), Random(), RandomEdgyByte(Random));
        unsigned Cover = RandomEdgyByte(Random);
        int X1 = int(Random() % RandomSide);
        int X2 = int(Random() % RandomSide);
        if (X1 > X2)
            std::swap(X1, X2);
        Runs.GetBaseRenderer().blend_hline(X1, Y, X2, Color, static_cast<agg::int8u>(Cover));
        for (int X = X1; X <= X2; X++)
            WantRuns[Y * RandomSide + X] = plain::SolidRun(WantRuns[Y * RandomSide + X], Color, Cover);

        for (agg::int8u &C : Covers)
            C = RandomEdgyByte(Random);
        Spans.GetBaseRenderer().blend_solid_hspan(X1, Y, X2 - X1 + 1, Color, Covers.data());
        for (int X = X1; X <= X2; X++)
            WantSpans[Y * RandomSide + X] = plain::SolidPerPixel(WantSpans[Y * RandomSide + X], Color, Covers[X - X1]);
    }
    EXPECT_TRUE(BitmapIs(Runs, WantRuns.data()));
    EXPECT_TRUE(BitmapIs(Spans, WantSpans.data()));
}

TEST_P(ArtSolidBlend, OpaqueWhiteAtFullCoverWrites255Everywhere)
{
    agg::rgba8 White = Pixel(255, 255, 255, 255);
    agg::int8u FullCovers[Grid];
    std::fill(FullCovers, FullCovers + Grid, 255);
    std::vector<agg::rgba8> Whites(Grid, White);
    std::vector<agg::rgba8> Want(Grid * Grid, White);
    EXPECT_TRUE(CheckGrid(
        [&](art_bitmap &B) {
            for (int Y = 0; Y < Grid; Y++) {
                if (Y % 3 == 0)
                    B.GetBaseRenderer().blend_hline(0, Y, Grid - 1, White, 255);
                else if (Y % 3 == 1)
                    B.GetBaseRenderer().blend_solid_hspan(0, Y, Grid, White, FullCovers);
                else
                    B.GetBaseRenderer().blend_color_hspan(0, Y, Grid, Whites.data(), nullptr, 255);
            }
        },
        [&](agg::rgba8, int, int) { return White; }));
}

TEST_P(ArtSolidBlend, HalfAlphaGreyOverOpaqueGreyAsRunAndAsSpan)
{
    agg::rgba8 Color = Pixel(100, 100, 100, 128);
    art_bitmap Bitmap(2, 1);
    Bitmap.Clear(Pixel(200, 200, 200, 255));
    agg::int8u FullCover = 255;
    Bitmap.GetBaseRenderer().blend_hline(0, 0, 0, Color, 255);
    Bitmap.GetBaseRenderer().blend_solid_hspan(1, 0, 1, Color, &FullCover);
    // ((200 * 127) >> 8) + 100 and (200 * 127 + 100 * 256) >> 8; alpha 255 - ((0 * 127) >> 8).
    EXPECT_EQ(PixelText(Pixel(199, 199, 199, 255)), PixelText(Bitmap.GetPixelRow(0)[0]));
    EXPECT_EQ(PixelText(Pixel(199, 199, 199, 255)), PixelText(Bitmap.GetPixelRow(0)[1]));
}

TEST_P(ArtSolidBlend, AlphaBelowCoverThresholdBlendsAlphaByComplementOnly)
{
    // Alpha (200 * 101) >> 8 = 78, inv 177: colour (50 * 177 + 180 * 101) >> 8 = 105, alpha
    // 255 - ((155 * 177) >> 8) = 148.
    art_bitmap Bitmap(1, 1);
    Bitmap.Clear(Pixel(50, 50, 50, 100));
    Bitmap.GetBaseRenderer().blend_hline(0, 0, 0, Pixel(180, 180, 180, 200), 100);
    EXPECT_EQ(PixelText(Pixel(105, 105, 105, 148)), PixelText(Bitmap.GetPixelRow(0)[0]));
}

TEST_P(ArtSolidBlend, ColourWithAlphaZeroLeavesTargetUnchangedInEveryForm)
{
    agg::rgba8 Invisible = Pixel(200, 100, 50, 0);
    std::vector<agg::rgba8> Invisibles(Grid, Invisible);
    std::vector<agg::int8u> Covers(Grid);
    for (int X = 0; X < Grid; X++)
        Covers[X] = static_cast<agg::int8u>(X);
    EXPECT_TRUE(CheckGrid(
        [&](art_bitmap &B) {
            for (int Y = 0; Y < Grid; Y++) {
                B.GetBaseRenderer().blend_hline(0, Y, Grid - 1, Invisible, static_cast<agg::int8u>(Y));
                B.GetBaseRenderer().blend_solid_hspan(0, Y, Grid, Invisible, Covers.data());
                B.GetBaseRenderer().blend_color_hspan(0, Y, Grid, Invisibles.data(), nullptr,
                                                      static_cast<agg::int8u>(Y));
                B.GetBaseRenderer().blend_color_hspan(0, Y, Grid, Invisibles.data(), Covers.data(), 255);
            }
        },
        [&](agg::rgba8 P, int, int) { return P; }));
}

TEST_P(ArtSolidBlend, SingleSpanKernelsMatchTheRendererPath)
{
    // The kernels on their own, as the bitmap operations and other drawing code call them, on
    // lengths that are not a whole number of blocks.
    std::mt19937 Random(7);
    for (unsigned Length = 0; Length < 40; Length++) {
        std::vector<agg::rgba8> Row(Length + 1);
        for (agg::rgba8 &P : Row)
            P = Pixel(Random(), Random(), Random(), RandomEdgyByte(Random));
        std::vector<agg::rgba8> Want = Row;
        agg::rgba8 Color = Pixel(Random(), Random(), Random(), 1 + Random() % 254);
        unsigned Cover = Random() % 256;
        BlendSolidRun(reinterpret_cast<uint8_t *>(Row.data()), Length, Color, Cover);
        for (unsigned I = 0; I < Length; I++)
            Want[I] = plain::SolidRun(Want[I], Color, Cover);
        ASSERT_TRUE(SamePixels(Row.data(), Want.data(), int(Length + 1))) << "length " << Length;
    }
}

TEST_P(ArtColorSpanBlend, EveryAlphaOverEveryTargetByteWithOneCover)
{
    std::vector<agg::rgba8> Colors(Grid);
    for (unsigned Cover : SomeCovers) {
        EXPECT_TRUE(CheckGrid(
            [&](art_bitmap &B) {
                for (int Y = 0; Y < Grid; Y++) {
                    std::fill(Colors.begin(), Colors.end(), GridColor(Y));
                    B.GetBaseRenderer().blend_color_hspan(0, Y, Grid, Colors.data(), nullptr,
                                                          static_cast<agg::int8u>(Cover));
                }
            },
            [&](agg::rgba8 P, int, int Y) { return plain::ColorSpan(P, GridColor(Y), Cover); }))
            << "cover " << Cover;
    }
}

TEST_P(ArtColorSpanBlend, EveryCoverOverEveryTargetByteWithCoverArray)
{
    std::vector<agg::int8u> Covers(Grid);
    for (const agg::rgba8 &Color : SomeColors) {
        std::vector<agg::rgba8> Colors(Grid, Color);
        EXPECT_TRUE(CheckGrid(
            [&](art_bitmap &B) {
                for (int Y = 0; Y < Grid; Y++) {
                    std::fill(Covers.begin(), Covers.end(), static_cast<agg::int8u>(Y));
                    B.GetBaseRenderer().blend_color_hspan(0, Y, Grid, Colors.data(), Covers.data(), 0);
                }
            },
            [&](agg::rgba8 P, int, int Y) { return plain::ColorSpan(P, Color, unsigned(Y)); }))
            << "colour " << PixelText(Color);
    }
}

TEST_P(ArtColorSpanBlend, RandomSpans)
{
    std::mt19937 Random(99);
    art_bitmap Target(RandomSide, RandomSide);
    FillRandom(Target, Random);
    std::vector<agg::rgba8> Want(Target.GetPixelRow(0), Target.GetPixelRow(0) + RandomSide * RandomSide);
    std::vector<agg::rgba8> Colors(RandomSide);
    std::vector<agg::int8u> Covers(RandomSide);
    for (int Y = 0; Y < RandomSide; Y++) {
        for (int X = 0; X < RandomSide; X++) {
            Colors[X] = Pixel(Random(), Random(), Random(), RandomEdgyByte(Random));
            Covers[X] = RandomEdgyByte(Random);
        }
        bool WithArray = Y % 2 == 0;
        unsigned Cover = RandomEdgyByte(Random);
        Target.GetBaseRenderer().blend_color_hspan(0, Y, RandomSide, Colors.data(), WithArray ? Covers.data() : nullptr,
                                                   static_cast<agg::int8u>(Cover));
        for (int X = 0; X < RandomSide; X++)
            Want[Y * RandomSide + X] =
                plain::ColorSpan(Want[Y * RandomSide + X], Colors[X], WithArray ? Covers[X] : Cover);
    }
    EXPECT_TRUE(BitmapIs(Target, Want.data()));
}

TEST_P(ArtColorSpanBlend, OpaqueAndTransparentRunsMixedWithPartialPixels)
{
    // Spans of every length up to 70 whose source is made of runs: wholly opaque, wholly transparent
    // with colour bytes that are not zero, and random edgy alpha. Whole blocks of one kind, blocks
    // mixing them, and the ragged end of a span must all give the plain rule's bytes, with one
    // cover for the span (full, just below full, half, none) and with a cover array.
    std::mt19937 Random(31337);
    const unsigned Covers[] = {255, 254, 128, 0};
    std::vector<agg::rgba8> Colors(70);
    std::vector<agg::int8u> CoverArray(70);
    for (int Round = 0; Round < 3; Round++)
        for (unsigned Length = 0; Length <= 70; Length++)
            for (int Form = 0; Form < 5; Form++) {
                unsigned X = 0;
                while (X < Length) {
                    unsigned Run = 1 + Random() % 12;
                    unsigned Kind = Random() % 3;
                    for (; Run > 0 && X < Length; Run--, X++) {
                        uint32_t Word = Random();
                        uint8_t Alpha = Kind == 0 ? 255 : Kind == 1 ? 0 : RandomEdgyByte(Random);
                        Colors[X] = Pixel(Word & 255, (Word >> 8) & 255, (Word >> 16) & 255, Alpha);
                        CoverArray[X] = Random() % 2 == 0 ? 255 : RandomEdgyByte(Random);
                    }
                }
                bool WithArray = Form == 4;
                unsigned Cover = WithArray ? 0 : Covers[Form];
                // One pixel beyond the span on either side, which must stay.
                std::vector<agg::rgba8> Row(Length + 2);
                for (agg::rgba8 &P : Row)
                    P = Pixel(Random(), Random(), Random(), RandomEdgyByte(Random));
                std::vector<agg::rgba8> Want = Row;
                for (unsigned I = 0; I < Length; I++)
                    Want[I + 1] = plain::ColorSpan(Row[I + 1], Colors[I], WithArray ? CoverArray[I] : Cover);
                BlendColorSpan(reinterpret_cast<uint8_t *>(Row.data() + 1),
                               reinterpret_cast<const uint8_t *>(Colors.data()), Length,
                               WithArray ? CoverArray.data() : nullptr, Cover);
                ASSERT_TRUE(SamePixels(Row.data(), Want.data(), int(Length + 2)))
                    << "length " << Length << " form " << Form;
            }
}

TEST_P(ArtBlendBitmap, EverySourceAlphaOverEveryTargetByte)
{
    art_bitmap Source(Grid, Grid);
    for (int Y = 0; Y < Grid; Y++)
        for (int X = 0; X < Grid; X++)
            Source.GetPixelRow(Y)[X] = GridColor(Y);
    for (unsigned Opacity : SomeCovers) {
        EXPECT_TRUE(CheckGrid([&](art_bitmap &B) { B.BlendBitmap(0, 0, &Source, static_cast<uint8_t>(Opacity)); },
                              [&](agg::rgba8 P, int, int Y) { return plain::ColorSpan(P, GridColor(Y), Opacity); }))
            << "opacity " << Opacity;
    }
}

TEST_P(ArtBlendBitmap, RandomRowsWithRandomOpacity)
{
    std::mt19937 Random(4242);
    art_bitmap Source(RandomSide, RandomSide);
    art_bitmap Target(RandomSide, RandomSide);
    FillRandom(Source, Random);
    FillRandom(Target, Random);
    std::vector<agg::rgba8> Want(Target.GetPixelRow(0), Target.GetPixelRow(0) + RandomSide * RandomSide);
    for (int Y = 0; Y < RandomSide; Y++) {
        uint8_t Opacity = RandomEdgyByte(Random);
        Target.BlendBitmap(0, Y, &Source, int_rectangle(int_point2d(0, Y), int_point2d(RandomSide, 1)), Opacity);
        for (int X = 0; X < RandomSide; X++)
            Want[Y * RandomSide + X] = plain::ColorSpan(Want[Y * RandomSide + X], Source.GetPixelRow(Y)[X], Opacity);
    }
    EXPECT_TRUE(BitmapIs(Target, Want.data()));
}

TEST(ArtCompositeBitmap, DstOverOfEverySourceAlphaOverEveryTargetAlpha)
{
    // Row y: a straight-alpha source pixel of alpha y; column x: a target of alpha x.
    art_bitmap Source(Grid, Grid);
    for (int Y = 0; Y < Grid; Y++)
        for (int X = 0; X < Grid; X++)
            Source.GetPixelRow(Y)[X] = Pixel(255 - Y, Y, 128, Y);
    for (unsigned Opacity : SomeCovers) {
        EXPECT_TRUE(CheckGrid(
            [&](art_bitmap &B) { B.CompositeBitmap(0, 0, &Source, static_cast<uint8_t>(Opacity), CompOpDstOver); },
            [&](agg::rgba8 P, int, int Y) { return plain::DstOver(P, Pixel(255 - Y, Y, 128, Y), Opacity); }))
            << "opacity " << Opacity;
    }
}

TEST(ArtCompositeBitmap, DstOverRandomRows)
{
    std::mt19937 Random(31337);
    art_bitmap Source(RandomSide, RandomSide);
    art_bitmap Target(RandomSide, RandomSide);
    FillRandom(Source, Random);
    FillRandom(Target, Random);
    std::vector<agg::rgba8> Want(Target.GetPixelRow(0), Target.GetPixelRow(0) + RandomSide * RandomSide);
    for (int Y = 0; Y < RandomSide; Y++) {
        uint8_t Opacity = RandomEdgyByte(Random);
        Target.CompositeBitmap(0, Y, &Source, int_rectangle(int_point2d(0, Y), int_point2d(RandomSide, 1)), Opacity,
                               CompOpDstOver);
        for (int X = 0; X < RandomSide; X++)
            Want[Y * RandomSide + X] = plain::DstOver(Want[Y * RandomSide + X], Source.GetPixelRow(Y)[X], Opacity);
    }
    EXPECT_TRUE(BitmapIs(Target, Want.data()));
}

TEST(ArtCompositeBitmap, DstOverOffsetSidewaysFromAnotherBitmapAndOntoItself)
{
    std::mt19937 Random(4242);
    for (int Shift : {-5, -1, 1, 3, 17}) {
        art_bitmap Source(RandomSide, 2);
        art_bitmap Target(RandomSide, 2);
        FillRandom(Source, Random);
        FillRandom(Target, Random);
        int Length = RandomSide - 17 - 5;
        int From = 5;
        std::vector<agg::rgba8> Want(Target.GetPixelRow(0), Target.GetPixelRow(0) + 2 * RandomSide);
        std::vector<agg::rgba8> SourceRow(Source.GetPixelRow(1), Source.GetPixelRow(1) + RandomSide);
        std::vector<agg::rgba8> WantSelf(SourceRow);
        for (int X = 0; X < Length; X++) {
            Want[From + Shift + X] = plain::DstOver(Want[From + Shift + X], Source.GetPixelRow(0)[From + X], 200);
            // Onto itself, every pixel is read before the walk writes over it.
            WantSelf[From + Shift + X] = plain::DstOver(WantSelf[From + Shift + X], SourceRow[From + X], 200);
        }
        Target.CompositeBitmap(From + Shift, 0, &Source, int_rectangle(int_point2d(From, 0), int_point2d(Length, 1)),
                               200, CompOpDstOver);
        EXPECT_TRUE(BitmapIs(Target, Want.data())) << "shift " << Shift;
        Source.CompositeBitmap(From + Shift, 1, &Source, int_rectangle(int_point2d(From, 1), int_point2d(Length, 1)),
                               200, CompOpDstOver);
        EXPECT_TRUE(std::equal(WantSelf.begin(), WantSelf.end(), Source.GetPixelRow(1),
                               [](agg::rgba8 A, agg::rgba8 B) { return PixelText(A) == PixelText(B); }))
            << "shift " << Shift;
    }
}

TEST(ArtCompositeBitmap, SourceWithAlphaZeroLeavesTargetUnchanged)
{
    art_bitmap Source(Grid, 1);
    Source.Clear(Pixel(250, 120, 9, 0));
    for (unsigned Opacity : SomeCovers) {
        EXPECT_TRUE(CheckGrid(
            [&](art_bitmap &B) {
                for (int Y = 0; Y < Grid; Y++)
                    B.CompositeBitmap(0, Y, &Source, static_cast<uint8_t>(Opacity), CompOpDstOver);
            },
            [&](agg::rgba8 P, int, int) { return P; }));
        EXPECT_TRUE(CheckGrid(
            [&](art_bitmap &B) {
                for (int Y = 0; Y < Grid; Y++)
                    B.BlendBitmap(0, Y, &Source, static_cast<uint8_t>(Opacity));
            },
            [&](agg::rgba8 P, int, int) { return P; }));
    }
}

TEST(ArtCompositeBitmap, OperationsAreNumberedInTheCompositeOrder)
{
    EXPECT_EQ(0, CompOpClear);
    EXPECT_EQ(3, CompOpSrcOver);
    EXPECT_EQ(4, CompOpDstOver);
    EXPECT_EQ(13, CompOpMinus);
    EXPECT_EQ(14, CompOpMultiply);
    EXPECT_EQ(25, CompOpContrast);
    EXPECT_EQ(27, CompOpInvertRgb);
    EXPECT_EQ(28, CompOpCount);
}

TEST(ArtCompositeBitmap, ClearSrcAndDstThroughTheTable)
{
    art_bitmap Source(1, 1);
    Source.Clear(Pixel(200, 100, 0, 128));
    art_bitmap Target(3, 1);
    Target.Clear(Pixel(10, 20, 30, 40));
    Target.CompositeBitmap(0, 0, &Source, 255, CompOpClear);
    Target.CompositeBitmap(1, 0, &Source, 255, CompOpSrc);
    Target.CompositeBitmap(2, 0, &Source, 255, CompOpDst);
    EXPECT_EQ(PixelText(Pixel(0, 0, 0, 0)), PixelText(Target.GetPixelRow(0)[0]));
    // The source premultiplied on the way in: (200 * 128 + 255) >> 8 = 100, (100 * 128 + 255) >> 8 = 50.
    EXPECT_EQ(PixelText(Pixel(100, 50, 0, 128)), PixelText(Target.GetPixelRow(0)[1]));
    EXPECT_EQ(PixelText(Pixel(10, 20, 30, 40)), PixelText(Target.GetPixelRow(0)[2]));
}

TEST(ArtCompositeBitmap, InvertInvertRgbAndContrast)
{
    art_bitmap Source(3, 1);
    Source.GetPixelRow(0)[0] = Pixel(0, 0, 0, 255);
    Source.GetPixelRow(0)[1] = Pixel(255, 0, 128, 255);
    Source.GetPixelRow(0)[2] = Pixel(255, 128, 0, 255);
    art_bitmap Target(3, 1);
    Target.Clear(Pixel(100, 50, 0, 200));
    Target.CompositeBitmap(0, 0, &Source, int_rectangle(int_point2d(0, 0), int_point2d(1, 1)), 255, CompOpInvert);
    Target.CompositeBitmap(1, 0, &Source, int_rectangle(int_point2d(1, 0), int_point2d(1, 1)), 255, CompOpInvertRgb);
    Target.CompositeBitmap(2, 0, &Source, int_rectangle(int_point2d(2, 0), int_point2d(1, 1)), 255, CompOpContrast);
    // Invert: (200 - c) at full source alpha, alpha 255 + 200 - 200.
    EXPECT_EQ(PixelText(Pixel(100, 150, 200, 255)), PixelText(Target.GetPixelRow(0)[0]));
    // Invert by colour: red by 255, green by 0, blue by (128 * 255 + 255) >> 8 = 128.
    EXPECT_EQ(PixelText(Pixel(100, 0, 100, 255)), PixelText(Target.GetPixelRow(0)[1]));
    // Contrast about half the target alpha (100): green (50 - 100) * 257 >> 8 = -51, plus 100; blue
    // (0 - 100) * 1 >> 8 = -1, plus 100; alpha kept.
    EXPECT_EQ(PixelText(Pixel(100, 49, 99, 200)), PixelText(Target.GetPixelRow(0)[2]));
}

TEST_P(ArtStencil, EveryLumaOverEveryLayerByte)
{
    // Stencil row y is grey y, whose luma is y; its alpha varies and must not matter.
    art_bitmap Stencil(Grid, Grid);
    for (int Y = 0; Y < Grid; Y++)
        for (int X = 0; X < Grid; X++)
            Stencil.GetPixelRow(Y)[X] = Pixel(Y, Y, Y, (X * 13 + Y) & 255);
    EXPECT_TRUE(CheckGrid([&](art_bitmap &B) { B.ApplyStencil(&Stencil); },
                          [&](agg::rgba8 P, int X, int Y) {
                              return plain::Stencil(P, Pixel(Y, Y, Y, (X * 13 + Y) & 255));
                          }));
}

TEST_P(ArtStencil, RandomLayersAndStencils)
{
    std::mt19937 Random(555);
    art_bitmap Layer(RandomSide, RandomSide);
    art_bitmap Stencil(RandomSide, RandomSide);
    FillRandom(Layer, Random);
    FillRandom(Stencil, Random);
    // Some stencil pixels white, so that the untouched case is frequent too.
    for (int I = 0; I < RandomSide * RandomSide; I += 5)
        Stencil.GetPixelRow(0)[I] = Pixel(255, 255, 255, Random());
    std::vector<agg::rgba8> Want(RandomSide * RandomSide);
    for (int I = 0; I < RandomSide * RandomSide; I++)
        Want[I] = plain::Stencil(Layer.GetPixelRow(0)[I], Stencil.GetPixelRow(0)[I]);
    Layer.ApplyStencil(&Stencil);
    EXPECT_TRUE(BitmapIs(Layer, Want.data()));
}

TEST_P(ArtStencil, WhiteStencilLeavesTheLayerExact)
{
    art_bitmap Stencil(Grid, Grid);
    Stencil.Clear(Pixel(255, 255, 255, 17));
    EXPECT_TRUE(CheckGrid([&](art_bitmap &B) { B.ApplyStencil(&Stencil); }, [](agg::rgba8 P, int, int) { return P; }));
}

TEST_P(ArtStencil, BlackStencilZeroesColourAndAlpha)
{
    art_bitmap Stencil(Grid, Grid);
    Stencil.Clear(Pixel(0, 0, 0, 255));
    EXPECT_TRUE(CheckGrid([&](art_bitmap &B) { B.ApplyStencil(&Stencil); },
                          [](agg::rgba8, int, int) { return Pixel(0, 0, 0, 0); }));
}

TEST_P(ArtStencil, MidGreyHalvesAndAlphaRoundsUp)
{
    art_bitmap Layer(2, 1);
    Layer.GetPixelRow(0)[0] = Pixel(200, 100, 3, 255);
    Layer.GetPixelRow(0)[1] = Pixel(1, 1, 1, 1);
    art_bitmap Stencil(2, 1);
    Stencil.Clear(Pixel(128, 128, 128, 255));
    Layer.ApplyStencil(&Stencil);
    // L = 128: colour (c * 128) >> 8, alpha (a * 128 + 255) >> 8, so alpha passes colour on tiny values.
    EXPECT_EQ(PixelText(Pixel(100, 50, 1, 128)), PixelText(Layer.GetPixelRow(0)[0]));
    EXPECT_EQ(PixelText(Pixel(0, 0, 0, 1)), PixelText(Layer.GetPixelRow(0)[1]));
}

TEST_P(ArtStencil, SizesMustMatch)
{
    art_bitmap Layer(4, 3);
    art_bitmap Wider(5, 3);
    art_bitmap Taller(4, 4);
    EXPECT_NE(std::string::npos, ZEL_ERROR_MESSAGE(Layer.ApplyStencil(&Wider))
                                     .find("'PixelsPerLine==StencilBitmap->GetSize().X' is false"));
    EXPECT_NE(std::string::npos, ZEL_ERROR_MESSAGE(Layer.ApplyStencil(&Taller))
                                     .find("'NumLines==StencilBitmap->GetSize().Y' is false"));
}

TEST_P(ArtStencil, ColorizeMakesGreyByStackMode)
{
    art_bitmap Plus(2, 1);
    Plus.GetPixelRow(0)[0] = Pixel(10, 20, 30, 40);
    Plus.GetPixelRow(0)[1] = Pixel(0, 0, 0, 0);
    art_bitmap Minus(1, 1);
    Minus.GetPixelRow(0)[0] = Pixel(10, 20, 30, 40);
    art_bitmap Advanced(1, 1);
    Advanced.GetPixelRow(0)[0] = Pixel(10, 20, 30, 40);
    Plus.ColorizeStencilLayer(StackModePlusStencil);
    Minus.ColorizeStencilLayer(StackModeMinusStencil);
    Advanced.ColorizeStencilLayer(StackModeStencil);
    EXPECT_EQ(PixelText(Pixel(40, 40, 40, 40)), PixelText(Plus.GetPixelRow(0)[0]));
    EXPECT_EQ(PixelText(Pixel(0, 0, 0, 0)), PixelText(Plus.GetPixelRow(0)[1]));
    EXPECT_EQ(PixelText(Pixel(0, 0, 0, 40)), PixelText(Minus.GetPixelRow(0)[0]));
    EXPECT_EQ(PixelText(Pixel(10, 20, 30, 40)), PixelText(Advanced.GetPixelRow(0)[0]));
}
