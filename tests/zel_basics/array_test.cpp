#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "tests/test_support.h"
#include "zel_basics/array.h"
#include "zel_basics/array_iterator.h"
#include "zel_basics/lwpointers.h"
#include "zel_basics/point2d.h"

using testing::HasSubstr;

namespace {

// Counts its own deaths so the tests can see exactly when an array lets an owned object go.
class array_test_item : public base_object
{
public:
    array_test_item(int Value, int &Deaths) : Value(Value), Deaths(Deaths) {}
    ~array_test_item() override { Deaths++; }
    int Value;

private:
    int &Deaths;
};

typedef ownership_pointer<array_test_item> owned_item;

std::vector<int> Contents(const array<int> &Array)
{
    std::vector<int> Result;
    for (int I = 0; I < Array.GetNumberOfElements(); I++)
        Result.push_back(Array[I]);
    return Result;
}

void FillWith(array<int> &Array, std::initializer_list<int> Values)
{
    for (int Value : Values)
        Array.Add(Value);
}

std::vector<int> OwnedValues(const array<owned_item> &Array)
{
    std::vector<int> Result;
    for (int I = 0; I < Array.GetNumberOfElements(); I++)
        Result.push_back(Array[I].IsSet() ? Array[I]->Value : -1);
    return Result;
}

} // namespace

TEST(Array, ReserveZeroAllocatesNothingUntilTheFirstAddWhichMakesOnePlace)
{
    array<int> Array(0);
    EXPECT_EQ(Array.GetReservedSize(), 0);
    EXPECT_EQ(Array.GetData(), nullptr);
    EXPECT_EQ(Array.Add(42), 0);
    EXPECT_EQ(Array.GetReservedSize(), 1);
    EXPECT_EQ(Array[0], 42);
}

TEST(Array, GrowthFromFourPlacesRunsFiveSixSevenEightTenTwelveFifteen)
{
    array<int> Array(4);
    std::vector<int> Sizes = {Array.GetReservedSize()};
    for (int I = 0; I < 15; I++) {
        Array.Add(I);
        if (Array.GetReservedSize() != Sizes.back())
            Sizes.push_back(Array.GetReservedSize());
    }
    EXPECT_EQ(Sizes, (std::vector<int>{4, 5, 6, 7, 8, 10, 12, 15}));
    for (int I = 0; I < 15; I++)
        EXPECT_EQ(Array[I], I);
}

TEST(Array, GrowthFromOnePlaceAddsAtLeastOne)
{
    array<int> Array;
    std::vector<int> Sizes = {Array.GetReservedSize()};
    for (int I = 0; I < 20; I++) {
        Array.AddEmpty();
        if (Array.GetReservedSize() != Sizes.back())
            Sizes.push_back(Array.GetReservedSize());
    }
    // Each step adds a quarter of the old size, rounded down, but never less than one place.
    EXPECT_EQ(Sizes, (std::vector<int>{1, 2, 3, 4, 5, 6, 7, 8, 10, 12, 15, 18, 22}));
}

TEST(Array, NegativeReserveIsRaisedToOne)
{
    array<int> Array(-5);
    EXPECT_EQ(Array.GetReservedSize(), 1);
    EXPECT_EQ(Array.GetNumberOfElements(), 0);
}

TEST(Array, AddReturnsTheIndexAndAddEmptyLeavesADefaultValue)
{
    array<zel_string> Array(2);
    EXPECT_EQ(Array.Add("one"), 0);
    EXPECT_EQ(Array.AddEmpty(), 1);
    EXPECT_EQ(Array.Add("three"), 2);
    EXPECT_EQ(Array.GetNumberOfElements(), 3);
    EXPECT_EQ(Array[0], zel_string("one"));
    EXPECT_EQ(Array[1], zel_string(""));
    EXPECT_EQ(Array[2], zel_string("three"));
}

TEST(Array, PlacesFreedByRemovalHoldDefaultValuesAgain)
{
    array<zel_string> Array(4);
    Array.Add("a");
    Array.Add("b");
    Array.Add("c");
    Array.Remove(0);
    Array.RemoveLast();
    Array.SetNumberOfElements(0, "unused");
    EXPECT_EQ(Array.GetNumberOfElements(), 0);
    for (int I = 0; I < 3; I++)
        EXPECT_EQ(Array[Array.AddEmpty()], zel_string("")) << "place " << I;
}

