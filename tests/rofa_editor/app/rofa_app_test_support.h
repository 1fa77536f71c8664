#pragma once

#include <string>
#include <utility>
#include <vector>

#include "art_engine/objects/art_object_children.h"
#include "rofa_editor/app/rofa_app.h"
#include "rofa_editor/widgets/art_widgets.h"
#include "rofa_headless_sal/rofa_headless_gal.h"
#include "rofa_lib/rofa_plugin_api.h"
#include "rofa_linux_sal/win32_messages.h"

namespace rofa_app_test {

// A page with parameters whose browser can or can't be sent elsewhere.
struct test_page : rofa_host_interface
{
    std::vector<std::pair<std::string, std::string>> Parameters;
    std::vector<std::string> Navigations;
    bool CanNavigate = true;

    test_page();
};

inline uint8_t TestNavigate(rofa_host_interface *Host, const char *URL, int32_t)
{
    test_page *Page = static_cast<test_page *>(Host);
    Page->Navigations.push_back(URL);
    return Page->CanNavigate ? 1 : 0;
}
inline int32_t TestCount(rofa_host_interface *Host)
{
    return static_cast<int32_t>(static_cast<test_page *>(Host)->Parameters.size());
}
inline const char *TestName(rofa_host_interface *Host, int32_t Index)
{
    return static_cast<test_page *>(Host)->Parameters.at(static_cast<size_t>(Index)).first.c_str();
}
inline const char *TestValue(rofa_host_interface *Host, int32_t Index)
{
    return static_cast<test_page *>(Host)->Parameters.at(static_cast<size_t>(Index)).second.c_str();
}
inline const rofa_host_operations TestOperations = {TestNavigate, TestCount, TestName, TestValue};

inline test_page::test_page()
{
    Operations = &TestOperations;
}

typedef std::vector<std::pair<std::string, std::string>> parameters;

// An instance on a headless layer, driven by the layer's messages as a host drives it.
struct app_scene
{
    test_page Page;
    ownership_pointer<rofa_headless_gal> Layer;
    ownership_pointer<rofa_app_instance> App;

    explicit app_scene(parameters Parameters = parameters(), int Width = 320,
                       int Height = 200)
    {
        Page.Parameters = std::move(Parameters);
        Layer = ownership_pointer<rofa_headless_gal>(new rofa_headless_gal(Width, Height, &Page));
        App = ownership_pointer<rofa_app_instance>(
            new rofa_app_instance(reference_pointer<graphical_system_abstraction_layer>(Layer.Get())));
        Layer->SetRofaApp(reference_pointer<rofa_app_interface>(App.Get()));
    }

    uint32_t Send(uint32_t Message, uint32_t WParam = 0, int32_t LParam = 0)
    {
        rofa_gui_message Record = {nullptr, Message, WParam, LParam, 0};
        return Layer->ProcessGUIMessage(&Record);
    }

    void Tick() { Send(WM_TIMER); }

    reference_pointer<art_gal_top_object> Top() { return App->GetTopObject(); }

    // The message boxes over the top object, front-most last, those closing included.
    std::vector<reference_pointer<art_message_box>> Boxes()
    {
        std::vector<reference_pointer<art_message_box>> Found;
        if (!Top().IsSet())
            return Found;
        for (int I = 0; I < Top()->GetNumberOfChildren(); I++) {
            reference_pointer<art_message_box> Box =
                reference_pointer<art_object>(Top()->GetChildrenObject()->GetChild(I)).DynamicCast<art_message_box>();
            if (Box.IsSet())
                Found.push_back(Box);
        }
        return Found;
    }
};

} // namespace rofa_app_test
