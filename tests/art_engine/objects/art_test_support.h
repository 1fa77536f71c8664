#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "art_engine/objects/art_object.h"
#include "art_engine/objects/art_object_children.h"
#include "tests/test_support.h"
#include "xbd/xbd.h"

namespace art_test {

// One event as an object saw it, in the space the object was handed.
struct seen_event
{
    std::string Who;
    int Type;
    point2d Location;
    point2d LastLocation;
};

// An object that writes down every pointer event it is handed, then routes it on to its own
// children as any object does, and takes an event that none of them took.
class recording_object : public art_object
{
public:
    recording_object(std::string Label, std::vector<seen_event> *Log) : Label(Label), Log(Log) {}

    reference_pointer<art_object> HandlePointerEvent(reference_pointer<art_pointer_event> PointerEvent) override
    {
        Log->push_back({Label, PointerEvent->GetPointerEventType(), PointerEvent->GetLocation(),
                        PointerEvent->GetLastLocation()});
        reference_pointer<art_object> Taker = art_object::HandlePointerEvent(PointerEvent);
        return Taker.IsSet() ? Taker : reference_pointer<art_object>(this);
    }

private:
    std::string Label;
    std::vector<seen_event> *Log;
};

// An object placed with handle (0, 0), so that location is its top-left corner in parent space.
inline ownership_pointer<art_object> MakeBox(point2d Location, point2d Size)
{
    ownership_pointer<art_object> Box(new art_object);
    Box->SetHandle(point2d(0, 0));
    Box->SetSize(Size);
    Box->SetLocation(Location);
    return Box;
}

inline std::string AttributeName(xbd_tag &Tag, const xbd_attribute &Attribute)
{
    return ToStd(Tag.GetFile()->GetAttributeNames().GetName(Attribute.NameNum));
}

inline std::string AttributeValue(xbd_tag &Tag, const xbd_attribute &Attribute)
{
    return ToStd(Tag.GetFile()->GetValues().GetName(Attribute.ValueNum));
}

// A tag's attributes in their order, as name="value" separated by blanks.
inline std::string Attributes(reference_pointer<xbd_tag> Tag)
{
    std::string Text;
    array<xbd_attribute> &List = Tag->GetAttributes();
    for (int I = 0; I < List.GetNumberOfElements(); I++) {
        if (!Text.empty())
            Text += " ";
        Text += AttributeName(*Tag, List[I]) + "=\"" + AttributeValue(*Tag, List[I]) + "\"";
    }
    return Text;
}

// A whole tag tree, with names, attributes in order and children in order.
inline std::string Dump(reference_pointer<xbd_tag> Tag)
{
    std::string Text = "<" + ToStd(Tag->GetName());
    std::string List = Attributes(Tag);
    if (!List.empty())
        Text += " " + List;
    Text += ">";
    array<ownership_pointer<xbd_tag>> &Children = Tag->GetChildren();
    for (int I = 0; I < Children.GetNumberOfElements(); I++)
        Text += Dump(reference_pointer<xbd_tag>(Children[I].Get()));
    return Text + "</" + ToStd(Tag->GetName()) + ">";
}

// A free tag of File, named Name, with the attributes given as name, value pairs.
inline ownership_pointer<xbd_tag> MakeTag(xbd_file &File, const char *Name,
                                          std::vector<std::pair<const char *, const char *>> Values = {})
{
    ownership_pointer<xbd_tag> Tag = File.GetRootTag()->NewTag(Name);
    for (auto &Value : Values)
        Tag->AddAttribute(Value.first, Value.second);
    return Tag;
}

// The tag that an object writes of itself, as text.
inline std::string Written(art_object &Object)
{
    xbd_file File;
    ownership_pointer<xbd_tag> Tag = Object.CreateTag(&File);
    return Dump(reference_pointer<xbd_tag>(Tag.Get()));
}

} // namespace art_test
