#pragma once

#include "art_engine/objects/art_shape.h"
#include "art_engine/shapes/art_path_point.h"

// An editable path: points with control vectors, kept in a point space of their own so that the
// shape stretches with its object. The bounding box of the points in point space maps onto the
// object's whole frame.
//
// The list is made of runs: neighbours in the list joined by codes 1 and 2. A run whose first
// point has a closing code before it is a closed figure; any other run is an open one.
class art_custom_shape : public art_shape
{
public:
    // A closed square.
    art_custom_shape();
    // The "point" children of Tag, or the older "points" child.
    explicit art_custom_shape(reference_pointer<xbd_tag> Tag);
    art_custom_shape(const art_custom_shape &Other) = default;

    ownership_pointer<art_shape> Clone() override;
    zel_string GetDebugInfo() override;
    zel_string GetTagName() override;
    void SaveToTag(reference_pointer<xbd_tag> Tag) override;
    void GetPath(art_path &Path, double ScaleX, double ScaleY) override;
    int GetNumHandles() override;
    point2d GetHandleLocation(int Index) override;
    void SetHandleLocation(int Index, point2d Location, bool Constrain) override;
    zel_string GetDisplayName() override;

    virtual void RecalculateBounds();
    virtual int GetNumPointsPerSide();
    // Every change below is in object space and ends with RecalculateBounds and NotifyChanged.
    virtual void MovePoints(const array<int> &Indices, point2d ObjectSpaceDelta);
    virtual void SetPoint(int Index, point2d ObjectLocation);
    // The control of one side, as an absolute location; the side becomes curved.
    virtual void SetPointCurve(int Index, bool After, point2d ObjectLocation);
    virtual void SetPointCurveType(int Index, int32_t CurveType);
    // The side from point Index to the next one of its figure, both ends.
    virtual void SetSideCurved(int Index, bool Curved);
    // A straight point on the side after point Index, which it splits.
    virtual void InsertPoint(int Index, point2d ObjectLocation);
    // Its neighbours in the run join each other; an end point leaves its cut to the next.
    virtual void DeletePoint(int Index);
    // The open run that P2 ends continues into the one that P1 starts (runs turn round as needed).
    virtual void JoinRuns(int P1, int P2);
    // A closed run opens before CutBeforePoint, which becomes its first point; an open run splits.
    virtual void CutBefore(int CutBeforePoint);
    // Point Amount comes first; the list must be one closed run.
    virtual void RotatePoints(int Amount);
    virtual int GetNumRepetitions();
    virtual int GetNumPointsToMirror();

    int GetNumPoints() const { return Points.GetNumberOfElements(); }
    const art_path_point &GetPathPoint(int Index) const { return Points[Index]; }
    // Replaces the list, in point space.
    void SetPathPoints(const array<art_path_point> &NewPoints);
    point2d GetPointOrigin() const { return PointOrigin; }
    point2d GetPointSize() const { return PointSize; }
    point2d ObjectToPointSpace(point2d ObjectSpace) const;
    point2d PointToObjectSpace(point2d PointSpace) const;
    // The run of point P, from Start to End.
    void GetRun(int P, int &Start, int &End) const;
    // The first or last point of an open run.
    bool GetPointIsEndPoint(int P) const;

protected:
    // The object's size with a zero extent taken as 1e-9, so that conversions stay finite.
    point2d GetConversionSize() const;
    void MakeDefaultSquare();
    void WritePoints(reference_pointer<xbd_tag> Tag, int Count);
    // RecalculateBounds, then NotifyChanged.
    void Changed();

    point2d PointOrigin;
    point2d PointSize;
    art_peek_array<art_path_point> Points;

private:
    void ReadPoints(reference_pointer<xbd_tag> Tag);
    void ReadOlderPoints(reference_pointer<xbd_tag> PointsTag);
    // Cuts every run that runs off either end of the list or into a point that does not join back.
    void RepairRuns();
    void ReverseRun(int StartP, int EndP);
    static void AddSegment(art_path &Path, const art_path_point &Previous, const art_path_point &Point);
    art_path_point ToObjectSpace(const art_path_point &Point) const;
    // Adds the run's points after the first, whose figure is already started.
    void AddRun(art_path &Path, int Start, int End, art_path_point &Previous) const;
};
