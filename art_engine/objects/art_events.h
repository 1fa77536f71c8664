#pragma once

#include <cstdint>

#include "rofa_lib/keyboard.h"
#include "rofa_lib/mouse_interface.h"
#include "zel_basics/lwpointers.h"
#include "zel_basics/point2d.h"
#include "zel_basics/zel_string.h"

class art_object;

// What an object may ask about the person at the controls: the pointer and the keyboard as the
// application sees them, and which object takes typed keys. The interfaces belong to the platform
// layer; this only links to them.
class art_human_input_set : public base_object
{
public:
    art_human_input_set(reference_pointer<mouse_interface> Mouse, reference_pointer<keyboard_interface> Keyboard);

    reference_pointer<mouse_interface> GetMouse() const { return Mouse; }
    reference_pointer<keyboard_interface> GetKeyboard() const { return Keyboard; }
    // The object that keys without a target of their own go to; set by whoever takes the typing.
    reference_pointer<art_object> GetKeyFocus() const;
    void SetKeyFocus(reference_pointer<art_object> Object);

private:
    reference_pointer<mouse_interface> Mouse;
    reference_pointer<keyboard_interface> Keyboard;
    reference_pointer<art_object> KeyFocus;
};

// One typed key on its way to an object: the keyboard's buffered entry, the key code with the
// modifier and lock flags of the moment it was pressed.
class art_key_event : public base_object
{
public:
    explicit art_key_event(int Entry) : Entry(Entry) {}

    int GetEntry() const { return Entry; }
    int GetKeyCode() const { return Entry & KeyCodeMask; }
    bool IsShiftDown() const { return (Entry & KeyShiftFlag) != 0; }
    bool IsControlDown() const { return (Entry & KeyControlFlag) != 0; }
    bool IsAltDown() const { return (Entry & KeyAltFlag) != 0; }
    // The character typed, by KeyToCharacter.
    int GetCharacter() const { return KeyToCharacter(Entry); }

    // Unset when the event is made: the top object then sends it to the key focus.
    reference_pointer<art_object> GetTarget() const;
    void SetTarget(reference_pointer<art_object> NewTarget);

private:
    int Entry;
    reference_pointer<art_object> Target;
};

// A pointer event on its way down the tree. Location and LastLocation are rewritten into the space
// of each object that receives the event, and put back when that object returns.
class art_pointer_event : public base_object
{
public:
    enum pointer_event_type
    {
        OtherPET = 0,
        PointerMovedWithin = 1,
        PointerMovedIn = 2,
        PointerMovedOut = 3,
        PointerButtonDown = 4,
        PointerButtonUp = 5,
        PointerButtonDoubleClick = 6
    };

    enum pointer_button
    {
        LeftButton = 0,
        RightButton = 1,
        CenterButton = 2,
        ScrollUp = 3,
        ScrollDown = 4,
        NoButton = 32
    };

    // LastLocation starts equal to Location; the button status is read from the input set's mouse.
    art_pointer_event(pointer_event_type Type, pointer_button Button, point2d Location,
                      reference_pointer<art_human_input_set> InputSet = reference_pointer<art_human_input_set>());
    // A move: no button of its own.
    art_pointer_event(pointer_event_type Type, point2d Location, point2d LastLocation,
                      reference_pointer<art_human_input_set> InputSet = reference_pointer<art_human_input_set>());
    art_pointer_event(const art_pointer_event &Other);

    // Const, so that it adds a slot of its own beside base_object's untyped Duplicate.
    virtual ownership_pointer<art_pointer_event> Duplicate() const;
    virtual bool IsButtonEvent();
    virtual bool IsMoveEvent();
    virtual bool IsInsideEvent();
    virtual zel_string GetDebugString();

    pointer_event_type GetPointerEventType() const { return Type; }
    void SetPointerEventType(pointer_event_type NewType) { Type = NewType; }
    pointer_button GetButton() const { return Button; }
    uint32_t GetButtonStatusAtEvent() const { return ButtonStatusAtEvent; }
    point2d GetLocation() const { return Location; }
    void SetLocation(point2d NewLocation) { Location = NewLocation; }
    point2d GetLastLocation() const { return LastLocation; }
    void SetLastLocation(point2d NewLastLocation) { LastLocation = NewLastLocation; }
    reference_pointer<art_human_input_set> GetInputSet() const { return InputSet; }

    // The names of the debug text; a value without a name gives the empty string.
    static zel_string GetTypeName(int Type);
    static zel_string GetButtonName(int Button);

private:
    static uint32_t ReadButtonStatus(const reference_pointer<art_human_input_set> &InputSet);

    pointer_event_type Type;
    pointer_button Button;
    uint32_t ButtonStatusAtEvent;
    point2d Location;
    point2d LastLocation;
    reference_pointer<art_human_input_set> InputSet;
};
