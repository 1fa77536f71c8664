#include <gtest/gtest.h>

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_TRUETYPE_TABLES_H
#include FT_TRUETYPE_TAGS_H

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "art_engine/fonts/art_embedded_fonts.h"
#include "art_engine/fonts/art_font.h"
#include "art_engine/fonts/art_font_manager.h"
#include "art_engine/fonts/art_glyph.h"
#include "art_engine/fonts/art_glyph_drawing.h"
#include "art_engine/fonts/art_packed_path.h"
#include "art_engine/pixels/art_bitmap.h"
#include "rofa_linux_sal/art_freetype_font_face.h"
#include "rofa_linux_sal/freetype_font_source.h"
#include "tests/test_support.h"
#include "xbd/xbd.h"

namespace {

const std::string DejaVuFolder = "/usr/share/fonts/truetype/dejavu/";
const std::string LiberationFolder = "/usr/share/fonts/truetype/liberation2/";

// The font read straight through FreeType, unscaled: the reference every face is checked against.
class reference_font
{
public:
    explicit reference_font(const std::string &Path)
    {
        FT_Init_FreeType(&Library);
        FT_New_Face(Library, Path.c_str(), 0, &Face);
    }
    ~reference_font()
    {
        FT_Done_Face(Face);
        FT_Done_FreeType(Library);
    }

    bool IsOpen() const { return Face != nullptr; }

    // usWinAscent and usWinDescent, read from the bytes of the OS/2 table: big-endian words at
    // offsets 74 and 76.
    void GetWindowsMetrics(int &Ascent, int &Descent)
    {
        FT_ULong Length = 0;
        FT_Load_Sfnt_Table(Face, TTAG_OS2, 0, nullptr, &Length);
        std::vector<unsigned char> Table(Length);
        FT_Load_Sfnt_Table(Face, TTAG_OS2, 0, Table.data(), &Length);
        Ascent = Table.at(74) << 8 | Table.at(75);
        Descent = Table.at(76) << 8 | Table.at(77);
    }

    // A cell of ascent plus descent is 1000 units, and 1000 units are one em.
    double GetEmPerFontUnit()
    {
        int Ascent, Descent;
        GetWindowsMetrics(Ascent, Descent);
        return 1.0 / (Ascent + Descent);
    }

    FT_UInt GetGlyphIndex(uint32_t Code) { return FT_Get_Char_Index(Face, Code); }

    FT_GlyphSlot LoadGlyphIndex(FT_UInt GlyphIndex)
    {
        EXPECT_EQ(0, FT_Load_Glyph(Face, GlyphIndex, FT_LOAD_NO_SCALE));
        return Face->glyph;
    }

