#include <gtest/gtest.h>

#include <cmath>

#include <agg_ellipse.h>
#include <agg_rounded_rect.h>

#include "art_engine/effects/art_draw_parents_custom_fill.h"
#include "art_engine/pixels/art_bitmap.h"
#include "art_engine/shapes/art_ellipse_shape.h"
#include "art_engine/shapes/art_inherit_parent_shape.h"
#include "art_engine/shapes/art_rectangle_shape.h"
#include "tests/art_engine/shapes/art_shape_test_support.h"

using namespace art_shape_test;
using art_test::Dump;

namespace {

art_rectangle_shape *Rectangle(art_stencil_shape &Stencil)
{
    return dynamic_cast<art_rectangle_shape *>(Stencil.GetShape().Get());
}

// The area that a closed polygon encloses, positive for the order (0,0), (1,0), (1,1) of y-down
// space; the vertices are taken as they are stored.
double SignedArea(const std::vector<vertex> &List)
{
    double Area = 0;
    std::vector<vertex> Points;
    for (const vertex &V : List)
        if (agg::is_vertex(V.Command))
            Points.push_back(V);
    for (size_t I = 0; I < Points.size(); I++) {
        const vertex &A = Points[I];
        const vertex &B = Points[(I + 1) % Points.size()];
        Area += A.X * B.Y - B.X * A.Y;
    }
    return Area / 2;
}

// The pixels of a bitmap that a stencil shape drew into, cleared to transparent first.
ownership_pointer<art_bitmap> DrawStencil(art_stencil_shape &Stencil, int W, int H)
{
    ownership_pointer<art_bitmap> Bitmap(new art_bitmap(W, H));
    Bitmap->Clear(agg::rgba8(0, 0, 0, 0));
    Stencil.Draw(reference_pointer<bitmap_interface>(Bitmap.Get()), reference_pointer<bitmap_interface>(Bitmap.Get()),
                 agg::trans_affine(), reference_pointer<art_cache>());
    return Bitmap;
}

std::string PixelAt(art_bitmap &Bitmap, int X, int Y)
{
    agg::rgba8 P = Bitmap.GetPixelRow(Y)[X];
    return std::to_string(P.r) + "," + std::to_string(P.g) + "," + std::to_string(P.b) + "," + std::to_string(P.a);
}

} // namespace

TEST(ArtRectangleShape, WithoutRadiusEachCornerIsVisitedTwiceAndTheFigureCloses)
{
    ownership_pointer<art_stencil_shape> Stencil = MakeStencil(new art_rectangle_shape, 40, 20);
    // A corner arc of radius 0 gives its start and its end, both on the corner.
    std::vector<vertex> Want = {{Move, 0, 0},   {Line, 0, 0},   {Line, 40, 0}, {Line, 40, 0}, {Line, 40, 20},
                                {Line, 40, 20}, {Line, 0, 20},  {Line, 0, 20},
                                {Close | agg::path_flags_ccw, 0, 0}};
    EXPECT_EQ(Want, ShapePath(*Stencil));
}

TEST(ArtRectangleShape, RoundedCornersAreTheArcsOfARoundedRectAtTheScale)
{
    ownership_pointer<art_stencil_shape> Stencil = MakeStencil(new art_rectangle_shape, 40, 20);
    Rectangle(*Stencil)->SetRadius(point2d(6, 4));
    agg::rounded_rect Reference(0, 0, 40, 20, 0);
    Reference.radius(6, 4);
    Reference.approximation_scale(3);
    EXPECT_EQ(SourceVertices(Reference), ShapePath(*Stencil, 3));
}

