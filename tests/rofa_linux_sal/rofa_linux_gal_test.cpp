#include <gtest/gtest.h>

#include "hosts/plugin_library.h"
#include "rofa_lib/keyboard.h"
#include "rofa_linux_sal/linux_bitmap.h"
#include "rofa_linux_sal/rofa_linux_gal.h"
#include "rofa_linux_sal/rofa_linux_keys.h"
#include "rofa_linux_sal/win32_messages.h"
#include "tests/rofa_lib/counting_app.h"
#include "tests/test_support.h"

namespace {

uint32_t Send(graphical_system_abstraction_layer &Layer, uint32_t Message, uint32_t WParam = 0, uint32_t LParam = 0,
              bool CallDefaultHandler = false)
{
    rofa_gui_message Record = {nullptr, Message, WParam, static_cast<int32_t>(LParam),
                               static_cast<uint8_t>(CallDefaultHandler ? 1 : 0)};
    return Layer.ProcessGUIMessage(&Record);
}

// The screen's test pattern at storage index I: green and red from the index's two low bytes.
win_rgba PatternPixel(int I)
{
    return win_rgba(0, static_cast<uint8_t>(I & 0xFF), static_cast<uint8_t>((I >> 8) & 0xFF), 0);
}

// A layer with an application that counts its ticks.
struct driven_layer
{
    driven_layer(int Width, int Height, rofa_host_interface *Host = nullptr)
        : Layer(Width, Height, nullptr, Host), App(&Layer)
    {
        Layer.SetRofaApp(reference_pointer<rofa_app_interface>(&App));
    }

    rofa_linux_gal Layer;
    counting_app App;
};

array<mouse_action> &ActionsOf(rofa_linux_gal &Layer) { return Layer.GetMouse()->GetMouseActions(); }

} // namespace

TEST(LinuxGALConstruction, HostParametersBecomeEnvironmentVariables)
{
    page_host Host;
    Host.AddParameter("rofaID", "abc");
    Host.AddParameter("tessalyurl", "http://example.invalid/");
    rofa_linux_gal Layer(10, 20, nullptr, &Host);
    EXPECT_EQ(zel_string("abc"), Layer.GetEnvironmentVar("rofaid"));
    EXPECT_EQ(zel_string("http://example.invalid/"), Layer.GetEnvironmentVar("tessalyurl"));
    EXPECT_EQ(int_point2d(10, 20), Layer.GetScreenSize());
    EXPECT_EQ(&Host, Layer.GetHost());
}

TEST(LinuxGALConstruction, WidthAndHeightParametersTogetherReplaceTheSize)
{
    page_host Host;
    Host.AddParameter("Width", "64");
    Host.AddParameter("HEIGHT", "32");
    rofa_linux_gal Layer(10, 20, nullptr, &Host);
    EXPECT_EQ(int_point2d(64, 32), Layer.GetWindowSize());
    EXPECT_EQ(64 * 32, Layer.GetScreen().GetNumberOfElements());
}

TEST(LinuxGALConstruction, OneOfWidthAndHeightAloneChangesNothing)
{
    page_host Host;
    Host.AddParameter("width", "64");
    rofa_linux_gal Layer(10, 20, nullptr, &Host);
    EXPECT_EQ(int_point2d(10, 20), Layer.GetWindowSize());
}

TEST(LinuxGALConstruction, WithoutHostThereAreNoParameters)
{
    rofa_linux_gal Layer(3, 4, nullptr, nullptr);
    EXPECT_FALSE(Layer.EnvironmentVarExists("width"));
    EXPECT_EQ(int_point2d(3, 4), Layer.GetScreenSize());
    EXPECT_EQ(1, Layer.GetCursorNumber());
    EXPECT_FALSE(Layer.IsCapturing());
}

TEST(LinuxGALConstruction, ANegativeSizeFailsTheAssertion)
{
    std::string Message = ZEL_ERROR_MESSAGE(rofa_linux_gal Layer(-1, 4, nullptr, nullptr));
    EXPECT_NE(std::string::npos, Message.find("'Width>=0 && Height>=0' is false")) << Message;
}

