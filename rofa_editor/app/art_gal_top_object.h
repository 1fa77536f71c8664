#pragma once

#include "art_engine/objects/art_top_object.h"
#include "rofa_lib/zel_hal.h"

// The top object of an application window: what it paints goes to the window layer.
class art_gal_top_object : public art_top_object
{
public:
    art_gal_top_object(reference_pointer<graphical_system_abstraction_layer> GAL, point2d WindowSize,
                       ownership_pointer<art_human_input_set> InputSet);

    void PresentBitmap(int X, int Y, reference_pointer<art_bitmap> Bitmap) override;

private:
    reference_pointer<graphical_system_abstraction_layer> GAL;
};
