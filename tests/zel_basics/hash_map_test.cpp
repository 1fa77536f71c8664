#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <random>
#include <set>
#include <utility>
#include <vector>

#include "tests/test_support.h"
#include "zel_basics/lwpointers.h"
#include "zel_basics/zel_hash_map.h"

using testing::HasSubstr;

namespace {

// FNV-1 written out byte by byte, to check the hashes against.
uint32_t ReferenceFNV1(std::vector<uint8_t> Bytes)
{
    uint32_t Hash = 2166136261u;
    for (uint8_t Byte : Bytes)
        Hash = (Hash * 16777619u) ^ Byte;
    return Hash;
}

// Puts a key into the slot given by its hundreds (305 -> slot 3 of a block of 10), so that tests can
// build chains slot by slot.
struct hundreds_hash
{
    static uint32_t GetHash(int32_t Key) { return static_cast<uint32_t>(Key / 100); }
};

typedef zel_hash_map<int32_t, int, hundreds_hash> placed_map;

// The key itself, taken as unsigned, is the hash.
struct identity_hash
{
    static uint32_t GetHash(int32_t Key) { return static_cast<uint32_t>(Key); }
};
typedef zel_hash_map_iterator<int32_t, int, hundreds_hash> placed_iterator;

std::vector<int> ValuesOfKey(placed_map &Map, int32_t Key)
{
    std::vector<int> Values;
    for (placed_iterator Iterator(Map, Key); Iterator.NotDone(); Iterator.Next())
        Values.push_back(Iterator.Current());
    return Values;
}

class hash_map_test_item : public base_object
{
public:
    hash_map_test_item(int Value, int &Deaths) : Value(Value), Deaths(Deaths) {}
    ~hash_map_test_item() override { Deaths++; }
    int Value;

private:
    int &Deaths;
};

// Counts the instances alive, to see which slots hold a value.
struct live_value
{
    static int Alive;
    int Value;
    live_value(int Value = 0) : Value(Value) { Alive++; }
    live_value(const live_value &Other) : Value(Other.Value) { Alive++; }
    live_value &operator=(const live_value &Other) = default;
    ~live_value() { Alive--; }
};
int live_value::Alive = 0;

struct test_rgb8
{
    uint8_t R, G, B;
};

} // namespace

TEST(HashPolicies, IntegerKeysHashTheirFourBytesLowestFirst)
{
    EXPECT_EQ(zel_int_hash::GetHash(0x04030201), ReferenceFNV1({1, 2, 3, 4}));
    EXPECT_EQ(zel_int_hash::GetHash(-1), ReferenceFNV1({0xFF, 0xFF, 0xFF, 0xFF}));
    EXPECT_EQ(zel_int_hash::GetHash(0), ReferenceFNV1({0, 0, 0, 0}));
    EXPECT_EQ(zel_int_hash::GetHash(-2147483647 - 1), ReferenceFNV1({0, 0, 0, 0x80}));
}

TEST(HashPolicies, StringKeysHashTheirBytesWithoutTheTerminator)
{
    // Published FNV-1 values: the offset basis for no bytes, 0x050c5d7e for "a".
    EXPECT_EQ(zel_string_hash::GetHash(zel_string("")), 0x811C9DC5u);
    EXPECT_EQ(zel_string_hash::GetHash(zel_string("a")), 0x050C5D7Eu);
    EXPECT_EQ(zel_string_hash::GetHash(zel_string("a\0b", 3)), ReferenceFNV1({'a', 0, 'b'}));
    EXPECT_EQ(zel_string_hash::GetHash(zel_string("foobar")), ReferenceFNV1({'f', 'o', 'o', 'b', 'a', 'r'}));
}

TEST(HashPolicies, ContentsBasedHashTakesTheBytesOfTheValue)
{
    test_rgb8 Colour = {0x10, 0x80, 0xFF};
    ASSERT_EQ(sizeof(test_rgb8), 3u);
    EXPECT_EQ(zel_contents_based_hash<test_rgb8>::GetHash(Colour), ReferenceFNV1({0x10, 0x80, 0xFF}));
}

