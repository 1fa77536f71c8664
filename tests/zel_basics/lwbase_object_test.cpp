#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/test_support.h"

#include "zel_basics/lwpointers.h"

namespace {

class named_object : public base_object
{
public:
    explicit named_object(const char *Name) : Name(Name) {}
    zel_string GetName() override { return Name; }

private:
    zel_string Name;
};

// Restores the ID counter that a test moves near its wrap point.
class saved_id_counter
{
public:
    saved_id_counter() : Saved(NextObjectID) {}
    ~saved_id_counter() { NextObjectID = Saved; }

private:
    int32_t Saved;
};

} // namespace

TEST(BaseObject, IDsAreNewForEveryObjectAndCopy)
{
    base_object A;
    base_object B;
    base_object C(A);
    EXPECT_NE(A.GetObjectID(), 0);
    EXPECT_EQ(B.GetObjectID(), A.GetObjectID() + 1);
    EXPECT_EQ(C.GetObjectID(), B.GetObjectID() + 1);
}

TEST(BaseObject, AssignmentKeepsTheTargetsID)
{
    base_object A;
    base_object B;
    int32_t IDOfB = B.GetObjectID();
    B = A;
    EXPECT_EQ(B.GetObjectID(), IDOfB);
}

TEST(BaseObject, IDCounterPassesZeroFromMinusOneToOne)
{
    saved_id_counter Saved;
    NextObjectID = -2;
    base_object A;
    base_object B;
    EXPECT_EQ(A.GetObjectID(), -1);
    EXPECT_EQ(B.GetObjectID(), 1);
}

TEST(BaseObject, IDCounterWrapsFromLargestToSmallest)
{
    saved_id_counter Saved;
    NextObjectID = 2147483646;
    base_object A;
    base_object B;
    EXPECT_EQ(A.GetObjectID(), 2147483647);
    EXPECT_EQ(B.GetObjectID(), -2147483647 - 1);
}

TEST(BaseObject, CountersCountConstructionAndDestruction)
{
    int32_t Created = ObjectsCreated;
    int32_t Destroyed = ObjectsDestroyed;
    {
        base_object A;
        base_object B(A);
        EXPECT_EQ(ObjectsCreated, Created + 2);
        EXPECT_EQ(ObjectsDestroyed, Destroyed);
    }
    EXPECT_EQ(ObjectsDestroyed, Destroyed + 2);
}

TEST(BaseObject, DestructorZeroesTheID)
{
    base_object *Object = new base_object;
    reference_pointer<base_object> Reference(Object);
    delete Object;
    EXPECT_FALSE(Reference.IsSet());
}

TEST(BaseObject, DefaultNameIsNameNotSet)
{
    base_object A;
    EXPECT_EQ(A.GetName(), zel_string("name not set"));
}

TEST(BaseObject, DuplicateWithoutOverrideFailsNamingTheObject)
{
    named_object Object("swatch");
    std::string Message = ZEL_ERROR_MESSAGE(Object.Duplicate());
    std::string Debug = ToStd(GetObjectDebugText(&Object, 0));
    EXPECT_THAT(Message, testing::StartsWith("3 ASSERTION FAILED" + Debug +
                                             ": 'false' is false\n File: 'zel_basics/lwbase_object.cpp'\n Line: "));
    EXPECT_THAT(Message, testing::EndsWith("\n Comment: Attempted to duplicate an object for which no Duplicate() "
                                           "function has been defined. Name='swatch' DebugInfo=" +
                                           Debug));
}

TEST(ObjectPool, ReusesTheBlockOfADeadObjectOfTheSameSize)
{
    named_object *First = new named_object("first");
    void *Address = First;
    delete First;
    named_object *Second = new named_object("second");
    EXPECT_EQ(static_cast<void *>(Second), Address);
    delete Second;
}

TEST(ObjectPool, ArraysOfObjectsComeFromThePoolAndDieWhole)
{
    int32_t Destroyed = ObjectsDestroyed;
    base_object *Objects = new base_object[100];
    reference_pointer<base_object> Last(&Objects[99]);
    EXPECT_TRUE(Last.IsSet());
    delete[] Objects;
    EXPECT_EQ(ObjectsDestroyed, Destroyed + 100);
    EXPECT_FALSE(Last.IsSet());
}

TEST(ObjectPool, LargeObjectsAreKeptToo)
{
    struct large_object : base_object
    {
        char Payload[100000];
    };
    large_object *Object = new large_object;
    reference_pointer<base_object> Reference(Object);
    delete Object;
    EXPECT_FALSE(Reference.IsSet());
}
