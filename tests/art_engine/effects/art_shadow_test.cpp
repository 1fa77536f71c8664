#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "art_engine/effects/art_color_fill.h"
#include "art_engine/effects/art_shadow.h"
#include "art_engine/objects/art_object_factory.h"
#include "art_engine/pixels/art_blend.h"
#include "art_engine/shapes/art_ellipse_shape.h"
#include "art_engine/shapes/art_rectangle_shape.h"
#include "art_engine/shapes/art_stencil_shape.h"
#include "tests/art_engine/effects/art_blur_test_support.h"
#include "tests/art_engine/objects/art_render_test_support.h"
#include "tests/art_engine/objects/art_test_support.h"
#include "tests/art_engine/shapes/art_shape_test_support.h"
#include "tests/test_support.h"

using namespace art_render_test;
using namespace art_blur_test;
using art_shape_test::parsed;
using art_test::Written;

namespace {

const agg::rgba8 OpaqueGreen = Pixel(0, 255, 0, 255);
// Red at half: the colour bytes (255, 0, 0) and the opacity int(0.5 * 255 + 0.5) = 128.
const agg::rgba HalfRed(1, 0, 0, 0.5);
// Red at 128 filled over opaque green with full coverage: colour premultiplied to 127, inv = 127,
// red 0 + 127, green (255 * 127) >> 8 = 126.
const agg::rgba8 BandOverGreen = Pixel(127, 126, 0, 255);
// Opaque red blended over opaque green at opacity 128: alpha (255 * 129) >> 8 = 128, inv = 127,
// red (255 * 129) >> 8 = 128, green (255 * 127) >> 8 = 126.
const agg::rgba8 ShadeOverGreen = Pixel(128, 126, 0, 255);

ownership_pointer<art_shadow> ShadowOf(point2d Offset, double Radius, const agg::rgba &Color,
                                       art_stack_mode Mode = StackModeNormal, double Weight = 0)
{
    ownership_pointer<art_shadow> Shadow(new art_shadow);
    Shadow->SetOffset(Offset);
    Shadow->SetRadius(Radius);
    Shadow->SetColor(Color);
    Shadow->SetWeight(Weight);
    Shadow->SetStackMode(Mode);
    return Shadow;
}

ownership_pointer<art_bitmap> Filled(int W, int H, agg::rgba8 Color)
{
    ownership_pointer<art_bitmap> Bitmap(new art_bitmap(W, H));
    Bitmap->Clear(Color);
    return Bitmap;
}

// A stencil that is white where Covered says so, black elsewhere.
template <class Covered> ownership_pointer<art_bitmap> StencilOf(int W, int H, Covered IsCovered)
{
    ownership_pointer<art_bitmap> Stencil = Filled(W, H, Black);
    for (int Y = 0; Y < H; Y++)
        for (int X = 0; X < W; X++)
            if (IsCovered(X, Y))
                Stencil->GetPixelRow(Y)[X] = White;
    return Stencil;
}

// Destination-over of one shadow pixel of straight alpha A in black, at opacity Cover, written out
// from the byte formulas.
agg::rgba8 BlackUnder(agg::rgba8 P, unsigned A, unsigned Cover)
{
    unsigned S = A;
    unsigned C = (0 * A + 255) >> 8;
    if (Cover < 255) {
        S = (S * Cover + 255) >> 8;
        C = (C * Cover + 255) >> 8;
    }
    unsigned D1A = 255 - P.a;
    auto Lane = [&](unsigned V) { return static_cast<uint8_t>(V + ((C * D1A + 255) >> 8)); };
    return Pixel(Lane(P.r), Lane(P.g), Lane(P.b), S + P.a - ((S * P.a + 255) >> 8));
}

// A group at Location whose shape is Shape, filled with Fill, with Shadow on top.
ownership_pointer<art_object> ShadowedGroup(art_shape *Shape, point2d Location, point2d Size, const agg::rgba &Fill,
                                            ownership_pointer<art_shadow> Shadow)
{
    ownership_pointer<art_object> Group(new art_object);
    Place(*Group, Location, Size);
    Group->AddChild(ownership_pointer<art_object>(art_shape_test::MakeStencil(Shape, Size.X, Size.Y)));
    Group->AddChild(ownership_pointer<art_object>(new art_color_fill(Fill)));
    if (Shadow.IsSet())
        Group->AddChild(ownership_pointer<art_object>(Shadow));
    return Group;
}

bool SameRectangle(const rectangle &A, const rectangle &B)
{
    return A.Location == B.Location && A.Size == B.Size;
}

} // namespace

