#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <vector>

#include <agg_rasterizer_scanline_aa.h>
#include <agg_renderer_scanline.h>
#include <agg_scanline_p.h>

#include "art_engine/pixels/art_alpha_runs.h"
#include "art_engine/pixels/art_bitmap.h"
#include "art_engine/pixels/art_blend.h"
#include "tests/art_engine/pixels/art_pixel_test_support.h"
#include "tests/test_support.h"

using namespace art_pixel_test;

namespace {

// A block of 32-bit pixels stored bottom row first in memory, as a device-independent bitmap from a
// clipboard is, with straight alpha.
class bottom_up_bitmap : public bitmap_interface
{
public:
    bottom_up_bitmap(int Width, int Height, int BitsPerPixel = 32)
        : Width(Width), Height(Height), BitsPerPixel(BitsPerPixel), Bytes(size_t(Width) * Height * 4)
    {
    }

    int_point2d GetSize() override { return int_point2d(Width, Height); }
    uint8_t *GetFirstLine() override { return Bytes.data() + size_t(Height - 1) * Width * 4; }
    int32_t GetLineStride() override { return -Width * 4; }
    int GetBitsPerPixel() override { return BitsPerPixel; }

    uint8_t *At(int X, int Y) { return GetFirstLine() + Y * GetLineStride() + X * 4; }

    int Width;
    int Height;
    int BitsPerPixel;
    std::vector<uint8_t> Bytes;
};

// A distinct, non-zero pixel for every position.
agg::rgba8 Pattern(int I) { return Pixel(1 + I, 100 + I, 200 - I, 255 - I); }

void FillPattern(art_bitmap &Bitmap)
{
    for (int I = 0; I < Bitmap.GetPixelDataSize(); I++)
        Bitmap.GetPixelRow(0)[I] = Pattern(I);
}

std::vector<agg::rgba8> Snapshot(art_bitmap &Bitmap)
{
    return std::vector<agg::rgba8>(Bitmap.GetPixelRow(0), Bitmap.GetPixelRow(0) + Bitmap.GetPixelDataSize());
}

typedef std::function<agg::rgba8(agg::rgba8 Target, agg::rgba8 Source)> pixel_rule;

// The rectangle operations pixel by pixel: each pixel of the source rectangle that lies in the
// source bitmap goes to (X, Y) plus its offset from the rectangle's corner, if that lies in the
// target. The source is read from a copy taken before, which is what a correct overlap order gives.
void PlainRectangleOperation(std::vector<agg::rgba8> &Target, int_point2d TargetSize,
                             const std::vector<agg::rgba8> &Source, int_point2d SourceSize, int X, int Y,
                             int_rectangle Rectangle, const pixel_rule &Rule)
{
    for (int SY = Rectangle.Location.Y; SY < Rectangle.Location.Y + Rectangle.Size.Y; SY++)
        for (int SX = Rectangle.Location.X; SX < Rectangle.Location.X + Rectangle.Size.X; SX++) {
            if (SX < 0 || SY < 0 || SX >= SourceSize.X || SY >= SourceSize.Y)
                continue;
            int TX = X + SX - Rectangle.Location.X;
            int TY = Y + SY - Rectangle.Location.Y;
            if (TX < 0 || TY < 0 || TX >= TargetSize.X || TY >= TargetSize.Y)
                continue;
            agg::rgba8 &T = Target[size_t(TY) * TargetSize.X + TX];
            T = Rule(T, Source[size_t(SY) * SourceSize.X + SX]);
        }
}

agg::rgba8 CopyRule(agg::rgba8, agg::rgba8 Source) { return Source; }

// Source-over of a span of pixels as the colour-span rules state it.
pixel_rule BlendRule(unsigned Cover)
{
    return [Cover](agg::rgba8 P, agg::rgba8 C) {
        if (C.a == 0)
            return P;
        unsigned Alpha = Cover < 255 ? (C.a * (Cover + 1)) >> 8 : C.a;
        if (Alpha > 254)
            return Pixel(C.r, C.g, C.b, 255);
        unsigned Inv = 255 - Alpha;
        unsigned Scale = Cover < 255 ? Cover + 1 : 256;
        return Pixel((P.r * Inv + C.r * Scale) >> 8, (P.g * Inv + C.g * Scale) >> 8, (P.b * Inv + C.b * Scale) >> 8,
                     255 - (((255 - P.a) * Inv) >> 8));
    };
}

pixel_rule DstOverRule(unsigned Cover)
{
    return [Cover](agg::rgba8 P, agg::rgba8 C) {
        unsigned S[4] = {(C.r * C.a + 255u) >> 8, (C.g * C.a + 255u) >> 8, (C.b * C.a + 255u) >> 8, C.a};
        if (Cover < 255)
            for (unsigned &Byte : S)
                Byte = (Byte * Cover + 255) >> 8;
        unsigned D1A = 255 - P.a;
        return Pixel(P.r + ((S[0] * D1A + 255) >> 8), P.g + ((S[1] * D1A + 255) >> 8),
                     P.b + ((S[2] * D1A + 255) >> 8), S[3] + P.a - ((S[3] * P.a + 255) >> 8));
    };
}

// Rows made of runs of 1 to 20 pixels, each run wholly opaque, wholly transparent (with colour
// bytes that are not zero) or of random edgy alpha, as rendered pictures are: whole blocks of either
// kind and blocks that mix them with partial pixels both occur, at every offset.
void FillRuns(art_bitmap &Bitmap, std::mt19937 &Random)
{
    for (int Y = 0; Y < Bitmap.GetSize().Y; Y++) {
        agg::rgba8 *Row = Bitmap.GetPixelRow(Y);
        int X = 0;
        while (X < Bitmap.GetSize().X) {
            int Run = 1 + int(Random() % 20);
            unsigned Kind = Random() % 3;
            for (; Run > 0 && X < Bitmap.GetSize().X; Run--, X++) {
                uint32_t Word = Random();
                uint8_t Alpha = Kind == 0 ? 255 : Kind == 1 ? 0 : RandomEdgyByte(Random);
                Row[X] = Pixel(Word & 255, (Word >> 8) & 255, (Word >> 16) & 255, Alpha);
            }
        }
    }
}

// As FillRuns, but most rows take the alpha of the row above with colours of their own, so that
// runs of alpha reach down over several rows.
void FillBandedRuns(art_bitmap &Bitmap, std::mt19937 &Random)
{
    FillRuns(Bitmap, Random);
    for (int Y = 1; Y < Bitmap.GetSize().Y; Y++) {
        if (Random() % 3 == 0)
            continue;
        for (int X = 0; X < Bitmap.GetSize().X; X++)
            Bitmap.GetPixelRow(Y)[X].a = Bitmap.GetPixelRow(Y - 1)[X].a;
    }
}

// The pixels of any bitmap, a view too, row after row.
std::vector<agg::rgba8> RowsOf(art_bitmap &Bitmap)
{
    std::vector<agg::rgba8> Pixels;
    for (int Y = 0; Y < Bitmap.GetSize().Y; Y++)
        Pixels.insert(Pixels.end(), Bitmap.GetPixelRow(Y), Bitmap.GetPixelRow(Y) + Bitmap.GetSize().X);
    return Pixels;
}

} // namespace