TEST(Array, AddOfItsOwnElementSurvivesGrowth)
{
    array<zel_string> Array(1);
    Array.Add("a rather long string that lives on the heap");
    Array.Add(Array[0]);
    Array.Insert(0, Array[1]);
    ASSERT_EQ(Array.GetNumberOfElements(), 3);
    for (int I = 0; I < 3; I++)
        EXPECT_EQ(Array[I], zel_string("a rather long string that lives on the heap"));
}

TEST(Array, GetNameGivesCountAndReservedSpace)
{
    array<int> Array(7);
    Array.Add(1);
    Array.Add(2);
    EXPECT_EQ(Array.GetName(), zel_string("array with 2 elements (space reserved=7)"));
}

TEST(Array, CheckedAccessRejectsNegativeAndPastTheEndIndices)
{
    array<int> Array(4);
    FillWith(Array, {1, 2});
    EXPECT_EQ(Array[1], 2);
    EXPECT_THAT(ZEL_ERROR_MESSAGE(Array[2]), HasSubstr("'IsInArrayAssert(Index)' is false"));
    EXPECT_THAT(ZEL_ERROR_MESSAGE(Array[-1]), HasSubstr("'IsInArrayAssert(Index)' is false"));
    const array<int> &Constant = Array;
    EXPECT_THAT(ZEL_ERROR_MESSAGE(Constant[-2147483647 - 1]), HasSubstr("'IsInArrayAssert(Index)' is false"));
    // The report names the array.
    EXPECT_THAT(ZEL_ERROR_MESSAGE(Array[5]),
                HasSubstr("1 ASSERTION FAILED(Name='array with 2 elements (space reserved=4)' Type=array<int>"));
}

TEST(Array, IsInArrayCoversExactlyTheUsedPlaces)
{
    array<int> Array(10);
    FillWith(Array, {5, 6, 7});
    EXPECT_FALSE(Array.IsInArray(-1));
    EXPECT_TRUE(Array.IsInArray(0));
    EXPECT_TRUE(Array.IsInArray(2));
    EXPECT_FALSE(Array.IsInArray(3));
    EXPECT_FALSE(Array.IsInArray(9));
}

TEST(Array, RemoveMovesLaterElementsDown)
{
    array<int> Array;
    FillWith(Array, {10, 11, 12, 13, 14});
    Array.Remove(1);
    EXPECT_EQ(Contents(Array), (std::vector<int>{10, 12, 13, 14}));
    Array.Remove(3);
    EXPECT_EQ(Contents(Array), (std::vector<int>{10, 12, 13}));
    Array.Remove(0);
    EXPECT_EQ(Contents(Array), (std::vector<int>{12, 13}));
}

TEST(Array, RemoveOutsideTheArrayFails)
{
    array<int> Array;
    FillWith(Array, {1, 2});
    EXPECT_THAT(ZEL_ERROR_MESSAGE(Array.Remove(2)), HasSubstr("'IsInArray(Index)' is false"));
    EXPECT_THAT(ZEL_ERROR_MESSAGE(Array.Remove(-1)), HasSubstr("'IsInArray(Index)' is false"));
    EXPECT_EQ(Contents(Array), (std::vector<int>{1, 2}));
}

TEST(Array, InsertOpensAGapAtStartMiddleAndEnd)
{
    array<int> Array(3);
    FillWith(Array, {1, 2, 3});
    Array.Insert(0, 0);
    EXPECT_EQ(Array.GetReservedSize(), 4);
    Array.Insert(2, 9);
    Array.Insert(5, 7);
    EXPECT_EQ(Contents(Array), (std::vector<int>{0, 1, 9, 2, 3, 7}));
}

TEST(Array, InsertBeyondTheEndFails)
{
    array<int> Array;
    FillWith(Array, {1, 2});
    const char *Failure = "'IsInArray(Index) || Index==NumberOfElements' is false";
    EXPECT_THAT(ZEL_ERROR_MESSAGE(Array.Insert(3, 0)), HasSubstr(Failure));
    EXPECT_THAT(ZEL_ERROR_MESSAGE(Array.Insert(-1, 0)), HasSubstr(Failure));
    EXPECT_EQ(Contents(Array), (std::vector<int>{1, 2}));
}

TEST(Array, MoveKeepsTheOrderOfTheOthers)
{
    array<int> Array;
    FillWith(Array, {0, 1, 2, 3, 4});
    Array.Move(1, 3);
    EXPECT_EQ(Contents(Array), (std::vector<int>{0, 2, 3, 1, 4}));
    Array.Move(4, 0);
    EXPECT_EQ(Contents(Array), (std::vector<int>{4, 0, 2, 3, 1}));
    Array.Move(2, 2);
    EXPECT_EQ(Contents(Array), (std::vector<int>{4, 0, 2, 3, 1}));
}

