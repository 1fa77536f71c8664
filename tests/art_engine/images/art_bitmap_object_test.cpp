#include <gtest/gtest.h>

#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

#include <agg_trans_affine.h>

#include "art_engine/documents/art_file.h"
#include "art_engine/images/art_bitmap_manager.h"
#include "art_engine/images/art_bitmap_object.h"
#include "art_engine/images/art_image_codecs.h"
#include "art_engine/images/art_managed_bitmap.h"
#include "art_engine/objects/art_cache.h"
#include "art_engine/objects/art_object_factory.h"
#include "art_engine/pixels/art_bitmap.h"
#include "art_engine/shapes/art_stencil_shape.h"
#include "tests/art_engine/images/art_gif_test_support.h"
#include "tests/art_engine/objects/art_test_support.h"
#include "tests/test_support.h"
#include "xbd/xbd.h"
#include "zel_basics/debug.h"

using namespace art_test;

namespace {

typedef ownership_pointer<art_bitmap> bitmap_owner;

struct pixel
{
    uint8_t R, G, B, A;
};

const pixel Clear{0, 0, 0, 0};
const pixel Red{255, 0, 0, 255};
const pixel Blue{0, 0, 255, 255};
// Two opaque colours near enough to each other that the bilinear filter keeps each byte for byte where pixel
// centres land on pixel centres, and far enough apart that a shift of the picture shows.
const pixel Warm{200, 100, 50, 255};
const pixel Warmer{230, 130, 80, 255};

// Every pixel as "(r,g,b,a)", rows separated by "/", so that a difference shows where it is.
std::string Dump(art_bitmap &Bitmap)
{
    std::ostringstream Text;
    for (int Y = 0; Y < Bitmap.GetSize().Y; Y++) {
        if (Y > 0)
            Text << "/";
        for (int X = 0; X < Bitmap.GetSize().X; X++) {
            const agg::rgba8 &P = Bitmap.GetPixelRow(Y)[X];
            Text << "(" << int(P.r) << "," << int(P.g) << "," << int(P.b) << "," << int(P.a) << ")";
        }
    }
    return Text.str();
}

// The same form from a list of rows.
std::string Dump(const std::vector<std::vector<pixel>> &Rows)
{
    std::ostringstream Text;
    for (size_t Y = 0; Y < Rows.size(); Y++) {
        if (Y > 0)
            Text << "/";
        for (const pixel &P : Rows[Y])
            Text << "(" << int(P.R) << "," << int(P.G) << "," << int(P.B) << "," << int(P.A) << ")";
    }
    return Text.str();
}

std::string PixelAt(art_bitmap &Bitmap, int X, int Y)
{
    const agg::rgba8 &P = Bitmap.GetPixelRow(Y)[X];
    return Dump({{pixel{P.r, P.g, P.b, P.a}}});
}

bitmap_owner MakeBitmap(const std::vector<std::vector<pixel>> &Rows)
{
    int Height = static_cast<int>(Rows.size());
    int Width = static_cast<int>(Rows[0].size());
    bitmap_owner Bitmap(new art_bitmap(Width, Height));
    for (int Y = 0; Y < Height; Y++)
        for (int X = 0; X < Width; X++) {
            const pixel &P = Rows[Y][X];
            Bitmap->GetPixelRow(Y)[X] = agg::rgba8(P.R, P.G, P.B, P.A);
        }
    return Bitmap;
}

zel_string EncodePNG(const std::vector<std::vector<pixel>> &Rows)
{
    bitmap_owner Bitmap = MakeBitmap(Rows);
    zel_string Bytes;
    SaveImageToString(Bytes, Bitmap, ArtImageFormatPNG);
    return Bytes;
}

// A picture of four by three pixels.
const std::vector<std::vector<pixel>> FourByThree = {
    {{10, 20, 30, 255}, {200, 0, 50, 255}, {0, 255, 0, 255}, {0, 0, 0, 0}},
    {{255, 255, 255, 255}, {0, 0, 0, 255}, {17, 34, 51, 255}, {250, 128, 3, 255}},
    {{1, 2, 3, 255}, {64, 0, 32, 128}, {7, 8, 9, 255}, {60, 70, 80, 255}},
};

// A picture whose neighbouring bytes differ by less than 64, each pixel its own.
std::vector<std::vector<pixel>> MakeSmooth(int Width, int Height)
{
    std::vector<std::vector<pixel>> Rows(Height);
    for (int Y = 0; Y < Height; Y++)
        for (int X = 0; X < Width; X++)
            Rows[Y].push_back(pixel{uint8_t(40 + 7 * X + Y), uint8_t(200 - 5 * Y), uint8_t(90 + 3 * X * Y), 255});
    return Rows;
}

// The picture as it comes out blended over transparent black at full coverage: colour bytes as they are, and a
// translucent alpha a as 255 - ((255 * (255 - a)) >> 8), which the blending of a premultiplied span does not
// round back to a.
std::vector<std::vector<pixel>> OverTransparent(std::vector<std::vector<pixel>> Rows)
{
    for (std::vector<pixel> &Row : Rows)
        for (pixel &P : Row)
            if (P.A != 0 && P.A != 255)
                P.A = uint8_t(255 - ((255 * (255 - P.A)) >> 8));
    return Rows;
}


bitmap_owner MakeTarget(int Width, int Height)
{
    bitmap_owner Target(new art_bitmap(Width, Height));
    Target->Clear(agg::rgba8(0, 0, 0, 0));
    return Target;
}

void DrawInto(art_object &Object, bitmap_owner &Target, const agg::trans_affine &Matrix = agg::trans_affine())
{
    reference_pointer<bitmap_interface> Bitmap(Target.Get());
    Object.Draw(Bitmap, Bitmap, Matrix, reference_pointer<art_cache>());
}

// Handle (0, 0), so that the location is the top-left corner in the parent.
void PlaceAt(art_object &Object, point2d Location)
{
    Object.SetHandle(point2d(0, 0));
    Object.SetLocation(Location);
}

// A parent that answers a time that a test sets, as a document or the window does.
class timed_parent : public art_object
{
public:
    double GetCurrentTime() override { return Time; }
    double Time = 0;
};

ownership_pointer<xbd_tag> BitmapTag(xbd_file &File, std::vector<std::pair<const char *, const char *>> Values)
{
    return MakeTag(File, "art_bitmap", Values);
}

// The picture that a managed bitmap decodes to, in its own bytes.
std::string DecodedImage(const zel_string &Bytes)
{
    bitmap_owner Decoded = LoadImageFromString(Bytes);
    return Decoded.IsSet() ? Dump(*Decoded) : "(no picture)";
}

} // namespace

