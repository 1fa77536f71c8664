#include "art_engine/art_object_factory.h"

#include "xbd/xbd.h"

reference_pointer<art_object_factory> art_object_factory::GetFactory()
{
    static ownership_pointer<art_object_factory> Factory;
    if (!Factory.IsSet())
        Factory.Reset(new art_object_factory);
    return reference_pointer<art_object_factory>(Factory.Get());
}

ownership_pointer<art_object> art_object_factory::Make(reference_pointer<xbd_tag> Tag)
{
    if (Tag->GetName() == "pego")
        return ownership_pointer<art_object>(new art_object(Tag));
    return ownership_pointer<art_object>();
}
