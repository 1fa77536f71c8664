#include "art_engine/shapes/art_shapes.h"

#include "art_engine/objects/art_object_factory.h"
#include "art_engine/shapes/art_custom_shape.h"
#include "art_engine/shapes/art_ellipse_shape.h"
#include "art_engine/shapes/art_inherit_parent_shape.h"
#include "art_engine/shapes/art_rectangle_shape.h"
#include "art_engine/shapes/art_regular_poly_shape.h"
#include "art_engine/shapes/art_stencil_shape.h"

namespace {

template <class T> void AddShapeMaker(art_object_factory &Factory, const char *TagName)
{
    Factory.AddMaker(ownership_pointer<art_maker_interface>(new art_shape_maker<T>(TagName)));
}

} // namespace

void ArtAddShapeMakers(art_object_factory &Factory)
{
    Factory.AddObjectMaker<art_stencil_shape>("art_stencil_shape");
    AddShapeMaker<art_ellipse_shape>(Factory, "art_ellipse");
    AddShapeMaker<art_rectangle_shape>(Factory, "art_rectangle");
    AddShapeMaker<art_inherit_parent_shape>(Factory, "art_parents_shape");
    AddShapeMaker<art_custom_shape>(Factory, "art_custom_shape");
    AddShapeMaker<art_regular_poly_shape>(Factory, "art_custom_radial_shape");
}