TEST(HashMap, AllocatesNothingUntilFirstUse)
{
    zel_int_hash_map<int> Map(10);
    EXPECT_EQ(Map.GetReservedDataSize(), 0);
    EXPECT_EQ(Map.GetNumberOfElements(), 0);
    EXPECT_FALSE(Map.KeyExists(5));
    EXPECT_EQ(Map.GetReservedDataSize(), 10);
    EXPECT_EQ(Map.Find(5), -1);
}

TEST(HashMap, InitialSizeBelowOneIsRaisedToOne)
{
    zel_int_hash_map<int> Zero(0);
    zel_int_hash_map<int> Negative(-4);
    Zero.Find(1);
    Negative.Find(1);
    EXPECT_EQ(Zero.GetReservedDataSize(), 1);
    EXPECT_EQ(Negative.GetReservedDataSize(), 1);
}

TEST(HashMap, AMapOfSizeOneRehashesOnItsFirstInsertionAndGrowsByHalfPlusOne)
{
    zel_int_hash_map<int> Map(1);
    Map.Find(0);
    EXPECT_EQ(Map.GetReservedDataSize(), 1);
    // (count after the insertion, size) at each growth: a map grows when count + 1 reaches three
    // quarters of its size, to size * 1.5 + 1 rounded down.
    std::vector<std::pair<int, int>> Growths;
    int Size = 1;
    for (int Key = 0; Key < 13; Key++) {
        Map.Insert(Key, Key);
        if (Map.GetReservedDataSize() != Size) {
            Size = Map.GetReservedDataSize();
            Growths.push_back({Map.GetNumberOfElements(), Size});
        }
    }
    EXPECT_EQ(Growths, (std::vector<std::pair<int, int>>{{1, 2}, {2, 4}, {3, 7}, {6, 11}, {9, 17}, {13, 26}}));
    for (int Key = 0; Key < 13; Key++)
        EXPECT_EQ(Map[Key], Key);
}

TEST(HashMap, AnEntryGoesToTheSlotItsHashGivesModuloTheSize)
{
    zel_int_hash_map<int> Map(100);
    int Slot = Map.Insert(0x04030201, 1);
    EXPECT_EQ(Slot, static_cast<int>(ReferenceFNV1({1, 2, 3, 4}) % 100u));
    zel_string_hash_map<int> Strings(37);
    EXPECT_EQ(Strings.Insert("foobar", 1), static_cast<int>(ReferenceFNV1({'f', 'o', 'o', 'b', 'a', 'r'}) % 37u));
}

TEST(HashMap, TheSlotIsTheUnsignedRemainderForAnyHashAndSize)
{
    const uint32_t Hashes[] = {0u, 1u, 2u, 9u, 640u, 641u, 65535u, 65536u, 1000002u, 1000003u, 0x7FFFFFFFu,
                               0x80000000u, 0xDEADBEEFu, 0xFFFFFFFEu, 0xFFFFFFFFu, 2654435761u};
    for (int Size : {2, 3, 7, 10, 641, 65536, 1000003}) {
        zel_hash_map<int32_t, int, identity_hash> Map(Size);
        for (uint32_t Hash : Hashes) {
            int32_t Key = static_cast<int32_t>(Hash);
            ASSERT_EQ(Map.Insert(Key, 0), static_cast<int>(Hash % static_cast<uint32_t>(Size)))
                << "hash " << Hash << " size " << Size;
            Map.RemoveAt(Map.Find(Key));
        }
        EXPECT_EQ(Map.GetReservedDataSize(), Size);
    }
}

TEST(HashMap, ChainsRunThroughTheFreeSlotsAfterTheirTail)
{
    placed_map Map(10);
    EXPECT_EQ(Map.Insert(301, 1), 3);
    EXPECT_EQ(Map.Insert(302, 2), 4);
    EXPECT_EQ(Map.Insert(303, 3), 5);
    // Home slot 4 is taken by the chain of 3, so this key's walk runs on along that chain.
    EXPECT_EQ(Map.Insert(401, 4), 6);
    EXPECT_EQ(Map.Insert(304, 5), 7);
    EXPECT_EQ(Map.GetMaxChainLength(), 3);
    EXPECT_EQ(Map.Find(301), 3);
    EXPECT_EQ(Map.Find(302), 4);
    EXPECT_EQ(Map.Find(303), 5);
    EXPECT_EQ(Map.Find(401), 6);
    EXPECT_EQ(Map.Find(304), 7);
    EXPECT_EQ(Map.Find(305), -1);
    EXPECT_EQ(Map.Find(405), -1);
    EXPECT_EQ(Map.GetNumberOfElements(), 5);
}

