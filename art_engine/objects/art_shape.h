#pragma once

#include <agg_color_rgba.h>

#include "art_engine/geometry/art_path.h"
#include "xbd/xbd.h"
#include "zel_basics/lwbase_object.h"
#include "zel_basics/lwpointers.h"
#include "zel_basics/point2d.h"
#include "zel_basics/zel_string.h"

class art_object;

// Geometry without drawing: a shape makes a path that fills a rectangle of its owner's size, saves
// itself into a tag and offers handles to the editor. The owner is the art object that holds it.
class art_shape : public base_object
{
public:
    art_shape() = default;
    // A copy belongs to nobody until an object takes it.
    art_shape(const art_shape &Other);

    virtual ownership_pointer<art_shape> Clone() = 0;
    virtual zel_string GetDebugInfo() = 0;
    // The path changed: the owner's parent is told, for the owner itself draws from its parent's
    // point of view.
    virtual void NotifyChanged();
    virtual zel_string GetTagName() = 0;
    virtual void SaveToTag(reference_pointer<xbd_tag> Tag);
    // Appends the outline in the owner's object units, flattened for the given scale.
    virtual void GetPath(art_path &Path, double ScaleX, double ScaleY) = 0;
    virtual bool HasSharpCorners();
    virtual int GetNumHandles();
    // Handles are in the owner's object units.
    virtual point2d GetHandleLocation(int Index);
    virtual void SetHandleLocation(int Index, point2d Location, bool Constrain);
    virtual agg::rgba GetHandleColor();
    virtual agg::rgba GetHandleHighlightColor();
    virtual zel_string GetDisplayName() = 0;
    virtual void GetHandleToolTip(int Index, zel_string &Title, zel_string &Tip);

    void SetOwner(reference_pointer<art_object> NewOwner);
    reference_pointer<art_object> GetOwner() const;

protected:
    // (0, 0) without an owner: such a shape has nowhere to be drawn.
    point2d GetOwnerSize() const;

    reference_pointer<art_object> Owner;
};
