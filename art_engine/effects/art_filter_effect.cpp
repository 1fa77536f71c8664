#include "art_engine/effects/art_filter_effect.h"

art_filter_effect::art_filter_effect(reference_pointer<xbd_tag> Tag) : art_layer_object(Tag) {}

bool art_filter_effect::IsFilterEffect()
{
    return true;
}