TEST(Array, MoveOutsideTheArrayFails)
{
    array<int> Array;
    FillWith(Array, {0, 1, 2});
    EXPECT_THAT(ZEL_ERROR_MESSAGE(Array.Move(3, 0)), HasSubstr("'IsInArray(FromIndex)' is false"));
    EXPECT_THAT(ZEL_ERROR_MESSAGE(Array.Move(0, 3)), HasSubstr("'IsInArray(ToIndex)' is false"));
    EXPECT_THAT(ZEL_ERROR_MESSAGE(Array.Move(-1, 0)), HasSubstr("'IsInArray(FromIndex)' is false"));
}

TEST(Array, MoveRangeMatchesASimpleModelForEveryPlacement)
{
    const int Count = 7;
    for (int Amount = 0; Amount <= Count; Amount++) {
        for (int From = 0; From + Amount <= Count; From++) {
            for (int To = 0; To + Amount <= Count; To++) {
                array<int> Array;
                std::vector<int> Model;
                for (int I = 0; I < Count; I++) {
                    Array.Add(I);
                    Model.push_back(I);
                }
                Array.MoveRange(From, To, Amount);
                std::vector<int> Block(Model.begin() + From, Model.begin() + From + Amount);
                Model.erase(Model.begin() + From, Model.begin() + From + Amount);
                Model.insert(Model.begin() + To, Block.begin(), Block.end());
                ASSERT_EQ(Contents(Array), Model) << "From=" << From << " To=" << To << " Amount=" << Amount;
            }
        }
    }
}

TEST(Array, MoveRangeChecksItsBounds)
{
    array<int> Array;
    FillWith(Array, {0, 1, 2, 3});
    EXPECT_THAT(ZEL_ERROR_MESSAGE(Array.MoveRange(-1, 0, 1)), HasSubstr("'FromIndex>=0' is false"));
    EXPECT_THAT(ZEL_ERROR_MESSAGE(Array.MoveRange(0, -1, 1)), HasSubstr("'ToIndex>=0' is false"));
    EXPECT_THAT(ZEL_ERROR_MESSAGE(Array.MoveRange(2, 0, 3)),
                HasSubstr("'FromIndex+Amount<=NumberOfElements' is false"));
    EXPECT_THAT(ZEL_ERROR_MESSAGE(Array.MoveRange(0, 2, 3)), HasSubstr("'ToIndex+Amount<=NumberOfElements' is false"));
    EXPECT_EQ(Contents(Array), (std::vector<int>{0, 1, 2, 3}));
}

TEST(Array, SetNumberOfElementsFillsOnlyTheNewPlaces)
{
    array<int> Array(2);
    FillWith(Array, {5, 6});
    Array.SetNumberOfElements(5, 9);
    EXPECT_EQ(Array.GetReservedSize(), 5);
    EXPECT_EQ(Contents(Array), (std::vector<int>{5, 6, 9, 9, 9}));
    Array.SetNumberOfElements(1, 3);
    EXPECT_EQ(Contents(Array), (std::vector<int>{5}));
    EXPECT_EQ(Array.GetReservedSize(), 5);
    Array.SetNumberOfElements(3, 4);
    EXPECT_EQ(Contents(Array), (std::vector<int>{5, 4, 4}));
}

TEST(Array, LastElementAccessNeedsAnElement)
{
    array<int> Array;
    EXPECT_THAT(ZEL_ERROR_MESSAGE(Array.GetLast()), HasSubstr("'NumberOfElements>0' is false"));
    EXPECT_THAT(ZEL_ERROR_MESSAGE(Array.RemoveLast()), HasSubstr("'NumberOfElements>0' is false"));
    FillWith(Array, {1, 2, 3});
    EXPECT_EQ(Array.GetLast(), 3);
    Array.GetLast() = 8;
    Array.RemoveLast();
    EXPECT_EQ(Contents(Array), (std::vector<int>{1, 2}));
    Array.Add(0);
    EXPECT_EQ(Array.GetLast(), 0);
}

