#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "art_engine/objects/art_events.h"
#include "art_engine/objects/art_top_object.h"
#include "rofa_lib/keyboard.h"
#include "rofa_lib/mouse_interface.h"
#include "tests/art_engine/objects/art_render_test_support.h"
#include "zel_basics/zel_error.h"

using namespace art_render_test;

namespace {

// What an object saw: event types and locations in its own space, keys, and its layouts.
struct seen
{
    std::vector<art_pointer_event::pointer_event_type> Types;
    std::vector<point2d> Locations;
    std::vector<int> Keys;
    std::vector<int> ChildrenAtLayout;
};

class recording_object : public art_object
{
public:
    explicit recording_object(seen &Seen) : Seen(Seen) {}

    reference_pointer<art_object> HandlePointerEvent(reference_pointer<art_pointer_event> PointerEvent) override
    {
        Seen.Types.push_back(PointerEvent->GetPointerEventType());
        Seen.Locations.push_back(PointerEvent->GetLocation());
        art_object::HandlePointerEvent(PointerEvent);
        return reference_pointer<art_object>(this);
    }

    reference_pointer<art_object> HandleKeyEvent(reference_pointer<art_key_event> KeyEvent) override
    {
        Seen.Keys.push_back(KeyEvent->GetEntry());
        return reference_pointer<art_object>(this);
    }

    bool Layout() override
    {
        Seen.ChildrenAtLayout.push_back(GetNumberOfChildren());
        return art_object::Layout();
    }

private:
    seen &Seen;
};

struct tick_scene
{
    test_top_object Top;

    explicit tick_scene(int Width = 40, int Height = 30) { Top.SetSize(point2d(Width, Height)); }
    ~tick_scene()
    {
        Top.MarkChildrenForDeletion();
        Top.DeleteMarkedChildren();
    }