TEST(ArtShadow, AnInnerShadowShadesWhatTheStencilLeavesOutAndFillsTheNearBand)
{
    // Left half inside the stencil. The shade of the right half moves 2 to the right; the band of
    // 2 that it uncovers on the left is filled.
    ownership_pointer<art_bitmap> Layer = Filled(8, 4, OpaqueGreen);
    ownership_pointer<art_bitmap> Stencil = StencilOf(8, 4, [](int X, int) { return X < 4; });
    ownership_pointer<art_shadow> Shadow = ShadowOf(point2d(2, 0), 0, HalfRed);
    Shadow->DrawShadow(*Layer, Stencil, agg::trans_affine());
    EXPECT_TRUE(PixelsAre(*Layer, [](int X, int) {
        return X < 2 ? BandOverGreen : X < 6 ? OpaqueGreen : ShadeOverGreen;
    }));
}

TEST(ArtShadow, ANegativeOffsetFillsTheBandsAtTheFarEdges)
{
    // The stencil covers everything: only the bands show, right and bottom, from the unrounded
    // offset (-2.5, -1): x from 5.5 and the last row.
    ownership_pointer<art_bitmap> Layer = Filled(8, 4, OpaqueGreen);
    ownership_pointer<art_bitmap> Stencil = Filled(8, 4, White);
    ownership_pointer<art_shadow> Shadow = ShadowOf(point2d(-2.5, -1), 0, agg::rgba(0, 0, 1, 1));
    Shadow->DrawShadow(*Layer, Stencil, agg::trans_affine());
    const agg::rgba8 Full = Pixel(0, 0, 255, 255);
    for (int Y = 0; Y < 4; Y++)
        for (int X = 0; X < 8; X++) {
            agg::rgba8 P = Layer->GetPixelRow(Y)[X];
            if (Y == 3 || X >= 6)
                EXPECT_EQ(PixelText(Full), PixelText(P)) << X << "," << Y;
            else if (X < 5)
                EXPECT_EQ(PixelText(OpaqueGreen), PixelText(P)) << X << "," << Y;
            else
                EXPECT_TRUE(P.b > 100 && P.b < 155 && P.g > 100 && P.g < 155) << PixelText(P);
        }
}

TEST(ArtShadow, TheInnerShadowIsTheBlurredWeightedOutsideBlendedAtTheRoundedOffset)
{
    const int W = 20;
    const int H = 14;
    ownership_pointer<art_bitmap> Layer = Filled(W, H, OpaqueGreen);
    auto Covered = [](int X, int Y) { return X >= 5 && X < 15 && Y >= 4 && Y < 10; };
    ownership_pointer<art_bitmap> Stencil = StencilOf(W, H, Covered);
    // Offset 0.6, -0.4 at scale 2 is 1.2, -0.8 pixels: the shade moves by (1, -1); radius 1 at
    // scale 2 is 2.
    ownership_pointer<art_shadow> Shadow = ShadowOf(point2d(0.6, -0.4), 1, HalfRed, StackModeNormal, 0.5);
    Shadow->DrawShadow(*Layer, Stencil, agg::trans_affine_scaling(2));

    ownership_pointer<art_bitmap> Shade = Filled(W, H, Transparent);
    for (int Y = 0; Y < H; Y++)
        for (int X = 0; X < W; X++)
            Shade->GetPixelRow(Y)[X].a = Covered(X, Y) ? 0 : 255;
    PlainBlurAlpha(*Shade, 2);
    EXPECT_TRUE(PixelsAre(*Layer, [&](int X, int Y) {
        agg::rgba8 P = OpaqueGreen;
        // The bands: the first column for 1.2 pixels, the last row for 0.8 of a pixel.
        if (X == 0)
            P = BandOverGreen;
        if (X == 1 || Y == H - 1) {
            // A part of a pixel: no exact bytes here, only what the other pixels do.
            return Layer->GetPixelRow(Y)[X];
        }
        int SX = X - 1;
        int SY = Y + 1;
        if (SX < 0 || SY >= H)
            return P;
        // Weight 0.5: W = 0.375, k = 1.6.
        unsigned A = static_cast<unsigned>(Shade->GetPixelRow(SY)[SX].a * (1.0 / (1.0 - 0.375)));
        A = A > 255 ? 255 : A;
        if (A == 0)
            return P;
        unsigned R = A == 255 ? 255 : (255 * A + 255) >> 8;
        unsigned Alpha = (A * 129) >> 8;
        if (Alpha > 254)
            return Pixel(R, 0, 0, 255);
        unsigned Inv = 255 - Alpha;
        return Pixel((P.r * Inv + R * 129) >> 8, (P.g * Inv) >> 8, (P.b * Inv) >> 8, 255 - (((255 - P.a) * Inv) >> 8));
    }));
    // Partly covered band pixels lie between the green and the band's colour.
    agg::rgba8 Edge = Layer->GetPixelRow(H - 1)[8];
    EXPECT_TRUE(Edge.r > 0 && Edge.r < 127 && Edge.g > 126) << PixelText(Edge);
}

