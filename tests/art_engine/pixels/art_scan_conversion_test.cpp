#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

#include <agg_rasterizer_scanline_aa.h>
#include <agg_renderer_scanline.h>
#include <agg_scanline_p.h>

#include "art_engine/pixels/art_bitmap.h"
#include "art_engine/pixels/art_span_router.h"
#include "tests/art_engine/pixels/art_pixel_test_support.h"
#include "tests/art_engine/pixels/art_scan_test_support.h"
#include "tests/test_support.h"

using namespace art_pixel_test;
using namespace art_scan_test;

namespace {

const double Pi = 3.14159265358979323846;

// The per-pixel kernel, written out: alpha = (ca * (cover + 1)) >> 8, a copy above 254, else each
// colour byte (p * inv + c * (cover + 1)) >> 8 and alpha 255 - (((255 - pa) * inv) >> 8).
agg::rgba8 SpanByHand(agg::rgba8 P, const agg::rgba8 &C, unsigned Cover)
{
    unsigned Alpha = (C.a * (Cover + 1)) >> 8;
    if (Alpha > 254)
        return Pixel(C.r, C.g, C.b, 255);
    unsigned Inv = 255 - Alpha;
    return Pixel((P.r * Inv + C.r * (Cover + 1)) >> 8, (P.g * Inv + C.g * (Cover + 1)) >> 8,
                 (P.b * Inv + C.b * (Cover + 1)) >> 8, 255 - (((255 - P.a) * Inv) >> 8));
}

// The run kernel at full coverage, written out: ((p * inv) >> 8) + c. Below full coverage a run
// has the per-pixel formula.
agg::rgba8 FullRunByHand(agg::rgba8 P, const agg::rgba8 &C)
{
    unsigned Alpha = (C.a * 256) >> 8;
    if (Alpha > 254)
        return Pixel(C.r, C.g, C.b, 255);
    unsigned Inv = 255 - Alpha;
    return Pixel(((P.r * Inv) >> 8) + C.r, ((P.g * Inv) >> 8) + C.g, ((P.b * Inv) >> 8) + C.b,
                 255 - (((255 - P.a) * Inv) >> 8));
}

// The rectangle from (1.5, 1.5) to (4.5, 3.5) in a 7 by 5 bitmap. The area formula gives a pixel
// cut in half by an edge (256 subpixels high, the edge 128 in) (256 << 9) - (128 + 128) * 256 = 65536,
// which >> 9 is 128; a corner pixel, a quarter, gets (128 << 9) - (128 + 128) * 128 = 32768 >> 9 = 64;
// a whole pixel 256 << 9 >> 9 = 256, capped at 255.
const unsigned HalfPixelCovers[5][7] = {
    {0, 0, 0, 0, 0, 0, 0},
    {0, 64, 128, 128, 64, 0, 0},
    {0, 128, 255, 255, 128, 0, 0},
    {0, 64, 128, 128, 64, 0, 0},
    {0, 0, 0, 0, 0, 0, 0},
};

TEST(ArtScanConversion, RectangleOnHalfPixelEdgesHasTheExactAreaCoverage)
{
    art_bitmap Bitmap(7, 5);
    ClearToTransparent(Bitmap);
    Bitmap.FillRectangle(1.5, 1.5, 3, 2, White);
    for (int Y = 0; Y < 5; Y++)
        for (int X = 0; X < 7; X++)
            EXPECT_EQ(HalfPixelCovers[Y][X], CoverAt(Bitmap, X, Y)) << "x=" << X << " y=" << Y;
}

TEST(ArtScanConversion, RectangleOnHalfPixelEdgesBlendsEveryPixelByItsKernel)
{
    const agg::rgba8 Background = Pixel(40, 80, 120, 200);
    // (200, 100, 50) at alpha 180, premultiplied with truncation: 36000 >> 8, 18000 >> 8, 9000 >> 8.
    const agg::rgba8 Premultiplied = Pixel(140, 70, 35, 180);
    art_bitmap Bitmap(7, 5);
    Bitmap.Clear(Background);
    Bitmap.FillRectangle(1.5, 1.5, 3, 2, Pixel(200, 100, 50, 180));

    std::vector<agg::rgba8> Want(7 * 5, Background);
    for (int Y = 0; Y < 5; Y++) {
        for (int X = 0; X < 7; X++) {
            unsigned Cover = HalfPixelCovers[Y][X];
            if (Cover == 0)
                continue;
            // Between the edge cells lies a run of one coverage byte; only row 2's is full.
            bool FullRun = Cover == 255;
            Want[Y * 7 + X] = FullRun ? FullRunByHand(Background, Premultiplied)
                                      : SpanByHand(Background, Premultiplied, Cover);
        }
    }
    EXPECT_TRUE(SamePixels(Bitmap.GetPixelRow(0), Want.data(), 7 * 5, 7));
    // The hand-made formulas are not vacuous: the run at full coverage gives these bytes.
    EXPECT_TRUE(SamePixel(Pixel(151, 93, 70, 239), Want[2 * 7 + 2]));
}

TEST(ArtScanConversion, ColourIsPremultipliedByTruncation)
{
    art_bitmap Bitmap(4, 4);
    ClearToTransparent(Bitmap);
    // White at alpha 254 is 253 premultiplied; over transparent black inv is 1, so colour bytes
    // are ((0 * 1) >> 8) + 253 and alpha 255 - ((255 * 1) >> 8) = 255.
    Bitmap.FillRectangle(0, 0, 4, 4, Pixel(255, 255, 255, 254));
    EXPECT_TRUE(SamePixel(Pixel(253, 253, 253, 255), Bitmap.GetPixelRow(1)[1]));
}

TEST(ArtScanConversion, FilledCircleCoversItsArea)
{
    art_bitmap Bitmap(81, 81);
    ClearToTransparent(Bitmap);
    art_path Path;
    AddCirclePath(Path, 40.3, 40.7, 30);
    Bitmap.FillPath(Path, White, agg::trans_affine(), false, 1.0);
    double Area = Pi * 30 * 30;
    EXPECT_NEAR(Area, CoveredArea(Bitmap), Area * 0.005);
    EXPECT_EQ(255u, CoverAt(Bitmap, 40, 40));
    EXPECT_EQ(0u, CoverAt(Bitmap, 5, 5));
}

TEST(ArtScanConversion, PlainFillOfACircleCoversItsArea)
{
    art_bitmap Bitmap(61, 61);
    ClearToTransparent(Bitmap);
    art_path Path;
    AddCirclePath(Path, 30.25, 29.5, 20);
    Bitmap.FillPathPlain(Path, White);
    double Area = Pi * 20 * 20;
    EXPECT_NEAR(Area, CoveredArea(Bitmap), Area * 0.005);
}

TEST(ArtScanConversion, FillPathMapsObjectUnitsThroughTheMatrix)
{
    art_bitmap Bitmap(30, 30);
    ClearToTransparent(Bitmap);
    art_path Path;
    AddRectanglePath(Path, 0, 0, 10, 10);
    agg::trans_affine Matrix = agg::trans_affine_scaling(2) * agg::trans_affine_translation(5, 5);
    Bitmap.FillPath(Path, White, Matrix, false, 2.0);
    for (int Y = 0; Y < 30; Y++)
        for (int X = 0; X < 30; X++) {
            bool Inside = X >= 5 && X < 25 && Y >= 5 && Y < 25;
            ASSERT_EQ(Inside ? 255u : 0u, CoverAt(Bitmap, X, Y)) << "x=" << X << " y=" << Y;
        }
}

TEST(ArtScanConversion, CircleUnderAScalingMatrixCoversTheScaledArea)
{
    art_bitmap Bitmap(81, 81);
    ClearToTransparent(Bitmap);
    art_path Path;
    AddCirclePath(Path, 0, 0, 10);
    agg::trans_affine Matrix = agg::trans_affine_scaling(3) * agg::trans_affine_translation(40.5, 40);
    Bitmap.FillPath(Path, White, Matrix, false, GetMatrixMaxScale(Matrix));
    double Area = Pi * 30 * 30;
    EXPECT_NEAR(Area, CoveredArea(Bitmap), Area * 0.005);
}

// Two rectangles, one inside the other, drawn in the same direction.
art_path NestedSquares()
{
    art_path Path;
    AddRectanglePath(Path, 2, 2, 16, 16);
    AddRectanglePath(Path, 6, 6, 8, 8);
    return Path;
}

TEST(ArtScanConversion, EvenOddLeavesAHoleInNestedFigures)
{
    art_bitmap Bitmap(20, 20);
    ClearToTransparent(Bitmap);
    art_path Path = NestedSquares();
    Bitmap.FillPath(Path, White, agg::trans_affine(), true, 1.0);
    EXPECT_EQ(255u, CoverAt(Bitmap, 3, 3));
    EXPECT_EQ(255u, CoverAt(Bitmap, 5, 10));
    EXPECT_EQ(0u, CoverAt(Bitmap, 6, 6));
    EXPECT_EQ(0u, CoverAt(Bitmap, 10, 10));
    EXPECT_EQ(0u, CoverAt(Bitmap, 13, 13));
    EXPECT_EQ(255u, CoverAt(Bitmap, 14, 14));
}

TEST(ArtScanConversion, NonZeroFillsNestedFiguresOfTheSameDirection)
{
    art_bitmap Bitmap(20, 20);
    ClearToTransparent(Bitmap);
    art_path Path = NestedSquares();
    Bitmap.FillPath(Path, White, agg::trans_affine(), false, 1.0);
    for (int Y = 2; Y < 18; Y++)
        for (int X = 2; X < 18; X++)
            ASSERT_EQ(255u, CoverAt(Bitmap, X, Y)) << "x=" << X << " y=" << Y;
    EXPECT_EQ(0u, CoverAt(Bitmap, 1, 10));
}

TEST(ArtScanConversion, NonZeroLeavesAHoleWhereTheInnerFigureRunsBackwards)
{
    art_bitmap Bitmap(20, 20);
    ClearToTransparent(Bitmap);
    art_path Path;
    AddRectanglePath(Path, 2, 2, 16, 16);
    Path.move_to(6, 6);
    Path.line_to(6, 14);
    Path.line_to(14, 14);
    Path.line_to(14, 6);
    Path.close_polygon();
    Bitmap.FillPath(Path, White, agg::trans_affine(), false, 1.0);
    EXPECT_EQ(255u, CoverAt(Bitmap, 3, 3));
    EXPECT_EQ(0u, CoverAt(Bitmap, 10, 10));
}

art_path OpenCorner()
{
    art_path Path;
    Path.move_to(2, 2);
    Path.line_to(18, 2);
    Path.line_to(18, 18);
    return Path;
}

TEST(ArtScanConversion, OpenFigureIsClosedForAFill)
{
    art_bitmap Open(20, 20);
    ClearToTransparent(Open);
    art_path Path = OpenCorner();
    Open.FillPath(Path, White, agg::trans_affine(), false, 1.0);

    art_bitmap Closed(20, 20);
    ClearToTransparent(Closed);
    art_path ClosedPath = OpenCorner();
    ClosedPath.close_polygon();
    Closed.FillPath(ClosedPath, White, agg::trans_affine(), false, 1.0);

    EXPECT_EQ(Covers(Closed), Covers(Open));
    EXPECT_EQ(255u, CoverAt(Open, 12, 6));
    EXPECT_EQ(0u, CoverAt(Open, 6, 12));
}

TEST(ArtScanConversion, OpenFigureStaysOpenForAStrokeAndItsCapsAppear)
{
    art_bitmap Butt(20, 20);
    ClearToTransparent(Butt);
    art_path Path = OpenCorner();
    Butt.StrokePath(Path, White, 2, agg::trans_affine(), OutlineCentred, ArtJoinMiter, ArtCapButt, ArtMiterLimit, 1);
    // No closing edge along the diagonal.
    EXPECT_EQ(0u, CoverAt(Butt, 10, 10));
    EXPECT_EQ(0u, CoverAt(Butt, 1, 2));
    EXPECT_EQ(255u, CoverAt(Butt, 10, 2));

    art_bitmap Square(20, 20);
    ClearToTransparent(Square);
    Square.StrokePath(Path, White, 2, agg::trans_affine(), OutlineCentred, ArtJoinMiter, ArtCapSquare, ArtMiterLimit,
                      1);
    // The square cap reaches half the width past the start (2, 2) and the end (18, 18).
    EXPECT_EQ(255u, CoverAt(Square, 1, 1));
    EXPECT_EQ(255u, CoverAt(Square, 1, 2));
    EXPECT_EQ(0u, CoverAt(Square, 0, 2));
    EXPECT_EQ(255u, CoverAt(Square, 17, 18));
    EXPECT_EQ(0u, CoverAt(Square, 17, 19));
    EXPECT_EQ(0u, CoverAt(Square, 10, 10));

    art_bitmap ClosedStroke(20, 20);
    ClearToTransparent(ClosedStroke);
    art_path ClosedPath = OpenCorner();
    ClosedPath.close_polygon();
    ClosedStroke.StrokePath(ClosedPath, White, 2, agg::trans_affine(), OutlineCentred, ArtJoinMiter, ArtCapButt,
                            ArtMiterLimit, 1);
    EXPECT_GT(CoverAt(ClosedStroke, 10, 10), 0u);
}

TEST(ArtScanConversion, StrokeWidthFollowsANonUniformMatrix)
{
    art_bitmap Bitmap(100, 40);
    ClearToTransparent(Bitmap);
    art_path Path;
    AddRectanglePath(Path, 10, 10, 20, 20);
    // Object x 10 lands on pixel 30 with a line 6 wide; object y 10 on pixel 10 with a line 2 high.
    Bitmap.StrokePath(Path, White, 2, agg::trans_affine_scaling(3, 1), OutlineCentred, ArtJoinMiter, ArtCapButt,
                      ArtMiterLimit, 3);
    EXPECT_EQ(0u, CoverAt(Bitmap, 26, 20));
    for (int X = 27; X < 33; X++)
        EXPECT_EQ(255u, CoverAt(Bitmap, X, 20)) << "x=" << X;
    EXPECT_EQ(0u, CoverAt(Bitmap, 33, 20));
    EXPECT_EQ(0u, CoverAt(Bitmap, 60, 8));
    EXPECT_EQ(255u, CoverAt(Bitmap, 60, 9));
    EXPECT_EQ(255u, CoverAt(Bitmap, 60, 10));
    EXPECT_EQ(0u, CoverAt(Bitmap, 60, 11));
}

void StrokeSquare(art_bitmap &Bitmap, double Width, art_outline_mode Mode)
{
    ClearToTransparent(Bitmap);
    art_path Path;
    AddRectanglePath(Path, 10, 10, 20, 20);
    Bitmap.StrokePath(Path, White, Width, agg::trans_affine(), Mode, ArtJoinMiter, ArtCapButt, ArtMiterLimit, 1);
}

TEST(ArtScanConversion, InsideOutlineLiesWithinTheFill)
{
    art_bitmap Inside(40, 40);
    StrokeSquare(Inside, 3, OutlineInside);
    EXPECT_EQ(0u, CoverAt(Inside, 9, 20));
    EXPECT_EQ(255u, CoverAt(Inside, 10, 20));
    EXPECT_EQ(255u, CoverAt(Inside, 12, 20));
    EXPECT_EQ(0u, CoverAt(Inside, 13, 20));
    EXPECT_EQ(255u, CoverAt(Inside, 10, 10));
    EXPECT_EQ(0u, CoverAt(Inside, 9, 9));
    EXPECT_EQ(0u, CoverAt(Inside, 20, 20));
}

TEST(ArtScanConversion, OutsideOutlineLiesOutsideTheFill)
{
    art_bitmap Outside(40, 40);
    StrokeSquare(Outside, 3, OutlineOutside);
    EXPECT_EQ(0u, CoverAt(Outside, 6, 20));
    EXPECT_EQ(255u, CoverAt(Outside, 7, 20));
    EXPECT_EQ(255u, CoverAt(Outside, 9, 20));
    EXPECT_EQ(0u, CoverAt(Outside, 10, 20));
    // The miter keeps the outer corner square.
    EXPECT_EQ(255u, CoverAt(Outside, 7, 7));
    EXPECT_EQ(0u, CoverAt(Outside, 20, 20));
}

TEST(ArtScanConversion, InsideAndOutsideMakeUpTheCentredOutlineOfTwiceTheWidth)
{
    art_bitmap Inside(40, 40);
    StrokeSquare(Inside, 3, OutlineInside);
    art_bitmap Outside(40, 40);
    StrokeSquare(Outside, 3, OutlineOutside);
    art_bitmap Centred(40, 40);
    StrokeSquare(Centred, 6, OutlineCentred);
    std::vector<unsigned> In = Covers(Inside);
    std::vector<unsigned> Out = Covers(Outside);
    std::vector<unsigned> Sum;
    for (size_t I = 0; I < In.size(); I++)
        Sum.push_back(In[I] + Out[I]);
    EXPECT_EQ(Covers(Centred), Sum);
}

// On a curve the pieces meet in anti-aliased pixels, where the intersection gives
// (c1 * c2 + 255) >> 8 and the difference (c2 * (255 - c1) + 255) >> 8: together the stroke's c2
// to within a level or two, so the areas agree closely.
TEST(ArtScanConversion, InsideAndOutsideOfACircleCoverTheCentredOutlineOfTwiceTheWidth)
{
    art_path Path;
    AddCirclePath(Path, 40.3, 40.6, 25);
    art_bitmap Inside(81, 81);
    ClearToTransparent(Inside);
    Inside.StrokePath(Path, White, 2.5, agg::trans_affine(), OutlineInside, ArtJoinRound, ArtCapButt, ArtMiterLimit,
                      1);
    art_bitmap Outside(81, 81);
    ClearToTransparent(Outside);
    Outside.StrokePath(Path, White, 2.5, agg::trans_affine(), OutlineOutside, ArtJoinRound, ArtCapButt,
                       ArtMiterLimit, 1);
    art_bitmap Centred(81, 81);
    ClearToTransparent(Centred);
    Centred.StrokePath(Path, White, 5, agg::trans_affine(), OutlineCentred, ArtJoinRound, ArtCapButt, ArtMiterLimit,
                       1);
    double Ring = CoveredArea(Centred);
    EXPECT_NEAR(2 * Pi * 25 * 5, Ring, 2 * Pi * 25 * 5 * 0.005);
    EXPECT_NEAR(Ring, CoveredArea(Inside) + CoveredArea(Outside), Ring * 0.005);
    // Inside ends at the circle: nothing of it lies further out than the radius.
    EXPECT_EQ(0u, CoverAt(Inside, 40, 40 + 28));
    EXPECT_GT(CoverAt(Outside, 40, 40 + 28), 0u);
    EXPECT_GT(CoverAt(Inside, 40, 40 + 23), 0u);
    EXPECT_EQ(0u, CoverAt(Outside, 40, 40 + 23));
}

art_path HorizontalLine(double X1, double X2, double Y)
{
    art_path Path;
    Path.move_to(X1, Y);
    Path.line_to(X2, Y);
    return Path;
}

std::vector<agg::rgba8> Dashed(double DashLength, double DashCycle, double DashOffset, int CapType)
{
    art_bitmap Bitmap(100, 20);
    ClearToTransparent(Bitmap);
    art_path Path = HorizontalLine(5, 95, 10);
    Bitmap.StrokeDashedPath(Path, White, 2, DashLength, DashCycle, DashOffset, agg::trans_affine(), ArtJoinMiter,
                            CapType, ArtMiterLimit, 1);
    return PixelsOf(Bitmap);
}

bool SameImages(const std::vector<agg::rgba8> &A, const std::vector<agg::rgba8> &B)
{
    return A.size() == B.size() && SamePixels(A.data(), B.data(), int(A.size()));
}

TEST(ArtScanConversion, DashLengthIsClampedToATraceAndToTheWholeCycle)
{
    // Round caps leave a dot where a dash has next to no length.
    std::vector<agg::rgba8> Trace = Dashed(1e-6, 10, 0, ArtCapRound);
    EXPECT_TRUE(SameImages(Trace, Dashed(0, 10, 0, ArtCapRound)));
    EXPECT_TRUE(SameImages(Trace, Dashed(-3, 10, 0, ArtCapRound)));
    int Dots = 0;
    for (int X = 0; X < 100; X++)
        Dots += Trace[10 * 100 + X].r > 0 ? 1 : 0;
    EXPECT_GT(Dots, 9);

    std::vector<agg::rgba8> Whole = Dashed(1.0, 10, 0, ArtCapButt);
    EXPECT_TRUE(SameImages(Whole, Dashed(1.7, 10, 0, ArtCapButt)));
    EXPECT_FALSE(SameImages(Whole, Dashed(0.5, 10, 0, ArtCapButt)));
}

TEST(ArtScanConversion, DashOffsetIsClampedNotWrapped)
{
    std::vector<agg::rgba8> Start = Dashed(0.5, 10, 0, ArtCapButt);
    EXPECT_TRUE(SameImages(Start, Dashed(0.5, 10, -0.4, ArtCapButt)));
    EXPECT_FALSE(SameImages(Start, Dashed(0.5, 10, 0.6, ArtCapButt)));
    std::vector<agg::rgba8> End = Dashed(0.5, 10, 1.0, ArtCapButt);
    EXPECT_TRUE(SameImages(End, Dashed(0.5, 10, 1.6, ArtCapButt)));
    std::vector<agg::rgba8> Three = Dashed(0.5, 10, 0.3, ArtCapButt);
    EXPECT_FALSE(SameImages(Three, Dashed(0.5, 10, 0.6, ArtCapButt)));
    EXPECT_FALSE(SameImages(Start, Three));
}

// The dash starts (1 - offset) cycles in: with offset 0.25 of a 10 cycle and a dash of 0.5, the
// pattern is shifted by 2.5 against offset 0, from x = 5 on.
TEST(ArtScanConversion, DashOffsetShiftsThePattern)
{
    std::vector<agg::rgba8> Shifted = Dashed(0.5, 10, 0.25, ArtCapButt);
    // Offset 0: dashes over [5, 10), [15, 20) ... Offset 0.25 starts 7.5 into the cycle, in the gap:
    // 2.5 of gap, then dashes over [7.5, 12.5), [17.5, 22.5) ...
    EXPECT_EQ(0u, Shifted[10 * 100 + 6].r);
    EXPECT_EQ(128u, Shifted[10 * 100 + 7].r);
    EXPECT_EQ(255u, Shifted[10 * 100 + 8].r);
    EXPECT_EQ(255u, Shifted[10 * 100 + 11].r);
    EXPECT_EQ(128u, Shifted[10 * 100 + 12].r);
    EXPECT_EQ(0u, Shifted[10 * 100 + 13].r);
}

TEST(ArtScanConversion, WholeDashesDrawASolidLine)
{
    art_bitmap Dashes(40, 20);
    ClearToTransparent(Dashes);
    art_path Path = HorizontalLine(2, 38, 10);
    Dashes.StrokeDashedPath(Path, White, 4, 1.0, 6, 0, agg::trans_affine(), ArtJoinMiter, ArtCapButt, ArtMiterLimit,
                            1);
    art_bitmap Solid(40, 20);
    ClearToTransparent(Solid);
    Solid.StrokePath(Path, White, 4, agg::trans_affine(), OutlineCentred, ArtJoinMiter, ArtCapButt, ArtMiterLimit, 1);
    EXPECT_EQ(Covers(Solid), Covers(Dashes));
    EXPECT_EQ(255u, CoverAt(Dashes, 8, 9));
    EXPECT_EQ(255u, CoverAt(Dashes, 14, 10));
}

// A line of 90 from x = 5 to 95 along y = 10, two wide, dashed 0.4 of each cycle.
std::vector<agg::rgba8> DashedLine(double X2, double DashCycle)
{
    art_bitmap Bitmap(100, 20);
    ClearToTransparent(Bitmap);
    art_path Path = HorizontalLine(5, X2, 10);
    Bitmap.StrokeDashedPath(Path, White, 2, 0.4, DashCycle, 0, agg::trans_affine(), ArtJoinMiter, ArtCapButt,
                            ArtMiterLimit, 1);
    return PixelsOf(Bitmap);
}

// The same line solid, in white at alpha 255 * 0.4 = 102.
std::vector<agg::rgba8> ToneLine(double X2)
{
    art_bitmap Bitmap(100, 20);
    ClearToTransparent(Bitmap);
    art_path Path = HorizontalLine(5, X2, 10);
    Bitmap.StrokePath(Path, Pixel(255, 255, 255, 102), 2, agg::trans_affine(), OutlineCentred, ArtJoinMiter,
                      ArtCapButt, ArtMiterLimit, 1);
    return PixelsOf(Bitmap);
}

TEST(ArtScanConversion, DashesTooManyToTellApartDrawAnEvenTone)
{
    // 99,999 cycles along the 90 of the line are still dashes, each far below a pixel: on average
    // they cover as much as the tone.
    std::vector<agg::rgba8> Dashes = DashedLine(95, 90.0 / 99999);
    double Sum = 0;
    for (int X = 10; X < 90; X++)
        Sum += Dashes[10 * 100 + X].r;
    EXPECT_NEAR(101.0, Sum / 80, 3.0);
    EXPECT_FALSE(SameImages(ToneLine(95), Dashes));
    // Beyond 100,000 cycles the line is the tone itself: white at alpha 102, premultiplied by
    // truncation to 255 * 102 >> 8 = 101.
    EXPECT_TRUE(SameImages(ToneLine(95), DashedLine(95, 90.0 / 100001)));
    EXPECT_EQ(101u, ToneLine(95)[10 * 100 + 50].r);
}

TEST(ArtScanConversion, DashesAlongAPathBeyondAnyLengthDrawTheTone)
{
    // A line far longer than the bitmap, or a cycle without end, would keep the dash generator busy
    // for ever.
    EXPECT_TRUE(SameImages(ToneLine(1e120), DashedLine(1e120, 14)));
    EXPECT_TRUE(SameImages(ToneLine(95), DashedLine(95, HUGE_VAL)));
}

TEST(ArtScanConversion, DashCycleOfZeroOrLessIsRefused)
{
    art_bitmap Bitmap(20, 20);
    ClearToTransparent(Bitmap);
    art_path Path = HorizontalLine(2, 18, 10);
    for (double Cycle : {0.0, -4.0}) {
        std::string Message = ZEL_ERROR_MESSAGE(Bitmap.StrokeDashedPath(
            Path, White, 2, 0.5, Cycle, 0, agg::trans_affine(), ArtJoinMiter, ArtCapButt, ArtMiterLimit, 1));
        EXPECT_NE(std::string::npos, Message.find("'DashCycle>0' is false")) << Message;
    }
    EXPECT_EQ(0.0, CoveredArea(Bitmap));
}

TEST(ArtScanConversion, EmptyPathDrawsNothing)
{
    std::mt19937 Random(7);
    art_bitmap Bitmap(16, 16);
    FillRandom(Bitmap, Random);
    std::vector<agg::rgba8> Before = PixelsOf(Bitmap);
    art_path Empty;
    agg::trans_affine Matrix = agg::trans_affine_scaling(2);
    Bitmap.FillPathPlain(Empty, White);
    Bitmap.FillPath(Empty, White, Matrix, false, 2);
    Bitmap.FillPath(Empty, White, Matrix, true, 2);
    for (art_outline_mode Mode : {OutlineInside, OutlineOutside, OutlineCentred})
        Bitmap.StrokePath(Empty, White, 3, Matrix, Mode, ArtJoinRound, ArtCapRound, ArtMiterLimit, 2);
    Bitmap.StrokeDashedPath(Empty, White, 3, 0.5, 4, 0, Matrix, ArtJoinRound, ArtCapRound, ArtMiterLimit, 2);
    EXPECT_TRUE(SameImages(Before, PixelsOf(Bitmap)));
}

TEST(ArtScanConversion, LoneMoveDrawsNothing)
{
    std::mt19937 Random(8);
    art_bitmap Bitmap(16, 16);
    FillRandom(Bitmap, Random);
    std::vector<agg::rgba8> Before = PixelsOf(Bitmap);
    art_path Path;
    Path.move_to(8, 8);
    Bitmap.FillPathPlain(Path, White);
    Bitmap.FillPath(Path, White, agg::trans_affine(), false, 1);
    Bitmap.StrokePath(Path, White, 3, agg::trans_affine(), OutlineCentred, ArtJoinRound, ArtCapButt, ArtMiterLimit, 1);
    EXPECT_TRUE(SameImages(Before, PixelsOf(Bitmap)));
}

// A view of the middle of a larger bitmap: any pixel that a span wrote past the view's right or
// bottom edge would show in the parent around it.
struct framed_view
{
    art_bitmap Parent;
    art_bitmap View;
    std::vector<agg::rgba8> Before;

