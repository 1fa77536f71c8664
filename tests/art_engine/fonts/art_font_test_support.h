#pragma once

#include <gtest/gtest.h>

#include <cstdint>

#include "art_engine/fonts/art_font_face.h"
#include "art_engine/fonts/art_font_manager.h"
#include "art_engine/fonts/art_glyph.h"
#include "art_engine/geometry/art_path.h"

namespace art_font_test {

// A whole face that makes every character's outline from its code, so two faces of the same kind
// agree glyph for glyph. Coordinates are multiples of 1/64, exact as floats, and the outline uses
// every vertex command. Codes in Missing are ones it cannot supply.
class procedural_font_face : public art_font_face
{
public:
    explicit procedural_font_face(int32_t StyleIndex, int32_t MissingFrom = 1 << 30)
        : art_font_face(StyleIndex), MissingFrom(MissingFrom)
    {
    }

    ownership_pointer<art_glyph> LoadGlyph(int32_t GlyphChar) override
    {
        Loads++;
        if (GlyphChar >= MissingFrom)
            return ownership_pointer<art_glyph>();
        return MakeGlyph(GlyphChar, GetStyleIndex());
    }
    double GetAscender() override { return 0.75; }
    double GetDescender() override { return 0.25; }
    int32_t GetDefaultGlyph() override { return 97; }

    static ownership_pointer<art_glyph> MakeGlyph(int32_t GlyphChar, int32_t StyleIndex)
    {
        const double U = (GlyphChar % 32) / 64.0 + StyleIndex / 16.0;
        ownership_pointer<art_glyph> Glyph(new art_glyph(GlyphChar, (GlyphChar % 7 + 3) / 8.0, point2d(0.5, 0.75),
                                                         point2d(0.125, 0.75)));
        art_path &Path = Glyph->GetPath();
        Path.move_to(U, 0);
        Path.line_to(U + 0.5, 0);
        Path.curve3(U + 0.625, -0.25, U + 0.5, -0.5);
        Path.curve4(U + 0.375, -0.625, U + 0.25, -0.75, U + 0.125, -0.5);
        Path.close_polygon();
        if (GlyphChar % 2 == 0) {
            Path.move_to(U + 0.25, -0.125);
            Path.line_to(U + 0.3125, -0.125);
            Path.line_to(U + 0.3125, -0.1875);
            Path.close_polygon();
        }
        return Glyph;
    }

    int Loads = 0;

private:
    int32_t MissingFrom;
};

// The font manager is process-wide; each test starts with a fresh one and ends it, so no font outlives
// its test.
class font_manager_test : public testing::Test
{
protected:
    void SetUp() override { DestroyFontManager(); }
    void TearDown() override { DestroyFontManager(); }
};

inline testing::AssertionResult SamePath(art_path &Got, art_path &Want)
{
    if (Got.total_vertices() != Want.total_vertices())
        return testing::AssertionFailure() << "vertex count " << Got.total_vertices() << ", want "
                                           << Want.total_vertices();
    for (unsigned Index = 0; Index < Want.total_vertices(); Index++) {
        double GotX, GotY, WantX, WantY;
        const unsigned GotCommand = Got.vertex(Index, &GotX, &GotY);
        const unsigned WantCommand = Want.vertex(Index, &WantX, &WantY);
        if (GotCommand != WantCommand || GotX != WantX || GotY != WantY)
            return testing::AssertionFailure() << "vertex " << Index << ": got (" << GotCommand << ", " << GotX
                                               << ", " << GotY << "), want (" << WantCommand << ", " << WantX
                                               << ", " << WantY << ")";
    }
    return testing::AssertionSuccess();
}

} // namespace art_font_test
