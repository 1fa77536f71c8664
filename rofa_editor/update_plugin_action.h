#pragma once

#include "rofa_editor/art_widgets.h"

class rofa_app_instance;

// The answer to an update notice: sends the browser to the update page.
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
