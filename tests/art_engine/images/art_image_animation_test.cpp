#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "art_engine/images/art_animated_bitmap.h"
#include "art_engine/images/art_image_codecs.h"
#include "tests/art_engine/images/art_image_codecs_test_support.h"
#include "tests/test_support.h"

using namespace art_image_test;

namespace {

// One frame of an animation that ImageMagick writes: its pixels, where it stands on the canvas, how
// long it shows in hundredths of a second and what becomes of it afterwards.
struct gif_frame
{
    rgba_bytes Pixels;
    int Width;
    int Height;
    int Left;
    int Top;
    int Delay;
    std::string Dispose;
};

class ArtImageAnimation : public image_magick_test
{
protected:
    std::string MakeAnimation(const std::vector<gif_frame> &Frames, int CanvasWidth, int CanvasHeight)
    {
        std::string Arguments = "-depth 8";
        for (size_t I = 0; I < Frames.size(); I++) {
            const gif_frame &Frame = Frames[I];
            std::string Raw = Folder.File("frame" + std::to_string(I) + ".raw");
            WriteBytes(Raw, AsString(Frame.Pixels));
            Arguments += " -dispose " + Frame.Dispose + " -delay " + std::to_string(Frame.Delay) + " -page " +
                         std::to_string(CanvasWidth) + "x" + std::to_string(CanvasHeight) + "+" +
                         std::to_string(Frame.Left) + "+" + std::to_string(Frame.Top) + " -size " +
                         std::to_string(Frame.Width) + "x" + std::to_string(Frame.Height) + " rgba:" + Raw;
        }
        std::string Path = Folder.File("animation.gif");
        Convert(Arguments + " " + Path);
        return Path;
    }

    ownership_pointer<art_animated_bitmap> LoadAnimation(const std::string &Path)
    {
        return LoadAnimatedImageFromString(ToZel(ReadBytes(Path)));
    }
};

rgba_bytes Fill(int Width, int Height, uint8_t R, uint8_t G, uint8_t B, uint8_t A)
{
    rgba_bytes Bytes;
    for (int I = 0; I < Width * Height; I++)
        Bytes.insert(Bytes.end(), {R, G, B, A});
    return Bytes;
}

rgba_bytes Checkers(int Width, int Height)
{
    rgba_bytes Bytes;
    for (int Y = 0; Y < Height; Y++)
        for (int X = 0; X < Width; X++) {
            if ((X + Y) % 2)
                Bytes.insert(Bytes.end(), {200, 30, 30, 255});
            else
                Bytes.insert(Bytes.end(), {30, 30, 200, 255});
        }
    return Bytes;
}

// Green with its second column transparent.
rgba_bytes GreenWithAGap(int Width, int Height)
{
    rgba_bytes Bytes;
    for (int Y = 0; Y < Height; Y++)
        for (int X = 0; X < Width; X++) {
            if (X == 1)
                Bytes.insert(Bytes.end(), {0, 0, 0, 0});
            else
                Bytes.insert(Bytes.end(), {30, 200, 30, 255});
        }
    return Bytes;
}

// A full first frame that is cleared after it, a frame with a transparent column at an offset, and
// a small frame over it: offsets, transparency and disposal together.
std::vector<gif_frame> ThreeFrames()
{
    return {{Checkers(8, 6), 8, 6, 0, 0, 10, "Background"},
            {GreenWithAGap(4, 3), 4, 3, 2, 1, 0, "None"},
            {Fill(3, 2, 250, 250, 20, 255), 3, 2, 4, 3, 5, "None"}};
}

rgba_bytes FrameBytes(const rgba_bytes &All, int Index, int Width, int Height)
{
    size_t Size = size_t(Width) * size_t(Height) * 4;
    return rgba_bytes(All.begin() + std::ptrdiff_t(Size * size_t(Index)),
                      All.begin() + std::ptrdiff_t(Size * size_t(Index + 1)));
}

} // namespace