    framed_view() : Parent(12, 10), View((Prepare(Parent), reference_pointer<art_bitmap>(&Parent)), Frame())
    {
        Before = PixelsOf(Parent);
    }

    static int_rectangle Frame() { return int_rectangle(int_point2d(2, 3), int_point2d(6, 4)); }

    static void Prepare(art_bitmap &Parent)
    {
        std::mt19937 Random(3);
        FillRandom(Parent, Random);
    }

    // Every pixel of the view white except those of Hole (in view pixels), which stay as they were
    // like every pixel outside the view.
    testing::AssertionResult OnlyTheViewChanged(const int_rectangle &Hole = int_rectangle())
    {
        std::vector<agg::rgba8> After = PixelsOf(Parent);
        int_point2d Corner = Frame().Location;
        for (int Y = 0; Y < 10; Y++)
            for (int X = 0; X < 12; X++) {
                bool InView = Within(Frame(), X, Y) && !Within(Hole, X - Corner.X, Y - Corner.Y);
                const agg::rgba8 &Got = After[Y * 12 + X];
                if (InView && !SamePixel(Got, White))
                    return testing::AssertionFailure() << "view pixel not covered at " << X << ", " << Y;
                if (!InView && !SamePixel(Got, Before[Y * 12 + X]))
                    return testing::AssertionFailure() << "pixel changed at " << X << ", " << Y;
            }
        return testing::AssertionSuccess();
    }

