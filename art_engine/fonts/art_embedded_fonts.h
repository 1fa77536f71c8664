#pragma once

#include <cstdint>

#include "art_engine/fonts/art_font_face.h"
#include "zel_basics/lwbase_object.h"
#include "zel_basics/lwpointers.h"
#include "zel_basics/zel_hash_map.h"
#include "zel_basics/zel_string.h"

class xbd_file;
class xbd_tag;

// The characters that a document uses in one face.
class font_face_used_glyphs : public base_object
{
public:
    explicit font_face_used_glyphs(const reference_pointer<art_font_face> &Face);
    ~font_face_used_glyphs() override;

    void AddChar(int32_t GlyphChar);
    reference_pointer<art_font_face> GetFace() const { return Face; }
    zel_int_hash_map<int> &GetChars() { return Chars; }

    // A new "font" tag in File with a "glyph" for each character in ascending order. A character the
    // face cannot supply is written as the face's default glyph, under that glyph's own code.
    ownership_pointer<xbd_tag> Save(xbd_file &File);

private:
    reference_pointer<art_font_face> Face;
    zel_int_hash_map<int> Chars;
};

// The glyphs that a document must carry so that its text looks the same on a machine without its fonts.
class used_font_glyphs : public base_object
{
public:
    used_font_glyphs();
    ~used_font_glyphs() override;

    void AddChar(const reference_pointer<art_font_face> &Face, int32_t GlyphChar);
    // Every byte of Text, as the character code 0 to 255 that text positions hold.
    void AddText(const reference_pointer<art_font_face> &Face, const zel_string &Text);

    int GetNumberOfFaces() const { return FaceTable.GetNumberOfElements(); }
    zel_string_hash_map<ownership_pointer<font_face_used_glyphs>> &GetFaceTable() { return FaceTable; }

    // Adds an "embedded_fonts" tag to Parent with one "font" for each face in the order of their keys,
    // so that a document saves the same bytes each time; adds nothing when no face is used.
    void Write(xbd_tag &Parent);

    // The table key of a face: its font's name and its style.
    static zel_string GetFaceKey(art_font_face &Face);

private:
    zel_string_hash_map<ownership_pointer<font_face_used_glyphs>> FaceTable;
};

// Loads the fonts of an "embedded_fonts" tag into the font manager. A style that the machine has as a
// full face keeps it; otherwise the document's glyphs join a partial face or become one.
void ReadEmbeddedFonts(xbd_tag &EmbeddedFontsTag);
