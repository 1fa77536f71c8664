#pragma once

#include <agg_color_rgba.h>

#include "art_engine/effects/art_fill_effect.h"

// Floods its parent's layer with one colour.
class art_color_fill : public art_fill_effect
{
public:
    // Opaque white.
    art_color_fill();
    explicit art_color_fill(const agg::rgba &Color);
    explicit art_color_fill(reference_pointer<xbd_tag> Tag);
    art_color_fill(const art_color_fill &Other) = default;

    ownership_pointer<art_object> Duplicate() const override;
    void Draw(reference_pointer<bitmap_interface> Target, reference_pointer<bitmap_interface> Backdrop,
              agg::trans_affine Matrix, reference_pointer<art_cache> Cache) override;
    void WriteAttributes(reference_pointer<xbd_tag> Tag) override;
    zel_string GetTagName() override;
    zel_string GetTypeLabel() override;
    agg::rgba GetColor() override;
    // Asks for a redraw only when a channel changed.
    void SetColor(const agg::rgba &NewColor) override;

private:
    agg::rgba Color;
};
