#include "rofa_editor/app/rofa_app.h"

#include "art_engine/effects/art_outline.h"
#include "art_engine/objects/art_events.h"
#include "rofa_editor/widgets/art_widgets.h"
#include "rofa_lib/keyboard.h"
#include "rofa_lib/mouse_interface.h"
#include "rofa_lib/sal_functions.h"
#include "zel_basics/array.h"
#include "zel_basics/debug.h"
#include "zel_basics/zel_error.h"

namespace {

// The browser's mode for a page that replaces the plug-in's own.
const int NavigateReplacePage = 5;

// A text without the characters C at its end.
zel_string WithoutTrailing(zel_string Text, char C)
{
    int Length = Text.GetLength();
    while (Length > 0 && Text[Length - 1] == C)
        Length--;
    return Text.Left(Length);
}

art_pointer_event::pointer_event_type PointerEventTypeOfAction(int32_t Action)
{
    switch (Action) {
    case MouseActionPress:
        return art_pointer_event::PointerButtonDown;
    case MouseActionRelease:
        return art_pointer_event::PointerButtonUp;
    default:
        return art_pointer_event::PointerButtonDoubleClick;
    }
}

} // namespace

rofa_app_instance::rofa_app_instance(reference_pointer<graphical_system_abstraction_layer> GivenGAL)
    : SAL(GivenGAL.Get()), GAL(GivenGAL), LastMouseLocation(-1, -1), ErrorCount(0), QuitRequested(false),
      Net(new rofa_net), GUIInitialized(false)
{
    TOVAS_ASSERT(GAL.IsSet(), this);
    plugin_version::GetOwnVersion();
    ReadParameters();
}

rofa_app_instance::~rofa_app_instance() = default;

void rofa_app_instance::ReadParameters()
{
    if (SAL->EnvironmentVarExists("tessalyurl")) {
        zel_string URL = SAL->GetEnvironmentVar("tessalyurl");
        bool EndedInBackslash = URL.GetLength() > 0 && URL[URL.GetLength() - 1] == '\\';
        URL = WithoutTrailing(URL, '\\');
        if (!EndedInBackslash)
            URL = WithoutTrailing(URL, '/');
        Net->SetServerURL(URL);
    }
    if (SAL->EnvironmentVarExists("sessionID"))
        Net->SetSessionID(SAL->GetEnvironmentVar("sessionID"));
    if (SAL->EnvironmentVarExists("rofaID"))
        RofaID = SAL->GetEnvironmentVar("rofaid");
    LatestVersion = plugin_version::FromText(SAL->GetEnvironmentVar("latest_plugin_version"));
    RecommendedVersion = plugin_version::FromText(SAL->GetEnvironmentVar("recommended_plugin_version"));
    RequiredVersion = plugin_version::FromText(SAL->GetEnvironmentVar("required_plugin_version"));
}

reference_pointer<art_object> rofa_app_instance::ShowAlert(zel_string Title, zel_string Text,
                                                           ownership_pointer<art_button_action> Action)
{
    return reference_pointer<art_object>(
        art_message_box::Show(reference_pointer<art_object>(TopObject.Get()), Title, Text, Action).Get());
}