    FT_GlyphSlot LoadChar(uint32_t Code) { return LoadGlyphIndex(GetGlyphIndex(Code)); }

private:
    FT_Library Library = nullptr;
    FT_Face Face = nullptr;
};

struct expected_vertex
{
    unsigned Command;
    double X;
    double Y;
};

// The path commands of a quadratic outline in em units, by the TrueType rules: two off-curve points in
// a row have an on-curve point halfway between them, and a contour closes back to its start, which
// the close flag draws. y is flipped.
std::vector<expected_vertex> ExpectedPath(const FT_Outline &Outline, double EmPerFontUnit)
{
    std::vector<expected_vertex> Path;
    auto Add = [&](unsigned Command, double X, double Y) {
        Path.push_back({Command, X * EmPerFontUnit, -Y * EmPerFontUnit});
    };
    int First = 0;
    for (int Contour = 0; Contour < Outline.n_contours; Contour++) {
        const int Last = Outline.contours[Contour];
        auto IsOn = [&](int Index) { return (Outline.tags[Index] & 3) == FT_CURVE_TAG_ON; };
        auto X = [&](int Index) { return static_cast<double>(Outline.points[Index].x); };
        auto Y = [&](int Index) { return static_cast<double>(Outline.points[Index].y); };
        for (int Index = First; Index <= Last; Index++)
            EXPECT_NE(FT_CURVE_TAG_CUBIC, Outline.tags[Index] & 3) << "a cubic point in a quadratic font";
        double StartX, StartY;
        int From = First, To = Last;
        if (IsOn(First)) {
            StartX = X(First);
            StartY = Y(First);
            From = First + 1;
        } else if (IsOn(Last)) {
            StartX = X(Last);
            StartY = Y(Last);
            To = Last - 1;
        } else {
            StartX = (X(First) + X(Last)) / 2;
            StartY = (Y(First) + Y(Last)) / 2;
        }
        Add(agg::path_cmd_move_to, StartX, StartY);
        bool HasControl = false;
        double ControlX = 0, ControlY = 0;
        for (int Index = From; Index <= To; Index++) {
            if (IsOn(Index)) {
                if (HasControl) {
                    Add(agg::path_cmd_curve3, ControlX, ControlY);
                    Add(agg::path_cmd_curve3, X(Index), Y(Index));
                } else {
                    Add(agg::path_cmd_line_to, X(Index), Y(Index));
                }
                HasControl = false;
                continue;
            }
            if (HasControl) {
                Add(agg::path_cmd_curve3, ControlX, ControlY);
                Add(agg::path_cmd_curve3, (ControlX + X(Index)) / 2, (ControlY + Y(Index)) / 2);
            }
            HasControl = true;
            ControlX = X(Index);
            ControlY = Y(Index);
        }
        if (HasControl) {
            Add(agg::path_cmd_curve3, ControlX, ControlY);
            Add(agg::path_cmd_curve3, StartX, StartY);
        }
        Path.push_back({agg::path_cmd_end_poly | agg::path_flags_close, 0, 0});
        First = Last + 1;
    }
    return Path;
}

testing::AssertionResult PathIs(art_path &Path, const std::vector<expected_vertex> &Expected)
{
    if (Path.total_vertices() != Expected.size())
        return testing::AssertionFailure() << Path.total_vertices() << " vertices, want " << Expected.size();
    for (unsigned Index = 0; Index < Expected.size(); Index++) {
        double X, Y;
        const unsigned Command = Path.vertex(Index, &X, &Y);
        const expected_vertex &Want = Expected[Index];
        if (Command != Want.Command || std::abs(X - Want.X) > 1e-12 || std::abs(Y - Want.Y) > 1e-12)
            return testing::AssertionFailure() << "vertex " << Index << ": command " << Command << " (" << X << ", "
                                               << Y << "), want command " << Want.Command << " (" << Want.X << ", "
                                               << Want.Y << ")";
    }
    return testing::AssertionSuccess();
}

// The glyph's advance, black box, box origin and outline against the unscaled font times the scale.
testing::AssertionResult GlyphMatches(art_glyph &Glyph, reference_font &Reference, FT_UInt GlyphIndex)
{
    const double Scale = Reference.GetEmPerFontUnit();
    const FT_GlyphSlot Slot = Reference.LoadGlyphIndex(GlyphIndex);
    const FT_Outline &Outline = Slot->outline;
    if (std::abs(Glyph.GetXStep() - Slot->advance.x * Scale) > 1e-12)
        return testing::AssertionFailure() << "x_step " << Glyph.GetXStep() << ", want " << Slot->advance.x * Scale;
    if (Outline.n_points > 0) {
        long MinX = Outline.points[0].x, MaxX = MinX, MinY = Outline.points[0].y, MaxY = MinY;
        for (int Index = 1; Index < Outline.n_points; Index++) {
            MinX = std::min(MinX, Outline.points[Index].x);
            MaxX = std::max(MaxX, Outline.points[Index].x);
            MinY = std::min(MinY, Outline.points[Index].y);
            MaxY = std::max(MaxY, Outline.points[Index].y);
        }
        if (std::abs(Glyph.GetSize().X - (MaxX - MinX) * Scale) > 1e-12 ||
            std::abs(Glyph.GetSize().Y - (MaxY - MinY) * Scale) > 1e-12)
            return testing::AssertionFailure() << "size (" << Glyph.GetSize().X << ", " << Glyph.GetSize().Y
                                               << "), want (" << (MaxX - MinX) * Scale << ", "
                                               << (MaxY - MinY) * Scale << ")";
        const point2d &Origin = Glyph.GetOrigin();
        if (std::abs(Origin.X - MinX * Scale) > 1e-12 || std::abs(Origin.Y - MaxY * Scale) > 1e-12)
            return testing::AssertionFailure() << "origin (" << Glyph.GetOrigin().X << ", " << Glyph.GetOrigin().Y
                                               << "), want (" << MinX * Scale << ", " << MaxY * Scale << ")";
    }
    return PathIs(Glyph.GetPath(), ExpectedPath(Outline, Scale));
}

art_freetype_font_face *AsFreetypeFace(const reference_pointer<art_font_face> &Face)
{
    return dynamic_cast<art_freetype_font_face *>(Face.Get());
}

std::string FilePathOf(const reference_pointer<art_font_face> &Face)
{
    art_freetype_font_face *FreetypeFace = AsFreetypeFace(Face);
    return FreetypeFace == nullptr ? std::string("(not a FreeType face)") : ToStd(FreetypeFace->GetFilePath());
}

std::string FilePathOf(ownership_pointer<art_font_face> &Face)
{
    return FilePathOf(reference_pointer<art_font_face>(Face));
}

// The font manager is process-wide: each test that uses it starts without one and ends it.
class freetype_font_test : public testing::Test
{
protected:
    void SetUp() override { DestroyFontManager(); }
    void TearDown() override { DestroyFontManager(); }