TEST(HashMap, TheScanForAFreeSlotWrapsAtTheEndOfTheBlock)
{
    placed_map Map(10);
    EXPECT_EQ(Map.Insert(901, 1), 9);
    EXPECT_EQ(Map.Insert(902, 2), 0);
    EXPECT_EQ(Map.Insert(903, 3), 1);
    EXPECT_EQ(Map.Insert(1, 4), 2);
    EXPECT_EQ(Map.Find(903), 1);
    EXPECT_EQ(Map.Find(1), 2);
}

TEST(HashMap, RemovalInTheMiddleOfAChainLeavesLaterEntriesReachable)
{
    placed_map Map(10);
    Map.Insert(301, 1);
    Map.Insert(302, 2);
    Map.Insert(303, 3);
    EXPECT_EQ(Map.RemoveAt(Map.Find(302)), 2);
    EXPECT_EQ(Map.GetNumberOfElements(), 2);
    EXPECT_EQ(Map.Find(302), -1);
    EXPECT_EQ(Map.Find(303), 5);
    EXPECT_EQ(Map[303], 3);
}

TEST(HashMap, TheNextInsertionWhoseWalkMeetsTheClearedSlotReusesIt)
{
    placed_map Map(10);
    Map.Insert(301, 1);
    Map.Insert(302, 2);
    Map.Insert(303, 3);
    Map.RemoveAt(4);
    EXPECT_EQ(Map.Insert(304, 4), 4);
    EXPECT_EQ(Map.Find(303), 5);
    EXPECT_EQ(Map.Find(304), 4);
    EXPECT_EQ(Map.GetNumberOfElements(), 3);
}

TEST(HashMap, AClearedSlotThatIsAKeysHomeIsFilledAndStillLinksItsChain)
{
    placed_map Map(10);
    Map.Insert(301, 1);
    Map.Insert(302, 2);
    Map.Insert(303, 3);
    Map.RemoveAt(4);
    EXPECT_EQ(Map.Insert(401, 4), 4);
    EXPECT_EQ(Map.Find(303), 5);
    EXPECT_EQ(Map.Find(401), 4);
    Map.RemoveAt(3);
    EXPECT_EQ(Map.Find(303), 5);
}

TEST(HashMap, WhenEveryFreeSlotStillLinksAChainTheBlockIsRebuiltAtTheSameSize)
{
    placed_map Map(10);
    // Keys 1..7 all start at slot 0 and fill slots 0..6 as one chain.
    for (int Key = 1; Key <= 7; Key++)
        ASSERT_EQ(Map.Insert(Key, Key), Key - 1);
    for (int Key = 1; Key <= 6; Key++)
        Map.RemoveAt(Map.Find(Key));
    EXPECT_EQ(Map.Insert(701, 701), 7);
    EXPECT_EQ(Map.Insert(702, 702), 8);
    EXPECT_EQ(Map.Insert(703, 703), 9);
    Map.RemoveAt(7);
    Map.RemoveAt(8);
    // Slots 6 and 9 hold the tails of two chains; every other slot is free but still a link.
    EXPECT_EQ(Map.Find(7), 6);
    EXPECT_EQ(Map.Find(703), 9);
    EXPECT_EQ(Map.Insert(601, 601), 6);
    EXPECT_EQ(Map.GetReservedDataSize(), 10);
    EXPECT_EQ(Map.GetNumberOfElements(), 3);
    // The rebuild placed the survivors afresh, in slot order, at their home slots.
    EXPECT_EQ(Map.Find(7), 0);
    EXPECT_EQ(Map.Find(703), 7);
    EXPECT_EQ(Map.Find(601), 6);
}