TEST(ArtBitmap, DefaultIsEmptyWithTheEngineFormat)
{
    art_bitmap Bitmap;
    EXPECT_EQ(int_point2d(0, 0), Bitmap.GetSize());
    EXPECT_EQ(0, Bitmap.GetPixelDataSize());
    EXPECT_EQ(0, Bitmap.GetLineStride());
    EXPECT_EQ(32, Bitmap.GetBitsPerPixel());
    EXPECT_EQ(4, Bitmap.GetBytesPerPixel());
    EXPECT_TRUE(Bitmap.IsArtBitmap());
    EXPECT_TRUE(Bitmap.IsPremultiplied());
}

TEST(ArtBitmap, SizedBitmapIsTopDownWithoutPadding)
{
    art_bitmap Bitmap(5, 3);
    EXPECT_EQ(int_point2d(5, 3), Bitmap.GetSize());
    EXPECT_EQ(15, Bitmap.GetPixelDataSize());
    EXPECT_EQ(20, Bitmap.GetLineStride());
    EXPECT_EQ(20, Bitmap.GetPixelStride());
    EXPECT_EQ(Bitmap.GetPixelData(), Bitmap.GetFirstLine());
    EXPECT_EQ(Bitmap.GetPixelData() + 2 * 20, reinterpret_cast<uint8_t *>(Bitmap.GetPixelRow(2)));
    EXPECT_EQ(4, Bitmap.GetBaseRenderer().xmax());
    EXPECT_EQ(2, Bitmap.GetBaseRenderer().ymax());
}

TEST(ArtBitmap, EmptyBitmapHasNoTransparencyAndClearAndForEachPixelDoNothing)
{
    const int_point2d Sizes[] = {int_point2d(0, 0), int_point2d(0, 4), int_point2d(4, 0)};
    for (int_point2d Size : Sizes) {
        art_bitmap Bitmap(Size.X, Size.Y);
        EXPECT_FALSE(Bitmap.HasTransparency());
        Bitmap.Clear(Pixel(1, 2, 3, 4));
        int Calls = 0;
        Bitmap.ForEachPixel([&](agg::rgba8 *) { Calls++; });
        EXPECT_EQ(0, Calls);
        EXPECT_EQ(Size, Bitmap.GetSize());
    }
}

TEST(ArtBitmap, ClearWritesTheValueUnblended)
{
    art_bitmap Bitmap(3, 2);
    FillPattern(Bitmap);
    Bitmap.Clear(Pixel(9, 8, 7, 6));
    std::vector<agg::rgba8> Want(6, Pixel(9, 8, 7, 6));
    EXPECT_TRUE(BitmapIs(Bitmap, Want.data()));
    Bitmap.Clear(Pixel(0, 0, 0, 0));
    std::vector<agg::rgba8> Zero(6, Pixel(0, 0, 0, 0));
    EXPECT_TRUE(BitmapIs(Bitmap, Zero.data()));
}

