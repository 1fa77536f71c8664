#include <gtest/gtest.h>

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <agg_trans_affine.h>

#include "art_engine/images/art_bitmap_manager.h"
#include "art_engine/images/art_image_codecs.h"
#include "art_engine/images/art_managed_bitmap.h"
#include "art_engine/images/art_mipmapped_bitmap.h"
#include "art_engine/pixels/art_bitmap.h"
#include "tests/art_engine/images/art_gif_test_support.h"
#include "tests/debug_log_file.h"
#include "tests/test_support.h"
#include "xbd/xbd.h"
#include "zel_basics/debug.h"

namespace {

typedef ownership_pointer<art_bitmap> bitmap_owner;

// A premultiplied pixel from its four bytes.
struct pixel
{
    uint8_t R, G, B, A;
};

bool operator==(const pixel &P, const pixel &Q)
{
    return P.R == Q.R && P.G == Q.G && P.B == Q.B && P.A == Q.A;
}

std::ostream &operator<<(std::ostream &Stream, const pixel &P)
{
    return Stream << "(" << int(P.R) << "," << int(P.G) << "," << int(P.B) << "," << int(P.A) << ")";
}

pixel GetPixel(art_bitmap &Bitmap, int X, int Y)
{
    const agg::rgba8 &P = Bitmap.GetPixelRow(Y)[X];
    return pixel{P.r, P.g, P.b, P.a};
}

void SetPixel(art_bitmap &Bitmap, int X, int Y, pixel P)
{
    Bitmap.GetPixelRow(Y)[X] = agg::rgba8(P.R, P.G, P.B, P.A);
}

// Every pixel from Function(X, Y).
template <class PixelFunction> bitmap_owner MakeBitmap(int Width, int Height, PixelFunction Function)
{
    bitmap_owner Bitmap(new art_bitmap(Width, Height));
    for (int Y = 0; Y < Height; Y++)
        for (int X = 0; X < Width; X++)
            SetPixel(*Bitmap, X, Y, Function(X, Y));
    return Bitmap;
}

// Opaque noise that no image coder can shrink much, from a fixed seed.
bitmap_owner MakeNoise(int Width, int Height, uint32_t Seed)
{
    uint32_t State = Seed;
    return MakeBitmap(Width, Height, [&State](int, int) {
        State = State * 1664525u + 1013904223u;
        return pixel{uint8_t(State >> 24), uint8_t(State >> 16), uint8_t(State >> 8), 255};
    });
}

bitmap_owner MakeSolid(int Width, int Height, pixel Color)
{
    return MakeBitmap(Width, Height, [Color](int, int) { return Color; });
}

zel_string EncodePNG(bitmap_owner &Bitmap)
{
    zel_string Bytes;
    SaveImageToString(Bytes, Bitmap, ArtImageFormatPNG);
    return Bytes;
}

std::vector<pixel> Pixels(art_bitmap &Bitmap)
{
    std::vector<pixel> All;
    for (int Y = 0; Y < Bitmap.GetSize().Y; Y++)
        for (int X = 0; X < Bitmap.GetSize().X; X++)
            All.push_back(GetPixel(Bitmap, X, Y));
    return All;
}

std::vector<int_point2d> Sizes(const array<int_point2d> &List)
{
    std::vector<int_point2d> All;
    for (int I = 0; I < List.GetNumberOfElements(); I++)
        All.push_back(List[I]);
    return All;
}

std::vector<int_point2d> MipSizesOf(int W, int H)
{
    array<int_point2d> List;
    art_managed_bitmap::ComputeMipSizes(int_point2d(W, H), List);
    return Sizes(List);
}



std::string AttributeName(xbd_tag &Tag, int Index)
{
    return ToStd(Tag.GetFile()->GetAttributeNames().GetName(Tag.GetAttributes()[Index].NameNum));
}

// A "bitmaps" tag of a new file, with one "bitmap" child for each (ID, bytes) pair.
reference_pointer<xbd_tag> AddBitmapsTag(xbd_file &File, const std::vector<std::pair<std::string, zel_string>> &Entries)
{
    ownership_pointer<xbd_tag> Bitmaps(new xbd_tag("bitmaps", &File));
    for (const auto &Entry : Entries) {
        ownership_pointer<xbd_tag> Bitmap = Bitmaps->NewTag("bitmap");
        Bitmap->AddAttribute("bitmap_id", Entry.first.c_str());
        Bitmap->AddAttribute("pixel_data", Entry.second);
        Bitmaps->AddChildTag(Bitmap);
    }
    reference_pointer<xbd_tag> Ret(Bitmaps);
    File.GetRootTag()->AddChildTag(Bitmaps);
    return Ret;
}

// The corners of the rectangle (0, 0) to Extent under Matrix, as the manager maps an image.
void MapCorners(point2d Extent, const agg::trans_affine &Matrix, point2d Corners[4])
{
    Corners[0] = point2d(0, 0);
    Corners[1] = point2d(Extent.X, 0);
    Corners[2] = point2d(Extent.X, Extent.Y);
    Corners[3] = point2d(0, Extent.Y);
    for (int I = 0; I < 4; I++)
        Matrix.transform(&Corners[I].X, &Corners[I].Y);
}

// The picture that drawing Level of the first frame onto Extent under Matrix gives, on a transparent
// target of TargetSize: what the manager should produce when it picks that level.
bitmap_owner DrawLevelDirectly(art_managed_bitmap &Bitmap, int Level, int_point2d TargetSize, point2d Extent,
                               const agg::trans_affine &Matrix)
{
    bitmap_owner Target(new art_bitmap(TargetSize.X, TargetSize.Y));
    Target->Clear(agg::rgba8(0, 0, 0, 0));
    point2d Corners[4];
    MapCorners(Extent, Matrix, Corners);
    reference_pointer<art_bitmap> Source = Bitmap.GetMipLevel(0, Level);
    Target->DrawBitmapInQuad(Source, int_rectangle(int_point2d(0, 0), Source->GetSize()), Corners);
    return Target;
}

bitmap_owner DrawManaged(reference_pointer<art_managed_bitmap> Bitmap, int Frame, int_point2d TargetSize,
                         point2d Extent, const agg::trans_affine &Matrix)
{
    bitmap_owner Target(new art_bitmap(TargetSize.X, TargetSize.Y));
    Target->Clear(agg::rgba8(0, 0, 0, 0));
    art_bitmap_manager::DrawManagedBitmap(Target, Bitmap, Frame, Extent, Matrix);
    return Target;
}

} // namespace

// Mip sizes.

TEST(art_bitmap_manager, ThreeByThreeImageHasOnlyOneLevel)
{
    EXPECT_EQ(MipSizesOf(3, 3), (std::vector<int_point2d>{int_point2d(3, 3)}));

    bitmap_owner Picture = MakeNoise(3, 3, 1);
    art_bitmap_manager Manager;
    reference_pointer<art_managed_bitmap> Bitmap = Manager.AddBitmap(EncodePNG(Picture), "three.png");
    EXPECT_EQ(Sizes(Bitmap->GetMipSizes()), (std::vector<int_point2d>{int_point2d(3, 3)}));
    EXPECT_EQ(Bitmap->GetBitmapSize(), int_point2d(3, 3));
    std::string Message = ZEL_ERROR_MESSAGE(Bitmap->GetMipLevel(0, 1));
    EXPECT_NE(Message.find("'Level>=0 && Level<MipSizes.GetNumberOfElements()' is false"), std::string::npos)
        << Message;
}

