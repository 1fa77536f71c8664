#include "rofa_editor/update_plugin_action.h"

#include "rofa_editor/rofa_app.h"

update_plugin_action::update_plugin_action(reference_pointer<rofa_app_instance> App, bool ForcedUpdate)
    : App(App), ForcedUpdate(ForcedUpdate)
{
}

void update_plugin_action::Execute()
{
    App->UpdatePlugin(ForcedUpdate);
}
