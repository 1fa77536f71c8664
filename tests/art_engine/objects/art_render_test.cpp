#include <gtest/gtest.h>

#include <vector>

#include "tests/art_engine/objects/art_render_test_support.h"
#include "tests/test_support.h"

using namespace art_render_test;

namespace {

// A stencilled object of 8 by 6 at the origin, its content red over all of its frame.
struct scene
{
    art_object Root;
    reference_pointer<art_object> Object;

    scene()
    {
        Place(Root, point2d(0, 0), point2d(8, 6));
        Object = AddGroup(Root, point2d(0, 0), point2d(8, 6));
    }
    ownership_pointer<art_bitmap> Draw() { return DrawAlone(Root, 8, 6); }
};

} // namespace

TEST(ArtRender, MinusStencilAloneLeavesTheObjectUnstencilledAndItsContentUnmasked)
{
    scene Scene;
    AddFill(*Scene.Object, point2d(0, 0), point2d(8, 6), Black, StackModeMinusStencil);
    AddFill(*Scene.Object, point2d(0, 0), point2d(8, 6), Red);
    EXPECT_FALSE(Scene.Object->IsStencilled());
    ownership_pointer<art_bitmap> Result = Scene.Draw();
    // A plain group draws its stencil children nowhere at all: only the content shows.
    EXPECT_TRUE(PixelsAre(*Result, [](int, int) { return Red; }));
}

TEST(ArtRender, PlusStencilWithHalfOpacityShowsAtHalfStrength)
{
    scene Scene;
    AddFill(*Scene.Object, point2d(0, 0), point2d(8, 6), White, StackModePlusStencil);
    AddFill(*Scene.Object, point2d(0, 0), point2d(8, 6), Red);
    Scene.Object->SetOpacity(0.5);
    ownership_pointer<art_bitmap> Result = Scene.Draw();
    agg::rgba8 Half = Over(Transparent, Red, 127);
    EXPECT_EQ(PixelText(Pixel(127, 0, 0, 128)), PixelText(Half));
    EXPECT_TRUE(PixelsAre(*Result, [&](int, int) { return Half; }));
}

TEST(ArtRender, OpacityOfAnObjectWithoutStencilIsNotApplied)
{
    scene Scene;
    AddFill(*Scene.Object, point2d(0, 0), point2d(8, 6), Red);
    Scene.Object->SetOpacity(0.5);
    ownership_pointer<art_bitmap> Result = Scene.Draw();
    EXPECT_TRUE(PixelsAre(*Result, [](int, int) { return Red; }));
}

TEST(ArtRender, OpacityJustBelowOneCompositesWith254)
{
    scene Scene;
    AddFill(*Scene.Object, point2d(0, 0), point2d(8, 6), White, StackModePlusStencil);
    AddFill(*Scene.Object, point2d(0, 0), point2d(8, 6), Red);
    Scene.Object->SetOpacity(0.999);
    ownership_pointer<art_bitmap> Result = Scene.Draw();
    agg::rgba8 Want = Over(Pixel(0, 0, 255, 255), Red, 254);
    // Over blue the coverage shows in both lanes: 254 of red and what 254 leaves of blue.
    ownership_pointer<art_bitmap> OverBlue(new art_bitmap(8, 6));
    OverBlue->Clear(Blue);
    reference_pointer<bitmap_interface> Target(OverBlue.Get());
    Scene.Root.Draw(Target, Target, agg::trans_affine(), reference_pointer<art_cache>());
    EXPECT_NE(PixelText(Red), PixelText(Want));
    EXPECT_TRUE(PixelsAre(*OverBlue, [&](int, int) { return Want; }));
    EXPECT_TRUE(PixelsAre(*Result, [&](int, int) { return Over(Transparent, Red, 254); }));
}

