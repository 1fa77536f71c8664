#pragma once

#include "art_engine/fonts/art_font_face.h"

class xbd_tag;

// The glyphs that a document carried for a font: exactly the characters it held when saved, and
// nothing more. Several documents' sets of the same style merge into one face.
class art_xml_partial_font_face : public art_font_face
{
public:
    // From a "font" tag of "embedded_fonts", which must hold at least one "glyph".
    explicit art_xml_partial_font_face(xbd_tag &FontTag);
    ~art_xml_partial_font_face() override;

    ownership_pointer<art_glyph> LoadGlyph(int32_t GlyphChar) override;
    bool IsIncomplete() override;
    double GetAscender() override;
    double GetDescender() override;
    int32_t GetDefaultGlyph() override;

private:
    double Ascender;
    double Descender;
    int32_t DefaultGlyph;
};
