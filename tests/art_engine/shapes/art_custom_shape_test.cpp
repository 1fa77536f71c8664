#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "art_engine/pixels/art_bitmap.h"
#include "art_engine/shapes/art_custom_shape.h"
#include "tests/art_engine/shapes/art_shape_test_support.h"

using namespace art_shape_test;

namespace {

// A 4 by 4 box of points with every kind of side: a quadratic from a control after, a cubic, a
// quadratic from a control before, and a straight closing side.
const char *EveryKind = "<art_custom_shape>"
                        "<point loc=\"(0,0)\" curve_after=\"(2,1)\" connection_before=\"3\"/>"
                        "<point loc=\"(4,0)\" curve_after=\"(0,1)\"/>"
                        "<point loc=\"(4,4)\" curve_before=\"(0,-1)\"/>"
                        "<point loc=\"(0,4)\" curve_before=\"(1,0)\" connection_after=\"3\"/>"
                        "</art_custom_shape>";

} // namespace

TEST(ArtCustomShape, ANewShapeIsAClosedSquareFillingTheObject)
{
    ownership_pointer<art_stencil_shape> Stencil = MakeStencil(new art_custom_shape, 10, 20);
    std::vector<vertex> Want = {{Move, 0, 0}, {Line, 10, 0}, {Line, 10, 20}, {Line, 0, 20}, {Line, 0, 0}, {Close, 0, 0}};
    EXPECT_EQ(Want, ShapePath(*Stencil));
    art_custom_shape &Shape = ShapeOf<art_custom_shape>(*Stencil);
    EXPECT_EQ(4, Shape.GetNumPoints());
    EXPECT_EQ(point2d(0.25, 0.25), Shape.GetPathPoint(0).GetControlAfter());
    EXPECT_EQ(point2d(0.75, 0.75), Shape.GetPathPoint(2).GetControlBefore());
    EXPECT_EQ(ConnectionClosingStraight, Shape.GetPathPoint(0).GetConnectionBefore());
    EXPECT_EQ(ConnectionClosingStraight, Shape.GetPathPoint(3).GetConnectionAfter());
    EXPECT_EQ(point2d(0, 0), Shape.GetPointOrigin());
    EXPECT_EQ(point2d(1, 1), Shape.GetPointSize());
}

TEST(ArtCustomShape, EverySegmentKindGivesItsCommands)
{
    ownership_pointer<art_stencil_shape> Stencil = StencilFromText(EveryKind, 4, 4);
    std::vector<vertex> Want = {{Move, 0, 0},                                 // first point
                                {Quad, 2, 1},   {Quad, 4, 0},                 // curved after, straight before
                                {Cubic, 4, 1},  {Cubic, 4, 3}, {Cubic, 4, 4}, // curved on both sides
                                {Quad, 1, 4},   {Quad, 0, 4},                 // straight after, curved before
                                {Line, 0, 0},   {Close, 0, 0}};               // the closing side
    EXPECT_EQ(Want, ShapePath(*Stencil));
}

TEST(ArtCustomShape, AShapeStretchedToTwiceItsWidthDrawsTwiceAsWide)
{
    ownership_pointer<art_stencil_shape> Stencil = StencilFromText(EveryKind, 4, 4);
    Stencil->SetSize(point2d(8, 4));
    std::vector<vertex> Want = {{Move, 0, 0}, {Quad, 4, 1},  {Quad, 8, 0}, {Cubic, 8, 1}, {Cubic, 8, 3},
                                {Cubic, 8, 4}, {Quad, 2, 4}, {Quad, 0, 4}, {Line, 0, 0},  {Close, 0, 0}};
    EXPECT_EQ(Want, ShapePath(*Stencil));
    EXPECT_EQ(point2d(4, 0), ShapeOf<art_custom_shape>(*Stencil).GetPathPoint(1).GetPoint());
    EXPECT_EQ(point2d(4, 4), ShapeOf<art_custom_shape>(*Stencil).GetPointSize());
}

