#pragma once

#include "art_engine/objects/art_object.h"
#include "art_engine/objects/art_object_factory.h"
#include "art_engine/objects/art_shape.h"

// The art object that owns a shape: in a stencil stack it paints the shape's silhouette white
// ("+stencil") or black ("-stencil"), and the effects beside it ask it for the path.
class art_stencil_shape : public art_object
{
public:
    // A rectangle, adding to the stencil.
    art_stencil_shape();
    // Takes Shape, adding to the stencil.
    explicit art_stencil_shape(ownership_pointer<art_shape> NewShape);
    // The shape is the tag's first child tag.
    explicit art_stencil_shape(reference_pointer<xbd_tag> Tag);
    art_stencil_shape(const art_stencil_shape &Other);

    ownership_pointer<art_object> Duplicate() const override;
    // Takes the shape of Shape, which must be a stencil shape itself.
    void SetShape(ownership_pointer<art_object> Shape) override;
    reference_pointer<art_shape> GetShape() override;
    void SetStackMode(art_stack_mode NewMode) override;
    void Draw(reference_pointer<bitmap_interface> Target, reference_pointer<bitmap_interface> Backdrop,
              agg::trans_affine Matrix, reference_pointer<art_cache> Cache) override;
    bool CanHaveChildren() override;
    void WriteAttributes(reference_pointer<xbd_tag> Tag) override;
    zel_string GetTagName() override;
    zel_string GetTypeLabel() override;
    zel_string GetDebugName() override;
    void GetShapePath(art_path &Path, double ScaleX, double ScaleY) override;
    // The colour picker sets the colour of what the shape carries: its parent's.
    agg::rgba GetColor() override;
    void SetColor(const agg::rgba &Color) override;

    void SetStencilShape(ownership_pointer<art_shape> NewShape);
    bool HasSharpCorners();

private:
    void AdoptShape();

    ownership_pointer<art_shape> Shape;
};

// The factory's maker for a shape tag: the object it makes is a stencil shape that holds the shape,
// which is how a shape stands in a tree; a stencil shape takes the bare shape instead.
template <class T> class art_shape_maker : public art_maker_interface
{
public:
    explicit art_shape_maker(const zel_string &TagName) : art_maker_interface(TagName) {}

    ownership_pointer<art_object> Make(reference_pointer<xbd_tag> Tag) override
    {
        return ownership_pointer<art_object>(new art_stencil_shape(MakeShape(Tag)));
    }

    ownership_pointer<art_shape> MakeShape(reference_pointer<xbd_tag> Tag) override
    {
        return ownership_pointer<art_shape>(new T(Tag));
    }
};
