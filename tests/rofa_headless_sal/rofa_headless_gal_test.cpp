#include <gtest/gtest.h>

#include <string>

#include "hosts/plugin_library.h"
#include "rofa_headless_sal/rofa_headless_gal.h"
#include "rofa_linux_sal/linux_bitmap.h"
#include "rofa_linux_sal/win32_messages.h"
#include "tests/rofa_lib/counting_app.h"
#include "tests/test_support.h"

namespace {

uint32_t Send(rofa_headless_gal &Layer, uint32_t Message, uint32_t WParam = 0, uint32_t LParam = 0,
              bool CallDefaultHandler = false)
{
    rofa_gui_message Record = {nullptr, Message, WParam, static_cast<int32_t>(LParam),
                               static_cast<uint8_t>(CallDefaultHandler ? 1 : 0)};
    return Layer.ProcessGUIMessage(&Record);
}

// Takes the queued button actions at each tick as the application does: a press sets the button's
// bit, a release or double click clears it.
class button_tracking_app : public rofa_app_interface
{
public:
    explicit button_tracking_app(rofa_headless_gal &Layer) : Layer(Layer) {}

    void Run() override
    {
        Runs++;
        array<mouse_action> &Actions = Layer.GetMouse()->GetMouseActions();
        while (Actions.GetNumberOfElements() > 0) {
            mouse_action Action = Actions[0];
            Actions.Remove(0);
            Layer.GetMouse()->SetButton(Action.Button, Action.Action == MouseActionPress);
            Seen.push_back(Action);
        }
    }

    int Runs = 0;
    std::vector<mouse_action> Seen;

private:
    rofa_headless_gal &Layer;
};

struct headless_with_buttons
{
    headless_with_buttons() : Layer(100, 80, nullptr), App(Layer)
    {
        Layer.SetRofaApp(reference_pointer<rofa_app_interface>(&App));
    }

    rofa_headless_gal Layer;
    button_tracking_app App;
};

int_rectangle Rect(int X, int Y, int Width, int Height)
{
    return int_rectangle(int_point2d(X, Y), int_point2d(Width, Height));
}

// Notes what the screen writer was given.
std::string WrittenPath;
int_point2d WrittenSize;
win_rgba WrittenTopLeft;

void RecordingWriter(rofa_headless_gal &Layer, zel_string Path)
{
    WrittenPath = ToStd(Path);
    WrittenSize = Layer.GetScreenSize();
    WrittenTopLeft = Layer.GetScreenPixel(0, 0);
}

} // namespace

TEST(HeadlessGAL, ConnectsToItsWindowAtConstruction)
{
    rofa_headless_gal Layer(32, 24, nullptr);
    EXPECT_TRUE(Layer.IsTimerRunning());
    EXPECT_TRUE(Layer.IsDropAccepted());
    EXPECT_EQ(1, Layer.GetFocusRequests());
    ASSERT_EQ(1, Layer.GetInvalidatedAreas().GetNumberOfElements());
    EXPECT_EQ(Rect(0, 0, 32, 24), Layer.GetInvalidatedAreas()[0]);
    EXPECT_EQ(1, Layer.GetCursorNumber());
    EXPECT_EQ(CursorShapeArrow, Layer.GetPointerShape());
    EXPECT_TRUE(Layer.IsPointerVisible());
    EXPECT_EQ(0, Layer.GetPointerShowCount());
    EXPECT_EQ(nullptr, Layer.GetWindow());
    EXPECT_EQ(int_point2d(32, 24), Layer.GetWindowSize());
}

TEST(HeadlessGAL, HostParametersSizeTheScreen)
{
    page_host Host;
    Host.AddParameter("width", "7");
    Host.AddParameter("height", "5");
    rofa_headless_gal Layer(32, 24, &Host);
    EXPECT_EQ(int_point2d(7, 5), Layer.GetScreenSize());
    EXPECT_EQ(Rect(0, 0, 7, 5), Layer.GetInvalidatedAreas()[0]);
}

