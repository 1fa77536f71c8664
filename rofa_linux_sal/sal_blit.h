#pragma once

#include <cstdint>

#include "rofa_lib/bitmap_interface.h"
#include "zel_basics/lwpointers.h"
#include "zel_basics/point2d.h"

// Copies Source (bytes red, green, blue, alpha; alpha ignored) into a native pixel buffer of 15, 16, 24
// or 32 bits per pixel whose channels sit where the masks say; any other depth is left untouched.
// Target is the buffer's top line and Stride the signed distance from one line to the next below it,
// so a bottom-up buffer passes its last stored line and a negative stride. The one exception to
// pixel-wise copying: a 32-bit target in the source's own byte order gets whole lines of |Stride|
// bytes, so then the source lines must be at least that long and start at column 0 of the target.
void SALBlit(uint8_t *Target, int32_t Stride, int BitsPerPixel, int_point2d TargetSize, int_point2d TargetLocation,
             uint32_t RedMask, uint32_t GreenMask, uint32_t BlueMask, reference_pointer<bitmap_interface> Source);
