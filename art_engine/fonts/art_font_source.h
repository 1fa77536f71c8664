#pragma once

#include <cstdint>

#include "art_engine/fonts/art_font_face.h"
#include "zel_basics/array.h"
#include "zel_basics/lwbase_object.h"
#include "zel_basics/lwpointers.h"
#include "zel_basics/zel_string.h"

// One installed style of an outline family, as the platform names it.
struct art_font_source_style
{
    zel_string FamilyName;
    int32_t Weight = 400;
    bool Italic = false;
};

// Where the platform's fonts come from. The font manager asks it once per process for the list of
// styles, then makes one face for each; a face realises its platform font only when first used.
class art_font_source : public base_object
{
public:
    // Appends every style of every outline family; bitmap and stroke families are left out.
    virtual void EnumerateStyles(array<art_font_source_style> &Styles) = 0;
    // A face for Style, with the style index of GetStyleIndexOfWeight(Style.Weight, Style.Italic).
    virtual ownership_pointer<art_font_face> MakeFace(const art_font_source_style &Style) = 0;
};
