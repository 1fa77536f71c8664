#include "rofa_editor/app/art_gal_top_object.h"

art_gal_top_object::art_gal_top_object(reference_pointer<graphical_system_abstraction_layer> GAL, point2d WindowSize,
                                       ownership_pointer<art_human_input_set> InputSet)
    : art_top_object(InputSet), GAL(GAL)
{
    SetSize(WindowSize);
}

void art_gal_top_object::PresentBitmap(int X, int Y, reference_pointer<art_bitmap> Bitmap)
{
    GAL->PresentBitmap(X, Y, reference_pointer<bitmap_interface>(Bitmap.Get()));
}
