#include "base/program.h"
#include "base/strings.h"
#include "radio_module.h"

#include <array>
#include <optional>
#include <stdexcept>
#include <string>

namespace {

struct Options {
    Options() = default;
    Options(const Options&) = delete;
    Options& operator=(const Options&) = delete;
    ~Options() {
        g_free(firmware);
        g_strfreev(traffic);
        g_free(air);
    }

    gchar* firmware = nullptr;
    int module_speed = 0;
    gboolean no_serial = FALSE;
    double serial_after = 0;
    gchar** traffic = nullptr;
    gchar* air = nullptr;
};

void read_into(Options& options, int argc, char** argv) {
    const auto entries = std::to_array<GOptionEntry>(
        {{"firmware", 0, 0, G_OPTION_ARG_STRING, &options.firmware, "firmware version (7.4.8)", "A.B.C"},
         {"module-speed", 0, 0, G_OPTION_ARG_INT, &options.module_speed, "speak at 115200 or 921600", "N"},
         {"no-serial", 0, 0, G_OPTION_ARG_NONE, &options.no_serial, "the serial device does not appear",
          nullptr},
         {"serial-after", 0, 0, G_OPTION_ARG_DOUBLE, &options.serial_after, "it appears late", "SECONDS"},
         {"traffic", 0, 0, G_OPTION_ARG_STRING_ARRAY, &options.traffic, "packets a second on a channel",
          "CHANNEL=N"},
         {"air", 0, 0, G_OPTION_ARG_FILENAME, &options.air, "the folder of the shared air", "DIR"},
         {}});
    simulator::read_options(argc, argv, entries.data(), "The radio module of the simulated television.");
}

int speed_of(const Options& options) {
    if (options.module_speed == 115200 || options.module_speed == 921600)
        return options.module_speed;
    if (options.module_speed != 0)
        throw std::runtime_error("--module-speed: neither 115200 nor 921600");
    const std::string firmware = options.firmware != nullptr ? options.firmware : "7.4.8";
    const auto last_number = simulator::parse_int(firmware.substr(firmware.rfind('.') + 1));
    if (!last_number)
        throw std::runtime_error("--firmware " + firmware + ": not A.B.C");
    return simulator::speed_of_firmware(*last_number);
}

void add_traffic(simulator::RadioModule& module, const std::string& text) {
    const auto middle = text.find('=');
    const auto channel = simulator::parse_int(text.substr(0, middle));
    const auto rate =
        middle == std::string::npos ? std::nullopt : simulator::parse_int(text.substr(middle + 1));
    if (!channel || !rate)
        throw std::runtime_error("--traffic " + text + ": not CHANNEL=PACKETS_PER_SECOND");
    module.set_traffic(*channel, *rate);
}

void run(int argc, char** argv, const simulator::ComponentLog& log) {
    Options options;
    read_into(options, argc, argv);
    const auto connection = simulator::connect_to_system_bus();
    simulator::RadioModule module(connection.get(), speed_of(options), log);
    for (auto* entry = options.traffic; entry != nullptr && *entry != nullptr; ++entry) {
        add_traffic(module, *entry);
    }
    if (options.air != nullptr)
        module.join_air(options.air);
    if (options.serial_after > 0) {
        simulator::call_after(static_cast<guint>(options.serial_after * 1000),
                              [&] { module.set_serial(true); });
    } else {
        module.set_serial(options.no_serial == FALSE);
    }
    simulator::own_name(connection.get(), "org.velmora.Simulator.RadioModule");
    simulator::run_until_terminated();
}

} // namespace

int main(int argc, char** argv) {
    return simulator::run_program("radio_module", [&](const auto& log) { run(argc, argv, log); });
}
