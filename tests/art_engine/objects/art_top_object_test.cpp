#include <gtest/gtest.h>

#include <vector>

#include "tests/art_engine/objects/art_render_test_support.h"
#include "tests/test_support.h"

using namespace art_render_test;

namespace {

// A top object with its tree taken down before the top itself, as every test leaves it.
struct top_scene
{
    test_top_object Top;

    top_scene(int Width, int Height) { Top.SetSize(point2d(Width, Height)); }
    ~top_scene()
    {
        Top.MarkChildrenForDeletion();
        Top.DeleteMarkedChildren();
    }

    reference_pointer<art_object> AddStencilled(point2d Location, point2d Size, agg::rgba8 Color)
    {
        reference_pointer<art_object> Object = AddGroup(Top, Location, Size);
        AddFill(*Object, point2d(0, 0), Size, White, StackModePlusStencil);
        AddFill(*Object, point2d(0, 0), Size, Color);
        return Object;
    }
};

int_rectangle Rect(int X, int Y, int W, int H)
{
    return int_rectangle(int_point2d(X, Y), int_point2d(W, H));
}

} // namespace

TEST(ArtTopObject, IsTheTopmostLayerAndItsOwnTop)
{
    top_scene Scene(10, 10);
    EXPECT_EQ("topmost layer", ToStd(Scene.Top.GetName()));
    EXPECT_TRUE(Scene.Top.IsLayer());
    EXPECT_EQ(&Scene.Top, Scene.Top.GetTopObject().Get());
    reference_pointer<art_object> Child = AddGroup(Scene.Top, point2d(1, 1), point2d(2, 2));
    reference_pointer<art_object> Grandchild = AddGroup(*Child, point2d(0, 0), point2d(1, 1));
    EXPECT_EQ(&Scene.Top, Grandchild->GetTopObject().Get());
}

TEST(ArtTopObject, SetSizeMakesANewClearedBitmapOfTheTruncatedSize)
{
    top_scene Scene(10, 10);
    Scene.Top.GetBitmap()->Clear(Red);
    reference_pointer<art_bitmap> Old = Scene.Top.GetBitmap();
    Scene.Top.SetSize(point2d(12.9, 7.2));
    EXPECT_FALSE(Old.IsSet());
    EXPECT_EQ(int_point2d(12, 7), Scene.Top.GetBitmap()->GetSize());
    EXPECT_TRUE(PixelsAre(*Scene.Top.GetBitmap(), [](int, int) { return Transparent; }));
}

TEST(ArtTopObject, SetSizeWithAnUnchangedSizeStillMakesANewBitmap)
{
    top_scene Scene(10, 10);
    Scene.Top.GetBitmap()->Clear(Red);
    reference_pointer<art_bitmap> Old = Scene.Top.GetBitmap();
    Scene.Top.SetSize(point2d(10, 10));
    EXPECT_FALSE(Old.IsSet());
    EXPECT_TRUE(Scene.Top.GetBitmap().IsSet());
    EXPECT_TRUE(PixelsAre(*Scene.Top.GetBitmap(), [](int, int) { return Transparent; }));
}

TEST(ArtTopObject, RedrawRectangleIsFlooredClippedAndGrownByOne)
{
    top_scene Scene(20, 10);
    Scene.Top.PaintAll();
    EXPECT_FALSE(Scene.Top.IsDirty());
    Scene.Top.RequestRedrawRect(rectangle(point2d(2.5, 3.7), point2d(4.2, 1.1)));
    EXPECT_TRUE(Scene.Top.IsDirty());
    // Low (2, 3), high floor(6.7) = 6 and floor(4.8) = 4.
    ASSERT_EQ(1, Scene.Top.GetDirtyList().GetNumberOfElements());
    EXPECT_EQ(Rect(1, 2, 6, 3), Scene.Top.GetDirtyList()[0]);
    Scene.Top.RequestRedrawRect(rectangle(point2d(15, -4), point2d(10, 6)));
    ASSERT_EQ(2, Scene.Top.GetDirtyList().GetNumberOfElements());
    EXPECT_EQ(Rect(14, -1, 7, 4), Scene.Top.GetDirtyList()[1]);
}

