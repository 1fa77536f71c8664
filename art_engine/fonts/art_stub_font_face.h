#pragma once

#include "art_engine/fonts/art_font_face.h"

// Stands in for a font the machine does not have: every character is a blank cell one em wide.
// Incomplete, so embedded glyphs of a document replace it.
class stub_font_face : public art_font_face
{
public:
    explicit stub_font_face(int32_t StyleIndex = 0);
    ~stub_font_face() override;

    ownership_pointer<art_glyph> LoadGlyph(int32_t GlyphChar) override;
    bool IsIncomplete() override;
    double GetAscender() override;
    double GetDescender() override;
    int32_t GetDefaultGlyph() override;
};
