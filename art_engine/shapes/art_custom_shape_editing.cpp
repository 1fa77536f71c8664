// The editing operations of a custom shape. The editor calls them only with valid input, so their
// rules are assertions.
#include "art_engine/shapes/art_custom_shape.h"

#include <cmath>

#include "zel_basics/debug.h"

using std::isfinite;

namespace {

int32_t ToConnected(int32_t Code)
{
    return art_path_point::IsCurved(Code) ? ConnectionCurved : ConnectionStraight;
}

int32_t ToClosing(int32_t Code)
{
    return art_path_point::IsCurved(Code) ? ConnectionClosingCurved : ConnectionClosingStraight;
}

} // namespace

void art_custom_shape::MovePoints(const array<int> &Indices, point2d ObjectSpaceDelta)
{
    TOVAS_ASSERT(isfinite(ObjectSpaceDelta.X), this);
    TOVAS_ASSERT(isfinite(ObjectSpaceDelta.Y), this);
    point2d Size = GetConversionSize();
    point2d Delta(ObjectSpaceDelta.X / Size.X * PointSize.X, ObjectSpaceDelta.Y / Size.Y * PointSize.Y);
    for (int I = 0; I < Indices.GetNumberOfElements(); I++) {
        art_path_point &Point = Points[Indices[I]];
        Point.SetPoint(Point.GetPoint() + Delta);
    }
    Changed();
}

void art_custom_shape::SetPoint(int Index, point2d ObjectLocation)
{
    Points[Index].SetPoint(ObjectToPointSpace(ObjectLocation));
    Changed();
}

void art_custom_shape::SetPointCurve(int Index, bool After, point2d ObjectLocation)
{
    point2d Location = ObjectToPointSpace(ObjectLocation);
    if (After)
        Points[Index].SetControlAfter(Location);
    else
        Points[Index].SetControlBefore(Location);
    Changed();
}

void art_custom_shape::SetPointCurveType(int Index, int32_t CurveType)
{
    Points[Index].SetCurveType(CurveType);
    Changed();
}

void art_custom_shape::SetSideCurved(int Index, bool Curved)
{
    int Start = 0;
    int End = 0;
    GetRun(Index, Start, End);
    art_path_point &Point = Points[Index];
    int Next = Index + 1;
    if (Point.GetAnyClosedPathAfter())
        Next = Start;
    else if (!Point.GetConnectedAfter())
        return;
    Point.SetCurvedAfter(Curved);
    Points[Next].SetCurvedBefore(Curved);
    Changed();
}

void art_custom_shape::InsertPoint(int Index, point2d ObjectLocation)
{
    art_path_point &Point = Points[Index];
    art_path_point New(ObjectToPointSpace(ObjectLocation));
    New.SetConnectionBefore(ConnectionStraight);
    if (Point.GetConnectedAfter()) {
        New.SetConnectionAfter(ConnectionStraight);
        Points[Index + 1].SetConnectionBefore(ConnectionStraight);
    } else if (Point.GetAnyClosedPathAfter()) {
        New.SetConnectionAfter(ToClosing(Point.GetConnectionAfter()));
        int Start = 0;
        int End = 0;
        GetRun(Index, Start, End);
        Points[Start].SetCurvedBefore(false);
    } else {
        New.SetConnectionAfter(ConnectionCut);
    }
    Point.SetConnectionAfter(ConnectionStraight);
    Points.Insert(Index + 1, New);
    Changed();
}

void art_custom_shape::DeletePoint(int Index)
{
    const art_path_point &Point = Points[Index];
    bool HasPrevious = Point.GetConnectedBefore();
    bool HasNext = Point.GetConnectedAfter();
    if (HasPrevious && !HasNext)
        Points[Index - 1].SetConnectionAfter(Point.GetConnectionAfter());
    else if (HasNext && !HasPrevious)
        Points[Index + 1].SetConnectionBefore(Point.GetConnectionBefore());
    Points.Remove(Index);
    Changed();
}

void art_custom_shape::ReverseRun(int StartP, int EndP)
{
    TOVAS_ASSERT(StartP<=EndP, this);
    int Count = 0;
    for (int Low = StartP, High = EndP; Low < High; Low++, High--) {
        TOVAS_ASSERT(Count<100000, this);
        Count++;
        art_path_point Swap = Points[Low];
        Points[Low] = Points[High];
        Points[High] = Swap;
    }
    for (int I = StartP; I <= EndP; I++)
        Points[I].SwapSides();
}

