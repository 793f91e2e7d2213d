#include "ncp_host_record.h"

#include "host/ncp_contract.h"

#include <gio/gio.h>
#include <memory>
#include <stdexcept>

namespace station {

std::vector<std::string> asked_of_ncp_host() {
    g_autoptr(GError) error = nullptr;
    g_autoptr(GDBusConnection) bus = g_bus_get_sync(G_BUS_TYPE_SYSTEM, nullptr, &error);
    g_autoptr(GVariant) answer = nullptr;
    if (bus != nullptr)
        answer = g_dbus_connection_call_sync(
            bus, "org.orvane.qm_ncp_host", contract::simulation_path, "org.velmora.Station.NcpHost", "Asked",
            nullptr, G_VARIANT_TYPE("(as)"), G_DBUS_CALL_FLAGS_NONE, -1, nullptr, &error);
    if (answer == nullptr)
        throw std::runtime_error(std::string("the NCP host does not answer: ") + error->message);
    g_autoptr(GVariantIter) calls = nullptr;
    g_variant_get(answer, "(as)", &calls);
    std::vector<std::string> asked;
    const char* call = nullptr;
    while (g_variant_iter_next(calls, "&s", &call) != FALSE)
        asked.emplace_back(call);
    return asked;
}

} // namespace station
