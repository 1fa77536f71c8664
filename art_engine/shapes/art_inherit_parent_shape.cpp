#include "art_engine/shapes/art_inherit_parent_shape.h"

#include "art_engine/objects/art_object.h"

art_inherit_parent_shape::art_inherit_parent_shape(reference_pointer<xbd_tag>) {}

ownership_pointer<art_shape> art_inherit_parent_shape::Clone()
{
    return ownership_pointer<art_shape>(new art_inherit_parent_shape(*this));
}

zel_string art_inherit_parent_shape::GetDebugInfo()
{
    return "art_inherit_parent_shape";
}

zel_string art_inherit_parent_shape::GetTagName()
{
    return "art_parents_shape";
}

reference_pointer<art_shape> art_inherit_parent_shape::GetInheritedShape()
{
    if (!Owner.IsSet() || !Owner->GetParent().IsSet() || !Owner->GetParent()->GetParent().IsSet())
        return reference_pointer<art_shape>();
    reference_pointer<art_shape> Shape = Owner->GetParent()->GetParent()->GetShape();
    // The one object up there may be our own owner's twin pointing back at us: never follow a loop.
    if (Shape.Get() == this || !Shape.IsSet() || !Shape->GetOwner().IsSet())
        return reference_pointer<art_shape>();
    return Shape;
}

void art_inherit_parent_shape::GetPath(art_path &Path, double ScaleX, double ScaleY)
{
    point2d Size = GetOwnerSize();
    reference_pointer<art_shape> Shape = GetInheritedShape();
    if (!Shape.IsSet()) {
        AddRectanglePath(Path, 0, 0, Size.X, Size.Y);
        return;
    }
    reference_pointer<art_object> ShapeOwner = Shape->GetOwner();
    art_path Inherited;
    ShapeOwner->GetShapePath(Inherited, ScaleX, ScaleY);
    point2d ParentSize = ShapeOwner->GetSize();
    // A parent without extent has nothing to stretch from; its outline is taken as it is.
    double FactorX = ParentSize.X != 0 ? Size.X / ParentSize.X : 1;
    double FactorY = ParentSize.Y != 0 ? Size.Y / ParentSize.Y : 1;
    Inherited.rewind(0);
    double X = 0;
    double Y = 0;
    unsigned Command;
    while (!agg::is_stop(Command = Inherited.vertex(&X, &Y)))
        Path.vertices().add_vertex(X * FactorX, Y * FactorY, Command);
}

bool art_inherit_parent_shape::HasSharpCorners()
{
    reference_pointer<art_shape> Shape = GetInheritedShape();
    return Shape.IsSet() && Shape->HasSharpCorners();
}

zel_string art_inherit_parent_shape::GetDisplayName()
{
    return "Inherit Parent";
}
