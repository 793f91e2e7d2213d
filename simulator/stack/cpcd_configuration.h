/** The configuration file of cpcd. */
#pragma once

#include <string>

namespace simulator {

struct CpcdConfiguration {
    std::string serial_device;
    int serial_speed = 0;
};

/**
 * Reads lines "KEY: VALUE"; empty lines and those that begin with "#" are skipped.
 *
 * @throws std::runtime_error when the file cannot be read, a line is wrong or a key is missing.
 */
CpcdConfiguration read_cpcd_configuration(const std::string& path);

} // namespace simulator