    static bool Within(const int_rectangle &Area, int X, int Y)
    {
        return X >= Area.Location.X && X < Area.Location.X + Area.Size.X && Y >= Area.Location.Y &&
               Y < Area.Location.Y + Area.Size.Y;
    }
};

TEST(ArtScanConversion, SpansPastTheEdgesAreTrimmedBeforeTheKernels)
{
    framed_view Fill;
    Fill.View.FillRectangle(-5, -5, 30, 30, White);
    EXPECT_TRUE(Fill.OnlyTheViewChanged());

    framed_view Circle;
    art_path Path;
    AddCirclePath(Path, 3, 2, 40);
    Circle.View.FillPath(Path, White, agg::trans_affine(), false, 1);
    EXPECT_TRUE(Circle.OnlyTheViewChanged());

    framed_view Stroke;
    art_path Line = HorizontalLine(-20, 50, 2);
    Stroke.View.StrokePath(Line, White, 30, agg::trans_affine(), OutlineCentred, ArtJoinMiter, ArtCapSquare,
                           ArtMiterLimit, 1);
    EXPECT_TRUE(Stroke.OnlyTheViewChanged());

    // The outside outline of a rectangle near the view's right and bottom edges runs past both.
    framed_view Outside;
    art_path Inner;
    AddRectanglePath(Inner, 1, 1, 3, 2);
    Outside.View.StrokePath(Inner, White, 3, agg::trans_affine(), OutlineOutside, ArtJoinMiter, ArtCapButt,
                            ArtMiterLimit, 1);
    EXPECT_TRUE(Outside.OnlyTheViewChanged(int_rectangle(int_point2d(1, 1), int_point2d(3, 2))));
}

TEST(ArtScanConversion, StrokedEllipseIsARingOfTheWidth)
{
    art_bitmap Bitmap(61, 61);
    ClearToTransparent(Bitmap);
    Bitmap.StrokeEllipse(30.5, 30.5, 20, 20, 4, White, 2);
    double Ring = 2 * Pi * 20 * 2;
    EXPECT_NEAR(Ring, CoveredArea(Bitmap), Ring * 0.01);
    EXPECT_EQ(0u, CoverAt(Bitmap, 30, 30));
    EXPECT_EQ(255u, CoverAt(Bitmap, 50, 30));
    EXPECT_EQ(0u, CoverAt(Bitmap, 52, 30));
    EXPECT_EQ(0u, CoverAt(Bitmap, 48, 30));
}

// A pixel format that records what reaches it, to see which kernel each span is given to.
struct recorded_call
{
    bool Run;
    int X;
    int Y;
    unsigned Length;
    std::vector<unsigned> Covers;
};

bool operator==(const recorded_call &A, const recorded_call &B)
{
    return A.Run == B.Run && A.X == B.X && A.Y == B.Y && A.Length == B.Length && A.Covers == B.Covers;
}

void PrintTo(const recorded_call &Call, std::ostream *Stream)
{
    *Stream << (Call.Run ? "run" : "span") << "(x=" << Call.X << " y=" << Call.Y << " len=" << Call.Length << " covers";
    for (unsigned Cover : Call.Covers)
        *Stream << " " << Cover;
    *Stream << ")";
}

struct recording_format
{
    std::vector<recorded_call> Calls;

