#include "rofa_linux_sal/rofa_linux_gal.h"

#include <cstdlib>

#include "rofa_lib/keyboard.h"
#include "rofa_lib/mouse_interface.h"
#include "rofa_linux_sal/rofa_linux_keys.h"
#include "rofa_linux_sal/sal_blit.h"
#include "rofa_linux_sal/win32_messages.h"
#include "zel_basics/debug.h"

namespace {

// Wheel deltas come in steps of this size, one per notch.
constexpr int WheelDelta = 120;

// Path buffer for each dropped file, as the platform's drop query fills one.
constexpr int DropPathBufferSize = 1024;

// Keeps the byte size of the screen within a 32-bit count.
constexpr int64_t MaxScreenPixels = 1 << 28;

} // namespace

linux_cursor_shape CursorShapeOfNumber(int Cursor)
{
    if (Cursor < CursorShapeArrow || Cursor > CursorShapeBusyArrow)
        return CursorShapeArrow;
    return static_cast<linux_cursor_shape>(Cursor);
}

rofa_linux_gal::rofa_linux_gal(int Width, int Height, rofa_native_window Window, rofa_host_interface *Host)
    : Host(Host), Window(Window), CursorNumber(1), HasCursorShape(false), CursorShape(CursorShapeArrow),
      PointerShowCount(0), Capturing(false), CapsLockToggle(false), NumLockToggle(false), Width(Width),
      Height(Height), Screen(0)
{
    if (Host != nullptr) {
        int32_t Count = Host->Operations->GetParameterCount(Host);
        for (int32_t Index = 0; Index < Count; Index++)
            SetEnvironmentVar(Host->Operations->GetParameterName(Host, Index),
                              Host->Operations->GetParameterValue(Host, Index));
    }
    if (EnvironmentVarExists("width") && EnvironmentVarExists("height")) {
        this->Width = GetEnvironmentVar("width").ToInt(10);
        this->Height = GetEnvironmentVar("height").ToInt(10);
    }
    AllocateScreen();
}

void rofa_linux_gal::ConnectToWindow()
{
    SetCursor(CursorNumber);
    AcceptDroppedFiles();
    StartTimer();
    FocusWindow();
    InvalidateArea(int_rectangle(int_point2d(0, 0), int_point2d(Width, Height)));
}

void rofa_linux_gal::AllocateScreen()
{
    TOVAS_ASSERT(Width>=0 && Height>=0, this);
    TOVAS_ASSERT(static_cast<int64_t>(Width)*Height<=MaxScreenPixels, this);
    int Count = Width * Height;
    Screen.Clear();
    Screen.Reserve(Count);
    Screen.SetNumberOfElements(Count, win_rgba());
    // A pattern that shows a screen nothing has been drawn to yet.
    win_rgba *Pixel = Screen.GetData();
    for (int Index = 0; Index < Count; Index++)
        Pixel[Index] = win_rgba(0, static_cast<uint8_t>(Index), static_cast<uint8_t>(Index >> 8), 0);
}

win_rgba rofa_linux_gal::GetScreenPixel(int X, int Y) const
{
    TOVAS_ASSERT(X>=0 && X<Width && Y>=0 && Y<Height, const_cast<rofa_linux_gal *>(this));
    return Screen[(Height - 1 - Y) * Width + X];
}