// Construction and drawing.

TEST(art_bitmap_object, IdentityDrawingReproducesTheImage)
{
    art_bitmap_manager Manager;
    std::vector<std::vector<pixel>> Smooth = MakeSmooth(7, 5);
    zel_string Bytes = EncodePNG(Smooth);
    ASSERT_EQ(DecodedImage(Bytes), Dump(Smooth));
    int32_t ID = Manager.AddBitmap(Bytes, "smooth.png")->GetBitmapID();
    art_bitmap_object Object(&Manager, ID);
    EXPECT_EQ(Object.GetSize(), point2d(7, 5));
    PlaceAt(Object, point2d(0, 0));

    bitmap_owner Target = MakeTarget(7, 5);
    DrawInto(Object, Target);
    EXPECT_EQ(Dump(*Target), Dump(Smooth));
}

TEST(art_bitmap_object, StencilledObjectShowsItsImageOnlyInsideTheStencil)
{
    art_bitmap_manager Manager;
    std::vector<std::vector<pixel>> Smooth = MakeSmooth(8, 6);
    int32_t ID = Manager.AddBitmap(EncodePNG(Smooth), "smooth.png")->GetBitmapID();
    art_bitmap_object Object(&Manager, ID);
    PlaceAt(Object, point2d(0, 0));
    // A "+stencil" rectangle over the left half of the frame, on whole pixels.
    ownership_pointer<art_object> Stencil(new art_stencil_shape);
    Stencil->SetHandle(point2d(0, 0));
    Stencil->SetSize(point2d(4, 6));
    Stencil->SetLocation(point2d(0, 0));
    Object.AddChild(Stencil);
    ASSERT_TRUE(Object.IsStencilled());

    bitmap_owner Target = MakeTarget(8, 6);
    DrawInto(Object, Target);
    std::vector<std::vector<pixel>> Want = Smooth;
    for (std::vector<pixel> &Row : Want)
        for (size_t X = 4; X < Row.size(); X++)
            Row[X] = Clear;
    EXPECT_EQ(Dump(*Target), Dump(Want));
}

TEST(art_bitmap_object, IdentityDrawingOfATranslucentImageKeepsItsColour)
{
    std::vector<std::vector<pixel>> Translucent(2, std::vector<pixel>(3, pixel{64, 0, 32, 128}));
    art_bitmap_manager Manager;
    zel_string Bytes = EncodePNG(Translucent);
    ASSERT_EQ(DecodedImage(Bytes), Dump(Translucent));
    int32_t ID = Manager.AddBitmap(Bytes, "glass.png")->GetBitmapID();
    art_bitmap_object Object(&Manager, ID);
    PlaceAt(Object, point2d(0, 0));

    bitmap_owner Target = MakeTarget(3, 2);
    DrawInto(Object, Target);
    EXPECT_EQ(Dump(*Target), Dump(OverTransparent(Translucent)));
    EXPECT_EQ(PixelAt(*Target, 2, 1), "(64,0,32,129)");
}

TEST(art_bitmap_object, ImageLandsOnWholePixelsWhereverTheObjectIs)
{
    art_bitmap_manager Manager;
    int32_t ID = Manager.AddBitmap(EncodePNG({{Warm, Warmer}}), "two.png")->GetBitmapID();
    art_bitmap_object Object(&Manager, ID);
    PlaceAt(Object, point2d(1, 1));

    bitmap_owner Target = MakeTarget(4, 3);
    DrawInto(Object, Target);
    EXPECT_EQ(Dump(*Target),
              Dump({{Clear, Clear, Clear, Clear}, {Clear, Warm, Warmer, Clear}, {Clear, Clear, Clear, Clear}}));
}

TEST(art_bitmap_object, LocationAndSizeAreFractionsOfTheObject)
{
    art_bitmap_manager Manager;
    int32_t ID = Manager.AddBitmap(EncodePNG({{Warm, Warmer}}), "two.png")->GetBitmapID();
    art_bitmap_object Object(&Manager, ID);
    PlaceAt(Object, point2d(0, 0));
    Object.SetSize(point2d(4, 2));
    // The image covers x from 0.25 * 4 = 1 to 1 + 0.5 * 4 = 3, and y from 0.5 * 2 = 1 to 2: one pixel of the
    // image on each of target pixels (1, 1) and (2, 1).
    Object.SetImageLocation(point2d(0.25, 0.5));
    Object.SetImageSize(point2d(0.5, 0.5));

    bitmap_owner Target = MakeTarget(4, 2);
    DrawInto(Object, Target);
    EXPECT_EQ(Dump(*Target), Dump({{Clear, Clear, Clear, Clear}, {Clear, Warm, Warmer, Clear}}));
}

