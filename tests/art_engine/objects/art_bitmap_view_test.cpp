#include <gtest/gtest.h>

#include <functional>

#include "art_engine/pixels/art_bitmap.h"
#include "tests/art_engine/objects/art_render_test_support.h"
#include "tests/art_engine/pixels/art_pixel_test_support.h"
#include "zel_basics/zel_error.h"

using namespace art_pixel_test;
using art_render_test::PixelsAre;

namespace {

agg::rgba8 Pattern(int X, int Y) { return Pixel(10 + X, 20 + Y, 30 + X + Y, 255); }

void FillPattern(art_bitmap &Bitmap)
{
    for (int Y = 0; Y < Bitmap.GetSize().Y; Y++)
        for (int X = 0; X < Bitmap.GetSize().X; X++)
            Bitmap.GetPixelRow(Y)[X] = Pattern(X, Y);
}

struct viewed
{
    art_bitmap Parent{7, 5};
    int_rectangle Part;
    art_bitmap View;

    explicit viewed(const int_rectangle &Part)
        : Part(Part), View((FillPattern(Parent), reference_pointer<art_bitmap>(&Parent)), Part)
    {
    }

    // The parent's pixels: Inner inside the part, given the view's coordinates, else the pattern.
    testing::AssertionResult ParentIs(const std::function<agg::rgba8(int X, int Y)> &Inner)
    {
        return PixelsAre(Parent, [&](int X, int Y) {
            return Part.Contains(int_rectangle(int_point2d(X, Y), int_point2d(1, 1)))
                       ? Inner(X - Part.Location.X, Y - Part.Location.Y)
                       : Pattern(X, Y);
        });
    }
};

TEST(ArtBitmapView, SharesTheParentsPixelsAndRowDistance)
{
    viewed V(int_rectangle(int_point2d(1, 2), int_point2d(3, 2)));
    EXPECT_TRUE(V.View.IsView());
    EXPECT_FALSE(V.Parent.IsView());
    EXPECT_EQ(int_point2d(3, 2), V.View.GetSize());
    EXPECT_EQ(7 * 4, V.View.GetPixelStride());
    EXPECT_EQ(V.Parent.GetPixelData() + 2 * 28 + 1 * 4, V.View.GetPixelData());
    EXPECT_EQ(0, V.View.GetPixelDataSize());
    EXPECT_TRUE(PixelsAre(V.View, [](int X, int Y) { return Pattern(X + 1, Y + 2); }));
    V.View.GetPixelRow(1)[2] = Pixel(1, 2, 3, 4);
    EXPECT_TRUE(SamePixel(Pixel(1, 2, 3, 4), V.Parent.GetPixelRow(3)[3]));
}

TEST(ArtBitmapView, ClearWritesOnlyThePart)
{
    // A fill of four equal bytes and one of a pattern take different ways through the rows.
    const agg::rgba8 Values[] = {Pixel(7, 7, 7, 7), Pixel(9, 8, 7, 6)};
    for (const agg::rgba8 &Value : Values) {
        viewed V(int_rectangle(int_point2d(2, 1), int_point2d(4, 3)));
        V.View.Clear(Value);
        EXPECT_TRUE(V.ParentIs([&](int, int) { return Value; })) << PixelText(Value);
    }
}

TEST(ArtBitmapView, ClearOfFullWidthRowsWritesOnlyThoseRows)
{
    viewed V(int_rectangle(int_point2d(0, 1), int_point2d(7, 2)));
    V.View.Clear(Pixel(9, 8, 7, 6));
    EXPECT_TRUE(V.ParentIs([](int, int) { return Pixel(9, 8, 7, 6); }));
}

TEST(ArtBitmapView, EmptyViewDrawsNothing)
{
    viewed V(int_rectangle(int_point2d(7, 5), int_point2d(0, 0)));
    V.View.Clear(Pixel(1, 1, 1, 1));
    EXPECT_FALSE(V.View.HasTransparency());
    EXPECT_TRUE(V.ParentIs([](int, int) { return Pixel(0, 0, 0, 0); }));
}

TEST(ArtBitmapView, HasTransparencyLooksOnlyAtThePart)
{
    viewed V(int_rectangle(int_point2d(1, 1), int_point2d(3, 3)));
    V.Parent.GetPixelRow(0)[0] = Pixel(0, 0, 0, 0);
    V.Parent.GetPixelRow(4)[4] = Pixel(0, 0, 0, 0);
    EXPECT_FALSE(V.View.HasTransparency());
    V.Parent.GetPixelRow(3)[3] = Pixel(0, 0, 0, 254);
    EXPECT_TRUE(V.View.HasTransparency());
}

TEST(ArtBitmapView, DrawingIsClippedToThePart)
{
    viewed V(int_rectangle(int_point2d(2, 2), int_point2d(3, 2)));
    V.View.GetBaseRenderer().copy_bar(-10, -10, 100, 100, Pixel(1, 2, 3, 255));
    EXPECT_TRUE(V.ParentIs([](int, int) { return Pixel(1, 2, 3, 255); }));
}

TEST(ArtBitmapView, BitmapOperationsLandInThePartOnly)
{
    viewed V(int_rectangle(int_point2d(1, 1), int_point2d(4, 3)));
    art_bitmap Source(3, 3);
    Source.Clear(Pixel(50, 60, 70, 255));
    V.View.CopyBitmap(-1, 2, reference_pointer<art_bitmap>(&Source));
    V.View.BlendBitmap(3, -2, reference_pointer<art_bitmap>(&Source), 255);
    EXPECT_TRUE(V.ParentIs([](int X, int Y) {
        return (X < 2 && Y == 2) || (X == 3 && Y == 0) ? Pixel(50, 60, 70, 255) : Pattern(X + 1, Y + 1);
    }));
}

TEST(ArtBitmapView, StencilMasksOnlyThePart)
{
    viewed V(int_rectangle(int_point2d(3, 0), int_point2d(2, 4)));
    art_bitmap Stencil(2, 4);
    Stencil.Clear(Pixel(128, 128, 128, 255));
    V.View.ApplyStencil(reference_pointer<art_bitmap>(&Stencil));
    // Luma 128: colours (c * 128) >> 8, alpha (255 * 128 + 255) >> 8 = 128.
    EXPECT_TRUE(V.ParentIs([](int X, int Y) {
        agg::rgba8 P = Pattern(X + 3, Y);
        return Pixel(P.r / 2, P.g / 2, P.b / 2, 128);
    }));
}

TEST(ArtBitmapView, CopyOfAViewOwnsRowsWithoutGaps)
{
    viewed V(int_rectangle(int_point2d(1, 2), int_point2d(3, 2)));
    art_bitmap Copy{reference_pointer<bitmap_interface>(&V.View)};
    EXPECT_FALSE(Copy.IsView());
    EXPECT_EQ(3 * 4, Copy.GetPixelStride());
    EXPECT_TRUE(PixelsAre(Copy, [](int X, int Y) { return Pattern(X + 1, Y + 2); }));
}

TEST(ArtBitmapView, CannotChangeItsSize)
{
    viewed V(int_rectangle(int_point2d(1, 2), int_point2d(3, 2)));
    EXPECT_THROW(V.View.SetSize(2, 2), zel_error);
    EXPECT_EQ(int_point2d(3, 2), V.View.GetSize());
}

TEST(ArtBitmapView, MustLieInsideItsParent)
{
    art_bitmap Parent(4, 4);
    const int_rectangle Outside[] = {int_rectangle(int_point2d(-1, 0), int_point2d(2, 2)),
                                     int_rectangle(int_point2d(3, 3), int_point2d(2, 1)),
                                     int_rectangle(int_point2d(0, 0), int_point2d(4, 5))};
    for (const int_rectangle &Part : Outside)
        EXPECT_THROW(art_bitmap(reference_pointer<art_bitmap>(&Parent), Part), zel_error);
}

} // namespace
