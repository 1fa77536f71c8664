#include <gtest/gtest.h>

#include "rofa_lib/mouse_interface.h"

TEST(MouseInterface, StartsOutsideWithNoButtonsAndNoActions)
{
    mouse_interface Mouse;
    EXPECT_EQ(int_point2d(-1, -1), Mouse.GetLocation());
    EXPECT_EQ(0u, Mouse.GetButtonState());
    EXPECT_EQ(0, Mouse.GetMouseActions().GetNumberOfElements());
    EXPECT_EQ(0.3, Mouse.GetDoubleClickInterval());
}

TEST(MouseInterface, LocationIsStored)
{
    mouse_interface Mouse;
    Mouse.SetLocation(12, -7);
    EXPECT_EQ(int_point2d(12, -7), Mouse.GetLocation());
}

TEST(MouseInterface, SetButtonRewritesOneBit)
{
    mouse_interface Mouse;
    Mouse.SetButton(MouseButtonLeft, true);
    Mouse.SetButton(MouseButtonMiddle, true);
    EXPECT_EQ(0x5u, Mouse.GetButtonState());
    Mouse.SetButton(MouseButtonLeft, false);
    EXPECT_EQ(0x4u, Mouse.GetButtonState());
    Mouse.SetButton(MouseButtonRight, false);
    EXPECT_EQ(0x4u, Mouse.GetButtonState());
}

TEST(MouseInterface, ActionsKeepTheirArrivalOrder)
{
    mouse_interface Mouse;
    Mouse.AddMouseAction(mouse_action(MouseButtonRight, MouseActionPress, 3, 4));
    Mouse.AddMouseAction(mouse_action(MouseButtonRight, MouseActionRelease, 5, 6));
    Mouse.AddMouseAction(mouse_action(MouseButtonWheelDown, MouseActionDoubleClick, 7, 8));
    array<mouse_action> &Actions = Mouse.GetMouseActions();
    ASSERT_EQ(3, Actions.GetNumberOfElements());
    EXPECT_EQ(mouse_action(1, 0, 3, 4), Actions[0]);
    EXPECT_EQ(mouse_action(1, 1, 5, 6), Actions[1]);
    EXPECT_EQ(mouse_action(4, 2, 7, 8), Actions[2]);
}
