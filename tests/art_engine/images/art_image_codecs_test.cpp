#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>

#include "art_engine/images/art_image_codecs.h"
#include "tests/art_engine/images/art_image_codecs_test_support.h"
#include "tests/test_support.h"
#include "zel_basics/debug.h"

using namespace art_image_test;

namespace {

class ArtImageCodecs : public image_magick_test
{
};

uint32_t CRC32(const std::string &Bytes)
{
    uint32_t CRC = 0xFFFFFFFFu;
    for (unsigned char Byte : Bytes) {
        CRC ^= Byte;
        for (int Bit = 0; Bit < 8; Bit++)
            CRC = (CRC >> 1) ^ (0xEDB88320u & (0u - (CRC & 1u)));
    }
    return ~CRC;
}

void PutBigEndian(std::string &Bytes, size_t At, uint32_t Value)
{
    for (int I = 0; I < 4; I++)
        Bytes[At + size_t(I)] = static_cast<char>(Value >> (24 - 8 * I));
}

} // namespace

TEST_F(ArtImageCodecs, JpegOf24BitsLoadsOpaqueAndMatchesImageMagick)
{
    std::string Path = MakeFile(Opaque(64, 48), 64, 48, "-alpha off -quality 92", "photo.jpg");
    EXPECT_EQ(Identify("-format \"%m %[channels] %z\" " + Path), "JPEG srgb 8");
    ownership_pointer<art_bitmap> Bitmap = Load(Path);
    ASSERT_TRUE(Bitmap.IsSet());
    EXPECT_EQ(Bitmap->GetSize(), int_point2d(64, 48));
    EXPECT_FALSE(Bitmap->HasTransparency());
    rgba_bytes Ours = PixelsOf(*Bitmap);
    for (size_t I = 3; I < Ours.size(); I += 4)
        ASSERT_EQ(Ours[I], 255) << "pixel " << I / 4;
    // Two JPEG decoders may round the inverse transform differently, by a few steps at most.
    EXPECT_TRUE(SameBytes(Ours, DecodeWithImageMagick(Path), 4, 64));
}

TEST_F(ArtImageCodecs, GreyPngOf8BitsGoesThroughConversion)
{
    rgba_bytes Grey = MakePicture(32, 8, [](int, int) { return 255; });
    for (size_t I = 0; I < Grey.size(); I += 4)
        Grey[I] = Grey[I + 1] = Grey[I + 2] = static_cast<uint8_t>((I / 4) % 32 * 8 + (I / 4) / 32);
    std::string Path = MakeFile(Grey, 32, 8, "-colorspace Gray -define png:color-type=0", "grey.png");
    ASSERT_EQ(PNGKind(Path), "0 8");
    ownership_pointer<art_bitmap> Bitmap = Load(Path);
    ASSERT_TRUE(Bitmap.IsSet());
    EXPECT_EQ(Bitmap->GetSize(), int_point2d(32, 8));
    EXPECT_TRUE(SameBytes(PixelsOf(*Bitmap), Grey, 0, 32));
    EXPECT_TRUE(SameBytes(PixelsOf(*Bitmap), DecodeWithImageMagick(Path), 0, 32));
}

TEST_F(ArtImageCodecs, GreyPngOf4BitsGoesThroughConversion)
{
    rgba_bytes Grey = MakePicture(16, 4, [](int, int) { return 255; });
    for (size_t I = 0; I < Grey.size(); I += 4)
        Grey[I] = Grey[I + 1] = Grey[I + 2] = static_cast<uint8_t>((I / 4) % 16 * 17);
    std::string Path = MakeFile(Grey, 16, 4, "-colorspace Gray", "grey4.png");
    ASSERT_EQ(PNGKind(Path), "0 4");
    ownership_pointer<art_bitmap> Bitmap = Load(Path);
    ASSERT_TRUE(Bitmap.IsSet());
    EXPECT_TRUE(SameBytes(PixelsOf(*Bitmap), Grey, 0, 16));
}

TEST_F(ArtImageCodecs, PalettePngWithTransparencyGoesThroughConversion)
{
    std::string Written = MakeFile(Translucent(40, 30), 40, 30, "", "palette.png", "PNG8:");
    ASSERT_EQ(PNGKind(Written), "3 8");
    ownership_pointer<art_bitmap> Bitmap = Load(Written);
    ASSERT_TRUE(Bitmap.IsSet());
    EXPECT_EQ(Bitmap->GetSize(), int_point2d(40, 30));
    EXPECT_TRUE(Bitmap->HasTransparency());
    EXPECT_TRUE(SameBytes(PixelsOf(*Bitmap), Premultiplied(DecodeWithImageMagick(Written)), 0, 40));
}