TEST(ArtBitmap, ClearWritesEveryPixelOfOddAndLargeSizes)
{
    // Sizes short of one pixel row, of odd widths, and far past any piece the fill may work in.
    const int_point2d Sizes[] = {int_point2d(1, 1), int_point2d(5, 3), int_point2d(1031, 3), int_point2d(1100, 5)};
    const agg::rgba8 Values[] = {Pixel(9, 8, 7, 6), Pixel(7, 7, 7, 7), Pixel(255, 255, 255, 255), Pixel(0, 0, 0, 255)};
    for (const int_point2d &Size : Sizes)
        for (const agg::rgba8 &Value : Values) {
            art_bitmap Bitmap(Size.X, Size.Y);
            FillPattern(Bitmap);
            Bitmap.Clear(Value);
            std::vector<agg::rgba8> Want(size_t(Size.X) * size_t(Size.Y), Value);
            ASSERT_TRUE(BitmapIs(Bitmap, Want.data())) << Size.X << "x" << Size.Y << " " << PixelText(Value);
        }
}

TEST(ArtBitmap, HasTransparencyFindsAnyAlphaBelow255)
{
    art_bitmap Bitmap(4, 4);
    Bitmap.Clear(Pixel(0, 0, 0, 255));
    EXPECT_FALSE(Bitmap.HasTransparency());
    Bitmap.GetPixelRow(3)[3].a = 254;
    EXPECT_TRUE(Bitmap.HasTransparency());
    Bitmap.GetPixelRow(3)[3].a = 255;
    Bitmap.GetPixelRow(0)[0] = Pixel(0, 0, 0, 0);
    EXPECT_TRUE(Bitmap.HasTransparency());
}

TEST(ArtBitmap, ForEachPixelGoesTopRowFirstLeftToRight)
{
    art_bitmap Bitmap(3, 2);
    std::vector<agg::rgba8 *> Visited;
    Bitmap.ForEachPixel([&](agg::rgba8 *P) { Visited.push_back(P); });
    ASSERT_EQ(6u, Visited.size());
    for (int Y = 0; Y < 2; Y++)
        for (int X = 0; X < 3; X++)
            EXPECT_EQ(Bitmap.GetPixelRow(Y) + X, Visited[size_t(Y * 3 + X)]);
}

TEST(ArtBitmap, SetSizeKeepsElementsInMemoryOrder)
{
    art_bitmap Bitmap(2, 2);
    FillPattern(Bitmap);
    Bitmap.SetSize(3, 3);
    EXPECT_EQ(int_point2d(3, 3), Bitmap.GetSize());
    EXPECT_EQ(9, Bitmap.GetPixelDataSize());
    EXPECT_EQ(12, Bitmap.GetLineStride());
    for (int I = 0; I < 4; I++)
        EXPECT_TRUE(SamePixel(Pattern(I), Bitmap.GetPixelRow(0)[I])) << I;
}

TEST(ArtBitmap, SetSizeSmallerReusesTheStore)
{
    art_bitmap Bitmap(4, 4);
    FillPattern(Bitmap);
    uint8_t *Store = Bitmap.GetPixelData();
    Bitmap.SetSize(2, 3);
    EXPECT_EQ(Store, Bitmap.GetPixelData());
    EXPECT_EQ(6, Bitmap.GetPixelDataSize());
    for (int I = 0; I < 6; I++)
        EXPECT_TRUE(SamePixel(Pattern(I), Bitmap.GetPixelRow(0)[I])) << I;
    EXPECT_EQ(1, Bitmap.GetBaseRenderer().xmax());
    EXPECT_EQ(2, Bitmap.GetBaseRenderer().ymax());
}

TEST(ArtBitmap, SetSizeSmallerAndBackDoesNotRestoreThePixels)
{
    art_bitmap Bitmap(4, 4);
    FillPattern(Bitmap);
    Bitmap.SetSize(2, 2);
    Bitmap.SetSize(4, 4);
    for (int I = 0; I < 4; I++)
        EXPECT_TRUE(SamePixel(Pattern(I), Bitmap.GetPixelRow(0)[I])) << I;
    for (int I = 4; I < 16; I++)
        EXPECT_FALSE(SamePixel(Pattern(I), Bitmap.GetPixelRow(0)[I])) << I;
}

TEST(ArtBitmap, SetSizeOfNegativeAreaIsRefused)
{
    art_bitmap Bitmap(2, 2);
    EXPECT_NE(std::string::npos, ZEL_ERROR_MESSAGE(Bitmap.SetSize(-1, 5)).find("'NewArraySize>=0' is false"));
}

TEST(ArtBitmap, RenderersFollowTheNewSize)
{
    art_bitmap Bitmap(2, 2);
    Bitmap.SetSize(6, 5);
    Bitmap.Clear(Pixel(0, 0, 0, 0));
    Bitmap.GetBaseRenderer().blend_hline(0, 4, 100, Pixel(10, 20, 30, 255), 255);
    for (int X = 0; X < 6; X++)
        EXPECT_TRUE(SamePixel(Pixel(10, 20, 30, 255), Bitmap.GetPixelRow(4)[X])) << X;
    EXPECT_TRUE(SamePixel(Pixel(0, 0, 0, 0), Bitmap.GetPixelRow(3)[5]));
}

