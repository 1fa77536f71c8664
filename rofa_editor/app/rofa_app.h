#pragma once

#include <cstdint>

#include "rofa_editor/app/art_gal_top_object.h"
#include "rofa_editor/app/plugin_version.h"
#include "rofa_editor/core/rofa_editor.h"
#include "rofa_editor/widgets/art_widgets.h"
#include "rofa_lib/rofa_app_interface.h"
#include "rofa_lib/zel_hal.h"
#include "rofa_net/rofa_net.h"
#include "zel_basics/lwpointers.h"
#include "zel_basics/point2d.h"
#include "zel_basics/zel_string.h"

// The application of one plug-in window. It reads the page's parameters, decides whether this
// library may run, builds the user interface on the first tick that finds the window with a size,
// and then, tick by tick, turns queued input into events, lets the top object lay out and paint, and
// turns every failure of the logic below into a dialog.
class rofa_app_instance : public rofa_app_interface
{
public:
    explicit rofa_app_instance(reference_pointer<graphical_system_abstraction_layer> GAL);
    ~rofa_app_instance() override;

    zel_string GetName() override { return "rofa_app_instance"; }

    // One tick of the window's timer.
    void Run() override;
    // Sends the browser to the update page; where the host can't, the address is shown instead.
    void UpdatePlugin(bool ForcedUpdate);
    // A failure caught in a tick. Message is for the log, not for the user.
    void HandleError(zel_string Message);
    // A notice over everything, with an "Okay" button that runs Action if one is given.
    reference_pointer<art_object> ShowAlert(zel_string Title, zel_string Text,
                                            ownership_pointer<art_button_action> Action =
                                                ownership_pointer<art_button_action>());

    const plugin_version &GetLatestVersion() const { return LatestVersion; }
    const plugin_version &GetRecommendedVersion() const { return RecommendedVersion; }
    const plugin_version &GetRequiredVersion() const { return RequiredVersion; }
    int_point2d GetLastMouseLocation() const { return LastMouseLocation; }
    reference_pointer<rofa_editor> GetEditor() const { return Editor; }
    reference_pointer<art_gal_top_object> GetTopObject() const
    {
        return reference_pointer<art_gal_top_object>(TopObject.Get());
    }
    reference_pointer<art_object> GetRecoverableDialog() const { return RecoverableDialog; }
    reference_pointer<art_object> GetFatalDialog() const { return FatalDialog; }
    int32_t GetErrorCount() const { return ErrorCount; }
    zel_string GetRofaID() const { return RofaID; }
    bool IsQuitRequested() const { return QuitRequested; }
    reference_pointer<rofa_net> GetNet() const { return reference_pointer<rofa_net>(Net.Get()); }
    bool IsGUIInitialized() const { return GUIInitialized; }

private:
    void ReadParameters();
    void InitGUI();
    // The steps of a tick after the user interface exists; any failure in them ends the tick.
    void RunSteps();
    void FollowWindowSize();
    void OpenDroppedFiles();
    void PassKeys();
    void PassMouseActions();
    void PassMouseMove();

    plugin_version LatestVersion;
    plugin_version RecommendedVersion;
    plugin_version RequiredVersion;
    reference_pointer<system_abstraction_layer> SAL;
    reference_pointer<graphical_system_abstraction_layer> GAL;
    int_point2d LastMouseLocation;
    reference_pointer<rofa_editor> Editor;
    ownership_pointer<art_gal_top_object> TopObject;
    reference_pointer<art_object> RecoverableDialog;
    reference_pointer<art_object> FatalDialog;
    int32_t ErrorCount;
    zel_string RofaID;
    bool QuitRequested;
    ownership_pointer<rofa_net> Net;
    bool GUIInitialized;
};

// The answer to an update notice: sends the browser to the update page. It lives beside the
// instance that it calls back, so that neither file needs the other.
class update_plugin_action : public art_button_action
{
public:
    update_plugin_action(reference_pointer<rofa_app_instance> App, bool ForcedUpdate);

    void Execute() override;
    bool IsForcedUpdate() const { return ForcedUpdate; }

private:
    reference_pointer<rofa_app_instance> App;
    bool ForcedUpdate;
};
