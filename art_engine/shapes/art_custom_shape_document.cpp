// How a custom shape reads and writes its points.
#include "art_engine/shapes/art_custom_shape.h"

#include "art_engine/geometry/art_attribute_text.h"
#include "zel_basics/debug.h"
#include "zel_basics/zel_error.h"

namespace {

// Documents number the connection codes densely; the middle bit of the codes in memory is free.
int32_t ConnectionFromText(const zel_string &Text)
{
    if (Text == "0")
        return ConnectionCut;
    if (Text == "2")
        return ConnectionCurved;
    if (Text == "3")
        return ConnectionClosingStraight;
    if (Text == "4")
        return ConnectionClosingCurved;
    if (Text == "5")
        return ConnectionJoinStraight;
    if (Text == "6")
        return ConnectionJoinCurved;
    return ConnectionStraight;
}

zel_string ConnectionToText(int32_t Code)
{
    switch (Code) {
    case ConnectionCut:
        return "0";
    case ConnectionCurved:
        return "2";
    case ConnectionClosingStraight:
        return "3";
    case ConnectionClosingCurved:
        return "4";
    case ConnectionJoinStraight:
        return "5";
    case ConnectionJoinCurved:
        return "6";
    default:
        return "1";
    }
}

int32_t CurveTypeFromText(const zel_string &Text)
{
    zel_string Letter = Text.Left(1).ToLower();
    if (Letter == "l")
        return CurveTypeLinked;
    if (Letter == "s")
        return CurveTypeSymmetric;
    return CurveTypeCorner;
}

// One side of a point: the starting code by the presence of the vector, then the explicit code.
void ReadSide(reference_pointer<xbd_tag> Tag, const char *CurveName, const char *ConnectionName, point2d &Vector,
              int32_t &Code)
{
    zel_string CurveText = Tag->GetAttribute(CurveName, "");
    Code = ConnectionStraight;
    if (Tag->HasAttribute(CurveName)) {
        Vector = ArtTextToPoint(CurveText);
        Code = ConnectionCurved;
    }
    if (Tag->HasAttribute(ConnectionName))
        Code = ConnectionFromText(Tag->GetAttribute(ConnectionName, ""));
}

} // namespace

art_custom_shape::art_custom_shape(reference_pointer<xbd_tag> Tag) : PointSize(1, 1)
{
    reference_pointer<xbd_tag> OlderPoints = Tag->GetChildTag("points");
    if (OlderPoints.IsSet())
        ReadOlderPoints(OlderPoints);
    else
        ReadPoints(Tag);
    RecalculateBounds();
}

void art_custom_shape::ReadPoints(reference_pointer<xbd_tag> Tag)
{
    array<ownership_pointer<xbd_tag>> &Children = Tag->GetChildren();
    for (int I = 0; I < Children.GetNumberOfElements(); I++) {
        reference_pointer<xbd_tag> PointTag(Children[I].Get());
        if (PointTag->GetName() != "point")
            continue;
        if (!PointTag->HasAttribute("loc"))
            throw zel_error("A point of a custom shape has no location (\"loc\").");
        art_path_point Point(ArtTextToPoint(PointTag->GetAttribute("loc", "")));
        point2d Vector;
        int32_t Code = 0;
        ReadSide(PointTag, "curve_before", "connection_before", Vector, Code);
        Point.SetCurveBefore(Vector);
        Point.SetConnectionBefore(Code);
        Vector = point2d();
        ReadSide(PointTag, "curve_after", "connection_after", Vector, Code);
        Point.SetCurveAfter(Vector);
        Point.SetConnectionAfter(Code);
        Point.SetCurveType(CurveTypeFromText(PointTag->GetAttribute("curve_type", "")));
        Points.Add(Point);
    }
}