TEST_F(ArtImageAnimation, FramesMatchImageMagickComposition)
{
    std::string Path = MakeAnimation(ThreeFrames(), 8, 6);
    ASSERT_EQ(Identify("-format \"%w,%h,%X,%Y,%T,%D;\" " + Path),
              "8,6,+0,+0,10,Background;4,3,+2,+1,0,None;3,2,+4,+3,5,None;");
    EXPECT_TRUE(IsAnimatedImage(ToZel(ReadBytes(Path))));
    ownership_pointer<art_animated_bitmap> Animation = LoadAnimation(Path);
    ASSERT_TRUE(Animation.IsSet());
    ASSERT_EQ(Animation->GetNumberOfFrames(), 3);
    rgba_bytes Composed = Premultiplied(DecodeWithImageMagick(Path + " -coalesce"));
    ASSERT_EQ(Composed.size(), size_t(8 * 6 * 4 * 3));
    for (int I = 0; I < 3; I++) {
        EXPECT_EQ(Animation->Frames[I]->GetSize(), int_point2d(8, 6)) << "frame " << I;
        EXPECT_TRUE(SameBytes(PixelsOf(*Animation->Frames[I]), FrameBytes(Composed, I, 8, 6), 0, 8)) << "frame " << I;
    }
    // After the cleared first frame the transparent column of the second shows nothing at all.
    EXPECT_EQ(PixelsOf(*Animation->Frames[1])[(1 * 8 + 3) * 4 + 3], 0);
    EXPECT_EQ(PixelsOf(*Animation->Frames[1])[(1 * 8 + 2) * 4 + 1], 200);
}

TEST_F(ArtImageAnimation, FrameTimesAccumulate)
{
    ownership_pointer<art_animated_bitmap> Animation = LoadAnimation(MakeAnimation(ThreeFrames(), 8, 6));
    ASSERT_TRUE(Animation.IsSet());
    ASSERT_EQ(Animation->FrameTimes.GetNumberOfElements(), 3);
    EXPECT_DOUBLE_EQ(Animation->FrameTimes[0], 0.0);
    EXPECT_DOUBLE_EQ(Animation->FrameTimes[1], 0.1);
    EXPECT_DOUBLE_EQ(Animation->FrameTimes[2], 0.1 + 1.0 / 30.0);
    EXPECT_DOUBLE_EQ(Animation->TotalTime, 0.1 + 1.0 / 30.0 + 0.05);
    EXPECT_TRUE(Animation->Loops);
}

TEST_F(ArtImageAnimation, FrameTimeOfZeroCountsAsOneThirtiethOfASecond)
{
    std::vector<gif_frame> Frames = {{Fill(2, 2, 255, 0, 0, 255), 2, 2, 0, 0, 0, "None"},
                                     {Fill(2, 2, 0, 0, 255, 255), 2, 2, 0, 0, 0, "None"},
                                     {Fill(2, 2, 0, 255, 0, 255), 2, 2, 0, 0, 1, "None"}};
    std::string Path = MakeAnimation(Frames, 2, 2);
    ASSERT_EQ(Identify("-format \"%T;\" " + Path), "0;0;1;");
    ownership_pointer<art_animated_bitmap> Animation = LoadAnimation(Path);
    ASSERT_TRUE(Animation.IsSet());
    ASSERT_EQ(Animation->FrameTimes.GetNumberOfElements(), 3);
    EXPECT_DOUBLE_EQ(Animation->FrameTimes[1], 1.0 / 30.0);
    EXPECT_DOUBLE_EQ(Animation->FrameTimes[2], 2.0 / 30.0);
    // Ten milliseconds is also below the floor.
    EXPECT_DOUBLE_EQ(Animation->TotalTime, 3.0 / 30.0);
}

