#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "art_engine/effects/art_color_blur.h"
#include "art_engine/objects/art_object_factory.h"
#include "art_engine/pixels/art_stack_blur.h"
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

reference_pointer<art_bitmap> Ref(ownership_pointer<art_bitmap> &Bitmap)
{
    return reference_pointer<art_bitmap>(Bitmap.Get());
}

// Whether only the bytes of the given channels differ between the two.
testing::AssertionResult SameChannels(art_bitmap &A, art_bitmap &B, bool Color, bool Alpha)
{
    for (int Y = 0; Y < A.GetSize().Y; Y++)
        for (int X = 0; X < A.GetSize().X; X++) {
            agg::rgba8 P = A.GetPixelRow(Y)[X];
            agg::rgba8 Q = B.GetPixelRow(Y)[X];
            bool ColorSame = P.r == Q.r && P.g == Q.g && P.b == Q.b;
            if ((Color && !ColorSame) || (Alpha && P.a != Q.a))
                return testing::AssertionFailure() << "at (" << X << ", " << Y << ") " << PixelText(P) << " against "
                                                   << PixelText(Q);
        }
    return testing::AssertionSuccess();
}

// A layer with a hard-edged square of premultiplied colour in it, the rest transparent.
ownership_pointer<art_bitmap> SquareLayer(int W, int H)
{
    ownership_pointer<art_bitmap> Layer(new art_bitmap(W, H));
    Layer->Clear(Transparent);
    for (int Y = H / 4; Y < 3 * H / 4; Y++)
        for (int X = W / 4; X < 3 * W / 4; X++)
            Layer->GetPixelRow(Y)[X] = Pixel(200, 100, 50, 255);
    return Layer;
}

ownership_pointer<art_color_blur> BlurOf(double Radius, art_stack_mode Mode = StackModeNormal)
{
    ownership_pointer<art_color_blur> Blur(new art_color_blur);
    Blur->SetRadius(Radius);
    Blur->SetStackMode(Mode);
    return Blur;
}

// What the blur object does to Layer when drawn through Matrix.
void DrawBlur(art_color_blur &Blur, art_bitmap &Layer, agg::trans_affine Matrix = agg::trans_affine())
{
    reference_pointer<bitmap_interface> Target(&Layer);
    Blur.Draw(Target, Target, Matrix, reference_pointer<art_cache>());
}

bool SameRectangle(const rectangle &A, const rectangle &B)
{
    return A.Location == B.Location && A.Size == B.Size;
}

} // namespace

TEST(ArtStackBlur, ColourOfRadius0_1_7And60IsThePlainSumAndAlphaStays)
{
    for (unsigned R : {0u, 1u, 7u, 60u}) {
        ownership_pointer<art_bitmap> Got = NoiseBitmap(80, 50);
        ownership_pointer<art_bitmap> Want = CopyOf(*Got);
        BlurColor(Ref(Got), R);
        PlainBlurColor(*Want, R);
        EXPECT_TRUE(SameBitmaps(*Got, *Want)) << R;
    }
}

TEST(ArtStackBlur, AlphaOfRadius0_1_7And60IsThePlainSumAndColourStays)
{
    for (unsigned R : {0u, 1u, 7u, 60u}) {
        ownership_pointer<art_bitmap> Got = NoiseBitmap(80, 50);
        ownership_pointer<art_bitmap> Want = CopyOf(*Got);
        BlurAlpha(Ref(Got), R);
        PlainBlurAlpha(*Want, R);
        EXPECT_TRUE(SameBitmaps(*Got, *Want)) << R;
    }
}

TEST(ArtStackBlur, ABlurChangesThePicture)
{
    ownership_pointer<art_bitmap> Got = NoiseBitmap(20, 10);
    ownership_pointer<art_bitmap> Before = CopyOf(*Got);
    BlurColor(Ref(Got), 2);
    EXPECT_FALSE(SameChannels(*Got, *Before, true, false));
    EXPECT_TRUE(SameChannels(*Got, *Before, false, true));
    BlurAlpha(Ref(Got), 2);
    EXPECT_FALSE(SameChannels(*Got, *Before, false, true));
}