TEST(art_bitmap_object, MissingImageIsARedBlock)
{
    xbd_file File;
    ownership_pointer<xbd_tag> Tag = BitmapTag(File, {{"bitmap_id", "7"}});
    art_bitmap_object Object(Tag.Get());
    // A manager that does not know the ID leaves the image missing, as a damaged document would.
    art_bitmap_manager Manager;
    Object.ReadBitmaps(&Manager);
    EXPECT_FALSE(Object.GetBitmap().IsSet());
    PlaceAt(Object, point2d(1, 1));
    Object.SetSize(point2d(3, 1));
    // Nothing in the image's rectangle counts: the block is the frame.
    Object.SetImageSize(point2d(0.5, 0.5));

    bitmap_owner Target = MakeTarget(5, 3);
    DrawInto(Object, Target);
    EXPECT_EQ(Dump(*Target), Dump({{Clear, Clear, Clear, Clear, Clear},
                                   {Clear, Red, Red, Red, Clear},
                                   {Clear, Clear, Clear, Clear, Clear}}));
}

TEST(art_bitmap_object, RedBlockFollowsTheMatrix)
{
    xbd_file File;
    ownership_pointer<xbd_tag> Tag = BitmapTag(File, {{"bitmap_id", "0"}});
    art_bitmap_object Object(Tag.Get());
    PlaceAt(Object, point2d(0, 0));
    Object.SetSize(point2d(1, 1));

    bitmap_owner Target = MakeTarget(3, 3);
    DrawInto(Object, Target, agg::trans_affine_scaling(2));
    EXPECT_EQ(Dump(*Target), Dump({{Red, Red, Clear}, {Red, Red, Clear}, {Clear, Clear, Clear}}));
}

TEST(art_bitmap_object, FoundImageReplacesTheRedBlock)
{
    art_bitmap_manager Manager;
    zel_string Bytes = EncodePNG({{Blue}});
    ASSERT_EQ(Manager.AddBitmap(Bytes, "blue.png")->GetBitmapID(), 0);
    xbd_file File;
    ownership_pointer<xbd_tag> Tag = BitmapTag(File, {{"bitmap_id", "0"}});
    art_bitmap_object Object(Tag.Get());
    PlaceAt(Object, point2d(0, 0));
    Object.SetSize(point2d(1, 1));
    bitmap_owner Before = MakeTarget(1, 1);
    DrawInto(Object, Before);
    EXPECT_EQ(Dump(*Before), Dump({{Red}}));

    Object.ReadBitmaps(&Manager);
    bitmap_owner After = MakeTarget(1, 1);
    DrawInto(Object, After);
    EXPECT_EQ(Dump(*After), Dump({{Blue}}));
}

TEST(art_bitmap_object, PrivateImageDraws)
{
    ownership_pointer<art_managed_bitmap> Image(new art_managed_bitmap(EncodePNG({{Warmer, Warm}}), "icon.png"));
    art_bitmap_object Object(Image);
    EXPECT_FALSE(Image.IsSet());
    EXPECT_TRUE(Object.HasPrivateImage());
    EXPECT_EQ(Object.GetBitmapID(), -1);
    EXPECT_EQ(Object.GetSize(), point2d(2, 1));
    PlaceAt(Object, point2d(0, 0));

    bitmap_owner Target = MakeTarget(2, 1);
    DrawInto(Object, Target);
    EXPECT_EQ(Dump(*Target), Dump({{Warmer, Warm}}));
}

TEST(art_bitmap_object, ChildrenDrawOverTheImage)
{
    art_bitmap_manager Manager;
    int32_t ID = Manager.AddBitmap(EncodePNG({{Blue, Blue}}), "blue.png")->GetBitmapID();
    art_bitmap_object Object(&Manager, ID);
    PlaceAt(Object, point2d(0, 0));
    // A child with no image of its own: the red block, over the image's right half.
    xbd_file File;
    ownership_pointer<xbd_tag> Tag = BitmapTag(File, {{"bitmap_id", "5"}});
    ownership_pointer<art_object> Child(new art_bitmap_object(Tag.Get()));
    PlaceAt(*Child, point2d(1, 0));
    Child->SetSize(point2d(1, 1));
    Object.AddChild(Child);

    bitmap_owner Target = MakeTarget(3, 1);
    DrawInto(Object, Target);
    EXPECT_EQ(Dump(*Target), Dump({{Blue, Red, Clear}}));
}

// Animation.

TEST(art_bitmap_object, AnimatedImageAtExactlyTheLoopTimeShowsFrameZero)
{
    art_bitmap_manager Manager;
    int32_t ID = Manager.AddBitmap(MakeTwoColourGIF(2, 2, {0, 1}, 10), "two.gif")->GetBitmapID();
    timed_parent Parent;
    reference_pointer<art_object> Child =
        Parent.AddChild(ownership_pointer<art_object>(new art_bitmap_object(&Manager, ID)));
    art_bitmap_object &Object = static_cast<art_bitmap_object &>(*Child);
    PlaceAt(Object, point2d(0, 0));
    ASSERT_EQ(Object.GetBitmap()->GetNumberOfFrames(), 2);
    double LoopTime = Object.GetBitmap()->GetLoopTime();
    EXPECT_DOUBLE_EQ(LoopTime, 0.2);

    Parent.Time = 0.1;
    bitmap_owner Second = MakeTarget(2, 2);
    DrawInto(Object, Second);
    EXPECT_EQ(Dump(*Second), Dump({{Blue, Blue}, {Blue, Blue}}));

    Parent.Time = LoopTime;
    bitmap_owner Looped = MakeTarget(2, 2);
    DrawInto(Object, Looped);
    EXPECT_EQ(Dump(*Looped), Dump({{Red, Red}, {Red, Red}}));

    Parent.Time = LoopTime + 0.1;
    bitmap_owner SecondAgain = MakeTarget(2, 2);
    DrawInto(Object, SecondAgain);
    EXPECT_EQ(Dump(*SecondAgain), Dump({{Blue, Blue}, {Blue, Blue}}));
}

