#include <gtest/gtest.h>

#include <vector>

#include "art_engine/objects/art_layer.h"
#include "tests/art_engine/objects/art_test_support.h"

using namespace art_test;

namespace {

// Writes down every rectangle it is asked to redraw, with its own count at that moment, and then
// passes the request on as any object does.
class rect_recorder : public art_object
{
public:
    struct request
    {
        rectangle Rect;
        int32_t CountBefore;
    };
    std::vector<request> Requests;

    void RequestRedrawRect(const rectangle &Rect) override
    {
        Requests.push_back({Rect, GetRedrawCount()});
        art_object::RequestRedrawRect(Rect);
    }
};

// The same, for a layer.
class layer_recorder : public art_layer
{
public:
    std::vector<rectangle> Requests;

    void RequestRedrawRect(const rectangle &Rect) override
    {
        Requests.push_back(Rect);
        art_layer::RequestRedrawRect(Rect);
    }
};

void ExpectRect(double X, double Y, double W, double H, const rectangle &Rect)
{
    EXPECT_EQ(point2d(X, Y), Rect.Location);
    EXPECT_EQ(point2d(W, H), Rect.Size);
}

// A child of size (10, 4) with its pivot at the centre, placed at (30, 40): its box in the parent
// runs from (25, 38) to (35, 42).
reference_pointer<art_object> AddSmallChild(art_object &Parent)
{
    reference_pointer<art_object> Child = Parent.AddChild(ownership_pointer<art_object>(new art_object));
    Child->SetSize(point2d(10, 4));
    Child->SetLocation(point2d(30, 40));
    return Child;
}

} // namespace

TEST(ArtRedrawWalk, ARectangleClimbsPlainObjectsToTheRootInEachSpace)
{
    rect_recorder Root;
    reference_pointer<art_object> Group = Root.AddChild(MakeBox(point2d(10, 20), point2d(100, 100)));
    reference_pointer<art_object> Middle = Group->AddChild(MakeBox(point2d(-3, 5), point2d(60, 60)));
    reference_pointer<art_object> Child = AddSmallChild(*Middle);
    Root.Requests.clear();
    int32_t RootCount = Root.GetRedrawCount();
    int32_t GroupCount = Group->GetRedrawCount();
    int32_t MiddleCount = Middle->GetRedrawCount();
    int32_t ChildCount = Child->GetRedrawCount();

    Child->RequestRedraw();

    // (25, 38) moved by the middle's corner (-3, 5), then by the group's corner (10, 20).
    ASSERT_EQ(1u, Root.Requests.size());
    ExpectRect(32, 63, 10, 4, Root.Requests[0].Rect);
    EXPECT_EQ(RootCount, Root.Requests[0].CountBefore);
    EXPECT_EQ(RootCount + 1, Root.GetRedrawCount());
    EXPECT_EQ(GroupCount + 1, Group->GetRedrawCount());
    EXPECT_EQ(MiddleCount + 1, Middle->GetRedrawCount());
    EXPECT_EQ(ChildCount + 1, Child->GetRedrawCount());
}

TEST(ArtRedrawWalk, AScaledAndATurnedFrameOnTheWayTakeTheBoxOfTheCorners)
{
    rect_recorder Root;
    reference_pointer<art_object> Turned = Root.AddChild(MakeBox(point2d(200, 100), point2d(100, 100)));
    // A half turn about the corner maps (x, y) to (200 - x, 100 - y) exactly in the corners' box.
    Turned->SetAngle(3.14159265358979323846);
    reference_pointer<art_object> Scaled = Turned->AddChild(MakeBox(point2d(10, 20), point2d(100, 100)));
    Scaled->SetScale(point2d(2, 3));
    reference_pointer<art_object> Child = AddSmallChild(*Scaled);
    Root.Requests.clear();

    Child->RequestRedraw();

    // Scaled: (25, 38)-(35, 42) becomes (60, 134)-(80, 146); turned: (120, -46)-(140, -34), up to
    // the rounding of the half turn's sine, which the box keeps within a billionth.
    ASSERT_EQ(1u, Root.Requests.size());
    const rectangle &Rect = Root.Requests[0].Rect;
    EXPECT_NEAR(120, Rect.Location.X, 1e-9);
    EXPECT_NEAR(-46, Rect.Location.Y, 1e-9);
    EXPECT_NEAR(20, Rect.Size.X, 1e-9);
    EXPECT_NEAR(12, Rect.Size.Y, 1e-9);
}

