#pragma once

#include <cstdint>

#include "rofa_linux_sal/rofa_linux_gal.h"
#include "zel_basics/array.h"
#include "zel_basics/rectangle.h"
#include "zel_basics/zel_string.h"

// One call of ShowFileDialog, as it was asked.
struct file_dialog_request
{
    bool Open = false;
    zel_string Title;
    zel_string DefaultPath;
    zel_string DefaultExtension;
    zel_string Filter;
    bool PathMustExist = false;
    bool AllowMultiSelect = false;
    bool FileMustExist = false;
};

// One call of NavigateBrowser.
struct browser_navigation
{
    zel_string URL;
    int Mode = 0;
};

class rofa_headless_gal;

// Writes the screen to a file, for a caller that has an image writer.
typedef void (*headless_screen_writer)(rofa_headless_gal &Layer, zel_string Path);

// A binding with no display, for tests, command-line tools and servers. The window is the in-memory
// screen; the clock ticks only when the caller sends WM_TIMER; the clipboard is the process's own;
// file dialogs answer from a queue that the caller fills; everything a window system would be asked
// to do is recorded for the caller to read.
class rofa_headless_gal : public rofa_linux_gal
{
public:
    rofa_headless_gal(int Width, int Height, rofa_host_interface *Host);

    zel_string ShowFileDialog(bool Open, zel_string Title, zel_string DefaultPath, zel_string DefaultExtension,
                              zel_string Filter, bool PathMustExist, bool AllowMultiSelect,
                              bool FileMustExist) override;
    bool NavigateBrowser(zel_string URL, int Mode) override;

    // The next file dialog answers Path; with the queue empty a dialog is cancelled ("").
    void QueueFileDialogAnswer(zel_string Path);
    const array<file_dialog_request> &GetFileDialogRequests() const { return FileDialogRequests; }
    const array<browser_navigation> &GetNavigations() const { return Navigations; }

    // The paths a WM_DROPFILES whose WParam is Drop delivers, in the order added.
    void AddDroppedFile(uint32_t Drop, zel_string Path);
    void ClearDroppedFiles();

    bool IsTimerRunning() const { return TimerRunning; }
    bool IsDropAccepted() const { return DropAccepted; }
    int GetFocusRequests() const { return FocusRequests; }
    int GetActivations() const { return Activations; }
    int GetPaints() const { return Paints; }
    bool IsCaptureHeld() const { return CaptureHeld; }
    int GetCaptureReleases() const { return CaptureReleases; }
    bool IsPointerVisible() const { return PointerVisible; }
    // The shape last set, or 0 before any.
    int GetPointerShape() const { return PointerShape; }
    const array<int_rectangle> &GetInvalidatedAreas() const { return InvalidatedAreas; }
    void ClearInvalidatedAreas() { InvalidatedAreas.Clear(); }
    // Messages whose sender asked for default handling and that this layer left to the platform.
    int GetDefaultHandlerCalls() const { return DefaultHandlerCalls; }

    void SetScreenWriter(headless_screen_writer Writer) { ScreenWriter = Writer; }
    // Fails when no writer is set.
    void SaveScreen(zel_string Path);

    // With a writer set and the parameter "screen_png" naming a file, each message after which the
    // screen shows something new leaves the screen in that file: a host with no display thus has a
    // picture of what its window would show.
    uint32_t ProcessGUIMessage(rofa_gui_message *Message) override;

protected:
    void AcceptDroppedFiles() override;
    void StartTimer() override;
    void KillTimer() override;
    void FocusWindow() override;
    void ActivateWindow() override;
    void InvalidateArea(int_rectangle Area) override;
    void PaintScreen() override;
    void TakeCapture() override;
    void ReleaseCapture() override;
    void SetPointerVisible(bool Visible) override;
    void SetPointerShape(linux_cursor_shape Shape) override;
    int GetDroppedFileCount(uint32_t Drop) override;
    void GetDroppedFileName(uint32_t Drop, int Index, char *Buffer, int BufferSize) override;
    uint32_t CallPlatformDefault(rofa_gui_message *Message) override;

private:
    int FindDroppedFile(uint32_t Drop, int Index) const;

    array<zel_string> FileDialogAnswers;
    array<file_dialog_request> FileDialogRequests;
    array<browser_navigation> Navigations;
    array<uint32_t> DropKeys;
    array<zel_string> DropPaths;
    bool TimerRunning;
    bool DropAccepted;
    int FocusRequests;
    int Activations;
    int Paints;
    bool CaptureHeld;
    int CaptureReleases;
    bool PointerVisible;
    int PointerShape;
    array<int_rectangle> InvalidatedAreas;
    bool ScreenChanged;
    int DefaultHandlerCalls;
    headless_screen_writer ScreenWriter;
};