TEST(Array, ClearEmptiesButKeepsTheBlock)
{
    array<int> Array(10);
    FillWith(Array, {1, 2, 3});
    int *Block = Array.GetData();
    Array.Clear();
    EXPECT_EQ(Array.GetNumberOfElements(), 0);
    EXPECT_EQ(Array.GetReservedSize(), 10);
    EXPECT_EQ(Array.GetData(), Block);
    EXPECT_EQ(Array[Array.AddEmpty()], 0);
}

TEST(Array, ReserveReallocatesToExactlyTheSizeAndKeepsTheElements)
{
    array<int> Array(2);
    FillWith(Array, {1, 2});
    Array.Reserve(9);
    EXPECT_EQ(Array.GetReservedSize(), 9);
    EXPECT_EQ(Contents(Array), (std::vector<int>{1, 2}));
    int *Block = Array.GetData();
    Array.Reserve(9);
    EXPECT_EQ(Array.GetData(), Block);
    Array.Reserve(2);
    EXPECT_EQ(Array.GetReservedSize(), 2);
    EXPECT_EQ(Contents(Array), (std::vector<int>{1, 2}));
}

TEST(Array, ReserveZeroFreesTheBlock)
{
    array<int> Array(5);
    Array.Reserve(0);
    EXPECT_EQ(Array.GetReservedSize(), 0);
    EXPECT_EQ(Array.GetData(), nullptr);
    Array.Add(3);
    EXPECT_EQ(Array.GetReservedSize(), 1);
}

TEST(Array, ReserveRejectsNegativeSizesAndSizesBelowTheCount)
{
    array<int> Array(4);
    FillWith(Array, {1, 2, 3});
    EXPECT_THAT(ZEL_ERROR_MESSAGE(Array.Reserve(-1)), HasSubstr("'NewArraySize>=0' is false"));
    EXPECT_THAT(ZEL_ERROR_MESSAGE(Array.Reserve(2)), HasSubstr("'NewArraySize>=NumberOfElements' is false"));
    EXPECT_EQ(Array.GetReservedSize(), 4);
    EXPECT_EQ(Contents(Array), (std::vector<int>{1, 2, 3}));
}

TEST(Array, CopiesAreIndependentObjectsWithEqualElements)
{
    array<zel_string> Original(3);
    Original.Add("alpha");
    Original.Add("beta");
    array<zel_string> Copy(Original);
    EXPECT_NE(Copy.GetObjectID(), Original.GetObjectID());
    Copy[0] = "changed";
    Copy.Add("gamma");
    EXPECT_EQ(Original.GetNumberOfElements(), 2);
    EXPECT_EQ(Original[0], zel_string("alpha"));

    array<zel_string> Assigned(0);
    Assigned = Copy;
    ASSERT_EQ(Assigned.GetNumberOfElements(), 3);
    EXPECT_EQ(Assigned[0], zel_string("changed"));
    EXPECT_EQ(Assigned[1], zel_string("beta"));
    EXPECT_EQ(Assigned[2], zel_string("gamma"));

    array<zel_string> Longer;
    for (int I = 0; I < 5; I++)
        Longer.Add("x");
    Longer = Original;
    EXPECT_EQ(Longer.GetNumberOfElements(), 2);
    EXPECT_EQ(Longer[1], zel_string("beta"));
    const array<zel_string> &Same = Longer;
    Longer = Same;
    EXPECT_EQ(Longer.GetNumberOfElements(), 2);
}

TEST(Array, HoldsPointsByValue)
{
    array<point2d> Points;
    Points.Add(point2d(1.5, -2));
    Points.AddEmpty();
    array<zel_point2d<double>> Templated;
    Templated.Add(zel_point2d<double>(3, 4));
    EXPECT_EQ(Points[0].X, 1.5);
    EXPECT_EQ(Points[0].Y, -2);
    EXPECT_EQ(Points[1].X, 0);
    EXPECT_EQ(Templated[0].Y, 4);
}

TEST(ArrayOfOwners, AddTakesTheObjectAndGrowthMovesWithoutDeleting)
{
    int Deaths = 0;
    {
        array<owned_item> Array(0);
        for (int I = 0; I < 20; I++) {
            owned_item Item(new array_test_item(I, Deaths));
            Array.Add(Item);
            EXPECT_FALSE(Item.IsSet());
        }
        EXPECT_EQ(Deaths, 0);
        std::vector<int> Expected;
        for (int I = 0; I < 20; I++)
            Expected.push_back(I);
        EXPECT_EQ(OwnedValues(Array), Expected);
    }
    EXPECT_EQ(Deaths, 20);
}

