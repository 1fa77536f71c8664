#include <gtest/gtest.h>

#include <vector>

#include "tests/art_engine/objects/art_render_test_support.h"
#include "tests/test_support.h"

using namespace art_render_test;

namespace {

// A root at the origin holding a plain group, into which stencilled, counted objects go. Their
// content is striped across, so that a picture put at a wrong place shows.
struct scene
{
    art_object Root;
    reference_pointer<art_object> Group;
    std::vector<render_call> Calls;
    art_cache Cache;

    scene()
    {
        Place(Root, point2d(0, 0), point2d(100, 100));
        Group = AddGroup(Root, point2d(0, 0), point2d(100, 100));
    }

    reference_pointer<art_object> AddCounted(point2d Location, point2d Size)
    {
        ownership_pointer<art_object> Counted(new counting_object(&Calls));
        Place(*Counted, Location, Size);
        reference_pointer<art_object> Object = Group->AddChild(Counted);
        AddFill(*Object, point2d(0, 0), Size, White, StackModePlusStencil);
        AddFill(*Object, point2d(0, 0), Size, Pixel(0, 0, 90, 255));
        for (int Stripe = 0; Stripe * 3 < Size.X; Stripe++)
            AddFill(*Object, point2d(Stripe * 3, Stripe % 4), point2d(1, Size.Y / 2), Pixel(Stripe * 20 % 256, 200, 0, 255));
        return Object;
    }

    ownership_pointer<art_bitmap> DrawCached(int Width, int Height)
    {
        return DrawAlone(Root, Width, Height, agg::trans_affine(), &Cache);
    }

    ownership_pointer<art_bitmap> DrawUncached(int Width, int Height) { return DrawAlone(Root, Width, Height); }

    void MoveGroupBy(point2d Offset) { Group->SetLocation(Group->GetLocation() + Offset); }
};

bool NoRed(art_bitmap &Bitmap)
{
    return PixelsAre(Bitmap, [&](int X, int Y) {
        agg::rgba8 P = Bitmap.GetPixelRow(Y)[X];
        return P.r == 255 && P.g == 0 && P.b == 0 && P.a == 255 ? Transparent : P;
    });
}

} // namespace

TEST(ArtCache, UnchangedTreeRepaintsByBlitsOnly)
{
    std::vector<render_call> Calls;
    test_top_object Top;
    Top.SetSize(point2d(40, 30));
    for (int I = 0; I < 3; I++) {
        ownership_pointer<art_object> Counted(new counting_object(&Calls));
        Place(*Counted, point2d(2 + 12 * I, 3 + I), point2d(10, 8));
        reference_pointer<art_object> Object = Top.AddChild(Counted);
        AddFill(*Object, point2d(0, 0), point2d(10, 8), White, StackModePlusStencil);
        AddFill(*Object, point2d(1, 1), point2d(5, 5), Pixel(0, 30 * I, 200, 255));
    }
    Top.PaintAll();
    ASSERT_EQ(3u, Calls.size());
    ownership_pointer<art_bitmap> First(new art_bitmap(40, 30));
    First->CopyBitmap(0, 0, Top.GetBitmap());
    // A repaint of the whole window, with nothing changed below the top.
    Top.RequestRedrawRect(rectangle(point2d(0, 0), point2d(40, 30)));
    Top.PaintAll();
    EXPECT_EQ(3u, Calls.size());
    ASSERT_EQ(2u, Top.Presented.size());
    EXPECT_EQ(int_point2d(40, 30), Top.Presented[1].Size);
    EXPECT_TRUE(SameBitmaps(*First, *Top.GetBitmap()));
    Top.MarkChildrenForDeletion();
    Top.DeleteMarkedChildren();
}

