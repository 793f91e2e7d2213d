#include "common/program.h"
#include "ncp_contract.h"
#include "ncp_service.h"

#include <array>
#include <stdexcept>

namespace {

void add_behaviour(station::NcpService& service, const std::string& text) {
    const auto middle = text.find('=');
    const auto behaviour =
        middle == std::string::npos ? std::nullopt : station::parse_behaviour(text.substr(middle + 1));
    if (!behaviour || !service.set_behaviour(text.substr(0, middle), *behaviour)) {
        throw std::runtime_error("--answer " + text + ": not METHOD=BEHAVIOUR");
    }
}

void run(int argc, char** argv, const station::StationLog& log) {
    int limit = 2000;
    g_auto(GStrv) answers = nullptr;
    const auto entries = std::to_array<GOptionEntry>(
        {{"time-limit", 0, 0, G_OPTION_ARG_INT, &limit,
          "milliseconds the radio module has for an answer (2000)", "MS"},
         {"answer", 0, 0, G_OPTION_ARG_STRING_ARRAY, &answers, "how a method answers", "METHOD=BEHAVIOUR"},
         {}});
    station::read_options(argc, argv, entries.data(), "The NCP host service of the simulated television.");
    if (limit <= 0)
        throw std::runtime_error("--time-limit: not more than 0");

    const auto connection = station::connect_to_system_bus();
    station::NcpService service(connection.get(), static_cast<guint>(limit), log);
    for (auto* entry = answers; entry != nullptr && *entry != nullptr; ++entry)
        add_behaviour(service, *entry);
    station::own_name(connection.get(), station::contract::bus_name);
    station::run_until_terminated();
}

} // namespace

int main(int argc, char** argv) {
    return station::run_program("ncp_host", [&](const auto& log) { run(argc, argv, log); });
}