TEST(HashMap, InsertOfAnExistingKeyKeepsBothAndSubscriptGivesTheFirst)
{
    zel_int_hash_map<zel_string> Map(10);
    Map.Insert(5, "first");
    Map.Insert(5, "second");
    EXPECT_EQ(Map.GetNumberOfElements(), 2);
    EXPECT_EQ(Map[5], zel_string("first"));
    std::vector<std::string> Found;
    for (zel_int_hash_map_iterator<zel_string> Iterator(Map, 5); Iterator.NotDone(); Iterator.Next()) {
        EXPECT_EQ(Iterator.GetKey(), 5);
        Found.push_back(ToStd(Iterator.GetValue()));
    }
    EXPECT_EQ(Found, (std::vector<std::string>{"first", "second"}));
    EXPECT_EQ(Map.GetNumberOfElements(), 2);
}

TEST(HashMap, EntriesOfOneKeyComeInChainOrderAndTheFirstInTheChainIsFound)
{
    placed_map Map(10);
    Map.Insert(301, 1);
    Map.Insert(302, 2);
    Map.Insert(301, 3);
    Map.RemoveAt(Map.Find(302));
    // The walk meets the cleared slot 4 first, so the newest entry sits between the older two.
    EXPECT_EQ(Map.Insert(301, 4), 4);
    EXPECT_EQ(ValuesOfKey(Map, 301), (std::vector<int>{1, 4, 3}));
    EXPECT_EQ(Map[301], 1);
    Map.RemoveAt(3);
    EXPECT_EQ(Map[301], 4);
    EXPECT_EQ(ValuesOfKey(Map, 301), (std::vector<int>{4, 3}));
}

TEST(HashMap, SubscriptInsertsADefaultValueForAnAbsentKey)
{
    zel_string_hash_map<int> Map(4);
    EXPECT_EQ(Map["width"], 0);
    EXPECT_EQ(Map.GetNumberOfElements(), 1);
    Map["width"] = 3;
    Map["height"] += 2;
    EXPECT_EQ(Map["width"], 3);
    EXPECT_EQ(Map["height"], 2);
    EXPECT_EQ(Map.GetNumberOfElements(), 2);
}

TEST(HashMap, StringKeysCompareAllTheirBytes)
{
    zel_string_hash_map<int> Map(8);
    Map.Insert("abc", 1);
    Map.Insert("ABC", 2);
    Map.Insert(zel_string("ab\0c", 4), 3);
    Map.Insert("", 4);
    EXPECT_EQ(Map["abc"], 1);
    EXPECT_EQ(Map["ABC"], 2);
    EXPECT_EQ(Map[zel_string("ab\0c", 4)], 3);
    EXPECT_EQ(Map[""], 4);
    EXPECT_FALSE(Map.KeyExists("ab"));
    EXPECT_FALSE(Map.KeyExists(zel_string("ab\0", 3)));
}

TEST(HashMap, RemoveAtReturnsTheValueAndClearsTheSlot)
{
    zel_int_hash_map<zel_string> Map(10);
    int Slot = Map.Insert(12, "twelve");
    EXPECT_EQ(Map.GetKeyAt(Slot), 12);
    EXPECT_EQ(Map.GetValueAt(Slot), zel_string("twelve"));
    EXPECT_EQ(Map.RemoveAt(Slot), zel_string("twelve"));
    EXPECT_EQ(Map.GetNumberOfElements(), 0);
    EXPECT_FALSE(Map.KeyExists(12));
    EXPECT_THAT(ZEL_ERROR_MESSAGE(Map.GetValueAt(Slot)), HasSubstr("'Map[HashValue].IsSet' is false"));
}

TEST(HashMap, OnlyEntriesHoldKeysAndValues)
{
    {
        zel_int_hash_map<live_value> Map(100);
        Map.Insert(1, live_value(1));
        Map.Insert(2, live_value(2));
        Map.Insert(3, live_value(3));
        EXPECT_EQ(live_value::Alive, 3);
        EXPECT_EQ(Map.RemoveAt(Map.Find(2)).Value, 2);
        EXPECT_EQ(live_value::Alive, 2);
        Map.Reserve(7);
        EXPECT_EQ(live_value::Alive, 2);
        EXPECT_EQ(Map[3].Value, 3);
    }
    EXPECT_EQ(live_value::Alive, 0);
}