TEST(ArtShadow, ADropShadowFallsUnderTheLayerAtTheOffset)
{
    ownership_pointer<art_bitmap> Layer = Filled(8, 6, Transparent);
    auto IsBlue = [](int X, int Y) { return X >= 1 && X < 4 && Y >= 1 && Y < 3; };
    for (int Y = 0; Y < 6; Y++)
        for (int X = 0; X < 8; X++)
            if (IsBlue(X, Y))
                Layer->GetPixelRow(Y)[X] = Blue;
    ownership_pointer<art_shadow> Shadow = ShadowOf(point2d(2, 1), 0, agg::rgba(0, 0, 0, 0.5), StackModePost);
    Shadow->DrawShadow(*Layer, ownership_pointer<art_bitmap>(), agg::trans_affine());
    // Black at 255 scaled by 128: (255 * 128 + 255) >> 8 = 128 over nothing; under blue, nothing.
    EXPECT_TRUE(PixelsAre(*Layer, [&](int X, int Y) {
        if (IsBlue(X, Y))
            return Blue;
        return IsBlue(X - 2, Y - 1) ? Pixel(0, 0, 0, 128) : Transparent;
    }));
}

TEST(ArtShadow, ADropShadowWithColourAlphaZeroDrawsNothing)
{
    ownership_pointer<art_bitmap> Layer = NoiseBitmap(12, 8);
    ownership_pointer<art_bitmap> Before = CopyOf(*Layer);
    ownership_pointer<art_shadow> Shadow = ShadowOf(point2d(1, 1), 1, agg::rgba(1, 0, 0, 0), StackModePost, 1);
    Shadow->DrawShadow(*Layer, ownership_pointer<art_bitmap>(), agg::trans_affine());
    EXPECT_TRUE(SameBitmaps(*Layer, *Before));
}

TEST(ArtShadow, DestinationOverLeavesOpaquePixelsUnchangedWhateverTheOpacity)
{
    for (double Alpha : {1.0, 0.7, 0.3}) {
        ownership_pointer<art_bitmap> Layer = NoiseBitmap(12, 8);
        Layer->ForEachPixel([](agg::rgba8 *P) { P->a = 255; });
        ownership_pointer<art_bitmap> Before = CopyOf(*Layer);
        ownership_pointer<art_shadow> Shadow = ShadowOf(point2d(-2, 3), 2, agg::rgba(1, 1, 0, Alpha), StackModePost);
        Shadow->DrawShadow(*Layer, ownership_pointer<art_bitmap>(), agg::trans_affine());
        EXPECT_TRUE(SameBitmaps(*Layer, *Before)) << Alpha;
    }
}

TEST(ArtShadow, AWeightOfOneOrAboveMultipliesAlphaByFour)
{
    for (double Weight : {1.0, 5.0}) {
        ownership_pointer<art_bitmap> Layer = Filled(4, 1, Transparent);
        Layer->GetPixelRow(0)[0] = Pixel(41, 0, 0, 41);
        Layer->GetPixelRow(0)[1] = Pixel(100, 0, 0, 100);
        ownership_pointer<art_shadow> Shadow = ShadowOf(point2d(2, 0), 0, agg::rgba(0, 0, 0, 1), StackModePost, Weight);
        Shadow->DrawShadow(*Layer, ownership_pointer<art_bitmap>(), agg::trans_affine());
        // 41 * 4 = 164; 100 * 4 is held at 255.
        EXPECT_EQ(PixelText(Pixel(0, 0, 0, 164)), PixelText(Layer->GetPixelRow(0)[2])) << Weight;
        EXPECT_EQ(PixelText(Pixel(0, 0, 0, 255)), PixelText(Layer->GetPixelRow(0)[3])) << Weight;
        EXPECT_EQ(PixelText(Pixel(41, 0, 0, 41)), PixelText(Layer->GetPixelRow(0)[0])) << Weight;
    }
}