TEST(ArtTopObject, RedrawRectangleFarBeyondWholePixelRangeIsClippedToTheWindow)
{
    top_scene Scene(20, 10);
    Scene.Top.PaintAll();
    Scene.Top.RequestRedrawRect(rectangle(point2d(-1e10, -1e10), point2d(2e10, 2e10)));
    ASSERT_EQ(1, Scene.Top.GetDirtyList().GetNumberOfElements());
    EXPECT_EQ(Rect(-1, -1, 22, 12), Scene.Top.GetDirtyList()[0]);
}

TEST(ArtTopObject, RedrawRectangleWithinOnePixelColumnAddsNothingButSetsTheFlag)
{
    top_scene Scene(20, 10);
    Scene.Top.PaintAll();
    Scene.Top.RequestRedrawRect(rectangle(point2d(2.2, 1), point2d(0.5, 4)));
    EXPECT_TRUE(Scene.Top.IsDirty());
    EXPECT_EQ(0, Scene.Top.GetDirtyList().GetNumberOfElements());
    Scene.Top.RequestRedrawRect(rectangle(point2d(30, 1), point2d(5, 4)));
    EXPECT_EQ(0, Scene.Top.GetDirtyList().GetNumberOfElements());
}

TEST(ArtTopObject, RedrawRectangleInFullRedrawModeIsNotRecorded)
{
    top_scene Scene(20, 10);
    EXPECT_TRUE(Scene.Top.IsFullRedraw());
    Scene.Top.RequestRedrawRect(rectangle(point2d(2, 2), point2d(3, 3)));
    EXPECT_EQ(0, Scene.Top.GetDirtyList().GetNumberOfElements());
    EXPECT_TRUE(Scene.Top.IsDirty());
}

TEST(ArtTopObject, RequestRedrawMakesTheNextPaintFullEvenWithADirtyList)
{
    top_scene Scene(20, 10);
    reference_pointer<art_object> Object = Scene.AddStencilled(point2d(2, 2), point2d(3, 3), Red);
    Scene.Top.PaintAll();
    Scene.Top.RequestRedrawRect(rectangle(point2d(2, 2), point2d(3, 3)));
    ASSERT_EQ(1, Scene.Top.GetDirtyList().GetNumberOfElements());
    int32_t Count = Object->GetRedrawCount();
    Scene.Top.RequestRedraw();
    EXPECT_TRUE(Scene.Top.IsFullRedraw());
    EXPECT_EQ(0, Scene.Top.GetDirtyList().GetNumberOfElements());
    EXPECT_GT(Object->GetRedrawCount(), Count);
    Scene.Top.Presented.clear();
    Scene.Top.PaintAll();
    ASSERT_EQ(1u, Scene.Top.Presented.size());
    EXPECT_EQ(0, Scene.Top.Presented[0].X);
    EXPECT_EQ(int_point2d(20, 10), Scene.Top.Presented[0].Size);
}

TEST(ArtTopObject, FirstPaintIsFullWithTheBackgroundColour)
{
    top_scene Scene(20, 10);
    Scene.Top.SetBackgroundColor(agg::rgba(0.5, 0.25, 1, 1));
    Scene.AddStencilled(point2d(2, 3), point2d(4, 5), Red);
    Scene.Top.PaintAll();
    ASSERT_EQ(1u, Scene.Top.Presented.size());
    EXPECT_EQ(int_point2d(20, 10), Scene.Top.Presented[0].Size);
    EXPECT_FALSE(Scene.Top.IsDirty());
    EXPECT_FALSE(Scene.Top.IsFullRedraw());
    // 0.5 * 255 + 0.5 = 128; 0.25 * 255 + 0.5 = 64.25.
    EXPECT_TRUE(PixelsAre(*Scene.Top.GetBitmap(),
                          [](int X, int Y) { return Inside(X, Y, 2, 3, 6, 8) ? Red : Pixel(128, 64, 255, 255); }));
}

