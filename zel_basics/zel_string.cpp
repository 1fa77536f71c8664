#include "zel_basics/zel_string.h"

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "zel_basics/array.h"
#include "zel_basics/debug.h"
#include "zel_basics/fnv_hash.h"

namespace {

// Two zero bytes behind the text always, and up to two more so that the block rounds to whole 16-bit
// units: any block then reads as a zero-terminated 8-bit or 16-bit string.
int BlockSize(int Length)
{
    return Length + (Length & 2) + 2;
}

// Every empty string shares this block: empty strings are the most common value of all (each place of
// an array of strings starts as one), and nothing ever writes into an empty string's bytes.
alignas(4) char EmptyBlock[4] = {0, 0, 0, 0};

char *AllocateBlock(int Length)
{
    TOVAS_ASSERT(Length>=0, nullptr);
    if (Length == 0)
        return EmptyBlock;
    int Size = BlockSize(Length);
    char *Block = static_cast<char *>(std::malloc(static_cast<size_t>(Size)));
    if (Block == nullptr)
        throw zel_error(zel_string("Out of memory"));
    std::memset(Block + Length, 0, static_cast<size_t>(Size - Length));
    return Block;
}

// toupper/tolower take the byte as unsigned (a negative value other than EOF is undefined), but the
// comparisons work on the byte as signed char, as everywhere else in the string.
char UpperByte(char C)
{
    return static_cast<char>(std::toupper(static_cast<unsigned char>(C)));
}

char LowerByte(char C)
{
    return static_cast<char>(std::tolower(static_cast<unsigned char>(C)));
}

bool IsRadixDigit(char C, int Radix)
{
    if (Radix <= 10)
        return C >= '0' && C < '0' + Radix;
    return (C >= '0' && C <= '9') || (C >= 'A' && C <= 'A' + Radix - 11);
}

int DigitValue(char C)
{
    return C <= '9' ? C - '0' : C - 'A' + 10;
}

int EscapeValue(char C)
{
    switch (LowerByte(C))
    {
    case 'n':
        return 10;
    case '\\':
        return 92;
    case 'a':
        return 7;
    case 'b':
        return 8;
    case 'f':
        return 12;
    case 'r':
        return 13;
    case 't':
        return 9;
    case 'v':
        return 11;
    default:
        return 0;
    }
}

} // namespace

zel_string::zel_string() : Length(0), String(nullptr)
{
    Reserve(0);
}

zel_string::zel_string(const char *Text) : Length(0), String(nullptr)
{
    int TextLength = Text == nullptr ? 0 : static_cast<int>(std::strlen(Text));
    Reserve(TextLength);
    if (TextLength > 0)
        std::memcpy(String, Text, static_cast<size_t>(TextLength));
}

zel_string::zel_string(const char *Init_String, int Length) : Length(0), String(nullptr)
{
    TOVAS_ASSERT(Init_String!=NULL, nullptr);
    Reserve(Length);
    if (Length > 0)
        std::memcpy(String, Init_String, static_cast<size_t>(Length));
}

zel_string::zel_string(char C, int NumRepetitions) : Length(0), String(nullptr)
{
    TOVAS_ASSERT(NumRepetitions>=0, nullptr);
    Reserve(NumRepetitions + 1);
    Length = NumRepetitions;
    std::memset(String, C, static_cast<size_t>(NumRepetitions));
    String[NumRepetitions] = 0;
}

zel_string::zel_string(const zel_string &Other) : Length(0), String(nullptr)
{
    Reserve(Other.Length);
    if (Other.Length > 0)
        std::memcpy(String, Other.String, static_cast<size_t>(Other.Length));
}

// The source is left empty, not null: code that reads a string after handing it on must not meet a
// null pointer.
zel_string::zel_string(zel_string &&Other) noexcept : Length(Other.Length), String(Other.String)
{
    Other.Length = 0;
    Other.String = EmptyBlock;
}

zel_string::~zel_string()
{
    Free();
}

void zel_string::Free()
{
    if (String != EmptyBlock)
        std::free(String);
    String = nullptr;
    Length = 0;
}

void zel_string::Reserve(int NewLength)
{
    char *Block = AllocateBlock(NewLength);
    Free();
    String = Block;
    Length = NewLength;
}

zel_string zel_string::FromInt(int32_t Value)
{
    char Text[16];
    int TextLength = std::snprintf(Text, sizeof(Text), "%d", Value);
    return zel_string(Text, TextLength);
}

zel_string zel_string::FromUnsigned(uint32_t Value)
{
    char Text[16];
    int TextLength = std::snprintf(Text, sizeof(Text), "%u", Value);
    return zel_string(Text, TextLength);
}

