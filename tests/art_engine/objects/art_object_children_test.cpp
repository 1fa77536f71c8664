#include <gtest/gtest.h>

#include <cmath>

#include "art_engine/objects/art_layer.h"
#include "art_engine/objects/art_layer_object.h"
#include "art_engine/objects/art_layout.h"
#include "tests/art_engine/objects/art_test_support.h"

using namespace art_test;

namespace {

const double Pi = 3.14159265358979323846;

reference_pointer<art_object> AddBox(art_object &Parent, const char *Name, point2d Location, point2d Size)
{
    reference_pointer<art_object> Box = Parent.AddChild(MakeBox(Location, Size));
    Box->SetName(Name);
    return Box;
}

reference_pointer<art_object> AddRecorder(art_object &Parent, const char *Label, point2d Location, point2d Size,
                                          std::vector<seen_event> *Log)
{
    ownership_pointer<art_object> Recorder(new recording_object(Label, Log));
    Recorder->SetName(Label);
    Recorder->SetHandle(point2d(0, 0));
    Recorder->SetSize(Size);
    Recorder->SetLocation(Location);
    return Parent.AddChild(Recorder);
}

std::vector<std::string> Names(art_object &Parent)
{
    std::vector<std::string> Result;
    for (array_iterator<ownership_pointer<art_object>> I = Parent.GetChildren(); I.NotDone(); I.Next())
        Result.push_back(ToStd(I.Current()->GetName()));
    return Result;
}

std::string Summary(const std::vector<seen_event> &Log)
{
    std::string Text;
    for (const seen_event &Event : Log) {
        if (!Text.empty())
            Text += " ";
        Text += Event.Who + ":" + ToStd(art_pointer_event::GetTypeName(Event.Type));
    }
    return Text;
}

// A pointer and its buttons as the application would see them, and events made from that state.
struct pointer
{
    mouse_interface Mouse;
    art_human_input_set Input{&Mouse, reference_pointer<keyboard_interface>()};
    point2d Last;