TEST(art_bitmap_object, TimeTickRequestsARedrawOnlyWhenTheFrameChanges)
{
    art_bitmap_manager Manager;
    int32_t ID = Manager.AddBitmap(MakeTwoColourGIF(2, 2, {0, 1, 0}, 10), "three.gif")->GetBitmapID();
    timed_parent Parent;
    reference_pointer<art_object> Child =
        Parent.AddChild(ownership_pointer<art_object>(new art_bitmap_object(&Manager, ID)));
    art_bitmap_object &Object = static_cast<art_bitmap_object &>(*Child);
    ASSERT_DOUBLE_EQ(Object.GetBitmap()->GetLoopTime(), 0.3);

    int32_t Count = Object.GetRedrawCount();
    Parent.Time = 0.05;
    Object.TimeTick();
    EXPECT_EQ(Object.GetCurrentFrame(), 0);
    EXPECT_EQ(Object.GetRedrawCount(), Count);

    Parent.Time = 0.15;
    Object.TimeTick();
    EXPECT_EQ(Object.GetCurrentFrame(), 1);
    EXPECT_GT(Object.GetRedrawCount(), Count);

    Count = Object.GetRedrawCount();
    Parent.Time = 0.19;
    Object.TimeTick();
    EXPECT_EQ(Object.GetCurrentFrame(), 1);
    EXPECT_EQ(Object.GetRedrawCount(), Count);

    Parent.Time = Object.GetBitmap()->GetLoopTime();
    Object.TimeTick();
    EXPECT_EQ(Object.GetCurrentFrame(), 0);
    EXPECT_GT(Object.GetRedrawCount(), Count);
}

TEST(art_bitmap_object, AnimationTimesComeFromTheImage)
{
    art_bitmap_manager Manager;
    int32_t ID = Manager.AddBitmap(MakeTwoColourGIF(2, 2, {0, 1}, 10), "two.gif")->GetBitmapID();
    art_bitmap_object Object(&Manager, ID);
    EXPECT_TRUE(Object.IsAnimated());
    EXPECT_DOUBLE_EQ(Object.GetAnimationLength(), 0.2);
    EXPECT_DOUBLE_EQ(Object.GetNextFrameTime(0.0), 0.1);
    EXPECT_DOUBLE_EQ(Object.GetNextFrameTime(0.05), 0.1);
    // After the last frame comes the next loop's first.
    EXPECT_DOUBLE_EQ(Object.GetNextFrameTime(0.1), 0.2);
    EXPECT_DOUBLE_EQ(Object.GetNextFrameTime(0.25), 0.3);
}

TEST(art_bitmap_object, StillImageIsNotAnimated)
{
    art_bitmap_manager Manager;
    int32_t ID = Manager.AddBitmap(EncodePNG({{Red}}), "red.png")->GetBitmapID();
    art_bitmap_object Object(&Manager, ID);
    EXPECT_FALSE(Object.IsAnimated());
    EXPECT_EQ(Object.GetAnimationLength(), 0.0);
    EXPECT_EQ(Object.GetNextFrameTime(0.5), -1.0);
    int32_t Count = Object.GetRedrawCount();
    Object.TimeTick();
    EXPECT_EQ(Object.GetRedrawCount(), Count);
}

// Frame changes.

TEST(art_bitmap_object, SetFrameKeepsTheImageInPlace)
{
    art_bitmap_manager Manager;
    int32_t ID =
        Manager.AddBitmap(EncodePNG({{Red, Blue, Red, Blue}, {Blue, Red, Blue, Red}}), "four.png")->GetBitmapID();
    art_object Root;
    PlaceAt(Root, point2d(0, 0));
    reference_pointer<art_object> Child =
        Root.AddChild(ownership_pointer<art_object>(new art_bitmap_object(&Manager, ID)));
    art_bitmap_object &Object = static_cast<art_bitmap_object &>(*Child);
    PlaceAt(Object, point2d(2, 1));
    Object.SetSize(point2d(8, 4));
    bitmap_owner Before = MakeTarget(12, 6);
    DrawInto(Root, Before);

    // The frame's corner moves to object point (2, 1) and the frame halves: the image, 8 by 4 in the old units,
    // now starts at (-2, -1) of the new frame and is twice its size.
    Object.SetFrame(point2d(2, 1), point2d(4, 2));
    EXPECT_EQ(Object.GetImageLocation(), point2d(-0.5, -0.5));
    EXPECT_EQ(Object.GetImageSize(), point2d(2, 2));
    EXPECT_EQ(Object.GetSize(), point2d(4, 2));
    EXPECT_EQ(Object.GetLocation(), point2d(4, 2));

    bitmap_owner After = MakeTarget(12, 6);
    DrawInto(Root, After);
    EXPECT_EQ(Dump(*After), Dump(*Before));
    EXPECT_EQ(PixelAt(*After, 2, 1), Dump({{Red}}));
    EXPECT_EQ(PixelAt(*After, 9, 4), Dump({{Red}}));
    EXPECT_EQ(PixelAt(*After, 2, 4), Dump({{Blue}}));
    EXPECT_EQ(PixelAt(*After, 0, 0), Dump({{Clear}}));
}

