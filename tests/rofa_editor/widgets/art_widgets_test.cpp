#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "art_engine/objects/art_events.h"
#include "rofa_editor/widgets/art_widgets.h"
#include "rofa_lib/keyboard.h"
#include "rofa_lib/mouse_interface.h"
#include "tests/art_engine/objects/art_render_test_support.h"

using namespace art_render_test;

namespace {

// Writes its name into a shared log when run.
class logging_action : public art_button_action
{
public:
    logging_action(std::vector<std::string> &Log, std::string Name) : Log(Log), Name(std::move(Name)) {}
    void Execute() override { Log.push_back(Name); }

private:
    std::vector<std::string> &Log;
    std::string Name;
};

ownership_pointer<art_button_action> Logging(std::vector<std::string> &Log, const char *Name)
{
    return ownership_pointer<art_button_action>(new logging_action(Log, Name));
}

class logging_button : public art_button
{
public:
    logging_button(std::vector<std::string> &Log) : art_button("Go"), Log(Log) {}
    void OnClick() override { Log.push_back("OnClick"); }

private:
    std::vector<std::string> &Log;
};

struct widget_scene
{
    mouse_interface Mouse;
    test_top_object Top;

    widget_scene()
        : Top(ownership_pointer<art_human_input_set>(
              new art_human_input_set(reference_pointer<mouse_interface>(&Mouse), reference_pointer<keyboard_interface>())))
    {
        Top.SetSize(point2d(400, 300));
    }
    ~widget_scene()
    {
        Top.MarkChildrenForDeletion();
        Top.DeleteMarkedChildren();
    }

    // The button's state is set first, as the application's tick does.
    reference_pointer<art_object> Press(point2d At, art_pointer_event::pointer_event_type Type)
    {
        Mouse.SetButton(art_pointer_event::LeftButton, Type == art_pointer_event::PointerButtonDown);
        art_pointer_event Event(Type, art_pointer_event::LeftButton, At, Top.GetInputSet());
        return Top.HandlePointerEvent(reference_pointer<art_pointer_event>(&Event));
    }

    // The middle of a child, in top object space: the message box fills the top object from (0, 0).
    static point2d Middle(const reference_pointer<art_button> &Button)
    {
        return Button->GetLocation() + point2d(Button->GetSize().X / 2, Button->GetSize().Y / 2);
    }

    // A logging button with a logging action, at (10, 10) of the top object.
    reference_pointer<art_button> AddLoggingButton(std::vector<std::string> &Log)
    {
        ownership_pointer<art_button> Owned(new logging_button(Log));
        Owned->SetAction(Logging(Log, "Action"));
        Owned->SetLocation(point2d(10, 10));
        return Top.AddChild(ownership_pointer<art_object>(Owned)).DynamicCast<art_button>();
    }

