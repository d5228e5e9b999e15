// The entry of a target: what libFuzzer calls with every input, and what the replay of the
// committed inputs calls.
#pragma once

#include <cstddef>
#include <cstdint>

/// Always 0. A defect ends the program.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
