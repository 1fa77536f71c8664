#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "art_engine/effects/art_outline.h"
#include "art_engine/objects/art_events.h"
#include "art_engine/objects/art_object_children.h"
#include "rofa_lib/keyboard.h"
#include "rofa_linux_sal/rofa_linux_keys.h"
#include "tests/rofa_editor/app/rofa_app_test_support.h"
#include "tests/rofa_lib/stream_test_support.h"
#include "tests/test_support.h"

using namespace rofa_app_test;

namespace {

const char *const ForcedNotice = "Your plugin is out of date and must be updated.\n\n   Your Version: 0.5.1\n"
                                 "   Required Version: 0.5.2\n\nYou will be automatically redirected to the\n"
                                 "update page when you click Okay.";
const char *const MinorErrorText =
    "A minor internal error has occurred. An error log was recorded\nand the Tessaly team will be notified. No "
    "personal\ninformation will be sent.\n\nError recovery was successful. You may safely continue working.";
const char *const FatalErrorText =
    "An unrecoverable internal errors has occurred. An error log was\nrecorded and the Tessaly team will be "
    "notified. No personal\ninformation will be sent.\n\nYour Rofa will be saved as a Draft and we will attempt to "
    "return\nyou to your Tessaly home-page. You may attempt to continue editing\nyour rofa from there.";

// Fails every time it is laid out, and stays unsettled, so that every tick fails.
class failing_object : public art_object
{
public:
    explicit failing_object(bool Unknown) : Unknown(Unknown) {}
    bool Layout() override
    {
        // The walk marked this level settled on its way down; the failure leaves it unsettled.
        GetParent()->ChildrenLayoutChanged();
        if (Unknown)
            throw 42;
        throw zel_error("layout went wrong");
    }

private:
    bool Unknown;
};

reference_pointer<art_object> AddFailing(app_scene &Scene, bool Unknown = false)
{
    return Scene.Top()->AddChild(ownership_pointer<art_object>(new failing_object(Unknown)));
}

TEST(RofaApp, WindowOfNoSizeStaysUninitialisedWithoutError)
{
    app_scene Scene(parameters(), 0, 0);
    EXPECT_NO_THROW(Scene.Tick());
    EXPECT_NO_THROW(Scene.Tick());
    EXPECT_FALSE(Scene.App->IsGUIInitialized());
    EXPECT_FALSE(Scene.Top().IsSet());
}

TEST(RofaApp, FirstTickWithASizeBuildsTheEditorUnderTheTopObject)
{
    app_scene Scene;
    Scene.Tick();
    ASSERT_TRUE(Scene.App->IsGUIInitialized());
    ASSERT_TRUE(Scene.Top().IsSet());
    EXPECT_EQ(zel_string("topmost layer"), Scene.Top()->GetName());
    EXPECT_EQ(point2d(320, 200), Scene.Top()->GetSize());
    ASSERT_TRUE(Scene.App->GetEditor().IsSet());
    EXPECT_EQ(zel_string("Rofa_Editor"), Scene.App->GetEditor()->GetName());
    EXPECT_EQ(reference_pointer<art_object>(Scene.Top().Get()), Scene.App->GetEditor()->GetParent());
    EXPECT_TRUE(Scene.Boxes().empty());
}

TEST(RofaApp, TheTopObjectHasAHalfBlackOutlineTwoUnitsWide)
{
    app_scene Scene;
    Scene.Tick();
    ASSERT_TRUE(Scene.Top().IsSet());
    std::vector<reference_pointer<art_outline>> Outlines;
    for (int I = 0; I < Scene.Top()->GetNumberOfChildren(); I++) {
        reference_pointer<art_outline> Outline =
            reference_pointer<art_object>(Scene.Top()->GetChildrenObject()->GetChild(I)).DynamicCast<art_outline>();
        if (Outline.IsSet())
            Outlines.push_back(Outline);
    }
    ASSERT_EQ(1u, Outlines.size());
    EXPECT_EQ(reference_pointer<art_object>(Scene.Top().Get()), Outlines[0]->GetParent());
    EXPECT_EQ(2.0, Outlines[0]->GetWidth());
    agg::rgba Color = Outlines[0]->GetColor();
    EXPECT_EQ(0.0, Color.r);
    EXPECT_EQ(0.0, Color.g);
    EXPECT_EQ(0.0, Color.b);
    EXPECT_EQ(0.5, Color.a);
    // A solid line, drawn among the top object's normal children.
    EXPECT_EQ(0.0, Outlines[0]->GetDashCycle());
    EXPECT_EQ(StackModeNormal, Outlines[0]->GetStackMode());
}

TEST(RofaApp, MissingRequiredVersionNeverBlocksTheEditor)
{
    app_scene Scene(parameters{{"recommended_plugin_version", "0.5.1"}});
    Scene.Tick();
    EXPECT_TRUE(Scene.App->GetEditor().IsSet());
    EXPECT_EQ(-1, Scene.App->GetRequiredVersion().Major);
    EXPECT_TRUE(Scene.Boxes().empty());
}

TEST(RofaApp, ShortRequiredVersionIsUnsetAndBlocksNothing)
{
    app_scene Scene(parameters{{"required_plugin_version", "0.5"}});
    Scene.Tick();
    EXPECT_EQ(-1, Scene.App->GetRequiredVersion().Major);
    EXPECT_TRUE(Scene.App->GetEditor().IsSet());
    EXPECT_TRUE(Scene.Boxes().empty());
}

TEST(RofaApp, OlderThanRequiredShowsOnlyTheForcedNotice)
{
    app_scene Scene(parameters{{"required_plugin_version", "0.5.2"}, {"rofaID", "R42"}});
    Scene.Tick();
    EXPECT_TRUE(Scene.App->IsGUIInitialized());
    EXPECT_FALSE(Scene.App->GetEditor().IsSet());
    std::vector<reference_pointer<art_message_box>> Boxes = Scene.Boxes();
    ASSERT_EQ(1u, Boxes.size());
    EXPECT_EQ(zel_string("New Version"), Boxes[0]->GetTitle());
    EXPECT_EQ(zel_string(ForcedNotice), Boxes[0]->GetText());
    reference_pointer<update_plugin_action> Action = Boxes[0]->GetOkayAction().DynamicCast<update_plugin_action>();
    ASSERT_TRUE(Action.IsSet());
    EXPECT_TRUE(Action->IsForcedUpdate());
    // The only child of the top object is the notice.
    EXPECT_EQ(1, Scene.Top()->GetNumberOfChildren());
    // Okay sends the browser to the update page.
    Boxes[0]->GetOkayButton()->Click();
    ASSERT_EQ(1u, Scene.Page.Navigations.size());
    EXPECT_EQ("http://localhost:3000/main/update_plugin?installed_plugin_version=0.5.1&rofaid=R42&forced_update=true",
              Scene.Page.Navigations[0]);
    // Later ticks work on the top object alone.
    EXPECT_NO_THROW(Scene.Tick());
}

TEST(RofaApp, SameAsRecommendedShowsNothing)
{
    app_scene Scene(parameters{{"recommended_plugin_version", "0.5.1"}, {"required_plugin_version", "0.5.1"}});
    Scene.Tick();
    EXPECT_TRUE(Scene.App->GetEditor().IsSet());
    EXPECT_TRUE(Scene.Boxes().empty());
}

TEST(RofaApp, OlderThanRecommendedOffersTheUpdateOverAUsableEditor)
{
    app_scene Scene(parameters{{"recommended_plugin_version", "0.6.0"}, {"rofaID", "7"}});
    Scene.Tick();
    EXPECT_TRUE(Scene.App->GetEditor().IsSet());
    std::vector<reference_pointer<art_message_box>> Boxes = Scene.Boxes();
    ASSERT_EQ(1u, Boxes.size());
    EXPECT_EQ(zel_string("New Version"), Boxes[0]->GetTitle());
    EXPECT_EQ(zel_string("There is a new version of the Tessaly plugin.\n\n   Your Version: 0.5.1\n   Latest Version: "
                         "0.6.0\n\nWould you like to update now?"),
              Boxes[0]->GetText());
    reference_pointer<update_plugin_action> Action = Boxes[0]->GetOkayAction().DynamicCast<update_plugin_action>();
    ASSERT_TRUE(Action.IsSet());
    EXPECT_FALSE(Action->IsForcedUpdate());
    Boxes[0]->GetOkayButton()->Click();
    ASSERT_EQ(1u, Scene.Page.Navigations.size());
    EXPECT_EQ("http://localhost:3000/main/update_plugin?installed_plugin_version=0.5.1&rofaid=7",
              Scene.Page.Navigations[0]);
}

TEST(RofaApp, UpdateThatTheHostCannotFollowShowsTheAddress)
{
    app_scene Scene(parameters{{"rofaID", "9"}});
    Scene.Page.CanNavigate = false;
    Scene.Tick();
    Scene.App->UpdatePlugin(false);
    std::vector<reference_pointer<art_message_box>> Boxes = Scene.Boxes();
    ASSERT_EQ(1u, Boxes.size());
    EXPECT_EQ(zel_string("Draft"), Boxes[0]->GetTitle());
    EXPECT_EQ(zel_string("Update Plugin:\n\nUser should be redirected to:\n   "
                         "http://localhost:3000/main/update_plugin?installed_plugin_version=0.5.1&rofaid=9"),
              Boxes[0]->GetText());
}

TEST(RofaApp, ParametersGiveTheServerTheSessionTheDocumentAndTheVersions)
{
    app_scene Scene(parameters{{"tessalyURL", "http://example.test:81/rofa//"},
                     {"sessionID", "s1"},
                     {"rofaID", "doc"},
                     {"latest_plugin_version", "0.7.3d"}});
    EXPECT_EQ(zel_string("http://example.test:81/rofa/"), Scene.App->GetNet()->GetServerURL());
    EXPECT_EQ(zel_string("s1"), Scene.App->GetNet()->GetSessionID());
    EXPECT_EQ(zel_string("doc"), Scene.App->GetRofaID());
    EXPECT_EQ(plugin_version(0, 7, 3, true), Scene.App->GetLatestVersion());
    // Nothing is built before the first tick.
    EXPECT_FALSE(Scene.App->IsGUIInitialized());
}

TEST(RofaApp, ServerAddressEndingInBackslashesLosesOnlyThose)
{
    app_scene Scene(parameters{{"tessalyurl", "http://example.test/a/\\\\"}});
    EXPECT_EQ(zel_string("http://example.test/a/"), Scene.App->GetNet()->GetServerURL());
}

TEST(RofaApp, WithoutParametersTheDefaultsHold)
{
    app_scene Scene;
    EXPECT_EQ(zel_string(RofaDefaultServerURL), Scene.App->GetNet()->GetServerURL());
    EXPECT_EQ(zel_string(), Scene.App->GetNet()->GetSessionID());
    EXPECT_EQ(zel_string(), Scene.App->GetRofaID());
    EXPECT_EQ(plugin_version(), Scene.App->GetRecommendedVersion());
}

TEST(RofaApp, UnsetLayerFailsTheAssertion)
{
    std::string Message =
        ZEL_ERROR_MESSAGE(rofa_app_instance(reference_pointer<graphical_system_abstraction_layer>()));
    EXPECT_NE(std::string::npos, Message.find("'GAL.IsSet()' is false"));
}

TEST(RofaApp, SixFailingTicksGiveTheMinorDialogOnceAndTheFatalOneOnTheSixth)
{
    app_scene Scene;
    Scene.Tick();
    AddFailing(Scene);
    Scene.Tick();
    std::vector<reference_pointer<art_message_box>> Boxes = Scene.Boxes();
    ASSERT_EQ(1u, Boxes.size());
    EXPECT_EQ(zel_string("Recoverable Application Error"), Boxes[0]->GetTitle());
    EXPECT_EQ(zel_string(MinorErrorText), Boxes[0]->GetText());
    EXPECT_EQ(1, Scene.App->GetErrorCount());
    for (int Tick = 2; Tick <= 5; Tick++) {
        Scene.Tick();
        EXPECT_EQ(Tick, Scene.App->GetErrorCount());
        EXPECT_EQ(1u, Scene.Boxes().size());
        EXPECT_FALSE(Scene.App->GetFatalDialog().IsSet());
    }
    Scene.Tick();
    ASSERT_TRUE(Scene.App->GetFatalDialog().IsSet());
    EXPECT_EQ(Scene.App->GetFatalDialog(), Scene.App->GetRecoverableDialog());
    reference_pointer<art_message_box> Fatal = Scene.App->GetFatalDialog().DynamicCast<art_message_box>();
    EXPECT_EQ(zel_string("Application Error"), Fatal->GetTitle());
    EXPECT_EQ(zel_string(FatalErrorText), Fatal->GetText());
    EXPECT_TRUE(Boxes[0]->IsClosing());
    // A seventh failure changes nothing; the closed minor dialog is gone by now.
    Scene.Tick();
    EXPECT_FALSE(Boxes[0].IsSet());
    ASSERT_EQ(1u, Scene.Boxes().size());
    EXPECT_EQ(reference_pointer<art_object>(Scene.Boxes()[0].Get()), Scene.App->GetFatalDialog());
    EXPECT_EQ(5, Scene.App->GetErrorCount());
}

TEST(RofaApp, ClosingTheFatalDialogStartsTheCountAgain)
{
    app_scene Scene;
    Scene.Tick();
    reference_pointer<art_object> Failing = AddFailing(Scene);
    for (int Tick = 0; Tick < 6; Tick++)
        Scene.Tick();
    reference_pointer<art_message_box> Fatal = Scene.App->GetFatalDialog().DynamicCast<art_message_box>();
    ASSERT_TRUE(Fatal.IsSet());
    Fatal->GetOkayButton()->Click();
    // The next tick takes the dialog away first; the failure that follows finds no dialog up.
    Scene.Tick();
    EXPECT_FALSE(Scene.App->GetFatalDialog().IsSet());
    std::vector<reference_pointer<art_message_box>> Boxes = Scene.Boxes();
    ASSERT_EQ(1u, Boxes.size());
    EXPECT_EQ(zel_string("Recoverable Application Error"), Boxes[0]->GetTitle());
    EXPECT_EQ(reference_pointer<art_object>(Boxes[0].Get()), Scene.App->GetRecoverableDialog());
    EXPECT_EQ(1, Scene.App->GetErrorCount());
    // With the fault gone and the dialog closed, ticks run clean.
    Failing->MarkForDeletion();
    Boxes[0]->Close();
    Scene.Tick();
    Scene.Tick();
    EXPECT_FALSE(Scene.App->GetRecoverableDialog().IsSet());
    EXPECT_TRUE(Scene.Boxes().empty());
}

TEST(RofaApp, AFailureOfAnUnknownKindIsHandledToo)
{
    app_scene Scene;
    Scene.Tick();
    AddFailing(Scene, true);
    EXPECT_NO_THROW(Scene.Tick());
    EXPECT_EQ(1u, Scene.Boxes().size());
    EXPECT_EQ(1, Scene.App->GetErrorCount());
}

TEST(RofaApp, AFailureAfterErrorsResetsTheEditorsCaptureAndRedrawsAll)
{
    app_scene Scene;
    Scene.Tick();
    AddFailing(Scene);
    Scene.Tick();
    EXPECT_TRUE(Scene.Top()->IsFullRedraw());
    EXPECT_FALSE(Scene.Top()->GetChildrenObject()->GetMouseFocusedDHO().IsSet());
}

TEST(RofaApp, AFailureWithNoEditorLeavesRun)
{
    app_scene Scene(parameters{{"required_plugin_version", "9.0.0"}});
    Scene.Tick();
    ASSERT_FALSE(Scene.App->GetEditor().IsSet());
    AddFailing(Scene);
    std::string Message = ZEL_ERROR_MESSAGE(Scene.Tick());
    EXPECT_NE(std::string::npos, Message.find("'IsSet()' is false"));
}

TEST(RofaApp, AnAlertFollowsTheWindowsSize)
{
    app_scene Scene(parameters{{"recommended_plugin_version", "0.6.0"}}, 640, 480);
    Scene.Tick();
    ASSERT_EQ(1u, Scene.Boxes().size());
    reference_pointer<art_message_box> Box = Scene.Boxes()[0];
    EXPECT_EQ(point2d(640, 480), Box->GetSize());
    Scene.Send(WM_SIZE, 0, static_cast<int32_t>(MakeLong(800, 600)));
    EXPECT_EQ(point2d(800, 600), Scene.Top()->GetSize());
    EXPECT_EQ(point2d(800, 600), Box->GetSize());
    EXPECT_EQ(point2d(0, 0), Box->GetLocation());
    // The panel stays in the middle, and the button on its last row.
    rectangle Panel = Box->GetPanel();
    EXPECT_EQ(point2d(220, 220), Panel.Location);
    reference_pointer<art_button> Okay = Box->GetOkayButton();
    EXPECT_EQ(Panel.GetEnd().Y - 12, Okay->GetLocation().Y + Okay->GetSize().Y);
    EXPECT_EQ(Panel.GetEnd().X - 12, Okay->GetLocation().X + Okay->GetSize().X);
}

TEST(RofaApp, WindowResizeResizesTheTopObjectAndRedrawsAll)
{
    app_scene Scene;
    Scene.Tick();
    Scene.Send(WM_SIZE, 0, static_cast<int32_t>(MakeLong(500, 400)));
    EXPECT_EQ(point2d(500, 400), Scene.Top()->GetSize());
    EXPECT_EQ(int_point2d(500, 400), Scene.Top()->GetBitmap()->GetSize());
    EXPECT_FALSE(Scene.Top()->IsDirty());
}

TEST(RofaApp, DroppingThreeFilesOfWhichOneFailsShowsOneAlertWithOnePath)
{
    app_scene Scene;
    Scene.Tick();
    temporary_folder Folder;
    WriteFileBytes(Folder / "first.png", std::string("\x89PNG\r\n\x1a\n", 8) + "rest");
    WriteFileBytes(Folder / "second.gif", "GIF89a....");
    std::string Missing = Folder / "no-such-file.png";
    Scene.Layer->AddDroppedFile(7, (Folder / "first.png").c_str());
    Scene.Layer->AddDroppedFile(7, Missing.c_str());
    Scene.Layer->AddDroppedFile(7, (Folder / "second.gif").c_str());
    Scene.Send(WM_DROPFILES, 7);
    Scene.Tick();
    std::vector<reference_pointer<art_message_box>> Boxes = Scene.Boxes();
    ASSERT_EQ(1u, Boxes.size());
    EXPECT_EQ(zel_string("Some Files Couldn't Be Loaded"), Boxes[0]->GetTitle());
    EXPECT_EQ(zel_string(("The following files couldn't be loaded:\n\n" + Missing + "\n").c_str()),
              Boxes[0]->GetText());
    // The drop is taken: the next tick shows nothing more.
    Scene.Tick();
    EXPECT_EQ(1u, Scene.Boxes().size());
}

TEST(RofaApp, DroppedFileThatIsNoPictureFails)
{
    app_scene Scene;
    Scene.Tick();
    temporary_folder Folder;
    std::string Text = Folder / "notes.txt";
    WriteFileBytes(Text, "just words");
    Scene.Layer->AddDroppedFile(3, Text.c_str());
    Scene.Send(WM_DROPFILES, 3);
    Scene.Tick();
    ASSERT_EQ(1u, Scene.Boxes().size());
    EXPECT_NE(std::string::npos, std::string(Scene.Boxes()[0]->GetText().GetString()).find(Text));
}

// Records every key it is given.
class key_recorder : public art_object
{
public:
    explicit key_recorder(std::vector<int> &Keys) : Keys(Keys) {}
    reference_pointer<art_object> HandleKeyEvent(reference_pointer<art_key_event> KeyEvent) override
    {
        Keys.push_back(KeyEvent->GetEntry());
        return reference_pointer<art_object>(this);
    }

private:
    std::vector<int> &Keys;
};

TEST(RofaApp, AltF4AsksToQuitAndIsStillPassedOn)
{
    app_scene Scene;
    Scene.Tick();
    std::vector<int> Keys;
    reference_pointer<art_object> Recorder =
        Scene.Top()->AddChild(ownership_pointer<art_object>(new key_recorder(Keys)));
    Scene.Top()->GetInputSet()->SetKeyFocus(Recorder);
    Scene.Send(WM_SYSKEYDOWN, VK_MENU);
    Scene.Send(WM_SYSKEYDOWN, VK_F1 + 3);
    Scene.Tick();
    EXPECT_TRUE(Scene.App->IsQuitRequested());
    ASSERT_EQ(2u, Keys.size());
    EXPECT_EQ(KeyF4, Keys[1] & KeyCodeMask);
    EXPECT_NE(0, Keys[1] & KeyAltFlag);
}

TEST(RofaApp, F4WithoutAltDoesNotAskToQuit)
{
    app_scene Scene;
    Scene.Tick();
    Scene.Send(WM_KEYDOWN, VK_F1 + 3);
    Scene.Tick();
    EXPECT_FALSE(Scene.App->IsQuitRequested());
}

} // namespace
