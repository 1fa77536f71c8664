#pragma once

#include <cstdint>

template <class T> class array;

// A byte string with an explicit length. It carries 8-bit text, UTF-8 or binary data (zero bytes
// included), is copied by value and owns its block. Behind the text the block always holds two to
// four zero bytes, so it reads both as a zero-terminated 8-bit string and as a zero-terminated
// 16-bit string.
class zel_string
{
public:
    zel_string();
    zel_string(const char *Text);
    zel_string(const char *Init_String, int Length);
    zel_string(char C, int NumRepetitions);
    zel_string(const zel_string &Other);
    zel_string(zel_string &&Other) noexcept;
    ~zel_string();

    static zel_string FromInt(int32_t Value);
    static zel_string FromUnsigned(uint32_t Value);
    static zel_string FromDouble(double Value);
    static zel_string Format(const char *FormatString, int Value);
    static zel_string Format(const char *FormatString, double Value);
    static int GetMaxFormatLength(const char *FormatString);

    // Takes over a block allocated with malloc by the caller; String[Length] must be 0.
    void AdoptBuffer(char *StringOP, int Length);

    zel_string &operator=(const zel_string &Other);
    zel_string &operator=(zel_string &&Other) noexcept;
    zel_string &operator+=(const zel_string &Other);

    bool operator==(const zel_string &Other) const;
    bool operator!=(const zel_string &Other) const;
    bool operator<(const zel_string &Other) const;
    int CompareNoCase(const zel_string &Other) const;
    uint32_t GetHash() const;

    int GetLength() const { return Length; }
    bool IsEmpty() const { return Length == 0; }
    const char *GetString() const { return String; }
    char &operator[](int Index);
    char operator[](int Index) const;
    void RemoveLast();

    int ToInt(int Radix = 10) const;
    double ToFloat() const;

    int Find(char C, int StartIndex = 0) const;
    int FindLast(char C, int StartIndex = -5) const;
    int FindNoCase(const zel_string &S, int StartIndex = 0) const;
    int CountOccurrences(char C) const;
    int CountOccurrences(const zel_string &S) const;
    bool Contains(const zel_string &S) const;
    int FindWhitespace(int Start) const;
    int FindNonWhitespace(int Start) const;
    int FindClosingQuote(int StartIndex) const;

    zel_string Left(int N) const;
    zel_string Right(int N) const;
    zel_string Mid(int LeftIndex, int RightIndex) const;
    zel_string LeftOf(char C, int Start = 0) const;
    zel_string RightOf(int Index) const;
    zel_string RightOf(char C, int Start = 0) const;
    zel_string Trim() const;
    zel_string ToUpper() const;
    zel_string ToLower() const;
    zel_string PadLeft(int Width, char C) const;
    zel_string RemoveCarriageReturns() const;
    void ReplaceCharacter(char Old, char New);
    zel_string Replace(const zel_string &Old, const zel_string &New) const;
    void Split(char Separator, array<zel_string> &Out) const;

private:
    void Reserve(int NewLength);
    void Free();
    bool MatchesAt(int Index, const zel_string &Pattern) const;

    int32_t Length;
    char *String;
};

zel_string operator+(const zel_string &A, const zel_string &B);
zel_string operator+(const zel_string &A, const char *B);
zel_string operator+(const char *A, const zel_string &B);
