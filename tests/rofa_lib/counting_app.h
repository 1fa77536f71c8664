#pragma once

#include <vector>

#include "rofa_lib/rofa_app_interface.h"
#include "rofa_lib/zel_hal.h"

// An application that counts its ticks and notes the layer's frame clock as each tick sees it.
class counting_app : public rofa_app_interface
{
public:
    explicit counting_app(graphical_system_abstraction_layer *Layer = nullptr) : Layer(Layer) {}

    void Run() override
    {
        Runs++;
        if (Layer == nullptr)
            return;
        SeenLastTimes.push_back(Layer->GetLastTime());
        SeenCurrentTimes.push_back(Layer->GetCurrentTime());
        SeenFrameTimes.push_back(Layer->GetFrameTime());
    }

    int Runs = 0;
    std::vector<double> SeenLastTimes;
    std::vector<double> SeenCurrentTimes;
    std::vector<double> SeenFrameTimes;

private:
    graphical_system_abstraction_layer *Layer;
};
