#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <random>
#include <vector>

#include <agg_image_filters.h>
#include <agg_rasterizer_scanline_aa.h>
#include <agg_scanline_u.h>

#include "art_engine/pixels/art_bitmap.h"
#include "tests/art_engine/pixels/art_pixel_test_support.h"
#include "tests/test_support.h"
#include "zel_basics/zel_error.h"

using namespace art_pixel_test;

namespace {

// ---- A second, plain implementation of the drawing, to compare byte for byte. ----

// The normalised bilinear table at 8 fractional bits and 14-bit weights, written out: the near tap
// of an axis weighs 16384 - 64 * f and the far one 64 * f, so at f = 0 a pixel is itself.
int NearWeight(int F) { return 16384 - 64 * F; }
int FarWeight(int F) { return 64 * F; }

// An opaque picture with no hard edges: each byte differs from its right and lower neighbours by
// less than 30 either way.
void FillSmoothOpaque(art_bitmap &Bitmap, std::mt19937 &Random)
{
    for (int Y = 0; Y < Bitmap.GetSize().Y; Y++)
        for (int X = 0; X < Bitmap.GetSize().X; X++)
            Bitmap.GetPixelRow(Y)[X] = Pixel(100 + 3 * X + Random() % 20, 60 + 5 * Y + Random() % 20,
                                             200 - 2 * X - Y + Random() % 20, 255);
}

int FloorDiv(int64_t A, int64_t B)
{
    int64_t Q = A / B;
    if ((A % B != 0) && ((A < 0) != (B < 0)))
        Q--;
    return int(Q);
}

// x' = A[0] + A[1] x + A[2] y + A[3] x y, and y' likewise with B, through the four corner pairs,
// solved by Gaussian elimination with partial pivoting.
struct plain_bilinear
{
    double A[4];
    double B[4];
    bool Valid = true;

    plain_bilinear(const point2d From[4], const point2d To[4])
    {
        double M[4][6];
        for (int I = 0; I < 4; I++) {
            M[I][0] = 1;
            M[I][1] = From[I].X;
            M[I][2] = From[I].Y;
            M[I][3] = From[I].X * From[I].Y;
            M[I][4] = To[I].X;
            M[I][5] = To[I].Y;
        }
        for (int Column = 0; Column < 4; Column++) {
            int Best = Column;
            for (int Row = Column + 1; Row < 4; Row++)
                if (std::fabs(M[Row][Column]) > std::fabs(M[Best][Column]))
                    Best = Row;
            if (M[Best][Column] == 0) {
                Valid = false;
                return;
            }
            for (int K = 0; K < 6; K++)
                std::swap(M[Column][K], M[Best][K]);
            for (int Row = 0; Row < 4; Row++) {
                if (Row == Column)
                    continue;
                double Factor = M[Row][Column] / M[Column][Column];
                for (int K = 0; K < 6; K++)
                    M[Row][K] -= Factor * M[Column][K];
            }
        }
        for (int I = 0; I < 4; I++) {
            A[I] = M[I][4] / M[I][I];
            B[I] = M[I][5] / M[I][I];
        }
    }

