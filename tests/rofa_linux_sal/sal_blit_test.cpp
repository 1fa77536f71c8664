#include <gtest/gtest.h>
#include <gmock/gmock.h>

#include <cstring>
#include <string>
#include <vector>

#include "rofa_linux_sal/sal_blit.h"
#include "zel_basics/zel_error.h"

namespace {

// Pixels in RGBA bytes, stored top-down or bottom-up, with optional padding behind each line.
class test_bitmap : public bitmap_interface
{
public:
    test_bitmap(int Width, int Height, bool BottomUp, int Stride = 0)
        : Width(Width), Height(Height), BottomUp(BottomUp), Stride(Stride != 0 ? Stride : Width * 4),
          Block(static_cast<size_t>(this->Stride * Height), 0)
    {
    }

    void SetPixel(int X, int Y, uint8_t R, uint8_t G, uint8_t B, uint8_t A)
    {
        uint8_t *Pixel = GetFirstLine() + Y * GetLineStride() + X * 4;
        Pixel[0] = R;
        Pixel[1] = G;
        Pixel[2] = B;
        Pixel[3] = A;
    }

    // The bytes of one line as stored, from the top, padding included.
    uint8_t *Line(int Y) { return GetFirstLine() + Y * GetLineStride(); }

    int_point2d GetSize() override { return int_point2d(Width, Height); }
    uint8_t *GetFirstLine() override { return BottomUp ? Block.data() + (Height - 1) * Stride : Block.data(); }
    int32_t GetLineStride() override { return BottomUp ? -Stride : Stride; }

    std::vector<uint8_t> &GetBlock() { return Block; }

private:
    int Width;
    int Height;
    bool BottomUp;
    int Stride;
    std::vector<uint8_t> Block;
};

std::vector<uint8_t> Row(std::vector<uint8_t> &Buffer, int Stride, int Y)
{
    return std::vector<uint8_t>(Buffer.begin() + Y * Stride, Buffer.begin() + (Y + 1) * Stride);
}

std::string ErrorOfBlit(uint8_t *Target, int32_t Stride, int_point2d TargetSize, int_point2d Location, bitmap_interface &Source)
{
    try
    {
        SALBlit(Target, Stride, 32, TargetSize, Location, 0xFF0000, 0xFF00, 0xFF, &Source);
    }
    catch (const zel_error &Error)
    {
        return std::string(Error.GetMessage().GetString(), static_cast<size_t>(Error.GetMessage().GetLength()));
    }
    ADD_FAILURE() << "no zel_error was thrown";
    return std::string();
}

using bytes = std::vector<uint8_t>;

} // namespace

TEST(SALBlit, SixteenBitFastPath)
{
    test_bitmap Source(2, 1, false);
    Source.SetPixel(0, 0, 0xFF, 0x80, 0x10, 0x99);
    Source.SetPixel(1, 0, 0x12, 0x34, 0x56, 0x00);
    bytes Target(4, 0xEE);
    SALBlit(Target.data(), 4, 16, int_point2d(2, 1), int_point2d(0, 0), 0xF800, 0x7E0, 0x1F, &Source);
    // 0xF8*256 + 0x80*8 + 0x10/8 = 0xFC02; 0x10*256 + 0x34*8 + 0x56/8 = 0x11AA.
    EXPECT_EQ((bytes{0x02, 0xFC, 0xAA, 0x11}), Target);
}

TEST(SALBlit, SixteenBitGeneralMasks)
{
    test_bitmap Source(2, 1, false);
    Source.SetPixel(0, 0, 0xFF, 0x80, 0x10, 0x99);
    Source.SetPixel(1, 0, 0x12, 0x34, 0x56, 0x00);
    bytes Target(4, 0xEE);
    // Red in the low five bits, blue in the high five: 0x1F | 0x80<<3 | 0x10<<8 = 0x141F and
    // 0x12>>3 | (0x34<<3 & 0x7E0) | (0x56<<8 & 0xF800) = 0x02 | 0x1A0 | 0x5000 = 0x51A2.
    SALBlit(Target.data(), 4, 16, int_point2d(2, 1), int_point2d(0, 0), 0x1F, 0x7E0, 0xF800, &Source);
    EXPECT_EQ((bytes{0x1F, 0x14, 0xA2, 0x51}), Target);
}