zel_string zel_string::FromDouble(double Value)
{
    return Format("%g", Value);
}

int zel_string::GetMaxFormatLength(const char *FormatString)
{
    int I = 0;
    while (FormatString[I] != 0)
    {
        if (FormatString[I] == '%' && FormatString[I + 1] == '%')
            I += 2;
        else if (FormatString[I] == '%')
            break;
        else
            I++;
    }
    TOVAS_ASSERT(FormatString[I]=='%', nullptr);
    int Width = 0;
    int J = I + 1;
    while (FormatString[J] != 0 && std::strchr("-+ #0", FormatString[J]) != nullptr)
        J++;
    while (FormatString[J] >= '0' && FormatString[J] <= '9')
    {
        Width = Width * 10 + (FormatString[J] - '0');
        J++;
    }
    return static_cast<int>(std::strlen(FormatString)) + Width;
}

namespace {

// The buffer is sized by GetMaxFormatLength and Room, the most that one value can add; a conversion
// that would run longer is cut, never written past the buffer.
template <class T> zel_string FormatValue(const char *FormatString, T Value, int Room)
{
    int Size = zel_string::GetMaxFormatLength(FormatString) + Room;
    char *Text = static_cast<char *>(std::malloc(static_cast<size_t>(Size) + 1));
    int TextLength = std::snprintf(Text, static_cast<size_t>(Size) + 1, FormatString, Value);
    zel_string Result(Text, TextLength < 0 ? 0 : (TextLength > Size ? Size : TextLength));
    std::free(Text);
    return Result;
}

} // namespace

zel_string zel_string::Format(const char *FormatString, int Value)
{
    return FormatValue(FormatString, Value, 10);
}

// A double in %f form can run to over 300 digits.
zel_string zel_string::Format(const char *FormatString, double Value)
{
    return FormatValue(FormatString, Value, 500);
}

void zel_string::AdoptBuffer(char *StringOP, int Length)
{
    TOVAS_ASSERT(StringOP, nullptr);
    Free();
    String = StringOP;
    this->Length = Length;
    TOVAS_ASSERT(String[Length]==0, nullptr);
}

zel_string &zel_string::operator=(const zel_string &Other)
{
    if (String == Other.String)
        return *this;
    char *Block = AllocateBlock(Other.Length);
    if (Other.Length > 0)
        std::memcpy(Block, Other.String, static_cast<size_t>(Other.Length));
    Free();
    String = Block;
    Length = Other.Length;
    return *this;
}

zel_string &zel_string::operator=(zel_string &&Other) noexcept
{
    char *OwnString = String;
    int32_t OwnLength = Length;
    String = Other.String;
    Length = Other.Length;
    Other.String = OwnString;
    Other.Length = OwnLength;
    return *this;
}

zel_string &zel_string::operator+=(const zel_string &Other)
{
    if (Other.Length == 0)
        return *this;
    if (Length == 0)
        return *this = Other;
    int JoinedLength = Length + Other.Length;
    char *Block = AllocateBlock(JoinedLength);
    std::memcpy(Block, String, static_cast<size_t>(Length));
    std::memcpy(Block + Length, Other.String, static_cast<size_t>(Other.Length));
    Free();
    String = Block;
    Length = JoinedLength;
    return *this;
}

bool zel_string::operator==(const zel_string &Other) const
{
    return Length == Other.Length && std::memcmp(String, Other.String, static_cast<size_t>(Length)) == 0;
}

bool zel_string::operator!=(const zel_string &Other) const
{
    return !(*this == Other);
}

bool zel_string::operator<(const zel_string &Other) const
{
    int Shorter = Length < Other.Length ? Length : Other.Length;
    for (int I = 0; I < Shorter; I++)
    {
        signed char A = static_cast<signed char>(String[I]);
        signed char B = static_cast<signed char>(Other.String[I]);
        if (A != B)
            return A < B;
    }
    return Length < Other.Length;
}

int zel_string::CompareNoCase(const zel_string &Other) const
{
    int Shorter = Length < Other.Length ? Length : Other.Length;
    for (int I = 0; I < Shorter; I++)
    {
        signed char A = static_cast<signed char>(UpperByte(String[I]));
        signed char B = static_cast<signed char>(UpperByte(Other.String[I]));
        if (A != B)
            return A - B;
    }
    return Length - Other.Length;
}

uint32_t zel_string::GetHash() const
{
    return FNV1Hash(String, Length);
}