    // The manager with the installed fonts.
    art_font_manager &GetInstalledFonts()
    {
        InstallFreetypeFontSource();
        return GetFontManager();
    }

    // The face of a manager's font by name and style; the name must be known.
    reference_pointer<art_font_face> FaceOf(const zel_string &Name, bool Bold, bool Italic)
    {
        reference_pointer<art_font> Font = GetFontManager().FindFont(Name);
        EXPECT_EQ(0, Font->GetName().CompareNoCase(Name)) << ToStd(Name) << " is not installed";
        return Font->GetFace(Bold, Italic);
    }
};

const art_font_source_style *FindStyle(array<art_font_source_style> &Styles, const char *Family, bool Bold,
                                       bool Italic)
{
    for (int Index = 0; Index < Styles.GetNumberOfElements(); Index++) {
        const art_font_source_style &Style = Styles[Index];
        if (Style.FamilyName == Family && Style.Italic == Italic && (Style.Weight > 500) == Bold)
            return &Styles[Index];
    }
    return nullptr;
}

} // namespace

TEST(freetype_font_source, lists_arial_with_the_styles_of_its_metric_compatible_family)
{
    freetype_font_source Source;
    array<art_font_source_style> Styles;
    Source.EnumerateStyles(Styles);
    const char *const Files[4] = {"LiberationSans-Regular.ttf", "LiberationSans-Bold.ttf", "LiberationSans-Italic.ttf",
                                  "LiberationSans-BoldItalic.ttf"};
    for (int StyleIndex = 0; StyleIndex < 4; StyleIndex++) {
        const art_font_source_style *Style = FindStyle(Styles, "Arial", StyleIndex & 1, StyleIndex & 2);
        ASSERT_NE(nullptr, Style) << "style " << StyleIndex;
        EXPECT_EQ(StyleIndex & 1 ? 700 : 400, Style->Weight);
        ownership_pointer<art_font_face> Face = Source.MakeFace(*Style);
        EXPECT_EQ(StyleIndex, Face->GetStyleIndex());
        EXPECT_EQ(LiberationFolder + Files[StyleIndex], FilePathOf(Face));
    }
}

TEST(freetype_font_source, lists_times_new_roman_and_courier_new_with_their_metric_compatible_families)
{
    freetype_font_source Source;
    array<art_font_source_style> Styles;
    Source.EnumerateStyles(Styles);
    const art_font_source_style *Times = FindStyle(Styles, "Times New Roman", false, false);
    const art_font_source_style *Courier = FindStyle(Styles, "Courier New", true, true);
    ASSERT_NE(nullptr, Times);
    ASSERT_NE(nullptr, Courier);
    ownership_pointer<art_font_face> TimesFace = Source.MakeFace(*Times);
    ownership_pointer<art_font_face> CourierFace = Source.MakeFace(*Courier);
    EXPECT_EQ(LiberationFolder + "LiberationSerif-Regular.ttf", FilePathOf(TimesFace));
    EXPECT_EQ(LiberationFolder + "LiberationMono-BoldItalic.ttf", FilePathOf(CourierFace));
}

TEST(freetype_font_source, gives_a_well_known_family_only_a_metric_compatible_substitute)
{
    // fontconfig falls back from Verdana to DejaVu Sans, but only as a similar design with other
    // widths, which would move every line break.
    freetype_font_source Source;
    array<art_font_source_style> Styles;
    Source.EnumerateStyles(Styles);
    EXPECT_EQ(nullptr, FindStyle(Styles, "Verdana", false, false));
}