TEST(ArtTopObject, MergeJoinsRectanglesWhoseUnionIsSmallerThanBoth)
{
    top_scene Scene(100, 100);
    Scene.Top.PaintAll();
    Scene.Top.RequestRedrawRect(rectangle(point2d(11, 11), point2d(8, 8)));
    Scene.Top.RequestRedrawRect(rectangle(point2d(15, 15), point2d(8, 8)));
    Scene.Top.RequestRedrawRect(rectangle(point2d(61, 61), point2d(3, 3)));
    array<int_rectangle> Merged;
    Scene.Top.Merge(Merged);
    // (10, 10, 10, 10) and (14, 14, 10, 10) overlap: their union of 196 is below 200.
    ASSERT_EQ(2, Merged.GetNumberOfElements());
    EXPECT_EQ(Rect(10, 10, 14, 14), Merged[0]);
    EXPECT_EQ(Rect(60, 60, 5, 5), Merged[1]);
}

TEST(ArtTopObject, MergeKeepsRectanglesApartWhenTheUnionIsNoSmaller)
{
    top_scene Scene(100, 100);
    Scene.Top.PaintAll();
    // (0, 0, 10, 10) and (10, 0, 10, 10) touch: the union of 200 equals the sum, so no merge.
    Scene.Top.RequestRedrawRect(rectangle(point2d(1, 1), point2d(8, 8)));
    Scene.Top.RequestRedrawRect(rectangle(point2d(11, 1), point2d(8, 8)));
    array<int_rectangle> Merged;
    Scene.Top.Merge(Merged);
    // Equal areas keep their order in the ascending sort, and the walk runs from its end.
    ASSERT_EQ(2, Merged.GetNumberOfElements());
    EXPECT_EQ(Rect(10, 0, 10, 10), Merged[0]);
    EXPECT_EQ(Rect(0, 0, 10, 10), Merged[1]);
}

TEST(ArtTopObject, MergeTakesTheLargestFirst)
{
    top_scene Scene(100, 100);
    Scene.Top.PaintAll();
    Scene.Top.RequestRedrawRect(rectangle(point2d(51, 51), point2d(2, 2)));
    Scene.Top.RequestRedrawRect(rectangle(point2d(1, 1), point2d(30, 30)));
    Scene.Top.RequestRedrawRect(rectangle(point2d(71, 1), point2d(4, 4)));
    array<int_rectangle> Merged;
    Scene.Top.Merge(Merged);
    ASSERT_EQ(3, Merged.GetNumberOfElements());
    EXPECT_EQ(Rect(0, 0, 32, 32), Merged[0]);
    EXPECT_EQ(Rect(70, 0, 6, 6), Merged[1]);
    EXPECT_EQ(Rect(50, 50, 4, 4), Merged[2]);
}

TEST(ArtTopObject, SmallChangeRepaintsOnlyItsRectangle)
{
    top_scene Scene(30, 20);
    Scene.Top.SetBackgroundColor(agg::rgba(0, 0, 0, 1));
    reference_pointer<art_object> A = Scene.AddStencilled(point2d(2, 2), point2d(5, 5), Red);
    Scene.AddStencilled(point2d(20, 10), point2d(6, 6), Blue);
    Scene.Top.PaintAll();
    A->SetLocation(point2d(4, 3));
    Scene.Top.Presented.clear();
    Scene.Top.PaintAll();
    // The old box (2, 2, 5, 5) and the new (4, 3, 5, 5), each grown by 1, join in one union.
    ASSERT_EQ(1u, Scene.Top.Presented.size());
    EXPECT_EQ(1, Scene.Top.Presented[0].X);
    EXPECT_EQ(1, Scene.Top.Presented[0].Y);
    EXPECT_EQ(int_point2d(9, 8), Scene.Top.Presented[0].Size);
    EXPECT_TRUE(PixelsAre(*Scene.Top.GetBitmap(), [](int X, int Y) {
        if (Inside(X, Y, 4, 3, 9, 8))
            return Red;
        return Inside(X, Y, 20, 10, 26, 16) ? Blue : Black;
    }));
    EXPECT_EQ(0, Scene.Top.GetDirtyList().GetNumberOfElements());
}