uint32_t rofa_linux_gal::ProcessGUIMessage(rofa_gui_message *Message)
{
    uint32_t LParam = static_cast<uint32_t>(Message->LParam);
    switch (Message->Message) {
    case WM_ACTIVATEAPP:
        if (Message->WParam == 0)
            Mouse->SetLocation(-1, -1);
        return 0;
    case WM_MOVE:
        return 0;
    case WM_SIZE: {
        int32_t NewWidth = static_cast<int32_t>(LowWord(LParam));
        int32_t NewHeight = static_cast<int32_t>(HighWord(LParam));
        if (NewWidth != Width || NewHeight != Height) {
            Width = NewWidth;
            Height = NewHeight;
            AllocateScreen();
        }
        RunTick();
        return DefaultHandling(Message);
    }
    case WM_ACTIVATE:
        if (LowWord(Message->WParam) == WA_INACTIVE) {
            KillTimer();
            Mouse->SetLocation(-1, -1);
        } else {
            StartTimer();
            FocusWindow();
        }
        return 0;
    case WM_SETFOCUS:
    case WM_MOUSEACTIVATE:
        HasFocus = true;
        StartTimer();
        FocusWindow();
        return 0;
    case WM_KILLFOCUS:
        HasFocus = false;
        RunTick();
        return 0;
    case WM_PAINT:
        PaintScreen();
        return 0;
    case WM_ERASEBKGND:
    case WM_CHAR:
    case WM_NCPAINT:
        // The whole client area is always painted, and characters come from key codes.
        return 0;
    case WM_SETCURSOR:
        if (HasCursorShape)
            SetPointerShape(CursorShape);
        return 0;
    case WM_WINDOWPOSCHANGING:
        if (static_cast<int16_t>(LowWord(LParam)) < 0 || static_cast<int16_t>(HighWord(LParam)) < 0)
            InvalidateArea(int_rectangle(int_point2d(0, 0), int_point2d(Width, Height)));
        return DefaultHandling(Message);
    case WM_NCMOUSEMOVE:
        Mouse->SetLocation(-1, -1);
        return 0;
    case WM_KEYDOWN:
    case WM_SYSKEYDOWN:
        HandleKeyDown(Message);
        return 0;
    case WM_KEYUP:
    case WM_SYSKEYUP:
        HandleKeyUp(Message);
        return 0;
    case WM_TIMER:
        RunTick();
        // Given up only when the application has seen every button go up, so that a press of a
        // second button during a drag does not lose the first one's release outside the window.
        if (Capturing && Mouse->GetButtonState() == 0) {
            Capturing = false;
            ReleaseCapture();
        }
        return DefaultHandling(Message);
    case WM_MOUSEMOVE:
        Mouse->SetLocation(static_cast<int16_t>(LowWord(LParam)), static_cast<int16_t>(HighWord(LParam)));
        return 0;
    case WM_LBUTTONDOWN:
        HandleButtonDown(MouseButtonLeft);
        return 0;
    case WM_RBUTTONDOWN:
        HandleButtonDown(MouseButtonRight);
        return 0;
    case WM_MBUTTONDOWN:
        HandleButtonDown(MouseButtonMiddle);
        return 0;
    case WM_LBUTTONUP:
        AddButtonAction(MouseButtonLeft, MouseActionRelease);
        return 0;
    case WM_RBUTTONUP:
        AddButtonAction(MouseButtonRight, MouseActionRelease);
        return 0;
    case WM_MBUTTONUP:
        AddButtonAction(MouseButtonMiddle, MouseActionRelease);
        return 0;
    case WM_LBUTTONDBLCLK:
        AddButtonAction(MouseButtonLeft, MouseActionDoubleClick);
        return 0;
    case WM_RBUTTONDBLCLK:
        AddButtonAction(MouseButtonRight, MouseActionDoubleClick);
        return 0;
    case WM_MBUTTONDBLCLK:
        AddButtonAction(MouseButtonMiddle, MouseActionDoubleClick);
        return 0;
    case WM_MOUSEWHEEL:
        HandleMouseWheel(Message);
        return 0;
    case WM_DROPFILES:
        HandleDropFiles(Message);
        return 0;
    default:
        return DefaultHandling(Message);
    }
}

uint32_t rofa_linux_gal::DefaultHandling(rofa_gui_message *Message)
{
    if (!Message->CallDefaultHandler)
        return 0;
    return CallPlatformDefault(Message);
}

void rofa_linux_gal::HandleKeyDown(rofa_gui_message *Message)
{
    int Key = VirtualKeyToKeyCode(Message->WParam);
    // A lock switches on the press, not on the keyboard's repeats while it is held.
    if (!Keyboard->GetKeyDown(Key)) {
        if (Key == KeyCapsLock)
            CapsLockToggle = !CapsLockToggle;
        else if (Key == KeyNumLock)
            NumLockToggle = !NumLockToggle;
    }
    Keyboard->SetKeyDown(Key, 1);
    RefreshToggleStates();
    int Repeat = static_cast<int>(LowWord(static_cast<uint32_t>(Message->LParam)));
    do
        Keyboard->PushKey(Key);
    while (--Repeat > 0);
}

void rofa_linux_gal::HandleKeyUp(rofa_gui_message *Message)
{
    Keyboard->ClearKeyDown(VirtualKeyToKeyCode(Message->WParam));
    RefreshToggleStates();
}

void rofa_linux_gal::RefreshToggleStates()
{
    Keyboard->SetCapsLock(IsToggleKeyOn(VK_CAPITAL));
    Keyboard->SetNumLock(IsToggleKeyOn(VK_NUMLOCK));
}

void rofa_linux_gal::HandleButtonDown(int Button)
{
    TakeCapture();
    FocusWindow();
    Capturing = true;
    AddButtonAction(Button, MouseActionPress);
}

void rofa_linux_gal::AddButtonAction(int Button, int Action)
{
    int_point2d Location = Mouse->GetLocation();
    Mouse->AddMouseAction(mouse_action(Button, Action, Location.X, Location.Y));
}