TEST(ArtRectangleShape, RadiusBeyondHalfTheSizeGivesAStadiumNeverAnInsideOutFigure)
{
    ownership_pointer<art_stencil_shape> Stencil = MakeStencil(new art_rectangle_shape, 40, 20);
    Rectangle(*Stencil)->SetRadius(point2d(100, 100));
    std::vector<vertex> Got = ShapePath(*Stencil, 2);
    agg::rounded_rect Reference(0, 0, 40, 20, 0);
    Reference.radius(20, 10);
    Reference.approximation_scale(2);
    EXPECT_EQ(SourceVertices(Reference), Got);
    for (const vertex &V : Got) {
        EXPECT_GE(V.X, 0);
        EXPECT_LE(V.X, 40);
        EXPECT_GE(V.Y, 0);
        EXPECT_LE(V.Y, 20);
    }
    // The ellipse of radii 20 and 10 has area 200 pi; a polygon inscribed in it a little less.
    double Area = SignedArea(Got);
    EXPECT_GT(Area, 0.95 * 200 * M_PI);
    EXPECT_LE(Area, 200 * M_PI);
}

TEST(ArtRectangleShape, OnlyRadiusXIsKeptWithRadiusYZeroAndWrittenAsBoth)
{
    ownership_pointer<art_shape> Shape = ShapeFromText("<art_rectangle rounded=\"(5,0)\"/>");
    art_rectangle_shape *Rounded = dynamic_cast<art_rectangle_shape *>(Shape.Get());
    ASSERT_NE(nullptr, Rounded);
    EXPECT_EQ(point2d(5, 0), Rounded->GetRadius());
    EXPECT_EQ("<art_rectangle rounded=\"(5,0)\"></art_rectangle>", SavedShape(*Shape));
    EXPECT_EQ(zel_string("Rounded Rectangle"), Shape->GetDisplayName());
}

TEST(ArtRectangleShape, AnUnroundedRectangleIsWrittenWithoutAttribute)
{
    ownership_pointer<art_shape> Shape = ShapeFromText("<art_rectangle rounded=\"(0,0)\"/>");
    EXPECT_EQ("<art_rectangle></art_rectangle>", SavedShape(*Shape));
    EXPECT_EQ(zel_string("Rectangle"), Shape->GetDisplayName());
    art_rectangle_shape Fresh;
    EXPECT_EQ("<art_rectangle></art_rectangle>", SavedShape(Fresh));
}

TEST(ArtRectangleShape, ConstrainMakesBothRadiiTheSmallerValue)
{
    ownership_pointer<art_stencil_shape> Stencil = MakeStencil(new art_rectangle_shape, 40, 20);
    art_shape &Shape = *Stencil->GetShape();
    Shape.SetHandleLocation(0, point2d(8, 3), true);
    EXPECT_EQ(point2d(3, 3), Shape.GetHandleLocation(0));
    Shape.SetHandleLocation(0, point2d(8, 3), false);
    EXPECT_EQ(point2d(8, 3), Shape.GetHandleLocation(0));
}

TEST(ArtRectangleShape, ANegativeHandlePositionGivesZero)
{
    ownership_pointer<art_stencil_shape> Stencil = MakeStencil(new art_rectangle_shape, 40, 20);
    art_shape &Shape = *Stencil->GetShape();
    Shape.SetHandleLocation(0, point2d(-2, 5), false);
    EXPECT_EQ(point2d(0, 5), Shape.GetHandleLocation(0));
    Shape.SetHandleLocation(0, point2d(7, -1), true);
    EXPECT_EQ(point2d(0, 0), Shape.GetHandleLocation(0));
}

TEST(ArtRectangleShape, AnswersAsARectangle)
{
    art_rectangle_shape Shape;
    Shape.SetRadius(point2d(2.5, 1));
    EXPECT_EQ(zel_string("art_rectangle"), Shape.GetTagName());
    EXPECT_EQ(zel_string("art_rectangle_shape::Radius=(2.5,1)"), Shape.GetDebugInfo());
    EXPECT_FALSE(Shape.HasSharpCorners());
    EXPECT_EQ(1, Shape.GetNumHandles());
    zel_string Title;
    zel_string Tip;
    Shape.GetHandleToolTip(0, Title, Tip);
    EXPECT_EQ(zel_string("Round Corners"), Title);
    EXPECT_EQ(zel_string("Drag to round the rectangle's corners."), Tip);
}