TEST(ArtStackBlur, ALineShorterThanTheRadiusRepeatsItsEndPixels)
{
    ownership_pointer<art_bitmap> Got = NoiseBitmap(3, 2);
    ownership_pointer<art_bitmap> Want = CopyOf(*Got);
    BlurColor(Ref(Got), 7);
    BlurAlpha(Ref(Got), 7);
    PlainBlurColor(*Want, 7);
    PlainBlurAlpha(*Want, 7);
    EXPECT_TRUE(SameBitmaps(*Got, *Want));
}

TEST(ArtStackBlur, OneRowOfTwoPixelsByHand)
{
    // Radius 1: weights 1, 2, 1 over the row with its ends repeated, times 512 >> 11, a quarter,
    // for a sum of weight 4. Row 0 and 40: 0 * 3 + 40 = 40 -> 10; 0 + 40 * 3 = 120 -> 30. The one row
    // repeats in the column pass: 10 * 4 -> 10 and 30 * 4 -> 30.
    ownership_pointer<art_bitmap> Bitmap(new art_bitmap(2, 1));
    Bitmap->GetPixelRow(0)[0] = Pixel(0, 0, 0, 0);
    Bitmap->GetPixelRow(0)[1] = Pixel(40, 40, 40, 40);
    BlurColor(Ref(Bitmap), 1);
    EXPECT_EQ(PixelText(Pixel(10, 10, 10, 0)), PixelText(Bitmap->GetPixelRow(0)[0]));
    EXPECT_EQ(PixelText(Pixel(30, 30, 30, 40)), PixelText(Bitmap->GetPixelRow(0)[1]));
}

TEST(ArtStackBlur, TheColourRadiusIsRoundedHalfUp)
{
    for (double Radius : {1.49, 1.5, 2.5, 0.5, 0.49}) {
        ownership_pointer<art_bitmap> Got = NoiseBitmap(30, 20);
        ownership_pointer<art_bitmap> Want = CopyOf(*Got);
        BlurColor(Ref(Got), Radius);
        PlainBlurColor(*Want, static_cast<unsigned>(Radius + 0.5));
        EXPECT_TRUE(SameBitmaps(*Got, *Want)) << Radius;
    }
}

TEST(ArtStackBlur, TheAlphaRadiusIsRoundedHalfUpAndLimitedTo253)
{
    for (double Radius : {2.5, 2.49, 252.6, 253.0, 253.9, 300.0}) {
        ownership_pointer<art_bitmap> Got = NoiseBitmap(12, 9);
        ownership_pointer<art_bitmap> Want = CopyOf(*Got);
        BlurAlpha(Ref(Got), Radius);
        PlainBlurAlpha(*Want, static_cast<unsigned>((Radius < 253 ? Radius : 253) + 0.5));
        EXPECT_TRUE(SameBitmaps(*Got, *Want)) << Radius;
    }
}

TEST(ArtStackBlur, TheColourFrom253UpIsTheSameSumLimitedTo254AndAlphaStays)
{
    for (double Radius : {252.4, 252.5, 253.0, 254.0, 254.6, 1000.0}) {
        ownership_pointer<art_bitmap> Got = NoiseBitmap(14, 11);
        ownership_pointer<art_bitmap> Want = CopyOf(*Got);
        BlurColor(Ref(Got), Radius);
        unsigned Rounded = static_cast<unsigned>(Radius + 0.5);
        PlainBlurColor(*Want, Rounded > 254 ? 254 : Rounded);
        EXPECT_TRUE(SameBitmaps(*Got, *Want)) << Radius;
    }
}