    // In 1/256 source pixel, rounded half away from zero.
    void Map(double X, double Y, int &SX, int &SY) const
    {
        SX = int(std::lround((A[0] + A[1] * X + A[2] * Y + A[3] * X * Y) * 256));
        SY = int(std::lround((B[0] + B[1] * X + B[2] * Y + B[3] * X * Y) * 256));
    }
};

// Position I of Count integer steps from P1 to P2, P2 reached at I = Count: each step takes the
// floor of the exact share plus the remainder that makes the last step land, so the steps are
// spread evenly and never overshoot.
int Step(int P1, int P2, int I, int Count)
{
    int64_t D = int64_t(P2) - P1;
    int64_t R = D - int64_t(Count) * FloorDiv(D - 1, Count);
    return P1 + FloorDiv(int64_t(I) * D + R - 1, Count);
}

// The 2x2 filter at source position (SX, SY) in 1/256 pixel, taps off by half a pixel, edges
// repeated, sums rounded at 14 bits, alpha and then colour capped.
agg::rgba8 Filtered(art_bitmap &Source, int SX, int SY)
{
    SX -= 128;
    SY -= 128;
    int X0 = FloorDiv(SX, 256);
    int Y0 = FloorDiv(SY, 256);
    int FX = SX - X0 * 256;
    int FY = SY - Y0 * 256;
    int WX[2] = {NearWeight(FX), FarWeight(FX)};
    int WY[2] = {NearWeight(FY), FarWeight(FY)};
    unsigned Sum[4] = {8192, 8192, 8192, 8192};
    for (int DY = 0; DY < 2; DY++) {
        for (int DX = 0; DX < 2; DX++) {
            int X = std::min(std::max(X0 + DX, 0), Source.GetSize().X - 1);
            int Y = std::min(std::max(Y0 + DY, 0), Source.GetSize().Y - 1);
            const agg::rgba8 &P = Source.GetPixelRow(Y)[X];
            unsigned W = unsigned(WX[DX] * WY[DY] + 8192) >> 14;
            Sum[0] += W * P.r;
            Sum[1] += W * P.g;
            Sum[2] += W * P.b;
            Sum[3] += W * P.a;
        }
    }
    unsigned A = std::min(Sum[3] >> 14, 255u);
    return Pixel(std::min(Sum[0] >> 14, A), std::min(Sum[1] >> 14, A), std::min(Sum[2] >> 14, A), A);
}

// Source-over of one ready-made premultiplied pixel with one coverage byte, byte stores wrapping.
void BlendPlain(agg::rgba8 &P, const agg::rgba8 &C, unsigned Cover)
{
    if (C.a == 0)
        return;
    if (Cover < 255) {
        unsigned Alpha = (C.a * (Cover + 1)) >> 8;
        if (Alpha > 254) {
            P = Pixel(C.r, C.g, C.b, 255);
            return;
        }
        unsigned Inv = 255 - Alpha;
        P.r = uint8_t((P.r * Inv + C.r * (Cover + 1)) >> 8);
        P.g = uint8_t((P.g * Inv + C.g * (Cover + 1)) >> 8);
        P.b = uint8_t((P.b * Inv + C.b * (Cover + 1)) >> 8);
        P.a = uint8_t(255 - (((255 - P.a) * Inv) >> 8));
        return;
    }
    if (C.a == 255) {
        P = C;
        return;
    }
    unsigned Inv = 255 - C.a;
    P.r = uint8_t(((P.r * Inv) >> 8) + C.r);
    P.g = uint8_t(((P.g * Inv) >> 8) + C.g);
    P.b = uint8_t(((P.b * Inv) >> 8) + C.b);
    P.a = uint8_t(255 - (((255 - P.a) * Inv) >> 8));
}

// What the drawing must leave in Target, computed on a copy of its pixels: the figure's coverage
// and spans come from AGG's rasterizer, set up as for any fill; colours and blending are the plain
// code above. Returns the number of pixels that the figure covers at all.
int ExpectedDrawing(std::vector<agg::rgba8> &Want, art_bitmap &Target, art_bitmap &Source,
                    const int_rectangle &SourceRectangle, const point2d Corners[4])
{
    int W = Target.GetSize().X;
    for (int Y = 0; Y < Target.GetSize().Y; Y++)
        for (int X = 0; X < W; X++)
            Want[size_t(Y) * W + X] = Target.GetPixelRow(Y)[X];
    int_point2d End = SourceRectangle.GetEnd();
    const point2d SourceCorners[4] = {
        point2d(SourceRectangle.Location.X, SourceRectangle.Location.Y), point2d(End.X, SourceRectangle.Location.Y),
        point2d(End.X, End.Y), point2d(SourceRectangle.Location.X, End.Y)};
    plain_bilinear Mapping(Corners, SourceCorners);
    if (!Mapping.Valid)
        return 0;

    agg::rasterizer_scanline_aa<agg::rasterizer_sl_clip_int> Rasterizer;
    Rasterizer.clip_box(0, 0, W, Target.GetSize().Y);
    Rasterizer.move_to_d(Corners[0].X, Corners[0].Y);
    for (int I = 1; I < 4; I++)
        Rasterizer.line_to_d(Corners[I].X, Corners[I].Y);
    Rasterizer.close_polygon();
    int Covered = 0;
    if (!Rasterizer.rewind_scanlines())
        return 0;
    agg::scanline_u8 Line;
    Line.reset(Rasterizer.min_x(), Rasterizer.max_x());
    while (Rasterizer.sweep_scanline(Line)) {
        int Y = Line.y();
        unsigned Spans = Line.num_spans();
        agg::scanline_u8::const_iterator Span = Line.begin();
        for (unsigned S = 0; S < Spans; S++, ++Span) {
            int Count = Span->len;
            int X1, Y1, X2, Y2;
            Mapping.Map(Span->x + 0.5, Y + 0.5, X1, Y1);
            Mapping.Map(Span->x + 0.5 + Count, Y + 0.5, X2, Y2);
            for (int I = 0; I < Count; I++) {
                agg::rgba8 Color = Filtered(Source, Step(X1, X2, I, Count), Step(Y1, Y2, I, Count));
                BlendPlain(Want[size_t(Y) * W + Span->x + I], Color, Span->covers[I]);
                Covered++;
            }
        }
    }
    return Covered;
}

// Alpha random and often 0 or 255; colour bytes at most alpha, as in any premultiplied picture.
void FillRandomPremultiplied(art_bitmap &Bitmap, std::mt19937 &Random)
{
    for (int Y = 0; Y < Bitmap.GetSize().Y; Y++) {
        for (int X = 0; X < Bitmap.GetSize().X; X++) {
            unsigned A = RandomEdgyByte(Random);
            Bitmap.GetPixelRow(Y)[X] = Pixel(Random() % (A + 1), Random() % (A + 1), Random() % (A + 1), A);
        }
    }
}

// The pixels of a bitmap in a plain array, row by row; for a view, only its own pixels.
std::vector<agg::rgba8> PixelsOf(art_bitmap &Bitmap)
{
    std::vector<agg::rgba8> Pixels;
    for (int Y = 0; Y < Bitmap.GetSize().Y; Y++)
        for (int X = 0; X < Bitmap.GetSize().X; X++)
            Pixels.push_back(Bitmap.GetPixelRow(Y)[X]);
    return Pixels;
}

testing::AssertionResult BitmapIs(art_bitmap &Bitmap, const std::vector<agg::rgba8> &Want)
{
    std::vector<agg::rgba8> Got = PixelsOf(Bitmap);
    return SamePixels(Got.data(), Want.data(), int(Got.size()), Bitmap.GetSize().X);
}

// Draws and compares with the plain implementation; the figure must cover at least MinimumCovered
// pixels, so that a comparison over an untouched target cannot pass for one.
void ExpectSameAsPlain(art_bitmap &Target, art_bitmap &Source, const int_rectangle &SourceRectangle,
                       const point2d Corners[4], int MinimumCovered)
{
    std::vector<agg::rgba8> Want(size_t(Target.GetSize().X) * Target.GetSize().Y);
    int Covered = ExpectedDrawing(Want, Target, Source, SourceRectangle, Corners);
    EXPECT_GE(Covered, MinimumCovered);
    Target.DrawBitmapInQuad(&Source, SourceRectangle, Corners);
    EXPECT_TRUE(BitmapIs(Target, Want));
}

int_rectangle WholeOf(art_bitmap &Bitmap) { return int_rectangle(int_point2d(0, 0), Bitmap.GetSize()); }

// The corners of an axis-aligned rectangle, in the order of the drawing: top left, top right,
// bottom right, bottom left.
void RectangleCorners(point2d Corners[4], double X, double Y, double W, double H)
{
    Corners[0] = point2d(X, Y);
    Corners[1] = point2d(X + W, Y);
    Corners[2] = point2d(X + W, Y + H);
    Corners[3] = point2d(X, Y + H);
}

// A W by H rectangle scaled by Scale, turned by Angle radians about its centre, centred at (CX, CY).
void TurnedCorners(point2d Corners[4], double W, double H, double Scale, double Angle, double CX, double CY)
{
    const double Local[4][2] = {{-W / 2, -H / 2}, {W / 2, -H / 2}, {W / 2, H / 2}, {-W / 2, H / 2}};
    for (int I = 0; I < 4; I++) {
        double X = Local[I][0] * Scale;
        double Y = Local[I][1] * Scale;
        Corners[I] =
            point2d(CX + X * std::cos(Angle) - Y * std::sin(Angle), CY + X * std::sin(Angle) + Y * std::cos(Angle));
    }
}

class art_bitmap_quad_test : public block_width_test
{
};

} // namespace