TEST(ArtRedrawWalk, AnObjectOfAnotherClassOnTheWayIsAskedInItsOwnSpace)
{
    rect_recorder Root;
    reference_pointer<art_object> Group = Root.AddChild(MakeBox(point2d(10, 20), point2d(100, 100)));
    ownership_pointer<rect_recorder> MiddleOwner(new rect_recorder);
    rect_recorder *Middle = MiddleOwner.Get();
    Group->AddChild(MiddleOwner);
    Middle->SetHandle(point2d(0, 0));
    Middle->SetLocation(point2d(1, 2));
    reference_pointer<art_object> Child = AddSmallChild(*Middle);
    Root.Requests.clear();
    Middle->Requests.clear();
    int32_t GroupCount = Group->GetRedrawCount();

    Child->SetLocation(point2d(31, 40));

    // The old place and the new one, each first in the middle's space, then in the root's.
    ASSERT_EQ(2u, Middle->Requests.size());
    ExpectRect(25, 38, 10, 4, Middle->Requests[0].Rect);
    ExpectRect(26, 38, 10, 4, Middle->Requests[1].Rect);
    EXPECT_EQ(Middle->Requests[0].CountBefore + 1, Middle->Requests[1].CountBefore);
    ASSERT_EQ(2u, Root.Requests.size());
    ExpectRect(36, 60, 10, 4, Root.Requests[0].Rect);
    ExpectRect(37, 60, 10, 4, Root.Requests[1].Rect);
    EXPECT_EQ(Root.Requests[0].CountBefore + 1, Root.Requests[1].CountBefore);
    EXPECT_EQ(GroupCount + 2, Group->GetRedrawCount());
}

TEST(ArtRedrawWalk, ALayerOnTheWayIsAskedAndPassesTheRectangleOnThroughItsFrame)
{
    rect_recorder Root;
    ownership_pointer<layer_recorder> LayerOwner(new layer_recorder);
    layer_recorder *Layer = LayerOwner.Get();
    Root.AddChild(LayerOwner);
    reference_pointer<art_object> Group = Layer->AddChild(MakeBox(point2d(10, 20), point2d(100, 100)));
    reference_pointer<art_object> Child = AddSmallChild(*Group);
    Root.Requests.clear();
    Layer->Requests.clear();

    Child->RequestRedraw();

    // The layer keeps the default frame, size (50, 50) about its centre at the origin: its space
    // reaches the root moved by (-25, -25).
    ASSERT_EQ(1u, Layer->Requests.size());
    ExpectRect(35, 58, 10, 4, Layer->Requests[0]);
    ASSERT_EQ(1u, Root.Requests.size());
    ExpectRect(10, 33, 10, 4, Root.Requests[0].Rect);
}

TEST(ArtRedrawWalk, AnInvisibleObjectCountsItsRequestAndSendsNothingUp)
{
    rect_recorder Root;
    reference_pointer<art_object> Child = AddSmallChild(Root);
    Child->SetVisible(false);
    Root.Requests.clear();
    int32_t RootCount = Root.GetRedrawCount();
    int32_t ChildCount = Child->GetRedrawCount();

    Child->RequestRedraw();

    EXPECT_EQ(ChildCount + 1, Child->GetRedrawCount());
    EXPECT_EQ(RootCount, Root.GetRedrawCount());
    EXPECT_TRUE(Root.Requests.empty());
}

TEST(ArtRedrawWalk, AWalkStopsAtAParentlessPlainRootAfterCountingIt)
{
    art_object Root;
    reference_pointer<art_object> Group = Root.AddChild(MakeBox(point2d(10, 20), point2d(100, 100)));
    reference_pointer<art_object> Child = AddSmallChild(*Group);
    int32_t RootCount = Root.GetRedrawCount();
    int32_t GroupCount = Group->GetRedrawCount();

    Child->RequestRedrawRect(rectangle(point2d(0, 0), point2d(1, 1)));

    EXPECT_EQ(RootCount + 1, Root.GetRedrawCount());
    EXPECT_EQ(GroupCount + 1, Group->GetRedrawCount());
}

namespace {

// Hit wherever the point is within 5 units of its frame.
class wide_hit_object : public art_object
{
public:
    bool IsPointInside(const point2d &Point) override { return art_object::IsPointNear(Point, 5); }
};

} // namespace

TEST(ArtHitTest, AClassOfItsOwnIsAskedItsOwnQuestionBesidePlainObjects)
{
    art_object Parent;
    ownership_pointer<art_object> Wide(new wide_hit_object);
    Wide->SetHandle(point2d(0, 0));
    Wide->SetSize(point2d(10, 10));
    Wide->SetLocation(point2d(0, 0));
    reference_pointer<art_object> WideChild = Parent.AddChild(Wide);
    reference_pointer<art_object> Plain = Parent.AddChild(MakeBox(point2d(20, 0), point2d(10, 10)));

    // (13, 5) is 3 units right of the wide child's frame and 7 left of the plain one's.
    EXPECT_EQ(WideChild.Get(), Parent.GetChildAt(point2d(13, 5), 0).Get());
    // (17, 5) is 3 units left of the plain child's frame: a plain frame hits only inside itself.
    EXPECT_FALSE(Parent.GetChildAt(point2d(17, 5), 0).IsSet());
    EXPECT_EQ(Plain.Get(), Parent.GetChildAt(point2d(17, 5), 4).Get());
}