TEST(HeadlessGAL, TheClockTicksOnlyWhenTheCallerSendsTimerMessages)
{
    rofa_headless_gal Layer(4, 4, nullptr);
    counting_app App(&Layer);
    Layer.SetRofaApp(reference_pointer<rofa_app_interface>(&App));
    Send(Layer, WM_MOUSEMOVE, 0, MakeLong(1, 1));
    Send(Layer, WM_PAINT);
    EXPECT_EQ(0, App.Runs);
    Send(Layer, WM_TIMER);
    Send(Layer, WM_TIMER);
    Send(Layer, WM_TIMER);
    EXPECT_EQ(3, App.Runs);
}

TEST(HeadlessGAL, ActivationStartsAndStopsTheTimer)
{
    rofa_headless_gal Layer(4, 4, nullptr);
    Send(Layer, WM_ACTIVATE, WA_INACTIVE);
    EXPECT_FALSE(Layer.IsTimerRunning());
    EXPECT_EQ(1, Layer.GetFocusRequests());
    Send(Layer, WM_ACTIVATE, 1);
    EXPECT_TRUE(Layer.IsTimerRunning());
    EXPECT_EQ(2, Layer.GetFocusRequests());
    Send(Layer, WM_ACTIVATE, WA_INACTIVE);
    Send(Layer, WM_SETFOCUS);
    EXPECT_TRUE(Layer.IsTimerRunning());
    EXPECT_EQ(3, Layer.GetFocusRequests());
    Send(Layer, WM_ACTIVATE, WA_INACTIVE);
    Send(Layer, WM_MOUSEACTIVATE);
    EXPECT_TRUE(Layer.IsTimerRunning());
    EXPECT_EQ(4, Layer.GetFocusRequests());
}

TEST(HeadlessGAL, CursorZeroTwiceChangesNothing)
{
    rofa_headless_gal Layer(4, 4, nullptr);
    Layer.SetCursor(0);
    EXPECT_FALSE(Layer.IsPointerVisible());
    EXPECT_EQ(-1, Layer.GetPointerShowCount());
    Layer.SetCursor(0);
    EXPECT_FALSE(Layer.IsPointerVisible());
    EXPECT_EQ(-1, Layer.GetPointerShowCount());
    EXPECT_EQ(0, Layer.GetCursorNumber());
    EXPECT_EQ(CursorShapeArrow, Layer.GetPointerShape());
}

TEST(HeadlessGAL, ShowingACursorBringsTheShowCountBackToZero)
{
    rofa_headless_gal Layer(4, 4, nullptr);
    Layer.SetCursor(0);
    Layer.SetCursor(2);
    EXPECT_TRUE(Layer.IsPointerVisible());
    EXPECT_EQ(0, Layer.GetPointerShowCount());
    EXPECT_EQ(CursorShapeIBeam, Layer.GetPointerShape());
    // Visible already: the count goes to 1 and straight back to 0.
    Layer.SetCursor(8);
    EXPECT_EQ(0, Layer.GetPointerShowCount());
    EXPECT_EQ(CursorShapeMove, Layer.GetPointerShape());
    Layer.SetCursor(40);
    EXPECT_EQ(40, Layer.GetCursorNumber());
    EXPECT_EQ(CursorShapeArrow, Layer.GetPointerShape());
}

TEST(HeadlessGAL, RepeatingTheCursorOnShowDoesNothing)
{
    rofa_headless_gal Layer(4, 4, nullptr);
    Layer.SetCursor(3);
    Layer.SetCursor(0);
    Layer.SetCursor(0);
    Layer.SetCursor(3);
    // One hide and one show: a second hide would have left the pointer hidden.
    EXPECT_TRUE(Layer.IsPointerVisible());
    EXPECT_EQ(0, Layer.GetPointerShowCount());
    EXPECT_EQ(CursorShapeHourglass, Layer.GetPointerShape());
}

TEST(HeadlessGAL, SetCursorMessageShowsTheStoredShapeAgain)
{
    rofa_headless_gal Layer(4, 4, nullptr);
    Layer.SetCursor(10);
    Layer.SetCursor(0);
    EXPECT_EQ(0u, Send(Layer, WM_SETCURSOR, 0, 0, true));
    EXPECT_EQ(CursorShapeHand, Layer.GetPointerShape());
    EXPECT_FALSE(Layer.IsPointerVisible());
    EXPECT_EQ(0, Layer.GetDefaultHandlerCalls());
}

