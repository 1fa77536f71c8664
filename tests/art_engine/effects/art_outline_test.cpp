#include <gtest/gtest.h>

#include <string>

#include "art_engine/effects/art_outline.h"
#include "art_engine/objects/art_object_factory.h"
#include "art_engine/shapes/art_custom_shape.h"
#include "art_engine/shapes/art_rectangle_shape.h"
#include "art_engine/shapes/art_stencil_shape.h"
#include "tests/art_engine/objects/art_render_test_support.h"
#include "tests/art_engine/objects/art_test_support.h"
#include "tests/art_engine/shapes/art_shape_test_support.h"
#include "tests/test_support.h"

using namespace art_render_test;
using art_shape_test::parsed;
using art_test::Dump;
using art_test::Written;

namespace {

// An owner whose path is a fixed one, which writes down the detail it was asked for.
class path_owner : public art_object
{
public:
    explicit path_owner(const art_path &Fixed) : Fixed(Fixed) {}

    void GetShapePath(art_path &Path, double ScaleX, double ScaleY) override
    {
        AskedX = ScaleX;
        AskedY = ScaleY;
        Asked++;
        Path.concat_path(Fixed);
    }

    art_path Fixed;
    double AskedX = 0;
    double AskedY = 0;
    int Asked = 0;
};

// A closed figure with a quadratic curve in it, so that the flattening detail shows in the pixels.
art_path CurvedFigure()
{
    art_path Path;
    Path.move_to(2, 2);
    Path.line_to(12, 2);
    Path.curve3(16, 8, 10, 10);
    Path.line_to(2, 10);
    Path.close_polygon();
    return Path;
}

art_path OpenLine(double X0, double Y0, double X1, double Y1)
{
    art_path Path;
    Path.move_to(X0, Y0);
    Path.line_to(X1, Y1);
    return Path;
}

reference_pointer<art_outline> AddOutline(art_object &Owner)
{
    return Owner.AddChild(ownership_pointer<art_object>(new art_outline)).DynamicCast<art_outline>();
}

// What the bitmap's own stroke operation paints into a fresh transparent bitmap.
template <class Stroke> ownership_pointer<art_bitmap> Expected(int Width, int Height, Stroke Paint)
{
    ownership_pointer<art_bitmap> Bitmap(new art_bitmap(Width, Height));
    Bitmap->Clear(Transparent);
    Paint(*Bitmap);
    return Bitmap;
}

int CountPainted(art_bitmap &Bitmap)
{
    int Count = 0;
    for (int Y = 0; Y < Bitmap.GetSize().Y; Y++)
        for (int X = 0; X < Bitmap.GetSize().X; X++)
            Count += Bitmap.GetPixelRow(Y)[X].a != 0;
    return Count;
}

agg::rgba8 At(art_bitmap &Bitmap, int X, int Y)
{
    return Bitmap.GetPixelRow(Y)[X];
}

// A group at the origin whose shape is Shape, adding to its stencil.
ownership_pointer<art_object> ShapedGroup(art_shape *Shape, double W, double H)
{
    ownership_pointer<art_object> Group(new art_object);
    Place(*Group, point2d(0, 0), point2d(W, H));
    Group->AddChild(ownership_pointer<art_object>(art_shape_test::MakeStencil(Shape, W, H)));
    return Group;
}

bool SameRectangle(const rectangle &A, const rectangle &B)
{
    return A.Location == B.Location && A.Size == B.Size;
}

std::string RectangleText(const rectangle &R)
{
    return "(" + std::to_string(R.Location.X) + ", " + std::to_string(R.Location.Y) + ", " +
           std::to_string(R.Size.X) + ", " + std::to_string(R.Size.Y) + ")";
}

bool IsIdentity(const agg::trans_affine &M)
{
    return M.sx == 1 && M.shy == 0 && M.shx == 0 && M.sy == 1 && M.tx == 0 && M.ty == 0;
}

ownership_pointer<art_object> Load(parsed &Parsed)
{
    return art_object_factory::GetFactory()->Make(Parsed.Tag());
}

// The attributes of the outline tag in a document's text form, loaded and written again.
std::string RoundTrip(const char *Text)
{
    parsed Parsed(Text);
    ownership_pointer<art_object> Object = Load(Parsed);
    return Written(*Object);
}

} // namespace

TEST(ArtOutline, ZeroWidthWithAColourDrawsNothingVisible)
{
    path_owner Owner(CurvedFigure());
    reference_pointer<art_outline> Outline = AddOutline(Owner);
    Outline->SetColor(agg::rgba(1, 0, 0, 1));
    Outline->SetWidth(0);
    ownership_pointer<art_bitmap> Bitmap = DrawAlone(*Outline, 20, 14);
    EXPECT_EQ(1, Owner.Asked);
    EXPECT_TRUE(PixelsAre(*Bitmap, [](int, int) { return Transparent; }));
}

TEST(ArtOutline, SquareCapsCarryAnOpenPathHalfTheWidthPastEachEnd)
{
    path_owner Owner(OpenLine(2, 5, 8, 5));
    reference_pointer<art_outline> Outline = AddOutline(Owner);
    Outline->SetWidth(2);
    ASSERT_EQ(ArtCapSquare, Outline->GetCapType());
    ownership_pointer<art_bitmap> Bitmap = DrawAlone(*Outline, 12, 10);
    // From x 2 - 1 to 8 + 1, and y 5 - 1 to 5 + 1: whole pixels, all opaque black.
    EXPECT_TRUE(PixelsAre(*Bitmap, [](int X, int Y) { return Inside(X, Y, 1, 4, 9, 6) ? Black : Transparent; }));
}