TEST(ArtBitmap, SolidRendererDrawsThroughTheEngineArithmetic)
{
    art_bitmap Bitmap(6, 6);
    Bitmap.Clear(Pixel(200, 200, 200, 255));
    // Wound so that AGG's cover comes out positive: the other winding shifts a negative cover left
    // inside AGG, which the undefined-behaviour sanitizer stops.
    agg::rasterizer_scanline_aa<> Rasterizer;
    Rasterizer.move_to_d(1, 1);
    Rasterizer.line_to_d(1, 4);
    Rasterizer.line_to_d(5, 4);
    Rasterizer.line_to_d(5, 1);
    agg::scanline_p8 Scanline;
    Bitmap.GetSolidRenderer().color(Pixel(100, 100, 100, 128));
    agg::render_scanlines(Rasterizer, Scanline, Bitmap.GetSolidRenderer());
    for (int Y = 0; Y < 6; Y++)
        for (int X = 0; X < 6; X++) {
            bool Inside = X >= 1 && X < 5 && Y >= 1 && Y < 4;
            // ((200 * 127) >> 8) + 100 inside.
            agg::rgba8 Want = Inside ? Pixel(199, 199, 199, 255) : Pixel(200, 200, 200, 255);
            EXPECT_TRUE(SamePixel(Want, Bitmap.GetPixelRow(Y)[X])) << X << ", " << Y;
        }
}

TEST(ArtBitmap, CopyOfABottomUpStraightSourceIsTopDownAndPremultiplied)
{
    bottom_up_bitmap Source(3, 2);
    for (int Y = 0; Y < 2; Y++)
        for (int X = 0; X < 3; X++) {
            uint8_t *P = Source.At(X, Y);
            P[0] = static_cast<uint8_t>(200 + X);
            P[1] = static_cast<uint8_t>(100 + Y);
            P[2] = static_cast<uint8_t>(X * 40);
            P[3] = static_cast<uint8_t>(X == 0 ? 255 : (X == 1 ? 128 : 0));
        }
    art_bitmap Copy(&Source);
    ASSERT_EQ(int_point2d(3, 2), Copy.GetSize());
    for (int Y = 0; Y < 2; Y++) {
        // Opaque as it was; alpha 128 premultiplied with (c * 128 + 255) >> 8; alpha 0 all zero.
        EXPECT_EQ(PixelText(Pixel(200, 100 + Y, 0, 255)), PixelText(Copy.GetPixelRow(Y)[0]));
        EXPECT_EQ(PixelText(Pixel((201 * 128 + 255) >> 8, ((100 + Y) * 128 + 255) >> 8, (40 * 128 + 255) >> 8, 128)),
                  PixelText(Copy.GetPixelRow(Y)[1]));
        EXPECT_EQ(PixelText(Pixel(0, 0, 0, 0)), PixelText(Copy.GetPixelRow(Y)[2]));
    }
}

TEST(ArtBitmap, CopyOfAnArtBitmapIsExact)
{
    art_bitmap Original(4, 3);
    FillPattern(Original);
    art_bitmap Copy(&Original);
    EXPECT_EQ(int_point2d(4, 3), Copy.GetSize());
    EXPECT_NE(Original.GetPixelData(), Copy.GetPixelData());
    std::vector<agg::rgba8> Want = Snapshot(Original);
    EXPECT_TRUE(BitmapIs(Copy, Want.data()));
}

TEST(ArtBitmap, CopyRefusesOtherDepthsAndNullSources)
{
    bottom_up_bitmap Shallow(2, 2, 24);
    EXPECT_NE(std::string::npos, ZEL_ERROR_MESSAGE(art_bitmap Copy(&Shallow))
                                     .find("'Source->GetBitsPerPixel()==GetBitsPerPixel()' is false"));
    ownership_pointer<bitmap_interface> Nothing;
    EXPECT_NE(std::string::npos, ZEL_ERROR_MESSAGE(art_bitmap Copy(Nothing)).find("'IsSet()' is false"));
}

TEST(ArtBitmap, OperationsOnANullBitmapEndInIsSet)
{
    art_bitmap Target(2, 2);
    ownership_pointer<art_bitmap> Nothing;
    EXPECT_NE(std::string::npos, ZEL_ERROR_MESSAGE(Target.CopyBitmap(0, 0, Nothing)).find("'IsSet()' is false"));
    EXPECT_NE(std::string::npos, ZEL_ERROR_MESSAGE(Target.BlendBitmap(0, 0, Nothing, 255)).find("'IsSet()' is false"));
    EXPECT_NE(std::string::npos,
              ZEL_ERROR_MESSAGE(Target.CompositeBitmap(0, 0, Nothing, 255, CompOpDstOver)).find("'IsSet()' is false"));
    EXPECT_NE(std::string::npos, ZEL_ERROR_MESSAGE(Target.ApplyStencil(Nothing)).find("'IsSet()' is false"));
}

TEST(ArtBitmap, CopyBitmapOverwritesAlphaToo)
{
    art_bitmap Source(2, 1);
    Source.GetPixelRow(0)[0] = Pixel(1, 2, 3, 0);
    Source.GetPixelRow(0)[1] = Pixel(4, 5, 6, 7);
    art_bitmap Target(3, 2);
    Target.Clear(Pixel(90, 90, 90, 255));
    Target.CopyBitmap(1, 1, &Source);
    std::vector<agg::rgba8> Want(6, Pixel(90, 90, 90, 255));
    Want[4] = Pixel(1, 2, 3, 0);
    Want[5] = Pixel(4, 5, 6, 7);
    EXPECT_TRUE(BitmapIs(Target, Want.data()));
}