TEST(HeadlessGAL, ButtonPressTakesCaptureAndFocus)
{
    headless_with_buttons Driven;
    Send(Driven.Layer, WM_RBUTTONDOWN);
    EXPECT_TRUE(Driven.Layer.IsCaptureHeld());
    EXPECT_TRUE(Driven.Layer.IsCapturing());
    EXPECT_EQ(2, Driven.Layer.GetFocusRequests());
}

TEST(HeadlessGAL, CaptureIsGivenUpAtTheTickAfterAllButtonsAreUp)
{
    headless_with_buttons Driven;
    Send(Driven.Layer, WM_MOUSEMOVE, 0, MakeLong(10, 10));
    Send(Driven.Layer, WM_LBUTTONDOWN);
    Send(Driven.Layer, WM_TIMER);
    EXPECT_EQ(1u, Driven.Layer.GetMouse()->GetButtonState());
    EXPECT_TRUE(Driven.Layer.IsCaptureHeld());

    Send(Driven.Layer, WM_RBUTTONDOWN);
    Send(Driven.Layer, WM_LBUTTONUP);
    Send(Driven.Layer, WM_TIMER);
    // The right button is still down: the capture stays.
    EXPECT_EQ(2u, Driven.Layer.GetMouse()->GetButtonState());
    EXPECT_TRUE(Driven.Layer.IsCaptureHeld());

    Send(Driven.Layer, WM_MOUSEMOVE, 0, MakeLong(-5, 90));
    Send(Driven.Layer, WM_RBUTTONUP);
    // Released, but not yet seen by a tick.
    EXPECT_TRUE(Driven.Layer.IsCaptureHeld());
    Send(Driven.Layer, WM_TIMER);
    EXPECT_EQ(0u, Driven.Layer.GetMouse()->GetButtonState());
    EXPECT_FALSE(Driven.Layer.IsCaptureHeld());
    EXPECT_FALSE(Driven.Layer.IsCapturing());
    EXPECT_EQ(1, Driven.Layer.GetCaptureReleases());

    ASSERT_EQ(4u, Driven.App.Seen.size());
    EXPECT_EQ(mouse_action(0, 0, 10, 10), Driven.App.Seen[0]);
    EXPECT_EQ(mouse_action(1, 0, 10, 10), Driven.App.Seen[1]);
    EXPECT_EQ(mouse_action(0, 1, 10, 10), Driven.App.Seen[2]);
    EXPECT_EQ(mouse_action(1, 1, -5, 90), Driven.App.Seen[3]);

    // Nothing more to give up at later ticks.
    Send(Driven.Layer, WM_TIMER);
    EXPECT_EQ(1, Driven.Layer.GetCaptureReleases());
}

TEST(HeadlessGAL, PresentBitmapInvalidatesItsRectangle)
{
    rofa_headless_gal Layer(20, 10, nullptr);
    Layer.ClearInvalidatedAreas();
    linux_bitmap Bitmap(int_point2d(5, 3));
    for (int I = 0; I < 15; I++) {
        Bitmap.GetFirstLine()[I * 4 + 0] = 0x11;
        Bitmap.GetFirstLine()[I * 4 + 1] = 0x22;
        Bitmap.GetFirstLine()[I * 4 + 2] = 0x33;
    }
    Layer.PresentBitmap(4, 6, reference_pointer<bitmap_interface>(&Bitmap));
    ASSERT_EQ(1, Layer.GetInvalidatedAreas().GetNumberOfElements());
    EXPECT_EQ(Rect(4, 6, 5, 3), Layer.GetInvalidatedAreas()[0]);
    EXPECT_EQ(win_rgba(0x33, 0x22, 0x11, 0), Layer.GetScreenPixel(4, 6));
    EXPECT_EQ(win_rgba(0x33, 0x22, 0x11, 0), Layer.GetScreenPixel(8, 8));
    // Storage index of (9, 8) is (10 - 1 - 8) * 20 + 9 = 29: the test pattern is untouched there.
    EXPECT_EQ(win_rgba(0, 29, 0, 0), Layer.GetScreenPixel(9, 8));
    EXPECT_EQ(win_rgba(0, 89, 0, 0), Layer.GetScreenPixel(9, 5));
}

TEST(HeadlessGAL, PaintIsRecorded)
{
    rofa_headless_gal Layer(4, 4, nullptr);
    EXPECT_EQ(0u, Send(Layer, WM_PAINT, 0, 0, true));
    EXPECT_EQ(1, Layer.GetPaints());
    EXPECT_EQ(0, Layer.GetDefaultHandlerCalls());
}

