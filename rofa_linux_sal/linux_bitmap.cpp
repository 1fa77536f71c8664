#include "rofa_linux_sal/linux_bitmap.h"

#include "zel_basics/debug.h"

linux_bitmap::linux_bitmap(int_point2d Size) : Size(Size), Pixels(0)
{
    TOVAS_ASSERT(Size.X>=0 && Size.Y>=0, this);
    Pixels.SetNumberOfElements(Size.X * Size.Y * 4, 0);
}
