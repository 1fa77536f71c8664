#pragma once

#include "art_engine/objects/art_layer_object.h"

// A layer object that works on the pixels its parent's layer already has, such as a blur or a
// colour filter, rather than painting new ones.
class art_filter_effect : public art_layer_object
{
public:
    art_filter_effect() = default;
    explicit art_filter_effect(reference_pointer<xbd_tag> Tag);
    art_filter_effect(const art_filter_effect &Other) = default;

    bool IsFilterEffect() override;
};