TEST(ArtOutline, ButtCapsStopAtTheEndPoints)
{
    path_owner Owner(OpenLine(2, 5, 8, 5));
    reference_pointer<art_outline> Outline = AddOutline(Owner);
    Outline->SetWidth(2);
    Outline->SetCapType(ArtCapButt);
    ownership_pointer<art_bitmap> Bitmap = DrawAlone(*Outline, 12, 10);
    EXPECT_TRUE(PixelsAre(*Bitmap, [](int X, int Y) { return Inside(X, Y, 2, 4, 8, 6) ? Black : Transparent; }));
}

TEST(ArtOutline, DashLengthOfOneHalfIsNotWrittenAndTheLoadDefaultRestoresIt)
{
    art_outline Outline;
    Outline.SetDashCycle(4);
    Outline.SetDashLength(0.5);
    EXPECT_EQ("<art_outline dash_cycle=\"4\"></art_outline>", Written(Outline));

    parsed Parsed("<art_outline dash_len=\"0.5\" dash_cycle=\"4\"/>");
    ownership_pointer<art_object> Loaded = Load(Parsed);
    reference_pointer<art_outline> Read = reference_pointer<art_object>(Loaded.Get()).DynamicCast<art_outline>();
    ASSERT_TRUE(Read.IsSet());
    EXPECT_EQ(0.5, Read->GetDashLength());
    EXPECT_EQ("<art_outline dash_cycle=\"4\"></art_outline>", Written(*Read));

    parsed Bare("<art_outline dash_cycle=\"4\"/>");
    ownership_pointer<art_object> Again = Load(Bare);
    EXPECT_EQ(0.5, reference_pointer<art_object>(Again.Get()).DynamicCast<art_outline>()->GetDashLength());
}

TEST(ArtOutline, InNormalModeTheBoundsDoNotGrowSoTheLineIsClippedToTheLayer)
{
    ownership_pointer<art_object> Group = ShapedGroup(new art_rectangle_shape, 20, 10);
    reference_pointer<art_outline> Outline = AddOutline(*Group);
    Outline->SetWidth(4);
    ASSERT_EQ(StackModeNormal, Outline->GetStackMode());
    rectangle Rect(point2d(1, 2), point2d(3, 4));
    Outline->ExpandRedrawRect(Rect, agg::trans_affine_scaling(2));
    EXPECT_TRUE(SameRectangle(rectangle(point2d(1, 2), point2d(3, 4)), Rect)) << RectangleText(Rect);
    rectangle Bounds = Group->GetDrawBounds(agg::trans_affine());
    EXPECT_TRUE(SameRectangle(rectangle(point2d(0, 0), point2d(20, 10)), Bounds)) << RectangleText(Bounds);

    // Drawn through the group, the outer half of the line is cut away by the stencil: only the
    // inner half, two units wide, shows.
    ownership_pointer<art_bitmap> Bitmap = DrawAlone(*Group, 26, 16, agg::trans_affine_translation(3, 3));
    EXPECT_TRUE(PixelsAre(*Bitmap, [](int X, int Y) {
        return Inside(X, Y, 3, 3, 23, 13) && !Inside(X, Y, 5, 5, 21, 11) ? Black : Transparent;
    }));
}

TEST(ArtOutline, APlusStencilOutlineIgnoresItsColourAndPaintsWhite)
{
    path_owner Owner(CurvedFigure());
    reference_pointer<art_outline> Outline = AddOutline(Owner);
    Outline->SetColor(agg::rgba(1, 0, 0, 0.5));
    Outline->SetWidth(3);
    Outline->SetStackMode(StackModePlusStencil);
    ownership_pointer<art_bitmap> Bitmap = DrawAlone(*Outline, 24, 16);
    art_path Path = CurvedFigure();
    ownership_pointer<art_bitmap> Want = Expected(24, 16, [&](art_bitmap &B) {
        B.StrokePath(Path, White, 3, agg::trans_affine(), OutlineCentred, ArtJoinMiter, ArtCapSquare, 16.0, 1.0);
    });
    EXPECT_TRUE(SameBitmaps(*Want, *Bitmap));
    EXPECT_GT(CountPainted(*Bitmap), 0);
    // The top edge, y 0.5 to 3.5, covers row 1 to 2 fully.
    EXPECT_EQ(PixelText(White), PixelText(At(*Bitmap, 6, 1)));
    EXPECT_EQ(PixelText(White), PixelText(At(*Bitmap, 6, 2)));
}

TEST(ArtOutline, AMinusStencilOutlinePaintsBlack)
{
    path_owner Owner(CurvedFigure());
    reference_pointer<art_outline> Outline = AddOutline(Owner);
    Outline->SetColor(agg::rgba(1, 1, 1, 1));
    Outline->SetWidth(3);
    Outline->SetStackMode(StackModeMinusStencil);
    ownership_pointer<art_bitmap> Bitmap = DrawAlone(*Outline, 24, 16);
    EXPECT_EQ(PixelText(Black), PixelText(At(*Bitmap, 6, 1)));
    EXPECT_EQ(PixelText(Black), PixelText(At(*Bitmap, 6, 2)));
    EXPECT_EQ(PixelText(Transparent), PixelText(At(*Bitmap, 6, 6)));
}

