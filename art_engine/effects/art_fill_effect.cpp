#include "art_engine/effects/art_fill_effect.h"

art_fill_effect::art_fill_effect(reference_pointer<xbd_tag> Tag) : art_layer_object(Tag) {}

void art_fill_effect::SetStackMode(art_stack_mode)
{
    SetStackModeInternal(StackModeNormal);
}

bool art_fill_effect::IsFillEffect()
{
    return true;
}

zel_string art_fill_effect::GetEffectKind()
{
    return "Fill";
}

bool art_fill_effect::IsOpaque()
{
    return GetColor().a == 1.0;
}
