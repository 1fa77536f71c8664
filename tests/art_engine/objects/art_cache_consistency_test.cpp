#include <gtest/gtest.h>

#include <vector>

#include "tests/art_engine/objects/art_render_test_support.h"
#include "tests/test_support.h"

using namespace art_render_test;

// Long runs of moves and repaints, each checked against a draw of the same tree with no cache: a
// fault in the strips, the window shift or the cut to the limit shows as a differing pixel.

namespace {

// A fixed sequence of pseudo-random numbers, so that every run tries the same cases.
class sequence
{
public:
    explicit sequence(unsigned Seed) : Seed(Seed) {}

    int Next(int Below)
    {
        Seed = Seed * 1103515245u + 12345u;
        return int((Seed >> 16) % unsigned(Below));
    }

private:
    unsigned Seed;
};

} // namespace

TEST(ArtCacheConsistency, WholePixelMovesDrawTheSameWithTheCacheAsWithout)
{
    sequence Random(12345);
    int Strips = 0;
    int Hits = 0;
    for (int Round = 0; Round < 40; Round++) {
        art_object Root;
        Place(Root, point2d(0, 0), point2d(100, 100));
        reference_pointer<art_object> Group = AddGroup(Root, point2d(0, 0), point2d(100, 100));
        std::vector<render_call> Calls;
        std::vector<reference_pointer<art_object>> Objects;
        for (int K = 0; K < 3; K++) {
            ownership_pointer<art_object> Counted(new counting_object(&Calls));
            point2d Size(5 + Random.Next(40), 5 + Random.Next(30));
            Place(*Counted, point2d(Random.Next(50) - 20, Random.Next(40) - 15), Size);
            reference_pointer<art_object> Object = Group->AddChild(Counted);
            AddFill(*Object, point2d(0, 0), Size, White, StackModePlusStencil);
            AddFill(*Object, point2d(0, 0), Size, Pixel(0, 0, 90, 255));
            for (int X = 0; X < Size.X; X += 2)
                AddFill(*Object, point2d(X, (X * 7) % int(Size.Y)), point2d(1, 3),
                        Pixel(X * 9 % 256, 200, K * 80, 255));
            Objects.push_back(Object);
        }
        art_cache Cache;
        Cache.SetMaxCacheSize(int_point2d(Random.Next(60), Random.Next(60)));
        for (int Step = 0; Step < 12; Step++) {
            int Width = 10 + Random.Next(40);
            int Height = 10 + Random.Next(40);
            Group->SetLocation(Group->GetLocation() + point2d(Random.Next(15) - 7, Random.Next(15) - 7));
            ownership_pointer<art_bitmap> Cached = DrawAlone(Root, Width, Height, agg::trans_affine(), &Cache);
            ownership_pointer<art_bitmap> Fresh = DrawAlone(Root, Width, Height);
            ASSERT_TRUE(SameBitmaps(*Fresh, *Cached)) << "round " << Round << ", step " << Step;
        }
        for (const render_call &Call : Calls)
            Strips += Call.AllowExpansion ? 0 : 1;
        for (const reference_pointer<art_object> &Object : Objects)
            if (Cache.GetCachedBitmap(Object).IsSet())
                Hits += Cache.GetCachedBitmap(Object)->GetHits();
    }
    // The runs did reach the paths that they check.
    EXPECT_GT(Strips, 0);
    EXPECT_GT(Hits, 0);
}

TEST(ArtCacheConsistency, PartialRepaintsLeaveTheWindowAsAFullDrawMakesIt)
{
    sequence Random(777);
    agg::rgba Background(0.2, 0.3, 0.4, 1);
    // The background's bytes: each component times 255, plus 0.5, truncated.
    agg::rgba8 BackgroundBytes = Pixel(51, 77, 102, 255);
    int Partials = 0;
    for (int Round = 0; Round < 20; Round++) {
        test_top_object Top;
        Top.SetSize(point2d(60, 40));
        Top.SetBackgroundColor(Background);
        std::vector<reference_pointer<art_object>> Objects;
        for (int K = 0; K < 4; K++) {
            point2d Size(3 + Random.Next(20), 3 + Random.Next(15));
            reference_pointer<art_object> Object =
                AddGroup(Top, point2d(Random.Next(60) - 5, Random.Next(40) - 5), Size);
            AddFill(*Object, point2d(0, 0), Size, White, StackModePlusStencil);
            AddFill(*Object, point2d(0, 0), Size, Pixel(0, 40 * K, 90, 255));
            AddFill(*Object, point2d(1, 1), point2d(1, 1), Pixel(200, 0, 0, 255));
            Objects.push_back(Object);
        }
        Top.PaintAll();
        for (int Step = 0; Step < 10; Step++) {
            reference_pointer<art_object> Object = Objects[Random.Next(4)];
            double Fraction = Random.Next(3) == 0 ? 0.25 * Random.Next(4) : 0;
            Object->SetLocation(Object->GetLocation() + point2d(Random.Next(9) - 4 + Fraction, Random.Next(9) - 4));
            Top.Presented.clear();
            Top.PaintAll();
            if (!Top.Presented.empty() && Top.Presented[0].Size != int_point2d(60, 40))
                Partials++;
            ownership_pointer<art_bitmap> Fresh(new art_bitmap(60, 40));
            Fresh->Clear(BackgroundBytes);
            reference_pointer<bitmap_interface> Target(Fresh.Get());
            Top.Draw(Target, Target, agg::trans_affine(), reference_pointer<art_cache>());
            ASSERT_TRUE(SameBitmaps(*Fresh, *Top.GetBitmap())) << "round " << Round << ", step " << Step;
        }
        Top.MarkChildrenForDeletion();
        Top.DeleteMarkedChildren();
    }
    EXPECT_GT(Partials, 0);
}
