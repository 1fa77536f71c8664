#include "art_engine/pixels/art_alpha_runs.h"

namespace {

art_alpha_runs::run_kind KindOf(const agg::rgba8 &Pixel)
{
    return Pixel.a == 0 ? art_alpha_runs::Transparent : Pixel.a == 255 ? art_alpha_runs::Opaque : art_alpha_runs::Mixed;
}

} // namespace

art_alpha_runs::art_alpha_runs() : LastBand(-1) {}

art_alpha_runs::art_alpha_runs(art_bitmap &Picture) : Size(Picture.GetSize()), LastBand(-1)
{
    array<uint32_t> RowRuns;
    for (int32_t Y = 0; Y < Size.Y; Y++) {
        const agg::rgba8 *Row = Picture.GetPixelRow(Y);
        RowRuns.Clear();
        for (int32_t X = 0; X < Size.X;) {
            run_kind Kind = KindOf(Row[X]);
            int32_t End = X + 1;
            while (End < Size.X && KindOf(Row[End]) == Kind)
                End++;
            AddRun(RowRuns, End - X < ShortestRun ? Mixed : Kind, End - X);
            X = End;
        }
        if (LastBand >= 0 && RepeatsLastBand(RowRuns)) {
            Codes[LastBand]++;
            continue;
        }
        LastBand = Codes.Add(1);
        Codes.Add(uint32_t(RowRuns.GetNumberOfElements()));
        for (int I = 0; I < RowRuns.GetNumberOfElements(); I++)
            Codes.Add(RowRuns[I]);
    }
}

void art_alpha_runs::AddRun(array<uint32_t> &RowRuns, run_kind Kind, int32_t Length)
{
    int Last = RowRuns.GetNumberOfElements() - 1;
    if (Last >= 0 && (RowRuns[Last] & KindMask) == uint32_t(Kind))
        RowRuns[Last] += uint32_t(Length) << KindBits;
    else
        RowRuns.Add(uint32_t(Length) << KindBits | uint32_t(Kind));
}

bool art_alpha_runs::RepeatsLastBand(const array<uint32_t> &RowRuns) const
{
    if (Codes[LastBand + 1] != uint32_t(RowRuns.GetNumberOfElements()))
        return false;
    for (int I = 0; I < RowRuns.GetNumberOfElements(); I++) {
        if (Codes[LastBand + 2 + I] != RowRuns[I])
            return false;
    }
    return true;
}
