#include <gtest/gtest.h>

#include <functional>
#include <initializer_list>
#include <string>
#include <utility>

#include "art_engine/effects/art_color_fade.h"
#include "tests/art_engine/effects/art_gradient_test_support.h"
#include "tests/art_engine/objects/art_test_support.h"
#include "tests/test_support.h"

using art_test::MakeTag;
using art_test::Written;

namespace {

const char *const DefaultPoints =
    "<points><points loc=\"(0,0)\" color=\"ff0000ff\"></points><points loc=\"(1,1)\" color=\"00ff00ff\"></points>"
    "</points>";

// A fade read from a tag of the given attributes and no points.
struct read_fade
{
    explicit read_fade(std::initializer_list<std::pair<const char *, const char *>> Values)
    {
        ownership_pointer<xbd_tag> Tag = MakeTag(File, "art_gradient_fill", Values);
        Fade.Reset(new art_color_fade(reference_pointer<xbd_tag>(Tag.Get())));
    }

    xbd_file File;
    ownership_pointer<art_color_fade> Fade;
};

std::string AssertionText(const std::function<void()> &Action)
{
    try {
        Action();
    } catch (zel_error &Error) {
        return ToStd(Error.GetMessage());
    }
    return "no assertion";
}

} // namespace

TEST(ArtColorFade, DefaultsToALinearRedToGreenDiagonal)
{
    art_color_fade Fade;
    EXPECT_EQ(FadeTypeLinear, Fade.GetFadeType());
    EXPECT_EQ(FadeModeRgb, Fade.GetFadeMode());
    EXPECT_EQ(1.0, Fade.GetReps());
    EXPECT_FALSE(Fade.GetMirror());
    EXPECT_EQ(0, Fade.GetCurrentColorIndex());
    ASSERT_EQ(2, Fade.GetFadePoints().GetNumberOfElements());
    EXPECT_EQ(point2d(0, 0), Fade.GetFadePoints()[0]);
    EXPECT_EQ(point2d(1, 1), Fade.GetFadePoints()[1]);
    EXPECT_EQ(1.0, Fade.GetColors()[0].r);
    EXPECT_EQ(1.0, Fade.GetColors()[1].g);
    EXPECT_EQ(std::string("<art_gradient_fill>") + DefaultPoints + "</art_gradient_fill>", Written(Fade));
}

TEST(ArtColorFade, NamesItselfAsTheLayerStackShowsIt)
{
    art_color_fade Fade;
    EXPECT_EQ(zel_string("art_gradient_fill"), Fade.GetTagName());
    EXPECT_EQ(zel_string("Gradient"), Fade.GetTypeLabel());
    EXPECT_EQ(zel_string("Fill"), Fade.GetEffectKind());
    EXPECT_TRUE(Fade.IsFillEffect());
    EXPECT_TRUE(Fade.HasGradientControls());
}

TEST(ArtColorFade, ATagWithoutPointsTakesTheTwoDefaults)
{
    read_fade Read({});
    EXPECT_EQ(std::string("<art_gradient_fill>") + DefaultPoints + "</art_gradient_fill>", Written(*Read.Fade));
}

TEST(ArtColorFade, ReadsEveryAttributeAndWritesItBackInItsOrder)
{
    const char *Text = "<art_gradient_fill repetitions=\"2.5\" mirror=\"1\" fade_type=\"conic\" fade_mode=\"long_hsb\">"
                       "<points><points loc=\"(0.25,0.5)\" color=\"10203040\"></points>"
                       "<points loc=\"(0.75,-0.5)\" color=\"ffffff00\"></points>"
                       "<points loc=\"(3,4)\" color=\"00000080\"></points></points></art_gradient_fill>";
    ownership_pointer<xbd_file> File = xbd_file::LoadFromData(Text, false);
    art_color_fade Fade(reference_pointer<xbd_tag>(File->GetRootTag()->GetChildren()[0].Get()));
    EXPECT_EQ(FadeTypeConic, Fade.GetFadeType());
    EXPECT_EQ(FadeModeLongHsb, Fade.GetFadeMode());
    EXPECT_EQ(2.5, Fade.GetReps());
    EXPECT_TRUE(Fade.GetMirror());
    ASSERT_EQ(3, Fade.GetFadePoints().GetNumberOfElements());
    ASSERT_EQ(3, Fade.GetColors().GetNumberOfElements());
    EXPECT_EQ(point2d(0.75, -0.5), Fade.GetFadePoints()[1]);
    EXPECT_DOUBLE_EQ(0x10 / 255.0, Fade.GetColors()[0].r);
    EXPECT_EQ(Text, Written(Fade));
}