TEST(LinuxGALScreen, NewScreenHoldsTheTestPattern)
{
    rofa_linux_gal Layer(300, 2, nullptr, nullptr);
    const array<win_rgba> &Screen = Layer.GetScreen();
    ASSERT_EQ(600, Screen.GetNumberOfElements());
    for (int I = 0; I < 600; I++)
        ASSERT_EQ(PatternPixel(I), Screen[I]) << I;
    // Index 257: green 1, red 1.
    EXPECT_EQ(win_rgba(0, 0x01, 0x01, 0), Screen[257]);
    EXPECT_EQ(win_rgba(0, 0x2B, 0x02, 0), Screen[555]);
}

TEST(LinuxGALScreen, RowsAreStoredBottomUp)
{
    rofa_linux_gal Layer(4, 3, nullptr, nullptr);
    // The top-left pixel is the first of the last stored line.
    EXPECT_EQ(PatternPixel(8), Layer.GetScreenPixel(0, 0));
    EXPECT_EQ(PatternPixel(3), Layer.GetScreenPixel(3, 2));
    EXPECT_NE(std::string::npos, ZEL_ERROR_MESSAGE(Layer.GetScreenPixel(4, 0)).find("' is false"));
}

TEST(LinuxGALScreen, PresentBitmapLandsBottomUpAndKeepsTheFourthByte)
{
    rofa_linux_gal Layer(4, 3, nullptr, nullptr);
    linux_bitmap Bitmap(int_point2d(2, 2));
    // Pixel (X, Y) of the bitmap: red 10 * (X + 1) + Y, green 100 + X, blue 200 + Y, alpha 77.
    for (int Y = 0; Y < 2; Y++)
        for (int X = 0; X < 2; X++) {
            uint8_t *Pixel = Bitmap.GetFirstLine() + Y * 8 + X * 4;
            Pixel[0] = static_cast<uint8_t>(10 * (X + 1) + Y);
            Pixel[1] = static_cast<uint8_t>(100 + X);
            Pixel[2] = static_cast<uint8_t>(200 + Y);
            Pixel[3] = 77;
        }
    Layer.PresentBitmap(1, 1, reference_pointer<bitmap_interface>(&Bitmap));

    // Screen row r from the top is stored line 2 - r; the bitmap covers rows 1 and 2, columns 1 and 2.
    const array<win_rgba> &Screen = Layer.GetScreen();
    EXPECT_EQ(win_rgba(200, 100, 10, PatternPixel(5).Alpha), Screen[1 * 4 + 1]);
    EXPECT_EQ(win_rgba(200, 101, 20, PatternPixel(6).Alpha), Screen[1 * 4 + 2]);
    EXPECT_EQ(win_rgba(201, 100, 11, PatternPixel(1).Alpha), Screen[0 * 4 + 1]);
    EXPECT_EQ(win_rgba(201, 101, 21, PatternPixel(2).Alpha), Screen[0 * 4 + 2]);
    for (int I : {0, 3, 4, 7, 8, 9, 10, 11})
        EXPECT_EQ(PatternPixel(I), Screen[I]) << I;
}

TEST(LinuxGALMessages, SizeToThePresentSizeKeepsTheScreen)
{
    driven_layer Driven(4, 3);
    linux_bitmap Bitmap(int_point2d(4, 3));
    Driven.Layer.PresentBitmap(0, 0, reference_pointer<bitmap_interface>(&Bitmap));
    EXPECT_EQ(0u, Send(Driven.Layer, WM_SIZE, 0, MakeLong(4, 3), true));
    EXPECT_EQ(1, Driven.App.Runs);
    for (int I = 0; I < 12; I++)
        ASSERT_EQ(win_rgba(0, 0, 0, 0), Driven.Layer.GetScreen()[I]) << I;
}

TEST(LinuxGALMessages, SizeToAnotherSizeReallocatesAndTicks)
{
    driven_layer Driven(4, 3);
    linux_bitmap Bitmap(int_point2d(4, 3));
    Driven.Layer.PresentBitmap(0, 0, reference_pointer<bitmap_interface>(&Bitmap));
    Send(Driven.Layer, WM_SIZE, 0, MakeLong(300, 1));
    EXPECT_EQ(int_point2d(300, 1), Driven.Layer.GetWindowSize());
    EXPECT_EQ(1, Driven.App.Runs);
    ASSERT_EQ(300, Driven.Layer.GetScreen().GetNumberOfElements());
    for (int I = 0; I < 300; I++)
        ASSERT_EQ(PatternPixel(I), Driven.Layer.GetScreen()[I]) << I;
}

