#pragma once

#include "art_engine/shapes/art_custom_shape.h"

// A symmetric shape made from one side's points: the side is turned round a centre NumSides times,
// every other copy mirrored when Mirror is set. Only the first side is stored; the others follow it.
class art_regular_poly_shape : public art_custom_shape
{
public:
    // A triangle's side, repeated three times.
    art_regular_poly_shape();
    explicit art_regular_poly_shape(reference_pointer<xbd_tag> Tag);
    art_regular_poly_shape(const art_regular_poly_shape &Other) = default;

    ownership_pointer<art_shape> Clone() override;
    zel_string GetDebugInfo() override;
    zel_string GetTagName() override;
    void SaveToTag(reference_pointer<xbd_tag> Tag) override;
    int GetNumHandles() override;
    point2d GetHandleLocation(int Index) override;
    void SetHandleLocation(int Index, point2d Location, bool Constrain) override;
    zel_string GetDisplayName() override;
    void GetHandleToolTip(int Index, zel_string &Title, zel_string &Tip) override;
    int GetNumRepetitions() override;
    int GetNumPointsToMirror() override;

    int32_t GetNumSides() const { return NumSides; }
    bool GetMirror() const { return Mirror; }
    double GetMirrorSymmetryAngle() const { return MirrorSymmetryAngle; }
    point2d GetCenter() const { return Center; }
    // The primary side's point that point P of the whole list repeats.
    int GetPrimaryIndex(int P);
    // Side SideAmount comes first.
    void RotateSides(int SideAmount);

private:
    // The points that the sides may come to. Walks along a shape stop at 100,000 points, and the
    // time a shape takes to draw grows with its points: ten thousand are far more than any symmetric
    // shape needs, and still draw at once.
    static constexpr int MaximumPoints = 10000;

    // Rebuilds every side after the first from the first.
    void GenerateSides();
    // Side K's copy of the primary side: rotated, and mirrored on odd sides when Mirror is set.
    agg::trans_affine GetSideMatrix(int K);
    // Where the mirror handle sits: a unit out from the centre along the mirror line, in point space.
    point2d GetMirrorHandlePoint();

    int32_t NumSides;
    bool Mirror;
    double MirrorSymmetryAngle;
    // In point space; the default is the origin of the point space the side was drawn in.
    point2d Center;
    bool CenterIsDefault;
};