TEST(ArtBitmap, SourceRectangleLandsAtTheTargetPosition)
{
    art_bitmap Source(4, 4);
    FillPattern(Source);
    art_bitmap Target(3, 3);
    Target.Clear(Pixel(0, 0, 0, 0));
    // Source pixels (2, 1) and (3, 1) go to (0, 2) and (1, 2).
    Target.CopyBitmap(0, 2, &Source, int_rectangle(int_point2d(2, 1), int_point2d(2, 1)));
    std::vector<agg::rgba8> Want(9, Pixel(0, 0, 0, 0));
    Want[6] = Pattern(6);
    Want[7] = Pattern(7);
    EXPECT_TRUE(BitmapIs(Target, Want.data()));
}

TEST(ArtBitmap, SourceRectangleOutsideTheSourceDrawsNothing)
{
    art_bitmap Source(4, 4);
    FillPattern(Source);
    art_bitmap Target(4, 4);
    Target.Clear(Pixel(5, 5, 5, 5));
    std::vector<agg::rgba8> Want(16, Pixel(5, 5, 5, 5));
    const int_rectangle Outside[] = {int_rectangle(int_point2d(4, 0), int_point2d(2, 2)),
                                     int_rectangle(int_point2d(-3, 1), int_point2d(3, 2)),
                                     int_rectangle(int_point2d(0, 10), int_point2d(4, 4)),
                                     int_rectangle(int_point2d(1, 1), int_point2d(0, 2)),
                                     int_rectangle(int_point2d(1, 1), int_point2d(2, -1))};
    for (const int_rectangle &Rectangle : Outside) {
        Target.CopyBitmap(0, 0, &Source, Rectangle);
        Target.BlendBitmap(0, 0, &Source, Rectangle, 255);
        Target.CompositeBitmap(0, 0, &Source, Rectangle, 255, CompOpDstOver);
        EXPECT_TRUE(BitmapIs(Target, Want.data()))
            << Rectangle.Location.X << "," << Rectangle.Location.Y << " " << Rectangle.Size.X << "x"
            << Rectangle.Size.Y;
    }
}

class ArtBitmapRectangles : public block_width_test
{
};
INSTANTIATE_TEST_SUITE_P(BlockWidths, ArtBitmapRectangles, testing::Bool(), BlockWidthName);

TEST_P(ArtBitmapRectangles, ClipLikeAPixelByPixelCopy)
{
    std::mt19937 Random(1234);
    // Wide enough for whole blocks of either width of the span kernels.
    const int_point2d TargetSize(21, 5);
    const int_point2d SourceSize(19, 4);
    struct operation
    {
        const char *Name;
        std::function<void(art_bitmap &, int, int, art_bitmap &, const int_rectangle *, uint8_t)> Run;
        std::function<pixel_rule(uint8_t)> Rule;
    };
    const operation Operations[] = {
        {"copy",
         [](art_bitmap &T, int X, int Y, art_bitmap &S, const int_rectangle *R, uint8_t) {
             if (R != nullptr)
                 T.CopyBitmap(X, Y, &S, *R);
             else
                 T.CopyBitmap(X, Y, &S);
         },
         [](uint8_t) { return pixel_rule(CopyRule); }},
        {"blend",
         [](art_bitmap &T, int X, int Y, art_bitmap &S, const int_rectangle *R, uint8_t Opacity) {
             if (R != nullptr)
                 T.BlendBitmap(X, Y, &S, *R, Opacity);
             else
                 T.BlendBitmap(X, Y, &S, Opacity);
         },
         [](uint8_t Opacity) { return BlendRule(Opacity); }},
        {"composite",
         [](art_bitmap &T, int X, int Y, art_bitmap &S, const int_rectangle *R, uint8_t Opacity) {
             if (R != nullptr)
                 T.CompositeBitmap(X, Y, &S, *R, Opacity, CompOpDstOver);
             else
                 T.CompositeBitmap(X, Y, &S, Opacity, CompOpDstOver);
         },
         [](uint8_t Opacity) { return DstOverRule(Opacity); }},
    };
    for (const operation &Operation : Operations) {
        for (int Round = 0; Round < 1500; Round++) {
            art_bitmap Target(TargetSize.X, TargetSize.Y);
            art_bitmap Source(SourceSize.X, SourceSize.Y);
            FillRandom(Target, Random);
            FillRandom(Source, Random);
            int X = int(Random() % 45) - 22;
            int Y = int(Random() % 13) - 6;
            bool WholeSource = Random() % 4 == 0;
            int_point2d Corner(int(Random() % 41) - 20, int(Random() % 11) - 5);
            int_point2d Extent(int(Random() % 27) - 2, int(Random() % 9) - 2);
            int_rectangle Rectangle =
                WholeSource ? int_rectangle(int_point2d(0, 0), SourceSize) : int_rectangle(Corner, Extent);
            uint8_t Opacity = RandomEdgyByte(Random);
            std::vector<agg::rgba8> Want = Snapshot(Target);
            PlainRectangleOperation(Want, TargetSize, Snapshot(Source), SourceSize, X, Y, Rectangle,
                                    Operation.Rule(Opacity));
            Operation.Run(Target, X, Y, Source, WholeSource ? nullptr : &Rectangle, Opacity);
            ASSERT_TRUE(BitmapIs(Target, Want.data()))
                << Operation.Name << " at (" << X << ", " << Y << ") of (" << Rectangle.Location.X << ", "
                << Rectangle.Location.Y << ") size " << Rectangle.Size.X << "x" << Rectangle.Size.Y;
        }
    }
}

