#include "rofa_editor/widgets/art_widgets.h"

#include "art_engine/objects/art_events.h"
#include "art_engine/objects/art_layout.h"
#include "art_engine/objects/art_top_object.h"
#include "art_engine/pixels/art_solid_box.h"
#include "rofa_lib/keyboard.h"
#include "zel_basics/debug.h"

namespace {

const point2d PanelSize(360, 160);
const double TitleBarHeight = 24;
const point2d ButtonSize(80, 24);
const double ButtonMargin = 12;

// The widgets' faces until they are dressed from the icon document: premultiplied colours.
const agg::rgba8 VeilColor(0, 0, 0, 96);
const agg::rgba8 PanelColor(232, 232, 232, 255);
const agg::rgba8 TitleBarColor(58, 88, 140, 255);
const agg::rgba8 ButtonColors[] = {agg::rgba8(200, 200, 200, 255), agg::rgba8(215, 225, 245, 255),
                                   agg::rgba8(150, 165, 200, 255)};

bool IsInside(const point2d &Point, const point2d &Size)
{
    return Point.X >= 0 && Point.Y >= 0 && Point.X < Size.X && Point.Y < Size.Y;
}

// The action behind each button of a message box: the answer's own action, if any, then the box
// closes.
class art_message_box_answer : public art_button_action
{
public:
    art_message_box_answer(reference_pointer<art_message_box> Box, ownership_pointer<art_button_action> Answer)
        : Box(Box), Answer(Answer)
    {
    }

    void Execute() override
    {
        if (Answer.IsSet())
            Answer->Execute();
        if (Box.IsSet())
            Box->Close();
    }

    reference_pointer<art_button_action> GetAnswer() const
    {
        return reference_pointer<art_button_action>(Answer.Get());
    }

private:
    reference_pointer<art_message_box> Box;
    ownership_pointer<art_button_action> Answer;
};

reference_pointer<art_button_action> AnswerOf(const reference_pointer<art_button> &Button)
{
    if (!Button.IsSet())
        return reference_pointer<art_button_action>();
    reference_pointer<art_message_box_answer> Answer = Button->GetAction().DynamicCast<art_message_box_answer>();
    return Answer.IsSet() ? Answer->GetAnswer() : reference_pointer<art_button_action>();
}

} // namespace

zel_string art_button_action::GetLabel() { return zel_string(); }

zel_string art_button_action::GetToolTip() { return zel_string(); }

// ---- art_button ----

art_button::art_button(zel_string Caption) : State(ButtonNormal), Caption(Caption)
{
    Name = Caption;
    SetHandle(point2d(0, 0));
    SetSize(ButtonSize);
}

void art_button::SetAction(ownership_pointer<art_button_action> NewAction) { Action = NewAction; }

reference_pointer<art_button_action> art_button::GetAction() const
{
    return reference_pointer<art_button_action>(Action.Get());
}

void art_button::OnClick() {}

void art_button::GetToolTipText(zel_string &Title, zel_string &Text)
{
    Title = Caption;
    Text = ToolTipText;
}

void art_button::Click()
{
    OnClick();
    if (Action.IsSet())
        Action->Execute();
}

void art_button::SetState(button_state NewState)
{
    if (NewState == State)
        return;
    State = NewState;
    RequestRedraw();
}

reference_pointer<art_object> art_button::HandlePointerEvent(reference_pointer<art_pointer_event> PointerEvent)
{
    TOVAS_ASSERT(PointerEvent.IsSet(), this);
    bool Inside = IsInside(PointerEvent->GetLocation(), Size);
    switch (PointerEvent->GetPointerEventType()) {
    case art_pointer_event::PointerMovedIn:
    case art_pointer_event::PointerMovedWithin:
        if (State != ButtonPressed)
            SetState(Inside ? ButtonHover : ButtonNormal);
        return reference_pointer<art_object>(this);
    case art_pointer_event::PointerMovedOut:
        if (State != ButtonPressed)
            SetState(ButtonNormal);
        return reference_pointer<art_object>(this);
    case art_pointer_event::PointerButtonDown:
        if (PointerEvent->GetButton() != art_pointer_event::LeftButton || !Inside)
            return reference_pointer<art_object>();
        SetState(ButtonPressed);
        return reference_pointer<art_object>(this);
    case art_pointer_event::PointerButtonUp: {
        if (PointerEvent->GetButton() != art_pointer_event::LeftButton || State != ButtonPressed)
            return reference_pointer<art_object>();
        SetState(Inside ? ButtonHover : ButtonNormal);
        // The click may take this button out of the tree; nothing of it is touched afterwards.
        reference_pointer<art_object> Self(this);
        if (Inside)
            Click();
        return Self;
    }
    default:
        return reference_pointer<art_object>();
    }
}

void art_button::Draw(reference_pointer<bitmap_interface> Target, reference_pointer<bitmap_interface>,
                      agg::trans_affine Matrix, reference_pointer<art_cache>)
{
    agg::trans_affine Frame = GetObjectToParent();
    Frame.multiply(Matrix);
    FillSolidBox(Target, Frame, rectangle(point2d(0, 0), Size), ButtonColors[State]);
}

// ---- art_message_box ----