TEST(ArtShadow, AWeightBelowZeroLeavesAlphaUnchangedAndAHalfWeightMultipliesBy1_6)
{
    struct weight_case
    {
        double Weight;
        unsigned Low;
        unsigned High;
    };
    // 41 * 1.6 = 65.6 and 100 * 1.6 = 160, truncated.
    for (weight_case Case : {weight_case{-1, 41, 100}, weight_case{-0.01, 41, 100}, weight_case{0, 41, 100},
                             weight_case{0.5, 65, 160}}) {
        ownership_pointer<art_bitmap> Layer = Filled(4, 1, Transparent);
        Layer->GetPixelRow(0)[0] = Pixel(41, 0, 0, 41);
        Layer->GetPixelRow(0)[1] = Pixel(100, 0, 0, 100);
        ownership_pointer<art_shadow> Shadow =
            ShadowOf(point2d(2, 0), 0, agg::rgba(0, 0, 0, 1), StackModePost, Case.Weight);
        Shadow->DrawShadow(*Layer, ownership_pointer<art_bitmap>(), agg::trans_affine());
        EXPECT_EQ(PixelText(Pixel(0, 0, 0, Case.Low)), PixelText(Layer->GetPixelRow(0)[2])) << Case.Weight;
        EXPECT_EQ(PixelText(Pixel(0, 0, 0, Case.High)), PixelText(Layer->GetPixelRow(0)[3])) << Case.Weight;
    }
}

TEST(ArtShadow, ABlurredDropShadowIsTheBlurredAlphaUnderTheLayer)
{
    ownership_pointer<art_bitmap> Layer = Filled(16, 12, Transparent);
    for (int Y = 3; Y < 7; Y++)
        for (int X = 2; X < 9; X++)
            Layer->GetPixelRow(Y)[X] = Pixel(60, 0, 0, 120);
    ownership_pointer<art_bitmap> Before = CopyOf(*Layer);
    ownership_pointer<art_bitmap> Alpha = CopyOf(*Layer);
    PlainBlurAlpha(*Alpha, 3);
    ownership_pointer<art_shadow> Shadow = ShadowOf(point2d(3, 2), 3, agg::rgba(0, 0, 0, 0.5), StackModePost);
    Shadow->DrawShadow(*Layer, ownership_pointer<art_bitmap>(), agg::trans_affine());
    EXPECT_TRUE(PixelsAre(*Layer, [&](int X, int Y) {
        agg::rgba8 P = Before->GetPixelRow(Y)[X];
        if (X < 3 || Y < 2)
            return P;
        return BlackUnder(P, Alpha->GetPixelRow(Y - 2)[X - 3].a, 128);
    }));
}

TEST(ArtShadow, RadiusZeroOrBelowHalfAPixelGivesAnUnblurredEdge)
{
    for (double Radius : {0.0, 0.2, 0.49}) {
        ownership_pointer<art_bitmap> Layer = Filled(8, 4, OpaqueGreen);
        ownership_pointer<art_bitmap> Stencil = StencilOf(8, 4, [](int X, int) { return X < 4; });
        ShadowOf(point2d(2, 0), Radius, HalfRed)->DrawShadow(*Layer, Stencil, agg::trans_affine());
        EXPECT_TRUE(PixelsAre(*Layer, [](int X, int) {
            return X < 2 ? BandOverGreen : X < 6 ? OpaqueGreen : ShadeOverGreen;
        })) << Radius;
    }
    // Half a pixel rounds to a radius of 1, which softens the edge.
    ownership_pointer<art_bitmap> Layer = Filled(8, 4, OpaqueGreen);
    ownership_pointer<art_bitmap> Stencil = StencilOf(8, 4, [](int X, int) { return X < 4; });
    ShadowOf(point2d(2, 0), 0.5, HalfRed)->DrawShadow(*Layer, Stencil, agg::trans_affine());
    EXPECT_NE(PixelText(OpaqueGreen), PixelText(Layer->GetPixelRow(0)[5]));
}

