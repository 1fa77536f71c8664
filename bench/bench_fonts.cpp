// Glyph fetching: the first use of 10,000 distinct glyphs across 10 faces (built from outlines, and
// read from embedded "font" tags), then 1,000,000 lookups of glyphs already fetched, against a plain
// integer hash map lookup in the same run. Prints nanoseconds per glyph at the end.

#include <benchmark/benchmark.h>

#include "bench/bench_ratio_reporter.h"

#include <cstdint>
#include <cstdio>
#include <random>
#include <vector>

#include "art_engine/fonts/art_embedded_fonts.h"
#include "art_engine/fonts/art_font.h"
#include "art_engine/fonts/art_font_face.h"
#include "art_engine/fonts/art_xml_partial_font_face.h"
#include "xbd/xbd.h"

namespace {

const int FaceCount = 10;
const int GlyphsPerFace = 1000;
const int LookupCount = 1000000;

// A face whose source draws each outline from its code: two contours of lines, quadratic and cubic
// segments, some 20 vertices, as a platform outline of a simple letter has.
class outline_font_face : public art_font_face
{
public:
    explicit outline_font_face(int32_t StyleIndex) : art_font_face(StyleIndex) {}

    ownership_pointer<art_glyph> LoadGlyph(int32_t GlyphChar) override
    {
        const double U = (GlyphChar % 97) / 1000.0;
        ownership_pointer<art_glyph> Glyph(
            new art_glyph(GlyphChar, 0.5 + U, point2d(0.45, 0.7), point2d(0.025, 0.7)));
        art_path &Path = Glyph->GetPath();
        Path.move_to(U, 0);
        Path.line_to(U + 0.45, 0);
        Path.curve3(U + 0.5, -0.2, U + 0.45, -0.4);
        Path.curve4(U + 0.4, -0.6, U + 0.2, -0.7, U + 0.05, -0.5);
        Path.line_to(U, -0.3);
        Path.close_polygon();
        Path.move_to(U + 0.1, -0.1);
        Path.curve3(U + 0.2, -0.3, U + 0.3, -0.1);
        Path.line_to(U + 0.2, -0.05);
        Path.close_polygon();
        return Glyph;
    }
    double GetAscender() override { return 0.8; }
    double GetDescender() override { return 0.2; }
    int32_t GetDefaultGlyph() override { return 97; }
};

std::vector<ownership_pointer<art_font>> MakeFonts()
{
    std::vector<ownership_pointer<art_font>> Fonts;
    for (int Index = 0; Index < FaceCount; Index++) {
        Fonts.push_back(ownership_pointer<art_font>(new art_font(zel_string::FromInt(Index))));
        Fonts.back()->AddFace(ownership_pointer<art_font_face>(new outline_font_face(Index % 4)));
    }
    return Fonts;
}

std::vector<art_font_face *> FacesOf(std::vector<ownership_pointer<art_font>> &Fonts)
{
    std::vector<art_font_face *> Faces;
    for (ownership_pointer<art_font> &Font : Fonts)
        Faces.push_back(Font->GetFace(false, false).Get());
    return Faces;
}

void FirstUseFromOutlines(benchmark::State &State)
{
    for (auto _ : State) {
        State.PauseTiming();
        std::vector<ownership_pointer<art_font>> Fonts = MakeFonts();
        std::vector<art_font_face *> Faces = FacesOf(Fonts);
        State.ResumeTiming();
        for (art_font_face *Face : Faces)
            for (int32_t Code = 0; Code < GlyphsPerFace; Code++)
                benchmark::DoNotOptimize(Face->GetGlyph(Code).Get());
        State.PauseTiming();
        Fonts.clear();
        State.ResumeTiming();
    }
    State.SetItemsProcessed(State.iterations() * FaceCount * GlyphsPerFace);
}

// The embedded glyph sets of a document: each face's 1,000 glyphs as one "font" tag.
ownership_pointer<xbd_file> MakeEmbeddedDocument()
{
    std::vector<ownership_pointer<art_font>> Fonts = MakeFonts();
    used_font_glyphs Used;
    for (art_font_face *Face : FacesOf(Fonts))
        for (int32_t Code = 0; Code < GlyphsPerFace; Code++)
            Used.AddChar(reference_pointer<art_font_face>(Face), Code);
    ownership_pointer<xbd_file> File(new xbd_file);
    Used.Write(*File->GetRootTag());
    return File;
}

void FirstUseFromEmbeddedTags(benchmark::State &State)
{
    ownership_pointer<xbd_file> File = MakeEmbeddedDocument();
    array<ownership_pointer<xbd_tag>> &FontTags = File->GetRootTag()->GetChildTag("embedded_fonts")->GetChildren();
    for (auto _ : State) {
        std::vector<ownership_pointer<art_font_face>> Faces;
        for (int Index = 0; Index < FontTags.GetNumberOfElements(); Index++)
            Faces.push_back(ownership_pointer<art_font_face>(new art_xml_partial_font_face(*FontTags[Index])));
        benchmark::DoNotOptimize(Faces.back()->GetGlyph(GlyphsPerFace - 1).Get());
        State.PauseTiming();
        Faces.clear();
        State.ResumeTiming();
    }
    State.SetItemsProcessed(State.iterations() * FaceCount * GlyphsPerFace);
}

// Text draws runs of common characters: lookups walk the faces' glyphs in a random order.
std::vector<std::pair<int, int32_t>> LookupSequence()
{
    std::vector<std::pair<int, int32_t>> Sequence(LookupCount);
    std::mt19937 Random(20261122);
    for (std::pair<int, int32_t> &Entry : Sequence)
        Entry = {static_cast<int>(Random() % FaceCount), static_cast<int32_t>(Random() % GlyphsPerFace)};
    return Sequence;
}

void CachedGlyphLookup(benchmark::State &State)
{
    std::vector<ownership_pointer<art_font>> Fonts = MakeFonts();
    std::vector<art_font_face *> Faces = FacesOf(Fonts);
    for (art_font_face *Face : Faces)
        for (int32_t Code = 0; Code < GlyphsPerFace; Code++)
            Face->GetGlyph(Code);
    const std::vector<std::pair<int, int32_t>> Sequence = LookupSequence();
    for (auto _ : State) {
        for (const std::pair<int, int32_t> &Entry : Sequence)
            benchmark::DoNotOptimize(Faces[Entry.first]->GetGlyph(Entry.second).Get());
    }
    State.SetItemsProcessed(State.iterations() * LookupCount);
}

// The floor: one lookup in an integer hash map of the same size per face, the same sequence.
void IntHashMapLookup(benchmark::State &State)
{
    std::vector<ownership_pointer<zel_int_hash_map<int>>> Maps;
    for (int Index = 0; Index < FaceCount; Index++) {
        Maps.push_back(ownership_pointer<zel_int_hash_map<int>>(new zel_int_hash_map<int>));
        for (int32_t Code = 0; Code < GlyphsPerFace; Code++)
            Maps.back()->Insert(Code, Code);
    }
    const std::vector<std::pair<int, int32_t>> Sequence = LookupSequence();
    for (auto _ : State) {
        for (const std::pair<int, int32_t> &Entry : Sequence) {
            zel_int_hash_map<int> &Map = *Maps[Entry.first];
            benchmark::DoNotOptimize(Map.GetValueAt(Map.Find(Entry.second)));
        }
    }
    State.SetItemsProcessed(State.iterations() * LookupCount);
}

} // namespace

