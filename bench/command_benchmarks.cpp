#include "benchmarks.h"
#include "table.h"

#include "base/process.h"
#include "model/ncp_requester.h"
#include "ncp_host/contract.h"
#include "support/television.h"

#include <stdexcept>
#include <systemd/sd-bus.h>

namespace bench {
namespace {

using namespace std::chrono_literals;
namespace host = simulator::contract;

constexpr const char* what = "radio command";
constexpr const char* method = "ember_set_channel";
constexpr int channel = 15;

void require(bool worked, const char* who) {
    if (!worked)
        throw std::runtime_error(std::string("the radio command of ") + who + " fails");
}

void velmora(benchmark::State& state) {
    const simulator::StandardErrorTo log(log_file());
    ncp_requester& requester = ncp_requester::getInstance();
    requester.start();
    for (auto _ : state)
        require(requester.ember_set_channel(channel), own_name);
}

/** A command leaves four lines in the log: two before its call, two after. */
void log_two_lines() {
    for (int line = 0; line < 2; ++line)
        dprintf(STDERR_FILENO, "E/%s(%d): %s: %s(%d) > %s\n", "BARE", 1234, "command_benchmarks.cpp",
                __func__, line, "method = ember_set_channel, timeout = 120000 msec");
}

void gdbus_proxy(benchmark::State& state, bool logs) {
    const simulator::StandardErrorTo log(log_file());
    const auto bus = simulator::connect_to_system_bus();
    g_autoptr(GDBusProxy) proxy =
        g_dbus_proxy_new_sync(bus.get(), G_DBUS_PROXY_FLAGS_NONE, nullptr, host::bus_name, host::service_path,
                              host::service_interface, nullptr, nullptr);
    for (auto _ : state) {
        if (logs)
            log_two_lines();
        g_autoptr(GVariant) reply = g_dbus_proxy_call_sync(proxy, method, g_variant_new("(i)", channel),
                                                           G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr);
        require(reply != nullptr, "GDBus");
        if (logs)
            log_two_lines();
    }
}

void sd_bus_call(benchmark::State& state) {
    sd_bus* bus = nullptr;
    require(sd_bus_open_system(&bus) >= 0, "sd-bus");
    for (auto _ : state) {
        sd_bus_message* reply = nullptr;
        require(sd_bus_call_method(bus, host::bus_name, host::service_path, host::service_interface, method,
                                   nullptr, &reply, "i", channel) >= 0,
                "sd-bus");
        sd_bus_message_unref(reply);
    }
    sd_bus_flush_close_unref(bus);
}

void command_line(benchmark::State& state, const std::vector<std::string>& command) {
    for (auto _ : state) {
        simulator::Process process(command, simulator::written_to("/dev/null"));
        require(process.wait_for_end(10s) == 0, command.front().c_str());
    }
}

} // namespace

void add_command_benchmarks() {
    const std::string number = std::to_string(channel);
    const std::vector<std::string> gdbus{"gdbus",
                                         "call",
                                         "--system",
                                         "-d",
                                         host::bus_name,
                                         "-o",
                                         host::service_path,
                                         "-m",
                                         std::string(host::service_interface) + '.' + method,
                                         number};
    const std::vector<std::string> busctl{
        "busctl", "--system", "call", host::bus_name, host::service_path, host::service_interface,
        method,   "i",        number};
    const auto add = [](const char* who, auto&&... function) {
        benchmark::RegisterBenchmark(measurement(what, who).c_str(), function...)
            ->UseRealTime()
            ->Unit(benchmark::kMicrosecond);
    };
    add(own_name, velmora);
    add("GDBus proxy call", gdbus_proxy, false);
    add("GDBus proxy call with four log lines", gdbus_proxy, true);
    add("sd-bus call", sd_bus_call);
    add("gdbus command", command_line, gdbus);
    add("busctl command", command_line, busctl);
}

} // namespace bench