TEST(ArtShadow, RadiusTimesScaleAbove250GivesThePictureOf250)
{
    auto Draw = [](double Radius) {
        ownership_pointer<art_bitmap> Layer = Filled(600, 3, Transparent);
        for (int Y = 0; Y < 3; Y++)
            for (int X = 100; X < 300; X++)
                Layer->GetPixelRow(Y)[X] = Pixel(255, 255, 255, 255);
        ShadowOf(point2d(0, 0), Radius, agg::rgba(0, 0, 0, 1), StackModePost)
            ->DrawShadow(*Layer, ownership_pointer<art_bitmap>(), agg::trans_affine_scaling(2));
        return Layer;
    };
    ownership_pointer<art_bitmap> At250 = Draw(125);
    ownership_pointer<art_bitmap> Below = Draw(120);
    EXPECT_FALSE(SameBitmaps(*At250, *Below));
    for (double Radius : {126.0, 500.0}) {
        ownership_pointer<art_bitmap> Capped = Draw(Radius);
        EXPECT_TRUE(SameBitmaps(*At250, *Capped)) << Radius;
    }
}

TEST(ArtShadow, AnInnerShadowWithNoOffsetAndNoRadiusShowsNothing)
{
    ownership_pointer<art_object> Plain = ShadowedGroup(new art_rectangle_shape, point2d(5, 4), point2d(20, 10),
                                                        agg::rgba(0, 1, 0, 1), ownership_pointer<art_shadow>());
    ownership_pointer<art_object> Shaded = ShadowedGroup(new art_rectangle_shape, point2d(5, 4), point2d(20, 10),
                                                         agg::rgba(0, 1, 0, 1),
                                                         ShadowOf(point2d(0, 0), 0, agg::rgba(1, 0, 0, 1)));
    ownership_pointer<art_bitmap> Want = DrawAlone(*Plain, 30, 20);
    ownership_pointer<art_bitmap> Got = DrawAlone(*Shaded, 30, 20);
    EXPECT_TRUE(PixelsAre(*Got, [](int X, int Y) { return Inside(X, Y, 5, 4, 25, 14) ? OpaqueGreen : Transparent; }));
    EXPECT_TRUE(SameBitmaps(*Got, *Want));
}

TEST(ArtShadow, AnInnerShadowOfAnObjectAcrossTheTargetsCornerShadesOnlyInsideTheShape)
{
    // The rectangle runs from (-4, -3) to (16, 9); its shade, offset (6, 5), covers the first 6
    // columns and 5 rows of the shape, of which columns and rows 0 and 1 of the target show.
    auto Make = [](point2d Location) {
        return ShadowedGroup(new art_rectangle_shape, Location, point2d(20, 12), agg::rgba(0, 1, 0, 1),
                             ShadowOf(point2d(6, 5), 0, HalfRed));
    };
    ownership_pointer<art_object> Crossing = Make(point2d(-4, -3));
    ownership_pointer<art_bitmap> Got = DrawAlone(*Crossing, 30, 20);
    EXPECT_TRUE(PixelsAre(*Got, [](int X, int Y) {
        if (!Inside(X, Y, 0, 0, 16, 9))
            return Transparent;
        return X < 2 || Y < 2 ? ShadeOverGreen : OpaqueGreen;
    }));
    // The same object wholly on a larger target, moved by (10, 10).
    ownership_pointer<art_object> Whole = Make(point2d(6, 7));
    ownership_pointer<art_bitmap> Want = DrawAlone(*Whole, 40, 30);
    EXPECT_TRUE(PixelsAre(*Got, [&](int X, int Y) { return Want->GetPixelRow(Y + 10)[X + 10]; }));
    EXPECT_EQ(PixelText(ShadeOverGreen), PixelText(Want->GetPixelRow(7)[6]));
    EXPECT_EQ(PixelText(OpaqueGreen), PixelText(Want->GetPixelRow(12)[12]));
}

