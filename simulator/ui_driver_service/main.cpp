#include "base/program.h"
#include "ui_driver.h"

#include <array>

namespace {

void run(int argc, char** argv) {
    const std::array<GOptionEntry, 1> no_options{};
    simulator::read_options(argc, argv, no_options.data(), "The ui_driver of the simulated television.");
    const auto connection = simulator::connect_to_system_bus();
    const simulator::UiDriver service(connection.get());
    simulator::own_name(connection.get(), "org.velmora.Simulator.Ui");
    simulator::run_until_terminated();
}

} // namespace

int main(int argc, char** argv) {
    return simulator::run_program("ui_driver", [&](const auto& /*log*/) { run(argc, argv); });
}
