#pragma once

#include <cstdint>

#include <agg_color_rgba.h>

#include "art_engine/art_bitmap.h"
#include "art_engine/art_cache.h"
#include "art_engine/art_layer.h"
#include "zel_basics/array.h"
#include "zel_basics/rectangle.h"

// The root of a tree on a screen. Its space is window pixels. It owns the window's pixels and the
// render cache, gathers the rectangles that changed, and repaints them in one frame.
class art_top_object : public art_layer
{
public:
    art_top_object();
    ~art_top_object() override;

    reference_pointer<art_top_object> GetTopObject() override;
    double GetCurrentTime() override;
    // Every object's count is raised, so every cached picture goes, and the next paint is whole.
    void RequestRedraw() override;
    void RequestRedrawRect(const rectangle &Rect) override;
    // The bitmap is replaced even for an unchanged size, and starts cleared.
    void SetSize(point2d NewSize) override;

    // Repaints what is dirty: the dirty rectangles one by one when together they cover less than
    // the window, else the whole window; each painted part is presented.
    virtual void PaintAll();
    // Hands painted pixels to the screen: Bitmap goes at (X, Y) of the window.
    virtual void PresentBitmap(int X, int Y, reference_pointer<art_bitmap> Bitmap) = 0;

    reference_pointer<art_bitmap> GetBitmap() const { return reference_pointer<art_bitmap>(Bitmap.Get()); }
    reference_pointer<art_cache> GetCache() const { return reference_pointer<art_cache>(Cache.Get()); }
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

    bool Dirty;
    array<int_rectangle> DirtyList;
    bool FullRedraw;
    double CurrentTime;
    agg::rgba BackgroundColor;
    ownership_pointer<art_bitmap> Bitmap;
    ownership_pointer<art_cache> Cache;
};