TEST(art_bitmap_manager, FiveByOneImageHasLevelsFiveByOneAndTwoByZero)
{
    EXPECT_EQ(MipSizesOf(5, 1), (std::vector<int_point2d>{int_point2d(5, 1), int_point2d(2, 0)}));

    bitmap_owner Picture = MakeNoise(5, 1, 2);
    art_bitmap_manager Manager;
    reference_pointer<art_managed_bitmap> Bitmap = Manager.AddBitmap(EncodePNG(Picture), "thin.png");
    EXPECT_EQ(Sizes(Bitmap->GetMipSizes()), (std::vector<int_point2d>{int_point2d(5, 1), int_point2d(2, 0)}));
    // The level with no height exists, but holds no pixel, and drawing from it draws nothing.
    EXPECT_EQ(Bitmap->GetMipLevel(0, 1)->GetSize(), int_point2d(2, 0));
    bitmap_owner Target = DrawManaged(Bitmap, 0, int_point2d(4, 4), point2d(1, 0.2), agg::trans_affine());
    for (const pixel &P : Pixels(*Target))
        EXPECT_EQ(P, (pixel{0, 0, 0, 0}));
}

TEST(art_bitmap_manager, SquareImageOf256HasSevenLevelsDownToFour)
{
    std::vector<int_point2d> Expected;
    for (int Side = 256; Side >= 4; Side /= 2)
        Expected.push_back(int_point2d(Side, Side));
    EXPECT_EQ(MipSizesOf(256, 256), Expected);
    EXPECT_EQ(Expected.size(), 7u);
}

TEST(art_bitmap_manager, LongSideDecidesTheNumberOfLevels)
{
    // D runs 100, 50, 25, 12.5, 6.25, 3.125; the short side halves with it, down to 0.
    EXPECT_EQ(MipSizesOf(100, 30), (std::vector<int_point2d>{int_point2d(100, 30), int_point2d(50, 15),
                                                             int_point2d(25, 7), int_point2d(12, 3),
                                                             int_point2d(6, 1), int_point2d(3, 0)}));
    EXPECT_EQ(MipSizesOf(7, 40), (std::vector<int_point2d>{int_point2d(7, 40), int_point2d(3, 20),
                                                           int_point2d(1, 10), int_point2d(0, 5),
                                                           int_point2d(0, 2)}));
    EXPECT_EQ(MipSizesOf(4, 4), (std::vector<int_point2d>{int_point2d(4, 4)}));
    EXPECT_EQ(MipSizesOf(5, 5), (std::vector<int_point2d>{int_point2d(5, 5), int_point2d(2, 2)}));
}

// Level choice.

TEST(art_bitmap_manager, LevelDropsWhileTheScaleIsBelowOneHalf)
{
    EXPECT_EQ(art_managed_bitmap::SelectMipLevel(1.0, 7), 0);
    EXPECT_EQ(art_managed_bitmap::SelectMipLevel(0.5, 7), 0);
    EXPECT_EQ(art_managed_bitmap::SelectMipLevel(0.4999, 7), 1);
    EXPECT_EQ(art_managed_bitmap::SelectMipLevel(0.25, 7), 1);
    EXPECT_EQ(art_managed_bitmap::SelectMipLevel(0.2, 7), 2);
    EXPECT_EQ(art_managed_bitmap::SelectMipLevel(0.001, 7), 6);
    EXPECT_EQ(art_managed_bitmap::SelectMipLevel(0.001, 3), 2);
    EXPECT_EQ(art_managed_bitmap::SelectMipLevel(0.001, 1), 0);
}

TEST(art_bitmap_manager, ScaleOfExactlyOneHalfStaysAtTheCurrentLevel)
{
    bitmap_owner Picture = MakeNoise(16, 16, 3);
    art_bitmap_manager Manager;
    reference_pointer<art_managed_bitmap> Bitmap = Manager.AddBitmap(EncodePNG(Picture), "noise.png");
    // A quarter-pixel shift makes the levels sample differently, so that the picture tells them apart.
    agg::trans_affine Matrix = agg::trans_affine_translation(0.25, 0.25);
    point2d Extent(8, 8);
    bitmap_owner Drawn = DrawManaged(Bitmap, 0, int_point2d(10, 10), Extent, Matrix);
    EXPECT_EQ(Bitmap->GetMipMappedBitmap(0)->GetNumberOfLevels(), 1);

    bitmap_owner FromLevel0 = DrawLevelDirectly(*Bitmap, 0, int_point2d(10, 10), Extent, Matrix);
    bitmap_owner FromLevel1 = DrawLevelDirectly(*Bitmap, 1, int_point2d(10, 10), Extent, Matrix);
    ASSERT_NE(Pixels(*FromLevel0), Pixels(*FromLevel1));
    EXPECT_EQ(Pixels(*Drawn), Pixels(*FromLevel0));
}

TEST(art_bitmap_manager, ScaleJustBelowOneHalfDrawsFromTheNextLevel)
{
    bitmap_owner Picture = MakeNoise(16, 16, 3);
    art_bitmap_manager Manager;
    reference_pointer<art_managed_bitmap> Bitmap = Manager.AddBitmap(EncodePNG(Picture), "noise.png");
    agg::trans_affine Matrix = agg::trans_affine_translation(0.25, 0.25);
    point2d Extent(7.99, 7.99);
    bitmap_owner Drawn = DrawManaged(Bitmap, 0, int_point2d(10, 10), Extent, Matrix);
    EXPECT_EQ(Bitmap->GetMipMappedBitmap(0)->GetNumberOfLevels(), 2);
    EXPECT_EQ(Pixels(*Drawn), Pixels(*DrawLevelDirectly(*Bitmap, 1, int_point2d(10, 10), Extent, Matrix)));
}

TEST(art_bitmap_manager, ScaleComesFromTheMatrixAndTheExtentTogether)
{
    // A 32-pixel image over 32 object units, under a matrix that halves X and quarters Y: M is
    // (0.5 + 0.25) / 2 = 0.375, one level down.
    bitmap_owner Picture = MakeNoise(32, 32, 4);
    art_bitmap_manager Manager;
    reference_pointer<art_managed_bitmap> Bitmap = Manager.AddBitmap(EncodePNG(Picture), "noise.png");
    agg::trans_affine Matrix = agg::trans_affine_scaling(0.5, 0.25) * agg::trans_affine_translation(0.5, 0.5);
    point2d Extent(32, 32);
    bitmap_owner Drawn = DrawManaged(Bitmap, 0, int_point2d(20, 12), Extent, Matrix);
    EXPECT_EQ(Bitmap->GetMipMappedBitmap(0)->GetNumberOfLevels(), 2);
    EXPECT_EQ(Pixels(*Drawn), Pixels(*DrawLevelDirectly(*Bitmap, 1, int_point2d(20, 12), Extent, Matrix)));
}

TEST(art_bitmap_manager, FullSizeAtIdentityReproducesTheImage)
{
    // A smooth picture: at fraction 0 the bilinear table gives the near tap 16256 of 16384 and each
    // side tap 64, so only hard edges would move a byte.
    bitmap_owner Picture = MakeBitmap(9, 7, [](int X, int Y) {
        return pixel{uint8_t(100 + 3 * X), uint8_t(60 + 5 * Y), uint8_t(200 - 2 * X - Y), 255};
    });
    art_bitmap_manager Manager;
    reference_pointer<art_managed_bitmap> Bitmap = Manager.AddBitmap(EncodePNG(Picture), "noise.png");
    bitmap_owner Drawn = DrawManaged(Bitmap, 0, int_point2d(9, 7), point2d(9, 7), agg::trans_affine());
    EXPECT_EQ(Pixels(*Drawn), Pixels(*Picture));
}

// Mip chains.