// The older list holds on-curve points and control points in the order of the outline, and closes
// on itself by repeating the first point at the end.
void art_custom_shape::ReadOlderPoints(reference_pointer<xbd_tag> PointsTag)
{
    array<point2d> LocalPs;
    art_peek_array<bool> LocalCPs;
    array<ownership_pointer<xbd_tag>> &Children = PointsTag->GetChildren();
    for (int I = 0; I < Children.GetNumberOfElements(); I++) {
        LocalPs.Add(ArtTextToPoint(Children[I]->GetAttribute("loc", "")));
        LocalCPs.Add(Children[I]->HasAttribute("control"));
    }
    if (LocalPs.GetNumberOfElements() == 0) {
        MakeDefaultSquare();
        return;
    }
    TOVAS_ASSERT(LocalPs.GetNumberOfElements()==LocalCPs.GetNumberOfElements(), this);
    TOVAS_ASSERT(LocalCPs.Peek()==false, this);
    for (int I = 0; I < LocalPs.GetNumberOfElements(); I++) {
        if (!LocalCPs[I]) {
            Points.Add(art_path_point(LocalPs[I]));
            continue;
        }
        if (I > 0 && !LocalCPs[I - 1]) {
            art_path_point &Previous = Points.Peek();
            Previous.SetCurveAfter(LocalPs[I] - Previous.GetPoint());
            Previous.SetCurvedAfter(true);
            continue;
        }
        TOVAS_ASSERT(!LocalCPs[I+1], this);
        art_path_point Next(LocalPs[I + 1]);
        Next.SetCurveBefore(LocalPs[I] - LocalPs[I + 1]);
        Next.SetCurvedBefore(true);
        Points.Add(Next);
        I++;
    }
    TOVAS_ASSERT(Points[0].GetPoint() == Points.Peek().GetPoint(), this);
    // The repeated first point brings the control of the closing side, if it has one.
    art_path_point Closing = Points.Peek();
    Points.RemoveLast();
    if (Points.GetNumberOfElements() == 0) {
        MakeDefaultSquare();
        return;
    }
    art_path_point &First = Points[0];
    art_path_point &Last = Points.Peek();
    First.SetCurveBefore(Closing.GetCurveBefore());
    First.SetConnectionBefore(Closing.GetCurvedBefore() ? ConnectionClosingCurved : ConnectionClosingStraight);
    Last.SetConnectionAfter(Last.GetCurvedAfter() ? ConnectionClosingCurved : ConnectionClosingStraight);
}

void art_custom_shape::SaveToTag(reference_pointer<xbd_tag> Tag)
{
    WritePoints(Tag, Points.GetNumberOfElements());
}

void art_custom_shape::WritePoints(reference_pointer<xbd_tag> Tag, int Count)
{
    static const char *CurveTypeTexts[3] = {"c", "l", "s"};
    for (int I = 0; I < Count; I++) {
        const art_path_point &Point = Points[I];
        ownership_pointer<xbd_tag> PointTag = Tag->NewTag("point");
        PointTag->AddAttribute("loc", ArtPointToText(Point.GetPoint()));
        if (Point.GetCurvedBefore())
            PointTag->AddAttribute("curve_before", ArtPointToText(Point.GetCurveBefore()));
        if (Point.GetCurvedAfter())
            PointTag->AddAttribute("curve_after", ArtPointToText(Point.GetCurveAfter()));
        int32_t CurveType = Point.GetCurveType();
        if (CurveType != CurveTypeCorner)
            PointTag->AddAttribute("curve_type", CurveTypeTexts[CurveType >= 0 && CurveType <= 2 ? CurveType : 0]);
        if (!art_path_point::IsConnected(Point.GetConnectionBefore()))
            PointTag->AddAttribute("connection_before", ConnectionToText(Point.GetConnectionBefore()));
        if (!art_path_point::IsConnected(Point.GetConnectionAfter()))
            PointTag->AddAttribute("connection_after", ConnectionToText(Point.GetConnectionAfter()));
        Tag->AddChildTag(PointTag);
    }
}
