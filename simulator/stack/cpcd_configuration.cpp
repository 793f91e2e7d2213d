#include "cpcd_configuration.h"

#include <fstream>
#include <sstream>
#include <stdexcept>

namespace simulator {
namespace {

void take_line(const std::string& line, CpcdConfiguration& configuration) {
    std::istringstream words(line);
    std::string key;
    std::string rest;
    words >> key;
    const bool taken = key == "serial_device:"  ? static_cast<bool>(words >> configuration.serial_device)
                       : key == "serial_speed:" ? static_cast<bool>(words >> configuration.serial_speed)
                                                : false;
    if (!taken || words >> rest)
        throw std::runtime_error("wrong line: " + line);
}

} // namespace

CpcdConfiguration read_cpcd_configuration(const std::string& path) {
    std::ifstream file(path);
    if (!file)
        throw std::runtime_error("cannot read the configuration " + path);
    CpcdConfiguration configuration;
    for (std::string line; std::getline(file, line);) {
        if (!line.empty() && line.front() != '#')
            take_line(line, configuration);
    }
    if (configuration.serial_device.empty())
        throw std::runtime_error(path + ": serial_device is missing");
    if (configuration.serial_speed == 0)
        throw std::runtime_error(path + ": serial_speed is missing");
    return configuration;
}

} // namespace simulator
