#include "rofa_lib/rofa_placeholder_app.h"

#include "rofa_lib/sal_functions.h"
#include "zel_basics/debug.h"

rofa_placeholder_app::rofa_placeholder_app(reference_pointer<graphical_system_abstraction_layer> GAL) : GAL(GAL)
{
    TOVAS_ASSERT(GAL.IsSet(), this);
}

void rofa_placeholder_app::Run()
{
    DebugNestingReset();
    TickCount++;
    LastFrameTime = GAL->GetFrameTime();
    SALFrameDone();
}
