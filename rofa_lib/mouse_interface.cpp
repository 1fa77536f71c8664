#include "rofa_lib/mouse_interface.h"

#include "zel_basics/debug.h"

mouse_interface::mouse_interface()
    : Location(-1, -1), ButtonState(0), MouseActions(0), DoubleClickInterval(0.3), ClickTimes(0)
{
}

void mouse_interface::SetLocation(int32_t X, int32_t Y)
{
    int_point2d NewLocation(X, Y);
    if (NewLocation != Location)
        ClickTimes.Clear();
    Location = NewLocation;
}

void mouse_interface::SetButton(int Button, bool Down)
{
    TOVAS_ASSERT(Button>=0 && Button<32, this);
    uint32_t Bit = 1u << Button;
    ButtonState = Down ? (ButtonState | Bit) : (ButtonState & ~Bit);
}

void mouse_interface::AddMouseAction(const mouse_action &Action) { MouseActions.Add(Action); }
