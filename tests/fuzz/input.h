/** The input of a fuzz target. */
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <glib.h>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

/** libFuzzer's entry point; always returns 0. */
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);

inline std::string text_of(const std::uint8_t* bytes, std::size_t size) { return {bytes, bytes + size}; }

/** Reports a finding with the current input. */
inline void expect(bool condition) {
    if (!condition)
        std::abort();
}

/** Makes GLib's critical warnings findings. */
inline const GLogFunc handler_before =
    g_log_set_default_handler([](const char*, GLogLevelFlags level, const char*,
                                 void*) { expect((level & G_LOG_LEVEL_CRITICAL) == 0); },
                              nullptr);

/** Writes the input to a file and returns its path. */
inline std::string file_of(const std::uint8_t* bytes, std::size_t size) {
    static const int file = memfd_create("input", 0);
    expect(ftruncate(file, 0) == 0 && pwrite(file, bytes, size, 0) == static_cast<ssize_t>(size));
    return "/proc/self/fd/" + std::to_string(file);
}
