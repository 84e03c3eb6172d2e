#pragma once

#include <cstdio>
#include <cstdlib>

namespace corvandi::fuzz {

/// Ends the program, so that libFuzzer keeps the input, when something that always holds does not.
inline void expect(bool holds, const char* what)
{
    if (holds)
        return;
    std::fprintf(stderr, "expected: %s\n", what);
    std::abort();
}

} // namespace corvandi::fuzz