TEST(SALBlit, FifteenBitGeneralMasks)
{
    test_bitmap Source(2, 1, false);
    Source.SetPixel(0, 0, 0xFF, 0x80, 0x10, 0x99);
    Source.SetPixel(1, 0, 0x12, 0x34, 0x56, 0x00);
    bytes Target(4, 0xEE);
    // 5-5-5: (0xFF<<7 & 0x7C00) | (0x80<<2 & 0x3E0) | 0x10>>3 = 0x7E02;
    // (0x12<<7 & 0x7C00) | (0x34<<2 & 0x3E0) | 0x56>>3 = 0x0800 | 0x00C0 | 0x0A = 0x08CA.
    SALBlit(Target.data(), 4, 15, int_point2d(2, 1), int_point2d(0, 0), 0x7C00, 0x3E0, 0x1F, &Source);
    EXPECT_EQ((bytes{0x02, 0x7E, 0xCA, 0x08}), Target);
}

TEST(SALBlit, SixteenBitsWithFiveFiveFiveMasksUseTheGeneralForm)
{
    test_bitmap Source(1, 1, false);
    Source.SetPixel(0, 0, 0xFF, 0x80, 0x10, 0x99);
    bytes Target(2, 0xEE);
    SALBlit(Target.data(), 2, 16, int_point2d(1, 1), int_point2d(0, 0), 0x7C00, 0x3E0, 0x1F, &Source);
    EXPECT_EQ((bytes{0x02, 0x7E}), Target);
}

TEST(SALBlit, TwentyFourBitsRedHighMaskGivesRGBBytes)
{
    test_bitmap Source(2, 1, false);
    Source.SetPixel(0, 0, 0x11, 0x22, 0x33, 0x44);
    Source.SetPixel(1, 0, 0xAA, 0xBB, 0xCC, 0xDD);
    bytes Target(8, 0xEE);
    SALBlit(Target.data(), 8, 24, int_point2d(2, 1), int_point2d(0, 0), 0xFF0000, 0xFF00, 0xFF, &Source);
    EXPECT_EQ((bytes{0x11, 0x22, 0x33, 0xAA, 0xBB, 0xCC, 0xEE, 0xEE}), Target);
}

TEST(SALBlit, TwentyFourBitsRedLowMaskGivesBGRBytes)
{
    test_bitmap Source(2, 1, false);
    Source.SetPixel(0, 0, 0x11, 0x22, 0x33, 0x44);
    Source.SetPixel(1, 0, 0xAA, 0xBB, 0xCC, 0xDD);
    bytes Target(8, 0xEE);
    SALBlit(Target.data(), 8, 24, int_point2d(2, 1), int_point2d(0, 0), 0xFF, 0xFF00, 0xFF0000, &Source);
    EXPECT_EQ((bytes{0x33, 0x22, 0x11, 0xCC, 0xBB, 0xAA, 0xEE, 0xEE}), Target);
}

TEST(SALBlit, TwentyFourBitsOtherMasksPutEachChannelInItsByte)
{
    test_bitmap Source(2, 1, false);
    Source.SetPixel(0, 0, 0x11, 0x22, 0x33, 0x44);
    Source.SetPixel(1, 0, 0xAA, 0xBB, 0xCC, 0xDD);
    bytes Target(6, 0xEE);
    // Bytes count from the top of the pixel value, as in the two fixed forms where red 0xFF0000 is the
    // first byte: green 0xFF0000 goes first, red 0xFF00 second, blue 0xFF third.
    SALBlit(Target.data(), 6, 24, int_point2d(2, 1), int_point2d(0, 0), 0xFF00, 0xFF0000, 0xFF, &Source);
    EXPECT_EQ((bytes{0x22, 0x11, 0x33, 0xBB, 0xAA, 0xCC}), Target);
}

