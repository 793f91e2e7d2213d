#include "client.h"

#include "base/bus.h"
#include "base/file_descriptor.h"
#include "failure.h"
#include "ncp_host/contract.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <fcntl.h>
#include <string_view>
#include <thread>

namespace simulator {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr auto look_interval = 10ms;
constexpr auto start_patience = 60s;

bool is_absence(const GError* error) {
    return g_error_matches(error, G_DBUS_ERROR, G_DBUS_ERROR_SERVICE_UNKNOWN) != FALSE ||
           g_error_matches(error, G_DBUS_ERROR, G_DBUS_ERROR_NAME_HAS_NO_OWNER) != FALSE;
}

GError* failed_call(GDBusConnection* bus, const ObjectAddress& object, const char* method,
                    GVariant* arguments, GUnixFDList* descriptors, Value& answer) {
    GError* error = nullptr;
    answer.reset(g_dbus_connection_call_with_unix_fd_list_sync(
        bus, object.name, object.path, object.interface, method, arguments, nullptr,
        G_DBUS_CALL_FLAGS_NO_AUTO_START, G_MAXINT, descriptors, nullptr, nullptr, &error));
    return error;
}

} // namespace

const ObjectAddress television{"org.velmora.Simulator.Television", "/org/velmora/Simulator/Television",
                               "org.velmora.Simulator.Television", "television"};
const ObjectAddress ui{"org.velmora.Simulator.Ui", "/org/velmora/Simulator/Ui", "org.velmora.Simulator.Ui",
                       "ui_driver"};
const ObjectAddress ncp_host{contract::bus_name, "/org/velmora/Simulator/NcpHost",
                             "org.velmora.Simulator.NcpHost", "ncp_host"};
const ObjectAddress radio_module{"org.velmora.Simulator.RadioModule", "/org/velmora/Simulator/RadioModule",
                                 "org.velmora.Simulator.RadioModule", "radio_module"};

Value Client::call(const ObjectAddress& object, const char* method, GVariant* arguments,
                   GUnixFDList* descriptors) const {
    const Value held(arguments != nullptr ? g_variant_ref_sink(arguments) : nullptr);
    const auto deadline = Clock::now() + start_patience;
    for (bool is_up = false;;) {
        Value answer;
        g_autoptr(GError) error = failed_call(bus_.get(), object, method, held.get(), descriptors, answer);
        if (error == nullptr)
            return answer;
        if (!is_absence(error))
            refuse(*error, object);
        if (is_up || Clock::now() >= deadline)
            throw Failure(why_absent(object));
        is_up = !is_starting(); // it may have come up since the call: once more
        if (!is_up)
            std::this_thread::sleep_for(look_interval);
    }
}

void Client::refuse(const GError& error, const ObjectAddress& object) {
    static constexpr std::array<std::string_view, 4> wrong_uses{
        "org.velmora.Simulator.Error.NoSuchKey", "org.velmora.Simulator.Error.NoSuchComponent",
        "org.velmora.Simulator.Error.NoSuchBehaviour", "org.velmora.Simulator.Error.NoSuchTraffic"};
    if (g_dbus_error_is_remote_error(&error) == FALSE)
        throw Failure("the television has ended");
    if (g_error_matches(&error, G_DBUS_ERROR, G_DBUS_ERROR_NO_REPLY) != FALSE)
        throw Failure("the " + std::string(object.program) + " has ended before it answered");
    g_autofree char* name = g_dbus_error_get_remote_error(&error);
    const std::unique_ptr<GError, decltype(&g_error_free)> copy(g_error_copy(&error), g_error_free);
    g_dbus_error_strip_remote_error(copy.get());
    if (std::ranges::find(wrong_uses, name) != wrong_uses.end())
        throw WrongUse(copy->message);
    throw Failure(copy->message);
}

/** The television's own name comes last, when every component is there. */
bool Client::is_starting() const {
    static constexpr ObjectAddress bus{"org.freedesktop.DBus", "/org/freedesktop/DBus",
                                       "org.freedesktop.DBus", ""};
    Value answer;
    const Value name(g_variant_ref_sink(g_variant_new("(s)", television.name)));
    g_autoptr(GError) error = failed_call(bus_.get(), bus, "NameHasOwner", name.get(), nullptr, answer);
    if (error != nullptr)
        refuse(*error, television);
    gboolean owned = TRUE;
    g_variant_get(answer.get(), "(b)", &owned);
    return owned == FALSE;
}

std::string Client::why_absent(const ObjectAddress& object) const {
    const std::string program = object.program;
    if (&object == &television)
        return "the television does not answer";
    const Value components = first_of(call(television, "Components"));
    GVariantIter each;
    g_variant_iter_init(&each, components.get());
    while (const Value component{g_variant_iter_next_value(&each)}) {
        const char* name = nullptr;
        const char* state = nullptr;
        g_variant_lookup(component.get(), "component", "&s", &name);
        g_variant_lookup(component.get(), "state", "&s", &state);
        if (program == name)
            return std::string("the ").append(name) + " " + state + "; 'tvctl start " + name +
                   "' starts it again";
    }
    return &object == &ui ? "this television has no screen" : "this television has no " + program;
}

Client this_television() { return Client(connect_to_system_bus()); }

DescriptorList hand_over(std::initializer_list<int> numbers) {
    DescriptorList list(g_unix_fd_list_new());
    for (const int number : numbers)
        if (g_unix_fd_list_append(list.get(), number, nullptr) < 0)
            g_unix_fd_list_append(list.get(), FileDescriptor(open("/dev/null", O_RDWR | O_CLOEXEC)).get(),
                                  nullptr);
    return list;
}

Value first_of(const Value& answer) { return Value(g_variant_get_child_value(answer.get(), 0)); }

std::string text_of(const Value& answer) {
    const char* text = nullptr;
    g_variant_get(answer.get(), "(&s)", &text);
    return text;
}

} // namespace simulator