TEST(ArtCache, ParentMovedByWholePixelsGivesHitsOnAllChildEntries)
{
    scene Scene;
    reference_pointer<art_object> A = Scene.AddCounted(point2d(4, 6), point2d(9, 7));
    reference_pointer<art_object> B = Scene.AddCounted(point2d(15, 8), point2d(6, 6));
    Scene.DrawCached(30, 20);
    ASSERT_EQ(2u, Scene.Calls.size());
    Scene.MoveGroupBy(point2d(3, -2));
    ownership_pointer<art_bitmap> Moved = Scene.DrawCached(30, 20);
    EXPECT_EQ(2u, Scene.Calls.size());
    EXPECT_EQ(1, Scene.Cache.GetCachedBitmap(A)->GetHits());
    EXPECT_EQ(1, Scene.Cache.GetCachedBitmap(B)->GetHits());
    ownership_pointer<art_bitmap> Fresh = Scene.DrawUncached(30, 20);
    EXPECT_TRUE(SameBitmaps(*Fresh, *Moved));
}

TEST(ArtCache, ParentMovedByHalfAPixelGivesMissesOnAll)
{
    scene Scene;
    reference_pointer<art_object> A = Scene.AddCounted(point2d(4, 6), point2d(9, 7));
    Scene.AddCounted(point2d(15, 8), point2d(6, 6));
    Scene.DrawCached(30, 20);
    Scene.MoveGroupBy(point2d(0.5, 0));
    ownership_pointer<art_bitmap> Moved = Scene.DrawCached(30, 20);
    ASSERT_EQ(4u, Scene.Calls.size());
    EXPECT_TRUE(Scene.Calls[2].AllowExpansion);
    EXPECT_TRUE(Scene.Calls[3].AllowExpansion);
    EXPECT_EQ(0, Scene.Cache.GetCachedBitmap(A)->GetHits());
    ownership_pointer<art_bitmap> Fresh = Scene.DrawUncached(30, 20);
    EXPECT_TRUE(SameBitmaps(*Fresh, *Moved));
}

TEST(ArtCache, MoveWithinTheToleranceStillHits)
{
    scene Scene;
    Scene.AddCounted(point2d(4, 6), point2d(9, 7));
    Scene.DrawCached(30, 20);
    // The frame now touches one more column, which a strip adds; the picture itself is kept.
    Scene.MoveGroupBy(point2d(2.003, 0));
    Scene.DrawCached(30, 20);
    ASSERT_EQ(2u, Scene.Calls.size());
    EXPECT_FALSE(Scene.Calls[1].AllowExpansion);
    EXPECT_EQ(int_rectangle(int_point2d(15, 6), int_point2d(1, 7)), Scene.Calls[1].Window);
    // The grown entry holds the matrix of its growth; 0.004 from there is a miss.
    Scene.MoveGroupBy(point2d(0.004, 0));
    Scene.DrawCached(30, 20);
    ASSERT_EQ(3u, Scene.Calls.size());
    EXPECT_TRUE(Scene.Calls[2].AllowExpansion);
}

TEST(ArtCache, ScaleChangeThatMovesTheFarCornerBy1Over256GivesAMiss)
{
    scene Scene;
    reference_pointer<art_object> A = Scene.AddCounted(point2d(0, 0), point2d(4, 4));
    Scene.DrawCached(30, 20);
    // 4 pixels times 1/1024 is 1/256 exactly: not below the tolerance.
    Scene.Group->SetScale(point2d(1 + 1.0 / 1024, 1));
    Scene.DrawCached(30, 20);
    ASSERT_EQ(2u, Scene.Calls.size());
    EXPECT_TRUE(Scene.Calls[1].AllowExpansion);
    EXPECT_EQ(0, Scene.Cache.GetCachedBitmap(A)->GetHits());
}

TEST(ArtCache, SmallerScaleChangeKeepsTheEntry)
{
    scene Scene;
    reference_pointer<art_object> A = Scene.AddCounted(point2d(0, 0), point2d(4, 4));
    Scene.DrawCached(30, 20);
    Scene.Group->SetScale(point2d(1 + 1.0 / 2048, 1));
    Scene.DrawCached(30, 20);
    // The frame now reaches into a fifth column, which only a strip adds.
    ASSERT_EQ(2u, Scene.Calls.size());
    EXPECT_FALSE(Scene.Calls[1].AllowExpansion);
    EXPECT_EQ(int_rectangle(int_point2d(4, 0), int_point2d(1, 4)), Scene.Calls[1].Window);
    EXPECT_EQ(1, Scene.Cache.GetCachedBitmap(A)->GetHits());
}

