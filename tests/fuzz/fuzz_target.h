#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

// The one function of a fuzz target: feeds the bytes to the code under test and ends the process when the
// result is wrong. Called by the fuzzer, or by replay.cpp for each of its files.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace krvcmd::fuzz {

// Ends the process with the sentence on standard error, unless it holds.
inline void Require(bool holds, const std::string& sentence) {
    if (holds) return;
    (void)std::fprintf(stderr, "does not hold: %s\n", sentence.c_str());
    std::abort();
}

inline std::string_view TextOf(const uint8_t* data, size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

}  // namespace krvcmd::fuzz
