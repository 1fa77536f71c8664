#include "art_engine/shapes/art_regular_poly_shape.h"

#include <algorithm>
#include <cmath>

#include "art_engine/geometry/art_attribute_text.h"
#include "zel_basics/debug.h"

art_regular_poly_shape::art_regular_poly_shape()
    : NumSides(3), Mirror(false), MirrorSymmetryAngle(0), Center(0, 0), CenterIsDefault(true)
{
    art_path_point Corner(point2d(0, -1));
    Corner.SetConnectionBefore(ConnectionClosingStraight);
    Corner.SetConnectionAfter(ConnectionClosingStraight);
    Points.Clear();
    Points.Add(Corner);
    GenerateSides();
}

art_regular_poly_shape::art_regular_poly_shape(reference_pointer<xbd_tag> Tag)
    : art_custom_shape(Tag), NumSides(2), Mirror(false), MirrorSymmetryAngle(0), Center(0, 0), CenterIsDefault(true)
{
    NumSides = Tag->GetAttribute("num_sides", "2").ToInt();
    // Fewer than one side would leave nothing to repeat; a count from a damaged document stops where
    // the points would pass MaximumPoints.
    int MostSides = std::max(1, (MaximumPoints - 1) / std::max(1, Points.GetNumberOfElements()));
    NumSides = std::min(std::max(NumSides, 1), MostSides);
    if (Tag->HasAttribute("mirror_symmetry_angle")) {
        Mirror = true;
        MirrorSymmetryAngle = ArtTextToReal(Tag->GetAttribute("mirror_symmetry_angle", ""), 0);
    }
    if (Tag->HasAttribute("center")) {
        Center = ArtTextToPoint(Tag->GetAttribute("center", ""));
        CenterIsDefault = false;
    }
    GenerateSides();
}

ownership_pointer<art_shape> art_regular_poly_shape::Clone()
{
    return ownership_pointer<art_shape>(new art_regular_poly_shape(*this));
}

zel_string art_regular_poly_shape::GetDebugInfo()
{
    return "art_regular_poly_shape";
}

zel_string art_regular_poly_shape::GetTagName()
{
    return "art_custom_radial_shape";
}

zel_string art_regular_poly_shape::GetDisplayName()
{
    return Mirror ? "Mirror Symmetry" : "Symmetry";
}

int art_regular_poly_shape::GetNumRepetitions()
{
    return NumSides;
}

int art_regular_poly_shape::GetNumPointsToMirror()
{
    return Mirror ? GetNumPointsPerSide() : 0;
}

void art_regular_poly_shape::SaveToTag(reference_pointer<xbd_tag> Tag)
{
    if (NumSides != 2)
        Tag->AddAttribute("num_sides", zel_string::FromInt(NumSides));
    if (Mirror)
        Tag->AddAttribute("mirror_symmetry_angle", ArtRealToText(MirrorSymmetryAngle));
    if (!CenterIsDefault)
        Tag->AddAttribute("center", ArtPointToText(Center));
    WritePoints(Tag, GetNumPointsPerSide());
}

agg::trans_affine art_regular_poly_shape::GetSideMatrix(int K)
{
    agg::trans_affine Matrix = agg::trans_affine_translation(-Center.X, -Center.Y);
    if (Mirror && K % 2 == 1) {
        double LineAngle = MirrorSymmetryAngle - 3.141592654 / NumSides;
        Matrix *= agg::trans_affine_rotation(-LineAngle);
        Matrix *= agg::trans_affine_scaling(1, -1);
        Matrix *= agg::trans_affine_rotation(LineAngle);
    }
    int Step = Mirror ? K - K % 2 : K;
    Matrix *= agg::trans_affine_rotation((6.283185308 / NumSides) * Step);
    Matrix *= agg::trans_affine_translation(Center.X, Center.Y);
    return Matrix;
}

void art_regular_poly_shape::GenerateSides()
{
    int N = Points.GetNumberOfElements();
    for (int K = 1; K < NumSides; K++) {
        agg::trans_affine Matrix = GetSideMatrix(K);
        bool Mirrored = Mirror && K % 2 == 1;
        for (int J = 0; J < N; J++) {
            art_path_point Point = Points[Mirrored ? N - 1 - J : J];
            Point.Transform(Matrix);
            if (Mirrored)
                Point.SwapSides();
            Points.Add(Point);
        }
    }
    int NumPoints = Points.GetNumberOfElements();
    int NumPointsPerSide = N;
    TOVAS_ASSERT(NumPointsPerSide * NumSides == NumPoints, this);
    RecalculateBounds();
}

int art_regular_poly_shape::GetPrimaryIndex(int P)
{
    int N = GetNumPointsPerSide();
    if (Mirror && (P / N) % 2 == 1)
        return (P / N + 1) * N - P - 1;
    return P % N;
}

point2d art_regular_poly_shape::GetMirrorHandlePoint()
{
    return point2d(Center.X + std::cos(MirrorSymmetryAngle), Center.Y + std::sin(MirrorSymmetryAngle));
}

int art_regular_poly_shape::GetNumHandles()
{
    return Points.GetNumberOfElements() + (Mirror ? 2 : 1);
}

point2d art_regular_poly_shape::GetHandleLocation(int Index)
{
    int NumPoints = Points.GetNumberOfElements();
    if (Index < NumPoints)
        return art_custom_shape::GetHandleLocation(Index);
    if (Index == NumPoints)
        return PointToObjectSpace(Center);
    return PointToObjectSpace(GetMirrorHandlePoint());
}

void art_regular_poly_shape::SetHandleLocation(int Index, point2d Location, bool)
{
    int NumPoints = Points.GetNumberOfElements();
    int NumPointsPerSide = GetNumPointsPerSide();
    TOVAS_ASSERT(NumPointsPerSide * NumSides == NumPoints, this);
    point2d PointSpace = ObjectToPointSpace(Location);
    if (Index < NumPoints) {
        // The side's copy goes back through its side's matrix to the primary point it repeats.
        agg::trans_affine ToPrimary = GetSideMatrix(Index / NumPointsPerSide);
        ToPrimary.invert();
        ToPrimary.transform(&PointSpace.X, &PointSpace.Y);
        Points[GetPrimaryIndex(Index)].SetPoint(PointSpace);
    } else if (Index == NumPoints) {
        Center = PointSpace;
        CenterIsDefault = false;
    } else {
        MirrorSymmetryAngle = std::atan2(PointSpace.Y - Center.Y, PointSpace.X - Center.X);
    }
    Points.SetNumberOfElements(NumPointsPerSide, art_path_point());
    GenerateSides();
    NotifyChanged();
}

void art_regular_poly_shape::GetHandleToolTip(int Index, zel_string &Title, zel_string &Tip)
{
    int NumPoints = Points.GetNumberOfElements();
    if (Index < GetNumPointsPerSide()) {
        Title = "Primary";
        Tip = "Primary points are the points which are mirrored\nor repeated to form the full symmetrical shape.\n";
    } else if (Index < NumPoints) {
        art_custom_shape::GetHandleToolTip(Index, Title, Tip);
    } else if (Index == NumPoints) {
        Title = "Center Point";
        Tip = "Drag to change the center of the symmetry shape.";
    } else {
        Title = "Mirror Line";
        Tip = "Drag to change the angle of the symmetry shape's mirror-line.";
    }
}

void art_regular_poly_shape::RotateSides(int SideAmount)
{
    TOVAS_ASSERT(SideAmount>=0, this);
    TOVAS_ASSERT(SideAmount<NumSides, this);
    if (SideAmount > 0)
        RotatePoints(SideAmount * GetNumPointsPerSide());
}
