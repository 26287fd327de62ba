#pragma once

// Stands before every source of a mutated copy: BREVLIN_MUTANT names the one mutant that is on,
// BREVLIN_REACHED a file to which the program appends the numbers of those that it came past.

#include <cstdio>
#include <cstdlib>
#include <type_traits>

namespace brevlin_mutation {

inline int wanted = -1;
inline bool isRecording = false;
inline unsigned char reached[1 << 16];

inline void writeReached()
{
    if (std::FILE* const file = std::fopen(std::getenv("BREVLIN_REACHED"), "a")) {
        for (unsigned number = 0; number < sizeof reached; ++number) {
            if (reached[number]) {
                std::fprintf(file, "%u\n", number);
            }
        }
        std::fclose(file);
    }
}

[[gnu::noinline]] inline void readEnvironment()
{
    const char* const number = std::getenv("BREVLIN_MUTANT");
    wanted = number ? std::atoi(number) : 0;
    isRecording = std::getenv("BREVLIN_REACHED");
    if (isRecording) {
        std::atexit(writeReached);
    }
}

inline bool isOn(int number)
{
    if (wanted < 0) {
        readEnvironment();
    }
    if (isRecording) {
        reached[number] = 1;
    }
    return number == wanted;
}

} // namespace brevlin_mutation

/// What the compiler computes is never mutated, so that constexpr functions are where they run.
constexpr bool brevlinMutant(int number)
{
    if (std::is_constant_evaluated()) {
        return false;
    }
    return brevlin_mutation::isOn(number);
}
