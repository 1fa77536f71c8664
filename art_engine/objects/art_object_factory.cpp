#include "art_engine/objects/art_object_factory.h"

#include "art_engine/objects/art_unknown_object.h"
#include "zel_basics/debug.h"

namespace {

// Destroyed at exit with everything it made; the object pool outlives it.
ownership_pointer<art_object_factory> TheFactory;

} // namespace

// A tag of a class that has not joined the table loads as an unknown object and is saved unchanged.
art_object_factory::art_object_factory()
{
    AddObjectMaker<art_object>("pego");
}

reference_pointer<art_object_factory> art_object_factory::GetFactory()
{
    if (!TheFactory.IsSet())
        TheFactory.Reset(new art_object_factory);
    return reference_pointer<art_object_factory>(TheFactory.Get());
}

ownership_pointer<art_object> art_object_factory::Make(reference_pointer<xbd_tag> Tag)
{
    zel_string TagName = Tag->GetName();
    int Slot = PegMakers.Find(TagName);
    if (Slot < 0)
        return ownership_pointer<art_object>(new art_unknown_object(Tag));
    TOVAS_ASSERT(PegMakers[TagName].IsSet(), this);
    return PegMakers.GetValueAt(Slot)->Make(Tag);
}

ownership_pointer<art_shape> art_maker_interface::MakeShape(reference_pointer<xbd_tag>)
{
    return ownership_pointer<art_shape>();
}

ownership_pointer<art_shape> art_object_factory::MakeShape(reference_pointer<xbd_tag> Tag)
{
    zel_string TagName = Tag->GetName();
    int Slot = PegMakers.Find(TagName);
    ownership_pointer<art_shape> Shape;
    if (Slot >= 0)
        Shape = PegMakers.GetValueAt(Slot)->MakeShape(Tag);
    if (!Shape.IsSet())
        throw zel_error(zel_string("The shape type \"") + TagName + "\" is not known.");
    return Shape;
}

void art_object_factory::AddMaker(ownership_pointer<art_maker_interface> Maker)
{
    zel_string TagName = Maker->GetTagName();
    PegMakers.Insert(TagName, Maker);
}

ownership_pointer<art_object> ArtMakeObjectFromTag(reference_pointer<xbd_tag> Tag)
{
    reference_pointer<art_object_factory> F = art_object_factory::GetFactory();
    TOVAS_ASSERT(F.IsSet(), nullptr);
    return F->Make(Tag);
}

ownership_pointer<art_shape> ArtMakeShapeFromTag(reference_pointer<xbd_tag> Tag)
{
    reference_pointer<art_object_factory> F = art_object_factory::GetFactory();
    TOVAS_ASSERT(F.IsSet(), nullptr);
    return F->MakeShape(Tag);
}
