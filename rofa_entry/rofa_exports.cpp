#include "rofa_lib/rofa_plugin_api.h"

#include "rofa_editor/app/rofa_app.h"
#include "rofa_headless_sal/headless_screen_png.h"
#include "rofa_headless_sal/rofa_headless_gal.h"
#include "rofa_lib/rofa_version.h"
#include "rofa_linux_sal/freetype_font_source.h"
#include "zel_basics/debug.h"
#include "zel_basics/lwpointers.h"

namespace {

const char *const RofaAppInstanceRefName = "rofa_app_instance";

// A handle is the address of the instance's window layer, which owns everything else.
graphical_system_abstraction_layer *GetLayer(RofaAppHandle Handle)
{
    return static_cast<graphical_system_abstraction_layer *>(Handle);
}

ownership_pointer<graphical_system_abstraction_layer> CreateLayer(int Width, int Height, rofa_native_window Window,
                                                                  rofa_host_interface *Host)
{
    if (Window != nullptr)
        throw zel_error("This build of the library has no binding for native windows; pass a null window to run "
                        "without a display.");
    ownership_pointer<rofa_headless_gal> Layer(new rofa_headless_gal(Width, Height, Host));
    Layer->SetScreenWriter(WriteScreenPNG);
    return ownership_pointer<graphical_system_abstraction_layer>(Layer);
}

} // namespace

extern "C" {

const char *RofaAppGetVersionString(void)
{
    return ROFA_VERSION_STRING;
}

RofaAppHandle RofaAppCreateNewInstance_v2(int Width, int Height, rofa_native_window Window, rofa_host_interface *Host,
                                          const char *CommandLine)
{
    ownership_pointer<graphical_system_abstraction_layer> GAL = CreateLayer(Width, Height, Window, Host);
    if (CommandLine != nullptr)
        GAL->ParseCommandLine(CommandLine);
    // Once a process: the fonts of the system, which a second instance shares.
    InstallFreetypeFontSource();

    ownership_pointer<rofa_app_interface> AppInstance(
        new rofa_app_instance(reference_pointer<graphical_system_abstraction_layer>(GAL)));
    reference_pointer<rofa_app_interface> App(AppInstance);
    GAL->SetGlobalOwner(RofaAppInstanceRefName, ownership_pointer<base_object>(AppInstance));
    App->Run();
    GAL->SetRofaApp(App);
    return GAL.Release();
}

uint32_t RofaAppProcessGUIMessage_v2(RofaAppHandle Handle, rofa_gui_message *Message)
{
    if (Handle == nullptr)
        return 0;
    return GetLayer(Handle)->ProcessGUIMessage(Message);
}

void RofaAppReleaseAppInstance_v2(RofaAppHandle Handle)
{
    if (Handle == nullptr)
        return;
    ownership_pointer<graphical_system_abstraction_layer> GAL(GetLayer(Handle));
    TOVAS_ASSERT(GAL->GlobalReferenceIsSet(zel_string(RofaAppInstanceRefName)), GAL.Get());
    ownership_pointer<base_object> AppInstance = GAL->RemoveGlobalOwner(RofaAppInstanceRefName);
    TOVAS_ASSERT(AppInstance.IsSet(), GAL.Get());
    AppInstance.Reset();
}

} // extern "C"
