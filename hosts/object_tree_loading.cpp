#include "hosts/object_tree_loading.h"

#include "xbd/xbd.h"

ownership_pointer<art_file> LoadDocument(const zel_string &FileName, zel_string &Warning)
{
    ownership_pointer<xbd_file> File = xbd_file::LoadXBDFile(FileName);
    return art_file::ReadDocument(*File, reference_pointer<art_bitmap_manager>(), Warning);
}

ownership_pointer<art_file> LoadDocumentFromData(const zel_string &Data, zel_string &Warning)
{
    ownership_pointer<xbd_file> File = xbd_file::LoadFromData(Data, false);
    return art_file::ReadDocument(*File, reference_pointer<art_bitmap_manager>(), Warning);
}
