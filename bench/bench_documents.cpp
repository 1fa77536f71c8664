// Documents end to end: the built-in showcase loaded, laid out and drawn at 1280x800, cold (a new
// document and cache each time) and warm (the same document and cache), and a document of 50 photos of
// 2000x1500 loaded and saved again, with its peak memory; all against a copy of a 1280x800 window in
// the same run.
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

#include <agg_trans_affine.h>
#include <benchmark/benchmark.h>

#include "art_engine/documents/art_builtin_documents.h"
#include "art_engine/documents/art_file.h"
#include "art_engine/images/art_image_codecs.h"
#include "art_engine/objects/art_cache.h"
#include "art_engine/pixels/art_bitmap.h"
#include "bench/bench_baselines.h"
#include "bench/bench_ratio_reporter.h"
#include "xbd/xbd.h"

namespace {

const int WindowWidth = 1280;
const int WindowHeight = 800;
const int Photos = 50;
const int PhotoWidth = 2000;
const int PhotoHeight = 1500;
// Each photo is shown at a tenth of its size on each axis.
const int ShownWidth = 200;
const int ShownHeight = 150;

ownership_pointer<art_file> LoadShowcase()
{
    ownership_pointer<xbd_file> File = xbd_file::LoadFromData(GetShowcaseDocumentText(), false);
    zel_string Warning;
    return art_file::ReadDocument(*File, reference_pointer<art_bitmap_manager>(), Warning);
}

// The canvas stretched over the whole window, as rofa-tool render draws it.
void DrawDocument(art_file &Document, art_bitmap &Window, art_cache &Cache)
{
    Window.Clear(agg::rgba8(255, 255, 255, 255));
    agg::trans_affine Matrix;
    Document.ApplyParentToObject(Matrix);
    point2d Canvas = Document.GetSize();
    Matrix *= agg::trans_affine_scaling(WindowWidth / Canvas.X, WindowHeight / Canvas.Y);
    reference_pointer<bitmap_interface> Target(&Window);
    Document.Draw(Target, Target, Matrix, reference_pointer<art_cache>(&Cache));
}

void BM_FullWindowCopy(benchmark::State &State)
{
    CopyBytesBaseline(State, size_t(WindowWidth) * WindowHeight * 4);
}
BENCHMARK(BM_FullWindowCopy)->Unit(benchmark::kMicrosecond);

void BM_ShowcaseCold(benchmark::State &State)
{
    art_bitmap Window(WindowWidth, WindowHeight);
    for (auto _ : State) {
        ownership_pointer<art_file> Document = LoadShowcase();
        art_cache Cache;
        DrawDocument(*Document, Window, Cache);
    }
}
BENCHMARK(BM_ShowcaseCold)->Unit(benchmark::kMillisecond);

void BM_ShowcaseWarm(benchmark::State &State)
{
    art_bitmap Window(WindowWidth, WindowHeight);
    ownership_pointer<art_file> Document = LoadShowcase();
    art_cache Cache;
    DrawDocument(*Document, Window, Cache);
    for (auto _ : State)
        DrawDocument(*Document, Window, Cache);
}
BENCHMARK(BM_ShowcaseWarm)->Unit(benchmark::kMillisecond);

// A field of the kernel's account of this process, in kilobytes: VmHWM, the peak resident memory, or
// VmRSS, what is resident now.
long ReadMemoryKilobytes(const char *Field)
{
    std::ifstream Status("/proc/self/status");
    std::string Line;
    size_t Length = std::strlen(Field);
    while (std::getline(Status, Line))
        if (Line.compare(0, Length, Field) == 0 && Line.size() > Length && Line[Length] == ':')
            return std::stol(Line.substr(Length + 1));
    return -1;
}

// The peak starts again from what is resident now.
void ResetPeakMemory()
{
    std::ofstream("/proc/self/clear_refs") << "5";
}

// A document text of 50 distinct photos, each a JPEG of 2000x1500 with a pattern of its own, shown at
// 200x150 in a row of tiles.
std::string MakePhotoDocument()
{
    std::string Text = "<art_file art_engine_version=\"0.0.2\" w_val=\"2000\" h_val=\"750\"><children>";
    std::string Bitmaps = "<bitmaps>";
    ownership_pointer<art_bitmap> Photo(new art_bitmap(PhotoWidth, PhotoHeight));
    for (int I = 0; I < Photos; I++) {
        for (int Y = 0; Y < PhotoHeight; Y++) {
            agg::rgba8 *Row = Photo->GetPixelRow(Y);
            for (int X = 0; X < PhotoWidth; X++)
                Row[X] = agg::rgba8(uint8_t(X * 7 / 50 + I), uint8_t(Y * 11 / 60 + 3 * I), uint8_t((X + Y) / 16), 255);
        }
        zel_string Bytes;
        SaveImageToString(Bytes, reference_pointer<art_bitmap>(Photo.Get()), ArtImageFormatJPEG, 85);
        Text += "<art_bitmap bitmap_id=\"" + std::to_string(I) + "\" handle=\"(0,0)\" x_val=\"" +
                std::to_string((I % 10) * ShownWidth) + "\" y_val=\"" + std::to_string((I / 10) * ShownHeight) +
                "\" w_val=\"" + std::to_string(ShownWidth) + "\" h_val=\"" + std::to_string(ShownHeight) + "\"/>";
        Bitmaps += "<bitmap bitmap_id=\"" + std::to_string(I) + "\" pixel_data=\"";
        for (int B = 0; B < Bytes.GetLength(); B++) {
            unsigned char C = static_cast<unsigned char>(Bytes[B]);
            bool Plain = C >= 32 && C < 127 && std::strchr("&<>\"'\\", C) == nullptr;
            Bitmaps += Plain ? std::string(1, char(C)) : "&#" + std::to_string(C) + ";";
        }
        Bitmaps += "\"/>";
    }
    return Text + "</children>" + Bitmaps + "</bitmaps></art_file>";
}

long PeakOverResidentKilobytes = 0;

void BM_LoadAndResavePhotos(benchmark::State &State)
{
    std::string Text = MakePhotoDocument();
    zel_string Data(Text.data(), static_cast<int>(Text.size()));
    ownership_pointer<xbd_file> Parsed = xbd_file::LoadFromData(Data, false);
    // The document's markup in the binary form, as files carry it.
    zel_string Binary = Parsed->GetZELXMLv1String();
    Parsed.Reset();
    // Taken before the first load, so that memory the allocator keeps from one pass to the next
    // still counts.
    long Resident = ReadMemoryKilobytes("VmRSS");
    ResetPeakMemory();
    for (auto _ : State) {
        ownership_pointer<xbd_file> File = xbd_file::LoadFromData(Binary, false);
        zel_string Warning;
        ownership_pointer<art_file> Document =
            art_file::ReadDocument(*File, reference_pointer<art_bitmap_manager>(), Warning);
        File.Reset();
        ownership_pointer<xbd_file> Saved = Document->CreateXBDFile();
        benchmark::DoNotOptimize(Saved->GetZELXMLv1String().GetLength());
    }
    PeakOverResidentKilobytes = ReadMemoryKilobytes("VmHWM") - Resident;
}
BENCHMARK(BM_LoadAndResavePhotos)->Unit(benchmark::kMillisecond)->Iterations(2);

} // namespace

int main(int argc, char **argv)
{
    ratio_reporter Reporter(ratio_reporter::RealTime);
    if (!Reporter.RunAll(argc, argv))
        return 1;
    double DrawnKilobytes = double(Photos) * ShownWidth * ShownHeight * 4 / 1024;
    std::printf("\nShowcase at 1280x800, cold:  %.2f ms (%.0f window copies)\n", Reporter.GetTime("BM_ShowcaseCold"),
                Reporter.GetRatio("BM_ShowcaseCold", "BM_FullWindowCopy") * 1000);
    std::printf("Showcase at 1280x800, warm:  %.2f ms (%.0f window copies)\n", Reporter.GetTime("BM_ShowcaseWarm"),
                Reporter.GetRatio("BM_ShowcaseWarm", "BM_FullWindowCopy") * 1000);
    std::printf("50 photos of 2000x1500, load and resave: %.0f ms; peak memory above resident %.1f MB, "
                "%.2f times the decoded pixels drawn (%.1f MB; target under 3)\n",
                Reporter.GetTime("BM_LoadAndResavePhotos"), PeakOverResidentKilobytes / 1024.0,
                PeakOverResidentKilobytes / DrawnKilobytes, DrawnKilobytes / 1024);
    return 0;
}
