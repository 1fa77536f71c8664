#include "art_engine/fonts/art_font.h"

#include "zel_basics/debug.h"

namespace {

constexpr int NumberOfStyles = 4;

} // namespace

art_font::art_font(const zel_string &Name) : Name(Name), Faces(NumberOfStyles)
{
    MakeFaceSlots();
}

art_font::~art_font() {}

zel_string art_font::GetName()
{
    return Name;
}

void art_font::MakeFaceSlots()
{
    while (Faces.GetNumberOfElements() < NumberOfStyles)
        Faces.Add(ownership_pointer<art_font_face>());
}

void art_font::AddFace(ownership_pointer<art_font_face> Face)
{
    MakeFaceSlots();
    if (!Face.IsSet())
        return;
    const int32_t StyleIndex = Face->GetStyleIndex();
    TOVAS_ASSERT(StyleIndex>=0 && StyleIndex<NumberOfStyles, this);
    ownership_pointer<art_font_face> &Slot = Faces[StyleIndex];
    if (Slot.IsSet() && Slot->IsIncomplete() && Face->IsIncomplete()) {
        Slot->TakeGlyphs(*Face);
        return;
    }
    Face->SetFont(reference_pointer<art_font>(this));
    Slot = Face;
}

reference_pointer<art_font_face> art_font::GetFace(bool Bold, bool Italic)
{
    const int32_t StyleIndex = art_font_face::GetStyleIndex(Bold, Italic);
    if (Faces[StyleIndex].IsSet())
        return reference_pointer<art_font_face>(Faces[StyleIndex]);
    if (StyleIndex == 3) {
        for (int32_t Nearer : {2, 1}) {
            if (Faces[Nearer].IsSet())
                return reference_pointer<art_font_face>(Faces[Nearer]);
        }
    }
    for (int32_t Index = 0; Index < NumberOfStyles; Index++) {
        if (Faces[Index].IsSet())
            return reference_pointer<art_font_face>(Faces[Index]);
    }
    return reference_pointer<art_font_face>();
}

reference_pointer<art_font_face> art_font::GetFaceAt(int32_t StyleIndex)
{
    TOVAS_ASSERT(StyleIndex>=0 && StyleIndex<NumberOfStyles, this);
    return reference_pointer<art_font_face>(Faces[StyleIndex]);
}
