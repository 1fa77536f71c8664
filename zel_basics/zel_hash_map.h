#pragma once

#include <cstddef>
#include <cstdint>
#include <new>
#include <utility>

#include "zel_basics/debug.h"
#include "zel_basics/fnv_hash.h"
#include "zel_basics/lwbase_object.h"
#include "zel_basics/lwpointers.h"
#include "zel_basics/zel_iterator.h"
#include "zel_basics/zel_string.h"

// Hashes the bytes of a key's value as they lie in memory: for plain records with no padding.
template <class T> struct zel_contents_based_hash
{
    static uint32_t GetHash(const T &Key) { return FNV1Hash(&Key, static_cast<int>(sizeof(T))); }
};

// A 32-bit integer key hashes its four bytes lowest first, whatever the machine's byte order.
struct zel_int_hash
{
    static uint32_t GetHash(int32_t Key)
    {
        uint32_t Bits = static_cast<uint32_t>(Key);
        uint32_t Hash = FNVOffsetBasis;
        Hash = (Hash * FNVPrime) ^ (Bits & 0xFFu);
        Hash = (Hash * FNVPrime) ^ ((Bits >> 8) & 0xFFu);
        Hash = (Hash * FNVPrime) ^ ((Bits >> 16) & 0xFFu);
        Hash = (Hash * FNVPrime) ^ (Bits >> 24);
        return Hash;
    }
};

// A string key hashes its bytes in order, without the terminator.
struct zel_string_hash
{
    static uint32_t GetHash(const zel_string &Key) { return Key.GetHash(); }
};

template <class KeyType, class ValueType, class HashPolicy> class zel_hash_map_iterator;