TEST(art_bitmap_manager, EachLevelAveragesTwoByTwoPixelsOfTheOneBefore)
{
    bitmap_owner Picture = MakeNoise(8, 6, 6);
    art_bitmap_manager Manager;
    reference_pointer<art_managed_bitmap> Bitmap = Manager.AddBitmap(EncodePNG(Picture), "noise.png");
    reference_pointer<art_bitmap> Level1 = Bitmap->GetMipLevel(0, 1);
    ASSERT_EQ(Level1->GetSize(), int_point2d(4, 3));
    // Sampling the middle of each 2 by 2 block weighs its four pixels 4096 / 16384 each, rounded.
    for (int Y = 0; Y < 3; Y++)
        for (int X = 0; X < 4; X++) {
            pixel A = GetPixel(*Picture, 2 * X, 2 * Y);
            pixel B = GetPixel(*Picture, 2 * X + 1, 2 * Y);
            pixel C = GetPixel(*Picture, 2 * X, 2 * Y + 1);
            pixel D = GetPixel(*Picture, 2 * X + 1, 2 * Y + 1);
            pixel Expected{uint8_t((A.R + B.R + C.R + D.R + 2) >> 2), uint8_t((A.G + B.G + C.G + D.G + 2) >> 2),
                           uint8_t((A.B + B.B + C.B + D.B + 2) >> 2), 255};
            EXPECT_EQ(GetPixel(*Level1, X, Y), Expected) << "at " << X << "," << Y;
        }
}

TEST(art_bitmap_manager, LevelsAreMadeInOrderOnlyWhenAskedFor)
{
    bitmap_owner Picture = MakeNoise(64, 64, 7);
    art_bitmap_manager Manager;
    reference_pointer<art_managed_bitmap> Bitmap = Manager.AddBitmap(EncodePNG(Picture), "noise.png");
    reference_pointer<art_mipmapped_bitmap> Chain = Bitmap->GetMipMappedBitmap(0);
    EXPECT_EQ(Chain->GetNumberOfLevels(), 1);
    EXPECT_EQ(Bitmap->GetMipLevel(0, 3)->GetSize(), int_point2d(8, 8));
    EXPECT_EQ(Chain->GetNumberOfLevels(), 4);
    EXPECT_EQ(Chain->GetLevel(1)->GetSize(), int_point2d(32, 32));
    EXPECT_EQ(Chain->GetLevel(2)->GetSize(), int_point2d(16, 16));
    // Level 3 is made from level 2 and not from the picture itself.
    bitmap_owner FromLevel2 = art_mipmapped_bitmap::MakeHalfSizeBitmap(Chain->GetLevel(2));
    EXPECT_EQ(Pixels(*Bitmap->GetMipLevel(0, 3)), Pixels(*FromLevel2));
}

TEST(art_bitmap_manager, RepeatedUseSharesOneChain)
{
    bitmap_owner Picture = MakeNoise(32, 32, 8);
    zel_string Bytes = EncodePNG(Picture);
    art_bitmap_manager Manager;
    reference_pointer<art_managed_bitmap> First = Manager.AddBitmap(Bytes, "a.png");
    reference_pointer<art_managed_bitmap> Second = Manager.AddBitmap(Bytes, "b.png");
    ASSERT_EQ(First.Get(), Second.Get());

    // Shown at a quarter, M = 0.25: one level down.
    bitmap_owner DrawnFirst = DrawManaged(First, 0, int_point2d(8, 8), point2d(8, 8), agg::trans_affine());
    EXPECT_EQ(First->GetMipMappedBitmap(0)->GetNumberOfLevels(), 2);
    art_bitmap *Level1 = First->GetMipMappedBitmap(0)->GetLevel(1).Get();
    bitmap_owner DrawnSecond = DrawManaged(Second, 0, int_point2d(8, 8), point2d(8, 8), agg::trans_affine());
    EXPECT_EQ(Second->GetMipMappedBitmap(0)->GetNumberOfLevels(), 2);
    EXPECT_EQ(Second->GetMipLevel(0, 1).Get(), Level1);
    EXPECT_EQ(Pixels(*DrawnFirst), Pixels(*DrawnSecond));
    EXPECT_EQ(Pixels(*DrawnFirst),
              Pixels(*DrawLevelDirectly(*First, 1, int_point2d(8, 8), point2d(8, 8), agg::trans_affine())));
}

TEST(art_bitmap_manager, HalfSizeOfAnOddSizeDropsTheLastRowAndColumn)
{
    bitmap_owner Picture = MakeSolid(5, 3, pixel{10, 20, 30, 255});
    bitmap_owner Half = art_mipmapped_bitmap::MakeHalfSizeBitmap(Picture);
    ASSERT_EQ(Half->GetSize(), int_point2d(2, 1));
    EXPECT_EQ(GetPixel(*Half, 0, 0), (pixel{10, 20, 30, 255}));
    EXPECT_EQ(GetPixel(*Half, 1, 0), (pixel{10, 20, 30, 255}));
}

// Animated images.

TEST(art_bitmap_manager, AnimatedFrameUsesItsOwnMipChain)
{
    art_bitmap_manager Manager;
    reference_pointer<art_managed_bitmap> Bitmap = Manager.AddBitmap(MakeTwoColourGIF(8, 8, {0, 1}, 10), "two.gif");
    ASSERT_TRUE(Bitmap->GetIsAnimated());
    ASSERT_EQ(Bitmap->GetNumberOfFrames(), 2);
    EXPECT_EQ(Sizes(Bitmap->GetMipSizes()), (std::vector<int_point2d>{int_point2d(8, 8), int_point2d(4, 4)}));

    // Shown at a quarter: level 1 of the second frame, which is blue.
    bitmap_owner Drawn = DrawManaged(Bitmap, 1, int_point2d(4, 4), point2d(2, 2), agg::trans_affine());
    EXPECT_EQ(GetPixel(*Drawn, 0, 0), (pixel{0, 0, 255, 255}));
    EXPECT_EQ(GetPixel(*Drawn, 1, 1), (pixel{0, 0, 255, 255}));
    EXPECT_EQ(GetPixel(*Drawn, 2, 2), (pixel{0, 0, 0, 0}));
    EXPECT_EQ(Bitmap->GetMipMappedBitmap(1)->GetNumberOfLevels(), 2);
    EXPECT_EQ(Bitmap->GetMipMappedBitmap(0)->GetNumberOfLevels(), 1);

    bitmap_owner DrawnFirst = DrawManaged(Bitmap, 0, int_point2d(4, 4), point2d(2, 2), agg::trans_affine());
    EXPECT_EQ(GetPixel(*DrawnFirst, 0, 0), (pixel{255, 0, 0, 255}));
    EXPECT_NE(Bitmap->GetMipLevel(0, 1).Get(), Bitmap->GetMipLevel(1, 1).Get());
}

TEST(art_bitmap_manager, AnimatedImageKnowsItsFrameTimes)
{
    art_bitmap_manager Manager;
    reference_pointer<art_managed_bitmap> Bitmap =
        Manager.AddBitmap(MakeTwoColourGIF(4, 4, {0, 1, 0}, 20), "three.gif");
    ASSERT_EQ(Bitmap->GetNumberOfFrames(), 3);
    const array<double> &Times = Bitmap->GetFrameTimes();
    EXPECT_DOUBLE_EQ(Times[0], 0.0);
    EXPECT_DOUBLE_EQ(Times[1], 0.2);
    EXPECT_DOUBLE_EQ(Times[2], 0.4);
    EXPECT_DOUBLE_EQ(Bitmap->GetLoopTime(), 0.6);
    EXPECT_EQ(Bitmap->GetFrameAtTime(0.0), 0);
    EXPECT_EQ(Bitmap->GetFrameAtTime(0.25), 1);
    EXPECT_EQ(Bitmap->GetFrameAtTime(0.5), 2);
    EXPECT_EQ(Bitmap->GetFrameAtTime(Bitmap->GetLoopTime()), 0);
    EXPECT_EQ(Bitmap->GetFrameAtTime(0.85), 1);
}