TEST_F(ArtImageCodecs, RgbaPngLoadsPremultiplied)
{
    rgba_bytes Pixels = Translucent(37, 23);
    std::string Path = MakeFile(Pixels, 37, 23, "", "rgba.png", "PNG32:");
    ASSERT_EQ(PNGKind(Path), "6 8");
    ownership_pointer<art_bitmap> Bitmap = Load(Path);
    ASSERT_TRUE(Bitmap.IsSet());
    EXPECT_EQ(Bitmap->GetSize(), int_point2d(37, 23));
    EXPECT_TRUE(SameBytes(PixelsOf(*Bitmap), Premultiplied(DecodeWithImageMagick(Path)), 0, 37));
    // And against the pixels as they went in, premultiplied by hand.
    EXPECT_TRUE(SameBytes(PixelsOf(*Bitmap), Premultiplied(Pixels), 0, 37));
}

TEST_F(ArtImageCodecs, OnePageGifIsNotAnimatedAndLoadsAsSingleImage)
{
    rgba_bytes Pixels = MakePicture(6, 5, [](int X, int Y) { return X == Y ? 0 : 255; });
    for (size_t I = 0; I < Pixels.size(); I += 4)
        Pixels[I + 2] = Pixels[I] = static_cast<uint8_t>(Pixels[I] & 0xC0);
    std::string Path = MakeFile(Pixels, 6, 5, "", "still.gif");
    std::string Bytes = ReadBytes(Path);
    EXPECT_EQ(Identify("-format \"%m %n\" " + Path), "GIF 1");
    EXPECT_FALSE(IsAnimatedImage(ToZel(Bytes)));
    ownership_pointer<art_bitmap> Bitmap = LoadImageFromString(ToZel(Bytes));
    ASSERT_TRUE(Bitmap.IsSet());
    EXPECT_EQ(Bitmap->GetSize(), int_point2d(6, 5));
    EXPECT_TRUE(SameBytes(PixelsOf(*Bitmap), Premultiplied(DecodeWithImageMagick(Path)), 0, 6));
}

TEST_F(ArtImageCodecs, UnknownBytesGiveNullWithoutException)
{
    ExpectNullWithLogLine("", "empty");
    ExpectNullWithLogLine("hello", "text");
    ExpectNullWithLogLine(std::string("\0\1\2\3\4\5\6\7\x80\xFF", 10), "binary");
    EXPECT_NE(Log().find("Error loading image file. Byte-Size=5 Error=The bytes are not an image file of any known format.\n"),
              std::string::npos);
}

TEST_F(ArtImageCodecs, DamagedPngGivesNull)
{
    std::string Whole = ReadBytes(MakeFile(Translucent(30, 20), 30, 20, "", "whole.png", "PNG32:"));
    size_t Data = Whole.find("IDAT");
    ASSERT_NE(Data, std::string::npos);

    std::string FlippedData = Whole;
    FlippedData[Data + 10] = static_cast<char>(FlippedData[Data + 10] ^ 0x5A);
    ExpectNullWithLogLine(FlippedData, "a data byte flipped");

    std::string BadHeader = Whole;
    BadHeader[16] = static_cast<char>(0x7F);
    ExpectNullWithLogLine(BadHeader, "header altered, its check sum not");

    std::string LongChunk = Whole;
    PutBigEndian(LongChunk, Data - 4, 0x7FFFFFF0u);
    ExpectNullWithLogLine(LongChunk, "data chunk claiming two gigabytes");

    std::string Garbled = Whole;
    for (size_t I = Data + 4; I < Garbled.size() - 12; I++)
        Garbled[I] = static_cast<char>(I * 131);
    ExpectNullWithLogLine(Garbled, "data replaced by a pattern");
}

TEST_F(ArtImageCodecs, TruncatedPngGivesNull)
{
    std::string Whole = ReadBytes(MakeFile(Translucent(30, 20), 30, 20, "", "whole.png", "PNG32:"));
    for (size_t Length : {size_t(8), size_t(20), size_t(33), Whole.size() / 2, Whole.size() - 13, Whole.size() - 1})
        ExpectNullWithLogLine(Whole.substr(0, Length), "cut to " + std::to_string(Length) + " bytes");
}

TEST_F(ArtImageCodecs, TruncatedJpegGivesNull)
{
    std::string Path = MakeFile(Opaque(64, 48), 64, 48, "-alpha off -quality 90", "photo.jpg");
    std::string Whole = ReadBytes(Path);
    for (size_t Length : {size_t(3), size_t(100), Whole.size() / 2, Whole.size() - 2})
        ExpectNullWithLogLine(Whole.substr(0, Length), "cut to " + std::to_string(Length) + " bytes");
    EXPECT_NE(Log().find("Error=The file ends before its picture does. FreeImage Error:  (Format=JPEG)"),
              std::string::npos);
}

