#pragma once

#include "zel_basics/zel_string.h"

// The one exception type of the system: a plain value that carries the message for the user or
// the assertion report. Thrown and caught by value.
class zel_error
{
public:
    explicit zel_error(const zel_string &Message) : Message(Message) {}
    const zel_string &GetMessage() const { return Message; }

private:
    zel_string Message;
};
