#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "art_engine/effects/art_color_fade.h"
#include "art_engine/effects/art_fill_path_with_fade.h"
#include "tests/art_engine/effects/art_gradient_test_support.h"
#include "tests/test_support.h"

using namespace art_gradient_test;

namespace {

const agg::rgba Red(1, 0, 0, 1);
const agg::rgba Blue(0, 0, 1, 1);

agg::rgba8 At(art_bitmap &Bitmap, int X, int Y)
{
    return Bitmap.GetPixelRow(Y)[X];
}

// Red to blue in RGB: entry i of the table, by the plain formula.
agg::rgba8 Entry(int Index)
{
    return NaiveTable(Red, Blue, 2, false)[Index];
}

// Compares every pixel of a fade drawn with the identity against the plain implementation. The
// points lie on pixel centres and one repetition spans a power of two of units per pixel, so every
// pixel centre falls on a whole position and both sides measure exactly. The table turns the hue
// once round the wheel, the long way from red to red: its 2048 entries come in about 1500 distinct
// colours, so that an entry one off shows.
testing::AssertionResult MatchesNaive(fade_scene &Scene, point2d P0, point2d P1, int Type, double Reps,
                                      bool Mirror, const agg::trans_affine &Matrix = agg::trans_affine())
{
    Scene.SetPoints(P0, P1, Red, Red);
    Scene.Fade->SetFadeMode(FadeModeLongHsb);
    Scene.Fade->SetFadeType(Type);
    Scene.Fade->SetReps(Reps);
    Scene.Fade->SetMirror(Mirror);
    ownership_pointer<art_bitmap> Bitmap(new art_bitmap(Scene.Width, Scene.Height));
    Bitmap->Clear(agg::rgba8(0, 0, 0, 0));
    reference_pointer<bitmap_interface> Target(Bitmap.Get());
    Scene.Fade->Draw(Target, Target, Matrix, reference_pointer<art_cache>());
    std::vector<agg::rgba8> Table = NaiveTable(Red, Red, 1, Type == 3);
    agg::trans_affine PixelToObject = Matrix;
    PixelToObject.invert();
    double R = Mirror ? Reps * 2 : Reps;
    int Differences = 0;
    std::string First;
    for (int Y = 0; Y < Scene.Height; Y++)
        for (int X = 0; X < Scene.Width; X++) {
            double PX = X + 0.5;
            double PY = Y + 0.5;
            PixelToObject.transform(&PX, &PY);
            int Index = NaiveIndex(Type, NaivePosition(PX, PY, P0, P1, R), R, Mirror);
            if (SamePixel(At(*Bitmap, X, Y), Table[Index]))
                continue;
            if (Differences++ == 0)
                First = "at (" + std::to_string(X) + ", " + std::to_string(Y) + ") got " +
                        PixelText(At(*Bitmap, X, Y)) + ", want entry " + std::to_string(Index) + " " +
                        PixelText(Table[Index]);
        }
    if (Differences == 0)
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << "type " << Type << " reps " << Reps << " mirror " << Mirror << ": "
                                       << Differences << " pixels differ, first " << First;
}

struct repetition_case
{
    double Reps;
    bool Mirror;
};

const repetition_case RepetitionCases[] = {{1, false}, {2, false}, {0.5, false}, {1, true}, {0.5, true}, {2, true}};

// Centre on a pixel centre, the second point 32 pixels to the right: the gradient, its ends and
// what lies past them in every direction fit in the bitmap.
const point2d Centre(40.5, 32.5);
const point2d End(72.5, 32.5);

} // namespace

TEST(ArtGradientDraw, LinearMatchesThePlainImplementationEverywhere)
{
    fade_scene Scene(128, 64);
    for (const repetition_case &Case : RepetitionCases)
        EXPECT_TRUE(MatchesNaive(Scene, Centre, End, FadeTypeLinear, Case.Reps, Case.Mirror));
}