TEST(ArtBitmapQuad, TheFilterTableIsTheNormalisedBilinearOneButAtFractionZero)
{
    // The drawing weights its taps from AGG's table; the plain implementation above writes the same
    // table out, and this pins the two together. At fraction 0 normalising leaves 16320 and 64,
    // where the drawing takes 16384 and 0.
    agg::image_filter_lut Filter(agg::image_filter_bilinear(), true);
    ASSERT_EQ(Filter.diameter(), 2u);
    EXPECT_EQ(Filter.weight_array()[256], 16320);
    EXPECT_EQ(Filter.weight_array()[0], 64);
    for (int F = 1; F < 256; F++) {
        EXPECT_EQ(Filter.weight_array()[F + 256], NearWeight(F)) << "f=" << F;
        EXPECT_EQ(Filter.weight_array()[F], FarWeight(F)) << "f=" << F;
    }
}

TEST(ArtBitmapQuad, IdentityMappingReproducesASmoothOpaqueImage)
{
    // Pixel centres land on pixel centres, at fraction 0, where each pixel weighs 16384 * 16384 >> 14
    // and its neighbours nothing.
    std::mt19937 Random(7);
    art_bitmap Source(23, 17);
    FillSmoothOpaque(Source, Random);
    art_bitmap Target(23, 17);
    FillRandom(Target, Random);
    point2d Corners[4];
    RectangleCorners(Corners, 0, 0, 23, 17);
    Target.DrawBitmapInQuad(&Source, WholeOf(Source), Corners);
    EXPECT_TRUE(BitmapIs(Target, PixelsOf(Source)));
}