TEST(art_bitmap_manager, SinglePageGIFIsNotAnimated)
{
    art_bitmap_manager Manager;
    reference_pointer<art_managed_bitmap> Bitmap = Manager.AddBitmap(MakeTwoColourGIF(4, 4, {1}, 10), "one.gif");
    EXPECT_FALSE(Bitmap->GetIsAnimated());
    ASSERT_EQ(Bitmap->GetNumberOfFrames(), 1);
    EXPECT_DOUBLE_EQ(Bitmap->GetFrameTimes()[0], 0.0);
    EXPECT_EQ(GetPixel(*Bitmap->GetMipLevel(0, 0), 3, 3), (pixel{0, 0, 255, 255}));
}

// Adding and finding.

TEST(art_bitmap_manager, AddingTheSameFileTwiceGivesTheSameID)
{
    bitmap_owner A = MakeNoise(4, 4, 9);
    bitmap_owner B = MakeNoise(4, 4, 10);
    zel_string BytesA = EncodePNG(A);
    zel_string BytesB = EncodePNG(B);
    art_bitmap_manager Manager;
    reference_pointer<art_managed_bitmap> First = Manager.AddBitmap(BytesA, "a.png");
    reference_pointer<art_managed_bitmap> Other = Manager.AddBitmap(BytesB, "b.png");
    // An equal copy of the bytes, not the same string.
    zel_string CopyOfA(BytesA.GetString(), BytesA.GetLength());
    reference_pointer<art_managed_bitmap> Again = Manager.AddBitmap(CopyOfA, "c.png");
    EXPECT_EQ(First->GetBitmapID(), 0);
    EXPECT_EQ(Other->GetBitmapID(), 1);
    EXPECT_EQ(Again->GetBitmapID(), 0);
    EXPECT_EQ(Again.Get(), First.Get());
    EXPECT_EQ(Again->GetOriginalFileName(), zel_string("a.png"));
    EXPECT_EQ(Manager.GetNumberOfBitmaps(), 2);
    EXPECT_EQ(Manager.GetNextBitmapID(), 2);
    EXPECT_EQ(Manager.GetBitmap(1).Get(), Other.Get());
}

TEST(art_bitmap_manager, NewBitmapKeepsItsBytesAndName)
{
    zel_string Bytes("not decoded until used", 22);
    art_bitmap_manager Manager;
    reference_pointer<art_managed_bitmap> Bitmap = Manager.AddBitmap(Bytes, "photo.jpg");
    EXPECT_EQ(Bitmap->GetOriginalFileBytes(), Bytes);
    EXPECT_EQ(Bitmap->GetOriginalFileName(), zel_string("photo.jpg"));
    EXPECT_FALSE(Bitmap->GetIsAnimated());
    EXPECT_FALSE(Bitmap->IsUsed());
}

TEST(art_bitmap_manager, AddingEmptyBytesIsAnAssertion)
{
    art_bitmap_manager Manager;
    std::string Message = ZEL_ERROR_MESSAGE(Manager.AddBitmap("", "empty.png"));
    EXPECT_NE(Message.find("'OriginalFileBytes.GetLength()>0' is false"), std::string::npos) << Message;
    EXPECT_EQ(Manager.GetNumberOfBitmaps(), 0);
}

TEST(art_bitmap_manager, UnknownIDIsAnAssertionForGetAndUnsetForFind)
{
    art_bitmap_manager Manager;
    Manager.AddBitmap("x", "x");
    EXPECT_FALSE(Manager.FindBitmap(5).IsSet());
    EXPECT_TRUE(Manager.FindBitmap(0).IsSet());
    std::string Unknown = ZEL_ERROR_MESSAGE(Manager.GetBitmap(5));
    EXPECT_NE(Unknown.find("'Slot>=0' is false"), std::string::npos) << Unknown;
    std::string Negative = ZEL_ERROR_MESSAGE(Manager.GetBitmap(-1));
    EXPECT_NE(Negative.find("'BitmapID>=0' is false"), std::string::npos) << Negative;
}

TEST(art_bitmap_manager, UnsetBitmapDrawsNothing)
{
    bitmap_owner Target = DrawManaged(reference_pointer<art_managed_bitmap>(), 0, int_point2d(3, 3), point2d(3, 3),
                                      agg::trans_affine());
    for (const pixel &P : Pixels(*Target))
        EXPECT_EQ(P, (pixel{0, 0, 0, 0}));
}

// Usage.

TEST(art_bitmap_manager, NoteUsageWidensTheRegionAndTheShownSize)
{
    art_managed_bitmap Bitmap("x", "x");
    EXPECT_FALSE(Bitmap.IsUsed());
    Bitmap.NoteUsage(rectangle(point2d(10, 20), point2d(5, 5)), point2d(40, 10));
    EXPECT_TRUE(Bitmap.IsUsed());
    EXPECT_EQ(Bitmap.GetUsedRegion(), rectangle(point2d(10, 20), point2d(5, 5)));
    EXPECT_EQ(Bitmap.GetUsedAtScale(), point2d(40, 10));
    Bitmap.NoteUsage(rectangle(point2d(2, 22), point2d(4, 10)), point2d(30, 12));
    EXPECT_EQ(Bitmap.GetUsedRegion(), rectangle(point2d(2, 20), point2d(13, 12)));
    EXPECT_EQ(Bitmap.GetUsedAtScale(), point2d(40, 12));
    Bitmap.ClearUsage();
    EXPECT_FALSE(Bitmap.IsUsed());
    // After clearing, the first note is taken as it is, however small.
    Bitmap.NoteUsage(rectangle(point2d(1, 1), point2d(1, 1)), point2d(2, 2));
    EXPECT_EQ(Bitmap.GetUsedRegion(), rectangle(point2d(1, 1), point2d(1, 1)));
    EXPECT_EQ(Bitmap.GetUsedAtScale(), point2d(2, 2));
}

// The "bitmaps" tag.

TEST(art_bitmap_manager, TagWritesOneBitmapForEachUsedBitmapInIDOrder)
{
    bitmap_owner A = MakeNoise(4, 4, 11);
    bitmap_owner B = MakeNoise(4, 4, 12);
    bitmap_owner C = MakeNoise(4, 4, 13);
    art_bitmap_manager Manager;
    zel_string BytesA = EncodePNG(A);
    zel_string BytesC = EncodePNG(C);
    reference_pointer<art_managed_bitmap> First = Manager.AddBitmap(BytesA, "a.png");
    Manager.AddBitmap(EncodePNG(B), "b.png");
    reference_pointer<art_managed_bitmap> Third = Manager.AddBitmap(BytesC, "c.png");
    Third->NoteUsage(rectangle(point2d(0, 0), point2d(4, 4)), point2d(4, 4));
    First->NoteUsage(rectangle(point2d(0, 0), point2d(4, 4)), point2d(4, 4));

    xbd_file File;
    ownership_pointer<xbd_tag> Bitmaps(new xbd_tag("bitmaps", &File));
    Manager.SaveToTag(Bitmaps);
    array<ownership_pointer<xbd_tag>> &Children = Bitmaps->GetChildren();
    ASSERT_EQ(Children.GetNumberOfElements(), 2);
    const zel_string Expected[2][2] = {{"0", BytesA}, {"2", BytesC}};
    for (int I = 0; I < 2; I++) {
        xbd_tag &Tag = *Children[I];
        EXPECT_EQ(Tag.GetName(), zel_string("bitmap"));
        ASSERT_EQ(Tag.GetAttributes().GetNumberOfElements(), 2);
        EXPECT_EQ(AttributeName(Tag, 0), "bitmap_id");
        EXPECT_EQ(AttributeName(Tag, 1), "pixel_data");
        EXPECT_EQ(Tag.GetAttribute("bitmap_id", ""), Expected[I][0]);
        EXPECT_EQ(Tag.GetAttribute("pixel_data", ""), Expected[I][1]);
        EXPECT_TRUE(Tag.GetChildren().GetNumberOfElements() == 0);
    }
}

