#pragma once

#include "art_engine/objects/art_layer.h"
#include "rofa_net/rofa_net.h"
#include "zel_basics/lwpointers.h"
#include "zel_basics/zel_string.h"

// The editor of one document, a layer under the top object. It holds the link to the server and
// the document's ID; its panels, tools and document grow in around these.
class rofa_editor : public art_layer
{
public:
    rofa_editor(reference_pointer<rofa_net> Net, zel_string RofaID);

    // Takes a file dropped on the window as a picture; fails with words for the user when the file
    // can't be read or holds no picture of a kind the editor knows.
    virtual void OpenImageFile(zel_string Path);
    // After a failure in a tick: whatever the pointer was doing is dropped, and everything is
    // drawn anew.
    void ResetAfterError();

    reference_pointer<rofa_net> GetNet() const { return Net; }
    zel_string GetRofaID() const { return RofaID; }

private:
    reference_pointer<rofa_net> Net;
    zel_string RofaID;
};