TEST(ArtCustomShape, ACutInTheMiddleGivesTwoSeparateFigures)
{
    ownership_pointer<art_stencil_shape> Stencil =
        StencilFromText("<art_custom_shape>"
                      "<point loc=\"(0,0)\" connection_before=\"3\"/><point loc=\"(2,0)\"/>"
                      "<point loc=\"(0,2)\" connection_after=\"0\"/>"
                      "<point loc=\"(4,4)\" connection_before=\"0\"/><point loc=\"(4,2)\"/>"
                      "<point loc=\"(2,4)\" connection_after=\"0\"/>"
                      "</art_custom_shape>",
                      4, 4);
    // The first run starts with a closing join and is closed; the second is open.
    std::vector<vertex> Want = {{Move, 0, 0}, {Line, 2, 0}, {Line, 0, 2}, {Line, 0, 0}, {Close, 0, 0},
                                {Move, 4, 4}, {Line, 4, 2}, {Line, 2, 4}};
    EXPECT_EQ(Want, ShapePath(*Stencil));
}

TEST(ArtCustomShape, ARunOffTheEndOfTheListIsCutThere)
{
    // Every side says "straight", the last point's too, though nothing follows it.
    ownership_pointer<art_stencil_shape> Stencil =
        StencilFromText("<art_custom_shape><point loc=\"(0,0)\"/><point loc=\"(3,0)\"/><point loc=\"(3,3)\"/>"
                      "</art_custom_shape>",
                      3, 3);
    std::vector<vertex> Want = {{Move, 0, 0}, {Line, 3, 0}, {Line, 3, 3}};
    EXPECT_EQ(Want, ShapePath(*Stencil));
    EXPECT_EQ(ConnectionCut, ShapeOf<art_custom_shape>(*Stencil).GetPathPoint(2).GetConnectionAfter());
}

TEST(ArtCustomShape, ASingleCurvedSideNextToAStraightOneIsQuadratic)
{
    ownership_pointer<art_stencil_shape> Stencil =
        StencilFromText("<art_custom_shape><point loc=\"(0,0)\" connection_before=\"3\"/>"
                      "<point loc=\"(2,0)\" curve_after=\"(0,1)\"/>"
                      "<point loc=\"(2,2)\" connection_after=\"3\"/></art_custom_shape>",
                      2, 2);
    std::vector<vertex> Want = {{Move, 0, 0}, {Line, 2, 0}, {Quad, 2, 1}, {Quad, 2, 2}, {Line, 0, 0}, {Close, 0, 0}};
    EXPECT_EQ(Want, ShapePath(*Stencil));
}

TEST(ArtCustomShape, ACurvedClosingSideIsCubicWhenBothEndsAreCurved)
{
    ownership_pointer<art_stencil_shape> Stencil =
        StencilFromText("<art_custom_shape><point loc=\"(0,0)\" curve_before=\"(1,1)\" connection_before=\"4\"/>"
                      "<point loc=\"(4,0)\"/><point loc=\"(4,4)\"/>"
                      "<point loc=\"(0,4)\" curve_after=\"(0,-1)\" connection_after=\"4\"/></art_custom_shape>",
                      4, 4);
    std::vector<vertex> Want = {{Move, 0, 0},  {Line, 4, 0},  {Line, 4, 4},  {Line, 0, 4},
                                {Cubic, 0, 3}, {Cubic, 1, 1}, {Cubic, 0, 0}, {Close, 0, 0}};
    EXPECT_EQ(Want, ShapePath(*Stencil));
    EXPECT_EQ(ConnectionClosingCurved, ShapeOf<art_custom_shape>(*Stencil).GetPathPoint(0).GetConnectionBefore());
}

TEST(ArtCustomShape, TheThirdKindOfJoinClosesLikeTheSecond)
{
    ownership_pointer<art_stencil_shape> Stencil =
        StencilFromText("<art_custom_shape><point loc=\"(0,0)\" curve_before=\"(0,1)\" connection_before=\"6\"/>"
                      "<point loc=\"(2,0)\"/><point loc=\"(2,2)\" connection_after=\"5\"/></art_custom_shape>",
                      2, 2);
    art_custom_shape &Shape = ShapeOf<art_custom_shape>(*Stencil);
    EXPECT_EQ(ConnectionJoinCurved, Shape.GetPathPoint(0).GetConnectionBefore());
    EXPECT_EQ(ConnectionJoinStraight, Shape.GetPathPoint(2).GetConnectionAfter());
    std::vector<vertex> Want = {{Move, 0, 0}, {Line, 2, 0}, {Line, 2, 2}, {Quad, 0, 1}, {Quad, 0, 0}, {Close, 0, 0}};
    EXPECT_EQ(Want, ShapePath(*Stencil));
}

