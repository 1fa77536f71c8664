#include "art_engine/fonts/art_embedded_fonts.h"

#include "art_engine/fonts/art_font.h"
#include "art_engine/fonts/art_font_manager.h"
#include "art_engine/fonts/art_xml_partial_font_face.h"
#include "art_engine/geometry/art_attribute_text.h"
#include "xbd/xbd.h"
#include "zel_basics/array.h"
#include "zel_basics/debug.h"

namespace {

// Sets are small (a document uses a few faces of at most 256 codes), so insertion sort does.
template <class T> void SortAscending(array<T> &Items)
{
    for (int Index = 1; Index < Items.GetNumberOfElements(); Index++) {
        T Item = Items[Index];
        int Place = Index;
        while (Place > 0 && Item < Items[Place - 1]) {
            Items[Place] = Items[Place - 1];
            Place--;
        }
        Items[Place] = Item;
    }
}

} // namespace

font_face_used_glyphs::font_face_used_glyphs(const reference_pointer<art_font_face> &Face) : Face(Face) {}

font_face_used_glyphs::~font_face_used_glyphs() {}

void font_face_used_glyphs::AddChar(int32_t GlyphChar)
{
    Chars[GlyphChar] = GlyphChar;
}

ownership_pointer<xbd_tag> font_face_used_glyphs::Save(xbd_file &File)
{
    ownership_pointer<xbd_tag> Tag(new xbd_tag("font", reference_pointer<xbd_file>(&File)));
    Tag->AddAttribute("name", Face->GetName());
    if (Face->IsBold())
        Tag->AddAttribute("bold", "");
    if (Face->IsItalic())
        Tag->AddAttribute("italic", "");
    const double Ascender = Face->GetAscender();
    if (Ascender != 1.0)
        Tag->AddAttribute("ascender", ArtRealToText(Ascender));
    const double Descender = Face->GetDescender();
    if (Descender != .1)
        Tag->AddAttribute("descender", ArtRealToText(Descender));
    array<int32_t> Codes;
    for (zel_int_hash_map_iterator<int> Entry(Chars); Entry.NotDone(); Entry.Next())
        Codes.Add(Entry.GetKey());
    SortAscending(Codes);
    for (int Index = 0; Index < Codes.GetNumberOfElements(); Index++)
        Tag->AddChildTag(Face->GetGlyph(Codes[Index])->Save(File));
    return Tag;
}

used_font_glyphs::used_font_glyphs() {}

used_font_glyphs::~used_font_glyphs() {}

zel_string used_font_glyphs::GetFaceKey(art_font_face &Face)
{
    return Face.GetName() + "," + zel_string::FromInt(Face.GetStyleIndex());
}

void used_font_glyphs::AddChar(const reference_pointer<art_font_face> &Face, int32_t GlyphChar)
{
    TOVAS_ASSERT(Face.IsSet(), this);
    const zel_string Key = GetFaceKey(*Face);
    int Slot = FaceTable.Find(Key);
    if (Slot < 0)
        Slot = FaceTable.Insert(Key, ownership_pointer<font_face_used_glyphs>(new font_face_used_glyphs(Face)));
    FaceTable.GetValueAt(Slot)->AddChar(GlyphChar);
}

void used_font_glyphs::AddText(const reference_pointer<art_font_face> &Face, const zel_string &Text)
{
    for (int Index = 0; Index < Text.GetLength(); Index++)
        AddChar(Face, static_cast<unsigned char>(Text[Index]));
}

void used_font_glyphs::Write(xbd_tag &Parent)
{
    if (FaceTable.GetNumberOfElements() == 0)
        return;
    array<zel_string> Keys;
    for (zel_string_hash_map_iterator<ownership_pointer<font_face_used_glyphs>> Entry(FaceTable); Entry.NotDone();
         Entry.Next())
        Keys.Add(Entry.GetKey());
    SortAscending(Keys);
    ownership_pointer<xbd_tag> EmbeddedFonts = Parent.NewTag("embedded_fonts");
    xbd_file &File = *Parent.GetFile();
    for (int Index = 0; Index < Keys.GetNumberOfElements(); Index++)
        EmbeddedFonts->AddChildTag(FaceTable[Keys[Index]]->Save(File));
    Parent.AddChildTag(EmbeddedFonts);
}

void ReadEmbeddedFonts(xbd_tag &EmbeddedFontsTag)
{
    art_font_manager &FontManager = GetFontManager();
    const int32_t FontTagName = EmbeddedFontsTag.GetFile()->GetTagNames().GetNameNum("font");
    array<ownership_pointer<xbd_tag>> &FontTags = EmbeddedFontsTag.GetChildren();
    for (int Index = 0; Index < FontTags.GetNumberOfElements(); Index++) {
        xbd_tag &FontTag = *FontTags[Index];
        if (FontTag.GetNameNum() != FontTagName)
            continue;
        const zel_string FontName = FontTag.GetAttribute("name", "");
        TOVAS_ASSERT(FontName.GetLength()>0, nullptr);
        reference_pointer<art_font> Font = FontManager.GetFont(FontName);
        const int32_t StyleIndex =
            art_font_face::GetStyleIndex(FontTag.HasAttribute("bold"), FontTag.HasAttribute("italic"));
        // A full platform face always beats the document's copy.
        reference_pointer<art_font_face> Existing = Font->GetFaceAt(StyleIndex);
        if (Existing.IsSet() && !Existing->IsIncomplete())
            continue;
        Font->AddFace(ownership_pointer<art_font_face>(new art_xml_partial_font_face(FontTag)));
    }
}
