#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// What every fuzzer gives to the driver.

/// Runs one input; ends the program when something is wrong with what came of it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

/// Inputs to start from, and short pieces that are worth putting in anywhere.
std::vector<std::string> fuzz_seeds();

/// Ends the program with this message if `holds` is false; the driver then saves the input.
void fuzz_require(bool holds, const char* message);
