#pragma once

#include "zel_basics/lwbase_object.h"

// What the window layer's timer drives: one tick of application logic per call.
class rofa_app_interface : public base_object
{
public:
    virtual void Run() = 0;
};