TEST(ArtBitmapQuad, IdentityMappingKeepsHardEdges)
{
    // A checkerboard of opaque black and white comes back exactly: no neighbour weighs in at
    // fraction 0.
    art_bitmap Source(4, 4);
    for (int Y = 0; Y < 4; Y++)
        for (int X = 0; X < 4; X++)
            Source.GetPixelRow(Y)[X] = (X + Y) % 2 == 0 ? Pixel(255, 255, 255, 255) : Pixel(0, 0, 0, 255);
    art_bitmap Target(4, 4);
    Target.Clear(Pixel(0, 0, 0, 0));
    point2d Corners[4];
    RectangleCorners(Corners, 0, 0, 4, 4);
    Target.DrawBitmapInQuad(&Source, WholeOf(Source), Corners);
    for (int Y = 0; Y < 4; Y++) {
        for (int X = 0; X < 4; X++) {
            unsigned V = (X + Y) % 2 == 0 ? 255 : 0;
            EXPECT_TRUE(SamePixel(Target.GetPixelRow(Y)[X], Pixel(V, V, V, 255)))
                << "x=" << X << " y=" << Y << ": " << PixelText(Target.GetPixelRow(Y)[X]);
        }
    }
}

TEST(ArtBitmapQuad, APartOfTheSourceMappedOnWholePixelsIsCopied)
{
    // The rectangle (5, 3, 6, 4) of a smooth opaque picture onto the target at (2, 7), shifted by
    // whole pixels only; the source's pixels right of and below the rectangle take their small part
    // in its last column and row as they do everywhere else.
    std::mt19937 Random(9);
    art_bitmap Source(14, 9);
    FillSmoothOpaque(Source, Random);
    art_bitmap Target(12, 13);
    FillRandom(Target, Random);
    std::vector<agg::rgba8> Want = PixelsOf(Target);
    for (int Y = 0; Y < 4; Y++)
        for (int X = 0; X < 6; X++)
            Want[size_t(7 + Y) * 12 + 2 + X] = Source.GetPixelRow(3 + Y)[5 + X];
    point2d Corners[4];
    RectangleCorners(Corners, 2, 7, 6, 4);
    Target.DrawBitmapInQuad(&Source, int_rectangle(int_point2d(5, 3), int_point2d(6, 4)), Corners);
    EXPECT_TRUE(BitmapIs(Target, Want));
}