TEST(ArtRender, OpacityAboveOneCompositesAsOne)
{
    scene Scene;
    AddFill(*Scene.Object, point2d(0, 0), point2d(8, 6), White, StackModePlusStencil);
    AddFill(*Scene.Object, point2d(0, 0), point2d(8, 6), Red);
    // A document may carry any real as the opacity.
    Scene.Object->SetOpacity(1.5);
    ownership_pointer<art_bitmap> Result = Scene.Draw();
    EXPECT_TRUE(PixelsAre(*Result, [](int, int) { return Red; }));
}

TEST(ArtRender, OpacityBelowZeroCompositesAsZero)
{
    scene Scene;
    AddFill(*Scene.Object, point2d(0, 0), point2d(8, 6), White, StackModePlusStencil);
    AddFill(*Scene.Object, point2d(0, 0), point2d(8, 6), Red);
    Scene.Object->SetOpacity(-0.5);
    ownership_pointer<art_bitmap> Result = Scene.Draw();
    // No colour comes through at an opacity byte of 0, though the alpha complement still raises a
    // transparent target's alpha to 1.
    agg::rgba8 Want = Over(Transparent, Red, 0);
    EXPECT_EQ(PixelText(Pixel(0, 0, 0, 1)), PixelText(Want));
    EXPECT_TRUE(PixelsAre(*Result, [&](int, int) { return Want; }));
}

TEST(ArtRender, OpacityOneCompositesExactly)
{
    scene Scene;
    AddFill(*Scene.Object, point2d(0, 0), point2d(8, 6), White, StackModePlusStencil);
    AddFill(*Scene.Object, point2d(0, 0), point2d(8, 6), Pixel(40, 80, 120, 200));
    ownership_pointer<art_bitmap> Result = Scene.Draw();
    agg::rgba8 Content = Over(Transparent, Pixel(40, 80, 120, 200), 255);
    EXPECT_TRUE(PixelsAre(*Result, [&](int, int) { return Over(Transparent, Content, 255); }));
}

TEST(ArtRender, PostChildOfAnObjectWithoutStencilIsNotDrawn)
{
    scene Scene;
    AddFill(*Scene.Object, point2d(0, 0), point2d(4, 6), Red);
    AddFill(*Scene.Object, point2d(2, 0), point2d(4, 6), Blue, StackModePost);
    ownership_pointer<art_bitmap> Result = Scene.Draw();
    EXPECT_TRUE(PixelsAre(*Result, [](int X, int) { return X < 4 ? Red : Transparent; }));
}

TEST(ArtRender, PostChildOfAStencilledObjectActsOnTheMaskedCompositeAndIsNotMasked)
{
    scene Scene;
    AddFill(*Scene.Object, point2d(0, 0), point2d(4, 6), White, StackModePlusStencil);
    AddFill(*Scene.Object, point2d(0, 0), point2d(8, 6), Red);
    AddFill(*Scene.Object, point2d(2, 0), point2d(4, 6), Pixel(0, 0, 128, 128), StackModePost);
    ownership_pointer<art_bitmap> Result = Scene.Draw();
    EXPECT_TRUE(PixelsAre(*Result, [](int X, int) {
        agg::rgba8 Content = X < 4 ? Red : Transparent;
        return Over(Transparent, X >= 2 && X < 6 ? Over(Content, Pixel(0, 0, 128, 128), 255) : Content, 255);
    }));
}

TEST(ArtRender, PlusStencilThenCoveringMinusStencilLeavesNothing)
{
    scene Scene;
    AddFill(*Scene.Object, point2d(0, 0), point2d(8, 6), White, StackModePlusStencil);
    AddFill(*Scene.Object, point2d(0, 0), point2d(8, 6), Black, StackModeMinusStencil);
    AddFill(*Scene.Object, point2d(0, 0), point2d(8, 6), Red);
    ownership_pointer<art_bitmap> Result = Scene.Draw();
    EXPECT_TRUE(PixelsAre(*Result, [](int, int) { return Transparent; }));
}