TEST(LinuxGALMessages, SizeIsTakenFromBothWordsOfLParam)
{
    driven_layer Driven(1, 1);
    Send(Driven.Layer, WM_SIZE, 0, MakeLong(0, 2));
    EXPECT_EQ(int_point2d(0, 2), Driven.Layer.GetWindowSize());
    EXPECT_EQ(0, Driven.Layer.GetScreen().GetNumberOfElements());
}

TEST(LinuxGALMessages, SizeWithoutApplicationFailsTheTicksAssertion)
{
    rofa_linux_gal Layer(4, 3, nullptr, nullptr);
    EXPECT_NE(std::string::npos,
              ZEL_ERROR_MESSAGE(Send(Layer, WM_SIZE, 0, MakeLong(4, 3))).find("'RofaApp.IsSet()' is false"));
}

TEST(LinuxGALMessages, TimerTicks)
{
    driven_layer Driven(4, 3);
    EXPECT_EQ(0, Driven.App.Runs);
    Send(Driven.Layer, WM_TIMER);
    Send(Driven.Layer, WM_TIMER);
    EXPECT_EQ(2, Driven.App.Runs);
    EXPECT_EQ(Driven.App.SeenCurrentTimes[0], Driven.App.SeenLastTimes[1]);
}

TEST(LinuxGALMessages, FocusComesAndGoes)
{
    driven_layer Driven(4, 3);
    Send(Driven.Layer, WM_KILLFOCUS);
    EXPECT_FALSE(Driven.Layer.GetHasFocus());
    EXPECT_EQ(1, Driven.App.Runs);
    Send(Driven.Layer, WM_SETFOCUS);
    EXPECT_TRUE(Driven.Layer.GetHasFocus());
    Send(Driven.Layer, WM_KILLFOCUS);
    Send(Driven.Layer, WM_MOUSEACTIVATE);
    EXPECT_TRUE(Driven.Layer.GetHasFocus());
    EXPECT_EQ(2, Driven.App.Runs);
}

TEST(LinuxGALMessages, DeactivationPutsThePointerOutside)
{
    rofa_linux_gal Layer(100, 100, nullptr, nullptr);
    Send(Layer, WM_MOUSEMOVE, 0, MakeLong(5, 6));
    Send(Layer, WM_ACTIVATEAPP, 1);
    EXPECT_EQ(int_point2d(5, 6), Layer.GetMouse()->GetLocation());
    Send(Layer, WM_ACTIVATEAPP, 0);
    EXPECT_EQ(int_point2d(-1, -1), Layer.GetMouse()->GetLocation());

    Send(Layer, WM_MOUSEMOVE, 0, MakeLong(5, 6));
    Send(Layer, WM_ACTIVATE, MakeLong(1, 0));
    EXPECT_EQ(int_point2d(5, 6), Layer.GetMouse()->GetLocation());
    Send(Layer, WM_ACTIVATE, MakeLong(0, 1));
    EXPECT_EQ(int_point2d(-1, -1), Layer.GetMouse()->GetLocation());

    Send(Layer, WM_MOUSEMOVE, 0, MakeLong(5, 6));
    Send(Layer, WM_NCMOUSEMOVE, 0, MakeLong(5, 6));
    EXPECT_EQ(int_point2d(-1, -1), Layer.GetMouse()->GetLocation());
}

TEST(LinuxGALMessages, MouseMoveCoordinatesAreSigned16Bit)
{
    rofa_linux_gal Layer(100, 100, nullptr, nullptr);
    Send(Layer, WM_MOUSEMOVE, 0, MakeLong(0xFFF6, 0x7FFF));
    EXPECT_EQ(int_point2d(-10, 32767), Layer.GetMouse()->GetLocation());
    Send(Layer, WM_MOUSEMOVE, 0, MakeLong(12, 0x8000));
    EXPECT_EQ(int_point2d(12, -32768), Layer.GetMouse()->GetLocation());
}

