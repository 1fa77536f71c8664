#pragma once

#include <cstddef>
#include <cstdint>

#include "zel_basics/zel_string.h"

template <class T> class ownership_pointer;

// Process-wide counters of managed objects. Plain integers: managed objects are made on one thread.
extern int32_t NextObjectID;
extern int32_t ObjectsCreated;
extern int32_t ObjectsDestroyed;

// Root of every managed class. Each object carries an ID that no living object shares, and the
// destructor zeroes it; a reference_pointer compares that ID to tell a live target from a dead one.
// Managed objects live in the object pool, so the ID word of a dead object stays readable.
class base_object
{
public:
    base_object();
    base_object(const base_object &Other);
    base_object &operator=(const base_object &) { return *this; }
    virtual ~base_object();

    virtual zel_string GetName();
    virtual ownership_pointer<base_object> Duplicate();
    virtual void ReservedObjectHook();

    int32_t GetObjectID() const { return ObjectID; }

    // The ID word read in a way that is safe on a dead object whose block the pool keeps.
    __attribute__((no_sanitize("address", "undefined"))) static int32_t ReadObjectID(const base_object *Object)
    {
        return *static_cast<const volatile int32_t *>(&Object->ObjectID);
    }

    static void *operator new(size_t Size);
    static void operator delete(void *Block, size_t Size);
    static void *operator new[](size_t Size);
    static void operator delete[](void *Block, size_t Size);
    static void *operator new(size_t, void *Place) { return Place; }
    static void operator delete(void *, void *) {}

private:
    static int32_t TakeNextObjectID();

    int32_t ObjectID;
};
