#include "art_engine/fonts/art_font_face.h"

#include "art_engine/fonts/art_font.h"
#include "zel_basics/debug.h"

art_font_face::art_font_face(int32_t StyleIndex) : StyleIndex(StyleIndex) {}

art_font_face::~art_font_face() {}

zel_string art_font_face::GetName()
{
    // Not this face: reporting an object asks it for its name, which would come back here.
    TOVAS_ASSERT(Font.IsSet(), nullptr);
    return Font->GetName();
}

reference_pointer<art_font> art_font_face::GetFont() const
{
    return Font;
}

void art_font_face::SetFont(const reference_pointer<art_font> &NewFont)
{
    Font = NewFont;
}

bool art_font_face::IsIncomplete()
{
    return false;
}

art_glyph *art_font_face::FetchGlyph(int32_t GlyphChar)
{
    int Slot = Glyphs.Find(GlyphChar);
    // A character the source cannot supply is remembered as a null entry, so it is asked only once.
    if (Slot < 0)
        Slot = Glyphs.Insert(GlyphChar, LoadGlyph(GlyphChar));
    return Glyphs.GetValueAt(Slot).Get();
}

reference_pointer<art_glyph> art_font_face::GetGlyph(int32_t GlyphChar)
{
    art_glyph *Glyph = FetchGlyph(GlyphChar);
    if (Glyph != nullptr)
        return reference_pointer<art_glyph>(Glyph);
    TOVAS_ASSERT(GlyphChar!=GetDefaultGlyph(), this);
    return GetGlyph(GetDefaultGlyph());
}

bool art_font_face::HasGlyph(int32_t GlyphChar)
{
    return FetchGlyph(GlyphChar) != nullptr;
}

void art_font_face::InsertGlyph(ownership_pointer<art_glyph> Glyph)
{
    TOVAS_ASSERT(Glyph.IsSet(), this);
    const int32_t GlyphChar = Glyph->GetChar();
    Glyphs[GlyphChar] = Glyph;
}

void art_font_face::TakeGlyphs(art_font_face &Source)
{
    zel_int_hash_map_iterator<ownership_pointer<art_glyph>> Entry(Source.Glyphs);
    while (!Entry.Done()) {
        if (Entry.NotDone()) {
            const int32_t GlyphChar = Entry.GetKey();
            Glyphs[GlyphChar] = Entry.GetValue();
            Entry.RemoveCurrent();
        }
        Entry.Next();
    }
}
