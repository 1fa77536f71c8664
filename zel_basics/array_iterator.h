#pragma once

#include <cstdint>

#include "zel_basics/array.h"
#include "zel_basics/lwpointers.h"
#include "zel_basics/zel_iterator.h"

// Walks an array by index. It holds a reference, not the array: once the array has died the iterator
// counts no elements and is done, instead of reading freed memory.
template <class T> class array_iterator : public zel_iterator<T>
{
public:
    explicit array_iterator(array<T> &Target) : Index(0), Array(&Target) {}

    void First() override { Index = 0; }
    void Next() override { Index++; }
    bool NotDone() override { return Array.IsSet() && Array->IsInArray(Index); }
    bool Done() override { return !Array.IsSet() || Index >= Array->GetNumberOfElements(); }
    T &Current() override { return (*Array)[Index]; }

    // The following element moves into the place, so the iterator is on it afterwards.
    void RemoveCurrent() override { Array->Remove(Index); }

    uint32_t GetNumberOfElements() override
    {
        return Array.IsSet() ? static_cast<uint32_t>(Array->GetNumberOfElements()) : 0;
    }

    // For loops that remove as they go: the next Next() lands on the element that moved into the place.
    virtual void RemoveCurrentAndStepBack()
    {
        Array->Remove(Index);
        Index--;
    }

    virtual void Previous() { Index--; }

    int GetIndex() const { return Index; }

protected:
    int32_t Index;
    reference_pointer<array<T>> Array;
};

// Walks an array from its last element to its first. Every operation keeps the sense of the forward
// iterator with the direction turned round; it starts on the last element.
template <class T> class reverse_array_iterator : public array_iterator<T>
{
public:
    explicit reverse_array_iterator(array<T> &Target) : array_iterator<T>(Target) { First(); }

    void First() override { this->Index = this->Array.IsSet() ? this->Array->GetNumberOfElements() - 1 : -1; }
    void Next() override { this->Index--; }
    bool NotDone() override { return this->Array.IsSet() && this->Index >= 0; }
    bool Done() override { return !this->Array.IsSet() || this->Index < 0; }

    // The walk goes on below the removed place, which the removal leaves untouched: the iterator is on
    // the next element of the walk afterwards.
    void RemoveCurrent() override
    {
        this->Array->Remove(this->Index);
        this->Index--;
    }

    // The next Next() lands on the next element of the walk.
    void RemoveCurrentAndStepBack() override { this->Array->Remove(this->Index); }

    void Previous() override { this->Index++; }
};
