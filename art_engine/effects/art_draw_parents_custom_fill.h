#pragma once

#include "art_engine/objects/art_layer_object.h"

// Stands among an object's effects where the object's own custom fill, such as the glyphs of a
// text object, is to be drawn: the order of the effects decides what lies above it.
class art_draw_parents_custom_fill : public art_layer_object
{
public:
    art_draw_parents_custom_fill() = default;
    explicit art_draw_parents_custom_fill(reference_pointer<xbd_tag> Tag);
    art_draw_parents_custom_fill(const art_draw_parents_custom_fill &Other) = default;

    ownership_pointer<art_object> Duplicate() const override;
    void Draw(reference_pointer<bitmap_interface> Target, reference_pointer<bitmap_interface> Backdrop,
              agg::trans_affine Matrix, reference_pointer<art_cache> Cache) override;
    zel_string GetTagName() override;
    zel_string GetDebugName() override;
};