TEST(ArtStackBlur, ARadiusNotAbove0DoesNothing)
{
    for (double Radius : {0.0, -1.0, -300.0, std::nan("")}) {
        ownership_pointer<art_bitmap> Got = NoiseBitmap(10, 10);
        ownership_pointer<art_bitmap> Want = CopyOf(*Got);
        BlurColor(Ref(Got), Radius);
        BlurAlpha(Ref(Got), Radius);
        EXPECT_TRUE(SameBitmaps(*Got, *Want)) << Radius;
    }
}

TEST(ArtStackBlur, AnEmptyBitmapIsLeftAlone)
{
    for (int W : {0, 3})
        for (int H : {0, 3}) {
            if (W != 0 && H != 0)
                continue;
            ownership_pointer<art_bitmap> Empty(new art_bitmap(W, H));
            BlurColor(Ref(Empty), 5);
            BlurAlpha(Ref(Empty), 5);
            EXPECT_EQ(int_point2d(W, H), Empty->GetSize());
        }
}

TEST(ArtStackBlur, AnUnsetBitmapFailsTheAssertion)
{
    reference_pointer<art_bitmap> Nothing;
    EXPECT_NE(std::string::npos, ZEL_ERROR_MESSAGE(BlurColor(Nothing, 3)).find("'IsSet()' is false"));
    EXPECT_NE(std::string::npos, ZEL_ERROR_MESSAGE(BlurAlpha(Nothing, 3)).find("'IsSet()' is false"));
}

TEST(ArtStackBlur, AViewIsBlurredAsAPictureOfItsOwnAndTheRestStays)
{
    ownership_pointer<art_bitmap> Whole = NoiseBitmap(30, 20);
    ownership_pointer<art_bitmap> Before = CopyOf(*Whole);
    int_rectangle Part(int_point2d(5, 4), int_point2d(12, 9));
    ownership_pointer<art_bitmap> Want(new art_bitmap(12, 9));
    Want->CopyBitmap(0, 0, Ref(Whole), Part);
    PlainBlurColor(*Want, 3);
    PlainBlurAlpha(*Want, 3);
    {
        ownership_pointer<art_bitmap> View(new art_bitmap(Ref(Whole), Part));
        BlurColor(Ref(View), 3);
        BlurAlpha(Ref(View), 3);
        EXPECT_TRUE(SameBitmaps(*View, *Want));
    }
    EXPECT_TRUE(PixelsAre(*Whole, [&](int X, int Y) {
        return Inside(X, Y, 5, 4, 17, 13) ? Want->GetPixelRow(Y - 4)[X - 5] : Before->GetPixelRow(Y)[X];
    }));
}

TEST(ArtColorBlur, RadiusZeroLeavesTheLayerUntouched)
{
    ownership_pointer<art_color_blur> Blur = BlurOf(0);
    ownership_pointer<art_bitmap> Layer = SquareLayer(16, 12);
    ownership_pointer<art_bitmap> Before = CopyOf(*Layer);
    DrawBlur(*Blur, *Layer, agg::trans_affine_scaling(10));
    EXPECT_TRUE(SameBitmaps(*Layer, *Before));
}

TEST(ArtColorBlur, ARadiusBelowHalfAPixelAfterScalingLeavesTheLayerUntouched)
{
    // 0.3 at a scale of 1.5 is 0.45 pixels, which rounds to 0.
    ownership_pointer<art_color_blur> Blur = BlurOf(0.3);
    ownership_pointer<art_bitmap> Layer = SquareLayer(16, 12);
    ownership_pointer<art_bitmap> Before = CopyOf(*Layer);
    DrawBlur(*Blur, *Layer, agg::trans_affine_scaling(1.5));
    EXPECT_TRUE(SameBitmaps(*Layer, *Before));
    // 0.34 at the same scale is 0.51 pixels: radius 1.
    Blur->SetRadius(0.34);
    DrawBlur(*Blur, *Layer, agg::trans_affine_scaling(1.5));
    PlainBlurColor(*Before, 1);
    PlainBlurAlpha(*Before, 1);
    EXPECT_TRUE(SameBitmaps(*Layer, *Before));
}

