#pragma once

#include "art_engine/objects/art_object.h"
#include "zel_basics/lwpointers.h"
#include "zel_basics/point2d.h"
#include "zel_basics/zel_string.h"

// How one edge of an axis is pinned.
enum art_pin
{
    PinImplied = 0,
    PinAdd = 1,
    PinMul = 2,
    PinChildren = 3
};

// The layout of one axis: the pins of the low edge (the position) and the high side (the extent),
// and two numbers whose meaning the pair's mode gives. P is the parent's size on the axis, C the
// children's extent and K the object's handle fraction.
struct art_relativizer
{
    art_pin PinLeft;
    art_pin PinRight;
    double RelVals[2];

    art_relativizer() : PinLeft(PinAdd), PinRight(PinImplied), RelVals{0, 0} {}

    // Implied with Children, in either order, leaves nothing to decide the axis.
    bool IllegalPin() const;
    bool IsCenterPinned() const;
    bool IsRelChildren() const;
    bool DependsOnChildren() const { return PinLeft == PinChildren || PinRight == PinChildren; }
    bool DependsOnParent() const
    {
        return !(PinLeft == PinAdd && (PinRight == PinImplied || PinRight == PinChildren));
    }
    bool HasImplied() const { return PinLeft == PinImplied || PinRight == PinImplied; }
    void SetImplied(double Value);

    int GetMode() const;
    void SetMode(int Mode);
    // Setting one pin steps the other on until the pair is legal.
    void SetPinLeft(art_pin Pin);
    void SetPinRight(art_pin Pin);
    void NextPinLeft();
    void NextPinRight();

    void Compute(double P, double C, double K, double &Position, double &Extent) const;
    void SetFromObject(double Position, double Extent, double P, double C, double K, bool UpdatePosition,
                       bool UpdateSize);

    // Reads the older or the current form of one axis: the older wins when any of its strings is
    // there. XName and WName are "x" and "w", or "y" and "h".
    void ReadAttributes(reference_pointer<xbd_tag> Tag, const char *XName, const char *WName, double K);
    void WriteAttributes(reference_pointer<xbd_tag> Tag, const char *XName, const char *WName) const;

    zel_string GetDebugString() const;
    static zel_string GetPinName(art_pin Pin);
    // The pin of a letter of the older form, case ignored.
    static art_pin GetPinFromLetter(char Letter);

private:
    void FixIllegalPinRight();
    void FixIllegalPinLeft();
};

// Decides an object's frame from its parent's size and its children's extent.
class art_autolayout : public base_object
{
public:
    explicit art_autolayout(reference_pointer<art_object> Object) : Object(Object) {}

    virtual void SetFromObject(point2d Location, point2d Size, bool UpdatePosition, bool UpdateSize) = 0;
    // Const, so that it adds a slot of its own beside base_object's untyped Duplicate.
    virtual ownership_pointer<art_autolayout> Duplicate() const = 0;
    virtual void ComputeHorizontal(double &Position, double &Extent) = 0;
    virtual void ComputeVertical(double &Position, double &Extent) = 0;
    virtual bool WidthDependsOnChildren() = 0;
    virtual bool HeightDependsOnChildren() = 0;
    virtual bool WidthDependsOnParent() = 0;
    virtual bool HeightDependsOnParent() = 0;
    virtual bool HasImpliedWidth() = 0;
    virtual bool HasImpliedHeight() = 0;
    virtual void SetImpliedWidth(double Value) = 0;
    virtual void SetImpliedHeight(double Value) = 0;
    virtual zel_string GetDebugString() = 0;
    virtual void WriteAttributes(reference_pointer<xbd_tag> Tag) = 0;
    virtual void ReadAttributes(reference_pointer<xbd_tag> Tag) = 0;

    reference_pointer<art_object> GetObject() const { return Object; }
    void SetObject(reference_pointer<art_object> NewObject) { Object = NewObject; }

protected:
    reference_pointer<art_object> Object;
};

// The one concrete layout: a relativizer for each axis, H for x and V for y.
class art_floating_autolayout : public art_autolayout
{
public:
    // Mode 0 on both axes, holding the object's present frame.
    explicit art_floating_autolayout(reference_pointer<art_object> Object);
    art_floating_autolayout(const art_floating_autolayout &Other);

    void SetFromObject(point2d Location, point2d Size, bool UpdatePosition, bool UpdateSize) override;
    ownership_pointer<art_autolayout> Duplicate() const override;
    void ComputeHorizontal(double &Position, double &Extent) override;
    void ComputeVertical(double &Position, double &Extent) override;
    bool WidthDependsOnChildren() override;
    bool HeightDependsOnChildren() override;
    bool WidthDependsOnParent() override;
    bool HeightDependsOnParent() override;
    bool HasImpliedWidth() override;
    bool HasImpliedHeight() override;
    void SetImpliedWidth(double Value) override;
    void SetImpliedHeight(double Value) override;
    zel_string GetDebugString() override;
    void WriteAttributes(reference_pointer<xbd_tag> Tag) override;
    void ReadAttributes(reference_pointer<xbd_tag> Tag) override;

    // Both set the pins of both axes, fix an illegal pair and tell the object to lay out again.
    void SetMode(int HorizontalMode, int VerticalMode);
    void SetAllPins(art_pin HorizontalLeft, art_pin HorizontalRight, art_pin VerticalLeft, art_pin VerticalRight);

    art_relativizer &GetH() { return H; }
    art_relativizer &GetV() { return V; }

private:
    double GetParentWidth();
    double GetParentHeight();

    art_relativizer H;
    art_relativizer V;
};