    reference_pointer<art_object> Move(art_object &Top, point2d To)
    {
        art_pointer_event Event(art_pointer_event::PointerMovedWithin, To, Last, &Input);
        Last = To;
        return Top.HandlePointerEvent(&Event);
    }
    reference_pointer<art_object> Press(art_object &Top, point2d At)
    {
        Mouse.SetButton(MouseButtonLeft, true);
        art_pointer_event Event(art_pointer_event::PointerButtonDown, art_pointer_event::LeftButton, At, &Input);
        return Top.HandlePointerEvent(&Event);
    }
    reference_pointer<art_object> Release(art_object &Top, point2d At)
    {
        Mouse.SetButton(MouseButtonLeft, false);
        art_pointer_event Event(art_pointer_event::PointerButtonUp, art_pointer_event::LeftButton, At, &Input);
        return Top.HandlePointerEvent(&Event);
    }
};

// ---- Hit tests ----

TEST(ArtObjectHitTest, LeftEdgeHitsAndRightEdgeDoesNot)
{
    art_object Parent;
    AddBox(Parent, "box", point2d(15, 20), point2d(10, 20));
    EXPECT_TRUE(Parent.GetChildAt(point2d(15, 30), 0).IsSet());
    EXPECT_FALSE(Parent.GetChildAt(point2d(25, 30), 0).IsSet());
    EXPECT_TRUE(Parent.GetChildAt(point2d(20, 20), 0).IsSet());
    EXPECT_FALSE(Parent.GetChildAt(point2d(20, 40), 0).IsSet());
    EXPECT_TRUE(Parent.GetChildAt(point2d(24.999, 39.999), 0).IsSet());
    EXPECT_FALSE(Parent.GetChildAt(point2d(14.999, 30), 0).IsSet());
}

TEST(ArtObjectHitTest, InvisibleChildIsNotHitButTransparentOneIs)
{
    art_object Parent;
    reference_pointer<art_object> Hidden = AddBox(Parent, "hidden", point2d(0, 0), point2d(10, 10));
    reference_pointer<art_object> Clear = AddBox(Parent, "clear", point2d(20, 0), point2d(10, 10));
    Hidden->SetVisible(false);
    Clear->SetOpacity(0);
    EXPECT_FALSE(Parent.GetChildAt(point2d(5, 5), 0).IsSet());
    EXPECT_EQ(Clear.Get(), Parent.GetChildAt(point2d(25, 5), 0).Get());
}

TEST(ArtObjectHitTest, TopmostChildWinsAndStartSearchesBelowIt)
{
    art_object Parent;
    reference_pointer<art_object> Bottom = AddBox(Parent, "bottom", point2d(0, 0), point2d(10, 10));
    reference_pointer<art_object> Middle = AddBox(Parent, "middle", point2d(0, 0), point2d(10, 10));
    reference_pointer<art_object> Top = AddBox(Parent, "top", point2d(0, 0), point2d(10, 10));
    EXPECT_EQ(Top.Get(), Parent.GetChildAt(point2d(5, 5), 0).Get());
    EXPECT_EQ(Middle.Get(), Parent.GetChildAt(point2d(5, 5), 0, Top).Get());
    EXPECT_EQ(Bottom.Get(), Parent.GetChildAt(point2d(5, 5), 0, Middle).Get());
    EXPECT_FALSE(Parent.GetChildAt(point2d(5, 5), 0, Bottom).IsSet());
}

TEST(ArtObjectHitTest, TurnedChildIsHitInItsOwnFrame)
{
    art_object Parent;
    reference_pointer<art_object> Bar = Parent.AddChild(ownership_pointer<art_object>(new art_object));
    Bar->SetSize(point2d(40, 10));
    Bar->SetLocation(point2d(50, 50));
    Bar->SetAngle(Pi / 2);
    // Turned upright, the bar covers x 45 to 55 and y 30 to 70.
    EXPECT_TRUE(Parent.GetChildAt(point2d(50, 65), 0).IsSet());
    EXPECT_TRUE(Parent.GetChildAt(point2d(46, 31), 0).IsSet());
    EXPECT_FALSE(Parent.GetChildAt(point2d(60, 50), 0).IsSet());
    EXPECT_FALSE(Parent.GetChildAt(point2d(50, 75), 0).IsSet());
}

TEST(ArtObjectHitTest, MarginGrowsTheFrameOnAllSides)
{
    art_object Parent;
    reference_pointer<art_object> Box = AddBox(Parent, "box", point2d(10, 10), point2d(20, 20));
    EXPECT_FALSE(Box->IsPointInside(point2d(8, 15)));
    EXPECT_TRUE(Box->IsPointNear(point2d(8, 15), 3));
    EXPECT_FALSE(Box->IsPointNear(point2d(8, 15), 1));
    EXPECT_TRUE(Box->IsPointNear(point2d(32.5, 32.5), 3));
    EXPECT_FALSE(Box->IsPointNear(point2d(33, 20), 3));
    EXPECT_EQ(Box.Get(), Parent.GetChildAt(point2d(8, 15), 3).Get());
    EXPECT_FALSE(Parent.GetChildAt(point2d(8, 15), 0).IsSet());
}

class negative_size_object : public art_object
{
public:
    point2d GetMinimumSize() override { return point2d(-100, -100); }
};

TEST(ArtObjectHitTest, NegativeSizeRunsLeftFromTheOrigin)
{
    art_object Parent;
    reference_pointer<art_object> Box = Parent.AddChild(ownership_pointer<art_object>(new negative_size_object));
    Box->SetHandle(point2d(0, 0));
    Box->SetSize(point2d(-10, 20));
    Box->SetLocation(point2d(50, 0));
    EXPECT_EQ(point2d(-10, 20), Box->GetSize());
    EXPECT_TRUE(Box->IsPointInside(point2d(40, 5)));
    EXPECT_FALSE(Box->IsPointInside(point2d(50, 5)));
    EXPECT_FALSE(Box->IsPointInside(point2d(39.5, 5)));
}

TEST(ArtObjectHitTest, ALayerIsHitOnlyWhereItsChildrenAre)
{
    art_object Parent;
    reference_pointer<art_object> Layer = Parent.AddChild(ownership_pointer<art_object>(new art_layer));
    Layer->SetHandle(point2d(0, 0));
    Layer->SetLocation(point2d(100, 0));
    AddBox(*Layer, "inner", point2d(10, 10), point2d(5, 5));
    EXPECT_TRUE(Layer->IsPointInside(point2d(112, 12)));
    EXPECT_FALSE(Layer->IsPointInside(point2d(105, 5)));
    EXPECT_TRUE(Layer->IsPointNear(point2d(108, 12), 3));
}

// ---- The stack ----

TEST(ArtObjectChildren, MoveChildBeyondEitherEndMovesToThatEnd)
{
    art_object Parent;
    reference_pointer<art_object> A = AddBox(Parent, "a", point2d(), point2d(1, 1));
    AddBox(Parent, "b", point2d(), point2d(1, 1));
    AddBox(Parent, "c", point2d(), point2d(1, 1));
    EXPECT_TRUE(Parent.MoveChild(A, 10));
    EXPECT_EQ((std::vector<std::string>{"b", "c", "a"}), Names(Parent));
    EXPECT_FALSE(Parent.MoveChild(A, 1));
    EXPECT_EQ((std::vector<std::string>{"b", "c", "a"}), Names(Parent));
    EXPECT_TRUE(Parent.MoveChild(A, -10));
    EXPECT_EQ((std::vector<std::string>{"a", "b", "c"}), Names(Parent));
    EXPECT_FALSE(Parent.MoveChild(A, -1));
    EXPECT_TRUE(Parent.MoveChild(A, 1));
    EXPECT_EQ((std::vector<std::string>{"b", "a", "c"}), Names(Parent));
}

TEST(ArtObjectChildren, RemovingTheLastChildDropsTheChildrenObject)
{
    art_object Parent;
    reference_pointer<art_object> Only = AddBox(Parent, "only", point2d(), point2d(1, 1));
    ASSERT_TRUE(Parent.GetChildrenObject().IsSet());
    ownership_pointer<art_object> Removed = Parent.RemoveChild(Only);
    EXPECT_EQ(Only.Get(), Removed.Get());
    EXPECT_FALSE(Removed->GetParent().IsSet());
    EXPECT_FALSE(Parent.GetChildrenObject().IsSet());
    EXPECT_FALSE(Parent.HasChildren());
    array_iterator<ownership_pointer<art_object>> Iterator = Parent.GetChildren();
    EXPECT_TRUE(Iterator.Done());
    EXPECT_FALSE(Iterator.NotDone());
    EXPECT_EQ(0u, Iterator.GetNumberOfElements());
}

TEST(ArtObjectChildren, RemoveChildKeepsTheOthersInOrderAndRedrawsTheOwner)
{
    art_object Parent;
    AddBox(Parent, "a", point2d(), point2d(1, 1));
    reference_pointer<art_object> B = AddBox(Parent, "b", point2d(), point2d(1, 1));
    AddBox(Parent, "c", point2d(), point2d(1, 1));
    int32_t Count = Parent.GetRedrawCount();
    ownership_pointer<art_object> Removed = Parent.RemoveChild(B);
    EXPECT_EQ((std::vector<std::string>{"a", "c"}), Names(Parent));
    EXPECT_EQ(Count + 1, Parent.GetRedrawCount());
    EXPECT_TRUE(B.IsSet());
}

TEST(ArtObjectChildren, AddChildAfterInsertsBehindTheGivenChild)
{
    art_object Parent;
    reference_pointer<art_object> A = AddBox(Parent, "a", point2d(), point2d(1, 1));
    AddBox(Parent, "c", point2d(), point2d(1, 1));
    int32_t Count = Parent.GetRedrawCount();
    Parent.AddChildAfter(A, MakeBox(point2d(), point2d(1, 1)))->SetName("b");
    EXPECT_GT(Parent.GetRedrawCount(), Count);
    Parent.AddChildAfter(reference_pointer<art_object>(), MakeBox(point2d(), point2d(1, 1)))->SetName("first");
    EXPECT_EQ((std::vector<std::string>{"first", "a", "b", "c"}), Names(Parent));
    EXPECT_EQ(&Parent, Parent.GetChildByName("b")->GetParent().Get());
}

TEST(ArtObjectChildren, GetIteratorStartsAtTheGivenChild)
{
    art_object Parent;
    AddBox(Parent, "a", point2d(), point2d(1, 1));
    reference_pointer<art_object> B = AddBox(Parent, "b", point2d(), point2d(1, 1));
    AddBox(Parent, "c", point2d(), point2d(1, 1));
    array_iterator<ownership_pointer<art_object>> Iterator = Parent.GetChildrenObject()->GetIterator(B);
    ASSERT_TRUE(Iterator.NotDone());
    EXPECT_EQ("b", ToStd(Iterator.Current()->GetName()));
    Iterator.Next();
    EXPECT_EQ("c", ToStd(Iterator.Current()->GetName()));
}

TEST(ArtObjectChildren, GetChildByNameSearchesOnlyLiveDirectChildren)
{
    art_object Parent;
    reference_pointer<art_object> A = AddBox(Parent, "a", point2d(), point2d(1, 1));
    AddBox(*A, "deep", point2d(), point2d(1, 1));
    reference_pointer<art_object> Gone = AddBox(Parent, "gone", point2d(), point2d(1, 1));
    Gone->MarkForDeletion();
    EXPECT_EQ(A.Get(), Parent.GetChildByName("a").Get());
    EXPECT_FALSE(Parent.GetChildByName("deep").IsSet());
    EXPECT_FALSE(Parent.GetChildByName("gone").IsSet());
}

TEST(ArtObjectChildren, SortByStackIsStableAndGroupsStencilNormalPost)
{
    art_object Parent;
    AddBox(Parent, "n1", point2d(), point2d(1, 1));
    reference_pointer<art_object> Post = Parent.AddChild(ownership_pointer<art_object>(new art_layer_object));
    Post->SetName("post");
    Post->SetStackMode(StackModePost);
    AddBox(Parent, "plus", point2d(), point2d(1, 1))->SetStackMode(StackModePlusStencil);
    AddBox(Parent, "n2", point2d(), point2d(1, 1));
    AddBox(Parent, "stencil", point2d(), point2d(1, 1))->SetStackMode(StackModeStencil);
    AddBox(Parent, "minus", point2d(), point2d(1, 1))->SetStackMode(StackModeMinusStencil);
    Parent.GetChildrenObject()->SortByStack();
    EXPECT_EQ((std::vector<std::string>{"plus", "stencil", "minus", "n1", "n2", "post"}), Names(Parent));
}

TEST(ArtObjectChildren, DeleteMarkedChildrenKeepsTheSurvivorsInOrderAtEveryDepth)
{
    art_object Parent;
    reference_pointer<art_object> A = AddBox(Parent, "a", point2d(), point2d(1, 1));
    reference_pointer<art_object> B = AddBox(Parent, "b", point2d(), point2d(1, 1));
    AddBox(Parent, "c", point2d(), point2d(1, 1));
    reference_pointer<art_object> D = AddBox(Parent, "d", point2d(), point2d(1, 1));
    AddBox(*A, "a1", point2d(), point2d(1, 1));
    reference_pointer<art_object> A2 = AddBox(*A, "a2", point2d(), point2d(1, 1));
    B->MarkForDeletion();
    D->MarkForDeletion();
    A2->MarkForDeletion();
    EXPECT_EQ((std::vector<std::string>{"a", "b", "c", "d"}), Names(Parent));
    Parent.DeleteMarkedChildren();
    EXPECT_EQ((std::vector<std::string>{"a", "c"}), Names(Parent));
    EXPECT_EQ((std::vector<std::string>{"a1"}), Names(*A));
    EXPECT_FALSE(B.IsSet());
    EXPECT_FALSE(D.IsSet());
    EXPECT_FALSE(A2.IsSet());
}

TEST(ArtObjectChildren, AMarkThreeLevelsDownIsFoundFromTheTop)
{
    art_object Top;
    reference_pointer<art_object> Middle = AddBox(Top, "middle", point2d(), point2d(1, 1));
    reference_pointer<art_object> Lower = AddBox(*Middle, "lower", point2d(), point2d(1, 1));
    reference_pointer<art_object> Deep = AddBox(*Lower, "deep", point2d(), point2d(1, 1));
    AddBox(*Lower, "kept", point2d(), point2d(1, 1));
    Top.DeleteMarkedChildren();
    EXPECT_TRUE(Deep.IsSet());
    Deep->MarkForDeletion();
    Top.DeleteMarkedChildren();
    EXPECT_FALSE(Deep.IsSet());
    EXPECT_EQ((std::vector<std::string>{"kept"}), Names(*Lower));
}

TEST(ArtObjectChildren, AnObjectMarkedBeforeItJoinsGoesAtTheNextDeletion)
{
    art_object Top;
    reference_pointer<art_object> Middle = AddBox(Top, "middle", point2d(), point2d(1, 1));
    ownership_pointer<art_object> Group(new art_object);
    reference_pointer<art_object> Marked = AddBox(*Group, "marked", point2d(), point2d(1, 1));
    Marked->MarkForDeletion();
    Middle->AddChild(Group);
    ownership_pointer<art_object> Lone(new art_object);
    Lone->MarkForDeletion();
    reference_pointer<art_object> LoneJoined = Middle->AddChild(Lone);
    Top.DeleteMarkedChildren();
    EXPECT_FALSE(Marked.IsSet());
    EXPECT_FALSE(LoneJoined.IsSet());
    EXPECT_EQ(1, Middle->GetNumberOfChildren());
}

TEST(ArtObjectChildren, DeletingEveryChildDropsTheChildrenObject)
{
    art_object Parent;
    AddBox(Parent, "a", point2d(), point2d(1, 1));
    AddBox(Parent, "b", point2d(), point2d(1, 1));
    Parent.MarkChildrenForDeletion();
    int32_t Count = Parent.GetRedrawCount();
    Parent.DeleteMarkedChildren();
    EXPECT_FALSE(Parent.GetChildrenObject().IsSet());
    EXPECT_GT(Parent.GetRedrawCount(), Count);
}

TEST(ArtObjectChildren, AnUnsettledChildInvalidatesTheLayoutsAbove)
{
    art_object Top;
    reference_pointer<art_object> Middle = AddBox(Top, "middle", point2d(), point2d(10, 10));
    AddBox(*Middle, "leaf", point2d(), point2d(1, 1));
    Top.Layout();
    ASSERT_TRUE(Top.IsLayoutSettled());
    ASSERT_TRUE(Middle->IsLayoutSettled());
    AddBox(*Middle, "new", point2d(), point2d(1, 1));
    EXPECT_TRUE(Middle->IsLayoutValid());
    EXPECT_FALSE(Middle->GetChildrenObject()->IsLayoutValid());
    EXPECT_FALSE(Top.GetChildrenObject()->IsLayoutValid());
}

TEST(ArtObjectChildren, AChildOfAnObjectThatFitsItsChildrenInvalidatesItsLayout)
{
    art_object Parent;
    Parent.GetLayout().DynamicCast<art_floating_autolayout>()->GetH().SetMode(3);
    Parent.Layout();
    ASSERT_TRUE(Parent.IsLayoutValid());
    AddBox(Parent, "a", point2d(), point2d(1, 1));
    EXPECT_FALSE(Parent.IsLayoutValid());
}

// ---- Pointer routing ----

class routing_scene : public testing::Test
{
protected:
    // A top object of 200 by 100 whose space is its parent's, so events come in as they are.
    // A (10..60) holds A1 (15..35 in top space); B covers 100..150.
    void SetUp() override
    {
        Top.SetHandle(point2d(0, 0));
        Top.SetSize(point2d(200, 100));
        A = AddRecorder(Top, "A", point2d(10, 10), point2d(50, 50), &Log);
        A1 = AddRecorder(*A, "A1", point2d(5, 5), point2d(20, 20), &Log);
        B = AddRecorder(Top, "B", point2d(100, 10), point2d(50, 50), &Log);
    }

