#include "art_engine/effects/art_draw_parents_custom_fill.h"

#include "art_engine/objects/art_cache.h"
#include "rofa_lib/bitmap_interface.h"

art_draw_parents_custom_fill::art_draw_parents_custom_fill(reference_pointer<xbd_tag> Tag) : art_layer_object(Tag) {}

ownership_pointer<art_object> art_draw_parents_custom_fill::Duplicate() const
{
    return ownership_pointer<art_object>(new art_draw_parents_custom_fill(*this));
}

// The matrix maps the parent's space already: a layer object shares its parent's frame.
void art_draw_parents_custom_fill::Draw(reference_pointer<bitmap_interface> Target,
                                        reference_pointer<bitmap_interface> Backdrop, agg::trans_affine Matrix,
                                        reference_pointer<art_cache> Cache)
{
    if (Parent.IsSet())
        Parent->DrawCustomFill(Target, Backdrop, Matrix, Cache);
}

zel_string art_draw_parents_custom_fill::GetTagName()
{
    return "art_draw_parents_custom_fill";
}

zel_string art_draw_parents_custom_fill::GetDebugName()
{
    return "Draw Parent's Custom Fill";
}