TEST(art_bitmap_manager, TagReadBackThroughTheFileBytesGivesTheSameBitmaps)
{
    bitmap_owner A = MakeNoise(6, 5, 14);
    bitmap_owner B = MakeSolid(3, 2, pixel{0, 128, 0, 255});
    art_bitmap_manager Manager;
    zel_string BytesA = EncodePNG(A);
    zel_string BytesB = EncodePNG(B);
    Manager.AddBitmap(BytesA, "a.png")->NoteUsage(rectangle(point2d(0, 0), point2d(6, 5)), point2d(6, 5));
    Manager.AddBitmap(BytesB, "b.png")->NoteUsage(rectangle(point2d(0, 0), point2d(3, 2)), point2d(3, 2));

    zel_string Data;
    {
        xbd_file File;
        ownership_pointer<xbd_tag> Bitmaps(new xbd_tag("bitmaps", &File));
        Manager.SaveToTag(Bitmaps);
        File.GetRootTag()->AddChildTag(Bitmaps);
        Data = File.GetZELXMLv1String();
    }
    ownership_pointer<xbd_file> Loaded = xbd_file::LoadFromData(Data, false);
    reference_pointer<xbd_tag> Bitmaps = Loaded->GetRootTag()->GetChildTag("bitmaps");
    ASSERT_TRUE(Bitmaps.IsSet());
    art_bitmap_manager Read(Bitmaps);
    EXPECT_EQ(Read.GetNumberOfBitmaps(), 2);
    EXPECT_EQ(Read.GetNextBitmapID(), 2);
    EXPECT_EQ(Read.GetBitmap(0)->GetOriginalFileBytes(), BytesA);
    EXPECT_EQ(Read.GetBitmap(1)->GetOriginalFileBytes(), BytesB);
    EXPECT_EQ(Read.GetBitmap(1)->GetBitmapID(), 1);
    EXPECT_EQ(Pixels(*Read.GetBitmap(0)->GetMipLevel(0, 0)), Pixels(*A));
    EXPECT_EQ(Pixels(*Read.GetBitmap(1)->GetMipLevel(0, 0)), Pixels(*B));
    // The same bytes added to the loaded manager find the loaded bitmap.
    EXPECT_EQ(Read.AddBitmap(BytesB, "again.png")->GetBitmapID(), 1);
}

TEST(art_bitmap_manager, TagReadKeepsTheHighestIDPlusOneAsTheNextID)
{
    xbd_file File;
    reference_pointer<xbd_tag> Bitmaps = AddBitmapsTag(File, {{"7", "seven"}, {"3", "three"}});
    ownership_pointer<xbd_tag> Other = Bitmaps->NewTag("something_else");
    Other->AddAttribute("bitmap_id", "20");
    Bitmaps->AddChildTag(Other);
    art_bitmap_manager Manager(Bitmaps);
    EXPECT_EQ(Manager.GetNumberOfBitmaps(), 2);
    EXPECT_EQ(Manager.GetNextBitmapID(), 8);
    EXPECT_EQ(Manager.GetBitmap(3)->GetOriginalFileBytes(), zel_string("three"));
    EXPECT_EQ(Manager.GetBitmap(7)->GetOriginalFileBytes(), zel_string("seven"));
    EXPECT_EQ(Manager.AddBitmap("new", "new.png")->GetBitmapID(), 8);
}

TEST(art_bitmap_manager, TagWithoutBitmapsGivesAnEmptyManagerStartingAtZero)
{
    xbd_file File;
    reference_pointer<xbd_tag> Bitmaps = AddBitmapsTag(File, {});
    art_bitmap_manager Manager(Bitmaps);
    EXPECT_EQ(Manager.GetNumberOfBitmaps(), 0);
    EXPECT_EQ(Manager.GetNextBitmapID(), 0);
}

TEST(art_bitmap_manager, TagBitmapWithoutIDIsAnAssertion)
{
    xbd_file File;
    reference_pointer<xbd_tag> Bitmaps = AddBitmapsTag(File, {{"1", "one"}});
    ownership_pointer<xbd_tag> NoID = Bitmaps->NewTag("bitmap");
    NoID->AddAttribute("pixel_data", "data");
    Bitmaps->AddChildTag(NoID);
    std::string Message = ZEL_ERROR_MESSAGE(art_bitmap_manager Manager(Bitmaps));
    EXPECT_NE(Message.find("'ID>=0' is false"), std::string::npos) << Message;
}

TEST(art_bitmap_manager, TagWithARepeatedIDKeepsTheLastBitmap)
{
    xbd_file File;
    reference_pointer<xbd_tag> Bitmaps = AddBitmapsTag(File, {{"2", "first"}, {"2", "second"}});
    art_bitmap_manager Manager(Bitmaps);
    EXPECT_EQ(Manager.GetNumberOfBitmaps(), 1);
    EXPECT_EQ(Manager.GetBitmap(2)->GetOriginalFileBytes(), zel_string("second"));
    EXPECT_EQ(Manager.GetNextBitmapID(), 3);
}

TEST(art_bitmap_manager, TagWithTheLargestIDIsAnAssertion)
{
    xbd_file File;
    reference_pointer<xbd_tag> Bitmaps = AddBitmapsTag(File, {{"2147483647", "last"}});
    std::string Message = ZEL_ERROR_MESSAGE(art_bitmap_manager Manager(Bitmaps));
    EXPECT_NE(Message.find("'ID<INT32_MAX' is false"), std::string::npos) << Message;
}

// Damaged data.

TEST(art_bitmap_manager, DamagedImageBytesInTheTagLeaveAnEmptyBitmap)
{
    bitmap_owner Picture = MakeNoise(8, 8, 15);
    zel_string Good = EncodePNG(Picture);
    zel_string Truncated = Good.Left(Good.GetLength() / 2);
    zel_string Garbage("\x89PNG but not really a picture at all");
    xbd_file File;
    reference_pointer<xbd_tag> Bitmaps =
        AddBitmapsTag(File, {{"0", Garbage}, {"1", Truncated}, {"2", Good}, {"3", ""}});
    debug_log_file Log;
    art_bitmap_manager Manager(Bitmaps);
    ASSERT_EQ(Manager.GetNumberOfBitmaps(), 4);
    for (int ID : {0, 1, 3}) {
        reference_pointer<art_managed_bitmap> Bitmap = Manager.GetBitmap(ID);
        EXPECT_FALSE(Bitmap->HasFrames()) << "bitmap " << ID;
        EXPECT_EQ(Bitmap->GetNumberOfFrames(), 0);
        std::string Message = ZEL_ERROR_MESSAGE(Bitmap->GetMipLevel(0, 0));
        EXPECT_NE(Message.find("'MipMappedBitmaps.GetNumberOfElements()>0' is false"), std::string::npos)
            << Message;
        bitmap_owner Target = DrawManaged(Bitmap, 0, int_point2d(4, 4), point2d(4, 4), agg::trans_affine());
        for (const pixel &P : Pixels(*Target))
            EXPECT_EQ(P, (pixel{0, 0, 0, 0}));
    }
    EXPECT_NE(Log.Read().find("failed init\n"), std::string::npos);
    // The good bitmap beside them is whole.
    EXPECT_EQ(Pixels(*Manager.GetBitmap(2)->GetMipLevel(0, 0)), Pixels(*Picture));
}