TEST(freetype_font_source, files_a_family_under_its_plain_width_and_nominal_weight)
{
    // DejaVu Sans Condensed and DejaVu Sans ExtraLight both carry the family name DejaVu Sans too.
    freetype_font_source Source;
    array<art_font_source_style> Styles;
    Source.EnumerateStyles(Styles);
    const art_font_source_style *Plain = FindStyle(Styles, "DejaVu Sans", false, false);
    const art_font_source_style *Condensed = FindStyle(Styles, "DejaVu Sans Condensed", false, false);
    const art_font_source_style *Bold = FindStyle(Styles, "DejaVu Sans", true, false);
    ASSERT_NE(nullptr, Plain);
    ASSERT_NE(nullptr, Condensed);
    ASSERT_NE(nullptr, Bold);
    ownership_pointer<art_font_face> PlainFace = Source.MakeFace(*Plain);
    ownership_pointer<art_font_face> CondensedFace = Source.MakeFace(*Condensed);
    ownership_pointer<art_font_face> BoldFace = Source.MakeFace(*Bold);
    EXPECT_EQ(400, Plain->Weight);
    EXPECT_EQ(DejaVuFolder + "DejaVuSans.ttf", FilePathOf(PlainFace));
    EXPECT_EQ(DejaVuFolder + "DejaVuSansCondensed.ttf", FilePathOf(CondensedFace));
    EXPECT_EQ(DejaVuFolder + "DejaVuSans-Bold.ttf", FilePathOf(BoldFace));
}

TEST(freetype_font_source, lists_each_family_and_style_once)
{
    freetype_font_source Source;
    array<art_font_source_style> Styles;
    Source.EnumerateStyles(Styles);
    ASSERT_GT(Styles.GetNumberOfElements(), 0);
    for (int Index = 0; Index < Styles.GetNumberOfElements(); Index++) {
        for (int Other = Index + 1; Other < Styles.GetNumberOfElements(); Other++) {
            const bool SameStyle =
                art_font_face::GetStyleIndexOfWeight(Styles[Index].Weight, Styles[Index].Italic) ==
                art_font_face::GetStyleIndexOfWeight(Styles[Other].Weight, Styles[Other].Italic);
            EXPECT_FALSE(SameStyle && Styles[Index].FamilyName.CompareNoCase(Styles[Other].FamilyName) == 0)
                << ToStd(Styles[Index].FamilyName);
        }
    }
}

TEST(freetype_font_source, asks_fontconfig_for_the_fonts_once_per_process)
{
    array<art_font_source_style> First, Second;
    {
        freetype_font_source Source;
        Source.EnumerateStyles(First);
        Source.EnumerateStyles(First);
    }
    freetype_font_source OtherSource;
    OtherSource.EnumerateStyles(Second);
    EXPECT_EQ(1, freetype_font_source::GetNumberOfFontListings());
    ASSERT_EQ(2 * Second.GetNumberOfElements(), First.GetNumberOfElements());
    for (int Index = 0; Index < Second.GetNumberOfElements(); Index++)
        EXPECT_EQ(ToStd(Second[Index].FamilyName), ToStd(First[Index].FamilyName));
}

TEST(freetype_font_source, fails_to_make_a_face_for_a_family_it_did_not_list)
{
    freetype_font_source Source;
    art_font_source_style Style;
    Style.FamilyName = "No Such Family";
    EXPECT_NE(std::string::npos, ZEL_ERROR_MESSAGE(Source.MakeFace(Style)).find("'Slot>=0' is false"));
}

TEST_F(freetype_font_test, arial_is_the_metric_compatible_family_not_the_stub)
{
    GetInstalledFonts();
    reference_pointer<art_font_face> Face = FaceOf("Arial", false, false);
    ASSERT_TRUE(Face.IsSet());
    EXPECT_FALSE(Face->IsIncomplete());
    EXPECT_EQ("Arial", ToStd(Face->GetName()));
    EXPECT_EQ(LiberationFolder + "LiberationSans-Regular.ttf", FilePathOf(Face));
    reference_font Reference(LiberationFolder + "LiberationSans-Regular.ttf");
    ASSERT_TRUE(Reference.IsOpen());
    EXPECT_TRUE(GlyphMatches(*Face->GetGlyph('A'), Reference, Reference.GetGlyphIndex('A')));
    EXPECT_TRUE(GetFontManager().GetArial()->GetFace(false, false).Get() == Face.Get());
}

TEST_F(freetype_font_test, a_lookup_in_capitals_finds_the_font)
{
    GetInstalledFonts();
    EXPECT_TRUE(GetFontManager().FindFont("ARIAL").Get() == GetFontManager().GetArial().Get());
    EXPECT_EQ("Arial", ToStd(GetFontManager().FindFont("ARIAL")->GetName()));
    EXPECT_EQ("DejaVu Sans", ToStd(GetFontManager().FindFont("DEJAVU SANS")->GetName()));
}