TEST(ArtRectangleShape, MovingTheHandleRaisesTheRedrawOfTheOwnersParent)
{
    ownership_pointer<art_object> Parent(new art_object);
    reference_pointer<art_object> Stencil = Parent->AddChild(MakeStencil(new art_rectangle_shape, 40, 20));
    int32_t Before = Parent->GetRedrawCount();
    Stencil->GetShape()->SetHandleLocation(0, point2d(4, 4), false);
    EXPECT_GT(Parent->GetRedrawCount(), Before);
}

TEST(ArtEllipseShape, VerticesAreThoseOfAnAggEllipseAtTheScale)
{
    for (double Scale : {0.25, 1.0, 3.0, 17.0}) {
        ownership_pointer<art_stencil_shape> Stencil = MakeStencil(new art_ellipse_shape, 30, 12);
        agg::ellipse Reference(15, 6, 15, 6, 0, false);
        Reference.approximation_scale(Scale);
        std::vector<vertex> Want = SourceVertices(Reference);
        // The figure ends with the close flag alone.
        Want.back().Command = Close;
        EXPECT_EQ(Want, ShapePath(*Stencil, Scale)) << Scale;
    }
}

TEST(ArtEllipseShape, StepCountFollowsTheAverageRadius)
{
    // Radii 1 and 1 at scale 1: steps of 2 acos(1 / 1.125) radians, 6.61 to the turn, so 7.
    ownership_pointer<art_stencil_shape> Stencil = MakeStencil(new art_ellipse_shape, 2, 2);
    std::vector<vertex> Got = ShapePath(*Stencil);
    ASSERT_EQ(8u, Got.size());
    EXPECT_EQ((vertex{Move, 2, 1}), Got[0]);
    for (int I = 1; I < 7; I++) {
        EXPECT_EQ(Line, Got[I].Command);
        EXPECT_NEAR(1 + std::cos(2 * M_PI * I / 7), Got[I].X, 1e-12);
        EXPECT_NEAR(1 + std::sin(2 * M_PI * I / 7), Got[I].Y, 1e-12);
    }
    EXPECT_EQ(Close, Got[7].Command);
}

TEST(ArtEllipseShape, TheFirstVertexJoinsAnOpenFigureBeforeIt)
{
    ownership_pointer<art_stencil_shape> Stencil = MakeStencil(new art_ellipse_shape, 2, 2);
    art_path Path;
    Path.move_to(-5, -5);
    Stencil->GetShapePath(Path, 1, 1);
    std::vector<vertex> Got = Vertices(Path);
    ASSERT_EQ(9u, Got.size());
    EXPECT_EQ((vertex{Move, -5, -5}), Got[0]);
    EXPECT_EQ((vertex{Line, 2, 1}), Got[1]);
}

TEST(ArtEllipseShape, ZeroSizeDrawsNothing)
{
    ownership_pointer<art_stencil_shape> Stencil = MakeStencil(new art_ellipse_shape, 0, 0);
    Stencil->SetLocation(point2d(4, 4));
    ownership_pointer<art_bitmap> Bitmap = DrawStencil(*Stencil, 8, 8);
    for (int Y = 0; Y < 8; Y++)
        for (int X = 0; X < 8; X++)
            EXPECT_EQ("0,0,0,0", PixelAt(*Bitmap, X, Y)) << X << "," << Y;
}

TEST(ArtEllipseShape, AnswersAsAnEllipseWithoutHandles)
{
    art_ellipse_shape Shape;
    EXPECT_EQ(zel_string("art_ellipse"), Shape.GetTagName());
    EXPECT_EQ(zel_string("Ellipse"), Shape.GetDisplayName());
    EXPECT_EQ(zel_string("art_ellipse_shape"), Shape.GetDebugInfo());
    EXPECT_FALSE(Shape.HasSharpCorners());
    EXPECT_EQ(0, Shape.GetNumHandles());
    EXPECT_EQ("<art_ellipse></art_ellipse>", SavedShape(Shape));
}