TEST(HeadlessGAL, AWindowMovedPartlyOffScreenIsRepainted)
{
    rofa_headless_gal Layer(6, 5, nullptr);
    Layer.ClearInvalidatedAreas();
    Send(Layer, WM_WINDOWPOSCHANGING, 0, MakeLong(10, 20), true);
    EXPECT_EQ(0, Layer.GetInvalidatedAreas().GetNumberOfElements());
    EXPECT_EQ(1, Layer.GetDefaultHandlerCalls());
    Send(Layer, WM_WINDOWPOSCHANGING, 0, MakeLong(10, static_cast<uint16_t>(-3)), true);
    ASSERT_EQ(1, Layer.GetInvalidatedAreas().GetNumberOfElements());
    EXPECT_EQ(Rect(0, 0, 6, 5), Layer.GetInvalidatedAreas()[0]);
    EXPECT_EQ(2, Layer.GetDefaultHandlerCalls());
}

TEST(HeadlessGAL, DefaultHandlingOnlyWhenTheSenderAsksForIt)
{
    rofa_headless_gal Layer(4, 4, nullptr);
    counting_app App(&Layer);
    Layer.SetRofaApp(reference_pointer<rofa_app_interface>(&App));
    Send(Layer, WM_TIMER, 0, 0, false);
    Send(Layer, WM_SIZE, 0, MakeLong(4, 4), false);
    Send(Layer, 0x0400, 0, 0, false);
    EXPECT_EQ(0, Layer.GetDefaultHandlerCalls());
    Send(Layer, WM_TIMER, 0, 0, true);
    Send(Layer, WM_SIZE, 0, MakeLong(4, 4), true);
    Send(Layer, 0x0400, 0, 0, true);
    EXPECT_EQ(3, Layer.GetDefaultHandlerCalls());
    // Handled messages never reach it.
    Send(Layer, WM_MOVE, 0, 0, true);
    Send(Layer, WM_KEYDOWN, 'A', 1, true);
    Send(Layer, WM_LBUTTONUP, 0, 0, true);
    Send(Layer, WM_ERASEBKGND, 0, 0, true);
    Send(Layer, WM_NCPAINT, 0, 0, true);
    EXPECT_EQ(3, Layer.GetDefaultHandlerCalls());
}

TEST(HeadlessGAL, DroppedFilesArriveAsPathsEachEndedByAZeroByte)
{
    rofa_headless_gal Layer(4, 4, nullptr);
    Layer.AddDroppedFile(7, "/tmp/a.png");
    Layer.AddDroppedFile(8, "/elsewhere/other.gif");
    Layer.AddDroppedFile(7, "/home/user/b c.jpg");
    EXPECT_EQ(0u, Send(Layer, WM_DROPFILES, 7, 0, true));
    zel_string Expected("/tmp/a.png\0/home/user/b c.jpg\0", 30);
    EXPECT_EQ(Expected, Layer.GetEnvironmentVar("DropFileNames"));
    EXPECT_EQ(30, Layer.GetEnvironmentVar("DropFileNames").GetLength());
    EXPECT_EQ(1, Layer.GetActivations());
    EXPECT_EQ(0, Layer.GetDefaultHandlerCalls());
}

TEST(HeadlessGAL, ADropWithNoFilesGivesAnEmptyValue)
{
    rofa_headless_gal Layer(4, 4, nullptr);
    Layer.AddDroppedFile(7, "/tmp/a.png");
    Send(Layer, WM_DROPFILES, 9);
    EXPECT_TRUE(Layer.EnvironmentVarExists("DropFileNames"));
    EXPECT_EQ(zel_string(""), Layer.TakeEnvironmentVar("DropFileNames"));
    Layer.ClearDroppedFiles();
    Send(Layer, WM_DROPFILES, 7);
    EXPECT_EQ(zel_string(""), Layer.GetEnvironmentVar("DropFileNames"));
}