    void blend_hline(int X, int Y, unsigned Length, const agg::rgba8 &, agg::int8u Cover)
    {
        Calls.push_back({true, X, Y, Length, {Cover}});
    }

    void blend_solid_hspan(int X, int Y, unsigned Length, const agg::rgba8 &, const agg::int8u *Covers)
    {
        Calls.push_back({false, X, Y, Length, std::vector<unsigned>(Covers, Covers + Length)});
    }
};

std::vector<recorded_call> RouteRectangle(double X, double Y, double W, double H)
{
    agg::rasterizer_scanline_aa<> Rasterizer;
    art_path Path;
    AddRectanglePath(Path, X, Y, W, H);
    Rasterizer.add_path(Path);
    agg::scanline_p8 Line;
    recording_format Format;
    art_span_router<recording_format> Router(Format, White);
    agg::render_scanlines(Rasterizer, Line, Router);
    return Format.Calls;
}

// The two kernels give the same bytes for every input ((p * inv + c * 256) >> 8 equals
// ((p * inv) >> 8) + c, since c * 256 has no low byte), so which of them a span reached cannot be
// seen in a bitmap; a recording pixel format shows it.
TEST(ArtSpanRouter, RunsOfOneCoverageGoToTheRunKernelAndCellsToThePerPixelKernel)
{
    std::vector<recorded_call> Want = {
        {false, 1, 1, 1, {64}},  {true, 2, 1, 2, {128}}, {false, 4, 1, 1, {64}},
        {false, 1, 2, 1, {128}}, {true, 2, 2, 2, {255}}, {false, 4, 2, 1, {128}},
        {false, 1, 3, 1, {64}},  {true, 2, 3, 2, {128}}, {false, 4, 3, 1, {64}},
    };
    EXPECT_EQ(Want, RouteRectangle(1.5, 1.5, 3, 2));
}

TEST(ArtSpanRouter, APerPixelSpanStaysPerPixelWhenEveryCoverIsFull)
{
    // An edge just inside a pixel makes a cell that rounds to full coverage, which scanline_p8 keeps
    // as a span with a coverage array; the pixels after it are one run.
    std::vector<recorded_call> Want = {
        {false, 1, 1, 1, {255}},
        {true, 2, 1, 3, {255}},
    };
    // The left edge one subpixel into pixel 1: (256 << 9) - (1 + 1) * 256 is 130560, >> 9 is 255.
    EXPECT_EQ(Want, RouteRectangle(1 + 1.0 / 256, 1, 4 - 1.0 / 256, 1));
}

} // namespace

