/** The bytes that the fuzzer gives a target. */
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <glib.h>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

/** libFuzzer's entry; 0 always. */
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);

inline std::string text_of(const std::uint8_t* bytes, std::size_t size) { return {bytes, bytes + size}; }

/** Ends the run with the input that showed it. */
inline void expect(bool condition) {
    if (!condition)
        std::abort();
}

/** What GLib calls a misuse is a finding, too. */
inline const GLogFunc handler_before =
    g_log_set_default_handler([](const char*, GLogLevelFlags level, const char*,
                                 void*) { expect((level & G_LOG_LEVEL_CRITICAL) == 0); },
                              nullptr);

/** The path of a file that holds the input. */
inline std::string file_of(const std::uint8_t* bytes, std::size_t size) {
    static const int file = memfd_create("input", 0);
    expect(ftruncate(file, 0) == 0 && pwrite(file, bytes, size, 0) == static_cast<ssize_t>(size));
    return "/proc/self/fd/" + std::to_string(file);
}