TEST(ArtRender, MinusStencilThenPlusStencilLetsThePlusWin)
{
    scene Scene;
    AddFill(*Scene.Object, point2d(0, 0), point2d(8, 6), Black, StackModeMinusStencil);
    AddFill(*Scene.Object, point2d(0, 0), point2d(8, 6), White, StackModePlusStencil);
    AddFill(*Scene.Object, point2d(0, 0), point2d(8, 6), Red);
    ownership_pointer<art_bitmap> Result = Scene.Draw();
    EXPECT_TRUE(PixelsAre(*Result, [](int, int) { return Red; }));
}

TEST(ArtRender, PartialMinusStencilRemovesOnlyWhereItCovers)
{
    scene Scene;
    AddFill(*Scene.Object, point2d(0, 0), point2d(8, 6), White, StackModePlusStencil);
    AddFill(*Scene.Object, point2d(5, 2), point2d(3, 3), Black, StackModeMinusStencil);
    AddFill(*Scene.Object, point2d(0, 0), point2d(8, 6), Green);
    ownership_pointer<art_bitmap> Result = Scene.Draw();
    EXPECT_TRUE(PixelsAre(*Result, [](int X, int Y) { return Inside(X, Y, 5, 2, 8, 5) ? Transparent : Green; }));
}

TEST(ArtRender, FullWhiteStencilLeavesTheLayerExactAndMidGreyHalvesIt)
{
    scene Scene;
    AddFill(*Scene.Object, point2d(0, 0), point2d(4, 6), White, StackModeStencil);
    AddFill(*Scene.Object, point2d(4, 0), point2d(4, 6), Pixel(128, 128, 128, 255), StackModeStencil);
    agg::rgba8 Content = Pixel(200, 100, 50, 255);
    AddFill(*Scene.Object, point2d(0, 0), point2d(8, 6), Content);
    ownership_pointer<art_bitmap> Result = Scene.Draw();
    // Luminance 128: each colour byte times 128, shifted down by 8; alpha rounds up.
    agg::rgba8 Half = Pixel(100, 50, 25, 128);
    EXPECT_EQ(PixelText(Half), PixelText(Masked(Content, Pixel(128, 128, 128, 255))));
    // The masked composite then goes over the transparent target, which raises a partial alpha.
    EXPECT_TRUE(PixelsAre(*Result, [&](int X, int) { return X < 4 ? Content : Over(Transparent, Half, 255); }));
}

TEST(ArtRender, ColouredStencilMasksByItsLuminance)
{
    scene Scene;
    agg::rgba8 Mask = Pixel(30, 180, 90, 255);
    AddFill(*Scene.Object, point2d(0, 0), point2d(8, 3), Mask, StackModeStencil);
    AddFill(*Scene.Object, point2d(0, 3), point2d(8, 3), Green, StackModeStencil);
    AddFill(*Scene.Object, point2d(0, 0), point2d(8, 6), Pixel(255, 255, 255, 255));
    ownership_pointer<art_bitmap> Result = Scene.Draw();
    // 13926 * 30 + 46884 * 180 + 4725 * 90 + 32768 = 9,314,363; shifted by 16: 142.
    agg::rgba8 Top = Pixel(141, 141, 141, 142);
    EXPECT_EQ(PixelText(Top), PixelText(Masked(White, Mask)));
    agg::rgba8 Bottom = Masked(White, Green);
    // Green alone: luminance 182; 255 * 182 >> 8 is 181, and the alpha rounds up to 182.
    EXPECT_EQ(PixelText(Pixel(181, 181, 181, 182)), PixelText(Bottom));
    EXPECT_TRUE(PixelsAre(*Result, [&](int, int Y) { return Over(Transparent, Y < 3 ? Top : Bottom, 255); }));
}

