// rofa-tool: the library's features for scripts and tests, one command a call. Exit status 0 on
// success; on failure the error's text goes to standard error behind "rofa-tool: ", with status 1, or
// 2 for wrong usage.
#include <cerrno>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>

#include <agg_trans_affine.h>

#include "art_engine/documents/art_builtin_documents.h"
#include "art_engine/documents/art_file.h"
#include "art_engine/images/art_image_codecs.h"
#include "art_engine/objects/art_cache.h"
#include "art_engine/pixels/art_bitmap.h"
#include "art_engine/pixels/art_blend.h"
#include "hosts/object_listing.h"
#include "hosts/object_tree_loading.h"
#include "hosts/object_tree_saving.h"
#include "hosts/xbd_dump.h"
#include "rofa_lib/rofa_plugin_api.h"
#include "rofa_lib/stdio_file_streams.h"
#include "xbd/xbd.h"
#include "zel_basics/zel_error.h"

namespace {

const char *const Usage = "usage: rofa-tool version\n"
                          "       rofa-tool dump FILE\n"
                          "       rofa-tool compile IN OUT\n"
                          "       rofa-tool objects FILE\n"
                          "       rofa-tool resave IN OUT\n"
                          "       rofa-tool render IN OUT.png [--size WxH] [--zoom Z] [--time T]"
                          " [--background RRGGBBAA]\n"
                          "       rofa-tool showcase OUT.png [--size WxH] [--zoom Z] [--time T]"
                          " [--background RRGGBBAA]\n";

// Wrong usage; Problem, when not empty, says what was wrong before the usage is shown.
struct usage_error
{
    zel_string Problem;
};

// A picture larger than this is refused before its pixels are allocated: a document's canvas or a
// zoom can ask for any size.
const int64_t MaximumRenderPixels = int64_t(1) << 26;

void WriteStandardOutput(const zel_string &Text)
{
    std::fwrite(Text.GetString(), 1, static_cast<size_t>(Text.GetLength()), stdout);
}

void WriteFile(const zel_string &Path, const zel_string &Bytes)
{
    stdio_write_file_stream Out;
    Out.CreateFile(Path);
    Out.WriteData(Bytes.GetString(), Bytes.GetLength());
    Out.CloseFile();
}

int RunVersion(int ArgumentCount, char **)
{
    if (ArgumentCount != 2)
        throw usage_error();
    std::printf("%s\n", RofaAppGetVersionString());
    return 0;
}

int RunDump(int ArgumentCount, char **Arguments)
{
    if (ArgumentCount != 3)
        throw usage_error();
    ownership_pointer<xbd_file> File = xbd_file::LoadXBDFile(Arguments[2]);
    WriteStandardOutput(DumpXBDTree(*File));
    return 0;
}

int RunCompile(int ArgumentCount, char **Arguments)
{
    if (ArgumentCount != 4)
        throw usage_error();
    ownership_pointer<xbd_file> File = xbd_file::LoadXBDFile(Arguments[2]);
    WriteFile(Arguments[3], File->GetZELXMLv1String());
    return 0;
}

// A document of a newer minor version loads, with a warning that does not change the exit status.
void ShowWarning(const zel_string &Warning)
{
    if (!Warning.IsEmpty()) {
        std::fprintf(stderr, "rofa-tool: %s\n", ArtFileLoadWarningTitle);
        std::fwrite(Warning.GetString(), 1, static_cast<size_t>(Warning.GetLength()), stderr);
        std::fputs("\n", stderr);
    }
}

ownership_pointer<art_file> LoadDocumentWithWarning(const zel_string &FileName)
{
    zel_string Warning;
    ownership_pointer<art_file> Document = LoadDocument(FileName, Warning);
    ShowWarning(Warning);
    return Document;
}

int RunObjects(int ArgumentCount, char **Arguments)
{
    if (ArgumentCount != 3)
        throw usage_error();
    ownership_pointer<art_file> Document = LoadDocumentWithWarning(Arguments[2]);
    WriteStandardOutput(ListObjects(*Document));
    return 0;
}

int RunResave(int ArgumentCount, char **Arguments)
{
    if (ArgumentCount != 4)
        throw usage_error();
    ownership_pointer<art_file> Document = LoadDocumentWithWarning(Arguments[2]);
    WriteFile(Arguments[3], SaveDocument(*Document));
    return 0;
}

struct render_options
{
    zel_string In;
    zel_string Out;
    bool HasSize = false;
    int_point2d Size;
    double Zoom = 1;
    double Time = 0;
    // Straight alpha, as given.
    agg::rgba8 Background = agg::rgba8(0, 0, 0, 0);
};

usage_error OptionProblem(const char *Option, const char *Expected, const char *Value)
{
    return usage_error{zel_string(Option) + " needs " + Expected + ", not '" + Value + "'"};
}

// The whole text as a finite number, or false.
bool ReadNumber(const char *Text, double &Value)
{
    char *End = nullptr;
    errno = 0;
    Value = std::strtod(Text, &End);
    return End != Text && *End == 0 && errno == 0 && std::isfinite(Value);
}

// Digits only, above 0 and at most a million; End is where the digits stopped.
bool ReadSide(const char *Text, int32_t &Side, const char *&End)
{
    Side = 0;
    End = Text;
    while (*End >= '0' && *End <= '9') {
        if (Side > 1000000)
            return false;
        Side = Side * 10 + (*End - '0');
        End++;
    }
    return End != Text && Side > 0 && Side <= 1000000;
}

bool ReadSize(const char *Text, int_point2d &Size)
{
    const char *End = nullptr;
    if (!ReadSide(Text, Size.X, End) || *End != 'x')
        return false;
    return ReadSide(End + 1, Size.Y, End) && *End == 0;
}

int HexDigit(char C)
{
    if (C >= '0' && C <= '9')
        return C - '0';
    if (C >= 'a' && C <= 'f')
        return C - 'a' + 10;
    if (C >= 'A' && C <= 'F')
        return C - 'A' + 10;
    return -1;
}

bool ReadColor(const char *Text, agg::rgba8 &Color)
{
    uint8_t Bytes[4];
    for (int I = 0; I < 4; I++) {
        int High = HexDigit(Text[2 * I]);
        int Low = High < 0 ? -1 : HexDigit(Text[2 * I + 1]);
        if (High < 0 || Low < 0)
            return false;
        Bytes[I] = static_cast<uint8_t>(High * 16 + Low);
    }
    if (Text[8] != 0)
        return false;
    Color = agg::rgba8(Bytes[0], Bytes[1], Bytes[2], Bytes[3]);
    return true;
}

// IN and OUT in this order, or OUT alone when the document is the library's own, the options before,
// between or after them.
render_options ReadRenderOptions(int ArgumentCount, char **Arguments, int Positionals)
{
    render_options Options;
    int Positional = 2 - Positionals;
    for (int I = 2; I < ArgumentCount; I++) {
        const char *Argument = Arguments[I];
        if (std::strncmp(Argument, "--", 2) != 0) {
            if (Positional == 2)
                throw usage_error();
            (Positional == 0 ? Options.In : Options.Out) = Argument;
            Positional++;
            continue;
        }
        if (I + 1 >= ArgumentCount)
            throw usage_error{zel_string(Argument) + " needs a value"};
        const char *Value = Arguments[++I];
        if (std::strcmp(Argument, "--size") == 0) {
            if (!ReadSize(Value, Options.Size))
                throw OptionProblem(Argument, "a size WxH in whole pixels above 0", Value);
            Options.HasSize = true;
        } else if (std::strcmp(Argument, "--zoom") == 0) {
            if (!ReadNumber(Value, Options.Zoom) || Options.Zoom <= 0)
                throw OptionProblem(Argument, "a number above 0", Value);
        } else if (std::strcmp(Argument, "--time") == 0) {
            if (!ReadNumber(Value, Options.Time) || Options.Time < 0)
                throw OptionProblem(Argument, "a time in seconds, 0 or more", Value);
        } else if (std::strcmp(Argument, "--background") == 0) {
            if (!ReadColor(Value, Options.Background))
                throw OptionProblem(Argument, "a colour of eight hexadecimal digits RRGGBBAA", Value);
        } else {
            throw usage_error{zel_string("unknown option '") + Argument + "'"};
        }
    }
    if (Positional != 2)
        throw usage_error();
    return Options;
}

// The given size, or the canvas times the zoom to the nearest pixel; refused when it has no pixels or
// too many.
int_point2d GetOutputSize(const render_options &Options, point2d Canvas)
{
    double Width = Options.HasSize ? Options.Size.X : std::floor(Canvas.X * Options.Zoom + 0.5);
    double Height = Options.HasSize ? Options.Size.Y : std::floor(Canvas.Y * Options.Zoom + 0.5);
    if (Width < 1 || Height < 1)
        throw zel_error(zel_string("At a zoom of ") + zel_string::Format("%g", Options.Zoom) +
                        " the picture would have no pixels.");
    if (Width * Height > double(MaximumRenderPixels))
        throw zel_error(zel_string("The picture of ") + zel_string::Format("%g", Width) + " by " +
                        zel_string::Format("%g", Height) + " pixels is too large to render.");
    return int_point2d(static_cast<int32_t>(Width), static_cast<int32_t>(Height));
}

// The picture goes out with straight alpha, as image files keep it, encoded by the library's codecs.
void WritePNG(art_bitmap &Picture, const zel_string &Path)
{
    zel_string Bytes;
    SaveImageToString(Bytes, reference_pointer<art_bitmap>(&Picture), ArtImageFormatPNG);
    FILE *File = std::fopen(Path.GetString(), "wb");
    bool Written = File != nullptr &&
                   std::fwrite(Bytes.GetString(), 1, size_t(Bytes.GetLength()), File) == size_t(Bytes.GetLength());
    if (File != nullptr && std::fclose(File) != 0)
        Written = false;
    if (!Written)
        throw zel_error("The picture can't be written to '" + Path + "'.");
}

void RenderDocument(art_file &Document, const render_options &Options)
{
    Document.SetCurrentTime(Options.Time);
    point2d Canvas = Document.GetSize();
    int_point2d OutputSize = GetOutputSize(Options, Canvas);

    art_bitmap Picture(OutputSize.X, OutputSize.Y);
    agg::rgba8 Background = Options.Background;
    PremultiplyPixel(Background);
    Picture.Clear(Background);
    // The canvas, from (0, 0) to its size in the document's own space, covers the whole picture.
    agg::trans_affine Matrix;
    Document.ApplyParentToObject(Matrix);
    Matrix *= agg::trans_affine_scaling(OutputSize.X / Canvas.X, OutputSize.Y / Canvas.Y);
    art_cache Cache;
    reference_pointer<bitmap_interface> Target(&Picture);
    Document.Draw(Target, Target, Matrix, reference_pointer<art_cache>(&Cache));
    WritePNG(Picture, Options.Out);
}

int RunRender(int ArgumentCount, char **Arguments)
{
    render_options Options = ReadRenderOptions(ArgumentCount, Arguments, 2);
    ownership_pointer<art_file> Document = LoadDocumentWithWarning(Options.In);
    RenderDocument(*Document, Options);
    return 0;
}

// The document that the library carries, drawn as render draws a file.
int RunShowcase(int ArgumentCount, char **Arguments)
{
    render_options Options = ReadRenderOptions(ArgumentCount, Arguments, 1);
    zel_string Warning;
    ownership_pointer<art_file> Document = LoadDocumentFromData(GetShowcaseDocumentText(), Warning);
    ShowWarning(Warning);
    RenderDocument(*Document, Options);
    return 0;
}

struct command
{
    const char *Name;
    int (*Run)(int ArgumentCount, char **Arguments);
};

const command Commands[] = {
    {"version", RunVersion},
    {"dump", RunDump},
    {"compile", RunCompile},
    {"objects", RunObjects},
    {"resave", RunResave},
    {"render", RunRender},
    {"showcase", RunShowcase},
};

} // namespace

int main(int ArgumentCount, char **Arguments)
{
    try {
        if (ArgumentCount < 2)
            throw usage_error();
        for (const command &Command : Commands)
            if (std::strcmp(Arguments[1], Command.Name) == 0)
                return Command.Run(ArgumentCount, Arguments);
        throw usage_error();
    } catch (const usage_error &Error) {
        if (!Error.Problem.IsEmpty())
            std::fprintf(stderr, "rofa-tool: %s\n", Error.Problem.GetString());
        std::fputs(Usage, stderr);
        return 2;
    } catch (const zel_error &Error) {
        std::fputs("rofa-tool: ", stderr);
        std::fwrite(Error.GetMessage().GetString(), 1, static_cast<size_t>(Error.GetMessage().GetLength()), stderr);
        std::fputs("\n", stderr);
        return 1;
    } catch (const std::exception &Error) {
        std::fprintf(stderr, "rofa-tool: %s\n", Error.what());
        return 1;
    }
}
