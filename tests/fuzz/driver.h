#pragma once

#include "automation/error.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <initializer_list>
#include <string>
#include <vector>

/// What every fuzzer gives to the driver.

/// Runs one input; ends the program when something is wrong with what came of it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

/// Inputs to start from, and short pieces that are worth putting in anywhere.
std::vector<std::string> fuzz_seeds();

/// Ends the program with this message if `holds` is false; the driver then saves the input.
inline void fuzz_require(bool holds, const char* message)
{
    if (holds)
        return;
    std::fprintf(stderr, "%s\n", message);
    std::abort();
}

/// Whether an action succeeds; these errors are the only ones that an input may raise.
template <class Action>
bool fuzz_succeeds(std::initializer_list<int> errors, const Action& action)
{
    try {
        action();
        return true;
    } catch (const automation::Error& error) {
        fuzz_require(std::ranges::count(errors, error.number()) == 1, "an error that no input raises");
        return false;
    }
}