TEST_F(freetype_font_test, an_unknown_family_gives_times_new_roman)
{
    GetInstalledFonts();
    reference_pointer<art_font> Font = GetFontManager().FindFont("No Such Family");
    EXPECT_TRUE(Font.Get() == GetFontManager().GetTimesNewRoman().Get());
    EXPECT_EQ(LiberationFolder + "LiberationSerif-Regular.ttf", FilePathOf(Font->GetFace(false, false)));
    // Asking for it by the name a document gives makes an empty font with no face at all.
    EXPECT_FALSE(GetFontManager().GetFont("No Such Family")->GetFace(false, false).IsSet());
}

TEST_F(freetype_font_test, bold_italic_of_a_family_with_regular_and_italic_is_the_italic)
{
    GetInstalledFonts();
    array<art_font_source_style> Styles;
    freetype_font_source Source;
    Source.EnumerateStyles(Styles);
    const art_font_source_style *Regular = FindStyle(Styles, "DejaVu Serif", false, false);
    const art_font_source_style *Italic = FindStyle(Styles, "DejaVu Serif", false, true);
    ASSERT_NE(nullptr, Regular);
    ASSERT_NE(nullptr, Italic);
    reference_pointer<art_font> Font = GetFontManager().GetFont("Serif Without Bold");
    Font->AddFace(Source.MakeFace(*Regular));
    Font->AddFace(Source.MakeFace(*Italic));
    EXPECT_EQ(DejaVuFolder + "DejaVuSerif-Italic.ttf", FilePathOf(Font->GetFace(true, true)));
}

TEST_F(freetype_font_test, bold_italic_of_a_family_with_only_a_regular_is_the_regular)
{
    // DejaVu Sans ExtraLight is the one style of the family DejaVu Sans Light.
    GetInstalledFonts();
    EXPECT_EQ(DejaVuFolder + "DejaVuSans-ExtraLight.ttf", FilePathOf(FaceOf("DejaVu Sans Light", true, true)));
}

TEST_F(freetype_font_test, faces_are_realised_only_when_used)
{
    art_font_manager &Manager = GetInstalledFonts();
    int FreetypeFaces = 0;
    for (int FontIndex = 0; FontIndex < Manager.GetNumberOfFonts(); FontIndex++) {
        for (int StyleIndex = 0; StyleIndex < 4; StyleIndex++) {
            art_freetype_font_face *Face = AsFreetypeFace(Manager.GetFontAt(FontIndex)->GetFaceAt(StyleIndex));
            if (Face == nullptr)
                continue;
            FreetypeFaces++;
            EXPECT_FALSE(Face->IsRealised()) << ToStd(Manager.GetFontAt(FontIndex)->GetName());
        }
    }
    EXPECT_GT(FreetypeFaces, 20);
    reference_pointer<art_font_face> Face = FaceOf("DejaVu Sans", false, false);
    Face->GetGlyph('a');
    EXPECT_TRUE(AsFreetypeFace(Face)->IsRealised());
    EXPECT_FALSE(AsFreetypeFace(FaceOf("DejaVu Sans", true, false))->IsRealised());
}

TEST(art_freetype_font_face, glyphs_are_the_unscaled_outlines_times_the_cell_scale)
{
    for (const char *File : {"DejaVuSans.ttf", "DejaVuSerif-BoldItalic.ttf"}) {
        const std::string Path = DejaVuFolder + File;
        art_freetype_font_face Face(0, Path.c_str(), 0);
        reference_font Reference(Path);
        ASSERT_TRUE(Reference.IsOpen());
        for (int Code = 33; Code < 127; Code++) {
            ownership_pointer<art_glyph> Glyph = Face.LoadGlyph(Code);
            ASSERT_TRUE(Glyph.IsSet()) << File << " " << Code;
            EXPECT_EQ(Code, Glyph->GetChar());
            EXPECT_TRUE(GlyphMatches(*Glyph, Reference, Reference.GetGlyphIndex(Code))) << File << " " << Code;
        }
    }
    const std::string Path = LiberationFolder + "LiberationSerif-Italic.ttf";
    art_freetype_font_face Face(2, Path.c_str(), 0);
    reference_font Reference(Path);
    for (int Code : {'g', 'Q', '&', '@'})
        EXPECT_TRUE(GlyphMatches(*Face.LoadGlyph(Code), Reference, Reference.GetGlyphIndex(Code))) << Code;
}