TEST(ArtOutline, WithANonUniformObjectScaleTheLineIsThickerAlongTheStretchedAxis)
{
    ownership_pointer<art_object> Group(new art_object);
    Place(*Group, point2d(5, 5), point2d(10, 10));
    Group->SetScale(point2d(3, 1));
    reference_pointer<art_outline> Outline = AddOutline(*Group);
    Outline->SetWidth(2);
    ownership_pointer<art_bitmap> Bitmap = DrawAlone(*Group, 40, 20);
    // The left side, x -1 to 1 in the object, is x 2 to 8 on the bitmap: six pixels across.
    for (int X = 0; X < 10; X++)
        EXPECT_EQ(PixelText(X >= 2 && X < 8 ? Black : Transparent), PixelText(At(*Bitmap, X, 10))) << X;
    // The top side, y -1 to 1, is y 4 to 6: two pixels across.
    for (int Y = 0; Y < 10; Y++)
        EXPECT_EQ(PixelText(Y >= 4 && Y < 6 ? Black : Transparent), PixelText(At(*Bitmap, 20, Y))) << Y;
}

TEST(ArtOutline, TheSolidLineIsTheCentredStrokeOfTheOwnersPathAtTheLargerAxisOfTheMatrix)
{
    path_owner Owner(CurvedFigure());
    reference_pointer<art_outline> Outline = AddOutline(Owner);
    Outline->SetColor(agg::rgba(0.2, 0.4, 0.6, 0.8));
    Outline->SetWidth(1.5);
    agg::trans_affine Matrix = agg::trans_affine_scaling(2, 1.5);
    Matrix *= agg::trans_affine_rotation(0.3);
    Matrix *= agg::trans_affine_translation(20, 4);
    ownership_pointer<art_bitmap> Bitmap = DrawAlone(*Outline, 48, 40, Matrix);
    // The lengths of the images of the unit vectors are 2 and 1.5 under a rotation.
    EXPECT_NEAR(2.0, Owner.AskedX, 1e-12);
    EXPECT_NEAR(2.0, Owner.AskedY, 1e-12);
    art_path Path = CurvedFigure();
    ownership_pointer<art_bitmap> Want = Expected(48, 40, [&](art_bitmap &B) {
        B.StrokePath(Path, Pixel(51, 102, 153, 204), 1.5, Matrix, OutlineCentred, ArtJoinMiter, ArtCapSquare, 16.0,
                     Owner.AskedX);
    });
    EXPECT_GT(CountPainted(*Want), 50);
    EXPECT_TRUE(SameBitmaps(*Want, *Bitmap));
}

TEST(ArtOutline, TheDetailAskedOfTheOwnerIsTheLargerAxisOnBothAxes)
{
    path_owner Owner(CurvedFigure());
    reference_pointer<art_outline> Outline = AddOutline(Owner);
    DrawAlone(*Outline, 8, 8, agg::trans_affine_scaling(2, 5));
    EXPECT_EQ(5.0, Owner.AskedX);
    EXPECT_EQ(5.0, Owner.AskedY);
}

TEST(ArtOutline, ADashedLineIsTheDashedStrokeOfTheOwnersPath)
{
    path_owner Owner(CurvedFigure());
    reference_pointer<art_outline> Outline = AddOutline(Owner);
    Outline->SetColor(agg::rgba(0, 0.5, 1, 1));
    Outline->SetWidth(1.25);
    Outline->SetDashCycle(3);
    Outline->SetDashLength(0.25);
    Outline->SetDashOffset(0.4);
    Outline->SetCornerType(ArtJoinRound);
    Outline->SetCapType(ArtCapRound);
    agg::trans_affine Matrix = agg::trans_affine_scaling(2.5);
    ownership_pointer<art_bitmap> Bitmap = DrawAlone(*Outline, 48, 32, Matrix);
    art_path Path = CurvedFigure();
    ownership_pointer<art_bitmap> Want = Expected(48, 32, [&](art_bitmap &B) {
        B.StrokeDashedPath(Path, Pixel(0, 128, 255, 255), 1.25, 0.25, 3, 0.4, Matrix, ArtJoinRound, ArtCapRound, 16.0,
                           2.5);
    });
    EXPECT_GT(CountPainted(*Want), 50);
    EXPECT_TRUE(SameBitmaps(*Want, *Bitmap));
    // Dashes leave gaps where a solid line would paint.
    ownership_pointer<art_bitmap> Solid = Expected(48, 32, [&](art_bitmap &B) {
        B.StrokePath(Path, Pixel(0, 128, 255, 255), 1.25, Matrix, OutlineCentred, ArtJoinRound, ArtCapRound, 16.0, 2.5);
    });
    EXPECT_LT(CountPainted(*Bitmap), CountPainted(*Solid));
}

TEST(ArtOutline, ADashCycleOfZeroOrLessFallsBackToTheSolidStroke)
{
    art_path Path = CurvedFigure();
    ownership_pointer<art_bitmap> Solid = Expected(40, 32, [&](art_bitmap &B) {
        B.StrokePath(Path, Black, 2, agg::trans_affine_scaling(2), OutlineCentred, ArtJoinMiter, ArtCapSquare, 16.0,
                     2.0);
    });
    ASSERT_GT(CountPainted(*Solid), 50);
    for (double Cycle : {0.0, -2.0}) {
        path_owner Owner(CurvedFigure());
        reference_pointer<art_outline> Outline = AddOutline(Owner);
        Outline->SetWidth(2);
        Outline->SetDashLength(0.25);
        Outline->SetDashCycle(Cycle);
        ownership_pointer<art_bitmap> Bitmap;
        ASSERT_NO_THROW(Bitmap = DrawAlone(*Outline, 40, 32, agg::trans_affine_scaling(2))) << Cycle;
        EXPECT_TRUE(SameBitmaps(*Solid, *Bitmap)) << Cycle;
    }
}

