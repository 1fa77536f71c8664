#pragma once

#include <agg_color_rgba.h>

#include "art_engine/objects/art_object.h"
#include "zel_basics/lwpointers.h"
#include "zel_basics/zel_string.h"

// A piece of work put on a button or on the answer of a message box, run when it is pressed.
class art_button_action : public base_object
{
public:
    virtual void Execute() = 0;
    virtual zel_string GetLabel();
    virtual zel_string GetToolTip();
};

// A push button drawn by the engine: pressed by a button-down inside, run by the button-up inside,
// which calls OnClick and then the action.
class art_button : public art_object
{
public:
    enum button_state
    {
        ButtonNormal,
        ButtonHover,
        ButtonPressed
    };

    explicit art_button(zel_string Caption);

    // The button owns the action.
    void SetAction(ownership_pointer<art_button_action> NewAction);
    reference_pointer<art_button_action> GetAction() const;
    virtual void OnClick();
    virtual void GetToolTipText(zel_string &Title, zel_string &Text);

    // What a click does, as the button-up inside does it.
    void Click();

    reference_pointer<art_object> HandlePointerEvent(reference_pointer<art_pointer_event> PointerEvent) override;
    void Draw(reference_pointer<bitmap_interface> Target, reference_pointer<bitmap_interface> Backdrop,
              agg::trans_affine Matrix, reference_pointer<art_cache> Cache) override;

    button_state GetState() const { return State; }
    zel_string GetCaption() const { return Caption; }

protected:
    void SetState(button_state NewState);

    button_state State;
    zel_string Caption;
    zel_string ToolTipText;
    ownership_pointer<art_button_action> Action;
};

// A modal question or notice: a veil over everything below, a panel with a title and a text, and an
// "Okay" button, with a "Cancel" button beside it when a cancel action is given. While it is up it
// takes every pointer event and every key; "Okay" runs its action and then the box closes.
class art_message_box : public art_object
{
public:
    art_message_box(zel_string Title, zel_string Text, ownership_pointer<art_button_action> OkayAction,
                    ownership_pointer<art_button_action> CancelAction = ownership_pointer<art_button_action>());

    // Puts a new box in front of Parent's other children, over the whole of Parent, and gives it
    // the typing.
    static reference_pointer<art_message_box> Show(reference_pointer<art_object> Parent, zel_string Title,
                                                   zel_string Text,
                                                   ownership_pointer<art_button_action> OkayAction =
                                                       ownership_pointer<art_button_action>(),
                                                   ownership_pointer<art_button_action> CancelAction =
                                                       ownership_pointer<art_button_action>());

    // Sets the closing flag: the next tick takes the box out of the tree. The typing goes back to
    // where it was when the box came up.
    void Close();
    bool IsClosing() const { return MarkedForDeletion; }

    zel_string GetTitle() const { return Title; }
    zel_string GetText() const { return Text; }
    reference_pointer<art_button> GetOkayButton() const { return OkayButton; }
    // Unset when the box has no cancel action.
    reference_pointer<art_button> GetCancelButton() const { return CancelButton; }
    // The actions as given, unset where none was.
    reference_pointer<art_button_action> GetOkayAction() const;
    reference_pointer<art_button_action> GetCancelAction() const;

    // Over the whole parent, with the panel in the middle and the buttons on its last row.
    bool Layout() override;
    bool IsPointInside(const point2d &Point) override;
    reference_pointer<art_object> HandlePointerEvent(reference_pointer<art_pointer_event> PointerEvent) override;
    // Return answers "Okay", Escape "Cancel" where there is one; every key is taken.
    reference_pointer<art_object> HandleKeyEvent(reference_pointer<art_key_event> KeyEvent) override;
    void Draw(reference_pointer<bitmap_interface> Target, reference_pointer<bitmap_interface> Backdrop,
              agg::trans_affine Matrix, reference_pointer<art_cache> Cache) override;

    // The panel in the box's space: centred, of a fixed size.
    rectangle GetPanel() const;

private:
    reference_pointer<art_button> AddButton(zel_string Caption, ownership_pointer<art_button_action> Action);

    zel_string Title;
    zel_string Text;
    reference_pointer<art_button> OkayButton;
    reference_pointer<art_button> CancelButton;
    reference_pointer<art_object> PreviousKeyFocus;
};