TEST(ArtShape, AShapeWithoutHandlesAssertsOnAnyHandle)
{
    art_ellipse_shape Shape;
    EXPECT_NE(std::string::npos, ZEL_ERROR_MESSAGE(Shape.GetHandleLocation(0)).find("'false' is false"));
    EXPECT_NE(std::string::npos,
              ZEL_ERROR_MESSAGE(Shape.SetHandleLocation(0, point2d(1, 1), false)).find("'false' is false"));
}

TEST(ArtShape, DefaultHandleColoursAndToolTip)
{
    art_ellipse_shape Shape;
    agg::rgba Color = Shape.GetHandleColor();
    EXPECT_EQ(0, Color.r);
    EXPECT_EQ(1, Color.g);
    EXPECT_EQ(0, Color.b);
    EXPECT_EQ(0.5, Color.a);
    agg::rgba Highlight = Shape.GetHandleHighlightColor();
    EXPECT_EQ(0.5, Highlight.r);
    EXPECT_EQ(0.5, Highlight.g);
    EXPECT_EQ(0.5, Highlight.b);
    EXPECT_EQ(0.8, Highlight.a);
    zel_string Title;
    zel_string Tip;
    Shape.GetHandleToolTip(2, Title, Tip);
    EXPECT_EQ(zel_string("Point Handle"), Title);
    EXPECT_EQ(zel_string("Drag to move the point and change the shape (Point #3)\n\nTip: Double-Click lines to add "
                         "points\n\nTip: Drag lines and make curves"),
              Tip);
}

TEST(ArtInheritParentShape, WithoutAShapeAboveItIsTheOwnersRectangle)
{
    ownership_pointer<art_object> Top(new art_object);
    reference_pointer<art_object> Holder = Top->AddChild(ownership_pointer<art_object>(new art_object));
    reference_pointer<art_object> Stencil = Holder->AddChild(MakeStencil(new art_inherit_parent_shape, 30, 10));
    Stencil->SetSize(point2d(30, 10));
    std::vector<vertex> Want = {{Move, 0, 0}, {Line, 30, 0}, {Line, 30, 10}, {Line, 0, 10}, {Line, 0, 0}, {Close, 0, 0}};
    EXPECT_EQ(Want, ShapePath(*Stencil));
    EXPECT_FALSE(Stencil->GetShape()->HasSharpCorners());
    // Alone, with no parent at all, the same.
    ownership_pointer<art_stencil_shape> Alone = MakeStencil(new art_inherit_parent_shape, 30, 10);
    EXPECT_EQ(Want, ShapePath(*Alone));
}

TEST(ArtInheritParentShape, TheShapeAboveIsStretchedToTheOwnersSize)
{
    ownership_pointer<art_object> Top(new art_object);
    Top->SetSize(point2d(20, 20));
    reference_pointer<art_object> TopShape = Top->AddChild(MakeStencil(new art_ellipse_shape, 20, 20));
    TopShape->SetSize(point2d(20, 20));
    reference_pointer<art_object> Holder = Top->AddChild(ownership_pointer<art_object>(new art_object));
    reference_pointer<art_object> Stencil = Holder->AddChild(MakeStencil(new art_inherit_parent_shape, 40, 10));
    Stencil->SetSize(point2d(40, 10));
    agg::ellipse Reference(10, 10, 10, 10, 0, false);
    Reference.approximation_scale(2);
    std::vector<vertex> Want = SourceVertices(Reference);
    for (vertex &V : Want) {
        V.X *= 2;
        V.Y *= 0.5;
    }
    Want.back() = vertex{Close, 0, 0};
    EXPECT_EQ(Want, ShapePath(*Stencil, 2));
    EXPECT_FALSE(Stencil->GetShape()->HasSharpCorners());
    EXPECT_EQ(zel_string("Inherit Parent"), Stencil->GetShape()->GetDisplayName());
    EXPECT_EQ(zel_string("art_parents_shape"), Stencil->GetShape()->GetTagName());
}