void rofa_linux_gal::HandleMouseWheel(rofa_gui_message *Message)
{
    int Count = static_cast<int16_t>(HighWord(Message->WParam)) / WheelDelta;
    int Button = Count >= 0 ? MouseButtonWheelUp : MouseButtonWheelDown;
    for (int Notch = 0; Notch < abs(Count); Notch++) {
        AddButtonAction(Button, MouseActionPress);
        AddButtonAction(Button, MouseActionRelease);
    }
}

void rofa_linux_gal::HandleDropFiles(rofa_gui_message *Message)
{
    int Count = GetDroppedFileCount(Message->WParam);
    zel_string Names;
    for (int Index = 0; Index < Count; Index++) {
        zel_string Buffer('\0', DropPathBufferSize);
        TOVAS_ASSERT(Buffer.GetLength()==1024, this);
        GetDroppedFileName(Message->WParam, Index, &Buffer[0], Buffer.GetLength());
        Names += zel_string(Buffer.GetString());
        Names += zel_string('\0', 1);
    }
    SetEnvironmentVar("DropFileNames", Names);
    ActivateWindow();
}

bool rofa_linux_gal::NavigateBrowser(zel_string URL, int Mode)
{
    if (Host == nullptr)
        return false;
    return Host->Operations->Navigate(Host, URL.GetString(), Mode) != 0;
}

void rofa_linux_gal::SetWindowTitle(zel_string) {}

int rofa_linux_gal::ShowPointer(bool Show)
{
    bool WasVisible = PointerShowCount >= 0;
    PointerShowCount += Show ? 1 : -1;
    bool Visible = PointerShowCount >= 0;
    if (Visible != WasVisible)
        SetPointerVisible(Visible);
    return PointerShowCount;
}

void rofa_linux_gal::SetCursor(int Cursor)
{
    if (Cursor == CursorNumber && HasCursorShape)
        return;
    CursorNumber = Cursor;
    if (Cursor == 0) {
        while (ShowPointer(false) >= 0) {
        }
        return;
    }
    // The count is shared with whatever else shows or hides the pointer: one show, taken back down to
    // exactly shown if it overshoots. A pointer hidden more than once stays hidden.
    if (ShowPointer(true) >= 1) {
        while (ShowPointer(false) > 0) {
        }
    }
    CursorShape = CursorShapeOfNumber(Cursor);
    HasCursorShape = true;
    SetPointerShape(CursorShape);
}

void rofa_linux_gal::PresentBitmap(int X, int Y, reference_pointer<bitmap_interface> Bitmap)
{
    // The screen is stored bottom-up: its top line is the last one in memory.
    uint8_t *TopLine = Screen.GetNumberOfElements() > 0
                           ? reinterpret_cast<uint8_t *>(Screen.GetData() + (Height - 1) * Width)
                           : nullptr;
    SALBlit(TopLine, -Width * 4, 32, int_point2d(Width, Height), int_point2d(X, Y), 0xFF0000, 0xFF00, 0xFF, Bitmap);
    InvalidateArea(int_rectangle(int_point2d(X, Y), Bitmap->GetSize()));
}

int_point2d rofa_linux_gal::GetScreenSize() { return int_point2d(Width, Height); }

void rofa_linux_gal::ReservedStringOperation(zel_string, zel_string) { TOVAS_ASSERT(false, this); }

void rofa_linux_gal::AcceptDroppedFiles() {}

void rofa_linux_gal::StartTimer() {}

void rofa_linux_gal::KillTimer() {}

void rofa_linux_gal::FocusWindow() {}

void rofa_linux_gal::ActivateWindow() {}

void rofa_linux_gal::InvalidateArea(int_rectangle) {}

void rofa_linux_gal::PaintScreen() {}

void rofa_linux_gal::TakeCapture() {}

void rofa_linux_gal::ReleaseCapture() {}

void rofa_linux_gal::SetPointerVisible(bool) {}

void rofa_linux_gal::SetPointerShape(linux_cursor_shape) {}

bool rofa_linux_gal::IsToggleKeyOn(uint32_t VirtualKey)
{
    return VirtualKey == VK_CAPITAL ? CapsLockToggle : VirtualKey == VK_NUMLOCK && NumLockToggle;
}

int rofa_linux_gal::GetDroppedFileCount(uint32_t) { return 0; }

void rofa_linux_gal::GetDroppedFileName(uint32_t, int, char *Buffer, int BufferSize)
{
    if (BufferSize > 0)
        Buffer[0] = '\0';
}

uint32_t rofa_linux_gal::CallPlatformDefault(rofa_gui_message *) { return 0; }