void art_custom_shape::JoinRuns(int P1, int P2)
{
    TOVAS_ASSERT(GetPointIsEndPoint(P1), this);
    TOVAS_ASSERT(GetPointIsEndPoint(P2), this);
    int StartP1 = 0;
    int EndP1 = 0;
    GetRun(P1, StartP1, EndP1);
    TOVAS_ASSERT(P2<StartP1 || P2>EndP1, this);
    if (P1 != StartP1) {
        ReverseRun(StartP1, EndP1);
        P1 = StartP1;
    }
    int StartP2 = 0;
    int EndP2 = 0;
    GetRun(P2, StartP2, EndP2);
    if (P2 != EndP2) {
        ReverseRun(StartP2, EndP2);
        P2 = EndP2;
    }
    TOVAS_ASSERT(Points[P1].GetCutBefore(), this);
    TOVAS_ASSERT(Points[P2].GetCutAfter(), this);
    Points[P1].SetConnectionBefore(ToConnected(Points[P1].GetConnectionBefore()));
    Points[P2].SetConnectionAfter(ToConnected(Points[P2].GetConnectionAfter()));
    // The run of P1 moves to follow P2.
    int P1Len = EndP1 - StartP1 + 1;
    TOVAS_ASSERT(P1Len>0, this);
    if (StartP1 > P2)
        Points.MoveRange(StartP1, P2 + 1, P1Len);
    else
        Points.MoveRange(StartP1, P2 + 1 - P1Len, P1Len);
    Changed();
}

void art_custom_shape::CutBefore(int CutBeforePoint)
{
    int StartP = 0;
    int EndP = 0;
    GetRun(CutBeforePoint, StartP, EndP);
    TOVAS_ASSERT(StartP<=EndP, this);
    const art_path_point OrigFirstP = Points[StartP];
    if (!OrigFirstP.GetAnyClosedPathBefore()) {
        TOVAS_ASSERT(CutBeforePoint>0, this);
        TOVAS_ASSERT(Points[CutBeforePoint].GetConnectedBefore(), this);
        Points[CutBeforePoint - 1].SetConnectionAfter(ConnectionCut);
        Points[CutBeforePoint].SetConnectionBefore(ConnectionCut);
        Changed();
        return;
    }
    TOVAS_ASSERT(OrigFirstP.GetAnyClosedPathBefore(), this);
    // The closing side becomes an ordinary one, and the run turns so that the cut point leads.
    Points[StartP].SetConnectionBefore(ToConnected(OrigFirstP.GetConnectionBefore()));
    Points[EndP].SetConnectionAfter(ToConnected(Points[EndP].GetConnectionAfter()));
    int NewSize = Points.GetNumberOfElements();
    art_peek_array<art_path_point> NewPoints;
    for (int I = 0; I < StartP; I++)
        NewPoints.Add(Points[I]);
    for (int I = CutBeforePoint; I <= EndP; I++)
        NewPoints.Add(Points[I]);
    for (int I = StartP; I < CutBeforePoint; I++)
        NewPoints.Add(Points[I]);
    for (int I = EndP + 1; I < Points.GetNumberOfElements(); I++)
        NewPoints.Add(Points[I]);
    TOVAS_ASSERT(NewPoints.GetNumberOfElements()==NewSize, this);
    art_path_point &FirstP = NewPoints[StartP];
    art_path_point &LastP = NewPoints[EndP];
    FirstP.SetConnectionBefore(ConnectionCut);
    LastP.SetConnectionAfter(ConnectionCut);
    TOVAS_ASSERT(!LastP.GetConnectedAfter(), this);
    Points = NewPoints;
    Changed();
}

void art_custom_shape::RotatePoints(int Amount)
{
    int N = Points.GetNumberOfElements();
    TOVAS_ASSERT(Amount>0, this);
    TOVAS_ASSERT(Amount<N, this);
    art_path_point &OldFirst = Points[0];
    art_path_point &OldLast = Points.Peek();
    int32_t Closing = OldFirst.GetConnectionBefore();
    OldFirst.SetConnectionBefore(ToConnected(Closing));
    OldLast.SetConnectionAfter(ToConnected(OldLast.GetConnectionAfter()));
    Points.MoveRange(Amount, 0, N - Amount);
    art_path_point &NewFirst = Points[0];
    art_path_point &NewLast = Points.Peek();
    NewFirst.SetConnectionBefore(ToClosing(NewFirst.GetConnectionBefore()));
    NewLast.SetConnectionAfter(ToClosing(NewLast.GetConnectionAfter()));
    Changed();
}