TEST(ArtStencilShape, SetStackModeTakesOnlyTheAddingAndCuttingModes)
{
    ownership_pointer<art_stencil_shape> Stencil(new art_stencil_shape);
    EXPECT_EQ(StackModePlusStencil, Stencil->GetStackMode());
    Stencil->SetStackMode(StackModeStencil);
    EXPECT_EQ(StackModePlusStencil, Stencil->GetStackMode());
    Stencil->SetStackMode(StackModePost);
    EXPECT_EQ(StackModePlusStencil, Stencil->GetStackMode());
    Stencil->SetStackMode(StackModeNormal);
    EXPECT_EQ(StackModePlusStencil, Stencil->GetStackMode());
    Stencil->SetStackMode(StackModeMinusStencil);
    EXPECT_EQ(StackModeMinusStencil, Stencil->GetStackMode());
    Stencil->SetStackMode(StackModePost);
    EXPECT_EQ(StackModeMinusStencil, Stencil->GetStackMode());
}

TEST(ArtStencilShape, PlusStencilPaintsWhiteAtItsOpacity)
{
    ownership_pointer<art_stencil_shape> Stencil = MakeStencil(new art_rectangle_shape, 4, 2);
    Stencil->SetLocation(point2d(1, 1));
    Stencil->SetOpacity(0.5);
    ownership_pointer<art_bitmap> Bitmap = DrawStencil(*Stencil, 6, 4);
    // Opacity 0.5 is the alpha byte 128 on white; the same colour over the same cells by the
    // bitmap's rectangle fill must give the same bytes.
    art_bitmap Want(6, 4);
    Want.Clear(agg::rgba8(0, 0, 0, 0));
    Want.FillRectangle(1, 1, 4, 2, agg::rgba8(255, 255, 255, 128));
    for (int Y = 0; Y < 4; Y++)
        for (int X = 0; X < 6; X++)
            EXPECT_EQ(PixelAt(Want, X, Y), PixelAt(*Bitmap, X, Y)) << X << "," << Y;
    EXPECT_EQ("0,0,0,0", PixelAt(*Bitmap, 0, 0));
    EXPECT_NE("0,0,0,0", PixelAt(*Bitmap, 1, 1));
}

TEST(ArtStencilShape, PlusStencilAtFullOpacityIsOpaqueWhite)
{
    ownership_pointer<art_stencil_shape> Stencil = MakeStencil(new art_rectangle_shape, 2, 2);
    ownership_pointer<art_bitmap> Bitmap = DrawStencil(*Stencil, 3, 3);
    EXPECT_EQ("255,255,255,255", PixelAt(*Bitmap, 0, 0));
    EXPECT_EQ("255,255,255,255", PixelAt(*Bitmap, 1, 1));
    EXPECT_EQ("0,0,0,0", PixelAt(*Bitmap, 2, 1));
}

TEST(ArtStencilShape, MinusStencilPaintsBlack)
{
    ownership_pointer<art_stencil_shape> Stencil = MakeStencil(new art_rectangle_shape, 2, 2);
    Stencil->SetStackMode(StackModeMinusStencil);
    ownership_pointer<art_bitmap> Bitmap = DrawStencil(*Stencil, 3, 3);
    EXPECT_EQ("0,0,0,255", PixelAt(*Bitmap, 0, 0));
    EXPECT_EQ("0,0,0,255", PixelAt(*Bitmap, 1, 1));
    EXPECT_EQ("0,0,0,0", PixelAt(*Bitmap, 2, 2));
}

TEST(ArtStencilShape, TheFillFollowsTheMatrixAndFlattensAtItsLargerAxis)
{
    ownership_pointer<art_stencil_shape> Stencil = MakeStencil(new art_rectangle_shape, 2, 1);
    ownership_pointer<art_bitmap> Bitmap(new art_bitmap(8, 8));
    Bitmap->Clear(agg::rgba8(0, 0, 0, 0));
    agg::trans_affine Matrix = agg::trans_affine_scaling(3, 4);
    Stencil->Draw(reference_pointer<bitmap_interface>(Bitmap.Get()), reference_pointer<bitmap_interface>(Bitmap.Get()),
                  Matrix, reference_pointer<art_cache>());
    for (int Y = 0; Y < 8; Y++)
        for (int X = 0; X < 8; X++)
            EXPECT_EQ(X < 6 && Y < 4 ? "255,255,255,255" : "0,0,0,0", PixelAt(*Bitmap, X, Y)) << X << "," << Y;
}