TEST(HashMap, RemoveAtChecksTheSlot)
{
    const char *OutOfRange = "'HashValue>=0 && HashValue<ReservedDataSize' is false";
    zel_int_hash_map<int> Map(10);
    EXPECT_THAT(ZEL_ERROR_MESSAGE(Map.RemoveAt(0)), HasSubstr(OutOfRange));
    int Slot = Map.Insert(1, 1);
    EXPECT_THAT(ZEL_ERROR_MESSAGE(Map.RemoveAt(-1)), HasSubstr(OutOfRange));
    EXPECT_THAT(ZEL_ERROR_MESSAGE(Map.RemoveAt(10)), HasSubstr(OutOfRange));
    EXPECT_THAT(ZEL_ERROR_MESSAGE(Map.RemoveAt((Slot + 1) % 10)), HasSubstr("'Map[HashValue].IsSet' is false"));
    Map.RemoveAt(Slot);
    EXPECT_THAT(ZEL_ERROR_MESSAGE(Map.RemoveAt(Slot)), HasSubstr("'Map[HashValue].IsSet' is false"));
}

TEST(HashMap, TheFirstReserveAllocatesTheInitialBlockWhateverItsArgument)
{
    zel_int_hash_map<int> Map(5);
    Map.Reserve(100);
    EXPECT_EQ(Map.GetReservedDataSize(), 5);
    Map.Reserve(100);
    EXPECT_EQ(Map.GetReservedDataSize(), 100);
}

TEST(HashMap, ReserveRehashesToExactlyTheGivenSize)
{
    zel_string_hash_map<int> Map(5);
    Map.Insert("one", 1);
    Map.Insert("two", 2);
    Map.Insert("three", 3);
    Map.Reserve(40);
    EXPECT_EQ(Map.GetReservedDataSize(), 40);
    Map.Reserve(3);
    EXPECT_EQ(Map.GetReservedDataSize(), 3);
    EXPECT_EQ(Map.GetNumberOfElements(), 3);
    EXPECT_EQ(Map["one"], 1);
    EXPECT_EQ(Map["two"], 2);
    EXPECT_EQ(Map["three"], 3);
}

TEST(HashMap, ReserveRejectsEmptyBlocksAndBlocksSmallerThanTheCount)
{
    zel_int_hash_map<int> Map(10);
    EXPECT_THAT(ZEL_ERROR_MESSAGE(Map.Reserve(0)), HasSubstr("'NewReservedDataSize>0' is false"));
    Map.Insert(1, 1);
    Map.Insert(2, 2);
    Map.Insert(3, 3);
    EXPECT_THAT(ZEL_ERROR_MESSAGE(Map.Reserve(2)), HasSubstr("'NewReservedDataSize>=NumberOfElements' is false"));
    EXPECT_THAT(ZEL_ERROR_MESSAGE(Map.Reserve(-1)), HasSubstr("'NewReservedDataSize>0' is false"));
    EXPECT_EQ(Map.GetReservedDataSize(), 10);
    EXPECT_EQ(Map[2], 2);
}

TEST(HashMap, OneGrowthStepCannotMakeRoomInAMapReservedDenserThanItsLoadLimit)
{
    zel_int_hash_map<int> Map(10);
    Map.Insert(1, 1);
    Map.Insert(2, 2);
    Map.Reserve(2);
    // 2 slots grow to 4, and 3 entries still reach three quarters of 4.
    EXPECT_THAT(ZEL_ERROR_MESSAGE(Map.Insert(3, 3)),
                HasSubstr("'NumberOfElements+1 < .75 * ReservedDataSize' is false"));
    EXPECT_EQ(Map.GetReservedDataSize(), 4);
    EXPECT_EQ(Map.GetNumberOfElements(), 2);
    EXPECT_EQ(Map[1], 1);
    EXPECT_EQ(Map[2], 2);
}

TEST(HashMapIterator, VisitsEveryEntryOnceInSlotOrder)
{
    zel_int_hash_map<int> Map(3);
    std::set<int> Inserted;
    for (int Key = -50; Key < 50; Key += 3) {
        Map.Insert(Key, Key * 2);
        Inserted.insert(Key);
    }
    std::set<int> Seen;
    int LastSlot = -1;
    zel_int_hash_map_iterator<int> Iterator(Map);
    EXPECT_EQ(Iterator.GetNumberOfElements(), Inserted.size());
    for (Iterator.First(); Iterator.NotDone(); Iterator.Next()) {
        EXPECT_GT(Iterator.GetCurrentHashValue(), LastSlot);
        LastSlot = Iterator.GetCurrentHashValue();
        EXPECT_EQ(Map.Find(Iterator.GetKey()), LastSlot);
        EXPECT_EQ(Iterator.Current(), Iterator.GetKey() * 2);
        EXPECT_TRUE(Seen.insert(Iterator.GetKey()).second);
    }
    EXPECT_TRUE(Iterator.Done());
    EXPECT_EQ(Iterator.GetCurrentHashValue(), Map.GetReservedDataSize());
    EXPECT_EQ(Seen, Inserted);
}

