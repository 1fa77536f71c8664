#pragma once

#include <cstdint>

#include "rofa_lib/rofa_plugin_api.h"
#include "rofa_lib/win_rgba.h"
#include "rofa_lib/zel_hal.h"
#include "zel_basics/array.h"
#include "zel_basics/rectangle.h"

// The standard pointer shapes a binding shows. Cursor numbers 1 to 12 name the shape of the same
// number; any other number but 0 shows the arrow.
enum linux_cursor_shape
{
    CursorShapeArrow = 1,
    CursorShapeIBeam = 2,
    CursorShapeHourglass = 3,
    CursorShapeResizeNorthWestSouthEast = 4,
    CursorShapeResizeNorthEastSouthWest = 5,
    CursorShapeResizeNorthSouth = 6,
    CursorShapeResizeWestEast = 7,
    CursorShapeMove = 8,
    CursorShapeForbidden = 9,
    CursorShapeHand = 10,
    CursorShapeHelp = 11,
    CursorShapeBusyArrow = 12,
};

linux_cursor_shape CursorShapeOfNumber(int Cursor);

// The window layer shared by every Linux binding. Hosts send it window messages with the Win32
// numbers and packing, so the message table, the key table and the capture rules live here once; what
// a window system must really do (timer, focus, capture, repaint, pointer, dropped paths) goes through
// the protected hooks, which do nothing here.
//
// A subclass's constructor must end with ConnectToWindow(): the hooks it overrides are not reachable
// from this constructor.
class rofa_linux_gal : public graphical_system_abstraction_layer
{
public:
    // The host's parameters become environment variables, and "width" and "height" among them, when
    // both are there, replace Width and Height before the screen is allocated.
    rofa_linux_gal(int Width, int Height, rofa_native_window Window, rofa_host_interface *Host);

    uint32_t ProcessGUIMessage(rofa_gui_message *Message) override;
    bool NavigateBrowser(zel_string URL, int Mode) override;
    // The browser owns the title.
    void SetWindowTitle(zel_string Title) override;
    void SetCursor(int Cursor) override;
    void PresentBitmap(int X, int Y, reference_pointer<bitmap_interface> Bitmap) override;
    int_point2d GetScreenSize() override;
    void ReservedStringOperation(zel_string, zel_string) override;

    // The screen as the window shows it: Width times Height pixels, the bottom line first.
    const array<win_rgba> &GetScreen() const { return Screen; }
    // One pixel, with Y counted from the top.
    win_rgba GetScreenPixel(int X, int Y) const;

    rofa_native_window GetWindow() const { return Window; }
    rofa_host_interface *GetHost() const { return Host; }
    int GetCursorNumber() const { return CursorNumber; }
    // The platform's count of pointer shows: the pointer is visible while it is 0 or more.
    int GetPointerShowCount() const { return PointerShowCount; }
    bool IsCapturing() const { return Capturing; }

protected:
    // Shows the arrow, accepts dropped files, starts the tick timer, takes the focus and has the
    // whole window repainted.
    void ConnectToWindow();

    virtual void AcceptDroppedFiles();
    // The tick timer sends WM_TIMER every 22 milliseconds while it runs.
    virtual void StartTimer();
    virtual void KillTimer();
    virtual void FocusWindow();
    virtual void ActivateWindow();
    // Repaint that part of the window, without erasing it first.
    virtual void InvalidateArea(int_rectangle Area);
    // Copy the whole screen to the window.
    virtual void PaintScreen();
    virtual void TakeCapture();
    virtual void ReleaseCapture();
    virtual void SetPointerVisible(bool Visible);
    virtual void SetPointerShape(linux_cursor_shape Shape);
    // Whether caps lock (VK_CAPITAL) or number lock (VK_NUMLOCK) is on. Without a platform to ask,
    // each press of the lock key switches it, as a keyboard does.
    virtual bool IsToggleKeyOn(uint32_t VirtualKey);
    // The paths of the drop that a WM_DROPFILES names: how many, and one of them, cut to fit
    // BufferSize bytes with its terminating zero byte.
    virtual int GetDroppedFileCount(uint32_t Drop);
    virtual void GetDroppedFileName(uint32_t Drop, int Index, char *Buffer, int BufferSize);
    // The platform's own handling of a message this layer leaves to it.
    virtual uint32_t CallPlatformDefault(rofa_gui_message *Message);

private:
    void AllocateScreen();
    int ShowPointer(bool Show);
    uint32_t DefaultHandling(rofa_gui_message *Message);
    void HandleKeyDown(rofa_gui_message *Message);
    void HandleKeyUp(rofa_gui_message *Message);
    void RefreshToggleStates();
    void HandleButtonDown(int Button);
    void AddButtonAction(int Button, int Action);
    void HandleMouseWheel(rofa_gui_message *Message);
    void HandleDropFiles(rofa_gui_message *Message);

    rofa_host_interface *Host;
    rofa_native_window Window;
    int CursorNumber;
    // The shape on show, once one has been set.
    bool HasCursorShape;
    linux_cursor_shape CursorShape;
    int PointerShowCount;
    bool Capturing;
    bool CapsLockToggle;
    bool NumLockToggle;
    int32_t Width;
    int32_t Height;
    array<win_rgba> Screen;
};
