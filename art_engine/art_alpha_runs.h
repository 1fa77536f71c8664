#pragma once

#include <cstdint>

#include "art_engine/art_bitmap.h"
#include "zel_basics/array.h"
#include "zel_basics/point2d.h"

// Where a picture is wholly transparent, wholly opaque or neither, row by row. Composing a picture
// at full opacity gives the target the source bytes exactly where the source is opaque, and leaves
// it alone where the source is transparent, at any opacity; so with these runs at hand those parts
// are a plain copy and no work at all. The runs hold for the pixels as they were when measured: a
// picture that changes afterwards needs new ones.
//
// Neighbouring rows with the same runs form one band, kept once: most pictures are a few bands,
// so that the runs stay small and a band's rows are composed run by run in one tight loop.
class art_alpha_runs
{
public:
    enum run_kind
    {
        Transparent,
        Opaque,
        Mixed
    };

    // Shorter stretches of one kind count as mixed: the blend kernels treat them as fast as a
    // separate call would, and a picture with noise in its alpha would otherwise be all calls.
    static const int32_t ShortestRun = 8;

    art_alpha_runs();
    explicit art_alpha_runs(art_bitmap &Picture);

    // The size of the picture measured.
    int_point2d GetSize() const { return Size; }

    // Calls Function(Kind, Top, Rows, Start, Length) for each run that meets the rectangle of rows Top
    // to Bottom and columns Start to End (ends exclusive), cut to it: the run covers columns Start to
    // Start + Length in the Rows rows from Top on. Runs come band by band from the top, and left to
    // right within a band. The rectangle lies within the picture.
    template <class RunFunction>
    void ForEachRun(int32_t Top, int32_t Bottom, int32_t Start, int32_t End, RunFunction Function) const
    {
        const uint32_t *AllRuns = Runs.GetData();
        const band *Band = Bands.GetData();
        while (Band[1].FirstRow <= Top)
            Band++;
        for (; Band->FirstRow < Bottom; Band++) {
            int32_t BandTop = Band->FirstRow > Top ? Band->FirstRow : Top;
            int32_t BandBottom = Band[1].FirstRow < Bottom ? Band[1].FirstRow : Bottom;
            int32_t X = 0;
            for (int32_t I = Band->FirstRun; I < Band[1].FirstRun && X < End; I++) {
                int32_t RunEnd = X + static_cast<int32_t>(AllRuns[I] >> KindBits);
                if (RunEnd > Start) {
                    int32_t From = X > Start ? X : Start;
                    int32_t To = RunEnd < End ? RunEnd : End;
                    Function(static_cast<run_kind>(AllRuns[I] & KindMask), BandTop, BandBottom - BandTop, From,
                             To - From);
                }
                X = RunEnd;
            }
        }
    }

private:
    static const uint32_t KindBits = 2;
    static const uint32_t KindMask = (1u << KindBits) - 1;

    struct band
    {
        int32_t FirstRow;
        // The index of the band's first run in Runs.
        int32_t FirstRun;
    };

    static void AddRun(array<uint32_t> &RowRuns, run_kind Kind, int32_t Length);
    bool RepeatsLastBand(const array<uint32_t> &RowRuns) const;

    int_point2d Size;
    // Each run is its length shifted left by KindBits, or'ed with its kind; a band's runs cover its
    // rows from left to right, and no two neighbours in a band are of the same kind.
    array<uint32_t> Runs;
    // From the top; the last one starts at the row below the picture, at the end of Runs, and has
    // no rows.
    array<band> Bands;
};