TEST(ArtGradientDraw, CircularMatchesThePlainImplementationEverywhere)
{
    fade_scene Scene(128, 64);
    for (const repetition_case &Case : RepetitionCases)
        EXPECT_TRUE(MatchesNaive(Scene, Centre, End, FadeTypeCircular, Case.Reps, Case.Mirror));
}

TEST(ArtGradientDraw, DiamondMatchesThePlainImplementationEverywhere)
{
    fade_scene Scene(128, 64);
    for (const repetition_case &Case : RepetitionCases)
        EXPECT_TRUE(MatchesNaive(Scene, Centre, End, FadeTypeDiamond, Case.Reps, Case.Mirror));
}

TEST(ArtGradientDraw, ConicMatchesThePlainImplementationEverywhere)
{
    fade_scene Scene(128, 64);
    for (const repetition_case &Case : RepetitionCases)
        EXPECT_TRUE(MatchesNaive(Scene, Centre, End, FadeTypeConic, Case.Reps, Case.Mirror));
}

TEST(ArtGradientDraw, XYMatchesThePlainImplementationEverywhere)
{
    fade_scene Scene(128, 64);
    for (const repetition_case &Case : RepetitionCases)
        EXPECT_TRUE(MatchesNaive(Scene, Centre, End, FadeTypeXY, Case.Reps, Case.Mirror));
}

TEST(ArtGradientDraw, SqrtXYMatchesThePlainImplementationEverywhere)
{
    fade_scene Scene(128, 64);
    for (const repetition_case &Case : RepetitionCases)
        EXPECT_TRUE(MatchesNaive(Scene, Centre, End, FadeTypeSqrtXY, Case.Reps, Case.Mirror));
}

// The matrix doubles object units into pixels: pixel centres fall on quarter positions of the
// object, still whole gradient units.
TEST(ArtGradientDraw, EveryKindFollowsTheMatrixIntoPixels)
{
    fade_scene Scene(64, 32);
    agg::trans_affine Matrix = agg::trans_affine_scaling(2);
    for (int Type = 0; Type < 6; Type++)
        EXPECT_TRUE(MatchesNaive(Scene, point2d(20.25, 8.25), point2d(36.25, 8.25), Type, 1, false, Matrix));
}

TEST(ArtGradientDraw, LinearAtItsCentreItsEndsAndPastThem)
{
    fade_scene Scene(128, 64);
    Scene.SetPoints(Centre, End, Red, Blue);
    ownership_pointer<art_bitmap> Bitmap = Scene.Draw();
    // 64 units a pixel: pixel 40 holds the start, pixel 56 is half way at 1024.
    EXPECT_EQ(PixelText(Entry(0)), PixelText(At(*Bitmap, 40, 32)));
    EXPECT_EQ(PixelText(agg::rgba8(127, 0, 128, 255)), PixelText(At(*Bitmap, 56, 10)));
    EXPECT_EQ(PixelText(Entry(1984)), PixelText(At(*Bitmap, 71, 32)));
    EXPECT_EQ(PixelText(agg::rgba8(0, 0, 255, 255)), PixelText(At(*Bitmap, 72, 32)));
    EXPECT_EQ(PixelText(agg::rgba8(0, 0, 255, 255)), PixelText(At(*Bitmap, 127, 0)));
    EXPECT_EQ(PixelText(agg::rgba8(255, 0, 0, 255)), PixelText(At(*Bitmap, 0, 63)));
}

TEST(ArtGradientDraw, CircularAtItsCentreItsEdgeAndPastIt)
{
    fade_scene Scene(128, 64);
    Scene.SetPoints(Centre, End, Red, Blue);
    Scene.Fade->SetFadeType(FadeTypeCircular);
    ownership_pointer<art_bitmap> Bitmap = Scene.Draw();
    EXPECT_EQ(PixelText(agg::rgba8(255, 0, 0, 255)), PixelText(At(*Bitmap, 40, 32)));
    // Half the radius in any of the four directions.
    for (point2d P : {point2d(56, 32), point2d(24, 32), point2d(40, 48), point2d(40, 16)})
        EXPECT_EQ(PixelText(agg::rgba8(127, 0, 128, 255)), PixelText(At(*Bitmap, int(P.X), int(P.Y))));
    EXPECT_EQ(PixelText(Entry(1984)), PixelText(At(*Bitmap, 40, 63)));
    EXPECT_EQ(PixelText(agg::rgba8(0, 0, 255, 255)), PixelText(At(*Bitmap, 72, 32)));
    EXPECT_EQ(PixelText(agg::rgba8(0, 0, 255, 255)), PixelText(At(*Bitmap, 0, 0)));
}