TEST(ArtCustomShape, EveryConnectionCodeReadsAndWritesItsDocumentValue)
{
    struct code
    {
        const char *Text;
        int32_t Code;
    };
    for (code Case : {code{"0", 0}, code{"1", 1}, code{"2", 2}, code{"3", 5}, code{"4", 6}, code{"5", 9},
                      code{"6", 10}, code{"7", 1}, code{"x", 1}}) {
        std::string Text = std::string("<art_custom_shape><point loc=\"(0,0)\" connection_before=\"") + Case.Text +
                           "\" connection_after=\"" + Case.Text + "\"/></art_custom_shape>";
        ownership_pointer<art_shape> Shape = ShapeFromText(Text.c_str());
        art_custom_shape &Custom = *dynamic_cast<art_custom_shape *>(Shape.Get());
        EXPECT_EQ(Case.Code, Custom.GetPathPoint(0).GetConnectionBefore()) << Case.Text;
        EXPECT_EQ(Case.Code, Custom.GetPathPoint(0).GetConnectionAfter()) << Case.Text;
        std::string Saved = SavedShape(Custom);
        std::string Written;
        if (Case.Code == 2 || Case.Code == 6 || Case.Code == 10)
            Written += " curve_before=\"(0,0)\" curve_after=\"(0,0)\"";
        if (Case.Code != 1 && Case.Code != 2)
            Written += std::string(" connection_before=\"") + Case.Text + "\" connection_after=\"" + Case.Text + "\"";
        EXPECT_EQ("<art_custom_shape><point loc=\"(0,0)\"" + Written + "></point></art_custom_shape>", Saved)
            << Case.Text;
    }
}

TEST(ArtCustomShape, AnUnknownCurveTypeLetterReadsAsACorner)
{
    ownership_pointer<art_shape> Shape =
        ShapeFromText("<art_custom_shape><point loc=\"(0,0)\" curve_type=\"x\"/><point loc=\"(1,0)\" curve_type=\"L\"/>"
                      "<point loc=\"(1,1)\" curve_type=\"smooth\"/><point loc=\"(0,1)\" curve_type=\"c\"/>"
                      "</art_custom_shape>");
    art_custom_shape &Custom = *dynamic_cast<art_custom_shape *>(Shape.Get());
    EXPECT_EQ(CurveTypeCorner, Custom.GetPathPoint(0).GetCurveType());
    EXPECT_EQ(CurveTypeLinked, Custom.GetPathPoint(1).GetCurveType());
    EXPECT_EQ(CurveTypeSymmetric, Custom.GetPathPoint(2).GetCurveType());
    EXPECT_EQ(CurveTypeCorner, Custom.GetPathPoint(3).GetCurveType());
}

TEST(ArtCustomShape, ZeroObjectWidthKeepsPointSpaceFinite)
{
    ownership_pointer<art_stencil_shape> Stencil = StencilFromText(EveryKind, 0, 4);
    art_custom_shape &Shape = ShapeOf<art_custom_shape>(*Stencil);
    // The width counts as 1e-9: point x 4 of a box 4 wide is 1e-9 in the object.
    EXPECT_EQ(point2d(1e-9, 0), Shape.GetHandleLocation(1));
    for (const vertex &V : ShapePath(*Stencil)) {
        EXPECT_TRUE(std::isfinite(V.X));
        EXPECT_TRUE(std::isfinite(V.Y));
    }
    Shape.SetPoint(1, point2d(0, 0));
    EXPECT_EQ(point2d(0, 0), Shape.GetHandleLocation(1));
    EXPECT_TRUE(std::isfinite(Shape.GetPathPoint(1).GetPoint().X));
}

TEST(ArtCustomShape, AnExplicitCurvedCodeWithoutAVectorGivesAZeroVector)
{
    ownership_pointer<art_stencil_shape> Stencil =
        StencilFromText("<art_custom_shape><point loc=\"(0,0)\" connection_before=\"3\"/>"
                      "<point loc=\"(2,0)\" connection_before=\"2\"/>"
                      "<point loc=\"(2,2)\" connection_after=\"3\"/></art_custom_shape>",
                      2, 2);
    art_custom_shape &Shape = ShapeOf<art_custom_shape>(*Stencil);
    EXPECT_TRUE(Shape.GetPathPoint(1).GetCurvedBefore());
    EXPECT_EQ(point2d(0, 0), Shape.GetPathPoint(1).GetCurveBefore());
    std::vector<vertex> Want = {{Move, 0, 0}, {Quad, 2, 0}, {Quad, 2, 0}, {Line, 2, 2}, {Line, 0, 0}, {Close, 0, 0}};
    EXPECT_EQ(Want, ShapePath(*Stencil));
    EXPECT_EQ("<art_custom_shape><point loc=\"(0,0)\" connection_before=\"3\"></point>"
              "<point loc=\"(2,0)\" curve_before=\"(0,0)\"></point>"
              "<point loc=\"(2,2)\" connection_after=\"3\"></point></art_custom_shape>",
              SavedShape(Shape));
}

