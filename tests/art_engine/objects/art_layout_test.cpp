#include <gtest/gtest.h>

#include "art_engine/objects/art_layout.h"
#include "tests/art_engine/objects/art_test_support.h"

using namespace art_test;

namespace {

art_relativizer Relativizer(int Mode, double A, double B)
{
    art_relativizer Axis;
    Axis.SetMode(Mode);
    Axis.RelVals[0] = A;
    Axis.RelVals[1] = B;
    return Axis;
}

reference_pointer<art_floating_autolayout> FloatingLayout(art_object &Object)
{
    return Object.GetLayout().DynamicCast<art_floating_autolayout>();
}

// Sets one object's layout on both axes: mode, position value, extent value.
void SetLayout(art_object &Object, int XMode, double X, double W, int YMode, double Y, double H)
{
    reference_pointer<art_floating_autolayout> Layout = FloatingLayout(Object);
    Layout->SetMode(XMode, YMode);
    Layout->GetH().RelVals[0] = X;
    Layout->GetH().RelVals[1] = W;
    Layout->GetV().RelVals[0] = Y;
    Layout->GetV().RelVals[1] = H;
}

std::string AssertionOf(const std::string &Message)
{
    size_t Start = Message.find("'");
    size_t End = Message.find("' is false");
    if (Start == std::string::npos || End == std::string::npos)
        return Message;
    return Message.substr(Start + 1, End - Start - 1);
}

// ---- The tables ----

TEST(ArtRelativizer, EveryModeComputesItsPositionAndExtent)
{
    // P = 200, C = 30, K = 0.25, a = 3, b = 7.
    const double Expected[8][2] = {{3, 7},     {203, 7},  {600, 7},     {3, 37},
                                   {203, 37}, {600, 37}, {54, 204}, {600, 1400}};
    for (int Mode = 0; Mode < 8; Mode++) {
        double Position = -1;
        double Extent = -1;
        Relativizer(Mode, 3, 7).Compute(200, 30, 0.25, Position, Extent);
        EXPECT_EQ(Expected[Mode][0], Position) << "mode " << Mode;
        EXPECT_EQ(Expected[Mode][1], Extent) << "mode " << Mode;
    }
}

TEST(ArtRelativizer, TheReverseComputationGivesTheValuesBack)
{
    const double Expected[8][2] = {{3, 7}, {3, 7}, {3, 7}, {3, 7}, {3, 7}, {3, 7}, {3, 7}, {3, 7}};
    const double Frames[8][2] = {{3, 7},     {203, 7},  {600, 7},     {3, 37},
                                 {203, 37}, {600, 37}, {54, 204}, {600, 1400}};
    for (int Mode = 0; Mode < 8; Mode++) {
        art_relativizer Axis = Relativizer(Mode, 0, 0);
        Axis.SetFromObject(Frames[Mode][0], Frames[Mode][1], 200, 30, 0.25, true, true);
        EXPECT_EQ(Expected[Mode][0], Axis.RelVals[0]) << "mode " << Mode;
        EXPECT_EQ(Expected[Mode][1], Axis.RelVals[1]) << "mode " << Mode;
    }
}

TEST(ArtRelativizer, TheReverseComputationStoresOnlyWhatItIsAskedFor)
{
    art_relativizer Axis = Relativizer(1, 11, 12);
    Axis.SetFromObject(250, 40, 200, 0, 0.5, true, false);
    EXPECT_EQ(50, Axis.RelVals[0]);
    EXPECT_EQ(12, Axis.RelVals[1]);
    Axis.SetFromObject(250, 40, 200, 0, 0.5, false, true);
    EXPECT_EQ(50, Axis.RelVals[0]);
    EXPECT_EQ(40, Axis.RelVals[1]);
}

TEST(ArtRelativizer, ModeSevenWithAParentOfSizeZero)
{
    double Position = -1;
    double Extent = -1;
    Relativizer(7, 0.5, 1).Compute(0, 0, 0.25, Position, Extent);
    EXPECT_EQ(0, Position);
    EXPECT_EQ(0, Extent);
    art_relativizer Axis = Relativizer(7, 0.5, 1);
    Axis.SetFromObject(0, 37, 0, 0, 0.25, true, true);
    EXPECT_EQ(0.25, Axis.RelVals[0]);
    EXPECT_EQ(37, Axis.RelVals[1]);
}

TEST(ArtRelativizer, RelativeModesWithAParentOfSizeZeroStoreTheHandle)
{
    for (int Mode : {2, 5}) {
        art_relativizer Axis = Relativizer(Mode, 9, 9);
        Axis.SetFromObject(17, 40, 0, 0, 0.75, true, false);
        EXPECT_EQ(0.75, Axis.RelVals[0]) << "mode " << Mode;
    }
}

TEST(ArtRelativizer, ModeSixStretchesBetweenBothEdges)
{
    double Position = 0;
    double Extent = 0;
    Relativizer(6, 10, -10).Compute(100, 0, 0.5, Position, Extent);
    EXPECT_EQ(80, Extent);
    EXPECT_EQ(50, Position);
}

TEST(ArtRelativizer, PinPairsMapToModes)
{
    const int Expected[4][4] = {{-1, 1, 2, -1}, {0, 6, 0, 3}, {2, 2, 7, 5}, {-1, 4, 5, -1}};
    for (int Left = 0; Left < 4; Left++)
        for (int Right = 0; Right < 4; Right++) {
            art_relativizer Axis;
            Axis.PinLeft = static_cast<art_pin>(Left);
            Axis.PinRight = static_cast<art_pin>(Right);
            if (Expected[Left][Right] < 0)
                EXPECT_EQ("false", AssertionOf(ZEL_ERROR_MESSAGE(Axis.GetMode()))) << Left << " " << Right;
            else
                EXPECT_EQ(Expected[Left][Right], Axis.GetMode()) << Left << " " << Right;
        }
}

TEST(ArtRelativizer, ModesMapToPinPairs)
{
    const art_pin Expected[8][2] = {{PinAdd, PinImplied}, {PinImplied, PinAdd},   {PinMul, PinImplied},
                                    {PinAdd, PinChildren}, {PinChildren, PinAdd}, {PinMul, PinChildren},
                                    {PinAdd, PinAdd},      {PinMul, PinMul}};
    for (int Mode = 0; Mode < 8; Mode++) {
        art_relativizer Axis;
        Axis.SetMode(Mode);
        EXPECT_EQ(Expected[Mode][0], Axis.PinLeft);
        EXPECT_EQ(Expected[Mode][1], Axis.PinRight);
    }
    art_relativizer Axis;
    EXPECT_EQ("false", AssertionOf(ZEL_ERROR_MESSAGE(Axis.SetMode(8))));
    EXPECT_EQ("false", AssertionOf(ZEL_ERROR_MESSAGE(Axis.SetMode(-1))));
}

TEST(ArtRelativizer, IllegalPairsAreImpliedWithChildren)
{
    for (int Left = 0; Left < 4; Left++)
        for (int Right = 0; Right < 4; Right++) {
            art_relativizer Axis;
            Axis.PinLeft = static_cast<art_pin>(Left);
            Axis.PinRight = static_cast<art_pin>(Right);
            bool Illegal = (Left == 0 && Right == 3) || (Left == 3 && Right == 0);
            EXPECT_EQ(Illegal, Axis.IllegalPin()) << Left << " " << Right;
        }
}

TEST(ArtRelativizer, SettingPinLeftToChildrenWhileRightIsImpliedMovesRightToAdd)
{
    art_relativizer Axis;
    Axis.PinLeft = PinAdd;
    Axis.PinRight = PinImplied;
    Axis.SetPinLeft(PinChildren);
    EXPECT_EQ(PinChildren, Axis.PinLeft);
    EXPECT_EQ(PinAdd, Axis.PinRight);
    EXPECT_EQ(4, Axis.GetMode());
}

TEST(ArtRelativizer, SettingPinRightFixesTheLeftPin)
{
    art_relativizer Axis;
    Axis.PinLeft = PinImplied;
    Axis.PinRight = PinAdd;
    Axis.SetPinRight(PinChildren);
    EXPECT_EQ(PinAdd, Axis.PinLeft);
    EXPECT_EQ(3, Axis.GetMode());
}

TEST(ArtRelativizer, NextPinCyclesAndSkipsIllegalPairs)
{
    art_relativizer Axis;
    Axis.PinLeft = PinAdd;
    Axis.PinRight = PinChildren;
    Axis.NextPinLeft();
    EXPECT_EQ(PinMul, Axis.PinLeft);
    Axis.NextPinLeft();
    EXPECT_EQ(PinChildren, Axis.PinLeft);
    Axis.NextPinLeft();
    EXPECT_EQ(PinAdd, Axis.PinLeft);

    Axis.PinLeft = PinChildren;
    Axis.PinRight = PinAdd;
    Axis.NextPinRight();
    EXPECT_EQ(PinMul, Axis.PinRight);
    Axis.NextPinRight();
    EXPECT_EQ(PinChildren, Axis.PinRight);
    Axis.NextPinRight();
    EXPECT_EQ(PinAdd, Axis.PinRight);
}

TEST(ArtRelativizer, DependenciesOfEachMode)
{
    for (int Mode = 0; Mode < 8; Mode++) {
        art_relativizer Axis;
        Axis.SetMode(Mode);
        EXPECT_EQ(Mode != 0 && Mode != 3, Axis.DependsOnParent()) << Mode;
        EXPECT_EQ(Mode >= 3 && Mode <= 5, Axis.DependsOnChildren()) << Mode;
        EXPECT_EQ(Mode <= 2, Axis.HasImplied()) << Mode;
    }
}

TEST(ArtRelativizer, SetImpliedAssignsTheImpliedSide)
{
    art_relativizer Axis = Relativizer(1, 1, 2);
    Axis.SetImplied(9);
    EXPECT_EQ(9, Axis.RelVals[0]);
    EXPECT_EQ(2, Axis.RelVals[1]);
    Axis = Relativizer(0, 1, 2);
    Axis.SetImplied(8);
    EXPECT_EQ(1, Axis.RelVals[0]);
    EXPECT_EQ(8, Axis.RelVals[1]);
    Axis = Relativizer(7, 1, 2);
    Axis.SetImplied(7);
    EXPECT_EQ(1, Axis.RelVals[0]);
    EXPECT_EQ(2, Axis.RelVals[1]);
}

TEST(ArtRelativizer, CenterPinnedAndRelChildren)
{
    art_relativizer Axis;
    Axis.PinLeft = PinChildren;
    Axis.PinRight = PinChildren;
    EXPECT_TRUE(Axis.IsCenterPinned());
    EXPECT_TRUE(Axis.IsRelChildren());
    Axis.PinLeft = PinImplied;
    Axis.PinRight = PinImplied;
    EXPECT_TRUE(Axis.IsCenterPinned());
    EXPECT_FALSE(Axis.IsRelChildren());
    Axis.SetMode(7);
    EXPECT_FALSE(Axis.IsCenterPinned());
}

TEST(ArtRelativizer, DebugText)
{
    EXPECT_EQ("art_relativizer(PinLeft=Mul, PinRight=Mul, RelVals=(0.5,1), CenterPinned=false, RelChildren=false)",
              ToStd(Relativizer(7, 0.5, 1).GetDebugString()));
    art_relativizer Axis;
    Axis.PinLeft = PinChildren;
    Axis.PinRight = PinChildren;
    EXPECT_EQ("art_relativizer(PinLeft=Children, PinRight=Children, RelVals=(0,0), CenterPinned=true, "
              "RelChildren=true)",
              ToStd(Axis.GetDebugString()));
}

TEST(ArtRelativizer, OldPinLetters)
{
    EXPECT_EQ(PinImplied, art_relativizer::GetPinFromLetter('i'));
    EXPECT_EQ(PinAdd, art_relativizer::GetPinFromLetter('a'));
    EXPECT_EQ(PinAdd, art_relativizer::GetPinFromLetter('+'));
    EXPECT_EQ(PinMul, art_relativizer::GetPinFromLetter('m'));
    EXPECT_EQ(PinMul, art_relativizer::GetPinFromLetter('*'));
    EXPECT_EQ(PinChildren, art_relativizer::GetPinFromLetter('C'));
    EXPECT_EQ(PinMul, art_relativizer::GetPinFromLetter('M'));
    EXPECT_EQ("false", AssertionOf(ZEL_ERROR_MESSAGE(art_relativizer::GetPinFromLetter('q'))));
}

// ---- The floating layout ----

TEST(ArtFloatingAutolayout, ANewObjectHoldsItsFrameInModeZero)
{
    art_object Object;
    reference_pointer<art_floating_autolayout> Layout = FloatingLayout(Object);
    EXPECT_EQ(&Object, Layout->GetObject().Get());
    EXPECT_EQ(0, Layout->GetH().GetMode());
    EXPECT_EQ(0, Layout->GetV().GetMode());
    EXPECT_EQ(0, Layout->GetH().RelVals[0]);
    EXPECT_EQ(50, Layout->GetH().RelVals[1]);
    EXPECT_EQ(50, Layout->GetV().RelVals[1]);
    EXPECT_EQ("art_floating_autolayout::GetDebugString()\n\tH: art_relativizer(PinLeft=Add, PinRight=Implied, "
              "RelVals=(0,50), CenterPinned=false, RelChildren=false)\n\tV: art_relativizer(PinLeft=Add, "
              "PinRight=Implied, RelVals=(0,50), CenterPinned=false, RelChildren=false)",
              ToStd(Layout->GetDebugString()));
}

TEST(ArtFloatingAutolayout, SetAllPinsFixesIllegalPairs)
{
    art_object Object;
    reference_pointer<art_floating_autolayout> Layout = FloatingLayout(Object);
    Layout->SetAllPins(PinChildren, PinImplied, PinMul, PinMul);
    EXPECT_EQ(4, Layout->GetH().GetMode());
    EXPECT_EQ(7, Layout->GetV().GetMode());
}

TEST(ArtFloatingAutolayout, AFileWithBothFormsUsesTheOlderOne)
{
    xbd_file File;
    ownership_pointer<xbd_tag> Tag =
        MakeTag(File, "pego", {{"x", "10"}, {"w", "20"}, {"x_val", "0.5"}, {"x_layout_mode", "7"}, {"w_val", "1"}});
    art_object Object(Tag);
    reference_pointer<art_floating_autolayout> Layout = FloatingLayout(Object);
    // The older x was the left edge: the handle at one half of 20 lies 10 further on.
    EXPECT_EQ(0, Layout->GetH().GetMode());
    EXPECT_EQ(20, Layout->GetH().RelVals[0]);
    EXPECT_EQ(20, Layout->GetH().RelVals[1]);
}

TEST(ArtFloatingAutolayout, OldRelativeFormGaveBothEdges)
{
    xbd_file File;
    ownership_pointer<xbd_tag> Tag = MakeTag(File, "pego",
                                             {{"layout_y", "*"}, {"layout_h", "M"}, {"y", "0.25"}, {"h", "0.75"},
                                              {"handle", "(0.5,0.5)"}});
    art_object Object(Tag);
    reference_pointer<art_floating_autolayout> Layout = FloatingLayout(Object);
    EXPECT_EQ(7, Layout->GetV().GetMode());
    EXPECT_EQ(0.5, Layout->GetV().RelVals[0]);
    EXPECT_EQ(0.5, Layout->GetV().RelVals[1]);
    EXPECT_EQ(0, Layout->GetH().GetMode());
    EXPECT_EQ("<pego y_layout_mode=\"7\" y_val=\"0.5\" h_val=\"0.5\"></pego>", Written(Object));
}

TEST(ArtFloatingAutolayout, OldFormWithOtherPinsKeepsItsValues)
{
    xbd_file File;
    ownership_pointer<xbd_tag> Tag =
        MakeTag(File, "pego", {{"layout_x", "add"}, {"layout_w", "children"}, {"x", "4"}, {"w", "6"}});
    art_object Object(Tag);
    reference_pointer<art_floating_autolayout> Layout = FloatingLayout(Object);
    EXPECT_EQ(3, Layout->GetH().GetMode());
    EXPECT_EQ(4, Layout->GetH().RelVals[0]);
    EXPECT_EQ(6, Layout->GetH().RelVals[1]);
}

TEST(ArtFloatingAutolayout, AnUnknownOldPinLetterIsAnAssertion)
{
    xbd_file File;
    ownership_pointer<xbd_tag> Tag = MakeTag(File, "pego", {{"layout_x", "q"}});
    EXPECT_EQ("false", AssertionOf(ZEL_ERROR_MESSAGE(art_object Object(Tag))));
}

TEST(ArtFloatingAutolayout, CurrentFormIsWrittenAxisByAxisAndZerosAreLeftOut)
{
    xbd_file File;
    ownership_pointer<xbd_tag> Tag = MakeTag(
        File, "pego",
        {{"h_val", "1"}, {"y_val", "0.5"}, {"y_layout_mode", "7"}, {"w_val", "-2.5"}, {"x_layout_mode", "6"}});
    art_object Object(Tag);
    EXPECT_EQ("<pego x_layout_mode=\"6\" w_val=\"-2.5\" y_layout_mode=\"7\" y_val=\"0.5\" h_val=\"1\"></pego>",
              Written(Object));
}

TEST(ArtFloatingAutolayout, AModeZeroObjectAtTheOriginWithNoSizeWritesNothing)
{
    art_object Object;
    Object.SetSize(point2d(0, 0));
    EXPECT_EQ("<pego></pego>", Written(Object));
}

// ---- Layout of objects ----

TEST(ArtObjectLayout, ModeSevenChildFollowsAResizedParent)
{
    art_object Root;
    Root.SetSize(point2d(200, 100));
    ownership_pointer<art_object> Made(new art_object);
    SetLayout(*Made, 7, 0.5, 0.5, 7, 0.25, 0.5);
    reference_pointer<art_object> Child = Root.AddChild(Made);
    Root.Layout();
    EXPECT_EQ(point2d(100, 25), Child->GetLocation());
    EXPECT_EQ(point2d(100, 50), Child->GetSize());
    EXPECT_TRUE(Child->IsLayoutValid());
    Root.SetSize(point2d(400, 300));
    EXPECT_FALSE(Child->IsLayoutValid());
    Root.Layout();
    EXPECT_EQ(point2d(200, 75), Child->GetLocation());
    EXPECT_EQ(point2d(200, 150), Child->GetSize());
}

TEST(ArtObjectLayout, ModeSevenUnderAParentOfSizeZeroCollapses)
{
    art_object Root;
    Root.SetSize(point2d(0, 0));
    ownership_pointer<art_object> Made(new art_object);
    SetLayout(*Made, 7, 0.5, 1, 7, 0.5, 1);
    reference_pointer<art_object> Child = Root.AddChild(Made);
    Root.Layout();
    EXPECT_EQ(point2d(0, 0), Child->GetLocation());
    EXPECT_EQ(point2d(0, 0), Child->GetSize());
    reference_pointer<art_floating_autolayout> Layout = FloatingLayout(*Child);
    Layout->SetFromObject(point2d(3, 4), point2d(12, 13), true, true);
    EXPECT_EQ(0.5, Layout->GetH().RelVals[0]);
    EXPECT_EQ(12, Layout->GetH().RelVals[1]);
    EXPECT_EQ(0.5, Layout->GetV().RelVals[0]);
    EXPECT_EQ(13, Layout->GetV().RelVals[1]);
}

TEST(ArtObjectLayout, ModeSixUnderAParentOfOneHundred)
{
    art_object Root;
    Root.SetSize(point2d(100, 100));
    ownership_pointer<art_object> Made(new art_object);
    SetLayout(*Made, 6, 10, -10, 0, 0, 5);
    reference_pointer<art_object> Child = Root.AddChild(Made);
    Root.Layout();
    EXPECT_EQ(80, Child->GetSize().X);
    EXPECT_EQ(50, Child->GetLocation().X);
}

TEST(ArtObjectLayout, AChildThatHangsOnTheParentIsLeftOutOfTheChildrenExtent)
{
    art_object Root;
    Root.SetSize(point2d(200, 100));
    ownership_pointer<art_object> Fitting(new art_object);
    SetLayout(*Fitting, 3, 50, 4, 0, 5, 30);
    reference_pointer<art_object> Parent = Root.AddChild(Fitting);
    ownership_pointer<art_object> Fixed(new art_object);
    SetLayout(*Fixed, 0, 10, 20, 0, 15, 10);
    reference_pointer<art_object> A = Parent->AddChild(Fixed);
    ownership_pointer<art_object> Relative(new art_object);
    SetLayout(*Relative, 7, 0.5, 2, 7, 0.5, 0.5);
    reference_pointer<art_object> B = Parent->AddChild(Relative);
    Root.Layout();
    // A spans 0 to 20 about its centre; B's width would hang on the parent's and is left out.
    EXPECT_EQ(20, Parent->GetChildrenWidth());
    EXPECT_EQ(24, Parent->GetSize().X);
    EXPECT_EQ(50, Parent->GetLocation().X);
    EXPECT_EQ(point2d(10, 15), A->GetLocation());
    EXPECT_EQ(point2d(20, 10), A->GetSize());
    EXPECT_EQ(point2d(12, 15), B->GetLocation());
    EXPECT_EQ(point2d(48, 15), B->GetSize());
}

TEST(ArtObjectLayout, ChildrenExtentIsTheBoxOfTheTurnedFrames)
{
    art_object Parent;
    reference_pointer<art_object> Bar = Parent.AddChild(ownership_pointer<art_object>(new art_object));
    Bar->SetSize(point2d(20, 10));
    Bar->SetLocation(point2d(50, 50));
    Bar->SetAngle(3.14159265358979323846 / 2);
    Parent.AddChild(MakeBox(point2d(60, 40), point2d(5, 5)));
    reference_pointer<art_object> Stencil = Parent.AddChild(MakeBox(point2d(0, 0), point2d(500, 500)));
    Stencil->SetStackMode(StackModeMinusStencil);
    // The upright bar covers x 45 to 55 and y 40 to 60; the box x 60 to 65 and y 40 to 45.
    EXPECT_NEAR(20, Parent.GetChildrenWidth(), 1e-12);
    EXPECT_NEAR(20, Parent.GetChildrenHeight(), 1e-12);
    rectangle Extent = Parent.GetChildrenExtent();
    EXPECT_NEAR(45, Extent.Location.X, 1e-12);
    EXPECT_NEAR(40, Extent.Location.Y, 1e-12);
    EXPECT_NEAR(20, Extent.Size.X, 1e-12);
    EXPECT_NEAR(20, Extent.Size.Y, 1e-12);
}

// Writes down the width it had each time the width was settled.
class width_watcher : public art_object
{
public:
    void WidthSettled() override { Widths.push_back(Size.X); }
    std::vector<double> Widths;
};

TEST(ArtObjectLayout, WidthSettledComesAfterAFixedWidthAndBeforeAFittedOne)
{
    art_object Root;
    Root.SetSize(point2d(300, 300));
    ownership_pointer<width_watcher> FixedMade(new width_watcher);
    width_watcher *Fixed = FixedMade.Get();
    SetLayout(*Fixed, 0, 0, 70, 0, 0, 10);
    Root.AddChild(FixedMade);
    ownership_pointer<width_watcher> FittedMade(new width_watcher);
    width_watcher *Fitted = FittedMade.Get();
    SetLayout(*Fitted, 3, 0, 5, 0, 0, 10);
    Fitted->AddChild(MakeBox(point2d(0, 0), point2d(30, 5)));
    Root.AddChild(FittedMade);
    Fixed->Widths.clear();
    Fitted->Widths.clear();
    Root.Layout();
    EXPECT_EQ((std::vector<double>{70}), Fixed->Widths);
    EXPECT_EQ((std::vector<double>{50}), Fitted->Widths);
    EXPECT_EQ(35, Fitted->GetSize().X);
}

TEST(ArtObjectLayout, LayoutMarksTheObjectAndItsChildrenValid)
{
    art_object Root;
    reference_pointer<art_object> Child = Root.AddChild(MakeBox(point2d(1, 1), point2d(2, 2)));
    Root.Layout();
    EXPECT_TRUE(Root.IsLayoutSettled());
    EXPECT_TRUE(Child->IsLayoutSettled());
    Child->InvalidateLayout();
    EXPECT_FALSE(Child->IsLayoutValid());
    EXPECT_FALSE(Root.GetChildrenObject()->IsLayoutValid());
    EXPECT_TRUE(Root.IsLayoutValid());
}

TEST(ArtObjectLayout, ALayoutOfAFileObjectPlacesItFromItsAttributes)
{
    xbd_file File;
    ownership_pointer<xbd_tag> Tag = MakeTag(File, "pego",
                                             {{"x_layout_mode", "7"}, {"x_val", "0.5"}, {"w_val", "1"},
                                              {"y_layout_mode", "1"}, {"y_val", "-10"}, {"h_val", "8"}});
    art_object Root;
    Root.SetSize(point2d(64, 48));
    reference_pointer<art_object> Child = Root.AddChild(ownership_pointer<art_object>(new art_object(Tag)));
    Root.Layout();
    EXPECT_EQ(point2d(32, 38), Child->GetLocation());
    EXPECT_EQ(point2d(64, 8), Child->GetSize());
}

} // namespace
