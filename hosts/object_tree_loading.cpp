#include "hosts/object_tree_loading.h"

#include "art_engine/art_object_factory.h"
#include "xbd/xbd.h"
#include "zel_basics/zel_error.h"

ownership_pointer<art_object> LoadObjectTree(const zel_string &FileName)
{
    ownership_pointer<xbd_file> File = xbd_file::LoadXBDFile(FileName);
    array<ownership_pointer<xbd_tag>> &Tags = File->GetRootTag()->GetChildren();
    if (Tags.GetNumberOfElements() == 0)
        throw zel_error("Invalid Rofa File (contains no tags)");
    ownership_pointer<art_object> Tree =
        art_object_factory::GetFactory()->Make(reference_pointer<xbd_tag>(Tags[0].Get()));
    Tree->Layout();
    return Tree;
}