    reference_pointer<art_object_children> Level(reference_pointer<art_object> Object)
    {
        return Object->GetChildrenObject();
    }

    std::vector<seen_event> Log;
    art_object Top;
    reference_pointer<art_object> A;
    reference_pointer<art_object> A1;
    reference_pointer<art_object> B;
    pointer Pointer;
};

TEST_F(routing_scene, MovingInSendsMovedInDownThePathInEachObjectsSpace)
{
    EXPECT_EQ(&Top, Pointer.Move(Top, point2d(20, 20)).Get());
    EXPECT_EQ("A:PointerMovedIn A1:PointerMovedIn", Summary(Log));
    EXPECT_EQ(point2d(10, 10), Log[0].Location);
    EXPECT_EQ(point2d(5, 5), Log[1].Location);
    EXPECT_EQ(A.Get(), Level(&Top)->GetMouseOverDHO().Get());
    EXPECT_EQ(A1.Get(), Level(A)->GetMouseOverDHO().Get());
    Log.clear();
    Pointer.Move(Top, point2d(21, 20));
    EXPECT_EQ("A:PointerMovedWithin A1:PointerMovedWithin", Summary(Log));
    EXPECT_EQ(point2d(11, 10), Log[0].Location);
    EXPECT_EQ(point2d(10, 10), Log[0].LastLocation);
}

TEST_F(routing_scene, ChangingTheOverChildSendsMovedOutThenMovedIn)
{
    Pointer.Move(Top, point2d(20, 20));
    Log.clear();
    Pointer.Move(Top, point2d(120, 20));
    EXPECT_EQ("A:PointerMovedOut A1:PointerMovedOut B:PointerMovedIn", Summary(Log));
    EXPECT_EQ(B.Get(), Level(&Top)->GetMouseOverDHO().Get());
    EXPECT_FALSE(Level(A)->GetMouseOverDHO().IsSet());
}

TEST_F(routing_scene, APressCapturesTheWholePathAndReturnsTheDeepestTaker)
{
    Pointer.Move(Top, point2d(20, 20));
    Log.clear();
    EXPECT_EQ(A1.Get(), Pointer.Press(Top, point2d(20, 20)).Get());
    EXPECT_EQ("A:PointerButtonDown A1:PointerButtonDown", Summary(Log));
    EXPECT_EQ(A.Get(), Level(&Top)->GetMouseFocusedDHO().Get());
    EXPECT_EQ(A1.Get(), Level(A)->GetMouseFocusedDHO().Get());
}

TEST_F(routing_scene, WithAButtonHeldMovesGoToTheFocusedChildOnly)
{
    Pointer.Move(Top, point2d(20, 20));
    Pointer.Press(Top, point2d(20, 20));
    Log.clear();
    Pointer.Move(Top, point2d(120, 20));
    EXPECT_EQ("A:PointerMovedWithin A1:PointerMovedWithin", Summary(Log));
    EXPECT_EQ(point2d(110, 10), Log[0].Location);
    EXPECT_EQ(point2d(105, 5), Log[1].Location);
    EXPECT_EQ(A.Get(), Level(&Top)->GetMouseOverDHO().Get());
}

TEST_F(routing_scene, ReleasingTheLastButtonClearsFocusAndTheNextMoveHitTestsAfresh)
{
    Pointer.Move(Top, point2d(20, 20));
    Pointer.Press(Top, point2d(20, 20));
    Pointer.Move(Top, point2d(120, 20));
    Log.clear();
    Pointer.Release(Top, point2d(120, 20));
    EXPECT_EQ("A:PointerButtonUp A1:PointerButtonUp", Summary(Log));
    EXPECT_FALSE(Level(&Top)->GetMouseFocusedDHO().IsSet());
    EXPECT_FALSE(Level(A)->GetMouseFocusedDHO().IsSet());
    Log.clear();
    Pointer.Move(Top, point2d(121, 20));
    EXPECT_EQ("A:PointerMovedOut A1:PointerMovedOut B:PointerMovedIn", Summary(Log));
}

TEST_F(routing_scene, ASecondButtonKeepsTheCaptureUntilTheLastIsReleased)
{
    Pointer.Move(Top, point2d(20, 20));
    Pointer.Press(Top, point2d(20, 20));
    Pointer.Mouse.SetButton(MouseButtonRight, true);
    art_pointer_event RightDown(art_pointer_event::PointerButtonDown, art_pointer_event::RightButton,
                                point2d(20, 20), &Pointer.Input);
    Top.HandlePointerEvent(&RightDown);
    Pointer.Release(Top, point2d(120, 20));
    EXPECT_EQ(A.Get(), Level(&Top)->GetMouseFocusedDHO().Get());
    Pointer.Mouse.SetButton(MouseButtonRight, false);
    art_pointer_event RightUp(art_pointer_event::PointerButtonUp, art_pointer_event::RightButton, point2d(120, 20),
                              &Pointer.Input);
    Top.HandlePointerEvent(&RightUp);
    EXPECT_FALSE(Level(&Top)->GetMouseFocusedDHO().IsSet());
}

TEST_F(routing_scene, AMarkedChildStopsReceivingEventsAtOnce)
{
    Pointer.Move(Top, point2d(20, 20));
    A->MarkForDeletion();
    Log.clear();
    Pointer.Move(Top, point2d(21, 20));
    Pointer.Press(Top, point2d(21, 20));
    EXPECT_EQ("", Summary(Log));
    EXPECT_FALSE(Level(&Top)->GetMouseOverDHO().IsSet());
    EXPECT_FALSE(Level(&Top)->GetMouseFocusedDHO().IsSet());
}

TEST_F(routing_scene, AMarkedFocusedChildLosesTheCaptureAtOnce)
{
    Pointer.Move(Top, point2d(20, 20));
    Pointer.Press(Top, point2d(20, 20));
    A->MarkForDeletion();
    Log.clear();
    Pointer.Move(Top, point2d(120, 20));
    EXPECT_EQ("B:PointerMovedIn", Summary(Log));
}

TEST_F(routing_scene, MovedOutAtTheTopClearsTheOverChildChain)
{
    Pointer.Move(Top, point2d(20, 20));
    Log.clear();
    art_pointer_event Out(art_pointer_event::PointerMovedOut, point2d(-1, -1), point2d(20, 20), &Pointer.Input);
    Top.HandlePointerEvent(&Out);
    EXPECT_EQ("A:PointerMovedOut A1:PointerMovedOut", Summary(Log));
    EXPECT_FALSE(Level(&Top)->GetMouseOverDHO().IsSet());
    EXPECT_FALSE(Level(A)->GetMouseOverDHO().IsSet());
}

TEST_F(routing_scene, APressOnAnEmptyAreaReturnsTheOwnerAndFocusesNothing)
{
    EXPECT_EQ(&Top, Pointer.Press(Top, point2d(80, 80)).Get());
    EXPECT_FALSE(Level(&Top)->GetMouseFocusedDHO().IsSet());
    EXPECT_EQ("", Summary(Log));
}

TEST_F(routing_scene, OtherEventsAreNotTaken)
{
    art_pointer_event Other(art_pointer_event::OtherPET, art_pointer_event::NoButton, point2d(20, 20),
                            &Pointer.Input);
    EXPECT_FALSE(Top.HandlePointerEvent(&Other).IsSet());
}

TEST(ArtObjectRouting, AnObjectWithoutChildrenTakesNothing)
{
    art_object Leaf;
    art_pointer_event Event(art_pointer_event::PointerButtonDown, art_pointer_event::LeftButton, point2d(1, 1));
    EXPECT_FALSE(Leaf.HandlePointerEvent(&Event).IsSet());
    EXPECT_NE(std::string::npos, ZEL_ERROR_MESSAGE(Leaf.HandlePointerEvent(reference_pointer<art_pointer_event>()))
                                     .find("'PointerEvent.IsSet()' is false"));
}

TEST(ArtObjectRouting, AnOverrideSeesTheEventInItsOwnSpaceAndTheCallerGetsItBack)
{
    std::vector<seen_event> Log;
    art_object Top;
    Top.SetHandle(point2d(0, 0));
    Top.SetSize(point2d(200, 100));
    // Size (40, 20) about its centre (20, 10), scale (1, 2), a quarter turn, centre at (100, 50).
    ownership_pointer<art_object> Turned(new recording_object("turned", &Log));
    Turned->SetSize(point2d(40, 20));
    Turned->SetScale(point2d(1, 2));
    Turned->SetAngle(Pi / 2);
    Turned->SetLocation(point2d(100, 50));
    reference_pointer<art_object> Outer = Top.AddChild(Turned);
    AddRecorder(*Outer, "inner", point2d(10, 0), point2d(10, 10), &Log);

    pointer Pointer;
    Pointer.Last = point2d(100, 50);
    Pointer.Move(Top, point2d(110, 45));
    Log.clear();
    art_pointer_event Event(art_pointer_event::PointerMovedWithin, point2d(110, 45), point2d(100, 50),
                            &Pointer.Input);
    Top.HandlePointerEvent(&Event);
    // (110, 45) - (100, 50) = (10, -5); turned back (-5, -10); unscaled (-5, -5); plus the centre (20, 10).
    ASSERT_EQ("turned:PointerMovedWithin inner:PointerMovedWithin", Summary(Log));
    EXPECT_NEAR(15, Log[0].Location.X, 1e-12);
    EXPECT_NEAR(5, Log[0].Location.Y, 1e-12);
    EXPECT_NEAR(20, Log[0].LastLocation.X, 1e-12);
    EXPECT_NEAR(10, Log[0].LastLocation.Y, 1e-12);
    EXPECT_NEAR(5, Log[1].Location.X, 1e-12);
    EXPECT_NEAR(5, Log[1].Location.Y, 1e-12);
    EXPECT_EQ(point2d(110, 45), Event.GetLocation());
    EXPECT_EQ(point2d(100, 50), Event.GetLastLocation());
    EXPECT_EQ(art_pointer_event::PointerMovedWithin, Event.GetPointerEventType());
}

} // namespace
