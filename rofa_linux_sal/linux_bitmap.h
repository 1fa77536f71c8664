#pragma once

#include <cstdint>

#include "rofa_lib/bitmap_interface.h"
#include "zel_basics/array.h"

// A top-down block of pixels red, green, blue, alpha that the binding hands out, such as a bitmap
// pasted from the clipboard. A new one is all zero bytes.
class linux_bitmap : public bitmap_interface
{
public:
    explicit linux_bitmap(int_point2d Size);

    int_point2d GetSize() override { return Size; }
    uint8_t *GetFirstLine() override { return Pixels.GetData(); }
    int32_t GetLineStride() override { return Size.X * 4; }

private:
    int_point2d Size;
    array<uint8_t> Pixels;
};
