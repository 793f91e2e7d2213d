/** What the fuzzer gives a target: bytes, from the first to the last it pleases. */
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

/** libFuzzer's entry; 0 always. */
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);

inline std::string text_of(const std::uint8_t* bytes, std::size_t size) { return {bytes, bytes + size}; }

/** Ends the run with the input that showed it. */
inline void expect(bool condition) {
    if (!condition)
        std::abort();
}