TEST(ArrayOfOwners, RemoveDeletesExactlyTheRemovedObject)
{
    int Deaths = 0;
    array<owned_item> Array;
    for (int I = 0; I < 5; I++)
        Array.Add(owned_item(new array_test_item(I, Deaths)));
    reference_pointer<array_test_item> Second(Array[1]);
    reference_pointer<array_test_item> Last(Array[4]);
    Array.Remove(1);
    EXPECT_EQ(Deaths, 1);
    EXPECT_FALSE(Second.IsSet());
    EXPECT_EQ(OwnedValues(Array), (std::vector<int>{0, 2, 3, 4}));
    Array.RemoveLast();
    EXPECT_EQ(Deaths, 2);
    EXPECT_FALSE(Last.IsSet());
    EXPECT_EQ(OwnedValues(Array), (std::vector<int>{0, 2, 3}));
}

TEST(ArrayOfOwners, ReorderingKeepsEveryObjectAlive)
{
    int Deaths = 0;
    array<owned_item> Array(2);
    for (int I = 0; I < 6; I++)
        Array.Add(owned_item(new array_test_item(I, Deaths)));
    Array.Insert(2, owned_item(new array_test_item(9, Deaths)));
    Array.Move(0, 6);
    Array.MoveRange(1, 4, 3);
    Array.Reserve(30);
    EXPECT_EQ(Deaths, 0);
    // 0 1 9 2 3 4 5 -> 1 9 2 3 4 5 0 -> 1 4 5 0 9 2 3
    EXPECT_EQ(OwnedValues(Array), (std::vector<int>{1, 4, 5, 0, 9, 2, 3}));
}

TEST(ArrayOfOwners, ClearAndShrinkingDeleteTheObjectsThatLeave)
{
    int Deaths = 0;
    array<owned_item> Array;
    for (int I = 0; I < 6; I++)
        Array.Add(owned_item(new array_test_item(I, Deaths)));
    Array.SetNumberOfElements(4, owned_item());
    EXPECT_EQ(Deaths, 2);
    Array.Clear();
    EXPECT_EQ(Deaths, 6);
    Array.SetNumberOfElements(2, owned_item(new array_test_item(7, Deaths)));
    // The one fill object moves into the first new place; the second gets the emptied holder.
    EXPECT_EQ(OwnedValues(Array), (std::vector<int>{7, -1}));
}

TEST(ArrayIterator, WalksForwardFromIndexZero)
{
    array<int> Array;
    FillWith(Array, {3, 4, 5});
    array_iterator<int> Iterator(Array);
    std::vector<int> Seen;
    for (; Iterator.NotDone(); Iterator.Next())
        Seen.push_back(Iterator.Current());
    EXPECT_TRUE(Iterator.Done());
    EXPECT_EQ(Seen, (std::vector<int>{3, 4, 5}));
    Iterator.First();
    EXPECT_EQ(Iterator.Current(), 3);
    EXPECT_EQ(Iterator.GetNumberOfElements(), 3u);
}

TEST(ArrayIterator, WorksThroughTheAbstractIterator)
{
    array<int> Array;
    FillWith(Array, {1, 2, 3, 4});
    reverse_array_iterator<int> Reverse(Array);
    zel_iterator<int> &Iterator = Reverse;
    int Sum = 0;
    for (Iterator.First(); !Iterator.Done(); Iterator.Next())
        Sum = Sum * 10 + Iterator.Current();
    EXPECT_EQ(Sum, 4321);
}

TEST(ArrayIterator, CurrentOutsideTheArrayFails)
{
    array<int> Array;
    FillWith(Array, {1});
    array_iterator<int> Iterator(Array);
    Iterator.Next();
    EXPECT_TRUE(Iterator.Done());
    EXPECT_FALSE(Iterator.NotDone());
    EXPECT_THAT(ZEL_ERROR_MESSAGE(Iterator.Current()), HasSubstr("'IsInArrayAssert(Index)' is false"));
}

TEST(ArrayIterator, PreviousStepsBackAndBeforeTheStartIsNeitherOnAnElementNorPastTheEnd)
{
    array<int> Array;
    FillWith(Array, {7, 8});
    array_iterator<int> Iterator(Array);
    Iterator.Next();
    Iterator.Previous();
    EXPECT_EQ(Iterator.Current(), 7);
    Iterator.Previous();
    EXPECT_FALSE(Iterator.NotDone());
    EXPECT_FALSE(Iterator.Done());
}

