#include "art_engine/shapes/art_custom_shape.h"

#include <cmath>

#include "art_engine/objects/art_object.h"
#include "zel_basics/debug.h"

using std::isfinite;

art_custom_shape::art_custom_shape() : PointSize(1, 1)
{
    MakeDefaultSquare();
}

void art_custom_shape::MakeDefaultSquare()
{
    static const point2d Corners[4] = {point2d(0, 0), point2d(1, 0), point2d(1, 1), point2d(0, 1)};
    Points.Clear();
    for (int I = 0; I < 4; I++) {
        art_path_point Point(Corners[I]);
        // Controls a quarter of the way in, ready for when a side is made curved.
        point2d Inward((0.5 - Corners[I].X) / 2, (0.5 - Corners[I].Y) / 2);
        Point.SetCurveBefore(Inward);
        Point.SetCurveAfter(Inward);
        Points.Add(Point);
    }
    Points[0].SetConnectionBefore(ConnectionClosingStraight);
    Points[3].SetConnectionAfter(ConnectionClosingStraight);
    RecalculateBounds();
}

ownership_pointer<art_shape> art_custom_shape::Clone()
{
    return ownership_pointer<art_shape>(new art_custom_shape(*this));
}

zel_string art_custom_shape::GetDebugInfo()
{
    return "art_custom_shape::GetDebugInfo()";
}

zel_string art_custom_shape::GetTagName()
{
    return "art_custom_shape";
}

zel_string art_custom_shape::GetDisplayName()
{
    return "Custom";
}

void art_custom_shape::SetPathPoints(const array<art_path_point> &NewPoints)
{
    Points.Clear();
    for (int I = 0; I < NewPoints.GetNumberOfElements(); I++)
        Points.Add(NewPoints[I]);
    Changed();
}

void art_custom_shape::Changed()
{
    RecalculateBounds();
    NotifyChanged();
}

point2d art_custom_shape::GetConversionSize() const
{
    point2d Size = GetOwnerSize();
    return point2d(Size.X == 0 ? 1e-9 : Size.X, Size.Y == 0 ? 1e-9 : Size.Y);
}

point2d art_custom_shape::ObjectToPointSpace(point2d ObjectSpace) const
{
    point2d Size = GetConversionSize();
    point2d PointSpace(ObjectSpace.X / Size.X * PointSize.X + PointOrigin.X,
                       ObjectSpace.Y / Size.Y * PointSize.Y + PointOrigin.Y);
    TOVAS_ASSERT(isfinite(PointSpace.X), nullptr);
    TOVAS_ASSERT(isfinite(PointSpace.Y), nullptr);
    return PointSpace;
}

point2d art_custom_shape::PointToObjectSpace(point2d PointSpace) const
{
    point2d Size = GetConversionSize();
    point2d ObjectSpace((PointSpace.X - PointOrigin.X) * (Size.X / PointSize.X),
                        (PointSpace.Y - PointOrigin.Y) * (Size.Y / PointSize.Y));
    TOVAS_ASSERT(isfinite(ObjectSpace.X), nullptr);
    TOVAS_ASSERT(isfinite(ObjectSpace.Y), nullptr);
    return ObjectSpace;
}

void art_custom_shape::RecalculateBounds()
{
    if (Points.GetNumberOfElements() == 0) {
        PointOrigin = point2d(0, 0);
        PointSize = point2d(1, 1);
        return;
    }
    point2d Low = Points[0].GetPoint();
    point2d High = Low;
    auto Cover = [&Low, &High](point2d P) {
        Low = point2d(P.X < Low.X ? P.X : Low.X, P.Y < Low.Y ? P.Y : Low.Y);
        High = point2d(P.X > High.X ? P.X : High.X, P.Y > High.Y ? P.Y : High.Y);
    };
    for (int I = 0; I < Points.GetNumberOfElements(); I++) {
        const art_path_point &Point = Points[I];
        Cover(Point.GetPoint());
        if (Point.GetCurvedBefore())
            Cover(Point.GetControlBefore());
        if (Point.GetCurvedAfter())
            Cover(Point.GetControlAfter());
    }
    PointOrigin = Low;
    PointSize = High - Low;
    if (PointSize.X == 0)
        PointSize.X = 1e-9;
    if (PointSize.Y == 0)
        PointSize.Y = 1e-9;
}

int art_custom_shape::GetNumRepetitions()
{
    return 1;
}

int art_custom_shape::GetNumPointsToMirror()
{
    return 0;
}

int art_custom_shape::GetNumPointsPerSide()
{
    int NumRepetitions = GetNumRepetitions();
    int Ret = Points.GetNumberOfElements() / NumRepetitions;
    TOVAS_ASSERT(Ret*NumRepetitions==Points.GetNumberOfElements(), this);
    return Ret;
}

