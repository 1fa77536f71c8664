#pragma once

#include "art_engine/effects/art_filter_effect.h"

class art_bitmap;

// Softens what its parent's layer holds so far, in place. In a stencil layer only the colours
// soften: there the colours are the mask, and a sharp alpha keeps the stencil's edge.
class art_color_blur : public art_filter_effect
{
public:
    // The largest blur radius in pixels that a draw uses.
    static constexpr int MaxPixelRadius = 250;

    art_color_blur() = default;
    explicit art_color_blur(reference_pointer<xbd_tag> Tag);
    art_color_blur(const art_color_blur &Other) = default;

    ownership_pointer<art_object> Duplicate() const override;
    // Matrix maps the parent's space, which this object shares, into Target's pixels.
    void Draw(reference_pointer<bitmap_interface> Target, reference_pointer<bitmap_interface> Backdrop,
              agg::trans_affine Matrix, reference_pointer<art_cache> Cache) override;
    void ExpandRedrawRect(rectangle &Rect, const agg::trans_affine &Matrix) override;
    void ExpandDrawWindow(rectangle &Window, const agg::trans_affine &Matrix) override;
    void WriteAttributes(reference_pointer<xbd_tag> Tag) override;
    zel_string GetTagName() override;
    zel_string GetTypeLabel() override;

    double GetRadius() const { return Radius; }
    // Asks for a redraw of the reach before and after the change.
    void SetRadius(double NewRadius);

    // The blur of Bitmap that a draw through Matrix makes.
    void Blur(art_bitmap &Bitmap, const agg::trans_affine &Matrix);

protected:
    // The radius in whole pixels under Matrix, halves away from zero, at most MaxPixelRadius; 0 when
    // it comes out below 1, and then nothing blurs.
    int GetPixelRadius(const agg::trans_affine &Matrix) const;
    // A redraw of the area reached before and after a change of Field.
    template <class T> void ChangeField(T &Field, T Value)
    {
        if (Field == Value)
            return;
        RequestRedraw();
        Field = Value;
        RequestRedraw();
    }

private:
    // Object units.
    double Radius = 0.0;
};
