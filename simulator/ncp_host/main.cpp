#include "base/program.h"
#include "contract.h"
#include "ncp_host.h"

#include <array>
#include <stdexcept>

namespace {

void add_behaviour(simulator::NcpHost& host, const std::string& text) {
    const auto middle = text.find('=');
    if (middle == std::string::npos)
        throw std::runtime_error("--answer " + text + ": not METHOD=BEHAVIOUR");
    host.set_behaviour(text.substr(0, middle), text.substr(middle + 1));
}

constexpr guint answer_limit_milliseconds = 5000;

void run(int argc, char** argv, const simulator::ComponentLog& log) {
    g_auto(GStrv) answers = nullptr;
    const auto entries = std::to_array<GOptionEntry>(
        {{"answer", 0, 0, G_OPTION_ARG_STRING_ARRAY, &answers, "how a method answers", "METHOD=BEHAVIOUR"},
         {}});
    simulator::read_options(argc, argv, entries.data(), "The NCP host service of the simulated television.");

    const auto connection = simulator::connect_to_system_bus();
    simulator::NcpHost host(connection.get(), answer_limit_milliseconds, log);
    for (auto* entry = answers; entry != nullptr && *entry != nullptr; ++entry)
        add_behaviour(host, *entry);
    simulator::own_name(connection.get(), simulator::contract::bus_name);
    simulator::run_until_terminated();
}

} // namespace

int main(int argc, char** argv) {
    return simulator::run_program("ncp_host", [&](const auto& log) { run(argc, argv, log); });
}
