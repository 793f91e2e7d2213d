#include "station_bus.h"

#include "host/ncp_contract.h"

#include <gio/gio.h>
#include <stdexcept>

namespace station {

const SimulatedPart ncp_host{"org.orvane.qm_ncp_host", contract::simulation_path,
                             "org.velmora.Station.NcpHost"};
const SimulatedPart radio_module{"org.velmora.Station.RadioModule", "/org/velmora/station/radio_module",
                                 "org.velmora.Station.RadioModule"};

void UnrefVariant::operator()(_GVariant* value) const { g_variant_unref(value); }

Answer call(const SimulatedPart& part, const std::string& method, _GVariant* arguments) {
    g_autoptr(GVariant) owned_arguments = arguments != nullptr ? g_variant_ref_sink(arguments) : nullptr;
    g_autoptr(GError) error = nullptr;
    g_autoptr(GDBusConnection) bus = g_bus_get_sync(G_BUS_TYPE_SYSTEM, nullptr, &error);
    Answer answer;
    if (bus != nullptr)
        answer.reset(g_dbus_connection_call_sync(bus, part.bus_name, part.object_path, part.interface,
                                                 method.c_str(), owned_arguments, nullptr,
                                                 G_DBUS_CALL_FLAGS_NONE, -1, nullptr, &error));
    if (!answer)
        throw std::runtime_error(std::string(part.bus_name) + " does not answer " + method + ": " +
                                 error->message);
    return answer;
}

} // namespace station
