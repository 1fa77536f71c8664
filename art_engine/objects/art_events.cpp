#include "art_engine/objects/art_events.h"

#include "art_engine/geometry/art_attribute_text.h"
#include "art_engine/objects/art_object.h"

art_human_input_set::art_human_input_set(reference_pointer<mouse_interface> Mouse,
                                         reference_pointer<keyboard_interface> Keyboard)
    : Mouse(Mouse), Keyboard(Keyboard)
{
}

reference_pointer<art_object> art_human_input_set::GetKeyFocus() const
{
    return KeyFocus;
}

void art_human_input_set::SetKeyFocus(reference_pointer<art_object> Object)
{
    KeyFocus = Object;
}

reference_pointer<art_object> art_key_event::GetTarget() const
{
    return Target;
}

void art_key_event::SetTarget(reference_pointer<art_object> NewTarget)
{
    Target = NewTarget;
}

art_pointer_event::art_pointer_event(pointer_event_type Type, pointer_button Button, point2d Location,
                                     reference_pointer<art_human_input_set> InputSet)
    : Type(Type), Button(Button), ButtonStatusAtEvent(ReadButtonStatus(InputSet)), Location(Location),
      LastLocation(Location), InputSet(InputSet)
{
}

art_pointer_event::art_pointer_event(pointer_event_type Type, point2d Location, point2d LastLocation,
                                     reference_pointer<art_human_input_set> InputSet)
    : Type(Type), Button(NoButton), ButtonStatusAtEvent(ReadButtonStatus(InputSet)), Location(Location),
      LastLocation(LastLocation), InputSet(InputSet)
{
}

art_pointer_event::art_pointer_event(const art_pointer_event &Other)
    : base_object(Other), Type(Other.Type), Button(Other.Button), ButtonStatusAtEvent(Other.ButtonStatusAtEvent),
      Location(Other.Location), LastLocation(Other.LastLocation), InputSet(Other.InputSet)
{
}

uint32_t art_pointer_event::ReadButtonStatus(const reference_pointer<art_human_input_set> &InputSet)
{
    if (!InputSet.IsSet() || !InputSet->GetMouse().IsSet())
        return 0;
    return InputSet->GetMouse()->GetButtonState();
}

ownership_pointer<art_pointer_event> art_pointer_event::Duplicate() const
{
    return ownership_pointer<art_pointer_event>(new art_pointer_event(*this));
}

bool art_pointer_event::IsButtonEvent()
{
    return Type >= PointerButtonDown && Type <= PointerButtonDoubleClick;
}

bool art_pointer_event::IsMoveEvent()
{
    return Type >= PointerMovedWithin && Type <= PointerMovedOut;
}

bool art_pointer_event::IsInsideEvent()
{
    return Type == PointerMovedWithin || Type == PointerMovedIn;
}

zel_string art_pointer_event::GetTypeName(int Type)
{
    switch (Type) {
    case OtherPET:
        return "OtherPET";
    case PointerMovedWithin:
        return "PointerMovedWithin";
    case PointerMovedIn:
        return "PointerMovedIn";
    case PointerMovedOut:
        return "PointerMovedOut";
    case PointerButtonDown:
        return "PointerButtonDown";
    case PointerButtonUp:
        return "PointerButtonUp";
    case PointerButtonDoubleClick:
        return "PointerButtonDoubleClick";
    default:
        return zel_string();
    }
}

zel_string art_pointer_event::GetButtonName(int Button)
{
    switch (Button) {
    case LeftButton:
        return "LeftButton";
    case RightButton:
        return "RightButton";
    case CenterButton:
        return "CenterButton";
    case ScrollUp:
        return "ScrollUp";
    case ScrollDown:
        return "ScrollDown";
    case NoButton:
        return "NoButton";
    default:
        return zel_string();
    }
}

zel_string art_pointer_event::GetDebugString()
{
    return zel_string("art_pointer_event(Type=") + GetTypeName(Type) + ", Button=" + GetButtonName(Button) +
           ", LastLocation=" + ArtPointToText(LastLocation) + ", Location=" + ArtPointToText(Location) +
           ", ButtonStatusAtEvent=" + zel_string::FromUnsigned(ButtonStatusAtEvent) + ")";
}
