#include "hosts/object_tree_saving.h"

#include "rofa_lib/rofa_plugin_api.h"
#include "xbd/xbd.h"

zel_string SaveDocument(art_file &Document)
{
    // Objects marked for deletion are dead already: a save never writes them.
    Document.DeleteMarkedChildren();
    Document.PrepareForSave();
    ownership_pointer<xbd_file> File = Document.CreateXBDFile();
    reference_pointer<xbd_tag>(File->GetRootTag()->GetChildren()[0].Get())
        ->SetAttribute("rofa_editor_version", RofaAppGetVersionString());
    return File->GetZELXMLv1String();
}