TEST(ArtCache, RedrawRequestBelowAnObjectVoidsItsEntry)
{
    scene Scene;
    reference_pointer<art_object> A = Scene.AddCounted(point2d(2, 2), point2d(9, 7));
    Scene.AddCounted(point2d(15, 8), point2d(6, 6));
    reference_pointer<art_object> Inner = AddGroup(*A, point2d(1, 1), point2d(3, 3));
    reference_pointer<art_object> Leaf = AddFill(*Inner, point2d(0, 0), point2d(2, 2), Red);
    Scene.DrawCached(30, 20);
    ASSERT_EQ(2u, Scene.Calls.size());
    Leaf->RequestRedraw();
    ownership_pointer<art_bitmap> After = Scene.DrawCached(30, 20);
    // Only the object above the change renders again.
    ASSERT_EQ(3u, Scene.Calls.size());
    EXPECT_EQ(int_rectangle(int_point2d(2, 2), int_point2d(9, 7)), Scene.Calls[2].Window);
    ownership_pointer<art_bitmap> Fresh = Scene.DrawUncached(30, 20);
    EXPECT_TRUE(SameBitmaps(*Fresh, *After));
}

TEST(ArtCache, WindowGrownByMoreThanHalfTheOldAreaRendersWhole)
{
    scene Scene;
    reference_pointer<art_object> A = Scene.AddCounted(point2d(-10, 0), point2d(20, 10));
    Scene.DrawCached(20, 10);
    int32_t Count = A->GetRedrawCount();
    // The window goes from 10 columns to 18: a gain of 80 pixels against a limit of 50.
    Scene.MoveGroupBy(point2d(8, 0));
    ownership_pointer<art_bitmap> After = Scene.DrawCached(20, 10);
    ASSERT_EQ(2u, Scene.Calls.size());
    EXPECT_TRUE(Scene.Calls[1].AllowExpansion);
    EXPECT_EQ(int_rectangle(int_point2d(0, 0), int_point2d(18, 10)), Scene.Calls[1].Window);
    EXPECT_EQ(Count + 1, A->GetRedrawCount());
    ownership_pointer<art_bitmap> Fresh = Scene.DrawUncached(20, 10);
    EXPECT_TRUE(SameBitmaps(*Fresh, *After));
}

TEST(ArtCache, GrowthRendersOnlyTheMissingStrip)
{
    scene Scene;
    reference_pointer<art_object> A = Scene.AddCounted(point2d(-10, 0), point2d(20, 10));
    Scene.DrawCached(20, 10);
    int32_t Count = A->GetRedrawCount();
    Scene.MoveGroupBy(point2d(4, 0));
    ownership_pointer<art_bitmap> After = Scene.DrawCached(20, 10);
    ASSERT_EQ(2u, Scene.Calls.size());
    EXPECT_FALSE(Scene.Calls[1].AllowExpansion);
    EXPECT_EQ(int_rectangle(int_point2d(0, 0), int_point2d(4, 10)), Scene.Calls[1].Window);
    EXPECT_EQ(Count, A->GetRedrawCount());
    reference_pointer<art_object_cached_bitmap> Entry = Scene.Cache.GetCachedBitmap(A);
    EXPECT_EQ(int_rectangle(int_point2d(0, 0), int_point2d(14, 10)), Entry->GetWindow());
    EXPECT_EQ(1, Entry->GetHits());
    EXPECT_TRUE(NoRed(*Entry->GetBitmap()));
    // The grown picture serves the next frame as it stands.
    ownership_pointer<art_bitmap> Again = Scene.DrawCached(20, 10);
    EXPECT_EQ(2u, Scene.Calls.size());
    EXPECT_EQ(2, Entry->GetHits());
    ownership_pointer<art_bitmap> Fresh = Scene.DrawUncached(20, 10);
    EXPECT_TRUE(SameBitmaps(*Fresh, *After));
    EXPECT_TRUE(SameBitmaps(*Fresh, *Again));
}