TEST(ArrayIterator, RemoveCurrentLeavesTheIteratorOnTheFollowingElement)
{
    array<int> Array;
    FillWith(Array, {1, 2, 3});
    array_iterator<int> Iterator(Array);
    Iterator.Next();
    Iterator.RemoveCurrent();
    EXPECT_EQ(Iterator.Current(), 3);
    EXPECT_EQ(Contents(Array), (std::vector<int>{1, 3}));
}

TEST(ArrayIterator, RemoveCurrentAndStepBackLetsALoopRemoveAsItGoes)
{
    array<int> Array;
    FillWith(Array, {1, 2, 2, 3, 2, 2});
    array_iterator<int> Iterator(Array);
    std::vector<int> Seen;
    for (Iterator.First(); Iterator.NotDone(); Iterator.Next()) {
        Seen.push_back(Iterator.Current());
        if (Iterator.Current() == 2)
            Iterator.RemoveCurrentAndStepBack();
    }
    EXPECT_EQ(Seen, (std::vector<int>{1, 2, 2, 3, 2, 2}));
    EXPECT_EQ(Contents(Array), (std::vector<int>{1, 3}));
}

TEST(ReverseArrayIterator, WalksBackwardFromTheLastElement)
{
    array<int> Array;
    FillWith(Array, {3, 4, 5});
    reverse_array_iterator<int> Iterator(Array);
    std::vector<int> Seen;
    for (; Iterator.NotDone(); Iterator.Next())
        Seen.push_back(Iterator.Current());
    EXPECT_TRUE(Iterator.Done());
    EXPECT_EQ(Seen, (std::vector<int>{5, 4, 3}));
    Iterator.First();
    Iterator.Next();
    Iterator.Previous();
    EXPECT_EQ(Iterator.Current(), 5);
}

TEST(ReverseArrayIterator, OverAnEmptyArrayIsDoneAtOnce)
{
    array<int> Array(0);
    reverse_array_iterator<int> Iterator(Array);
    EXPECT_TRUE(Iterator.Done());
    EXPECT_FALSE(Iterator.NotDone());
    Iterator.First();
    EXPECT_TRUE(Iterator.Done());
    EXPECT_EQ(Iterator.GetNumberOfElements(), 0u);
}

TEST(ReverseArrayIterator, RemovalKeepsTheBackwardWalkGoing)
{
    array<int> Array;
    FillWith(Array, {1, 2, 3, 4, 5, 6});
    reverse_array_iterator<int> Iterator(Array);
    std::vector<int> Seen;
    while (Iterator.NotDone()) {
        int Value = Iterator.Current();
        Seen.push_back(Value);
        if (Value % 2 == 0)
            Iterator.RemoveCurrent();
        else
            Iterator.Next();
    }
    EXPECT_EQ(Seen, (std::vector<int>{6, 5, 4, 3, 2, 1}));
    EXPECT_EQ(Contents(Array), (std::vector<int>{1, 3, 5}));

    std::vector<int> SeenAgain;
    for (Iterator.First(); Iterator.NotDone(); Iterator.Next()) {
        SeenAgain.push_back(Iterator.Current());
        if (Iterator.Current() != 3)
            Iterator.RemoveCurrentAndStepBack();
    }
    EXPECT_EQ(SeenAgain, (std::vector<int>{5, 3, 1}));
    EXPECT_EQ(Contents(Array), (std::vector<int>{3}));
}

TEST(ArrayIterator, AnIteratorWhoseArrayDiedCountsNothingAndIsDone)
{
    ownership_pointer<array<int>> Array(new array<int>);
    FillWith(*Array, {1, 2, 3});
    array_iterator<int> Forward(*Array);
    reverse_array_iterator<int> Backward(*Array);
    EXPECT_EQ(Forward.GetNumberOfElements(), 3u);
    EXPECT_EQ(Backward.GetNumberOfElements(), 3u);
    Array.Reset();
    EXPECT_EQ(Forward.GetNumberOfElements(), 0u);
    EXPECT_TRUE(Forward.Done());
    EXPECT_FALSE(Forward.NotDone());
    EXPECT_EQ(Backward.GetNumberOfElements(), 0u);
    EXPECT_TRUE(Backward.Done());
    EXPECT_FALSE(Backward.NotDone());
    Forward.First();
    Backward.First();
    EXPECT_TRUE(Forward.Done());
    EXPECT_TRUE(Backward.Done());
    EXPECT_THAT(ZEL_ERROR_MESSAGE(Forward.Current()), HasSubstr("'IsSet()' is false"));
}