TEST(ArtTopObject, PartialRepaintLeavesPixelsOutsideTheDirtyRectanglesAlone)
{
    top_scene Scene(30, 20);
    Scene.AddStencilled(point2d(2, 2), point2d(5, 5), Red);
    Scene.Top.PaintAll();
    // A pixel that no object draws, changed behind the top object's back, stays as it is.
    Scene.Top.GetBitmap()->GetPixelRow(15)[25] = Green;
    Scene.Top.RequestRedrawRect(rectangle(point2d(3, 3), point2d(2, 2)));
    Scene.Top.PaintAll();
    EXPECT_TRUE(PixelsAre(*Scene.Top.GetBitmap(), [](int X, int Y) {
        if (X == 25 && Y == 15)
            return Green;
        return Inside(X, Y, 2, 2, 7, 7) ? Red : Transparent;
    }));
}

TEST(ArtTopObject, PartialRepaintDrawsStraightIntoTheWindowsPixels)
{
    top_scene Scene(30, 20);
    Scene.AddStencilled(point2d(2, 2), point2d(5, 5), Red);
    Scene.Top.PaintAll();
    Scene.Top.RequestRedrawRect(rectangle(point2d(3, 4), point2d(2, 2)));
    Scene.Top.Presented.clear();
    Scene.Top.PaintAll();
    // The rectangle grown by 1 is handed over as a part of the window's own store, not a copy.
    ASSERT_EQ(1u, Scene.Top.Presented.size());
    art_bitmap &Window = *Scene.Top.GetBitmap();
    EXPECT_EQ(int_point2d(4, 4), Scene.Top.Presented[0].Size);
    EXPECT_EQ(Window.GetPixelData() + 3 * Window.GetPixelStride() + 2 * 4, Scene.Top.Presented[0].FirstLine);
    EXPECT_EQ(30 * 4, Scene.Top.Presented[0].Stride);
}

TEST(ArtTopObject, DirtyRectanglesCoveringTheWindowGiveAFullRepaint)
{
    top_scene Scene(10, 10);
    Scene.Top.PaintAll();
    Scene.Top.RequestRedrawRect(rectangle(point2d(0, 0), point2d(10, 5)));
    Scene.Top.RequestRedrawRect(rectangle(point2d(0, 5), point2d(10, 5)));
    Scene.Top.Presented.clear();
    Scene.Top.PaintAll();
    ASSERT_EQ(1u, Scene.Top.Presented.size());
    EXPECT_EQ(int_point2d(10, 10), Scene.Top.Presented[0].Size);
}

TEST(ArtTopObject, PaintSetsTheCacheLimitAndAgesItsEntries)
{
    top_scene Scene(100, 60);
    reference_pointer<art_object> A = Scene.AddStencilled(point2d(2, 2), point2d(5, 5), Red);
    reference_pointer<art_object> B = Scene.AddStencilled(point2d(20, 20), point2d(5, 5), Blue);
    Scene.Top.PaintAll();
    EXPECT_EQ(int_point2d(125, 75), Scene.Top.GetCache()->GetMaxCacheSize());
    EXPECT_EQ(2, Scene.Top.GetCache()->GetNumberOfEntries());
    // Repaints of A's corner only: B's entry ages, frame by frame, until Clean drops it.
    for (int Frame = 1; Frame <= 100; Frame++) {
        Scene.Top.RequestRedrawRect(rectangle(point2d(3, 3), point2d(1, 1)));
        Scene.Top.PaintAll();
    }
    EXPECT_EQ(100, Scene.Top.GetCache()->GetCachedBitmap(B)->GetAge());
    EXPECT_EQ(0, Scene.Top.GetCache()->GetCachedBitmap(A)->GetAge());
    Scene.Top.RequestRedrawRect(rectangle(point2d(3, 3), point2d(1, 1)));
    Scene.Top.PaintAll();
    EXPECT_FALSE(Scene.Top.GetCache()->GetCachedBitmap(B).IsSet());
    EXPECT_TRUE(Scene.Top.GetCache()->GetCachedBitmap(A).IsSet());
}

TEST(ArtTopObject, PaintWithNothingDirtyDrawsAndPresentsNothing)
{
    top_scene Scene(10, 10);
    Scene.Top.PaintAll();
    Scene.Top.Presented.clear();
    Scene.Top.PaintAll();
    EXPECT_EQ(0u, Scene.Top.Presented.size());
}
