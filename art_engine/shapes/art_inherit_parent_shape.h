#pragma once

#include "art_engine/objects/art_shape.h"

// Borrows the outline of the shape one level up: the shape of the parent of the object that holds
// the effects, stretched to this owner's size. Without one it is the owner's rectangle.
class art_inherit_parent_shape : public art_shape
{
public:
    art_inherit_parent_shape() = default;
    explicit art_inherit_parent_shape(reference_pointer<xbd_tag> Tag);
    art_inherit_parent_shape(const art_inherit_parent_shape &Other) = default;

    ownership_pointer<art_shape> Clone() override;
    zel_string GetDebugInfo() override;
    zel_string GetTagName() override;
    void GetPath(art_path &Path, double ScaleX, double ScaleY) override;
    bool HasSharpCorners() override;
    zel_string GetDisplayName() override;

private:
    // Unset when the owner has no grandparent, the grandparent no shape, or the shape is this one.
    reference_pointer<art_shape> GetInheritedShape();
};
