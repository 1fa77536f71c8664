#include <gtest/gtest.h>

#include "art_engine/objects/art_events.h"
#include "tests/test_support.h"

namespace {

TEST(ArtPointerEvent, DebugStringOfAButtonDownNamesLeftButton)
{
    art_pointer_event Event(art_pointer_event::PointerButtonDown, art_pointer_event::LeftButton, point2d(3, 4.5));
    EXPECT_EQ("art_pointer_event(Type=PointerButtonDown, Button=LeftButton, LastLocation=(3,4.5), Location=(3,4.5), "
              "ButtonStatusAtEvent=0)",
              ToStd(Event.GetDebugString()));
}

TEST(ArtPointerEvent, DebugStringOfButton33HasNoButtonName)
{
    art_pointer_event Event(art_pointer_event::PointerButtonUp, static_cast<art_pointer_event::pointer_button>(33),
                            point2d(-1, 0.25));
    EXPECT_EQ("art_pointer_event(Type=PointerButtonUp, Button=, LastLocation=(-1,0.25), Location=(-1,0.25), "
              "ButtonStatusAtEvent=0)",
              ToStd(Event.GetDebugString()));
}

TEST(ArtPointerEvent, DebugStringOfAMoveShowsBothLocationsAndTheButtonStatus)
{
    mouse_interface Mouse;
    Mouse.SetButton(MouseButtonLeft, true);
    Mouse.SetButton(MouseButtonMiddle, true);
    art_human_input_set Input(&Mouse, reference_pointer<keyboard_interface>());
    art_pointer_event Event(art_pointer_event::PointerMovedWithin, point2d(10, 20), point2d(7, 8), &Input);
    EXPECT_EQ("art_pointer_event(Type=PointerMovedWithin, Button=NoButton, LastLocation=(7,8), Location=(10,20), "
              "ButtonStatusAtEvent=5)",
              ToStd(Event.GetDebugString()));
}

TEST(ArtPointerEvent, EveryTypeAndButtonHasItsName)
{
    const char *Types[] = {"OtherPET",          "PointerMovedWithin", "PointerMovedIn",          "PointerMovedOut",
                           "PointerButtonDown", "PointerButtonUp",    "PointerButtonDoubleClick"};
    for (int Type = 0; Type < 7; Type++)
        EXPECT_EQ(Types[Type], ToStd(art_pointer_event::GetTypeName(Type)));
    EXPECT_EQ("", ToStd(art_pointer_event::GetTypeName(7)));
    EXPECT_EQ("LeftButton", ToStd(art_pointer_event::GetButtonName(0)));
    EXPECT_EQ("RightButton", ToStd(art_pointer_event::GetButtonName(1)));
    EXPECT_EQ("CenterButton", ToStd(art_pointer_event::GetButtonName(2)));
    EXPECT_EQ("ScrollUp", ToStd(art_pointer_event::GetButtonName(3)));
    EXPECT_EQ("ScrollDown", ToStd(art_pointer_event::GetButtonName(4)));
    EXPECT_EQ("", ToStd(art_pointer_event::GetButtonName(5)));
    EXPECT_EQ("NoButton", ToStd(art_pointer_event::GetButtonName(32)));
}

TEST(ArtPointerEvent, KindsOfEachType)
{
    struct expected
    {
        art_pointer_event::pointer_event_type Type;
        bool Button;
        bool Move;
        bool Inside;
    };
    const expected Table[] = {
        {art_pointer_event::OtherPET, false, false, false},
        {art_pointer_event::PointerMovedWithin, false, true, true},
        {art_pointer_event::PointerMovedIn, false, true, true},
        {art_pointer_event::PointerMovedOut, false, true, false},
        {art_pointer_event::PointerButtonDown, true, false, false},
        {art_pointer_event::PointerButtonUp, true, false, false},
        {art_pointer_event::PointerButtonDoubleClick, true, false, false},
    };
    for (const expected &Row : Table) {
        art_pointer_event Event(Row.Type, art_pointer_event::LeftButton, point2d());
        EXPECT_EQ(Row.Button, Event.IsButtonEvent()) << Row.Type;
        EXPECT_EQ(Row.Move, Event.IsMoveEvent()) << Row.Type;
        EXPECT_EQ(Row.Inside, Event.IsInsideEvent()) << Row.Type;
    }
}

TEST(ArtPointerEvent, ButtonStatusIsTakenAtCreation)
{
    mouse_interface Mouse;
    keyboard_interface Keyboard;
    art_human_input_set Input(&Mouse, &Keyboard);
    Mouse.SetButton(MouseButtonRight, true);
    art_pointer_event Event(art_pointer_event::PointerButtonDown, art_pointer_event::RightButton, point2d(1, 2),
                            &Input);
    Mouse.SetButton(MouseButtonRight, false);
    EXPECT_EQ(2u, Event.GetButtonStatusAtEvent());
    EXPECT_EQ(&Keyboard, Event.GetInputSet()->GetKeyboard().Get());
    EXPECT_EQ(point2d(1, 2), Event.GetLastLocation());
}

TEST(ArtPointerEvent, DuplicateAndCopyKeepEveryField)
{
    mouse_interface Mouse;
    Mouse.SetButton(MouseButtonLeft, true);
    art_human_input_set Input(&Mouse, reference_pointer<keyboard_interface>());
    art_pointer_event Event(art_pointer_event::PointerMovedIn, point2d(5, 6), point2d(1, 2), &Input);
    ownership_pointer<art_pointer_event> Copy = Event.Duplicate();
    EXPECT_EQ(ToStd(Event.GetDebugString()), ToStd(Copy->GetDebugString()));
    EXPECT_EQ(&Input, Copy->GetInputSet().Get());
    art_pointer_event Second(*Copy);
    EXPECT_EQ(ToStd(Event.GetDebugString()), ToStd(Second.GetDebugString()));
    EXPECT_NE(Event.GetObjectID(), Second.GetObjectID());
}

} // namespace