TEST(ArtOutline, CornerAndCapTypesReachTheStroker)
{
    art_path Path = CurvedFigure();
    for (int32_t Corner : {ArtJoinMiter, ArtJoinRound, ArtJoinBevel})
        for (int32_t Cap : {ArtCapButt, ArtCapSquare, ArtCapRound}) {
            path_owner Owner(CurvedFigure());
            reference_pointer<art_outline> Outline = AddOutline(Owner);
            Outline->SetWidth(3);
            Outline->SetCornerType(Corner);
            Outline->SetCapType(Cap);
            ownership_pointer<art_bitmap> Bitmap = DrawAlone(*Outline, 48, 36, agg::trans_affine_scaling(2.5));
            ownership_pointer<art_bitmap> Want = Expected(48, 36, [&](art_bitmap &B) {
                B.StrokePath(Path, Black, 3, agg::trans_affine_scaling(2.5), OutlineCentred, Corner, Cap, 16.0, 2.5);
            });
            EXPECT_TRUE(SameBitmaps(*Want, *Bitmap)) << Corner << " " << Cap;
        }
}

TEST(ArtOutline, CornerWordsOfAnyCaseAreReadAndOthersKeepTheDefault)
{
    struct
    {
        const char *Text;
        int32_t Corner;
    } Cases[] = {{"miter", 0}, {"Miter", 0}, {"round", 2}, {"ROUND", 2}, {"bevel", 3}, {"Bevel", 3},
                 {"sharp", 0}, {"2", 0},     {"", 0}};
    for (auto &Case : Cases) {
        parsed Parsed((std::string("<art_outline corner_type=\"") + Case.Text + "\"/>").c_str());
        ownership_pointer<art_object> Loaded = Load(Parsed);
        EXPECT_EQ(Case.Corner, reference_pointer<art_object>(Loaded.Get()).DynamicCast<art_outline>()->GetCornerType())
            << Case.Text;
    }
}

TEST(ArtOutline, CapWordsOfAnyCaseAreReadAndOthersKeepTheDefault)
{
    struct
    {
        const char *Text;
        int32_t Cap;
    } Cases[] = {{"butt_cap", 0}, {"Butt_Cap", 0}, {"square_cap", 1}, {"round_cap", 2},
                 {"ROUND_CAP", 2}, {"round", 1},   {"butt", 1},       {"0", 1}};
    for (auto &Case : Cases) {
        parsed Parsed((std::string("<art_outline cap_type=\"") + Case.Text + "\"/>").c_str());
        ownership_pointer<art_object> Loaded = Load(Parsed);
        EXPECT_EQ(Case.Cap, reference_pointer<art_object>(Loaded.Get()).DynamicCast<art_outline>()->GetCapType())
            << Case.Text;
    }
}

TEST(ArtOutline, CornerAndCapTypesAreWrittenAsWordsWhenNotTheDefault)
{
    art_outline Outline;
    EXPECT_EQ("<art_outline></art_outline>", Written(Outline));
    Outline.SetCornerType(ArtJoinRound);
    Outline.SetCapType(ArtCapButt);
    EXPECT_EQ("<art_outline corner_type=\"round\" cap_type=\"butt_cap\"></art_outline>", Written(Outline));
    Outline.SetCornerType(ArtJoinBevel);
    Outline.SetCapType(ArtCapRound);
    EXPECT_EQ("<art_outline corner_type=\"bevel\" cap_type=\"round_cap\"></art_outline>", Written(Outline));
    Outline.SetCornerType(ArtJoinMiter);
    Outline.SetCapType(ArtCapSquare);
    EXPECT_EQ("<art_outline></art_outline>", Written(Outline));
}

TEST(ArtOutline, AnUnknownCornerTypeIsNotSavedButReachesTheStrokerAsItStands)
{
    path_owner Owner(CurvedFigure());
    reference_pointer<art_outline> Outline = AddOutline(Owner);
    Outline->SetCornerType(1);
    Outline->SetWidth(3);
    EXPECT_EQ("<art_outline width=\"3\"></art_outline>", Written(*Outline));
    ownership_pointer<art_bitmap> Bitmap = DrawAlone(*Outline, 48, 36, agg::trans_affine_scaling(2.5));
    art_path Path = CurvedFigure();
    ownership_pointer<art_bitmap> Want = Expected(48, 36, [&](art_bitmap &B) {
        B.StrokePath(Path, Black, 3, agg::trans_affine_scaling(2.5), OutlineCentred, 1, ArtCapSquare, 16.0, 2.5);
    });
    EXPECT_TRUE(SameBitmaps(*Want, *Bitmap));
}

TEST(ArtOutline, AttributesAreWrittenInTheirOrderOnlyWhenNotTheDefault)
{
    art_outline Outline;
    Outline.SetWidth(2.5);
    Outline.SetColor(agg::rgba(1, 0, 0, 1));
    Outline.SetCornerType(ArtJoinBevel);
    Outline.SetCapType(ArtCapRound);
    Outline.SetDashLength(0.3);
    Outline.SetDashCycle(6);
    Outline.SetDashOffset(0.125);
    Outline.SetStackMode(StackModePost);
    EXPECT_EQ("<art_outline stack_mode=\"post\" width=\"2.5\" color=\"ff0000ff\" corner_type=\"bevel\" "
              "cap_type=\"round_cap\" dash_len=\"0.3\" dash_cycle=\"6\" dash_offset=\"0.125\"></art_outline>",
              Written(Outline));
    // A solid line has no dashes to describe, whatever the fields hold.
    Outline.SetDashCycle(0);
    EXPECT_EQ("<art_outline stack_mode=\"post\" width=\"2.5\" color=\"ff0000ff\" corner_type=\"bevel\" "
              "cap_type=\"round_cap\"></art_outline>",
              Written(Outline));
    Outline.SetDashCycle(-1);
    EXPECT_EQ("<art_outline stack_mode=\"post\" width=\"2.5\" color=\"ff0000ff\" corner_type=\"bevel\" "
              "cap_type=\"round_cap\"></art_outline>",
              Written(Outline));
}

