#include "rofa_lib/zel_hal.h"

#include "rofa_lib/sal_functions.h"
#include "zel_basics/debug.h"

namespace {

// Environment and global maps hold a few dozen entries at most.
constexpr int EnvironmentMapSize = 32;
constexpr int GlobalMapSize = 8;

// A token or value in double quotes stands for what is between them.
zel_string StripQuotes(zel_string Text)
{
    if (Text.GetLength() > 0 && Text[0] == '"')
        Text = Text.RightOf(0);
    if (Text.GetLength() > 0 && Text[Text.GetLength() - 1] == '"')
        Text.RemoveLast();
    return Text;
}

} // namespace

system_abstraction_layer::system_abstraction_layer()
    : EnvironmentVars(EnvironmentMapSize), GlobalReferences(GlobalMapSize), GlobalOwners(GlobalMapSize)
{
}

void system_abstraction_layer::ReservedLayerHook() {}

void system_abstraction_layer::ReservedLayerHook2() {}

bool system_abstraction_layer::EnvironmentVarExists(zel_string Key) { return EnvironmentVars.KeyExists(Key.ToLower()); }

zel_string system_abstraction_layer::GetEnvironmentVar(zel_string Key)
{
    int Slot = EnvironmentVars.Find(Key.ToLower());
    if (Slot < 0)
        return zel_string();
    return EnvironmentVars.GetValueAt(Slot);
}

void system_abstraction_layer::SetEnvironmentVar(zel_string Key, zel_string Value)
{
    EnvironmentVars[Key.ToLower()] = Value;
}

zel_string system_abstraction_layer::TakeEnvironmentVar(zel_string Key)
{
    Key = Key.ToLower();
    TOVAS_ASSERT(EnvironmentVars.KeyExists(Key), this);
    return EnvironmentVars.RemoveAt(EnvironmentVars.Find(Key));
}

void system_abstraction_layer::ParseCommandLine(zel_string Line)
{
    SetEnvironmentVar("CommandLine", GetEnvironmentVar("CommandLine") + " " + Line);

    int Length = Line.GetLength();
    int Position = 0;
    while (true) {
        int Start = Line.FindNonWhitespace(Position);
        if (Start >= Length)
            break;
        // White space inside a quoted stretch belongs to the token.
        int End = Line.FindWhitespace(Start);
        int Quote = Line.Find('"', Start);
        while (Quote < End) {
            int Closing = Line.FindClosingQuote(Quote);
            End = Line.FindWhitespace(Closing + 1);
            Quote = Line.Find('"', Closing + 1);
        }
        Position = End;

        zel_string Token = Line.Mid(Start, End - 1);
        if (Token[0] == '"')
            Token = StripQuotes(Token);
        if (Token.IsEmpty())
            continue;

        if (Token[0] == '-' || Token[0] == '/')
            Token = Token.RightOf(0);
        zel_string Key = Token.LeftOf('=');
        zel_string Value = Token.RightOf('=');
        SetEnvironmentVar(Key, StripQuotes(Value));
    }
}

bool system_abstraction_layer::GlobalReferenceIsSet(zel_string Key)
{
    int Slot = GlobalReferences.Find(Key);
    return Slot >= 0 && GlobalReferences.GetValueAt(Slot).IsSet();
}

reference_pointer<base_object> system_abstraction_layer::GetGlobalReference(zel_string Key)
{
    int Slot = GlobalReferences.Find(Key);
    if (Slot < 0)
        return reference_pointer<base_object>();
    return GlobalReferences.GetValueAt(Slot);
}

void system_abstraction_layer::SetGlobalReference(zel_string Key, reference_pointer<base_object> Reference)
{
    GlobalReferences[Key] = Reference;
}

void system_abstraction_layer::SetGlobalOwner(zel_string Key, ownership_pointer<base_object> Owner)
{
    TOVAS_ASSERT(!GlobalOwners.KeyExists(Key), this);
    SetGlobalReference(Key, reference_pointer<base_object>(Owner));
    GlobalOwners[Key] = Owner;
}

ownership_pointer<base_object> system_abstraction_layer::RemoveGlobalOwner(zel_string Key)
{
    int Slot = GlobalOwners.Find(Key);
    if (Slot < 0)
        return ownership_pointer<base_object>();
    return GlobalOwners.RemoveAt(Slot);
}

graphical_system_abstraction_layer::graphical_system_abstraction_layer()
    : LastTime(-0.001), CurrentTime(0), FrameTime(0.001), HasFocus(true), Keyboard(new keyboard_interface),
      Mouse(new mouse_interface)
{
}

bool graphical_system_abstraction_layer::NavigateBrowser(zel_string, int) { return false; }

bool graphical_system_abstraction_layer::ReservedTrueQuery() { return true; }

bool graphical_system_abstraction_layer::ReservedFalseQuery() { return false; }

bool graphical_system_abstraction_layer::ReservedFalseQuery2() { return false; }

void graphical_system_abstraction_layer::SetDisplayMode(int) {}

void graphical_system_abstraction_layer::SetCursor(int) {}

zel_string graphical_system_abstraction_layer::ShowFileDialog(bool, zel_string, zel_string, zel_string, zel_string,
                                                              bool, bool, bool)
{
    return zel_string();
}

void graphical_system_abstraction_layer::ReservedHook() {}

void graphical_system_abstraction_layer::ReservedAreaHook(int, int, int, int) {}

void graphical_system_abstraction_layer::PresentBitmap(int, int, reference_pointer<bitmap_interface>) {}

int_point2d graphical_system_abstraction_layer::GetWindowSize() { return GetScreenSize(); }

int graphical_system_abstraction_layer::GetBitsPerPixel() { return 32; }

int graphical_system_abstraction_layer::GetColorDepth() { return GetBitsPerPixel(); }

bool graphical_system_abstraction_layer::ReservedFalseQuery3() { return false; }

int_point2d graphical_system_abstraction_layer::GetScreenSize() { return int_point2d(0, 0); }

int_point2d graphical_system_abstraction_layer::GetDisplaySize() { return GetScreenSize(); }

void graphical_system_abstraction_layer::RunTick()
{
    LastTime = CurrentTime;
    CurrentTime = SALGetTime();
    FrameTime = CurrentTime - LastTime;
    TOVAS_ASSERT(RofaApp.IsSet(), this);
    RofaApp->Run();
}
