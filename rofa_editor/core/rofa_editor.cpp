#include "rofa_editor/core/rofa_editor.h"

#include <cstdint>
#include <cstring>

#include "art_engine/objects/art_top_object.h"
#include "rofa_lib/stdio_file_streams.h"
#include "zel_basics/zel_error.h"

namespace {

// The first bytes of each picture format that files are taken in: PNG, GIF, JPEG and BMP.
bool StartsLikeAPicture(const uint8_t *Head, int Length)
{
    static const struct
    {
        const char *Bytes;
        int Length;
    } Signatures[] = {{"\x89PNG\r\n\x1a\n", 8}, {"GIF87a", 6}, {"GIF89a", 6}, {"\xff\xd8\xff", 3}, {"BM", 2}};
    for (const auto &Signature : Signatures) {
        if (Length >= Signature.Length && std::memcmp(Head, Signature.Bytes, size_t(Signature.Length)) == 0)
            return true;
    }
    return false;
}

} // namespace

rofa_editor::rofa_editor(reference_pointer<rofa_net> Net, zel_string RofaID) : Net(Net), RofaID(RofaID)
{
    Name = "Rofa_Editor";
}

void rofa_editor::OpenImageFile(zel_string Path)
{
    stdio_read_file_stream File;
    File.OpenFile(Path);
    uint8_t Head[8] = {};
    int Length = File.ReadDirect(Head, sizeof Head);
    if (!StartsLikeAPicture(Head, Length))
        throw zel_error("The file '" + Path + "' is not a picture of a kind that can be opened.");
}

void rofa_editor::ResetAfterError()
{
    ReleasePointerCapture();
    reference_pointer<art_top_object> Top = GetTopObject();
    if (Top.IsSet()) {
        Top->ReleasePointerCapture();
        Top->RequestRedraw();
    } else {
        RequestRedraw();
    }
}
