#include "rofa_linux_sal/art_freetype_font_face.h"

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H
#include FT_TRUETYPE_TABLES_H

#include "zel_basics/debug.h"

namespace {

// One FreeType instance serves every realised face and lives exactly as long as they do, so a
// process that never draws text never starts it and unloading leaves nothing behind.
FT_Library SharedLibrary = nullptr;
int32_t SharedLibraryUsers = 0;

FT_Library AcquireLibrary()
{
    if (SharedLibraryUsers == 0) {
        FT_Library Library = nullptr;
        FT_Init_FreeType(&Library);
        TOVAS_ASSERT(Library, nullptr);
        SharedLibrary = Library;
    }
    SharedLibraryUsers++;
    return SharedLibrary;
}

void ReleaseLibrary()
{
    SharedLibraryUsers--;
    if (SharedLibraryUsers == 0) {
        FT_Done_FreeType(SharedLibrary);
        SharedLibrary = nullptr;
    }
}

// Receives the contours of one outline in font units and writes them as path commands in em units.
struct outline_writer
{
    art_path &Path;
    double Scale;
    FT_Vector ContourStart;
    // A line is held back until the next segment: the one that only returns to the contour's start
    // is left out, since the close flag draws it.
    bool IsLinePending;
    FT_Vector PendingLineEnd;

    outline_writer(art_path &Path, double Scale)
        : Path(Path), Scale(Scale), ContourStart(), IsLinePending(false), PendingLineEnd()
    {
    }

    // Font units grow upward and paths grow downward: y is flipped here and nowhere else.
    double X(const FT_Vector &Point) const { return Point.x * Scale; }
    double Y(const FT_Vector &Point) const { return -Point.y * Scale; }

    void FlushLine()
    {
        if (IsLinePending)
            Path.line_to(X(PendingLineEnd), Y(PendingLineEnd));
        IsLinePending = false;
    }

    void EndContour()
    {
        if (IsLinePending && PendingLineEnd.x == ContourStart.x && PendingLineEnd.y == ContourStart.y)
            IsLinePending = false;
        FlushLine();
        Path.end_poly(agg::path_flags_close);
    }

    static outline_writer &Of(void *User) { return *static_cast<outline_writer *>(User); }

    static int MoveTo(const FT_Vector *To, void *User)
    {
        outline_writer &Writer = Of(User);
        Writer.EndContour();
        Writer.ContourStart = *To;
        Writer.Path.move_to(Writer.X(*To), Writer.Y(*To));
        return 0;
    }

    static int LineTo(const FT_Vector *To, void *User)
    {
        outline_writer &Writer = Of(User);
        Writer.FlushLine();
        Writer.IsLinePending = true;
        Writer.PendingLineEnd = *To;
        return 0;
    }

    static int ConicTo(const FT_Vector *Control, const FT_Vector *To, void *User)
    {
        outline_writer &Writer = Of(User);
        Writer.FlushLine();
        Writer.Path.curve3(Writer.X(*Control), Writer.Y(*Control), Writer.X(*To), Writer.Y(*To));
        return 0;
    }

    static int CubicTo(const FT_Vector *Control1, const FT_Vector *Control2, const FT_Vector *To, void *User)
    {
        outline_writer &Writer = Of(User);
        Writer.FlushLine();
        Writer.Path.curve4(Writer.X(*Control1), Writer.Y(*Control1), Writer.X(*Control2), Writer.Y(*Control2),
                           Writer.X(*To), Writer.Y(*To));
        return 0;
    }
};

} // namespace

art_freetype_font_face::art_freetype_font_face(int32_t StyleIndex, const zel_string &FilePath, int32_t FaceIndex)
    : art_font_face(StyleIndex), FilePath(FilePath), FaceIndex(FaceIndex), Face(nullptr), FontUnitsToEm(0),
      Ascender(0), Descender(0)
{
}