TEST(HeadlessGAL, DroppedPathsAreCutToTheBuffer)
{
    rofa_headless_gal Layer(4, 4, nullptr);
    Layer.AddDroppedFile(1, zel_string('x', 1500));
    Send(Layer, WM_DROPFILES, 1);
    zel_string Names = Layer.GetEnvironmentVar("DropFileNames");
    ASSERT_EQ(1024, Names.GetLength());
    EXPECT_EQ(zel_string('x', 1023), Names.Left(1023));
    EXPECT_EQ(0, Names[1023]);
}

TEST(HeadlessGAL, FileDialogsAnswerFromTheQueueAndRecordTheirArguments)
{
    rofa_headless_gal Layer(4, 4, nullptr);
    Layer.QueueFileDialogAnswer("/tmp/first.rofa");
    Layer.QueueFileDialogAnswer("/tmp/second.png");
    EXPECT_EQ(zel_string("/tmp/first.rofa"),
              Layer.ShowFileDialog(true, "Open", "/tmp/x.rofa", "rofa", "Rofa|*.rofa||", true, false, true));
    EXPECT_EQ(zel_string("/tmp/second.png"),
              Layer.ShowFileDialog(false, "Export", "", "png", "PNG|*.png||", false, true, false));
    EXPECT_EQ(zel_string(""), Layer.ShowFileDialog(true, "Again", "", "", "", false, false, false));

    const array<file_dialog_request> &Requests = Layer.GetFileDialogRequests();
    ASSERT_EQ(3, Requests.GetNumberOfElements());
    EXPECT_TRUE(Requests[0].Open);
    EXPECT_EQ(zel_string("Open"), Requests[0].Title);
    EXPECT_EQ(zel_string("/tmp/x.rofa"), Requests[0].DefaultPath);
    EXPECT_EQ(zel_string("rofa"), Requests[0].DefaultExtension);
    EXPECT_EQ(zel_string("Rofa|*.rofa||"), Requests[0].Filter);
    EXPECT_TRUE(Requests[0].PathMustExist);
    EXPECT_FALSE(Requests[0].AllowMultiSelect);
    EXPECT_TRUE(Requests[0].FileMustExist);
    EXPECT_FALSE(Requests[1].Open);
    EXPECT_FALSE(Requests[1].PathMustExist);
    EXPECT_TRUE(Requests[1].AllowMultiSelect);
    EXPECT_FALSE(Requests[1].FileMustExist);
    EXPECT_EQ(zel_string("Again"), Requests[2].Title);
}

TEST(HeadlessGAL, NavigationsAreRecordedAndAnsweredByTheHost)
{
    page_host Host;
    rofa_headless_gal Layer(4, 4, &Host);
    EXPECT_TRUE(Layer.NavigateBrowser("http://example.invalid/protected/save", 5));
    Host.NavigateSucceeds = false;
    EXPECT_FALSE(Layer.NavigateBrowser("http://example.invalid/main/update_plugin", 5));
    const array<browser_navigation> &Navigations = Layer.GetNavigations();
    ASSERT_EQ(2, Navigations.GetNumberOfElements());
    EXPECT_EQ(zel_string("http://example.invalid/protected/save"), Navigations[0].URL);
    EXPECT_EQ(5, Navigations[0].Mode);
    EXPECT_EQ(zel_string("http://example.invalid/main/update_plugin"), Navigations[1].URL);
    EXPECT_EQ(2u, Host.Navigations.size());
}

TEST(HeadlessGAL, NavigationWithoutHostIsRecordedAndFails)
{
    rofa_headless_gal Layer(4, 4, nullptr);
    EXPECT_FALSE(Layer.NavigateBrowser("http://example.invalid/", 5));
    EXPECT_EQ(1, Layer.GetNavigations().GetNumberOfElements());
}

TEST(HeadlessGAL, SavingTheScreenNeedsAWriter)
{
    rofa_headless_gal Layer(3, 2, nullptr);
    EXPECT_EQ("The screen can't be saved: no screen writer is set.", ZEL_ERROR_MESSAGE(Layer.SaveScreen("/tmp/x.png")));
    Layer.SetScreenWriter(RecordingWriter);
    Layer.SaveScreen("/tmp/screen.png");
    EXPECT_EQ("/tmp/screen.png", WrittenPath);
    EXPECT_EQ(int_point2d(3, 2), WrittenSize);
    // Top-left is storage index 3 of the test pattern.
    EXPECT_EQ(win_rgba(0, 3, 0, 0), WrittenTopLeft);
}
