#pragma once

#include <cstdint>

#include <agg_color_rgba.h>

#include "art_engine/objects/art_cache.h"
#include "art_engine/objects/art_events.h"
#include "art_engine/objects/art_layer.h"
#include "art_engine/pixels/art_bitmap.h"
#include "zel_basics/array.h"
#include "zel_basics/rectangle.h"

// The root of a tree on a screen. Its space is window pixels. It owns the window's pixels, the
// render cache and the input set, turns input into events for the tree, gathers the rectangles that
// changed, and runs one frame of layout and painting a tick.
class art_top_object : public art_layer
{
public:
    // With no input set given, the tree gets one that knows no pointer and no keyboard.
    explicit art_top_object(ownership_pointer<art_human_input_set> InputSet = ownership_pointer<art_human_input_set>());
    ~art_top_object() override;

    reference_pointer<art_top_object> GetTopObject() override;
    double GetCurrentTime() override;
    // Every object's count is raised, so every cached picture goes, and the next paint is whole.
    void RequestRedraw() override;
    void RequestRedrawRect(const rectangle &Rect) override;
    // The bitmap is replaced even for an unchanged size, and starts cleared.
    void SetSize(point2d NewSize) override;
    // Remembers where the pointer is, then routes the event down the tree.
    reference_pointer<art_object> HandlePointerEvent(reference_pointer<art_pointer_event> PointerEvent) override;
    // To the event's own target, else to the input set's key focus; unhandled without either.
    reference_pointer<art_object> HandleKeyEvent(reference_pointer<art_key_event> KeyEvent) override;

    // One frame: a due hover update, deletions, layout of what is not settled, and the paint when
    // anything asked for a redraw.
    virtual void Tick();

    // Repaints what is dirty: the dirty rectangles one by one when together they cover less than
    // the window, else the whole window; each painted part is presented.
    virtual void PaintAll();
    // Hands painted pixels to the screen: Bitmap goes at (X, Y) of the window.
    virtual void PresentBitmap(int X, int Y, reference_pointer<art_bitmap> Bitmap) = 0;

    reference_pointer<art_bitmap> GetBitmap() const { return reference_pointer<art_bitmap>(Bitmap.Get()); }
    reference_pointer<art_cache> GetCache() const { return reference_pointer<art_cache>(Cache.Get()); }
    reference_pointer<art_human_input_set> GetInputSet() const
    {
        return reference_pointer<art_human_input_set>(InputSet.Get());
    }
    point2d GetPointerLocation() const { return PointerLocation; }
    // The tree changed under a pointer that may not move: the next tick sends a move to where it rests.
    void SetPointerPending() { PointerPending = true; }
    bool IsPointerPending() const { return PointerPending; }
    bool IsDirty() const { return Dirty; }
    bool IsFullRedraw() const { return FullRedraw; }
    // In window pixels, each grown by 1 on all sides.
    const array<int_rectangle> &GetDirtyList() const { return DirtyList; }
    // Straight colour components from 0 to 1; what every paint starts from.
    void SetBackgroundColor(const agg::rgba &Color) { BackgroundColor = Color; }
    agg::rgba GetBackgroundColor() const { return BackgroundColor; }
    void SetCurrentTime(double Time) { CurrentTime = Time; }

protected:
    // The dirty rectangles joined wherever a union covers less than the two rectangles apart.
    void MergeDirtyList(array<int_rectangle> &Merged);
    // Runs layout where it is due: at an object whose own layout is void, and below one whose
    // children's is; an idle tree costs the look at the top alone.
    static void SettleLayout(art_object &Object);

    bool Dirty;
    array<int_rectangle> DirtyList;
    bool FullRedraw;
    double CurrentTime;
    agg::rgba BackgroundColor;
    point2d PointerLocation;
    bool PointerPending;
    // Destroyed after the children, in the reverse of the order they are made in.
    ownership_pointer<art_bitmap> Bitmap;
    ownership_pointer<art_cache> Cache;
    ownership_pointer<art_human_input_set> InputSet;
};
