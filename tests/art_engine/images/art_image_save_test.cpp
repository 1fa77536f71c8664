#include <gtest/gtest.h>

#include <string>

#include "art_engine/images/art_image_codecs.h"
#include "tests/art_engine/images/art_image_codecs_test_support.h"
#include "tests/test_support.h"

using namespace art_image_test;

namespace {

class ArtImageSave : public image_magick_test
{
};

// A premultiplied bitmap of Pixels, given straight.
ownership_pointer<art_bitmap> BitmapOf(const rgba_bytes &Straight, int Width, int Height)
{
    rgba_bytes Stored = Premultiplied(Straight);
    ownership_pointer<art_bitmap> Bitmap(new art_bitmap(Width, Height));
    for (int Y = 0; Y < Height; Y++)
        std::copy(Stored.begin() + std::ptrdiff_t(size_t(Y) * size_t(Width) * 4),
                  Stored.begin() + std::ptrdiff_t(size_t(Y + 1) * size_t(Width) * 4),
                  reinterpret_cast<uint8_t *>(Bitmap->GetPixelRow(Y)));
    return Bitmap;
}

// Straight alpha again: each colour byte times 255 over alpha, rounded down and capped at 255, and
// all four bytes 0 where alpha is 0.
rgba_bytes Unpremultiplied(rgba_bytes Bytes)
{
    for (size_t I = 0; I + 3 < Bytes.size(); I += 4) {
        unsigned A = Bytes[I + 3];
        for (size_t C = 0; C < 3; C++) {
            if (A == 0)
                Bytes[I + C] = 0;
            else if (A < 255)
                Bytes[I + C] = static_cast<uint8_t>(std::min(255u, Bytes[I + C] * 255u / A));
        }
    }
    return Bytes;
}

rgba_bytes WithoutAlpha(rgba_bytes Bytes)
{
    for (size_t I = 3; I < Bytes.size(); I += 4)
        Bytes[I] = 255;
    return Bytes;
}

// Noise compresses badly in both formats, so it makes files of a predictable largeness.
rgba_bytes Noise(int Width, int Height)
{
    rgba_bytes Bytes;
    uint32_t State = 12345;
    for (int I = 0; I < Width * Height; I++) {
        for (int C = 0; C < 3; C++) {
            State = State * 1103515245u + 12345u;
            Bytes.push_back(static_cast<uint8_t>(State >> 16));
        }
        Bytes.push_back(255);
    }
    return Bytes;
}

} // namespace

TEST_F(ArtImageSave, PngWeWriteReadsBackInImageMagickWithTheSamePixels)
{
    ownership_pointer<art_bitmap> Bitmap = BitmapOf(Translucent(33, 21), 33, 21);
    zel_string Png;
    SaveImageToString(Png, Bitmap, ArtImageFormatPNG);
    std::string Path = Folder.File("ours.png");
    WriteBytes(Path, ToStd(Png));
    EXPECT_EQ(Identify("-format \"%m %w %h\" " + Path), "PNG 33 21");
    EXPECT_TRUE(SameBytes(DecodeWithImageMagick(Path), Unpremultiplied(PixelsOf(*Bitmap)), 0, 33));
}

TEST_F(ArtImageSave, OpaquePngWeWriteIsOpaqueInImageMagick)
{
    ownership_pointer<art_bitmap> Bitmap = BitmapOf(Opaque(20, 10), 20, 10);
    zel_string Png;
    SaveImageToString(Png, Bitmap, ArtImageFormatPNG);
    std::string Path = Folder.File("opaque.png");
    WriteBytes(Path, ToStd(Png));
    EXPECT_TRUE(SameBytes(DecodeWithImageMagick(Path), Opaque(20, 10), 0, 20));
    ownership_pointer<art_bitmap> Back = LoadImageFromString(Png);
    ASSERT_TRUE(Back.IsSet());
    EXPECT_TRUE(SameBytes(PixelsOf(*Back), PixelsOf(*Bitmap), 0, 20));
}