TEST_F(ArtImageAnimation, DisposalToBackgroundClearsTheWholeCanvas)
{
    // A red canvas, a blue square that is disposed of, then one green pixel: the disposal takes the
    // red away too, not only the square.
    std::vector<gif_frame> Frames = {{Fill(6, 4, 255, 0, 0, 255), 6, 4, 0, 0, 10, "None"},
                                     {Fill(2, 2, 0, 0, 255, 255), 2, 2, 1, 1, 10, "Background"},
                                     {Fill(1, 1, 0, 255, 0, 255), 1, 1, 5, 3, 10, "None"}};
    ownership_pointer<art_animated_bitmap> Animation = LoadAnimation(MakeAnimation(Frames, 6, 4));
    ASSERT_TRUE(Animation.IsSet());
    ASSERT_EQ(Animation->GetNumberOfFrames(), 3);
    rgba_bytes Second = Fill(6, 4, 255, 0, 0, 255);
    for (int Y = 1; Y <= 2; Y++)
        for (int X = 1; X <= 2; X++) {
            size_t At = size_t(Y * 6 + X) * 4;
            Second[At] = 0;
            Second[At + 2] = 255;
        }
    EXPECT_TRUE(SameBytes(PixelsOf(*Animation->Frames[1]), Second, 0, 6));
    rgba_bytes Third = Fill(6, 4, 0, 0, 0, 0);
    Third[(3 * 6 + 5) * 4 + 1] = 255;
    Third[(3 * 6 + 5) * 4 + 3] = 255;
    EXPECT_TRUE(SameBytes(PixelsOf(*Animation->Frames[2]), Third, 0, 6));
}

TEST_F(ArtImageAnimation, FirstFrameSmallerThanTheCanvasStandsOnTransparency)
{
    std::vector<gif_frame> Frames = {{Fill(2, 2, 0, 0, 255, 255), 2, 2, 3, 1, 10, "None"},
                                     {Fill(1, 1, 255, 0, 0, 255), 1, 1, 0, 0, 10, "None"}};
    ownership_pointer<art_animated_bitmap> Animation = LoadAnimation(MakeAnimation(Frames, 5, 4));
    ASSERT_TRUE(Animation.IsSet());
    ASSERT_EQ(Animation->GetNumberOfFrames(), 2);
    rgba_bytes First = Fill(5, 4, 0, 0, 0, 0);
    for (int Y = 1; Y <= 2; Y++)
        for (int X = 3; X <= 4; X++) {
            First[size_t(Y * 5 + X) * 4 + 2] = 255;
            First[size_t(Y * 5 + X) * 4 + 3] = 255;
        }
    EXPECT_EQ(Animation->Frames[0]->GetSize(), int_point2d(5, 4));
    EXPECT_TRUE(SameBytes(PixelsOf(*Animation->Frames[0]), First, 0, 5));
    rgba_bytes Second = First;
    Second[0] = 255;
    Second[3] = 255;
    EXPECT_TRUE(SameBytes(PixelsOf(*Animation->Frames[1]), Second, 0, 5));
}

TEST_F(ArtImageAnimation, OnlyAGifOfManyPagesIsAnimated)
{
    EXPECT_FALSE(IsAnimatedImage(ToZel("")));
    EXPECT_FALSE(IsAnimatedImage(ToZel("GIF89a")));
    EXPECT_FALSE(IsAnimatedImage(ToZel(ReadBytes(MakeFile(Opaque(4, 4), 4, 4, "", "small.png")))));
    EXPECT_FALSE(IsAnimatedImage(ToZel(ReadBytes(MakeFile(Opaque(4, 4), 4, 4, "", "small.gif")))));
    EXPECT_TRUE(IsAnimatedImage(ToZel(ReadBytes(MakeAnimation(ThreeFrames(), 8, 6)))));
}