char &zel_string::operator[](int Index)
{
    TOVAS_ASSERT(Index>=0 && Index<Length, nullptr);
    return String[Index];
}

char zel_string::operator[](int Index) const
{
    TOVAS_ASSERT(Index>=0 && Index<Length, nullptr);
    return String[Index];
}

void zel_string::RemoveLast()
{
    TOVAS_ASSERT(Length>0, nullptr);
    Length--;
    String[Length] = 0;
}

int zel_string::ToInt(int Radix) const
{
    TOVAS_ASSERT(Radix>1, nullptr);
    TOVAS_ASSERT(Radix<=36, nullptr);
    if (Length == 0)
        return 0;
    if (String[0] == '\'' && Length >= 2)
    {
        if (String[1] != '\\' || Length < 3)
            return static_cast<signed char>(String[1]);
        return EscapeValue(String[2]);
    }
    int I = 0;
    bool Negative = false;
    while (I < Length && !IsRadixDigit(UpperByte(String[I]), Radix))
    {
        if (String[I] == '-')
            Negative = true;
        I++;
    }
    // Unsigned arithmetic: an overlong number wraps around instead of being undefined.
    uint32_t Value = 0;
    while (I < Length && IsRadixDigit(UpperByte(String[I]), Radix))
    {
        Value = Value * static_cast<uint32_t>(Radix) + static_cast<uint32_t>(DigitValue(UpperByte(String[I])));
        I++;
    }
    return static_cast<int32_t>(Negative ? 0u - Value : Value);
}

double zel_string::ToFloat() const
{
    return std::atof(String);
}

int zel_string::Find(char C, int StartIndex) const
{
    TOVAS_ASSERT(StartIndex>=0, nullptr);
    for (int I = StartIndex; I < Length; I++)
        if (String[I] == C)
            return I;
    return Length;
}

int zel_string::FindLast(char C, int StartIndex) const
{
    if (StartIndex == -5 || StartIndex >= Length)
        StartIndex = Length - 1;
    for (int I = StartIndex; I >= 0; I--)
        if (String[I] == C)
            return I;
    return -1;
}

int zel_string::FindNoCase(const zel_string &S, int StartIndex) const
{
    if (StartIndex < 0)
        StartIndex = 0;
    for (int I = StartIndex; I + S.Length <= Length; I++)
    {
        int J = 0;
        while (J < S.Length && LowerByte(String[I + J]) == LowerByte(S.String[J]))
            J++;
        if (J == S.Length)
            return I;
    }
    return Length;
}

int zel_string::CountOccurrences(char C) const
{
    int Count = 0;
    for (int I = 0; I < Length; I++)
        if (String[I] == C)
            Count++;
    return Count;
}

int zel_string::CountOccurrences(const zel_string &S) const
{
    if (S.Length == 0)
        return 0;
    int Count = 0;
    int I = 0;
    while (I + S.Length <= Length)
    {
        if (std::memcmp(String + I, S.String, static_cast<size_t>(S.Length)) == 0)
        {
            Count++;
            I += S.Length;
        }
        else
            I++;
    }
    return Count;
}

bool zel_string::Contains(const zel_string &S) const
{
    return FindNoCase(S) < Length;
}

int zel_string::FindWhitespace(int Start) const
{
    for (int I = Start < 0 ? 0 : Start; I < Length; I++)
        if (std::isspace(static_cast<unsigned char>(String[I])))
            return I;
    return Length;
}

int zel_string::FindNonWhitespace(int Start) const
{
    for (int I = Start < 0 ? 0 : Start; I < Length; I++)
        if (!std::isspace(static_cast<unsigned char>(String[I])))
            return I;
    return Length;
}

int zel_string::FindClosingQuote(int StartIndex) const
{
    TOVAS_ASSERT(StartIndex>=0, nullptr);
    // The terminator is readable, so a start at Length fails the quote check below, like any non-quote.
    TOVAS_ASSERT(StartIndex<=Length, nullptr);
    TOVAS_ASSERT(String[StartIndex]=='"' || String[StartIndex]=='\'', nullptr);
    char Quote = String[StartIndex];
    for (int I = StartIndex + 1; I < Length; I++)
    {
        if (String[I] != Quote)
            continue;
        // The opening quote precedes the first candidate, so I-2 is only read when it is in the text.
        if (String[I - 1] != '\\' || String[I - 2] == '\\')
            return I;
    }
    throw zel_error(zel_string("Mismatched quotation starting with: ") + Mid(StartIndex, StartIndex + 100));
}

zel_string zel_string::Left(int N) const
{
    if (N <= 0)
        return zel_string();
    return zel_string(String, N > Length ? Length : N);
}