TEST(SALBlit, ThirtyTwoBitsInSourceOrderCopiesWholeTargetLines)
{
    // Source lines are 12 bytes: two pixels and four bytes of padding, which the copy takes along
    // because it copies the target's stride, not the source's width.
    test_bitmap Source(2, 2, false, 12);
    Source.SetPixel(0, 0, 0x01, 0x02, 0x03, 0x04);
    Source.SetPixel(1, 0, 0x05, 0x06, 0x07, 0x08);
    Source.SetPixel(0, 1, 0x11, 0x12, 0x13, 0x14);
    Source.SetPixel(1, 1, 0x15, 0x16, 0x17, 0x18);
    std::memset(Source.Line(0) + 8, 0xA0, 4);
    std::memset(Source.Line(1) + 8, 0xA1, 4);
    bytes Target(24, 0xEE);
    SALBlit(Target.data(), 12, 32, int_point2d(3, 2), int_point2d(0, 0), 0xFF, 0xFF00, 0xFF0000, &Source);
    EXPECT_EQ((bytes{0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07, 0x08, 0xA0, 0xA0, 0xA0, 0xA0}), Row(Target, 12, 0));
    EXPECT_EQ((bytes{0x11, 0x12, 0x13, 0x14, 0x15, 0x16, 0x17, 0x18, 0xA1, 0xA1, 0xA1, 0xA1}), Row(Target, 12, 1));
}

TEST(SALBlit, ThirtyTwoBitsInSourceOrderIntoBottomUpTarget)
{
    test_bitmap Source(2, 2, true);
    Source.SetPixel(0, 0, 0x01, 0x02, 0x03, 0x04);
    Source.SetPixel(1, 0, 0x05, 0x06, 0x07, 0x08);
    Source.SetPixel(0, 1, 0x11, 0x12, 0x13, 0x14);
    Source.SetPixel(1, 1, 0x15, 0x16, 0x17, 0x18);
    bytes Target(16, 0xEE);
    SALBlit(Target.data() + 8, -8, 32, int_point2d(2, 2), int_point2d(0, 0), 0xFF, 0xFF00, 0xFF0000, &Source);
    EXPECT_EQ((bytes{0x11, 0x12, 0x13, 0x14, 0x15, 0x16, 0x17, 0x18, 0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07, 0x08}),
              Target);
}

TEST(SALBlit, ThirtyTwoBitsScreenOrderKeepsTheFourthByte)
{
    test_bitmap Source(2, 1, false);
    Source.SetPixel(0, 0, 0x11, 0x22, 0x33, 0x44);
    Source.SetPixel(1, 0, 0xAA, 0xBB, 0xCC, 0xDD);
    bytes Target(8, 0x77);
    SALBlit(Target.data(), 8, 32, int_point2d(2, 1), int_point2d(0, 0), 0xFF0000, 0xFF00, 0xFF, &Source);
    EXPECT_EQ((bytes{0x33, 0x22, 0x11, 0x77, 0xCC, 0xBB, 0xAA, 0x77}), Target);
}

TEST(SALBlit, ThirtyTwoBitsScreenOrderOnWideLines)
{
    // Wide enough for whole blocks of pixels and a remainder, into a bottom-up buffer at an offset.
    const int Width = 37;
    const int Height = 3;
    const int ScreenWidth = 40;
    const int ScreenHeight = 5;
    test_bitmap Source(Width, Height, false);
    for (int Y = 0; Y < Height; Y++)
        for (int X = 0; X < Width; X++)
            Source.SetPixel(X, Y, uint8_t(X * 3 + Y), uint8_t(X * 5 + 100), uint8_t(200 - X - Y * 7), uint8_t(X));
    bytes Screen(size_t(ScreenWidth) * ScreenHeight * 4);
    for (size_t I = 0; I < Screen.size(); I++)
        Screen[I] = uint8_t(I * 11);
    bytes Before = Screen;
    int Stride = ScreenWidth * 4;
    SALBlit(Screen.data() + (ScreenHeight - 1) * Stride, -Stride, 32, int_point2d(ScreenWidth, ScreenHeight),
            int_point2d(2, 1), 0xFF0000, 0xFF00, 0xFF, &Source);
    for (int StoredLine = 0; StoredLine < ScreenHeight; StoredLine++)
    {
        int ScreenY = ScreenHeight - 1 - StoredLine;
        for (int ScreenX = 0; ScreenX < ScreenWidth; ScreenX++)
        {
            size_t At = size_t(StoredLine) * Stride + ScreenX * 4;
            int X = ScreenX - 2;
            int Y = ScreenY - 1;
            bytes Expected(Before.begin() + At, Before.begin() + At + 4);
            if (X >= 0 && X < Width && Y >= 0 && Y < Height)
            {
                Expected[0] = uint8_t(200 - X - Y * 7);
                Expected[1] = uint8_t(X * 5 + 100);
                Expected[2] = uint8_t(X * 3 + Y);
            }
            EXPECT_EQ(Expected, bytes(Screen.begin() + At, Screen.begin() + At + 4)) << ScreenX << "," << ScreenY;
        }
    }
}

