#pragma once

#include "zel_basics/debug.h"
#include "zel_basics/lwbase_object.h"

// The single owner of an object. Every copy or assignment moves the object: the source becomes null
// and the target deletes what it held first. So an owner handed into a function by value hands the
// object over, and containers that assign their elements move owned objects between blocks.
template <class T> class ownership_pointer
{
public:
    ownership_pointer() : Pointer(nullptr) {}
    explicit ownership_pointer(T *Object) : Pointer(Object) {}
    ownership_pointer(const ownership_pointer &Other) : Pointer(Other.Release()) {}
    template <class U> ownership_pointer(const ownership_pointer<U> &Other) : Pointer(Other.Release()) {}
    ~ownership_pointer()
    {
        // Deleting a type known only by name would skip its destructor and the pool's operator delete;
        // every copy of this function must see the whole type, or the linker may keep the wrong one.
        static_assert(sizeof(T) > 0, "an owner must see the whole type of what it deletes");
        delete Pointer;
    }

    ownership_pointer &operator=(const ownership_pointer &Other)
    {
        if (this != &Other)
            Reset(Other.Release());
        return *this;
    }
    template <class U> ownership_pointer &operator=(const ownership_pointer<U> &Other)
    {
        Reset(Other.Release());
        return *this;
    }

    // Deletes what was held and takes Object; holding the same object again changes nothing.
    void Reset(T *Object = nullptr)
    {
        if (Object == Pointer)
            return;
        static_assert(sizeof(T) > 0, "an owner must see the whole type of what it deletes");
        T *Old = Pointer;
        Pointer = Object;
        delete Old;
    }

    // Gives up ownership without deleting, for hand-overs.
    T *Release() const
    {
        T *Object = Pointer;
        Pointer = nullptr;
        return Object;
    }

    bool IsSet() const { return Pointer != nullptr; }
    T *Get() const { return Pointer; }

    T *operator->() const
    {
        TOVAS_ASSERT(Pointer!=NULL, "Attempted to follow NULL ownership pointer.", nullptr);
        return Pointer;
    }
    T &operator*() const { return *operator->(); }

private:
    // Mutable so that a const source can still hand its object over, as the move-on-copy rule needs.
    mutable T *Pointer;
};

// A link that never owns. It remembers the target's ID and reads as not set once the target has died,
// even if another object has taken the same memory since: the IDs differ. Checking costs one read of
// the target's ID word and no lock.
template <class T> class reference_pointer
{
public:
    reference_pointer() : Pointer(nullptr), ObjectID(0) {}
    reference_pointer(T *Object) : Pointer(Object), ObjectID(Object != nullptr ? Object->GetObjectID() : 0) {}
    template <class U>
    reference_pointer(const ownership_pointer<U> &Owner) : reference_pointer(static_cast<T *>(Owner.Get()))
    {
    }
    reference_pointer(const reference_pointer &Other) : Pointer(Other.Get()), ObjectID(Other.ObjectID) {}
    template <class U>
    reference_pointer(const reference_pointer<U> &Other) : Pointer(Other.Get()), ObjectID(Other.GetStoredObjectID())
    {
    }

    reference_pointer &operator=(const reference_pointer &Other)
    {
        T *Target = Other.Get();
        ObjectID = Other.ObjectID;
        Pointer = Target;
        return *this;
    }

    // Not set once the target has died; clears both words then, so the answer stays false.
    __attribute__((no_sanitize("address", "undefined"))) bool IsSet() const
    {
        if (Pointer == nullptr)
            return false;
        if (base_object::ReadObjectID(Pointer) == ObjectID)
            return true;
        Pointer = nullptr;
        ObjectID = 0;
        return false;
    }

    // The target, or null when it has died.
    T *Get() const { return IsSet() ? Pointer : nullptr; }

    T *operator->() const
    {
        TOVAS_ASSERT(IsSet(), "Attempted to follow NULL reference pointer.", nullptr);
        return Pointer;
    }
    T &operator*() const { return *operator->(); }

    bool operator==(const reference_pointer &Other) const { return Get() == Other.Get(); }
    bool operator!=(const reference_pointer &Other) const { return Get() != Other.Get(); }

    void Clear()
    {
        Pointer = nullptr;
        ObjectID = 0;
    }

    // The two words as they stand, without checking the target: both are 0 once found stale.
    T *GetStoredPointer() const { return Pointer; }
    int32_t GetStoredObjectID() const { return ObjectID; }

    // A reference of a derived type when the target is one, else an unset reference.
    template <class U> reference_pointer<U> DynamicCast() const { return reference_pointer<U>(dynamic_cast<U *>(Get())); }

private:
    mutable T *Pointer;
    mutable int32_t ObjectID;
};