// The conic table runs from the second colour: the axis itself shows it, and the sweep comes back
// to it from below.
TEST(ArtGradientDraw, ConicSweepsOnceRoundFromTheAxis)
{
    fade_scene Scene(128, 64);
    Scene.SetPoints(Centre, End, Red, Blue);
    Scene.Fade->SetFadeType(FadeTypeConic);
    ownership_pointer<art_bitmap> Bitmap = Scene.Draw();
    std::vector<agg::rgba8> Swapped = NaiveTable(Red, Blue, 2, true);
    EXPECT_EQ(PixelText(agg::rgba8(0, 0, 255, 255)), PixelText(At(*Bitmap, 40, 32)));
    EXPECT_EQ(PixelText(agg::rgba8(0, 0, 255, 255)), PixelText(At(*Bitmap, 100, 32)));
    // A quarter turn down the screen (positive Y), half a turn, three quarters.
    EXPECT_EQ(PixelText(Swapped[512]), PixelText(At(*Bitmap, 40, 50)));
    EXPECT_EQ(PixelText(Swapped[1024]), PixelText(At(*Bitmap, 10, 32)));
    EXPECT_EQ(PixelText(Swapped[1536]), PixelText(At(*Bitmap, 40, 10)));
    // Just above the axis on the right the sweep is nearly done: close to the first colour again.
    EXPECT_GE(At(*Bitmap, 100, 31).r, 250);
}

TEST(ArtGradientDraw, ConicMirroredRunsThereAndBackOnceAroundTheCircle)
{
    fade_scene Scene(128, 64);
    Scene.SetPoints(Centre, End, Red, Blue);
    Scene.Fade->SetFadeType(FadeTypeConic);
    Scene.Fade->SetMirror(true);
    ownership_pointer<art_bitmap> Bitmap = Scene.Draw();
    std::vector<agg::rgba8> Swapped = NaiveTable(Red, Blue, 2, true);
    EXPECT_EQ(PixelText(Swapped[0]), PixelText(At(*Bitmap, 100, 32)));
    EXPECT_EQ(PixelText(Swapped[1024]), PixelText(At(*Bitmap, 40, 50)));
    EXPECT_EQ(PixelText(Swapped[2047]), PixelText(At(*Bitmap, 10, 32)));
    EXPECT_EQ(PixelText(Swapped[1024]), PixelText(At(*Bitmap, 40, 10)));
}

TEST(ArtGradientDraw, ThePointOfNoLengthDrawsOneColourWithoutCrashing)
{
    fade_scene Scene(32, 16);
    Scene.SetPoints(point2d(10, 10), point2d(10, 10), Red, Blue);
    ownership_pointer<art_bitmap> Linear = Scene.Draw();
    EXPECT_TRUE(art_render_test::PixelsAre(*Linear, [](int, int) { return agg::rgba8(255, 0, 0, 255); }));
    for (int Type = 1; Type < 6; Type++) {
        Scene.Fade->SetFadeType(Type);
        ownership_pointer<art_bitmap> Bitmap = Scene.Draw();
        agg::rgba8 First = At(*Bitmap, 0, 0);
        EXPECT_EQ(255, First.a) << Type;
        EXPECT_TRUE(art_render_test::PixelsAre(*Bitmap, [&](int, int) { return First; })) << Type;
    }
    Scene.Fade->SetFadeType(FadeTypeCircular);
    EXPECT_EQ(PixelText(agg::rgba8(0, 0, 255, 255)), PixelText(At(*Scene.Draw(), 5, 5)));
}

