#include "rofa_linux_sal/freetype_font_source.h"

#include <cstdlib>

#include <fontconfig/fontconfig.h>

#include "art_engine/fonts/art_font_manager.h"
#include "rofa_linux_sal/art_freetype_font_face.h"
#include "zel_basics/debug.h"

namespace {

// fontconfig's list of the installed outline fonts, and the configuration that names their aliases.
// Listing takes a while on a machine with many fonts, so it is done once for the process and outlives
// every source and manager. The configuration is our own rather than fontconfig's process-wide one,
// so that unloading the library frees it.
struct installed_font_list
{
    FcConfig *Config = nullptr;
    FcFontSet *Fonts = nullptr;
    int32_t NumberOfListings = 0;

    ~installed_font_list()
    {
        if (Fonts != nullptr)
            FcFontSetDestroy(Fonts);
        if (Config != nullptr)
            FcConfigDestroy(Config);
    }
};

installed_font_list InstalledFonts;

installed_font_list &GetInstalledFonts()
{
    if (InstalledFonts.Fonts != nullptr)
        return InstalledFonts;
    InstalledFonts.NumberOfListings++;
    InstalledFonts.Config = FcInitLoadConfigAndFonts();
    // A machine whose fontconfig cannot start has no fonts; the stub faces stand in for all of them.
    if (InstalledFonts.Config == nullptr) {
        InstalledFonts.Fonts = FcFontSetCreate();
        return InstalledFonts;
    }
    FcPattern *Query = FcPatternBuild(nullptr, FC_OUTLINE, FcTypeBool, FcTrue, static_cast<char *>(nullptr));
    FcObjectSet *Objects = FcObjectSetBuild(FC_FAMILY, FC_WEIGHT, FC_SLANT, FC_WIDTH, FC_FILE, FC_INDEX, FC_VARIABLE,
                                            static_cast<char *>(nullptr));
    InstalledFonts.Fonts = FcFontList(InstalledFonts.Config, Query, Objects);
    FcObjectSetDestroy(Objects);
    FcPatternDestroy(Query);
    if (InstalledFonts.Fonts == nullptr)
        InstalledFonts.Fonts = FcFontSetCreate();
    return InstalledFonts;
}

int GetInteger(FcPattern *Font, const char *Object, int Default)
{
    int Value = Default;
    return FcPatternGetInteger(Font, Object, 0, &Value) == FcResultMatch ? Value : Default;
}

// Families that documents made on other systems name. Each gets the styles of the family that
// fontconfig gives as its metric-compatible alias, so text keeps its line breaks.
const char *const WellKnownFamilies[] = {
    "Arial", "Arial Narrow", "Times New Roman", "Courier New", "Helvetica", "Helvetica Narrow", "Times", "Courier",
    "Calibri", "Cambria", "Georgia", "Symbol", "Verdana", "Tahoma", "Trebuchet MS", "Comic Sans MS", "Impact",
    "Palatino Linotype", "Book Antiqua", "Bookman Old Style", "Century Schoolbook", "Lucida Console",
    "Lucida Sans Unicode",
};

bool IsNearer(const freetype_font_choice &Candidate, const freetype_font_choice &Chosen)
{
    if (Candidate.WidthDistance != Chosen.WidthDistance)
        return Candidate.WidthDistance < Chosen.WidthDistance;
    if (Candidate.WeightDistance != Chosen.WeightDistance)
        return Candidate.WeightDistance < Chosen.WeightDistance;
    if (Candidate.IsOblique != Chosen.IsOblique)
        return !Candidate.IsOblique;
    // The rest only makes the choice the same whatever order fontconfig lists the files in.
    if (Candidate.FilePath != Chosen.FilePath)
        return Candidate.FilePath < Chosen.FilePath;
    return Candidate.FaceIndex < Chosen.FaceIndex;
}

} // namespace

freetype_font_source::freetype_font_source() : HasChosen(false) {}

freetype_font_source::~freetype_font_source() {}

int32_t freetype_font_source::GetNumberOfFontListings()
{
    return InstalledFonts.NumberOfListings;
}

zel_string freetype_font_source::GetKey(const zel_string &FamilyName, int32_t StyleIndex)
{
    return FamilyName.ToLower() + "\t" + zel_string::FromInt(StyleIndex);
}

bool freetype_font_source::HasFamily(const zel_string &FamilyName)
{
    for (int32_t StyleIndex = 0; StyleIndex < 4; StyleIndex++) {
        if (ChoiceOfKey.KeyExists(GetKey(FamilyName, StyleIndex)))
            return true;
    }
    return false;
}

void freetype_font_source::Consider(const freetype_font_choice &Candidate)
{
    const art_font_source_style &Style = Candidate.Style;
    const zel_string Key = GetKey(Style.FamilyName, art_font_face::GetStyleIndexOfWeight(Style.Weight, Style.Italic));
    const int Slot = ChoiceOfKey.Find(Key);
    if (Slot < 0) {
        ChoiceOfKey.Insert(Key, Choices.Add(Candidate));
        return;
    }
    freetype_font_choice &Chosen = Choices[ChoiceOfKey.GetValueAt(Slot)];
    if (IsNearer(Candidate, Chosen))
        Chosen = Candidate;
}