TEST(ArtColorBlur, TheScaledRadiusIsTheLargerAxisRoundedHalfAwayFromZero)
{
    // Axis lengths 1 and 2.5 after a turn: 1 * 2.5 = 2.5 rounds to 3.
    agg::trans_affine Matrix = agg::trans_affine_scaling(1, 2.5);
    Matrix *= agg::trans_affine_rotation(0.3);
    ownership_pointer<art_color_blur> Blur = BlurOf(1);
    ownership_pointer<art_bitmap> Layer = SquareLayer(20, 16);
    ownership_pointer<art_bitmap> Want = CopyOf(*Layer);
    DrawBlur(*Blur, *Layer, Matrix);
    PlainBlurColor(*Want, 3);
    PlainBlurAlpha(*Want, 3);
    EXPECT_TRUE(SameBitmaps(*Layer, *Want));
}

TEST(ArtColorBlur, RadiusTimesScaleAbove250GivesThePictureOf250)
{
    ownership_pointer<art_bitmap> Original = NoiseBitmap(600, 3);
    ownership_pointer<art_bitmap> At250 = CopyOf(*Original);
    PlainBlurColor(*At250, 250);
    PlainBlurAlpha(*At250, 250);
    ownership_pointer<art_bitmap> At254 = CopyOf(*Original);
    PlainBlurColor(*At254, 254);
    PlainBlurAlpha(*At254, 254);
    ASSERT_FALSE(SameBitmaps(*At250, *At254));
    for (double Radius : {125.5, 200.0, 1000.0}) {
        ownership_pointer<art_color_blur> Blur = BlurOf(Radius);
        ownership_pointer<art_bitmap> Layer = CopyOf(*Original);
        DrawBlur(*Blur, *Layer, agg::trans_affine_scaling(2));
        EXPECT_TRUE(SameBitmaps(*Layer, *At250)) << Radius;
    }
}

TEST(ArtColorBlur, InAPlusStencilLayerOnlyTheColoursChangeAndAlphaKeepsItsHardEdge)
{
    ownership_pointer<art_color_blur> Blur = BlurOf(3, StackModePlusStencil);
    ownership_pointer<art_bitmap> Layer = SquareLayer(20, 16);
    ownership_pointer<art_bitmap> Want = CopyOf(*Layer);
    DrawBlur(*Blur, *Layer);
    PlainBlurColor(*Want, 3);
    EXPECT_TRUE(SameBitmaps(*Layer, *Want));
    // Alpha is still 255 inside the square and 0 outside.
    EXPECT_TRUE(PixelsAre(*Layer, [&](int X, int Y) {
        agg::rgba8 P = Layer->GetPixelRow(Y)[X];
        P.a = Inside(X, Y, 5, 4, 15, 12) ? 255 : 0;
        return P;
    }));
}

TEST(ArtColorBlur, StencilModesBlurColoursOnlyNormalAndPostBlurAlphaToo)
{
    struct mode_case
    {
        art_stack_mode Mode;
        bool Alpha;
    };
    for (mode_case Case : {mode_case{StackModeNormal, true}, mode_case{StackModePost, true},
                           mode_case{StackModeStencil, false}, mode_case{StackModePlusStencil, false},
                           mode_case{StackModeMinusStencil, false}}) {
        ownership_pointer<art_color_blur> Blur = BlurOf(2, Case.Mode);
        ownership_pointer<art_bitmap> Layer = NoiseBitmap(15, 10);
        ownership_pointer<art_bitmap> Want = CopyOf(*Layer);
        DrawBlur(*Blur, *Layer);
        PlainBlurColor(*Want, 2);
        if (Case.Alpha)
            PlainBlurAlpha(*Want, 2);
        EXPECT_TRUE(SameBitmaps(*Layer, *Want)) << Case.Mode;
    }
}

