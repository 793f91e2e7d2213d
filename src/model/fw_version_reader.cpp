#include "model/fw_version_reader.h"

#include "Log.h"

#include <array>
#include <cstddef>
#include <fstream>
#include <ios>

namespace {

// The image's last bytes: the version's three numbers, and five that mean nothing here.
using Trailer = std::array<char, 8>;

std::string version_of(const Trailer& trailer) {
    const auto number = [&](std::size_t position) {
        return std::to_string(static_cast<unsigned char>(trailer.at(position)));
    };
    return number(0) + "." + number(1) + "." + number(2);
}

// Only the trailer is read, however large the image is.
std::string read_version(const std::string& image_path) {
    std::ifstream image(image_path, std::ios::binary);
    if (!image) {
        LOG_ERROR_AT(LOG_ORIGIN("GetVersion"), "%s can't opent file", image_path.c_str());
        return {};
    }
    Trailer trailer{};
    const auto trailer_size = static_cast<std::streamoff>(trailer.size());
    image.seekg(0, std::ios::end);
    if (image.tellg() < trailer_size)
        return {};
    image.seekg(-trailer_size, std::ios::end);
    if (!image.read(trailer.data(), trailer_size)) {
        LOG_ERROR_AT(LOG_ORIGIN("GetVersion"), "%s can't be read", image_path.c_str());
        return {};
    }
    return version_of(trailer);
}

} // namespace

std::string FwVersionReader::GetVersion(const std::string& image_path) {
    std::string version = read_version(image_path);
    LOG_ERROR("fw_ver : %s", version.c_str());
    return version;
}
