#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "art_engine/objects/art_layer.h"
#include "art_engine/objects/art_layer_object.h"
#include "art_engine/objects/art_layout.h"
#include "art_engine/objects/art_object_factory.h"
#include "tests/art_engine/objects/art_test_support.h"

using namespace art_test;

namespace {

const double Pi = 3.14159265358979323846;

// The object of the frame tests: size (40, 20), handle (0.25, 0.5), so the pivot is object point
// (10, 10); scale (2, 3); a quarter turn; the pivot at (100, 50) in the parent.
void MakeTurnedObject(art_object &Object)
{
    Object.SetSize(point2d(40, 20));
    Object.SetHandle(point2d(0.25, 0.5));
    Object.SetScale(point2d(2, 3));
    Object.SetAngle(Pi / 2);
    Object.SetLocation(point2d(100, 50));
}

point2d Apply(const agg::trans_affine &Matrix, point2d Point)
{
    Matrix.transform(&Point.X, &Point.Y);
    return Point;
}

#define EXPECT_POINT_NEAR(ExpectedX, ExpectedY, Actual)                                                             \
    do {                                                                                                           \
        point2d Got = (Actual);                                                                                    \
        EXPECT_NEAR(ExpectedX, Got.X, 1e-12);                                                                      \
        EXPECT_NEAR(ExpectedY, Got.Y, 1e-12);                                                                      \
    } while (0)

// ---- Defaults ----

TEST(ArtObject, DefaultsOfANewObject)
{
    art_object Object;
    EXPECT_EQ("", ToStd(Object.GetName()));
    EXPECT_TRUE(Object.IsVisible());
    EXPECT_EQ(point2d(0, 0), Object.GetLocation());
    EXPECT_EQ(point2d(50, 50), Object.GetSize());
    EXPECT_EQ(point2d(0.5, 0.5), Object.GetHandle());
    EXPECT_EQ(0, Object.GetAngle());
    EXPECT_EQ(point2d(1, 1), Object.GetScale());
    EXPECT_EQ(1, Object.GetAspectRatio());
    EXPECT_FALSE(Object.HasAspectRatio());
    EXPECT_EQ(0, Object.GetLockMode());
    EXPECT_FALSE(Object.GetDroppedIn());
    EXPECT_FALSE(Object.GetDropInEnabled());
    EXPECT_FALSE(Object.GetMarkedForDeletion());
    EXPECT_TRUE(Object.GetLayout().IsSet());
    EXPECT_EQ(1, Object.GetOpacity());
    EXPECT_EQ(StackModeNormal, Object.GetStackMode());
    EXPECT_FALSE(Object.GetChildrenObject().IsSet());
    EXPECT_FALSE(Object.GetParent().IsSet());
    EXPECT_EQ(0, Object.GetRedrawCount());
    EXPECT_FALSE(Object.IsLayoutValid());
    EXPECT_EQ("pego", ToStd(Object.GetTagName()));
    EXPECT_EQ("Object", ToStd(Object.GetDebugName()));
}

TEST(ArtObject, BaseAnswersOfTheSlotTable)
{
    art_object Object;
    EXPECT_EQ(point2d(0, 0), Object.GetMinimumSize());
    EXPECT_TRUE(Object.CanHaveChildren());
    EXPECT_TRUE(Object.HasOwnFrame());
    EXPECT_TRUE(Object.IsFramed());
    EXPECT_FALSE(Object.IsLayer());
    EXPECT_FALSE(Object.IsLayerObject());
    EXPECT_FALSE(Object.IsTextObject());
    EXPECT_FALSE(Object.AcceptsTextInput());
    EXPECT_TRUE(Object.CanBeSelected());
    EXPECT_TRUE(Object.CanResizeContent());
    EXPECT_EQ(1, Object.GetNaturalAspectRatio());
    EXPECT_EQ(0, Object.GetSpecialControlCount());
    EXPECT_EQ(0, Object.GetHitMargin());
    EXPECT_EQ(-1, Object.GetNextFrameTime(0));
    EXPECT_FALSE(Object.IsAnimated());
    EXPECT_EQ(0, Object.GetCurrentTime());
    agg::rgba Color = Object.GetHandleColor();
    EXPECT_EQ(0.8, Color.r);
    EXPECT_EQ(0, Color.g);
    EXPECT_EQ(1, Color.b);
    EXPECT_EQ(0.8, Color.a);
    zel_string Title;
    zel_string Text;
    Object.GetHandleTip(Title, Text);
    EXPECT_EQ("Special Control Point", ToStd(Title));
    EXPECT_EQ("Drag to move", ToStd(Text));
    EXPECT_EQ(point2d(25, 25), Object.GetHandleOffset());
    agg::trans_affine Shape = Object.GetShapeMatrix();
    EXPECT_EQ(1, Shape.sx);
    EXPECT_EQ(0, Shape.shy);
    EXPECT_EQ(0, Shape.shx);
    EXPECT_EQ(1, Shape.sy);
    EXPECT_EQ(0, Shape.tx);
    EXPECT_EQ(0, Shape.ty);
}

TEST(ArtObject, SpecialControlsOfAPlainObjectAreAnAssertion)
{
    art_object Object;
    EXPECT_NE(std::string::npos, ZEL_ERROR_MESSAGE(Object.GetSpecialControl(0)).find("'false' is false"));
    EXPECT_NE(std::string::npos,
              ZEL_ERROR_MESSAGE(Object.SetSpecialControl(0, point2d())).find("'false' is false"));
}

// ---- Frame arithmetic ----

TEST(ArtObjectFrame, ObjectToParentOfATurnedScaledObjectWithAnOffCentreHandle)
{
    art_object Object;
    MakeTurnedObject(Object);
    agg::trans_affine Matrix = Object.GetObjectToParent();
    // (10, 5) - (10, 10) = (0, -5); scaled (0, -15); turned (15, 0); plus (100, 50).
    EXPECT_POINT_NEAR(115, 50, Apply(Matrix, point2d(10, 5)));
    // (40, 20) - (10, 10) = (30, 10); scaled (60, 30); turned (-30, 60); plus (100, 50).
    EXPECT_POINT_NEAR(70, 110, Apply(Matrix, point2d(40, 20)));
    // The pivot goes to the location.
    EXPECT_POINT_NEAR(100, 50, Apply(Matrix, point2d(10, 10)));
}

TEST(ArtObjectFrame, MatrixFormOfObjectToParent)
{
    art_object Object;
    MakeTurnedObject(Object);
    agg::trans_affine Matrix = Object.GetObjectToParent();
    // R(90) * diag(2, 3) = [[0, -3], [2, 0]]; translation (100, 50) - (-30, 20).
    EXPECT_NEAR(0, Matrix.sx, 1e-12);
    EXPECT_NEAR(-3, Matrix.shx, 1e-12);
    EXPECT_NEAR(2, Matrix.shy, 1e-12);
    EXPECT_NEAR(0, Matrix.sy, 1e-12);
    EXPECT_NEAR(130, Matrix.tx, 1e-12);
    EXPECT_NEAR(30, Matrix.ty, 1e-12);
}

TEST(ArtObjectFrame, ParentToObjectUndoesObjectToParent)
{
    art_object Object;
    MakeTurnedObject(Object);
    agg::trans_affine ToObject;
    Object.ApplyParentToObject(ToObject);
    EXPECT_POINT_NEAR(10, 5, Apply(ToObject, point2d(115, 50)));
    EXPECT_POINT_NEAR(40, 20, Apply(ToObject, point2d(70, 110)));
    EXPECT_POINT_NEAR(10, 10, Apply(ToObject, point2d(100, 50)));
}

TEST(ArtObjectFrame, ApplyParentToObjectComposesAfterTheGivenMatrix)
{
    art_object Object;
    MakeTurnedObject(Object);
    agg::trans_affine Matrix = agg::trans_affine_translation(5, 7);
    Object.ApplyParentToObject(Matrix);
    // (110, 43) moves to (115, 50) in the parent, which is object point (10, 5).
    EXPECT_POINT_NEAR(10, 5, Apply(Matrix, point2d(110, 43)));
}

TEST(ArtObjectFrame, ApplyObjectToParentComposesBeforeTheGivenMatrix)
{
    art_object Object;
    MakeTurnedObject(Object);
    agg::trans_affine Matrix = agg::trans_affine_scaling(2);
    Object.ApplyObjectToParent(Matrix);
    EXPECT_POINT_NEAR(230, 100, Apply(Matrix, point2d(10, 5)));
}

TEST(ArtObjectFrame, ThirtyDegreesAboutTheCentre)
{
    art_object Object;
    Object.SetAngle(Pi / 6);
    // (50, 25) - (25, 25) = (25, 0), turned by 30 degrees.
    EXPECT_POINT_NEAR(25 * std::cos(Pi / 6), 25 * std::sin(Pi / 6),
                      Apply(Object.GetObjectToParent(), point2d(50, 25)));
    agg::trans_affine ToObject;
    Object.ApplyParentToObject(ToObject);
    EXPECT_POINT_NEAR(50, 25, Apply(ToObject, point2d(25 * std::cos(Pi / 6), 25 * std::sin(Pi / 6))));
}

TEST(ArtObjectFrame, PlainFrameIsATranslationByHandleAndLocation)
{
    art_object Object;
    Object.SetSize(point2d(30, 10));
    Object.SetHandle(point2d(1, 0));
    Object.SetLocation(point2d(7, -3));
    agg::trans_affine Matrix = Object.GetObjectToParent();
    EXPECT_EQ(1, Matrix.sx);
    EXPECT_EQ(0, Matrix.shx);
    EXPECT_EQ(0, Matrix.shy);
    EXPECT_EQ(1, Matrix.sy);
    EXPECT_EQ(-23, Matrix.tx);
    EXPECT_EQ(-3, Matrix.ty);
}

TEST(ArtObjectFrame, ParentToObjectVectorInvertsTheLinearPart)
{
    art_object Object;
    MakeTurnedObject(Object);
    // [[0, -3], [2, 0]] has determinant 6 and inverse [[0, 3], [-2, 0]] / 6.
    EXPECT_POINT_NEAR(2, -1, Object.ParentToObjectVector(point2d(3, 4)));
    EXPECT_POINT_NEAR(0.5, 0, Object.ParentToObjectVector(point2d(0, 1)));
}

TEST(ArtObjectFrame, ParentBoundsAreTheFrameBoxRoundedOutward)
{
    art_object Object;
    Object.SetSize(point2d(10.5, 4));
    Object.SetLocation(point2d(3.2, 1));
    // Left 3.2 - 5.25 = -2.05, right 8.45; top -1, bottom 3.
    rectangle Bounds = Object.GetParentBounds();
    EXPECT_EQ(point2d(-3, -1), Bounds.Location);
    EXPECT_EQ(point2d(12, 4), Bounds.Size);
}

// ---- Setting the frame ----

TEST(ArtObject, SetSizeChangeBelowToleranceAssignsButRequestsNoRedraw)
{
    art_object Object;
    Object.SetSize(point2d(50 + 5e-10, 50));
    EXPECT_EQ(50 + 5e-10, Object.GetSize().X);
    EXPECT_EQ(0, Object.GetRedrawCount());
    Object.SetSize(point2d(50 + 1e-6, 50));
    EXPECT_EQ(1, Object.GetRedrawCount());
}

TEST(ArtObject, AspectRatioOfAZeroHeightIsExactlyOne)
{
    art_object Object;
    Object.SetSize(point2d(30, 20));
    EXPECT_EQ(1.5, Object.GetAspectRatio());
    Object.SetSize(point2d(30, 0));
    EXPECT_EQ(1, Object.GetAspectRatio());
}

TEST(ArtObject, SetSizeTellsTheLayoutTheFrame)
{
    art_object Object;
    Object.SetLocation(point2d(4, 6));
    Object.SetSize(point2d(30, 20));
    reference_pointer<art_floating_autolayout> Layout = Object.GetLayout().DynamicCast<art_floating_autolayout>();
    EXPECT_EQ(4, Layout->GetH().RelVals[0]);
    EXPECT_EQ(30, Layout->GetH().RelVals[1]);
    EXPECT_EQ(6, Layout->GetV().RelVals[0]);
    EXPECT_EQ(20, Layout->GetV().RelVals[1]);
}

TEST(ArtObject, SetSizeRaisesTheCountsUpTheTree)
{
    art_object Parent;
    reference_pointer<art_object> Child = Parent.AddChild(ownership_pointer<art_object>(new art_object));
    int32_t ParentCount = Parent.GetRedrawCount();
    Child->SetSize(point2d(10, 10));
    EXPECT_EQ(1, Child->GetRedrawCount());
    EXPECT_EQ(ParentCount + 1, Parent.GetRedrawCount());
}

TEST(ArtObject, SetLocationRedrawsTheOldAndTheNewPlaceInTheParent)
{
    art_object Parent;
    reference_pointer<art_object> Child = Parent.AddChild(ownership_pointer<art_object>(new art_object));
    int32_t ParentCount = Parent.GetRedrawCount();
    Child->SetLocation(point2d(10, 0));
    EXPECT_EQ(ParentCount + 2, Parent.GetRedrawCount());
    Child->SetLocation(point2d(10, 5e-10));
    EXPECT_EQ(ParentCount + 2, Parent.GetRedrawCount());
}

TEST(ArtObject, SettingTheAngleToItsCurrentValueDoesNothing)
{
    art_object Parent;
    reference_pointer<art_floating_autolayout> ParentLayout =
        Parent.GetLayout().DynamicCast<art_floating_autolayout>();
    ParentLayout->GetH().SetMode(3);
    reference_pointer<art_object> Child = Parent.AddChild(ownership_pointer<art_object>(new art_object));
    Parent.Layout();
    ASSERT_TRUE(Parent.IsLayoutValid());
    Child->SetAngle(0);
    EXPECT_EQ(0, Child->GetRedrawCount());
    EXPECT_TRUE(Parent.IsLayoutValid());
    Child->SetAngle(0.5);
    EXPECT_EQ(2, Child->GetRedrawCount());
    EXPECT_FALSE(Parent.IsLayoutValid());
}

TEST(ArtObject, SetStackModePostOnAPlainObjectDoesNothing)
{
    art_object Parent;
    reference_pointer<art_object> Child = Parent.AddChild(ownership_pointer<art_object>(new art_object));
    int32_t ParentCount = Parent.GetRedrawCount();
    Child->SetStackMode(StackModePost);
    EXPECT_EQ(StackModeNormal, Child->GetStackMode());
    Child->SetStackModeInternal(StackModePost);
    EXPECT_EQ(StackModeNormal, Child->GetStackMode());
    EXPECT_EQ(ParentCount, Parent.GetRedrawCount());
    EXPECT_EQ(0, Child->GetRedrawCount());
}

TEST(ArtObject, StencilModeKeepsTheFrameAsFractionsOfTheParent)
{
    art_object Parent;
    Parent.SetSize(point2d(200, 100));
    reference_pointer<art_object> Child = Parent.AddChild(MakeBox(point2d(20, 10), point2d(50, 40)));
    Child->SetStackMode(StackModePlusStencil);
    reference_pointer<art_floating_autolayout> Layout = Child->GetLayout().DynamicCast<art_floating_autolayout>();
    EXPECT_EQ(7, Layout->GetH().GetMode());
    EXPECT_EQ(7, Layout->GetV().GetMode());
    EXPECT_EQ(0.1, Layout->GetH().RelVals[0]);
    EXPECT_EQ(0.25, Layout->GetH().RelVals[1]);
    EXPECT_EQ(0.1, Layout->GetV().RelVals[0]);
    EXPECT_EQ(0.4, Layout->GetV().RelVals[1]);
    Parent.SetSize(point2d(400, 50));
    Parent.Layout();
    EXPECT_EQ(point2d(40, 5), Child->GetLocation());
    EXPECT_EQ(point2d(100, 20), Child->GetSize());
}

TEST(ArtObject, ANormalModeChangeAsksTheParentToRedraw)
{
    art_object Parent;
    reference_pointer<art_object> Child = Parent.AddChild(ownership_pointer<art_object>(new art_layer_object));
    int32_t ParentCount = Parent.GetRedrawCount();
    Child->SetStackMode(StackModePost);
    EXPECT_EQ(StackModePost, Child->GetStackMode());
    EXPECT_GT(Parent.GetRedrawCount(), ParentCount);
}

TEST(ArtObject, SetVisibleRedrawsTheParentAndIsVisibleHonoursTheMark)
{
    art_object Parent;
    reference_pointer<art_object> Child = Parent.AddChild(ownership_pointer<art_object>(new art_object));
    int32_t ParentCount = Parent.GetRedrawCount();
    Child->SetVisible(false);
    EXPECT_FALSE(Child->IsVisible());
    EXPECT_GT(Parent.GetRedrawCount(), ParentCount);
    Child->SetVisible(true);
    EXPECT_TRUE(Child->IsVisible());
    Child->MarkForDeletion();
    EXPECT_FALSE(Child->IsVisible());
}

TEST(ArtObject, AddChildToAnObjectThatCannotHaveChildrenIsAnAssertion)
{
    art_layer_object Fill;
    std::string Message = ZEL_ERROR_MESSAGE(Fill.AddChild(ownership_pointer<art_object>(new art_object)));
    EXPECT_NE(std::string::npos, Message.find("'CanHaveChildren()' is false"));
}

// ---- Duplicating ----

TEST(ArtObject, DuplicateCopiesTheFrameAndChildrenButNotTheRunTimeState)
{
    art_object Parent;
    reference_pointer<art_object> Original = Parent.AddChild(MakeBox(point2d(3, 4), point2d(30, 20)));
    Original->SetName("original");
    Original->SetAngle(0.25);
    Original->SetScale(point2d(2, 0.5));
    Original->SetOpacity(0.5);
    Original->SetLockMode(3);
    Original->SetDropInEnabled(true);
    Original->SetDroppedIn(true);
    Original->SetVisible(false);
    Original->AddChild(ownership_pointer<art_object>(new art_object))->SetName("grandchild");
    Original->MarkForDeletion();

    ownership_pointer<art_object> Copy = Original->Duplicate();
    EXPECT_EQ("original", ToStd(Copy->GetName()));
    EXPECT_EQ(point2d(3, 4), Copy->GetLocation());
    EXPECT_EQ(point2d(30, 20), Copy->GetSize());
    EXPECT_EQ(point2d(0, 0), Copy->GetHandle());
    EXPECT_EQ(0.25, Copy->GetAngle());
    EXPECT_EQ(point2d(2, 0.5), Copy->GetScale());
    EXPECT_EQ(1.5, Copy->GetAspectRatio());
    EXPECT_EQ(0.5, Copy->GetOpacity());
    EXPECT_EQ(3, Copy->GetLockMode());
    EXPECT_TRUE(Copy->GetDropInEnabled());
    EXPECT_TRUE(Copy->GetDroppedIn());
    EXPECT_TRUE(Copy->IsVisible());
    EXPECT_FALSE(Copy->GetMarkedForDeletion());
    EXPECT_EQ(0, Copy->GetRedrawCount());
    EXPECT_FALSE(Copy->IsLayoutValid());
    EXPECT_FALSE(Copy->GetParent().IsSet());
    EXPECT_EQ(Copy.Get(), Copy->GetLayout()->GetObject().Get());
    ASSERT_EQ(1, Copy->GetNumberOfChildren());
    reference_pointer<art_object> Grandchild = Copy->GetChildByName("grandchild");
    ASSERT_TRUE(Grandchild.IsSet());
    EXPECT_EQ(Copy.Get(), Grandchild->GetParent().Get());
    EXPECT_NE(Original->GetChildByName("grandchild").Get(), Grandchild.Get());
}

TEST(ArtObject, DuplicateOfALayerKeepsItsClass)
{
    art_layer Layer;
    ownership_pointer<art_object> Copy = Layer.Duplicate();
    EXPECT_TRUE(Copy->IsLayer());
    EXPECT_FALSE(Copy->HasOwnFrame());
}

// ---- Attributes ----

TEST(ArtObjectAttributes, LockModeTwoEnablesDropInAndWritesBoth)
{
    xbd_file File;
    ownership_pointer<xbd_tag> Tag = MakeTag(File, "pego", {{"lock_mode", "2"}});
    art_object Object(Tag);
    EXPECT_TRUE(Object.GetDropInEnabled());
    EXPECT_EQ(2, Object.GetLockMode());
    EXPECT_EQ("<pego drop_in_enabled=\"\" lock_mode=\"2\"></pego>", Written(Object));
}

TEST(ArtObjectAttributes, LockModeIsClamped)
{
    xbd_file File;
    ownership_pointer<xbd_tag> High = MakeTag(File, "pego", {{"lock_mode", "9"}});
    ownership_pointer<xbd_tag> Low = MakeTag(File, "pego", {{"lock_mode", "-1"}});
    art_object HighObject(High);
    art_object LowObject(Low);
    EXPECT_EQ(4, HighObject.GetLockMode());
    EXPECT_EQ(0, LowObject.GetLockMode());
    EXPECT_FALSE(HighObject.GetDropInEnabled());
    EXPECT_EQ("<pego lock_mode=\"4\"></pego>", Written(HighObject));
    EXPECT_EQ("<pego></pego>", Written(LowObject));
}

TEST(ArtObjectAttributes, AHandleOfOneHalfIsNotWrittenEvenWhenStated)
{
    xbd_file File;
    ownership_pointer<xbd_tag> Tag = MakeTag(File, "pego", {{"handle", "(0.5,0.5)"}});
    art_object Object(Tag);
    EXPECT_EQ(point2d(0.5, 0.5), Object.GetHandle());
    EXPECT_EQ("<pego></pego>", Written(Object));
}

TEST(ArtObjectAttributes, OpacityOneIsNotWrittenInEitherSpelling)
{
    xbd_file File;
    ownership_pointer<xbd_tag> One = MakeTag(File, "pego", {{"opacity", "1"}});
    ownership_pointer<xbd_tag> OnePointZero = MakeTag(File, "pego", {{"opacity", "1.0"}});
    art_object First(One);
    art_object Second(OnePointZero);
    EXPECT_EQ(1, First.GetOpacity());
    EXPECT_EQ(1, Second.GetOpacity());
    EXPECT_EQ("<pego></pego>", Written(First));
    EXPECT_EQ("<pego></pego>", Written(Second));
}

TEST(ArtObjectAttributes, AlphaObjectWinsOverStackMode)
{
    xbd_file File;
    ownership_pointer<xbd_tag> Tag = MakeTag(File, "pego", {{"stack_mode", "post"}, {"alpha_object", ""}});
    art_object Object(Tag);
    EXPECT_EQ(StackModeStencil, Object.GetStackMode());
    EXPECT_EQ("<pego stack_mode=\"stencil\"></pego>", Written(Object));
}

TEST(ArtObjectAttributes, StackModeTextsAreTriedInOrder)
{
    struct row
    {
        const char *Text;
        art_stack_mode Mode;
    };
    const row Rows[] = {{"-stencil", StackModeMinusStencil}, {"+stencil", StackModePlusStencil},
                        {"stencil", StackModeStencil},       {"post", StackModePost},
                        {"normal", StackModeNormal},         {"other", StackModeNormal}};
    xbd_file File;
    for (const row &Row : Rows) {
        ownership_pointer<xbd_tag> Tag = MakeTag(File, "pego", {{"stack_mode", Row.Text}});
        art_object Object(Tag);
        EXPECT_EQ(Row.Mode, Object.GetStackMode()) << Row.Text;
    }
}

TEST(ArtObjectAttributes, StackModesAreWrittenWithTheirTexts)
{
    const char *Texts[] = {"", "stencil", "post", "+stencil", "-stencil"};
    xbd_file File;
    for (int Mode = 1; Mode <= 4; Mode++) {
        ownership_pointer<xbd_tag> Tag = MakeTag(File, "pego", {{"stack_mode", Texts[Mode]}});
        art_object Object(Tag);
        EXPECT_EQ(std::string("<pego stack_mode=\"") + Texts[Mode] + "\"></pego>", Written(Object));
    }
}

TEST(ArtObjectAttributes, EveryAttributeIsWrittenInItsOrder)
{
    art_object Object;
    Object.SetName("Star \"one\"");
    Object.SetAngle(0.0844444);
    Object.SetHandle(point2d(0, 1));
    Object.SetOpacity(0.25);
    Object.SetLockMode(3);
    Object.SetDropInEnabled(true);
    Object.SetLocation(point2d(1125, -5.22458e-17));
    Object.SetSize(point2d(8e-5, 2));
    xbd_file File;
    ownership_pointer<xbd_tag> Source = MakeTag(File, "pego", {{"aspect_ratio", "1.5"}, {"stack_mode", "-stencil"}});
    art_object FromFile(Source);
    EXPECT_EQ("<pego drop_in_enabled=\"\" name=\"Star \"one\"\" angle=\"0.0844444\" handle=\"(0,1)\" "
              "opacity=\"0.25\" lock_mode=\"3\" x_val=\"1125\" w_val=\"8e-05\" y_val=\"-5.22458e-17\" "
              "h_val=\"2\"></pego>",
              Written(Object));
    EXPECT_TRUE(FromFile.HasAspectRatio());
    EXPECT_EQ(1.5, FromFile.GetAspectRatio());
    EXPECT_EQ("<pego aspect_ratio=\"1.5\" stack_mode=\"-stencil\"></pego>", Written(FromFile));
}

TEST(ArtObjectAttributes, AllAttributesOfOneTagAreWrittenInTheirOrder)
{
    xbd_file File;
    ownership_pointer<xbd_tag> Tag =
        MakeTag(File, "pego",
                {{"x_val", "3"}, {"stack_mode", "+stencil"}, {"lock_mode", "1"}, {"opacity", "0.5"},
                 {"aspect_ratio", "2"}, {"handle", "(1,0)"}, {"angle", "0.5"}, {"name", "all"},
                 {"drop_in_enabled", ""}});
    Tag->AddChildTag(Tag->NewTag("children"));
    Tag->GetChildTag("children")->AddChildTag(MakeTag(File, "pego", {{"name", "kid"}}));
    art_object Object(Tag);
    EXPECT_EQ("<pego drop_in_enabled=\"\" name=\"all\" angle=\"0.5\" handle=\"(1,0)\" aspect_ratio=\"2\" "
              "opacity=\"0.5\" lock_mode=\"1\" stack_mode=\"+stencil\" x_val=\"3\"><children>"
              "<pego name=\"kid\"></pego></children></pego>",
              Written(Object));
}

TEST(ArtObjectAttributes, AttributesAreReadInTheirForms)
{
    xbd_file File;
    ownership_pointer<xbd_tag> Tag =
        MakeTag(File, "pego",
                {{"name", "box"}, {"angle", "-1.5"}, {"handle", "(0.25,1e1)"}, {"opacity", "0.75"}, {"drop_in_enabled", ""}});
    art_object Object(Tag);
    EXPECT_EQ("box", ToStd(Object.GetName()));
    EXPECT_EQ(-1.5, Object.GetAngle());
    EXPECT_EQ(point2d(0.25, 10), Object.GetHandle());
    EXPECT_EQ(0.75, Object.GetOpacity());
    EXPECT_TRUE(Object.GetDropInEnabled());
    EXPECT_FALSE(Object.HasAspectRatio());
    EXPECT_FALSE(Object.IsLayoutValid());
}

TEST(ArtObjectAttributes, AnEmptyHandleKeepsTheDefaultAndUnparsableNumbersReadAsZero)
{
    xbd_file File;
    ownership_pointer<xbd_tag> Empty = MakeTag(File, "pego", {{"handle", ""}, {"angle", "turn"}});
    art_object Object(Empty);
    EXPECT_EQ(point2d(0.5, 0.5), Object.GetHandle());
    EXPECT_EQ(0, Object.GetAngle());
}

TEST(ArtObjectAttributes, ALayerObjectWritesOnlyItsStackMode)
{
    art_object Parent;
    reference_pointer<art_object> Fill = Parent.AddChild(ownership_pointer<art_object>(new art_layer_object));
    Fill->SetName("fill");
    Fill->SetStackMode(StackModePost);
    EXPECT_EQ("<pego stack_mode=\"post\"></pego>", Written(*Fill));
}

// ---- Moving the frame under the children ----

TEST(ArtObject, SetFrameKeepsTheChildrenWhereTheyAreOnThePage)
{
    art_object Parent;
    Parent.SetLocation(point2d(125, 125));
    reference_pointer<art_object> Child = Parent.AddChild(MakeBox(point2d(10, 10), point2d(5, 5)));
    Parent.SetFrame(point2d(10, 10), point2d(20, 20));
    // The frame's corner moves from (100, 100) to (110, 110); the centre pivot then sits at (120, 120).
    EXPECT_EQ(point2d(20, 20), Parent.GetSize());
    EXPECT_EQ(point2d(120, 120), Parent.GetLocation());
    EXPECT_EQ(point2d(0, 0), Child->GetLocation());
    reference_pointer<art_floating_autolayout> Layout = Child->GetLayout().DynamicCast<art_floating_autolayout>();
    EXPECT_EQ(0, Layout->GetH().RelVals[0]);
    EXPECT_EQ(5, Layout->GetH().RelVals[1]);
}

TEST(ArtObject, FitToChildrenWrapsTheFrameAroundEveryChild)
{
    art_object Parent;
    Parent.SetLocation(point2d(125, 125));
    reference_pointer<art_object> A = Parent.AddChild(MakeBox(point2d(10, 10), point2d(5, 5)));
    reference_pointer<art_object> B = Parent.AddChild(MakeBox(point2d(30, 20), point2d(10, 10)));
    B->SetStackMode(StackModeMinusStencil);
    Parent.FitToChildren();
    EXPECT_EQ(point2d(30, 20), Parent.GetSize());
    EXPECT_EQ(point2d(125, 120), Parent.GetLocation());
    EXPECT_EQ(point2d(0, 0), A->GetLocation());
    EXPECT_EQ(point2d(20, 10), B->GetLocation());
}

// ---- Layer objects ----

TEST(ArtLayerObject, TakesTheParentsFrameAndIgnoresFrameSetters)
{
    art_object Parent;
    Parent.SetSize(point2d(30, 40));
    reference_pointer<art_object> Fill = Parent.AddChild(ownership_pointer<art_object>(new art_layer_object));
    EXPECT_EQ(point2d(0, 0), Fill->GetLocation());
    EXPECT_EQ(point2d(30, 40), Fill->GetSize());
    Fill->SetSize(point2d(5, 5));
    Fill->SetLocation(point2d(7, 7));
    Fill->SetAngle(1);
    Fill->SetHandle(point2d(0.5, 0.5));
    EXPECT_EQ(point2d(0, 0), Fill->GetLocation());
    EXPECT_EQ(point2d(30, 40), Fill->GetSize());
    EXPECT_EQ(0, Fill->GetAngle());
    agg::trans_affine Frame = Fill->GetObjectToParent();
    EXPECT_EQ(0, Frame.tx);
    EXPECT_EQ(0, Frame.ty);
    Parent.SetSize(point2d(60, 10));
    Parent.Layout();
    EXPECT_EQ(point2d(60, 10), Fill->GetSize());
}

// Writes down every rectangle that it is asked to redraw.
class rect_recording_object : public art_object
{
public:
    void RequestRedrawRect(const rectangle &Rect) override
    {
        Rects.push_back(Rect);
        art_object::RequestRedrawRect(Rect);
    }
    std::vector<rectangle> Rects;
};

TEST(ArtLayerObject, RedrawCoversTheWholeParentAndCountsIncludeTheParents)
{
    rect_recording_object Parent;
    Parent.SetSize(point2d(30, 40));
    reference_pointer<art_object> Fill = Parent.AddChild(ownership_pointer<art_object>(new art_layer_object));
    Parent.Rects.clear();
    int32_t ParentCount = Parent.GetRedrawCount();
    int32_t FillCount = Fill->GetRedrawCount();
    Fill->RequestRedraw();
    ASSERT_EQ(1u, Parent.Rects.size());
    EXPECT_EQ(point2d(0, 0), Parent.Rects[0].Location);
    EXPECT_EQ(point2d(30, 40), Parent.Rects[0].Size);
    EXPECT_EQ(ParentCount + 1, Parent.GetRedrawCount());
    EXPECT_EQ(FillCount + 2, Fill->GetRedrawCount());
    Parent.RequestRedraw();
    EXPECT_EQ(FillCount + 3, Fill->GetRedrawCount());
}

TEST(ArtLayerObject, AnswersOfALayerObject)
{
    art_layer_object Fill;
    EXPECT_TRUE(Fill.IsLayer());
    EXPECT_FALSE(Fill.HasOwnFrame());
    EXPECT_TRUE(Fill.IsLayerObject());
    EXPECT_FALSE(Fill.CanHaveChildren());
    EXPECT_TRUE(Fill.SizeDependsOnParent());
    EXPECT_FALSE(Fill.CanBeSelected());
    Fill.SetStackMode(StackModePost);
    EXPECT_EQ(StackModePost, Fill.GetStackMode());
}

TEST(ArtLayerObject, ItsOwnOperationAnswersFalse)
{
    art_layer_object Fill;
    art_object &AsObject = Fill;
    EXPECT_FALSE(AsObject.ReservedQuery());
    EXPECT_FALSE(Fill.ReservedLayerObjectQuery());
}

class unframed_object : public art_object
{
public:
    bool IsFramed() override { return false; }
};

TEST(ArtLayer, ALayerIsFramedWhenAllItsChildrenAre)
{
    art_layer Layer;
    EXPECT_TRUE(Layer.IsFramed());
    Layer.AddChild(ownership_pointer<art_object>(new art_object));
    reference_pointer<art_object> Inner = Layer.AddChild(ownership_pointer<art_object>(new art_layer));
    Inner->AddChild(ownership_pointer<art_object>(new art_layer_object));
    EXPECT_TRUE(Layer.IsFramed());
    Inner->AddChild(ownership_pointer<art_object>(new unframed_object));
    EXPECT_FALSE(Layer.IsFramed());
    EXPECT_TRUE(Inner->GetChildrenObject()->GetChild(1)->HasOwnFrame());
}

// ---- Questions that the base answers from the children ----

class animated_object : public art_object
{
public:
    animated_object(double Next, double Length) : Next(Next), Length(Length) {}
    double GetNextFrameTime(double) override { return Next; }
    bool IsAnimated() override { return true; }
    double GetAnimationLength() override { return Length; }

private:
    double Next;
    double Length;
};

TEST(ArtObject, AnimationQuestionsGoToTheChildren)
{
    art_object Parent;
    Parent.AddChild(ownership_pointer<art_object>(new art_object));
    EXPECT_FALSE(Parent.IsAnimated());
    Parent.AddChild(ownership_pointer<art_object>(new animated_object(3.5, 2)));
    Parent.AddChild(ownership_pointer<art_object>(new animated_object(1.25, 7)));
    Parent.AddChild(ownership_pointer<art_object>(new animated_object(0.5, 1)));
    EXPECT_TRUE(Parent.IsAnimated());
    EXPECT_EQ(1.25, Parent.GetNextFrameTime(1));
    EXPECT_EQ(7, Parent.GetAnimationLength());
}

class edit_target : public art_object
{
public:
    bool IsEditTarget() override { return true; }
    agg::trans_affine GetShapeMatrix() override { return Matrix; }
    void SetShapeMatrix(const agg::trans_affine &NewMatrix) override { Matrix = NewMatrix; }
    agg::trans_affine Matrix{2, 0, 0, 3, 0, 0};
};

TEST(ArtObject, TheShapeMatrixIsTheEditTargets)
{
    art_object Parent;
    reference_pointer<art_object> Group = Parent.AddChild(ownership_pointer<art_object>(new art_object));
    reference_pointer<art_object> Target = Group->AddChild(ownership_pointer<art_object>(new edit_target));
    EXPECT_EQ(Target.Get(), Parent.FindEditTarget().Get());
    EXPECT_EQ(2, Parent.GetShapeMatrix().sx);
    Parent.SetShapeMatrix(agg::trans_affine(5, 0, 0, 6, 0, 0));
    EXPECT_EQ(5, Target->GetShapeMatrix().sx);
    EXPECT_EQ(6, Target->GetShapeMatrix().sy);
}

class covered_object : public art_object
{
public:
    bool HasStencilCoverage(point2d Point) override { return Point.X >= 0 && Point.X < 1 && Point.Y >= 0 && Point.Y < 1; }
};

TEST(ArtObject, StencilCoverageIsAskedOfThePlusStencilChildrenInTheirSpace)
{
    art_object Parent;
    reference_pointer<art_object> Shape = Parent.AddChild(ownership_pointer<art_object>(new covered_object));
    Shape->SetHandle(point2d(0, 0));
    Shape->SetLocation(point2d(10, 20));
    EXPECT_FALSE(Parent.HasStencilCoverage(point2d(10.5, 20.5)));
    Shape->SetStackMode(StackModePlusStencil);
    EXPECT_TRUE(Parent.HasStencilCoverage(point2d(10.5, 20.5)));
    EXPECT_FALSE(Parent.HasStencilCoverage(point2d(9.5, 20.5)));
}

} // namespace