TEST(ArtShadow, ADropShadowOfAnEllipseFallsBeyondTheFrame)
{
    // A blue ellipse 20 by 12 at (5, 5), its post shadow offset by (6, 4) in black at half, over a
    // grey background.
    const agg::rgba8 Background = Pixel(90, 90, 90, 255);
    ownership_pointer<art_object> Group =
        ShadowedGroup(new art_ellipse_shape, point2d(5, 5), point2d(20, 12), agg::rgba(0, 0, 1, 1),
                      ShadowOf(point2d(6, 4), 0, agg::rgba(0, 0, 0, 0.5), StackModePost));
    ownership_pointer<art_bitmap> Got = Filled(40, 30, Background);
    reference_pointer<bitmap_interface> Target(Got.Get());
    Group->Draw(Target, Target, agg::trans_affine(), reference_pointer<art_cache>());

    ownership_pointer<art_bitmap> Stencil = Filled(40, 30, Black);
    ownership_pointer<art_stencil_shape> Shape = art_shape_test::MakeStencil(new art_ellipse_shape, 20, 12);
    reference_pointer<bitmap_interface> StencilTarget(Stencil.Get());
    Shape->Draw(StencilTarget, StencilTarget, agg::trans_affine_translation(5, 5), reference_pointer<art_cache>());
    auto LayerAt = [&](int X, int Y) {
        if (X < 0 || Y < 0)
            return Transparent;
        return Masked(Pixel(0, 0, 255, 255), Stencil->GetPixelRow(Y)[X]);
    };
    EXPECT_TRUE(PixelsAre(*Got, [&](int X, int Y) {
        agg::rgba8 Layer = BlackUnder(LayerAt(X, Y), LayerAt(X - 6, Y - 4).a, 128);
        return Over(Background, Layer, 255);
    }));
    // Beyond the frame's right edge, x 25 on, the shade of the ellipse's inside shows.
    EXPECT_EQ(PixelText(Over(Background, Pixel(0, 0, 0, 128), 255)), PixelText(Got->GetPixelRow(14)[29]));
}

TEST(ArtShadow, AnInnerShadowWithoutAStencilFailsTheAssertion)
{
    ownership_pointer<art_bitmap> Layer = Filled(4, 4, OpaqueGreen);
    ownership_pointer<art_shadow> Shadow = ShadowOf(point2d(1, 1), 0, HalfRed);
    EXPECT_NE(std::string::npos,
              ZEL_ERROR_MESSAGE(Shadow->DrawShadow(*Layer, ownership_pointer<art_bitmap>(), agg::trans_affine()))
                  .find("'Pointer!=NULL' is false"));
    // An owner with no stencil child has none to give.
    ownership_pointer<art_object> Group(new art_object);
    Place(*Group, point2d(0, 0), point2d(4, 4));
    Group->AddChild(ownership_pointer<art_object>(ShadowOf(point2d(1, 1), 0, HalfRed)));
    EXPECT_NE(std::string::npos, ZEL_ERROR_MESSAGE(DrawAlone(*Group, 4, 4)).find("'Pointer!=NULL' is false"));
}

TEST(ArtShadow, ATargetThatIsNoArtBitmapFailsTheAssertion)
{
    ownership_pointer<art_shadow> Shadow = ShadowOf(point2d(1, 1), 0, HalfRed, StackModePost);
    reference_pointer<bitmap_interface> Nothing;
    EXPECT_NE(std::string::npos,
              ZEL_ERROR_MESSAGE(Shadow->Draw(Nothing, Nothing, agg::trans_affine(), reference_pointer<art_cache>()))
                  .find("'IsSet()' is false"));
}

TEST(ArtShadow, AColourAlphaOutsideZeroToOneFailsTheOpacityAssertion)
{
    for (double Alpha : {1.5, -0.5}) {
        ownership_pointer<art_bitmap> Layer = Filled(4, 4, OpaqueGreen);
        ownership_pointer<art_shadow> Shadow = ShadowOf(point2d(1, 1), 0, agg::rgba(0, 0, 0, Alpha), StackModePost);
        EXPECT_NE(std::string::npos,
                  ZEL_ERROR_MESSAGE(Shadow->DrawShadow(*Layer, ownership_pointer<art_bitmap>(), agg::trans_affine()))
                      .find("'IntOpacity>=0 && IntOpacity <256' is false"))
            << Alpha;
    }
}

TEST(ArtShadow, TheRedrawReachGoesTowardsTheOffsetThenByTheRadius)
{
    ownership_pointer<art_shadow> Shadow = ShadowOf(point2d(2, -1.5), 0.5, HalfRed);
    rectangle Rect(point2d(10, 20), point2d(30, 40));
    Shadow->ExpandRedrawRect(Rect, agg::trans_affine_scaling(2, 1));
    // Factor 2: the offset (4, -3) stretches the rectangle to (10, 17) and (34, 43); the radius 1
    // adds a pixel all round.
    EXPECT_TRUE(SameRectangle(rectangle(point2d(9, 16), point2d(36, 45)), Rect));
}

