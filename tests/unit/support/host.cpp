#include "support/host.h"

#include "common/bus_object.h"
#include "common/texts.h"
#include "remote/failure.h"

Host::Host()
    : television_(station::connect_to_bus("unix:path=/run/dbus/system_bus_socket")),
      calls_before_(all_calls().size()) {}

Host::~Host() {
    for (const std::string& method : changed_)
        answer(method, "normal");
}

void Host::answer(const std::string& method, const std::string& behaviour) {
    changed_.insert(method);
    try {
        television_.call(station::television, "Start", g_variant_new("(s)", "ncp_host"));
        calls_before_ = 0;
    } catch (const station::Failure&) { // it runs
    }
    television_.call(station::ncp_host, "Answer", g_variant_new("(ss)", method.c_str(), behaviour.c_str()));
}

std::vector<std::string> Host::all_calls() {
    return station::texts_of(station::first_of(television_.call(station::ncp_host, "Asked")).get());
}

std::vector<std::string> Host::calls() {
    std::vector<std::string> calls = all_calls();
    calls.erase(calls.begin(), calls.begin() + static_cast<std::ptrdiff_t>(calls_before_));
    return calls;
}

void Host::emit(const std::string& values) {
    television_.call(station::ncp_host, "EmitValue", g_variant_new("(s)", values.c_str()));
    // A round trip to the bus: the signal is with the receiver's connection then.
    const GObjectHandle<GDBusConnection> receiver(g_bus_get_sync(G_BUS_TYPE_SYSTEM, nullptr, nullptr));
    [[maybe_unused]] g_autoptr(GVariant) reply = g_dbus_connection_call_sync(
        receiver.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "GetId",
        nullptr, nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr);
    while (g_main_context_iteration(nullptr, FALSE) != FALSE) {
    }
}

void forget_system_bus() {
    GWeakRef remembered;
    {
        const GObjectHandle<GDBusConnection> shared(g_bus_get_sync(G_BUS_TYPE_SYSTEM, nullptr, nullptr));
        g_weak_ref_init(&remembered, shared.get());
    }
    // The bus library's thread holds it a moment longer, while it delivers what came in last.
    for (int attempt = 0; attempt < 1000; ++attempt) {
        const GObjectHandle<GObject> still_there(static_cast<GObject*>(g_weak_ref_get(&remembered)));
        if (!still_there)
            break;
        g_main_context_iteration(nullptr, FALSE);
        g_usleep(1000);
    }
    g_weak_ref_clear(&remembered);
}
