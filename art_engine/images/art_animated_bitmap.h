#pragma once

#include "art_engine/pixels/art_bitmap.h"
#include "zel_basics/array.h"
#include "zel_basics/lwbase_object.h"
#include "zel_basics/lwpointers.h"

// A decoded animation: every frame is a whole picture of the canvas's size, already composed from
// the frames before it, so a frame can be shown on its own. FrameTimes[i] is the moment, in seconds
// from the start, at which Frames[i] appears; the first is 0. TotalTime is the length of one pass.
class art_animated_bitmap : public base_object
{
public:
    art_animated_bitmap();

    zel_string GetName() override;
    int GetNumberOfFrames() const { return Frames.GetNumberOfElements(); }

    array<ownership_pointer<art_bitmap>> Frames;
    array<double> FrameTimes;
    double TotalTime;
    bool Loops;
};