TEST(ArtOutline, EveryAttributeIsReadBack)
{
    parsed Parsed("<art_outline stack_mode=\"post\" width=\"2.5\" color=\"00ff0080\" corner_type=\"bevel\" "
                  "cap_type=\"round_cap\" dash_len=\"0.3\" dash_cycle=\"6\" dash_offset=\"0.125\"/>");
    ownership_pointer<art_object> Loaded = Load(Parsed);
    reference_pointer<art_outline> Outline = reference_pointer<art_object>(Loaded.Get()).DynamicCast<art_outline>();
    ASSERT_TRUE(Outline.IsSet());
    EXPECT_EQ(StackModePost, Outline->GetStackMode());
    EXPECT_EQ(2.5, Outline->GetWidth());
    EXPECT_EQ(0.0, Outline->GetColor().r);
    EXPECT_EQ(1.0, Outline->GetColor().g);
    EXPECT_EQ(0.0, Outline->GetColor().b);
    EXPECT_EQ(128 / 255.0, Outline->GetColor().a);
    EXPECT_EQ(ArtJoinBevel, Outline->GetCornerType());
    EXPECT_EQ(ArtCapRound, Outline->GetCapType());
    EXPECT_EQ(0.3, Outline->GetDashLength());
    EXPECT_EQ(6.0, Outline->GetDashCycle());
    EXPECT_EQ(0.125, Outline->GetDashOffset());
}

TEST(ArtOutline, WithoutAttributesTheDefaultsHold)
{
    parsed Parsed("<art_outline/>");
    ownership_pointer<art_object> Loaded = Load(Parsed);
    reference_pointer<art_outline> Outline = reference_pointer<art_object>(Loaded.Get()).DynamicCast<art_outline>();
    ASSERT_TRUE(Outline.IsSet());
    EXPECT_EQ(StackModeNormal, Outline->GetStackMode());
    EXPECT_EQ(1.0, Outline->GetWidth());
    agg::rgba Color = Outline->GetColor();
    EXPECT_EQ(0.0, Color.r);
    EXPECT_EQ(0.0, Color.g);
    EXPECT_EQ(0.0, Color.b);
    EXPECT_EQ(1.0, Color.a);
    EXPECT_EQ(0, Outline->GetCornerType());
    EXPECT_EQ(1, Outline->GetCapType());
    EXPECT_EQ(0.5, Outline->GetDashLength());
    EXPECT_EQ(0.0, Outline->GetDashCycle());
    EXPECT_EQ(0.0, Outline->GetDashOffset());
    EXPECT_EQ("<art_outline></art_outline>", Written(*Outline));
}

TEST(ArtOutline, AColourDiffersFromTheDefaultByAnyChannel)
{
    EXPECT_EQ("<art_outline color=\"000000fe\"></art_outline>",
              RoundTrip("<art_outline color=\"000000fe\"/>"));
    EXPECT_EQ("<art_outline color=\"000001ff\"></art_outline>", RoundTrip("<art_outline color=\"000001ff\"/>"));
    EXPECT_EQ("<art_outline></art_outline>", RoundTrip("<art_outline color=\"000000ff\"/>"));
    EXPECT_EQ("<art_outline></art_outline>", RoundTrip("<art_outline width=\"1\"/>"));
    EXPECT_EQ("<art_outline></art_outline>", RoundTrip("<art_outline width=\"1.0\"/>"));
}

TEST(ArtOutline, SetColorReportsAChangeOnlyWhenAChannelDiffers)
{
    path_owner Owner(CurvedFigure());
    reference_pointer<art_outline> Outline = AddOutline(Owner);
    int32_t Before = Owner.GetRedrawCount();
    Outline->SetColor(agg::rgba(0, 0, 0, 1));
    EXPECT_EQ(Before, Owner.GetRedrawCount());
    Outline->SetColor(agg::rgba(0, 0, 0, 0.5));
    EXPECT_GT(Owner.GetRedrawCount(), Before);
    EXPECT_EQ(0.5, Outline->GetColor().a);
    Before = Owner.GetRedrawCount();
    Outline->SetColor(agg::rgba(0, 0, 0, 0.5));
    EXPECT_EQ(Before, Owner.GetRedrawCount());
    Outline->SetColor(agg::rgba(0, 0, 0.25, 0.5));
    EXPECT_GT(Owner.GetRedrawCount(), Before);
}