TEST(LinuxGALMessages, ButtonsAddActionsAtTheCurrentLocation)
{
    rofa_linux_gal Layer(100, 100, nullptr, nullptr);
    Send(Layer, WM_MOUSEMOVE, 0, MakeLong(10, 20));
    Send(Layer, WM_LBUTTONDOWN, 0, MakeLong(99, 99));
    EXPECT_TRUE(Layer.IsCapturing());
    Send(Layer, WM_LBUTTONUP);
    Send(Layer, WM_LBUTTONDBLCLK);
    Send(Layer, WM_MOUSEMOVE, 0, MakeLong(30, 40));
    Send(Layer, WM_RBUTTONDOWN);
    Send(Layer, WM_RBUTTONUP);
    Send(Layer, WM_RBUTTONDBLCLK);
    Send(Layer, WM_MBUTTONDOWN);
    Send(Layer, WM_MBUTTONUP);
    Send(Layer, WM_MBUTTONDBLCLK);

    array<mouse_action> &Actions = ActionsOf(Layer);
    ASSERT_EQ(9, Actions.GetNumberOfElements());
    EXPECT_EQ(mouse_action(0, 0, 10, 20), Actions[0]);
    EXPECT_EQ(mouse_action(0, 1, 10, 20), Actions[1]);
    EXPECT_EQ(mouse_action(0, 2, 10, 20), Actions[2]);
    EXPECT_EQ(mouse_action(1, 0, 30, 40), Actions[3]);
    EXPECT_EQ(mouse_action(1, 1, 30, 40), Actions[4]);
    EXPECT_EQ(mouse_action(1, 2, 30, 40), Actions[5]);
    EXPECT_EQ(mouse_action(2, 0, 30, 40), Actions[6]);
    EXPECT_EQ(mouse_action(2, 1, 30, 40), Actions[7]);
    EXPECT_EQ(mouse_action(2, 2, 30, 40), Actions[8]);
    // The layer itself leaves the button state to the application.
    EXPECT_EQ(0u, Layer.GetMouse()->GetButtonState());
}

TEST(LinuxGALMessages, WheelUpTwoNotchesGivesTwoPressReleasePairsOfButton3)
{
    rofa_linux_gal Layer(100, 100, nullptr, nullptr);
    Send(Layer, WM_MOUSEMOVE, 0, MakeLong(7, 8));
    Send(Layer, WM_MOUSEWHEEL, MakeLong(0, 240));
    array<mouse_action> &Actions = ActionsOf(Layer);
    ASSERT_EQ(4, Actions.GetNumberOfElements());
    EXPECT_EQ(mouse_action(3, 0, 7, 8), Actions[0]);
    EXPECT_EQ(mouse_action(3, 1, 7, 8), Actions[1]);
    EXPECT_EQ(mouse_action(3, 0, 7, 8), Actions[2]);
    EXPECT_EQ(mouse_action(3, 1, 7, 8), Actions[3]);
    EXPECT_FALSE(Layer.IsCapturing());
}

TEST(LinuxGALMessages, WheelDownOneNotchGivesOnePairOfButton4)
{
    rofa_linux_gal Layer(100, 100, nullptr, nullptr);
    Send(Layer, WM_MOUSEMOVE, 0, MakeLong(1, 2));
    Send(Layer, WM_MOUSEWHEEL, MakeLong(0, static_cast<uint16_t>(-120)));
    array<mouse_action> &Actions = ActionsOf(Layer);
    ASSERT_EQ(2, Actions.GetNumberOfElements());
    EXPECT_EQ(mouse_action(4, 0, 1, 2), Actions[0]);
    EXPECT_EQ(mouse_action(4, 1, 1, 2), Actions[1]);
}

TEST(LinuxGALMessages, WheelLessThanANotchGivesNothing)
{
    rofa_linux_gal Layer(100, 100, nullptr, nullptr);
    Send(Layer, WM_MOUSEWHEEL, MakeLong(0, 119));
    Send(Layer, WM_MOUSEWHEEL, MakeLong(0, static_cast<uint16_t>(-119)));
    EXPECT_EQ(0, ActionsOf(Layer).GetNumberOfElements());
    // The key-state flags in the low word do not count.
    Send(Layer, WM_MOUSEWHEEL, MakeLong(0xFFFF, static_cast<uint16_t>(-360)));
    EXPECT_EQ(6, ActionsOf(Layer).GetNumberOfElements());
    EXPECT_EQ(4, ActionsOf(Layer)[5].Button);
}

TEST(LinuxGALMessages, KeyDownPushesAsOftenAsTheRepeatCountSays)
{
    rofa_linux_gal Layer(10, 10, nullptr, nullptr);
    reference_pointer<keyboard_interface> Keyboard = Layer.GetKeyboard();
    Send(Layer, WM_KEYDOWN, 'A', MakeLong(3, 0x1E));
    EXPECT_EQ(3, Keyboard->GetNumberOfKeysInBuffer());
    EXPECT_TRUE(Keyboard->GetKeyDown('A'));
    Keyboard->ClearKeyBuffer();
    Send(Layer, WM_KEYDOWN, 'A', 0);
    EXPECT_EQ(1, Keyboard->GetNumberOfKeysInBuffer());
    EXPECT_EQ('A', Keyboard->PopKey());
    Send(Layer, WM_SYSKEYDOWN, VK_F1, 1);
    EXPECT_EQ(KeyF1, Keyboard->PopKey());
    EXPECT_TRUE(Keyboard->GetKeyDown(KeyF1));
}

