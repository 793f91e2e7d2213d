#include "common/program.h"
#include "common/station_log.h"
#include "contract.h"
#include "operator_service.h"

#include <array>
#include <cstdlib>
#include <exception>

int main(int argc, char** argv) {
    const station::StationLog log("operator");
    try {
        const std::array<GOptionEntry, 1> no_options{};
        station::read_options(argc, argv, no_options.data(), "The operator of the simulated television.");
        const auto connection = station::connect_to_system_bus();
        const station::OperatorService service(connection.get());
        station::own_name(connection.get(), station::operator_contract::bus_name);
        station::run_until_terminated();
    } catch (const std::exception& error) {
        log.error(error.what());
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
