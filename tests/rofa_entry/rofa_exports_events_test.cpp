// Input and output of a whole instance through the exported functions: the host's messages become
// the events that objects in the tree receive, and what the tree paints reaches the screen and a PNG.
#include <gtest/gtest.h>

#include <FreeImage.h>

#include <string>
#include <vector>

#include "art_engine/objects/art_events.h"
#include "rofa_editor/app/rofa_app.h"
#include "rofa_headless_sal/headless_screen_png.h"
#include "rofa_headless_sal/rofa_headless_gal.h"
#include "rofa_lib/keyboard.h"
#include "rofa_lib/rofa_plugin_api.h"
#include "rofa_linux_sal/rofa_linux_keys.h"
#include "rofa_linux_sal/win32_messages.h"
#include "tests/rofa_lib/stream_test_support.h"

namespace {

struct pointer_record
{
    art_pointer_event::pointer_event_type Type;
    art_pointer_event::pointer_button Button;
    point2d Location;
    uint32_t Status;

    bool operator==(const pointer_record &Other) const
    {
        return Type == Other.Type && Button == Other.Button && Location == Other.Location && Status == Other.Status;
    }
};

std::ostream &operator<<(std::ostream &Stream, const pointer_record &Record)
{
    return Stream << "{" << Record.Type << ", " << Record.Button << ", (" << Record.Location.X << ", "
                  << Record.Location.Y << "), " << Record.Status << "}";
}

// Covers the whole window in front of everything, takes the typing, and records all it is given.
class recorder : public art_object
{
public:
    recorder(std::vector<pointer_record> &Pointer, std::vector<int> &Keys) : Pointer(Pointer), Keys(Keys)
    {
        Handle = point2d(0, 0);
    }

    reference_pointer<art_object> HandlePointerEvent(reference_pointer<art_pointer_event> Event) override
    {
        Pointer.push_back({Event->GetPointerEventType(), Event->GetButton(), Event->GetLocation(),
                           Event->GetButtonStatusAtEvent()});
        return reference_pointer<art_object>(this);
    }

    reference_pointer<art_object> HandleKeyEvent(reference_pointer<art_key_event> Event) override
    {
        Keys.push_back(Event->GetEntry());
        return reference_pointer<art_object>(this);
    }

private:
    std::vector<pointer_record> &Pointer;
    std::vector<int> &Keys;
};

struct instance
{
    RofaAppHandle Handle;
    std::vector<pointer_record> Pointer;
    std::vector<int> Keys;

    explicit instance(const char *CommandLine = nullptr)
        : Handle(RofaAppCreateNewInstance_v2(200, 100, nullptr, nullptr, CommandLine))
    {
    }
    ~instance() { RofaAppReleaseAppInstance_v2(Handle); }

    rofa_headless_gal &Layer() { return *static_cast<rofa_headless_gal *>(static_cast<graphical_system_abstraction_layer *>(Handle)); }
    reference_pointer<rofa_app_instance> App()
    {
        return Layer().GetGlobalReference("rofa_app_instance").DynamicCast<rofa_app_instance>();
    }

    void AddRecorder()
    {
        ownership_pointer<art_object> Object(new recorder(Pointer, Keys));
        Object->SetSize(point2d(200, 100));
        Object->SetLocation(point2d(0, 0));
        reference_pointer<art_object> Added = App()->GetTopObject()->AddChild(Object);
        App()->GetTopObject()->GetInputSet()->SetKeyFocus(Added);
    }

    uint32_t Send(uint32_t Message, uint32_t WParam = 0, int32_t LParam = 0)
    {
        rofa_gui_message Record = {nullptr, Message, WParam, LParam, 0};
        return RofaAppProcessGUIMessage_v2(Handle, &Record);
    }

    void MoveTo(int X, int Y)
    {
        Send(WM_MOUSEMOVE, 0, static_cast<int32_t>(MakeLong(static_cast<uint16_t>(X), static_cast<uint16_t>(Y))));
    }

    void Tick() { Send(WM_TIMER); }

