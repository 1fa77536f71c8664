#include <gtest/gtest.h>

#include "art_engine/effects/art_color_fade.h"
#include "art_engine/effects/art_color_fill.h"
#include "art_engine/effects/art_filter_effect.h"
#include "art_engine/objects/art_object_factory.h"
#include "art_engine/shapes/art_ellipse_shape.h"
#include "art_engine/shapes/art_stencil_shape.h"
#include "tests/art_engine/objects/art_render_test_support.h"
#include "tests/art_engine/objects/art_test_support.h"

using namespace art_render_test;
using art_test::MakeTag;
using art_test::Written;

namespace {

// The factory lives to the end of the process: made before any test, it counts against none.
class fill_factory_environment : public testing::Environment
{
public:
    void SetUp() override { art_object_factory::GetFactory(); }
};

testing::Environment *const FillFactoryEnvironment = testing::AddGlobalTestEnvironment(new fill_factory_environment);

// A stencilled group of W by H at the origin: an ellipse adds to its stencil, and the fill is its
// one normal child.
struct stencilled_group
{
    stencilled_group(int W, int H, ownership_pointer<art_object> Fill)
    {
        Place(Group, point2d(0, 0), point2d(W, H));
        ownership_pointer<art_shape> Ellipse(new art_ellipse_shape);
        ownership_pointer<art_object> Stencil(new art_stencil_shape(Ellipse));
        Place(*Stencil, point2d(0, 0), point2d(W, H));
        Shape = Group.AddChild(Stencil);
        this->Fill = Group.AddChild(Fill);
    }

    ~stencilled_group()
    {
        Group.MarkChildrenForDeletion();
        Group.DeleteMarkedChildren();
    }

    art_object Group;
    reference_pointer<art_object> Shape;
    reference_pointer<art_object> Fill;
};

// The stencil's own coverage: the shape drawn white over black, as the stencil bitmap starts.
ownership_pointer<art_bitmap> StencilPicture(art_object &Shape, int W, int H)
{
    ownership_pointer<art_bitmap> Bitmap(new art_bitmap(W, H));
    Bitmap->Clear(Black);
    reference_pointer<bitmap_interface> Target(Bitmap.Get());
    Shape.Draw(Target, Target, agg::trans_affine(), reference_pointer<art_cache>());
    return Bitmap;
}

// What a layer of W by H becomes when Fill alone draws it, cleared to transparent first.
ownership_pointer<art_bitmap> FillPicture(art_object &Fill, int W, int H)
{
    ownership_pointer<art_bitmap> Bitmap(new art_bitmap(W, H));
    Bitmap->Clear(Transparent);
    reference_pointer<bitmap_interface> Target(Bitmap.Get());
    Fill.Draw(Target, Target, agg::trans_affine(), reference_pointer<art_cache>());
    return Bitmap;
}

} // namespace

TEST(ArtColorFill, DefaultsToOpaqueWhiteAndWritesNoColour)
{
    art_color_fill Fill;
    agg::rgba Color = Fill.GetColor();
    EXPECT_EQ(1.0, Color.r);
    EXPECT_EQ(1.0, Color.g);
    EXPECT_EQ(1.0, Color.b);
    EXPECT_EQ(1.0, Color.a);
    EXPECT_EQ("<art_solid_fill></art_solid_fill>", Written(Fill));
}

TEST(ArtColorFill, ReadsAndWritesItsColourText)
{
    xbd_file File;
    ownership_pointer<xbd_tag> Tag = MakeTag(File, "art_solid_fill", {{"color", "ff800040"}});
    art_color_fill Fill(reference_pointer<xbd_tag>(Tag.Get()));
    EXPECT_EQ(1.0, Fill.GetColor().r);
    EXPECT_DOUBLE_EQ(128 / 255.0, Fill.GetColor().g);
    EXPECT_EQ(0.0, Fill.GetColor().b);
    EXPECT_DOUBLE_EQ(64 / 255.0, Fill.GetColor().a);
    EXPECT_EQ("<art_solid_fill color=\"ff800040\"></art_solid_fill>", Written(Fill));
}

TEST(ArtColorFill, NamesItselfAsTheLayerStackShowsIt)
{
    art_color_fill Fill;
    EXPECT_EQ(zel_string("art_solid_fill"), Fill.GetTagName());
    EXPECT_EQ(zel_string("Solid Color"), Fill.GetTypeLabel());
    EXPECT_EQ(zel_string("Fill"), Fill.GetEffectKind());
    EXPECT_TRUE(Fill.IsFillEffect());
    EXPECT_FALSE(Fill.IsFilterEffect());
    EXPECT_TRUE(Fill.IsLayerObject());
    EXPECT_FALSE(Fill.HasGradientControls());
}