int main(int argc, char **argv)
{
    benchmark::RegisterBenchmark("FirstUseFromOutlines", FirstUseFromOutlines)->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("FirstUseFromEmbeddedTags", FirstUseFromEmbeddedTags)->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("CachedGlyphLookup", CachedGlyphLookup)->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("IntHashMapLookup", IntHashMapLookup)->Unit(benchmark::kMillisecond);
    ratio_reporter Reporter;
    if (!Reporter.RunAll(argc, argv))
        return 1;
    const double MillisecondsToNanoseconds = 1e6;
    std::printf("\nNanoseconds per glyph:\n");
    const struct
    {
        const char *Name;
        int Count;
    } Cases[] = {{"FirstUseFromOutlines", FaceCount * GlyphsPerFace},
                 {"FirstUseFromEmbeddedTags", FaceCount * GlyphsPerFace},
                 {"CachedGlyphLookup", LookupCount},
                 {"IntHashMapLookup", LookupCount}};
    for (const auto &Case : Cases) {
        const double Time = Reporter.GetTime(Case.Name);
        if (Time >= 0)
            std::printf("  %-26s %8.1f\n", Case.Name, Time * MillisecondsToNanoseconds / Case.Count);
    }
    const double Ratio = Reporter.GetRatio("CachedGlyphLookup", "IntHashMapLookup");
    if (Ratio >= 0)
        std::printf("Cached glyph lookup over plain integer map lookup: %.2f (target: under 20 ns a lookup)\n", Ratio);
    return 0;
}
