// The one function of a fuzz target, by the name that fuzzers know.
#pragma once

#include <cstddef>
#include <cstdint>

/// Tries one input, `size` bytes; returns 0. What must hold and does not ends the process.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
