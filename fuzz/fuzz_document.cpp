// Arbitrary bytes as a document: markup in either form, the loader's rules, the objects, the
// pictures embedded in it, layout, a draw with a render cache and a save. A refusal is a zel_error;
// any other outcome (a crash, a sanitizer report, another exception) is a finding.
#include <cstddef>
#include <cstdint>

#include <agg_trans_affine.h>

#include "art_engine/documents/art_file.h"
#include "art_engine/images/art_image_codecs.h"
#include "art_engine/objects/art_cache.h"
#include "art_engine/pixels/art_bitmap.h"
#include "xbd/xbd.h"
#include "zel_basics/zel_error.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *Data, size_t Size)
{
    // Small pictures reach every path; large ones only make each run slow.
    static bool LimitsSet = (SetImageSizeLimits(int64_t(1) << 16, int64_t(1) << 18), true);
    (void)LimitsSet;
    zel_string Bytes(reinterpret_cast<const char *>(Data), static_cast<int>(Size));
    try {
        ownership_pointer<xbd_file> File = xbd_file::LoadFromData(Bytes, false);
        zel_string Warning;
        ownership_pointer<art_file> Document =
            art_file::ReadDocument(*File, reference_pointer<art_bitmap_manager>(), Warning);
        // The canvas onto a small picture, whatever size the document claims.
        art_bitmap Picture(64, 48);
        Picture.Clear(agg::rgba8(0, 0, 0, 0));
        point2d Canvas = Document->GetSize();
        agg::trans_affine Matrix;
        Document->ApplyParentToObject(Matrix);
        Matrix *= agg::trans_affine_scaling(64 / Canvas.X, 48 / Canvas.Y);
        art_cache Cache;
        reference_pointer<bitmap_interface> Target(&Picture);
        Document->Draw(Target, Target, Matrix, reference_pointer<art_cache>(&Cache));
        Document->DeleteMarkedChildren();
        Document->CreateXBDFile()->GetZELXMLv1String();
    } catch (const zel_error &) {
    }
    return 0;
}