TEST(ArtCache, GrowthRendersTopStripThenLeftStrip)
{
    scene Scene;
    reference_pointer<art_object> A = Scene.AddCounted(point2d(-20, -20), point2d(40, 40));
    Scene.DrawCached(40, 40);
    Scene.MoveGroupBy(point2d(3, 2));
    ownership_pointer<art_bitmap> After = Scene.DrawCached(40, 40);
    ASSERT_EQ(3u, Scene.Calls.size());
    EXPECT_EQ(int_rectangle(int_point2d(0, 0), int_point2d(23, 2)), Scene.Calls[1].Window);
    EXPECT_EQ(int_rectangle(int_point2d(0, 2), int_point2d(3, 20)), Scene.Calls[2].Window);
    EXPECT_TRUE(NoRed(*Scene.Cache.GetCachedBitmap(A)->GetBitmap()));
    ownership_pointer<art_bitmap> Fresh = Scene.DrawUncached(40, 40);
    EXPECT_TRUE(SameBitmaps(*Fresh, *After));
}

TEST(ArtCache, GrowthRendersBottomAndRightStrips)
{
    scene Scene;
    reference_pointer<art_object> A = Scene.AddCounted(point2d(20, 20), point2d(40, 40));
    Scene.DrawCached(40, 40);
    Scene.MoveGroupBy(point2d(-2, -3));
    ownership_pointer<art_bitmap> After = Scene.DrawCached(40, 40);
    ASSERT_EQ(3u, Scene.Calls.size());
    EXPECT_EQ(int_rectangle(int_point2d(18, 37), int_point2d(22, 3)), Scene.Calls[1].Window);
    EXPECT_EQ(int_rectangle(int_point2d(38, 17), int_point2d(2, 20)), Scene.Calls[2].Window);
    EXPECT_TRUE(NoRed(*Scene.Cache.GetCachedBitmap(A)->GetBitmap()));
    ownership_pointer<art_bitmap> Fresh = Scene.DrawUncached(40, 40);
    EXPECT_TRUE(SameBitmaps(*Fresh, *After));
}

TEST(ArtCache, GrowthBeyondTheLimitKeepsTheClippingWindow)
{
    scene Scene;
    reference_pointer<art_object> A = Scene.AddCounted(point2d(-20, 0), point2d(60, 10));
    Scene.DrawCached(20, 10);
    // The union would be 25 wide; the limit is the target's 20, so it gives up its left part.
    Scene.MoveGroupBy(point2d(-5, 0));
    ownership_pointer<art_bitmap> After = Scene.DrawCached(20, 10);
    ASSERT_EQ(2u, Scene.Calls.size());
    EXPECT_EQ(int_rectangle(int_point2d(15, 0), int_point2d(5, 10)), Scene.Calls[1].Window);
    EXPECT_EQ(int_rectangle(int_point2d(0, 0), int_point2d(20, 10)), Scene.Cache.GetCachedBitmap(A)->GetWindow());
    ownership_pointer<art_bitmap> Fresh = Scene.DrawUncached(20, 10);
    EXPECT_TRUE(SameBitmaps(*Fresh, *After));
}

TEST(ArtCache, GrowthWithinTheCacheLimitKeepsTheWholeUnion)
{
    scene Scene;
    reference_pointer<art_object> A = Scene.AddCounted(point2d(-20, 0), point2d(60, 10));
    Scene.Cache.SetMaxCacheSize(int_point2d(25, 12));
    Scene.DrawCached(20, 10);
    Scene.MoveGroupBy(point2d(-5, 0));
    Scene.DrawCached(20, 10);
    ASSERT_EQ(2u, Scene.Calls.size());
    EXPECT_EQ(int_rectangle(int_point2d(15, 0), int_point2d(5, 10)), Scene.Calls[1].Window);
    EXPECT_EQ(int_rectangle(int_point2d(-5, 0), int_point2d(25, 10)), Scene.Cache.GetCachedBitmap(A)->GetWindow());
}

