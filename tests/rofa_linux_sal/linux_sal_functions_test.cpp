#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <ctime>
#include <vector>

#include "rofa_lib/sal_functions.h"
#include "rofa_linux_sal/in_process_clipboard.h"
#include "rofa_linux_sal/linux_bitmap.h"
#include "rofa_linux_sal/linux_sal_functions.h"
#include "tests/test_support.h"

namespace {

// A bottom-up block, as platform bitmaps come: the top line is stored last.
class bottom_up_bitmap : public bitmap_interface
{
public:
    bottom_up_bitmap(int Width, int Height) : Width(Width), Height(Height), Pixels(Width * Height * 4, 0) {}
    int_point2d GetSize() override { return int_point2d(Width, Height); }
    uint8_t *GetFirstLine() override { return Pixels.data() + (Height - 1) * Width * 4; }
    int32_t GetLineStride() override { return -Width * 4; }
    // Pixel (X, Y) counted from the top.
    uint8_t *At(int X, int Y) { return GetFirstLine() + Y * GetLineStride() + X * 4; }

private:
    int Width;
    int Height;
    std::vector<uint8_t> Pixels;
};

// Stands for a window system's clipboard.
class fake_clipboard : public linux_clipboard
{
public:
    void CopyText(zel_string NewText) override { Text = NewText; }
    bool HasText() override { return true; }
    zel_string PasteText() override { return Text; }
    bool HasBitmap() override { return false; }
    ownership_pointer<bitmap_interface> PasteBitmap() override { return ownership_pointer<bitmap_interface>(); }

    zel_string Text;
};

class Clipboard : public testing::Test
{
protected:
    void SetUp() override { GetInProcessClipboard().Clear(); }
    void TearDown() override
    {
        SetLinuxClipboard(nullptr);
        GetInProcessClipboard().Clear();
    }
};

} // namespace

TEST(SALGetTime, NeverGoesBackwards)
{
    double Last = SALGetTime();
    for (int I = 0; I < 10000; I++) {
        double Now = SALGetTime();
        ASSERT_LE(Last, Now);
        Last = Now;
    }
}

TEST(SALGetTime, CountsWholeMilliseconds)
{
    for (int I = 0; I < 100; I++) {
        double Milliseconds = SALGetTime() * 1000;
        ASSERT_NEAR(std::round(Milliseconds), Milliseconds, 1e-3);
    }
}

TEST(SALGetTime, ReadsTheMonotonicClock)
{
    timespec Before, After;
    clock_gettime(CLOCK_MONOTONIC, &Before);
    double Time = SALGetTime();
    clock_gettime(CLOCK_MONOTONIC, &After);
    double BeforeMilliseconds = std::floor(Before.tv_sec * 1000.0 + Before.tv_nsec / 1e6);
    double AfterMilliseconds = std::floor(After.tv_sec * 1000.0 + After.tv_nsec / 1e6);
    EXPECT_LE(BeforeMilliseconds * 0.001 - 1e-9, Time);
    EXPECT_GE(AfterMilliseconds * 0.001 + 1e-9, Time);
}

TEST(SALGetErrorText, IsTheSystemsMessageWithTheNumber)
{
    EXPECT_EQ(std::string(strerror(ENOENT)) + " (Error #2)", ToStd(SALGetErrorText(ENOENT)));
}

TEST_F(Clipboard, EmptyClipboardHasNothing)
{
    EXPECT_FALSE(SALClipboardHasText());
    EXPECT_EQ(zel_string(""), SALPasteTextFromClipboard());
    EXPECT_FALSE(SALClipboardHasBitmap());
    EXPECT_FALSE(SALPasteBitmapFromClipboard().IsSet());
}

TEST_F(Clipboard, TextRoundTrip)
{
    SALCopyTextToClipboard("Tessaly \xc3\xa9");
    EXPECT_TRUE(SALClipboardHasText());
    EXPECT_EQ(zel_string("Tessaly \xc3\xa9"), SALPasteTextFromClipboard());
    // Pasting leaves the text there.
    EXPECT_EQ(zel_string("Tessaly \xc3\xa9"), SALPasteTextFromClipboard());
}

