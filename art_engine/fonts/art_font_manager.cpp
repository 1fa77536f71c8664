#include "art_engine/fonts/art_font_manager.h"

#include "art_engine/fonts/art_stub_font_face.h"
#include "zel_basics/debug.h"

namespace {

// Fonts are used on the main thread only, so a plain global serves.
art_font_manager *FontManagerInstance = nullptr;

} // namespace

art_font_manager::art_font_manager() {}

art_font_manager::~art_font_manager() {}

reference_pointer<art_font> art_font_manager::GetFont(const zel_string &Name)
{
    const int Slot = NameTable.Find(Name.ToLower());
    if (Slot >= 0)
        return NameTable.GetValueAt(Slot);
    return AddFont(ownership_pointer<art_font>(new art_font(Name)));
}

reference_pointer<art_font> art_font_manager::FindFont(const zel_string &Name)
{
    const int Slot = NameTable.Find(Name.ToLower());
    if (Slot >= 0)
        return NameTable.GetValueAt(Slot);
    return GetTimesNewRoman();
}

reference_pointer<art_font> art_font_manager::AddFont(ownership_pointer<art_font> Font)
{
    TOVAS_ASSERT(Font.IsSet(), this);
    const zel_string Name = Font->GetName();
    const zel_string Key = Name.ToLower();
    const int Slot = NameTable.Find(Key);
    if (Slot >= 0)
        return NameTable.GetValueAt(Slot);
    reference_pointer<art_font> Added(Font);
    if (!TimesNewRoman.IsSet() && Name.CompareNoCase("Times New Roman") == 0)
        TimesNewRoman = Added;
    if (!Arial.IsSet() && Name.CompareNoCase("Arial") == 0)
        Arial = Added;
    FontList.Add(Font);
    NameTable.Insert(Key, Added);
    return Added;
}

void art_font_manager::SetFontSource(ownership_pointer<art_font_source> Source)
{
    TOVAS_ASSERT(!FontSource.IsSet(), this);
    TOVAS_ASSERT(Source.IsSet(), this);
    FontSource = Source;
    array<art_font_source_style> Styles;
    FontSource->EnumerateStyles(Styles);
    for (int Index = 0; Index < Styles.GetNumberOfElements(); Index++)
        GetFont(Styles[Index].FamilyName)->AddFace(FontSource->MakeFace(Styles[Index]));
}

art_font_manager &GetFontManager()
{
    if (FontManagerInstance != nullptr)
        return *FontManagerInstance;
    art_font_manager *FontManager = new art_font_manager;
    FontManagerInstance = FontManager;
    FontManager->GetFont("Times New Roman")->AddFace(ownership_pointer<art_font_face>(new stub_font_face));
    FontManager->GetFont("Arial")->AddFace(ownership_pointer<art_font_face>(new stub_font_face));
    TOVAS_ASSERT(FontManager->GetTimesNewRoman().IsSet(), FontManager);
    TOVAS_ASSERT(FontManager->GetArial().IsSet(), FontManager);
    return *FontManager;
}

void DestroyFontManager()
{
    delete FontManagerInstance;
    FontManagerInstance = nullptr;
}
