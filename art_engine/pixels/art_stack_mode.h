#pragma once

// The role of an object in its parent's stack. Bitmaps know it too: a stencil layer is coloured by
// the mode of the object that drew it.
enum art_stack_mode
{
    StackModeNormal = 0,
    StackModeStencil = 1,
    StackModePost = 2,
    StackModePlusStencil = 3,
    StackModeMinusStencil = 4
};

inline bool IsStencilStackMode(int Mode)
{
    return Mode == StackModeStencil || Mode == StackModePlusStencil || Mode == StackModeMinusStencil;
}