// A hash map with coalesced chains in one block of slots, keys and values inline, so a lookup walks
// the block without allocating. A chain starts at its key's home slot and may run through slots of
// other hash values. Removal clears a slot but keeps its link, so the chains through it stay whole; a
// later insertion whose walk meets the cleared slot fills it again. One key may hold several entries.
template <class KeyType, class ValueType, class HashPolicy> class zel_hash_map : public base_object
{
public:
    // Key and Value live only while the slot is set. A free slot then costs no construction, which
    // matters for keys such as strings that allocate even when empty, since growth keeps a quarter or
    // more of the slots free.
    struct slot
    {
        bool IsSet;
        // The next slot of this chain, -1 for none.
        int32_t Next;
        union
        {
            KeyType Key;
        };
        union
        {
            ValueType Value;
        };

        slot() : IsSet(false), Next(-1) {}
        slot(const slot &) = delete;
        slot &operator=(const slot &) = delete;
        ~slot()
        {
            if (IsSet)
                Clear();
        }

        bool GetIsSet() const { return IsSet; }

        template <class K, class V> void Fill(K &&NewKey, V &&NewValue)
        {
            ::new (static_cast<void *>(&Key)) KeyType(std::forward<K>(NewKey));
            try {
                ::new (static_cast<void *>(&Value)) ValueType(std::forward<V>(NewValue));
            } catch (...) {
                Key.~KeyType();
                throw;
            }
            IsSet = true;
        }

        // Ends the entry but keeps the link.
        void Clear()
        {
            IsSet = false;
            Key.~KeyType();
            Value.~ValueType();
        }
    };

    // Allocates nothing until the first use.
    explicit zel_hash_map(int InitialSize = 16)
        : Map(nullptr), ReservedDataSize(0), InitialReservedDataSize(InitialSize < 1 ? 1 : InitialSize),
          NumberOfElements(0), MaxChainLength(0), ModuloFactor(0)
    {
    }

    zel_hash_map(const zel_hash_map &) = delete;
    zel_hash_map &operator=(const zel_hash_map &) = delete;

    ~zel_hash_map() override { delete[] Map; }

    // The slot of the first entry with this key in its chain, or -1.
    int Find(const KeyType &Key)
    {
        if (Map == NULL)
            Reserve(1);
        int HashValue = GetHashValue(Key);
        // A chain visits each slot at most once; more steps than slots means it has become a loop.
        for (int Steps = 0; Steps < ReservedDataSize; Steps++) {
            const slot &Slot = Map[HashValue];
            if (Slot.IsSet && Slot.Key == Key)
                return HashValue;
            HashValue = Slot.Next;
            if (HashValue < 0)
                return -1;
        }
        TOVAS_ASSERT(false, this);
    }

    bool KeyExists(const KeyType &Key) { return Find(Key) >= 0; }

    // The value of the first entry with this key; an absent key gets an entry with a default value.
    ValueType &operator[](const KeyType &Key)
    {
        int HashValue = Find(Key);
        if (HashValue < 0)
            HashValue = Insert(Key, ValueType());
        return Map[HashValue].Value;
    }

    // Always adds an entry, even when the key is present already. Returns its slot.
    int Insert(const KeyType &Key, const ValueType &Value)
    {
        if (Map == NULL)
            Reserve(1);
        TOVAS_ASSERT(ReservedDataSize>0, this);
        if (NumberOfElements + 1 >= 0.75 * ReservedDataSize)
            return GrowAndInsert(Key, Value);
        return InsertWithRoom(Key, Value);
    }

    // Takes the value out of its slot and clears the slot, which keeps its link.
    ValueType RemoveAt(int HashValue)
    {
        TOVAS_ASSERT(HashValue>=0 && HashValue<ReservedDataSize, this);
        TOVAS_ASSERT(Map[HashValue].IsSet, this);
        slot &Slot = Map[HashValue];
        ValueType Removed(std::move(Slot.Value));
        Slot.Clear();
        NumberOfElements--;
        TOVAS_ASSERT(!Map[HashValue].IsSet, this);
        return Removed;
    }

    // Rebuilds the block with exactly NewReservedDataSize slots and no stale links. The first call
    // allocates the initial block instead, whatever the argument.
    void Reserve(int NewReservedDataSize)
    {
        TOVAS_ASSERT(NewReservedDataSize>0, this);
        TOVAS_ASSERT(NewReservedDataSize>=NumberOfElements, this);
        MaxChainLength = 0;
        if (ReservedDataSize == 0) {
            SetBlock(new slot[InitialReservedDataSize], InitialReservedDataSize);
        } else {
            slot *OldMap = Map;
            int OldReservedDataSize = ReservedDataSize;
            int OldNumE = NumberOfElements;
            SetBlock(new slot[NewReservedDataSize], NewReservedDataSize);
            NumberOfElements = 0;
            // The new block has no stale links and room for every entry, so each one finds a place.
            for (int I = 0; I < OldReservedDataSize; I++) {
                if (OldMap[I].IsSet) {
                    Link(std::move(OldMap[I].Key), std::move(OldMap[I].Value));
                    OldMap[I].Clear();
                }
            }
            TOVAS_ASSERT(NumberOfElements==OldNumE, this);
            delete[] OldMap;
        }
        TOVAS_ASSERT(ReservedDataSize>0, this);
        TOVAS_ASSERT(Map!=NULL, this);
    }

    // The entry in a slot that Find or Insert returned.
    const KeyType &GetKeyAt(int HashValue) { return GetSetSlot(HashValue).Key; }
    ValueType &GetValueAt(int HashValue) { return GetSetSlot(HashValue).Value; }

    int GetNumberOfElements() const { return NumberOfElements; }
    int GetReservedDataSize() const { return ReservedDataSize; }
    // The longest chain walked by an insertion since the last rehash.
    int GetMaxChainLength() const { return MaxChainLength; }

private:
    friend class zel_hash_map_iterator<KeyType, ValueType, HashPolicy>;

    int GetHashValue(const KeyType &Key) const
    {
        int HashValue = GetSlotOfHash(HashPolicy::GetHash(Key));
        TOVAS_ASSERT(HashValue>=0, const_cast<zel_hash_map *>(this));
        return HashValue;
    }

    // The hash modulo the size, as unsigned numbers. Every access pays for it, and a division takes
    // tens of cycles, so where the compiler has 128-bit products the remainder comes from two
    // multiplications by a factor kept with the size instead; that is exact for any 32-bit hash and
    // size.
    int GetSlotOfHash(uint32_t Hash) const
    {
#ifdef __SIZEOF_INT128__
        unsigned __int128 Fraction = static_cast<uint64_t>(ModuloFactor * Hash);
        return static_cast<int>((Fraction * static_cast<uint32_t>(ReservedDataSize)) >> 64);
#else
        return static_cast<int>(Hash % static_cast<uint32_t>(ReservedDataSize));
#endif
    }

    void SetBlock(slot *NewMap, int NewReservedDataSize)
    {
        Map = NewMap;
        ReservedDataSize = NewReservedDataSize;
        // The ceiling of 2^64 / size; for a size of 1 it wraps to 0, which gives the right remainder 0.
        ModuloFactor = UINT64_C(0xFFFFFFFFFFFFFFFF) / static_cast<uint32_t>(NewReservedDataSize) + 1;
    }

    slot &GetSetSlot(int HashValue)
    {
        TOVAS_ASSERT(HashValue>=0 && HashValue<ReservedDataSize, this);
        TOVAS_ASSERT(Map[HashValue].IsSet, this);
        return Map[HashValue];
    }

    // Key and Value come as copies: the caller's may live in the block that the rehash frees.
    int GrowAndInsert(KeyType Key, ValueType Value)
    {
        Reserve(static_cast<int>(ReservedDataSize * 1.5 + 1));
        return InsertWithRoom(Key, Value);
    }

    int InsertWithRoom(const KeyType &Key, const ValueType &Value)
    {
        TOVAS_ASSERT(NumberOfElements+1 < .75 * ReservedDataSize, this);
        int HashValue = Link(Key, Value);
        if (HashValue >= 0)
            return HashValue;
        return RebuildAndInsert(Key, Value);
    }

    // Every free slot still serves as a link of some chain. Rebuilding at the same size drops the
    // stale links; Key and Value come as copies because the old block goes.
    int RebuildAndInsert(KeyType Key, ValueType Value)
    {
        slot *OldMap = Map;
        Reserve(ReservedDataSize);
        TOVAS_ASSERT(Map!=OldMap, this);
        return Insert(Key, Value);
    }

    // Puts the entry into its chain: into the first free slot the chain runs through, else into a free
    // slot that no chain uses, found by scanning on from the chain's tail and appended to the chain.
    // Returns the slot, or -1 when no slot is free of links.
    template <class K, class V> int Link(K &&Key, V &&Value)
    {
        int HashValue = GetHashValue(Key);
        int Steps = 0;
        while (Map[HashValue].IsSet && Map[HashValue].Next >= 0) {
            HashValue = Map[HashValue].Next;
            Steps++;
        }
        if (Steps > MaxChainLength)
            MaxChainLength = Steps;
        if (!Map[HashValue].IsSet) {
            Fill(Map[HashValue], std::forward<K>(Key), std::forward<V>(Value));
            TOVAS_ASSERT(Map[HashValue].GetIsSet(), this);
            return HashValue;
        }
        TOVAS_ASSERT(Map[HashValue].GetIsSet() && Map[HashValue].Next<0, this);
        for (int UnusedHashValue = FollowingSlot(HashValue); UnusedHashValue != HashValue;
             UnusedHashValue = FollowingSlot(UnusedHashValue)) {
            TOVAS_ASSERT(UnusedHashValue!=HashValue, this);
            if (Map[UnusedHashValue].IsSet || Map[UnusedHashValue].Next != -1)
                continue;
            TOVAS_ASSERT(!Map[UnusedHashValue].GetIsSet(), this);
            Fill(Map[UnusedHashValue], std::forward<K>(Key), std::forward<V>(Value));
            Map[UnusedHashValue].Next = Map[HashValue].Next;
            Map[HashValue].Next = UnusedHashValue;
            TOVAS_ASSERT(Map[UnusedHashValue].GetIsSet(), this);
            return UnusedHashValue;
        }
        return -1;
    }

    template <class K, class V> void Fill(slot &Slot, K &&Key, V &&Value)
    {
        Slot.Fill(std::forward<K>(Key), std::forward<V>(Value));
        NumberOfElements++;
    }

    int FollowingSlot(int HashValue) const { return HashValue + 1 == ReservedDataSize ? 0 : HashValue + 1; }

    slot *Map;
    int32_t ReservedDataSize;
    int32_t InitialReservedDataSize;
    int32_t NumberOfElements;
    int32_t MaxChainLength;
    uint64_t ModuloFactor;
};

