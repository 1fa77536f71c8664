#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

#include "zel_basics/debug.h"
#include "zel_basics/lwbase_object.h"
#include "zel_basics/zel_string.h"

// The system's sequence container. The block is constructed whole, so every place beyond
// NumberOfElements holds a default value; every operation that frees a place puts one back, which is
// what lets AddEmpty hand out a place without writing it and lets owned objects die as soon as they
// leave the array. Elements travel between places and blocks by T's assignment only, so an array of
// ownership_pointer moves its objects and never copies them.
template <class T> class array : public base_object
{
public:
    // A Reserve of 0 allocates nothing until the first Add.
    explicit array(int Reserve = 1) : Data(nullptr), ReservedSize(0), NumberOfElements(0)
    {
        AllocateFirstBlock(Reserve < 0 ? 1 : Reserve);
    }

    array(const array &Other) : base_object(Other), Data(nullptr), ReservedSize(0), NumberOfElements(0)
    {
        AllocateFirstBlock(Other.ReservedSize);
        CopyElementsFrom(Other);
    }

    array &operator=(const array &Other)
    {
        if (this == &Other)
            return *this;
        Clear();
        if (ReservedSize < Other.NumberOfElements)
            Reserve(Other.NumberOfElements);
        CopyElementsFrom(Other);
        return *this;
    }

    ~array() override { delete[] Data; }

    zel_string GetName() override
    {
        return zel_string("array with ") + zel_string::FromInt(NumberOfElements) + " elements (space reserved=" +
               zel_string::FromInt(ReservedSize) + ")";
    }

    // Reallocates to exactly NewArraySize places; 0 frees the block.
    void Reserve(int NewArraySize)
    {
        TOVAS_ASSERT(NewArraySize>=0, this);
        TOVAS_ASSERT(NewArraySize>=NumberOfElements, this);
        if (NewArraySize == ReservedSize)
            return;
        T *NewData = NewArraySize > 0 ? new T[NewArraySize] : nullptr;
        for (int I = 0; I < NumberOfElements; I++)
            NewData[I] = std::move(Data[I]);
        delete[] Data;
        Data = NewData;
        ReservedSize = NewArraySize;
    }

    int Add(const T &Value)
    {
        if (ReservedSize <= NumberOfElements) {
            // Value may be one of our own elements, which the new block would leave dangling.
            T Copy(Value);
            Grow();
            Data[NumberOfElements] = std::move(Copy);
        } else {
            Data[NumberOfElements] = Value;
        }
        return NumberOfElements++;
    }

    int AddEmpty()
    {
        if (ReservedSize <= NumberOfElements)
            Grow();
        return NumberOfElements++;
    }

    T &operator[](int Index)
    {
        TOVAS_ASSERT(IsInArrayAssert(Index), this);
        return Data[Index];
    }

    const T &operator[](int Index) const
    {
        TOVAS_ASSERT(IsInArrayAssert(Index), const_cast<array *>(this));
        return Data[Index];
    }

    void Remove(int Index)
    {
        TOVAS_ASSERT(IsInArray(Index), this);
        // Taken out first so that an owned object dies only once the array is consistent again.
        [[maybe_unused]] T Removed(std::move(Data[Index]));
        for (int I = Index; I < NumberOfElements - 1; I++)
            Data[I] = std::move(Data[I + 1]);
        NumberOfElements--;
        Data[NumberOfElements] = T();
    }

    void Insert(int Index, const T &Value)
    {
        TOVAS_ASSERT(IsInArray(Index) || Index==NumberOfElements, this);
        // Value may be one of our own elements, which the shift below would overwrite.
        T Copy(Value);
        if (ReservedSize <= NumberOfElements)
            Grow();
        for (int I = NumberOfElements; I > Index; I--)
            Data[I] = std::move(Data[I - 1]);
        Data[Index] = std::move(Copy);
        NumberOfElements++;
    }

    // Moves one element to ToIndex; the others keep their order.
    void Move(int FromIndex, int ToIndex)
    {
        TOVAS_ASSERT(IsInArray(FromIndex), this);
        TOVAS_ASSERT(IsInArray(ToIndex), this);
        MoveRange(FromIndex, ToIndex, 1);
    }

    // Moves Amount elements starting at FromIndex so that they start at ToIndex; the others keep
    // their order.
    void MoveRange(int FromIndex, int ToIndex, int Amount)
    {
        TOVAS_ASSERT(FromIndex>=0, this);
        TOVAS_ASSERT(ToIndex>=0, this);
        TOVAS_ASSERT(FromIndex+Amount<=NumberOfElements, this);
        TOVAS_ASSERT(ToIndex+Amount<=NumberOfElements, this);
        if (Amount <= 0 || FromIndex == ToIndex)
            return;
        T *Moving = new T[Amount];
        for (int I = 0; I < Amount; I++)
            Moving[I] = std::move(Data[FromIndex + I]);
        if (ToIndex < FromIndex) {
            for (int I = FromIndex - 1; I >= ToIndex; I--)
                Data[I + Amount] = std::move(Data[I]);
        } else {
            for (int I = FromIndex + Amount; I < ToIndex + Amount; I++)
                Data[I - Amount] = std::move(Data[I]);
        }
        for (int I = 0; I < Amount; I++)
            Data[ToIndex + I] = std::move(Moving[I]);
        delete[] Moving;
    }

    int GetNumberOfElements() const { return NumberOfElements; }
    int GetReservedSize() const { return ReservedSize; }
    bool IsInArray(int Index) const { return IsInArrayAssert(Index); }

    // One unsigned comparison rejects negative indices too: this is the cost of every checked access.
    bool IsInArrayAssert(int Index) const
    {
        return static_cast<uint32_t>(Index) < static_cast<uint32_t>(NumberOfElements);
    }

    // Grows the block if needed and writes Fill only into the places that become used. Places that
    // fall out of use get default values back.
    void SetNumberOfElements(int Count, T Fill)
    {
        if (Count > ReservedSize)
            Reserve(Count);
        for (int I = NumberOfElements; I < Count; I++)
            Data[I] = Fill;
        for (int I = Count; I < NumberOfElements; I++)
            Data[I] = T();
        NumberOfElements = Count;
    }

    T &GetLast()
    {
        TOVAS_ASSERT(NumberOfElements>0, this);
        return Data[NumberOfElements - 1];
    }

    void RemoveLast()
    {
        TOVAS_ASSERT(NumberOfElements>0, this);
        NumberOfElements--;
        Data[NumberOfElements] = T();
    }

    // Keeps the block; only the elements go.
    void Clear() { SetNumberOfElements(0, T()); }

    // The element block itself, for code that hands it to a routine taking a plain buffer.
    T *GetData() const { return Data; }

private:
    void AllocateFirstBlock(int Reserve)
    {
        TOVAS_ASSERT(Data==NULL, this);
        if (Reserve > 0) {
            Data = new T[Reserve];
            ReservedSize = Reserve;
        }
    }

    // A quarter more, at least one place: memory is dear and arrays are mostly small.
    void Grow()
    {
        int Extra = ReservedSize / 4;
        Reserve(ReservedSize + (Extra < 1 ? 1 : Extra));
    }

    void CopyElementsFrom(const array &Other)
    {
        for (int I = 0; I < Other.NumberOfElements; I++)
            Data[I] = Other.Data[I];
        NumberOfElements = Other.NumberOfElements;
    }

    T *Data;
    int32_t ReservedSize;
    int32_t NumberOfElements;
};
