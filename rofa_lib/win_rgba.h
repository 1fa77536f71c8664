#pragma once

#include <cstdint>

// A pixel of the window's screen buffer, in the byte order the platform's 32-bit buffers use.
struct win_rgba
{
    uint8_t Blue = 0;
    uint8_t Green = 0;
    uint8_t Red = 0;
    uint8_t Alpha = 0;

    win_rgba() = default;
    win_rgba(uint8_t Blue, uint8_t Green, uint8_t Red, uint8_t Alpha) : Blue(Blue), Green(Green), Red(Red), Alpha(Alpha)
    {
    }
    bool operator==(const win_rgba &Other) const
    {
        return Blue == Other.Blue && Green == Other.Green && Red == Other.Red && Alpha == Other.Alpha;
    }
    bool operator!=(const win_rgba &Other) const { return !(*this == Other); }
};

static_assert(sizeof(win_rgba) == 4, "a screen pixel is four bytes, lines have no padding");