TEST(art_freetype_font_face, ascender_and_descender_are_the_windows_metrics_in_a_cell_of_1000)
{
    const std::string Path = LiberationFolder + "LiberationSans-Regular.ttf";
    art_freetype_font_face Face(0, Path.c_str(), 0);
    reference_font Reference(Path);
    int Ascent, Descent;
    Reference.GetWindowsMetrics(Ascent, Descent);
    // Liberation Sans keeps Arial's cell: 1854 above the baseline and 434 below, of 2048 to the em.
    EXPECT_EQ(1854, Ascent);
    EXPECT_EQ(434, Descent);
    EXPECT_NEAR(1854.0 / 2288, Face.GetAscender(), 1e-15);
    EXPECT_NEAR(434.0 / 2288, Face.GetDescender(), 1e-15);
    EXPECT_NEAR(1.0 / 2288, Face.GetFontUnitsToEm(), 1e-18);
}

// A bare CFF font of one glyph, made by hand: a font with cubic outlines and no Windows metrics.
// FontBBox (0, -50, 200, 150) gives FreeType its ascender 150 and descender -50; the glyph, with the
// default advance 200, is the line (50, 0) to (150, 0) and the cubic through (150, 50) and
// (125, 125) to (50, 125).
std::string WriteCubicFont()
{
    const unsigned char Font[] = {
        1, 0, 4, 1,                                    // header
        0, 1, 1, 1, 2, 'T',                            // name index
        0, 1, 1, 1, 25,                                // top dictionary index, 24 bytes:
        139, 89, 247, 92, 247, 42, 5,                  //   FontBBox 0 -50 200 150
        29, 0, 0, 0, 43, 17,                           //   CharStrings at 43
        29, 0, 0, 0, 3, 29, 0, 0, 0, 62, 18,           //   Private, 3 bytes at 62
        0, 0,                                          // string index
        0, 0,                                          // global subroutine index
        0, 1, 1, 1, 15,                                // charstring index, 14 bytes:
        189, 139, 21,                                  //   50 0 rmoveto
        239, 139, 5,                                   //   100 0 rlineto
        139, 189, 114, 214, 64, 139, 8,                //   0 50 -25 75 -75 0 rrcurveto
        14,                                            //   endchar
        247, 92, 20,                                   // private dictionary: defaultWidthX 200
    };
    const std::string Path = testing::TempDir() + "cubic_outline_font.cff";
    FILE *File = std::fopen(Path.c_str(), "wb");
    EXPECT_NE(nullptr, File);
    std::fwrite(Font, 1, sizeof(Font), File);
    std::fclose(File);
    return Path;
}

TEST(art_freetype_font_face, a_font_without_windows_metrics_takes_its_own_ascender_and_descender)
{
    const std::string Path = WriteCubicFont();
    art_freetype_font_face Face(0, Path.c_str(), 0);
    EXPECT_DOUBLE_EQ(150.0 / 200, Face.GetAscender());
    EXPECT_DOUBLE_EQ(50.0 / 200, Face.GetDescender());
    std::remove(Path.c_str());
}

TEST(art_freetype_font_face, cubic_outlines_are_kept_as_cubic_vertices)
{
    const std::string Path = WriteCubicFont();
    art_freetype_font_face Face(0, Path.c_str(), 0);
    // The font maps no character, so every one gets glyph 0.
    ownership_pointer<art_glyph> Glyph = Face.LoadGlyph('a');
    std::remove(Path.c_str());
    ASSERT_TRUE(Glyph.IsSet());
    EXPECT_DOUBLE_EQ(1.0, Glyph->GetXStep());
    EXPECT_DOUBLE_EQ(0.5, Glyph->GetSize().X);
    EXPECT_DOUBLE_EQ(0.625, Glyph->GetSize().Y);
    EXPECT_DOUBLE_EQ(0.25, Glyph->GetOrigin().X);
    EXPECT_DOUBLE_EQ(0.625, Glyph->GetOrigin().Y);
    EXPECT_TRUE(PathIs(Glyph->GetPath(), {{1, 0.25, 0},
                                          {2, 0.75, 0},
                                          {4, 0.75, -0.25},
                                          {4, 0.625, -0.625},
                                          {4, 0.25, -0.625},
                                          {79, 0, 0}}));
}

