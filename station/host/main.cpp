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

constexpr guint answer_limit_milliseconds = 5000;

void run(int argc, char** argv, const station::StationLog& log) {
    g_auto(GStrv) answers = nullptr;
    const auto entries = std::to_array<GOptionEntry>(
        {{"answer", 0, 0, G_OPTION_ARG_STRING_ARRAY, &answers, "how a method answers", "METHOD=BEHAVIOUR"},
         {}});
    station::read_options(argc, argv, entries.data(), "The NCP host service of the simulated television.");

    const auto connection = station::connect_to_system_bus();
    station::NcpService service(connection.get(), answer_limit_milliseconds, log);
    for (auto* entry = answers; entry != nullptr && *entry != nullptr; ++entry)
        add_behaviour(service, *entry);
    station::own_name(connection.get(), station::contract::bus_name);
    station::run_until_terminated();
}

} // namespace

int main(int argc, char** argv) {
    return station::run_program("ncp_host", [&](const auto& log) { run(argc, argv, log); });
}
