#include "input.h"

#include <cstdint>
#include <glib.h>

/** libFuzzer's entry point; GLib's critical warnings are findings, too. */
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    g_log_set_always_fatal(G_LOG_LEVEL_CRITICAL);
    fuzz({bytes, bytes + size});
    return 0;
}