art_freetype_font_face::~art_freetype_font_face()
{
    if (Face != nullptr) {
        FT_Done_Face(Face);
        ReleaseLibrary();
    }
}

void art_freetype_font_face::Realise()
{
    if (Face != nullptr)
        return;
    FT_Library Library = AcquireLibrary();
    FT_Face Font = nullptr;
    FT_New_Face(Library, FilePath.GetString(), FaceIndex, &Font);
    if (Font == nullptr) {
        ReleaseLibrary();
        TOVAS_ASSERT(Font, zel_string("cannot open the font file '") + FilePath + "'", this);
    }

    double CellAscent = Font->ascender;
    double CellDescent = -Font->descender;
    const TT_OS2 *Metrics = static_cast<const TT_OS2 *>(FT_Get_Sfnt_Table(Font, FT_SFNT_OS2));
    if (Metrics != nullptr && Metrics->version != 0xFFFF && Metrics->usWinAscent + Metrics->usWinDescent > 0) {
        CellAscent = Metrics->usWinAscent;
        CellDescent = Metrics->usWinDescent;
    }
    if (!(CellAscent + CellDescent > 0)) {
        FT_Done_Face(Font);
        ReleaseLibrary();
        TOVAS_ASSERT(CellAscent+CellDescent>0, zel_string("no metrics in the font file '") + FilePath + "'", this);
    }

    Face = Font;
    FontUnitsToEm = ArtFontCellHeight / (CellAscent + CellDescent) * ArtFontUnitsToEm;
    Ascender = CellAscent * FontUnitsToEm;
    Descender = CellDescent * FontUnitsToEm;
}

double art_freetype_font_face::GetFontUnitsToEm()
{
    Realise();
    return FontUnitsToEm;
}

ownership_pointer<art_glyph> art_freetype_font_face::LoadGlyph(int32_t GlyphChar)
{
    Realise();
    // Glyph 0, which a lookup of a missing character gives, is the font's own missing-glyph shape.
    const FT_UInt GlyphIndex = FT_Get_Char_Index(Face, static_cast<FT_ULong>(static_cast<uint32_t>(GlyphChar)));
    // Unscaled is also unhinted: the outline comes in exact font units.
    if (FT_Load_Glyph(Face, GlyphIndex, FT_LOAD_NO_SCALE) != 0 || Face->glyph->format != FT_GLYPH_FORMAT_OUTLINE)
        return ownership_pointer<art_glyph>();

    const FT_Glyph_Metrics &Metrics = Face->glyph->metrics;
    const double Scale = FontUnitsToEm;
    // The box origin is its top left with y growing upward, as the font gives it.
    const point2d Size(Metrics.width * Scale, Metrics.height * Scale);
    const point2d Origin(Metrics.horiBearingX * Scale, Metrics.horiBearingY * Scale);
    ownership_pointer<art_glyph> Glyph(new art_glyph(GlyphChar, Metrics.horiAdvance * Scale, Size, Origin));
    FT_Outline_Funcs Functions;
    Functions.move_to = outline_writer::MoveTo;
    Functions.line_to = outline_writer::LineTo;
    Functions.conic_to = outline_writer::ConicTo;
    Functions.cubic_to = outline_writer::CubicTo;
    // The points come doubled, so that the on-curve point halfway between two off-curve points,
    // which FreeType works out in whole numbers, is exact.
    Functions.shift = 1;
    Functions.delta = 0;
    outline_writer Writer(Glyph->GetPath(), Scale / 2);
    if (FT_Outline_Decompose(&Face->glyph->outline, &Functions, &Writer) != 0)
        return ownership_pointer<art_glyph>();
    Writer.EndContour();
    return Glyph;
}

double art_freetype_font_face::GetAscender()
{
    Realise();
    return Ascender;
}

double art_freetype_font_face::GetDescender()
{
    Realise();
    return Descender;
}

int32_t art_freetype_font_face::GetDefaultGlyph()
{
    return 97;
}