art_message_box::art_message_box(zel_string Title, zel_string Text, ownership_pointer<art_button_action> OkayAction,
                                 ownership_pointer<art_button_action> CancelAction)
    : Title(Title), Text(Text)
{
    Name = "MessageBox";
    SetHandle(point2d(0, 0));
    // Over the whole parent, whatever size the parent takes later.
    reference_pointer<art_floating_autolayout> Floating = GetLayout().DynamicCast<art_floating_autolayout>();
    Floating->SetMode(7, 7);
    for (art_relativizer *Axis : {&Floating->GetH(), &Floating->GetV()}) {
        Axis->RelVals[0] = 0;
        Axis->RelVals[1] = 1;
    }
    reference_pointer<art_message_box> Self(this);
    OkayButton = AddButton("Okay", ownership_pointer<art_button_action>(new art_message_box_answer(Self, OkayAction)));
    if (CancelAction.IsSet())
        CancelButton =
            AddButton("Cancel", ownership_pointer<art_button_action>(new art_message_box_answer(Self, CancelAction)));
}

reference_pointer<art_button> art_message_box::AddButton(zel_string Caption, ownership_pointer<art_button_action> Action)
{
    ownership_pointer<art_button> Button(new art_button(Caption));
    Button->SetAction(Action);
    reference_pointer<art_button> Added(Button.Get());
    AddChild(ownership_pointer<art_object>(Button));
    return Added;
}

reference_pointer<art_message_box> art_message_box::Show(reference_pointer<art_object> Parent, zel_string Title,
                                                         zel_string Text, ownership_pointer<art_button_action> OkayAction,
                                                         ownership_pointer<art_button_action> CancelAction)
{
    TOVAS_ASSERT(Parent.IsSet(), nullptr);
    ownership_pointer<art_message_box> Box(new art_message_box(Title, Text, OkayAction, CancelAction));
    reference_pointer<art_message_box> Shown(Box.Get());
    Parent->AddChild(ownership_pointer<art_object>(Box));
    // Sized to the parent at once, so that it stands as it will be drawn.
    Shown->Layout();
    reference_pointer<art_top_object> Top = Shown->GetTopObject();
    if (Top.IsSet()) {
        reference_pointer<art_human_input_set> InputSet = Top->GetInputSet();
        Shown->PreviousKeyFocus = InputSet->GetKeyFocus();
        InputSet->SetKeyFocus(reference_pointer<art_object>(Shown.Get()));
        // The box came up under a pointer that may not move again: hover is put right next tick.
        Top->SetPointerPending();
    }
    Shown->RequestRedraw();
    return Shown;
}

void art_message_box::Close()
{
    if (MarkedForDeletion)
        return;
    RequestRedraw();
    MarkForDeletion();
    reference_pointer<art_top_object> Top = GetTopObject();
    if (!Top.IsSet())
        return;
    reference_pointer<art_human_input_set> InputSet = Top->GetInputSet();
    if (InputSet->GetKeyFocus() == reference_pointer<art_object>(this))
        InputSet->SetKeyFocus(PreviousKeyFocus);
    Top->SetPointerPending();
}

reference_pointer<art_button_action> art_message_box::GetOkayAction() const { return AnswerOf(OkayButton); }

reference_pointer<art_button_action> art_message_box::GetCancelAction() const { return AnswerOf(CancelButton); }

bool art_message_box::Layout()
{
    bool Changed = art_object::Layout();
    // The buttons sit at the panel's lower right, from the right edge leftward.
    point2d PanelEnd = GetPanel().GetEnd();
    int Slot = 0;
    for (reference_pointer<art_button> Button : {CancelButton, OkayButton}) {
        if (!Button.IsSet())
            continue;
        Slot++;
        Button->SetLocation(point2d(PanelEnd.X - (ButtonMargin + ButtonSize.X) * Slot,
                                    PanelEnd.Y - ButtonMargin - ButtonSize.Y));
    }
    return Changed;
}

rectangle art_message_box::GetPanel() const
{
    point2d Panel(PanelSize.X < Size.X ? PanelSize.X : Size.X, PanelSize.Y < Size.Y ? PanelSize.Y : Size.Y);
    return rectangle(point2d((Size.X - Panel.X) / 2, (Size.Y - Panel.Y) / 2), Panel);
}

bool art_message_box::IsPointInside(const point2d &) { return true; }

reference_pointer<art_object> art_message_box::HandlePointerEvent(reference_pointer<art_pointer_event> PointerEvent)
{
    reference_pointer<art_object> Taker = art_object::HandlePointerEvent(PointerEvent);
    if (Taker.IsSet() && Taker != reference_pointer<art_object>(this))
        return Taker;
    return reference_pointer<art_object>(this);
}

reference_pointer<art_object> art_message_box::HandleKeyEvent(reference_pointer<art_key_event> KeyEvent)
{
    TOVAS_ASSERT(KeyEvent.IsSet(), this);
    reference_pointer<art_object> Self(this);
    int Key = KeyEvent->GetKeyCode();
    if (Key == KeyReturn || Key == KeyPadEnter)
        OkayButton->Click();
    else if (Key == KeyEscape && CancelButton.IsSet())
        CancelButton->Click();
    return Self;
}

void art_message_box::Draw(reference_pointer<bitmap_interface> Target, reference_pointer<bitmap_interface> Backdrop,
                           agg::trans_affine Matrix, reference_pointer<art_cache> Cache)
{
    agg::trans_affine Frame = GetObjectToParent();
    Frame.multiply(Matrix);
    FillSolidBox(Target, Frame, rectangle(point2d(0, 0), Size), VeilColor);
    rectangle Panel = GetPanel();
    FillSolidBox(Target, Frame, Panel, PanelColor);
    FillSolidBox(Target, Frame, rectangle(Panel.Location, point2d(Panel.Size.X, TitleBarHeight)), TitleBarColor);
    art_object::Draw(Target, Backdrop, Matrix, Cache);
}
