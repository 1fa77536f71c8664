#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "art_engine/pixels/art_alpha_runs.h"
#include "art_engine/pixels/art_bitmap.h"
#include "tests/art_engine/pixels/art_pixel_test_support.h"
#include "tests/test_support.h"

using namespace art_pixel_test;

namespace {

struct run
{
    art_alpha_runs::run_kind Kind;
    int32_t Top;
    int32_t Rows;
    int32_t Start;
    int32_t Length;

    bool operator==(const run &Other) const
    {
        return Kind == Other.Kind && Top == Other.Top && Rows == Other.Rows && Start == Other.Start &&
               Length == Other.Length;
    }
};

std::ostream &operator<<(std::ostream &Stream, const run &Run)
{
    const char *Names[] = {"transparent", "opaque", "mixed"};
    return Stream << "{" << Names[Run.Kind] << " rows " << Run.Top << "+" << Run.Rows << " columns " << Run.Start
                  << "+" << Run.Length << "}";
}

std::vector<run> RunsIn(const art_alpha_runs &Runs, int32_t Top, int32_t Bottom, int32_t Start, int32_t End)
{
    std::vector<run> Found;
    Runs.ForEachRun(Top, Bottom, Start, End,
                    [&Found](art_alpha_runs::run_kind Kind, int32_t RunTop, int32_t Rows, int32_t RunStart,
                             int32_t Length) { Found.push_back(run{Kind, RunTop, Rows, RunStart, Length}); });
    return Found;
}

void SetAlphas(art_bitmap &Picture, int Y, const std::vector<int> &Alphas)
{
    for (size_t X = 0; X < Alphas.size(); X++)
        Picture.GetPixelRow(Y)[X] = Pixel(7, 8, 9, unsigned(Alphas[X]));
}

// A row of 20: Transparent pixels, then Opaque ones, each given by a count, then partial ones.
std::vector<int> Row(int Transparent, int Opaque, int Partial)
{
    std::vector<int> Alphas(size_t(Transparent), 0);
    Alphas.insert(Alphas.end(), size_t(Opaque), 255);
    Alphas.insert(Alphas.end(), size_t(Partial), 99);
    return Alphas;
}

// Rows 0 and 1 alike, then a row whose transparent start is too short to stand alone, then two
// rows with a short opaque stretch inside partial pixels.
void FillHandMade(art_bitmap &Picture)
{
    SetAlphas(Picture, 0, Row(10, 10, 0));
    SetAlphas(Picture, 1, Row(10, 10, 0));
    std::vector<int> Third = Row(3, 0, 2);
    std::vector<int> Rest = Row(0, 15, 0);
    Third.insert(Third.end(), Rest.begin(), Rest.end());
    SetAlphas(Picture, 2, Third);
    std::vector<int> Fourth = Row(0, 0, 8);
    std::vector<int> Inside = Row(0, 3, 9);
    Fourth.insert(Fourth.end(), Inside.begin(), Inside.end());
    SetAlphas(Picture, 3, Fourth);
    SetAlphas(Picture, 4, Fourth);
}

} // namespace

TEST(ArtAlphaRuns, RowsWithTheSameRunsFormOneBand)
{
    art_bitmap Picture(20, 5);
    FillHandMade(Picture);
    art_alpha_runs Runs(Picture);
    EXPECT_EQ(int_point2d(20, 5), Runs.GetSize());
    std::vector<run> Want = {{art_alpha_runs::Transparent, 0, 2, 0, 10},
                             {art_alpha_runs::Opaque, 0, 2, 10, 10},
                             {art_alpha_runs::Mixed, 2, 1, 0, 5},
                             {art_alpha_runs::Opaque, 2, 1, 5, 15},
                             {art_alpha_runs::Mixed, 3, 2, 0, 20}};
    EXPECT_EQ(Want, RunsIn(Runs, 0, 5, 0, 20));
}

TEST(ArtAlphaRuns, RunsAreCutToTheRectangleAsked)
{
    art_bitmap Picture(20, 5);
    FillHandMade(Picture);
    art_alpha_runs Runs(Picture);
    std::vector<run> Want = {{art_alpha_runs::Transparent, 1, 1, 8, 2},
                             {art_alpha_runs::Opaque, 1, 1, 10, 4},
                             {art_alpha_runs::Opaque, 2, 1, 8, 6},
                             {art_alpha_runs::Mixed, 3, 1, 8, 6}};
    EXPECT_EQ(Want, RunsIn(Runs, 1, 4, 8, 14));
    // A rectangle that ends inside the first run of a band.
    std::vector<run> First = {{art_alpha_runs::Transparent, 0, 2, 0, 1}, {art_alpha_runs::Mixed, 2, 1, 0, 1}};
    EXPECT_EQ(First, RunsIn(Runs, 0, 3, 0, 1));
}

TEST(ArtAlphaRuns, StretchesShorterThanTheShortestRunCountAsMixed)
{
    art_bitmap Picture(2 * art_alpha_runs::ShortestRun, 1);
    std::vector<int> Alphas = Row(art_alpha_runs::ShortestRun - 1, art_alpha_runs::ShortestRun, 1);
    SetAlphas(Picture, 0, Alphas);
    art_alpha_runs Runs(Picture);
    std::vector<run> Want = {{art_alpha_runs::Mixed, 0, 1, 0, art_alpha_runs::ShortestRun - 1},
                             {art_alpha_runs::Opaque, 0, 1, art_alpha_runs::ShortestRun - 1,
                              art_alpha_runs::ShortestRun},
                             {art_alpha_runs::Mixed, 0, 1, 2 * art_alpha_runs::ShortestRun - 1, 1}};
    EXPECT_EQ(Want, RunsIn(Runs, 0, 1, 0, 2 * art_alpha_runs::ShortestRun));
}