TEST(art_freetype_font_face, a_space_has_an_advance_and_no_contours)
{
    const std::string Path = DejaVuFolder + "DejaVuSans.ttf";
    art_freetype_font_face Face(0, Path.c_str(), 0);
    reference_font Reference(Path);
    ownership_pointer<art_glyph> Space = Face.LoadGlyph(' ');
    ASSERT_TRUE(Space.IsSet());
    EXPECT_EQ(0u, Space->GetPath().total_vertices());
    EXPECT_NEAR(Reference.LoadChar(' ')->advance.x * Reference.GetEmPerFontUnit(), Space->GetXStep(), 1e-12);
    EXPECT_GT(Space->GetXStep(), 0.2);
    EXPECT_EQ(0, EncodePackedPath(Space->GetPath()).GetLength());
}

TEST(art_freetype_font_face, a_character_above_127_keeps_its_byte_value_as_its_code)
{
    const std::string Path = DejaVuFolder + "DejaVuSans.ttf";
    art_freetype_font_face Face(0, Path.c_str(), 0);
    reference_font Reference(Path);
    // 0xE9 is e acute, read as the Unicode character of the same number.
    ownership_pointer<art_glyph> Glyph = Face.LoadGlyph(0xE9);
    ASSERT_TRUE(Glyph.IsSet());
    EXPECT_EQ(0xE9, Glyph->GetChar());
    ASSERT_NE(0u, Reference.GetGlyphIndex(0xE9));
    EXPECT_TRUE(GlyphMatches(*Glyph, Reference, Reference.GetGlyphIndex(0xE9)));
}

TEST(art_freetype_font_face, a_character_the_font_lacks_gets_the_fonts_missing_glyph_shape)
{
    const std::string Path = DejaVuFolder + "DejaVuSans.ttf";
    art_freetype_font_face Face(0, Path.c_str(), 0);
    reference_font Reference(Path);
    // 0x80 is a control character, which no glyph of the font maps.
    ASSERT_EQ(0u, Reference.GetGlyphIndex(0x80));
    ownership_pointer<art_glyph> Glyph = Face.LoadGlyph(0x80);
    ASSERT_TRUE(Glyph.IsSet());
    EXPECT_EQ(0x80, Glyph->GetChar());
    EXPECT_GT(Glyph->GetPath().total_vertices(), 0u);
    EXPECT_TRUE(GlyphMatches(*Glyph, Reference, 0));
    EXPECT_TRUE(Face.HasGlyph(0x80));
    EXPECT_FALSE(Face.IsIncomplete());
    EXPECT_EQ(97, Face.GetDefaultGlyph());
}

TEST(art_freetype_font_face, nothing_is_opened_before_the_first_use)
{
    art_freetype_font_face Face(1, "/no/such/folder/font.ttf", 0);
    EXPECT_FALSE(Face.IsRealised());
    EXPECT_EQ(1, Face.GetStyleIndex());
    EXPECT_EQ("/no/such/folder/font.ttf", ToStd(Face.GetFilePath()));
}

TEST(art_freetype_font_face, a_font_that_cannot_be_opened_fails_the_font_assertion)
{
    art_freetype_font_face Face(0, "/no/such/folder/font.ttf", 0);
    const std::string Message = ZEL_ERROR_MESSAGE(Face.GetAscender());
    EXPECT_NE(std::string::npos, Message.find("'Font' is false")) << Message;
    EXPECT_NE(std::string::npos, Message.find("/no/such/folder/font.ttf")) << Message;
    EXPECT_FALSE(Face.IsRealised());
    EXPECT_NE(std::string::npos, ZEL_ERROR_MESSAGE(Face.LoadGlyph('a')).find("'Font' is false"));
}

