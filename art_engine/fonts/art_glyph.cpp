#include "art_engine/fonts/art_glyph.h"

#include "art_engine/fonts/art_packed_path.h"
#include "art_engine/geometry/art_attribute_text.h"
#include "xbd/xbd.h"

namespace {

constexpr int32_t DefaultGlyphChar = 97;

} // namespace

art_glyph::art_glyph() : art_glyph(DefaultGlyphChar, 1.0, point2d(1, 1), point2d(0, 0)) {}

art_glyph::art_glyph(int32_t GlyphChar, double XStep, point2d Size, point2d Origin)
    : GlyphChar(GlyphChar), XStep(XStep), Size(Size), Origin(Origin)
{
}

art_glyph::art_glyph(xbd_tag &Tag)
    : GlyphChar(Tag.GetAttribute("char", "97").ToInt()), XStep(ArtTextToReal(Tag.GetAttribute("x_step", ""), 1.0)),
      Size(ArtTextToPoint(Tag.GetAttribute("size", "(1,1)"))),
      Origin(ArtTextToPoint(Tag.GetAttribute("origin", "(0,0)")))
{
    DecodePackedPath(Tag.GetAttribute("path", ""), Path);
}

art_glyph::~art_glyph() {}

ownership_pointer<xbd_tag> art_glyph::Save(xbd_file &File)
{
    ownership_pointer<xbd_tag> Tag(new xbd_tag("glyph", reference_pointer<xbd_file>(&File)));
    if (GlyphChar != DefaultGlyphChar)
        Tag->AddAttribute("char", zel_string::FromInt(GlyphChar));
    if (XStep != 1.0)
        Tag->AddAttribute("x_step", ArtRealToText(XStep));
    if (Size != point2d(1, 1))
        Tag->AddAttribute("size", ArtPointToText(Size));
    if (Origin != point2d(0, 0))
        Tag->AddAttribute("origin", ArtPointToText(Origin));
    const zel_string PackedPath = EncodePackedPath(Path);
    if (!PackedPath.IsEmpty())
        Tag->AddAttribute("path", PackedPath);
    return Tag;
}
