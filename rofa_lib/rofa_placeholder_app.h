#pragma once

#include "rofa_lib/rofa_app_interface.h"
#include "rofa_lib/zel_hal.h"
#include "zel_basics/lwpointers.h"

// The application object of an instance until the editor's application exists: it takes the ticks
// that the window layer drives, keeps their count and frame times, and draws nothing.
class rofa_placeholder_app : public rofa_app_interface
{
public:
    explicit rofa_placeholder_app(reference_pointer<graphical_system_abstraction_layer> GAL);

    void Run() override;
    zel_string GetName() override { return "rofa_placeholder_app"; }

    int GetTickCount() const { return TickCount; }
    double GetLastFrameTime() const { return LastFrameTime; }

private:
    reference_pointer<graphical_system_abstraction_layer> GAL;
    int TickCount = 0;
    double LastFrameTime = 0;
};
