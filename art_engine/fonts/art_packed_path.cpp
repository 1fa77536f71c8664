#include "art_engine/fonts/art_packed_path.h"

#include <cstring>

#include "xbd/xbd_asi.h"
#include "zel_basics/array.h"
#include "zel_basics/debug.h"
#include "zel_basics/zel_error.h"

namespace {

void AppendASI(zel_string &Bytes, uint32_t Value)
{
    char Buffer[5];
    char *End = WriteASI(Buffer, Value);
    Bytes += zel_string(Buffer, static_cast<int>(End - Buffer));
}

void AppendPoints(zel_string &Bytes, const array<save_point> &Points)
{
    Bytes += zel_string(reinterpret_cast<const char *>(Points.GetData()),
                        Points.GetNumberOfElements() * SavePointRecordSize);
}

int GetSaveCommand(unsigned Command)
{
    if ((Command & agg::path_flags_close) != 0)
        return save_point::EndClosedPoly;
    if (Command == agg::path_cmd_stop || Command == agg::path_cmd_end_poly)
        return save_point::EndOpenPoly;
    if (Command >= agg::path_cmd_move_to && Command <= agg::path_cmd_curve4)
        return static_cast<int>(Command) - 1;
    TOVAS_ASSERT(Command<5 || Command>7, nullptr);
    return save_point::EndClosedPoly;
}

// Packed integers may run up to the end of the string and no further; the counter that limits them
// is the number of bytes that were left when the integer began.
uint32_t ReadPackedASI(const char *&D, const char *End)
{
    const int MaxLength = static_cast<int>(End - D);
    uint32_t Value = 0;
    int Shift = 0;
    for (;;) {
        TOVAS_ASSERT(Shift<32, nullptr);
        if (D >= End)
            throw zel_error(zel_string("Invalid ASI - exceeded MaxLength=") + zel_string::FromInt(MaxLength) +
                            " Value at Error=" + zel_string::FromUnsigned(Value));
        const unsigned char Byte = static_cast<unsigned char>(*D++);
        Value += static_cast<uint32_t>(Byte & 0x7F) << Shift;
        Shift += 7;
        if ((Byte & 0x80) == 0)
            return Value;
    }
}

save_point ReadSavePoint(const char *&D, const char *End)
{
    const size_t BytesLeft = static_cast<size_t>(End - D);
    TOVAS_ASSERT(BytesLeft>=sizeof(save_point), nullptr);
    save_point Point;
    std::memcpy(&Point, D, sizeof(save_point));
    D += sizeof(save_point);
    return Point;
}

void AddGroup(art_path &Path, uint32_t RunCommand, const save_point *Group)
{
    switch (RunCommand) {
    case save_point::MoveTo:
        Path.move_to(Group[0].X, Group[0].Y);
        break;
    case save_point::LineTo:
        Path.line_to(Group[0].X, Group[0].Y);
        break;
    case save_point::Curve3:
        Path.curve3(Group[0].X, Group[0].Y, Group[1].X, Group[1].Y);
        break;
    default:
        Path.curve4(Group[0].X, Group[0].Y, Group[1].X, Group[1].Y, Group[2].X, Group[2].Y);
        break;
    }
}

} // namespace

zel_string EncodePackedPath(art_path &Path)
{
    zel_string Output;
    zel_string PolygonBytes;
    array<save_point> RunPoints;
    uint32_t NumRuns = 0;
    // Not a vertex command, so the first vertex always starts a run.
    int CurrentCommand = save_point::EndClosedPoly;
    const unsigned NumVertices = Path.total_vertices();
    for (unsigned Index = 0; Index <= NumVertices; Index++) {
        double X = 0;
        double Y = 0;
        // One step past the last vertex stands an end command, so the last polygon is written too.
        const unsigned Command =
            Index < NumVertices ? Path.vertex(Index, &X, &Y) : static_cast<unsigned>(agg::path_cmd_stop);
        const int SaveCommand = GetSaveCommand(Command);
        const save_point Point = {static_cast<float>(X), static_cast<float>(Y)};
        const bool IsVertex = SaveCommand <= save_point::Curve4;
        if (IsVertex && SaveCommand == CurrentCommand) {
            RunPoints.Add(Point);
            continue;
        }
        if (RunPoints.GetNumberOfElements() > 0) {
            AppendASI(PolygonBytes, static_cast<uint32_t>(RunPoints.GetNumberOfElements()));
            AppendASI(PolygonBytes, static_cast<uint32_t>(CurrentCommand));
            AppendPoints(PolygonBytes, RunPoints);
            NumRuns++;
            RunPoints.Clear();
        }
        if (IsVertex) {
            RunPoints.Add(Point);
        } else if (NumRuns > 0) {
            TOVAS_ASSERT(CurrentCommand!=save_point::EndOpenPoly, nullptr);
            TOVAS_ASSERT(CurrentCommand!=save_point::EndClosedPoly, nullptr);
            AppendASI(Output, SaveCommand == save_point::EndClosedPoly ? 1 : 0);
            AppendASI(Output, NumRuns);
            Output += PolygonBytes;
            PolygonBytes = zel_string();
            NumRuns = 0;
        }
        CurrentCommand = SaveCommand;
    }
    return Output;
}

void DecodePackedPath(const zel_string &Bytes, art_path &Path)
{
    const char *D = Bytes.GetString();
    const char *End = D + Bytes.GetLength();
    while (D < End) {
        ReadPackedASI(D, End);
        const uint32_t NumRuns = ReadPackedASI(D, End);
        TOVAS_ASSERT(NumRuns>0, nullptr);
        for (uint32_t Run = 0; Run < NumRuns; Run++) {
            const uint32_t NumPoints = ReadPackedASI(D, End);
            const uint32_t RunCommand = ReadPackedASI(D, End);
            if (RunCommand > save_point::Curve4)
                TOVAS_ASSERT(false, nullptr);
            // A curve takes its points in twos or threes; points left over at the end of a run make
            // no segment.
            const uint32_t GroupSize = RunCommand == save_point::Curve3 ? 2 : RunCommand == save_point::Curve4 ? 3 : 1;
            save_point Group[3];
            for (uint32_t PointIndex = 0; PointIndex < NumPoints; PointIndex++) {
                Group[PointIndex % GroupSize] = ReadSavePoint(D, End);
                if (PointIndex % GroupSize == GroupSize - 1)
                    AddGroup(Path, RunCommand, Group);
            }
        }
        Path.close_polygon();
    }
}