TEST(ArtColorFade, EveryTypeAndModeHasItsText)
{
    const char *Types[] = {nullptr, "circular", "diamond", "conic", "xy", "sqrtxy"};
    for (int Type = 0; Type < 6; Type++) {
        art_color_fade Fade;
        Fade.SetFadeType(Type);
        std::string Want = Types[Type] ? std::string(" fade_type=\"") + Types[Type] + "\"" : "";
        EXPECT_EQ("<art_gradient_fill" + Want + ">" + DefaultPoints + "</art_gradient_fill>", Written(Fade));
        if (Types[Type] != nullptr) {
            read_fade Read({{"fade_type", Types[Type]}});
            EXPECT_EQ(Type, Read.Fade->GetFadeType());
        }
    }
    const char *Modes[] = {"short_hsb", "long_hsb"};
    for (int Mode = 0; Mode < 2; Mode++) {
        read_fade Read({{"fade_mode", Modes[Mode]}});
        EXPECT_EQ(Mode, Read.Fade->GetFadeMode());
        EXPECT_EQ(std::string("<art_gradient_fill fade_mode=\"") + Modes[Mode] + "\">" + DefaultPoints +
                      "</art_gradient_fill>",
                  Written(*Read.Fade));
    }
    read_fade Rgb({{"fade_mode", "rgb"}});
    EXPECT_EQ(FadeModeRgb, Rgb.Fade->GetFadeMode());
    EXPECT_EQ(std::string("<art_gradient_fill>") + DefaultPoints + "</art_gradient_fill>", Written(*Rgb.Fade));
}

TEST(ArtColorFade, UnknownTypeAndModeTextsReadAsTheDefaults)
{
    read_fade Read({{"fade_type", "spiral"}, {"fade_mode", "cmyk"}});
    EXPECT_EQ(FadeTypeLinear, Read.Fade->GetFadeType());
    EXPECT_EQ(FadeModeRgb, Read.Fade->GetFadeMode());
}

TEST(ArtColorFade, AnOlderDocumentsMirroredRepsCountTwiceAndSaveAsRepetitions)
{
    read_fade Read({{"reps", "4"}, {"mirror", "1"}});
    EXPECT_EQ(2.0, Read.Fade->GetReps());
    EXPECT_TRUE(Read.Fade->GetMirror());
    EXPECT_EQ(std::string("<art_gradient_fill repetitions=\"2\" mirror=\"1\">") + DefaultPoints +
                  "</art_gradient_fill>",
              Written(*Read.Fade));
}

TEST(ArtColorFade, AnOlderDocumentsRepsWithoutMirrorCountAsTheyStand)
{
    read_fade Read({{"reps", "3"}});
    EXPECT_EQ(3.0, Read.Fade->GetReps());
    EXPECT_FALSE(Read.Fade->GetMirror());
}

TEST(ArtColorFade, ATagWithNeitherRepsNorRepetitionsHasOneRepetition)
{
    read_fade Read({{"mirror", "1"}});
    EXPECT_EQ(1.0, Read.Fade->GetReps());
    EXPECT_TRUE(Read.Fade->GetMirror());
    EXPECT_EQ(std::string("<art_gradient_fill mirror=\"1\">") + DefaultPoints + "</art_gradient_fill>",
              Written(*Read.Fade));
}

TEST(ArtColorFade, RepsOfOneDefersToRepetitionsAndNeitherIsHalvedThen)
{
    read_fade Read({{"reps", "1"}, {"repetitions", "3"}, {"mirror", "1"}});
    EXPECT_EQ(3.0, Read.Fade->GetReps());
}