TEST(art_bitmap_manager, AnimatedImageCutShortLeavesAnEmptyBitmap)
{
    zel_string Whole = MakeTwoColourGIF(8, 8, {0, 1}, 10);
    xbd_file File;
    reference_pointer<xbd_tag> Bitmaps = AddBitmapsTag(File, {{"0", Whole.Left(Whole.GetLength() - 3)}});
    debug_log_file Log;
    art_bitmap_manager Manager(Bitmaps);
    reference_pointer<art_managed_bitmap> Bitmap = Manager.GetBitmap(0);
    EXPECT_FALSE(Bitmap->HasFrames());
    EXPECT_NE(Log.Read().find("failed init\n"), std::string::npos);
    bitmap_owner Target = DrawManaged(Bitmap, 0, int_point2d(4, 4), point2d(4, 4), agg::trans_affine());
    for (const pixel &P : Pixels(*Target))
        EXPECT_EQ(P, (pixel{0, 0, 0, 0}));
}

TEST(art_bitmap_manager, AnimationWithDamagedPixelDataStillDrawsWhatDecodes)
{
    zel_string Bytes = MakeTwoColourGIF(8, 8, {0, 1}, 10);
    // A byte in the middle of the second page's compressed pixels: the codes after it go astray,
    // but the file's structure holds.
    Bytes[130] = char(0xFF);
    art_bitmap_manager Manager;
    reference_pointer<art_managed_bitmap> Bitmap = Manager.AddBitmap(Bytes, "damaged.gif");
    ASSERT_TRUE(Bitmap->GetIsAnimated());
    ASSERT_EQ(Bitmap->GetNumberOfFrames(), 2);
    EXPECT_EQ(Bitmap->GetBitmapSize(), int_point2d(8, 8));
    EXPECT_EQ(Bitmap->GetMipLevel(1, 1)->GetSize(), int_point2d(4, 4));
    // The first page is untouched.
    bitmap_owner Target = DrawManaged(Bitmap, 0, int_point2d(2, 2), point2d(2, 2), agg::trans_affine());
    EXPECT_EQ(GetPixel(*Target, 1, 1), (pixel{255, 0, 0, 255}));
}

TEST(art_bitmap_manager, DamagedBitmapIsLoggedOnceAndSavedAsItCame)
{
    zel_string Garbage("GIF89a cut short");
    art_bitmap_manager Manager;
    reference_pointer<art_managed_bitmap> Bitmap = Manager.AddBitmap(Garbage, "broken.gif");
    debug_log_file Log;
    EXPECT_FALSE(Bitmap->HasFrames());
    EXPECT_FALSE(Bitmap->HasFrames());
    std::string Text = Log.Read();
    size_t First = Text.find("failed init");
    ASSERT_NE(First, std::string::npos);
    EXPECT_EQ(Text.find("failed init", First + 1), std::string::npos);

    Bitmap->NoteUsage(rectangle(point2d(0, 0), point2d(1, 1)), point2d(1, 1));
    xbd_file File;
    ownership_pointer<xbd_tag> Bitmaps(new xbd_tag("bitmaps", &File));
    Manager.SaveToTag(Bitmaps);
    ASSERT_EQ(Bitmaps->GetChildren().GetNumberOfElements(), 1);
    EXPECT_EQ(Bitmaps->GetChildren()[0]->GetAttribute("pixel_data", ""), Garbage);
}

// Saving within the byte budget.

TEST(art_bitmap_manager, ImageShownAtFullSizeKeepsItsOriginalBytes)
{
    bitmap_owner Picture = MakeNoise(32, 32, 16);
    zel_string Bytes = EncodePNG(Picture);
    // Noise does not compress: the file is far above the budget, and is kept all the same.
    ASSERT_GT(Bytes.GetLength(), std::ceil(32 * 32 * 0.33));
    art_bitmap_manager Manager;
    reference_pointer<art_managed_bitmap> Bitmap = Manager.AddBitmap(Bytes, "noise.png");
    Bitmap->NoteUsage(rectangle(point2d(0, 0), point2d(32, 32)), point2d(32, 32));
    xbd_file File;
    ownership_pointer<xbd_tag> Bitmaps(new xbd_tag("bitmaps", &File));
    Manager.SaveToTag(Bitmaps);
    ASSERT_EQ(Bitmaps->GetChildren().GetNumberOfElements(), 1);
    EXPECT_EQ(Bitmaps->GetChildren()[0]->GetAttribute("pixel_data", ""), Bytes);
    EXPECT_EQ(Bitmap->GetSavedRegion(), int_rectangle(int_point2d(0, 0), int_point2d(32, 32)));
    point2d Location(0.1, 0.2);
    point2d Size(0.7, 0.9);
    Bitmap->RemapToSavedImage(Location, Size);
    EXPECT_EQ(Location, point2d(0.1, 0.2));
    EXPECT_EQ(Size, point2d(0.7, 0.9));
}

TEST(art_bitmap_manager, ImageShownLargerThanFullSizeKeepsItsOriginalBytes)
{
    bitmap_owner Picture = MakeNoise(16, 16, 17);
    zel_string Bytes = EncodePNG(Picture);
    art_bitmap_manager Manager;
    reference_pointer<art_managed_bitmap> Bitmap = Manager.AddBitmap(Bytes, "noise.png");
    Bitmap->NoteUsage(rectangle(point2d(-3, -3), point2d(30, 30)), point2d(64, 40));
    xbd_file File;
    ownership_pointer<xbd_tag> Bitmaps(new xbd_tag("bitmaps", &File));
    Manager.SaveToTag(Bitmaps);
    EXPECT_EQ(Bitmaps->GetChildren()[0]->GetAttribute("pixel_data", ""), Bytes);
}

TEST(art_bitmap_manager, SmallOriginalWithinTheBudgetIsKeptThoughShownSmaller)
{
    bitmap_owner Picture = MakeSolid(64, 64, pixel{200, 100, 50, 255});
    zel_string Bytes = EncodePNG(Picture);
    // Shown at 32 by 32: budget ceil(32 * 32 * 0.33) = 338 bytes, more than a flat picture needs.
    ASSERT_LE(Bytes.GetLength(), 338);
    art_bitmap_manager Manager;
    reference_pointer<art_managed_bitmap> Bitmap = Manager.AddBitmap(Bytes, "flat.png");
    Bitmap->NoteUsage(rectangle(point2d(0, 0), point2d(64, 64)), point2d(32, 32));
    xbd_file File;
    ownership_pointer<xbd_tag> Bitmaps(new xbd_tag("bitmaps", &File));
    Manager.SaveToTag(Bitmaps);
    EXPECT_EQ(Bitmaps->GetChildren()[0]->GetAttribute("pixel_data", ""), Bytes);
}

