#include "stack/cpcd_configuration.h"
#include "input.h"

#include <stdexcept>

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    try {
        const auto configuration = simulator::read_cpcd_configuration(file_of(bytes, size));
        expect(!configuration.serial_device.empty() && configuration.serial_speed != 0);
    } catch (const std::runtime_error&) { // it is wrong, and says so
    }
    return 0;
}
