#include "hosts/object_listing.h"

#include "art_engine/geometry/art_attribute_text.h"
#include "art_engine/objects/art_layout.h"
#include "art_engine/objects/art_unknown_object.h"
#include "zel_basics/debug.h"
#include "zel_basics/zel_text_buffer.h"

namespace {

void Append(zel_text_buffer &Out, const zel_string &Text)
{
    Out.Append(Text.GetString(), Text.GetLength());
}

zel_string GetListedTagName(art_object &Object)
{
    art_unknown_object *Unknown = dynamic_cast<art_unknown_object *>(&Object);
    if (Unknown != nullptr)
        return Unknown->GetStoredTag()->GetName();
    return Object.GetTagName();
}

zel_string GetLayoutModes(art_object &Object)
{
    art_floating_autolayout *Layout = dynamic_cast<art_floating_autolayout *>(Object.GetLayout().Get());
    TOVAS_ASSERT(Layout!=NULL, &Object);
    return zel_string("(") + zel_string::FromInt(Layout->GetH().GetMode()) + "," +
           zel_string::FromInt(Layout->GetV().GetMode()) + ")";
}

void AppendObject(zel_text_buffer &Out, art_object &Object, int Depth)
{
    for (int I = 0; I < Depth; I++)
        Append(Out, "  ");
    Append(Out, GetListedTagName(Object) + " \"" + Object.GetName() + "\" " +
                    art_object::GetStackModeText(Object.GetStackMode()) +
                    " loc=" + ArtPointToText(Object.GetLocation()) + " size=" + ArtPointToText(Object.GetSize()) +
                    " handle=" + ArtPointToText(Object.GetHandle()) + " angle=" + ArtRealToText(Object.GetAngle()) +
                    " opacity=" + ArtRealToText(Object.GetOpacity()) + " layout=" + GetLayoutModes(Object) + "\n");
    for (array_iterator<ownership_pointer<art_object>> Child = Object.GetChildren(); Child.NotDone(); Child.Next())
        AppendObject(Out, *Child.Current(), Depth + 1);
}

} // namespace

zel_string ListObjects(art_object &Tree)
{
    zel_text_buffer Out;
    AppendObject(Out, Tree, 0);
    return Out.TakeString();
}