// Walks a map's entries: all of them in slot order, or, with a key, the entries of that key along its
// chain in chain order. It holds a reference to the map, so once the map has died it counts no
// elements and is done.
template <class KeyType, class ValueType, class HashPolicy>
class zel_hash_map_iterator : public zel_iterator<ValueType>
{
public:
    typedef zel_hash_map<KeyType, ValueType, HashPolicy> map_type;

    explicit zel_hash_map_iterator(map_type &Target)
        : FilterByKey(false), Key(), HashMap(&Target), HashOfKey(0), CurrentHashValue(0)
    {
        First();
    }

    zel_hash_map_iterator(map_type &Target, const KeyType &FilterKey)
        : FilterByKey(true), Key(FilterKey), HashMap(&Target), HashOfKey(HashPolicy::GetHash(FilterKey)),
          CurrentHashValue(0)
    {
        First();
    }

    void First() override
    {
        map_type *Owner = HashMap.Get();
        if (Owner == nullptr || Owner->Map == NULL) {
            CurrentHashValue = Owner == nullptr ? 0 : Owner->ReservedDataSize;
            return;
        }
        if (FilterByKey) {
            CurrentHashValue = Owner->GetSlotOfHash(HashOfKey);
            SkipToKey(*Owner);
        } else {
            CurrentHashValue = 0;
            SkipUnset(*Owner);
        }
        CheckPosition(*Owner);
    }