TEST(ArtRender, InvisibleStencilChildIsNotDrawnButStillMakesTheObjectStencilled)
{
    scene Scene;
    reference_pointer<art_object> Stencil =
        AddFill(*Scene.Object, point2d(0, 0), point2d(8, 6), White, StackModePlusStencil);
    AddFill(*Scene.Object, point2d(0, 0), point2d(8, 6), Red);
    Stencil->SetVisible(false);
    EXPECT_TRUE(Scene.Object->IsStencilled());
    ownership_pointer<art_bitmap> Result = Scene.Draw();
    // The stencil bitmap stays black: nothing of the content shows.
    EXPECT_TRUE(PixelsAre(*Result, [](int, int) { return Transparent; }));
}

TEST(ArtRender, InvisibleNormalChildIsNotDrawn)
{
    scene Scene;
    AddFill(*Scene.Object, point2d(0, 0), point2d(8, 6), White, StackModePlusStencil);
    AddFill(*Scene.Object, point2d(0, 0), point2d(8, 6), Red);
    reference_pointer<art_object> Hidden = AddFill(*Scene.Object, point2d(0, 0), point2d(4, 6), Blue);
    Hidden->SetVisible(false);
    ownership_pointer<art_bitmap> Result = Scene.Draw();
    EXPECT_TRUE(PixelsAre(*Result, [](int, int) { return Red; }));
}

TEST(ArtRender, PlusStencilObjectWithChildrenAddsItsShapeInWhite)
{
    scene Scene;
    // A "+stencil" group whose own content is dark blue: its composite becomes white by alpha.
    reference_pointer<art_object> Shape = AddGroup(*Scene.Object, point2d(0, 0), point2d(8, 6), StackModePlusStencil);
    AddFill(*Shape, point2d(0, 0), point2d(8, 6), White, StackModePlusStencil);
    AddFill(*Shape, point2d(2, 1), point2d(3, 2), Pixel(0, 0, 60, 255));
    AddFill(*Scene.Object, point2d(0, 0), point2d(8, 6), Red);
    ownership_pointer<art_bitmap> Result = Scene.Draw();
    EXPECT_TRUE(PixelsAre(*Result, [](int X, int Y) { return Inside(X, Y, 2, 1, 5, 3) ? Red : Transparent; }));
}

TEST(ArtRender, MinusStencilObjectWithChildrenRemovesItsShapeInBlack)
{
    scene Scene;
    AddFill(*Scene.Object, point2d(0, 0), point2d(8, 6), White, StackModePlusStencil);
    reference_pointer<art_object> Shape = AddGroup(*Scene.Object, point2d(0, 0), point2d(8, 6), StackModeMinusStencil);
    AddFill(*Shape, point2d(0, 0), point2d(8, 6), White, StackModePlusStencil);
    AddFill(*Shape, point2d(1, 1), point2d(2, 4), Pixel(250, 250, 250, 255));
    AddFill(*Scene.Object, point2d(0, 0), point2d(8, 6), Red);
    ownership_pointer<art_bitmap> Result = Scene.Draw();
    EXPECT_TRUE(PixelsAre(*Result, [](int X, int Y) { return Inside(X, Y, 1, 1, 3, 5) ? Transparent : Red; }));
}

TEST(ArtRender, ModeOneObjectWithChildrenKeepsItsColours)
{
    scene Scene;
    reference_pointer<art_object> Shape = AddGroup(*Scene.Object, point2d(0, 0), point2d(8, 6), StackModeStencil);
    AddFill(*Shape, point2d(0, 0), point2d(8, 6), White, StackModePlusStencil);
    AddFill(*Shape, point2d(0, 0), point2d(8, 6), Pixel(128, 128, 128, 255));
    AddFill(*Scene.Object, point2d(0, 0), point2d(8, 6), Red);
    ownership_pointer<art_bitmap> Result = Scene.Draw();
    EXPECT_TRUE(PixelsAre(*Result, [](int, int) { return Over(Transparent, Pixel(127, 0, 0, 128), 255); }));
}

