#include <gtest/gtest.h>

#include <string>

#include "art_engine/fonts/art_font.h"
#include "art_engine/fonts/art_font_manager.h"
#include "art_engine/fonts/art_font_source.h"
#include "art_engine/fonts/art_glyph_drawing.h"
#include "art_engine/fonts/art_stub_font_face.h"
#include "art_engine/fonts/art_xml_partial_font_face.h"
#include "art_engine/pixels/art_bitmap.h"
#include "tests/art_engine/fonts/art_font_test_support.h"
#include "tests/art_engine/pixels/art_pixel_test_support.h"
#include "tests/test_support.h"
#include "xbd/xbd.h"

using namespace art_font_test;
using namespace art_pixel_test;

namespace {

class ArtFont : public font_manager_test
{
};

bool HasAssertionText(const std::string &Message, const std::string &Text)
{
    return Message.find("'" + Text + "' is false") != std::string::npos;
}

// A face of glyphs made by hand; characters without one are blank cells.
ownership_pointer<art_font_face> MakeHandFace(int32_t StyleIndex = 0)
{
    return ownership_pointer<art_font_face>(new stub_font_face(StyleIndex));
}

// The square glyph: from (0,-1) to (0.5,0) em, standing on the baseline.
ownership_pointer<art_glyph> MakeSquareGlyph(int32_t GlyphChar, double XStep)
{
    ownership_pointer<art_glyph> Glyph(new art_glyph(GlyphChar, XStep, point2d(0.5, 1), point2d(0, 1)));
    art_path &Path = Glyph->GetPath();
    Path.move_to(0, -1);
    Path.line_to(0.5, -1);
    Path.line_to(0.5, 0);
    Path.line_to(0, 0);
    Path.close_polygon();
    return Glyph;
}

TEST_F(ArtFont, ManagerStartsWithStubFacesForTimesNewRomanAndArial)
{
    art_font_manager &Manager = GetFontManager();
    EXPECT_EQ(2, Manager.GetNumberOfFonts());
    ASSERT_TRUE(Manager.GetTimesNewRoman().IsSet());
    ASSERT_TRUE(Manager.GetArial().IsSet());
    EXPECT_EQ(zel_string("Times New Roman"), Manager.GetTimesNewRoman()->GetName());
    EXPECT_EQ(zel_string("Arial"), Manager.GetArial()->GetName());
    for (reference_pointer<art_font> Font : {Manager.GetTimesNewRoman(), Manager.GetArial()}) {
        reference_pointer<art_font_face> Face = Font->GetFaceAt(0);
        ASSERT_TRUE(Face.IsSet());
        EXPECT_TRUE(Face->IsIncomplete());
        EXPECT_EQ(1.0, Face->GetAscender());
        EXPECT_EQ(1.0, Face->GetDescender());
        EXPECT_EQ(97, Face->GetDefaultGlyph());
        EXPECT_EQ(Font->GetName(), Face->GetName());
        for (int32_t StyleIndex = 1; StyleIndex < 4; StyleIndex++)
            EXPECT_FALSE(Font->GetFaceAt(StyleIndex).IsSet());
    }
}

TEST_F(ArtFont, StubFaceDrawsBlankCellsOneEmWide)
{
    reference_pointer<art_glyph> Glyph = GetFontManager().GetArial()->GetFace(false, false)->GetGlyph('x');
    EXPECT_EQ('x', Glyph->GetChar());
    EXPECT_EQ(0u, Glyph->GetPath().total_vertices());
    EXPECT_EQ(1.0, Glyph->GetXStep());
    EXPECT_EQ(point2d(1, 1), Glyph->GetSize());
    EXPECT_EQ(point2d(0, 1), Glyph->GetOrigin());
}

TEST_F(ArtFont, LookupInCapitalsFindsArial)
{
    art_font_manager &Manager = GetFontManager();
    EXPECT_EQ(Manager.GetArial(), Manager.FindFont("ARIAL"));
    EXPECT_EQ(Manager.GetArial(), Manager.GetFont("aRiAl"));
    EXPECT_EQ(2, Manager.GetNumberOfFonts());
    EXPECT_EQ(zel_string("Arial"), Manager.FindFont("ARIAL")->GetName());
}

TEST_F(ArtFont, GetFontMakesAndRegistersAnEmptyFontUnderItsFirstSpelling)
{
    art_font_manager &Manager = GetFontManager();
    reference_pointer<art_font> Font = Manager.GetFont("Rofa Missing Grotesk");
    ASSERT_TRUE(Font.IsSet());
    EXPECT_EQ(3, Manager.GetNumberOfFonts());
    EXPECT_EQ(zel_string("Rofa Missing Grotesk"), Font->GetName());
    EXPECT_FALSE(Font->GetFace(false, false).IsSet());
    EXPECT_FALSE(Font->GetFace(true, true).IsSet());
    EXPECT_EQ(Font, Manager.FindFont("rofa missing GROTESK"));
    EXPECT_EQ(Font, Manager.GetFont("ROFA MISSING GROTESK"));
    EXPECT_EQ(3, Manager.GetNumberOfFonts());
}

TEST_F(ArtFont, UnknownFontQuietlyBecomesTimesNewRomanAndNothingIsMade)
{
    art_font_manager &Manager = GetFontManager();
    EXPECT_EQ(Manager.GetTimesNewRoman(), Manager.FindFont("No Such Family"));
    EXPECT_EQ(2, Manager.GetNumberOfFonts());
}

TEST_F(ArtFont, AddingAKnownNameKeepsTheFirstFontAndDiscardsTheNewOne)
{
    art_font_manager &Manager = GetFontManager();
    ownership_pointer<art_font> Second(new art_font("TIMES NEW ROMAN"));
    reference_pointer<art_font> SecondRef(Second);
    EXPECT_EQ(Manager.GetTimesNewRoman(), Manager.AddFont(Second));
    EXPECT_FALSE(SecondRef.IsSet());
    EXPECT_EQ(2, Manager.GetNumberOfFonts());
    EXPECT_EQ(zel_string("Times New Roman"), Manager.GetTimesNewRoman()->GetName());
}

TEST_F(ArtFont, FirstFontOfEitherStandardNameBecomesTheStandardReference)
{
    ownership_pointer<art_font_manager> Manager(new art_font_manager);
    EXPECT_FALSE(Manager->GetTimesNewRoman().IsSet());
    EXPECT_FALSE(Manager->GetArial().IsSet());
    reference_pointer<art_font> Other = Manager->GetFont("Verdana");
    reference_pointer<art_font> Times = Manager->GetFont("times new roman");
    reference_pointer<art_font> Arial = Manager->AddFont(ownership_pointer<art_font>(new art_font("ARIAL")));
    EXPECT_EQ(Times, Manager->GetTimesNewRoman());
    EXPECT_EQ(Arial, Manager->GetArial());
    EXPECT_NE(Other, Manager->GetTimesNewRoman());
    EXPECT_EQ(zel_string("times new roman"), Manager->GetTimesNewRoman()->GetName());
    EXPECT_EQ(Times, Manager->FindFont("Unknown"));
}

TEST_F(ArtFont, FaceNameIsItsFontsName)
{
    ownership_pointer<art_font> Font(new art_font("Rofa Serif"));
    ownership_pointer<art_font_face> Face(new procedural_font_face(2));
    reference_pointer<art_font_face> FaceRef(Face);
    Font->AddFace(Face);
    EXPECT_EQ(Font.Get(), FaceRef->GetFont().Get());
    EXPECT_EQ(zel_string("Rofa Serif"), FaceRef->GetName());
}

TEST_F(ArtFont, FaceWithoutFontFailsWhenAskedForItsName)
{
    procedural_font_face *Face = new procedural_font_face(0);
    ownership_pointer<art_font_face> Owner(Face);
    EXPECT_TRUE(HasAssertionText(ZEL_ERROR_MESSAGE(Face->GetName()), "Font.IsSet()"));
}

TEST_F(ArtFont, GlyphIsLoadedOnceAndKept)
{
    procedural_font_face Face(0);
    reference_pointer<art_glyph> First = Face.GetGlyph('A');
    reference_pointer<art_glyph> Again = Face.GetGlyph('A');
    EXPECT_EQ(1, Face.Loads);
    EXPECT_EQ(First.Get(), Again.Get());
    EXPECT_EQ('A', First->GetChar());
    EXPECT_EQ(('A' % 7 + 3) / 8.0, First->GetXStep());
}

TEST_F(ArtFont, MissingCharacterIsAskedForOnceAndGivesTheDefaultGlyph)
{
    procedural_font_face Face(0, 200);
    reference_pointer<art_glyph> Glyph = Face.GetGlyph(250);
    EXPECT_EQ(97, Glyph->GetChar());
    EXPECT_EQ(2, Face.Loads);
    EXPECT_EQ(Glyph.Get(), Face.GetGlyph(250).Get());
    EXPECT_EQ(Glyph.Get(), Face.GetGlyph(97).Get());
    EXPECT_EQ(2, Face.Loads);
    EXPECT_EQ(2, Face.GetGlyphs().GetNumberOfElements());
}

TEST_F(ArtFont, HasGlyphAnswersWithoutFallingBack)
{
    procedural_font_face Face(0, 200);
    EXPECT_FALSE(Face.HasGlyph(250));
    EXPECT_TRUE(Face.HasGlyph(65));
    EXPECT_EQ(2, Face.Loads);
    EXPECT_EQ(97, Face.GetGlyph(250)->GetChar());
    EXPECT_FALSE(Face.HasGlyph(250));
    EXPECT_EQ(3, Face.Loads);
}

TEST_F(ArtFont, FaceThatCannotSupplyItsDefaultGlyphFails)
{
    procedural_font_face Face(0, 0);
    EXPECT_TRUE(HasAssertionText(ZEL_ERROR_MESSAGE(Face.GetGlyph(65)), "GlyphChar!=GetDefaultGlyph()"));
}

TEST_F(ArtFont, AddingNoFaceChangesNothing)
{
    ownership_pointer<art_font> Font(new art_font("Rofa Serif"));
    Font->AddFace(ownership_pointer<art_font_face>());
    for (int32_t StyleIndex = 0; StyleIndex < 4; StyleIndex++)
        EXPECT_FALSE(Font->GetFaceAt(StyleIndex).IsSet());
}

TEST_F(ArtFont, WholeFaceReplacesStub)
{
    reference_pointer<art_font> Times = GetFontManager().GetTimesNewRoman();
    reference_pointer<art_font_face> Stub = Times->GetFaceAt(0);
    ownership_pointer<art_font_face> Whole(new procedural_font_face(0));
    reference_pointer<art_font_face> WholeRef(Whole);
    Times->AddFace(Whole);
    EXPECT_FALSE(Stub.IsSet());
    EXPECT_EQ(WholeRef, Times->GetFace(false, false));
    EXPECT_FALSE(Times->GetFace(false, false)->IsIncomplete());
}

TEST_F(ArtFont, PartialFaceMergesIntoThePartialFaceAlreadyThere)
{
    xbd_file File;
    ownership_pointer<xbd_tag> FontTag(new xbd_tag("font", reference_pointer<xbd_file>(&File)));
    FontTag->AddAttribute("name", "Arial");
    ownership_pointer<xbd_tag> GlyphTag = FontTag->NewTag("glyph");
    GlyphTag->AddAttribute("char", "66");
    GlyphTag->AddAttribute("x_step", "0.625");
    FontTag->AddChildTag(GlyphTag);

    reference_pointer<art_font> Arial = GetFontManager().GetArial();
    reference_pointer<art_font_face> Stub = Arial->GetFaceAt(0);
    ownership_pointer<art_font_face> Partial(new art_xml_partial_font_face(*FontTag));
    reference_pointer<art_font_face> PartialRef(Partial);
    Arial->AddFace(Partial);
    EXPECT_FALSE(PartialRef.IsSet());
    EXPECT_EQ(Stub, Arial->GetFaceAt(0));
    EXPECT_EQ(0.625, Stub->GetGlyph(66)->GetXStep());
    EXPECT_EQ(1.0, Stub->GetGlyph(67)->GetXStep());
}

TEST_F(ArtFont, AnyFaceReplacesAWholeFace)
{
    ownership_pointer<art_font> Font(new art_font("Rofa Serif"));
    Font->AddFace(ownership_pointer<art_font_face>(new procedural_font_face(1)));
    reference_pointer<art_font_face> Whole = Font->GetFaceAt(1);
    Font->AddFace(MakeHandFace(1));
    EXPECT_FALSE(Whole.IsSet());
    EXPECT_TRUE(Font->GetFaceAt(1)->IsIncomplete());
}

TEST_F(ArtFont, BoldItalicFromItalicAndRegularGivesItalic)
{
    ownership_pointer<art_font> Font(new art_font("Rofa Serif"));
    Font->AddFace(MakeHandFace(0));
    Font->AddFace(MakeHandFace(2));
    EXPECT_EQ(Font->GetFaceAt(2), Font->GetFace(true, true));
    EXPECT_EQ(2, Font->GetFace(true, true)->GetStyleIndex());
}

TEST_F(ArtFont, BoldItalicFromRegularOnlyGivesRegular)
{
    ownership_pointer<art_font> Font(new art_font("Rofa Serif"));
    Font->AddFace(MakeHandFace(0));
    EXPECT_EQ(Font->GetFaceAt(0), Font->GetFace(true, true));
    EXPECT_EQ(Font->GetFaceAt(0), Font->GetFace(true, false));
    EXPECT_EQ(Font->GetFaceAt(0), Font->GetFace(false, true));
}

TEST_F(ArtFont, BoldItalicFromBoldAndRegularGivesBold)
{
    ownership_pointer<art_font> Font(new art_font("Rofa Serif"));
    Font->AddFace(MakeHandFace(0));
    Font->AddFace(MakeHandFace(1));
    EXPECT_EQ(Font->GetFaceAt(1), Font->GetFace(true, true));
}

TEST_F(ArtFont, OtherStylesFallBackToTheFirstFaceInStyleOrder)
{
    ownership_pointer<art_font> Font(new art_font("Rofa Serif"));
    Font->AddFace(MakeHandFace(3));
    Font->AddFace(MakeHandFace(1));
    EXPECT_EQ(Font->GetFaceAt(1), Font->GetFace(false, false));
    EXPECT_EQ(Font->GetFaceAt(1), Font->GetFace(false, true));
    EXPECT_EQ(Font->GetFaceAt(3), Font->GetFace(true, true));
}

TEST_F(ArtFont, StyleIndexIsBoldPlusTwiceItalicAndBoldIsAboveWeight500)
{
    EXPECT_EQ(0, art_font_face::GetStyleIndex(false, false));
    EXPECT_EQ(1, art_font_face::GetStyleIndex(true, false));
    EXPECT_EQ(2, art_font_face::GetStyleIndex(false, true));
    EXPECT_EQ(3, art_font_face::GetStyleIndex(true, true));
    EXPECT_EQ(0, art_font_face::GetStyleIndexOfWeight(500, false));
    EXPECT_EQ(1, art_font_face::GetStyleIndexOfWeight(501, false));
    EXPECT_EQ(3, art_font_face::GetStyleIndexOfWeight(700, true));
    stub_font_face Face(3);
    EXPECT_TRUE(Face.IsBold());
    EXPECT_TRUE(Face.IsItalic());
}

// A platform source of invented families.
class listed_font_source : public art_font_source
{
public:
    void EnumerateStyles(array<art_font_source_style> &Styles) override
    {
        Enumerations++;
        const art_font_source_style List[] = {{"Times New Roman", 400, false},
                                              {"Times New Roman", 700, true},
                                              {"Rofa Sans", 400, false},
                                              {"Rofa Sans", 600, false},
                                              {"rofa sans", 400, true}};
        for (const art_font_source_style &Style : List)
            Styles.Add(Style);
    }
    ownership_pointer<art_font_face> MakeFace(const art_font_source_style &Style) override
    {
        return ownership_pointer<art_font_face>(
            new procedural_font_face(art_font_face::GetStyleIndexOfWeight(Style.Weight, Style.Italic)));
    }
    int Enumerations = 0;
};

TEST_F(ArtFont, FontSourceGivesEachStyleAFaceOnce)
{
    art_font_manager &Manager = GetFontManager();
    listed_font_source *Source = new listed_font_source;
    Manager.SetFontSource(ownership_pointer<art_font_source>(Source));
    EXPECT_EQ(1, Source->Enumerations);
    EXPECT_EQ(3, Manager.GetNumberOfFonts());
    reference_pointer<art_font> Times = Manager.GetTimesNewRoman();
    EXPECT_FALSE(Times->GetFaceAt(0)->IsIncomplete());
    EXPECT_FALSE(Times->GetFaceAt(1).IsSet());
    EXPECT_EQ(3, Times->GetFaceAt(3)->GetStyleIndex());
    reference_pointer<art_font> Sans = Manager.FindFont("ROFA SANS");
    EXPECT_EQ(zel_string("Rofa Sans"), Sans->GetName());
    EXPECT_TRUE(Sans->GetFaceAt(0).IsSet());
    EXPECT_TRUE(Sans->GetFaceAt(1).IsSet());
    EXPECT_TRUE(Sans->GetFaceAt(2).IsSet());
    EXPECT_FALSE(Sans->GetFaceAt(3).IsSet());
    EXPECT_TRUE(Manager.GetArial()->GetFaceAt(0)->IsIncomplete());

    EXPECT_TRUE(HasAssertionText(
        ZEL_ERROR_MESSAGE(Manager.SetFontSource(ownership_pointer<art_font_source>(new listed_font_source))),
        "!FontSource.IsSet()"));
    EXPECT_EQ(1, Source->Enumerations);
}

// Glyph drawing: squares on integer pixel edges cover whole pixels, so the picture is exact.
TEST_F(ArtFont, DrawnStringCoversEachGlyphAtItsPenPosition)
{
    ownership_pointer<art_font_face> Face = MakeHandFace();
    Face->InsertGlyph(MakeSquareGlyph('A', 0.75));
    art_bitmap Bitmap(12, 8);
    Bitmap.Clear(Pixel(0, 0, 0, 0));
    const point2d End = DrawGlyphString(Bitmap, *Face, "AA", Pixel(255, 0, 0, 255), agg::trans_affine(), 4,
                                        point2d(1, 6));
    EXPECT_EQ(point2d(7, 6), End);
    agg::rgba8 Want[8 * 12];
    for (int Y = 0; Y < 8; Y++) {
        for (int X = 0; X < 12; X++) {
            const bool Inside = Y >= 2 && Y < 6 && ((X >= 1 && X < 3) || (X >= 4 && X < 6));
            Want[Y * 12 + X] = Inside ? Pixel(255, 0, 0, 255) : Pixel(0, 0, 0, 0);
        }
    }
    EXPECT_TRUE(BitmapIs(Bitmap, Want));
}

TEST_F(ArtFont, DrawnGlyphFollowsTheMatrix)
{
    ownership_pointer<art_font_face> Face = MakeHandFace();
    Face->InsertGlyph(MakeSquareGlyph('A', 0.75));
    art_bitmap Bitmap(8, 8);
    Bitmap.Clear(Pixel(0, 0, 0, 0));
    agg::trans_affine Matrix = agg::trans_affine_scaling(2);
    Matrix *= agg::trans_affine_translation(1, 0);
    DrawGlyphString(Bitmap, *Face, "A", Pixel(0, 0, 255, 255), Matrix, 2, point2d(0, 3));
    agg::rgba8 Want[8 * 8];
    for (int Y = 0; Y < 8; Y++)
        for (int X = 0; X < 8; X++)
            Want[Y * 8 + X] = (Y >= 2 && Y < 6 && X >= 1 && X < 3) ? Pixel(0, 0, 255, 255) : Pixel(0, 0, 0, 0);
    EXPECT_TRUE(BitmapIs(Bitmap, Want));
}

TEST_F(ArtFont, CharacterAbove127DrawsTheGlyphOfItsByteValue)
{
    ownership_pointer<art_font_face> Face = MakeHandFace();
    Face->InsertGlyph(MakeSquareGlyph(200, 1));
    art_bitmap Bitmap(4, 4);
    Bitmap.Clear(Pixel(0, 0, 0, 0));
    DrawGlyphString(Bitmap, *Face, "\xC8", Pixel(0, 255, 0, 255), agg::trans_affine(), 2, point2d(1, 3));
    agg::rgba8 Want[4 * 4];
    for (int Y = 0; Y < 4; Y++)
        for (int X = 0; X < 4; X++)
            Want[Y * 4 + X] = (Y >= 1 && Y < 3 && X == 1) ? Pixel(0, 255, 0, 255) : Pixel(0, 0, 0, 0);
    EXPECT_TRUE(BitmapIs(Bitmap, Want));
    EXPECT_FALSE(Face->GetGlyphs().KeyExists(-56));
}

// The region under a quadratic arch from (0,0) over control (0.5,-1) to (1,0) is two thirds of the
// box of its peak: 1 x 0.5 x 2/3 em. At 30 pixels to the em that is 300 square pixels. Flattened for
// its size on screen the chords stay within a fraction of a pixel of the curve, a few square pixels
// short at most; flattened as if an em were one pixel, it would come to about 253.
TEST_F(ArtFont, CurvedGlyphIsFlattenedForItsSizeOnScreen)
{
    ownership_pointer<art_font_face> Face = MakeHandFace();
    ownership_pointer<art_glyph> Arch(new art_glyph('n', 1, point2d(1, 0.5), point2d(0, 0.5)));
    Arch->GetPath().move_to(0, 0);
    Arch->GetPath().curve3(0.5, -1, 1, 0);
    Arch->GetPath().close_polygon();
    Face->InsertGlyph(Arch);
    art_bitmap Bitmap(40, 24);
    Bitmap.Clear(Pixel(0, 0, 0, 0));
    DrawGlyphString(Bitmap, *Face, "n", Pixel(255, 255, 255, 255), agg::trans_affine(), 30, point2d(5, 20));
    double Area = 0;
    for (int Y = 0; Y < 24; Y++)
        for (int X = 0; X < 40; X++)
            Area += Bitmap.GetPixelRow(Y)[X].a / 255.0;
    EXPECT_NEAR(300.0, Area, 8.0);
}

} // namespace