TEST(ArtColorBlur, ATargetThatIsNoArtBitmapFailsTheAssertion)
{
    ownership_pointer<art_color_blur> Blur = BlurOf(2);
    reference_pointer<bitmap_interface> Nothing;
    EXPECT_NE(std::string::npos,
              ZEL_ERROR_MESSAGE(Blur->Draw(Nothing, Nothing, agg::trans_affine(), reference_pointer<art_cache>()))
                  .find("'IsSet()' is false"));
}

TEST(ArtColorBlur, TheReachOfARedrawIsTheRadiusAtTheLargerScale)
{
    ownership_pointer<art_color_blur> Blur = BlurOf(1.5);
    rectangle Rect(point2d(10, 20), point2d(30, 40));
    Blur->ExpandRedrawRect(Rect, agg::trans_affine_scaling(2, 3));
    // 1.5 * 3 = 4.5 on every side.
    EXPECT_TRUE(SameRectangle(rectangle(point2d(5.5, 15.5), point2d(39, 49)), Rect));
    for (double Radius : {0.0, -2.0}) {
        Blur->SetRadius(Radius);
        rectangle Same(point2d(10, 20), point2d(30, 40));
        Blur->ExpandRedrawRect(Same, agg::trans_affine_scaling(2, 3));
        EXPECT_TRUE(SameRectangle(rectangle(point2d(10, 20), point2d(30, 40)), Same)) << Radius;
    }
}

TEST(ArtColorBlur, TheDrawWindowGrowsByTheScaledRadiusRoundedUp)
{
    ownership_pointer<art_color_blur> Blur = BlurOf(1.1);
    rectangle Window(point2d(10, 20), point2d(30, 40));
    Blur->ExpandDrawWindow(Window, agg::trans_affine_scaling(2, 1));
    // ceil(2.2) = 3.
    EXPECT_TRUE(SameRectangle(rectangle(point2d(7, 17), point2d(36, 46)), Window));
    Blur->SetRadius(0);
    rectangle Same(point2d(10, 20), point2d(30, 40));
    Blur->ExpandDrawWindow(Same, agg::trans_affine_scaling(2, 1));
    EXPECT_TRUE(SameRectangle(rectangle(point2d(10, 20), point2d(30, 40)), Same));
}

TEST(ArtColorBlur, MarginsStopAtTheTwoHundredAndFiftyPixelsTheBlurReaches)
{
    for (double Radius : {200.0, 1e12, HUGE_VAL}) {
        ownership_pointer<art_color_blur> Blur = BlurOf(Radius);
        rectangle Window(point2d(10, 20), point2d(30, 40));
        Blur->ExpandDrawWindow(Window, agg::trans_affine_scaling(2, 1));
        // 200 at scale 2 is 400 pixels, more than the blur reaches: 250.
        EXPECT_TRUE(SameRectangle(rectangle(point2d(-240, -230), point2d(530, 540)), Window)) << Radius;
        rectangle Rect(point2d(10, 20), point2d(30, 40));
        Blur->ExpandRedrawRect(Rect, agg::trans_affine_scaling(2, 1));
        EXPECT_TRUE(SameRectangle(rectangle(point2d(-240, -230), point2d(530, 540)), Rect)) << Radius;
    }
}

TEST(ArtColorBlur, TheDrawBoundsOfItsOwnerTakeInTheReach)
{
    ownership_pointer<art_object> Group(new art_object);
    Place(*Group, point2d(0, 0), point2d(20, 10));
    Group->AddChild(ownership_pointer<art_object>(art_shape_test::MakeStencil(new art_rectangle_shape, 20, 10)));
    Group->AddChild(ownership_pointer<art_object>(BlurOf(2.5)));
    // The box (0, 0) to (40, 10), 2.5 * 2 = 5 more all round.
    EXPECT_TRUE(SameRectangle(rectangle(point2d(-5, -5), point2d(50, 20)),
                              Group->GetDrawBounds(agg::trans_affine_scaling(2, 1))));
}

