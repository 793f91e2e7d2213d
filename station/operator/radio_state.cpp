#include "radio_state.h"

#include "station_bus.h"

#include <gio/gio.h>
#include <stdexcept>

namespace station {

RadioState radio_state() {
    const Answer answer = call(radio_module, "State");
    g_autoptr(GVariant) values = g_variant_get_child_value(answer.get(), 0);
    RadioState state;
    const char* mode = "";
    gboolean streams = FALSE;
    const bool complete = g_variant_lookup(values, "mode", "&s", &mode) != FALSE &&
                          g_variant_lookup(values, "channel", "i", &state.channel) != FALSE &&
                          g_variant_lookup(values, "power", "i", &state.power) != FALSE &&
                          g_variant_lookup(values, "stream", "b", &streams) != FALSE &&
                          g_variant_lookup(values, "received", "x", &state.received) != FALSE;
    if (!complete)
        throw std::runtime_error("the radio module does not say its whole state");
    state.mode = mode;
    state.streams = streams != FALSE;
    return state;
}

} // namespace station