TEST(ArtBitmapQuad, EdgePixelsRepeatSoNoDarkFringeComesIn)
{
    // Enlarged three times, the outer target pixels sample up to a third of a pixel beyond the
    // image; with the edge repeated, an opaque image of one colour stays that colour to the last
    // pixel, where transparent black from outside would darken the border.
    art_bitmap Source(5, 4);
    Source.Clear(Pixel(200, 120, 40, 255));
    art_bitmap Target(15, 12);
    Target.Clear(Pixel(0, 0, 0, 0));
    point2d Corners[4];
    RectangleCorners(Corners, 0, 0, 15, 12);
    Target.DrawBitmapInQuad(&Source, WholeOf(Source), Corners);
    std::vector<agg::rgba8> Want(15 * 12, Pixel(200, 120, 40, 255));
    EXPECT_TRUE(BitmapIs(Target, Want));
}

TEST(ArtBitmapQuad, ACornerPixelTakesAllFourTapsFromTheCornerOfTheImage)
{
    // Enlarged twice, target pixel (0, 0) maps to source (0.25, 0.25): with the half-pixel offset the
    // taps are at columns and rows -1 and 0, and -1 repeats 0. The weights, 1024, 3072, 3072 and
    // 9216, add up to 16384, so the corner pixel comes through exactly, whatever its neighbours.
    std::mt19937 Random(11);
    art_bitmap Source(6, 5);
    FillRandomPremultiplied(Source, Random);
    Source.GetPixelRow(0)[0] = Pixel(17, 99, 143, 201);
    art_bitmap Target(12, 10);
    Target.Clear(Pixel(0, 0, 0, 255));
    point2d Corners[4];
    RectangleCorners(Corners, 0, 0, 12, 10);
    Target.DrawBitmapInQuad(&Source, WholeOf(Source), Corners);
    // Over opaque black: ((0 * 54) >> 8) + c for colour, alpha 255.
    EXPECT_TRUE(SamePixel(Target.GetPixelRow(0)[0], Pixel(17, 99, 143, 255))) << PixelText(Target.GetPixelRow(0)[0]);
}

TEST(ArtBitmapQuad, ADegenerateQuadrilateralDrawsNothing)
{
    std::mt19937 Random(3);
    art_bitmap Source(8, 8);
    FillRandomPremultiplied(Source, Random);
    art_bitmap Target(20, 20);
    FillRandom(Target, Random);
    std::vector<agg::rgba8> Before = PixelsOf(Target);
    const point2d OnADiagonal[4] = {point2d(1, 1), point2d(7.5, 7.5), point2d(15, 15), point2d(4, 4)};
    Target.DrawBitmapInQuad(&Source, WholeOf(Source), OnADiagonal);
    EXPECT_TRUE(BitmapIs(Target, Before));
    const point2d OnARow[4] = {point2d(2, 5.5), point2d(18, 5.5), point2d(12, 5.5), point2d(3, 5.5)};
    Target.DrawBitmapInQuad(&Source, WholeOf(Source), OnARow);
    EXPECT_TRUE(BitmapIs(Target, Before));
    const point2d OnePoint[4] = {point2d(6, 6), point2d(6, 6), point2d(6, 6), point2d(6, 6)};
    Target.DrawBitmapInQuad(&Source, WholeOf(Source), OnePoint);
    EXPECT_TRUE(BitmapIs(Target, Before));
}