TEST(ArtScanConversion, VerticesFarBeyondAnyBitmapStillFillWhatTheyCover)
{
    // A square from -1e31 to 1e31 on each axis covers every pixel, as it would at any size that
    // fits the fixed-point grid. (An infinite coordinate is no case of its own: any matrix, the
    // identity too, multiplies it by 0 somewhere and makes it not a number.)
    for (double Far : {1e7, 1e12, 1e31}) {
        art_bitmap Bitmap(8, 6);
        ClearToTransparent(Bitmap);
        art_path Path;
        Path.move_to(-Far, -Far);
        Path.line_to(Far, -Far);
        Path.line_to(Far, Far);
        Path.line_to(-Far, Far);
        Path.close_polygon();
        Bitmap.FillPath(Path, White, agg::trans_affine(), false, 1.0);
        for (int Y = 0; Y < 6; Y++)
            for (int X = 0; X < 8; X++)
                ASSERT_EQ(255u, CoverAt(Bitmap, X, Y)) << Far << " at " << X << "," << Y;
    }
}

TEST(ArtScanConversion, AVertexThatIsNotANumberCountsAsZero)
{
    art_bitmap Bitmap(12, 12);
    art_bitmap Want(12, 12);
    ClearToTransparent(Bitmap);
    ClearToTransparent(Want);
    // The matrix mixes both coordinates into each, so one that is not a number spoils both.
    auto Triangle = [](double V) {
        art_path Path;
        Path.move_to(1, 11);
        Path.line_to(V, V);
        Path.line_to(11, 6);
        Path.close_polygon();
        return Path;
    };
    art_path Damaged = Triangle(std::nan(""));
    art_path AtZero = Triangle(0);
    Bitmap.FillPath(Damaged, White, agg::trans_affine(), false, 1.0);
    Want.FillPath(AtZero, White, agg::trans_affine(), false, 1.0);
    for (int Y = 0; Y < 12; Y++)
        for (int X = 0; X < 12; X++)
            ASSERT_EQ(CoverAt(Want, X, Y), CoverAt(Bitmap, X, Y)) << X << "," << Y;
    EXPECT_EQ(255u, CoverAt(Bitmap, 4, 6));
}