TEST_F(ArtImageCodecs, DamagedJpegGivesNull)
{
    std::string Path = MakeFile(Opaque(64, 48), 64, 48, "-alpha off -quality 90", "photo.jpg");
    std::string Whole = ReadBytes(Path);
    size_t Frame = Whole.find("\xFF\xC0");
    ASSERT_NE(Frame, std::string::npos);

    std::string NoWidth = Whole;
    NoWidth[Frame + 7] = NoWidth[Frame + 8] = 0;
    ExpectNullWithLogLine(NoWidth, "frame of width 0");

    std::string BadPrecision = Whole;
    BadPrecision[Frame + 4] = 3;
    ExpectNullWithLogLine(BadPrecision, "3 bits a sample");

    size_t Scan = Whole.find("\xFF\xDA");
    ASSERT_NE(Scan, std::string::npos);
    std::string NoScan = Whole;
    NoScan[Scan + 1] = static_cast<char>(0xEE);
    ExpectNullWithLogLine(NoScan, "scan marker removed");
}

TEST_F(ArtImageCodecs, TruncatedAndDamagedGifGiveNull)
{
    std::string Path = MakeFile(Translucent(12, 9), 12, 9, "", "still.gif");
    std::string Whole = ReadBytes(Path);
    for (size_t Length : {size_t(6), size_t(13), size_t(30), Whole.size() / 2, Whole.size() - 1})
        ExpectNullWithLogLine(Whole.substr(0, Length), "cut to " + std::to_string(Length) + " bytes");
    std::string NoDescriptor = Whole;
    size_t Descriptor = Whole.find(',', 13);
    ASSERT_NE(Descriptor, std::string::npos);
    NoDescriptor[Descriptor] = '!';
    ExpectNullWithLogLine(NoDescriptor, "image descriptor turned into an extension");
}

TEST_F(ArtImageCodecs, HeaderOfAHugePictureIsRefusedBeforeDecoding)
{
    std::string Huge = ReadBytes(MakeFile(Opaque(16, 16), 16, 16, "", "small.png", "PNG32:"));
    PutBigEndian(Huge, 16, 20000);
    PutBigEndian(Huge, 20, 20000);
    PutBigEndian(Huge, 29, CRC32(Huge.substr(12, 17)));
    ExpectNullWithLogLine(Huge, "PNG of 20000 by 20000");
    EXPECT_NE(Log().find("Error=The picture is too large to open: 20000 x 20000 pixels.\n"), std::string::npos) << Log();

    std::string Gif = ReadBytes(MakeFile(Opaque(4, 4), 4, 4, "", "small.gif"));
    Gif[6] = Gif[8] = static_cast<char>(0x60);
    Gif[7] = Gif[9] = static_cast<char>(0xEA);
    ExpectNullWithLogLine(Gif, "GIF of 60000 by 60000");
    EXPECT_NE(Log().find("Error=The picture is too large to open: 60000 x 60000 pixels.\n"), std::string::npos) << Log();
}

TEST_F(ArtImageCodecs, MessageHookKeepsTheFormatAndTheMessage)
{
    std::string Gif = ReadBytes(MakeFile(Opaque(4, 4), 4, 4, "", "small.gif"));
    EXPECT_FALSE(LoadImageFromString(ToZel(Gif.substr(0, 10))).IsSet());
    EXPECT_EQ(ToStd(GetImageLibraryMessage()), " (Format=GIF)EOF reading Logical Screen Descriptor");
    EXPECT_NE(Log().find("Error loading image file. Byte-Size=10 Error= (Format=GIF)EOF reading Logical Screen "
                         "Descriptor\n"),
              std::string::npos);
    SetImageLibraryMessageHook();
    EXPECT_EQ(ToStd(GetImageLibraryMessage()), "");
    EXPECT_TRUE(LoadImageFromString(ToZel(Gif)).IsSet());
    EXPECT_EQ(ToStd(GetImageLibraryMessage()), "");
}

TEST_F(ArtImageCodecs, PictureLimitCountsPixels)
{
    std::string Fits = ReadBytes(MakeFile(Opaque(10, 10), 10, 10, "", "fits.png", "PNG32:"));
    std::string Over = ReadBytes(MakeFile(Opaque(11, 10), 11, 10, "", "over.png", "PNG32:"));
    SetImageSizeLimits(100, ArtAnimationMaximumPixels);
    ownership_pointer<art_bitmap> Accepted = LoadImageFromString(ToZel(Fits));
    ownership_pointer<art_bitmap> Refused = LoadImageFromString(ToZel(Over));
    SetImageSizeLimits(ArtImageMaximumPixels, ArtAnimationMaximumPixels);
    EXPECT_TRUE(Accepted.IsSet());
    EXPECT_FALSE(Refused.IsSet());
    EXPECT_NE(Log().find("Error=The picture is too large to open: 11 x 10 pixels.\n"), std::string::npos) << Log();
    EXPECT_EQ(GetImageMaximumPixels(), ArtImageMaximumPixels);
}