TEST_F(ArtImageSave, JpegWeWriteDropsAlphaAndKeepsStraightColour)
{
    // Smooth colour, so that JPEG's ringing at hard edges stays out of the comparison; the alpha edge
    // must leave no trace.
    rgba_bytes Straight = MakePicture(48, 32, [](int X, int) { return X < 24 ? 255 : 128; });
    for (size_t I = 2; I < Straight.size(); I += 4)
        Straight[I] = 100;
    ownership_pointer<art_bitmap> Bitmap = BitmapOf(Straight, 48, 32);
    zel_string Jpeg;
    SaveImageToString(Jpeg, Bitmap, ArtImageFormatJPEG, 95);
    std::string Path = Folder.File("ours.jpg");
    WriteBytes(Path, ToStd(Jpeg));
    EXPECT_EQ(Identify("-format \"%m %w %h %[channels] %Q\" " + Path), "JPEG 48 32 srgb 95");
    // Lossy: a few steps of difference from the straight colour, which premultiplying and back kept
    // within one step.
    EXPECT_TRUE(SameBytes(DecodeWithImageMagick(Path), WithoutAlpha(Straight), 8, 48));
}

TEST_F(ArtImageSave, JpegQualityBelowZeroMeansSeventyFive)
{
    ownership_pointer<art_bitmap> Bitmap = BitmapOf(Opaque(40, 30), 40, 30);
    zel_string Default, SeventyFive, Ninety;
    SaveImageToString(Default, Bitmap, ArtImageFormatJPEG);
    SaveImageToString(SeventyFive, Bitmap, ArtImageFormatJPEG, 75);
    SaveImageToString(Ninety, Bitmap, ArtImageFormatJPEG, 90);
    EXPECT_TRUE(Default == SeventyFive);
    EXPECT_FALSE(Default == Ninety);
    std::string Path = Folder.File("default.jpg");
    WriteBytes(Path, ToStd(Default));
    EXPECT_EQ(Identify("-format %Q " + Path), "75");
}

TEST_F(ArtImageSave, UnderSizeKeepsAPngThatFits)
{
    ownership_pointer<art_bitmap> Bitmap = BitmapOf(Translucent(30, 20), 30, 20);
    zel_string Png, Target;
    SaveImageToString(Png, Bitmap, ArtImageFormatPNG);
    EXPECT_TRUE(SaveImageUnderSize(Target, Bitmap, Png.GetLength(), false));
    EXPECT_TRUE(Target == Png);
}

TEST_F(ArtImageSave, UnderSizeFindsAJpegThatFits)
{
    ownership_pointer<art_bitmap> Bitmap = BitmapOf(Noise(64, 64), 64, 64);
    zel_string Png, Low, High, Target;
    SaveImageToString(Png, Bitmap, ArtImageFormatPNG);
    SaveImageToString(Low, Bitmap, ArtImageFormatJPEG, 20);
    SaveImageToString(High, Bitmap, ArtImageFormatJPEG, 90);
    int Limit = (Low.GetLength() + High.GetLength()) / 2;
    ASSERT_GT(Png.GetLength(), Limit);
    EXPECT_FALSE(SaveImageUnderSize(Target, Bitmap, Limit, false));
    EXPECT_LE(Target.GetLength(), Limit);
    std::string Path = Folder.File("fits.jpg");
    WriteBytes(Path, ToStd(Target));
    std::string Quality = Identify("-format %Q " + Path);
    EXPECT_GT(std::stoi(Quality), 20);
    EXPECT_LT(std::stoi(Quality), 90);
    // The quality found is the highest that fits: one step up no longer does.
    zel_string OneUp;
    SaveImageToString(OneUp, Bitmap, ArtImageFormatJPEG, std::stoi(Quality) + 1);
    EXPECT_GT(OneUp.GetLength(), Limit);
    EXPECT_NE(Log().find("SaveImageUnderSize() JPEG Tries=7 Quality=" + Quality), std::string::npos) << Log();
}

TEST_F(ArtImageSave, ForcedJpegSkipsAPngThatWouldFit)
{
    ownership_pointer<art_bitmap> Bitmap = BitmapOf(Opaque(20, 20), 20, 20);
    zel_string Target;
    EXPECT_FALSE(SaveImageUnderSize(Target, Bitmap, 1 << 20, true));
    zel_string Best;
    SaveImageToString(Best, Bitmap, ArtImageFormatJPEG, 100);
    EXPECT_TRUE(Target == Best);
}