TEST(ArtCustomShape, TheDocumentIsWrittenBackAttributeForAttribute)
{
    ownership_pointer<art_shape> Shape =
        ShapeFromText("<art_custom_shape>"
                      "<point loc=\"(0,0)\" curve_before=\"(1,1)\" curve_after=\"(2,1)\" curve_type=\"s\" "
                      "connection_before=\"4\"/>"
                      "<point loc=\"(4,0.5)\" curve_after=\"(0,1)\" curve_type=\"l\"/>"
                      "<point loc=\"(4,4)\" curve_before=\"(0,-1)\" connection_after=\"0\"/>"
                      "</art_custom_shape>");
    EXPECT_EQ("<art_custom_shape>"
              "<point loc=\"(0,0)\" curve_before=\"(1,1)\" curve_after=\"(2,1)\" curve_type=\"s\" "
              "connection_before=\"4\"></point>"
              "<point loc=\"(4,0.5)\" curve_after=\"(0,1)\" curve_type=\"l\"></point>"
              "<point loc=\"(4,4)\" curve_before=\"(0,-1)\" connection_after=\"0\"></point>"
              "</art_custom_shape>",
              SavedShape(*Shape));
}

TEST(ArtCustomShape, APointWithoutLocationIsAnErrorInWords)
{
    EXPECT_EQ("A point of a custom shape has no location (\"loc\").",
              ZEL_ERROR_MESSAGE(ShapeFromText("<art_custom_shape><point curve_type=\"s\"/></art_custom_shape>")));
}

TEST(ArtCustomShape, TheOlderPointListClosesOnItself)
{
    ownership_pointer<art_stencil_shape> Stencil =
        StencilFromText("<art_custom_shape><points>"
                      "<p loc=\"(0,0)\"/><p loc=\"(1,0)\" control=\"\"/><p loc=\"(4,0)\"/>"
                      "<p loc=\"(4,3)\" control=\"\"/><p loc=\"(4,4)\"/>"
                      "<p loc=\"(1,4)\" control=\"\"/><p loc=\"(0,3)\" control=\"\"/><p loc=\"(0,0)\"/>"
                      "</points></art_custom_shape>",
                      4, 4);
    art_custom_shape &Shape = ShapeOf<art_custom_shape>(*Stencil);
    ASSERT_EQ(3, Shape.GetNumPoints());
    // (1,0) and (4,3) follow points and curve their after sides; (1,4) follows (4,4), and (0,3)
    // precedes the repeated first point, so the closing side is cubic.
    std::vector<vertex> Want = {{Move, 0, 0}, {Quad, 1, 0}, {Quad, 4, 0}, {Quad, 4, 3}, {Quad, 4, 4},
            {Cubic, 1, 4}, {Cubic, 0, 3}, {Cubic, 0, 0}, {Close, 0, 0}};
    EXPECT_EQ(Want, ShapePath(*Stencil));
    EXPECT_EQ("<art_custom_shape>"
              "<point loc=\"(0,0)\" curve_before=\"(0,3)\" curve_after=\"(1,0)\" connection_before=\"4\"></point>"
              "<point loc=\"(4,0)\" curve_after=\"(0,3)\"></point>"
              "<point loc=\"(4,4)\" curve_after=\"(-3,0)\" connection_after=\"4\"></point>"
              "</art_custom_shape>",
              SavedShape(Shape));
}

TEST(ArtCustomShape, AnEmptyOlderPointListGivesTheSquare)
{
    ownership_pointer<art_stencil_shape> Stencil =
        StencilFromText("<art_custom_shape><points/></art_custom_shape>", 2, 2);
    std::vector<vertex> Want = {{Move, 0, 0}, {Line, 2, 0}, {Line, 2, 2}, {Line, 0, 2}, {Line, 0, 0}, {Close, 0, 0}};
    EXPECT_EQ(Want, ShapePath(*Stencil));
}