TEST(ArtOutline, EverySetterReportsAChangeOnlyWhenTheValueDiffers)
{
    path_owner Owner(CurvedFigure());
    reference_pointer<art_outline> Outline = AddOutline(Owner);
    auto Raises = [&](std::function<void()> Set) {
        int32_t Before = Owner.GetRedrawCount();
        Set();
        return Owner.GetRedrawCount() > Before;
    };
    EXPECT_FALSE(Raises([&] { Outline->SetWidth(1.0); }));
    EXPECT_TRUE(Raises([&] { Outline->SetWidth(2.0); }));
    EXPECT_FALSE(Raises([&] { Outline->SetCornerType(ArtJoinMiter); }));
    EXPECT_TRUE(Raises([&] { Outline->SetCornerType(ArtJoinRound); }));
    EXPECT_FALSE(Raises([&] { Outline->SetCapType(ArtCapSquare); }));
    EXPECT_TRUE(Raises([&] { Outline->SetCapType(ArtCapButt); }));
    EXPECT_FALSE(Raises([&] { Outline->SetDashLength(0.5); }));
    EXPECT_TRUE(Raises([&] { Outline->SetDashLength(0.75); }));
    EXPECT_FALSE(Raises([&] { Outline->SetDashCycle(0); }));
    EXPECT_TRUE(Raises([&] { Outline->SetDashCycle(5); }));
    EXPECT_FALSE(Raises([&] { Outline->SetDashOffset(0); }));
    EXPECT_TRUE(Raises([&] { Outline->SetDashOffset(0.5); }));
    EXPECT_EQ(2.0, Outline->GetWidth());
    EXPECT_EQ(ArtJoinRound, Outline->GetCornerType());
    EXPECT_EQ(ArtCapButt, Outline->GetCapType());
    EXPECT_EQ(0.75, Outline->GetDashLength());
    EXPECT_EQ(5.0, Outline->GetDashCycle());
    EXPECT_EQ(0.5, Outline->GetDashOffset());
}

TEST(ArtOutline, WithoutAnOwnerThereIsNoPathAndNothingIsDrawn)
{
    art_outline Outline;
    Outline.SetWidth(4);
    ownership_pointer<art_bitmap> Bitmap = DrawAlone(Outline, 16, 16);
    EXPECT_TRUE(PixelsAre(*Bitmap, [](int, int) { return Transparent; }));
}

TEST(ArtOutline, OffStencilOrPostTheReachIsHalfAgainTheWidthBeyondRoundedCorners)
{
    ownership_pointer<art_object> Group = ShapedGroup(new art_rectangle_shape, 20, 10);
    reference_pointer<art_outline> Outline = AddOutline(*Group);
    Outline->SetWidth(2);
    for (art_stack_mode Mode : {StackModeStencil, StackModePost, StackModePlusStencil, StackModeMinusStencil}) {
        Outline->SetStackMode(Mode);
        rectangle Rect(point2d(1, 2), point2d(3, 4));
        Outline->ExpandRedrawRect(Rect, agg::trans_affine());
        // A miter on a shape without sharp corners: (1 + 0.5) * 2 = 3 on every side.
        EXPECT_TRUE(SameRectangle(rectangle(point2d(-2, -1), point2d(9, 10)), Rect)) << Mode << RectangleText(Rect);
    }
}

TEST(ArtOutline, TheReachOfAMiterOnSharpCornersIsTheMiterLimitAndAHalf)
{
    ownership_pointer<art_object> Group = ShapedGroup(new art_custom_shape, 20, 10);
    reference_pointer<art_outline> Outline = AddOutline(*Group);
    Outline->SetWidth(2);
    Outline->SetStackMode(StackModePost);
    rectangle Rect(point2d(0, 0), point2d(20, 10));
    Outline->ExpandRedrawRect(Rect, agg::trans_affine());
    EXPECT_TRUE(SameRectangle(rectangle(point2d(-33, -33), point2d(86, 76)), Rect)) << RectangleText(Rect);

    // Round and bevelled corners reach no further than the width.
    for (int32_t Corner : {ArtJoinRound, ArtJoinBevel}) {
        Outline->SetCornerType(Corner);
        rectangle Narrow(point2d(0, 0), point2d(20, 10));
        Outline->ExpandRedrawRect(Narrow, agg::trans_affine());
        EXPECT_TRUE(SameRectangle(rectangle(point2d(-2, -2), point2d(24, 14)), Narrow)) << RectangleText(Narrow);
    }
}

TEST(ArtOutline, TheReachGrowsWithTheScaleOfTheMatrix)
{
    ownership_pointer<art_object> Group = ShapedGroup(new art_rectangle_shape, 20, 10);
    reference_pointer<art_outline> Outline = AddOutline(*Group);
    Outline->SetWidth(2);
    Outline->SetStackMode(StackModePost);
    // The larger axis is 4: a reach of 3 units is 12 there.
    rectangle Rect(point2d(0, 0), point2d(40, 40));
    Outline->ExpandRedrawRect(Rect, agg::trans_affine_scaling(2, 4));
    EXPECT_TRUE(SameRectangle(rectangle(point2d(-12, -12), point2d(64, 64)), Rect)) << RectangleText(Rect);
    // So does what the owner says it draws.
    rectangle Bounds = Group->GetDrawBounds(agg::trans_affine_scaling(2));
    EXPECT_TRUE(SameRectangle(rectangle(point2d(-6, -6), point2d(52, 32)), Bounds)) << RectangleText(Bounds);
}

TEST(ArtOutline, AWidthOfZeroOrLessReachesNowhere)
{
    ownership_pointer<art_object> Group = ShapedGroup(new art_rectangle_shape, 20, 10);
    reference_pointer<art_outline> Outline = AddOutline(*Group);
    Outline->SetStackMode(StackModePost);
    for (double Width : {0.0, -3.0}) {
        Outline->SetWidth(Width);
        rectangle Rect(point2d(1, 2), point2d(3, 4));
        Outline->ExpandRedrawRect(Rect, agg::trans_affine());
        EXPECT_TRUE(SameRectangle(rectangle(point2d(1, 2), point2d(3, 4)), Rect)) << Width;
    }
}