TEST(ArtStencilShape, TheShapeIsWrittenAsTheFirstChildTag)
{
    ownership_pointer<art_stencil_shape> Stencil = MakeStencil(new art_rectangle_shape, 4, 2);
    Rectangle(*Stencil)->SetRadius(point2d(5, 3));
    xbd_file File;
    ownership_pointer<xbd_tag> Tag = Stencil->CreateTag(&File);
    EXPECT_EQ(zel_string("art_stencil_shape"), Tag->GetName());
    EXPECT_EQ("+stencil", ToStd(Tag->GetAttribute("stack_mode", "")));
    ASSERT_EQ(1, Tag->GetChildren().GetNumberOfElements());
    EXPECT_EQ("<art_rectangle rounded=\"(5,3)\"></art_rectangle>",
              Dump(reference_pointer<xbd_tag>(Tag->GetChildren()[0].Get())));
}

TEST(ArtStencilShape, ReadsItsShapeFromTheFirstChildTagAndWritesItBack)
{
    parsed Parsed("<art_stencil_shape name=\"cut\" stack_mode=\"-stencil\" opacity=\"0.5\">"
                  "<art_ellipse/></art_stencil_shape>");
    ownership_pointer<art_object> Object = art_object_factory::GetFactory()->Make(Parsed.Tag());
    art_stencil_shape *Stencil = dynamic_cast<art_stencil_shape *>(Object.Get());
    ASSERT_NE(nullptr, Stencil);
    EXPECT_EQ(StackModeMinusStencil, Stencil->GetStackMode());
    EXPECT_EQ(0.5, Stencil->GetOpacity());
    EXPECT_EQ(zel_string("art_ellipse"), Stencil->GetShape()->GetTagName());
    EXPECT_EQ(reference_pointer<art_object>(Stencil), Stencil->GetShape()->GetOwner());
    xbd_file File;
    ownership_pointer<xbd_tag> Tag = Stencil->CreateTag(&File);
    EXPECT_EQ("name=\"cut\" opacity=\"0.5\" stack_mode=\"-stencil\"",
              art_test::Attributes(reference_pointer<xbd_tag>(Tag.Get())).substr(0, 48));
    ASSERT_EQ(1, Tag->GetChildren().GetNumberOfElements());
    EXPECT_EQ("<art_ellipse></art_ellipse>", Dump(reference_pointer<xbd_tag>(Tag->GetChildren()[0].Get())));
}

TEST(ArtStencilShape, WithoutAShapeChildTagTheConstructorAsserts)
{
    parsed Parsed("<art_stencil_shape stack_mode=\"+stencil\"/>");
    std::string Message = ZEL_ERROR_MESSAGE(art_object_factory::GetFactory()->Make(Parsed.Tag()));
    EXPECT_NE(std::string::npos, Message.find("'ShapeTag.IsSet()' is false")) << Message;
}

TEST(ArtStencilShape, AChildTagThatIsNoShapeIsAnErrorInWords)
{
    parsed Parsed("<art_stencil_shape><art_sparkle/></art_stencil_shape>");
    EXPECT_EQ("The shape type \"art_sparkle\" is not known.",
              ZEL_ERROR_MESSAGE(art_object_factory::GetFactory()->Make(Parsed.Tag())));
    parsed Object("<art_stencil_shape><pego/></art_stencil_shape>");
    EXPECT_EQ("The shape type \"pego\" is not known.",
              ZEL_ERROR_MESSAGE(art_object_factory::GetFactory()->Make(Object.Tag())));
}