TEST(art_bitmap_object, SetFrameWithTheHandleInTheMiddle)
{
    art_bitmap_manager Manager;
    int32_t ID = Manager.AddBitmap(EncodePNG({{Red, Blue}, {Blue, Red}}), "check.png")->GetBitmapID();
    art_object Root;
    PlaceAt(Root, point2d(0, 0));
    reference_pointer<art_object> Child =
        Root.AddChild(ownership_pointer<art_object>(new art_bitmap_object(&Manager, ID)));
    art_bitmap_object &Object = static_cast<art_bitmap_object &>(*Child);
    Object.SetSize(point2d(4, 4));
    Object.SetLocation(point2d(4, 4));
    bitmap_owner Before = MakeTarget(8, 8);
    DrawInto(Root, Before);

    Object.SetFrame(point2d(-2, 1), point2d(8, 2));
    EXPECT_EQ(Object.GetImageLocation(), point2d(0.25, -0.5));
    EXPECT_EQ(Object.GetImageSize(), point2d(0.5, 2));
    bitmap_owner After = MakeTarget(8, 8);
    DrawInto(Root, After);
    EXPECT_EQ(Dump(*After), Dump(*Before));
    // The image, enlarged twice, covers (2, 2) to (6, 6); its corner pixels come out pure.
    EXPECT_EQ(PixelAt(*After, 2, 2), Dump({{Red}}));
    EXPECT_EQ(PixelAt(*After, 5, 2), Dump({{Blue}}));
    EXPECT_EQ(PixelAt(*After, 5, 5), Dump({{Red}}));
    EXPECT_EQ(PixelAt(*After, 1, 1), Dump({{Clear}}));
    EXPECT_EQ(PixelAt(*After, 6, 6), Dump({{Clear}}));
}

// Attributes.

TEST(art_bitmap_object, AttributesAreReadAndWrittenBackExactly)
{
    xbd_file File;
    ownership_pointer<xbd_tag> Tag =
        BitmapTag(File, {{"name", "Photo"}, {"bitmap_id", "3"}, {"location", "(-0.25,0.5)"}, {"size", "(1.5,2)"}});
    art_bitmap_object Object(Tag.Get());
    EXPECT_EQ(Object.GetBitmapID(), 3);
    EXPECT_EQ(Object.GetImageLocation(), point2d(-0.25, 0.5));
    EXPECT_EQ(Object.GetImageSize(), point2d(1.5, 2));
    EXPECT_EQ(ToStd(Object.GetName()), "Photo");
    EXPECT_EQ("<art_bitmap name=\"Photo\" bitmap_id=\"3\" "
              "location=\"(-0.25,0.5)\" size=\"(1.5,2)\"></art_bitmap>",
              Written(Object));
}

TEST(art_bitmap_object, DefaultRectangleIsNotWritten)
{
    xbd_file File;
    ownership_pointer<xbd_tag> Tag = BitmapTag(File, {{"bitmap_id", "12"}, {"location", "(0,0)"}, {"size", "(1,1)"}});
    art_bitmap_object Object(Tag.Get());
    EXPECT_EQ(Object.GetImageLocation(), point2d(0, 0));
    EXPECT_EQ(Object.GetImageSize(), point2d(1, 1));
    EXPECT_EQ("<art_bitmap bitmap_id=\"12\"></art_bitmap>", Written(Object));
}

TEST(art_bitmap_object, OneAxisOffItsDefaultWritesThePoint)
{
    xbd_file File;
    ownership_pointer<xbd_tag> Tag = BitmapTag(File, {{"bitmap_id", "0"}, {"size", "(1,0.333333)"}});
    art_bitmap_object Object(Tag.Get());
    EXPECT_EQ(Object.GetImageSize(), point2d(1, 0.333333));
    EXPECT_EQ("<art_bitmap bitmap_id=\"0\" size=\"(1,0.333333)\"></art_bitmap>", Written(Object));
}

TEST(art_bitmap_object, MissingBitmapIDIsAnAssertion)
{
    xbd_file File;
    ownership_pointer<xbd_tag> Tag = BitmapTag(File, {{"size", "(1,2)"}});
    EXPECT_NE(std::string::npos, ZEL_ERROR_MESSAGE((art_bitmap_object(Tag.Get()))).find("'BitmapID>=0' is false"));
}

TEST(art_bitmap_object, FactoryMakesTheTag)
{
    xbd_file File;
    ownership_pointer<xbd_tag> Tag = BitmapTag(File, {{"bitmap_id", "4"}, {"location", "(0.5,0)"}});
    ownership_pointer<art_object> Object = art_object_factory::GetFactory()->Make(Tag.Get());
    EXPECT_EQ(ToStd(Object->GetTagName()), "art_bitmap");
    EXPECT_EQ(ToStd(Object->GetDebugName()), "Bitmap Image");
    EXPECT_FALSE(Object->CanResizeContent());
    EXPECT_EQ("<art_bitmap bitmap_id=\"4\" location=\"(0.5,0)\"></art_bitmap>", Written(*Object));
}

// Private images and saving.