TEST_F(ArtImageAnimation, ThatWhichIsNoGifGivesNull)
{
    std::string Png = ReadBytes(MakeFile(Opaque(4, 4), 4, 4, "", "small.png"));
    ownership_pointer<art_animated_bitmap> Animation;
    EXPECT_NO_THROW(Animation = LoadAnimatedImageFromString(ToZel(Png)));
    EXPECT_FALSE(Animation.IsSet());
    EXPECT_NO_THROW(Animation = LoadAnimatedImageFromString(ToZel("not an image")));
    EXPECT_FALSE(Animation.IsSet());
    EXPECT_NE(Log().find("Error loading image file. Byte-Size=12 Error=The bytes are not a GIF file.\n"),
              std::string::npos);
}

TEST_F(ArtImageAnimation, TruncatedAnimationGivesNull)
{
    std::string Whole = ReadBytes(MakeAnimation(ThreeFrames(), 8, 6));
    for (size_t Length : {size_t(10), size_t(13), size_t(40), Whole.size() / 2, Whole.size() - 10, Whole.size() - 1}) {
        std::string Before = Log();
        ownership_pointer<art_animated_bitmap> Animation;
        EXPECT_NO_THROW(Animation = LoadAnimatedImageFromString(ToZel(Whole.substr(0, Length)))) << Length;
        EXPECT_FALSE(Animation.IsSet()) << Length;
        std::string Added = Log().substr(Before.size());
        EXPECT_EQ(Added.rfind("Error loading image file. Byte-Size=" + std::to_string(Length) + " Error=", 0), 0u)
            << Length << ": " << Added;
    }
}

TEST_F(ArtImageAnimation, DamagedAnimationGivesNull)
{
    std::string Whole = ReadBytes(MakeAnimation(ThreeFrames(), 8, 6));
    // The second image descriptor made into an unknown block.
    size_t Second = Whole.find(',', Whole.find(',', 13) + 1);
    ASSERT_NE(Second, std::string::npos);
    std::string Broken = Whole;
    Broken[Second] = static_cast<char>(0x99);
    std::string Before = Log();
    ownership_pointer<art_animated_bitmap> Animation;
    EXPECT_NO_THROW(Animation = LoadAnimatedImageFromString(ToZel(Broken)));
    EXPECT_FALSE(Animation.IsSet());
    EXPECT_NE(Log().substr(Before.size()).find("Error loading image file. Byte-Size="), std::string::npos);

    // A canvas of 60000 by 60000 is refused before any frame is decoded.
    std::string Huge = Whole;
    Huge[6] = Huge[8] = static_cast<char>(0x60);
    Huge[7] = Huge[9] = static_cast<char>(0xEA);
    EXPECT_FALSE(LoadAnimatedImageFromString(ToZel(Huge)).IsSet());
    EXPECT_NE(Log().find("Error=The picture is too large to open: 60000 x 60000 pixels.\n"), std::string::npos);
}

TEST_F(ArtImageAnimation, AnimationAboveTheLimitOfAllFramesIsRefused)
{
    std::string Bytes = ReadBytes(MakeAnimation(ThreeFrames(), 8, 6));
    // Two frames of 8 by 6 fit in 100 pixels, the third does not.
    SetImageSizeLimits(ArtImageMaximumPixels, 100);
    ownership_pointer<art_animated_bitmap> Animation = LoadAnimatedImageFromString(ToZel(Bytes));
    SetImageSizeLimits(ArtImageMaximumPixels, ArtAnimationMaximumPixels);
    EXPECT_FALSE(Animation.IsSet());
    EXPECT_NE(Log().find("Error=The animation is too large to open: 3 frames of 8 x 6 pixels."), std::string::npos)
        << Log();
    SetImageSizeLimits(ArtImageMaximumPixels, 144);
    Animation = LoadAnimatedImageFromString(ToZel(Bytes));
    SetImageSizeLimits(ArtImageMaximumPixels, ArtAnimationMaximumPixels);
    ASSERT_TRUE(Animation.IsSet());
    EXPECT_EQ(Animation->GetNumberOfFrames(), 3);
}