namespace {

// The mean of channel C over the Side by Side block at (X, Y) of Bitmap, clipped at its edges.
double BlockMean(art_bitmap &Bitmap, int X, int Y, int Side, int C)
{
    int Sum = 0;
    int Count = 0;
    for (int J = Y * Side; J < std::min((Y + 1) * Side, Bitmap.GetSize().Y); J++)
        for (int I = X * Side; I < std::min((X + 1) * Side, Bitmap.GetSize().X); I++, Count++)
            Sum += reinterpret_cast<const uint8_t *>(&Bitmap.GetPixelRow(J)[I])[C];
    return double(Sum) / Count;
}

} // namespace

TEST_F(ArtImageCodecs, JpegDecodesAtTheSmallestReductionThatKeepsTheLongSide)
{
    rgba_bytes Smooth;
    for (int Y = 0; Y < 601; Y++)
        for (int X = 0; X < 803; X++)
            for (int Byte : {X * 255 / 802, Y * 255 / 600, (X + Y) * 255 / 1402, 255})
                Smooth.push_back(static_cast<uint8_t>(Byte));
    zel_string Bytes = ToZel(ReadBytes(MakeFile(Smooth, 803, 601, "-alpha off -quality 95", "smooth.jpg")));
    // A reduction is taken when the longer side divided by 2, 4 or 8 is at least the size asked for;
    // its picture's sides are then rounded up: 803 / 8 = 100.4 gives 101, 601 / 4 = 150.25 gives 151.
    struct reduction
    {
        int Asked;
        int_point2d Size;
    };
    const reduction Reductions[] = {{0, {803, 601}},   {1, {101, 76}},    {100, {101, 76}},  {101, {201, 151}},
                                    {200, {201, 151}}, {201, {402, 301}}, {401, {402, 301}}, {402, {803, 601}},
                                    {803, {803, 601}}, {70000, {803, 601}}};
    for (const reduction &Reduction : Reductions) {
        ownership_pointer<art_bitmap> Bitmap = LoadImageFromString(Bytes, Reduction.Asked);
        ASSERT_TRUE(Bitmap.IsSet()) << Reduction.Asked;
        EXPECT_EQ(Bitmap->GetSize(), Reduction.Size) << Reduction.Asked;
        EXPECT_FALSE(Bitmap->HasTransparency());
    }
    // Every pixel of the eighth shows its 8 by 8 block of the whole picture.
    ownership_pointer<art_bitmap> Whole = LoadImageFromString(Bytes);
    ownership_pointer<art_bitmap> Eighth = LoadImageFromString(Bytes, 100);
    ASSERT_EQ(Eighth->GetSize(), int_point2d(101, 76));
    double Worst = 0;
    for (int Y = 0; Y < 75; Y++)
        for (int X = 0; X < 100; X++)
            for (int C = 0; C < 3; C++)
                Worst = std::max(Worst, std::fabs(BlockMean(*Whole, X, Y, 8, C) -
                                                  reinterpret_cast<const uint8_t *>(&Eighth->GetPixelRow(Y)[X])[C]));
    EXPECT_LE(Worst, 4.0);
}

TEST_F(ArtImageCodecs, ReductionLeavesOtherFormatsWhole)
{
    for (const char *Name : {"picture.png", "picture.gif"}) {
        std::string Path = MakeFile(Opaque(300, 200), 300, 200, "", Name);
        ownership_pointer<art_bitmap> Bitmap = LoadImageFromString(ToZel(ReadBytes(Path)), 20);
        ASSERT_TRUE(Bitmap.IsSet()) << Name;
        EXPECT_EQ(Bitmap->GetSize(), int_point2d(300, 200)) << Name;
    }
}

TEST_F(ArtImageCodecs, ReducedJpegCutShortStillGivesNull)
{
    std::string Whole = ReadBytes(MakeFile(Opaque(640, 480), 640, 480, "-alpha off -quality 90", "photo.jpg"));
    ownership_pointer<art_bitmap> Bitmap;
    EXPECT_NO_THROW(Bitmap = LoadImageFromString(ToZel(Whole.substr(0, Whole.size() / 2)), 80));
    EXPECT_FALSE(Bitmap.IsSet());
}
