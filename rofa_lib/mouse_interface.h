#pragma once

#include <cstdint>

#include "zel_basics/array.h"
#include "zel_basics/lwbase_object.h"
#include "zel_basics/point2d.h"

// Buttons of a mouse_action.
constexpr int MouseButtonLeft = 0;
constexpr int MouseButtonRight = 1;
constexpr int MouseButtonMiddle = 2;
constexpr int MouseButtonWheelUp = 3;
constexpr int MouseButtonWheelDown = 4;

// Actions of a mouse_action.
constexpr int MouseActionPress = 0;
constexpr int MouseActionRelease = 1;
constexpr int MouseActionDoubleClick = 2;

// One button event as the platform delivered it, in window pixels.
struct mouse_action
{
    int32_t Button = 0;
    int32_t Action = 0;
    int32_t X = 0;
    int32_t Y = 0;

    mouse_action() = default;
    mouse_action(int32_t Button, int32_t Action, int32_t X, int32_t Y) : Button(Button), Action(Action), X(X), Y(Y)
    {
    }
    bool operator==(const mouse_action &Other) const
    {
        return Button == Other.Button && Action == Other.Action && X == Other.X && Y == Other.Y;
    }
};

// The pointer as the application sees it: where it is, which buttons the application has seen go
// down, and the button events not yet taken by the application's tick.
class mouse_interface : public base_object
{
public:
    mouse_interface();

    // (-1, -1) says that the pointer is outside the window or the application is inactive.
    void SetLocation(int32_t X, int32_t Y);
    int_point2d GetLocation() const { return Location; }

    void SetButton(int Button, bool Down);
    uint32_t GetButtonState() const { return ButtonState; }

    void AddMouseAction(const mouse_action &Action);
    array<mouse_action> &GetMouseActions() { return MouseActions; }

    double GetDoubleClickInterval() const { return DoubleClickInterval; }

private:
    int_point2d Location;
    uint32_t ButtonState;
    array<mouse_action> MouseActions;
    // Kept for click-timing that reads neither; a move forgets the clicks gathered at the old place.
    double DoubleClickInterval;
    array<double> ClickTimes;
};