TEST(ArtBitmapQuad, AnEmptySourceOrSourceRectangleDrawsNothing)
{
    std::mt19937 Random(5);
    art_bitmap Source(8, 8);
    FillRandomPremultiplied(Source, Random);
    art_bitmap Empty(0, 6);
    art_bitmap Target(10, 10);
    FillRandom(Target, Random);
    std::vector<agg::rgba8> Before = PixelsOf(Target);
    point2d Corners[4];
    RectangleCorners(Corners, 1, 1, 8, 8);
    Target.DrawBitmapInQuad(&Empty, WholeOf(Empty), Corners);
    Target.DrawBitmapInQuad(&Source, int_rectangle(int_point2d(2, 2), int_point2d(0, 4)), Corners);
    Target.DrawBitmapInQuad(&Source, int_rectangle(int_point2d(2, 2), int_point2d(4, -1)), Corners);
    EXPECT_TRUE(BitmapIs(Target, Before));
}

TEST(ArtBitmapQuad, AMissingSourceIsAnAssertion)
{
    art_bitmap Target(4, 4);
    point2d Corners[4];
    RectangleCorners(Corners, 0, 0, 4, 4);
    EXPECT_NE(std::string::npos,
              ZEL_ERROR_MESSAGE(Target.DrawBitmapInQuad(reference_pointer<art_bitmap>(),
                                                        int_rectangle(int_point2d(0, 0), int_point2d(4, 4)), Corners))
                  .find("'IsSet()' is false"));
}

TEST(ArtBitmapQuad, AColourThatWouldExceedAlphaIsCappedToAlpha)
{
    // A picture with colour above alpha (straight alpha that never went through premultiplication)
    // filters to the same bytes; red and blue are capped to the alpha of 120, green stays. Over
    // opaque black the filtered pixel arrives as ((0 * 135) >> 8) + c, alpha 255.
    art_bitmap Source(3, 3);
    Source.Clear(Pixel(250, 40, 180, 120));
    art_bitmap Target(3, 3);
    Target.Clear(Pixel(0, 0, 0, 255));
    point2d Corners[4];
    RectangleCorners(Corners, 0, 0, 3, 3);
    Target.DrawBitmapInQuad(&Source, WholeOf(Source), Corners);
    std::vector<agg::rgba8> Want(9, Pixel(120, 40, 120, 255));
    EXPECT_TRUE(BitmapIs(Target, Want));
}

TEST(ArtBitmapQuad, ACapAlsoHoldsHalfWayBetweenTwoPixels)
{
    // Halved into one pixel, the four taps weigh 4096 each: (8192 + 4096 * (200 + 0 + 200 + 0)) >>
    // 14 = 100 red, and alpha (8192 + 4096 * (40 + 0 + 40 + 0)) >> 14 = 20, so red is capped to 20.
    // Green, 2 * 4096 * 30 rounded, is 15.
    art_bitmap Source(2, 2);
    Source.GetPixelRow(0)[0] = Pixel(200, 30, 0, 40);
    Source.GetPixelRow(0)[1] = Pixel(0, 0, 0, 0);
    Source.GetPixelRow(1)[0] = Pixel(200, 30, 0, 40);
    Source.GetPixelRow(1)[1] = Pixel(0, 0, 0, 0);
    art_bitmap Target(1, 1);
    Target.Clear(Pixel(0, 0, 0, 255));
    point2d Corners[4];
    RectangleCorners(Corners, 0, 0, 1, 1);
    Target.DrawBitmapInQuad(&Source, WholeOf(Source), Corners);
    EXPECT_TRUE(SamePixel(Target.GetPixelRow(0)[0], Pixel(20, 15, 0, 255))) << PixelText(Target.GetPixelRow(0)[0]);
}

TEST_P(art_bitmap_quad_test, ARotatedImageMatchesThePlainImplementation)
{
    std::mt19937 Random(21);
    art_bitmap Source(37, 23);
    FillRandomPremultiplied(Source, Random);
    art_bitmap Target(64, 56);
    FillRandom(Target, Random);
    point2d Corners[4];
    TurnedCorners(Corners, 37, 23, 1.3, 0.3, 32.2, 28.7);
    ExpectSameAsPlain(Target, Source, WholeOf(Source), Corners, 1000);
}

TEST_P(art_bitmap_quad_test, AScaledPartOfAnImageMatchesThePlainImplementation)
{
    std::mt19937 Random(22);
    art_bitmap Source(19, 13);
    FillRandomPremultiplied(Source, Random);
    art_bitmap Target(40, 30);
    FillRandom(Target, Random);
    point2d Corners[4];
    RectangleCorners(Corners, 3.21, 4.37, 15 * 1.37, 11 * 0.83);
    ExpectSameAsPlain(Target, Source, int_rectangle(int_point2d(2, 1), int_point2d(15, 11)), Corners, 150);
}

