#pragma once

#include "art_engine/objects/art_layer_object.h"

// A layer object that paints its parent's whole layer, which the parent's stencil then cuts to the
// parent's shape. It never takes part in a stencil itself: the layer it floods would mask
// everything.
class art_fill_effect : public art_layer_object
{
public:
    art_fill_effect() = default;
    explicit art_fill_effect(reference_pointer<xbd_tag> Tag);
    art_fill_effect(const art_fill_effect &Other) = default;

    // Any mode asked for becomes normal.
    void SetStackMode(art_stack_mode NewMode) override;
    bool IsFillEffect() override;
    zel_string GetEffectKind() override;
    // Whether the fill hides whatever lies below it in the layer: exactly when the colour that the
    // colour picker shows has full alpha.
    virtual bool IsOpaque();
};
