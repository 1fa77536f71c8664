#include "art_engine/fonts/art_xml_partial_font_face.h"

#include "art_engine/geometry/art_attribute_text.h"
#include "xbd/xbd.h"
#include "zel_basics/array_iterator.h"
#include "zel_basics/debug.h"

art_xml_partial_font_face::art_xml_partial_font_face(xbd_tag &FontTag)
    : art_font_face(GetStyleIndex(FontTag.HasAttribute("bold"), FontTag.HasAttribute("italic"))),
      Ascender(ArtTextToReal(FontTag.GetAttribute("ascender", "1"), 1.0)),
      Descender(ArtTextToReal(FontTag.GetAttribute("descender", ".1"), .1)), DefaultGlyph(-1)
{
    array<ownership_pointer<xbd_tag>> &STI = FontTag.GetChildren();
    TOVAS_ASSERT(STI.GetNumberOfElements()>0, this);
    const int32_t GlyphTagName = FontTag.GetFile()->GetTagNames().GetNameNum("glyph");
    for (int Index = 0; Index < STI.GetNumberOfElements(); Index++) {
        xbd_tag &GlyphTag = *STI[Index];
        if (GlyphTag.GetNameNum() != GlyphTagName)
            continue;
        ownership_pointer<art_glyph> Glyph(new art_glyph(GlyphTag));
        // The last glyph read stands in for the missing ones; a saved set is sorted, so that is
        // its highest code.
        DefaultGlyph = Glyph->GetChar();
        InsertGlyph(Glyph);
    }
}

art_xml_partial_font_face::~art_xml_partial_font_face() {}

ownership_pointer<art_glyph> art_xml_partial_font_face::LoadGlyph(int32_t)
{
    return ownership_pointer<art_glyph>();
}

bool art_xml_partial_font_face::IsIncomplete()
{
    return true;
}

double art_xml_partial_font_face::GetAscender()
{
    return Ascender;
}

double art_xml_partial_font_face::GetDescender()
{
    return Descender;
}

int32_t art_xml_partial_font_face::GetDefaultGlyph()
{
    return DefaultGlyph;
}
