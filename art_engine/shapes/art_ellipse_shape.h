#pragma once

#include "art_engine/objects/art_shape.h"

// The ellipse inscribed in the owner's frame.
class art_ellipse_shape : public art_shape
{
public:
    art_ellipse_shape() = default;
    explicit art_ellipse_shape(reference_pointer<xbd_tag> Tag);
    art_ellipse_shape(const art_ellipse_shape &Other) = default;

    ownership_pointer<art_shape> Clone() override;
    zel_string GetDebugInfo() override;
    zel_string GetTagName() override;
    void GetPath(art_path &Path, double ScaleX, double ScaleY) override;
    bool HasSharpCorners() override;
    zel_string GetDisplayName() override;
};