    void Next() override
    {
        map_type &Owner = *HashMap;
        const int ReservedDataSize = Owner.ReservedDataSize;
        TOVAS_ASSERT(CurrentHashValue>=0 && CurrentHashValue<ReservedDataSize, &Owner);
        if (FilterByKey) {
            CurrentHashValue = Owner.Map[CurrentHashValue].Next;
            if (CurrentHashValue < 0)
                CurrentHashValue = ReservedDataSize;
            SkipToKey(Owner);
        } else {
            CurrentHashValue++;
            SkipUnset(Owner);
        }
        CheckPosition(Owner);
    }

    // Not on an element after RemoveCurrent(), though not past the end either: Next() goes on.
    bool NotDone() override
    {
        map_type *Owner = HashMap.Get();
        return Owner != nullptr && CurrentHashValue >= 0 && CurrentHashValue < Owner->ReservedDataSize &&
               Owner->Map[CurrentHashValue].IsSet;
    }

    bool Done() override
    {
        map_type *Owner = HashMap.Get();
        return Owner == nullptr || CurrentHashValue >= Owner->ReservedDataSize;
    }

    ValueType &Current() override { return GetCurrentSlot().Value; }

    // The slot is cleared but keeps its link, so Next() goes on along the same chain.
    void RemoveCurrent() override { HashMap->RemoveAt(CurrentHashValue); }

    uint32_t GetNumberOfElements() override
    {
        map_type *Owner = HashMap.Get();
        return Owner == nullptr ? 0 : static_cast<uint32_t>(Owner->NumberOfElements);
    }

    const KeyType &GetKey() { return GetCurrentSlot().Key; }
    ValueType &GetValue() { return Current(); }

    // The slot the iterator is on, or the map's size when done.
    int GetCurrentHashValue() const { return CurrentHashValue; }

private:
    typename map_type::slot &GetCurrentSlot()
    {
        TOVAS_ASSERT(NotDone(), HashMap.Get());
        return HashMap->Map[CurrentHashValue];
    }

    void SkipToKey(map_type &Owner)
    {
        const typename map_type::slot *Map = Owner.Map;
        while (CurrentHashValue < Owner.ReservedDataSize &&
               !(Map[CurrentHashValue].IsSet && Map[CurrentHashValue].Key == Key)) {
            CurrentHashValue = Map[CurrentHashValue].Next;
            if (CurrentHashValue < 0)
                CurrentHashValue = Owner.ReservedDataSize;
        }
    }

    void SkipUnset(map_type &Owner)
    {
        while (CurrentHashValue < Owner.ReservedDataSize && !Owner.Map[CurrentHashValue].IsSet)
            CurrentHashValue++;
    }

    void CheckPosition(map_type &Owner)
    {
        const typename map_type::slot *Map = Owner.Map;
        const int ReservedDataSize = Owner.ReservedDataSize;
        TOVAS_ASSERT(CurrentHashValue >= ReservedDataSize || Map[CurrentHashValue].GetIsSet(), &Owner);
    }

    bool FilterByKey;
    KeyType Key;
    reference_pointer<map_type> HashMap;
    uint32_t HashOfKey;
    int32_t CurrentHashValue;
};

template <class ValueType> class zel_int_hash_map : public zel_hash_map<int32_t, ValueType, zel_int_hash>
{
public:
    explicit zel_int_hash_map(int InitialSize = 16) : zel_hash_map<int32_t, ValueType, zel_int_hash>(InitialSize) {}
};

template <class ValueType> class zel_string_hash_map : public zel_hash_map<zel_string, ValueType, zel_string_hash>
{
public:
    explicit zel_string_hash_map(int InitialSize = 16)
        : zel_hash_map<zel_string, ValueType, zel_string_hash>(InitialSize)
    {
    }
};

template <class ValueType> using zel_int_hash_map_iterator = zel_hash_map_iterator<int32_t, ValueType, zel_int_hash>;
template <class ValueType>
using zel_string_hash_map_iterator = zel_hash_map_iterator<zel_string, ValueType, zel_string_hash>;
