#pragma once

#include <cstdint>

#include "art_engine/pixels/art_bitmap.h"
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

    // Shorter stretches of one kind count as mixed and go to the blend kernel with their
    // neighbours, which gives them the same bytes: a picture with noise in its alpha would
    // otherwise be nothing but runs of a pixel or two, each a call of its own.
    static const int32_t ShortestRun = 4;

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
        const uint32_t *Code = Codes.GetData();
        const uint32_t *CodesEnd = Code + Codes.GetNumberOfElements();
        for (int32_t BandTop = 0; Code < CodesEnd && BandTop < Bottom;) {
            int32_t BandBottom = BandTop + static_cast<int32_t>(Code[0]);
            const uint32_t *Run = Code + 2;
            const uint32_t *BandEnd = Run + Code[1];
            int32_t RowsTop = BandTop > Top ? BandTop : Top;
            int32_t RowsBottom = BandBottom < Bottom ? BandBottom : Bottom;
            for (int32_t X = 0; RowsTop < RowsBottom && Run < BandEnd && X < End; Run++) {
                int32_t RunEnd = X + static_cast<int32_t>(*Run >> KindBits);
                if (RunEnd > Start) {
                    int32_t From = X > Start ? X : Start;
                    int32_t To = RunEnd < End ? RunEnd : End;
                    Function(static_cast<run_kind>(*Run & KindMask), RowsTop, RowsBottom - RowsTop, From, To - From);
                }
                X = RunEnd;
            }
            Code = BandEnd;
            BandTop = BandBottom;
        }
    }

private:
    static const uint32_t KindBits = 2;
    static const uint32_t KindMask = (1u << KindBits) - 1;

    static void AddRun(array<uint32_t> &RowRuns, run_kind Kind, int32_t Length);
    bool RepeatsLastBand(const array<uint32_t> &RowRuns) const;

    int_point2d Size;
    // The bands from the top, one after the other, in one block that a composite reads from start
    // to end: each is its number of rows, its number of runs, then the runs. Each run is its length
    // shifted left by KindBits, or'ed with its kind; a band's runs cover its rows from left to
    // right, and no two neighbours in a band are of the same kind.
    array<uint32_t> Codes;
    // Where the last band starts in Codes.
    int32_t LastBand;
};
