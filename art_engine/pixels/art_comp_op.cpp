#include "art_engine/pixels/art_comp_op.h"

namespace {

typedef agg::int8u byte;

// (x * y + 255) >> 8: the product of two bytes as the composite operations round it.
inline int Scale(int X, int Y) { return (X * Y + 255) >> 8; }

inline void ScaleByCover(byte &R, byte &G, byte &B, byte &A, agg::cover_type Cover)
{
    if (Cover >= 255)
        return;
    R = static_cast<byte>(Scale(R, Cover));
    G = static_cast<byte>(Scale(G, Cover));
    B = static_cast<byte>(Scale(B, Cover));
    A = static_cast<byte>(Scale(A, Cover));
}

inline byte UnionAlpha(int SourceAlpha, int TargetAlpha)
{
    return static_cast<byte>(SourceAlpha + TargetAlpha - Scale(SourceAlpha, TargetAlpha));
}

// The AGG release at hand no longer carries these three, so the engine defines them itself, in the
// rounding of destination-over.

// Stretches each colour byte away from half the target's alpha by how far the source lies from half
// its own; alpha stays.
void CompositeContrast(byte *p, byte r, byte g, byte b, byte a, agg::cover_type cover)
{
    ScaleByCover(r, g, b, a, cover);
    int TargetAlpha = p[agg::order_rgba::A];
    int HalfTarget = TargetAlpha >> 1;
    int HalfSource = a >> 1;
    const byte Source[3] = {r, g, b};
    const int Lanes[3] = {agg::order_rgba::R, agg::order_rgba::G, agg::order_rgba::B};
    for (int I = 0; I < 3; I++) {
        int Stretched = (((p[Lanes[I]] - HalfTarget) * ((Source[I] - HalfSource) * 2 + 255)) >> 8) + HalfTarget;
        p[Lanes[I]] = static_cast<byte>(Stretched < 0 ? 0 : (Stretched > TargetAlpha ? TargetAlpha : Stretched));
    }
}

// Dca' = (Da - Dca) * Sa + Dca * (1 - Sa); Da' = Sa + Da - Sa * Da.
void CompositeInvert(byte *p, byte r, byte g, byte b, byte a, agg::cover_type cover)
{
    ScaleByCover(r, g, b, a, cover);
    if (a == 0)
        return;
    int TargetAlpha = p[agg::order_rgba::A];
    const int Lanes[3] = {agg::order_rgba::R, agg::order_rgba::G, agg::order_rgba::B};
    for (int Lane : Lanes)
        p[Lane] = static_cast<byte>(Scale(TargetAlpha - p[Lane], a) + Scale(p[Lane], 255 - a));
    p[agg::order_rgba::A] = UnionAlpha(a, TargetAlpha);
}

// Dca' = (Da - Dca) * Sca + Dca * (1 - Sa); Da' = Sa + Da - Sa * Da.
void CompositeInvertRgb(byte *p, byte r, byte g, byte b, byte a, agg::cover_type cover)
{
    ScaleByCover(r, g, b, a, cover);
    if (a == 0)
        return;
    int TargetAlpha = p[agg::order_rgba::A];
    const byte Source[3] = {r, g, b};
    const int Lanes[3] = {agg::order_rgba::R, agg::order_rgba::G, agg::order_rgba::B};
    for (int I = 0; I < 3; I++)
        p[Lanes[I]] = static_cast<byte>(Scale(TargetAlpha - p[Lanes[I]], Source[I]) + Scale(p[Lanes[I]], 255 - a));
    p[agg::order_rgba::A] = UnionAlpha(a, TargetAlpha);
}

template <template <class, class> class Operation> constexpr art_comp_op_function Agg()
{
    return Operation<agg::rgba8, agg::order_rgba>::blend_pix;
}

} // namespace

void CompositeDstOver(byte *p, byte r, byte g, byte b, byte a, agg::cover_type cover)
{
    ScaleByCover(r, g, b, a, cover);
    int TargetAlpha = p[agg::order_rgba::A];
    int Uncovered = 255 - TargetAlpha;
    p[agg::order_rgba::R] = static_cast<byte>(p[agg::order_rgba::R] + Scale(r, Uncovered));
    p[agg::order_rgba::G] = static_cast<byte>(p[agg::order_rgba::G] + Scale(g, Uncovered));
    p[agg::order_rgba::B] = static_cast<byte>(p[agg::order_rgba::B] + Scale(b, Uncovered));
    p[agg::order_rgba::A] = UnionAlpha(a, TargetAlpha);
}

const art_comp_op_function ArtCompOpTable[CompOpCount] = {
    Agg<agg::comp_op_rgba_clear>(),
    Agg<agg::comp_op_rgba_src>(),
    Agg<agg::comp_op_rgba_dst>(),
    Agg<agg::comp_op_rgba_src_over>(),
    CompositeDstOver,
    Agg<agg::comp_op_rgba_src_in>(),
    Agg<agg::comp_op_rgba_dst_in>(),
    Agg<agg::comp_op_rgba_src_out>(),
    Agg<agg::comp_op_rgba_dst_out>(),
    Agg<agg::comp_op_rgba_src_atop>(),
    Agg<agg::comp_op_rgba_dst_atop>(),
    Agg<agg::comp_op_rgba_xor>(),
    Agg<agg::comp_op_rgba_plus>(),
    Agg<agg::comp_op_rgba_minus>(),
    Agg<agg::comp_op_rgba_multiply>(),
    Agg<agg::comp_op_rgba_screen>(),
    Agg<agg::comp_op_rgba_overlay>(),
    Agg<agg::comp_op_rgba_darken>(),
    Agg<agg::comp_op_rgba_lighten>(),
    Agg<agg::comp_op_rgba_color_dodge>(),
    Agg<agg::comp_op_rgba_color_burn>(),
    Agg<agg::comp_op_rgba_hard_light>(),
    Agg<agg::comp_op_rgba_soft_light>(),
    Agg<agg::comp_op_rgba_difference>(),
    Agg<agg::comp_op_rgba_exclusion>(),
    CompositeContrast,
    CompositeInvert,
    CompositeInvertRgb,
};