void art_custom_shape::GetRun(int P, int &Start, int &End) const
{
    int N = Points.GetNumberOfElements();
    TOVAS_ASSERT(P>=0 && P<N, nullptr);
    Start = P;
    int Count = 0;
    while (Start > 0 && Points[Start].GetConnectedBefore()) {
        Start--;
        TOVAS_ASSERT(Count<100000, nullptr);
        Count++;
    }
    End = P;
    Count = 0;
    while (End < N - 1 && Points[End].GetConnectedAfter()) {
        End++;
        TOVAS_ASSERT(Count<100000, nullptr);
        Count++;
    }
}

bool art_custom_shape::GetPointIsEndPoint(int P) const
{
    int Start = 0;
    int End = 0;
    GetRun(P, Start, End);
    if (Points[Start].GetAnyClosedPathBefore())
        return false;
    return P == Start || P == End;
}

void art_custom_shape::RepairRuns()
{
    int N = Points.GetNumberOfElements();
    int Count = 0;
    for (int I = 0; I < N; I++) {
        TOVAS_ASSERT(Count<100000, this);
        Count++;
        bool JoinsNext = I < N - 1 && Points[I + 1].GetConnectedBefore();
        if (Points[I].GetConnectedAfter() && !JoinsNext)
            Points[I].SetConnectionAfter(ConnectionCut);
        bool JoinsPrevious = I > 0 && Points[I - 1].GetConnectedAfter();
        if (Points[I].GetConnectedBefore() && !JoinsPrevious)
            Points[I].SetConnectionBefore(ConnectionCut);
    }
}

art_path_point art_custom_shape::ToObjectSpace(const art_path_point &Point) const
{
    art_path_point Copy(Point);
    point2d Before = PointToObjectSpace(Point.GetControlBefore());
    point2d After = PointToObjectSpace(Point.GetControlAfter());
    Copy.SetPoint(PointToObjectSpace(Point.GetPoint()));
    Copy.SetCurveBefore(Before - Copy.GetPoint());
    Copy.SetCurveAfter(After - Copy.GetPoint());
    return Copy;
}

void art_custom_shape::AddSegment(art_path &Path, const art_path_point &Previous, const art_path_point &Point)
{
    point2d To = Point.GetPoint();
    if (Point.GetCutBefore()) {
        Path.move_to(To.X, To.Y);
        return;
    }
    point2d Control1 = Previous.GetControlAfter();
    point2d Control2 = Point.GetControlBefore();
    if (Previous.GetCurvedAfter() && Point.GetCurvedBefore())
        Path.curve4(Control1.X, Control1.Y, Control2.X, Control2.Y, To.X, To.Y);
    else if (Previous.GetCurvedAfter())
        Path.curve3(Control1.X, Control1.Y, To.X, To.Y);
    else if (Point.GetCurvedBefore())
        Path.curve3(Control2.X, Control2.Y, To.X, To.Y);
    else
        Path.line_to(To.X, To.Y);
}

void art_custom_shape::AddRun(art_path &Path, int Start, int End, art_path_point &Previous) const
{
    for (int I = Start; I <= End; I++) {
        art_path_point Point = ToObjectSpace(Points[I]);
        AddSegment(Path, Previous, Point);
        Previous = Point;
    }
}

void art_custom_shape::GetPath(art_path &Path, double, double)
{
    int N = Points.GetNumberOfElements();
    if (N == 0)
        return;
    if (Points.Peek().GetConnectedAfter()) {
        RepairRuns();
        TOVAS_ASSERT(!Points.Peek().GetConnectedAfter(), this);
    }
    int NumRepetitions = GetNumRepetitions();
    int NumPointsPerSide = GetNumPointsPerSide();
    int P = 0;
    while (P < N) {
        int Start = 0;
        int End = 0;
        GetRun(P, Start, End);
        P = End + 1;
        bool Closed = Points[Start].GetAnyClosedPathBefore();
        // A closed run of a repeating shape goes once round all repetitions, from the first side.
        if (Closed && NumRepetitions > 1 && Start >= NumPointsPerSide)
            continue;
        art_path_point First = ToObjectSpace(Points[Start]);
        Path.move_to(First.GetPoint().X, First.GetPoint().Y);
        art_path_point Previous = First;
        AddRun(Path, Start + 1, End, Previous);
        if (!Closed)
            continue;
        for (int Repetition = 1; Repetition < NumRepetitions; Repetition++) {
            int NextStart = 0;
            int NextEnd = 0;
            GetRun(Start + Repetition * NumPointsPerSide, NextStart, NextEnd);
            AddRun(Path, NextStart, NextEnd, Previous);
        }
        AddSegment(Path, Previous, First);
        double X = 0;
        double Y = 0;
        if (agg::is_vertex(Path.last_vertex(&X, &Y)))
            Path.end_poly(agg::path_flags_close);
    }
}

int art_custom_shape::GetNumHandles()
{
    return Points.GetNumberOfElements();
}

point2d art_custom_shape::GetHandleLocation(int Index)
{
    return PointToObjectSpace(Points[Index].GetPoint());
}

void art_custom_shape::SetHandleLocation(int Index, point2d Location, bool)
{
    SetPoint(Index, Location);
}
