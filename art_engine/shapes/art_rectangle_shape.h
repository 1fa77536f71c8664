#pragma once

#include "art_engine/objects/art_shape.h"

// A rectangle over the owner's whole frame, its corners rounded by one radius pair.
class art_rectangle_shape : public art_shape
{
public:
    art_rectangle_shape() = default;
    explicit art_rectangle_shape(reference_pointer<xbd_tag> Tag);
    art_rectangle_shape(const art_rectangle_shape &Other) = default;

    ownership_pointer<art_shape> Clone() override;
    zel_string GetDebugInfo() override;
    zel_string GetTagName() override;
    void SaveToTag(reference_pointer<xbd_tag> Tag) override;
    void GetPath(art_path &Path, double ScaleX, double ScaleY) override;
    bool HasSharpCorners() override;
    int GetNumHandles() override;
    point2d GetHandleLocation(int Index) override;
    void SetHandleLocation(int Index, point2d Location, bool Constrain) override;
    zel_string GetDisplayName() override;
    void GetHandleToolTip(int Index, zel_string &Title, zel_string &Tip) override;

    point2d GetRadius() const { return Radius; }
    void SetRadius(point2d NewRadius) { Radius = NewRadius; }

private:
    point2d Radius;
};
