#pragma once

#include "art_engine/objects/art_object.h"

// An object that always has its parent's frame and no children of its own: fills and filters.
// Nothing of its frame is its own, so setting any part of it only lays it out again.
class art_layer_object : public art_object
{
public:
    art_layer_object();
    explicit art_layer_object(reference_pointer<xbd_tag> Tag);
    art_layer_object(const art_layer_object &Other);

    ownership_pointer<art_object> Duplicate() const override;
    bool Layout() override;
    bool SizeDependsOnParent() override;
    int32_t GetRedrawCount() override;
    void ParentChanged() override;
    void SetSize(point2d NewSize) override;
    void SetLocation(point2d NewLocation) override;
    void SetHandle(point2d NewHandle) override;
    void SetAngle(double NewAngle) override;
    void SetStackMode(art_stack_mode NewMode) override;
    void RequestRedraw() override;
    bool CanHaveChildren() override;
    bool IsLayer() override;
    bool HasOwnFrame() override;
    void WriteAttributes(reference_pointer<xbd_tag> Tag) override;
    bool IsLayerObject() override;
    bool CanBeSelected() override;
    // The kind of effect that the layer stack shows beside the type label: "Effect", and "Fill"
    // for fills.
    virtual zel_string GetEffectKind();
    // The one operation that this class adds to the slots of art_object; a subclass may answer
    // true, and the operations of the subclasses come after it.
    virtual bool ReservedLayerObjectQuery();

private:
    void FillParent();
};