TEST_P(ArtBitmapRectangles, DrawingABitmapOntoItselfReadsEverySourcePixelFirst)
{
    // Every direction of overlap, including the same row shifted either way: the result must be the
    // one of drawing from an untouched copy. The rows are long enough for whole blocks of either
    // width of the span kernels, and the shifts reach past a block.
    std::mt19937 Random(77);
    const int_point2d Size(48, 7);
    const int_rectangle Area(int_point2d(10, 2), int_point2d(29, 3));
    for (int DY = -2; DY <= 2; DY++)
        for (int DX = -10; DX <= 10; DX++)
            for (int Kind = 0; Kind < 4; Kind++) {
                art_bitmap Bitmap(Size.X, Size.Y);
                FillRandom(Bitmap, Random);
                std::vector<agg::rgba8> Before = Snapshot(Bitmap);
                std::vector<agg::rgba8> Want = Before;
                pixel_rule Rules[] = {CopyRule, BlendRule(255), BlendRule(200), DstOverRule(200)};
                int X = Area.Location.X + DX;
                int Y = Area.Location.Y + DY;
                PlainRectangleOperation(Want, Size, Before, Size, X, Y, Area, Rules[Kind]);
                if (Kind == 0)
                    Bitmap.CopyBitmap(X, Y, &Bitmap, Area);
                else if (Kind == 1)
                    Bitmap.BlendBitmap(X, Y, &Bitmap, Area, 255);
                else if (Kind == 2)
                    Bitmap.BlendBitmap(X, Y, &Bitmap, Area, 200);
                else
                    Bitmap.CompositeBitmap(X, Y, &Bitmap, Area, 200, CompOpDstOver);
                ASSERT_TRUE(BitmapIs(Bitmap, Want.data())) << "kind " << Kind << " shift " << DX << ", " << DY;
            }
}

TEST_P(ArtBitmapRectangles, BlendOfOpaqueAndTransparentRunsLikeAPlainBlend)
{
    // Pictures of every width from 1 to 40, clipped at every side, at full and partial opacity, onto
    // targets of random bytes: runs of opaque and transparent source pixels give the bytes of the
    // plain rule, alone in a block, mixed with partial pixels and at the ragged end of a row.
    std::mt19937 Random(2468);
    const int_point2d TargetSize(50, 9);
    for (int Round = 0; Round < 2000; Round++) {
        int_point2d SourceSize(1 + int(Random() % 40), 1 + int(Random() % 6));
        art_bitmap Target(TargetSize.X, TargetSize.Y);
        art_bitmap Source(SourceSize.X, SourceSize.Y);
        FillRandom(Target, Random);
        FillRuns(Source, Random);
        int X = int(Random() % 70) - 15;
        int Y = int(Random() % 13) - 3;
        uint8_t Opacity = Round % 2 == 0 ? 255 : RandomEdgyByte(Random);
        std::vector<agg::rgba8> Want = Snapshot(Target);
        PlainRectangleOperation(Want, TargetSize, Snapshot(Source), SourceSize, X, Y,
                                int_rectangle(int_point2d(0, 0), SourceSize), BlendRule(Opacity));
        Target.BlendBitmap(X, Y, &Source, Opacity);
        ASSERT_TRUE(BitmapIs(Target, Want.data()))
            << "round " << Round << " at (" << X << ", " << Y << ") size " << SourceSize.X << "x" << SourceSize.Y
            << " opacity " << unsigned(Opacity);
    }
}

TEST_P(ArtBitmapRectangles, BlendOfRunsOntoItselfReadsEverySourcePixelFirst)
{
    // The same runs drawn onto their own bitmap, shifted by less and by more than a block either
    // way, over rows whose lengths do not end on a block.
    std::mt19937 Random(1357);
    const int_point2d Size(60, 6);
    for (int Width = 1; Width <= 41; Width += 4)
        for (int DY = -1; DY <= 1; DY++)
            for (int DX = -11; DX <= 11; DX++) {
                art_bitmap Bitmap(Size.X, Size.Y);
                FillRuns(Bitmap, Random);
                const int_rectangle Area(int_point2d(12, 1), int_point2d(Width, 4));
                std::vector<agg::rgba8> Before = Snapshot(Bitmap);
                std::vector<agg::rgba8> Want = Before;
                int X = Area.Location.X + DX;
                int Y = Area.Location.Y + DY;
                PlainRectangleOperation(Want, Size, Before, Size, X, Y, Area, BlendRule(255));
                Bitmap.BlendBitmap(X, Y, &Bitmap, Area, 255);
                ASSERT_TRUE(BitmapIs(Bitmap, Want.data())) << "width " << Width << " shift " << DX << ", " << DY;
            }
}