TEST(ArtCustomShape, TheOlderListMustNotEndWithAControlPoint)
{
    std::string Message = ZEL_ERROR_MESSAGE(ShapeFromText(
        "<art_custom_shape><points><p loc=\"(0,0)\"/><p loc=\"(1,0)\" control=\"\"/></points></art_custom_shape>"));
    EXPECT_NE(std::string::npos, Message.find("'LocalCPs.Peek()==false' is false")) << Message;
}

TEST(ArtCustomShape, TheOlderListMustCloseOnItsFirstPoint)
{
    std::string Message = ZEL_ERROR_MESSAGE(ShapeFromText(
        "<art_custom_shape><points><p loc=\"(0,0)\"/><p loc=\"(1,0)\"/><p loc=\"(1,1)\"/></points></art_custom_shape>"));
    EXPECT_NE(std::string::npos, Message.find("'Points[0].GetPoint() == Points.Peek().GetPoint()' is false"))
        << Message;
}

TEST(ArtCustomShape, ThreeControlPointsInARowAreRefused)
{
    std::string Message = ZEL_ERROR_MESSAGE(
        ShapeFromText("<art_custom_shape><points><p loc=\"(0,0)\"/><p loc=\"(1,0)\" control=\"\"/>"
                      "<p loc=\"(2,0)\" control=\"\"/><p loc=\"(3,0)\" control=\"\"/><p loc=\"(0,0)\"/>"
                      "</points></art_custom_shape>"));
    EXPECT_NE(std::string::npos, Message.find("'!LocalCPs[I+1]' is false")) << Message;
}

TEST(ArtCustomShape, TheBoxCoversTheControlsOfCurvedSidesOnly)
{
    ownership_pointer<art_shape> Shape =
        ShapeFromText("<art_custom_shape><point loc=\"(1,1)\" curve_after=\"(-3,0)\"/>"
                      "<point loc=\"(2,3)\" connection_before=\"0\"/>"
                      "</art_custom_shape>");
    art_custom_shape &Custom = *dynamic_cast<art_custom_shape *>(Shape.Get());
    EXPECT_EQ(point2d(-2, 1), Custom.GetPointOrigin());
    EXPECT_EQ(point2d(4, 2), Custom.GetPointSize());
    // The same control on a straight side does not count.
    Custom.SetSideCurved(0, false);
    EXPECT_EQ(point2d(1, 1), Custom.GetPointOrigin());
    EXPECT_EQ(point2d(1, 2), Custom.GetPointSize());
}

TEST(ArtCustomShape, ABoxWithoutExtentKeepsASizeOf1eMinus9)
{
    ownership_pointer<art_shape> Shape =
        ShapeFromText("<art_custom_shape><point loc=\"(1,1)\"/><point loc=\"(1,5)\"/></art_custom_shape>");
    art_custom_shape &Custom = *dynamic_cast<art_custom_shape *>(Shape.Get());
    EXPECT_EQ(point2d(1, 1), Custom.GetPointOrigin());
    EXPECT_EQ(point2d(1e-9, 4), Custom.GetPointSize());
}

TEST(ArtCustomShape, WithoutPointsTheBoxIsTheUnitAndThePathEmpty)
{
    ownership_pointer<art_stencil_shape> Stencil = StencilFromText("<art_custom_shape/>", 5, 5);
    EXPECT_EQ(point2d(0, 0), ShapeOf<art_custom_shape>(*Stencil).GetPointOrigin());
    EXPECT_EQ(point2d(1, 1), ShapeOf<art_custom_shape>(*Stencil).GetPointSize());
    EXPECT_TRUE(ShapePath(*Stencil).empty());
    EXPECT_EQ(0, ShapeOf<art_custom_shape>(*Stencil).GetNumHandles());
}

TEST(ArtCustomShape, AnswersAsACustomShape)
{
    art_custom_shape Shape;
    EXPECT_EQ(zel_string("art_custom_shape"), Shape.GetTagName());
    EXPECT_EQ(zel_string("Custom"), Shape.GetDisplayName());
    EXPECT_EQ(zel_string("art_custom_shape::GetDebugInfo()"), Shape.GetDebugInfo());
    EXPECT_TRUE(Shape.HasSharpCorners());
    EXPECT_EQ(4, Shape.GetNumHandles());
    EXPECT_EQ(1, Shape.GetNumRepetitions());
    EXPECT_EQ(4, Shape.GetNumPointsPerSide());
    EXPECT_EQ(0, Shape.GetNumPointsToMirror());
}

