#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/test_support.h"
#include "zel_basics/lwpointers.h"

namespace {

// Counts its own deaths so tests can see exactly when an owner deletes.
class counted_object : public base_object
{
public:
    explicit counted_object(int &Deaths) : Deaths(Deaths) {}
    ~counted_object() override { Deaths++; }
    int Value = 7;

private:
    int &Deaths;
};

class derived_object : public counted_object
{
public:
    using counted_object::counted_object;
};

ownership_pointer<counted_object> MakeOwned(int &Deaths)
{
    return ownership_pointer<counted_object>(new counted_object(Deaths));
}

int TakeOwnership(ownership_pointer<counted_object> Owner)
{
    return Owner->Value;
}

} // namespace

TEST(OwnershipPointer, DeletesWhatItHoldsWhenDestroyed)
{
    int Deaths = 0;
    {
        ownership_pointer<counted_object> Owner(new counted_object(Deaths));
        EXPECT_TRUE(Owner.IsSet());
    }
    EXPECT_EQ(Deaths, 1);
}

TEST(OwnershipPointer, AssignmentMovesTheObjectAndDeletesTheOldOne)
{
    int Deaths = 0;
    ownership_pointer<counted_object> Source(new counted_object(Deaths));
    ownership_pointer<counted_object> Target(new counted_object(Deaths));
    counted_object *Moved = Source.Get();
    Target = Source;
    EXPECT_EQ(Deaths, 1);
    EXPECT_FALSE(Source.IsSet());
    EXPECT_EQ(Target.Get(), Moved);
}

TEST(OwnershipPointer, AssigningToItselfKeepsTheObjectAlive)
{
    int Deaths = 0;
    ownership_pointer<counted_object> Owner(new counted_object(Deaths));
    ownership_pointer<counted_object> &Same = Owner;
    Owner = Same;
    EXPECT_EQ(Deaths, 0);
    ASSERT_TRUE(Owner.IsSet());
    EXPECT_EQ(Owner->Value, 7);
}

TEST(OwnershipPointer, HandingIntoAFunctionByValueHandsTheObjectOver)
{
    int Deaths = 0;
    ownership_pointer<counted_object> Owner(new counted_object(Deaths));
    EXPECT_EQ(TakeOwnership(Owner), 7);
    EXPECT_FALSE(Owner.IsSet());
    EXPECT_EQ(Deaths, 1);
}

TEST(OwnershipPointer, ReturnedOwnersAndDerivedOwnersConvert)
{
    int Deaths = 0;
    {
        ownership_pointer<counted_object> Owner = MakeOwned(Deaths);
        ownership_pointer<base_object> Base(ownership_pointer<derived_object>(new derived_object(Deaths)));
        EXPECT_TRUE(Owner.IsSet());
        EXPECT_TRUE(Base.IsSet());
    }
    EXPECT_EQ(Deaths, 2);
}

TEST(OwnershipPointer, ReleaseHandsTheRawPointerOverWithoutDeleting)
{
    int Deaths = 0;
    ownership_pointer<counted_object> Owner(new counted_object(Deaths));
    counted_object *Raw = Owner.Release();
    EXPECT_FALSE(Owner.IsSet());
    EXPECT_EQ(Deaths, 0);
    delete Raw;
    EXPECT_EQ(Deaths, 1);
}

TEST(OwnershipPointer, FollowingANullOwnerFailsTheAssertion)
{
    ownership_pointer<counted_object> Owner;
    std::string Message = ZEL_ERROR_MESSAGE(Owner->Value++);
    EXPECT_THAT(Message, testing::StartsWith("2 ASSERTION FAILED(NULL): 'Pointer!=NULL' is false\n File: "
                                             "'zel_basics/lwpointers.h'\n Line: "));
    EXPECT_THAT(Message, testing::EndsWith("\n Comment: Attempted to follow NULL ownership pointer."));
}

TEST(ReferencePointer, IsSetWhileTheTargetLives)
{
    int Deaths = 0;
    ownership_pointer<counted_object> Owner(new counted_object(Deaths));
    reference_pointer<counted_object> Reference(Owner);
    EXPECT_TRUE(Reference.IsSet());
    EXPECT_EQ(Reference->Value, 7);
    EXPECT_EQ(Reference.GetStoredObjectID(), Owner->GetObjectID());
}