TEST(ArtBitmap, BlendBitmapOfOneRowOntoItselfShiftedRight)
{
    // Right to left: each pixel blends with the source pixel as it was, not as already blended.
    art_bitmap Bitmap(3, 1);
    Bitmap.GetPixelRow(0)[0] = Pixel(0, 0, 0, 128);
    Bitmap.GetPixelRow(0)[1] = Pixel(100, 0, 0, 255);
    Bitmap.GetPixelRow(0)[2] = Pixel(0, 0, 0, 0);
    Bitmap.BlendBitmap(1, 0, &Bitmap, int_rectangle(int_point2d(0, 0), int_point2d(2, 1)), 255);
    // Pixel 2 takes the opaque (100, 0, 0, 255); pixel 1 takes half black over it: (100 * 127) >> 8.
    EXPECT_EQ(PixelText(Pixel(0, 0, 0, 128)), PixelText(Bitmap.GetPixelRow(0)[0]));
    EXPECT_EQ(PixelText(Pixel(49, 0, 0, 255)), PixelText(Bitmap.GetPixelRow(0)[1]));
    EXPECT_EQ(PixelText(Pixel(100, 0, 0, 255)), PixelText(Bitmap.GetPixelRow(0)[2]));
}

TEST_P(ArtBitmapRectangles, BlendWithAlphaRunsGivesThePlainBytes)
{
    // Pictures with opaque, transparent and partial runs, several rows deep, clipped at every side,
    // at full and partial opacity: skipping and copying by the runs gives the bytes of the rule.
    std::mt19937 Random(8642);
    const int_point2d TargetSize(50, 14);
    for (int Round = 0; Round < 2000; Round++) {
        int_point2d SourceSize(1 + int(Random() % 40), 1 + int(Random() % 10));
        art_bitmap Target(TargetSize.X, TargetSize.Y);
        art_bitmap Source(SourceSize.X, SourceSize.Y);
        FillRandom(Target, Random);
        FillBandedRuns(Source, Random);
        art_alpha_runs Runs(Source);
        int X = int(Random() % 70) - 15;
        int Y = int(Random() % 20) - 4;
        int_rectangle Rectangle(int_point2d(0, 0), SourceSize);
        if (Random() % 4 != 0)
            Rectangle = int_rectangle(int_point2d(int(Random() % 50) - 5, int(Random() % 14) - 3),
                                      int_point2d(int(Random() % 45) - 2, int(Random() % 13) - 2));
        uint8_t Opacity = Round % 2 == 0 ? 255 : RandomEdgyByte(Random);
        std::vector<agg::rgba8> Want = Snapshot(Target);
        PlainRectangleOperation(Want, TargetSize, Snapshot(Source), SourceSize, X, Y, Rectangle, BlendRule(Opacity));
        Target.BlendBitmap(X, Y, &Source, Rectangle, Opacity, Runs);
        ASSERT_TRUE(BitmapIs(Target, Want.data()))
            << "round " << Round << " at (" << X << ", " << Y << ") of (" << Rectangle.Location.X << ", "
            << Rectangle.Location.Y << ") size " << Rectangle.Size.X << "x" << Rectangle.Size.Y << " opacity "
            << unsigned(Opacity);
    }
}

TEST_P(ArtBitmapRectangles, BlendWithAlphaRunsBetweenViewsLandsInTheTargetViewOnly)
{
    // Both bitmaps are views whose rows lie further apart than they are wide; the runs are those of
    // the source view. The target's parent changes inside the view only, as the rule says.
    std::mt19937 Random(9753);
    for (int Round = 0; Round < 500; Round++) {
        art_bitmap TargetParent(64, 20);
        art_bitmap SourceParent(48, 16);
        FillRandom(TargetParent, Random);
        FillBandedRuns(SourceParent, Random);
        int_point2d SourceSize(1 + int(Random() % 40), 1 + int(Random() % 10));
        art_bitmap Target(&TargetParent, int_rectangle(int_point2d(7, 3), int_point2d(50, 14)));
        art_bitmap Source(&SourceParent, int_rectangle(int_point2d(int(Random() % unsigned(49 - SourceSize.X)),
                                                                   int(Random() % unsigned(17 - SourceSize.Y))),
                                                       SourceSize));
        art_alpha_runs Runs(Source);
        int X = int(Random() % 70) - 15;
        int Y = int(Random() % 20) - 4;
        int_rectangle Rectangle(int_point2d(int(Random() % 10) - 3, int(Random() % 6) - 2),
                                int_point2d(int(Random() % 45), int(Random() % 12)));
        uint8_t Opacity = Round % 2 == 0 ? 255 : RandomEdgyByte(Random);
        std::vector<agg::rgba8> Want = RowsOf(Target);
        PlainRectangleOperation(Want, Target.GetSize(), RowsOf(Source), SourceSize, X, Y, Rectangle,
                                BlendRule(Opacity));
        std::vector<agg::rgba8> Parent = Snapshot(TargetParent);
        for (int Row = 0; Row < 14; Row++)
            std::copy(Want.begin() + Row * 50, Want.begin() + (Row + 1) * 50, Parent.begin() + (3 + Row) * 64 + 7);
        Target.BlendBitmap(X, Y, &Source, Rectangle, Opacity, Runs);
        ASSERT_TRUE(BitmapIs(TargetParent, Parent.data())) << "round " << Round;
    }
}