TEST(ArtRender, StencilledObjectIsClippedToItsFrame)
{
    scene Scene;
    Scene.Object->SetSize(point2d(5, 4));
    // A "-stencil" child does not reach beyond the frame, so white from one opens the whole mask.
    AddFill(*Scene.Object, point2d(0, 0), point2d(1, 1), White, StackModePlusStencil);
    AddFill(*Scene.Object, point2d(-2, -2), point2d(20, 20), White, StackModeMinusStencil);
    AddFill(*Scene.Object, point2d(-2, -2), point2d(20, 20), Red);
    ownership_pointer<art_bitmap> Result = Scene.Draw();
    EXPECT_TRUE(PixelsAre(*Result, [](int X, int Y) { return Inside(X, Y, 0, 0, 5, 4) ? Red : Transparent; }));
}

TEST(ArtRender, PlainGroupIsNotClippedToItsFrame)
{
    scene Scene;
    Scene.Object->SetSize(point2d(2, 2));
    AddFill(*Scene.Object, point2d(0, 0), point2d(8, 6), Red);
    ownership_pointer<art_bitmap> Result = Scene.Draw();
    EXPECT_TRUE(PixelsAre(*Result, [](int, int) { return Red; }));
}

TEST(ArtRender, MatricesComposeDownTheTree)
{
    scene Scene;
    Scene.Object->SetLocation(point2d(1, 2));
    Scene.Object->SetScale(point2d(2, 2));
    AddFill(*Scene.Object, point2d(0, 0), point2d(8, 6), White, StackModePlusStencil);
    AddFill(*Scene.Object, point2d(1, 0), point2d(1, 1), Red);
    ownership_pointer<art_bitmap> Result = DrawAlone(Scene.Root, 8, 6, agg::trans_affine_translation(1, 0));
    // The child's box (1, 0) to (2, 1), scaled by 2, moved by the object's (1, 2) and the matrix's (1, 0).
    EXPECT_TRUE(PixelsAre(*Result, [](int X, int Y) { return Inside(X, Y, 4, 2, 6, 4) ? Red : Transparent; }));
}

TEST(ArtRender, StencilledObjectCompositesOverWhatIsBelow)
{
    scene Scene;
    AddFill(*Scene.Object, point2d(0, 0), point2d(4, 6), White, StackModePlusStencil);
    AddFill(*Scene.Object, point2d(0, 0), point2d(8, 6), Pixel(0, 100, 0, 100));
    ownership_pointer<art_bitmap> Below(new art_bitmap(8, 6));
    Below->Clear(Blue);
    reference_pointer<bitmap_interface> Target(Below.Get());
    Scene.Root.Draw(Target, Target, agg::trans_affine(), reference_pointer<art_cache>());
    agg::rgba8 Content = Over(Transparent, Pixel(0, 100, 0, 100), 255);
    EXPECT_TRUE(PixelsAre(*Below, [&](int X, int) { return X < 4 ? Over(Blue, Content, 255) : Blue; }));
}

TEST(ArtRender, EmptyWindowDrawsNothingAndMakesNoCacheEntry)
{
    scene Scene;
    std::vector<render_call> Calls;
    ownership_pointer<art_object> Counted(new counting_object(&Calls));
    Place(*Counted, point2d(20, 20), point2d(4, 4));
    reference_pointer<art_object> Object = Scene.Root.AddChild(Counted);
    AddFill(*Object, point2d(0, 0), point2d(4, 4), White, StackModePlusStencil);
    AddFill(*Object, point2d(0, 0), point2d(4, 4), Red);
    art_cache Cache;
    ownership_pointer<art_bitmap> Result = DrawAlone(Scene.Root, 8, 6, agg::trans_affine(), &Cache);
    EXPECT_TRUE(PixelsAre(*Result, [](int, int) { return Transparent; }));
    EXPECT_EQ(0u, Calls.size());
    EXPECT_EQ(0, Cache.GetNumberOfEntries());
}