TEST(art_bitmap_manager, ImageShownSmallerIsReencodedWithinTheBudget)
{
    // A smooth picture with a little noise: the noise makes the PNG large, while a JPEG of the
    // picture at half size fits easily.
    uint32_t State = 99;
    bitmap_owner Picture = MakeBitmap(256, 256, [&State](int X, int Y) {
        State = State * 1664525u + 1013904223u;
        int Noise = int(State >> 29);
        return pixel{uint8_t(X / 2 + Noise), uint8_t(Y / 2 + Noise), uint8_t(100 + Noise), 255};
    });
    zel_string Bytes = EncodePNG(Picture);
    const int Budget = int(std::ceil(128 * 128 * 0.33));
    ASSERT_EQ(Budget, 5407);
    ASSERT_GT(Bytes.GetLength(), Budget);
    art_bitmap_manager Manager;
    reference_pointer<art_managed_bitmap> Bitmap = Manager.AddBitmap(Bytes, "smooth.png");
    Bitmap->NoteUsage(rectangle(point2d(0, 0), point2d(256, 256)), point2d(128, 128));
    xbd_file File;
    ownership_pointer<xbd_tag> Bitmaps(new xbd_tag("bitmaps", &File));
    Manager.SaveToTag(Bitmaps);
    zel_string Saved = Bitmaps->GetChildren()[0]->GetAttribute("pixel_data", "");
    EXPECT_LE(Saved.GetLength(), Budget);
    bitmap_owner Decoded = LoadImageFromString(Saved);
    ASSERT_TRUE(Decoded.IsSet());
    ASSERT_EQ(Decoded->GetSize(), int_point2d(128, 128));
    // Each saved pixel shows its 2 by 2 block of the original, within what a lossy coder changes.
    int WorstDifference = 0;
    for (int Y = 0; Y < 128; Y++)
        for (int X = 0; X < 128; X++) {
            pixel A = GetPixel(*Picture, 2 * X, 2 * Y);
            pixel B = GetPixel(*Picture, 2 * X + 1, 2 * Y);
            pixel C = GetPixel(*Picture, 2 * X, 2 * Y + 1);
            pixel D = GetPixel(*Picture, 2 * X + 1, 2 * Y + 1);
            pixel S = GetPixel(*Decoded, X, Y);
            int Differences[3] = {std::abs(S.R - (A.R + B.R + C.R + D.R) / 4),
                                  std::abs(S.G - (A.G + B.G + C.G + D.G) / 4),
                                  std::abs(S.B - (A.B + B.B + C.B + D.B) / 4)};
            for (int Difference : Differences)
                WorstDifference = std::max(WorstDifference, Difference);
        }
    EXPECT_LE(WorstDifference, 16);
    // Shrinking keeps the whole picture, so objects keep their coordinates.
    EXPECT_EQ(Bitmap->GetSavedRegion(), int_rectangle(int_point2d(0, 0), int_point2d(256, 256)));
}

namespace {

// A JPEG of 800x600 in smooth gradients, which survive shrinking and lossy coding nearly unchanged.
bitmap_owner MakeSmoothPhoto()
{
    return MakeBitmap(800, 600, [](int X, int Y) {
        return pixel{uint8_t(X * 255 / 799), uint8_t(Y * 255 / 599), uint8_t((X + Y) * 255 / 1398), 255};
    });
}

zel_string EncodeJPEG(bitmap_owner &Bitmap)
{
    zel_string Bytes;
    SaveImageToString(Bytes, Bitmap, ArtImageFormatJPEG, 95);
    return Bytes;
}

// The saved picture of Bitmap, written by the bitmap itself so that what it decodes stays visible.
bitmap_owner SaveAndDecode(reference_pointer<art_managed_bitmap> Bitmap)
{
    xbd_file File;
    ownership_pointer<xbd_tag> Bitmaps(new xbd_tag("bitmaps", &File));
    Bitmap->SaveToTag(Bitmaps);
    return LoadImageFromString(Bitmaps->GetChildren()[0]->GetAttribute("pixel_data", ""));
}

// The largest difference, over red, green and blue, between each saved pixel and the mean of the
// Side by Side block of Photo that it stands for, starting at Origin.
int WorstBlockDifference(art_bitmap &Saved, art_bitmap &Photo, int_point2d Origin, int Side)
{
    int Worst = 0;
    for (int Y = 0; Y < Saved.GetSize().Y; Y++)
        for (int X = 0; X < Saved.GetSize().X; X++) {
            int Sums[3] = {0, 0, 0};
            for (int J = 0; J < Side; J++)
                for (int I = 0; I < Side; I++) {
                    pixel P = GetPixel(Photo, Origin.X + X * Side + I, Origin.Y + Y * Side + J);
                    Sums[0] += P.R;
                    Sums[1] += P.G;
                    Sums[2] += P.B;
                }
            pixel S = GetPixel(Saved, X, Y);
            int Got[3] = {S.R, S.G, S.B};
            for (int C = 0; C < 3; C++)
                Worst = std::max(Worst, std::abs(Got[C] - Sums[C] / (Side * Side)));
        }
    return Worst;
}

// Bitmap used over Region, with the whole photo Shown that large on screen, and saved: the saved
// picture is Size, and with Side above 0 each of its pixels lies within Tolerance of the mean of its
// Side by Side block of Photo.
testing::AssertionResult SavedPictureIs(reference_pointer<art_managed_bitmap> Bitmap, const rectangle &Region,
                                        point2d Shown, art_bitmap &Photo, int_point2d Size, int Side, int Tolerance)
{
    Bitmap->ClearUsage();
    Bitmap->NoteUsage(Region, Shown);
    bitmap_owner Saved = SaveAndDecode(Bitmap);
    if (!Saved.IsSet())
        return testing::AssertionFailure() << "the saved bytes do not decode";
    if (Saved->GetSize() != Size)
        return testing::AssertionFailure() << "saved at " << Saved->GetSize().X << "x" << Saved->GetSize().Y;
    int_point2d Origin(static_cast<int>(Region.Location.X), static_cast<int>(Region.Location.Y));
    int Worst = Side > 0 ? WorstBlockDifference(*Saved, Photo, Origin, Side) : 0;
    if (Worst > Tolerance)
        return testing::AssertionFailure() << "a pixel lies " << Worst << " from its block";
    return testing::AssertionSuccess();
}

} // namespace

TEST(art_bitmap_manager, PhotoShownSmallIsSavedWithoutDecodingItWhole)
{
    bitmap_owner Photo = MakeSmoothPhoto();
    art_bitmap_manager Manager;
    reference_pointer<art_managed_bitmap> Bitmap = Manager.AddBitmap(EncodeJPEG(Photo), "photo.jpg");
    EXPECT_TRUE(SavedPictureIs(Bitmap, rectangle(point2d(0, 0), point2d(800, 600)), point2d(80, 60), *Photo,
                               int_point2d(80, 60), 10, 6));
    // The save kept no pixels of its own: the next drawing decodes the picture as it always did.
    EXPECT_FALSE(Bitmap->IsDecoded());
    EXPECT_EQ(Bitmap->GetSavedRegion(), int_rectangle(int_point2d(0, 0), int_point2d(800, 600)));
}

TEST(art_bitmap_manager, PhotoUsedInPartAndSmallIsCroppedOnTheReducedGrid)
{
    bitmap_owner Photo = MakeSmoothPhoto();
    art_bitmap_manager Manager;
    reference_pointer<art_managed_bitmap> Bitmap = Manager.AddBitmap(EncodeJPEG(Photo), "photo.jpg");
    // The whole photo would be 160x120 on screen, so the quarter in use is 80x60, and its budget
    // of 1,584 bytes keeps a JPEG of it close to the photo.
    EXPECT_TRUE(SavedPictureIs(Bitmap, rectangle(point2d(400, 200), point2d(400, 300)), point2d(160, 120), *Photo,
                               int_point2d(80, 60), 5, 6));
    EXPECT_FALSE(Bitmap->IsDecoded());
    // The crop is kept in the pixels of the whole picture, whatever grid it was cut on.
    EXPECT_EQ(Bitmap->GetSavedRegion(), int_rectangle(int_point2d(400, 200), int_point2d(400, 300)));
    // Edges that fall between pixels of the reduced grid still give the size in use, rounded up:
    // 80 * 794 / 800 = 79.4 and 60 * 585 / 600 = 58.5.
    EXPECT_TRUE(SavedPictureIs(Bitmap, rectangle(point2d(3, 5), point2d(794, 585)), point2d(80, 60), *Photo,
                               int_point2d(80, 59), 0, 0));
    EXPECT_EQ(Bitmap->GetSavedRegion(), int_rectangle(int_point2d(3, 5), int_point2d(794, 585)));
}