TEST(ArtColorFade, RepetitionsAreRaisedToAThousandth)
{
    read_fade New({{"repetitions", "0"}});
    EXPECT_EQ(0.001, New.Fade->GetReps());
    EXPECT_EQ(std::string("<art_gradient_fill repetitions=\"0.001\">") + DefaultPoints + "</art_gradient_fill>",
              Written(*New.Fade));
    // Raised before the halving of a mirrored older count.
    read_fade Old({{"reps", "0"}, {"mirror", "1"}});
    EXPECT_EQ(0.0005, Old.Fade->GetReps());
    art_color_fade Fade;
    Fade.SetReps(-3);
    EXPECT_EQ(0.001, Fade.GetReps());
}

TEST(ArtColorFade, HandlesSitAtTheSizeTimesEachPoint)
{
    art_object Parent;
    Parent.SetSize(point2d(200, 100));
    reference_pointer<art_color_fade> Fade =
        Parent.AddChild(ownership_pointer<art_object>(new art_color_fade)).DynamicCast<art_color_fade>();
    EXPECT_EQ(2, Fade->GetNumHandles());
    EXPECT_EQ(point2d(0, 0), Fade->GetHandleLocation(0));
    EXPECT_EQ(point2d(200, 100), Fade->GetHandleLocation(1));
    int32_t Count = Parent.GetRedrawCount();
    Fade->SetHandleLocation(1, point2d(50, 75));
    EXPECT_EQ(point2d(0.25, 0.75), Fade->GetFadePoints()[1]);
    EXPECT_EQ(point2d(50, 75), Fade->GetHandleLocation(1));
    EXPECT_GT(Parent.GetRedrawCount(), Count);
    Parent.MarkChildrenForDeletion();
    Parent.DeleteMarkedChildren();
}

TEST(ArtColorFade, AHandleOnAZeroSizeComponentGivesZero)
{
    art_object Parent;
    Parent.SetSize(point2d(0, 40));
    reference_pointer<art_color_fade> Fade =
        Parent.AddChild(ownership_pointer<art_object>(new art_color_fade)).DynamicCast<art_color_fade>();
    Fade->SetHandleLocation(0, point2d(30, 10));
    EXPECT_EQ(point2d(0, 0.25), Fade->GetFadePoints()[0]);
    Parent.MarkChildrenForDeletion();
    Parent.DeleteMarkedChildren();
}

TEST(ArtColorFade, HandleTipsNameWhatEachPointSets)
{
    const char *Second[] = {"Gradient Position: End",           "Gradient Position: Size",
                            "Gradient Position: Size and Angle", "Gradient Position: Angle",
                            "Gradient Position: Size and Angle", "Gradient Position: Size and Angle"};
    for (int Type = 0; Type < 6; Type++) {
        art_color_fade Fade;
        Fade.SetFadeType(Type);
        zel_string Title;
        zel_string Tip;
        Fade.GetHandleToolTip(0, Title, Tip);
        EXPECT_EQ(zel_string(Type == 0 ? "Gradient Position: Start" : "Gradient Position: Center"), Title);
        EXPECT_EQ(zel_string("Drag to move; Click to select for setting color"), Tip);
        Fade.GetHandleToolTip(1, Title, Tip);
        EXPECT_EQ(zel_string(Second[Type]), Title) << Type;
        EXPECT_EQ(zel_string("Drag to move; Click to select for setting color"), Tip);
    }
}

TEST(ArtColorFade, TheColourPickerSetsTheCurrentPointsColour)
{
    art_object Parent;
    reference_pointer<art_color_fade> Fade =
        Parent.AddChild(ownership_pointer<art_object>(new art_color_fade)).DynamicCast<art_color_fade>();
    EXPECT_EQ(1.0, Fade->GetColor().r);
    Fade->SetCurrentColorIndex(1);
    EXPECT_EQ(1.0, Fade->GetColor().g);
    int32_t Count = Parent.GetRedrawCount();
    Fade->SetColor(agg::rgba(0, 1, 0, 1));
    EXPECT_EQ(Count, Parent.GetRedrawCount());
    Fade->SetColor(agg::rgba(0, 0, 1, 0.5));
    EXPECT_GT(Parent.GetRedrawCount(), Count);
    EXPECT_EQ(1.0, Fade->GetColors()[1].b);
    EXPECT_EQ(0.5, Fade->GetColors()[1].a);
    EXPECT_EQ(1.0, Fade->GetColors()[0].r);
    Parent.MarkChildrenForDeletion();
    Parent.DeleteMarkedChildren();
}