    reference_pointer<art_object> Key(int Entry)
    {
        art_key_event Event(Entry);
        return Top.HandleKeyEvent(reference_pointer<art_key_event>(&Event));
    }
};

TEST(ArtButton, ReleaseInsideRunsOnClickAndThenTheAction)
{
    widget_scene Scene;
    std::vector<std::string> Log;
    reference_pointer<art_button> Button = Scene.AddLoggingButton(Log);
    point2d Inside(20, 15);
    EXPECT_EQ(reference_pointer<art_object>(Button.Get()), Scene.Press(Inside, art_pointer_event::PointerButtonDown));
    EXPECT_EQ(art_button::ButtonPressed, Button->GetState());
    EXPECT_TRUE(Log.empty());
    Scene.Press(Inside, art_pointer_event::PointerButtonUp);
    EXPECT_EQ((std::vector<std::string>{"OnClick", "Action"}), Log);
    EXPECT_EQ(art_button::ButtonHover, Button->GetState());
}

TEST(ArtButton, ReleaseOutsideRunsNothing)
{
    widget_scene Scene;
    std::vector<std::string> Log;
    reference_pointer<art_button> Button = Scene.AddLoggingButton(Log);
    Scene.Press(point2d(20, 15), art_pointer_event::PointerButtonDown);
    // The press captured the pointer, so the release comes to the button even far away.
    Scene.Press(point2d(200, 200), art_pointer_event::PointerButtonUp);
    EXPECT_TRUE(Log.empty());
    EXPECT_EQ(art_button::ButtonNormal, Button->GetState());
}

TEST(ArtMessageBox, WithoutACancelActionThereIsOnlyOkay)
{
    widget_scene Scene;
    reference_pointer<art_message_box> Box =
        art_message_box::Show(reference_pointer<art_object>(&Scene.Top), "Title", "Text");
    EXPECT_EQ(zel_string("Title"), Box->GetTitle());
    EXPECT_EQ(zel_string("Text"), Box->GetText());
    ASSERT_TRUE(Box->GetOkayButton().IsSet());
    EXPECT_EQ(zel_string("Okay"), Box->GetOkayButton()->GetCaption());
    EXPECT_FALSE(Box->GetCancelButton().IsSet());
    EXPECT_EQ(1, Box->GetNumberOfChildren());
    EXPECT_FALSE(Box->GetOkayAction().IsSet());
}

TEST(ArtMessageBox, WithACancelActionThereAreBothButtons)
{
    widget_scene Scene;
    std::vector<std::string> Log;
    reference_pointer<art_message_box> Box = art_message_box::Show(
        reference_pointer<art_object>(&Scene.Top), "Question", "Sure?", Logging(Log, "Yes"), Logging(Log, "No"));
    ASSERT_TRUE(Box->GetCancelButton().IsSet());
    EXPECT_EQ(zel_string("Cancel"), Box->GetCancelButton()->GetCaption());
    EXPECT_EQ(2, Box->GetNumberOfChildren());
    EXPECT_TRUE(Box->GetOkayAction().IsSet());
    EXPECT_TRUE(Box->GetCancelAction().IsSet());
    // Side by side on the panel's last row, "Okay" left of "Cancel", both inside the panel.
    rectangle Panel = Box->GetPanel();
    EXPECT_LT(Box->GetOkayButton()->GetLocation().X, Box->GetCancelButton()->GetLocation().X);
    EXPECT_EQ(Box->GetOkayButton()->GetLocation().Y, Box->GetCancelButton()->GetLocation().Y);
    EXPECT_LE(Box->GetCancelButton()->GetLocation().X + Box->GetCancelButton()->GetSize().X, Panel.GetEnd().X);
    EXPECT_GE(Box->GetOkayButton()->GetLocation().X, Panel.Location.X);
}

TEST(ArtMessageBox, OkayRunsItsActionThenTheBoxClosesAndGoesAtTheNextTick)
{
    widget_scene Scene;
    std::vector<std::string> Log;
    reference_pointer<art_message_box> Box = art_message_box::Show(reference_pointer<art_object>(&Scene.Top),
                                                                   "Notice", "Done.", Logging(Log, "Okay"));
    point2d Okay = widget_scene::Middle(Box->GetOkayButton());
    Scene.Press(Okay, art_pointer_event::PointerButtonDown);
    EXPECT_TRUE(Log.empty());
    Scene.Press(Okay, art_pointer_event::PointerButtonUp);
    EXPECT_EQ(std::vector<std::string>{"Okay"}, Log);
    ASSERT_TRUE(Box.IsSet());
    EXPECT_TRUE(Box->IsClosing());
    Scene.Top.Tick();
    EXPECT_FALSE(Box.IsSet());
}

TEST(ArtMessageBox, PointerBelowTheBoxIsBlocked)
{
    widget_scene Scene;
    std::vector<std::string> Log;
    ownership_pointer<art_button> Owned(new logging_button(Log));
    Owned->SetLocation(point2d(0, 0));
    Scene.Top.AddChild(ownership_pointer<art_object>(Owned));
    reference_pointer<art_message_box> Box =
        art_message_box::Show(reference_pointer<art_object>(&Scene.Top), "Modal", "Wait.");
    EXPECT_EQ(reference_pointer<art_object>(Box.Get()), Scene.Press(point2d(5, 5), art_pointer_event::PointerButtonDown));
    Scene.Press(point2d(5, 5), art_pointer_event::PointerButtonUp);
    EXPECT_TRUE(Log.empty());
    EXPECT_FALSE(Box->IsClosing());
}

TEST(ArtMessageBox, KeysGoToTheBoxAndBackWhenItCloses)
{
    widget_scene Scene;
    std::vector<std::string> Log;
    ownership_pointer<art_button> Owned(new logging_button(Log));
    reference_pointer<art_object> Typist = Scene.Top.AddChild(ownership_pointer<art_object>(Owned));
    Scene.Top.GetInputSet()->SetKeyFocus(Typist);
    reference_pointer<art_message_box> Box = art_message_box::Show(
        reference_pointer<art_object>(&Scene.Top), "Question", "Sure?", Logging(Log, "Yes"), Logging(Log, "No"));
    EXPECT_EQ(reference_pointer<art_object>(Box.Get()), Scene.Top.GetInputSet()->GetKeyFocus());
    // Any key is taken; Escape answers "Cancel".
    EXPECT_EQ(reference_pointer<art_object>(Box.Get()), Scene.Key('x'));
    EXPECT_TRUE(Log.empty());
    Scene.Key(KeyEscape);
    EXPECT_EQ(std::vector<std::string>{"No"}, Log);
    EXPECT_TRUE(Box->IsClosing());
    EXPECT_EQ(Typist, Scene.Top.GetInputSet()->GetKeyFocus());
}

TEST(ArtMessageBox, ReturnAnswersOkayAndEscapeWithoutCancelDoesNothing)
{
    widget_scene Scene;
    std::vector<std::string> Log;
    reference_pointer<art_message_box> Box = art_message_box::Show(reference_pointer<art_object>(&Scene.Top),
                                                                   "Notice", "Done.", Logging(Log, "Okay"));
    Scene.Key(KeyEscape);
    EXPECT_FALSE(Box->IsClosing());
    Scene.Key(KeyReturn);
    EXPECT_EQ(std::vector<std::string>{"Okay"}, Log);
    EXPECT_TRUE(Box->IsClosing());
}

TEST(ArtMessageBox, DrawsAVeilOverEverythingAndThePanel)
{
    widget_scene Scene;
    Scene.Top.SetBackgroundColor(agg::rgba(1, 1, 1, 1));
    reference_pointer<art_message_box> Box =
        art_message_box::Show(reference_pointer<art_object>(&Scene.Top), "Notice", "Done.");
    Scene.Top.Tick();
    art_bitmap &Window = *Scene.Top.GetBitmap();
    // The veil, black at alpha 96, over white.
    EXPECT_EQ(PixelText(Over(White, Pixel(0, 0, 0, 96), 255)), PixelText(Window.GetPixelRow(2)[2]));
    rectangle Panel = Box->GetPanel();
    // Below the title bar and away from the buttons: the panel's face over the veil.
    int X = static_cast<int>(Panel.Location.X) + 5;
    int Y = static_cast<int>(Panel.Location.Y) + 40;
    EXPECT_EQ(PixelText(Pixel(232, 232, 232, 255)), PixelText(Window.GetPixelRow(Y)[X]));
}

TEST(ArtMessageBox, ClosingTwiceIsClosingOnce)
{
    widget_scene Scene;
    reference_pointer<art_message_box> Box =
        art_message_box::Show(reference_pointer<art_object>(&Scene.Top), "Notice", "Done.");
    Box->Close();
    Box->Close();
    EXPECT_TRUE(Box->IsClosing());
    Scene.Top.Tick();
    EXPECT_FALSE(Box.IsSet());
}

} // namespace