TEST(ArtRender, WindowIsClippedToTheTarget)
{
    scene Scene;
    std::vector<render_call> Calls;
    ownership_pointer<art_object> Counted(new counting_object(&Calls));
    Place(*Counted, point2d(-3, 4), point2d(6, 6));
    reference_pointer<art_object> Object = Scene.Root.AddChild(Counted);
    AddFill(*Object, point2d(0, 0), point2d(6, 6), White, StackModePlusStencil);
    AddFill(*Object, point2d(0, 0), point2d(6, 6), Red);
    ownership_pointer<art_bitmap> Result = DrawAlone(Scene.Root, 8, 6);
    ASSERT_EQ(1u, Calls.size());
    EXPECT_EQ(int_rectangle(int_point2d(0, 4), int_point2d(3, 2)), Calls[0].Window);
    EXPECT_TRUE(Calls[0].AllowExpansion);
    EXPECT_TRUE(PixelsAre(*Result, [](int X, int Y) { return Inside(X, Y, 0, 4, 3, 6) ? Red : Transparent; }));
}

TEST(ArtRender, FrameFarBeyondWholePixelRangeStillDrawsWhatLiesOnTheTarget)
{
    scene Scene;
    // The frame reaches 3e9 pixels each way, past what 32 bits hold; the children sit on the target.
    reference_pointer<art_object> Object = AddGroup(*Scene.Object, point2d(-3e9, -3e9), point2d(6e9, 6e9));
    AddFill(*Object, point2d(3e9, 3e9), point2d(8, 6), White, StackModePlusStencil);
    AddFill(*Object, point2d(3e9 + 2, 3e9 + 1), point2d(3, 2), Red);
    ownership_pointer<art_bitmap> Result = Scene.Draw();
    EXPECT_TRUE(PixelsAre(*Result, [](int X, int Y) { return Inside(X, Y, 2, 1, 5, 3) ? Red : Transparent; }));
}

TEST(ArtRender, FractionalFrameRoundsTheWindowOutward)
{
    scene Scene;
    std::vector<render_call> Calls;
    ownership_pointer<art_object> Counted(new counting_object(&Calls));
    Place(*Counted, point2d(1.5, 0.25), point2d(2, 3.5));
    reference_pointer<art_object> Object = Scene.Root.AddChild(Counted);
    AddFill(*Object, point2d(0, 0), point2d(2, 3.5), White, StackModePlusStencil);
    DrawAlone(Scene.Root, 8, 6);
    ASSERT_EQ(1u, Calls.size());
    EXPECT_EQ(int_rectangle(int_point2d(1, 0), int_point2d(3, 4)), Calls[0].Window);
}

TEST(ArtRender, StencilChildOutsideTheFrameWidensTheDrawBounds)
{
    scene Scene;
    Scene.Object->SetSize(point2d(4, 4));
    AddFill(*Scene.Object, point2d(2, 1), point2d(5, 2), White, StackModePlusStencil);
    rectangle Bounds = Scene.Object->GetDrawBounds(agg::trans_affine());
    EXPECT_EQ(rectangle(point2d(0, 0), point2d(7, 4)), Bounds);
    AddFill(*Scene.Object, point2d(0, 0), point2d(8, 6), Red);
    ownership_pointer<art_bitmap> Result = Scene.Draw();
    EXPECT_TRUE(PixelsAre(*Result, [](int X, int Y) { return Inside(X, Y, 2, 1, 7, 3) ? Red : Transparent; }));
}

TEST(ArtRender, RedrawRequestReachesAsFarAsAStencilChildOfAStencilledParent)
{
    test_top_object Top;
    Top.SetSize(point2d(40, 30));
    Top.PaintAll();
    reference_pointer<art_object> Object = AddGroup(Top, point2d(10, 10), point2d(4, 4));
    AddFill(*Object, point2d(-2, 0), point2d(10, 3), White, StackModePlusStencil);
    reference_pointer<art_object> Content = AddFill(*Object, point2d(1, 1), point2d(1, 1), Red);
    Top.PaintAll();
    Content->RequestRedraw();
    ASSERT_EQ(1, Top.GetDirtyList().GetNumberOfElements());
    // The stencil child's box (8, 10) to (18, 13) joins the content's (11, 11) to (12, 12); grown by 1.
    EXPECT_EQ(int_rectangle(int_point2d(7, 9), int_point2d(12, 5)), Top.GetDirtyList()[0]);
    Top.MarkChildrenForDeletion();
    Top.DeleteMarkedChildren();
}