TEST(ArtOutline, APostOutlineIsDrawnBeyondTheStencilAndItsReachIsRedrawn)
{
    ownership_pointer<art_object> Group = ShapedGroup(new art_rectangle_shape, 20, 10);
    Group->SetLocation(point2d(4, 4));
    reference_pointer<art_outline> Outline = AddOutline(*Group);
    Outline->SetWidth(2);
    Outline->SetStackMode(StackModePost);
    ownership_pointer<art_bitmap> Bitmap = DrawAlone(*Group, 28, 18);
    // The whole line, x 3 to 25 and y 3 to 15 less the inside, with square miter corners.
    EXPECT_TRUE(PixelsAre(*Bitmap, [](int X, int Y) {
        return Inside(X, Y, 3, 3, 25, 15) && !Inside(X, Y, 5, 5, 23, 13) ? Black : Transparent;
    }));
}

TEST(ArtOutline, DuplicateCopiesEveryField)
{
    art_outline Outline;
    Outline.SetWidth(2.5);
    Outline.SetColor(agg::rgba(0.25, 0.5, 0.75, 0.5));
    Outline.SetCornerType(ArtJoinRound);
    Outline.SetCapType(ArtCapButt);
    Outline.SetDashLength(0.3);
    Outline.SetDashCycle(6);
    Outline.SetDashOffset(0.2);
    Outline.SetStackMode(StackModePost);
    ownership_pointer<art_object> Copy = Outline.Duplicate();
    reference_pointer<art_outline> Twin = reference_pointer<art_object>(Copy.Get()).DynamicCast<art_outline>();
    ASSERT_TRUE(Twin.IsSet());
    EXPECT_NE(static_cast<art_object *>(&Outline), Copy.Get());
    EXPECT_EQ(2.5, Twin->GetWidth());
    EXPECT_EQ(0.25, Twin->GetColor().r);
    EXPECT_EQ(0.5, Twin->GetColor().g);
    EXPECT_EQ(0.75, Twin->GetColor().b);
    EXPECT_EQ(0.5, Twin->GetColor().a);
    EXPECT_EQ(ArtJoinRound, Twin->GetCornerType());
    EXPECT_EQ(ArtCapButt, Twin->GetCapType());
    EXPECT_EQ(0.3, Twin->GetDashLength());
    EXPECT_EQ(6.0, Twin->GetDashCycle());
    EXPECT_EQ(0.2, Twin->GetDashOffset());
    EXPECT_EQ(StackModePost, Twin->GetStackMode());
    EXPECT_EQ(Written(Outline), Written(*Twin));
}

TEST(ArtOutline, AnOwnersDuplicateHasItsOwnOutline)
{
    ownership_pointer<art_object> Group = ShapedGroup(new art_rectangle_shape, 20, 10);
    AddOutline(*Group)->SetWidth(3);
    ownership_pointer<art_object> Copy = Group->Duplicate();
    ASSERT_EQ(2, Copy->GetNumberOfChildren());
    reference_pointer<art_outline> Twin =
        reference_pointer<art_object>(Copy->GetChildrenObject()->GetChild(1)).DynamicCast<art_outline>();
    ASSERT_TRUE(Twin.IsSet());
    EXPECT_EQ(3.0, Twin->GetWidth());
    EXPECT_EQ(reference_pointer<art_object>(Copy.Get()), Twin->GetParent());
}

TEST(ArtOutline, TheOutlineIsItsOwnersEditTarget)
{
    ownership_pointer<art_object> Group = ShapedGroup(new art_rectangle_shape, 20, 10);
    EXPECT_FALSE(Group->FindEditTarget().IsSet());
    reference_pointer<art_outline> Outline = AddOutline(*Group);
    EXPECT_TRUE(Outline->IsEditTarget());
    EXPECT_EQ(reference_pointer<art_object>(Outline.Get()), Group->FindEditTarget());
}

TEST(ArtOutline, AShapeMatrixIsTakenIntoTheWidthAndTheDashCycle)
{
    ownership_pointer<art_object> Group = ShapedGroup(new art_rectangle_shape, 20, 10);
    reference_pointer<art_outline> Outline = AddOutline(*Group);
    Outline->SetWidth(1.5);
    Outline->SetDashCycle(4);
    // Scaling by 2 and 8 changes areas by 16: the mean scale is 4.
    Group->SetShapeMatrix(agg::trans_affine_scaling(2, 8));
    EXPECT_EQ(6.0, Outline->GetWidth());
    EXPECT_EQ(16.0, Outline->GetDashCycle());
    // A rotation and a mirror keep the lengths.
    agg::trans_affine Turn = agg::trans_affine_rotation(0.5);
    Turn *= agg::trans_affine_scaling(-1, 1);
    Outline->SetShapeMatrix(Turn);
    EXPECT_NEAR(6.0, Outline->GetWidth(), 1e-12);
    EXPECT_NEAR(16.0, Outline->GetDashCycle(), 1e-12);
    EXPECT_TRUE(IsIdentity(Group->GetShapeMatrix()));
    EXPECT_TRUE(IsIdentity(Outline->GetShapeMatrix()));
}

TEST(ArtOutline, NamesItself)
{
    art_outline Outline;
    EXPECT_EQ(zel_string("art_outline"), Outline.GetTagName());
    EXPECT_EQ(zel_string("Outline"), Outline.GetTypeLabel());
    EXPECT_EQ(zel_string("Outline"), Outline.GetDebugName());
    EXPECT_EQ(zel_string("Effect"), Outline.GetEffectKind());
    EXPECT_TRUE(Outline.IsLayerObject());
    EXPECT_FALSE(Outline.CanHaveChildren());
}

