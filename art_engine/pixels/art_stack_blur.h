#pragma once

#include "art_engine/pixels/art_bitmap.h"
#include "zel_basics/lwpointers.h"

// In-place stack blurs of a bitmap: a triangle-weighted running sum over 2r + 1 pixels, along each
// row and then along each column, the first and last pixel of a line repeated past its ends. They
// work on the premultiplied bytes as they stand. The cost per pixel is the same for any radius.

// Red, green and blue; alpha is left alone. Nothing for a radius not above 0; otherwise the radius
// is rounded half up and limited to 254.
void BlurColor(reference_pointer<art_bitmap> Bitmap, double Radius);
// The alpha byte only. Nothing for a radius not above 0; otherwise the radius is limited to 253
// and then rounded half up.
void BlurAlpha(reference_pointer<art_bitmap> Bitmap, double Radius);