TEST(ArtRender, RedrawRequestInAPlainGroupStaysAtTheChange)
{
    test_top_object Top;
    Top.SetSize(point2d(40, 30));
    reference_pointer<art_object> Object = AddGroup(Top, point2d(10, 10), point2d(4, 4));
    AddFill(*Object, point2d(-2, 0), point2d(10, 3), Black, StackModeMinusStencil);
    reference_pointer<art_object> Content = AddFill(*Object, point2d(1, 1), point2d(1, 1), Red);
    Top.PaintAll();
    Content->RequestRedraw();
    ASSERT_EQ(1, Top.GetDirtyList().GetNumberOfElements());
    EXPECT_EQ(int_rectangle(int_point2d(10, 10), int_point2d(3, 3)), Top.GetDirtyList()[0]);
    Top.MarkChildrenForDeletion();
    Top.DeleteMarkedChildren();
}

TEST(ArtRender, RedrawRequestThroughASubclassGoesTheSameWayAsThroughAPlainObject)
{
    std::vector<render_call> Calls;
    int_rectangle Seen[2];
    for (int Kind = 0; Kind < 2; Kind++) {
        test_top_object Top;
        Top.SetSize(point2d(40, 30));
        ownership_pointer<art_object> Group(Kind == 0 ? new art_object : new counting_object(&Calls));
        Place(*Group, point2d(10, 10), point2d(4, 4));
        reference_pointer<art_object> Object = Top.AddChild(Group);
        AddFill(*Object, point2d(-2, 0), point2d(10, 3), White, StackModePlusStencil);
        reference_pointer<art_object> Content = AddFill(*Object, point2d(1, 1), point2d(1, 1), Red);
        Top.PaintAll();
        Content->RequestRedraw();
        ASSERT_EQ(1, Top.GetDirtyList().GetNumberOfElements());
        Seen[Kind] = Top.GetDirtyList()[0];
        Top.MarkChildrenForDeletion();
        Top.DeleteMarkedChildren();
    }
    EXPECT_EQ(Seen[0], Seen[1]);
}

namespace {

// Asks for Margin more pixels of window on the left and top, and Margin + Extra on the right and
// bottom, as a blur would; draws nothing itself.
class widening_object : public art_object
{
public:
    widening_object(double Margin, double Extra) : Margin(Margin), Extra(Extra) {}

    void Draw(reference_pointer<bitmap_interface>, reference_pointer<bitmap_interface>, agg::trans_affine,
              reference_pointer<art_cache>) override
    {
    }
    void ExpandDrawWindow(rectangle &Window, const agg::trans_affine &) override
    {
        Window.Location = Window.Location - point2d(Margin, Margin);
        Window.Size = Window.Size + point2d(2 * Margin + Extra, 2 * Margin + Extra);
    }

private:
    double Margin;
    double Extra;
};

// Records the size of each composite it makes.
class size_recording_object : public art_object
{
public:
    explicit size_recording_object(std::vector<int_point2d> *Sizes) : Sizes(Sizes) {}

    ownership_pointer<art_bitmap> RenderToBitmap(int_rectangle Window, agg::trans_affine Matrix,
                                                 reference_pointer<art_cache> Cache, point2d &PreExpandLocOffset,
                                                 bool AllowExpansion) override
    {
        ownership_pointer<art_bitmap> Result =
            art_object::RenderToBitmap(Window, Matrix, Cache, PreExpandLocOffset, AllowExpansion);
        Sizes->push_back(Result->GetSize());
        Offsets.push_back(PreExpandLocOffset);
        return Result;
    }

    std::vector<point2d> Offsets;

private:
    std::vector<int_point2d> *Sizes;
};

} // namespace