    std::vector<pointer_record> ButtonEvents() const
    {
        std::vector<pointer_record> Buttons;
        for (const pointer_record &Record : Pointer) {
            if (Record.Type >= art_pointer_event::PointerButtonDown)
                Buttons.push_back(Record);
        }
        return Buttons;
    }
};

// A repeat count in the low word of a key message's second parameter.
int32_t Repeats(int Count) { return static_cast<int32_t>(MakeLong(static_cast<uint16_t>(Count), 0)); }

TEST(RofaExportsEvents, KeysArriveWithTheirRepeatCountsAndModifiers)
{
    instance Instance;
    Instance.AddRecorder();
    Instance.Send(WM_KEYDOWN, 'B', Repeats(2));
    Instance.Send(WM_KEYDOWN, VK_SHIFT, Repeats(1));
    Instance.Send(WM_KEYDOWN, 'A', Repeats(3));
    Instance.Send(WM_KEYUP, VK_SHIFT, Repeats(1));
    Instance.Send(WM_KEYDOWN, VK_CONTROL, Repeats(1));
    // A repeat count of 0 still pushes the key once.
    Instance.Send(WM_KEYDOWN, 'C', Repeats(0));
    EXPECT_TRUE(Instance.Keys.empty());
    Instance.Tick();
    std::vector<int> Want = {'B',
                             'B',
                             KeyLeftShift | KeyShiftFlag,
                             'A' | KeyShiftFlag,
                             'A' | KeyShiftFlag,
                             'A' | KeyShiftFlag,
                             KeyLeftControl | KeyControlFlag,
                             'C' | KeyControlFlag};
    EXPECT_EQ(Want, Instance.Keys);
}

TEST(RofaExportsEvents, PressesDoubleClicksAndTheWheelArriveInOrderAtThePointer)
{
    instance Instance;
    Instance.AddRecorder();
    Instance.MoveTo(10, 20);
    Instance.Send(WM_LBUTTONDOWN);
    Instance.Send(WM_LBUTTONUP);
    Instance.Send(WM_LBUTTONDBLCLK);
    Instance.MoveTo(30, 40);
    Instance.Send(WM_RBUTTONDOWN);
    Instance.Send(WM_RBUTTONUP);
    Instance.Send(WM_MOUSEWHEEL, MakeLong(0, 240));
    Instance.Send(WM_MOUSEWHEEL, MakeLong(0, static_cast<uint16_t>(-120)));
    Instance.Tick();
    typedef art_pointer_event E;
    // The status is that of the buttons after each action: set by a press, cleared by a release and
    // by a double click.
    std::vector<pointer_record> Want = {
        {E::PointerButtonDown, E::LeftButton, point2d(10, 20), 1u << 0},
        {E::PointerButtonUp, E::LeftButton, point2d(10, 20), 0},
        {E::PointerButtonDoubleClick, E::LeftButton, point2d(10, 20), 0},
        {E::PointerButtonDown, E::RightButton, point2d(30, 40), 1u << 1},
        {E::PointerButtonUp, E::RightButton, point2d(30, 40), 0},
        {E::PointerButtonDown, E::ScrollUp, point2d(30, 40), 1u << 3},
        {E::PointerButtonUp, E::ScrollUp, point2d(30, 40), 0},
        {E::PointerButtonDown, E::ScrollUp, point2d(30, 40), 1u << 3},
        {E::PointerButtonUp, E::ScrollUp, point2d(30, 40), 0},
        {E::PointerButtonDown, E::ScrollDown, point2d(30, 40), 1u << 4},
        {E::PointerButtonUp, E::ScrollDown, point2d(30, 40), 0},
    };
    EXPECT_EQ(Want, Instance.ButtonEvents());
}

TEST(RofaExportsEvents, AMoveComesAfterTheButtonsOfItsTickWithBothLocations)
{
    instance Instance;
    Instance.AddRecorder();
    Instance.MoveTo(10, 20);
    Instance.Tick();
    Instance.Pointer.clear();
    Instance.MoveTo(15, 25);
    Instance.Send(WM_LBUTTONDOWN);
    Instance.MoveTo(50, 60);
    Instance.Tick();
    ASSERT_EQ(2u, Instance.Pointer.size());
    EXPECT_EQ(art_pointer_event::PointerButtonDown, Instance.Pointer[0].Type);
    EXPECT_EQ(point2d(15, 25), Instance.Pointer[0].Location);
    EXPECT_EQ(art_pointer_event::PointerMovedWithin, Instance.Pointer[1].Type);
    EXPECT_EQ(point2d(50, 60), Instance.Pointer[1].Location);
    EXPECT_EQ(int_point2d(50, 60), Instance.App()->GetLastMouseLocation());
    // No move, no event.
    Instance.Tick();
    EXPECT_EQ(2u, Instance.Pointer.size());
}

TEST(RofaExportsEvents, AMoveToMinusOneGoesThroughAndLeavesTheObjects)
{
    instance Instance;
    Instance.AddRecorder();
    Instance.MoveTo(10, 20);
    Instance.Tick();
    Instance.Pointer.clear();
    Instance.MoveTo(-1, -1);
    Instance.Tick();
    EXPECT_EQ(int_point2d(-1, -1), Instance.App()->GetLastMouseLocation());
    EXPECT_EQ(point2d(-1, -1), Instance.App()->GetTopObject()->GetPointerLocation());
    // Outside every object, the one it was over is told that the pointer left.
    ASSERT_EQ(1u, Instance.Pointer.size());
    EXPECT_EQ(art_pointer_event::PointerMovedOut, Instance.Pointer[0].Type);
}

TEST(RofaExportsEvents, AnIdleTickDrawsNothingAndPresentsNothing)
{
    instance Instance;
    Instance.Tick();
    Instance.Layer().ClearInvalidatedAreas();
    Instance.Tick();
    Instance.Tick();
    EXPECT_EQ(0, Instance.Layer().GetInvalidatedAreas().GetNumberOfElements());
    EXPECT_FALSE(Instance.App()->GetTopObject()->IsDirty());
}

TEST(RofaExportsEvents, PaintingReachesTheScreen)
{
    instance Instance;
    Instance.Tick();
    reference_pointer<art_gal_top_object> Top = Instance.App()->GetTopObject();
    Top->SetBackgroundColor(agg::rgba(1, 0.5, 0, 1));
    Top->RequestRedraw();
    Instance.Layer().ClearInvalidatedAreas();
    Instance.Tick();
    ASSERT_EQ(1, Instance.Layer().GetInvalidatedAreas().GetNumberOfElements());
    EXPECT_EQ(int_rectangle(int_point2d(0, 0), int_point2d(200, 100)), Instance.Layer().GetInvalidatedAreas()[0]);
    // 0.5 * 255 + 0.5 = 128. The window's own outline darkens its edges; these pixels lie inside it.
    for (int_point2d At : {int_point2d(2, 2), int_point2d(197, 97), int_point2d(57, 33)}) {
        win_rgba Pixel = Instance.Layer().GetScreenPixel(At.X, At.Y);
        EXPECT_EQ(255, Pixel.Red);
        EXPECT_EQ(128, Pixel.Green);
        EXPECT_EQ(0, Pixel.Blue);
    }
}

TEST(RofaExportsEvents, TheScreenIsLeftInThePNGThatTheParametersName)
{
    temporary_folder Folder;
    std::string Path = Folder / "screen.png";
    std::string CommandLine = "-screen_png=" + Path;
    instance Instance(CommandLine.c_str());
    reference_pointer<art_gal_top_object> Top = Instance.App()->GetTopObject();
    Top->SetBackgroundColor(agg::rgba(0, 0, 1, 1));
    Top->RequestRedraw();
    Instance.Tick();
    FIBITMAP *Image = FreeImage_Load(FIF_PNG, Path.c_str(), PNG_DEFAULT);
    ASSERT_NE(nullptr, Image);
    EXPECT_EQ(200u, FreeImage_GetWidth(Image));
    EXPECT_EQ(100u, FreeImage_GetHeight(Image));
    RGBQUAD Color;
    for (int_point2d At : {int_point2d(2, 2), int_point2d(197, 97)}) {
        // The image library counts lines from the bottom.
        ASSERT_TRUE(FreeImage_GetPixelColor(Image, unsigned(At.X), unsigned(99 - At.Y), &Color));
        EXPECT_EQ(0, Color.rgbRed);
        EXPECT_EQ(0, Color.rgbGreen);
        EXPECT_EQ(255, Color.rgbBlue);
    }
    FreeImage_Unload(Image);
}

TEST(RofaExportsEvents, AScreenThatCannotBeWrittenFailsWithWords)
{
    rofa_headless_gal Layer(4, 4, nullptr);
    std::string Message;
    try {
        WriteScreenPNG(Layer, "/no-such-folder/screen.png");
    } catch (const zel_error &Error) {
        Message = ToStd(Error.GetMessage());
    }
    EXPECT_EQ("The screen can't be written to '/no-such-folder/screen.png'.", Message);
}

} // namespace
