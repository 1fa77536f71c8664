#pragma once

#include <cstdint>

#include "art_engine/fonts/art_glyph.h"
#include "zel_basics/lwbase_object.h"
#include "zel_basics/lwpointers.h"
#include "zel_basics/zel_hash_map.h"
#include "zel_basics/zel_string.h"

class art_font;

// One style of one font: the glyphs fetched so far, and how to fetch the others.
class art_font_face : public base_object
{
public:
    // StyleIndex is bold + 2 x italic: 0 regular, 1 bold, 2 italic, 3 bold italic.
    explicit art_font_face(int32_t StyleIndex);
    ~art_font_face() override;

    // The name of the font that holds this face.
    zel_string GetName() override;

    // A new glyph for GlyphChar, or null when the source cannot supply it. Called once per character.
    virtual ownership_pointer<art_glyph> LoadGlyph(int32_t GlyphChar) = 0;
    // True for a face that can only supply the characters it happens to hold.
    virtual bool IsIncomplete();
    // Em units.
    virtual double GetAscender() = 0;
    virtual double GetDescender() = 0;
    // The character that stands in for one the face cannot supply.
    virtual int32_t GetDefaultGlyph() = 0;

    // The glyph of GlyphChar, loading it on first use; a character the face cannot supply gives the
    // default glyph, which must exist.
    reference_pointer<art_glyph> GetGlyph(int32_t GlyphChar);
    // Loads as GetGlyph does, but answers without falling back.
    bool HasGlyph(int32_t GlyphChar);

    // Puts Glyph under its own character code, replacing what was there.
    void InsertGlyph(ownership_pointer<art_glyph> Glyph);
    // Moves every glyph of Source into this face, overwriting; Source is left with none.
    void TakeGlyphs(art_font_face &Source);
    zel_int_hash_map<ownership_pointer<art_glyph>> &GetGlyphs() { return Glyphs; }

    int32_t GetStyleIndex() const { return StyleIndex; }
    bool IsBold() const { return (StyleIndex & 1) != 0; }
    bool IsItalic() const { return (StyleIndex & 2) != 0; }
    static int32_t GetStyleIndex(bool Bold, bool Italic) { return (Bold ? 1 : 0) + (Italic ? 2 : 0); }
    // A platform weight above 500 counts as bold.
    static int32_t GetStyleIndexOfWeight(int32_t Weight, bool Italic) { return GetStyleIndex(Weight > 500, Italic); }

    reference_pointer<art_font> GetFont() const;
    void SetFont(const reference_pointer<art_font> &NewFont);

protected:
    void SetStyleIndex(int32_t NewStyleIndex) { StyleIndex = NewStyleIndex; }

private:
    // The stored glyph of GlyphChar, loaded and stored (null included) on first use.
    art_glyph *FetchGlyph(int32_t GlyphChar);

    int32_t StyleIndex;
    zel_int_hash_map<ownership_pointer<art_glyph>> Glyphs;
    reference_pointer<art_font> Font;
};