TEST(HashMapIterator, OverAnUnusedMapOrAnAbsentKeyIsDoneAtOnce)
{
    zel_int_hash_map<int> Map(10);
    zel_int_hash_map_iterator<int> All(Map);
    zel_int_hash_map_iterator<int> OfKey(Map, 4);
    EXPECT_TRUE(All.Done());
    EXPECT_TRUE(OfKey.Done());
    EXPECT_EQ(All.GetNumberOfElements(), 0u);
    Map.Insert(3, 3);
    OfKey.First();
    EXPECT_TRUE(OfKey.Done());
    All.First();
    EXPECT_TRUE(All.NotDone());
}

TEST(HashMapIterator, RemovingAsItGoesKeepsTheWalkWhole)
{
    zel_int_hash_map<int> Map(4);
    for (int Key = 0; Key < 40; Key++)
        Map.Insert(Key, Key);
    zel_int_hash_map_iterator<int> Iterator(Map);
    int Visited = 0;
    for (; Iterator.NotDone(); Iterator.Next()) {
        Visited++;
        if (Iterator.GetKey() % 2 == 0)
            Iterator.RemoveCurrent();
    }
    EXPECT_EQ(Visited, 40);
    EXPECT_EQ(Map.GetNumberOfElements(), 20);
    for (int Key = 0; Key < 40; Key++)
        EXPECT_EQ(Map.KeyExists(Key), Key % 2 == 1) << Key;
}

TEST(HashMapIterator, RemovingThroughAKeyFilterGoesOnAlongTheChain)
{
    placed_map Map(10);
    Map.Insert(301, 1);
    Map.Insert(302, 2);
    Map.Insert(301, 3);
    Map.Insert(301, 4);
    std::vector<int> Seen;
    for (placed_iterator Iterator(Map, 301); Iterator.NotDone(); Iterator.Next()) {
        Seen.push_back(Iterator.Current());
        if (Iterator.Current() == 3)
            Iterator.RemoveCurrent();
    }
    EXPECT_EQ(Seen, (std::vector<int>{1, 3, 4}));
    EXPECT_EQ(ValuesOfKey(Map, 301), (std::vector<int>{1, 4}));
    EXPECT_EQ(Map[302], 2);
}

TEST(HashMapIterator, AfterRemoveCurrentItIsOnNoElementUntilNext)
{
    zel_int_hash_map<int> Map(10);
    Map.Insert(1, 10);
    Map.Insert(2, 20);
    zel_int_hash_map_iterator<int> Iterator(Map);
    int First = Iterator.GetKey();
    Iterator.RemoveCurrent();
    EXPECT_FALSE(Iterator.NotDone());
    EXPECT_FALSE(Iterator.Done());
    EXPECT_THAT(ZEL_ERROR_MESSAGE(Iterator.Current()), HasSubstr("'NotDone()' is false"));
    EXPECT_THAT(ZEL_ERROR_MESSAGE(Iterator.RemoveCurrent()), HasSubstr("'Map[HashValue].IsSet' is false"));
    Iterator.Next();
    ASSERT_TRUE(Iterator.NotDone());
    EXPECT_EQ(Iterator.GetKey(), 3 - First);
    EXPECT_EQ(Iterator.Current(), (3 - First) * 10);
}

TEST(HashMapIterator, StepsBeyondTheEndFail)
{
    zel_int_hash_map<int> Map(10);
    Map.Insert(1, 1);
    zel_int_hash_map_iterator<int> Iterator(Map, 1);
    Iterator.Next();
    EXPECT_TRUE(Iterator.Done());
    EXPECT_THAT(ZEL_ERROR_MESSAGE(Iterator.Current()), HasSubstr("'NotDone()' is false"));
    EXPECT_THAT(ZEL_ERROR_MESSAGE(Iterator.GetKey()), HasSubstr("'NotDone()' is false"));
    EXPECT_THAT(ZEL_ERROR_MESSAGE(Iterator.Next()),
                HasSubstr("'CurrentHashValue>=0 && CurrentHashValue<ReservedDataSize' is false"));
}

