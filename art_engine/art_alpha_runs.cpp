#include "art_engine/art_alpha_runs.h"

namespace {

art_alpha_runs::run_kind KindOf(const agg::rgba8 &Pixel)
{
    return Pixel.a == 0 ? art_alpha_runs::Transparent : Pixel.a == 255 ? art_alpha_runs::Opaque : art_alpha_runs::Mixed;
}

} // namespace

art_alpha_runs::art_alpha_runs()
{
    Bands.Add(band{0, 0});
}

art_alpha_runs::art_alpha_runs(art_bitmap &Picture) : Size(Picture.GetSize())
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
        if (Y > 0 && RepeatsLastBand(RowRuns))
            continue;
        Bands.Add(band{Y, Runs.GetNumberOfElements()});
        for (int I = 0; I < RowRuns.GetNumberOfElements(); I++)
            Runs.Add(RowRuns[I]);
    }
    Bands.Add(band{Size.Y, Runs.GetNumberOfElements()});
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
    int32_t First = Bands[Bands.GetNumberOfElements() - 1].FirstRun;
    if (Runs.GetNumberOfElements() - First != RowRuns.GetNumberOfElements())
        return false;
    for (int I = 0; I < RowRuns.GetNumberOfElements(); I++) {
        if (Runs[First + I] != RowRuns[I])
            return false;
    }
    return true;
}