TEST(ArtColorFill, AnOpaqueColourReplacesTheWholeTarget)
{
    art_color_fill Fill(agg::rgba(0, 0.5, 1, 1));
    ownership_pointer<art_bitmap> Bitmap(new art_bitmap(7, 5));
    Bitmap->Clear(Pixel(10, 20, 30, 40));
    reference_pointer<bitmap_interface> Target(Bitmap.Get());
    Fill.Draw(Target, Target, agg::trans_affine_translation(100, 100), reference_pointer<art_cache>());
    // 0.5 * 255 + 0.5 = 128, truncated.
    EXPECT_TRUE(PixelsAre(*Bitmap, [](int, int) { return Pixel(0, 128, 255, 255); }));
}

TEST(ArtColorFill, ATranslucentColourBlendsOverWhatTheLayerHas)
{
    art_color_fill Fill(agg::rgba(1, 0, 0, 0.5));
    ownership_pointer<art_bitmap> Bitmap(new art_bitmap(6, 4));
    Bitmap->Clear(Pixel(0, 0, 200, 255));
    reference_pointer<bitmap_interface> Target(Bitmap.Get());
    Fill.Draw(Target, Target, agg::trans_affine(), reference_pointer<art_cache>());
    // Red at alpha 128, premultiplied by truncation: 255 * 128 >> 8 = 127.
    agg::rgba8 Want = Over(Pixel(0, 0, 200, 255), Pixel(127, 0, 0, 128), 255);
    EXPECT_TRUE(PixelsAre(*Bitmap, [&](int, int) { return Want; }));
    EXPECT_EQ(PixelText(Pixel(127, 0, 99, 255)), PixelText(Want));
}

TEST(ArtColorFill, SetColorAsksForARedrawOnlyWhenAChannelChanges)
{
    art_object Parent;
    reference_pointer<art_object> Fill = Parent.AddChild(ownership_pointer<art_object>(new art_color_fill));
    int32_t Count = Parent.GetRedrawCount();
    Fill->SetColor(agg::rgba(1, 1, 1, 1));
    EXPECT_EQ(Count, Parent.GetRedrawCount());
    Fill->SetColor(agg::rgba(1, 1, 1, 0.75));
    EXPECT_GT(Parent.GetRedrawCount(), Count);
    EXPECT_EQ(0.75, Fill->GetColor().a);
    Parent.MarkChildrenForDeletion();
    Parent.DeleteMarkedChildren();
}

TEST(ArtColorFill, OpaqueExactlyWhenItsAlphaIsOne)
{
    art_color_fill Fill(agg::rgba(0.2, 0.3, 0.4, 1));
    EXPECT_TRUE(Fill.IsOpaque());
    Fill.SetColor(agg::rgba(0.2, 0.3, 0.4, 0.999));
    EXPECT_FALSE(Fill.IsOpaque());
}

TEST(ArtColorFill, DuplicateKeepsTheColour)
{
    art_color_fill Fill(agg::rgba(0, 1, 0, 1));
    ownership_pointer<art_object> Copy = Fill.Duplicate();
    ASSERT_NE(nullptr, dynamic_cast<art_color_fill *>(Copy.Get()));
    EXPECT_EQ("<art_solid_fill color=\"00ff00ff\"></art_solid_fill>", Written(*Copy));
}

TEST(ArtFillEffect, EveryStackModeAskedForBecomesNormal)
{
    for (art_stack_mode Mode : {StackModeStencil, StackModePost, StackModePlusStencil, StackModeMinusStencil}) {
        art_color_fill Fill;
        Fill.SetStackMode(Mode);
        EXPECT_EQ(StackModeNormal, Fill.GetStackMode());
        art_color_fade Fade;
        Fade.SetStackMode(Mode);
        EXPECT_EQ(StackModeNormal, Fade.GetStackMode());
    }
}

TEST(ArtFilterEffect, IsAnEffectAndNoFill)
{
    art_filter_effect Filter;
    EXPECT_EQ(zel_string("Effect"), Filter.GetEffectKind());
    EXPECT_TRUE(Filter.IsFilterEffect());
    EXPECT_FALSE(Filter.IsFillEffect());
    EXPECT_TRUE(Filter.IsLayerObject());
    Filter.SetStackMode(StackModePost);
    EXPECT_EQ(StackModePost, Filter.GetStackMode());
}