TEST(SALBlit, ThirtyTwoBitsOtherMasksShiftEachChannelAndClearTheRest)
{
    test_bitmap Source(2, 1, false);
    Source.SetPixel(0, 0, 0x11, 0x22, 0x33, 0x44);
    Source.SetPixel(1, 0, 0xAA, 0xBB, 0xCC, 0xDD);
    bytes Target(8, 0x77);
    // Red in bits 8-15, green 16-23, blue 24-31; bits 0-7 belong to no mask and are cleared.
    SALBlit(Target.data(), 8, 32, int_point2d(2, 1), int_point2d(0, 0), 0xFF00, 0xFF0000, 0xFF000000, &Source);
    EXPECT_EQ((bytes{0x00, 0x11, 0x22, 0x33, 0x00, 0xAA, 0xBB, 0xCC}), Target);
}

TEST(SALBlit, ThirtyTwoBitsTenBitMasks)
{
    test_bitmap Source(1, 1, false);
    Source.SetPixel(0, 0, 0xFF, 0x80, 0x10, 0x99);
    bytes Target(4, 0xFF);
    // 0xFF<<22 = 0x3FC00000, 0x80<<12 = 0x80000, 0x10<<2 = 0x40: the word 0x3FC80040, little-endian.
    SALBlit(Target.data(), 4, 32, int_point2d(1, 1), int_point2d(0, 0), 0x3FF00000, 0xFFC00, 0x3FF, &Source);
    EXPECT_EQ((bytes{0x40, 0x00, 0xC8, 0x3F}), Target);
}

TEST(SALBlit, OtherDepthsWriteNothing)
{
    test_bitmap Source(2, 2, false);
    Source.SetPixel(0, 0, 0x11, 0x22, 0x33, 0x44);
    for (int Bits : {1, 4, 8, 12, 17, 48})
    {
        bytes Target(64, 0xEE);
        SALBlit(Target.data(), 16, Bits, int_point2d(2, 2), int_point2d(0, 0), 0xFF0000, 0xFF00, 0xFF, &Source);
        EXPECT_EQ(bytes(64, 0xEE), Target) << Bits;
    }
}

TEST(SALBlit, OffsetTouchesOnlyTheCoveredPixels)
{
    test_bitmap Source(2, 1, false);
    Source.SetPixel(0, 0, 0x11, 0x22, 0x33, 0x44);
    Source.SetPixel(1, 0, 0xAA, 0xBB, 0xCC, 0xDD);
    bytes Target(3 * 3 * 3, 0xEE);
    SALBlit(Target.data(), 9, 24, int_point2d(3, 3), int_point2d(1, 2), 0xFF, 0xFF00, 0xFF0000, &Source);
    EXPECT_EQ(bytes(9, 0xEE), Row(Target, 9, 0));
    EXPECT_EQ(bytes(9, 0xEE), Row(Target, 9, 1));
    EXPECT_EQ((bytes{0xEE, 0xEE, 0xEE, 0x33, 0x22, 0x11, 0xCC, 0xBB, 0xAA}), Row(Target, 9, 2));
}

