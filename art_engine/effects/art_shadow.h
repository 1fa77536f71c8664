#pragma once

#include <agg_color_rgba.h>

#include "art_engine/effects/art_color_blur.h"

// A shadow of its parent. In the parent's "normal" stack it is an inner shadow, cast by what the
// stencil leaves out onto the shape; in any other mode a drop shadow, cast by the layer's own alpha
// and slipped under what the layer already shows.
class art_shadow : public art_color_blur
{
public:
    // Black at a third.
    static const agg::rgba DefaultColor;

    art_shadow();
    explicit art_shadow(reference_pointer<xbd_tag> Tag);
    art_shadow(const art_shadow &Other) = default;

    ownership_pointer<art_object> Duplicate() const override;
    // Matrix maps the parent's space, which this object shares, into Target's pixels. The inner
    // shadow needs the stencil of the layer it is drawn into: it is drawn afresh from the parent's
    // stencil children, as the layer's own was.
    void Draw(reference_pointer<bitmap_interface> Target, reference_pointer<bitmap_interface> Backdrop,
              agg::trans_affine Matrix, reference_pointer<art_cache> Cache) override;
    void ExpandRedrawRect(rectangle &Rect, const agg::trans_affine &Matrix) override;
    void ExpandDrawWindow(rectangle &Window, const agg::trans_affine &Matrix) override;
    void WriteAttributes(reference_pointer<xbd_tag> Tag) override;
    zel_string GetTagName() override;
    zel_string GetTypeLabel() override;
    agg::rgba GetColor() override;
    void SetColor(const agg::rgba &NewColor) override;
    // One handle: the offset.
    void GetHandleTip(zel_string &Title, zel_string &Text) override;
    int GetSpecialControlCount() override;
    point2d GetSpecialControl(int Index) override;
    void SetSpecialControl(int Index, point2d Point) override;

    point2d GetOffset() const { return Offset; }
    double GetWeight() const { return Weight; }
    // Each asks for a redraw when the value changes.
    void SetOffset(point2d NewOffset);
    void SetWeight(double NewWeight);

    // The shadow on Target, whose layer's stencil is StencilBitmap. Only the inner shadow reads the
    // stencil, which must then be set and of Target's size.
    void DrawShadow(art_bitmap &Target, const ownership_pointer<art_bitmap> &StencilBitmap,
                    const agg::trans_affine &Matrix);

private:
    // Object units.
    point2d Offset;
    double Weight = 0.0;
    agg::rgba Color;
};