TEST(LinuxGALMessages, KeyUpClearsTheKey)
{
    rofa_linux_gal Layer(10, 10, nullptr, nullptr);
    reference_pointer<keyboard_interface> Keyboard = Layer.GetKeyboard();
    Send(Layer, WM_KEYDOWN, VK_SHIFT, 1);
    Send(Layer, WM_KEYDOWN, '1', 1);
    Send(Layer, WM_KEYUP, VK_SHIFT, 1);
    Send(Layer, WM_KEYDOWN, '1', 1);
    EXPECT_FALSE(Keyboard->IsShiftDown());
    EXPECT_EQ(KeyLeftShift | KeyShiftFlag, Keyboard->PopKey());
    EXPECT_EQ('1' | KeyShiftFlag, Keyboard->PopKey());
    EXPECT_EQ('1', Keyboard->PopKey());
    Send(Layer, WM_SYSKEYDOWN, VK_MENU, 1);
    EXPECT_TRUE(Keyboard->IsAltDown());
    Send(Layer, WM_SYSKEYUP, VK_MENU, 1);
    EXPECT_FALSE(Keyboard->IsAltDown());
}

TEST(LinuxGALMessages, ShiftedKeysTranslateToTheirCharacters)
{
    rofa_linux_gal Layer(10, 10, nullptr, nullptr);
    reference_pointer<keyboard_interface> Keyboard = Layer.GetKeyboard();
    Send(Layer, WM_KEYDOWN, VK_LSHIFT, 1);
    Keyboard->ClearKeyBuffer();
    Send(Layer, WM_KEYDOWN, VK_OEM_7, 1);
    EXPECT_EQ('"', Keyboard->TranslateKey());
}

TEST(LinuxGALMessages, CapsLockPressesSwitchTheToggleAndRepeatsDoNot)
{
    rofa_linux_gal Layer(10, 10, nullptr, nullptr);
    reference_pointer<keyboard_interface> Keyboard = Layer.GetKeyboard();
    Send(Layer, WM_KEYDOWN, VK_CAPITAL, 1);
    EXPECT_TRUE(Keyboard->IsCapsLockOn());
    Send(Layer, WM_KEYDOWN, VK_CAPITAL, 1);
    EXPECT_TRUE(Keyboard->IsCapsLockOn());
    Send(Layer, WM_KEYUP, VK_CAPITAL, 1);
    EXPECT_TRUE(Keyboard->IsCapsLockOn());
    Keyboard->ClearKeyBuffer();
    Send(Layer, WM_KEYDOWN, 'Q', 1);
    EXPECT_EQ('Q' | KeyCapsLockFlag, Keyboard->PeekKey());
    EXPECT_EQ('Q', Keyboard->TranslateKey());

    Send(Layer, WM_KEYDOWN, VK_CAPITAL, 1);
    Send(Layer, WM_KEYUP, VK_CAPITAL, 1);
    EXPECT_FALSE(Keyboard->IsCapsLockOn());
}

TEST(LinuxGALMessages, NumLockChangesWhatTheKeypadTypes)
{
    rofa_linux_gal Layer(10, 10, nullptr, nullptr);
    reference_pointer<keyboard_interface> Keyboard = Layer.GetKeyboard();
    Send(Layer, WM_KEYDOWN, VK_NUMPAD7, 1);
    EXPECT_EQ(KeyHome, Keyboard->TranslateKey());
    Keyboard->ClearKeyBuffer();
    Send(Layer, WM_KEYDOWN, VK_NUMLOCK, 1);
    Send(Layer, WM_KEYUP, VK_NUMLOCK, 1);
    EXPECT_TRUE(Keyboard->IsNumLockOn());
    Keyboard->ClearKeyBuffer();
    Send(Layer, WM_KEYDOWN, VK_NUMPAD7, 1);
    EXPECT_EQ('7', Keyboard->TranslateKey());
}