TEST(ArtCustomShape, ALinkedControlTurnsTheOtherKeepingItsLength)
{
    art_path_point Point(point2d(1, 1));
    Point.SetCurveType(CurveTypeLinked);
    Point.SetConnectionBefore(ConnectionCurved);
    Point.SetConnectionAfter(ConnectionCurved);
    Point.SetCurveBefore(point2d(0, 2));
    Point.SetControlAfter(point2d(4, 5));
    // The moved vector is (3, 4), length 5; the other keeps length 2 on the opposite direction.
    EXPECT_EQ(point2d(3, 4), Point.GetCurveAfter());
    EXPECT_NEAR(-1.2, Point.GetCurveBefore().X, 1e-15);
    EXPECT_NEAR(-1.6, Point.GetCurveBefore().Y, 1e-15);
    // A zero vector has no direction: the other stays.
    Point.SetControlAfter(point2d(1, 1));
    EXPECT_NEAR(-1.2, Point.GetCurveBefore().X, 1e-15);
}

TEST(ArtCustomShape, ASymmetricControlMakesTheOtherItsNegative)
{
    art_path_point Point(point2d(1, 1));
    Point.SetCurveType(CurveTypeSymmetric);
    Point.SetConnectionAfter(ConnectionClosingCurved);
    Point.SetControlBefore(point2d(3, 0));
    EXPECT_EQ(ConnectionCurved, Point.GetConnectionBefore());
    EXPECT_EQ(point2d(2, -1), Point.GetCurveBefore());
    EXPECT_EQ(point2d(-2, 1), Point.GetCurveAfter());
}

TEST(ArtCustomShape, ACornerOrAStraightOtherSideDoesNotFollow)
{
    art_path_point Corner(point2d(0, 0));
    Corner.SetConnectionBefore(ConnectionCurved);
    Corner.SetCurveBefore(point2d(1, 1));
    Corner.SetControlAfter(point2d(5, 0));
    EXPECT_EQ(point2d(1, 1), Corner.GetCurveBefore());
    EXPECT_EQ(ConnectionCurved, Corner.GetConnectionAfter());
    art_path_point Straight(point2d(0, 0));
    Straight.SetCurveType(CurveTypeSymmetric);
    Straight.SetConnectionBefore(ConnectionJoinStraight);
    Straight.SetCurveBefore(point2d(1, 1));
    Straight.SetControlAfter(point2d(5, 0));
    EXPECT_EQ(point2d(1, 1), Straight.GetCurveBefore());
}

TEST(ArtCustomShape, CurvedAndStraightKeepTheKindOfJoin)
{
    EXPECT_EQ(2, art_path_point::MakeCurved(0));
    EXPECT_EQ(2, art_path_point::MakeCurved(1));
    EXPECT_EQ(6, art_path_point::MakeCurved(5));
    EXPECT_EQ(10, art_path_point::MakeCurved(9));
    EXPECT_EQ(1, art_path_point::MakeStraight(0));
    EXPECT_EQ(1, art_path_point::MakeStraight(2));
    EXPECT_EQ(5, art_path_point::MakeStraight(6));
    EXPECT_EQ(9, art_path_point::MakeStraight(10));
}

TEST(ArtCustomShape, SettingAControlInObjectSpaceCurvesTheSide)
{
    ownership_pointer<art_stencil_shape> Stencil = MakeStencil(new art_custom_shape, 10, 10);
    art_custom_shape &Shape = ShapeOf<art_custom_shape>(*Stencil);
    Shape.SetPointCurve(0, true, point2d(5, 5));
    EXPECT_EQ(ConnectionCurved, Shape.GetPathPoint(0).GetConnectionAfter());
    EXPECT_EQ(point2d(0.5, 0.5), Shape.GetPathPoint(0).GetCurveAfter());
    std::vector<vertex> Want = {{Move, 0, 0},  {Quad, 5, 5},   {Quad, 10, 0}, {Line, 10, 10},
                                {Line, 0, 10}, {Line, 0, 0},   {Close, 0, 0}};
    EXPECT_EQ(Want, ShapePath(*Stencil));
}

