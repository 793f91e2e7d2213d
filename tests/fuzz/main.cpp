#include "input.h"

#include <cstdint>
#include <glib.h>

/** libFuzzer's entry point; GLib's critical warnings are findings, too. */
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const auto handle = [](const char*, GLogLevelFlags level, const char*, void*) {
        expect((level & G_LOG_LEVEL_CRITICAL) == 0);
    };
    g_log_set_default_handler(handle, nullptr);
    fuzz({bytes, bytes + size});
    return 0;
}