TEST(ArtShadow, TheDrawWindowTakesInWhereTheShadeComesFromThenTheRadius)
{
    ownership_pointer<art_shadow> Shadow = ShadowOf(point2d(2.2, -1.5), 1, HalfRed);
    rectangle Window(point2d(10, 20), point2d(30, 40));
    Shadow->ExpandDrawWindow(Window, agg::trans_affine_scaling(2));
    // The negated offset in pixels is (-4.4, 3): 5 more on the left, 3 more below; then 2 all round.
    EXPECT_TRUE(SameRectangle(rectangle(point2d(3, 18), point2d(39, 47)), Window));
}

TEST(ArtShadow, AnOffsetThatIsNoNumberFailsTheDrawWindowAssertion)
{
    ownership_pointer<art_shadow> Shadow = ShadowOf(point2d(std::nan(""), 1), 0, HalfRed);
    rectangle Window(point2d(0, 0), point2d(10, 10));
    EXPECT_NE(std::string::npos, ZEL_ERROR_MESSAGE(Shadow->ExpandDrawWindow(Window, agg::trans_affine()))
                                     .find("'AbsTSO.X>=0 && AbsTSO.Y>=0' is false"));
}

TEST(ArtShadow, ANewOffsetAcrossTheFrameRedrawsTheOldReachAndTheNew)
{
    test_top_object Top;
    Top.SetSize(point2d(60, 40));
    reference_pointer<art_object> Group = AddGroup(Top, point2d(10, 10), point2d(20, 10));
    Group->AddChild(ownership_pointer<art_object>(art_shape_test::MakeStencil(new art_rectangle_shape, 20, 10)));
    reference_pointer<art_shadow> Shadow =
        Group->AddChild(ownership_pointer<art_object>(ShadowOf(point2d(0, 0), 0, HalfRed, StackModePost)))
            .DynamicCast<art_shadow>();
    Top.PaintAll();
    Shadow->SetOffset(point2d(5, -3));
    ASSERT_EQ(2, Top.GetDirtyList().GetNumberOfElements());
    // The frame (10, 10) to (30, 20) as it was, then stretched to (10, 7) to (35, 20); each grown by 1.
    EXPECT_EQ(int_rectangle(int_point2d(9, 9), int_point2d(22, 12)), Top.GetDirtyList()[0]);
    EXPECT_EQ(int_rectangle(int_point2d(9, 6), int_point2d(27, 15)), Top.GetDirtyList()[1]);
    Top.PaintAll();
    Shadow->SetOffset(point2d(5, -3));
    EXPECT_EQ(0, Top.GetDirtyList().GetNumberOfElements());
    // The handle sets the offset too; the weight and the colour redraw the reach as it stands.
    Shadow->SetSpecialControl(0, point2d(-2, 0));
    ASSERT_EQ(2, Top.GetDirtyList().GetNumberOfElements());
    EXPECT_EQ(int_rectangle(int_point2d(7, 9), int_point2d(24, 12)), Top.GetDirtyList()[1]);
    Top.PaintAll();
    Shadow->SetWeight(0.5);
    Shadow->SetColor(agg::rgba(0, 0, 1, 1));
    Shadow->SetColor(agg::rgba(0, 0, 1, 1));
    ASSERT_EQ(3, Top.GetDirtyList().GetNumberOfElements());
    EXPECT_EQ(int_rectangle(int_point2d(7, 9), int_point2d(24, 12)), Top.GetDirtyList()[2]);
    Top.MarkChildrenForDeletion();
    Top.DeleteMarkedChildren();
}

TEST(ArtShadow, TheOneHandleIsTheOffset)
{
    ownership_pointer<art_shadow> Shadow = ShadowOf(point2d(3, 4), 0, HalfRed);
    EXPECT_EQ(1, Shadow->GetSpecialControlCount());
    EXPECT_EQ(point2d(3, 4), Shadow->GetSpecialControl(0));
    Shadow->SetSpecialControl(0, point2d(-1, 2.5));
    EXPECT_EQ(point2d(-1, 2.5), Shadow->GetOffset());
    zel_string Title;
    zel_string Text;
    Shadow->GetHandleTip(Title, Text);
    EXPECT_EQ(zel_string("Shadow Offset"), Title);
    EXPECT_EQ(zel_string("Drag to move"), Text);
    EXPECT_NE(std::string::npos, ZEL_ERROR_MESSAGE(Shadow->GetSpecialControl(1)).find("'false' is false"));
    EXPECT_NE(std::string::npos,
              ZEL_ERROR_MESSAGE(Shadow->SetSpecialControl(1, point2d(0, 0))).find("'false' is false"));
}

