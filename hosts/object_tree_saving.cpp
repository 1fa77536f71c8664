#include "hosts/object_tree_saving.h"

#include "xbd/xbd.h"

zel_string SaveObjectTree(art_object &Tree)
{
    Tree.PrepareForSave();
    xbd_file File;
    File.GetRootTag()->AddChildTag(Tree.CreateTag(&File));
    return File.GetZELXMLv1String();
}