// With dx = 0 the axis points straight down for dy > 0 and straight up otherwise.
TEST(ArtGradientDraw, AVerticalAxisPointsWhereTheSecondPointLies)
{
    fade_scene Scene(64, 64);
    Scene.SetPoints(point2d(32.5, 48.5), point2d(32.5, 16.5), Red, Blue);
    ownership_pointer<art_bitmap> Up = Scene.Draw();
    EXPECT_EQ(PixelText(Entry(0)), PixelText(At(*Up, 32, 48)));
    EXPECT_EQ(PixelText(Entry(0)), PixelText(At(*Up, 3, 60)));
    EXPECT_EQ(PixelText(Entry(64)), PixelText(At(*Up, 20, 47)));
    EXPECT_EQ(PixelText(Entry(1024)), PixelText(At(*Up, 60, 32)));
    EXPECT_EQ(PixelText(Entry(2047)), PixelText(At(*Up, 32, 16)));
    EXPECT_EQ(PixelText(Entry(2047)), PixelText(At(*Up, 0, 0)));
    Scene.SetPoints(point2d(32.5, 16.5), point2d(32.5, 48.5), Red, Blue);
    ownership_pointer<art_bitmap> Down = Scene.Draw();
    EXPECT_EQ(PixelText(Entry(0)), PixelText(At(*Down, 32, 16)));
    EXPECT_EQ(PixelText(Entry(64)), PixelText(At(*Down, 20, 17)));
    EXPECT_EQ(PixelText(Entry(2047)), PixelText(At(*Down, 32, 63)));
}

TEST(ArtGradientDraw, TwoRepetitionsShowTheTableTwiceAndHoldTheEndColoursOutside)
{
    fade_scene Scene(128, 8);
    Scene.SetPoints(point2d(32.5, 4), point2d(64.5, 4), Red, Blue);
    Scene.Fade->SetReps(2);
    ownership_pointer<art_bitmap> Bitmap = Scene.Draw();
    // 128 units a pixel.
    EXPECT_EQ(PixelText(agg::rgba8(255, 0, 0, 255)), PixelText(At(*Bitmap, 0, 4)));
    EXPECT_EQ(PixelText(agg::rgba8(255, 0, 0, 255)), PixelText(At(*Bitmap, 31, 4)));
    EXPECT_EQ(PixelText(agg::rgba8(255, 0, 0, 255)), PixelText(At(*Bitmap, 32, 4)));
    EXPECT_EQ(PixelText(agg::rgba8(16, 0, 239, 255)), PixelText(At(*Bitmap, 47, 4)));
    EXPECT_EQ(PixelText(agg::rgba8(255, 0, 0, 255)), PixelText(At(*Bitmap, 48, 4)));
    EXPECT_EQ(PixelText(agg::rgba8(16, 0, 239, 255)), PixelText(At(*Bitmap, 63, 4)));
    EXPECT_EQ(PixelText(agg::rgba8(0, 0, 255, 255)), PixelText(At(*Bitmap, 64, 4)));
    EXPECT_EQ(PixelText(agg::rgba8(0, 0, 255, 255)), PixelText(At(*Bitmap, 127, 4)));
}

TEST(ArtGradientDraw, OneMirroredRepetitionRunsToTheMiddleAndBack)
{
    fade_scene Scene(128, 8);
    Scene.SetPoints(point2d(32.5, 4), point2d(64.5, 4), Red, Blue);
    Scene.Fade->SetMirror(true);
    ownership_pointer<art_bitmap> Bitmap = Scene.Draw();
    EXPECT_EQ(PixelText(agg::rgba8(255, 0, 0, 255)), PixelText(At(*Bitmap, 32, 4)));
    EXPECT_EQ(PixelText(agg::rgba8(16, 0, 239, 255)), PixelText(At(*Bitmap, 47, 4)));
    EXPECT_EQ(PixelText(agg::rgba8(0, 0, 255, 255)), PixelText(At(*Bitmap, 48, 4)));
    EXPECT_EQ(PixelText(agg::rgba8(16, 0, 239, 255)), PixelText(At(*Bitmap, 49, 4)));
    EXPECT_EQ(PixelText(agg::rgba8(239, 0, 16, 255)), PixelText(At(*Bitmap, 63, 4)));
    // Past the end the last position, one sixteenth short of the way back, folds to the start.
    EXPECT_EQ(PixelText(agg::rgba8(255, 0, 0, 255)), PixelText(At(*Bitmap, 64, 4)));
    EXPECT_EQ(PixelText(agg::rgba8(255, 0, 0, 255)), PixelText(At(*Bitmap, 20, 4)));
}

