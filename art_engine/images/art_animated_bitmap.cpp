#include "art_engine/images/art_animated_bitmap.h"

art_animated_bitmap::art_animated_bitmap() : TotalTime(0), Loops(true) {}

zel_string art_animated_bitmap::GetName()
{
    return zel_string("art_animated_bitmap with ") + zel_string::FromInt(GetNumberOfFrames()) + " frames";
}