TEST(ArtStencilShapeColor, ForwardsToItsParentAndWithoutOneActsAsAPlainObject)
{
    ownership_pointer<art_object> Stencil(new art_stencil_shape);
    EXPECT_EQ(0.0, Stencil->GetColor().r);
    EXPECT_EQ(1.0, Stencil->GetColor().a);
    Stencil->SetColor(agg::rgba(1, 1, 1, 1));
    EXPECT_EQ(0.0, Stencil->GetColor().r);

    art_object Parent;
    reference_pointer<art_object> Fill =
        Parent.AddChild(ownership_pointer<art_object>(new art_color_fill(agg::rgba(0.25, 0.5, 0.75, 1))));
    reference_pointer<art_object> Shape = Parent.AddChild(Stencil);
    // The parent is a plain object: it reads as opaque black and ignores a new colour.
    EXPECT_EQ(0.0, Shape->GetColor().g);
    Shape->SetColor(agg::rgba(1, 0, 0, 1));
    EXPECT_EQ(0.5, Fill->GetColor().g);
    Parent.MarkChildrenForDeletion();
    Parent.DeleteMarkedChildren();
}

// An object that answers for a colour of its own, as a parent of a shape does in the editor.
class colour_holder : public art_object
{
public:
    agg::rgba GetColor() override { return Color; }
    void SetColor(const agg::rgba &NewColor) override { Color = NewColor; }
    agg::rgba Color = agg::rgba(0.25, 0.5, 0.75, 1);
};

TEST(ArtStencilShapeColor, SetsAndReadsTheParentsColour)
{
    colour_holder Parent;
    reference_pointer<art_object> Shape = Parent.AddChild(ownership_pointer<art_object>(new art_stencil_shape));
    EXPECT_EQ(0.75, Shape->GetColor().b);
    Shape->SetColor(agg::rgba(1, 0, 0, 0.5));
    EXPECT_EQ(1.0, Parent.Color.r);
    EXPECT_EQ(0.5, Parent.Color.a);
    Parent.MarkChildrenForDeletion();
    Parent.DeleteMarkedChildren();
}

TEST(ArtColorFill, InsideAStencilledObjectFillsExactlyTheStencil)
{
    stencilled_group Scene(40, 24, ownership_pointer<art_object>(new art_color_fill(agg::rgba(1, 0.5, 0, 1))));
    ownership_pointer<art_bitmap> Stencil = StencilPicture(*Scene.Shape, 40, 24);
    ownership_pointer<art_bitmap> Drawn = DrawAlone(Scene.Group, 40, 24);
    agg::rgba8 Orange = Pixel(255, 128, 0, 255);
    // The masked composite goes over the transparent target, which raises a partial alpha a step.
    EXPECT_TRUE(PixelsAre(*Drawn, [&](int X, int Y) {
        return Over(Transparent, Masked(Orange, Stencil->GetPixelRow(Y)[X]), 255);
    }));
    EXPECT_EQ(PixelText(Orange), PixelText(Drawn->GetPixelRow(12)[20]));
    EXPECT_EQ(PixelText(Transparent), PixelText(Drawn->GetPixelRow(0)[0]));
}

TEST(ArtColorFade, InsideAStencilledObjectFillsExactlyTheStencil)
{
    stencilled_group Scene(40, 24, ownership_pointer<art_object>(new art_color_fade));
    ownership_pointer<art_bitmap> Stencil = StencilPicture(*Scene.Shape, 40, 24);
    ownership_pointer<art_bitmap> Layer = FillPicture(*Scene.Fill, 40, 24);
    ownership_pointer<art_bitmap> Drawn = DrawAlone(Scene.Group, 40, 24);
    EXPECT_TRUE(PixelsAre(*Drawn, [&](int X, int Y) {
        return Over(Transparent, Masked(Layer->GetPixelRow(Y)[X], Stencil->GetPixelRow(Y)[X]), 255);
    }));
    EXPECT_EQ(PixelText(Transparent), PixelText(Drawn->GetPixelRow(23)[39]));
    EXPECT_EQ(255, Drawn->GetPixelRow(12)[20].a);
}

TEST(ArtColorFill, TheFactoryMakesFillsFromTheirTags)
{
    xbd_file File;
    ownership_pointer<xbd_tag> Solid = MakeTag(File, "art_solid_fill", {{"color", "0000ffff"}});
    ownership_pointer<art_object> Fill =
        art_object_factory::GetFactory()->Make(reference_pointer<xbd_tag>(Solid.Get()));
    ASSERT_NE(nullptr, dynamic_cast<art_color_fill *>(Fill.Get()));
    EXPECT_EQ(1.0, Fill->GetColor().b);
    ownership_pointer<xbd_tag> Gradient = MakeTag(File, "art_gradient_fill", {{"fade_type", "diamond"}});
    ownership_pointer<art_object> Fade =
        art_object_factory::GetFactory()->Make(reference_pointer<xbd_tag>(Gradient.Get()));
    ASSERT_NE(nullptr, dynamic_cast<art_color_fade *>(Fade.Get()));
    EXPECT_EQ(FadeTypeDiamond, dynamic_cast<art_color_fade *>(Fade.Get())->GetFadeType());
}