TEST(LinuxGALMessages, UnknownKeysGoInAsTheUnknownCode)
{
    rofa_linux_gal Layer(10, 10, nullptr, nullptr);
    Send(Layer, WM_KEYDOWN, 0xE5, 1);
    EXPECT_EQ(KeyUnknown, Layer.GetKeyboard()->PopKey());
}

TEST(LinuxGALMessages, UnhandledMessagesGiveZeroWithoutAPlatform)
{
    rofa_linux_gal Layer(10, 10, nullptr, nullptr);
    EXPECT_EQ(0u, Send(Layer, 0x7FFF, 1, 2, true));
    EXPECT_EQ(0u, Send(Layer, 0x7FFF, 1, 2, false));
    EXPECT_EQ(0u, Send(Layer, WM_MOVE, 0, MakeLong(3, 3), true));
    EXPECT_EQ(0u, Send(Layer, WM_CHAR, 'a', 1, true));
}

TEST(LinuxGALMessages, DroppedFilesWithoutAPlatformGiveAnEmptyList)
{
    rofa_linux_gal Layer(10, 10, nullptr, nullptr);
    Send(Layer, WM_DROPFILES, 5);
    EXPECT_TRUE(Layer.EnvironmentVarExists("DropFileNames"));
    EXPECT_EQ(zel_string(""), Layer.GetEnvironmentVar("DropFileNames"));
}

TEST(LinuxGALOperations, NavigateBrowserAsksTheHost)
{
    page_host Host;
    rofa_linux_gal Layer(10, 10, nullptr, &Host);
    EXPECT_TRUE(Layer.NavigateBrowser("http://example.invalid/next", 5));
    Host.NavigateSucceeds = false;
    EXPECT_FALSE(Layer.NavigateBrowser("http://example.invalid/other", 5));
    ASSERT_EQ(2u, Host.Navigations.size());
    EXPECT_EQ("http://example.invalid/next", Host.Navigations[0].first);
    EXPECT_EQ(5, Host.Navigations[0].second);
    EXPECT_EQ("http://example.invalid/other", Host.Navigations[1].first);
}

TEST(LinuxGALOperations, NavigateBrowserWithoutHostIsFalse)
{
    rofa_linux_gal Layer(10, 10, nullptr, nullptr);
    EXPECT_FALSE(Layer.NavigateBrowser("http://example.invalid/", 5));
}

TEST(LinuxGALOperations, FixedAnswers)
{
    rofa_linux_gal Layer(10, 12, nullptr, nullptr);
    EXPECT_EQ(32, Layer.GetBitsPerPixel());
    EXPECT_EQ(32, Layer.GetColorDepth());
    EXPECT_EQ(int_point2d(10, 12), Layer.GetDisplaySize());
    EXPECT_TRUE(Layer.ReservedTrueQuery());
    EXPECT_FALSE(Layer.ReservedFalseQuery3());
    Layer.SetWindowTitle("Tessaly Editor (alpha)");
    Layer.SetDisplayMode(0);
    EXPECT_NE(std::string::npos, ZEL_ERROR_MESSAGE(Layer.ReservedStringOperation("a", "b")).find("'false' is false"));
}

TEST(LinuxGALOperations, HidesBeforeAnyShapeCountEachTimeAndOneShowDoesNotUndoThemAll)
{
    // Not connected to a window: no shape has been set yet, so a repeated 0 is not ignored.
    rofa_linux_gal Layer(4, 4, nullptr, nullptr);
    Layer.SetCursor(0);
    EXPECT_EQ(-1, Layer.GetPointerShowCount());
    Layer.SetCursor(0);
    EXPECT_EQ(-2, Layer.GetPointerShowCount());
    Layer.SetCursor(5);
    EXPECT_EQ(-1, Layer.GetPointerShowCount());
    Layer.SetCursor(6);
    EXPECT_EQ(0, Layer.GetPointerShowCount());
    Layer.SetCursor(7);
    EXPECT_EQ(0, Layer.GetPointerShowCount());
}

TEST(LinuxGALOperations, CursorNumbersNameTheirShapes)
{
    EXPECT_EQ(CursorShapeArrow, CursorShapeOfNumber(1));
    EXPECT_EQ(CursorShapeIBeam, CursorShapeOfNumber(2));
    EXPECT_EQ(CursorShapeBusyArrow, CursorShapeOfNumber(12));
    EXPECT_EQ(CursorShapeArrow, CursorShapeOfNumber(13));
    EXPECT_EQ(CursorShapeArrow, CursorShapeOfNumber(-4));
}