TEST(ArtColorBlur, ANewRadiusRedrawsTheOldReachAndTheNew)
{
    test_top_object Top;
    Top.SetSize(point2d(60, 40));
    Top.PaintAll();
    reference_pointer<art_object> Group = AddGroup(Top, point2d(10, 10), point2d(20, 10));
    Group->AddChild(ownership_pointer<art_object>(art_shape_test::MakeStencil(new art_rectangle_shape, 20, 10)));
    reference_pointer<art_color_blur> Blur =
        Group->AddChild(ownership_pointer<art_object>(BlurOf(1))).DynamicCast<art_color_blur>();
    Top.PaintAll();
    Blur->SetRadius(1);
    EXPECT_EQ(0, Top.GetDirtyList().GetNumberOfElements());
    Blur->SetRadius(3);
    ASSERT_EQ(2, Top.GetDirtyList().GetNumberOfElements());
    // The frame (10, 10) to (30, 20), grown by the old radius 1 and by the new 3, then by 1 pixel.
    EXPECT_EQ(int_rectangle(int_point2d(8, 8), int_point2d(24, 14)), Top.GetDirtyList()[0]);
    EXPECT_EQ(int_rectangle(int_point2d(6, 6), int_point2d(28, 18)), Top.GetDirtyList()[1]);
    Top.MarkChildrenForDeletion();
    Top.DeleteMarkedChildren();
}

TEST(ArtColorBlur, InAStencilledEllipseTheBlurredContentIsMasked)
{
    // A red box inside an ellipse 30 by 20 at (5, 5), blurred by 2, over a dark blue background.
    ownership_pointer<art_object> Group(new art_object);
    Place(*Group, point2d(5, 5), point2d(30, 20));
    Group->AddChild(ownership_pointer<art_object>(art_shape_test::MakeStencil(new art_ellipse_shape, 30, 20)));
    AddFill(*Group, point2d(8, 6), point2d(10, 8), Red);
    Group->AddChild(ownership_pointer<art_object>(BlurOf(2)));
    const agg::rgba8 Background = Pixel(0, 0, 80, 255);
    ownership_pointer<art_bitmap> Got(new art_bitmap(40, 30));
    Got->Clear(Background);
    reference_pointer<bitmap_interface> Target(Got.Get());
    Group->Draw(Target, Target, agg::trans_affine(), reference_pointer<art_cache>());

    // The content alone, far from every edge, blurred the slow way.
    ownership_pointer<art_bitmap> Content(new art_bitmap(40, 30));
    Content->Clear(Transparent);
    for (int Y = 11; Y < 19; Y++)
        for (int X = 13; X < 23; X++)
            Content->GetPixelRow(Y)[X] = Red;
    PlainBlurColor(*Content, 2);
    PlainBlurAlpha(*Content, 2);
    // The mask: the ellipse drawn alone on black.
    ownership_pointer<art_bitmap> Stencil(new art_bitmap(40, 30));
    Stencil->Clear(Black);
    ownership_pointer<art_stencil_shape> Shape = art_shape_test::MakeStencil(new art_ellipse_shape, 30, 20);
    reference_pointer<bitmap_interface> StencilTarget(Stencil.Get());
    Shape->Draw(StencilTarget, StencilTarget, agg::trans_affine_translation(5, 5), reference_pointer<art_cache>());
    EXPECT_TRUE(PixelsAre(*Got, [&](int X, int Y) {
        return Over(Background, Masked(Content->GetPixelRow(Y)[X], Stencil->GetPixelRow(Y)[X]), 255);
    }));
    // The blur reaches past the box, and not past the ellipse.
    EXPECT_NE(PixelText(Background), PixelText(Got->GetPixelRow(15)[24]));
    EXPECT_EQ(PixelText(Background), PixelText(Got->GetPixelRow(5)[5]));
}