void rofa_app_instance::InitGUI()
{
    TOVAS_ASSERT(!GUIInitialized, this);
    int_point2d WindowSize = GAL->GetWindowSize();
    if (WindowSize.X == 0 && WindowSize.Y == 0)
        return;
    TopObject = ownership_pointer<art_gal_top_object>(new art_gal_top_object(
        GAL, point2d(WindowSize.X, WindowSize.Y),
        ownership_pointer<art_human_input_set>(new art_human_input_set(GAL->GetMouse(), GAL->GetKeyboard()))));

    const plugin_version &Own = plugin_version::GetOwnVersion();
    reference_pointer<rofa_app_instance> Self(this);
    if (plugin_version::AreComparable(Own, RequiredVersion) && Own.IsOlderThan(RequiredVersion)) {
        ShowAlert("New Version",
                  "Your plugin is out of date and must be updated.\n\n   Your Version: " + Own.ToText() +
                      "\n   Required Version: " + RequiredVersion.ToText() +
                      "\n\nYou will be automatically redirected to the\nupdate page when you click Okay.",
                  ownership_pointer<art_button_action>(new update_plugin_action(Self, true)));
        GUIInitialized = true;
        return;
    }

    ownership_pointer<rofa_editor> NewEditor(new rofa_editor(GetNet(), RofaID));
    Editor = reference_pointer<rofa_editor>(NewEditor.Get());
    TopObject->AddChild(ownership_pointer<art_object>(NewEditor));
    TopObject->RequestRedraw();
    // A soft dark line marks the edge of the plug-in's area on the page.
    ownership_pointer<art_outline> Border(new art_outline);
    Border->SetWidth(2.0);
    Border->SetColor(agg::rgba(0, 0, 0, 0.5));
    TopObject->AddChild(ownership_pointer<art_object>(Border));

    if (plugin_version::AreComparable(Own, RecommendedVersion) && Own.IsOlderThan(RecommendedVersion)) {
        ShowAlert("New Version",
                  "There is a new version of the Tessaly plugin.\n\n   Your Version: " + Own.ToText() +
                      "\n   Latest Version: " + RecommendedVersion.ToText() + "\n\nWould you like to update now?",
                  ownership_pointer<art_button_action>(new update_plugin_action(Self, false)));
    }
    GUIInitialized = true;
}

void rofa_app_instance::Run()
{
    if (!GUIInitialized) {
        InitGUI();
        if (!GUIInitialized)
            return;
    }
    try {
        RunSteps();
    } catch (const zel_error &Error) {
        HandleError(Error.GetMessage());
    } catch (...) {
        HandleError("UNKNOWN");
    }
}

void rofa_app_instance::RunSteps()
{
    DebugNestingReset();
    FollowWindowSize();
    OpenDroppedFiles();
    PassKeys();
    PassMouseActions();
    PassMouseMove();
    TopObject->Tick();
    SALFrameDone();
}

void rofa_app_instance::FollowWindowSize()
{
    int_point2d WindowSize = GAL->GetWindowSize();
    point2d TopSize = TopObject->GetSize();
    if (static_cast<int32_t>(TopSize.X) == WindowSize.X && static_cast<int32_t>(TopSize.Y) == WindowSize.Y)
        return;
    TopObject->SetSize(point2d(WindowSize.X, WindowSize.Y));
    TopObject->InvalidateLayout();
    TopObject->RequestRedraw();
}

void rofa_app_instance::OpenDroppedFiles()
{
    if (!SAL->EnvironmentVarExists("DropFileNames"))
        return;
    zel_string Names = SAL->TakeEnvironmentVar("DropFileNames");
    array<zel_string> Paths;
    Names.Split('\0', Paths);
    zel_string Failed;
    for (int I = 0; I < Paths.GetNumberOfElements(); I++) {
        // Every path ends in a zero byte, so the piece after the last one is empty.
        if (Paths[I].GetLength() == 0)
            continue;
        try {
            if (!Editor.IsSet())
                throw zel_error("There is no document to put a picture in.");
            Editor->OpenImageFile(Paths[I]);
        } catch (const zel_error &) {
            Failed += Paths[I] + "\n";
        }
    }
    if (Failed.GetLength() > 0)
        ShowAlert("Some Files Couldn't Be Loaded", "The following files couldn't be loaded:\n\n" + Failed);
}

void rofa_app_instance::PassKeys()
{
    reference_pointer<keyboard_interface> Keyboard = GAL->GetKeyboard();
    for (int Count = Keyboard->GetNumberOfKeysInBuffer(); Count > 0; Count--) {
        int Entry = Keyboard->PopKey();
        if ((Entry & KeyCodeMask) == KeyF4 && (Entry & KeyAltFlag) != 0)
            QuitRequested = true;
        art_key_event KeyEvent(Entry);
        TopObject->HandleKeyEvent(reference_pointer<art_key_event>(&KeyEvent));
    }
}