TEST_P(art_bitmap_quad_test, AShrunkImageMatchesThePlainImplementation)
{
    std::mt19937 Random(23);
    art_bitmap Source(61, 47);
    FillRandomPremultiplied(Source, Random);
    art_bitmap Target(30, 24);
    FillRandom(Target, Random);
    point2d Corners[4];
    TurnedCorners(Corners, 61, 47, 0.37, -0.7, 15.3, 11.9);
    ExpectSameAsPlain(Target, Source, WholeOf(Source), Corners, 150);
}

TEST_P(art_bitmap_quad_test, AFreeQuadrilateralMatchesThePlainImplementation)
{
    // No parallelogram: the mapping is bilinear proper, with a term in x times y.
    std::mt19937 Random(24);
    art_bitmap Source(29, 31);
    FillRandomPremultiplied(Source, Random);
    art_bitmap Target(60, 50);
    FillRandom(Target, Random);
    const point2d Corners[4] = {point2d(5.3, 2.1), point2d(50.7, 8.9), point2d(44.2, 41.6), point2d(3.9, 30.4)};
    ExpectSameAsPlain(Target, Source, WholeOf(Source), Corners, 1000);
}

TEST_P(art_bitmap_quad_test, AFigureReachingBeyondTheTargetIsClippedToIt)
{
    std::mt19937 Random(25);
    art_bitmap Source(20, 20);
    FillRandomPremultiplied(Source, Random);
    art_bitmap Target(24, 18);
    FillRandom(Target, Random);
    point2d Corners[4];
    TurnedCorners(Corners, 20, 20, 2.1, 0.45, 6.4, 15.2);
    ExpectSameAsPlain(Target, Source, WholeOf(Source), Corners, 200);
}

TEST_P(art_bitmap_quad_test, APartOfTheSourceDrawsIntoAViewWithTheParentLeftAloneAround)
{
    // The rectangle's own border is filtered with the source pixels just outside it, as a crop of
    // a larger picture should be; only the source's own edge repeats.
    std::mt19937 Random(26);
    art_bitmap Source(30, 25);
    FillRandomPremultiplied(Source, Random);
    art_bitmap Parent(40, 36);
    FillRandom(Parent, Random);
    std::vector<agg::rgba8> ParentBefore = PixelsOf(Parent);
    const int_rectangle Part(int_point2d(7, 5), int_point2d(26, 22));
    art_bitmap View(&Parent, Part);
    point2d Corners[4];
    TurnedCorners(Corners, 12, 9, 1.9, 0.2, 13.1, 10.6);
    ExpectSameAsPlain(View, Source, int_rectangle(int_point2d(4, 3), int_point2d(12, 9)), Corners, 250);
    for (int Y = 0; Y < 36; Y++) {
        for (int X = 0; X < 40; X++) {
            if (X < 7 || X >= 33 || Y < 5 || Y >= 27) {
                ASSERT_TRUE(SamePixel(Parent.GetPixelRow(Y)[X], ParentBefore[size_t(Y) * 40 + X]))
                    << "x=" << X << " y=" << Y;
            }
        }
    }
}