TEST_P(ArtBitmapRectangles, BlendWithAlphaRunsOntoItselfReadsEverySourcePixelFirst)
{
    // A picture drawn onto itself with its own runs: the blend changes the source under it, so the
    // result must still be the one of drawing from an untouched copy, in every direction of overlap.
    std::mt19937 Random(3579);
    const int_point2d Size(60, 8);
    for (int Width = 1; Width <= 41; Width += 8)
        for (int DY = -2; DY <= 2; DY++)
            for (int DX = -11; DX <= 11; DX++) {
                art_bitmap Bitmap(Size.X, Size.Y);
                FillBandedRuns(Bitmap, Random);
                art_alpha_runs Runs(Bitmap);
                const int_rectangle Area(int_point2d(12, 2), int_point2d(Width, 4));
                std::vector<agg::rgba8> Before = Snapshot(Bitmap);
                std::vector<agg::rgba8> Want = Before;
                uint8_t Opacity = DX % 2 == 0 ? 255 : 200;
                int X = Area.Location.X + DX;
                int Y = Area.Location.Y + DY;
                PlainRectangleOperation(Want, Size, Before, Size, X, Y, Area, BlendRule(Opacity));
                Bitmap.BlendBitmap(X, Y, &Bitmap, Area, Opacity, Runs);
                ASSERT_TRUE(BitmapIs(Bitmap, Want.data())) << "width " << Width << " shift " << DX << ", " << DY;
            }
}

TEST_P(ArtBitmapRectangles, BlendWithAlphaRunsBetweenOverlappingViewsLikeThePlainPath)
{
    // Two views of one bitmap that overlap: the source changes under the blend in an order that the
    // views' own coordinates decide. The runs must change nothing of that: the bytes are those of
    // the blend without runs.
    std::mt19937 Random(2468);
    const int_point2d Size(60, 10);
    for (int DY = -2; DY <= 2; DY++)
        for (int DX = -11; DX <= 11; DX++) {
            art_bitmap Parent(Size.X, Size.Y);
            FillBandedRuns(Parent, Random);
            art_bitmap Twin(Size.X, Size.Y);
            Twin.CopyBitmap(0, 0, &Parent);
            const int_rectangle SourcePart(int_point2d(12, 3), int_point2d(33, 4));
            const int_rectangle TargetPart(SourcePart.Location + int_point2d(DX, DY), SourcePart.Size);
            art_bitmap Source(&Parent, SourcePart);
            art_bitmap Target(&Parent, TargetPart);
            art_bitmap TwinSource(&Twin, SourcePart);
            art_bitmap TwinTarget(&Twin, TargetPart);
            art_alpha_runs Runs(Source);
            int_rectangle Whole(int_point2d(0, 0), SourcePart.Size);
            Target.BlendBitmap(0, 0, &Source, Whole, 255, Runs);
            TwinTarget.BlendBitmap(0, 0, &TwinSource, Whole, 255);
            ASSERT_TRUE(SamePixels(Parent.GetPixelRow(0), Twin.GetPixelRow(0), Size.X * Size.Y, Size.X))
                << "shift " << DX << ", " << DY;
        }
}

TEST(ArtBitmap, BlendWithAlphaRunsOfAnotherSizeIsRefused)
{
    art_bitmap Target(4, 4);
    art_bitmap Source(3, 3);
    art_bitmap Other(3, 2);
    art_alpha_runs Runs(Other);
    EXPECT_NE(std::string::npos,
              ZEL_ERROR_MESSAGE(Target.BlendBitmap(0, 0, &Source, int_rectangle(int_point2d(0, 0), int_point2d(3, 3)),
                                                   255, Runs))
                  .find("'SourceRuns==nullptr || SourceRuns->GetSize()==SourceBitmap->GetSize()' is false"));
}

TEST(ArtBitmap, APictureBeyondTheLimitIsRefusedInWordsAndTheBitmapKeepsItsSize)
{
    art_bitmap Bitmap(2, 2);
    EXPECT_EQ("A picture of 200100 by 200100 pixels is too large to draw.",
              ZEL_ERROR_MESSAGE(Bitmap.SetSize(200100, 200100)));
    EXPECT_EQ("A picture of 2147483647 by 0 pixels is too large to draw.",
              ZEL_ERROR_MESSAGE(Bitmap.SetSize(2147483647, 0)));
    EXPECT_EQ(int_point2d(2, 2), Bitmap.GetSize());
    // One row more than 2^27 pixels is refused.
    EXPECT_EQ(int64_t(1) << 27, art_bitmap::MaximumPixels);
    EXPECT_EQ("A picture of 16384 by 8193 pixels is too large to draw.",
              ZEL_ERROR_MESSAGE(Bitmap.SetSize(1 << 14, (1 << 13) + 1)));
}