TEST(ArtCustomShape, MovingPointsGoesByAnObjectSpaceDeltaAndRefitsTheBox)
{
    ownership_pointer<art_stencil_shape> Stencil = MakeStencil(new art_custom_shape, 10, 20);
    art_custom_shape &Shape = ShapeOf<art_custom_shape>(*Stencil);
    array<int> Indices;
    Indices.Add(1);
    Indices.Add(2);
    Shape.MovePoints(Indices, point2d(10, 0));
    // In point space the right side moved by 1; the box is now 2 wide and fills the object again.
    EXPECT_EQ(point2d(2, 0), Shape.GetPathPoint(1).GetPoint());
    EXPECT_EQ(point2d(2, 1), Shape.GetPointSize());
    EXPECT_EQ(point2d(10, 0), Shape.GetHandleLocation(1));
    std::string Message = ZEL_ERROR_MESSAGE(Shape.MovePoints(Indices, point2d(std::nan(""), 0)));
    EXPECT_NE(std::string::npos, Message.find("'isfinite(ObjectSpaceDelta.X)' is false")) << Message;
}

TEST(ArtCustomShape, AHandleMovesItsPoint)
{
    ownership_pointer<art_stencil_shape> Stencil = MakeStencil(new art_custom_shape, 10, 10);
    art_custom_shape &Shape = ShapeOf<art_custom_shape>(*Stencil);
    Shape.SetHandleLocation(2, point2d(5, 5), false);
    EXPECT_EQ(point2d(0.5, 0.5), Shape.GetPathPoint(2).GetPoint());
    // The box is still the unit square, held by the other three corners.
    EXPECT_EQ(point2d(5, 5), Shape.GetHandleLocation(2));
}

TEST(ArtCustomShape, InsertingAPointSplitsTheSide)
{
    ownership_pointer<art_stencil_shape> Stencil = MakeStencil(new art_custom_shape, 10, 10);
    art_custom_shape &Shape = ShapeOf<art_custom_shape>(*Stencil);
    Shape.InsertPoint(3, point2d(0, 5));
    ASSERT_EQ(5, Shape.GetNumPoints());
    EXPECT_EQ(ConnectionStraight, Shape.GetPathPoint(3).GetConnectionAfter());
    EXPECT_EQ(ConnectionClosingStraight, Shape.GetPathPoint(4).GetConnectionAfter());
    std::vector<vertex> Want = {{Move, 0, 0}, {Line, 10, 0}, {Line, 10, 10}, {Line, 0, 10},
                                {Line, 0, 5}, {Line, 0, 0},  {Close, 0, 0}};
    EXPECT_EQ(Want, ShapePath(*Stencil));
    Shape.InsertPoint(0, point2d(5, 0));
    EXPECT_EQ(point2d(0.5, 0), Shape.GetPathPoint(1).GetPoint());
}

TEST(ArtCustomShape, DeletingTheFirstPointPassesItsClosingJoinOn)
{
    ownership_pointer<art_stencil_shape> Stencil = MakeStencil(new art_custom_shape, 10, 10);
    art_custom_shape &Shape = ShapeOf<art_custom_shape>(*Stencil);
    Shape.DeletePoint(0);
    ASSERT_EQ(3, Shape.GetNumPoints());
    EXPECT_EQ(ConnectionClosingStraight, Shape.GetPathPoint(0).GetConnectionBefore());
    std::vector<vertex> Want = {{Move, 10, 0}, {Line, 10, 10}, {Line, 0, 10}, {Line, 10, 0}, {Close, 0, 0}};
    EXPECT_EQ(Want, ShapePath(*Stencil));
}

TEST(ArtCustomShape, CuttingAClosedRunOpensItAtThePoint)
{
    ownership_pointer<art_stencil_shape> Stencil = MakeStencil(new art_custom_shape, 10, 10);
    art_custom_shape &Shape = ShapeOf<art_custom_shape>(*Stencil);
    Shape.CutBefore(2);
    std::vector<vertex> Want = {{Move, 10, 10}, {Line, 0, 10}, {Line, 0, 0}, {Line, 10, 0}};
    EXPECT_EQ(Want, ShapePath(*Stencil));
    EXPECT_TRUE(Shape.GetPointIsEndPoint(0));
    EXPECT_TRUE(Shape.GetPointIsEndPoint(3));
    EXPECT_FALSE(Shape.GetPointIsEndPoint(1));
    // An open run splits in two.
    Shape.CutBefore(2);
    Want = {{Move, 10, 10}, {Line, 0, 10}, {Move, 0, 0}, {Line, 10, 0}};
    EXPECT_EQ(Want, ShapePath(*Stencil));
    std::string Message = ZEL_ERROR_MESSAGE(Shape.CutBefore(0));
    EXPECT_NE(std::string::npos, Message.find("'CutBeforePoint>0' is false")) << Message;
}

