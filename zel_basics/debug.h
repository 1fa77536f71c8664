#pragma once

#include "zel_basics/zel_error.h"
#include "zel_basics/zel_string.h"

class base_object;

// A broken invariant: logs a report, then throws zel_error with the condition's text, the source
// file and line, the object's debug text and, in the second and third form, a comment. Assertions
// stay in every build; they are how the system stops.
[[noreturn]] void TovasDebugAssert(const char *DString, const char *File, int Line, base_object *Object);
[[noreturn]] void TovasDebugAssert(const char *DString, const char *File, int Line, const char *Comment,
                                   base_object *Object);
[[noreturn]] void TovasDebugAssert(const char *DString, const char *File, int Line, zel_string Comment,
                                   base_object *Object);

// TOVAS_ASSERT(Condition, Object) or TOVAS_ASSERT(Condition, Comment, Object). The condition's text
// is the assertion's text, so write it exactly as it should read in the report.
#define TOVAS_ASSERT(Condition, ...)                                                                               \
    do {                                                                                                           \
        if (!(Condition))                                                                                          \
            TovasDebugAssert(#Condition, __FILE__, __LINE__, __VA_ARGS__);                                         \
    } while (0)

// Format 0: (Name='n' Type=t Addr=a ID=i); format 1: n (Type=t Addr=a ID=i). A null object is "(NULL)".
zel_string GetObjectDebugText(base_object *Object, int Format);

// The debug log: a plain text file, one line per entry, in the system's temporary directory.
zel_string DebugLogPath();
void SetDebugLogPath(const zel_string &Path);
void DebugLogToFile(const zel_string &Text);
// What assertions log through; a release build discards it.
void DebugLog(const zel_string &Text);
void ZELDebugLogCallStack();

// Nesting depth for indented debug output; reset at the head of every tick.
void DebugNestingReset();
void DebugNestingEnter();
void DebugNestingLeave();
int GetDebugNesting();
