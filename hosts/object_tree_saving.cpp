#include "hosts/object_tree_saving.h"

#include "xbd/xbd.h"

zel_string SaveObjectTree(art_object &Tree)
{
    // Objects marked for deletion are dead already: a save never writes them.
    Tree.DeleteMarkedChildren();
    Tree.PrepareForSave();
    xbd_file File;
    File.GetRootTag()->AddChildTag(Tree.CreateTag(&File));
    return File.GetZELXMLv1String();
}