TEST(ArtStencilShape, ADuplicateOwnsACopyOfTheShape)
{
    ownership_pointer<art_stencil_shape> Stencil = MakeStencil(new art_rectangle_shape, 4, 2);
    Rectangle(*Stencil)->SetRadius(point2d(1, 1));
    ownership_pointer<art_object> Copy = Stencil->Duplicate();
    art_stencil_shape *CopyStencil = dynamic_cast<art_stencil_shape *>(Copy.Get());
    ASSERT_NE(nullptr, CopyStencil);
    ASSERT_NE(Stencil->GetShape().Get(), CopyStencil->GetShape().Get());
    EXPECT_EQ(Copy.Get(), CopyStencil->GetShape()->GetOwner().Get());
    Rectangle(*Stencil)->SetRadius(point2d(2, 2));
    EXPECT_EQ(point2d(1, 1), Rectangle(*CopyStencil)->GetRadius());
}

TEST(ArtStencilShape, SetShapeTakesTheShapeOfAnotherStencilShape)
{
    ownership_pointer<art_stencil_shape> Stencil = MakeStencil(new art_rectangle_shape, 4, 2);
    Stencil->SetShape(ownership_pointer<art_object>(new art_stencil_shape(ownership_pointer<art_shape>(new art_ellipse_shape))));
    EXPECT_EQ(zel_string("art_ellipse"), Stencil->GetShape()->GetTagName());
    EXPECT_EQ(reference_pointer<art_object>(Stencil.Get()), Stencil->GetShape()->GetOwner());
    EXPECT_EQ(zel_string("Ellipse"), Stencil->GetTypeLabel());
}

TEST(ArtObjectFactory, EachShapeTagMakesAStencilShapeHoldingThatShape)
{
    for (const char *Name : {"art_rectangle", "art_ellipse", "art_parents_shape", "art_custom_shape",
                             "art_custom_radial_shape"}) {
        std::string Text = std::string("<") + Name + "/>";
        parsed Parsed(Text.c_str());
        ownership_pointer<art_object> Object = art_object_factory::GetFactory()->Make(Parsed.Tag());
        art_stencil_shape *Stencil = dynamic_cast<art_stencil_shape *>(Object.Get());
        ASSERT_NE(nullptr, Stencil) << Name;
        EXPECT_EQ(zel_string(Name), Stencil->GetShape()->GetTagName());
        EXPECT_EQ(StackModePlusStencil, Stencil->GetStackMode());
    }
}

TEST(ArtObject, TheOlderShapeChildGivesTheObjectItsShape)
{
    parsed Parsed("<pego name=\"old\"><shape><art_ellipse/></shape></pego>");
    ownership_pointer<art_object> Object = art_object_factory::GetFactory()->Make(Parsed.Tag());
    ASSERT_TRUE(Object->GetShape().IsSet());
    EXPECT_EQ(zel_string("art_ellipse"), Object->GetShape()->GetTagName());
    // It is written as this system writes shapes: a stencil child, no "shape" tag.
    xbd_file File;
    ownership_pointer<xbd_tag> Tag = Object->CreateTag(&File);
    EXPECT_FALSE(Tag->GetChildTag("shape").IsSet());
    reference_pointer<xbd_tag> Children = Tag->GetChildTag("children");
    ASSERT_TRUE(Children.IsSet());
    ASSERT_EQ(1, Children->GetChildren().GetNumberOfElements());
    reference_pointer<xbd_tag> Child(Children->GetChildren()[0].Get());
    EXPECT_EQ(zel_string("art_stencil_shape"), Child->GetName());
    EXPECT_EQ(zel_string("art_ellipse"), Child->GetChildren()[0]->GetName());
}

TEST(ArtObject, WithoutAStencilChildTheShapePathIsTheObjectsRectangle)
{
    ownership_pointer<art_object> Object(new art_object);
    Object->SetSize(point2d(12, 7));
    std::vector<vertex> Want = {{Move, 0, 0}, {Line, 12, 0}, {Line, 12, 7}, {Line, 0, 7}, {Line, 0, 0}, {Close, 0, 0}};
    EXPECT_EQ(Want, ShapePath(*Object));
}