TEST(ArtAlphaRuns, PictureWithoutPixelsHasNoRuns)
{
    art_alpha_runs None;
    EXPECT_EQ(int_point2d(0, 0), None.GetSize());
    art_bitmap Empty(0, 0);
    art_alpha_runs OfEmpty(Empty);
    EXPECT_EQ(int_point2d(0, 0), OfEmpty.GetSize());
    art_bitmap NoColumns(0, 3);
    art_alpha_runs OfNoColumns(NoColumns);
    EXPECT_EQ(int_point2d(0, 3), OfNoColumns.GetSize());
    EXPECT_TRUE(RunsIn(OfNoColumns, 0, 3, 0, 0).empty());
}

TEST(ArtAlphaRuns, ViewIsMeasuredOnItsOwnPixelsOnly)
{
    art_bitmap Parent(30, 6);
    Parent.Clear(Pixel(0, 0, 0, 0));
    art_bitmap View(&Parent, int_rectangle(int_point2d(5, 2), int_point2d(20, 3)));
    View.Clear(Pixel(9, 9, 9, 255));
    art_alpha_runs Runs(View);
    std::vector<run> Want = {{art_alpha_runs::Opaque, 0, 3, 0, 20}};
    EXPECT_EQ(Want, RunsIn(Runs, 0, 3, 0, 20));
}

namespace {

// What a pixel's run must say, found afresh: the kind of its alpha when the stretch of like pixels
// around it in its row is long enough to stand alone, else mixed.
art_alpha_runs::run_kind ExpectedKind(art_bitmap &Picture, int X, int Y)
{
    auto Class = [&Picture, Y](int At) {
        uint8_t Alpha = Picture.GetPixelRow(Y)[At].a;
        return Alpha == 0 ? art_alpha_runs::Transparent : Alpha == 255 ? art_alpha_runs::Opaque : art_alpha_runs::Mixed;
    };
    art_alpha_runs::run_kind Kind = Class(X);
    int Low = X;
    while (Low > 0 && Class(Low - 1) == Kind)
        Low--;
    int High = X + 1;
    while (High < Picture.GetSize().X && Class(High) == Kind)
        High++;
    return High - Low >= art_alpha_runs::ShortestRun ? Kind : art_alpha_runs::Mixed;
}

} // namespace

TEST(ArtAlphaRuns, RunsOfRandomPicturesCoverEveryPixelOnceWithItsKind)
{
    // Bands of rows that share their alpha, with colours of their own; stretches of 1 to 20 pixels
    // of one kind. Every pixel of any rectangle is in exactly one run, of the kind it should have.
    std::mt19937 Random(4242);
    for (int Round = 0; Round < 300; Round++) {
        int_point2d Size(1 + int(Random() % 60), 1 + int(Random() % 12));
        art_bitmap Picture(Size.X, Size.Y);
        std::vector<uint8_t> Alphas;
        for (int Y = 0; Y < Size.Y; Y++) {
            if (Y == 0 || Random() % 3 == 0) {
                Alphas.clear();
                while (int(Alphas.size()) < Size.X) {
                    unsigned Kind = Random() % 3;
                    for (int Run = 1 + int(Random() % 20); Run > 0 && int(Alphas.size()) < Size.X; Run--)
                        Alphas.push_back(Kind == 0 ? 0 : Kind == 1 ? 255 : RandomEdgyByte(Random));
                }
            }
            for (int X = 0; X < Size.X; X++)
                Picture.GetPixelRow(Y)[X] = Pixel(Random() & 255, Random() & 255, Random() & 255, Alphas[size_t(X)]);
        }
        art_alpha_runs Runs(Picture);
        int Top = int(Random() % unsigned(Size.Y));
        int Bottom = Top + 1 + int(Random() % unsigned(Size.Y - Top));
        int Start = int(Random() % unsigned(Size.X));
        int End = Start + 1 + int(Random() % unsigned(Size.X - Start));
        std::vector<int> Covered(size_t(Size.X * Size.Y), 0);
        for (const run &Run : RunsIn(Runs, Top, Bottom, Start, End)) {
            ASSERT_GT(Run.Rows, 0) << Run;
            ASSERT_GT(Run.Length, 0) << Run;
            for (int Y = Run.Top; Y < Run.Top + Run.Rows; Y++)
                for (int X = Run.Start; X < Run.Start + Run.Length; X++) {
                    ASSERT_TRUE(Y >= Top && Y < Bottom && X >= Start && X < End) << Run << " round " << Round;
                    Covered[size_t(Y * Size.X + X)]++;
                    ASSERT_EQ(ExpectedKind(Picture, X, Y), Run.Kind) << Run << " at " << X << ", " << Y << " round "
                                                                     << Round;
                }
        }
        for (int Y = 0; Y < Size.Y; Y++)
            for (int X = 0; X < Size.X; X++) {
                bool Inside = Y >= Top && Y < Bottom && X >= Start && X < End;
                ASSERT_EQ(Inside ? 1 : 0, Covered[size_t(Y * Size.X + X)]) << X << ", " << Y << " round " << Round;
            }
    }
}
