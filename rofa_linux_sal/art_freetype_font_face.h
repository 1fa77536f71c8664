#pragma once

#include <cstdint>

#include "art_engine/fonts/art_font_face.h"
#include "zel_basics/zel_string.h"

struct FT_FaceRec_;

// One style of an installed outline font, read through FreeType. Nothing is opened until the first
// glyph or metric is asked for: a machine has hundreds of styles and a document uses a few.
//
// The font is taken at a cell height of 1000 units, the cell being ascent plus descent as the
// font's Windows metrics give them (the face's own ascender and descender when it has none), so
// documents made where those metrics rule lay out the same here.
class art_freetype_font_face : public art_font_face
{
public:
    // Face FaceIndex of the font file at FilePath (a collection holds several).
    art_freetype_font_face(int32_t StyleIndex, const zel_string &FilePath, int32_t FaceIndex);
    ~art_freetype_font_face() override;

    // The unhinted outline of the character as a Unicode code point, so a byte above 127 reads as
    // Latin-1; a character the font lacks gets the font's own missing-glyph shape. Null only when
    // the font cannot give an outline at all.
    ownership_pointer<art_glyph> LoadGlyph(int32_t GlyphChar) override;
    double GetAscender() override;
    double GetDescender() override;
    int32_t GetDefaultGlyph() override;

    const zel_string &GetFilePath() const { return FilePath; }
    int32_t GetFaceIndex() const { return FaceIndex; }
    bool IsRealised() const { return Face != nullptr; }
    // What one font unit of this font is in em units.
    double GetFontUnitsToEm();

private:
    // Opens the font and reads its metrics, once.
    void Realise();

    zel_string FilePath;
    int32_t FaceIndex;
    FT_FaceRec_ *Face;
    double FontUnitsToEm;
    double Ascender;
    double Descender;
};