namespace {

ownership_pointer<art_cached_bitmap> MakeEntry(art_object &Owner, int Width, int Height, double Cost = 0)
{
    ownership_pointer<art_bitmap> Bitmap(new art_bitmap(Width, Height));
    return ownership_pointer<art_cached_bitmap>(new art_object_cached_bitmap(
        Bitmap, &Owner, Cost, Owner.GetRedrawCount(), int_rectangle(int_point2d(), int_point2d(Width, Height)),
        agg::trans_affine()));
}

void Frames(art_cache &Cache, int Count)
{
    for (int I = 0; I < Count; I++) {
        Cache.AgeEntries();
        Cache.Clean();
    }
}

} // namespace

TEST(ArtCache, EntryUnusedForItsAgeLimitDisappears)
{
    art_cache Cache;
    art_object Owner;
    // 1000 pixels: 101 unused frames.
    Cache.SetCachedBitmap(&Owner, MakeEntry(Owner, 40, 25));
    Frames(Cache, 101);
    EXPECT_TRUE(Cache.GetCachedBitmap(&Owner).IsSet());
    Frames(Cache, 1);
    EXPECT_FALSE(Cache.GetCachedBitmap(&Owner).IsSet());
    EXPECT_EQ(0, Cache.GetNumberOfEntries());
}

TEST(ArtCache, FullWindowEntryLives580Frames)
{
    art_cache Cache;
    art_object Owner;
    Cache.SetCachedBitmap(&Owner, MakeEntry(Owner, 800, 600));
    Frames(Cache, 580);
    EXPECT_TRUE(Cache.GetCachedBitmap(&Owner).IsSet());
    Frames(Cache, 1);
    EXPECT_FALSE(Cache.GetCachedBitmap(&Owner).IsSet());
}

TEST(ArtCache, EntryUsedEvery100FramesStays)
{
    art_cache Cache;
    art_object Owner;
    Cache.SetCachedBitmap(&Owner, MakeEntry(Owner, 10, 10));
    for (int Round = 0; Round < 10; Round++) {
        Frames(Cache, 100);
        ASSERT_TRUE(Cache.GetCachedBitmap(&Owner).IsSet());
        Cache.GetCachedBitmap(&Owner)->CountHit();
    }
    EXPECT_EQ(10, Cache.GetCachedBitmap(&Owner)->GetHits());
}

TEST(ArtCache, CostDoesNotProtectAnEntryFromClean)
{
    art_cache Cache;
    art_object Cheap;
    art_object Costly;
    Cache.SetCachedBitmap(&Cheap, MakeEntry(Cheap, 10, 10, 0.0001));
    Cache.SetCachedBitmap(&Costly, MakeEntry(Costly, 10, 10, 1000.0));
    Frames(Cache, 101);
    EXPECT_FALSE(Cache.GetCachedBitmap(&Cheap).IsSet());
    EXPECT_FALSE(Cache.GetCachedBitmap(&Costly).IsSet());
}

TEST(ArtCache, EntryOfADeadOwnerGoesAtTheNextClean)
{
    art_cache Cache;
    ownership_pointer<art_object> Owner(new art_object);
    Cache.SetCachedBitmap(Owner, MakeEntry(*Owner, 4, 4));
    EXPECT_EQ(1, Cache.GetNumberOfEntries());
    Owner = ownership_pointer<art_object>();
    Cache.Clean();
    EXPECT_EQ(0, Cache.GetNumberOfEntries());
}

TEST(ArtCache, EntryOfAnotherKindIsNotAnObjectEntry)
{
    art_cache Cache;
    art_object Owner;
    ownership_pointer<art_bitmap> Bitmap(new art_bitmap(2, 2));
    Cache.SetCachedBitmap(&Owner, ownership_pointer<art_cached_bitmap>(new art_cached_bitmap(Bitmap, &Owner, 0)));
    EXPECT_EQ(1, Cache.GetNumberOfEntries());
    EXPECT_FALSE(Cache.GetCachedBitmap(&Owner).IsSet());
}