TEST(ArtObject, TheShapePathOfAStencilChildIsCarriedIntoTheObjectsSpace)
{
    ownership_pointer<art_object> Object(new art_object);
    Object->SetSize(point2d(20, 20));
    reference_pointer<art_object> Stencil = Object->AddChild(MakeStencil(new art_rectangle_shape, 4, 2));
    Stencil->SetSize(point2d(4, 2));
    Stencil->SetLocation(point2d(3, 5));
    std::vector<vertex> Want = {{Move, 3, 5},  {Line, 3, 5},  {Line, 7, 5}, {Line, 7, 5},
                                {Line, 7, 7},  {Line, 7, 7},  {Line, 3, 7}, {Line, 3, 7},
                                {Close | agg::path_flags_ccw, 0, 0}};
    EXPECT_EQ(Want, ShapePath(*Object));
}

namespace {

// Writes down the custom fill calls that reach it.
class custom_fill_owner : public art_object
{
public:
    void DrawCustomFill(reference_pointer<bitmap_interface> Target, reference_pointer<bitmap_interface> Backdrop,
                        agg::trans_affine Matrix, reference_pointer<art_cache>) override
    {
        Calls++;
        SeenTarget = Target.Get();
        SeenBackdrop = Backdrop.Get();
        SeenMatrix = Matrix;
    }

    int Calls = 0;
    bitmap_interface *SeenTarget = nullptr;
    bitmap_interface *SeenBackdrop = nullptr;
    agg::trans_affine SeenMatrix;
};

} // namespace

TEST(ArtDrawParentsCustomFill, DrawingCallsTheParentsCustomFillWithTheSameArguments)
{
    ownership_pointer<custom_fill_owner> Owner(new custom_fill_owner);
    reference_pointer<art_object> Effect =
        Owner->AddChild(ownership_pointer<art_object>(new art_draw_parents_custom_fill));
    ownership_pointer<art_bitmap> Target(new art_bitmap(2, 2));
    ownership_pointer<art_bitmap> Backdrop(new art_bitmap(2, 2));
    agg::trans_affine Matrix(2, 0.5, -0.5, 3, 7, 9);
    Effect->Draw(reference_pointer<bitmap_interface>(Target.Get()), reference_pointer<bitmap_interface>(Backdrop.Get()),
                 Matrix, reference_pointer<art_cache>());
    EXPECT_EQ(1, Owner->Calls);
    EXPECT_EQ(Target.Get(), Owner->SeenTarget);
    EXPECT_EQ(Backdrop.Get(), Owner->SeenBackdrop);
    EXPECT_TRUE(Matrix == Owner->SeenMatrix);
    EXPECT_EQ(zel_string("art_draw_parents_custom_fill"), Effect->GetTagName());
}

TEST(ArtDrawParentsCustomFill, ThePlainObjectsCustomFillDrawsNothing)
{
    ownership_pointer<art_object> Owner(new art_object);
    reference_pointer<art_object> Effect =
        Owner->AddChild(ownership_pointer<art_object>(new art_draw_parents_custom_fill));
    ownership_pointer<art_bitmap> Target(new art_bitmap(2, 2));
    Target->Clear(agg::rgba8(1, 2, 3, 4));
    Effect->Draw(reference_pointer<bitmap_interface>(Target.Get()), reference_pointer<bitmap_interface>(Target.Get()),
                 agg::trans_affine(), reference_pointer<art_cache>());
    EXPECT_EQ("1,2,3,4", PixelAt(*Target, 0, 0));
    EXPECT_EQ("1,2,3,4", PixelAt(*Target, 1, 1));
}

TEST(ArtEllipseShape, AGiantEllipseHasNoMoreVerticesThanOneOfTheLargestFlattenedSize)
{
    ownership_pointer<art_stencil_shape> Largest =
        MakeStencil(new art_ellipse_shape, ArtLargestFlattenedSize, ArtLargestFlattenedSize);
    ownership_pointer<art_stencil_shape> Giant = MakeStencil(new art_ellipse_shape, 1e15, 1e15);
    size_t Count = ShapePath(*Largest).size();
    EXPECT_EQ(Count, ShapePath(*Giant).size());
    EXPECT_LT(Count, 100000u);
    ownership_pointer<art_stencil_shape> Small = MakeStencil(new art_ellipse_shape, 1000, 1000);
    EXPECT_LT(ShapePath(*Small).size(), Count);
}
