#pragma once

#include <cstdint>

#include "art_engine/fonts/art_font_source.h"
#include "zel_basics/array.h"
#include "zel_basics/zel_hash_map.h"
#include "zel_basics/zel_string.h"

// An installed style chosen to stand for one family and style index, and where its outlines are.
struct freetype_font_choice
{
    art_font_source_style Style;
    zel_string FilePath;
    int32_t FaceIndex = 0;
    // How far the style is from the plain width and the nominal weight of its style index; the
    // nearest one wins.
    int32_t WidthDistance = 0;
    int32_t WeightDistance = 0;
    bool IsOblique = false;
};

// The installed outline fonts as fontconfig lists them, with FreeType faces for them.
//
// A family name that fontconfig lists for several styles of one style index (a condensed or light
// style filed under the plain family as well as its own) gets the style nearest to plain width and
// nominal weight. Families that documents name and Linux machines lack (Arial, Times New Roman ...)
// are listed too, with the styles of the metric-compatible family that fontconfig names for them,
// when that family is installed.
class freetype_font_source : public art_font_source
{
public:
    freetype_font_source();
    ~freetype_font_source() override;

    void EnumerateStyles(array<art_font_source_style> &Styles) override;
    // Style must be one that EnumerateStyles gives.
    ownership_pointer<art_font_face> MakeFace(const art_font_source_style &Style) override;

    // How often this process has asked fontconfig for its fonts: at most once, however many sources
    // there are.
    static int32_t GetNumberOfFontListings();

private:
    // Fills Choices from the process's font list, once per source.
    void Choose();
    void Consider(const freetype_font_choice &Candidate);
    void AddMetricCompatibleFamily(const zel_string &WellKnownName);
    bool HasFamily(const zel_string &FamilyName);
    static zel_string GetKey(const zel_string &FamilyName, int32_t StyleIndex);

    bool HasChosen;
    array<freetype_font_choice> Choices;
    // From GetKey to the index in Choices.
    zel_string_hash_map<int32_t> ChoiceOfKey;
};

// Gives the process's font manager the installed fonts, unless it has a source already.
void InstallFreetypeFontSource();