zel_string zel_string::Right(int N) const
{
    if (N <= 0)
        return zel_string();
    if (N > Length)
        N = Length;
    return zel_string(String + Length - N, N);
}

zel_string zel_string::Mid(int LeftIndex, int RightIndex) const
{
    if (RightIndex < LeftIndex || LeftIndex >= Length || RightIndex < 0)
        return zel_string();
    if (LeftIndex < 0)
        LeftIndex = 0;
    if (RightIndex >= Length)
        RightIndex = Length - 1;
    TOVAS_ASSERT(RightIndex>=LeftIndex, nullptr);
    return zel_string(String + LeftIndex, RightIndex - LeftIndex + 1);
}

zel_string zel_string::LeftOf(char C, int Start) const
{
    return Left(Find(C, Start));
}

zel_string zel_string::RightOf(int Index) const
{
    return Mid(Index + 1, Length - 1);
}

zel_string zel_string::RightOf(char C, int Start) const
{
    int Index = Find(C, Start);
    if (Index == Length)
        return zel_string();
    return RightOf(Index);
}

// Bytes are compared as signed, so every byte above 127 counts as white space here, as it always has.
zel_string zel_string::Trim() const
{
    int First = 0;
    while (First < Length && static_cast<signed char>(String[First]) <= ' ')
        First++;
    int Last = Length - 1;
    while (Last >= First && static_cast<signed char>(String[Last]) <= ' ')
        Last--;
    return zel_string(String + First, Last - First + 1);
}

zel_string zel_string::ToUpper() const
{
    zel_string Result(*this);
    for (int I = 0; I < Length; I++)
        Result.String[I] = UpperByte(String[I]);
    return Result;
}

zel_string zel_string::ToLower() const
{
    zel_string Result(*this);
    for (int I = 0; I < Length; I++)
        Result.String[I] = LowerByte(String[I]);
    return Result;
}

zel_string zel_string::PadLeft(int Width, char C) const
{
    if (Length >= Width)
        return *this;
    zel_string Result(C, Width - Length);
    Result += *this;
    return Result;
}

zel_string zel_string::RemoveCarriageReturns() const
{
    zel_string Result(*this);
    int Kept = 0;
    for (int I = 0; I < Length; I++)
        if (String[I] != '\r')
            Result.String[Kept++] = String[I];
    std::memset(Result.String + Kept, 0, static_cast<size_t>(Length - Kept));
    Result.Length = Kept;
    return Result;
}

void zel_string::ReplaceCharacter(char Old, char New)
{
    for (int I = 0; I < Length; I++)
        if (String[I] == Old)
            String[I] = New;
}

// A match never runs over a zero byte of either text, so a pattern that holds a zero byte never
// matches, and binary text is only matched between its zeros.
bool zel_string::MatchesAt(int Index, const zel_string &Pattern) const
{
    int J = 0;
    while (J < Pattern.Length && String[Index + J] != 0 && String[Index + J] == Pattern.String[J])
        J++;
    return J == Pattern.Length;
}

zel_string zel_string::Replace(const zel_string &Old, const zel_string &New) const
{
    if (Old.Length == 0)
        return *this;
    int Matches = 0;
    for (int I = 0; I + Old.Length <= Length;)
    {
        if (MatchesAt(I, Old))
        {
            Matches++;
            I += Old.Length;
        }
        else
            I++;
    }
    zel_string Result;
    Result.Reserve(Length + Matches * (New.Length - Old.Length));
    int Written = 0;
    int I = 0;
    while (I < Length)
    {
        if (I + Old.Length <= Length && MatchesAt(I, Old))
        {
            std::memcpy(Result.String + Written, New.String, static_cast<size_t>(New.Length));
            Written += New.Length;
            I += Old.Length;
        }
        else
            Result.String[Written++] = String[I++];
    }
    return Result;
}

void zel_string::Split(char Separator, array<zel_string> &Out) const
{
    int PieceStart = 0;
    for (int I = 0; I < Length; I++)
    {
        if (String[I] == Separator)
        {
            Out.Add(zel_string(String + PieceStart, I - PieceStart));
            PieceStart = I + 1;
        }
    }
    Out.Add(zel_string(String + PieceStart, Length - PieceStart));
}

zel_string operator+(const zel_string &A, const zel_string &B)
{
    zel_string Result(A);
    Result += B;
    return Result;
}

zel_string operator+(const zel_string &A, const char *B)
{
    return A + zel_string(B);
}

zel_string operator+(const char *A, const zel_string &B)
{
    return zel_string(A) + B;
}
