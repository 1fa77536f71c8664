#include "art_engine/art_object_factory.h"

#include "art_engine/art_bitmap_object.h"
#include "art_engine/art_color_blur.h"
#include "art_engine/art_color_fade.h"
#include "art_engine/art_color_fill.h"
#include "art_engine/art_custom_shape.h"
#include "art_engine/art_draw_parents_custom_fill.h"
#include "art_engine/art_ellipse_shape.h"
#include "art_engine/art_hsbc_filter.h"
#include "art_engine/art_inherit_parent_shape.h"
#include "art_engine/art_outline.h"
#include "art_engine/art_rectangle_shape.h"
#include "art_engine/art_regular_poly_shape.h"
#include "art_engine/art_shadow.h"
#include "art_engine/art_stencil_shape.h"
#include "art_engine/art_unknown_object.h"
#include "zel_basics/debug.h"

namespace {

// Destroyed at exit with everything it made; the object pool outlives it.
ownership_pointer<art_object_factory> TheFactory;

} // namespace

// The master table, in the order of registration. A class joins it here when it exists; until then
// its tag loads as an unknown object and is saved unchanged.
art_object_factory::art_object_factory()
{
    Register<art_object>("pego");
    Register<art_bitmap_object>("art_bitmap");
    Register<art_color_fill>("art_solid_fill");
    Register<art_color_blur>("art_blur");
    Register<art_color_fade>("art_gradient_fill");
    Register<art_shadow>("art_shadow");
    Register<art_outline>("art_outline");
    Register<art_stencil_shape>("art_stencil_shape");
    Register<art_draw_parents_custom_fill>("art_draw_parents_custom_fill");
    Register<art_hsbc_filter>("art_hsbc_filter");
    Register<art_ellipse_shape>("art_ellipse");
    Register<art_rectangle_shape>("art_rectangle");
    Register<art_inherit_parent_shape>("art_parents_shape");
    Register<art_custom_shape>("art_custom_shape");
    Register<art_regular_poly_shape>("art_custom_radial_shape");
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
