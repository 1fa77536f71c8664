#include <gtest/gtest.h>

#include <string>

#include "art_engine/fonts/art_embedded_fonts.h"
#include "art_engine/fonts/art_font.h"
#include "art_engine/fonts/art_font_manager.h"
#include "art_engine/fonts/art_packed_path.h"
#include "art_engine/fonts/art_xml_partial_font_face.h"
#include "tests/art_engine/fonts/art_font_test_support.h"
#include "tests/test_support.h"
#include "xbd/xbd.h"

using namespace art_font_test;

namespace {

class ArtEmbeddedFonts : public font_manager_test
{
};

bool HasAssertionText(const std::string &Message, const std::string &Text)
{
    return Message.find("'" + Text + "' is false") != std::string::npos;
}

// A font that this machine has: a whole face made by procedural_font_face.
reference_pointer<art_font_face> InstallWholeFace(const zel_string &Name, int32_t StyleIndex)
{
    reference_pointer<art_font> Font = GetFontManager().GetFont(Name);
    ownership_pointer<art_font_face> Face(new procedural_font_face(StyleIndex));
    reference_pointer<art_font_face> FaceRef(Face);
    Font->AddFace(Face);
    return FaceRef;
}

// The saved bytes of a document whose root holds nothing but what Glyphs writes.
zel_string SaveDocument(used_font_glyphs &Glyphs)
{
    xbd_file File;
    Glyphs.Write(*File.GetRootTag());
    return File.GetZELXMLv1String();
}

// Loads the document's embedded fonts, as opening it does.
void LoadDocument(const zel_string &Bytes)
{
    ownership_pointer<xbd_file> File = xbd_file::LoadFromData(Bytes, false);
    reference_pointer<xbd_tag> Embedded = File->GetRootTag()->GetChildTag("embedded_fonts");
    ASSERT_TRUE(Embedded.IsSet());
    ReadEmbeddedFonts(*Embedded);
}

// One line a tag: its name and attributes in order, children indented below it.
std::string Describe(xbd_tag &Tag, int Depth = 0)
{
    std::string Text(static_cast<size_t>(Depth) * 2, ' ');
    Text += ToStd(Tag.GetName());
    xbd_file &File = *Tag.GetFile();
    for (int Index = 0; Index < Tag.GetAttributes().GetNumberOfElements(); Index++) {
        const xbd_attribute &Attribute = Tag.GetAttributes()[Index];
        const zel_string Name = File.GetAttributeNames().GetName(Attribute.NameNum);
        if (Name == zel_string("path"))
            continue;
        Text += " " + ToStd(Name) + "=" + ToStd(File.GetValues().GetName(Attribute.ValueNum));
    }
    Text += "\n";
    for (int Index = 0; Index < Tag.GetChildren().GetNumberOfElements(); Index++)
        Text += Describe(*Tag.GetChildren()[Index], Depth + 1);
    return Text;
}

TEST_F(ArtEmbeddedFonts, CharactersReadBackOnAMachineWithoutTheFontHaveTheSameOutlines)
{
    used_font_glyphs Used;
    Used.AddText(InstallWholeFace("Rofa Test Sans", 0), "Hello, wide world");
    Used.AddText(InstallWholeFace("Rofa Test Sans", 3), "Bold");
    const zel_string Bytes = SaveDocument(Used);
    DestroyFontManager();

    LoadDocument(Bytes);
    reference_pointer<art_font> Font = GetFontManager().FindFont("rofa test sans");
    ASSERT_EQ(zel_string("Rofa Test Sans"), Font->GetName());
    for (int32_t StyleIndex : {0, 3}) {
        reference_pointer<art_font_face> Face = Font->GetFaceAt(StyleIndex);
        ASSERT_TRUE(Face.IsSet());
        EXPECT_TRUE(Face->IsIncomplete());
        EXPECT_EQ(0.75, Face->GetAscender());
        EXPECT_EQ(0.25, Face->GetDescender());
        const char *Text = StyleIndex == 0 ? "Hello, wide world" : "Bold";
        for (const char *C = Text; *C != 0; C++) {
            ASSERT_TRUE(Face->HasGlyph(*C)) << *C;
            art_glyph &Read = *Face->GetGlyph(*C);
            ownership_pointer<art_glyph> Made = procedural_font_face::MakeGlyph(*C, StyleIndex);
            EXPECT_EQ(Made->GetChar(), Read.GetChar());
            EXPECT_EQ(Made->GetXStep(), Read.GetXStep());
            EXPECT_EQ(Made->GetSize(), Read.GetSize());
            EXPECT_EQ(Made->GetOrigin(), Read.GetOrigin());
            EXPECT_TRUE(SamePath(Read.GetPath(), Made->GetPath())) << *C;
        }
    }
    EXPECT_FALSE(Font->GetFaceAt(1).IsSet());
    // The highest code saved stands in for the rest.
    EXPECT_EQ('w', Font->GetFaceAt(0)->GetDefaultGlyph());
    EXPECT_EQ('w', Font->GetFaceAt(0)->GetGlyph('Z')->GetChar());
}

TEST_F(ArtEmbeddedFonts, FontsAreWrittenInKeyOrderAndGlyphsInCodeOrder)
{
    used_font_glyphs Used;
    Used.AddText(InstallWholeFace("Zeta", 0), "ba");
    Used.AddText(InstallWholeFace("Alpha", 2), "dcd");
    Used.AddText(InstallWholeFace("Alpha", 1), "e");
    xbd_file File;
    Used.Write(*File.GetRootTag());
    // Keys "Alpha,1" < "Alpha,2" < "Zeta,0"; x_step is (code % 7 + 3) / 8, and 97 is the default code.
    EXPECT_EQ("RootTag\n"
              "  embedded_fonts\n"
              "    font name=Alpha bold= ascender=0.75 descender=0.25\n"
              "      glyph char=101 x_step=0.75 size=(0.5,0.75) origin=(0.125,0.75)\n"
              "    font name=Alpha italic= ascender=0.75 descender=0.25\n"
              "      glyph char=99 x_step=0.5 size=(0.5,0.75) origin=(0.125,0.75)\n"
              "      glyph char=100 x_step=0.625 size=(0.5,0.75) origin=(0.125,0.75)\n"
              "    font name=Zeta ascender=0.75 descender=0.25\n"
              "      glyph x_step=1.125 size=(0.5,0.75) origin=(0.125,0.75)\n"
              "      glyph char=98 x_step=0.375 size=(0.5,0.75) origin=(0.125,0.75)\n",
              Describe(*File.GetRootTag()));
}

TEST_F(ArtEmbeddedFonts, SavingTwiceGivesTheSameBytes)
{
    used_font_glyphs First;
    used_font_glyphs Second;
    reference_pointer<art_font_face> A = InstallWholeFace("Face A", 0);
    reference_pointer<art_font_face> B = InstallWholeFace("Face B", 1);
    First.AddText(A, "quick brown");
    First.AddText(B, "fox");
    Second.AddText(B, "xof");
    Second.AddText(A, "nworb kciuq");
    EXPECT_EQ(SaveDocument(First), SaveDocument(Second));
}

TEST_F(ArtEmbeddedFonts, DocumentWithoutTextWritesNoEmbeddedFonts)
{
    used_font_glyphs Used;
    EXPECT_EQ(0, Used.GetNumberOfFaces());
    xbd_file File;
    Used.Write(*File.GetRootTag());
    EXPECT_EQ(0, File.GetRootTag()->GetChildren().GetNumberOfElements());
}

TEST_F(ArtEmbeddedFonts, FontTagWithoutGlyphsFails)
{
    xbd_file File;
    ownership_pointer<xbd_tag> FontTag(new xbd_tag("font", reference_pointer<xbd_file>(&File)));
    FontTag->AddAttribute("name", "Rofa Test Sans");
    EXPECT_TRUE(HasAssertionText(ZEL_ERROR_MESSAGE(art_xml_partial_font_face Face(*FontTag)),
                                 "STI.GetNumberOfElements()>0"));
}

TEST_F(ArtEmbeddedFonts, WriterMakesAFaceEntryOnlyWhenACharacterIsAdded)
{
    used_font_glyphs Used;
    Used.AddText(InstallWholeFace("Rofa Test Sans", 0), "");
    EXPECT_EQ(0, Used.GetNumberOfFaces());
    Used.AddChar(InstallWholeFace("Rofa Test Sans", 0), 'x');
    EXPECT_EQ(1, Used.GetNumberOfFaces());
}

TEST_F(ArtEmbeddedFonts, FontTagWithoutNameFails)
{
    xbd_file File;
    ownership_pointer<xbd_tag> Embedded = File.GetRootTag()->NewTag("embedded_fonts");
    ownership_pointer<xbd_tag> FontTag = Embedded->NewTag("font");
    FontTag->AddChildTag(FontTag->NewTag("glyph"));
    Embedded->AddChildTag(FontTag);
    EXPECT_TRUE(HasAssertionText(ZEL_ERROR_MESSAGE(ReadEmbeddedFonts(*Embedded)), "FontName.GetLength()>0"));
}

TEST_F(ArtEmbeddedFonts, GlyphWithoutContoursHasNoPathAttributeAndReadsBackEmpty)
{
    xbd_file File;
    art_glyph Space(' ', 0.25, point2d(0, 0), point2d(0, 0));
    ownership_pointer<xbd_tag> Tag = Space.Save(File);
    EXPECT_FALSE(Tag->HasAttribute("path"));
    art_glyph Read(*Tag);
    EXPECT_EQ(' ', Read.GetChar());
    EXPECT_EQ(0.25, Read.GetXStep());
    EXPECT_EQ(0u, Read.GetPath().total_vertices());
}

TEST_F(ArtEmbeddedFonts, GlyphTagWithoutAttributesReadsAsDefaults)
{
    xbd_file File;
    ownership_pointer<xbd_tag> Tag(new xbd_tag("glyph", reference_pointer<xbd_file>(&File)));
    art_glyph Read(*Tag);
    EXPECT_EQ(97, Read.GetChar());
    EXPECT_EQ(1.0, Read.GetXStep());
    EXPECT_EQ(point2d(1, 1), Read.GetSize());
    EXPECT_EQ(point2d(0, 0), Read.GetOrigin());
    EXPECT_EQ(0u, Read.GetPath().total_vertices());
}

TEST_F(ArtEmbeddedFonts, GlyphAttributesHaveTheirTextForms)
{
    xbd_file File;
    ownership_pointer<art_glyph> Glyph = procedural_font_face::MakeGlyph('d', 0);
    ownership_pointer<xbd_tag> Tag = Glyph->Save(File);
    EXPECT_EQ(zel_string("100"), Tag->GetAttribute("char", ""));
    EXPECT_EQ(zel_string("0.625"), Tag->GetAttribute("x_step", ""));
    EXPECT_EQ(zel_string("(0.5,0.75)"), Tag->GetAttribute("size", ""));
    EXPECT_EQ(zel_string("(0.125,0.75)"), Tag->GetAttribute("origin", ""));
    EXPECT_EQ(EncodePackedPath(Glyph->GetPath()), Tag->GetAttribute("path", ""));
}

TEST_F(ArtEmbeddedFonts, FontOnThisMachineIsSavedAndTheReloadIgnoresTheDocumentsCopy)
{
    reference_pointer<art_font_face> Whole = InstallWholeFace("Rofa Test Sans", 0);
    used_font_glyphs Used;
    Used.AddText(Whole, "abc");
    const zel_string Bytes = SaveDocument(Used);
    ownership_pointer<xbd_file> File = xbd_file::LoadFromData(Bytes, false);
    reference_pointer<xbd_tag> Embedded = File->GetRootTag()->GetChildTag("embedded_fonts");
    ASSERT_TRUE(Embedded.IsSet());
    EXPECT_EQ(3, Embedded->GetChildTag("font")->GetChildren().GetNumberOfElements());

    art_glyph *Before = Whole->GetGlyph('b').Get();
    ReadEmbeddedFonts(*Embedded);
    EXPECT_TRUE(Whole.IsSet());
    EXPECT_EQ(Whole, GetFontManager().FindFont("Rofa Test Sans")->GetFaceAt(0));
    EXPECT_FALSE(Whole->IsIncomplete());
    EXPECT_EQ(Before, Whole->GetGlyph('b').Get());
}

TEST_F(ArtEmbeddedFonts, TwoDocumentsWithDifferentCharactersOfAMissingFontMerge)
{
    used_font_glyphs FirstUsed;
    FirstUsed.AddText(InstallWholeFace("Rofa Test Sans", 2), "ab");
    const zel_string First = SaveDocument(FirstUsed);
    used_font_glyphs SecondUsed;
    SecondUsed.AddText(InstallWholeFace("Rofa Test Sans", 2), "yz");
    const zel_string Second = SaveDocument(SecondUsed);
    DestroyFontManager();

    LoadDocument(First);
    LoadDocument(Second);
    reference_pointer<art_font> Font = GetFontManager().FindFont("Rofa Test Sans");
    reference_pointer<art_font_face> Face = Font->GetFace(false, true);
    ASSERT_TRUE(Face.IsSet());
    EXPECT_EQ(Face, Font->GetFaceAt(2));
    for (char C : {'a', 'b', 'y', 'z'}) {
        ASSERT_TRUE(Face->HasGlyph(C)) << C;
        ownership_pointer<art_glyph> Made = procedural_font_face::MakeGlyph(C, 2);
        EXPECT_TRUE(SamePath(Face->GetGlyph(C)->GetPath(), Made->GetPath())) << C;
    }
    EXPECT_FALSE(Face->HasGlyph('c'));
    EXPECT_EQ(4, Face->GetGlyphs().GetNumberOfElements() - 1);
}

TEST_F(ArtEmbeddedFonts, CharacterAbove127KeepsItsByteValueAsTheGlyphCode)
{
    used_font_glyphs Used;
    Used.AddText(InstallWholeFace("Rofa Test Sans", 0), "\xE9\xFF");
    const zel_string Bytes = SaveDocument(Used);
    DestroyFontManager();
    LoadDocument(Bytes);
    reference_pointer<art_font_face> Face = GetFontManager().FindFont("Rofa Test Sans")->GetFaceAt(0);
    EXPECT_TRUE(Face->HasGlyph(233));
    EXPECT_TRUE(Face->HasGlyph(255));
    EXPECT_EQ(233, Face->GetGlyph(233)->GetChar());
    EXPECT_FALSE(Face->HasGlyph(-23));
    EXPECT_EQ(255, Face->GetDefaultGlyph());
}

TEST_F(ArtEmbeddedFonts, CharacterTheFaceCannotSupplyIsWrittenAsTheDefaultGlyph)
{
    reference_pointer<art_font> Font = GetFontManager().GetFont("Rofa Test Sans");
    Font->AddFace(ownership_pointer<art_font_face>(new procedural_font_face(0, 120)));
    used_font_glyphs Used;
    Used.AddText(Font->GetFaceAt(0), "b\x80");
    xbd_file File;
    Used.Write(*File.GetRootTag());
    EXPECT_EQ("RootTag\n"
              "  embedded_fonts\n"
              "    font name=Rofa Test Sans ascender=0.75 descender=0.25\n"
              "      glyph char=98 x_step=0.375 size=(0.5,0.75) origin=(0.125,0.75)\n"
              "      glyph x_step=1.125 size=(0.5,0.75) origin=(0.125,0.75)\n",
              Describe(*File.GetRootTag()));
}

TEST_F(ArtEmbeddedFonts, EmbeddedTimesNewRomanJoinsTheStubOfAMachineWithoutIt)
{
    used_font_glyphs Used;
    reference_pointer<art_font> Times = GetFontManager().GetTimesNewRoman();
    Times->AddFace(ownership_pointer<art_font_face>(new procedural_font_face(0)));
    Used.AddText(Times->GetFaceAt(0), "T");
    const zel_string Bytes = SaveDocument(Used);
    DestroyFontManager();

    LoadDocument(Bytes);
    reference_pointer<art_font_face> Face = GetFontManager().GetTimesNewRoman()->GetFaceAt(0);
    ownership_pointer<art_glyph> Made = procedural_font_face::MakeGlyph('T', 0);
    EXPECT_TRUE(SamePath(Face->GetGlyph('T')->GetPath(), Made->GetPath()));
    EXPECT_EQ(1.0, Face->GetGlyph('U')->GetXStep());
    EXPECT_EQ(0u, Face->GetGlyph('U')->GetPath().total_vertices());
}

TEST_F(ArtEmbeddedFonts, FontAttributesAtTheirDefaultsAreLeftOutAndReadBack)
{
    xbd_file File;
    ownership_pointer<xbd_tag> FontTag(new xbd_tag("font", reference_pointer<xbd_file>(&File)));
    FontTag->AddAttribute("name", "Rofa Test Sans");
    FontTag->AddAttribute("italic", "");
    FontTag->AddChildTag(FontTag->NewTag("glyph"));
    art_xml_partial_font_face Face(*FontTag);
    EXPECT_EQ(2, Face.GetStyleIndex());
    EXPECT_EQ(1.0, Face.GetAscender());
    EXPECT_EQ(0.1, Face.GetDescender());
    EXPECT_EQ(97, Face.GetDefaultGlyph());
    EXPECT_TRUE(Face.HasGlyph(97));
    EXPECT_FALSE(Face.HasGlyph(98));
}

} // namespace
