#pragma once

#include "art_engine/fonts/art_font.h"
#include "art_engine/fonts/art_font_source.h"
#include "zel_basics/array.h"
#include "zel_basics/lwbase_object.h"
#include "zel_basics/lwpointers.h"
#include "zel_basics/zel_hash_map.h"
#include "zel_basics/zel_string.h"

// Every font of the process, by name without regard to ASCII case. Fonts and their faces live as long
// as the manager: a document that closes leaves its embedded glyphs behind for the next one.
class art_font_manager : public base_object
{
public:
    art_font_manager();
    ~art_font_manager() override;

    // The font of that name, made empty and registered when there is none.
    reference_pointer<art_font> GetFont(const zel_string &Name);
    // The font of that name, or Times New Roman when there is none; makes nothing.
    reference_pointer<art_font> FindFont(const zel_string &Name);
    // Registers Font under its lower-cased name, or discards it and returns the font already known
    // by that name.
    reference_pointer<art_font> AddFont(ownership_pointer<art_font> Font);

    reference_pointer<art_font> GetTimesNewRoman() const { return TimesNewRoman; }
    reference_pointer<art_font> GetArial() const { return Arial; }

    int GetNumberOfFonts() const { return FontList.GetNumberOfElements(); }
    reference_pointer<art_font> GetFontAt(int Index) { return reference_pointer<art_font>(FontList[Index]); }

    // Takes the platform's font source and makes a face for each of its styles. A process has one
    // source, enumerated once; the source lives as long as the faces it made.
    void SetFontSource(ownership_pointer<art_font_source> Source);
    bool HasFontSource() const { return FontSource.IsSet(); }

private:
    // Declared first so that it dies last, after every face it made.
    ownership_pointer<art_font_source> FontSource;
    array<ownership_pointer<art_font>> FontList;
    zel_string_hash_map<reference_pointer<art_font>> NameTable;
    reference_pointer<art_font> TimesNewRoman;
    reference_pointer<art_font> Arial;
};

// The process's font manager, made on first use with stub faces for Times New Roman and Arial.
art_font_manager &GetFontManager();
// Ends the manager with every font and face; the next GetFontManager() starts afresh.
void DestroyFontManager();
