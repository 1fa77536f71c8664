#include "art_engine/objects/art_layer.h"

art_layer::art_layer() {}

art_layer::art_layer(reference_pointer<xbd_tag> Tag) : art_object(Tag) {}

art_layer::art_layer(const art_layer &Other) : art_object(Other) {}

ownership_pointer<art_object> art_layer::Duplicate() const
{
    return ownership_pointer<art_object>(new art_layer(*this));
}

bool art_layer::IsLayer()
{
    return true;
}

bool art_layer::HasOwnFrame()
{
    return false;
}
