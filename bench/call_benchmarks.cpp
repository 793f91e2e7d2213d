#include "measurement.h"

#include "model/fw_version_reader.h"
#include "model/ncp_requester.h"
#include "model/process_lifecycle.h"
#include "model/secure_data.h"
#include "model/util.h"
#include "ncp_host/contract.h"
#include "support/processes.h"
#include "support/television.h"

#include <array>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <thread>
#include <unistd.h>

namespace {

/** How long this thread has slept in `usleep`. */
thread_local bench::Clock::duration slept{};

} // namespace

/** Replaces the C library's function, to exclude sleeps from the measurement. */
extern "C" int usleep(useconds_t microseconds) {
    const auto start = bench::Clock::now();
    std::this_thread::sleep_for(std::chrono::microseconds(microseconds));
    slept += bench::Clock::now() - start;
    return 0;
}

namespace bench {
namespace {

constexpr int channel = 15;

void require(bool succeeded, const char* call) {
    if (!succeeded)
        throw std::runtime_error(std::string(call) + " fails");
}

std::function<void()> radio_command() {
    ncp_requester& requester = ncp_requester::getInstance();
    requester.start();
    return [&requester] { require(requester.ember_set_channel(channel), "the radio command"); };
}

void log_line(const char* place, const char* message) {
    dprintf(STDERR_FILENO, "E/VELMORA(%d): %s > %s\n", getpid(), place, message);
}

/** The D-Bus call of the radio command, made with GDBus alone, and the command's log lines. */
std::function<void()> bare_call() {
    const auto bus = simulator::connect_to_system_bus();
    const std::shared_ptr<GDBusProxy> proxy(
        g_dbus_proxy_new_sync(bus.get(), G_DBUS_PROXY_FLAGS_NONE, nullptr, simulator::contract::bus_name,
                              simulator::contract::service_path, simulator::contract::service_interface,
                              nullptr, nullptr),
        g_object_unref);
    return [proxy] {
        log_line("ncp_requester.cpp: ember_set_channel(58)", "ember_set_channel");
        log_line("dbus_client.cpp: ProcessSyncCall(118)",
                 "[b] method = ember_set_channel, timeout = 120000 msec");
        g_autoptr(GVariant) reply =
            g_dbus_proxy_call_sync(proxy.get(), "ember_set_channel", g_variant_new("(i)", channel),
                                   G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr);
        log_line("dbus_client.cpp: ProcessSyncCall(136)", "[n]");
        require(reply != nullptr, "the bare call");
        log_line("ncp_requester.cpp: check_result(97)", "Result = 0");
    };
}

std::function<void()> firmware_version(std::uintmax_t mebibytes) {
    static constexpr const char* image = "/tmp/firmware_image";
    std::ofstream(image).put('\0');
    std::filesystem::resize_file(image, mebibytes * 1024 * 1024);
    return [] { benchmark::DoNotOptimize(FwVersionReader().GetVersion(image)); };
}

std::function<void()> secure_read() {
    SecureData::StoreStringData("bench", "7.4.8");
    return [] { require(SecureData::LoadStringData("bench") == "7.4.8", "reading the record"); };
}

/** Starts and stops the radio stack. @return both times, without sleeps. */
std::array<Value, 2> start_and_stop() {
    const auto time_of = [](const auto& action) {
        const auto start = Clock::now();
        slept = {};
        action();
        return milliseconds(Clock::now() - start - slept);
    };
    const Value start = time_of([] { prepare_background_app(); });
    while (simulator::running_radio_programs().size() < 3)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    return {start, time_of(kill_background_app)};
}

[[maybe_unused]] const bool added = [] {
    add("start of the radio stack", own_name, 9, [] { return start_and_stop()[0]; });
    add("stop of the radio stack", own_name, 9, [] { return start_and_stop()[1]; });
    add_call("radio command", own_name, radio_command);
    add_call("radio command", "GDBus call with four log lines", bare_call);
    for (const std::uintmax_t mebibytes : {1U, 16U, 64U})
        add_call("version of a firmware image of " + std::to_string(mebibytes) + " MiB", own_name,
                 [mebibytes] { return firmware_version(mebibytes); });
    add_call("secure store, read", own_name, secure_read);
    add_call("secure store, write", own_name,
             [] { return [] { SecureData::StoreStringData("bench", "7.4.8"); }; });
    return true;
}();

} // namespace
} // namespace bench