TEST(ArtColorFade, AnIndexOfNoPointLeavesTheColoursToThePlainObject)
{
    art_color_fade Fade;
    for (int32_t Index : {2, -1}) {
        Fade.SetCurrentColorIndex(Index);
        EXPECT_EQ(0.0, Fade.GetColor().r);
        EXPECT_EQ(1.0, Fade.GetColor().a);
        Fade.SetColor(agg::rgba(0, 0, 1, 1));
        EXPECT_EQ(1.0, Fade.GetColors()[0].r);
        EXPECT_EQ(1.0, Fade.GetColors()[1].g);
    }
}

TEST(ArtColorFade, OpaqueExactlyWhenTheCurrentColourHasFullAlpha)
{
    art_color_fade Fade;
    EXPECT_TRUE(Fade.IsOpaque());
    Fade.SetCurrentColorIndex(1);
    Fade.SetColor(agg::rgba(0, 1, 0, 0.5));
    EXPECT_FALSE(Fade.IsOpaque());
    Fade.SetCurrentColorIndex(0);
    EXPECT_TRUE(Fade.IsOpaque());
}

TEST(ArtColorFade, DuplicateKeepsEveryField)
{
    read_fade Read({{"repetitions", "3"}, {"mirror", "1"}, {"fade_type", "xy"}, {"fade_mode", "short_hsb"}});
    ownership_pointer<art_object> Copy = Read.Fade->Duplicate();
    ASSERT_NE(nullptr, dynamic_cast<art_color_fade *>(Copy.Get()));
    EXPECT_EQ(Written(*Read.Fade), Written(*Copy));
}

TEST(ArtColorFade, SavingAnUnknownTypeOrModeIsAnAssertion)
{
    art_color_fade Fade;
    Fade.SetFadeType(6);
    EXPECT_NE(std::string::npos, AssertionText([&] { Written(Fade); }).find("'false' is false"));
    Fade.SetFadeType(0);
    Fade.SetFadeMode(3);
    EXPECT_NE(std::string::npos, AssertionText([&] { Written(Fade); }).find("'false' is false"));
}

TEST(ArtColorFade, DrawingWithFewerThanTwoColoursIsAnAssertion)
{
    xbd_file File;
    ownership_pointer<xbd_tag> Tag = MakeTag(File, "art_gradient_fill");
    ownership_pointer<xbd_tag> List = Tag->NewTag("points");
    ownership_pointer<xbd_tag> Entry = List->NewTag("points");
    Entry->AddAttribute("loc", "(0,0)");
    Entry->AddAttribute("color", "ff0000ff");
    List->AddChildTag(Entry);
    Tag->AddChildTag(List);
    art_color_fade Fade(reference_pointer<xbd_tag>(Tag.Get()));
    art_bitmap Bitmap(4, 4);
    reference_pointer<bitmap_interface> Target(&Bitmap);
    EXPECT_NE(std::string::npos,
              AssertionText([&] {
                  Fade.Draw(Target, Target, agg::trans_affine(), reference_pointer<art_cache>());
              }).find("'Colors.GetNumberOfElements()>=2' is false"));
}

TEST(ArtColorFade, PointsAndColoursMustPairUp)
{
    art_color_fade Fade;
    array<point2d> Points;
    Points.Add(point2d(0, 0));
    Points.Add(point2d(1, 0));
    Points.Add(point2d(1, 1));
    array<agg::rgba> Colors;
    Colors.Add(agg::rgba(1, 0, 0, 1));
    Colors.Add(agg::rgba(0, 1, 0, 1));
    EXPECT_NE(std::string::npos, AssertionText([&] { Fade.SetPoints(Points, Colors); })
                                     .find("'NewFadePoints.GetNumberOfElements()==NewColors.GetNumberOfElements()' "
                                           "is false"));
}
