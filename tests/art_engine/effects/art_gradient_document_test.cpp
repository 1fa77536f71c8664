#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "art_engine/effects/art_color_fade.h"
#include "art_engine/objects/art_object_factory.h"
#include "tests/art_engine/effects/art_gradient_test_support.h"
#include "tests/art_engine/objects/art_test_support.h"

using namespace art_gradient_test;
using art_render_test::test_top_object;

namespace {

class document_factory_environment : public testing::Environment
{
public:
    void SetUp() override { art_object_factory::GetFactory(); }
};

testing::Environment *const DocumentFactoryEnvironment =
    testing::AddGlobalTestEnvironment(new document_factory_environment);

// A rectangle of 64 by 32 at (4, 2), red to blue from its left edge to its right across the middle.
const char *const RectangleDocument =
    "<pego name=\"card\" handle=\"(0,0)\" x_val=\"4\" w_val=\"64\" y_val=\"2\" h_val=\"32\"><children>"
    "<art_stencil_shape stack_mode=\"+stencil\" x_layout_mode=\"7\" x_val=\"0.5\" w_val=\"1\" y_layout_mode=\"7\" "
    "y_val=\"0.5\" h_val=\"1\"><art_rectangle></art_rectangle></art_stencil_shape>"
    "<art_gradient_fill><points><points loc=\"(0,0.5)\" color=\"ff0000ff\"></points>"
    "<points loc=\"(1,0.5)\" color=\"0000ffff\"></points></points></art_gradient_fill>"
    "</children></pego>";

// An ellipse of 64 by 64 at the origin with a mirrored conic gradient from its centre, yellow to
// blue in short hue steps.
const char *const EllipseDocument =
    "<pego name=\"disc\" handle=\"(0,0)\" w_val=\"64\" h_val=\"64\"><children>"
    "<art_stencil_shape stack_mode=\"+stencil\" x_layout_mode=\"7\" x_val=\"0.5\" w_val=\"1\" y_layout_mode=\"7\" "
    "y_val=\"0.5\" h_val=\"1\"><art_ellipse></art_ellipse></art_stencil_shape>"
    "<art_gradient_fill mirror=\"1\" fade_type=\"conic\" fade_mode=\"short_hsb\"><points>"
    "<points loc=\"(0.5,0.5)\" color=\"ffff00ff\"></points>"
    "<points loc=\"(1,0.5)\" color=\"0000ffff\"></points></points></art_gradient_fill>"
    "</children></pego>";

ownership_pointer<art_object> Load(const char *Text)
{
    ownership_pointer<xbd_file> File = xbd_file::LoadFromData(Text, false);
    reference_pointer<xbd_tag> Tag(File->GetRootTag()->GetChildren()[0].Get());
    return art_object_factory::GetFactory()->Make(Tag);
}

// The document under a top object of W by H on white, after one tick.
struct shown_document
{
    shown_document(const char *Text, int W, int H)
    {
        Top.SetBackgroundColor(agg::rgba(1, 1, 1, 1));
        Top.SetSize(point2d(W, H));
        Document = Top.AddChild(Load(Text));
        Top.Tick();
    }

    ~shown_document()
    {
        Top.MarkChildrenForDeletion();
        Top.DeleteMarkedChildren();
    }

    agg::rgba8 At(int X, int Y) { return Top.GetBitmap()->GetPixelRow(Y)[X]; }

    test_top_object Top;
    reference_pointer<art_object> Document;
};

} // namespace

TEST(ArtGradientDocument, ARectangleWithAGradientIsWrittenBackUnchanged)
{
    ownership_pointer<art_object> Document = Load(RectangleDocument);
    EXPECT_EQ(RectangleDocument, art_test::Written(*Document));
}

TEST(ArtGradientDocument, AnEllipseWithAMirroredConicGradientIsWrittenBackUnchanged)
{
    ownership_pointer<art_object> Document = Load(EllipseDocument);
    EXPECT_EQ(EllipseDocument, art_test::Written(*Document));
}

TEST(ArtGradientDocument, TheRectanglesGradientRunsAcrossItAndStopsAtItsEdges)
{
    shown_document Shown(RectangleDocument, 80, 40);
    std::vector<agg::rgba8> Table = NaiveTable(agg::rgba(1, 0, 0, 1), agg::rgba(0, 0, 1, 1), 2, false);
    // 32 units a pixel from the left edge at x = 4: the pixel centre x + 0.5 sits at 32 * (x - 4) + 16.
    for (int X : {4, 14, 36, 67}) {
        int Index = 32 * (X - 4) + 16;
        EXPECT_EQ(PixelText(Table[Index]), PixelText(Shown.At(X, 2))) << X;
        EXPECT_EQ(PixelText(Table[Index]), PixelText(Shown.At(X, 33))) << X;
    }
    EXPECT_EQ(PixelText(agg::rgba8(255, 255, 255, 255)), PixelText(Shown.At(3, 10)));
    EXPECT_EQ(PixelText(agg::rgba8(255, 255, 255, 255)), PixelText(Shown.At(68, 10)));
    EXPECT_EQ(PixelText(agg::rgba8(255, 255, 255, 255)), PixelText(Shown.At(20, 1)));
    EXPECT_EQ(PixelText(agg::rgba8(255, 255, 255, 255)), PixelText(Shown.At(20, 34)));
}

TEST(ArtGradientDocument, TheEllipsesConicGradientTurnsThereAndBackInsideIt)
{
    shown_document Shown(EllipseDocument, 70, 70);
    std::vector<agg::rgba8> Table = NaiveTable(agg::rgba(1, 1, 0, 1), agg::rgba(0, 0, 1, 1), 0, true);
    for (int_point2d P : {int_point2d(40, 32), int_point2d(32, 40), int_point2d(20, 28), int_point2d(31, 31),
                          int_point2d(45, 20), int_point2d(12, 45), int_point2d(50, 33), int_point2d(10, 32)}) {
        int Index = NaiveIndex(3, NaivePosition(P.X + 0.5, P.Y + 0.5, point2d(32, 32), point2d(64, 32), 2), 2, true);
        EXPECT_EQ(PixelText(Table[Index]), PixelText(Shown.At(P.X, P.Y))) << P.X << ", " << P.Y;
    }
    EXPECT_EQ(PixelText(agg::rgba8(255, 255, 255, 255)), PixelText(Shown.At(1, 1)));
    EXPECT_EQ(PixelText(agg::rgba8(255, 255, 255, 255)), PixelText(Shown.At(62, 62)));
}
