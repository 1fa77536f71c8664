#include "zel_basics/lwbase_object.h"

#include "zel_basics/debug.h"
#include "zel_basics/lwpointers.h"
#include "zel_basics/object_pool.h"

int32_t NextObjectID = 0;
int32_t ObjectsCreated = 0;
int32_t ObjectsDestroyed = 0;

int32_t base_object::TakeNextObjectID()
{
    // Wraps through the unsigned form, and never hands out 0, which marks a dead object.
    NextObjectID = static_cast<int32_t>(static_cast<uint32_t>(NextObjectID) + 1u);
    if (NextObjectID == 0)
        NextObjectID = 1;
    return NextObjectID;
}

base_object::base_object() : ObjectID(TakeNextObjectID())
{
    ObjectsCreated++;
}

base_object::base_object(const base_object &) : ObjectID(TakeNextObjectID())
{
    ObjectsCreated++;
}

base_object::~base_object()
{
    // Volatile: a store into an object that is about to die is otherwise free for the optimiser to drop,
    // and references rely on seeing it.
    *static_cast<volatile int32_t *>(&ObjectID) = 0;
    ObjectsDestroyed++;
}

zel_string base_object::GetName()
{
    return "name not set";
}

ownership_pointer<base_object> base_object::Duplicate()
{
    zel_string Name;
    try {
        Name = GetName();
    } catch (...) {
        Name = "(error)";
    }
    TOVAS_ASSERT(false,
                 zel_string("Attempted to duplicate an object for which no Duplicate() function has been defined. Name='") +
                     Name + "' DebugInfo=" + GetObjectDebugText(this, 0),
                 this);
    return ownership_pointer<base_object>();
}

void base_object::ReservedObjectHook() {}

void *base_object::operator new(size_t Size)
{
    return ObjectPoolAllocate(Size);
}

void base_object::operator delete(void *Block, size_t Size)
{
    ObjectPoolFree(Block, Size);
}

void *base_object::operator new[](size_t Size)
{
    return ObjectPoolAllocate(Size);
}

void base_object::operator delete[](void *Block, size_t Size)
{
    ObjectPoolFree(Block, Size);
}
