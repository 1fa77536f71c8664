#include "rofa_headless_sal/rofa_headless_gal.h"

#include <cstring>

#include "zel_basics/debug.h"
#include "zel_basics/zel_error.h"

rofa_headless_gal::rofa_headless_gal(int Width, int Height, rofa_host_interface *Host)
    : rofa_linux_gal(Width, Height, nullptr, Host), FileDialogAnswers(0), FileDialogRequests(0), Navigations(0),
      DropKeys(0), DropPaths(0), TimerRunning(false), DropAccepted(false), FocusRequests(0), Activations(0),
      Paints(0), CaptureHeld(false), CaptureReleases(0), PointerVisible(true), PointerShape(0),
      InvalidatedAreas(0), ScreenChanged(false), DefaultHandlerCalls(0), ScreenWriter(nullptr)
{
    ConnectToWindow();
}

zel_string rofa_headless_gal::ShowFileDialog(bool Open, zel_string Title, zel_string DefaultPath,
                                             zel_string DefaultExtension, zel_string Filter, bool PathMustExist,
                                             bool AllowMultiSelect, bool FileMustExist)
{
    file_dialog_request Request;
    Request.Open = Open;
    Request.Title = Title;
    Request.DefaultPath = DefaultPath;
    Request.DefaultExtension = DefaultExtension;
    Request.Filter = Filter;
    Request.PathMustExist = PathMustExist;
    Request.AllowMultiSelect = AllowMultiSelect;
    Request.FileMustExist = FileMustExist;
    FileDialogRequests.Add(Request);
    if (FileDialogAnswers.GetNumberOfElements() == 0)
        return zel_string();
    zel_string Answer = FileDialogAnswers[0];
    FileDialogAnswers.Remove(0);
    return Answer;
}

void rofa_headless_gal::QueueFileDialogAnswer(zel_string Path) { FileDialogAnswers.Add(Path); }

bool rofa_headless_gal::NavigateBrowser(zel_string URL, int Mode)
{
    browser_navigation Navigation;
    Navigation.URL = URL;
    Navigation.Mode = Mode;
    Navigations.Add(Navigation);
    return rofa_linux_gal::NavigateBrowser(URL, Mode);
}

void rofa_headless_gal::AddDroppedFile(uint32_t Drop, zel_string Path)
{
    DropKeys.Add(Drop);
    DropPaths.Add(Path);
}

void rofa_headless_gal::ClearDroppedFiles()
{
    DropKeys.Clear();
    DropPaths.Clear();
}

int rofa_headless_gal::FindDroppedFile(uint32_t Drop, int Index) const
{
    for (int Entry = 0; Entry < DropKeys.GetNumberOfElements(); Entry++)
        if (DropKeys[Entry] == Drop && Index-- == 0)
            return Entry;
    return -1;
}

int rofa_headless_gal::GetDroppedFileCount(uint32_t Drop)
{
    int Count = 0;
    while (FindDroppedFile(Drop, Count) >= 0)
        Count++;
    return Count;
}

void rofa_headless_gal::GetDroppedFileName(uint32_t Drop, int Index, char *Buffer, int BufferSize)
{
    int Entry = FindDroppedFile(Drop, Index);
    TOVAS_ASSERT(Entry>=0, this);
    if (BufferSize <= 0)
        return;
    const zel_string &Path = DropPaths[Entry];
    int Length = Path.GetLength() < BufferSize - 1 ? Path.GetLength() : BufferSize - 1;
    memcpy(Buffer, Path.GetString(), static_cast<size_t>(Length));
    Buffer[Length] = '\0';
}

void rofa_headless_gal::SaveScreen(zel_string Path)
{
    if (ScreenWriter == nullptr)
        throw zel_error("The screen can't be saved: no screen writer is set.");
    ScreenWriter(*this, Path);
}

void rofa_headless_gal::AcceptDroppedFiles() { DropAccepted = true; }

void rofa_headless_gal::StartTimer() { TimerRunning = true; }

void rofa_headless_gal::KillTimer() { TimerRunning = false; }

void rofa_headless_gal::FocusWindow() { FocusRequests++; }

void rofa_headless_gal::ActivateWindow() { Activations++; }

void rofa_headless_gal::InvalidateArea(int_rectangle Area)
{
    InvalidatedAreas.Add(Area);
    ScreenChanged = true;
}

uint32_t rofa_headless_gal::ProcessGUIMessage(rofa_gui_message *Message)
{
    uint32_t Result = rofa_linux_gal::ProcessGUIMessage(Message);
    if (ScreenChanged && ScreenWriter != nullptr && EnvironmentVarExists("screen_png"))
        SaveScreen(GetEnvironmentVar("screen_png"));
    ScreenChanged = false;
    return Result;
}

void rofa_headless_gal::PaintScreen() { Paints++; }

void rofa_headless_gal::TakeCapture() { CaptureHeld = true; }

void rofa_headless_gal::ReleaseCapture()
{
    CaptureHeld = false;
    CaptureReleases++;
}

void rofa_headless_gal::SetPointerVisible(bool Visible) { PointerVisible = Visible; }

void rofa_headless_gal::SetPointerShape(linux_cursor_shape Shape) { PointerShape = Shape; }

uint32_t rofa_headless_gal::CallPlatformDefault(rofa_gui_message *)
{
    DefaultHandlerCalls++;
    return 0;
}