TEST_F(Clipboard, PastedTextEndsAtTheFirstZeroByte)
{
    SALCopyTextToClipboard(zel_string("ab\0cd", 5));
    EXPECT_EQ(zel_string("ab"), SALPasteTextFromClipboard());
}

TEST_F(Clipboard, EmptyTextIsStillText)
{
    SALCopyTextToClipboard("");
    EXPECT_TRUE(SALClipboardHasText());
    EXPECT_EQ(zel_string(""), SALPasteTextFromClipboard());
}

TEST_F(Clipboard, BitmapRoundTripGivesTopDownPixels)
{
    bottom_up_bitmap Source(3, 2);
    for (int Y = 0; Y < 2; Y++)
        for (int X = 0; X < 3; X++)
            for (int C = 0; C < 4; C++)
                Source.At(X, Y)[C] = static_cast<uint8_t>(100 * Y + 10 * X + C);
    GetInProcessClipboard().CopyBitmap(reference_pointer<bitmap_interface>(&Source));
    EXPECT_TRUE(SALClipboardHasBitmap());
    EXPECT_FALSE(SALClipboardHasText());

    ownership_pointer<bitmap_interface> Pasted = SALPasteBitmapFromClipboard();
    ASSERT_TRUE(Pasted.IsSet());
    EXPECT_EQ(int_point2d(3, 2), Pasted->GetSize());
    EXPECT_EQ(12, Pasted->GetLineStride());
    EXPECT_EQ(32, Pasted->GetBitsPerPixel());
    for (int Y = 0; Y < 2; Y++)
        for (int X = 0; X < 3; X++)
            for (int C = 0; C < 4; C++)
                EXPECT_EQ(100 * Y + 10 * X + C, Pasted->GetFirstLine()[Y * 12 + X * 4 + C]);
}

TEST_F(Clipboard, TheCopyOutlivesTheBitmap)
{
    {
        linux_bitmap Source(int_point2d(1, 1));
        Source.GetFirstLine()[0] = 9;
        Source.GetFirstLine()[3] = 255;
        GetInProcessClipboard().CopyBitmap(reference_pointer<bitmap_interface>(&Source));
    }
    ownership_pointer<bitmap_interface> Pasted = SALPasteBitmapFromClipboard();
    ASSERT_TRUE(Pasted.IsSet());
    EXPECT_EQ(9, Pasted->GetFirstLine()[0]);
    EXPECT_EQ(255, Pasted->GetFirstLine()[3]);
}

TEST_F(Clipboard, CopyingTextReplacesABitmapAndTheOtherWayRound)
{
    linux_bitmap Source(int_point2d(2, 2));
    GetInProcessClipboard().CopyBitmap(reference_pointer<bitmap_interface>(&Source));
    SALCopyTextToClipboard("text");
    EXPECT_FALSE(SALClipboardHasBitmap());
    EXPECT_FALSE(SALPasteBitmapFromClipboard().IsSet());
    GetInProcessClipboard().CopyBitmap(reference_pointer<bitmap_interface>(&Source));
    EXPECT_FALSE(SALClipboardHasText());
    EXPECT_EQ(zel_string(""), SALPasteTextFromClipboard());
}

TEST_F(Clipboard, AnInstalledClipboardTakesOver)
{
    fake_clipboard Fake;
    SetLinuxClipboard(&Fake);
    SALCopyTextToClipboard(zel_string("x\0y", 3));
    EXPECT_EQ(zel_string("x\0y", 3), Fake.Text);
    EXPECT_EQ(zel_string("x"), SALPasteTextFromClipboard());
    EXPECT_FALSE(GetInProcessClipboard().HasText());

    SetLinuxClipboard(nullptr);
    EXPECT_FALSE(SALClipboardHasText());
}

TEST(LinuxBitmap, IsTopDownZeroedAndFourBytesAPixel)
{
    linux_bitmap Bitmap(int_point2d(5, 3));
    EXPECT_EQ(int_point2d(5, 3), Bitmap.GetSize());
    EXPECT_EQ(20, Bitmap.GetLineStride());
    EXPECT_EQ(4, Bitmap.GetBytesPerPixel());
    EXPECT_FALSE(Bitmap.IsArtBitmap());
    for (int I = 0; I < 60; I++)
        ASSERT_EQ(0, Bitmap.GetFirstLine()[I]);
}