TEST(ArtCustomShape, JoiningTwoOpenRunsMakesOne)
{
    ownership_pointer<art_stencil_shape> Stencil = MakeStencil(new art_custom_shape, 10, 10);
    art_custom_shape &Shape = ShapeOf<art_custom_shape>(*Stencil);
    Shape.CutBefore(2);
    Shape.CutBefore(2);
    // Runs (10,10)-(0,10) and (0,0)-(10,0); the start of the first follows the end of the second.
    Shape.JoinRuns(0, 3);
    std::vector<vertex> Want = {{Move, 0, 0}, {Line, 10, 0}, {Line, 10, 10}, {Line, 0, 10}};
    EXPECT_EQ(Want, ShapePath(*Stencil));
    std::string Message = ZEL_ERROR_MESSAGE(Shape.JoinRuns(1, 2));
    EXPECT_NE(std::string::npos, Message.find("'GetPointIsEndPoint(P1)' is false")) << Message;
    Message = ZEL_ERROR_MESSAGE(Shape.JoinRuns(0, 3));
    EXPECT_NE(std::string::npos, Message.find("'P2<StartP1 || P2>EndP1' is false")) << Message;
}

TEST(ArtCustomShape, RotatingTheListMovesTheClosingJoin)
{
    ownership_pointer<art_stencil_shape> Stencil = MakeStencil(new art_custom_shape, 10, 10);
    art_custom_shape &Shape = ShapeOf<art_custom_shape>(*Stencil);
    Shape.RotatePoints(1);
    std::vector<vertex> Want = {{Move, 10, 0}, {Line, 10, 10}, {Line, 0, 10}, {Line, 0, 0},
                                {Line, 10, 0}, {Close, 0, 0}};
    EXPECT_EQ(Want, ShapePath(*Stencil));
    EXPECT_EQ(ConnectionStraight, Shape.GetPathPoint(3).GetConnectionBefore());
    EXPECT_NE(std::string::npos, ZEL_ERROR_MESSAGE(Shape.RotatePoints(0)).find("'Amount>0' is false"));
    EXPECT_NE(std::string::npos, ZEL_ERROR_MESSAGE(Shape.RotatePoints(4)).find("'Amount<N' is false"));
}

TEST(ArtCustomShape, AStencilWithAHoleKeepsItByEvenOdd)
{
    ownership_pointer<art_stencil_shape> Stencil =
        StencilFromText("<art_custom_shape>"
                      "<point loc=\"(0,0)\" connection_before=\"3\"/><point loc=\"(6,0)\"/><point loc=\"(6,6)\"/>"
                      "<point loc=\"(0,6)\" connection_after=\"3\"/>"
                      "<point loc=\"(2,2)\" connection_before=\"3\"/><point loc=\"(4,2)\"/><point loc=\"(4,4)\"/>"
                      "<point loc=\"(2,4)\" connection_after=\"3\"/>"
                      "</art_custom_shape>",
                      6, 6);
    ownership_pointer<art_bitmap> Bitmap(new art_bitmap(6, 6));
    Bitmap->Clear(agg::rgba8(0, 0, 0, 0));
    Stencil->Draw(reference_pointer<bitmap_interface>(Bitmap.Get()), reference_pointer<bitmap_interface>(Bitmap.Get()),
                  agg::trans_affine(), reference_pointer<art_cache>());
    for (int Y = 0; Y < 6; Y++)
        for (int X = 0; X < 6; X++) {
            bool Hole = X >= 2 && X < 4 && Y >= 2 && Y < 4;
            agg::rgba8 P = Bitmap->GetPixelRow(Y)[X];
            EXPECT_EQ(Hole ? 0 : 255, int(P.a)) << X << "," << Y;
            EXPECT_EQ(Hole ? 0 : 255, int(P.r)) << X << "," << Y;
        }
}
