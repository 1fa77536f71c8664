#pragma once

#include <cstdint>

#include "zel_basics/lwbase_object.h"
#include "zel_basics/point2d.h"

// A block of 32-bit pixels in memory, bytes red, green, blue, alpha. Lines may run top-down (positive
// stride) or bottom-up (negative stride); GetFirstLine is always the top line.
class bitmap_interface : public base_object
{
public:
    virtual int_point2d GetSize() = 0;
    virtual uint8_t *GetFirstLine() = 0;
    virtual int32_t GetLineStride() = 0;
    virtual int GetBitsPerPixel() { return 32; }
    virtual int GetBytesPerPixel() { return 4; }
    virtual bool IsArtBitmap() { return false; }
    // Whether colour channels are already multiplied by alpha. Pixels from outside the engine (the
    // clipboard, image files) carry straight alpha.
    virtual bool IsPremultiplied() { return false; }
};