void freetype_font_source::Choose()
{
    if (HasChosen)
        return;
    HasChosen = true;
    FcFontSet *Fonts = GetInstalledFonts().Fonts;
    for (int FontIndex = 0; FontIndex < Fonts->nfont; FontIndex++) {
        FcPattern *Font = Fonts->fonts[FontIndex];
        FcBool IsVariable = FcFalse;
        FcChar8 *File = nullptr;
        // A variable font is listed once more for each of its named styles, which are the ones to use.
        if (FcPatternGetBool(Font, FC_VARIABLE, 0, &IsVariable) == FcResultMatch && IsVariable)
            continue;
        if (FcPatternGetString(Font, FC_FILE, 0, &File) != FcResultMatch)
            continue;
        const int Slant = GetInteger(Font, FC_SLANT, FC_SLANT_ROMAN);
        const int Width = GetInteger(Font, FC_WIDTH, FC_WIDTH_NORMAL);
        freetype_font_choice Candidate;
        Candidate.Style.Weight = FcWeightToOpenType(GetInteger(Font, FC_WEIGHT, FC_WEIGHT_REGULAR));
        Candidate.Style.Italic = Slant != FC_SLANT_ROMAN;
        Candidate.FilePath = reinterpret_cast<const char *>(File);
        Candidate.FaceIndex = GetInteger(Font, FC_INDEX, 0);
        const bool IsBold = art_font_face::GetStyleIndexOfWeight(Candidate.Style.Weight, false) != 0;
        Candidate.WidthDistance = std::abs(Width - FC_WIDTH_NORMAL);
        Candidate.WeightDistance = std::abs(Candidate.Style.Weight - (IsBold ? 700 : 400));
        Candidate.IsOblique = Slant == FC_SLANT_OBLIQUE;
        // A style is filed under every family name it carries: its typographic family and its
        // legacy one, and names in other languages.
        FcChar8 *FamilyName = nullptr;
        for (int NameIndex = 0; FcPatternGetString(Font, FC_FAMILY, NameIndex, &FamilyName) == FcResultMatch;
             NameIndex++) {
            Candidate.Style.FamilyName = reinterpret_cast<const char *>(FamilyName);
            Consider(Candidate);
        }
    }
    for (const char *WellKnownName : WellKnownFamilies)
        AddMetricCompatibleFamily(WellKnownName);
}

void freetype_font_source::AddMetricCompatibleFamily(const zel_string &WellKnownName)
{
    FcConfig *Config = GetInstalledFonts().Config;
    if (Config == nullptr || HasFamily(WellKnownName))
        return;
    FcPattern *Request = FcPatternCreate();
    FcPatternAddString(Request, FC_FAMILY, reinterpret_cast<const FcChar8 *>(WellKnownName.GetString()));
    FcConfigSubstitute(Config, Request, FcMatchPattern);
    // fontconfig binds metric-compatible aliases as strongly as the name asked for, and merely
    // similar families and the generic fallbacks weakly.
    zel_string Substitute;
    FcPatternIter Family;
    if (FcPatternFindIter(Request, &Family, FC_FAMILY)) {
        const int NumberOfNames = FcPatternIterValueCount(Request, &Family);
        for (int NameIndex = 0; NameIndex < NumberOfNames && Substitute.IsEmpty(); NameIndex++) {
            FcValue Name;
            FcValueBinding Binding;
            if (FcPatternIterGetValue(Request, &Family, NameIndex, &Name, &Binding) != FcResultMatch ||
                Binding == FcValueBindingWeak || Name.type != FcTypeString)
                continue;
            const zel_string Candidate(reinterpret_cast<const char *>(Name.u.s));
            if (Candidate.CompareNoCase(WellKnownName) != 0 && HasFamily(Candidate))
                Substitute = Candidate;
        }
    }
    FcPatternDestroy(Request);
    if (Substitute.IsEmpty())
        return;
    const zel_string SubstituteKey = Substitute.ToLower();
    const int NumberOfInstalledChoices = Choices.GetNumberOfElements();
    for (int Index = 0; Index < NumberOfInstalledChoices; Index++) {
        if (Choices[Index].Style.FamilyName.ToLower() != SubstituteKey)
            continue;
        freetype_font_choice Alias = Choices[Index];
        Alias.Style.FamilyName = WellKnownName;
        Consider(Alias);
    }
}

void freetype_font_source::EnumerateStyles(array<art_font_source_style> &Styles)
{
    Choose();
    for (int Index = 0; Index < Choices.GetNumberOfElements(); Index++)
        Styles.Add(Choices[Index].Style);
}

ownership_pointer<art_font_face> freetype_font_source::MakeFace(const art_font_source_style &Style)
{
    Choose();
    const int32_t StyleIndex = art_font_face::GetStyleIndexOfWeight(Style.Weight, Style.Italic);
    const int Slot = ChoiceOfKey.Find(GetKey(Style.FamilyName, StyleIndex));
    TOVAS_ASSERT(Slot>=0, zel_string("no installed style for the family '") + Style.FamilyName + "'", this);
    const freetype_font_choice &Chosen = Choices[ChoiceOfKey.GetValueAt(Slot)];
    return ownership_pointer<art_font_face>(new art_freetype_font_face(StyleIndex, Chosen.FilePath, Chosen.FaceIndex));
}

void InstallFreetypeFontSource()
{
    art_font_manager &FontManager = GetFontManager();
    if (!FontManager.HasFontSource())
        FontManager.SetFontSource(ownership_pointer<art_font_source>(new freetype_font_source));
}
