#include "art_engine/fonts/art_stub_font_face.h"

stub_font_face::stub_font_face(int32_t StyleIndex) : art_font_face(StyleIndex) {}

stub_font_face::~stub_font_face() {}

ownership_pointer<art_glyph> stub_font_face::LoadGlyph(int32_t GlyphChar)
{
    return ownership_pointer<art_glyph>(new art_glyph(GlyphChar, 1.0, point2d(1, 1), point2d(0, 1)));
}

bool stub_font_face::IsIncomplete()
{
    return true;
}

double stub_font_face::GetAscender()
{
    return 1.0;
}

double stub_font_face::GetDescender()
{
    return 1.0;
}

int32_t stub_font_face::GetDefaultGlyph()
{
    return 97;
}
