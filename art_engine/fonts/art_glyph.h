#pragma once

#include <cstdint>

#include "art_engine/geometry/art_path.h"
#include "zel_basics/lwbase_object.h"
#include "zel_basics/lwpointers.h"
#include "zel_basics/point2d.h"

class xbd_tag;
class xbd_file;

// Font units come from a cell 1000 units high; everything kept in a glyph is in em units.
constexpr double ArtFontCellHeight = 1000.0;
constexpr double ArtFontUnitsToEm = 1.0 / ArtFontCellHeight;

// One character's outline in em units, y growing downward. Quadratic segments are two vertices of
// command 3 (control, end), cubic ones three of command 4; a closed contour ends with 79.
class art_glyph : public base_object
{
public:
    // Character 97, advance 1 em, box (1,1) at (0,0), no contours: the values a bare glyph tag means.
    art_glyph();
    art_glyph(int32_t GlyphChar, double XStep, point2d Size, point2d Origin);
    // From a "glyph" tag; absent attributes take the defaults above.
    explicit art_glyph(xbd_tag &Tag);
    ~art_glyph() override;

    // A new "glyph" tag in File, not yet linked into any parent; attributes equal to their defaults
    // are left out.
    ownership_pointer<xbd_tag> Save(xbd_file &File);

    int32_t GetChar() const { return GlyphChar; }
    void SetChar(int32_t NewChar) { GlyphChar = NewChar; }
    double GetXStep() const { return XStep; }
    void SetXStep(double NewXStep) { XStep = NewXStep; }
    const point2d &GetSize() const { return Size; }
    void SetSize(const point2d &NewSize) { Size = NewSize; }
    const point2d &GetOrigin() const { return Origin; }
    void SetOrigin(const point2d &NewOrigin) { Origin = NewOrigin; }
    art_path &GetPath() { return Path; }

private:
    int32_t GlyphChar;
    art_path Path;
    double XStep;
    point2d Size;
    point2d Origin;
};