TEST(ArtRender, WidenedWindowIsCutBackToTheClippingWindow)
{
    scene Scene;
    std::vector<int_point2d> Sizes;
    size_recording_object *Recorder = new size_recording_object(&Sizes);
    ownership_pointer<art_object> Owned(Recorder);
    Place(*Owned, point2d(2, 1), point2d(4, 3));
    reference_pointer<art_object> Object = Scene.Object->AddChild(Owned);
    AddFill(*Object, point2d(0, 0), point2d(4, 3), White, StackModePlusStencil);
    AddFill(*Object, point2d(1, 0), point2d(3, 3), Red);
    Object->AddChild(ownership_pointer<art_object>(new widening_object(2, 1)));
    art_cache Cache;
    ownership_pointer<art_bitmap> Result = DrawAlone(Scene.Root, 8, 6, agg::trans_affine(), &Cache);
    ASSERT_EQ(1u, Sizes.size());
    EXPECT_EQ(int_point2d(9, 8), Sizes[0]);
    EXPECT_EQ(point2d(2, 2), Recorder->Offsets[0]);
    EXPECT_EQ(int_point2d(4, 3), Cache.GetCachedBitmap(Object)->GetBitmap()->GetSize());
    EXPECT_TRUE(PixelsAre(*Result, [](int X, int Y) { return Inside(X, Y, 3, 1, 6, 4) ? Red : Transparent; }));
}

TEST(ArtRender, WindowThatAnEffectMovesRightIsAnAssertion)
{
    scene Scene;
    reference_pointer<art_object> Object = AddGroup(*Scene.Object, point2d(2, 1), point2d(4, 3));
    AddFill(*Object, point2d(0, 0), point2d(4, 3), White, StackModePlusStencil);
    Object->AddChild(ownership_pointer<art_object>(new widening_object(-1, 0)));
    EXPECT_NE(std::string::npos, ZEL_ERROR_MESSAGE(Scene.Draw()).find("'PreExpandLocOffset>=point2d()' is false"));
}

TEST(ArtRender, WindowThatAnEffectMovesWithoutGrowingIsAnAssertion)
{
    scene Scene;
    reference_pointer<art_object> Object = AddGroup(*Scene.Object, point2d(2, 1), point2d(4, 3));
    AddFill(*Object, point2d(0, 0), point2d(4, 3), White, StackModePlusStencil);
    // One pixel further left and up, and as much less on the right and bottom: a move, not a growth.
    Object->AddChild(ownership_pointer<art_object>(new widening_object(1, -2)));
    EXPECT_NE(std::string::npos, ZEL_ERROR_MESSAGE(Scene.Draw()).find("'PreExpandLocOffset==point2df()' is false"));
}

TEST(ArtRender, StencilledFollowsChangesOfTheChildrenAndTheirModes)
{
    scene Scene;
    reference_pointer<art_object> Child = AddGroup(*Scene.Object, point2d(0, 0), point2d(8, 6));
    EXPECT_FALSE(Scene.Object->IsStencilled());
    Child->SetStackMode(StackModePlusStencil);
    EXPECT_TRUE(Scene.Object->IsStencilled());
    Child->SetStackMode(StackModeMinusStencil);
    EXPECT_FALSE(Scene.Object->IsStencilled());
    Child->SetStackMode(StackModeStencil);
    EXPECT_TRUE(Scene.Object->IsStencilled());
    ownership_pointer<art_object> Removed = Scene.Object->RemoveChild(Child);
    EXPECT_FALSE(Scene.Object->IsStencilled());
    Scene.Object->AddChild(Removed);
    EXPECT_TRUE(Scene.Object->IsStencilled());
    AddFill(*Scene.Object, point2d(0, 0), point2d(8, 6), Red);
    Child->MarkForDeletion();
    Scene.Root.DeleteMarkedChildren();
    EXPECT_FALSE(Scene.Object->IsStencilled());
}
