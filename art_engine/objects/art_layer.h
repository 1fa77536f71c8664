#pragma once

#include "art_engine/objects/art_object.h"

// A container with no frame of its own: its extent is that of its children. The top object, the
// viewer and the editor's panels are layers.
class art_layer : public art_object
{
public:
    art_layer();
    explicit art_layer(reference_pointer<xbd_tag> Tag);
    art_layer(const art_layer &Other);

    ownership_pointer<art_object> Duplicate() const override;
    bool IsLayer() override;
    bool HasOwnFrame() override;
};