TEST(ArtOutline, TheFactoryMakesAnOutlineOfItsTag)
{
    parsed Parsed("<art_outline width=\"3\"/>");
    ownership_pointer<art_object> Loaded = Load(Parsed);
    reference_pointer<art_outline> Outline = reference_pointer<art_object>(Loaded.Get()).DynamicCast<art_outline>();
    ASSERT_TRUE(Outline.IsSet());
    EXPECT_EQ(3.0, Outline->GetWidth());
}

namespace {

// A rectangle 24 by 16 at (10, 10) whose red outline, 2 wide, dashes 4 on and 4 off, drawn after
// the stencil so that all of it shows.
const char *const DashedRectangle =
    "<pego handle=\"(0,0)\" x_val=\"10\" w_val=\"24\" y_val=\"10\" h_val=\"16\"><children>"
    "<art_stencil_shape stack_mode=\"+stencil\" x_layout_mode=\"7\" x_val=\"0.5\" w_val=\"1\" y_layout_mode=\"7\" "
    "y_val=\"0.5\" h_val=\"1\"><art_rectangle></art_rectangle></art_stencil_shape>"
    "<art_outline stack_mode=\"post\" width=\"2\" color=\"ff0000ff\" cap_type=\"butt_cap\" dash_cycle=\"8\">"
    "</art_outline>"
    "</children></pego>";

// A circle 40 across at (10, 10) with a blue line 10 wide, of which the stencil keeps the inner half.
const char *const OutlinedEllipse =
    "<pego handle=\"(0,0)\" x_val=\"10\" w_val=\"40\" y_val=\"10\" h_val=\"40\"><children>"
    "<art_stencil_shape stack_mode=\"+stencil\" x_layout_mode=\"7\" x_val=\"0.5\" w_val=\"1\" y_layout_mode=\"7\" "
    "y_val=\"0.5\" h_val=\"1\"><art_ellipse></art_ellipse></art_stencil_shape>"
    "<art_outline width=\"10\" color=\"0000ffff\" corner_type=\"round\"></art_outline>"
    "</children></pego>";

} // namespace

TEST(ArtOutlineDocument, ARectangleWithADashedOutlineDrawsItsDashesAndIsWrittenBackUnchanged)
{
    parsed Parsed(DashedRectangle);
    ownership_pointer<art_object> Root = Load(Parsed);
    Root->Layout();
    ASSERT_EQ(point2d(10, 10), Root->GetLocation());
    ASSERT_EQ(point2d(24, 16), Root->GetSize());
    ownership_pointer<art_bitmap> Bitmap = DrawAlone(*Root, 48, 36);
    // Along the top edge, rows 9 and 10: from x 10 the dashes run 4 on, 4 off.
    for (int Y : {9, 10}) {
        for (int X : {10, 11, 13, 18, 21, 26, 29})
            EXPECT_EQ(PixelText(Red), PixelText(At(*Bitmap, X, Y))) << X << "," << Y;
        for (int X : {14, 15, 17, 22, 25, 30})
            EXPECT_EQ(PixelText(Transparent), PixelText(At(*Bitmap, X, Y))) << X << "," << Y;
    }
    // Down the right edge, columns 33 and 34: the cycle goes on from the corner.
    for (int X : {33, 34}) {
        for (int Y : {10, 13, 18, 21})
            EXPECT_EQ(PixelText(Red), PixelText(At(*Bitmap, X, Y))) << X << "," << Y;
        for (int Y : {14, 17})
            EXPECT_EQ(PixelText(Transparent), PixelText(At(*Bitmap, X, Y))) << X << "," << Y;
    }
    // Nothing inside, nothing well outside.
    EXPECT_EQ(PixelText(Transparent), PixelText(At(*Bitmap, 20, 18)));
    EXPECT_EQ(PixelText(Transparent), PixelText(At(*Bitmap, 5, 5)));
    EXPECT_EQ(PixelText(Transparent), PixelText(At(*Bitmap, 12, 8)));

    EXPECT_EQ(Dump(Parsed.Tag()), Written(*Root));
}

TEST(ArtOutlineDocument, AnEllipseWithASolidOutlineShowsTheInnerHalfAndIsWrittenBackUnchanged)
{
    parsed Parsed(OutlinedEllipse);
    ownership_pointer<art_object> Root = Load(Parsed);
    Root->Layout();
    ASSERT_EQ(point2d(40, 40), Root->GetSize());
    ownership_pointer<art_bitmap> Bitmap = DrawAlone(*Root, 64, 64);
    // The centre is (30, 30), the radius 20; the line covers radii 15 to 25, and the stencil keeps
    // what lies inside 20.
    for (auto P : {std::make_pair(30, 13), std::make_pair(13, 30), std::make_pair(46, 30), std::make_pair(30, 46)})
        EXPECT_EQ(PixelText(Blue), PixelText(At(*Bitmap, P.first, P.second))) << P.first << "," << P.second;
    for (auto P : {std::make_pair(30, 30), std::make_pair(30, 17), std::make_pair(30, 8), std::make_pair(8, 30),
                   std::make_pair(12, 12)})
        EXPECT_EQ(PixelText(Transparent), PixelText(At(*Bitmap, P.first, P.second))) << P.first << "," << P.second;

    EXPECT_EQ(Dump(Parsed.Tag()), Written(*Root));
}