TEST(ArtGradientDraw, TranslucentEntriesBlendOverWhatTheLayerHas)
{
    fade_scene Scene(16, 4);
    Scene.SetPoints(point2d(0.5, 2), point2d(8.5, 2), agg::rgba(1, 1, 1, 0.5), agg::rgba(0, 0, 0, 0));
    ownership_pointer<art_bitmap> Bitmap(new art_bitmap(16, 4));
    Bitmap->Clear(agg::rgba8(0, 0, 200, 255));
    reference_pointer<bitmap_interface> Target(Bitmap.Get());
    Scene.Fade->Draw(Target, Target, agg::trans_affine(), reference_pointer<art_cache>());
    agg::rgba8 Below(0, 0, 200, 255);
    EXPECT_EQ(PixelText(art_render_test::Over(Below, agg::rgba8(127, 127, 127, 128), 255)),
              PixelText(At(*Bitmap, 0, 1)));
    EXPECT_EQ(PixelText(Below), PixelText(At(*Bitmap, 15, 1)));
}

TEST(ArtGradientDraw, AnUnknownFadeModeDrawsNothing)
{
    fade_scene Scene(16, 4);
    Scene.Fade->SetFadeMode(3);
    ownership_pointer<art_bitmap> Bitmap = Scene.Draw();
    EXPECT_TRUE(art_render_test::PixelsAre(*Bitmap, [](int, int) { return agg::rgba8(0, 0, 0, 0); }));
}

TEST(ArtGradientDraw, AnUnknownFadeTypeIsAnAssertion)
{
    fade_scene Scene(16, 4);
    Scene.Fade->SetFadeType(6);
    try {
        Scene.Draw();
        FAIL() << "no assertion";
    } catch (zel_error &Error) {
        EXPECT_NE(std::string::npos, ToStd(Error.GetMessage()).find("'false' is false"));
    }
}

TEST(ArtGradientDraw, AFlatMatrixCoversNoPixel)
{
    fade_scene Scene(16, 4);
    ownership_pointer<art_bitmap> Bitmap(new art_bitmap(16, 4));
    Bitmap->Clear(agg::rgba8(0, 0, 0, 0));
    reference_pointer<bitmap_interface> Target(Bitmap.Get());
    Scene.Fade->Draw(Target, Target, agg::trans_affine_scaling(0, 1), reference_pointer<art_cache>());
    EXPECT_TRUE(art_render_test::PixelsAre(*Bitmap, [](int, int) { return agg::rgba8(0, 0, 0, 0); }));
}

TEST(ArtGradientDraw, OnlyTheFirstTwoPointsAndColoursMakeTheGradient)
{
    fade_scene Scene(64, 4);
    Scene.SetPoints(point2d(0.5, 2), point2d(32.5, 2), Red, Blue);
    ownership_pointer<art_bitmap> Two = Scene.Draw();
    array<point2d> Points(Scene.Fade->GetFadePoints());
    array<agg::rgba> Colors(Scene.Fade->GetColors());
    Points.Add(point2d(0.1, 0.9));
    Colors.Add(agg::rgba(0, 1, 0, 1));
    Scene.Fade->SetPoints(Points, Colors);
    ownership_pointer<art_bitmap> Three = Scene.Draw();
    EXPECT_TRUE(art_render_test::SameBitmaps(*Two, *Three));
}