TEST_F(freetype_font_test, a_drawn_string_covers_the_pixels_of_its_glyphs)
{
    // l, - and I of Liberation Sans are each one rectangle, so which pixels they cover is plain.
    GetInstalledFonts();
    reference_pointer<art_font_face> Face = FaceOf("Arial", false, false);
    reference_font Reference(LiberationFolder + "LiberationSans-Regular.ttf");
    const double Scale = Reference.GetEmPerFontUnit();
    const double FontSize = 228.8;
    const double PenX = 5, BaseLine = 160;
    struct box
    {
        double Left, Top, Right, Bottom;
    };
    std::vector<box> Boxes;
    double Pen = PenX;
    for (char Character : std::string("l-I")) {
        const FT_GlyphSlot Slot = Reference.LoadChar(static_cast<unsigned char>(Character));
        const FT_Outline &Outline = Slot->outline;
        ASSERT_EQ(1, Outline.n_contours);
        ASSERT_EQ(4, Outline.n_points);
        box Box = {1e9, 1e9, -1e9, -1e9};
        for (int Index = 0; Index < 4; Index++) {
            ASSERT_EQ(FT_CURVE_TAG_ON, Outline.tags[Index] & 3);
            const double X = Pen + Outline.points[Index].x * Scale * FontSize;
            const double Y = BaseLine - Outline.points[Index].y * Scale * FontSize;
            Box = {std::min(Box.Left, X), std::min(Box.Top, Y), std::max(Box.Right, X), std::max(Box.Bottom, Y)};
        }
        Boxes.push_back(Box);
        Pen += Slot->advance.x * Scale * FontSize;
    }
    ownership_pointer<art_bitmap> Bitmap(new art_bitmap(200, 180));
    Bitmap->Clear(agg::rgba8(0, 0, 0, 0));
    const point2d End = DrawGlyphString(*Bitmap, *Face, "l-I", agg::rgba8(0, 0, 255, 255), agg::trans_affine(),
                                        FontSize, point2d(PenX, BaseLine));
    EXPECT_NEAR(Pen, End.X, 1e-9);
    int Inside = 0, Outside = 0;
    for (int Y = 0; Y < 180; Y++) {
        for (int X = 0; X < 200; X++) {
            bool IsInside = false, Touches = false;
            for (const box &Box : Boxes) {
                IsInside |= X >= Box.Left && X + 1 <= Box.Right && Y >= Box.Top && Y + 1 <= Box.Bottom;
                Touches |= X + 1 > Box.Left && X < Box.Right && Y + 1 > Box.Top && Y < Box.Bottom;
            }
            const agg::rgba8 Pixel = Bitmap->GetPixelRow(Y)[X];
            if (IsInside) {
                Inside++;
                ASSERT_EQ(255, Pixel.a) << X << ", " << Y;
                ASSERT_EQ(255, Pixel.b) << X << ", " << Y;
            } else if (!Touches) {
                Outside++;
                ASSERT_EQ(0, Pixel.a) << X << ", " << Y;
            }
        }
    }
    EXPECT_GT(Inside, 3000);
    EXPECT_GT(Outside, 15000);
}

TEST_F(freetype_font_test, an_installed_font_is_saved_with_its_glyphs_and_they_are_ignored_on_reload)
{
    GetInstalledFonts();
    reference_pointer<art_font_face> Face = FaceOf("DejaVu Sans", false, false);
    ownership_pointer<xbd_file> File(new xbd_file);
    {
        used_font_glyphs Used;
        Used.AddText(Face, "Hi");
        Used.Write(*File->GetRootTag());
    }
    reference_pointer<xbd_tag> Embedded = File->GetRootTag()->GetChildTag("embedded_fonts");
    ASSERT_TRUE(Embedded.IsSet());
    reference_pointer<xbd_tag> Font = Embedded->GetChildTag("font");
    ASSERT_TRUE(Font.IsSet());
    EXPECT_EQ("DejaVu Sans", ToStd(Font->GetAttribute("name", "")));
    array<ownership_pointer<xbd_tag>> &Glyphs = Font->GetChildren();
    ASSERT_EQ(2, Glyphs.GetNumberOfElements());
    const char Characters[2] = {'H', 'i'};
    for (int Index = 0; Index < 2; Index++) {
        EXPECT_EQ(std::to_string(Characters[Index]), ToStd(Glyphs[Index]->GetAttribute("char", "")));
        const zel_string Packed = Glyphs[Index]->GetAttribute("path", "");
        EXPECT_GT(Packed.GetLength(), 0);
        EXPECT_TRUE(Packed == EncodePackedPath(Face->GetGlyph(Characters[Index])->GetPath()));
    }
    // A changed outline in the document shows whether the reload took the document's glyphs.
    Glyphs[0]->SetAttribute("path", zel_string());
    ReadEmbeddedFonts(*Embedded);
    reference_pointer<art_font_face> Reloaded = FaceOf("DejaVu Sans", false, false);
    EXPECT_TRUE(Reloaded.Get() == Face.Get());
    EXPECT_FALSE(Reloaded->IsIncomplete());
    EXPECT_GT(Reloaded->GetGlyph('H')->GetPath().total_vertices(), 0u);
}