void rofa_app_instance::PassMouseActions()
{
    reference_pointer<mouse_interface> Mouse = GAL->GetMouse();
    array<mouse_action> &MouseActions = Mouse->GetMouseActions();
    while (MouseActions.GetNumberOfElements() != 0) {
        TOVAS_ASSERT(MouseActions.GetNumberOfElements()>0, this);
        mouse_action Action = MouseActions[0];
        MouseActions.Remove(0);
        if (Action.Action == MouseActionPress)
            Mouse->SetButton(Action.Button, true);
        else if (Action.Action == MouseActionRelease || Action.Action == MouseActionDoubleClick)
            Mouse->SetButton(Action.Button, false);
        else
            TOVAS_ASSERT(false, this);
        art_pointer_event PointerEvent(PointerEventTypeOfAction(Action.Action),
                                       static_cast<art_pointer_event::pointer_button>(Action.Button),
                                       point2d(Action.X, Action.Y), TopObject->GetInputSet());
        TopObject->HandlePointerEvent(reference_pointer<art_pointer_event>(&PointerEvent));
    }
}

void rofa_app_instance::PassMouseMove()
{
    int_point2d Location = GAL->GetMouse()->GetLocation();
    if (Location == LastMouseLocation)
        return;
    art_pointer_event Move(art_pointer_event::PointerMovedWithin, point2d(Location.X, Location.Y),
                           point2d(LastMouseLocation.X, LastMouseLocation.Y), TopObject->GetInputSet());
    TopObject->HandlePointerEvent(reference_pointer<art_pointer_event>(&Move));
    LastMouseLocation = Location;
}

void rofa_app_instance::UpdatePlugin(bool ForcedUpdate)
{
    zel_string URL = zel_string(RofaDefaultSiteURL) + "main/update_plugin" + "?installed_plugin_version=" +
                     plugin_version::GetOwnVersion().ToText() + "&rofaid=" + RofaID;
    if (ForcedUpdate)
        URL += "&forced_update=true";
    if (!GAL->NavigateBrowser(URL, NavigateReplacePage))
        ShowAlert("Draft", "Update Plugin:\n\nUser should be redirected to:\n   " + URL);
}

void rofa_app_instance::HandleError(zel_string Message)
{
    DebugLog("Application error: " + Message);
    if (!RecoverableDialog.IsSet()) {
        ErrorCount = 1;
        RecoverableDialog = ShowAlert(
            "Recoverable Application Error",
            "A minor internal error has occurred. An error log was recorded\nand the Tessaly team will be notified. "
            "No personal\ninformation will be sent.\n\nError recovery was successful. You may safely continue "
            "working.");
    } else if (ErrorCount < 5) {
        ErrorCount++;
    } else if (!FatalDialog.IsSet()) {
        reference_pointer<art_message_box> Open = RecoverableDialog.DynamicCast<art_message_box>();
        if (Open.IsSet())
            Open->Close();
        FatalDialog = ShowAlert(
            "Application Error",
            "An unrecoverable internal errors has occurred. An error log was\nrecorded and the Tessaly team will be "
            "notified. No personal\ninformation will be sent.\n\nYour Rofa will be saved as a Draft and we will "
            "attempt to return\nyou to your Tessaly home-page. You may attempt to continue editing\nyour rofa from "
            "there.");
        RecoverableDialog = FatalDialog;
    }
    Editor->ResetAfterError();
}

update_plugin_action::update_plugin_action(reference_pointer<rofa_app_instance> App, bool ForcedUpdate)
    : App(App), ForcedUpdate(ForcedUpdate)
{
}

void update_plugin_action::Execute()
{
    App->UpdatePlugin(ForcedUpdate);
}