    reference_pointer<art_object> AddRecorder(art_object &Parent, seen &Seen, point2d Location, point2d Size)
    {
        ownership_pointer<art_object> Object(new recording_object(Seen));
        Place(*Object, Location, Size);
        return Parent.AddChild(Object);
    }
};

reference_pointer<art_pointer_event> Ref(art_pointer_event &Event) { return reference_pointer<art_pointer_event>(&Event); }
reference_pointer<art_key_event> Ref(art_key_event &Event) { return reference_pointer<art_key_event>(&Event); }

TEST(ArtTopObjectEvents, PointerEventIsRememberedAndRoutedInTheChildsSpace)
{
    tick_scene Scene;
    seen Seen;
    reference_pointer<art_object> Object = Scene.AddRecorder(Scene.Top, Seen, point2d(10, 5), point2d(10, 10));
    art_pointer_event Press(art_pointer_event::PointerButtonDown, art_pointer_event::LeftButton, point2d(13, 7));
    reference_pointer<art_object> Taker = Scene.Top.HandlePointerEvent(Ref(Press));
    EXPECT_EQ(Object, Taker);
    EXPECT_EQ(point2d(13, 7), Scene.Top.GetPointerLocation());
    // The child saw its moved-in first, then the press, both at (3, 2) of its own space.
    ASSERT_EQ(2u, Seen.Types.size());
    EXPECT_EQ(art_pointer_event::PointerMovedIn, Seen.Types[0]);
    EXPECT_EQ(art_pointer_event::PointerButtonDown, Seen.Types[1]);
    EXPECT_EQ(point2d(3, 2), Seen.Locations[1]);
    // The caller's event is as it was.
    EXPECT_EQ(point2d(13, 7), Press.GetLocation());
}

TEST(ArtTopObjectEvents, MovedOutAtTheTopReachesEveryLevelOfTheOverChain)
{
    tick_scene Scene;
    seen Outer;
    seen Inner;
    reference_pointer<art_object> Parent = Scene.AddRecorder(Scene.Top, Outer, point2d(0, 0), point2d(20, 20));
    Scene.AddRecorder(*Parent, Inner, point2d(5, 5), point2d(5, 5));
    art_pointer_event Move(art_pointer_event::PointerMovedWithin, point2d(6, 6), point2d(6, 6));
    Scene.Top.HandlePointerEvent(Ref(Move));
    art_pointer_event Out(art_pointer_event::PointerMovedOut, point2d(-1, -1), point2d(6, 6));
    Scene.Top.HandlePointerEvent(Ref(Out));
    ASSERT_FALSE(Outer.Types.empty());
    ASSERT_FALSE(Inner.Types.empty());
    EXPECT_EQ(art_pointer_event::PointerMovedOut, Outer.Types.back());
    EXPECT_EQ(art_pointer_event::PointerMovedOut, Inner.Types.back());
    EXPECT_EQ(point2d(-1, -1), Scene.Top.GetPointerLocation());
}

TEST(ArtTopObjectEvents, KeyGoesToItsOwnTargetBeforeTheKeyFocus)
{
    tick_scene Scene;
    seen Target;
    seen Focus;
    reference_pointer<art_object> TargetObject = Scene.AddRecorder(Scene.Top, Target, point2d(0, 0), point2d(5, 5));
    reference_pointer<art_object> FocusObject = Scene.AddRecorder(Scene.Top, Focus, point2d(5, 0), point2d(5, 5));
    Scene.Top.GetInputSet()->SetKeyFocus(FocusObject);
    art_key_event Aimed('A' | KeyShiftFlag);
    Aimed.SetTarget(TargetObject);
    EXPECT_EQ(TargetObject, Scene.Top.HandleKeyEvent(Ref(Aimed)));
    art_key_event Free('B');
    EXPECT_EQ(FocusObject, Scene.Top.HandleKeyEvent(Ref(Free)));
    EXPECT_EQ(std::vector<int>{'A' | KeyShiftFlag}, Target.Keys);
    EXPECT_EQ(std::vector<int>{'B'}, Focus.Keys);
}

TEST(ArtTopObjectEvents, KeyWithNoTargetAndNoFocusIsUnhandled)
{
    tick_scene Scene;
    art_key_event Key(KeyEscape);
    EXPECT_FALSE(Scene.Top.HandleKeyEvent(Ref(Key)).IsSet());
}

TEST(ArtTopObjectEvents, KeyFocusThatWasDeletedLeavesTheKeyUnhandled)
{
    tick_scene Scene;
    seen Focus;
    reference_pointer<art_object> FocusObject = Scene.AddRecorder(Scene.Top, Focus, point2d(0, 0), point2d(5, 5));
    Scene.Top.GetInputSet()->SetKeyFocus(FocusObject);
    FocusObject->MarkForDeletion();
    Scene.Top.Tick();
    art_key_event Key('C');
    EXPECT_FALSE(Scene.Top.HandleKeyEvent(Ref(Key)).IsSet());
    EXPECT_TRUE(Focus.Keys.empty());
}

TEST(ArtTopObjectEvents, UnsetEventsFailTheAssertion)
{
    tick_scene Scene;
    EXPECT_THROW(Scene.Top.HandleKeyEvent(reference_pointer<art_key_event>()), zel_error);
    EXPECT_THROW(Scene.Top.HandlePointerEvent(reference_pointer<art_pointer_event>()), zel_error);
}

TEST(ArtKeyEvent, EntryGivesTheCodeTheModifiersAndTheCharacter)
{
    art_key_event Key('a' | KeyShiftFlag | KeyAltFlag);
    EXPECT_EQ('a', Key.GetKeyCode());
    EXPECT_TRUE(Key.IsShiftDown());
    EXPECT_FALSE(Key.IsControlDown());
    EXPECT_TRUE(Key.IsAltDown());
    EXPECT_EQ(KeyToCharacter('a' | KeyShiftFlag | KeyAltFlag), Key.GetCharacter());
    EXPECT_FALSE(Key.GetTarget().IsSet());
}

TEST(ArtTopObjectTick, IdleTickDrawsAndPresentsNothing)
{
    tick_scene Scene;
    Scene.Top.Tick();
    Scene.Top.Presented.clear();
    Scene.Top.Tick();
    Scene.Top.Tick();
    EXPECT_TRUE(Scene.Top.Presented.empty());
}

TEST(ArtTopObjectTick, TickPaintsWhatAskedForARedraw)
{
    tick_scene Scene;
    Scene.Top.Tick();
    reference_pointer<art_object> Fill = AddFill(Scene.Top, point2d(2, 3), point2d(4, 4), Red);
    Scene.Top.Presented.clear();
    Fill->RequestRedraw();
    Scene.Top.Tick();
    ASSERT_EQ(1u, Scene.Top.Presented.size());
    EXPECT_FALSE(Scene.Top.IsDirty());
    EXPECT_EQ(PixelText(Red), PixelText(Scene.Top.GetBitmap()->GetPixelRow(3)[2]));
}

TEST(ArtTopObjectTick, PendingPointerSendsOneMoveToWhereThePointerRests)
{
    tick_scene Scene;
    seen Seen;
    Scene.AddRecorder(Scene.Top, Seen, point2d(10, 10), point2d(10, 10));
    art_pointer_event Move(art_pointer_event::PointerMovedWithin, point2d(12, 14), point2d(0, 0));
    Scene.Top.HandlePointerEvent(Ref(Move));
    Seen.Types.clear();
    Seen.Locations.clear();
    Scene.Top.SetPointerPending();
    Scene.Top.Tick();
    EXPECT_FALSE(Scene.Top.IsPointerPending());
    ASSERT_EQ(1u, Seen.Types.size());
    EXPECT_EQ(art_pointer_event::PointerMovedWithin, Seen.Types[0]);
    EXPECT_EQ(point2d(2, 4), Seen.Locations[0]);
    Scene.Top.Tick();
    EXPECT_EQ(1u, Seen.Types.size());
}

TEST(ArtTopObjectTick, MarkedChildrenGoBeforeLayout)
{
    tick_scene Scene;
    seen Seen;
    reference_pointer<art_object> Parent = Scene.AddRecorder(Scene.Top, Seen, point2d(0, 0), point2d(20, 20));
    reference_pointer<art_object> Doomed = AddFill(*Parent, point2d(0, 0), point2d(5, 5), Red);
    AddFill(*Parent, point2d(5, 5), point2d(5, 5), Blue);
    Scene.Top.Tick();
    Seen.ChildrenAtLayout.clear();
    Parent->MarkChildrenForDeletion();
    Parent->InvalidateLayout();
    Scene.Top.Tick();
    EXPECT_FALSE(Doomed.IsSet());
    ASSERT_EQ(1u, Seen.ChildrenAtLayout.size());
    EXPECT_EQ(0, Seen.ChildrenAtLayout[0]);
}

TEST(ArtTopObjectTick, LayoutRunsOnlyWhereItIsNotSettled)
{
    tick_scene Scene;
    seen Left;
    seen Right;
    seen Deep;
    reference_pointer<art_object> LeftObject = Scene.AddRecorder(Scene.Top, Left, point2d(0, 0), point2d(20, 20));
    Scene.AddRecorder(Scene.Top, Right, point2d(20, 0), point2d(20, 20));
    reference_pointer<art_object> DeepObject = Scene.AddRecorder(*LeftObject, Deep, point2d(0, 0), point2d(5, 5));
    Scene.Top.Tick();
    Left.ChildrenAtLayout.clear();
    Right.ChildrenAtLayout.clear();
    Deep.ChildrenAtLayout.clear();
    // Only the deep object's own layout is void; the walk reaches it through its parent's children.
    DeepObject->InvalidateLayout();
    EXPECT_FALSE(Scene.Top.IsLayoutSettled());
    Scene.Top.Tick();
    EXPECT_EQ(1u, Deep.ChildrenAtLayout.size());
    EXPECT_TRUE(Left.ChildrenAtLayout.empty());
    EXPECT_TRUE(Right.ChildrenAtLayout.empty());
    EXPECT_TRUE(Scene.Top.IsLayoutSettled());
    // Settled, the next tick lays out nothing.
    Scene.Top.Tick();
    EXPECT_EQ(1u, Deep.ChildrenAtLayout.size());
}

// Sees, as it dies, whether the input set that the top object was given is still alive.
class witness_object : public art_object
{
public:
    witness_object(reference_pointer<art_human_input_set> InputSet, bool &InputSetAlive)
        : InputSet(InputSet), InputSetAlive(InputSetAlive)
    {
    }
    ~witness_object() override { InputSetAlive = InputSet.IsSet(); }

private:
    reference_pointer<art_human_input_set> InputSet;
    bool &InputSetAlive;
};

TEST(ArtTopObjectTick, ChildrenDieBeforeTheInputSet)
{
    bool InputSetAlive = false;
    reference_pointer<art_human_input_set> InputSet;
    {
        ownership_pointer<art_human_input_set> Given(
            new art_human_input_set(reference_pointer<mouse_interface>(), reference_pointer<keyboard_interface>()));
        InputSet = reference_pointer<art_human_input_set>(Given.Get());
        test_top_object Top(Given);
        EXPECT_EQ(InputSet, Top.GetInputSet());
        Top.AddChild(ownership_pointer<art_object>(new witness_object(InputSet, InputSetAlive)));
    }
    EXPECT_TRUE(InputSetAlive);
    EXPECT_FALSE(InputSet.IsSet());
}

} // namespace