TEST(art_bitmap_object, PrivateImageIsNotSavedAndSavingItIsAnAssertion)
{
    art_bitmap_manager Manager;
    zel_string SharedBytes = EncodePNG({{Red}});
    int32_t ID = Manager.AddBitmap(SharedBytes, "red.png")->GetBitmapID();
    art_object Root;
    Root.AddChild(ownership_pointer<art_object>(new art_bitmap_object(&Manager, ID)));
    zel_string PrivateBytes = EncodePNG({{Blue, Blue}});
    reference_pointer<art_object> Icon = Root.AddChild(ownership_pointer<art_object>(new art_bitmap_object(
        ownership_pointer<art_managed_bitmap>(new art_managed_bitmap(PrivateBytes, "icon.png")))));

    // The bitmaps that a save writes are those that the tree notes as in use: the shared image only.
    Manager.ClearUsage();
    Root.UpdateBitmaps();
    xbd_file File;
    ownership_pointer<xbd_tag> Bitmaps = File.GetRootTag()->NewTag("bitmaps");
    Manager.SaveToTag(Bitmaps.Get());
    ASSERT_EQ(Bitmaps->GetChildren().GetNumberOfElements(), 1);
    reference_pointer<xbd_tag> Saved(Bitmaps->GetChildren()[0].Get());
    EXPECT_EQ(ToStd(Saved->GetAttribute("bitmap_id", "")), "0");
    EXPECT_EQ(ToStd(Saved->GetAttribute("pixel_data", "")), ToStd(SharedBytes));
    EXPECT_EQ(Manager.GetNumberOfBitmaps(), 1);

    EXPECT_NE(std::string::npos, ZEL_ERROR_MESSAGE(Written(*Icon)).find("'!PegBitmapImageO.IsSet()' is false"));
    EXPECT_NE(std::string::npos, ZEL_ERROR_MESSAGE(Written(Root)).find("'!PegBitmapImageO.IsSet()' is false"));
}

TEST(art_bitmap_object, ObjectWithNeitherImageNorIDIsAnAssertion)
{
    art_bitmap_manager Manager;
    EXPECT_NE(std::string::npos, ZEL_ERROR_MESSAGE((art_bitmap_object(ownership_pointer<art_managed_bitmap>())))
                                     .find("'PegBitmapImageO.IsSet() || BitmapID>=0' is false"));
    EXPECT_NE(
        std::string::npos,
        ZEL_ERROR_MESSAGE((art_bitmap_object(&Manager, -1))).find("'PegBitmapImageO.IsSet() || BitmapID>=0' is false"));
    EXPECT_NE(std::string::npos, ZEL_ERROR_MESSAGE((art_bitmap_object(reference_pointer<art_bitmap_manager>(), 0)))
                                     .find("'PegBitmapManagerO.IsSet()' is false"));
}

TEST(art_bitmap_object, WritingBitmapsIntoATableMakesAPrivateImageSaveable)
{
    zel_string Bytes = EncodePNG({{Blue}});
    art_bitmap_object Object(ownership_pointer<art_managed_bitmap>(new art_managed_bitmap(Bytes, "icon.png")));
    art_bitmap_manager Manager;
    Manager.AddBitmap(EncodePNG({{Red}}), "red.png");
    Object.WriteBitmaps(&Manager);
    EXPECT_FALSE(Object.HasPrivateImage());
    EXPECT_EQ(Object.GetBitmapID(), 1);
    EXPECT_EQ(Object.GetBitmap().Get(), Manager.GetBitmap(1).Get());
    EXPECT_EQ(ToStd(Manager.GetBitmap(1)->GetOriginalFileBytes()), ToStd(Bytes));
    // The layout keeps the size that the image gave the object.
    EXPECT_EQ("<art_bitmap w_val=\"1\" h_val=\"1\" bitmap_id=\"1\"></art_bitmap>", Written(Object));
}

TEST(art_bitmap_object, WritingBitmapsIntoAnotherDocumentTakesTheIDThere)
{
    zel_string Bytes = EncodePNG({{Blue}});
    art_bitmap_manager First;
    int32_t ID = First.AddBitmap(Bytes, "blue.png")->GetBitmapID();
    art_bitmap_object Object(&First, ID);
    art_bitmap_manager Second;
    Second.AddBitmap(EncodePNG({{Red}}), "red.png");
    Second.AddBitmap(EncodePNG({{Warm, Warmer}}), "two.png");
    Object.WriteBitmaps(&Second);
    EXPECT_EQ(Object.GetBitmapID(), 2);
    EXPECT_EQ(Object.GetBitmap().Get(), Second.GetBitmap(2).Get());
    EXPECT_EQ(Second.GetNumberOfBitmaps(), 3);
}

TEST(art_bitmap_object, CopyOfADocumentObjectSharesTheImage)
{
    art_bitmap_manager Manager;
    int32_t ID = Manager.AddBitmap(EncodePNG({{Warm, Warmer}}), "two.png")->GetBitmapID();
    art_bitmap_object Object(&Manager, ID);
    Object.SetImageLocation(point2d(0.5, 0.25));
    Object.SetImageSize(point2d(2, 3));
    ownership_pointer<art_object> Copy = Object.Duplicate();
    art_bitmap_object &Twin = static_cast<art_bitmap_object &>(*Copy);
    EXPECT_EQ(Twin.GetBitmap().Get(), Object.GetBitmap().Get());
    EXPECT_EQ(Twin.GetBitmapID(), ID);
    EXPECT_EQ(Twin.GetImageLocation(), point2d(0.5, 0.25));
    EXPECT_EQ(Twin.GetImageSize(), point2d(2, 3));
    EXPECT_EQ(Written(Twin), Written(Object));
}

TEST(art_bitmap_object, CopyOfAPrivateImageHasItsOwn)
{
    zel_string Bytes = EncodePNG({{Warmer, Warm}});
    art_bitmap_object Object(ownership_pointer<art_managed_bitmap>(new art_managed_bitmap(Bytes, "icon.png")));
    PlaceAt(Object, point2d(0, 0));
    ownership_pointer<art_object> Copy = Object.Duplicate();
    art_bitmap_object &Twin = static_cast<art_bitmap_object &>(*Copy);
    EXPECT_TRUE(Twin.HasPrivateImage());
    ASSERT_TRUE(Twin.GetBitmap().IsSet());
    EXPECT_NE(Twin.GetBitmap().Get(), Object.GetBitmap().Get());
    EXPECT_EQ(ToStd(Twin.GetBitmap()->GetOriginalFileBytes()), ToStd(Bytes));

    bitmap_owner Target = MakeTarget(2, 1);
    DrawInto(Twin, Target);
    EXPECT_EQ(Dump(*Target), Dump({{Warmer, Warm}}));
}