TEST(SALBlit, BottomUpSourceKeepsItsTopLineOnTop)
{
    test_bitmap Source(1, 2, true);
    Source.SetPixel(0, 0, 0x10, 0x20, 0x30, 0x40);
    Source.SetPixel(0, 1, 0x50, 0x60, 0x70, 0x80);
    // The top line is stored last in the block.
    EXPECT_EQ(0x10, Source.GetBlock()[4]);
    bytes Target(8, 0xEE);
    SALBlit(Target.data(), 4, 32, int_point2d(1, 2), int_point2d(0, 0), 0xFF0000, 0xFF00, 0xFF, &Source);
    EXPECT_EQ((bytes{0x30, 0x20, 0x10, 0xEE, 0x70, 0x60, 0x50, 0xEE}), Target);
}

TEST(SALBlit, BottomUpScreenBufferWithOffset)
{
    // A 3x3 screen stored bottom-up, as the window's buffer is: the top line is the last stored one.
    test_bitmap Source(2, 2, false);
    Source.SetPixel(0, 0, 0x01, 0x02, 0x03, 0x04);
    Source.SetPixel(1, 0, 0x05, 0x06, 0x07, 0x08);
    Source.SetPixel(0, 1, 0x11, 0x12, 0x13, 0x14);
    Source.SetPixel(1, 1, 0x15, 0x16, 0x17, 0x18);
    bytes Screen(3 * 3 * 4, 0x00);
    SALBlit(Screen.data() + 2 * 12, -12, 32, int_point2d(3, 3), int_point2d(1, 1), 0xFF0000, 0xFF00, 0xFF, &Source);
    EXPECT_EQ((bytes{0, 0, 0, 0, 0x13, 0x12, 0x11, 0, 0x17, 0x16, 0x15, 0}), Row(Screen, 12, 0));
    EXPECT_EQ((bytes{0, 0, 0, 0, 0x03, 0x02, 0x01, 0, 0x07, 0x06, 0x05, 0}), Row(Screen, 12, 1));
    EXPECT_EQ(bytes(12, 0), Row(Screen, 12, 2));
}

TEST(SALBlit, SourceFillingTheTargetExactlyIsAllowed)
{
    test_bitmap Source(1, 1, false);
    Source.SetPixel(0, 0, 0x01, 0x02, 0x03, 0x04);
    bytes Target(4 * 4, 0xEE);
    SALBlit(Target.data(), 8, 32, int_point2d(2, 2), int_point2d(1, 1), 0xFF0000, 0xFF00, 0xFF, &Source);
    EXPECT_EQ((bytes{0xEE, 0xEE, 0xEE, 0xEE, 0x03, 0x02, 0x01, 0xEE}), Row(Target, 8, 1));
}

TEST(SALBlit, NegativeLocationAsserts)
{
    test_bitmap Source(1, 1, false);
    bytes Target(16, 0xEE);
    EXPECT_THAT(ErrorOfBlit(Target.data(), 8, int_point2d(2, 2), int_point2d(-1, 0), Source),
                testing::HasSubstr("'TargetLocation.X>=0 && TargetLocation.Y>=0' is false"));
    EXPECT_THAT(ErrorOfBlit(Target.data(), 8, int_point2d(2, 2), int_point2d(0, -1), Source),
                testing::HasSubstr("'TargetLocation.X>=0 && TargetLocation.Y>=0' is false"));
    EXPECT_EQ(bytes(16, 0xEE), Target);
}

TEST(SALBlit, SourceBeyondTheTargetAsserts)
{
    test_bitmap Source(2, 1, false);
    bytes Target(16, 0xEE);
    EXPECT_THAT(ErrorOfBlit(Target.data(), 8, int_point2d(2, 2), int_point2d(1, 0), Source),
                testing::HasSubstr("'TargetLocation+SourceBitmapSize<=TargetSize' is false"));
    EXPECT_THAT(ErrorOfBlit(Target.data(), 8, int_point2d(2, 2), int_point2d(0, 2), Source),
                testing::HasSubstr("'TargetLocation+SourceBitmapSize<=TargetSize' is false"));
    EXPECT_EQ(bytes(16, 0xEE), Target);
}