TEST(art_bitmap_manager, PhotoOnScreenIsSavedFromThePixelsInMemory)
{
    bitmap_owner Photo = MakeSmoothPhoto();
    art_bitmap_manager Manager;
    reference_pointer<art_managed_bitmap> Bitmap = Manager.AddBitmap(EncodeJPEG(Photo), "photo.jpg");
    ASSERT_TRUE(Bitmap->GetMipLevel(0, 0).IsSet());
    // Through the mip levels and the bilinear filter, a little further from the block means.
    EXPECT_TRUE(SavedPictureIs(Bitmap, rectangle(point2d(0, 0), point2d(800, 600)), point2d(80, 60), *Photo,
                               int_point2d(80, 60), 10, 8));
    EXPECT_TRUE(Bitmap->IsDecoded());
}

TEST(art_bitmap_manager, ImageUsedInPartIsCroppedAndObjectsAreMovedOntoTheCrop)
{
    // Noise everywhere but in the part in use, (16, 16) to (48, 48), which holds four flat quarters:
    // the crop fits the budget of 338 bytes as a lossless PNG.
    const pixel Quarters[4] = {{255, 0, 0, 255}, {0, 255, 0, 255}, {0, 0, 255, 255}, {255, 255, 0, 255}};
    uint32_t State = 5;
    bitmap_owner Picture = MakeBitmap(64, 64, [&](int X, int Y) {
        State = State * 1664525u + 1013904223u;
        if (X >= 16 && X < 48 && Y >= 16 && Y < 48)
            return Quarters[(X >= 32 ? 1 : 0) + (Y >= 32 ? 2 : 0)];
        return pixel{uint8_t(State >> 24), uint8_t(State >> 16), uint8_t(State >> 8), 255};
    });
    zel_string Bytes = EncodePNG(Picture);
    art_bitmap_manager Manager;
    reference_pointer<art_managed_bitmap> Bitmap = Manager.AddBitmap(Bytes, "quarters.png");
    // Two objects: their regions unite to (16.5, 16) to (47.2, 48), rounded outward to whole pixels.
    Bitmap->NoteUsage(rectangle(point2d(16.5, 16), point2d(20, 32)), point2d(64, 64));
    Bitmap->NoteUsage(rectangle(point2d(30, 20), point2d(17.2, 10)), point2d(64, 64));
    xbd_file File;
    ownership_pointer<xbd_tag> Bitmaps(new xbd_tag("bitmaps", &File));
    Manager.SaveToTag(Bitmaps);
    zel_string Saved = Bitmaps->GetChildren()[0]->GetAttribute("pixel_data", "");
    EXPECT_LT(Saved.GetLength(), Bytes.GetLength());
    EXPECT_LE(Saved.GetLength(), 338);
    bitmap_owner Decoded = LoadImageFromString(Saved);
    ASSERT_TRUE(Decoded.IsSet());
    ASSERT_EQ(Decoded->GetSize(), int_point2d(32, 32));
    for (int Y = 0; Y < 32; Y++)
        for (int X = 0; X < 32; X++)
            ASSERT_EQ(GetPixel(*Decoded, X, Y), GetPixel(*Picture, X + 16, Y + 16)) << X << "," << Y;
    EXPECT_EQ(Bitmap->GetSavedRegion(), int_rectangle(int_point2d(16, 16), int_point2d(32, 32)));

    // An object whose image filled it exactly now has the crop fill the middle half.
    point2d Location(0, 0);
    point2d Size(1, 1);
    Bitmap->RemapToSavedImage(Location, Size);
    EXPECT_EQ(Location, point2d(0.25, 0.25));
    EXPECT_EQ(Size, point2d(0.5, 0.5));
    // One whose image reached from -1 to 3 times its size keeps the crop's pixels where they were.
    Location = point2d(-1, -1);
    Size = point2d(4, 4);
    Bitmap->RemapToSavedImage(Location, Size);
    EXPECT_EQ(Location, point2d(0, 0));
    EXPECT_EQ(Size, point2d(2, 2));
    // The document in memory is unchanged.
    EXPECT_EQ(Bitmap->GetOriginalFileBytes(), Bytes);
}

TEST(art_bitmap_manager, AnimatedImageKeepsItsOriginalBytesWhenShownSmaller)
{
    zel_string Bytes = MakeTwoColourGIF(64, 64, {0, 1}, 10);
    art_bitmap_manager Manager;
    reference_pointer<art_managed_bitmap> Bitmap = Manager.AddBitmap(Bytes, "two.gif");
    ASSERT_TRUE(Bitmap->GetIsAnimated());
    Bitmap->NoteUsage(rectangle(point2d(8, 8), point2d(10, 10)), point2d(4, 4));
    // Ten pixels of 64 shown at 4: one pixel in use, a budget of one byte.
    ASSERT_GT(Bytes.GetLength(), 1);
    xbd_file File;
    ownership_pointer<xbd_tag> Bitmaps(new xbd_tag("bitmaps", &File));
    Manager.SaveToTag(Bitmaps);
    EXPECT_EQ(Bitmaps->GetChildren()[0]->GetAttribute("pixel_data", ""), Bytes);
}

TEST(art_bitmap_manager, RegionOutsideTheImageKeepsTheOriginalBytes)
{
    bitmap_owner Picture = MakeNoise(16, 16, 18);
    zel_string Bytes = EncodePNG(Picture);
    art_bitmap_manager Manager;
    reference_pointer<art_managed_bitmap> Bitmap = Manager.AddBitmap(Bytes, "noise.png");
    Bitmap->NoteUsage(rectangle(point2d(20, 20), point2d(5, 5)), point2d(2, 2));
    xbd_file File;
    ownership_pointer<xbd_tag> Bitmaps(new xbd_tag("bitmaps", &File));
    Manager.SaveToTag(Bitmaps);
    EXPECT_EQ(Bitmaps->GetChildren()[0]->GetAttribute("pixel_data", ""), Bytes);
}

TEST(art_bitmap_manager, ClearUsageDropsEveryBitmapFromTheNextSave)
{
    art_bitmap_manager Manager;
    Manager.AddBitmap("a", "a")->NoteUsage(rectangle(point2d(0, 0), point2d(1, 1)), point2d(1, 1));
    Manager.AddBitmap("b", "b")->NoteUsage(rectangle(point2d(0, 0), point2d(1, 1)), point2d(1, 1));
    Manager.ClearUsage();
    Manager.GetBitmap(1)->NoteUsage(rectangle(point2d(0, 0), point2d(1, 1)), point2d(1, 1));
    xbd_file File;
    ownership_pointer<xbd_tag> Bitmaps(new xbd_tag("bitmaps", &File));
    Manager.SaveToTag(Bitmaps);
    ASSERT_EQ(Bitmaps->GetChildren().GetNumberOfElements(), 1);
    EXPECT_EQ(Bitmaps->GetChildren()[0]->GetAttribute("bitmap_id", ""), zel_string("1"));
    EXPECT_EQ(Bitmaps->GetChildren()[0]->GetAttribute("pixel_data", ""), zel_string("b"));
}

TEST(art_bitmap_manager, SavingABitmapWithoutIDIsAnAssertion)
{
    art_managed_bitmap Bitmap("x", "x");
    xbd_file File;
    ownership_pointer<xbd_tag> Bitmaps(new xbd_tag("bitmaps", &File));
    std::string Message = ZEL_ERROR_MESSAGE(Bitmap.SaveToTag(Bitmaps));
    EXPECT_NE(Message.find("'BitmapID>=0' is false"), std::string::npos) << Message;
    EXPECT_EQ(Bitmaps->GetChildren().GetNumberOfElements(), 0);
}