// Usage noted before a save.

TEST(art_bitmap_object, UnstencilledObjectUsesTheWholeImage)
{
    art_bitmap_manager Manager;
    int32_t ID = Manager.AddBitmap(EncodePNG({{Red, Blue, Red, Blue}}), "four.png")->GetBitmapID();
    art_bitmap_object Object(&Manager, ID);
    Object.SetSize(point2d(2, 3));
    Object.SetImageLocation(point2d(0.5, 0));
    Object.SetImageSize(point2d(2, 1));
    Manager.ClearUsage();
    Object.UpdateBitmaps();
    reference_pointer<art_managed_bitmap> Bitmap = Object.GetBitmap();
    EXPECT_TRUE(Bitmap->IsUsed());
    EXPECT_EQ(Bitmap->GetUsedRegion(), rectangle(point2d(0, 0), point2d(4, 1)));
    EXPECT_EQ(Bitmap->GetUsedAtScale(), point2d(4, 3));
}

TEST(art_bitmap_object, StencilledObjectUsesThePartInItsFrame)
{
    art_bitmap_manager Manager;
    int32_t ID =
        Manager.AddBitmap(EncodePNG({{Red, Blue, Red, Blue, Red, Blue, Red, Blue}}), "eight.png")->GetBitmapID();
    art_bitmap_object Object(&Manager, ID);
    ownership_pointer<art_object> Stencil(new art_object);
    Stencil->SetStackMode(StackModePlusStencil);
    Object.AddChild(Stencil);
    ASSERT_TRUE(Object.IsStencilled());
    // The image spans x from -0.5 to 1.5 of the frame: the frame shows image x from 0.25 to 0.75, pixels 2 to 6
    // of 8. On y the image reaches past the frame on both sides.
    Object.SetSize(point2d(10, 1));
    Object.SetImageLocation(point2d(-0.5, -1));
    Object.SetImageSize(point2d(2, 4));
    Manager.ClearUsage();
    Object.UpdateBitmaps();
    reference_pointer<art_managed_bitmap> Bitmap = Object.GetBitmap();
    EXPECT_EQ(Bitmap->GetUsedRegion(), rectangle(point2d(2, 0.25), point2d(4, 0.25)));
    EXPECT_EQ(Bitmap->GetUsedAtScale(), point2d(20, 4));
}

TEST(art_bitmap_object, ChildrenNoteTheirUsageToo)
{
    art_bitmap_manager Manager;
    int32_t First = Manager.AddBitmap(EncodePNG({{Red}}), "red.png")->GetBitmapID();
    int32_t Second = Manager.AddBitmap(EncodePNG({{Blue}}), "blue.png")->GetBitmapID();
    art_bitmap_object Object(&Manager, First);
    Object.AddChild(ownership_pointer<art_object>(new art_bitmap_object(&Manager, Second)));
    Manager.ClearUsage();
    Object.UpdateBitmaps();
    EXPECT_TRUE(Manager.GetBitmap(First)->IsUsed());
    EXPECT_TRUE(Manager.GetBitmap(Second)->IsUsed());
}

// The frame and the parent.

TEST(art_bitmap_object, NaturalSizeAndAspectComeFromTheImage)
{
    art_bitmap_manager Manager;
    int32_t ID = Manager.AddBitmap(EncodePNG(FourByThree), "four.png")->GetBitmapID();
    art_bitmap_object Object(&Manager, ID);
    EXPECT_EQ(Object.GetNaturalAspectRatio(), 4.0 / 3.0);
    EXPECT_EQ(Object.GetNaturalSize(), point2d(4, 3));
    Object.SetImageSize(point2d(0.5, 2));
    EXPECT_EQ(Object.GetNaturalSize(), point2d(2, 6));
    EXPECT_EQ(Object.GetNaturalAspectRatio(), 4.0 / 3.0);

    xbd_file File;
    ownership_pointer<xbd_tag> Tag = BitmapTag(File, {{"bitmap_id", "9"}});
    art_bitmap_object Missing(Tag.Get());
    EXPECT_EQ(Missing.GetNaturalAspectRatio(), 1.0);
    EXPECT_EQ(Missing.GetNaturalSize(), point2d(0, 0));
}

TEST(art_bitmap_object, LeavingADropInAreaClearsDroppedIn)
{
    art_object DropIn;
    DropIn.SetDropInEnabled(true);
    art_object Plain;
    xbd_file File;
    ownership_pointer<xbd_tag> Tag = BitmapTag(File, {{"bitmap_id", "0"}});
    ownership_pointer<art_object> Object(new art_bitmap_object(Tag.Get()));
    Object->SetDroppedIn(true);
    reference_pointer<art_object> InDropIn = DropIn.AddChild(Object);
    EXPECT_TRUE(InDropIn->GetDroppedIn());

    ownership_pointer<art_object> Moved = DropIn.RemoveChild(InDropIn);
    reference_pointer<art_object> InPlain = Plain.AddChild(Moved);
    EXPECT_FALSE(InPlain->GetDroppedIn());
}

// Whole documents.

