#include "client.h"

#include "base/bus.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <fcntl.h>
#include <gio/gunixfdlist.h>
#include <string_view>
#include <thread>

namespace simulator {
namespace {

constexpr auto bus_name = "org.velmora.Simulator"; // appears when every component is ready
constexpr auto look_interval = std::chrono::milliseconds(10);
constexpr auto start_limit = std::chrono::seconds(60);

bool is_absence(const GError& error) {
    return g_error_matches(&error, G_DBUS_ERROR, G_DBUS_ERROR_SERVICE_UNKNOWN) != FALSE ||
           g_error_matches(&error, G_DBUS_ERROR, G_DBUS_ERROR_NAME_HAS_NO_OWNER) != FALSE;
}

[[noreturn]] void refuse(const GError& error) {
    static constexpr std::array<std::string_view, 4> usage_errors{
        "org.velmora.Simulator.Error.NoSuchKey", "org.velmora.Simulator.Error.NoSuchComponent",
        "org.velmora.Simulator.Error.NoSuchBehaviour", "org.velmora.Simulator.Error.NoSuchTraffic"};
    if (is_absence(error))
        throw Failure("the television does not answer");
    if (g_dbus_error_is_remote_error(&error) == FALSE ||
        g_error_matches(&error, G_DBUS_ERROR, G_DBUS_ERROR_NO_REPLY) != FALSE)
        throw Failure("the television has exited");
    g_autofree char* name = g_dbus_error_get_remote_error(&error);
    const std::unique_ptr<GError, decltype(&g_error_free)> copy(g_error_copy(&error), g_error_free);
    g_dbus_error_strip_remote_error(copy.get());
    if (std::ranges::find(usage_errors, name) != usage_errors.end())
        throw UsageError(copy->message);
    throw Failure(copy->message);
}

} // namespace

Value Client::call(const char* interface, const char* method, GVariant* arguments,
                   const std::vector<int>& descriptors) const {
    const Object<GUnixFDList> list(descriptors.empty() ? nullptr : g_unix_fd_list_new());
    for (const int number : descriptors)
        if (g_unix_fd_list_append(list.get(), number, nullptr) < 0)
            g_unix_fd_list_append(list.get(), FileDescriptor(open("/dev/null", O_RDWR | O_CLOEXEC)).get(),
                                  nullptr);
    const Value held(arguments != nullptr ? g_variant_ref_sink(arguments) : nullptr);
    const auto deadline = std::chrono::steady_clock::now() + start_limit;
    for (;;) {
        g_autoptr(GError) error = nullptr;
        Value answer(g_dbus_connection_call_with_unix_fd_list_sync(
            bus_.get(), bus_name, contract_of(interface).path, interface, method, held.get(), nullptr,
            G_DBUS_CALL_FLAGS_NO_AUTO_START, G_MAXINT, list.get(), nullptr, nullptr, &error));
        if (answer)
            return answer;
        if (!is_absence(*error) || std::chrono::steady_clock::now() >= deadline)
            refuse(*error);
        std::this_thread::sleep_for(look_interval);
    }
}

Value first_of(const Value& answer) { return Value(g_variant_get_child_value(answer.get(), 0)); }

} // namespace simulator
