#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

#include "art_engine/documents/art_builtin_documents.h"
#include "tests/test_support.h"
#include "xbd/xbd.h"

namespace {

std::string ReadSourceFile(const std::string &Path)
{
    std::ifstream File(std::string(ROFA_SOURCE_DIR) + "/" + Path, std::ios::binary);
    EXPECT_TRUE(File.good()) << Path;
    return std::string(std::istreambuf_iterator<char>(File), std::istreambuf_iterator<char>());
}

reference_pointer<xbd_tag> ShowcaseBitmap(xbd_file &File, const char *BitmapID)
{
    reference_pointer<xbd_tag> Bitmaps = File.GetRootTag()->GetChildTag("art_file")->GetChildTag("bitmaps");
    for (int I = 0; I < Bitmaps->GetChildren().GetNumberOfElements(); I++) {
        reference_pointer<xbd_tag> Bitmap(Bitmaps->GetChildren()[I].Get());
        if (Bitmap->GetAttribute("bitmap_id", "") == BitmapID)
            return Bitmap;
    }
    return reference_pointer<xbd_tag>();
}

// The pictures in assets/images are the only copy: the document that the library carries holds
// their bytes exactly, whatever they are.
TEST(ArtBuiltinDocuments, TheShowcaseHoldsThePicturesOfTheAssetsFolderByteForByte)
{
    ownership_pointer<xbd_file> File = xbd_file::LoadFromData(GetShowcaseDocumentText(), false);
    struct
    {
        const char *BitmapID;
        const char *Path;
    } Cases[] = {{"0", "assets/images/showcase_photo.jpg"}, {"1", "assets/images/showcase_anim.gif"}};
    for (const auto &Case : Cases) {
        reference_pointer<xbd_tag> Bitmap = ShowcaseBitmap(*File, Case.BitmapID);
        ASSERT_TRUE(Bitmap.IsSet()) << Case.BitmapID;
        std::string Expected = ReadSourceFile(Case.Path);
        ASSERT_GT(Expected.size(), 100u) << Case.Path;
        EXPECT_EQ(Expected, ToStd(Bitmap->GetAttribute("pixel_data", ""))) << Case.Path;
        EXPECT_EQ("", ToStd(Bitmap->GetAttribute("pixel_data_file", ""))) << Case.Path;
    }
}

} // namespace