TEST(art_bitmap_object, DocumentSavesAndLoadsItsImageObject)
{
    zel_string Bytes = EncodePNG({{Red, Blue}, {Blue, Red}});
    art_file Document;
    Document.SetSize(point2d(20, 20));
    int32_t ID = Document.GetBitmapManager()->AddBitmap(Bytes, "check.png")->GetBitmapID();
    reference_pointer<art_object> Added =
        Document.AddChild(ownership_pointer<art_object>(new art_bitmap_object(Document.GetBitmapManager(), ID)));
    static_cast<art_bitmap_object &>(*Added).SetImageLocation(point2d(0.5, 0));
    ownership_pointer<xbd_file> Saved = Document.CreateXBDFile();

    reference_pointer<xbd_tag> FileTag(Saved->GetRootTag()->GetChildren()[0].Get());
    reference_pointer<xbd_tag> Children = FileTag->GetChildTag("children");
    ASSERT_TRUE(Children.IsSet());
    reference_pointer<xbd_tag> ImageTag = Children->GetChildTag("art_bitmap");
    ASSERT_TRUE(ImageTag.IsSet());
    EXPECT_EQ(Attributes(ImageTag), "w_val=\"2\" h_val=\"2\" bitmap_id=\"0\" location=\"(0.5,0)\"");
    reference_pointer<xbd_tag> Bitmaps = FileTag->GetChildTag("bitmaps");
    ASSERT_TRUE(Bitmaps.IsSet());
    ASSERT_EQ(Bitmaps->GetChildren().GetNumberOfElements(), 1);
    // Shown whole and at its own size, the image keeps its file.
    EXPECT_EQ(ToStd(Bitmaps->GetChildren()[0]->GetAttribute("pixel_data", "")), ToStd(Bytes));

    ownership_pointer<art_file> Loaded = art_file::CreateArtFile(FileTag, reference_pointer<art_bitmap_manager>());
    art_bitmap_object *Object = nullptr;
    for (int I = 0; I < Loaded->GetNumberOfChildren(); I++)
        if (ToStd(Loaded->GetChildrenObject()->GetChild(I)->GetTagName()) == "art_bitmap")
            Object = static_cast<art_bitmap_object *>(Loaded->GetChildrenObject()->GetChild(I));
    ASSERT_NE(Object, nullptr);
    ASSERT_TRUE(Object->GetBitmap().IsSet());
    EXPECT_EQ(Object->GetBitmap().Get(), Loaded->GetBitmapManager()->GetBitmap(0).Get());
    EXPECT_EQ(Object->GetImageLocation(), point2d(0.5, 0));
    EXPECT_EQ(Object->GetSize(), point2d(2, 2));
}

TEST(art_bitmap_object, DocumentWithAPrivateImageCannotBeSaved)
{
    art_file Document;
    Document.AddChild(ownership_pointer<art_object>(new art_bitmap_object(
        ownership_pointer<art_managed_bitmap>(new art_managed_bitmap(EncodePNG({{Red}}), "icon.png")))));
    EXPECT_NE(std::string::npos,
              ZEL_ERROR_MESSAGE(Document.CreateXBDFile()).find("'!PegBitmapImageO.IsSet()' is false"));
    // Its image is in no manager, so the document's own has nothing to write.
    EXPECT_EQ(Document.GetBitmapManager()->GetNumberOfBitmaps(), 0);
}

TEST(art_bitmap_object, ADamagedImageIsSavedAsItCame)
{
    // A PNG cut off after its header decodes to nothing; the document still keeps its bytes.
    zel_string Whole = EncodePNG(MakeSmooth(6, 4));
    zel_string Damaged = Whole.Left(40);
    art_file Document;
    Document.SetSize(point2d(20, 20));
    int32_t ID = Document.GetBitmapManager()->AddBitmap(Damaged, "damaged.png")->GetBitmapID();
    Document.AddChild(ownership_pointer<art_object>(new art_bitmap_object(Document.GetBitmapManager(), ID)));
    ownership_pointer<xbd_file> Saved = Document.CreateXBDFile();
    reference_pointer<xbd_tag> FileTag(Saved->GetRootTag()->GetChildren()[0].Get());
    reference_pointer<xbd_tag> Bitmaps = FileTag->GetChildTag("bitmaps");
    ASSERT_TRUE(Bitmaps.IsSet());
    ASSERT_EQ(Bitmaps->GetChildren().GetNumberOfElements(), 1);
    EXPECT_EQ(ToStd(Bitmaps->GetChildren()[0]->GetAttribute("pixel_data", "")), ToStd(Damaged));
}

TEST(art_bitmap_object, SizeAndSavingNeedNoPixelsKept)
{
    // The size comes from the file's header; a save decodes what it re-encodes and lets it go again.
    art_file Document;
    Document.SetSize(point2d(40, 30));
    int32_t ID = Document.GetBitmapManager()->AddBitmap(EncodePNG(MakeSmooth(80, 60)), "big.png")->GetBitmapID();
    reference_pointer<art_object> Added =
        Document.AddChild(ownership_pointer<art_object>(new art_bitmap_object(Document.GetBitmapManager(), ID)));
    reference_pointer<art_managed_bitmap> Bitmap = Document.GetBitmapManager()->GetBitmap(ID);
    int_point2d Size;
    ASSERT_TRUE(Bitmap->ReadBitmapSize(Size));
    EXPECT_EQ(int_point2d(80, 60), Size);
    EXPECT_DOUBLE_EQ(80.0 / 60.0, Added->GetNaturalAspectRatio());
    EXPECT_FALSE(Bitmap->IsDecoded());
    // Shown at half size, the picture is made again smaller, and its pixels do not stay.
    Added->SetSize(point2d(40, 30));
    ownership_pointer<xbd_file> Saved = Document.CreateXBDFile();
    EXPECT_FALSE(Bitmap->IsDecoded());
    // Drawn after all, it decodes again.
    EXPECT_TRUE(Bitmap->HasFrames());
    EXPECT_TRUE(Bitmap->IsDecoded());
}