TEST(ArtColorBlur, AnObjectAcrossTheTargetsEdgeIsBlurredWithWhatLiesBeyondIt)
{
    // Stripes of colour across an object that starts 6 pixels left of the target. The part that
    // shows must be what a larger target shows at the same place.
    auto MakeGroup = [](double X) {
        ownership_pointer<art_object> Group(new art_object);
        Place(*Group, point2d(X, 5), point2d(24, 12));
        Group->AddChild(ownership_pointer<art_object>(art_shape_test::MakeStencil(new art_rectangle_shape, 24, 12)));
        const agg::rgba8 Colors[] = {Red, Green, Blue, White};
        for (int I = 0; I < 8; I++)
            AddFill(*Group, point2d(3 * I, 0), point2d(3, 12), Colors[I % 4]);
        Group->AddChild(ownership_pointer<art_object>(BlurOf(4)));
        return Group;
    };
    ownership_pointer<art_object> Crossing = MakeGroup(-6);
    ownership_pointer<art_bitmap> Got = DrawAlone(*Crossing, 30, 24);
    ownership_pointer<art_object> Whole = MakeGroup(4);
    ownership_pointer<art_bitmap> Want = DrawAlone(*Whole, 40, 24);
    EXPECT_TRUE(PixelsAre(*Got, [&](int X, int Y) { return Want->GetPixelRow(Y)[X + 10]; }));
    // The first column shows a mix, not the plain stripe.
    EXPECT_NE(PixelText(Blue), PixelText(Got->GetPixelRow(10)[0]));
}

TEST(ArtColorBlur, AttributesAreReadWrittenOnlyWhenNotTheDefaultAndDuplicated)
{
    parsed Parsed("<art_blur radius=\"2.5\" stack_mode=\"post\"/>");
    ownership_pointer<art_object> Loaded = art_object_factory::GetFactory()->Make(Parsed.Tag());
    reference_pointer<art_color_blur> Blur = reference_pointer<art_object>(Loaded.Get()).DynamicCast<art_color_blur>();
    ASSERT_TRUE(Blur.IsSet());
    EXPECT_EQ(2.5, Blur->GetRadius());
    EXPECT_EQ(StackModePost, Blur->GetStackMode());
    EXPECT_EQ("<art_blur stack_mode=\"post\" radius=\"2.5\"></art_blur>", Written(*Blur));
    ownership_pointer<art_object> Copy = Blur->Duplicate();
    reference_pointer<art_color_blur> Twin = reference_pointer<art_object>(Copy.Get()).DynamicCast<art_color_blur>();
    ASSERT_TRUE(Twin.IsSet());
    EXPECT_EQ(2.5, Twin->GetRadius());
    EXPECT_EQ(StackModePost, Twin->GetStackMode());

    parsed Bare("<art_blur/>");
    ownership_pointer<art_object> Default = art_object_factory::GetFactory()->Make(Bare.Tag());
    EXPECT_EQ(0.0, reference_pointer<art_object>(Default.Get()).DynamicCast<art_color_blur>()->GetRadius());
    EXPECT_EQ("<art_blur></art_blur>", Written(*Default));
}

TEST(ArtColorBlur, NamesItself)
{
    art_color_blur Blur;
    EXPECT_EQ(zel_string("art_blur"), Blur.GetTagName());
    EXPECT_EQ(zel_string("Blur"), Blur.GetTypeLabel());
    EXPECT_EQ(zel_string("Effect"), Blur.GetEffectKind());
    EXPECT_TRUE(Blur.IsFilterEffect());
    EXPECT_TRUE(Blur.IsLayerObject());
    EXPECT_FALSE(Blur.CanHaveChildren());
}