TEST(HashMapIterator, AnIteratorWhoseMapDiedCountsNothingAndIsDone)
{
    ownership_pointer<zel_int_hash_map<int>> Map(new zel_int_hash_map<int>(10));
    Map->Insert(1, 1);
    Map->Insert(2, 2);
    zel_int_hash_map_iterator<int> All(*Map);
    zel_int_hash_map_iterator<int> OfKey(*Map, 2);
    EXPECT_EQ(All.GetNumberOfElements(), 2u);
    EXPECT_TRUE(OfKey.NotDone());
    Map.Reset();
    EXPECT_EQ(All.GetNumberOfElements(), 0u);
    EXPECT_TRUE(All.Done());
    EXPECT_TRUE(OfKey.Done());
    All.First();
    EXPECT_TRUE(All.Done());
    EXPECT_THAT(ZEL_ERROR_MESSAGE(All.Current()), HasSubstr("'NotDone()' is false"));
}

TEST(HashMapOfOwners, RehashesMoveTheObjectsAndRemovalHandsThemOut)
{
    int Deaths = 0;
    {
        zel_int_hash_map<ownership_pointer<hash_map_test_item>> Map(1);
        for (int Key = 0; Key < 100; Key++) {
            ownership_pointer<hash_map_test_item> Item(new hash_map_test_item(Key, Deaths));
            Map.Insert(Key, Item);
            EXPECT_FALSE(Item.IsSet());
        }
        Map.Reserve(400);
        EXPECT_EQ(Deaths, 0);
        for (int Key = 0; Key < 100; Key++)
            EXPECT_EQ(Map[Key]->Value, Key);
        {
            ownership_pointer<hash_map_test_item> Taken = Map.RemoveAt(Map.Find(7));
            EXPECT_EQ(Taken->Value, 7);
            EXPECT_EQ(Deaths, 0);
        }
        EXPECT_EQ(Deaths, 1);
        EXPECT_FALSE(Map[1000].IsSet());
        zel_int_hash_map_iterator<ownership_pointer<hash_map_test_item>> Iterator(Map, 8);
        Iterator.RemoveCurrent();
        EXPECT_EQ(Deaths, 2);
    }
    EXPECT_EQ(Deaths, 100);
}

