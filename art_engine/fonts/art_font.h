#pragma once

#include <cstdint>

#include "art_engine/fonts/art_font_face.h"
#include "zel_basics/array.h"
#include "zel_basics/lwbase_object.h"
#include "zel_basics/lwpointers.h"
#include "zel_basics/zel_string.h"

// A named family: up to one face for each style index.
class art_font : public base_object
{
public:
    explicit art_font(const zel_string &Name);
    ~art_font() override;

    // The name as first seen, case kept.
    zel_string GetName() override;

    // Puts Face at its style index. A partial face that meets another partial face there gives it
    // its glyphs and is dropped, so several documents build up one set; otherwise Face takes the
    // slot. A null Face changes nothing.
    void AddFace(ownership_pointer<art_font_face> Face);
    // The face of that style, else the nearest: bold italic falls back to italic, then bold; any
    // style falls back to the first face in style order. Unset when the font has no face.
    reference_pointer<art_font_face> GetFace(bool Bold, bool Italic);
    // The face at exactly that style index, or unset.
    reference_pointer<art_font_face> GetFaceAt(int32_t StyleIndex);

private:
    void MakeFaceSlots();

    zel_string Name;
    array<ownership_pointer<art_font_face>> Faces;
};