TEST(ReferencePointer, ANullReferenceIsNotSet)
{
    reference_pointer<counted_object> Reference;
    reference_pointer<counted_object> FromNull(static_cast<counted_object *>(nullptr));
    EXPECT_FALSE(Reference.IsSet());
    EXPECT_FALSE(FromNull.IsSet());
    EXPECT_EQ(FromNull.GetStoredObjectID(), 0);
}

TEST(ReferencePointer, NotSetAfterTheTargetDiesAndBothWordsAreCleared)
{
    int Deaths = 0;
    ownership_pointer<counted_object> Owner(new counted_object(Deaths));
    reference_pointer<counted_object> Reference(Owner);
    Owner.Reset();
    EXPECT_NE(Reference.GetStoredPointer(), nullptr);
    EXPECT_FALSE(Reference.IsSet());
    EXPECT_EQ(Reference.GetStoredPointer(), nullptr);
    EXPECT_EQ(Reference.GetStoredObjectID(), 0);
}

TEST(ReferencePointer, NotSetWhenANewObjectTookTheSameAddress)
{
    int Deaths = 0;
    ownership_pointer<counted_object> Owner(new counted_object(Deaths));
    reference_pointer<counted_object> Reference(Owner);
    counted_object *OldAddress = Owner.Get();
    Owner.Reset();
    Owner.Reset(new counted_object(Deaths));
    ASSERT_EQ(Owner.Get(), OldAddress) << "the pool did not hand the block on; the case is not exercised";
    EXPECT_FALSE(Reference.IsSet());
    EXPECT_FALSE(Reference.IsSet());
    reference_pointer<counted_object> Fresh(Owner);
    EXPECT_TRUE(Fresh.IsSet());
}

TEST(ReferencePointer, CopyOfAStaleReferenceIsNull)
{
    int Deaths = 0;
    ownership_pointer<counted_object> Owner(new counted_object(Deaths));
    reference_pointer<counted_object> Reference(Owner);
    Owner.Reset();
    reference_pointer<counted_object> Copy(Reference);
    EXPECT_EQ(Copy.GetStoredPointer(), nullptr);
    EXPECT_EQ(Copy.GetStoredObjectID(), 0);
    reference_pointer<counted_object> Assigned;
    Assigned = Reference;
    EXPECT_EQ(Assigned.GetStoredPointer(), nullptr);
}

TEST(ReferencePointer, FollowingADeadTargetFailsTheAssertion)
{
    int Deaths = 0;
    ownership_pointer<counted_object> Owner(new counted_object(Deaths));
    reference_pointer<counted_object> Reference(Owner);
    Owner.Reset();
    std::string Message = ZEL_ERROR_MESSAGE(Reference->Value++);
    EXPECT_THAT(Message, testing::StartsWith("2 ASSERTION FAILED(NULL): 'IsSet()' is false\n File: "
                                             "'zel_basics/lwpointers.h'\n Line: "));
    EXPECT_THAT(Message, testing::EndsWith("\n Comment: Attempted to follow NULL reference pointer."));
}

TEST(ReferencePointer, EqualityComparesTargetsAfterValidating)
{
    int Deaths = 0;
    ownership_pointer<counted_object> First(new counted_object(Deaths));
    ownership_pointer<counted_object> Second(new counted_object(Deaths));
    reference_pointer<counted_object> A(First);
    reference_pointer<counted_object> B(First);
    reference_pointer<counted_object> C(Second);
    EXPECT_TRUE(A == B);
    EXPECT_TRUE(A != C);
    First.Reset();
    reference_pointer<counted_object> Null;
    EXPECT_TRUE(A == Null);
}

TEST(ReferencePointer, DerivedReferencesConvertAndCastBack)
{
    int Deaths = 0;
    ownership_pointer<derived_object> Owner(new derived_object(Deaths));
    reference_pointer<base_object> Base(Owner);
    EXPECT_TRUE(Base.IsSet());
    EXPECT_TRUE(Base.DynamicCast<derived_object>().IsSet());
    ownership_pointer<base_object> Plain(new base_object);
    reference_pointer<base_object> PlainReference(Plain);
    EXPECT_FALSE(PlainReference.DynamicCast<derived_object>().IsSet());
}