TEST(ArtCache, SetCachedBitmapReplacesTheEarlierEntry)
{
    art_cache Cache;
    art_object Owner;
    Cache.SetCachedBitmap(&Owner, MakeEntry(Owner, 4, 4));
    Cache.SetCachedBitmap(&Owner, MakeEntry(Owner, 6, 3));
    EXPECT_EQ(1, Cache.GetNumberOfEntries());
    EXPECT_EQ(int_point2d(6, 3), Cache.GetCachedBitmap(&Owner)->GetBitmap()->GetSize());
}

TEST(ArtCache, FitsMeasuresTheMoveFromTheRenderedMatrix)
{
    art_object Owner;
    ownership_pointer<art_bitmap> Bitmap(new art_bitmap(4, 4));
    art_object_cached_bitmap Entry(Bitmap, &Owner, 0, 7, int_rectangle(int_point2d(10, 3), int_point2d(4, 4)),
                                   agg::trans_affine_translation(10.25, 3));
    int_point2d Shift;
    EXPECT_TRUE(Entry.Fits(7, agg::trans_affine_translation(13.25, 1), point2d(4, 4), Shift));
    EXPECT_EQ(int_point2d(3, -2), Shift);
    EXPECT_FALSE(Entry.Fits(8, agg::trans_affine_translation(13.25, 1), point2d(4, 4), Shift));
    EXPECT_FALSE(Entry.Fits(7, agg::trans_affine_translation(10.75, 3), point2d(4, 4), Shift));
    EXPECT_TRUE(Entry.Fits(7, agg::trans_affine_translation(10.25 + 0.0039, 3), point2d(4, 4), Shift));
    EXPECT_FALSE(Entry.Fits(7, agg::trans_affine_translation(10.25 + 0.00390625, 3), point2d(4, 4), Shift));
    agg::trans_affine Scaled = agg::trans_affine_scaling(1, 1 + 1.0 / 1024);
    Scaled.translate(10.25, 3);
    EXPECT_FALSE(Entry.Fits(7, Scaled, point2d(4, 4), Shift));
    EXPECT_TRUE(Entry.Fits(7, Scaled, point2d(4, 2), Shift));
}

TEST(ArtCache, AgeLimitIsFixedByThePictureSize)
{
    art_object Owner;
    ownership_pointer<art_cached_bitmap> Small = MakeEntry(Owner, 40, 25);
    ownership_pointer<art_cached_bitmap> Window = MakeEntry(Owner, 800, 600);
    ownership_pointer<art_cached_bitmap> Empty = MakeEntry(Owner, 0, 0);
    EXPECT_EQ(101, Small->GetAgeLimit());
    EXPECT_EQ(580, Window->GetAgeLimit());
    EXPECT_EQ(100, Empty->GetAgeLimit());
}

TEST(ArtCache, EntryTellsWhereItsPictureIsOpaqueAndTransparent)
{
    art_object Owner;
    ownership_pointer<art_bitmap> Bitmap(new art_bitmap(12, 3));
    Bitmap->Clear(agg::rgba8(10, 20, 30, 255));
    for (int X = 0; X < 12; X++)
        Bitmap->GetPixelRow(2)[X] = agg::rgba8(0, 0, 0, 0);
    ownership_pointer<art_object_cached_bitmap> Entry(new art_object_cached_bitmap(
        Bitmap, &Owner, 0, 0, int_rectangle(int_point2d(), int_point2d(12, 3)), agg::trans_affine()));
    const art_alpha_runs &Runs = Entry->GetAlphaRuns();
    EXPECT_EQ(int_point2d(12, 3), Runs.GetSize());
    std::vector<int> Found;
    Runs.ForEachRun(0, 3, 0, 12, [&Found](art_alpha_runs::run_kind Kind, int32_t Top, int32_t Rows, int32_t Start,
                                          int32_t Length) {
        Found.insert(Found.end(), {int(Kind), Top, Rows, Start, Length});
    });
    std::vector<int> Want = {art_alpha_runs::Opaque, 0, 2, 0, 12, art_alpha_runs::Transparent, 2, 1, 0, 12};
    EXPECT_EQ(Want, Found);
}
