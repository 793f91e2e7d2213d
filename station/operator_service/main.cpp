#include "common/program.h"
#include "contract.h"
#include "operator_service.h"

#include <array>

namespace {

void run(int argc, char** argv) {
    const std::array<GOptionEntry, 1> no_options{};
    station::read_options(argc, argv, no_options.data(), "The operator of the simulated television.");
    const auto connection = station::connect_to_system_bus();
    const station::OperatorService service(connection.get());
    station::own_name(connection.get(), station::operator_contract::bus_name);
    station::run_until_terminated();
}

} // namespace

int main(int argc, char** argv) {
    return station::run_program("operator", [&](const auto& /*log*/) { run(argc, argv); });
}