TEST(ArtShadow, AttributesAreReadAndWrittenOnlyWhenNotTheDefault)
{
    parsed Parsed("<art_shadow radius=\"2\" offset=\"(3,-1.5)\" weight=\"0.25\" color=\"ff000080\" "
                  "stack_mode=\"post\"/>");
    ownership_pointer<art_object> Loaded = art_object_factory::GetFactory()->Make(Parsed.Tag());
    reference_pointer<art_shadow> Shadow = reference_pointer<art_object>(Loaded.Get()).DynamicCast<art_shadow>();
    ASSERT_TRUE(Shadow.IsSet());
    EXPECT_EQ(2.0, Shadow->GetRadius());
    EXPECT_EQ(point2d(3, -1.5), Shadow->GetOffset());
    EXPECT_EQ(0.25, Shadow->GetWeight());
    EXPECT_EQ(1.0, Shadow->GetColor().r);
    EXPECT_EQ(0.0, Shadow->GetColor().g);
    EXPECT_EQ(128 * 0.00392156862745098, Shadow->GetColor().a);
    EXPECT_EQ(StackModePost, Shadow->GetStackMode());
    EXPECT_EQ("<art_shadow stack_mode=\"post\" radius=\"2\" offset=\"(3,-1.5)\" weight=\"0.25\" color=\"ff000080\">"
              "</art_shadow>",
              Written(*Shadow));
}

TEST(ArtShadow, WithoutAttributesTheDefaultsHoldAndAreNotWritten)
{
    parsed Parsed("<art_shadow/>");
    ownership_pointer<art_object> Loaded = art_object_factory::GetFactory()->Make(Parsed.Tag());
    reference_pointer<art_shadow> Shadow = reference_pointer<art_object>(Loaded.Get()).DynamicCast<art_shadow>();
    ASSERT_TRUE(Shadow.IsSet());
    EXPECT_EQ(0.0, Shadow->GetRadius());
    EXPECT_EQ(point2d(0, 0), Shadow->GetOffset());
    EXPECT_EQ(0.0, Shadow->GetWeight());
    agg::rgba Color = Shadow->GetColor();
    EXPECT_EQ(0.0, Color.r);
    EXPECT_EQ(0.0, Color.g);
    EXPECT_EQ(0.0, Color.b);
    EXPECT_EQ(0.333, Color.a);
    EXPECT_EQ(StackModeNormal, Shadow->GetStackMode());
    EXPECT_EQ("<art_shadow></art_shadow>", Written(*Shadow));
    art_shadow Fresh;
    EXPECT_EQ(0.333, Fresh.GetColor().a);
    EXPECT_EQ("<art_shadow></art_shadow>", Written(Fresh));
}

TEST(ArtShadow, DuplicateCopiesEveryField)
{
    ownership_pointer<art_shadow> Shadow = ShadowOf(point2d(3, -2), 1.5, agg::rgba(0.25, 0.5, 0.75, 0.5),
                                                    StackModePost, 0.75);
    ownership_pointer<art_object> Copy = Shadow->Duplicate();
    reference_pointer<art_shadow> Twin = reference_pointer<art_object>(Copy.Get()).DynamicCast<art_shadow>();
    ASSERT_TRUE(Twin.IsSet());
    EXPECT_NE(static_cast<art_object *>(Shadow.Get()), Copy.Get());
    EXPECT_EQ(point2d(3, -2), Twin->GetOffset());
    EXPECT_EQ(1.5, Twin->GetRadius());
    EXPECT_EQ(0.75, Twin->GetWeight());
    EXPECT_EQ(0.25, Twin->GetColor().r);
    EXPECT_EQ(0.5, Twin->GetColor().g);
    EXPECT_EQ(0.75, Twin->GetColor().b);
    EXPECT_EQ(0.5, Twin->GetColor().a);
    EXPECT_EQ(StackModePost, Twin->GetStackMode());
    EXPECT_EQ(Written(*Shadow), Written(*Twin));
}

TEST(ArtShadow, NamesItself)
{
    art_shadow Shadow;
    EXPECT_EQ(zel_string("art_shadow"), Shadow.GetTagName());
    EXPECT_EQ(zel_string("Shadow"), Shadow.GetTypeLabel());
    EXPECT_EQ(zel_string("Effect"), Shadow.GetEffectKind());
    EXPECT_TRUE(Shadow.IsFilterEffect());
    EXPECT_FALSE(Shadow.CanHaveChildren());
}