TEST_F(ArtImageSave, ImageOverTheLimitAtEveryQualityReturnsTheSmallestAttempt)
{
    ownership_pointer<art_bitmap> Bitmap = BitmapOf(Noise(40, 40), 40, 40);
    zel_string Target;
    EXPECT_FALSE(SaveImageUnderSize(Target, Bitmap, 100, false));
    // Every try is too large, so the search halves down 50, 25, 12, 6, 3, 1.
    int Smallest = 1 << 30;
    for (int Quality : {50, 25, 12, 6, 3, 1}) {
        zel_string Attempt;
        SaveImageToString(Attempt, Bitmap, ArtImageFormatJPEG, Quality);
        EXPECT_GT(Attempt.GetLength(), 100);
        Smallest = std::min(Smallest, Attempt.GetLength());
    }
    zel_string QualityOne;
    SaveImageToString(QualityOne, Bitmap, ArtImageFormatJPEG, 1);
    EXPECT_TRUE(Target == QualityOne);
    EXPECT_EQ(Target.GetLength(), Smallest);
    EXPECT_NE(Log().find("SaveImageUnderSize() JPEG Tries=6 Quality=1 Bytes=" + std::to_string(Smallest) + " Limit=100\n"),
              std::string::npos)
        << Log();
}

TEST_F(ArtImageSave, ExtensionOfEachFormat)
{
    EXPECT_EQ(ToStd(GetImageExtension(ArtImageFormatJPEG)), "jpg");
    EXPECT_EQ(ToStd(GetImageExtension(ArtImageFormatPNG)), "png");
    EXPECT_EQ(ToStd(GetImageExtension(ArtImageFormatGIF)), "gif");
    EXPECT_NE(ZEL_ERROR_MESSAGE(GetImageExtension(2)).find("'false' is false"), std::string::npos);
    EXPECT_NE(ZEL_ERROR_MESSAGE(GetImageExtension(-1)).find("'false' is false"), std::string::npos);
}

TEST_F(ArtImageSave, FileGetsTheExtensionWhenAsked)
{
    ownership_pointer<art_bitmap> Bitmap = BitmapOf(Translucent(9, 7), 9, 7);
    zel_string Png, Jpeg;
    SaveImageToString(Png, Bitmap, ArtImageFormatPNG);
    SaveImageToString(Jpeg, Bitmap, ArtImageFormatJPEG);
    SaveImageToFile(Bitmap, Folder.File("picture").c_str(), true, ArtImageFormatPNG);
    EXPECT_EQ(ReadBytes(Folder.File("picture.png")), ToStd(Png));
    SaveImageToFile(Bitmap, Folder.File("as-named").c_str(), false, ArtImageFormatJPEG);
    EXPECT_EQ(ReadBytes(Folder.File("as-named")), ToStd(Jpeg));
    EXPECT_FALSE(std::filesystem::exists(Folder.File("as-named.jpg")));
    EXPECT_NE(ZEL_ERROR_MESSAGE(SaveImageToFile(Bitmap, Folder.File("missing/folder/x").c_str(), true,
                                                ArtImageFormatPNG))
                  .find("stdio_write_file_stream::CreateFile() detected an error."),
              std::string::npos);
}

TEST_F(ArtImageSave, GifCannotBeSavedYet)
{
    ownership_pointer<art_bitmap> Bitmap = BitmapOf(Opaque(4, 4), 4, 4);
    zel_string Target("untouched");
    EXPECT_EQ(ZEL_ERROR_MESSAGE(SaveImageToString(Target, Bitmap, ArtImageFormatGIF)),
              "Saving as GIF is not available yet: this build has no GIF writer.");
    EXPECT_EQ(ToStd(Target), "untouched");
}

TEST_F(ArtImageSave, UnknownFormatCodeIsAnAssertion)
{
    ownership_pointer<art_bitmap> Bitmap = BitmapOf(Opaque(4, 4), 4, 4);
    zel_string Target;
    EXPECT_NE(ZEL_ERROR_MESSAGE(SaveImageToString(Target, Bitmap, 3)).find("'false' is false"), std::string::npos);
}

TEST_F(ArtImageSave, EmptyBitmapCannotBeSaved)
{
    ownership_pointer<art_bitmap> Empty(new art_bitmap());
    zel_string Target;
    for (int Format : {ArtImageFormatPNG, ArtImageFormatJPEG})
        EXPECT_EQ(ZEL_ERROR_MESSAGE(SaveImageToString(Target, Empty, Format)),
                  "Error saving image file Resolution: 0x0\n\tFreeImage Error: ");
}
