#include "art_engine/fonts/art_glyph_drawing.h"

#include "art_engine/fonts/art_font_face.h"
#include "art_engine/fonts/art_glyph.h"
#include "art_engine/geometry/art_path.h"
#include "art_engine/pixels/art_bitmap.h"

void DrawGlyph(art_bitmap &Bitmap, art_glyph &Glyph, agg::rgba8 Color, const agg::trans_affine &Matrix,
               double FontSize, point2d Position)
{
    agg::trans_affine GlyphMatrix = agg::trans_affine_scaling(FontSize);
    GlyphMatrix *= agg::trans_affine_translation(Position.X, Position.Y);
    GlyphMatrix *= Matrix;
    Bitmap.FillPath(Glyph.GetPath(), Color, GlyphMatrix, false, GetMatrixMaxScale(Matrix) * FontSize);
}

point2d DrawGlyphString(art_bitmap &Bitmap, art_font_face &Face, const zel_string &Text, agg::rgba8 Color,
                        const agg::trans_affine &Matrix, double FontSize, point2d Position)
{
    point2d Pen = Position;
    for (int Index = 0; Index < Text.GetLength(); Index++) {
        art_glyph &Glyph = *Face.GetGlyph(static_cast<unsigned char>(Text[Index]));
        DrawGlyph(Bitmap, Glyph, Color, Matrix, FontSize, Pen);
        Pen.X += Glyph.GetXStep() * FontSize;
    }
    return Pen;
}
