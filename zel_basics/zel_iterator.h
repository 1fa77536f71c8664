#pragma once

#include <cstdint>

// The common walk over any container, for code that takes whichever container it is given. The calls
// are virtual; code in tight loops reads an array by index instead.
template <class T> class zel_iterator
{
public:
    virtual ~zel_iterator() = default;

    virtual void First() = 0;
    virtual void Next() = 0;
    // On an element.
    virtual bool NotDone() = 0;
    // Past the end.
    virtual bool Done() = 0;
    virtual T &Current() = 0;
    virtual void RemoveCurrent() = 0;
    // The container's count; 0 once the container has died.
    virtual uint32_t GetNumberOfElements() = 0;
};
