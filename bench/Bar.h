#pragma once

// The bars that a benchmark has to meet. Every figure is printed, met or not;
// a program of which one was missed ends with 1.
namespace tonequill::bench {

inline bool isAnyMissed = false;

// The word for a bar, to be printed beside it.
inline const char* verdict(bool isMet)
{
    isAnyMissed = isAnyMissed || !isMet;
    return isMet ? "met" : "MISSED";
}

// What main() returns.
inline int exitCode()
{
    return isAnyMissed ? 1 : 0;
}

} // namespace tonequill::bench