namespace {

// Runs random insertions, removals, lookups and filtered walks against a plain model: for each key,
// the multiset of its values. After each rehash the size must be the one before times 1.5 plus 1,
// rounded down, starting at the initial size.
template <class Iterator, class Map, class MakeKeyFunction, class ModelKeyFunction>
void RunAgainstModel(Map &HashMap, int InitialSize, MakeKeyFunction MakeKey, ModelKeyFunction ModelKeyOf,
                     int Operations)
{
    typedef typename std::decay<decltype(ModelKeyOf(MakeKey(0)))>::type model_key;
    const int KeyRange = 4000;
    std::mt19937 Random(20240611u);
    std::map<model_key, std::multiset<int>> Model;
    int ModelCount = 0;
    int ExpectedSize = 0;
    int Rehashes = 0;
    for (int Operation = 0; Operation < Operations; Operation++) {
        int Choice = static_cast<int>(Random() % 100);
        auto Key = MakeKey(static_cast<int>(Random() % KeyRange));
        std::multiset<int> &Values = Model[ModelKeyOf(Key)];
        if (Choice < 35) {
            int Value = static_cast<int>(Random() % 1000000);
            int Slot = HashMap.Insert(Key, Value);
            ASSERT_TRUE(HashMap.GetKeyAt(Slot) == Key);
            ASSERT_EQ(HashMap.GetValueAt(Slot), Value);
            Values.insert(Value);
            ModelCount++;
        } else if (Choice < 60) {
            int Slot = HashMap.Find(Key);
            if (Values.empty()) {
                ASSERT_EQ(Slot, -1);
            } else {
                ASSERT_GE(Slot, 0);
                auto Entry = Values.find(HashMap.RemoveAt(Slot));
                ASSERT_TRUE(Entry != Values.end()) << "removed a value that the key does not hold";
                Values.erase(Entry);
                ModelCount--;
            }
        } else if (Choice < 70) {
            // Removes the n-th entry of the key during a filtered walk, which must still see them all.
            int Victim = Values.empty() ? -1 : static_cast<int>(Random() % Values.size());
            std::vector<int> Seen;
            int RemovedValue = -1;
            int Index = 0;
            for (Iterator Walk(HashMap, Key); Walk.NotDone(); Walk.Next(), Index++) {
                ASSERT_TRUE(Walk.GetKey() == Key);
                Seen.push_back(Walk.Current());
                if (Index == Victim) {
                    RemovedValue = Walk.Current();
                    Walk.RemoveCurrent();
                }
            }
            std::sort(Seen.begin(), Seen.end());
            ASSERT_EQ(Seen, std::vector<int>(Values.begin(), Values.end()));
            if (Victim >= 0) {
                Values.erase(Values.find(RemovedValue));
                ModelCount--;
            }
        } else if (Choice < 90) {
            ASSERT_EQ(HashMap.KeyExists(Key), !Values.empty());
            if (!Values.empty()) {
                Iterator First(HashMap, Key);
                ASSERT_EQ(First.GetCurrentHashValue(), HashMap.Find(Key));
                ASSERT_EQ(HashMap[Key], First.Current());
                ASSERT_EQ(Values.count(HashMap[Key]), Values.count(First.Current()));
                ASSERT_GT(Values.count(HashMap[Key]), 0u);
            }
        } else {
            std::vector<int> Seen;
            for (Iterator Walk(HashMap, Key); Walk.NotDone(); Walk.Next())
                Seen.push_back(Walk.Current());
            std::sort(Seen.begin(), Seen.end());
            ASSERT_EQ(Seen, std::vector<int>(Values.begin(), Values.end()));
        }
        ASSERT_EQ(HashMap.GetNumberOfElements(), ModelCount);

        int Size = HashMap.GetReservedDataSize();
        if (ExpectedSize == 0 && Size != 0)
            ExpectedSize = InitialSize;
        if (Size != ExpectedSize) {
            ExpectedSize = ExpectedSize + ExpectedSize / 2 + 1;
            ASSERT_EQ(Size, ExpectedSize) << "after operation " << Operation;
            Rehashes++;
        }

        if (Operation % 20000 == 19999) {
            std::multiset<std::pair<model_key, int>> Expected;
            for (auto &Entry : Model)
                for (int Value : Entry.second)
                    Expected.insert({Entry.first, Value});
            std::multiset<std::pair<model_key, int>> Seen;
            int LastSlot = -1;
            for (Iterator Walk(HashMap); Walk.NotDone(); Walk.Next()) {
                ASSERT_GT(Walk.GetCurrentHashValue(), LastSlot);
                LastSlot = Walk.GetCurrentHashValue();
                Seen.insert({ModelKeyOf(Walk.GetKey()), Walk.Current()});
            }
            ASSERT_EQ(Seen, Expected) << "after operation " << Operation;
        }
    }
    EXPECT_GE(Rehashes, 10);
}

} // namespace

TEST(HashMapModel, IntegerKeysBehaveLikeAMultimap)
{
    zel_int_hash_map<int> Map(1);
    // Spread the keys over the whole range, negatives included.
    RunAgainstModel<zel_int_hash_map_iterator<int>>(
        Map, 1, [](int Id) { return static_cast<int32_t>(static_cast<uint32_t>(Id) * 2654435761u); },
        [](int32_t Key) { return Key; }, 200000);
}

TEST(HashMapModel, StringKeysBehaveLikeAMultimap)
{
    zel_string_hash_map<int> Map(7);
    // Decimal texts, some with a zero byte inside.
    RunAgainstModel<zel_string_hash_map_iterator<int>>(
        Map, 7,
        [](int Id) { return Id % 5 == 0 ? zel_string("k\0", 2) + zel_string::FromInt(Id) : zel_string::FromInt(Id); },
        [](const zel_string &Key) { return ToStd(Key); }, 200000);
}