TEST_P(art_bitmap_quad_test, HalfSizeOfAnEvenImageAveragesEachTwoByTwoBlock)
{
    // As a mip level is made: onto (0, 0, W / 2, H / 2), cleared to transparent black. Each target
    // centre maps to the corner of a 2x2 block, fraction 128 on both axes, so all four taps weigh
    // (8192 * 8192 + 8192) >> 14 = 4096 and a byte is (8192 + 4096 * sum) >> 14 = (sum + 2) >> 2.
    // Full coverage over transparent black then gives the colour as it is and alpha
    // 255 - ((255 * (255 - a)) >> 8), or leaves the pixel at 0 when the average alpha is 0.
    std::mt19937 Random(27);
    art_bitmap Source(16, 10);
    FillRandomPremultiplied(Source, Random);
    // The top band of blocks opaque and the block below its left end transparent, so that both
    // ends of the alpha rule are met.
    for (int X = 0; X < 16; X++)
        for (int Y = 0; Y < 2; Y++)
            Source.GetPixelRow(Y)[X].a = 255;
    for (int X = 0; X < 2; X++)
        for (int Y = 2; Y < 4; Y++)
            Source.GetPixelRow(Y)[X] = Pixel(0, 0, 0, 0);
    art_bitmap Target(8, 5);
    Target.Clear(Pixel(0, 0, 0, 0));
    point2d Corners[4];
    RectangleCorners(Corners, 0, 0, 8, 5);
    Target.DrawBitmapInQuad(&Source, WholeOf(Source), Corners);
    std::vector<agg::rgba8> Want;
    int Opaque = 0;
    int Transparent = 0;
    for (int Y = 0; Y < 5; Y++) {
        for (int X = 0; X < 8; X++) {
            unsigned Sum[4] = {2, 2, 2, 2};
            for (int DY = 0; DY < 2; DY++) {
                for (int DX = 0; DX < 2; DX++) {
                    const agg::rgba8 &P = Source.GetPixelRow(2 * Y + DY)[2 * X + DX];
                    Sum[0] += P.r;
                    Sum[1] += P.g;
                    Sum[2] += P.b;
                    Sum[3] += P.a;
                }
            }
            unsigned A = Sum[3] >> 2;
            if (A == 0)
                Want.push_back(Pixel(0, 0, 0, 0));
            else
                Want.push_back(Pixel(Sum[0] >> 2, Sum[1] >> 2, Sum[2] >> 2, 255 - ((255 * (255 - A)) >> 8)));
            Opaque += A == 255;
            Transparent += A == 0;
        }
    }
    EXPECT_TRUE(BitmapIs(Target, Want));
    EXPECT_EQ(Opaque, 8);
    EXPECT_EQ(Transparent, 1);
}

TEST_P(art_bitmap_quad_test, HalfSizeOfAnOddImageMatchesThePlainImplementation)
{
    // 13 by 9 halves to 6 by 4: the scale is not exactly one half, and the last source column and
    // row reach the taps only through the filter's edge.
    std::mt19937 Random(28);
    art_bitmap Source(13, 9);
    FillRandomPremultiplied(Source, Random);
    art_bitmap Target(6, 4);
    Target.Clear(Pixel(0, 0, 0, 0));
    point2d Corners[4];
    RectangleCorners(Corners, 0, 0, 6, 4);
    ExpectSameAsPlain(Target, Source, WholeOf(Source), Corners, 24);
}

INSTANTIATE_TEST_SUITE_P(ArtBitmapQuad, art_bitmap_quad_test, testing::Bool(), BlockWidthName);

TEST(ArtBitmapQuad, AFigureWithTwoCornersAlmostMeetingDrawsOnlyWithinItsBounds)
{
    // The right end of the figure is a billionth of a pixel high: the mapping back into the source runs
    // to coordinates far beyond any integer of 1/256 pixel there, and every one of them is an edge
    // pixel repeated.
    std::mt19937 Random(29);
    art_bitmap Source(16, 16);
    FillRandomPremultiplied(Source, Random);
    art_bitmap Target(40, 20);
    FillRandom(Target, Random);
    std::vector<agg::rgba8> Before = PixelsOf(Target);
    const point2d Corners[4] = {point2d(2, 3), point2d(37, 8.6), point2d(37, 8.6 + 1e-9), point2d(2, 14)};
    Target.DrawBitmapInQuad(&Source, WholeOf(Source), Corners);
    int Changed = 0;
    for (int Y = 0; Y < 20; Y++) {
        for (int X = 0; X < 40; X++) {
            bool Same = SamePixel(Target.GetPixelRow(Y)[X], Before[size_t(Y) * 40 + X]);
            Changed += !Same;
            if (X < 2 || X >= 37 || Y < 3 || Y >= 14) {
                EXPECT_TRUE(Same) << "x=" << X << " y=" << Y;
            }
        }
    }
    EXPECT_GT(Changed, 100);
}
